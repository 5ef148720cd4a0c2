// Tree charts: the trees, their measures and places, the page template and
// the page writer, on small families built in memory.
#include "charts/gabarit.h"
#include "charts/graphe.h"
#include "charts/pages.h"
#include "store/fichier_memoire.h"
#include "support/arbres.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

using namespace sylvane;

namespace {

// A surface that keeps what was drawn, sheet by sheet.
struct Trace {
    char quoi; // 'L', 'C', 'T'
    double x1, y1, x2, y2;
    std::string texte;
};
struct Enregistreuse : Surface {
    std::map<std::pair<int, int>, std::vector<Trace>> pages;
    std::pair<int, int> courante;
    const Metrique& Mesure() const override { return MetriqueDejaVu::Instance(); }
    void DebutPage(int l, int c, double, double) override { courante = {l, c}; pages[courante]; }
    void FinPage() override {}
    void Trait(double a, double b, double c, double d, Plume) override {
        pages[courante].push_back({'L', a, b, c, d, {}});
    }
    void Boite(double a, double b, double c, double d, std::int32_t) override {
        pages[courante].push_back({'C', a, b, c, d, {}});
    }
    void Texte(double x, double y, std::string_view t, const Police&, std::int32_t) override {
        pages[courante].push_back({'T', x, y, 0, 0, std::string(t)});
    }
    std::size_t Nombre(std::pair<int, int> page, char quoi) {
        const auto& v = pages[page];
        return static_cast<std::size_t>(
            std::count_if(v.begin(), v.end(), [quoi](const Trace& t) { return t.quoi == quoi; }));
    }
};

std::vector<EnregGabarit> Relit(SystemeFichiers& fs, const std::string& chemin,
                                EnteteGabarit* entete = nullptr) {
    LecteurGabarit l(fs, chemin);
    if (entete) *entete = l.Entete();
    std::vector<EnregGabarit> r;
    EnregGabarit e;
    while (l.Suivant(e)) r.push_back(e);
    return r;
}

std::vector<EnregGabarit> Boites(const std::vector<EnregGabarit>& v, std::uint32_t personne) {
    std::vector<EnregGabarit> r;
    for (const auto& e : v)
        if (e.type == 'C' && e.personne == personne) r.push_back(e);
    return r;
}

// Four generations of ascendants, complete: 1 and its 2 parents, 4
// grandparents, 8 great-grandparents.
struct Ascendance : test::Arbre {
    std::vector<std::uint32_t> sosa = std::vector<std::uint32_t>(16, 0);
    Ascendance() {
        for (int n = 15; n >= 1; --n) sosa[n] = Personne("P" + std::to_string(n), "x", n % 2 ? 'F' : 'H');
        for (int n = 1; n < 8; ++n) Parents(sosa[n], sosa[2 * n], sosa[2 * n + 1]);
    }
};

} // namespace

// --- The trees ---------------------------------------------------------------------

TEST(ArbreGraphe, LeavesAndLevelsOfAscendants) {
    test::Arbre a;
    const auto seul = a.Personne("Seul", "x");
    ArbreGraphe t;
    ASSERT_TRUE(ArbreAscendants(a.b(), seul, {5, false, {}}, t));
    EXPECT_EQ(t.Nombre(), 1u);
    EXPECT_EQ(t.NbFeuilles(), 1u);
    EXPECT_EQ(t.NiveauMax(), 0u);
    const PlanGraphe p = CalculePlan(0, 0, 1, 1, OptionsGraphe{});
    EXPECT_EQ(p.geo.feuillesH, 1);
    EXPECT_EQ(p.geo.feuillesV, 1);

    // One known parent: its node and an empty cell beside it.
    const auto pere = a.Personne("Pere", "x");
    const auto enfant = a.Enfant(pere, 0, "e");
    ArbreGraphe u;
    ArbreAscendants(a.b(), enfant, {5, false, {}}, u);
    ASSERT_EQ(u.Nombre(), 3u);
    EXPECT_EQ(u.Personne(2), pere);
    EXPECT_EQ(u.Personne(3), 0u);
    EXPECT_EQ(u.Parent(3), 1u);
    EXPECT_EQ(u.Feuilles(1), 2u);
    EXPECT_EQ(u.Feuilles(2), 0u);
    EXPECT_EQ(u.NiveauMax(), 1u);

    Ascendance f;
    ArbreGraphe v;
    ArbreAscendants(f.b(), f.sosa[1], {2, false, {}}, v);
    EXPECT_EQ(v.Nombre(), 7u); // the third generation is not asked
    EXPECT_EQ(v.NbFeuilles(), 4u);
    EXPECT_EQ(v.Feuilles(1), 4u);
}

