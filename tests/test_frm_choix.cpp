// The candidate pickers: the span of birth years around the reference in a
// base sorted by year, the filters of each picker, paging by 20, the search
// text, and the sheet's own person never offered.
#include "support/base_memoire.h"
#include "ui/frm_choix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>

using namespace sylvane;
using sylvane::test::BaseMemoire;

namespace {

void Trie(Base& b, char mode) {
    b.TeteModifiable().modeTri = mode;
    b.OublieCles();
    b.TriTable();
}

// Every person of every page, in order.
std::vector<std::uint32_t> Tous(FrmChoix& f) {
    std::vector<std::uint32_t> r;
    while (true) {
        for (const auto& l : f.Lignes()) r.push_back(l.numero);
        if (!f.Suivante()) break;
    }
    return r;
}

bool Contient(const std::vector<std::uint32_t>& v, std::uint32_t n) {
    return std::find(v.begin(), v.end(), n) != v.end();
}

struct Annees {
    BaseMemoire m;
    std::uint32_t ref, f1740, f1750, h1799, f1845, f1859, h1860, f1861, f1955, f1959, h1960,
        fInconnue, hInconnue;
    Annees() {
        Base& b = m.b;
        ref = b.CreePersonne("Martin", "Jean", "", 'H', "1850");
        f1740 = b.CreePersonne("Avril", "Anne", "", 'F', "1740");
        f1750 = b.CreePersonne("Bault", "Berthe", "", 'F', "1750");
        h1799 = b.CreePersonne("Cordier", "Claude", "", 'H', "1799");
        f1845 = b.CreePersonne("Dumas", "Denise", "", 'F', "1845");
        f1859 = b.CreePersonne("Morin", "Eve", "", 'F', "1859");
        h1860 = b.CreePersonne("Faure", "Fernand", "", 'H', "1860");
        f1861 = b.CreePersonne("Gros", "Gaby", "", 'F', "1861");
        f1955 = b.CreePersonne("Henry", "Ida", "", 'F', "1955");
        f1959 = b.CreePersonne("Hugo", "Jeanne", "", 'F', "1959");
        h1960 = b.CreePersonne("Imbert", "Karl", "", 'H', "1960");
        fInconnue = b.CreePersonne("Jolly", "Lise", "", 'F', "");
        hInconnue = b.CreePersonne("Klein", "Marc", "", 'H', "");
        Trie(b, '1');
    }
};

} // namespace

TEST(FrmChoix, SpansInDecadesAroundTheReferenceYear) {
    Annees a;
    Base& b = a.m.b;
    const std::set<std::uint32_t> inconnus{a.fInconnue, a.hInconnue};

    FrmChoix conjoints(&b, Candidats::Conjoints, a.ref);
    EXPECT_EQ(conjoints.DecennieMin(), "175");
    EXPECT_EQ(conjoints.DecennieMax(), "195");
    auto v = Tous(conjoints);
    // Unknown years first (they sort first), then the span; opposite sex.
    EXPECT_EQ(v, (std::vector<std::uint32_t>{a.fInconnue, a.f1750, a.f1845, a.f1859, a.f1861,
                                             a.f1955, a.f1959}));

    FrmChoix enfants(&b, Candidats::Enfants, a.ref);
    EXPECT_EQ(enfants.DecennieMin(), "186");
    EXPECT_EQ(enfants.DecennieMax(), "195");
    EXPECT_EQ(Tous(enfants), (std::vector<std::uint32_t>{a.fInconnue, a.hInconnue, a.h1860,
                                                         a.f1861, a.f1955, a.f1959}));

    FrmChoix pere(&b, Candidats::Pere, a.ref, 'H');
    EXPECT_EQ(pere.DecennieMin(), "175");
    EXPECT_EQ(pere.DecennieMax(), "184");
    EXPECT_EQ(Tous(pere), (std::vector<std::uint32_t>{a.hInconnue, a.h1799}));
    FrmChoix mere(&b, Candidats::Pere, a.ref, 'F');
    EXPECT_EQ(Tous(mere), (std::vector<std::uint32_t>{a.fInconnue, a.f1750, a.f1845}));
    EXPECT_NE(pere.Titre(), mere.Titre());

    FrmChoix liens(&b, Candidats::Liens, a.ref);
    v = Tous(liens);
    EXPECT_EQ(v.size(), 10u);
    EXPECT_FALSE(Contient(v, a.f1740));
    EXPECT_FALSE(Contient(v, a.h1960));
    EXPECT_FALSE(Contient(v, a.ref));
}

