// The register forms without a display: the file and the base it becomes,
// the question before a base is replaced, the guards, a line that stops the
// capture, a refused file and the stop button.
#include "store/fichier_memoire.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/commandes_communes.h"
#include "ui/frm_releve.h"

#include <gtest/gtest.h>

#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

struct Formulaire : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;

    void SetUp() override {
        app.Demarre();
        f = std::make_unique<MDIForm1>(app, s.ui());
    }
    std::string Registre(int lignes) {
        std::string t = "Jour;Annee;Lieu;Nom;Prenom\n";
        for (int i = 1; i <= lignes; ++i) t += "1/1;1800;Caen;MARTIN;P" + std::to_string(i) + "\n";
        return t;
    }
};

TEST_F(Formulaire, LaBaseDuRegistreEstCreeeEtOuverte) {
    ecrireTout(fs, "/d/bap.csv", Registre(3));
    FrmReleve r(*f, GenreReleve::Bapteme);
    EXPECT_EQ(r.Titre(), 4306);
    EXPECT_EQ(r.Colonnes().size(), 15u);
    EXPECT_FALSE(r.PeutImporter());
    s.fichiers.chemins.push_back("/d/bap.csv");
    ASSERT_TRUE(r.ChoisitFichier());
    EXPECT_EQ(s.fichiers.titres, std::vector<int>{539});
    EXPECT_EQ(r.Cible(), "/d/bap.sv2");
    ASSERT_TRUE(r.Importe());
    ASSERT_TRUE(app.BaseOuverte());
    EXPECT_EQ(app.base().Chemins().base, "/d/bap.sv2");
    EXPECT_EQ(app.base().Tete().nbPersonnes, 3u);
    EXPECT_NE(r.Rapport().find("3 actes"), std::string::npos);
    EXPECT_TRUE(s.boites.informations.empty());
    EXPECT_FALSE(s.panneau.visible);
    EXPECT_EQ(app.parametres().affichageNom, (std::vector<std::string>{"FNAM", "OFNM", "BIRN"}));
}

TEST_F(Formulaire, UneBaseQuiExisteNestRemplaceeQueSurOui) {
    ecrireTout(fs, "/d/bap.csv", Registre(2));
    FrmReleve r(*f, GenreReleve::Bapteme);
    r.DefinitFichier("/d/bap.csv");
    ASSERT_TRUE(r.Importe()); // the base is now open
    ecrireTout(fs, "/d/bap.csv", Registre(5));
    EXPECT_FALSE(r.Importe());
    EXPECT_EQ(s.boites.questions, std::vector<int>{kMessageLibre});
    EXPECT_EQ(app.base().Tete().nbPersonnes, 2u);
    // Yes: the open base is closed, replaced, and the new one opened.
    s.boites.reponses.push_back(Reponse::Oui);
    ASSERT_TRUE(r.Importe());
    EXPECT_EQ(app.base().Tete().nbPersonnes, 5u);
    // Another target chosen in the dialog.
    s.fichiers.chemins.push_back("/e/autre");
    ASSERT_TRUE(r.ChoisitCible());
    EXPECT_EQ(r.Cible(), "/e/autre.sv2");
}

TEST_F(Formulaire, GardesLigneFautiveFichierRefuseEtArret) {
    FrmReleve r(*f, GenreReleve::Mariage);
    // Nothing chosen, or a long operation running: nothing happens.
    EXPECT_FALSE(r.Importe());
    ecrireTout(fs, "/d/m.csv", "1/1;1800;Caen;A;B;20;;;;;C;D\nsans separateur\n");
    r.DefinitFichier("/d/m.csv");
    s.panneau.visible = true;
    EXPECT_FALSE(r.Importe());
    EXPECT_EQ(s.boites.informations, std::vector<int>{503});
    s.panneau.visible = false;
    // A line with no separator: 979, the act before it kept, the base open.
    s.boites.informations.clear();
    ASSERT_TRUE(r.Importe());
    EXPECT_EQ(s.boites.informations, std::vector<int>{MessageSansSeparateur});
    EXPECT_EQ(app.base().Tete().nbEvenements, 1u);
    // A binary file: its message, and no base left behind.
    s.boites.informations.clear();
    ecrireTout(fs, "/d/x.csv", std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16));
    FrmReleve x(*f, GenreReleve::Sepulture);
    x.DefinitFichier("/d/x.csv");
    EXPECT_FALSE(x.Importe());
    EXPECT_EQ(s.boites.informations, std::vector<int>{MessageFichierBinaire});
    EXPECT_FALSE(fs.existe("/d/x.sv2"));
    EXPECT_FALSE(fs.existe(CheminTemporaire("/d/x.sv2")));
    // The stop button: the lines read stay, and the user is told.
    s.boites.informations.clear();
    ecrireTout(fs, "/d/long.csv", Registre(500));
    FrmReleve l(*f, GenreReleve::Bapteme);
    l.DefinitFichier("/d/long.csv");
    s.panneau.arretApres = 1;
    ASSERT_TRUE(l.Importe());
    EXPECT_EQ(s.boites.informations, std::vector<int>{kReleveArrete});
    EXPECT_GT(app.base().Tete().nbPersonnes, 0u);
    EXPECT_LT(app.base().Tete().nbPersonnes, 500u);
}

} // namespace
