#include "kinship/lignes.h"
#include "kinship/liste.h"
#include "store/pack.h"
#include "support/arbres.h"
#include "text/messages.h"
#include "text/mots.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

using namespace sylvane;
using test::Arbre;

namespace {

void MessagesFrancais() {
    DefinitMessages({{759, "Sosa "},
                     {760, "G\xE9n\xE9ration "},
                     {761, "P\xE8re de &1"},
                     {762, "M\xE8re de &1"},
                     {764, "Fils de &1"},
                     {765, "Fille de &1"},
                     {766, "Enfant de &1"},
                     {917, "fois"}});
}

// Entry by entry: person, generation, link, and the numbers of all its
// occurrences (Sosa numbers, or number strings for a descendant list).
struct Ligne {
    std::uint32_t personne, lien;
    int generation;
    std::vector<std::string> numeros;
    std::uint32_t occurrences;
    bool operator==(const Ligne&) const = default;
};

std::ostream& operator<<(std::ostream& o, const Ligne& l) {
    o << "{p" << l.personne << " g" << l.generation << " l" << l.lien << " x" << l.occurrences;
    for (const auto& n : l.numeros)
        o << " '" << n << "'";
    return o << "}";
}

std::vector<Ligne> Lignes(const ListeParente& l) {
    std::vector<Ligne> r;
    for (std::int32_t n = 1; n <= l.NombreEntrees(); ++n) {
        Ligne x{l.ListePersonne(n),
                l.ListeLien(n),
                l.ListeGeneration(n),
                {},
                l.ListeOccurrences(l.ListePersonne(n))};
        for (const Occurrence& o : l.OccurrencesEntree(n))
            x.numeros.push_back(l.Descendante() ? l.NumerosDescendance(o.numero)
                                                : std::to_string(o.numero));
        r.push_back(x);
    }
    return r;
}

// Cousins who married: I is the child of G and H, whose parents C and D are
// the children of A and B; Z is A's father.
struct Cousins : Arbre {
    std::uint32_t Z, A, B, C, D, E, F, G, H, I;
    Cousins() {
        Z = Personne("Racine", "Zacharie");
        A = Enfant(Z, 0, "Antoine");
        B = Personne("Femme", "Berthe", 'F');
        C = Enfant(A, B, "Charles");
        D = Enfant(A, B, "Denise", 'F');
        E = Personne("Femme", "Eug\xE9nie", 'F');
        F = Personne("Mari", "Fran\xE7ois");
        G = Enfant(C, E, "Gaston");
        H = Enfant(F, D, "H\xE9l\xE8ne", 'F');
        I = Enfant(G, H, "Isidore");
    }
};

TEST(ListeAscendants, PersonWithoutParentsIsTheWholeList) {
    Arbre a;
    const auto p = a.Personne("Seul", "Jean");
    ListeParente l(a.b(), a.fs);
    std::int32_t nombre = -1;
    ASSERT_TRUE(l.ConstruitAscendants(p, nombre, 10, TriGeneration));
    EXPECT_EQ(nombre, 1);
    EXPECT_EQ(Lignes(l), (std::vector<Ligne>{{p, 0, 1, {"1"}, 1}}));
    // Outside the list every accessor answers 0.
    EXPECT_EQ(l.ListePersonne(0), 0u);
    EXPECT_EQ(l.ListePersonne(2), 0u);
    EXPECT_EQ(l.ListeOccurrences(p + 50), 0u);
    // No reference person, no list.
    EXPECT_FALSE(l.ConstruitAscendants(0, nombre, 10, 0));
    EXPECT_FALSE(l.ConstruitAscendants(p + 1, nombre, 10, 0));
    EXPECT_EQ(nombre, 1);
}

TEST(ListeAscendants, CousinMarriageKeepsEveryOccurrence) {
    Cousins c;
    ListeParente l(c.b(), c.fs);
    std::int32_t nombre = 0;
    ASSERT_TRUE(l.ConstruitAscendants(c.I, nombre, 99, TriParcours));
    // The walk: the father's branch before the mother's; A, B and Z are
    // seen again through D, and Z once more through the second A.
    EXPECT_EQ(Lignes(l), (std::vector<Ligne>{{c.I, 0, 1, {"1"}, 1},
                                             {c.G, c.I, 2, {"2"}, 1},
                                             {c.C, c.G, 3, {"4"}, 1},
                                             {c.A, c.C, 4, {"8", "14"}, 2},
                                             {c.Z, c.A, 5, {"16", "28"}, 2},
                                             {c.B, c.C, 4, {"9", "15"}, 2},
                                             {c.E, c.G, 3, {"5"}, 1},
                                             {c.H, c.I, 2, {"3"}, 1},
                                             {c.F, c.H, 3, {"6"}, 1},
                                             {c.D, c.H, 3, {"7"}, 1}}));
    // Walked unsorted, the list writes no key: every entry points at the
    // start of the empty key file.
    for (std::int32_t n = 1; n <= nombre; ++n)
        EXPECT_EQ(l.ListePosition(n), 1);

    // A person already seen is not walked again: Z stays at one occurrence.
    l.ArretDoublon = 1;
    ASSERT_TRUE(l.ConstruitAscendants(c.I, nombre, 99, TriGeneration));
    const auto lignes = Lignes(l);
    std::vector<std::uint32_t> ordre;
    for (const auto& x : lignes)
        ordre.push_back(x.personne);
    EXPECT_EQ(ordre,
              (std::vector<std::uint32_t>{c.I, c.G, c.H, c.C, c.E, c.F, c.D, c.A, c.B, c.Z}));
    EXPECT_EQ(lignes.back(), (Ligne{c.Z, c.A, 5, {"16"}, 1}));
    EXPECT_EQ(lignes[7], (Ligne{c.A, c.C, 4, {"8", "14"}, 2}));
    // Each entry keeps the place of its 18-byte key ("gg" and sixteen
    // digits) in the order of the walk, whatever its place after the sort.
    std::vector<std::int32_t> positions;
    for (std::int32_t n = 1; n <= nombre; ++n)
        positions.push_back(l.ListePosition(n));
    EXPECT_EQ(positions, (std::vector<std::int32_t>{1, 19, 127, 37, 109, 145, 163, 55, 91, 73}));
}

TEST(ListeAscendants, EntryTextsJoinOccurrencesThroughTheSameChild) {
    MessagesFrancais();
    Cousins c;
    ListeParente l(c.b(), c.fs);
    std::int32_t nombre = 0;
    ASSERT_TRUE(l.ConstruitAscendants(c.I, nombre, 99, TriGeneration));
    auto entree = [&](std::uint32_t p) {
        for (std::int32_t n = 1; n <= nombre; ++n)
            if (l.ListePersonne(n) == p) return n;
        return 0;
    };
    EXPECT_EQ(LigneAscendant(l, c.b(), entree(c.I)), "G\xE9n\xE9ration 1 - Sosa 1#");
    EXPECT_EQ(LigneAscendant(l, c.b(), entree(c.A)),
              std::string("G\xE9n\xE9ration 4 - Sosa 8 - P\xE8re de Charles Enfant") + '\0' +
                  "G\xE9n\xE9ration 4 - Sosa 14 - P\xE8re de Denise Enfant");
    EXPECT_EQ(LigneAscendant(l, c.b(), entree(c.Z)),
              "G\xE9n\xE9ration 5 - Sosa 16 28 - P\xE8re de Antoine Enfant");
    EXPECT_EQ(LigneAscendant(l, c.b(), entree(c.D)),
              "G\xE9n\xE9ration 3 - Sosa 7 - M\xE8re de H\xE9l\xE8ne Enfant");
    EXPECT_EQ(LigneAscendant(l, c.b(), entree(c.D), FormeLigne::HtmlSite),
              "G&eacute;n&eacute;ration 3 - Sosa 7 - M&egrave;re de <A HREF=\"i" +
                  std::to_string(c.H) + ".htm\" TARGET=\"M\">H&eacute;l&egrave;ne Enfant</A>");
    EXPECT_EQ(LigneAscendant(l, c.b(), entree(c.D), FormeLigne::HtmlPage),
              "G&eacute;n&eacute;ration 3 - Sosa 7 - M&egrave;re de <A HREF=\"#i" +
                  std::to_string(c.H) + "\">H&eacute;l&egrave;ne Enfant</A>");
    EXPECT_EQ(LigneAscendant(l, c.b(), 0), "");
}

TEST(ListeAscendants, DoublingStopsAtGenerationThirty) {
    MessagesFrancais();
    Arbre a;
    // A line of fathers, each with a wife, over 40 generations.
    const auto racine = a.Personne("Lignee", "G1");
    std::uint32_t enfant = racine;
    std::vector<std::uint32_t> peres{racine}, meres{0};
    for (int g = 2; g <= 40; ++g) {
        const auto pere = a.Personne("Lignee", "P" + std::to_string(g));
        const auto mere = a.Personne("Epouse", "M" + std::to_string(g), 'F');
        a.b().EcritPere(enfant, pere);
        a.b().EcritMere(enfant, mere);
        peres.push_back(pere);
        meres.push_back(mere);
        enfant = pere;
    }
    ListeParente l(a.b(), a.fs);
    std::int32_t nombre = 0;
    ASSERT_TRUE(l.ConstruitAscendants(racine, nombre, 40, TriGeneration));
    ASSERT_EQ(nombre, 79);
    const auto lignes = Lignes(l);
    const std::string n29 = std::to_string(1 << 29);
    // Generation 30: 2^29 and 2^29 + 1; generation 31 both take 2^29 and
    // keep the order of the walk, father first.
    EXPECT_EQ(lignes[57], (Ligne{peres[29], peres[28], 30, {n29}, 1}));
    EXPECT_EQ(lignes[58], (Ligne{meres[29], peres[28], 30, {std::to_string((1 << 29) + 1)}, 1}));
    EXPECT_EQ(lignes[59], (Ligne{peres[30], peres[29], 31, {n29}, 1}));
    EXPECT_EQ(lignes[60], (Ligne{meres[30], peres[29], 31, {n29}, 1}));
    EXPECT_EQ(lignes[78], (Ligne{meres[39], peres[38], 40, {n29}, 1}));
    EXPECT_EQ(LigneAscendant(l, a.b(), 61),
              "G\xE9n\xE9ration 31 - Sosa " + n29 + "+ - M\xE8re de P30 Lignee");
    EXPECT_EQ(LigneAscendant(l, a.b(), 58),
              "G\xE9n\xE9ration 30 - Sosa " + n29 + " - P\xE8re de P29 Lignee");
    // One level is the reference person alone.
    ASSERT_TRUE(l.ConstruitAscendants(racine, nombre, 1, TriGeneration));
    EXPECT_EQ(nombre, 1);
}

TEST(ListeAscendants, YearAndNameOrders) {
    Arbre a;
    const auto p = a.Personne("Martin", "Paul", 'H', "1900");
    const auto pere = a.Personne("de la Tour", "Jean", 'H', "1870");
    const auto mere = a.Personne("\xC9"
                                 "tienne",
                                 "Anne", 'F', "");
    const auto gp = a.Personne("Zola", "Emile", 'H', "-50");
    const auto gm = a.Personne("Martin", "Paule", 'F', " 850");
    a.Parents(p, pere, mere);
    a.Parents(pere, gp, gm);
    ListeParente l(a.b(), a.fs);
    std::int32_t nombre = 0;
    auto ordre = [&] {
        std::vector<std::uint32_t> r;
        for (const auto& x : Lignes(l))
            r.push_back(x.personne);
        return r;
    };
    // Years before Christ, then unknown years, then by year.
    ASSERT_TRUE(l.ConstruitAscendants(p, nombre, 5, TriNaissance));
    EXPECT_EQ(ordre(), (std::vector<std::uint32_t>{gp, mere, gm, pere, p}));
    // By the folded sort form of the surname and the first names.
    ASSERT_TRUE(l.ConstruitAscendants(p, nombre, 5, TriNom));
    EXPECT_EQ(ordre(), (std::vector<std::uint32_t>{pere, mere, p, gm, gp}));
    // The keys pass through "Impr", which does not outlive the run.
    EXPECT_FALSE(a.fs.existe(l.CheminImpr()));
}

TEST(ListeDescendants, ChildTenSortsAfterChildNine) {
    Arbre a;
    const auto r = a.Personne("Souche", "Racine");
    std::vector<std::uint32_t> enfants;
    for (int i = 1; i <= 12; ++i)
        enfants.push_back(a.Enfant(r, 0, "E" + std::to_string(i)));
    const auto p9 = a.Enfant(enfants[8], 0, "PE9");
    const auto p10 = a.Enfant(enfants[9], 0, "PE10");
    for (int i = 1; i <= 10; ++i)
        a.Enfant(enfants[0], 0, "PE1-" + std::to_string(i));
    ListeParente l(a.b(), a.fs);
    std::int32_t nombre = 0;
    ASSERT_TRUE(l.ConstruitDescendants(r, nombre, 5, TriGeneration));
    ASSERT_EQ(nombre, 25);
    std::vector<std::string> numeros;
    for (const auto& x : Lignes(l))
        numeros.push_back(x.numeros.front());
    std::vector<std::string> attendu{""};
    for (int i = 1; i <= 12; ++i)
        attendu.push_back(i < 10 ? " " + std::to_string(i) : std::to_string(i));
    for (int i = 1; i <= 9; ++i)
        attendu.push_back(" 1-" + std::to_string(i));
    attendu.insert(attendu.end(), {" 1\xAD"
                                   "10",
                                   " 9-1", "10-1"});
    EXPECT_EQ(numeros, attendu);
    EXPECT_EQ(l.ListePersonne(24), p9);
    EXPECT_EQ(l.ListePersonne(25), p10);
    EXPECT_EQ(l.ListeLien(25), enfants[9]);
    // Only three generations: the grandchildren are gone.
    ASSERT_TRUE(l.ConstruitDescendants(r, nombre, 2, TriParcours));
    EXPECT_EQ(nombre, 13);

    // Children are read up to the 200th: a 201st is never reached.
    std::uint32_t dernier = 0;
    for (int i = 13; i <= 201; ++i)
        dernier = a.Enfant(r, 0, "E" + std::to_string(i));
    ASSERT_TRUE(l.ConstruitDescendants(r, nombre, 2, TriParcours));
    EXPECT_EQ(nombre, 201);
    EXPECT_EQ(l.NumerosDescendance(l.ListeNumero(201)), "200");
    EXPECT_EQ(l.ListeOccurrences(dernier), 0u);
}

TEST(ListeDescendants, DescendantsWhoMarriedShareTheirChildren) {
    MessagesFrancais();
    Cousins c;
    ListeParente l(c.b(), c.fs);
    std::int32_t nombre = 0;
    ASSERT_TRUE(l.ConstruitDescendants(c.A, nombre, 10, TriParcours));
    EXPECT_EQ(Lignes(l), (std::vector<Ligne>{{c.A, 0, 1, {""}, 1},
                                             {c.C, c.A, 2, {" 1"}, 1},
                                             {c.G, c.C, 3, {" 1-1"}, 1},
                                             {c.I, c.G, 4, {" 1-1-1", " 2-1-1"}, 2},
                                             {c.D, c.A, 2, {" 2"}, 1},
                                             {c.H, c.D, 3, {" 2-1"}, 1}}));
    EXPECT_EQ(LigneDescendant(l, c.b(), 1), "G\xE9n\xE9ration 1#");
    EXPECT_EQ(LigneDescendant(l, c.b(), 4),
              "G\xE9n\xE9ration 4 -  1-1-1 - Fils de Gaston Enfant#"
              "G\xE9n\xE9ration 4 -  2-1-1 - Fils de H\xE9l\xE8ne Enfant#");
    EXPECT_EQ(LigneDescendant(l, c.b(), 6), "G\xE9n\xE9ration 3 -  2-1 - Fille de Denise Enfant#");
}

TEST(ListeDescendants, PersonReachedAgainThroughTheSameParent) {
    MessagesFrancais();
    Arbre a;
    const auto r = a.Personne("Souche", "Racine");
    const auto c = a.Enfant(r, 0, "Unique", 'I');
    // A damaged list naming the same child three times.
    a.b().MajEnfants(r, c, 'A');
    a.b().MajEnfants(r, c, 'A');
    ListeParente l(a.b(), a.fs);
    std::int32_t nombre = 0;
    ASSERT_TRUE(l.ConstruitDescendants(r, nombre, 10, TriParcours));
    // Three occurrences, but one further occurrence per parent and generation.
    EXPECT_EQ(Lignes(l), (std::vector<Ligne>{{r, 0, 1, {""}, 1}, {c, r, 2, {" 1", " 2"}, 3}}));
    EXPECT_EQ(LigneDescendant(l, a.b(), 2),
              "G\xE9n\xE9ration 2 -  2 - Enfant de Racine Souche - 2 fois#");
    EXPECT_EQ(LigneDescendant(l, a.b(), 2, FormeLigne::HtmlPage),
              "G&eacute;n&eacute;ration 2 -  2 - Enfant de <A HREF=\"#i" + std::to_string(r) +
                  "\">Racine Souche</A> - 2 fois#");
}

// Damaged links that make a person its own ancestor: each list walks the
// loop once, says so once, and stays short (it used to run round the loop
// to the limits, with numbers growing at each turn).
TEST(ListeParente, ALoopOfParentLinksIsWalkedOnce) {
    MessagesFrancais();
    Arbre a;
    const auto x = a.Personne("Boucle", "Un");
    const auto y = a.Enfant(x, 0, "Deux");
    const auto z = a.Enfant(y, 0, "Trois");
    a.b().EcritPere(x, z);
    a.b().MajEnfants(z, x, 'A');
    ListeParente l(a.b(), a.fs);
    std::vector<std::string> messages;
    l.avertit = [&](const std::string& t) { messages.push_back(t); };
    std::int32_t nombre = 0;
    ASSERT_TRUE(l.ConstruitDescendants(x, nombre, 32767, TriParcours));
    EXPECT_EQ(Lignes(l), (std::vector<Ligne>{{x, 0, 1, {""}, 1},
                                             {y, x, 2, {" 1"}, 1},
                                             {z, y, 3, {" 1-1"}, 1}}));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0], "Boucle dans les liens : " + a.b().NomDates(x) +
                               " est son propre descendant");
    messages.clear();
    ASSERT_TRUE(l.ConstruitAscendants(y, nombre, 32767, TriParcours));
    EXPECT_EQ(nombre, 3);
    EXPECT_EQ(messages.size(), 1u);
}

