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

// The fields of the person record that hold the list positions, and the
// size a list is read with: at most 200 entries, up to the first 0.
constexpr int kChampMariages = 29;
constexpr int kChampEnfants = 33;
constexpr std::size_t kTailleListe = 800;

std::size_t Seau(int v) { return static_cast<std::size_t>(std::min(v, kDernierSeau)); }

} // namespace

std::optional<std::pair<int, int>> JourEtMois(const std::string& jourMois) {
    // The form most held, "d/m" or "d/m/yyyy" in digits, read without copies.
    {
        const std::string_view v = jourMois;
        const auto barre = v.find('/');
        const auto fin = barre == std::string_view::npos ? barre : v.find('/', barre + 1);
        const std::string_view j = v.substr(0, barre == std::string_view::npos ? 0 : barre),
                               m = barre == std::string_view::npos
                                       ? std::string_view{}
                                       : v.substr(barre + 1, fin == std::string_view::npos ? fin : fin - barre - 1);
        if (Chiffres(j) && Chiffres(m) && j.size() <= 2 && m.size() <= 2)
            return Verifie(Nombre(j), Nombre(m));
    }
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
    std::uint8_t mariages = 0, enfants = 0;  // up to 200
    std::int8_t moisNaiss = -1, moisDeces = -1;
    char sexe = ' ';
    bool deces = false;
};

std::int16_t AnNumerique(std::string_view an) {
    return Chiffres(an) && an.size() <= 4 ? static_cast<std::int16_t>(Nombre(an)) : -1;
}

// The year as the record holds it, less its blanks on both sides.
std::string_view SansBlancs(const std::string& s) {
    std::string_view v = s;
    while (!v.empty() && v.front() == ' ') v.remove_prefix(1);
    while (!v.empty() && v.back() == ' ') v.remove_suffix(1);
    return v;
}

std::int8_t Mois(const std::string& jourMois) {
    if (jourMois.empty()) return -1;
    const auto jm = JourEtMois(jourMois);
    return jm ? static_cast<std::int8_t>(jm->second - 1) : -1;
}

// The decade key of Base::CleAnNaiss without building it: a blank counts
// as "0", a "-" anywhere makes the year one before Christ, with no decade.
std::int16_t Decennie(std::string_view an) {
    if (an.find('-') != std::string_view::npos) return 0;
    int d = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const char c = i < an.size() ? an[i] : ' ';
        if (c == ' ' || c == '\0') { d *= 10; continue; }
        if (c < '0' || c > '9') return 0;
        d = d * 10 + (c - '0');
    }
    return static_cast<std::int16_t>(d);
}

