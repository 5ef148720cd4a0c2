#include "app/frm_impression.h"

#include "app/texte_qt.h"
#include "text/messages.h"
#include "ui/frm_listes.h"
#include "ui/mdiform1.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSpinBox>
#include <QVBoxLayout>

namespace sylvane {

using namespace msg_impression;

namespace {

// The printer's page as the shared settings give it, the whole sheet
// being ours: the page head is placed from the paper's edge.
void PreparePage(QPrinter& imprimante, const sylvane::Papier& papier) {
    const bool paysage = papier.largeur > papier.hauteur;
    const double l = static_cast<double>(paysage ? papier.hauteur : papier.largeur);
    const double h = static_cast<double>(paysage ? papier.largeur : papier.hauteur);
    imprimante.setPageSize(
        QPageSize(QSizeF(l / kTwipsParPoint, h / kTwipsParPoint), QPageSize::Point));
    imprimante.setPageOrientation(paysage ? QPageLayout::Landscape : QPageLayout::Portrait);
    imprimante.setFullPage(true);
}

} // namespace

bool ChoisitImprimante(QPrinter& imprimante, QWidget* parent) {
    PreparePage(imprimante, ReglagesCourants().Feuille());
    QPrintDialog d(&imprimante, parent);
    return d.exec() == QDialog::Accepted;
}

void ImprimeDocument(QPrinter& imprimante, const MetriqueQt& m,
                     const std::function<FinPages(Surface&)>& dessine) {
    QPainter p(&imprimante);
    SurfaceQt s(p, m, imprimante.resolution() / 1440.0);
    s.Pagine(imprimante);
    // A stop leaves no half-printed document behind.
    if (dessine(s) != FinPages::Termine) imprimante.abort();
}

// --- FrmImpression --------------------------------------------------------------------

FrmImpressionQt::FrmImpressionQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique) {
    logique_.Charge();
    personne_ = new QLabel(this);
    choixPersonne_ = new QPushButton(this);

    boiteType_ = new QGroupBox(this);
    auto* lt = new QVBoxLayout(boiteType_);
    auto* groupeType = new QButtonGroup(this);
    for (int i = 0; i < 3; ++i) {
        types_[static_cast<std::size_t>(i)] = new QRadioButton(boiteType_);
        groupeType->addButton(types_[static_cast<std::size_t>(i)], i);
        lt->addWidget(types_[static_cast<std::size_t>(i)]);
    }
    lt->addStretch();
    // The branch tables have a window of their own.
    types_[0]->setEnabled(false);

    boiteChoix_ = new QGroupBox(this);
    auto* lc = new QVBoxLayout(boiteChoix_);
    groupeChoix_ = new QButtonGroup(this);
    for (int i = 0; i < 4; ++i) {
        choix_[static_cast<std::size_t>(i)] = new QRadioButton(boiteChoix_);
        groupeChoix_->addButton(choix_[static_cast<std::size_t>(i)], i);
        lc->addWidget(choix_[static_cast<std::size_t>(i)]);
    }
    lblNiveaux_ = new QLabel(boiteChoix_);
    niveaux_ = new QSpinBox(boiteChoix_);
    niveaux_->setRange(1, 99);
    lblNiveaux_->setBuddy(niveaux_);
    lblSequence_ = new QLabel(boiteChoix_);
    sequence_ = new QComboBox(boiteChoix_);
    lblSequence_->setBuddy(sequence_);
    lblDirection_ = new QLabel(boiteChoix_);
    direction_ = new QComboBox(boiteChoix_);
    direction_->addItems({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2"),
                          QStringLiteral("3")});
    lblDirection_->setBuddy(direction_);
    implexe_ = new QCheckBox(boiteChoix_);
    detaille_ = new QCheckBox(boiteChoix_);
    auto* g = new QGridLayout;
    g->addWidget(lblNiveaux_, 0, 0);
    g->addWidget(niveaux_, 0, 1);
    g->addWidget(lblSequence_, 1, 0);
    g->addWidget(sequence_, 1, 1);
    g->addWidget(lblDirection_, 2, 0);
    g->addWidget(direction_, 2, 1);
    lc->addLayout(g);
    auto* options = new QHBoxLayout;
    options->addWidget(implexe_);
    options->addWidget(detaille_);
    options->addStretch();
    lc->addLayout(options);
    lc->addStretch();

    boiteContenu_ = new QGroupBox(this);
    auto* lco = new QGridLayout(boiteContenu_);
    auto* groupeContenu = new QButtonGroup(this);
    for (int i = 0; i < 3; ++i) {
        contenus_[static_cast<std::size_t>(i)] = new QRadioButton(boiteContenu_);
        groupeContenu->addButton(contenus_[static_cast<std::size_t>(i)], i);
        lco->addWidget(contenus_[static_cast<std::size_t>(i)], i, 0);
    }
    for (int i = 0; i < kSections; ++i) {
        sections_[static_cast<std::size_t>(i)] = new QCheckBox(boiteContenu_);
        lco->addWidget(sections_[static_cast<std::size_t>(i)], 3 + i / 3, i % 3);
    }
    conjoints_ = new QCheckBox(boiteContenu_);
    evenements_ = new QCheckBox(boiteContenu_);
    documents_ = new QCheckBox(boiteContenu_);
    couple_ = new QCheckBox(boiteContenu_);
    lco->addWidget(conjoints_, 0, 1);
    lco->addWidget(evenements_, 1, 1);
    lco->addWidget(documents_, 2, 1);
    // Three columns keep the form within a small screen's height.
    lco->addWidget(couple_, 0, 2);

    boiteDestination_ = new QGroupBox(this);
    auto* ld = new QHBoxLayout(boiteDestination_);
    imprimante_ = new QRadioButton(boiteDestination_);
    pdf_ = new QRadioButton(boiteDestination_);
    visualiseur_ = new QCheckBox(boiteDestination_);
    ld->addWidget(imprimante_);
    ld->addWidget(visualiseur_);
    ld->addWidget(pdf_);
    ld->addStretch();
    imprimante_->setChecked(true);

    options_ = new QPushButton(this);
    ok_ = new QPushButton(this);
    ok_->setDefault(true);
    annuler_ = new QPushButton(this);

    auto* haut = new QHBoxLayout;
    haut->addWidget(personne_, 1);
    haut->addWidget(choixPersonne_);
    auto* milieu = new QHBoxLayout;
    milieu->addWidget(boiteType_);
    milieu->addWidget(boiteChoix_, 1);
    auto* bas = new QHBoxLayout;
    bas->addWidget(options_);
    bas->addStretch();
    bas->addWidget(ok_);
    bas->addWidget(annuler_);
    auto* tout = new QVBoxLayout(this);
    tout->addLayout(haut);
    tout->addLayout(milieu);
    tout->addWidget(boiteContenu_);
    tout->addWidget(boiteDestination_);
    tout->addLayout(bas);

    connect(choixPersonne_, &QPushButton::clicked, this, [this] {
        Lit();
        logique_.ChoisitPersonne();
        Montre();
    });
    connect(groupeType, &QButtonGroup::idClicked, this, [this](int i) {
        Lit();
        logique_.type = static_cast<TypeImpression>(i);
        logique_.choix = -1;
        Montre();
    });
    connect(groupeContenu, &QButtonGroup::idClicked, this, [this] {
        Lit();
        Montre();
    });
    connect(groupeChoix_, &QButtonGroup::idClicked, this, [this] {
        Lit();
        Montre();
    });
    connect(options_, &QPushButton::clicked, this, [this] {
        c_.logique.services().fenetres.Ouvre(logique_.type == TypeImpression::Graphe ? "FrmPrinter"
                                                                                     : "FrmPrinter1");
    });
    connect(ok_, &QPushButton::clicked, this, [this] { Valide(); });
    connect(annuler_, &QPushButton::clicked, this, [this] {
        if (parentWidget()) parentWidget()->close();
        else close();
    });
    // The area would squeeze the fields of the groups, and the choices show
    // more or fewer of them: the form never goes below what those shown need
    // (the area scrolls when it is the smaller).
    tout->setSizeConstraint(QLayout::SetMinimumSize);
    Retraduit();
}

