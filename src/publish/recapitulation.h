// The recapitulation of keywords (`MnuRecapImp`, `MnuRecapRTF`,
// `MnuRecapHTML`, and `MnuEnsemble` for every indexed kind): for each
// keyword of a kind, in sort order, the persons whose notes hold it. One
// content, written to the printer's surface, to an RTF document and to an
// HTML page; the files are written whole or not at all.
#pragma once

#include "charts/surface.h"
#include "maintenance/interaction.h"
#include "publish/impression.h"
#include "store/base.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sylvane {

struct MotRecapitule {
    std::string mot;          // as a field shows it (blanks, not dots)
    std::uint32_t emplois = 0;
    std::vector<std::uint32_t> personnes;
};

struct GenreRecapitule {
    char marque = ' ';
    std::string libelle;
    std::vector<MotRecapitule> mots;
};

// The kinds of these marks that keep a keyword list, in this order; the
// others are passed over. False from `io` when the user stopped.
std::vector<GenreRecapitule> Recapitulation(Base& b, const std::vector<char>& marques,
                                            const Interaction& io = {});
// The marks of every indexed kind, in the order of the kinds.
std::vector<char> MarquesIndexees(Base& b);

// The outputs, under the title `titre`. False when the user stopped (the
// target is then as it was).
bool RecapitulationRTF(Base& b, SystemeFichiers& fs, const std::vector<GenreRecapitule>& r,
                       const std::string& titre, const std::string& chemin, const Interaction& io = {});
bool RecapitulationHTML(Base& b, SystemeFichiers& fs, const std::vector<GenreRecapitule>& r,
                        const std::string& titre, const std::string& chemin, const Interaction& io = {});
// On the pages of a surface, with the page head of the printed reports.
bool ImprimeRecapitulation(Base& b, Surface& s, const OptionsImpression& o,
                           const std::vector<GenreRecapitule>& r, const std::string& titre);

} // namespace sylvane
