// `FrmGraphisme`: the tree chart of the person in course, one sheet at a
// time, with its options, the zoom, the printer and PDF. The logic is
// FrmGraphique; this window only shows it and forwards.
#pragma once

#include "app/formulaires.h"
#include "app/surface_qt.h"
#include "ui/frm_graphique.h"

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QScrollArea;
class QSpinBox;

namespace sylvane {

// The current sheet, drawn at the zoom through the chart surface.
class ToileGraphique : public QWidget {
    Q_OBJECT
  public:
    ToileGraphique(ContexteQt& c, FrmGraphique& f, const MetriqueQt& m, QWidget* parent);
    void Ajuste();

  protected:
    void paintEvent(QPaintEvent* e) override;

  private:
    double Echelle() const;
    ContexteQt& c_;
    FrmGraphique& f_;
    const MetriqueQt& m_;
};

class FrmGraphiqueQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmGraphiqueQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    void PersonneChangee() override;

    FrmGraphique& logique() { return logique_; }
    QLabel* feuille() const { return feuille_; }
    // Writes the chart to a PDF file; false with a box on a failure.
    bool SauvePdf(const QString& chemin);

  private:
    void Redessine();
    void Montre();
    void Imprime();

    ContexteQt& c_;
    FrmGraphique logique_;
    MetriqueQt metrique_;
    QLabel* lblType_;
    QComboBox* type_;
    QLabel* lblGenerations_;
    QSpinBox* generations_;
    QCheckBox* couleur_;
    // Direction, detail and sheets of the chart; the preview.
    QLabel *lblDirection_, *lblFeuillesH_, *lblFeuillesV_;
    QComboBox* direction_;
    QCheckBox* detaille_;
    QSpinBox *feuillesH_, *feuillesV_;
    QPushButton* apercu_;
    QPushButton *precedente_, *suivante_, *reduire_, *agrandir_, *imprimer_, *pdf_;
    QLabel* feuille_;
    QScrollArea* defile_;
    ToileGraphique* toile_;
};

} // namespace sylvane
