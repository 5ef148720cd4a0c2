// The whole GEDCOM import of a large file into a new base on disk, and the
// export of that base: targets 8 s and 400 MB for the import of 100,000
// persons, 3 s for the export. The file is made by
//   python3 bench/gen_gedcom.py /tmp/bench.ged
// and named by SYLVANE_BENCH_GED.
#include "exchange/gedcom_export.h"
#include "exchange/gedcom_import.h"
#include "text/dates.h"
#include "text/messages.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <sys/resource.h>

using namespace sylvane;

namespace {

double picMemoireMo() {
    rusage r{};
    getrusage(RUSAGE_SELF, &r);
    return static_cast<double>(r.ru_maxrss) / 1024.0;
}

const char* Fichier(benchmark::State& state) {
    const char* chemin = std::getenv("SYLVANE_BENCH_GED");
    if (chemin == nullptr || *chemin == '\0') {
        state.SkipWithError("SYLVANE_BENCH_GED is not set: python3 bench/gen_gedcom.py "
                            "/tmp/bench.ged; SYLVANE_BENCH_GED=/tmp/bench.ged");
        return nullptr;
    }
    return chemin;
}

std::string Dossier() {
    auto d = std::filesystem::temp_directory_path() / "sylvane_bench_gedcom";
    std::filesystem::create_directories(d);
    return d.string();
}

void ImportGedcom(benchmark::State& state) {
    const char* chemin = Fichier(state);
    if (!chemin) return;
    DefinitMessages(MessagesDatesFrancais());
    const std::string base = Dossier() + "/import.sv2";
    std::uint32_t personnes = 0;
    for (auto _ : state) {
        Parametres p;
        Base b(systemeReel(), p);
        b.Nouvelle(base);
        const GedcomLu g = PrepareGedcom(systemeReel(), chemin);
        RapportImport r = ImporteGedcom(b, g);
        personnes = r.personnes;
        b.FermeBase();
    }
    state.counters["personnes"] = personnes;
    state.counters["pic_Mo"] = picMemoireMo();
}
BENCHMARK(ImportGedcom)->Unit(benchmark::kMillisecond)->Iterations(1);

void ExportGedcom(benchmark::State& state) {
    if (!Fichier(state)) return;
    const std::string base = Dossier() + "/import.sv2";
    Parametres p;
    Base b(systemeReel(), p);
    b.Ouvre(base); // made by ImportGedcom, which runs first
    OptionsExport o;
    o.evenements = o.documents = o.liens = true;
    for (auto _ : state) ExporteGedcom(b, systemeReel(), Dossier() + "/export.ged", o);
    b.Abandonne();
    state.counters["pic_Mo"] = picMemoireMo();
}
BENCHMARK(ExportGedcom)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
