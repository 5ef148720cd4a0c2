// The anniversaries as reports: the recapitulation of the whole year
// (births, deaths and marriages of each day) and the calendar report of a
// period (an index of its days, then each day with its persons, marriages
// and dated rubrics), each on paper, as an RTF document or as HTML. And a
// table of figures on paper, for the tabs of the statistics.
#pragma once

#include "charts/surface.h"
#include "maintenance/interaction.h"
#include "publish/impression.h"
#include "search/anniversaires.h"
#include "store/fichier.h"

#include <string>
#include <vector>

namespace sylvane {

class Base;

enum class DestinationAnniv { Imprimante, RTF, HTML };

// The days written: the whole year for the recapitulation, `premier` to
// `dernier` (days of the year, 0 to 365) for the calendar report.
struct PeriodeAnniv {
    int premier = 0, dernier = 365;
    bool recapitulation = true;
};

// "12 mars": the day in words.
std::string LibelleJourAnniv(int jourDeLAn);

// Writes the report in the file `chemin` (HTML: "Sylvane.css" beside it),
// whole or not at all. False when the user stopped: the file is as it was.
// Throws ErreurES when it can't be written.
bool EcritAnniversaires(Base& b, SystemeFichiers& fs, const Calendrier& c, const PeriodeAnniv& p,
                        DestinationAnniv d, const std::string& chemin, const Interaction& io,
                        const std::string& banniere = "Sylvane");

// The same on paper, on the surface, with the page head of the printed reports.
FinRapport ImprimeAnniversaires(Base& b, Surface& s, const Calendrier& c, const PeriodeAnniv& p,
                                const OptionsImpression& o);

// A table on paper under the page head titled `titre`: the headings in
// bold, then a line for each row, each column as wide as its widest cell,
// the first one to the left and the others (the figures) to the right.
// A row that passes the page's foot goes on a new page under the headings.
FinRapport ImprimeTable(Base& b, Surface& s, const std::string& titre,
                        const std::vector<std::string>& entetes,
                        const std::vector<std::vector<std::string>>& lignes,
                        const OptionsImpression& o);

} // namespace sylvane
