// Fuzz target of the rich text reader of the notes: any bytes give styled
// runs and plain text without a crash or a hang, and the plain text never
// holds more than the input.
#include "text/rtf.h"

#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    const std::string_view octets(reinterpret_cast<const char*>(donnees), taille);
    std::size_t lus = 0;
    for (const auto& s : LitRtf(octets)) lus += s.texte.size();
    (void)lus;
    (void)TexteRtf(octets);
    (void)SansRtf(octets);
    return 0;
}
