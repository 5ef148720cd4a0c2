// The replacement of a keyword held by every one of 100,000 persons, in a
// real file: the notes rewritten, the index moved and the commit, against
// a target of one second. Also the merge into a word the index already has.
#include "base_modele.h"
#include "store/fichier.h"
#include "store/remplacement.h"

#include <benchmark/benchmark.h>

using namespace sylvane;

namespace {

constexpr std::uint32_t kPersonnes = 100000;
const std::string kModele = "/tmp/sylvane_bench_remplacement_modele.sv2";
const std::string kChemin = "/tmp/sylvane_bench_remplacement.sv2";

// Every person a "laboureur" but one in ten a "tisserand"; a third of the
// men married at "Paris" (a keyword of both spouses).
void Prepare() {
    FabriqueModele(
        kModele, 11, kPersonnes,
        [](std::mt19937&, std::uint32_t i) {
            return std::string("laboureur") + (i % 10 ? "" : " \\tisserand");
        },
        [](Base& b, std::mt19937& rng, std::uint32_t n, char sexe, const PersonnesModele& ps) {
            if (sexe != 'H' || rng() % 3 != 0 || ps.femmes.empty()) return;
            const std::uint32_t f = ps.femmes[rng() % ps.femmes.size()];
            const std::uint32_t m = b.CreeMariage(n, f, std::to_string(1720 + rng() % 200));
            b.EcritNoteMariage(m, "1750 @Paris");
            b.AjoutLot(n, "@Paris");
            b.AjoutLot(f, "@Paris");
        });
}

void Remplace(benchmark::State& state, const DemandeRemplacement& d) {
    Prepare();
    Parametres p;
    std::size_t occurrences = 0;
    for (auto _ : state) {
        state.PauseTiming();
        CopieModele(kModele, kChemin);
        Base b(systemeReel(), p);
        b.Ouvre(kChemin);
        state.ResumeTiming();
        occurrences = RemplaceMot(b, d).occurrences;
        state.PauseTiming();
        b.FermeBase();
        state.ResumeTiming();
    }
    state.counters["occurrences"] = static_cast<double>(occurrences);
}

// A new word for all 100,000 persons.
void BM_RemplaceMotNouveau(benchmark::State& state) {
    Remplace(state, {'\\', "laboureur", "cultivateur"});
}
BENCHMARK(BM_RemplaceMotNouveau)->Unit(benchmark::kMillisecond)->Iterations(3);

// Into a word 10,000 of them already hold: the two lists merge.
void BM_RemplaceMotExistant(benchmark::State& state) {
    Remplace(state, {'\\', "laboureur", "tisserand"});
}
BENCHMARK(BM_RemplaceMotExistant)->Unit(benchmark::kMillisecond)->Iterations(3);

// A marriage place: the notes of the marriages, both spouses' lists.
void BM_RemplaceLieuMariage(benchmark::State& state) {
    Remplace(state, {'@', "paris", "Lyon"});
}
BENCHMARK(BM_RemplaceLieuMariage)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
