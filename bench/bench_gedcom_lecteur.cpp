// The GEDCOM reader over a large file: the first stage of an import, whose
// whole target is 8 s and 400 MB for 100,000 persons. The file is made by
//   python3 bench/gen_gedcom.py /tmp/bench.ged
// and named by SYLVANE_BENCH_GED.
#include "exchange/gedcom_lecteur.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <sys/resource.h>

using namespace sylvane;

namespace {

double picMemoireMo() {
    rusage r{};
    getrusage(RUSAGE_SELF, &r);
    return static_cast<double>(r.ru_maxrss) / 1024.0; // ru_maxrss is in kB on Linux
}

void LectureFichier(benchmark::State& state) {
    const char* chemin = std::getenv("SYLVANE_BENCH_GED");
    if (chemin == nullptr || *chemin == '\0') {
        state.SkipWithError("SYLVANE_BENCH_GED is not set: python3 bench/gen_gedcom.py "
                            "/tmp/bench.ged; SYLVANE_BENCH_GED=/tmp/bench.ged");
        return;
    }
    std::size_t lignes = 0, personnes = 0;
    for (auto _ : state) {
        const GedcomLu g = LitGedcom(systemeReel(), chemin);
        lignes = g.lignes().size();
        personnes = g.compte("INDI");
        benchmark::DoNotOptimize(lignes);
    }
    state.counters["personnes"] = static_cast<double>(personnes);
    state.counters["lignes"] = static_cast<double>(lignes);
    state.counters["pic_Mo"] = picMemoireMo();
}
BENCHMARK(LectureFichier)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
