#include "app/frm_image.h"

#include "app/fenetre_principale.h"
#include "app/image_qt.h"
#include "app/texte_qt.h"
#include "exchange/image_entete.h"
#include "store/base.h"
#include "ui/frm_document.h"

#include <QAction>
#include <QGuiApplication>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QResizeEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace sylvane {

bool& FrmImageQt::BoitesErreur() {
    static bool b = true;
    return b;
}

FrmImageQt::FrmImageQt(ContexteQt& c, QWidget* parent) : FormulaireQt(parent), c_(c) {
    const DemandeDocument& d = DocumentDemande();
    if (d.active) {
        document_ = d.document;
        charge_ = true;
    }
    auto* l = new QVBoxLayout(this);
    l->setContentsMargins(0, 0, 0, 0);
    barre_ = new QToolBar(this);
    ajuster_ = barre_->addAction(QString(), this, [this] { Zoom(0); });
    reel_ = barre_->addAction(QString(), this, [this] { Zoom(1); });
    plus_ = barre_->addAction(QString(), this, [this] {
        Zoom(std::min(8.0, (facteur_ > 0 ? facteur_ : vue_->pixmap().width() /
                                                           std::max(1.0, double(image_.width()))) *
                               1.25));
    });
    moins_ = barre_->addAction(QString(), this, [this] {
        Zoom(std::max(0.05, (facteur_ > 0 ? facteur_ : vue_->pixmap().width() /
                                                           std::max(1.0, double(image_.width()))) /
                                1.25));
    });
    ajuster_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_0));
    reel_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_1));
    plus_->setShortcut(QKeySequence::ZoomIn);
    moins_->setShortcut(QKeySequence::ZoomOut);
    l->addWidget(barre_);

    separation_ = new QSplitter(Qt::Horizontal, this);
    defilement_ = new QScrollArea(separation_);
    defilement_->setAlignment(Qt::AlignCenter);
    defilement_->setBackgroundRole(QPalette::Dark);
    vue_ = new QLabel(defilement_);
    vue_->setAlignment(Qt::AlignCenter);
    defilement_->setWidget(vue_);
    defilement_->setFocusPolicy(Qt::StrongFocus);
    defilement_->viewport()->installEventFilter(this);
    auto* panneau = new QWidget(separation_);
    auto* p = new QVBoxLayout(panneau);
    p->setContentsMargins(4, 4, 4, 4);
    titreEntete_ = new QLabel(panneau);
    entete_ = new QListWidget(panneau);
    titreEntete_->setBuddy(entete_);
    p->addWidget(titreEntete_);
    p->addWidget(entete_);
    separation_->addWidget(defilement_);
    separation_->addWidget(panneau);
    separation_->setStretchFactor(0, 3);
    separation_->setStretchFactor(1, 1);
    // The picture takes the room; the header panel the width of its lines.
    separation_->setSizes({sizeHint().width() - 280, 280});
    l->addWidget(separation_);
    resize(sizeHint());
}

QSize FrmImageQt::sizeHint() const {
    const QSize ecran = QGuiApplication::primaryScreen()
                            ? QGuiApplication::primaryScreen()->availableSize()
                            : QSize(1024, 768);
    return {std::min(900, ecran.width() * 3 / 4), std::min(620, ecran.height() * 3 / 4)};
}

void FrmImageQt::Retraduit() {
    using namespace msg_documents;
    ajuster_->setText(M(Ajuster));
    reel_->setText(M(TailleReelle));
    plus_->setText(M(Agrandir));
    moins_->setText(M(Reduire));
    titreEntete_->setText(M(PanneauEntete));
    if (!charge_) {
        charge_ = true;
        document_ = NumeroFormulaire(A(objectName()));
    }
    if (document_ != 0 && image_.isNull() && erreur_.isEmpty()) {
        Base* b = c_.logique.base();
        if (b != nullptr && b->PosDoc(document_) != 0)
            Montre(CheminDocument(c_.logique, b->FichierDoc(document_)), Q(b->TitreDoc(document_)));
    }
}

bool FrmImageQt::Montre(const std::string& chemin, const QString& legende) {
    setWindowTitle(legende.isEmpty() ? CheminQt(chemin) : legende);
    entete_->clear();
    const EnteteImage e = InspecteFichier(systemeReel(), chemin);
    for (const LigneEntete& ligne : e.lignes) entete_->addItem(Q(ligne.Texte()));
    if (!e.erreur.empty()) entete_->addItem(Q(e.erreur));
    ImageChargee r = ChargeImage(chemin);
    image_ = std::move(r.image);
    erreur_ = r.erreur;
    Affiche();
    if (image_.isNull()) {
        if (BoitesErreur())
            QMessageBox::warning(this, windowTitle(), QStringLiteral("Error occurred - ") + erreur_);
        return false;
    }
    return true;
}

void FrmImageQt::Zoom(double facteur) {
    facteur_ = facteur;
    Affiche();
}

void FrmImageQt::Affiche() {
    if (image_.isNull()) {
        vue_->clear();
        vue_->resize(0, 0);
        return;
    }
    QSize taille = image_.size();
    if (facteur_ <= 0) {
        // Fitting never enlarges a small picture.
        const QSize place = defilement_->viewport()->size() - QSize(2, 2);
        if (taille.width() > place.width() || taille.height() > place.height())
            taille.scale(place.expandedTo(QSize(1, 1)), Qt::KeepAspectRatio);
    } else {
        taille = QSize(std::max(1, int(image_.width() * facteur_)),
                       std::max(1, int(image_.height() * facteur_)));
    }
    const QImage montree =
        taille == image_.size()
            ? image_
            : image_.scaled(taille, Qt::KeepAspectRatio,
                            facteur_ > 0 && facteur_ >= 2 ? Qt::FastTransformation
                                                          : Qt::SmoothTransformation);
    vue_->setPixmap(QPixmap::fromImage(montree));
    vue_->resize(montree.size());
}

// A fitted picture follows the size of its view, whatever moved it: the
// window, the splitter, the first layout.
bool FrmImageQt::eventFilter(QObject* objet, QEvent* e) {
    if (objet == defilement_->viewport() && e->type() == QEvent::Resize && facteur_ <= 0) Affiche();
    return FormulaireQt::eventFilter(objet, e);
}

static EnregistrementFormulaire enr("FrmImage", [](ContexteQt& c) { return new FrmImageQt(c); });

} // namespace sylvane
