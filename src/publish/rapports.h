// The persons of the reports of one person, in the order the HTML and RTF
// writers go through them, each with the lines that stand under its name.
#pragma once

#include "kinship/lignes.h"
#include "kinship/liste.h"
#include "store/base.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sylvane {

// The reports of one person.
enum class GenreRapport { Ascendants, Descendants, Famille, Fiche };

// One person of a report and the lines under its name: segments
// separated by NUL or "#" (not the "#" of a character reference "&#" nor
// of a link "\"#").
struct EntreeRapport {
    std::uint32_t personne = 0;
    std::string lignes;
    // The person through whom it came in an ascendant or descendant list.
    std::uint32_t lien = 0;
};

// The segments of report lines.
std::vector<std::string> SegmentsLignes(const std::string& lignes);

// The report's caption: message 575, 768 or 746 with the name, or
// "Fiche de " and the name.
std::string TitreRapport(Base& b, GenreRapport genre, std::uint32_t personne);

// The persons of a report of `personne`: the list of ascendants or
// descendants over `niveaux` generations (built in `liste`, left there for
// the other readers), the family (the person, the parents, the spouses,
// the children), or the person alone. `forme` gives the lines' form.
// Empty when the list could not be built (stop, work files).
std::vector<EntreeRapport> EntreesRapport(Base& b, ListeParente& liste, GenreRapport genre,
                                          std::uint32_t personne, int niveaux, FormeLigne forme);

} // namespace sylvane
