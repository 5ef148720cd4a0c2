// The person sheet window `FrmMisajour`: the fields and grids of the
// sheet's logic on four tabs, with the number field, the history and the
// validation button above the status line. Every change and click goes to
// `FrmMisajour`; the window only shows what it holds.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_misajour.h"

#include <map>
#include <memory>

class QButtonGroup;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;
class QTableWidget;
class QTextEdit;
class QToolButton;

namespace sylvane {

class FrmMisajourQt : public FormulaireQt, public VueFiche {
    Q_OBJECT
  public:
    explicit FrmMisajourQt(ContexteQt& c, QWidget* parent = nullptr);
    ~FrmMisajourQt() override;
    void Retraduit() override;
    void PersonneChangee() override;
    void RecoitGlisser(char genre, std::uint32_t numero) override;
    void FicheChangee() override;
    void Focus(Champ c) override;

    FrmMisajour& logique() { return *logique_; }
    // The controls, for the tests.
    QLineEdit* champ(Champ c) const { return champs_.at(c); }
    QPushButton* cmdMaj() const { return cmdMaj_; }
    QTableWidget* conjoints() const { return conjoints_; }
    QTableWidget* enfants() const { return enfants_; }
    QLabel* statut() const { return statut_; }
    QTextEdit* note() const { return note_; }

  protected:
    void closeEvent(QCloseEvent* e) override;
    void focusInEvent(QFocusEvent* e) override;

  private:
    QLineEdit* Champ_(Champ c, QWidget* parent);
    void Remplit(QTableWidget* t, const std::vector<LigneFiche>& lignes, bool dates, bool lieu);
    void Rubriques();
    void Entree();
    void FocusNouvelle();

    ContexteQt& c_;
    std::unique_ptr<FrmMisajour> logique_;
    bool remplit_ = false;
    std::map<Champ, QLineEdit*> champs_;
    std::vector<std::pair<QWidget*, int>> textes_; // captions to translate
    QTabWidget* onglets_;
    QLineEdit* indice_;
    QLabel* eIndice_;
    QToolButton* histo_;
    QButtonGroup* sexe_;
    QRadioButton* sexes_[3];
    QLabel *libJNaiss_, *libJDeces_, *libJMar_;
    QLabel *pere_, *mere_;
    QTableWidget *conjoints_, *enfants_, *fratrie_, *liens_, *evts_, *docs_;
    QLabel* lblEnfants_;
    QWidget* cadreRubInd_;
    QWidget* cadreRubMar_;
    std::vector<std::array<QLineEdit*, 3>> rubInd_, rubMar_;
    QTextEdit* note_;
    QLabel* noteMar_;
    QLabel* statut_;
    QLabel* aide_;
    QPushButton* cmdMaj_;
    QPushButton* cmdDoublon_; // enabled with a marriage shown
    std::vector<QWidget*> horsCreation_; // enabled only on a person's sheet
    std::vector<std::pair<QPushButton*, std::string>> boutonsEvt_; // event buttons and their tag
};

} // namespace sylvane
