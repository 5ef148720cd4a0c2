#include "publish/html_texte.h"

#include "text/rtf.h"

#include <array>
#include <cstdio>

namespace sylvane {
namespace {

// Named entities of 0xC0 to 0xFF; nullptr where the byte passes raw.
constexpr std::array<const char*, 64> kLettres = {
    "Agrave", "Aacute", "Acirc",  "Atilde", "Auml",   "Aring",  "AElig",  "Ccedil",
    "Egrave", "Eacute", "Ecirc",  "Euml",   "Igrave", "Iacute", "Icirc",  nullptr,
    "ETH",    "Ntilde", "Ograve", "Oacute", "Ocirc",  "Otilde", "Ouml",   nullptr,
    "Oslash", "Ugrave", "Uacute", "Ucirc",  "Uuml",   "Yacute", "THORN",  "szlig",
    "agrave", "aacute", "acirc",  "atilde", "auml",   "aring",  "aelig",  "ccedil",
    "egrave", "eacute", "ecirc",  "euml",   "igrave", "iacute", "icirc",  "iuml",
    "eth",    "ntilde", "ograve", "oacute", "ocirc",  nullptr,  "otilde", nullptr,
    "oslash", "ugrave", "uacute", "ucirc",  "uuml",   "yacute", "thorn",  "yuml",
};

// Length of a character reference "&#N;" at i, 0 when there is none.
std::size_t Reference(std::string_view t, std::size_t i) {
    if (i + 3 >= t.size() || t[i + 1] != '#') return 0;
    std::size_t j = i + 2;
    while (j < t.size() && j - i < 10 && t[j] >= '0' && t[j] <= '9') ++j;
    if (j == i + 2 || j >= t.size() || t[j] != ';') return 0;
    return j - i + 1;
}

void AjouteEntite(std::string& r, std::string_view t, std::size_t& i) {
    const unsigned char c = static_cast<unsigned char>(t[i]);
    if (c == '&') {
        if (std::size_t n = Reference(t, i)) {
            r.append(t.substr(i, n));
            i += n - 1;
        } else {
            r += "&amp;";
        }
    } else if (c == '<') {
        r += "&lt;";
    } else if (c == '>') {
        r += "&gt;";
    } else if (c == 0xA9) {
        r += "&copy;";
    } else if (c >= 0xC0 && kLettres[c - 0xC0]) {
        r += '&';
        r += kLettres[c - 0xC0];
        r += ';';
    } else {
        r += static_cast<char>(c);
    }
}

const char* TagAlignement(Alignement a) {
    switch (a) {
    case Alignement::Droite: return "<BR><RIGHT>";
    case Alignement::Centre: return "<BR><CENTER>";
    default: return "<BR><LEFT>";
    }
}

} // namespace

std::string EntiteHTML(std::string_view texte) {
    std::string r;
    r.reserve(texte.size() + texte.size() / 8);
    for (std::size_t i = 0; i < texte.size(); ++i) AjouteEntite(r, texte, i);
    return r;
}

std::string TexteRicheHTML(std::string_view texte) {
    std::vector<SegmentRtf> segments;
    if (texte.substr(0, 5) == "{\\rtf")
        segments = LitRtf(texte);
    else
    {
        SegmentRtf s;
        s.texte = std::string(texte);
        segments.push_back(std::move(s));
    }
    std::string r;
    bool gras = false, souligne = false, italique = false;
    if (!segments.empty()) {
        const SegmentRtf& s = segments.front();
        if (s.gras) r += "<B>";
        if (s.souligne) r += "<U>";
        if (s.italique) r += "<I>";
        gras = s.gras, souligne = s.souligne, italique = s.italique;
        r += TagAlignement(s.alignement);
    }
    bool finParagraphe = false;
    for (const SegmentRtf& s : segments) {
        const std::string_view t = s.texte;
        for (std::size_t i = 0; i < t.size(); ++i) {
            if (gras != s.gras) r += s.gras ? "<B>" : "</B>";
            if (souligne != s.souligne) r += s.souligne ? "<U>" : "</U>";
            if (italique != s.italique) r += s.italique ? "<I>" : "</I>";
            gras = s.gras, souligne = s.souligne, italique = s.italique;
            if (t[i] == '\r' || t[i] == '\n') {
                r += t[i];
                finParagraphe = t[i] == '\n' || finParagraphe;
                continue;
            }
            if (finParagraphe) r += TagAlignement(s.alignement);
            finParagraphe = false;
            AjouteEntite(r, t, i);
        }
    }
    r += "</TD></TR>";
    if (gras) r += "</B>";
    if (italique) r += "</I>";
    if (souligne) r += "</U>";
    return r;
}

std::string CouleurHTML(std::int32_t c) {
    const std::uint32_t v = static_cast<std::uint32_t>(c) & 0xFFFFFF;
    char t[8];
    std::snprintf(t, sizeof t, "%02X%02X%02X", v & 0xFF, (v >> 8) & 0xFF, (v >> 16) & 0xFF);
    return t;
}

std::string FeuilleStyle(const Parametres& p) {
    std::string r = "<style type=\"Text/css\">\r\n<!--\r\n";
    for (const auto& [classe, couleur] : {std::pair{"Homme", p.couleurCadreHomme},
                                          std::pair{"Femme", p.couleurCadreFemme},
                                          std::pair{"Indetermine", p.couleurCadreIndetermine}}) {
        const std::int32_t c = couleur & 0xFFFFFF;
        r += std::string(".") + classe + " {  background-color: #" + CouleurHTML(c) +
             "; link-color: #" + CouleurHTML(0xFFFFFF - c) + " }\r\n";
    }
    r += ".defaut {  font-size: x-small; font-style: normal}\r\n-->\r\n</style>\r\n";
    return r;
}

} // namespace sylvane
