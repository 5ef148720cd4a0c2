#include "text/messages.h"
#include "text/tags.h"

#include <gtest/gtest.h>

using namespace sylvane;

TEST(Tags, BothDirectionsAndUnknownTextsPassUnchanged) {
    DefinitMessages({{754, "Naissance"}, {734, "mai"}, {644, "\xC9v\xE9nement"}, {1537, "Relation"}});
    EXPECT_EQ(TagsConnus().size(), 135u);
    EXPECT_EQ(Conv_LibelleTag("BIRT"), "Naissance");
    EXPECT_EQ(Conv_LibelleTag("MAY"), "mai");
    EXPECT_EQ(Conv_LibelleTag("EVEN"), "\xC9v\xE9nement");
    EXPECT_EQ(Conv_LibelleTag("ZZZZ"), "ZZZZ");
    EXPECT_EQ(Conv_LibelleTag(""), "");

    EXPECT_EQ(Conv_TagLibelle("Naissance"), "BIRT");
    EXPECT_EQ(Conv_TagLibelle("mai"), "MAY");
    EXPECT_EQ(Conv_TagLibelle("\xC9v\xE9nement"), "EVEN");
    EXPECT_EQ(Conv_TagLibelle("BIRT"), "BIRT");   // already a tag
    EXPECT_EQ(Conv_TagLibelle("DEAT"), "DEAT");   // a tag even with its word missing
    EXPECT_EQ(Conv_TagLibelle("naissance"), "naissance"); // equal means equal
    EXPECT_EQ(Conv_TagLibelle("Bapt\xEAme"), "Bapt\xEAme");
    // A missing message is the empty text, which must not match anything.
    EXPECT_EQ(Conv_TagLibelle(""), "");
    DefinitMessages({});
}