// Persons 1 to n where person k has father 2k and mother 2k + 1: the Sosa
// number of each ascendant of person 1 is its person number.
void ArbreComplet(Arbre& a, std::uint32_t n) {
    // In one batch of the keyword index, as an import makes them: one by
    // one, each person would rewrite the whole list of the shared name.
    a.b().DebutLot();
    for (std::uint32_t k = 1; k <= n; ++k)
        a.Personne("Sosa", std::to_string(k), k % 2 ? 'F' : 'H');
    a.b().FinLot();
    for (std::uint32_t k = 1; 2 * k <= n; ++k) {
        a.b().EcritPere(k, 2 * k);
        if (2 * k + 1 <= n) a.b().EcritMere(k, 2 * k + 1);
    }
}

TEST(ListeAscendants, StopsAtThirtyTwoThousandPersons) {
    Arbre a;
    ArbreComplet(a, 32001);
    ListeParente l(a.b(), a.fs);
    std::vector<std::string> messages;
    l.avertit = [&](const std::string& t) { messages.push_back(t); };
    std::int32_t nombre = 0;
    ASSERT_TRUE(l.ConstruitAscendants(1, nombre, 99, TriGeneration));
    EXPECT_EQ(nombre, 32000);
    EXPECT_TRUE(l.LimiteAtteinte());
    EXPECT_EQ(messages, std::vector<std::string>{"Recherche limit\xE9"
                                                 "e - Plus de 32.000 Ascendants"});
    // Sorted as usual, and every kept number is right.
    for (std::int32_t n = 1; n <= nombre; ++n)
        ASSERT_EQ(static_cast<std::int32_t>(l.ListePersonne(n)), l.ListeNumero(n));
    EXPECT_LT(l.ListeNumero(1), l.ListeNumero(2));
    EXPECT_EQ(a.fs.contenu(l.CheminCrit()).size(), 32000u * 18);

    // Exactly 32,000 persons: no message.
    a.b().EcritMere(16000, 0);
    messages.clear();
    ASSERT_TRUE(l.ConstruitAscendants(1, nombre, 99, TriParcours));
    EXPECT_EQ(nombre, 32000);
    EXPECT_FALSE(l.LimiteAtteinte());
    EXPECT_TRUE(messages.empty());
    // The mother's line ends the walk: 16383 is the last person reached.
    EXPECT_EQ(l.ListePersonne(32000), 16383u);

    // Once the list is full, a further occurrence of a person already in it
    // stops the run as well, and the list stays as it was.
    a.b().EcritPere(16383, 2);
    ASSERT_TRUE(l.ConstruitAscendants(1, nombre, 99, TriParcours));
    EXPECT_EQ(nombre, 32000);
    EXPECT_TRUE(l.LimiteAtteinte());
    EXPECT_EQ(messages, std::vector<std::string>{"Recherche limit\xE9"
                                                 "e - Plus de 32.000 Ascendants"});
    EXPECT_EQ(l.ListeOccurrences(2), 1u);
    EXPECT_EQ(l.OccurrencesEntree(2).size(), 1u);
}

