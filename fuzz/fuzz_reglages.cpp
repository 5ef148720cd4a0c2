// Fuzz target of the settings file: any bytes read as "Sylvane.ini" give a
// store from which the general and per-base settings are read; what the
// store writes back reads again the same.
#include "store/fichier_memoire.h"
#include "text/parametres.h"
#include "text/reglages.h"

#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    SystemeMemoire fs;
    ecrireTout(fs, "/c/Sylvane.ini", std::string_view(reinterpret_cast<const char*>(donnees), taille));
    ReglagesIni r(fs, "/c/Sylvane.ini");
    Parametres p;
    LitParametres(r, p, "/programme");
    LitParametresBase(r, "/b/base.sv2", p);
    r.enregistre();
    ReglagesIni relu(fs, "/c/Sylvane.ini");
    for (const auto& s : r.sections())
        if (relu.section(s) != r.section(s)) __builtin_trap();
    return 0;
}
