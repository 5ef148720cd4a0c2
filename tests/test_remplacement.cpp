// Keyword kinds, the sheet rubric rows, and the replacement of a keyword
// in every note with the index kept true, whole or not at all.
#include "store/pack.h"
#include "store/remplacement.h"
#include "support/base_memoire.h"
#include "text/mots.h"
#include "text/rtf.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace sylvane;

namespace {

struct Fixture : ::testing::Test, test::BaseMemoire {};

std::uint32_t Personne(Base& b, const std::string& nom, const std::string& an,
                       const std::string& lignes, char sexe = 'H') {
    const std::uint32_t n = b.CreePersonne(nom, "Jean", "", sexe, an);
    const std::string avant = b.LitNote(n);
    const std::string apres = avant + lignes;
    b.MajMots(n, avant, apres);
    b.EcritNote(n, apres);
    return n;
}

// Every word of a rubric with its persons, in list order.
std::map<std::string, std::vector<std::uint32_t>> Index(Base& b, char symbole) {
    std::map<std::string, std::vector<std::uint32_t>> r;
    const std::string l = b.ListeRubrique(b.RubriqueDeSymbole(symbole));
    std::string precedent;
    for (std::size_t o = 0; o + 4 <= l.size(); o += 4) {
        const std::uint32_t e = Unpack4(l, o);
        const std::string mot = b.LitMot(e);
        EXPECT_LT(precedent, mot) << "the list is sorted by word";
        precedent = mot;
        const std::string p = b.PersonnesMot(e);
        for (std::size_t i = 0; i + 4 <= p.size(); i += 4) r[mot].push_back(Unpack4(p, i));
    }
    return r;
}

// The index of every rubric holds what the notes hold, each word's persons
// ordered by birth key.
void IndexFideleAuxNotes(Base& b) {
    for (const auto& g : GenresMots(b)) {
        if (!g.indexe) continue;
        std::map<std::string, std::multiset<std::uint32_t>> attendu;
        for (std::size_t i = 1; i <= b.TablePersonnes().taille(); ++i) {
            const std::uint32_t n = b.TriFiche(i);
            for (const auto& m : Base::MotsNote(SansRtf(b.NoteAvecMariages(n)), g.marque))
                attendu[m].insert(n);
        }
        const auto index = Index(b, g.marque);
        ASSERT_EQ(index.size(), attendu.size()) << g.marque;
        for (const auto& [mot, personnes] : index) {
            EXPECT_EQ(std::multiset<std::uint32_t>(personnes.begin(), personnes.end()), attendu[mot])
                << mot;
            for (std::size_t i = 1; i < personnes.size(); ++i)
                EXPECT_LE(b.CleAnNaiss(personnes[i - 1]), b.CleAnNaiss(personnes[i])) << mot;
        }
    }
}

} // namespace

TEST(RemplacementTexte, MarkFoldedWordWholeAndRichTextLeftAlone) {
    std::string t = "OCCU  \\laboureur\r\nOCCU  \\LABOUREUR puis \\laboureurs \\Labou\r\n"
                    "{\\rtf1 \\laboureur}\\laboureur";
    EXPECT_EQ(RemplaceDansTexte(t, "\\", "LABOUREUR", "Cultivateur"), 3u);
    EXPECT_EQ(t, "OCCU  \\Cultivateur\r\nOCCU  \\Cultivateur puis \\laboureurs \\Labou\r\n"
                 "{\\rtf1 \\laboureur}\\Cultivateur");
    EXPECT_EQ(CleMotSaisi(" Saint Lo  "), "SAINT LO") << "as the index folds it";
    std::string lieu = "$Saint.L\xF4 ~Paris";
    EXPECT_EQ(RemplaceDansTexte(lieu, "$", CleMotSaisi("saint lo"), VersPoints("Saint-L\xF4")), 1u);
    EXPECT_EQ(lieu, "$Saint-L\xF4 ~Paris");
}