void FrmImpressionQt::Retraduit() {
    setWindowTitle(M(Titre));
    choixPersonne_->setText(M(ChoixPersonne));
    boiteType_->setTitle(MT(TypeRapport));
    types_[0]->setText(M(Tableau));
    types_[1]->setText(M(Fiches));
    types_[2]->setText(M(Graphe));
    lblNiveaux_->setText(M(Niveaux));
    lblSequence_->setText(MT(Sequence));
    const int seq = sequence_->currentIndex();
    sequence_->clear();
    sequence_->addItems({MT(Aucune), MT(Generation), MT(AnneeNaissance), MT(Arborescence)});
    sequence_->setCurrentIndex(std::max(seq, 0));
    lblDirection_->setText(M(Direction));
    implexe_->setText(M(Implexe));
    detaille_->setText(M(Detaille));
    boiteContenu_->setTitle(MT(msg_impression::Contenu));
    contenus_[0]->setText(M(ListeRapide));
    contenus_[1]->setText(M(Completes));
    contenus_[2]->setText(M(Partielles));
    const std::array<int, kSections> sections = {592, 666, 579, 910, Notes, 926, 645, 643};
    for (std::size_t i = 0; i < sections_.size(); ++i) sections_[i]->setText(MT(sections[i]));
    conjoints_->setText(M(Conjoints));
    evenements_->setText(M(Evenements));
    documents_->setText(M(Documents));
    couple_->setText(M(Couples));
    boiteDestination_->setTitle(MT(Destination));
    imprimante_->setText(M(msg_impression::Imprimante));
    pdf_->setText(M(Pdf));
    visualiseur_->setText(M(Visualiseur));
    options_->setText(M(Options) + QStringLiteral("..."));
    ok_->setText(M(Ok));
    annuler_->setText(MT(Annuler));
    Montre();
}

