#include "publish/impression_evenements.h"

#include "store/base.h"
#include "store/evenement_edition.h"
#include "text/messages.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace sylvane {
namespace {

constexpr double kEcart = 240; // between two columns

// The longest start of `texte` that fits in `largeur` with "..." after it;
// the text itself when it fits.
std::string Coupe(const Metrique& m, const std::string& texte, double largeur, const Police& p) {
    if (m.Largeur(texte, p) <= largeur) return texte;
    std::size_t bas = 0, haut = texte.size();
    while (bas < haut) {
        const std::size_t milieu = (bas + haut + 1) / 2;
        if (m.Largeur(std::string_view(texte).substr(0, milieu), p) + m.Largeur("...", p) <= largeur)
            bas = milieu;
        else
            haut = milieu - 1;
    }
    return texte.substr(0, bas) + "...";
}

} // namespace

LigneEvt LigneEvenement(Base& b, std::uint32_t e) {
    const long d = b.DateEvt(e);
    const int an = AnneeEvenement(d);
    return {DateCourteEvenement(d), an ? std::to_string(an) : "", b.LieuEvt(e), b.LibelleEvt(e),
            std::to_string(e)};
}

FinRapport ImprimeListeEvenements(Base& b, Surface& s, const std::string& titre,
                                  const LigneEvt& entetes, std::size_t nombre,
                                  const std::function<LigneEvt(std::size_t)>& ligne,
                                  const OptionsImpression& o, std::size_t* faits,
                                  bool compte) {
    if (faits) *faits = 0;
    if (nombre == 0) return FinRapport::Vide;
    const Metrique& m = s.Mesure();
    const Police normale{8, false}, grasse{8, true};
    const double w = static_cast<double>(o.papier.largeur);
    const double gauche = w / 20, utile = w - 2 * gauche;
    // Date, year and number take what their widest value takes; place and
    // type share the rest, three parts to two.
    std::array<double, 5> largeurs{};
    const std::array<std::string, 5> modeles{"00/00/0000", "00000", "", "", "0000000"};
    for (std::size_t i = 0; i < 5; ++i)
        largeurs[i] = std::max(m.Largeur(modeles[i], normale), m.Largeur(entetes[i], grasse));
    const double reste = std::max(1440.0, utile - largeurs[0] - largeurs[1] - largeurs[4] - 4 * kEcart);
    largeurs[2] = reste * 0.6;
    largeurs[3] = reste * 0.4;
    const double bas = static_cast<double>(o.papier.hauteur) * (1 - 1.0 / 30);
    const double pas = m.Hauteur(normale) * 1.25;

    // Measuring is what costs most over a long list: the place and type
    // texts, few and much repeated, are fitted once each, and a string of
    // digits measures as its count of zeros.
    std::array<std::unordered_map<std::string, std::string>, 2> ajustes;
    auto ajuste = [&](std::size_t col, const std::string& t, const Police& p) -> const std::string& {
        auto& cache = ajustes[col - 2];
        if (cache.size() > 20000) cache.clear();
        auto it = cache.find(t);
        if (it == cache.end()) it = cache.emplace(t, Coupe(m, t, largeurs[col], p)).first;
        return it->second;
    };
    std::vector<double> chiffres;
    auto largeurChiffres = [&](std::size_t n) {
        while (chiffres.size() <= n) chiffres.push_back(m.Largeur(std::string(chiffres.size(), '0'), normale));
        return chiffres[n];
    };

    Imprimante imp(b, s, o);
    double y = 0;
    auto place = [&](const LigneEvt& l, const Police& p, bool entete) {
        double x = gauche;
        for (std::size_t i = 0; i < 5; ++i) {
            if (entete) {
                // Year and number to the right of their column.
                const bool droite = i == 1 || i == 4;
                s.Texte(droite ? x + largeurs[i] - m.Largeur(l[i], p) : x, y, l[i], p, 0);
            } else if (i == 1 || i == 4) {
                s.Texte(x + largeurs[i] - largeurChiffres(l[i].size()), y, l[i], p, 0);
            } else {
                // A date fits its column, made for the widest date.
                s.Texte(x, y, i == 0 ? l[i] : ajuste(i, l[i], p), p, 0);
            }
            x += largeurs[i] + kEcart;
        }
        y += pas;
    };
    // A page the surface leaves out is laid out without reading its rows:
    // the preview, which keeps the page shown alone, then costs a page.
    bool garde = true;
    auto page = [&] {
        imp.NouvellePage(titre);
        garde = s.Garde(imp.Pages(), 1);
        y = imp.YCourant();
        place(entetes, grasse, true);
        s.Trait(gauche, y - pas * 0.1, w - gauche, y - pas * 0.1, Plume::Cadre);
        y += pas * 0.2;
    };
    std::size_t i = 0;
    for (; i < nombre; ++i) {
        if (i == 0 || y + pas > bas) {
            // The stop is looked at between pages: what is printed is whole pages.
            if (i > 0 && o.arret && o.arret()) {
                imp.FinImpression();
                if (faits) *faits = i;
                return FinRapport::Arrete;
            }
            page();
        }
        if (garde) place(ligne(i), normale, false);
        else y += pas;
    }
    if (compte) {
        if (y + pas * 1.5 > bas) page();
        y += pas * 0.5;
        s.Texte(gauche, y, MessageAvec(4184, std::to_string(nombre)), grasse, 0);
    }
    imp.FinImpression();
    if (faits) *faits = i;
    return FinRapport::Termine;
}

} // namespace sylvane
