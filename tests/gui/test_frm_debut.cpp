// The family view as the user drives it: a click on a box, the arrow keys
// and Enter, the right-click menu. With SYLVANE_CAPTURE set to a folder,
// also writes the pictures of the view at levels 2 and 4 of the sample
// family there.
#include "app/fenetre_principale.h"
#include "fenetre_test.h"
#include "app/frm_debut.h"
#include "app/texte_qt.h"
#include "store/base.h"
#include "store/fichier.h"
#include "text/reglages.h"
#include "ui/application.h"

#include <QApplication>
#include <QMenu>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using namespace sylvane;

namespace {

struct FrmDebutTest : test::FenetreTest {
    std::uint32_t gp = 0, gm = 0, pere = 0, mere = 0, moi = 0, conj = 0, fils = 0, fille = 0;

    void SetUp() override {
        const std::string chemin = dossier / "famille.sv2";
        const test::Famille f = test::EcritFamille(chemin);
        gp = f.gp, gm = f.gm, pere = f.pere, mere = f.mere, moi = f.moi, conj = f.conj, fils = f.fils, fille = f.fille;
        OuvreFenetre(chemin, moi);
    }
    FrmDebutQt* Vue() { return qobject_cast<FrmDebutQt*>(fenetre->Formulaire("FrmDebut")); }
    int Index(FrmDebutQt* v, std::uint32_t n) {
        const auto& cases = v->vue().disposition().cases;
        for (std::size_t i = 0; i < cases.size(); ++i)
            if (cases[i].personne == n) return static_cast<int>(i);
        return -1;
    }
    // The middle of box i in the frame's viewport.
    QPoint Milieu(FrmDebutQt* v, int i) {
        const Rect& r = v->vue().disposition().cases[i].r;
        return (QPointF(r.x + r.l / 2, r.milieuY()) - v->cadre()->VersDessin(QPointF(0, 0))).toPoint();
    }
};

} // namespace

TEST_F(FrmDebutTest, OpensWithTheBaseAndAClickMovesTheCurrentPerson) {
    FrmDebutQt* v = Vue();
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v->vue().disposition().cases[v->vue().disposition().centre].personne, moi);
    EXPECT_EQ(v->cadre()->horizontalScrollBar()->objectName(), "DefilementH1");
    const int i = Index(v, pere);
    ASSERT_GE(i, 0);
    v->cadre()->Montre(i, true);
    QTest::mouseClick(v->cadre()->viewport(), Qt::LeftButton, {}, Milieu(v, i));
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), pere);
    EXPECT_EQ(fenetre->logique().personneFiche, pere);
    // The view follows: the father is in the middle now.
    const auto& d = v->vue().disposition();
    EXPECT_EQ(d.cases[d.centre].personne, pere);
    // A click beside every box changes nothing.
    QTest::mouseClick(v->cadre()->viewport(), Qt::LeftButton, {}, QPoint(2, 2));
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), pere);
}

TEST_F(FrmDebutTest, ArrowsMoveBetweenBoxesAndEnterActsAsAClick) {
    FrmDebutQt* v = Vue();
    ASSERT_NE(v, nullptr);
    v->cadre()->setFocus();
    QWidget* c = v->cadre();
    EXPECT_EQ(v->vue().PersonneFocus(), moi);
    QTest::keyClick(c, Qt::Key_Left);
    EXPECT_EQ(v->vue().PersonneFocus(), pere);
    QTest::keyClick(c, Qt::Key_Down);
    EXPECT_EQ(v->vue().PersonneFocus(), mere);
    // Arrows alone do not move the current person.
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), moi);
    QTest::keyClick(c, Qt::Key_Right);
    QTest::keyClick(c, Qt::Key_Right);
    EXPECT_TRUE(v->vue().PersonneFocus() == fils || v->vue().PersonneFocus() == fille);
    const std::uint32_t choisi = v->vue().PersonneFocus();
    QTest::keyClick(c, Qt::Key_Return);
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), choisi);
    EXPECT_EQ(v->vue().PersonneFocus(), choisi);
}

TEST_F(FrmDebutTest, TheRightClickMenuGoesToTheChosenRelative) {
    FrmDebutQt* v = Vue();
    ASSERT_NE(v, nullptr);
    std::unique_ptr<QMenu> m(v->ConstruitMenu(v->vue().disposition().centre));
    QStringList textes;
    QAction* versFille = nullptr;
    for (QAction* a : m->actions()) {
        textes << (a->isSeparator() && a->text().isEmpty() ? QStringLiteral("-") : a->text());
        if (a->data().toULongLong() == fille) versFille = a;
    }
    ASSERT_GE(textes.size(), 10) << textes.join('|').toStdString();
    EXPECT_EQ(textes[1], "-");
    EXPECT_EQ(textes.count(Q(app->base().NomDates(conj))), 1);
    EXPECT_EQ(textes[2], M(23));
    EXPECT_TRUE(textes.contains(M(592))) << textes.join('|').toStdString();
    EXPECT_TRUE(textes.contains(M(579)));
    EXPECT_TRUE(textes.contains(M(666)));
    EXPECT_FALSE(textes.contains(M(910))); // no linked person
    ASSERT_NE(versFille, nullptr);
    versFille->trigger();
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), fille);
    const auto& d = v->vue().disposition();
    EXPECT_EQ(d.cases[d.centre].personne, fille);
}

TEST_F(FrmDebutTest, AShiftThatDoesNotFitIsUndone) {
    FrmDebutQt* v = Vue();
    ASSERT_NE(v, nullptr);
    MDIForm1& L = fenetre->logique();
    L.DefinitNiveau(1);
    L.Aller(gp);
    // Level 1 with room for five boxes: the grandfather, his wife, his son
    // and the son's wife fit; a second generation of descendants does not.
    app->parametres().nombreCases[0] = 5;
    L.Execute(Commande::MnuGauche);
    EXPECT_EQ(L.porteeGauche, 2);
    EXPECT_EQ(L.porteeDroite, 1);
    EXPECT_EQ(v->vue().disposition().etat, ' ');
    // With room enough the shift stays.
    app->parametres().nombreCases[0] = 64;
    L.Execute(Commande::MnuGauche);
    EXPECT_EQ(L.porteeGauche, 0);
    EXPECT_EQ(L.porteeDroite, 2);
    EXPECT_EQ(v->vue().disposition().cases.size(), 6u);
}

TEST_F(FrmDebutTest, CapturesOfTheSampleFamily) {
    const char* dossier = std::getenv("SYLVANE_CAPTURE");
    const char* base = std::getenv("SYLVANE_CAPTURE_BASE");
    if (!dossier || !base) GTEST_SKIP() << "SYLVANE_CAPTURE and SYLVANE_CAPTURE_BASE not set";
    MDIForm1& L = fenetre->logique();
    fenetre->resize(1400, 900);
    ASSERT_TRUE(L.OuvreFichier(base));
    if (const char* n = std::getenv("SYLVANE_CAPTURE_PERSONNE")) L.Aller(std::strtoul(n, nullptr, 10));
    for (int niveau : {1, 2, 3, 4}) {
        L.DefinitNiveau(niveau);
        FrmDebutQt* v = Vue();
        ASSERT_NE(v, nullptr);
        v->cadre()->setFocus();
        QApplication::processEvents();
        const QString f = QString::fromUtf8(dossier) + "/famille-niveau-" + QString::number(niveau) + ".png";
        EXPECT_TRUE(fenetre->grab().save(f));
    }
}
