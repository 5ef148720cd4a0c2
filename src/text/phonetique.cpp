#include "text/phonetique.h"

#include <array>

namespace sylvane {
namespace {

constexpr std::array<char, 256> tableCodes() {
    std::array<char, 256> t{};
    const char* groupes[][2] = {{"BP", "B"}, {"CKQ", "C"}, {"DT", "D"}, {"L", "L"}, {"MN", "M"},
                                {"R", "R"},  {"GJ", "G"},  {"SXZ", "S"}, {"FV", "F"}};
    for (const auto& g : groupes)
        for (const char* p = g[0]; *p; ++p) t[static_cast<unsigned char>(*p)] = g[1][0];
    return t;
}
constexpr std::array<char, 256> kCodes = tableCodes();

bool commencePar(const std::string& s, std::string_view debut) {
    return s.size() >= debut.size() && std::string_view(s).substr(0, debut.size()) == debut;
}

// Replaces the first occurrence only: the deliberate trait of the key.
void remplacePremier(std::string& s, std::string_view quoi, std::string_view par) {
    auto p = s.find(quoi);
    if (p != std::string::npos) s.replace(p, quoi.size(), par);
}

// Step 7: a group found at position 2 or later is cut, and the tail is taken
// from two positions beyond the first `lettre` of the whole string.
void regleGroupe(std::string& s, std::string_view groupe, char lettre) {
    auto p = s.find(groupe);
    if (p == std::string::npos || p == 0) return;
    auto premiere = s.find(lettre); // always found: the group holds it
    std::string queue = premiere + 2 < s.size() ? s.substr(premiere + 2) : std::string();
    s.resize(p);
    s += lettre;
    s += queue;
}

// Steps 11 and 12 test "the third letter", which may be missing: a missing
// letter is the empty text, neither equal to another nor a vowel.
char lettreA(const std::string& s, std::size_t i) { return i < s.size() ? s[i] : '\0'; }

bool separateurNom(char c) {
    switch (static_cast<unsigned char>(c)) {
    case ' ': case '\'': case '-': case '_': case 0x92: case 0xB4: return true;
    default: return false;
    }
}

} // namespace

bool Conv_EstVoyelle(char c) {
    switch (c) {
    case 'A': case 'E': case 'I': case 'O': case 'U': case 'Y': return true;
    default: return false;
    }
}

char CodePhonetique(char c) { return kCodes[static_cast<unsigned char>(c)]; }

std::string Conv_ClePhonetique(std::string_view nom) {
    std::string s = Trim(CleMot(nom));
    if (s.size() > 1) {
        if (s[0] == 'H') s.erase(0, 1);                              // 1
        remplacePremier(s, "PH", "F");                               // 2
        remplacePremier(s, "CH", "S");                               // 3
        remplacePremier(s, "BV", "V");                               // 4
        remplacePremier(s, "CE", "SE");                              // 5
        remplacePremier(s, "CI", "SI");
        remplacePremier(s, "CY", "SI");
        remplacePremier(s, "GN", "N");                               // 6
        regleGroupe(s, "ST", 'T');                                   // 7
        regleGroupe(s, "SN", 'N');
        regleGroupe(s, "LN", 'N');
        regleGroupe(s, "SM", 'M');
        if (s.size() >= 2 && s.compare(s.size() - 2, 2, "ER") == 0) // 8
            s.pop_back();
        if (!s.empty() && s[0] == 'C')                               // 9
            s[0] = commencePar(s, "CE") || commencePar(s, "CI") || commencePar(s, "CY") ? 'S'
                                                                                       : 'K';
        // 10: tested one after the other on the current string.
        if (commencePar(s, "GE") || commencePar(s, "GI") || commencePar(s, "GY")) s[0] = 'J';
        if (commencePar(s, "Y")) s[0] = 'I';
        if (commencePar(s, "QU")) s.replace(0, 2, "K");
        if (commencePar(s, "W")) s[0] = 'V';
        if (commencePar(s, "AU")) s.replace(0, 2, "O");
        if (commencePar(s, "EAU")) s.replace(0, 3, "O");
        // 11: nasal openings.
        if (s.size() >= 2) {
            const std::string_view deux = std::string_view(s).substr(0, 2);
            const char second = s[1], troisieme = lettreA(s, 2);
            const bool test = second != troisieme && !Conv_EstVoyelle(troisieme);
            if (deux == "EN" || deux == "EM" || deux == "AN" || deux == "AM") {
                if (test) s.replace(0, 2, "1");
            } else if (deux == "IN" || deux == "IM" || deux == "UN" || deux == "UM") {
                if (test) s.replace(0, 2, "2");
            } else if (deux == "OU") {
                if (!Conv_EstVoyelle(troisieme)) s.replace(0, 2, "3");
            }
        }
        // 12
        if (commencePar(s, "AIN") || commencePar(s, "AIM") || commencePar(s, "EIN") ||
            commencePar(s, "EIM")) {
            if (s.size() == 3)
                s = "2";
            else if (s[2] != s[3] && !Conv_EstVoyelle(s[3]))
                s.replace(0, 3, "2");
        }
        if (!s.empty() && s.back() == 'S') s.pop_back();             // 13
        if (s.size() >= 2 && !Conv_EstVoyelle(s[s.size() - 1]) &&   // 14
            !Conv_EstVoyelle(s[s.size() - 2]))
            s.pop_back();
        if (!s.empty() && s.back() == 'X') s.pop_back();             // 15
    }
    // 17 to 19: code, collapse equal neighbours, cut or fill to four.
    char cle[4] = {'0', '0', '0', '0'};
    int n = 0;
    char dernier = '\0';
    for (std::size_t i = 0; i < s.size() && n < 4; ++i) {
        const char c = i == 0 ? s[0] : CodePhonetique(s[i]);
        if (i > 0 && c == '\0') continue;
        if (n > 0 && c == dernier) continue;
        cle[n++] = c;
        dernier = c;
    }
    return std::string(cle, 4);
}

bool Conv_ClesVoisines(std::string_view a, std::string_view b) {
    if (a == b || a == "0000" || b == "0000") return true;
    auto prepare = [](std::string_view k) {
        std::array<char, 4> r{'0', '0', '0', '0'};
        for (std::size_t i = 0; i < 4 && i < k.size(); ++i) r[i] = k[i];
        const char c = CodePhonetique(r[0]);
        r[0] = c == '\0' ? '0' : c;
        return r;
    };
    const auto x = prepare(a), y = prepare(b);
    int communs = 0;
    for (int i = 0; i < 4; ++i) communs += x[i] == y[i];
    if (communs >= 3) return true;
    // One inserted character in the second key; indexes from 1 as in the Part.
    auto marche = [](const std::array<char, 4>& p, const std::array<char, 4>& q) {
        auto P = [&](int i) { return p[i - 1]; };
        auto Q = [&](int i) { return q[i - 1]; };
        int j = 1;
        for (int i = 1; i <= 3; ++i) {
            if (P(i) == Q(j))
                ++j;
            else if (j == i && P(i) == Q(i + 1))
                j = i + 2;
            else
                return false;
        }
        return true;
    };
    return marche(x, y) || marche(y, x);
}

char Minuscule(char c) {
    const auto u = static_cast<unsigned char>(c);
    if ((u >= 'A' && u <= 'Z') || (u >= 0xC0 && u <= 0xDE && u != 0xD7))
        return static_cast<char>(u + 0x20);
    switch (u) {
    case 0x8A: case 0x8C: case 0x8E: return static_cast<char>(u + 0x10);
    case 0x9F: return static_cast<char>(0xFF);
    default: return c;
    }
}

char Majuscule(char c) {
    const auto u = static_cast<unsigned char>(c);
    if ((u >= 'a' && u <= 'z') || (u >= 0xE0 && u <= 0xFE && u != 0xF7))
        return static_cast<char>(u - 0x20);
    switch (u) {
    case 0x9A: case 0x9C: case 0x9E: return static_cast<char>(u - 0x10);
    case 0xFF: return static_cast<char>(0x9F);
    default: return c;
    }
}

std::string Conv_NomPropre(std::string_view nom, char genre,
                           const std::vector<Particule>& particules) {
    std::string r(nom);
    r += ' ';
    for (std::size_t i = 0; i < r.size(); ++i)
        r[i] = i == 0 || separateurNom(r[i - 1]) ? Majuscule(r[i]) : Minuscule(r[i]);
    // Byte for byte, so that places match: a reference keeps its length.
    std::string cle(r.size(), ' ');
    for (std::size_t i = 0; i < r.size(); ++i) cle[i] = CleCar(r[i]);
    for (const auto& p : particules) {
        if (p.texte.empty() || !(genre == 'N' ? p.nom : genre == 'P' ? p.prenom : false)) continue;
        const std::string cp = CleMot(p.texte);
        for (auto pos = cle.find(cp); pos != std::string::npos; pos = cle.find(cp, pos + 1)) {
            const auto fin = pos + cp.size();
            if (fin >= cle.size() || !separateurNom(cle[fin])) continue;
            if (pos > 0 && !separateurNom(cle[pos - 1])) continue;
            r.replace(pos, cp.size(), p.texte);
        }
    }
    r.pop_back();
    return r;
}

} // namespace sylvane
