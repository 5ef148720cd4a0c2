// The page canvas shared by the chart window and the print preview: its
// buttons go to the window's logic, the window hears of a change only when
// the logic moved, the page takes the paper's size at the zoom, and a
// drawing that fails leaves an empty sheet instead of stopping the program.
#include "app/canevas_pages.h"

#include <QApplication>
#include <QImage>
#include <QPushButton>

#include <gtest/gtest.h>

#include <stdexcept>

using namespace sylvane;

namespace {

TEST(CanevasPages, ButtonsZoomAndAFailingDrawing) {
    double zoom = 1.0;
    int page = 1, changes = 0, dessins = 0;
    Feuilletage f;
    f.precedente = [&] { return page > 1 ? (--page, true) : false; };
    f.suivante = [&] { return page < 2 ? (++page, true) : false; };
    f.reduire = [&] { return zoom > 0.5 ? (zoom /= 2, true) : false; };
    f.agrandir = [&] { return zoom < 4 ? (zoom *= 2, true) : false; };
    f.zoom = [&] { return zoom; };
    f.papier = [] { return Papier{}; };
    f.position = [&] { return std::pair{1, page}; };
    f.pret = [] { return true; };
    f.dessine = [&](SurfaceQt&) {
        ++dessins;
        throw std::runtime_error("template gone");
    };
    MetriqueQt m;
    CanevasPages c(std::move(f), m, nullptr);
    c.QuandChange([&] {
        ++changes;
        c.Ajuste();
    });
    c.resize(600, 500);
    c.show();
    c.Ajuste();
    const int largeur = c.page()->width();
    EXPECT_NEAR(largeur, 11906.0 * c.page()->logicalDpiX() / 1440.0, 2.0);

    c.agrandir()->click();
    EXPECT_EQ(zoom, 2.0);
    EXPECT_NEAR(c.page()->width(), 2 * largeur, 3);
    c.precedente()->click(); // nothing before the first page
    EXPECT_EQ(changes, 1);
    c.suivante()->click();
    EXPECT_EQ(page, 2);
    EXPECT_EQ(changes, 2);

    // The failing drawing: a white sheet all the same.
    QImage im(c.page()->size(), QImage::Format_RGB32);
    c.page()->render(&im);
    EXPECT_GT(dessins, 0);
    EXPECT_EQ(im.pixelColor(20, 20), QColor(Qt::white));
}

} // namespace
