// `FrmCalendrier`: the Republican calendar as a child window. The two
// sides' day boxes and lists, the two conversion buttons and the choice of
// the method; the rules are those of the form's logic.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_calendrier.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QGroupBox;
class QRadioButton;

namespace sylvane {

class Boites;

class FrmCalendrierQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmCalendrierQt(Boites& boites, QWidget* parent = nullptr);
    void Retraduit() override;

    FrmCalendrier& logique() { return logique_; }

    // The fields, for the tests: `TxtJourG`, `LstMoisG`, `LstAnneeG`, the
    // same for the Republic, `CmdGR`, `CmdRG`, and the exact method.
    QLineEdit* jourG() const { return jourG_; }
    QComboBox* moisG() const { return moisG_; }
    QComboBox* anneeG() const { return anneeG_; }
    QLineEdit* jourR() const { return jourR_; }
    QComboBox* moisR() const { return moisR_; }
    QComboBox* anneeR() const { return anneeR_; }
    QPushButton* cmdGR() const { return cmdGR_; }
    QPushButton* cmdRG() const { return cmdRG_; }
    QRadioButton* calcul() const { return calcul_; }

  private:
    void Convertit(bool versRepublicain);
    void Montre();

    FrmCalendrier logique_;
    QLabel *lblJour_, *lblMois_, *lblAnnee_, *lblG_, *lblR_;
    QLineEdit *jourG_, *jourR_;
    QComboBox *moisG_, *anneeG_, *moisR_, *anneeR_;
    QPushButton *cmdGR_, *cmdRG_, *fermer_;
    QGroupBox* methode_;
    QRadioButton *table_, *calcul_;
};

} // namespace sylvane