TEST(ArbreGraphe, ImplexIsDrawnOnceExpanded) {
    // Two cousins marry: their child has the same great-grandparents twice.
    test::Arbre a;
    const auto gp = a.Personne("GP", "x", 'H'), gm = a.Personne("GM", "x", 'F');
    const auto agp = a.Personne("AGP", "x", 'H');
    a.Parents(gp, agp, 0);
    const auto f1 = a.Enfant(gp, gm, "f1", 'H'), f2 = a.Enfant(gp, gm, "f2", 'F');
    const auto c1 = a.Enfant(f1, 0, "c1", 'H'), c2 = a.Enfant(0, f2, "c2", 'F');
    const auto x = a.Enfant(c1, c2, "x");
    ArbreGraphe avec, sans;
    ArbreAscendants(a.b(), x, {10, false, {}}, avec);
    ArbreAscendants(a.b(), x, {10, true, {}}, sans);
    auto fois = [](const ArbreGraphe& t, std::uint32_t p) {
        int n = 0;
        for (std::uint32_t i = 1; i <= t.Nombre(); ++i) n += t.Personne(i) == p;
        return n;
    };
    EXPECT_EQ(fois(avec, gp), 2);
    EXPECT_EQ(fois(avec, agp), 2);
    // Without implex the second GP still stands as a box, but is not
    // walked again above it.
    EXPECT_EQ(fois(sans, gp), 2);
    EXPECT_EQ(fois(sans, agp), 1);
    EXPECT_LT(sans.Nombre(), avec.Nombre());
}

TEST(ArbreGraphe, DescendantsByBirthAndTheWifesOtherChildren) {
    test::Arbre a;
    const auto p = a.Personne("P", "x", 'H'), m = a.Personne("M", "x", 'F');
    const auto autre = a.Personne("Autre", "x", 'H');
    a.b().CreeMariage(p, m);
    const auto tard = a.Enfant(p, m, "tard", 'H', "1860");
    const auto tot = a.Enfant(p, m, "tot", 'H', "1850");
    const auto avant = a.Enfant(autre, m, "avant", 'H', "1840");
    ArbreGraphe seul, couple;
    ArbreDescendants(a.b(), p, {3, false, {}}, false, seul);
    ASSERT_EQ(seul.Nombre(), 3u);
    EXPECT_EQ(seul.Personne(2), tot);
    EXPECT_EQ(seul.Personne(3), tard);
    ArbreDescendants(a.b(), p, {3, false, {}}, true, couple);
    ASSERT_EQ(couple.Nombre(), 4u);
    EXPECT_EQ(couple.Personne(2), avant);
    EXPECT_EQ(couple.NbFeuilles(), 3u);

    // A parent loop in a damaged base ends at the levels asked.
    a.Parents(p, tot, 0);
    ArbreGraphe boucle;
    ArbreDescendants(a.b(), p, {50, false, {}}, false, boucle);
    EXPECT_LT(boucle.Nombre(), 10u);
}

TEST(ArbreGraphe, StopEndsWithNoChart) {
    Ascendance f;
    int appels = 0;
    OptionsGraphe o;
    o.arret = [&appels] { return ++appels > 3; };
    EXPECT_EQ(GrapheIndividu(f.b(), f.fs, "/g.svp", f.sosa[1], 3, 0, o,
                             MetriqueDejaVu::Instance()),
              FinGraphe::Arrete);
    EXPECT_FALSE(f.fs.existe("/g.svp"));
    EXPECT_FALSE(f.fs.existe(CheminTemporaire("/g.svp")));
}

