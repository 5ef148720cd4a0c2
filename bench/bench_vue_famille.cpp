// The family view at level 4: the layout around a person with eight full
// ascendant generations and four generations of descendants, then the
// painting of one screen of it into an image, as the frame does on a
// redraw.
//   build/bench/bench_vue_famille
#include "app/frm_debut.h"
#include "store/base.h"
#include "store/fichier_memoire.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

using namespace sylvane;

namespace {

struct Famille {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    std::uint32_t centre = 0;

    std::uint32_t Personne(char sexe, int i) {
        return b.CreePersonne("Nom" + std::to_string(i % 97), "Prenom" + std::to_string(i), "",
                              sexe, std::to_string(1500 + i % 400));
    }
    void Parent(std::uint32_t enfant, std::uint32_t parent, bool pere) {
        pere ? b.EcritPere(enfant, parent) : b.EcritMere(enfant, parent);
        b.MajEnfants(parent, enfant, 'A');
    }
    void Mariage(std::uint32_t h, std::uint32_t f) { b.CreeMariage(h, f); }
    // Parents up to `generations` above n, all of them known.
    void Ascendants(std::uint32_t n, int generations, int& k) {
        if (generations == 0) return;
        const std::uint32_t pere = Personne('H', ++k), mere = Personne('F', ++k);
        Parent(n, pere, true);
        Parent(n, mere, false);
        Mariage(pere, mere);
        Ascendants(pere, generations - 1, k);
        Ascendants(mere, generations - 1, k);
    }
    // Each descendant married, with `enfants` children, down `generations`.
    void Descendants(std::uint32_t n, char sexe, int generations, int enfants, int& k) {
        if (generations == 0) return;
        const std::uint32_t conjoint = Personne(sexe == 'H' ? 'F' : 'H', ++k);
        sexe == 'H' ? Mariage(n, conjoint) : Mariage(conjoint, n);
        for (int i = 0; i < enfants; ++i) {
            const char s = i % 2 ? 'F' : 'H';
            const std::uint32_t c = Personne(s, ++k);
            Parent(c, sexe == 'H' ? n : conjoint, true);
            Parent(c, sexe == 'H' ? conjoint : n, false);
            Descendants(c, s, generations - 1, enfants, k);
        }
    }
    Famille() {
        b.Nouvelle("/famille.sv2");
        int k = 0;
        centre = Personne('H', ++k);
        Ascendants(centre, 8, k);
        Descendants(centre, 'H', 4, 5, k);
    }
};

Famille& LaFamille() {
    static Famille f;
    return f;
}

void Redessin(benchmark::State& state, int cases) {
    Famille& f = LaFamille();
    f.p.nombreCases[3] = cases;
    ReglageVue v;
    v.niveau = 4;
    v.porteeGauche = 8;
    v.porteeDroite = 4;
    v.hauteurLigne = HauteurLigne(f.p, 4);
    const StyleFamille style = StyleDe(f.p, 4, 1.0);
    QImage image(1400, 900, QImage::Format_ARGB32_Premultiplied);
    std::size_t nombre = 0;
    for (auto _ : state) {
        const DispositionFamille d = DisposeFamille(f.b, f.p, f.centre, v);
        const Rect& c = d.cases[d.centre].r;
        const QPointF origine(c.x + c.l / 2 - 700, c.milieuY() - 450);
        QPainter g(&image);
        g.translate(-origine);
        PeintFamille(g, d, style, QRectF(origine, QSizeF(1400, 900)), d.centre);
        g.end();
        nombre = d.cases.size();
        benchmark::DoNotOptimize(image.constBits());
    }
    state.counters["cases"] = static_cast<double>(nombre);
}

// The settings' default box count of level 4.
void BM_FamilleNiveau4(benchmark::State& state) { Redessin(state, 64); }
BENCHMARK(BM_FamilleNiveau4)->Unit(benchmark::kMillisecond);

// Every box within reach: 510 ascendants and the descendants with spouses.
void BM_FamilleNiveau4Tout(benchmark::State& state) { Redessin(state, 10000); }
BENCHMARK(BM_FamilleNiveau4Tout)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
