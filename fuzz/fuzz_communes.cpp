// Fuzz target of the communes gazetteer (".svx"): any bytes opened as the
// file give a clear error or communes, names and words read without a
// crash, a hang or an allocation the file can't justify; a file that opens
// reorganises into one that opens again with the same communes.
#include "exchange/communes.h"
#include "store/fichier_memoire.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    SystemeMemoire fs;
    ecrireTout(fs, "/c/France.svx", std::string_view(reinterpret_cast<const char*>(donnees), taille));
    try {
        FichierCommunes f(fs, "/c/France.svx");
        const std::uint32_t n = std::min<std::uint32_t>(f.Nombre(), 200);
        std::vector<Commune> lues;
        for (std::uint32_t i = 1; i <= n; ++i) lues.push_back(f.Lit(i));
        for (std::uint32_t i = 1; i <= std::min<std::uint32_t>(f.NombreNoms(), 200); ++i)
            (void)f.NomIndex(i), (void)f.CommunesNom(i);
        for (std::uint32_t k = 1; k <= std::min<std::uint32_t>(f.NombreMots(), 200); ++k)
            (void)f.Mot(k), (void)f.CommunesMot(k);
        bool exact = false;
        (void)f.ChercheNom("Saint", exact);
        (void)f.ChercheMot("Saint");
        (void)f.NomsCommencant("S", 20);
        if (f.Nombre() <= 200) {
            f.EcritCommentaire(1, "vu");
            if (!f.Reorganise()) __builtin_trap();
            FichierCommunes relu(fs, "/c/France.svx", true);
            if (relu.Nombre() != f.Nombre()) __builtin_trap();
        }
    } catch (const ErreurES&) {
    } catch (const std::runtime_error&) {
    }
    return 0;
}
