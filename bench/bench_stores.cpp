// The stores on a base of 100,000 persons kept in a real file: rebuild of
// the family-name rubric, one keyword update, the complete sort, and the
// place of a person in the sort table.
#include "store/base.h"
#include "store/fichier.h"
#include "store/fichier_memoire.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <random>

using namespace sylvane;

namespace {

constexpr std::uint32_t kPersonnes = 100000;
const std::string kChemin = "/tmp/sylvane_bench_stores.sv2";

std::string Mot(std::mt19937& rng, int n, const char* prefixe) {
    return prefixe + std::to_string(rng() % static_cast<unsigned>(n));
}

// Built once in memory with the batch index, then written to a real file.
void Prepare() {
    static bool fait = false;
    if (fait) return;
    fait = true;
    SystemeMemoire fs;
    Parametres p;
    Base b(fs, p);
    b.Nouvelle("/b.sv2");
    std::mt19937 rng(2024);
    std::vector<std::string> notes(kPersonnes + 1);
    b.DebutLot();
    for (std::uint32_t i = 1; i <= kPersonnes; ++i) {
        std::string nom = Mot(rng, 3000, "Nom"), prenom = Mot(rng, 200, "Prenom");
        std::uint32_t n =
            b.CreePersonne(nom, prenom, "", "HF"[rng() % 2], std::to_string(1700 + rng() % 200));
        std::string suite =
            " $" + Mot(rng, 2000, "Lieu") + "\r\nOCCU  \\" + Mot(rng, 100, "Metier");
        b.EcritNote(n, b.LitNote(n) + suite);
        b.AjoutLot(n, suite);
    }
    b.FinLot();
    b.FermeBase();
    std::ofstream(kChemin, std::ios::binary) << fs.contenu("/b.sv2");
}

struct Ouverte {
    Parametres p;
    Base b{systemeReel(), p};
    Ouverte() {
        Prepare();
        b.Ouvre(kChemin);
    }
    ~Ouverte() { b.Abandonne(); }
};

void BM_RefaitRubriqueNoms(benchmark::State& state) {
    Ouverte o;
    for (auto _ : state)
        o.b.RefaitRubrique('|');
    state.counters["mots"] = static_cast<double>(o.b.ListeRubrique(1).size() / 4);
}
BENCHMARK(BM_RefaitRubriqueNoms)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_MajMotsLieuNaissance(benchmark::State& state) {
    Ouverte o;
    std::mt19937 rng(7);
    for (auto _ : state) {
        std::uint32_t n = 1 + rng() % kPersonnes;
        std::string ancienne = o.b.LitNote(n);
        std::string nouvelle =
            o.b.LigneMotsCles(n, Mot(rng, 2000, "Lieu")) + ancienne.substr(ancienne.find('\r'));
        o.b.MajMots(n, ancienne, nouvelle);
        o.b.EcritNote(n, nouvelle);
    }
}
BENCHMARK(BM_MajMotsLieuNaissance)->Unit(benchmark::kMicrosecond);

void BM_TriTable(benchmark::State& state) {
    Ouverte o;
    for (auto _ : state)
        o.b.TriTable();
}
BENCHMARK(BM_TriTable)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_PlaceFiche(benchmark::State& state) {
    Ouverte o;
    std::mt19937 rng(11);
    for (auto _ : state)
        benchmark::DoNotOptimize(o.b.PlaceFiche(1 + rng() % kPersonnes));
}
BENCHMARK(BM_PlaceFiche)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
