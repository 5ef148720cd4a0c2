// The event windows as a person uses them: a baptism typed from the sheet's
// person with its godparents, found again in the list of events; one form
// per event, brought forward when opened again; a pending form asks before
// it closes.
#include "app/frm_evenement.h"
#include "app/frm_impression.h"
#include "app/texte_qt.h"
#include "fenetre_test.h"
#include "text/messages.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

struct EvenementTest : test::FenetreTest {
    test::Famille famille;
    std::string chemin;
    void SetUp() override {
        chemin = dossier / "famille.sv2";
        famille = test::EcritFamille(chemin);
        OuvreFenetre(chemin, famille.fils);
    }
    // The event forms open, in the order of the area.
    std::vector<FrmDesEvtQt*> Formes() {
        std::vector<FrmDesEvtQt*> v;
        for (QMdiSubWindow* sw : fenetre->findChild<QMdiArea*>()->subWindowList())
            if (auto* f = qobject_cast<FrmDesEvtQt*>(sw->widget()); f && !sw->isHidden()) v.push_back(f);
        return v;
    }
    // Answers the next box with its default button once it shows.
    static void RepondDefaut() {
        auto* t = new QTimer(qApp);
        QObject::connect(t, &QTimer::timeout, [t] {
            if (auto* m = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                (m->defaultButton() ? m->defaultButton() : m->escapeButton())->click();
                t->deleteLater();
                t->stop();
            }
        });
        t->start(20);
    }
};

} // namespace

TEST_F(EvenementTest, ABaptismWithItsGodparentsIsFoundInTheList) {
    Base& b = *fenetre->logique().base();
    const std::uint32_t parrain = b.CreePersonne("Leroy", "Marc", "", 'H', "1880");
    const std::uint32_t marraine = b.CreePersonne("Leroy", "Anne", "", 'F', "1882");
    ASSERT_TRUE(OuvreEvenement(fenetre->logique(), 0, famille.fils));
    QApplication::processEvents();
    ASSERT_EQ(Formes().size(), 1u);
    FrmDesEvtQt* f = Formes()[0];
    f->type()->setCurrentText(Q(Message(782)));
    QTest::keyClicks(f->date(), "12/3/1905");
    QTest::keyClicks(f->lieu(), "Caen");
    QTest::mouseClick(f->cmdMaj(), Qt::LeftButton);
    const std::uint32_t e = f->logique().Numero();
    ASSERT_NE(e, 0u);
    EXPECT_EQ(f->logique().Personnes().size(), 3u); // the child and both parents
    f->role()->setCurrentText(Q(Message(912)));
    f->logique().AjoutePersonne(parrain);
    f->role()->setCurrentText(Q(Message(913)));
    f->logique().RecoitPersonne(marraine);
    EXPECT_EQ(f->personnes()->model()->rowCount(), 5);
    EXPECT_EQ(RoleDansEvenement(b, marraine, e), "GODM");

    // Opening the same event again brings the form forward.
    ASSERT_TRUE(OuvreEvenement(fenetre->logique(), e));
    QApplication::processEvents();
    EXPECT_EQ(Formes().size(), 1u);
    // Another one has a form of its own.
    const std::uint32_t naissance = Creer_Evenement(b, famille.fils, "BIRT", 0, "");
    ASSERT_TRUE(OuvreEvenement(fenetre->logique(), naissance));
    QApplication::processEvents();
    EXPECT_EQ(Formes().size(), 2u);

    // The list shows both, the baptism in its year.
    ASSERT_TRUE(fenetre->logique().Execute(Commande::MnuEvenements));
    QApplication::processEvents();
    auto* l = qobject_cast<FrmLstEvtQt*>(fenetre->Formulaire("FrmLstEvt"));
    ASSERT_NE(l, nullptr);
    EXPECT_EQ(l->grille()->model()->rowCount(), 2);
    QTest::keyClicks(l->position(), "1905");
    QTest::keyClick(l->position(), Qt::Key_Return);
    const QModelIndexList choisies = l->grille()->selectionModel()->selectedRows();
    ASSERT_EQ(choisies.size(), 1);
    EXPECT_EQ(l->grille()->model()->index(choisies[0].row(), 4).data().toString(),
              QString::number(e));
    EXPECT_EQ(l->grille()->model()->index(choisies[0].row(), 2).data().toString(), QStringLiteral("Caen"));

    // Its print button lays the list out in the preview: one page for two rows.
    auto* imprimer = l->findChild<QPushButton*>(QStringLiteral("CmdImprimer"));
    ASSERT_NE(imprimer, nullptr);
    EXPECT_EQ(imprimer->text(), M(msg_evt::Imprimer));
    imprimer->click();
    QApplication::processEvents();
    auto* apercu = qobject_cast<FrmPrevisualisationQt*>(fenetre->Formulaire("FrmPrevisualisation"));
    ASSERT_NE(apercu, nullptr);
    EXPECT_EQ(apercu->logique().NombrePages(), 1);
}

TEST_F(EvenementTest, APendingFormAsksBeforeItCloses) {
    Base& b = *fenetre->logique().base();
    const std::uint32_t e = Creer_Evenement(b, famille.fils, "BIRT", 0, "");
    ASSERT_TRUE(OuvreEvenement(fenetre->logique(), e));
    QApplication::processEvents();
    ASSERT_EQ(Formes().size(), 1u);
    FrmDesEvtQt* f = Formes()[0];
    QTest::keyClicks(f->lieu(), "Bayeux");
    EXPECT_TRUE(f->logique().Pendant());
    RepondDefaut(); // Yes: the change is written
    fenetre->findChild<QMdiArea*>()->activeSubWindow()->close();
    QApplication::processEvents();
    EXPECT_EQ(b.LieuEvt(e), "Bayeux");
    EXPECT_TRUE(Formes().empty());
}
