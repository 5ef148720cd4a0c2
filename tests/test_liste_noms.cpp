// The general list of names: rows over the sort table, the jump to a typed
// name or year under each sort mode, previous and next match.
#include "support/base_memoire.h"
#include "text/mots.h"
#include "ui/liste_noms.h"

#include <gtest/gtest.h>

using namespace sylvane;
using sylvane::test::BaseMemoire;

namespace {

struct Personnes {
    std::uint32_t dupont1, dupont2, fontaine, delafontaine, eluard, legall, martin1850, martin1700,
        sansNom;
};

// Persons chosen so that the sort key differs from the name as typed:
// particles, accents, equal names, a person with no name.
Personnes Remplit(Base& b, char mode) {
    auto& t = b.TeteModifiable();
    t.modeTri = mode;
    t.particules = '1';
    b.OublieCles();
    Personnes p{};
    p.martin1850 = b.CreePersonne("Martin", "Zo\xE9", "", 'F', "1850");
    p.dupont1 = b.CreePersonne("Dupont", "Jean", "", 'H', "1820");
    p.legall = b.CreePersonne("Le Gall", "Yves", "", 'H', "1790");
    p.delafontaine = b.CreePersonne("de la Fontaine", "Marie", "", 'F', "1801");
    p.fontaine = b.CreePersonne("Fontaine", "Paul", "", 'H', "1760");
    p.dupont2 = b.CreePersonne("Dupont", "Jean", "", 'H', "1820");
    p.eluard = b.CreePersonne("\xC9luard", "Paul", "", 'H', "1895");
    p.martin1700 = b.CreePersonne("Martin", "Luc", "", 'H', "1700");
    p.sansNom = b.CreePersonne("", "", "", 'I', "");
    if (mode != '0') b.TriTable();
    return p;
}

TEST(ListeNoms, EmptyOrNoBase) {
    BaseMemoire m;
    for (Base* b : {static_cast<Base*>(nullptr), &m.b}) {
        ListeNoms l(b);
        EXPECT_EQ(l.Nombre(), 0u);
        l.Depart(3);
        EXPECT_EQ(l.Courante(), 0u);
        EXPECT_EQ(l.Choix(), 0u);
        EXPECT_FALSE(l.Cherche("Dupont"));
        EXPECT_FALSE(l.Suivante("Dupont"));
        EXPECT_FALSE(l.Precedente("Dupont"));
        EXPECT_EQ(l.Ligne(0).numero, 0u);
        EXPECT_FALSE(l.LigneDe(1));
    }
}

TEST(ListeNoms, RowsFollowTheTableAndShowTheFamily) {
    BaseMemoire m;
    Base& b = m.b;
    const Personnes p = Remplit(b, '2');
    const std::uint32_t mariage = b.CreeMariage(p.dupont1, p.martin1850);
    b.MajMariages(p.dupont1, mariage, 'A');
    b.EcritPere(p.eluard, p.dupont1);
    b.MajEnfants(p.dupont1, p.eluard, 'A');

    ListeNoms l(&b);
    ASSERT_EQ(l.Nombre(), 9u);
    for (std::size_t r = 0; r < l.Nombre(); ++r) {
        EXPECT_EQ(l.Personne(r), b.TriFiche(r + 1));
        EXPECT_EQ(l.LigneDe(l.Personne(r)), r);
        EXPECT_EQ(l.Ligne(r).Texte(), Trim(b.NomDates(l.Personne(r))));
    }
    EXPECT_EQ(l.Personne(9), 0u);

    const LigneNom jean = l.Ligne(*l.LigneDe(p.dupont1));
    EXPECT_EQ(jean.nom, "Jean Dupont");
    EXPECT_EQ(jean.dates, "(o1820)");
    EXPECT_EQ(jean.sexe, "H");
    EXPECT_EQ(jean.famille, "xx");
    EXPECT_EQ(jean.marque, ""); // married, with a child
    const LigneNom paul = l.Ligne(*l.LigneDe(p.eluard));
    EXPECT_EQ(paul.famille, "ox");
    EXPECT_EQ(paul.marque, "*");

    // A person the table doesn't hold: deleted, or never given.
    ASSERT_EQ(b.SupprimePersonne(p.legall), 0);
    ListeNoms apres(&b);
    EXPECT_FALSE(apres.LigneDe(p.legall));
    EXPECT_FALSE(apres.LigneDe(b.Tete().maxPersonne + 1));
    apres.Depart(p.legall);
    EXPECT_EQ(apres.Courante(), 0u);
    apres.Depart(p.eluard);
    EXPECT_EQ(apres.Choix(), p.eluard);
}

TEST(ListeNoms, NameSortedBaseJumpsByBisection) {
    BaseMemoire m;
    const Personnes p = Remplit(m.b, '2');
    ListeNoms l(&m.b);

    // Equal names: the first, then the next, then none.
    EXPECT_TRUE(l.Cherche("dup"));
    const std::uint32_t premier = l.Choix();
    EXPECT_TRUE(premier == p.dupont1 || premier == p.dupont2);
    EXPECT_TRUE(l.Suivante("dup"));
    EXPECT_EQ(l.Choix(), premier == p.dupont1 ? p.dupont2 : p.dupont1);
    EXPECT_FALSE(l.Suivante("dup"));
    EXPECT_TRUE(l.Precedente("dup"));
    EXPECT_EQ(l.Choix(), premier);
    EXPECT_FALSE(l.Precedente("dup"));

    // Accents and case are folded.
    EXPECT_TRUE(l.Cherche("\xE9LU"));
    EXPECT_EQ(l.Choix(), p.eluard);
    EXPECT_TRUE(l.Cherche("eluard p"));
    EXPECT_EQ(l.Choix(), p.eluard);

    // Particles: typed or not, the name behind them is found; with the
    // first name, the person carrying them.
    EXPECT_TRUE(l.Cherche("le gall"));
    EXPECT_EQ(l.Choix(), p.legall);
    EXPECT_TRUE(l.Cherche("Gall"));
    EXPECT_EQ(l.Choix(), p.legall);
    EXPECT_TRUE(l.Cherche("de la Fontaine M"));
    EXPECT_EQ(l.Choix(), p.delafontaine);
    EXPECT_TRUE(l.Cherche("fontaine p"));
    EXPECT_EQ(l.Choix(), p.fontaine);
    EXPECT_TRUE(l.Cherche("de la font"));
    EXPECT_TRUE(l.Choix() == p.fontaine || l.Choix() == p.delafontaine);

    // No match: the place where the name would stand.
    EXPECT_FALSE(l.Cherche("Dupond"));
    EXPECT_EQ(l.Choix(), premier);
    EXPECT_FALSE(l.Cherche("zzz"));
    EXPECT_EQ(l.Courante(), l.Nombre() - 1);
    // Blanks alone change nothing.
    EXPECT_FALSE(l.Cherche("   "));
    EXPECT_EQ(l.Courante(), l.Nombre() - 1);
}

TEST(ListeNoms, YearSortedBaseSeeksTheYearAndScansForNames) {
    BaseMemoire m;
    const Personnes p = Remplit(m.b, '1');
    ListeNoms l(&m.b);

    EXPECT_TRUE(l.Cherche("18"));
    EXPECT_EQ(l.Choix(), p.delafontaine); // 1801
    EXPECT_TRUE(l.Cherche("1820 dupont jean"));
    EXPECT_TRUE(l.Choix() == p.dupont1 || l.Choix() == p.dupont2);
    EXPECT_FALSE(l.Cherche("1830"));
    EXPECT_EQ(l.Choix(), p.martin1850);

    // A name is looked for from the current row on, then around.
    l.Depart(p.legall); // 1790
    EXPECT_TRUE(l.Cherche("martin"));
    EXPECT_EQ(l.Choix(), p.martin1850);
    EXPECT_FALSE(l.Suivante("martin"));
    EXPECT_TRUE(l.Precedente("martin"));
    EXPECT_EQ(l.Choix(), p.martin1700);
    EXPECT_TRUE(l.Cherche("le gall"));
    EXPECT_EQ(l.Choix(), p.legall);
    EXPECT_FALSE(l.Cherche("personne"));
    EXPECT_EQ(l.Choix(), p.legall);

    // A slice at a time, the walk ends on the same row; a new search drops
    // the walk under way.
    using R = ListeNoms::Resultat;
    EXPECT_EQ(l.Lance(ListeNoms::Sens::Premiere, "dupont", 1), R::EnCours);
    R r = R::EnCours;
    int tranches = 1;
    while (r == R::EnCours && tranches < 100) r = l.Poursuit(1), ++tranches;
    EXPECT_EQ(r, R::Trouve);
    EXPECT_GT(tranches, 1);
    EXPECT_TRUE(l.Choix() == p.dupont1 || l.Choix() == p.dupont2);
    EXPECT_EQ(l.Lance(ListeNoms::Sens::Suivante, "\xE9luard", 1), R::EnCours);
    EXPECT_EQ(l.Lance(ListeNoms::Sens::Premiere, "17", 1), R::Trouve);
    EXPECT_EQ(l.Choix(), p.martin1700);
    EXPECT_EQ(l.Poursuit(5), R::Absent);
}

TEST(ListeNoms, UnsortedBaseScans) {
    BaseMemoire m;
    const Personnes p = Remplit(m.b, '0');
    ListeNoms l(&m.b);
    EXPECT_EQ(l.Personne(0), p.martin1850); // order of creation
    EXPECT_TRUE(l.Cherche("dupont"));
    EXPECT_EQ(l.Choix(), p.dupont1);
    EXPECT_TRUE(l.Suivante("dupont"));
    EXPECT_EQ(l.Choix(), p.dupont2);
    EXPECT_TRUE(l.Cherche("mart"));
    EXPECT_EQ(l.Choix(), p.martin1700); // on from the current row, around the end
}

} // namespace
