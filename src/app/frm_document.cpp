#include "app/frm_document.h"

#include "app/fenetre_principale.h"
#include "app/frm_texte.h"
#include "app/texte_qt.h"
#include "store/base.h"
#include "text/messages.h"
#include "text/rtf.h"
#include "text/rtf_ecriture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDesktopServices>
#include <QDragEnterEvent>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTableWidget>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

namespace sylvane {
namespace {

// The desktop: addresses in the user's browser, files in their program.
struct BureauQt : Bureau {
    bool OuvreAdresse(const std::string& adresse) override {
        const QString a = Q(adresse);
        if (a.startsWith(QStringLiteral("file://")))
            return QDesktopServices::openUrl(QUrl::fromLocalFile(a.mid(7)));
        return QDesktopServices::openUrl(QUrl::fromUserInput(a));
    }
    bool OuvreFichier(const std::string& chemin) override {
        return QDesktopServices::openUrl(QUrl::fromLocalFile(CheminQt(chemin)));
    }
};
BureauQt bureauQt;
const bool bureauPose = (DefinitBureau(&bureauQt), true);

// `CmdLstImage`: the base's documents by title in a modal list; Enter or a
// double click takes the row.
std::uint32_t ChoisitDocumentQt(MDIForm1& f) {
    if (f.base() == nullptr) return 0;
    FrmLstImage liste(f);
    QDialog d(QApplication::activeWindow());
    d.setWindowTitle(M(msg_documents::CmdAjout).remove(QLatin1Char('&')));
    auto* l = new QVBoxLayout(&d);
    auto* modele = new ModeleDocuments(liste, &d);
    auto* grille = new QTableView(&d);
    grille->setModel(modele);
    grille->setSelectionBehavior(QAbstractItemView::SelectRows);
    grille->setSelectionMode(QAbstractItemView::SingleSelection);
    grille->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grille->verticalHeader()->hide();
    grille->horizontalHeader()->setStretchLastSection(true);
    grille->setColumnWidth(1, grille->fontMetrics().horizontalAdvance(QLatin1Char('x')) * 36);
    if (modele->rowCount() > 0) grille->selectRow(0);
    l->addWidget(grille);
    auto* boutons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &d);
    l->addWidget(boutons);
    QObject::connect(boutons, &QDialogButtonBox::accepted, &d, &QDialog::accept);
    QObject::connect(boutons, &QDialogButtonBox::rejected, &d, &QDialog::reject);
    QObject::connect(grille, &QTableView::doubleClicked, &d, &QDialog::accept);
    d.resize(620, 420);
    if (d.exec() != QDialog::Accepted || !grille->currentIndex().isValid()) return 0;
    return liste.DocumentLigne(static_cast<std::size_t>(grille->currentIndex().row()));
}
const bool choixPose = (DefinitChoixDocument(ChoisitDocumentQt), true);

QPushButton* Bouton(QWidget* parent, QLayout* l) {
    auto* b = new QPushButton(parent);
    l->addWidget(b);
    return b;
}

} // namespace

DocumentDeFenetre::DocumentDeFenetre() {
    const DemandeDocument& d = DocumentDemande();
    if (d.active) {
        document = d.document;
        origine = d.origine;
        connu_ = true;
    }
}

bool DocumentDeFenetre::Prend(const QWidget& w) {
    if (pris_) return false;
    pris_ = true;
    if (!connu_) document = NumeroFormulaire(A(w.objectName()));
    return true;
}

// --- FrmLstImage ---------------------------------------------------------------------

int ModeleDocuments::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(l_.Nombre());
}

int ModeleDocuments::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : 4; }

