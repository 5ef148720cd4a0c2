#include "app/frm_commune.h"

#include "app/texte_qt.h"
#include "text/mots.h"
#include "ui/mdiform1.h"

#include <algorithm>

#include <QAbstractItemView>
#include <QAction>
#include <QCompleter>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QStringListModel>
#include <QStyle>
#include <QVBoxLayout>

namespace sylvane {
namespace {

QLineEdit* Affichage(QWidget* parent, const char* nom) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(QString::fromLatin1(nom));
    e->setReadOnly(true);
    return e;
}

QLabel* Valeur(QWidget* parent, const char* nom) {
    auto* l = new QLabel(parent);
    l->setObjectName(QString::fromLatin1(nom));
    l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return l;
}

// The first word of a typed name, as the word index holds its words.
QString PremierMot(const QString& texte) {
    const QStringList mots = texte.split(QRegularExpression(QStringLiteral("[^\\w]+")), Qt::SkipEmptyParts);
    for (const QString& m : mots)
        if (m.size() >= 2) return m;
    return {};
}

// A text typed into a field as the user would type it, so that the form
// of the field takes it as its own.
void Tape(QLineEdit* champ, const QString& texte) {
    champ->setText(texte);
    Q_EMIT champ->textEdited(texte);
}

// While the list of names is open, Enter and Escape are its own: the
// window's shortcuts on those keys (the sheet validates on Enter) wait.
class ToucheListe : public QObject {
  public:
    ToucheListe(QCompleter* c, QObject* parent) : QObject(parent), c_(c) {}
    bool eventFilter(QObject* o, QEvent* e) override {
        if (e->type() == QEvent::ShortcutOverride && c_->popup() && c_->popup()->isVisible()) {
            const int k = static_cast<QKeyEvent*>(e)->key();
            if (k == Qt::Key_Return || k == Qt::Key_Enter || k == Qt::Key_Escape) {
                e->accept();
                return true;
            }
        }
        return QObject::eventFilter(o, e);
    }

  private:
    QCompleter* c_;
};

} // namespace

