#include "app/frm_graphique.h"

#include "app/frm_impression.h"
#include "app/texte_qt.h"
#include "text/messages.h"
#include "ui/mdiform1.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

namespace sylvane {

namespace {

// Captions of the window.
enum : int {
    kTitre = 4100,
    kType = 4101,
    kAscendants = 4102,
    kDescendants = 4103,
    kMixte = 4104,
    kGenerations = 4105,
    kCouleurs = 4106,
    kFeuille = 4107,
    kPrecedente = 4108,
    kSuivante = 4109,
    kReduire = 4110,
    kAgrandir = 4111,
    kImprimer = 4112,
    kPdf = 4113,
    kFiltrePdf = 4114,
    kSansGraphe = 4115,
};

} // namespace

// --- The window -------------------------------------------------------------

FrmGraphiqueQt::FrmGraphiqueQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(systemeReel()) {
    lblType_ = new QLabel(this);
    type_ = new QComboBox(this);
    lblType_->setBuddy(type_);
    lblGenerations_ = new QLabel(this);
    generations_ = new QSpinBox(this);
    generations_->setRange(1, 99);
    generations_->setValue(logique_.generations);
    lblGenerations_->setBuddy(generations_);
    couleur_ = new QCheckBox(this);
    lblDirection_ = new QLabel(this);
    direction_ = new QComboBox(this);
    direction_->addItems({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2"),
                          QStringLiteral("3")});
    lblDirection_->setBuddy(direction_);
    detaille_ = new QCheckBox(this);
    lblFeuillesH_ = new QLabel(this);
    lblFeuillesV_ = new QLabel(this);
    feuillesH_ = new QSpinBox(this);
    feuillesV_ = new QSpinBox(this);
    for (QSpinBox* f : {feuillesH_, feuillesV_}) {
        // 0 shows "auto": the count is chosen from the chart.
        f->setRange(0, kFeuillesMax);
        f->setSpecialValueText(QStringLiteral("auto"));
    }
    lblFeuillesH_->setBuddy(feuillesH_);
    lblFeuillesV_->setBuddy(feuillesV_);
    apercu_ = new QPushButton(this);
    imprimer_ = new QPushButton(this);
    pdf_ = new QPushButton(this);
    Feuilletage f = FeuilletageDe(logique_);
    f.papier = [this] { return logique_.Plan().geo.papier; };
    f.position = [this] { return std::pair{logique_.Ligne(), logique_.Colonne()}; };
    f.pret = [this] { return logique_.Pret() && c_.logique.base(); };
    // The template is read for the sheet in course alone.
    f.dessine = [this](SurfaceQt& s) {
        ImprimePages(systemeReel(), logique_.Gabarit(), s,
                     logique_.Options(*c_.logique.base(), c_.logique.app().parametres(),
                                      Message(kFeuille)));
    };
    canevas_ = new CanevasPages(std::move(f), metrique_, this);
    canevas_->QuandChange([this] { Montre(); });

    auto* options = new QHBoxLayout;
    for (QWidget* w : std::initializer_list<QWidget*>{lblType_, type_, lblGenerations_,
                                                      generations_, couleur_})
        options->addWidget(w);
    options->addStretch();
    for (QWidget* w : std::initializer_list<QWidget*>{apercu_, imprimer_, pdf_})
        options->addWidget(w);
    auto* options2 = new QHBoxLayout;
    for (QWidget* w : std::initializer_list<QWidget*>{lblDirection_, direction_, detaille_,
                                                      lblFeuillesH_, feuillesH_, lblFeuillesV_,
                                                      feuillesV_})
        options2->addWidget(w);
    options2->addStretch();
    auto* tout = new QVBoxLayout(this);
    // Its rows of options stay whole: a narrow area scrolls rather than
    // cut their texts.
    tout->setSizeConstraint(QLayout::SetMinimumSize);
    tout->addLayout(options);
    tout->addLayout(options2);
    tout->addWidget(canevas_, 1);

    connect(type_, &QComboBox::activated, this, [this](int i) {
        logique_.genre = static_cast<GenreGraphe>(i);
        Redessine();
    });
    connect(generations_, &QSpinBox::editingFinished, this, [this] {
        if (generations_->value() == logique_.generations) return;
        logique_.generations = generations_->value();
        Redessine();
    });
    connect(couleur_, &QCheckBox::toggled, this, [this](bool v) {
        logique_.couleur = v;
        canevas_->page()->update();
    });
    connect(direction_, &QComboBox::activated, this, [this](int i) {
        logique_.direction = i;
        Redessine();
    });
    connect(detaille_, &QCheckBox::toggled, this, [this](bool v) {
        logique_.detaille = v;
        Redessine();
    });
    for (QSpinBox* f : {feuillesH_, feuillesV_})
        connect(f, &QSpinBox::editingFinished, this, [this] {
            const int h = feuillesH_->value() ? feuillesH_->value() : 99;
            const int v = feuillesV_->value() ? feuillesV_->value() : 99;
            if (h == logique_.feuillesH && v == logique_.feuillesV) return;
            logique_.feuillesH = h;
            logique_.feuillesV = v;
            Redessine();
        });
    connect(apercu_, &QPushButton::clicked, this, [this] {
        Base* b = c_.logique.base();
        if (!logique_.Pret() || !b) return;
        // The preview draws the template of this window, which stays
        // until the window draws another.
        DocumentApercu d;
        d.titre = A(windowTitle());
        d.papier = logique_.Plan().geo.papier;
        d.dessine = [this, b](Surface& s) {
            return ImprimePages(systemeReel(), logique_.Gabarit(), s,
                                logique_.Options(*b, c_.logique.app().parametres(),
                                                 Message(kFeuille)));
        };
        ApercuTransmis() = std::move(d);
        c_.logique.services().fenetres.Ouvre("FrmPrevisualisation");
    });
    connect(imprimer_, &QPushButton::clicked, this, [this] { Imprime(); });
    connect(pdf_, &QPushButton::clicked, this, [this] {
        const auto chemin = c_.logique.services().fichiers.Enregistrer(
            kPdf, Message(kFiltrePdf),
            c_.logique.app().parametres().DossierTravail() +
                (c_.logique.base() ? c_.logique.base()->Chemins().titre : std::string()) + ".pdf");
        if (chemin) SauvePdf(CheminQt(*chemin));
    });
    Retraduit();
    Redessine();
    resize(900, 700);
}

void FrmGraphiqueQt::Retraduit() {
    setWindowTitle(M(kTitre));
    lblType_->setText(M(kType));
    const int i = type_->currentIndex();
    type_->clear();
    type_->addItems({M(kAscendants), M(kDescendants), M(kMixte), M(msg_impression::GrapheMixteCouple)});
    type_->setCurrentIndex(std::max(i, 0));
    lblGenerations_->setText(M(kGenerations));
    couleur_->setText(M(kCouleurs));
    lblDirection_->setText(M(msg_impression::Direction));
    detaille_->setText(M(msg_impression::Detaille));
    lblFeuillesH_->setText(M(msg_impression::FeuillesH));
    lblFeuillesV_->setText(M(msg_impression::FeuillesV));
    apercu_->setText(M(msg_impression::Apercu));
    canevas_->precedente()->setText(M(kPrecedente));
    canevas_->suivante()->setText(M(kSuivante));
    canevas_->reduire()->setText(M(kReduire));
    canevas_->agrandir()->setText(M(kAgrandir));
    imprimer_->setText(M(kImprimer));
    pdf_->setText(M(kPdf));
    Montre();
}

void FrmGraphiqueQt::PersonneChangee() { Redessine(); }

void FrmGraphiqueQt::Redessine() {
    Base* b = c_.logique.base();
    if (b) {
        try {
            logique_.Dessine(*b, c_.logique.app().parametres(), c_.logique.PersonneEnCours(),
                             metrique_);
        } catch (const std::exception& e) {
            logique_.Oublie();
            c_.logique.services().boites.Texte(e.what());
        }
    } else {
        logique_.Oublie();
    }
    Montre();
}

void FrmGraphiqueQt::Montre() {
    const bool pret = logique_.Pret();
    canevas_->legende()->setText(pret ? MT(kFeuille) + QStringLiteral(" %1/%2  (%3 / %4)")
                                                .arg(logique_.Ligne())
                                                .arg(logique_.Colonne())
                                                .arg(logique_.Rang())
                                                .arg(logique_.NombreFeuilles())
                           : MT(kSansGraphe));
    canevas_->precedente()->setEnabled(pret && logique_.Rang() > 1);
    canevas_->suivante()->setEnabled(pret && logique_.Rang() < logique_.NombreFeuilles());
    imprimer_->setEnabled(pret);
    pdf_->setEnabled(pret);
    apercu_->setEnabled(pret);
    canevas_->Ajuste();
}

bool FrmGraphiqueQt::SauvePdf(const QString& chemin) {
    Base* b = c_.logique.base();
    if (!logique_.Pret() || !b) return false;
    try {
        return EcritPdf(systemeReel(), logique_.Gabarit(), CheminInterne(chemin),
                        logique_.Options(*b, c_.logique.app().parametres(), Message(kFeuille)),
                        metrique_) == FinPages::Termine;
    } catch (const std::exception& e) {
        c_.logique.services().boites.Texte(e.what());
        return false;
    }
}

void FrmGraphiqueQt::Imprime() {
    Base* b = c_.logique.base();
    if (!logique_.Pret() || !b) return;
    QPrinter imprimante(QPrinter::HighResolution);
    const Papier& papier = logique_.Plan().geo.papier;
    imprimante.setPageSize(QPageSize(QSizeF(papier.largeur / kTwipsParPoint,
                                            papier.hauteur / kTwipsParPoint),
                                     QPageSize::Point));
    imprimante.setFullPage(true);
    QPrintDialog d(&imprimante, this);
    if (d.exec() != QDialog::Accepted) return;
    QPainter p(&imprimante);
    SurfaceQt s(p, metrique_, imprimante.resolution() / 1440.0);
    s.Pagine(imprimante);
    try {
        ImprimePages(systemeReel(), logique_.Gabarit(), s,
                     logique_.Options(*b, c_.logique.app().parametres(), Message(kFeuille)));
    } catch (const std::exception& e) {
        c_.logique.services().boites.Texte(e.what());
    }
}

static EnregistrementFormulaire enr("FrmGraphisme",
                                    [](ContexteQt& c) { return new FrmGraphiqueQt(c); });

} // namespace sylvane