QVariant ModeleDocuments::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    if (role == Qt::DisplayRole)
        return Q(l_.Ligne(static_cast<std::size_t>(index.row()))[static_cast<std::size_t>(index.column())]);
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue((index.column() == 0 ? Qt::AlignRight : Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    return {};
}

QVariant ModeleDocuments::headerData(int section, Qt::Orientation o, int role) const {
    using namespace msg_documents;
    if (o != Qt::Horizontal || role != Qt::DisplayRole) return {};
    static constexpr int entetes[] = {ColNumero, ColTitre, ColFichier, ColType};
    return MT(entetes[section]);
}

FrmLstImageQt::FrmLstImageQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique) {
    auto* l = new QVBoxLayout(this);
    modele_ = new ModeleDocuments(logique_, this);
    grille_ = GrilleGlisser(this);
    grille_->setModel(modele_);
    grille_->setDragEnabled(false);
    l->addWidget(grille_);
    nombre_ = new QLabel(this);
    l->addWidget(nombre_);
    auto* boutons = new QHBoxLayout;
    cmdMaj_ = Bouton(this, boutons);
    cmdAjout_ = Bouton(this, boutons);
    cmdSupp_ = Bouton(this, boutons);
    cmdVisu_ = Bouton(this, boutons);
    cmdUtilisation_ = Bouton(this, boutons);
    boutons->addStretch();
    l->addLayout(boutons);
    cmdMaj_->setDefault(true);
    connect(cmdMaj_, &QPushButton::clicked, this, [this] { logique_.CmdMaj(Ligne()); });
    connect(grille_, &QTableView::doubleClicked, this, [this] { logique_.CmdMaj(Ligne()); });
    connect(grille_, &QTableView::activated, this, [this] { logique_.CmdMaj(Ligne()); });
    connect(cmdAjout_, &QPushButton::clicked, this, [this] { logique_.CmdAjout(); });
    connect(cmdSupp_, &QPushButton::clicked, this, [this] {
        if (logique_.CmdSupp(Ligne())) Actualise(true);
    });
    connect(cmdVisu_, &QPushButton::clicked, this, [this] { logique_.CmdVisu(Ligne()); });
    connect(cmdUtilisation_, &QPushButton::clicked, this,
            [this] { logique_.CmdUtilisation(Ligne()); });
    // Forms that save a document may be open beside the list.
    minuterie_ = new QTimer(this);
    connect(minuterie_, &QTimer::timeout, this, [this] { Actualise(); });
    minuterie_->start(500);
    version_ = VersionDocuments();
    resize(640, 420);
}

int FrmLstImageQt::Ligne() const {
    const QModelIndex i = grille_->currentIndex();
    return i.isValid() ? i.row() : 0;
}

void FrmLstImageQt::Actualise(bool toujours) {
    if (!toujours && version_ == VersionDocuments()) return;
    version_ = VersionDocuments();
    const int ligne = grille_->currentIndex().row();
    modele_->Recharge();
    if (ligne >= 0) grille_->selectRow(std::min(ligne, modele_->rowCount() - 1));
    nombre_->setText(MT(msg_documents::Nombre, QString::number(logique_.Nombre())));
}

void FrmLstImageQt::Retraduit() {
    using namespace msg_documents;
    setWindowTitle(MT(79));
    cmdMaj_->setText(M(CmdMaj));
    cmdAjout_->setText(M(CmdAjout));
    cmdSupp_->setText(M(CmdSupp));
    cmdVisu_->setText(M(CmdVisu));
    cmdUtilisation_->setText(M(CmdUtilisation));
    Actualise(true);
    grille_->resizeColumnToContents(0);
    grille_->setColumnWidth(1, 240);
    grille_->setColumnWidth(2, 200);
    if (modele_->rowCount() > 0) grille_->selectRow(0);
}

void FrmLstImageQt::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Delete) {
        if (logique_.CmdSupp(Ligne())) Actualise(true);
        return;
    }
    if (e->key() == Qt::Key_Insert) {
        logique_.CmdAjout();
        return;
    }
    FormulaireQt::keyPressEvent(e);
}

// --- FrmDesImage ---------------------------------------------------------------------

