#include "ui/vue_famille.h"

#include "store/base.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/tags.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>

namespace sylvane {

Couleur CouleurBGR(std::int32_t valeur) {
    const auto v = static_cast<std::uint32_t>(valeur);
    return {static_cast<std::uint8_t>(v & 0xFF), static_cast<std::uint8_t>((v >> 8) & 0xFF),
            static_cast<std::uint8_t>((v >> 16) & 0xFF)};
}

namespace {

constexpr int kMaxListe = 200;     // a person's lists are read this far
constexpr int kMaxGenerations = 32;

// A person met by the walk, before it has a place.
struct Noeud {
    std::uint32_t personne = 0;
    CaseFamille::Role role = CaseFamille::Role::Centre;
    int colonne = 0;
    int origine = -1;               // the node it hangs from
    int attache = -1;               // the box its connector starts from
    std::vector<int> branches;      // ascendants: parents; descendants: children
    std::vector<int> conjoints;     // the spouses drawn under it
    double rang = 0;                // row of its top, in row units
};

class Collecte {
  public:
    Collecte(Base& b, std::size_t limite) : b_(b), limite_(limite) {}

    std::vector<Noeud> noeuds;
    bool plein = false;

    int Ajoute(std::uint32_t personne, CaseFamille::Role role, int colonne, int origine) {
        if (noeuds.size() >= limite_) {
            plein = true;
            return -1;
        }
        Noeud n;
        n.personne = personne;
        n.role = role;
        n.colonne = colonne;
        n.origine = origine;
        n.attache = origine;
        noeuds.push_back(n);
        return static_cast<int>(noeuds.size()) - 1;
    }

    // The next ascendant generation: father then mother of each node.
    std::vector<int> Parents(const std::vector<int>& generation, int colonne) {
        std::vector<int> suivante;
        for (int i : generation) {
            for (std::uint32_t p : {b_.LitPere(noeuds[i].personne), b_.LitMere(noeuds[i].personne)}) {
                if (p == 0) continue;
                const int k = Ajoute(p, CaseFamille::Role::Ascendant, colonne, i);
                if (k < 0) return suivante;
                noeuds[i].branches.push_back(k);
                suivante.push_back(k);
            }
        }
        return suivante;
    }

    // The spouses of node i, drawn under it.
    void Conjoints(int i) {
        const std::uint32_t n = noeuds[i].personne;
        for (std::uint32_t m : b_.Mariages(n)) {
            const std::uint32_t mari = b_.LitMari(m);
            const std::uint32_t autre = mari == n ? b_.LitFemme(m) : mari;
            if (autre == 0 || autre == n || EstConjoint(i, autre)) continue;
            const int k = Ajoute(autre, CaseFamille::Role::Conjoint, noeuds[i].colonne, i);
            if (k < 0) return;
            noeuds[i].conjoints.push_back(k);
        }
    }

    // The next descendant generation: the children of each node, those of
    // each marriage together in the order of the marriages, each with its
    // spouses.
    std::vector<int> Enfants(const std::vector<int>& generation, int colonne) {
        std::vector<int> suivante;
        for (int i : generation) {
            struct Enfant {
                std::uint32_t personne;
                std::size_t groupe;
            };
            std::vector<Enfant> enfants;
            const std::vector<int> conjoints = noeuds[i].conjoints; // Ajoute moves the nodes
            for (int k = 1; k <= kMaxListe; ++k) {
                const std::uint32_t c = b_.EnfantNo(noeuds[i].personne, k);
                if (c == 0) break;
                const std::uint32_t pere = b_.LitPere(c), mere = b_.LitMere(c);
                std::size_t g = 0;
                while (g < conjoints.size() && noeuds[conjoints[g]].personne != pere &&
                       noeuds[conjoints[g]].personne != mere)
                    ++g;
                enfants.push_back({c, g});
            }
            std::stable_sort(enfants.begin(), enfants.end(),
                             [](const Enfant& a, const Enfant& e) { return a.groupe < e.groupe; });
            for (const Enfant& e : enfants) {
                const int k = Ajoute(e.personne, CaseFamille::Role::Descendant, colonne, i);
                if (k < 0) return suivante;
                if (e.groupe < conjoints.size()) noeuds[k].attache = conjoints[e.groupe];
                noeuds[i].branches.push_back(k);
                suivante.push_back(k);
                Conjoints(k);
                if (plein) return suivante;
            }
        }
        return suivante;
    }

  private:
    // The same couple married twice is drawn once.
    bool EstConjoint(int i, std::uint32_t personne) const {
        for (int c : noeuds[i].conjoints)
            if (noeuds[c].personne == personne) return true;
        return false;
    }

