#include "exchange/gedcom_lecteur.h"
#include "store/fichier_memoire.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace sylvane;

namespace {

const std::string kCorpus = std::string(SYLVANE_SHARED_DIR) + "/testdata/gedcom/";

GedcomLu litCorpus(const std::string& nom) {
    return LitGedcom(systemeReel(), kCorpus + nom);
}

GedcomLu lis(std::string_view texte) {
    return LitGedcomOctets(texte);
}

std::uint64_t nombre(const GedcomLu& g, Anomalie a) {
    return g.rapport()[a].nombre;
}

// The values of one sub-tag of every record of a type, in file order.
std::vector<std::string> valeurs(const GedcomLu& g, std::string_view type, std::string_view tag) {
    std::vector<std::string> v;
    for (std::uint32_t r : g.enregistrements()) {
        if (g.tag(r) != type) continue;
        const std::size_t l = g.sousLigne(r, tag);
        v.emplace_back(l == GedcomLu::npos ? "" : g.valeur(l));
    }
    return v;
}

// Every line after the HEAD, whose note tells each file apart, as level, tag
// and value: for comparing two encodings of a file.
std::vector<std::string> toutesLignes(const GedcomLu& g) {
    std::vector<std::string> v;
    for (std::size_t i = g.fin(0); i < g.lignes().size(); ++i)
        v.push_back(std::to_string(g.ligne(i).niveau) + " " + std::string(g.tag(i)) + " " +
                    std::string(g.valeur(i)));
    return v;
}

std::string utf16(std::string_view utf8Texte, bool grosBout, bool marque) {
    std::string r;
    auto unite = [&](char16_t u) {
        const char hi = static_cast<char>(u >> 8), lo = static_cast<char>(u & 0xFF);
        r += grosBout ? hi : lo;
        r += grosBout ? lo : hi;
    };
    if (marque) unite(0xFEFF);
    // Latin-1 test texts only: each byte of the Windows-1252 form is its code point.
    for (char c : Utf8VersAnsi(utf8Texte))
        unite(static_cast<unsigned char>(c));
    return r;
}

} // namespace

