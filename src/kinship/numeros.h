// The numbers of persons against the two reference persons of a base
// (De Cujus 1 and 2): a Sosa number for an ascendant, a text such as
// "1.2b3" for a descendant. Shown as [n] for De Cujus 1 and {n} for
// De Cujus 2, in front of names and on the person sheet.
#pragma once

#include "store/base.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace sylvane {

// The numbering against one De Cujus.
struct TableNumeros {
    std::uint32_t deCujus = 0;
    // By person number: k > 0 is ascendant k, k < 0 descendant -k, 0 neither.
    // Empty while the table has not been computed.
    std::vector<std::int32_t> index;
    std::vector<std::int32_t> ascendants; // ascendant k at [k - 1]
    std::vector<std::string> descendants; // descendant k at [k - 1]
    // Set when a parent link of a numbered person changed; the next tick
    // of the minute timer recomputes the table.
    bool perimee = false;
    // The status panel: "[first name family name]" or "{...}".
    std::string panneau;

    bool Calculee() const { return !index.empty(); }
    bool Numerote(std::uint32_t personne) const {
        return personne < index.size() && index[personne] != 0;
    }
    // The decimal ascendant number or the descendant text; "" for none.
    std::string Numero(std::uint32_t personne) const;
};

// The numbering state of the process, one per open base.
struct EtatNumerotation {
    TableNumeros deCujus1;
    TableNumeros deCujus2;
};

// Rebuilds the table from its `deCujus` (an empty table for none), fills its
// panel and clears its stale mark.
void CalculeNumeros(Base& base, TableNumeros& table, char ouvrante, char fermante);
void Calcul_Numeros_1(Base& base, EtatNumerotation& etat);
void Calcul_Numeros_2(Base& base, EtatNumerotation& etat);

// The end of each tick of the minute timer: recomputes the stale tables,
// De Cujus 1 first. Returns whether anything was recomputed.
bool MajNumerosPerimes(Base& base, EtatNumerotation& etat);

// Installs the base's hooks for parent changes (stale marks) and person
// creation (the tables grow), after any hook already there.
void BrancheNumerotation(Base& base, EtatNumerotation& etat);

// The value of the display-name tag "NUMB": "[n]" and "{n}" when the person
// is numbered against De Cujus 1 and 2, joined by a blank; "" otherwise.
std::string ValeurNUMB(const EtatNumerotation& etat, std::uint32_t personne);

// A display-name hook answering "NUMB" and passing any other tag on to
// `suivant` (the rubrics), for `Base::valeurNom_`.
std::function<std::string(std::uint32_t, const std::string&)>
ValeurNomAvecNumeros(const EtatNumerotation& etat,
                     std::function<std::string(std::uint32_t, const std::string&)> suivant = {});

// The pair in front of a name on the person sheet: "{n2} [n1] ", each part
// present even when empty.
std::string StatutNumeros(const EtatNumerotation& etat, std::uint32_t personne);

} // namespace sylvane
