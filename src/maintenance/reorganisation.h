// Reorganisation: the whole base rewritten into a new file, every record
// renumbered in its sort order, with nothing left behind of the old copies.
#pragma once

#include "maintenance/interaction.h"
#include "store/base.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sylvane {

// Old number to new number, 0 for a record that is not carried over.
struct Renumerotation {
    std::vector<std::uint32_t> personnes, mariages, documents, evenements, mots;

    static std::uint32_t De(const std::vector<std::uint32_t>& t, std::uint32_t ancien) {
        return ancien < t.size() ? t[ancien] : 0;
    }
    std::uint32_t Personne(std::uint32_t n) const { return De(personnes, n); }
    std::uint32_t Mariage(std::uint32_t m) const { return De(mariages, m); }
    std::uint32_t Document(std::uint32_t d) const { return De(documents, d); }
    std::uint32_t Evenement(std::uint32_t e) const { return De(evenements, e); }
    std::uint32_t Mot(std::uint32_t k) const { return De(mots, k); }
};

struct ResultatReorganisation {
    // False when the user cancelled the question or stopped the run: the
    // base is then as it was.
    bool fait = false;
    Renumerotation numeros;
};

// The name of the scratch file, written in the base's folder so that the
// final rename stays on one file system.
inline constexpr const char* kFichierReorg = "Reorg.fic";

// Reorganises the open base. Asks message 842 (Yes: a ".sav" copy first,
// No: no copy, Cancel: nothing); shows each phase on the panel. The base
// is left open, reread from the new file. Any failure before the new file
// replaces the old one leaves the base as it was at its last commit; the
// error is thrown after the base has been opened again.
ResultatReorganisation Reorganiser(Base& b, const Interaction& io);

// The merge list beside the base (extension "fus"), its person numbers
// mapped. Errors are ignored; a missing list is no failure.
void RenumeroteListeFusion(SystemeFichiers& fs, const std::string& cheminBase,
                           const Renumerotation& r);

} // namespace sylvane
