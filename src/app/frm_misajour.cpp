#include "app/frm_misajour.h"

#include "app/choix_fiche_qt.h"
#include "app/frm_commune.h"
#include "app/frm_mot.h"
#include "app/frm_texte.h"
#include "ui/frm_evenement.h"
#include "ui/frm_fusion.h"
#include "app/texte_qt.h"
#include "text/rtf.h"

#include <QButtonGroup>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

namespace sylvane {

namespace {

QTableWidget* Grille(QWidget* parent, int colonnes) {
    auto* t = new QTableWidget(0, colonnes, parent);
    t->setSelectionBehavior(QAbstractItemView::SelectRows);
    t->setSelectionMode(QAbstractItemView::SingleSelection);
    t->setEditTriggers(QAbstractItemView::NoEditTriggers);
    t->verticalHeader()->hide();
    t->horizontalHeader()->setStretchLastSection(true);
    t->verticalHeader()->setDefaultSectionSize(t->fontMetrics().height() + 6);
    return t;
}

int Ligne(QTableWidget* t) {
    const auto l = t->selectionModel()->selectedRows();
    return l.isEmpty() ? -1 : l.front().row();
}

} // namespace

FrmMisajourQt::FrmMisajourQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c),
      logique_(std::make_unique<FrmMisajour>(c.logique, ChoixFicheQt(c))) {
    FrmMisajour& L = *logique_;
    auto texte = [this](QWidget* w, int n) {
        textes_.emplace_back(w, n);
        return w;
    };
    auto label = [&](int n, QWidget* p) { return static_cast<QLabel*>(texte(new QLabel(p), n)); };
    auto bouton = [&](int n, QWidget* p, auto action) {
        auto* b = new QPushButton(p);
        texte(b, n);
        connect(b, &QPushButton::clicked, this, action);
        return b;
    };

    auto* racine = new QVBoxLayout(this);
    // Taller than the area of a small screen, the sheet scrolls in it
    // rather than squeeze its fields.
    racine->setSizeConstraint(QLayout::SetMinimumSize);

    // Number, picker and history.
    auto* haut = new QHBoxLayout;
    auto* lblIndice = label(msg_fiche::Numero, this);
    indice_ = new QLineEdit(this);
    indice_->setObjectName(QStringLiteral("TxtIndice"));
    indice_->setMaximumWidth(indice_->fontMetrics().horizontalAdvance(QStringLiteral("000000000")));
    lblIndice->setBuddy(indice_);
    eIndice_ = label(msg_fiche::IndiceFaux, this);
    eIndice_->setStyleSheet(QStringLiteral("color: #b00000"));
    auto* cNom = bouton(msg_fiche::Choisir, this, [this] { logique_->C_Nom(); });
    histo_ = new QToolButton(this);
    texte(histo_, msg_fiche::Historique);
    histo_->setPopupMode(QToolButton::InstantPopup);
    histo_->setMenu(new QMenu(histo_));
    connect(histo_->menu(), &QMenu::aboutToShow, this, [this] {
        QMenu* m = histo_->menu();
        m->clear();
        const auto t = logique_->TextesHistorique();
        for (int i = 0; i < static_cast<int>(t.size()); ++i) {
            QString s = Q(t[static_cast<std::size_t>(i)]);
            s.replace(QLatin1Char('&'), QStringLiteral("&&"));
            m->addAction(s, this, [this, i] { logique_->ChoisitHistorique(i); });
        }
    });
    haut->addWidget(lblIndice);
    haut->addWidget(indice_);
    haut->addWidget(cNom);
    haut->addWidget(histo_);
    haut->addWidget(eIndice_);
    haut->addStretch();
    racine->addLayout(haut);

    onglets_ = new QTabWidget(this);
    racine->addWidget(onglets_, 1);

    // --- Identity, birth, death, parents, rubrics.
    auto* id = new QWidget;
    auto* gi = new QGridLayout(id);
    auto ligneChamp = [&](int row, int msg, Champ ch, int span = 3) {
        auto* l = label(msg, id);
        QLineEdit* e = Champ_(ch, id);
        l->setBuddy(e);
        gi->addWidget(l, row, 0);
        gi->addWidget(e, row, 1, 1, span);
        return e;
    };
    ligneChamp(0, msg_fiche::Nom, Champ::Nom);
    ligneChamp(1, msg_fiche::Prenom, Champ::Prenom);
    ligneChamp(2, msg_fiche::AutresPrenoms, Champ::AutresPrenoms);
    gi->addWidget(label(msg_fiche::Sexe, id), 3, 0);
    auto* boxSexe = new QHBoxLayout;
    sexe_ = new QButtonGroup(this);
    const char sx[3] = {'H', 'F', 'I'};
    const int ms[3] = {msg_fiche::Homme, msg_fiche::Femme, msg_fiche::Indetermine};
    for (int i = 0; i < 3; ++i) {
        sexes_[i] = new QRadioButton(id);
        texte(sexes_[i], ms[i]);
        sexe_->addButton(sexes_[i], i);
        boxSexe->addWidget(sexes_[i]);
    }
    boxSexe->addStretch();
    gi->addLayout(boxSexe, 3, 1, 1, 3);
    connect(sexe_, &QButtonGroup::idClicked, this, [this, sx](int i) {
        if (!remplit_) logique_->ChoisitSexe(sx[i]);
    });
    // Birth and death: year, day (with its words) and place.
    auto evenement = [&](int row, int msg, Champ an, Champ jour, Champ lieu, QLabel*& libelle) {
        auto* l = label(msg, id);
        auto* boite = new QHBoxLayout;
        QLineEdit* ea = Champ_(an, id);
        ea->setMaximumWidth(ea->fontMetrics().horizontalAdvance(QStringLiteral("00000000")));
        l->setBuddy(ea);
        QLineEdit* ej = Champ_(jour, id);
        ej->setMaximumWidth(ej->fontMetrics().horizontalAdvance(QStringLiteral("000000000000")));
        libelle = new QLabel(id);
        libelle->setMinimumWidth(libelle->fontMetrics().horizontalAdvance(QStringLiteral("00 septembre ")));
        QLineEdit* el = Champ_(lieu, id);
        AideLieu(c_, el);
        boite->addWidget(ea);
        boite->addWidget(label(msg_fiche::Jour, id));
        boite->addWidget(ej);
        boite->addWidget(libelle);
        boite->addWidget(label(msg_fiche::Lieu, id));
        boite->addWidget(el, 1);
        const std::string tag = an == Champ::Naiss ? "BIRT" : "DEAT";
        auto* ev = new QPushButton(id);
        ev->setObjectName(QString::fromStdString(tag == "BIRT" ? "CmdEvNaiss" : "CmdEvDeces"));
        connect(ev, &QPushButton::clicked, this, [this, tag] { CmdEvFiche(c_.logique, *logique_, tag); });
        boutonsEvt_.emplace_back(ev, tag);
        horsCreation_.push_back(ev);
        boite->addWidget(ev);
        gi->addWidget(l, row, 0);
        gi->addLayout(boite, row, 1, 1, 3);
    };
    evenement(4, msg_fiche::Naissance, Champ::Naiss, Champ::JNaiss, Champ::LieuNaiss, libJNaiss_);
    evenement(5, msg_fiche::Deces, Champ::Deces, Champ::JDeces, Champ::LieuDeces, libJDeces_);
    // Parents, each with its create, search and cut buttons.
    auto ligneParent = [&](int row, int msg, QLabel*& nom, auto cree, auto cherche, auto coupe) {
        gi->addWidget(label(msg, id), row, 0);
        nom = new QLabel(id);
        nom->setFrameShape(QFrame::StyledPanel);
        auto* boite = new QHBoxLayout;
        boite->addWidget(nom, 1);
        for (QPushButton* b : {bouton(msg_fiche::Creer, id, cree), bouton(msg_fiche::Chercher, id, cherche),
                               bouton(msg_fiche::Couper, id, coupe)}) {
            boite->addWidget(b);
            horsCreation_.push_back(b);
        }
        gi->addLayout(boite, row, 1, 1, 3);
    };
    ligneParent(6, msg_fiche::Pere, pere_, [this] { logique_->CmdCrePere(); },
           [this] { logique_->C_Rechpere(); }, [this] { logique_->C_Spere(); });
    ligneParent(7, msg_fiche::Mere, mere_, [this] { logique_->CmdCreMere(); },
           [this] { logique_->C_Rechmere(); }, [this] { logique_->C_Smere(); });
    auto* cadreInd = new QGroupBox(id);
    texte(cadreInd, msg_fiche::Rubriques);
    cadreRubInd_ = cadreInd;
    new QGridLayout(cadreInd);
    gi->addWidget(cadreInd, 8, 0, 1, 4);
    gi->setRowStretch(9, 1);
    onglets_->addTab(id, QString());

    // --- Marriages, children, brothers and sisters.
    auto* fam = new QWidget;
    auto* gf = new QGridLayout(fam);
    auto* lblConj = label(579, fam);
    conjoints_ = Grille(fam, 3);
    conjoints_->setObjectName(QStringLiteral("L_Conjoint"));
    lblConj->setBuddy(conjoints_);
    connect(conjoints_, &QTableWidget::itemSelectionChanged, this, [this] {
        if (!remplit_) logique_->SelectionneMariage(Ligne(conjoints_));
    });
    gf->addWidget(lblConj, 0, 0);
    gf->addWidget(conjoints_, 1, 0, 1, 2);
    auto* bm = new QHBoxLayout;
    for (QPushButton* b : {bouton(msg_fiche::Creer, fam, [this] { logique_->CmdCreConjoint(); }),
                           bouton(msg_fiche::Chercher, fam, [this] { logique_->C_Rechconjoint(); }),
                           bouton(msg_fiche::Couper, fam, [this] { logique_->C_Smar(); }),
                           bouton(msg_fiche::Monter, fam, [this] { logique_->CmdMarUp(); }),
                           bouton(msg_fiche::Descendre, fam, [this] { logique_->CmdMarDown(); })}) {
        bm->addWidget(b);
        horsCreation_.push_back(b);
    }
    cmdDoublon_ = bouton(kFusionDoublon, fam, [this] { logique_->CmdDoublon(); });
    cmdDoublon_->setObjectName(QStringLiteral("CmdDoublon"));
    bm->addWidget(cmdDoublon_);
    bm->addStretch();
    gf->addLayout(bm, 2, 0, 1, 2);
    auto* cadreMar = new QGroupBox(fam);
    auto* gm = new QGridLayout(cadreMar);
    auto marChamp = [&](int row, int col, int msg, Champ ch) {
        auto* l = label(msg, cadreMar);
        QLineEdit* e = Champ_(ch, cadreMar);
        l->setBuddy(e);
        gm->addWidget(l, row, col);
        gm->addWidget(e, row, col + 1);
        return e;
    };
    marChamp(0, 0, msg_fiche::AnMariage, Champ::Dmar);
    marChamp(0, 2, msg_fiche::Jour, Champ::JMar);
    libJMar_ = new QLabel(cadreMar);
    gm->addWidget(libJMar_, 0, 4);
    AideLieu(c_, marChamp(1, 0, msg_fiche::Lieu, Champ::LieuMar));
    marChamp(1, 2, msg_fiche::AnFin, Champ::Fmar);
    noteMar_ = new QLabel(cadreMar);
    noteMar_->setWordWrap(true);
    auto* cmdTxtMar = bouton(msg_fiche::NotesMariage, cadreMar, [this] { logique_->CmdTxtMar(); });
    horsCreation_.push_back(cmdTxtMar);
    auto* evMar = new QPushButton(cadreMar);
    evMar->setObjectName(QStringLiteral("CmdEvMar"));
    connect(evMar, &QPushButton::clicked, this, [this] { CmdEvFiche(c_.logique, *logique_, "MARR"); });
    boutonsEvt_.emplace_back(evMar, "MARR");
    horsCreation_.push_back(evMar);
    gm->addWidget(evMar, 1, 4);
    gm->addWidget(cmdTxtMar, 2, 0);
    gm->addWidget(noteMar_, 2, 1, 1, 4);
    cadreRubMar_ = new QWidget(cadreMar);
    new QGridLayout(cadreRubMar_);
    cadreRubMar_->layout()->setContentsMargins(0, 0, 0, 0);
    gm->addWidget(cadreRubMar_, 3, 0, 1, 5);
    gf->addWidget(cadreMar, 3, 0, 1, 2);
    lblEnfants_ = new QLabel(fam);
    enfants_ = Grille(fam, 3);
    enfants_->setObjectName(QStringLiteral("L_Enfants"));
    lblEnfants_->setBuddy(enfants_);
    gf->addWidget(lblEnfants_, 4, 0);
    gf->addWidget(enfants_, 5, 0);
    auto* be = new QHBoxLayout;
    for (QPushButton* b : {bouton(msg_fiche::Creer, fam, [this] { logique_->CmdCreEnfant(); }),
                           bouton(msg_fiche::Chercher, fam, [this] { logique_->CmdRechEnft(); }),
                           bouton(msg_fiche::Couper, fam,
                                  [this] { logique_->CmdSupEnft(Ligne(enfants_)); })}) {
        be->addWidget(b);
        horsCreation_.push_back(b);
    }
    be->addStretch();
    gf->addLayout(be, 6, 0);
    auto* lblFratrie = label(910, fam);
    fratrie_ = Grille(fam, 3);
    fratrie_->setObjectName(QStringLiteral("GrdFratrie"));
    lblFratrie->setBuddy(fratrie_);
    gf->addWidget(lblFratrie, 4, 1);
    gf->addWidget(fratrie_, 5, 1);
    onglets_->addTab(fam, QString());

    // --- Links, events, documents.
    auto* li = new QWidget;
    auto* gl = new QGridLayout(li);
    auto* lblLiens = label(msg_fiche::Liens, li);
    liens_ = Grille(li, 2);
    liens_->setObjectName(QStringLiteral("GrdLiens"));
    lblLiens->setBuddy(liens_);
    connect(liens_, &QTableWidget::itemSelectionChanged, this, [this] {
        if (!remplit_) logique_->SelectionneLien(Ligne(liens_));
    });
    gl->addWidget(lblLiens, 0, 0, 1, 2);
    gl->addWidget(liens_, 1, 0, 1, 2);
    auto* lblTexteLien = label(msg_fiche::TexteLien, li);
    QLineEdit* txtLien = Champ_(Champ::Lien, li);
    lblTexteLien->setBuddy(txtLien);
    gl->addWidget(lblTexteLien, 2, 0);
    gl->addWidget(txtLien, 2, 1);
    auto* bl = new QHBoxLayout;
    for (QPushButton* b : {bouton(msg_fiche::Creer, li, [this] { logique_->CmdCreLien(); }),
                           bouton(msg_fiche::Chercher, li, [this] { logique_->CmdRechLien(); }),
                           bouton(msg_fiche::Couper, li, [this] { logique_->CmdSupLien(); }),
                           bouton(msg_fiche::Monter, li, [this] { logique_->CmdLienUp(); }),
                           bouton(msg_fiche::Descendre, li, [this] { logique_->CmdLienDown(); })}) {
        bl->addWidget(b);
        horsCreation_.push_back(b);
    }
    bl->addStretch();
    gl->addLayout(bl, 3, 0, 1, 2);
    auto* lblEvts = label(msg_fiche::Evenements, li);
    evts_ = Grille(li, 4);
    evts_->setObjectName(QStringLiteral("GrdEvts"));
    lblEvts->setBuddy(evts_);
    gl->addWidget(lblEvts, 4, 0, 1, 2);
    gl->addWidget(evts_, 5, 0, 1, 2);
    auto ouvreEvt = [this] {
        const int r = Ligne(evts_);
        if (r >= 0) OuvreEvenement(c_.logique, logique_->Evenements()[static_cast<std::size_t>(r)].numero,
                                   logique_->Personne());
    };
    connect(evts_, &QTableWidget::cellDoubleClicked, this, ouvreEvt);
    auto* bev = new QHBoxLayout;
    for (QPushButton* b : {bouton(msg_evt::OuvrirEvt, li, ouvreEvt),
                           bouton(msg_evt::NouvelEvt, li,
                                  [this] { OuvreEvenement(c_.logique, 0, logique_->Personne()); })}) {
        bev->addWidget(b);
        horsCreation_.push_back(b);
    }
    bev->addStretch();
    gl->addLayout(bev, 6, 0, 1, 2);
    auto* lblDocs = label(msg_fiche::Documents, li);
    docs_ = Grille(li, 1);
    docs_->setObjectName(QStringLiteral("LstImage"));
    docs_->horizontalHeader()->hide();
    lblDocs->setBuddy(docs_);
    gl->addWidget(lblDocs, 7, 0, 1, 2);
    gl->addWidget(docs_, 8, 0, 1, 2);
    auto* bd = new QHBoxLayout;
    // CmdCréImage, CmdLstImage, CmdSuppImage, CmdDesImage, CmdVisuImage on
    // the person's documents.
    auto docs = [this] {
        return DocumentsDe(c_.logique, OrigineDocument::Genre::Personne,
                           [this] { return logique_->Personne(); });
    };
    connect(docs_, &QTableWidget::cellDoubleClicked, this,
            [this, docs](int r) { docs().CmdVisuImage(r); });
    for (QPushButton* b :
         {bouton(msg_fiche::Creer, li, [docs] { docs().CmdCreImage(); }),
          bouton(msg_fiche::Chercher, li, [docs] { docs().CmdLstImage(); }),
          bouton(msg_fiche::Couper, li, [this, docs] { docs().CmdSuppImage(Ligne(docs_)); }),
          bouton(msg_evt::FicheDesImage, li, [this, docs] { docs().CmdDesImage(Ligne(docs_)); }),
          bouton(msg_evt::FicheVisuImage, li, [this, docs] { docs().CmdVisuImage(Ligne(docs_)); })}) {
        bd->addWidget(b);
        horsCreation_.push_back(b);
    }
    for (QPushButton* b : {bouton(msg_fiche::Monter, li, [this] { logique_->CmdImgUp(Ligne(docs_)); }),
                           bouton(msg_fiche::Descendre, li,
                                  [this] { logique_->CmdImgDown(Ligne(docs_)); })}) {
        bd->addWidget(b);
        horsCreation_.push_back(b);
    }
    bd->addStretch();
    gl->addLayout(bd, 9, 0, 1, 2);
    onglets_->addTab(li, QString());

    // --- Notes.
    auto* no = new QWidget;
    auto* gn = new QVBoxLayout(no);
    note_ = new QTextEdit(no);
    note_->setReadOnly(true);
    note_->setObjectName(QStringLiteral("TxtInd"));
    auto* cTexte = bouton(msg_fiche::Notes, no, [this] { logique_->C_Texte(); });
    horsCreation_.push_back(cTexte);
    gn->addWidget(note_, 1);
    gn->addWidget(cTexte, 0, Qt::AlignLeft);
    onglets_->addTab(no, QString());

    // Status, help line and commands.
    statut_ = new QLabel(this);
    statut_->setObjectName(QStringLiteral("Statut"));
    aide_ = new QLabel(this);
    aide_->setObjectName(QStringLiteral("Aide"));
    auto* bas = new QHBoxLayout;
    bas->addWidget(statut_, 1);
    auto* supprimer = bouton(msg_fiche::Supprimer, this, [this] { logique_->Supprime(); });
    horsCreation_.push_back(supprimer);
    cmdMaj_ = bouton(msg_fiche::Valider, this, [this] { logique_->C_Maj_Click(); });
    cmdMaj_->setObjectName(QStringLiteral("C_MAJ"));
    cmdMaj_->setDefault(true);
    auto* fermer = bouton(msg_fiche::Fermer, this, [this] {
        if (parentWidget()) parentWidget()->close();
        else close();
    });
    bas->addWidget(supprimer);
    bas->addWidget(cmdMaj_);
    bas->addWidget(fermer);
    racine->addWidget(aide_);
    racine->addLayout(bas);

    // Enter validates (or jumps to the number typed); Escape closes.
    for (auto touche : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* s = new QShortcut(QKeySequence(touche), this);
        s->setContext(Qt::WidgetWithChildrenShortcut);
        connect(s, &QShortcut::activated, this, [this] { Entree(); });
    }
    auto* echap = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    echap->setContext(Qt::WidgetWithChildrenShortcut);
    connect(echap, &QShortcut::activated, fermer, &QPushButton::click);

    L.DefinitSaisie([this](int message) -> std::optional<std::string> {
        bool ok = false;
        const QString t = QInputDialog::getText(this, M(msg_fiche::Titre), MT(message),
                                                QLineEdit::Normal, {}, &ok);
        if (!ok) return std::nullopt;
        return A(t);
    });
    L.DefinitEditeurEvenement(EditeurFiche(c.logique, ChoixFicheQt(c)));
    L.DefinitVue(this);
    resize(860, 640);
    Retraduit();
    FocusNouvelle();
}

