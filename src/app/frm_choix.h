// The four candidate pickers as one modal dialog over `FrmChoix`: the
// search text and its button, a grid of 20 rows, the pages before and
// after. A click or Enter on a row chooses it and closes; Escape cancels.
#pragma once

#include "ui/frm_choix.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace sylvane {

class FrmChoixQt : public QDialog {
    Q_OBJECT
  public:
    FrmChoixQt(Base* base, Candidats genre, std::uint32_t pour, char sexe, const std::string& nom,
               QWidget* parent = nullptr);

    FrmChoix& logique() { return logique_; }
    std::uint32_t Choix() const { return logique_.Choix(); }
    QLineEdit* recherche() const { return nom_; }
    QTableWidget* grille() const { return grille_; }
    QPushButton* suivants() const { return suivants_; }
    QPushButton* precedents() const { return precedents_; }
    void Retraduit();

  protected:
    bool eventFilter(QObject* o, QEvent* e) override;

  private:
    void Montre();
    void Choisit(int ligne);

    FrmChoix logique_;
    QLabel* etiquette_;
    QLineEdit* nom_;
    QPushButton* chercher_;
    QTableWidget* grille_;
    QLabel* plage_;
    QLabel* legende_;
    QPushButton *precedents_, *suivants_, *ok_, *annuler_;
};

} // namespace sylvane
