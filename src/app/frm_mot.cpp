#include "app/frm_mot.h"

#include "app/fenetre_principale.h"
#include "app/frm_impression.h"
#include "app/texte_qt.h"
#include "publish/recapitulation.h"
#include "text/messages.h"
#include "text/mots.h"
#include "ui/frm_evenement.h"
#include "ui/frm_recherche.h"
#include "ui/mdiform1.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPrinter>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

namespace sylvane {
namespace {

QPushButton* Bouton(QWidget* parent, const char* nom) {
    auto* b = new QPushButton(parent);
    b->setObjectName(QString::fromLatin1(nom));
    return b;
}

QLineEdit* Champ(QWidget* parent, const char* nom) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(QString::fromLatin1(nom));
    return e;
}

// "#" ends every text of the base: it is never typed in.
void SansDiese(QLineEdit* e) {
    QObject::connect(e, &QLineEdit::textEdited, e, [e](const QString& t) {
        if (t.contains(QLatin1Char('#'))) e->setText(QString(t).remove(QLatin1Char('#')));
    });
}

QString TexteGenre(const GenreMot& g) {
    return Q(std::string(1, g.marque)) + QStringLiteral("  ") + Q(g.libelle);
}

} // namespace

// --- ListeMotsQt -------------------------------------------------------------------------------

ListeMotsQt::ListeMotsQt(FrmLMotCle& logique, QWidget* parent) : QWidget(parent), logique_(logique) {
    lblRecherche_ = new QLabel(this);
    recherche_ = Champ(this, "EtiRecherche");
    lblRecherche_->setBuddy(recherche_);
    grille_ = new QTableWidget(0, 2, this);
    grille_->setObjectName(QStringLiteral("Grille1"));
    grille_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grille_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grille_->setSelectionMode(QAbstractItemView::SingleSelection);
    grille_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    grille_->verticalHeader()->hide();
    grille_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    grille_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    grille_->installEventFilter(this);
    barre_ = new QScrollBar(Qt::Vertical, this);
    barre_->setObjectName(QStringLiteral("VScroll1"));
    auto* haut = new QHBoxLayout;
    haut->addWidget(lblRecherche_);
    haut->addWidget(recherche_, 1);
    auto* bas = new QHBoxLayout;
    bas->setSpacing(0);
    bas->addWidget(grille_, 1);
    bas->addWidget(barre_);
    auto* l = new QVBoxLayout(this);
    l->setContentsMargins(0, 0, 0, 0);
    l->addLayout(haut);
    l->addLayout(bas, 1);
    setFocusProxy(recherche_);
    barre_->setRange(0, std::max<int>(0, static_cast<int>(logique_.Liste().Taille()) - 1));
    barre_->setValue(static_cast<int>(logique_.premier));
    connect(barre_, &QScrollBar::valueChanged, this, [this](int v) {
        logique_.premier = static_cast<std::size_t>(v);
        Remplit();
    });
    connect(recherche_, &QLineEdit::textEdited, this, &ListeMotsQt::Cherche);
    connect(recherche_, &QLineEdit::returnPressed, this, [this] {
        if (const LigneMotCle* l = Ligne(std::max(0, grille_->currentRow())); l && valide) valide(*l);
    });
    connect(grille_, &QTableWidget::cellClicked, this, [this](int r) {
        if (const LigneMotCle* l = Ligne(r); l && choisi) choisi(*l);
    });
    connect(grille_, &QTableWidget::cellDoubleClicked, this, [this](int r) {
        if (const LigneMotCle* l = Ligne(r); l && valide) valide(*l);
    });
    Retraduit();
}

void ListeMotsQt::Retraduit() {
    lblRecherche_->setText(M(msg_mots::Chercher));
    grille_->setHorizontalHeaderLabels({M(msg_mots::ColMot), M(msg_mots::ColEmplois)});
}

const LigneMotCle* ListeMotsQt::Ligne(int rang) const {
    return rang >= 0 && rang < static_cast<int>(lignes_.size()) ? &lignes_[static_cast<std::size_t>(rang)]
                                                                  : nullptr;
}

void ListeMotsQt::Cherche(const QString& texte) {
    logique_.Cherche(A(texte));
    const bool b = barre_->blockSignals(true);
    barre_->setValue(static_cast<int>(logique_.premier));
    barre_->blockSignals(b);
    Remplit();
    grille_->setCurrentCell(0, 0);
}