FrmMisajourQt::~FrmMisajourQt() { logique_->DefinitVue(nullptr); }

QLineEdit* FrmMisajourQt::Champ_(Champ ch, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    champs_[ch] = e;
    connect(e, &QLineEdit::textEdited, this, [this, e, ch](const QString& t) {
        const int curseur = e->cursorPosition();
        const QString v = Q(logique_->Modifie(ch, A(t)));
        if (v != t) {
            e->setText(v);
            e->setCursorPosition(curseur);
        }
    });
    connect(e, &QLineEdit::editingFinished, this, [this, e, ch] {
        if (remplit_ || ch == Champ::Indice) return;
        const QString v = Q(logique_->Quitte(ch));
        if (v != e->text()) e->setText(v);
        libJNaiss_->setText(Q(logique_->LibelleJourNaiss()));
        libJDeces_->setText(Q(logique_->LibelleJourDeces()));
        libJMar_->setText(Q(logique_->LibelleJourMariage()));
    });
    return e;
}

void FrmMisajourQt::Entree() {
    if (indice_->hasFocus()) {
        logique_->AllerIndice(A(indice_->text()));
        return;
    }
    logique_->C_Maj_Click();
}

void FrmMisajourQt::Retraduit() {
    for (auto& [w, n] : textes_) {
        if (auto* b = qobject_cast<QAbstractButton*>(w)) b->setText(M(n));
        else if (auto* l = qobject_cast<QLabel*>(w)) l->setText(M(n));
        else if (auto* g = qobject_cast<QGroupBox*>(w)) g->setTitle(M(n));
    }
    onglets_->setTabText(0, M(msg_fiche::OngletIdentite));
    onglets_->setTabText(1, M(msg_fiche::OngletFamille));
    onglets_->setTabText(2, M(msg_fiche::OngletLiens));
    onglets_->setTabText(3, M(msg_fiche::OngletNotes));
    const QStringList personnes{MT(msg_fiche::ColNom), MT(msg_fiche::ColCode), QString()};
    conjoints_->setHorizontalHeaderLabels({MT(msg_fiche::ColNom), MT(msg_fiche::ColDate), QString()});
    enfants_->setHorizontalHeaderLabels(personnes);
    fratrie_->setHorizontalHeaderLabels({MT(msg_fiche::ColNom), MT(msg_fiche::ColType), QString()});
    liens_->setHorizontalHeaderLabels({MT(msg_fiche::ColNom), MT(msg_fiche::ColTexte)});
    evts_->setHorizontalHeaderLabels({MT(msg_fiche::ColEvenement), MT(msg_fiche::ColRole),
                                      MT(msg_fiche::ColDate), MT(msg_fiche::ColLieu)});
    FicheChangee();
}

