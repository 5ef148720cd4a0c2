#include "kinship/numeros.h"

#include <array>

namespace sylvane {
namespace {

constexpr int kProfondeurAscendants = 13;
constexpr int kGenerationsDescendants = 10;
constexpr int kMariagesLus = 26;
constexpr int kEnfantsLus = 50;

class Numerotation {
  public:
    Numerotation(Base& base, TableNumeros& table) : base_(base), t_(table) {}

    // The smallest number wins when an ancestor is reached by several
    // paths; its own ancestors then keep the numbers derived from it. The
    // depth limit keeps the numbers within 16 bits.
    void Ascendant(std::uint32_t p, std::int32_t numero, int profondeur) {
        if (p == 0 || p >= t_.index.size()) return;
        std::int32_t& k = t_.index[p];
        if (k == 0) {
            t_.ascendants.push_back(numero);
            k = static_cast<std::int32_t>(t_.ascendants.size());
        } else if (k > 0) {
            std::int32_t& existant = t_.ascendants[static_cast<std::size_t>(k - 1)];
            if (existant < numero) return;
            existant = numero;
        } else {
            return;
        }
        if (profondeur >= kProfondeurAscendants) return;
        const std::uint32_t pere = base_.LitPere(p), mere = base_.LitMere(p);
        Ascendant(pere, numero * 2, profondeur + 1);
        Ascendant(mere, numero * 2 + 1, profondeur + 1);
    }

    // Children are numbered by marriage: "." under a single marriage, the
    // marriage's letter under several, "*" for a child of no listed
    // marriage; so 1.2, 1.2b3, 1*1.
    void Descendants(std::uint32_t p, const std::string& texte, int generation) {
        if (generation >= kGenerationsDescendants) return;
        std::array<std::uint32_t, kMariagesLus> conjoints{};
        std::array<int, kMariagesLus> compteurs{};
        int nbMariages = 0;
        for (; nbMariages < kMariagesLus; ++nbMariages) {
            const std::uint32_t m = base_.MariageNo(p, nbMariages + 1);
            if (m == 0) break;
            const std::uint32_t mari = base_.LitMari(m);
            conjoints[static_cast<std::size_t>(nbMariages)] = mari == p ? base_.LitFemme(m) : mari;
        }
        int horsMariage = 0;
        const bool homme = base_.LitSexe(p) == "H";
        std::vector<std::uint32_t> enfants;
        for (int i = 1; i <= kEnfantsLus; ++i) {
            const std::uint32_t c = base_.EnfantNo(p, i);
            if (c == 0) break;
            enfants.push_back(c);
        }
        for (const std::uint32_t c : enfants) {
            const std::uint32_t pere = base_.LitPere(c), mere = base_.LitMere(c);
            int marie = -1;
            for (int i = 0; i < nbMariages; ++i) {
                const std::uint32_t conjoint = conjoints[static_cast<std::size_t>(i)];
                if (conjoint == pere || conjoint == mere) {
                    marie = i;
                    break;
                }
            }
            std::string suffixe;
            if (marie < 0)
                suffixe = "*" + std::to_string(++horsMariage);
            else {
                const char separateur = nbMariages == 1 ? '.' : static_cast<char>('a' + marie);
                suffixe = separateur + std::to_string(++compteurs[static_cast<std::size_t>(marie)]);
            }
            if (c >= t_.index.size()) continue;
            const std::string texteEnfant = texte + suffixe;
            std::int32_t& k = t_.index[c];
            if (k != 0 && !homme) continue; // the man's line takes precedence
            if (k < 0) {
                t_.descendants[static_cast<std::size_t>(-k - 1)] = texteEnfant;
            } else {
                t_.descendants.push_back(texteEnfant);
                k = -static_cast<std::int32_t>(t_.descendants.size());
            }
            Descendants(c, texteEnfant, generation + 1);
        }
    }

