// Speed of the tree charts.
//   BM_AscendantsDixGenerations: a full 10-generation ascendant tree (1,023
//     boxes) laid out to the page template and drawn as SVG, every sheet
//     (target: well under 1 s).
//   BM_DescendantsMilleFeuilles: the descendants of one person, 30,000
//     persons, on 1,000 sheets across, to the page template on disk
//     (target: under 2 s). The template is written as it is made: the
//     counter "picMo" (peak memory) stays that of the trees, whatever the
//     size of the file ("octets").
#include "charts/graphe.h"
#include "charts/svg.h"
#include "store/base.h"
#include "store/fichier_memoire.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

using namespace sylvane;

namespace {

struct BaseBanc {
    SystemeMemoire fs;
    Parametres params;
    std::unique_ptr<Base> base;
    explicit BaseBanc(std::uint32_t nombre) {
        params.dossierTravail = "/travail";
        base = std::make_unique<Base>(fs, params);
        base->Nouvelle("/banc.sv2");
        base->DebutLot();
        for (std::uint32_t i = 1; i <= nombre; ++i)
            base->CreePersonne("Nom" + std::to_string(i % 311), "Prenom" + std::to_string(i % 97),
                               "", i % 2 ? 'H' : 'F', std::to_string(1500 + i % 400));
        base->FinLot();
    }
    void Lien(std::uint32_t enfant, std::uint32_t parent) {
        if (parent % 2) base->EcritPere(enfant, parent);
        else base->EcritMere(enfant, parent);
        base->MajEnfants(parent, enfant, 'A');
    }
};

long PicMemoireMo() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss / 1024;
}

void BM_AscendantsDixGenerations(benchmark::State& state) {
    // Person k has father 2k and mother 2k + 1.
    static BaseBanc* b = [] {
        auto* r = new BaseBanc(1023);
        for (std::uint32_t k = 1; k < 512; ++k) {
            r->base->EcritPere(k, 2 * k);
            r->base->MajEnfants(2 * k, k, 'A');
            r->base->EcritMere(k, 2 * k + 1);
            r->base->MajEnfants(2 * k + 1, k, 'A');
        }
        return r;
    }();
    const Metrique& m = MetriqueDejaVu::Instance();
    OptionsGraphe og;
    OptionsPages op;
    op.texte = [&og](std::uint32_t p, const StyleBoite& s) { return TexteBoite(*b->base, p, s, og); };
    std::size_t boites = 0, octets = 0;
    for (auto _ : state) {
        PlanGraphe plan;
        GrapheIndividu(*b->base, b->fs, "/g.svp", 1, 9, 0, og, m, &plan);
        SurfaceSvg svg(b->fs, "/g.svg", m, og.papier, plan.geo.feuillesH, plan.geo.feuillesV);
        ImprimePages(b->fs, "/g.svp", svg, op);
        svg.Termine();
        octets = lireTout(b->fs, "/g.svg").size();
        boites = plan.feuillesAsc * 2 - 1;
    }
    state.counters["boites"] = static_cast<double>(boites);
    state.counters["octetsSvg"] = static_cast<double>(octets);
}
BENCHMARK(BM_AscendantsDixGenerations)->Unit(benchmark::kMillisecond);

void BM_DescendantsMilleFeuilles(benchmark::State& state) {
    // Person i > 1 is a child of person (i - 2) / 6 + 1: six children each.
    static BaseBanc* b = [] {
        auto* r = new BaseBanc(30000);
        for (std::uint32_t i = 2; i <= 30000; ++i) r->Lien(i, (i - 2) / 6 + 1);
        return r;
    }();
    const std::string dossier = std::filesystem::temp_directory_path().string() +
                                "/sylvane-bench-charts-" + std::to_string(getpid());
    std::filesystem::create_directories(dossier);
    const std::string chemin = dossier + "/graphe.svp";
    OptionsGraphe og;
    og.feuillesH = 1000;
    const long avant = PicMemoireMo();
    for (auto _ : state) {
        GrapheIndividu(*b->base, systemeReel(), chemin, 1, 0, 20, og,
                       MetriqueDejaVu::Instance());
    }
    state.counters["octets"] = static_cast<double>(std::filesystem::file_size(chemin));
    state.counters["picMo"] = static_cast<double>(PicMemoireMo());
    state.counters["croissanceMo"] = static_cast<double>(PicMemoireMo() - avant);
    std::filesystem::remove_all(dossier);
}
BENCHMARK(BM_DescendantsMilleFeuilles)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