TEST_F(Fixture, ReplacingATradeRewritesTheNotesAndMovesTheIndex) {
    const auto a = Personne(b, "Martin", "1850", "\r\nOCCU  \\laboureur\r\n\r\nmaitre \\Laboureur");
    const auto c = Personne(b, "Durand", "1820", "\r\nOCCU  \\tisserand");
    const auto d = Personne(b, "Petit", "1835", "\r\nOCCU  \\laboureur");
    const auto e = Personne(b, "Blanc", "1900", "\r\nOCCU  \\tailleur");
    b.MnuEnregistrer();
    IndexFideleAuxNotes(b);

    // Into a word the index already has: the lists merge by birth year.
    auto r = RemplaceMot(b, {'\\', "laboureur ", "tisserand"});
    EXPECT_EQ(r.refus, 0);
    EXPECT_EQ(r.personnes, 2u);
    EXPECT_EQ(r.occurrences, 3u);
    EXPECT_FALSE(b.Modifiee()) << "committed";
    EXPECT_NE(b.LitNote(a).find("OCCU  \\tisserand\r\n\r\nmaitre \\tisserand"), std::string::npos);
    EXPECT_NE(b.LitNote(d).find("\\tisserand"), std::string::npos);
    auto index = Index(b, '\\');
    EXPECT_EQ(index.count("LABOUREUR"), 0u);
    EXPECT_EQ(index["TISSERAND"], (std::vector<std::uint32_t>{c, d, a, a}));
    IndexFideleAuxNotes(b);

    // Into a new word, with blanks; then read back from the file.
    r = RemplaceMot(b, {'\\', "TISSERAND", "tisserand en toile"});
    EXPECT_EQ(r.occurrences, 4u);
    Reouvre();
    index = Index(b, '\\');
    EXPECT_EQ(index.count("TISSERAND"), 0u);
    EXPECT_EQ(index["TISSERAND EN TOILE"], (std::vector<std::uint32_t>{c, d, a, a}));
    EXPECT_EQ(index["TAILLEUR"], std::vector<std::uint32_t>{e});
    EXPECT_NE(b.LitNote(c).find("\\tisserand.en.toile"), std::string::npos);
    IndexFideleAuxNotes(b);

    // A word the index lacks changes nothing; a bad new word is refused.
    EXPECT_EQ(RemplaceMot(b, {'\\', "forgeron", "x"}).occurrences, 0u);
    EXPECT_EQ(RemplaceMot(b, {'\\', "tailleur", " "}).refus, msg_mots::MotNouveauRefuse);
    EXPECT_EQ(RemplaceMot(b, {'\\', "tailleur", "a#b"}).refus, msg_mots::MotNouveauRefuse);
    EXPECT_EQ(RemplaceMot(b, {'\\', "", "x"}).occurrences, 0u);
}

// A marriage place is a keyword of both spouses: both lists follow.
TEST_F(Fixture, AMarriagePlaceMovesForBothSpouses) {
    const auto h = Personne(b, "Martin", "1850", "");
    const auto f = Personne(b, "Durand", "1855", "", 'F');
    const auto autre = Personne(b, "Petit", "1800", "\r\nvu \xE0 @Caen");
    const auto m = b.CreeMariage(h, f, "1875");
    const std::string ah = b.NoteAvecMariages(h), af = b.NoteAvecMariages(f);
    b.EcritNoteMariage(m, "1875 @Caen");
    b.MajMots(h, ah, b.NoteAvecMariages(h));
    b.MajMots(f, af, b.NoteAvecMariages(f));
    IndexFideleAuxNotes(b);

    const auto r = RemplaceMot(b, {'@', "caen", "Bayeux"});
    EXPECT_EQ(r.mariages, 1u);
    EXPECT_EQ(r.personnes, 1u);
    EXPECT_EQ(b.LitNoteMariage(m), "1875 @Bayeux");
    auto index = Index(b, '@');
    EXPECT_EQ(index["BAYEUX"], (std::vector<std::uint32_t>{autre, h, f}));
    EXPECT_EQ(index.count("CAEN"), 0u);
    IndexFideleAuxNotes(b);
}