TEST(GedcomCorpus, EveryFileReadsWithTheRecordCountsOfItsSource) {
    struct Cas {
        const char* nom;
        std::size_t indi, fam;
        Encodage encodage;
    };
    const Cas cas[] = {
        {"eichmann/ANSEL.GED", 35, 1, Encodage::Ansel},
        {"eichmann/LTERCR.GED", 3, 1, Encodage::Ascii},
        {"eichmann/LTERCRLF.GED", 3, 1, Encodage::Ascii},
        {"eichmann/LTERLF.GED", 3, 1, Encodage::Ascii},
        {"eichmann/LTERLFCR.GED", 3, 1, Encodage::Ascii},
        {"eichmann/UHLBOMCL.GED", 35, 1, Encodage::Utf16BE},
        {"eichmann/ULHBOMCL.GED", 35, 1, Encodage::Utf16LE},
        {"eichmann/ULHC.GED", 35, 1, Encodage::Utf16LE},
        {"eichmann/ULHCL.GED", 35, 1, Encodage::Utf16LE},
        {"eichmann/allged.ged", 8, 4, Encodage::Ascii},
        {"eichmann/simple.ged", 3, 1, Encodage::Ascii},
        {"eichmann/ulhlc.ged", 35, 1, Encodage::Utf16LE},
        {"gedcom4j/customtagstorture.ged", 3, 2, Encodage::Ansel},
        {"gedcom4j/issue102_100levels.ged", 0, 0, Encodage::Ansel},
        {"gedcom4j/issue102_99levels.ged", 0, 0, Encodage::Ansel},
        {"gedcom4j/john_of_sea_20101009.ged", 61, 27, Encodage::Utf8},
        {"gedcom4j/minimal55indented.ged", 0, 0, Encodage::Ansel},
        {"gedcom4j/superlongline-ansel.ged", 0, 0, Encodage::Ansel},
        {"gedcom4j/utf16be.ged", 0, 0, Encodage::Utf16BE},
        {"gedcom4j/utf16le.ged", 0, 0, Encodage::Utf16LE},
        {"gedcom4j/utf8_cr_nobom.ged", 10, 4, Encodage::Utf8},
        {"gedcom4j/utf8_crlf_bom.ged", 10, 4, Encodage::Utf8},
        {"gedcom4j/utf8_crlf_nobom.ged", 10, 4, Encodage::Utf8},
        {"gedcom4j/utf8_lf_nobom.ged", 10, 4, Encodage::Utf8},
        {"gedcom4j/willis-ansel.ged", 761, 293, Encodage::Ansel},
        {"gedcom4j/willis-unicode-bigendian.ged", 761, 293, Encodage::Utf16BE},
        {"gedcom4j/willis-unicode-littleendian.ged", 761, 293, Encodage::Utf16LE},
        {"gedcom4j/willis.ged", 761, 293, Encodage::Utf8},
        {"gedcom555/555SAMPLE.GED", 3, 2, Encodage::Utf8},
        {"gedcom555/555SAMPLE16BE.GED", 3, 2, Encodage::Utf16BE},
        {"gedcom555/555SAMPLE16LE.GED", 3, 2, Encodage::Utf16LE},
        {"gedcom555/MINIMAL555.GED", 0, 0, Encodage::Utf8},
        {"gedcom555/REMARR.GED", 3, 3, Encodage::Utf8},
        {"gedcom555/SSMARR.GED", 2, 1, Encodage::Utf8},
        {"public-trees/IvarKingOfDublin.ged", 1288, 495, Encodage::Utf8},
        {"public-trees/pres2020.ged", 2322, 1115, Encodage::Utf8},
        {"public-trees/royal92.ged", 3010, 1422, Encodage::Ansel},
        {"torture-tgc55/TGC551.ged", 15, 7, Encodage::Ansel},
        {"torture-tgc55/TGC551LF.ged", 15, 7, Encodage::Ansel},
        {"torture-tgc55/TGC55C.ged", 15, 7, Encodage::Ansel},
        {"torture-tgc55/TGC55CLF.ged", 15, 7, Encodage::Ansel},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.nom);
        const GedcomLu g = litCorpus(c.nom);
        EXPECT_EQ(g.rapport().inexploitable, Inexploitable::Non);
        EXPECT_FALSE(g.rapport().sansEntete);
        EXPECT_EQ(g.compte("INDI"), c.indi);
        EXPECT_EQ(g.compte("FAM"), c.fam);
        EXPECT_EQ(g.rapport().encodage, c.encodage);
        EXPECT_EQ(g.tag(g.enregistrements().back()), "TRLR");
        EXPECT_EQ(nombre(g, Anomalie::SansNiveau), 0u);
        EXPECT_EQ(nombre(g, Anomalie::SansTag), 0u);
    }
}

TEST(GedcomCorpus, OneContentInSeveralEncodingsReadsTheSame) {
    const auto ansel = toutesLignes(litCorpus("gedcom4j/willis-ansel.ged"));
    EXPECT_EQ(toutesLignes(litCorpus("gedcom4j/willis-unicode-bigendian.ged")).size(),
              ansel.size());
    const GedcomLu le = litCorpus("gedcom4j/willis-unicode-littleendian.ged");
    const GedcomLu be = litCorpus("gedcom4j/willis-unicode-bigendian.ged");
    const GedcomLu an = litCorpus("gedcom4j/willis-ansel.ged");
    EXPECT_EQ(valeurs(le, "INDI", "NAME"), valeurs(an, "INDI", "NAME"));
    EXPECT_EQ(valeurs(be, "INDI", "NAME"), valeurs(an, "INDI", "NAME"));
    EXPECT_EQ(valeurs(be, "INDI", "BIRT"), valeurs(an, "INDI", "BIRT"));
    // The FTM original of the same tree: other writer, same persons.
    EXPECT_EQ(valeurs(litCorpus("gedcom4j/willis.ged"), "INDI", "NAME").size(), 761u);

    // Four line ends, one family.
    const auto crlf = toutesLignes(litCorpus("eichmann/LTERCRLF.GED"));
    for (const char* nom : {"eichmann/LTERCR.GED", "eichmann/LTERLF.GED", "eichmann/LTERLFCR.GED"})
        EXPECT_EQ(toutesLignes(litCorpus(nom)), crlf) << nom;
    // UTF-16 in both byte orders, with and without a mark, CR, CR LF, LF CR.
    const auto ulh = toutesLignes(litCorpus("eichmann/ULHBOMCL.GED"));
    for (const char* nom :
         {"eichmann/UHLBOMCL.GED", "eichmann/ULHC.GED", "eichmann/ULHCL.GED", "eichmann/ulhlc.ged"})
        EXPECT_EQ(toutesLignes(litCorpus(nom)), ulh) << nom;
    // UTF-8 with and without a mark, with mixed line ends.
    const auto utf8 = toutesLignes(litCorpus("gedcom4j/utf8_lf_nobom.ged"));
    for (const char* nom : {"gedcom4j/utf8_cr_nobom.ged", "gedcom4j/utf8_crlf_bom.ged",
                            "gedcom4j/utf8_crlf_nobom.ged"})
        EXPECT_EQ(toutesLignes(litCorpus(nom)), utf8) << nom;
}

