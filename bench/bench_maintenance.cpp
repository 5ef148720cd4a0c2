// Reorganisation of a base of 100,000 persons in a real file, worn by a
// second round of edits (rewritten notes, families, events), and the
// consistency control of the same base.
#include "maintenance/controle.h"
#include "maintenance/reorganisation.h"
#include "store/base.h"
#include "store/fichier.h"
#include "store/fichier_memoire.h"

#include <benchmark/benchmark.h>

#include <fstream>
#include <random>

using namespace sylvane;

namespace {

constexpr std::uint32_t kPersonnes = 100000;
const std::string kModele = "/tmp/sylvane_bench_maintenance_modele.sv2";
const std::string kChemin = "/tmp/sylvane_bench_maintenance.sv2";

std::string Mot(std::mt19937& rng, int n, const char* prefixe) {
    return prefixe + std::to_string(rng() % static_cast<unsigned>(n));
}

// Built once in memory, then written to a real file that each run copies.
void Prepare() {
    static bool fait = false;
    if (fait) return;
    fait = true;
    SystemeMemoire fs;
    Parametres p;
    Base b(fs, p);
    b.Nouvelle("/b.sv2");
    std::mt19937 rng(7);
    b.DebutLot();
    std::vector<std::uint32_t> hommes, femmes;
    for (std::uint32_t i = 1; i <= kPersonnes; ++i) {
        const char sexe = "HF"[rng() % 2];
        std::uint32_t n = b.CreePersonne(Mot(rng, 3000, "Nom"), Mot(rng, 200, "Prenom"), "", sexe,
                                         std::to_string(1700 + rng() % 200));
        std::string suite = " $" + Mot(rng, 2000, "Lieu") + "\r\nOCCU  \\" + Mot(rng, 100, "Metier");
        b.EcritNote(n, b.LitNote(n) + suite);
        b.AjoutLot(n, suite);
        (sexe == 'H' ? hommes : femmes).push_back(n);
        if (i > 10 && rng() % 2) {
            const std::uint32_t pere = hommes[rng() % hommes.size()];
            if (pere != n) {
                b.EcritPere(n, pere);
                b.MajEnfants(pere, n, 'A');
            }
        }
        if (sexe == 'H' && rng() % 3 == 0 && !femmes.empty())
            b.CreeMariage(n, femmes[rng() % femmes.size()], std::to_string(1720 + rng() % 200));
        if (rng() % 5 == 0) b.CreeEvtPersonne(n, 1000 + static_cast<long>(rng() % 300000), "BIRT", "Paris");
        if (rng() % 20 == 0) b.MajDocs(n, b.CreeDoc("Acte", "acte.jpg"), 'A');
    }
    b.FinLot();
    b.FermeBase();
    std::ofstream(kModele, std::ios::binary) << fs.contenu("/b.sv2");
}

void Copie() {
    std::ifstream in(kModele, std::ios::binary);
    std::ofstream out(kChemin, std::ios::binary);
    out << in.rdbuf();
}

void BM_Reorganiser(benchmark::State& state) {
    Prepare();
    Parametres p;
    Interaction io;
    for (auto _ : state) {
        state.PauseTiming();
        Copie();
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
        Copie();
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
