// The print forms' logic without a display: what the form opens on, its
// refusals, the couple question, a run under the progress panel and its
// stop, the preview's pages and zoom, and the options dialogs.
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/frm_impression.h"
#include "ui/frm_listes.h"

#include <gtest/gtest.h>

#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

// Pages and texts drawn.
struct Compte : Surface {
    int pages = 0, textes = 0;
    const Metrique& Mesure() const override { return MetriqueDejaVu::Instance(); }
    void DebutPage(int, int, double, double) override { ++pages; }
    void FinPage() override {}
    void Trait(double, double, double, double, Plume) override {}
    void Boite(double, double, double, double, std::int32_t) override {}
    void Texte(double, double, std::string_view, const Police&, std::int32_t) override { ++textes; }
};

struct Impression : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;
    std::uint32_t pere, mere, autre, fils;

    void SetUp() override {
        DefinitMessages({{4388, "Personne : &1"}, {4107, "Feuille"}});
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        Base& b = app.base();
        pere = b.CreePersonne("Martin", "Jean", "", 'H', "1850");
        mere = b.CreePersonne("Durand", "Marie", "", 'F', "1852");
        autre = b.CreePersonne("Petit", "Rose", "", 'F', "1860");
        b.CreeMariage(pere, mere);
        b.CreeMariage(pere, autre);
        fils = b.CreePersonne("Martin", "Paul", "", 'H', "1880");
        b.EcritPere(fils, pere);
        b.MajEnfants(pere, fils, 'A');
        app.definitPersonneEnCours(fils);
        ReglagesCourants() = ReglagesImpression{};
    }
    void TearDown() override {
        DefinitMessages({});
        ParenteTransmise() = TransfertParente{};
    }
};

} // namespace

TEST_F(Impression, OpensOnTheListHandedOverOrOnThePersonInCourse) {
    FrmImpression frm(*f);
    frm.Charge();
    EXPECT_EQ(frm.personne, fils);
    EXPECT_TRUE(frm.liste.empty());
    EXPECT_EQ(frm.LibellePersonne(), "Personne : Paul Martin");

    // A descendant list hands its person, its generations and its kind.
    TransfertParente& t = ParenteTransmise();
    t.liste = Pack4(pere) + Pack4(fils);
    t.mode = 'D';
    t.generations = 3;
    t.personne = pere;
    frm.Charge();
    EXPECT_EQ(frm.personne, pere);
    EXPECT_EQ(frm.niveaux, 3);
    EXPECT_EQ(frm.choix, 3);
    EXPECT_EQ(frm.liste, (std::vector<std::uint32_t>{pere, fils}));
    EXPECT_TRUE(ParenteTransmise().liste.empty()); // taken once

    // A dropped or picked person replaces the list.
    frm.DefinitPersonne(mere);
    EXPECT_TRUE(frm.liste.empty());
    s.selecteur.reponses = {0};
    EXPECT_FALSE(frm.ChoisitPersonne());
    EXPECT_EQ(frm.personne, mere);
}

TEST_F(Impression, RefusalsAndTheCoupleQuestion) {
    FrmImpression frm(*f);
    frm.Charge();
    const Metrique& m = MetriqueDejaVu::Instance();
    EXPECT_FALSE(frm.Prepare(m));
    EXPECT_EQ(s.boites.informations, (std::vector<int>{581}));
    frm.type = TypeImpression::Tableau;
    frm.choix = 0;
    EXPECT_FALSE(frm.Prepare(m)); // the branch tables are not printed here
    // A couple chart of a person without a marriage.
    frm.type = TypeImpression::Graphe;
    frm.choix = 3;
    EXPECT_FALSE(frm.Prepare(m));
    EXPECT_EQ(s.boites.informations.back(), 941);
    // Two marriages: each spouse is offered in turn; the second is taken.
    frm.personne = pere;
    s.boites.reponses = {Reponse::Non, Reponse::Oui};
    auto t = frm.Prepare(m);
    ASSERT_TRUE(t);
    EXPECT_EQ(s.boites.questions, (std::vector<int>{942, 942}));
    EXPECT_TRUE(t->graphe);
    EXPECT_TRUE(fs.existe(t->gabarit));
    Compte c;
    EXPECT_EQ(frm.Execute(*t, c), FinRapport::Termine);
    EXPECT_GE(c.pages, 1);
    fs.supprimer(t->gabarit);
    // The other datum asked without its rubric.
    ReglagesCourants().autre = true;
    frm.choix = 0;
    EXPECT_FALSE(frm.Prepare(m));
    EXPECT_EQ(s.boites.informations.back(), 580);
    // Busy: message 503 and nothing prepared.
    ReglagesCourants().autre = false;
    s.panneau.visible = true;
    EXPECT_FALSE(frm.Prepare(m));
    EXPECT_EQ(s.boites.informations.back(), 503);
}

