#include "support/pages_html.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace sylvane::test {
namespace {

std::string Majuscules(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

// The values of an attribute (HREF, SRC, NAME) in the tags of a page.
std::vector<std::string> Valeurs(const std::string& page, const std::string& attribut,
                                 bool sansImages) {
    std::vector<std::string> r;
    const std::string haut = Majuscules(page);
    const std::string motif = " " + attribut + "=\"";
    for (std::size_t p = haut.find(motif); p != std::string::npos; p = haut.find(motif, p + 1)) {
        const std::size_t debutTag = haut.rfind('<', p);
        if (sansImages && haut.compare(debutTag, 4, "<IMG") == 0) continue;
        const std::size_t debut = p + motif.size();
        const std::size_t fin = page.find('"', debut);
        if (fin == std::string::npos) break;
        r.push_back(page.substr(debut, fin - debut));
    }
    return r;
}

} // namespace

std::vector<std::string> LiensCasses(const Pages& pages) {
    std::map<std::string, std::set<std::string>> ancres;
    for (const auto& [nom, page] : pages)
        for (const std::string& a : Valeurs(page, "NAME", true)) ancres[nom].insert(a);
    std::vector<std::string> r;
    for (const auto& [nom, page] : pages) {
        std::vector<std::string> liens = Valeurs(page, "HREF", true);
        for (const std::string& s : Valeurs(page, "SRC", true)) liens.push_back(s);
        for (const std::string& lien : liens) {
            if (lien.find(':') != std::string::npos || lien.ends_with(".css")) continue;
            const std::size_t diese = lien.find('#');
            const std::string fichier = diese == std::string::npos ? lien : lien.substr(0, diese);
            const std::string ancre = diese == std::string::npos ? "" : lien.substr(diese + 1);
            const std::string cible = fichier.empty() ? nom : fichier;
            const bool existe = pages.count(cible) != 0;
            if (!existe || (!ancre.empty() && !ancres[cible].count(ancre)))
                r.push_back(nom + " -> " + lien);
        }
    }
    return r;
}

std::vector<std::string> FautesBalises(const std::string& page) {
    static const std::set<std::string> structure = {
        "HTML", "HEAD", "BODY", "TITLE", "TABLE", "TR", "TD", "TH", "UL", "OL", "LI", "DL",
        "DT", "DD", "H2", "H3", "H4", "NOTE", "SMALL", "STRONG", "EM", "P", "FRAMESET", "STYLE"};
    std::vector<std::string> pile, fautes;
    for (std::size_t p = page.find('<'); p != std::string::npos; p = page.find('<', p + 1)) {
        std::size_t q = p + 1;
        const bool fermante = q < page.size() && page[q] == '/';
        if (fermante) ++q;
        std::size_t f = q;
        while (f < page.size() && std::isalnum(static_cast<unsigned char>(page[f]))) ++f;
        const std::string nom = Majuscules(page.substr(q, f - q));
        if (!structure.count(nom)) continue;
        if (!fermante) {
            pile.push_back(nom);
        } else if (pile.empty() || pile.back() != nom) {
            fautes.push_back("</" + nom + "> at " + std::to_string(p) + " closes " +
                             (pile.empty() ? std::string("nothing") : "<" + pile.back() + ">"));
            if (std::find(pile.begin(), pile.end(), nom) == pile.end()) continue;
            while (pile.back() != nom) pile.pop_back();
            pile.pop_back();
        } else {
            pile.pop_back();
        }
    }
    for (const std::string& n : pile) fautes.push_back("<" + n + "> left open");
    return fautes;
}

} // namespace sylvane::test
