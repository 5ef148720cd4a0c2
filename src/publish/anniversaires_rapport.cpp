#include "publish/anniversaires_rapport.h"

#include "publish/contenu.h"
#include "publish/html.h"
#include "publish/html_texte.h"
#include "publish/rtf_rapports.h"
#include "publish/sortie.h"
#include "store/base.h"
#include "text/messages.h"
#include "text/mots.h"

#include <algorithm>
#include <vector>

namespace sylvane {
namespace {

// One group of rows of a day: births, deaths, marriages or dated rubrics.
struct Groupe {
    int titre; // message of its heading
    const std::vector<LigneAnniv>* lignes;
};

struct Jour {
    int jourDeLAn;
    ListesJour listes;
    std::string Cle() const { return "j" + std::to_string(jourDeLAn + 1); }
    // The recapitulation keeps the births, deaths and marriages, in this order.
    std::vector<Groupe> Groupes(bool recapitulation) const {
        std::vector<Groupe> g = {{754, &listes.naissances}, {755, &listes.deces},
                                 {642, &listes.mariages}};
        if (!recapitulation) g.push_back({4579, &listes.mots});
        return g;
    }
};

// The year and the place of a row.
std::string Complement(const LigneAnniv& l) {
    std::string t;
    for (const std::string& s : {l.annee, l.lieu})
        if (!Trim(s).empty()) t += (t.empty() ? "" : " ") + Trim(s);
    return t;
}

// A row in one line: the rubric's label, the name, the year and the place.
std::string TexteLigne(const LigneAnniv& l) {
    std::string t = l.rubrique.empty() ? "" : l.rubrique + " : ";
    t += Trim(l.nom);
    const std::string c = Complement(l);
    return c.empty() ? t : t + " " + c;
}

std::string Titre(const PeriodeAnniv& p) {
    std::string t = Message(953);
    if (!p.recapitulation)
        t += " : " + LibelleJourAnniv(p.premier) + " - " + LibelleJourAnniv(p.dernier);
    return t;
}

// Reads the days of the period that hold something; false on a stop.
template <class Arret>
bool Jours(Base& b, const Calendrier& c, const PeriodeAnniv& p, Arret arret, std::vector<Jour>& r) {
    for (int j = std::max(0, p.premier); j <= std::min(365, p.dernier); ++j) {
        if (c.Jour(j).empty()) continue;
        if (arret()) return false;
        Jour x{j, ListesDuJour(b, c, j)};
        bool vide = true;
        for (const Groupe& g : x.Groupes(p.recapitulation)) vide = vide && g.lignes->empty();
        if (!vide) r.push_back(std::move(x));
    }
    return true;
}

// The names of a day, for its row in the index of the calendar report.
std::string Noms(const Jour& j) {
    std::string r;
    for (const Groupe& g : j.Groupes(false))
        for (const LigneAnniv& l : *g.lignes) r += (r.empty() ? "" : ", ") + Trim(l.nom);
    return r;
}

// Why a person stands on a day: the heading of the group or the rubric's
// label, then the year and the place.
std::string Occasion(const Groupe& g, const LigneAnniv& l) {
    const std::string t = l.rubrique.empty() ? Message(g.titre) : l.rubrique;
    const std::string c = Complement(l);
    return c.empty() ? t : t + " : " + c;
}

// The persons whose sections a row brings: the person, or the spouses of a
// marriage.
std::vector<std::uint32_t> PersonnesLigne(Base& b, const LigneAnniv& l) {
    if (l.ref.tag.empty() || l.ref.tag[0] != 'M') return {l.personne};
    std::vector<std::uint32_t> r;
    for (std::uint32_t p : {b.LitMari(l.ref.numero), b.LitFemme(l.ref.numero)})
        if (p) r.push_back(p);
    return r;
}

// Each row of the days with the group it belongs to, in the order written.
template <class F>
void ChaqueLigne(const Jour& j, F f) {
    for (const Groupe& g : j.Groupes(false))
        for (const LigneAnniv& l : *g.lignes) f(g, l);
}

// --- HTML ----------------------------------------------------------------------

void TeteHTML(Base& b, SortiePage& s, const std::string& t) {
    s.Ligne("<HTML><HEAD>");
    s.Ligne("<META http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\">");
    if (!b.Params().auteur.empty())
        s.Ligne("<META NAME=\"AUTHOR\" CONTENT=\"" + EntiteHTML(b.Params().auteur) + "\">");
    std::string minuscules = t;
    for (char& c : minuscules)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    s.Ligne("<META NAME=\"KEYWORDS\" CONTENT=\"genealogie sylvane " + EntiteHTML(minuscules) + "\">");
    s.Ligne("<TITLE>" + EntiteHTML(t) + "</TITLE>");
    s.Ligne("<LINK REL=\"stylesheet\" TYPE=\"Text/css\" HREF=\"Sylvane.css\">");
    s.Ligne("</HEAD>");
    s.Ligne("<BODY>");
}

const std::string kTableDefaut = "<TABLE WIDTH=\"100%\" class=\"defaut\">";

void RecapitulationHTML(SortiePage& s, const std::vector<Jour>& jours) {
    s.Ligne(kTableDefaut);
    for (const Jour& j : jours) {
        s.Ligne("<TH><STRONG>" + EntiteHTML(LibelleJourAnniv(j.jourDeLAn)) + "</STRONG></TH><TR>");
        for (const Groupe& g : j.Groupes(true))
            for (const LigneAnniv& l : *g.lignes)
                s.Ligne("<TH></TH><TD>" + EntiteHTML(TexteLigne(l)) + "</TD><TR>");
        s.Ligne("</TABLE><HR>");
        s.Ligne(kTableDefaut);
    }
    s.Ligne("</TABLE>");
}

// The calendar report: the index of the days, then each day with the
// sections of the site's one-page reports. False on a stop.
bool CalendrierHTML(Base& b, SystemeFichiers& fs, const Interaction& io, SortiePage& s,
                    const std::vector<Jour>& jours, const std::string& titre) {
    s.Ligne("<H2>" + EntiteHTML(titre) + "</H2>");
    s.Ligne(kTableDefaut);
    for (const Jour& j : jours)
        s.Ligne("<TR><TH><A HREF=\"#" + j.Cle() + "\">" + EntiteHTML(LibelleJourAnniv(j.jourDeLAn)) +
                "</A></TH><TD>" + EntiteHTML(Noms(j)) + "</TD><TR>");
    s.Ligne("</TABLE>");
    s.Ligne("<HR>");
    std::vector<std::uint32_t> personnes;
    for (const Jour& j : jours)
        ChaqueLigne(j, [&](const Groupe&, const LigneAnniv& l) {
            for (std::uint32_t p : PersonnesLigne(b, l)) personnes.push_back(p);
        });
    EcrivainHTML w(b, fs, io);
    w.OuvrePage(s, personnes);
    for (const Jour& j : jours) {
        if (io.Arrete()) return false;
        // The heading as the earlier pages wrote it, its anchor left open.
        s.Ligne("<H2><A NAME=\"" + j.Cle() + "\">" + EntiteHTML(LibelleJourAnniv(j.jourDeLAn)) + "</H2>");
        ChaqueLigne(j, [&](const Groupe& g, const LigneAnniv& l) {
            for (std::uint32_t p : PersonnesLigne(b, l)) w.SectionPersonne(p, EntiteHTML(Occasion(g, l)));
        });
    }
    w.FermePage();
    return true;
}

// --- RTF -------------------------------------------------------------------------

bool EcritRTF(Base& b, DocumentRTF& d, const std::vector<Jour>& jours, const PeriodeAnniv& p,
              const std::string& titre, const Interaction& io) {
    d.Debut(titre, 745);
    const std::string para = "\\pard \\li0\\sl0\\tx0\\tx424\\tx1132 ";
    auto jour = [&](const Jour& j) {
        d.Ligne(para + "{\\plain \\b\\ul\\f0\\fs20 " + EchappeRTF(LibelleJourAnniv(j.jourDeLAn)) +
                " \\par }");
    };
    if (p.recapitulation) {
        for (const Jour& j : jours) {
            jour(j);
            for (const Groupe& g : j.Groupes(true))
                for (const LigneAnniv& l : *g.lignes)
                    d.Ligne(para + "{\\plain \\f0\\fs16 \\tab \\tab " + EchappeRTF(TexteLigne(l)) + " \\par }");
        }
        return d.Valide();
    }
    for (const Jour& j : jours)
        d.Ligne(para + "{\\plain \\b\\f0\\fs16 " + EchappeRTF(LibelleJourAnniv(j.jourDeLAn)) +
                "}{\\plain \\f0\\fs16 \\tab " + EchappeRTF(Noms(j)) + " \\par }");
    d.Ligne("\\page ");
    for (const Jour& j : jours) {
        if (io.Arrete()) return false;
        jour(j);
        ChaqueLigne(j, [&](const Groupe& g, const LigneAnniv& l) {
            for (std::uint32_t x : PersonnesLigne(b, l)) d.SectionPersonne(x, "#" + Occasion(g, l));
        });
    }
    return d.Valide();
}

} // namespace

std::string LibelleJourAnniv(int jourDeLAn) {
    const auto [j, m] = Calendrier::JourMois(jourDeLAn);
    return std::to_string(j) + " " + Message(730 + m - 1);
}

bool EcritAnniversaires(Base& b, SystemeFichiers& fs, const Calendrier& c, const PeriodeAnniv& p,
                        DestinationAnniv d, const std::string& chemin, const Interaction& io,
                        const std::string& banniere) {
    const std::string titre = Titre(p);
    io.Montre(titre, "");
    std::vector<Jour> jours;
    if (!Jours(b, c, p, [&] { return io.Arrete(); }, jours)) return false;
    if (d == DestinationAnniv::RTF) {
        OptionsRTF o;
        o.banniere = banniere;
        DocumentRTF r(b, fs, io, chemin, o);
        return EcritRTF(b, r, jours, p, titre, io);
    }
    SortiePage s(fs, chemin);
    TeteHTML(b, s, p.recapitulation ? "Index" : titre);
    if (p.recapitulation) RecapitulationHTML(s, jours);
    else if (!CalendrierHTML(b, fs, io, s, jours, titre)) return false;
    s.Ligne("<NOTE>");
    s.Ligne("<CENTER>" + EntiteHTML(banniere) + "<BR>");
    s.Ligne(EntiteHTML(Message(570)) + " " + DateDuJour());
    s.Ligne("</NOTE>");
    s.Ligne("</BODY>");
    s.Ligne("</HTML>");
    const std::size_t barre = chemin.find_last_of("/\\");
    SortiePage css(fs, (barre == std::string::npos ? "" : chemin.substr(0, barre + 1)) + "Sylvane.css");
    css.Texte(FeuilleStyle(b.Params()));
    css.Valide();
    s.Valide();
    return true;
}

FinRapport ImprimeAnniversaires(Base& b, Surface& s, const Calendrier& c, const PeriodeAnniv& p,
                                const OptionsImpression& o) {
    std::vector<Jour> jours;
    auto arret = [&] { return o.arret && o.arret(); };
    if (!Jours(b, c, p, arret, jours)) return FinRapport::Arrete;
    if (jours.empty()) return FinRapport::Vide;
    Imprimante imp(b, s, o);
    const std::string titre = Titre(p);
    if (o.progres) o.progres(Message(745), titre);
    imp.NouvellePage(titre);
    using P = Imprimante::Paragraphe;
    const double bas = static_cast<double>(o.papier.hauteur) * (1 - 1.0 / 30);
    const double ligne = s.Mesure().Hauteur(Police{8, false}) * 1.25;
    for (const Jour& j : jours) {
        if (arret()) {
            imp.FinImpression();
            return FinRapport::Arrete;
        }
        const P tete{{Morceau{LibelleJourAnniv(j.jourDeLAn), true, true, 10}}, 0, true, true};
        if (p.recapitulation) {
            std::vector<P> ps{tete};
            for (const Groupe& g : j.Groupes(true))
                for (const LigneAnniv& l : *g.lignes)
                    ps.push_back(P{{Morceau{TexteLigne(l), false, false, 8}}, 720, false, false});
            imp.Imprime(ps);
            continue;
        }
        // The day's heading stands on the page of its first sheet.
        if (imp.YCourant() + 8 * ligne > bas) imp.NouvellePage(titre);
        imp.Imprime({tete});
        ChaqueLigne(j, [&](const Groupe& g, const LigneAnniv& l) {
            const std::string entete = "#" + Occasion(g, l);
            if (!l.ref.tag.empty() && l.ref.tag[0] == 'M') imp.ImprimeCouple(l.ref.numero, entete);
            else imp.ImprimeFiche(l.personne, entete);
        });
    }
    if (!p.recapitulation) imp.ImprimeAnnexes();
    imp.FinImpression();
    return FinRapport::Termine;
}

FinRapport ImprimeTable(Base& b, Surface& s, const std::string& titre,
                        const std::vector<std::string>& entetes,
                        const std::vector<std::vector<std::string>>& lignes,
                        const OptionsImpression& o) {
    if (lignes.empty()) return FinRapport::Vide;
    const Metrique& m = s.Mesure();
    Police normale{8, false}, grasse{8, true};
    constexpr double kEcart = 240; // between two columns
    std::vector<double> largeurs;
    auto mesure = [&](const std::vector<std::string>& l, const Police& p) {
        if (largeurs.size() < l.size()) largeurs.resize(l.size(), 0);
        for (std::size_t i = 0; i < l.size(); ++i) largeurs[i] = std::max(largeurs[i], m.Largeur(l[i], p));
    };
    const double gauche = static_cast<double>(o.papier.largeur) / 20;
    // A table wider than the page is printed smaller, down to 5 points.
    for (;;) {
        largeurs.assign(entetes.size(), 0);
        mesure(entetes, grasse);
        for (const auto& l : lignes) mesure(l, normale);
        double total = 0;
        for (double l : largeurs) total += l + kEcart;
        if (total - kEcart <= static_cast<double>(o.papier.largeur) - 2 * gauche || normale.points <= 5) break;
        normale.points = grasse.points = normale.points - 0.5;
    }
    const double bas = static_cast<double>(o.papier.hauteur) * (1 - 1.0 / 30);
    const double pas = m.Hauteur(normale) * 1.25;
    Imprimante imp(b, s, o);
    double y = 0;
    auto ligne = [&](const std::vector<std::string>& l, const Police& p) {
        double x = gauche;
        // The first column (the label) to the left, the figures to the right.
        for (std::size_t i = 0; i < l.size(); ++i) {
            s.Texte(i == 0 ? x : x + largeurs[i] - m.Largeur(l[i], p), y, l[i], p, 0);
            x += largeurs[i] + kEcart;
        }
        y += pas;
    };
    auto page = [&] {
        imp.NouvellePage(titre);
        y = imp.YCourant();
        const bool entete = std::any_of(entetes.begin(), entetes.end(),
                                        [](const std::string& e) { return !e.empty(); });
        if (entete) ligne(entetes, grasse);
    };
    page();
    for (const auto& l : lignes) {
        if (o.arret && o.arret()) {
            imp.FinImpression();
            return FinRapport::Arrete;
        }
        if (y + pas > bas) page();
        ligne(l, normale);
    }
    imp.FinImpression();
    return FinRapport::Termine;
}

} // namespace sylvane
