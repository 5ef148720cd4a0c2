// Fuzz target of the picture header readers and of the program's own
// decoders: the first byte picks the format, the rest is the file. Any
// bytes are read or refused without a crash, a hang or an allocation past
// the bound of pixels.
#include "exchange/image_decodeur.h"
#include "exchange/image_entete.h"
#include "store/fichier_memoire.h"

#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    if (taille == 0) return 0;
    const auto format = static_cast<FormatImage>(1 + donnees[0] % 15);
    const std::string octets(reinterpret_cast<const char*>(donnees) + 1, taille - 1);
    SystemeMemoire fs;
    ecrireTout(fs, "/image", octets);
    auto f = fs.ouvrir("/image", Mode::Lecture);
    (void)InspecteEntete(*f, format, donnees[0] & 0x80);
    if (DecodeurPropre(format)) {
        const ImageDecodee im = DecodeImage(octets, format);
        if (im.erreur.empty() && im.pixels.size() != std::size_t{im.largeur} * im.hauteur)
            __builtin_trap();
    }
    return 0;
}
