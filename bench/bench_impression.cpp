// Speed of the printed reports.
//   BM_DescendantsListeRapide: the descendant list of one person, 30,000
//     persons over seven generations, one line a person, measured and
//     paginated on a surface that draws nothing (the pages of a printer or
//     a PDF cost what their device costs on top of this).
//   BM_DescendantsFiches: the same persons as whole sheets.
// The counters give the pages and the persons a second.
#include "publish/impression.h"
#include "store/base.h"
#include "store/fichier_memoire.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

using namespace sylvane;

namespace {

struct BaseBanc {
    SystemeMemoire fs;
    Parametres params;
    std::unique_ptr<Base> base;
    BaseBanc() {
        params.dossierTravail = "/travail";
        base = std::make_unique<Base>(fs, params);
        base->Nouvelle("/banc.sv2");
        base->DebutLot();
        for (std::uint32_t i = 1; i <= 30000; ++i)
            base->CreePersonne("Nom" + std::to_string(i % 311), "Prenom" + std::to_string(i % 97),
                               "", i % 2 ? 'H' : 'F', std::to_string(1500 + i % 400));
        base->FinLot();
        // Six children a person: person i descends from (i - 2) / 6 + 1.
        for (std::uint32_t i = 2; i <= 30000; ++i) {
            const std::uint32_t parent = (i - 2) / 6 + 1;
            if (parent % 2) base->EcritPere(i, parent);
            else base->EcritMere(i, parent);
            base->MajEnfants(parent, i, 'A');
        }
    }
};

BaseBanc& Banc() {
    static BaseBanc* b = new BaseBanc;
    return *b;
}

class SurfaceNulle : public Surface {
  public:
    int pages = 0;
    const Metrique& Mesure() const override { return MetriqueDejaVu::Instance(); }
    void DebutPage(int, int, double, double) override { ++pages; }
    void FinPage() override {}
    void Trait(double, double, double, double, Plume) override {}
    void Boite(double, double, double, double, std::int32_t) override {}
    void Texte(double, double, std::string_view, const Police&, std::int32_t) override {}
};

void Descendants(benchmark::State& state, bool rapide) {
    BaseBanc& b = Banc();
    OptionsImpression o;
    o.niveaux = 99;
    o.modeTri = 0;
    o.date = "01/01/2026";
    if (rapide) o.Contenu(Contenu::ListeRapide);
    int pages = 0;
    for (auto _ : state) {
        SurfaceNulle s;
        if (ImprimeRapport(*b.base, b.fs, s, Rapport::FichesDescendants, 1, o) !=
            FinRapport::Termine)
            state.SkipWithError("report stopped");
        pages = s.pages;
    }
    state.counters["pages"] = pages;
    state.counters["personnes/s"] =
        benchmark::Counter(30000.0 * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate);
}

void BM_DescendantsListeRapide(benchmark::State& state) { Descendants(state, true); }
void BM_DescendantsFiches(benchmark::State& state) { Descendants(state, false); }

} // namespace

BENCHMARK(BM_DescendantsListeRapide)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DescendantsFiches)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
