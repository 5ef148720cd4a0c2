// Tree charts of a person or a couple: the trees are built as flat tables,
// measured in leaves and generations; the number of sheets and the cell
// sizes follow, then every box, link and text goes to the page template
// that the page writer prints.
#pragma once

#include "charts/arbre.h"
#include "charts/pages.h"
#include "charts/surface.h"

#include <cstdint>
#include <functional>
#include <string>

namespace sylvane {

struct OptionsGraphe {
    // 0, 1: generations run top to bottom, bottom to top; 2, 3: right to
    // left, left to right.
    int direction = 0;
    bool detaille = false;    // full box text
    bool dates = true;        // birth and death in the box
    bool sansImplexe = false; // a person who comes back isn't walked again
    std::string autreDonnee;  // tag of one more line in the box, "" for none
    std::string abNaiss = "\xB0", abMariage = "\xD7", abDeces = "\x86";
    std::int32_t feuillesH = 99, feuillesV = 99; // 99: chosen from the chart
    Papier papier;
    double policeMax = 12;
    std::function<bool()> arret;
};

// The measures of a chart, in printer units.
struct PlanGraphe {
    int niveauxAsc = 0, niveauxDesc = 0;           // A and D, generations reached
    std::uint32_t feuillesAsc = 1, feuillesDesc = 1; // LA and LD
    Geometrie geo;
    std::int64_t pasNiveau = 0, pasFeuille = 0;
    std::int64_t origineNiveau = 0;
    std::int64_t decalageAsc = 0, decalageDesc = 0;
    bool Vertical() const { return direction < 2; }
    int direction = 0;
    bool detaille = false;
};

// Sheets, page, cells and the root's place for trees of these measures.
PlanGraphe CalculePlan(int niveauxAsc, int niveauxDesc, std::uint32_t feuillesAsc,
                       std::uint32_t feuillesDesc, const OptionsGraphe& o);

enum class FinGraphe { Termine, Arrete };

// The chart around one person: `niveauxAsc` generations of ascendants and
// `niveauxDesc` of descendants, written to the template `chemin`. Throws
// ErreurES when the file can't be written, ErreurArbre on a runaway tree.
FinGraphe GrapheIndividu(Base& b, SystemeFichiers& fs, const std::string& chemin,
                         std::uint32_t personne, int niveauxAsc, int niveauxDesc,
                         const OptionsGraphe& o, const Metrique& m, PlanGraphe* plan = nullptr);
// The ascendants of both spouses of a marriage and the couple's descendants.
FinGraphe GrapheCouple(Base& b, SystemeFichiers& fs, const std::string& chemin,
                       std::uint32_t mariage, int niveauxAsc, int niveauxDesc,
                       const OptionsGraphe& o, const Metrique& m, PlanGraphe* plan = nullptr);

// The text of a box, lines separated by "#": name, first names, then
// birth and death, the parents' marriage, the marriages, the other datum.
std::string TexteBoite(Base& b, std::uint32_t personne, const StyleBoite& style,
                       const OptionsGraphe& o);

// The letter of a marriage's rank, from 1.
char LettreMariage(int rang);

} // namespace sylvane
