// The four searches over small bases built for each case, and the working
// set they fill.
#include "exchange/selection.h"
#include "search/recherche.h"
#include "store/pack.h"
#include "support/base_memoire.h"
#include "text/calendrier.h"
#include "text/mots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace sylvane;

namespace {

// Runs a scan to its end and takes everything it found.
template <class S> auto Tout(S& s) {
    decltype(s.Prend()) v;
    Execute(s, Interaction{}, [&] {
        for (auto& x : s.Prend()) v.push_back(x);
    }, 3);
    return v;
}

CriteresNom Nom(const char* texte) {
    CriteresNom c;
    c.texte = texte;
    return c;
}

std::vector<std::uint32_t> Personnes(const std::vector<LigneMot>& v) {
    std::vector<std::uint32_t> r;
    for (const auto& l : v) r.push_back(l.personne);
    return r;
}

struct Recherches : ::testing::Test, test::BaseMemoire {
    // A person with birth and death places in the keyword line.
    std::uint32_t Personne(const std::string& nom, const std::string& prenom, char sexe,
                           const std::string& an, const std::string& lieuN = {},
                           const std::string& lieuD = {}, const std::string& suite = {}) {
        const std::uint32_t n = b.CreePersonne(nom, prenom, "", sexe, an);
        const std::string note = b.LigneMotsCles(n, lieuN, lieuD) + suite;
        b.MajMots(n, b.LitNote(n), note);
        b.EcritNote(n, note);
        return n;
    }
    std::uint32_t Mariage(std::uint32_t h, std::uint32_t f, const std::string& an,
                          const std::string& lieu = {}) {
        const std::uint32_t m = b.CreeMariage(h, f, an);
        if (!lieu.empty()) {
            const std::string note = "1/5/" + an + " @" + VersPoints(lieu);
            for (std::uint32_t x : {h, f})
                if (x) b.MajMots(x, "", note);
            b.EcritNoteMariage(m, note);
        }
        return m;
    }
};

} // namespace

TEST(EnsemblePersonnes, StaysInNumberOrderWithoutDoubles) {
    EnsemblePersonnes e;
    EXPECT_TRUE(e.Ajoute(7));
    EXPECT_TRUE(e.Ajoute(3));
    EXPECT_FALSE(e.Ajoute(7));
    EXPECT_FALSE(e.Ajoute(0));
    EXPECT_EQ(e.Fusionne({9, 3, 1, 9, 0}), 2u);
    EXPECT_EQ(e.Numeros(), (std::vector<std::uint32_t>{1, 3, 7, 9}));
    EXPECT_EQ(e.Octets(), Pack4(1) + Pack4(3) + Pack4(7) + Pack4(9));
    EXPECT_EQ(e.Rang(7), 2u);
    EXPECT_EQ(e.Rang(8), e.Taille());
    // Dropping rows down to the last leaves an empty set.
    while (!e.Vide()) ASSERT_TRUE(e.RetireRang(0));
    EXPECT_FALSE(e.RetireRang(0));
    EXPECT_EQ(e.At(0), 0u);

    // Random merges give the sorted union.
    std::mt19937 rng(4);
    std::set<std::uint32_t> attendu;
    for (int tour = 0; tour < 50; ++tour) {
        std::vector<std::uint32_t> v;
        for (int i = 0; i < 20; ++i) v.push_back(rng() % 300 + 1);
        attendu.insert(v.begin(), v.end());
        if (tour % 2) e.Fusionne(v);
        else
            for (auto n : v) e.Ajoute(n);
    }
    EXPECT_EQ(e.Numeros(), std::vector<std::uint32_t>(attendu.begin(), attendu.end()));
}

