// The site, HTML report and RTF verbs over the sample family on disk.
#include "support/dossier_temp.h"
#include "support/lance_cli.h"
#include "support/pages_html.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

using namespace sylvane;
using sylvane::test::LanceCli;

namespace {

test::Pages Lit(const std::filesystem::path& dossier) {
    test::Pages r;
    for (const auto& f : std::filesystem::directory_iterator(dossier))
        r[f.path().filename().string()] = test::LitFichier(f.path().string());
    return r;
}

struct VerbesPublication : testing::Test {
    test::DossierTemp d;
    std::string base;
    void SetUp() override {
        base = d / "f.sv2";
        const auto r = LanceCli({"import-gedcom",
                                 std::string(SYLVANE_SOURCE_DIR) + "/samples/famille-exemple.ged",
                                 base, "--force"});
        ASSERT_EQ(r.statut, 0) << r.err;
    }
};

} // namespace

TEST_F(VerbesPublication, TheSiteAndTheReportsLinkOnlyToWhatTheyWrote) {
    auto r = LanceCli({"html-site", base, d / "site", "--decujus", "1"});
    ASSERT_EQ(r.statut, 0) << r.err;
    EXPECT_EQ(nlohmann::json::parse(r.out)["home"], d / "site/homepage.htm");
    const test::Pages site = Lit(d / "site");
    EXPECT_NE(site.at("homepage.htm").find("<FRAME src=\"i1.htm\" name=\"M\">"), std::string::npos);
    EXPECT_EQ(test::LiensCasses(site), std::vector<std::string>{});

    for (const char* genre : {"asc", "desc", "family"}) {
        const std::string sortie = d / (std::string("r-") + genre);
        r = LanceCli({"html-report", base, "1", "--report", genre, "--levels", "6", sortie});
        ASSERT_EQ(r.statut, 0) << r.err;
        const test::Pages pages = Lit(sortie);
        EXPECT_TRUE(pages.count("homepage.htm") && pages.count("i1.htm")) << genre;
        EXPECT_EQ(test::LiensCasses(pages), std::vector<std::string>{}) << genre;
    }
    r = LanceCli({"html-report", base, "1", "--report", "desc", "--single", d / "un.htm"});
    ASSERT_EQ(r.statut, 0) << r.err;
    EXPECT_TRUE(std::filesystem::exists(d / "Sylvane.css"));
    EXPECT_EQ(test::FautesBalises(test::LitFichier(d / "un.htm")), std::vector<std::string>{});
}

TEST_F(VerbesPublication, RtfReportsAndTheirRefusals) {
    for (const char* genre : {"sheet", "family", "asc", "desc"}) {
        const auto r = LanceCli({"rtf", base, "1", "--report", genre, d / "r.rtf"});
        ASSERT_EQ(r.statut, 0) << genre << r.err;
        EXPECT_EQ(test::LitFichier(d / "r.rtf").rfind("{\\rtf1\\ansi", 0), 0u);
        // The title names the person, read before the base is let go.
        EXPECT_NE(nlohmann::json::parse(r.out)["title"].get<std::string>().find("BERTHIER"),
                  std::string::npos)
            << r.out;
    }
    EXPECT_EQ(LanceCli({"rtf", base, "1", "--report", "tree", d / "x.rtf"}).statut, 2);
    EXPECT_EQ(LanceCli({"rtf", base, "1", "--report", "asc", "--levels", "0", d / "x.rtf"}).statut, 2);
    EXPECT_NE(LanceCli({"rtf", base, "99999", "--report", "sheet", d / "x.rtf"}).statut, 0);
    // A folder that does not exist: a clear error and nothing left.
    const auto r = LanceCli({"rtf", base, "1", "--report", "sheet", d / "nulle/part/x.rtf"});
    EXPECT_EQ(r.statut, 1);
    EXPECT_NE(r.err.find("nulle"), std::string::npos) << r.err;
    EXPECT_FALSE(std::filesystem::exists(d / "x.rtf"));
    EXPECT_EQ(LanceCli({"html-report", base, "1", "--report", "sheet", d / "y"}).statut, 2);
}
