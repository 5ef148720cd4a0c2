#include "app/frm_exporter.h"

#include "app/texte_qt.h"
#include "store/base.h"
#include "ui/mdiform1.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace sylvane {
namespace {

constexpr int kSelection = 3410, kDescendants = 3411, kAscendants = 3412, kTout = 3413,
              kDepart = 3414, kChoisir = 3415, kSelectionner = 3416, kListe = 3417,
              kEffacer = 3418, kInclure = 3419, kExclure = 3420, kFormat = 3421,
              kGedcom = 3422, kSvr = 3423, kJeu = 3424, kLiens = 3425, kEvenements = 3426,
              kDocuments = 3427, kCollateraux = 3428, kComplet = 3429, kSans1900 = 3430,
              kLancer = 3431, kFermer = 3432, kOptions = 3433, kSelectionnees = 3434;

// The character sets of a GEDCOM file, by the code the writer knows.
struct Jeu {
    const char* nom;
    char code;
};
constexpr Jeu kJeux[] = {{"ANSI", '1'}, {"ANSEL", '2'}, {"ASCII", '0'}, {"HTML", '3'},
                         {"UTF-8", 'U'}};

template <class T> T* Nomme(T* w, const char* nom) {
    w->setObjectName(QString::fromLatin1(nom));
    return w;
}

} // namespace

