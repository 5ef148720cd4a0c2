// `FrmControle`: the report of the last consistency control in a child
// window, one repair a line, with its summary, the file it was written to,
// and a copy under another name.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_controle.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace sylvane {

class FrmControleQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmControleQt(ContexteQt& c, QWidget* parent = nullptr);
    ~FrmControleQt() override;
    void Retraduit() override;

    QLabel* resume() const { return resume_; }
    QPlainTextEdit* texte() const { return texte_; }

  protected:
    void keyPressEvent(class QKeyEvent* e) override;

  private:
    void Montre();

    ContexteQt& c_;
    FrmControle logique_;
    QLabel *resume_, *fichier_;
    QPlainTextEdit* texte_;
    QPushButton *enregistrer_, *fermer_;
};

} // namespace sylvane