FrmCommuneQt::FrmCommuneQt(ContexteQt& c, std::function<void(const std::string&)> prend, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique), prend_(std::move(prend)) {
    setObjectName(QStringLiteral("FrmCommune"));
    aucun_ = new QLabel(this);
    aucun_->setWordWrap(true);
    lblCommune_ = new QLabel(this);
    commune_ = new QLineEdit(this);
    commune_->setObjectName(QStringLiteral("TxtCommune"));
    lblCommune_->setBuddy(commune_);
    lblIndex_ = new QLabel(this);
    index_ = new QLineEdit(this);
    index_->setObjectName(QStringLiteral("TxtIndex"));
    lblIndex_->setBuddy(index_);
    aller_ = new QPushButton(this);
    aller_->setObjectName(QStringLiteral("Commande1"));

    lblMots_ = new QLabel(this);
    mots_ = new QListWidget(this);
    mots_->setObjectName(QStringLiteral("Grille1"));
    lblMots_->setBuddy(mots_);
    lblCommunes_ = new QLabel(this);
    communes_ = new QListWidget(this);
    communes_->setObjectName(QStringLiteral("LstCommune"));
    lblCommunes_->setBuddy(communes_);

    auto* fiche = new QWidget(this);
    numero_ = Affichage(fiche, "TxtNo");
    codes_ = Affichage(fiche, "TxtCodPos");
    agglo_ = Affichage(fiche, "TxtAgglo");
    principale_ = Affichage(fiche, "TxtComReg");
    departement_ = Valeur(fiche, "LblDepartement");
    population_ = Valeur(fiche, "LblPopulation");
    superficie_ = Valeur(fiche, "LblSuperficie");
    commentaire_ = new QPlainTextEdit(fiche);
    commentaire_->setObjectName(QStringLiteral("TxtComment"));
    commentaire_->setTabChangesFocus(true);
    enregistrer_ = new QPushButton(fiche);
    enregistrer_->setObjectName(QStringLiteral("MnuMAJ"));
    auto* gf = new QGridLayout(fiche);
    gf->setContentsMargins(0, 0, 0, 0);
    int ligne = 0;
    auto rang = [&](QLabel*& lbl, QWidget* w) {
        lbl = new QLabel(fiche);
        lbl->setBuddy(w);
        gf->addWidget(lbl, ligne, 0);
        gf->addWidget(w, ligne++, 1);
    };
    rang(lblNumero_, numero_);
    rang(lblCodes_, codes_);
    rang(lblAgglo_, agglo_);
    rang(lblPrincipale_, principale_);
    rang(lblDepartement_, departement_);
    rang(lblPopulation_, population_);
    rang(lblSuperficie_, superficie_);
    lblCommentaire_ = new QLabel(fiche);
    lblCommentaire_->setBuddy(commentaire_);
    gf->addWidget(lblCommentaire_, ligne++, 0, 1, 2);
    gf->addWidget(commentaire_, ligne++, 0, 1, 2);
    gf->addWidget(enregistrer_, ligne++, 1, Qt::AlignRight);
    gf->setRowStretch(ligne - 2, 1);
    gf->setColumnStretch(1, 1);

    ajouter_ = new QPushButton(this);
    ajouter_->setObjectName(QStringLiteral("CmdAjouter"));
    retirer_ = new QPushButton(this);
    retirer_->setObjectName(QStringLiteral("CmdRetirer"));
    reorganiser_ = new QPushButton(this);
    reorganiser_->setObjectName(QStringLiteral("MnuReorganiser"));
    prendre_ = new QPushButton(this);
    prendre_->setObjectName(QStringLiteral("CmdPrendre"));
    prendre_->setVisible(static_cast<bool>(prend_));
    prendre_->setDefault(static_cast<bool>(prend_));
    fermer_ = new QPushButton(this);
    fermer_->setObjectName(QStringLiteral("CmdFermer"));

    auto* haut = new QGridLayout;
    haut->addWidget(lblCommune_, 0, 0);
    haut->addWidget(commune_, 0, 1, 1, 2);
    haut->addWidget(lblIndex_, 1, 0);
    haut->addWidget(index_, 1, 1);
    haut->addWidget(aller_, 1, 2);
    haut->setColumnStretch(1, 1);
    auto* colMots = new QVBoxLayout;
    colMots->addWidget(lblMots_);
    colMots->addWidget(mots_, 1);
    auto* colCommunes = new QVBoxLayout;
    colCommunes->addWidget(lblCommunes_);
    colCommunes->addWidget(communes_, 1);
    auto* milieu = new QHBoxLayout;
    milieu->addLayout(colMots, 2);
    milieu->addLayout(colCommunes, 3);
    milieu->addWidget(fiche, 5);
    auto* bas = new QHBoxLayout;
    for (QPushButton* b : {ajouter_, retirer_, reorganiser_}) bas->addWidget(b);
    bas->addStretch(1);
    bas->addWidget(prendre_);
    bas->addWidget(fermer_);
    auto* l = new QVBoxLayout(this);
    l->addWidget(aucun_);
    l->addLayout(haut);
    l->addLayout(milieu, 1);
    l->addLayout(bas);

    setTabOrder(commune_, index_);
    setTabOrder(index_, aller_);
    setTabOrder(aller_, mots_);
    setTabOrder(mots_, communes_);
    setTabOrder(communes_, numero_);
    setTabOrder(numero_, codes_);
    setTabOrder(codes_, agglo_);
    setTabOrder(agglo_, principale_);
    setTabOrder(principale_, commentaire_);
    setTabOrder(commentaire_, enregistrer_);
    setTabOrder(enregistrer_, ajouter_);
    setTabOrder(ajouter_, retirer_);
    setTabOrder(retirer_, reorganiser_);
    setTabOrder(reorganiser_, prendre_);
    setTabOrder(prendre_, fermer_);

    // TxtCommune on leaving: the name looked up, or the nearest after 743.
    connect(commune_, &QLineEdit::editingFinished, this, [this] {
        if (!commune_->isModified() || !logique_.Ouverte()) return;
        commune_->setModified(false);
        const std::string nom = logique_.ChercheCommune(A(commune_->text()));
        commune_->setText(Q(nom));
        AllerMot(PremierMot(Q(nom)));
        Montre();
    });
    connect(commune_, &QLineEdit::textChanged, this, &FrmCommuneQt::Etat);
    // TxtIndex: capitals as the word index holds its words, and the words
    // around the typed one at once.
    connect(index_, &QLineEdit::textEdited, this, [this](const QString& t) {
        const QString forme = Q(logique_.FormeMot(A(t)));
        if (forme != t) {
            const int curseur = index_->cursorPosition();
            index_->setText(forme);
            index_->setCursorPosition(curseur);
        }
        AllerMot(forme);
    });
    connect(index_, &QLineEdit::returnPressed, aller_, &QPushButton::click);
    connect(aller_, &QPushButton::clicked, this, [this] {
        AllerMot(index_->text());
        communes_->setFocus();
    });
    connect(mots_, &QListWidget::currentTextChanged, this, [this](const QString& mot) { RemplitCommunes(A(mot)); });
    connect(communes_, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* i) {
        if (i) MontreCommune(i->data(Qt::UserRole).toUInt());
    });
    connect(communes_, &QListWidget::itemActivated, this, [this] {
        if (prend_) Prend();
    });
    connect(commentaire_, &QPlainTextEdit::modificationChanged, enregistrer_, &QPushButton::setEnabled);
    connect(enregistrer_, &QPushButton::clicked, this, [this] {
        std::string t = A(commentaire_->toPlainText());
        std::string texte;
        for (char ch : t) texte += ch == '\n' ? std::string("\r\n") : std::string(1, ch);
        if (logique_.EnregistreCommentaire(texte)) Montre();
    });
    connect(ajouter_, &QPushButton::clicked, this, &FrmCommuneQt::Ajoute);
    connect(retirer_, &QPushButton::clicked, this, [this] {
        if (!logique_.Retire()) return;
        commune_->clear();
        AllerMot(index_->text());
        Montre();
    });
    connect(reorganiser_, &QPushButton::clicked, this, [this] {
        logique_.Reorganise();
        AllerMot(index_->text());
        Montre();
    });
    connect(prendre_, &QPushButton::clicked, this, &FrmCommuneQt::Prend);
    connect(fermer_, &QPushButton::clicked, this,
            [this] { (parentWidget() ? parentWidget() : static_cast<QWidget*>(this))->close(); });

    logique_.Ouvre();
    if (logique_.Ouverte()) AllerMot(QString());
    Retraduit();
    Montre();
    setMinimumSize(760, 440);
    commune_->setFocus();
}

