// Fuzz target of the message readers: a compiled .mes file and a message
// source, any bytes, read or refused without a crash. The compiled file is
// read both whole and as the running program reads it, one message at a
// time from the open file, after the check made when a language is chosen.
#include "store/fichier_memoire.h"
#include "text/messages.h"

#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    const std::string_view octets(reinterpret_cast<const char*>(donnees), taille);
    (void)LitFichierMessages(octets);
    try {
        (void)LitSourceMessages(octets);
    } catch (const ErreurSourceMessages&) {
    }
    SystemeMemoire fs;
    ecrireTout(fs, "/Fran\xE7" "ais.mes", octets);
    auto f = fs.ouvrir("/Fran\xE7" "ais.mes", Mode::Lecture);
    (void)DefautFichierMessages(*f);
    LecteurMessages l(std::move(f));
    // The first messages of the first blocks, the borders, and back.
    for (int n : {-1, 0, 1, 2, 999, 1000, 1001, 2000, 5001, 31999, 32000, 32001, 1})
        (void)l.message(n);
    return 0;
}
