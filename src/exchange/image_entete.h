// The header of a picture file, read by plain file reads and shown as
// labelled values beside the picture. Each reader follows the published
// layout of its format; every offset and count it meets is checked against
// the file's size before it is followed, so that a damaged or hostile file
// gives an error text and the lines read before it, never more.
#pragma once

#include "store/fichier.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

// The picture formats the viewer knows, by what their files hold.
enum class FormatImage {
    Inconnu,
    Bmp,  // bmp, dib, rle
    Gif,
    Jpeg,
    Png,
    Tiff,
    Tga,
    Pcx,
    Cut,  // Dr. Halo, its palette in a sibling ".pal"
    Mac,  // MacPaint, with or without its MacBinary header
    Msp,  // Microsoft Paint
    Pic,  // PC Paint / Pictor
    Iff,  // iff, lbm
    Img,  // img, gem
    Wpg,  // WordPerfect Graphics
    Meta, // emf, wmf: drawings, no header shown
};

// The extension of a path: what follows the last ".", in lower case; "" when
// the file name has none.
std::string ExtensionFichier(std::string_view chemin);
// The format of an extension (given without its dot, in any case).
FormatImage FormatExtension(std::string_view extension);
// Whether the viewer shows files of this extension as pictures.
bool ExtensionImage(std::string_view extension);

struct LigneEntete {
    std::string libelle;
    std::string valeur;
    // "Width: 640"; a label that ends in "= " is followed by its value alone.
    std::string Texte() const;
};

struct EnteteImage {
    FormatImage format = FormatImage::Inconnu;
    std::vector<LigneEntete> lignes;
    // Empty when the header was read whole; else the reason, Windows-1252
    // ("Entête de fichier erroné", "Erreur lecture fichier").
    std::string erreur;
};

// The texts of the failures a reader of pictures gives.
inline constexpr const char* kEnteteErronee = "Ent\xEAte de fichier erron\xE9";
inline constexpr const char* kErreurLecture = "Erreur lecture fichier";

// Reads the header of an open file as the given format. `palette`: whether
// a palette file stands beside it (Dr. Halo only).
EnteteImage InspecteEntete(Fichier& f, FormatImage format, bool palette = false);
// The same for a path, the format taken from its extension. A file that
// can't be opened gives the error and no line.
EnteteImage InspecteFichier(SystemeFichiers& fs, const std::string& chemin);

} // namespace sylvane
