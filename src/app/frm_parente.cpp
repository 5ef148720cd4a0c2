#include "app/frm_parente.h"

#include "app/frm_impression.h"
#include "app/texte_qt.h"
#include "text/messages.h"
#include "ui/frm_listes.h"

#include <cmath>

#include <QBuffer>
#include <QDesktopServices>
#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSpinBox>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace sylvane {

namespace {

// Captions of these windows; the others are the numbered messages of the
// searches and the lists.
enum : int {
    kMsgAscendanceBranche = 4500,
    kMsgDescendanceBranche = 4501,
    kTitreRech = 4502,
    kTitreVisu = 4503,
    kTitreAsc = 4504,
    kSelection = 4505,
    kGenerations = 4506,
    kRechercher = 4507,
    kEcarter = 4508,
    kAscCom = 4509,
    kDescCom = 4510,
    kFiliation = 4511,
    kMultiple = 4512,
    kAfficher = 4513,
    kTriLieu = 4514,
    kCousinages = 4515,
    kDevelopper = 4516,
    kFiche = 4517,
    kRtf = 4518,
    kHtml = 4519,
    kImprimer = 4520,
    kGraphe = 4522,
    kPdf = 4523,
    kEcarterNoeud = 4524,
    kReduire = 4525,
    kAgrandir = 4526,
    kFiltrePdf = 4527,
    kColCouple = 4528,
    kColPersonnes = 4529,
    kColLieu = 4530,
    kComparaison = 4531,
    kVersAscendants = 4532,
    kVersDescendants = 4533,
    kMarqueAide = 4534,
    kOuvrirFiche = 23,
};

QPushButton* Bouton(QWidget* parent) { return new QPushButton(parent); }

// A grid of whole rows, read only, the last column stretched.
QTableWidget* Grille(QWidget* parent, int colonnes) {
    auto* g = new QTableWidget(0, colonnes, parent);
    g->setSelectionBehavior(QAbstractItemView::SelectRows);
    g->setSelectionMode(QAbstractItemView::SingleSelection);
    g->setEditTriggers(QAbstractItemView::NoEditTriggers);
    g->verticalHeader()->hide();
    g->horizontalHeader()->setStretchLastSection(true);
    g->setWordWrap(true);
    return g;
}

QTableWidgetItem* Cellule(const std::string& texte) { return new QTableWidgetItem(Q(texte)); }

QString Lignes(const std::vector<std::string>& v) {
    QStringList l;
    for (const std::string& s : v) l << Q(s);
    return l.join(QLatin1Char('\n'));
}

// The colours of the settings are kept as Windows writes them: blue, green, red.
QColor Couleur(std::int32_t bgr) {
    return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}

// A page just written, in the user's browser.
void OuvrePage(const std::string& page) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(CheminQt(page)));
}

// Opens a new graph window on what a search or a row found.
void OuvreGraphe(ContexteQt& c, const std::optional<DemandeGraphe>& d) {
    if (!d) return;
    TransmetGraphe(*d);
    c.logique.services().fenetres.OuvreNumero("FrmParenteVisu", 0);
}

} // namespace

// --- FrmRechAscendant ----------------------------------------------------------------

FrmRechAscendantQt::FrmRechAscendantQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique) {
    logique_.RecoitTransfert();
    lblSelection_ = new QLabel(this);
    grille_ = Grille(this, 3);
    lblSelection_->setBuddy(grille_);
    lblGenerations_ = new QLabel(this);
    generations_ = new QSpinBox(this);
    generations_->setRange(1, 254);
    generations_->setValue(logique_.generations);
    lblGenerations_->setBuddy(generations_);
    cmdRechercher_ = Bouton(this);
    cmdEcarter_ = Bouton(this);
    cmdAscCom_ = Bouton(this);
    cmdDescCom_ = Bouton(this);
    cmdFiliation_ = Bouton(this);
    cmdMultiple_ = Bouton(this);
    cmdSpecial_ = Bouton(this);

    auto* boutons = new QVBoxLayout;
    boutons->addWidget(cmdRechercher_);
    boutons->addWidget(cmdEcarter_);
    boutons->addSpacing(12);
    auto* gen = new QHBoxLayout;
    gen->addWidget(lblGenerations_);
    gen->addWidget(generations_);
    boutons->addLayout(gen);
    for (QPushButton* b : {cmdAscCom_, cmdDescCom_, cmdFiliation_, cmdMultiple_, cmdSpecial_})
        boutons->addWidget(b);
    boutons->addStretch(1);
    auto* gauche = new QVBoxLayout;
    gauche->addWidget(lblSelection_);
    gauche->addWidget(grille_, 1);
    auto* l = new QHBoxLayout(this);
    l->addLayout(gauche, 1);
    l->addLayout(boutons);

    connect(generations_, &QSpinBox::valueChanged, this,
            [this](int v) { logique_.generations = v; });
    connect(cmdRechercher_, &QPushButton::clicked, this, [this] {
        logique_.CmdRechercher();
        Montre();
    });
    connect(cmdEcarter_, &QPushButton::clicked, this, [this] {
        if (LigneCourante() < 0) return;
        logique_.CmdEcarter(static_cast<std::size_t>(LigneCourante()));
        Montre();
    });
    // A double click marks a row "*", a subject of the cousinages.
    connect(grille_, &QTableWidget::cellDoubleClicked, this, [this](int ligne, int) {
        logique_.BasculeMarque(static_cast<std::size_t>(ligne));
        Montre();
        grille_->selectRow(ligne);
    });
    connect(cmdAscCom_, &QPushButton::clicked, this, [this] { Graphe(logique_.CmdAscCom()); });
    connect(cmdDescCom_, &QPushButton::clicked, this, [this] { Graphe(logique_.CmdDescCom()); });
    connect(cmdFiliation_, &QPushButton::clicked, this,
            [this] { Graphe(logique_.CmdFiliation()); });
    connect(cmdMultiple_, &QPushButton::clicked, this, [this] {
        auto lignes = logique_.CmdAscComMult();
        if (!lignes) return;
        CousinagesTransmis() = {std::move(*lignes), logique_.Comparaison(), logique_.Sujets(),
                                logique_.Selection()};
        c_.logique.services().fenetres.OuvreNumero("FrmParenteAsc", 0);
    });
    connect(cmdSpecial_, &QPushButton::clicked, this, [this] { logique_.CmdSpecial(); });
    Retraduit();
    resize(720, 400);
}

