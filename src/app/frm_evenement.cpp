#include "app/frm_evenement.h"

#include "app/choix_fiche_qt.h"
#include "app/fenetre_principale.h"
#include "app/frm_commune.h"
#include "app/frm_texte.h"
#include "app/modele_glisser.h"
#include "app/texte_qt.h"
#include "text/messages.h"
#include "text/rtf.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTextEdit>
#include <QVBoxLayout>

namespace sylvane {

namespace {

bool LitEtiquette(const QMimeData* m, char& genre, std::uint32_t& numero) {
    return m && m->hasText() && EtiquetteGlisser(m->text(), genre, numero);
}

QPushButton* Bouton(QWidget* parent, std::vector<std::pair<QWidget*, int>>& textes, int n) {
    auto* b = new QPushButton(parent);
    textes.emplace_back(b, n);
    return b;
}

void Traduit(const std::vector<std::pair<QWidget*, int>>& textes) {
    for (const auto& [w, n] : textes) {
        if (auto* b = qobject_cast<QPushButton*>(w)) b->setText(M(n));
        else if (auto* l = qobject_cast<QLabel*>(w)) l->setText(M(n));
    }
}

} // namespace

// --- The list ------------------------------------------------------------------------------------

// The rows of the list, read from the store only when shown; the last row
// read is kept, since the view asks for it cell by cell.
class ModeleEvenements : public ModeleGlisser {
  public:
    ModeleEvenements(FrmLstEvt& l, QObject* parent) : ModeleGlisser(parent), l_(l) {}
    int rowCount(const QModelIndex& p = {}) const override {
        return p.isValid() ? 0 : static_cast<int>(l_.Nombre());
    }
    int columnCount(const QModelIndex& p = {}) const override { return p.isValid() ? 0 : 5; }
    QVariant data(const QModelIndex& i, int role) const override {
        if (!i.isValid()) return {};
        if (role == Qt::TextAlignmentRole && (i.column() == 1 || i.column() == 4))
            return QVariant::fromValue(Qt::AlignRight | Qt::AlignVCenter);
        if (role != Qt::DisplayRole) return {};
        if (i.row() != ligne_) {
            cellules_ = l_.Ligne(static_cast<std::size_t>(i.row()));
            ligne_ = i.row();
        }
        return Q(cellules_[static_cast<std::size_t>(i.column())]);
    }
    QVariant headerData(int section, Qt::Orientation o, int role) const override {
        if (o != Qt::Horizontal || role != Qt::DisplayRole) return {};
        return MT(msg_evt::ColDate + section);
    }
    void sort(int colonne, Qt::SortOrder ordre) override {
        static const OrdreEvt ordres[5] = {OrdreEvt::Date, OrdreEvt::Date, OrdreEvt::Lieu,
                                           OrdreEvt::Type, OrdreEvt::Numero};
        if (colonne < 0 || colonne > 4) return;
        l_.Trie(ordres[colonne], ordre == Qt::DescendingOrder);
    }
    void Recharge() {
        ligne_ = -1;
        ModeleGlisser::Recharge();
    }

  protected:
    std::string TagLigne(int ligne) const override {
        const std::uint32_t e = l_.Numero(static_cast<std::size_t>(ligne));
        return e ? "E" + std::to_string(e) : "";
    }

