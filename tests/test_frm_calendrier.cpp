// The calendar form: the fields as texts, both directions, both methods,
// and the refusals.
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/frm_calendrier.h"

#include <gtest/gtest.h>

using namespace sylvane;
using sylvane::test::BoitesFausses;

namespace {

class Calendrier : public ::testing::Test {
  protected:
    void SetUp() override {
        std::map<int, std::string> m;
        const char* mois[] = {"janvier", "f\xE9vrier", "mars", "avril", "mai", "juin", "juillet",
                              "ao\xFBt", "septembre", "octobre", "novembre", "d\xE9" "cembre"};
        for (int i = 0; i < 12; ++i) m[730 + i] = mois[i];
        DefinitMessages(m);
    }
    void TearDown() override { DefinitMessages({}); }

    BoitesFausses boites;
};

using Cote = FrmCalendrier::Cote;

TEST_F(Calendrier, TableMethodBothWays) {
    FrmCalendrier f(boites);
    EXPECT_EQ(f.gregorien, (Cote{"22", "septembre", "1792"}));
    EXPECT_EQ(f.republicain, (Cote{"1", "Vend\xE9miaire", "I"}));

    // The text of a list is matched whatever its case and accents.
    f.gregorien = {" 1", "JANVIER", "1793"};
    ASSERT_TRUE(f.CmdGR());
    EXPECT_EQ(f.republicain, (Cote{"12", "Niv\xF4se", "I"}));
    ASSERT_TRUE(f.CmdRG());
    EXPECT_EQ(f.gregorien, (Cote{"1", "janvier", "1793"}));

    // Before the Republic: the fifth complementary day, and the year list
    // keeps what it showed.
    f.republicain.annee = "IV";
    f.gregorien = {"21", "septembre", "1792"};
    ASSERT_TRUE(f.CmdGR());
    EXPECT_EQ(f.republicain, (Cote{"5", "Sans-culottide", "IV"}));

    // The table's oddity: 30 February goes through.
    f.gregorien = {"30", "f\xE9vrier", "1795"};
    EXPECT_TRUE(f.CmdGR());
    EXPECT_TRUE(boites.informations.empty());
}

TEST_F(Calendrier, RefusalsShowTheirMessageAndChangeNothing) {
    FrmCalendrier f(boites);
    const Cote avant = f.gregorien;
    f.republicain = {"31", "Brumaire", "II"};
    EXPECT_FALSE(f.CmdRG());
    f.republicain = {"x", "Brumaire", "II"};
    EXPECT_FALSE(f.CmdRG());
    f.republicain = {"3", "Brum", "II"};
    EXPECT_FALSE(f.CmdRG());
    f.republicain = {"3", "Brumaire", "XV"};
    EXPECT_FALSE(f.CmdRG());
    f.gregorien = {"0", "mars", "1800"};
    EXPECT_FALSE(f.CmdGR());
    f.gregorien = {"1", "mars", "1806"};
    EXPECT_FALSE(f.CmdGR());
    EXPECT_EQ(boites.informations, (std::vector<int>{726, 726, 728, 729, 726, 729}));
    f.gregorien = avant;
    EXPECT_EQ(f.republicain.jour, "3");
}

TEST_F(Calendrier, ExactMethod) {
    FrmCalendrier f(boites);
    f.methode = MethodeCalendrier::Calcul;
    // Where the table has no offset (before September 1792) the count of
    // days refuses instead.
    f.gregorien = {"21", "septembre", "1792"};
    EXPECT_FALSE(f.CmdGR());
    f.gregorien = {"30", "f\xE9vrier", "1795"};
    EXPECT_FALSE(f.CmdGR());
    // Year III has six complementary days, year IV five.
    f.republicain = {"6", "Sans-culottide", "III"};
    ASSERT_TRUE(f.CmdRG());
    EXPECT_EQ(f.gregorien, (Cote{"22", "septembre", "1795"}));
    f.republicain = {"6", "Sans-culottide", "IV"};
    EXPECT_FALSE(f.CmdRG());
    // The last day of the calendar, and the day after it.
    f.gregorien = {"31", "d\xE9" "cembre", "1805"};
    ASSERT_TRUE(f.CmdGR());
    EXPECT_EQ(f.republicain, (Cote{"10", "Niv\xF4se", "XIV"}));
    f.republicain.jour = "11";
    EXPECT_FALSE(f.CmdRG());
    EXPECT_EQ(boites.informations, (std::vector<int>{kMsgAvantRepublique, 726, 726,
                                                     kMsgApresRepublique}));
    // 18 Brumaire VIII, both methods agree.
    for (auto m : {MethodeCalendrier::Table, MethodeCalendrier::Calcul}) {
        f.methode = m;
        f.republicain = {"18", "Brumaire", "VIII"};
        ASSERT_TRUE(f.CmdRG());
        EXPECT_EQ(f.gregorien, (Cote{"9", "novembre", "1799"}));
    }
}

TEST_F(Calendrier, MethodsDifferWhereTheTableIsOdd) {
    // The table counts 1800 as a leap year on the way back: from 10 Ventôse
    // VIII it runs a day behind the real count until March.
    FrmCalendrier f(boites);
    f.republicain = {"10", "Vent\xF4se", "VIII"};
    ASSERT_TRUE(f.CmdRG());
    const Cote table = f.gregorien;
    f.methode = MethodeCalendrier::Calcul;
    ASSERT_TRUE(f.CmdRG());
    EXPECT_EQ(f.gregorien, (Cote{"1", "mars", "1800"}));
    EXPECT_NE(table, f.gregorien);
}

} // namespace
