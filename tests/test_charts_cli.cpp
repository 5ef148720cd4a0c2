// The chart verb on the sample family: an SVG picture of the sheets, or the
// page template itself, and its refusals.
#include "charts/gabarit.h"
#include "store/fichier.h"
#include "support/dossier_temp.h"
#include "support/lance_cli.h"
#include "text/utf8.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

using namespace sylvane;
using test::LanceCli;

namespace {

struct Graphe : testing::Test {
    test::DossierTemp d;
    std::string base = d / "famille.sv2";
    void SetUp() override {
        ASSERT_EQ(LanceCli({"import-gedcom", SYLVANE_SOURCE_DIR "/samples/famille-exemple.ged",
                            base})
                      .statut,
                  0);
    }
    // Félix DURAND, born 1854, has six generations above him.
    static constexpr const char* kFelix = "9";
};

std::size_t Compte(const std::string& texte, const std::string& motif) {
    std::size_t n = 0;
    for (auto i = texte.find(motif); i != std::string::npos; i = texte.find(motif, i + 1)) ++n;
    return n;
}

} // namespace

TEST_F(Graphe, SvgOfTheSheets) {
    const std::string svg = d / "asc \xC3\xA9t\xC3\xA9 'x'.svg";
    const auto r = LanceCli({"chart", base, kFelix, "--type", "asc", "--generations", "6", "--svg",
                             svg, "--colour"});
    ASSERT_EQ(r.statut, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["ascendant_generations"], 6);
    EXPECT_EQ(j["sheets_across"], 1);
    EXPECT_EQ(j["sheets_down"], 2);
    const std::string s = test::LitFichier(svg);
    EXPECT_EQ(s.rfind("<?xml", 0), 0u);
    EXPECT_EQ(s.substr(s.size() - 7), "</svg>\n");
    EXPECT_EQ(Compte(s, "<g transform="), 2u); // two sheets
    EXPECT_NE(s.find("F\xC3\xA9lix"), std::string::npos);
    EXPECT_NE(s.find("fill=\"#aaaaaa\""), std::string::npos); // the root in grey
    EXPECT_NE(s.find("Feuille : 1/1"), std::string::npos);
    // The template was only a step: nothing of it stays in the work folder.
    for (const auto& f : std::filesystem::directory_iterator(std::filesystem::temp_directory_path()))
        EXPECT_NE(f.path().filename().string(), "famille.svp");
}

TEST_F(Graphe, OtherDatumAndSingleSheet) {
    // Joseph, his father and grandfather are all vine growers; one sheet
    // has no sheet marks.
    const auto r = LanceCli({"chart", base, "31", "--generations", "2", "--other", "OCCU",
                             "--svg", d / "o.svg"});
    ASSERT_EQ(r.statut, 0) << r.err;
    const std::string s = test::LitFichier(d / "o.svg");
    EXPECT_EQ(Compte(s, ">vigneron<"), 3u);
    EXPECT_EQ(s.find("Feuille"), std::string::npos);
}

TEST_F(Graphe, TemplateOfEveryKind) {
    for (const char* type : {"asc", "desc", "mixed", "couple"}) {
        const std::string svp = d / (std::string(type) + ".svp");
        const auto r = LanceCli({"chart", base, "31", "--type", type, "--generations", "3",
                                 "--sheets-across", "2", "--paper", "A3", "--svp", svp});
        ASSERT_EQ(r.statut, 0) << type << r.err;
        LecteurGabarit l(systemeReel(), CheminInterne(svp));
        EXPECT_EQ(l.Entete().feuillesH, 2);
        EXPECT_EQ(l.Entete().largeurTotale, (16838 - 16838 / 16) * 2 + 16838 / 16);
        EnregGabarit e;
        std::size_t boites = 0;
        while (l.Suivant(e)) boites += e.type == 'C' && e.personne != 0;
        EXPECT_GE(boites, 3u) << type;
    }
}

TEST_F(Graphe, Refusals) {
    // PDF needs the desktop program's printer layer.
    auto r = LanceCli({"chart", base, kFelix, "--pdf", d / "x.pdf"});
    EXPECT_EQ(r.statut, 2);
    EXPECT_NE(r.err.find("PDF"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(d / "x.pdf"));
    EXPECT_EQ(LanceCli({"chart", base, kFelix, "--type", "tout", "--svg", d / "x.svg"}).statut, 2);
    EXPECT_EQ(LanceCli({"chart", base, kFelix}).statut, 2);
    EXPECT_EQ(LanceCli({"chart", base, kFelix, "--svg", d / "a", "--svp", d / "b"}).statut, 2);
    EXPECT_EQ(LanceCli({"chart", base, kFelix, "--paper", "A0", "--svg", d / "x.svg"}).statut, 2);
    EXPECT_EQ(LanceCli({"chart", base, "9999", "--svg", d / "x.svg"}).statut, 2);
    r = LanceCli({"chart", base, kFelix, "--sheets-across", "100", "--sheets-down", "100",
                  "--svg", d / "x.svg"});
    EXPECT_EQ(r.statut, 1);
    EXPECT_NE(r.err.find("10000 feuilles"), std::string::npos) << r.err;
    // Félix has no marriage: no couple chart.
    r = LanceCli({"chart", base, kFelix, "--type", "couple", "--svg", d / "x.svg"});
    EXPECT_EQ(r.statut, 1);
    EXPECT_NE(r.err.find("mariage"), std::string::npos);
    // The base itself is never the output.
    const std::string avant = test::LitFichier(base);
    EXPECT_EQ(LanceCli({"chart", base, kFelix, "--svg", base}).statut, 1);
    EXPECT_EQ(test::LitFichier(base), avant);
    EXPECT_FALSE(std::filesystem::exists(d / "x.svg"));
}
