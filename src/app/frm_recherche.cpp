#include "app/frm_recherche.h"

#include "app/fenetre_principale.h"
#include "app/frm_exporter.h"
#include "app/frm_mot.h"
#include "app/texte_qt.h"
#include "store/base.h"
#include "text/mots.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QShowEvent>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QToolButton>
#include <QTableView>
#include <QVBoxLayout>

namespace sylvane {

// --- The model ---------------------------------------------------------------------------

int ModeleRecherche::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(logique_.NombreLignes());
}

int ModeleRecherche::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : logique_.NombreColonnes();
}

QVariant ModeleRecherche::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    if (role == Qt::DisplayRole)
        return Q(logique_.Cellule(static_cast<std::size_t>(index.row()), index.column()));
    return {};
}

QVariant ModeleRecherche::headerData(int section, Qt::Orientation o, int role) const {
    if (o != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return MT(logique_.Entete(section));
}



// --- The shared window ---------------------------------------------------------------------

FrmRechercheQt::FrmRechercheQt(ContexteQt& c, FrmRechercheCommun& logique, QWidget* parent)
    : FormulaireQt(parent), c_(c), base_(logique) {
    modele_ = new ModeleRecherche(logique, this);
    grille_ = GrilleGlisser(this);
    grille_->horizontalHeader()->setSectionsClickable(true);
    nombre_ = new QLabel(this);
    auto bouton = [this] { return new QPushButton(this); };
    cmdRecherche_ = bouton();
    cmdRecherche_->setDefault(true);
    cmdMaj_ = bouton();
    cmdAffichage_ = bouton();
    cmdEcarter_ = bouton();
    cmdImprimer_ = bouton();
    cmdParente_ = bouton();
    cmdStats_ = bouton();
    cmdFermer_ = bouton();
}

// The logic lives in the derived window, made after this one: the grid
// takes its model only once the logic is there.
void FrmRechercheQt::Termine(QLayout* criteres, bool ajouter, bool exporter) {
    grille_->setModel(modele_);
    base_.DefinitVue(this);
    base_.marquesExport = [this]() -> Selection* {
        auto* e = c_.fenetre.findChild<FrmExporterQt*>();
        return e ? e->logique().Marques() : nullptr;
    };
    if (ajouter) cmdAjouter_ = new QPushButton(this);
    if (exporter) cmdExporter_ = new QPushButton(this);
    for (int c = 0; c < base_.NombreColonnes(); ++c)
        grille_->setColumnHidden(c, base_.Cachee(c));

    auto* boutons = new QVBoxLayout;
    for (QPushButton* b : {cmdRecherche_, cmdMaj_, cmdAffichage_, cmdAjouter_, cmdEcarter_,
                           cmdImprimer_, cmdParente_, cmdStats_, cmdExporter_})
        if (b) boutons->addWidget(b);
    boutons->addStretch(1);
    boutons->addWidget(cmdFermer_);
    auto* gauche = new QVBoxLayout;
    gauche->addLayout(criteres);
    gauche->addWidget(grille_, 1);
    gauche->addWidget(nombre_);
    auto* l = new QHBoxLayout(this);
    l->addLayout(gauche, 1);
    l->addLayout(boutons);

    connect(cmdRecherche_, &QPushButton::clicked, this, [this] { Recherche(); });
    connect(cmdMaj_, &QPushButton::clicked, this,
            [this] { base_.C_Maj(static_cast<std::size_t>(LigneCourante())); });
    connect(cmdAffichage_, &QPushButton::clicked, this,
            [this] { base_.C_Affichage(static_cast<std::size_t>(LigneCourante())); });
    connect(cmdEcarter_, &QPushButton::clicked, this,
            [this] { base_.CmdEcarter(static_cast<std::size_t>(LigneCourante())); });
    connect(cmdImprimer_, &QPushButton::clicked, this, [this] { base_.CmdImprimer(); });
    connect(cmdParente_, &QPushButton::clicked, this, [this] { base_.CmdParente(); });
    connect(cmdStats_, &QPushButton::clicked, this, [this] { base_.CmdStats(); });
    if (cmdExporter_)
        connect(cmdExporter_, &QPushButton::clicked, this, [this] { base_.CmdExporter(); });
    connect(cmdFermer_, &QPushButton::clicked, this, [this] {
        if (parentWidget()) parentWidget()->close();
        else close();
    });
    // Enter or a double click: the sheet; on a couple, the wife's columns
    // open hers.
    connect(grille_, &QAbstractItemView::activated, this, [this](const QModelIndex& i) {
        if (!i.isValid()) return;
        const bool epouse = base_.NomFormulaire() == std::string("FrmRechCouple") &&
                            FrmRechCouple::ColonneEpouse(i.column());
        base_.C_Maj(static_cast<std::size_t>(i.row()), epouse);
    });
    connect(grille_->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int c) { base_.Trie(c); });
    connect(grille_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this] { Boutons(); });
    Retraduit();
    Boutons();
    resize(900, 520);
}

