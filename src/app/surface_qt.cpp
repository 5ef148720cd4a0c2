#include "app/surface_qt.h"

#include "text/utf8.h"

#include <QIODevice>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>

#include <optional>

namespace sylvane {

namespace {

// The size the metric measures at, in pixels; large enough that rounding
// in the font engine stays far below a twip at any size of a chart.
constexpr double kTailleReference = 1000;

QFont PoliceReference(const QString& famille, bool gras) {
    QFont f(famille);
    f.setPixelSize(static_cast<int>(kTailleReference));
    f.setBold(gras);
    f.setHintingPreference(QFont::PreferNoHinting);
    f.setStyleStrategy(QFont::PreferOutline);
    return f;
}

QColor CouleurRgb(std::int32_t c) {
    return QColor::fromRgb(static_cast<QRgb>(c) & 0xFFFFFFu);
}

} // namespace

QString TexteGraphique(std::string_view ansi) {
    std::string propre;
    for (char c : ansi)
        if (static_cast<unsigned char>(c) >= 0x20) propre += c;
    return QString::fromStdString(AnsiRefVersUtf8(propre));
}

MetriqueQt::MetriqueQt(const QString& famille)
    : normal_(PoliceReference(famille, false)), gras_(PoliceReference(famille, true)),
      mesureNormal_(normal_), mesureGras_(gras_) {}

double MetriqueQt::Facteur(const Police& p) {
    return p.points * kTwipsParPoint / kTailleReference;
}

double MetriqueQt::Largeur(std::string_view texte, const Police& p) const {
    const QFontMetricsF& m = p.gras ? mesureGras_ : mesureNormal_;
    return m.horizontalAdvance(TexteGraphique(texte)) * Facteur(p);
}

double MetriqueQt::Hauteur(const Police& p) const {
    const QFontMetricsF& m = p.gras ? mesureGras_ : mesureNormal_;
    return (m.ascent() + m.descent()) * Facteur(p);
}

double MetriqueQt::Ascendant(const Police& p) const {
    return (p.gras ? mesureGras_ : mesureNormal_).ascent() * Facteur(p);
}

// --- The surface -------------------------------------------------------------

SurfaceQt::SurfaceQt(QPainter& p, const MetriqueQt& m, double echelle)
    : p_(p), m_(m), echelle_(echelle) {
    p_.setRenderHint(QPainter::Antialiasing);
    p_.setRenderHint(QPainter::TextAntialiasing);
}

SurfaceQt::~SurfaceQt() { FinPage(); }

void SurfaceQt::Seule(int ligne, int colonne) {
    seuleLigne_ = ligne;
    seuleColonne_ = colonne;
}

void SurfaceQt::DebutPage(int ligne, int colonne, double largeur, double hauteur) {
    actif_ = Garde(ligne, colonne);
    if (!actif_) return;
    if (pagine_ && pages_ > 0) pagine_->newPage();
    ++pages_;
    p_.save();
    p_.scale(echelle_, echelle_);
    if (ecart_ >= 0) {
        p_.translate(ecart_ + (colonne - 1) * (largeur + ecart_),
                     ecart_ + (ligne - 1) * (hauteur + ecart_));
        p_.fillRect(QRectF(0, 0, largeur, hauteur), Qt::white);
    }
    p_.setClipRect(QRectF(0, 0, largeur, hauteur));
}

void SurfaceQt::FinPage() {
    if (!actif_) return;
    p_.restore();
    actif_ = false;
}

void SurfaceQt::Trait(double x1, double y1, double x2, double y2, Plume plume) {
    if (!actif_) return;
    QPen pen(plume == Plume::Lien ? QColor(0x40, 0x40, 0x40) : QColor(Qt::black));
    pen.setWidthF(plume == Plume::Cadre ? 20 : plume == Plume::Mariage ? 24 : 10);
    pen.setCapStyle(Qt::RoundCap);
    p_.setPen(pen);
    p_.drawLine(QPointF(x1, y1), QPointF(x2, y2));
}

void SurfaceQt::Boite(double x1, double y1, double x2, double y2, std::int32_t fond) {
    if (!actif_) return;
    QPen pen(Qt::black);
    pen.setWidthF(10);
    p_.setPen(pen);
    p_.setBrush(fond == kSansCouleur ? QColor(Qt::white) : CouleurRgb(fond));
    p_.drawRect(QRectF(QPointF(x1, y1), QPointF(x2, y2)));
}

void SurfaceQt::Texte(double x, double y, std::string_view texte, const Police& p,
                      std::int32_t couleur) {
    if (!actif_ || texte.empty()) return;
    // The glyphs of the measured font, scaled by the painter: the text is
    // as wide on every device as the metric said.
    const double k = MetriqueQt::Facteur(p);
    p_.save();
    p_.translate(x, y + m_.Ascendant(p));
    p_.scale(k, k);
    p_.setFont(m_.Reference(p.gras));
    p_.setPen(CouleurRgb(couleur));
    p_.drawText(QPointF(0, 0), TexteGraphique(texte));
    p_.restore();
}

// --- PDF -------------------------------------------------------------

namespace {

// The temporary of an atomic write as a device for the PDF writer. Errors
// of the file layer can't cross Qt's code: they are kept and thrown after.
class SortiePdf : public QIODevice {
  public:
    explicit SortiePdf(Fichier& f) : f_(f) { open(QIODevice::WriteOnly); }
    bool isSequential() const override { return true; }
    void Termine() {
        Vide();
        if (erreur_) throw *erreur_;
    }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* d, qint64 n) override {
        if (erreur_) return -1;
        tampon_.append(d, static_cast<std::size_t>(n));
        if (tampon_.size() >= (1u << 18)) Vide();
        return erreur_ ? -1 : n;
    }

