// The statistics and anniversary forms over a small family: the list
// handed by another form, the tabs as tables, the copy, the calendar's
// month and day, a click that moves the current person, and a busy program.
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/frm_listes.h"
#include "ui/frm_stats.h"

#include <gtest/gtest.h>

#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

struct Famille : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;
    std::uint32_t pere, mere, fils;

    void SetUp() override {
        DefinitMessages({{861, "Statistiques"}, {1174, "G\xE9n\xE9ralit\xE9s"}, {1179, "Mois de naissance"},
                         {730, "janvier"}, {732, "mars"}, {4570, "liste de &1 personnes"},
                         {4556, "Hommes"}});
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        Base& b = app.base();
        pere = b.CreePersonne("MARTIN", "Jean", "", 'H', "1850", "12/3", "1910", "1/1");
        mere = b.CreePersonne("DURAND", "Marie", "", 'F', "1855", "12/3");
        fils = b.CreePersonne("MARTIN", "Paul", "", 'H', "1880", "5/1");
        for (auto p : {pere, mere}) b.MajEnfants(p, fils, 'A');
        b.EcritPere(fils, pere);
        b.EcritMere(fils, mere);
        b.CreeMariage(pere, mere, "1878");
    }
    void TearDown() override {
        ParenteTransmise() = {};
        DefinitMessages({});
    }
};

TEST_F(Famille, LesOngletsDeLaBaseEntiereEtDUneListeTransmise) {
    FrmStats st(*f);
    ASSERT_TRUE(st.Calcule());
    EXPECT_FALSE(s.panneau.visible); // the panel goes with the run
    EXPECT_EQ(st.Titre(), "Statistiques");
    EXPECT_EQ(st.Figures().Personnes(), 3u);
    const TableTexte g = st.Table(0);
    ASSERT_EQ(g.lignes.size(), 9u);
    EXPECT_EQ(g.lignes[1], (std::vector<std::string>{"Hommes", "2"}));
    const TableTexte d = st.Table(3);
    ASSERT_EQ(d.lignes.size(), 4u); // 1850 to 1880, the empty decades between kept
    EXPECT_EQ(d.lignes[0][0], "1850/1859 ");
    EXPECT_EQ(d.lignes[0][1], "2");
    EXPECT_EQ(d.lignes[1][1], "0");
    const TableTexte a = st.Table(4);
    EXPECT_EQ(a.lignes[0][1], "60.0");
    EXPECT_EQ(a.lignes[0][4], "30.0"); // father born in the 1850s, son at 30
    EXPECT_EQ(a.lignes[3][1], "  ");
    EXPECT_EQ(st.Barres(5)[2], 2u);
    EXPECT_EQ(st.Barres(5)[0], 1u);
    st.onglet = 5;
    const std::string copie = st.TexteCopie();
    EXPECT_EQ(copie.rfind("Mois de naissance\r\n", 0), 0u);
    EXPECT_NE(copie.find("mars\t2\r\n"), std::string::npos);

    // A list handed by a search: its persons only, and its name in the title.
    ParenteTransmise().liste = Pack4(fils) + Pack4(mere);
    FrmStats l(*f);
    EXPECT_TRUE(ParenteTransmise().liste.empty());
    ASSERT_TRUE(l.Calcule());
    EXPECT_EQ(l.Figures().Personnes(), 2u);
    EXPECT_EQ(l.Titre(), "Statistiques - liste de 2 personnes");
    // The son's father is outside the list: his age still counts.
    EXPECT_EQ(l.Figures().decennies[185].agePere.nombre, 1u);
}

TEST_F(Famille, SansBaseOuOccupeRienNeSeCalcule) {
    FrmStats st(*f);
    s.panneau.visible = true; // another operation runs
    EXPECT_FALSE(st.Calcule());
    s.panneau.visible = false;
    app.FermeBase();
    EXPECT_FALSE(st.Calcule());
    EXPECT_TRUE(st.Table(0).lignes.empty());
}

TEST_F(Famille, LeCalendrierUnMoisEtUnJour) {
    FrmAnniv a(*f);
    a.mois = 3;
    ASSERT_TRUE(a.Charge());
    const auto semaines = a.Semaines();
    ASSERT_EQ(semaines.size(), 5u); // 31 days, seven a row
    EXPECT_EQ(semaines[1][4], 12);
    EXPECT_EQ(semaines[4][2], 31);
    EXPECT_EQ(semaines[4][3], 0);
    EXPECT_EQ(a.NombreDuJour(12), 2u);
    ASSERT_TRUE(a.Choisit(12));
    EXPECT_EQ(a.LibelleJour(), "12 mars");
    ASSERT_EQ(a.Listes().naissances.size(), 2u);
    a.Active(a.Listes().naissances[1]);
    EXPECT_EQ(app.personneEnCours(), mere);
    EXPECT_FALSE(a.Choisit(32));
    a.mois = 2;
    EXPECT_TRUE(a.Choisit(29)); // the leap day has its slot
    a.mois = 12;
    a.MoisSuivant();
    EXPECT_EQ(a.mois, 1);
    EXPECT_EQ(a.NombreDuJour(1), 1u); // the father's death
    a.MoisPrecedent();
    EXPECT_EQ(a.mois, 12);

    // A stop keeps what was read.
    s.panneau.arretApres = 0;
    EXPECT_TRUE(a.Charge());
    EXPECT_FALSE(a.Cal().Complet());
}

} // namespace
