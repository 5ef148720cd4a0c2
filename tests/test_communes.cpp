// The communes gazetteer: the file written and read back, the crossing of
// a block border, the searches, the update by appending, the
// reorganisation and its stop, and files that are no gazetteer.
#include "exchange/communes.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

std::vector<Commune> Quelques() {
    Commune a{"Saint-Jean-de-Luz", "64483", "", "", "", "64500", "Port de p\xEA" "che", 14000, 1905};
    Commune b{"Ciboure", "64189", "", "Saint-Jean-de-Luz", "64483", "64500", "", 6500, 796};
    Commune c{"L'Isle-Adam", "95313", "", "", "", "95290", "", 12000, 1480};
    Commune d{"Pyr\xE9n\xE9" "es-Atlantiques (64)", "64", "", "", "", "", "", 0, 0};
    Commune e{"Urrugne", "64545", "", "", "", "64122/64700", "", 10000, 5000};
    return {a, b, c, d, e};
}

TEST(Communes, EcritEtRelu) {
    SystemeMemoire fs;
    FichierCommunes::Cree(fs, "/c/France.svx", Quelques());
    FichierCommunes f(fs, "/c/France.svx");
    EXPECT_EQ(f.Nombre(), 5u);
    for (std::uint32_t n = 1; n <= 5; ++n) EXPECT_EQ(f.Lit(n), Quelques()[n - 1]) << n;
    EXPECT_EQ(Unpack4(fs.contenu("/c/France.svx")), 5u);
    // A commune with no comment has an entry of 0 and shows nothing.
    EXPECT_EQ(f.Lit(5).commentaire, "");
    EXPECT_EQ(f.Lit(0), Commune{});
    EXPECT_EQ(f.Lit(99), Commune{});
}

TEST(Communes, RechercheParNomEtParMot) {
    SystemeMemoire fs;
    FichierCommunes::Cree(fs, "/c/f.svx", Quelques());
    FichierCommunes f(fs, "/c/f.svx");
    bool exact = false;
    // Folded both sides, apostrophes as ".".
    std::uint32_t i = f.ChercheNom("l'isle-adam", exact);
    EXPECT_TRUE(exact);
    EXPECT_EQ(f.CommunesNom(i), std::vector<std::uint32_t>{3});
    i = f.ChercheNom("saint jean", exact);
    EXPECT_FALSE(exact);
    EXPECT_EQ(f.NomIndex(i), "Saint-Jean-de-Luz");
    i = f.ChercheNom("zzz", exact);
    EXPECT_FALSE(exact);
    EXPECT_EQ(i, f.NombreNoms());
    // The word index: "Jean" names Saint-Jean-de-Luz alone.
    const std::uint32_t k = f.ChercheMot("JEAN");
    EXPECT_EQ(f.Mot(k), "Jean");
    EXPECT_EQ(f.CommunesMot(k), std::vector<std::uint32_t>{1});
    EXPECT_EQ(f.CommunesMot(f.ChercheMot("saint")), std::vector<std::uint32_t>{1});
}

TEST(Communes, BordDeBlocMiseAJourEtReorganisation) {
    SystemeMemoire fs;
    std::vector<Commune> v;
    for (int n = 1; n <= 2600; ++n) v.push_back({"Commune " + std::to_string(n), std::to_string(n), "", "", "", "", "", static_cast<std::uint32_t>(n), 0});
    FichierCommunes::Cree(fs, "/c/f.svx", v);
    FichierCommunes f(fs, "/c/f.svx");
    // Entry 2,500 ends the first block, 2,501 begins the second.
    EXPECT_EQ(f.Lit(2500).population, 2500u);
    EXPECT_EQ(f.Lit(2501).population, 2501u);
    EXPECT_EQ(f.Lit(2501).nom, "Commune 2501");
    // A new comment and a changed record are appended; the old bytes stay.
    const auto avant = fs.contenu("/c/f.svx").size();
    f.EcritCommentaire(2501, "Vue sur la mer");
    Commune c = f.Lit(2501);
    c.population = 7;
    f.EcritCommune(2501, c);
    EXPECT_GT(fs.contenu("/c/f.svx").size(), avant);
    FichierCommunes g(fs, "/c/f.svx");
    EXPECT_EQ(g.Lit(2501).commentaire, "Vue sur la mer");
    EXPECT_EQ(g.Lit(2501).population, 7u);
    // A stopped reorganisation keeps the old file; a whole one drops the waste.
    const std::string ancien = fs.contenu("/c/f.svx");
    EXPECT_FALSE(g.Reorganise([](const std::string&, const std::string&) { return false; }));
    EXPECT_EQ(fs.contenu("/c/f.svx"), ancien);
    EXPECT_FALSE(fs.existe("/c/Commune.reo"));
    std::vector<std::string> titres;
    EXPECT_TRUE(g.Reorganise([&](const std::string& t, const std::string&) {
        if (titres.empty() || titres.back() != t) titres.push_back(t);
        return true;
    }));
    EXPECT_EQ(titres, (std::vector<std::string>{"R\xE9organisation communes", "R\xE9organisation Index"}));
    EXPECT_LT(fs.contenu("/c/f.svx").size(), ancien.size());
    EXPECT_EQ(g.Lit(2501).commentaire, "Vue sur la mer");
    // Added and removed: the numbers of the others stay.
    const std::uint32_t n = g.Ajoute({"Hendaye", "64260", "", "", "", "64700", "", 17000, 795});
    EXPECT_EQ(n, 2601u);
    bool exact = false;
    EXPECT_EQ(g.CommunesNom(g.ChercheNom("HENDAYE", exact)), std::vector<std::uint32_t>{2601});
    g.Retire(2);
    EXPECT_EQ(g.Lit(2), Commune{});
    EXPECT_EQ(g.Lit(3).nom, "Commune 3");
    EXPECT_EQ(g.Nombre(), 2601u);
}

