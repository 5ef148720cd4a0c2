// Message(n) over a real message file, within one loaded block and across
// blocks.
#include "text/messages.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

using namespace sylvane;

namespace {

struct Fichier {
    std::string dossier;
    Fichier() {
        dossier = (std::filesystem::temp_directory_path() / "sylvane-bench-mes").string();
        std::filesystem::create_directories(dossier);
        std::map<int, std::string> m;
        for (int n = 1; n <= 3000; n += 3) m[n] = "Message num\xE9ro " + std::to_string(n);
        m[700] = std::string(120, 'x'); // too long for the short-string buffer
        std::ofstream(dossier + "/Bench.mes", std::ios::binary) << EcritFichierMessages(m);
        ChoisirLangue("Bench", dossier);
    }
    ~Fichier() { std::filesystem::remove_all(dossier); }
};

void MemeBloc(benchmark::State& state) {
    static Fichier f;
    const int premier = static_cast<int>(state.range(0));
    int n = premier;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Message(n));
        n = n + 3 > premier + 990 ? premier : n + 3;
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(MemeBloc)->Arg(1);

void TexteLong(benchmark::State& state) {
    static Fichier f;
    for (auto _ : state) benchmark::DoNotOptimize(Message(700));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(TexteLong);

void BlocsAlternes(benchmark::State& state) {
    static Fichier f;
    int i = 0;
    for (auto _ : state) benchmark::DoNotOptimize(Message((i++ & 1) ? 4 : 1504));
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BlocsAlternes);

} // namespace

BENCHMARK_MAIN();