  private:
    FrmLstEvt& l_;
    mutable int ligne_ = -1;
    mutable std::array<std::string, 5> cellules_;
};

FrmLstEvtQt::FrmLstEvtQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(std::make_unique<FrmLstEvt>(c.logique)) {
    auto* racine = new QVBoxLayout(this);
    auto* haut = new QHBoxLayout;
    lblPosition_ = new QLabel(this);
    position_ = new QLineEdit(this);
    position_->setObjectName(QStringLiteral("TxPosition"));
    position_->setMaximumWidth(position_->fontMetrics().horizontalAdvance(QStringLiteral("0000000000")));
    lblPosition_->setBuddy(position_);
    nombre_ = new QLabel(this);
    haut->addWidget(lblPosition_);
    haut->addWidget(position_);
    haut->addStretch();
    haut->addWidget(nombre_);
    racine->addLayout(haut);

    grille_ = GrilleGlisser(this);
    grille_->setObjectName(QStringLiteral("LstEvt"));
    modele_ = new ModeleEvenements(*logique_, this);
    grille_->setModel(modele_);
    grille_->setSortingEnabled(true);
    grille_->horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
    grille_->horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    const QFontMetrics fm = grille_->fontMetrics();
    grille_->setColumnWidth(0, fm.horizontalAdvance(QStringLiteral("00/00/00000")) + 24);
    grille_->setColumnWidth(1, fm.horizontalAdvance(QStringLiteral("000000")) + 24);
    grille_->setColumnWidth(2, fm.horizontalAdvance(QLatin1Char('x')) * 30);
    grille_->setColumnWidth(3, fm.horizontalAdvance(QLatin1Char('x')) * 20);
    racine->addWidget(grille_, 1);

    auto* bas = new QHBoxLayout;
    std::vector<std::pair<QWidget*, int>> textes;
    ajout_ = new QPushButton(this);
    maj_ = new QPushButton(this);
    supp_ = new QPushButton(this);
    imprimer_ = new QPushButton(this);
    imprimer_->setObjectName(QStringLiteral("CmdImprimer"));
    auto* fermer = new QPushButton(this);
    fermer->setObjectName(QStringLiteral("Fermer"));
    for (QPushButton* b : {ajout_, maj_, supp_, imprimer_}) bas->addWidget(b);
    bas->addStretch();
    bas->addWidget(fermer);
    racine->addLayout(bas);
    connect(ajout_, &QPushButton::clicked, this, [this] { logique_->CmdAjout(); });
    connect(maj_, &QPushButton::clicked, this, [this] {
        if (Rang() >= 0) logique_->CmdMaj(static_cast<std::size_t>(Rang()));
    });
    connect(supp_, &QPushButton::clicked, this, [this] {
        const int r = Rang();
        if (r >= 0 && logique_->CmdSupp(static_cast<std::size_t>(r)) && logique_->Nombre())
            Selectionne(std::min<std::size_t>(static_cast<std::size_t>(r), logique_->Nombre() - 1));
    });
    connect(imprimer_, &QPushButton::clicked, this, [this] { logique_->CmdImprimer(); });
    connect(fermer, &QPushButton::clicked, this, [this] {
        if (parentWidget()) parentWidget()->close();
        else close();
    });
    connect(grille_, &QTableView::activated, this,
            [this](const QModelIndex& i) { logique_->CmdMaj(static_cast<std::size_t>(i.row())); });
    connect(position_, &QLineEdit::returnPressed, this, [this] {
        if (auto r = logique_->Position(A(position_->text()))) {
            grille_->horizontalHeader()->setSortIndicator(0, Qt::AscendingOrder);
            Selectionne(*r);
            grille_->setFocus();
        }
    });
    auto* echap = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    echap->setContext(Qt::WidgetWithChildrenShortcut);
    connect(echap, &QShortcut::activated, fermer, &QPushButton::click);

    logique_->DefinitVue(this);
    resize(760, 520);
    Retraduit();
}

FrmLstEvtQt::~FrmLstEvtQt() { logique_->DefinitVue(nullptr); }

void FrmLstEvtQt::Retraduit() {
    setWindowTitle(M(msg_evt::TitreListe));
    lblPosition_->setText(M(msg_evt::Position));
    ajout_->setText(M(msg_evt::Ajout));
    maj_->setText(M(msg_evt::Maj));
    supp_->setText(M(msg_evt::Supp));
    imprimer_->setText(M(msg_evt::Imprimer));
    if (auto* f = findChild<QPushButton*>(QStringLiteral("Fermer"))) f->setText(M(msg_evt::Quitter));
    ListeChangee();
}

void FrmLstEvtQt::ListeChangee() {
    modele_->Recharge();
    nombre_->setText(MT(msg_evt::Nombre, QString::number(logique_->Nombre())));
    // An empty list has nothing to print.
    imprimer_->setEnabled(logique_->Nombre() > 0);
}

void FrmLstEvtQt::PersonneChangee() { logique_->Actualise(); }

int FrmLstEvtQt::Rang() const {
    const auto l = grille_->selectionModel()->selectedRows();
    return l.isEmpty() ? -1 : l.front().row();
}

void FrmLstEvtQt::Selectionne(std::size_t rang) {
    const QModelIndex i = modele_->index(static_cast<int>(rang), 0);
    grille_->setCurrentIndex(i);
    grille_->selectRow(i.row());
    grille_->scrollTo(i, QAbstractItemView::PositionAtTop);
}

void FrmLstEvtQt::RecoitGlisser(char genre, std::uint32_t numero) {
    if (genre != 'E') return;
    if (auto r = logique_->RangDe(numero)) Selectionne(*r);
}

void FrmLstEvtQt::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_F12) {
        logique_->Rectification();
        return;
    }
    FormulaireQt::keyPressEvent(e);
}

