// The main window's logic without a display: the guards of its commands,
// the tool bar of the "Icones" setting, navigation through the sort table,
// the shifts of the family view, and opening what the command line names.
#include "store/fichier_memoire.h"
#include "support/services_faux.h"
#include "ui/mdiform1.h"

#include <gtest/gtest.h>

using namespace sylvane;
using test::ServicesFaux;

namespace {

struct VueEspion : VueMDI {
    int personnes = 0, etats = 0, langues = 0, vues = 0, quitte = 0;
    void PersonneChangee() override { ++personnes; }
    void EtatChange() override { ++etats; }
    void LangueChangee() override { ++langues; }
    void VueChangee() override { ++vues; }
    void Quitte() override { ++quitte; }
    void Arrange() override {}
};

struct Fenetre : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire r;
    Application app{fs, r, "/prog"};
    ServicesFaux s;
    VueEspion vue;
    MDIForm1 f{app, s.ui()};

    void SetUp() override {
        f.DefinitVue(&vue);
        f.Demarre();
    }
    void TearDown() override { f.Termine(); }

    // A base of three persons, in the sort order of a new base (birth year
    // first): Martin 1900, Dupont 1902, Bernard 1930.
    void TroisPersonnes() {
        s.fichiers.chemins.push_back(std::string("/d/trois.sv2"));
        ASSERT_TRUE(f.Execute(Commande::MnuNouveau));
        Base& b = *f.base();
        b.CreePersonne("Martin", "Jean", "", 'H', "1900");
        b.CreePersonne("Dupont", "Anne", "", 'F', "1902");
        b.CreePersonne("Bernard", "Paul", "", 'H', "1930");
    }
};

} // namespace

TEST_F(Fenetre, EveryCommandRefusesWith503WhileAnOperationRuns) {
    TroisPersonnes();
    f.Aller(1);
    s.panneau.visible = true;
    for (Commande c : {Commande::MnuSuivant, Commande::MnuOuvrir, Commande::MnuFermer,
                       Commande::MnuGauche, Commande::MnuParametres}) {
        s.boites.informations.clear();
        EXPECT_FALSE(f.Execute(c));
        EXPECT_EQ(s.boites.informations, std::vector<int>{503});
    }
    EXPECT_FALSE(f.DemandeFermeture());
    EXPECT_EQ(f.PersonneEnCours(), 1u);
    EXPECT_TRUE(f.base() != nullptr);
    // The timer does not save in the middle of the operation either.
    f.Minuterie1();
    s.panneau.visible = false;
}

TEST_F(Fenetre, EntriesNeedABaseOrTheirForm) {
    EXPECT_FALSE(f.Active(Commande::MnuSuivant));
    EXPECT_FALSE(f.Execute(Commande::MnuSuivant));
    EXPECT_TRUE(f.Active(Commande::MnuOuvrir));
    s.fenetres.disponibles = {"FrmDebut"};
    EXPECT_FALSE(f.Active(Commande::MnuParametres)); // its form is not in this program
    EXPECT_FALSE(f.Execute(Commande::MnuParametres));
    s.fenetres.disponibles.clear();
    EXPECT_TRUE(f.Execute(Commande::MnuParametres));
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmParametre"));
}

TEST(BarreOutils, FollowsTheIconesSetting) {
    const auto barre = BarreOutils({0, 6, 8, 7, 99, 10, 35, 36, -5});
    ASSERT_EQ(barre.size(), 7u);
    EXPECT_EQ(barre[0].cle, "Historique"); // always first, as a drop-down
    EXPECT_TRUE(barre[0].deroulant);
    EXPECT_EQ(barre[1].cle, "Ouvrir");     // below 7: that number plus 2
    EXPECT_EQ(barre[2].commande, Commande::MnuRechCouple);
    EXPECT_EQ(barre[3].commande, Commande::MnuRechCouple); // 6 and 8 alike, 7 nothing
    EXPECT_EQ(barre[4].outil, 0);                          // 99: a separator
    EXPECT_EQ(barre[5].cle, "Quitter");                    // 10
    EXPECT_EQ(barre[6].commande, Commande::MnuReorganiser); // 35; 36 and -5 are none
    // The default setting gives 25 entries and the history button.
    EXPECT_EQ(BarreOutils(Parametres{}.icones).size(), 26u);
}

TEST_F(Fenetre, PreviousAndNextWalkTheSortTableWithoutWrapping) {
    TroisPersonnes();
    f.Aller(1); // Martin, first
    EXPECT_TRUE(f.Execute(Commande::MnuPrecedent));
    EXPECT_EQ(f.PersonneEnCours(), 1u);
    f.Execute(Commande::MnuSuivant);
    EXPECT_EQ(f.PersonneEnCours(), 2u);
    f.Execute(Commande::MnuSuivant);
    EXPECT_EQ(f.PersonneEnCours(), 3u);
    f.Execute(Commande::MnuSuivant); // Bernard is last
    EXPECT_EQ(f.PersonneEnCours(), 3u);
    // A person missing from the table stands at its end: previous goes to
    // the last name but one, next does nothing.
    f.Aller(99);
    f.Execute(Commande::MnuSuivant);
    EXPECT_EQ(f.PersonneEnCours(), 99u);
    f.Execute(Commande::MnuPrecedent);
    EXPECT_EQ(f.PersonneEnCours(), 2u);
}

