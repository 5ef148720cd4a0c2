// The family view's layout: who is drawn at each reach, where, with which
// lines; the box count of the settings; hit-testing, arrow keys and the
// right-click menu.
#include "support/arbres.h"
#include "text/messages.h"
#include "ui/vue_famille.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

using namespace sylvane;
using Role = CaseFamille::Role;

namespace {

struct VueFamilleTest : ::testing::Test {
    test::Arbre a;
    Base& b = a.b();

    // CreeMariage writes the marriage in both spouses' lists.
    std::uint32_t Marie(std::uint32_t mari, std::uint32_t femme) { return b.CreeMariage(mari, femme); }
    DispositionFamille Dispose(std::uint32_t centre, int gauche, int droite, int niveau = 4) {
        ReglageVue v;
        v.niveau = niveau;
        v.porteeGauche = gauche;
        v.porteeDroite = droite;
        return DisposeFamille(b, a.params, centre, v);
    }
    static int Index(const DispositionFamille& d, std::uint32_t personne) {
        for (std::size_t i = 0; i < d.cases.size(); ++i)
            if (d.cases[i].personne == personne && !d.cases[i].repete) return static_cast<int>(i);
        return -1;
    }
    static std::multiset<std::uint32_t> Personnes(const DispositionFamille& d) {
        std::multiset<std::uint32_t> s;
        for (const auto& c : d.cases) s.insert(c.personne);
        return s;
    }
};

// What must hold of every layout: boxes inside the drawing and apart from
// each other, lines made of straight horizontal and vertical pieces that
// start and end on the edges of the boxes they join.
void Sain(const DispositionFamille& d) {
    for (std::size_t i = 0; i < d.cases.size(); ++i) {
        const Rect& r = d.cases[i].r;
        EXPECT_GE(r.x, 0);
        EXPECT_GE(r.y, 0);
        EXPECT_LE(r.droite(), d.largeur);
        EXPECT_LE(r.bas(), d.hauteur);
        for (std::size_t k = i + 1; k < d.cases.size(); ++k) {
            const Rect& s = d.cases[k].r;
            const bool separes = r.droite() <= s.x || s.droite() <= r.x || r.bas() <= s.y ||
                                 s.bas() <= r.y;
            EXPECT_TRUE(separes) << "boxes " << i << " and " << k << " overlap";
        }
    }
    for (const Trait& t : d.traits) {
        ASSERT_GE(t.points.size(), 2u);
        for (std::size_t k = 1; k < t.points.size(); ++k)
            EXPECT_TRUE(t.points[k].x == t.points[k - 1].x || t.points[k].y == t.points[k - 1].y);
        auto surBord = [](const Rect& r, Point p) {
            const bool cote = (p.x == r.x || p.x == r.droite()) && p.y >= r.y && p.y <= r.bas();
            const bool dessus = (p.y == r.y || p.y == r.bas()) && p.x >= r.x && p.x <= r.droite();
            return cote || dessus;
        };
        EXPECT_TRUE(surBord(d.cases[t.de].r, t.points.front()));
        EXPECT_TRUE(surBord(d.cases[t.vers].r, t.points.back()));
    }
}

} // namespace

TEST_F(VueFamilleTest, AscendantsStandBetweenTheirParentsColumnByColumn) {
    const auto gpp = a.Personne("Durand", "Louis"), gmp = a.Personne("Petit", "Rose", 'F');
    const auto gpm = a.Personne("Morel", "Paul"), gmm = a.Personne("Roux", "Anne", 'F');
    const auto pere = a.Enfant(gpp, gmp, "Jean"), mere = a.Enfant(gpm, gmm, "Marie", 'F');
    const auto moi = a.Enfant(pere, mere, "Pierre");
    const auto d = Dispose(moi, 2, 1, 1);
    Sain(d);
    EXPECT_EQ(d.etat, ' ');
    EXPECT_EQ(d.limite, 8);
    ASSERT_EQ(d.cases.size(), 7u);
    EXPECT_EQ(d.cases[d.centre].personne, moi);
    EXPECT_TRUE(d.cases[d.centre].enCours);
    const auto& p = d.cases[Index(d, pere)];
    const auto& m = d.cases[Index(d, mere)];
    const auto& c = d.cases[d.centre];
    EXPECT_EQ(p.colonne, -1);
    EXPECT_EQ(d.cases[Index(d, gmm)].colonne, -2);
    EXPECT_LT(p.r.x, c.r.x);
    EXPECT_LT(d.cases[Index(d, gpp)].r.x, p.r.x);
    EXPECT_LT(p.r.y, m.r.y); // father above mother
    EXPECT_NEAR(c.r.milieuY(), (p.r.milieuY() + m.r.milieuY()) / 2, 1);
    EXPECT_NEAR(p.r.milieuY(),
                (d.cases[Index(d, gpp)].r.milieuY() + d.cases[Index(d, gmp)].r.milieuY()) / 2, 1);
    EXPECT_EQ(d.traits.size(), 6u);
    // Texts: first name, name, and no false kinship marks.
    EXPECT_EQ(c.lignes[0], "Pierre");
    EXPECT_EQ(c.lignes[1], "Enfant");
    for (const auto& x : d.cases) EXPECT_FALSE(x.repete);

    // Reach 1 on the left shows the parents only; reach 0 the person alone.
    EXPECT_EQ(Dispose(moi, 1, 0).cases.size(), 3u);
    const auto seul = Dispose(moi, 0, 0);
    ASSERT_EQ(seul.cases.size(), 1u);
    EXPECT_TRUE(seul.traits.empty());
    EXPECT_TRUE(Dispose(0, 2, 1).cases.empty());
}