// --- The form of one event --------------------------------------------------------------------------

class ModelePersonnesEvt : public ModeleGlisser {
  public:
    ModelePersonnesEvt(FrmDesEvt& l, QObject* parent) : ModeleGlisser(parent), l_(l) {}
    int rowCount(const QModelIndex& p = {}) const override {
        return p.isValid() ? 0 : static_cast<int>(l_.Personnes().size());
    }
    int columnCount(const QModelIndex& p = {}) const override { return p.isValid() ? 0 : 3; }
    QVariant data(const QModelIndex& i, int role) const override {
        if (!i.isValid() || role != Qt::DisplayRole) return {};
        const LignePersonneEvt& l = l_.Personnes()[static_cast<std::size_t>(i.row())];
        if (i.column() == 0) return Q(l.nom);
        if (i.column() == 1) return Q(l.role);
        return QString::number(l.numero);
    }
    QVariant headerData(int section, Qt::Orientation o, int role) const override {
        if (o != Qt::Horizontal || role != Qt::DisplayRole) return {};
        static const int m[3] = {msg_evt::ColNom, msg_evt::ColRole, msg_evt::ColNumero};
        return MT(m[section]);
    }
    // A person dropped on the grid comes as its tag; the grid takes it.
    Qt::DropActions supportedDropActions() const override { return Qt::CopyAction; }

  protected:
    std::string TagLigne(int ligne) const override {
        if (ligne < 0 || ligne >= rowCount()) return "";
        return "I" + std::to_string(l_.Personnes()[static_cast<std::size_t>(ligne)].numero);
    }

  private:
    FrmDesEvt& l_;
};

// The grid of the persons and their roles: dragged out as persons, and
// taking persons dropped from the lists.
class GrilleRoles : public QTableView {
  public:
    std::function<void(std::uint32_t)> depose;
    explicit GrilleRoles(QWidget* parent) : QTableView(parent) {
        setSelectionBehavior(QAbstractItemView::SelectRows);
        setSelectionMode(QAbstractItemView::SingleSelection);
        setEditTriggers(QAbstractItemView::NoEditTriggers);
        setDragEnabled(true);
        setAcceptDrops(true);
        setDragDropMode(QAbstractItemView::DragDrop);
        setDropIndicatorShown(false);
        setWordWrap(false);
        verticalHeader()->hide();
        verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
        horizontalHeader()->setStretchLastSection(true);
        horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        setTabKeyNavigation(false);
    }

  protected:
    void dragEnterEvent(QDragEnterEvent* e) override {
        char g;
        std::uint32_t n;
        if (e->source() != this && LitEtiquette(e->mimeData(), g, n) && g == 'I')
            e->acceptProposedAction();
        else
            e->ignore();
    }
    void dragMoveEvent(QDragMoveEvent* e) override {
        if (e->source() != this) e->acceptProposedAction();
        else e->ignore();
    }
    void dropEvent(QDropEvent* e) override {
        char g;
        std::uint32_t n;
        if (LitEtiquette(e->mimeData(), g, n) && g == 'I' && depose) {
            e->acceptProposedAction();
            depose(n);
        }
    }
};

QTableView* FrmDesEvtQt::personnes() const { return grille_; }

