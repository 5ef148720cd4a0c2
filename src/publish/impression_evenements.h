// The list of events on paper: one line an event (date, year, place, type,
// number) under the page head, the column headings on top of each page.
// The rows are asked for one at a time and never kept, so that a base of
// half a million events prints in the memory of one line.
#pragma once

#include "charts/surface.h"
#include "publish/impression.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace sylvane {

class Base;

// Date "dd/mm/yyyy", year, place, type label, number.
using LigneEvt = std::array<std::string, 5>;

// The row of event `e` as the list shows it.
LigneEvt LigneEvenement(Base& b, std::uint32_t e);

// Prints `nombre` rows, row `i` given by `ligne(i)`, under the page head
// titled `titre`, then, when `compte`, the count of rows (message 4184). A row's place and
// type are cut with "..." when they pass their column. `o.progres` gets the
// page in course and `o.arret` is polled every few rows: a stop closes the
// page in course and answers Arrete. `faits` (when given) receives the
// rows printed. The rows of a page the surface does not keep (`Garde`)
// are not asked for. Nothing is drawn for no row (Vide).
FinRapport ImprimeListeEvenements(Base& b, Surface& s, const std::string& titre,
                                  const LigneEvt& entetes, std::size_t nombre,
                                  const std::function<LigneEvt(std::size_t)>& ligne,
                                  const OptionsImpression& o, std::size_t* faits = nullptr,
                                  bool compte = true);

} // namespace sylvane
