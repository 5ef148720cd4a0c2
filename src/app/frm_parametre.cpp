#include "app/frm_parametre.h"

#include "app/fenetre_principale.h"
#include "app/texte_qt.h"
#include "text/messages.h"
#include "text/tags.h"
#include "ui/application.h"
#include "ui/commandes.h"
#include "ui/mdiform1.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialog>
#include <QFontDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaObject>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <tuple>

namespace sylvane {
namespace {

constexpr int kTitre = 85; // "Paramètres"
enum Msg {
    kOngletGeneral = 3601, kOngletNoms, kOngletPresentation, kOngletOutils, kOngletRubriques,
    kOngletEvenements, kOngletDocuments, kOngletAuteur,
    kOk = 3610, kAnnuler, kAppliquer, kParcourir, kAjouter, kSupprimer, kMonter, kDescendre,
    kChoisir,
    kLangue = 3620, kAide, kTravail, kCommunes, kGeneanet, kImage, kFrequence, kMinutes,
    kAssistant, kBarreMenus, kBarreFenetres, kGroupeDossiers, kGroupeDemarrage, kGroupeBase,
    kDeCujus1, kDeCujus2, kPersonne, kParticulesTri, kPremierPrenom, kAucune,
    kGroupeAffichage = 3640, kGroupeConversion = 3643, kConvNom, kConvPrenom, kConvLieu,
    kTelQuel, kMajuscules, kInitiales, kGroupeParticules, kParticuleN, kParticuleP,
    kGroupeMotsCles, kMotClePrenom, kMotCleNom,
    kGroupeCouleurs = 3660, kFond, kDegrade, kCadreH, kCadreF, kCadreI, kPoliceH, kPoliceF,
    kPoliceI, kGroupeFormats, kFormat, kPolice, kCases, kProportionnel, kFormatN, kType,
    kParente, kTitreCouleur,
    kOutilsNote = 3680, kSeparateur, kAjouterSeparateur, kBoutonInconnu,
    kListe = 3685,
    kGroupeEvenements = 3688, kGroupeRoles, kObligatoire, kSexe, kIndifferent, kHomme, kFemme,
    kObligatoireCourt,
    kGroupeTypes = 3697, kGroupeGraphisme, kExtensions,
    kAuteur = 3720, kAdresse, kAuteurNote,
    kTitreAide = 3730, kTitreTravail, kTitreCommunes, kTitreGeneanet, kTitreImage, kTitrePolice,
};

QString Mot(const std::string& tag) { return Q(LibelleTagParametre(tag)); }

} // namespace

// A list that the user edits: the list, an entry with its add button, and
// remove, up and down beside the list. What it shows and what each button
// does are the owner's callbacks over the form's state.
class ListeEditable : public QWidget {
  public:
    ListeEditable(QWidget* parent, const char* nom, bool saisie, bool deplacer = true)
        : QWidget(parent) {
        setObjectName(QString::fromLatin1(nom));
        liste = new QListWidget(this);
        liste->setObjectName(QString::fromLatin1(nom) + QStringLiteral("Liste"));
        entree = new QComboBox(this);
        entree->setEditable(saisie);
        entree->setInsertPolicy(QComboBox::NoInsert);
        entree->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        entree->setMinimumContentsLength(12);
        ajouter = new QPushButton(this);
        supprimer = new QPushButton(this);
        monter = new QPushButton(this);
        descendre = new QPushButton(this);
        monter->setVisible(deplacer);
        descendre->setVisible(deplacer);
        auto* boutons = new QVBoxLayout;
        boutons->addWidget(monter);
        boutons->addWidget(descendre);
        boutons->addWidget(supprimer);
        boutons->addStretch(1);
        auto* haut = new QHBoxLayout;
        haut->addWidget(liste, 1);
        haut->addLayout(boutons);
        ligneEntree = new QHBoxLayout;
        ligneEntree->addWidget(entree, 1);
        ligneEntree->addWidget(ajouter);
        auto* l = new QVBoxLayout(this);
        l->setContentsMargins(0, 0, 0, 0);
        l->addLayout(haut, 1);
        l->addLayout(ligneEntree);

        QObject::connect(ajouter, &QPushButton::clicked, this, [this] { Ajoute(); });
        AjouteSurEntree(saisie ? static_cast<QWidget*>(entree->lineEdit()) : entree);
        QObject::connect(supprimer, &QPushButton::clicked, this, [this] { Supprime(); });
        QObject::connect(monter, &QPushButton::clicked, this, [this] { Deplace(-1); });
        QObject::connect(descendre, &QPushButton::clicked, this, [this] { Deplace(1); });
        QObject::connect(liste, &QListWidget::currentRowChanged, this, [this](int i) {
            Etat();
            if (choisi) choisi(i);
        });
        liste->installEventFilter(this);
        Etat();
    }

    void Retraduit() {
        ajouter->setText(M(kAjouter));
        supprimer->setText(M(kSupprimer));
        monter->setText(M(kMonter));
        descendre->setText(M(kDescendre));
    }

    // Fills the list again, keeping the current row where it can.
    void Montre(int courant = -2) {
        if (courant == -2) courant = liste->currentRow();
        const bool b = liste->blockSignals(true);
        liste->clear();
        if (lignes) {
            const auto v = lignes();
            for (int i = 0; i < static_cast<int>(v.size()); ++i) {
                auto* item = new QListWidgetItem(v[i], liste);
                if (icone) item->setIcon(icone(i));
            }
        }
        if (courant >= liste->count()) courant = liste->count() - 1;
        if (courant < 0 && liste->count() > 0) courant = 0;
        liste->setCurrentRow(courant);
        liste->blockSignals(b);
        Etat();
        if (choisi) choisi(liste->currentRow());
    }