void FrmMisajourQt::Remplit(QTableWidget* t, const std::vector<LigneFiche>& lignes, bool dates,
                            bool lieu) {
    t->setRowCount(static_cast<int>(lignes.size()));
    for (int i = 0; i < static_cast<int>(lignes.size()); ++i) {
        const LigneFiche& l = lignes[static_cast<std::size_t>(i)];
        std::vector<std::string> cellules{l.nom, l.texte};
        if (dates) cellules.push_back(l.date);
        if (lieu) cellules.push_back(l.lieu);
        for (int c = 0; c < t->columnCount() && c < static_cast<int>(cellules.size()); ++c)
            t->setItem(i, c, new QTableWidgetItem(Q(cellules[static_cast<std::size_t>(c)])));
    }
    t->resizeColumnToContents(0);
}

void FrmMisajourQt::Rubriques() {
    auto bati = [this](QWidget* cadre, const std::vector<RangRubrique>& rangs,
                       std::vector<std::array<QLineEdit*, 3>>& champs, bool mariage) {
        auto* g = static_cast<QGridLayout*>(cadre->layout());
        if (champs.size() != rangs.size()) {
            while (QLayoutItem* it = g->takeAt(0)) {
                delete it->widget();
                delete it;
            }
            champs.clear();
            for (int i = 0; i < static_cast<int>(rangs.size()); ++i) {
                auto* l = new QLabel(cadre);
                l->setObjectName(QStringLiteral("Lbl%1").arg(i));
                std::array<QLineEdit*, 3> e{};
                const Champ genres[3] = {mariage ? Champ::MarJ : Champ::IndJ,
                                         mariage ? Champ::MarA : Champ::IndA,
                                         mariage ? Champ::MarL : Champ::IndL};
                for (int k = 0; k < 3; ++k) {
                    e[k] = new QLineEdit(cadre);
                    const Champ ch = genres[k];
                    connect(e[k], &QLineEdit::textEdited, this, [this, ch, i](const QString& t) {
                        logique_->Modifie(ch, A(t), i);
                    });
                    connect(e[k], &QLineEdit::editingFinished, this, [this, ch, i, w = e[k]] {
                        if (remplit_) return;
                        const QString v = Q(logique_->Quitte(ch, i));
                        if (v != w->text()) w->setText(v);
                    });
                }
                // CmdIndSel / CmdMarSel: the keyword picker on the row.
                auto* choix = new QToolButton(cadre);
                choix->setObjectName(QStringLiteral("CmdSel%1").arg(i));
                choix->setText(M(msg_mots::ChoixMot));
                connect(choix, &QToolButton::clicked, this, [this, i, mariage, genres] {
                    const auto d = DemandeMotRubrique(c_.logique, *logique_, mariage, i);
                    if (!d) return;
                    const auto v = EditeMot(c_.logique, *d, this);
                    if (!v) return;
                    const std::string* valeurs[3] = {&v->jour, &v->annee, &v->valeur};
                    for (int k = d->date ? 0 : 2; k < 3; ++k) {
                        logique_->Modifie(genres[k], *valeurs[k], i);
                        logique_->Quitte(genres[k], i);
                    }
                    Rubriques();
                });
                e[0]->setMaximumWidth(e[0]->fontMetrics().horizontalAdvance(QStringLiteral("000000000000")));
                e[1]->setMaximumWidth(e[1]->fontMetrics().horizontalAdvance(QStringLiteral("00000000")));
                l->setBuddy(e[0]);
                g->addWidget(l, i, 0);
                for (int k = 0; k < 3; ++k) g->addWidget(e[k], i, k + 1);
                g->addWidget(choix, i, 4);
                // CmdIndEvt / CmdMarEvt: the rubric's event, for a rubric that is a type.
                auto* ev = new QToolButton(cadre);
                ev->setObjectName(QStringLiteral("CmdEvt%1").arg(i));
                connect(ev, &QToolButton::clicked, this,
                        [this, i, mariage] { CmdRubEvt(c_.logique, *logique_, mariage, i); });
                g->addWidget(ev, i, 5);
                g->setColumnStretch(3, 1);
                champs.push_back(e);
            }
        }
        for (int i = 0; i < static_cast<int>(rangs.size()); ++i) {
            const RangRubrique& r = rangs[static_cast<std::size_t>(i)];
            auto* l = static_cast<QLabel*>(g->itemAtPosition(i, 0)->widget());
            l->setText(Q(r.libelle));
            const auto& e = champs[static_cast<std::size_t>(i)];
            e[0]->setVisible(r.date);
            e[1]->setVisible(r.date);
            auto* ev = static_cast<QToolButton*>(g->itemAtPosition(i, 5)->widget());
            ev->setVisible(RubriqueEvenement(c_.logique, *logique_, mariage, i));
            ev->setText(M(msg_evt::Evenement) +
                        (MarqueRubEvt(c_.logique, *logique_, mariage, i) ? M(849) : QString()));
            const std::string* v[3] = {&r.jour, &r.annee, &r.lieu};
            for (int k = 0; k < 3; ++k)
                if (A(e[k]->text()) != *v[k]) e[k]->setText(Q(*v[k]));
        }
    };
    bati(cadreRubInd_, logique_->RubriquesPersonne(), rubInd_, false);
    bati(cadreRubMar_, logique_->RubriquesMariage(), rubMar_, true);
}

