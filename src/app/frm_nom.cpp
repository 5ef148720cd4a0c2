#include "app/frm_nom.h"

#include "app/fenetre_principale.h"
#include "app/texte_qt.h"
#include "ui/mdiform1.h"

#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

namespace sylvane {
namespace {

constexpr int kTitreDefaut = 76;       // "Liste des personnes"
constexpr int kMsgChercher = 3300;
constexpr int kMsgPrecedent = 3301;
constexpr int kMsgSuivant = 3302;
constexpr int kMsgOk = 3303;
constexpr int kMsgAnnuler = 3304;
constexpr int kMsgColonnes = 3305;     // to 3310, one a column
constexpr int kMsgNombre = 3311;
constexpr int kMsgAideChercher = 3312;
constexpr int kMsgAideFamille = 3313;
constexpr int kMsgAideMarque = 3314;
constexpr int kLignesLues = 512;
constexpr int kMarge = 4;              // inner space of a column
// Rows read by one slice of a walk through the list (some milliseconds).
constexpr std::size_t kTranche = 4000;

} // namespace

// --- Model --------------------------------------------------------------------------------------

ModeleNoms::ModeleNoms(ListeNoms& liste, QObject* parent)
    : QAbstractTableModel(parent), liste_(liste) {}

int ModeleNoms::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    return static_cast<int>(std::min<std::size_t>(liste_.Nombre(), INT32_MAX));
}

int ModeleNoms::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kColonnes;
}

const LigneNom& ModeleNoms::Ligne(int ligne) const {
    auto it = lues_.find(ligne);
    if (it != lues_.end()) return it->second;
    if (lues_.size() >= kLignesLues) lues_.clear();
    return lues_.emplace(ligne, liste_.Ligne(static_cast<std::size_t>(ligne))).first->second;
}

QVariant ModeleNoms::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::AlignVCenter |
                                   (index.column() == 0 ? Qt::AlignRight : Qt::AlignLeft));
    if (role != Qt::DisplayRole && role != kRolePersonne && role != Qt::ToolTipRole) return {};
    const LigneNom& l = Ligne(index.row());
    if (role == kRolePersonne) return QVariant::fromValue(l.numero);
    if (role == Qt::ToolTipRole) return Q(l.Texte());
    switch (index.column()) {
    case 0: return QString::number(l.numero);
    case 1: return Q(l.nom);
    case 2: return Q(l.famille);
    case 3: return Q(l.dates);
    case 4: return Q(l.sexe);
    default: return Q(l.marque);
    }
}

QVariant ModeleNoms::headerData(int section, Qt::Orientation o, int role) const {
    if (o != Qt::Horizontal || section < 0 || section >= kColonnes) return {};
    if (role == Qt::DisplayRole) return M(kMsgColonnes + section);
    if (role == Qt::ToolTipRole && section == 2) return MT(kMsgAideFamille);
    if (role == Qt::ToolTipRole && section == 5) return MT(kMsgAideMarque);
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(Qt::AlignVCenter | (section == 0 ? Qt::AlignRight : Qt::AlignLeft));
    return {};
}

// --- Form ---------------------------------------------------------------------------------------

