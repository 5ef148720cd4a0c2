#include "charts/svg.h"

#include "text/utf8.h"

#include <cmath>
#include <cstdio>

namespace sylvane {

namespace {

std::string N(double v) { return std::to_string(std::lround(v)); }

std::string Couleur(std::int32_t c) {
    char t[8];
    std::snprintf(t, sizeof t, "#%06x", static_cast<unsigned>(c) & 0xFFFFFFu);
    return t;
}

// Text of the code page as XML character data.
std::string Xml(std::string_view ansi) {
    std::string propre;
    for (char c : ansi)
        if (static_cast<unsigned char>(c) >= 0x20) propre += c;
    std::string r;
    for (char c : AnsiVersUtf8(propre)) {
        switch (c) {
        case '&': r += "&amp;"; break;
        case '<': r += "&lt;"; break;
        case '>': r += "&gt;"; break;
        case '"': r += "&quot;"; break;
        default: r += c;
        }
    }
    return r;
}

// The gap between two sheets in the picture.
std::int64_t Ecart(const Papier& p) { return p.largeur / 40; }

} // namespace

SurfaceSvg::SurfaceSvg(SystemeFichiers& fs, const std::string& chemin, const Metrique& m,
                       const Papier& papier, int feuillesH, int feuillesV)
    : sortie_(std::make_unique<EcritureAtomique>(fs, chemin)), m_(m), papier_(papier) {
    const std::int64_t e = Ecart(papier);
    const std::int64_t l = feuillesH * (papier.largeur + e) + e;
    const std::int64_t h = feuillesV * (papier.hauteur + e) + e;
    // 1440 twips to the inch, 25.4 mm.
    char mm[64];
    std::snprintf(mm, sizeof mm, "width=\"%.1fmm\" height=\"%.1fmm\"", l * 25.4 / 1440,
                  h * 25.4 / 1440);
    Ecrit("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" " +
          std::string(mm) + " viewBox=\"0 0 " + std::to_string(l) + " " + std::to_string(h) +
          "\">\n<defs><clipPath id=\"feuille\"><rect width=\"" + std::to_string(papier.largeur) +
          "\" height=\"" + std::to_string(papier.hauteur) + "\"/></clipPath></defs>\n" +
          "<rect width=\"100%\" height=\"100%\" fill=\"#d0d0d0\"/>\n");
}

SurfaceSvg::~SurfaceSvg() = default;

void SurfaceSvg::Ecrit(std::string_view s) {
    tampon_ += s;
    if (tampon_.size() >= (1u << 18)) Vide();
}

void SurfaceSvg::Vide() {
    sortie_->Sortie().ecrire(offset_, tampon_);
    offset_ += tampon_.size();
    tampon_.clear();
}

void SurfaceSvg::DebutPage(int ligne, int colonne, double largeur, double hauteur) {
    if (pageOuverte_) FinPage();
    const std::int64_t e = Ecart(papier_);
    const std::int64_t x = e + (colonne - 1) * (papier_.largeur + e);
    const std::int64_t y = e + (ligne - 1) * (papier_.hauteur + e);
    Ecrit("<g transform=\"translate(" + std::to_string(x) + "," + std::to_string(y) +
          ")\">\n<rect width=\"" + N(largeur) + "\" height=\"" + N(hauteur) +
          "\" fill=\"white\"/>\n<g clip-path=\"url(#feuille)\" font-family=\"DejaVu Sans\" "
          "stroke-linecap=\"round\">\n");
    pageOuverte_ = true;
}

void SurfaceSvg::FinPage() {
    if (!pageOuverte_) return;
    Ecrit("</g>\n</g>\n");
    pageOuverte_ = false;
}

void SurfaceSvg::Trait(double x1, double y1, double x2, double y2, Plume plume) {
    const char* trait = plume == Plume::Cadre     ? "stroke=\"black\" stroke-width=\"20\""
                        : plume == Plume::Mariage ? "stroke=\"black\" stroke-width=\"24\""
                                                  : "stroke=\"#404040\" stroke-width=\"10\"";
    Ecrit("<line x1=\"" + N(x1) + "\" y1=\"" + N(y1) + "\" x2=\"" + N(x2) + "\" y2=\"" + N(y2) +
          "\" " + trait + "/>\n");
}

void SurfaceSvg::Boite(double x1, double y1, double x2, double y2, std::int32_t fond) {
    Ecrit("<rect x=\"" + N(x1) + "\" y=\"" + N(y1) + "\" width=\"" + N(x2 - x1) +
          "\" height=\"" + N(y2 - y1) + "\" fill=\"" +
          (fond == kSansCouleur ? std::string("white") : Couleur(fond)) +
          "\" stroke=\"black\" stroke-width=\"10\"/>\n");
}

void SurfaceSvg::Texte(double x, double y, std::string_view texte, const Police& p,
                       std::int32_t couleur) {
    if (texte.empty()) return;
    // The baseline stands at the ascent, 0.8 of the line's height; the
    // measured width is imposed, so that any font keeps the layout.
    const double hauteur = m_.Hauteur(p);
    Ecrit("<text x=\"" + N(x) + "\" y=\"" + N(y + 0.8 * hauteur) + "\" font-size=\"" +
          N(p.points * kTwipsParPoint) + "\"" + (p.gras ? " font-weight=\"bold\"" : "") +
          " fill=\"" + Couleur(couleur) + "\" textLength=\"" + N(m_.Largeur(texte, p)) +
          "\" lengthAdjust=\"spacingAndGlyphs\">" + Xml(texte) + "</text>\n");
}

void SurfaceSvg::Termine() {
    FinPage();
    Ecrit("</svg>\n");
    Vide();
    sortie_->Valide();
}

} // namespace sylvane
