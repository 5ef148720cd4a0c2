#include "exchange/image_decodeur.h"

#include <algorithm>
#include <array>

namespace sylvane {
namespace {

constexpr const char* kAllocation = "Allocation memoire impossible pour DIB";

// A reader over the file's bytes that never reads past their end: a read
// past it answers 0 and marks the reader short.
class Flux {
  public:
    Flux(std::string_view s, std::size_t debut = 0) : s_(s), p_(std::min(debut, s.size())) {}
    bool fin() const { return p_ >= s_.size(); }
    bool court() const { return court_; }
    std::size_t position() const { return p_; }
    std::size_t reste() const { return s_.size() - p_; }
    void va(std::size_t p) { p_ = std::min(p, s_.size()); }
    std::uint8_t u8() {
        if (p_ >= s_.size()) {
            court_ = true;
            return 0;
        }
        return static_cast<std::uint8_t>(s_[p_++]);
    }
    std::uint16_t le16() {
        const std::uint8_t a = u8();
        return static_cast<std::uint16_t>(a | u8() << 8);
    }
    std::uint16_t be16() {
        const std::uint8_t a = u8();
        return static_cast<std::uint16_t>(a << 8 | u8());
    }
    std::uint32_t be32() {
        const std::uint32_t a = be16();
        return a << 16 | be16();
    }

