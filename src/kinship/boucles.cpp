#include "kinship/boucles.h"

#include "store/base.h"

#include <utility>

namespace sylvane {

std::vector<std::uint32_t> RompsBouclesAscendance(Base& b) {
    std::vector<std::uint32_t> rompus;
    const std::uint32_t max = b.Tete().maxPersonne;
    std::vector<std::uint8_t> etat(std::size_t(max) + 1, 0); // 0 unseen, 1 on the path, 2 done
    std::vector<std::pair<std::uint32_t, int>> pile;
    for (std::uint32_t depart = 1; depart <= max; ++depart) {
        if (etat[depart]) continue;
        pile.push_back({depart, 0});
        etat[depart] = 1;
        while (!pile.empty()) {
            auto& [n, k] = pile.back();
            if (k == 2) {
                etat[n] = 2;
                pile.pop_back();
                continue;
            }
            const bool pere = k == 0;
            ++k;
            const std::uint32_t p = pere ? b.LitPere(n) : b.LitMere(n);
            if (p == 0 || p > max) continue;
            if (etat[p] == 1) {
                const std::uint32_t enfant = n;
                rompus.push_back(enfant);
                if (pere) b.EcritPere(enfant, 0);
                else b.EcritMere(enfant, 0);
                b.MajEnfants(p, enfant, 'S');
            } else if (etat[p] == 0) {
                etat[p] = 1;
                pile.push_back({p, 0});
            }
        }
    }
    return rompus;
}

} // namespace sylvane
