// The search of a record's place in a sort table, shared by the three
// tables.
#pragma once

#include "store/table_tri.h"

#include <cstdint>

namespace sylvane {

// Place of record n: a bisection to an equal key, then a walk through the
// equal keys both ways; a table out of order is looked through whole.
template <class Cle, class F>
inline std::uint32_t Trouve(std::uint32_t n, const Cle& k, const TableTri& t, F cle) {
    const std::size_t nb = t.taille();
    std::size_t bas = 1, haut = nb, trouve = 0;
    while (bas <= haut) {
        std::size_t m = bas + (haut - bas) / 2;
        Cle c = cle(t.at(m));
        if (k > c)
            bas = m + 1;
        else if (k < c) {
            if (m == 1) break;
            haut = m - 1;
        } else {
            trouve = m;
            break;
        }
    }
    if (trouve) {
        for (std::size_t i = trouve; i >= 1 && cle(t.at(i)) == k; --i)
            if (t.at(i) == n) return static_cast<std::uint32_t>(i);
        for (std::size_t i = trouve + 1; i <= nb && cle(t.at(i)) == k; ++i)
            if (t.at(i) == n) return static_cast<std::uint32_t>(i);
    }
    for (std::size_t i = 1; i <= nb; ++i)
        if (t.at(i) == n) return static_cast<std::uint32_t>(i);
    return 0;
}

} // namespace sylvane
