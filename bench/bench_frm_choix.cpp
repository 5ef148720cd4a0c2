// The candidate pickers on a million-person base sorted by year: the first
// page of a spouse picker for a person taken anywhere in the base (two
// bisections and the rows), the next page, and a page of a search text
// that few names hold (a bounded walk).
//   build/bench/bench_frm_choix
#include "million.h"
#include "ui/frm_choix.h"

#include <benchmark/benchmark.h>

using namespace sylvane;

namespace {

Base& Million() {
    static Parametres p;
    static Base b(systemeReel(), p);
    if (!b.EstOuverte()) b.Ouvre(BaseMillion(), true);
    return b;
}

std::uint32_t Personne(std::uint32_t i) { return 1 + (i * 7919u) % kPersonnes; }

void BM_PremierePage(benchmark::State& state) {
    Base& b = Million();
    std::uint32_t i = 0;
    for (auto _ : state) {
        FrmChoix f(&b, static_cast<Candidats>(i % 4), Personne(i), 'H');
        benchmark::DoNotOptimize(f.Lignes().size());
        ++i;
    }
}
BENCHMARK(BM_PremierePage)->Unit(benchmark::kMillisecond);

void BM_PageSuivante(benchmark::State& state) {
    Base& b = Million();
    FrmChoix f(&b, Candidats::Liens, Personne(3));
    for (auto _ : state) {
        if (!f.Suivante()) f.Cherche("");
        benchmark::DoNotOptimize(f.Lignes().size());
    }
}
BENCHMARK(BM_PageSuivante)->Unit(benchmark::kMillisecond);

void BM_TexteRare(benchmark::State& state) {
    Base& b = Million();
    std::uint32_t i = 0;
    for (auto _ : state) {
        FrmChoix f(&b, Candidats::Liens, Personne(i++));
        f.Cherche("Nom" + std::to_string(i % 20000) + " Prenom1");
        benchmark::DoNotOptimize(f.Lignes().size());
    }
}
BENCHMARK(BM_TexteRare)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