FrmDesImageQt::FrmDesImageQt(ContexteQt& c, QWidget* parent) : FormulaireQt(parent), c_(c) {
    auto* l = new QVBoxLayout(this);
    barre_ = new QToolBar(this);
    enregistrer_ = barre_->addAction(QString(), this, [this] { Enregistre(); });
    enregistrer_->setShortcut(QKeySequence::Save);
    l->addWidget(barre_);
    auto* g = new QGridLayout;
    lblIntitule_ = new QLabel(this);
    intitule_ = new QLineEdit(this);
    lblFichier_ = new QLabel(this);
    fichier_ = new QLineEdit(this);
    cmdFichier_ = new QPushButton(this);
    ole_ = new QCheckBox(this);
    lblType_ = new QLabel(this);
    type_ = new QComboBox(this);
    type_->setEditable(true);
    type_->setInsertPolicy(QComboBox::NoInsert);
    cmdVisu_ = new QPushButton(this);
    dossier_ = new QLabel(this);
    dossier_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblCommentaire_ = new QLabel(this);
    commentaire_ = new QTextEdit(this);
    commentaire_->setTabChangesFocus(true);
    lblIntitule_->setBuddy(intitule_);
    lblFichier_->setBuddy(fichier_);
    lblType_->setBuddy(type_);
    lblCommentaire_->setBuddy(commentaire_);
    g->addWidget(lblIntitule_, 0, 0);
    g->addWidget(intitule_, 0, 1, 1, 2);
    g->addWidget(lblFichier_, 1, 0);
    g->addWidget(fichier_, 1, 1);
    g->addWidget(cmdFichier_, 1, 2);
    g->addWidget(ole_, 2, 1);
    g->addWidget(cmdVisu_, 2, 2);
    g->addWidget(lblType_, 3, 0);
    g->addWidget(type_, 3, 1, 1, 2);
    g->addWidget(dossier_, 4, 1, 1, 2);
    g->addWidget(lblCommentaire_, 5, 0, Qt::AlignTop);
    g->addWidget(commentaire_, 5, 1, 1, 2);
    g->setColumnStretch(1, 1);
    g->setRowStretch(5, 1);
    l->addLayout(g);
    setTabOrder(intitule_, fichier_);
    setTabOrder(fichier_, cmdFichier_);
    setTabOrder(cmdFichier_, ole_);
    setTabOrder(ole_, cmdVisu_);
    setTabOrder(cmdVisu_, type_);
    setTabOrder(type_, commentaire_);
    connect(cmdFichier_, &QPushButton::clicked, this, [this] {
        if (!logique_) return;
        Lit();
        if (logique_->CmdFichier()) fichier_->setText(Q(logique_->fichier));
    });
    connect(ole_, &QCheckBox::toggled, this, [this](bool b) {
        if (logique_) logique_->ole = b;
    });
    connect(cmdVisu_, &QPushButton::clicked, this, [this] {
        if (!logique_) return;
        Lit();
        logique_->CmdVisu();
        Remplit();
    });
    resize(560, 420);
}

void FrmDesImageQt::Retraduit() {
    using namespace msg_documents;
    if (demande_.Prend(*this)) {
        // "FrmDesImage" alone is the title document (`MnuDescription`).
        logique_ = std::make_unique<FrmDesImage>(c_.logique, demande_.document, demande_.origine,
                                                 A(objectName()) == "FrmDesImage");
        Remplit();
    }
    enregistrer_->setText(M(CmdEnregistrer));
    enregistrer_->setToolTip(MT(CmdEnregistrer));
    lblIntitule_->setText(M(Intitule));
    lblType_->setText(M(Type));
    lblCommentaire_->setText(M(Commentaire));
    cmdFichier_->setText(M(CmdFichier));
    cmdVisu_->setText(M(CmdVisu));
    ole_->setText(M(ChkOle));
    if (logique_) {
        lblFichier_->setText(logique_->EstTitre() ? MT(967) : M(NomFichier));
        setWindowTitle(Q(logique_->Legende()));
        dossier_->setText(MT(Dossier, CheminQt(DossierImages(c_.logique))));
    }
}

void FrmDesImageQt::Remplit() {
    if (!logique_) return;
    const FrmDesImage& L = *logique_;
    intitule_->setText(Q(L.intitule));
    fichier_->setText(Q(L.fichier));
    type_->clear();
    for (const auto& t : L.Types()) type_->addItem(Q(t));
    type_->setCurrentText(Q(L.type));
    ole_->setChecked(L.ole);
    if (L.commentaire.rfind("{\\rtf", 0) == 0)
        DocumentDepuisSegments(*commentaire_->document(), LitRtf(L.commentaire));
    else
        commentaire_->setPlainText(Q(L.commentaire));
    commentaire_->document()->setModified(false);
    // The title document is an e-mail entry: no viewer, no file, no link.
    for (QWidget* w : {static_cast<QWidget*>(cmdVisu_), static_cast<QWidget*>(ole_),
                       static_cast<QWidget*>(cmdFichier_), static_cast<QWidget*>(dossier_)})
        w->setVisible(!L.EstTitre());
    type_->setEnabled(!L.EstTitre());
    setWindowTitle(Q(L.Legende()));
}

