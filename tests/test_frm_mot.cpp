// The keyword and rubric forms over a small base: the kinds and their
// refusals, the sheet's rubric rows, the keyword list and picker, the
// usual words of the settings, the replacement with its panel, its
// questions and a failing disk.
#include "publish/recapitulation.h"
#include "store/evenement_edition.h"
#include "store/fichier_memoire.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "text/tags.h"
#include "ui/frm_mot.h"

#include <gtest/gtest.h>

#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

struct Mots : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;

    void SetUp() override {
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        for (int i = 0; i < 40; ++i)
            Personne(std::to_string(1800 + i), i % 4 ? "\\laboureur" : "\\m\xE9tayer." + std::to_string(i));
        app.Enregistre();
    }
    Base& b() { return app.base(); }
    std::uint32_t Personne(const std::string& an, const std::string& metier) {
        const auto n = b().CreePersonne("Martin", "Jean", "", 'H', an);
        const std::string note = b().LitNote(n) + "\r\nOCCU  " + metier;
        b().MajMots(n, b().LitNote(n), note);
        b().EcritNote(n, note);
        return n;
    }
    std::vector<int>& Infos() { return s.boites.informations; }
};

} // namespace

TEST_F(Mots, KindsAreDefinedWithTheirRefusals) {
    FrmMotCle m(*f);
    const std::size_t nb = m.Genres().size();
    ASSERT_EQ(nb, 11u);
    m.Selectionne(5);
    EXPECT_EQ(m.marque, "\\");
    EXPECT_TRUE(m.index);

    m.libelle = "Grade";
    for (const char* refuse : {"#", "\xB0", "", "xy"}) {
        m.marque = refuse;
        EXPECT_FALSE(m.C_Ajout());
    }
    m.marque = "g";
    m.libelle = " ";
    EXPECT_FALSE(m.C_Ajout());
    m.libelle = "Grade";
    ASSERT_TRUE(m.C_Ajout());
    EXPECT_FALSE(m.C_Ajout()) << "the mark is taken now";
    EXPECT_EQ(Infos(), (std::vector<int>{718, 718, 718, 718, 719, 952}));
    EXPECT_EQ(m.Genres().size(), nb + 1);
    EXPECT_EQ(m.selection, static_cast<int>(nb));
    EXPECT_EQ(m.Genres().back().marque, 'G');
    EXPECT_FALSE(b().Modifiee()) << "the new kind is committed";

    // Up and down, with the bounds.
    EXPECT_TRUE(m.CmdMotUp());
    EXPECT_EQ(m.selection, static_cast<int>(nb) - 1);
    EXPECT_EQ(m.Genres()[nb - 1].marque, 'G');
    EXPECT_TRUE(m.CmdMotDown());
    EXPECT_FALSE(m.CmdMotDown());
    m.Selectionne(0);
    EXPECT_FALSE(m.CmdMotUp());

    // A kind used by a sheet row, pending or written, stays.
    m.Selectionne(static_cast<int>(nb));
    const auto possibles = m.Possibles();
    ASSERT_EQ(possibles.back().marque, 'G');
    for (const auto& p : possibles) EXPECT_FALSE(MarqueFixe(p.marque));
    ASSERT_TRUE(m.CmdAjtMot(false, static_cast<int>(possibles.size()) - 1, true));
    EXPECT_FALSE(m.CmdAjtMot(false, static_cast<int>(possibles.size()) - 1, true)) << "once";
    EXPECT_FALSE(m.C_Supp());
    EXPECT_EQ(Infos().back(), msg_mots::GenreEmploye);

    // A new mark follows into the rows and the notes.
    m.marque = "H";
    ASSERT_TRUE(m.C_Maj());
    EXPECT_EQ(m.Rangs(false).back().symbole, 'H');
    EXPECT_EQ(m.LibelleRang(m.Rangs(false).back()), "Grade");
    EXPECT_TRUE(m.Modifie());
}

