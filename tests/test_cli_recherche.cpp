// The search verbs of the command line over a small base written on disk:
// their rows, their refusals of bad arguments, and a base left unchanged.
#include "store/base.h"
#include "support/dossier_temp.h"
#include "support/lance_cli.h"
#include "text/mots.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

using namespace sylvane;
using test::LanceCli;

namespace {

std::vector<nlohmann::json> Lignes(const std::string& s) {
    std::vector<nlohmann::json> v;
    std::istringstream in(s);
    for (std::string l; std::getline(in, l);) v.push_back(nlohmann::json::parse(l));
    return v;
}

class CliRecherche : public ::testing::Test {
  protected:
    test::DossierTemp dossier;
    std::string base = dossier / "famille.sv2";

    void SetUp() override {
        Parametres p;
        Base b(systemeReel(), p);
        b.Nouvelle(base);
        auto personne = [&](const char* nom, const char* prenom, char sexe, const char* an,
                            const char* lieu) {
            const auto n = b.CreePersonne(nom, prenom, "", sexe, an);
            const std::string note = b.LigneMotsCles(n, lieu, "");
            b.MajMots(n, b.LitNote(n), note);
            b.EcritNote(n, note);
            return n;
        };
        const auto jean = personne("Dupont", "Jean", 'H', "1850", "Caen");      // 1
        const auto marie = personne("Martin", "Marie", 'F', "1852", "Paris 15e"); // 2
        personne("Ledupont", "Paul", 'H', "1870", "Paris");                    // 3
        personne("L\xE9ger", "\xC9lise", 'F', "1890", "");                     // 4
        const auto m = b.CreeMariage(jean, marie, "1875");
        const std::string note = "1/5/1875 @Saint.L\xF4";
        b.MajMots(jean, "", note);
        b.MajMots(marie, "", note);
        b.EcritNoteMariage(m, note);
        b.CreeEvtPersonne(jean, -18190, "BIRT", "Caen");
        b.CreeEvtPersonne(marie, 0, "DEAT", "Caen");
        b.FermeBase();
    }

    std::vector<nlohmann::json> Cherche(std::vector<std::string> args) {
        args.insert(args.begin() + 1, base);
        const auto r = LanceCli(args);
        EXPECT_EQ(r.statut, 0) << r.err;
        return Lignes(r.out);
    }
};

} // namespace

TEST_F(CliRecherche, NameSearch) {
    auto v = Cherche({"search-name", "--name", "dup"});
    ASSERT_EQ(v.size(), 2u);
    EXPECT_EQ(v[0]["person"], 1);
    EXPECT_EQ(v[1]["person"], 3);
    EXPECT_EQ(v[0]["family"], "*");
    EXPECT_EQ(v[0]["dates"], "o1850");
    v = Cherche({"search-name", "--first", "elise"});
    ASSERT_EQ(v.size(), 1u);
    EXPECT_EQ(v[0]["name"], "Élise Léger");
    EXPECT_EQ(Cherche({"search-name", "--sex", "F", "--from", "1851", "--to", "1860"}).size(), 1u);
    EXPECT_TRUE(Cherche({"search-name", "--name", "zzz"}).empty());
}

TEST_F(CliRecherche, KeywordSearchBySymbolOrTag) {
    auto v = Cherche({"search-keyword", "--word", "|:DUP"});
    ASSERT_EQ(v.size(), 1u); // DUPONT, not LEDUPONT
    EXPECT_EQ(v[0]["person"], 1);
    v = Cherche({"search-keyword", "--word", "$:paris"});
    ASSERT_EQ(v.size(), 2u); // PARIS, then PARIS.15E
    EXPECT_EQ(v[0]["detail"], "1870 Paris");
    EXPECT_EQ(v[1]["detail"], "1852 Paris 15e");
    v = Cherche({"search-keyword", "--word", "@:saint lo", "--word", "¶:MARIE"});
    ASSERT_EQ(v.size(), 1u);
    EXPECT_EQ(v[0]["person"], 2);
    EXPECT_EQ(v[0]["no_marriage"], false);
    // Only years: every person is looked at.
    EXPECT_EQ(Cherche({"search-keyword", "--from", "1860"}).size(), 2u);
    EXPECT_EQ(Cherche({"search-keyword", "--orphans", "--to", "1851"}).size(), 1u);
}

TEST_F(CliRecherche, CoupleAndEventSearch) {
    auto v = Cherche({"search-couple", "--husband", "dup", "--place", "saint"});
    ASSERT_EQ(v.size(), 1u);
    EXPECT_EQ(v[0]["husband"], 1);
    EXPECT_EQ(v[0]["wife"], 2);
    EXPECT_EQ(v[0]["place"], "Saint Lô");
    EXPECT_TRUE(Cherche({"search-couple", "--husband", "ledup"}).empty());
    EXPECT_TRUE(Cherche({"search-couple", "--from", "1900"}).empty());

    v = Cherche({"search-events", "--place", "caen"});
    ASSERT_EQ(v.size(), 2u);
    v = Cherche({"search-events", "--place", "caen", "--from", "1800"});
    ASSERT_EQ(v.size(), 1u); // the undated death is dropped
    EXPECT_EQ(v[0]["tag"], "BIRT");
    EXPECT_EQ(v[0]["date"], "12/3/1850");
    EXPECT_EQ(Cherche({"search-events", "--tag", "deat"}).size(), 1u);
}

TEST_F(CliRecherche, BadArgumentsAreRefusedAndTheBaseStaysAsItWas) {
    const std::string avant = test::LitFichier(base);
    for (const std::vector<std::string>& a : std::vector<std::vector<std::string>>{
             {"search-name", base},
             {"search-name", base, "--from", "18x0"},
             {"search-name", base, "--sex", "X"},
             {"search-keyword", base},
             {"search-keyword", base, "--word", "PARIS"},
             {"search-keyword", base, "--word", "?:PARIS"},
             {"search-keyword", base, "--word", "|:A", "--word", "|:B", "--word", "|:C",
              "--word", "|:D", "--word", "|:E"},
             {"search-couple", base},
             {"search-events", base},
             {"search-events", base, "--to", "deux"},
             {"search-events"},
         }) {
        const auto r = LanceCli(a);
        EXPECT_EQ(r.statut, 2) << a.back();
        EXPECT_TRUE(r.out.empty());
        EXPECT_FALSE(r.err.empty());
    }
    const auto r = LanceCli({"search-name", dossier / "absente.sv2", "--name", "x"});
    EXPECT_NE(r.statut, 0);
    EXPECT_FALSE(r.err.empty());
    EXPECT_EQ(test::LitFichier(base), avant);
}
