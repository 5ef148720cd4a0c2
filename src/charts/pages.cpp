#include "charts/pages.h"

#include <algorithm>
#include <cctype>
#include <memory>

namespace sylvane {

std::optional<Papier> PapierNomme(const std::string& nom) {
    std::string n;
    for (char c : nom) n += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    // 1 cm = 1440 / 2.54 twips
    if (n == "a4") return Papier{11906, 16838};
    if (n == "a3") return Papier{16838, 23811};
    if (n == "letter") return Papier{12240, 15840};
    return std::nullopt;
}

Geometrie PreparePage(const Papier& papier, std::int32_t feuillesH, std::int32_t feuillesV) {
    Geometrie g;
    g.papier = papier;
    g.feuillesH = feuillesH;
    g.feuillesV = feuillesV;
    const std::int64_t w = papier.largeur, h = papier.hauteur;
    g.largeurTotale = (w - w / 16) * feuillesH + w / 16;
    g.hauteurTotale = (h - h / 16) * feuillesV + h / 16;
    g.largeurUtile = g.largeurTotale - w / 8;
    g.hauteurUtile = g.hauteurTotale - h / 8;
    g.bandeTitre = h / 6 + h / 16;
    return g;
}

void EcritCadre(EcrivainGabarit& g, const Geometrie& geo) {
    const std::int64_t x1 = geo.papier.largeur / 20, x2 = geo.largeurTotale - x1;
    const std::int64_t y1 = geo.papier.hauteur / 20, y2 = geo.hauteurTotale - y1;
    g.TraitGraphe(x1, y1, x2, y1, kStyleCadre);
    g.TraitGraphe(x2, y1, x2, y2, kStyleCadre);
    g.TraitGraphe(x2, y2, x1, y2, kStyleCadre);
    g.TraitGraphe(x1, y2, x1, y1, kStyleCadre);
}

std::int32_t StyleBoite::Code() const {
    return genre | (std::clamp(rangMariage, 0, 63) << 2) | (cotePere ? 1 << 8 : 0) |
           (mariageParents ? 1 << 9 : 0);
}

StyleBoite StyleBoite::Depuis(std::int32_t code) {
    StyleBoite s;
    s.genre = static_cast<GenreBoite>(code & 3);
    s.rangMariage = (code >> 2) & 63;
    s.cotePere = (code >> 8) & 1;
    s.mariageParents = (code >> 9) & 1;
    return s;
}

// --- Box texts -------------------------------------------------------------

namespace {

std::vector<std::string> Lignes(const std::string& texte) {
    std::vector<std::string> r;
    std::size_t debut = 0;
    while (true) {
        const std::size_t fin = texte.find('#', debut);
        r.push_back(texte.substr(debut, fin == std::string::npos ? std::string::npos : fin - debut));
        if (fin == std::string::npos) break;
        debut = fin + 1;
    }
    while (!r.empty() && r.back().empty()) r.pop_back();
    return r;
}

// The longest start of `mot` that fits with "..." after it.
std::string Tronque(const Metrique& m, const Police& p, const std::string& mot, double largeur) {
    std::string r = mot;
    while (!r.empty() && m.Largeur(r + "...", p) > largeur) r.pop_back();
    return r + "...";
}

// A line cut at blanks into lines no wider than `largeur`.
void Coupe(const Metrique& m, const Police& p, const std::string& ligne, double largeur,
           std::vector<std::string>& sortie) {
    if (m.Largeur(ligne, p) <= largeur) {
        sortie.push_back(ligne);
        return;
    }
    std::string courante;
    std::size_t i = 0;
    while (i < ligne.size()) {
        const std::size_t blanc = std::min(ligne.find(' ', i), ligne.size());
        const std::string mot = ligne.substr(i, blanc - i);
        i = blanc + 1;
        if (mot.empty()) continue;
        const std::string essai = courante.empty() ? mot : courante + " " + mot;
        if (m.Largeur(essai, p) <= largeur) {
            courante = essai;
            continue;
        }
        if (!courante.empty()) sortie.push_back(courante);
        courante = m.Largeur(mot, p) <= largeur ? mot : Tronque(m, p, mot, largeur);
    }
    if (!courante.empty()) sortie.push_back(courante);
}

} // namespace

TexteAjuste AjusteTexte(const Metrique& m, const std::string& texte, double largeur,
                        double hauteur, double policeMax, bool gras) {
    TexteAjuste r;
    r.police.points = policeMax * 0.5;
    r.police.gras = gras;
    const std::vector<std::string> lignes = Lignes(texte);
    if (lignes.empty() || largeur <= 0 || hauteur <= 0) return r;
    double plusLarge = 0;
    for (const auto& l : lignes) plusLarge = std::max(plusLarge, m.Largeur(l, r.police));
    const double haute = m.Hauteur(r.police) * static_cast<double>(lignes.size());
    double echelle = 0.85 * hauteur / haute;
    if (plusLarge > 0) echelle = std::min(echelle, 0.9 * largeur / plusLarge);
    r.police.points = std::clamp(r.police.points * echelle, 0.6 * policeMax, policeMax);

    std::vector<std::string> coupees;
    for (const auto& l : lignes) Coupe(m, r.police, l, largeur, coupees);
    const double h = m.Hauteur(r.police);
    const auto tiennent = static_cast<std::size_t>(std::max(0.0, hauteur / h));
    if (coupees.size() > tiennent) {
        coupees.resize(tiennent);
        if (!coupees.empty()) coupees.back() = Tronque(m, r.police, coupees.back(), largeur);
    }
    r.lignes = std::move(coupees);
    return r;
}

// --- The page writer -------------------------------------------------------------

namespace {

class Feuille {
  public:
    Feuille(Surface& s, const OptionsPages& o, std::int64_t x0, std::int64_t y0)
        : s_(s), o_(o), x0_(x0), y0_(y0), w_(o.papier.largeur), h_(o.papier.hauteur) {}

