#include "ui/frm_graphique.h"

#include <algorithm>
#include <array>

namespace sylvane {

namespace {

constexpr std::array<double, 9> kZooms = {0.15, 0.2, 0.3, 0.4, 0.5, 0.7, 1.0, 1.4, 2.0};

} // namespace

FrmGraphique::~FrmGraphique() { Oublie(); }

void FrmGraphique::Oublie() {
    if (!gabarit_.empty()) fs_.supprimer(gabarit_);
    pret_ = false;
}

bool FrmGraphique::Dessine(Base& b, const Parametres& p, std::uint32_t personne,
                           const Metrique& m) {
    Oublie();
    if (personne == 0) return false;
    options_ = OptionsGraphe{};
    options_.detaille = detaille;
    options_.direction = std::clamp(direction, 0, 3);
    options_.feuillesH = feuillesH;
    options_.feuillesV = feuillesV;
    const int g = std::clamp(generations, 1, 99);
    gabarit_ = p.DossierTravail() + b.Chemins().titre + ".svp";
    if (genre == GenreGraphe::Couple) {
        const std::vector<std::uint32_t> mariages = b.Mariages(personne);
        if (mariages.empty()) return false;
        GrapheCouple(b, fs_, gabarit_, mariages.front(), g, g, options_, m, &plan_);
    } else {
        const int asc = genre == GenreGraphe::Descendants ? 0 : g;
        const int desc = genre == GenreGraphe::Ascendants ? 0 : g;
        GrapheIndividu(b, fs_, gabarit_, personne, asc, desc, options_, m, &plan_);
    }
    pret_ = fs_.existe(gabarit_);
    ligne_ = colonne_ = 1;
    return pret_;
}

OptionsPages FrmGraphique::Options(Base& b, const Parametres& p,
                                   const std::string& libelleFeuille) const {
    OptionsPages o;
    o.papier = options_.papier;
    o.couleur = couleur;
    o.policeMax = options_.policeMax;
    o.texte = [&b, og = options_](std::uint32_t n, const StyleBoite& st) {
        return TexteBoite(b, n, st, og);
    };
    o.sexe = [&b](std::uint32_t n) {
        const std::string sx = b.LitSexe(n);
        return sx.empty() ? ' ' : sx[0];
    };
    o.couleurHomme = p.couleurCadreHomme;
    o.couleurFemme = p.couleurCadreFemme;
    o.couleurIndetermine = p.couleurCadreIndetermine;
    o.libelleFeuille = libelleFeuille;
    return o;
}

bool FrmGraphique::Suivante() {
    if (!pret_ || Rang() >= NombreFeuilles()) return false;
    if (++colonne_ > plan_.geo.feuillesH) colonne_ = 1, ++ligne_;
    return true;
}

bool FrmGraphique::Precedente() {
    if (!pret_ || Rang() <= 1) return false;
    if (--colonne_ < 1) colonne_ = plan_.geo.feuillesH, --ligne_;
    return true;
}

double FrmGraphique::Zoom() const { return kZooms[static_cast<std::size_t>(zoom_)]; }

bool FrmGraphique::Agrandir() {
    if (zoom_ + 1 >= static_cast<int>(kZooms.size())) return false;
    ++zoom_;
    return true;
}

bool FrmGraphique::Reduire() {
    if (zoom_ == 0) return false;
    --zoom_;
    return true;
}

} // namespace sylvane
