// The keyword index against the notes it is built from.
#include "store/pack.h"
#include "support/base_memoire.h"
#include "text/mots.h"
#include "text/rtf.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

using namespace sylvane;

namespace {

using Fixture = test::BaseMemoire;

// Persons of a word: numbers in list order.
std::vector<std::uint32_t> Personnes(Base& b, char symbole, const std::string& mot) {
    std::uint32_t k = b.RubriqueDeSymbole(symbole);
    std::string l = b.ListeRubrique(k);
    for (std::size_t o = 0; o + 4 <= l.size(); o += 4) {
        std::uint32_t e = Unpack4(l, o);
        if (b.LitMot(e) != mot) continue;
        std::string p = b.PersonnesMot(e);
        std::vector<std::uint32_t> v;
        for (std::size_t i = 0; i + 4 <= p.size(); i += 4)
            v.push_back(Unpack4(p, i));
        return v;
    }
    return {};
}

std::vector<std::string> Mots(Base& b, char symbole) {
    std::string l = b.ListeRubrique(b.RubriqueDeSymbole(symbole));
    std::vector<std::string> v;
    for (std::size_t o = 0; o + 4 <= l.size(); o += 4)
        v.push_back(b.LitMot(Unpack4(l, o)));
    return v;
}

// The index must hold, for every rubric with a list, exactly the words of
// the notes, sorted, each with the multiset of persons whose note has it,
// ordered by birth key.
void CompareAuxNotes(Base& b) {
    for (std::uint32_t k = 1; k <= b.Tete().nbRubriques; ++k) {
        if (b.PosListeRubrique(k) == 0) continue;
        const char s = b.LitRubrique(k)[0];
        std::map<std::string, std::multiset<std::uint32_t>> attendu;
        for (std::size_t i = 1; i <= b.Tete().nbPersonnes; ++i) {
            std::uint32_t n = b.TriFiche(i);
            for (const auto& m : Base::MotsNote(SansRtf(b.NoteAvecMariages(n)), s))
                attendu[m].insert(n);
        }
        std::string l = b.ListeRubrique(k);
        ASSERT_EQ(l.size() / 4, attendu.size()) << "rubric " << k;
        auto it = attendu.begin();
        for (std::size_t o = 0; o + 4 <= l.size(); o += 4, ++it) {
            std::uint32_t e = Unpack4(l, o);
            ASSERT_EQ(b.LitMot(e), it->first) << "rubric " << k;
            std::string p = b.PersonnesMot(e);
            std::multiset<std::uint32_t> vu;
            std::string cle;
            for (std::size_t i = 0; i + 4 <= p.size(); i += 4) {
                std::uint32_t n = Unpack4(p, i);
                vu.insert(n);
                ASSERT_LE(cle, b.CleAnNaiss(n)) << it->first;
                cle = b.CleAnNaiss(n);
            }
            ASSERT_EQ(vu, it->second) << it->first;
        }
    }
}

const char* const kLieux[] = {"Paris", "Lyon", "Saint L\xF4", "Caen", "Bayeux", "Vire"};
const char* const kMetiers[] = {"laboureur", "tisserand", "marchand de vin", "cur\xE9"};

} // namespace

TEST(IndexMots, ChangeOfBirthPlaceMovesThePerson) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t n = b.CreePersonne("Martin", "Jean", "", 'H', "1850");
    std::uint32_t m = b.CreePersonne("Durand", "Paul", "", 'H', "1840");
    auto poseLieu = [&](std::uint32_t x, const char* lieu) {
        std::string ancienne = b.LitNote(x), nouvelle = b.LigneMotsCles(x, lieu);
        b.MajMots(x, ancienne, nouvelle);
        b.EcritNote(x, nouvelle);
    };
    poseLieu(n, "Paris");
    poseLieu(m, "Paris");
    EXPECT_EQ(Personnes(b, '$', "PARIS"), (std::vector<std::uint32_t>{m, n}));
    poseLieu(n, "Lyon");
    EXPECT_EQ(Personnes(b, '$', "PARIS"), std::vector<std::uint32_t>{m});
    EXPECT_EQ(Personnes(b, '$', "LYON"), std::vector<std::uint32_t>{n});
    // The last person of a word leaves: the word leaves the rubric, and its
    // entry is emptied for good.
    std::uint32_t avant = b.Tete().nbMots;
    poseLieu(m, "Lyon");
    EXPECT_EQ(Mots(b, '$'), std::vector<std::string>{"LYON"});
    EXPECT_EQ(b.Tete().nbMots, avant);
    bool vide = false;
    for (std::uint32_t e = 1; e <= b.Tete().nbMots; ++e)
        vide |= b.EntreeMot(e) == std::string(12, '\0');
    EXPECT_TRUE(vide);
    EXPECT_EQ(Personnes(b, '$', "LYON"), (std::vector<std::uint32_t>{m, n}));
    f.Reouvre();
    EXPECT_EQ(Personnes(b, '$', "LYON"), (std::vector<std::uint32_t>{m, n}));
    CompareAuxNotes(b);
}

