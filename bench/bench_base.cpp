// The base file at the scale of a large family tree: a million persons.
//   build/bench/bench_base [--benchmark_filter=...]
// The base is made once in $SYLVANE_BENCH_DIR (default /tmp/sylvane-bench)
// and kept for later runs.
#include "million.h"
#include "store/base.h"
#include "store/fichier.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <sys/resource.h>

using namespace sylvane;

namespace {

void BM_CreerUnMillionEtValider(benchmark::State& state) {
    for (auto _ : state) {
        std::string c = Dossier() + "/creation.sv2";
        Parametres p;
        Base b(systemeReel(), p);
        auto t0 = std::chrono::steady_clock::now();
        b.Nouvelle(c);
        Remplit(b, kPersonnes);
        b.FermeBase();
        auto t1 = std::chrono::steady_clock::now();
        state.SetIterationTime(std::chrono::duration<double>(t1 - t0).count());
        std::filesystem::remove(c);
    }
    state.counters["pic_Mo"] = static_cast<double>(PicMemoireMo());
}
BENCHMARK(BM_CreerUnMillionEtValider)->Iterations(1)->UseManualTime()->Unit(benchmark::kSecond);

void BM_OuvrirUnMillion(benchmark::State& state) {
    const std::string& c = BaseMillion();
    Parametres p;
    for (auto _ : state) {
        Base b(systemeReel(), p);
        b.Ouvre(c);
        benchmark::DoNotOptimize(b.TriFiche(1));
        b.Abandonne();
    }
}
BENCHMARK(BM_OuvrirUnMillion)->Unit(benchmark::kMillisecond);

void BM_LitNomAuHasard(benchmark::State& state) {
    Parametres p;
    Base b(systemeReel(), p);
    b.Ouvre(BaseMillion());
    std::mt19937 alea(3);
    for (auto _ : state) benchmark::DoNotOptimize(b.LitNom(1 + alea() % kPersonnes));
    state.SetItemsProcessed(state.iterations());
    b.Abandonne();
}
BENCHMARK(BM_LitNomAuHasard);

void BM_LectureDansLOrdreDuTri(benchmark::State& state) {
    Parametres p;
    Base b(systemeReel(), p);
    b.Ouvre(BaseMillion());
    std::size_t i = 0;
    const std::size_t nb = b.TablePersonnes().taille();
    for (auto _ : state) {
        if (++i > nb) i = 1;
        benchmark::DoNotOptimize(b.LitNom(b.TriFiche(i)));
    }
    state.SetItemsProcessed(state.iterations());
    b.Abandonne();
}
BENCHMARK(BM_LectureDansLOrdreDuTri);

void BM_LectureDansLOrdreDesNumeros(benchmark::State& state) {
    Parametres p;
    Base b(systemeReel(), p);
    b.Ouvre(BaseMillion());
    std::uint32_t n = 0;
    for (auto _ : state) {
        if (++n > kPersonnes) n = 1;
        benchmark::DoNotOptimize(b.LitNom(n));
    }
    state.SetItemsProcessed(state.iterations());
    b.Abandonne();
}
BENCHMARK(BM_LectureDansLOrdreDesNumeros);

} // namespace

BENCHMARK_MAIN();
