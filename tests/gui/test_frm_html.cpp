// The site window under the offscreen platform, over the form logic with
// scripted boxes: the choices shown, and a run that writes the site.
#include "app/fenetre_principale.h"
#include "app/frm_html.h"
#include "fenetre_test.h"
#include "support/services_faux.h"
#include "text/reglages.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <filesystem>

using namespace sylvane;

namespace {

struct HtmlQt : ::testing::Test {
    test::DossierTemp dossier;
    ReglagesMemoire reglages, reglagesFenetre;
    const std::string prog = std::string(SYLVANE_BINARY_DIR) + "/src";
    Application app{systemeReel(), reglages, prog};
    test::ServicesFaux s;
    MDIForm1 logique{app, s.ui()};
    Application appFenetre{systemeReel(), reglagesFenetre, prog};
    std::unique_ptr<MDIForm1Qt> fenetre;
    std::unique_ptr<ContexteQt> contexte;
    test::Famille f;

    void SetUp() override {
        test::Appli();
        const std::string chemin = dossier / "famille.sv2";
        f = test::EcritFamille(chemin);
        reglages.ecrit("Defaut", "Travail", dossier.chemin());
        app.Demarre();
        ASSERT_TRUE(logique.OuvreFichier(chemin));
        logique.Aller(f.moi);
        fenetre = std::make_unique<MDIForm1Qt>(appFenetre);
        contexte = std::make_unique<ContexteQt>(ContexteQt{logique, *fenetre});
    }
    void TearDown() override {
        fenetre.reset();
        logique.Termine();
    }
};

} // namespace

TEST_F(HtmlQt, TheChoicesGoToTheRunThatWritesTheSite) {
    auto* w = new FrmHTMLQt(*contexte);
    w->show();
    EXPECT_TRUE(w->dossier()->text().endsWith(QStringLiteral("famille")));
    EXPECT_FALSE(w->windowTitle().isEmpty());
    const std::string site = dossier / "mon site";
    w->dossier()->setText(QString::fromStdString(site));
    w->auteur()->setText(QStringLiteral("Andr\u00e9"));
    w->navigateur()->setChecked(false); // no browser under the tests
    w->personne()->setChecked(true);
    QTest::mouseClick(w->cmdCreer(), Qt::LeftButton);
    EXPECT_EQ(s.boites.informations, std::vector<int>{569});
    ASSERT_TRUE(std::filesystem::exists(site + "/homepage.htm"));
    const std::string page = test::LitFichier(site + "/i" + std::to_string(f.moi) + ".htm");
    EXPECT_NE(page.find("CONTENT=\"Andr&eacute;\""), std::string::npos);
    EXPECT_NE(test::LitFichier(site + "/homepage.htm")
                  .find("<FRAME src=\"i" + std::to_string(f.moi) + ".htm\" name=\"M\">"),
              std::string::npos);
    delete w;
}