TEST(ListeAscendants, StopAndFailureLeaveNoList) {
    Cousins c;
    ListeParente l(c.b(), c.fs);
    std::vector<std::string> panneau;
    l.progres = [&](const std::string& t) {
        panneau.push_back(t);
        if (t == "3 Ascendants") l.Abandon = true;
    };
    std::int32_t nombre = -7;
    EXPECT_FALSE(l.ConstruitAscendants(c.I, nombre, 99, TriNom));
    EXPECT_EQ(nombre, -7);
    EXPECT_EQ(l.NombreEntrees(), 0);
    EXPECT_EQ(panneau, (std::vector<std::string>{"1 Ascendants", "2 Ascendants", "3 Ascendants"}));
    EXPECT_FALSE(c.fs.existe(l.CheminImpr()));

    // The stop is cleared by the next run, which shows its sort.
    l.progres = [&](const std::string& t) { panneau.push_back(t); };
    ASSERT_TRUE(l.ConstruitAscendants(c.I, nombre, 99, TriNom));
    EXPECT_EQ(panneau.back(), "Tri en cours");

    // A work folder that refuses writes: no list, no crash.
    c.fs.echouerApres(1);
    EXPECT_FALSE(l.ConstruitDescendants(c.A, nombre, 99, TriNom));
    c.fs.retablir();
    EXPECT_EQ(nombre, 10);
    EXPECT_EQ(l.NombreEntrees(), 0);
}