void FrmRechAscendantQt::Graphe(const std::optional<DemandeGraphe>& d) { OuvreGraphe(c_, d); }

int FrmRechAscendantQt::LigneCourante() const {
    const int r = grille_->currentRow();
    return r >= 0 && r < grille_->rowCount() ? r : -1;
}

void FrmRechAscendantQt::Retraduit() {
    setWindowTitle(MT(kTitreRech));
    lblSelection_->setText(M(kSelection));
    lblGenerations_->setText(M(kGenerations));
    cmdRechercher_->setText(M(kRechercher));
    cmdEcarter_->setText(M(kEcarter));
    cmdAscCom_->setText(M(kAscCom));
    cmdDescCom_->setText(M(kDescCom));
    cmdFiliation_->setText(M(kFiliation));
    cmdMultiple_->setText(M(kMultiple));
    cmdSpecial_->setText(M(msg_parente::Speciaux));
    grille_->setHorizontalHeaderLabels({MT(msg_listes::ColNom), MT(msg_listes::ColDates),
                                        QStringLiteral("*")});
    grille_->setToolTip(MT(kMarqueAide));
    Montre();
}

void FrmRechAscendantQt::Montre() {
    const auto& g = logique_.Grille();
    const int courante = LigneCourante();
    grille_->setRowCount(static_cast<int>(g.size()));
    for (int i = 0; i < static_cast<int>(g.size()); ++i) {
        const auto& l = g[static_cast<std::size_t>(i)];
        grille_->setItem(i, 0, Cellule(l.nom));
        grille_->setItem(i, 1, Cellule(l.dates));
        grille_->setItem(i, 2, Cellule(l.marque ? "*" : ""));
    }
    grille_->resizeColumnToContents(0);
    grille_->resizeColumnToContents(1);
    if (!g.empty()) grille_->selectRow(std::clamp(courante, 0, static_cast<int>(g.size()) - 1));
    const bool base = c_.logique.base() != nullptr;
    cmdRechercher_->setEnabled(base);
    cmdEcarter_->setEnabled(!g.empty());
    for (QPushButton* b : {cmdAscCom_, cmdDescCom_, cmdFiliation_, cmdMultiple_, cmdSpecial_})
        b->setEnabled(base && !g.empty());
}

void FrmRechAscendantQt::PersonneChangee() {
    // A search that hands its persons to this window reopens it.
    if (!ParenteTransmise().liste.empty() && logique_.RecoitTransfert()) Montre();
}

void FrmRechAscendantQt::RecoitGlisser(char genre, std::uint32_t numero) {
    if (genre == 'I' && logique_.Ajoute(numero)) Montre();
}

void FrmRechAscendantQt::keyPressEvent(QKeyEvent* e) {
    // F12 writes the selection as the script list of the cousins' pages.
    if (e->key() == Qt::Key_F12) {
        logique_.EcritListeJs(CheminInterne(QDir::currentPath()) + "/");
        return;
    }
    FormulaireQt::keyPressEvent(e);
}

// --- The graph's canvas ---------------------------------------------------------------

ToileParente::ToileParente(ContexteQt& c, FrmParenteVisu& f, QWidget* parent)
    : QWidget(parent), c_(c), f_(f) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
}

double ToileParente::Echelle() const { return zoom * logicalDpiX() / 1440.0; }

void ToileParente::Ajuste() {
    std::int64_t l = 0, h = 0;
    const GrapheParente* g = f_.Graphe();
    places_ = g && g->Dessinable() ? g->Places(&l, &h) : std::vector<PlaceNoeud>{};
    const double e = Echelle();
    const int marge = 20;
    resize(static_cast<int>(static_cast<double>(l) * e) + 2 * marge,
           static_cast<int>(static_cast<double>(h) * e) + 2 * marge);
    update();
}

