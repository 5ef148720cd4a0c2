// The base of the maintenance benchmarks: persons of random names among
// 3,000, first names among 200, born 1700 to 1899 at one of 2,000 places,
// each with an occupation. It is built once in memory, kept as a model file
// in /tmp, and copied afresh before each run, so that every run works on a
// real file of its own.
#pragma once

#include "store/base.h"
#include "store/fichier_memoire.h"

#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace sylvane {

// The persons made so far, by sex.
struct PersonnesModele {
    std::vector<std::uint32_t> hommes, femmes;
};

inline std::string MotAuHasard(std::mt19937& rng, int n, const char* prefixe) {
    return prefixe + std::to_string(rng() % static_cast<unsigned>(n));
}

// `metier` gives the occupation words of person i; `ajoute` gives person n,
// just made, what the benchmark needs more (parents, marriages, events).
inline void FabriqueModele(
    const std::string& modele, unsigned graine, std::uint32_t nombre,
    const std::function<std::string(std::mt19937&, std::uint32_t i)>& metier,
    const std::function<void(Base&, std::mt19937&, std::uint32_t n, char sexe,
                             const PersonnesModele&)>& ajoute) {
    static std::set<std::string> faits;
    if (!faits.insert(modele).second) return;
    SystemeMemoire fs;
    Parametres p;
    Base b(fs, p);
    b.Nouvelle("/b.sv2");
    std::mt19937 rng(graine);
    b.DebutLot();
    PersonnesModele personnes;
    for (std::uint32_t i = 1; i <= nombre; ++i) {
        const char sexe = "HF"[rng() % 2];
        const std::string nom = MotAuHasard(rng, 3000, "Nom");
        const std::string prenom = MotAuHasard(rng, 200, "Prenom");
        const std::string an = std::to_string(1700 + rng() % 200);
        const std::uint32_t n = b.CreePersonne(nom, prenom, "", sexe, an);
        const std::string lieu = MotAuHasard(rng, 2000, "Lieu");
        const std::string suite = " $" + lieu + "\r\nOCCU  \\" + metier(rng, i);
        b.EcritNote(n, b.LitNote(n) + suite);
        b.AjoutLot(n, suite);
        (sexe == 'H' ? personnes.hommes : personnes.femmes).push_back(n);
        ajoute(b, rng, n, sexe, personnes);
    }
    b.FinLot();
    b.FermeBase();
    std::ofstream(modele, std::ios::binary) << fs.contenu("/b.sv2");
}

inline void CopieModele(const std::string& modele, const std::string& chemin) {
    std::ifstream in(modele, std::ios::binary);
    std::ofstream out(chemin, std::ios::binary);
    out << in.rdbuf();
}

} // namespace sylvane