    // Shows and edits the vector v, each entry shown by `libelle`.
    template <class T, class F> void Lie(std::vector<T>& v, F libelle) {
        LieA([&v] { return &v; }, libelle);
    }
    // The same over the vector that `v()` names at the time (none: nullptr).
    template <class V, class F> void LieA(V v, F libelle) {
        lignes = [v, libelle] {
            std::vector<QString> r;
            if (auto* t = v())
                for (const auto& x : *t) r.push_back(libelle(x));
            return r;
        };
        supprime = [v](int i) {
            if (auto* t = v()) t->erase(t->begin() + i);
        };
        deplace = [v](int i, int s) {
            auto* t = v();
            return t ? static_cast<int>(sylvane::Deplace(*t, i, s)) : i;
        };
    }
    // Offers the words of these tags in the entry, keeping what is typed.
    void Propose(const std::vector<std::string>& tags) {
        const QString t = entree->currentText();
        entree->clear();
        for (const auto& tag : tags) entree->addItem(Mot(tag));
        entree->setEditText(t);
    }

    QListWidget* liste;
    QComboBox* entree;
    QPushButton *ajouter, *supprimer, *monter, *descendre;
    QHBoxLayout* ligneEntree;
    std::function<std::vector<QString>()> lignes;
    std::function<QIcon(int)> icone;
    // Answers 0 when the entry was taken (its refusal is the logic's box).
    std::function<int(int index, const QString& texte)> ajoute;
    std::function<void(int)> supprime;
    std::function<int(int, int)> deplace;
    std::function<void(int)> choisi;

    // Enter in this field adds the entry, and goes no further: the dialog's
    // default button would close it.
    void AjouteSurEntree(QWidget* w) { w->installEventFilter(this); }

  protected:
    bool eventFilter(QObject* o, QEvent* e) override {
        if (e->type() != QEvent::KeyPress) return QWidget::eventFilter(o, e);
        const int touche = static_cast<QKeyEvent*>(e)->key();
        if (o == liste && touche == Qt::Key_Delete) {
            Supprime();
            return true;
        }
        if (o != liste && (touche == Qt::Key_Return || touche == Qt::Key_Enter)) {
            Ajoute();
            return true;
        }
        return QWidget::eventFilter(o, e);
    }

  private:
    void Etat() {
        const int i = liste->currentRow();
        supprimer->setEnabled(i >= 0 && supprime);
        monter->setEnabled(i > 0 && deplace);
        descendre->setEnabled(i >= 0 && i + 1 < liste->count() && deplace);
    }
    void Ajoute() {
        if (!ajoute) return;
        const QString t = entree->currentText().trimmed();
        if (ajoute(entree->currentIndex(), t) != 0) return;
        if (entree->isEditable()) entree->setEditText({});
        Montre(static_cast<int>(liste->count()));
        liste->setCurrentRow(liste->count() - 1);
    }
    void Supprime() {
        const int i = liste->currentRow();
        if (i < 0 || !supprime) return;
        supprime(i);
        Montre(i);
    }
    void Deplace(int sens) {
        const int i = liste->currentRow();
        if (i < 0 || !deplace) return;
        Montre(deplace(i, sens));
    }
};

// ---------------------------------------------------------------- form

template <class W> W* FrmParametreQt::Texte(W* w, int n) {
    textes_.emplace_back(w, n);
    return w;
}

QLabel* FrmParametreQt::Etiquette(int n, QWidget* compagnon) {
    auto* l = Texte(new QLabel(this), n);
    l->setBuddy(compagnon);
    return l;
}

QColor FrmParametreQt::CouleurQt(std::int32_t bgr) {
    const auto v = static_cast<std::uint32_t>(bgr);
    return QColor(static_cast<int>(v & 0xFF), static_cast<int>((v >> 8) & 0xFF),
                  static_cast<int>((v >> 16) & 0xFF));
}

std::int32_t FrmParametreQt::CouleurBgr(const QColor& c) {
    return static_cast<std::int32_t>(c.red() | (c.green() << 8) | (c.blue() << 16));
}

namespace {

std::int32_t* Couleur(Parametres& p, int i) {
    std::int32_t* t[] = {&p.couleurFond,        &p.couleurCadreHomme,  &p.couleurCadreFemme,
                         &p.couleurCadreIndetermine, &p.couleurPoliceHomme, &p.couleurPoliceFemme,
                         &p.couleurPoliceIndetermine};
    return t[i];
}

QIcon Pastille(const QColor& c) {
    QPixmap px(32, 16);
    px.fill(c);
    QPainter p(&px);
    p.setPen(Qt::black);
    p.drawRect(0, 0, 31, 15);
    return QIcon(px);
}

QIcon IconeOutil(int outil) {
    if (outil > 0) return QIcon(QStringLiteral(":/icons/%1.png").arg(outil, 2, 10, QLatin1Char('0')));
    // A separator keeps the text in line with the others.
    QPixmap vide(24, 24);
    vide.fill(Qt::transparent);
    return QIcon(vide);
}

} // namespace

FrmParametreQt::FrmParametreQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c),
      logique_(c.logique.app(), c.logique.services().boites, c.logique.services().selecteur,
               [&c](const std::string& l) { return c.logique.ChoisitLangue(l); }) {
    onglets_ = new QTabWidget(this);
    onglets_->setObjectName(QStringLiteral("TabParametre"));
    // Every tab in sight: the dialog is as wide as their row.
    onglets_->setUsesScrollButtons(false);
    onglets_->addTab(OngletGeneral(), {});
    onglets_->addTab(OngletNoms(), {});
    onglets_->addTab(OngletPresentation(), {});
    onglets_->addTab(OngletOutils(), {});
    onglets_->addTab(OngletRubriques(), {});
    onglets_->addTab(OngletEvenements(), {});
    onglets_->addTab(OngletDocuments(), {});
    onglets_->addTab(OngletAuteur(), {});

    auto* ok = Texte(new QPushButton(this), kOk);
    ok->setObjectName(QStringLiteral("CmdOk"));
    ok->setDefault(true);
    auto* annuler = Texte(new QPushButton(this), kAnnuler);
    annuler->setObjectName(QStringLiteral("CmdAnnuler"));
    auto* appliquer = Texte(new QPushButton(this), kAppliquer);
    appliquer->setObjectName(QStringLiteral("CmdAppliquer"));
    connect(ok, &QPushButton::clicked, this, [this] { Ok(); });
    connect(annuler, &QPushButton::clicked, this, [this] { Annuler(); });
    connect(appliquer, &QPushButton::clicked, this, [this] { Appliquer(); });
    auto* bas = new QHBoxLayout;
    bas->addStretch(1);
    bas->addWidget(ok);
    bas->addWidget(annuler);
    bas->addWidget(appliquer);
    auto* l = new QVBoxLayout(this);
    l->addWidget(onglets_, 1);
    l->addLayout(bas);

    Retraduit();
    langue_->setFocus();
}

