// A small reader of rich text ("{\rtf1" groups), as the notes hold them:
// it gives styled runs for the editors, writers and printing, and the plain
// text that keyword search sees. Text is Windows-1252 bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

enum class Alignement { Gauche, Centre, Droite, Justifie };

// A run of text sharing one style. Paragraph ends are "\r\n" in the text.
struct SegmentRtf {
    std::string texte;
    bool gras = false;
    bool italique = false;
    bool souligne = false;
    Alignement alignement = Alignement::Gauche;
    std::string police; // font name from the font table, "" when none
    int taille = 0;     // in half-points as written (\fs24 is 24), 0 when unset
};

// Runs of one rich text group; runs of the same style are joined. Text
// outside the outer group and unknown control words are ignored; a group
// left open at the end of the text is taken as closed.
std::vector<SegmentRtf> LitRtf(std::string_view rtf);
// The plain text of one rich text group.
std::string TexteRtf(std::string_view rtf);
// Each "{\rtf1\" group of the text replaced by its plain text, the rest
// copied as it stands.
std::string SansRtf(std::string_view texte);

} // namespace sylvane