QRect ToileParente::Boite(std::size_t noeud) const {
    if (noeud == 0 || noeud > places_.size()) return {};
    const double e = Echelle();
    const PlaceNoeud& p = places_[noeud - 1];
    const double l = GrapheParente::kLargeurBoite * e, h = GrapheParente::kHauteurBoite * e;
    return QRectF(20 + static_cast<double>(p.x) * e - l / 2, 20 + static_cast<double>(p.y) * e - h / 2, l, h)
        .toRect();
}

std::size_t ToileParente::NoeudA(QPoint p) const {
    for (std::size_t i = 1; i <= places_.size(); ++i)
        if (Boite(i).contains(p)) return i;
    return 0;
}

void ToileParente::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), Qt::white);
    GrapheParente* g = f_.Graphe();
    Base* b = c_.logique.base();
    if (!g || !b || places_.size() != g->NbNoeuds()) return;
    p.setRenderHint(QPainter::Antialiasing);
    const auto& noeuds = g->Noeuds();
    // Lines first: from each box's top to its parents' bottoms, then the
    // spouses joined side to side with a dashed line.
    p.setPen(QPen(Qt::darkGray, 1.2));
    for (std::size_t i = 1; i <= noeuds.size(); ++i) {
        const QRect enfant = Boite(i);
        for (std::size_t parent : {noeuds[i - 1].pere, noeuds[i - 1].mere})
            if (parent) {
                const QRect pr = Boite(parent);
                const int milieu = (pr.bottom() + enfant.top()) / 2;
                p.drawPolyline(QPolygon({QPoint(enfant.center().x(), enfant.top()),
                                         QPoint(enfant.center().x(), milieu),
                                         QPoint(pr.center().x(), milieu),
                                         QPoint(pr.center().x(), pr.bottom())}));
            }
    }
    p.setPen(QPen(QColor(0xA0, 0x30, 0x30), 1.5, Qt::DashLine));
    for (const auto& [x, y] : g->LiensMariage()) {
        const QRect a = Boite(x), c = Boite(y);
        const QRect& gauche = a.center().x() < c.center().x() ? a : c;
        const QRect& droite = a.center().x() < c.center().x() ? c : a;
        p.drawLine(gauche.right(), gauche.center().y(), droite.left(), droite.center().y());
    }
    const Parametres& pa = c_.logique.app().parametres();
    QFont nom = font(), dates = font();
    nom.setBold(true);
    nom.setPointSizeF(std::max(4.0, 8.5 * zoom));
    dates.setPointSizeF(std::max(4.0, 7.5 * zoom));
    for (std::size_t i = 1; i <= noeuds.size(); ++i) {
        const QRect r = Boite(i);
        const std::uint32_t personne = noeuds[i - 1].personne;
        const std::string sx = b->LitSexe(personne);
        const std::int32_t bgr = sx == "H"   ? pa.couleurCadreHomme
                                 : sx == "F" ? pa.couleurCadreFemme
                                             : pa.couleurCadreIndetermine;
        QColor fond = Couleur(bgr);
        if (pa.degrade) {
            QLinearGradient d(r.topLeft(), r.bottomLeft());
            d.setColorAt(0, fond.lighter(160));
            d.setColorAt(1, fond);
            p.setBrush(d);
        } else {
            p.setBrush(fond);
        }
        const bool enCours = personne == c_.logique.PersonneEnCours();
        p.setPen(QPen(enCours ? Qt::red : Qt::black, enCours ? 2.0 : 1.0));
        p.drawRoundedRect(r, 4, 4);
        if (i == courant && hasFocus()) {
            p.setBrush(Qt::NoBrush);
            p.setPen(QPen(Qt::blue, 1.0, Qt::DotLine));
            p.drawRoundedRect(r.adjusted(-3, -3, 3, 3), 5, 5);
        }
        const std::string texte = TexteNoeudParente(*b, personne);
        const auto diese = texte.find('#');
        const QRect dedans = r.adjusted(4, 2, -4, -2);
        p.setPen(Qt::black);
        p.setFont(nom);
        const QFontMetrics mn(nom);
        const QString n = mn.elidedText(Q(texte.substr(0, diese)), Qt::ElideRight, dedans.width());
        if (diese == std::string::npos) {
            p.drawText(dedans, Qt::AlignCenter, n);
            continue;
        }
        p.drawText(dedans.adjusted(0, 0, 0, -dedans.height() / 2), Qt::AlignHCenter | Qt::AlignBottom, n);
        p.setFont(dates);
        const QString d =
            QFontMetrics(dates).elidedText(Q(texte.substr(diese + 1)), Qt::ElideRight, dedans.width());
        p.drawText(dedans.adjusted(0, dedans.height() / 2, 0, 0), Qt::AlignHCenter | Qt::AlignTop, d);
    }
}