QLineEdit* FrmParametreQt::Chemin(QGridLayout* g, int ligne, int libelle,
                                  std::string Parametres::*champ, bool dossier,
                                  const char* filtre) {
    auto* e = new QLineEdit(this);
    auto* b = Texte(new QPushButton(this), kParcourir);
    g->addWidget(Etiquette(libelle, e), ligne, 0);
    g->addWidget(e, ligne, 1);
    g->addWidget(b, ligne, 2);
    connect(e, &QLineEdit::textEdited, this,
            [this, champ](const QString& t) { logique_.etat.p.*champ = CheminInterne(t); });
    const int titre = kTitreAide + (libelle - kAide);
    connect(b, &QPushButton::clicked, this, [this, e, champ, dossier, filtre, titre] {
        auto& d = c_.logique.services().fichiers;
        const std::string depart = logique_.etat.p.*champ;
        auto r = dossier ? d.Dossier(titre, depart) : d.Ouvrir(titre, filtre, depart);
        if (!r) return;
        logique_.etat.p.*champ = *r;
        e->setText(CheminQt(*r));
    });
    montres_.push_back([this, e, champ] { e->setText(CheminQt(logique_.etat.p.*champ)); });
    return e;
}

QWidget* FrmParametreQt::OngletGeneral() {
    auto* w = new QWidget(this);
    auto* dossiers = Texte(new QGroupBox(w), kGroupeDossiers);
    auto* g = new QGridLayout(dossiers);
    langue_ = new QComboBox(w);
    langue_->setObjectName(QStringLiteral("LstLangue"));
    g->addWidget(Etiquette(kLangue, langue_), 0, 0);
    g->addWidget(langue_, 0, 1, 1, 2);
    connect(langue_, &QComboBox::currentTextChanged, this, [this](const QString& t) {
        if (!montre_) logique_.etat.p.langue = A(t);
    });
    Chemin(g, 1, kAide, &Parametres::aide, false, "Aide (*.chm;*.htm;*.html)|*.chm;*.htm;*.html|");
    Chemin(g, 2, kTravail, &Parametres::dossierTravail, true, "");
    Chemin(g, 3, kCommunes, &Parametres::fichierCommunes, false, "Communes (*.svx)|*.svx|");
    Chemin(g, 4, kGeneanet, &Parametres::geneanet, true, "");
    Chemin(g, 5, kImage, &Parametres::nomImage, false,
           "Images (*.bmp;*.jpg;*.png;*.gif)|*.bmp;*.jpg;*.jpeg;*.png;*.gif|");
    g->setColumnStretch(1, 1);

    auto* demarrage = Texte(new QGroupBox(w), kGroupeDemarrage);
    auto* d = new QGridLayout(demarrage);
    auto* frequence = new QSpinBox(w);
    frequence->setObjectName(QStringLiteral("TxtFrequence"));
    frequence->setRange(BornesParametre::kFrequenceMin, BornesParametre::kFrequenceMax);
    connect(frequence, &QSpinBox::valueChanged, this,
            [this](int v) { logique_.etat.p.frequenceSauvegarde = v; });
    montres_.push_back([this, frequence] { frequence->setValue(logique_.etat.p.frequenceSauvegarde); });
    d->addWidget(Etiquette(kFrequence, frequence), 0, 0);
    auto* ligne = new QHBoxLayout;
    ligne->addWidget(frequence);
    ligne->addWidget(Texte(new QLabel(w), kMinutes));
    ligne->addStretch(1);
    d->addLayout(ligne, 0, 1);
    int rang = 1;
    for (auto [msg, champ] : {std::pair{kAssistant, &Parametres::assistant},
                              std::pair{kBarreMenus, &Parametres::barreMenus},
                              std::pair{kBarreFenetres, &Parametres::barreFenetres}}) {
        auto* x = Texte(new QCheckBox(w), msg);
        connect(x, &QCheckBox::toggled, this, [this, champ](bool v) { logique_.etat.p.*champ = v; });
        montres_.push_back([this, x, champ] { x->setChecked(logique_.etat.p.*champ); });
        d->addWidget(x, rang++, 0, 1, 2);
    }
    d->setColumnStretch(1, 1);

    groupeBase_ = Texte(new QGroupBox(w), kGroupeBase);
    auto* b = new QGridLayout(groupeBase_);
    deCujus1_ = new QLabel(w);
    deCujus2_ = new QLabel(w);
    personne_ = new QLabel(w);
    for (int i = 1; i <= 2; ++i) {
        auto* bouton = Texte(new QPushButton(w), kChoisir);
        bouton->setObjectName(QStringLiteral("CmdDeCujus%1").arg(i));
        b->addWidget(Etiquette(i == 1 ? kDeCujus1 : kDeCujus2, bouton), i - 1, 0);
        b->addWidget(i == 1 ? deCujus1_ : deCujus2_, i - 1, 1);
        b->addWidget(bouton, i - 1, 2);
        connect(bouton, &QPushButton::clicked, this, [this, i] {
            if (logique_.ChoisitDeCujus(i)) MontreBase();
        });
    }
    b->addWidget(Texte(new QLabel(w), kPersonne), 2, 0);
    b->addWidget(personne_, 2, 1, 1, 2);
    for (auto [msg, champ, r] : {std::tuple{kParticulesTri, &EtatParametre::particulesTri, 3},
                                 std::tuple{kPremierPrenom, &EtatParametre::premierPrenom, 4}}) {
        auto* x = Texte(new QCheckBox(w), msg);
        connect(x, &QCheckBox::toggled, this, [this, champ](bool v) { logique_.etat.*champ = v; });
        montres_.push_back([this, x, champ] { x->setChecked(logique_.etat.*champ); });
        b->addWidget(x, r, 0, 1, 3);
    }
    b->setColumnStretch(1, 1);

    auto* l = new QVBoxLayout(w);
    l->addWidget(dossiers);
    l->addWidget(demarrage);
    l->addWidget(groupeBase_);
    l->addStretch(1);
    return w;
}

