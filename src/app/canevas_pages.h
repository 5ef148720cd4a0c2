// One page of a drawing at its zoom, on its white paper in a scrolled area,
// with the row of buttons that go to the previous or next page and zoom
// out or in. The chart window and the print preview show their pages
// through it; each gives what its own logic says of the page in course.
#pragma once

#include "app/surface_qt.h"

#include <QWidget>

#include <functional>
#include <utility>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QScrollArea;

namespace sylvane {

// What the canvas asks of the window's logic.
struct Feuilletage {
    // The page moves and zooms: true when something changed.
    std::function<bool()> precedente, suivante, reduire, agrandir;
    std::function<double()> zoom;
    // The paper in twips; the canvas takes its size at the zoom.
    std::function<Papier()> papier;
    // The sheet in course (line, column), and whether there is one to draw.
    std::function<std::pair<int, int>()> position;
    std::function<bool()> pret;
    // Draws the document: the surface keeps the sheet in course alone.
    std::function<void(SurfaceQt&)> dessine;
};

// The moves and the zoom of a logic that pages and zooms by itself.
template <class Logique>
Feuilletage FeuilletageDe(Logique& l) {
    Feuilletage f;
    f.precedente = [&l] { return l.Precedente(); };
    f.suivante = [&l] { return l.Suivante(); };
    f.reduire = [&l] { return l.Reduire(); };
    f.agrandir = [&l] { return l.Agrandir(); };
    f.zoom = [&l] { return l.Zoom(); };
    return f;
}

class CanevasPages : public QWidget {
  public:
    CanevasPages(Feuilletage f, const MetriqueQt& m, QWidget* parent);

    // The caption between the two page buttons, written by the window.
    QLabel* legende() const { return legende_; }
    QPushButton* precedente() const { return precedente_; }
    QPushButton* suivante() const { return suivante_; }
    QPushButton* reduire() const { return reduire_; }
    QPushButton* agrandir() const { return agrandir_; }
    // The painted page itself (for a picture of it).
    QWidget* page() const { return page_; }
    // A button of the window put at the end of the row.
    void AjouteBouton(QWidget* w);
    // Called after a button moved the page or the zoom.
    void QuandChange(std::function<void()> f) { change_ = std::move(f); }
    // The page takes its size at the zoom and is drawn again.
    void Ajuste();

  private:
    Feuilletage f_;
    QHBoxLayout* rangee_;
    QLabel* legende_;
    QPushButton *precedente_, *suivante_, *reduire_, *agrandir_;
    QScrollArea* defile_;
    QWidget* page_;
    std::function<void()> change_;
};

} // namespace sylvane