// --- Sheets and cells ----------------------------------------------------------------

TEST(PlanGraphe, SheetsAndCellsFollowTheMeasures) {
    OptionsGraphe o;
    o.direction = 2;
    // 40 levels, short form: three sheets across.
    EXPECT_EQ(CalculePlan(40, 0, 1, 1, o).geo.feuillesH, 3);
    // Horizontal, 30 leaves: 30 / 6 + 1 sheets down.
    EXPECT_EQ(CalculePlan(4, 0, 30, 1, o).geo.feuillesV, 6);
    o.detaille = true;
    EXPECT_EQ(CalculePlan(4, 0, 30, 1, o).geo.feuillesV, 6);
    EXPECT_EQ(CalculePlan(4, 0, 29, 1, o).geo.feuillesV, 6);
    EXPECT_EQ(CalculePlan(4, 0, 28, 1, o).geo.feuillesV, 5);

    o = OptionsGraphe{};
    const PlanGraphe v = CalculePlan(3, 2, 8, 4, o); // vertical, short
    EXPECT_EQ(v.geo.feuillesV, 2);                   // (3 + 2) / 6 + 1, rounded
    EXPECT_EQ(v.geo.feuillesH, 1);
    const Papier& a4 = o.papier;
    EXPECT_EQ(v.geo.largeurTotale, a4.largeur);
    EXPECT_EQ(v.geo.hauteurTotale, 2 * (a4.hauteur - a4.hauteur / 16) + a4.hauteur / 16);
    EXPECT_EQ(v.geo.largeurUtile, v.geo.largeurTotale - a4.largeur / 8);
    EXPECT_EQ(v.pasNiveau, v.geo.hauteurUtile / 6); // rows: (5 / 2 + 1) * 2
    EXPECT_EQ(v.pasFeuille, v.geo.largeurUtile / 16);
    EXPECT_EQ(v.origineNiveau, a4.hauteur / 16 + 4 * v.pasNiveau);
    // The narrower descendant side is centred by half the difference.
    EXPECT_EQ(v.decalageAsc, 0);
    EXPECT_EQ(v.decalageDesc, 4 * v.geo.largeurUtile / 8 / 2);

    o.feuillesH = 3;
    o.feuillesV = 1;
    const PlanGraphe f = CalculePlan(3, 2, 8, 4, o);
    EXPECT_EQ(f.geo.feuillesH, 3);
    EXPECT_EQ(f.geo.feuillesV, 1);
}

// --- Places ------------------------------------------------------------------------

TEST(GrapheIndividu, ParentsStandOverTheMiddleOfTheirSubtree) {
    Ascendance f;
    OptionsGraphe o;
    PlanGraphe plan;
    ASSERT_EQ(GrapheIndividu(f.b(), f.fs, "/g.svp", f.sosa[1], 3, 0, o,
                             MetriqueDejaVu::Instance(), &plan),
              FinGraphe::Termine);
    EnteteGabarit t;
    const auto v = Relit(f.fs, "/g.svp", &t);
    EXPECT_EQ(t.feuillesH, plan.geo.feuillesH);
    EXPECT_EQ(t.largeurTotale, plan.geo.largeurTotale);
    // The frame first: four plain lines.
    ASSERT_GE(v.size(), 4u);
    for (int k = 0; k < 4; ++k) EXPECT_EQ(v[k].style, kStyleCadre);

    const std::int64_t marge = o.papier.largeur / 16, utile = plan.geo.largeurUtile;
    for (int n = 1; n < 16; ++n) {
        const auto b = Boites(v, f.sosa[n]);
        ASSERT_EQ(b.size(), 1u) << n;
        int g = 0;
        while ((2 << g) <= n) ++g;                 // generation of Sosa n
        const int rang = n - (1 << g), cases = 1 << g; // place within it
        EXPECT_NEAR(b[0].x1, marge + (rang + 0.5) * utile / cases, 1) << n;
        EXPECT_EQ(b[0].y1, plan.origineNiveau - g * plan.pasNiveau) << n;
    }
    EXPECT_EQ(StyleBoite::Depuis(Boites(v, f.sosa[1])[0].style).genre, BoiteRacine);
    // Each parent is joined to its child: one link per box above the root.
    const auto liens = std::count_if(v.begin(), v.end(), [](const EnregGabarit& e) {
        return e.type == 'L' && e.style == kStyleLien;
    });
    EXPECT_EQ(liens, 14);
}

