// The site form over a small base in memory: the default folder, the
// refusals, the stop button, a failing disk, and the browser offered only
// for a whole site.
#include "store/fichier_memoire.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "text/reglages.h"
#include "ui/frm_html.h"

#include <gtest/gtest.h>

#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

struct SiteForme : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;
    std::vector<std::string> urls;

    void SetUp() override {
        app.Demarre();
        app.parametres().dossierTravail = "/travail";
        app.parametres().auteur = "Anne";
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        for (int i = 0; i < 30; ++i)
            app.base().CreePersonne("Martin", "P" + std::to_string(i), "", 'H', "1850");
    }
    std::unique_ptr<FrmHTML> Forme() {
        auto h = std::make_unique<FrmHTML>(*f);
        h->ouvreNavigateur = [this](const std::string& u) { urls.push_back(u); };
        return h;
    }
};

} // namespace

TEST_F(SiteForme, TheSiteGoesToTheBaseTitleInTheWorkFolderAndOpensInTheBrowser) {
    auto h = Forme();
    EXPECT_EQ(h->dossier, "/travail/famille");
    EXPECT_EQ(h->auteur, "Anne");
    s.fichiers.chemins.push_back(std::string("/ailleurs/site"));
    h->Parcourir();
    EXPECT_EQ(h->dossier, "/ailleurs/site");
    s.fichiers.chemins.push_back(std::nullopt); // a cancel keeps it
    h->Parcourir();
    EXPECT_EQ(h->dossier, "/ailleurs/site");

    h->auteur = "Marc";
    h->accueilPersonne = true;
    f->Aller(7);
    EXPECT_EQ(h->Cree(), FrmHTML::Resultat::Cree);
    EXPECT_EQ(s.boites.informations, std::vector<int>{569});
    EXPECT_EQ(urls, std::vector<std::string>{"/ailleurs/site/homepage.htm"});
    EXPECT_NE(fs.contenu("/ailleurs/site/homepage.htm").find("<FRAME src=\"i7.htm\" name=\"M\">"),
              std::string::npos);
    EXPECT_NE(fs.contenu("/ailleurs/site/i1.htm").find("CONTENT=\"Marc\""), std::string::npos);
    EXPECT_EQ(app.parametres().auteur, "Marc");
    EXPECT_FALSE(s.panneau.visible);
    EXPECT_FALSE(s.panneau.titres.empty());

    h->ouvrirNavigateur = false;
    EXPECT_EQ(h->Cree(), FrmHTML::Resultat::Cree);
    EXPECT_EQ(urls.size(), 1u);
}

TEST_F(SiteForme, BusyStoppedOrFailingRunsOfferNoBrowser) {
    auto h = Forme();
    s.panneau.visible = true; // another long operation
    EXPECT_EQ(h->Cree(), FrmHTML::Resultat::Refuse);
    EXPECT_EQ(s.boites.informations, std::vector<int>{503});
    s.panneau.visible = false;

    s.panneau.arretApres = 5;
    EXPECT_EQ(h->Cree(), FrmHTML::Resultat::Arrete);
    EXPECT_EQ(s.boites.informations, std::vector<int>{503}) << "a stop says nothing";
    EXPECT_FALSE(fs.existe("/travail/famille/homepage.htm"));
    EXPECT_FALSE(s.panneau.visible);
    s.panneau.arretApres = -1;

    fs.echouerApres(4);
    EXPECT_EQ(h->Cree(), FrmHTML::Resultat::Erreur);
    fs.retablir();
    ASSERT_EQ(s.boites.textes.size(), 1u);
    EXPECT_NE(s.boites.textes[0].find("/travail/famille/"), std::string::npos);
    EXPECT_TRUE(urls.empty());
    EXPECT_FALSE(s.panneau.visible);
}
