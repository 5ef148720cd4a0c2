// The four search windows as the user drives them: opened from the menu,
// a text typed (shown folded) and Enter, rows dragged out, the commands'
// states, a refused year putting the caret back, and the export hand-off.
// With SYLVANE_CAPTURE set to a folder, also writes pictures of the forms.
#include "app/frm_exporter.h"
#include "app/frm_recherche.h"
#include "fenetre_test.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace sylvane;

namespace {

struct FrmRechercheTest : test::FenetreTest {
    test::Famille f;

    void SetUp() override {
        const std::string chemin = dossier / "famille.sv2";
        f = test::EcritFamille(chemin);
        {
            // Places and an event, so that every form has something to find.
            Parametres p;
            Base b(systemeReel(), p);
            b.Ouvre(chemin);
            for (std::uint32_t n : {f.pere, f.moi}) {
                const std::string note = b.LigneMotsCles(n, "Saint L\xF4", "Caen");
                b.MajMots(n, b.LitNote(n), note);
                b.EcritNote(n, note);
            }
            b.CreeEvtPersonne(f.moi, -7000, "BIRT", "Saint L\xF4");
            b.FermeBase();
        }
        OuvreFenetre(chemin, f.moi);
    }
    template <class F> F* Ouvre(Commande c, const char* nom) {
        EXPECT_TRUE(fenetre->logique().Execute(c));
        QApplication::processEvents();
        return qobject_cast<F*>(fenetre->Formulaire(nom));
    }
    static QString Cellule(FrmRechercheQt* w, int ligne, int colonne) {
        return w->grille()->model()->index(ligne, colonne).data().toString();
    }
    // The next message box is answered as soon as it shows.
    static void FermeBoite() {
        QTimer::singleShot(0, [] {
            if (QWidget* m = QApplication::activeModalWidget()) m->close();
        });
    }
    void Capture(QWidget* w, const char* nom) {
        const char* dossier = std::getenv("SYLVANE_CAPTURE");
        if (!dossier) return;
        QApplication::processEvents();
        w->window()->grab().save(QString(dossier) + "/" + nom + ".png");
    }
};

} // namespace

TEST_F(FrmRechercheTest, NameSearchTypedFoldedEnterAndRows) {
    auto* w = Ouvre<FrmRechercheNomQt>(Commande::MnuRecherche, "FrmRecherche");
    ASSERT_NE(w, nullptr);
    EXPECT_FALSE(w->cmdMaj()->isEnabled());
    QTest::keyClicks(w->texte(), "mar");
    EXPECT_EQ(w->texte()->text(), "MAR");
    // A caret in the middle stays where it was.
    w->texte()->setCursorPosition(1);
    QTest::keyClicks(w->texte(), "t");
    EXPECT_EQ(w->texte()->text(), "MTAR");
    EXPECT_EQ(w->texte()->cursorPosition(), 2);
    w->texte()->setText("MART");
    QTest::keyClick(w->texte(), Qt::Key_Return);
    QApplication::processEvents();
    ASSERT_EQ(w->grille()->model()->rowCount(), 5);
    EXPECT_EQ(Cellule(w, 0, 0).toUInt(), f.gp);
    EXPECT_EQ(Cellule(w, 0, 1), "Louis Martin");
    EXPECT_EQ(Cellule(w, 0, 2), "*");
    EXPECT_TRUE(w->nombre()->text().contains("5"));
    EXPECT_TRUE(w->cmdMaj()->isEnabled());
    EXPECT_TRUE(w->cmdEcarter()->isEnabled());
    EXPECT_FALSE(fenetre->logique().services().panneau.Visible());

    // A row is dragged out as its person's tag.
    std::unique_ptr<QMimeData> m(
        w->grille()->model()->mimeData({w->grille()->model()->index(1, 1)}));
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->text(), "I" + QString::number(f.pere));

    // Cumul: the wives' family names join, in number order.
    w->cumul()->setChecked(true);
    w->texte()->setText("ROUX");
    QTest::mouseClick(w->cmdRecherche(), Qt::LeftButton);
    EXPECT_EQ(w->grille()->model()->rowCount(), 6);
    EXPECT_EQ(Cellule(w, 2, 1), "Marie Roux");

    // The selected row, dropped.
    w->grille()->selectRow(0);
    QTest::mouseClick(w->cmdEcarter(), Qt::LeftButton);
    EXPECT_EQ(w->grille()->model()->rowCount(), 5);
    Capture(w, "recherche-nom");
}

TEST_F(FrmRechercheTest, KeywordCoupleAndEventForms) {
    auto* t = Ouvre<FrmRechTexteQt>(Commande::MnuRechTexte, "FrmRechTexte");
    ASSERT_NE(t, nullptr);
    EXPECT_FALSE(t->cmdRecherche()->isEnabled());
    // Row 0 offers the family name: MART finds every MARTIN.
    t->genre(1)->setCurrentIndex(3); // "$", birth place
    QTest::keyClicks(t->texte(0), "mart");
    EXPECT_TRUE(t->cmdRecherche()->isEnabled());
    QTest::keyClicks(t->texte(1), "saint");
    QTest::keyClick(t->texte(1), Qt::Key_Return);
    ASSERT_EQ(t->grille()->model()->rowCount(), 2);
    EXPECT_EQ(Cellule(t, 0, 0), "MARTIN");
    EXPECT_EQ(Cellule(t, 0, 2), "Jean Martin");
    Capture(t, "recherche-mot-cle");

    auto* c = Ouvre<FrmRechCoupleQt>(Commande::MnuRechCouple, "FrmRechCouple");
    ASSERT_NE(c, nullptr);
    QTest::keyClicks(c->champ(0), "mar");
    QTest::keyClick(c->champ(0), Qt::Key_Return);
    ASSERT_EQ(c->grille()->model()->rowCount(), 3);
    EXPECT_EQ(Cellule(c, 0, 3), "Louis Martin");
    EXPECT_EQ(Cellule(c, 0, 4), "Rose Petit");
    EXPECT_EQ(Cellule(c, 0, 8), "1");
    Capture(c, "recherche-couple");

    auto* e = Ouvre<FrmRechEvtQt>(Commande::MnuRechEvt, "FrmRechEvt");
    ASSERT_NE(e, nullptr);
    EXPECT_EQ(e->type()->count(), 1);
    // A year that is no number: message 931, and the caret in its field.
    e->fin()->setText("19x0");
    e->debut()->setFocus();
    FermeBoite();
    QTest::mouseClick(e->cmdRecherche(), Qt::LeftButton);
    EXPECT_EQ(e->grille()->model()->rowCount(), 0);
    EXPECT_EQ(e->focusWidget(), e->fin());
    e->fin()->clear();
    e->lieu()->setCurrentText("saint lo");
    QTest::keyClick(e->lieu()->lineEdit(), Qt::Key_Return);
    ASSERT_EQ(e->grille()->model()->rowCount(), 1);
    EXPECT_EQ(Cellule(e, 0, 1), "BIRT");
    std::unique_ptr<QMimeData> m(
        e->grille()->model()->mimeData({e->grille()->model()->index(0, 0)}));
    ASSERT_NE(m, nullptr);
    EXPECT_TRUE(m->text().startsWith("E"));
    Capture(e, "recherche-evenements");
}