TEST_F(Recherches, NameMatchesAnywhereFoldedAndCumulates) {
    const auto a = Personne("Ledupont", "Jean", 'H', "1850");
    const auto c = Personne("Dupuis", "\xC9lise", 'F', "1860");
    Personne("Martin", "Paul", 'H', "1870");
    const auto d = Personne("L\xE9ger", "Anne", 'F', "");
    EnsemblePersonnes e;
    RechercheNom r(b, Nom("dup"));
    e.Fusionne(Tout(r));
    EXPECT_EQ(e.Numeros(), (std::vector<std::uint32_t>{a, c}));
    // A second search adds, and the set stays in number order.
    RechercheNom r2(b, Nom("leger"));
    e.Fusionne(Tout(r2));
    EXPECT_EQ(e.Numeros(), (std::vector<std::uint32_t>{a, c, d}));
    // A first name, a sex and a span narrow it; no year fails a span.
    CriteresNom f;
    f.prenom = "elis";
    f.sexe = 'F';
    RechercheNom r3(b, f);
    EXPECT_EQ(Tout(r3), (std::vector<std::uint32_t>{c}));
    f = {};
    f.anDebut = "1800";
    f.anFin = "1855";
    RechercheNom r4(b, f);
    EXPECT_EQ(Tout(r4), (std::vector<std::uint32_t>{a}));
    EXPECT_TRUE(CriteresNom{}.Vides());
    EXPECT_EQ(CodeFamille(b, a), "*");
}

TEST_F(Recherches, StopKeepsWhatWasFound) {
    for (int i = 0; i < 50; ++i) Personne("Dupont", "X", 'H', "1800");
    RechercheNom r(b, Nom("DUPONT"));
    int pas = 0;
    Interaction i;
    i.arret = [&] { return ++pas == 2; };
    std::vector<std::uint32_t> vus;
    EXPECT_FALSE(Execute(r, i, [&] { for (auto n : r.Prend()) vus.push_back(n); }, 10));
    EXPECT_EQ(vus.size(), 20u);
    EXPECT_EQ(r.Fait(), 20u);
}

TEST_F(Recherches, KeywordByIndexPrefixAndOtherRows) {
    const auto a = Personne("Dupont", "Jean", 'H', "1850", "Paris 15e");
    const auto c = Personne("Dupuis", "Marie", 'F', "1860", "Lyon", "Paris");
    const auto d = Personne("Ledupont", "Paul", 'H', "1870", "Paris");
    const auto g = Personne("Dupont", "Luc", 'H', "1880", "Paris", "", "\r\nOCCU  \\laboureur");
    b.EcritPere(g, a);

    CriteresMots c1;
    c1.lignes[0] = {kMarqueNom, "dup"};
    RechercheMots r(b, c1);
    ASSERT_TRUE(r.ParIndex());
    auto v = Personnes(Tout(r));
    std::sort(v.begin(), v.end());
    EXPECT_EQ(v, (std::vector<std::uint32_t>{a, c, g})); // not LEDUPONT

    // Another row is a substring test behind its mark: PARIS finds PARIS.15E.
    c1.lignes[1] = {kMarqueNaissance, "paris"};
    RechercheMots r2(b, c1);
    auto lignes = Tout(r2);
    v = Personnes(lignes);
    std::sort(v.begin(), v.end());
    EXPECT_EQ(v, (std::vector<std::uint32_t>{a, g}));

    // The detail of a place row, and of a rubric row.
    CriteresMots c2;
    c2.lignes[0] = {kMarqueDeces, "PARIS"};
    RechercheMots r3(b, c2);
    auto l3 = Tout(r3);
    ASSERT_EQ(l3.size(), 1u);
    EXPECT_EQ(l3[0].personne, c);
    EXPECT_EQ(l3[0].detail, "Paris");
    EXPECT_EQ(l3[0].sansMariage, "X");
    CriteresMots c3;
    c3.lignes[0] = {'\\', "LAB"};
    RechercheMots r4(b, c3);
    auto l4 = Tout(r4);
    ASSERT_EQ(l4.size(), 1u);
    EXPECT_EQ(l4[0].detail, "laboureur");
    EXPECT_EQ(l4[0].parents, "xo");
    EXPECT_EQ(l4[0].cle, "DUPONT");

    // Orphans only: the son of Jean is left out.
    c1.lignes[1] = {};
    c1.orphelines = true;
    RechercheMots r5(b, c1);
    v = Personnes(Tout(r5));
    EXPECT_EQ(std::count(v.begin(), v.end(), g), 0);
    EXPECT_EQ(std::count(v.begin(), v.end(), d), 0);
}