void FrmImpressionQt::RecoitGlisser(char genre, std::uint32_t numero) {
    if (genre != 'I') return;
    Lit();
    logique_.DefinitPersonne(numero);
    Montre();
}

void FrmImpressionQt::PersonneChangee() {
    if (ParenteTransmise().liste.empty()) return;
    Lit();
    logique_.Charge();
    Montre();
}

// The controls into the logic.
void FrmImpressionQt::Lit() {
    FrmImpression& l = logique_;
    l.choix = groupeChoix_->checkedId();
    l.niveaux = niveaux_->value();
    if (l.type == TypeImpression::Graphe) l.genAsc = l.genDesc = niveaux_->value();
    l.sequence = sequence_->currentIndex();
    l.implexe = implexe_->isChecked();
    l.detaille = detaille_->isChecked();
    l.direction = direction_->currentIndex();
    for (std::size_t i = 0; i < contenus_.size(); ++i)
        if (contenus_[i]->isChecked()) l.contenu = static_cast<sylvane::Contenu>(i);
    for (std::size_t i = 0; i < sections_.size(); ++i) l.partielles[i] = sections_[i]->isChecked();
    l.conjoints = conjoints_->isChecked();
    l.evenements = evenements_->isChecked();
    l.documents = documents_->isChecked();
    l.couple = couple_->isChecked();
    l.visualiseur = visualiseur_->isChecked();
}

// The logic into the controls.
void FrmImpressionQt::Montre() {
    const FrmImpression& l = logique_;
    personne_->setText(Q(l.LibellePersonne()));
    types_[static_cast<std::size_t>(l.type)]->setChecked(true);
    const std::vector<std::string> choix = l.Choix();
    groupeChoix_->setExclusive(false);
    for (std::size_t i = 0; i < choix_.size(); ++i) {
        choix_[i]->setVisible(i < choix.size());
        if (i < choix.size()) choix_[i]->setText(Q(choix[i]));
        choix_[i]->setChecked(static_cast<int>(i) == l.choix);
    }
    groupeChoix_->setExclusive(true);
    boiteChoix_->setTitle(types_[static_cast<std::size_t>(l.type)]->text().remove(QLatin1Char('&')));
    const bool graphe = l.type == TypeImpression::Graphe;
    niveaux_->setValue(graphe ? l.genAsc : l.niveaux);
    sequence_->setCurrentIndex(l.sequence);
    sequence_->setEnabled(!graphe);
    lblSequence_->setEnabled(!graphe);
    direction_->setCurrentIndex(l.direction);
    direction_->setEnabled(graphe);
    lblDirection_->setEnabled(graphe);
    detaille_->setChecked(l.detaille);
    detaille_->setEnabled(graphe);
    implexe_->setChecked(l.implexe);
    boiteContenu_->setEnabled(!graphe);
    contenus_[static_cast<std::size_t>(l.contenu)]->setChecked(true);
    for (std::size_t i = 0; i < sections_.size(); ++i) {
        sections_[i]->setChecked(l.partielles[i]);
        sections_[i]->setEnabled(l.contenu == Contenu::Partielles);
    }
    conjoints_->setChecked(l.conjoints);
    evenements_->setChecked(l.evenements);
    documents_->setChecked(l.documents);
    couple_->setChecked(l.couple);
    visualiseur_->setChecked(l.visualiseur);
    visualiseur_->setEnabled(imprimante_->isChecked());
}

