// The GEDCOM writer: the base's persons, families, events and documents as a
// GEDCOM 5.5 file of the program's own dialect. It keeps no model of GEDCOM
// in memory: it walks the sort tables and the stores and prints lines.
// Events go out as SOUR records cited by their persons, documents as NOTE
// records, and families are rebuilt from marriages and from the parents of
// each child.
#pragma once

#include "store/base.h"
#include "store/fichier.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

// The character set of the file: the four `JeuCaracteres` of the import
// ('1' ANSI, '2' ANSEL, '0' code page 437 as "ASCII", '3' HTML entities),
// and 'U' for UTF-8.
constexpr char JeuUtf8 = 'U';

struct OptionsExport {
    char jeu = '1';
    bool liens = false;       // links as ASSO
    bool evenements = false;  // events as SOUR records
    bool documents = false;   // documents as NOTE records
    bool avant1900 = false;   // `Chk1900`: leave out those born after 1900
    // The persons chosen; empty: every person.
    std::function<bool(std::uint32_t)> selection;
    // Phase label and records done, at each checkpoint of 100 records.
    std::function<void(const std::string& phase, std::size_t fait)> progres;
    // The stop flag, looked at every 100 records.
    std::function<bool()> arret;
    // The header's date ("dd mmmm yyyy"); empty: today.
    std::string date;
};

enum class FinExport { Termine, Arrete };

// Writes the file at `chemin`, replaced only once whole: a failing write (an
// ErreurES) or a stop leaves the old file as it was. The open base itself
// is refused as output.
FinExport ExporteGedcom(Base& b, SystemeFichiers& fs, const std::string& chemin,
                        const OptionsExport& options);

// The same dialect for the GeneaNet tool: links stand behind FAMC, "PEDI" is
// an attribute, a baptism is "BAPM" and a will "WILL" among the events, and
// the set is read as '1' ANSI, '2' ANSEL, '3' HTML, anything else ASCII.
FinExport ExporteGeneanet(Base& b, SystemeFichiers& fs, const std::string& chemin,
                          const OptionsExport& options);

// The GEDCOM text of a held date. The "#" of a calendar escape, held as
// "*" since a text of the base cannot hold it, is written back as "#".
std::string DateGedcomTenue(std::string_view jourMois, std::string_view annee);

// One piece of a cut line: under the line's own tag, or as a CONC line.
struct MorceauGedcom {
    bool conc = false;
    std::string texte;
    bool operator==(const MorceauGedcom&) const = default;
};

// The cut of one line of text (already in the file's set). A line under 61
// characters stays whole. A longer one is cut once behind the last blank of
// its first 60 characters (the blank ends the piece); then, if what is left
// has 61 characters or more and no blank in its first 60, its first 60 go
// under the same tag as the piece before. The rest goes out as CONC pieces
// of 60 characters, cut with no regard for blanks, while 60 or more are
// left, and what is left at the end, even nothing, as a last CONC.
// `utf8`: never cut inside a character.
std::vector<MorceauGedcom> DecoupeLigneGedcom(std::string_view ligne, bool utf8 = false);

} // namespace sylvane
