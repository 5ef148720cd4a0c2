#include "app/frm_fusion.h"

#include "app/texte_qt.h"
#include "maintenance/reparations.h"
#include "ui/mdiform1.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QStyle>
#include <QTableWidget>
#include <QVBoxLayout>

#include <functional>

namespace sylvane {
namespace {

// A record label that takes a person dragged from a list ("I" and a number).
class EtiquetteDepot : public QLabel {
  public:
    EtiquetteDepot(QWidget* parent, std::function<void(const std::string&)> recoit)
        : QLabel(parent), recoit_(std::move(recoit)) {
        setAcceptDrops(true);
        setFrameStyle(QFrame::Panel | QFrame::Sunken);
        setMinimumWidth(260);
        setTextInteractionFlags(Qt::NoTextInteraction);
    }

  protected:
    void dragEnterEvent(QDragEnterEvent* e) override {
        if (e->mimeData()->hasText() && e->mimeData()->text().startsWith(QLatin1Char('I')))
            e->acceptProposedAction();
    }
    void dropEvent(QDropEvent* e) override {
        recoit_(A(e->mimeData()->text()));
        e->acceptProposedAction();
    }

  private:
    std::function<void(const std::string&)> recoit_;
};

// A list of a scrolled panel: it takes the panel's width, never more, so
// that the panel only ever scrolls down.
QComboBox* ListeEtroite(QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    c->setMinimumContentsLength(8);
    return c;
}

constexpr int kPageListe = 0, kPageRG = 1, kPageTexte = 2, kPageParents = 3, kPageMariage = 4,
              kPageEnfant = 5;

ChoixTexte ChoixDe(QButtonGroup* g) {
    const int i = g->checkedId();
    return i == 0 ? ChoixTexte::Premier : i == 1 ? ChoixTexte::Second : ChoixTexte::Fusion;
}

void Coche(QButtonGroup* g, ChoixTexte c) {
    const int i = c == ChoixTexte::Premier ? 0 : c == ChoixTexte::Second ? 1 : 2;
    if (auto* b = g->button(i)) b->setChecked(true);
}

} // namespace

QGroupBox* FrmFusionQt::Options(QButtonGroup*& groupe, std::array<QRadioButton*, 3>& boutons) {
    auto* cadre = new QGroupBox(this);
    // One under the other: a parent's choices are names with dates.
    auto* l = new QVBoxLayout(cadre);
    groupe = new QButtonGroup(cadre);
    for (int i = 0; i < 3; ++i) {
        boutons[static_cast<std::size_t>(i)] = new QRadioButton(cadre);
        groupe->addButton(boutons[static_cast<std::size_t>(i)], i);
        l->addWidget(boutons[static_cast<std::size_t>(i)]);
    }
    return cadre;
}

FrmFusionQt::FrmFusionQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique) {
    // The level panel: a click starts the search.
    niveau_ = new QGroupBox(this);
    niveau_->setObjectName(QStringLiteral("CdrNiveau"));
    auto* ln = new QHBoxLayout(niveau_);
    for (int i = 0; i < 4; ++i) {
        auto* b = new QRadioButton(niveau_);
        b->setObjectName(QStringLiteral("OptSeuil%1").arg(i));
        seuils_[static_cast<std::size_t>(i)] = b;
        ln->addWidget(b);
        connect(b, &QRadioButton::clicked, this, [this, i] {
            niveau_->setEnabled(false);
            quitter_->setEnabled(false);
            logique_.OptSeuil_Click(i);
            niveau_->setEnabled(true);
            quitter_->setEnabled(true);
            Montre();
        });
    }
    ln->addStretch();

    grille_ = new QTableWidget(0, 4, this);
    grille_->setObjectName(QStringLiteral("GrdFusion"));
    grille_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grille_->setSelectionMode(QAbstractItemView::SingleSelection);
    grille_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grille_->verticalHeader()->hide();
    grille_->verticalHeader()->setDefaultSectionSize(grille_->fontMetrics().height() + 6);
    grille_->horizontalHeader()->setSectionResizeMode(0, QHeaderView::Stretch);
    grille_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    grille_->horizontalHeader()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    grille_->horizontalHeader()->setSectionResizeMode(3, QHeaderView::ResizeToContents);
    grille_->setMinimumSize(520, 240);
    grille_->setTabKeyNavigation(false);
    connect(grille_, &QTableWidget::currentCellChanged, this, [this](int ligne, int, int, int) {
        if (ligne < 0 || logique_.etape() != FrmFusion::Etape::Liste) return;
        logique_.Grille_Click(static_cast<std::size_t>(ligne));
        Montre();
    });
    connect(grille_, &QTableWidget::cellDoubleClicked, this, [this](int ligne, int colonne) {
        if (colonne >= 2) logique_.Grille_DblClick(static_cast<std::size_t>(ligne), colonne == 3);
    });
    nombre_ = new QLabel(this);
    nombre_->setObjectName(QStringLiteral("LblNombre"));

    auto* fichesL = new QGridLayout;
    for (int i = 0; i < 2; ++i) {
        titresFiches_[static_cast<std::size_t>(i)] = new QLabel(this);
        fiches_[static_cast<std::size_t>(i)] = new EtiquetteDepot(this, [this, i](const std::string& t) {
            logique_.Depose(i, t);
            Montre();
        });
        fiches_[static_cast<std::size_t>(i)]->setObjectName(QStringLiteral("LblFiche%1").arg(i));
        noms_[static_cast<std::size_t>(i)] = new QPushButton(this);
        noms_[static_cast<std::size_t>(i)]->setObjectName(QStringLiteral("CmdNom%1").arg(i));
        connect(noms_[static_cast<std::size_t>(i)], &QPushButton::clicked, this, [this, i] {
            logique_.CmdNom(i);
            Montre();
        });
        fichesL->addWidget(titresFiches_[static_cast<std::size_t>(i)], i, 0);
        fichesL->addWidget(fiches_[static_cast<std::size_t>(i)], i, 1);
        fichesL->addWidget(noms_[static_cast<std::size_t>(i)], i, 2);
    }
    fichesL->setColumnStretch(1, 1);

    fusion_ = new QPushButton(this);
    fusion_->setObjectName(QStringLiteral("CmdFusion"));
    ecarter_ = new QPushButton(this);
    ecarter_->setObjectName(QStringLiteral("CmdEcarter"));
    quitter_ = new QPushButton(this);
    quitter_->setObjectName(QStringLiteral("CmdQuitter"));
    suite_ = new QPushButton(this);
    suite_->setObjectName(QStringLiteral("CmdSuite"));
    connect(fusion_, &QPushButton::clicked, this, [this] {
        logique_.CmdFusion_Click();
        Montre();
    });
    connect(ecarter_, &QPushButton::clicked, this, [this] {
        logique_.CmdEcarter();
        Montre();
    });
    connect(suite_, &QPushButton::clicked, this, [this] {
        LitEtape();
        logique_.CmdSuite();
        Montre();
    });
    connect(quitter_, &QPushButton::clicked, this, [this] {
        if (logique_.etape() != FrmFusion::Etape::Liste) {
            logique_.Abandonne();
            Montre();
            return;
        }
        Ferme();
        (parentWidget() ? parentWidget() : static_cast<QWidget*>(this))->close();
    });

    // The wizard's panels, one at a time.
    panneaux_ = new QStackedWidget(this);
    panneaux_->addWidget(new QWidget(panneaux_));
    auto* rg = new QWidget(panneaux_);
    auto* frg = new QFormLayout(rg);
    frg->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    for (std::size_t i = 0; i < listes_.size(); ++i) {
        listes_[i] = new QComboBox(rg);
        listes_[i]->setMinimumContentsLength(24);
        libelles_[i] = new QLabel(rg);
        libelles_[i]->setBuddy(listes_[i]);
        frg->addRow(libelles_[i], listes_[i]);
    }
    autrePrenom_ = new QCheckBox(rg);
    frg->addRow(QString(), autrePrenom_);
    defile_ = new QScrollArea(rg);
    defile_->setObjectName(QStringLiteral("VScroll1"));
    defile_->setWidgetResizable(true);
    defile_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    rubriques_ = new QWidget(defile_);
    formeRubriques_ = new QFormLayout(rubriques_);
    defile_->setWidget(rubriques_);
    frg->addRow(defile_);
    panneaux_->addWidget(rg);

    auto* txt = new QWidget(panneaux_);
    auto* lt = new QVBoxLayout(txt);
    for (auto& t : textes_) {
        t = new QPlainTextEdit(txt);
        t->setReadOnly(true);
        lt->addWidget(t, 1);
    }
    cadreTexte_ = Options(optTexte_, boutonsTexte_);
    lt->addWidget(cadreTexte_);
    panneaux_->addWidget(txt);

    auto* par = new QWidget(panneaux_);
    auto* lp = new QVBoxLayout(par);
    cadrePere_ = Options(optPere_, boutonsPere_);
    cadreMere_ = Options(optMere_, boutonsMere_);
    lp->addWidget(cadrePere_);
    lp->addWidget(cadreMere_);
    lp->addStretch();
    panneaux_->addWidget(par);

    auto* mar = new QWidget(panneaux_);
    auto* lm = new QVBoxLayout(mar);
    lblConjoint_ = new QLabel(mar);
    conjoint_ = new QComboBox(mar);
    conjoint_->setObjectName(QStringLiteral("LstConjoint"));
    // The spouse's name is long: the list takes the whole width below it.
    lblConjoint_->setBuddy(conjoint_);
    lm->addWidget(lblConjoint_);
    lm->addWidget(conjoint_);
    // Below the choice of marriage, what differs between the two, scrolled.
    defileMariage_ = new QScrollArea(mar);
    defileMariage_->setObjectName(QStringLiteral("VScroll2"));
    defileMariage_->setWidgetResizable(true);
    defileMariage_->setFrameShape(QFrame::NoFrame);
    defileMariage_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    detailMariage_ = new QWidget(defileMariage_);
    auto* ld = new QVBoxLayout(detailMariage_);
    ld->setContentsMargins(0, 0, 0, 0);
    auto* fm = new QFormLayout;
    fm->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    dateMariage_ = ListeEtroite(detailMariage_);
    dateMariage_->setObjectName(QStringLiteral("LstDMar"));
    lieuMariage_ = ListeEtroite(detailMariage_);
    lieuMariage_->setObjectName(QStringLiteral("LstLMar"));
    lblDateMariage_ = new QLabel(detailMariage_);
    lblLieuMariage_ = new QLabel(detailMariage_);
    lblDateMariage_->setBuddy(dateMariage_);
    lblLieuMariage_->setBuddy(lieuMariage_);
    fm->addRow(lblDateMariage_, dateMariage_);
    fm->addRow(lblLieuMariage_, lieuMariage_);
    ld->addLayout(fm);
    auto* rubMar = new QWidget(detailMariage_);
    rubMar->setObjectName(QStringLiteral("PnlMotMariage"));
    formeRubriquesMariage_ = new QFormLayout(rubMar);
    formeRubriquesMariage_->setContentsMargins(0, 0, 0, 0);
    formeRubriquesMariage_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    ld->addWidget(rubMar);
    notesMariage_ = new QWidget(detailMariage_);
    auto* ln2 = new QVBoxLayout(notesMariage_);
    ln2->setContentsMargins(0, 0, 0, 0);
    for (auto& t : textesMariage_) {
        t = new QPlainTextEdit(notesMariage_);
        t->setReadOnly(true);
        t->setTabChangesFocus(true);
        // Five lines each: the panel scrolls as a whole.
        t->setFixedHeight(t->fontMetrics().lineSpacing() * 5 + 2 * t->frameWidth() + 8);
        ln2->addWidget(t);
    }
    cadreTexteMariage_ = Options(optTxtMar_, boutonsTxtMar_);
    cadreTexteMariage_->setObjectName(QStringLiteral("OptTxtMar"));
    ln2->addWidget(cadreTexteMariage_);
    ld->addWidget(notesMariage_);
    ld->addStretch();
    defileMariage_->setWidget(detailMariage_);
    lm->addWidget(defileMariage_, 1);
    // With nothing to compare, the choice stays under its label at the top.
    lm->addStretch();
    connect(conjoint_, qOverload<int>(&QComboBox::activated), this, [this](int i) {
        logique_.ConjointChoisi(i);
        MontreEtape();
    });
    panneaux_->addWidget(mar);

    auto* enf = new QWidget(panneaux_);
    auto* le = new QFormLayout(enf);
    le->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    lblEnfant_ = new QLabel(enf);
    enfant_ = new QComboBox(enf);
    enfant_->setObjectName(QStringLiteral("LstEnfant"));
    lblEnfant_->setBuddy(enfant_);
    le->addRow(lblEnfant_);
    le->addRow(enfant_);
    panneaux_->addWidget(enf);

    auto* gauche = new QVBoxLayout;
    gauche->addWidget(niveau_);
    gauche->addWidget(grille_, 1);
    gauche->addWidget(nombre_);
    gauche->addLayout(fichesL);
    etape_ = new QLabel(this);
    etape_->setObjectName(QStringLiteral("LblEtape"));
    QFont gras = etape_->font();
    gras.setBold(true);
    etape_->setFont(gras);
    // In line with the captions of the panel below.
    etape_->setIndent(style()->pixelMetric(QStyle::PM_LayoutLeftMargin));
    assistant_ = new QWidget(this);
    auto* droite = new QVBoxLayout(assistant_);
    droite->setContentsMargins(0, 0, 0, 0);
    droite->addWidget(etape_);
    droite->addWidget(panneaux_, 1);
    auto* boutons = new QHBoxLayout;
    boutons->addStretch();
    for (auto* b : {fusion_, suite_, ecarter_, quitter_}) boutons->addWidget(b);
    auto* haut = new QHBoxLayout;
    haut->addLayout(gauche, 3);
    haut->addWidget(assistant_, 2);
    auto* l = new QVBoxLayout(this);
    l->addLayout(haut, 1);
    l->addLayout(boutons);
    setMinimumSize(980, 560);
    Retraduit();
}

