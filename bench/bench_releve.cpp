// Register capture of a 100,000-line baptism register into a new base on
// disk (target: under 5 s). The register is made here, in the columns of
// the README, with the repetitions of a real parish: a few hundred family
// names and first names, a dozen places, two centuries of dates.
#include "exchange/releve.h"
#include "text/dates.h"

#include <benchmark/benchmark.h>

#include <filesystem>

using namespace sylvane;

namespace {

std::string Registre(int lignes) {
    static const char* const prenoms[] = {"Jean", "Pierre", "Marie", "Anne", "Jacques", "Catherine",
                                          "Bernard", "Jeanne", "Martin", "Gracieuse", "Dominique", "Louis"};
    static const char* const lieux[] = {"Saint-Jean-de-Luz", "Ciboure", "Urrugne", "Ascain", "Sare",
                                        "Hendaye", "Bayonne", "Biarritz", "Anglet", "Bidart", "Guethary",
                                        "Espelette"};
    std::string t = "Jour/Mois;Ann\xE9" "e;Lieu;Nom;Pr\xE9nom;Sexe;Nom du p\xE8re;Pr\xE9nom du p\xE8re;"
                    "Profession;Nom de la m\xE8re;Pr\xE9nom de la m\xE8re;Profession;Parrain;Marraine;Note\r\n";
    t.reserve(static_cast<std::size_t>(lignes) * 120);
    unsigned x = 12345;
    auto hasard = [&x](unsigned n) {
        x = x * 1103515245u + 12345u;
        return (x >> 16) % n;
    };
    for (int i = 0; i < lignes; ++i) {
        const std::string nom = "NOM" + std::to_string(hasard(400));
        const std::string mere = "NOM" + std::to_string(hasard(400));
        t += std::to_string(1 + hasard(28)) + "/" + std::to_string(1 + hasard(12)) + ";" +
             std::to_string(1700 + hasard(200)) + ";" + lieux[hasard(12)] + ";" + nom + ";" +
             prenoms[hasard(12)] + ";" + (hasard(2) ? "H" : "F") + ";" + nom + ";" + prenoms[hasard(12)] +
             ";laboureur;" + mere + ";" + prenoms[hasard(12)] + ";;" + prenoms[hasard(12)] + " " + nom +
             ";" + prenoms[hasard(12)] + " " + mere + ";\r\n";
    }
    return t;
}

void BM_ReleveBaptemes(benchmark::State& state) {
    const std::string registre = Registre(static_cast<int>(state.range(0)));
    const auto dossier = std::filesystem::temp_directory_path() / "sylvane_bench_releve";
    std::filesystem::create_directories(dossier);
    const std::string chemin = (dossier / "baptemes.sv2").string();
    Parametres p;
    for (auto _ : state) {
        Base b(systemeReel(), p);
        b.Nouvelle(chemin);
        const RapportReleve r = ImporteReleve(b, registre, GenreReleve::Bapteme);
        b.FermeBase();
        if (r.actes != static_cast<std::uint32_t>(state.range(0))) state.SkipWithError("acts missing");
        state.counters["personnes"] = r.personnes;
    }
    std::filesystem::remove_all(dossier);
}
BENCHMARK(BM_ReleveBaptemes)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
