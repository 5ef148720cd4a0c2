// `FrmGraphisme`: the tree chart of the person in course, one sheet at a
// time, with its options, the zoom, the printer and PDF. The logic is
// FrmGraphique; this window only shows it and forwards.
#pragma once

#include "app/canevas_pages.h"
#include "app/formulaires.h"
#include "app/surface_qt.h"
#include "ui/frm_graphique.h"

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;

namespace sylvane {

class FrmGraphiqueQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmGraphiqueQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    void PersonneChangee() override;

    FrmGraphique& logique() { return logique_; }
    QLabel* feuille() const { return canevas_->legende(); }
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
    QPushButton *imprimer_, *pdf_;
    CanevasPages* canevas_;
};

} // namespace sylvane
