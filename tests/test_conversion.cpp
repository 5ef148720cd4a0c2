#include "text/conversion.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {
std::string octet(int b) { return std::string(1, static_cast<char>(b)); }
} // namespace

TEST(Ansel, ExamplesOfThePart) {
    EXPECT_EQ(Conv_AnsiVersAnsel("\xE9"), "\xE2" "e");
    EXPECT_EQ(Conv_AnselVersAnsi("\xE2" "e"), "\xE9");
    // A mark before a letter with no composed form gives the bare letter.
    EXPECT_EQ(Conv_AnselVersAnsi("\xE2" "b"), "b");
    EXPECT_EQ(Conv_AnselVersAnsi("x\xE2"), "x"); // a pending mark at the end is lost
    EXPECT_EQ(Conv_AnselVersAnsi("\xE1\xE2" "e"), "\xE9"); // a mark on a mark: the second waits
    EXPECT_EQ(Conv_AnsiVersAnsel("\x92"), "\xFE ");
    EXPECT_EQ(Conv_AnsiVersAnsel("\xD7\xF7"), "\xA1\xB1");
    EXPECT_EQ(Conv_AnsiVersAnsel("\x8C\x9C\xDF"), "\xA6\xB6\xCF");
    EXPECT_EQ(Conv_AnsiVersAnsel("No\xEBl \xC7" "a"), "No\xE8" "el \xF0" "Ca");
}

TEST(Ansel, EveryByteBothWays) {
    // Windows-1252 to ANSEL and back: every byte returns, but the ten whose
    // byte is an ANSEL code of the table for another letter.
    const std::string collisions = "\xA2\xA4\xA5\xA6\xAE\xB1\xB2\xB3\xB5\xB9";
    int retours = 0;
    for (int b = 0; b < 256; ++b) {
        const std::string a = octet(b);
        const std::string ansel = Conv_AnsiVersAnsel(a);
        ASSERT_GE(ansel.size(), 1u);
        ASSERT_LE(ansel.size(), 2u);
        if (b < 128) { EXPECT_EQ(ansel, a); }
        const std::string retour = Conv_AnselVersAnsi(ansel);
        if (collisions.find(static_cast<char>(b)) == std::string::npos) {
            EXPECT_EQ(retour, a) << b;
            ++retours;
        } else {
            EXPECT_NE(retour, a) << b;
        }
    }
    EXPECT_EQ(retours, 246);
    // ANSEL to Windows-1252: every byte alone gives one byte, but a mark
    // (224 to 254), which waits and is lost at the end.
    for (int b = 0; b < 256; ++b) {
        const std::string r = Conv_AnselVersAnsi(octet(b));
        EXPECT_EQ(r.size(), b >= 224 && b <= 254 ? 0u : 1u) << b;
        if (b < 128) { EXPECT_EQ(r, octet(b)); }
        // A mark followed by every byte: one byte, never two.
        for (int c = 0; c < 256; ++c)
            if (b >= 224 && b <= 254 && !(c >= 224 && c <= 254)) {
                EXPECT_EQ(Conv_AnselVersAnsi(octet(b) + octet(c)).size(), 1u);
            }
    }
}

TEST(Code437, DeparturesOfThePart) {
    EXPECT_EQ(Conv_AnsiVers437("\xE9"), "\x82");
    EXPECT_EQ(Conv_AnsiVers437("\xF9"), "\x97");
    EXPECT_EQ(Conv_AnsiVers437("\xED"), "\xED"); // í has no code
    EXPECT_EQ(Conv_AnsiVers437("\xAA"), "\xAA"); // ª neither
    EXPECT_EQ(Conv_AnsiVers437("\xA6\xB4\x92"), "\xB3\xB3\xB3");
    EXPECT_EQ(Conv_AnsiVers437("\x80"), "\x80"); // € is outside the table
    EXPECT_EQ(Conv_437VersAnsi("\xA1"), "\xF9");
    EXPECT_EQ(Conv_437VersAnsi("\xA6"), "\xE9");
    EXPECT_EQ(Conv_437VersAnsi("\xB3"), "\xA6");
    EXPECT_EQ(Conv_437VersAnsi("\xC4"), "\xC4"); // a box line stays
}

