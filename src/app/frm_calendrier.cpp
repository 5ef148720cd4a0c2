#include "app/frm_calendrier.h"

#include "app/fenetre_principale.h"
#include "app/texte_qt.h"
#include "ui/mdiform1.h"

#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace sylvane {
namespace {

constexpr int kTitre = 88; // "Calendrier républicain"
constexpr int kMsgGregorien = 3352;
constexpr int kMsgRepublicain = 3353;
constexpr int kMsgJour = 3354;
constexpr int kMsgMois = 3355;
constexpr int kMsgAnnee = 3356;
constexpr int kMsgVersRepublicain = 3357;
constexpr int kMsgVersGregorien = 3358;
constexpr int kMsgMethode = 3359;
constexpr int kMsgTable = 3360;
constexpr int kMsgCalcul = 3361;
constexpr int kMsgFermer = 3362;

QComboBox* Liste(QWidget* parent, const char* nom) {
    auto* c = new QComboBox(parent);
    c->setObjectName(QString::fromLatin1(nom));
    // The text may be typed: it is compared with the items.
    c->setEditable(true);
    c->setInsertPolicy(QComboBox::NoInsert);
    return c;
}

void Remplit(QComboBox* c, const std::vector<std::string>& items) {
    // A refill (language switch) keeps the place chosen.
    const int i = c->findText(c->currentText());
    const bool bloque = c->blockSignals(true);
    c->clear();
    for (const auto& t : items) c->addItem(Q(t));
    if (i >= 0 && i < c->count()) c->setCurrentIndex(i);
    c->blockSignals(bloque);
}

void Ecrit(QComboBox* c, const std::string& texte) {
    const int i = c->findText(Q(texte));
    if (i >= 0) c->setCurrentIndex(i);
    else c->setEditText(Q(texte));
}

} // namespace

FrmCalendrierQt::FrmCalendrierQt(Boites& boites, QWidget* parent)
    : FormulaireQt(parent), logique_(boites) {
    lblJour_ = new QLabel(this);
    lblMois_ = new QLabel(this);
    lblAnnee_ = new QLabel(this);
    lblG_ = new QLabel(this);
    lblR_ = new QLabel(this);
    jourG_ = new QLineEdit(this);
    jourG_->setObjectName(QStringLiteral("TxtJourG"));
    jourR_ = new QLineEdit(this);
    jourR_->setObjectName(QStringLiteral("TxtJourR"));
    for (QLineEdit* j : {jourG_, jourR_}) {
        j->setMaxLength(2);
        j->setAlignment(Qt::AlignRight);
        j->setFixedWidth(j->fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 12);
    }
    lblG_->setBuddy(jourG_);
    lblR_->setBuddy(jourR_);
    moisG_ = Liste(this, "LstMoisG");
    anneeG_ = Liste(this, "LstAnneeG");
    moisR_ = Liste(this, "LstMoisR");
    anneeR_ = Liste(this, "LstAnneeR");
    Remplit(moisR_, FrmCalendrier::MoisRepublicains());
    Remplit(anneeG_, FrmCalendrier::AnneesGregoriennes());
    Remplit(anneeR_, FrmCalendrier::AnneesRepublicaines());
    cmdGR_ = new QPushButton(this);
    cmdGR_->setObjectName(QStringLiteral("CmdGR"));
    cmdRG_ = new QPushButton(this);
    cmdRG_->setObjectName(QStringLiteral("CmdRG"));
    fermer_ = new QPushButton(this);
    methode_ = new QGroupBox(this);
    table_ = new QRadioButton(methode_);
    calcul_ = new QRadioButton(methode_);
    table_->setChecked(true);

    auto* grille = new QGridLayout;
    grille->addWidget(lblJour_, 0, 1);
    grille->addWidget(lblMois_, 0, 2);
    grille->addWidget(lblAnnee_, 0, 3);
    grille->addWidget(lblG_, 1, 0);
    grille->addWidget(jourG_, 1, 1);
    grille->addWidget(moisG_, 1, 2);
    grille->addWidget(anneeG_, 1, 3);
    grille->addWidget(cmdGR_, 1, 4);
    grille->addWidget(lblR_, 2, 0);
    grille->addWidget(jourR_, 2, 1);
    grille->addWidget(moisR_, 2, 2);
    grille->addWidget(anneeR_, 2, 3);
    grille->addWidget(cmdRG_, 2, 4);
    grille->setColumnStretch(2, 1);
    grille->setHorizontalSpacing(10);
    auto* m = new QVBoxLayout(methode_);
    m->addWidget(table_);
    m->addWidget(calcul_);
    auto* bas = new QHBoxLayout;
    bas->addStretch(1);
    bas->addWidget(fermer_);
    auto* l = new QVBoxLayout(this);
    l->addLayout(grille);
    l->addSpacing(6);
    l->addWidget(methode_);
    l->addStretch(1);
    l->addLayout(bas);

    setTabOrder(jourG_, moisG_);
    setTabOrder(moisG_, anneeG_);
    setTabOrder(anneeG_, cmdGR_);
    setTabOrder(cmdGR_, jourR_);
    setTabOrder(jourR_, moisR_);
    setTabOrder(moisR_, anneeR_);
    setTabOrder(anneeR_, cmdRG_);
    setTabOrder(cmdRG_, table_);
    setTabOrder(table_, calcul_);
    setTabOrder(calcul_, fermer_);

    connect(cmdGR_, &QPushButton::clicked, this, [this] { Convertit(true); });
    connect(cmdRG_, &QPushButton::clicked, this, [this] { Convertit(false); });
    // Enter in a field converts from its side.
    for (QLineEdit* e : {jourG_, moisG_->lineEdit(), anneeG_->lineEdit()})
        connect(e, &QLineEdit::returnPressed, this, [this] { Convertit(true); });
    for (QLineEdit* e : {jourR_, moisR_->lineEdit(), anneeR_->lineEdit()})
        connect(e, &QLineEdit::returnPressed, this, [this] { Convertit(false); });
    connect(fermer_, &QPushButton::clicked, this, [this] {
        (parentWidget() ? parentWidget() : static_cast<QWidget*>(this))->close();
    });

    Retraduit();
    Montre();
}

