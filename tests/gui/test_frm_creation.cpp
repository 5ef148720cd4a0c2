// The creation form and the pickers on screen: a person typed in and made,
// a refusal that keeps the form open, a candidate found by its name and
// chosen with the keyboard, and both reached from the main window through
// the sheet's entry point.
#include "app/choix_fiche_qt.h"
#include "app/frm_choix.h"
#include "app/frm_creation.h"
#include "fenetre_test.h"
#include "support/francais.h"
#include "support/services_faux.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <cstdlib>

using namespace sylvane;
using namespace sylvane::test;

namespace {

struct BaseEcran {
    DossierTemp dossier;
    Parametres p;
    std::unique_ptr<Base> b;
    BaseEcran() {
        b = std::make_unique<Base>(systemeReel(), p);
        b->Nouvelle(dossier.chemin() + "/b.sv2");
    }
};

// Runs `f` on the modal dialog once it is up; a dialog left open is
// closed after a while, so that a failure never hangs the tests.
template <class F>
void SurLeModal(F f) {
    auto* essais = new int(0);
    auto* t = new QTimer;
    t->setInterval(20);
    QObject::connect(t, &QTimer::timeout, [t, essais, f] {
        QWidget* w = QApplication::activeModalWidget();
        if (!w && ++*essais < 100) return;
        t->stop();
        t->deleteLater();
        delete essais;
        ASSERT_TRUE(w) << "no modal dialog";
        f(w);
        if (QWidget* reste = QApplication::activeModalWidget(); reste == w)
            QTimer::singleShot(2000, w, [w] {
                ADD_FAILURE() << "dialog left open: " << w->metaObject()->className();
                w->close();
            });
    });
    t->start();
}

// Jean, born on 2/3/1850, the caret in the birth place.
void Remplit(FrmCreationQt& f) {
    QTest::keyClicks(f.Champ(ChampCreation::Prenom), "Jean");
    QTest::keyClicks(f.Champ(ChampCreation::Naiss), "1850");
    QTest::keyClicks(f.Champ(ChampCreation::JNaiss), "2/3");
    f.Champ(ChampCreation::LieuNaiss)->setFocus();
}

} // namespace

TEST(FrmCreationQt, TypedPersonIsMade) {
    BaseEcran e;
    BoitesFausses boites;
    FrmCreationQt f(*e.b, e.p, boites, "MARTIN/Homme");
    f.show();
    f.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&f));
    using C = ChampCreation;
    EXPECT_EQ(f.Champ(C::Nom)->text(), "MARTIN");
    EXPECT_EQ(QApplication::focusWidget(), f.Champ(C::Prenom));
    EXPECT_FALSE(f.findChildren<QRadioButton*>().front()->isEnabled());
    // A rubric without a date shows its value field alone.
    EXPECT_FALSE(f.Champ(C::RubA, 0)->isVisibleTo(&f));
    EXPECT_TRUE(f.Champ(C::RubA, 1)->isVisibleTo(&f));

    Remplit(f);
    QTest::keyClicks(f.Champ(C::LieuNaiss), "Tours");
    QTest::keyClicks(f.Champ(C::RubL, 0), "laboureur");
    QTest::keyClick(f.Champ(C::RubL, 0), Qt::Key_Return);
    EXPECT_EQ(f.result(), QDialog::Accepted);
    EXPECT_TRUE(boites.informations.empty());
    const std::uint32_t n = f.Personne();
    ASSERT_EQ(n, 1u);
    EXPECT_EQ(e.b->LitNom(n), "MARTIN");
    EXPECT_EQ(e.b->LitPrenom(n), "Jean");
    EXPECT_EQ(e.b->LitSexe(n), "H");
    EXPECT_EQ(e.b->LitDateNaiss(n), "2/3");
    EXPECT_EQ(e.b->LieuNaiss(n), "Tours");
    EXPECT_EQ(e.b->RubriquesNote(n)[0].valeur, "laboureur");

    if (const char* d = std::getenv("SYLVANE_CAPTURES")) {
        FrmCreationQt c(*e.b, e.p, boites, "MARTIN/Homme");
        c.show();
        Remplit(c);
        QTest::qWait(200);
        c.grab().save(QString::fromUtf8(d) + "/creation.png");
    }
}

