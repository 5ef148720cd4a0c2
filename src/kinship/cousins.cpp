// The cousinage analysis: the marks of the two sets of ascendants, the
// walk that finds where the lines meet, and what is written of it.
#include "kinship/cousins.h"

#include "kinship/parente.h"
#include "publish/html_texte.h"
#include "text/mots.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace sylvane {

bool Cousinages::Analyse(const std::vector<Selectionne>& selection, int generations,
                         const Interaction& io) {
    entrees_.clear();
    index_.clear();
    marques_.assign(b_.Tete().maxPersonne + 1, ' ');
    restant_.assign(marques_.size(), 0);
    const int niveau = std::clamp(generations, 1, 254);
    const bool sujets = std::any_of(selection.begin(), selection.end(),
                                    [](const Selectionne& s) { return s.sujet; });
    for (const Selectionne& s : selection)
        if (s.sujet || !sujets) MarqueAscendants(s.personne, niveau, '1');
    for (const Selectionne& s : selection)
        if (sujets && !s.sujet) MarqueAscendants(s.personne, niveau, '2');
    io.Montre({}, "Analyse Ascendance");
    for (const Selectionne& s : selection) {
        if (io.Arrete()) return false;
        io.Montre({}, b_.NomComplet(s.personne));
        CherchePassage(s.personne, niveau, s.personne);
        for (std::uint32_t p : vus_) restant_[p] = 0;
        vus_.clear();
    }
    return true;
}

// A person already marked "1" is not walked again, nor one marked "2"
// for the second set: each person is walked at most twice.
void Cousinages::MarqueAscendants(std::uint32_t personne, int niveau, char marque) {
    std::vector<std::pair<std::uint32_t, int>> pile{{personne, niveau}};
    while (!pile.empty()) {
        auto [p, n] = pile.back();
        pile.pop_back();
        if (p == 0 || p >= marques_.size()) continue;
        char& m = marques_[p];
        if (m == '1' || (m == '2' && marque == '2')) continue;
        m = marque;
        if (n > 1) {
            if (const std::uint32_t mere = b_.LitMere(p)) pile.push_back({mere, n - 1});
            if (const std::uint32_t pere = b_.LitPere(p)) pile.push_back({pere, n - 1});
        }
    }
}

bool Cousinages::Rencontre(std::uint32_t parent, std::uint32_t autre, bool pere, bool* seul) {
    *seul = false;
    if (MarqueDe(parent) != '1') return false;
    int marques = 0;
    bool un = false;
    int enfants = 0;
    for (int i = 1; i <= kEnfantsParente; ++i) {
        const std::uint32_t e = b_.EnfantNo(parent, i);
        if (e == 0) break;
        ++enfants;
        const char m = MarqueDe(e);
        if (m != '1' && m != '2') continue;
        ++marques;
        un = un || m == '1';
        if ((pere ? b_.LitMere(e) : b_.LitPere(e)) != autre) *seul = true;
    }
    if (enfants == 0) *seul = true;
    return marques >= 2 && un;
}

std::size_t Cousinages::Entree(std::uint32_t mari, std::uint32_t femme) {
    const std::uint64_t cle = std::uint64_t{mari} << 32 | femme;
    auto it = std::lower_bound(index_.begin(), index_.end(), std::pair{cle, std::size_t{0}});
    if (it != index_.end() && it->first == cle) return it->second;
    EntreeCousinage e;
    e.mari = mari;
    e.femme = femme;
    entrees_.push_back(e);
    index_.insert(it, {cle, entrees_.size() - 1});
    return entrees_.size() - 1;
}

