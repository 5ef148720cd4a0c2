// The communes window ("Recherche Commune") over the logic of
// ui/frm_commune.h: a name typed and looked up, the head words and the
// communes of the one chosen, the fields of a commune and its comment,
// the commands that add, remove and write the file anew. Opened from the
// menu it is a child window; opened from a place field (F4) it is a
// dialog whose "Prendre" puts the commune's name into that field.
//
// `AideLieu` gives a place field the communes whose name begins as the
// typed text, and F4 for the window.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_commune.h"

#include <functional>
#include <optional>
#include <string>

class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

namespace sylvane {

class FrmCommuneQt : public FormulaireQt {
    Q_OBJECT
  public:
    // `prend`, when given, receives the name of the commune chosen with
    // "Prendre" (or Enter on the list of communes).
    explicit FrmCommuneQt(ContexteQt& c, std::function<void(const std::string&)> prend = {},
                          QWidget* parent = nullptr);
    void Retraduit() override;
    FrmCommune& logique() { return logique_; }

    QLineEdit* commune() const { return commune_; }
    QLineEdit* index() const { return index_; }
    QListWidget* mots() const { return mots_; }
    QListWidget* communes() const { return communes_; }
    QPlainTextEdit* commentaire() const { return commentaire_; }
    QLineEdit* numero() const { return numero_; }
    QLineEdit* codesPostaux() const { return codes_; }
    QLabel* population() const { return population_; }
    QLabel* departement() const { return departement_; }
    QPushButton* enregistrer() const { return enregistrer_; }
    QPushButton* ajouter() const { return ajouter_; }
    QPushButton* retirer() const { return retirer_; }
    QPushButton* reorganiser() const { return reorganiser_; }
    QPushButton* prendre() const { return prendre_; }

    // Goes to a head word: the words around it, its communes.
    void AllerMot(const QString& texte);
    // Shows the commune of that number.
    void MontreCommune(std::uint32_t n);
    // The dialog of a new commune, then its addition.
    void Ajoute();

  private:
    void RemplitCommunes(const std::string& mot);
    void Montre();
    void Prend();
    void Etat();

    ContexteQt& c_;
    FrmCommune logique_;
    std::function<void(const std::string&)> prend_;
    QLabel *lblCommune_, *lblIndex_, *lblMots_, *lblCommunes_, *aucun_;
    QLabel *lblNumero_, *lblCodes_, *lblAgglo_, *lblPrincipale_, *lblDepartement_, *lblPopulation_,
        *lblSuperficie_, *lblCommentaire_;
    QLineEdit *commune_, *index_, *numero_, *codes_, *agglo_, *principale_;
    QLabel *departement_, *population_, *superficie_;
    QPlainTextEdit* commentaire_;
    QListWidget *mots_, *communes_;
    QPushButton *aller_, *enregistrer_, *ajouter_, *retirer_, *reorganiser_, *prendre_, *fermer_;
};

// The communes window as a dialog over `parent`, opened on `texte`: the
// name taken, or nothing.
std::optional<std::string> ChoisitCommune(ContexteQt& c, const std::string& texte, QWidget* parent);

// A place field gets the gazetteer's help: the names that begin as the
// typed text in a pop-up list, and F4 for the communes window. A name
// taken is typed into the field, as the user would.
void AideLieu(ContexteQt& c, QLineEdit* champ);

} // namespace sylvane