QWidget* FrmParametreQt::OngletNoms() {
    auto* w = new QWidget(this);
    auto& p = logique_.etat.p;

    auto* affichage = Texte(new QGroupBox(w), kGroupeAffichage);
    auto* la = new ListeEditable(affichage, "LstAffichage", true);
    la->Lie(p.affichageNom, Mot);
    la->ajoute = [this](int, const QString& t) { return logique_.AjouteAffichage(A(t)); };
    (new QVBoxLayout(affichage))->addWidget(la);
    listes_.push_back(la);
    montres_.push_back([this, la] { la->Propose(logique_.VariantesAffichage()); });

    auto* conversion = Texte(new QGroupBox(w), kGroupeConversion);
    auto* f = new QFormLayout(conversion);
    for (auto [msg, champ] : {std::pair{kConvNom, &Parametres::conversionNom},
                              std::pair{kConvPrenom, &Parametres::conversionPrenom},
                              std::pair{kConvLieu, &Parametres::conversionLieu}}) {
        auto* cb = new QComboBox(w);
        cb->setObjectName(QStringLiteral("LstConversion%1").arg(msg - kConvNom + 1));
        cb->addItems({QString(), QString(), QString()});
        connect(cb, &QComboBox::currentIndexChanged, this, [this, champ](int i) {
            if (montre_ || i < 0) return;
            auto& v = logique_.etat.p.*champ;
            v = ValeurConversion(i, v);
        });
        montres_.push_back([this, cb, champ] {
            cb->setItemText(0, M(kTelQuel));
            cb->setItemText(1, M(kMajuscules));
            cb->setItemText(2, M(kInitiales));
            cb->setCurrentIndex(IndexConversion(logique_.etat.p.*champ));
        });
        f->addRow(Etiquette(msg, cb), cb);
    }

    auto* particules = Texte(new QGroupBox(w), kGroupeParticules);
    particules_ = new ListeEditable(particules, "LstParticules", true, false);
    particules_->Lie(p.particules, [](const Particule& x) { return Q(LigneParticule(x)); });
    particules_->ajoute = [this](int, const QString& t) { return logique_.AjouteParticule(A(t)); };
    particuleN_ = Texte(new QCheckBox(particules), kParticuleN);
    particuleN_->setObjectName(QStringLiteral("ChkParticuleNom"));
    particuleP_ = Texte(new QCheckBox(particules), kParticuleP);
    particuleP_->setObjectName(QStringLiteral("ChkParticulePrenom"));
    particules_->choisi = [this, &p](int i) {
        const bool ok = i >= 0 && i < static_cast<int>(p.particules.size());
        for (QCheckBox* x : {particuleN_, particuleP_}) {
            const bool b = x->blockSignals(true);
            x->setEnabled(ok);
            x->setChecked(ok && (x == particuleN_ ? p.particules[i].nom : p.particules[i].prenom));
            x->blockSignals(b);
        }
    };
    for (QCheckBox* x : {particuleN_, particuleP_})
        connect(x, &QCheckBox::toggled, this, [this, x, &p](bool v) {
            const int i = particules_->liste->currentRow();
            if (i < 0 || i >= static_cast<int>(p.particules.size())) return;
            (x == particuleN_ ? p.particules[i].nom : p.particules[i].prenom) = v;
            particules_->liste->item(i)->setText(Q(LigneParticule(p.particules[i])));
        });
    auto* lp = new QVBoxLayout(particules);
    lp->addWidget(particules_, 1);
    auto* drapeaux = new QHBoxLayout;
    drapeaux->addWidget(particuleN_);
    drapeaux->addWidget(particuleP_);
    drapeaux->addStretch(1);
    lp->addLayout(drapeaux);
    listes_.push_back(particules_);

    auto* motsCles = Texte(new QGroupBox(w), kGroupeMotsCles);
    auto* lm = new QVBoxLayout(motsCles);
    for (auto [msg, champ] : {std::pair{kMotClePrenom, &Parametres::motClePrenom},
                              std::pair{kMotCleNom, &Parametres::motCleNom}}) {
        auto* x = Texte(new QCheckBox(w), msg);
        connect(x, &QCheckBox::toggled, this, [this, champ](bool v) { logique_.etat.p.*champ = v; });
        montres_.push_back([this, x, champ] { x->setChecked(logique_.etat.p.*champ); });
        lm->addWidget(x);
    }

    auto* gauche = new QVBoxLayout;
    gauche->addWidget(affichage, 1);
    gauche->addWidget(conversion);
    auto* droite = new QVBoxLayout;
    droite->addWidget(particules, 1);
    droite->addWidget(motsCles);
    auto* l = new QHBoxLayout(w);
    l->addLayout(gauche, 1);
    l->addLayout(droite, 1);
    return w;
}

