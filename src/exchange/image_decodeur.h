// Decoders of the old picture formats that no library of the system reads:
// Microsoft Paint (.msp), GEM bit images (.img, .gem), IFF bitmaps (.iff,
// .lbm) and PC Paint / Pictor (.pic). Each gives 32-bit pixels, or the
// reason it could not; a size the header claims is checked against what
// the file can hold before anything is allocated.
#pragma once

#include "exchange/image_entete.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

struct ImageDecodee {
    std::uint32_t largeur = 0;
    std::uint32_t hauteur = 0;
    // Rows from the top, 0xAARRGGBB.
    std::vector<std::uint32_t> pixels;
    // Empty when decoded; else the reason, Windows-1252.
    std::string erreur;
};

// Whether the format is one of those decoded here.
bool DecodeurPropre(FormatImage format);
// Decodes the whole file's bytes.
ImageDecodee DecodeImage(std::string_view octets, FormatImage format);

// The most pixels a picture may have (256 MB of pixels).
inline constexpr std::uint64_t kPixelsMax = 64u * 1024 * 1024;

} // namespace sylvane