void ToileParente::mousePressEvent(QMouseEvent* e) {
    if (const std::size_t n = NoeudA(e->position().toPoint())) {
        courant = n;
        update();
        Q_EMIT Clic(n, e->globalPosition().toPoint());
    }
}

void ToileParente::keyPressEvent(QKeyEvent* e) {
    const std::size_t n = places_.size();
    if (n == 0) return QWidget::keyPressEvent(e);
    // The boxes in reading order: by row, then from left to right.
    std::vector<std::size_t> ordre(n);
    for (std::size_t i = 0; i < n; ++i) ordre[i] = i + 1;
    std::sort(ordre.begin(), ordre.end(), [this](std::size_t a, std::size_t b) {
        const PlaceNoeud &x = places_[a - 1], &y = places_[b - 1];
        return x.y != y.y ? x.y < y.y : x.x < y.x;
    });
    auto pos = std::find(ordre.begin(), ordre.end(), courant);
    const std::size_t k = pos == ordre.end() ? 0 : static_cast<std::size_t>(pos - ordre.begin());
    switch (e->key()) {
    case Qt::Key_Right:
    case Qt::Key_Down:
        courant = ordre[std::min(k + (pos == ordre.end() ? 0 : 1), n - 1)];
        break;
    case Qt::Key_Left:
    case Qt::Key_Up:
        courant = ordre[k == 0 ? 0 : k - 1];
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Menu:
    case Qt::Key_Space:
        if (courant) Q_EMIT Clic(courant, mapToGlobal(Boite(courant).center()));
        return;
    default:
        return QWidget::keyPressEvent(e);
    }
    update();
    if (auto* defile = qobject_cast<QScrollArea*>(parentWidget() ? parentWidget()->parentWidget() : nullptr))
        defile->ensureVisible(Boite(courant).center().x(), Boite(courant).center().y(),
                              Boite(courant).width(), Boite(courant).height());
}


// --- FrmParenteVisu ------------------------------------------------------------------

FrmParenteVisuQt::FrmParenteVisuQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(std::make_unique<FrmParenteVisu>(c.logique, DemandeGraphe{})) {
    reduire_ = Bouton(this);
    agrandir_ = Bouton(this);
    graphe_ = Bouton(this);
    imprimer_ = Bouton(this);
    pdf_ = Bouton(this);
    image_ = Bouton(this);
    rtf_ = Bouton(this);
    html_ = Bouton(this);
    // Ctrl+- and Ctrl++ beside the buttons' own letters.
    connect(new QShortcut(QKeySequence::ZoomOut, this), &QShortcut::activated, reduire_, &QPushButton::click);
    connect(new QShortcut(QKeySequence::ZoomIn, this), &QShortcut::activated, agrandir_, &QPushButton::click);
    refus_ = new QLabel(this);
    refus_->setWordWrap(true);
    refus_->hide();
    defile_ = new QScrollArea(this);
    defile_->setBackgroundRole(QPalette::Dark);
    defile_->setAlignment(Qt::AlignCenter);
    auto* haut = new QHBoxLayout;
    for (QPushButton* b : {reduire_, agrandir_, graphe_}) haut->addWidget(b);
    haut->addStretch(1);
    for (QPushButton* b : {imprimer_, pdf_, image_, rtf_, html_})
        haut->addWidget(b);
    auto* l = new QVBoxLayout(this);
    l->addLayout(haut);
    l->addWidget(refus_);
    l->addWidget(defile_, 1);

    auto zoom = [this](double facteur) {
        if (!toile_) return;
        toile_->zoom = std::clamp(toile_->zoom * facteur, 0.25, 4.0);
        toile_->Ajuste();
    };
    connect(reduire_, &QPushButton::clicked, this, [zoom] { zoom(1 / 1.25); });
    connect(agrandir_, &QPushButton::clicked, this, [zoom] { zoom(1.25); });
    connect(graphe_, &QPushButton::clicked, this, [this] { Montre(); });
    connect(imprimer_, &QPushButton::clicked, this, [this] { Imprime(); });
    connect(pdf_, &QPushButton::clicked, this, [this] {
        Base* b = c_.logique.base();
        const auto chemin = c_.logique.services().fichiers.Enregistrer(
            kPdf, Message(kFiltrePdf),
            c_.logique.app().parametres().DossierTravail() + (b ? b->Chemins().titre : "") + ".pdf");
        if (chemin) SauvePdf(*chemin);
    });
    connect(image_, &QPushButton::clicked, this, [this] {
        Base* b = c_.logique.base();
        const auto chemin = c_.logique.services().fichiers.Enregistrer(
            msg_parente::Image, "Format BMP (*.bmp) |*.bmp|",
            c_.logique.app().parametres().DossierTravail() + (b ? b->Chemins().titre : "") +
                ".bmp");
        if (chemin) SauveImage(*chemin);
    });
    connect(rtf_, &QPushButton::clicked, this, [this] { logique_->EcritRtf(); });
    connect(html_, &QPushButton::clicked, this, [this] { logique_->EcritHtml(); });
    Retraduit();
    resize(900, 600);
    // The graph is built once the window stands, under the progress panel.
    if (auto d = DemandeTransmise(c.logique))
        QTimer::singleShot(0, this, [this, d = std::move(*d)] { Charge(d); });
}