    Base& b_;
    std::size_t limite_;
};

// Rows of the ascendant side: each person without drawn parents takes the
// next row; the others stand halfway between their parents.
double RangAscendants(std::vector<Noeud>& n, int i, double& curseur) {
    if (n[i].branches.empty()) {
        n[i].rang = curseur;
        curseur += 1;
    } else {
        double premier = 0, dernier = 0;
        for (std::size_t k = 0; k < n[i].branches.size(); ++k) {
            const double r = RangAscendants(n, n[i].branches[k], curseur);
            if (k == 0) premier = r;
            dernier = r;
        }
        n[i].rang = (premier + dernier) / 2;
    }
    return n[i].rang;
}

// Rows of the descendant side: a person and its spouses make a block of
// rows, centred on its children but never above the rows already taken.
void RangDescendants(std::vector<Noeud>& n, int i, double& curseur) {
    const double debut = curseur;
    const double hauteur = 1.0 + static_cast<double>(n[i].conjoints.size());
    for (int c : n[i].branches) RangDescendants(n, c, curseur);
    double haut = curseur;
    if (!n[i].branches.empty()) {
        const Noeud& premier = n[n[i].branches.front()];
        const Noeud& dernier = n[n[i].branches.back()];
        const double milieu =
            (premier.rang + dernier.rang + 1.0 + static_cast<double>(dernier.conjoints.size())) / 2;
        haut = std::max(debut, milieu - hauteur / 2);
    }
    n[i].rang = haut;
    for (std::size_t k = 0; k < n[i].conjoints.size(); ++k)
        n[n[i].conjoints[k]].rang = haut + 1.0 + static_cast<double>(k);
    curseur = std::max(curseur, haut + hauteur);
}

void Decale(std::vector<Noeud>& n, int i, double delta) {
    n[i].rang += delta;
    for (int c : n[i].conjoints) n[c].rang += delta;
    for (int c : n[i].branches) Decale(n, c, delta);
}

// Left edge to right edge through the middle of the gap.
Trait Connecteur(const std::vector<CaseFamille>& cases, int de, int vers) {
    const Rect& a = cases[de].r;
    const Rect& b = cases[vers].r;
    Trait t;
    t.de = de;
    t.vers = vers;
    const bool versGauche = b.x < a.x;
    const double xa = versGauche ? a.x : a.droite();
    const double xb = versGauche ? b.droite() : b.x;
    const double xm = std::round((xa + xb) / 2);
    t.points = {{xa, a.milieuY()}, {xm, a.milieuY()}, {xm, b.milieuY()}, {xb, b.milieuY()}};
    if (a.milieuY() == b.milieuY()) t.points = {t.points.front(), t.points.back()};
    return t;
}

} // namespace

DispositionFamille DisposeFamille(Base& b, const Parametres& p, std::uint32_t centre,
                                  const ReglageVue& v) {
    DispositionFamille d;
    const int niveau = std::clamp(v.niveau, 1, 4);
    const int gauche = std::clamp(v.porteeGauche, 0, kMaxGenerations);
    const int droite = std::clamp(v.porteeDroite, 0, kMaxGenerations);
    const double e = v.echelle > 0 ? v.echelle : 1.0;
    d.limite = std::max(1, p.nombreCases[niveau - 1]);
    d.fond = CouleurBGR(p.couleurFond);
    d.degrade = p.degrade;
    static constexpr double kLargeurs[4] = {210, 190, 172, 160};
    d.largeurCase = std::round(kLargeurs[niveau - 1] * e);
    d.hauteurCase = std::round((3 * v.hauteurLigne + 8) * e);
    if (centre == 0) return d;

    // The walk, nearest generations first, so that the box count cuts off
    // the farthest ones: per round an ascendant generation, a descendant
    // generation, a second ascendant generation.
    Collecte col(b, static_cast<std::size_t>(d.limite));
    col.Ajoute(centre, CaseFamille::Role::Centre, 0, -1);
    col.Conjoints(0);
    std::vector<int> asc = {0}, desc = {0};
    for (int r = 1; !col.plein && (2 * r - 1 <= gauche || r <= droite); ++r) {
        if (2 * r - 1 <= gauche) asc = col.Parents(asc, -(2 * r - 1));
        if (!col.plein && r <= droite) desc = col.Enfants(desc, r);
        if (!col.plein && 2 * r <= gauche) asc = col.Parents(asc, -(2 * r));
    }
    if (col.plein) d.etat = '2';
    std::vector<Noeud>& n = col.noeuds;

    // Rows: both sides laid out on their own, then the descendant side
    // moved so that the current person stands on one row.
    // The current person's branches hold its parents and its children.
    std::vector<int> ascendants, descendants;
    for (int k : n[0].branches)
        (n[k].role == CaseFamille::Role::Ascendant ? ascendants : descendants).push_back(k);
    double curseur = 0;
    n[0].branches = ascendants;
    const double rangAsc = RangAscendants(n, 0, curseur);
    n[0].branches = descendants;
    curseur = 0;
    RangDescendants(n, 0, curseur);
    Decale(n, 0, rangAsc - n[0].rang);
    double min = std::numeric_limits<double>::max();
    int colMin = 0;
    for (const Noeud& x : n) {
        min = std::min(min, x.rang);
        colMin = std::min(colMin, x.colonne);
    }

    // Boxes.
    const double marge = std::round(20 * e);
    const double pasX = d.largeurCase + std::round(d.largeurCase * 0.28);
    // An even row pitch keeps half rows on whole units.
    const double pasY = 2 * std::round((d.hauteurCase + std::round(d.hauteurCase * 0.3)) / 2);
    std::unordered_set<std::uint32_t> vus;
    d.cases.reserve(n.size());
    double maxX = 0, maxY = 0;
    for (const Noeud& x : n) {
        CaseFamille c;
        c.personne = x.personne;
        c.role = x.role;
        c.colonne = x.colonne;
        c.origine = x.origine;
        c.r = {marge + (x.colonne - colMin) * pasX, marge + std::round((x.rang - min) * pasY),
               d.largeurCase, d.hauteurCase};
        const std::string sexe = b.LitSexe(x.personne);
        c.sexe = sexe.empty() ? ' ' : sexe[0];
        const bool homme = c.sexe == 'H', femme = c.sexe == 'F';
        c.cadre = CouleurBGR(homme ? p.couleurCadreHomme
                                   : femme ? p.couleurCadreFemme : p.couleurCadreIndetermine);
        c.police = CouleurBGR(homme ? p.couleurPoliceHomme
                                    : femme ? p.couleurPoliceFemme : p.couleurPoliceIndetermine);
        const std::string complet = b.NomComplet(x.personne);
        const std::string dates = b.NomDates(x.personne);
        c.lignes = {Trim(b.LitPrenom(x.personne)), Trim(b.LitNom(x.personne)),
                    Trim(dates.substr(std::min(complet.size(), dates.size())))};
        c.enCours = x.role == CaseFamille::Role::Centre;
        c.repete = !vus.insert(x.personne).second;
        maxX = std::max(maxX, c.r.droite());
        maxY = std::max(maxY, c.r.bas());
        d.cases.push_back(std::move(c));
    }
    d.centre = 0;
    d.largeur = maxX + marge;
    d.hauteur = maxY + marge;

    // Connectors: parent and child; between partners, a short upright
    // link from each box to the spouse box under it.
    for (std::size_t i = 1; i < n.size(); ++i) {
        const Noeud& x = n[i];
        if (x.role != CaseFamille::Role::Conjoint) {
            d.traits.push_back(Connecteur(d.cases, x.attache, static_cast<int>(i)));
            continue;
        }
        const auto& freres = n[x.origine].conjoints;
        const auto place = std::find(freres.begin(), freres.end(), static_cast<int>(i));
        const int dessus = place == freres.begin() ? x.origine : *(place - 1);
        const Rect& a = d.cases[dessus].r;
        const double xv = std::round(a.x + a.l / 2);
        Trait t;
        t.de = dessus;
        t.vers = static_cast<int>(i);
        t.conjoint = true;
        t.points = {{xv, a.bas()}, {xv, d.cases[i].r.y}};
        d.traits.push_back(std::move(t));
    }
    return d;
}

int CaseEn(const DispositionFamille& d, double x, double y) {
    for (std::size_t i = 0; i < d.cases.size(); ++i)
        if (d.cases[i].r.contient(x, y)) return static_cast<int>(i);
    return -1;
}

int CaseVoisine(const DispositionFamille& d, int depuis, Direction sens) {
    if (depuis < 0 || depuis >= static_cast<int>(d.cases.size())) return d.centre;
    const CaseFamille& ici = d.cases[depuis];
    const double y = ici.r.milieuY();
    int meilleur = -1;
    double ecart = std::numeric_limits<double>::max();
    // Within a unit of each other, the first box met wins: the father
    // before the mother, the elder child before the younger.
    auto retient = [&](int k, double dist) {
        if (dist < ecart - 1.0) {
            ecart = dist;
            meilleur = k;
        }
    };
    if (sens == Direction::Haut || sens == Direction::Bas) {
        for (std::size_t k = 0; k < d.cases.size(); ++k) {
            const CaseFamille& c = d.cases[k];
            if (c.colonne != ici.colonne) continue;
            const double dy = c.r.milieuY() - y;
            if (sens == Direction::Haut ? dy < 0 : dy > 0) retient(static_cast<int>(k), std::abs(dy));
        }
        return meilleur < 0 ? depuis : meilleur;
    }
    const int pas = sens == Direction::Gauche ? -1 : 1;
    // A connector first, to the parent or child nearest in height.
    for (const Trait& t : d.traits) {
        if (t.conjoint || (t.de != depuis && t.vers != depuis)) continue;
        const int autre = t.de == depuis ? t.vers : t.de;
        if (d.cases[autre].colonne == ici.colonne + pas)
            retient(autre, std::abs(d.cases[autre].r.milieuY() - y));
    }
    if (meilleur >= 0) return meilleur;
    for (std::size_t k = 0; k < d.cases.size(); ++k)
        if (d.cases[k].colonne == ici.colonne + pas)
            retient(static_cast<int>(k), std::abs(d.cases[k].r.milieuY() - y));
    return meilleur < 0 ? depuis : meilleur;
}

std::vector<ElementMenu> MenuFamille(Base& b, std::uint32_t personne) {
    using G = ElementMenu::Genre;
    std::vector<ElementMenu> m;
    if (personne == 0) return m;
    m.push_back({G::Personne, b.NomDates(personne), personne, false});
    m.push_back({G::Separateur, {}, 0, false});
    m.push_back({G::Personne, Message(23), personne, true});
    auto groupe = [&](int titre, const std::vector<std::pair<std::uint32_t, std::string>>& l) {
        if (l.empty()) return;
        m.push_back({G::Titre, Message(titre), 0, false});
        for (const auto& [n, avant] : l) m.push_back({G::Personne, avant + b.NomDates(n), n, false});
    };
    std::vector<std::pair<std::uint32_t, std::string>> l;
    for (std::uint32_t p : {b.LitPere(personne), b.LitMere(personne)})
        if (p) l.push_back({p, {}});
    groupe(592, l);
    l.clear();
    for (std::uint32_t mar : b.Mariages(personne)) {
        const std::uint32_t mari = b.LitMari(mar);
        const std::uint32_t autre = mari == personne ? b.LitFemme(mar) : mari;
        const bool deja = std::any_of(l.begin(), l.end(), [&](const auto& x) { return x.first == autre; });
        if (autre && !deja) l.push_back({autre, {}});
    }
    groupe(579, l);
    l.clear();
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t c = b.EnfantNo(personne, i);
        if (c == 0) break;
        l.push_back({c, {}});
    }
    groupe(666, l);
    l.clear();
    for (int i = 1; i <= kMaxListe; ++i) {
        const std::uint32_t c = b.LienNo(personne, i);
        if (c == 0) break;
        const std::string texte = Trim(Conv_LibelleTag(Trim(b.TexteLienBrutNo(personne, i))));
        l.push_back({c, texte.empty() ? std::string() : texte + " : "});
    }
    groupe(910, l);
    return m;
}