bool FrmImpressionQt::VersPdf(const TravailImpression& t) {
    Base* b = c_.logique.base();
    const auto chemin = c_.logique.services().fichiers.Enregistrer(
        Pdf, Message(FiltrePdf),
        c_.logique.app().parametres().DossierTravail() + (b ? b->Chemins().titre : "") + ".pdf");
    if (!chemin) return false;
    try {
        return EcritPdfPages(c_.logique.app().fs(), *chemin,
                             t.graphe ? t.pages.papier : t.options.papier, metrique_,
                             [&](SurfaceQt& s) {
                                 return logique_.Execute(t, s) == FinRapport::Termine
                                            ? FinPages::Termine
                                            : FinPages::Arrete;
                             }) == FinPages::Termine;
    } catch (const std::exception& e) {
        c_.logique.services().boites.Texte(e.what());
        return false;
    }
}

void FrmImpressionQt::Valide() {
    Lit();
    std::optional<TravailImpression> t;
    try {
        t = logique_.Prepare(metrique_);
    } catch (const std::exception& e) {
        c_.logique.services().boites.Texte(e.what());
        return;
    }
    if (!t) return;
    if (pdf_->isChecked()) {
        VersPdf(*t);
        if (t->graphe) c_.logique.app().fs().supprimer(t->gabarit);
        return;
    }
    if (logique_.visualiseur) {
        ApercuTransmis() = logique_.Apercu(*t);
        c_.logique.services().fenetres.Ouvre("FrmPrevisualisation");
        return;
    }
    QPrinter imprimante(QPrinter::HighResolution);
    if (ChoisitImprimante(imprimante, this))
        ImprimeDocument(imprimante, metrique_, [&](Surface& s) {
            return logique_.Execute(*t, s) == FinRapport::Termine ? FinPages::Termine
                                                                   : FinPages::Arrete;
        });
    if (t->graphe) c_.logique.app().fs().supprimer(t->gabarit);
}

// --- The preview ------------------------------------------------------------------------

FrmPrevisualisationQt::FrmPrevisualisationQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique.app().fs()) {
    logique_.Charge(std::exchange(ApercuTransmis(), DocumentApercu{}), metrique_);
    Feuilletage f = FeuilletageDe(logique_);
    f.papier = [this] { return logique_.Document().papier; };
    f.position = [this] { return logique_.Position(); };
    f.pret = [this] { return logique_.NombrePages() > 0 && logique_.Document().dessine; };
    f.dessine = [this](SurfaceQt& s) { logique_.Document().dessine(s); };
    canevas_ = new CanevasPages(std::move(f), metrique_, this);
    canevas_->QuandChange([this] { Montre(); });
    imprimer_ = new QPushButton(this);
    pdf_ = new QPushButton(this);
    image_ = new QPushButton(this);
    quitter_ = new QPushButton(this);
    for (QPushButton* b : {imprimer_, pdf_, image_, quitter_}) canevas_->AjouteBouton(b);
    auto* tout = new QVBoxLayout(this);
    // Its row of buttons stays whole: a narrow area scrolls rather than cut
    // their texts.
    tout->setSizeConstraint(QLayout::SetMinimumSize);
    tout->addWidget(canevas_, 1);

    connect(imprimer_, &QPushButton::clicked, this, [this] {
        QPrinter imprimante(QPrinter::HighResolution);
        if (ChoisitImprimante(imprimante, this))
            ImprimeDocument(imprimante, metrique_, logique_.Document().dessine);
    });
    connect(pdf_, &QPushButton::clicked, this, [this] {
        const auto chemin = c_.logique.services().fichiers.Enregistrer(
            Pdf, Message(FiltrePdf), c_.logique.app().parametres().DossierTravail() + "apercu.pdf");
        if (!chemin) return;
        try {
            EcritPdfPages(c_.logique.app().fs(), *chemin, logique_.Document().papier, metrique_,
                          [this](SurfaceQt& s) { return logique_.Document().dessine(s); });
        } catch (const std::exception& e) {
            c_.logique.services().boites.Texte(e.what());
        }
    });
    connect(image_, &QPushButton::clicked, this, [this] {
        Base* b = c_.logique.base();
        const auto chemin = c_.logique.services().fichiers.Enregistrer(
            FiltreBmp, Message(FiltreBmp),
            c_.logique.app().parametres().DossierTravail() + (b ? b->Chemins().titre : "") +
                ".bmp");
        if (chemin) SauveImage(CheminQt(*chemin));
    });
    connect(quitter_, &QPushButton::clicked, this, [this] {
        logique_.Ferme();
        if (parentWidget()) parentWidget()->close();
        else close();
    });
    Retraduit();
    resize(820, 900);
}