TEST(GedcomCorpus, AccentedLettersComeOutInWindows1252) {
    // ANSEL: the acute mark before the letter gives the composed letter.
    const GedcomLu ansel = litCorpus("eichmann/ANSEL.GED");
    std::size_t r = GedcomLu::npos;
    for (std::uint32_t i : ansel.enregistrements())
        if (ansel.tag(i) == "INDI" && ansel.valeur(ansel.sousLigne(i, "NAME")) ==
                                          "code: E2 (Unicode: acute, 0301)/acute accent/")
            r = i;
    ASSERT_NE(r, GedcomLu::npos);
    const std::size_t deces = ansel.sousLigne(r, "DEAT");
    ASSERT_NE(deces, GedcomLu::npos);
    const std::string_view lieu = ansel.valeur(ansel.sousLigne(deces, "PLAC"));
    EXPECT_NE(lieu.find("\xE1"), std::string_view::npos);
    EXPECT_NE(lieu.find("\xE9"), std::string_view::npos);
    EXPECT_EQ(lieu.find('\xE2'), std::string_view::npos); // no mark byte left
    // A mark with no composed form in Windows-1252 is kept with its letter:
    // the hook above "a" is "&#7843;". Nothing is lost.
    std::string tout;
    for (const auto& l : toutesLignes(ansel)) tout += l + "\n";
    EXPECT_NE(tout.find("&#7843;"), std::string::npos);
    EXPECT_EQ(ansel.rapport()[Anomalie::CaractereRemplace].nombre, 0u);
    // A mark Unicode has not, or before another mark, is lost and counted.
    const GedcomLu perdues = LitGedcomOctets("0 HEAD\r\n1 CHAR ANSEL\r\n0 @I1@ INDI\r\n"
                                             "1 NAME \xFC" "a\xE2\xE1" "e /B\xE0/\r\n0 TRLR\r\n");
    EXPECT_EQ(valeurs(perdues, "INDI", "NAME")[0], "a\xE8 /B/");
    const auto& remplaces = perdues.rapport()[Anomalie::CaractereRemplace];
    ASSERT_EQ(remplaces.nombre, 3u);
    EXPECT_EQ(remplaces.exemples.front().point, U'?');

    // UTF-8: Latin-1 letters pass, others are kept as references.
    const GedcomLu u = litCorpus("gedcom4j/utf8_crlf_bom.ged");
    const auto n = valeurs(u, "INDI", "NAME");
    EXPECT_EQ(n[0], "John /Gr\xFC"
                    "ber/");
    EXPECT_EQ(n[1], "Mary /H\xE6germann/");
    EXPECT_EQ(n[7], "Michael /Gar\xE7on/");
    EXPECT_EQ(n[8], "Ellen /&#321;owenst&#279;in/");
    EXPECT_EQ(u.rapport()[Anomalie::CaractereRemplace].nombre, 0u);

    // The same from UTF-16: Cyrillic too.
    const GedcomLu w = litCorpus("eichmann/ULHBOMCL.GED");
    EXPECT_EQ(w.rapport()[Anomalie::CaractereRemplace].nombre, 0u);
}

TEST(GedcomCorpus, DeepLevelsAndLongLinesOfTheCorpus) {
    const GedcomLu g = litCorpus("gedcom4j/issue102_100levels.ged");
    EXPECT_EQ(nombre(g, Anomalie::NiveauEnorme), 1u); // level 100
    EXPECT_GT(nombre(g, Anomalie::NiveauProfond), 90u);
    for (const LigneGedcom& l : g.lignes())
        EXPECT_LE(l.niveau, 5);

    const GedcomLu longue = litCorpus("gedcom4j/superlongline-ansel.ged");
    const std::uint32_t note = longue.enregistrements()[2];
    EXPECT_EQ(longue.tag(note), "NOTE");
    EXPECT_GT(longue.valeur(note).size(), 300u);
    EXPECT_EQ(nombre(longue, Anomalie::LigneTropLongue), 0u);

    EXPECT_EQ(litCorpus("gedcom4j/minimal55indented.ged").rapport().sansEntete, false);
    const GedcomLu tgc = litCorpus("torture-tgc55/TGC551LF.ged");
    EXPECT_EQ(nombre(tgc, Anomalie::TagInconnu), 1u); // _HME
    EXPECT_EQ(tgc.rapport()[Anomalie::TagInconnu].exemples[0].texte, "_HME");
}