// A kind with no list needs "all kinds", which scans every note.
TEST_F(Fixture, AKindWithoutIndexIsReplacedOnlyByTheWholeScan) {
    ASSERT_EQ(AjouteGenre(b, "x", "Surnom", false), 0);
    const auto a = Personne(b, "Martin", "1850", "\r\ndit Xbiquet et \\Biquet");
    EXPECT_EQ(RemplaceMot(b, {'X', "biquet", "Bouquet"}).refus, msg_mots::DoitEtreIndexe);
    const auto r = RemplaceMot(b, {'X', "biquet", "Bouquet", true});
    EXPECT_EQ(r.occurrences, 2u) << "behind every kind's mark";
    EXPECT_NE(b.LitNote(a).find("dit XBouquet et \\Bouquet"), std::string::npos);
    IndexFideleAuxNotes(b);
    // A stop during the scan leaves everything as it was.
    const auto s = RemplaceMot(b, {'X', "bouquet", "B", true}, [](auto, auto) { return true; });
    EXPECT_TRUE(s.arrete);
    EXPECT_NE(b.LitNote(a).find("XBouquet"), std::string::npos);
}

TEST_F(Fixture, KindsAreAddedCheckedMovedAndRemoved) {
    const std::size_t nb = GenresMots(b).size();
    EXPECT_EQ(AjouteGenre(b, "#", "Rien", false), msg_mots::RepereRefuse);
    EXPECT_EQ(AjouteGenre(b, "\xB0", "Rien", false), msg_mots::RepereRefuse);
    EXPECT_EQ(AjouteGenre(b, "ab", "Rien", false), msg_mots::RepereRefuse);
    EXPECT_EQ(AjouteGenre(b, "q", "  ", false), msg_mots::LibelleVide);
    Personne(b, "Martin", "1850", "\r\nsoldat Qgrenadier");
    ASSERT_EQ(AjouteGenre(b, "q", "Grade", true), 0) << "a lower-case mark is folded";
    EXPECT_EQ(AjouteGenre(b, "Q", "Autre", false), msg_mots::RepereUtilise);
    auto g = GenresMots(b);
    ASSERT_EQ(g.size(), nb + 1);
    EXPECT_EQ(g.back().marque, 'Q');
    EXPECT_EQ(g.back().libelle, "Grade");
    EXPECT_TRUE(g.back().indexe);
    EXPECT_EQ(Index(b, 'Q').count("GRENADIER"), 1u) << "built from the notes";

    // The fixed marks stay; a kind used by a sheet row stays.
    EXPECT_EQ(SupprimeGenre(b, b.RubriqueDeSymbole('|')), msg_mots::RepereFixe);
    EXPECT_EQ(ModifieGenre(b, b.RubriqueDeSymbole('$'), "N", "Naissance", true), msg_mots::RepereFixe);
    EXPECT_EQ(SupprimeGenre(b, b.RubriqueDeSymbole('\\')), msg_mots::GenreEmploye);
    EXPECT_EQ(ModifieGenre(b, b.RubriqueDeSymbole('Q'), "#", "Grade", true), msg_mots::RepereRefuse);
    EXPECT_EQ(ModifieGenre(b, b.RubriqueDeSymbole('Q'), "$", "Grade", true), msg_mots::RepereUtilise);

    // A new mark is written into the notes; the list goes with it.
    ASSERT_EQ(ModifieGenre(b, b.RubriqueDeSymbole('Q'), "G", "Grade militaire", true), 0);
    EXPECT_NE(b.LitNote(1).find("soldat Ggrenadier"), std::string::npos);
    EXPECT_EQ(Index(b, 'G').count("GRENADIER"), 1u);
    // Index off drops the list, on builds it again.
    ASSERT_EQ(ModifieGenre(b, b.RubriqueDeSymbole('G'), "G", "Grade", false), 0);
    EXPECT_FALSE(GenresMots(b).back().indexe);
    ASSERT_EQ(ModifieGenre(b, b.RubriqueDeSymbole('G'), "G", "Grade", true), 0);
    EXPECT_EQ(Index(b, 'G').count("GRENADIER"), 1u);

    // Swap, then removal: the last kind takes the place.
    const std::uint32_t k = b.RubriqueDeSymbole('\xB2');
    EchangeGenres(b, k, k + 1);
    EXPECT_EQ(b.RubriqueDeSymbole('\xB2'), k + 1);
    ASSERT_EQ(SupprimeGenre(b, k + 1), 0);
    g = GenresMots(b);
    ASSERT_EQ(g.size(), nb);
    EXPECT_EQ(g[k - 1].marque, 'G');
    EXPECT_EQ(b.RubriqueDeSymbole('\xB2'), 0u);
    Reouvre();
    EXPECT_EQ(GenresMots(b).size(), nb);
    EXPECT_EQ(Index(b, 'G').count("GRENADIER"), 1u);
}

