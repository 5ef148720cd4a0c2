// Fuzz target of the merge wizard's pairs file (".fus"): any bytes read as
// pairs give a table of real pairs or a clear error, and the renumbering
// after a reorganisation rewrites it without a crash.
#include "maintenance/fusion.h"
#include "maintenance/reorganisation.h"
#include "store/fichier_memoire.h"

#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    const std::string_view octets(reinterpret_cast<const char*>(donnees), taille);
    SystemeMemoire fs;
    ecrireTout(fs, "/b/base.fus", octets);
    try {
        const TableDoublons t = LitPaires(fs, "/b/base.fus");
        for (const auto& l : t.Lignes())
            if (l.premier == 0 || l.second == 0 || l.premier == l.second) __builtin_trap();
        EcritPaires(fs, "/b/copie.fus", t);
        if (LitPaires(fs, "/b/copie.fus").Lignes().size() != t.Lignes().size()) __builtin_trap();
    } catch (const ErreurES&) {
    }
    // A reorganisation that halved the numbers of persons renumbers the
    // pairs file kept beside the base; it never throws.
    Renumerotation r;
    for (std::uint32_t n = 0; n <= 100; ++n) r.personnes.push_back(n / 2);
    RenumeroteListeFusion(fs, "/b/base.sv2", r);
    return 0;
}
