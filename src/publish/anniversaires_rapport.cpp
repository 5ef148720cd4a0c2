#include "publish/anniversaires_rapport.h"

#include "publish/contenu.h"
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

// --- HTML ----------------------------------------------------------------------

const char* ClasseSexe(Base& b, const LigneAnniv& l) {
    if (l.ref.tag[0] == 'M') return nullptr;
    const std::string s = b.LitSexe(l.personne);
    return s == "H" ? "Homme" : s == "F" ? "Femme" : "Indetermine";
}

void EcritHTML(Base& b, SortiePage& s, const std::vector<Jour>& jours, const PeriodeAnniv& p,
               const std::string& titre, const std::string& banniere) {
    const std::string table = "<TABLE WIDTH=\"100%\" class=\"defaut\">";
    s.Ligne("<HTML><HEAD>");
    s.Ligne("<META http-equiv=\"Content-Type\" content=\"text/html; charset=iso-8859-1\">");
    if (!b.Params().auteur.empty())
        s.Ligne("<META NAME=\"AUTHOR\" CONTENT=\"" + EntiteHTML(b.Params().auteur) + "\">");
    const std::string t = p.recapitulation ? "Index" : titre;
    std::string minuscules = t;
    for (char& c : minuscules)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    s.Ligne("<META NAME=\"KEYWORDS\" CONTENT=\"genealogie sylvane " + EntiteHTML(minuscules) + "\">");
    s.Ligne("<TITLE>" + EntiteHTML(t) + "</TITLE>");
    s.Ligne("<LINK REL=\"stylesheet\" TYPE=\"Text/css\" HREF=\"Sylvane.css\">");
    s.Ligne("</HEAD>");
    s.Ligne("<BODY>");
    if (p.recapitulation) {
        s.Ligne(table);
        for (const Jour& j : jours) {
            s.Ligne("<TH><STRONG>" + EntiteHTML(LibelleJourAnniv(j.jourDeLAn)) + "</STRONG></TH><TR>");
            for (const Groupe& g : j.Groupes(true))
                for (const LigneAnniv& l : *g.lignes)
                    s.Ligne("<TH></TH><TD>" + EntiteHTML(TexteLigne(l)) + "</TD><TR>");
            s.Ligne("</TABLE><HR>");
            s.Ligne(table);
        }
        s.Ligne("</TABLE>");
    } else {
        s.Ligne("<H2>" + EntiteHTML(titre) + "</H2>");
        s.Ligne(table);
        for (const Jour& j : jours)
            s.Ligne("<TR><TH><A HREF=\"#" + j.Cle() + "\">" + EntiteHTML(LibelleJourAnniv(j.jourDeLAn)) +
                    "</A></TH><TD>" + EntiteHTML(Noms(j)) + "</TD><TR>");
        s.Ligne("</TABLE>");
        s.Ligne("<HR>");
        for (const Jour& j : jours) {
            s.Ligne("<H2><A NAME=\"" + j.Cle() + "\">" + EntiteHTML(LibelleJourAnniv(j.jourDeLAn)) +
                    "</A></H2>");
            for (const Groupe& g : j.Groupes(false)) {
                if (g.lignes->empty()) continue;
                s.Ligne("<H4>" + EntiteHTML(Message(g.titre)) + "</H4>");
                s.Ligne("<TABLE BORDER=1 WIDTH=\"100%\" class=\"defaut\">");
                for (const LigneAnniv& l : *g.lignes) {
                    const char* classe = ClasseSexe(b, l);
                    s.Ligne(std::string(classe ? "<TR CLASS=" + std::string(classe) + ">" : "<TR>") +
                            "<TH>" + EntiteHTML(Trim(l.nom)) + "</TH><TD>" + EntiteHTML(Complement(l)) +
                            (l.rubrique.empty() ? "" : " (" + EntiteHTML(l.rubrique) + ")") + "</TD></TR>");
                }
                s.Ligne("</TABLE>");
            }
        }
    }
    s.Ligne("<NOTE>");
    s.Ligne("<CENTER>" + EntiteHTML(banniere) + "<BR>");
    s.Ligne(EntiteHTML(Message(570)) + " " + DateDuJour());
    s.Ligne("</NOTE>");
    s.Ligne("</BODY>");
    s.Ligne("</HTML>");
}

// --- RTF -------------------------------------------------------------------------

