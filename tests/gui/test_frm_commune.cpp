// The communes window as the user drives it: a head word typed, a commune
// chosen from its word, a comment kept, a commune added through its
// dialog, the file written anew; a place field that offers the communes
// and takes one from the window (F4). With SYLVANE_CAPTURE set to a
// folder, also writes pictures of the window.
#include "app/frm_commune.h"
#include "exchange/communes.h"
#include "fenetre_test.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace sylvane;

namespace {

struct FrmCommuneTest : test::FenetreTest {
    std::string svx;

    void SetUp() override {
        const std::string chemin = dossier / "famille.sv2";
        test::EcritFamille(chemin);
        svx = dossier / "France.svx";
        FichierCommunes::Cree(systemeReel(), svx,
                              {{"Saint-Jean-de-Luz", "64483", "", "", "", "64500", "Port de p\xEA" "che", 14000, 1905},
                               {"Ciboure", "64189", "", "Saint-Jean-de-Luz", "64483", "64500", "", 6500, 796},
                               {"Saint-Jean-Pied-de-Port", "64485", "", "", "", "64220", "", 1500, 297},
                               {"Pyr\xE9n\xE9" "es-Atlantiques (64)", "64", "", "", "", "", "", 0, 0},
                               {"Urrugne (64)", "64545", "", "", "", "64122/64700", "", 10000, 5000}});
        OuvreFenetre(chemin);
        fenetre->logique().app().parametres().fichierCommunes = svx;
    }
    FrmCommuneQt* Ouvre() {
        EXPECT_TRUE(fenetre->logique().Execute(Commande::MnuCommune));
        QApplication::processEvents();
        return qobject_cast<FrmCommuneQt*>(fenetre->Formulaire("FrmCommune"));
    }
    void Capture(QWidget* w, const char* nom) {
        const char* d = std::getenv("SYLVANE_CAPTURE");
        if (!d) return;
        QApplication::processEvents();
        w->window()->grab().save(QString(d) + "/" + nom + ".png");
    }
};

} // namespace

TEST_F(FrmCommuneTest, AHeadWordLeadsToACommuneWhoseCommentIsKept) {
    ASSERT_TRUE(fenetre->Action(Commande::MnuCommune)->isEnabled());
    FrmCommuneQt* w = Ouvre();
    ASSERT_NE(w, nullptr);
    QTest::keyClicks(w->index(), QStringLiteral("jEAN"));
    EXPECT_EQ(w->index()->text(), QStringLiteral("Jean"));
    ASSERT_NE(w->mots()->currentItem(), nullptr);
    EXPECT_EQ(w->mots()->currentItem()->text(), QStringLiteral("Jean"));
    ASSERT_EQ(w->communes()->count(), 2);
    w->communes()->setCurrentRow(0);
    EXPECT_EQ(w->commune()->text(), QStringLiteral("Saint-Jean-de-Luz"));
    EXPECT_EQ(w->numero()->text(), QStringLiteral("64483"));
    EXPECT_EQ(w->population()->text(), QStringLiteral("14000"));
    EXPECT_EQ(w->commentaire()->toPlainText(), QStringLiteral("Port de p\u00EAche"));
    EXPECT_FALSE(w->enregistrer()->isEnabled());
    EXPECT_FALSE(w->prendre()->isVisible()) << "no field to take it";

    // Ciboure, found by its name typed; its main commune and its postcodes.
    w->commune()->setFocus();
    w->commune()->selectAll();
    QTest::keyClicks(w->commune(), QStringLiteral("ciboure"));
    QTest::keyClick(w->commune(), Qt::Key_Return);
    EXPECT_EQ(w->commune()->text(), QStringLiteral("Ciboure"));
    EXPECT_EQ(w->findChild<QLineEdit*>(QStringLiteral("TxtComReg"))->text(),
              QStringLiteral("Saint-Jean-de-Luz (64483)"));
    w->commentaire()->setFocus();
    QTest::keyClicks(w->commentaire(), QStringLiteral("Rive gauche"));
    ASSERT_TRUE(w->enregistrer()->isEnabled());
    w->enregistrer()->click();
    EXPECT_EQ(FichierCommunes(systemeReel(), svx).Lit(2).commentaire, "Rive gauche");

    // Urrugne's department comes from the text in parentheses.
    w->index()->selectAll();
    QTest::keyClicks(w->index(), QStringLiteral("urrugne"));
    ASSERT_EQ(w->communes()->count(), 1);
    w->communes()->setCurrentRow(0);
    EXPECT_EQ(w->codesPostaux()->text(), QStringLiteral("64122 64700"));
    EXPECT_EQ(w->departement()->text(), QStringLiteral("Pyr\u00E9n\u00E9es-Atlantiques (64)"));
    w->index()->setText(QStringLiteral("Jean"));
    w->AllerMot(QStringLiteral("Jean"));
    w->communes()->setCurrentRow(0);
    w->window()->resize(980, 520);
    Capture(w, "communes");
}

