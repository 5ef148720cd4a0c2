#include "charts/graphe.h"

#include "text/dates.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace sylvane {

namespace {

// Rounding to the nearest, halves to the even number.
std::int32_t Arrondi(double v) {
    return static_cast<std::int32_t>(std::clamp(std::nearbyint(v), 1.0, double(kFeuillesMax)));
}

std::int32_t Borne(std::int64_t v) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(v, 1, kFeuillesMax));
}

std::string Trim(const std::string& s) {
    const auto a = s.find_first_not_of(' ');
    if (a == std::string::npos) return {};
    return s.substr(a, s.find_last_not_of(' ') - a + 1);
}

} // namespace

char LettreMariage(int rang) {
    static const char lettres[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    return rang >= 1 && rang <= 52 ? lettres[rang - 1] : '?';
}

PlanGraphe CalculePlan(int niveauxAsc, int niveauxDesc, std::uint32_t feuillesAsc,
                       std::uint32_t feuillesDesc, const OptionsGraphe& o) {
    PlanGraphe p;
    p.niveauxAsc = niveauxAsc;
    p.niveauxDesc = niveauxDesc;
    p.feuillesAsc = std::max<std::uint32_t>(feuillesAsc, 1);
    p.feuillesDesc = std::max<std::uint32_t>(feuillesDesc, 1);
    p.direction = std::clamp(o.direction, 0, 3);
    p.detaille = o.detaille;
    const bool det = o.detaille;
    const std::int64_t a = niveauxAsc, d = niveauxDesc;
    const std::int64_t l = std::max(p.feuillesAsc, p.feuillesDesc);

    std::int32_t fh = o.feuillesH, fv = o.feuillesV;
    if (!p.Vertical()) {
        if (fv == 99) fv = Borne((det ? l + 1 : l) / 6 + 1);
        if (fh == 99) fh = Arrondi(static_cast<double>(a + d + 1) / (det ? 10 : 20) + 1);
    } else {
        if (fv == 99) fv = Arrondi(static_cast<double>(det ? a + d + 1 : a + d) / 6 + 1);
        if (fh == 99) fh = Arrondi(static_cast<double>(l - 1) / (det ? 15 : 30) + 1);
    }
    fh = std::clamp(fh, 1, kFeuillesMax);
    fv = std::clamp(fv, 1, static_cast<std::int32_t>(std::min<std::int64_t>(
                               kFeuillesMax, kFeuillesTotalMax / fh)));
    p.geo = PreparePage(o.papier, fh, fv);
    const std::int64_t lu = p.geo.largeurUtile, hu = p.geo.hauteurUtile;
    const std::int64_t w = o.papier.largeur, h = o.papier.hauteur;
    const std::int64_t t = a + d + 1;

    std::int64_t utile; // along the leaf axis
    if (!p.Vertical()) {
        const std::int64_t n = det ? l + 1 : l;
        p.pasFeuille = hu / ((n / fv + 1) * fv);
        p.pasNiveau = lu / (t >= (det ? 7 : 13) ? t : (det ? 6 : 12));
        utile = hu;
    } else {
        const std::int64_t rangees = ((det ? a + d + 1 : a + d) / fv + 1) * fv;
        p.pasNiveau = hu / rangees;
        p.pasFeuille = std::min(lu / std::max<std::int64_t>(l, det ? 8 : 16), lu / l);
        utile = lu;
    }
    const std::int64_t la = p.feuillesAsc, ld = p.feuillesDesc;
    if (la > ld) p.decalageDesc = (la - ld) * utile / la / 2;
    else if (ld > la) p.decalageAsc = (ld - la) * utile / ld / 2;

    switch (p.direction) {
    case 0: p.origineNiveau = h / 16 + (a + 1) * p.pasNiveau; break;
    case 1: p.origineNiveau = h / 16 + (d + 1) * p.pasNiveau; break;
    case 2: p.origineNiveau = w / 16 + a * p.pasNiveau + p.pasNiveau / 2; break;
    default: p.origineNiveau = w / 16 + d * p.pasNiveau + p.pasNiveau / 2; break;
    }
    // Fewer generations than the narrowest step allows across: they stand
    // in the middle of the width, not against its left side.
    if (!p.Vertical() && p.pasNiveau > 0)
        p.origineNiveau += (lu / p.pasNiveau - t) * p.pasNiveau / 2;
    return p;
}

// --- Box texts -------------------------------------------------------------------

namespace {

std::string Evenement(const std::string& abrev, const std::string& date, const std::string& an,
                      const std::string& lieu, bool detaille) {
    std::string quand = detaille && !date.empty() ? Trim(Conv_DateLongue(date) + " " + an) : an;
    if (quand.empty() && lieu.empty()) return {};
    std::string r = abrev + " " + quand;
    if (!lieu.empty()) r += (detaille ? " " : " / ") + lieu;
    return r;
}

std::string LigneMariage(Base& b, std::uint32_t m, const std::string& prefixe, bool detaille) {
    return Evenement(prefixe, b.DateMariage(m), Trim(b.LitAnMariage(m)), b.LieuMariage(m),
                     detaille);
}

} // namespace

std::string TexteBoite(Base& b, std::uint32_t p, const StyleBoite& style, const OptionsGraphe& o) {
    if (!PersonneExiste(b, p)) return {};
    std::string t;
    if (style.rangMariage >= 2)
        t += std::string(style.cotePere ? "P) " : "M) ") + LettreMariage(style.rangMariage) + ") ";
    t += b.LitNom(p) + "#" + b.LitPrenom(p);
    auto ligne = [&t](const std::string& l) {
        if (!l.empty()) t += "#" + l;
    };
    if (o.dates) {
        ligne(Evenement(o.abNaiss, b.LitDateNaiss(p), Trim(b.LitAnNaiss(p)), b.LieuNaiss(p),
                        o.detaille));
        ligne(Evenement(o.abDeces, b.LitDateDeces(p), Trim(b.LitAnDeces(p)), b.LieuDeces(p),
                        o.detaille));
    } else {
        ligne(b.LieuNaiss(p));
    }
    if (style.mariageParents) {
        const std::uint32_t pere = b.LitPere(p), mere = b.LitMere(p);
        for (std::uint32_t m : PersonneExiste(b, pere) ? b.Mariages(pere) : std::vector<std::uint32_t>{})
            if (b.LitFemme(m) == mere || b.LitMari(m) == mere) {
                ligne(LigneMariage(b, m, o.abMariage, o.detaille));
                break;
            }
    }
    if (o.detaille) {
        const std::vector<std::uint32_t> mariages = b.Mariages(p);
        if (!mariages.empty()) {
            ligne("(" + std::to_string(mariages.size()) + ")");
            int rang = 0;
            for (std::uint32_t m : mariages) {
                ++rang;
                const std::uint32_t conjoint = b.LitMari(m) == p ? b.LitFemme(m) : b.LitMari(m);
                ligne(std::string(1, LettreMariage(rang)) + "-" +
                      (PersonneExiste(b, conjoint) ? b.NomComplet(conjoint) : std::string("?")));
                ligne(LigneMariage(b, m, "  " + o.abMariage, true));
            }
        }
    }
    if (!o.autreDonnee.empty()) ligne(b.ValeurRubriquePersonne(p, o.autreDonnee));
    return t;
}

// --- Placing ---------------------------------------------------------------------

namespace {

class Dessin {
  public:
    Dessin(Base& b, EcrivainGabarit& g, const PlanGraphe& p, const OptionsGraphe& o,
           const Metrique& m)
        : b_(b), g_(g), p_(p), o_(o) {
        const double pasN = static_cast<double>(p.pasNiveau);
        const double pasF = static_cast<double>(p.pasFeuille);
        // A box takes the room its leaf has on the wider side, at least the cell.
        const std::int64_t l = std::max(p.feuillesAsc, p.feuillesDesc);
        if (p.Vertical()) {
            demiL_ = static_cast<std::int64_t>(
                0.45 * std::max(pasF, static_cast<double>(p.geo.largeurUtile / l)));
            demiH_ = static_cast<std::int64_t>((p.detaille ? 0.4 : 0.3) * pasN);
        } else {
            demiL_ = static_cast<std::int64_t>(0.42 * pasN);
            demiH_ = static_cast<std::int64_t>(0.45 * pasF);
        }
        // A box is no taller than its text needs at the smallest font, or
        // a little more than its width: long empty boxes hide the links.
        const double ligne = m.Hauteur(Police{0.6 * o.policeMax, false});
        const double texte = (o.detaille ? 10 : 6) * ligne / 2;
        demiH_ = std::min(demiH_, static_cast<std::int64_t>(std::max(1.2 * demiL_, texte)));
        const Papier& papier = p.geo.papier;
        centre_ = p.Vertical() ? papier.largeur / 16 + p.geo.largeurUtile / 2
                               : papier.hauteur / 16 + p.geo.hauteurUtile / 2;
        sensAsc_ = p.direction == 0 || p.direction == 2 ? -1 : 1;
        racine_ = centre_;
    }

    // The box of the root person, in grey.
    void Racine(std::uint32_t personne) {
        StyleBoite s;
        s.genre = BoiteRacine;
        s.mariageParents = o_.detaille;
        Boite(centre_, p_.origineNiveau, s, personne);
    }

    // The nodes of one side; `couple`: the spouses stand at generation 0
    // under a node of no person, joined by the marriage line.
    void Cote(const ArbreGraphe& a, bool ascendants, bool couple) {
        const std::uint32_t n = a.Nombre();
        const std::uint32_t total = std::max<std::uint32_t>(a.NbFeuilles(), 1);
        const std::int64_t decalage = ascendants ? p_.decalageAsc : p_.decalageDesc;
        const std::int64_t marge = p_.Vertical() ? p_.geo.papier.largeur / 16
                                                 : p_.geo.papier.hauteur / 16;
        const std::int64_t utile = (p_.Vertical() ? p_.geo.largeurUtile : p_.geo.hauteurUtile) -
                                   2 * decalage;
        const int sens = ascendants ? sensAsc_ : -sensAsc_;
        // Leaves used before each node, and the next free leaf under it.
        std::vector<std::uint32_t> suivante(std::size_t{n} + 1, 0);
        std::vector<std::int64_t> position(std::size_t{n} + 1, centre_);
        std::vector<std::uint32_t> epoux;
        for (std::uint32_t i = 2; i <= n; ++i) {
            const std::uint32_t parent = a.Parent(i);
            const std::uint32_t f = std::max<std::uint32_t>(a.Feuilles(i), 1);
            const std::uint32_t debut = suivante[parent];
            suivante[parent] += f;
            suivante[i] = debut;
            position[i] = marge + decalage +
                          static_cast<std::int64_t>((debut + f / 2.0) / total *
                                                    static_cast<double>(utile));
            const std::int64_t niveau = p_.origineNiveau + sens * std::int64_t{a.Niveau(i)} *
                                                               p_.pasNiveau;
            const std::uint32_t personne = a.Personne(i);
            StyleBoite s;
            s.genre = personne == 0 ? BoiteVide : BoitePersonne;
            if (ascendants) {
                s.mariageParents = o_.detaille && a.Feuilles(i) != 0;
            } else if (parent != 0) {
                MarqueConjoint(a.Personne(parent), personne, s);
            }
            Boite(position[i], niveau, s, personne);
            if (couple && parent == 1) {
                epoux.push_back(i);
                continue;
            }
            // The link, from the middle of the box's side toward its
            // parent to the middle of the parent's side.
            const std::int64_t niveauParent = niveau - sens * p_.pasNiveau;
            const bool boiteParent = parent != 1 || !couple_;
            const std::int64_t demi = Demi();
            Trait(position[i], niveau - sens * demi, parent == 1 ? racine_ : position[parent],
                  niveauParent + (boiteParent ? sens * demi : 0), kStyleLien);
        }
        // The couple's children hang from the middle of the marriage line;
        // a spouse alone is the root itself.
        if (epoux.size() == 2) {
            const std::int64_t demi = p_.Vertical() ? demiL_ : demiH_;
            Trait(position[epoux[0]] + demi, p_.origineNiveau, position[epoux[1]] - demi,
                  p_.origineNiveau, kStyleMariage);
            racine_ = (position[epoux[0]] + position[epoux[1]]) / 2;
            couple_ = true;
        } else if (epoux.size() == 1) {
            racine_ = position[epoux[0]];
        }
    }

    void Titre(const std::string& titre, const Metrique& m) {
        if (titre.empty()) return;
        const Police police{o_.policeMax, true};
        const auto l = static_cast<std::int64_t>(m.Largeur(titre, police));
        const auto h = static_cast<std::int64_t>(m.Hauteur(police));
        const std::int64_t x = p_.geo.largeurTotale / 2;
        const std::int64_t y = p_.geo.papier.hauteur / 16 + h;
        StyleBoite s;
        s.genre = BoiteTitre;
        g_.BoiteGraphe(x, y, l + p_.geo.papier.largeur / 32, h / 2, s.Code(), 0);
        g_.TexteGraphe(titre, x, y - h / 2, kStyleTitre);
    }

  private:
    // Half the box along the generation axis.
    std::int64_t Demi() const { return p_.Vertical() ? demiH_ : demiL_; }

    void Boite(std::int64_t feuille, std::int64_t niveau, const StyleBoite& s,
               std::uint32_t personne) {
        if (p_.Vertical()) g_.BoiteGraphe(feuille, niveau, demiL_, demiH_, s.Code(), personne);
        else g_.BoiteGraphe(niveau, feuille, demiL_, demiH_, s.Code(), personne);
    }

    void Trait(std::int64_t f1, std::int64_t n1, std::int64_t f2, std::int64_t n2,
               std::int32_t style) {
        if (p_.Vertical()) g_.TraitGraphe(f1, n1, f2, n2, style);
        else g_.TraitGraphe(n1, f1, n2, f2, style);
    }

    // A child of a later marriage of the person of the line: the other
    // parent is marked with the marriage's letter.
    void MarqueConjoint(std::uint32_t parent, std::uint32_t enfant, StyleBoite& s) {
        if (!PersonneExiste(b_, parent) || !PersonneExiste(b_, enfant)) return;
        const std::uint32_t pere = b_.LitPere(enfant);
        const std::uint32_t autre = pere == parent ? b_.LitMere(enfant) : pere;
        if (autre == 0) return;
        int rang = 0;
        for (std::uint32_t m : b_.Mariages(parent)) {
            ++rang;
            if (b_.LitMari(m) == autre || b_.LitFemme(m) == autre) {
                if (rang >= 2) {
                    s.rangMariage = std::min(rang, 52);
                    s.cotePere = autre == pere;
                }
                return;
            }
        }
    }

    Base& b_;
    EcrivainGabarit& g_;
    const PlanGraphe& p_;
    const OptionsGraphe& o_;
    std::int64_t demiL_ = 0, demiH_ = 0, centre_ = 0;
    std::int64_t racine_ = 0; // where the first generation's links meet, on the leaf axis
    int sensAsc_ = -1;
    bool couple_ = false; // the root is a marriage line, not a box
};

FinGraphe Ecrit(Base& b, SystemeFichiers& fs, const std::string& chemin, const ArbreGraphe& asc,
                const ArbreGraphe& desc, std::uint32_t racine, const std::string& titre,
                const OptionsGraphe& o, const Metrique& m, PlanGraphe* plan) {
    const PlanGraphe p = CalculePlan(static_cast<int>(asc.NiveauMax()),
                                     static_cast<int>(desc.NiveauMax()), asc.NbFeuilles(),
                                     desc.NbFeuilles(), o);
    if (plan) *plan = p;
    EcrivainGabarit g(fs, chemin, p.geo.Entete());
    EcritCadre(g, p.geo);
    Dessin d(b, g, p, o, m);
    d.Titre(titre, m);
    if (racine != 0) d.Racine(racine);
    d.Cote(asc, true, racine == 0);
    if (o.arret && o.arret()) return FinGraphe::Arrete;
    d.Cote(desc, false, false);
    if (o.arret && o.arret()) return FinGraphe::Arrete;
    g.Termine();
    return FinGraphe::Termine;
}

OptionsArbre OptionsDe(const OptionsGraphe& o, int niveaux) {
    OptionsArbre r;
    r.niveaux = niveaux;
    r.sansImplexe = o.sansImplexe;
    r.arret = o.arret;
    return r;
}

} // namespace

FinGraphe GrapheIndividu(Base& b, SystemeFichiers& fs, const std::string& chemin,
                         std::uint32_t personne, int niveauxAsc, int niveauxDesc,
                         const OptionsGraphe& o, const Metrique& m, PlanGraphe* plan) {
    ArbreGraphe asc, desc;
    if (!ArbreAscendants(b, personne, OptionsDe(o, niveauxAsc), asc) ||
        !ArbreDescendants(b, personne, OptionsDe(o, niveauxDesc), false, desc))
        return FinGraphe::Arrete;
    const std::string titre = PersonneExiste(b, personne) ? b.NomComplet(personne) : std::string();
    return Ecrit(b, fs, chemin, asc, desc, personne, titre, o, m, plan);
}

FinGraphe GrapheCouple(Base& b, SystemeFichiers& fs, const std::string& chemin,
                       std::uint32_t mariage, int niveauxAsc, int niveauxDesc,
                       const OptionsGraphe& o, const Metrique& m, PlanGraphe* plan) {
    const std::uint32_t mari = b.LitMari(mariage), femme = b.LitFemme(mariage);
    ArbreGraphe asc, desc;
    const std::uint32_t souche = PersonneExiste(b, mari) ? mari : femme;
    if (!ArbreAscendantsCouple(b, mari, femme, OptionsDe(o, niveauxAsc), asc) ||
        !ArbreDescendants(b, souche, OptionsDe(o, niveauxDesc), true, desc))
        return FinGraphe::Arrete;
    std::string titre;
    for (std::uint32_t p : {mari, femme}) {
        if (!PersonneExiste(b, p)) continue;
        if (!titre.empty()) titre += " \xD7 ";
        titre += b.NomComplet(p);
    }
    return Ecrit(b, fs, chemin, asc, desc, 0, titre, o, m, plan);
}

} // namespace sylvane