QWidget* FrmParametreQt::OngletPresentation() {
    auto* w = new QWidget(this);
    auto* groupe = Texte(new QGroupBox(w), kGroupeCouleurs);
    auto* g = new QGridLayout(groupe);
    const int libelles[] = {kFond, kCadreH, kCadreF, kCadreI, kPoliceH, kPoliceF, kPoliceI};
    for (int i = 0; i < 7; ++i) {
        auto* b = new QPushButton(w);
        b->setObjectName(QStringLiteral("CmdCouleur%1").arg(i));
        b->setIconSize(QSize(32, 16));
        b->setMinimumWidth(90);
        couleurs_.push_back(b);
        // The background alone, then boxes and texts side by side.
        const int ligne = i == 0 ? 0 : (i - 1) % 3 + 1;
        const int colonne = i == 0 ? 0 : (i - 1) / 3 * 2;
        g->addWidget(Etiquette(libelles[i], b), ligne, colonne);
        g->addWidget(b, ligne, colonne + 1);
        connect(b, &QPushButton::clicked, this, [this, i, libelles] {
            QString nom = M(libelles[i]).remove(QLatin1Char('&'));
            if (nom.endsWith(QLatin1Char(':'))) nom.chop(1);
            const QColor c = QColorDialog::getColor(CouleurQt(*Couleur(logique_.etat.p, i)), this,
                                                    MT(kTitreCouleur, nom.trimmed()));
            if (c.isValid()) DefinitCouleur(i, c);
        });
    }
    auto* degrade = Texte(new QCheckBox(w), kDegrade);
    degrade->setObjectName(QStringLiteral("ChkDegrade"));
    connect(degrade, &QCheckBox::toggled, this, [this](bool v) { logique_.etat.p.degrade = v; });
    montres_.push_back([this, degrade] { degrade->setChecked(logique_.etat.p.degrade); });
    g->addWidget(degrade, 0, 2, 1, 2);
    g->setColumnStretch(1, 1);
    g->setColumnStretch(3, 1);
    g->setHorizontalSpacing(12);

    auto* formats = Texte(new QGroupBox(w), kGroupeFormats);
    auto* f = new QGridLayout(formats);
    f->addWidget(Texte(new QLabel(w), kFormat), 0, 0);
    f->addWidget(Texte(new QLabel(w), kPolice), 0, 1);
    f->addWidget(Texte(new QLabel(w), kCases), 0, 2);
    f->addWidget(Texte(new QLabel(w), kProportionnel), 0, 3);
    for (int i = 0; i < 4; ++i) {
        auto* police = new QPushButton(w);
        police->setObjectName(QStringLiteral("CmdPolice%1").arg(i + 1));
        polices_.push_back(police);
        auto* cases = new QSpinBox(w);
        cases->setObjectName(QStringLiteral("TxtCases%1").arg(i + 1));
        cases->setRange(BornesParametre::kCasesMin, BornesParametre::kCasesMax);
        auto* prop = new QCheckBox(w);
        prop->setObjectName(QStringLiteral("ChkProportionnel%1").arg(i + 1));
        auto* lib = new QLabel(w);
        lib->setBuddy(police);
        montres_.push_back([this, i, cases, prop, lib] {
            lib->setText(MT(kFormatN, QStringLiteral("&%1").arg(i + 1)));
            cases->setValue(logique_.etat.p.nombreCases[i]);
            prop->setChecked(logique_.etat.p.proportionnel[i]);
        });
        connect(cases, &QSpinBox::valueChanged, this,
                [this, i](int v) { logique_.etat.p.nombreCases[i] = v; });
        connect(prop, &QCheckBox::toggled, this,
                [this, i](bool v) { logique_.etat.p.proportionnel[i] = v; });
        connect(police, &QPushButton::clicked, this, [this, i] {
            auto& p = logique_.etat.p;
            bool ok = false;
            const QFont choisie = QFontDialog::getFont(&ok, QFont(Q(p.nomPolice[i]), p.taillePolice[i]),
                                                       this, MT(kTitrePolice, QString::number(i + 1)));
            if (!ok) return;
            p.nomPolice[i] = A(choisie.family());
            p.taillePolice[i] = std::clamp(choisie.pointSize(), BornesParametre::kTailleMin,
                                           BornesParametre::kTailleMax);
            MontrePolices();
        });
        f->addWidget(lib, i + 1, 0);
        f->addWidget(police, i + 1, 1);
        f->addWidget(cases, i + 1, 2);
        f->addWidget(prop, i + 1, 3, Qt::AlignCenter);
    }
    f->setColumnStretch(1, 1);

    auto* divers = new QFormLayout;
    divers->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    auto* type = new QSpinBox(w);
    type->setObjectName(QStringLiteral("TxtType"));
    type->setRange(BornesParametre::kTypeMin, BornesParametre::kTypeMax);
    auto* parente = new QSpinBox(w);
    parente->setObjectName(QStringLiteral("TxtParente"));
    parente->setRange(BornesParametre::kParenteMin, BornesParametre::kParenteMax);
    connect(type, &QSpinBox::valueChanged, this, [this](int v) { logique_.etat.p.typePresentation = v; });
    connect(parente, &QSpinBox::valueChanged, this,
            [this](int v) { logique_.etat.p.maximumRechercheParente = v; });
    montres_.push_back([this, type, parente] {
        type->setValue(logique_.etat.p.typePresentation);
        parente->setValue(logique_.etat.p.maximumRechercheParente);
    });
    divers->addRow(Etiquette(kType, type), type);
    divers->addRow(Etiquette(kParente, parente), parente);

    auto* l = new QVBoxLayout(w);
    l->addWidget(groupe);
    l->addWidget(formats);
    l->addLayout(divers);
    l->addStretch(1);
    return w;
}

