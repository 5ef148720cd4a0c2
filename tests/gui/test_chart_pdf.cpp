// Charts through Qt's painter: the metric is the one the glyphs are drawn
// with, the PDF of the command line has one page a sheet with its texts,
// and a PDF that can't be written whole leaves the old file alone.
#include "app/frm_graphique.h"
#include "app/surface_qt.h"
#include "charts/gabarit.h"
#include "store/fichier_memoire.h"
#include "support/dossier_temp.h"
#include "fenetre_test.h"

#include <QLabel>

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <regex>

using namespace sylvane;

namespace {

// The output of a command, and whether it ran.
bool Lance(const std::string& ligne, std::string* sortie = nullptr) {
    FILE* f = popen((ligne + " 2>&1").c_str(), "r");
    if (!f) return false;
    char t[4096];
    std::string s;
    for (std::size_t n; (n = std::fread(t, 1, sizeof t, f)) > 0;) s.append(t, n);
    if (sortie) *sortie = s;
    return pclose(f) == 0;
}

std::string Guillemets(const std::string& s) { return "'" + s + "'"; }

std::size_t Pages(const std::string& pdf) {
    const std::regex page(R"(/Type\s*/Page[^s])");
    return static_cast<std::size_t>(
        std::distance(std::sregex_iterator(pdf.begin(), pdf.end(), page), std::sregex_iterator()));
}

// The columns of the image that hold ink.
std::pair<int, int> Encre(const QImage& im) {
    int gauche = im.width(), droite = -1;
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (qGray(im.pixel(x, y)) < 160) {
                gauche = std::min(gauche, x);
                droite = std::max(droite, x);
            }
    return {gauche, droite};
}

} // namespace

TEST(SurfaceQt, GlyphsAreAsWideAsTheMetricSays) {
    // A text measured by the metric and drawn on a device of another
    // resolution covers the measured width: the layout fitted with the
    // metric holds on the screen, the paper and the PDF alike.
    const MetriqueQt m;
    for (const bool gras : {false, true}) {
        for (const double points : {6.0, 9.5, 14.0}) {
            const Police p{points, gras};
            const std::string texte = "MMMMMMMMMMMMMMMMMMMM";
            const double echelle = 96.0 / 1440; // a screen at 96 dots an inch
            QImage im(1200, 200, QImage::Format_RGB32);
            im.fill(Qt::white);
            {
                QPainter pt(&im);
                SurfaceQt s(pt, m, echelle);
                s.DebutPage(1, 1, 1200 / echelle, 200 / echelle);
                s.Texte(100 / echelle, 20 / echelle, texte, p, 0);
                s.FinPage();
            }
            const auto [g, d] = Encre(im);
            const double mesure = m.Largeur(texte, p) * echelle;
            EXPECT_NEAR(d - g + 1, mesure, mesure * 0.04 + 2) << points << gras;
            EXPECT_NEAR(g, 100, 3);
        }
    }
    // Widths grow with the size, and bold is wider.
    EXPECT_NEAR(m.Largeur("Martin", {16, false}), 2 * m.Largeur("Martin", {8, false}), 0.5);
    EXPECT_GT(m.Largeur("Martin", {8, true}), m.Largeur("Martin", {8, false}));
    EXPECT_NEAR(m.Hauteur({10, false}), 10 * kTwipsParPoint * 1.16, 10 * kTwipsParPoint * 0.1);
}

TEST(SurfaceQt, OneSheetOfSeveral) {
    // The window shows one sheet: the others are read and left out.
    const MetriqueQt m;
    QImage im(200, 200, QImage::Format_RGB32);
    im.fill(Qt::white);
    QPainter pt(&im);
    SurfaceQt s(pt, m, 0.01);
    s.Seule(1, 2);
    s.DebutPage(1, 1, 20000, 20000);
    s.Boite(0, 0, 20000, 20000, 0x000000);
    s.FinPage();
    EXPECT_EQ(qGray(im.pixel(100, 100)), 255);
    s.DebutPage(1, 2, 20000, 20000);
    s.Boite(5000, 5000, 15000, 15000, 0x000000);
    s.FinPage();
    pt.end();
    EXPECT_EQ(qGray(im.pixel(100, 100)), 0);
    EXPECT_EQ(qGray(im.pixel(20, 20)), 255);
}

struct ChartPdf : testing::Test {
    test::DossierTemp d;
    std::string base = d / "famille.sv2";
    const std::string cli = SYLVANE_CLI;
    void SetUp() override {
        std::string sortie;
        ASSERT_TRUE(Lance(Guillemets(cli) + " import-gedcom " +
                                 Guillemets(SYLVANE_SOURCE_DIR "/samples/famille-exemple.ged") +
                                 " " + Guillemets(base),
                             &sortie))
            << sortie;
    }
};

TEST_F(ChartPdf, SixGenerationsOnFourSheets) {
    // Félix DURAND (9) and his six generations of ascendants on 2 x 2 A4.
    const std::string pdf = d / "F\xC3\xA9lix 'asc'.pdf";
    std::string sortie;
    ASSERT_TRUE(Lance("env -u QT_QPA_PLATFORM -u DISPLAY " + Guillemets(cli) + " chart " +
                             Guillemets(base) +
                             " 9 --type asc --generations 6 --sheets-across 2 "
                             "--sheets-down 2 --colour --pdf \"" + pdf + "\"",
                         &sortie))
        << sortie;
    // The command says nothing of Qt, only its measures.
    EXPECT_EQ(sortie.rfind("{", 0), 0u) << sortie;
    EXPECT_NE(sortie.find("\"sheets_across\":2"), std::string::npos);
    const std::string s = test::LitFichier(pdf);
    EXPECT_EQ(s.rfind("%PDF", 0), 0u);
    EXPECT_EQ(Pages(s), 4u);
    EXPECT_FALSE(std::filesystem::exists(CheminTemporaire(pdf)));
    std::string texte;
    if (!Lance("pdftotext -v", &texte)) GTEST_SKIP() << "pdftotext is not installed";
    ASSERT_TRUE(Lance("pdftotext -enc UTF-8 \"" + pdf + "\" -", &texte));
    EXPECT_NE(texte.find("F\xC3\xA9lix"), std::string::npos) << texte;
    EXPECT_NE(texte.find("LEBRUN"), std::string::npos);
    EXPECT_NE(texte.find("Feuille : 2/2"), std::string::npos);
    EXPECT_NE(texte.find("\xC2\xB0 1692 / Saint-Aubin"), std::string::npos);
}

