#include "app/frm_choix.h"

#include "app/texte_qt.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

namespace sylvane {
namespace {

QPushButton* Bouton(QWidget* parent) {
    auto* b = new QPushButton(parent);
    // Enter belongs to the search field and to the grid, never to a button.
    b->setAutoDefault(false);
    b->setDefault(false);
    return b;
}

} // namespace

FrmChoixQt::FrmChoixQt(Base* base, Candidats genre, std::uint32_t pour, char sexe,
                       const std::string& nom, QWidget* parent)
    : QDialog(parent), logique_(base, genre, pour, sexe) {
    auto* l = new QVBoxLayout(this);
    auto* haut = new QHBoxLayout;
    etiquette_ = new QLabel(this);
    nom_ = new QLineEdit(this);
    etiquette_->setBuddy(nom_);
    chercher_ = Bouton(this);
    haut->addWidget(etiquette_);
    haut->addWidget(nom_, 1);
    haut->addWidget(chercher_);
    l->addLayout(haut);

    const bool enfants = genre == Candidats::Enfants;
    grille_ = new QTableWidget(static_cast<int>(FrmChoix::kLignes), enfants ? 4 : 3, this);
    grille_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grille_->setSelectionMode(QAbstractItemView::SingleSelection);
    grille_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grille_->verticalHeader()->hide();
    grille_->verticalHeader()->setDefaultSectionSize(grille_->fontMetrics().height() + 6);
    grille_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    grille_->setTabKeyNavigation(false);
    // The 20 rows of a page are all in view: pages turn, nothing scrolls.
    grille_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    grille_->setMinimumHeight(grille_->verticalHeader()->defaultSectionSize() * grille_->rowCount() +
                              grille_->horizontalHeader()->sizeHint().height() +
                              2 * grille_->frameWidth());
    grille_->installEventFilter(this);
    l->addWidget(grille_, 1);

    plage_ = new QLabel(this);
    legende_ = new QLabel(this);
    legende_->setVisible(enfants);
    l->addWidget(plage_);
    l->addWidget(legende_);

    auto* bas = new QHBoxLayout;
    precedents_ = Bouton(this);
    suivants_ = Bouton(this);
    ok_ = Bouton(this);
    annuler_ = Bouton(this);
    bas->addWidget(precedents_);
    bas->addWidget(suivants_);
    bas->addStretch(1);
    bas->addWidget(ok_);
    bas->addWidget(annuler_);
    l->addLayout(bas);

    connect(nom_, &QLineEdit::returnPressed, this, [this] { chercher_->click(); });
    connect(chercher_, &QPushButton::clicked, this, [this] {
        logique_.Cherche(A(nom_->text()));
        Montre();
    });
    connect(suivants_, &QPushButton::clicked, this, [this] {
        if (logique_.Suivante()) Montre();
    });
    connect(precedents_, &QPushButton::clicked, this, [this] {
        if (logique_.Precedente()) Montre();
    });
    connect(grille_, &QTableWidget::cellClicked, this, [this](int r, int) { Choisit(r); });
    connect(ok_, &QPushButton::clicked, this, [this] { Choisit(grille_->currentRow()); });
    connect(annuler_, &QPushButton::clicked, this, &QDialog::reject);

    setTabOrder(nom_, chercher_);
    setTabOrder(chercher_, grille_);
    setTabOrder(grille_, precedents_);
    setTabOrder(precedents_, suivants_);
    setTabOrder(suivants_, ok_);
    setTabOrder(ok_, annuler_);

    Retraduit();
    if (!nom.empty()) {
        nom_->setText(Q(nom));
        logique_.Cherche(nom);
    }
    Montre();
    resize(620, sizeHint().height());
    nom_->setFocus();
}

void FrmChoixQt::Retraduit() {
    setWindowTitle(M(logique_.Titre()));
    etiquette_->setText(M(3905));
    chercher_->setText(M(3906));
    precedents_->setText(M(3907));
    suivants_->setText(M(3908));
    ok_->setText(M(3909));
    annuler_->setText(M(3910));
    QStringList titres{M(3911), M(3912), M(3913)};
    if (grille_->columnCount() > 3) titres << M(3914);
    grille_->setHorizontalHeaderLabels(titres);
    legende_->setText(MT(3917));
    if (logique_.DecennieMin().empty() || logique_.DecennieMin() > logique_.DecennieMax())
        plage_->clear();
    else
        plage_->setText(MT(3915) + QStringLiteral(" %1 \u2013 %2 ").arg(Q(logique_.DecennieMin() + "0"),
                                                                     Q(logique_.DecennieMax() + "9")) +
                        MT(3916));
}

void FrmChoixQt::Montre() {
    const auto& lignes = logique_.Lignes();
    for (int r = 0; r < grille_->rowCount(); ++r) {
        const LigneChoix* l = r < static_cast<int>(lignes.size()) ? &lignes[r] : nullptr;
        const QStringList textes{l ? QString::number(l->numero) : QString(), l ? Q(l->nom) : QString(),
                                 l ? Q(l->dates) : QString(), l ? Q(l->code) : QString()};
        for (int c = 0; c < grille_->columnCount(); ++c) {
            auto* item = new QTableWidgetItem(textes[c]);
            if (c == 0) {
                item->setData(Qt::UserRole, l ? l->numero : 0u);
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            }
            if (c == 3) item->setTextAlignment(Qt::AlignCenter);
            grille_->setItem(r, c, item);
        }
    }
    grille_->resizeColumnToContents(0);
    grille_->resizeColumnToContents(2);
    if (grille_->columnCount() > 3) grille_->resizeColumnToContents(3);
    grille_->setCurrentCell(lignes.empty() ? -1 : 0, 1);
    suivants_->setEnabled(logique_.PeutSuivre());
    precedents_->setEnabled(logique_.PeutPreceder());
    ok_->setEnabled(!lignes.empty());
}

void FrmChoixQt::Choisit(int ligne) {
    if (ligne < 0) return;
    if (logique_.Choisit(static_cast<std::size_t>(ligne))) accept();
}

bool FrmChoixQt::eventFilter(QObject* o, QEvent* e) {
    if (o == grille_ && e->type() == QEvent::KeyPress) {
        const int k = static_cast<QKeyEvent*>(e)->key();
        if (k == Qt::Key_Return || k == Qt::Key_Enter) {
            Choisit(grille_->currentRow());
            return true;
        }
        // The page keys turn the pages of 20.
        if (k == Qt::Key_PageDown && suivants_->isEnabled()) {
            suivants_->click();
            return true;
        }
        if (k == Qt::Key_PageUp && precedents_->isEnabled()) {
            precedents_->click();
            return true;
        }
    }
    return QDialog::eventFilter(o, e);
}

} // namespace sylvane