  private:
    std::string_view s_;
    std::size_t p_;
    bool court_ = false;
};

// The allocation of the picture once its size is checked: a file of n bytes
// may claim at most 4 M pixels, or 4096 pixels for each of its bytes.
bool Alloue(ImageDecodee& im, std::uint32_t l, std::uint32_t h, std::size_t octets) {
    const std::uint64_t pixels = static_cast<std::uint64_t>(l) * h;
    const std::uint64_t permis =
        std::min<std::uint64_t>(kPixelsMax, std::max<std::uint64_t>(4u << 20, octets * 4096ull));
    if (l == 0 || h == 0) {
        im.erreur = kEnteteErronee;
        return false;
    }
    if (pixels > permis) {
        im.erreur = kAllocation;
        return false;
    }
    im.largeur = l;
    im.hauteur = h;
    im.pixels.assign(static_cast<std::size_t>(pixels), 0xFFFFFFFFu);
    return true;
}

std::uint32_t Rvb(int r, int v, int b) {
    return 0xFF000000u | static_cast<std::uint32_t>(r) << 16 | static_cast<std::uint32_t>(v) << 8 |
           static_cast<std::uint32_t>(b);
}

// The sixteen colours of the EGA and of the VDI, by index.
std::uint32_t Ega16(int i) {
    static constexpr std::array<std::uint32_t, 16> c = {
        0x000000, 0x0000AA, 0x00AA00, 0x00AAAA, 0xAA0000, 0xAA00AA, 0xAA5500, 0xAAAAAA,
        0x555555, 0x5555FF, 0x55FF55, 0x55FFFF, 0xFF5555, 0xFF55FF, 0xFFFF55, 0xFFFFFF};
    return 0xFF000000u | c[static_cast<std::size_t>(i & 15)];
}

// An EGA colour number of six bits: rgbRGB, the capitals two thirds.
std::uint32_t Ega64(int n) {
    auto canal = [n](int fort, int faible) {
        return ((n >> fort) & 1) * 0xAA + ((n >> faible) & 1) * 0x55;
    };
    return Rvb(canal(2, 5), canal(1, 4), canal(0, 3));
}

// A palette of 2^bits entries for a picture that brings none.
std::vector<std::uint32_t> PaletteDefaut(int bits) {
    std::vector<std::uint32_t> p;
    if (bits == 1) return {Rvb(0, 0, 0), Rvb(255, 255, 255)};
    if (bits == 2) return {Rvb(0, 0, 0), Rvb(0x55, 0xFF, 0xFF), Rvb(0xFF, 0x55, 0xFF),
                           Rvb(255, 255, 255)};
    if (bits <= 4) {
        for (int i = 0; i < 16; ++i) p.push_back(Ega16(i));
        return p;
    }
    const int n = 1 << std::min(bits, 8);
    for (int i = 0; i < n; ++i) {
        const int g = i * 255 / (n - 1);
        p.push_back(Rvb(g, g, g));
    }
    return p;
}

std::uint32_t Couleur(const std::vector<std::uint32_t>& palette, std::size_t i) {
    return i < palette.size() ? palette[i] : 0xFF000000u;
}

// Planar rows: bit x of plane k is bit k of the pixel's index.
void PlansVersIndex(const std::vector<std::vector<std::uint8_t>>& plans, std::uint32_t largeur,
                    std::vector<std::uint32_t>& index) {
    index.assign(largeur, 0);
    for (std::size_t k = 0; k < plans.size(); ++k)
        for (std::uint32_t x = 0; x < largeur && x / 8 < plans[k].size(); ++x)
            if (plans[k][x / 8] & (0x80 >> (x % 8))) index[x] |= 1u << k;
}

// --- Microsoft Paint --------------------------------------------------------------------

ImageDecodee Msp(std::string_view s) {
    ImageDecodee im;
    Flux f(s);
    const std::uint16_t cle1 = f.le16(), cle2 = f.le16();
    const bool v1 = cle1 == 0x6144 && cle2 == 0x4D6E; // "DanM"
    const bool v2 = cle1 == 0x694C && cle2 == 0x536E; // "LinS"
    const std::uint16_t l = f.le16(), h = f.le16();
    if (f.court() || (!v1 && !v2)) {
        im.erreur = kEnteteErronee;
        return im;
    }
    const std::size_t ligne = (l + 7u) / 8u;
    if (v1 && s.size() < 32 + ligne * h) {
        im.erreur = kErreurLecture;
        return im;
    }
    if (!Alloue(im, l, h, s.size())) return im;
    std::vector<std::uint8_t> octets(ligne);
    // Version 2: a table of the packed length of each row, then the rows.
    Flux rangs(s, 32);
    std::size_t donnees = v2 ? 32 + 2u * h : 32;
    for (std::uint32_t y = 0; y < h; ++y) {
        if (v1) {
            for (std::size_t i = 0; i < ligne; ++i)
                octets[i] = static_cast<std::uint8_t>(s[32 + y * ligne + i]);
        } else {
            const std::uint16_t longueur = rangs.le16();
            Flux r(s, donnees);
            std::size_t x = 0;
            while (x < ligne && r.position() < donnees + longueur && !r.fin()) {
                const std::uint8_t type = r.u8();
                if (type == 0) {
                    const std::uint8_t n = r.u8(), v = r.u8();
                    for (int k = 0; k < n && x < ligne; ++k) octets[x++] = v;
                } else {
                    for (int k = 0; k < type && x < ligne; ++k) octets[x++] = r.u8();
                }
            }
            if (x < ligne || r.court() || rangs.court()) {
                im.erreur = kErreurLecture;
                return im;
            }
            donnees += longueur;
        }
        for (std::uint32_t x = 0; x < l; ++x)
            im.pixels[y * l + x] = (octets[x / 8] & (0x80 >> (x % 8))) ? 0xFFFFFFFFu : 0xFF000000u;
    }
    return im;
}

// --- GEM bit image --------------------------------------------------------------------

ImageDecodee Img(std::string_view s) {
    ImageDecodee im;
    Flux f(s);
    f.be16(); // version
    const std::uint16_t entete = f.be16(), nplans = f.be16(), motif = f.be16();
    f.be16();
    f.be16(); // the size of a pixel in microns
    const std::uint16_t l = f.be16(), h = f.be16();
    if (f.court() || entete < 8 || nplans == 0 || nplans > 8) {
        im.erreur = kEnteteErronee;
        return im;
    }
    if (!Alloue(im, l, h, s.size())) return im;
    const std::size_t ligne = (l + 7u) / 8u;
    const auto palette = nplans == 1 ? std::vector<std::uint32_t>{Rvb(255, 255, 255), Rvb(0, 0, 0)}
                                     : PaletteDefaut(nplans);
    Flux d(s, 2u * entete);
    std::vector<std::vector<std::uint8_t>> plans(nplans, std::vector<std::uint8_t>(ligne));
    std::vector<std::uint32_t> index;
    std::uint32_t y = 0;
    while (y < h) {
        int repetitions = 1;
        // A vertical run: the next row stands for that many rows.
        if (d.reste() >= 4 && s[d.position()] == 0 && s[d.position() + 1] == 0 &&
            static_cast<std::uint8_t>(s[d.position() + 2]) == 0xFF) {
            d.va(d.position() + 3);
            repetitions = d.u8();
        }
        for (auto& plan : plans) {
            std::size_t x = 0;
            while (x < ligne) {
                if (d.fin()) {
                    im.erreur = kErreurLecture;
                    return im;
                }
                const std::uint8_t b = d.u8();
                if (b == 0) { // a pattern repeated
                    const std::uint8_t n = d.u8();
                    const std::size_t debut = d.position();
                    d.va(debut + motif);
                    if (d.court() || d.position() < debut + motif) {
                        im.erreur = kErreurLecture;
                        return im;
                    }
                    for (int k = 0; k < n && x < ligne; ++k)
                        for (int j = 0; j < motif && x < ligne; ++j)
                            plan[x++] = static_cast<std::uint8_t>(s[debut + j]);
                } else if (b == 0x80) { // bytes as they stand
                    const std::uint8_t n = d.u8();
                    for (int k = 0; k < n; ++k) {
                        const std::uint8_t v = d.u8();
                        if (x < ligne) plan[x++] = v;
                    }
                } else { // a run of blank or full bytes
                    const std::uint8_t v = (b & 0x80) ? 0xFF : 0x00;
                    for (int k = 0; k < (b & 0x7F) && x < ligne; ++k) plan[x++] = v;
                }
            }
        }
        PlansVersIndex(plans, l, index);
        for (int k = 0; k < std::max(repetitions, 1) && y < h; ++k, ++y)
            for (std::uint32_t x = 0; x < l; ++x)
                im.pixels[y * l + x] = Couleur(palette, index[x]);
    }
    return im;
}

// --- IFF bitmaps (ILBM planar, PBM chunky) -------------------------------------------------

// Unpacks one row of ByteRun1 into `sortie`.
bool ByteRun1(Flux& f, std::uint8_t* sortie, std::size_t n) {
    std::size_t x = 0;
    while (x < n) {
        if (f.fin()) return false;
        const auto c = static_cast<std::int8_t>(f.u8());
        if (c >= 0) {
            for (int k = 0; k <= c; ++k) {
                const std::uint8_t v = f.u8();
                if (x < n) sortie[x++] = v;
            }
        } else if (c != -128) {
            const std::uint8_t v = f.u8();
            for (int k = 0; k < 1 - c && x < n; ++k) sortie[x++] = v;
        }
    }
    return !f.court();
}

ImageDecodee Iff(std::string_view s) {
    ImageDecodee im;
    Flux f(s);
    if (s.substr(0, 4) != "FORM" || s.size() < 12) {
        im.erreur = kEnteteErronee;
        return im;
    }
    const bool chunky = s.substr(8, 4) == "PBM ";
    f.va(12);
    std::uint16_t l = 0, h = 0;
    int nplans = 0, masque = 0, compression = 0;
    bool bmhd = false;
    std::vector<std::uint32_t> palette;
    std::size_t corps = 0, longueurCorps = 0;
    for (int n = 0; f.reste() >= 8 && n < 10000; ++n) {
        const std::string_view id = s.substr(f.position(), 4);
        f.va(f.position() + 4);
        const std::uint32_t longueur = f.be32();
        const std::size_t debut = f.position();
        if (id == "BMHD" && longueur >= 20) {
            l = f.be16();
            h = f.be16();
            f.va(debut + 8);
            nplans = f.u8();
            masque = f.u8();
            compression = f.u8();
            bmhd = !f.court();
        } else if (id == "CMAP") {
            for (std::uint32_t i = 0; i + 3 <= longueur && i / 3 < 256; i += 3) {
                const int r = f.u8(), v = f.u8(), b = f.u8();
                palette.push_back(Rvb(r, v, b));
            }
        } else if (id == "BODY") {
            corps = debut;
            longueurCorps = std::min<std::size_t>(longueur, s.size() - debut);
            break;
        }
        f.va(debut + longueur + (longueur & 1));
    }
    const bool rvb = !chunky && nplans == 24;
    if (!bmhd || corps == 0 || nplans == 0 || (nplans > 8 && !rvb) || (chunky && nplans != 8)) {
        im.erreur = kEnteteErronee;
        return im;
    }
    if (!Alloue(im, l, h, s.size())) return im;
    if (palette.empty()) palette = PaletteDefaut(std::min(nplans, 8));
    const std::size_t rangee = chunky ? (l + 1u) & ~1u : ((l + 15u) / 16u) * 2u;
    const int total = chunky ? 1 : nplans + (masque == 1 ? 1 : 0);
    Flux d(s.substr(0, corps + longueurCorps), corps);
    std::vector<std::vector<std::uint8_t>> plans(static_cast<std::size_t>(total),
                                                 std::vector<std::uint8_t>(rangee));
    std::vector<std::uint32_t> index;
    for (std::uint32_t y = 0; y < h; ++y) {
        for (auto& plan : plans) {
            bool lu = true;
            if (compression == 1) {
                lu = ByteRun1(d, plan.data(), rangee);
            } else {
                for (auto& o : plan) o = d.u8();
                lu = !d.court();
            }
            if (!lu) {
                im.erreur = kErreurLecture;
                return im;
            }
        }
        std::uint32_t* ligne = &im.pixels[static_cast<std::size_t>(y) * l];
        if (chunky) {
            for (std::uint32_t x = 0; x < l; ++x) ligne[x] = Couleur(palette, plans[0][x]);
            continue;
        }
        std::vector<std::vector<std::uint8_t>> couleurs(plans.begin(), plans.begin() + nplans);
        PlansVersIndex(couleurs, l, index);
        for (std::uint32_t x = 0; x < l; ++x)
            ligne[x] = rvb ? 0xFF000000u | (index[x] & 0xFF) << 16 | (index[x] & 0xFF00) |
                                 (index[x] >> 16 & 0xFF)
                           : Couleur(palette, index[x]);
    }
    return im;
}

// --- PC Paint / Pictor ---------------------------------------------------------------------

ImageDecodee Pic(std::string_view s) {
    ImageDecodee im;
    Flux f(s);
    const std::uint16_t marque = f.le16(), l = f.le16(), h = f.le16();
    f.le16();
    f.le16(); // offsets
    const int plansInfo = f.u8();
    f.u8();
    f.u8(); // video mode
    const std::uint16_t typePalette = f.le16(), taillePalette = f.le16();
    const int bits = plansInfo & 0x0F, nplans = (plansInfo >> 4) + 1;
    const bool connu = (nplans == 1 && (bits == 1 || bits == 2 || bits == 4 || bits == 8)) ||
                       (bits == 1 && nplans <= 4);
    if (f.court() || marque != 0x1234 || !connu) {
        im.erreur = kEnteteErronee;
        return im;
    }
    const int profondeur = bits * nplans;
    std::vector<std::uint32_t> palette = PaletteDefaut(profondeur);
    const std::size_t debutPalette = f.position();
    if (typePalette == 4) { // VGA: three bytes of six bits
        palette.clear();
        for (int i = 0; i + 3 <= taillePalette; i += 3) {
            const int r = f.u8() & 63, v = f.u8() & 63, b = f.u8() & 63;
            palette.push_back(Rvb(r * 255 / 63, v * 255 / 63, b * 255 / 63));
        }
    } else if (typePalette == 3) { // EGA: one colour number a byte
        palette.clear();
        for (int i = 0; i < taillePalette; ++i) palette.push_back(Ega64(f.u8()));
    }
    f.va(debutPalette + taillePalette);
    if (!Alloue(im, l, h, s.size())) return im;
    // The packed data: blocks, each with its own run marker.
    const std::size_t rangee = (static_cast<std::size_t>(l) * bits + 7) / 8;
    const std::size_t plan = rangee * h;
    std::vector<std::uint8_t> brut;
    brut.reserve(std::min<std::size_t>(plan * nplans, s.size() * 64));
    const std::uint16_t blocs = f.le16();
    for (int b = 0; b < blocs && brut.size() < plan * nplans && !f.fin(); ++b) {
        const std::size_t debut = f.position();
        const std::uint16_t tailleBloc = f.le16();
        f.le16();
        const std::uint8_t marqueur = f.u8();
        const std::size_t fin = debut + std::max<std::size_t>(tailleBloc, 5);
        while (f.position() < fin && !f.fin() && brut.size() < plan * nplans) {
            const std::uint8_t c = f.u8();
            if (c != marqueur) {
                brut.push_back(c);
                continue;
            }
            std::size_t n = f.u8();
            if (n == 0) n = f.le16();
            const std::uint8_t v = f.u8();
            n = std::min(n, plan * nplans - brut.size());
            brut.insert(brut.end(), n, v);
        }
        f.va(fin);
    }
    if (brut.size() < plan * nplans || f.court()) {
        im.erreur = kErreurLecture;
        return im;
    }
    // Rows from the bottom; planes one after another.
    for (std::uint32_t y = 0; y < h; ++y) {
        const std::size_t r = static_cast<std::size_t>(h - 1 - y) * rangee;
        for (std::uint32_t x = 0; x < l; ++x) {
            std::uint32_t i = 0;
            if (nplans > 1) {
                for (int k = 0; k < nplans; ++k)
                    if (brut[k * plan + r + x / 8] & (0x80 >> (x % 8))) i |= 1u << k;
            } else {
                const std::size_t bit = static_cast<std::size_t>(x) * bits;
                i = (brut[r + bit / 8] >> (8 - bits - bit % 8)) & ((1u << bits) - 1);
            }
            im.pixels[static_cast<std::size_t>(y) * l + x] = Couleur(palette, i);
        }
    }
    return im;
}

} // namespace

bool DecodeurPropre(FormatImage format) {
    return format == FormatImage::Msp || format == FormatImage::Img ||
           format == FormatImage::Iff || format == FormatImage::Pic;
}

ImageDecodee DecodeImage(std::string_view octets, FormatImage format) {
    switch (format) {
    case FormatImage::Msp: return Msp(octets);
    case FormatImage::Img: return Img(octets);
    case FormatImage::Iff: return Iff(octets);
    case FormatImage::Pic: return Pic(octets);
    default: break;
    }
    ImageDecodee im;
    im.erreur = kEnteteErronee;
    return im;
}

} // namespace sylvane