void ListeMotsQt::Remplit() {
    const int hauteur = std::max(1, grille_->verticalHeader()->defaultSectionSize());
    const int n = std::max(1, grille_->viewport()->height() / hauteur);
    lignes_ = logique_.Lignes(static_cast<std::size_t>(n));
    grille_->setRowCount(static_cast<int>(lignes_.size()));
    for (int i = 0; i < static_cast<int>(lignes_.size()); ++i) {
        const LigneMotCle& l = lignes_[static_cast<std::size_t>(i)];
        grille_->setItem(i, 0, new QTableWidgetItem(Q(FrmLMotCle::Valeur(l))));
        auto* compte = new QTableWidgetItem(QString::number(l.emplois));
        compte->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grille_->setItem(i, 1, compte);
    }
    barre_->setPageStep(n);
}

void ListeMotsQt::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    Remplit();
}

// The wheel and the arrows beyond the rows shown move the page.
bool ListeMotsQt::eventFilter(QObject* o, QEvent* e) {
    if (o == grille_ && e->type() == QEvent::Wheel) {
        barre_->event(e);
        return true;
    }
    if (o == grille_ && e->type() == QEvent::KeyPress) {
        const int k = static_cast<QKeyEvent*>(e)->key();
        const int r = grille_->currentRow();
        if ((k == Qt::Key_Down && r == grille_->rowCount() - 1) || k == Qt::Key_PageDown) {
            barre_->setValue(barre_->value() + (k == Qt::Key_Down ? 1 : barre_->pageStep()));
            return true;
        }
        if ((k == Qt::Key_Up && r == 0) || k == Qt::Key_PageUp) {
            barre_->setValue(barre_->value() - (k == Qt::Key_Up ? 1 : barre_->pageStep()));
            return true;
        }
        if (k == Qt::Key_Return || k == Qt::Key_Enter) {
            if (const LigneMotCle* l = Ligne(r); l && valide) valide(*l);
            return true;
        }
    }
    return QWidget::eventFilter(o, e);
}

// --- FrmLMotCle --------------------------------------------------------------------------------

QPushButton* MenuRecapitulation(MDIForm1& f, FrmLMotCle& logique, QWidget* parent) {
    auto* bouton = Bouton(parent, "MnuRecap");
    bouton->setText(M(msg_mots::Recapitulation));
    auto* menu = new QMenu(bouton);
    auto* ensemble = new QAction(M(msg_mots::TousIndex), menu);
    ensemble->setObjectName(QStringLiteral("MnuEnsemble"));
    ensemble->setCheckable(true);
    auto* imp = menu->addAction(M(msg_mots::RecapImp), parent, [&f, &logique, ensemble, parent] {
        Base* b = f.base();
        if (!b || f.Occupe()) return;
        QPrinter imprimante(QPrinter::HighResolution);
        if (!ChoisitImprimante(imprimante, parent)) return;
        OptionsImpression o;
        o.papier = ReglagesCourants().Feuille();
        const bool tous = ensemble->isChecked();
        MetriqueQt m;
        ImprimeDocument(imprimante, m, [&](Surface& s) {
            return ImprimeRecapitulation(*b, s, o, logique.Contenu(tous), logique.TitreRecapitulation(tous))
                       ? FinPages::Termine
                       : FinPages::Arrete;
        });
    });
    imp->setObjectName(QStringLiteral("MnuRecapImp"));
    for (bool html : {false, true}) {
        auto* a = menu->addAction(M(html ? msg_mots::RecapHTML : msg_mots::RecapRTF), parent,
                                  [&logique, ensemble, html] { logique.EcritRecapitulation(html, ensemble->isChecked()); });
        a->setObjectName(html ? QStringLiteral("MnuRecapHTML") : QStringLiteral("MnuRecapRTF"));
    }
    menu->addSeparator();
    menu->addAction(ensemble);
    bouton->setMenu(menu);
    bouton->setEnabled(logique.Liste().Indexee());
    return bouton;
}

std::optional<std::string> ChoisitMotCle(MDIForm1& f, char marque, QWidget* parent) {
    FrmLMotCle logique(f, marque);
    QDialog d(parent);
    d.setObjectName(QStringLiteral("FrmLMotCle"));
    d.setWindowTitle(MT(msg_mots::TitreListe, Q(logique.Titre())));
    auto* liste = new ListeMotsQt(logique, &d);
    auto* boutons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &d);
    boutons->button(QDialogButtonBox::Ok)->setText(M(msg_mots::Valider));
    boutons->button(QDialogButtonBox::Cancel)->setText(M(msg_mots::Annuler));
    auto* recap = MenuRecapitulation(f, logique, &d);
    auto* bas = new QHBoxLayout;
    bas->addWidget(recap);
    bas->addWidget(boutons, 1);
    auto* l = new QVBoxLayout(&d);
    l->addWidget(liste, 1);
    l->addLayout(bas);
    std::optional<std::string> choix;
    liste->choisi = [&choix](const LigneMotCle& x) { choix = FrmLMotCle::Valeur(x); };
    liste->valide = [&choix, &d](const LigneMotCle& x) {
        choix = FrmLMotCle::Valeur(x);
        d.accept();
    };
    QObject::connect(boutons, &QDialogButtonBox::accepted, &d, &QDialog::accept);
    QObject::connect(boutons, &QDialogButtonBox::rejected, &d, &QDialog::reject);
    d.resize(420, 480);
    liste->setFocus();
    if (d.exec() != QDialog::Accepted) return std::nullopt;
    if (!choix) {
        const auto page = logique.Lignes(1);
        if (!page.empty()) choix = FrmLMotCle::Valeur(page.front());
    }
    return choix;
}

