// The doubles from the command line: a family imported twice into one base
// is found again pair by pair, merged, and leaves a base the control finds
// sound; the merge's refusals write nothing.
#include "support/dossier_temp.h"
#include "support/lance_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>

namespace {

using sylvane::test::DossierTemp;
using sylvane::test::LanceCli;

std::vector<nlohmann::json> Lignes(const std::string& sortie) {
    std::vector<nlohmann::json> v;
    std::istringstream in(sortie);
    for (std::string l; std::getline(in, l);) v.push_back(nlohmann::json::parse(l));
    return v;
}

std::size_t Personnes(const std::string& base) { return Lignes(LanceCli({"persons", base}).out).size(); }

// The sample family integrated into itself: each person stands twice.
std::string FamilleEnDouble(const DossierTemp& d) {
    const std::string base = d / "famille.sv2", svr = d / "famille.svr";
    EXPECT_EQ(LanceCli({"import-gedcom", SYLVANE_SOURCE_DIR "/samples/famille-exemple.ged", base})
                  .statut,
              0);
    EXPECT_EQ(LanceCli({"export-svr", base, svr}).statut, 0);
    const auto r = LanceCli({"integrate", base, svr, "--yes"});
    EXPECT_EQ(r.statut, 0) << r.err;
    return base;
}

TEST(CliFusion, AFamilyIntegratedTwiceIsFoundAndMergedBack) {
    DossierTemp d;
    const std::string base = FamilleEnDouble(d), paires = d / "famille.fus";
    const std::size_t avant = Personnes(base);

    std::size_t precedent = 0;
    for (const char* niveau : {"0", "1", "2", "3"}) {
        std::filesystem::remove(paires);
        const auto r = LanceCli({"duplicates", base, "--level", niveau});
        ASSERT_EQ(r.statut, 0) << r.err;
        const auto v = Lignes(r.out);
        EXPECT_GE(v.size(), precedent) << "level " << niveau << " finds at least as much";
        precedent = v.size();
        for (const auto& j : v) {
            EXPECT_NE(j["first"], j["second"]);
            EXPECT_FALSE(j["first_name"].get<std::string>().empty());
        }
        // The file holds the same pairs, two lines each.
        std::istringstream f(sylvane::test::LitFichier(paires));
        std::size_t lignes = 0;
        for (std::string l; std::getline(f, l);) ++lignes;
        EXPECT_EQ(lignes, 2 * v.size());
    }

    std::filesystem::remove(paires);
    const auto v = Lignes(LanceCli({"duplicates", base, "--level", "0"}).out);
    ASSERT_GE(v.size(), 10u);
    int fusions = 0;
    for (const auto& j : v) {
        if (fusions == 10) break;
        const auto r = LanceCli({"merge", base, std::to_string(j["first"].get<int>()),
                                 std::to_string(j["second"].get<int>()), "--yes"});
        if (r.statut != 0) continue; // a person merged already
        ++fusions;
        const auto out = nlohmann::json::parse(r.out);
        EXPECT_EQ(out["kept"], j["first"]);
        // The merged pair has left the table.
        for (const auto& p : out["pairs"]) EXPECT_NE(p, nlohmann::json::array({j["first"], j["second"]}));
    }
    EXPECT_EQ(fusions, 10);
    EXPECT_EQ(Personnes(base), avant - 10);
    const auto c = LanceCli({"control", base});
    EXPECT_EQ(c.statut, 0);
    EXPECT_EQ(c.out, "") << "nothing to repair";
}

TEST(CliFusion, RefusalsAndBadArgumentsWriteNothing) {
    DossierTemp d;
    const std::string base = d / "b.sv2";
    ASSERT_EQ(LanceCli({"new", base}).statut, 0);
    for (const char* sexe : {"H", "F", "I"})
        ASSERT_EQ(LanceCli({"add-person", base, "--name", "Martin", "--first", "Claude", "--sex",
                            sexe})
                      .statut,
                  0);
    const std::string octets = sylvane::test::LitFichier(base);
    auto r = LanceCli({"merge", base, "1", "2", "--yes"});
    EXPECT_EQ(r.statut, 1);
    // The text of 956, or its number where no language file is loaded.
    EXPECT_TRUE(r.err.find("homme et une femme") != std::string::npos ||
                r.err.find("956") != std::string::npos)
        << r.err;
    r = LanceCli({"merge", base, "3", "1"});
    EXPECT_EQ(r.statut, 1) << "no --yes: the question is answered No";
    EXPECT_EQ(sylvane::test::LitFichier(base), octets);
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"merge", base, "1", "1", "--yes"},
          {"merge", base, "1", "99", "--yes"},
          {"merge", base, "3", "1", "--parents", "maybe"},
          {"duplicates", base, "--level", "7"},
          {"duplicates", base, "--marriages", "x/y"}}) {
        r = LanceCli(args);
        EXPECT_NE(r.statut, 0) << args[1];
        EXPECT_FALSE(r.err.empty());
    }
    EXPECT_EQ(sylvane::test::LitFichier(base), octets);

    // A person of no sex merges with a man; no pair left, no file.
    r = LanceCli({"merge", base, "3", "1", "--yes", "--notes", "first"});
    ASSERT_EQ(r.statut, 0) << r.err;
    EXPECT_EQ(Personnes(base), 2u);
    EXPECT_FALSE(std::filesystem::exists(d / "b.fus"));
    // A damaged pairs file is read for what it holds.
    sylvane::test::EcritFichier(d / "b.fus", "3\r\n2\r\n\xFF\xFE\r\n1\r\n");
    r = LanceCli({"duplicates", base});
    ASSERT_EQ(r.statut, 0) << r.err;
    ASSERT_EQ(Lignes(r.out).size(), 1u);
    EXPECT_EQ(Lignes(r.out)[0]["first"], 3);
}

} // namespace