TEST(ListeAscendants, LoopInDamagedLinksEnds) {
    Arbre a;
    const auto p = a.Personne("Boucle", "Un");
    const auto q = a.Personne("Boucle", "Deux");
    a.b().EcritPere(p, q);
    a.b().EcritPere(q, p);
    a.b().EcritMere(q, p);
    ListeParente l(a.b(), a.fs);
    std::vector<std::string> messages;
    l.avertit = [&](const std::string& t) { messages.push_back(t); };
    std::int32_t nombre = 0;
    ASSERT_TRUE(l.ConstruitAscendants(p, nombre, 32767, TriGeneration));
    EXPECT_EQ(nombre, 2);
    EXPECT_EQ(messages.size(), 1u);
    l.ArretDoublon = 1;
    messages.clear();
    ASSERT_TRUE(l.ConstruitAscendants(p, nombre, 32767, TriGeneration));
    EXPECT_EQ(nombre, 2);
    EXPECT_TRUE(messages.empty());
}

// ---------------------------------------------------------------------------
// A second, plain implementation: recursive walks, chains followed record by
// record, and the unbalanced binary tree of keys, read in order.

struct ListeNaive {
    Base& b;
    bool desc;
    int niveauMax, mode, arret;
    struct E {
        std::uint32_t p, lien;
        int gen;
        std::int32_t num;
        std::string cle;
    };
    struct S {
        int gen;
        std::uint32_t lien;
        std::int32_t num;
        int suivant;
    };
    std::vector<E> crit;
    std::vector<S> suit;
    std::map<std::uint32_t, std::uint32_t> occ, premiere;
    std::vector<std::string> numeros;
    bool doublon = false;