void FrmRechercheQt::EntreeLance(QLineEdit* e) {
    connect(e, &QLineEdit::returnPressed, this, [this] { Recherche(); });
}

void FrmRechercheQt::Recherche() {
    LitCriteres();
    base_.C_Recherche();
    MontreCriteres();
    LignesChangees();
}

void FrmRechercheQt::Retraduit() {
    using namespace msg_rech;
    setWindowTitle(M(base_.Titre()));
    cmdRecherche_->setText(M(Rechercher));
    cmdMaj_->setText(M(base_.NomFormulaire() == std::string("FrmRechEvt") ? MiseAJour : Fiche));
    cmdAffichage_->setText(M(Graphe));
    if (cmdAjouter_) cmdAjouter_->setText(M(Ajouter));
    cmdEcarter_->setText(M(Ecarter));
    cmdImprimer_->setText(M(Imprimer));
    cmdParente_->setText(M(Parente));
    cmdStats_->setText(M(Stats));
    if (cmdExporter_) cmdExporter_->setText(M(Exporter));
    cmdFermer_->setText(M(Fermer));
    RetraduitCriteres();
    Q_EMIT modele_->headerDataChanged(Qt::Horizontal, 0, base_.NombreColonnes() - 1);
    nombre_->setText(Q(base_.Nombre()));
}

void FrmRechercheQt::LignesChangees() {
    const int ligne = LigneCourante();
    modele_->Recharge();
    nombre_->setText(Q(base_.Nombre()));
    const int n = static_cast<int>(base_.NombreLignes());
    if (n > 0) grille_->selectRow(std::clamp(ligne, 0, n - 1));
    grille_->resizeColumnsToContents();
    Boutons();
}

int FrmRechercheQt::LigneCourante() const {
    const QModelIndex i = grille_->currentIndex();
    return i.isValid() ? i.row() : -1;
}

void FrmRechercheQt::Boutons() {
    const bool ligne = LigneCourante() >= 0;
    cmdMaj_->setEnabled(ligne && base_.MajActif());
    cmdAffichage_->setEnabled(ligne && base_.MajActif());
    cmdEcarter_->setEnabled(ligne && base_.EcarterActif());
    cmdImprimer_->setEnabled(base_.MajActif());
    cmdParente_->setEnabled(base_.MajActif());
    cmdStats_->setEnabled(base_.MajActif());
    if (cmdExporter_) cmdExporter_->setEnabled(base_.MajActif());
}

// At its first showing the child window takes the room of the form's
// criteria, a dozen rows and its commands, within the main window.
void FrmRechercheQt::showEvent(QShowEvent* e) {
    FormulaireQt::showEvent(e);
    if (dimensionnee_ || !parentWidget()) return;
    dimensionnee_ = true;
    QWidget* cadre = parentWidget();
    QSize s = sizeHint() + (cadre->size() - size());
    if (cadre->parentWidget()) s = s.boundedTo(cadre->parentWidget()->size());
    cadre->resize(s);
}

// The window stays while its search runs: the scan runs under it.
void FrmRechercheQt::closeEvent(QCloseEvent* e) {
    if (c_.logique.services().panneau.Visible()) {
        c_.logique.Occupe();
        e->ignore();
        return;
    }
    FormulaireQt::closeEvent(e);
}

namespace {

// A field whose text is shown folded as it is typed, the caret kept.
void PlieEnTapant(QLineEdit* e) {
    QObject::connect(e, &QLineEdit::textEdited, e, [e](const QString& t) {
        const QString plie = Q(CleMot(A(t)));
        if (plie == t) return;
        const int curseur = e->cursorPosition();
        e->setText(plie);
        e->setCursorPosition(curseur);
    });
}

QLineEdit* ChampAnnee(QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setMaxLength(5);
    e->setMaximumWidth(e->fontMetrics().horizontalAdvance(QStringLiteral("-00000")) + 16);
    return e;
}

} // namespace

// --- FrmRecherche ----------------------------------------------------------------------

