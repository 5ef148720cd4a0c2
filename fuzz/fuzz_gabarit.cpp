// Fuzz target of the page template (".svp") of the charts: any bytes read
// as a template give its records or ErreurGabarit, never a crash or a hang.
#include "charts/gabarit.h"
#include "store/fichier_memoire.h"

#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    SystemeMemoire fs;
    ecrireTout(fs, "/g.svp", std::string_view(reinterpret_cast<const char*>(donnees), taille));
    try {
        LecteurGabarit l(fs, "/g.svp");
        const EnteteGabarit& e = l.Entete();
        if (e.feuillesH < 1 || e.feuillesV < 1) __builtin_trap();
        EnregGabarit g;
        while (l.Suivant(g))
            if (g.type != 'C' && g.type != 'L' && g.type != 'T') __builtin_trap();
    } catch (const ErreurGabarit&) {
    }
    return 0;
}