// From a person up: at its parents, the entry of the couple (or of each
// parent that stands alone) gets the selected person `origine` and the
// child the line came through. The effects of a visit depend only on the
// person, so a person met again with no more generations left is not
// walked twice: implex costs nothing and a parent loop ends.
void Cousinages::CherchePassage(std::uint32_t personne, int niveau, std::uint32_t origine) {
    std::vector<std::pair<std::uint32_t, int>> pile{{personne, niveau}};
    while (!pile.empty()) {
        auto [p, n] = pile.back();
        pile.pop_back();
        if (p == 0 || p >= restant_.size() || restant_[p] >= n) continue;
        if (restant_[p] == 0) vus_.push_back(p);
        restant_[p] = static_cast<std::uint8_t>(std::min(n, 255));
        const std::uint32_t f = b_.LitPere(p), m = b_.LitMere(p);
        bool seulF = false, seulM = false;
        const bool rf = f && Rencontre(f, m, true, &seulF);
        const bool rm = m && Rencontre(m, f, false, &seulM);
        std::vector<std::size_t> trouvees;
        if (rf && rm && !seulF && !seulM) {
            trouvees.push_back(Entree(f, m));
        } else {
            if (rf) trouvees.push_back(Entree(f, 0));
            if (rm) trouvees.push_back(Entree(0, m));
        }
        for (std::size_t i : trouvees) {
            EntreeCousinage& e = entrees_[i];
            if (std::find(e.personnes.begin(), e.personnes.end(), origine) == e.personnes.end())
                e.personnes.push_back(origine);
            if (std::find(e.suites.begin(), e.suites.end(), p) == e.suites.end())
                for (std::uint32_t& s : e.suites)
                    if (s == 0) {
                        s = p;
                        break;
                    }
        }
        if (n > 1) {
            if (m) pile.push_back({m, n - 1});
            if (f) pile.push_back({f, n - 1});
        }
    }
}

std::vector<LigneCousinage> Cousinages::Lignes() {
    std::vector<LigneCousinage> lignes;
    for (const EntreeCousinage& e : entrees_) {
        if (e.personnes.size() < 2) continue;
        LigneCousinage l;
        l.mari = e.mari;
        l.femme = e.femme;
        l.personnes = e.personnes;
        l.nombre = e.personnes.size();
        l.cle = std::to_string(e.mari) + "#" + std::to_string(e.femme) + "#";
        for (std::uint32_t p : e.personnes) l.cle += std::to_string(p) + "#";
        if (e.mari && e.femme) {
            const std::vector<std::uint32_t> mariages = b_.Mariages(e.mari);
            for (std::size_t i = 0; i < mariages.size(); ++i)
                if (b_.LitFemme(mariages[i]) == e.femme || b_.LitMari(mariages[i]) == e.femme) {
                    l.mariage = mariages[i];
                    l.rangMariage = static_cast<int>(i + 1);
                    break;
                }
        }
        for (std::uint32_t p : {e.mari, e.femme})
            if (p) l.couple.push_back(b_.NomDates(p));
        if (l.mariage) {
            l.couple.push_back(b_.LigneMariage(l.mariage) + " (" + std::to_string(l.rangMariage) +
                               ")");
            std::string lieu = b_.LieuMariage(l.mariage);
            std::replace(lieu.begin(), lieu.end(), '?', ' ');
            lieu = CleMot(Trim(lieu));
            for (char& c : lieu) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            l.lieu = lieu;
        }
        for (std::uint32_t s : e.suites)
            if (s) l.enfants.push_back("* " + b_.NomComplet(s));
        lignes.push_back(std::move(l));
    }
    std::stable_sort(lignes.begin(), lignes.end(),
                     [](const LigneCousinage& a, const LigneCousinage& b) { return a.lieu < b.lieu; });
    return lignes;
}

namespace {

std::string Joint(const std::vector<std::string>& v, const std::string& sep) {
    std::string r;
    for (std::size_t i = 0; i < v.size(); ++i) r += (i ? sep : "") + v[i];
    return r;
}

} // namespace

std::string TexteCousinage(const std::vector<LigneCousinage>& lignes) {
    std::string r;
    for (const LigneCousinage& l : lignes)
        r += l.cle + ";" + Joint(l.couple, "<br>") + ";<ul><li>" + Joint(l.enfants, "</li><li>") +
             "</li></ul>;" + std::to_string(l.nombre) + ";" + l.lieu + "\r\n";
    return r;
}

std::string TexteLienCousinage(const std::vector<LigneCousinage>& lignes) {
    std::string r;
    for (const LigneCousinage& l : lignes)
        for (std::uint32_t p : l.personnes)
            r += std::to_string(p) + ";" + std::to_string(l.rangMariage) + "\r\n";
    return r;
}

void EcritFichiersCousinage(SystemeFichiers& fs, const std::string& dossier,
                            const std::vector<LigneCousinage>& lignes) {
    EcritureAtomique a(fs, dossier + "Cousinage.txt");
    a.Sortie().ecrire(0, TexteCousinage(lignes));
    EcritureAtomique b(fs, dossier + "LienCousinage.txt");
    b.Sortie().ecrire(0, TexteLienCousinage(lignes));
    a.Valide();
    b.Valide();
}

