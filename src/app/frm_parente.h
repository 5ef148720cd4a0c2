// The relationship windows: `FrmRechAscendant` (the selection and its
// searches), `FrmParenteVisu` (a graph, one window per result),
// `FrmParenteAsc` (the cousinage rows), `FrmBrancheAsc` and
// `FrmBrancheDesc` (outlines opened branch by branch). Their state and rules
// are those of ui/frm_parente.h; these widgets show them and forward.
#pragma once

#include "app/formulaires.h"
#include "app/surface_qt.h"
#include "ui/frm_parente.h"

#include <memory>
#include <optional>

class QLabel;
class QMenu;
class QPushButton;
class QScrollArea;
class QSpinBox;
class QTableWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace sylvane {

class FrmRechAscendantQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmRechAscendantQt(ContexteQt& c, QWidget* parent = nullptr);
    // Room for the three columns and the buttons.
    QSize sizeHint() const override { return {640, 380}; }
    void Retraduit() override;
    void PersonneChangee() override;
    void RecoitGlisser(char genre, std::uint32_t numero) override;

    FrmRechAscendant& logique() { return logique_; }
    QTableWidget* grille() const { return grille_; }
    QPushButton* cmdAscCom() const { return cmdAscCom_; }
    QPushButton* cmdMultiple() const { return cmdMultiple_; }
    QPushButton* cmdSpecial() const { return cmdSpecial_; }

  protected:
    void keyPressEvent(QKeyEvent* e) override;

  private:
    void Montre();
    int LigneCourante() const;
    void Graphe(const std::optional<DemandeGraphe>& d);

    ContexteQt& c_;
    FrmRechAscendant logique_;
    QLabel *lblSelection_, *lblGenerations_;
    QTableWidget* grille_;
    QSpinBox* generations_;
    QPushButton *cmdRechercher_, *cmdEcarter_, *cmdAscCom_, *cmdDescCom_, *cmdFiliation_,
        *cmdMultiple_, *cmdSpecial_;
};

// The graph drawn box by box at the zoom; a click on a box asks for its
// pop-up. From the keyboard, the arrows and Tab move from box to box and
// Enter or the menu key opens the pop-up of the box that has the focus.
class ToileParente : public QWidget {
    Q_OBJECT
  public:
    ToileParente(ContexteQt& c, FrmParenteVisu& f, QWidget* parent);
    void Ajuste();
    double zoom = 1.0;
    // The node under a point of the canvas, 0 for none.
    std::size_t NoeudA(QPoint p) const;
    QRect Boite(std::size_t noeud) const;
    std::size_t courant = 0;

  Q_SIGNALS:
    void Clic(std::size_t noeud, QPoint global);

  protected:
    void paintEvent(QPaintEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;

  private:
    double Echelle() const;
    ContexteQt& c_;
    FrmParenteVisu& f_;
    std::vector<PlaceNoeud> places_;
};

class FrmParenteVisuQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmParenteVisuQt(ContexteQt& c, QWidget* parent = nullptr);
    QSize sizeHint() const override { return {900, 600}; }
    void Retraduit() override;
    void PersonneChangee() override;

    FrmParenteVisu* logique() { return logique_.get(); }
    ToileParente* toile() const { return toile_; }
    QLabel* refus() const { return refus_; }
    // The pop-up of a node as it is offered, for the tests.
    QMenu* Menu(std::size_t noeud);
    bool SauvePdf(const std::string& chemin);
    // The drawing as a BMP picture, at most kCoteImage pixels a side and
    // kPixelsImage in all: a large graph is drawn smaller.
    bool SauveImage(const std::string& chemin);
    static constexpr double kCoteImage = 8000, kPixelsImage = 24e6;

  private:
    void Charge(DemandeGraphe d);
    void Montre();
    void Imprime();

    ContexteQt& c_;
    std::unique_ptr<FrmParenteVisu> logique_;
    MetriqueQt metrique_;
    QPushButton *reduire_, *agrandir_, *graphe_, *imprimer_, *pdf_, *image_, *rtf_, *html_;
    QLabel* refus_;
    QScrollArea* defile_;
    ToileParente* toile_ = nullptr;
    QMenu* menu_ = nullptr;
};

class FrmParenteAscQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmParenteAscQt(ContexteQt& c, QWidget* parent = nullptr);
    // The couples, their children and places side by side.
    QSize sizeHint() const override { return {900, 480}; }
    void Retraduit() override;

    FrmParenteAsc& logique() { return logique_; }
    QTableWidget* grille() const { return grille_; }
    QPushButton* cmdAfficher() const { return cmdAfficher_; }
    QPushButton* cmdTableaux() const { return cmdTableaux_; }

  private:
    void Montre();

    ContexteQt& c_;
    FrmParenteAsc logique_;
    QLabel *comparaison_, *nbCous_;
    QTableWidget* grille_;
    QPushButton *cmdAfficher_, *cmdEcarter_, *cmdTriLieu_, *cmdHtml_, *cmdTableaux_;
};

class FrmBrancheQt : public FormulaireQt {
    Q_OBJECT
  public:
    FrmBrancheQt(ContexteQt& c, bool descendante, QWidget* parent = nullptr);
    QSize sizeHint() const override { return {700, 520}; }
    void Retraduit() override;

    FrmBranche& logique() { return logique_; }
    QTreeWidget* arbre() const { return arbre_; }
    // The node of an item, or of the current one; npos for none.
    std::size_t NoeudCourant();
    QPushButton* cmdImprimer() const { return cmdImprimer_; }

  private:
    void Remplit();
    void Imprime();
    void AjouteEnfants(QTreeWidgetItem* item, std::size_t noeud);
    QTreeWidgetItem* Element(std::size_t noeud);

    ContexteQt& c_;
    bool descendante_;
    FrmBranche logique_;
    QTreeWidget* arbre_;
    QLabel* lblNiveaux_;
    QSpinBox* niveaux_;
    QPushButton *cmdDevelopper_, *cmdEcarter_, *cmdMaj_, *cmdAutre_, *cmdImprimer_, *cmdRtf_,
        *cmdHtml_;
    MetriqueQt metrique_;
};

} // namespace sylvane
