// The windows of the four searches: criteria above, the result grid filled
// while the scan runs, the count under it and the commands at the right.
// A row is dragged out as "I<n>" ("E<n>" for an event); a double click
// or Enter shows the sheet; a header click sorts.
#pragma once

#include "app/formulaires.h"
#include "ui/frm_recherche.h"

#include "app/modele_glisser.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

namespace sylvane {

class ModeleRecherche : public ModeleGlisser {
    Q_OBJECT
  public:
    explicit ModeleRecherche(FrmRechercheCommun& logique, QObject* parent = nullptr)
        : ModeleGlisser(parent), logique_(logique) {}
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;
  private:
    std::string TagLigne(int ligne) const override {
        return logique_.TagGlisser(static_cast<std::size_t>(ligne));
    }
    FrmRechercheCommun& logique_;
};

// What the four windows share.
class FrmRechercheQt : public FormulaireQt, public VueRecherche {
    Q_OBJECT
  public:
    FrmRechercheQt(ContexteQt& c, FrmRechercheCommun& logique, QWidget* parent = nullptr);
    void Retraduit() override;
    void LignesChangees() override;
    // Room for the criteria, a dozen rows and the commands.
    QSize sizeHint() const override { return {900, 540}; }

    QTableView* grille() const { return grille_; }
    QPushButton* cmdRecherche() const { return cmdRecherche_; }
    QPushButton* cmdEcarter() const { return cmdEcarter_; }
    QPushButton* cmdMaj() const { return cmdMaj_; }
    QLabel* nombre() const { return nombre_; }
    // Runs the search with the criteria of the fields (Enter does the same).
    void Recherche();

  protected:
    // Builds the window once the criteria are laid out in `criteres`.
    void Termine(QLayout* criteres, bool ajouter, bool exporter);
    // The fields copied into the logic before a search.
    virtual void LitCriteres() = 0;
    // The fields shown again from the logic (folded texts).
    virtual void MontreCriteres() {}
    virtual void RetraduitCriteres() = 0;
    // Enter in a field runs the search.
    void EntreeLance(QLineEdit* e);
    void closeEvent(QCloseEvent* e) override;
    void showEvent(QShowEvent* e) override;
    int LigneCourante() const;
    void Boutons();

    ContexteQt& c_;
    FrmRechercheCommun& base_;
    ModeleRecherche* modele_;
    QTableView* grille_;
    QLabel* nombre_;
    QPushButton *cmdRecherche_, *cmdMaj_, *cmdAffichage_, *cmdAjouter_ = nullptr, *cmdEcarter_,
        *cmdImprimer_, *cmdParente_, *cmdStats_, *cmdExporter_ = nullptr, *cmdFermer_;
    bool dimensionnee_ = false;
};

class FrmRechercheNomQt : public FrmRechercheQt {
    Q_OBJECT
  public:
    explicit FrmRechercheNomQt(ContexteQt& c);
    void RecoitGlisser(char genre, std::uint32_t numero) override;
    FrmRecherche& logique() { return logique_; }
    QLineEdit* texte() const { return texte_; }
    QCheckBox* cumul() const { return cumul_; }

  protected:
    void LitCriteres() override;
    void MontreCriteres() override;
    void RetraduitCriteres() override;
    void dragEnterEvent(QDragEnterEvent* e) override;
    void dropEvent(QDropEvent* e) override;

  private:
    FrmRecherche logique_;
    QLabel* lblTexte_;
    QLineEdit* texte_;
    QCheckBox* cumul_;
};

class FrmRechTexteQt : public FrmRechercheQt {
    Q_OBJECT
  public:
    explicit FrmRechTexteQt(ContexteQt& c);
    FrmRechTexte& logique() { return logique_; }
    QComboBox* genre(int i) const { return genres_[i]; }
    QLineEdit* texte(int i) const { return textes_[i]; }
    QLineEdit* debut() const { return debut_; }
    QLineEdit* fin() const { return fin_; }

  protected:
    void LitCriteres() override;
    void MontreCriteres() override;
    void RetraduitCriteres() override;

  private:
    void RemplitGenres();
    FrmRechTexte logique_;
    QLabel *lblGenre_, *lblTexte_, *lblDebut_, *lblFin_;
    QComboBox* genres_[4];
    QLineEdit* textes_[4];
    QLineEdit *debut_, *fin_;
    QCheckBox *orphelines_, *cumul_;
};

class FrmRechCoupleQt : public FrmRechercheQt {
    Q_OBJECT
  public:
    explicit FrmRechCoupleQt(ContexteQt& c);
    FrmRechCouple& logique() { return logique_; }
    QLineEdit* champ(int i) const { return champs_[i]; }

  protected:
    void LitCriteres() override;
    void RetraduitCriteres() override;

  private:
    FrmRechCouple logique_;
    // TxtEpoux, TxtPrEpoux, TxtEpouse, TxtPrEpouse, TxtLieuMar, TxtAdeb, TxtAfin
    QLineEdit* champs_[7];
    QLabel* etiquettes_[7];
};

class FrmRechEvtQt : public FrmRechercheQt {
    Q_OBJECT
  public:
    explicit FrmRechEvtQt(ContexteQt& c);
    FrmRechEvt& logique() { return logique_; }
    QComboBox* type() const { return type_; }
    QComboBox* lieu() const { return lieu_; }
    QLineEdit* debut() const { return debut_; }
    QLineEdit* fin() const { return fin_; }

  protected:
    void LitCriteres() override;
    void MontreCriteres() override;
    void RetraduitCriteres() override;

  private:
    void RemplitCombos();
    FrmRechEvt logique_;
    QLabel *lblType_, *lblLieu_, *lblDebut_, *lblFin_;
    QComboBox *type_, *lieu_;
    QLineEdit *debut_, *fin_;
};

} // namespace sylvane