void FrmCommuneQt::Retraduit() {
    setWindowTitle(M(msg_communes::Titre));
    aucun_->setText(MT(msg_communes::Aucun));
    lblCommune_->setText(M(msg_communes::Commune));
    lblIndex_->setText(M(msg_communes::MotDirecteur));
    aller_->setText(M(msg_communes::Aller));
    lblMots_->setText(M(msg_communes::Mots));
    lblCommunes_->setText(M(msg_communes::CommunesDuMot));
    lblNumero_->setText(M(msg_communes::Numero));
    lblCodes_->setText(M(msg_communes::CodesPostaux));
    lblAgglo_->setText(M(msg_communes::Agglomeration));
    lblPrincipale_->setText(M(msg_communes::Principale));
    lblDepartement_->setText(M(msg_communes::Departement));
    lblPopulation_->setText(M(msg_communes::Population));
    lblSuperficie_->setText(M(msg_communes::Superficie));
    lblCommentaire_->setText(M(msg_communes::Commentaire));
    enregistrer_->setText(M(msg_communes::Enregistrer));
    ajouter_->setText(M(msg_communes::Ajouter));
    retirer_->setText(M(msg_communes::Retirer));
    reorganiser_->setText(M(msg_communes::Reorganiser));
    prendre_->setText(M(msg_communes::Prendre));
    fermer_->setText(M(msg_communes::Fermer));
    Montre();
}

void FrmCommuneQt::AllerMot(const QString& texte) {
    if (!logique_.Ouverte()) return;
    FichierCommunes& f = *logique_.Fichier();
    const bool b = mots_->blockSignals(true);
    mots_->clear();
    for (const std::string& m : logique_.MotsAutour(A(texte), 60)) mots_->addItem(Q(m));
    mots_->blockSignals(b);
    if (f.NombreMots() == 0) {
        communes_->clear();
        return;
    }
    const QString mot = Q(f.Mot(f.ChercheMot(logique_.FormeMot(A(texte)))));
    const auto trouves = mots_->findItems(mot, Qt::MatchExactly);
    if (!trouves.isEmpty()) {
        mots_->setCurrentItem(trouves.front());
        mots_->scrollToItem(trouves.front(), QAbstractItemView::PositionAtCenter);
    } else {
        RemplitCommunes(A(mot));
    }
}