    void Dessine(const EnregGabarit& e) {
        switch (e.type) {
        case 'L': Trait(e); break;
        case 'C': Boite(e); break;
        default: Texte(e); break;
        }
    }

  private:
    bool Rencontre(double xa, double ya, double xb, double yb) const {
        return std::max(xa, xb) >= x0_ && std::min(xa, xb) <= x0_ + w_ &&
               std::max(ya, yb) >= y0_ && std::min(ya, yb) <= y0_ + h_;
    }

    void Trait(const EnregGabarit& e) {
        if (!Rencontre(e.x1, e.y1, e.x2, e.y2)) return;
        const Plume p = e.style == kStyleCadre     ? Plume::Cadre
                        : e.style == kStyleMariage ? Plume::Mariage
                                                   : Plume::Lien;
        s_.Trait(e.x1 - x0_, e.y1 - y0_, e.x2 - x0_, e.y2 - y0_, p);
    }

    void Boite(const EnregGabarit& e) {
        const std::int64_t demiL = e.x2, demiH = e.y2;
        if (e.x1 < x0_ - demiL || e.x1 > x0_ + w_ + demiL || e.y1 < y0_ - demiH ||
            e.y1 > y0_ + h_ + demiH)
            return;
        const StyleBoite style = StyleBoite::Depuis(e.style);
        const double x = static_cast<double>(e.x1 - x0_), y = static_cast<double>(e.y1 - y0_);
        const double l = 0.95 * static_cast<double>(demiL), h = 0.95 * static_cast<double>(demiH);
        std::int32_t fond = kSansCouleur;
        if (style.genre == BoiteRacine) {
            fond = 0xAAAAAA;
        } else if (style.genre == BoitePersonne && o_.couleur && e.personne != 0) {
            const char sexe = o_.sexe ? o_.sexe(e.personne) : ' ';
            fond = CouleurDepuisBgr(sexe == 'H'   ? o_.couleurHomme
                                    : sexe == 'F' ? o_.couleurFemme
                                                  : o_.couleurIndetermine);
        }
        s_.Boite(x - l, y - h, x + l, y + h, fond);
        if (style.genre == BoiteTitre || e.personne == 0 || !o_.texte) return;
        const TexteAjuste t = AjusteTexte(s_.Mesure(), o_.texte(e.personne, style), 2 * l * 0.96,
                                          2 * h * 0.96, o_.policeMax, o_.gras);
        const double hl = s_.Mesure().Hauteur(t.police);
        double yl = y - hl * static_cast<double>(t.lignes.size()) / 2;
        for (const auto& ligne : t.lignes) {
            s_.Texte(x - s_.Mesure().Largeur(ligne, t.police) / 2, yl, ligne, t.police, 0);
            yl += hl;
        }
    }