TEST(Communes, UneLigatureEstDeuxLettresDuMot) {
    SystemeMemoire fs;
    FichierCommunes::Cree(fs, "/c/f.svx", {{"Saint-Jean-de-B\x9C" "uf", "21553", "", "", "", "", "", 0, 0}});
    FichierCommunes f(fs, "/c/f.svx");
    for (const char* tape : {"b\x9C" "uf", "BOEUF"}) {
        const std::uint32_t k = f.ChercheMot(tape);
        EXPECT_EQ(f.Mot(k), "Boeuf") << tape;
        EXPECT_EQ(f.CommunesMot(k), std::vector<std::uint32_t>{1});
    }
}

TEST(Communes, CeQuiNestPasUnFichierDeCommunes) {
    SystemeMemoire fs;
    ecrireTout(fs, "/c/court.svx", "abc");
    EXPECT_THROW(FichierCommunes(fs, "/c/court.svx"), std::runtime_error);
    std::string faux(TailleEnteteCommunes, '\0');
    faux.replace(8, 4, Pack4(999999)); // a block beyond the end
    ecrireTout(fs, "/c/faux.svx", faux);
    EXPECT_THROW(FichierCommunes(fs, "/c/faux.svx"), std::runtime_error);
    EXPECT_THROW(FichierCommunes(fs, "/c/absent.svx"), ErreurES);
}

TEST(Communes, UnIndexDesNomsEndommageSeLitSansSAttarder) {
    // One commune, but 160,000 names whose entries all lead to one record
    // holding a list of 16,500 numbers: each name read its list whole and
    // the first reading of a commune never ended.
    std::string f(TailleEnteteCommunes, '\0');
    f.replace(0, 4, Pack4(1));
    f.replace(264, 4, Pack4(MaxCommunes));
    for (std::uint32_t place : {9u, 269u, 529u, 789u})
        for (std::uint32_t b = 0; b < BlocsCommunes; ++b)
            f.replace(place - 1 + b * 4, 4, Pack4(TailleEnteteCommunes + 1));
    const std::uint32_t enreg = TailleEnteteCommunes + 1 + EntreesParBlocCommunes * 4;
    for (std::uint32_t k = 0; k < EntreesParBlocCommunes; ++k) f += Pack4(enreg);
    f += "A\xFF";
    for (int k = 0; k < 16500; ++k) f += Pack4(1);
    f += Pack4(0);
    SystemeMemoire fs;
    ecrireTout(fs, "/c/noms.svx", f);
    FichierCommunes c(fs, "/c/noms.svx", true);
    EXPECT_EQ(c.Lit(1).nom, "A");
    EXPECT_EQ(c.CommunesNom(1), std::vector<std::uint32_t>{1});
}

} // namespace

// The form's logic over the file of the settings.
#include "support/services_faux.h"
#include "ui/frm_commune.h"
#include <algorithm>
#include <memory>

namespace {

TEST(FrmCommune, FichierDesParametresRechercheEtCommentaire) {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    test::ServicesFaux s;
    app.Demarre();
    MDIForm1 f(app, s.ui());
    FrmCommune c(f);
    // No file set: message 742, the form stays empty.
    EXPECT_FALSE(c.Ouvre());
    EXPECT_EQ(s.boites.informations, std::vector<int>{742});
    FichierCommunes::Cree(fs, "/c/France.svx", Quelques());
    app.parametres().fichierCommunes = "/c/France.svx";
    ASSERT_TRUE(c.Ouvre());
    // An apostrophe typed finds the name that has one.
    EXPECT_EQ(c.ChercheCommune("l'isle adam"), "L'Isle-Adam");
    EXPECT_EQ(s.boites.informations, std::vector<int>{742});
    EXPECT_EQ(c.ChercheCommune("Cibour"), "Ciboure");
    EXPECT_EQ(s.boites.informations, (std::vector<int>{742, 743}));
    EXPECT_EQ(c.Affichee().nom, "Ciboure");
    EXPECT_EQ(c.Principale(), "Saint-Jean-de-Luz (64483)");
    c.Choisit(5);
    EXPECT_EQ(c.CodesPostaux(), "64122 64700");
    EXPECT_EQ(c.FormeMot("sAINT"), "Saint");
    EXPECT_EQ(c.FormeMot("s"), "S");
    EXPECT_EQ(c.CommunesDuMot("Urrugne"), (std::vector<std::pair<std::uint32_t, std::string>>{{5, "Urrugne"}}));
    EXPECT_FALSE(c.MotsAutour("Jean").empty());
    c.Choisit(4);
    EXPECT_EQ(c.Departement(), "Pyr\xE9n\xE9" "es-Atlantiques (64)");
    c.Choisit(5);
    EXPECT_EQ(c.Departement(), "");
    c.Choisit(1);
    ASSERT_TRUE(c.EnregistreCommentaire("Port basque"));
    EXPECT_EQ(FichierCommunes(fs, "/c/France.svx").Lit(1).commentaire, "Port basque");
}

} // namespace

