#include "app/frm_debut.h"

#include "app/fenetre_principale.h"
#include "app/texte_qt.h"
#include "store/base.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QToolTip>
#include <QVBoxLayout>

#include <array>
#include <cmath>

namespace sylvane {

namespace {

QColor Qc(Couleur c) { return QColor(c.r, c.g, c.b); }

// A colour moved towards another by t (0 keeps it, 1 gives the other).
QColor Mele(const QColor& a, const QColor& b, double t) {
    auto m = [t](int x, int y) { return static_cast<int>(std::lround(x + (y - x) * t)); };
    return QColor(m(a.red(), b.red()), m(a.green(), b.green()), m(a.blue(), b.blue()));
}

// Lines land on whole device pixels: a line of odd width in device pixels
// on a pixel's middle, of even width on its edge.
struct Grille {
    double ratio;
    double largeurDev;
    double Cale(double v) const {
        const double dv = v * ratio;
        const bool impaire = static_cast<long>(std::lround(largeurDev)) % 2 != 0;
        return (impaire ? std::floor(dv) + 0.5 : std::round(dv)) / ratio;
    }
    double Largeur() const { return largeurDev / ratio; }
};

Grille GrilleDe(double largeur, double ratio) {
    return {ratio, std::max(1.0, std::round(largeur * ratio))};
}

QRectF Cale(const Rect& r, const Grille& g) {
    const double x = g.Cale(r.x), y = g.Cale(r.y);
    return QRectF(x, y, g.Cale(r.droite()) - x, g.Cale(r.bas()) - y);
}

const QColor kEncre(70, 74, 84);
const QColor kEnCours(24, 48, 120);
const QColor kFocus(0, 110, 210);

} // namespace

StyleFamille StyleDe(const Parametres& p, int niveau, double echelle) {
    const int i = std::clamp(niveau, 1, 4) - 1;
    StyleFamille s;
    s.echelle = echelle > 0 ? echelle : 1.0;
    s.police = QFont(Q(p.nomPolice[i]));
    s.police.setPointSizeF(std::max(4, p.taillePolice[i]) * s.echelle);
    s.police.setStyleStrategy(QFont::PreferAntialias);
    s.policeNom = s.police;
    s.policeNom.setBold(true);
    return s;
}

double HauteurLigne(const Parametres& p, int niveau) {
    return QFontMetricsF(StyleDe(p, niveau, 1.0).policeNom).lineSpacing();
}

void PeintFamille(QPainter& g, const DispositionFamille& d, const StyleFamille& s,
                  const QRectF& zone, int focus, double ratio) {
    g.setRenderHint(QPainter::Antialiasing, true);
    g.setRenderHint(QPainter::TextAntialiasing, true);
    const double e = s.echelle;

    // The background, a light tint of the settings' colour.
    const QColor blanc(255, 255, 255);
    const QColor fond = Mele(Qc(d.fond), blanc, 0.9);
    if (d.degrade) {
        QLinearGradient grad(0, 0, 0, std::max(d.hauteur, zone.bottom()));
        grad.setColorAt(0, fond);
        grad.setColorAt(1, blanc);
        g.fillRect(zone, grad);
    } else {
        g.fillRect(zone, fond);
    }

    // Connectors under the boxes.
    const Grille trait = GrilleDe(1.2 * e, ratio);
    QPen plume(kEncre, trait.Largeur());
    plume.setCapStyle(Qt::FlatCap);
    plume.setJoinStyle(Qt::MiterJoin);
    g.setPen(plume);
    g.setBrush(Qt::NoBrush);
    for (const Trait& t : d.traits) {
        QPolygonF ligne;
        for (const Point& p : t.points) ligne << QPointF(trait.Cale(p.x), trait.Cale(p.y));
        if (!ligne.boundingRect().adjusted(-2, -2, 2, 2).intersects(zone)) continue;
        g.drawPolyline(ligne);
    }

    // Boxes.
    const Grille bord = GrilleDe(1.0 * e, ratio);
    const Grille epais = GrilleDe(3.0 * e, ratio);
    const double rayon = 5 * e;
    const double marge = 5 * e;
    for (std::size_t i = 0; i < d.cases.size(); ++i) {
        const CaseFamille& c = d.cases[i];
        QRectF r = Cale(c.r, c.enCours ? epais : bord);
        if (!r.adjusted(-8 * e, -8 * e, 8 * e, 8 * e).intersects(zone)) continue;
        const QColor cadre = Qc(c.cadre);
        if (c.enCours) {
            // A soft halo and a thick dark frame: the current person.
            g.setPen(QPen(QColor(kEnCours.red(), kEnCours.green(), kEnCours.blue(), 50), 8 * e));
            g.setBrush(Qt::NoBrush);
            g.drawRoundedRect(r, rayon, rayon);
        }
        QPen p(c.enCours ? kEnCours : Mele(cadre, QColor(0, 0, 0), 0.45),
               (c.enCours ? epais : bord).Largeur());
        if (c.repete) p.setStyle(Qt::DashLine);
        g.setPen(p);
        g.setBrush(Mele(cadre, blanc, c.role == CaseFamille::Role::Conjoint ? 0.75 : 0.6));
        g.drawRoundedRect(r, rayon, rayon);

        if (static_cast<int>(i) == focus) {
            QPen f(kFocus, bord.Largeur() * 2, Qt::DotLine);
            g.setPen(f);
            g.setBrush(Qt::NoBrush);
            const double o = 4 * e + (c.enCours ? epais.Largeur() : 0);
            g.drawRoundedRect(r.adjusted(-o, -o, o, o), rayon + o, rayon + o);
        }

        // Texts: first name, name in bold, dates; each cut to the box.
        g.setPen(Qc(c.police));
        const double hLigne = (r.height() - 2 * marge) / 3;
        for (std::size_t k = 0; k < c.lignes.size() && k < 3; ++k) {
            const QFont& police = (k == 1 || c.enCours) ? s.policeNom : s.police;
            g.setFont(police);
            const QRectF lr(r.x() + marge, r.y() + marge + hLigne * static_cast<double>(k),
                            r.width() - 2 * marge, hLigne);
            const QString t =
                QFontMetricsF(police, g.device()).elidedText(Q(c.lignes[k]), Qt::ElideRight, lr.width());
            g.drawText(lr, Qt::AlignHCenter | Qt::AlignVCenter, t);
        }
    }
}

// --- The frame -------------------------------------------------------------------------------

CadreFamille::CadreFamille(FrmDebutQt& f) : QAbstractScrollArea(&f), f_(f) {
    setObjectName(QStringLiteral("Cadre"));
    horizontalScrollBar()->setObjectName(QStringLiteral("DefilementH1"));
    verticalScrollBar()->setObjectName(QStringLiteral("DefilementV1"));
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setFrameShape(QFrame::NoFrame);
}

static QPointF Decalage(const CadreFamille& c, const DispositionFamille& d) {
    // A drawing smaller than the frame stands in its middle.
    const QSize v = c.viewport()->size();
    return QPointF(std::max(0.0, std::floor((v.width() - d.largeur) / 2)),
                   std::max(0.0, std::floor((v.height() - d.hauteur) / 2)));
}

QPointF CadreFamille::VersDessin(const QPointF& p) const {
    const QPointF o(horizontalScrollBar()->value(), verticalScrollBar()->value());
    return p + o - Decalage(*this, f_.vue().disposition());
}

void CadreFamille::AjusteDefilement() {
    const auto& d = f_.vue().disposition();
    const QSize v = viewport()->size();
    horizontalScrollBar()->setRange(0, std::max(0, static_cast<int>(std::ceil(d.largeur)) - v.width()));
    verticalScrollBar()->setRange(0, std::max(0, static_cast<int>(std::ceil(d.hauteur)) - v.height()));
    horizontalScrollBar()->setPageStep(v.width());
    verticalScrollBar()->setPageStep(v.height());
    horizontalScrollBar()->setSingleStep(24);
    verticalScrollBar()->setSingleStep(24);
}

void CadreFamille::Montre(int index, bool centrer) {
    const auto& d = f_.vue().disposition();
    if (index < 0 || index >= static_cast<int>(d.cases.size())) return;
    const Rect& r = d.cases[index].r;
    const QSize v = viewport()->size();
    auto* h = horizontalScrollBar();
    auto* w = verticalScrollBar();
    if (centrer) {
        h->setValue(static_cast<int>(r.x + r.l / 2 - v.width() / 2.0));
        w->setValue(static_cast<int>(r.milieuY() - v.height() / 2.0));
    } else {
        const int m = 16;
        if (r.x - m < h->value()) h->setValue(static_cast<int>(r.x) - m);
        if (r.droite() + m > h->value() + v.width()) h->setValue(static_cast<int>(r.droite()) + m - v.width());
        if (r.y - m < w->value()) w->setValue(static_cast<int>(r.y) - m);
        if (r.bas() + m > w->value() + v.height()) w->setValue(static_cast<int>(r.bas()) + m - v.height());
    }
    viewport()->update();
}

void CadreFamille::paintEvent(QPaintEvent* e) {
    QPainter g(viewport());
    const auto& d = f_.vue().disposition();
    const QPointF o = QPointF(horizontalScrollBar()->value(), verticalScrollBar()->value()) -
                      Decalage(*this, d);
    g.fillRect(e->rect(), Qt::white);
    g.translate(-o);
    PeintFamille(g, d, f_.style(), QRectF(e->rect()).translated(o), f_.vue().focus(),
                 viewport()->devicePixelRatioF());
    g.resetTransform();
    if (d.etat == '2') {
        // The box count of the settings left persons out: say so.
        const QString t = MT(3200, QString::number(d.limite));
        QFont f = font();
        g.setFont(f);
        const QFontMetrics fm(f);
        const QRect r(8, 8, fm.horizontalAdvance(t) + 16, fm.height() + 8);
        g.setPen(Qt::NoPen);
        g.setBrush(QColor(255, 248, 220, 235));
        g.drawRoundedRect(r, 4, 4);
        g.setPen(QColor(90, 60, 0));
        g.drawText(r, Qt::AlignCenter, t);
    }
}

void CadreFamille::mousePressEvent(QMouseEvent* e) {
    setFocus(Qt::MouseFocusReason);
    const QPointF p = VersDessin(e->position());
    const int i = CaseEn(f_.vue().disposition(), p.x(), p.y());
    if (i < 0) return;
    f_.vue().DefinitFocus(i);
    viewport()->update();
    if (e->button() == Qt::LeftButton) {
        f_.Clic(i);
    } else if (e->button() == Qt::RightButton) {
        QMenu* m = f_.ConstruitMenu(i);
        m->exec(e->globalPosition().toPoint());
        delete m;
    }
}

void CadreFamille::mouseMoveEvent(QMouseEvent* e) {
    const QPointF p = VersDessin(e->position());
    const bool dessus = CaseEn(f_.vue().disposition(), p.x(), p.y()) >= 0;
    viewport()->setCursor(dessus ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

bool CadreFamille::viewportEvent(QEvent* e) {
    if (e->type() == QEvent::ToolTip) {
        auto* h = static_cast<QHelpEvent*>(e);
        const QPointF p = VersDessin(h->pos());
        const auto& d = f_.vue().disposition();
        const int i = CaseEn(d, p.x(), p.y());
        if (i >= 0) {
            QStringList l;
            for (const auto& t : d.cases[i].lignes)
                if (!t.empty()) l << Q(t);
            QString t = l.join(QLatin1Char(' '));
            // A dashed box stands for a person drawn elsewhere in the view.
            if (d.cases[i].repete) t += QLatin1Char('\n') + MT(3202);
            QToolTip::showText(h->globalPos(), t, viewport());
        } else {
            QToolTip::hideText();
        }
        return true;
    }
    return QAbstractScrollArea::viewportEvent(e);
}

void CadreFamille::keyPressEvent(QKeyEvent* e) {
    auto deplace = [this](Direction d) {
        f_.vue().Deplace(d);
        Montre(f_.vue().focus(), false);
    };
    switch (e->key()) {
    case Qt::Key_Left: deplace(Direction::Gauche); break;
    case Qt::Key_Right: deplace(Direction::Droite); break;
    case Qt::Key_Up: deplace(Direction::Haut); break;
    case Qt::Key_Down: deplace(Direction::Bas); break;
    case Qt::Key_Home:
        f_.vue().DefinitFocus(f_.vue().disposition().centre);
        Montre(f_.vue().focus(), false);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space: f_.Clic(f_.vue().focus()); break;
    case Qt::Key_Menu: {
        const int i = f_.vue().focus();
        if (i < 0) break;
        const Rect& r = f_.vue().disposition().cases[i].r;
        const QPointF p = QPointF(r.x, r.bas()) - VersDessin(QPointF(0, 0));
        QMenu* m = f_.ConstruitMenu(i);
        m->exec(viewport()->mapToGlobal(p.toPoint()));
        delete m;
        break;
    }
    default: QAbstractScrollArea::keyPressEvent(e); return;
    }
}

void CadreFamille::focusInEvent(QFocusEvent* e) {
    QAbstractScrollArea::focusInEvent(e);
    f_.Dispose();
}

void CadreFamille::resizeEvent(QResizeEvent* e) {
    QAbstractScrollArea::resizeEvent(e);
    AjusteDefilement();
}

// --- The form --------------------------------------------------------------------------------

FrmDebutQt::FrmDebutQt(ContexteQt& c) : c_(c) {
    auto* l = new QVBoxLayout(this);
    l->setContentsMargins(0, 0, 0, 0);
    cadre_ = new CadreFamille(*this);
    l->addWidget(cadre_);
    setFocusProxy(cadre_);
    resize(900, 600);
    Retraduit();
    Dispose();
}

void FrmDebutQt::Retraduit() {
    setWindowTitle(M(3201));
    cadre_->setAccessibleName(M(3201));
    cadre_->viewport()->update();
}

void FrmDebutQt::PersonneChangee() { Dispose(); }

void FrmDebutQt::Dispose() {
    MDIForm1& L = c_.logique;
    Base* b = L.base();
    if (!b) {
        vue_ = VueFamille();
        centreAffiche_ = 0;
        cadre_->AjusteDefilement();
        cadre_->viewport()->update();
        return;
    }
    Parametres& p = L.app().parametres();
    const int gauche = L.porteeGauche, droite = L.porteeDroite;
    const double echelle = L.echelle;
    style_ = StyleDe(p, L.niveau, echelle);
    ReglageVue v{L.niveau, gauche, droite, echelle, HauteurLigne(p, L.niveau)};
    vue_.Dispose(*b, p, L.PersonneEnCours(), v);
    if (vue_.disposition().etat == '2' && !enDisposition_) {
        // The shift just made does not fit: it is undone.
        enDisposition_ = true;
        L.AnnuleDecalage();
        enDisposition_ = false;
        if (L.porteeGauche != gauche || L.porteeDroite != droite) {
            Dispose();
            return;
        }
    }
    cadre_->AjusteDefilement();
    // A new person, level, reach or scale brings the current person to the
    // middle; a plain redraw keeps the scroll position.
    const std::array<double, 5> signature = {static_cast<double>(L.PersonneEnCours()),
                                             static_cast<double>(L.niveau), static_cast<double>(gauche),
                                             static_cast<double>(droite), echelle};
    if (signature != signature_) cadre_->Montre(vue_.disposition().centre, true);
    else cadre_->viewport()->update();
    signature_ = signature;
    centreAffiche_ = L.PersonneEnCours();
}

void FrmDebutQt::Clic(int index) {
    const auto& d = vue_.disposition();
    if (index < 0 || index >= static_cast<int>(d.cases.size())) return;
    MDIForm1& L = c_.logique;
    if (L.Occupe()) return;
    const std::uint32_t n = d.cases[index].personne;
    L.Confirme_Fiche_En_Cours();
    L.personneFiche = n;
    L.Aller(n);
    if (centreAffiche_ != n) Dispose();
}

QMenu* FrmDebutQt::ConstruitMenu(int index) {
    auto* m = new QMenu(this);
    m->setObjectName(QStringLiteral("MnuFamille"));
    const auto& d = vue_.disposition();
    Base* b = c_.logique.base();
    if (!b || index < 0 || index >= static_cast<int>(d.cases.size())) return m;
    bool premier = true;
    for (const ElementMenu& e : MenuFamille(*b, d.cases[index].personne)) {
        switch (e.genre) {
        case ElementMenu::Genre::Separateur: m->addSeparator(); break;
        case ElementMenu::Genre::Titre: {
            QAction* a = m->addSection(Q(e.texte));
            a->setEnabled(false);
            break;
        }
        case ElementMenu::Genre::Personne: {
            QString t = Q(e.texte);
            if (!e.ouvreFiche) t.replace(QLatin1Char('&'), QStringLiteral("&&"));
            QAction* a = m->addAction(t);
            a->setData(static_cast<qulonglong>(e.personne));
            if (premier) {
                QFont f = a->font();
                f.setBold(true);
                a->setFont(f);
                premier = false;
            }
            connect(a, &QAction::triggered, this, [this, e] { Choisit(e); });
            break;
        }
        }
    }
    return m;
}

void FrmDebutQt::Choisit(const ElementMenu& e) {
    MDIForm1& L = c_.logique;
    if (e.personne == 0 || L.Occupe()) return;
    L.Confirme_Fiche_En_Cours();
    L.Aller(e.personne);
    if (centreAffiche_ != e.personne) Dispose();
    if (e.ouvreFiche) L.Execute(Commande::MnuModif);
}

static EnregistrementFormulaire enr("FrmDebut", [](ContexteQt& c) { return new FrmDebutQt(c); });

} // namespace sylvane