TEST(GrapheIndividu, DescendantsStandOnTheOtherSide) {
    Ascendance f;
    const auto enfant = f.Enfant(f.sosa[1], 0, "enfant");
    for (int direction : {0, 1, 2, 3}) {
        OptionsGraphe o;
        o.direction = direction;
        PlanGraphe plan;
        GrapheIndividu(f.b(), f.fs, "/g.svp", f.sosa[1], 1, 1, o, MetriqueDejaVu::Instance(),
                       &plan);
        const auto v = Relit(f.fs, "/g.svp");
        const auto pere = Boites(v, f.sosa[2])[0], fils = Boites(v, enfant)[0];
        const auto racine = Boites(v, f.sosa[1])[0];
        if (direction < 2) {
            EXPECT_EQ((pere.y1 - racine.y1) * (fils.y1 - racine.y1) < 0, true) << direction;
            EXPECT_EQ(pere.y1 < racine.y1, direction == 0);
        } else {
            EXPECT_EQ((pere.x1 - racine.x1) * (fils.x1 - racine.x1) < 0, true) << direction;
            EXPECT_EQ(pere.x1 < racine.x1, direction == 2);
        }
    }
}

TEST(GrapheCouple, SpousesJoinedAndChildrenMarked) {
    test::Arbre a;
    const auto p = a.Personne("P", "x", 'H'), m1 = a.Personne("Un", "x", 'F');
    const auto m2 = a.Personne("Deux", "x", 'F');
    const auto pp = a.Personne("PP", "x", 'H');
    a.Parents(p, pp, 0);
    const auto mariage = a.b().CreeMariage(p, m1);
    a.b().CreeMariage(p, m2);
    const auto c1 = a.Enfant(p, m1, "c1"), c2 = a.Enfant(p, m2, "c2");
    OptionsGraphe o;
    ASSERT_EQ(GrapheCouple(a.b(), a.fs, "/c.svp", mariage, 2, 2, o, MetriqueDejaVu::Instance()),
              FinGraphe::Termine);
    const auto v = Relit(a.fs, "/c.svp");
    const auto bp = Boites(v, p), bm = Boites(v, m1);
    ASSERT_EQ(bp.size(), 1u);
    ASSERT_EQ(bm.size(), 1u);
    EXPECT_EQ(bp[0].y1, bm[0].y1);
    EXPECT_LT(bp[0].x1, bm[0].x1);
    EXPECT_EQ(std::count_if(v.begin(), v.end(),
                            [](const EnregGabarit& e) {
                                return e.type == 'L' && e.style == kStyleMariage;
                            }),
              1);
    // The child of the second marriage carries the mark of its mother.
    const StyleBoite s1 = StyleBoite::Depuis(Boites(v, c1)[0].style);
    const StyleBoite s2 = StyleBoite::Depuis(Boites(v, c2)[0].style);
    EXPECT_EQ(s1.rangMariage, 0);
    EXPECT_EQ(s2.rangMariage, 2);
    EXPECT_EQ(TexteBoite(a.b(), c2, s2, o).substr(0, 6), "M) b) ");
    EXPECT_EQ(TexteBoite(a.b(), c1, s1, o).substr(0, 6), "Enfant");
}

TEST(TexteBoite, LinesOfTheBox) {
    test::Arbre a;
    const auto p = a.b().CreePersonne("MARTIN", "Jean", "", 'H', "1850", "", "1910");
    const auto f = a.Personne("DURAND", "Marie", 'F');
    a.b().CreeMariage(p, f, "1875");
    OptionsGraphe o;
    EXPECT_EQ(TexteBoite(a.b(), p, {}, o), "MARTIN#Jean#\xB0 1850#\x86 1910");
    o.dates = false;
    o.detaille = true;
    EXPECT_EQ(TexteBoite(a.b(), p, {}, o), "MARTIN#Jean#(1)#a-Marie DURAND#  \xD7 1875");
    EXPECT_EQ(TexteBoite(a.b(), 999, {}, o), "");
}

