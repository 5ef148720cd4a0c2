// Rubric records, the forms of the notes, and the rich text reader.
#include "store/pack.h"
#include "support/base_memoire.h"
#include "text/rtf.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

using Fixture = test::BaseMemoire;

} // namespace

TEST(Rtf, RunsCarryTheirStyleAndPlainTextDropsTheControls) {
    const std::string rtf =
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fswiss Arial;}{\\f1\\froman Times New Roman;}}"
        "{\\colortbl;\\red0\\green0\\blue0;}\\pard\\qc\\f1\\fs28\\b Titre\\b0\\par"
        "\\pard\\f0\\fs20 Un {\\i mot} \\ul soulign\\'e9\\ulnone , \\{\\}\\\\ fin\\par}";
    auto s = LitRtf(rtf);
    ASSERT_GE(s.size(), 5u);
    EXPECT_EQ(s[0].texte, "Titre");
    EXPECT_TRUE(s[0].gras);
    EXPECT_EQ(s[0].alignement, Alignement::Centre);
    EXPECT_EQ(s[0].police, "Times New Roman");
    EXPECT_EQ(s[0].taille, 28);
    EXPECT_EQ(s[1].texte, "\r\n");
    EXPECT_FALSE(s[1].gras);
    EXPECT_EQ(s[2].texte, "Un ");
    EXPECT_EQ(s[2].alignement, Alignement::Gauche);
    EXPECT_EQ(s[2].police, "Arial");
    EXPECT_EQ(s[3].texte, "mot");
    EXPECT_TRUE(s[3].italique);
    EXPECT_EQ(s[5].texte, "soulign\xE9");
    EXPECT_TRUE(s[5].souligne);
    EXPECT_EQ(TexteRtf(rtf), "Titre\r\nUn mot soulign\xE9, {}\\ fin\r\n");
    // Text around the groups stays; an unclosed group or a lone backslash
    // at the end does no harm.
    EXPECT_EQ(SansRtf("a {\\rtf1\\ansi x\\par} b {\\rtf1\\ansi {\\b y}}"), "a x\r\n b y");
    EXPECT_EQ(SansRtf("{\\rtf1\\ansi z\\"), "z");
    EXPECT_EQ(SansRtf("{\\rtf1\\ansi \\u233?t\\'"), "\xE9t");
    EXPECT_EQ(SansRtf("sans groupe {rtf}"), "sans groupe {rtf}");
}

TEST(Rubriques, RecordsTableAndLists) {
    Fixture f;
    Base& b = f.b;
    EXPECT_EQ(b.ZoneFin(), 1145u);
    EXPECT_EQ(b.LitRubrique(2), "\xB6"
                                "FNAM");
    EXPECT_EQ(b.PosListeRubrique(5), 742u);
    EXPECT_EQ(b.ListeRubrique(5), "");
    EXPECT_EQ(b.LitRubrique(12), "");
    // A tag cut to 34 characters; a list position holding "#" and 0xFF.
    b.EcritRubrique(12, '\xB5', std::string(40, 'Q'), 0x23FF2323);
    b.EcritRubrique(13, '\xA3', "PROF", 0);
    b.TeteModifiable().nbRubriques = 13;
    f.Reouvre();
    EXPECT_EQ(b.LitRubrique(12), "\xB5" + std::string(34, 'Q'));
    EXPECT_EQ(b.PosListeRubrique(12), 0x23FF2323u);
    EXPECT_EQ(b.PosListeRubrique(13), 0u);
    EXPECT_EQ(b.RubriqueDeSymbole('\xA3'), 13u);
    // A list longer than one read of 100 bytes.
    std::string l;
    for (std::uint32_t i = 1; i <= 60; ++i)
        l += Pack4(i);
    std::uint32_t pos = b.Ajouter(Pack4(60) + l + "garbage");
    b.EcritRubrique(13, '\xA3', "PROF", pos);
    EXPECT_EQ(b.ListeRubrique(13), l);
    // A count beyond the file reads up to the file's end, and no further.
    b.EcritRubrique(13, '\xA3', "PROF", b.Ajouter(Pack4(0x7FFFFFFF) + Pack4(5)));
    EXPECT_EQ(b.ListeRubrique(13).substr(0, 4), Pack4(5));
    EXPECT_LE(b.ListeRubrique(13).size(), 44u);
}

