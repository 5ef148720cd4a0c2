#include "app/frm_releve.h"

#include "app/texte_qt.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace sylvane {

FrmReleveQt::FrmReleveQt(ContexteQt& c, GenreReleve g, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique, g) {
    setObjectName(QString::fromLatin1(FormulaireReleve(g)));
    aide_ = new QLabel(this);
    aide_->setWordWrap(true);
    lblFichier_ = new QLabel(this);
    lblCible_ = new QLabel(this);
    lblColonnes_ = new QLabel(this);
    colonnes_ = new QLabel(this);
    colonnes_->setWordWrap(true);
    colonnes_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    fichier_ = new QLineEdit(this);
    fichier_->setObjectName(QStringLiteral("TxtFichier"));
    fichier_->setMinimumWidth(360);
    cible_ = new QLineEdit(this);
    cible_->setObjectName(QStringLiteral("TxtBase"));
    lblFichier_->setBuddy(fichier_);
    lblCible_->setBuddy(cible_);
    parcourir_ = new QPushButton(this);
    parcourirCible_ = new QPushButton(this);
    importer_ = new QPushButton(this);
    importer_->setObjectName(QStringLiteral("CmdImporter"));
    importer_->setDefault(true);
    fermer_ = new QPushButton(this);
    rapport_ = new QPlainTextEdit(this);
    rapport_->setObjectName(QStringLiteral("TxtRapport"));
    rapport_->setReadOnly(true);
    rapport_->setMinimumHeight(90);

    auto* grille = new QGridLayout;
    grille->addWidget(lblFichier_, 0, 0);
    grille->addWidget(fichier_, 0, 1);
    grille->addWidget(parcourir_, 0, 2);
    grille->addWidget(lblCible_, 1, 0);
    grille->addWidget(cible_, 1, 1);
    grille->addWidget(parcourirCible_, 1, 2);
    grille->setColumnStretch(1, 1);
    auto* bas = new QHBoxLayout;
    bas->addStretch(1);
    bas->addWidget(importer_);
    bas->addWidget(fermer_);
    auto* l = new QVBoxLayout(this);
    l->addWidget(aide_);
    l->addLayout(grille);
    l->addWidget(lblColonnes_);
    l->addWidget(colonnes_);
    l->addWidget(rapport_, 1);
    l->addLayout(bas);
    setTabOrder(fichier_, parcourir_);
    setTabOrder(parcourir_, cible_);
    setTabOrder(cible_, parcourirCible_);
    setTabOrder(parcourirCible_, importer_);
    setTabOrder(importer_, fermer_);

    connect(fichier_, &QLineEdit::editingFinished, this, [this] {
        logique_.DefinitFichier(CheminInterne(fichier_->text()));
        Montre();
    });
    connect(cible_, &QLineEdit::editingFinished, this, [this] {
        logique_.DefinitCible(CheminInterne(cible_->text()));
        Montre();
    });
    connect(parcourir_, &QPushButton::clicked, this, [this] {
        if (logique_.ChoisitFichier()) Montre();
    });
    connect(parcourirCible_, &QPushButton::clicked, this, [this] {
        if (logique_.ChoisitCible()) Montre();
    });
    connect(importer_, &QPushButton::clicked, this, [this] {
        logique_.DefinitFichier(CheminInterne(fichier_->text()));
        logique_.DefinitCible(CheminInterne(cible_->text()));
        // The new base opened closes the child windows, this one among them.
        QPointer<FrmReleveQt> moi(this);
        logique_.Importe();
        if (moi) Montre();
    });
    connect(fermer_, &QPushButton::clicked, this,
            [this] { (parentWidget() ? parentWidget() : static_cast<QWidget*>(this))->close(); });
    Retraduit();
}

void FrmReleveQt::Retraduit() {
    setWindowTitle(M(logique_.Titre()).remove(QLatin1Char('&')));
    aide_->setText(MT(kReleveAide));
    lblFichier_->setText(M(kReleveFichier));
    lblCible_->setText(M(kReleveBase));
    lblColonnes_->setText(MT(kReleveColonnes));
    parcourir_->setText(M(kReleveParcourir));
    parcourirCible_->setText(M(kReleveParcourirBase));
    importer_->setText(M(kReleveImporter));
    fermer_->setText(M(kReleveFermer));
    QStringList c;
    int i = 1;
    for (const std::string& nom : logique_.Colonnes()) c << QString::number(i++) + QStringLiteral(" ") + Q(nom);
    colonnes_->setText(c.join(QStringLiteral(" \u00B7 ")));
    Montre();
}

void FrmReleveQt::Montre() {
    fichier_->setText(CheminQt(logique_.Fichier()));
    cible_->setText(CheminQt(logique_.Cible()));
    rapport_->setPlainText(Q(logique_.Rapport()));
    importer_->setEnabled(!fichier_->text().isEmpty() && !cible_->text().isEmpty());
}

void FrmReleveQt::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Escape) {
        fermer_->click();
        return;
    }
    FormulaireQt::keyPressEvent(e);
}

namespace {
template <GenreReleve G>
FormulaireQt* Fabrique(ContexteQt& c) {
    return new FrmReleveQt(c, G);
}
EnregistrementFormulaire enrM(FormulaireReleve(GenreReleve::Mariage), Fabrique<GenreReleve::Mariage>);
EnregistrementFormulaire enrB(FormulaireReleve(GenreReleve::Bapteme), Fabrique<GenreReleve::Bapteme>);
EnregistrementFormulaire enrS(FormulaireReleve(GenreReleve::Sepulture), Fabrique<GenreReleve::Sepulture>);
EnregistrementFormulaire enrA(FormulaireReleve(GenreReleve::Ascendance), Fabrique<GenreReleve::Ascendance>);
} // namespace

} // namespace sylvane