FrmExporterQt::FrmExporterQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique) {
    grpSelection_ = new QGroupBox(this);
    optDesc_ = Nomme(new QRadioButton(grpSelection_), "OptDescendants");
    optAsc_ = Nomme(new QRadioButton(grpSelection_), "OptAscendants");
    optTout_ = Nomme(new QRadioButton(grpSelection_), "OptTout");
    optDesc_->setChecked(true);
    lblDepart_ = new QLabel(grpSelection_);
    etiNom_ = Nomme(new QLabel(grpSelection_), "EtiNom");
    etiNom_->setFrameShape(QFrame::StyledPanel);
    etiNom_->setMinimumWidth(260);
    etiNom_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cmdChoisir_ = Nomme(new QPushButton(grpSelection_), "CmdChoisir");
    lblDepart_->setBuddy(cmdChoisir_);
    collateraux_ = Nomme(new QCheckBox(grpSelection_), "ChkCollateraux");
    cmdSelection_ = Nomme(new QPushButton(grpSelection_), "CmdSelection");
    cmdListe_ = Nomme(new QPushButton(grpSelection_), "CmdListe");
    cmdListe_->setCheckable(true);
    cmdEfface_ = Nomme(new QPushButton(grpSelection_), "CmdEfface");
    lblFiche_ = Nomme(new QLabel(grpSelection_), "LblFiche");

    panneauListe_ = new QWidget(grpSelection_);
    liste_ = Nomme(new QListWidget(panneauListe_), "LstSelection");
    liste_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    liste_->setMinimumHeight(180);
    cmdInclure_ = Nomme(new QPushButton(panneauListe_), "CmdInclure");
    cmdExclure_ = Nomme(new QPushButton(panneauListe_), "CmdExclure");
    {
        auto* boutons = new QVBoxLayout;
        boutons->addWidget(cmdInclure_);
        boutons->addWidget(cmdExclure_);
        boutons->addStretch(1);
        auto* l = new QHBoxLayout(panneauListe_);
        l->setContentsMargins(0, 0, 0, 0);
        l->addWidget(liste_, 1);
        l->addLayout(boutons);
    }
    panneauListe_->hide();

    auto* gs = new QGridLayout(grpSelection_);
    auto* walks = new QHBoxLayout;
    walks->addWidget(optDesc_);
    walks->addWidget(optAsc_);
    walks->addWidget(optTout_);
    walks->addStretch(1);
    gs->addLayout(walks, 0, 0, 1, 3);
    gs->addWidget(lblDepart_, 1, 0);
    gs->addWidget(etiNom_, 1, 1);
    gs->addWidget(cmdChoisir_, 1, 2);
    gs->addWidget(collateraux_, 2, 0, 1, 3);
    auto* actions = new QHBoxLayout;
    actions->addWidget(cmdSelection_);
    actions->addWidget(cmdListe_);
    actions->addWidget(cmdEfface_);
    actions->addSpacing(12);
    actions->addWidget(lblFiche_, 1);
    gs->addLayout(actions, 3, 0, 1, 3);
    gs->addWidget(panneauListe_, 4, 0, 1, 3);
    gs->setColumnStretch(1, 1);

    grpFormat_ = new QGroupBox(this);
    gedcom_ = Nomme(new QRadioButton(grpFormat_), "ChxGedcom");
    svr_ = Nomme(new QRadioButton(grpFormat_), "ChxSvr");
    gedcom_->setChecked(true);
    lblJeu_ = new QLabel(grpFormat_);
    jeu_ = Nomme(new QComboBox(grpFormat_), "LstJeu");
    for (const Jeu& j : kJeux) jeu_->addItem(QString::fromLatin1(j.nom), QChar(j.code));
    lblJeu_->setBuddy(jeu_);
    liens_ = Nomme(new QCheckBox(grpFormat_), "ChkLiens");
    evenements_ = Nomme(new QCheckBox(grpFormat_), "ChkEvenements");
    documents_ = Nomme(new QCheckBox(grpFormat_), "ChkDocuments");
    auto* gf = new QGridLayout(grpFormat_);
    gf->addWidget(gedcom_, 0, 0);
    auto* jeu = new QHBoxLayout;
    jeu->addWidget(lblJeu_);
    jeu->addWidget(jeu_);
    jeu->addStretch(1);
    gf->addLayout(jeu, 0, 1);
    auto* extras = new QVBoxLayout;
    extras->setContentsMargins(24, 0, 0, 0);
    extras->addWidget(liens_);
    extras->addWidget(evenements_);
    extras->addWidget(documents_);
    gf->addLayout(extras, 1, 0, 1, 2);
    gf->addWidget(svr_, 2, 0, 1, 2);
    gf->setColumnStretch(1, 1);

    grpOptions_ = new QGroupBox(this);
    complet_ = Nomme(new QCheckBox(grpOptions_), "ChkComplet");
    sans1900_ = Nomme(new QCheckBox(grpOptions_), "Chk1900");
    auto* go = new QVBoxLayout(grpOptions_);
    go->addWidget(complet_);
    go->addWidget(sans1900_);
    go->addStretch(1);

    cmdLancer_ = Nomme(new QPushButton(this), "CmdLancer");
    cmdFermer_ = Nomme(new QPushButton(this), "CmdFermer");
    auto* bas = new QHBoxLayout;
    bas->addStretch(1);
    bas->addWidget(cmdLancer_);
    bas->addWidget(cmdFermer_);

    auto* l = new QVBoxLayout(this);
    l->addWidget(grpSelection_);
    auto* milieu = new QHBoxLayout;
    milieu->addWidget(grpFormat_, 3);
    milieu->addWidget(grpOptions_, 2);
    l->addLayout(milieu);
    l->addStretch(1);
    l->addLayout(bas);

    QWidget* ordre[] = {optDesc_,     optAsc_,   optTout_,    cmdChoisir_, collateraux_,
                        cmdSelection_, cmdListe_, cmdEfface_,  liste_,      cmdInclure_,
                        cmdExclure_,  gedcom_,   jeu_,        liens_,      evenements_,
                        documents_,   svr_,      complet_,    sans1900_,   cmdLancer_,
                        cmdFermer_};
    for (std::size_t i = 1; i < std::size(ordre); ++i) setTabOrder(ordre[i - 1], ordre[i]);

    connect(cmdChoisir_, &QPushButton::clicked, this, [this] {
        if (logique_.ChoisitPersonne()) Montre();
    });
    connect(cmdSelection_, &QPushButton::clicked, this, [this] {
        LitControles();
        logique_.CmdSelection();
        Montre();
    });
    connect(cmdListe_, &QPushButton::toggled, this, [this](bool voir) {
        panneauListe_->setVisible(voir);
        Montre();
        // The window grows to hold the list, and shrinks back without it.
        if (QWidget* cadre = parentWidget()) {
            layout()->activate();
            const QSize voulu = cadre->sizeHint();
            cadre->resize(cadre->width() > voulu.width() ? cadre->width() : voulu.width(),
                          voulu.height());
        }
    });
    connect(cmdEfface_, &QPushButton::clicked, this, [this] {
        logique_.Efface();
        Montre();
    });
    connect(cmdInclure_, &QPushButton::clicked, this, [this] {
        const std::uint32_t n =
            c_.logique.services().selecteur.ChoisitPersonne(logique_.Personne(), kExporterTitre);
        if (n) logique_.Inclut(n);
        Montre();
    });
    connect(cmdExclure_, &QPushButton::clicked, this, [this] {
        for (QListWidgetItem* it : liste_->selectedItems())
            logique_.Exclut(it->data(Qt::UserRole).toUInt());
        Montre();
    });
    connect(liste_, &QListWidget::itemActivated, this, [this](QListWidgetItem* it) {
        c_.logique.Aller(it->data(Qt::UserRole).toUInt());
    });
    connect(gedcom_, &QRadioButton::toggled, this, [this] { Montre(); });
    connect(cmdLancer_, &QPushButton::clicked, this, [this] { Lance(); });
    connect(cmdFermer_, &QPushButton::clicked, this, [this] { Ferme(); });

    Retraduit();
    Montre();
}