FrmFusionQt::~FrmFusionQt() { Ferme(); }

void FrmFusionQt::Ferme() {
    if (ferme_) return;
    ferme_ = true;
    logique_.Ferme();
}

void FrmFusionQt::Retraduit() {
    setWindowTitle(M(kFusionTitre));
    niveau_->setTitle(M(kFusionSeuil) + QStringLiteral("  (") + Q(logique_.Plage()) +
                      QLatin1Char(')'));
    for (int i = 0; i < 4; ++i) seuils_[static_cast<std::size_t>(i)]->setText(M(kFusionNiveau0 + i));
    grille_->setHorizontalHeaderLabels(
        {MT(kFusionColonnes), MT(kFusionColonnes + 1), MT(kFusionColonnes + 2), MT(kFusionColonnes + 3)});
    titresFiches_[0]->setText(MT(kFusionGardee));
    titresFiches_[1]->setText(MT(kFusionSupprimee));
    for (auto* b : noms_) b->setText(M(kFusionChoisir));
    fusion_->setText(M(kFusionBouton).contains(QLatin1Char('&')) ? M(kFusionBouton)
                                                                 : QLatin1Char('&') + M(kFusionBouton));
    ecarter_->setText(M(kFusionEcarter));
    quitter_->setText(M(kFusionQuitter));
    suite_->setText(M(kFusionSuite));
    for (std::size_t i = 0; i < libelles_.size(); ++i)
        libelles_[i]->setText(MT(kFusionListes + static_cast<int>(i)));
    autrePrenom_->setText(MT(kFusionAutrePrenom));
    for (auto* boutons : {&boutonsTexte_, &boutonsPere_, &boutonsMere_, &boutonsTxtMar_}) {
        (*boutons)[0]->setText(MT(kFusionPremier));
        (*boutons)[1]->setText(MT(kFusionSecond));
        (*boutons)[2]->setText(MT(kFusionFusion));
    }
    // The step's own caption says the notes already.
    cadreTexte_->setTitle(QString());
    cadreTexteMariage_->setTitle(MT(kFusionNotes));
    cadrePere_->setTitle(MT(kFusionPere));
    cadreMere_->setTitle(MT(kFusionMere));
    lblDateMariage_->setText(MT(kFusionDateMariage));
    lblLieuMariage_->setText(MT(kFusionLieuMariage));
    Montre();
}