TEST_F(Mots, SheetRowsAreWrittenOnClosingAfterThePendingSheet) {
    FrmMotCle m(*f);
    ASSERT_EQ(m.Rangs(false).size(), 3u); // OCCU, CHR, BURI of a new base
    EXPECT_FALSE(m.CmdMotBouge(false, 0, -1));
    EXPECT_FALSE(m.CmdMotBouge(false, 2, +1));
    ASSERT_TRUE(m.CmdMotBouge(false, 0, +1));
    ASSERT_TRUE(m.CmdSupMot(true, 0));
    const auto p = m.Possibles();
    const auto resi = std::find_if(p.begin(), p.end(), [](const auto& g) { return g.tag == "RESI"; });
    ASSERT_NE(resi, p.end());
    ASSERT_TRUE(m.CmdAjtMot(true, static_cast<int>(resi - p.begin()), false));
    for (int i = 0; i < 7; ++i) m.CmdAjtMot(false, i, false);
    EXPECT_EQ(m.Rangs(false).size(), 6u) << "each kind once";
    f->fichePendante = true;
    s.boites.reponses = {Reponse::Non};
    m.Ferme();
    EXPECT_EQ(s.boites.questions, std::vector<int>{847});
    const auto& t = b().Tete();
    EXPECT_EQ(t.rubriquesPersonne[0].tag, "CHR");
    EXPECT_EQ(t.rubriquesPersonne[1].tag, "OCCU");
    EXPECT_EQ(t.rubriquesMariage[0].tag, "RESI");
    EXPECT_EQ(t.rubriquesMariage[1].symbole, ' ');
    EXPECT_TRUE(b().redessiner);
    EXPECT_FALSE(m.Modifie());
}

TEST_F(Mots, TheListPagesJumpsAndRecapitulates) {
    FrmLMotCle l(*f, '\\');
    EXPECT_EQ(l.Titre(), Conv_LibelleTag("OCCU"));
    ASSERT_EQ(l.Liste().Taille(), 11u); // LABOUREUR and ten METAYER n
    auto page = l.Lignes(3);
    ASSERT_EQ(page.size(), 3u);
    EXPECT_EQ(page[0].mot, "LABOUREUR");
    EXPECT_EQ(page[0].emplois, 30u);
    l.Cherche("m\xE9tayer 2");
    page = l.Lignes(50);
    ASSERT_EQ(page.size(), 7u);
    EXPECT_EQ(FrmLMotCle::Valeur(page[0]), "METAYER 20");
    l.Cherche("zz");
    EXPECT_TRUE(l.Lignes(5).empty());
    const std::string r = l.Recapitulation(false);
    EXPECT_NE(r.find("  LABOUREUR (30)\r\n      "), std::string::npos);
    EXPECT_NE(l.Recapitulation(true).find(r), std::string::npos) << "every indexed kind";
}

TEST_F(Mots, ThePickerTakesAKeywordAUsualWordOrANewOne) {
    app.parametres().rubriques.push_back({"OCCU", {"tisserand", "meunier"}});
    FrmMot m(*f, {false, '\\', "OCCU", "Profession", false, "", "", "labou"});
    EXPECT_EQ(m.Liste().Lignes(1).at(0).mot, "LABOUREUR") << "opens at the value";
    m.ChoisitLigne(m.Liste().Lignes(1).at(0));
    EXPECT_EQ(m.valeur, "LABOUREUR");
    ASSERT_TRUE(m.CmdValider());
    EXPECT_FALSE(m.Nouveau());
    EXPECT_EQ(m.Usuels(), (std::vector<std::string>{"tisserand", "meunier"}));
    m.ChoisitUsuel("meunier");
    m.Tape(m.valeur, "meu#nier  ");
    ASSERT_TRUE(m.CmdValider());
    EXPECT_EQ(m.valeur, "meunier");
    EXPECT_TRUE(m.Nouveau());

    // A kind without index refuses.
    ASSERT_EQ(AjouteGenre(b(), "S", "Surnom", false), 0);
    FrmMot n(*f, {false, 'S', "Surnom", "Surnom", false, "", "", "x"});
    EXPECT_FALSE(n.CmdValider());
    EXPECT_EQ(Infos(), std::vector<int>{msg_mots::DoitEtreIndexe});
}

