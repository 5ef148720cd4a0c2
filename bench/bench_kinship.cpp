// Speed of the kinship lists and numbers.
//   BM_ListeAscendants/mode: a 32,000-entry ascendant list, built and sorted
//     (target: under 100 ms).
//   BM_ListeDescendants/mode: the same for a 32,000-entry descendant list.
//   BM_Numeros: both numbering tables of a 1,000,000-person base
//     (target: under 1 s).
#include "kinship/liste.h"
#include "kinship/numeros.h"
#include "store/base.h"
#include "store/fichier_memoire.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <random>
#include <string>

using namespace sylvane;

namespace {

const char* const kNoms[] = {"Martin", "Bernard", "de la Tour", "Dubois", "Thomas",
                             "Robert", "Richard", "Petit",      "Durand", "Leroy"};
const char* const kAns[] = {"1650", "1701", "", "1788", " 850", "1822", "-12", "1900"};

struct BaseBanc {
    SystemeMemoire fs;
    Parametres params;
    std::unique_ptr<Base> base;

    BaseBanc() {
        params.dossierTravail = "/travail";
        base = std::make_unique<Base>(fs, params);
        base->Nouvelle("/banc.sv2");
        // The persons go in as an import's do: the keyword index is built
        // once at the end, not rewritten for each of them.
        base->DebutLot();
    }
    std::uint32_t Personne(std::uint32_t i, char sexe) {
        return base->CreePersonne(kNoms[i % 10], "Prenom" + std::to_string(i % 97), "", sexe,
                                  kAns[i % 8]);
    }
    void Parents(std::uint32_t c, std::uint32_t pere, std::uint32_t mere) {
        base->EcritPere(c, pere);
        base->MajEnfants(pere, c, 'A');
        base->EcritMere(c, mere);
        base->MajEnfants(mere, c, 'A');
    }
};

// Person k has father 2k and mother 2k + 1: 32,000 distinct ascendants of
// person 1. Persons 32,001 on are the descendants of person 32,001: 200
// children, each with 160 children, which the list stops at 32,000.
BaseBanc& Pedigree() {
    static BaseBanc* b = [] {
        auto* r = new BaseBanc;
        const std::uint32_t n = 32000;
        for (std::uint32_t k = 1; k <= n; ++k)
            r->Personne(k, k % 2 ? 'F' : 'H');
        r->base->FinLot();
        for (std::uint32_t k = 1; 2 * k <= n; ++k) {
            r->base->EcritPere(k, 2 * k);
            if (2 * k + 1 <= n) r->base->EcritMere(k, 2 * k + 1);
        }
        const auto racine = r->Personne(0, 'H');
        for (int i = 0; i < 200; ++i) {
            const auto e = r->Personne(static_cast<std::uint32_t>(i), 'H');
            r->Parents(e, racine, 0);
            for (int j = 0; j < 160; ++j) {
                const auto pe = r->Personne(static_cast<std::uint32_t>(j), j % 2 ? 'F' : 'H');
                r->base->EcritPere(pe, e);
                r->base->MajEnfants(e, pe, 'A');
            }
        }
        return r;
    }();
    return *b;
}

// A list of `personne`'s ascendants or descendants, in the order of the
// benchmark's argument.
void Liste(benchmark::State& state, bool descendants, std::uint32_t personne) {
    BaseBanc& b = Pedigree();
    ListeParente l(*b.base, b.fs);
    const int mode = static_cast<int>(state.range(0));
    for (auto _ : state) {
        std::int32_t nombre = 0;
        if (descendants)
            l.ConstruitDescendants(personne, nombre, 99, mode);
        else
            l.ConstruitAscendants(personne, nombre, 99, mode);
        if (nombre != 32000) state.SkipWithError("wrong list size");
    }
}

void BM_ListeAscendants(benchmark::State& state) {
    Liste(state, false, 1);
}
BENCHMARK(BM_ListeAscendants)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

void BM_ListeDescendants(benchmark::State& state) {
    Liste(state, true, 32001);
}
BENCHMARK(BM_ListeDescendants)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

// 1,000,000 persons in 25 generations of 40,000, each with a father and a
// mother drawn from the generation before, each couple married: wide
// ascendancies with implex, and descendancies of thousands.
BaseBanc& Population() {
    static BaseBanc* b = [] {
        auto* r = new BaseBanc;
        std::mt19937 rng(7);
        const std::uint32_t parGeneration = 40000;
        for (std::uint32_t i = 0; i < 25 * parGeneration; ++i) {
            const auto p = r->Personne(i, i % 2 ? 'F' : 'H');
            if (i < parGeneration) continue;
            const std::uint32_t debut = (i / parGeneration - 1) * parGeneration + 1;
            const std::uint32_t pere = debut + (rng() % (parGeneration / 2)) * 2;
            const std::uint32_t mere = debut + (rng() % (parGeneration / 2)) * 2 + 1;
            r->Parents(p, pere, mere);
            if (rng() % 4 == 0) r->base->CreeMariage(pere, mere);
        }
        r->base->FinLot();
        return r;
    }();
    return *b;
}

void BM_Numeros(benchmark::State& state) {
    BaseBanc& b = Population();
    EtatNumerotation e;
    e.deCujus1.deCujus = 24 * 40000 + 1; // in the last generation
    e.deCujus2.deCujus = 12 * 40000 + 2; // in the middle: ascendants and descendants
    std::size_t numerotes = 0;
    for (auto _ : state) {
        Calcul_Numeros_1(*b.base, e);
        Calcul_Numeros_2(*b.base, e);
        numerotes = e.deCujus1.ascendants.size() + e.deCujus1.descendants.size() +
                    e.deCujus2.ascendants.size() + e.deCujus2.descendants.size();
    }
    state.counters["numbered"] = static_cast<double>(numerotes);
}
BENCHMARK(BM_Numeros)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