    void Texte(const EnregGabarit& e) {
        Police p;
        p.points = e.style == kStyleTitre ? o_.policeMax : 8;
        p.gras = e.style == kStyleTitre;
        const std::vector<std::string> lignes = Lignes(e.texte);
        const Metrique& m = s_.Mesure();
        const double hl = m.Hauteur(p);
        double plusLarge = 0;
        for (const auto& l : lignes) plusLarge = std::max(plusLarge, m.Largeur(l, p));
        const double x = static_cast<double>(e.x1), y = static_cast<double>(e.y1);
        if (!Rencontre(x - plusLarge / 2, y, x + plusLarge / 2,
                       y + hl * static_cast<double>(lignes.size())))
            return;
        double yl = y - static_cast<double>(y0_);
        for (const auto& l : lignes) {
            s_.Texte(x - static_cast<double>(x0_) - m.Largeur(l, p) / 2, yl, l, p, 0);
            yl += hl;
        }
    }

    Surface& s_;
    const OptionsPages& o_;
    std::int64_t x0_, y0_, w_, h_;
};

// The marks of a sheet on each edge it shares with another sheet: its row
// and column, centred in the overlap.
void Reperes(Surface& s, const OptionsPages& o, int ligne, int colonne, const EnteteGabarit& t) {
    Police p;
    p.points = 6;
    const Metrique& m = s.Mesure();
    const double w = static_cast<double>(o.papier.largeur), h = static_cast<double>(o.papier.hauteur);
    const std::string prefixe = o.libelleFeuille + " : ";
    const std::string texte = prefixe + std::to_string(ligne) + "/" + std::to_string(colonne);
    const double lNumero = m.Largeur("9/9", p), lPrefixe = m.Largeur(prefixe, p);
    const double hauteur = m.Hauteur(p);
    auto ecrit = [&](double centreX, double centreY) {
        double x = centreX - lNumero / 2 - lPrefixe;
        x = std::clamp(x, w / 100, std::max(w / 100, w - lPrefixe - lNumero - w / 100));
        s.Texte(x, centreY - hauteur / 2, texte, p, 0);
    };
    if (colonne < t.feuillesH) ecrit(w - w / 32, h / 2);
    if (colonne > 1) ecrit(w / 32, h / 2);
    if (ligne < t.feuillesV) ecrit(w / 2, h - h / 32);
    if (ligne > 1) ecrit(w / 2, h / 32);
}

} // namespace

FinPages ImprimePages(SystemeFichiers& fs, const std::string& chemin, Surface& s,
                      const OptionsPages& o) {
    std::unique_ptr<LecteurGabarit> lecteur;
    try {
        lecteur = std::make_unique<LecteurGabarit>(fs, chemin);
    } catch (const ErreurES&) {
        return FinPages::Absent;
    }
    const EnteteGabarit t = lecteur->Entete();
    const std::int64_t pasX = o.papier.largeur - o.papier.largeur / 16;
    const std::int64_t pasY = o.papier.hauteur - o.papier.hauteur / 16;
    for (int ligne = 1; ligne <= t.feuillesV; ++ligne) {
        for (int colonne = 1; colonne <= t.feuillesH; ++colonne) {
            if (o.arret && o.arret()) {
                lecteur.reset();
                fs.supprimer(chemin);
                return FinPages::Arrete;
            }
            if (!lecteur) lecteur = std::make_unique<LecteurGabarit>(fs, chemin);
            s.DebutPage(ligne, colonne, static_cast<double>(o.papier.largeur),
                        static_cast<double>(o.papier.hauteur));
            Feuille f(s, o, (colonne - 1) * pasX, (ligne - 1) * pasY);
            EnregGabarit e;
            while (lecteur->Suivant(e)) f.Dessine(e);
            if (t.feuillesH * t.feuillesV > 1) Reperes(s, o, ligne, colonne, t);
            s.FinPage();
            lecteur.reset();
        }
    }
    return FinPages::Termine;
}

} // namespace sylvane
