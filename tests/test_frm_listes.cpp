// The ascendant and descendant list forms over small families: the rows and
// their numbers in each order, implex, the starting person and how it is
// handed between the forms, the progress panel and its stop button.
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/frm_listes.h"

#include <gtest/gtest.h>

#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

// Opens the form named on `Ouvre`, as the main window does.
struct FenetresQuiOuvrent : test::FenetresFausses {
    MDIForm1* f = nullptr;
    std::vector<std::unique_ptr<FrmListe>> formes;
    void Ouvre(const std::string& nom) override {
        if (!EstOuverte(nom) && (nom == "FrmAscendants" || nom == "FrmDescendants")) {
            formes.push_back(std::make_unique<FrmListe>(
                *f, nom == "FrmAscendants" ? GenreListe::Ascendants : GenreListe::Descendants));
            formes.back()->MetAJour();
        }
        FenetresFausses::Ouvre(nom);
    }
};

struct Vue : VueListe {
    int fois = 0;
    void ListeChangee() override { ++fois; }
};

// Two cousins married: A and B are the great-grandparents of I twice.
//   A x B -> C (1900), D (1902);  C x E -> F;  G x D -> H;  F x H -> I
struct Famille : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    FenetresQuiOuvrent fenetres;
    std::unique_ptr<MDIForm1> f;
    std::uint32_t A, B, C, D, E, F, G, H, I;

    void SetUp() override {
        DefinitMessages({{575, "Ascendants de &1"}, {768, "Descendants de &1"}, {3522, "Sosa"}});
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(
            app, ServicesUi{s.boites, s.fichiers, s.panneau, fenetres, s.selecteur});
        fenetres.f = f.get();
        A = Personne("Aubert", "Adrien", 'H', "1850");
        B = Personne("Bernard", "Berthe", 'F', "1852");
        C = Enfant(A, B, "Aubert", "Charles", 'H', "1900");
        D = Enfant(A, B, "Aubert", "Denise", 'F', "1902");
        E = Personne("Etienne", "Emma", 'F', "1901");
        F = Enfant(C, E, "Aubert", "Fernand", 'H', "1925");
        G = Personne("Girard", "Gaston", 'H', "1898");
        H = Enfant(G, D, "Girard", "Helene", 'F', "1927");
        I = Enfant(F, H, "Aubert", "Irene", 'F', "1950");
        app.definitPersonneEnCours(I);
    }
    void TearDown() override { DefinitMessages({}); }

    Base& b() { return app.base(); }
    std::uint32_t Personne(const char* nom, const char* prenom, char sexe, const char* an) {
        return b().CreePersonne(nom, prenom, "", sexe, an);
    }
    std::uint32_t Enfant(std::uint32_t pere, std::uint32_t mere, const char* nom,
                         const char* prenom, char sexe, const char* an) {
        if (b().Mariages(pere).empty() ||
            std::find(b().Mariages(mere).begin(), b().Mariages(mere).end(),
                      b().Mariages(pere).front()) == b().Mariages(mere).end()) {
            b().CreeMariage(pere, mere);
        }
        const std::uint32_t c = Personne(nom, prenom, sexe, an);
        b().EcritPere(c, pere);
        b().MajEnfants(pere, c, 'A');
        b().EcritMere(c, mere);
        b().MajEnfants(mere, c, 'A');
        return c;
    }
    static std::vector<std::uint32_t> Personnes(const FrmListe& l) {
        std::vector<std::uint32_t> r;
        for (const auto& x : l.Lignes())
            r.push_back(x.personne);
        return r;
    }
    static std::vector<std::string> Colonne(const FrmListe& l, int c) {
        std::vector<std::string> r;
        for (const auto& x : l.Lignes())
            r.push_back(x.cellules.at(static_cast<std::size_t>(c - 1)));
        return r;
    }
};

using V = std::vector<std::uint32_t>;
using T = std::vector<std::string>;

