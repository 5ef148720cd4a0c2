// The sheets of a chart: the paper, the size of the whole chart for a
// number of sheets, and the page writer that draws each sheet from the
// page template, with the overlap for gluing and the sheet marks.
#pragma once

#include "charts/gabarit.h"
#include "charts/surface.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

// A sheet of paper in printer units.
struct Papier {
    std::int64_t largeur = 11906, hauteur = 16838; // A4 portrait
};
// "A4", "A3", "letter" (any case); nothing for another name.
std::optional<Papier> PapierNomme(const std::string& nom);

// The chart's geometry for a number of sheets (PreparePage): sheets overlap
// by a sixteenth of a page, and a sixteenth is kept all around.
struct Geometrie {
    Papier papier;
    std::int32_t feuillesH = 1, feuillesV = 1;
    std::int64_t largeurTotale = 0, hauteurTotale = 0;
    std::int64_t largeurUtile = 0, hauteurUtile = 0;
    std::int64_t bandeTitre = 0;
    EnteteGabarit Entete() const {
        return {feuillesH, feuillesV, largeurTotale, hauteurTotale};
    }
};
Geometrie PreparePage(const Papier& papier, std::int32_t feuillesH, std::int32_t feuillesV);
// The frame: four plain lines at a twentieth of the page inside the chart.
void EcritCadre(EcrivainGabarit& g, const Geometrie& geo);

// Styles of the records: what the layout and the page writer agree on.
inline constexpr std::int32_t kStyleCadre = -1;
inline constexpr std::int32_t kStyleLien = 0;
inline constexpr std::int32_t kStyleMariage = 1;
inline constexpr std::int32_t kStyleTitre = 1; // of a text
// A box's style: its kind in the low bits, then the mark of a spouse of a
// later marriage (the rank's letter and the side), then whether the box
// shows its parents' marriage.
enum GenreBoite : std::int32_t { BoitePersonne = 0, BoiteRacine = 1, BoiteTitre = 2, BoiteVide = 3 };
struct StyleBoite {
    GenreBoite genre = BoitePersonne;
    int rangMariage = 0;   // 0: first marriage or none; 2 and up: the letter's rank
    bool cotePere = false; // the mark reads "P) ", else "M) "
    bool mariageParents = false;
    std::int32_t Code() const;
    static StyleBoite Depuis(std::int32_t code);
};

// The text of a box, recalled from the person's number when it is drawn.
using TexteDeBoite = std::function<std::string(std::uint32_t personne, const StyleBoite& style)>;

// A box text fitted to its box: the font, and the lines that fit.
struct TexteAjuste {
    Police police;
    std::vector<std::string> lignes;
};
// Lines are separated by "#". The font starts at half the largest size and
// is scaled to 0.9 of the width and 0.85 of the height, within 0.6 and 1
// times the largest; long lines are cut at blanks, a word too long is cut
// and ended with "...", and lines that don't fit in height are left out
// with "..." on the last one kept.
TexteAjuste AjusteTexte(const Metrique& m, const std::string& texte, double largeur,
                        double hauteur, double policeMax, bool gras = false);

struct OptionsPages {
    Papier papier;
    bool couleur = false;          // boxes filled with the colour of the sex
    double policeMax = 12;         // points
    bool gras = true;              // the font of the box texts
    TexteDeBoite texte;            // may be empty: boxes without text
    std::function<char(std::uint32_t)> sexe; // 'H', 'F', other
    std::int32_t couleurHomme = 0xFFFF00, couleurFemme = 0xFFFF, couleurIndetermine = 0xC0C0C0; // BGR
    std::string libelleFeuille = "Feuille"; // before " : " in the sheet marks
    std::function<bool()> arret;            // the user's stop
};

enum class FinPages { Termine, Arrete, Absent };

// Draws every sheet of the template, row by row, each from a new reading
// of the file. A file that can't be opened ends the run (Absent); a stop
// deletes the file (Arrete); a damaged file throws ErreurGabarit.
FinPages ImprimePages(SystemeFichiers& fs, const std::string& chemin, Surface& s,
                      const OptionsPages& o);

} // namespace sylvane
