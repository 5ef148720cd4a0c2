// `FrmCreation` as a modal dialog: identity, sex, birth and death, one row
// for each person rubric of the base. OK creates the person (the warnings
// and refusals of the logic come as boxes); Escape cancels.
#pragma once

#include "ui/frm_creation.h"

#include <QDialog>

#include <vector>

class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace sylvane {

class Boites;

class FrmCreationQt : public QDialog {
    Q_OBJECT
  public:
    FrmCreationQt(Base& base, const Parametres& parametres, Boites& boites,
                  const std::string& etiquette, EtatNumerotation* numeros = nullptr,
                  QWidget* parent = nullptr);

    FrmCreation& logique() { return logique_; }
    std::uint32_t Personne() const { return logique_.Personne(); }
    // The field of a kind (rubric rows by rank).
    QLineEdit* Champ(ChampCreation c, int rang = 0) const;
    QPushButton* ok() const { return ok_; }
    void Retraduit();

  protected:
    bool eventFilter(QObject* o, QEvent* e) override;

  private:
    struct Ligne {
        ChampCreation champ;
        int rang;
        QLineEdit* edit;
        QLabel* libelle; // the day in words, for day fields
    };
    QLineEdit* Ajoute(ChampCreation c, int rang = 0, QLabel* libelle = nullptr);
    void Valide();

    FrmCreation logique_;
    Boites& boites_;
    std::vector<Ligne> lignes_;
    QLabel *lNom_, *lPrenom_, *lAutres_, *lNaiss_, *lDeces_, *lSexe_;
    std::vector<QLabel*> entetes_;
    QLabel* lRubriques_ = nullptr;
    std::vector<QLabel*> lRubrique_;
    QRadioButton *homme_, *femme_, *inconnu_;
    QPushButton *ok_, *annuler_;
};

} // namespace sylvane