TEST(GedcomLignes, ValuesContinuationsAndTheTree) {
    const GedcomLu g = lis("0 HEAD\r\n1 CHAR ANSI\r\n"
                           "0 @I1@ INDI\r\n"
                           "  1 NAME  Jean /Dupont/  \r\n"
                           "1 NOTE Premi\xE8re ligne coup\r\n"
                           "2 CONC \xE9"
                           "e\r\n"
                           "2 SOUR @E1@\r\n"
                           "2 CONT seconde   \r\n"
                           "1 FAMS @F1@\r\n"
                           "1 EMAIL a@@b.fr\r\n"
                           "0 @E1@ SOUR\r\n1 DATA\r\n2 DATE @#DFRENCH R@ 1 VEND 3\r\n"
                           "0 TRLR\r\n");
    ASSERT_EQ(g.compte("INDI"), 1u);
    const std::uint32_t p = g.enregistrements()[1];
    EXPECT_EQ(g.textePointeur(g.pointeur(p)), "I1");
    std::vector<std::string> tags;
    for (std::size_t i : g.sousLignes(p))
        tags.emplace_back(g.tag(i));
    EXPECT_EQ(tags, (std::vector<std::string>{"NAME", "NOTE", "FAMS", "EMAIL"}));
    EXPECT_EQ(g.valeur(g.sousLigne(p, "NAME")), "Jean /Dupont/");
    // CONC joins with nothing between, as GEDCOM has it.
    const std::size_t note = g.sousLigne(p, "NOTE");
    EXPECT_EQ(g.valeur(note), "Premi\xE8re ligne coup\xE9"
                              "e\r\nseconde");
    const std::size_t source = g.sousLigne(note, "SOUR");
    EXPECT_EQ(g.ligne(source).niveau, 2);
    EXPECT_EQ(g.tag(g.cible(source)), "SOUR");
    EXPECT_EQ(g.cible(g.sousLigne(p, "FAMS")), GedcomLu::npos);
    EXPECT_EQ(g.valeur(g.sousLigne(p, "EMAIL")), "a@b.fr");
    EXPECT_FALSE(g.tag55(g.sousLigne(p, "EMAIL")));
    EXPECT_TRUE(g.tag55(note));
    const std::size_t date = g.sousLigne(g.sousLigne(g.enregistrements()[2], "DATA"), "DATE");
    EXPECT_EQ(g.valeur(date), "@#DFRENCH R@ 1 VEND 3");
    EXPECT_EQ(g.lien(date), 0u);

    const auto& r = g.rapport();
    EXPECT_EQ(r[Anomalie::PointeurOrphelin].nombre, 1u);
    EXPECT_EQ(r[Anomalie::PointeurOrphelin].exemples[0].texte, "F1");
    EXPECT_EQ(r[Anomalie::PointeurOrphelin].exemples[0].ligne, 9u);
    EXPECT_EQ(r[Anomalie::TagInconnu].exemples[0].texte, "EMAIL");
    EXPECT_EQ(g.numeroPointeur("E1"), g.lien(source));
    EXPECT_EQ(g.numeroPointeur("X9"), 0u);
}

