// The relationship windows as the user drives them: the selection opened
// from the menu, a person dropped on it, the common ascendance opening a
// graph drawn with its boxes and its pop-up, the cousinage rows opening
// another graph, a search that finds nothing, and the branch outlines read
// from the base only as their nodes open. With SYLVANE_CAPTURE set to a
// folder and SYLVANE_CAPTURE_BASE to a base (persons 9 and 21 of the
// sample family), also writes the pictures of the graph and of a branch.
#include "app/frm_impression.h"
#include "app/frm_parente.h"
#include "app/texte_qt.h"
#include "fenetre_test.h"
#include "text/messages.h"

#include <QApplication>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

using namespace sylvane;

namespace {

struct ParenteTest : test::FenetreTest {
    test::Famille fam;

    void SetUp() override {
        const std::string chemin = dossier / "famille.sv2";
        fam = test::EcritFamille(chemin);
        OuvreFenetre(chemin, fam.fils);
    }
    template <class F> std::vector<F*> Formes() {
        std::vector<F*> v;
        for (QMdiSubWindow* sw : fenetre->findChild<QMdiArea*>()->subWindowList())
            if (auto* f = qobject_cast<F*>(sw->widget()); f && !sw->isHidden()) v.push_back(f);
        return v;
    }
    // Answers the next box with OK once it shows, and keeps its text.
    void RepondBoite() {
        auto texte = std::make_shared<QString>();
        auto* t = new QTimer(qApp);
        QObject::connect(t, &QTimer::timeout, [t, texte] {
            if (auto* m = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                *texte = m->text();
                (m->defaultButton() ? m->defaultButton() : m->escapeButton())->click();
                t->deleteLater();
                t->stop();
            }
        });
        t->start(20);
        texte_ = texte;
    }
    std::shared_ptr<QString> texte_;
    static QTreeWidgetItem* Enfant(QTreeWidgetItem* i, const QString& debut) {
        for (int k = 0; k < i->childCount(); ++k)
            if (i->child(k)->text(0).startsWith(debut)) return i->child(k);
        return nullptr;
    }
};

} // namespace

TEST_F(ParenteTest, CommonAncestryOpensAGraphWithItsBoxesAndPopup) {
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuParente));
    auto rech = Formes<FrmRechAscendantQt>();
    ASSERT_EQ(rech.size(), 1u);
    FrmRechAscendantQt* r = rech[0];
    ASSERT_EQ(r->grille()->rowCount(), 1) << "the person in course";
    r->RecoitGlisser('I', fam.fille);
    ASSERT_EQ(r->grille()->rowCount(), 2);
    EXPECT_EQ(r->grille()->item(0, 0)->text(), "Claire Martin");

    QTest::mouseClick(r->cmdAscCom(), Qt::LeftButton);
    QApplication::processEvents();
    auto graphes = Formes<FrmParenteVisuQt>();
    ASSERT_EQ(graphes.size(), 1u);
    FrmParenteVisuQt* v = graphes[0];
    ASSERT_NE(v->logique()->Graphe(), nullptr);
    GrapheParente& g = *v->logique()->Graphe();
    // The two children and their parents, the parents one level up.
    EXPECT_EQ(g.NbNoeuds(), 4u);
    EXPECT_LT(g.Niveau(g.NoeudDe(fam.moi)), g.Niveau(g.NoeudDe(fam.fils)));
    EXPECT_FALSE(v->refus()->isVisible());
    EXPECT_FALSE(fenetre->logique().services().panneau.Visible());
    // Every box drawn, none over another, the parents above the children.
    ToileParente* t = v->toile();
    for (std::size_t i = 1; i <= g.NbNoeuds(); ++i) {
        ASSERT_FALSE(t->Boite(i).isEmpty());
        EXPECT_TRUE(t->rect().contains(t->Boite(i)));
        for (std::size_t k = i + 1; k <= g.NbNoeuds(); ++k)
            EXPECT_FALSE(t->Boite(i).intersects(t->Boite(k))) << i << " " << k;
    }
    EXPECT_LT(t->Boite(g.NoeudDe(fam.moi)).bottom(), t->Boite(g.NoeudDe(fam.fils)).top());
    EXPECT_EQ(t->NoeudA(t->Boite(g.NoeudDe(fam.fille)).center()), g.NoeudDe(fam.fille));
    // Zoom grows the boxes.
    const int large = t->Boite(1).width();
    t->zoom = 2;
    t->Ajuste();
    EXPECT_GT(t->Boite(1).width(), large);

    // The pop-up of Pierre: his father Jean is offered; picking him adds
    // him to the graph; removing him takes him out again.
    QMenu* m = v->Menu(g.NoeudDe(fam.moi));
    ASSERT_NE(m, nullptr);
    QAction* jean = nullptr;
    for (QAction* a : m->actions())
        if (a->text() == "Jean Martin") jean = a;
    ASSERT_NE(jean, nullptr);
    jean->trigger();
    ASSERT_NE(g.NoeudDe(fam.pere), 0u);
    EXPECT_EQ(g.NbNoeuds(), 5u);
    bool dansGraphe = false;
    for (QAction* a : v->Menu(g.NoeudDe(fam.moi))->actions())
        if (a->text() == "* Jean Martin") dansGraphe = true;
    EXPECT_TRUE(dansGraphe) << "a person of the graph is marked";
    m = v->Menu(g.NoeudDe(fam.pere));
    for (QAction* a : m->actions())
        if (a->text() == MT(4524)) a->trigger();
    EXPECT_EQ(g.NoeudDe(fam.pere), 0u);

    // The name heading the pop-up browses to the person.
    v->Menu(g.NoeudDe(fam.moi))->actions().at(0)->trigger();
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), fam.moi);

    // The PDF of the graph.
    const std::string pdf = dossier / "graphe.pdf";
    EXPECT_TRUE(v->SauvePdf(pdf));
    EXPECT_TRUE(systemeReel().existe(pdf));

    // A second search opens a second graph beside the first.
    QTest::mouseClick(r->cmdAscCom(), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(Formes<FrmParenteVisuQt>().size(), 2u);
}