void FrmExporterQt::Retraduit() {
    setWindowTitle(M(kExporterTitre));
    grpSelection_->setTitle(M(kSelection));
    optDesc_->setText(M(kDescendants));
    optAsc_->setText(M(kAscendants));
    optTout_->setText(M(kTout));
    lblDepart_->setText(M(kDepart));
    cmdChoisir_->setText(M(kChoisir));
    collateraux_->setText(M(kCollateraux));
    cmdSelection_->setText(M(kSelectionner));
    cmdListe_->setText(M(kListe));
    cmdEfface_->setText(M(kEffacer));
    cmdInclure_->setText(M(kInclure));
    cmdExclure_->setText(M(kExclure));
    liste_->setToolTip(M(kSelectionnees));
    grpFormat_->setTitle(M(kFormat));
    gedcom_->setText(M(kGedcom));
    svr_->setText(M(kSvr));
    lblJeu_->setText(M(kJeu));
    liens_->setText(M(kLiens));
    evenements_->setText(M(kEvenements));
    documents_->setText(M(kDocuments));
    grpOptions_->setTitle(M(kOptions));
    complet_->setText(M(kComplet));
    sans1900_->setText(M(kSans1900));
    cmdLancer_->setText(M(kLancer));
    cmdFermer_->setText(M(kFermer));
    Montre();
}

void FrmExporterQt::PersonneChangee() {
    logique_.DefinitPersonne(c_.logique.PersonneEnCours());
    Montre();
}

void FrmExporterQt::RecoitGlisser(char genre, std::uint32_t numero) {
    if (genre != 'I') return;
    logique_.DefinitPersonne(numero);
    Montre();
}

void FrmExporterQt::LitControles() {
    logique_.choix = optAsc_->isChecked()    ? FrmExporter::Choix::Ascendants
                     : optTout_->isChecked() ? FrmExporter::Choix::Tout
                                             : FrmExporter::Choix::Descendants;
    logique_.format = svr_->isChecked() ? FrmExporter::Format::Svr : FrmExporter::Format::Gedcom;
    logique_.jeu = jeu_->currentData().toChar().toLatin1();
    logique_.liens = liens_->isChecked();
    logique_.evenements = evenements_->isChecked();
    logique_.documents = documents_->isChecked();
    logique_.collateraux = collateraux_->isChecked();
    logique_.complet = complet_->isChecked();
    logique_.sans1900 = sans1900_->isChecked();
}

void FrmExporterQt::Montre() {
    LitControles();
    const std::string nom = logique_.EtiNom();
    etiNom_->setText(Q(nom));
    lblFiche_->setText(Q(logique_.LblFiche()));
    const bool base = c_.logique.base() != nullptr;
    cmdSelection_->setEnabled(base && (optTout_->isChecked() || logique_.Personne() != 0));
    cmdChoisir_->setEnabled(base);
    cmdEfface_->setEnabled(logique_.Compte() > 0);
    cmdLancer_->setEnabled(logique_.LancerPossible());
    const bool gedcom = logique_.OptionsGedcom();
    for (QWidget* w : {static_cast<QWidget*>(jeu_), static_cast<QWidget*>(lblJeu_),
                       static_cast<QWidget*>(liens_), static_cast<QWidget*>(evenements_),
                       static_cast<QWidget*>(documents_)})
        w->setEnabled(gedcom);
    complet_->setEnabled(!gedcom);
    if (panneauListe_->isVisible()) RemplitListe();
}

void FrmExporterQt::RemplitListe() {
    liste_->clear();
    Base* b = c_.logique.base();
    if (!b) return;
    for (std::uint32_t n : logique_.CmdListe()) {
        auto* it = new QListWidgetItem(Q(b->NomDates(n)), liste_);
        it->setData(Qt::UserRole, n);
    }
    cmdExclure_->setEnabled(liste_->count() > 0);
}

void FrmExporterQt::Lance() {
    LitControles();
    if (logique_.CmdLancer()) Ferme();
    else Montre();
}

void FrmExporterQt::Ferme() { (parentWidget() ? parentWidget() : static_cast<QWidget*>(this))->close(); }

void FrmExporterQt::keyPressEvent(QKeyEvent* e) {
    if ((e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) && cmdLancer_->isEnabled() &&
        !liste_->hasFocus()) {
        Lance();
        return;
    }
    if (e->key() == Qt::Key_Escape) {
        Ferme();
        return;
    }
    FormulaireQt::keyPressEvent(e);
}

namespace {
EnregistrementFormulaire enr("FrmExporter",
                             [](ContexteQt& c) { return new FrmExporterQt(c); });
} // namespace

} // namespace sylvane