void FrmParenteVisuQt::Charge(DemandeGraphe d) {
    logique_ = std::make_unique<FrmParenteVisu>(c_.logique, std::move(d));
    delete defile_->takeWidget();
    toile_ = nullptr;
    logique_->Charge();
    toile_ = new ToileParente(c_, *logique_, defile_);
    defile_->setWidget(toile_);
    connect(toile_, &ToileParente::Clic, this, [this](std::size_t n, QPoint ou) {
        if (QMenu* m = Menu(n)) m->popup(ou);
    });
    Retraduit();
}

void FrmParenteVisuQt::Retraduit() {
    const std::string titre = logique_->Titre();
    setWindowTitle(titre.empty() ? MT(kTitreVisu) : MT(kTitreVisu) + QStringLiteral(" - ") + Q(titre));
    reduire_->setText(M(kReduire));
    agrandir_->setText(M(kAgrandir));
    graphe_->setText(M(kGraphe));
    imprimer_->setText(M(kImprimer));
    pdf_->setText(M(kPdf));
    image_->setText(M(msg_parente::Image));
    rtf_->setText(M(kRtf));
    html_->setText(M(kHtml));
    Montre();
}

void FrmParenteVisuQt::PersonneChangee() {
    // A list that hands a new graph to this window reopens it.
    if (!ParenteTransmise().liste.empty()) {
        if (auto d = DemandeTransmise(c_.logique)) {
            Charge(std::move(*d));
            return;
        }
    }
    if (toile_) toile_->update();
}

void FrmParenteVisuQt::Montre() {
    const auto refus = logique_->Refus();
    refus_->setVisible(refus.has_value());
    if (refus) refus_->setText(Q(*refus));
    const bool dessin = logique_->Graphe() && !refus;
    for (QPushButton* b : {reduire_, agrandir_, graphe_, imprimer_, pdf_, image_})
        b->setEnabled(dessin);
    // The reports are text: a graph too big to draw still lists.
    for (QPushButton* b : {rtf_, html_})
        b->setEnabled(logique_->Graphe() != nullptr);
    if (toile_) toile_->Ajuste();
}

QMenu* FrmParenteVisuQt::Menu(std::size_t noeud) {
    GrapheParente* g = logique_->Graphe();
    if (!g || noeud == 0 || noeud > g->NbNoeuds()) return nullptr;
    delete menu_;
    menu_ = new QMenu(this);
    const std::uint32_t personne = g->Noeuds()[noeud - 1].personne;
    // The name heads the menu and makes its person the person in course.
    if (Base* b = c_.logique.base()) {
        QAction* nom = menu_->addAction(Q(b->NomComplet(personne)), this,
                                        [this, personne] { c_.logique.Aller(personne); });
        QFont gras = nom->font();
        gras.setBold(true);
        nom->setFont(gras);
        menu_->addSeparator();
    }
    menu_->addAction(MT(kOuvrirFiche), this, [this, personne] { FicheDe(c_.logique, personne); });
    menu_->addAction(MT(kEcarterNoeud), this, [this, noeud] {
        logique_->Ecarte(noeud);
        Montre();
    });
    for (const FrmParenteVisu::EntreeMenu& e : logique_->MenuProches(noeud)) {
        if (e.personne == 0) {
            menu_->addSection(Q(e.texte));
            continue;
        }
        const std::uint32_t p = e.personne;
        menu_->addAction(Q(e.texte), this, [this, p] {
            logique_->Ajoute(p);
            Montre();
        });
    }
    return menu_;
}

bool FrmParenteVisuQt::SauvePdf(const std::string& chemin) {
    if (!logique_->Graphe() || logique_->Refus()) return false;
    std::string gabarit;
    try {
        Papier papier;
        gabarit = logique_->EcritGabarit(papier);
        const bool ok = EcritPdf(systemeReel(), gabarit, chemin, logique_->Options(papier),
                                 metrique_) == FinPages::Termine;
        systemeReel().supprimer(gabarit);
        return ok;
    } catch (const std::exception& e) {
        if (!gabarit.empty()) systemeReel().supprimer(gabarit);
        c_.logique.services().boites.Texte(e.what());
        return false;
    }
}

