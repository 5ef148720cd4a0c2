// The exchange file of a base of 100,000 persons in real files: the export
// of the whole base, and the reading of that file into a new base.
#include "exchange/selection.h"
#include "exchange/svr.h"
#include "store/base.h"
#include "store/fichier.h"
#include "store/fichier_memoire.h"
#include "text/reglages.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>

using namespace sylvane;

namespace {

constexpr std::uint32_t kPersonnes = 100000;
const std::string kBase = "/tmp/sylvane_bench_svr.sv2";
const std::string kSvr = "/tmp/sylvane_bench_svr.svr";
const std::string kNouvelle = "/tmp/sylvane_bench_svr_lue.sv2";

// Families of a father, a mother and their children, with a marriage, a
// note of three lines and a birth event for one person in ten.
void Prepare() {
    static bool fait = false;
    if (fait) return;
    fait = true;
    SystemeMemoire fs;
    Parametres p;
    Base b(fs, p);
    b.Nouvelle("/b.sv2");
    std::mt19937 rng(7);
    for (std::uint32_t i = 1; i <= kPersonnes; ++i) {
        const std::string nom = "Nom" + std::to_string(rng() % 3000);
        const std::uint32_t n = b.CreePersonne(nom, "Prenom" + std::to_string(rng() % 200), "",
                                               "HF"[i % 2], std::to_string(1700 + rng() % 200));
        b.EcritNote(n, b.LitNote(n) + "\r\nOCCU  \\laboureur\r\n\r\nUne ligne de texte libre.");
        if (i % 4 == 0) {
            b.CreeMariage(n - 3, n - 2, "1750");
            for (std::uint32_t c : {n - 1, n}) {
                b.EcritPere(c, n - 3);
                b.EcritMere(c, n - 2);
                b.MajEnfants(n - 3, c, 'A');
                b.MajEnfants(n - 2, c, 'A');
            }
        }
        if (i % 10 == 0) b.CreeEvtPersonne(n, 2300000 + static_cast<long>(i), "BIRT", "Paris");
    }
    b.ValideBase();
    ecrireTout(systemeReel(), kBase, lireTout(fs, "/b.sv2"));
}

// The whole base written to kSvr.
void Exporte(const Parametres& p) {
    Base b(systemeReel(), p);
    b.Ouvre(kBase);
    Selection sel(b);
    sel.SelectionneTout();
    ExporteSvr(b, sel, p, systemeReel(), kSvr);
    b.Abandonne();
}

void BM_ExporteSvr(benchmark::State& state) {
    Prepare();
    Parametres p;
    for (auto _ : state) Exporte(p);
}
BENCHMARK(BM_ExporteSvr)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_LitSvrNouvelleBase(benchmark::State& state) {
    Prepare();
    Parametres p;
    Exporte(p);
    for (auto _ : state) {
        Base b(systemeReel(), p);
        b.Nouvelle(kNouvelle);
        ReglagesMemoire r;
        LitSvrNouvelleBase(b, systemeReel(), kSvr, r);
        b.FermeBase();
    }
    std::remove(kNouvelle.c_str());
}
BENCHMARK(BM_LitSvrNouvelleBase)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
