// Person and marriage stores: cache replacement, lists, keys, creation and
// deletion, the person sort table.
#include "store/base.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/bases.h"
#include "text/messages.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

struct Personnes : ::testing::Test {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    void SetUp() override { b.Nouvelle("/b.sv2"); }
    std::uint32_t Cree(const std::string& nom, const std::string& an = "1900") {
        return b.CreePersonne(nom, "Jean", "", 'H', an);
    }
    void Rouvre() {
        b.FermeBase();
        b.Ouvre("/b.sv2");
    }
};

std::vector<std::uint32_t> Liste(const std::string& packed) {
    std::vector<std::uint32_t> v;
    for (std::size_t o = 0; o + 4 <= packed.size(); o += 4) v.push_back(Unpack4(packed, o));
    return v;
}

} // namespace

TEST_F(Personnes, PersonCacheIsLeastRecentlyUsedOnceWarm) {
    for (int i = 0; i < 2500; ++i) Cree("N" + std::to_string(i));
    Rouvre();
    for (std::uint32_t bloc = 1; bloc <= 20; ++bloc) b.LitSexe((bloc - 1) * 100 + 1);
    // A cold cache fills its order list from the last place down: the
    // block loaded last stands first.
    std::vector<std::uint32_t> attendu;
    for (std::uint32_t k = 20; k >= 1; --k) attendu.push_back(k);
    EXPECT_EQ(b.BlocsCachePersonnes(), attendu);
    b.LitSexe(1902); // block 20: a hit moves it last
    b.LitSexe(2001); // block 21 evicts the first place: block 19
    attendu = {18, 17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 20, 21};
    EXPECT_EQ(b.BlocsCachePersonnes(), attendu);
    b.LitSexe(1); // block 1 hit
    b.LitSexe(2101); // block 22 evicts the least recently used: 18
    attendu = {17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 20, 21, 1, 22};
    EXPECT_EQ(b.BlocsCachePersonnes(), attendu);
    // Clean blocks are dropped without a write; a dirty one is written when
    // its turn comes.
    long ecritures = b.Stats().ecrituresBlocPersonne;
    b.EcritAnDeces(1601, "1950"); // block 17, now the most recent
    for (std::uint32_t bloc = 23; bloc <= 41; ++bloc) b.LitSexe((bloc - 1) * 100 + 1);
    EXPECT_EQ(b.BlocsCachePersonnes().front(), 17u);
    EXPECT_EQ(b.Stats().ecrituresBlocPersonne, ecritures);
    b.LitSexe(4101);
    EXPECT_EQ(b.Stats().ecrituresBlocPersonne, ecritures + 1);
    EXPECT_EQ(b.LitAnDeces(1601), "1950");
}

TEST_F(Personnes, MarriageCacheReplacesInOrderOfLoading) {
    for (int i = 0; i < 4100; ++i) b.CreeMariage(0, 0, "1900");
    Rouvre();
    for (std::uint32_t bloc = 1; bloc <= 40; ++bloc) b.LitMari((bloc - 1) * 100 + 1);
    b.LitAnMariage(1); // a hit renews nothing
    long lectures = b.Stats().lecturesBlocMariage;
    b.LitMari(4001); // block 41 evicts block 1 all the same
    auto blocs = b.BlocsCacheMariages();
    ASSERT_EQ(blocs.size(), 40u);
    EXPECT_EQ(blocs.front(), 2u);
    EXPECT_EQ(blocs.back(), 41u);
    b.LitMari(2);
    EXPECT_EQ(b.Stats().lecturesBlocMariage, lectures + 2);
}

TEST_F(Personnes, NewBlockReadsAsZerosAndGetsAPlaceOnlyWhenWritten) {
    for (int i = 0; i < 150; ++i) Cree("N");
    EXPECT_EQ(b.LitSexe(250), "");
    EXPECT_EQ(b.LitPere(299), 0u);
    EXPECT_EQ(b.LitNom(300), "");
    EXPECT_LT(b.TableDe(Table::Personnes).positions.size(), 2u);
    b.ValideBase();
    EXPECT_EQ(b.TableDe(Table::Personnes).positions.size(), 2u);
    EXPECT_NE(b.TableDe(Table::Personnes).positions[1], 0u);
}

TEST_F(Personnes, The201stEntryIsStoredButNotSeen) {
    auto pere = Cree("Pere", "1800");
    std::vector<std::uint32_t> enfants;
    for (int i = 0; i < 201; ++i) {
        auto e = Cree("Enfant", "1850");
        b.MajEnfants(pere, e, 'A');
        enfants.push_back(e);
    }
    EXPECT_EQ(b.EnfantNo(pere, 200), enfants[199]);
    EXPECT_EQ(b.EnfantNo(pere, 201), 0u);
    Rouvre();
    EXPECT_EQ(b.EnfantNo(pere, 201), 0u);
    std::string brut = b.Lire(b.PositionChamp(pere, 33), 810);
    EXPECT_EQ(Unpack4(brut, 200 * 4), enfants[200]);
    EXPECT_EQ(Unpack4(brut, 201 * 4), 0u);
}

