// The notes editor's model: a note in and out through the core's rich text
// reader and writer, plain notes staying plain, the tool bar's state over
// a selection, and the usual words.
#include "text/reglages.h"
#include "text/rtf_ecriture.h"
#include "ui/frm_texte.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

SegmentRtf Seg(std::string t, bool g = false, bool i = false, bool s = false,
               Alignement a = Alignement::Gauche, std::string police = {}, int taille = 0) {
    return {std::move(t), g, i, s, a, std::move(police), taille};
}

bool Egaux(const std::vector<SegmentRtf>& a, const std::vector<SegmentRtf>& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].texte != b[i].texte || a[i].gras != b[i].gras || a[i].italique != b[i].italique ||
            a[i].souligne != b[i].souligne || a[i].alignement != b[i].alignement ||
            a[i].police != b[i].police || a[i].taille != b[i].taille)
            return false;
    return true;
}

} // namespace

TEST(FrmTexte, EveryStyleSurvivesASaveAndAReload) {
    const std::vector<SegmentRtf> note = {
        Seg("N\xE9 \xE0 "),
        Seg("Paris", true),
        Seg(", ", false),
        Seg("rue {des} \\Lilas", false, true),
        Seg("\r\n"),
        Seg("Titre centr\xE9\r\n", true, false, true, Alignement::Centre, "Times New Roman", 28),
        Seg("\xE0 droite", false, false, false, Alignement::Droite, "Arial", 20),
    };
    FrmTexte f("", "Notes");
    f.Sauve(note);
    ASSERT_TRUE(f.Resultat());
    EXPECT_TRUE(f.Resultat()->starts_with("{\\rtf1"));
    // Opened again, the editor shows the same runs.
    FrmTexte g(*f.Resultat(), "Notes");
    EXPECT_TRUE(Egaux(g.Segments(), note));
    g.Sauve(g.Segments());
    EXPECT_EQ(*g.Resultat(), *f.Resultat());
}

TEST(FrmTexte, ANoteFromAnotherProgramKeepsItsFormatting) {
    // As a word processor writes it: font and colour tables, \pard, \plain,
    // a hex escape and a group that ends the bold.
    const std::string rtf =
        "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1036{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}"
        "{\\f1\\froman\\fprq2\\fcharset0 Times New Roman;}}\r\n"
        "{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
        "{\\*\\generator Msftedit 5.41.21.2510;}\\viewkind4\\uc1\\pard\\qc\\f1\\fs28 "
        "{\\b Baptis\\'e9}\\par\r\n\\pard\\plain\\f0\\fs20 le {\\i 12} \\ul mars\\ulnone .\\par\r\n}";
    FrmTexte f(rtf, "");
    const auto& s = f.Segments();
    ASSERT_GE(s.size(), 4u);
    EXPECT_EQ(s[0].texte, "Baptis\xE9");
    EXPECT_TRUE(s[0].gras);
    EXPECT_EQ(s[0].alignement, Alignement::Centre);
    EXPECT_EQ(s[0].police, "Times New Roman");
    EXPECT_EQ(s[0].taille, 28);
    std::string tout;
    bool italique = false, souligne = false;
    for (const auto& x : s) {
        tout += x.texte;
        italique = italique || (x.italique && x.texte == "12");
        souligne = souligne || (x.souligne && x.texte.find("mars") != std::string::npos);
    }
    EXPECT_TRUE(italique);
    EXPECT_TRUE(souligne);
    EXPECT_NE(tout.find("le 12 mars."), std::string::npos) << tout;
    // Written back by this program, read again: the same runs.
    f.Sauve(f.Segments());
    EXPECT_TRUE(Egaux(SegmentsNote(*f.Resultat()), Fusionne(s)));
}

TEST(FrmTexte, PlainNotesStayPlainAndCancelKeepsNothing) {
    FrmTexte f("Une ligne\nune autre\r\nfin", "");
    ASSERT_EQ(f.Segments().size(), 1u);
    EXPECT_EQ(f.Segments()[0].texte, "Une ligne\r\nune autre\r\nfin");
    f.Sauve(f.Segments());
    EXPECT_EQ(*f.Resultat(), "Une ligne\r\nune autre\r\nfin");
    // A last empty paragraph goes; a note emptied is an empty text.
    f.Sauve({Seg("mot\r\n\r\n")});
    EXPECT_EQ(*f.Resultat(), "mot");
    f.Sauve({Seg("\r\n")});
    EXPECT_EQ(*f.Resultat(), "");
    f.Abandonne();
    EXPECT_FALSE(f.Resultat());
    // A text that merely holds braces is no rich text.
    FrmTexte g("voir {note}", "");
    EXPECT_EQ(g.Segments()[0].texte, "voir {note}");
    EXPECT_TRUE(FrmTexte("", "").Segments().empty());
}

TEST(FrmTexte, ToolBarFollowsTheSelection) {
    EtatSelection e = FrmTexte::Etat({Seg("a", true, true, false, Alignement::Centre, "Arial", 20),
                                      Seg("b", true, false, false, Alignement::Centre, "Arial", 24)});
    EXPECT_TRUE(e.gras);
    EXPECT_FALSE(e.italique);
    EXPECT_EQ(e.alignement, Alignement::Centre);
    EXPECT_EQ(e.police, std::string("Arial"));
    EXPECT_FALSE(e.taille); // mixed: shows nothing
    e = FrmTexte::Etat({Seg("a", false, false, true, Alignement::Gauche, "", 0),
                        Seg("b", false, false, true, Alignement::Droite, "Times", 0)});
    EXPECT_TRUE(e.souligne);
    EXPECT_FALSE(e.alignement);
    EXPECT_FALSE(e.police);
    EXPECT_EQ(e.taille, 0);
    e = FrmTexte::Etat({});
    EXPECT_FALSE(e.gras);
    EXPECT_FALSE(e.police);
}

TEST(FrmTexte, UsualWordsPanel) {
    ReglagesMemoire r;
    r.ecrit("Mots Usuels", "1", "cultivateur");
    r.ecrit("Mots Usuels", "2", "journalier");
    r.ecrit("Rubrique OCCU", "1", "tisserand");
    EXPECT_EQ(MotsUsuels(r), (std::vector<std::string>{"cultivateur", "journalier"}));
    EXPECT_EQ(MotsUsuels(r, "OCCU"), std::vector<std::string>{"tisserand"});
    EXPECT_EQ(MotsUsuels(r, "RESI"), (std::vector<std::string>{"cultivateur", "journalier"}));

    FrmTexte f("", "", MotsUsuels(r));
    EXPECT_FALSE(f.PanneauMots());
    f.BasculePanneau();
    EXPECT_TRUE(f.PanneauMots());
    EXPECT_EQ(f.ChoisitMot(9), "");
    EXPECT_TRUE(f.PanneauMots());
    EXPECT_EQ(f.ChoisitMot(1), "journalier");
    EXPECT_FALSE(f.PanneauMots());
}