std::string PageCousinages(Base& b, const std::string& nom,
                           const std::vector<LigneCousinage>& lignes,
                           const std::vector<std::uint32_t>& sujets, const std::string& suite) {
    std::string r = EnteteHTMLSimple("Cousinages " + nom);
    r += "<H2>" + EntiteHTML(nom) + "</H2>\r\n";
    r += "<TABLE BORDER=1 WIDTH=\"100%\" COLS=4 class=\"defaut\">\r\n";
    for (const LigneCousinage& l : lignes) {
        std::vector<std::string> couple;
        for (const std::string& c : l.couple) couple.push_back(EntiteHTML(c));
        r += "<TR><TH>" + Joint(couple, "<BR>") + "</TH><TD>" + EntiteHTML(l.lieu) +
             "</TD><TD><UL>";
        for (const std::string& e : l.enfants) r += "<LI>" + EntiteHTML(e) + "</LI>";
        r += "</UL></TD><TD><UL>";
        for (std::uint32_t p : l.personnes) {
            const bool sujet = std::find(sujets.begin(), sujets.end(), p) != sujets.end();
            r += "<LI>" + std::string(sujet ? "* " : "") + EntiteHTML(b.NomComplet(p)) + "</LI>";
        }
        r += "</UL></TD></TR>\r\n";
    }
    return r + "</TABLE>\r\n" + suite + "</BODY></HTML>\r\n";
}

namespace {

void EcritFichier(SystemeFichiers& fs, const std::string& chemin, const std::string& texte) {
    EcritureAtomique f(fs, chemin);
    f.Sortie().ecrire(0, texte);
    f.Valide();
}

bool Contient(const std::vector<std::uint32_t>& v, std::uint32_t p) {
    return std::find(v.begin(), v.end(), p) != v.end();
}

// A page's file names stay well below what a file system takes.
constexpr std::size_t kNomPageMax = 120;

} // namespace

std::string NomPageCousinages(Base& b, std::uint32_t personne, std::vector<std::string>& pris) {
    std::string nom = Trim(b.NomComplet(personne));
    if (nom.size() > kNomPageMax) nom.resize(kNomPageMax);
    for (char& c : nom) {
        const auto u = static_cast<unsigned char>(c);
        if (c == ' ')
            c = '.';
        else if (u < 32 || u == 127 ||
                 std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos)
            c = '_';
    }
    if (nom.find_first_not_of('.') == std::string::npos) nom = std::to_string(personne);
    if (std::find(pris.begin(), pris.end(), CleMot(nom)) != pris.end())
        nom += "." + std::to_string(personne);
    pris.push_back(CleMot(nom));
    return nom + ".htm";
}

std::optional<std::vector<PageCousinage>>
CousinagesEnPages(Base& b, SystemeFichiers& fs, const std::string& dossier,
                  const std::vector<std::uint32_t>& selection, int generations,
                  const Interaction& io) {
    std::vector<PageCousinage> pages;
    std::vector<std::string> pris;
    EcritFeuilleStyle(b, fs, dossier);
    Interaction muet;
    muet.arret = io.arret;
    Cousinages c(b);
    for (std::uint32_t p : selection) {
        if (io.Arrete()) return std::nullopt;
        const std::string nom = b.NomComplet(p);
        io.Montre({}, "Analyse Ascendance " + nom);
        std::vector<Selectionne> sel;
        for (std::uint32_t q : selection)
            sel.push_back({q, q == p});
        if (!c.Analyse(sel, generations, muet)) return std::nullopt;
        const std::vector<LigneCousinage> lignes = c.Lignes();
        PageCousinage page{p, NomPageCousinages(b, p, pris), lignes.size()};
        EcritFichier(fs, dossier + page.fichier, PageCousinages(b, nom, lignes, {p}));
        pages.push_back(std::move(page));
    }
    return pages;
}