// --- The page template -----------------------------------------------------------------

TEST(Gabarit, WrittenReadAndWrittenAgainIsTheSame) {
    SystemeMemoire fs;
    {
        EcrivainGabarit g(fs, "/a.svp", {2, 3, 40000, 50000});
        g.TraitGraphe(10, 20, 30, -40, -1);
        g.BoiteGraphe(100, 200, 50, 25, StyleBoite{BoiteRacine, 3, true, true}.Code(), 4000000000u);
        g.TexteGraphe("Le \"grand\" arbre#ligne deux\r\n", 5, 6, 1);
        g.TexteGraphe("", 0, 0, 0);
        EXPECT_EQ(g.DernierX(), 100);
        EXPECT_TRUE(g.Termine());
    }
    const std::string premier = lireTout(fs, "/a.svp");
    EXPECT_EQ(premier.substr(0, premier.find('\n') + 1), "2,3,40000,50000\r\n");
    EXPECT_NE(premier.find("\"T\",\"Le \x94grand\x94 arbre#ligne deux  \",5,6,1\r\n"),
              std::string::npos);
    EnteteGabarit t;
    const auto v = Relit(fs, "/a.svp", &t);
    ASSERT_EQ(v.size(), 4u);
    EXPECT_EQ(v[1].personne, 4000000000u);
    const StyleBoite style{BoiteRacine, 3, true, true};
    EXPECT_EQ(v[1].style, style.Code());
    {
        EcrivainGabarit g(fs, "/b.svp", t);
        for (const auto& e : v) g.Ecrit(e);
        g.Termine();
    }
    EXPECT_EQ(lireTout(fs, "/b.svp"), premier);

    // No record, no file.
    EcrivainGabarit vide(fs, "/vide.svp", t);
    EXPECT_FALSE(vide.Termine());
    EXPECT_FALSE(fs.existe("/vide.svp"));
}

TEST(Gabarit, DamagedFilesGiveAClearError) {
    SystemeMemoire fs;
    const std::string tete = "1,1,1000,1000\r\n";
    const std::vector<std::pair<std::string, std::string>> cas = {
        {"", "vide"},
        {"1,1,1000\r\n", "4 nombres"},
        {"0,1,1000,1000\r\n", "feuilles"},
        {"20000,20000,1000,1000\r\n", "feuilles"},
        {"1,1,-5,1000\r\n", "taille"},
        {"\"a\",1,1000,1000\r\n", "4 nombres"},
        {tete + "\"C\",1,2,3,4,5\r\n", "ligne 2"},
        {tete + "\"X\",1,2\r\n", "inconnu"},
        {tete + "\"T\",\"ouvert,1,2,0\r\n", "illisible"},
        {tete + "\"L\",1,2,3,4,99999\r\n", "hors limites"},
        {tete + "\"L\",1,2,3,99999999999,0\r\n", "hors limites"},
        {tete + "\"C\",1,2,-3,4,0,1\r\n", "hors limites"},
        {tete + "\"L\",1,2,3,4,x\r\n", "nombre attendu"},
        {tete + "\"L\",1,2,3,4,5,6,7,8,9\r\n", "illisible"},
        {tete + "\"L\",1,2,3,4,5\r\n" + std::string(100000, 'A') + "\r\n", "trop longue"},
        {tete + "\"L\",1,2\"x\",3,4,5\r\n", "illisible"},
        {tete + std::string("\x00\xFF\x01,\"\r\n", 6), "illisible"},
    };
    for (const auto& [contenu, attendu] : cas) {
        ecrireTout(fs, "/d.svp", contenu);
        try {
            Relit(fs, "/d.svp");
            ADD_FAILURE() << "accepted: " << contenu.substr(0, 60);
        } catch (const ErreurGabarit& e) {
            EXPECT_NE(std::string(e.what()).find(attendu), std::string::npos)
                << e.what() << " / " << contenu.substr(0, 60);
        }
    }
    // The last line may lack its end; blank lines are nothing.
    ecrireTout(fs, "/d.svp", "1,1,1000,1000\n\n\"L\",1,2,3,4,5");
    EXPECT_EQ(Relit(fs, "/d.svp").size(), 1u);
}