QWidget* FrmParametreQt::OngletOutils() {
    auto* w = new QWidget(this);
    auto& p = logique_.etat.p;
    auto* la = new ListeEditable(w, "LstIcones", false);
    la->liste->setIconSize(QSize(24, 24));
    la->Lie(p.icones, [](int n) {
        const int t = OutilDuNumero(n);
        return t == 0 ? M(kSeparateur) : t < 0 ? MT(kBoutonInconnu, QString::number(n)) : M(Outil(t).infobulle);
    });
    la->icone = [&p](int i) { return IconeOutil(OutilDuNumero(p.icones[i])); };
    la->ajoute = [&p](int index, const QString&) {
        const auto outils = OutilsDisponibles();
        if (index < 0 || index >= static_cast<int>(outils.size())) return 1;
        p.icones.push_back(NumeroDeOutil(outils[index]));
        return 0;
    };
    la->entree->setObjectName(QStringLiteral("LstOutils"));
    auto* separateur = Texte(new QPushButton(w), kAjouterSeparateur);
    la->ligneEntree->addWidget(separateur);
    connect(separateur, &QPushButton::clicked, this, [this, la, &p] {
        p.icones.push_back(99);
        la->Montre(static_cast<int>(p.icones.size()) - 1);
    });
    montres_.push_back([la] {
        const int i = la->entree->currentIndex();
        la->entree->clear();
        for (int t : OutilsDisponibles()) la->entree->addItem(IconeOutil(t), M(Outil(t).infobulle));
        la->entree->setCurrentIndex(std::max(0, i));
    });
    listes_.push_back(la);
    auto* note = Texte(new QLabel(w), kOutilsNote);
    note->setWordWrap(true);
    auto* l = new QVBoxLayout(w);
    l->addWidget(note);
    l->addWidget(la, 1);
    return w;
}

QWidget* FrmParametreQt::OngletRubriques() {
    auto* w = new QWidget(this);
    auto& p = logique_.etat.p;
    listeRubrique_ = new QComboBox(w);
    listeRubrique_->setObjectName(QStringLiteral("LstListeRubriques"));
    auto* la = new ListeEditable(w, "LstRubrique", true);
    auto liste = [this, &p]() -> std::vector<std::string>* {
        const int i = listeRubrique_->currentIndex();
        return i >= 0 && i < static_cast<int>(p.rubriques.size()) ? &p.rubriques[i].second : nullptr;
    };
    la->LieA(liste, Mot);
    la->ajoute = [this](int, const QString& t) {
        return logique_.AjouteTagRubrique(static_cast<std::size_t>(listeRubrique_->currentIndex()), A(t));
    };
    connect(listeRubrique_, &QComboBox::currentIndexChanged, this, [la](int) { la->Montre(0); });
    montres_.push_back([this, la, &p] {
        const int i = listeRubrique_->currentIndex();
        const bool b = listeRubrique_->blockSignals(true);
        listeRubrique_->clear();
        for (const auto& [nom, tags] : p.rubriques) listeRubrique_->addItem(Mot(nom));
        listeRubrique_->setCurrentIndex(std::max(0, i));
        listeRubrique_->blockSignals(b);
        la->Propose(TagsConnus());
    });
    listes_.push_back(la);
    auto* haut = new QHBoxLayout;
    haut->addWidget(Etiquette(kListe, listeRubrique_));
    haut->addWidget(listeRubrique_, 1);
    auto* l = new QVBoxLayout(w);
    l->addLayout(haut);
    l->addWidget(la, 1);
    return w;
}

