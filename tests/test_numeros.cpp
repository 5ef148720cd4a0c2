#include "kinship/numeros.h"
#include "support/arbres.h"

#include <gtest/gtest.h>

using namespace sylvane;
using test::Arbre;

namespace {

TEST(Numeros, AscendantsTakeTheSmallestSosaNumber) {
    Arbre a;
    const auto d = a.Personne("Cujus", "De");
    const auto f = a.Personne("Pere", "F");
    const auto m = a.Personne("Mere", "M", 'F');
    const auto pf = a.Personne("Grand", "PF");
    const auto y = a.Personne("Grand", "Y", 'F');
    const auto x = a.Personne("Aieul", "X");
    const auto xf = a.Personne("Bisaieul", "XF");
    // Y is the mother of both F and M; X is Y's father and M's father.
    a.Parents(d, f, m);
    a.Parents(f, pf, y);
    a.Parents(m, x, y);
    a.Parents(y, x, 0);
    a.Parents(x, xf, 0);
    EtatNumerotation e;
    e.deCujus1.deCujus = d;
    Calcul_Numeros_1(a.b(), e);
    const TableNumeros& t = e.deCujus1;
    EXPECT_EQ(t.Numero(d), "1");
    EXPECT_EQ(t.Numero(f), "2");
    EXPECT_EQ(t.Numero(m), "3");
    EXPECT_EQ(t.Numero(pf), "4");
    // Reached at 5, then at 7: stays 5.
    EXPECT_EQ(t.Numero(y), "5");
    // Reached at 10, then at 6: takes 6, and its father 12 instead of 20.
    EXPECT_EQ(t.Numero(x), "6");
    EXPECT_EQ(t.Numero(xf), "12");
    EXPECT_EQ(t.panneau, "[De Cujus]");
    EXPECT_FALSE(e.deCujus2.Calculee());
    EXPECT_EQ(ValeurNUMB(e, x), "[6]");
    EXPECT_EQ(StatutNumeros(e, x), "{} [6] ");
}

TEST(Numeros, DepthLimits) {
    Arbre a;
    const auto d = a.Personne("Cujus", "De");
    // Sixteen generations of fathers above, twelve of sons below.
    std::vector<std::uint32_t> peres{d}, fils{d};
    for (int i = 1; i <= 16; ++i) {
        peres.push_back(a.Personne("Pere", std::to_string(i)));
        a.Parents(peres[i - 1], peres[i], 0);
    }
    for (int i = 1; i <= 12; ++i)
        fils.push_back(a.Enfant(fils.back(), 0, std::to_string(i)));
    EtatNumerotation e;
    e.deCujus2.deCujus = d;
    Calcul_Numeros_2(a.b(), e);
    const TableNumeros& t = e.deCujus2;
    EXPECT_EQ(t.Numero(peres[14]), "16384");
    EXPECT_EQ(t.Numero(peres[15]), "");
    EXPECT_EQ(t.Numero(fils[2]), "1*1*1");
    EXPECT_EQ(t.Numero(fils[10]), "1*1*1*1*1*1*1*1*1*1*1");
    EXPECT_EQ(t.Numero(fils[11]), "");
    EXPECT_EQ(t.panneau, "{De Cujus}");
    EXPECT_EQ(ValeurNUMB(e, fils[1]), "{1*1}");
}

TEST(Numeros, DescendantsAreNumberedByMarriage) {
    Arbre a;
    const auto d = a.Personne("Cujus", "De");
    const auto w1 = a.Personne("Epouse", "Une", 'F');
    const auto w2 = a.Personne("Epouse", "Deux", 'F');
    a.b().CreeMariage(d, w1);
    a.b().CreeMariage(d, w2);
    const auto c1 = a.Enfant(d, w1, "c1", 'H', "1801");
    const auto c2 = a.Enfant(d, w2, "c2", 'F', "1802");
    const auto c3 = a.Enfant(d, w1, "c3", 'H', "1803");
    const auto c4 = a.Enfant(d, 0, "c4", 'H', "1804");
    // One marriage: "." for its children, "*" for a child of another woman,
    // even if the marriage exists.
    const auto s = a.Personne("Epouse", "S", 'F');
    const auto o = a.Personne("Autre", "O", 'F');
    a.b().CreeMariage(c1, s);
    const auto g1 = a.Enfant(c1, s, "g1", 'H', "1830");
    const auto g2 = a.Enfant(c1, o, "g2", 'H', "1831");
    const auto mc2 = a.Personne("Mari", "M");
    a.b().CreeMariage(mc2, c2);
    const auto g3 = a.Enfant(mc2, c2, "g3");
    EtatNumerotation e;
    e.deCujus1.deCujus = d;
    Calcul_Numeros_1(a.b(), e);
    const TableNumeros& t = e.deCujus1;
    EXPECT_EQ(t.Numero(c1), "1a1");
    EXPECT_EQ(t.Numero(c2), "1b1");
    EXPECT_EQ(t.Numero(c3), "1a2");
    EXPECT_EQ(t.Numero(c4), "1*1");
    EXPECT_EQ(t.Numero(g1), "1a1.1");
    EXPECT_EQ(t.Numero(g2), "1a1*1");
    EXPECT_EQ(t.Numero(g3), "1b1.1");
    // Spouses are not numbered.
    EXPECT_EQ(t.Numero(w1), "");
    EXPECT_EQ(t.Numero(mc2), "");
}

TEST(Numeros, TwentySeventhMarriageAndTheMansLine) {
    Arbre a;
    const auto d = a.Personne("Cujus", "De");
    std::vector<std::uint32_t> epouses;
    for (int i = 0; i < 27; ++i) {
        epouses.push_back(a.Personne("Epouse", std::to_string(i), 'F'));
        a.b().CreeMariage(d, epouses.back());
    }
    const auto z = a.Enfant(d, epouses[25], "z", 'H', "1800");
    const auto hors = a.Enfant(d, epouses[26], "hors", 'H', "1801");
    // Cousins who married: V is reached first through its mother U, then
    // through its father T, whose line wins.
    const auto s2 = a.Enfant(d, epouses[0], "s2", 'F', "1802");
    const auto s1 = a.Enfant(d, epouses[0], "s1", 'H', "1803");
    const auto u = a.Enfant(0, s2, "u", 'F', "1830");
    const auto t = a.Enfant(s1, 0, "t", 'H', "1831");
    a.b().CreeMariage(t, u);
    const auto v = a.Enfant(t, u, "v", 'H', "1860");
    EtatNumerotation e;
    e.deCujus1.deCujus = d;
    Calcul_Numeros_1(a.b(), e);
    EXPECT_EQ(e.deCujus1.Numero(z), "1z1");
    EXPECT_EQ(e.deCujus1.Numero(hors), "1*1");
    EXPECT_EQ(e.deCujus1.Numero(u), "1a1*1");
    EXPECT_EQ(e.deCujus1.Numero(t), "1a2*1");
    EXPECT_EQ(e.deCujus1.Numero(v), "1a2*1.1");
}

TEST(Numeros, ParentChangesMarkTheTablesStale) {
    Arbre a;
    EtatNumerotation e;
    BrancheNumerotation(a.b(), e);
    a.params.affichageNom = {"NUMB", "FNAM", "BIRN", "NICK"};
    a.b().valeurNom_ = ValeurNomAvecNumeros(e, [](std::uint32_t, const std::string& tag) {
        return tag == "NICK" ? std::string("notaire") : std::string();
    });
    const auto d = a.Personne("Cujus", "De");
    const auto p = a.Personne("Pere", "Jean");
    const auto autre = a.Personne("Autre", "Paul");
    e.deCujus1.deCujus = d;
    e.deCujus2.deCujus = p;
    Calcul_Numeros_1(a.b(), e);
    Calcul_Numeros_2(a.b(), e);
    EXPECT_EQ(a.b().NomComplet(d), "[1] De Cujus notaire");

    // Neither side numbered: nothing to redo.
    const auto n = a.Personne("Nouveau", "Luc");
    a.b().EcritPere(n, autre);
    EXPECT_FALSE(e.deCujus1.perimee);
    EXPECT_FALSE(MajNumerosPerimes(a.b(), e));

    // A numbered person gets a father: the numbers follow at the next tick.
    a.b().EcritPere(d, p);
    a.b().MajEnfants(p, d, 'A');
    EXPECT_TRUE(e.deCujus1.perimee);
    EXPECT_TRUE(e.deCujus2.perimee);
    EXPECT_EQ(a.b().NomComplet(p), "{1} Jean Pere notaire");
    EXPECT_TRUE(MajNumerosPerimes(a.b(), e));
    EXPECT_FALSE(e.deCujus1.perimee);
    EXPECT_EQ(a.b().NomComplet(p), "[2] {1} Jean Pere notaire");

    // A person created later grows the tables, and a link to a numbered
    // parent marks them.
    const auto tard = a.Personne("Tardif", "Marc");
    EXPECT_EQ(a.b().NomComplet(tard), "Marc Tardif notaire");
    a.b().MajEnfants(d, tard, 'A');
    a.b().EcritPere(tard, d);
    EXPECT_TRUE(e.deCujus1.perimee);
    MajNumerosPerimes(a.b(), e);
    EXPECT_EQ(ValeurNUMB(e, tard), "[1*1] {1*1*1}");
    EXPECT_EQ(StatutNumeros(e, tard), "{1*1*1} [1*1] ");

    // No De Cujus: an empty table that numbers nobody.
    e.deCujus2.deCujus = 0;
    Calcul_Numeros_2(a.b(), e);
    EXPECT_FALSE(e.deCujus2.Calculee());
    EXPECT_EQ(ValeurNUMB(e, p), "[2]");
}

TEST(Numeros, DamagedLinksStayInBounds) {
    Arbre a;
    const auto d = a.Personne("Cujus", "De");
    const auto f = a.Personne("Pere", "F");
    a.b().EcritPere(d, f);
    a.b().EcritMere(d, 999); // no such person
    a.b().EcritPere(f, d);   // a loop
    a.b().MajEnfants(d, 999, 'A');
    a.b().MajEnfants(f, d, 'A');
    EtatNumerotation e;
    e.deCujus1.deCujus = d;
    Calcul_Numeros_1(a.b(), e);
    EXPECT_EQ(e.deCujus1.Numero(f), "2");
    EXPECT_EQ(e.deCujus1.Numero(999), "");
    e.deCujus1.deCujus = 999;
    Calcul_Numeros_1(a.b(), e);
    EXPECT_FALSE(e.deCujus1.Calculee());
}

} // namespace