// A line is small, and what does not fit it is kept aside: the value and
// pointers of one line, a long value, a record of many lines.
TEST(GedcomLignes, WhatALineCannotHoldIsKeptAside) {
    std::string f = "0 HEAD\r\n0 @N1@ NOTE texte du document\r\n"
                    "0 @N2@ NOTE\r\n1 CONT suite\r\n"
                    "0 @X1@ _LIEN @N1@\r\n"
                    "0 @I1@ INDI\r\n1 NOTE @N2@\r\n1 ASSO @N1@\r\n2 CONC  et plus\r\n"
                    "1 NOTE " + std::string(70000, 'a') + "\r\n2 CONC b\r\n"
                    "0 @I2@ INDI\r\n";
    for (int k = 0; k < 70000; ++k)
        f += "1 OCCU m\r\n";
    f += "0 @I3@ INDI\r\n1 FAMS @F1@\r\n0 TRLR\r\n";
    const GedcomLu g = lis(f);
    const auto& e = g.enregistrements();
    ASSERT_EQ(e.size(), 8u);
    EXPECT_EQ(g.valeur(e[1]), "texte du document");
    EXPECT_EQ(g.textePointeur(g.pointeur(e[1])), "N1");
    EXPECT_EQ(g.valeur(e[2]), "\r\nsuite");
    EXPECT_EQ(g.textePointeur(g.pointeur(e[2])), "N2");
    EXPECT_EQ(g.valeur(e[3]), "@N1@");
    EXPECT_EQ(g.cible(e[3]), e[1]);
    EXPECT_EQ(g.textePointeur(g.pointeur(e[3])), "X1");

    const std::size_t i1 = e[4];
    EXPECT_EQ(g.valeur(i1), "");
    std::vector<std::size_t> sous;
    for (std::size_t s : g.sousLignes(i1))
        sous.push_back(s);
    ASSERT_EQ(sous.size(), 3u);
    EXPECT_EQ(g.valeur(sous[0]), "@N2@");
    EXPECT_EQ(g.cible(sous[0]), e[2]);
    // A pointer and more text: the text is the value, the pointer holds.
    EXPECT_EQ(g.valeur(sous[1]), "@N1@ et plus");
    EXPECT_EQ(g.cible(sous[1]), e[1]);
    EXPECT_EQ(g.valeur(sous[2]), std::string(70000, 'a') + "b");
    EXPECT_EQ(g.lien(sous[2]), 0u);

    EXPECT_EQ(g.fin(e[5]), e[6]);
    std::size_t n = 0;
    for (std::size_t s : g.sousLignes(e[5]))
        n += g.valeur(s) == "m";
    EXPECT_EQ(n, 70000u);
    EXPECT_EQ(g.valeur(g.sousLigne(e[6], "FAMS")), "@F1@");
    EXPECT_EQ(g.textePointeur(g.lien(g.sousLigne(e[6], "FAMS"))), "F1");
    EXPECT_EQ(g.numero(g.sousLigne(e[6], "FAMS")), g.numero(e[6]) + 1);

    // Line numbers run on over what is merged or skipped.
    const GedcomLu h = lis("0 HEAD\n1 NOTE a\n2 CONT b\n2 CONC c\n\n   \n1 SOUR x\n"
                           "2 DATA\n0 @I1@ INDI\n\n1 NAME y\n");
    std::vector<std::uint32_t> numeros;
    for (std::size_t i = 0; i < h.lignes().size(); ++i)
        numeros.push_back(h.numero(i));
    EXPECT_EQ(numeros, (std::vector<std::uint32_t>{1, 2, 7, 8, 9, 11}));
}

// Pointers of every form are one pointer per text: "I1" and "I01" are two,
// a huge number or a text of another form is found as well as "I12".
TEST(GedcomLignes, EachPointerTextIsOnePointer) {
    std::string f = "0 HEAD\r\n0 @I1@ INDI\r\n1 ASSO @I999999999@\r\n1 ASSO @I01@\r\n"
                    "1 ASSO @i1@\r\n1 ASSO @I6000@\r\n1 ASSO @IND1@\r\n";
    // Enough pointers for the table of "I" to reach 6000 on the way.
    for (int k = 2; k <= 5000; ++k)
        f += "0 @I" + std::to_string(k) + "@ INDI\r\n1 FAMS @F" + std::to_string(k % 7 + 1) + "@\r\n";
    for (std::string t : {"I999999999", "I01", "i1", "I6000", "IND1", "F3", "I1"})
        f += "0 @" + t + "@ NOTE\r\n";
    f += "1 ASSO @I6000@\r\n0 TRLR\r\n";
    const GedcomLu g = lis(f);
    EXPECT_EQ(nombre(g, Anomalie::PointeurDouble), 1u); // I1
    EXPECT_EQ(nombre(g, Anomalie::PointeurOrphelin), 6u); // F1 to F7 but F3
    EXPECT_EQ(g.nombrePointeurs(), 5000u + 5 + 7);
    const auto& e = g.enregistrements();
    for (std::uint32_t p = 1; p <= g.nombrePointeurs(); ++p)
        EXPECT_EQ(g.numeroPointeur(g.textePointeur(p)), p) << g.textePointeur(p);
    std::vector<std::size_t> asso;
    for (std::size_t s : g.sousLignes(e[1]))
        asso.push_back(g.cible(s));
    const std::size_t notes = e.size() - 8;
    EXPECT_EQ(asso, (std::vector<std::size_t>{e[notes], e[notes + 1], e[notes + 2], e[notes + 3],
                                              e[notes + 4]}));
    EXPECT_EQ(g.textePointeur(g.lien(e[notes + 6] + 1)), "I6000");
    EXPECT_EQ(g.cible(e[notes + 6] + 1), e[notes + 3]);
    EXPECT_EQ(g.numeroPointeur("I5001"), 0u);
    EXPECT_EQ(g.numeroPointeur("I"), 0u);
}