QWidget* FrmParametreQt::OngletEvenements() {
    auto* w = new QWidget(this);
    auto& p = logique_.etat.p;
    auto* ge = Texte(new QGroupBox(w), kGroupeEvenements);
    evenements_ = new ListeEditable(ge, "LstEvenements", true);
    evenements_->Lie(p.temoins, [](const Temoin& t) { return Mot(t.evenement); });
    evenements_->ajoute = [this](int, const QString& t) { return logique_.AjouteEvenement(A(t)); };
    (new QVBoxLayout(ge))->addWidget(evenements_);

    auto* gr = Texte(new QGroupBox(w), kGroupeRoles);
    roles_ = new ListeEditable(gr, "LstRoles", true);
    auto roles = [this, &p]() -> std::vector<std::string>* {
        const int e = evenements_->liste->currentRow();
        return e >= 0 && e < static_cast<int>(p.temoins.size()) ? &p.temoins[e].roles : nullptr;
    };
    roles_->LieA(roles, [](const std::string& x) {
        const Role role = LitRole(x);
        QString t = Mot(role.tag);
        if (role.sexe != ' ') t += QStringLiteral(" (%1)").arg(M(role.sexe == 'H' ? kHomme : kFemme));
        if (role.obligatoire) t += QStringLiteral(" - ") + M(kObligatoireCourt);
        return t;
    });
    roleObligatoire_ = Texte(new QCheckBox(gr), kObligatoire);
    roleObligatoire_->setObjectName(QStringLiteral("ChkObligatoire"));
    roleSexe_ = new QComboBox(gr);
    roleSexe_->setObjectName(QStringLiteral("LstSexe"));
    roleSexe_->addItems({QString(), QString(), QString()});
    // The flags show and change the selected role, and are those of a new one.
    auto sexe = [this] { return "  HF"[roleSexe_->currentIndex() + 1]; };
    roles_->ajoute = [this, sexe](int, const QString& t) {
        return logique_.AjouteRole(static_cast<std::size_t>(evenements_->liste->currentRow()),
                                   Role{roleObligatoire_->isChecked(), sexe(), A(t)});
    };
    roles_->choisi = [this, roles](int i) {
        auto* r = roles();
        if (!r || i < 0 || i >= static_cast<int>(r->size())) return;
        const Role role = LitRole((*r)[i]);
        const bool b1 = roleObligatoire_->blockSignals(true), b2 = roleSexe_->blockSignals(true);
        roleObligatoire_->setChecked(role.obligatoire);
        roleSexe_->setCurrentIndex(role.sexe == 'H' ? 1 : role.sexe == 'F' ? 2 : 0);
        roleObligatoire_->blockSignals(b1);
        roleSexe_->blockSignals(b2);
    };
    auto change = [this, roles, sexe] {
        auto* r = roles();
        const int i = roles_->liste->currentRow();
        if (!r || i < 0 || i >= static_cast<int>(r->size())) return;
        Role role = LitRole((*r)[i]);
        role.obligatoire = roleObligatoire_->isChecked();
        role.sexe = sexe();
        (*r)[i] = EcritRole(role);
        roles_->Montre(i);
    };
    connect(roleObligatoire_, &QCheckBox::toggled, this, change);
    connect(roleSexe_, &QComboBox::currentIndexChanged, this, change);
    evenements_->choisi = [this](int) { roles_->Montre(0); };
    auto* drapeaux = new QHBoxLayout;
    drapeaux->addWidget(roleObligatoire_);
    drapeaux->addSpacing(12);
    drapeaux->addWidget(Etiquette(kSexe, roleSexe_));
    drapeaux->addWidget(roleSexe_);
    drapeaux->addStretch(1);
    auto* lr = new QVBoxLayout(gr);
    lr->addWidget(roles_, 1);
    lr->addLayout(drapeaux);
    montres_.push_back([this] {
        roleSexe_->setItemText(0, M(kIndifferent));
        roleSexe_->setItemText(1, M(kHomme));
        roleSexe_->setItemText(2, M(kFemme));
        for (ListeEditable* x : {evenements_, roles_}) x->Propose(TagsConnus());
    });
    listes_.push_back(evenements_);
    listes_.push_back(roles_);
    auto* l = new QHBoxLayout(w);
    l->addWidget(ge, 1);
    l->addWidget(gr, 1);
    return w;
}

QWidget* FrmParametreQt::OngletDocuments() {
    auto* w = new QWidget(this);
    auto& p = logique_.etat.p;
    auto* gt = Texte(new QGroupBox(w), kGroupeTypes);
    auto* types = new ListeEditable(gt, "LstTypesDocument", true);
    types->Lie(p.typesDocument, Q);
    types->ajoute = [this](int, const QString& t) { return logique_.AjouteTypeDocument(A(t)); };
    (new QVBoxLayout(gt))->addWidget(types);
    listes_.push_back(types);

    auto* gg = Texte(new QGroupBox(w), kGroupeGraphisme);
    auto* formats = new ListeEditable(gg, "LstGraphisme", true);
    formats->Lie(p.graphisme, [](const std::pair<std::string, std::string>& x) {
        return Q(x.first) + QStringLiteral("  \u2014  ") + Q(x.second);
    });
    extensions_ = new QLineEdit(gg);
    extensions_->setObjectName(QStringLiteral("TxtExtensions"));
    formats->ajoute = [this](int, const QString& t) {
        const int r = logique_.AjouteGraphisme(A(t), A(extensions_->text()));
        if (!r) extensions_->clear();
        return r;
    };
    formats->AjouteSurEntree(extensions_);
    formats->ligneEntree->insertWidget(1, Etiquette(kExtensions, extensions_));
    formats->ligneEntree->insertWidget(2, extensions_, 1);
    (new QVBoxLayout(gg))->addWidget(formats);
    listes_.push_back(formats);

    auto* l = new QHBoxLayout(w);
    l->addWidget(gt, 2);
    l->addWidget(gg, 3);
    return w;
}