  private:
    void Vide() {
        if (erreur_ || tampon_.empty()) return;
        try {
            f_.ecrire(offset_, tampon_);
            offset_ += tampon_.size();
        } catch (const ErreurES& e) {
            erreur_ = e;
        }
        tampon_.clear();
    }

    Fichier& f_;
    std::string tampon_;
    std::uint64_t offset_ = 0;
    std::optional<ErreurES> erreur_;
};

} // namespace

FinPages EcritPdfPages(SystemeFichiers& fs, const std::string& cible, const Papier& papier,
                       const MetriqueQt& m, const std::function<FinPages(SurfaceQt&)>& dessine) {
    EcritureAtomique sortie(fs, cible);
    SortiePdf appareil(sortie.Sortie());
    FinPages fin;
    {
        QPdfWriter pdf(&appareil);
        pdf.setCreator(QStringLiteral("Sylvane"));
        pdf.setResolution(1440); // a unit of the page is a twip
        const QPageSize taille(QSizeF(static_cast<double>(papier.largeur) / kTwipsParPoint,
                                      static_cast<double>(papier.hauteur) / kTwipsParPoint),
                               QPageSize::Point, QString(), QPageSize::ExactMatch);
        pdf.setPageLayout(QPageLayout(taille, QPageLayout::Portrait, QMarginsF()));
        QPainter p(&pdf);
        SurfaceQt s(p, m, pdf.resolution() / 1440.0);
        s.Pagine(pdf);
        fin = dessine(s);
        p.end();
    }
    appareil.Termine();
    if (fin == FinPages::Termine) sortie.Valide();
    return fin;
}

FinPages EcritPdf(SystemeFichiers& fs, const std::string& gabarit, const std::string& cible,
                  const OptionsPages& o, const MetriqueQt& m) {
    if (!fs.existe(gabarit)) return FinPages::Absent;
    return EcritPdfPages(fs, cible, o.papier, m,
                         [&](SurfaceQt& s) { return ImprimePages(fs, gabarit, s, o); });
}

} // namespace sylvane
