// The person sheet as a person uses it: F2 opens it on the current person,
// a field is typed, Enter validates, and the base read again holds it;
// Escape on a changed sheet asks before it closes.
#include "app/frm_misajour.h"
#include "fenetre_test.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextCursor>
#include <QTextEdit>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace sylvane;

namespace {

struct FicheTest : test::FenetreTest {
    test::Famille famille;
    std::string chemin;
    void SetUp() override {
        chemin = dossier / "famille.sv2";
        famille = test::EcritFamille(chemin);
        OuvreFenetre(chemin, famille.moi);
    }
    FrmMisajourQt* Ouvre(Commande c) {
        EXPECT_TRUE(fenetre->logique().Execute(c));
        QApplication::processEvents();
        return qobject_cast<FrmMisajourQt*>(fenetre->Formulaire("FrmMisajour"));
    }
    // Answers No to the next box once it shows (its escape button).
    static void RepondNon() {
        auto* t = new QTimer(qApp);
        QObject::connect(t, &QTimer::timeout, [t] {
            if (auto* m = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                m->escapeButton()->click();
                t->deleteLater();
                t->stop();
            }
        });
        t->start(20);
    }
};

} // namespace

TEST_F(FicheTest, TypedDeathPlaceIsValidatedByEnterAndKeptInTheBase) {
    FrmMisajourQt* f = Ouvre(Commande::MnuModif);
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->champ(Champ::Nom)->text(), QStringLiteral("Martin"));
    EXPECT_EQ(f->enfants()->rowCount(), 2);
    EXPECT_EQ(f->conjoints()->rowCount(), 1);
    EXPECT_TRUE(f->statut()->text().contains(QStringLiteral("Pierre")));

    QLineEdit* lieu = f->champ(Champ::LieuDeces);
    lieu->setFocus();
    QTest::keyClicks(lieu, "Rouen");
    EXPECT_TRUE(fenetre->logique().fichePendante);
    QTest::keyClick(lieu, Qt::Key_Return);
    EXPECT_FALSE(fenetre->logique().fichePendante);

    fenetre->logique().Execute(Commande::MnuFermer);
    Parametres p;
    Base b(systemeReel(), p);
    b.Ouvre(chemin, true);
    EXPECT_EQ(b.LieuDeces(famille.moi), "Rouen");
    EXPECT_EQ(b.LitNom(famille.moi), "Martin");
}

TEST_F(FicheTest, EscapeOnAChangedSheetAsksThenDropsOnNo) {
    FrmMisajourQt* f = Ouvre(Commande::MnuModif);
    ASSERT_NE(f, nullptr);
    QLineEdit* prenom = f->champ(Champ::Prenom);
    prenom->setFocus();
    QTest::keyClicks(prenom, "x");
    RepondNon();
    QTest::keyClick(prenom, Qt::Key_Escape);
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(fenetre->Formulaire("FrmMisajour"), nullptr);
    EXPECT_EQ(fenetre->logique().base()->LitPrenom(famille.moi), "Pierre");
}

TEST_F(FicheTest, NewSheetAfterClosingOneCreatesThePersonTypedThere) {
    FrmMisajourQt* f = Ouvre(Commande::MnuModif);
    ASSERT_NE(f, nullptr);
    QTest::keyClick(f->champ(Champ::Nom), Qt::Key_Escape);
    // Ctrl+Shift+N at once, before the closed window is gone.
    QTest::keyClick(fenetre.get(), Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    f = qobject_cast<FrmMisajourQt*>(fenetre->Formulaire("FrmMisajour"));
    ASSERT_NE(f, nullptr);
    ASSERT_TRUE(f->isVisible());
    EXPECT_TRUE(f->champ(Champ::Nom)->text().isEmpty());
    // The whole window lies in the area, its buttons too, and typing starts
    // at the name.
    QWidget* sw = f->parentWidget();
    EXPECT_TRUE(sw->parentWidget()->rect().contains(sw->geometry()));
    QApplication::processEvents();
    QLineEdit* nom = f->champ(Champ::Nom);
    EXPECT_EQ(QApplication::focusWidget(), nom);
    const std::uint32_t avant = fenetre->logique().base()->Tete().maxPersonne;
    nom->setFocus();
    QTest::keyClicks(nom, "Durand");
    QTest::keyClicks(f->champ(Champ::Prenom), "Lucie");
    QTest::keyClicks(f->champ(Champ::Naiss), "1910");
    QTest::keyClick(f->champ(Champ::Naiss), Qt::Key_Return);
    const std::uint32_t nouveau = fenetre->logique().base()->Tete().maxPersonne;
    ASSERT_EQ(nouveau, avant + 1);
    EXPECT_EQ(fenetre->logique().base()->LitNom(nouveau), "Durand");
    EXPECT_EQ(fenetre->logique().base()->LitPrenom(nouveau), "Lucie");
}

TEST_F(FicheTest, NoteShowsOnTheSheetWithItsBoldAndItalic) {
    Base& b = *fenetre->logique().base();
    const std::string avant = b.LitNote(famille.moi);
    b.EcritNote(famille.moi, avant + "\r\n\r\n{\\rtf1\\ansi Laboureur a {\\b Rouen} puis {\\i meunier}}");
    FrmMisajourQt* f = Ouvre(Commande::MnuModif);
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->note()->toPlainText(), QStringLiteral("Laboureur a Rouen puis meunier"));
    QTextCursor c(f->note()->document());
    c.setPosition(14);
    EXPECT_TRUE(c.charFormat().fontWeight() >= QFont::Bold);
    EXPECT_FALSE(c.charFormat().fontItalic());
    c.setPosition(26);
    EXPECT_TRUE(c.charFormat().fontItalic());
}

// A sheet taller than the area of a small screen keeps every field and
// button of every tab at its height: the area scrolls rather than squeeze it.
TEST_F(FicheTest, NoFieldIsSqueezedOnASmallScreen) {
    fenetre->resize(800, 500);
    FrmMisajourQt* f = Ouvre(Commande::MnuModif);
    ASSERT_NE(f, nullptr);
    auto* onglets = f->findChild<QTabWidget*>();
    ASSERT_NE(onglets, nullptr);
    for (int i = 0; i < onglets->count(); ++i) {
        onglets->setCurrentIndex(i);
        QApplication::processEvents();
        EXPECT_EQ(test::ChampsEcrases(f), std::vector<std::string>{}) << i;
    }
}

TEST_F(FicheTest, CaptureOfTheSheet) {
    const char* dossierCapture = std::getenv("SYLVANE_CAPTURE");
    if (!dossierCapture) GTEST_SKIP() << "SYLVANE_CAPTURE not set";
    FrmMisajourQt* f = Ouvre(Commande::MnuModif);
    ASSERT_NE(f, nullptr);
    QWidget* sw = f->parentWidget();
    sw->resize(900, 680);
    QApplication::processEvents();
    sw->grab().save(QString::fromLocal8Bit(dossierCapture) + "/fiche.png");
    f->logique().SelectionneMariage(0);
    QApplication::processEvents();
}
