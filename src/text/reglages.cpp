#include "text/reglages.h"

#include "store/fichier.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace sylvane {

// ---------------------------------------------------------------- Reglages

std::string Reglages::lit(const std::string& section, const std::string& cle,
                          const std::string& defaut) const {
    auto v = lit(section, cle);
    return v ? *v : defaut;
}

std::string Reglages::litOuEcrit(const std::string& section, const std::string& cle,
                                 const std::string& defaut) {
    if (auto v = lit(section, cle)) return *v;
    ecrit(section, cle, defaut);
    return defaut;
}

// ---------------------------------------------------------------- in memory

const ReglagesMemoire::Section* ReglagesMemoire::trouve(const std::string& section) const {
    const auto p = placesSections_.find(section);
    return p == placesSections_.end() ? nullptr : &sections_[p->second];
}

std::optional<std::string> ReglagesMemoire::lit(const std::string& section,
                                                const std::string& cle) const {
    const Section* s = trouve(section);
    if (!s) return std::nullopt;
    const auto p = s->places.find(cle);
    if (p == s->places.end()) return std::nullopt;
    return s->cles[p->second].second;
}

void ReglagesMemoire::ecrit(const std::string& section, const std::string& cle,
                            const std::string& valeur) {
    auto [ps, neuve] = placesSections_.try_emplace(section, sections_.size());
    if (neuve) sections_.push_back({section, {}, {}});
    Section& s = sections_[ps->second];
    auto [pc, neuf] = s.places.try_emplace(cle, s.cles.size());
    if (neuf) s.cles.emplace_back(cle, valeur);
    else s.cles[pc->second].second = valeur;
}

void ReglagesMemoire::supprimeSection(const std::string& section) {
    if (!placesSections_.count(section)) return;
    std::erase_if(sections_, [&](const Section& x) { return x.nom == section; });
    placesSections_.clear();
    for (std::size_t i = 0; i < sections_.size(); ++i) placesSections_[sections_[i].nom] = i;
}

std::vector<std::pair<std::string, std::string>>
ReglagesMemoire::section(const std::string& section) const {
    const Section* s = trouve(section);
    return s ? s->cles : std::vector<std::pair<std::string, std::string>>{};
}

std::vector<std::string> ReglagesMemoire::sections() const {
    std::vector<std::string> r;
    for (const auto& s : sections_) r.push_back(s.nom);
    return r;
}

// ---------------------------------------------------------------- INI file

namespace {

// Windows-1252 name or value to one UTF-8 line piece.
std::string Echappe(const std::string& ansi, bool nom) {
    std::string r;
    for (char c : AnsiVersUtf8(ansi)) {
        switch (c) {
        case '\\': r += "\\\\"; break;
        case '\n': r += "\\n"; break;
        case '\r': r += "\\r"; break;
        case '=': r += nom ? "\\=" : "="; break;
        case ']': r += nom ? "\\]" : "]"; break;
        default: r += c;
        }
    }
    // A name must not pass for a comment or a section header.
    if (nom && !r.empty() && (r[0] == '[' || r[0] == ';' || r[0] == '#')) r.insert(0, "\\");
    return r;
}

std::string Desechappe(std::string_view s) {
    std::string r;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '\\' || i + 1 == s.size()) {
            r += s[i];
            continue;
        }
        const char c = s[++i];
        r += c == 'n' ? '\n' : c == 'r' ? '\r' : c;
    }
    return Utf8VersAnsi(r);
}

// Position of the first c not escaped by a backslash, npos if none.
std::size_t Cherche(std::string_view s, char c, std::size_t depuis = 0) {
    for (std::size_t i = depuis; i < s.size(); ++i) {
        if (s[i] == '\\') ++i;
        else if (s[i] == c) return i;
    }
    return std::string_view::npos;
}

} // namespace

ReglagesIni::ReglagesIni(SystemeFichiers& fs, std::string chemin)
    : fs_(fs), chemin_(std::move(chemin)) {
    if (!fs_.existe(chemin_)) return;
    std::string texte;
    try {
        texte = lireTout(fs_, chemin_);
    } catch (const ErreurES&) {
        return;
    }
    std::string_view t = texte;
    if (t.substr(0, 3) == "\xEF\xBB\xBF") t.remove_prefix(3);
    std::optional<std::string> section;
    while (!t.empty()) {
        const auto fin = t.find('\n');
        std::string_view l = t.substr(0, fin);
        t.remove_prefix(fin == std::string_view::npos ? t.size() : fin + 1);
        if (!l.empty() && l.back() == '\r') l.remove_suffix(1);
        if (l.empty() || l[0] == ';' || l[0] == '#') continue;
        if (l[0] == '[') {
            const auto f = Cherche(l, ']', 1);
            if (f == std::string_view::npos) section.reset();
            else section = Desechappe(l.substr(1, f - 1));
            continue;
        }
        const auto eq = Cherche(l, '=');
        if (!section || eq == std::string_view::npos) continue;
        ReglagesMemoire::ecrit(*section, Desechappe(l.substr(0, eq)),
                               Desechappe(l.substr(eq + 1)));
    }
}

void ReglagesIni::ecrit(const std::string& section, const std::string& cle,
                        const std::string& valeur) {
    if (lit(section, cle) == valeur) return;
    ReglagesMemoire::ecrit(section, cle, valeur);
    change();
}

void ReglagesIni::supprimeSection(const std::string& section) {
    const auto avant = sections_.size();
    ReglagesMemoire::supprimeSection(section);
    if (sections_.size() != avant) change();
}

void ReglagesIni::change() {
    sale_ = true;
    if (lot_ == 0) enregistre();
}

void ReglagesIni::finLot() {
    if (lot_ > 0 && --lot_ == 0 && sale_) enregistre();
}

void ReglagesIni::enregistre() {
    std::string texte;
    for (const auto& s : sections_) {
        if (!texte.empty()) texte += '\n';
        texte += '[' + Echappe(s.nom, true) + "]\n";
        for (const auto& [c, v] : s.cles) texte += Echappe(c, true) + '=' + Echappe(v, false) + '\n';
    }
    if (auto b = chemin_.find_last_of('/'); b != std::string::npos && b > 0)
        fs_.creerDossier(chemin_.substr(0, b));
    const std::string tmp = chemin_ + ".tmp";
    {
        auto f = fs_.ouvrir(tmp, Mode::Ecrasement);
        f->ecrire(0, texte);
        f->synchroniser();
    }
    fs_.renommer(tmp, chemin_);
    fs_.synchroniserDossier(chemin_);
    sale_ = false;
}

std::string DossierConfiguration() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (xdg && *xdg == '/') return Utf8VersAnsi(xdg) + "/Sylvane";
    const char* home = std::getenv("HOME");
    return Utf8VersAnsi(home && *home ? home : ".") + "/.config/Sylvane";
}

std::string FichierReglages() { return DossierConfiguration() + "/Sylvane.ini"; }

} // namespace sylvane
