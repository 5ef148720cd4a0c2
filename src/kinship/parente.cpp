// The common ascendance and descendance searches, and the relationship
// graph: its paths, years, levels, places and drawing.
#include "kinship/parente.h"

#include "charts/gabarit.h"
#include "publish/html_texte.h"
#include "publish/rtf_rapports.h"
#include "text/messages.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <numeric>

namespace sylvane {
namespace {

// The stop is polled every this many persons of a walk.
constexpr std::int64_t kPasArret = 4096;

// The birth year of a person when its first three characters are digits.
bool AnConnu(const std::string& an) {
    return an.size() >= 3 && std::isdigit(static_cast<unsigned char>(an[0])) &&
           std::isdigit(static_cast<unsigned char>(an[1])) &&
           std::isdigit(static_cast<unsigned char>(an[2]));
}

int ValeurAn(const std::string& an) {
    int v = 0;
    for (std::size_t i = 0; i < 4; ++i)
        v = v * 10 + (i < an.size() && std::isdigit(static_cast<unsigned char>(an[i])) ? an[i] - '0' : 0);
    return v;
}

// The marks of one search, one character per person: ' ' not reached,
// '1' reached by the person in course, '2' reached by every person before,
// '3' reached by every person so far. The walks go up (parents) or down
// (children, at most 200 a person).
class Recherche {
  public:
    Recherche(Base& b, bool descend, const Interaction& io)
        : b_(b), descend_(descend), io_(io), marques_(b.Tete().maxPersonne + 1, ' '),
          restant_(marques_.size(), 0) {}

    ResultatParente Lance(const std::vector<std::uint32_t>& selection, int generations) {
        ResultatParente r;
        for (int g = 1; g <= generations - 1; ++g) {
            io_.Montre({}, Message(693) + " " + std::to_string(g) + " " + Message(694));
            Efface();
            encore_ = false;
            communs_ = 0;
            for (std::size_t k = 0; k < selection.size(); ++k) {
                if (k == 1)
                    for (std::uint32_t p : touches_)
                        if (marques_[p] == '1') marques_[p] = '2';
                if (io_.Arrete() || arret_) {
                    r.fin = FinParente::Arrete;
                    return r;
                }
                Parcours(selection[k], g);
                if (arret_) {
                    r.fin = FinParente::Arrete;
                    return r;
                }
                if (k == 0) continue;
                if (communs_ == 0) break;
                std::vector<std::uint32_t> restent;
                for (std::uint32_t p : touches_) {
                    if (marques_[p] == '3') {
                        marques_[p] = '2';
                        restent.push_back(p);
                    } else {
                        marques_[p] = ' ';
                    }
                }
                touches_ = std::move(restent);
            }
            if (communs_ != 0) {
                r.fin = FinParente::Trouve;
                r.generation = g;
                for (std::uint32_t p : touches_)
                    if (marques_[p] == '2') r.communs.push_back(p);
                std::sort(r.communs.begin(), r.communs.end());
                r.liste = r.communs;
                r.liste.insert(r.liste.end(), selection.begin(), selection.end());
                std::sort(r.liste.begin(), r.liste.end());
                r.liste.erase(std::unique(r.liste.begin(), r.liste.end()), r.liste.end());
                return r;
            }
            if (!descend_ && !encore_) break;
        }
        return r;
    }

  private:
    void Efface() {
        for (std::uint32_t p : touches_) marques_[p] = ' ';
        touches_.clear();
    }

    void Marque(std::uint32_t p) {
        char& m = marques_[p];
        if (m == '2') {
            m = '3';
            ++communs_;
        } else if (m == ' ') {
            m = '1';
            touches_.push_back(p);
        }
    }

