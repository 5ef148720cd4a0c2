// Consistency control: the two-way family links of a base are checked and
// repaired, each repair written to a report.
#pragma once

#include "maintenance/interaction.h"
#include "store/base.h"

#include <string>

namespace sylvane {

struct ResultatControle {
    bool fait = false;    // false when the question was cancelled
    std::string rapport;  // the report's lines, each ended by CR LF (Windows-1252)
    std::string chemin;   // the report file
};

// The report file: the base title and ".txt" in the work folder (see
// Parametres::DossierTravail), never beside the base.
std::string CheminRapportControle(const Base& b);

// Asks message 842 (Yes: a ".sav" copy first, No: no copy, Cancel: nothing),
// commits and reopens the base, then walks marriages and persons. The
// repairs go through the stores and belong to the next commit.
ResultatControle Controler(Base& b, const Interaction& io);

} // namespace sylvane