TEST_F(Famille, AscendantsInEachOrderWithImplexInTheSosaCell) {
    FrmListe l(*f, GenreListe::Ascendants);
    Vue vue;
    l.DefinitVue(&vue);
    EXPECT_EQ(l.Depart(), I);
    EXPECT_TRUE(l.MetAJour());
    EXPECT_EQ(vue.fois, 1);
    EXPECT_EQ(l.Titre(), "Ascendants de Irene Aubert");
    EXPECT_EQ(l.Entete(0), "");
    EXPECT_EQ(l.Entete(2), "Sosa");
    // The walk: father's branch first; A and B once, with both their numbers.
    EXPECT_EQ(Personnes(l), (V{I, F, C, A, B, E, H, G, D}));
    EXPECT_EQ(Colonne(l, 1), (T{"1", "2", "3", "4", "4", "3", "2", "3", "3"}));
    EXPECT_EQ(Colonne(l, 2), (T{"1", "2", "4", "8-14", "9-15", "5", "3", "6", "7"}));
    EXPECT_EQ(Colonne(l, 3), (T{"1", "1", "1", "2", "2", "1", "1", "1", "1"}));
    EXPECT_EQ(Colonne(l, 4), (T{"0", "1", "1", "1", "1", "1", "1", "1", "1"}));
    EXPECT_EQ(l.Lignes()[3].cellules[4], "Adrien Aubert");
    EXPECT_EQ(l.Lignes()[3].cellules[5], "(o1850)");
    // The panel was up during the run, and is down after it.
    EXPECT_FALSE(s.panneau.textes.empty());
    EXPECT_FALSE(s.panneau.visible);
    // Not built again while nothing changed.
    EXPECT_FALSE(l.MetAJour());

    EXPECT_TRUE(l.ChangePresentation(TriGeneration));
    EXPECT_EQ(Personnes(l), (V{I, F, H, C, E, G, D, A, B}));
    EXPECT_TRUE(l.ChangePresentation(TriNaissance));
    EXPECT_EQ(Personnes(l), (V{A, B, G, C, E, D, F, H, I}));
    EXPECT_TRUE(l.ChangePresentation(TriNom));
    EXPECT_EQ(Personnes(l), (V{A, C, D, F, I, B, E, G, H}));
    EXPECT_FALSE(l.ChangePresentation(7));
    EXPECT_EQ(l.Presentation(), TriNom);

    EXPECT_TRUE(l.ChangeNiveaux(2));
    EXPECT_EQ(Personnes(l), (V{F, I, H}));
    // Out of range: held to the bounds.
    l.ChangeNiveaux(0);
    EXPECT_EQ(l.Niveaux(), 1);
    EXPECT_EQ(Personnes(l), V{I});
    l.ChangeNiveaux(500);
    EXPECT_EQ(l.Niveaux(), FrmListe::kNiveauxMax);
}

TEST_F(Famille, DescendantsShowTheirNumbersAndBothPathsOfACousinMarriage) {
    // Eleven more children of A and B: the eleventh of all is numbered
    // "11" and the separator of child 10 and beyond draws as "-".
    for (int k = 3; k <= 11; ++k)
        Enfant(A, B, "Aubert", ("Enfant" + std::to_string(k)).c_str(), 'H', "1910");
    const std::uint32_t dernier = b().EnfantNo(A, 11);
    const std::uint32_t petit = Enfant(dernier, E, "Aubert", "Petit", 'H', "1940");
    app.definitPersonneEnCours(A);
    FrmListe l(*f, GenreListe::Descendants);
    ASSERT_TRUE(l.Rafraichissement());
    EXPECT_EQ(l.Titre(), "Descendants de Adrien Aubert");
    EXPECT_EQ(l.Gabarit(3), "Asc.     ");
    const auto p = Personnes(l);
    ASSERT_EQ(p.size(), 16u);
    EXPECT_EQ(p.front(), A);
    EXPECT_EQ(l.Lignes()[0].cellules[2], "");
    // I is reached through F (Charles's line) first, then through H.
    const auto it = std::find(p.begin(), p.end(), I);
    ASSERT_NE(it, p.end());
    const auto& ligneI = l.Lignes()[static_cast<std::size_t>(it - p.begin())].cellules;
    EXPECT_EQ(ligneI[0], "4");
    EXPECT_EQ(ligneI[1], std::to_string(I));
    EXPECT_EQ(ligneI[2], " 1-1-1");
    EXPECT_EQ(ligneI[3], "2");
    const auto ip = std::find(p.begin(), p.end(), petit);
    ASSERT_NE(ip, p.end());
    EXPECT_EQ(l.Lignes()[static_cast<std::size_t>(ip - p.begin())].cellules[2], "11-1");

    // By generation then number: child 10 and 11 after child 9.
    ASSERT_TRUE(l.ChangePresentation(TriGeneration));
    const auto q = Personnes(l);
    EXPECT_EQ(q[1], C);
    EXPECT_EQ(q[2], D);
    EXPECT_EQ(q[11], dernier);
}

