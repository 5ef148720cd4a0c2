// Fuzz target of register capture: any bytes, read as each of the four
// kinds of register, into a new base that must then be whole.
#include "exchange/releve.h"
#include "store/base.h"
#include "store/fichier_memoire.h"

#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    const std::string_view octets(reinterpret_cast<const char*>(donnees), taille);
    // The first byte picks the kind, so that the corpus steers it.
    const auto genre = static_cast<GenreReleve>(taille ? donnees[0] % 4 : 0);
    SystemeMemoire fs;
    Parametres p;
    Base b(fs, p);
    b.Nouvelle("/r.sv2");
    OptionsReleve o;
    o.parametres = &p;
    const RapportReleve r = ImporteReleve(b, octets.substr(taille ? 1 : 0), genre, o);
    if (!r.refuse()) {
        // What was committed opens again, with the counts it was made with.
        b.FermeBase();
        Base relue(fs, p);
        relue.Ouvre("/r.sv2");
        if (relue.Tete().nbEvenements != r.evenements) __builtin_trap();
        relue.FermeBase();
    } else {
        b.Abandonne();
    }
    return 0;
}
