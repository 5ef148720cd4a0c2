#include "app/frm_nom.h"

#include "app/fenetre_principale.h"
#include "app/texte_qt.h"
#include "ui/mdiform1.h"

#include <QApplication>
#include <QDialog>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
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

// The captions above the columns, on the same edges as the rows.
class EnteteNoms : public QWidget {
  public:
    EnteteNoms(QListView* vue, QWidget* parent) : QWidget(parent), vue_(vue) {
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }
    QSize sizeHint() const override { return {100, fontMetrics().height() + 2 * kMarge}; }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        QFont gras = font();
        gras.setBold(true);
        p.setFont(gras);
        const int x0 = vue_->viewport()->mapTo(this, QPoint(0, 0)).x();
        const auto bords = DelegueNoms::Bords(fontMetrics(), vue_->viewport()->width());
        p.setPen(palette().color(QPalette::WindowText));
        for (int c = 0; c < ModeleNoms::kColonnes; ++c) {
            const QRect r(x0 + bords[c] + kMarge, 0, bords[c + 1] - bords[c] - 2 * kMarge, height());
            const int align = c == 0 ? Qt::AlignRight : Qt::AlignLeft;
            p.drawText(r, align | Qt::AlignVCenter,
                       QFontMetrics(gras).elidedText(M(kMsgColonnes + c), Qt::ElideRight, r.width()));
        }
    }

  private:
    QListView* vue_;
};

} // namespace

// --- Model --------------------------------------------------------------------------------------

ModeleNoms::ModeleNoms(ListeNoms& liste, QObject* parent)
    : QAbstractListModel(parent), liste_(liste) {}

int ModeleNoms::rowCount(const QModelIndex& parent) const {
    if (parent.isValid()) return 0;
    return static_cast<int>(std::min<std::size_t>(liste_.Nombre(), INT32_MAX));
}

const LigneNom& ModeleNoms::Ligne(int ligne) const {
    auto it = lues_.find(ligne);
    if (it != lues_.end()) return it->second;
    if (lues_.size() >= kLignesLues) lues_.clear();
    return lues_.emplace(ligne, liste_.Ligne(static_cast<std::size_t>(ligne))).first->second;
}

QVariant ModeleNoms::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    const int colonne = role - kRoleColonne;
    if (role != Qt::DisplayRole && role != kRolePersonne && role != Qt::ToolTipRole &&
        (colonne < 0 || colonne >= kColonnes))
        return {};
    const LigneNom& l = Ligne(index.row());
    if (role == kRolePersonne) return QVariant::fromValue(l.numero);
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return Q(l.Texte());
    switch (colonne) {
    case 0: return QString::number(l.numero);
    case 1: return Q(l.nom);
    case 2: return Q(l.famille);
    case 3: return Q(l.dates);
    case 4: return Q(l.sexe);
    default: return Q(l.marque);
    }
}

// --- Rows ---------------------------------------------------------------------------------------

std::array<int, ModeleNoms::kColonnes + 1> DelegueNoms::Bords(const QFontMetrics& fm, int largeur) {
    // Each column but the name is as wide as its widest text or its caption.
    auto large = [&](int c, const QString& exemple) {
        return std::max(fm.horizontalAdvance(exemple), fm.horizontalAdvance(M(kMsgColonnes + c))) +
               2 * kMarge + fm.horizontalAdvance(QLatin1Char(' '));
    };
    const int numero = large(0, QStringLiteral("0000000"));
    const int famille = large(2, QStringLiteral("xx"));
    const int dates = large(3, QStringLiteral("(~1850-~1910)"));
    const int sexe = large(4, QStringLiteral("H"));
    const int marque = large(5, QStringLiteral("*"));
    const int nom = std::max(largeur - numero - famille - dates - sexe - marque, 8 * fm.averageCharWidth());
    std::array<int, ModeleNoms::kColonnes + 1> b{};
    const int largeurs[] = {numero, nom, famille, dates, sexe, marque};
    for (int c = 0; c < ModeleNoms::kColonnes; ++c) b[c + 1] = b[c] + largeurs[c];
    return b;
}

void DelegueNoms::paint(QPainter* p, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    opt.text.clear();
    const QWidget* w = option.widget;
    QStyle* style = w ? w->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &opt, p, w);

    const bool choisie = option.state & QStyle::State_Selected;
    p->save();
    p->setPen(option.palette.color(choisie ? QPalette::HighlightedText : QPalette::Text));
    const auto bords = Bords(option.fontMetrics, option.rect.width());
    for (int c = 0; c < ModeleNoms::kColonnes; ++c) {
        const QRect r(option.rect.left() + bords[c] + kMarge, option.rect.top(),
                      bords[c + 1] - bords[c] - 2 * kMarge, option.rect.height());
        const QString t = index.data(ModeleNoms::kRoleColonne + c).toString();
        const int align = c == 0 ? Qt::AlignRight : Qt::AlignLeft;
        p->drawText(r, align | Qt::AlignVCenter,
                    option.fontMetrics.elidedText(t, Qt::ElideRight, r.width()));
    }
    p->restore();
}

QSize DelegueNoms::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {option.rect.width(), option.fontMetrics.height() + kMarge};
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

    vue_ = new QListView(this);
    vue_->setObjectName(QStringLiteral("DefilementV1"));
    vue_->setUniformItemSizes(true);
    vue_->setAlternatingRowColors(true);
    vue_->setSelectionMode(QAbstractItemView::SingleSelection);
    vue_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    vue_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    vue_->setItemDelegate(new DelegueNoms(vue_));
    vue_->setModel(modele_.get());
    entete_ = new EnteteNoms(vue_, this);

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
    l->addSpacing(4);
    l->addWidget(entete_);
    l->setSpacing(2);
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

    connect(position_, &QLineEdit::textEdited, this, [this](const QString& t) {
        liste_->Cherche(A(t));
        Montre(liste_->Courante());
    });
    connect(precedent_, &QPushButton::clicked, this, [this] {
        if (liste_->Precedente(A(position_->text()))) Montre(liste_->Courante());
    });
    connect(suivant_, &QPushButton::clicked, this, [this] {
        if (liste_->Suivante(A(position_->text()))) Montre(liste_->Courante());
    });
    connect(vue_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& i) {
                if (i.isValid()) liste_->Place(static_cast<std::size_t>(i.row()));
            });
    connect(vue_, &QListView::doubleClicked, this, [this](const QModelIndex&) { Accepte(); });
    connect(ok_, &QPushButton::clicked, this, &FrmNomQt::Accepte);
    connect(annuler_, &QPushButton::clicked, this, &FrmNomQt::Annule);

    Retraduit();
    const QFontMetrics fm = fontMetrics();
    resize(fm.averageCharWidth() * 90, (fm.height() + kMarge) * 24 + 6 * fm.height());
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
    entete_->setToolTip(MT(kMsgAideFamille) + QLatin1Char('\n') + MT(kMsgAideMarque));
    nombre_->setText(MT(kMsgNombre, QLocale().toString(static_cast<qulonglong>(liste_->Nombre()))));
    entete_->update();
}

void FrmNomQt::Montre(std::size_t ligne) {
    if (liste_->Nombre() == 0) return;
    const QModelIndex i = modele_->index(static_cast<int>(ligne));
    vue_->selectionModel()->setCurrentIndex(i, QItemSelectionModel::ClearAndSelect);
    vue_->scrollTo(i, QAbstractItemView::PositionAtCenter);
}

void FrmNomQt::Accepte() {
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