bool FrmParenteVisuQt::SauveImage(const std::string& chemin) {
    if (!toile_ || !logique_->Graphe() || logique_->Refus()) return false;
    // The canvas at a zoom that keeps the picture within its bounds.
    const double zoom = toile_->zoom;
    const QSize taille = toile_->size();
    const double w = std::max(taille.width(), 1), h = std::max(taille.height(), 1);
    const double reduit =
        std::min({1.0, kCoteImage / std::max(w, h), std::sqrt(kPixelsImage / (w * h))});
    if (reduit < 1.0) {
        toile_->zoom = zoom * reduit;
        toile_->Ajuste();
    }
    QImage im(toile_->size(), QImage::Format_RGB32);
    bool ok = !im.isNull();
    if (ok) {
        im.fill(Qt::white);
        toile_->render(&im);
    }
    if (reduit < 1.0) {
        toile_->zoom = zoom;
        toile_->Ajuste();
    }
    QByteArray octets;
    QBuffer tampon(&octets);
    tampon.open(QIODevice::WriteOnly);
    ok = ok && im.save(&tampon, "BMP");
    try {
        if (!ok) throw ErreurES(chemin, "image impossible");
        EcritureAtomique f(c_.logique.app().fs(), chemin);
        f.Sortie().ecrire(
            0, std::string_view(octets.constData(), static_cast<std::size_t>(octets.size())));
        f.Valide();
    } catch (const std::exception& e) {
        c_.logique.services().boites.Texte(e.what());
        return false;
    }
    return true;
}

void FrmParenteVisuQt::Imprime() {
    if (!logique_->Graphe() || logique_->Refus()) return;
    QPrinter imprimante(QPrinter::HighResolution);
    QPrintDialog d(&imprimante, this);
    if (d.exec() != QDialog::Accepted) return;
    std::string gabarit;
    try {
        Papier papier;
        gabarit = logique_->EcritGabarit(papier);
        imprimante.setFullPage(true);
        QPainter p(&imprimante);
        SurfaceQt s(p, metrique_, imprimante.resolution() / 1440.0);
        s.Pagine(imprimante);
        ImprimePages(systemeReel(), gabarit, s, logique_->Options(papier));
    } catch (const std::exception& e) {
        c_.logique.services().boites.Texte(e.what());
    }
    if (!gabarit.empty()) systemeReel().supprimer(gabarit);
}

// --- FrmParenteAsc --------------------------------------------------------------------

FrmParenteAscQt::FrmParenteAscQt(ContexteQt& c, QWidget* parent)
    : FormulaireQt(parent), c_(c), logique_(c.logique, std::exchange(CousinagesTransmis(), {})) {
    comparaison_ = new QLabel(this);
    comparaison_->setWordWrap(true);
    grille_ = Grille(this, 4);
    nbCous_ = new QLabel(this);
    cmdAfficher_ = Bouton(this);
    cmdEcarter_ = Bouton(this);
    cmdTriLieu_ = Bouton(this);
    cmdHtml_ = Bouton(this);
    cmdTableaux_ = Bouton(this);
    logique_.ouvreNavigateur = OuvrePage;
    auto* boutons = new QVBoxLayout;
    for (QPushButton* b : {cmdAfficher_, cmdEcarter_, cmdTriLieu_, cmdHtml_, cmdTableaux_})
        boutons->addWidget(b);
    boutons->addStretch(1);
    auto* gauche = new QVBoxLayout;
    gauche->addWidget(comparaison_);
    gauche->addWidget(grille_, 1);
    gauche->addWidget(nbCous_);
    auto* l = new QHBoxLayout(this);
    l->addLayout(gauche, 1);
    l->addLayout(boutons);
    auto ligne = [this] { return static_cast<std::size_t>(std::max(grille_->currentRow(), 0)); };
    connect(cmdAfficher_, &QPushButton::clicked, this,
            [this, ligne] { OuvreGraphe(c_, logique_.CmdAfficher(ligne())); });
    connect(grille_, &QTableWidget::cellDoubleClicked, this,
            [this](int r, int) { OuvreGraphe(c_, logique_.CmdAfficher(static_cast<std::size_t>(r))); });
    connect(cmdEcarter_, &QPushButton::clicked, this, [this, ligne] {
        logique_.CmdEcarter(ligne());
        Montre();
    });
    connect(cmdTriLieu_, &QPushButton::clicked, this, [this] {
        logique_.CmdTriLieu();
        Montre();
    });
    connect(cmdHtml_, &QPushButton::clicked, this, [this] { logique_.CmdHtml(); });
    connect(cmdTableaux_, &QPushButton::clicked, this, [this] { logique_.CmdCousinage(); });
    Retraduit();
    resize(860, 480);
}

void FrmParenteAscQt::Retraduit() {
    setWindowTitle(MT(kTitreAsc));
    grille_->setHorizontalHeaderLabels(
        {MT(kColCouple), MT(666), MT(kColPersonnes), MT(kColLieu)});
    cmdAfficher_->setText(M(kAfficher));
    cmdEcarter_->setText(M(kEcarter));
    cmdTriLieu_->setText(M(kTriLieu));
    cmdHtml_->setText(M(kHtml));
    cmdTableaux_->setText(M(msg_parente::Tableaux));
    QStringList noms;
    if (Base* b = c_.logique.base())
        for (const QString& n : Q(logique_.Comparaison()).split(QLatin1Char('/'), Qt::SkipEmptyParts))
            noms << Q(b->NomComplet(n.toUInt()));
    comparaison_->setText(MT(kComparaison) + noms.join(QStringLiteral(" / ")));
    Montre();
}

