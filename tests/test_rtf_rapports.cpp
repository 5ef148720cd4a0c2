// The RTF reports: the escape, the skeleton, and whole reports read back
// by the rich text reader and checked for balanced groups.
#include "kinship/liste.h"
#include "publish/rtf_rapports.h"
#include "support/arbres.h"
#include "support/francais.h"
#include "text/rtf.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

// Depth of the groups at the end, or -1 when a group closes that was
// never opened.
int Profondeur(const std::string& rtf) {
    int n = 0;
    for (std::size_t i = 0; i < rtf.size(); ++i) {
        if (rtf[i] == '\\') {
            ++i;
            continue;
        }
        if (rtf[i] == '{') ++n;
        if (rtf[i] == '}' && --n < 0) return -1;
    }
    return n;
}

std::size_t Compte(const std::string& texte, const std::string& motif) {
    std::size_t n = 0;
    for (std::size_t p = texte.find(motif); p != std::string::npos; p = texte.find(motif, p + 1)) ++n;
    return n;
}

struct Rapports : testing::Test {
    test::Arbre a;
    std::uint32_t pere = 0, mere = 0, fils = 0, bru = 0, petit = 0;
    void SetUp() override {
        pere = a.Personne("Lef\xE8vre {dit} \\Le Grand\\", "Andr\xE9");
        mere = a.Personne("Moreau", "\xC9lise", 'F');
        a.b().CreeMariage(pere, mere, "1850");
        fils = a.Enfant(pere, mere, "Paul");
        bru = a.Personne("Zykov", "&#1047;ina", 'F');
        a.b().CreeMariage(fils, bru);
        petit = a.Enfant(fils, bru, "Louis");
    }
    std::string Ecrit(GenreRapport g, std::uint32_t p, const OptionsRTF& o = {},
                      const Interaction& io = {}, FinRTF attendu = FinRTF::Termine) {
        ListeParente liste(a.b(), a.fs);
        EXPECT_EQ(RapportRTF(a.b(), a.fs, io, liste, g, p, 10, "/r.rtf", o), attendu);
        return a.fs.existe("/r.rtf") ? a.fs.contenu("/r.rtf") : "";
    }
};

} // namespace

TEST(EchappeRTF, ControlCharactersBracesAndTheHighHalf) {
    EXPECT_EQ(EchappeRTF("{a}\\b"), "\\{a\\}\\\\b");
    EXPECT_EQ(EchappeRTF("\xE9t\xE9"), "\\'E9t\\'E9");
    EXPECT_EQ(EchappeRTF(std::string("\x16\x1D\x1E\x1F", 4)), "\\'16\\'1D\\\x1E\\\x1F");
    EXPECT_EQ(EchappeRTF("a\tb"), "a\\tab \\plain \\f0\\fs16 b");
    // Characters that Windows-1252 lacks, as the base holds them.
    EXPECT_EQ(EchappeRTF("&#1047;&#128512;&amp"), "\\u1047?\\u-10179?\\u-8704?&amp");
}

TEST_F(Rapports, TheSheetHasTheSkeletonTheHeaderAndOneSectionPerSpouse) {
    const std::string r = Ecrit(GenreRapport::Fiche, pere);
    EXPECT_EQ(r.rfind("{\\rtf1\\ansi \\deff0{\\fonttbl\r\n{\\f0\\froman Times New Roman;}}", 0), 0u);
    EXPECT_NE(r.find("\\paperw11905\\paperh16837"), std::string::npos);
    EXPECT_NE(r.find("{\\b\\f0\\fs20 Fiche de Andr\\'E9 Lef\\'E8vre \\{dit\\} \\\\Le Grand\\\\ }"),
              std::string::npos);
    EXPECT_TRUE(r.ends_with("}\r\n"));
    EXPECT_EQ(Profondeur(r), 0);
    // The reader sees the person, the spouse's own section and the child.
    const std::string texte = TexteRtf(r);
    EXPECT_NE(texte.find("\xC9lise Moreau"), std::string::npos);
    EXPECT_EQ(Compte(texte, "\xC9lise Moreau"), 2u) << texte;
    EXPECT_NE(texte.find("Paul"), std::string::npos);
}

TEST_F(Rapports, DescendantsAndFamilyNameEveryoneOnce) {
    const std::string d = Ecrit(GenreRapport::Descendants, pere);
    EXPECT_EQ(Profondeur(d), 0);
    const std::string td = TexteRtf(d);
    for (const char* nom : {"Paul", "Louis", "\xC9lise"}) EXPECT_NE(td.find(nom), std::string::npos) << nom;
    // The spouses that the list doesn't bring get a section of their own.
    EXPECT_NE(d.find("\\u1047?ina Zykov"), std::string::npos);

    const std::string f = Ecrit(GenreRapport::Famille, fils);
    EXPECT_EQ(Profondeur(f), 0);
    EXPECT_NE(TexteRtf(f).find("Louis"), std::string::npos);
}

TEST_F(Rapports, TheQuickListIsOneTableRowPerPerson) {
    OptionsRTF o;
    o.fiche.listeRapide = true;
    const std::string r = Ecrit(GenreRapport::Ascendants, petit, o);
    EXPECT_EQ(Profondeur(r), 0);
    EXPECT_EQ(Compte(r, "\\row }"), 5u); // Louis, his parents, his father's parents
}

TEST_F(Rapports, AStopLeavesNoFileAndAMissingPersonNoReport) {
    a.fs.supprimer("/r.rtf");
    Interaction io;
    io.arret = [] { return true; };
    EXPECT_EQ(Ecrit(GenreRapport::Descendants, pere, {}, io, FinRTF::Arrete), "");
    EXPECT_EQ(Ecrit(GenreRapport::Fiche, 999, {}, {}, FinRTF::Vide), "");
    EXPECT_FALSE(a.fs.existe("~r.rtf") || a.fs.existe("/~r.rtf"));
}

TEST_F(Rapports, AListOfEventsNamesTheirPersons) {
    const std::uint32_t e = a.b().CreeEvtPersonne(fils, 0, "BAPM", "Caen");
    ListeParente liste(a.b(), a.fs);
    ASSERT_EQ(ListeRTF(a.b(), a.fs, {}, "Baptêmes", {e}, {}, {}, "/l.rtf"), FinRTF::Termine);
    const std::string r = a.fs.contenu("/l.rtf");
    EXPECT_EQ(Profondeur(r), 0);
    EXPECT_NE(TexteRtf(r).find("Paul Enfant"), std::string::npos);
}
