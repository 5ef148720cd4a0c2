// `FrmNom`, the general list of names and the person picker of every
// "choose a person". The list view reads only the rows it draws (a lazy
// model with rows of one height), so it opens at once on any base; typing
// in `TxPosition` moves it to the name, `C_Prec` and its twin to the
// previous and next match. Enter or a double click chooses, Escape cancels.
#pragma once

#include "app/formulaires.h"
#include "ui/liste_noms.h"

#include <QAbstractListModel>
#include <QStyledItemDelegate>

#include <cstdint>
#include <memory>
#include <unordered_map>

class QLabel;
class QLineEdit;
class QListView;
class QPushButton;

namespace sylvane {

class Base;

// The rows of a ListeNoms, read when Qt asks for them; a few hundred rows
// read last are kept.
class ModeleNoms : public QAbstractListModel {
    Q_OBJECT
  public:
    // The texts of a row's columns: number, name, family, dates, sex, mark.
    static constexpr int kRoleColonne = Qt::UserRole + 1; // + column
    static constexpr int kRolePersonne = Qt::UserRole;
    static constexpr int kColonnes = 6;

    explicit ModeleNoms(ListeNoms& liste, QObject* parent = nullptr);
    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

  private:
    const LigneNom& Ligne(int ligne) const;
    ListeNoms& liste_;
    mutable std::unordered_map<int, LigneNom> lues_;
};

// Draws a row as the columns of a grid.
class DelegueNoms : public QStyledItemDelegate {
    Q_OBJECT
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    // Left edges of the columns (and the right end) for a row of this width.
    static std::array<int, ModeleNoms::kColonnes + 1> Bords(const QFontMetrics& fm, int largeur);
    void paint(QPainter* p, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
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
    QListView* vue() const { return vue_; }
    QLineEdit* position() const { return position_; }

  Q_SIGNALS:
    // The user chose (Enter, double click, OK) or cancelled.
    void Termine(bool accepte);

  protected:
    bool eventFilter(QObject* o, QEvent* e) override;

  private:
    void Montre(std::size_t ligne);
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
    QWidget* entete_;
    QListView* vue_;
    QLabel* nombre_;
    QPushButton* ok_;
    QPushButton* annuler_;
};

// The modal picker: the list in a dialog over `parent`, on `depart`.
// Answers the chosen person, or 0 when cancelled or when the base is empty.
std::uint32_t ChoisitPersonneQt(Base* base, std::uint32_t depart, int titre, QWidget* parent);

} // namespace sylvane
