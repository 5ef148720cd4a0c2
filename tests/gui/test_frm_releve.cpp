// The register forms in the real window: each menu entry opens its form,
// the captions come from the messages, and a capture typed in the fields
// opens the new base in the window.
#include "app/frm_releve.h"
#include "fenetre_test.h"

#include <QAction>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace sylvane;

namespace {

struct FrmReleveTest : test::FenetreTest {
    FrmReleveQt* Ouvre(Commande c, const char* nom) {
        EXPECT_TRUE(fenetre->Action(c)->isEnabled());
        fenetre->Action(c)->trigger();
        return qobject_cast<FrmReleveQt*>(fenetre->Formulaire(nom));
    }
};

TEST_F(FrmReleveTest, ChaqueEntreeOuvreSonFormulaire) {
    test::EcritFamille(dossier / "famille.sv2");
    OuvreFenetre(dossier / "famille.sv2");
    const std::pair<Commande, const char*> entrees[] = {
        {Commande::MnuReleveMariage, "FrmReleveMariage"},
        {Commande::MnuBapteme, "FrmReleveBapteme"},
        {Commande::MnuSepulture, "FrmReleveSepulture"},
        {Commande::MnuReleveAscendance, "FrmReleveAscendance"}};
    for (const auto& [c, nom] : entrees) {
        FrmReleveQt* f = Ouvre(c, nom);
        ASSERT_NE(f, nullptr) << nom;
        EXPECT_FALSE(f->windowTitle().isEmpty());
        EXPECT_FALSE(f->importer()->isEnabled());
        EXPECT_FALSE(f->importer()->text().isEmpty());
    }
}

TEST_F(FrmReleveTest, UneCaptureOuvreLaNouvelleBase) {
    test::EcritFamille(dossier / "famille.sv2");
    OuvreFenetre(dossier / "famille.sv2");
    test::EcritFichier(dossier / "bapt.csv",
                       "Jour;Annee;Lieu;Nom;Prenom\r\n12/01;1788;Ciboure;DUBOIS;Jean;H;DUBOIS;Pierre\r\n");
    FrmReleveQt* f = Ouvre(Commande::MnuBapteme, "FrmReleveBapteme");
    ASSERT_NE(f, nullptr);
    f->fichier()->setText(QString::fromStdString(dossier / "bapt.csv"));
    Q_EMIT f->fichier()->editingFinished(); // leaving the field proposes the base
    EXPECT_EQ(f->cible()->text().toStdString(), dossier / "bapt.sv2");
    EXPECT_TRUE(f->importer()->isEnabled());
    QTest::mouseClick(f->importer(), Qt::LeftButton);
    ASSERT_TRUE(fenetre->logique().base());
    EXPECT_EQ(fenetre->logique().base()->Tete().nbPersonnes, 2u);
    EXPECT_EQ(fenetre->logique().base()->Chemins().titre, "bapt");
}

} // namespace
