#include "text/utf8.h"

#include <unicode/normalizer2.h>

#include <array>
#include <unordered_map>

namespace sylvane {
namespace {

// Code points of the bytes 0x80 to 0x9F.
constexpr std::array<char32_t, 32> kHaut = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t versUnicode(unsigned char b) {
    if (b >= 0x80 && b < 0xA0) return kHaut[b - 0x80];
    return b;
}

const std::unordered_map<char32_t, unsigned char>& inverse() {
    static const auto m = [] {
        std::unordered_map<char32_t, unsigned char> t;
        for (int b = 0; b < 256; ++b) t[versUnicode(static_cast<unsigned char>(b))] =
            static_cast<unsigned char>(b);
        return t;
    }();
    return m;
}

// Closest Latin form of characters outside Windows-1252: Latin Extended-A
// and a few common signs. What is not here becomes "?".
const char* approche(char32_t cp) {
    static const std::unordered_map<char32_t, const char*> t = {
        {0x0100, "A"}, {0x0101, "a"}, {0x0102, "A"}, {0x0103, "a"}, {0x0104, "A"}, {0x0105, "a"},
        {0x0106, "C"}, {0x0107, "c"}, {0x0108, "C"}, {0x0109, "c"}, {0x010A, "C"}, {0x010B, "c"},
        {0x010C, "C"}, {0x010D, "c"}, {0x010E, "D"}, {0x010F, "d"}, {0x0110, "D"}, {0x0111, "d"},
        {0x0112, "E"}, {0x0113, "e"}, {0x0114, "E"}, {0x0115, "e"}, {0x0116, "E"}, {0x0117, "e"},
        {0x0118, "E"}, {0x0119, "e"}, {0x011A, "E"}, {0x011B, "e"}, {0x011C, "G"}, {0x011D, "g"},
        {0x011E, "G"}, {0x011F, "g"}, {0x0120, "G"}, {0x0121, "g"}, {0x0122, "G"}, {0x0123, "g"},
        {0x0124, "H"}, {0x0125, "h"}, {0x0126, "H"}, {0x0127, "h"}, {0x0128, "I"}, {0x0129, "i"},
        {0x012A, "I"}, {0x012B, "i"}, {0x012C, "I"}, {0x012D, "i"}, {0x012E, "I"}, {0x012F, "i"},
        {0x0130, "I"}, {0x0131, "i"}, {0x0132, "IJ"}, {0x0133, "ij"}, {0x0134, "J"}, {0x0135, "j"},
        {0x0136, "K"}, {0x0137, "k"}, {0x0139, "L"}, {0x013A, "l"}, {0x013B, "L"}, {0x013C, "l"},
        {0x013D, "L"}, {0x013E, "l"}, {0x013F, "L"}, {0x0140, "l"}, {0x0141, "L"}, {0x0142, "l"},
        {0x0143, "N"}, {0x0144, "n"}, {0x0145, "N"}, {0x0146, "n"}, {0x0147, "N"}, {0x0148, "n"},
        {0x014C, "O"}, {0x014D, "o"}, {0x014E, "O"}, {0x014F, "o"}, {0x0150, "O"}, {0x0151, "o"},
        {0x0154, "R"}, {0x0155, "r"}, {0x0156, "R"}, {0x0157, "r"}, {0x0158, "R"}, {0x0159, "r"},
        {0x015A, "S"}, {0x015B, "s"}, {0x015C, "S"}, {0x015D, "s"}, {0x015E, "S"}, {0x015F, "s"},
        {0x0162, "T"}, {0x0163, "t"}, {0x0164, "T"}, {0x0165, "t"}, {0x0166, "T"}, {0x0167, "t"},
        {0x0168, "U"}, {0x0169, "u"}, {0x016A, "U"}, {0x016B, "u"}, {0x016C, "U"}, {0x016D, "u"},
        {0x016E, "U"}, {0x016F, "u"}, {0x0170, "U"}, {0x0171, "u"}, {0x0172, "U"}, {0x0173, "u"},
        {0x0174, "W"}, {0x0175, "w"}, {0x0176, "Y"}, {0x0177, "y"}, {0x0179, "Z"}, {0x017A, "z"},
        {0x017B, "Z"}, {0x017C, "z"}, {0x017F, "s"}, {0x0218, "S"}, {0x0219, "s"}, {0x021A, "T"},
        {0x021B, "t"}, {0x2010, "-"}, {0x2011, "-"}, {0x2012, "-"}, {0x2015, "-"}, {0x2032, "'"},
        {0x2033, "\""}, {0x2044, "/"}, {0x2212, "-"}, {0x00A0, " "}, {0x202F, " "}, {0x2009, " "},
        {0x2002, " "}, {0x2003, " "}, {0x2004, " "}, {0x2005, " "}, {0x2006, " "},
        {0x2007, " "}, {0x2008, " "}, {0x200A, " "}, {0x2024, "."}, {0x2027, "."},
        {0x2043, "-"}, {0x00AD, "-"}, {0x02BC, "\x92"}, {0x02B9, "'"}, {0x02BA, "\""},
        {0x2039, "\x8B"}, {0xFB00, "ff"}, {0xFB01, "fi"}, {0xFB02, "fl"}, {0xFB03, "ffi"},
        {0xFB04, "ffl"}, {0x1E9E, "SS"}, {0x0149, "'n"}, {0x014A, "N"}, {0x014B, "n"},
        {0x01CD, "A"}, {0x01CE, "a"}, {0x01CF, "I"}, {0x01D0, "i"}, {0x01D1, "O"}, {0x01D2, "o"},
        {0x01D3, "U"}, {0x01D4, "u"}, {0x1EBC, "E"}, {0x1EBD, "e"}, {0x1EF2, "Y"}, {0x1EF3, "y"},
    };
    auto it = t.find(cp);
    return it == t.end() ? nullptr : it->second;
}

// The letter that a base letter and a combining mark make in Windows-1252,
// or '\0'.
char compose(char base, char32_t marque) {
    static const struct {
        char32_t marque;
        const char* bases;
        const char* composes;
    } table[] = {
        {0x0300, "AEIOUaeiou", "\xC0\xC8\xCC\xD2\xD9\xE0\xE8\xEC\xF2\xF9"},
        {0x0301, "AEIOUYaeiouy", "\xC1\xC9\xCD\xD3\xDA\xDD\xE1\xE9\xED\xF3\xFA\xFD"},
        {0x0302, "AEIOUaeiou", "\xC2\xCA\xCE\xD4\xDB\xE2\xEA\xEE\xF4\xFB"},
        {0x0303, "ANOano", "\xC3\xD1\xD5\xE3\xF1\xF5"},
        {0x0308, "AEIOUYaeiouy", "\xC4\xCB\xCF\xD6\xDC\x9F\xE4\xEB\xEF\xF6\xFC\xFF"},
        {0x030A, "Aa", "\xC5\xE5"},
        {0x0327, "Cc", "\xC7\xE7"},
        {0x030C, "SZsz", "\x8A\x8E\x9A\x9E"},
    };
    for (const auto& t : table) {
        if (t.marque != marque) continue;
        for (int k = 0; t.bases[k]; ++k)
            if (t.bases[k] == base) return t.composes[k];
    }
    return '\0';
}

} // namespace

void AjouteUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

std::string AnsiVersUtf8(std::string_view ansi) {
    std::string out;
    out.reserve(ansi.size() + ansi.size() / 8);
    for (unsigned char b : ansi) AjouteUtf8(out, versUnicode(b));
    return out;
}

namespace {

// The code point of the UTF-8 sequence at s[i] and its length; length 0
// when the bytes there are not UTF-8.
std::pair<char32_t, int> LitUtf8(std::string_view s, std::size_t i) {
    auto b0 = static_cast<unsigned char>(s[i]);
    if (b0 < 0x80) return {b0, 1};
    int len = b0 >= 0xF0 && b0 < 0xF5   ? 4
              : b0 >= 0xE0 && b0 < 0xF0 ? 3
              : b0 >= 0xC2 && b0 < 0xE0 ? 2
                                        : 0;
    char32_t cp = len == 2 ? (b0 & 0x1F) : len == 3 ? (b0 & 0x0F) : (b0 & 0x07);
    bool ok = len > 0 && i + static_cast<std::size_t>(len) <= s.size();
    for (int k = 1; ok && k < len; ++k) {
        auto b = static_cast<unsigned char>(s[i + static_cast<std::size_t>(k)]);
        if ((b & 0xC0) != 0x80) ok = false;
        cp = (cp << 6) | (b & 0x3F);
    }
    if (ok && ((len == 3 && cp < 0x800) || (len == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
               (cp >= 0xD800 && cp <= 0xDFFF)))
        ok = false;
    return {cp, ok ? len : 0};
}

void AjouteReference(std::string& out, char32_t cp) {
    out += "&#";
    out += std::to_string(static_cast<unsigned long>(cp));
    out += ';';
}

} // namespace

std::string CheminInterne(std::string_view s) {
    std::string out;
    out.reserve(s.size());
    const auto& inv = inverse();
    for (std::size_t i = 0; i < s.size();) {
        auto [cp, len] = LitUtf8(s, i);
        if (len == 0) {
            AjouteReference(out, 0xDC00 + static_cast<unsigned char>(s[i]));
            ++i;
            continue;
        }
        i += static_cast<std::size_t>(len);
        auto it = inv.find(cp);
        if (cp == '&' && i < s.size() && s[i] == '#') AjouteReference(out, cp);
        else if (it != inv.end()) out += static_cast<char>(it->second);
        else AjouteReference(out, cp);
    }
    return out;
}

std::string AnsiRefVersUtf8(std::string_view s) { return CheminSysteme(s); }

std::string CheminSysteme(std::string_view s) {
    std::string out;
    out.reserve(s.size() + s.size() / 8);
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] == '&' && i + 3 < s.size() && s[i + 1] == '#') {
            std::size_t j = i + 2;
            char32_t cp = 0;
            while (j < s.size() && j < i + 10 && s[j] >= '0' && s[j] <= '9')
                cp = cp * 10 + static_cast<char32_t>(s[j++] - '0');
            const bool reference = j > i + 2 && j < s.size() && s[j] == ';' && cp <= 0x10FFFF;
            if (reference && cp >= 0xDC80 && cp <= 0xDCFF) {
                out += static_cast<char>(cp - 0xDC00);
                i = j;
                continue;
            }
            if (reference && (cp < 0xD800 || cp > 0xDFFF)) {
                AjouteUtf8(out, cp);
                i = j;
                continue;
            }
        }
        AjouteUtf8(out, versUnicode(static_cast<unsigned char>(s[i])));
    }
    return out;
}