void FrmFusionQt::Montre() {
    const auto lignes = logique_.Grille();
    grille_->blockSignals(true);
    grille_->setRowCount(static_cast<int>(lignes.size()));
    for (int i = 0; i < static_cast<int>(lignes.size()); ++i) {
        const auto& l = lignes[static_cast<std::size_t>(i)];
        const QString cellules[] = {Q(l.nom1), Q(l.nom2), QString::number(l.premier),
                                    QString::number(l.second)};
        for (int j = 0; j < 4; ++j) grille_->setItem(i, j, new QTableWidgetItem(cellules[j]));
    }
    // A row shown as chosen is the pair in the two records, and no other.
    if (!logique_.EcarterActif()) {
        grille_->setCurrentItem(nullptr);
        grille_->clearSelection();
    }
    grille_->blockSignals(false);
    nombre_->setText(Q(logique_.LblNombre()));
    for (int i = 0; i < 2; ++i) fiches_[static_cast<std::size_t>(i)]->setText(Q(logique_.LblFiche(i)));
    const bool liste = logique_.etape() == FrmFusion::Etape::Liste;
    fusion_->setEnabled(logique_.CmdFusionActif());
    ecarter_->setEnabled(liste && logique_.EcarterActif());
    suite_->setVisible(!liste);
    suite_->setDefault(!liste);
    fusion_->setDefault(liste);
    niveau_->setEnabled(liste);
    grille_->setEnabled(liste);
    for (auto* b : noms_) b->setEnabled(liste);
    MontreEtape();
}