  private:
    Base& base_;
    TableNumeros& t_;
};

bool MarquePerimee(TableNumeros& t, std::uint32_t personne, std::uint32_t parent) {
    if (!t.Calculee() || !(t.Numerote(personne) || t.Numerote(parent))) return false;
    t.perimee = true;
    return true;
}

void Agrandit(TableNumeros& t, std::uint32_t personne) {
    if (t.Calculee() && personne >= t.index.size()) t.index.resize(std::size_t{personne} + 1, 0);
}

} // namespace

std::string TableNumeros::Numero(std::uint32_t personne) const {
    if (personne >= index.size()) return {};
    const std::int32_t k = index[personne];
    if (k > 0) return std::to_string(ascendants[static_cast<std::size_t>(k - 1)]);
    if (k < 0) return descendants[static_cast<std::size_t>(-k - 1)];
    return {};
}

void CalculeNumeros(Base& base, TableNumeros& table, char ouvrante, char fermante) {
    table.index.clear();
    table.ascendants.clear();
    table.descendants.clear();
    table.panneau.clear();
    table.perimee = false;
    const std::uint32_t d = table.deCujus;
    if (d == 0 || d > base.Tete().maxPersonne) return;
    table.index.assign(std::size_t{base.Tete().maxPersonne} + 1, 0);
    table.ascendants.push_back(1);
    table.index[d] = 1;
    Numerotation n(base, table);
    const std::uint32_t pere = base.LitPere(d), mere = base.LitMere(d);
    n.Ascendant(pere, 2, 0);
    n.Ascendant(mere, 3, 0);
    n.Descendants(d, "1", 0);
    table.panneau = ouvrante + base.LitPrenom(d) + " " + base.LitNom(d) + fermante;
}

void Calcul_Numeros_1(Base& base, EtatNumerotation& etat) {
    CalculeNumeros(base, etat.deCujus1, '[', ']');
}

void Calcul_Numeros_2(Base& base, EtatNumerotation& etat) {
    CalculeNumeros(base, etat.deCujus2, '{', '}');
}

bool MajNumerosPerimes(Base& base, EtatNumerotation& etat) {
    bool fait = false;
    if (etat.deCujus1.perimee) {
        Calcul_Numeros_1(base, etat);
        fait = true;
    }
    if (etat.deCujus2.perimee) {
        Calcul_Numeros_2(base, etat);
        fait = true;
    }
    return fait;
}

void BrancheNumerotation(Base& base, EtatNumerotation& etat) {
    base.parentChange_ = [&etat, avant = std::move(base.parentChange_)](std::uint32_t personne,
                                                                        std::uint32_t parent) {
        if (avant) avant(personne, parent);
        MarquePerimee(etat.deCujus1, personne, parent);
        MarquePerimee(etat.deCujus2, personne, parent);
    };
    base.personneCreee_ = [&etat, avant = std::move(base.personneCreee_)](std::uint32_t n) {
        if (avant) avant(n);
        Agrandit(etat.deCujus1, n);
        Agrandit(etat.deCujus2, n);
    };
}

std::string ValeurNUMB(const EtatNumerotation& etat, std::uint32_t personne) {
    std::string r;
    if (etat.deCujus1.Numerote(personne)) r = "[" + etat.deCujus1.Numero(personne) + "]";
    if (etat.deCujus2.Numerote(personne)) {
        if (!r.empty()) r += ' ';
        r += "{" + etat.deCujus2.Numero(personne) + "}";
    }
    return r;
}

std::function<std::string(std::uint32_t, const std::string&)>
ValeurNomAvecNumeros(const EtatNumerotation& etat,
                     std::function<std::string(std::uint32_t, const std::string&)> suivant) {
    return [&etat, suivant = std::move(suivant)](std::uint32_t n, const std::string& tag) {
        if (tag == "NUMB") return ValeurNUMB(etat, n);
        return suivant ? suivant(n, tag) : std::string();
    };
}

std::string StatutNumeros(const EtatNumerotation& etat, std::uint32_t personne) {
    return "{" + etat.deCujus2.Numero(personne) + "} [" + etat.deCujus1.Numero(personne) + "] ";
}

} // namespace sylvane