TEST_F(VueFamilleTest, AMissingParentLeavesAStraightLineAndNoGap) {
    const auto gm = a.Personne("Roux", "Anne", 'F');
    const auto mere = a.Enfant(0, gm, "Marie", 'F');
    const auto moi = a.Enfant(0, mere, "Pierre");
    const auto d = Dispose(moi, 4, 0);
    Sain(d);
    ASSERT_EQ(d.cases.size(), 3u);
    for (const auto& t : d.traits) EXPECT_EQ(t.points.size(), 2u);
    EXPECT_EQ(d.cases[Index(d, gm)].r.y, d.cases[d.centre].r.y);
}

TEST_F(VueFamilleTest, ImplexDrawsTheCommonAncestorsOnBothSidesMarkedAsRepeated) {
    // The parents are first cousins: two great-grandparents are shared.
    const auto aa = a.Personne("Ancien", "Jacques"), ab = a.Personne("Ancienne", "Jeanne", 'F');
    const auto f1 = a.Enfant(aa, ab, "Luc"), f2 = a.Enfant(aa, ab, "Lise", 'F');
    const auto x1 = a.Personne("X", "Eve", 'F'), x2 = a.Personne("Y", "Marc");
    const auto pere = a.Enfant(f1, x1, "Jean"), mere = a.Enfant(x2, f2, "Marie", 'F');
    Marie(pere, mere);
    const auto moi = a.Enfant(pere, mere, "Pierre");
    const auto d = Dispose(moi, 3, 0);
    Sain(d);
    const auto s = Personnes(d);
    EXPECT_EQ(s.count(aa), 2u);
    EXPECT_EQ(s.count(ab), 2u);
    int repetes = 0;
    for (const auto& c : d.cases) repetes += c.repete;
    EXPECT_EQ(repetes, 2);
    // The father's spouse is not drawn on the ascendant side: a spouse box
    // belongs to the current person and its descendants only.
    EXPECT_EQ(s.count(mere), 1u);
}

TEST_F(VueFamilleTest, ChildrenComeGroupedByMarriageUnderTheirSpouse) {
    const auto moi = a.Personne("Martin", "Jean");
    const auto f1 = a.Personne("A", "Anne", 'F'), f2 = a.Personne("B", "Berthe", 'F');
    Marie(moi, f1);
    Marie(moi, f2);
    // Children listed alternately, and one of no marriage.
    const auto c1 = a.Enfant(moi, f2, "Un"), c2 = a.Enfant(moi, f1, "Deux");
    const auto c3 = a.Enfant(moi, 0, "Trois"), c4 = a.Enfant(moi, f2, "Quatre");
    const auto pc = a.Personne("C", "Claire", 'F');
    Marie(c2, pc);
    Marie(c2, pc); // the same couple twice: one spouse box
    const auto pe = a.Enfant(c2, pc, "Petit");
    const auto d = Dispose(moi, 0, 2);
    Sain(d);
    std::vector<std::uint32_t> enfants;
    for (const auto& c : d.cases)
        if (c.colonne == 1 && c.role == Role::Descendant) enfants.push_back(c.personne);
    EXPECT_EQ(enfants, (std::vector<std::uint32_t>{c2, c1, c4, c3}));
    // Spouses stand under their partner; each child's line starts at the
    // box of its other parent.
    EXPECT_EQ(d.cases[Index(d, f1)].colonne, 0);
    EXPECT_GT(d.cases[Index(d, f1)].r.y, d.cases[d.centre].r.y);
    std::map<std::uint32_t, std::uint32_t> depart;
    for (const auto& t : d.traits)
        if (!t.conjoint) depart[d.cases[t.vers].personne] = d.cases[t.de].personne;
    EXPECT_EQ(depart[c1], f2);
    EXPECT_EQ(depart[c2], f1);
    EXPECT_EQ(depart[c3], moi);
    EXPECT_EQ(depart[pe], pc);
    EXPECT_EQ(d.cases[Index(d, pc)].role, Role::Conjoint);
    EXPECT_EQ(Personnes(d).count(pc), 1u);
    EXPECT_EQ(d.cases[Index(d, pe)].colonne, 2);
    // Reach 1 stops at the children, with their spouses.
    const auto un = Dispose(moi, 0, 1);
    EXPECT_EQ(Index(un, pe), -1);
    EXPECT_NE(Index(un, pc), -1);
}

