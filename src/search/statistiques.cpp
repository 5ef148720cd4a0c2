#include "search/statistiques.h"

#include "store/base.h"
#include "store/pack.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <random>

namespace sylvane {
namespace {

bool Chiffres(std::string_view s) {
    return !s.empty() && std::all_of(s.begin(), s.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int Nombre(std::string_view s) {
    int v = 0;
    for (char c : s) v = v * 10 + (c - '0');
    return v;
}

constexpr const char* kMoisGedcom[12] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                         "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

std::optional<std::pair<int, int>> Verifie(int jour, int mois) {
    static constexpr int kJours[12] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (mois < 1 || mois > 12 || jour < 1 || jour > kJours[mois - 1]) return std::nullopt;
    return std::pair{jour, mois};
}

// The number of a person's list entries, read only when the list exists.
int Compte(Base& b, std::uint32_t n, int offset, std::string (Base::*liste)(std::uint32_t)) {
    if (b.PositionChamp(n, offset) == 0) return 0;
    return static_cast<int>((b.*liste)(n).size() / 4);
}

// The fields of the person record that hold the list positions.
constexpr int kChampMariages = 29;
constexpr int kChampEnfants = 33;

std::size_t Seau(int v) { return static_cast<std::size_t>(std::min(v, kDernierSeau)); }

} // namespace

std::optional<std::pair<int, int>> JourEtMois(const std::string& jourMois) {
    const std::string t = Trim(jourMois);
    if (t.empty()) return std::nullopt;
    const auto barre = t.find('/');
    if (barre != std::string::npos) {
        // "d/m", or "d/m/yyyy" when the year was typed with the date.
        const auto fin = t.find('/', barre + 1);
        const std::string j = Trim(t.substr(0, barre)),
                          m = Trim(t.substr(barre + 1, fin == std::string::npos ? fin : fin - barre - 1));
        if (!Chiffres(j) || !Chiffres(m) || j.size() > 2 || m.size() > 2) return std::nullopt;
        return Verifie(Nombre(j), Nombre(m));
    }
    const auto blanc = t.find(' ');
    if (blanc == std::string::npos || !Chiffres(t.substr(0, blanc)) || blanc > 2)
        return std::nullopt;
    const std::string mot = Trim(t.substr(blanc + 1));
    for (int i = 0; i < 12; ++i)
        if (mot == kMoisGedcom[i]) return Verifie(Nombre(t.substr(0, blanc)), i + 1);
    // Words of the user's language: the date reader gives "d/m/2000".
    const std::string lu = Conv_DateSaisie(t + " 2000", "dd/mm/yyyy");
    const auto fin = lu.rfind("/2000");
    if (fin == std::string::npos || fin + 5 != lu.size()) return std::nullopt;
    return JourEtMois(lu.substr(0, fin));
}

int DecennieNaissance(const std::string& cle) {
    if (cle.size() < 3 || !Chiffres(std::string_view(cle).substr(0, 3))) return 0;
    return Nombre(std::string_view(cle).substr(0, 3));
}

std::pair<int, int> Statistiques::DecenniesMontrees() const {
    int premiere = 0, derniere = -1;
    for (int d = 1; d < kDecennies; ++d) {
        if (decennies[static_cast<std::size_t>(d)].Vide()) continue;
        if (premiere == 0) premiere = d;
        derniere = d;
    }
    return {premiere, derniere};
}

std::string TexteMoyenne(const Moyenne& m) {
    if (m.nombre == 0) return "  ";
    char t[32];
    std::snprintf(t, sizeof t, "%.1f",
                  static_cast<double>(m.somme) / static_cast<double>(m.nombre));
    return t;
}

namespace {

// What the figures need of one person, gathered in the order of the person
// numbers (the order of the file) before the figures are made in the
// random order of the slices.
struct Releve {
    std::uint32_t pere = 0, mere = 0;
    std::int16_t anNaiss = -1, anDeces = -1; // -1: not all digits
    std::int16_t decNaiss = 0, decDeces = 0; // 0: none
    std::uint16_t mariages = 0, enfants = 0;
    std::int8_t moisNaiss = -1, moisDeces = -1;
    char sexe = ' ';
    bool deces = false;
    std::uint32_t moisMariages = 0; // first of this person's entries in the marriage months
    std::uint32_t finMoisMariages = 0;
};

std::int16_t AnNumerique(const std::string& an) {
    return Chiffres(an) && an.size() <= 4 ? static_cast<std::int16_t>(Nombre(an)) : -1;
}

std::int8_t Mois(const std::string& jourMois) {
    const auto jm = JourEtMois(jourMois);
    return jm ? static_cast<std::int8_t>(jm->second - 1) : -1;
}

} // namespace

Statistiques CalculeStatistiques(Base& b, const std::vector<std::uint32_t>& liste,
                                 const Interaction& inter, std::uint32_t graine) {
    Statistiques s;
    std::vector<std::uint32_t> tous;
    if (liste.empty()) {
        const std::uint32_t nb = b.Tete().nbPersonnes;
        tous.reserve(nb);
        for (std::uint32_t i = 1; i <= nb; ++i)
            if (std::uint32_t n = b.TriFiche(i); n != 0) tous.push_back(n);
    }
    const std::vector<std::uint32_t>& personnes = liste.empty() ? tous : liste;
    s.total = personnes.size();
    const std::string titre = Message(861), libelle = Message(898);

    // 1. Gathering, in file order.
    std::vector<std::uint32_t> ordre(personnes.size());
    std::iota(ordre.begin(), ordre.end(), 0u);
    std::sort(ordre.begin(), ordre.end(),
              [&](std::uint32_t x, std::uint32_t y) { return personnes[x] < personnes[y]; });
    std::vector<Releve> releves(personnes.size());
    std::vector<std::int8_t> moisMariages;
    std::uint32_t maxNumero = 0;
    for (std::size_t k = 0; k < ordre.size(); ++k) {
        if (k % 4096 == 0 && inter.Arrete()) {
            s.arretee = true;
            return s;
        }
        const std::uint32_t n = personnes[ordre[k]];
        maxNumero = std::max(maxNumero, n);
        Releve& r = releves[ordre[k]];
        r.pere = b.LitPere(n);
        r.mere = b.LitMere(n);
        const std::string sexe = b.LitSexe(n);
        r.sexe = sexe.empty() ? ' ' : sexe[0];
        const std::string anN = Trim(b.LitAnNaiss(n)), anD = Trim(b.LitAnDeces(n));
        r.anNaiss = AnNumerique(anN);
        r.anDeces = AnNumerique(anD);
        r.deces = !anD.empty();
        r.decNaiss = static_cast<std::int16_t>(DecennieNaissance(b.CleAnNaiss(n)));
        r.decDeces = static_cast<std::int16_t>(DecennieNaissance(b.CleAnDeces(n)));
        r.mariages = static_cast<std::uint16_t>(Compte(b, n, kChampMariages, &Base::ListeMariages));
        r.enfants = static_cast<std::uint16_t>(Compte(b, n, kChampEnfants, &Base::ListeEnfants));
        r.moisNaiss = Mois(b.LitDateNaiss(n));
        r.moisDeces = Mois(b.LitDateDeces(n));
        r.moisMariages = r.finMoisMariages = static_cast<std::uint32_t>(moisMariages.size());
        if (r.sexe == 'H' && r.mariages > 0) {
            for (std::uint32_t m : b.Mariages(n))
                if (const std::int8_t mm = Mois(b.DateMariage(m)); mm >= 0) moisMariages.push_back(mm);
            r.finMoisMariages = static_cast<std::uint32_t>(moisMariages.size());
        }
    }
    // The parents' years: from what was gathered, else read.
    std::vector<std::uint32_t> place(static_cast<std::size_t>(maxNumero) + 1, 0);
    for (std::size_t k = 0; k < personnes.size(); ++k) place[personnes[k]] = static_cast<std::uint32_t>(k + 1);
    auto anneesDe = [&](std::uint32_t p) -> std::pair<std::int16_t, std::int16_t> {
        if (p <= maxNumero && place[p]) {
            const Releve& r = releves[place[p] - 1];
            return {r.anNaiss, r.decNaiss};
        }
        return {AnNumerique(Trim(b.LitAnNaiss(p))),
                static_cast<std::int16_t>(DecennieNaissance(b.CleAnNaiss(p)))};
    };

    // 2. The figures, 100 interleaved slices taken in a random order.
    auto compte = [&](const Releve& r) {
        if (r.pere && r.mere) ++s.deuxParents;
        else if (r.pere) ++s.pereSeul;
        else if (r.mere) ++s.mereSeule;
        else ++s.sansParents;
        if (r.deces) ++s.avecDeces;
        const bool homme = r.sexe == 'H', femme = r.sexe == 'F';
        if (homme) {
            ++s.hommes;
            ++s.mariagesHommes[Seau(r.mariages)];
            ++s.enfantsHommes[Seau(r.enfants)];
        } else if (femme) {
            ++s.femmes;
            ++s.mariagesFemmes[Seau(r.mariages)];
            ++s.enfantsFemmes[Seau(r.enfants)];
        } else {
            ++s.indetermines;
        }
        const int dn = r.decNaiss;
        const bool decennie = dn >= 1 && dn < kDecennies;
        if (decennie) {
            auto& l = s.decennies[static_cast<std::size_t>(dn)];
            ++l.total;
            if (homme) ++l.hommes;
            if (femme) ++l.femmes;
            if (r.anNaiss >= 0 && r.anDeces >= 0 && r.decDeces != 0 && r.decDeces >= dn) {
                const int vie = r.anDeces - r.anNaiss;
                l.vie.Ajoute(vie);
                if (homme) l.vieHommes.Ajoute(vie);
                if (femme) l.vieFemmes.Ajoute(vie);
            }
        }
        if (r.anNaiss >= 0) {
            auto parent = [&](std::uint32_t p, Moyenne LigneDecennie::*champ) {
                if (!p) return;
                const auto [an, d] = anneesDe(p);
                if (an < 0 || d < 1 || d >= kDecennies) return;
                (s.decennies[static_cast<std::size_t>(d)].*champ).Ajoute(r.anNaiss - an);
            };
            parent(r.pere, &LigneDecennie::agePere);
            parent(r.mere, &LigneDecennie::ageMere);
        }
        if (r.moisNaiss >= 0) ++s.moisNaissance[static_cast<std::size_t>(r.moisNaiss)];
        if (r.moisDeces >= 0) ++s.moisDeces[static_cast<std::size_t>(r.moisDeces)];
        for (std::uint32_t i = r.moisMariages; i < r.finMoisMariages; ++i)
            ++s.moisMariage[static_cast<std::size_t>(moisMariages[i])];
    };

    constexpr std::size_t kTranches = 100;
    std::vector<std::size_t> libres(kTranches);
    std::iota(libres.begin(), libres.end(), 0);
    std::mt19937 alea(graine);
    while (!libres.empty()) {
        std::uniform_int_distribution<std::size_t> tirage(0, libres.size() - 1);
        const std::size_t k = tirage(alea);
        const std::size_t tranche = libres[k];
        libres.erase(libres.begin() + static_cast<std::ptrdiff_t>(k));
        for (std::size_t i = tranche; i < personnes.size(); i += kTranches) {
            if (inter.Arrete()) {
                s.arretee = true;
                return s;
            }
            compte(releves[i]);
            if (++s.lues % 100 == 0)
                inter.Montre(titre, libelle + " " + std::to_string(s.lues) + " / " +
                                        std::to_string(s.total));
        }
    }
    return s;
}

} // namespace sylvane
