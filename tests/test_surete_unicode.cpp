// Characters outside Windows-1252 kept as references, shown as themselves,
// sorted and searched by their Latin form.
#include "text/conversion.h"
#include "text/mots.h"
#include "text/phonetique.h"
#include "text/translitteration.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

using namespace sylvane;

TEST(SureteUnicode, ReferencesKeepWhatWindows1252CantHold) {
    const std::string zykov = "\xD0\x97\xD1\x8B\xD0\xBA\xD0\xBE\xD0\xB2"; // Зыков
    const std::string ref = Utf8VersAnsiRef(zykov);
    EXPECT_EQ(ref, "&#1047;&#1099;&#1082;&#1086;&#1074;");
    EXPECT_TRUE(ContientReference(ref));
    EXPECT_EQ(AnsiRefVersUtf8(ref), zykov);
    // What Windows-1252 holds stays a byte; a decomposed accent composes.
    EXPECT_EQ(Utf8VersAnsiRef("Ren\xC3\xA9 e\xCC\x81"), "Ren\xE9 \xE9");
    EXPECT_EQ(Utf8VersAnsiRef("\xC5\x82\xF0\x9F\x8C\xB3"), "&#322;&#127795;");
    EXPECT_EQ(AnsiRefVersUtf8("Ren\xE9 &#322; & #1; &#;"), "Ren\xC3\xA9 \xC5\x82 & #1; &#;");
    EXPECT_FALSE(ContientReference("a & b #1;"));
}

TEST(SureteUnicode, SortPhoneticAndOtherSetsUseTheLatinForm) {
    const std::string ref = "&#1047;&#1099;&#1082;&#1086;&#1074;";
    EXPECT_EQ(Translitere(ref), "Zykov");
    EXPECT_EQ(Translitere("Jean " + ref + " (1850)"), "Jean Zykov (1850)");
    EXPECT_EQ(Translitere("sans"), "sans");
    EXPECT_EQ(CleMot(ref), CleMot("Zykov"));
    EXPECT_EQ(Conv_ClePhonetique(ref), Conv_ClePhonetique("Zykov"));
    // "?" once sorted every Cyrillic name before "A".
    EXPECT_LT(CleMot("Zola"), CleMot(ref));
    EXPECT_GT(CleMot(ref), CleMot("Yves"));
    // HTML keeps the reference; ANSEL and the DOS set get the Latin form.
    EXPECT_EQ(Conv_AnsiVersHtml("&#1047; & \xE9"), "&#1047; &amp; &eacute;");
    EXPECT_EQ(Conv_AnsiVers437(ref), "Zykov");
    EXPECT_EQ(Conv_AnsiVersAnsel(ref), "Zykov");
}
