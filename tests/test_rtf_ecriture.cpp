// The writer of rich text against the reader: what is written reads back
// as the same runs, whatever the text holds.
#include "text/rtf.h"
#include "text/rtf_ecriture.h"

#include <gtest/gtest.h>

#include <random>

using namespace sylvane;

namespace {

bool MemeSegments(const std::vector<SegmentRtf>& a, const std::vector<SegmentRtf>& b,
                  std::string* ecart) {
    if (a.size() != b.size()) {
        *ecart = "counts " + std::to_string(a.size()) + " and " + std::to_string(b.size());
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto &x = a[i], &y = b[i];
        if (x.texte != y.texte || x.gras != y.gras || x.italique != y.italique ||
            x.souligne != y.souligne || x.alignement != y.alignement || x.police != y.police ||
            x.taille != y.taille) {
            *ecart = "run " + std::to_string(i) + ": \"" + x.texte + "\" / \"" + y.texte + "\"";
            return false;
        }
    }
    return true;
}

// Read, write, read: the runs are the same.
void AllerRetour(const std::string& rtf) {
    const auto lus = LitRtf(rtf);
    const std::string ecrit = EcritRtf(lus);
    std::string ecart;
    EXPECT_TRUE(MemeSegments(lus, LitRtf(ecrit), &ecart)) << ecart << "\n" << rtf << "\n" << ecrit;
    EXPECT_EQ(TexteRtf(rtf), SansRtf(ecrit));
}

} // namespace

TEST(RtfEcriture, NotesOfEditorsReadBackAsTheyWere) {
    // As the notes of the earlier program and of common editors hold them.
    AllerRetour("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1036{\\fonttbl{\\f0\\fswiss\\fcharset0 "
                "Arial;}{\\f1\\froman Times New Roman;}}\r\n"
                "{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
                "\\viewkind4\\uc1\\pard\\f0\\fs20 N\\'e9 \\b \\'e0 Caen\\b0 , \\i fils\\i0  de "
                "\\ul Jean\\ulnone .\\par\r\n"
                "\\pard\\qc\\f1\\fs28 Centr\\'e9\\par\r\n"
                "\\pard\\qr\\b\\i 12\\b0\\i0 -3 \\{accolades\\} et \\\\barre\\tab fin\\par\r\n"
                "\\pard\\qj\\plain justifi\\'e9 \\u8364? \\~x\\par\r\n}");
    // Styles ended just before digits, a minus sign and blanks.
    AllerRetour("{\\rtf1{\\b 1}2{\\i -}- { }{\\ul  a} b\\fs18 7}");
    // Text that looks like control words once a style ends.
    AllerRetour("{\\rtf1{\\b gras}par{\\i x}\\\\b{\\b\\f9 \\'0d\\'0a\\'00}}");
    AllerRetour("{\\rtf1}");
}

TEST(RtfEcriture, RandomRunsSurviveTheRoundTrip) {
    std::mt19937 alea(42);
    auto tirage = [&](int n) { return std::uniform_int_distribution<int>(0, n)(alea); };
    const std::string alphabet = "ab1-9 \\{};\t\r\n\xE9\xA0\x80\x01\x7F";
    const std::string polices[] = {"", "Arial", "Times New Roman", "Courier {New}"};
    for (int essai = 0; essai < 400; ++essai) {
        std::vector<SegmentRtf> segments;
        for (int k = tirage(8); k > 0; --k) {
            SegmentRtf s;
            for (int n = tirage(6); n > 0; --n) {
                if (tirage(6) == 0) s.texte += "\r\n";
                else s.texte += alphabet[static_cast<std::size_t>(tirage(int(alphabet.size()) - 1))];
            }
            s.gras = tirage(1);
            s.italique = tirage(1);
            s.souligne = tirage(1);
            s.alignement = static_cast<Alignement>(tirage(3));
            s.police = polices[tirage(3)];
            s.taille = tirage(2) ? 0 : 16 + 2 * tirage(10);
            segments.push_back(s);
        }
        // What the reader gives for them: one write and one read.
        const auto lus = LitRtf(EcritRtf(segments));
        std::string attendu, texte;
        for (const auto& s : segments) attendu += s.texte;
        for (const auto& s : lus) texte += s.texte;
        // Lone CR and LF are bytes; the text is whole.
        ASSERT_EQ(texte, attendu) << EcritRtf(segments);
        std::string ecart;
        ASSERT_TRUE(MemeSegments(lus, LitRtf(EcritRtf(lus)), &ecart)) << ecart;
        // Each byte keeps its style.
        std::size_t i = 0, j = 0, oi = 0, oj = 0;
        while (i < segments.size() && j < lus.size()) {
            if (oi == segments[i].texte.size()) { ++i; oi = 0; continue; }
            if (oj == lus[j].texte.size()) { ++j; oj = 0; continue; }
            const auto &a = segments[i], &b = lus[j];
            ASSERT_TRUE(a.gras == b.gras && a.italique == b.italique && a.souligne == b.souligne &&
                        a.alignement == b.alignement && a.police == b.police &&
                        a.taille == b.taille)
                << "essai " << essai << ", run " << i;
            ++oi;
            ++oj;
        }
    }
}

TEST(RtfEcriture, PlainNotesStayPlain) {
    SegmentRtf s;
    s.texte = "simple {texte}\r\nsur deux lignes";
    EXPECT_FALSE(AvecMiseEnForme({s}));
    EXPECT_EQ(TexteNoteRtf({s}), s.texte);
    s.alignement = Alignement::Centre;
    EXPECT_TRUE(AvecMiseEnForme({s}));
    const std::string rtf = TexteNoteRtf({s});
    EXPECT_EQ(rtf.rfind("{\\rtf1\\", 0), 0u);
    EXPECT_EQ(SansRtf("avant " + rtf + " apr\xE8s"), "avant " + s.texte + " apr\xE8s");
    EXPECT_EQ(TexteNoteRtf({}), "");
}
