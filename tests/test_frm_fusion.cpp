// The merge window's logic over a small base: the table found at a level
// and kept in its file, the labels filled by click, picker and drop, the
// wizard's steps passed over when there is nothing to choose, and the
// merge at its end, refused or confirmed.
#include "store/fichier_memoire.h"
#include "store/liens.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/frm_fusion.h"
#include "ui/frm_misajour.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

using namespace sylvane;
using test::ServicesFaux;

namespace {

struct Fusion : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;
    std::uint32_t h1, f1, h2, f2, pere1, pere2, enfant;

    void SetUp() override {
        DefinitMessages({{4428, "Conjoint : &1"}, {4429, "Pas de fusion"}, {4417, "&1 paires"}});
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        Base& b = app.base();
        pere1 = b.CreePersonne("Martin", "Pierre", "", 'H', "1820");
        pere2 = b.CreePersonne("Martin", "Piere", "", 'H', "1821");
        h1 = b.CreePersonne("Martin", "Jean", "", 'H', "1850");
        f1 = b.CreePersonne("Durand", "Marie", "", 'F', "1852");
        h2 = b.CreePersonne("Martin", "Jean", "", 'H', "");
        f2 = b.CreePersonne("Durand", "Marie", "", 'F', "1852");
        const auto m1 = b.CreeMariage(h1, f1, "1875"), m2 = b.CreeMariage(h2, f2);
        (void)m1, (void)m2;
        for (auto [p, c] : {std::pair{pere1, h1}, {pere2, h2}}) {
            b.EcritPere(c, p);
            b.MajEnfants(p, c, 'A');
        }
        enfant = b.CreePersonne("Martin", "Paul", "", 'H', "1880");
        b.EcritPere(enfant, h2);
        b.MajEnfants(h2, enfant, 'A');
        b.EcritMere(enfant, f2);
        b.MajEnfants(f2, enfant, 'A');
        b.ValideBase();
    }
    Base& B() { return app.base(); }
};

TEST_F(Fusion, SearchFillsTheTableAndItsFileWhichTheNextFormReads) {
    FrmFusion frm(*f);
    EXPECT_EQ(frm.Plage(), "1/2");
    ASSERT_TRUE(frm.OptSeuil_Click(0));
    auto g = frm.Grille();
    ASSERT_EQ(g.size(), 2u);
    EXPECT_EQ(g[0].premier, h2);
    EXPECT_EQ(g[0].second, h1);
    EXPECT_FALSE(s.panneau.visible);
    EXPECT_FALSE(s.panneau.titres.empty());
    EXPECT_TRUE(fs.existe("/d/famille.fus"));

    // A form opened later shows the pairs at once; CmdEcarter drops one.
    FrmFusion autre(*f);
    ASSERT_EQ(autre.Grille().size(), 2u);
    autre.Grille_Click(1);
    EXPECT_EQ(autre.Fiche(0), f2);
    EXPECT_TRUE(autre.EcarterActif());
    autre.CmdEcarter();
    EXPECT_EQ(autre.Fiche(0), 0u);
    EXPECT_EQ(autre.Grille().size(), 1u);
    EXPECT_EQ(FrmFusion(*f).Grille().size(), 1u);

    // A double click opens the sheet of the number clicked.
    EXPECT_TRUE(autre.Grille_DblClick(0, true));
    EXPECT_EQ(f->personneFiche, h1);
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmMisajour"));

    // The range asked by the sheet or by the repair command.
    FrmFusion::PlageDemandee() = "2/2";
    EXPECT_EQ(FrmFusion(*f).Plage(), "2/2");
    EXPECT_EQ(FrmFusion(*f).Plage(), "1/2");
}

// The sheet's modal forms are not used here.
struct SansChoix : ChoixFiche {
    std::uint32_t Cree(const std::string&) override { return 0; }
    std::uint32_t Choisit(Candidats, std::uint32_t, char, const std::string&) override { return 0; }
    std::optional<std::string> EditeTexte(const std::string&, const std::string&) override {
        return std::nullopt;
    }
};

TEST_F(Fusion, SheetAsksForTheMarriageItShows) {
    SansChoix choix;
    // A person with no marriage: nothing opens.
    f->personneFiche = pere1;
    {
        FrmMisajour fiche(*f, choix);
        EXPECT_FALSE(fiche.DoublonPossible());
        fiche.CmdDoublon();
    }
    EXPECT_FALSE(s.fenetres.EstOuverte("FrmFusion"));
    EXPECT_TRUE(FrmFusion::PlageDemandee().empty());

    // The second husband's sheet: the search is limited to his marriage,
    // and still finds him and his wife against the first couple.
    f->personneFiche = h2;
    const std::string m = std::to_string(B().Mariages(h2).at(0));
    {
        FrmMisajour fiche(*f, choix);
        ASSERT_TRUE(fiche.DoublonPossible());
        fiche.CmdDoublon();
    }
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmFusion"));
    FrmFusion frm(*f);
    EXPECT_EQ(frm.Plage(), m + "/" + m);
    ASSERT_TRUE(frm.OptSeuil_Click(0));
    const auto g = frm.Grille();
    ASSERT_EQ(g.size(), 2u);
    EXPECT_EQ(g[0].premier, h2);
    EXPECT_EQ(g[0].second, h1);
}