TEST_F(Personnes, ChildrenKeptInBirthOrderWithTiesInOrderOfAddition) {
    auto pere = Cree("Pere", "1800");
    auto a = Cree("A", "1850"), c = Cree("C", "1850"), d = Cree("D", "1840"), e = Cree("E", ""),
         f = Cree("F", "850-"), g = Cree("G", "1850");
    for (auto x : {a, c, d, e, f, g}) b.MajEnfants(pere, x, 'A');
    EXPECT_EQ(Liste(b.ListeEnfants(pere)), (std::vector<std::uint32_t>{f, e, d, a, c, g}));
    b.MajEnfants(pere, c, 'S');
    b.MajEnfants(pere, 999, 'S'); // absent: the list is rewritten all the same
    b.MajEnfants(pere, a, 'X');   // unknown letter: nothing but a redraw
    EXPECT_TRUE(b.redessiner);
    Rouvre();
    EXPECT_EQ(Liste(b.ListeEnfants(pere)), (std::vector<std::uint32_t>{f, e, d, a, g}));
}

TEST_F(Personnes, YearKeys) {
    struct Cas { const char* an; const char* naiss; const char* deces; };
    for (Cas c : {Cas{"1850", "1850", "1850"}, Cas{"", "0000", "0000"}, Cas{" 850", "0850", "0850"},
                  Cas{"850-", "-850", "Z   "}, Cas{"-850", "-850", "Z   "}, Cas{"1 50", "1050", "1050"},
                  Cas{"18??", "18??", "Z   "}, Cas{"ABCD", "ABCD", "Z   "}}) {
        auto n = b.CreePersonne("X", "Y", "", 'F', c.an);
        b.EcritAnDeces(n, c.an);
        EXPECT_EQ(b.CleAnNaiss(n), c.naiss) << c.an;
        EXPECT_EQ(b.CleAnDeces(n), c.deces) << c.an;
    }
    auto m = b.CreeMariage(0, 0, "850-");
    EXPECT_EQ(b.CleAnMariage(m), "-850");
}

TEST_F(Personnes, LinksAndRoles) {
    auto a = Cree("A"), x = Cree("X");
    b.MajLiens(a, x, "GODF", 'A');
    b.MajLiens(a, x, "WITN", 'A');
    b.MajLiens(a, x, "WITN", 'S'); // same person, only the pair with this text goes
    ASSERT_EQ(b.LienNo(a, 1), x);
    EXPECT_EQ(b.TexteLienBrutNo(a, 1), "GODF");
    EXPECT_EQ(b.LienNo(a, 2), 0u);
    b.MajLiens(a, 1, "GUAR", 'M'); // by place
    Rouvre();
    EXPECT_EQ(b.TexteLienBrutNo(a, 1), "GUAR");
    b.MajEvts(a, 5, "WITN", 'A');
    b.MajEvts(a, 1, "GODF", 'M');
    EXPECT_EQ(b.EvtNo(a, 1), 5u);
    EXPECT_EQ(b.RoleEvtNo(a, 1), "GODF");
}

TEST_F(Personnes, DeletionRefusalsAndEffects) {
    auto pere = Cree("Pere"), fils = Cree("Fils"), seul = Cree("Seul");
    b.EcritPere(fils, pere);
    b.MajEnfants(pere, fils, 'A');
    EXPECT_EQ(b.SupprimePersonne(pere), 610);
    EXPECT_EQ(b.SupprimePersonne(fils), 615);
    auto epouse = Cree("Epouse");
    b.CreeMariage(seul, epouse);
    EXPECT_EQ(b.SupprimePersonne(epouse), 611);
    auto ami = Cree("Ami");
    b.MajLiens(ami, seul, "WITN", 'A');
    EXPECT_EQ(b.SupprimePersonne(ami), 612);
    auto libre = Cree("Libre");
    const auto vivants = b.Tete().nbPersonnes;
    EXPECT_EQ(b.SupprimePersonne(libre), 0);
    EXPECT_EQ(b.Tete().nbPersonnes, vivants - 1);
    EXPECT_EQ(b.TrouvePlaceFiche(libre), 0u);
    auto nouveau = Cree("Nouveau");
    EXPECT_EQ(nouveau, libre + 1); // numbers are never reused
    Rouvre();
    EXPECT_EQ(b.LitSexe(libre), " ");
    EXPECT_EQ(b.LitNom(libre), "");
    EXPECT_EQ(b.LitAnNaiss(libre), "");
    EXPECT_EQ(b.LitNote(libre), "");
}

TEST_F(Personnes, NomDatesAndNomComplet) {
    auto n = b.CreePersonne("Martin", "Jean", "Louis", 'H', "1850", "ABT 1850", "1910",
                            "BEF 1910");
    EXPECT_EQ(b.NomComplet(n), "Jean Martin");
    EXPECT_EQ(b.NomDates(n), "Jean Martin (~1850-<1910)");
    auto m = b.CreePersonne("Durand", "Marie", "", 'F', "1852");
    EXPECT_EQ(b.NomDates(m), "Marie Durand (o1852) ");
    auto d = b.CreePersonne("Petit", "Paul", "", 'H', "", "", "AFT ", "AFT 1900");
    b.EcritAnDeces(d, "1900");
    EXPECT_EQ(b.NomDates(d), "Paul Petit (+>1900)");
    b.EcritPere(n, m);
    p.affichageNom = {"BIRN", "FNAM", "OFNM", "FATN", "MOTN"};
    EXPECT_EQ(b.NomComplet(n), "Martin Jean Louis Durand");
    EXPECT_EQ(b.NomComplet(0), "");
}

