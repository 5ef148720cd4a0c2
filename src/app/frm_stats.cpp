#include "app/frm_stats.h"

#include "app/fenetre_principale.h"
#include "app/texte_qt.h"
#include "text/messages.h"
#include "ui/mdiform1.h"
#include "ui/services.h"

#include <QApplication>
#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QClipboard>
#include <QDesktopServices>
#include <QFontMetrics>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabBar>
#include <QTableWidget>
#include <QTimer>
#include <QUrl>
#include <QValueAxis>
#include <QVBoxLayout>

namespace sylvane {
namespace {

// A document on paper goes to the preview, which prints it.
void Apercu(MDIForm1& f, DocumentApercu d) {
    ApercuTransmis() = std::move(d);
    f.services().fenetres.Ouvre("FrmPrevisualisation");
}

QTableWidget* Grille(QWidget* parent, const char* nom) {
    auto* g = new QTableWidget(parent);
    g->setObjectName(QString::fromLatin1(nom));
    g->setEditTriggers(QAbstractItemView::NoEditTriggers);
    g->setSelectionBehavior(QAbstractItemView::SelectRows);
    g->verticalHeader()->hide();
    g->horizontalHeader()->setStretchLastSection(true);
    return g;
}

void Remplit(QTableWidget* g, const TableTexte& t) {
    g->clear();
    g->setColumnCount(static_cast<int>(t.entetes.size()));
    g->setRowCount(static_cast<int>(t.lignes.size()));
    QStringList entetes;
    for (const auto& e : t.entetes) entetes << Q(e);
    g->setHorizontalHeaderLabels(entetes);
    for (int r = 0; r < static_cast<int>(t.lignes.size()); ++r)
        for (int c = 0; c < static_cast<int>(t.lignes[static_cast<std::size_t>(r)].size()); ++c) {
            auto* it = new QTableWidgetItem(Q(t.lignes[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)]));
            if (c > 0) it->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            g->setItem(r, c, it);
        }
    g->resizeColumnsToContents();
}

} // namespace

// --- FrmStats -------------------------------------------------------------------

FrmStatsQt::FrmStatsQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique) {
    onglets_ = new QTabBar(this);
    onglets_->setObjectName(QStringLiteral("TabStrip1"));
    for (int i = 0; i < kOnglets; ++i) onglets_->addTab(QString());
    pile_ = new QStackedWidget(this);
    grille_ = Grille(this, "Grille");
    graphique_ = new QWidget(this);
    graphique_->setLayout(new QVBoxLayout);
    graphique_->layout()->setContentsMargins(0, 0, 0, 0);
    pile_->addWidget(grille_);
    pile_->addWidget(graphique_);
    copier_ = new QPushButton(this);
    copier_->setObjectName(QStringLiteral("CmdCopier"));
    imprimer_ = new QPushButton(this);
    imprimer_->setObjectName(QStringLiteral("CmdImprimer"));

    auto* boutons = new QHBoxLayout;
    boutons->addStretch();
    boutons->addWidget(copier_);
    boutons->addWidget(imprimer_);
    auto* l = new QVBoxLayout(this);
    l->addWidget(onglets_);
    l->addWidget(pile_, 1);
    l->addLayout(boutons);

    connect(onglets_, &QTabBar::currentChanged, this, [this](int i) {
        logique_.onglet = i;
        Montre();
    });
    connect(copier_, &QPushButton::clicked, this, [this] { Copie(); });
    connect(imprimer_, &QPushButton::clicked, this,
            [this] { Apercu(c_.logique, logique_.Impression()); });
    Retraduit();
    setMinimumSize(760, 460);
    // The window shows first; the figures come under the progress panel.
    QTimer::singleShot(0, this, [this] { Calcule(); });
}

void FrmStatsQt::Retraduit() {
    setWindowTitle(Q(logique_.Titre()));
    for (int i = 0; i < kOnglets; ++i) onglets_->setTabText(i, Q(FrmStats::LibelleOnglet(i)));
    copier_->setText(M(msg_stats::Copier));
    imprimer_->setText(M(msg_stats::Imprimer));
    Montre();
}

void FrmStatsQt::Calcule() {
    if (logique_.Calcule()) Montre();
}

