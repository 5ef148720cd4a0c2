// Helpers shared by the tests of the base: deterministic edit scenarios and
// a field-by-field picture of a base.
#pragma once

#include "store/base.h"
#include "store/fichier_memoire.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sylvane::test {

// Every observable field of every person and marriage, plus the header
// counts and the sort table.
struct Etat {
    struct Personne {
        std::string sexe, anNaiss, anDeces, identite, note, mariages, enfants, liens, evts, docs;
        std::uint32_t pere = 0, mere = 0;
        bool operator==(const Personne&) const = default;
    };
    struct Mariage {
        std::uint32_t mari = 0, femme = 0;
        std::string an, anFin, note;
        bool operator==(const Mariage&) const = default;
    };
    std::uint32_t nbPersonnes = 0, maxPersonne = 0, maxMariage = 0;
    std::vector<std::uint32_t> tri;
    std::vector<Personne> personnes;
    std::vector<Mariage> mariages;
    bool operator==(const Etat&) const = default;
};

Etat Capture(Base& b);
// First difference between two pictures, for failure messages.
std::string Difference(const Etat& a, const Etat& b);

// Step k of a deterministic editing scenario: creates person k, links it to
// earlier persons, marries some, and rewrites fields of older persons so
// that blocks are overwritten in place. Step k depends only on k and on the
// base as steps 1 to k-1 left it.
void Etape(Base& b, int k);

// A fresh in-memory base at `chemin` after steps 1..k, committed once.
void Construit(SystemeFichiers& fs, const Parametres& p, const std::string& chemin, int k);

} // namespace sylvane::test