TEST(GedcomLignes, FaultyLevelsAreReportedAndKeptInTheTree) {
    const GedcomLu g = lis("0 HEAD\n"
                           "0 @I1@ INDI\n"
                           "1 NOTE d\xE9"
                           "but\n"
                           "suite sans niveau\n"
                           "3 DATE saut\n" // two levels down at once
                           "1 BIRT\n"
                           "123456789012 GROS\n" // a huge level
                           "2 PLAC\n3 MAP\n4 LATI\n5 _A\n6 _B\n7 _C\n6 _D\n"
                           "1\n" // no tag
                           "0 CONT orpheline\n"
                           "@I2@ INDI\n"
                           "0 @I1@ INDI\n"
                           "0 TRLR\n");
    const auto& r = g.rapport();
    EXPECT_EQ(r[Anomalie::SansNiveau].nombre, 2u);
    EXPECT_EQ(r[Anomalie::SansNiveau].exemples[0].texte, "suite sans niveau");
    EXPECT_EQ(r[Anomalie::SansNiveau].exemples[0].ligne, 4u);
    EXPECT_EQ(r[Anomalie::SansTag].nombre, 1u);
    EXPECT_EQ(r[Anomalie::NiveauEnorme].nombre, 1u);
    EXPECT_EQ(r[Anomalie::NiveauIncorrect].nombre, 2u); // "3 DATE" and "0 CONT"
    EXPECT_EQ(r[Anomalie::NiveauProfond].nombre, 3u);
    EXPECT_EQ(r[Anomalie::PointeurDouble].nombre, 1u);
    EXPECT_EQ(g.compte("INDI"), 2u);

    const std::uint32_t p = g.enregistrements()[1];
    const std::size_t note = g.sousLigne(p, "NOTE");
    EXPECT_EQ(g.valeur(note), "d\xE9"
                              "but\r\nsuite sans niveau");
    const std::size_t date = g.sousLigne(note, "DATE");
    ASSERT_NE(date, GedcomLu::npos);
    EXPECT_EQ(g.ligne(date).niveau, 2);
    // Below level 4 everything deeper stands at level 5.
    const std::size_t lati =
        g.sousLigne(g.sousLigne(g.sousLigne(g.sousLigne(p, "BIRT"), "PLAC"), "MAP"), "LATI");
    std::vector<std::string> profonds;
    for (std::size_t i : g.sousLignes(lati)) {
        EXPECT_EQ(g.ligne(i).niveau, 5);
        profonds.emplace_back(g.tag(i));
    }
    EXPECT_EQ(profonds, (std::vector<std::string>{"_A", "_B", "_C", "_D"}));
    // The huge level became a sub-line; the first definition of @I1@ holds.
    EXPECT_EQ(g.definition(g.numeroPointeur("I1")), p);
    EXPECT_EQ(g.ligne(g.sousLigne(g.sousLigne(p, "BIRT"), "GROS")).niveau, 2);
}