void EcritRTF(SortiePage& s, const std::vector<Jour>& jours, const PeriodeAnniv& p,
              const std::string& titre, const std::string& banniere) {
    const OptionsRTF o;
    s.Ligne("{\\rtf1\\ansi \\deff0{\\fonttbl");
    s.Ligne("{\\f0\\froman " + EchappeRTF(o.police) + ";}}{\\colortbl \\red0\\green0\\blue0;}");
    s.Ligne("{\\stylesheet");
    s.Ligne("{\\s243\\tqc\\tx4252\\tqr\\tx8504 \\f0\\fs16 \\sbasedon0\\snext243 header;}"
            "{\\s242\\brdrt\\brdrs\\brdrw15\\brsp20 \\tqc\\tx4252\\tqr\\tx8504 \\f0\\fs16 "
            "\\sbasedon0\\snext242 footer;}{\\li284 \\f0\\fs16 \\snext0 Normal;}}");
    s.Ligne("{\\info{\\version2}{\\edmins28}{\\nofpages2}}\\gutter0\\deftab708\\widowctrl\\ftnbj"
            "\\hyphhotz425 \\sectd \\linex0\\headery709\\footery709\\colsx709\\endnhere ");
    s.Ligne("\\paperw11905\\paperh16837\\margt708\\margb708\\widowctrl\\hyphhotz291\\ftnbj"
            "\\ftnrestart \\pard \\li283\\sl0\\tx0\\tx0\\tx424\\tx1132\\tx1840\\tx2548\\tx3256"
            "\\tx3964\\tx4672\\tx5380\\tx6088\\tx6796\\tx7504\\tx8212  ");
    s.Ligne("{\\plain }\\sectd \\headery708\\footery1188\\endnhere");
    s.Ligne("{\\header \\pard \\s2\\s10\\tx0\\tqc\\tx4252\\tqr\\tx8504");
    s.Ligne("{\\plain \\f0\\fs14 " + EchappeRTF(banniere) + " \\tab \\tab ");
    s.Ligne("{\\field{\\*\\fldinst DATE \\\\@ \"d MMMM yyyy\"}{\\fldrslt }} \\par }");
    s.Ligne("\\pard \\qc\\box\\brdrs\\brdrw15\\brsp20 ");
    s.Ligne("{\\b\\f0\\fs20 " + EchappeRTF(titre) + " }");
    s.Ligne("\\par }");
    s.Ligne("{\\footer \\pard \\s2\\sl0\\tx0\\tqc\\tx4252\\tqr\\tx8504 \\brdrt\\brdrs\\brdrw15 "
            "{\\plain \\tab \\f0\\fs16 Page \\chpgn \\par }}");
    const std::string para = "\\pard \\li0\\sl0\\tx0\\tx424\\tx1132 ";
    if (!p.recapitulation) {
        for (const Jour& j : jours)
            s.Ligne(para + "{\\plain \\b\\f0\\fs16 " + EchappeRTF(LibelleJourAnniv(j.jourDeLAn)) +
                    "}{\\plain \\f0\\fs16 \\tab " + EchappeRTF(Noms(j)) + " \\par }");
        s.Ligne("\\page ");
    }
    for (const Jour& j : jours) {
        s.Ligne(para + "{\\plain \\b\\ul\\f0\\fs20 " + EchappeRTF(LibelleJourAnniv(j.jourDeLAn)) +
                " \\par }");
        for (const Groupe& g : j.Groupes(p.recapitulation)) {
            if (g.lignes->empty()) continue;
            if (!p.recapitulation)
                s.Ligne(para + "{\\plain \\b\\f0\\fs16 \\tab " + EchappeRTF(Message(g.titre)) + " \\par }");
            for (const LigneAnniv& l : *g.lignes)
                s.Ligne(para + "{\\plain \\f0\\fs16 \\tab \\tab " + EchappeRTF(TexteLigne(l)) + " \\par }");
        }
    }
    s.Ligne("}");
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
    SortiePage s(fs, chemin);
    if (d == DestinationAnniv::RTF) {
        EcritRTF(s, jours, p, titre, banniere);
    } else {
        EcritHTML(b, s, jours, p, titre, banniere);
        const std::size_t barre = chemin.find_last_of("/\\");
        SortiePage css(fs, (barre == std::string::npos ? "" : chemin.substr(0, barre + 1)) + "Sylvane.css");
        css.Texte(FeuilleStyle(b.Params()));
        css.Valide();
    }
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
    for (const Jour& j : jours) {
        if (arret()) {
            imp.FinImpression();
            return FinRapport::Arrete;
        }
        std::vector<P> ps;
        ps.push_back(P{{Morceau{LibelleJourAnniv(j.jourDeLAn), true, true, 10}}, 0, true, true});
        for (const Groupe& g : j.Groupes(p.recapitulation)) {
            if (g.lignes->empty()) continue;
            if (!p.recapitulation)
                ps.push_back(P{{Morceau{Message(g.titre), true, false, 8}}, 360, true, false});
            for (const LigneAnniv& l : *g.lignes)
                ps.push_back(P{{Morceau{TexteLigne(l), false, false, 8}}, 720, false, false});
        }
        imp.Imprime(ps);
    }
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