FrmNomQt::FrmNomQt(Base* base, std::uint32_t depart, int titre, QWidget* parent)
    : FormulaireQt(parent), liste_(std::make_unique<ListeNoms>(base)),
      modele_(std::make_unique<ModeleNoms>(*liste_)), titre_(titre ? titre : kTitreDefaut) {
    etiquette_ = new QLabel(this);
    position_ = new QLineEdit(this);
    position_->setObjectName(QStringLiteral("TxPosition"));
    position_->setClearButtonEnabled(true);
    etiquette_->setBuddy(position_);
    precedent_ = new QPushButton(this);
    precedent_->setObjectName(QStringLiteral("C_Prec"));
    suivant_ = new QPushButton(this);
    for (QPushButton* b : {precedent_, suivant_}) b->setAutoDefault(false);

    vue_ = new QTableView(this);
    vue_->setObjectName(QStringLiteral("DefilementV1"));
    vue_->setAlternatingRowColors(true);
    vue_->setShowGrid(false);
    vue_->setWordWrap(false);
    vue_->setSelectionMode(QAbstractItemView::SingleSelection);
    vue_->setSelectionBehavior(QAbstractItemView::SelectRows);
    vue_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    vue_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Rows of one fixed height: the grid finds a row by arithmetic and
    // never measures the others.
    vue_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    vue_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kMarge);
    vue_->verticalHeader()->hide();
    vue_->horizontalHeader()->setHighlightSections(false);
    vue_->horizontalHeader()->setSectionsClickable(false);
    vue_->setModel(modele_.get());
    poursuite_ = new QTimer(this);
    poursuite_->setInterval(0);

    nombre_ = new QLabel(this);
    ok_ = new QPushButton(this);
    ok_->setDefault(true);
    annuler_ = new QPushButton(this);
    annuler_->setAutoDefault(false);

    auto* haut = new QHBoxLayout;
    haut->addWidget(etiquette_);
    haut->addWidget(position_, 1);
    haut->addWidget(precedent_);
    haut->addWidget(suivant_);
    auto* bas = new QHBoxLayout;
    bas->addWidget(nombre_, 1);
    bas->addWidget(ok_);
    bas->addWidget(annuler_);
    auto* l = new QVBoxLayout(this);
    l->addLayout(haut);
    l->addWidget(vue_, 1);
    l->addSpacing(4);
    l->addLayout(bas);

    setTabOrder(position_, vue_);
    setTabOrder(vue_, ok_);
    setTabOrder(ok_, annuler_);
    setTabOrder(annuler_, precedent_);
    setTabOrder(precedent_, suivant_);
    position_->installEventFilter(this);
    vue_->installEventFilter(this);

    auto lance = [this](ListeNoms::Sens sens) {
        Suite(liste_->Lance(sens, A(position_->text()), kTranche));
    };
    connect(position_, &QLineEdit::textEdited, this, [lance] { lance(ListeNoms::Sens::Premiere); });
    connect(precedent_, &QPushButton::clicked, this, [lance] { lance(ListeNoms::Sens::Precedente); });
    connect(suivant_, &QPushButton::clicked, this, [lance] { lance(ListeNoms::Sens::Suivante); });
    connect(poursuite_, &QTimer::timeout, this, [this] { Suite(liste_->Poursuit(kTranche)); });
    connect(vue_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& i) {
                if (i.isValid()) liste_->Place(static_cast<std::size_t>(i.row()));
            });
    connect(vue_, &QTableView::doubleClicked, this, [this](const QModelIndex&) { Accepte(); });
    connect(ok_, &QPushButton::clicked, this, &FrmNomQt::Accepte);
    connect(annuler_, &QPushButton::clicked, this, &FrmNomQt::Annule);

    Retraduit();
    const QFontMetrics fm = fontMetrics();
    resize(fm.averageCharWidth() * 100, (fm.height() + kMarge) * 24 + 6 * fm.height());
    liste_->Depart(depart);
    Montre(liste_->Courante());
    position_->setFocus();
}

FrmNomQt::~FrmNomQt() {
    // The view goes before the model it shows.
    delete vue_;
}

void FrmNomQt::Retraduit() {
    setWindowTitle(M(titre_));
    etiquette_->setText(M(kMsgChercher));
    position_->setToolTip(MT(kMsgAideChercher));
    precedent_->setText(M(kMsgPrecedent));
    suivant_->setText(M(kMsgSuivant));
    ok_->setText(M(kMsgOk));
    annuler_->setText(M(kMsgAnnuler));
    nombre_->setText(MT(kMsgNombre, QLocale().toString(static_cast<qulonglong>(liste_->Nombre()))));
    modele_->Retraduit();
    Largeurs();
}

