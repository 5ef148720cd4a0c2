// The real main window under the offscreen platform: a base given on the
// command line opens with its family view, the menus follow the base and
// the language, the tool bar follows its setting, navigation goes through
// the menu actions, and the progress panel stops on its button.
#include "app/fenetre_principale.h"
#include "fenetre_test.h"
#include "app/texte_qt.h"
#include "store/fichier.h"
#include "text/messages.h"
#include "text/reglages.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QToolBar>

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

struct FenetreQt : test::FenetreTest {
    std::string chemin;

    void SetUp() override {
        chemin = dossier / "famille.sv2";
        test::EcritPersonnes(chemin, {{"Martin", "Jean", 'H', "1900"},
                                      {"Dupont", "Anne", 'F', "1902"},
                                      {"Bernard", "Paul", 'H', "1930"}});
        CreeFenetre();
        fenetre->logique().Demarre({chemin});
    }
    QString Libelle(Commande c) { return fenetre->Action(c)->text(); }
};

} // namespace

TEST_F(FenetreQt, TheBaseOfTheCommandLineOpensWithItsMenus) {
    ASSERT_NE(fenetre->logique().base(), nullptr);
    EXPECT_TRUE(fenetre->windowTitle().contains(QStringLiteral("famille.sv2")));
    EXPECT_TRUE(fenetre->Action(Commande::MnuSuivant)->isEnabled());
    EXPECT_TRUE(fenetre->EstOuverte("FrmDebut") || !fenetre->Disponible("FrmDebut"));
    // Walk the sort table through the menu actions.
    fenetre->logique().Aller(1);
    fenetre->Action(Commande::MnuSuivant)->trigger();
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), 2u);
    fenetre->Action(Commande::MnuPrecedent)->trigger();
    EXPECT_EQ(fenetre->logique().PersonneEnCours(), 1u);
    // Closing the base disables what needs one, and the base is remembered.
    fenetre->Action(Commande::MnuFermer)->trigger();
    EXPECT_EQ(fenetre->logique().base(), nullptr);
    EXPECT_FALSE(fenetre->Action(Commande::MnuSuivant)->isEnabled());
    EXPECT_TRUE(fenetre->Action(Commande::MnuOuvrir)->isEnabled());
    EXPECT_EQ(fenetre->logique().Historique().front(), chemin);
    EXPECT_TRUE(fenetre->logique().OuvreHistorique(0));
    EXPECT_NE(fenetre->logique().base(), nullptr);
}

TEST_F(FenetreQt, EveryMenuEntryHasACaptionInEachLanguage) {
    const auto langues = fenetre->logique().Langues();
    ASSERT_GE(langues.size(), 2u);
    for (const std::string& l : langues) {
        ASSERT_TRUE(fenetre->logique().ChoisitLangue(l)) << l;
        for (const EntreeMenu& e : Menus())
            EXPECT_FALSE(Libelle(e.commande).isEmpty()) << l << " " << e.nom;
    }
    ASSERT_TRUE(fenetre->logique().ChoisitLangue("English"));
    EXPECT_EQ(Libelle(Commande::MnuFichier), QStringLiteral("&File"));
    ASSERT_TRUE(fenetre->logique().ChoisitLangue("Fran\xE7" "ais"));
    EXPECT_EQ(Libelle(Commande::MnuFichier), QStringLiteral("&Fichier"));
    EXPECT_EQ(reglages.lit("Defaut", "Langue", ""), "Fran\xE7" "ais");
}

TEST_F(FenetreQt, TheToolBarFollowsItsSetting) {
    auto* barre = fenetre->findChild<QToolBar*>(QStringLiteral("Toolbar1"));
    ASSERT_NE(barre, nullptr);
    app->parametres().icones = {0, 99, 10};
    fenetre->RafraichitTout();
    const auto actions = barre->actions();
    ASSERT_EQ(actions.size(), 4); // history, Ouvrir, separator, Quitter
    EXPECT_TRUE(actions[2]->isSeparator());
    EXPECT_EQ(actions[1]->objectName(), QStringLiteral("Ouvrir"));
    EXPECT_EQ(actions[3]->toolTip(), M(73));
}

TEST_F(FenetreQt, TheStopButtonIsHeardDuringALongOperation) {
    {
        OperationLongue op(*fenetre, *fenetre, "Import", "1");
        EXPECT_TRUE(fenetre->Visible());
        auto* stop = fenetre->findChild<QPushButton*>(QStringLiteral("CmdAnnuler"));
        ASSERT_NE(stop, nullptr);
        EXPECT_FALSE(op.Arrete());
        QTest::mouseClick(stop, Qt::LeftButton);
        EXPECT_TRUE(op.Arrete());
        EXPECT_TRUE(op.interaction().Arrete());
    }
    EXPECT_FALSE(fenetre->Visible());
    // A new operation starts with the stop mark cleared.
    OperationLongue suivante(*fenetre, *fenetre, "Import");
    EXPECT_FALSE(suivante.Arrete());
}

TEST_F(FenetreQt, ABaseNamedInAnotherScriptOpensAndShowsItsName) {
    const QString nom = QString::fromUtf8(dossier.chemin().c_str()) + QStringLiteral("/\u0417\u044B\u043A\u043E\u0432.sv2");
    {
        Parametres p;
        Base b(systemeReel(), p);
        b.Nouvelle(CheminInterne(nom));
        b.CreePersonne("Zykov", "Ivan", "", 'H', "1900");
        b.FermeBase();
    }
    ASSERT_TRUE(QFile::exists(nom)); // the system's name, not "?????.sv2"
    ASSERT_TRUE(fenetre->logique().OuvreFichier(CheminInterne(nom)));
    EXPECT_TRUE(fenetre->windowTitle().contains(QStringLiteral("\u0417\u044B\u043A\u043E\u0432")));
    EXPECT_EQ(fenetre->logique().base()->TablePersonnes().taille(), 1u);
}
