// The four search forms over a small family, with scripted boxes, panel and
// windows: refusals, rows as they come, stop, cumul, and the hand-offs.
#include "exchange/selection.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/frm_listes.h"
#include "ui/frm_recherche.h"

#include <gtest/gtest.h>

using namespace sylvane;
using test::ServicesFaux;

namespace {

struct Vue : VueRecherche {
    int fois = 0;
    void LignesChangees() override { ++fois; }
};

struct Formes : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;
    std::uint32_t jean, marie, paul, luc;

    void SetUp() override {
        DefinitMessages({{4028, "&1 lignes"}, {4036, "&1 trouv\xE9s"}});
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        jean = Personne("Ledupont", "Jean", 'H', "1850", "Caen");
        marie = Personne("Martin", "Marie", 'F', "1852", "Paris");
        paul = Personne("Dupont", "Paul", 'H', "1880", "Caen");
        luc = Personne("Dupuis", "Luc", 'H', "", "");
        b().CreeMariage(jean, marie, "1875");
        b().EcritPere(paul, jean);
        b().EcritMere(paul, marie);
        b().MajEnfants(jean, paul, 'A');
        b().MajEnfants(marie, paul, 'A');
    }
    void TearDown() override { DefinitMessages({}); }

    Base& b() { return app.base(); }
    std::uint32_t Personne(const char* nom, const char* prenom, char sexe, const char* an,
                           const char* lieu) {
        const auto n = b().CreePersonne(nom, prenom, "", sexe, an);
        const std::string note = b().LigneMotsCles(n, lieu, "");
        b().MajMots(n, b().LitNote(n), note);
        b().EcritNote(n, note);
        return n;
    }
    static std::vector<std::uint32_t> Lignes(const FrmRechercheCommun& r) {
        std::vector<std::uint32_t> v;
        for (std::size_t i = 0; i < r.NombreLignes(); ++i) v.push_back(r.PersonneLigne(i));
        return v;
    }
};

using V = std::vector<std::uint32_t>;

} // namespace

TEST_F(Formes, NameSearchRefusesFoldsCumulatesAndDrops) {
    FrmRecherche r(*f);
    Vue vue;
    r.DefinitVue(&vue);
    EXPECT_FALSE(r.C_Recherche());
    EXPECT_EQ(s.boites.informations, (std::vector<int>{550}));
    EXPECT_FALSE(r.MajActif());

    r.texte = "dup";
    EXPECT_TRUE(r.C_Recherche());
    EXPECT_EQ(r.texte, "DUP"); // shown folded
    EXPECT_EQ(Lignes(r), (V{jean, paul, luc}));
    EXPECT_EQ(r.Cellule(0, 1), "Jean Ledupont");
    EXPECT_EQ(r.Cellule(0, 2), "*");
    EXPECT_EQ(r.Cellule(1, 2), "");
    EXPECT_EQ(r.Cellule(0, 3), "o1850");
    EXPECT_EQ(r.Nombre(), "3 lignes");
    EXPECT_GT(vue.fois, 0);
    EXPECT_FALSE(s.panneau.visible);
    EXPECT_FALSE(s.panneau.textes.empty());

    // Nothing found: message 551, the result stays.
    r.texte = "zzz";
    EXPECT_FALSE(r.C_Recherche());
    EXPECT_EQ(s.boites.informations.back(), 551);
    EXPECT_EQ(r.NombreLignes(), 3u);

    // Cumul adds, in number order, each person once.
    r.cumul = true;
    r.texte = "mar";
    EXPECT_TRUE(r.C_Recherche());
    r.texte = "dupont";
    EXPECT_TRUE(r.C_Recherche());
    EXPECT_EQ(Lignes(r), (V{jean, marie, paul, luc}));

    // A drop and the list of names add too.
    r.cumul = false;
    r.texte = "luc";
    EXPECT_TRUE(r.C_Recherche());
    EXPECT_TRUE(r.RecoitGlisser('I', marie));
    EXPECT_FALSE(r.RecoitGlisser('I', marie));
    EXPECT_FALSE(r.RecoitGlisser('I', 999));
    s.selecteur.reponses.push_back(jean);
    EXPECT_TRUE(r.CmdAjouter());
    EXPECT_EQ(Lignes(r), (V{jean, marie, luc}));
    EXPECT_EQ(r.TagGlisser(1), "I" + std::to_string(marie));

    // Dropping the rows down to the last: the commands go off.
    EXPECT_TRUE(r.EcarterActif());
    EXPECT_TRUE(r.CmdEcarter(0));
    EXPECT_TRUE(r.CmdEcarter(0));
    EXPECT_FALSE(r.EcarterActif());
    EXPECT_TRUE(r.MajActif());
    EXPECT_TRUE(r.CmdEcarter(0));
    EXPECT_FALSE(r.MajActif());
}

TEST_F(Formes, StopKeepsTheRowsFoundAndBusyRefuses) {
    for (int i = 0; i < 5000; ++i) b().CreePersonne("Dupont", "X", "", 'H', "1900");
    FrmRecherche r(*f);
    r.texte = "DUPONT";
    s.panneau.arretApres = 0; // stop at the first chance
    EXPECT_TRUE(r.C_Recherche());
    EXPECT_GT(r.NombreLignes(), 0u);
    EXPECT_LT(r.NombreLignes(), 5001u);
    // While a long operation runs every command refuses with 503.
    s.panneau.visible = true;
    EXPECT_FALSE(r.C_Recherche());
    EXPECT_FALSE(r.C_Affichage(0));
    EXPECT_EQ(s.boites.informations.back(), 503);
}