void FrmCommuneQt::RemplitCommunes(const std::string& mot) {
    const bool b = communes_->blockSignals(true);
    communes_->clear();
    for (const auto& [n, nom] : logique_.CommunesDuMot(mot)) {
        auto* i = new QListWidgetItem(Q(nom), communes_);
        i->setData(Qt::UserRole, n);
        if (n == logique_.Choisie()) communes_->setCurrentItem(i);
    }
    communes_->blockSignals(b);
}

void FrmCommuneQt::MontreCommune(std::uint32_t n) {
    logique_.Choisit(n);
    commune_->setText(Q(logique_.Affichee().nom));
    commune_->setModified(false);
    Montre();
}

void FrmCommuneQt::Montre() {
    const Commune& c = logique_.Affichee();
    const bool choisie = logique_.Choisie() != 0;
    numero_->setText(Q(c.numero));
    QString codes = Q(logique_.CodesPostaux());
    if (!c.detail.empty()) codes += QStringLiteral("  ") + Q(c.detail);
    codes_->setText(codes);
    agglo_->setText(Q(c.agglomeration));
    principale_->setText(choisie ? Q(logique_.Principale()) : QString());
    departement_->setText(choisie ? Q(logique_.Departement()) : QString());
    population_->setText(choisie ? QString::number(c.population) : QString());
    superficie_->setText(choisie ? MT(msg_communes::Hectares, QString::number(c.superficie)) : QString());
    commentaire_->setPlainText(Q(c.commentaire));
    commentaire_->document()->setModified(false);
    for (QLineEdit* e : {numero_, codes_, agglo_, principale_}) e->setCursorPosition(0);
    Etat();
}

void FrmCommuneQt::Etat() {
    const bool ouverte = logique_.Ouverte();
    const bool choisie = ouverte && logique_.Choisie() != 0;
    aucun_->setVisible(!ouverte);
    for (QWidget* w : std::initializer_list<QWidget*>{commune_, index_, aller_, mots_, communes_, ajouter_, reorganiser_})
        w->setEnabled(ouverte);
    commentaire_->setReadOnly(!choisie);
    retirer_->setEnabled(choisie);
    enregistrer_->setEnabled(choisie && commentaire_->document()->isModified());
    prendre_->setEnabled(choisie || !commune_->text().trimmed().isEmpty());
}

void FrmCommuneQt::Prend() {
    if (!prend_) return;
    const std::string nom = logique_.Choisie() ? logique_.Affichee().nom : Trim(A(commune_->text()));
    if (!nom.empty()) prend_(nom);
}

void FrmCommuneQt::Ajoute() {
    QDialog d(this);
    d.setObjectName(QStringLiteral("FrmNouvelleCommune"));
    d.setWindowTitle(M(msg_communes::Nouvelle));
    auto* nom = new QLineEdit(&d);
    nom->setObjectName(QStringLiteral("TxtNom"));
    auto* numero = new QLineEdit(&d);
    auto* codes = new QLineEdit(&d);
    auto* population = new QLineEdit(&d);
    auto* superficie = new QLineEdit(&d);
    for (QLineEdit* e : {population, superficie}) e->setValidator(new QIntValidator(0, 99999999, e));
    auto* commentaire = new QLineEdit(&d);
    auto* formulaire = new QFormLayout;
    auto ligne = [&](int n, QLineEdit* e) {
        auto* l = new QLabel(M(n), &d);
        l->setBuddy(e);
        formulaire->addRow(l, e);
    };
    ligne(msg_communes::Nom, nom);
    ligne(msg_communes::Numero, numero);
    ligne(msg_communes::CodesPostaux, codes);
    ligne(msg_communes::Population, population);
    ligne(msg_communes::Superficie, superficie);
    ligne(msg_communes::Commentaire, commentaire);
    auto* boutons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &d);
    boutons->button(QDialogButtonBox::Ok)->setText(M(msg_communes::Ajouter));
    connect(boutons, &QDialogButtonBox::accepted, &d, &QDialog::accept);
    connect(boutons, &QDialogButtonBox::rejected, &d, &QDialog::reject);
    auto* l = new QVBoxLayout(&d);
    l->addLayout(formulaire);
    l->addWidget(boutons);
    d.resize(420, d.sizeHint().height());
    nom->setFocus();
    if (d.exec() != QDialog::Accepted) return;
    Commune c;
    c.nom = A(nom->text());
    c.numero = Trim(A(numero->text()));
    c.codesPostaux = Trim(A(codes->text()));
    c.population = population->text().toUInt();
    c.superficie = superficie->text().toUInt();
    c.commentaire = A(commentaire->text());
    const std::uint32_t n = logique_.Ajoute(c);
    if (n == 0) return;
    const QString premier = PremierMot(Q(logique_.Affichee().nom));
    index_->setText(premier);
    AllerMot(premier);
    MontreCommune(n);
}

