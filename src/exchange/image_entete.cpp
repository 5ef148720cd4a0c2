#include "exchange/image_entete.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <ctime>
#include <utility>

namespace sylvane {
namespace {

// Bytes of a file read at an offset; a short read leaves the rest absent,
// and every getter answers 0 past the end (the caller checks `a` first).
class Octets {
  public:
    Octets() = default;
    explicit Octets(const std::string& s) : s_(s.begin(), s.end()) {}
    bool a(std::size_t n) const { return s_.size() >= n; }
    std::size_t taille() const { return s_.size(); }
    std::uint8_t u8(std::size_t i) const {
        return i < s_.size() ? s_[i] : 0;
    }
    std::uint16_t le16(std::size_t i) const {
        return static_cast<std::uint16_t>(u8(i) | u8(i + 1) << 8);
    }
    std::uint16_t be16(std::size_t i) const {
        return static_cast<std::uint16_t>(u8(i) << 8 | u8(i + 1));
    }
    std::uint32_t le32(std::size_t i) const {
        return le16(i) | static_cast<std::uint32_t>(le16(i + 2)) << 16;
    }
    std::uint32_t be32(std::size_t i) const {
        return static_cast<std::uint32_t>(be16(i)) << 16 | be16(i + 2);
    }
    std::string texte(std::size_t i, std::size_t n) const {
        if (i >= s_.size()) return {};
        const auto debut = s_.begin() + static_cast<std::ptrdiff_t>(i);
        return std::string(debut, debut + static_cast<std::ptrdiff_t>(std::min(n, s_.size() - i)));
    }

