#include "search/anniversaires.h"

#include "search/statistiques.h"
#include "store/base.h"
#include "text/messages.h"
#include "text/mots.h"

#include <algorithm>

namespace sylvane {
namespace {

constexpr int kDebutMois[13] = {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366};

bool AUneDate(const std::array<SlotRubrique, 10>& slots) {
    for (const SlotRubrique& s : slots)
        if (s.symbole != ' ' && s.drapeau == '1') return true;
    return false;
}

} // namespace

int Calendrier::JourDeLAn(int jour, int mois) {
    if (mois < 1 || mois > 12 || jour < 1 || jour > kDebutMois[mois] - kDebutMois[mois - 1])
        return -1;
    return kDebutMois[mois - 1] + jour - 1;
}

std::pair<int, int> Calendrier::JourMois(int j) {
    int m = 1;
    while (m < 12 && j >= kDebutMois[m]) ++m;
    return {j - kDebutMois[m - 1] + 1, m};
}

void Calendrier::Vide() {
    for (auto& j : jours_) j.clear();
    construit_ = complet_ = false;
}

void Calendrier::Construit(Base& b, const Interaction& inter) {
    Vide();
    construit_ = true;
    const Entete& e = b.Tete();
    const bool rubriquesPersonne = AUneDate(e.rubriquesPersonne);
    const bool rubriquesMariage = AUneDate(e.rubriquesMariage);
    const std::uint32_t total = e.nbPersonnes;
    std::vector<std::uint32_t> tri;
    tri.reserve(total);
    for (std::uint32_t i = 1; i <= total; ++i)
        if (const std::uint32_t n = b.TriFiche(i); n != 0) tri.push_back(n);

    // The days of each person are read in the order of the file, then put
    // in the calendar in sort order.
    struct Entree {
        std::uint16_t jour;
        char genre, symbole; // "I$", "M@", "I" + a rubric's symbol ...
        std::uint32_t numero;
    };
    std::vector<Entree> entrees;
    std::vector<std::uint32_t> ordre(tri.size());
    for (std::uint32_t k = 0; k < ordre.size(); ++k) ordre[k] = k;
    std::sort(ordre.begin(), ordre.end(), [&](std::uint32_t x, std::uint32_t y) { return tri[x] < tri[y]; });
    std::vector<std::pair<std::uint32_t, std::uint32_t>> plages(tri.size());
    auto ajoute = [&entrees](const std::string& jourMois, char genre, char symbole, std::uint32_t n) {
        if (auto jm = JourEtMois(jourMois)) {
            const int j = JourDeLAn(jm->first, jm->second);
            if (j >= 0) entrees.push_back({static_cast<std::uint16_t>(j), genre, symbole, n});
        }
    };
    auto rubriques = [&](const TableValeursRubriques& t, const std::array<SlotRubrique, 10>& slots,
                         char genre, std::uint32_t n) {
        for (std::size_t i = 0; i < t.size() && i < slots.size(); ++i) {
            if (slots[i].drapeau != '1' || t[i].jourMois.find('/') == std::string::npos) continue;
            ajoute(t[i].jourMois, genre, slots[i].symbole, n);
        }
    };
    const std::string titre = Message(953), libelle = Message(898);
    bool arrete = false;
    std::size_t lus = 0;
    for (std::uint32_t k : ordre) {
        if (inter.Arrete()) {
            arrete = true;
            break;
        }
        const std::uint32_t n = tri[k];
        const auto avant = static_cast<std::uint32_t>(entrees.size());
        ajoute(b.LitDateNaiss(n), 'I', '$', n);
        ajoute(b.LitDateDeces(n), 'I', '~', n);
        for (std::uint32_t m : b.Mariages(n)) {
            // Each marriage once: through its husband, or its wife alone.
            const std::uint32_t mari = b.LitMari(m);
            if (mari != n && !(mari == 0 && b.LitFemme(m) == n)) continue;
            ajoute(b.DateMariage(m), 'M', '@', m);
            if (rubriquesMariage) rubriques(b.RubriquesMariage(m), e.rubriquesMariage, 'M', m);
        }
        if (rubriquesPersonne) rubriques(b.RubriquesNote(n), e.rubriquesPersonne, 'I', n);
        plages[k] = {avant, static_cast<std::uint32_t>(entrees.size())};
        if (++lus % 100 == 0)
            inter.Montre(titre, libelle + " " + std::to_string(lus) + " / " + std::to_string(total));
    }
    // A stop keeps what was read.
    for (std::uint32_t k = 0; k < plages.size(); ++k)
        for (std::uint32_t i = plages[k].first; i < plages[k].second; ++i) {
            const Entree& x = entrees[i];
            jours_[x.jour].push_back({std::string{x.genre, x.symbole}, x.numero});
        }
    complet_ = !arrete;
}

ListesJour ListesDuJour(Base& b, const Calendrier& c, int jourDeLAn) {
    ListesJour l;
    for (const RefAnniv& r : c.Jour(jourDeLAn)) {
        LigneAnniv x;
        x.ref = r;
        if (r.tag == "I$") {
            x.personne = r.numero;
            x.nom = b.NomComplet(r.numero);
            x.annee = Trim(b.LitAnNaiss(r.numero));
            x.lieu = b.LieuNaiss(r.numero);
            l.naissances.push_back(std::move(x));
        } else if (r.tag == "I~") {
            x.personne = r.numero;
            x.nom = b.NomComplet(r.numero);
            x.annee = Trim(b.LitAnDeces(r.numero));
            x.lieu = b.LieuDeces(r.numero);
            l.deces.push_back(std::move(x));
        } else if (r.tag == "M@") {
            const std::uint32_t mari = b.LitMari(r.numero), femme = b.LitFemme(r.numero);
            x.personne = mari ? mari : femme;
            x.nom = b.NomComplet(mari) + " / " + b.NomComplet(femme);
            x.annee = Trim(b.LitAnMariage(r.numero));
            x.lieu = b.LieuMariage(r.numero);
            l.mariages.push_back(std::move(x));
        } else if (r.tag.size() == 2) {
            const bool mariage = r.tag[0] == 'M';
            x.personne = mariage ? b.LitMari(r.numero) : r.numero;
            if (mariage && x.personne == 0) x.personne = b.LitFemme(r.numero);
            x.rubrique = b.LibelleRubrique(b.RubriqueDeSymbole(r.tag[1]));
            x.nom = mariage ? b.NomComplet(b.LitMari(r.numero)) + " / " +
                                  b.NomComplet(b.LitFemme(r.numero))
                            : b.NomComplet(r.numero);
            const auto& slots = mariage ? b.Tete().rubriquesMariage : b.Tete().rubriquesPersonne;
            const auto t = mariage ? b.RubriquesMariage(r.numero) : b.RubriquesNote(r.numero);
            for (std::size_t i = 0; i < t.size() && i < slots.size(); ++i)
                if (slots[i].symbole == r.tag[1]) x.annee = Trim(t[i].annee);
            l.mots.push_back(std::move(x));
        }
    }
    return l;
}

} // namespace sylvane
