#include "app/frm_listes.h"

#include "app/texte_qt.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

namespace sylvane {

// --- The model --------------------------------------------------------------------------

int ModeleListe::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(logique_.Lignes().size());
}

int ModeleListe::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : logique_.NombreColonnes();
}

QVariant ModeleListe::data(const QModelIndex& index, int role) const {
    const auto& lignes = logique_.Lignes();
    if (!index.isValid() || static_cast<std::size_t>(index.row()) >= lignes.size()) return {};
    const FrmListe::Ligne& l = lignes[static_cast<std::size_t>(index.row())];
    const int c = index.column();
    if (role == Qt::DisplayRole) {
        if (c == 0) return QString::number(l.personne);
        return Q(l.cellules.at(static_cast<std::size_t>(c - 1)));
    }
    // Numbers to the right, texts (names, dates, number strings) to the left.
    if (role == Qt::TextAlignmentRole) {
        const bool texte = c >= 5 || (logique_.Genre() == GenreListe::Descendants && c == 3) ||
                           (logique_.Genre() == GenreListe::Ascendants && c == 2);
        return QVariant::fromValue((texte ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    }
    return {};
}

QVariant ModeleListe::headerData(int section, Qt::Orientation o, int role) const {
    if (o != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return Q(logique_.Entete(section));
}


void ModeleListe::Retraduit() { Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1); }

// --- The form --------------------------------------------------------------------------

FrmListeQt::FrmListeQt(ContexteQt& c, GenreListe genre, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique, genre) {
    logique_.DefinitVue(this);
    modele_ = new ModeleListe(logique_, this);

    lblNiveaux_ = new QLabel(this);
    niveaux_ = new QSpinBox(this);
    niveaux_->setRange(FrmListe::kNiveauxMin, FrmListe::kNiveauxMax);
    niveaux_->setValue(logique_.Niveaux());
    // Only a finished value builds the list again, not each digit typed.
    niveaux_->setKeyboardTracking(false);
    lblNiveaux_->setBuddy(niveaux_);

    cadreOrdre_ = new QGroupBox(this);
    auto* ordre = new QHBoxLayout(cadreOrdre_);
    auto* groupe = new QButtonGroup(this);
    for (int i = 0; i < 4; ++i) {
        ordres_[i] = new QRadioButton(cadreOrdre_);
        groupe->addButton(ordres_[i], i);
        ordre->addWidget(ordres_[i]);
    }
    ordres_[logique_.Presentation()]->setChecked(true);

    grille_ = GrilleGlisser(this);
    grille_->setModel(modele_);
    grille_->setColumnHidden(0, true);
    nombre_ = new QLabel(this);

    auto bouton = [this] { return new QPushButton(this); };
    cmdArbre_ = bouton();
    cmdStats_ = bouton();
    cmdAscendants_ = bouton();
    cmdDescendants_ = bouton();
    cmdImpression_ = bouton();
    cmdMaj_ = bouton();

    auto* haut = new QHBoxLayout;
    haut->addWidget(lblNiveaux_);
    haut->addWidget(niveaux_);
    haut->addSpacing(12);
    haut->addWidget(cadreOrdre_, 1);
    auto* boutons = new QVBoxLayout;
    for (QPushButton* b : {cmdAscendants_, cmdDescendants_, cmdMaj_, cmdArbre_, cmdStats_,
                           cmdImpression_})
        boutons->addWidget(b);
    boutons->addStretch(1);
    auto* milieu = new QHBoxLayout;
    auto* gauche = new QVBoxLayout;
    gauche->addWidget(grille_, 1);
    gauche->addWidget(nombre_);
    milieu->addLayout(gauche, 1);
    milieu->addLayout(boutons);
    auto* l = new QVBoxLayout(this);
    l->addLayout(haut);
    l->addLayout(milieu, 1);
    setTabOrder(niveaux_, ordres_[0]);
    setTabOrder(ordres_[0], grille_);
    setTabOrder(grille_, cmdAscendants_);

    connect(niveaux_, &QSpinBox::valueChanged, this,
            [this](int v) { logique_.ChangeNiveaux(v); });
    connect(groupe, &QButtonGroup::idToggled, this, [this](int id, bool coche) {
        if (coche) logique_.ChangePresentation(id);
    });
    connect(grille_, &QAbstractItemView::activated, this,
            [this](const QModelIndex& i) { logique_.Choisit(i.row()); });
    connect(grille_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { Boutons(); });
    connect(cmdAscendants_, &QPushButton::clicked, this,
            [this] { logique_.VersListe(GenreListe::Ascendants, LigneCourante()); });
    connect(cmdDescendants_, &QPushButton::clicked, this,
            [this] { logique_.VersListe(GenreListe::Descendants, LigneCourante()); });
    connect(cmdMaj_, &QPushButton::clicked, this, [this] { logique_.CmdMaj(LigneCourante()); });
    connect(cmdArbre_, &QPushButton::clicked, this, [this] { logique_.CmdArbre(); });
    connect(cmdStats_, &QPushButton::clicked, this, [this] { logique_.CmdStats(); });
    connect(cmdImpression_, &QPushButton::clicked, this, [this] { logique_.CmdImpression(); });

    Retraduit();
    Boutons();
    resize(760, 480);
    // The list is built once the window shows, on the progress panel.
    QTimer::singleShot(0, this, [this] { logique_.MetAJour(); });
}

void FrmListeQt::Retraduit() {
    using namespace msg_listes;
    lblNiveaux_->setText(M(Generations));
    cadreOrdre_->setTitle(MT(Presentation));
    for (int i = 0; i < 4; ++i)
        ordres_[i]->setText(M(Ordre0 + i));
    cmdArbre_->setText(M(msg_listes::CmdArbre));
    cmdStats_->setText(M(msg_listes::CmdStats));
    cmdAscendants_->setText(M(msg_listes::CmdAscendants));
    cmdDescendants_->setText(M(msg_listes::CmdDescendants));
    cmdImpression_->setText(M(msg_listes::CmdImpression));
    cmdMaj_->setText(M(msg_listes::CmdMaj));
    modele_->Retraduit();
    setWindowTitle(Q(logique_.Titre()));
    AfficheNombre();
    Largeurs();
}

void FrmListeQt::PersonneChangee() { logique_.MetAJour(); }

void FrmListeQt::RecoitGlisser(char genre, std::uint32_t numero) {
    logique_.RecoitGlisser(genre, numero);
}

void FrmListeQt::ListeChangee() {
    modele_->Recharge();
    {
        // The options follow the logic, which held them to their bounds;
        // the list is not built again for that.
        const QSignalBlocker b(niveaux_);
        niveaux_->setValue(logique_.Niveaux());
    }
    ordres_[logique_.Presentation()]->setChecked(true);
    setWindowTitle(Q(logique_.Titre()));
    AfficheNombre();
    if (!logique_.Lignes().empty()) grille_->selectRow(0);
    Largeurs();
    Boutons();
}

int FrmListeQt::LigneCourante() const {
    const QModelIndex i = grille_->currentIndex();
    return i.isValid() ? i.row() : -1;
}

void FrmListeQt::Boutons() {
    const bool ligne = LigneCourante() >= 0;
    cmdDescendants_->setEnabled(ligne &&
                                logique_.Disponible(FrmListe::NomFormulaire(GenreListe::Descendants)));
    cmdAscendants_->setEnabled(ligne &&
                               logique_.Disponible(FrmListe::NomFormulaire(GenreListe::Ascendants)));
    cmdMaj_->setEnabled(ligne && logique_.Disponible("FrmMisajour"));
    const bool liste = !logique_.Lignes().empty();
    cmdArbre_->setEnabled(liste && logique_.Disponible("FrmParenteVisu"));
    cmdStats_->setEnabled(liste && logique_.Disponible("FrmStats"));
    cmdImpression_->setEnabled(liste && logique_.Disponible("FrmImpression"));
}

// Each column fits its widest text with two blanks, its header and its
// sample text; the name takes at least a third of the grid.
void FrmListeQt::Largeurs() {
    const QFontMetrics fm = grille_->fontMetrics();
    const QFontMetrics fmTete = grille_->horizontalHeader()->fontMetrics();
    const int blancs = fm.horizontalAdvance(QStringLiteral("  "));
    grille_->resizeColumnsToContents();
    for (int c = 1; c < logique_.NombreColonnes(); ++c) {
        int largeur = grille_->columnWidth(c);
        largeur = std::max(largeur, fm.horizontalAdvance(Q(logique_.Gabarit(c))) + blancs);
        largeur = std::max(largeur, fmTete.horizontalAdvance(Q(logique_.Entete(c))) + 3 * blancs);
        if (c == 5) largeur = std::max(largeur, grille_->viewport()->width() / 3);
        grille_->setColumnWidth(c, largeur);
    }
}

void FrmListeQt::resizeEvent(QResizeEvent* e) {
    FormulaireQt::resizeEvent(e);
    Largeurs();
}

// The window stays while its list is being built: the walk runs under it.
void FrmListeQt::closeEvent(QCloseEvent* e) {
    if (c_.logique.services().panneau.Visible()) {
        c_.logique.Occupe();
        e->ignore();
        return;
    }
    FormulaireQt::closeEvent(e);
}

static EnregistrementFormulaire enrAscendants("FrmAscendants", [](ContexteQt& c) {
    return new FrmListeQt(c, GenreListe::Ascendants);
});
static EnregistrementFormulaire enrDescendants("FrmDescendants", [](ContexteQt& c) {
    return new FrmListeQt(c, GenreListe::Descendants);
});

void FrmListeQt::AfficheNombre() {
    const std::size_t n = logique_.Lignes().size();
    nombre_->setText(MT(n == 1 ? msg_listes::NombreUn : msg_listes::Nombre, QString::number(n)));
}

} // namespace sylvane
