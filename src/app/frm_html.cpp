#include "app/frm_html.h"

#include "app/texte_qt.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace sylvane {

static EnregistrementFormulaire enr("FrmHTML", [](ContexteQt& c) { return new FrmHTMLQt(c); });

FrmHTMLQt::FrmHTMLQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique) {
    logique_.ouvreNavigateur = [](const std::string& page) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(CheminQt(page)));
    };
    lblDossier_ = new QLabel(this);
    dossier_ = new QLineEdit(CheminQt(logique_.dossier), this);
    dossier_->setMinimumWidth(360);
    lblDossier_->setBuddy(dossier_);
    cmdParcourir_ = new QPushButton(this);
    lblAuteur_ = new QLabel(this);
    auteur_ = new QLineEdit(Q(logique_.auteur), this);
    lblAuteur_->setBuddy(auteur_);
    navigateur_ = new QCheckBox(this);
    navigateur_->setChecked(logique_.ouvrirNavigateur);
    personne_ = new QCheckBox(this);
    personne_->setChecked(logique_.accueilPersonne);
    cmdCreer_ = new QPushButton(this);
    cmdCreer_->setDefault(true);
    cmdFermer_ = new QPushButton(this);

    auto* grille = new QGridLayout;
    grille->addWidget(lblDossier_, 0, 0);
    grille->addWidget(dossier_, 0, 1);
    grille->addWidget(cmdParcourir_, 0, 2);
    grille->addWidget(lblAuteur_, 1, 0);
    grille->addWidget(auteur_, 1, 1, 1, 2);
    grille->setColumnStretch(1, 1);
    auto* bas = new QHBoxLayout;
    bas->addStretch(1);
    bas->addWidget(cmdCreer_);
    bas->addWidget(cmdFermer_);
    auto* l = new QVBoxLayout(this);
    l->addLayout(grille);
    l->addWidget(personne_);
    l->addWidget(navigateur_);
    l->addStretch(1);
    l->addLayout(bas);

    QWidget* ordre[] = {dossier_, cmdParcourir_, auteur_, personne_, navigateur_, cmdCreer_,
                        cmdFermer_};
    for (std::size_t i = 1; i < std::size(ordre); ++i) setTabOrder(ordre[i - 1], ordre[i]);

    connect(cmdParcourir_, &QPushButton::clicked, this, [this] {
        LitControles();
        logique_.Parcourir();
        dossier_->setText(CheminQt(logique_.dossier));
    });
    connect(cmdCreer_, &QPushButton::clicked, this, [this] { Lance(); });
    connect(cmdFermer_, &QPushButton::clicked, this, [this] { Ferme(); });
    Retraduit();
}

void FrmHTMLQt::Retraduit() {
    setWindowTitle(M(msg_html::Titre));
    lblDossier_->setText(M(msg_html::Dossier));
    cmdParcourir_->setText(M(msg_html::Parcourir));
    lblAuteur_->setText(M(msg_html::Auteur));
    navigateur_->setText(M(msg_html::Navigateur));
    personne_->setText(M(msg_html::PersonneEnCours));
    cmdCreer_->setText(M(msg_html::Creer));
    cmdFermer_->setText(M(msg_html::Fermer));
}

void FrmHTMLQt::LitControles() {
    logique_.dossier = CheminInterne(dossier_->text());
    logique_.auteur = A(auteur_->text());
    logique_.ouvrirNavigateur = navigateur_->isChecked();
    logique_.accueilPersonne = personne_->isChecked();
}

void FrmHTMLQt::Lance() {
    LitControles();
    cmdCreer_->setEnabled(false);
    logique_.Cree();
    cmdCreer_->setEnabled(true);
}

void FrmHTMLQt::Ferme() { (parentWidget() ? parentWidget() : static_cast<QWidget*>(this))->close(); }

} // namespace sylvane
