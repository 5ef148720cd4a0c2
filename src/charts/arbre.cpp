#include "charts/arbre.h"

#include "store/pack.h"

#include <algorithm>
#include <vector>

namespace sylvane {

namespace {
// Deeper walks would only come from a damaged base; they stop here.
constexpr int kNiveauxMax = 255;
// A person's lists are read up to this many entries.
constexpr int kListeMax = 200;
} // namespace

bool PersonneExiste(Base& b, std::uint32_t n) {
    if (n == 0 || n > b.Tete().maxPersonne) return false;
    const std::string s = b.LitSexe(n);
    return !s.empty() && s != " ";
}

std::uint32_t ArbreGraphe::Lit(const std::string& t, std::uint32_t i) {
    if (i == 0 || std::size_t{i} * 4 > t.size()) return 0;
    return Unpack4(t, (std::size_t{i} - 1) * 4);
}

void ArbreGraphe::Ecrit(std::string& t, std::uint32_t i, std::uint32_t v) {
    const std::string p = Pack4(v);
    t.replace((std::size_t{i} - 1) * 4, 4, p);
}

std::uint32_t ArbreGraphe::Ajoute(std::uint32_t parent, std::uint32_t personne,
                                  std::uint32_t niveau) {
    if (Nombre() >= kNoeudsMax)
        throw ErreurArbre("le graphe d\xC3\xA9passe " + std::to_string(kNoeudsMax) + " cases");
    parents_ += Pack4(parent);
    personnes_ += Pack4(personne);
    niveaux_ += Pack4(niveau);
    feuilles_ += Pack4(0);
    return Nombre();
}

void ArbreGraphe::Feuille(std::uint32_t i) {
    ++nbFeuilles_;
    niveauMax_ = std::max(niveauMax_, Niveau(i));
    for (std::uint32_t p = Parent(i); p != 0; p = Parent(p)) Ecrit(feuilles_, p, Feuilles(p) + 1);
}

namespace {

class Constructeur {
  public:
    Constructeur(Base& b, const OptionsArbre& o, ArbreGraphe& a)
        : b_(b), o_(o), a_(a), niveaux_(std::clamp(o.niveaux, 0, kNiveauxMax)) {}

    bool Arrete() {
        if (!arrete_ && o_.arret && o_.arret()) arrete_ = true;
        return arrete_;
    }

    // Node `i` holds a person whose parents come above it.
    void Ascendants(std::uint32_t i, bool doublon) {
        if (Arrete()) return;
        const std::uint32_t p = a_.Personne(i);
        const std::uint32_t niveau = a_.Niveau(i);
        std::uint32_t pere = 0, mere = 0;
        if (PersonneExiste(b_, p)) {
            pere = b_.LitPere(p);
            mere = b_.LitMere(p);
        }
        if (!PersonneExiste(b_, pere)) pere = 0;
        if (!PersonneExiste(b_, mere)) mere = 0;
        if (doublon || (pere == 0 && mere == 0) || niveau >= static_cast<std::uint32_t>(niveaux_)) {
            a_.Feuille(i);
            return;
        }
        const bool perePresent = o_.sansImplexe && pere != 0 && developpes_.count(pere) != 0;
        const bool merePresent = o_.sansImplexe && mere != 0 && developpes_.count(mere) != 0;
        developpes_.insert(p);
        Ascendants(a_.Ajoute(i, pere, niveau + 1), perePresent);
        Ascendants(a_.Ajoute(i, mere, niveau + 1), merePresent);
    }

    void Descendants(std::uint32_t i, std::uint32_t epouxDe) {
        if (Arrete()) return;
        const std::uint32_t p = a_.Personne(i);
        const std::uint32_t niveau = a_.Niveau(i);
        std::vector<std::uint32_t> enfants = Enfants(p);
        if (niveau == 0 && epouxDe != 0) {
            // The wives' children of another father stand beside the couple's.
            for (std::uint32_t m : b_.Mariages(p)) {
                const std::uint32_t femme = b_.LitFemme(m) == p ? b_.LitMari(m) : b_.LitFemme(m);
                if (!PersonneExiste(b_, femme)) continue;
                for (std::uint32_t c : Enfants(femme))
                    if (b_.LitPere(c) != p && b_.LitMere(c) != p) enfants.push_back(c);
            }
        }
        TriNaissance(enfants);
        if (developpes_.count(p) != 0 || enfants.empty() ||
            niveau >= static_cast<std::uint32_t>(niveaux_)) {
            a_.Feuille(i);
            return;
        }
        developpes_.insert(p);
        for (std::uint32_t c : enfants) {
            Descendants(a_.Ajoute(i, c, niveau + 1), 0);
            if (arrete_) return;
        }
    }

  private:
    std::vector<std::uint32_t> Enfants(std::uint32_t p) {
        std::vector<std::uint32_t> r;
        if (!PersonneExiste(b_, p)) return r;
        const std::string liste = b_.ListeEnfants(p);
        for (std::size_t k = 0; k + 4 <= liste.size() && r.size() < kListeMax; k += 4) {
            const std::uint32_t c = Unpack4(liste, k);
            if (c == 0) break;
            if (PersonneExiste(b_, c)) r.push_back(c);
        }
        return r;
    }

    // Earliest birth first, by exchanges of neighbours from the end of the
    // list until a pass exchanges nothing: children of one year keep their order.
    void TriNaissance(std::vector<std::uint32_t>& enfants) {
        std::vector<std::string> cles;
        for (std::uint32_t c : enfants) cles.push_back(b_.CleAnNaiss(c));
        for (bool echange = true; echange;) {
            echange = false;
            for (std::size_t k = enfants.size(); k-- > 1;) {
                if (cles[k] < cles[k - 1]) {
                    std::swap(cles[k], cles[k - 1]);
                    std::swap(enfants[k], enfants[k - 1]);
                    echange = true;
                }
            }
        }
    }

    Base& b_;
    const OptionsArbre& o_;
    ArbreGraphe& a_;
    int niveaux_;
    bool arrete_ = false;
    std::unordered_set<std::uint32_t> developpes_;
};

} // namespace

bool ArbreAscendants(Base& b, std::uint32_t personne, const OptionsArbre& o, ArbreGraphe& a) {
    Constructeur c(b, o, a);
    c.Ascendants(a.Ajoute(0, personne, 0), false);
    return !c.Arrete();
}

bool ArbreAscendantsCouple(Base& b, std::uint32_t mari, std::uint32_t femme,
                           const OptionsArbre& o, ArbreGraphe& a) {
    Constructeur c(b, o, a);
    const std::uint32_t racine = a.Ajoute(0, 0, 0);
    c.Ascendants(a.Ajoute(racine, mari, 0), false);
    c.Ascendants(a.Ajoute(racine, femme, 0), false);
    return !c.Arrete();
}

bool ArbreDescendants(Base& b, std::uint32_t personne, const OptionsArbre& o, bool couple,
                      ArbreGraphe& a) {
    Constructeur c(b, o, a);
    c.Descendants(a.Ajoute(0, personne, 0), couple ? personne : 0);
    return !c.Arrete();
}

} // namespace sylvane