QComboBox* FrmFusionQt::Liste(const ListeFusion& l, QComboBox* boite) {
    boite->clear();
    for (const auto& v : l.valeurs) boite->addItem(Q(v));
    boite->setCurrentIndex(l.choix);
    return boite;
}

void FrmFusionQt::MontreEtape() {
    using E = FrmFusion::Etape;
    FrmFusion& f = logique_;
    // The table alone takes the whole width; the wizard shares it.
    const bool liste = f.etape() == E::Liste;
    assistant_->setVisible(!liste);
    switch (f.etape()) {
    case E::Liste:
        panneaux_->setCurrentIndex(kPageListe);
        return;
    case E::RG: {
        const ListeFusion* l[] = {&f.lstNom,    &f.lstPrenom,  &f.lstAutPre, &f.lstDNaiss,
                                  &f.lstLNaiss, &f.lstDDeces, &f.lstLDeces};
        for (std::size_t i = 0; i < listes_.size(); ++i) Liste(*l[i], listes_[i]);
        autrePrenom_->setVisible(f.chkAutPreOffert);
        autrePrenom_->setChecked(f.chkAutPre);
        MontreRubriques(formeRubriques_, f.rubriques);
        defile_->setVisible(formeRubriques_->rowCount() > 0);
        etape_->setText(MT(kFusionEtapes));
        panneaux_->setCurrentIndex(kPageRG);
        listes_[0]->setFocus();
        return;
    }
    case E::TXT:
        textes_[0]->setPlainText(Q(f.texte1));
        textes_[1]->setPlainText(Q(f.texte2));
        Coche(optTexte_, f.optTexte);
        etape_->setText(MT(kFusionNotes));
        panneaux_->setCurrentIndex(kPageTexte);
        return;
    case E::PARENTS:
        cadrePere_->setVisible(f.perePropose);
        cadreMere_->setVisible(f.merePropose);
        boutonsPere_[0]->setText(Q(f.peres[0]));
        boutonsPere_[1]->setText(Q(f.peres[1]));
        boutonsMere_[0]->setText(Q(f.meres[0]));
        boutonsMere_[1]->setText(Q(f.meres[1]));
        Coche(optPere_, f.optPere);
        Coche(optMere_, f.optMere);
        etape_->setText(MT(kFusionEtapes + 1));
        panneaux_->setCurrentIndex(kPageParents);
        return;
    case E::MARIAGE: {
        lblConjoint_->setText(Q(f.LblConjoint()));
        conjoint_->clear();
        for (const auto& t : f.TextesConjoint()) conjoint_->addItem(Q(t));
        conjoint_->setCurrentIndex(f.choixConjoint);
        const bool fusionne = f.choixConjoint >= 0 &&
                              static_cast<std::size_t>(f.choixConjoint) < f.LstConjoint().size() &&
                              f.LstConjoint()[static_cast<std::size_t>(f.choixConjoint)] != 0;
        Liste(f.lstDMar, dateMariage_);
        Liste(f.lstLMar, lieuMariage_);
        MontreRubriques(formeRubriquesMariage_, f.rubriquesMariage);
        formeRubriquesMariage_->parentWidget()->setVisible(formeRubriquesMariage_->rowCount() > 0);
        textesMariage_[0]->setPlainText(Q(f.texteMar1));
        textesMariage_[1]->setPlainText(Q(f.texteMar2));
        notesMariage_->setVisible(f.texteMarPropose);
        Coche(optTxtMar_, f.optTxtMar);
        defileMariage_->setVisible(fusionne);
        etape_->setText(MT(kFusionEtapes + 2));
        panneaux_->setCurrentIndex(kPageMariage);
        conjoint_->setFocus();
        return;
    }
    case E::ENFT:
        lblEnfant_->setText(Q(f.LblEnfant()));
        enfant_->clear();
        for (const auto& t : f.TextesEnfant()) enfant_->addItem(Q(t));
        enfant_->setCurrentIndex(f.choixEnfant);
        etape_->setText(MT(kFusionEtapes + 3));
        panneaux_->setCurrentIndex(kPageEnfant);
        enfant_->setFocus();
        return;
    }
}

