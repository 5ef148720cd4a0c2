// `FrmExporter`: the selective export as a child window. The walk and the
// person it starts from, the list of the marked persons with its include
// and exclude, the format and its options, and the run; the rules are
// those of the form's logic.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_exporter.h"

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QWidget;

namespace sylvane {

class FrmExporterQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmExporterQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;
    void PersonneChangee() override;
    void RecoitGlisser(char genre, std::uint32_t numero) override;

    FrmExporter& logique() { return logique_; }
    // The controls, for the tests.
    QRadioButton* optDescendants() const { return optDesc_; }
    QRadioButton* optAscendants() const { return optAsc_; }
    QRadioButton* optTout() const { return optTout_; }
    QRadioButton* gedcom() const { return gedcom_; }
    QRadioButton* svr() const { return svr_; }
    QComboBox* jeu() const { return jeu_; }
    QCheckBox* collateraux() const { return collateraux_; }
    QLabel* lblFiche() const { return lblFiche_; }
    QLabel* etiNom() const { return etiNom_; }
    QPushButton* cmdSelection() const { return cmdSelection_; }
    QPushButton* cmdListe() const { return cmdListe_; }
    QPushButton* cmdLancer() const { return cmdLancer_; }
    QListWidget* liste() const { return liste_; }

  protected:
    void keyPressEvent(class QKeyEvent* e) override;

  private:
    void LitControles();
    void Montre();
    void RemplitListe();
    void Lance();
    void Ferme();

    ContexteQt& c_;
    FrmExporter logique_;
    QGroupBox *grpSelection_, *grpFormat_, *grpOptions_;
    QRadioButton *optDesc_, *optAsc_, *optTout_, *gedcom_, *svr_;
    QLabel *lblDepart_, *etiNom_, *lblFiche_, *lblJeu_;
    QComboBox* jeu_;
    QCheckBox *collateraux_, *liens_, *evenements_, *documents_, *complet_, *sans1900_;
    QPushButton *cmdChoisir_, *cmdSelection_, *cmdListe_, *cmdEfface_, *cmdInclure_,
        *cmdExclure_, *cmdLancer_, *cmdFermer_;
    QWidget* panneauListe_;
    QListWidget* liste_;
};

} // namespace sylvane
