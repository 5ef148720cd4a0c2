// `FrmAscendants` and `FrmDescendants`: the list of a person's ascendants
// (descendants) in a grid, with the number of generations, the four
// orders and the buttons that hand the list or a row on. Rows are dragged
// out as "I<n>" tags; a double click or Enter moves the person in course.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_listes.h"

#include "app/modele_glisser.h"

class QGroupBox;
class QLabel;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QTableView;

namespace sylvane {

// The rows of the form's logic as a table; column 0, the person number,
// stays hidden.
class ModeleListe : public ModeleGlisser {
    Q_OBJECT
  public:
    explicit ModeleListe(FrmListe& logique, QObject* parent = nullptr)
        : ModeleGlisser(parent), logique_(logique) {}
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;
    void Retraduit();

  private:
    std::string TagLigne(int ligne) const override { return logique_.TagGlisser(ligne); }
    FrmListe& logique_;
};

class FrmListeQt : public FormulaireQt, public VueListe {
    Q_OBJECT
  public:
    FrmListeQt(ContexteQt& c, GenreListe genre, QWidget* parent = nullptr);
    void Retraduit() override;
    void PersonneChangee() override;
    void RecoitGlisser(char genre, std::uint32_t numero) override;
    void ListeChangee() override;

    FrmListe& logique() { return logique_; }
    // The controls, for the tests: `TxNiveaux`, `CmdPresentation(i)`,
    // `Grille1` and the buttons.
    QSpinBox* niveaux() const { return niveaux_; }
    QRadioButton* presentation(int i) const { return ordres_[i]; }
    QTableView* grille() const { return grille_; }
    ModeleListe* modele() const { return modele_; }
    QPushButton* cmdAscendants() const { return cmdAscendants_; }
    QPushButton* cmdDescendants() const { return cmdDescendants_; }
    QLabel* nombre() const { return nombre_; }

  protected:
    void closeEvent(QCloseEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;

  private:
    int LigneCourante() const;
    void Boutons();
    void Largeurs();
    // "1 personne", "3 personnes" under the grid.
    void AfficheNombre();

    ContexteQt& c_;
    FrmListe logique_;
    ModeleListe* modele_;
    QLabel* lblNiveaux_;
    QSpinBox* niveaux_;
    QGroupBox* cadreOrdre_;
    QRadioButton* ordres_[4];
    QTableView* grille_;
    QLabel* nombre_;
    QPushButton *cmdArbre_, *cmdStats_, *cmdAscendants_, *cmdDescendants_, *cmdImpression_,
        *cmdMaj_;
};

} // namespace sylvane
