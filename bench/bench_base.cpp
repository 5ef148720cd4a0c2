// The base file at the scale of a large family tree: a million persons.
//   build/bench/bench_base [--benchmark_filter=...]
// The base is made once in $SYLVANE_BENCH_DIR (default /tmp/sylvane-bench)
// and kept for later runs.
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

constexpr std::uint32_t kPersonnes = 1'000'000;

std::string Dossier() {
    const char* d = std::getenv("SYLVANE_BENCH_DIR");
    std::string r = d ? d : "/tmp/sylvane-bench";
    std::filesystem::create_directories(r);
    return r;
}

long PicMemoireMo() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss / 1024;
}

// Creates the persons as an import does: in one batch of the keyword
// index, with parents for most of them, then one commit.
void Remplit(Base& b, std::uint32_t nombre) {
    std::mt19937 alea(7);
    b.DebutLot();
    for (std::uint32_t i = 1; i <= nombre; ++i) {
        std::string nom = "Nom" + std::to_string(alea() % 20000);
        std::string prenom = "Prenom" + std::to_string(alea() % 500);
        std::string an = std::to_string(1500 + alea() % 450);
        auto n = b.CreePersonne(nom, prenom, "", "HF"[i % 2], an, "12/03/" + an);
        if (n > 10 && alea() % 4) {
            std::uint32_t pere = 1 + alea() % (n - 1);
            b.EcritPere(n, pere);
            b.MajEnfants(pere, n, 'A');
        }
    }
    b.FinLot();
}

const std::string& BaseMillion() {
    static const std::string chemin = [] {
        std::string c = Dossier() + "/million.sv2";
        if (!std::filesystem::exists(c)) {
            Parametres p;
            Base b(systemeReel(), p);
            b.Nouvelle(c);
            Remplit(b, kPersonnes);
            b.FermeBase();
        }
        return c;
    }();
    return chemin;
}

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
