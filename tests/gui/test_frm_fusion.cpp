// The merge window on screen: a level clicked fills the grid, a row clicked
// fills the two records, the merge button opens the wizard's first panel,
// Enter goes on to the next, and Escape goes back to the table without
// writing anything.
#include "app/fenetre_principale.h"
#include "app/frm_fusion.h"
#include "app/frm_misajour.h"
#include "app/texte_qt.h"
#include "fenetre_test.h"
#include "store/liens.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QMessageBox>
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
        // One marriage rubric with a date; the two marriages differ in it,
        // in their place and in their notes.
        auto& slots = b.TeteModifiable().rubriquesMariage;
        slots[0] = b.Tete().rubriquesPersonne[0];
        slots[0].drapeau = '1';
        for (int i = 0; i < 2; ++i) {
            const auto h = b.CreePersonne("Martin", "Jean", "", 'H', i ? "" : "1850");
            const auto f = b.CreePersonne("Durand", "Marie", "Louise", 'F', "1852");
            const auto m = b.CreeMariage(h, f, "1875");
            std::array<ValeurRubrique, 10> v{};
            v[0] = {"", i ? "" : "1880", i ? "Laboureur" : "Cultivateur"};
            b.EcritNoteMariage(m, std::string(i ? " @Lyon" : " @Paris") + LignesRubriques(slots, v) +
                                      "\r\n\r\n" + (i ? "Note deux" : "Note un"));
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

// A marriage left unmerged shows nothing to compare: its choice stays right
// under the spouse's name instead of sinking to the foot of the panel.
TEST_F(FenetreFusion, UnmergedMarriageKeepsItsChoiceUnderItsLabel) {
    FrmFusionQt w(fenetre->contexte());
    w.resize(1100, 600);
    w.show();
    w.findChild<QRadioButton*>(QStringLiteral("OptSeuil0"))->click();
    w.grille()->setCurrentCell(0, 0);
    w.fusion()->click();
    w.suite()->click();
    ASSERT_EQ(w.logique().etape(), FrmFusion::Etape::MARIAGE);
    auto* conjoint = w.findChild<QComboBox*>(QStringLiteral("LstConjoint"));
    ASSERT_NE(conjoint, nullptr);
    const int sans = conjoint->findText(M(kFusionSansFusion));
    ASSERT_GE(sans, 0);
    conjoint->setCurrentIndex(sans);
    Q_EMIT conjoint->activated(sans);
    QApplication::processEvents();
    EXPECT_FALSE(w.findChild<QWidget*>(QStringLiteral("VScroll2"))->isVisible());
    const QLabel* libelle = qobject_cast<QLabel*>(conjoint->parentWidget()->findChildren<QLabel*>().first());
    ASSERT_NE(libelle, nullptr);
    EXPECT_LT(conjoint->y() - libelle->y(), 3 * libelle->sizeHint().height());
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

// The marriage panel on screen: the rubric and the notes that differ are
// offered below the spouse, and what is chosen there is what the kept
// marriage holds after the merge.
TEST_F(FenetreFusion, MarriagePanelChoicesReachTheBase) {
    FrmFusionQt w(fenetre->contexte());
    w.resize(1100, 600);
    w.show();
    w.findChild<QRadioButton*>(QStringLiteral("OptSeuil0"))->click();
    ASSERT_EQ(w.grille()->rowCount(), 2);
    w.grille()->setCurrentCell(0, 0);
    ASSERT_TRUE(w.findChild<QLabel*>(QStringLiteral("LblFiche0"))->text().contains(QStringLiteral("Jean")));
    const std::uint32_t k = w.logique().Fiche(0);
    w.fusion()->click();
    w.suite()->click();
    ASSERT_EQ(w.logique().etape(), FrmFusion::Etape::MARIAGE);
    QApplication::processEvents();
    auto* rubriques = w.findChild<QWidget*>(QStringLiteral("PnlMotMariage"));
    ASSERT_NE(rubriques, nullptr);
    EXPECT_TRUE(rubriques->isVisible());
    const auto listes = rubriques->findChildren<QComboBox*>();
    ASSERT_EQ(listes.size(), 2); // its date, its value
    ASSERT_EQ(listes[1]->count(), 2);
    listes[1]->setCurrentIndex(1);
    auto* lieu = w.findChild<QComboBox*>(QStringLiteral("LstLMar"));
    ASSERT_NE(lieu, nullptr);
    EXPECT_EQ(lieu->currentText(), QStringLiteral("Lyon")); // the kept one's
    auto* notes = w.findChild<QGroupBox*>(QStringLiteral("OptTxtMar"));
    ASSERT_NE(notes, nullptr);
    EXPECT_TRUE(notes->isVisible());
    notes->findChildren<QRadioButton*>()[1]->click();

    // Yes (the default button) to the merge, from a timer: the box is modal.
    QTimer oui;
    QObject::connect(&oui, &QTimer::timeout, [] {
        if (auto* m = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
            m->defaultButton()->click();
    });
    oui.start(10);
    w.suite()->click();
    oui.stop();
    ASSERT_EQ(w.logique().etape(), FrmFusion::Etape::Liste);
    Base& b = *fenetre->logique().base();
    const std::uint32_t m = b.Mariages(k).at(0);
    // The value of the second, the year the kept one lacked, its own place.
    EXPECT_EQ(b.RubriquesMariage(m).at(0).valeur, "Cultivateur");
    EXPECT_EQ(b.RubriquesMariage(m).at(0).annee, "1880");
    EXPECT_EQ(b.LieuMariage(m), "Lyon");
    EXPECT_EQ(b.CorpsNoteMariage(m).substr(0, 7), "Note un");
}

} // namespace
