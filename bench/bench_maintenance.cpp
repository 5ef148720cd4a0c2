// Reorganisation of a base of 100,000 persons in a real file, worn by a
// second round of edits (rewritten notes, families, events), and the
// consistency control of the same base.
#include "base_modele.h"
#include "maintenance/controle.h"
#include "maintenance/reorganisation.h"
#include "store/fichier.h"

#include <benchmark/benchmark.h>

using namespace sylvane;

namespace {

constexpr std::uint32_t kPersonnes = 100000;
const std::string kModele = "/tmp/sylvane_bench_maintenance_modele.sv2";
const std::string kChemin = "/tmp/sylvane_bench_maintenance.sv2";

// A worn base: half the persons with a father, a third of the men
// married, events and documents here and there.
void Prepare() {
    FabriqueModele(
        kModele, 7, kPersonnes,
        [](std::mt19937& rng, std::uint32_t) { return MotAuHasard(rng, 100, "Metier"); },
        [](Base& b, std::mt19937& rng, std::uint32_t n, char sexe, const PersonnesModele& ps) {
            if (n > 10 && rng() % 2) {
                const std::uint32_t pere = ps.hommes[rng() % ps.hommes.size()];
                if (pere != n) {
                    b.EcritPere(n, pere);
                    b.MajEnfants(pere, n, 'A');
                }
            }
            if (sexe == 'H' && rng() % 3 == 0 && !ps.femmes.empty())
                b.CreeMariage(n, ps.femmes[rng() % ps.femmes.size()], std::to_string(1720 + rng() % 200));
            if (rng() % 5 == 0)
                b.CreeEvtPersonne(n, 1000 + static_cast<long>(rng() % 300000), "BIRT", "Paris");
            if (rng() % 20 == 0) b.MajDocs(n, b.CreeDoc("Acte", "acte.jpg"), 'A');
        });
}

void BM_Reorganiser(benchmark::State& state) {
    Prepare();
    Parametres p;
    Interaction io;
    for (auto _ : state) {
        state.PauseTiming();
        CopieModele(kModele, kChemin);
        state.ResumeTiming();
        Base b(systemeReel(), p);
        b.Ouvre(kChemin);
        auto r = Reorganiser(b, io);
        benchmark::DoNotOptimize(r.fait);
        b.FermeBase();
    }
    state.counters["persons"] = kPersonnes;
}
BENCHMARK(BM_Reorganiser)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_Controler(benchmark::State& state) {
    Prepare();
    Parametres p;
    Interaction io;
    for (auto _ : state) {
        state.PauseTiming();
        CopieModele(kModele, kChemin);
        state.ResumeTiming();
        Base b(systemeReel(), p);
        b.Ouvre(kChemin);
        auto r = Controler(b, io);
        benchmark::DoNotOptimize(r.rapport);
        b.FermeBase();
    }
}
BENCHMARK(BM_Controler)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
