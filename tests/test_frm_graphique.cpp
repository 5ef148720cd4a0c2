// The chart window's logic: the chart of a person to its template, the
// sheets turned row by row, the zoom within its steps, and no template
// left behind.
#include "store/fichier_memoire.h"
#include "ui/frm_graphique.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

struct Graphique : ::testing::Test {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    std::uint32_t enfant = 0;
    void SetUp() override {
        p.dossierTravail = "/travail/";
        b.Nouvelle("/d/famille.sv2");
        const std::uint32_t pere = b.CreePersonne("Martin", "Louis", "", 'H', "1850");
        const std::uint32_t mere = b.CreePersonne("Petit", "Rose", "", 'F', "1852");
        enfant = b.CreePersonne("Martin", "Jean", "", 'H', "1880");
        b.EcritPere(enfant, pere);
        b.MajEnfants(pere, enfant, 'A');
        b.EcritMere(enfant, mere);
        b.MajEnfants(mere, enfant, 'A');
    }
};

} // namespace

TEST_F(Graphique, SheetsTurnedRowByRow) {
    FrmGraphique f(fs);
    EXPECT_FALSE(f.Dessine(b, p, 0, MetriqueDejaVu::Instance()));
    EXPECT_FALSE(f.Pret());
    EXPECT_FALSE(f.Suivante());
    f.feuillesH = 2;
    f.feuillesV = 2;
    ASSERT_TRUE(f.Dessine(b, p, enfant, MetriqueDejaVu::Instance()));
    EXPECT_EQ(f.Gabarit(), "/travail/famille.svp");
    EXPECT_TRUE(fs.existe(f.Gabarit()));
    EXPECT_EQ(f.NombreFeuilles(), 4);
    std::vector<std::pair<int, int>> vues{{f.Ligne(), f.Colonne()}};
    while (f.Suivante()) vues.emplace_back(f.Ligne(), f.Colonne());
    EXPECT_EQ(vues, (std::vector<std::pair<int, int>>{{1, 1}, {1, 2}, {2, 1}, {2, 2}}));
    EXPECT_TRUE(f.Precedente());
    EXPECT_EQ(f.Rang(), 3);
    // A new drawing starts again from the first sheet.
    f.feuillesH = f.feuillesV = 99;
    f.genre = GenreGraphe::Descendants;
    ASSERT_TRUE(f.Dessine(b, p, enfant, MetriqueDejaVu::Instance()));
    EXPECT_EQ(f.Rang(), 1);
    EXPECT_EQ(f.NombreFeuilles(), 1);
    EXPECT_FALSE(f.Precedente());
    EXPECT_FALSE(f.Suivante());
}

TEST_F(Graphique, TheBoxesAndTheTemplateGo) {
    std::string gabarit;
    {
        FrmGraphique f(fs);
        f.couleur = true;
        ASSERT_TRUE(f.Dessine(b, p, enfant, MetriqueDejaVu::Instance()));
        gabarit = f.Gabarit();
        const OptionsPages o = f.Options(b, p, "Feuille");
        EXPECT_TRUE(o.couleur);
        EXPECT_EQ(o.sexe(enfant), 'H');
        EXPECT_EQ(o.texte(enfant, {}).rfind("Martin#Jean#", 0), 0u) << o.texte(enfant, {});
    }
    EXPECT_FALSE(fs.existe(gabarit));
}

TEST_F(Graphique, ZoomWithinItsSteps) {
    FrmGraphique f(fs);
    const double depart = f.Zoom();
    int n = 0;
    while (f.Agrandir()) ++n;
    EXPECT_GT(n, 2);
    EXPECT_GE(f.Zoom(), 1.0);
    while (f.Reduire()) ++n;
    EXPECT_LE(f.Zoom(), 0.2);
    EXPECT_LT(f.Zoom(), depart);
}