void FrmMisajourQt::FicheChangee() {
    FrmMisajour& L = *logique_;
    remplit_ = true;
    for (auto& [ch, e] : champs_) {
        const QString v = Q(L.Valeur(ch));
        if (e->text() != v) e->setText(v);
    }
    indice_->setText(Q(L.Valeur(Champ::Indice)));
    eIndice_->setVisible(L.IndiceFaux());
    const int s = L.Sexe() == 'H' ? 0 : L.Sexe() == 'F' ? 1 : 2;
    sexes_[s]->setChecked(true);
    libJNaiss_->setText(Q(L.LibelleJourNaiss()));
    libJDeces_->setText(Q(L.LibelleJourDeces()));
    libJMar_->setText(Q(L.LibelleJourMariage()));
    pere_->setText(Q(L.Pere().nom));
    mere_->setText(Q(L.Mere().nom));
    Remplit(conjoints_, L.Conjoints(), true, false);
    // The marriage column shows the year; the record number stays hidden.
    for (int i = 0; i < conjoints_->rowCount(); ++i) {
        conjoints_->setItem(i, 1, new QTableWidgetItem(Q(L.Conjoints()[static_cast<std::size_t>(i)].date)));
        conjoints_->setItem(i, 2, nullptr);
    }
    conjoints_->setColumnHidden(2, true);
    if (L.MariageSelectionne() >= 0) conjoints_->selectRow(L.MariageSelectionne());
    else conjoints_->clearSelection();
    Remplit(enfants_, L.Enfants(), false, false);
    enfants_->setColumnHidden(2, true);
    lblEnfants_->setText(Q(L.LibelleEnfants()));
    Remplit(fratrie_, L.Fratrie(), false, false);
    fratrie_->setColumnHidden(2, true);
    Remplit(liens_, L.LiensFiche(), false, false);
    if (L.LienSelectionne() >= 0) liens_->selectRow(L.LienSelectionne());
    // Events: title, role, date, place.
    evts_->setRowCount(static_cast<int>(L.Evenements().size()));
    for (int i = 0; i < evts_->rowCount(); ++i) {
        const LigneFiche& e = L.Evenements()[static_cast<std::size_t>(i)];
        const std::string c[4] = {e.nom, e.texte, e.date, e.lieu};
        for (int k = 0; k < 4; ++k) evts_->setItem(i, k, new QTableWidgetItem(Q(c[k])));
    }
    Remplit(docs_, L.Documents(), false, false);
    // The event buttons, marked when the event exists.
    for (auto& [b, tag] : boutonsEvt_)
        b->setText(M(msg_evt::Evenement) + (MarqueEvFiche(c_.logique, L, tag) ? M(849) : QString()));
    Rubriques();
    // The note shows with its bold, italic and alignment, as the editor
    // wrote it.
    if (L.Note().rfind("{\\rtf", 0) == 0) DocumentDepuisSegments(*note_->document(), LitRtf(L.Note()));
    else note_->setPlainText(Q(TexteRtf(L.Note())));
    noteMar_->setText(Q(TexteRtf(L.NoteMariage())));
    statut_->setText(Q(L.Statut()));
    aide_->setText(L.Aide() ? MT(L.Aide()) : QString());
    cmdMaj_->setText(M(L.Nouvelle() ? msg_fiche::MiseAJour : msg_fiche::Valider));
    for (QWidget* w : horsCreation_) w->setEnabled(!L.Nouvelle());
    cmdDoublon_->setEnabled(L.DoublonPossible());
    for (int i = 1; i < onglets_->count(); ++i) onglets_->setTabEnabled(i, !L.Nouvelle());
    setWindowTitle(L.Nouvelle() ? M(msg_fiche::Titre)
                                : M(msg_fiche::Titre) + QStringLiteral(" - ") + Q(L.Statut()));
    remplit_ = false;
}

void FrmMisajourQt::Focus(Champ c) {
    auto it = champs_.find(c);
    if (it == champs_.end()) return;
    onglets_->setCurrentIndex(c == Champ::Lien ? 2 : 0);
    it->second->setFocus();
    it->second->selectAll();
}

void FrmMisajourQt::PersonneChangee() {
    logique_->Actualise();
    FocusNouvelle();
}

void FrmMisajourQt::FocusNouvelle() {
    // A new sheet is typed from its name on, once the window is shown and
    // active.
    QTimer::singleShot(0, this, [this] {
        if (logique_->Nouvelle()) Focus(Champ::Nom);
    });
}

void FrmMisajourQt::RecoitGlisser(char genre, std::uint32_t numero) {
    if (genre == 'I') logique_->Montre(numero);
}

void FrmMisajourQt::focusInEvent(QFocusEvent* e) {
    FormulaireQt::focusInEvent(e);
    logique_->Actualise();
}

void FrmMisajourQt::closeEvent(QCloseEvent* e) {
    c_.logique.Confirme_Fiche_En_Cours();
    e->accept();
}

static EnregistrementFormulaire enr("FrmMisajour", [](ContexteQt& c) { return new FrmMisajourQt(c); });

} // namespace sylvane
