// Demographic figures of a base or of a list of persons: the parents
// known, the sexes, the marriages and children per person, the tables by
// decade of birth (lifetimes, ages at parenthood) and the months of birth,
// death and marriage.
//
// The persons are read in a random order of 100 interleaved slices, so
// that a run stopped half-way gives the figures of a fair sample.
#pragma once

#include "maintenance/interaction.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

class Base;

// The last bucket of the histograms counts 200 and more.
inline constexpr int kDernierSeau = 200;
// Decades 1 to 209: the years 10 to 2099.
inline constexpr int kDecennies = 210;

struct Moyenne {
    std::uint64_t nombre = 0;
    std::int64_t somme = 0;
    void Ajoute(std::int64_t v) { ++nombre; somme += v; }
    bool operator==(const Moyenne&) const = default;
};

struct LigneDecennie {
    std::uint64_t total = 0, hommes = 0, femmes = 0;
    Moyenne vie, vieHommes, vieFemmes; // lifetimes of those born in the decade
    Moyenne agePere, ageMere;          // age of a parent born in the decade at a child's birth
    bool Vide() const {
        return total == 0 && vie.nombre == 0 && agePere.nombre == 0 && ageMere.nombre == 0;
    }
    bool operator==(const LigneDecennie&) const = default;
};

struct Statistiques {
    std::uint64_t deuxParents = 0, pereSeul = 0, mereSeule = 0, sansParents = 0;
    std::uint64_t avecDeces = 0, hommes = 0, femmes = 0, indetermines = 0;
    // Index: the count (200 for 200 or more). Undetermined persons are left out.
    std::array<std::uint64_t, kDernierSeau + 1> mariagesHommes{}, mariagesFemmes{};
    std::array<std::uint64_t, kDernierSeau + 1> enfantsHommes{}, enfantsFemmes{};
    std::array<LigneDecennie, kDecennies> decennies{};
    // January first.
    std::array<std::uint64_t, 12> moisNaissance{}, moisDeces{}, moisMariage{};
    std::uint64_t lues = 0;  // persons read
    std::uint64_t total = 0; // persons to read
    bool arretee = false;

    std::uint64_t Personnes() const { return hommes + femmes + indetermines; }
    // The decades shown: from the first row in use to the last; empty when none.
    std::pair<int, int> DecenniesMontrees() const;
    bool operator==(const Statistiques&) const = default;
};

// The day and month of a held `JourMois` text when it names both ("12/1",
// or words such as "12 janvier" that the date reader turns into that
// form), checked against the leap year 2000; nothing otherwise.
std::optional<std::pair<int, int>> JourEtMois(const std::string& jourMois);

// The decade of a four-character year key ("1880" gives 188); 0 when the
// first three characters are not digits.
int DecennieNaissance(const std::string& cleAnnee);

// `liste`: the persons handed by a search or a list; empty: every person of
// the base, in sort order. `graine` seeds the order of the slices. The
// progress shows message 898 with the count every hundredth person.
Statistiques CalculeStatistiques(Base& b, const std::vector<std::uint32_t>& liste,
                                 const Interaction& i, std::uint32_t graine);

// One decimal of sum over count, "  " when the count is 0.
std::string TexteMoyenne(const Moyenne& m);

} // namespace sylvane