// --- FrmMot ------------------------------------------------------------------------------------

FrmMotQt::FrmMotQt(MDIForm1& f, const DemandeMot& d, QWidget* parent)
    : QDialog(parent), logique_(f, d) {
    setObjectName(QStringLiteral("FrmMot"));
    setWindowTitle(M(msg_mots::TitreMot) + QStringLiteral(" - ") + Q(d.libelle));
    lblJour_ = new QLabel(M(msg_mots::Jour), this);
    lblAnnee_ = new QLabel(M(msg_mots::Annee), this);
    lblValeur_ = new QLabel(Q(d.libelle.empty() ? Message(msg_mots::Valeur) : d.libelle + " :"), this);
    jour_ = Champ(this, "TxtIndJ");
    annee_ = Champ(this, "TxtIndA");
    valeur_ = Champ(this, "TxtIndL");
    annee_->setMaxLength(4);
    jour_->setMaximumWidth(jour_->fontMetrics().horizontalAdvance(QStringLiteral("000000000000")));
    annee_->setMaximumWidth(annee_->fontMetrics().horizontalAdvance(QStringLiteral("00000000")));
    lblJour_->setBuddy(jour_);
    lblAnnee_->setBuddy(annee_);
    lblValeur_->setBuddy(valeur_);
    for (QLineEdit* e : {jour_, annee_, valeur_}) SansDiese(e);
    jour_->setText(Q(logique_.jour));
    annee_->setText(Q(logique_.annee));
    valeur_->setText(Q(logique_.valeur));
    for (QWidget* w : {static_cast<QWidget*>(lblJour_), static_cast<QWidget*>(jour_),
                       static_cast<QWidget*>(lblAnnee_), static_cast<QWidget*>(annee_)})
        w->setVisible(d.date);

    liste_ = new ListeMotsQt(logique_.Liste(), this);
    liste_->recherche()->hide(); // the value field searches
    liste_->findChild<QLabel*>()->hide();
    liste_->choisi = [this](const LigneMotCle& l) {
        logique_.ChoisitLigne(l);
        valeur_->setText(Q(logique_.valeur));
    };
    liste_->valide = [this](const LigneMotCle& l) {
        logique_.ChoisitLigne(l);
        valeur_->setText(Q(logique_.valeur));
        accept();
    };
    connect(valeur_, &QLineEdit::textEdited, this, [this](const QString& t) {
        logique_.Tape(logique_.valeur, A(t));
        liste_->Cherche(t);
    });

    usuels_ = Bouton(this, "CmdIndSel");
    usuels_->setText(M(msg_mots::Usuels));
    auto* menu = new QMenu(usuels_);
    for (const auto& mot : logique_.Usuels())
        menu->addAction(Q(mot), this, [this, mot] {
            logique_.ChoisitUsuel(mot);
            valeur_->setText(Q(logique_.valeur));
        });
    usuels_->setMenu(menu);
    usuels_->setEnabled(!menu->isEmpty());
    // CmdIndEvt: the rubric's event, opened once the value is kept.
    evenement_ = Bouton(this, "CmdIndEvt");
    evenement_->setText(M(msg_evt::Evenement) + (logique_.EvenementExiste() ? M(849) : QString()));
    evenement_->setVisible(logique_.EvenementPossible());
    connect(evenement_, &QPushButton::clicked, this, [this] {
        logique_.jour = A(jour_->text());
        logique_.annee = A(annee_->text());
        logique_.Tape(logique_.valeur, A(valeur_->text()));
        if (logique_.CmdIndEvt()) accept();
    });
    valider_ = Bouton(this, "CmdValider");
    valider_->setText(M(msg_mots::Valider));
    valider_->setDefault(true);
    annuler_ = Bouton(this, "CmdAnnuler");
    annuler_->setText(M(msg_mots::Annuler));
    connect(valider_, &QPushButton::clicked, this, &QDialog::accept);
    connect(annuler_, &QPushButton::clicked, this, &QDialog::reject);

    auto* g = new QGridLayout;
    g->addWidget(lblJour_, 0, 0);
    g->addWidget(jour_, 0, 1);
    g->addWidget(lblAnnee_, 0, 2);
    g->addWidget(annee_, 0, 3);
    g->addWidget(lblValeur_, 1, 0);
    g->addWidget(valeur_, 1, 1, 1, 4);
    g->setColumnStretch(4, 1);
    auto* boutons = new QHBoxLayout;
    boutons->addWidget(usuels_);
    boutons->addWidget(evenement_);
    boutons->addStretch(1);
    boutons->addWidget(valider_);
    boutons->addWidget(annuler_);
    auto* l = new QVBoxLayout(this);
    l->addLayout(g);
    l->addWidget(liste_, 1);
    l->addLayout(boutons);
    setTabOrder(jour_, annee_);
    setTabOrder(annee_, valeur_);
    setTabOrder(valeur_, liste_->grille());
    setTabOrder(liste_->grille(), usuels_);
    setTabOrder(usuels_, evenement_);
    setTabOrder(evenement_, valider_);
    setTabOrder(valider_, annuler_);
    resize(460, 440);
    (d.date ? jour_ : valeur_)->setFocus();
}