void FrmPrevisualisationQt::Retraduit() {
    setWindowTitle(M(Apercu) + (logique_.Document().titre.empty()
                                    ? QString()
                                    : QStringLiteral(" - ") + Q(logique_.Document().titre)));
    canevas_->precedente()->setText(M(4108));
    canevas_->suivante()->setText(M(4109));
    canevas_->reduire()->setText(M(4110));
    canevas_->agrandir()->setText(M(4111));
    imprimer_->setText(M(4112));
    pdf_->setText(M(4113));
    image_->setText(QStringLiteral("BMP..."));
    quitter_->setText(M(73));
    Montre();
}

void FrmPrevisualisationQt::PersonneChangee() {
    if (!ApercuTransmis().dessine) return;
    logique_.Charge(std::exchange(ApercuTransmis(), DocumentApercu{}), metrique_);
    Retraduit();
}

void FrmPrevisualisationQt::Montre() {
    canevas_->legende()->setText(MT(Page) + QStringLiteral(" %1 / %2").arg(logique_.Page()).arg(logique_.NombrePages()));
    canevas_->precedente()->setEnabled(logique_.Page() > 1);
    canevas_->suivante()->setEnabled(logique_.Page() < logique_.NombrePages());
    const bool pages = logique_.NombrePages() > 0;
    imprimer_->setEnabled(pages);
    pdf_->setEnabled(pages);
    image_->setEnabled(pages);
    canevas_->Ajuste();
}

bool FrmPrevisualisationQt::SauveImage(const QString& chemin) {
    QImage im(canevas_->page()->size(), QImage::Format_RGB32);
    im.fill(Qt::white);
    canevas_->page()->render(&im);
    return im.save(chemin, "BMP");
}

// --- The print options ---------------------------------------------------------------------