std::vector<PageCousinage> TableauxCousinages(Base& b, SystemeFichiers& fs,
                                              const std::string& dossier,
                                              const std::vector<LigneCousinage>& lignes,
                                              const std::vector<std::uint32_t>& personnes,
                                              const std::vector<std::uint32_t>& sujets) {
    std::vector<PageCousinage> pages;
    // A person named "Tableau" must not take the ranking's place.
    std::vector<std::string> pris{CleMot("Tableau")};
    EcritFeuilleStyle(b, fs, dossier);
    for (std::uint32_t p : personnes) {
        const std::string nom = b.NomComplet(p);
        std::vector<LigneCousinage> siennes;
        for (const LigneCousinage& l : lignes)
            if (Contient(l.personnes, p)) siennes.push_back(l);
        // Under the rows: how many of them each other person shares.
        std::string resume = "<H3>" + std::to_string(siennes.size()) + " Cousinages <BR>" +
                             EntiteHTML(nom) + "</H3>\r\n" +
                             "<CENTER><TABLE BORDER=1 WIDTH=\"70%\" COLS=2 class=\"defaut\">\r\n";
        for (std::uint32_t q : personnes) {
            if (q == p) continue;
            const auto n =
                std::count_if(siennes.begin(), siennes.end(),
                              [q](const LigneCousinage& l) { return Contient(l.personnes, q); });
            if (n)
                resume += "<TR><TD>" + EntiteHTML(b.NomComplet(q)) + "</TD><TH>" +
                          std::to_string(n) + "</TH></TR>\r\n";
        }
        resume += "</TABLE></CENTER>\r\n";
        PageCousinage page{p, NomPageCousinages(b, p, pris), siennes.size()};
        EcritFichier(fs, dossier + page.fichier, PageCousinages(b, nom, siennes, sujets, resume));
        pages.push_back(std::move(page));
    }

    // The ranking: the most cousinages first, equal counts sharing a rank.
    std::vector<PageCousinage> rangees = pages;
    std::stable_sort(
        rangees.begin(), rangees.end(),
        [](const PageCousinage& x, const PageCousinage& y) { return x.cousinages > y.cousinages; });
    const std::string titre = "Classement des Cousinages";
    std::string htm = EnteteHTMLSimple(titre) + "<H2>" + titre +
                      "</H2>\r\n<TABLE BORDER=1 WIDTH=\"100%\" COLS=4 class=\"defaut\">\r\n";
    std::string txt;
    std::size_t rang = 0;
    for (std::size_t i = 0; i < rangees.size(); ++i) {
        const PageCousinage& pg = rangees[i];
        if (i == 0 || pg.cousinages != rangees[i - 1].cousinages) rang = i + 1;
        const std::string tete = b.LitNom(pg.personne) + " (" + b.LitPrenom(pg.personne) + ")";
        const std::string nom = b.NomComplet(pg.personne);
        htm += "<TR><TH>" + EntiteHTML(tete) + "</TH><TD><A HREF=\"" + EntiteHTML(pg.fichier) +
               "\">" + EntiteHTML(nom) + "</A></TD><TD><CENTER>" + std::to_string(pg.cousinages) +
               "</CENTER></TD><TD>" + std::to_string(rang) + "</TD></TR>\r\n";
        txt += tete + ";" + pg.fichier + ";" + nom + ";" + std::to_string(pg.cousinages) + ";" +
               std::to_string(rang) + "\r\n";
    }
    htm += "</TABLE></BODY></HTML>\r\n";
    EcritFichier(fs, dossier + "Tableau.htm", htm);
    EcritFichier(fs, dossier + "Tableau.txt", txt);
    return pages;
}

std::string ListeCousinsJs(Base& b, const std::vector<std::uint32_t>& personnes) {
    std::vector<std::pair<std::string, std::uint32_t>> tries;
    for (std::uint32_t p : personnes)
        tries.push_back({CleMot(b.LitPrenom(p) + " " + b.LitNom(p)), p});
    std::stable_sort(tries.begin(), tries.end(),
                     [](const auto& x, const auto& y) { return x.first < y.first; });
    std::string r = "function LoadListeCousins()\r\n{\r\n  ListeCousins = new Array();\r\n";
    for (std::size_t i = 0; i < tries.size(); ++i) {
        const std::uint32_t p = tries[i].second;
        r += "   ListeCousins[" + std::to_string(i) + "] = new Cousin(\"" + b.LitNom(p) + " " +
             b.LitPrenom(p) + "\"," + std::to_string(p - 1) + ");\r\n";
    }
    return r + "}\r\n";
}

} // namespace sylvane