TEST(GedcomEncodages, TheBytesRuleOverTheCharLine) {
    const std::string corps =
        "0 HEAD\r\n1 CHAR ANSEL\r\n0 @I1@ INDI\r\n1 NAME L\xC3\xA9on /\xC3\x89vrard/\r\n0 TRLR\r\n";
    // A UTF-8 mark under CHAR ANSEL.
    const GedcomLu a = lis("\xEF\xBB\xBF" + corps);
    EXPECT_EQ(a.rapport().encodage, Encodage::Utf8);
    EXPECT_TRUE(a.rapport().marqueOrdre);
    EXPECT_EQ(a.rapport().jeuDeclare, "ANSEL");
    EXPECT_EQ(valeurs(a, "INDI", "NAME")[0], "L\xE9on /\xC9vrard/");
    // UTF-8 without a mark: well-formed sequences give it away.
    EXPECT_EQ(valeurs(lis(corps), "INDI", "NAME")[0], "L\xE9on /\xC9vrard/");
    // UTF-16 under CHAR ANSEL, either order, with or without a mark.
    for (bool grosBout : {false, true})
        for (bool marque : {false, true}) {
            const GedcomLu u = lis(utf16(corps, grosBout, marque));
            EXPECT_EQ(u.rapport().encodage, grosBout ? Encodage::Utf16BE : Encodage::Utf16LE);
            EXPECT_EQ(valeurs(u, "INDI", "NAME")[0], "L\xE9on /\xC9vrard/");
        }
    // The four sets of the CHAR line.
    auto nom = [](std::string_view jeu, std::string_view nom) {
        return valeurs(lis("0 HEAD\n1 CHAR " + std::string(jeu) + "\n0 @I1@ INDI\n1 NAME " +
                           std::string(nom) + "\n0 TRLR\n"),
                       "INDI", "NAME")[0];
    };
    EXPECT_EQ(nom("ANSI", "L\xE9on"), "L\xE9on");
    EXPECT_EQ(nom("ANSEL", "L\xE2"
                           "eon"),
              "L\xE9on");
    EXPECT_EQ(nom("ASCII", "L\x82on"), "L\xE9on");
    EXPECT_EQ(nom("HTML", "L&eacute;on &amp; C&#35;"), "L\xE9on & C&#35;");
    EXPECT_EQ(nom("ANSI", "a#b"), "a#b"); // "#" is the import's business
    // Malformed UTF-8 under CHAR UTF-8: the bytes are taken as Windows-1252.
    EXPECT_EQ(nom("UTF-8", "L\xE9on"), "L\xE9on");
}

TEST(GedcomMauvaisFichiers, EachGivesAReportAndWhatCouldBeRead) {
    EXPECT_EQ(lis("").rapport().inexploitable, Inexploitable::Vide);
    EXPECT_EQ(lis("").rapport().erreur(), "Fichier GEDCOM inexploitable");

    // No line end: the one line is read, and the file is not importable.
    const GedcomLu seul = lis("0 HEAD 1 CHAR ANSI 0 TRLR");
    EXPECT_EQ(seul.rapport().inexploitable, Inexploitable::SansFinDeLigne);
    EXPECT_EQ(seul.lignes().size(), 1u);

    // Binary garbage, seeded: no crash, a report, no record.
    std::mt19937 alea(42);
    for (int essai = 0; essai < 20; ++essai) {
        std::string octets(1 + alea() % 5000, '\0');
        for (char& c : octets)
            c = static_cast<char>(alea());
        const GedcomLu g = lis(octets);
        EXPECT_NE(g.rapport().inexploitable == Inexploitable::Non && g.rapport().vide(), true);
        for (std::size_t i = 0; i < g.lignes().size(); ++i) {
            ASSERT_LE(g.fin(i), g.lignes().size());
            ASSERT_GT(g.fin(i), i);
        }
    }
    EXPECT_EQ(lis(std::string(3000, '\0')).rapport().inexploitable, Inexploitable::SansFinDeLigne);
    EXPECT_EQ(lis("\xFF\xFE\x30").rapport().inexploitable, Inexploitable::SansFinDeLigne);
    EXPECT_EQ(lis("\n\n\r\n").rapport().inexploitable, Inexploitable::SansEnregistrement);
    EXPECT_TRUE(lis("0 @I1@ INDI\n0 TRLR\n").rapport().sansEntete);

    // A 10 MB line is cut at the bound, and the lines after it are read.
    const std::string longue = "0 HEAD\n1 NOTE " + std::string(10u << 20, 'x') + "\n0 TRLR\n";
    const GedcomLu g = lis(longue);
    EXPECT_EQ(g.rapport()[Anomalie::LigneTropLongue].nombre, 1u);
    EXPECT_EQ(g.valeur(g.sousLigne(0, "NOTE")).size(), LongueurMaxLigne - 7);
    EXPECT_EQ(g.tag(g.enregistrements().back()), "TRLR");
    // A UTF-8 cut does not split a character.
    const std::string e = "\xC3\xA9";
    std::string accents = "0 HEAD\n1 CHAR UTF-8\n1 NOTE ";
    while (accents.size() < LongueurMaxLigne + 10)
        accents += e;
    const GedcomLu ga = lis(accents + "\n");
    EXPECT_EQ(ga.valeur(ga.sousLigne(0, "NOTE")).back(), '\xE9');
    EXPECT_EQ(ga.rapport()[Anomalie::CaractereRemplace].nombre, 0u);

    // Levels out of order and pointers to nothing.
    const GedcomLu n = lis("5 HEAD\n0 @I1@ INDI\n1 FAMC @F9@\n1 FAMS @F9@\n1 ASSO @I7@\n0 TRLR\n");
    EXPECT_EQ(n.rapport()[Anomalie::NiveauIncorrect].nombre, 1u);
    EXPECT_EQ(n.rapport()[Anomalie::PointeurOrphelin].nombre, 2u);
    EXPECT_EQ(n.compte("INDI"), 1u);
}

