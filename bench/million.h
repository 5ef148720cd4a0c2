// The million-person base that the benchmarks share: made once in
// $SYLVANE_BENCH_DIR (default /tmp/sylvane-bench) and kept for later runs.
#pragma once

#include "store/base.h"
#include "store/fichier.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <sys/resource.h>

namespace sylvane {

inline constexpr std::uint32_t kPersonnes = 1'000'000;

inline std::string Dossier() {
    const char* d = std::getenv("SYLVANE_BENCH_DIR");
    std::string r = d ? d : "/tmp/sylvane-bench";
    std::filesystem::create_directories(r);
    return r;
}

inline long PicMemoireMo() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss / 1024;
}

// Creates the persons as an import does: in one batch of the keyword
// index, with parents for most of them, then one commit.
inline void Remplit(Base& b, std::uint32_t nombre) {
    std::mt19937 alea(7);
    b.DebutLot();
    for (std::uint32_t i = 1; i <= nombre; ++i) {
        std::string nom = "Nom" + std::to_string(alea() % 20000);
        std::string prenom = "Prenom" + std::to_string(alea() % 500);
        std::string an = std::to_string(1500 + alea() % 450);
        auto n = b.CreePersonne(nom, prenom, "", "HF"[i % 2], an, "12/03/" + an);
        if (n > 10 && alea() % 4) {
            std::uint32_t pere = 1 + alea() % (n - 1);
            b.EcritPere(n, pere);
            b.MajEnfants(pere, n, 'A');
        }
    }
    b.FinLot();
}

inline const std::string& BaseMillion() {
    static const std::string chemin = [] {
        std::string c = Dossier() + "/million.sv2";
        if (!std::filesystem::exists(c)) {
            Parametres p;
            Base b(systemeReel(), p);
            b.Nouvelle(c);
            Remplit(b, kPersonnes);
            b.FermeBase();
        }
        return c;
    }();
    return chemin;
}

// The million base opened once for reading, for the benchmarks that only read.
inline Base& MillionOuvert() {
    static Parametres p;
    static std::unique_ptr<Base> b = [] {
        auto x = std::make_unique<Base>(systemeReel(), p);
        x->Ouvre(BaseMillion(), true);
        return x;
    }();
    return *b;
}

} // namespace sylvane
