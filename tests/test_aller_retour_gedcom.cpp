// Round trips of small GEDCOM files that each show one way text or data
// could be lost between the file and the base; then every file of the
// public corpus through import, export, import, export, which must give the
// same file from the second export on.
#include "exchange/gedcom_export.h"
#include "exchange/gedcom_import.h"
#include "exchange/selection.h"
#include "exchange/svr.h"
#include "maintenance/controle.h"
#include "store/fichier_memoire.h"
#include "support/francais.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/reglages.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

using namespace sylvane;

namespace {

struct Passage {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    RapportImport r;
    explicit Passage(std::string_view octets) {
        b.Nouvelle("/i.sv2");
        GedcomLu g = LitGedcomOctets(octets);
        OptionsImport o;
        o.parametres = &p;
        r = ImporteGedcom(b, g, o);
    }
    std::string Exporte(char jeu = '1') {
        OptionsExport o;
        o.jeu = jeu;
        o.liens = o.evenements = o.documents = true;
        o.date = "01 janvier 2001";
        ExporteGedcom(b, fs, "/sortie.ged", o);
        return lireTout(fs, "/sortie.ged");
    }
    // The person of that first name, 0 when none.
    std::uint32_t Qui(const std::string& prenom) {
        for (std::uint32_t n = 1; n <= b.Tete().maxPersonne; ++n)
            if (b.LitPrenom(n) == prenom) return n;
        return 0;
    }
};

// The export of a base read from `e1`, checked to come back byte for byte
// through one more import and export.
std::string Stable(const std::string& e1, char jeu = '1') {
    Passage b(e1);
    const std::string e2 = b.Exporte(jeu);
    Passage c(e2);
    EXPECT_EQ(c.Exporte(jeu), e2);
    return e2;
}

std::string Fichier(const std::string& corps) {
    return "0 HEAD\r\n1 CHAR ANSI\r\n" + corps + "0 TRLR\r\n";
}

TEST(AllerRetourGedcom, LesSymbolesDesRubriquesDansUnTexteRestentDuTexte) {
    const std::string texte = "Prix 100 $ ; photos dans C:\\Photos ; 20 \xB0" "C ; jean@exemple.fr ~ | %";
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 NOTE " + texte + "\r\n"));
    const std::string e1 = a.Exporte();
    for (const char* bogus : {"1 OCCU", "1 BAPM", "1 RESI", "2 PLAC"})
        EXPECT_EQ(e1.find(bogus), std::string::npos) << bogus << "\n" << e1;
    // The body of a note comes back with a line end behind it.
    EXPECT_EQ(a.b.CorpsNote(1), texte + "\r\n");
    Passage b(e1);
    EXPECT_EQ(b.b.CorpsNote(1), a.b.CorpsNote(1));
    EXPECT_EQ(b.Exporte(), e1);
}

TEST(AllerRetourGedcom, ConcRendChaqueTexteAvecSesBlancs) {
    // Another program's CONC joins with nothing between, as GEDCOM has it;
    // its blanks, at the end of a piece or at the start of the next, stay.
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 NOTE Par la gr\r\n2 CONC \xE2" "ce de \r\n"
                      "2 CONC Dieu, h=10474\r\n2 CONC 62 et\r\n2 CONC  fin\r\n"));
    EXPECT_EQ(a.b.CorpsNote(1), "Par la gr\xE2" "ce de Dieu, h=1047462 et fin\r\n");

    // Texts that the export cuts every way: at a blank, then a long word
    // under the same tag, then CONC pieces; in a first line and in a CONT.
    const std::string mot70(70, 'w'), url = "http://exemple.fr/" + std::string(60, 'u');
    const std::string lignes[] = {
        std::string(50, 'x') + " " + mot70,
        "court",
        "Une ligne de texte assez longue pour \xEAtre coup\xE9" "e deux fois en plein milieu de grands mots sans fin",
        "Voir " + url + " pour la suite, et la gr\xE2" "ce des blancs   doubles  ",
        std::string(59, 'a') + " " + std::string(61, 'b'),
    };
    std::string note;
    for (const auto& l : lignes) note += (note.empty() ? "" : "\r\n") + l;
    for (bool premiere : {true, false}) {
        std::string corps = "0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n";
        const std::string texte = premiere ? note : "avant\r\n" + note;
        Passage b(Fichier(corps));
        b.b.EcritNote(1, b.b.LitNote(1) + "\r\n\r\n" + texte);
        for (char jeu : {'1', '2', JeuUtf8}) {
            SCOPED_TRACE(jeu);
            const std::string e1 = b.Exporte(jeu);
            Passage c(e1);
            EXPECT_EQ(c.b.CorpsNote(1), texte + "\r\n") << e1;
            EXPECT_EQ(Stable(e1, jeu), e1);
        }
    }

    // A file of the program written before the blank of a cut was kept: the
    // blank comes back at the first CONC after a piece shorter than 60.
    Passage v("0 HEAD\r\n1 SOUR SYLVANE\r\n1 CHAR ANSI\r\n0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n"
              "1 NOTE abc\r\n2 CONC def\r\n2 CONT " + std::string(60, 'g') + "\r\n2 CONC hij\r\n0 TRLR\r\n");
    EXPECT_EQ(v.b.CorpsNote(1), "abc def\r\n" + std::string(60, 'g') + "hij\r\n");
}