TEST_F(Formes, SheetPersonInCourseAndHandOffs) {
    FrmRecherche r(*f);
    r.texte = "dup";
    r.C_Recherche();
    EXPECT_TRUE(r.C_Affichage(1));
    EXPECT_EQ(f->PersonneEnCours(), paul);
    EXPECT_TRUE(r.C_Maj(0));
    EXPECT_EQ(f->personneFiche, jean);
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmMisajour"));

    EXPECT_TRUE(r.CmdParente());
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmRechAscendant"));
    EXPECT_EQ(ParenteTransmise().liste, Pack4(jean) + Pack4(paul) + Pack4(luc));
    EXPECT_EQ(ParenteTransmise().mode, 'D');
    EXPECT_TRUE(r.CmdStats());
    // A second statistics window is refused.
    EXPECT_FALSE(r.CmdStats());
    EXPECT_EQ(s.boites.textes.size(), 1u);

    FrmRecherche vide(*f);
    EXPECT_FALSE(vide.CmdParente());
    EXPECT_EQ(s.boites.informations.back(), 555);

    // The export marks the persons, their spouses ('3') and children ('4').
    Selection sel(b());
    r.marquesExport = [&] { return &sel; };
    r.CmdEcarter(2);
    r.CmdEcarter(1);
    EXPECT_TRUE(r.CmdExporter());
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmExporter"));
    EXPECT_EQ(sel.Marque(jean), '3');
    EXPECT_EQ(sel.Marque(marie), '3');
    EXPECT_EQ(sel.Marque(paul), '4');
    EXPECT_EQ(sel.Marque(luc), ' ');
}

TEST_F(Formes, KeywordFormAsksBeforeAFullScanAndSorts) {
    FrmRechTexte r(*f);
    EXPECT_FALSE(r.C_Recherche());
    EXPECT_EQ(s.boites.informations.back(), 560);
    EXPECT_FALSE(r.RechercheActive());
    const auto genres = r.Genres();
    ASSERT_GE(genres.size(), 5u);
    EXPECT_EQ(genres[0].first, '|');

    r.criteres.lignes[0] = {'$', "caen"};
    EXPECT_TRUE(r.RechercheActive());
    EXPECT_TRUE(r.C_Recherche());
    EXPECT_TRUE(s.boites.questions.empty());
    EXPECT_EQ(Lignes(r), (V{jean, paul}));
    EXPECT_EQ(r.Cellule(0, 0), "LEDUPONT");
    EXPECT_EQ(r.Cellule(1, 3), "xx");
    EXPECT_EQ(r.Cellule(1, 4), "X"); // no marriage
    r.Trie(0);
    EXPECT_EQ(Lignes(r), (V{paul, jean}));
    r.Trie(0);
    EXPECT_EQ(Lignes(r), (V{jean, paul}));

    // Years alone: message 559 first; No ends, Yes scans.
    r.criteres = {};
    r.criteres.anDebut = "1851";
    EXPECT_FALSE(r.C_Recherche());
    EXPECT_EQ(s.boites.questions, (std::vector<int>{559}));
    EXPECT_EQ(r.NombreLignes(), 2u);
    s.boites.reponses.push_back(Reponse::Oui);
    EXPECT_TRUE(r.C_Recherche());
    EXPECT_EQ(Lignes(r), (V{marie, paul}));
    // The graph needs two persons.
    r.CmdEcarter(0);
    EXPECT_FALSE(r.CmdParente());
    EXPECT_EQ(s.boites.informations.back(), 555);
}

TEST_F(Formes, CoupleAndEventForms) {
    FrmRechCouple c(*f);
    EXPECT_FALSE(c.C_Recherche());
    EXPECT_EQ(s.boites.informations.back(), 561);
    c.criteres.epoux = "ledup";
    EXPECT_TRUE(c.C_Recherche());
    ASSERT_EQ(c.NombreLignes(), 1u);
    EXPECT_EQ(c.PersonneLigne(0), jean);
    EXPECT_EQ(c.PersonneLigne(0, FrmRechCouple::ColonneEpouse(4)), marie);
    EXPECT_EQ(c.Cellule(0, 8), "1");
    EXPECT_TRUE(c.Cachee(9));
    EXPECT_EQ(c.Personnes(), (V{jean, marie}));

    const auto e1 = b().CreeEvtPersonne(paul, -18190, "BIRT", "Caen");
    const auto e2 = b().CreeEvtPersonne(jean, 0, "DEAT", "caen");
    FrmRechEvt e(*f);
    EXPECT_FALSE(e.C_Recherche());
    EXPECT_EQ(s.boites.informations.back(), 550);
    e.criteres.anFin = "19a0";
    EXPECT_FALSE(e.C_Recherche());
    EXPECT_EQ(s.boites.informations.back(), 931);
    EXPECT_EQ(e.champErrone, 2);
    e.criteres = {};
    e.criteres.lieu = "CAEN";
    EXPECT_TRUE(e.C_Recherche());
    ASSERT_EQ(e.NombreLignes(), 2u);
    EXPECT_EQ(e.TagGlisser(0), "E" + std::to_string(e1)); // in date order
    EXPECT_EQ(e.PersonneLigne(0), paul);
    e.Trie(0);
    e.Trie(0);
    EXPECT_EQ(e.TagGlisser(0), "E" + std::to_string(e2));
    EXPECT_EQ(e.Types(), (std::vector<std::string>{"BIRT", "DEAT"}));
    EXPECT_TRUE(e.C_Maj(0));
    EXPECT_EQ(EvenementTransmis(), e2);
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmDesEvt"));
}