    std::string Cle(std::uint32_t p, int gen, std::int32_t sosa, const std::string& num) {
        char tampon[40];
        if (mode == 1 && !desc) {
            std::snprintf(tampon, sizeof tampon, "%02d%016d", gen, sosa);
            return tampon;
        }
        if (mode == 1) return Pack2(gen) + num;
        std::string c = mode == 2 ? b.CleAnNaiss(p)
                                  : CleMot(b.SansParticule(b.LitNom(p)) + " " + b.LitPrenom(p));
        c += Pack4(p);
        return desc ? c + Pack2(gen) + num : c + Pack4(sosa);
    }
    void Suite(std::uint32_t p, S s) {
        suit.push_back(s);
        int k = static_cast<int>(suit.size());
        if (premiere[p] == 0)
            premiere[p] = k;
        else {
            int j = premiere[p];
            while (suit[j - 1].suivant)
                j = suit[j - 1].suivant;
            suit[j - 1].suivant = k;
        }
    }
    void Entree(std::uint32_t p, std::uint32_t lien, int gen, std::int32_t num, std::string cle) {
        crit.push_back({p, lien, gen, num, mode ? cle : ""});
        occ[p] = 1;
        premiere[p] = 0;
        doublon = false;
    }
    void Asc(std::uint32_t p, int gen, std::uint32_t enfant, std::int32_t sosa) {
        if (occ[p]) {
            ++occ[p];
            Suite(p, {gen, enfant, sosa, 0});
            doublon = true;
        } else {
            Entree(p, enfant, gen, sosa, Cle(p, gen, sosa, ""));
        }
        if (doublon && arret == 1) return;
        if (gen >= niveauMax) return;
        const std::uint32_t pere = b.LitPere(p), mere = b.LitMere(p);
        if (pere) Asc(pere, gen + 1, p, gen < 30 ? sosa * 2 : sosa);
        if (mere) Asc(mere, gen + 1, p, gen < 30 ? sosa * 2 + 1 : sosa);
    }
    void Desc(std::uint32_t p, int gen, std::uint32_t parent, const std::string& num) {
        if (!occ[p]) {
            numeros.push_back(num);
            Entree(p, parent, gen, static_cast<std::int32_t>(numeros.size()), Cle(p, gen, 0, num));
        } else {
            ++occ[p];
            doublon = true;
            bool vu = false;
            for (int j = premiere[p]; j && !vu; j = suit[j - 1].suivant)
                vu = suit[j - 1].lien == parent && suit[j - 1].gen == gen;
            if (!vu) {
                numeros.push_back(num);
                Suite(p, {gen, parent, static_cast<std::int32_t>(numeros.size()), 0});
            }
        }
        if (doublon && arret == 1) return;
        if (gen >= niveauMax) return;
        for (int i = 1; i <= 200; ++i) {
            const std::uint32_t c = b.EnfantNo(p, i);
            if (!c) break;
            std::string n = num.empty() ? (i < 10 ? " " : "") + std::to_string(i)
                                        : num + (i < 10 ? "-" : "\xAD") + std::to_string(i);
            Desc(c, gen + 1, p, n);
        }
    }
    void Tri() {
        if (mode == 0 || crit.empty()) return;
        std::vector<int> gauche(crit.size(), -1), droite(crit.size(), -1);
        for (std::size_t i = 1; i < crit.size(); ++i) {
            int n = 0;
            for (;;) {
                int& suivant = crit[i].cle < crit[n].cle ? gauche[n] : droite[n];
                if (suivant < 0) {
                    suivant = static_cast<int>(i);
                    break;
                }
                n = suivant;
            }
        }
        std::vector<E> tries;
        std::vector<int> pile;
        for (int n = 0; n >= 0 || !pile.empty();) {
            if (n >= 0) {
                pile.push_back(n);
                n = gauche[n];
            } else {
                n = pile.back();
                pile.pop_back();
                tries.push_back(crit[n]);
                n = droite[n];
            }
        }
        crit = tries;
    }
    std::vector<Ligne> Lignes() {
        std::vector<Ligne> r;
        for (const E& e : crit) {
            Ligne x{e.p, e.lien, e.gen, {}, occ[e.p]};
            auto numero = [&](std::int32_t n) { return desc ? numeros[n - 1] : std::to_string(n); };
            x.numeros.push_back(numero(e.num));
            for (int j = premiere[e.p]; j; j = suit[j - 1].suivant)
                x.numeros.push_back(numero(suit[j - 1].num));
            r.push_back(x);
        }
        return r;
    }
};