// The entries of a packed list read at `position`, at most 200: the count
// up to the first 0, and the numbers themselves when asked. Most lists are
// short: their first bytes are read, the rest only when no 0 ends them.
int EntreesListe(Base& b, std::uint32_t position, std::vector<std::uint32_t>* numeros) {
    constexpr std::size_t kDebut = 64;
    std::string d = b.Lire(position, kDebut);
    int n = 0;
    for (std::size_t o = 0; o + 4 <= d.size(); o += 4) {
        const std::uint32_t v = Unpack4(d, o);
        if (v == 0) return n;
        if (numeros) numeros->push_back(v);
        ++n;
        if (o + 4 == kDebut && d.size() == kDebut) d += b.Lire(position + kDebut, kTailleListe - kDebut);
    }
    return n;
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
    const std::size_t total = personnes.size();
    s.total = total;
    const std::string titre = Message(861), libelle = Message(898);
    auto arret = [&](std::size_t k) {
        if (k % 4096 == 0 && inter.Arrete()) s.arretee = true;
        return s.arretee;
    };

    // The entries in file order, by counting (a list may name a person
    // twice): rang[k] is the entry of rank k, place[n] the first rank of n.
    std::uint32_t maxNumero = 0;
    for (std::uint32_t n : personnes) maxNumero = std::max(maxNumero, n);
    std::vector<std::uint32_t> place(static_cast<std::size_t>(maxNumero) + 2, 0);
    for (std::uint32_t n : personnes) ++place[n + 1];
    for (std::size_t i = 1; i < place.size(); ++i) place[i] += place[i - 1];
    std::vector<std::pair<std::uint32_t, std::uint32_t>> rang(total); // (person, entry)
    {
        std::vector<std::uint32_t> suivant(place.begin(), place.end() - 1);
        for (std::uint32_t i = 0; i < total; ++i) rang[suivant[personnes[i]]++] = {personnes[i], i};
    }
    // What is gathered of each rank, and the rank of each entry.
    std::vector<Releve> releves(total);
    std::vector<std::uint32_t> rangDe(total);
    // The birth year and its decade of each rank, for the parents.
    std::vector<std::pair<std::int16_t, std::int16_t>> annees(total);

    // 1. The records and the texts of the identities, in file order. The
    // lists come after, in the order of their places in the file: a list is
    // written anew at the file's end at each change, so in person order
    // they lie all over the file.
    struct Liste {
        std::uint32_t position, rang;
        bool mariages;
    };
    std::vector<Liste> listes;
    for (std::uint32_t k = 0; k < total; ++k) {
        if (arret(k)) return s;
        const auto [n, i] = rang[k];
        if (k > 0 && rang[k - 1].first == n) { // read once
            rangDe[i] = k - 1;
            annees[k] = annees[k - 1];
            continue;
        }
        rangDe[i] = k;
        Releve& r = releves[k];
        r.pere = b.LitPere(n);
        r.mere = b.LitMere(n);
        const std::string sexe = b.LitSexe(n);
        r.sexe = sexe.empty() ? ' ' : sexe[0];
        const std::string anN = b.LitAnNaiss(n), anD = b.LitAnDeces(n);
        const std::string_view an = SansBlancs(anN), ad = SansBlancs(anD);
        r.anNaiss = AnNumerique(an);
        r.anDeces = AnNumerique(ad);
        r.deces = !ad.empty();
        r.decNaiss = Decennie(anN);
        r.decDeces = Decennie(anD);
        annees[k] = {r.anNaiss, r.decNaiss};
        r.moisNaiss = Mois(b.LitDateNaiss(n));
        r.moisDeces = Mois(b.LitDateDeces(n));
        if (const std::uint32_t p = b.PositionChamp(n, kChampMariages)) listes.push_back({p, k, true});
        if (const std::uint32_t p = b.PositionChamp(n, kChampEnfants)) listes.push_back({p, k, false});
    }
    std::sort(listes.begin(), listes.end(),
              [](const Liste& x, const Liste& y) { return x.position < y.position; });
    std::vector<std::pair<std::uint32_t, std::uint32_t>> mariagesHommes;
    std::vector<std::uint32_t> numeros;
    for (std::size_t k = 0; k < listes.size(); ++k) {
        if (arret(k)) return s;
        const Liste& l = listes[k];
        Releve& r = releves[l.rang];
        const bool homme = l.mariages && r.sexe == 'H';
        numeros.clear();
        const int nombre = EntreesListe(b, l.position, homme ? &numeros : nullptr);
        (l.mariages ? r.mariages : r.enfants) = static_cast<std::uint8_t>(nombre);
        for (std::uint32_t m : numeros) mariagesHommes.push_back({l.rang, m});
    }
    // The months of marriage, read in marriage order, then grouped by the
    // man's rank: debutMois[k] to debutMois[k + 1] are rank k's.
    std::sort(mariagesHommes.begin(), mariagesHommes.end(),
              [](const auto& x, const auto& y) { return x.second < y.second; });
    std::vector<std::uint32_t> debutMois(total + 1, 0);
    std::vector<std::int8_t> moisLus(mariagesHommes.size());
    for (std::size_t k = 0; k < mariagesHommes.size(); ++k) {
        if (arret(k)) return s;
        moisLus[k] = Mois(b.DateMariage(mariagesHommes[k].second));
        if (moisLus[k] >= 0) ++debutMois[mariagesHommes[k].first + 1];
    }
    for (std::size_t k = 1; k < debutMois.size(); ++k) debutMois[k] += debutMois[k - 1];
    std::vector<std::int8_t> moisMariages(debutMois.back());
    {
        std::vector<std::uint32_t> suivant(debutMois.begin(), debutMois.end() - 1);
        for (std::size_t k = 0; k < mariagesHommes.size(); ++k)
            if (moisLus[k] >= 0) moisMariages[suivant[mariagesHommes[k].first]++] = moisLus[k];
    }
    // The parents' years: those of the persons gathered, else read.
    auto anneesDe = [&](std::uint32_t p) -> std::pair<std::int16_t, std::int16_t> {
        if (p <= maxNumero && place[p + 1] != place[p]) return annees[place[p]];
        const std::string an = b.LitAnNaiss(p);
        return {AnNumerique(SansBlancs(an)), Decennie(an)};
    };

    // 2. The figures, 100 interleaved slices taken in a random order.
    auto compte = [&](std::uint32_t k) {
        const Releve& r = releves[k];
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
        if (r.sexe == 'H' && r.mariages > 0)
            for (std::uint32_t m = debutMois[k]; m < debutMois[k + 1]; ++m)
                ++s.moisMariage[static_cast<std::size_t>(moisMariages[m])];
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
        for (std::size_t i = tranche; i < total; i += kTranches) {
            if (inter.Arrete()) {
                s.arretee = true;
                return s;
            }
            compte(rangDe[i]);
            if (++s.lues % 100 == 0)
                inter.Montre(titre, libelle + " " + std::to_string(s.lues) + " / " +
                                        std::to_string(s.total));
        }
    }
    return s;
}

} // namespace sylvane