void FrmParenteAscQt::Montre() {
    const auto& lignes = logique_.Lignes();
    const int courante = grille_->currentRow();
    grille_->setRowCount(static_cast<int>(lignes.size()));
    for (int i = 0; i < static_cast<int>(lignes.size()); ++i) {
        const LigneCousinage& l = lignes[static_cast<std::size_t>(i)];
        grille_->setItem(i, 0, new QTableWidgetItem(Lignes(l.couple)));
        grille_->setItem(i, 1, new QTableWidgetItem(Lignes(l.enfants)));
        auto* nombre = new QTableWidgetItem(QString::number(l.nombre));
        nombre->setTextAlignment(Qt::AlignCenter);
        grille_->setItem(i, 2, nombre);
        grille_->setItem(i, 3, Cellule(l.lieu));
    }
    grille_->resizeColumnsToContents();
    grille_->resizeRowsToContents();
    if (!lignes.empty()) grille_->selectRow(std::clamp(courante, 0, static_cast<int>(lignes.size()) - 1));
    nbCous_->setText(QString::number(lignes.size()) + MT(kCousinages));
    for (QPushButton* b : {cmdAfficher_, cmdEcarter_, cmdHtml_, cmdTableaux_})
        b->setEnabled(!lignes.empty());
}

// --- FrmBrancheAsc, FrmBrancheDesc -------------------------------------------------------

namespace {
constexpr int kRoleNoeud = Qt::UserRole + 1;
// The children of a node not opened yet: a placeholder that lets it open.
const char* const kAttente = "(....)";
} // namespace

FrmBrancheQt::FrmBrancheQt(ContexteQt& c, bool descendante, QWidget* parent)
    : FormulaireQt(parent), c_(c), descendante_(descendante), logique_(c.logique, descendante) {
    arbre_ = new QTreeWidget(this);
    arbre_->setHeaderHidden(true);
    arbre_->setUniformRowHeights(true);
    lblNiveaux_ = new QLabel(this);
    niveaux_ = new QSpinBox(this);
    niveaux_->setRange(1, 30);
    niveaux_->setValue(3);
    lblNiveaux_->setBuddy(niveaux_);
    cmdDevelopper_ = Bouton(this);
    cmdEcarter_ = Bouton(this);
    cmdMaj_ = Bouton(this);
    cmdAutre_ = Bouton(this);
    cmdImprimer_ = Bouton(this);
    cmdRtf_ = Bouton(this);
    cmdHtml_ = Bouton(this);
    auto* boutons = new QVBoxLayout;
    auto* niv = new QHBoxLayout;
    niv->addWidget(lblNiveaux_);
    niv->addWidget(niveaux_);
    boutons->addLayout(niv);
    for (QPushButton* b : {cmdDevelopper_, cmdEcarter_, cmdMaj_, cmdAutre_}) boutons->addWidget(b);
    boutons->addSpacing(12);
    boutons->addWidget(cmdImprimer_);
    boutons->addWidget(cmdRtf_);
    boutons->addWidget(cmdHtml_);
    boutons->addStretch(1);
    auto* l = new QHBoxLayout(this);
    l->addWidget(arbre_, 1);
    l->addLayout(boutons);

    // A node's children are read from the base the first time it opens.
    connect(arbre_, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* item) {
        Branche* b = logique_.Outline();
        if (!b) return;
        const auto n = item->data(0, kRoleNoeud).toULongLong();
        const bool charge = b->Noeud(n).charge;
        b->Ouvre(n);
        if (!charge) AjouteEnfants(item, n);
    });
    connect(arbre_, &QTreeWidget::itemCollapsed, this, [this](QTreeWidgetItem* item) {
        if (Branche* b = logique_.Outline()) b->Ferme(item->data(0, kRoleNoeud).toULongLong());
    });
    connect(cmdDevelopper_, &QPushButton::clicked, this, [this] {
        const std::size_t n = NoeudCourant();
        if (n == std::string::npos) return;
        logique_.Developpe(n, niveaux_->value());
        Remplit();
    });
    connect(cmdEcarter_, &QPushButton::clicked, this, [this] {
        const std::size_t n = NoeudCourant();
        if (n == std::string::npos || n == 0) return;
        logique_.Ecarte(n);
        Remplit();
    });
    auto personne = [this]() -> std::uint32_t {
        const std::size_t n = NoeudCourant();
        return n == std::string::npos ? 0 : logique_.Outline()->Noeud(n).personne;
    };
    connect(cmdMaj_, &QPushButton::clicked, this, [this, personne] { FicheDe(c_.logique, personne()); });
    // The other outline, on the selected person.
    connect(cmdAutre_, &QPushButton::clicked, this, [this, personne] {
        const std::uint32_t p = personne();
        if (!p || c_.logique.Occupe()) return;
        c_.logique.Aller(p);
        c_.logique.services().fenetres.Ouvre(descendante_ ? "FrmBrancheAsc" : "FrmBrancheDesc");
    });
    connect(arbre_, &QTreeWidget::itemActivated, this, [this, personne] {
        if (const std::uint32_t p = personne()) c_.logique.Aller(p);
    });
    logique_.ouvreNavigateur = OuvrePage;
    connect(cmdImprimer_, &QPushButton::clicked, this, [this] { Imprime(); });
    connect(cmdRtf_, &QPushButton::clicked, this, [this] { logique_.EcritRtf(); });
    connect(cmdHtml_, &QPushButton::clicked, this, [this] { logique_.EcritHtml(); });
    Retraduit();
    Remplit();
    resize(700, 520);
}

