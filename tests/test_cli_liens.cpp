// The command-line verbs of the family links, run as a user runs them:
// both sides written, the sheet's refusals, and a refusal leaving the base
// as it was.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <utility>

namespace {

struct Resultat {
    int code;
    std::string sortie, erreur;
};

class CliLiens : public ::testing::Test {
  protected:
    std::string dossier, base;

    void SetUp() override {
        char modele[] = "/tmp/sylvane_cli_liens_XXXXXX";
        ASSERT_NE(mkdtemp(modele), nullptr);
        dossier = modele;
        base = dossier + "/famille.sv2";
        ASSERT_EQ(Lance("new " + base).code, 0);
    }
    void TearDown() override { std::system(("rm -rf " + dossier).c_str()); }

    Resultat Lance(const std::string& arguments) {
        const std::string erreurs = dossier + "/stderr";
        std::string commande =
            std::string(SYLVANE_CLI) + " " + arguments + " 2>" + erreurs;
        FILE* f = popen(commande.c_str(), "r");
        std::string s;
        std::array<char, 4096> tampon{};
        while (std::size_t n = fread(tampon.data(), 1, tampon.size(), f)) s.append(tampon.data(), n);
        int code = pclose(f);
        std::ifstream e(erreurs);
        std::stringstream texte;
        texte << e.rdbuf();
        return {WIFEXITED(code) ? WEXITSTATUS(code) : -1, s, texte.str()};
    }
    std::uint32_t Personne(const std::string& options) {
        Resultat r = Lance("add-person " + base + " " + options);
        EXPECT_EQ(r.code, 0) << r.erreur;
        return static_cast<std::uint32_t>(std::stoul(r.sortie));
    }
    // The persons by number.
    std::map<std::uint32_t, nlohmann::json> Personnes() {
        std::map<std::uint32_t, nlohmann::json> m;
        std::istringstream in(Lance("persons " + base).sortie);
        for (std::string l; std::getline(in, l);) {
            auto j = nlohmann::json::parse(l);
            m[j["number"].get<std::uint32_t>()] = j;
        }
        return m;
    }
};

TEST_F(CliLiens, LinkUnlinkAndMarryWriteBothSides) {
    const auto pere = Personne("--name MARTIN --first Paul --sex H --birth 1800");
    const auto mere = Personne("--name DURAND --first Anne --sex F --birth 1805");
    const auto c = Personne("--name MARTIN --first Jean --sex H --birth 1830 --mother 2");
    const auto k = Personne("--name MARTIN --first Luc --sex H --birth 1832 --mother 2");

    // Without --yes every question is No: no marriage, Luc stays fatherless.
    Resultat r = Lance("link " + base + " --child 3 --father 1");
    ASSERT_EQ(r.code, 0) << r.erreur;
    auto j = nlohmann::json::parse(r.sortie);
    EXPECT_EQ(j["father"], pere);
    EXPECT_EQ(j["mother"], mere);
    EXPECT_EQ(j["marriage"], 0);
    auto p = Personnes();
    EXPECT_EQ(p[c]["father"], pere);
    EXPECT_EQ(p[k]["father"], 0);
    EXPECT_EQ(p[pere]["children"], nlohmann::json::array({c}));
    EXPECT_EQ(p[pere]["marriages"], nlohmann::json::array());

    // Unlink, then link again with --yes: the marriage of the parents and
    // the mother's other child.
    r = Lance("unlink " + base + " --child 3 --father 1");
    ASSERT_EQ(r.code, 0) << r.erreur;
    p = Personnes();
    EXPECT_EQ(p[c]["father"], 0);
    EXPECT_EQ(p[pere]["children"], nlohmann::json::array());
    r = Lance("link " + base + " --child 3 --father 1 --yes");
    ASSERT_EQ(r.code, 0) << r.erreur;
    EXPECT_EQ(nlohmann::json::parse(r.sortie)["marriage"], 1);
    p = Personnes();
    EXPECT_EQ(p[k]["father"], pere);
    EXPECT_EQ(p[pere]["children"], nlohmann::json::array({c, k}));
    EXPECT_EQ(p[pere]["marriages"], nlohmann::json::array({1}));
    EXPECT_EQ(p[mere]["marriages"], nlohmann::json::array({1}));

    // A second wife, with a year; --yes makes her the mother of nobody here
    // since both children have a mother.
    const auto f2 = Personne("--name LEROY --first Berthe --sex F --birth 1810");
    r = Lance("marry " + base + " 1 " + std::to_string(f2) + " --year 1840 --yes");
    ASSERT_EQ(r.code, 0) << r.erreur;
    EXPECT_EQ(r.sortie, "2\n");
    p = Personnes();
    EXPECT_EQ(p[pere]["marriages"], nlohmann::json::array({1, 2}));
    EXPECT_EQ(p[f2]["marriages"], nlohmann::json::array({2}));
    EXPECT_EQ(p[k]["mother"], mere);
}

TEST_F(CliLiens, RefusalsExitNonZeroAndWriteNothing) {
    Personne("--name MARTIN --first Paul --sex H --birth 1800");
    Personne("--name DURAND --first Anne --sex F --birth 1805");
    Personne("--name MARTIN --first Jean --sex H --birth 1830");
    Personne("--name X --first Inconnu --sex I --birth 1830");
    const auto avant = Lance("persons " + base).sortie;

    // Refusals of the sheet: status 1, the reason on the error output.
    const std::pair<std::string, std::string> refus[] = {
        {"add-person " + base + " --name A --first B --sex H --father 2", "n'est pas un homme"},
        {"add-person " + base + " --name A --first B --sex H --mother 1", "n'est pas une femme"},
        {"link " + base + " --child 3 --father 2", "le père doit être un homme"},
        {"link " + base + " --child 3 --mother 4", "la mère doit être une femme"},
        {"link " + base + " --child 3 --father 3", "son propre parent"},
        {"unlink " + base + " --child 3 --father 1", "n'est pas le père"},
        {"marry " + base + " 2 1", "le mari doit être un homme"},
        {"marry " + base + " 1 1", "elle-même"},
        {"marry " + base + " 1 3", "la femme doit être une femme"},
    };
    Resultat r;
    for (const auto& [commande, texte] : refus) {
        r = Lance(commande);
        EXPECT_EQ(r.code, 1) << commande;
        EXPECT_NE(r.erreur.find(texte), std::string::npos) << commande << ": " << r.erreur;
    }

    // Bad usage: status 2 with the usage line.
    for (const std::string& a :
         {"link " + base + " --child 3", "link " + base + " --child 3 --father 1 --mother 2",
          "link " + base + " --child 9 --father 1", "marry " + base + " 1",
          "marry " + base + " 1 2 --year 18000", "unlink " + base + " --father 1"}) {
        r = Lance(a);
        EXPECT_EQ(r.code, 2) << a;
        EXPECT_NE(r.erreur.find("Usage"), std::string::npos) << a;
    }
    EXPECT_EQ(Lance("persons " + base).sortie, avant);
    EXPECT_NE(Lance("help").sortie.find("link BASE.sv2 --child N --father|--mother N [--yes]"),
              std::string::npos);
}

} // namespace