TEST_F(ParenteTest, CousinagesThenNothingFound) {
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuParente));
    FrmRechAscendantQt* r = Formes<FrmRechAscendantQt>().at(0);
    r->RecoitGlisser('I', fam.fille);
    QTest::mouseClick(r->cmdMultiple(), Qt::LeftButton);
    QApplication::processEvents();
    auto asc = Formes<FrmParenteAscQt>();
    ASSERT_EQ(asc.size(), 1u);
    ASSERT_EQ(asc[0]->grille()->rowCount(), 1) << "the children meet at their parents";
    EXPECT_TRUE(asc[0]->grille()->item(0, 0)->text().contains("Pierre Martin"));
    QTest::mouseClick(asc[0]->cmdAfficher(), Qt::LeftButton);
    QApplication::processEvents();
    auto graphes = Formes<FrmParenteVisuQt>();
    ASSERT_EQ(graphes.size(), 1u);
    EXPECT_GE(graphes[0]->logique()->Graphe()->NbNoeuds(), 4u);

    // Anne Blanc and Louis Martin have no common ascendant: message 695,
    // and no graph.
    r->logique().CmdEcarter(0);
    r->logique().CmdEcarter(0);
    r->RecoitGlisser('I', fam.conj);
    r->RecoitGlisser('I', fam.gp);
    RepondBoite();
    QTest::mouseClick(r->cmdAscCom(), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_EQ(*texte_, MT(695));
    EXPECT_EQ(Formes<FrmParenteVisuQt>().size(), 1u);
}

TEST_F(ParenteTest, BranchNodesLoadWhenTheyOpen) {
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuArbAsc));
    auto asc = Formes<FrmBrancheQt>();
    ASSERT_EQ(asc.size(), 1u);
    FrmBrancheQt* b = asc[0];
    EXPECT_TRUE(b->windowTitle().contains("Paul Martin"));
    QTreeWidgetItem* racine = b->arbre()->topLevelItem(0);
    ASSERT_NE(racine, nullptr);
    // Closed: a placeholder only, nothing read yet.
    ASSERT_EQ(racine->childCount(), 1);
    EXPECT_EQ(racine->child(0)->text(0), "(....)");
    EXPECT_EQ(b->logique().Outline()->NbNoeuds(), 1u);
    racine->setExpanded(true);
    ASSERT_EQ(racine->childCount(), 2);
    EXPECT_EQ(b->logique().Outline()->NbNoeuds(), 3u);
    QTreeWidgetItem* pierre = Enfant(racine, "Pierre Martin");
    ASSERT_NE(pierre, nullptr);
    EXPECT_EQ(Enfant(racine, "Anne Blanc")->childCount(), 0) << "no parents: nothing to open";
    // Opening twice loads once.
    pierre->setExpanded(true);
    pierre->setExpanded(false);
    pierre->setExpanded(true);
    EXPECT_EQ(pierre->childCount(), 2);
    EXPECT_EQ(b->logique().Outline()->NbNoeuds(), 5u);
    // Pruned: the branch goes from the outline and from the output.
    b->arbre()->setCurrentItem(pierre);
    for (QPushButton* p : b->findChildren<QPushButton*>())
        if (p->text() == M(4508)) p->click();
    // The outline is drawn again: its items are new.
    racine = b->arbre()->topLevelItem(0);
    ASSERT_NE(racine, nullptr);
    EXPECT_EQ(racine->childCount(), 1);
    EXPECT_EQ(b->logique().Outline()->Lignes().size(), 2u);

    // The descendance of Louis: the marriage, then Jean under it.
    fenetre->logique().Aller(fam.gp);
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuArbDesc));
    FrmBrancheQt* d = nullptr;
    for (FrmBrancheQt* f : Formes<FrmBrancheQt>())
        if (f != b) d = f;
    ASSERT_NE(d, nullptr);
    QTreeWidgetItem* louis = d->arbre()->topLevelItem(0);
    louis->setExpanded(true);
    ASSERT_EQ(louis->childCount(), 1);
    QTreeWidgetItem* mariage = louis->child(0);
    EXPECT_TRUE(mariage->text(0).contains("Rose Petit"));
    mariage->setExpanded(true);
    ASSERT_GE(mariage->childCount(), 1);
    EXPECT_TRUE(mariage->child(0)->text(0).startsWith("Jean Martin"));
}