TEST(AllerRetourGedcom, UnSexeInconnuResteInconnu) {
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 SEX U\r\n"
                      "0 @I2@ INDI\r\n1 NAME Marie /Durand/\r\n1 SEX F\r\n"
                      "0 @I3@ INDI\r\n1 NAME Paul /Martin/\r\n1 SEX M\r\n"
                      "0 @I4@ INDI\r\n1 NAME Claude /Martin/\r\n"
                      "0 @F1@ FAM\r\n1 HUSB @I1@\r\n1 WIFE @I2@\r\n1 CHIL @I3@\r\n"));
    EXPECT_EQ(a.b.LitSexe(1), "I");
    EXPECT_EQ(a.b.LitSexe(2), "F");
    EXPECT_EQ(a.b.LitSexe(3), "H");
    EXPECT_EQ(a.b.LitSexe(4), "I");
    EXPECT_EQ(a.b.LitMari(1), 1u);
    EXPECT_EQ(a.b.LitPere(3), 1u);
    Stable(a.Exporte());
}

TEST(AllerRetourGedcom, UnParentSeulGardeSonMariageEtUnCoupleSansDateNaPasDeMarrVide) {
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 SEX M\r\n"
                      "0 @I2@ INDI\r\n1 NAME Paul /Martin/\r\n1 SEX M\r\n"
                      "0 @I3@ INDI\r\n1 NAME Marie /Durand/\r\n1 SEX F\r\n"
                      "0 @F1@ FAM\r\n1 HUSB @I1@\r\n1 MARR\r\n2 DATE 12 MAR 1850\r\n2 PLAC Dijon\r\n1 CHIL @I2@\r\n"
                      "0 @F2@ FAM\r\n1 HUSB @I2@\r\n1 WIFE @I3@\r\n"));
    const std::string jean = a.b.CorpsNote(a.Qui("Jean"));
    EXPECT_NE(jean.find("12 MAR 1850"), std::string::npos) << jean;
    EXPECT_NE(jean.find("Dijon"), std::string::npos) << jean;
    const std::string e1 = a.Exporte();
    EXPECT_EQ(e1.find("1 MARR"), std::string::npos) << e1;
    Passage b(e1);
    EXPECT_EQ(b.b.CorpsNote(b.Qui("Jean")), jean);
    Stable(e1);
}

