#include "text/conversion.h"

#include "text/translitteration.h"
#include "text/utf8.h"

#include <array>
#include <vector>

namespace sylvane {
namespace {

char& jeuGlobal() {
    static char j = '1';
    return j;
}

unsigned char octet(char c) { return static_cast<unsigned char>(c); }

// ---------------------------------------------------------------- code page 437

// Windows-1252 byte of each code 128 to 255 of code page 437, 0 where the
// character is not in Windows-1252 (box lines, Greek letters ...).
constexpr std::array<unsigned char, 128> k437 = {
    0xC7, 0xFC, 0xE9, 0xE2, 0xE4, 0xE0, 0xE5, 0xE7, 0xEA, 0xEB, 0xE8, 0xEF, 0xEE, 0xEC, 0xC4, 0xC5,
    0xC9, 0xE6, 0xC6, 0xF4, 0xF6, 0xF2, 0xFB, 0xF9, 0xFF, 0xD6, 0xDC, 0xA2, 0xA3, 0xA5, 0x00, 0x83,
    0xE1, 0xED, 0xF3, 0xFA, 0xF1, 0xD1, 0xAA, 0xBA, 0xBF, 0x00, 0xAC, 0xBD, 0xBC, 0xA1, 0xAB, 0xBB,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0xDF, 0x00, 0x00, 0x00, 0x00, 0xB5, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x00, 0xB1, 0x00, 0x00, 0x00, 0x00, 0xF7, 0x00, 0xB0, 0x00, 0xB7, 0x00, 0x00, 0xB2, 0x00, 0xA0};

struct Tables437 {
    std::array<unsigned char, 256> versCode{};  // Windows-1252 -> 437
    std::array<unsigned char, 256> depuisCode{}; // 437 -> Windows-1252
};

Tables437 tables437() {
    // The original is a list of (character, code) pairs tried in code order;
    // the first pair that matches wins, in either direction.
    std::array<unsigned char, 128> ansi = k437;
    ansi[161 - 128] = 0xF9; // "ù" a second time: "í" has no code
    ansi[166 - 128] = 0xE9; // "é" a second time: "ª" has no code
    Tables437 t;
    for (int i = 0; i < 256; ++i) t.versCode[i] = t.depuisCode[i] = static_cast<unsigned char>(i);
    std::array<bool, 256> pris{};
    auto paire = [&](unsigned char a, unsigned char code) {
        if (!pris[a]) t.versCode[a] = code, pris[a] = true;
    };
    for (int code = 128; code < 256; ++code) {
        const unsigned char a = ansi[code - 128];
        if (a == 0) continue;
        paire(a, static_cast<unsigned char>(code));
        t.depuisCode[code] = a;
    }
    // "¦", "´" and "’" are written as the box line 179, which reads "¦".
    paire(0xA6, 179);
    paire(0xB4, 179);
    paire(0x92, 179);
    t.depuisCode[179] = 0xA6;
    return t;
}

const Tables437& t437() {
    static const Tables437 t = tables437();
    return t;
}

// ------------------------------------------------------------------------ ANSEL

struct Compose {
    unsigned char lettre, marque;
    char base;
};
constexpr Compose kComposes[] = {
    {0xC0, 225, 'A'}, {0xC8, 225, 'E'}, {0xCC, 225, 'I'}, {0xD2, 225, 'O'}, {0xD9, 225, 'U'},
    {0xE0, 225, 'a'}, {0xE8, 225, 'e'}, {0xEC, 225, 'i'}, {0xF2, 225, 'o'}, {0xF9, 225, 'u'},
    {0xC1, 226, 'A'}, {0xC9, 226, 'E'}, {0xCD, 226, 'I'}, {0xD3, 226, 'O'}, {0xDA, 226, 'U'},
    {0xDD, 226, 'Y'}, {0xE1, 226, 'a'}, {0xE9, 226, 'e'}, {0xED, 226, 'i'}, {0xF3, 226, 'o'},
    {0xFA, 226, 'u'}, {0xFD, 226, 'y'}, {0xC2, 227, 'A'}, {0xCA, 227, 'E'}, {0xCE, 227, 'I'},
    {0xD4, 227, 'O'}, {0xDB, 227, 'U'}, {0xE2, 227, 'a'}, {0xEA, 227, 'e'}, {0xEE, 227, 'i'},
    {0xF4, 227, 'o'}, {0xFB, 227, 'u'}, {0xC3, 228, 'A'}, {0xD1, 228, 'N'}, {0xD5, 228, 'O'},
    {0xE3, 228, 'a'}, {0xF1, 228, 'n'}, {0xF5, 228, 'o'}, {0xC4, 232, 'A'}, {0xCB, 232, 'E'},
    {0xCF, 232, 'I'}, {0xD6, 232, 'O'}, {0xDC, 232, 'U'}, {0xE4, 232, 'a'}, {0xEB, 232, 'e'},
    {0xEF, 232, 'i'}, {0xF6, 232, 'o'}, {0xFC, 232, 'u'}, {0xFF, 232, 'y'}, {0xC5, 234, 'A'},
    {0xE5, 234, 'a'}, {0xC7, 240, 'C'}, {0xE7, 240, 'c'}, {0x8A, 233, 'S'}, {0x9A, 233, 's'},
    // The spacing forms: the mark and a blank.
    {0xA8, 232, ' '}, {0xB0, 234, ' '}, {0xB4, 226, ' '}, {0xB8, 240, ' '}, {0x92, 254, ' '}};

struct Simple {
    unsigned char lettre, code;
};
constexpr Simple kSimples[] = {{0x8C, 166}, {0x9C, 182}, {0xC6, 165}, {0xE6, 181}, {0xD0, 163},
                               {0xF0, 179}, {0xD8, 162}, {0xF8, 178}, {0xDE, 164}, {0xFE, 180},
                               {0xDF, 207}, {0xD7, 161}, {0xF7, 177}, {0xA1, 198}, {0xBF, 197},
                               {0xA9, 195}, {0xB6, 174}, {0xA3, 185}};

bool estMarque(unsigned char b) { return b >= 224 && b <= 254; }

struct TablesAnsel {
    std::array<std::string, 256> ecrit;                  // Windows-1252 -> ANSEL
    std::array<unsigned char, 256> lit{};                // one-byte ANSEL -> Windows-1252
    std::array<std::array<unsigned char, 256>, 256> compose{}; // [mark][base], 0 if none
};

const TablesAnsel& tAnsel() {
    static const TablesAnsel* t = [] {
        auto* r = new TablesAnsel;
        for (int i = 0; i < 256; ++i) {
            r->ecrit[i] = std::string(1, static_cast<char>(i));
            r->lit[i] = static_cast<unsigned char>(i);
        }
        for (const Simple& s : kSimples) {
            r->ecrit[s.lettre] = std::string(1, static_cast<char>(s.code));
            r->lit[s.code] = s.lettre;
        }
        for (const Compose& c : kComposes) {
            r->ecrit[c.lettre] = std::string{static_cast<char>(c.marque), c.base};
            r->compose[c.marque][octet(c.base)] = c.lettre;
        }
        return r;
    }();
    return *t;
}

// ------------------------------------------------------------------------- HTML

struct Entite {
    const char* nom;
    unsigned char lettre;
};

// Latin-1 letters 0xC0 to 0xFF but × and ÷, in order.
constexpr const char* kLettres[] = {
    "Agrave", "Aacute", "Acirc",  "Atilde", "Auml",   "Aring",  "AElig",  "Ccedil",
    "Egrave", "Eacute", "Ecirc",  "Euml",   "Igrave", "Iacute", "Icirc",  "Iuml",
    "ETH",    "Ntilde", "Ograve", "Oacute", "Ocirc",  "Otilde", "Ouml",   nullptr,
    "Oslash", "Ugrave", "Uacute", "Ucirc",  "Uuml",   "Yacute", "THORN",  "szlig",
    "agrave", "aacute", "acirc",  "atilde", "auml",   "aring",  "aelig",  "ccedil",
    "egrave", "eacute", "ecirc",  "euml",   "igrave", "iacute", "icirc",  "iuml",
    "eth",    "ntilde", "ograve", "oacute", "ocirc",  "otilde", "ouml",   nullptr,
    "oslash", "ugrave", "uacute", "ucirc",  "uuml",   "yacute", "thorn",  "yuml"};

const std::array<std::string, 256>& versHtml() {
    static const std::array<std::string, 256> t = [] {
        std::array<std::string, 256> r;
        for (int i = 0; i < 256; ++i) r[i] = std::string(1, static_cast<char>(i));
        r['&'] = "&amp;";
        r['<'] = "&lt;";
        r['>'] = "&gt;";
        r[0xA9] = "&copy;";
        for (int i = 0; i < 64; ++i)
            if (kLettres[i]) r[0xC0 + i] = std::string("&") + kLettres[i] + ";";
        r[0xCF] = "\xCF";       // Ï has no entity
        r[0xF5] = "\xF5";       // õ stays
        r[0xF6] = "&otilde;";   // ö is written as õ
        return r;
    }();
    return t;
}

const std::vector<Entite>& depuisHtml() {
    static const std::vector<Entite> t = [] {
        std::vector<Entite> r = {{"&copy;", 0xA9}, {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}};
        static std::array<std::string, 64> noms;
        for (int i = 0; i < 64; ++i) {
            if (!kLettres[i]) continue;
            const unsigned char c = static_cast<unsigned char>(0xC0 + i);
            if (c == 0xCF || c == 0xF6) continue; // no "&Iuml;", no "&ouml;"
            noms[i] = std::string("&") + kLettres[i] + ";";
            r.push_back({noms[i].c_str(), c});
        }
        const Entite autres[] = {
            {"&deg;", 0xB0},   {"&dollar;", '$'},  {"&excl;", '!'},  {"&iexcl;", 0xA1},
            {"&iquest;", 0xBF}, {"&laquo;", 0xAB},  {"&micro;", 0xB5}, {"&not;", 0xAC},
            {"&para;", 0xB6},  {"&percent;", '%'}, {"&plus;", '+'},  {"&plusmn;", 0xB1},
            {"&pound;", 0xA3}, {"&quest;", '?'},   {"&quot;", '"'},  {"&raquo;", 0xBB},
            {"&reg;", 0xAE},   {"&sect;", 0xA7},   {"&trade;", 0x99}, {"&yen;", 0xA5},
            {"&nbsp;", 0xA0}};
        for (const Entite& e : autres) r.push_back(e);
        return r;
    }();
    return t;
}

} // namespace

char JeuCaracteres() { return jeuGlobal(); }
void DefinitJeuCaracteres(char jeu) { jeuGlobal() = jeu; }

std::string Conv_AnsiVers437(std::string_view texte) {
    std::string r = Translitere(texte);
    for (char& c : r) c = static_cast<char>(t437().versCode[octet(c)]);
    return r;
}

std::string Conv_437VersAnsi(std::string_view texte) {
    std::string r(texte);
    for (char& c : r) c = static_cast<char>(t437().depuisCode[octet(c)]);
    return r;
}

std::string Conv_AnsiVersAnsel(std::string_view source) {
    const std::string texte = Translitere(source);
    std::string r;
    r.reserve(texte.size() + texte.size() / 4);
    for (char c : texte) r += tAnsel().ecrit[octet(c)];
    return r;
}

std::string Conv_AnselVersAnsi(std::string_view texte) {
    const TablesAnsel& t = tAnsel();
    std::string r;
    r.reserve(texte.size());
    unsigned char marque = 0;
    for (char c : texte) {
        const unsigned char b = octet(c);
        if (estMarque(b)) {
            marque = b; // a pending mark is lost when another comes
            continue;
        }
        if (marque != 0) {
            const unsigned char compose = t.compose[marque][b];
            r += static_cast<char>(compose != 0 ? compose : t.lit[b]);
            marque = 0;
            continue;
        }
        r += static_cast<char>(t.lit[b]);
    }
    return r;
}

char32_t MarqueAnsel(unsigned char b) {
    static constexpr char32_t kMarques[31] = {
        0x0309, 0x0300, 0x0301, 0x0302, 0x0303, 0x0304, 0x0306, 0x0307, 0x0308, 0x030C, 0x030A,
        0xFE20, 0xFE21, 0x0315, 0x030B, 0x0310, 0x0327, 0x0328, 0x0323, 0x0324, 0x0325, 0x0333,
        0x0332, 0x0326, 0x031C, 0x032E, 0xFE22, 0xFE23, 0x003F, 0x003F, 0x0313};
    return estMarque(b) ? kMarques[b - 224] : 0;
}

bool MarqueAnselGardee(unsigned char marque, unsigned char suivant) {
    const TablesAnsel& t = tAnsel();
    if (!estMarque(marque) || estMarque(suivant)) return false;
    if (t.compose[marque][suivant] != 0) return true;
    const unsigned char l = t.lit[suivant];
    const bool lettre = (l >= 'A' && l <= 'Z') || (l >= 'a' && l <= 'z') ||
                        (l >= 0xC0 && l != 0xD7 && l != 0xF7);
    return lettre && MarqueAnsel(marque) != U'?';
}

std::string Conv_AnselVersAnsiRef(std::string_view texte) {
    const TablesAnsel& t = tAnsel();
    std::string r;
    r.reserve(texte.size());
    for (std::size_t i = 0; i < texte.size(); ++i) {
        const unsigned char m = octet(texte[i]);
        const bool paire = estMarque(m) && i + 1 < texte.size() && !estMarque(octet(texte[i + 1]));
        const unsigned char b = paire ? octet(texte[i + 1]) : 0;
        if (!paire || t.compose[m][b] != 0 || !MarqueAnselGardee(m, b)) {
            // What the reading above does, one byte or one pair at a time.
            r += Conv_AnselVersAnsi(texte.substr(i, paire ? 2 : 1));
            i += paire ? 1 : 0;
            continue;
        }
        std::string lettre = AnsiVersUtf8(std::string(1, static_cast<char>(t.lit[b])));
        AjouteUtf8(lettre, MarqueAnsel(m));
        r += Utf8VersAnsiRef(lettre);
        ++i;
    }
    return r;
}

std::string Conv_AnsiVersHtml(std::string_view texte) {
    std::string r;
    r.reserve(texte.size() + texte.size() / 4);
    // A character reference is HTML already: it stays.
    const bool references = ContientReference(texte);
    for (std::size_t i = 0; i < texte.size(); ++i) {
        if (references && texte[i] == '&' && i + 1 < texte.size() && texte[i + 1] == '#') {
            const auto fin = texte.find(';', i);
            if (fin != std::string_view::npos && ContientReference(texte.substr(i, fin + 1 - i))) {
                r.append(texte.substr(i, fin + 1 - i));
                i = fin;
                continue;
            }
        }
        r += versHtml()[octet(texte[i])];
    }
    return r;
}

std::string Conv_HtmlVersAnsi(std::string_view texte) {
    std::string r(texte);
    if (r.find('&') == std::string::npos) return r;
    for (const Entite& e : depuisHtml()) {
        const std::string_view nom = e.nom;
        std::string sortie;
        std::size_t debut = 0;
        for (auto p = r.find(nom); p != std::string::npos; p = r.find(nom, debut)) {
            sortie.append(r, debut, p - debut);
            sortie += static_cast<char>(e.lettre);
            debut = p + nom.size();
        }
        if (debut == 0) continue;
        sortie.append(r, debut, std::string::npos);
        r = std::move(sortie);
    }
    return r;
}

std::string Conv_DepuisAnsi(std::string_view texte, char jeu) {
    switch (jeu) {
    case '2': return Conv_AnsiVersAnsel(texte);
    case '0': return Conv_AnsiVers437(texte);
    case '3': return Conv_AnsiVersHtml(texte);
    default: return std::string(texte);
    }
}

std::string Conv_VersAnsi(std::string_view texte, char jeu) {
    std::string t(texte);
    for (char& c : t)
        if (c == '#') c = '*';
    switch (jeu) {
    case '2': return Conv_AnselVersAnsi(t);
    case '0': return Conv_437VersAnsi(t);
    case '3': return Conv_HtmlVersAnsi(t);
    default: return t;
    }
}

} // namespace sylvane