FrmDesEvtQt::FrmDesEvtQt(ContexteQt& c, QWidget* parent) : FormulaireQt(parent), c_(c) {
    const DemandeEvt demande = DemandeEvenement();
    DemandeEvenement() = {};
    logique_ = std::make_unique<FrmDesEvt>(c.logique, ChoixFicheQt(c), demande.evenement,
                                           demande.proprietaire);
    FrmDesEvt& L = *logique_;
    auto label = [this](int n, QWidget* p) {
        auto* l = new QLabel(p);
        textes_.emplace_back(l, n);
        return l;
    };

    auto* racine = new QVBoxLayout(this);
    auto* g = new QGridLayout;
    type_ = new QComboBox(this);
    type_->setObjectName(QStringLiteral("CboTypeEvt"));
    type_->setEditable(true);
    type_->setInsertPolicy(QComboBox::NoInsert);
    type_->setMinimumContentsLength(24);
    date_ = new QLineEdit(this);
    date_->setObjectName(QStringLiteral("TxtDate"));
    jour_ = new QLabel(this);
    jour_->setObjectName(QStringLiteral("LblJourEvt"));
    jour_->setMinimumWidth(jour_->fontMetrics().horizontalAdvance(QStringLiteral("mercredi 30 septembre 00000")));
    lieu_ = new QLineEdit(this);
    AideLieu(c_, lieu_);
    lieu_->setObjectName(QStringLiteral("TxtLieu"));
    titre_ = new QLineEdit(this);
    titre_->setObjectName(QStringLiteral("TxtLib"));
    const std::pair<int, QWidget*> lignes[4] = {
        {msg_evt::Type, type_}, {msg_evt::Date, date_}, {msg_evt::Lieu, lieu_}, {msg_evt::Intitule, titre_}};
    for (int i = 0; i < 4; ++i) {
        QLabel* l = label(lignes[i].first, this);
        l->setBuddy(lignes[i].second);
        g->addWidget(l, i, 0);
        g->addWidget(lignes[i].second, i, 1, 1, i == 1 ? 1 : 2);
    }
    g->addWidget(jour_, 1, 2);
    g->setColumnStretch(1, 1);
    g->setColumnStretch(2, 1);
    racine->addLayout(g);

    // --- Persons and roles, documents, comment.
    onglets_ = new QTabWidget(this);
    onglets_->setObjectName(QStringLiteral("SSTab1"));
    auto* roles = new QWidget;
    auto* gr = new QVBoxLayout(roles);
    grille_ = new GrilleRoles(roles);
    grille_->setObjectName(QStringLiteral("GrdLien"));
    modele_ = new ModelePersonnesEvt(L, this);
    grille_->setModel(modele_);
    grille_->setColumnWidth(0, grille_->fontMetrics().horizontalAdvance(QLatin1Char('x')) * 40);
    grille_->setColumnWidth(1, grille_->fontMetrics().horizontalAdvance(QLatin1Char('x')) * 16);
    grille_->depose = [this](std::uint32_t p) { logique_->RecoitPersonne(p); };
    gr->addWidget(grille_, 1);
    auto* ligneRole = new QHBoxLayout;
    QLabel* lblRole = label(msg_evt::Role, roles);
    role_ = new QComboBox(roles);
    role_->setObjectName(QStringLiteral("CboRole"));
    role_->setEditable(true);
    role_->setInsertPolicy(QComboBox::NoInsert);
    role_->setMinimumContentsLength(18);
    lblRole->setBuddy(role_);
    ligneRole->addWidget(lblRole);
    ligneRole->addWidget(role_);
    ligneRole->addStretch();
    gr->addLayout(ligneRole);
    auto* boutons = new QHBoxLayout;
    const std::pair<int, std::function<void()>> commandes[6] = {
        {msg_evt::RechLien, [this] { logique_->CmdRechLien(); }},
        {msg_evt::CreLien, [this] { logique_->CmdCreLien(); }},
        {msg_evt::SupLien, [this] { logique_->CmdSupLien(); }},
        {msg_evt::MajInd, [this] { logique_->CmdMajInd(); }},
        {msg_evt::Monter, [this] { logique_->CmdLienUp(); }},
        {msg_evt::Descendre, [this] { logique_->CmdLienDown(); }}};
    for (const auto& [n, action] : commandes) {
        QPushButton* b = Bouton(roles, textes_, n);
        connect(b, &QPushButton::clicked, this, action);
        boutons->addWidget(b);
    }
    boutons->addStretch();
    gr->addLayout(boutons);
    onglets_->addTab(roles, QString());

    auto* documents = new QWidget;
    auto* gd = new QVBoxLayout(documents);
    docs_ = new QTableWidget(0, 3, documents);
    docs_->setObjectName(QStringLiteral("GrdDocument"));
    docs_->setSelectionBehavior(QAbstractItemView::SelectRows);
    docs_->setSelectionMode(QAbstractItemView::SingleSelection);
    docs_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    docs_->verticalHeader()->hide();
    docs_->setWordWrap(false);
    // The title and the file take the room; the number its own.
    docs_->setColumnWidth(0, docs_->fontMetrics().horizontalAdvance(QLatin1Char('x')) * 32);
    docs_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    docs_->horizontalHeader()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    gd->addWidget(docs_, 1);
    auto ligneDoc = [this] {
        const auto l = docs_->selectionModel()->selectedRows();
        return l.isEmpty() ? -1 : l.front().row();
    };
    auto* boutonsDoc = new QHBoxLayout;
    const std::pair<int, std::function<void()>> commandesDoc[7] = {
        {msg_evt::CreationDoc, [this] { logique_->CmdCreationDoc(); }},
        {msg_evt::NouveauDoc, [this] { logique_->CmdNouveauDoc(); }},
        {msg_evt::DesImage, [this, ligneDoc] { logique_->CmdDesImage(ligneDoc()); }},
        {msg_evt::VoirDoc, [this, ligneDoc] { logique_->CmdVisuImage(ligneDoc()); }},
        {msg_evt::SupLien, [this, ligneDoc] { logique_->CmdSuppDoc(ligneDoc()); }},
        {msg_evt::Monter, [this, ligneDoc] {
             const int r = ligneDoc();
             if (logique_->CmdDocUp(r)) docs_->selectRow(r - 1);
         }},
        {msg_evt::Descendre, [this, ligneDoc] {
             const int r = ligneDoc();
             if (logique_->CmdDocDown(r)) docs_->selectRow(r + 1);
         }}};
    for (const auto& [n, action] : commandesDoc) {
        QPushButton* b = Bouton(documents, textes_, n);
        connect(b, &QPushButton::clicked, this, action);
        boutonsDoc->addWidget(b);
    }
    boutonsDoc->addStretch();
    connect(docs_, &QTableWidget::cellDoubleClicked, this,
            [this](int r) { logique_->CmdVisuImage(r); });
    gd->addLayout(boutonsDoc);
    onglets_->addTab(documents, QString());

    auto* commentaire = new QWidget;
    auto* gc = new QVBoxLayout(commentaire);
    note_ = new QTextEdit(commentaire);
    note_->setReadOnly(true);
    note_->setObjectName(QStringLiteral("TxtComment"));
    gc->addWidget(note_, 1);
    QPushButton* cmdNote = Bouton(commentaire, textes_, msg_evt::Commentaire);
    connect(cmdNote, &QPushButton::clicked, this, [this] { logique_->CmdTxtComment(); });
    gc->addWidget(cmdNote, 0, Qt::AlignLeft);
    onglets_->addTab(commentaire, QString());
    racine->addWidget(onglets_, 1);

    auto* bas = new QHBoxLayout;
    bas->addStretch();
    cmdMaj_ = Bouton(this, textes_, msg_evt::MiseAJour);
    cmdMaj_->setObjectName(QStringLiteral("CmdMaj"));
    cmdMaj_->setDefault(true);
    QPushButton* quitter = Bouton(this, textes_, msg_evt::Quitter);
    QPushButton* imprimer = Bouton(this, textes_, msg_evt::Imprimer);
    imprimer->setObjectName(QStringLiteral("CmdImprimer"));
    connect(imprimer, &QPushButton::clicked, this, [this] { logique_->CmdImprimer(); });
    bas->addWidget(imprimer);
    bas->addWidget(cmdMaj_);
    bas->addWidget(quitter);
    racine->addLayout(bas);

    // Changes go to the logic; the logic's state comes back in EvenementChange.
    connect(type_, &QComboBox::currentTextChanged, this, [this](const QString& t) {
        if (!remplit_) logique_->ChoisitType(A(t));
    });
    connect(role_, &QComboBox::currentTextChanged, this, [this](const QString& t) {
        if (!remplit_) logique_->ChoisitRole(A(t));
    });
    const std::pair<QLineEdit*, ChampEvt> champs[3] = {
        {date_, ChampEvt::Date}, {lieu_, ChampEvt::Lieu}, {titre_, ChampEvt::Titre}};
    for (const auto& [e, ch] : champs)
        connect(e, &QLineEdit::textEdited, this, [this, ch = ch](const QString& t) {
            logique_->Modifie(ch, A(t));
            if (ch == ChampEvt::Date) jour_->setText(Q(logique_->JourEvt()));
        });
    connect(grille_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (remplit_) return;
        const auto l = grille_->selectionModel()->selectedRows();
        logique_->SelectionnePersonne(l.isEmpty() ? -1 : l.front().row());
    });
    connect(grille_, &QTableView::doubleClicked, this, [this] { logique_->CmdMajInd(); });
    connect(cmdMaj_, &QPushButton::clicked, this, [this] { logique_->CmdMaj(); });
    connect(quitter, &QPushButton::clicked, this, [this] {
        if (parentWidget()) parentWidget()->close();
        else close();
    });
    for (auto touche : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* s = new QShortcut(QKeySequence(touche), this);
        s->setContext(Qt::WidgetWithChildrenShortcut);
        connect(s, &QShortcut::activated, cmdMaj_, &QPushButton::click);
    }
    auto* echap = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    echap->setContext(Qt::WidgetWithChildrenShortcut);
    connect(echap, &QShortcut::activated, quitter, &QPushButton::click);

    setTabOrder(type_, date_);
    setTabOrder(date_, lieu_);
    setTabOrder(lieu_, titre_);
    setTabOrder(titre_, onglets_);
    L.DefinitVue(this);
    resize(780, 540);
    Retraduit();
}