    // Marks every person within `niveau` generations of `depart`. A mark
    // set once stays the same for the rest of the walk, so a person met
    // again is walked on only when it has more generations left than the
    // first time: the cost is that of the distinct persons, not of the
    // paths, and a parent loop ends.
    void Parcours(std::uint32_t depart, int niveau) {
        std::vector<std::pair<std::uint32_t, int>> pile{{depart, niveau}};
        std::vector<std::uint32_t> vus;
        while (!pile.empty()) {
            auto [p, n] = pile.back();
            pile.pop_back();
            if (p == 0 || p >= marques_.size() || restant_[p] >= n + 1) continue;
            if (restant_[p] == 0) {
                vus.push_back(p);
                Marque(p);
            }
            restant_[p] = static_cast<std::uint8_t>(std::min(n + 1, 255));
            if (++visites_ % kPasArret == 0 && io_.Arrete()) {
                arret_ = true;
                break;
            }
            if (descend_) {
                if (n == 0) continue;
                for (int i = 1; i <= kEnfantsParente; ++i) {
                    const std::uint32_t e = b_.EnfantNo(p, i);
                    if (e == 0) break;
                    pile.push_back({e, n - 1});
                }
            } else {
                const std::uint32_t pere = b_.LitPere(p), mere = b_.LitMere(p);
                if (n == 0) {
                    if (pere || mere) encore_ = true;
                    continue;
                }
                if (mere) pile.push_back({mere, n - 1});
                if (pere) pile.push_back({pere, n - 1});
            }
        }
        for (std::uint32_t p : vus) restant_[p] = 0;
    }