TEST(Code437, EveryByteBothWays) {
    int retours = 0;
    for (int b = 0; b < 256; ++b) {
        const std::string a = octet(b);
        const std::string c = Conv_AnsiVers437(a);
        ASSERT_EQ(c.size(), 1u);
        if (b < 128) { EXPECT_EQ(c, a); }
        retours += Conv_437VersAnsi(c) == a;
        EXPECT_EQ(Conv_437VersAnsi(a).size(), 1u);
        if (b < 128) { EXPECT_EQ(Conv_437VersAnsi(a), a); }
    }
    // Established by listing: the bytes that do not come back are the 1252
    // characters written unchanged on a 437 code of another character, and
    // "´" and "’", which read back as "¦".
    EXPECT_EQ(retours, 215);
}

TEST(Html, ExamplesOfThePart) {
    EXPECT_EQ(Conv_AnsiVersHtml("\xE9t\xE9 & <b> \xA9"), "&eacute;t&eacute; &amp; &lt;b&gt; &copy;");
    EXPECT_EQ(Conv_AnsiVersHtml("\xCF\xF5\xF6\xEF"), "\xCF\xF5&otilde;&iuml;");
    EXPECT_EQ(Conv_HtmlVersAnsi(Conv_AnsiVersHtml("\xF6")), "\xF5");
    EXPECT_EQ(Conv_HtmlVersAnsi("&amp;lt;"), "<");
    EXPECT_EQ(Conv_HtmlVersAnsi("&Iuml;&ouml;&iuml;"), "&Iuml;&ouml;\xEF");
    EXPECT_EQ(Conv_HtmlVersAnsi("&nbsp;&trade;&quot;&deg;"), "\xA0\x99\"\xB0");
    EXPECT_EQ(Conv_HtmlVersAnsi("&amp;amp;"), "&amp;"); // one pass an entity
}

TEST(Html, EveryByteBothWays) {
    int retours = 0;
    for (int b = 0; b < 256; ++b) {
        const std::string a = octet(b);
        const std::string h = Conv_AnsiVersHtml(a);
        if (b < 128 && b != '&' && b != '<' && b != '>') { EXPECT_EQ(h, a); }
        retours += Conv_HtmlVersAnsi(h) == a;
        EXPECT_EQ(Conv_HtmlVersAnsi(a), a);
    }
    EXPECT_EQ(retours, 255); // all but ö, which comes back as õ
}

TEST(JeuCaracteres, DiesesComeBackAsStars) {
    for (char jeu : {'0', '1', '2', '3'}) {
        EXPECT_EQ(Conv_VersAnsi("a#b", jeu), "a*b") << jeu;
        EXPECT_EQ(Conv_VersAnsi(Conv_DepuisAnsi("#\xE9#", jeu), jeu), "*\xE9*") << jeu;
    }
    DefinitJeuCaracteres('2');
    EXPECT_EQ(Conv_DepuisAnsi("\xE9"), "\xE2" "e");
    DefinitJeuCaracteres('1');
    EXPECT_EQ(Conv_DepuisAnsi("\xE9"), "\xE9");
}

TEST(Utf8, EveryByteAndTheEdges) {
    for (int b = 0; b < 256; ++b) {
        std::size_t n = 0;
        EXPECT_EQ(Utf8VersAnsi(AnsiVersUtf8(octet(b)), &n), octet(b)) << b;
        EXPECT_EQ(n, 0u);
    }
    std::size_t n = 0;
    EXPECT_EQ(Utf8VersAnsi("\xC5\x81\xC3\xB3" "d\xC5\xBA", &n), "L\xF3" "dz"); // Łódź
    EXPECT_EQ(n, 2u);
    n = 0;
    EXPECT_EQ(Utf8VersAnsi("e\xCC\x81", &n), "\xE9"); // decomposed é
    EXPECT_EQ(n, 0u);
    EXPECT_EQ(Utf8VersAnsi("a\xCC\xA8", &n), "a"); // a with ogonek: bare a, counted
    EXPECT_EQ(n, 1u);
    n = 0;
    EXPECT_EQ(Utf8VersAnsi("\xCE\xB1\xE2\x82\xAC", &n), "?\x80"); // α €
    EXPECT_EQ(n, 1u);
    n = 0;
    EXPECT_EQ(Utf8VersAnsi("\xEF\xBB\xBF" "a\xEF\xBB\xBF", &n), "a?");
    EXPECT_EQ(n, 1u);
    EXPECT_EQ(Utf8VersAnsi("\xEF\xAC\x81n"), "fin");
    // Bytes F5 to FF never open a sequence: each is kept as a byte.
    EXPECT_EQ(Utf8VersAnsi("\xF8\x80\x80"), "\xF8\x80\x80");
}