void FrmFusionQt::MontreRubriques(QFormLayout* forme, const std::vector<RubriqueFusion>& lignes) {
    while (forme->rowCount()) forme->removeRow(0);
    QWidget* parent = forme->parentWidget();
    for (const auto& r : lignes) {
        if (r.dates.valeurs.empty()) continue;
        auto* ligne = new QWidget(parent);
        auto* h = new QHBoxLayout(ligne);
        h->setContentsMargins(0, 0, 0, 0);
        if (r.avecDate) h->addWidget(Liste(r.dates, ListeEtroite(ligne)));
        h->addWidget(Liste(r.valeurs, ListeEtroite(ligne)), 1);
        forme->addRow(Q(r.libelle), ligne);
    }
}

void FrmFusionQt::LitRubriques(QFormLayout* forme, std::vector<RubriqueFusion>& lignes) {
    int rang = 0;
    for (auto& r : lignes) {
        if (r.dates.valeurs.empty()) continue;
        QLayoutItem* item = forme->itemAt(rang++, QFormLayout::FieldRole);
        if (!item || !item->widget()) return;
        const auto boites = item->widget()->findChildren<QComboBox*>();
        if (r.avecDate && boites.size() == 2) {
            r.dates.choix = boites[0]->currentIndex();
            r.valeurs.choix = boites[1]->currentIndex();
        } else if (!boites.isEmpty()) {
            r.valeurs.choix = boites.back()->currentIndex();
        }
    }
}