void FrmMotQt::accept() {
    logique_.jour = A(jour_->text());
    logique_.annee = A(annee_->text());
    logique_.Tape(logique_.valeur, A(valeur_->text()));
    if (logique_.CmdValider()) QDialog::accept();
}

std::optional<DemandeMot> EditeMot(MDIForm1& f, const DemandeMot& d, QWidget* parent) {
    if (!f.base()) return std::nullopt;
    FrmMotQt dialogue(f, d, parent);
    if (dialogue.exec() != QDialog::Accepted) return std::nullopt;
    DemandeMot r = d;
    r.jour = dialogue.logique().jour;
    r.annee = dialogue.logique().annee;
    r.valeur = dialogue.logique().valeur;
    return r;
}

// --- FrmMotCle ---------------------------------------------------------------------------------

FrmMotCleQt::FrmMotCleQt(ContexteQt& c) : c_(c), logique_(c.logique) {
    onglets_ = new QTabWidget(this);
    // First tab: the kinds.
    auto* genres = new QWidget(onglets_);
    grille_ = new QTableWidget(0, 3, genres);
    grille_->setObjectName(QStringLiteral("Grille1"));
    grille_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grille_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grille_->setSelectionMode(QAbstractItemView::SingleSelection);
    grille_->verticalHeader()->hide();
    grille_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    lblLibelle_ = new QLabel(genres);
    lblMarque_ = new QLabel(genres);
    libelle_ = Champ(genres, "Tx_LMCle");
    libelle_->setMaxLength(34);
    marque_ = Champ(genres, "Tx_MCle");
    marque_->setMaxLength(1);
    marque_->setMaximumWidth(marque_->fontMetrics().horizontalAdvance(QStringLiteral("MMMM")));
    SansDiese(libelle_);
    lblLibelle_->setBuddy(libelle_);
    lblMarque_->setBuddy(marque_);
    index_ = new QCheckBox(genres);
    index_->setObjectName(QStringLiteral("ChxIndex"));
    ajout_ = Bouton(genres, "C_Ajout");
    maj_ = Bouton(genres, "C_Maj");
    supp_ = Bouton(genres, "C_Supp");
    haut_ = Bouton(genres, "CmdMotUp");
    bas_ = Bouton(genres, "CmdMotDown");
    liste_ = Bouton(genres, "C_Liste");
    auto* champs = new QGridLayout;
    champs->addWidget(lblLibelle_, 0, 0);
    champs->addWidget(libelle_, 0, 1);
    champs->addWidget(lblMarque_, 1, 0);
    champs->addWidget(marque_, 1, 1, Qt::AlignLeft);
    champs->addWidget(index_, 2, 1);
    auto* droite = new QVBoxLayout;
    droite->addLayout(champs);
    for (QPushButton* b : {ajout_, maj_, supp_, haut_, bas_, liste_}) droite->addWidget(b);
    droite->addStretch(1);
    auto* l1 = new QHBoxLayout(genres);
    l1->addWidget(grille_, 1);
    l1->addLayout(droite);
    onglets_->addTab(genres, QString());

    // Second tab: the sheet's rubric rows.
    auto* rubriques = new QWidget(onglets_);
    lblPossibles_ = new QLabel(rubriques);
    possibles_ = new QListWidget(rubriques);
    possibles_->setObjectName(QStringLiteral("GrdMotCle"));
    lblPossibles_->setBuddy(possibles_);
    date_ = new QCheckBox(rubriques);
    date_->setObjectName(QStringLiteral("ChxDate"));
    versInd_ = Bouton(rubriques, "CmdAjtMotInd");
    versMar_ = Bouton(rubriques, "CmdAjtMotMar");
    auto* gauche = new QVBoxLayout;
    gauche->addWidget(lblPossibles_);
    gauche->addWidget(possibles_, 1);
    gauche->addWidget(date_);
    gauche->addWidget(versInd_);
    gauche->addWidget(versMar_);
    auto* colonne = new QVBoxLayout;
    const char* noms[2][3] = {{"CmdMotIndUp", "CmdMotIndDown", "CmdSupMotInd"},
                              {"CmdMotMarUp", "CmdMotMarDown", "CmdSupMotMar"}};
    for (int m = 0; m < 2; ++m) {
        auto* cadre = new QGroupBox(rubriques);
        auto* liste = new QListWidget(cadre);
        liste->setObjectName(m ? QStringLiteral("GrdDonneeMar") : QStringLiteral("GrdDonneeInd"));
        auto* boutons = new QVBoxLayout;
        for (int k = 0; k < 3; ++k) {
            boutonsRangs_[m][k] = Bouton(cadre, noms[m][k]);
            boutons->addWidget(boutonsRangs_[m][k]);
        }
        boutons->addStretch(1);
        auto* lc = new QHBoxLayout(cadre);
        lc->addWidget(liste, 1);
        lc->addLayout(boutons);
        colonne->addWidget(cadre);
        (m ? cadreMar_ : cadreInd_) = cadre;
        (m ? rangsMar_ : rangsInd_) = liste;
        const bool mariage = m == 1;
        auto bouge = [this, mariage, liste](int sens) {
            const int r = liste->currentRow();
            if (logique_.CmdMotBouge(mariage, r, sens)) {
                MontreRangs();
                liste->setCurrentRow(r + sens);
            }
        };
        connect(boutonsRangs_[m][0], &QPushButton::clicked, this, [bouge] { bouge(-1); });
        connect(boutonsRangs_[m][1], &QPushButton::clicked, this, [bouge] { bouge(+1); });
        connect(boutonsRangs_[m][2], &QPushButton::clicked, this, [this, mariage, liste] {
            if (logique_.CmdSupMot(mariage, liste->currentRow())) MontreRangs();
        });
        connect(liste, &QListWidget::currentRowChanged, this, [this, mariage](int r) {
            const int n = static_cast<int>(logique_.Rangs(mariage).size());
            boutonsRangs_[mariage][0]->setEnabled(r > 0);
            boutonsRangs_[mariage][1]->setEnabled(r >= 0 && r + 1 < n);
            boutonsRangs_[mariage][2]->setEnabled(r >= 0);
        });
    }
    auto* l2 = new QHBoxLayout(rubriques);
    l2->addLayout(gauche, 1);
    l2->addLayout(colonne, 1);
    onglets_->addTab(rubriques, QString());

    auto* l = new QVBoxLayout(this);
    l->addWidget(onglets_);

    connect(grille_, &QTableWidget::currentCellChanged, this, [this](int r) {
        logique_.Selectionne(r);
        libelle_->setText(Q(logique_.libelle));
        marque_->setText(Q(logique_.marque));
        index_->setChecked(logique_.index);
        const bool fixe = r >= 0 && MarqueFixe(logique_.C_Liste());
        supp_->setEnabled(r >= 0 && !fixe);
        maj_->setEnabled(r >= 0);
        haut_->setEnabled(r > 0);
        bas_->setEnabled(r >= 0 && r + 1 < grille_->rowCount());
        liste_->setEnabled(r >= 0 && logique_.Genres()[static_cast<std::size_t>(r)].indexe);
    });
    auto change = [this](bool fait) {
        if (!fait) return;
        Montre();
    };
    connect(ajout_, &QPushButton::clicked, this, [this, change] {
        LitChamps();
        change(logique_.C_Ajout());
    });
    connect(maj_, &QPushButton::clicked, this, [this, change] {
        LitChamps();
        change(logique_.C_Maj());
    });
    connect(supp_, &QPushButton::clicked, this, [this, change] { change(logique_.C_Supp()); });
    connect(haut_, &QPushButton::clicked, this, [this, change] { change(logique_.CmdMotUp()); });
    connect(bas_, &QPushButton::clicked, this, [this, change] { change(logique_.CmdMotDown()); });
    connect(liste_, &QPushButton::clicked, this, [this] {
        if (logique_.C_Liste() != ' ') ChoisitMotCle(c_.logique, logique_.C_Liste(), this);
    });
    auto ajoute = [this](bool mariage) {
        if (logique_.CmdAjtMot(mariage, possibles_->currentRow(), date_->isChecked())) MontreRangs();
    };
    connect(versInd_, &QPushButton::clicked, this, [ajoute] { ajoute(false); });
    connect(versMar_, &QPushButton::clicked, this, [ajoute] { ajoute(true); });
    connect(possibles_, &QListWidget::itemDoubleClicked, this, [ajoute] { ajoute(false); });
    setMinimumSize(640, 420);
    Montre();
    MontreRangs();
    Retraduit();
}