TEST_F(FrmCommuneTest, ACommuneIsAddedThenTheFileIsWrittenAnew) {
    FrmCommuneQt* w = Ouvre();
    ASSERT_NE(w, nullptr);
    QTimer::singleShot(0, [] {
        QWidget* d = QApplication::activeModalWidget();
        ASSERT_NE(d, nullptr);
        auto* nom = d->findChild<QLineEdit*>(QStringLiteral("TxtNom"));
        ASSERT_NE(nom, nullptr);
        QTest::keyClicks(nom, QStringLiteral("Hendaye"));
        QTest::keyClick(nom, Qt::Key_Return);
    });
    w->ajouter()->click();
    EXPECT_EQ(w->commune()->text(), QStringLiteral("Hendaye"));
    EXPECT_EQ(w->mots()->currentItem()->text(), QStringLiteral("Hendaye"));
    EXPECT_TRUE(w->retirer()->isEnabled());
    w->reorganiser()->click();
    EXPECT_FALSE(fenetre->logique().services().panneau.Visible());
    FichierCommunes f(systemeReel(), svx);
    EXPECT_EQ(f.Nombre(), 6u);
    EXPECT_EQ(f.Lit(6).nom, "Hendaye");
    EXPECT_EQ(w->commune()->text(), QStringLiteral("Hendaye"));
}

TEST_F(FrmCommuneTest, APlaceFieldOffersTheCommunesAndTakesOneFromTheWindow) {
    // A form that validates on Enter, as the sheet does.
    QWidget forme;
    QLineEdit champ(&forme);
    int validations = 0;
    auto* entree = new QShortcut(QKeySequence(Qt::Key_Return), &forme);
    entree->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(entree, &QShortcut::activated, [&] { ++validations; });
    QStringList tapes;
    QObject::connect(&champ, &QLineEdit::textEdited, [&](const QString& t) { tapes << t; });
    AideLieu(fenetre->contexte(), &champ);
    forme.show();
    QApplication::setActiveWindow(&forme);
    champ.setFocus();
    QTest::keyClicks(&champ, QStringLiteral("saint-j"));
    QCompleter* c = champ.completer();
    ASSERT_NE(c, nullptr);
    ASSERT_EQ(c->model()->rowCount(), 2);
    EXPECT_EQ(c->model()->index(0, 0).data().toString(), QStringLiteral("Saint-Jean-de-Luz"));
    ASSERT_TRUE(c->popup()->isVisible());
    QTest::keyClick(c->popup(), Qt::Key_Down);
    QTest::keyClick(c->popup(), Qt::Key_Down);
    EXPECT_EQ(champ.text(), QStringLiteral("Saint-Jean-Pied-de-Port"));
    EXPECT_EQ(c->model()->rowCount(), 2) << "the list stays while a name is highlighted";
    QTest::keyClick(c->popup(), Qt::Key_Return);
    EXPECT_FALSE(c->popup()->isVisible());
    EXPECT_EQ(validations, 0) << "Enter took the name, it did not validate the form";
    EXPECT_EQ(champ.text(), QStringLiteral("Saint-Jean-Pied-de-Port"));
    EXPECT_EQ(tapes.back(), champ.text()) << "the field's form is told as if typed";

    // F4: the window as a dialog on the typed word; Enter on a commune takes it.
    champ.setText(QStringLiteral("Ciboure"));
    QTimer::singleShot(0, [] {
        QWidget* d = QApplication::activeModalWidget();
        ASSERT_NE(d, nullptr);
        // Whatever happens, the dialog does not outlive the test.
        QTimer::singleShot(3000, d, [d] { d->close(); });
        auto* w = d->findChild<FrmCommuneQt*>();
        ASSERT_NE(w, nullptr);
        EXPECT_TRUE(w->prendre()->isVisible());
        EXPECT_TRUE(w->prendre()->isEnabled()) << "the typed name is a commune, shown at once";
        EXPECT_EQ(w->numero()->text(), QStringLiteral("64189"));
        EXPECT_EQ(w->mots()->currentItem()->text(), QStringLiteral("Ciboure"));
        QApplication::setActiveWindow(d);
        w->communes()->setFocus();
        w->communes()->setCurrentRow(0);
        QTest::keyClick(w->communes(), Qt::Key_Return);
    });
    champ.setFocus();
    QTest::keyClick(&champ, Qt::Key_F4);
    EXPECT_EQ(champ.text(), QStringLiteral("Ciboure"));
    EXPECT_EQ(tapes.back(), QStringLiteral("Ciboure"));
}