TEST(Rubriques, ValuesOfANote) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t n = b.CreePersonne("Pleitu", "Jean Louis", "", 'H', "1790");
    std::string note = b.LigneMotsCles(n, "Saint L\xF4", "Paris") +
                       "\r\nOCCU  \\laboureur\r\nCHR 12/05/1790 \xB0"
                       "Saint.L\xF4\r\n"
                       "BURI 1850\r\nRESI  %Caen\r\n\r\nIl fut \\maire.\r\n\r\n";
    b.EcritNote(n, note);
    EXPECT_EQ(note.substr(0, note.find('\r')), "|Pleitu \xB6"
                                               "Jean.Louis $Saint.L\xF4 ~Paris");
    auto t = b.RubriquesNote(n);
    ASSERT_EQ(t.size(), 3u);
    EXPECT_EQ(t[0].valeur, "laboureur");
    EXPECT_EQ(t[0].jourMois + t[0].annee, "");
    EXPECT_EQ(t[1].jourMois, "12/5");
    EXPECT_EQ(t[1].annee, "1790");
    EXPECT_EQ(t[1].valeur, "Saint L\xF4");
    EXPECT_EQ(t[2].annee, "1850");
    EXPECT_EQ(t[2].valeur, "");
    // A line whose tag is no slot stays in the free text.
    EXPECT_EQ(b.CorpsNote(n), "RESI  %Caen\r\n\r\nIl fut \\maire.\r\n");
    EXPECT_EQ(b.LieuNaiss(n), "Saint L\xF4");
    EXPECT_EQ(b.LieuDeces(n), "Paris");
    // The rubric of a slot answers in the display name.
    f.p.affichageNom = {"FNAM", "BIRN", "OCCU", "NUMB"};
    b.valeurNom_ = [](std::uint32_t, const std::string& tag) {
        return tag == "NUMB" ? std::string("[4]") : std::string("?");
    };
    EXPECT_EQ(b.NomComplet(n), "Jean Louis Pleitu laboureur [4]");
    // A note with no CR LF has no values; a rubric without date keeps a
    // date-like text as its value.
    b.EcritNote(n, "|Pleitu");
    EXPECT_EQ(b.RubriquesNote(n).size(), 10u);
    EXPECT_EQ(b.CorpsNote(n), "");
    b.EcritNote(n, "|Pleitu\r\nOCCU 1850");
    EXPECT_EQ(b.RubriquesNote(n)[0].valeur, "1850");
    // A vague date of a dated rubric: the year is its last four characters,
    // and a slash between the two parts goes.
    b.EcritNote(n, "|Pleitu\r\nCHR ABT 1790 \xB0Vire");
    EXPECT_EQ(b.RubriquesNote(n)[1].jourMois, "ABT");
    EXPECT_EQ(b.RubriquesNote(n)[1].annee, "1790");
    b.EcritNote(n, "|Pleitu\r\nCHR 5/1790 \xB0Vire");
    EXPECT_EQ(b.RubriquesNote(n)[1].jourMois, "5");
    EXPECT_EQ(b.RubriquesNote(n)[1].annee, "1790");
}

TEST(Rubriques, MarriageForms) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t h = b.CreePersonne("Martin", "Jean", "", 'H', "1800");
    std::uint32_t w = b.CreePersonne("Durand", "Marie", "", 'F', "1802");
    std::uint32_t m = b.CreeMariage(h, w, "1825");
    b.EcritNoteMariage(m, "ABT @Saint.L\xF4\r\nDIV 3/4/1830 \xA4"
                          "Caen\r\n\r\nSans enfant");
    EXPECT_EQ(b.DateMariage(m), "ABT");
    EXPECT_EQ(b.LieuMariage(m), "Saint L\xF4");
    auto t = b.RubriquesMariage(m);
    ASSERT_EQ(t.size(), 1u);
    EXPECT_EQ(t[0].jourMois, "3/4");
    EXPECT_EQ(t[0].annee, "1830");
    EXPECT_EQ(t[0].valeur, "Caen");
    EXPECT_EQ(b.CorpsNoteMariage(m), "Sans enfant\r\n");
    b.EcritNoteMariage(m, " @Vire");
    EXPECT_EQ(b.LigneMariage(m), "\xD7"
                                 "1825 Vire");
    EXPECT_EQ(b.NoteAvecMariages(h), b.LitNote(h) + "\r\n @Vire");
}
