#include "app/frm_creation.h"

#include "app/texte_qt.h"
#include "text/messages.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QFocusEvent>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

namespace sylvane {

FrmCreationQt::FrmCreationQt(Base& base, const Parametres& parametres, Boites& boites,
                             const std::string& etiquette, EtatNumerotation* numeros,
                             QWidget* parent)
    : QDialog(parent), logique_(base, parametres, etiquette, numeros), boites_(boites) {
    using C = ChampCreation;
    auto* l = new QVBoxLayout(this);

    // Identity.
    auto* g = new QGridLayout;
    lNom_ = new QLabel(this);
    lPrenom_ = new QLabel(this);
    lAutres_ = new QLabel(this);
    g->addWidget(lNom_, 0, 0);
    g->addWidget(Ajoute(C::Nom), 0, 1, 1, 3);
    g->addWidget(lPrenom_, 1, 0);
    g->addWidget(Ajoute(C::Prenom), 1, 1, 1, 3);
    g->addWidget(lAutres_, 2, 0);
    g->addWidget(Ajoute(C::AutresPrenoms), 2, 1, 1, 3);
    lNom_->setBuddy(Champ(C::Nom));
    lPrenom_->setBuddy(Champ(C::Prenom));
    lAutres_->setBuddy(Champ(C::AutresPrenoms));

    // Sex: fixed when the caller asked for a man or a woman.
    lSexe_ = new QLabel(this);
    homme_ = new QRadioButton(this);
    femme_ = new QRadioButton(this);
    inconnu_ = new QRadioButton(this);
    auto* groupe = new QButtonGroup(this);
    groupe->addButton(homme_);
    groupe->addButton(femme_);
    groupe->addButton(inconnu_);
    auto* sexes = new QHBoxLayout;
    sexes->addWidget(homme_);
    sexes->addWidget(femme_);
    sexes->addWidget(inconnu_);
    sexes->addStretch(1);
    g->addWidget(lSexe_, 3, 0);
    g->addLayout(sexes, 3, 1, 1, 3);
    const char s = logique_.Sexe();
    (s == 'H' ? homme_ : s == 'F' ? femme_ : inconnu_)->setChecked(true);
    for (QRadioButton* b : {homme_, femme_, inconnu_}) b->setEnabled(!logique_.SexeFixe());
    connect(homme_, &QRadioButton::toggled, this, [this](bool on) { if (on) logique_.ChoisitSexe('H'); });
    connect(femme_, &QRadioButton::toggled, this, [this](bool on) { if (on) logique_.ChoisitSexe('F'); });
    connect(inconnu_, &QRadioButton::toggled, this, [this](bool on) { if (on) logique_.ChoisitSexe('I'); });

    // Birth and death: year, day and month (with the day in words), place.
    for (int i = 0; i < 3; ++i) {
        entetes_.push_back(new QLabel(this));
        g->addWidget(entetes_.back(), 4, 1 + i);
    }
    auto jour = [this] {
        auto* lib = new QLabel(this);
        lib->setForegroundRole(QPalette::PlaceholderText);
        return lib;
    };
    auto rangee = [&](int r, QLabel* titre, C an, C j, C lieu, int rang) {
        g->addWidget(titre, r, 0);
        QLineEdit* ea = Ajoute(an, rang);
        ea->setMaximumWidth(ea->fontMetrics().horizontalAdvance(QStringLiteral("00000000")));
        g->addWidget(ea, r, 1);
        auto* cj = new QHBoxLayout;
        QLabel* lib = jour();
        QLineEdit* ej = Ajoute(j, rang, lib);
        ej->setMaximumWidth(ej->fontMetrics().horizontalAdvance(QStringLiteral("00/00/0000")));
        cj->addWidget(ej);
        cj->addWidget(lib, 1);
        g->addLayout(cj, r, 2);
        g->addWidget(Ajoute(lieu, rang), r, 3);
        if (titre) titre->setBuddy(ea);
    };
    lNaiss_ = new QLabel(this);
    lDeces_ = new QLabel(this);
    rangee(5, lNaiss_, C::Naiss, C::JNaiss, C::LieuNaiss, 0);
    rangee(6, lDeces_, C::Deces, C::JDeces, C::LieuDeces, 0);

    // The rubrics of the base; a rubric without a date hides day and year.
    const auto& rub = logique_.Rubriques();
    if (!rub.empty()) {
        auto* trait = new QFrame(this);
        trait->setFrameShape(QFrame::HLine);
        trait->setFrameShadow(QFrame::Sunken);
        g->addWidget(trait, 7, 0, 1, 4);
        lRubriques_ = new QLabel(this);
        QFont f = lRubriques_->font();
        f.setBold(true);
        lRubriques_->setFont(f);
        g->addWidget(lRubriques_, 8, 0, 1, 4);
    }
    for (int k = 0; k < static_cast<int>(rub.size()); ++k) {
        auto* titre = new QLabel(Q(rub[k].libelle), this);
        lRubrique_.push_back(titre);
        rangee(9 + k, titre, C::RubA, C::RubJ, C::RubL, k);
        if (!rub[k].date) {
            Champ(C::RubA, k)->hide();
            Champ(C::RubJ, k)->hide();
            titre->setBuddy(Champ(C::RubL, k));
        }
    }
    g->setColumnStretch(3, 1);
    g->setColumnMinimumWidth(2, fontMetrics().horizontalAdvance(QStringLiteral("00/00/0000  00 septembre")));
    l->addLayout(g);
    l->addStretch(1);

    auto* boutons = new QDialogButtonBox(this);
    ok_ = boutons->addButton(QString(), QDialogButtonBox::AcceptRole);
    annuler_ = boutons->addButton(QString(), QDialogButtonBox::RejectRole);
    ok_->setDefault(true);
    connect(ok_, &QPushButton::clicked, this, &FrmCreationQt::Valide);
    connect(annuler_, &QPushButton::clicked, this, &QDialog::reject);
    l->addWidget(boutons);

    // Tab order: identity, sex, then each row across.
    QWidget* avant = Champ(C::AutresPrenoms);
    for (QWidget* w : {static_cast<QWidget*>(homme_), static_cast<QWidget*>(femme_),
                       static_cast<QWidget*>(inconnu_)}) {
        setTabOrder(avant, w);
        avant = w;
    }
    for (std::size_t i = 3; i < lignes_.size(); ++i) {
        setTabOrder(avant, lignes_[i].edit);
        avant = lignes_[i].edit;
    }
    setTabOrder(avant, ok_);
    setTabOrder(ok_, annuler_);

    Retraduit();
    Champ(C::Nom)->setText(Q(logique_.Valeur(C::Nom)));
    // With the family name preset, the first name comes first.
    (logique_.Valeur(C::Nom).empty() ? Champ(C::Nom) : Champ(C::Prenom))->setFocus();
    resize(sizeHint().width() + 80, sizeHint().height());
}

QLineEdit* FrmCreationQt::Ajoute(ChampCreation c, int rang, QLabel* libelle) {
    auto* e = new QLineEdit(this);
    e->installEventFilter(this);
    lignes_.push_back({c, rang, e, libelle});
    connect(e, &QLineEdit::textEdited, this, [this, c, rang, e](const QString& t) {
        const QString v = Q(logique_.Modifie(c, A(t), rang));
        if (v != t) {
            const int curseur = e->cursorPosition();
            e->setText(v);
            e->setCursorPosition(curseur);
        }
    });
    connect(e, &QLineEdit::editingFinished, this, [this, c, rang, e, libelle] {
        const QString v = Q(logique_.Quitte(c, rang));
        if (v != e->text()) e->setText(v);
        if (libelle) libelle->setText(Q(logique_.Libelle(c, rang)));
    });
    return e;
}

QLineEdit* FrmCreationQt::Champ(ChampCreation c, int rang) const {
    for (const Ligne& l : lignes_)
        if (l.champ == c && l.rang == rang) return l.edit;
    return nullptr;
}

bool FrmCreationQt::eventFilter(QObject* o, QEvent* e) {
    // A field entered with its caret at the end, or with a selection, has
    // its whole text selected.
    if (e->type() == QEvent::FocusIn)
        if (auto* edit = qobject_cast<QLineEdit*>(o))
            if (edit->hasSelectedText() || edit->cursorPosition() == edit->text().size())
                QTimer::singleShot(0, edit, &QLineEdit::selectAll);
    return QDialog::eventFilter(o, e);
}

void FrmCreationQt::Retraduit() {
    setWindowTitle(M(3920));
    lNom_->setText(M(3921));
    lPrenom_->setText(M(3922));
    lAutres_->setText(M(3923));
    lSexe_->setText(M(662));
    homme_->setText(M(3925));
    femme_->setText(M(3926));
    inconnu_->setText(M(3927));
    lNaiss_->setText(M(3928));
    lDeces_->setText(M(3929));
    for (int i = 0; i < 3; ++i) entetes_[i]->setText(M(3930 + i));
    if (lRubriques_) lRubriques_->setText(M(3933));
    ok_->setText(M(3909));
    annuler_->setText(M(3910));
}

void FrmCreationQt::Valide() {
    // A field being typed in is settled first, as leaving it would.
    for (const Ligne& l : lignes_)
        if (l.edit->hasFocus()) Q_EMIT l.edit->editingFinished();
    if (logique_.Valide(boites_)) {
        accept();
        return;
    }
    if (QLineEdit* e = Champ(logique_.Focus())) e->setFocus();
}

} // namespace sylvane
