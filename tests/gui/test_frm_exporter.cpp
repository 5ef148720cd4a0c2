// The selective export window under the offscreen platform, over the form
// logic with scripted dialogs: the person shown, a selection, its list, the
// format's options following the format, and a run that writes the file
// and closes the window.
#include "app/fenetre_principale.h"
#include "fenetre_test.h"
#include "app/frm_controle.h"
#include "app/frm_exporter.h"
#include "exchange/svr.h"
#include "store/fichier.h"
#include "support/dossier_temp.h"
#include "support/services_faux.h"
#include "text/reglages.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

using test::Appli;

struct ExporterQt : ::testing::Test {
    test::DossierTemp dossier;
    ReglagesMemoire reglages, reglagesFenetre;
    const std::string prog = std::string(SYLVANE_BINARY_DIR) + "/src";
    Application app{systemeReel(), reglages, prog};
    test::ServicesFaux s;
    MDIForm1 logique{app, s.ui()};
    // The window the context names; the form uses only the logic above.
    Application appFenetre{systemeReel(), reglagesFenetre, prog};
    std::unique_ptr<MDIForm1Qt> fenetre;
    std::unique_ptr<ContexteQt> contexte;
    std::uint32_t paul = 0;

    void SetUp() override {
        Appli();
        const std::string chemin = dossier / "famille.sv2";
        {
            Parametres p;
            Base b(systemeReel(), p);
            b.Nouvelle(chemin);
            const auto jean = b.CreePersonne("Martin", "Jean", "", 'H', "1900");
            paul = b.CreePersonne("Martin", "Paul", "", 'H', "1930");
            const auto luc = b.CreePersonne("Martin", "Luc", "", 'H', "1960");
            b.EcritPere(paul, jean);
            b.MajEnfants(jean, paul, 'A');
            b.EcritPere(luc, paul);
            b.MajEnfants(paul, luc, 'A');
            b.FermeBase();
        }
        reglages.ecrit("Defaut", "Travail", dossier.chemin());
        app.Demarre();
        ASSERT_TRUE(logique.OuvreFichier(chemin));
        logique.Aller(paul);
        fenetre = std::make_unique<MDIForm1Qt>(appFenetre);
        contexte = std::make_unique<ContexteQt>(ContexteQt{logique, *fenetre});
    }
    void TearDown() override {
        fenetre.reset();
        logique.Termine();
    }
};

} // namespace

TEST_F(ExporterQt, SelectListAndRunToAnExchangeFile) {
    auto* w = new FrmExporterQt(*contexte);
    w->show();
    EXPECT_TRUE(w->etiNom()->text().contains(QStringLiteral("Paul")));
    EXPECT_FALSE(w->cmdLancer()->isEnabled());
    // Paul's descendants: Paul and Luc.
    QTest::mouseClick(w->cmdSelection(), Qt::LeftButton);
    EXPECT_TRUE(w->lblFiche()->text().endsWith(QStringLiteral(" 2")));
    EXPECT_TRUE(w->cmdLancer()->isEnabled());
    QTest::mouseClick(w->cmdListe(), Qt::LeftButton);
    ASSERT_EQ(w->liste()->count(), 2);
    // The ascendants of the same person add Jean.
    w->optAscendants()->setChecked(true);
    QTest::mouseClick(w->cmdSelection(), Qt::LeftButton);
    EXPECT_EQ(w->liste()->count(), 3);
    // The character set belongs to GEDCOM only.
    EXPECT_TRUE(w->jeu()->isEnabled());
    w->svr()->setChecked(true);
    EXPECT_FALSE(w->jeu()->isEnabled());
    // Enter runs the export; the file is written and the window closes.
    const std::string sortie = dossier / "sortie.svr";
    s.fichiers.chemins = {sortie};
    QTest::keyClick(w, Qt::Key_Return);
    ASSERT_TRUE(systemeReel().existe(sortie));
    EXPECT_EQ(lireTout(systemeReel(), sortie).rfind(kBanniereSvr, 0), 0u);
    EXPECT_FALSE(w->isVisible());
    EXPECT_EQ(s.fichiers.titres, std::vector<int>{541});
    delete w;
}

TEST_F(ExporterQt, TheControlReportFollowsTheLastControl) {
    s.boites.reponses = {Reponse::Non};
    ASSERT_TRUE(CmdControle(logique));
    FrmControleQt w(*contexte);
    EXPECT_TRUE(w.texte()->toPlainText().isEmpty());
    EXPECT_FALSE(w.resume()->text().isEmpty());
    FrmControle::Publie({true, "Mariage 3 incoh\xE9rent supprim\xE9\r\n", "/r.txt"});
    EXPECT_EQ(w.texte()->toPlainText(), QStringLiteral("Mariage 3 incohérent supprimé\n"));
}
