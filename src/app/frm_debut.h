// The family view `FrmDebut`: the boxes of the current person's family,
// drawn as vectors (sharp at any zoom and pixel ratio) in a scrolled frame.
// Click, right-click menu, arrow keys and Enter move the current person.
#pragma once

#include "app/formulaires.h"
#include "ui/vue_famille.h"

#include <QAbstractScrollArea>
#include <QFont>

#include <array>

class QMenu;
class QPainter;

namespace sylvane {

// What the painter needs besides the layout: fonts of the level, scale.
struct StyleFamille {
    QFont police, policeNom; // plain and bold, at the scale of the view
    double echelle = 1.0;
};
StyleFamille StyleDe(const Parametres& p, int niveau, double echelle);
// The height of one text line at scale 1, for the layout.
double HauteurLigne(const Parametres& p, int niveau);

// Paints the part `zone` (in drawing units) of the layout; the painter is
// already translated so that drawing units land where they should.
void PeintFamille(QPainter& g, const DispositionFamille& d, const StyleFamille& s,
                  const QRectF& zone, int focus, double ratio = 1.0);

class FrmDebutQt;

// The frame `Cadre` and its scroll bars `DefilementH1` and `DefilementV1`.
class CadreFamille : public QAbstractScrollArea {
    Q_OBJECT
  public:
    explicit CadreFamille(FrmDebutQt& f);
    void AjusteDefilement();
    void Montre(int index, bool centrer);
    // The drawing unit under a point of the viewport.
    QPointF VersDessin(const QPointF& p) const;

  protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;
    void focusInEvent(QFocusEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    bool viewportEvent(QEvent* e) override;

  private:
    FrmDebutQt& f_;
};

class FrmDebutQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmDebutQt(ContexteQt& c);
    void Retraduit() override;
    void PersonneChangee() override;

    // Lays the view out again around the current person; a layout that
    // overflows the box count undoes the shift just made.
    void Dispose();
    // A left click (or Enter) on box i.
    void Clic(int index);
    // The right-click menu of box i (the caller owns it).
    QMenu* ConstruitMenu(int index);
    void Choisit(const ElementMenu& e);

    VueFamille& vue() { return vue_; }
    CadreFamille* cadre() { return cadre_; }
    const StyleFamille& style() const { return style_; }

  private:
    ContexteQt& c_;
    CadreFamille* cadre_ = nullptr;
    VueFamille vue_;
    StyleFamille style_;
    std::uint32_t centreAffiche_ = 0;
    bool enDisposition_ = false;
    std::array<double, 5> signature_{};
};

} // namespace sylvane