TEST(IndexMots, RepeatsCountAndTiesKeepTheirOrderOfArrival) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t a = b.CreePersonne("A", "X", "", 'H', "1850");
    std::uint32_t c = b.CreePersonne("C", "X", "", 'H', "1850");
    std::uint32_t d = b.CreePersonne("D", "X", "", 'H', "1840");
    for (std::uint32_t n : {a, c, d}) {
        std::string note = b.LitNote(n) + "\r\n\r\nVu \xE0 $Caen puis $Caen";
        b.MajMots(n, b.LitNote(n), note);
        b.EcritNote(n, note);
    }
    EXPECT_EQ(Personnes(b, '$', "CAEN"), (std::vector<std::uint32_t>{d, d, a, a, c, c}));
    // Taking one occurrence away leaves the other.
    std::string note = b.LitNote(a);
    std::string une = note.substr(0, note.rfind(" puis"));
    b.MajMots(a, note, une);
    b.EcritNote(a, une);
    EXPECT_EQ(Personnes(b, '$', "CAEN"), (std::vector<std::uint32_t>{d, d, a, c, c}));
    // A rubric without a list is passed over.
    b.EcritRubrique(9, '%', "RESI", 0);
    std::string r = b.LitNote(c) + " %Rouen";
    b.MajMots(c, b.LitNote(c), r);
    b.EcritNote(c, r);
    EXPECT_EQ(b.ListeRubrique(9), "");
    CompareAuxNotes(b);
}

TEST(IndexMots, RichTextGroupsAreReadAsTheirText) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t n = b.CreePersonne("Martin", "Jean", "", 'H', "1850");
    // "\b" would be a keyword of the "\" rubric if the group were taken raw.
    std::string note = b.LitNote(n) + "\r\n{\\rtf1\\ansi {\\b \\\\tisserand} n\\'e9 \\\\lin}";
    b.MajMots(n, b.LitNote(n), note);
    b.EcritNote(n, note);
    EXPECT_EQ(Mots(b, '\\'), (std::vector<std::string>{"LIN", "TISSERAND"}));
}

TEST(IndexMots, StaysExactUnderRandomEditsBatchesAndRebuilds) {
    Fixture f;
    Base& b = f.b;
    std::mt19937 rng(12345);
    auto tire = [&](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    const char* noms[] = {"Martin", "Durand", "de la Tour", "Petit", "L\xE9ger"};
    const char* prenoms[] = {"Jean", "Marie", "Jean Louis", "\xC9lise"};
    std::vector<std::uint32_t> p;
    for (int i = 0; i < 120; ++i)
        p.push_back(b.CreePersonne(noms[tire(5)], prenoms[tire(4)], "", "HF"[tire(2)],
                                   std::to_string(1800 + tire(8))));
    std::vector<std::uint32_t> mariages;
    for (int i = 0; i < 20; ++i)
        mariages.push_back(b.CreeMariage(p[2 * i], p[2 * i + 1]));
    auto noteAleatoire = [&](std::uint32_t n) {
        std::string t =
            b.LigneMotsCles(n, tire(3) ? kLieux[tire(6)] : "", tire(2) ? kLieux[tire(6)] : "");
        if (tire(2)) t += "\r\nOCCU  \\" + VersPoints(kMetiers[tire(4)]);
        if (tire(2))
            t += std::string("\r\n\r\nN\xE9 \xE0 $") + kLieux[tire(6)] + " et $" + kLieux[tire(6)];
        if (tire(4) == 0)
            t += "\r\n{\\rtf1\\ansi \\b $" + std::string(kLieux[tire(6)]) + "\\b0\\par}";
        return t;
    };
    for (int lot = 0; lot < 60; ++lot) {
        for (int i = 0; i < 60; ++i) {
            int quoi = tire(10);
            if (quoi < 6) {
                std::uint32_t n = p[tire(120)];
                std::string ancienne = b.LitNote(n), nouvelle = noteAleatoire(n);
                b.MajMots(n, ancienne, nouvelle);
                b.EcritNote(n, nouvelle);
            } else if (quoi < 8) {
                std::uint32_t m = mariages[tire(20)];
                std::string ancienne = b.LitNoteMariage(m);
                std::string nouvelle =
                    std::to_string(tire(28) + 1) + "/5/1820 @" + VersPoints(kLieux[tire(6)]);
                for (std::uint32_t x : {b.LitMari(m), b.LitFemme(m)})
                    b.MajMots(x, ancienne, nouvelle);
                b.EcritNoteMariage(m, nouvelle);
            } else {
                std::uint32_t n = p[tire(120)];
                // As the sheet does: the person moves in the sort table too.
                std::string ancienne = b.CleAnNaiss(n);
                b.MajTriFiche(b.TrouvePlaceFiche(n), n, 'S');
                b.TeteModifiable().nbPersonnes -= 1;
                b.EcritAnNaiss(n, std::to_string(1800 + tire(8)));
                std::uint32_t place = b.PlaceFiche(n);
                b.TeteModifiable().nbPersonnes += 1;
                b.MajTriFiche(place, n, 'A');
                b.triPersonnesModifie = true;
                b.RangeMots(n, ancienne);
            }
        }
        ASSERT_NO_FATAL_FAILURE(CompareAuxNotes(b)) << "batch " << lot;
        if (lot % 10 == 9) f.Reouvre();
    }
    // A batch adds to every rubric at once, merged into the sorted lists.
    b.DebutLot();
    for (int i = 0; i < 120; i += 3) {
        std::uint32_t n = p[i];
        std::string ajout = std::string("\r\nVu \xE0 $") + kLieux[tire(6)] + " ~Rouen \\forgeron";
        b.EcritNote(n, b.LitNote(n) + ajout);
        b.AjoutLot(n, ajout);
    }
    b.FinLot();
    ASSERT_NO_FATAL_FAILURE(CompareAuxNotes(b)) << "batch";
    // A rebuild gives the same words and persons.
    for (char s : {'|', '\xB6', '$', '~', '\\'})
        b.RefaitRubrique(s);
    ASSERT_NO_FATAL_FAILURE(CompareAuxNotes(b)) << "rebuild";
    f.Reouvre();
    CompareAuxNotes(b);
}

TEST(IndexMots, BatchMergeKeepsOldPersonsFirstOnATie) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t a = b.CreePersonne("A", "X", "", 'H', "1850");
    std::uint32_t c = b.CreePersonne("C", "X", "", 'H', "1850");
    std::uint32_t d = b.CreePersonne("D", "X", "", 'H', "1840");
    std::string n = b.LitNote(c) + " $Caen";
    b.MajMots(c, b.LitNote(c), n);
    b.EcritNote(c, n);
    b.DebutLot();
    b.AjoutLot(a, "$Caen $Vire");
    b.AjoutLot(d, "$Caen");
    b.FinLot();
    EXPECT_EQ(Personnes(b, '$', "CAEN"), (std::vector<std::uint32_t>{d, c, a}));
    EXPECT_EQ(Mots(b, '$'), (std::vector<std::string>{"CAEN", "VIRE"}));
}