void FrmMotCleQt::LitChamps() {
    logique_.libelle = A(libelle_->text());
    logique_.marque = A(marque_->text());
    logique_.index = index_->isChecked();
}

void FrmMotCleQt::Montre() {
    const int choisi = logique_.selection;
    const auto& genres = logique_.Genres();
    const bool b = grille_->blockSignals(true);
    grille_->setRowCount(static_cast<int>(genres.size()));
    for (int i = 0; i < static_cast<int>(genres.size()); ++i) {
        const GenreMot& g = genres[static_cast<std::size_t>(i)];
        grille_->setItem(i, 0, new QTableWidgetItem(Q(g.libelle)));
        auto* m = new QTableWidgetItem(Q(std::string(1, g.marque)));
        m->setTextAlignment(Qt::AlignCenter);
        grille_->setItem(i, 1, m);
        grille_->setItem(i, 2, new QTableWidgetItem(g.indexe ? M(msg_mots::OuiIndex) : QString()));
    }
    grille_->blockSignals(b);
    grille_->setCurrentCell(-1, -1);
    grille_->setCurrentCell(choisi, 0);
    possibles_->clear();
    for (const auto& g : logique_.Possibles()) possibles_->addItem(TexteGenre(g));
    MontreRangs();
}

void FrmMotCleQt::MontreRangs() {
    for (bool mariage : {false, true}) {
        QListWidget* l = rangs(mariage);
        const int r = l->currentRow();
        l->clear();
        for (const auto& s : logique_.Rangs(mariage)) {
            QString t = Q(std::string(1, s.symbole)) + QStringLiteral("  ") + Q(logique_.LibelleRang(s));
            if (s.drapeau == '1') t += QStringLiteral("  (") + MT(msg_mots::AvecDate).remove(QLatin1Char('&')) + QStringLiteral(")");
            l->addItem(t);
        }
        l->setCurrentRow(std::min(r, l->count() - 1));
        Q_EMIT l->currentRowChanged(l->currentRow());
    }
}