TEST(EcritPdf, WholeOrNotAtAll) {
    SystemeMemoire fs;
    const std::string gabarit = "/t/g.svp", cible = "/t/sortie.pdf";
    auto gabaritDe = [&](int feuilles) {
        EcrivainGabarit g(fs, gabarit, {feuilles, 1, 11906 * feuilles, 16838});
        g.BoiteGraphe(3000, 3000, 1000, 500, 0, 7);
        g.TexteGraphe("Titre \"x\"", 5000, 800, kStyleTitre);
        g.TraitGraphe(0, 0, 11906 * feuilles, 16838, kStyleLien);
        ASSERT_TRUE(g.Termine());
    };
    const MetriqueQt m;
    OptionsPages o;
    o.texte = [](std::uint32_t n, const StyleBoite&) { return "Personne#" + std::to_string(n); };
    gabaritDe(2);
    ecrireTout(fs, cible, "ancien");
    // A disk that fails at any step of the writing: the target is the old
    // file or a whole PDF.
    for (long n = 1; n <= 8; ++n) {
        ecrireTout(fs, cible, "ancien");
        fs.echouerApres(n);
        try {
            EcritPdf(fs, gabarit, cible, o, m);
        } catch (const ErreurES&) {
        }
        fs.retablir();
        const std::string s = lireTout(fs, cible);
        EXPECT_TRUE(s == "ancien" || (s.rfind("%PDF", 0) == 0 && Pages(s) == 2)) << n;
    }
    ecrireTout(fs, cible, "ancien");
    // A stop between two sheets: nothing written, the template gone.
    int feuillesVues = 0;
    o.arret = [&] { return ++feuillesVues > 1; };
    EXPECT_EQ(EcritPdf(fs, gabarit, cible, o, m), FinPages::Arrete);
    EXPECT_EQ(lireTout(fs, cible), "ancien");
    EXPECT_FALSE(fs.existe(gabarit));
    // No template: no file.
    o.arret = nullptr;
    EXPECT_EQ(EcritPdf(fs, gabarit, cible, o, m), FinPages::Absent);
    EXPECT_EQ(lireTout(fs, cible), "ancien");
    // A damaged template is refused, never half drawn.
    ecrireTout(fs, gabarit, "1,1,11906,16838\n\"C\",1,2\n");
    EXPECT_THROW(EcritPdf(fs, gabarit, cible, o, m), ErreurGabarit);
    EXPECT_EQ(lireTout(fs, cible), "ancien");
    // And a good one replaces the file whole.
    gabaritDe(2);
    EXPECT_EQ(EcritPdf(fs, gabarit, cible, o, m), FinPages::Termine);
    const std::string s = lireTout(fs, cible);
    EXPECT_EQ(s.rfind("%PDF", 0), 0u);
    EXPECT_EQ(s.substr(s.size() - 6), "%%EOF\n");
    EXPECT_EQ(Pages(s), 2u);
    // What a failing disk left, the next writer took over.
    EXPECT_FALSE(fs.existe(CheminTemporaire(cible)));
}

using FenetreGraphique = test::FenetreTest;

TEST_F(FenetreGraphique, ShowsThePersonInCourse) {
    // Félix DURAND of the sample family; the window opens from the menu
    // entry's form name and draws his ascendants.
    const std::string base = dossier / "famille.sv2";
    ASSERT_TRUE(Lance(Guillemets(SYLVANE_CLI) + " import-gedcom " +
                      Guillemets(SYLVANE_SOURCE_DIR "/samples/famille-exemple.ged") + " " +
                      Guillemets(base)));
    OuvreFenetre(base, 9);
    fenetre->Ouvre("FrmGraphisme");
    auto* f = dynamic_cast<FrmGraphiqueQt*>(fenetre->Formulaire("FrmGraphisme"));
    ASSERT_NE(f, nullptr);
    ASSERT_TRUE(f->logique().Pret());
    EXPECT_EQ(f->logique().Plan().niveauxAsc, 4);
    EXPECT_TRUE(f->feuille()->text().contains(QStringLiteral("1/1")));
    EXPECT_TRUE(std::filesystem::exists(f->logique().Gabarit()));
    const std::string pdf = dossier / "graphe.pdf";
    ASSERT_TRUE(f->SauvePdf(QString::fromStdString(pdf)));
    EXPECT_EQ(test::LitFichier(pdf).rfind("%PDF", 0), 0u);
    if (const char* capture = std::getenv("SYLVANE_CAPTURE")) {
        fenetre->resize(1200, 900);
        if (f->parentWidget()) f->parentWidget()->showMaximized();
        f->logique().Agrandir();
        f->Retraduit();
        QApplication::processEvents();
        fenetre->grab().save(QString::fromUtf8(capture));
    }
    const std::string gabarit = f->logique().Gabarit();
    f->close();
    fenetre.reset();
    EXPECT_FALSE(std::filesystem::exists(gabarit));
}