TEST(AllerRetourGedcom, DatesDoubleAnneeCalendrierEtPhrase) {
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME A /A/\r\n1 BIRT\r\n2 DATE 11 FEB 1731/32\r\n"
                      "0 @I2@ INDI\r\n1 NAME B /B/\r\n1 BIRT\r\n2 DATE @#DJULIAN@ 11 FEB 1731\r\n"
                      "0 @I3@ INDI\r\n1 NAME C /C/\r\n1 BIRT\r\n2 DATE @#DFRENCH R@ 1 VEND 0005\r\n"
                      "0 @I4@ INDI\r\n1 NAME D /D/\r\n1 BIRT\r\n2 DATE INT 1850 (environ)\r\n"
                      "0 @I5@ INDI\r\n1 NAME E /E/\r\n1 DEAT\r\n2 DATE (vers 1850)\r\n"));
    EXPECT_EQ(a.b.LitAnNaiss(a.Qui("A")), "1731");
    EXPECT_EQ(a.b.LitAnNaiss(a.Qui("D")), "1850");
    EXPECT_EQ(a.b.LitAnDeces(a.Qui("E")), "1850");
    // What the held date can't write back stays whole in the note.
    EXPECT_NE(a.b.CorpsNote(a.Qui("A")).find("11 FEB 1731/32"), std::string::npos);
    EXPECT_NE(a.b.CorpsNote(a.Qui("D")).find("INT 1850 (environ)"), std::string::npos);
    EXPECT_NE(a.b.CorpsNote(a.Qui("E")).find("(vers 1850)"), std::string::npos);
    const std::string e1 = a.Exporte();
    for (const char* ligne : {"2 DATE 11 FEB 1731\r\n", "2 DATE @#DJULIAN@ 11 FEB 1731\r\n",
                              "2 DATE @#DFRENCH R@ 1 VEND 0005\r\n", "2 DATE 1850\r\n"})
        EXPECT_NE(e1.find(ligne), std::string::npos) << ligne << e1;
    for (const char* faux : {"DATE 11 FEB 1/32", "@*D", "ENVI RON", "(ABT"}) EXPECT_EQ(e1.find(faux), std::string::npos) << faux;
    Stable(e1);
}

TEST(AllerRetourGedcom, EnteteFormeEnCapitalesSoumetteurEtEspaceInsecableEnAnsel) {
    Passage a(Fichier("1 SUBM @U1@\r\n0 @U1@ SUBM\r\n1 NAME Cercle de Dijon\r\n1 ADDR 1 rue Haute\r\n2 CONT Dijon\r\n"
                      "0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 NOTE 100\xA0km\r\n"));
    const std::string e1 = a.Exporte('2');
    EXPECT_NE(e1.find("2 FORM LINEAGE-LINKED\r\n"), std::string::npos);
    EXPECT_NE(e1.find("0 @S1@ SUBM\r\n1 NAME Cercle de Dijon\r\n1 ADDR 1 rue Haute\r\n2 CONT Dijon\r\n"),
              std::string::npos) << e1;
    EXPECT_NE(e1.find("1 NOTE 100 km\r\n"), std::string::npos) << e1;
    EXPECT_NE(e1.find("1 FILE /i.sv2\r\n"), std::string::npos);
    Stable(e1, '2');
}

TEST(AllerRetourGedcom, LesLignesSousUneDateOuUnLieuVontDansLaNote) {
    const std::string sous = "3 NOTE lu au registre\r\n3 _VU oui\r\n";
    const std::string lieu = "3 MAP\r\n4 LATI N47.3\r\n4 LONG E5.0\r\n";
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 SEX M\r\n1 FAMS @F1@\r\n"
                      "1 BIRT\r\n2 DATE 1850\r\n" + sous + "2 PLAC Dijon\r\n" + lieu +
                      "1 BURI\r\n2 DATE 1900\r\n3 _A burial-date-child\r\n2 PLAC Beaune\r\n3 _B burial-place-child\r\n"
                      "0 @I2@ INDI\r\n1 NAME Marie /Durand/\r\n1 SEX F\r\n1 FAMS @F1@\r\n"
                      "0 @F1@ FAM\r\n1 HUSB @I1@\r\n1 WIFE @I2@\r\n1 MARR\r\n2 DATE 1875\r\n3 _C marr-date-child\r\n"
                      "2 PLAC Dole\r\n3 _D marr-place-child\r\n1 DIV\r\n2 DATE 1880\r\n3 _E div-date-child\r\n2 _F div-child\r\n"));
    const std::string jean = a.b.CorpsNote(1), mariage = a.b.CorpsNoteMariage(1);
    for (const char* mot : {"lu au registre", "_VU", "N47.3", "E5.0", "burial-date-child", "burial-place-child"})
        EXPECT_NE(jean.find(mot), std::string::npos) << mot << "\n" << jean;
    for (const char* mot : {"marr-date-child", "marr-place-child", "div-date-child", "div-child"})
        EXPECT_NE(mariage.find(mot), std::string::npos) << mot << "\n" << mariage;
    EXPECT_EQ(a.b.LieuNaiss(1), "Dijon");
    EXPECT_EQ(a.b.LieuMariage(1), "Dole");
    EXPECT_GE(a.r.tagsEnNote.nombre, 6u);
    Stable(a.Exporte());
}