// The choices shown go back to the logic before it moves on.
void FrmFusionQt::LitEtape() {
    using E = FrmFusion::Etape;
    FrmFusion& f = logique_;
    switch (f.etape()) {
    case E::RG: {
        ListeFusion* l[] = {&f.lstNom,    &f.lstPrenom,  &f.lstAutPre, &f.lstDNaiss,
                            &f.lstLNaiss, &f.lstDDeces, &f.lstLDeces};
        for (std::size_t i = 0; i < listes_.size(); ++i) l[i]->choix = listes_[i]->currentIndex();
        f.chkAutPre = autrePrenom_->isChecked();
        LitRubriques(formeRubriques_, f.rubriques);
        return;
    }
    case E::TXT:
        f.optTexte = ChoixDe(optTexte_);
        return;
    case E::PARENTS:
        f.optPere = ChoixDe(optPere_);
        f.optMere = ChoixDe(optMere_);
        return;
    case E::MARIAGE:
        f.lstDMar.choix = dateMariage_->currentIndex();
        f.lstLMar.choix = lieuMariage_->currentIndex();
        LitRubriques(formeRubriquesMariage_, f.rubriquesMariage);
        if (f.texteMarPropose) f.optTxtMar = ChoixDe(optTxtMar_);
        return;
    case E::ENFT:
        f.choixEnfant = enfant_->currentIndex();
        return;
    case E::Liste:
        return;
    }
}

void FrmFusionQt::RecoitGlisser(char genre, std::uint32_t numero) {
    if (genre != 'I' || logique_.etape() != FrmFusion::Etape::Liste) return;
    logique_.PoseFiche(logique_.Fiche(0) ? 1 : 0, numero);
    Montre();
}

void FrmFusionQt::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Escape) {
        quitter_->click();
        return;
    }
    // Enter goes on: the next step in the wizard, the merge from the table.
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        QPushButton* b = suite_->isVisible() ? suite_ : fusion_;
        if (b->isEnabled()) b->click();
        return;
    }
    FormulaireQt::keyPressEvent(e);
}

namespace {
EnregistrementFormulaire enr("FrmFusion", [](ContexteQt& c) { return new FrmFusionQt(c); });
// The repair command: every marriage, once the family names have their
// keyword list (1338 otherwise).
EnregistrementFormulaire enrMariages("FrmFusionMariages", [](ContexteQt& c) -> FormulaireQt* {
    Base* b = c.logique.base();
    if (!b) return nullptr;
    const DoublonsMariage d = MnuDoublonMariage(*b);
    if (d.message) {
        c.logique.services().boites.Information(d.message);
        return nullptr;
    }
    FrmFusion::PlageDemandee() = d.compte;
    return new FrmFusionQt(c);
});
} // namespace

} // namespace sylvane
