// Fuzz target of the base file: any bytes opened as a base must open or be
// refused with ErreurES, and every record read without a crash or a hang.
#include "store/base.h"
#include "store/fichier_memoire.h"

#include <algorithm>
#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    SystemeMemoire fs;
    ecrireTout(fs, "/f.sv2", std::string_view(reinterpret_cast<const char*>(donnees), taille));
    Parametres p;
    Base b(fs, p);
    try {
        b.Ouvre("/f.sv2", true);
        const Entete& e = b.Tete();
        for (std::uint32_t n = 1; n <= std::min<std::uint32_t>(e.maxPersonne, 300); ++n) {
            (void)b.NomLong(n);
            (void)b.NoteAvecMariages(n);
            for (int i = 1; i <= 3; ++i) (void)b.EvtNo(n, i), (void)b.DocNo(n, i);
        }
        for (std::size_t i = 1; i <= std::min<std::size_t>(b.TablePersonnes().taille(), 300); ++i)
            (void)b.CleTriFiche(b.TriFiche(i));
        for (std::uint32_t v = 1; v <= std::min<std::uint32_t>(e.maxEvenement, 300); ++v)
            (void)b.LibelleEvt(v), (void)b.NoteEvt(v);
        for (std::uint32_t d = 1; d <= std::min<std::uint32_t>(e.maxDocument, 300); ++d)
            (void)b.TitreDoc(d), (void)b.NoteDoc(d);
        for (std::uint32_t k = 1; k <= std::min<std::uint32_t>(e.nbMots, 300); ++k)
            (void)b.LitMot(k), (void)b.PersonnesMot(k);
        b.Abandonne();
    } catch (const ErreurES&) {
    }
    return 0;
}