TEST(Gabarit, MutatedTemplatesAreReadOrRefusedNeverMore) {
    // A real chart, then bytes changed, cut and repeated at random: each
    // reading ends on the last record or on a clear error.
    Ascendance f;
    GrapheIndividu(f.b(), f.fs, "/v.svp", f.sosa[1], 3, 0, OptionsGraphe{},
                   MetriqueDejaVu::Instance());
    const std::string sain = lireTout(f.fs, "/v.svp");
    std::mt19937 alea(11);
    const char octets[] = {'"', ',', '\r', '\n', '-', '9', '0', 'C', 'L', 'T', '\0', '\xFF'};
    int refuses = 0;
    for (int essai = 0; essai < 1500; ++essai) {
        std::string m = sain;
        for (int k = 0, n = 1 + static_cast<int>(alea() % 4); k < n; ++k) {
            const std::size_t i = alea() % m.size();
            switch (alea() % 3) {
            case 0: m[i] = octets[alea() % sizeof octets]; break;
            case 1: m.erase(i, alea() % 20); break;
            default: m.insert(i, m.substr(i, alea() % 40)); break;
            }
            if (m.empty()) m = "x";
        }
        ecrireTout(f.fs, "/m.svp", m);
        try {
            Relit(f.fs, "/m.svp");
            Enregistreuse s;
            ImprimePages(f.fs, "/m.svp", s, OptionsPages{});
        } catch (const ErreurGabarit&) {
            ++refuses;
        }
    }
    EXPECT_GT(refuses, 500);
}

// --- The page writer -------------------------------------------------------------------

TEST(ImprimePages, WindowsOverlapAndBoxesOnTheEdgeShowTwice) {
    SystemeMemoire fs;
    OptionsPages o;
    const Geometrie geo = PreparePage(o.papier, 2, 1);
    const std::int64_t w = o.papier.largeur, pas = w - w / 16;
    {
        EcrivainGabarit g(fs, "/p.svp", geo.Entete());
        g.BoiteGraphe(pas + w / 32, 5000, 400, 300, 0, 0); // in the overlap
        g.BoiteGraphe(w / 4, 6000, 400, 300, 0, 0);        // first sheet only
        g.BoiteGraphe(pas + w - 100, 7000, 400, 300, 0, 0); // hangs over the right edge
        g.TraitGraphe(w / 2, 1000, pas + w / 2, 2000, kStyleLien); // a link across
        g.TexteGraphe("Titre", w / 2, 300, kStyleTitre);
        g.Termine();
    }
    Enregistreuse s;
    o.libelleFeuille = "Feuille";
    ASSERT_EQ(ImprimePages(fs, "/p.svp", s, o), FinPages::Termine);
    ASSERT_EQ(s.pages.size(), 2u);
    EXPECT_EQ(s.Nombre({1, 1}, 'C'), 2u);
    EXPECT_EQ(s.Nombre({1, 2}, 'C'), 2u);
    // The link is drawn on both sheets and meets itself once they are glued.
    Trace l1{}, l2{};
    for (const auto& t : s.pages[{1, 1}]) if (t.quoi == 'L') l1 = t;
    for (const auto& t : s.pages[{1, 2}]) if (t.quoi == 'L') l2 = t;
    EXPECT_DOUBLE_EQ(l1.x1 - l2.x1, static_cast<double>(pas));
    EXPECT_DOUBLE_EQ(l1.y2, l2.y2);
    // A box's rectangle is reduced by 5 % of its half size.
    const auto& b = s.pages[{1, 1}][0];
    EXPECT_DOUBLE_EQ(b.x2 - b.x1, 2 * 0.95 * 400);
    EXPECT_DOUBLE_EQ(b.x1 + 0.95 * 400, static_cast<double>(pas + w / 32));
    // Sheet marks: the first sheet on its right, the second on its left.
    auto marques = [&s](std::pair<int, int> p) {
        int n = 0;
        for (const auto& t : s.pages[p]) n += t.quoi == 'T' && t.texte.rfind("Feuille : ", 0) == 0;
        return n;
    };
    EXPECT_EQ(marques({1, 1}), 1);
    EXPECT_EQ(marques({1, 2}), 1);
    EXPECT_EQ(s.Nombre({1, 1}, 'T'), 2u); // the title stands on the first
}

