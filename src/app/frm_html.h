// `FrmHTML`: the window of the site of the base: folder, author, the page
// the site opens on, and the run, which ends in the user's browser.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_html.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace sylvane {

class FrmHTMLQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmHTMLQt(ContexteQt& c, QWidget* parent = nullptr);
    void Retraduit() override;

    FrmHTML& logique() { return logique_; }
    // The controls, for the tests.
    QLineEdit* dossier() const { return dossier_; }
    QLineEdit* auteur() const { return auteur_; }
    QCheckBox* navigateur() const { return navigateur_; }
    QCheckBox* personne() const { return personne_; }
    QPushButton* cmdCreer() const { return cmdCreer_; }
    // Runs the site with the choices shown.
    void Lance();

  private:
    void LitControles();
    void Ferme();

    ContexteQt& c_;
    FrmHTML logique_;
    QLabel *lblDossier_, *lblAuteur_;
    QLineEdit *dossier_, *auteur_;
    QPushButton *cmdParcourir_, *cmdCreer_, *cmdFermer_;
    QCheckBox *navigateur_, *personne_;
};

} // namespace sylvane