void FrmMotCleQt::Retraduit() {
    setWindowTitle(M(msg_mots::TitreMotCle));
    onglets_->setTabText(0, M(msg_mots::OngletGenres));
    onglets_->setTabText(1, M(msg_mots::OngletRubriques));
    grille_->setHorizontalHeaderLabels(
        {M(msg_mots::ColLibelle), M(msg_mots::ColRepere), M(msg_mots::ColIndex)});
    lblLibelle_->setText(M(msg_mots::Libelle));
    lblMarque_->setText(M(msg_mots::Repere));
    index_->setText(M(msg_mots::Indexe));
    ajout_->setText(M(msg_mots::Ajouter));
    maj_->setText(M(msg_mots::Modifier));
    supp_->setText(M(msg_mots::Supprimer));
    haut_->setText(M(msg_mots::Monter));
    bas_->setText(M(msg_mots::Descendre));
    liste_->setText(M(msg_mots::ListeMots));
    lblPossibles_->setText(M(msg_mots::Possibles));
    date_->setText(M(msg_mots::AvecDate));
    versInd_->setText(M(msg_mots::VersPersonne));
    versMar_->setText(M(msg_mots::VersMariage));
    cadreInd_->setTitle(M(msg_mots::RubriquesPersonne));
    cadreMar_->setTitle(M(msg_mots::RubriquesMariage));
    for (auto& ligne : boutonsRangs_) {
        ligne[0]->setText(M(msg_mots::Monter));
        ligne[1]->setText(M(msg_mots::Descendre));
        ligne[2]->setText(M(msg_mots::Retirer));
    }
    Montre();
}

void FrmMotCleQt::closeEvent(QCloseEvent* e) {
    logique_.Ferme();
    FormulaireQt::closeEvent(e);
}

static EnregistrementFormulaire enrMotCle("FrmMotCle", [](ContexteQt& c) { return new FrmMotCleQt(c); });

// --- FrmUsuels ---------------------------------------------------------------------------------

