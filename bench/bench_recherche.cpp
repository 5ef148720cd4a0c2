// The searches on large bases: a name search over a million persons
// (under 300 ms), a keyword search the index answers (under 20 ms), an
// event search over 500,000 events (under 200 ms).
#include "million.h"
#include "search/recherche.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <memory>

using namespace sylvane;

namespace {

constexpr std::uint32_t kEvenements = 500'000;

Base& Million() { return MillionOuvert(); }

// 500,000 events of four kinds and twenty places, spread over four
// centuries; made once and kept beside the million base.
Base& Evenements() {
    static Parametres p;
    static std::unique_ptr<Base> b = [] {
        const std::string chemin = Dossier() + "/evenements.sv2";
        if (!std::filesystem::exists(chemin)) {
            Base n(systemeReel(), p);
            n.Nouvelle(chemin);
            std::mt19937 alea(3);
            const char* tags[] = {"BIRT", "DEAT", "BURI", "CHR"};
            for (std::uint32_t i = 0; i < kEvenements; ++i)
                n.CreeEvtPersonne(0, static_cast<long>(alea() % 146000) - 110000,
                                  tags[alea() % 4], "Lieu" + std::to_string(alea() % 20));
            n.FermeBase();
        }
        auto x = std::make_unique<Base>(systemeReel(), p);
        x->Ouvre(chemin, true);
        return x;
    }();
    return *b;
}

// The first scan of a base reads every text from the file and keeps it
// folded; the time of that scan is shown as "premiere_ms", the timed ones
// are the searches that follow.
template <class F> double Millisecondes(F f) {
    const auto t0 = std::chrono::steady_clock::now();
    f();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0)
        .count();
}

std::size_t ChercheNom(Base& b, const char* texte) {
    CriteresNom c;
    c.texte = texte;
    RechercheNom r(b, c);
    EnsemblePersonnes e;
    Execute(r, Interaction{}, [&] { e.Fusionne(r.Prend()); });
    return e.Taille();
}

void BM_RechercheNom(benchmark::State& state) {
    Base& b = Million();
    const double premiere = Millisecondes([&] { ChercheNom(b, "PRENOM1 "); });
    std::size_t trouves = 0;
    for (auto _ : state) trouves = ChercheNom(b, "NOM1234");
    state.counters["trouves"] = static_cast<double>(trouves);
    state.counters["premiere_ms"] = premiere;
}
BENCHMARK(BM_RechercheNom)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_RechercheMotIndex(benchmark::State& state) {
    Base& b = Million();
    std::size_t trouves = 0;
    for (auto _ : state) {
        CriteresMots c;
        c.lignes[0] = {kMarqueNom, "NOM1234"};
        c.anDebut = "1600";
        RechercheMots r(b, c);
        trouves = 0;
        Execute(r, Interaction{}, [&] { trouves += r.Prend().size(); });
    }
    state.counters["trouves"] = static_cast<double>(trouves);
}
BENCHMARK(BM_RechercheMotIndex)->Unit(benchmark::kMillisecond);

std::size_t ChercheEvt(Base& b, const char* type, const char* lieu) {
    CriteresEvt c;
    c.type = type;
    c.lieu = lieu;
    RechercheEvt r(b, c, JourAujourdhui());
    std::size_t trouves = 0;
    Execute(r, Interaction{}, [&] { trouves += r.Prend().size(); });
    return trouves;
}

void BM_RechercheEvt(benchmark::State& state) {
    Base& b = Evenements();
    const double premiere = Millisecondes([&] { ChercheEvt(b, "DEAT", ""); });
    std::size_t trouves = 0;
    for (auto _ : state) trouves = ChercheEvt(b, "BURI", "Lieu7");
    state.counters["trouves"] = static_cast<double>(trouves);
    state.counters["premiere_ms"] = premiere;
}
BENCHMARK(BM_RechercheEvt)->Unit(benchmark::kMillisecond)->Iterations(5);

// A span of years alone: the table is in date order, the scan starts at
// the span by bisection and reads only the events of the span.
void BM_RechercheEvtAnnees(benchmark::State& state) {
    Base& b = Evenements();
    std::size_t trouves = 0;
    for (auto _ : state) {
        CriteresEvt c;
        c.anDebut = "1850";
        c.anFin = "1852";
        RechercheEvt r(b, c, JourAujourdhui());
        trouves = 0;
        Execute(r, Interaction{}, [&] { trouves += r.Prend().size(); });
    }
    state.counters["trouves"] = static_cast<double>(trouves);
}
BENCHMARK(BM_RechercheEvtAnnees)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