    Base& b_;
    bool descend_;
    const Interaction& io_;
    std::vector<char> marques_;
    std::vector<std::uint8_t> restant_; // generations left at the first visit + 1
    std::vector<std::uint32_t> touches_;
    int communs_ = 0;
    bool encore_ = false;
    bool arret_ = false;
    std::int64_t visites_ = 0;
};

} // namespace

ResultatParente AscendanceCommune(Base& b, const std::vector<std::uint32_t>& selection,
                                  int generations, const Interaction& io) {
    return Recherche(b, false, io).Lance(selection, std::min(generations, 254));
}

ResultatParente DescendanceCommune(Base& b, const std::vector<std::uint32_t>& selection,
                                   int generations, const Interaction& io) {
    return Recherche(b, true, io).Lance(selection, std::min(generations, 254));
}

std::string TexteNoeudParente(Base& b, std::uint32_t personne) {
    // The short form under the name: its dates, when it has any.
    const std::string nom = b.NomComplet(personne), court = b.NomDates(personne);
    std::string dates = court.rfind(nom, 0) == 0 ? court.substr(nom.size()) : court;
    dates.erase(0, dates.find_first_not_of(' '));
    dates.erase(dates.find_last_not_of(' ') + 1);
    return dates.empty() ? nom : nom + "#" + dates;
}

// --- The graph ---------------------------------------------------------------------

GrapheParente::GrapheParente(Base& b, std::vector<std::uint32_t> liste, int generations)
    : b_(b), liste_(std::move(liste)), generations_(std::clamp(generations, 1, 254)) {
    const std::uint32_t max = b_.Tete().maxPersonne;
    std::erase_if(liste_, [max](std::uint32_t p) { return p == 0 || p > max; });
}

std::size_t GrapheParente::NoeudDe(std::uint32_t personne) const {
    for (std::size_t i = 0; i < noeuds_.size(); ++i)
        if (noeuds_[i].personne == personne) return i + 1;
    return 0;
}

std::size_t GrapheParente::AjouteNoeud(std::uint32_t personne) {
    if (index_.size() <= personne) index_.resize(personne + 1, 0);
    if (index_[personne] == 0) {
        Noeud n;
        n.personne = personne;
        noeuds_.push_back(n);
        index_[personne] = noeuds_.size();
    }
    return index_[personne];
}

bool GrapheParente::Construit(const Interaction& io) {
    noeuds_.clear();
    index_.clear();
    arret_ = false;
    visites_ = 0;
    io.Montre({}, Message(591));
    marques_.assign(b_.Tete().maxPersonne + 1, ' ');
    echecs_.assign(marques_.size(), 0);
    echecsTouches_.clear();
    chemin_.assign(static_cast<std::size_t>(generations_) + 2, 0);
    // No path goes above the eldest listed person: its ancestors are older
    // still, and so are those of anyone born before it.
    anLimite_ = 0;
    for (std::uint32_t p : liste_) {
        AjouteNoeud(p);
        marques_[p] = '2';
        const std::string an = b_.LitAnNaiss(p);
        if (AnConnu(an) && (anLimite_ == 0 || ValeurAn(an) < anLimite_)) anLimite_ = ValeurAn(an);
    }
    // Every listed person is walked up, the root too: a listed person
    // whose parent is listed is joined to it whatever their order.
    for (std::size_t i = liste_.size(); i-- > 0;) {
        if (io.Arrete()) return false;
        io.Montre({}, b_.NomComplet(liste_[i]));
        ChercheChemin(liste_[i], 1, io);
        if (arret_) return false;
    }
    marques_.clear();
    marques_.shrink_to_fit();
    echecs_.clear();
    echecs_.shrink_to_fit();
    Relie();
    Dispose();
    return true;
}

bool GrapheParente::ChercheChemin(std::uint32_t personne, int profondeur, const Interaction& io) {
    if (arret_ || personne == 0 || personne >= marques_.size()) return false;
    if (++visites_ % kPasArret == 0 && io.Arrete()) {
        arret_ = true;
        return false;
    }
    if (profondeur > generations_) return false;
    const std::string an = b_.LitAnNaiss(personne);
    if (anLimite_ != 0 && AnConnu(an) && ValeurAn(an) < anLimite_) return false;
    chemin_[static_cast<std::size_t>(profondeur)] = personne;
    const char m = marques_[personne];
    if ((profondeur != 1 && m == '2') || m == '1') {
        AjouteChemin(profondeur);
        return true;
    }
    if (m != ' ' && profondeur != 1) return false;
    // A person explored in vain from this depth or a shallower one, since
    // the last path found, leads nowhere now either.
    const std::uint8_t e = echecs_[personne];
    if (e != 0 && e <= profondeur) return false;
    const std::uint32_t pere = b_.LitPere(personne), mere = b_.LitMere(personne);
    bool trouve = ChercheChemin(pere, profondeur + 1, io);
    trouve = ChercheChemin(mere, profondeur + 1, io) || trouve;
    if (!trouve && !arret_) {
        if (echecs_[personne] == 0) echecsTouches_.push_back(personne);
        echecs_[personne] = static_cast<std::uint8_t>(profondeur);
    }
    return trouve;
}

void GrapheParente::AjouteChemin(int profondeur) {
    for (int d = 1; d <= profondeur; ++d) {
        const std::uint32_t p = chemin_[static_cast<std::size_t>(d)];
        if (d >= 2 && marques_[p] != '2') marques_[p] = '1';
        AjouteNoeud(p);
    }
    // New marks may give a join to a walk that found nothing before.
    for (std::uint32_t p : echecsTouches_) echecs_[p] = 0;
    echecsTouches_.clear();
}

void GrapheParente::Relie() {
    mariages_.clear();
    for (auto& n : noeuds_) {
        const std::uint32_t pere = b_.LitPere(n.personne), mere = b_.LitMere(n.personne);
        n.pere = pere < index_.size() ? index_[pere] : 0;
        n.mere = mere < index_.size() ? index_[mere] : 0;
    }
    for (std::size_t i = 1; i <= noeuds_.size(); ++i) {
        const std::uint32_t p = noeuds_[i - 1].personne;
        for (std::uint32_t m : b_.Mariages(p)) {
            const std::uint32_t conjoint = b_.LitMari(m) == p ? b_.LitFemme(m) : b_.LitMari(m);
            const std::size_t j = conjoint < index_.size() ? index_[conjoint] : 0;
            if (j > i) mariages_.push_back({i, j});
        }
    }
}

void GrapheParente::Annees() {
    for (auto& n : noeuds_) {
        const std::string an = b_.LitAnNaiss(n.personne);
        n.annee = AnConnu(an) ? an.substr(0, 4) : "0000";
        if (n.annee.size() < 4) n.annee += std::string(4 - n.annee.size(), '0');
    }
    // An unknown year is taken from a parent's or a child's in the graph,
    // three decades on or back, until nothing changes.
    for (bool change = true; change;) {
        change = false;
        for (std::size_t i = 1; i <= noeuds_.size(); ++i) {
            Noeud& n = noeuds_[i - 1];
            if (n.annee != "0000") continue;
            int decennie = -1;
            for (std::size_t parent : {n.pere, n.mere})
                if (parent && noeuds_[parent - 1].annee != "0000")
                    decennie = ValeurAn(noeuds_[parent - 1].annee) / 10 + 3;
            for (std::size_t j = 0; decennie < 0 && j < noeuds_.size(); ++j)
                if ((noeuds_[j].pere == i || noeuds_[j].mere == i) && noeuds_[j].annee != "0000")
                    decennie = std::max(1, ValeurAn(noeuds_[j].annee) / 10 - 3);
            if (decennie < 0) continue;
            std::string d = std::to_string(std::min(decennie, 999));
            n.annee = std::string(3 - d.size(), '0') + d + "0";
            change = true;
        }
    }
}

void GrapheParente::Dispose() {
    Annees();
    rang_.resize(noeuds_.size());
    std::iota(rang_.begin(), rang_.end(), std::size_t{1});
    std::stable_sort(rang_.begin(), rang_.end(), [this](std::size_t a, std::size_t b) {
        return noeuds_[a - 1].annee < noeuds_[b - 1].annee;
    });
    const std::size_t n = noeuds_.size();
    // The highest level: one below the lower of both parents. Relaxed in
    // rank order, at most once per node, so that a parent loop ends.
    std::vector<int> haut(n, 1);
    for (std::size_t passe = 0; passe < n; ++passe) {
        bool change = false;
        for (std::size_t r : rang_) {
            const Noeud& x = noeuds_[r - 1];
            int v = 1;
            for (std::size_t parent : {x.pere, x.mere})
                if (parent) v = std::max(v, haut[parent - 1] + 1);
            v = std::min(v, static_cast<int>(n));
            if (v != haut[r - 1]) {
                haut[r - 1] = v;
                change = true;
            }
        }
        if (!change) break;
    }
    nbNiveaux_ = n ? *std::max_element(haut.begin(), haut.end()) : 0;
    // The lowest level: one above the highest of its children.
    std::vector<int> bas(n, nbNiveaux_);
    for (std::size_t passe = 0; passe < n; ++passe) {
        bool change = false;
        for (auto it = rang_.rbegin(); it != rang_.rend(); ++it) {
            const Noeud& x = noeuds_[*it - 1];
            for (std::size_t parent : {x.pere, x.mere})
                if (parent && bas[parent - 1] > bas[*it - 1] - 1 &&
                    bas[*it - 1] - 1 >= haut[parent - 1]) {
                    bas[parent - 1] = bas[*it - 1] - 1;
                    change = true;
                }
        }
        if (!change) break;
    }
    for (std::size_t i = 0; i < n; ++i) {
        noeuds_[i].niveauHaut = haut[i];
        noeuds_[i].niveauBas = std::max(bas[i], haut[i]);
    }
}

int GrapheParente::Niveau(std::size_t noeud) const {
    if (noeud == 0 || noeud > noeuds_.size()) return 0;
    const Noeud& x = noeuds_[noeud - 1];
    if (x.pere || x.mere) return x.niveauHaut;
    // A person with no parent in the graph stands just above its nearest
    // child, or beside its spouse.
    int v = 0;
    for (std::size_t j = 0; j < noeuds_.size(); ++j)
        if (noeuds_[j].pere == noeud || noeuds_[j].mere == noeud) {
            const int c = noeuds_[j].niveauHaut - 1;
            v = v == 0 ? c : std::min(v, c);
        }
    if (v == 0)
        for (const auto& [a, c] : mariages_)
            if (a == noeud || c == noeud) {
                const std::size_t autre = a == noeud ? c : a;
                const Noeud& y = noeuds_[autre - 1];
                if (y.pere || y.mere) v = y.niveauHaut;
            }
    return std::max(v, 1);
}

void GrapheParente::Ajoute(std::uint32_t personne) {
    if (personne == 0 || personne > b_.Tete().maxPersonne || NoeudDe(personne)) return;
    AjouteNoeud(personne);
    Relie();
    Dispose();
}

void GrapheParente::Ecarte(std::size_t noeud) {
    if (noeud == 0 || noeud > noeuds_.size()) return;
    // What stays is what is still joined, by parents or marriages, to a
    // listed person other than the one taken out.
    const std::size_t n = noeuds_.size();
    std::vector<std::vector<std::size_t>> voisins(n + 1);
    auto joint = [&voisins](std::size_t a, std::size_t c) {
        voisins[a].push_back(c);
        voisins[c].push_back(a);
    };
    for (std::size_t i = 1; i <= n; ++i)
        for (std::size_t parent : {noeuds_[i - 1].pere, noeuds_[i - 1].mere})
            if (parent) joint(i, parent);
    for (const auto& [a, c] : mariages_) joint(a, c);
    std::vector<char> garde(n + 1, 0);
    std::vector<std::size_t> pile;
    for (std::uint32_t p : liste_) {
        const std::size_t i = NoeudDe(p);
        if (i && i != noeud && !garde[i]) {
            garde[i] = 1;
            pile.push_back(i);
        }
    }
    while (!pile.empty()) {
        const std::size_t i = pile.back();
        pile.pop_back();
        for (std::size_t v : voisins[i])
            if (v != noeud && !garde[v]) {
                garde[v] = 1;
                pile.push_back(v);
            }
    }
    std::vector<Noeud> restent;
    for (std::size_t i = 1; i <= n; ++i)
        if (garde[i]) restent.push_back(noeuds_[i - 1]);
    noeuds_.clear();
    index_.clear();
    for (const Noeud& x : restent) AjouteNoeud(x.personne);
    std::erase_if(liste_, [this](std::uint32_t p) { return NoeudDe(p) == 0; });
    Relie();
    Dispose();
}

std::vector<Proche> GrapheParente::Proches(std::size_t noeud) {
    std::vector<Proche> r;
    if (noeud == 0 || noeud > noeuds_.size()) return r;
    const std::uint32_t p = noeuds_[noeud - 1].personne;
    auto ajoute = [&](Proche::Genre g, std::uint32_t q) {
        if (q == 0 || q == p) return;
        for (const Proche& x : r)
            if (x.personne == q && x.genre == g) return;
        r.push_back({g, q, NoeudDe(q) != 0});
    };
    const std::uint32_t pere = b_.LitPere(p), mere = b_.LitMere(p);
    ajoute(Proche::Parent, pere);
    ajoute(Proche::Parent, mere);
    for (std::uint32_t m : b_.Mariages(p))
        ajoute(Proche::Conjoint, b_.LitMari(m) == p ? b_.LitFemme(m) : b_.LitMari(m));
    for (int i = 1; i <= kEnfantsParente; ++i) {
        const std::uint32_t e = b_.EnfantNo(p, i);
        if (e == 0) break;
        ajoute(Proche::Enfant, e);
    }
    for (std::uint32_t parent : {pere, mere})
        for (int i = 1; parent && i <= kEnfantsParente; ++i) {
            const std::uint32_t e = b_.EnfantNo(parent, i);
            if (e == 0) break;
            ajoute(Proche::Frere, e);
        }
    return r;
}

std::vector<PlaceNoeud> GrapheParente::Places(std::int64_t* largeur, std::int64_t* hauteur) const {
    const std::size_t n = noeuds_.size();
    std::vector<PlaceNoeud> places(n);
    std::map<int, std::vector<std::size_t>> niveaux;
    for (std::size_t r : rang_) niveaux[Niveau(r)].push_back(r);
    std::size_t plusLarge = 0;
    for (const auto& [niv, v] : niveaux) plusLarge = std::max(plusLarge, v.size());
    const std::int64_t pas = kLargeurBoite + kEcartBoites;
    const std::int64_t pasNiveau = kHauteurBoite + kEcartNiveaux;
    std::vector<double> cle(n + 1, 0);
    std::vector<char> place(n + 1, 0);
    for (auto& [niv, v] : niveaux) {
        // Under the middle of its parents already placed; otherwise in
        // the order of birth, spread over the level.
        for (std::size_t k = 0; k < v.size(); ++k) {
            const Noeud& x = noeuds_[v[k] - 1];
            double somme = 0;
            int nb = 0;
            for (std::size_t parent : {x.pere, x.mere})
                if (parent && place[parent]) {
                    somme += static_cast<double>(places[parent - 1].x);
                    ++nb;
                }
            cle[v[k]] = nb ? somme / nb
                           : (static_cast<double>(k) + 0.5) * static_cast<double>(pas) *
                                 static_cast<double>(plusLarge) / static_cast<double>(v.size());
        }
        std::stable_sort(v.begin(), v.end(),
                         [&cle](std::size_t a, std::size_t b) { return cle[a] < cle[b]; });
        const std::int64_t debut =
            static_cast<std::int64_t>(plusLarge - v.size()) * pas / 2 + pas / 2;
        for (std::size_t k = 0; k < v.size(); ++k) {
            places[v[k] - 1].x = debut + static_cast<std::int64_t>(k) * pas;
            places[v[k] - 1].y = (niv - 1) * pasNiveau + kHauteurBoite / 2;
            place[v[k]] = 1;
        }
    }
    if (largeur) *largeur = static_cast<std::int64_t>(plusLarge) * pas;
    if (hauteur)
        *hauteur = niveaux.empty() ? 0 : niveaux.rbegin()->first * pasNiveau - kEcartNiveaux;
    return places;
}

Geometrie GrapheParente::EcritGabarit(SystemeFichiers& fs, const std::string& chemin,
                                      const Papier& papier, const std::string& titre) const {
    std::int64_t largeur = 0, hauteur = 0;
    const std::vector<PlaceNoeud> places = Places(&largeur, &hauteur);
    // Enough sheets across and down for the drawing under its heading.
    std::int32_t fh = 1, fv = 1;
    while (fh < kFeuillesMax && PreparePage(papier, fh, 1).largeurUtile < largeur) ++fh;
    auto libre = [&papier](const Geometrie& g) {
        return g.hauteurTotale - g.bandeTitre - papier.hauteur / 16;
    };
    while (fv < kFeuillesMax && libre(PreparePage(papier, fh, fv)) < hauteur) ++fv;
    const Geometrie geo = PreparePage(papier, fh, fv);
    const std::int64_t x0 = papier.largeur / 16 + (geo.largeurUtile - largeur) / 2;
    const std::int64_t y0 = geo.bandeTitre + (libre(geo) - hauteur) / 2;
    EcrivainGabarit g(fs, chemin, geo.Entete());
    EcritCadre(g, geo);
    g.TexteGraphe(titre, geo.largeurTotale / 2, papier.hauteur / 10, kStyleTitre);
    const std::int64_t dl = kLargeurBoite / 2, dh = kHauteurBoite / 2;
    for (std::size_t i = 0; i < noeuds_.size(); ++i) {
        const Noeud& x = noeuds_[i];
        const PlaceNoeud& p = places[i];
        for (std::size_t parent : {x.pere, x.mere}) {
            if (!parent) continue;
            const PlaceNoeud& q = places[parent - 1];
            g.TraitGraphe(x0 + p.x, y0 + p.y - dh, x0 + q.x, y0 + q.y + dh, kStyleLien);
        }
    }
    for (const auto& [a, c] : mariages_) {
        const PlaceNoeud &p = places[a - 1], &q = places[c - 1];
        const bool gauche = p.x < q.x;
        g.TraitGraphe(x0 + p.x + (gauche ? dl : -dl), y0 + p.y, x0 + q.x + (gauche ? -dl : dl),
                      y0 + q.y, kStyleMariage);
    }
    for (std::size_t i = 0; i < noeuds_.size(); ++i)
        g.BoiteGraphe(x0 + places[i].x, y0 + places[i].y, dl, dh, StyleBoite{}.Code(),
                      noeuds_[i].personne);
    g.Termine();
    return geo;
}

// --- The graph as a report -------------------------------------------------------------

std::vector<EntreeGraphe> EntreesGraphe(Base& b, const GrapheParente& g) {
    std::vector<EntreeGraphe> r;
    const auto& noeuds = g.Noeuds();
    for (std::size_t n : g.Rang()) {
        if (n == 0 || n > noeuds.size()) continue;
        const GrapheParente::Noeud& x = noeuds[n - 1];
        EntreeGraphe e;
        e.niveau = g.Niveau(n);
        e.personne = x.personne;
        e.nom = b.NomDates(x.personne);
        const std::string sexe = b.LitSexe(x.personne);
        const int modele = sexe == "H" ? 764 : sexe == "F" ? 765 : 766;
        for (std::size_t parent : {x.pere, x.mere})
            if (parent) e.liens.push_back({modele, noeuds[parent - 1].personne});
        for (const auto& [u, v] : g.LiensMariage())
            if (u == n || v == n) e.liens.push_back({769, noeuds[(u == n ? v : u) - 1].personne});
        r.push_back(std::move(e));
    }
    std::stable_sort(r.begin(), r.end(), [](const EntreeGraphe& x, const EntreeGraphe& y) {
        return x.niveau < y.niveau;
    });
    return r;
}

std::string EnteteHTMLSimple(const std::string& titre) {
    return "<HTML><HEAD><META http-equiv=\"Content-Type\" content=\"text/html; "
           "charset=windows-1252\">\r\n<TITLE>" +
           EntiteHTML(titre) + "</TITLE><LINK REL=\"stylesheet\" HREF=\"Sylvane.css\"></HEAD><BODY>\r\n";
}

void EcritFeuilleStyle(Base& b, SystemeFichiers& fs, const std::string& dossier) {
    EcritureAtomique f(fs, dossier + "Sylvane.css");
    f.Sortie().ecrire(0, FeuilleStyle(b.Params()));
    f.Valide();
}

std::string RtfGraphe(Base& b, const GrapheParente& g, const std::string& titre) {
    const std::string par = "}{ \\plain \\f0\\fs16 \\par }\r\n";
    std::string r = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss Arial;}}\r\n";
    r += "{\\plain \\f0\\fs24\\b " + EchappeRTF(titre) + par;
    int niveau = 0;
    for (const EntreeGraphe& e : EntreesGraphe(b, g)) {
        if (e.niveau != niveau) {
            niveau = e.niveau;
            r +=
                "{\\plain \\f0\\fs20\\b " + EchappeRTF(Message(760) + std::to_string(niveau)) + par;
        }
        r += "{\\plain \\f0\\fs16\\b " + EchappeRTF(e.nom) + par;
        for (const EntreeGraphe::Lien& l : e.liens)
            r += "{\\plain \\f0\\fs16 \\tab " +
                 EchappeRTF(MessageAvec(l.message, b.NomComplet(l.personne))) + par;
    }
    return r + "}\r\n";
}

