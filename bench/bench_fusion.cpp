// The search of doubles at its widest level over the 50,000 marriages of a
// base of 100,000 persons with names of many sounds (under 5 s), and one
// merge of two persons with 20 events and 10 children each, committed to a
// real file (under 20 ms).
#include "maintenance/fusion.h"
#include "store/base.h"
#include "store/fichier.h"
#include "store/fichier_memoire.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <random>

using namespace sylvane;

namespace {

constexpr std::uint32_t kCouples = 50000;
const std::string kRecherche = "/tmp/sylvane_bench_fusion_recherche.sv2";
const std::string kFusion = "/tmp/sylvane_bench_fusion.sv2";

// A name of two or three syllables: thousands of phonetic families.
std::string Nom(std::mt19937& rng, int syllabes) {
    static const char* consonnes[] = {"b", "c", "d", "f", "g", "l", "m", "n", "p", "r", "s", "t",
                                      "v", "ch", "gr", "br", "tr"};
    static const char* voyelles[] = {"a", "e", "i", "o", "ou", "au", "an", "on"};
    std::string s;
    for (int i = 0; i < syllabes; ++i) {
        s += consonnes[rng() % std::size(consonnes)];
        s += voyelles[rng() % std::size(voyelles)];
    }
    s[0] = static_cast<char>(s[0] - 'a' + 'A');
    return s;
}

void BaseRecherche() {
    if (std::filesystem::exists(kRecherche)) return;
    Parametres p;
    Base b(systemeReel(), p);
    b.Nouvelle(kRecherche);
    std::mt19937 rng(11);
    b.DebutLot();
    for (std::uint32_t i = 0; i < kCouples; ++i) {
        const auto an = std::to_string(1600 + rng() % 300);
        const auto h = b.CreePersonne(Nom(rng, 2 + rng() % 2), Nom(rng, 2), "", 'H', an);
        const auto f = b.CreePersonne(Nom(rng, 2 + rng() % 2), Nom(rng, 2), "", 'F', an);
        b.CreeMariage(h, f, an);
    }
    b.FinLot();
    b.FermeBase();
}

void BM_RechercheNiveau3(benchmark::State& state) {
    BaseRecherche();
    Parametres p;
    for (auto _ : state) {
        Base b(systemeReel(), p);
        b.Ouvre(kRecherche, true);
        TableDoublons t;
        auto r = RechercheDoublons(b, 3, "1/" + std::to_string(b.Tete().maxMariage), t, {});
        benchmark::DoNotOptimize(r);
        state.counters["paires"] = static_cast<double>(t.Actives());
        state.counters["mariages"] = r.dernier;
    }
}
BENCHMARK(BM_RechercheNiveau3)->Unit(benchmark::kMillisecond)->Iterations(2);

// Pairs of one man with 20 events, a wife and 10 children, in a base of
// other families; each run merges the next pair.
constexpr int kPaires = 60;

std::vector<std::pair<std::uint32_t, std::uint32_t>> BaseFusion(Base& b) {
    if (std::filesystem::exists(kFusion)) std::filesystem::remove(kFusion);
    b.Nouvelle(kFusion);
    std::mt19937 rng(3);
    std::vector<std::pair<std::uint32_t, std::uint32_t>> paires;
    auto famille = [&](const std::string& nom) {
        const auto h = b.CreePersonne(nom, "Jean", "", 'H', "1800");
        const auto f = b.CreePersonne(Nom(rng, 2), "Marie", "", 'F', "1802");
        b.CreeMariage(h, f, "1825");
        for (int e = 0; e < 20; ++e) b.CreeEvtPersonne(h, 1000 + e, "OCCU", "Paris");
        for (int c = 0; c < 10; ++c) {
            const auto e = b.CreePersonne(nom, Nom(rng, 2), "", "HF"[c % 2], "1830");
            b.EcritPere(e, h);
            b.MajEnfants(h, e, 'A');
            b.EcritMere(e, f);
            b.MajEnfants(f, e, 'A');
        }
        return h;
    };
    for (int i = 0; i < kPaires; ++i) {
        const std::string nom = Nom(rng, 3);
        paires.emplace_back(famille(nom), famille(nom));
    }
    b.FermeBase();
    b.Ouvre(kFusion);
    return paires;
}

// `memoire`: the same on the in-memory file layer, where the commit's
// syncs cost nothing: the merge's own work.
void BM_FusionUnePaire(benchmark::State& state) {
    Parametres p;
    SystemeMemoire memoire;
    Base b(state.range(0) ? static_cast<SystemeFichiers&>(memoire) : systemeReel(), p);
    const auto paires = BaseFusion(b);
    DialogueFusion oui;
    oui.question = [](int m, const std::string&) { return m == 957 ? Reponse::Oui : Reponse::Non; };
    std::size_t i = 0;
    for (auto _ : state) {
        const auto [k, d] = paires[i++ % paires.size()];
        TableDoublons t;
        const ChoixFusion c = ChoixParDefaut(b, k, d);
        benchmark::DoNotOptimize(Maj_Fusion(b, c, t, oui));
    }
    b.FermeBase();
}
BENCHMARK(BM_FusionUnePaire)->Unit(benchmark::kMillisecond)->Iterations(kPaires)->Arg(0)->Arg(1);

} // namespace

BENCHMARK_MAIN();