TEST_F(Fenetre, ShiftsMoveGenerationsAndStopAtZero) {
    TroisPersonnes();
    f.Execute(Commande::MnuNiveau2);
    EXPECT_EQ(f.porteeGauche, 4);
    EXPECT_EQ(f.porteeDroite, 2);
    f.Execute(Commande::MnuGauche);
    f.Execute(Commande::MnuGauche);
    EXPECT_EQ(f.porteeGauche, 0);
    EXPECT_EQ(f.porteeDroite, 4);
    const int vues = vue.vues;
    f.Execute(Commande::MnuGauche); // nothing left to shift
    EXPECT_EQ(f.porteeGauche, 0);
    EXPECT_EQ(vue.vues, vues);
    f.Execute(Commande::MnuDroite);
    EXPECT_EQ(f.porteeGauche, 2);
    EXPECT_EQ(f.porteeDroite, 3);
    // A shift the view cannot hold is undone once.
    f.AnnuleDecalage();
    EXPECT_EQ(f.porteeGauche, 0);
    EXPECT_EQ(f.porteeDroite, 4);
    f.AnnuleDecalage();
    EXPECT_EQ(f.porteeGauche, 0);
    f.Execute(Commande::MnuNiveau4);
    EXPECT_EQ(f.porteeGauche, 8);
    EXPECT_EQ(f.porteeDroite, 4);
    f.Execute(Commande::MnuDiminuer);
    EXPECT_LT(f.echelle, 1.0);
}

TEST_F(Fenetre, APendingSheetIsSettledBeforeLeavingIt) {
    TroisPersonnes();
    int validations = 0;
    f.valideFiche = [&] { ++validations; };
    f.fichePendante = true;
    s.boites.reponses = {Reponse::Non};
    s.selecteur.reponses = {2};
    f.Execute(Commande::MnuListe);
    EXPECT_EQ(s.boites.questions, std::vector<int>{847});
    EXPECT_EQ(validations, 0);
    EXPECT_FALSE(f.fichePendante);
    EXPECT_EQ(f.PersonneEnCours(), 2u);
    f.fichePendante = true;
    s.boites.reponses = {Reponse::Oui};
    f.Execute(Commande::MnuNouvInd);
    EXPECT_EQ(validations, 1);
    EXPECT_EQ(f.personneFiche, 0u);
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmMisajour"));
}

TEST_F(Fenetre, ClosingAsksMessage21) {
    s.boites.reponses = {Reponse::Non, Reponse::Oui};
    EXPECT_FALSE(f.DemandeFermeture());
    EXPECT_TRUE(f.DemandeFermeture());
    EXPECT_EQ(s.boites.questions, (std::vector<int>{21, 21}));
    f.Execute(Commande::MnuQuitter);
    EXPECT_EQ(vue.quitte, 1);
}

TEST_F(Fenetre, DeCujusComesFromThePickerAndGoToAsksForOneWhenUnset) {
    TroisPersonnes();
    f.Aller(2);
    s.selecteur.reponses = {0};
    f.Execute(Commande::MnuAller1_1); // cancelled picker: nothing moves
    EXPECT_EQ(f.PersonneEnCours(), 2u);
    EXPECT_EQ(s.selecteur.departs, std::vector<std::uint32_t>{2});
    s.selecteur.reponses = {1};
    f.Execute(Commande::MnuAller1_1);
    EXPECT_EQ(f.PersonneEnCours(), 1u);
    EXPECT_EQ(app.numeros().deCujus1.deCujus, 1u);
    EXPECT_NE(f.PanneauDeCujus(1).find("Martin"), std::string::npos);
    EXPECT_EQ(f.PanneauDeCujus(2), "");
    // Setting a De Cujus does not move the current person; the picker opens
    // on the present De Cujus.
    f.Aller(3);
    s.selecteur.reponses = {2};
    f.Execute(Commande::MnuDeCujus1);
    EXPECT_EQ(s.selecteur.departs.back(), 1u);
    EXPECT_EQ(f.PersonneEnCours(), 3u);
    EXPECT_EQ(app.numeros().deCujus1.deCujus, 2u);
}

TEST_F(Fenetre, TheCommandLineOpensBasesAndImportsOnlyWhatExists) {
    TroisPersonnes();
    f.Execute(Commande::MnuFermer);
    EXPECT_EQ(f.base(), nullptr);
    EXPECT_FALSE(f.OuvreFichier("/d/absente.sv2"));
    EXPECT_FALSE(f.OuvreFichier("/d/trois.txt"));
    EXPECT_TRUE(f.OuvreFichier("/d/trois.SV2") || f.OuvreFichier("/d/trois.sv2"));
    ASSERT_NE(f.base(), nullptr);
    EXPECT_EQ(f.base()->TablePersonnes().taille(), 3u);
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmDebut"));
    EXPECT_NE(f.Titre().find("trois.sv2"), std::string::npos);
}

TEST_F(Fenetre, ARecentBaseThatIsGoneIsReportedAndStaysListed) {
    TroisPersonnes();
    f.Execute(Commande::MnuFermer);
    ASSERT_EQ(f.Historique().front(), "/d/trois.sv2");
    fs.supprimer("/d/trois.sv2");
    EXPECT_FALSE(f.OuvreHistorique(0));
    EXPECT_EQ(s.boites.informations, std::vector<int>{3100});
    EXPECT_EQ(f.Historique().front(), "/d/trois.sv2");
    EXPECT_EQ(f.base(), nullptr);
}

TEST_F(Fenetre, ACancelledDialogChangesNothing) {
    TroisPersonnes();
    f.Aller(2);
    EXPECT_TRUE(f.Execute(Commande::MnuOuvrir)); // the fake dialog cancels
    ASSERT_NE(f.base(), nullptr);
    EXPECT_EQ(f.PersonneEnCours(), 2u);
    EXPECT_EQ(f.base()->Chemins().base, "/d/trois.sv2");
}
