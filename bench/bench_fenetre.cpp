// The main window as a user meets it: the start of the program on the
// sample family's base until its family view is painted, and next and
// previous person (with the redraw they cause) on a million-person base.
//   build/bench/bench_fenetre
// Runs under the offscreen platform unless QT_QPA_PLATFORM says otherwise.
#include "exchange/gedcom_import.h"
#include "programme_qt.h"

#include <benchmark/benchmark.h>

#include <filesystem>

using namespace sylvane;

namespace {

const std::string& BaseExemple() {
    static const std::string chemin = [] {
        const std::string c = Dossier() + "/famille-exemple.sv2";
        if (!std::filesystem::exists(c)) {
            Parametres p;
            Base b(systemeReel(), p);
            b.Nouvelle(c);
            ImporteGedcom(b, PrepareGedcom(systemeReel(), std::string(SYLVANE_SOURCE_DIR) +
                                                              "/samples/famille-exemple.ged"));
            b.FermeBase();
        }
        return c;
    }();
    return chemin;
}

void BM_DemarrageSurLaBaseExemple(benchmark::State& state) {
    const std::string base = BaseExemple();
    for (auto _ : state) {
        Programme p(base);
        MDIForm1Qt& fenetre = *p.fenetre;
        QApplication::processEvents(); // the window and its family view paint
        benchmark::DoNotOptimize(fenetre.logique().PersonneEnCours());
        state.PauseTiming();
        fenetre.logique().Termine();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_DemarrageSurLaBaseExemple)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_SuivantPrecedentSurUnMillion(benchmark::State& state) {
    Programme p(BaseMillion());
    MDIForm1Qt& fenetre = *p.fenetre;
    fenetre.logique().DefinitNiveau(4);
    Base& b = *fenetre.logique().base();
    fenetre.logique().Aller(b.TriFiche(b.TablePersonnes().taille() / 2));
    QApplication::processEvents();
    bool avant = true;
    for (auto _ : state) {
        // Alternate, so that every step moves.
        fenetre.logique().Execute(avant ? Commande::MnuSuivant : Commande::MnuPrecedent);
        avant = !avant;
        QApplication::processEvents();
    }
    fenetre.logique().Termine();
}
BENCHMARK(BM_SuivantPrecedentSurUnMillion)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
