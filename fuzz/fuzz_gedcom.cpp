// Fuzz target of the GEDCOM reader: any bytes must read without a crash, a
// hang or a read out of bounds, and give a tree the import can walk.
#include "exchange/gedcom_lecteur.h"

#include <cstdint>
#include <cstdlib>

using namespace sylvane;

namespace {

void exige(bool condition) {
    if (!condition) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    const GedcomLu g =
        LitGedcomOctets(std::string_view(reinterpret_cast<const char*>(donnees), taille));
    const std::size_t n = g.lignes().size();
    std::size_t attendu = 0;
    for (std::uint32_t r : g.enregistrements()) {
        exige(r == attendu && g.ligne(r).niveau == 0);
        attendu = g.fin(r);
    }
    exige(attendu == n);
    for (std::size_t i = 0; i < n; ++i) {
        const LigneGedcom& l = g.ligne(i);
        exige(g.fin(i) > i && g.fin(i) <= n && l.niveau <= 5);
        exige(i == 0 || g.numero(i) > g.numero(i - 1));
        exige(!g.tag(i).empty());
        (void)g.valeur(i).size();
        for (std::size_t j : g.sousLignes(i))
            exige(g.ligne(j).niveau == l.niveau + 1);
        const std::size_t c = g.cible(i);
        exige(c == GedcomLu::npos || c < n);
        exige(g.pointeur(i) <= g.nombrePointeurs() && g.lien(i) <= g.nombrePointeurs());
        (void)g.tag55(i);
    }
    for (const auto& a : g.rapport().anomalies)
        exige(a.exemples.size() <= NombreExemples);
    return 0;
}