TEST_F(Fusion, LabelsTakeAPickedOrDroppedPersonOnly) {
    FrmFusion frm(*f);
    EXPECT_FALSE(frm.CmdFusionActif());
    s.selecteur.reponses = {h1};
    frm.CmdNom(0);
    EXPECT_EQ(frm.Fiche(0), h1);
    EXPECT_FALSE(frm.Depose(1, "E3"));
    EXPECT_FALSE(frm.Depose(1, "I"));
    EXPECT_FALSE(frm.Depose(1, "I99999999999"));
    EXPECT_FALSE(frm.Depose(1, "I999"));
    EXPECT_TRUE(frm.Depose(1, "I" + std::to_string(f1)));
    EXPECT_TRUE(frm.CmdFusionActif());
    // A man and a woman: 956, and the wizard doesn't start.
    EXPECT_FALSE(frm.CmdFusion_Click());
    EXPECT_EQ(s.boites.informations, std::vector<int>{956});
    EXPECT_EQ(frm.etape(), FrmFusion::Etape::Liste);
}

TEST_F(Fusion, WizardWalksTheStepsAndMergesOnYes) {
    FrmFusion frm(*f);
    frm.PoseFiche(0, h1);
    frm.PoseFiche(1, h2);
    ASSERT_TRUE(frm.CmdFusion_Click());
    EXPECT_EQ(frm.etape(), FrmFusion::Etape::RG);
    EXPECT_EQ(frm.lstDNaiss.Valeur(), "1850");
    EXPECT_EQ(frm.lstDNaiss.valeurs, (std::vector<std::string>{"1850", "", ""}));
    EXPECT_FALSE(frm.chkAutPreOffert);
    // No notes on either side: straight to the parents, who differ.
    ASSERT_TRUE(frm.CmdSuite());
    EXPECT_EQ(frm.etape(), FrmFusion::Etape::PARENTS);
    EXPECT_TRUE(frm.perePropose);
    EXPECT_FALSE(frm.merePropose);
    frm.optPere = ChoixTexte::Second;
    ASSERT_TRUE(frm.CmdSuite());
    EXPECT_EQ(frm.etape(), FrmFusion::Etape::MARIAGE);
    EXPECT_NE(frm.LblConjoint().find("Marie"), std::string::npos);
    ASSERT_EQ(frm.LstConjoint().size(), 2u); // the kept one's marriage, then none
    EXPECT_EQ(frm.choixConjoint, 0);
    EXPECT_EQ(frm.TextesConjoint().size(), 2u);
    // The child of the dropped person has nobody to compare with: the
    // merge is asked at once; No leaves everything.
    s.boites.reponses = {Reponse::Non};
    EXPECT_FALSE(frm.CmdSuite());
    EXPECT_EQ(frm.etape(), FrmFusion::Etape::Liste);
    EXPECT_EQ(s.boites.questions.back(), 957);
    EXPECT_NE(B().TrouvePlaceFiche(h2), 0u);

    ASSERT_TRUE(frm.CmdFusion_Click());
    frm.CmdSuite();
    frm.optPere = ChoixTexte::Second;
    frm.CmdSuite();
    s.boites.reponses = {Reponse::Oui};
    ASSERT_TRUE(frm.CmdSuite());
    EXPECT_EQ(B().TrouvePlaceFiche(h2), 0u);
    EXPECT_EQ(B().LitPere(h1), pere2);
    EXPECT_EQ(B().LitPere(enfant), h1);
    EXPECT_EQ(frm.Fiche(0), 0u);
    // The wives went to the table; the fathers did not (second chosen).
    const auto g = frm.Grille();
    ASSERT_EQ(g.size(), 1u);
    EXPECT_EQ(g[0].premier, f1);
    EXPECT_EQ(g[0].second, f2);
    frm.Ferme();
    EXPECT_TRUE(fs.existe("/d/famille.fus"));
}

TEST_F(Fusion, AbandonWritesNothingAndAnEmptyTableLeavesNoFile) {
    FrmFusion frm(*f);
    frm.PoseFiche(0, f1);
    frm.PoseFiche(1, f2);
    ASSERT_TRUE(frm.CmdFusion_Click());
    frm.Abandonne();
    EXPECT_EQ(frm.etape(), FrmFusion::Etape::Liste);
    EXPECT_FALSE(B().Modifiee());
    frm.Ferme();
    EXPECT_FALSE(fs.existe("/d/famille.fus"));
    // A damaged pairs file opens with what it holds.
    ecrireTout(fs, "/d/famille.fus", "x\r\n\r\n" + std::to_string(f1) + "\r\n" + std::to_string(f2));
    EXPECT_EQ(FrmFusion(*f).Grille().size(), 1u);
    EXPECT_EQ(FrmFusion(*f).LblNombre(), "1 paires");
    ecrireTout(fs, "/d/famille.fus", std::to_string(f1) + "\r\n999\r\n");
    const auto g = FrmFusion(*f).Grille();
    ASSERT_EQ(g.size(), 1u);
    EXPECT_EQ(g[0].nom2, ""); // a person no longer in the base
}