FrmRechercheNomQt::FrmRechercheNomQt(ContexteQt& c)
    : FrmRechercheQt(c, logique_), logique_(c.logique) {
    lblTexte_ = new QLabel(this);
    texte_ = new QLineEdit(this);
    lblTexte_->setBuddy(texte_);
    PlieEnTapant(texte_);
    EntreeLance(texte_);
    cumul_ = new QCheckBox(this);
    auto* l = new QHBoxLayout;
    l->addWidget(lblTexte_);
    l->addWidget(texte_, 1);
    l->addWidget(cumul_);
    Termine(l, true, false);
    setAcceptDrops(true);
    grille_->setAcceptDrops(true);
    connect(cmdAjouter_, &QPushButton::clicked, this, [this] { logique_.CmdAjouter(); });
    setTabOrder(texte_, cumul_);
    setTabOrder(cumul_, grille_);
}

void FrmRechercheNomQt::LitCriteres() {
    logique_.texte = A(texte_->text());
    logique_.cumul = cumul_->isChecked();
}

void FrmRechercheNomQt::MontreCriteres() { texte_->setText(Q(logique_.texte)); }

void FrmRechercheNomQt::RetraduitCriteres() {
    lblTexte_->setText(M(msg_rech::Texte));
    cumul_->setText(M(msg_rech::Cumul));
}

void FrmRechercheNomQt::RecoitGlisser(char genre, std::uint32_t numero) {
    logique_.RecoitGlisser(genre, numero);
}

void FrmRechercheNomQt::dragEnterEvent(QDragEnterEvent* e) {
    if (e->mimeData()->hasText()) e->acceptProposedAction();
}

// A tag "I<n>" or "E<n>" dropped from another list joins the set.
void FrmRechercheNomQt::dropEvent(QDropEvent* e) {
    const QString t = e->mimeData()->text();
    bool ok = false;
    const uint n = t.mid(1).toUInt(&ok);
    if (t.size() > 1 && ok && (t[0] == 'I' || t[0] == 'E')) {
        logique_.RecoitGlisser(t[0].toLatin1(), n);
        e->acceptProposedAction();
    }
}

// --- FrmRechTexte -------------------------------------------------------------------------

FrmRechTexteQt::FrmRechTexteQt(ContexteQt& c) : FrmRechercheQt(c, logique_), logique_(c.logique) {
    auto* g = new QGridLayout;
    lblGenre_ = new QLabel(this);
    lblTexte_ = new QLabel(this);
    g->addWidget(lblGenre_, 0, 0);
    g->addWidget(lblTexte_, 0, 1);
    for (int i = 0; i < 4; ++i) {
        genres_[i] = new QComboBox(this);
        textes_[i] = new QLineEdit(this);
        PlieEnTapant(textes_[i]);
        EntreeLance(textes_[i]);
        g->addWidget(genres_[i], i + 1, 0);
        g->addWidget(textes_[i], i + 1, 1);
        // The keyword picker of the row's kind.
        auto* choix = new QToolButton(this);
        choix->setObjectName(QStringLiteral("C_MotCle%1").arg(i));
        choix->setText(M(msg_rech::MotCle));
        g->addWidget(choix, i + 1, 2);
        connect(choix, &QToolButton::clicked, this, [this, &c, i] {
            const char marque = genres_[i]->currentData().toChar().toLatin1();
            if (marque == 0 || marque == ' ') return;
            DemandeMot d;
            d.marque = marque;
            d.libelle = A(genres_[i]->currentText().mid(3));
            d.valeur = A(textes_[i]->text());
            if (const auto v = EditeMot(c.logique, d, this)) textes_[i]->setText(Q(v->valeur));
        });
    }
    lblGenre_->setBuddy(genres_[0]);
    lblTexte_->setBuddy(textes_[0]);
    lblDebut_ = new QLabel(this);
    lblFin_ = new QLabel(this);
    debut_ = ChampAnnee(this);
    fin_ = ChampAnnee(this);
    lblDebut_->setBuddy(debut_);
    lblFin_->setBuddy(fin_);
    EntreeLance(debut_);
    EntreeLance(fin_);
    orphelines_ = new QCheckBox(this);
    cumul_ = new QCheckBox(this);
    auto* annees = new QHBoxLayout;
    annees->addWidget(lblDebut_);
    annees->addWidget(debut_);
    annees->addWidget(lblFin_);
    annees->addWidget(fin_);
    annees->addSpacing(16);
    annees->addWidget(orphelines_);
    annees->addWidget(cumul_);
    annees->addStretch(1);
    g->addLayout(annees, 5, 0, 1, 2);
    g->setColumnStretch(1, 1);
    // C_Recherche is offered once some criterion is filled.
    auto actualise = [this] {
        LitCriteres();
        cmdRecherche_->setEnabled(logique_.RechercheActive());
    };
    connect(debut_, &QLineEdit::textChanged, this, actualise);
    connect(fin_, &QLineEdit::textChanged, this, actualise);
    connect(orphelines_, &QCheckBox::toggled, this, actualise);
    for (QLineEdit* t : textes_) connect(t, &QLineEdit::textChanged, this, actualise);
    Termine(g, false, true);
    RemplitGenres();
    cmdRecherche_->setEnabled(false);
    for (int i = 0; i < 3; ++i) {
        setTabOrder(genres_[i], textes_[i]);
        setTabOrder(textes_[i], genres_[i + 1]);
    }
    setTabOrder(genres_[3], textes_[3]);
    setTabOrder(textes_[3], debut_);
}

