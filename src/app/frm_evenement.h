// The event windows: `FrmLstEvt`, the list of every event over a model that
// reads only the rows shown, and `FrmDesEvt`, the form on one event, of
// which several may be open, each known by its event (its property
// "numero", which follows a new event once written).
#pragma once

#include "app/formulaires.h"
#include "ui/frm_evenement.h"

#include <memory>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;
class QTableView;
class QTableWidget;
class QTextEdit;

namespace sylvane {

class ModeleEvenements;
class ModelePersonnesEvt;
class GrilleRoles;

class FrmLstEvtQt : public FormulaireQt, public VueListeEvt {
    Q_OBJECT
  public:
    explicit FrmLstEvtQt(ContexteQt& c, QWidget* parent = nullptr);
    ~FrmLstEvtQt() override;
    void Retraduit() override;
    // The main window sizes a new window by its hint.
    QSize sizeHint() const override { return {760, 520}; }
    void PersonneChangee() override;
    void RecoitGlisser(char genre, std::uint32_t numero) override;
    void ListeChangee() override;

    FrmLstEvt& logique() { return *logique_; }
    QTableView* grille() const { return grille_; }
    QLineEdit* position() const { return position_; }

  protected:
    void keyPressEvent(QKeyEvent* e) override;

  private:
    int Rang() const;
    void Selectionne(std::size_t rang);

    ContexteQt& c_;
    std::unique_ptr<FrmLstEvt> logique_;
    ModeleEvenements* modele_;
    QTableView* grille_;
    QLabel* lblPosition_;
    QLineEdit* position_;
    QLabel* nombre_;
    QPushButton *ajout_, *maj_, *supp_, *imprimer_;
};

class FrmDesEvtQt : public FormulaireQt, public VueEvenement {
    Q_OBJECT
  public:
    explicit FrmDesEvtQt(ContexteQt& c, QWidget* parent = nullptr);
    ~FrmDesEvtQt() override;
    void Retraduit() override;
    // The main window sizes a new window by its hint.
    QSize sizeHint() const override { return {780, 540}; }
    void PersonneChangee() override;
    void RecoitGlisser(char genre, std::uint32_t numero) override;
    void EvenementChange() override;

    FrmDesEvt& logique() { return *logique_; }
    QComboBox* type() const { return type_; }
    QComboBox* role() const { return role_; }
    QLineEdit* date() const { return date_; }
    QLineEdit* lieu() const { return lieu_; }
    QTableView* personnes() const;
    QPushButton* cmdMaj() const { return cmdMaj_; }

  protected:
    void closeEvent(QCloseEvent* e) override;

  private:
    ContexteQt& c_;
    std::unique_ptr<FrmDesEvt> logique_;
    bool remplit_ = false;
    std::vector<std::pair<QWidget*, int>> textes_;
    QComboBox* type_;
    QLineEdit *date_, *lieu_, *titre_;
    QLabel* jour_;
    QTabWidget* onglets_;
    ModelePersonnesEvt* modele_;
    GrilleRoles* grille_;
    QComboBox* role_;
    QTableWidget* docs_;
    QTextEdit* note_;
    QPushButton* cmdMaj_;
};

} // namespace sylvane