TEST(FrmChoix, NoSpanWithoutYearOrOutsideTheYearSort) {
    Annees a;
    Base& b = a.m.b;
    // A reference of unknown year: every person but itself.
    FrmChoix inconnu(&b, Candidats::Liens, a.hInconnue);
    EXPECT_TRUE(inconnu.DecennieMin().empty());
    EXPECT_EQ(Tous(inconnu).size(), 12u);
    // Sorted by name: no span either, the list runs in name order.
    Trie(b, '2');
    FrmChoix parNom(&b, Candidats::Liens, a.ref);
    EXPECT_TRUE(parNom.DecennieMin().empty());
    const auto v = Tous(parNom);
    EXPECT_EQ(v.size(), 12u);
    EXPECT_EQ(v.front(), a.f1740); // AVRIL
    EXPECT_EQ(v.back(), a.f1859);  // MORIN
    // No base, or a closed one: an empty list that pages nowhere.
    FrmChoix rien(nullptr, Candidats::Conjoints, 1);
    EXPECT_TRUE(rien.Lignes().empty());
    EXPECT_FALSE(rien.Suivante());
    EXPECT_FALSE(rien.Precedente());
    EXPECT_EQ(rien.Choisit(0), 0u);
}

TEST(FrmChoix, EarlyReferenceKeepsTheSpanAboveYearZero) {
    BaseMemoire m;
    Base& b = m.b;
    const auto ref = b.CreePersonne("Roi", "Clovis", "", 'H', "0466");
    const auto tot = b.CreePersonne("Alaric", "", "", 'H', "0380");
    const auto fils = b.CreePersonne("Childebert", "", "", 'H', "0497");
    Trie(b, '1');
    FrmChoix pere(&b, Candidats::Pere, ref, 'H');
    EXPECT_EQ(pere.DecennieMin(), "036");
    EXPECT_EQ(pere.DecennieMax(), "045");
    EXPECT_EQ(Tous(pere), std::vector<std::uint32_t>{tot});
    FrmChoix enfants(&b, Candidats::Enfants, ref);
    EXPECT_EQ(Tous(enfants), std::vector<std::uint32_t>{fils});
    // A father for someone born in year 5: no decade can hold one.
    const auto bebe = b.CreePersonne("Tot", "", "", 'H', "0005");
    Trie(b, '1');
    EXPECT_TRUE(Tous(*std::make_unique<FrmChoix>(&b, Candidats::Pere, bebe, 'H')).empty());
}

TEST(FrmChoix, ChildCandidatesShowTheParentsTheyLack) {
    BaseMemoire m;
    Base& b = m.b;
    const auto p = b.CreePersonne("Martin", "Paul", "", 'H', "");
    const auto mere = b.CreePersonne("Martin", "Rose", "", 'F', "");
    const auto deux = b.CreePersonne("A", "Deux", "", 'H', "");
    const auto pereSeul = b.CreePersonne("B", "PereSeul", "", 'H', "");
    const auto mereSeule = b.CreePersonne("C", "MereSeule", "", 'H', "");
    const auto aucun = b.CreePersonne("D", "Aucun", "", 'H', "");
    b.EcritPere(deux, p);
    b.EcritMere(deux, mere);
    b.EcritPere(pereSeul, p);
    b.EcritMere(mereSeule, mere);
    Trie(b, '2');
    FrmChoix f(&b, Candidats::Enfants, p);
    std::map<std::uint32_t, std::string> codes;
    for (const auto& l : f.Lignes()) codes[l.numero] = l.code;
    EXPECT_EQ(codes.at(deux), "*");     // none missing, still offered
    EXPECT_EQ(codes.at(pereSeul), "M"); // the mother missing
    EXPECT_EQ(codes.at(mereSeule), "P");
    EXPECT_EQ(codes.at(aucun), "");
    EXPECT_FALSE(codes.count(p));
    // The other pickers show no code.
    FrmChoix liens(&b, Candidats::Liens, p);
    for (const auto& l : liens.Lignes()) EXPECT_EQ(l.code, "");
}

TEST(FrmChoix, PagesOfTwentyBothWays) {
    BaseMemoire m;
    Base& b = m.b;
    const auto ref = b.CreePersonne("Ref", "", "", 'H', "1800");
    std::vector<std::uint32_t> attendus;
    for (int i = 0; i < 45; ++i)
        attendus.push_back(b.CreePersonne("Nom" + std::to_string(100 + i), "", "", 'F', "1800"));
    Trie(b, '2');
    FrmChoix f(&b, Candidats::Conjoints, ref);
    EXPECT_FALSE(f.PeutPreceder());
    ASSERT_EQ(f.Lignes().size(), 20u);
    EXPECT_EQ(f.Lignes()[0].numero, attendus[0]);
    EXPECT_TRUE(f.Suivante());
    EXPECT_EQ(f.Lignes()[0].numero, attendus[20]);
    EXPECT_TRUE(f.Suivante());
    ASSERT_EQ(f.Lignes().size(), 5u);
    EXPECT_EQ(f.Lignes()[4].numero, attendus[44]);
    EXPECT_FALSE(f.PeutSuivre());
    EXPECT_FALSE(f.Suivante());
    EXPECT_TRUE(f.Precedente());
    EXPECT_EQ(f.Lignes()[0].numero, attendus[20]);
    EXPECT_TRUE(f.Precedente());
    EXPECT_EQ(f.Lignes()[0].numero, attendus[0]);
    EXPECT_FALSE(f.Precedente());
    // A new search starts again from its first page.
    f.Suivante();
    f.Cherche("nom12");
    EXPECT_FALSE(f.PeutPreceder());
    EXPECT_EQ(f.Lignes().front().numero, attendus[20]);
}