void FrmStatsQt::Montre() {
    const int o = logique_.onglet;
    if (o < kPremierGraphique) {
        Remplit(grille_, logique_.Table(o));
        pile_->setCurrentWidget(grille_);
        return;
    }
    // A bar chart of the twelve months.
    QLayout* l = graphique_->layout();
    while (QLayoutItem* it = l->takeAt(0)) {
        delete it->widget();
        delete it;
    }
    auto* serie = new QBarSeries;
    auto* barres = new QBarSet(Q(FrmStats::LibelleOnglet(o)));
    QStringList mois;
    std::uint64_t haut = 0;
    const auto valeurs = logique_.Barres(o);
    for (int m = 0; m < 12; ++m) {
        *barres << static_cast<double>(valeurs[static_cast<std::size_t>(m)]);
        haut = std::max(haut, valeurs[static_cast<std::size_t>(m)]);
        mois << Q(Message(730 + m));
    }
    serie->append(barres);
    auto* graphique = new QChart;
    graphique->addSeries(serie);
    graphique->setTitle(Q(FrmStats::LibelleOnglet(o)));
    graphique->legend()->hide();
    auto* axeX = new QBarCategoryAxis;
    axeX->append(mois);
    // A month's name wider than its bar's room is set upright rather than
    // cut short: a narrow window keeps every name whole.
    const QFontMetrics mesure(axeX->labelsFont());
    int large = 0;
    for (const QString& m : mois) large = std::max(large, mesure.horizontalAdvance(m));
    connect(graphique, &QChart::plotAreaChanged, axeX, [axeX, large](const QRectF& r) {
        axeX->setLabelsAngle(r.width() / 12 < large + 8 ? -90 : 0);
    });
    graphique->addAxis(axeX, Qt::AlignBottom);
    serie->attachAxis(axeX);
    auto* axeY = new QValueAxis;
    // Whole numbers only: one tick a unit up to ten, else round steps.
    axeY->setRange(0, static_cast<double>(std::max<std::uint64_t>(haut, 1)));
    if (haut <= 10) axeY->setTickCount(static_cast<int>(std::max<std::uint64_t>(haut, 1)) + 1);
    else axeY->applyNiceNumbers();
    axeY->setLabelFormat(QStringLiteral("%d"));
    graphique->addAxis(axeY, Qt::AlignLeft);
    serie->attachAxis(axeY);
    auto* vue = new QChartView(graphique, graphique_);
    vue->setObjectName(QStringLiteral("Graph10"));
    vue->setRenderHint(QPainter::Antialiasing);
    l->addWidget(vue);
    pile_->setCurrentWidget(graphique_);
}

void FrmStatsQt::Copie() {
    auto* donnees = new QMimeData;
    donnees->setText(Q(logique_.TexteCopie()));
    if (logique_.onglet >= kPremierGraphique) {
        if (auto* vue = graphique_->findChild<QChartView*>())
            donnees->setImageData(vue->grab().toImage());
    }
    QApplication::clipboard()->setMimeData(donnees);
}

// --- FrmAnniv -------------------------------------------------------------------

FrmAnnivQt::FrmAnnivQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique) {
    logique_.ouvreNavigateur = [](const std::string& fichier) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(CheminQt(fichier)));
    };
    lblMois_ = new QLabel(this);
    lblMois_->setAlignment(Qt::AlignCenter);
    QFont gras = lblMois_->font();
    gras.setBold(true);
    lblMois_->setFont(gras);
    precedent_ = new QPushButton(this);
    suivant_ = new QPushButton(this);
    cmdListe_ = new QPushButton(this);
    cmdListe_->setObjectName(QStringLiteral("CmdListe"));
    cmdDate_ = new QPushButton(this);
    cmdDate_->setObjectName(QStringLiteral("CmdDate"));
    calendrier_ = Grille(this, "GrdCalendrier");
    calendrier_->setSelectionBehavior(QAbstractItemView::SelectItems);
    calendrier_->setSelectionMode(QAbstractItemView::SingleSelection);
    calendrier_->setColumnCount(7);
    calendrier_->horizontalHeader()->hide();
    calendrier_->horizontalHeader()->setMinimumSectionSize(28);
    calendrier_->horizontalHeader()->setStretchLastSection(false);
    calendrier_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    calendrier_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    calendrier_->verticalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    lblJour_ = new QLabel(this);
    lblJour_->setObjectName(QStringLiteral("LblJour"));
    lblJour_->setFont(gras);
    static const char* const kNoms[4] = {"GrdNaissance", "GrdDeces", "GrdMariage", "GrdMot"};
    for (int i = 0; i < 4; ++i) {
        listes_[i] = Grille(this, kNoms[i]);
        titres_[i] = new QLabel(this);
        titres_[i]->setBuddy(listes_[i]);
    }

    auto* haut = new QHBoxLayout;
    haut->addWidget(precedent_);
    haut->addWidget(lblMois_, 1);
    haut->addWidget(suivant_);
    auto* gauche = new QVBoxLayout;
    gauche->addLayout(haut);
    gauche->addWidget(calendrier_, 1);
    auto* commandes = new QHBoxLayout;
    commandes->addWidget(cmdListe_);
    commandes->addWidget(cmdDate_);
    gauche->addLayout(commandes);
    auto* droite = new QGridLayout;
    droite->addWidget(lblJour_, 0, 0, 1, 2);
    for (int i = 0; i < 4; ++i) {
        droite->addWidget(titres_[i], 1 + (i / 2) * 2, i % 2);
        droite->addWidget(listes_[i], 2 + (i / 2) * 2, i % 2);
    }
    auto* l = new QHBoxLayout(this);
    l->addLayout(gauche, 3);
    l->addLayout(droite, 5);

    connect(precedent_, &QPushButton::clicked, this, [this] {
        logique_.MoisPrecedent();
        MontreMois();
    });
    connect(suivant_, &QPushButton::clicked, this, [this] {
        logique_.MoisSuivant();
        MontreMois();
    });
    connect(calendrier_, &QTableWidget::currentCellChanged, this, [this](int r, int col) {
        if (r < 0 || col < 0) return;
        const auto semaines = logique_.Semaines();
        if (r >= static_cast<int>(semaines.size())) return;
        const int j = semaines[static_cast<std::size_t>(r)][static_cast<std::size_t>(col)];
        if (j && logique_.Choisit(j)) MontreJour();
    });
    for (int i = 0; i < 3; ++i)
        connect(listes_[i], &QTableWidget::cellActivated, this, [this, i](int r, int) {
            const ListesJour& ls = logique_.Listes();
            const auto& v = i == 0 ? ls.naissances : i == 1 ? ls.deces : ls.mariages;
            if (r >= 0 && r < static_cast<int>(v.size())) logique_.Active(v[static_cast<std::size_t>(r)]);
        });
    connect(cmdListe_, &QPushButton::clicked, this, [this] {
        if (c_.logique.services().fenetres.Disponible("FrmNom"))
            c_.logique.services().fenetres.Ouvre("FrmNom");
    });
    connect(cmdDate_, &QPushButton::clicked, this, [this] {
        if (auto d = logique_.RapportCalendrier()) Apercu(c_.logique, std::move(*d));
    });
    Retraduit();
    setMinimumSize(940, 500);
    QTimer::singleShot(0, this, [this] { Charge(); });
}

