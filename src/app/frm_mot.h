// The keyword and rubric windows over the logic of ui/frm_mot.h: the kinds
// and sheet rubric rows (`FrmMotCle`), the usual words (`FrmUsuels`) and
// the replacement (`FrmRemplacement`) as child windows; the keyword list
// (`FrmLMotCle`) and the picker of a rubric value (`FrmMot`) as dialogs
// that the sheet and the keyword search open.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_mot.h"

#include <QDialog>

#include <functional>
#include <optional>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QScrollBar;
class QTabWidget;
class QTableWidget;

namespace sylvane {

// A page of keywords with its scroll bar (`VScroll1`) and its search field
// (`EtiRecherche`): a kind may hold a hundred thousand words, so only the
// rows shown are read.
class ListeMotsQt : public QWidget {
    Q_OBJECT
  public:
    ListeMotsQt(FrmLMotCle& logique, QWidget* parent = nullptr);
    void Retraduit();
    // Typed text: the list moves to the first keyword at or after it.
    void Cherche(const QString& texte);
    void Remplit();
    std::function<void(const LigneMotCle&)> choisi;   // a click
    std::function<void(const LigneMotCle&)> valide;   // a double click or Enter
    QTableWidget* grille() const { return grille_; }
    QLineEdit* recherche() const { return recherche_; }
    QScrollBar* barre() const { return barre_; }

  protected:
    void resizeEvent(QResizeEvent* e) override;
    bool eventFilter(QObject* o, QEvent* e) override;

  private:
    const LigneMotCle* Ligne(int rang) const;
    FrmLMotCle& logique_;
    QLabel* lblRecherche_;
    QLineEdit* recherche_;
    QTableWidget* grille_;
    QScrollBar* barre_;
    std::vector<LigneMotCle> lignes_;
};

// The recapitulation button of FrmLMotClé: its menu prints the keywords of
// the kind with their persons, or writes them as RTF or HTML; "Tous index"
// (`MnuEnsemble`) takes every indexed kind.
QPushButton* MenuRecapitulation(MDIForm1& f, FrmLMotCle& logique, QWidget* parent);

// FrmLMotClé: the keywords of a kind; answers the one chosen, as a field
// takes it, or nothing.
std::optional<std::string> ChoisitMotCle(MDIForm1& f, char marque, QWidget* parent);

// FrmMot on a rubric value: answers the day, year and value to keep.
std::optional<DemandeMot> EditeMot(MDIForm1& f, const DemandeMot& d, QWidget* parent);

class FrmMotQt : public QDialog {
    Q_OBJECT
  public:
    FrmMotQt(MDIForm1& f, const DemandeMot& d, QWidget* parent = nullptr);
    FrmMot& logique() { return logique_; }
    QLineEdit* valeur() const { return valeur_; }
    ListeMotsQt* liste() const { return liste_; }
    QPushButton* usuels() const { return usuels_; }
    QPushButton* evenement() const { return evenement_; }
    void accept() override;

  private:
    FrmMot logique_;
    QLabel *lblJour_, *lblAnnee_, *lblValeur_;
    QLineEdit *jour_, *annee_, *valeur_;
    ListeMotsQt* liste_;
    QPushButton *usuels_, *evenement_, *valider_, *annuler_;
};

class FrmMotCleQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmMotCleQt(ContexteQt& c);
    void Retraduit() override;
    FrmMotCle& logique() { return logique_; }
    QTableWidget* grille() const { return grille_; }
    QLineEdit* libelle() const { return libelle_; }
    QLineEdit* marque() const { return marque_; }
    QCheckBox* index() const { return index_; }
    QListWidget* possibles() const { return possibles_; }
    QListWidget* rangs(bool mariage) const { return mariage ? rangsMar_ : rangsInd_; }
    QTabWidget* onglets() const { return onglets_; }

  protected:
    void closeEvent(QCloseEvent* e) override;

  private:
    void Montre();
    void MontreRangs();
    void LitChamps();
    ContexteQt& c_;
    FrmMotCle logique_;
    QTabWidget* onglets_;
    QTableWidget* grille_;
    QLabel *lblLibelle_, *lblMarque_, *lblPossibles_;
    QLineEdit *libelle_, *marque_;
    QCheckBox *index_, *date_;
    QPushButton *ajout_, *maj_, *supp_, *haut_, *bas_, *liste_;
    QListWidget *possibles_, *rangsInd_, *rangsMar_;
    QPushButton *versInd_, *versMar_;
    QGroupBox *cadreInd_, *cadreMar_;
    QPushButton* boutonsRangs_[2][3];
};

class FrmUsuelsQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmUsuelsQt(ContexteQt& c);
    void Retraduit() override;
    FrmUsuels& logique() { return logique_; }

  private:
    void Montre();
    FrmUsuels logique_;
    QGroupBox *cadreListe_, *cadreMots_;
    QComboBox* rubrique_;
    QLineEdit *nouvelleListe_, *nouveauMot_;
    QListWidget* mots_;
    QPushButton *ajoutListe_, *supListe_, *ajoutMot_, *supMot_;
};

class FrmRemplacementQt : public FormulaireQt {
    Q_OBJECT
  public:
    explicit FrmRemplacementQt(ContexteQt& c);
    void Retraduit() override;
    void PersonneChangee() override;
    FrmRemplacement& logique() { return logique_; }
    QComboBox* genre() const { return genre_; }
    QLineEdit* ancien() const { return ancien_; }
    QLineEdit* nouveau() const { return nouveau_; }
    QCheckBox* tous() const { return tous_; }
    QPushButton* remplacer() const { return remplacer_; }

  private:
    void RemplitGenres();
    void Lit();
    ContexteQt& c_;
    FrmRemplacement logique_;
    QLabel *lblGenre_, *lblAncien_, *lblNouveau_, *bilan_;
    QComboBox* genre_;
    QLineEdit *ancien_, *nouveau_;
    QPushButton *choixAncien_, *choixNouveau_, *remplacer_;
    QCheckBox* tous_;
};

} // namespace sylvane