TEST(FrmChoix, SearchTextIsFoldedAndStartsAtItsKeyWhenSortedByName) {
    BaseMemoire m;
    Base& b = m.b;
    b.TeteModifiable().particules = '1';
    const auto ref = b.CreePersonne("Ref", "", "", 'H', "");
    const auto eluard = b.CreePersonne("\xC9luard", "Paul", "", 'H', "");
    const auto dumartin = b.CreePersonne("Dumartin", "Luc", "", 'H', "");
    const auto martin = b.CreePersonne("Martin", "Zo\xE9", "", 'F', "");
    const auto fontaine = b.CreePersonne("de la Fontaine", "Jean", "", 'H', "");
    const auto zola = b.CreePersonne("Zola", "\xC9mile", "", 'H', "");
    Trie(b, '2');
    FrmChoix f(&b, Candidats::Liens, ref);
    f.Cherche("eluard");
    EXPECT_EQ(Tous(f), std::vector<std::uint32_t>{eluard});
    // The list starts at the key: a name before it that holds the text
    // isn't shown.
    f.Cherche("martin");
    EXPECT_EQ(Tous(f), std::vector<std::uint32_t>{martin});
    f.Cherche("zoe");
    EXPECT_EQ(Tous(f), std::vector<std::uint32_t>{});
    f.Cherche("la fontaine");
    EXPECT_EQ(Tous(f), std::vector<std::uint32_t>{fontaine});
    f.Cherche("");
    EXPECT_EQ(Tous(f).size(), 5u);
    // Sorted by year, the text is looked for in every name.
    Trie(b, '1');
    FrmChoix g(&b, Candidats::Liens, ref);
    g.Cherche("MARTIN");
    EXPECT_EQ(Tous(g), (std::vector<std::uint32_t>{dumartin, martin}));
    g.Cherche("\xC9mile zola");
    EXPECT_EQ(Tous(g), std::vector<std::uint32_t>{zola});
}

TEST(FrmChoix, TheSheetPersonIsNeverOfferedNorTaken) {
    Annees a;
    Base& b = a.m.b;
    for (Candidats g : {Candidats::Conjoints, Candidats::Enfants, Candidats::Pere, Candidats::Liens}) {
        FrmChoix f(&b, g, a.hInconnue, 'H');
        EXPECT_FALSE(Contient(Tous(f), a.hInconnue));
    }
    FrmChoix f(&b, Candidats::Liens, a.ref);
    EXPECT_EQ(f.Choisit(99), 0u);
    EXPECT_EQ(f.Choix(), 0u);
    ASSERT_FALSE(f.Lignes().empty());
    EXPECT_EQ(f.Choisit(0), f.Lignes()[0].numero);
    EXPECT_EQ(f.Choix(), f.Lignes()[0].numero);
    // A person number beyond the base as reference: nobody is left out.
    FrmChoix horsBase(&b, Candidats::Liens, 5000);
    EXPECT_EQ(Tous(horsBase).size(), 13u);
}

TEST(FrmChoix, ARareTextIsSoughtAPageAtATime) {
    BaseMemoire m;
    Base& b = m.b;
    const auto ref = b.CreePersonne("Ref", "", "", 'H', "");
    b.DebutLot();
    const std::size_t nombre = FrmChoix::kExamenParPage * 2 + 10;
    for (std::size_t i = 0; i < nombre; ++i) b.CreePersonne("Commun", "", "", 'F', "");
    const auto rare = b.CreePersonne("Commun", "Rarissime", "", 'F', "");
    b.FinLot();
    Trie(b, '0');
    FrmChoix f(&b, Candidats::Liens, ref);
    f.Cherche("rarissime");
    // Each page looks at a bounded number of persons; the next one goes on.
    int pages = 1;
    while (f.Lignes().empty() && f.Suivante()) ++pages;
    ASSERT_EQ(f.Lignes().size(), 1u);
    EXPECT_EQ(f.Lignes()[0].numero, rare);
    EXPECT_EQ(pages, 3);
}
