// The settings dialog with its real widgets: a colour and a number changed
// and confirmed reach the settings and the store; Enter in a list's entry
// adds to the list without closing the dialog; Cancel leaves everything.
#include "app/fenetre_principale.h"
#include "fenetre_test.h"
#include "app/frm_parametre.h"
#include "store/fichier.h"
#include "text/reglages.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace sylvane;

namespace {

struct ParametreQt : test::FenetreTest {
    std::string chemin;

    void SetUp() override {
        chemin = dossier / "famille.sv2";
        test::EcritPersonnes(chemin, {{"Martin", "Jean", 'H', "1900"}});
        CreeFenetre();
        fenetre->logique().Demarre({chemin});
    }
    template <class W> W* Champ(QWidget* f, const char* nom) {
        auto* w = f->findChild<W*>(QString::fromLatin1(nom));
        EXPECT_NE(w, nullptr) << nom;
        return w;
    }
};

TEST_F(ParametreQt, AColourAndANumberConfirmedReachTheSettings) {
    ASSERT_TRUE(app->BaseOuverte());
    // In a dialog, as the main window shows it.
    QDialog d;
    auto* f = new FrmParametreQt(fenetre->contexte());
    (new QVBoxLayout(&d))->addWidget(f);
    d.show();
    EXPECT_EQ(f->onglets()->count(), 8);
    f->DefinitCouleur(2, QColor(0x11, 0x22, 0x33));
    Champ<QSpinBox>(f, "TxtFrequence")->setValue(7);
    Champ<QSpinBox>(f, "TxtCases3")->setValue(40);
    Champ<QCheckBox>(f, "ChkDegrade")->setChecked(false);
    // A particle added through its entry and flagged for first names.
    auto* particules = f->findChild<QWidget*>(QStringLiteral("LstParticules"));
    ASSERT_NE(particules, nullptr);
    // Enter in the entry adds it and leaves the dialog open.
    auto* entree = particules->findChild<QComboBox*>();
    entree->setEditText(QStringLiteral("ter"));
    QTest::keyClick(entree->lineEdit(), Qt::Key_Return);
    EXPECT_TRUE(d.isVisible());
    Champ<QCheckBox>(f, "ChkParticulePrenom")->setChecked(true);
    Champ<QPushButton>(f, "CmdOk")->click();

    const Parametres& p = app->parametres();
    EXPECT_EQ(p.couleurCadreFemme, 0x332211);
    EXPECT_EQ(p.frequenceSauvegarde, 7);
    EXPECT_EQ(p.nombreCases[2], 40);
    EXPECT_FALSE(p.degrade);
    EXPECT_EQ(p.particules.back().texte, "ter");
    EXPECT_TRUE(p.particules.back().prenom);
    EXPECT_EQ(reglages.lit("Defaut", "Couleur Cadre Femme", ""), std::to_string(0x332211));
    EXPECT_EQ(reglages.lit("Particule", "ter", ""), "1 1");
    // The colours and boxes are kept with the base as well.
    EXPECT_EQ(reglages.lit(app->base().Chemins().base, "Nombre Cases 3", ""), "40");
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(d.result(), QDialog::Accepted);
}

TEST_F(ParametreQt, CancelLeavesTheSettings) {
    auto* f = new FrmParametreQt(fenetre->contexte());
    f->show();
    f->DefinitCouleur(0, Qt::red);
    Champ<QSpinBox>(f, "TxtParente")->setValue(33);
    Champ<QLineEdit>(f, "TxtAuteur")->setText(QStringLiteral("x"));
    Champ<QPushButton>(f, "CmdAnnuler")->click();
    EXPECT_EQ(app->parametres().couleurFond, 16711808);
    EXPECT_EQ(app->parametres().maximumRechercheParente, 10);
    EXPECT_EQ(reglages.lit("Defaut", "Couleur Fond", ""), "16711808");
    delete f;
}

// The eight tabs show side by side at the dialog's opening size, none of
// them hidden behind scroll arrows.
TEST_F(ParametreQt, EveryTabShowsInItsBar) {
    QDialog d;
    auto* f = new FrmParametreQt(fenetre->contexte());
    (new QVBoxLayout(&d))->addWidget(f);
    d.show();
    QApplication::processEvents();
    const QTabBar* barre = f->onglets()->tabBar();
    for (int i = 0; i < barre->count(); ++i)
        EXPECT_TRUE(barre->rect().contains(barre->tabRect(i))) << barre->tabText(i).toStdString();
}

TEST_F(ParametreQt, EveryTabIsFilledFromTheSettings) {
    auto* f = new FrmParametreQt(fenetre->contexte());
    const Parametres& p = app->parametres();
    EXPECT_EQ(Champ<QListWidget>(f, "LstParticulesListe")->count(), static_cast<int>(p.particules.size()));
    EXPECT_EQ(Champ<QListWidget>(f, "LstIconesListe")->count(), static_cast<int>(p.icones.size()));
    EXPECT_EQ(Champ<QListWidget>(f, "LstEvenementsListe")->count(), static_cast<int>(p.temoins.size()));
    EXPECT_EQ(Champ<QListWidget>(f, "LstRolesListe")->count(), static_cast<int>(p.temoins[0].roles.size()));
    EXPECT_EQ(Champ<QListWidget>(f, "LstGraphismeListe")->count(), static_cast<int>(p.graphisme.size()));
    EXPECT_EQ(Champ<QListWidget>(f, "LstTypesDocumentListe")->count(),
              static_cast<int>(p.typesDocument.size()));
    EXPECT_EQ(Champ<QListWidget>(f, "LstAffichageListe")->count(), static_cast<int>(p.affichageNom.size()));
    EXPECT_EQ(Champ<QSpinBox>(f, "TxtCases4")->value(), p.nombreCases[3]);
    // A role's flags follow the role chosen and change it.
    auto* roles = Champ<QListWidget>(f, "LstRolesListe");
    roles->setCurrentRow(0); // "M CHIL" of a birth
    EXPECT_TRUE(Champ<QCheckBox>(f, "ChkObligatoire")->isChecked());
    Champ<QComboBox>(f, "LstSexe")->setCurrentIndex(2);
    EXPECT_EQ(f->logique().etat.p.temoins[0].roles[0], "MFCHIL");
    delete f;
}

} // namespace

namespace {

// With SYLVANE_CAPTURES naming a folder, each tab is saved there as an image
// to be looked at (run under a real display for the system's fonts).
TEST_F(ParametreQt, CapturesOfEveryTab) {
    const char* dossierCaptures = std::getenv("SYLVANE_CAPTURES");
    if (!dossierCaptures) GTEST_SKIP();
    if (const char* langue = std::getenv("SYLVANE_CAPTURES_LANGUE")) fenetre->logique().ChoisitLangue(langue);
    auto* f = new FrmParametreQt(fenetre->contexte());
    f->show();
    QApplication::processEvents();
    for (int i = 0; i < f->onglets()->count(); ++i) {
        f->onglets()->setCurrentIndex(i);
        QApplication::processEvents();
        EXPECT_TRUE(f->grab().save(QStringLiteral("%1/parametres_%2.png").arg(dossierCaptures).arg(i)));
    }
    delete f;
}

} // namespace