std::string HtmlGraphe(Base& b, const GrapheParente& g, const std::string& titre) {
    std::string r = EnteteHTMLSimple(titre) + "<H2>" + EntiteHTML(titre) + "</H2>\r\n";
    int niveau = 0;
    for (const EntreeGraphe& e : EntreesGraphe(b, g)) {
        if (e.niveau != niveau) {
            r += niveau ? "</UL>\r\n" : "";
            niveau = e.niveau;
            r += "<H3>" + EntiteHTML(Message(760) + std::to_string(niveau)) + "</H3>\r\n<UL>\r\n";
        }
        r += "<LI><A NAME=\"i" + std::to_string(e.personne) + "\"></A><B>" + EntiteHTML(e.nom) +
             "</B>";
        for (const EntreeGraphe::Lien& l : e.liens) {
            // The name inside the message's text becomes the link.
            const std::string lien = "<A HREF=\"#i" + std::to_string(l.personne) + "\">" +
                                     EntiteHTML(b.NomComplet(l.personne)) + "</A>";
            const std::string modele = Message(l.message);
            const std::size_t ici = modele.find("&1");
            r += "<BR>" + (ici == std::string::npos ? EntiteHTML(modele) + " " + lien
                                                    : EntiteHTML(modele.substr(0, ici)) + lien +
                                                          EntiteHTML(modele.substr(ici + 2)));
        }
        r += "</LI>\r\n";
    }
    return r + (niveau ? "</UL>\r\n" : "") + "</BODY></HTML>\r\n";
}

} // namespace sylvane
