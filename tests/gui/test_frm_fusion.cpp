// The merge window on screen: a level clicked fills the grid, a row clicked
// fills the two records, the merge button opens the wizard's first panel,
// Enter goes on to the next, and Escape goes back to the table without
// writing anything.
#include "app/fenetre_principale.h"
#include "app/frm_fusion.h"
#include "app/frm_misajour.h"
#include "fenetre_test.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace sylvane;

namespace {

struct FenetreFusion : test::FenetreTest {
    std::string base;
    void SetUp() override {
        base = dossier / "doubles.sv2";
        Parametres p;
        Base b(systemeReel(), p);
        b.Nouvelle(base);
        for (int i = 0; i < 2; ++i) {
            const auto h = b.CreePersonne("Martin", "Jean", "", 'H', i ? "" : "1850");
            const auto f = b.CreePersonne("Durand", "Marie", "Louise", 'F', "1852");
            b.CreeMariage(h, f, "1875");
        }
        b.FermeBase();
        OuvreFenetre(base, 1);
    }
};

TEST_F(FenetreFusion, LevelRowAndWizard) {
    FrmFusionQt w(fenetre->contexte());
    w.resize(1100, 600);
    w.show();
    auto* niveau0 = w.findChild<QRadioButton*>(QStringLiteral("OptSeuil0"));
    ASSERT_NE(niveau0, nullptr);
    EXPECT_FALSE(niveau0->text().isEmpty());
    niveau0->click();
    ASSERT_EQ(w.grille()->rowCount(), 2);
    EXPECT_TRUE(w.grille()->item(0, 0)->text().contains(QStringLiteral("Jean")));
    EXPECT_FALSE(w.fusion()->isEnabled());

    w.grille()->setCurrentCell(1, 0);
    EXPECT_TRUE(w.fusion()->isEnabled());
    EXPECT_TRUE(w.findChild<QLabel*>(QStringLiteral("LblFiche0"))->text().contains(QStringLiteral("Marie")));
    w.fusion()->click();
    EXPECT_EQ(w.panneaux()->currentIndex(), 1);
    EXPECT_TRUE(w.panneaux()->isVisible());
    auto* etape = w.findChild<QLabel*>(QStringLiteral("LblEtape"));
    ASSERT_NE(etape, nullptr);
    EXPECT_TRUE(etape->isVisible());
    EXPECT_FALSE(etape->text().isEmpty());
    EXPECT_TRUE(w.suite()->isVisible());
    EXPECT_FALSE(w.grille()->isEnabled());

    // The wizard on screen, kept as the picture of the window.
    if (const char* dossierImages = std::getenv("SYLVANE_CAPTURES"))
        w.grab().save(QString::fromUtf8(dossierImages) + QStringLiteral("/fusion.png"));

    // Enter takes the next step: the wives' marriages to compare.
    QTest::keyClick(&w, Qt::Key_Return);
    EXPECT_EQ(w.logique().etape(), FrmFusion::Etape::MARIAGE);
    EXPECT_EQ(w.panneaux()->currentIndex(), 4);

    QTest::keyClick(&w, Qt::Key_Escape);
    EXPECT_EQ(w.logique().etape(), FrmFusion::Etape::Liste);
    EXPECT_EQ(w.panneaux()->currentIndex(), 0);
    EXPECT_FALSE(w.panneaux()->isVisible()); // the table takes the whole width again
    EXPECT_TRUE(w.grille()->isEnabled());
    EXPECT_FALSE(fenetre->logique().base()->Modifiee());
}

// The sheet's button opens the merge window on the marriage shown, and is
// off on a sheet without one.
TEST_F(FenetreFusion, SheetButtonOpensTheWindowOnItsMarriage) {
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuModif));
    QApplication::processEvents();
    auto* fiche = qobject_cast<FrmMisajourQt*>(fenetre->Formulaire("FrmMisajour"));
    ASSERT_NE(fiche, nullptr);
    auto* doublon = fiche->findChild<QPushButton*>(QStringLiteral("CmdDoublon"));
    ASSERT_NE(doublon, nullptr);
    ASSERT_TRUE(doublon->isEnabled());

    // The window is modal: it is read and closed from a timer.
    std::string plage;
    QTimer attente;
    QObject::connect(&attente, &QTimer::timeout, [&] {
        QWidget* modal = QApplication::activeModalWidget();
        auto* w = modal ? modal->findChild<FrmFusionQt*>() : nullptr;
        if (!w) return;
        attente.stop();
        plage = w->logique().Plage();
        w->findChild<QPushButton*>(QStringLiteral("CmdQuitter"))->click();
    });
    attente.start(20);
    doublon->click();
    const std::string m = std::to_string(fenetre->logique().base()->Mariages(1).at(0));
    EXPECT_EQ(plage, m + "/" + m);
    EXPECT_TRUE(FrmFusion::PlageDemandee().empty());
}

} // namespace