void FrmBrancheQt::Retraduit() {
    const std::string titre = logique_.Titre();
    setWindowTitle(titre.empty() ? MT(descendante_ ? kMsgDescendanceBranche : kMsgAscendanceBranche)
                                       .remove(QStringLiteral("&1"))
                                       .trimmed()
                                 : Q(titre));
    lblNiveaux_->setText(M(kGenerations));
    cmdDevelopper_->setText(M(kDevelopper));
    cmdEcarter_->setText(M(kEcarter));
    cmdMaj_->setText(M(kFiche));
    cmdAutre_->setText(M(descendante_ ? kVersAscendants : kVersDescendants));
    cmdImprimer_->setText(M(kImprimer));
    cmdRtf_->setText(M(kRtf));
    cmdHtml_->setText(M(kHtml));
}

void FrmBrancheQt::Imprime() {
    auto d = logique_.Impression();
    if (!d || c_.logique.Occupe()) return;
    // The preview, unless the print settings go straight to the printer.
    if (ReglagesCourants().apercu) {
        ApercuTransmis() = std::move(*d);
        c_.logique.services().fenetres.Ouvre("FrmPrevisualisation");
        return;
    }
    QPrinter imprimante(QPrinter::HighResolution);
    if (ChoisitImprimante(imprimante, this)) ImprimeDocument(imprimante, metrique_, d->dessine);
}

std::size_t FrmBrancheQt::NoeudCourant() {
    const QTreeWidgetItem* i = arbre_->currentItem();
    if (!i || !logique_.Outline() || i->data(0, kRoleNoeud).isNull()) return std::string::npos;
    return i->data(0, kRoleNoeud).toULongLong();
}

QTreeWidgetItem* FrmBrancheQt::Element(std::size_t noeud) {
    Branche* b = logique_.Outline();
    const NoeudBranche& n = b->Noeud(noeud);
    auto* item = new QTreeWidgetItem({Q(n.texte)});
    item->setData(0, kRoleNoeud, QVariant::fromValue<qulonglong>(noeud));
    if (n.personne == 0) {
        QFont f = item->font(0);
        f.setItalic(true);
        item->setFont(0, f);
    }
    if (n.charge)
        AjouteEnfants(item, noeud);
    else if (b->AEnfants(noeud))
        item->addChild(new QTreeWidgetItem({QString::fromLatin1(kAttente)}));
    return item;
}

void FrmBrancheQt::AjouteEnfants(QTreeWidgetItem* item, std::size_t noeud) {
    qDeleteAll(item->takeChildren());
    for (std::size_t e : logique_.Outline()->Noeud(noeud).enfants)
        if (!logique_.Outline()->Noeud(e).ecarte) item->addChild(Element(e));
}

void FrmBrancheQt::Remplit() {
    arbre_->clear();
    Branche* b = logique_.Outline();
    for (QPushButton* p :
         {cmdDevelopper_, cmdEcarter_, cmdMaj_, cmdAutre_, cmdImprimer_, cmdRtf_, cmdHtml_})
        p->setEnabled(b != nullptr);
    if (!b) return;
    QTreeWidgetItem* racine = Element(0);
    arbre_->addTopLevelItem(racine);
    // The nodes the outline holds open are shown open.
    std::vector<QTreeWidgetItem*> pile{racine};
    const QSignalBlocker bloque(arbre_);
    while (!pile.empty()) {
        QTreeWidgetItem* i = pile.back();
        pile.pop_back();
        const QVariant v = i->data(0, kRoleNoeud);
        if (v.isNull()) continue;
        if (b->Noeud(v.toULongLong()).ouvert) i->setExpanded(true);
        for (int k = 0; k < i->childCount(); ++k) pile.push_back(i->child(k));
    }
    arbre_->setCurrentItem(racine);
}

static EnregistrementFormulaire enrRech("FrmRechAscendant",
                                        [](ContexteQt& c) { return new FrmRechAscendantQt(c); });
static EnregistrementFormulaire enrVisu("FrmParenteVisu",
                                        [](ContexteQt& c) { return new FrmParenteVisuQt(c); });
static EnregistrementFormulaire enrAsc("FrmParenteAsc",
                                       [](ContexteQt& c) { return new FrmParenteAscQt(c); });
static EnregistrementFormulaire enrBrAsc("FrmBrancheAsc",
                                         [](ContexteQt& c) { return new FrmBrancheQt(c, false); });
static EnregistrementFormulaire enrBrDesc("FrmBrancheDesc",
                                          [](ContexteQt& c) { return new FrmBrancheQt(c, true); });

} // namespace sylvane
