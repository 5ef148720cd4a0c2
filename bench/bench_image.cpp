// A scanned page of 4000 x 3000 pixels in TIFF, as the picture viewer
// takes it: the header read for the panel, the file decoded, and the
// picture scaled to fit a view of 1000 x 700 and made a pixmap.
//   build/bench/bench_image
#include "app/image_qt.h"
#include "exchange/image_entete.h"
#include "store/fichier.h"

#include <QApplication>
#include <QImageWriter>
#include <QPainter>
#include <QPixmap>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

using namespace sylvane;

namespace {

// The scan is made once: grey paper with lines of ink, in RGB, as a
// scanner writes it (LZW).
std::string Scan() {
    const std::string chemin = "/tmp/sylvane-bench-scan.tif";
    if (systemeReel().existe(chemin)) return chemin;
    QImage page(4000, 3000, QImage::Format_RGB32);
    page.fill(QColor(236, 230, 214));
    QPainter p(&page);
    p.setPen(QPen(QColor(40, 40, 60), 3));
    for (int y = 200; y < 2900; y += 60) p.drawLine(300, y, 3700 - (y * 7) % 900, y);
    p.end();
    QImageWriter w(QString::fromStdString(chemin), "tiff");
    w.setCompression(1);
    if (!w.write(page)) std::abort();
    return chemin;
}

void BM_ScanAffiche(benchmark::State& etat) {
    const std::string chemin = Scan();
    for (auto _ : etat) {
        const EnteteImage e = InspecteFichier(systemeReel(), chemin);
        const ImageChargee r = ChargeImage(chemin);
        if (r.image.isNull()) {
            etat.SkipWithError("scan not read");
            break;
        }
        const QImage vue =
            r.image.scaled(QSize(1000, 700), Qt::KeepAspectRatio, Qt::SmoothTransformation);
        const QPixmap pixmap = QPixmap::fromImage(vue);
        benchmark::DoNotOptimize(e.lignes.size());
        benchmark::DoNotOptimize(pixmap.cacheKey());
    }
}
BENCHMARK(BM_ScanAffiche)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