// Adding, removing and writing anew from the form, and the help to the
// place fields.
namespace {

struct FormeCommunes : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    test::ServicesFaux s;
    std::unique_ptr<MDIForm1> f;
    void SetUp() override {
        app.Demarre();
        f = std::make_unique<MDIForm1>(app, s.ui());
        FichierCommunes::Cree(fs, "/c/France.svx", Quelques());
        app.parametres().fichierCommunes = "/c/France.svx";
    }
};

TEST_F(FormeCommunes, AjoutRetraitEtReorganisationAvecSonArret) {
    FrmCommune c(*f);
    ASSERT_TRUE(c.Ouvre());
    EXPECT_EQ(c.Ajoute({"  ", "1", "", "", "", "", "", 0, 0}), 0u);
    EXPECT_EQ(s.boites.informations, std::vector<int>{msg_communes::NomVide});
    const std::uint32_t n = c.Ajoute({" Hendaye ", "64260", "", "", "", "64700", "", 17000, 795});
    ASSERT_EQ(n, 6u);
    EXPECT_EQ(c.Affichee().nom, "Hendaye");
    EXPECT_EQ(c.ChercheCommune("HENDAYE"), "Hendaye");

    // Busy elsewhere: refused with 503, nothing written.
    s.panneau.visible = true;
    EXPECT_EQ(c.Ajoute({"Biarritz", "", "", "", "", "", "", 0, 0}), 0u);
    EXPECT_FALSE(c.Reorganise());
    EXPECT_EQ(s.boites.informations.back(), 503);
    s.panneau.visible = false;

    // A stop keeps the file as it was; a whole run shows both titles.
    const std::string avant = fs.contenu("/c/France.svx");
    s.panneau.arretApres = 0;
    EXPECT_FALSE(c.Reorganise());
    EXPECT_EQ(fs.contenu("/c/France.svx"), avant);
    EXPECT_FALSE(fs.existe("/c/Commune.reo"));
    s.panneau.arretApres = -1;
    s.panneau.titres.clear();
    ASSERT_TRUE(c.Reorganise());
    EXPECT_NE(std::find(s.panneau.titres.begin(), s.panneau.titres.end(), "R\xE9organisation Index"),
              s.panneau.titres.end());
    EXPECT_FALSE(s.panneau.visible);
    EXPECT_EQ(c.Affichee().nom, "Hendaye") << "still shown after the file was written anew";

    // Removing asks 617 first; No keeps it.
    EXPECT_FALSE(c.Retire());
    EXPECT_EQ(s.boites.questions, std::vector<int>{617});
    s.boites.reponses = {Reponse::Oui};
    ASSERT_TRUE(c.Retire());
    EXPECT_EQ(c.Choisie(), 0u);
    EXPECT_EQ(FichierCommunes(fs, "/c/France.svx").Lit(6), Commune{});
    EXPECT_FALSE(c.Retire()) << "nothing shown";
}

TEST_F(FormeCommunes, LesLieuxProposesCommencentCommeLeTexteTape) {
    EXPECT_EQ(LieuxProposes(app, "sai"), std::vector<std::string>{"Saint-Jean-de-Luz"});
    EXPECT_EQ(LieuxProposes(app, "L'IS"), std::vector<std::string>{"L'Isle-Adam"});
    EXPECT_EQ(LieuxProposes(app, "c"), std::vector<std::string>{}) << "two letters at least";
    EXPECT_EQ(LieuxProposes(app, "zz"), std::vector<std::string>{});
    // Names in index order, cut at the number asked.
    FichierCommunes::Cree(fs, "/c/France.svx",
                          {{"Sainte-Marie", "", "", "", "", "", "", 0, 0}, {"Saint-Pierre", "", "", "", "", "", "", 0, 0},
                           {"Saint-Andr\xE9", "", "", "", "", "", "", 0, 0}, {"Sarlat", "", "", "", "", "", "", 0, 0}});
    EXPECT_EQ(LieuxProposes(app, "saint", 2), (std::vector<std::string>{"Saint-Andr\xE9", "Saint-Pierre"}));
    // No file, or one that is no gazetteer: nothing, and no box while typing.
    ecrireTout(fs, "/c/France.svx", "abc");
    EXPECT_TRUE(LieuxProposes(app, "saint").empty());
    app.parametres().fichierCommunes.clear();
    EXPECT_TRUE(LieuxProposes(app, "saint").empty());
    EXPECT_TRUE(s.boites.informations.empty());
}

} // namespace
