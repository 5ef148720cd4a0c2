// Fuzz target of the message readers: a compiled .mes file and a message
// source, any bytes, read or refused without a crash.
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
    return 0;
}