TEST_F(Famille, TheStartingPersonFollowsDropsAndHandOffs) {
    FrmListe asc(*f, GenreListe::Ascendants);
    asc.MetAJour();
    // A person dropped on the tab: the list starts from it at once.
    EXPECT_TRUE(asc.RecoitGlisser('I', F));
    EXPECT_EQ(asc.Depart(), F);
    EXPECT_EQ(Personnes(asc), (V{F, C, A, B, E}));
    EXPECT_FALSE(asc.RecoitGlisser('E', 3));
    EXPECT_EQ(asc.Depart(), F);
    EXPECT_EQ(asc.TagGlisser(2), "I" + std::to_string(A));
    EXPECT_EQ(asc.TagGlisser(99), "");

    // CmdAscendants in the ascendant form: the picked row starts it.
    EXPECT_TRUE(asc.VersListe(GenreListe::Ascendants, 1));
    EXPECT_EQ(asc.Depart(), C);
    // CmdDescendants: the descendant form opens on the picked person...
    EXPECT_TRUE(asc.VersListe(GenreListe::Descendants, 1));
    ASSERT_EQ(fenetres.formes.size(), 1u);
    FrmListe& desc = *fenetres.formes[0];
    EXPECT_EQ(desc.Depart(), A);
    EXPECT_EQ(Personnes(desc).size(), 6u); // A, C, F, I, D, H
    // ...and when it is open already, it starts again from the next one.
    EXPECT_TRUE(asc.VersListe(GenreListe::Descendants, 0));
    EXPECT_EQ(fenetres.formes.size(), 1u);
    EXPECT_EQ(desc.Depart(), C);
    EXPECT_EQ(Personnes(desc), (V{C, F, I}));
    // The descendant form hands back to the ascendant one.
    EXPECT_TRUE(desc.VersListe(GenreListe::Ascendants, 2));
    EXPECT_EQ(asc.Depart(), I);

    // A double click moves the person in course, not the list.
    EXPECT_TRUE(desc.Choisit(1));
    EXPECT_EQ(app.personneEnCours(), F);
    EXPECT_EQ(desc.Depart(), C);
    EXPECT_FALSE(desc.Choisit(-1));

    // A new person in the base: the list is outdated and built again.
    EXPECT_FALSE(desc.MetAJour());
    Personne("Nouveau", "Noel", 'H', "2000");
    EXPECT_TRUE(desc.Perimee());
    EXPECT_TRUE(desc.MetAJour());
    EXPECT_FALSE(desc.Perimee());

    // No person in course: nothing is built.
    app.definitPersonneEnCours(0);
    FrmListe vide(*f, GenreListe::Ascendants);
    EXPECT_FALSE(vide.Rafraichissement());
    EXPECT_TRUE(vide.Lignes().empty());
    EXPECT_TRUE(s.boites.informations.empty());
}

TEST_F(Famille, StopBusyPanelAndTheHandOffsToOtherForms) {
    FrmListe l(*f, GenreListe::Ascendants);
    // The stop button pressed during the run: no list.
    s.panneau.arretApres = 3;
    EXPECT_FALSE(l.Rafraichissement());
    EXPECT_TRUE(l.Lignes().empty());
    EXPECT_FALSE(s.panneau.visible);
    s.panneau.arretApres = -1;
    ASSERT_TRUE(l.Rafraichissement());
    ASSERT_EQ(l.Lignes().size(), 9u);

    // Another long operation runs: message 503, the list stays as it was.
    s.panneau.visible = true;
    EXPECT_FALSE(l.ChangeNiveaux(3));
    EXPECT_FALSE(l.Choisit(0));
    EXPECT_EQ(s.boites.informations, (std::vector<int>{503, 503}));
    EXPECT_EQ(l.Lignes().size(), 9u);
    // The drop is kept for when the panel is gone.
    EXPECT_FALSE(l.RecoitGlisser('I', H));
    s.panneau.visible = false;
    s.boites.informations.clear();
    EXPECT_TRUE(l.MetAJour());
    EXPECT_EQ(Personnes(l), (V{H, G, D, A, B}));

    // The statistics get the list's persons in number order.
    EXPECT_TRUE(l.CmdStats());
    EXPECT_TRUE(fenetres.EstOuverte("FrmStats"));
    const TransfertParente& t = ParenteTransmise();
    EXPECT_EQ(t.liste, Pack4(A) + Pack4(B) + Pack4(D) + Pack4(G) + Pack4(H));
    EXPECT_EQ(t.mode, 'A');
    EXPECT_EQ(t.personne, H);
    // A list of one person is not enough for the graph.
    l.RecoitGlisser('I', A);
    EXPECT_FALSE(l.CmdArbre());
    EXPECT_EQ(s.boites.informations, std::vector<int>{555});
    // A form this program lacks: the command does nothing.
    fenetres.disponibles = {"FrmAscendants"};
    EXPECT_FALSE(l.CmdImpression());
    EXPECT_FALSE(l.CmdMaj(0));
    fenetres.disponibles = {"FrmMisajour"};
    EXPECT_TRUE(l.CmdMaj(0));
    EXPECT_EQ(f->personneFiche, A);
}

} // namespace