TEST(ImprimePages, SheetMarksOnEveryEdgeShared) {
    SystemeMemoire fs;
    OptionsPages o;
    auto marques = [&](int h, int v) {
        {
            EcrivainGabarit g(fs, "/m.svp", PreparePage(o.papier, h, v).Entete());
            g.TraitGraphe(0, 0, 1, 1, kStyleCadre);
            g.Termine();
        }
        Enregistreuse s;
        ImprimePages(fs, "/m.svp", s, o);
        std::map<std::pair<int, int>, std::size_t> r;
        for (auto& [p, t] : s.pages) r[p] = s.Nombre(p, 'T');
        return r;
    };
    EXPECT_EQ(marques(1, 1)[std::pair(1, 1)], 0u);
    auto m = marques(3, 3);
    EXPECT_EQ(m.size(), 9u);
    EXPECT_EQ(m[std::pair(1, 1)], 2u);
    EXPECT_EQ(m[std::pair(2, 2)], 4u);
    EXPECT_EQ(m[std::pair(3, 3)], 2u);
    EXPECT_EQ(m[std::pair(1, 2)], 3u);
}

TEST(ImprimePages, MissingStoppedAndDamaged) {
    SystemeMemoire fs;
    OptionsPages o;
    Enregistreuse s;
    EXPECT_EQ(ImprimePages(fs, "/absent.svp", s, o), FinPages::Absent);
    {
        EcrivainGabarit g(fs, "/s.svp", PreparePage(o.papier, 2, 2).Entete());
        g.TraitGraphe(0, 0, 1, 1, kStyleCadre);
        g.Termine();
    }
    int feuilles = 0;
    o.arret = [&feuilles] { return ++feuilles > 2; };
    EXPECT_EQ(ImprimePages(fs, "/s.svp", s, o), FinPages::Arrete);
    EXPECT_EQ(s.pages.size(), 2u);
    EXPECT_FALSE(fs.existe("/s.svp"));
    ecrireTout(fs, "/s.svp", "1,1,100,100\r\n\"Q\"\r\n");
    EXPECT_THROW(ImprimePages(fs, "/s.svp", s, OptionsPages{}), ErreurGabarit);
}

TEST(AjusteTexte, FontWithinLimitsAndCutsWithDots) {
    const Metrique& m = MetriqueDejaVu::Instance();
    // A roomy box: the largest font, no cut.
    auto t = AjusteTexte(m, "A#B", 20000, 20000, 12);
    EXPECT_EQ(t.police.points, 12);
    EXPECT_EQ(t.lignes, (std::vector<std::string>{"A", "B"}));
    // A narrow box: the smallest font, lines cut at blanks, a word cut.
    t = AjusteTexte(m, "Jean Pierre Marie#Anticonstitutionnellement", 900, 20000, 10);
    EXPECT_EQ(t.police.points, 6);
    for (const auto& l : t.lignes) EXPECT_LE(m.Largeur(l, t.police), 900) << l;
    EXPECT_EQ(t.lignes.back().substr(t.lignes.back().size() - 3), "...");
    EXPECT_GE(t.lignes.size(), 3u);
    // A low box keeps the lines that fit, the last ended with "...".
    const double h = m.Hauteur({6, false});
    t = AjusteTexte(m, "un#deux#trois#quatre", 20000, 2.5 * h, 10);
    ASSERT_EQ(t.lignes.size(), 2u);
    EXPECT_EQ(t.lignes[1], "deux...");
    EXPECT_TRUE(AjusteTexte(m, "", 100, 100, 10).lignes.empty());
}
