// Charts drawn with Qt's painter: the window, the printer and PDF files
// all go through one surface and one metric, taken from the real font, so
// that the preview, the paper and the PDF show the same layout. The
// painter is set so that one unit is one twip; texts are drawn as glyphs
// at their final size, never as scaled pictures.
#pragma once

#include "charts/pages.h"
#include "charts/surface.h"
#include "store/fichier.h"

#include <QFont>
#include <QFontMetricsF>
#include <QString>

#include <functional>

class QPainter;
class QPagedPaintDevice;

namespace sylvane {

// The metric of the chart font (DejaVu Sans by default), measured once at
// a large size without hinting, so that widths scale with the size.
class MetriqueQt : public Metrique {
  public:
    explicit MetriqueQt(const QString& famille = QStringLiteral("DejaVu Sans"));
    double Largeur(std::string_view texte, const Police& p) const override;
    double Hauteur(const Police& p) const override;
    double Ascendant(const Police& p) const;
    // The font at the size the metric measures, and the factor that takes
    // it to a size in points.
    const QFont& Reference(bool gras) const { return gras ? gras_ : normal_; }
    static double Facteur(const Police& p);

  private:
    QFont normal_, gras_;
    QFontMetricsF mesureNormal_, mesureGras_;
};

// A Windows-1252 text of the chart as Qt draws it.
QString TexteGraphique(std::string_view ansi);

class SurfaceQt : public Surface {
  public:
    // `echelle`: the painter's device units for a twip.
    SurfaceQt(QPainter& p, const MetriqueQt& m, double echelle);
    // Gives the painter back as it came, even after a sheet left unfinished.
    ~SurfaceQt() override;

    // Where the sheets go. By default every sheet is drawn at the origin.
    // One sheet only: the others are read and left out.
    void Seule(int ligne, int colonne);
    // A page of the device for each sheet (printer, PDF).
    void Pagine(QPagedPaintDevice& d) { pagine_ = &d; }
    // The sheets side by side as they are glued, `ecart` twips apart, on a
    // grey ground.
    void Mosaique(double ecart) { ecart_ = ecart; }

    const Metrique& Mesure() const override { return m_; }
    void DebutPage(int ligne, int colonne, double largeur, double hauteur) override;
    bool Garde(int ligne, int colonne) const override {
        return seuleLigne_ == 0 || (ligne == seuleLigne_ && colonne == seuleColonne_);
    }
    void FinPage() override;
    void Trait(double x1, double y1, double x2, double y2, Plume plume) override;
    void Boite(double x1, double y1, double x2, double y2, std::int32_t fond) override;
    void Texte(double x, double y, std::string_view texte, const Police& p,
               std::int32_t couleur) override;

  private:
    QPainter& p_;
    const MetriqueQt& m_;
    double echelle_;
    int seuleLigne_ = 0, seuleColonne_ = 0;
    QPagedPaintDevice* pagine_ = nullptr;
    double ecart_ = -1;
    bool actif_ = false;
    int pages_ = 0;
};

// Every sheet of the template as one page of the PDF file `cible`,
// written whole or not at all through the file layer. Needs a
// QGuiApplication. Throws ErreurES when the file can't be written.
FinPages EcritPdf(SystemeFichiers& fs, const std::string& gabarit, const std::string& cible,
                  const OptionsPages& o, const MetriqueQt& m);
// The pages that `dessine` draws on the surface, each of `papier`, as the
// PDF file `cible`; kept only when `dessine` answers Termine.
FinPages EcritPdfPages(SystemeFichiers& fs, const std::string& cible, const Papier& papier,
                       const MetriqueQt& m, const std::function<FinPages(SurfaceQt&)>& dessine);

} // namespace sylvane