TEST(FrmCreationQt, RefusalKeepsTheFormOpenOnTheName) {
    BaseEcran e;
    BoitesFausses boites;
    FrmCreationQt f(*e.b, e.p, boites, "Femme");
    f.show();
    f.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&f));
    QTest::keyClicks(f.Champ(ChampCreation::Naiss), "1900");
    f.ok()->click();
    EXPECT_EQ(boites.informations, std::vector<int>{621});
    EXPECT_TRUE(f.isVisible());
    EXPECT_EQ(QApplication::focusWidget(), f.Champ(ChampCreation::Nom));
    EXPECT_EQ(e.b->Tete().maxPersonne, 0u);
    QTest::keyClick(&f, Qt::Key_Escape);
    EXPECT_EQ(f.result(), QDialog::Rejected);
    EXPECT_EQ(e.b->Tete().maxPersonne, 0u);
}

TEST(FrmChoixQt, CandidateFoundByNameAndChosenWithTheKeyboard) {
    BaseEcran e;
    Base& b = *e.b;
    const auto moi = b.CreePersonne("Martin", "Jean", "", 'H', "1850");
    b.CreePersonne("Roux", "Marie", "", 'F', "1852");
    const auto anne = b.CreePersonne("Blanc", "Anne", "", 'F', "1855");
    b.CreePersonne("Blanc", "Paul", "", 'H', "1855");
    FrmChoixQt f(&b, Candidats::Conjoints, moi, ' ', "");
    f.show();
    // Only women, never the sheet person.
    int lignes = 0;
    for (int r = 0; r < f.grille()->rowCount(); ++r)
        if (f.grille()->item(r, 0) && !f.grille()->item(r, 0)->text().isEmpty()) ++lignes;
    EXPECT_EQ(lignes, 2);
    QTest::keyClicks(f.recherche(), "blanc");
    QTest::keyClick(f.recherche(), Qt::Key_Return);
    EXPECT_TRUE(f.isVisible()); // Enter in the search field searches
    EXPECT_EQ(f.grille()->item(0, 0)->data(Qt::UserRole).toUInt(), anne);
    EXPECT_TRUE(f.grille()->item(1, 0)->text().isEmpty());
    if (const char* d = std::getenv("SYLVANE_CAPTURES")) {
        QTest::qWait(200);
        f.grab().save(QString::fromUtf8(d) + "/choix.png");
    }
    f.grille()->setFocus();
    QTest::keyClick(f.grille(), Qt::Key_Return);
    EXPECT_EQ(f.result(), QDialog::Accepted);
    EXPECT_EQ(f.Choix(), anne);
}

TEST_F(FenetreTest, TheSheetReachesTheDialogsThroughItsEntryPoint) {
    const std::string chemin = dossier.chemin() + "/famille.sv2";
    const Famille fam = EcritFamille(chemin);
    OuvreFenetre(chemin, fam.moi);
    ChoixFiche& choix = ChoixFicheQt(fenetre->contexte());
    EXPECT_EQ(&choix, &ChoixFicheQt(fenetre->contexte()));

    SurLeModal([](QWidget* w) {
        auto* f = qobject_cast<FrmCreationQt*>(w);
        ASSERT_TRUE(f);
        QTest::keyClicks(f->Champ(ChampCreation::Prenom), "Lucie");
        QTest::keyClicks(f->Champ(ChampCreation::Naiss), "1910");
        f->ok()->click();
    });
    const std::uint32_t n = choix.Cree("MARTIN/Femme");
    ASSERT_NE(n, 0u);
    Base& b = *fenetre->logique().base();
    EXPECT_EQ(b.LitPrenom(n), "Lucie");
    EXPECT_EQ(b.LitSexe(n), "F");

    SurLeModal([](QWidget* w) { QTest::keyClick(w, Qt::Key_Escape); });
    EXPECT_EQ(choix.Cree("Homme"), 0u);

    SurLeModal([fam](QWidget* w) {
        auto* f = qobject_cast<FrmChoixQt*>(w);
        ASSERT_TRUE(f);
        EXPECT_EQ(f->recherche()->text(), "Martin");
        f->grille()->setFocus();
        QTest::keyClick(f->grille(), Qt::Key_Return);
    });
    const std::uint32_t pere = choix.Choisit(Candidats::Pere, fam.fils, 'H', "Martin");
    EXPECT_EQ(b.LitSexe(pere), "H");
    EXPECT_NE(pere, fam.fils);

    SurLeModal([](QWidget* w) {
        QTest::keyClick(w, Qt::Key_Return, Qt::ControlModifier);
    });
    const auto texte = choix.EditeTexte("{\\rtf1{\\b gras}}", "titre");
    ASSERT_TRUE(texte);
    EXPECT_NE(texte->find("\\b"), std::string::npos);
}
