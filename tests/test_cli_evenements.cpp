// `sylvane-cli event`: one event whole, with its persons and the roles their
// own lists give them; and the refusals of a number that names no event.
#include "support/dossier_temp.h"
#include "support/lance_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using sylvane::test::DossierTemp;
using sylvane::test::LanceCli;

TEST(CliEvenements, AnEventWithItsPersonsAndTheirRoles) {
    DossierTemp d;
    const std::string base = d / "famille.sv2";
    ASSERT_EQ(LanceCli({"new", base}).statut, 0);
    ASSERT_EQ(LanceCli({"add-person", base, "--name", "Martin", "--first", "Jean", "--sex", "H",
                        "--birth", "1820"}).out, "1\n");
    ASSERT_EQ(LanceCli({"add-person", base, "--name", "Martin", "--first", "Paul", "--sex", "H",
                        "--birth", "1850", "--father", "1"}).out, "2\n");
    ASSERT_EQ(LanceCli({"add-event", base, "--person", "2", "--tag", "BIRT", "--date",
                        "14 mars 1850", "--place", "Saint-L\xC3\xB4"}).out, "1\n");

    const auto r = LanceCli({"event", base, "1"});
    ASSERT_EQ(r.statut, 0) << r.err;
    const auto j = nlohmann::json::parse(r.out);
    EXPECT_EQ(j["number"], 1);
    EXPECT_EQ(j["tag"], "BIRT");
    EXPECT_EQ(j["dateText"], "14 mars 1850");
    EXPECT_EQ(j["place"], "Saint-L\xC3\xB4");
    EXPECT_EQ(j["title"], "Paul Martin");
    ASSERT_EQ(j["persons"].size(), 2u);
    EXPECT_EQ(j["persons"][0]["person"], 1);
    EXPECT_EQ(j["persons"][0]["role"], "FATH");
    EXPECT_EQ(j["persons"][0]["mainRole"], false);
    EXPECT_EQ(j["persons"][1]["person"], 2);
    EXPECT_EQ(j["persons"][1]["role"], "CHIL");
    EXPECT_EQ(j["persons"][1]["mainRole"], true);
    EXPECT_TRUE(j["documents"].empty());

    for (const char* faux : {"2", "0", "x1", "-1", "99999999999"}) {
        const auto e = LanceCli({"event", base, faux});
        EXPECT_NE(e.statut, 0) << faux;
        EXPECT_TRUE(e.out.empty()) << faux;
        EXPECT_FALSE(e.err.empty()) << faux;
    }
    EXPECT_NE(LanceCli({"event", base}).statut, 0);
    EXPECT_NE(LanceCli({"event", d / "absente.sv2", "1"}).statut, 0);
}
