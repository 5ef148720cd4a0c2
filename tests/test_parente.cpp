// The relationship searches and their graph, the cousinages and the branch
// outlines, over small trees built in memory and random generated bases.
#include "kinship/branches.h"
#include "kinship/cousins.h"
#include "kinship/parente.h"
#include "charts/gabarit.h"
#include "support/arbres.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

using namespace sylvane;
using sylvane::test::Arbre;

namespace {

// Two grandparents A and B; their children C and D; C's son E marries D's
// daughter F (first cousins: the implex); their children G and H. I is a
// stranger married to nobody.
struct Cousins : Arbre {
    std::uint32_t a, bm, c, d, e, f, g, h, i;
    Cousins() {
        a = Personne("Lebrun", "Jean", 'H', "1718");
        bm = Personne("Morel", "Anne", 'F', "1722");
        base->CreeMariage(a, bm);
        c = Enfant(a, bm, "Claude", 'H', "1742");
        d = Enfant(a, bm, "Denise", 'F', "1745");
        const std::uint32_t cw = Personne("Collin", "Marguerite", 'F', "1746");
        const std::uint32_t dh = Personne("Durand", "Jacques", 'H', "1744");
        base->CreeMariage(c, cw);
        base->CreeMariage(dh, d);
        e = Enfant(c, cw, "Etienne", 'H', "1771");
        f = Enfant(dh, d, "Francoise", 'F', "1772");
        base->CreeMariage(e, f);
        g = Enfant(e, f, "Gilles", 'H', "1797");
        h = Enfant(e, f, "Helene", 'F', "");
        i = Personne("Autre", "Isidore", 'H', "1800");
    }
};

bool Contient(const std::vector<std::uint32_t>& v, std::uint32_t x) {
    return std::find(v.begin(), v.end(), x) != v.end();
}

TEST(RechercheParente, NearestCommonPersonsAndTheEmptyCases) {
    Cousins t;
    // Siblings: both parents at the first depth.
    auto r = AscendanceCommune(t.b(), {t.g, t.h}, 10);
    ASSERT_EQ(r.fin, FinParente::Trouve);
    EXPECT_EQ(r.generation, 1);
    EXPECT_EQ(r.communs, (std::vector<std::uint32_t>{t.e, t.f}));
    EXPECT_EQ(r.liste, (std::vector<std::uint32_t>{t.e, t.f, t.g, t.h}));
    // A person and its own parent: the parent, seen in the first walk.
    r = AscendanceCommune(t.b(), {t.g, t.e}, 10);
    ASSERT_EQ(r.fin, FinParente::Trouve);
    EXPECT_EQ(r.generation, 1);
    EXPECT_TRUE(Contient(r.communs, t.e));
    // Second cousins through the implex: the cousins' parents C and D meet
    // at A and B, two generations up from E and F.
    r = AscendanceCommune(t.b(), {t.e, t.f}, 10);
    ASSERT_EQ(r.fin, FinParente::Trouve);
    EXPECT_EQ(r.generation, 2);
    EXPECT_EQ(r.communs, (std::vector<std::uint32_t>{t.a, t.bm}));
    // Nothing in common, one person alone, depth 1: no result.
    EXPECT_EQ(AscendanceCommune(t.b(), {t.g, t.i}, 10).fin, FinParente::Rien);
    EXPECT_EQ(AscendanceCommune(t.b(), {t.g}, 10).fin, FinParente::Rien);
    EXPECT_EQ(AscendanceCommune(t.b(), {t.g, t.h}, 1).fin, FinParente::Rien);
    // Too shallow for the grandparents.
    EXPECT_EQ(AscendanceCommune(t.b(), {t.e, t.f}, 2).fin, FinParente::Rien);
    // Descendance: A and B meet in C and D at once; C and D in G and H
    // (through E and F, found first).
    r = DescendanceCommune(t.b(), {t.c, t.d}, 10);
    ASSERT_EQ(r.fin, FinParente::Trouve);
    EXPECT_EQ(r.generation, 2);
    EXPECT_EQ(r.communs, (std::vector<std::uint32_t>{t.g, t.h}));
    EXPECT_EQ(DescendanceCommune(t.b(), {t.g, t.i}, 10).fin, FinParente::Rien);
    // A stop ends the search without a result.
    Interaction io;
    io.arret = [] { return true; };
    EXPECT_EQ(AscendanceCommune(t.b(), {t.g, t.h}, 10, io).fin, FinParente::Arrete);
}

TEST(RechercheParente, ParentLoopsEnd) {
    Arbre t;
    const auto x = t.Personne("Boucle", "X"), y = t.Personne("Boucle", "Y", 'F');
    const auto z = t.Personne("Boucle", "Z");
    t.Parents(x, y, 0);
    t.Parents(y, z, 0);
    t.Parents(z, x, 0); // x is its own great-grandchild
    const auto w = t.Personne("Hors", "W");
    EXPECT_EQ(AscendanceCommune(t.b(), {x, w}, 200).fin, FinParente::Rien);
    EXPECT_EQ(DescendanceCommune(t.b(), {x, w}, 200).fin, FinParente::Rien);
    auto r = AscendanceCommune(t.b(), {x, y}, 200);
    ASSERT_EQ(r.fin, FinParente::Trouve);
    GrapheParente gr(t.b(), r.liste, 200);
    ASSERT_TRUE(gr.Construit());
    EXPECT_EQ(gr.NbNoeuds(), 3u);
    for (const auto& n : gr.Noeuds()) {
        EXPECT_GE(n.niveauHaut, 1);
        EXPECT_LE(n.niveauHaut, 3);
    }
}

TEST(GrapheParente, PathsLevelsYearsAndMarriages) {
    Cousins t;
    const auto r = AscendanceCommune(t.b(), {t.g, t.h}, 10);
    // The first listed person is the root; the graph of the second cousins
    // G and I's... here: G, H and the common grandparents A and B, reached
    // through both lines of the implex.
    GrapheParente gr(t.b(), {t.a, t.g, t.h}, 10);
    ASSERT_TRUE(gr.Construit());
    std::set<std::uint32_t> personnes;
    for (const auto& n : gr.Noeuds()) personnes.insert(n.personne);
    EXPECT_EQ(personnes,
              (std::set<std::uint32_t>{t.a, t.c, t.d, t.e, t.f, t.g, t.h}));
    EXPECT_EQ(gr.NbNoeuds(), personnes.size()) << "a person is one node";
    auto niveau = [&gr](std::uint32_t p) { return gr.Niveau(gr.NoeudDe(p)); };
    EXPECT_EQ(niveau(t.a), 1);
    EXPECT_EQ(niveau(t.c), 2);
    EXPECT_EQ(niveau(t.d), 2);
    EXPECT_EQ(niveau(t.e), 3);
    EXPECT_EQ(niveau(t.g), 4);
    EXPECT_EQ(niveau(t.h), 4);
    EXPECT_EQ(gr.NbNiveaux(), 4);
    const auto& g = gr.Noeuds()[gr.NoeudDe(t.g) - 1];
    EXPECT_EQ(gr.Noeuds()[g.pere - 1].personne, t.e);
    EXPECT_EQ(gr.Noeuds()[g.mere - 1].personne, t.f);
    // H has no year: three decades after its parents'.
    EXPECT_EQ(gr.Noeuds()[gr.NoeudDe(t.h) - 1].annee, "1800");
    // Rank by birth year: A first, G and H last.
    EXPECT_EQ(gr.Noeuds()[gr.Rang().front() - 1].personne, t.a);
    // The cousins' marriage joins two nodes.
    ASSERT_EQ(gr.LiensMariage().size(), 1u);
    // No two boxes overlap; parents stand above their children.
    std::int64_t l = 0, h = 0;
    const auto places = gr.Places(&l, &h);
    for (std::size_t x = 0; x < places.size(); ++x) {
        for (std::size_t y = x + 1; y < places.size(); ++y)
            EXPECT_FALSE(places[x].y == places[y].y &&
                         std::abs(places[x].x - places[y].x) < GrapheParente::kLargeurBoite);
        for (std::size_t parent : {gr.Noeuds()[x].pere, gr.Noeuds()[x].mere})
            if (parent) {
                EXPECT_LT(places[parent - 1].y, places[x].y);
            }
    }
    // Related persons of E: parents, spouse, children, and who is drawn.
    const auto proches = gr.Proches(gr.NoeudDe(t.e));
    EXPECT_TRUE(std::any_of(proches.begin(), proches.end(), [&](const Proche& p) {
        return p.genre == Proche::Conjoint && p.personne == t.f && p.dansGraphe;
    }));
    const std::uint32_t cw = t.b().LitMere(t.e);
    EXPECT_TRUE(std::any_of(proches.begin(), proches.end(), [&](const Proche& p) {
        return p.genre == Proche::Parent && p.personne == cw && !p.dansGraphe;
    }));
    gr.Ajoute(cw);
    EXPECT_EQ(gr.Noeuds()[gr.NoeudDe(t.e) - 1].mere, gr.NoeudDe(cw));
    EXPECT_EQ(niveau(cw), niveau(t.c)) << "a spouse with no parents stands by the other";
    // Taking D out drops F's line up: F stays, joined by its children.
    gr.Ecarte(gr.NoeudDe(t.d));
    EXPECT_EQ(gr.NoeudDe(t.d), 0u);
    EXPECT_NE(gr.NoeudDe(t.f), 0u);
    EXPECT_NE(gr.NoeudDe(t.a), 0u);
    (void)r;
}

TEST(GrapheParente, AListedParentIsJoinedWhateverTheOrder) {
    Cousins t;
    for (const auto& liste : {std::vector<std::uint32_t>{t.g, t.e},
                              std::vector<std::uint32_t>{t.e, t.g}}) {
        GrapheParente gr(t.b(), liste, 10);
        ASSERT_TRUE(gr.Construit());
        ASSERT_EQ(gr.NbNoeuds(), 2u);
        EXPECT_EQ(gr.Noeuds()[gr.NoeudDe(t.g) - 1].pere, gr.NoeudDe(t.e));
    }
    // A too short depth finds no path: only the listed persons.
    GrapheParente court(t.b(), {t.a, t.g}, 2);
    ASSERT_TRUE(court.Construit());
    EXPECT_EQ(court.NbNoeuds(), 2u);
}

TEST(GrapheParente, DrawingThroughTheTemplate) {
    Cousins t;
    GrapheParente gr(t.b(), {t.a, t.g, t.h}, 10);
    ASSERT_TRUE(gr.Construit());
    const Geometrie geo = gr.EcritGabarit(t.fs, "/graphe.svp", Papier{}, "Parent\xE9");
    LecteurGabarit lecteur(t.fs, "/graphe.svp");
    EXPECT_EQ(lecteur.Entete().feuillesH, geo.feuillesH);
    std::map<char, int> types;
    std::set<std::uint32_t> boites;
    int mariages = 0;
    for (EnregGabarit e; lecteur.Suivant(e);) {
        ++types[e.type];
        if (e.type == 'C') {
            boites.insert(e.personne);
            EXPECT_GE(e.x1 - e.x2, 0);
            EXPECT_LE(e.x1 + e.x2, geo.largeurTotale);
            EXPECT_LE(e.y1 + e.y2, geo.hauteurTotale);
        }
        if (e.type == 'L' && e.style == kStyleMariage) ++mariages;
    }
    EXPECT_EQ(boites.size(), gr.NbNoeuds());
    EXPECT_EQ(types['T'], 1);
    EXPECT_EQ(mariages, 1);
    EXPECT_EQ(types['L'], 4 + 8 + 1) << "frame, parent links, marriage";
}

// Random bases of small generations with much implex: the search must
// give the depth and the persons that plain ancestor sets give, and the
// graph must hold every common person.
TEST(GrapheParente, RandomBasesAgreeWithAncestorSets) {
    for (std::uint32_t graine = 1; graine <= 12; ++graine) {
        Arbre t;
        std::mt19937 alea(graine);
        const int generations = 7, largeur = 14;
        std::vector<std::vector<std::uint32_t>> gen(generations);
        for (int k = 0; k < generations; ++k)
            for (int j = 0; j < largeur; ++j) {
                const auto p = t.Personne("N" + std::to_string(k), "P" + std::to_string(j),
                                          j % 2 ? 'F' : 'H', std::to_string(1500 + 30 * k));
                gen[static_cast<std::size_t>(k)].push_back(p);
                if (k == 0 || alea() % 5 == 0) continue;
                const auto& avant = gen[static_cast<std::size_t>(k - 1)];
                t.Parents(p, avant[2 * (alea() % (largeur / 2))],
                          avant[2 * (alea() % (largeur / 2)) + 1]);
            }
        // A planted common ancestor of two persons of the last generation.
        const auto x = gen.back()[0], y = gen.back()[1];
        const auto plante = t.Personne("Plante", "Ancetre", 'H', "1400");
        for (auto p : {x, y}) {
            std::uint32_t q = p;
            while (t.b().LitPere(q)) q = t.b().LitPere(q);
            t.Parents(q, plante, 0);
        }
        // Depth of each ancestor from each person.
        auto profondeurs = [&t](std::uint32_t p) {
            std::map<std::uint32_t, int> d{{p, 0}};
            std::vector<std::uint32_t> front{p};
            for (int k = 1; !front.empty(); ++k) {
                std::vector<std::uint32_t> suivant;
                for (auto q : front)
                    for (auto parent : {t.b().LitPere(q), t.b().LitMere(q)})
                        if (parent && !d.count(parent)) {
                            d[parent] = k;
                            suivant.push_back(parent);
                        }
                front = std::move(suivant);
            }
            return d;
        };
        const auto dx = profondeurs(x), dy = profondeurs(y);
        int attendu = 1000;
        for (const auto& [p, k] : dx)
            if (dy.count(p)) attendu = std::min(attendu, std::max(k, dy.at(p)));
        const auto r = AscendanceCommune(t.b(), {x, y}, 20);
        ASSERT_EQ(r.fin, FinParente::Trouve) << graine;
        EXPECT_EQ(r.generation, std::max(attendu, 1)) << graine;
        std::vector<std::uint32_t> communs;
        for (const auto& [p, k] : dx)
            if (dy.count(p) && k <= r.generation && dy.at(p) <= r.generation) communs.push_back(p);
        EXPECT_EQ(r.communs, communs) << graine;
        GrapheParente gr(t.b(), r.liste, 20);
        ASSERT_TRUE(gr.Construit());
        for (auto p : r.liste) EXPECT_NE(gr.NoeudDe(p), 0u) << graine;
        // With the planted ancestor listed, the graph joins it to X and Y.
        std::vector<std::uint32_t> liste{plante, x, y};
        GrapheParente complet(t.b(), liste, 20);
        ASSERT_TRUE(complet.Construit());
        for (auto p : {x, y}) {
            std::size_t n = complet.NoeudDe(p);
            std::set<std::size_t> vus;
            bool atteint = false;
            std::vector<std::size_t> pile{n};
            while (!pile.empty()) {
                const std::size_t k = pile.back();
                pile.pop_back();
                if (!k || !vus.insert(k).second) continue;
                if (complet.Noeuds()[k - 1].personne == plante) atteint = true;
                pile.push_back(complet.Noeuds()[k - 1].pere);
                pile.push_back(complet.Noeuds()[k - 1].mere);
            }
            EXPECT_TRUE(atteint) << graine;
        }
    }
}

// --- Cousinages ------------------------------------------------------------------

TEST(Cousinages, CouplesWhereLinesMeet) {
    Cousins t;
    // Second cousins E and F meet at the couple A and B, through C and D.
    Cousinages c(t.b());
    ASSERT_TRUE(c.Analyse({{t.e, false}, {t.f, false}}, 10));
    auto lignes = c.Lignes();
    ASSERT_EQ(lignes.size(), 1u);
    EXPECT_EQ(lignes[0].mari, t.a);
    EXPECT_EQ(lignes[0].femme, t.bm);
    EXPECT_EQ(lignes[0].nombre, 2u);
    EXPECT_EQ(lignes[0].cle, std::to_string(t.a) + "#" + std::to_string(t.bm) + "#" +
                                 std::to_string(t.e) + "#" + std::to_string(t.f) + "#");
    EXPECT_EQ(lignes[0].enfants.size(), 2u);
    EXPECT_EQ(lignes[0].rangMariage, 1);
    EXPECT_NE(TexteCousinage(lignes).find("<ul><li>* "), std::string::npos);
    EXPECT_EQ(TexteLienCousinage(lignes),
              std::to_string(t.e) + ";1\r\n" + std::to_string(t.f) + ";1\r\n");
    // A person alone makes no row; the stranger adds none.
    ASSERT_TRUE(c.Analyse({{t.g, false}, {t.i, false}}, 10));
    EXPECT_TRUE(c.Lignes().empty());
    // A subject against the others: only meetings with a subject's line.
    ASSERT_TRUE(c.Analyse({{t.e, true}, {t.f, false}, {t.i, false}}, 10));
    EXPECT_EQ(c.Lignes().size(), 1u);
    ASSERT_TRUE(c.Analyse({{t.i, true}, {t.e, false}, {t.f, false}}, 10));
    EXPECT_TRUE(c.Lignes().empty());
}

TEST(Cousinages, HalfSiblingsAndTheSixthLink) {
    Arbre t;
    const auto p = t.Personne("Pere", "Paul"), m1 = t.Personne("Mere", "Une", 'F'),
               m2 = t.Personne("Mere", "Deux", 'F');
    const auto a = t.Enfant(p, m1, "A"), b = t.Enfant(p, m2, "B");
    Cousinages c(t.b());
    ASSERT_TRUE(c.Analyse({{a, false}, {b, false}}, 5));
    auto lignes = c.Lignes();
    ASSERT_EQ(lignes.size(), 1u);
    EXPECT_EQ(lignes[0].mari, p);
    EXPECT_EQ(lignes[0].femme, 0u) << "the two mothers are not joined";
    // Six children of one couple each lead to a selected grandchild: six
    // persons in the row, five children's links.
    Arbre u;
    const auto gp = u.Personne("G", "P"), gm = u.Personne("G", "M", 'F');
    std::vector<Selectionne> sel;
    for (int k = 0; k < 6; ++k) {
        const auto e = u.Enfant(gp, gm, "E" + std::to_string(k));
        sel.push_back({u.Enfant(e, 0, "PE" + std::to_string(k)), false});
    }
    Cousinages c6(u.b());
    ASSERT_TRUE(c6.Analyse(sel, 5));
    lignes = c6.Lignes();
    ASSERT_EQ(lignes.size(), 1u);
    EXPECT_EQ(lignes[0].nombre, 6u);
    EXPECT_EQ(lignes[0].enfants.size(), 5u);
    // Too few generations to reach them.
    ASSERT_TRUE(c6.Analyse(sel, 2));
    EXPECT_TRUE(c6.Lignes().empty());
    const std::string js = ListeCousinsJs(u.b(), {sel[1].personne, sel[0].personne});
    EXPECT_EQ(js.rfind("function LoadListeCousins()\r\n{\r\n", 0), 0u);
    EXPECT_NE(js.find("ListeCousins[0] = new Cousin(\"Enfant PE0\"," +
                      std::to_string(sel[0].personne - 1) + ");"),
              std::string::npos);
}

// --- Branch outlines -------------------------------------------------------------

TEST(Branches, AscendanceOpensOnceAndPrintsWhatIsOpen) {
    Cousins t;
    Branche br(t.b(), false, t.g);
    EXPECT_EQ(br.Noeud(0).cle, "I1");
    EXPECT_EQ(br.Noeud(0).image, ImageDeuxParents);
    EXPECT_TRUE(br.AEnfants(0));
    br.Ouvre(0);
    br.Ouvre(0);
    ASSERT_EQ(br.Noeud(0).enfants.size(), 2u) << "opened twice, children once";
    const auto& pere = br.Noeud(br.Noeud(0).enfants[0]);
    EXPECT_EQ(pere.personne, t.e);
    EXPECT_NE(pere.texte.find('\xD7'), std::string::npos) << "the marriage behind the father";
    // Closed children print nothing.
    EXPECT_EQ(br.Lignes().size(), 3u);
    br.Developpe(0, 3);
    const auto lignes = br.Lignes();
    EXPECT_EQ(lignes.size(), 1u + 2 + 4 + 4);
    EXPECT_EQ(lignes[0].rfind(".1 - ", 0), 0u);
    // A pruned branch reaches no output.
    br.Ecarte(br.Noeud(0).enfants[1]);
    EXPECT_EQ(br.Lignes().size(), 1u + 1 + 2 + 2);
    EXPECT_EQ(br.Html("Ascendance").find(t.b().NomDates(t.f)), std::string::npos);
    EXPECT_NE(br.Rtf("Ascendance").find("\\plain \\f0\\fs16 "), std::string::npos);
    // A parent loop is only as deep as it is opened.
    Arbre u;
    const auto x = u.Personne("B", "X"), y = u.Personne("B", "Y");
    u.Parents(x, y, 0);
    u.Parents(y, x, 0);
    Branche boucle(u.b(), false, x);
    boucle.Developpe(0, 50);
    EXPECT_EQ(boucle.Lignes().size(), 51u) << "50 levels opened, the 51st shown";
}

TEST(Branches, DescendanceByMarriage) {
    Arbre t;
    const auto p = t.Personne("Pere", "Paul");
    const auto m1 = t.Personne("Mere", "Une", 'F'), m2 = t.Personne("Mere", "Deux", 'F');
    t.base->CreeMariage(p, m1);
    t.base->CreeMariage(p, m2);
    const auto a = t.Enfant(p, m1, "A"), b = t.Enfant(p, m2, "B"), c = t.Enfant(p, 0, "C");
    t.base->CreeMariage(a, t.Personne("Epouse", "A", 'F'));
    Branche br(t.b(), true, p);
    br.Ouvre(0);
    const auto& n = br.Noeud(0).enfants;
    ASSERT_EQ(n.size(), 3u);
    EXPECT_EQ(br.Noeud(n[0]).texte.rfind("a. ", 0), 0u);
    EXPECT_EQ(br.Noeud(n[1]).texte.rfind("b. ", 0), 0u);
    EXPECT_EQ(br.Noeud(br.Noeud(n[0]).enfants.at(0)).personne, a);
    EXPECT_EQ(br.Noeud(br.Noeud(n[0]).enfants.at(0)).image, ImageDeuxParents);
    EXPECT_EQ(br.Noeud(br.Noeud(n[1]).enfants.at(0)).personne, b);
    EXPECT_EQ(br.Noeud(br.Noeud(n[1]).enfants.at(0)).image, ImageEnfantSeul);
    EXPECT_EQ(br.Noeud(n[2]).personne, c) << "a child of no marriage comes last";
    const auto lignes = br.Lignes();
    EXPECT_EQ(lignes[1].rfind("  a. ", 0), 0u) << "a marriage is indented with blanks";
    EXPECT_EQ(lignes[2].rfind("...", 0), 0u);
    EXPECT_NE(br.Html("D").find("<OL TYPE=1>"), std::string::npos);
    EXPECT_EQ(LettreRang(14), "o");
    EXPECT_EQ(LettreRang(27), "");
    // One marriage: "." alone for the letter.
    Branche seul(t.b(), true, a);
    seul.Ouvre(0);
    EXPECT_EQ(seul.Noeud(seul.Noeud(0).enfants[0]).texte.rfind(". ", 0), 0u);
}

} // namespace