TEST_F(VueFamilleTest, TheBoxCountOfTheLevelCutsTheFarthestAndSaysSo) {
    const auto gp = a.Personne("Vieux", "Paul"), p = a.Enfant(gp, 0, "Jean");
    const auto moi = a.Enfant(p, 0, "Pierre");
    for (int i = 0; i < 40; ++i) a.Enfant(moi, 0, "E" + std::to_string(i));
    // Level 2 holds 32 boxes: the parent comes before the children, the
    // grandparent of the same round after them, and is cut.
    auto d = Dispose(moi, 4, 2, 2);
    Sain(d);
    EXPECT_EQ(d.etat, '2');
    EXPECT_EQ(d.cases.size(), 32u);
    EXPECT_NE(Index(d, p), -1);
    EXPECT_EQ(Index(d, gp), -1);
    // A larger setting holds everything.
    a.params.nombreCases[1] = 100;
    d = Dispose(moi, 4, 2, 2);
    EXPECT_EQ(d.etat, ' ');
    EXPECT_EQ(d.cases.size(), 43u);
    Sain(d);
    // A person listed as its own father (a damaged base) only repeats,
    // bounded by the box count even at the largest reach.
    b.EcritPere(gp, gp);
    b.MajEnfants(gp, gp, 'A');
    a.params.nombreCases[1] = 500;
    d = Dispose(gp, 1000, 0, 2);
    EXPECT_EQ(d.etat, ' ');
    EXPECT_EQ(d.cases.size(), 33u); // itself and 32 generations of itself
    d = Dispose(gp, 0, 1000, 2);
    EXPECT_EQ(d.etat, '2');
    EXPECT_EQ(d.cases.size(), 500u);
}

TEST_F(VueFamilleTest, ColoursComeFromTheSettingsBySexAndScaleSizesTheBoxes) {
    EXPECT_EQ(CouleurBGR(255), (Couleur{255, 0, 0}));
    EXPECT_EQ(CouleurBGR(0x123456), (Couleur{0x56, 0x34, 0x12}));
    const auto h = a.Personne("H", "Homme"), f = a.Personne("F", "Femme", 'F');
    const auto x = a.Personne("X", "Autre", ' ');
    const auto c = a.Enfant(h, f, "Fils");
    a.params.couleurCadreFemme = 0x00FF00;
    auto d = Dispose(c, 1, 0);
    EXPECT_EQ(d.cases[Index(d, f)].cadre, (Couleur{0, 0xFF, 0}));
    EXPECT_EQ(d.cases[Index(d, f)].police, CouleurBGR(a.params.couleurPoliceFemme));
    EXPECT_EQ(d.cases[Index(d, h)].cadre, CouleurBGR(a.params.couleurCadreHomme));
    d = Dispose(x, 1, 0);
    EXPECT_EQ(d.cases[0].cadre, CouleurBGR(a.params.couleurCadreIndetermine));
    ReglageVue v;
    v.echelle = 2;
    const auto grand = DisposeFamille(b, a.params, c, v);
    v.echelle = 1;
    const auto petit = DisposeFamille(b, a.params, c, v);
    EXPECT_DOUBLE_EQ(grand.largeurCase, 2 * petit.largeurCase);
    EXPECT_NEAR(grand.largeur, 2 * petit.largeur, 4);
}

