// Fuzz target of the journal a crash leaves beside a base: a sound base with
// any bytes as its journal opens after the replay, or is refused with
// ErreurES, and never grows past what a journal can restore.
#include "store/base.h"
#include "store/fichier_memoire.h"

#include <cstdint>

using namespace sylvane;

namespace {

// One small base, made once: the journal is what varies.
const SystemeMemoire& Modele() {
    static SystemeMemoire* fs = [] {
        auto* m = new SystemeMemoire;
        Parametres p;
        Base b(*m, p);
        b.Nouvelle("/b.sv2");
        for (int i = 0; i < 20; ++i) b.CreePersonne("Martin", "Jean", "", 'H', "1850");
        b.FermeBase();
        return m;
    }();
    return *fs;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    SystemeMemoire fs;
    fs.copieDe(Modele());
    const std::size_t avant = fs.contenu("/b.sv2").size();
    ecrireTout(fs, "/b.log", std::string_view(reinterpret_cast<const char*>(donnees), taille));
    Parametres p;
    Base b(fs, p);
    try {
        b.Ouvre("/b.sv2");
        for (std::uint32_t n = 1; n <= 20; ++n) (void)b.NomLong(n);
        b.FermeBase();
    } catch (const ErreurES&) {
    }
    if (fs.contenu("/b.sv2").size() > avant + 2000) __builtin_trap();
    return 0;
}