TEST_F(Impression, RunsUnderThePanelAndStops) {
    FrmImpression frm(*f);
    frm.Charge();
    frm.personne = pere;
    frm.choix = 3; // descendant sheets
    frm.contenu = Contenu::ListeRapide;
    auto t = frm.Prepare(MetriqueDejaVu::Instance());
    ASSERT_TRUE(t);
    EXPECT_EQ(t->rapport, Rapport::FichesDescendants);
    EXPECT_TRUE(t->options.listeRapide);
    Compte c;
    EXPECT_EQ(frm.Execute(*t, c), FinRapport::Termine);
    EXPECT_EQ(c.pages, 1);
    EXPECT_FALSE(s.panneau.visible);
    EXPECT_FALSE(s.panneau.textes.empty());
    s.panneau.arretApres = 0;
    Compte arrete;
    EXPECT_EQ(frm.Execute(*t, arrete), FinRapport::Arrete);
    EXPECT_FALSE(s.panneau.visible);

    // A search's list prints one line a person.
    ParenteTransmise().liste = Pack4(mere) + Pack4(autre);
    ParenteTransmise().generations = 0;
    frm.Charge();
    s.panneau.arretApres = -1;
    t = frm.Prepare(MetriqueDejaVu::Instance());
    ASSERT_TRUE(t);
    EXPECT_EQ(t->rapport, Rapport::Liste);
    EXPECT_EQ(t->liste.size(), 2u);
}

TEST_F(Impression, PreviewPagesAndZoom) {
    FrmImpression frm(*f);
    frm.Charge();
    frm.choix = 0;
    // A long note makes the sheet run over three pages.
    std::string note;
    for (int i = 0; i < 2500; ++i) note += "texte ";
    app.base().EcritNote(fils, app.base().LigneMotsCles(fils) + "\r\n" + note);
    auto t = frm.Prepare(MetriqueDejaVu::Instance());
    ASSERT_TRUE(t);
    Previsualisation p(fs);
    p.Charge(frm.Apercu(*t), MetriqueDejaVu::Instance());
    ASSERT_GE(p.NombrePages(), 2);
    EXPECT_EQ(p.Page(), 1);
    EXPECT_EQ(p.Position(), (std::pair<int, int>{1, 1}));
    EXPECT_FALSE(p.Precedente());
    while (p.Suivante()) {
    }
    EXPECT_EQ(p.Page(), p.NombrePages());
    EXPECT_EQ(p.Position().first, p.NombrePages());
    const double z = p.Zoom();
    while (p.Agrandir()) {
    }
    EXPECT_GT(p.Zoom(), z);
    while (p.Reduire()) {
    }
    EXPECT_LT(p.Zoom(), z);

    // A chart's template goes when the preview closes.
    frm.type = TypeImpression::Graphe;
    frm.choix = 0;
    t = frm.Prepare(MetriqueDejaVu::Instance());
    ASSERT_TRUE(t);
    p.Charge(frm.Apercu(*t), MetriqueDejaVu::Instance());
    EXPECT_EQ(p.NombrePages(), 1);
    EXPECT_TRUE(fs.existe(t->gabarit));
    p.Ferme();
    EXPECT_FALSE(fs.existe(t->gabarit));
}

TEST_F(Impression, OptionsDialogs) {
    EXPECT_EQ(FrmPrinter::Chiffres(""), "1");
    EXPECT_EQ(FrmPrinter::Chiffres("a2b3"), "23");
    FrmPrinter graphe(true);
    graphe.Reglages().paysage = true;
    EXPECT_FALSE(graphe.Valide(s.boites, "0", "2"));
    EXPECT_EQ(s.boites.informations.back(), 586);
    EXPECT_FALSE(ReglagesCourants().paysage); // nothing stored
    EXPECT_TRUE(graphe.Valide(s.boites, "3", ""));
    EXPECT_TRUE(ReglagesCourants().paysage);
    EXPECT_EQ(ReglagesCourants().feuillesH, 3);
    EXPECT_EQ(ReglagesCourants().feuillesV, 1);
    // The reports' dialog leaves the sheets alone.
    FrmPrinter rapports(false);
    rapports.Reglages().papier = RangPapier(8); // A3
    EXPECT_TRUE(rapports.Valide(s.boites, "0", "0"));
    EXPECT_EQ(ReglagesCourants().Feuille().hauteur, PapierDeRang(RangPapier(8), true).hauteur);
}
