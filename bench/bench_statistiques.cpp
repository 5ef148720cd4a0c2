// The figures of a million-person base (under 1 s), and the anniversary
// calendar: built once over a million persons born and dead on every day
// of the year, then a day shown as a click on the calendar shows it
// (under 100 ms).
#include "million.h"
#include "search/anniversaires.h"
#include "search/statistiques.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <random>

using namespace sylvane;

namespace {

Base& Million() { return MillionOuvert(); }

void BM_Statistiques(benchmark::State& st) {
    Base& b = Million();
    for (auto _ : st) {
        const Statistiques s = CalculeStatistiques(b, {}, Interaction{}, 1);
        benchmark::DoNotOptimize(s.lues);
    }
    st.counters["personnes"] = b.Tete().nbPersonnes;
    st.counters["pic_Mo"] = static_cast<double>(PicMemoireMo());
}
BENCHMARK(BM_Statistiques)->Unit(benchmark::kMillisecond)->Iterations(3);

// A million persons born on a random day, half of them dead on another.
Base& Jours() {
    static Parametres p;
    static std::unique_ptr<Base> b = [] {
        const std::string c = Dossier() + "/anniversaires.sv2";
        if (!std::filesystem::exists(c)) {
            Base x(systemeReel(), p);
            x.Nouvelle(c);
            std::mt19937 alea(11);
            x.DebutLot();
            for (std::uint32_t i = 1; i <= kPersonnes; ++i) {
                const std::string an = std::to_string(1600 + alea() % 400);
                auto jour = [&] {
                    return std::to_string(1 + alea() % 28) + "/" + std::to_string(1 + alea() % 12);
                };
                const bool mort = alea() % 2;
                x.CreePersonne("Nom" + std::to_string(alea() % 20000), "Prenom", "", "HF"[i % 2],
                               an, jour(), mort ? std::to_string(1650 + alea() % 400) : "",
                               mort ? jour() : "");
            }
            x.FinLot();
            x.FermeBase();
        }
        auto x = std::make_unique<Base>(systemeReel(), p);
        x->Ouvre(c, true);
        return x;
    }();
    return *b;
}

void BM_CalendrierConstruit(benchmark::State& st) {
    Base& b = Jours();
    for (auto _ : st) {
        Calendrier c;
        c.Construit(b, Interaction{});
        benchmark::DoNotOptimize(c.Jour(0).size());
    }
}
BENCHMARK(BM_CalendrierConstruit)->Unit(benchmark::kMillisecond)->Iterations(2);

void BM_AnniversairesDuJour(benchmark::State& st) {
    Base& b = Jours();
    static Calendrier c;
    if (!c.Construit()) c.Construit(b, Interaction{});
    const int jour = Calendrier::JourDeLAn(12, 3);
    for (auto _ : st) {
        const ListesJour l = ListesDuJour(b, c, jour);
        benchmark::DoNotOptimize(l.naissances.size());
    }
    st.counters["lignes"] = static_cast<double>(c.Jour(jour).size());
}
BENCHMARK(BM_AnniversairesDuJour)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
