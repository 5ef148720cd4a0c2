// The register forms: a register file, the base it becomes, the columns
// the file must have, and the report of the capture.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_releve.h"

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace sylvane {

class FrmReleveQt : public FormulaireQt {
    Q_OBJECT
  public:
    FrmReleveQt(ContexteQt& c, GenreReleve g, QWidget* parent = nullptr);
    void Retraduit() override;

    FrmReleve& logique() { return logique_; }
    QLineEdit* fichier() const { return fichier_; }
    QLineEdit* cible() const { return cible_; }
    QPushButton* importer() const { return importer_; }
    QPlainTextEdit* rapport() const { return rapport_; }

  protected:
    void keyPressEvent(class QKeyEvent* e) override;

  private:
    void Montre();

    ContexteQt& c_;
    FrmReleve logique_;
    QLabel *aide_, *lblFichier_, *lblCible_, *lblColonnes_, *colonnes_;
    QLineEdit *fichier_, *cible_;
    QPushButton *parcourir_, *parcourirCible_, *importer_, *fermer_;
    QPlainTextEdit* rapport_;
};

} // namespace sylvane