FrmUsuelsQt::FrmUsuelsQt(ContexteQt& c) : logique_(c.logique) {
    cadreListe_ = new QGroupBox(this);
    rubrique_ = new QComboBox(cadreListe_);
    rubrique_->setObjectName(QStringLiteral("CboRubrique"));
    nouvelleListe_ = Champ(cadreListe_, "TxtRubrique");
    ajoutListe_ = Bouton(cadreListe_, "CmdNouvRubr");
    supListe_ = Bouton(cadreListe_, "CmdSupRub");
    auto* gl = new QGridLayout(cadreListe_);
    gl->addWidget(rubrique_, 0, 0);
    gl->addWidget(supListe_, 0, 1);
    gl->addWidget(nouvelleListe_, 1, 0);
    gl->addWidget(ajoutListe_, 1, 1);
    gl->setColumnStretch(0, 1);
    cadreMots_ = new QGroupBox(this);
    mots_ = new QListWidget(cadreMots_);
    mots_->setObjectName(QStringLiteral("LstMot"));
    nouveauMot_ = Champ(cadreMots_, "TxtMot");
    ajoutMot_ = Bouton(cadreMots_, "CmdMotNouveau");
    supMot_ = Bouton(cadreMots_, "CmdMotSup");
    for (QLineEdit* e : {nouvelleListe_, nouveauMot_}) SansDiese(e);
    auto* gm = new QGridLayout(cadreMots_);
    gm->addWidget(mots_, 0, 0);
    gm->addWidget(supMot_, 0, 1, Qt::AlignTop);
    gm->addWidget(nouveauMot_, 1, 0);
    gm->addWidget(ajoutMot_, 1, 1);
    gm->setColumnStretch(0, 1);
    auto* l = new QVBoxLayout(this);
    l->addWidget(cadreListe_);
    l->addWidget(cadreMots_, 1);

    connect(rubrique_, &QComboBox::currentIndexChanged, this, [this](int i) {
        logique_.rubrique = i;
        mots_->clear();
        for (const auto& m : logique_.Mots()) mots_->addItem(Q(m));
    });
    connect(ajoutListe_, &QPushButton::clicked, this, [this] {
        if (logique_.CmdNouvRubr(A(nouvelleListe_->text()))) {
            nouvelleListe_->clear();
            Montre();
        }
    });
    connect(nouvelleListe_, &QLineEdit::returnPressed, ajoutListe_, &QPushButton::click);
    connect(supListe_, &QPushButton::clicked, this, [this] {
        if (logique_.CmdSupRub()) Montre();
    });
    connect(ajoutMot_, &QPushButton::clicked, this, [this] {
        if (logique_.CmdMotNouveau(A(nouveauMot_->text()))) {
            nouveauMot_->clear();
            Montre();
        }
    });
    connect(nouveauMot_, &QLineEdit::returnPressed, ajoutMot_, &QPushButton::click);
    connect(supMot_, &QPushButton::clicked, this, [this] {
        if (logique_.CmdMotSup(mots_->currentRow())) Montre();
    });
    setMinimumSize(360, 380);
    Montre();
    Retraduit();
}

void FrmUsuelsQt::Montre() {
    const int choisi = logique_.rubrique;
    const bool b = rubrique_->blockSignals(true);
    rubrique_->clear();
    for (const auto& r : logique_.Rubriques()) rubrique_->addItem(Q(r));
    rubrique_->blockSignals(b);
    rubrique_->setCurrentIndex(-1);
    rubrique_->setCurrentIndex(choisi);
}

void FrmUsuelsQt::Retraduit() {
    setWindowTitle(M(msg_mots::TitreUsuels));
    cadreListe_->setTitle(M(msg_mots::Rubrique).remove(QLatin1Char('&')));
    cadreMots_->setTitle(M(msg_mots::TitreUsuels));
    ajoutListe_->setText(M(msg_mots::Ajouter));
    supListe_->setText(M(msg_mots::Supprimer));
    ajoutMot_->setText(M(msg_mots::Ajouter).remove(QLatin1Char('&')));
    supMot_->setText(M(msg_mots::Retirer));
    nouvelleListe_->setPlaceholderText(M(msg_mots::NouveauNom));
    nouveauMot_->setPlaceholderText(M(msg_mots::NouveauNom));
}

static EnregistrementFormulaire enrUsuels("FrmUsuels", [](ContexteQt& c) { return new FrmUsuelsQt(c); });

// --- FrmRemplacement ---------------------------------------------------------------------------