  private:
    std::vector<std::uint8_t> s_;
};

std::string N(std::uint64_t v) { return std::to_string(v); }

struct Redaction {
    EnteteImage& e;
    void operator()(std::string libelle, std::string valeur) {
        e.lignes.push_back({std::move(libelle), std::move(valeur)});
    }
    void echec(const char* raison) { e.erreur = raison; }
};

// A text of the file shown as it stands, its control bytes as blanks.
std::string Lisible(std::string s) {
    for (char& c : s)
        if (static_cast<unsigned char>(c) < 32) c = ' ';
    return s;
}

void LargeurHauteur(Redaction& r, std::uint64_t l, std::uint64_t h) {
    r("Width", N(l));
    r("Height", N(h));
}

// --- Simple headers: width, height, bits ---------------------------------------

void Simple(Redaction& r, std::uint64_t l, std::uint64_t h, std::uint64_t bits) {
    LargeurHauteur(r, l, h);
    r("Bits", N(bits));
}

void Bmp(const Octets& o, Redaction& r) {
    // A ".dib" may hold the information header alone.
    std::size_t i = (o.u8(0) == 'B' && o.u8(1) == 'M') ? 14 : 0;
    if (!o.a(i + 4)) return r.echec(kEnteteErronee);
    const std::uint32_t entete = o.le32(i);
    if (entete == 12 && o.a(i + 12))
        return Simple(r, o.le16(i + 4), o.le16(i + 6), o.le16(i + 10));
    if (entete < 40 || !o.a(i + 16)) return r.echec(kEnteteErronee);
    const auto l = static_cast<std::int32_t>(o.le32(i + 4));
    const auto h = static_cast<std::int32_t>(o.le32(i + 8));
    Simple(r, static_cast<std::uint64_t>(l < 0 ? -static_cast<std::int64_t>(l) : l),
           static_cast<std::uint64_t>(h < 0 ? -static_cast<std::int64_t>(h) : h), o.le16(i + 14));
}

void Gif(const Octets& o, Redaction& r) {
    if (!o.a(11) || o.texte(0, 3) != "GIF") return r.echec("Fichier GIF erron\xE9");
    Simple(r, o.le16(6), o.le16(8), (o.u8(10) & 7) + 1);
}

void Png(const Octets& o, Redaction& r) {
    static constexpr std::array<int, 7> canaux = {1, 0, 3, 1, 2, 0, 4};
    if (!o.a(26) || o.texte(1, 3) != "PNG" || o.texte(12, 4) != "IHDR")
        return r.echec(kEnteteErronee);
    const int type = o.u8(25);
    Simple(r, o.be32(16), o.be32(20), o.u8(24) * (type < 7 ? canaux[type] : 0));
}

// JPEG: the markers are walked to the first start of frame.
void Jpeg(Fichier& f, std::uint64_t taille, Redaction& r) {
    Octets o(f.lire(0, 2));
    if (o.u8(0) != 0xFF || o.u8(1) != 0xD8) return r.echec(kEnteteErronee);
    std::uint64_t p = 2;
    for (int n = 0; p + 4 <= taille && n < 100000; ++n) {
        Octets m(f.lire(p, 10));
        if (m.u8(0) != 0xFF) return r.echec(kEnteteErronee);
        const int code = m.u8(1);
        if (code == 0xFF) { // fill byte
            ++p;
            continue;
        }
        const bool sof = code >= 0xC0 && code <= 0xCF && code != 0xC4 && code != 0xC8 &&
                         code != 0xCC;
        if (sof) {
            if (!m.a(10)) return r.echec(kErreurLecture);
            return Simple(r, m.be16(7), m.be16(5), m.u8(4) * m.u8(9));
        }
        if (code == 0xD9 || code == 0xDA) break; // image data before any frame
        p += 2 + m.be16(2);
    }
    r.echec(kEnteteErronee);
}

// GEM IMG: words most significant byte first.
void Img(const Octets& o, Redaction& r) {
    if (!o.a(16) || o.be16(2) < 8) return r.echec(kEnteteErronee);
    Simple(r, o.be16(12), o.be16(14), o.be16(4));
}

// IFF: the chunks of the FORM are walked to the bitmap header.
void Iff(Fichier& f, std::uint64_t taille, Redaction& r) {
    Octets o(f.lire(0, 12));
    if (!o.a(12) || o.texte(0, 4) != "FORM") return r.echec(kEnteteErronee);
    std::uint64_t p = 12;
    for (int n = 0; p + 8 <= taille && n < 10000; ++n) {
        Octets c(f.lire(p, 8 + 20));
        if (c.texte(0, 4) == "BMHD") {
            if (!c.a(8 + 9)) return r.echec(kErreurLecture);
            return Simple(r, c.be16(8), c.be16(10), c.u8(16));
        }
        const std::uint64_t longueur = c.be32(4);
        p += 8 + longueur + (longueur & 1);
    }
    r.echec(kEnteteErronee);
}

// --- Dr. Halo CUT -----------------------------------------------------------------

void Cut(const Octets& o, bool palette, Redaction& r) {
    if (!o.a(6)) return r.echec(kEnteteErronee);
    LargeurHauteur(r, o.le16(0), o.le16(2));
    r(palette ? "Palette file" : "No Palette", "");
}

// --- MacPaint in its MacBinary wrapping ---------------------------------------------

std::string DateMac(std::uint32_t secondes) {
    // Seconds since the first of January 1904.
    const std::int64_t unix = static_cast<std::int64_t>(secondes) - 2082844800LL;
    const std::time_t t = static_cast<std::time_t>(unix);
    std::tm tm{};
    if (gmtime_r(&t, &tm) == nullptr) return N(secondes);
    char tampon[64];
    std::snprintf(tampon, sizeof tampon, "%02d/%02d/%04d %02d:%02d:%02d", tm.tm_mday,
                  tm.tm_mon + 1, tm.tm_year + 1900, tm.tm_hour, tm.tm_min, tm.tm_sec);
    return tampon;
}

void Mac(const Octets& o, Redaction& r) {
    const bool macBinaire = o.a(128) && o.u8(0) == 0 && o.u8(1) >= 1 && o.u8(1) <= 63 &&
                            o.u8(74) == 0 && o.u8(82) == 0;
    if (macBinaire) {
        r("Name", Lisible(o.texte(2, o.u8(1))));
        r("Type", Lisible(o.texte(65, 4)));
        r("Creator", Lisible(o.texte(69, 4)));
        r("Data fork size", N(o.be32(83)));
        r("Resource fork size", N(o.be32(87)));
        r("Creation date", DateMac(o.be32(91)));
        r("Modification date", DateMac(o.be32(95)));
    } else if (!o.a(512)) {
        return r.echec(kEnteteErronee);
    }
    // A MacPaint picture is always of one size.
    r("Width", "576");
    r("Height", "720");
}

// --- Microsoft Paint --------------------------------------------------------------------

void Msp(const Octets& o, Redaction& r) {
    if (!o.a(32)) return r.echec(kEnteteErronee);
    const std::string cle = o.texte(0, 4);
    const char* version = cle == "DanM" ? "1.0" : cle == "LinS" ? "2.0" : "Unknown";
    r("Windows Version", version);
    LargeurHauteur(r, o.le16(4), o.le16(6));
    r("Screen Aspect X", N(o.le16(8)));
    r("Screen Aspect Y", N(o.le16(10)));
    r("Printer Aspect X", N(o.le16(12)));
    r("Printer Aspect Y", N(o.le16(14)));
    if (version[0] == 'U') r.echec(kEnteteErronee);
}

// --- PCX -----------------------------------------------------------------------------------

void Pcx(const Octets& o, Redaction& r) {
    if (!o.a(128) || o.u8(0) != 0x0A) return r.echec(kEnteteErronee);
    r("Manufacturer", N(o.u8(0)));
    const char* version = "Unknown";
    switch (o.u8(1)) {
    case 0: version = "2.5"; break;
    case 2: version = "2.8 Palette included"; break;
    case 3: version = "2.8 Use default palette"; break;
    case 5: version = "3.0 (or later)"; break;
    default: break;
    }
    r("PC Paintbrush Ver.", version);
    r("Encoding", N(o.u8(2)));
    r("Bits per pixel", N(o.u8(3)));
    const int l = o.le16(8) - o.le16(4) + 1, h = o.le16(10) - o.le16(6) + 1;
    r("Width", std::to_string(l));
    r("Height", std::to_string(h));
    r("Horiz. Resolution", N(o.le16(12)));
    r("Vert. Resolution", N(o.le16(14)));
    r("Color planes", N(o.u8(65)));
    r("Bytes per line", N(o.le16(66)));
    r("Palette type", o.le16(68) == 2 ? "Gray scale" : "Color");
}

// --- PC Paint / Pictor ----------------------------------------------------------------------

void Pic(const Octets& o, Redaction& r) {
    static constexpr std::array<const char*, 15> videos = {
        "CGA 4 color",         "PCjr/Tandy 1000",    "CGA 2 color",       "EGA low resolution",
        "EGA 2 color",         "EGA 4 color",        "EGA 16 color",      "Hercules monochrome",
        "Plantronic",          "EGA low resolution", "AT&T or Toshiba 3100", "VGA 256 color",
        "VGA 16 color",        "Hercules InColor",   "VGA monochrome"};
    static constexpr std::array<const char*, 5> palettes = {
        "No palette", "One byte of color for a CGA border", "PCjr palette", "EGA palette",
        "VGA palette"};
    if (!o.a(17) || o.le16(0) != 0x1234) return r.echec(kEnteteErronee);
    r("Mark", N(o.le16(0)));
    LargeurHauteur(r, o.le16(2), o.le16(4));
    r("Top", N(o.le16(8)));
    r("Left", N(o.le16(6)));
    const int plans = o.u8(10);
    r("Bits per pixel", N((plans & 0x0F)));
    r("Color planes", N((plans >> 4) + 1));
    r("EMark", N(o.u8(11)));
    const int video = o.u8(12) - 'A';
    r("Video", video >= 0 && video < 15 ? videos[static_cast<std::size_t>(video)] : "Unknown");
    const int palette = o.le16(13);
    r("Palette", palette < 5 ? palettes[static_cast<std::size_t>(palette)] : "Unknown");
    r("Palette size", N(o.le16(15)));
}

// --- Truevision TGA -----------------------------------------------------------------------

void Tga(const Octets& o, Redaction& r) {
    if (!o.a(18)) return r.echec(kEnteteErronee);
    r("IdentSize", N(o.u8(0)));
    r("Color Map", o.u8(1) ? "Present" : "None");
    const char* type = "Unknown";
    switch (o.u8(2)) {
    case 1: type = "Uncompressed palette-driven"; break;
    case 2: type = "Uncompressed RGB"; break;
    case 3: type = "Uncompressed monochrome"; break;
    case 9: type = "Run-length encoded palette-driven"; break;
    case 10: type = "Run-length encoded RGB"; break;
    case 11: type = "Run-length encoded monochrome"; break;
    default: break;
    }
    r("Image Type", type);
    r("ColorMapStart", N(o.le16(3)));
    r("ColorMapLength", N(o.le16(5)));
    r("ColorMapBits", N(o.u8(7)));
    r("X Start", N(o.le16(8)));
    r("Y Start", N(o.le16(10)));
    LargeurHauteur(r, o.le16(12), o.le16(14));
    r("Color Bits", N(o.u8(16)));
    // The origin bits: bottom left is the normal storage.
    const int origine = (o.u8(17) >> 4) & 3;
    r("Storage", origine == 0 ? "Normal storage" : origine == 2 ? "Last line first" : "Reversed");
}

// --- TIFF -------------------------------------------------------------------------------------

const char* NomTag(int tag) {
    static constexpr std::pair<int, const char*> noms[] = {
        {254, "NewSubFileType"},
        {255, "SubFileType"},
        {256, "ImageWidth"},
        {257, "ImageLength"},
        {258, "BitsPerSample"},
        {259, "Compression"},
        {262, "PhotometricInterpretation"},
        {263, "Threshholding"},
        {264, "CellWidth"},
        {265, "CellLength"},
        {266, "FillOrder"},
        {269, "DocumentName"},
        {270, "ImageDescription"},
        {271, "Make"},
        {272, "Model"},
        {273, "StripOffsets"},
        {274, "Orientation"},
        {277, "SamplesPerPixel"},
        {278, "RowsPerStrip"},
        {279, "StripByteCounts"},
        {280, "MinSampleValue"},
        {281, "MaxSampleValue"},
        {282, "XResolution"},
        {283, "YResolution"},
        {284, "PlanarConfiguration"},
        {285, "PageName"},
        {286, "XPosition"},
        {287, "YPosition"},
        {288, "FreeOffsets"},
        {289, "FreeByteCounts"},
        {290, "GrayResponseUnit"},
        {291, "GrayResponseCurve"},
        {292, "Group3Options"},
        {293, "Group4Options"},
        {296, "ResolutionUnit"},
        {297, "PageNumber"},
        {301, "ColorResponseCurves"},
        {305, "Software"},
        {306, "DateTime"},
        {315, "Artist"},
        {316, "HostComputer"},
        {317, "Predictor"},
        {318, "WhitePoint"},
        {319, "PrimaryChromaticities"},
        {320, "ColorMap"},
        {321, "HalftoneHints"},
        {322, "TileWidth"},
        {323, "TileLength"},
        {324, "TileOffsets"},
        {325, "TileByteCounts"},
        {332, "InkSet"},
        {333, "InkNames"},
        {334, "NumberOfInks"},
        {336, "DotRange"},
        {337, "TargetPrinter"},
        {338, "ExtraSamples"},
        {339, "SampleFormat"},
        {340, "SMinSampleValue"},
        {341, "SMaxSampleValue"},
        {342, "TransferRange"},
        {512, "JPEGProc"},
        {513, "JPEGInterchangeFormat"},
        {514, "JPEGInterchangeFormatLength"},
        {515, "JPEGRestartInterval"},
        {517, "JPEGLosslessPredictors"},
        {518, "JPEGPointTransforms"},
        {519, "JPEGQTables"},
        {520, "JPEGDCTables"},
        {521, "JPEGACTables"},
        {529, "YCbCrCoefficients"},
        {530, "YCbCrSubSampling"},
        {531, "YCbCrPositioning"},
        {532, "ReferenceBlackWhite"},
        {33432, "Copyright"},
    };
    for (const auto& [n, nom] : noms)
        if (n == tag) return nom;
    return "Unknown";
}

// The directory is read entry by entry; the count of entries is trusted
// only as far as the file holds them, and values are never followed.
void Tiff(Fichier& f, std::uint64_t taille, Redaction& r) {
    Octets o(f.lire(0, 8));
    const std::string ordre = o.texte(0, 2);
    if (!o.a(8) || (ordre != "II" && ordre != "MM")) return r.echec(kEnteteErronee);
    const bool intel = ordre == "II";
    auto u16 = [intel](const Octets& x, std::size_t i) { return intel ? x.le16(i) : x.be16(i); };
    auto u32 = [intel](const Octets& x, std::size_t i) { return intel ? x.le32(i) : x.be32(i); };
    r("Number Type", intel ? "Intel" : "Motorola");
    r("Version", N(u16(o, 2)));
    const std::uint64_t offset = u32(o, 4);
    r("Offset", N(offset));
    if (u16(o, 2) != 42 || offset + 2 > taille) return r.echec(kEnteteErronee);
    const int nombre = u16(Octets(f.lire(offset, 2)), 0);
    static constexpr std::array<const char*, 6> types = {"Unknown", "Byte", "ASCII",
                                                         "Unsigned Int", "Unsigned Long",
                                                         "Rational"};
    static constexpr std::array<int, 6> tailles = {0, 1, 1, 2, 4, 8};
    const std::uint64_t lisibles = (taille - offset - 2) / 12;
    const int n = static_cast<int>(std::min<std::uint64_t>(static_cast<std::uint64_t>(nombre),
                                                           lisibles));
    const Octets entrees(f.lire(offset + 2, static_cast<std::size_t>(n) * 12));
    for (int i = 0; i < n; ++i) {
        const std::size_t e = static_cast<std::size_t>(i) * 12;
        const int type = u16(entrees, e + 2);
        const std::uint32_t longueur = u32(entrees, e + 4);
        const std::size_t t = static_cast<std::size_t>(type >= 1 && type <= 5 ? type : 0);
        r("Number", N(static_cast<std::uint64_t>(i) + 1));
        r("Tag", NomTag(u16(entrees, e)));
        r("Type", types[t]);
        const std::uint64_t octets = static_cast<std::uint64_t>(tailles[t]) * longueur;
        if (t == 0 || octets > 4)
            r("Offset = ", N(u32(entrees, e + 8)));
        else if (t == 3 && longueur <= 1)
            r(" = ", N(u16(entrees, e + 8)));
        else if (t == 2)
            r(" = ", Lisible(entrees.texte(e + 8, longueur)));
        else
            r(" = ", N(t == 1 ? entrees.u8(e + 8) : u32(entrees, e + 8)));
        r("  Length = ", N(longueur));
    }
    if (n < nombre) r.echec(kErreurLecture);
}

// --- WordPerfect Graphics -------------------------------------------------------------------

void Wpg(Fichier& f, std::uint64_t taille, Redaction& r) {
    Octets o(f.lire(0, 16));
    if (!o.a(16) || o.u8(0) != 0xFF || o.texte(1, 3) != "WPC") return r.echec(kEnteteErronee);
    r("ID", "WPC");
    const std::uint64_t premier = o.le32(4);
    r("First record offset", N(premier));
    r("Product", N(o.u8(8)));
    r("File type", N(o.u8(9)));
    r("Major Version", N(o.u8(10)));
    r("Minor Version", N(o.u8(11)));
    r("Encryption", N(o.le16(12)));
    r("Reserved", N(o.le16(14)));
    // The records: a type byte and a length of one, three or five bytes.
    bool palette = false, bitmap = false;
    std::uint64_t p = std::max<std::uint64_t>(premier, 16);
    for (int n = 0; p + 2 <= taille && n < 100000 && !bitmap; ++n) {
        Octets e(f.lire(p, 6 + 20));
        const int type = e.u8(0);
        std::uint64_t longueur = e.u8(1);
        std::size_t debut = 2;
        if (longueur == 0xFF) {
            longueur = e.le16(2);
            debut = 4;
            if (longueur & 0x8000) {
                longueur = (longueur & 0x7FFF) << 16 | e.le16(4);
                debut = 6;
            }
        }
        if (type == 0x0E && !palette) {
            palette = true;
            r("Color map found", "");
        } else if (type == 0x0B || type == 0x14) {
            // A bitmap of the first kind starts with its size; the second
            // kind with its rotation and frame, ten bytes.
            const std::size_t d = debut + (type == 0x14 ? 10 : 0);
            if (!e.a(d + 6)) break;
            Simple(r, e.le16(d), e.le16(d + 2), e.le16(d + 4));
            bitmap = true;
        } else if (type == 0x10) {
            break; // end of the file's records
        }
        p += debut + longueur;
    }
    r(bitmap ? "Bitmap found" : "No Bitmap found", "");
}

void Lit(Fichier& f, FormatImage format, bool palette, Redaction& r) {
    const std::uint64_t taille = f.taille();
    const Octets debut(f.lire(0, 512));
    switch (format) {
    case FormatImage::Bmp: return Bmp(debut, r);
    case FormatImage::Gif: return Gif(debut, r);
    case FormatImage::Png: return Png(debut, r);
    case FormatImage::Jpeg: return Jpeg(f, taille, r);
    case FormatImage::Img: return Img(debut, r);
    case FormatImage::Iff: return Iff(f, taille, r);
    case FormatImage::Cut: return Cut(debut, palette, r);
    case FormatImage::Mac: return Mac(debut, r);
    case FormatImage::Msp: return Msp(debut, r);
    case FormatImage::Pcx: return Pcx(debut, r);
    case FormatImage::Pic: return Pic(debut, r);
    case FormatImage::Tga: return Tga(debut, r);
    case FormatImage::Tiff: return Tiff(f, taille, r);
    case FormatImage::Wpg: return Wpg(f, taille, r);
    case FormatImage::Meta:
    case FormatImage::Inconnu: return;
    }
}

} // namespace

std::string LigneEntete::Texte() const {
    if (valeur.empty()) return libelle;
    if (libelle.size() >= 2 && libelle.compare(libelle.size() - 2, 2, "= ") == 0)
        return libelle + valeur;
    return libelle + ": " + valeur;
}

std::string ExtensionFichier(std::string_view chemin) {
    const auto barre = chemin.find_last_of("/\\");
    const auto nom = barre == std::string_view::npos ? chemin : chemin.substr(barre + 1);
    const auto point = nom.rfind('.');
    if (point == std::string_view::npos) return {};
    std::string e(nom.substr(point + 1));
    for (char& c : e) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return e;
}

FormatImage FormatExtension(std::string_view extension) {
    std::string e(extension);
    for (char& c : e) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    static constexpr std::pair<const char*, FormatImage> table[] = {
        {"bmp", FormatImage::Bmp},  {"dib", FormatImage::Bmp},  {"rle", FormatImage::Bmp},
        {"gif", FormatImage::Gif},  {"jpg", FormatImage::Jpeg}, {"jpeg", FormatImage::Jpeg},
        {"png", FormatImage::Png},  {"tif", FormatImage::Tiff}, {"tiff", FormatImage::Tiff},
        {"tga", FormatImage::Tga},  {"pcx", FormatImage::Pcx},  {"cut", FormatImage::Cut},
        {"mac", FormatImage::Mac},  {"msp", FormatImage::Msp},  {"pic", FormatImage::Pic},
        {"iff", FormatImage::Iff},  {"lbm", FormatImage::Iff},  {"img", FormatImage::Img},
        {"gem", FormatImage::Img},  {"wpg", FormatImage::Wpg},  {"emf", FormatImage::Meta},
        {"wmf", FormatImage::Meta},
    };
    for (const auto& [nom, f] : table)
        if (e == nom) return f;
    return FormatImage::Inconnu;
}

bool ExtensionImage(std::string_view extension) {
    return FormatExtension(extension) != FormatImage::Inconnu;
}

EnteteImage InspecteEntete(Fichier& f, FormatImage format, bool palette) {
    EnteteImage e;
    e.format = format;
    Redaction r{e};
    Lit(f, format, palette, r);
    return e;
}

EnteteImage InspecteFichier(SystemeFichiers& fs, const std::string& chemin) {
    const FormatImage format = FormatExtension(ExtensionFichier(chemin));
    EnteteImage e;
    e.format = format;
    try {
        auto f = fs.ouvrir(chemin, Mode::Lecture);
        bool palette = false;
        if (format == FormatImage::Cut) {
            const auto point = chemin.rfind('.');
            palette = fs.existe(chemin.substr(0, point) + ".pal") ||
                      fs.existe(chemin.substr(0, point) + ".PAL");
        }
        return InspecteEntete(*f, format, palette);
    } catch (const ErreurES&) {
        e.erreur = kErreurLecture;
    }
    return e;
}

} // namespace sylvane