void FrmDesImageQt::Lit() {
    FrmDesImage& L = *logique_;
    L.intitule = A(intitule_->text());
    L.fichier = A(fichier_->text());
    L.type = A(type_->currentText());
    L.ole = ole_->isChecked();
    // The comment keeps its formatting, or is plain text when it has none.
    if (commentaire_->document()->isModified())
        L.commentaire = TexteNoteRtf(SegmentsDepuisDocument(*commentaire_->document()));
}

bool FrmDesImageQt::Enregistre() {
    if (!logique_) return false;
    Lit();
    if (!logique_->Enregistre()) return false;
    Remplit();
    return true;
}

void FrmDesImageQt::closeEvent(QCloseEvent* e) {
    if (logique_) {
        Lit();
        if (!logique_->Fermeture()) {
            e->ignore();
            return;
        }
    }
    FormulaireQt::closeEvent(e);
}

// --- FrmUtilImage --------------------------------------------------------------------

namespace {

// The grid takes persons and events dragged from the lists.
class GrilleUtilisation : public QTableWidget {
  public:
    using QTableWidget::QTableWidget;
    std::function<void(char, std::uint32_t)> depose;

  protected:
    static bool Tag(const QMimeData* m, char& g, std::uint32_t& n) {
        if (!m || !m->hasText()) return false;
        const QString t = m->text();
        bool ok = false;
        n = t.mid(1).toUInt(&ok);
        g = t.isEmpty() ? ' ' : static_cast<char>(t[0].toLatin1());
        return ok && n != 0 && (g == 'I' || g == 'E');
    }
    void dragEnterEvent(QDragEnterEvent* e) override {
        char g;
        std::uint32_t n;
        if (Tag(e->mimeData(), g, n)) e->acceptProposedAction();
    }
    void dragMoveEvent(QDragMoveEvent* e) override { e->acceptProposedAction(); }
    void dropEvent(QDropEvent* e) override {
        char g;
        std::uint32_t n;
        if (Tag(e->mimeData(), g, n) && depose) depose(g, n);
        e->acceptProposedAction();
    }
};

} // namespace

FrmUtilImageQt::FrmUtilImageQt(ContexteQt& c, QWidget* parent) : FormulaireQt(parent), c_(c) {
    auto* l = new QVBoxLayout(this);
    auto* grille = new GrilleUtilisation(0, 2, this);
    grille->depose = [this](char g, std::uint32_t n) { RecoitGlisser(g, n); };
    grille->setAcceptDrops(true);
    grille->setDragDropMode(QAbstractItemView::DropOnly);
    grille_ = grille;
    grille_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grille_->setSelectionMode(QAbstractItemView::SingleSelection);
    grille_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grille_->verticalHeader()->hide();
    grille_->horizontalHeader()->setStretchLastSection(true);
    grille_->setTabKeyNavigation(false);
    l->addWidget(grille_);
    nombre_ = new QLabel(this);
    l->addWidget(nombre_);
    auto* boutons = new QHBoxLayout;
    cmdMaj_ = Bouton(this, boutons);
    cmdAffichage_ = Bouton(this, boutons);
    boutons->addStretch();
    l->addLayout(boutons);
    cmdMaj_->setDefault(true);
    connect(cmdMaj_, &QPushButton::clicked, this, [this] {
        if (logique_) logique_->CmdMaj(static_cast<std::size_t>(Ligne()));
    });
    connect(grille_, &QTableWidget::cellDoubleClicked, this, [this] {
        if (logique_) logique_->CmdMaj(static_cast<std::size_t>(Ligne()));
    });
    connect(cmdAffichage_, &QPushButton::clicked, this, [this] {
        if (logique_) logique_->CmdAffichage(static_cast<std::size_t>(Ligne()));
    });
    resize(520, 360);
}

int FrmUtilImageQt::Ligne() const { return std::max(0, grille_->currentRow()); }

void FrmUtilImageQt::Remplit() {
    if (!logique_) return;
    const auto& lignes = logique_->Lignes();
    grille_->setRowCount(static_cast<int>(lignes.size()));
    for (int i = 0; i < grille_->rowCount(); ++i) {
        const auto& r = lignes[static_cast<std::size_t>(i)];
        grille_->setItem(i, 0, new QTableWidgetItem(Q(r.nom)));
        auto* n = new QTableWidgetItem(QString::number(r.numero) + QChar(r.genre));
        n->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grille_->setItem(i, 1, n);
    }
    grille_->resizeColumnToContents(0);
    nombre_->setText(MT(msg_documents::Utilisations, QString::number(lignes.size())));
    if (grille_->rowCount() > 0 && grille_->currentRow() < 0) grille_->selectRow(0);
}