TEST_F(VueFamilleTest, HitTestAndArrowKeysFollowTheFamily) {
    const auto gp = a.Personne("G", "Grand"), gm = a.Personne("G", "Grande", 'F');
    const auto pere = a.Enfant(gp, gm, "Pere"), mere = a.Personne("M", "Mere", 'F');
    const auto moi = a.Enfant(pere, mere, "Moi");
    const auto conj = a.Personne("C", "Conj", 'F');
    Marie(moi, conj);
    const auto e1 = a.Enfant(moi, conj, "E1"), e2 = a.Enfant(moi, conj, "E2");
    const auto d = Dispose(moi, 2, 1);
    Sain(d);
    const int c = d.centre;
    const Rect& r = d.cases[c].r;
    EXPECT_EQ(CaseEn(d, r.x + 1, r.y + 1), c);
    EXPECT_EQ(CaseEn(d, r.droite() + 1, r.y + 1), -1);
    EXPECT_EQ(CaseEn(d, -5, -5), -1);

    const int ip = Index(d, pere), im = Index(d, mere), igp = Index(d, gp);
    EXPECT_EQ(CaseVoisine(d, c, Direction::Gauche), ip); // father before mother
    EXPECT_EQ(CaseVoisine(d, ip, Direction::Bas), im);
    EXPECT_EQ(CaseVoisine(d, im, Direction::Haut), ip);
    EXPECT_EQ(CaseVoisine(d, ip, Direction::Gauche), igp);
    EXPECT_EQ(CaseVoisine(d, igp, Direction::Gauche), igp); // nothing further
    EXPECT_EQ(CaseVoisine(d, im, Direction::Droite), c);
    EXPECT_EQ(CaseVoisine(d, c, Direction::Bas), Index(d, conj));
    const int ie1 = Index(d, e1);
    EXPECT_EQ(CaseVoisine(d, ie1, Direction::Bas), Index(d, e2));
    EXPECT_EQ(CaseVoisine(d, ie1, Direction::Gauche), Index(d, conj));
    EXPECT_EQ(CaseVoisine(d, Index(d, conj), Direction::Droite), Index(d, e2)); // same row

    VueFamille vue;
    ReglageVue v;
    v.porteeGauche = 2;
    v.porteeDroite = 1;
    vue.Dispose(b, a.params, moi, v);
    EXPECT_EQ(vue.PersonneFocus(), moi);
    EXPECT_TRUE(vue.Deplace(Direction::Gauche));
    EXPECT_EQ(vue.PersonneFocus(), pere);
    // The father becomes the current person: the focus stays on him.
    vue.Dispose(b, a.params, pere, v);
    EXPECT_EQ(vue.PersonneFocus(), pere);
    EXPECT_EQ(vue.focus(), vue.disposition().centre);
    EXPECT_FALSE(vue.Deplace(Direction::Haut));
    // Laid out again around him, the focus stays where the keys left it;
    // around another person it goes to that person.
    vue.DefinitFocus(Index(vue.disposition(), gm));
    v.niveau = 3;
    vue.Dispose(b, a.params, pere, v);
    EXPECT_EQ(vue.PersonneFocus(), gm);
    vue.Dispose(b, a.params, moi, v);
    EXPECT_EQ(vue.PersonneFocus(), moi);
}

TEST_F(VueFamilleTest, TheRightClickMenuListsTheFamilyUnderItsHeadings) {
    using G = ElementMenu::Genre;
    DefinitMessages({{23, "Ouvrir la fiche"}, {592, "Parents"}, {579, "Conjoints"},
                     {666, "Enfants"}, {910, "Liens"}, {912, "Parrain"}});
    const auto pere = a.Personne("Martin", "Jean", 'H', "1850");
    const auto moi = a.Enfant(pere, 0, "Pierre", 'H', "1880");
    const auto conj = a.Personne("Roux", "Anne", 'F');
    Marie(moi, conj);
    Marie(moi, conj);
    const auto ami = a.Personne("Blanc", "Paul");
    b.MajLiens(moi, ami, "GODF", 'A');
    for (int i = 0; i < 205; ++i) a.Enfant(moi, conj, "E" + std::to_string(i));
    const auto m = MenuFamille(b, moi);
    ASSERT_GE(m.size(), 5u);
    EXPECT_EQ(m[0].genre, G::Personne);
    EXPECT_EQ(m[0].texte, b.NomDates(moi));
    EXPECT_EQ(m[0].personne, moi);
    EXPECT_EQ(m[1].genre, G::Separateur);
    EXPECT_EQ(m[2].texte, Message(23));
    EXPECT_TRUE(m[2].ouvreFiche);
    EXPECT_EQ(m[2].personne, moi);
    // The headings in order, each followed by its persons.
    std::vector<std::string> titres;
    std::map<std::string, int> nombre;
    std::string titre;
    for (std::size_t i = 3; i < m.size(); ++i) {
        if (m[i].genre == G::Titre) {
            titre = m[i].texte;
            titres.push_back(titre);
        } else {
            EXPECT_EQ(m[i].genre, G::Personne);
            EXPECT_FALSE(m[i].ouvreFiche);
            ++nombre[titre];
        }
    }
    EXPECT_EQ(titres, (std::vector<std::string>{Message(592), Message(579), Message(666),
                                                Message(910)}));
    EXPECT_EQ(nombre[Message(592)], 1);
    EXPECT_EQ(nombre[Message(579)], 1); // married twice, listed once
    EXPECT_EQ(nombre[Message(666)], 200);
    EXPECT_EQ(m.back().personne, ami);
    EXPECT_EQ(m.back().texte, "Parrain : " + b.NomDates(ami));
    // Nobody around: the person, the separator and message 23 only.
    EXPECT_EQ(MenuFamille(b, ami).size(), 3u);
    EXPECT_TRUE(MenuFamille(b, 0).empty());
    DefinitMessages({});
}
