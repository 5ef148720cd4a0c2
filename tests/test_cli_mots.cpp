// replace-keyword: a trade renamed across a base on disk, seen through the
// keyword list and the keyword search; its refusals leave the file alone.
#include "store/base.h"
#include "store/remplacement.h"
#include "support/dossier_temp.h"
#include "support/lance_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>

using namespace sylvane;
using test::LanceCli;

namespace {

class CliMots : public ::testing::Test {
  protected:
    test::DossierTemp dossier;
    std::string base = dossier / "famille.sv2";

    void SetUp() override {
        Parametres p;
        Base b(systemeReel(), p);
        b.Nouvelle(base);
        for (int i = 0; i < 6; ++i) {
            const auto n = b.CreePersonne("Martin", "Jean", "", 'H', std::to_string(1860 - i));
            const std::string note = b.LitNote(n) + (i % 2 ? "\r\nOCCU  \\laboureur" : "\r\nOCCU  \\marin");
            b.MajMots(n, b.LitNote(n), note);
            b.EcritNote(n, note);
        }
        AjouteGenre(b, "S", "Surnom", false);
        b.FermeBase();
    }

    // The words of the OCCU rubric with their persons.
    std::map<std::string, std::vector<int>> Metiers() {
        const auto r = LanceCli({"keywords", base, "OCCU"});
        EXPECT_EQ(r.statut, 2) << "a tag is no symbol";
        const auto k = LanceCli({"keywords", base, "\\"});
        EXPECT_EQ(k.statut, 0) << k.err;
        std::map<std::string, std::vector<int>> m;
        const auto j = nlohmann::json::parse(k.out);
        for (const auto& w : j["words"])
            m[w["word"]] = w["persons"].get<std::vector<int>>();
        return m;
    }
};

} // namespace

TEST_F(CliMots, ATradeIsRenamedInNotesAndIndex) {
    auto r = LanceCli({"replace-keyword", base, "OCCU", "Laboureur", "cultivateur de bl\xC3\xA9"});
    ASSERT_EQ(r.statut, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["persons"], 3);
    EXPECT_EQ(j["occurrences"], 3);
    auto m = Metiers();
    EXPECT_EQ(m.count("LABOUREUR"), 0u);
    // By birth year: persons 6 (1855), 4 (1857), 2 (1859).
    EXPECT_EQ(m["CULTIVATEUR DE BLE"], (std::vector<int>{6, 4, 2}));
    EXPECT_EQ(m["MARIN"], (std::vector<int>{5, 3, 1}));
    r = LanceCli({"search-keyword", base, "--word", "OCCU:cultivateur"});
    EXPECT_EQ(std::count(r.out.begin(), r.out.end(), '\n'), 3) << r.out;
    // The symbol names the kind as well; into an existing word.
    r = LanceCli({"replace-keyword", base, "\\", "marin", "cultivateur.de.bl\xC3\xA9"});
    ASSERT_EQ(r.statut, 0) << r.err;
    m = Metiers();
    EXPECT_EQ(m.size(), 1u);
    EXPECT_EQ(m["CULTIVATEUR DE BLE"], (std::vector<int>{6, 5, 4, 3, 2, 1}));
}

TEST_F(CliMots, RefusalsLeaveTheBaseAsItWas) {
    const std::string avant = test::LitFichier(base);
    for (const std::vector<std::string>& a :
         {std::vector<std::string>{"replace-keyword", base, "OCCU", "marin"},
          {"replace-keyword", base, "XXXX", "marin", "mousse"},
          {"replace-keyword", base, "S", "marin", "mousse"},
          {"replace-keyword", base, "OCCU", "marin", "a#b"},
          {"replace-keyword", base, "OCCU", "  ", "mousse"},
          {"replace-keyword", dossier / "absente.sv2", "OCCU", "marin", "mousse"}}) {
        const auto r = LanceCli(a);
        EXPECT_NE(r.statut, 0) << a[2] << a.size();
        EXPECT_FALSE(r.err.empty());
    }
    EXPECT_EQ(test::LitFichier(base), avant);
    // A kind without index is reached by the scan of every note.
    const auto r = LanceCli({"replace-keyword", base, "S", "marin", "mousse", "--all"});
    ASSERT_EQ(r.statut, 0) << r.err;
    EXPECT_EQ(nlohmann::json::parse(r.out)["occurrences"], 3);
    EXPECT_EQ(Metiers()["MOUSSE"], (std::vector<int>{5, 3, 1}));
}