FrmDesEvtQt::~FrmDesEvtQt() { logique_->DefinitVue(nullptr); }

void FrmDesEvtQt::Retraduit() {
    Traduit(textes_);
    EvenementChange();
}

void FrmDesEvtQt::EvenementChange() {
    FrmDesEvt& L = *logique_;
    remplit_ = true;
    // The combo lists follow the table of kinds and the chosen type.
    QStringList types;
    for (const std::string& t : L.Types()) types << Q(t);
    if (type_->count() != types.size() || [&] {
            for (int i = 0; i < types.size(); ++i)
                if (type_->itemText(i) != types[i]) return true;
            return false;
        }()) {
        type_->clear();
        type_->addItems(types);
    }
    type_->setCurrentText(Q(L.Type()));
    role_->clear();
    for (const std::string& r : L.Roles()) role_->addItem(Q(r));
    role_->setCurrentText(Q(L.Role()));
    const std::pair<QLineEdit*, ChampEvt> champs[3] = {
        {date_, ChampEvt::Date}, {lieu_, ChampEvt::Lieu}, {titre_, ChampEvt::Titre}};
    for (const auto& [e, ch] : champs)
        if (A(e->text()) != L.Valeur(ch)) e->setText(Q(L.Valeur(ch)));
    jour_->setText(Q(L.JourEvt()));

    const int selection = L.PersonneSelectionnee();
    modele_->Recharge();
    if (selection >= 0) grille_->selectRow(selection);
    docs_->setHorizontalHeaderLabels({MT(msg_evt::ColTitre), MT(msg_evt::ColFichier), MT(msg_evt::ColNumero)});
    docs_->setRowCount(static_cast<int>(L.Documents().size()));
    for (int i = 0; i < docs_->rowCount(); ++i) {
        const LigneDocEvt& d = L.Documents()[static_cast<std::size_t>(i)];
        docs_->setItem(i, 0, new QTableWidgetItem(Q(d.titre)));
        docs_->setItem(i, 1, new QTableWidgetItem(Q(d.fichier)));
        docs_->setItem(i, 2, new QTableWidgetItem(QString::number(d.numero)));
    }
    if (L.Note().rfind("{\\rtf", 0) == 0) DocumentDepuisSegments(*note_->document(), LitRtf(L.Note()));
    else note_->setPlainText(Q(L.Note()));
    for (int i = 0; i < 3; ++i) onglets_->setTabText(i, Q(L.LibelleOnglet(i)));
    setWindowTitle(Q(L.Titre()));
    // The main window finds the form of an event by this number.
    setProperty("numero", static_cast<uint>(L.Numero()));
    remplit_ = false;
}

void FrmDesEvtQt::PersonneChangee() { logique_->Actualise(); }

void FrmDesEvtQt::RecoitGlisser(char genre, std::uint32_t numero) {
    if (genre == 'I') logique_->RecoitPersonne(numero);
    else if (genre == 'E') OuvreEvenement(c_.logique, numero);
}

void FrmDesEvtQt::closeEvent(QCloseEvent* e) {
    if (!logique_->CmdQuitter()) {
        e->ignore();
        return;
    }
    e->accept();
}

static EnregistrementFormulaire enrListe("FrmLstEvt", [](ContexteQt& c) { return new FrmLstEvtQt(c); });
static EnregistrementFormulaire enrForme("FrmDesEvt", [](ContexteQt& c) { return new FrmDesEvtQt(c); });

} // namespace sylvane
