// The print windows: `FrmImpression` (which report, which contents, where
// to), the options `FrmPrinter` and `FrmPrinter1`, and the preview
// `FrmPrevisualisation`. The logic is src/ui/frm_impression; these windows
// show it, forward, and give the printer, PDF and screen surfaces.
#pragma once

#include "app/canevas_pages.h"
#include "app/formulaires.h"
#include "app/surface_qt.h"
#include "ui/frm_impression.h"

#include <array>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPrinter;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace sylvane {

// The printer of the shared settings' paper, after the system's dialog;
// false when the user cancelled it.
bool ChoisitImprimante(QPrinter& imprimante, QWidget* parent);
// Draws a document on the chosen printer, one page of it each page.
void ImprimeDocument(QPrinter& imprimante, const MetriqueQt& m,
                     const std::function<FinPages(Surface&)>& dessine);

class FrmImpressionQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmImpressionQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    void RecoitGlisser(char genre, std::uint32_t numero) override;
    // Opened again: takes what a list or a search hands over.
    void PersonneChangee() override;

    FrmImpression& logique() { return logique_; }
    // OK: the report to its destination.
    void Valide();

  private:
    void Lit();
    void Montre();
    bool VersPdf(const TravailImpression& t);

    ContexteQt& c_;
    FrmImpression logique_;
    MetriqueQt metrique_;
    QLabel* personne_;
    QPushButton* choixPersonne_;
    QGroupBox *boiteType_, *boiteChoix_, *boiteContenu_, *boiteDestination_;
    std::array<QRadioButton*, 3> types_;
    std::array<QRadioButton*, 4> choix_;
    QButtonGroup* groupeChoix_;
    QLabel *lblNiveaux_, *lblSequence_, *lblDirection_;
    QSpinBox* niveaux_;
    QComboBox *sequence_, *direction_;
    QCheckBox *implexe_, *detaille_;
    std::array<QRadioButton*, 3> contenus_;
    std::array<QCheckBox*, kSections> sections_;
    QCheckBox *conjoints_, *evenements_, *documents_, *couple_;
    QRadioButton *imprimante_, *pdf_;
    QCheckBox* visualiseur_;
    QPushButton *options_, *ok_, *annuler_;
};

class FrmPrevisualisationQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmPrevisualisationQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    // Opened again: shows the document handed over, if any.
    void PersonneChangee() override;
    Previsualisation& logique() { return logique_; }
    QLabel* page() const { return canevas_->legende(); }
    // Saves the page shown as a picture.
    bool SauveImage(const QString& chemin);

  private:
    void Montre();
    ContexteQt& c_;
    Previsualisation logique_;
    MetriqueQt metrique_;
    QPushButton *imprimer_, *pdf_, *image_, *quitter_;
    CanevasPages* canevas_;
};

class FrmPrinterQt : public FormulaireQt {
    Q_OBJECT
  public:
    FrmPrinterQt(ContexteQt& c, bool graphe, QWidget* parent = nullptr);
    void Retraduit() override;
    bool Modal() const override { return true; }
    FrmPrinter& logique() { return logique_; }
    bool Valide();

  private:
    void Ferme();
    ContexteQt& c_;
    FrmPrinter logique_;
    QLabel *lblPapier_, *lblHorizon_, *lblVertical_, *lblPolice_;
    QComboBox* papier_;
    QGroupBox* orientation_;
    QRadioButton *portrait_, *paysage_;
    QLineEdit *horizon_, *vertical_;
    QSpinBox* police_;
    QCheckBox *apercu_, *couleur_;
    QPushButton *systeme_, *ok_, *annuler_;
};

} // namespace sylvane