void FrmRechTexteQt::RemplitGenres() {
    const auto genres = logique_.Genres();
    for (int i = 0; i < 4; ++i) {
        genres_[i]->clear();
        genres_[i]->addItem(QString(), QChar(' '));
        for (const auto& [marque, libelle] : genres)
            genres_[i]->addItem(Q(std::string(1, marque) + "  " + libelle),
                                QChar::fromLatin1(marque));
    }
    // The first rows offer the name and the first name.
    if (genres_[0]->count() > 1) genres_[0]->setCurrentIndex(1);
    if (genres_[1]->count() > 2) genres_[1]->setCurrentIndex(2);
}

void FrmRechTexteQt::LitCriteres() {
    for (int i = 0; i < 4; ++i) {
        logique_.criteres.lignes[i].marque = genres_[i]->currentData().toChar().toLatin1();
        if (logique_.criteres.lignes[i].marque == 0) logique_.criteres.lignes[i].marque = ' ';
        logique_.criteres.lignes[i].texte = A(textes_[i]->text());
    }
    logique_.criteres.anDebut = A(debut_->text());
    logique_.criteres.anFin = A(fin_->text());
    logique_.criteres.orphelines = orphelines_->isChecked();
    logique_.cumul = cumul_->isChecked();
}

void FrmRechTexteQt::MontreCriteres() {
    for (int i = 0; i < 4; ++i) textes_[i]->setText(Q(logique_.criteres.lignes[i].texte));
}

void FrmRechTexteQt::RetraduitCriteres() {
    lblGenre_->setText(M(msg_rech::Genre));
    lblTexte_->setText(M(msg_rech::Texte));
    lblDebut_->setText(M(msg_rech::AnDebut));
    lblFin_->setText(M(msg_rech::AnFin));
    orphelines_->setText(M(msg_rech::Orphelines));
    cumul_->setText(M(msg_rech::Cumul));
}

// --- FrmRechCouple -------------------------------------------------------------------------

FrmRechCoupleQt::FrmRechCoupleQt(ContexteQt& c)
    : FrmRechercheQt(c, logique_), logique_(c.logique) {
    auto* g = new QGridLayout;
    for (int i = 0; i < 7; ++i) {
        etiquettes_[i] = new QLabel(this);
        champs_[i] = i < 5 ? new QLineEdit(this) : ChampAnnee(this);
        etiquettes_[i]->setBuddy(champs_[i]);
        PlieEnTapant(champs_[i]);
        EntreeLance(champs_[i]);
    }
    // Husband and wife side by side, then the place and the years.
    g->addWidget(etiquettes_[0], 0, 0);
    g->addWidget(champs_[0], 0, 1);
    g->addWidget(etiquettes_[1], 0, 2);
    g->addWidget(champs_[1], 0, 3);
    g->addWidget(etiquettes_[2], 1, 0);
    g->addWidget(champs_[2], 1, 1);
    g->addWidget(etiquettes_[3], 1, 2);
    g->addWidget(champs_[3], 1, 3);
    g->addWidget(etiquettes_[4], 2, 0);
    g->addWidget(champs_[4], 2, 1);
    auto* annees = new QHBoxLayout;
    annees->addWidget(etiquettes_[5]);
    annees->addWidget(champs_[5]);
    annees->addWidget(etiquettes_[6]);
    annees->addWidget(champs_[6]);
    annees->addStretch(1);
    g->addLayout(annees, 2, 2, 1, 2);
    g->setColumnStretch(1, 1);
    g->setColumnStretch(3, 1);
    Termine(g, false, true);
}

void FrmRechCoupleQt::LitCriteres() {
    auto& c = logique_.criteres;
    std::string* champs[] = {&c.epoux, &c.prEpoux, &c.epouse, &c.prEpouse, &c.lieu, &c.anDebut,
                             &c.anFin};
    for (int i = 0; i < 7; ++i) *champs[i] = A(champs_[i]->text());
}

