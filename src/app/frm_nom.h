// `FrmNom`, the general list of names and the person picker of every
// "choose a person". The grid reads only the rows it draws (a lazy model
// shown with rows of one fixed height, so that nothing lays out every row:
// a list view would), and opens at once on any base; typing
// in `TxPosition` moves it to the name, `C_Prec` and its twin to the
// previous and next match. Enter or a double click chooses, Escape cancels.
#pragma once

#include "app/formulaires.h"
#include "ui/liste_noms.h"

#include <QAbstractTableModel>

#include <cstdint>
#include <memory>
#include <unordered_map>

class QLabel;
class QLineEdit;
class QTableView;
class QTimer;
class QPushButton;

namespace sylvane {

class Base;

// The rows of a ListeNoms, read when Qt asks for them; a few hundred rows
// read last are kept. Columns: number, name, family, dates, sex, mark.
class ModeleNoms : public QAbstractTableModel {
    Q_OBJECT
  public:
    static constexpr int kRolePersonne = Qt::UserRole;
    static constexpr int kColonnes = 6;

    explicit ModeleNoms(ListeNoms& liste, QObject* parent = nullptr);
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation o, int role) const override;
    // The language changed: captions again.
    void Retraduit() { Q_EMIT headerDataChanged(Qt::Horizontal, 0, kColonnes - 1); }

  private:
    const LigneNom& Ligne(int ligne) const;
    ListeNoms& liste_;
    mutable std::unordered_map<int, LigneNom> lues_;
};

class FrmNomQt : public FormulaireQt {
    Q_OBJECT
  public:
    // `titre`: the message of the window title (0: "Liste des personnes").
    FrmNomQt(Base* base, std::uint32_t depart, int titre = 0, QWidget* parent = nullptr);
    ~FrmNomQt() override;

    void Retraduit() override;
    std::uint32_t Choix() const override { return choix_; }
    bool Modal() const override { return true; }

    ListeNoms& liste() { return *liste_; }
    QTableView* vue() const { return vue_; }
    QLineEdit* position() const { return position_; }

  Q_SIGNALS:
    // The user chose (Enter, double click, OK) or cancelled.
    void Termine(bool accepte);

  protected:
    bool eventFilter(QObject* o, QEvent* e) override;

  private:
    void Montre(std::size_t ligne);
    void Largeurs();
    // A search row by row goes on a slice at a time between events.
    void Suite(ListeNoms::Resultat r);
    void Accepte();
    void Annule();

    std::unique_ptr<ListeNoms> liste_;
    std::unique_ptr<ModeleNoms> modele_;
    int titre_;
    std::uint32_t choix_ = 0;
    QLabel* etiquette_;
    QLineEdit* position_;
    QPushButton* precedent_;
    QPushButton* suivant_;
    QTableView* vue_;
    QTimer* poursuite_;
    QLabel* nombre_;
    QPushButton* ok_;
    QPushButton* annuler_;
};

// The modal picker: the list in a dialog over `parent`, on `depart`.
// Answers the chosen person, or 0 when cancelled or when the base is empty.
std::uint32_t ChoisitPersonneQt(Base* base, std::uint32_t depart, int titre, QWidget* parent);

} // namespace sylvane