TEST_F(Personnes, NewPersonNoteIsItsKeywordLine) {
    b.TeteModifiable().particules = '1';
    auto n = b.CreePersonne("de la Tour", "Jean Louis", "", 'H', "1900");
    EXPECT_EQ(b.LitNote(n), "|Tour.(de.la) \xB6" "Jean.Louis");
    b.TeteModifiable().premierPrenom = '1';
    auto m = b.CreePersonne("Roy", "Jean Louis", "", 'H', "1900");
    EXPECT_EQ(b.LitNote(m), "|Roy \xB6" "Jean Louis");
}

TEST_F(Personnes, SortTableByYearThenNameWithEqualKeysBeforeTheFoundOne) {
    auto a = Cree("Martin", "1900"), c = Cree("Durand", "1900"), d = Cree("Albert", "1850");
    EXPECT_EQ(b.TriFiche(1), d);
    EXPECT_EQ(b.TriFiche(2), c);
    EXPECT_EQ(b.TriFiche(3), a);
    // The bisection stops on an equal key and inserts in front of it.
    auto e = Cree("Durand", "1900");
    EXPECT_EQ(b.TriFiche(2), e);
    EXPECT_EQ(b.TriFiche(3), c);
    for (auto n : {a, c, d, e}) EXPECT_EQ(b.TriFiche(b.TrouvePlaceFiche(n)), n);
    b.TeteModifiable().modeTri = '0';
    auto f = Cree("Aaa", "1000");
    EXPECT_EQ(b.TriFiche(5), f);
    std::string rapport;
    b.SetSignaleur([&rapport](const std::string& t) { rapport = t; });
    b.MajTriFiche(1, 12345, 'S');
    EXPECT_EQ(rapport, "Erreur de mise \xE0 jour de la table de tri");
    EXPECT_EQ(b.TablePersonnes().taille(), 4u);
}

TEST_F(Personnes, FullSortMatchesTheRecordedOrderAndKeepsTiesInTreeOrder) {
    // Many equal keys: the tree takes entry 1 first, then the others by
    // steps of n / 100 + 1; equal keys come out in that order.
    std::vector<std::uint32_t> nums;
    b.TeteModifiable().modeTri = '0';
    for (int i = 0; i < 450; ++i) nums.push_back(Cree(i % 3 ? "Meme" : "Autre", "1900"));
    b.TeteModifiable().modeTri = '2';
    b.OublieCles();
    b.TriTable();
    const std::size_t nb = nums.size(), pas = nb / 100 + 1;
    std::vector<std::size_t> rang(nb);
    std::size_t r = 1;
    for (std::size_t j = 1; j <= pas; ++j)
        for (std::size_t k = 1; k <= 100; ++k)
            if (std::size_t i = pas * (k - 1) + j + 1; i <= nb) rang[i - 1] = r++;
    std::vector<std::uint32_t> autres, memes;
    std::vector<std::size_t> ordre(nb);
    for (std::size_t i = 0; i < nb; ++i) ordre[i] = i;
    std::stable_sort(ordre.begin(), ordre.end(),
                     [&](std::size_t x, std::size_t y) { return rang[x] < rang[y]; });
    for (auto i : ordre) (i % 3 ? memes : autres).push_back(nums[i]);
    for (std::size_t i = 0; i < autres.size(); ++i) EXPECT_EQ(b.TriFiche(i + 1), autres[i]);
    for (std::size_t i = 0; i < memes.size(); ++i)
        EXPECT_EQ(b.TriFiche(autres.size() + i + 1), memes[i]);
}

TEST_F(Personnes, NomLongShowsDatesInWordsAndPlaces) {
    DefinitMessages({{730, "janvier"}, {732, "mars"}, {831, "avant"}, {848, "1er"}});
    auto n = b.CreePersonne("Martin", "Jean", "", 'H', "1850", "12/3", "1910", "BEF 1 JAN");
    b.EcritNote(n, b.LigneMotsCles(n, "Saint L\xF4", "Paris"));
    EXPECT_EQ(b.TexteDateNaiss(n), "12 mars");
    EXPECT_EQ(b.NomLong(n), "Jean Martin \xB0" "12 mars 1850 Saint L\xF4 \x86" "avant 1 janvier 1910 Paris");
    auto m = b.CreePersonne("Durand", "Marie", "", 'F', "1852");
    EXPECT_EQ(b.NomLong(m), "Marie Durand \xB0" "1852");
    auto x = b.CreePersonne("Sans", "Date", "", 'F', "");
    EXPECT_EQ(b.NomLong(x), "Date Sans");
    DefinitMessages({});
}