QWidget* FrmParametreQt::OngletAuteur() {
    auto* w = new QWidget(this);
    auto* f = new QFormLayout;
    auto* auteur = new QLineEdit(w);
    auteur->setObjectName(QStringLiteral("TxtAuteur"));
    connect(auteur, &QLineEdit::textEdited, this, [this](const QString& t) { logique_.etat.p.auteur = A(t); });
    montres_.push_back([this, auteur] { auteur->setText(Q(logique_.etat.p.auteur)); });
    f->addRow(Etiquette(kAuteur, auteur), auteur);
    for (int i = 0; i < 8; ++i) {
        auto* e = new QLineEdit(w);
        e->setObjectName(QStringLiteral("TxtAdresse%1").arg(i + 1));
        auto* lib = new QLabel(w);
        lib->setBuddy(e);
        connect(e, &QLineEdit::textEdited, this,
                [this, i](const QString& t) { logique_.etat.p.adresse[i] = A(t); });
        montres_.push_back([this, e, lib, i] {
            lib->setText(MT(kAdresse, QStringLiteral("&%1").arg(i + 1)));
            e->setText(Q(logique_.etat.p.adresse[i]));
        });
        f->addRow(lib, e);
    }
    auto* note = Texte(new QLabel(w), kAuteurNote);
    note->setWordWrap(true);
    auto* l = new QVBoxLayout(w);
    l->addLayout(f);
    l->addWidget(note);
    l->addStretch(1);
    return w;
}

// ---------------------------------------------------------------- showing

void FrmParametreQt::Retraduit() {
    setWindowTitle(M(kTitre));
    if (auto* d = qobject_cast<QDialog*>(window())) d->setWindowTitle(M(kTitre));
    for (int i = 0; i < onglets_->count(); ++i) onglets_->setTabText(i, M(kOngletGeneral + i));
    for (auto [o, n] : textes_) {
        if (auto* l = qobject_cast<QLabel*>(o)) l->setText(M(n));
        else if (auto* b = qobject_cast<QAbstractButton*>(o)) b->setText(M(n));
        else if (auto* g = qobject_cast<QGroupBox*>(o)) g->setTitle(M(n));
    }
    for (auto* l : listes_) l->Retraduit();
    if (langue_) Montre();
}

void FrmParametreQt::Montre() {
    montre_ = true;
    const auto& p = logique_.etat.p;
    langue_->clear();
    for (const auto& l : logique_.Langues()) langue_->addItem(Q(l));
    langue_->setCurrentText(Q(p.langue));
    for (auto& f : montres_) f();
    for (auto* l : listes_)
        if (l != roles_) l->Montre();
    roles_->Montre();
    MontreCouleurs();
    MontrePolices();
    MontreBase();
    montre_ = false;
}

void FrmParametreQt::MontreCouleurs() {
    for (int i = 0; i < static_cast<int>(couleurs_.size()); ++i) {
        const QColor c = CouleurQt(*Couleur(logique_.etat.p, i));
        couleurs_[i]->setIcon(Pastille(c));
        couleurs_[i]->setText(c.name().toUpper());
    }
}

void FrmParametreQt::MontrePolices() {
    const auto& p = logique_.etat.p;
    for (int i = 0; i < static_cast<int>(polices_.size()); ++i) {
        polices_[i]->setText(QStringLiteral("%1, %2").arg(Q(p.nomPolice[i])).arg(p.taillePolice[i]));
        QFont f(Q(p.nomPolice[i]));
        f.setPointSize(std::clamp(p.taillePolice[i], 6, 14));
        polices_[i]->setFont(f);
    }
}

void FrmParametreQt::MontreBase() {
    const auto& e = logique_.etat;
    groupeBase_->setEnabled(e.baseOuverte);
    auto nom = [this](std::int32_t n) {
        const std::string t = logique_.NomPersonne(n > 0 ? static_cast<std::uint32_t>(n) : 0);
        return t.empty() ? M(kAucune) : Q(t);
    };
    deCujus1_->setText(nom(e.p.deCujus));
    deCujus2_->setText(nom(e.p.deCujus2));
    personne_->setText(nom(e.p.personneEnCours));
}

void FrmParametreQt::DefinitCouleur(int i, const QColor& couleur) {
    if (i < 0 || i > 6) return;
    *Couleur(logique_.etat.p, i) = CouleurBgr(couleur);
    MontreCouleurs();
}

// ---------------------------------------------------------------- buttons

bool FrmParametreQt::Appliquer() {
    const auto refus = logique_.Valide();
    if (refus) onglets_->setCurrentIndex(static_cast<int>(refus.onglet));
    if (!logique_.Applique()) return false;
    // The window shows the new tool bar, colours and fonts.
    QMetaObject::invokeMethod(&c_.fenetre, "RafraichitTout");
    if (logique_.langueChangee) Retraduit();
    else Montre();
    return true;
}

bool FrmParametreQt::Ok() {
    if (!Appliquer()) return false;
    Ferme();
    return true;
}

void FrmParametreQt::Annuler() { Ferme(); }

void FrmParametreQt::Ferme() {
    if (auto* d = qobject_cast<QDialog*>(window())) d->accept();
    else if (parentWidget()) parentWidget()->close();
    else close();
}

namespace {

EnregistrementFormulaire enr("FrmParametre", [](ContexteQt& c) { return new FrmParametreQt(c); });

} // namespace

} // namespace sylvane
