#include "cli/cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>

using namespace sylvane;
using nlohmann::json;

namespace {

struct Verbes : testing::Test {
    std::filesystem::path dossier;
    std::string base;

    void SetUp() override {
        dossier =
            std::filesystem::temp_directory_path() /
            ("sylvane-kin-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
             "-" + testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::remove_all(dossier);
        std::filesystem::create_directories(dossier);
        base = (dossier / "cousins.sv2").string();
        ASSERT_EQ(Lance({"new", base}).first, 0);
    }
    void TearDown() override { std::filesystem::remove_all(dossier); }

    std::pair<int, std::string> Lance(const cli::Arguments& args) {
        std::ostringstream out, err;
        const int code = cli::Executer(args, out, err);
        return {code, out.str() + err.str()};
    }
    std::uint32_t Ajoute(const std::string& prenom, const std::string& sexe,
                         const std::string& pere = "", const std::string& mere = "") {
        cli::Arguments a{"add-person", base, "--name", "Cousin", "--first", prenom, "--sex", sexe};
        if (!pere.empty()) a.insert(a.end(), {"--father", pere});
        if (!mere.empty()) a.insert(a.end(), {"--mother", mere});
        auto [code, sortie] = Lance(a);
        EXPECT_EQ(code, 0) << sortie;
        return static_cast<std::uint32_t>(std::stoul(sortie));
    }
    std::vector<json> Lignes(const cli::Arguments& args) {
        auto [code, sortie] = Lance(args);
        EXPECT_EQ(code, 0) << sortie;
        std::vector<json> r;
        std::istringstream in(sortie);
        for (std::string l; std::getline(in, l);)
            r.push_back(json::parse(l));
        return r;
    }
};

TEST_F(Verbes, ListsAndNumbersOfMarriedCousins) {
    // A and B have C and D; C's son G marries D's daughter H; I is their son.
    Ajoute("A", "H");
    Ajoute("B", "F");
    Ajoute("C", "H", "1", "2");
    Ajoute("D", "F", "1", "2");
    Ajoute("G", "H", "3");
    Ajoute("H", "F", "", "4");
    const auto i = Ajoute("I", "H", "5", "6");

    auto asc = Lignes({"ascendants", base, std::to_string(i), "--order", "1"});
    ASSERT_EQ(asc.size(), 7u);
    EXPECT_EQ(asc[0]["person"], i);
    EXPECT_EQ(asc[0]["numbers"], json({1}));
    EXPECT_EQ(asc[5]["person"], 1);
    EXPECT_EQ(asc[5]["generation"], 4);
    EXPECT_EQ(asc[5]["link"], 3);
    EXPECT_EQ(asc[5]["numbers"], json({8, 14}));
    EXPECT_EQ(asc[5]["occurrences"], 2);
    EXPECT_TRUE(asc[5]["text"].is_string());

    auto desc = Lignes({"descendants", base, "1", "--implex", "--levels", "3"});
    ASSERT_EQ(desc.size(), 5u);
    EXPECT_EQ(desc[0]["numbers"], json({""}));
    EXPECT_EQ(desc[2]["person"], 5);
    EXPECT_EQ(desc[2]["numbers"], json({" 1-1"}));

    auto num = Lignes({"numbers", base, "--decujus", std::to_string(i), "--decujus2", "1"});
    ASSERT_EQ(num.size(), 7u);
    EXPECT_EQ(num[0],
              json({{"person", 1}, {"decujus1", "8"}, {"decujus2", "1"}, {"text", "[8] {1}"}}));
    EXPECT_EQ(num[6]["decujus2"], "1*1*1*1"); // through G, the father

    // The work files do not outlive the command.
    for (const auto& f :
         std::filesystem::directory_iterator(std::filesystem::temp_directory_path()))
        EXPECT_NE(f.path().filename().string(), "Critcousins.tmp");
}

TEST_F(Verbes, BadArgumentsAreRefused) {
    Ajoute("A", "H");
    EXPECT_EQ(Lance({"ascendants", base, "9"}).first, 2);
    EXPECT_EQ(Lance({"ascendants", base, "1", "--order", "4"}).first, 2);
    EXPECT_EQ(Lance({"descendants", base, "1", "--levels", "0"}).first, 2);
    EXPECT_EQ(Lance({"numbers", base}).first, 2);
    EXPECT_EQ(Lance({"ascendants", (dossier / "absente.sv2").string(), "1"}).first, 1);
}

} // namespace
