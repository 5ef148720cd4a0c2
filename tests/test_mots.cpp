#include "text/mots.h"

#include <gtest/gtest.h>

using namespace sylvane;

TEST(CleMot, FoldsAccentsAndSignsKeepingLength) {
    // "Élisabeth-Marie" in Windows-1252.
    EXPECT_EQ(CleMot("\xC9lisabeth-Marie"), "ELISABETH MARIE");
    EXPECT_EQ(CleMot("l'\xE9t\xE9;a,b:c_d.e\x92" "f\xB4"), "L ETE A B C D E F ");
    // Æ, Œ and ß are not folded.
    EXPECT_EQ(CleMot("\xE6\x9C\xDF"), "\xC6\x8C\xDF");
    for (int c = 0; c < 256; ++c) EXPECT_EQ(CleMot(std::string(1, char(c))).size(), 1u);
}

TEST(SansParticule, SetsParticlesAsideOnlyWhenTheOptionIsOn) {
    const auto& p = ParticulesParDefaut();
    EXPECT_EQ(SansParticule("de la Tour-Maubourg", p, true), "Tour.Maubourg.(de.la)");
    EXPECT_EQ(SansParticule("de la Tour-Maubourg", p, false), "de.la.Tour.Maubourg");
    EXPECT_EQ(SansParticule("d'Artagnan", p, true), "Artagnan.(d)");
    // A single pass over the list: "la" comes after "de" in it.
    EXPECT_EQ(SansParticule("la de Tour", p, true), "de.Tour.(la)");
    EXPECT_EQ(SansParticule("Martin", p, true), "Martin");
    EXPECT_EQ(SansParticule("  Le  Blanc ", p, false), "Le..Blanc");
    // The blank added behind the name lets a lone particle go, in the
    // list's own spelling.
    EXPECT_EQ(SansParticule("De", p, true), "(de)");
}

TEST(Points, RoundTrip) {
    EXPECT_EQ(VersPoints("  Saint Lo "), "Saint.Lo");
    EXPECT_EQ(DesPoints("Saint.Lo."), "Saint Lo");
}
