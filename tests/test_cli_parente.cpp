// The relationship, cousins and branch verbs over a base on disk.
#include "support/lance_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>

using namespace sylvane;
using nlohmann::json;
using sylvane::test::LanceCli;

namespace {

struct VerbesParente : testing::Test {
    std::filesystem::path dossier;
    std::string base;
    // 1 and 2 have 3 and 4; 3's son 6 (with 5) and 4's daughter 8 (with
    // 7) are first cousins; they marry and have 9 and 10. 11 is a stranger.
    void SetUp() override {
        dossier = std::filesystem::temp_directory_path() /
                  ("sylvane-parente-" +
                   std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
        std::filesystem::remove_all(dossier);
        std::filesystem::create_directories(dossier);
        base = (dossier / "famille.sv2").string();
        ASSERT_EQ(LanceCli({"new", base}).statut, 0);
        Ajoute("Jean", "H", "", "", "1718");
        Ajoute("Anne", "F", "", "", "1722");
        Ajoute("Claude", "H", "1", "2", "1742");
        Ajoute("Denise", "F", "1", "2", "1745");
        Ajoute("Marguerite", "F", "", "", "1746");
        Ajoute("Etienne", "H", "3", "5", "1771");
        Ajoute("Jacques", "H", "", "", "1744");
        Ajoute("Francoise", "F", "7", "4", "1772");
        Ajoute("Gilles", "H", "6", "8", "1797");
        Ajoute("Helene", "F", "6", "8", "1799");
        Ajoute("Isidore", "H", "", "", "1800");
        ASSERT_EQ(LanceCli({"marry", base, "1", "2"}).statut, 0);
        ASSERT_EQ(LanceCli({"marry", base, "6", "8"}).statut, 0);
    }
    void TearDown() override { std::filesystem::remove_all(dossier); }

    void Ajoute(const std::string& prenom, const std::string& sexe, const std::string& pere,
                const std::string& mere, const std::string& an) {
        cli::Arguments a{"add-person", base,    "--name", "Lebrun", "--first",
                         prenom,       "--sex", sexe,     "--birth", an};
        if (!pere.empty()) a.insert(a.end(), {"--father", pere});
        if (!mere.empty()) a.insert(a.end(), {"--mother", mere});
        const auto r = LanceCli(a);
        ASSERT_EQ(r.statut, 0) << r.err;
    }
    static std::vector<json> Lignes(const std::string& sortie) {
        std::vector<json> r;
        std::istringstream in(sortie);
        for (std::string l; std::getline(in, l);) r.push_back(json::parse(l));
        return r;
    }
};

TEST_F(VerbesParente, CommonAscendanceAndItsGraph) {
    auto r = LanceCli({"relationship", base, "6", "8"});
    ASSERT_EQ(r.statut, 0) << r.err;
    json j = json::parse(r.out);
    EXPECT_TRUE(j["found"]);
    EXPECT_EQ(j["generation"], 2);
    EXPECT_EQ(j["common"], json({1, 2}));
    EXPECT_EQ(j["list"], json({1, 2, 6, 8}));
    // Both cousins hang from both grandparents through their parents 3 and 4.
    std::map<int, json> parPersonne;
    for (const json& n : j["nodes"]) parPersonne[n["person"].get<int>()] = n;
    ASSERT_EQ(parPersonne.size(), 6u);
    EXPECT_EQ(parPersonne[1]["level"], 1);
    EXPECT_EQ(parPersonne[3]["level"], 2);
    EXPECT_EQ(parPersonne[6]["level"], 3);
    const int noeud3 = parPersonne[3]["node"];
    EXPECT_EQ(parPersonne[6]["father"], noeud3);
    EXPECT_EQ(j["marriages"].size(), 2u);

    // Common descendance of the two children of 1 and 2; a filiation.
    r = LanceCli({"relationship", base, "3", "4", "--mode", "common-desc"});
    ASSERT_EQ(r.statut, 0) << r.err;
    EXPECT_EQ(json::parse(r.out)["common"], json({9, 10}));
    r = LanceCli({"relationship", base, "1", "9", "--mode", "filiation"});
    ASSERT_EQ(r.statut, 0) << r.err;
    j = json::parse(r.out);
    EXPECT_EQ(j["nodes"].size(), 6u) << "1, 9 and both lines between them: 3, 6 and 4, 8";
}

TEST_F(VerbesParente, NothingFoundAndBadArguments) {
    auto r = LanceCli({"relationship", base, "9", "11"});
    EXPECT_EQ(r.statut, 1);
    // Message 695 (its number when the message file is not there).
    EXPECT_TRUE(r.err.find("Aucun anc\xC3\xAAtre commun") != std::string::npos ||
                r.err.find("695") != std::string::npos)
        << r.err;
    EXPECT_EQ(json::parse(r.out)["found"], false);
    r = LanceCli({"relationship", base, "9", "11", "--mode", "common-desc"});
    EXPECT_EQ(r.statut, 1);
    EXPECT_TRUE(r.err.find("Aucun descendant commun") != std::string::npos ||
                r.err.find("696") != std::string::npos)
        << r.err;
    EXPECT_EQ(LanceCli({"relationship", base, "9", "9"}).statut, 1) << "already selected";
    EXPECT_NE(LanceCli({"relationship", base, "9", "999"}).statut, 0);
    EXPECT_NE(LanceCli({"relationship", base, "6", "8", "--mode", "x"}).statut, 0);
    EXPECT_NE(LanceCli({"relationship", base, "6", "8", "--generations", "0"}).statut, 0);
    EXPECT_NE(LanceCli({"branch", base, "9"}).statut, 0) << "--asc or --desc";
    EXPECT_NE(LanceCli({"cousins", base, "9"}).statut, 0);
    const std::string pasBase = (dossier / "rien.sv2").string();
    EXPECT_NE(LanceCli({"relationship", pasBase, "1", "2"}).statut, 0);
}

TEST_F(VerbesParente, TheGraphAsATemplate) {
    const std::string svp = (dossier / "graphe.svp").string();
    const auto r = LanceCli({"relationship", base, "6", "8", "--svp", svp});
    ASSERT_EQ(r.statut, 0) << r.err;
    std::ifstream in(svp);
    int boites = 0;
    for (std::string l; std::getline(in, l);)
        if (l.rfind("\"C\"", 0) == 0) ++boites;
    EXPECT_EQ(boites, 6);
    // The base itself is not an output.
    EXPECT_NE(LanceCli({"relationship", base, "6", "8", "--svp", base}).statut, 0);
}

TEST_F(VerbesParente, CousinsAndTheirFiles) {
    auto r = LanceCli({"cousins", base, "6", "8", "--files", dossier.string()});
    ASSERT_EQ(r.statut, 0) << r.err;
    const auto lignes = Lignes(r.out);
    ASSERT_EQ(lignes.size(), 1u);
    EXPECT_EQ(lignes[0]["husband"], 1);
    EXPECT_EQ(lignes[0]["wife"], 2);
    EXPECT_EQ(lignes[0]["persons"], json({6, 8}));
    EXPECT_EQ(lignes[0]["children"].size(), 2u);
    EXPECT_TRUE(std::filesystem::exists(dossier / "Cousinage.txt"));
    EXPECT_TRUE(std::filesystem::exists(dossier / "LienCousinage.txt"));
    r = LanceCli({"cousins", base, "9", "11"});
    EXPECT_EQ(r.statut, 1);
    EXPECT_NE(r.err.find("aucun cousinage"), std::string::npos);

    // A page per person, named after it, and the ranking of the tables.
    const auto pages = dossier / "pages", tables = dossier / "tables";
    std::filesystem::create_directories(pages);
    std::filesystem::create_directories(tables);
    r = LanceCli(
        {"cousins", base, "6", "8", "11", "--pages", pages.string(), "--tables", tables.string()});
    ASSERT_EQ(r.statut, 0) << r.err;
    for (const auto& d : {pages, tables}) {
        EXPECT_TRUE(std::filesystem::exists(d / "Etienne.Lebrun.htm"));
        EXPECT_TRUE(std::filesystem::exists(d / "Isidore.Lebrun.htm"));
        EXPECT_TRUE(std::filesystem::exists(d / "Sylvane.css"));
    }
    std::ifstream txt(tables / "Tableau.txt");
    std::string premiere;
    std::getline(txt, premiere);
    EXPECT_EQ(premiere, "Lebrun (Etienne);Etienne.Lebrun.htm;Etienne Lebrun;1;1\r");
    // A folder that is a file: a clear error, nothing half written.
    r = LanceCli({"cousins", base, "6", "8", "--pages", base});
    EXPECT_NE(r.statut, 0);
    EXPECT_FALSE(r.err.empty());
}

TEST_F(VerbesParente, BranchOutlines) {
    auto r = LanceCli({"branch", base, "9", "--asc", "--depth", "2"});
    ASSERT_EQ(r.statut, 0) << r.err;
    auto lignes = Lignes(r.out);
    ASSERT_EQ(lignes.size(), 7u);
    EXPECT_EQ(lignes[0]["depth"], 1);
    EXPECT_EQ(lignes[0]["key"], "I1");
    EXPECT_EQ(lignes[1]["person"], 6);
    EXPECT_EQ(lignes[2]["depth"], 3);
    const std::string html = (dossier / "branche.htm").string();
    r = LanceCli({"branch", base, "1", "--desc", "--depth", "9", "--html", html});
    ASSERT_EQ(r.statut, 0) << r.err;
    lignes = Lignes(r.out);
    // 1, the marriage, 3 and 4, 3's children (6) and 4's (8): no marriage
    // node for 3 and 4 that have no marriage, 6's marriage, 9 and 10; and
    // 8's marriage with 9 and 10 again.
    EXPECT_TRUE(lignes[1].contains("marriage"));
    EXPECT_TRUE(std::filesystem::exists(html));
}

} // namespace