namespace {

// The character a letter and a combining mark make, when Unicode has one.
char32_t composeUnicode(char32_t base, char32_t marque) {
    UErrorCode statut = U_ZERO_ERROR;
    const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(statut);
    if (U_FAILURE(statut) || nfc == nullptr) return 0;
    const UChar32 c = nfc->composePair(static_cast<UChar32>(base), static_cast<UChar32>(marque));
    return c < 0 ? 0 : static_cast<char32_t>(c);
}

std::string VersAnsi(std::string_view s, std::size_t* remplaces, bool references) {
    std::string out;
    out.reserve(s.size());
    const auto& inv = inverse();
    // The last character written and where it starts in `out`, so that a
    // combining mark behind it can make one character with it.
    char32_t dernier = 0;
    std::size_t debutDernier = 0;
    auto ecrit = [&](char32_t cp) {
        debutDernier = out.size();
        dernier = cp;
        auto it = inv.find(cp);
        if (it != inv.end()) out += static_cast<char>(it->second);
        else AjouteReference(out, cp);
    };
    std::size_t i = 0;
    while (i < s.size()) {
        auto b0 = static_cast<unsigned char>(s[i]);
        if (b0 < 0x80) {
            // An "&" before "#" would read as the start of a reference.
            if (references && b0 == '&' && i + 1 < s.size() && s[i + 1] == '#') {
                AjouteReference(out, '&');
                dernier = 0;
            } else {
                debutDernier = out.size();
                dernier = b0;
                out += static_cast<char>(b0);
            }
            ++i;
            continue;
        }
        auto [cp, len] = LitUtf8(s, i);
        if (len == 0) { // not UTF-8: keep the byte as a Windows-1252 character
            out += static_cast<char>(b0);
            dernier = 0;
            ++i;
            continue;
        }
        i += static_cast<std::size_t>(len);
        if (cp == 0xFEFF && out.empty() && i == static_cast<std::size_t>(len))
            continue; // a byte-order mark opening the text is no character
        if (cp >= 0x0300 && cp <= 0x036F) {
            // A combining mark: composed with the letter before it when
            // Windows-1252 has the composed letter, else dropped (the
            // letter is its closest Latin form) and counted. Kept as
            // references, it makes with the letter the character Unicode
            // composes of them, or stays a reference of its own.
            if (!out.empty()) {
                if (char c = compose(out.back(), cp)) {
                    out.back() = c;
                    debutDernier = out.size() - 1;
                    dernier = versUnicode(static_cast<unsigned char>(c));
                    continue;
                }
            }
            if (references) {
                if (char32_t c = dernier != 0 ? composeUnicode(dernier, cp) : 0) {
                    out.resize(debutDernier);
                    ecrit(c);
                } else {
                    AjouteReference(out, cp);
                    dernier = 0;
                }
            } else if (remplaces) {
                ++*remplaces;
            }
            continue;
        }
        auto it = inv.find(cp);
        if (it != inv.end() || references) {
            ecrit(cp);
        } else if (const char* a = approche(cp)) {
            out += a;
            dernier = 0;
            if (remplaces) ++*remplaces;
        } else {
            out += '?';
            dernier = 0;
            if (remplaces) ++*remplaces;
        }
    }
    return out;
}

} // namespace

std::string Utf8VersAnsi(std::string_view utf8, std::size_t* remplaces) {
    return VersAnsi(utf8, remplaces, false);
}

std::string Utf8VersAnsiRef(std::string_view utf8) { return VersAnsi(utf8, nullptr, true); }

std::size_t PointVirgule(std::string_view s, std::size_t debut) {
    for (std::size_t p = s.find(';', debut); p != std::string_view::npos; p = s.find(';', p + 1)) {
        std::size_t k = p;
        while (k > debut && s[k - 1] >= '0' && s[k - 1] <= '9') --k;
        if (k == p || k < debut + 2 || s[k - 1] != '#' || s[k - 2] != '&') return p;
    }
    return std::string_view::npos;
}

bool ContientReference(std::string_view ansi) {
    for (auto p = ansi.find("&#"); p != std::string_view::npos; p = ansi.find("&#", p + 2)) {
        std::size_t j = p + 2;
        while (j < ansi.size() && ansi[j] >= '0' && ansi[j] <= '9') ++j;
        if (j > p + 2 && j < ansi.size() && ansi[j] == ';') return true;
    }
    return false;
}

} // namespace sylvane
