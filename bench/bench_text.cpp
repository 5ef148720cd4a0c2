#include "store/fichier_memoire.h"
#include "text/mots.h"
#include "text/parametres.h"
#include "text/phonetique.h"
#include "text/reglages.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

const std::vector<std::string>& noms() {
    static const std::vector<std::string> v = {
        "Martin",    "Bernard",   "Dubois",     "Thomas",   "Robert",    "Richard",
        "Petit",     "Durand",    "Leroy",      "Moreau",   "Simon",     "Laurent",
        "Lefebvre",  "Michel",    "Garcia",     "David",    "Bertrand",  "Roux",
        "Vincent",   "Fournier",  "Chevalier",  "Bastien",  "Philippe",  "Schmitt",
        "Deschamps", "Saint-Just", "d'Artagnan", "Quesnel", "\xC9milie", "Beauchamp",
        "Testard",   "Einstein"};
    return v;
}

void BM_ClePhonetique(benchmark::State& state) {
    const auto& v = noms();
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(sylvane::Conv_ClePhonetique(v[i]));
        if (++i == v.size()) i = 0;
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(BM_ClePhonetique);

void BM_CleMot(benchmark::State& state) {
    std::string texte;
    while (texte.size() < static_cast<std::size_t>(state.range(0)))
        texte += "Jean-Fran\xE7ois de La Tour d'Auvergne, n\xE9 \xE0 Besan\xE7on; ";
    texte.resize(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(sylvane::CleMot(texte));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}
BENCHMARK(BM_CleMot)->Arg(16)->Arg(4096)->Arg(1 << 20);

} // namespace

// A settings file of 200,000 keys and 100,000 sections read at start-up:
// every key is looked up through the index, not by walking those before it.
void BM_LitReglages(benchmark::State& state) {
    std::string texte = "[Defaut]\n";
    for (int i = 0; i < 200000; ++i) texte += "K" + std::to_string(i) + "=v\n";
    for (int i = 0; i < 100000; ++i) texte += "[S" + std::to_string(i) + "]\nk=" + std::to_string(i) + "\n";
    sylvane::SystemeMemoire fs;
    sylvane::ecrireTout(fs, "/c/s.ini", texte);
    for (auto _ : state) {
        sylvane::ReglagesIni r(fs, "/c/s.ini");
        sylvane::Parametres p;
        sylvane::LitParametres(r, p, "/programme");
        benchmark::DoNotOptimize(r.lit("S99999", "k", ""));
    }
}
BENCHMARK(BM_LitReglages)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
