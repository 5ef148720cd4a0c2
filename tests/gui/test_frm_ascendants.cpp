// The ascendant and descendant lists as the user drives them: opened from
// the menu on the person in course, the orders and generations, a double
// click and Enter on a row, a row dragged out, a person dropped on the tab,
// and the hand-off from one list to the other. With SYLVANE_CAPTURE set to
// a folder and SYLVANE_CAPTURE_BASE to a base, also writes the picture of
// the ascendant list there.
#include "app/fenetre_principale.h"
#include "fenetre_test.h"
#include "app/frm_listes.h"
#include "store/base.h"
#include "store/fichier.h"
#include "text/reglages.h"
#include "ui/application.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdlib>

using namespace sylvane;

namespace {

struct FrmListesTest : test::FenetreTest {
    std::uint32_t gp = 0, gm = 0, pere = 0, mere = 0, moi = 0, fils = 0;

    void SetUp() override {
        const std::string chemin = dossier / "famille.sv2";
        const test::Famille f = test::EcritFamille(chemin, false);
        gp = f.gp, gm = f.gm, pere = f.pere, mere = f.mere, moi = f.moi, fils = f.fils;
        OuvreFenetre(chemin, moi);
    }
    // Opens the list from its menu entry and lets it build.
    FrmListeQt* Ouvre(Commande c, const char* nom) {
        EXPECT_TRUE(fenetre->logique().Execute(c));
        QApplication::processEvents();
        return qobject_cast<FrmListeQt*>(fenetre->Formulaire(nom));
    }
    static std::vector<std::uint32_t> Personnes(FrmListeQt* f) {
        std::vector<std::uint32_t> r;
        for (int i = 0; i < f->modele()->rowCount(); ++i)
            r.push_back(f->modele()->index(i, 0).data().toUInt());
        return r;
    }
    static QRect Ligne(FrmListeQt* f, int i) {
        return f->grille()->visualRect(f->modele()->index(i, 1));
    }
};

using V = std::vector<std::uint32_t>;

} // namespace

TEST_F(FrmListesTest, AscendantsFromTheMenuThenOrdersGenerationsAndRows) {
    FrmListeQt* f = Ouvre(Commande::MnuAscendants, "FrmAscendants");
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(Personnes(f), (V{moi, pere, gp, gm, mere}));
    // The person number column is hidden; the others have a header.
    EXPECT_TRUE(f->grille()->isColumnHidden(0));
    for (int c = 1; c < 7; ++c)
        EXPECT_FALSE(f->modele()->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString().isEmpty())
            << c;
    EXPECT_EQ(f->modele()->index(2, 2).data().toString(), "4");
    EXPECT_EQ(f->modele()->index(2, 5).data().toString(), "Louis Martin");
    EXPECT_TRUE(f->windowTitle().contains("Pierre Martin"));
    EXPECT_TRUE(f->nombre()->text().contains("5"));
    // The progress panel is gone after the run.
    EXPECT_FALSE(fenetre->logique().services().panneau.Visible());

    // By generation; then two generations only.
    QTest::mouseClick(f->presentation(1), Qt::LeftButton);
    EXPECT_EQ(Personnes(f), (V{moi, pere, mere, gp, gm}));
    f->niveaux()->setValue(2);
    EXPECT_EQ(Personnes(f), (V{moi, pere, mere}));

    // A double click on the mother's row, then Enter on the father's,
    // move the person in course; the list keeps its person.
    f->grille()->setFocus();
    QTest::mouseClick(f->grille()->viewport(), Qt::LeftButton, {}, Ligne(f, 2).center());
    QTest::mouseDClick(f->grille()->viewport(), Qt::LeftButton, {}, Ligne(f, 2).center());
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), mere);
    f->grille()->setCurrentIndex(f->modele()->index(1, 1));
    QTest::keyClick(f->grille(), Qt::Key_Return);
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), pere);
    EXPECT_EQ(f->logique().Depart(), moi);

    // A row goes out as the tag of its person.
    std::unique_ptr<QMimeData> m(f->modele()->mimeData({f->modele()->index(1, 3)}));
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->text(), "I" + QString::number(pere));
    EXPECT_TRUE(f->modele()->flags(f->modele()->index(1, 3)) & Qt::ItemIsDragEnabled);

    // A person dropped on the form's tab: the list starts from it.
    f->RecoitGlisser('I', pere);
    EXPECT_EQ(Personnes(f), (V{pere, gp, gm}));
    EXPECT_TRUE(f->windowTitle().contains("Jean Martin"));
}

TEST_F(FrmListesTest, DescendantsOpenOnTheRowPickedInTheAscendantList) {
    FrmListeQt* asc = Ouvre(Commande::MnuAscendants, "FrmAscendants");
    ASSERT_NE(asc, nullptr);
    asc->grille()->setCurrentIndex(asc->modele()->index(2, 1)); // the grandfather
    ASSERT_TRUE(asc->cmdDescendants()->isEnabled());
    QTest::mouseClick(asc->cmdDescendants(), Qt::LeftButton);
    QApplication::processEvents();
    auto* desc = qobject_cast<FrmListeQt*>(fenetre->Formulaire("FrmDescendants"));
    ASSERT_NE(desc, nullptr);
    EXPECT_EQ(desc->logique().Depart(), gp);
    EXPECT_EQ(Personnes(desc), (V{gp, pere, moi, fils}));
    EXPECT_EQ(desc->modele()->index(3, 3).data().toString(), " 1-1-1");
    EXPECT_EQ(desc->modele()->index(3, 2).data().toString(), QString::number(fils));
    // And back: the ascendants of the grandson.
    desc->grille()->setCurrentIndex(desc->modele()->index(3, 1));
    QTest::mouseClick(desc->cmdAscendants(), Qt::LeftButton);
    EXPECT_EQ(asc->logique().Depart(), fils);
    EXPECT_EQ(Personnes(asc).front(), fils);
}

TEST_F(FrmListesTest, CaptureOfTheSampleFamily) {
    const char* dossierCapture = std::getenv("SYLVANE_CAPTURE");
    const char* base = std::getenv("SYLVANE_CAPTURE_BASE");
    if (!dossierCapture || !base) GTEST_SKIP() << "SYLVANE_CAPTURE and SYLVANE_CAPTURE_BASE not set";
    MDIForm1& L = fenetre->logique();
    ASSERT_TRUE(L.OuvreFichier(base));
    if (const char* n = std::getenv("SYLVANE_CAPTURE_PERSONNE")) L.Aller(std::strtoul(n, nullptr, 10));
    FrmListeQt* f = Ouvre(Commande::MnuAscendants, "FrmAscendants");
    ASSERT_NE(f, nullptr);
    QWidget* sw = f->parentWidget();
    sw->resize(900, 520);
    QApplication::processEvents();
    sw->grab().save(QString::fromLocal8Bit(dossierCapture) + "/ascendants.png");
}
