// `FrmStats` and `FrmAnniv` as child windows: the eight tabs of figures
// with the three month charts (Qt Charts), and the anniversary calendar
// with the four lists of the day.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_stats.h"

class QLabel;
class QPushButton;
class QTabBar;
class QTableWidget;
class QStackedWidget;

namespace sylvane {

class FrmStatsQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmStatsQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    FrmStats& logique() { return logique_; }
    QTabBar* onglets() const { return onglets_; }
    QTableWidget* grille() const { return grille_; }
    // Computes the figures (done once the window is shown) and shows them.
    void Calcule();

  private:
    void Montre();
    void Copie();

    ContexteQt& c_;
    FrmStats logique_;
    QTabBar* onglets_;
    QStackedWidget* pile_;
    QTableWidget* grille_;
    QWidget* graphique_;
    QPushButton *copier_, *imprimer_;
};

class FrmAnnivQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmAnnivQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    FrmAnniv& logique() { return logique_; }
    QTableWidget* calendrier() const { return calendrier_; }
    QTableWidget* naissances() const { return listes_[0]; }
    void Charge();

  private:
    void MontreMois();
    void MontreJour();

    ContexteQt& c_;
    FrmAnniv logique_;
    QLabel *lblMois_, *lblJour_;
    QPushButton *precedent_, *suivant_, *cmdListe_, *cmdDate_;
    QTableWidget* calendrier_;
    QTableWidget* listes_[4];
    QLabel* titres_[4];
};

} // namespace sylvane
