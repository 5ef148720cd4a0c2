// The publishing side on large bases: the whole framed site of a
// 100,000-person base written to a real folder (target: under 30 s), and
// the RTF report of 30,000 descendants (target: under 2 s).
#include "kinship/liste.h"
#include "publish/html.h"
#include "publish/rtf_rapports.h"
#include "store/base.h"
#include "store/fichier.h"
#include "store/fichier_memoire.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>

using namespace sylvane;

namespace {

// Couples of a few generations with their children, each person with a
// birth place keyword and one in four with an event.
struct GrandeBase {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    std::uint32_t racine = 0;

    explicit GrandeBase(std::uint32_t personnes) {
        p.dossierTravail = "/travail";
        b.Nouvelle("/b.sv2");
        std::mt19937 rng(7);
        b.DebutLot();
        auto personne = [&](char sexe) {
            const std::uint32_t n = b.CreePersonne("Nom" + std::to_string(rng() % 3000),
                                                   "Prenom" + std::to_string(rng() % 300), "", sexe,
                                                   std::to_string(1700 + rng() % 200));
            const std::string suite = " $Lieu" + std::to_string(rng() % 2000);
            b.EcritNote(n, b.LitNote(n) + suite);
            b.AjoutLot(n, b.LitNote(n));
            if (n % 4 == 0) b.CreeEvtPersonne(n, 0, "OCCU", "Lieu" + std::to_string(rng() % 50));
            return n;
        };
        std::vector<std::uint32_t> gen{personne('H')};
        racine = gen[0];
        std::uint32_t total = 1;
        // Each person of a generation marries and has three children.
        while (total < personnes) {
            std::vector<std::uint32_t> suivants;
            for (std::uint32_t x : gen) {
                if (total >= personnes) break;
                const std::uint32_t c = personne('F');
                b.CreeMariage(x, c);
                ++total;
                for (int k = 0; k < 3 && total < personnes; ++k, ++total) {
                    const std::uint32_t e = personne(k % 2 ? 'F' : 'H');
                    b.EcritPere(e, x);
                    b.MajEnfants(x, e, 'A');
                    b.EcritMere(e, c);
                    b.MajEnfants(c, e, 'A');
                    suivants.push_back(e);
                }
            }
            gen = std::move(suivants);
        }
        b.FinLot();
    }
};

void BM_Site100000(benchmark::State& state) {
    static GrandeBase g(100000);
    const std::string dossier =
        (std::filesystem::temp_directory_path() / "sylvane_bench_site").string();
    for (auto _ : state) {
        std::filesystem::remove_all(dossier);
        EcrivainHTML w(g.b, systemeReel());
        if (!w.Site(dossier)) state.SkipWithError("site stopped");
    }
    state.counters["persons"] = g.b.Tete().nbPersonnes;
    std::filesystem::remove_all(dossier);
}
BENCHMARK(BM_Site100000)->Unit(benchmark::kSecond)->Iterations(1);

void BM_RtfDescendants30000(benchmark::State& state) {
    // 1 + 3 + ... + 3^9 descendants with their spouses: 29,524 in the list.
    static GrandeBase g(59050);
    const std::string fichier =
        (std::filesystem::temp_directory_path() / "sylvane_bench_desc.rtf").string();
    for (auto _ : state) {
        ListeParente liste(g.b, g.fs);
        if (RapportRTF(g.b, systemeReel(), {}, liste, GenreRapport::Descendants, g.racine, 32767,
                       fichier) != FinRTF::Termine)
            state.SkipWithError("no report");
        state.counters["entries"] = liste.NombreEntrees();
    }
    std::filesystem::remove(fichier);
}
BENCHMARK(BM_RtfDescendants30000)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