std::optional<std::string> ChoisitCommune(ContexteQt& c, const std::string& texte, QWidget* parent) {
    QDialog d(parent);
    d.setObjectName(QStringLiteral("DlgCommune"));
    std::optional<std::string> choix;
    auto* w = new FrmCommuneQt(c, [&](const std::string& nom) {
        choix = nom;
        d.accept();
    }, &d);
    if (!w->logique().Ouverte()) return std::nullopt;
    d.setWindowTitle(w->windowTitle());
    auto* l = new QVBoxLayout(&d);
    l->setContentsMargins(0, 0, 0, 0);
    l->addWidget(w);
    // The typed place: the commune of that very name, or its first word;
    // no box is asked.
    const QString t = Q(texte).trimmed();
    FichierCommunes& f = *w->logique().Fichier();
    bool exact = false;
    const std::uint32_t i = t.isEmpty() ? 0 : f.ChercheNom(A(t), exact);
    const std::vector<std::uint32_t> communes = exact ? f.CommunesNom(i) : std::vector<std::uint32_t>{};
    if (!communes.empty()) w->MontreCommune(communes.front());
    w->commune()->setText(communes.empty() ? t : Q(f.NomIndex(i)));
    w->commune()->setModified(false);
    const QString premier = PremierMot(w->commune()->text());
    w->index()->setText(Q(w->logique().FormeMot(A(premier))));
    w->AllerMot(premier);
    d.resize(900, 520);
    d.exec();
    return choix;
}

void AideLieu(ContexteQt& c, QLineEdit* champ) {
    auto* modele = new QStringListModel(champ);
    auto* completion = new QCompleter(modele, champ);
    completion->setObjectName(QStringLiteral("AideLieu"));
    completion->setCaseSensitivity(Qt::CaseInsensitive);
    completion->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    champ->setCompleter(completion);
    champ->installEventFilter(new ToucheListe(completion, champ));
    // The list follows the text before the field asks its completer.
    QObject::connect(champ, &QLineEdit::textEdited, modele, [&c, modele, completion](const QString& t) {
        // A name of the list, highlighted or taken, keeps the list.
        if (modele->stringList().contains(t)) return;
        QStringList noms;
        for (const std::string& n : LieuxProposes(c.logique.app(), A(t))) noms << Q(n);
        if (noms == modele->stringList()) return;
        modele->setStringList(noms);
        // A place field is narrow: the list is as wide as its longest name.
        QAbstractItemView* liste = completion->popup();
        int large = 0;
        for (const QString& n : noms) large = std::max(large, liste->fontMetrics().horizontalAdvance(n));
        liste->setMinimumWidth(large + liste->style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 24);
    });
    // The field follows the list even when it is not the focus widget,
    // which alone gets the line edit's own links to its completer.
    for (auto signal : {qOverload<const QString&>(&QCompleter::activated),
                        qOverload<const QString&>(&QCompleter::highlighted)})
        QObject::connect(completion, signal, champ, [champ](const QString& t) { Tape(champ, t); });
    auto* f4 = new QAction(champ);
    f4->setShortcut(QKeySequence(Qt::Key_F4));
    f4->setShortcutContext(Qt::WidgetShortcut);
    champ->addAction(f4);
    QObject::connect(f4, &QAction::triggered, champ, [&c, champ] {
        if (auto nom = ChoisitCommune(c, A(champ->text()), champ->window())) Tape(champ, Q(*nom));
    });
    if (champ->toolTip().isEmpty()) champ->setToolTip(MT(msg_communes::AideLieu));
}

static EnregistrementFormulaire enr("FrmCommune", [](ContexteQt& c) { return new FrmCommuneQt(c); });

} // namespace sylvane