TEST(GedcomFichiers, ReadThroughTheFileLayer) {
    SystemeMemoire fs;
    ecrireTout(fs, "/a.ged", "0 HEAD\r\n1 CHAR ANSI\r\n0 TRLR\r\n");
    const GedcomLu g = LitGedcom(fs, "/a.ged");
    EXPECT_TRUE(g.rapport().vide());
    EXPECT_EQ(g.rapport().lignes, 3u);
    EXPECT_THROW(LitGedcom(fs, "/absent.ged"), ErreurES);
}

// A file is read a megabyte at a time: a line end, a UTF-8 character and a
// line over the length limit that straddle the edges of the pieces read
// as they would whole.
TEST(GedcomFichiers, NothingIsCutAtTheEdgesOfThePiecesRead) {
    const std::size_t piece = std::size_t{1} << 20;
    std::string f = "0 HEAD\r\n1 CHAR ANSI\r\n0 @N1@ NOTE debut";
    f += "\r\n1 CONT ";
    f.append(piece - 1 - f.size(), 'x'); // "\r" ends the first piece, "\n" starts the second
    f += "\r\n1 CONT ";
    f.append(2 * piece - 1 - f.size(), 'y');
    f += "\xC3\xA9"; // across the second edge
    f += "\r\n1 CONT ";
    f.append(LongueurMaxLigne + piece, 'z');
    f += "\r\n0 TRLR\r\n";
    SystemeMemoire fs;
    ecrireTout(fs, "/pieces.ged", f);
    const GedcomLu g = LitGedcom(fs, "/pieces.ged");
    const auto& r = g.rapport();
    EXPECT_EQ(r.encodage, Encodage::Utf8);
    EXPECT_EQ(r.lignes, 7u);
    EXPECT_EQ(nombre(g, Anomalie::LigneTropLongue), 1u);
    EXPECT_EQ(nombre(g, Anomalie::SansNiveau), 0u);
    ASSERT_EQ(g.compte("NOTE"), 1u);
    const std::string note(g.valeur(g.enregistrements()[1]));
    EXPECT_NE(note.find("xx\r\nyy"), std::string::npos);
    EXPECT_NE(note.find("y\xE9\r\nzz"), std::string::npos);
    EXPECT_EQ(std::count(note.begin(), note.end(), 'z'), LongueurMaxLigne - 7); // after "1 CONT "
    EXPECT_EQ(toutesLignes(g), toutesLignes(LitGedcomOctets(f)));
}

TEST(GedcomFichiers, TheSampleFamilyReadsWithNothingToReport) {
    const GedcomLu g =
        LitGedcom(systemeReel(), std::string(SYLVANE_SOURCE_DIR) + "/samples/famille-exemple.ged");
    const auto& r = g.rapport();
    for (std::size_t a = 0; a < NombreAnomalies; ++a)
        for (const auto& e : r.anomalies[a].exemples)
            ADD_FAILURE() << a << " line " << e.ligne << ": " << AnsiVersUtf8(e.texte);
    EXPECT_TRUE(r.vide());
    EXPECT_EQ(r.encodage, Encodage::Ansi);
    EXPECT_GE(g.compte("INDI"), 45u);
    EXPECT_GE(g.compte("FAM"), 15u);
    EXPECT_GE(g.compte("SOUR"), 10u);
    EXPECT_GE(g.compte("NOTE"), 2u);
}
