// `FrmGraphisme`: the tree chart of the person in course on the screen.
// The chart is written to its page template once for its options; the
// window shows one sheet of it at a time, at a zoom of its choice, and
// hands the same template to the printer or to a PDF file.
#pragma once

#include "charts/graphe.h"
#include "charts/pages.h"
#include "store/base.h"
#include "store/fichier.h"
#include "text/parametres.h"

#include <cstdint>
#include <string>

namespace sylvane {

// Couple: the ascendants of both spouses of the first marriage and their
// descendants.
enum class GenreGraphe { Ascendants, Descendants, Mixte, Couple };

class FrmGraphique {
  public:
    explicit FrmGraphique(SystemeFichiers& fs) : fs_(fs) {}
    ~FrmGraphique();
    FrmGraphique(const FrmGraphique&) = delete;
    FrmGraphique& operator=(const FrmGraphique&) = delete;

    // The options of the next drawing.
    GenreGraphe genre = GenreGraphe::Ascendants;
    int generations = 4; // 1 to 99
    bool couleur = false;
    bool detaille = false;
    int direction = 0; // 0 to 3, as OptionsGraphe
    std::int32_t feuillesH = 99, feuillesV = 99; // 99: chosen from the chart

    // The chart of `personne`, written to the template in the work folder
    // and shown from its first sheet. False, with no chart, for no person.
    bool Dessine(Base& b, const Parametres& p, std::uint32_t personne, const Metrique& m);
    // The template goes; the window shows nothing.
    void Oublie();
    bool Pret() const { return pret_; }
    const std::string& Gabarit() const { return gabarit_; }
    const PlanGraphe& Plan() const { return plan_; }
    // What the page writer needs to draw the sheets of this chart.
    OptionsPages Options(Base& b, const Parametres& p, const std::string& libelleFeuille) const;

    // The sheet shown, row and column from 1, turned row by row.
    int Ligne() const { return ligne_; }
    int Colonne() const { return colonne_; }
    int Rang() const { return (ligne_ - 1) * plan_.geo.feuillesH + colonne_; }
    int NombreFeuilles() const { return pret_ ? plan_.geo.feuillesH * plan_.geo.feuillesV : 0; }
    bool Suivante();
    bool Precedente();

    // The zoom, a share of the paper's real size, in steps.
    double Zoom() const;
    bool Agrandir();
    bool Reduire();

  private:
    SystemeFichiers& fs_;
    OptionsGraphe options_;
    PlanGraphe plan_;
    std::string gabarit_;
    bool pret_ = false;
    int ligne_ = 1, colonne_ = 1;
    int zoom_ = 3;
};

} // namespace sylvane