TEST_F(Fixture, SheetRowsTakeTheirTagFromTheKind) {
    ASSERT_EQ(AjouteGenre(b, "R", "RELI", false), 0);
    EXPECT_EQ(EcritRangsRubriques(b, {{'R', '1', ""}, {'\\', ' ', ""}}, {}), 0);
    auto p = RangsRubriques(b, false);
    ASSERT_EQ(p.size(), 2u);
    EXPECT_EQ(p[0].tag, "RELI");
    EXPECT_EQ(p[0].drapeau, '1');
    EXPECT_EQ(p[1].tag, "OCCU");
    EXPECT_TRUE(RangsRubriques(b, true).empty());
    EXPECT_EQ(EcritRangsRubriques(b, {{'Z', ' ', ""}}, {}), msg_mots::RepereRefuse);
    EXPECT_EQ(EcritRangsRubriques(b, std::vector<SlotRubrique>(11, {'R', ' ', ""}), {}),
              msg_mots::TropDeRubriques);
    Reouvre();
    p = RangsRubriques(b, false);
    ASSERT_EQ(p.size(), 2u);
    EXPECT_EQ(p[0].tag, "RELI");
}

// A failure at any write of the replacement leaves the last commit whole:
// after a power loss the notes and the index are all old or all new.
TEST(RemplacementSurete, AFailedWriteLeavesTheBaseWhole) {
    SystemeMemoire origine;
    Parametres p;
    {
        Base b(origine, p);
        b.Nouvelle("/b.sv2");
        for (int i = 0; i < 300; ++i)
            Personne(b, "Nom" + std::to_string(i % 7), std::to_string(1800 + i % 50),
                     i % 3 ? "\r\nOCCU  \\laboureur" : "\r\nOCCU  \\tisserand");
        b.FermeBase();
    }
    auto etat = [](Base& b) {
        std::string s;
        for (std::uint32_t n = 1; n <= b.Tete().maxPersonne; ++n) s += b.LitNote(n) + "|";
        for (const auto& [mot, l] : Index(b, '\\')) {
            s += mot + ":";
            for (auto n : l) s += std::to_string(n) + ",";
        }
        return s;
    };
    const DemandeRemplacement d{'\\', "laboureur", "cultivateur"};
    std::string avant, apres;
    long operations = 0;
    {
        SystemeMemoire fs;
        fs.copieDe(origine);
        Base b(fs, p);
        b.Ouvre("/b.sv2");
        avant = etat(b);
        const long debut = fs.operationsFaites();
        RemplaceMot(b, d);
        operations = fs.operationsFaites() - debut;
        IndexFideleAuxNotes(b);
        apres = etat(b);
        b.Abandonne();
    }
    ASSERT_NE(avant, apres);
    ASSERT_GT(operations, 3);
    for (long n = 1; n <= operations; ++n) {
        SystemeMemoire fs;
        fs.copieDe(origine);
        Base b(fs, p);
        b.Ouvre("/b.sv2");
        fs.echouerApres(n, n % 2 == 0);
        bool echec = false;
        try {
            RemplaceMot(b, d);
        } catch (const ErreurES&) {
            echec = true;
        }
        EXPECT_TRUE(echec) << "operation " << n;
        EXPECT_FALSE(b.EstOuverte()) << "a failed replacement gives the base up";
        b.Abandonne();
        fs.simulerPanne();
        fs.retablir();
        b.Ouvre("/b.sv2");
        const std::string e = etat(b);
        EXPECT_TRUE(e == avant || e == apres) << "failure at operation " << n;
        b.Abandonne();
    }
}