TEST(AllerRetourGedcom, LaPageDUneCitationResteDansLaNote) {
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 SOUR @S1@\r\n2 PAGE folio 12, acte 34\r\n2 QUAY 3\r\n"
                      "0 @S1@ SOUR\r\n1 TITL Registres de Dijon\r\n"));
    const std::string note = a.b.CorpsNote(1);
    EXPECT_NE(note.find("Registres de Dijon"), std::string::npos) << note;
    EXPECT_NE(note.find("folio 12, acte 34"), std::string::npos) << note;
    Stable(a.Exporte());
}

// A child born in one family and adopted in another: the base holds one
// father and one mother; the adoption and the second family stay readable
// in the child's note, and "PEDI birth", which says nothing more, adds
// nothing.
TEST(AllerRetourGedcom, UneAdoptionEtUneSecondeFamilleRestentDansLaNote) {
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Louis /Martin/\r\n1 SEX M\r\n1 FAMS @F1@\r\n"
                      "0 @I2@ INDI\r\n1 NAME Paul /Durand/\r\n1 SEX M\r\n1 FAMS @F2@\r\n"
                      "0 @I3@ INDI\r\n1 NAME Jean /Martin/\r\n1 FAMC @F1@\r\n2 PEDI birth\r\n"
                      "1 FAMC @F2@\r\n2 PEDI adopted\r\n2 NOTE par jugement\r\n"
                      "0 @F1@ FAM\r\n1 HUSB @I1@\r\n1 CHIL @I3@\r\n"
                      "0 @F2@ FAM\r\n1 HUSB @I2@\r\n1 CHIL @I3@\r\n"));
    const std::uint32_t jean = a.Qui("Jean");
    EXPECT_EQ(a.b.LitPere(jean), a.Qui("Louis"));
    const std::string note = a.b.CorpsNote(jean);
    EXPECT_NE(note.find("F2"), std::string::npos) << note;
    EXPECT_NE(note.find("adopted"), std::string::npos) << note;
    EXPECT_NE(note.find("par jugement"), std::string::npos) << note;
    EXPECT_NE(note.find("Enfant aussi de Paul Durand"), std::string::npos) << note;
    EXPECT_EQ(note.find("birth"), std::string::npos) << note;
    EXPECT_EQ(a.b.CorpsNote(a.Qui("Louis")), "");
    Stable(a.Exporte());
}

TEST(AllerRetourGedcom, UnTitreDeSourceSurPlusieursLignesPasseParLeFichierDEchange) {
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 SOUR @S1@\r\n2 EVEN\r\n3 ROLE CHIL\r\n"
                      "0 @S1@ SOUR\r\n1 TITL Registres\r\n2 CONT de Dijon\r\n1 DATA\r\n2 EVEN BIRT\r\n3 DATE 1 JAN 1850\r\n"
                      "0 @S2@ SOUR\r\n1 TITL Un\r\n2 CONT document\r\n"));
    ASSERT_EQ(a.b.Tete().nbEvenements, 1u);
    EXPECT_EQ(a.b.TitreEvt(1), "Registres de Dijon");
    Selection sel(a.b);
    sel.SelectionneTout();
    sel.complet = true;
    ASSERT_TRUE(ExporteSvr(a.b, sel, a.p, a.fs, "/a.svr"));
    Base b{a.fs, a.p};
    b.Nouvelle("/b.sv2");
    ReglagesMemoire reglages;
    const BilanSvr bilan = LitSvrNouvelleBase(b, a.fs, "/a.svr", reglages);
    EXPECT_EQ(bilan.personnes, 1u);
    EXPECT_EQ(bilan.evenements, 1u);
    EXPECT_EQ(b.TitreEvt(1), "Registres de Dijon");
    EXPECT_EQ(b.EvtNo(1, 1), 1u);
}