TEST_F(Recherches, KeywordYearsAloneScanEverything) {
    const auto a = Personne("Martin", "Jean", 'H', "1850");
    Personne("Martin", "Paul", 'H', "1900");
    Personne("Martin", "Luc", 'H', "");
    CriteresMots c;
    EXPECT_TRUE(c.Vides());
    c.anDebut = "1800";
    c.anFin = "1860";
    RechercheMots r(b, c);
    EXPECT_FALSE(r.ParIndex()); // the form asks 559 first
    EXPECT_EQ(Personnes(Tout(r)), (std::vector<std::uint32_t>{a}));
    // An empty end has no upper limit.
    c.anFin = "";
    RechercheMots r2(b, c);
    EXPECT_EQ(Tout(r2).size(), 2u);
    // A text with no kind scans too.
    CriteresMots c3;
    c3.lignes[0] = {' ', "paul"};
    RechercheMots r3(b, c3);
    EXPECT_FALSE(r3.ParIndex());
    EXPECT_EQ(Tout(r3).size(), 1u);
}

TEST_F(Recherches, KeywordNeighboursCountOnce) {
    // A place twice in a note stands twice in the word's list.
    const auto a = Personne("Martin", "Jean", 'H', "1850", "Caen", "Caen");
    const auto c = Personne("Martin", "Paul", 'H', "1851", "", "", "\r\n\r\nvu \xE0 $Caen et $Caen");
    CriteresMots m;
    m.lignes[0] = {kMarqueNaissance, "CAEN"};
    RechercheMots r(b, m);
    EXPECT_EQ(Personnes(Tout(r)), (std::vector<std::uint32_t>{a, c}));
    EXPECT_EQ(SymboleRubrique(b, "$"), '$');
    EXPECT_EQ(SymboleRubrique(b, "OCCU"), '\\');
    EXPECT_EQ(SymboleRubrique(b, "rien"), ' ');
}

TEST_F(Recherches, CoupleRules) {
    const auto h = Personne("Dupont", "Jean", 'H', "1850");
    const auto f = Personne("Martin", "Marie", 'F', "1852");
    const auto h2 = Personne("Ledupont", "Paul", 'H', "1850");
    const auto f2 = Personne("Petit", "Anne", 'F', "1855");
    const auto seule = Personne("Dupont", "Rose", 'F', "1860");
    const auto m1 = Mariage(h, f, "1875", "Saint Lo");
    const auto m2 = Mariage(h2, f2, "", "Caen");
    Mariage(0, seule, "1880");
    const auto e1 = Personne("Dupont", "Luc", 'H', "1880");
    b.EcritPere(e1, h);
    b.EcritMere(e1, f);
    b.MajEnfants(h, e1, 'A');
    const auto e2 = Personne("Dupont", "Max", 'H', "1882");
    b.EcritPere(e2, h);
    b.MajEnfants(h, e2, 'A');

    CriteresCouple c;
    EXPECT_TRUE(c.Vides());
    c.epoux = "dup";
    RechercheCouple r(b, c);
    EXPECT_TRUE(r.ParIndex());
    auto v = Tout(r);
    ASSERT_EQ(v.size(), 1u); // not LEDUPONT
    EXPECT_EQ(v[0].mariage, m1);
    EXPECT_EQ(v[0].femme, f);
    EXPECT_EQ(v[0].enfants, 1); // Max has no mother
    EXPECT_EQ(v[0].lieu, "Saint Lo");

    // A wife with no husband is never listed, even by a full scan.
    CriteresCouple w;
    w.prEpouse = "ROSE";
    RechercheCouple rw(b, w);
    EXPECT_FALSE(rw.ParIndex());
    EXPECT_TRUE(Tout(rw).empty());

    // A start year leaves out the marriage with no year.
    CriteresCouple a;
    a.anDebut = "1800";
    RechercheCouple ra(b, a);
    v = Tout(ra);
    ASSERT_EQ(v.size(), 1u);
    EXPECT_EQ(v[0].mariage, m1);

    CriteresCouple l;
    l.lieu = "caen";
    RechercheCouple rl(b, l);
    EXPECT_TRUE(rl.ParIndex());
    v = Tout(rl);
    ASSERT_EQ(v.size(), 1u);
    EXPECT_EQ(v[0].mariage, m2);
}

