// The list of events on a base of 500,000 events: opening the window until
// it is painted (the list reads only the rows it shows), a page of
// scrolling, the jump to a typed year (bisection on the date table), the
// one order that reads every event, by place, and the printed list: the
// preview laying out its pages as it opens, then painting one of them
// (each paint walks the whole list again, the rows read one at a time).
//   build/bench/bench_evenements
// Runs under the offscreen platform unless QT_QPA_PLATFORM says otherwise.
#include "app/frm_evenement.h"
#include "app/frm_impression.h"
#include "programme_qt.h"

#include <QKeyEvent>
#include <QMdiSubWindow>
#include <QTableView>

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>

using namespace sylvane;

namespace {

constexpr std::uint32_t kEvenements = 500'000;
constexpr std::uint32_t kParPersonne = 10;

// 50,000 persons with ten events each, of the usual kinds, dated over four
// centuries and placed in 2,000 places; made once and kept.
const std::string& BaseEvenements() {
    static const std::string chemin = [] {
        const std::string c = Dossier() + "/evenements.sv2";
        if (!std::filesystem::exists(c)) {
            Parametres p;
            Base b(systemeReel(), p);
            b.Nouvelle(c);
            std::mt19937 alea(11);
            static const char* const tags[] = {"BIRT", "CHR", "DEAT", "BURI", "CENS", "RESI", "OCCU"};
            for (std::uint32_t i = 0; i < kEvenements / kParPersonne; ++i) {
                const std::uint32_t n = b.CreePersonne("Nom" + std::to_string(alea() % 20000),
                                                       "Prenom" + std::to_string(alea() % 500), "",
                                                       "HF"[i % 2], std::to_string(1500 + alea() % 400));
                for (std::uint32_t k = 0; k < kParPersonne; ++k)
                    b.CreeEvtPersonne(n, -146000 + static_cast<long>(alea() % 146000), tags[alea() % 7],
                                      "Lieu" + std::to_string(alea() % 2000));
            }
            b.FermeBase();
        }
        return c;
    }();
    return chemin;
}

// The program started on the events' base, its window shown.
struct ProgrammeEvenements : Programme {
    ProgrammeEvenements() : Programme(BaseEvenements(), {1200, 800}) { QApplication::processEvents(); }
    ~ProgrammeEvenements() { fenetre->logique().Termine(); }
    FrmLstEvtQt* Liste() {
        fenetre->logique().Execute(Commande::MnuEvenements);
        QApplication::processEvents();
        return qobject_cast<FrmLstEvtQt*>(fenetre->Formulaire("FrmLstEvt"));
    }
};

ProgrammeEvenements& LeProgramme() {
    static auto* p = new ProgrammeEvenements;
    return *p;
}

void BM_OuvrirFrmLstEvt(benchmark::State& state) {
    ProgrammeEvenements& p = LeProgramme();
    for (auto _ : state) {
        const auto t0 = std::chrono::steady_clock::now();
        FrmLstEvtQt* l = p.Liste();
        l->grille()->viewport()->repaint();
        const auto t1 = std::chrono::steady_clock::now();
        state.SetIterationTime(std::chrono::duration<double>(t1 - t0).count());
        if (l->grille()->model()->rowCount() != static_cast<int>(kEvenements))
            state.SkipWithError("the list does not hold every event");
        qobject_cast<QMdiSubWindow*>(l->parentWidget())->close();
        QApplication::processEvents();
    }
}
BENCHMARK(BM_OuvrirFrmLstEvt)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_PageSuivante(benchmark::State& state) {
    FrmLstEvtQt* l = LeProgramme().Liste();
    l->grille()->setFocus();
    for (auto _ : state) {
        QKeyEvent e(QEvent::KeyPress, Qt::Key_PageDown, Qt::NoModifier);
        QApplication::sendEvent(l->grille(), &e);
        l->grille()->viewport()->repaint();
    }
}
BENCHMARK(BM_PageSuivante)->Unit(benchmark::kMicrosecond);

void BM_AllerAUneAnnee(benchmark::State& state) {
    FrmLstEvtQt* l = LeProgramme().Liste();
    int an = 1500;
    for (auto _ : state) {
        if (++an > 1899) an = 1500;
        benchmark::DoNotOptimize(l->logique().Position(std::to_string(an)));
    }
}
BENCHMARK(BM_AllerAUneAnnee)->Unit(benchmark::kMicrosecond);

void BM_TrierParLieu(benchmark::State& state) {
    FrmLstEvtQt* l = LeProgramme().Liste();
    for (auto _ : state) {
        l->logique().Trie(OrdreEvt::Lieu, false);
        state.PauseTiming();
        l->logique().Trie(OrdreEvt::Date, false);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_TrierParLieu)->Unit(benchmark::kMillisecond)->Iterations(2);

FrmPrevisualisationQt* Apercu() {
    return qobject_cast<FrmPrevisualisationQt*>(LeProgramme().fenetre->Formulaire("FrmPrevisualisation"));
}

void BM_ImprimerLaListe(benchmark::State& state) {
    FrmLstEvtQt* l = LeProgramme().Liste();
    for (auto _ : state) {
        if (!l->logique().CmdImprimer()) state.SkipWithError("nothing to print");
        state.PauseTiming();
        FrmPrevisualisationQt* a = Apercu();
        if (!a) state.SkipWithError("no preview");
        state.counters["pages"] = a->logique().NombrePages();
        qobject_cast<QMdiSubWindow*>(a->parentWidget())->close();
        QApplication::processEvents();
        state.ResumeTiming();
    }
    state.counters["pic_Mo"] = static_cast<double>(PicMemoireMo());
}
BENCHMARK(BM_ImprimerLaListe)->Unit(benchmark::kMillisecond)->Iterations(2);

void BM_PeindreUnePageDeLApercu(benchmark::State& state) {
    FrmLstEvtQt* l = LeProgramme().Liste();
    l->logique().CmdImprimer();
    QApplication::processEvents();
    FrmPrevisualisationQt* a = Apercu();
    if (!a) {
        state.SkipWithError("no preview");
        return;
    }
    for (auto _ : state) benchmark::DoNotOptimize(a->grab());
    qobject_cast<QMdiSubWindow*>(a->parentWidget())->close();
    QApplication::processEvents();
}
BENCHMARK(BM_PeindreUnePageDeLApercu)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