TEST(AllerRetourGedcom, ObjetsEtDepotsDeviennentDesDocuments) {
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 OBJE @O1@\r\n"
                      "0 @O1@ OBJE\r\n1 FILE photo.jpg\r\n2 FORM jpeg\r\n2 TITL Jean en 1900\r\n"
                      "0 @R1@ REPO\r\n1 NAME Archives de la C\xF4te-d'Or\r\n1 ADDR Dijon\r\n"));
    EXPECT_EQ(a.r.documents, 2u);
    const std::uint32_t d = a.b.DocNo(1, 1);
    ASSERT_NE(d, 0u);
    EXPECT_EQ(a.b.FichierDoc(d), "photo.jpg");
    EXPECT_EQ(a.b.TypeDoc(d), "jpeg");
    const std::string e1 = a.Exporte();
    EXPECT_NE(e1.find("1 REFN photo.jpg\r\n2 TYPE jpeg\r\n"), std::string::npos) << e1;
    Stable(e1);
}

// What the reader cut or dropped is named in the end report.
TEST(AllerRetourGedcom, LeRapportNommeLesLignesCoupeesOuIgnorees) {
    Passage a(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n1 NOTE " +
                      std::string(LongueurMaxLigne + 10, 'x') + "\r\n2\r\n"));
    EXPECT_FALSE(a.r.vide());
    const std::string t = a.r.Texte();
    EXPECT_NE(t.find("Lignes coup\xE9" "es \xE0 1048576 octets : 1\r\n  ligne 5 : 1 NOTE xxx"),
              std::string::npos) << t;
    EXPECT_NE(t.find("Lignes sans tag ignor\xE9" "es : 1\r\n  ligne 6"), std::string::npos) << t;
    EXPECT_TRUE(Passage(Fichier("0 @I1@ INDI\r\n1 NAME Jean /Martin/\r\n")).r.vide());
}

// --- The public corpus ---------------------------------------------------

const std::string kCorpus = std::string(SYLVANE_SHARED_DIR) + "/testdata/gedcom/";

// The first line where two files part, for failure messages.
std::string Ecart(const std::string& a, const std::string& b) {
    std::size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
    const std::size_t debut = a.rfind('\n', i) == std::string::npos ? 0 : a.rfind('\n', i) + 1;
    return "\n  " + a.substr(debut, 120) + "\n<>\n  " + b.substr(debut, 120);
}

std::vector<std::string> FichiersDuCorpus() {
    std::vector<std::string> f;
    for (const auto& e : std::filesystem::recursive_directory_iterator(kCorpus)) {
        const std::string x = e.path().extension().string();
        if (e.is_regular_file() && (x == ".ged" || x == ".GED"))
            f.push_back(e.path().lexically_relative(kCorpus).string());
    }
    std::sort(f.begin(), f.end());
    return f;
}

TEST(AllerRetourCorpus, LeDeuxiemeExportEstLeTroisieme) {
    const auto fichiers = FichiersDuCorpus();
    ASSERT_GE(fichiers.size(), 41u);
    for (const auto& f : fichiers) {
        SCOPED_TRACE(f);
        Passage a(lireTout(systemeReel(), kCorpus + f));
        Passage b(a.Exporte());
        const std::string e2 = b.Exporte();
        Passage c(e2);
        const std::string e3 = c.Exporte();
        EXPECT_TRUE(e2 == e3) << Ecart(e2, e3);
    }
}

// Every base built from a corpus file, and the base built again from the
// exchange file written of it, passes the control with nothing to repair.
TEST(AllerRetourCorpus, LesBasesLuesEtReluesPassentLeControle) {
    Interaction io;
    io.question = [](int) { return Reponse::Non; };
    for (const auto& f : FichiersDuCorpus()) {
        SCOPED_TRACE(f);
        Passage a(lireTout(systemeReel(), kCorpus + f));
        a.p.dossierTravail = "/t";
        Selection sel(a.b);
        sel.SelectionneTout();
        sel.complet = true;
        ASSERT_TRUE(ExporteSvr(a.b, sel, a.p, a.fs, "/a.svr"));
        EXPECT_EQ(Controler(a.b, io).rapport, "");
        Base b{a.fs, a.p};
        b.Nouvelle("/b.sv2");
        ReglagesMemoire reglages;
        LitSvrNouvelleBase(b, a.fs, "/a.svr", reglages);
        EXPECT_EQ(b.Tete().nbPersonnes, a.b.Tete().nbPersonnes);
        EXPECT_EQ(Controler(b, io).rapport, "");
    }
}