TEST_F(Recherches, EventSpansTypesAndPlaces) {
    const auto n = Personne("Martin", "Jean", 'H', "1850");
    const auto sansDate = b.CreeEvtPersonne(n, 0, "DEAT", "Caen");
    const auto avant = b.CreeEvtPersonne(n, -730000, "BIRT", "Rome"); // before the era
    const auto e1850 = b.CreeEvtPersonne(n, -18190, "BIRT", "Saint L\xF4");
    const auto e1900 = b.CreeEvtPersonne(n, 365, "BURI", "caen");

    CriteresEvt c;
    EXPECT_EQ(c.Refus(), msg_recherche::CriteresVides);
    c.anDebut = "18x0";
    EXPECT_EQ(c.Refus(), msg_recherche::AnneeNonNumerique);
    c.anDebut = "1800";
    EXPECT_EQ(c.Refus(), 0);
    RechercheEvt r(b, c, 50000);
    auto v = Tout(r);
    ASSERT_EQ(v.size(), 2u); // the undated one is dropped by any start year
    EXPECT_EQ(v[0].evt, e1850);
    EXPECT_EQ(v[0].date, "12/3/1850");
    EXPECT_EQ(v[1].evt, e1900);

    CriteresEvt t;
    t.type = "birt";
    RechercheEvt rt(b, t, 50000);
    v = Tout(rt);
    ASSERT_EQ(v.size(), 2u);
    EXPECT_EQ(v[0].evt, avant);

    CriteresEvt av;
    av.anDebut = "-200";
    av.anFin = "1";
    RechercheEvt ra(b, av, 50000);
    v = Tout(ra);
    ASSERT_EQ(v.size(), 1u);
    EXPECT_EQ(v[0].evt, avant);

    CriteresEvt l;
    l.lieu = "CAEN";
    RechercheEvt rl(b, l, 50000);
    v = Tout(rl);
    ASSERT_EQ(v.size(), 2u);
    EXPECT_EQ(v[0].evt, sansDate);
    EXPECT_EQ(ValeursEvt(b, true), (std::vector<std::string>{"CAEN", "ROME", "SAINT LO"}));
    EXPECT_EQ(ValeursEvt(b, false), (std::vector<std::string>{"BIRT", "BURI", "DEAT"}));
}

TEST_F(Recherches, EventSpanAgreesWithAWalkOfTheWholeTable) {
    std::mt19937 rng(9);
    const auto n = Personne("Martin", "Jean", 'H', "1850");
    std::vector<std::uint32_t> evts;
    for (int i = 0; i < 300; ++i)
        evts.push_back(b.CreeEvtPersonne(n, (rng() % 3 == 0) ? 0 : long(rng() % 80000) - 40000,
                                         "EVEN", ""));
    for (int essai = 0; essai < 30; ++essai) {
        CriteresEvt c;
        const int a = 1780 + static_cast<int>(rng() % 240), z = a + static_cast<int>(rng() % 60);
        c.anDebut = std::to_string(a);
        if (essai % 3) c.anFin = std::to_string(z);
        RechercheEvt r(b, c, 45000);
        auto v = Tout(r);
        const long debut = JourSerie({1, 1, a});
        const long fin = c.anFin.empty() ? 45000 : JourSerie({31, 12, z});
        std::size_t attendu = 0;
        for (std::uint32_t e : evts) {
            const long j = b.DateEvt(e);
            if (j != 0 && j >= debut && j <= fin) ++attendu;
        }
        EXPECT_EQ(v.size(), attendu) << c.anDebut << "-" << c.anFin;
    }
}

TEST_F(Recherches, ExportMarksSpousesAndRelatives) {
    const auto h = Personne("Dupont", "Jean", 'H', "1850");
    const auto f = Personne("Martin", "Marie", 'F', "1852");
    const auto e = Personne("Dupont", "Luc", 'H', "1880");
    const auto autre = Personne("Petit", "Anne", 'F', "1855");
    Mariage(h, f, "1875");
    b.MajEnfants(h, e, 'A');
    Selection s(b);
    MarqueExport(b, {h}, s);
    EXPECT_EQ(s.Marque(h), '3');
    EXPECT_EQ(s.Marque(f), '3');
    EXPECT_EQ(s.Marque(e), '4');
    EXPECT_EQ(s.Marque(autre), ' ');
    EXPECT_TRUE(s.Exporte(f));
    EXPECT_FALSE(s.Exporte(e)); // a relative goes with the collaterals
    s.collateraux = true;
    EXPECT_TRUE(s.Exporte(e));
    EXPECT_EQ(ListePaquet({5, 2, 5, 0}), Pack4(2) + Pack4(5));
}
