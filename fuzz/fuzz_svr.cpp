// Fuzz target of the two .svr readers: any bytes read into a new base or
// integrated into an open one end in a base or a clear ErreurLecture.
#include "exchange/svr.h"
#include "store/base.h"
#include "store/fichier_memoire.h"
#include "text/reglages.h"

#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    SystemeMemoire fs;
    ecrireTout(fs, "/f.svr", std::string_view(reinterpret_cast<const char*>(donnees), taille));
    Parametres p;
    for (int integration = 0; integration < 2; ++integration) {
        Base b(fs, p);
        b.Nouvelle("/b.sv2");
        try {
            if (integration) {
                b.CreePersonne("Martin", "Jean", "", 'H', "1850");
                IntegreSvr(b, fs, "/f.svr");
            } else {
                ReglagesMemoire r;
                LitSvrNouvelleBase(b, fs, "/f.svr", r);
            }
        } catch (const ErreurLecture&) {
        } catch (const ErreurES&) {
        }
        b.Abandonne();
    }
    return 0;
}
