#include "text/mots.h"

#include "text/translitteration.h"
#include "text/utf8.h"

#include <array>

namespace sylvane {
namespace {

std::array<unsigned char, 256> tableCleMot() {
    std::array<unsigned char, 256> t{};
    for (int i = 0; i < 256; ++i) t[i] = static_cast<unsigned char>(i);
    for (int c = 'a'; c <= 'z'; ++c) t[c] = static_cast<unsigned char>(c - 32);
    // Upper-casing of the Windows-1252 letters, then the fold of accents.
    t[0x9A] = 0x8A; // š -> Š
    t[0x9C] = 0x8C; // œ -> Œ
    t[0x9E] = 0x8E; // ž -> Ž
    t[0xFF] = 0x9F; // ÿ -> Ÿ
    for (int c = 0xE0; c <= 0xFE; ++c)
        if (c != 0xF7) t[c] = static_cast<unsigned char>(c - 0x20);
    auto fold = [&t](int from, int to, unsigned char v) {
        for (int c = from; c <= to; ++c)
            for (int i = 0; i < 256; ++i)
                if (t[i] == c) t[i] = v;
    };
    fold(0xC8, 0xCB, 'E');
    fold(0xC0, 0xC5, 'A');
    fold(0xC7, 0xC7, 'C');
    fold(0xCC, 0xCF, 'I');
    fold(0xD1, 0xD1, 'N');
    fold(0xD2, 0xD6, 'O');
    fold(0xD8, 0xD8, 'O');
    fold(0xD9, 0xDC, 'U');
    fold(0xD0, 0xD0, 'D');
    fold(0xDD, 0xDD, 'Y');
    for (int c : {int('\''), int('-'), int('.'), int('_'), 0x92, 0xB4, int(','), int(';'), int(':')})
        for (int i = 0; i < 256; ++i)
            if (t[i] == c) t[i] = ' ';
    return t;
}

const std::array<unsigned char, 256> kCleMot = tableCleMot();

bool separateurParticule(char c) {
    switch (static_cast<unsigned char>(c)) {
    case ' ': case '\'': case '-': case '_': case 0x92: case 0xB4: return true;
    default: return false;
    }
}

} // namespace

const std::vector<Particule>& ParticulesParDefaut() {
    static const std::vector<Particule> liste = [] {
        std::vector<Particule> v;
        for (const char* p :
             {"af", "ben", "d", "da", "de", "della", "den", "des", "di", "du", "el", "et", "II",
              "III", "IV", "IX", "l", "la", "las", "le", "les", "of", "van", "VI", "VII", "VIII",
              "von", "XI", "XII", "XIII", "XIV", "XIX", "XV", "XVI", "XVII", "XVIII", "XX",
              "XXIX", "XXVII", "y", "zu"})
            v.push_back({p, true, false});
        return v;
    }();
    return liste;
}

char CleCar(char c) { return static_cast<char>(kCleMot[static_cast<unsigned char>(c)]); }

std::string CleMot(std::string_view s) {
    // Characters kept as references compare as their Latin form.
    if (ContientReference(s)) return CleMot(Translitere(s));
    std::string r(s.size(), ' ');
    for (std::size_t i = 0; i < s.size(); ++i) r[i] = CleCar(s[i]);
    return r;
}

std::string TrimDroite(std::string_view s) {
    auto e = s.find_last_not_of(' ');
    return e == std::string_view::npos ? std::string() : std::string(s.substr(0, e + 1));
}

std::string TrimGauche(std::string_view s) {
    auto b = s.find_first_not_of(' ');
    return b == std::string_view::npos ? std::string() : std::string(s.substr(b));
}

std::string Trim(std::string_view s) {
    auto b = s.find_first_not_of(' ');
    if (b == std::string_view::npos) return {};
    auto e = s.find_last_not_of(' ');
    return std::string(s.substr(b, e - b + 1));
}

std::string VersPoints(std::string_view s) {
    std::string r = Trim(s);
    for (char& c : r)
        if (c == ' ') c = '.';
    return r;
}

std::string DesPoints(std::string_view s) {
    std::string r(s);
    for (char& c : r)
        if (c == '.') c = ' ';
    return Trim(r);
}

std::string SansParticule(std::string_view nom, const std::vector<Particule>& particules,
                          bool actif) {
    std::string n(nom);
    n += ' ';
    if (actif) {
        // One pass over the list; each particle is cut as long as it opens
        // the name, so "la de X" keeps its "de" while "de la X" loses both.
        std::string collecte;
        for (const auto& p : particules) {
            if (!p.nom || p.texte.empty()) continue;
            const std::string cle = CleMot(p.texte);
            while (n.size() > p.texte.size() &&
                   CleMot(std::string_view(n).substr(0, p.texte.size())) == cle &&
                   separateurParticule(n[p.texte.size()])) {
                n.erase(0, p.texte.size() + 1);
                if (!collecte.empty()) collecte += ' ';
                collecte += p.texte;
            }
        }
        if (!collecte.empty()) n += "(" + Trim(collecte) + ")";
    }
    std::string r = VersPoints(n);
    for (char& c : r) {
        switch (static_cast<unsigned char>(c)) {
        case '-': case '\'': case '_': case 0x92: case 0xB4: c = '.'; break;
        default: break;
        }
    }
    return r;
}

} // namespace sylvane