TEST_F(Mots, UsualWordsLiveInTheSettings) {
    FrmUsuels u(*f);
    const auto avant = u.Rubriques().size();
    EXPECT_FALSE(u.CmdNouvRubr("  "));
    ASSERT_TRUE(u.CmdNouvRubr("OCCU"));
    EXPECT_FALSE(u.CmdNouvRubr("OCCU"));
    EXPECT_EQ(u.Rubriques().size(), avant + 1);
    EXPECT_TRUE(u.CmdMotNouveau("laboureur"));
    EXPECT_TRUE(u.CmdMotNouveau(" tisserand "));
    EXPECT_FALSE(u.CmdMotNouveau("laboureur"));
    EXPECT_FALSE(u.CmdMotNouveau("a#b"));
    EXPECT_TRUE(u.CmdMotSup(0));
    EXPECT_EQ(u.Mots(), std::vector<std::string>{"tisserand"});
    EXPECT_EQ(reglages.section("Rubrique OCCU").size(), 1u);
    EXPECT_EQ(reglages.lit("Liste Rubriques", "OCCU", ""), "OCCU");

    EXPECT_FALSE(u.CmdSupRub()) << "answered No";
    s.boites.reponses = {Reponse::Oui};
    ASSERT_TRUE(u.CmdSupRub());
    EXPECT_EQ(s.boites.questions, (std::vector<int>{617, 617}));
    EXPECT_TRUE(reglages.section("Rubrique OCCU").empty());
    EXPECT_EQ(reglages.lit("Liste Rubriques", "OCCU"), std::nullopt);
    EXPECT_EQ(u.Rubriques().size(), avant);
}

TEST_F(Mots, ReplacementAsksForThePendingSheetAndReports) {
    FrmRemplacement r(*f);
    r.marque = '\\';
    EXPECT_FALSE(r.CmdRemplacer()) << "no first text: nothing";
    EXPECT_TRUE(Infos().empty());
    r.ancien = "laboureur";
    r.nouveau = "cultivateur";
    s.panneau.visible = true;
    EXPECT_FALSE(r.CmdRemplacer());
    EXPECT_EQ(Infos(), std::vector<int>{503});
    s.panneau.visible = false;

    f->fichePendante = true;
    ASSERT_TRUE(r.CmdRemplacer());
    EXPECT_EQ(s.boites.questions, std::vector<int>{847});
    EXPECT_EQ(Infos().back(), msg_mots::Remplaces);
    EXPECT_EQ(r.Bilan().occurrences, 30u);
    EXPECT_FALSE(s.panneau.visible);
    EXPECT_EQ(ListeMotsCles(b(), '\\').Exact("Cultivateur"), ListeMotsCles(b(), '\\').Page(0, 1)[0].entree);

    ASSERT_EQ(AjouteGenre(b(), "S", "Surnom", false), 0);
    r.marque = 'S';
    EXPECT_FALSE(r.CmdRemplacer());
    EXPECT_EQ(Infos().back(), msg_mots::DoitEtreIndexe);
    r.tous = true;
    r.ancien = "cultivateur";
    r.nouveau = "a#";
    EXPECT_FALSE(r.CmdRemplacer());
    EXPECT_EQ(Infos().back(), msg_mots::MotNouveauRefuse);

    // Stopped during the scan: nothing changes.
    r.nouveau = "fermier";
    s.panneau.arretApres = 0;
    EXPECT_FALSE(r.CmdRemplacer());
    EXPECT_TRUE(r.Bilan().arrete);
    EXPECT_NE(ListeMotsCles(b(), '\\').Exact("cultivateur"), 0u);
}

// The disk fails in the middle: the failure is shown, and the base opened
// again holds its last commit.
TEST_F(Mots, AFailingDiskLeavesTheBaseOpenAtItsLastCommit) {
    FrmRemplacement r(*f);
    r.marque = '\\';
    r.ancien = "laboureur";
    r.nouveau = "cultivateur";
    fs.echouerApres(3);
    EXPECT_FALSE(r.CmdRemplacer());
    EXPECT_FALSE(s.boites.textes.empty());
    // The disk still fails: the base could not be opened again.
    EXPECT_FALSE(app.BaseOuverte());
    fs.retablir();
    app.OuvreBase("/d/famille.sv2");
    EXPECT_NE(ListeMotsCles(b(), '\\').Exact("laboureur"), 0u);
    EXPECT_EQ(ListeMotsCles(b(), '\\').Exact("cultivateur"), 0u);
    EXPECT_NE(b().LitNote(2).find("\\laboureur"), std::string::npos);
    ASSERT_TRUE(r.CmdRemplacer());
    EXPECT_NE(b().LitNote(2).find("\\cultivateur"), std::string::npos);
}