void FrmNomQt::Largeurs() {
    // Each column but the name is as wide as its widest text or its
    // caption, measured on samples: measuring the rows would read them all.
    QHeaderView* h = vue_->horizontalHeader();
    const QFontMetrics fm = fontMetrics();
    // Numbers as long as the highest one in the list (at least three digits).
    const int chiffres = std::max<int>(3, QString::number(liste_->PlusGrandNumero()).size() + 1);
    const QString exemples[] = {QString(chiffres, QLatin1Char('0')), {}, QStringLiteral("xx"),
                                QStringLiteral("(~1850-~1910)"), QStringLiteral("H"),
                                QStringLiteral("*")};
    for (int c = 0; c < ModeleNoms::kColonnes; ++c) {
        if (c == 1) {
            h->setSectionResizeMode(c, QHeaderView::Stretch);
            continue;
        }
        h->setSectionResizeMode(c, QHeaderView::Fixed);
        h->resizeSection(c, std::max(fm.horizontalAdvance(exemples[c]),
                                     fm.horizontalAdvance(M(kMsgColonnes + c))) +
                                4 * kMarge);
    }
}

void FrmNomQt::Suite(ListeNoms::Resultat r) {
    if (r == ListeNoms::Resultat::EnCours) {
        poursuite_->start();
        return;
    }
    poursuite_->stop();
    Montre(liste_->Courante());
}

void FrmNomQt::Montre(std::size_t ligne) {
    if (liste_->Nombre() == 0) return;
    const QModelIndex i = modele_->index(static_cast<int>(ligne), 0);
    vue_->selectionModel()->setCurrentIndex(
        i, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    vue_->scrollTo(i, QAbstractItemView::PositionAtCenter);
}

void FrmNomQt::Accepte() {
    poursuite_->stop();
    choix_ = liste_->Choix();
    Q_EMIT Termine(true);
    if (auto* d = qobject_cast<QDialog*>(window())) d->accept();
}

void FrmNomQt::Annule() {
    choix_ = 0;
    Q_EMIT Termine(false);
    if (auto* d = qobject_cast<QDialog*>(window())) d->reject();
}

bool FrmNomQt::eventFilter(QObject* o, QEvent* e) {
    if (e->type() != QEvent::KeyPress) return FormulaireQt::eventFilter(o, e);
    auto* k = static_cast<QKeyEvent*>(e);
    switch (k->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Accepte();
        return true;
    case Qt::Key_Escape:
        Annule();
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        // From the search line, the arrows move in the list.
        if (o == position_) {
            QCoreApplication::sendEvent(vue_, e);
            return true;
        }
        break;
    default:
        break;
    }
    if (k->key() == Qt::Key_F3) {
        (k->modifiers() & Qt::ShiftModifier ? precedent_ : suivant_)->click();
        return true;
    }
    return FormulaireQt::eventFilter(o, e);
}

std::uint32_t ChoisitPersonneQt(Base* base, std::uint32_t depart, int titre, QWidget* parent) {
    QDialog d(parent);
    auto* form = new FrmNomQt(base, depart, titre, &d);
    d.setWindowTitle(form->windowTitle());
    auto* l = new QVBoxLayout(&d);
    l->setContentsMargins(0, 0, 0, 0);
    l->addWidget(form);
    d.resize(form->size());
    if (d.exec() != QDialog::Accepted) return 0;
    return form->Choix();
}

namespace {

// The list of names is the picker of the whole program.
const bool selecteurInstalle = [] {
    SelecteurPersonne() = [](ContexteQt& c, std::uint32_t depart, int titre) {
        return ChoisitPersonneQt(c.logique.base(), depart, titre, &c.fenetre);
    };
    return true;
}();

EnregistrementFormulaire enr("FrmNom", [](ContexteQt& c) {
    return new FrmNomQt(c.logique.base(), c.logique.PersonneEnCours());
});

} // namespace

} // namespace sylvane