void FrmCalendrierQt::Retraduit() {
    setWindowTitle(M(kTitre));
    lblJour_->setText(M(kMsgJour));
    lblMois_->setText(M(kMsgMois));
    lblAnnee_->setText(M(kMsgAnnee));
    lblG_->setText(M(kMsgGregorien));
    lblR_->setText(M(kMsgRepublicain));
    cmdGR_->setText(M(kMsgVersRepublicain));
    cmdRG_->setText(M(kMsgVersGregorien));
    methode_->setTitle(M(kMsgMethode));
    table_->setText(M(kMsgTable));
    calcul_->setText(M(kMsgCalcul));
    fermer_->setText(M(kMsgFermer));
    Remplit(moisG_, FrmCalendrier::MoisGregoriens());
}

void FrmCalendrierQt::Convertit(bool versRepublicain) {
    logique_.methode = calcul_->isChecked() ? MethodeCalendrier::Calcul : MethodeCalendrier::Table;
    logique_.gregorien = {A(jourG_->text()), A(moisG_->currentText()), A(anneeG_->currentText())};
    logique_.republicain = {A(jourR_->text()), A(moisR_->currentText()),
                            A(anneeR_->currentText())};
    if (versRepublicain ? logique_.CmdGR() : logique_.CmdRG()) Montre();
}

void FrmCalendrierQt::Montre() {
    jourG_->setText(Q(logique_.gregorien.jour));
    Ecrit(moisG_, logique_.gregorien.mois);
    Ecrit(anneeG_, logique_.gregorien.annee);
    jourR_->setText(Q(logique_.republicain.jour));
    Ecrit(moisR_, logique_.republicain.mois);
    Ecrit(anneeR_, logique_.republicain.annee);
}

namespace {

EnregistrementFormulaire enr("FrmCalendrier", [](ContexteQt& c) {
    return new FrmCalendrierQt(c.logique.services().boites);
});

} // namespace

} // namespace sylvane