void FrmAnnivQt::Retraduit() {
    setWindowTitle(M(953));
    precedent_->setText(M(msg_stats::MoisPrecedent));
    suivant_->setText(M(msg_stats::MoisSuivant));
    cmdListe_->setText(M(msg_stats::Liste));
    cmdDate_->setText(M(msg_stats::Date));
    static constexpr int kTitres[4] = {754, 755, 642, msg_stats::RubriquesDatees};
    for (int i = 0; i < 4; ++i) titres_[i]->setText(M(kTitres[i]));
    MontreMois();
}

void FrmAnnivQt::Charge() {
    logique_.Charge();
    MontreMois();
    // Opened from an entry of the year's recapitulation: the year goes
    // there first, and the calendar report will go there too.
    const std::string nom = A(objectName());
    logique_.destination = FrmAnniv::DestinationDe(nom);
    if (nom.find(':') != std::string::npos)
        if (auto d = logique_.Recapitulation()) Apercu(c_.logique, std::move(*d));
}

void FrmAnnivQt::MontreMois() {
    lblMois_->setText(Q(Message(730 + logique_.mois - 1)));
    const auto semaines = logique_.Semaines();
    const bool bloque = calendrier_->blockSignals(true);
    calendrier_->clearContents();
    calendrier_->setRowCount(static_cast<int>(semaines.size()));
    for (int r = 0; r < static_cast<int>(semaines.size()); ++r)
        for (int col = 0; col < 7; ++col) {
            const int j = semaines[static_cast<std::size_t>(r)][static_cast<std::size_t>(col)];
            if (!j) continue;
            const std::size_t n = logique_.NombreDuJour(j);
            auto* it = new QTableWidgetItem(n ? QStringLiteral("%1\n(%2)").arg(j).arg(n)
                                              : QString::number(j));
            it->setTextAlignment(Qt::AlignCenter);
            if (n) {
                QFont f = it->font();
                f.setBold(true);
                it->setFont(f);
            }
            calendrier_->setItem(r, col, it);
            if (j == logique_.jour) calendrier_->setCurrentCell(r, col);
        }
    calendrier_->blockSignals(bloque);
    MontreJour();
}

void FrmAnnivQt::MontreJour() {
    lblJour_->setText(Q(logique_.LibelleJour()));
    const ListesJour& l = logique_.Listes();
    const std::vector<LigneAnniv>* v[4] = {&l.naissances, &l.deces, &l.mariages, &l.mots};
    for (int i = 0; i < 4; ++i) {
        TableTexte t;
        if (i < 3)
            t.entetes = {Message(msg_stats::Nom), Message(msg_stats::Annee), Message(msg_stats::Lieu)};
        else
            t.entetes = {Message(861), Message(msg_stats::Nom), Message(msg_stats::Annee)};
        for (const LigneAnniv& x : *v[i])
            t.lignes.push_back(i < 3 ? std::vector<std::string>{x.nom, x.annee, x.lieu}
                                     : std::vector<std::string>{x.rubrique, x.nom, x.annee});
        Remplit(listes_[i], t);
    }
}

static EnregistrementFormulaire enrStats("FrmStats",
                                         [](ContexteQt& c) { return new FrmStatsQt(c); });
static EnregistrementFormulaire enrAnniv("FrmAnniv",
                                         [](ContexteQt& c) { return new FrmAnnivQt(c); });

} // namespace sylvane
