#include "app/frm_controle.h"

#include "app/texte_qt.h"
#include "ui/mdiform1.h"

#include <QFont>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace sylvane {

FrmControleQt::FrmControleQt(ContexteQt& c, QWidget* parent) : FormulaireQt(parent), c_(c) {
    resume_ = new QLabel(this);
    resume_->setObjectName(QStringLiteral("LblResume"));
    QFont gras = resume_->font();
    gras.setBold(true);
    resume_->setFont(gras);
    fichier_ = new QLabel(this);
    fichier_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    // A long path must not widen the window: it is cut, and whole in the tip.
    fichier_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    texte_ = new QPlainTextEdit(this);
    texte_->setObjectName(QStringLiteral("TxtRapport"));
    texte_->setReadOnly(true);
    texte_->setLineWrapMode(QPlainTextEdit::NoWrap);
    texte_->setMinimumSize(560, 260);
    enregistrer_ = new QPushButton(this);
    fermer_ = new QPushButton(this);
    auto* bas = new QHBoxLayout;
    bas->addWidget(fichier_, 1);
    bas->addWidget(enregistrer_);
    bas->addWidget(fermer_);
    auto* l = new QVBoxLayout(this);
    l->addWidget(resume_);
    l->addWidget(texte_, 1);
    l->addLayout(bas);
    setTabOrder(texte_, enregistrer_);
    setTabOrder(enregistrer_, fermer_);

    connect(enregistrer_, &QPushButton::clicked, this, [this] {
        ServicesUi& s = c_.logique.services();
        logique_.EnregistreSous(s.fichiers, s.boites, c_.logique.app().fs());
    });
    connect(fermer_, &QPushButton::clicked, this,
            [this] { (parentWidget() ? parentWidget() : static_cast<QWidget*>(this))->close(); });
    // A new control while the window is open shows its report here.
    FrmControle::Avis() = [this] {
        logique_.Recharge();
        Montre();
    };
    Retraduit();
}

FrmControleQt::~FrmControleQt() { FrmControle::Avis() = nullptr; }

void FrmControleQt::Retraduit() {
    setWindowTitle(M(kTitreRapportControle));
    enregistrer_->setText(M(kControleEnregistrerSous));
    fermer_->setText(M(kControleFermer));
    Montre();
}

void FrmControleQt::Montre() {
    resume_->setText(Q(logique_.Resume()));
    fichier_->setText(MT(kControleFichier, CheminQt(logique_.Chemin())));
    fichier_->setToolTip(CheminQt(logique_.Chemin()));
    QString t;
    for (const auto& ligne : logique_.Lignes()) t += Q(ligne) + QLatin1Char('\n');
    texte_->setPlainText(t);
    enregistrer_->setEnabled(!logique_.Chemin().empty());
}

void FrmControleQt::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Escape) {
        fermer_->click();
        return;
    }
    FormulaireQt::keyPressEvent(e);
}

namespace {
EnregistrementFormulaire enr("FrmControle", [](ContexteQt& c) { return new FrmControleQt(c); });
} // namespace

} // namespace sylvane