// What goes out of these windows: the pages of "Spécial cousinages" in
// the work folder, the graph as a BMP picture, the branch to the preview.
TEST_F(ParenteTest, PagesPictureAndPreview) {
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuParente));
    FrmRechAscendantQt* r = Formes<FrmRechAscendantQt>().at(0);
    r->RecoitGlisser('I', fam.fille);
    ASSERT_TRUE(r->cmdSpecial()->isEnabled());
    RepondBoite();
    QTest::mouseClick(r->cmdSpecial(), Qt::LeftButton);
    QApplication::processEvents();
    EXPECT_TRUE(texte_->startsWith(MT(4538).left(10))) << texte_->toStdString();
    const std::filesystem::path travail = dossier.chemin();
    EXPECT_TRUE(std::filesystem::exists(travail / "Paul.Martin.htm"));
    EXPECT_TRUE(std::filesystem::exists(travail / "Claire.Martin.htm"));

    QTest::mouseClick(r->cmdAscCom(), Qt::LeftButton);
    QApplication::processEvents();
    FrmParenteVisuQt* v = Formes<FrmParenteVisuQt>().at(0);
    const std::string bmp = dossier / "graphe.bmp";
    ASSERT_TRUE(v->SauveImage(bmp));
    std::ifstream in(bmp, std::ios::binary);
    char tete[2] = {};
    in.read(tete, 2);
    EXPECT_EQ(std::string(tete, 2), "BM");

    fenetre->logique().Aller(fam.fils);
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuArbAsc));
    FrmBrancheQt* b = Formes<FrmBrancheQt>().at(0);
    b->logique().Developpe(0, 3);
    ReglagesCourants().apercu = true;
    QTest::mouseClick(b->cmdImprimer(), Qt::LeftButton);
    QApplication::processEvents();
    auto apercus = Formes<FrmPrevisualisationQt>();
    ASSERT_EQ(apercus.size(), 1u);
    EXPECT_TRUE(apercus[0]->windowTitle().contains("Paul Martin"));
}

// The pictures of the documentation, on a base given from outside.
TEST_F(ParenteTest, Capture) {
    const char* dossierCapture = std::getenv("SYLVANE_CAPTURE");
    const char* base = std::getenv("SYLVANE_CAPTURE_BASE");
    if (!dossierCapture || !base) GTEST_SKIP() << "SYLVANE_CAPTURE and SYLVANE_CAPTURE_BASE unset";
    fenetre->logique().Termine();
    fenetre.reset();
    OuvreFenetre(base, 9);
    fenetre->resize(1300, 860);
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuParente));
    FrmRechAscendantQt* r = Formes<FrmRechAscendantQt>().at(0);
    r->RecoitGlisser('I', 21);
    r->grab().save(QString::fromLocal8Bit(dossierCapture) + "/selection.png");
    RepondBoite();
    QTest::mouseClick(r->cmdSpecial(), Qt::LeftButton);
    QApplication::processEvents();
    QTest::mouseClick(r->cmdMultiple(), Qt::LeftButton);
    QApplication::processEvents();
    if (auto asc = Formes<FrmParenteAscQt>(); !asc.empty()) {
        asc[0]->grab().save(QString::fromLocal8Bit(dossierCapture) + "/cousinages.png");
        asc[0]->parentWidget()->close();
    }
    QTest::mouseClick(r->cmdAscCom(), Qt::LeftButton);
    QApplication::processEvents();
    auto graphes = Formes<FrmParenteVisuQt>();
    ASSERT_EQ(graphes.size(), 1u);
    auto* sw = qobject_cast<QMdiSubWindow*>(graphes[0]->parentWidget());
    sw->showMaximized();
    QTest::qWait(200);
    fenetre->grab().save(QString::fromLocal8Bit(dossierCapture) + "/parente.png");
    sw->close();
    fenetre->logique().Aller(9);
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuArbAsc));
    FrmBrancheQt* b = Formes<FrmBrancheQt>().at(0);
    b->logique().Developpe(0, 4);
    for (QPushButton* p : b->findChildren<QPushButton*>())
        if (p->text() == M(4516)) p->click();
    qobject_cast<QMdiSubWindow*>(b->parentWidget())->showMaximized();
    QTest::qWait(200);
    fenetre->grab().save(QString::fromLocal8Bit(dossierCapture) + "/branche.png");
    // The branch as printed, in the preview.
    ReglagesCourants().apercu = true;
    QTest::mouseClick(b->cmdImprimer(), Qt::LeftButton);
    QApplication::processEvents();
    if (auto apercus = Formes<FrmPrevisualisationQt>(); !apercus.empty()) {
        qobject_cast<QMdiSubWindow*>(apercus[0]->parentWidget())->showMaximized();
        QTest::qWait(200);
        fenetre->grab().save(QString::fromLocal8Bit(dossierCapture) + "/branche_apercu.png");
    }
}
