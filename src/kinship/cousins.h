// Cousinages: for a set of selected persons, every ancestor couple (or
// single ancestor) at which two lines of the set meet, that is where two
// different children lead to persons of the set; with the text files, the
// pages and the script list that go out of it.
#pragma once

#include "maintenance/interaction.h"
#include "store/base.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

// A person of the selection; the subjects are marked "*" in the grid.
struct Selectionne {
    std::uint32_t personne = 0;
    bool sujet = false;
};

// A meeting point: a couple, or a single ancestor (the other one 0).
struct EntreeCousinage {
    std::uint32_t mari = 0, femme = 0;
    // The children of the entry through whom the lines come up, one
    // generation nearer the selection; a sixth is dropped.
    std::array<std::uint32_t, 5> suites{};
    // The selected persons who descend from the entry, in the order met.
    std::vector<std::uint32_t> personnes;
};

// A row of the result: an entry with at least two persons.
struct LigneCousinage {
    std::string cle;                   // "mari#femme#p1#p2#..."
    std::vector<std::string> couple;   // the names, then the marriage's line
    std::vector<std::string> enfants;  // "* " and a name
    std::size_t nombre = 0;            // of persons
    std::string lieu;                  // folded, lower case: the sort column
    std::uint32_t mari = 0, femme = 0, mariage = 0;
    int rangMariage = 0;               // among the husband's marriages, 0 none
    std::vector<std::uint32_t> personnes;
};

class Cousinages {
  public:
    explicit Cousinages(Base& b) : b_(b) {}

    // Marks the ascendants over `generations` generations (the subjects
    // "1", the others "2"; all "1" with no subject), then walks each
    // selected person's ancestors for the meeting points. The panel shows
    // "Analyse Ascendance" and each name. False when the user stopped.
    bool Analyse(const std::vector<Selectionne>& selection, int generations,
                 const Interaction& io = {});

    const std::vector<EntreeCousinage>& Entrees() const { return entrees_; }
    // The entries with two persons or more, sorted on the place.
    std::vector<LigneCousinage> Lignes();

  private:
    void MarqueAscendants(std::uint32_t personne, int niveau, char marque);
    void CherchePassage(std::uint32_t personne, int niveau, std::uint32_t origine);
    // Whether a parent is a meeting point; `seul`: it stands alone, not
    // as a couple with `autre`.
    bool Rencontre(std::uint32_t parent, std::uint32_t autre, bool pere, bool* seul);
    std::size_t Entree(std::uint32_t mari, std::uint32_t femme);
    char MarqueDe(std::uint32_t p) const { return p < marques_.size() ? marques_[p] : ' '; }

    Base& b_;
    std::vector<char> marques_;
    std::vector<std::uint8_t> restant_;
    std::vector<std::uint32_t> vus_;
    std::vector<EntreeCousinage> entrees_;
    std::vector<std::pair<std::uint64_t, std::size_t>> index_; // (mari, femme) -> entry, sorted
};

// The lines of "Cousinage.txt" and "LienCousinage.txt".
std::string TexteCousinage(const std::vector<LigneCousinage>& lignes);
std::string TexteLienCousinage(const std::vector<LigneCousinage>& lignes);
// Writes both files in `dossier` (with its final separator), each whole
// or not at all. Throws ErreurES.
void EcritFichiersCousinage(SystemeFichiers& fs, const std::string& dossier,
                            const std::vector<LigneCousinage>& lignes);

// The page of a person's cousinages: heading, then a table row per line;
// `sujets` are marked "*" among the persons of a row. `suite` (HTML) stands
// after the table.
std::string PageCousinages(Base& b, const std::string& nom,
                           const std::vector<LigneCousinage>& lignes,
                           const std::vector<std::uint32_t>& sujets, const std::string& suite = {});

// The file of a person's page: the name with blanks as "." and ".htm".
// What a file name can't hold becomes "_"; a nameless person gets its
// number; a name already in `pris` gets "." and the number behind it.
std::string NomPageCousinages(Base& b, std::uint32_t personne, std::vector<std::string>& pris);

// A page written for a person, and the count of cousinages in it.
struct PageCousinage {
    std::uint32_t personne = 0;
    std::string fichier; // the name, without the folder
    std::size_t cousinages = 0;
};

// `CousinagesEnPages`: for each selected person in turn, the analysis with
// that person alone as the subject against all the others, written as its
// page in `dossier` (with its final separator), "Sylvane.css" beside. The
// panel shows "Analyse Ascendance " and the name. Empty when the user
// stopped (the pages already written stay). Throws ErreurES.
std::optional<std::vector<PageCousinage>>
CousinagesEnPages(Base& b, SystemeFichiers& fs, const std::string& dossier,
                  const std::vector<std::uint32_t>& selection, int generations,
                  const Interaction& io = {});

// `CmdCousinage` ("Tableaux"): of the rows of one analysis, a page for each
// of `personnes` with the rows it stands in and, under them, how many it
// shares with each other person; then "Tableau.htm" and "Tableau.txt", the
// persons ranked by their count. Throws ErreurES.
std::vector<PageCousinage> TableauxCousinages(Base& b, SystemeFichiers& fs,
                                              const std::string& dossier,
                                              const std::vector<LigneCousinage>& lignes,
                                              const std::vector<std::uint32_t>& personnes,
                                              const std::vector<std::uint32_t>& sujets);

// "ListeCousins.js": the selected persons sorted by first names and name.
std::string ListeCousinsJs(Base& b, const std::vector<std::uint32_t>& personnes);

} // namespace sylvane