void FrmRechCoupleQt::RetraduitCriteres() {
    using namespace msg_rech;
    const int n[] = {Epoux, PrenomEpoux, Epouse, PrenomEpouse, LieuMariage, AnDebut, AnFin};
    for (int i = 0; i < 7; ++i) etiquettes_[i]->setText(M(n[i]));
}

// --- FrmRechEvt -----------------------------------------------------------------------------

namespace {

// A combo that takes typed text and offers the values in use.
class ComboValeurs : public QComboBox {
  public:
    ComboValeurs(QWidget* parent, std::function<void()> remplit)
        : QComboBox(parent), remplit_(std::move(remplit)) {
        setEditable(true);
        setInsertPolicy(QComboBox::NoInsert);
        setMinimumContentsLength(12);
        setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    }
    void showPopup() override {
        remplit_();
        QComboBox::showPopup();
    }

  private:
    std::function<void()> remplit_;
};

void Remplit(QComboBox* c, const std::vector<std::string>& valeurs) {
    const QString texte = c->currentText();
    c->clear();
    for (const auto& v : valeurs) c->addItem(Q(v));
    c->setCurrentText(texte);
}

} // namespace

FrmRechEvtQt::FrmRechEvtQt(ContexteQt& c) : FrmRechercheQt(c, logique_), logique_(c.logique) {
    lblType_ = new QLabel(this);
    lblLieu_ = new QLabel(this);
    lblDebut_ = new QLabel(this);
    lblFin_ = new QLabel(this);
    type_ = new ComboValeurs(this, [this] { Remplit(type_, logique_.Types()); });
    lieu_ = new ComboValeurs(this, [this] { Remplit(lieu_, logique_.Lieux()); });
    debut_ = ChampAnnee(this);
    fin_ = ChampAnnee(this);
    lblType_->setBuddy(type_);
    lblLieu_->setBuddy(lieu_);
    lblDebut_->setBuddy(debut_);
    lblFin_->setBuddy(fin_);
    for (QComboBox* cb : {type_, lieu_}) {
        PlieEnTapant(cb->lineEdit());
        EntreeLance(cb->lineEdit());
    }
    EntreeLance(debut_);
    EntreeLance(fin_);
    auto* g = new QGridLayout;
    g->addWidget(lblType_, 0, 0);
    g->addWidget(type_, 0, 1);
    g->addWidget(lblLieu_, 0, 2);
    g->addWidget(lieu_, 0, 3);
    auto* annees = new QHBoxLayout;
    annees->addWidget(lblDebut_);
    annees->addWidget(debut_);
    annees->addWidget(lblFin_);
    annees->addWidget(fin_);
    annees->addStretch(1);
    g->addLayout(annees, 1, 0, 1, 4);
    g->setColumnStretch(1, 1);
    g->setColumnStretch(3, 2);
    Termine(g, false, false);
    RemplitCombos();
}

void FrmRechEvtQt::RemplitCombos() {
    Remplit(type_, logique_.Types());
    Remplit(lieu_, logique_.Lieux());
}

void FrmRechEvtQt::LitCriteres() {
    logique_.criteres.type = A(type_->currentText());
    logique_.criteres.lieu = A(lieu_->currentText());
    logique_.criteres.anDebut = A(debut_->text());
    logique_.criteres.anFin = A(fin_->text());
}

// A year refused (931): the caret goes to its field.
void FrmRechEvtQt::MontreCriteres() {
    if (logique_.champErrone == 1) debut_->setFocus();
    if (logique_.champErrone == 2) fin_->setFocus();
}

void FrmRechEvtQt::RetraduitCriteres() {
    lblType_->setText(M(msg_rech::Type));
    lblLieu_->setText(M(msg_rech::Lieu));
    lblDebut_->setText(M(msg_rech::AnDebut));
    lblFin_->setText(M(msg_rech::AnFin));
}

static EnregistrementFormulaire enrNom("FrmRecherche",
                                       [](ContexteQt& c) { return new FrmRechercheNomQt(c); });
static EnregistrementFormulaire enrTexte("FrmRechTexte",
                                         [](ContexteQt& c) { return new FrmRechTexteQt(c); });
static EnregistrementFormulaire enrCouple("FrmRechCouple",
                                          [](ContexteQt& c) { return new FrmRechCoupleQt(c); });
static EnregistrementFormulaire enrEvt("FrmRechEvt",
                                       [](ContexteQt& c) { return new FrmRechEvtQt(c); });

} // namespace sylvane
