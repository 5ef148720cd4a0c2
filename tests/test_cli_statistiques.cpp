// The anniversaries verb as a report: the year's recapitulation and a
// month's calendar report of the sample family, in HTML and in RTF.
#include "support/dossier_temp.h"
#include "support/lance_cli.h"
#include "text/messages.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace sylvane;
using sylvane::test::DossierTemp;
using sylvane::test::LanceCli;

namespace {

std::string Lit(const std::string& chemin) {
    std::ifstream f(chemin, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

TEST(CliAnniversaires, LAnneeEtUnMoisEnHtmlEtEnRtf) {
    DefinitMessages({{730, "janvier"}, {731, "f\xE9vrier"}});
    DossierTemp d;
    const std::string base = d / "famille.sv2";
    ASSERT_EQ(LanceCli({"import-gedcom", SYLVANE_SOURCE_DIR "/samples/famille-exemple.ged", base}).statut, 0);

    const std::string annee = d / "annee.htm";
    auto r = LanceCli({"anniversaries", base, "--html", annee});
    ASSERT_EQ(r.statut, 0) << r.err;
    const std::string h = Lit(annee);
    // Each day of the year that holds a birth, a death or a marriage, in order.
    const auto janvier = h.find("<TH><STRONG>2 janvier</STRONG></TH><TR>");
    const auto fevrier = h.find("<TH><STRONG>2 f&eacute;vrier</STRONG></TH><TR>");
    ASSERT_NE(janvier, std::string::npos);
    ASSERT_NE(fevrier, std::string::npos);
    EXPECT_LT(janvier, fevrier);
    EXPECT_NE(h.find("<TH></TH><TD>Jean-Baptiste DURAND 1797 Pont-de-Pany</TD><TR>"), std::string::npos);
    EXPECT_FALSE(Lit(d / "Sylvane.css").empty());

    const std::string mois = d / "fevrier.htm";
    r = LanceCli({"anniversaries", base, "--month", "2", "--html", mois});
    ASSERT_EQ(r.statut, 0) << r.err;
    const std::string m = Lit(mois);
    EXPECT_NE(m.find("<A HREF=\"#j34\">3 f&eacute;vrier</A>"), std::string::npos);
    EXPECT_NE(m.find("<H2><A NAME=\"j34\">3 f&eacute;vrier</H2>\r\n<H2 ALIGN=CENTER><A NAME=\"i"),
              std::string::npos);
    EXPECT_EQ(m.find("NAME=\"j2\""), std::string::npos); // no day of January

    const std::string rtf = d / "annee.rtf";
    r = LanceCli({"anniversaries", base, "--rtf", rtf});
    ASSERT_EQ(r.statut, 0) << r.err;
    const std::string t = Lit(rtf);
    EXPECT_EQ(t.rfind("{\\rtf1\\ansi", 0), 0u);
    EXPECT_NE(t.find("2 f\\'E9vrier"), std::string::npos);

    // Bad requests write nothing.
    EXPECT_NE(LanceCli({"anniversaries", base, "--html", mois, "--rtf", rtf}).statut, 0);
    EXPECT_NE(LanceCli({"anniversaries", base, "--month", "2", "--day", "3", "--html", d / "x.htm"}).statut, 0);
    EXPECT_TRUE(Lit(d / "x.htm").empty());
    EXPECT_NE(LanceCli({"anniversaries", base, "--html", d / "absent/y.htm"}).statut, 0);
    DefinitMessages({});
}

} // namespace