std::string SansFinDeLigne(std::string s) {
    while (!s.empty() && (s.back() == '\n' || s.back() == '\r')) s.pop_back();
    return s;
}

// The marriage panel: the date, the place, each rubric with a value on
// either side and the two notes when they differ are offered; what is
// chosen is what the kept marriage holds after the merge.
TEST_F(Fusion, MarriagePanelOffersRubricsAndNotesAndWritesTheChoice) {
    Base& b = B();
    // One marriage rubric with a date, of the same kind as the first
    // person rubric.
    auto& slots = b.TeteModifiable().rubriquesMariage;
    slots[0] = b.Tete().rubriquesPersonne[0];
    slots[0].drapeau = '1';
    const std::uint32_t m1 = b.Mariages(h1).at(0), m2 = b.Mariages(h2).at(0);
    auto note = [&](const std::string& lieu, const std::string& an, const std::string& valeur,
                    const std::string& corps) {
        std::array<ValeurRubrique, 10> v{};
        v[0] = {"", an, valeur};
        return " @" + lieu + LignesRubriques(slots, v) + "\r\n\r\n" + corps;
    };
    b.EcritNoteMariage(m1, note("Paris", "1880", "Cultivateur", "Note un"));
    b.EcritNoteMariage(m2, note("Lyon", "", "Laboureur", "Note deux"));
    b.ValideBase();

    FrmFusion frm(*f);
    frm.PoseFiche(0, h1);
    frm.PoseFiche(1, h2);
    ASSERT_TRUE(frm.CmdFusion_Click());
    ASSERT_TRUE(frm.CmdSuite());
    frm.optPere = ChoixTexte::Premier;
    ASSERT_TRUE(frm.CmdSuite());
    ASSERT_EQ(frm.etape(), FrmFusion::Etape::MARIAGE);
    ASSERT_EQ(frm.LstConjoint(), (std::vector<std::uint32_t>{m1, 0}));
    EXPECT_EQ(frm.lstLMar.valeurs, (std::vector<std::string>{"Paris", "Lyon"}));
    EXPECT_EQ(frm.lstLMar.Valeur(), "Paris");
    EXPECT_EQ(frm.lstDMar.Valeur(), "1875");
    ASSERT_GE(frm.rubriquesMariage.size(), 1u);
    const RubriqueFusion& r = frm.rubriquesMariage[0];
    EXPECT_TRUE(r.avecDate);
    EXPECT_EQ(r.valeurs.valeurs, (std::vector<std::string>{"Cultivateur", "Laboureur"}));
    EXPECT_EQ(r.dates.Valeur(), "1880");
    for (std::size_t i = 1; i < frm.rubriquesMariage.size(); ++i)
        EXPECT_TRUE(frm.rubriquesMariage[i].dates.valeurs.empty()) << "nothing to show in slot " << i;
    EXPECT_TRUE(frm.texteMarPropose);
    EXPECT_EQ(SansFinDeLigne(frm.texteMar1), "Note un");
    EXPECT_EQ(SansFinDeLigne(frm.texteMar2), "Note deux");
    EXPECT_EQ(frm.optTxtMar, ChoixTexte::Fusion);

    // No merge: nothing to choose; back on the marriage, the lists are
    // offered again on the kept marriage's values.
    frm.ConjointChoisi(1);
    EXPECT_TRUE(frm.lstLMar.valeurs.empty());
    EXPECT_TRUE(frm.rubriquesMariage.empty());
    EXPECT_FALSE(frm.texteMarPropose);
    frm.ConjointChoisi(0);
    EXPECT_EQ(frm.lstLMar.Valeur(), "Paris");

    frm.lstLMar.Choisit("Lyon");
    frm.rubriquesMariage[0].valeurs.Choisit("Laboureur");
    frm.optTxtMar = ChoixTexte::Second;
    s.boites.reponses = {Reponse::Oui};
    ASSERT_TRUE(frm.CmdSuite());
    EXPECT_EQ(b.LieuMariage(m1), "Lyon");
    EXPECT_EQ(b.LitAnMariage(m1), "1875");
    const auto rub = b.RubriquesMariage(m1);
    ASSERT_GE(rub.size(), 1u);
    EXPECT_EQ(rub[0].valeur, "Laboureur");
    EXPECT_EQ(rub[0].annee, "1880");
    EXPECT_EQ(SansFinDeLigne(b.CorpsNoteMariage(m1)), "Note deux");
    EXPECT_EQ(b.LitMari(m2), 0u);
    EXPECT_EQ(b.Mariages(h1), std::vector<std::uint32_t>{m1});
}

} // namespace
