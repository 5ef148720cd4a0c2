// What a chart is drawn on: the preview, the printer, a PDF or an SVG file.
// The page writer sends each sheet to a surface; the surface's metric is
// the one the box texts are fitted with, so that every output that shares
// a metric shows the same layout. All lengths are printer units (twips,
// 1/1440 inch) from the top left corner of the sheet.
#pragma once

#include <cstdint>
#include <string_view>

namespace sylvane {

inline constexpr double kTwipsParPoint = 20.0;

struct Police {
    double points = 8.0;
    bool gras = false;
};

// Text measurement. Texts are Windows-1252 bytes.
class Metrique {
  public:
    virtual ~Metrique() = default;
    virtual double Largeur(std::string_view texte, const Police& p) const = 0;
    // Height of one line: ascent and descent.
    virtual double Hauteur(const Police& p) const = 0;
};

// The advance widths of DejaVu Sans and DejaVu Sans Bold over the 224
// printable characters of the code page: the metric of the command line,
// of the tests, and of any output that has no font of its own.
class MetriqueDejaVu : public Metrique {
  public:
    double Largeur(std::string_view texte, const Police& p) const override;
    double Hauteur(const Police& p) const override;
    static const MetriqueDejaVu& Instance();
};

// The pens of the chart.
enum class Plume { Cadre, Lien, Mariage, Repere };

// Colours are 0xRRGGBB; kSansCouleur for an outline only.
inline constexpr std::int32_t kSansCouleur = -1;
// Colours of the settings are 24-bit blue-green-red numbers.
std::int32_t CouleurDepuisBgr(std::int32_t bgr);

class Surface {
  public:
    virtual ~Surface() = default;
    virtual const Metrique& Mesure() const = 0;
    // A sheet of the chart, `ligne` and `colonne` from 1.
    virtual void DebutPage(int ligne, int colonne, double largeur, double hauteur) = 0;
    // Whether that sheet is drawn at all: a writer that knows where its
    // pages break may leave out reading what goes on a sheet not kept.
    virtual bool Garde(int ligne, int colonne) const {
        (void)ligne;
        (void)colonne;
        return true;
    }
    virtual void FinPage() = 0;
    virtual void Trait(double x1, double y1, double x2, double y2, Plume plume) = 0;
    virtual void Boite(double x1, double y1, double x2, double y2, std::int32_t fond) = 0;
    // One line of text, its top left corner at x, y.
    virtual void Texte(double x, double y, std::string_view texte, const Police& p,
                       std::int32_t couleur) = 0;
};

} // namespace sylvane