// A random base: each person may take parents among those created before.
void BaseAleatoire(Arbre& a, std::mt19937& rng, int n) {
    const char* noms[] = {"Martin", "de Lorme", "Bernard", "Dubois", "\xC9rard", "le Roy"};
    const char* prenoms[] = {"Jean", "Marie", "Pierre", "Anne", "Jean Baptiste"};
    const char* ans[] = {"", "1850", "1850", "1790", "-50", " 850", "1901", "17 0"};
    std::vector<std::uint32_t> hommes, femmes;
    for (int i = 0; i < n; ++i) {
        const char sexe = rng() % 2 ? 'H' : 'F';
        const auto p = a.Personne(noms[rng() % 6], prenoms[rng() % 5], sexe, ans[rng() % 8]);
        const std::uint32_t pere = !hommes.empty() && rng() % 8 ? hommes[rng() % hommes.size()] : 0;
        const std::uint32_t mere = !femmes.empty() && rng() % 8 ? femmes[rng() % femmes.size()] : 0;
        a.Parents(p, pere, mere);
        (sexe == 'H' ? hommes : femmes).push_back(p);
    }
}

TEST(ListesAleatoires, MatchAPlainImplementation) {
    std::mt19937 rng(20240611);
    for (int base = 0; base < 8; ++base) {
        Arbre a;
        BaseAleatoire(a, rng, 40 + 30 * base);
        ListeParente l(a.b(), a.fs);
        for (int essai = 0; essai < 40; ++essai) {
            const bool desc = essai % 2;
            const int mode = essai / 2 % 4;
            const int arret = essai / 8 % 2;
            const int niveaux = 1 + static_cast<int>(rng() % 9);
            // Late persons have the most ascendants, early ones the most
            // descendants.
            const std::uint32_t n = a.b().Tete().maxPersonne;
            const auto ref = desc ? 1 + rng() % (n / 4) : n - rng() % (n / 4);
            ListeNaive naive{a.b(), desc, niveaux, mode, arret, {}, {}, {}, {}, {}};
            if (desc)
                naive.Desc(ref, 1, 0, "");
            else
                naive.Asc(ref, 1, 0, 1);
            naive.Tri();
            l.ArretDoublon = static_cast<std::int16_t>(arret);
            std::int32_t nombre = 0;
            ASSERT_TRUE(desc ? l.ConstruitDescendants(ref, nombre, niveaux, mode)
                             : l.ConstruitAscendants(ref, nombre, niveaux, mode));
            SCOPED_TRACE(testing::Message() << "base " << base << " essai " << essai);
            ASSERT_EQ(Lignes(l), naive.Lignes());

            // The work files hold the same list, little-endian.
            const std::string crit = a.fs.contenu(l.CheminCrit());
            const std::string suit = a.fs.contenu(l.CheminSuit());
            ASSERT_EQ(crit.size(), static_cast<std::size_t>(nombre) * 18);
            ASSERT_EQ(suit.size(), naive.suit.size() * 12);
            for (std::int32_t n = 1; n <= nombre; ++n) {
                const char* r = crit.data() + (n - 1) * 18;
                ASSERT_EQ(LitBrut(r), l.ListePosition(n));
                ASSERT_EQ(static_cast<std::uint32_t>(LitBrut(r + 4)), l.ListePersonne(n));
                ASSERT_EQ(static_cast<std::uint32_t>(LitBrut(r + 8)), l.ListeLien(n));
                ASSERT_EQ(LitBrut(r + 12), l.ListeNumero(n));
                ASSERT_EQ(static_cast<unsigned char>(r[16]) | r[17] << 8, l.ListeGeneration(n));
            }
            for (std::size_t k = 0; k < naive.suit.size(); ++k) {
                const char* r = suit.data() + k * 12;
                ASSERT_EQ(static_cast<unsigned char>(r[10]) | r[11] << 8, naive.suit[k].suivant);
                ASSERT_EQ(LitBrut(r + 6), naive.suit[k].num);
            }
        }
    }
}

} // namespace

TEST(ListeAscendants, StopIsHeardInALongWalkThroughKnownPersons) {
    // Each couple is both parents of both persons of the next generation:
    // without the implex stop, 2^20 paths lead through 41 persons.
    Arbre a;
    std::uint32_t pere = a.Personne("Haut", "P", 'H'), mere = a.Personne("Haut", "M", 'F');
    for (int g = 0; g < 19; ++g) {
        const auto p = a.Personne("Ligne", "P", 'H'), m = a.Personne("Ligne", "M", 'F');
        a.Parents(p, pere, mere);
        a.Parents(m, pere, mere);
        pere = p;
        mere = m;
    }
    const auto moi = a.Enfant(pere, mere, "Moi");
    ListeParente l(a.b(), a.fs);
    std::string dernier;
    bool limite = false;
    l.progres = [&](const std::string& t) {
        if (t == dernier) l.Abandon = true; // the panel came back with no new person
        dernier = t;
    };
    l.avertit = [&](const std::string&) { limite = true; };
    std::int32_t nombre = 0;
    // Only the panel of the walk through known persons repeats a count.
    EXPECT_FALSE(l.ConstruitAscendants(moi, nombre, 99, TriParcours));
    EXPECT_FALSE(limite);
}
