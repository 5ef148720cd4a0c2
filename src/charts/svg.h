// A chart as one SVG picture: the sheets side by side as they are glued,
// each clipped to its paper, with a small gap between them. Written whole
// or not at all through the file layer.
#pragma once

#include "charts/pages.h"
#include "charts/surface.h"
#include "store/fichier.h"

#include <memory>
#include <string>

namespace sylvane {

class SurfaceSvg : public Surface {
  public:
    SurfaceSvg(SystemeFichiers& fs, const std::string& chemin, const Metrique& m,
               const Papier& papier, int feuillesH, int feuillesV);
    ~SurfaceSvg() override;

    const Metrique& Mesure() const override { return m_; }
    void DebutPage(int ligne, int colonne, double largeur, double hauteur) override;
    void FinPage() override;
    void Trait(double x1, double y1, double x2, double y2, Plume plume) override;
    void Boite(double x1, double y1, double x2, double y2, std::int32_t fond) override;
    void Texte(double x, double y, std::string_view texte, const Police& p,
               std::int32_t couleur) override;
    // Closes the picture and puts the file in place.
    void Termine();

  private:
    void Ecrit(std::string_view s);
    void Vide();

    std::unique_ptr<EcritureAtomique> sortie_;
    const Metrique& m_;
    Papier papier_;
    std::string tampon_;
    std::uint64_t offset_ = 0;
    bool pageOuverte_ = false;
};

} // namespace sylvane