FrmRemplacementQt::FrmRemplacementQt(ContexteQt& c) : c_(c), logique_(c.logique) {
    lblGenre_ = new QLabel(this);
    genre_ = new QComboBox(this);
    genre_->setObjectName(QStringLiteral("Combo1"));
    lblGenre_->setBuddy(genre_);
    lblAncien_ = new QLabel(this);
    lblNouveau_ = new QLabel(this);
    ancien_ = Champ(this, "T_Recherche0");
    nouveau_ = Champ(this, "T_Recherche1");
    for (QLineEdit* e : {ancien_, nouveau_}) SansDiese(e);
    lblAncien_->setBuddy(ancien_);
    lblNouveau_->setBuddy(nouveau_);
    choixAncien_ = Bouton(this, "C_MotCle0");
    choixNouveau_ = Bouton(this, "C_MotCle1");
    tous_ = new QCheckBox(this);
    tous_->setObjectName(QStringLiteral("ChkTout"));
    remplacer_ = Bouton(this, "CmdRemplacer");
    remplacer_->setDefault(true);
    bilan_ = new QLabel(this);
    auto* g = new QGridLayout(this);
    g->addWidget(lblGenre_, 0, 0);
    g->addWidget(genre_, 0, 1, 1, 2);
    g->addWidget(lblAncien_, 1, 0);
    g->addWidget(ancien_, 1, 1);
    g->addWidget(choixAncien_, 1, 2);
    g->addWidget(lblNouveau_, 2, 0);
    g->addWidget(nouveau_, 2, 1);
    g->addWidget(choixNouveau_, 2, 2);
    g->addWidget(tous_, 3, 1);
    auto* bas = new QHBoxLayout;
    bas->addWidget(bilan_, 1);
    bas->addWidget(remplacer_);
    g->addLayout(bas, 4, 0, 1, 3);
    g->setColumnStretch(1, 1);
    g->setRowStretch(5, 1);
    for (int i = 0; i < 2; ++i) {
        QLineEdit* champ = i ? nouveau_ : ancien_;
        connect(i ? choixNouveau_ : choixAncien_, &QPushButton::clicked, this, [this, champ] {
            Lit();
            if (auto m = ChoisitMotCle(c_.logique, logique_.marque, this)) champ->setText(Q(*m));
        });
    }
    auto etat = [this] {
        Lit();
        remplacer_->setEnabled(!Trim(logique_.ancien).empty());
        const bool liste = logique_.marque != ' ';
        choixAncien_->setEnabled(liste);
        choixNouveau_->setEnabled(liste);
    };
    connect(ancien_, &QLineEdit::textChanged, this, etat);
    connect(genre_, &QComboBox::currentIndexChanged, this, etat);
    connect(remplacer_, &QPushButton::clicked, this, [this] {
        Lit();
        bilan_->clear();
        if (logique_.CmdRemplacer())
            bilan_->setText(MT(msg_mots::Remplaces, QString::number(logique_.Bilan().occurrences)));
    });
    setTabOrder(genre_, ancien_);
    setTabOrder(ancien_, choixAncien_);
    setTabOrder(choixAncien_, nouveau_);
    setTabOrder(nouveau_, choixNouveau_);
    setTabOrder(choixNouveau_, tous_);
    setTabOrder(tous_, remplacer_);
    setMinimumWidth(460);
    RemplitGenres();
    Retraduit();
    etat();
}

void FrmRemplacementQt::Lit() {
    const QVariant v = genre_->currentData();
    logique_.marque = v.isValid() ? static_cast<char>(v.toInt()) : ' ';
    logique_.ancien = A(ancien_->text());
    logique_.nouveau = A(nouveau_->text());
    logique_.tous = tous_->isChecked();
}

void FrmRemplacementQt::RemplitGenres() {
    const QVariant avant = genre_->currentData();
    const bool b = genre_->blockSignals(true);
    genre_->clear();
    for (const auto& g : logique_.Genres())
        if (g.marque != ' ') genre_->addItem(TexteGenre(g), static_cast<int>(g.marque));
    const int i = avant.isValid() ? genre_->findData(avant) : -1;
    genre_->setCurrentIndex(i >= 0 ? i : 0);
    genre_->blockSignals(b);
}

void FrmRemplacementQt::PersonneChangee() { RemplitGenres(); }

void FrmRemplacementQt::Retraduit() {
    setWindowTitle(M(msg_mots::TitreRemplacement));
    lblGenre_->setText(M(msg_rech::Genre));
    lblAncien_->setText(M(msg_mots::MotARemplacer));
    lblNouveau_->setText(M(msg_mots::RemplacerPar));
    choixAncien_->setText(M(msg_rech::MotCle));
    choixNouveau_->setText(M(msg_rech::MotCle));
    tous_->setText(M(msg_mots::TousIndex));
    remplacer_->setText(M(msg_mots::Remplacer));
    RemplitGenres();
}

static EnregistrementFormulaire enrRemplacement("FrmRemplacement",
                                                [](ContexteQt& c) { return new FrmRemplacementQt(c); });

} // namespace sylvane
