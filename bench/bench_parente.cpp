// Speed of the relationship searches on a 1,000,000-person base.
//   BM_AscendanceCommune: the nearest common ascendants of two persons of
//     the last generation, over 10 generations (target: under 50 ms).
//   BM_Cousinages: the cousinages of 10 persons over 12 generations
//     (target: under 200 ms).
//   BM_GrapheParente: the graph of the common ascendance found above.
#include "kinship/cousins.h"
#include "kinship/parente.h"
#include "store/base.h"
#include "store/fichier_memoire.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <random>

using namespace sylvane;

namespace {

constexpr std::uint32_t kParCouche = 50000, kCouches = 20;

// 20 layers of 50,000 persons; each person of a layer below the first has
// a father and a mother drawn from the 25,000 couples of the layer above.
// Built once in memory for the whole run.
struct Peuplement {
    SystemeMemoire fs;
    Parametres params;
    std::unique_ptr<Base> base;

    Peuplement() {
        params.dossierTravail = "/travail";
        base = std::make_unique<Base>(fs, params);
        base->Nouvelle("/peuplement.sv2");
        std::mt19937 alea(1789);
        base->DebutLot();
        for (std::uint32_t n = 1; n <= kParCouche * kCouches; ++n) {
            const std::uint32_t couche = (n - 1) / kParCouche;
            const char sexe = n % 2 ? 'H' : 'F';
            const auto p = base->CreePersonne("Famille" + std::to_string(n % 3000),
                                              "Prenom" + std::to_string(n % 300), "", sexe,
                                              std::to_string(1400 + 25 * couche));
            if (couche == 0) continue;
            const std::uint32_t debut = (couche - 1) * kParCouche + 1;
            const std::uint32_t couple = alea() % (kParCouche / 2);
            const std::uint32_t pere = debut + 2 * couple, mere = pere + 1;
            base->EcritPere(p, pere);
            base->MajEnfants(pere, p, 'A');
            base->EcritMere(p, mere);
            base->MajEnfants(mere, p, 'A');
        }
        base->FinLot();
    }
    std::uint32_t Dernier(std::uint32_t i) const { return (kCouches - 1) * kParCouche + 1 + i; }
};

Peuplement& Base1M() {
    static Peuplement* p = new Peuplement;
    return *p;
}

void BM_AscendanceCommune(benchmark::State& state) {
    Peuplement& p = Base1M();
    std::uint32_t i = 0;
    int trouves = 0, total = 0;
    for (auto _ : state) {
        const auto r = AscendanceCommune(*p.base, {p.Dernier(i), p.Dernier(i + 7919)}, 10);
        trouves += r.fin == FinParente::Trouve;
        ++total;
        i = (i + 104729) % (kParCouche - 8000);
    }
    state.counters["found"] = static_cast<double>(trouves) / total;
}
BENCHMARK(BM_AscendanceCommune)->Unit(benchmark::kMillisecond);

void BM_GrapheParente(benchmark::State& state) {
    Peuplement& p = Base1M();
    const auto r = AscendanceCommune(*p.base, {p.Dernier(0), p.Dernier(7919)}, 10);
    std::size_t noeuds = 0;
    for (auto _ : state) {
        GrapheParente g(*p.base, r.liste, 10);
        g.Construit();
        noeuds = g.NbNoeuds();
    }
    state.counters["nodes"] = static_cast<double>(noeuds);
}
BENCHMARK(BM_GrapheParente)->Unit(benchmark::kMillisecond);

void BM_Cousinages(benchmark::State& state) {
    Peuplement& p = Base1M();
    std::vector<Selectionne> selection;
    for (std::uint32_t k = 0; k < 10; ++k) selection.push_back({p.Dernier(k * 4099), k < 3});
    std::size_t lignes = 0;
    for (auto _ : state) {
        Cousinages c(*p.base);
        c.Analyse(selection, 12);
        lignes = c.Lignes().size();
    }
    state.counters["rows"] = static_cast<double>(lignes);
}
BENCHMARK(BM_Cousinages)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
