// The base verbs of sylvane-cli, run in process: their output is a contract
// for scripts, their errors go to stderr with a non-zero status.
#include "cli/cli.h"
#include "support/dossier_temp.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

using namespace sylvane;

namespace {

struct Resultat {
    int statut;
    std::string out, err;
};

Resultat Lance(std::vector<std::string> args) {
    std::ostringstream out, err;
    int s = cli::Executer(args, out, err);
    return {s, out.str(), err.str()};
}

std::vector<nlohmann::json> Lignes(const std::string& texte) {
    std::vector<nlohmann::json> v;
    std::istringstream in(texte);
    for (std::string l; std::getline(in, l);) v.push_back(nlohmann::json::parse(l));
    return v;
}

} // namespace

TEST(CliBase, NewAddPersonPersonsAndInfo) {
    test::DossierTemp d;
    const std::string base = d / "Généalogie.sv2";
    ASSERT_EQ(Lance({"new", base}).statut, 0);
    auto info = nlohmann::json::parse(Lance({"info", base}).out);
    EXPECT_EQ(info["ZoneFin"], 1145);
    EXPECT_EQ(info["banner"], "[Sylvane Version 2001.0]");
    EXPECT_EQ(info["rubrics"], 11);
    EXPECT_EQ(info["ModeTri"], "1");

    EXPECT_EQ(Lance({"add-person", base, "--name", "Lefèvre", "--first", "Amélie", "--sex", "F",
                     "--birth", "1880"})
                  .out,
              "1\n");
    EXPECT_EQ(Lance({"add-person", base, "--name", "Martin", "--first", "Jean", "--sex", "H",
                     "--birth", "1850"})
                  .out,
              "2\n");
    EXPECT_EQ(Lance({"add-person", base, "--name", "Martin", "--first", "Paul", "--birth", "1905",
                     "--father", "2", "--mother", "1"})
                  .out,
              "3\n");
    auto p = Lignes(Lance({"persons", base}).out);
    ASSERT_EQ(p.size(), 3u);
    // Sort order: birth year, then name.
    EXPECT_EQ(p[0]["number"], 2);
    EXPECT_EQ(p[1]["name"], "Lefèvre");
    EXPECT_EQ(p[1]["firstNames"], "Amélie");
    EXPECT_EQ(p[1]["children"], nlohmann::json::array({3}));
    EXPECT_EQ(p[2]["father"], 2);
    EXPECT_EQ(p[2]["mother"], 1);
    EXPECT_EQ(p[2]["sex"], "I");
    info = nlohmann::json::parse(Lance({"info", base}).out);
    EXPECT_EQ(info["persons"]["live"], 3);
    EXPECT_EQ(info["persons"]["highest"], 3);
}

TEST(CliBase, ErrorsAreClearAndChangeNothing) {
    test::DossierTemp d;
    const std::string base = d / "b.sv2";
    auto r = Lance({"info", d / "absente.sv2"});
    EXPECT_NE(r.statut, 0);
    EXPECT_NE(r.err.find("absente"), std::string::npos);
    EXPECT_TRUE(r.out.empty());
    ASSERT_EQ(Lance({"new", base}).statut, 0);
    const std::string avant = test::LitFichier(base);
    for (std::vector<std::string> args :
         {std::vector<std::string>{"add-person", base, "--name", "A"},
          {"add-person", base, "--name", "A", "--first", "B", "--father", "9"},
          {"add-person", base, "--name", "A", "--first", "B", "--sex", "X"},
          {"add-person", base, "--name", "A;", "--first", "B"},
          {"add-person", base, "--name", "A", "--first", "B", "--birth", "18500"},
          {"add-person", base, "--name", "A", "--first", "B", "--father", "abc"},
          {"add-person", base, "--nom", "A"},
          {"persons"},
          {"frobnicate"}}) {
        auto e = Lance(args);
        EXPECT_NE(e.statut, 0) << args[0];
        EXPECT_FALSE(e.err.empty()) << args[0];
    }
    EXPECT_EQ(test::LitFichier(base), avant);
}