TEST_F(Mots, ARubricThatIsAnEventKindMakesItsEventOnceAndOpensIt) {
    const std::uint32_t p = Personne("1850", "\\laboureur");
    FrmMot m(*f, {false, ' ', "CHR", "Bapt\xEAme", true, "12/3", "1850", "Caen  ", p});
    EXPECT_TRUE(m.EvenementPossible());
    EXPECT_FALSE(m.EvenementExiste());
    const std::uint32_t e = m.CmdIndEvt();
    ASSERT_NE(e, 0u);
    EXPECT_EQ(b().TagEvt(e), "CHR");
    EXPECT_EQ(DateCourteEvenement(b().DateEvt(e)), "12/03/1850");
    EXPECT_EQ(b().LieuEvt(e), "Caen");
    EXPECT_FALSE(RoleDansEvenement(b(), p, e).empty()) << "the owner holds its main role";
    ASSERT_FALSE(s.fenetres.numeros.empty());
    EXPECT_EQ(s.fenetres.numeros.back(), (std::pair<std::string, std::uint32_t>{"FrmDesEvt", e}));
    // Asked again, the same event opens; none is made twice.
    FrmMot encore(*f, {false, ' ', "CHR", "Bapt\xEAme", true, "", "", "", p});
    EXPECT_TRUE(encore.EvenementExiste());
    EXPECT_EQ(encore.CmdIndEvt(), e);

    // A day that is no date is refused with message 931 and makes nothing.
    const std::uint32_t q = Personne("1851", "\\laboureur");
    FrmMot faux(*f, {false, ' ', "BURI", "Inhumation", true, "45/13", "1851", "", q});
    EXPECT_EQ(faux.CmdIndEvt(), 0u);
    EXPECT_EQ(Infos().back(), 931);
    EXPECT_EQ(EvenementPrincipal(b(), q, "BURI"), 0u);
    // A trade is no kind of event; a marriage rubric needs a marriage.
    EXPECT_FALSE(FrmMot(*f, {false, '\\', "OCCU", "Profession", false, "", "", "x", p}).EvenementPossible());
    EXPECT_FALSE(FrmMot(*f, {true, ' ', "MARR", "Mariage", true, "", "1870", "", p}).EvenementPossible());
}

TEST_F(Mots, TheRecapitulationIsWrittenWholeOrNotAtAll) {
    FrmLMotCle l(*f, '\\');
    const auto contenu = l.Contenu(false);
    ASSERT_EQ(contenu.size(), 1u);
    ASSERT_EQ(contenu[0].mots.size(), 11u);
    EXPECT_EQ(contenu[0].mots[0].mot, "LABOUREUR");
    EXPECT_EQ(contenu[0].mots[0].personnes.size(), 30u);
    EXPECT_EQ(contenu[0].mots[1].mot, "METAYER 0");
    EXPECT_GE(l.Contenu(true).size(), 2u) << "every indexed kind";

    s.fichiers.chemins = {std::string("/d/r.rtf"), std::string("/d/r.htm")};
    ASSERT_EQ(l.EcritRecapitulation(false, false), std::optional<std::string>("/d/r.rtf"));
    const std::string rtf = fs.contenu("/d/r.rtf");
    EXPECT_EQ(rtf.rfind("{\\rtf1", 0), 0u);
    EXPECT_NE(rtf.find("{\\b\\f0\\fs22 LABOUREUR}"), std::string::npos);
    EXPECT_EQ(rtf.back(), '\n');
    ASSERT_TRUE(l.EcritRecapitulation(true, false));
    const std::string html = fs.contenu("/d/r.htm");
    EXPECT_NE(html.find("<H3>METAYER 8 "), std::string::npos);
    EXPECT_NE(html.find("</UL>\r\n</BODY></HTML>"), std::string::npos);
    EXPECT_FALSE(s.panneau.visible);

    // Cancelled in the dialog, or stopped: no file.
    EXPECT_FALSE(l.EcritRecapitulation(false, false));
    s.fichiers.chemins = {std::string("/d/arrete.rtf")};
    s.panneau.arretApres = 0;
    EXPECT_FALSE(l.EcritRecapitulation(false, true));
    EXPECT_FALSE(fs.existe("/d/arrete.rtf"));
}
