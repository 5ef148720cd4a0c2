// The family view: the current person in the middle, its ascendants in the
// columns to the left, its descendants (each with its spouses) in the
// columns to the right. This lays the boxes and the connector lines out in
// logical units, answers which box is under a point and which box an arrow
// key leads to, and builds the items of the right-click menu. The window
// layer only paints what it is given.
#pragma once

#include "text/parametres.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sylvane {

class Base;

// A colour of the settings, stored as a 24-bit blue-green-red number.
struct Couleur {
    std::uint8_t r = 0, g = 0, b = 0;
    bool operator==(const Couleur&) const = default;
};
Couleur CouleurBGR(std::int32_t valeur);

struct Rect {
    double x = 0, y = 0, l = 0, h = 0;
    double droite() const { return x + l; }
    double bas() const { return y + h; }
    double milieuY() const { return y + h / 2; }
    bool contient(double px, double py) const {
        return px >= x && px < x + l && py >= y && py < y + h;
    }
};

struct Point {
    double x = 0, y = 0;
    bool operator==(const Point&) const = default;
};

// One person's box.
struct CaseFamille {
    enum class Role { Centre, Ascendant, Descendant, Conjoint };
    std::uint32_t personne = 0;
    Role role = Role::Centre;
    // Generation: negative for ascendants (-1 the parents), 0 the current
    // person and its spouses, positive for descendants.
    int colonne = 0;
    Rect r;
    // First name, family name, dates (Windows-1252); empty lines stay.
    std::vector<std::string> lignes;
    char sexe = ' ';
    Couleur cadre, police;
    bool enCours = false; // the current person
    bool repete = false;  // already drawn elsewhere in the view (implex)
    int origine = -1;     // the box it hangs from: child, parent or partner
};

// An orthogonal connector between two boxes, as a polyline.
struct Trait {
    int de = -1, vers = -1;
    std::vector<Point> points;
    bool conjoint = false; // between partners rather than parent and child
};

// What the main window holds of the view: level 1 to 4, the reaches
// actually drawn, the zoom; and what the painter measures of its font.
struct ReglageVue {
    int niveau = 2;
    int porteeGauche = 4;
    int porteeDroite = 2;
    double echelle = 1.0;
    double hauteurLigne = 14; // one text line at scale 1
};

struct DispositionFamille {
    std::vector<CaseFamille> cases;
    std::vector<Trait> traits;
    double largeur = 0, hauteur = 0; // the whole drawing, margins included
    int centre = -1;                 // index of the current person's box
    // ' ' the layout holds everything within reach; '2' the box count of
    // the level ("Nombre Cases n") was reached and persons were left out.
    char etat = ' ';
    int limite = 0;                  // the box count in force
    double largeurCase = 0, hauteurCase = 0;
    Couleur fond;
    bool degrade = true;
};

// Lays the view out around `centre`. Reaches beyond 32 generations are
// cut back; a broken base (a person its own ancestor) only repeats boxes.
DispositionFamille DisposeFamille(Base& b, const Parametres& p, std::uint32_t centre,
                                  const ReglageVue& v);

// The box at a point of the drawing, or -1.
int CaseEn(const DispositionFamille& d, double x, double y);

enum class Direction { Gauche, Droite, Haut, Bas };
// Where an arrow key leads from box `depuis`: left and right follow a
// connector to a parent or a child (the nearest in height), or else the
// nearest box of the next column; up and down the next box of the same
// column. `depuis` itself when there is nowhere to go.
int CaseVoisine(const DispositionFamille& d, int depuis, Direction sens);

// One item of the right-click menu of a box.
struct ElementMenu {
    enum class Genre { Personne, Separateur, Titre };
    Genre genre = Genre::Personne;
    std::string texte;          // Windows-1252
    std::uint32_t personne = 0; // the person it goes to (also for message 23)
    bool ouvreFiche = false;    // the item of message 23
};

// The person with dates, a separator, message 23, then under their
// headings the father and mother (592), the spouses (579), the children
// (666) and the linked persons with their link's text (910), each list up
// to 200 entries. A heading with nobody under it is left out.
std::vector<ElementMenu> MenuFamille(Base& b, std::uint32_t personne);

// The view's state between paints: the layout and the box that has the
// keyboard focus.
class VueFamille {
  public:
    // Lays out again. Around the same current person the focus stays on
    // the same person while it is shown; otherwise it goes to the current
    // person.
    void Dispose(Base& b, const Parametres& p, std::uint32_t centre, const ReglageVue& v);
    const DispositionFamille& disposition() const { return d_; }
    int focus() const { return focus_; }
    void DefinitFocus(int i);
    // An arrow key: moves the focus and answers whether it moved.
    bool Deplace(Direction sens);
    // The person of the focused box (Enter acts as a click on it), or 0.
    std::uint32_t PersonneFocus() const;

  private:
    DispositionFamille d_;
    int focus_ = -1;
};

} // namespace sylvane