void FrmUtilImageQt::Retraduit() {
    using namespace msg_documents;
    if (demande_.Prend(*this)) {
        logique_ = std::make_unique<FrmUtilImage>(c_.logique, demande_.document);
        Remplit();
    }
    grille_->setHorizontalHeaderLabels({MT(ColNom), MT(ColNumero)});
    cmdMaj_->setText(M(CmdFiche));
    cmdAffichage_->setText(M(CmdAffichage));
    if (logique_) {
        setWindowTitle(Q(logique_->Legende()));
        Remplit();
    }
}

void FrmUtilImageQt::RecoitGlisser(char genre, std::uint32_t numero) {
    if (logique_ && logique_->RecoitGlisser(genre, numero)) Remplit();
}

// --- FrmOLE --------------------------------------------------------------------------

FrmOleQt::FrmOleQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique) {
    auto* l = new QVBoxLayout(this);
    barre_ = new QToolBar(this);
    precedent_ = barre_->addAction(QString(), this, [this] {
        logique_.Precedent();
        Montre();
    });
    suivant_ = barre_->addAction(QString(), this, [this] {
        logique_.Suivant();
        Montre();
    });
    accueil_ = barre_->addAction(QString(), this, [this] {
        logique_.Accueil();
        Montre();
    });
    // A file is read at once: there is nothing to stop.
    arreter_ = barre_->addAction(QString());
    arreter_->setEnabled(false);
    actualiser_ = barre_->addAction(QString(), this, [this] {
        logique_.Actualiser();
        Montre();
    });
    precedent_->setShortcut(QKeySequence::Back);
    suivant_->setShortcut(QKeySequence::Forward);
    actualiser_->setShortcut(QKeySequence::Refresh);
    l->addWidget(barre_);
    auto* ligne = new QHBoxLayout;
    lblUrl_ = new QLabel(this);
    url_ = new QLineEdit(this);
    lblUrl_->setBuddy(url_);
    ligne->addWidget(lblUrl_);
    ligne->addWidget(url_);
    l->addLayout(ligne);
    texte_ = new QPlainTextEdit(this);
    texte_->setReadOnly(true);
    texte_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    l->addWidget(texte_);
    connect(url_, &QLineEdit::returnPressed, this, [this] { Navigue(); });
    resize(640, 480);
}

void FrmOleQt::Retraduit() {
    using namespace msg_documents;
    precedent_->setText(M(Precedent));
    suivant_->setText(M(Suivant));
    accueil_->setText(M(Accueil));
    arreter_->setText(M(Arreter));
    actualiser_->setText(M(Actualiser));
    lblUrl_->setText(M(Adresse));
    if (demande_.Prend(*this) && demande_.document != 0) {
        if (Base* b = c_.logique.base()) {
            url_->setText(Q(b->FichierDoc(demande_.document)));
            Navigue();
            return;
        }
    }
    Montre();
}

void FrmOleQt::Navigue() {
    logique_.Navigue(A(url_->text()));
    Montre();
}

void FrmOleQt::Montre() {
    url_->setText(Q(logique_.Adresse()));
    texte_->setPlainText(Q(logique_.Texte()));
    precedent_->setEnabled(logique_.PeutReculer());
    suivant_->setEnabled(logique_.PeutAvancer());
    setWindowTitle(Q(logique_.Legende()));
}

static EnregistrementFormulaire enrListe("FrmLstImage",
                                         [](ContexteQt& c) { return new FrmLstImageQt(c); });
static EnregistrementFormulaire enrDescription("FrmDesImage",
                                               [](ContexteQt& c) { return new FrmDesImageQt(c); });
static EnregistrementFormulaire enrUtilisation("FrmUtilImage",
                                               [](ContexteQt& c) { return new FrmUtilImageQt(c); });
static EnregistrementFormulaire enrOle("FrmOLE", [](ContexteQt& c) { return new FrmOleQt(c); });

} // namespace sylvane
