// The list of names on a million-person base: opening the picker until it
// is painted, a page of scrolling, the jump to a typed year (bisection) and
// the walk for a name that a base sorted by year can't bisect.
//   build/bench/bench_frm_nom
// Runs under the offscreen platform unless QT_QPA_PLATFORM says otherwise.
#include "app/frm_nom.h"
#include "programme_qt.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTableView>

#include <benchmark/benchmark.h>

#include <chrono>

using namespace sylvane;

namespace {

// The base stays open for every benchmark, as it is in the program.
Base& Million() {
    static Parametres p;
    static Base b(systemeReel(), p);
    if (!b.EstOuverte()) b.Ouvre(BaseMillion(), true);
    return b;
}

void BM_OuvrirFrmNom(benchmark::State& state) {
    Appli();
    Base& b = Million();
    const std::uint32_t depart = b.TriFiche(kPersonnes / 2);
    for (auto _ : state) {
        const auto t0 = std::chrono::steady_clock::now();
        FrmNomQt f(&b, depart);
        f.show();
        QApplication::processEvents();
        f.repaint();
        const auto t1 = std::chrono::steady_clock::now();
        state.SetIterationTime(std::chrono::duration<double>(t1 - t0).count());
        f.hide();
    }
}
BENCHMARK(BM_OuvrirFrmNom)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_PageSuivante(benchmark::State& state) {
    Appli();
    Base& b = Million();
    FrmNomQt f(&b, b.TriFiche(1));
    f.show();
    QApplication::processEvents();
    for (auto _ : state) {
        QKeyEvent e(QEvent::KeyPress, Qt::Key_PageDown, Qt::NoModifier);
        QApplication::sendEvent(f.vue(), &e);
        f.vue()->viewport()->repaint();
    }
}
BENCHMARK(BM_PageSuivante)->Unit(benchmark::kMicrosecond);

void BM_ChercheAnnee(benchmark::State& state) {
    Base& b = Million();
    ListeNoms l(&b);
    int an = 1500;
    for (auto _ : state) {
        if (++an > 1949) an = 1500;
        benchmark::DoNotOptimize(l.Cherche(std::to_string(an) + " NOM1"));
    }
}
BENCHMARK(BM_ChercheAnnee)->Unit(benchmark::kMicrosecond);

// A name that no one has, in a base sorted by year: the window walks the
// table by slices of 4000 rows between events (the first slice here, on
// rows not read before); the whole walk is the second figure.
void BM_TrancheDeParcours(benchmark::State& state) {
    Base& b = Million();
    ListeNoms l(&b);
    std::size_t debut = 0;
    for (auto _ : state) {
        l.Place(debut);
        debut = (debut + 4000) % l.Nombre();
        benchmark::DoNotOptimize(l.Lance(ListeNoms::Sens::Premiere, "Personne", 4000));
    }
}
BENCHMARK(BM_TrancheDeParcours)->Unit(benchmark::kMillisecond);

void BM_ParcoursComplet(benchmark::State& state) {
    Base& b = Million();
    ListeNoms l(&b);
    for (auto _ : state) benchmark::DoNotOptimize(l.Cherche("Personne"));
}
BENCHMARK(BM_ParcoursComplet)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