const std::string kZykov = "\xD0\x97\xD1\x8B\xD0\xBA\xD0\xBE\xD0\xB2"; // Зыков
const std::string kZykovRef = "&#1047;&#1099;&#1082;&#1086;&#1074;";

std::string Utf8(const std::string& corps) {
    return "0 HEAD\r\n1 CHAR UTF-8\r\n" + corps + "0 TRLR\r\n";
}

TEST(AllerRetourGedcom, UnNomCyrilliqueResteCyrilliqueEnUtf8EtLatinAilleurs) {
    const std::string note = "1 NOTE Cote # 12 &#1047; " + kZykov;
    Passage g(Utf8("0 @I1@ INDI\r\n1 NAME Ivan /" + kZykov + "/\r\n" + note +
                  "\r\n0 @I2@ INDI\r\n1 NAME Jean /Zola/\r\n0 @I3@ INDI\r\n1 NAME Louis /Yves/\r\n"));
    const std::uint32_t ivan = g.Qui("Ivan");
    ASSERT_NE(ivan, 0u) << g.b.LitIdentite(1);
    EXPECT_EQ(g.b.LitNom(ivan), kZykovRef);
    EXPECT_EQ(g.r.lecture[Anomalie::CaractereRemplace].nombre, 0u);
    // Sorted by its Latin form: after Yves and Zola, not before "A".
    std::vector<std::string> ordre;
    for (std::size_t i = 1; i <= g.b.TablePersonnes().taille(); ++i)
        ordre.push_back(g.b.LitPrenom(g.b.TriFiche(i)));
    EXPECT_EQ(ordre, (std::vector<std::string>{"Louis", "Jean", "Ivan"}));

    const std::string utf8 = g.Exporte(JeuUtf8);
    EXPECT_NE(utf8.find("1 NAME Ivan /" + kZykov + "/"), std::string::npos) << utf8;
    EXPECT_NE(utf8.find(note.substr(2)), std::string::npos) << utf8;
    for (char jeu : {'1', '2', '0'}) {
        const std::string autre = g.Exporte(jeu);
        EXPECT_NE(autre.find("1 NAME Ivan /Zykov/"), std::string::npos) << jeu << autre;
        EXPECT_EQ(autre.find("&#1047;"), autre.find("&#1047; Zykov")) << jeu;
    }
    // And back again: from the second export on, byte for byte.
    Passage retour(utf8);
    const std::string deuxieme = retour.Exporte(JeuUtf8);
    EXPECT_NE(deuxieme.find(note.substr(2)), std::string::npos) << deuxieme;
    EXPECT_EQ(Passage(deuxieme).Exporte(JeuUtf8), deuxieme);
}

// The corpus file with names in Cyrillic, Greek, Hebrew ... (UTF-16): none
// of its characters comes out of the base as "?".
TEST(AllerRetourCorpus, LArbreCyrilliqueNePerdAucunCaractere) {
    const std::string chemin = kCorpus + "eichmann/ULHCL.GED";
    const std::string brut = lireTout(systemeReel(), chemin);
    Passage g(brut);
    const std::string sortie = g.Exporte(JeuUtf8);
    // The file's text, as UTF-8, from UTF-16 little-endian.
    std::u16string u16;
    for (std::size_t i = 0; i + 1 < brut.size(); i += 2)
        u16 += static_cast<char16_t>(static_cast<unsigned char>(brut[i]) |
                                     static_cast<unsigned char>(brut[i + 1]) << 8);
    std::size_t nonLatins = 0, retrouves = 0;
    std::string source;
    for (char16_t c : u16) {
        if (c == 0xFEFF || (c >= 0xD800 && c <= 0xDFFF)) continue;
        std::string u;
        AjouteUtf8(u, c);
        source += u;
        if (c >= 0x370) {
            ++nonLatins;
            if (sortie.find(u) != std::string::npos) ++retrouves;
        }
    }
    EXPECT_GT(nonLatins, 200u);
    EXPECT_EQ(retrouves, nonLatins);
    EXPECT_EQ(std::count(sortie.begin(), sortie.end(), '?'),
              std::count(source.begin(), source.end(), '?'));
}

} // namespace
