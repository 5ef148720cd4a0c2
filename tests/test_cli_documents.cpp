// The document verbs: add-document attaches to a person or an event and
// refuses what the base can't hold, leaving it as it was; picture-info
// prints the header the viewer shows, and an error for a damaged file.
#include "store/base.h"
#include "store/fichier.h"
#include "support/dossier_temp.h"
#include "support/lance_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace sylvane;
using test::LanceCli;

namespace {

const std::string kImages = std::string(SYLVANE_SOURCE_DIR) + "/tests/data/images/";

struct CliDocuments : ::testing::Test {
    test::DossierTemp dossier;
    std::string base;
    void SetUp() override {
        base = dossier.chemin() + "/famille.sv2";
        ASSERT_EQ(LanceCli({"new", base}).statut, 0);
        ASSERT_EQ(LanceCli({"add-person", base, "--name", "Martin", "--first", "Jean"}).out, "1\n");
        ASSERT_EQ(LanceCli({"add-event", base, "--person", "1", "--tag", "BIRT", "--date",
                            "12 mars 1850"})
                      .out,
                  "1\n");
    }
};

TEST_F(CliDocuments, AddDocumentAttachesToAPersonOrAnEvent) {
    auto r = LanceCli({"add-document", base, "--title", "Acte de naissance", "--file",
                       "actes/naissance.jpg", "--type", "Acte", "--person", "1"});
    ASSERT_EQ(r.statut, 0) << r.err;
    EXPECT_EQ(r.out, "1\n");
    r = LanceCli({"add-document", base, "--title", "Registre", "--file", "http://archives.fr/r",
                  "--event", "1"});
    ASSERT_EQ(r.statut, 0) << r.err;
    EXPECT_EQ(r.out, "2\n");
    EXPECT_EQ(LanceCli({"add-document", base, "--file", "seul.txt"}).out, "3\n");
    r = LanceCli({"documents", base});
    ASSERT_EQ(r.statut, 0);
    const auto premier = nlohmann::json::parse(r.out.substr(0, r.out.find('\n')));
    EXPECT_EQ(premier["title"], "");
    Parametres p;
    Base b(systemeReel(), p);
    b.Ouvre(base, true);
    EXPECT_EQ(b.DocNo(1, 1), 1u);
    EXPECT_EQ(b.DocEvtNo(1, 1), 2u);
    EXPECT_EQ(b.TitreDoc(1), "Acte de naissance");
    EXPECT_EQ(b.FichierDoc(1), "actes/naissance.jpg");
    EXPECT_EQ(b.TypeDoc(1), "Acte");
    b.Abandonne();
}

TEST_F(CliDocuments, AddDocumentRefusesAndLeavesTheBaseAsItWas) {
    const std::string avant = lireTout(systemeReel(), base);
    const std::vector<std::vector<std::string>> refus = {
        {"add-document", base},
        {"add-document", base, "--title", "  "},
        {"add-document", base, "--title", "T", "--person", "9"},
        {"add-document", base, "--title", "T", "--event", "7"},
        {"add-document", base, "--title", "T", "--person", "1", "--event", "1"},
        {"add-document", base, "--title", "ligne\nsuivante"},
        {"add-document", base, "--file", "nom\xC3\xBFtype"},
        {"add-document", dossier.chemin() + "/absente.sv2", "--title", "T"},
    };
    for (const auto& args : refus) {
        const auto r = LanceCli(args);
        EXPECT_NE(r.statut, 0) << args.back();
        EXPECT_FALSE(r.err.empty());
    }
    EXPECT_EQ(lireTout(systemeReel(), base), avant);
}

TEST_F(CliDocuments, PictureInfoPrintsTheHeaderOrTheError) {
    auto r = LanceCli({"picture-info", kImages + "modele.pcx"});
    ASSERT_EQ(r.statut, 0) << r.err;
    auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["format"], "pcx");
    EXPECT_FALSE(j.contains("error"));
    bool vu = false;
    for (const auto& l : j["header"])
        if (l["label"] == "PC Paintbrush Ver.") vu = l["value"] == "3.0 (or later)";
    EXPECT_TRUE(vu) << r.out;

    // A name out of ASCII: written under the program's form of it, given
    // to the command in UTF-8.
    const std::string coupe = dossier.chemin() + "/coupé.tga";
    ecrireTout(systemeReel(), dossier.chemin() + "/coup\xE9.tga", std::string("\x00\x01", 2));
    r = LanceCli({"picture-info", coupe});
    EXPECT_EQ(r.statut, 1);
    j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["error"], "Ent\xC3\xAAte de fichier erron\xC3\xA9");
    EXPECT_EQ(j["file"], coupe);

    EXPECT_EQ(LanceCli({"picture-info", dossier.chemin() + "/absent.gif"}).statut, 1);
    EXPECT_EQ(LanceCli({"picture-info", kImages + "fabrique.sh"}).statut, 1);
    EXPECT_EQ(LanceCli({"picture-info"}).statut, 2);
}

} // namespace