FrmPrinterQt::FrmPrinterQt(ContexteQt& c, bool graphe, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(graphe) {
    const ReglagesImpression& r = logique_.Reglages();
    lblPapier_ = new QLabel(this);
    papier_ = new QComboBox(this);
    for (const FormatPapier& f : TablePapiers()) papier_->addItem(Q(f.libelle));
    papier_->setCurrentIndex(static_cast<int>(r.papier));
    lblPapier_->setBuddy(papier_);
    orientation_ = new QGroupBox(this);
    portrait_ = new QRadioButton(orientation_);
    paysage_ = new QRadioButton(orientation_);
    (r.paysage ? paysage_ : portrait_)->setChecked(true);
    auto* lo = new QHBoxLayout(orientation_);
    lo->addWidget(portrait_);
    lo->addWidget(paysage_);
    lblHorizon_ = new QLabel(this);
    lblVertical_ = new QLabel(this);
    horizon_ = new QLineEdit(QString::number(r.feuillesH), this);
    vertical_ = new QLineEdit(QString::number(r.feuillesV), this);
    for (QLineEdit* e : {horizon_, vertical_})
        e->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,3}")), e));
    lblHorizon_->setBuddy(horizon_);
    lblVertical_->setBuddy(vertical_);
    lblPolice_ = new QLabel(this);
    police_ = new QSpinBox(this);
    police_->setRange(4, 72);
    police_->setValue(r.policeMax);
    lblPolice_->setBuddy(police_);
    apercu_ = new QCheckBox(this);
    apercu_->setChecked(r.apercu);
    couleur_ = new QCheckBox(this);
    couleur_->setChecked(r.couleur);
    systeme_ = new QPushButton(this);
    ok_ = new QPushButton(this);
    ok_->setDefault(true);
    annuler_ = new QPushButton(this);

    auto* g = new QGridLayout;
    g->addWidget(lblPapier_, 0, 0);
    g->addWidget(papier_, 0, 1);
    g->addWidget(orientation_, 1, 0, 1, 2);
    g->addWidget(lblHorizon_, 2, 0);
    g->addWidget(horizon_, 2, 1);
    g->addWidget(lblVertical_, 3, 0);
    g->addWidget(vertical_, 3, 1);
    g->addWidget(lblPolice_, 4, 0);
    g->addWidget(police_, 4, 1);
    g->addWidget(apercu_, 5, 0, 1, 2);
    g->addWidget(couleur_, 6, 0, 1, 2);
    for (QWidget* w : {static_cast<QWidget*>(lblHorizon_), static_cast<QWidget*>(horizon_),
                       static_cast<QWidget*>(lblVertical_), static_cast<QWidget*>(vertical_),
                       static_cast<QWidget*>(lblPolice_), static_cast<QWidget*>(police_),
                       static_cast<QWidget*>(couleur_)})
        w->setVisible(graphe);
    auto* bas = new QHBoxLayout;
    bas->addWidget(systeme_);
    bas->addStretch();
    bas->addWidget(ok_);
    bas->addWidget(annuler_);
    auto* tout = new QVBoxLayout(this);
    tout->addLayout(g);
    tout->addLayout(bas);

    // The dialog sets the printer's paper at once: the system's page
    // set-up opens on it.
    connect(systeme_, &QPushButton::clicked, this, [this] {
        QPrinter imprimante(QPrinter::HighResolution);
        PreparePage(imprimante, PapierDeRang(static_cast<std::size_t>(papier_->currentIndex()),
                                             paysage_->isChecked()));
        QPageSetupDialog d(&imprimante, this);
        if (d.exec() != QDialog::Accepted) return;
        const int code = imprimante.pageLayout().pageSize().windowsId();
        papier_->setCurrentIndex(static_cast<int>(RangPapier(code)));
        (imprimante.pageLayout().orientation() == QPageLayout::Landscape ? paysage_ : portrait_)
            ->setChecked(true);
    });
    connect(ok_, &QPushButton::clicked, this, [this] { Valide(); });
    connect(annuler_, &QPushButton::clicked, this, [this] { Ferme(); });
    Retraduit();
}

void FrmPrinterQt::Retraduit() {
    setWindowTitle(MT(Options));
    lblPapier_->setText(M(msg_impression::Papier));
    orientation_->setTitle(MT(Orientation));
    portrait_->setText(MT(Portrait));
    paysage_->setText(MT(Paysage));
    lblHorizon_->setText(M(FeuillesH));
    lblVertical_->setText(M(FeuillesV));
    lblPolice_->setText(M(PoliceMax));
    apercu_->setText(M(Visualiseur));
    couleur_->setText(M(4106));
    systeme_->setText(M(msg_impression::Imprimante) + QStringLiteral("..."));
    ok_->setText(M(Ok));
    annuler_->setText(MT(Annuler));
}

bool FrmPrinterQt::Valide() {
    ReglagesImpression& r = logique_.Reglages();
    r.papier = static_cast<std::size_t>(papier_->currentIndex());
    r.paysage = paysage_->isChecked();
    r.policeMax = police_->value();
    r.apercu = apercu_->isChecked();
    r.couleur = couleur_->isChecked();
    if (!logique_.Valide(c_.logique.services().boites, A(horizon_->text()), A(vertical_->text())))
        return false;
    Ferme();
    return true;
}

void FrmPrinterQt::Ferme() {
    if (auto* d = qobject_cast<QDialog*>(window())) d->accept();
    else if (parentWidget()) parentWidget()->close();
    else close();
}

namespace {

EnregistrementFormulaire enrImpression("FrmImpression",
                                       [](ContexteQt& c) { return new FrmImpressionQt(c); });
EnregistrementFormulaire enrApercu("FrmPrevisualisation",
                                   [](ContexteQt& c) { return new FrmPrevisualisationQt(c); });
EnregistrementFormulaire enrPrinter("FrmPrinter",
                                    [](ContexteQt& c) { return new FrmPrinterQt(c, true); });
EnregistrementFormulaire enrPrinter1("FrmPrinter1",
                                     [](ContexteQt& c) { return new FrmPrinterQt(c, false); });

} // namespace

} // namespace sylvane
