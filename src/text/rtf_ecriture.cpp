#include "text/rtf_ecriture.h"

#include <algorithm>

namespace sylvane {
namespace {

const char* MotAlignement(Alignement a) {
    switch (a) {
    case Alignement::Centre: return "\\qc";
    case Alignement::Droite: return "\\qr";
    case Alignement::Justifie: return "\\qj";
    case Alignement::Gauche: break;
    }
    return "\\ql";
}

void Hexa(std::string& r, unsigned char c) {
    static constexpr char kChiffres[] = "0123456789abcdef";
    r += "\\'";
    r += kChiffres[c >> 4];
    r += kChiffres[c & 15];
}

// The text of a run: after a control word, a blank ends it when the text
// could be read as part of it.
void Texte(std::string& r, const std::string& t, bool apresMot) {
    for (std::size_t i = 0; i < t.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(t[i]);
        const bool debut = i == 0 && apresMot;
        if (c == '\r' && i + 1 < t.size() && t[i + 1] == '\n') {
            r += "\\par\r\n";
            ++i;
            continue;
        }
        if (c == '\\' || c == '{' || c == '}') {
            r += '\\';
            r += static_cast<char>(c);
        } else if (c == '\t') {
            r += "\\tab "; // the blank ends the word whatever follows
        } else if (c < 0x20 || c >= 0x7F) {
            Hexa(r, c);
        } else {
            if (debut) r += ' ';
            r += static_cast<char>(c);
        }
    }
}

} // namespace

bool AvecMiseEnForme(const std::vector<SegmentRtf>& segments) {
    return std::any_of(segments.begin(), segments.end(), [](const SegmentRtf& s) {
        return s.gras || s.italique || s.souligne || s.alignement != Alignement::Gauche ||
               !s.police.empty() || s.taille != 0;
    });
}

std::string EcritRtf(const std::vector<SegmentRtf>& segments) {
    std::vector<std::string> polices;
    for (const auto& s : segments)
        if (!s.police.empty() && std::find(polices.begin(), polices.end(), s.police) == polices.end())
            polices.push_back(s.police);
    std::string r = "{\\rtf1\\ansi\\ansicpg1252\\deff0";
    if (!polices.empty()) {
        r += "{\\fonttbl";
        for (std::size_t k = 0; k < polices.size(); ++k) {
            r += "{\\f" + std::to_string(k) + "\\fnil\\fcharset0 ";
            // A name ends at ";": the reader never gives one with it.
            std::string nom;
            Texte(nom, polices[k], false);
            r += nom + ";}";
        }
        r += "}";
    }
    r += "\r\n";
    Alignement alignement = Alignement::Gauche;
    for (const auto& s : segments) {
        if (s.texte.empty()) continue;
        bool apresMot = false;
        // Alignment is a paragraph setting: it stands outside the groups.
        if (s.alignement != alignement) {
            r += "\\pard";
            r += MotAlignement(s.alignement);
            alignement = s.alignement;
            apresMot = true;
        }
        if (!(s.gras || s.italique || s.souligne || !s.police.empty() || s.taille)) {
            Texte(r, s.texte, apresMot);
            continue;
        }
        r += '{';
        if (s.gras) r += "\\b";
        if (s.italique) r += "\\i";
        if (s.souligne) r += "\\ul";
        if (!s.police.empty()) {
            auto k = std::find(polices.begin(), polices.end(), s.police) - polices.begin();
            r += "\\f" + std::to_string(k);
        }
        if (s.taille) r += "\\fs" + std::to_string(s.taille);
        Texte(r, s.texte, true);
        r += '}';
    }
    r += "}";
    return r;
}

std::string TexteNoteRtf(const std::vector<SegmentRtf>& segments) {
    if (AvecMiseEnForme(segments)) return EcritRtf(segments);
    std::string t;
    for (const auto& s : segments) t += s.texte;
    return t;
}

} // namespace sylvane
