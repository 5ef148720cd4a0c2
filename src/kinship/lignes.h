// The text of one entry of an ascendant or descendant list, as the printed,
// RTF and HTML reports show it under the person's name.
#pragma once

#include "kinship/liste.h"

#include <string>

namespace sylvane {

// How the name of the child (or parent) through whom a person was reached is
// written: plain, or HTML with a link to the person's page of a site or to
// the person's anchor in a single page.
enum class FormeLigne { Texte, HtmlSite, HtmlPage };

// All occurrences of entry n, ordered by generation then Sosa number, each
// as "generation - number - father/mother of <child>"; occurrences through
// the same child at the same generation share one segment. Segments are
// separated by a NUL character. The reference person's entry is
// "<760>1 - <759>1#". A "+" follows the numbers of generation 31 and beyond.
std::string LigneAscendant(const ListeParente& liste, Base& base, std::int32_t n,
                           FormeLigne forme = FormeLigne::Texte);

// All occurrences of entry n, ordered by generation then number string, each
// as "generation - number - son/daughter/child of <parent>", every segment
// followed by "#". Occurrences through the same parent at the same
// generation as the first one count as repeats, shown behind each segment.
std::string LigneDescendant(const ListeParente& liste, Base& base, std::int32_t n,
                            FormeLigne forme = FormeLigne::Texte);

} // namespace sylvane