// A new birth year moves the person in the lists of the words of its note,
// rewritten in the order in which the note holds them; words that the index
// lacks are added in that order too.
TEST(IndexMots, NewBirthYearRewritesListsInTheOrderOfTheNote) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t a = b.CreePersonne("A", "X", "", 'H', "1840");
    std::uint32_t c = b.CreePersonne("C", "X", "", 'H', "1860");
    std::uint32_t n = b.CreePersonne("N", "X", "", 'H', "1850");
    for (std::uint32_t x : {a, c, n}) {
        std::string note = b.LitNote(x) + "\r\n$Vire $Caen";
        b.MajMots(x, b.LitNote(x), note);
        b.EcritNote(x, note);
    }
    std::uint32_t d = b.CreePersonne("D", "Y", "", 'H', "1800");
    std::string seul = b.LitNote(d) + "\r\n$Caen";
    b.MajMots(d, b.LitNote(d), seul);
    b.EcritNote(d, seul);
    ASSERT_EQ(Personnes(b, '$', "VIRE"), (std::vector<std::uint32_t>{a, n, c}));
    std::string ancienne = b.CleAnNaiss(n);
    b.EcritAnNaiss(n, "1870");
    std::uint32_t z = b.Tete().zoneFin;
    b.RangeMots(n, ancienne);
    // The first names' word (rubric 2), then VIRE, then CAEN.
    const std::string ordre = Pack4(a) + Pack4(c) + Pack4(n);
    EXPECT_EQ(b.Lire(z + 1, 40), ordre + ordre + Pack4(d) + ordre);
    EXPECT_EQ(b.Tete().zoneFin, z + 40);

    // Words missing from the index get entries in the order of the note.
    std::string note = b.LitNote(c) + " $Rouen $Bayeux";
    b.EcritNote(c, note);
    const std::uint32_t k = b.Tete().nbMots;
    z = b.Tete().zoneFin;
    b.RangeMots(c, b.CleAnNaiss(c));
    EXPECT_EQ(b.LitMot(k + 1), "ROUEN");
    EXPECT_EQ(b.LitMot(k + 2), "BAYEUX");
    EXPECT_EQ(b.Lire(z + 1, 21), "ROUEN#" + Pack4(c) + "BAYEUX#" + Pack4(c));
    EXPECT_EQ(Mots(b, '$'), (std::vector<std::string>{"BAYEUX", "CAEN", "ROUEN", "VIRE"}));
}