void VueFamille::Dispose(Base& b, const Parametres& p, std::uint32_t centre, const ReglageVue& v) {
    // The focus follows a new current person, and stays where it was when
    // the same person is laid out again (a level, a reach, a zoom).
    const bool memeCentre = d_.centre >= 0 && d_.cases[d_.centre].personne == centre;
    const std::uint32_t avant = memeCentre ? PersonneFocus() : 0;
    d_ = DisposeFamille(b, p, centre, v);
    focus_ = d_.centre;
    for (std::size_t i = 0; avant && i < d_.cases.size(); ++i)
        if (d_.cases[i].personne == avant) {
            focus_ = static_cast<int>(i);
            break;
        }
}

void VueFamille::DefinitFocus(int i) {
    if (i >= 0 && i < static_cast<int>(d_.cases.size())) focus_ = i;
}

bool VueFamille::Deplace(Direction sens) {
    if (d_.cases.empty()) return false;
    const int k = CaseVoisine(d_, focus_, sens);
    const bool bouge = k != focus_;
    focus_ = k;
    return bouge;
}

std::uint32_t VueFamille::PersonneFocus() const {
    if (focus_ < 0 || focus_ >= static_cast<int>(d_.cases.size())) return 0;
    return d_.cases[focus_].personne;
}

} // namespace sylvane
