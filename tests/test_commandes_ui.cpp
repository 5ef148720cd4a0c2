// The exchange and maintenance commands of the main window over scripted
// boxes, dialogs and progress panel: what each does on Yes and on No, that a
// cancelled dialog changes nothing, that a stopped import leaves no half
// base, that every command refuses while another runs; and the rules of the
// selective export form and of the control's report.
#include "exchange/geneanet.h"
#include "exchange/svr.h"
#include "store/fichier_memoire.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/commandes_communes.h"
#include "ui/frm_controle.h"
#include "ui/frm_exporter.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace sylvane;
using test::ServicesFaux;

namespace {

// A GEDCOM of n persons born in falling years (so unsorted), two of them
// married with a child.
std::string Gedcom(int n) {
    std::string g = "0 HEAD\r\n1 CHAR ANSI\r\n";
    for (int i = 1; i <= n; ++i)
        g += "0 @I" + std::to_string(i) + "@ INDI\r\n1 NAME Jean" + std::to_string(i) +
             " /Martin/\r\n1 SEX " + (i % 2 ? "M" : "F") + "\r\n1 BIRT\r\n2 DATE " +
             std::to_string(1990 - i) + "\r\n";
    g += "0 @F1@ FAM\r\n1 HUSB @I1@\r\n1 WIFE @I2@\r\n1 CHIL @I3@\r\n0 TRLR\r\n";
    return g;
}

struct Commandes : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire r;
    Application app{fs, r, "/prog"};
    ServicesFaux s;
    MDIForm1 f{app, s.ui()};
    std::uint32_t pere = 0, mere = 0, fils = 0, fille = 0, petit = 0;

    void SetUp() override { app.Demarre(); }
    void TearDown() override { app.Termine(); }

    // Jean x Marie -> Paul, Anne; Paul's son Luc. Open at /d/famille.sv2,
    // committed, Paul the current person.
    Base& Famille() {
        app.NouvelleBase("/d/famille.sv2");
        Base& b = app.base();
        pere = b.CreePersonne("Martin", "Jean", "", 'H', "1900");
        mere = b.CreePersonne("Durand", "Marie", "", 'F', "1902");
        b.CreeMariage(pere, mere, "1925");
        fils = b.CreePersonne("Martin", "Paul", "", 'H', "1930");
        fille = b.CreePersonne("Martin", "Anne", "", 'F', "1932");
        petit = b.CreePersonne("Martin", "Luc", "", 'H', "1960");
        for (auto [enfant, p, m] : {std::tuple{fils, pere, mere}, std::tuple{fille, pere, mere},
                                    std::tuple{petit, fils, 0u}}) {
            b.EcritPere(enfant, p);
            b.MajEnfants(p, enfant, 'A');
            if (m) {
                b.EcritMere(enfant, m);
                b.MajEnfants(m, enfant, 'A');
            }
        }
        b.ValideBase();
        f.Aller(fils);
        return b;
    }
    std::vector<std::string> Dossier() {
        auto l = fs.lister("/d");
        std::sort(l.begin(), l.end());
        return l;
    }
    void Reponses(std::initializer_list<Reponse> r) { s.boites.reponses = r; }
    void Chemins(std::initializer_list<std::optional<std::string>> c) { s.fichiers.chemins = c; }
};

} // namespace

TEST_F(Commandes, EveryCommandRefusesWhileAnOperationRuns) {
    Famille();
    const std::string avant = lireTout(fs, "/d/famille.sv2");
    s.panneau.visible = true;
    using Cmd = bool (*)(MDIForm1&);
    for (Cmd c : {Cmd{CmdSauvegarde}, Cmd{CmdRestauration}, Cmd{CmdIntegrerSylvane},
                  Cmd{CmdGeneanet}, Cmd{CmdReorganiser}, Cmd{CmdControle}, Cmd{CmdRePMinMaj},
                  Cmd{CmdRepPrenom}})
        EXPECT_FALSE(c(f));
    EXPECT_FALSE(CmdImporter(f, "/d/x.ged"));
    FrmExporter e(f);
    e.CmdSelection();
    app.parametres().auteur = "A";
    EXPECT_FALSE(e.CmdLancer());
    EXPECT_EQ(s.boites.informations, std::vector<int>(10, 503));
    EXPECT_TRUE(s.boites.questions.empty());
    EXPECT_TRUE(s.fichiers.titres.empty());
    app.base().Abandonne();
    EXPECT_EQ(lireTout(fs, "/d/famille.sv2"), avant);
}

TEST_F(Commandes, GedcomImportMakesTheBaseAndOpensIt) {
    ecrireTout(fs, "/d/x.ged", Gedcom(5));
    for (Reponse rep : {Reponse::Oui, Reponse::Non}) {
        fs.supprimer("/d/x.sv2");
        Chemins({"/d/x.ged", "/d/x.sv2"});
        Reponses({rep, rep});
        s.boites.questions.clear();
        ASSERT_TRUE(CmdImporter(f));
        ASSERT_TRUE(app.BaseOuverte());
        EXPECT_EQ(app.base().Chemins().base, "/d/x.sv2");
        EXPECT_EQ(app.base().Tete().nbPersonnes, 5u);
        EXPECT_EQ(app.base().LitPere(3), 1u);
        // Sort at once, then the keyword lists: asked in that order.
        EXPECT_EQ(s.boites.questions, (std::vector<int>{720, 721}));
        EXPECT_FALSE(s.panneau.visible);
    }
    EXPECT_EQ(s.fichiers.titres, (std::vector<int>{837, 542, 837, 542}));
}

TEST_F(Commandes, CancelledDialogsChangeNothing) {
    Famille();
    ecrireTout(fs, "/d/x.ged", Gedcom(3));
    const auto avant = Dossier();
    Chemins({std::nullopt});
    EXPECT_FALSE(CmdImporter(f));
    Chemins({"/d/x.ged", std::nullopt});
    EXPECT_FALSE(CmdImporter(f));
    EXPECT_FALSE(CmdImporter(f, "/d/x.ged"));
    for (auto c : {CmdSauvegarde, CmdRestauration, CmdIntegrerSylvane, CmdGeneanet}) {
        Chemins({std::nullopt});
        EXPECT_FALSE(c(f));
    }
    // The questions of the maintenance commands, cancelled.
    for (auto c : {CmdReorganiser, CmdControle}) {
        Reponses({Reponse::Annuler});
        EXPECT_FALSE(c(f));
    }
    FrmExporter e(f);
    e.CmdSelection();
    app.parametres().auteur = "A";
    Chemins({std::nullopt});
    EXPECT_FALSE(e.CmdLancer());
    EXPECT_EQ(e.Compte(), 2u); // the selection stays for another try
    EXPECT_EQ(Dossier(), avant);
    ASSERT_TRUE(app.BaseOuverte());
    EXPECT_EQ(app.base().Chemins().base, "/d/famille.sv2");
    EXPECT_FALSE(app.base().Modifiee());
    EXPECT_TRUE(s.fenetres.ouvertes.empty());
}

TEST_F(Commandes, AStoppedImportLeavesNoBaseAndAnOldOneWhole) {
    ecrireTout(fs, "/d/x.ged", Gedcom(450));
    // Nothing at the target before: nothing after.
    s.panneau.arretApres = 0;
    Chemins({"/d/x.ged", "/d/x.sv2"});
    EXPECT_FALSE(CmdImporter(f));
    EXPECT_EQ(Dossier(), std::vector<std::string>{"x.ged"});
    EXPECT_FALSE(app.BaseOuverte());
    EXPECT_EQ(s.boites.informations, std::vector<int>{3404});
    // A base at the target, even the open one: it stays as it was.
    Famille();
    app.base().ValideBase();
    const std::string avant = lireTout(fs, "/d/famille.sv2");
    s.panneau.arretApres = 1;
    Chemins({"/d/x.ged", "/d/famille.sv2"});
    EXPECT_FALSE(CmdImporter(f));
    EXPECT_EQ(lireTout(fs, "/d/famille.sv2"), avant);
    EXPECT_EQ(Dossier(), (std::vector<std::string>{"famille.sv2", "x.ged"}));
    // The exchange file: the same.
    s.panneau.arretApres = -1;
    app.OuvreBase("/d/famille.sv2");
    Selection sel(app.base());
    sel.SelectionneTout();
    ExporteSvr(app.base(), sel, app.parametres(), fs, "/d/y.svr");
    for (int i = 0; i < 300; ++i) app.base().CreePersonne("Nom", "P", "", 'H', "1800");
    sel.SelectionneTout();
    ExporteSvr(app.base(), sel, app.parametres(), fs, "/d/grand.svr");
    app.base().Abandonne();
    app.FermeBase();
    s.panneau.arretApres = 0;
    Chemins({"/d/grand.svr", "/d/grand.sv2"});
    EXPECT_FALSE(CmdImporter(f));
    EXPECT_FALSE(fs.existe("/d/grand.sv2"));
    EXPECT_FALSE(fs.existe("/d/~grand.sv2"));
    // Run to its end, the same file gives the base.
    s.panneau.arretApres = -1;
    Chemins({"/d/y.sv2"});
    ASSERT_TRUE(CmdImporter(f, "/d/y.svr"));
    EXPECT_EQ(app.base().Tete().nbPersonnes, 5u);
}

TEST_F(Commandes, BackupIsTheCommittedBaseAndNeverTheBaseItself) {
    Base& b = Famille();
    b.CreePersonne("Neuf", "Non", "", 'F', "1990"); // not committed yet
    Chemins({"/d/famille.sv2"});
    EXPECT_FALSE(CmdSauvegarde(f));
    EXPECT_EQ(s.boites.informations, std::vector<int>{3401});
    Chemins({"/d/copie.sav"});
    ASSERT_TRUE(CmdSauvegarde(f));
    EXPECT_EQ(s.fichiers.titres.back(), 41);
    EXPECT_EQ(lireTout(fs, "/d/copie.sav"), lireTout(fs, "/d/famille.sv2"));
    EXPECT_FALSE(b.Modifiee());
}

TEST_F(Commandes, RestoreAsksBeforeReplacingAndOpensTheCopy) {
    Base& b = Famille();
    Chemins({"/d/famille.sav"});
    ASSERT_TRUE(CmdSauvegarde(f));
    b.CreePersonne("Apres", "Copie", "", 'H', "1999");
    b.ValideBase();
    const std::string plus = lireTout(fs, "/d/famille.sv2");
    // No keeps the base, open, as it was.
    Chemins({"/d/famille.sav"});
    Reponses({Reponse::Non});
    EXPECT_FALSE(CmdRestauration(f));
    EXPECT_EQ(s.boites.questions, std::vector<int>{kMessageLibre});
    EXPECT_EQ(lireTout(fs, "/d/famille.sv2"), plus);
    ASSERT_TRUE(app.BaseOuverte());
    // Yes puts the copy back and opens it.
    Chemins({"/d/famille.sav"});
    Reponses({Reponse::Oui});
    ASSERT_TRUE(CmdRestauration(f));
    ASSERT_TRUE(app.BaseOuverte());
    EXPECT_EQ(app.base().Chemins().base, "/d/famille.sv2");
    EXPECT_EQ(app.base().Tete().nbPersonnes, 5u);
    EXPECT_EQ(s.fichiers.titres, (std::vector<int>{41, 836, 836}));
    // A copy with no base of its name: no question.
    CopieFichier(fs, "/d/famille.sav", "/d/autre.sav");
    s.boites.questions.clear();
    Chemins({"/d/autre.sav"});
    ASSERT_TRUE(CmdRestauration(f));
    EXPECT_TRUE(s.boites.questions.empty());
    EXPECT_EQ(app.base().Chemins().base, "/d/autre.sv2");
}

TEST_F(Commandes, IntegrationAddsTheFileBehindTheBase) {
    Base& b = Famille();
    Selection sel(b);
    sel.SelectionneTout();
    ExporteSvr(b, sel, app.parametres(), fs, "/d/autre.svr");
    Chemins({"/d/autre.svr"});
    ASSERT_TRUE(CmdIntegrerSylvane(f));
    EXPECT_EQ(app.base().Tete().nbPersonnes, 10u);
    // The second Luc is the son of the second Paul.
    std::uint32_t luc2 = 0;
    for (std::uint32_t n = petit + 1; n <= app.base().Tete().maxPersonne; ++n)
        if (app.base().LitPrenom(n) == "Luc") luc2 = n;
    ASSERT_NE(luc2, 0u);
    EXPECT_NE(app.base().LitPere(luc2), fils);
    EXPECT_EQ(app.base().LitPrenom(app.base().LitPere(luc2)), "Paul");
    EXPECT_EQ(s.fichiers.titres, std::vector<int>{541});
    // A damaged file: the reason in a box, the panel gone, the base open.
    ecrireTout(fs, "/d/casse.svr", "[Sylvane Version 2001.0]\r\n[INDIVIDUS]\r\n 1 \r\n");
    Chemins({"/d/casse.svr"});
    EXPECT_FALSE(CmdIntegrerSylvane(f));
    EXPECT_EQ(s.boites.textes.size(), 1u);
    EXPECT_FALSE(s.panneau.visible);
    EXPECT_TRUE(app.BaseOuverte());
}

TEST_F(Commandes, GeneanetAsksForTheToolThenReportsItsFailure) {
    Famille();
    // No tool in the default folder: its place is asked, and remembered.
    Chemins({"/outils/ged2gen.pl"});
    ecrireTout(fs, "/outils/ged2gen.pl", "");
    EXPECT_FALSE(CmdGeneanet(f)); // no such folder on this machine: the tool can't start
    EXPECT_EQ(app.parametres().geneanet, "/outils");
    EXPECT_EQ(s.boites.textes, std::vector<std::string>{kErreurAppelGeneanet});
    EXPECT_FALSE(fs.existe("/outils/famille.ged"));
    // Found there now: no dialog.
    s.fichiers.titres.clear();
    EXPECT_FALSE(CmdGeneanet(f));
    EXPECT_TRUE(s.fichiers.titres.empty());
}

TEST_F(Commandes, AToolsErrorFileShowsItsBeginningOnly) {
    // A runaway report of an outside tool: the box shows its first 64 KB.
    ecrireTout(fs, "/outils/famille.err", "Ligne 3 : erreur\r\n" + std::string(1 << 20, 'x'));
    OperationLongue op(s.panneau, s.boites, "Export");
    DialogueUi(s.boites, op, fs).montreFichier("/outils/famille.err");
    ASSERT_EQ(s.boites.textes.size(), 1u);
    EXPECT_EQ(s.boites.textes[0].rfind("Ligne 3 : erreur\r\n", 0), 0u);
    EXPECT_EQ(s.boites.textes[0].size(), 64u * 1024 + 5);
    // A missing one is a message, not a crash.
    DialogueUi(s.boites, op, fs).montreFichier("/outils/absent.err");
    EXPECT_EQ(s.boites.textes.size(), 2u);
}

TEST_F(Commandes, ReorganisationRenumbersAndFollowsTheCurrentPerson) {
    Base& b = Famille();
    // Only the family view may be open.
    s.fenetres.Ouvre("FrmDebut");
    s.fenetres.Ouvre("FrmParametre");
    EXPECT_FALSE(CmdReorganiser(f));
    EXPECT_EQ(s.boites.informations, std::vector<int>{544});
    s.fenetres.ouvertes = {"FrmDebut"};
    // No: no copy.
    app.numeros().deCujus1.deCujus = petit;
    Reponses({Reponse::Non});
    ASSERT_TRUE(CmdReorganiser(f));
    EXPECT_FALSE(fs.existe("/d/famille.sav"));
    // In sort order Anne, Jean, Luc, Paul (Martin), then Marie Durand first.
    EXPECT_EQ(b.LitPrenom(f.PersonneEnCours()), "Paul");
    EXPECT_EQ(b.LitPrenom(app.numeros().deCujus1.deCujus), "Luc");
    EXPECT_TRUE(app.numeros().deCujus1.Calculee());
    EXPECT_EQ(b.TriFiche(1), 1u);
    // Yes: the copy first.
    Reponses({Reponse::Oui});
    ASSERT_TRUE(CmdReorganiser(f));
    EXPECT_TRUE(fs.existe("/d/famille.sav"));
    EXPECT_EQ(s.boites.questions, (std::vector<int>{842, 842}));
    EXPECT_EQ(s.panneau.titres.size(), s.panneau.textes.size());
}

TEST_F(Commandes, ControlRepairsShowsItsReportAndCopiesOnYes) {
    Base& b = Famille();
    b.MajEnfants(pere, fille, 'S'); // a child missing from her father's list
    b.ValideBase();
    Reponses({Reponse::Non});
    ASSERT_TRUE(CmdControle(f));
    EXPECT_FALSE(fs.existe("/d/famille.sav"));
    EXPECT_EQ(s.fenetres.ouvertes, std::vector<std::string>{"FrmControle"});
    FrmControle form;
    ASSERT_EQ(form.Lignes().size(), 1u);
    EXPECT_NE(form.Lignes()[0].find("Anne"), std::string::npos);
    EXPECT_EQ(b.EnfantNo(pere, 2), fille);
    // A sound base: an empty report, still shown; Yes makes the copy.
    int avis = 0;
    FrmControle::Avis() = [&] { ++avis; };
    Reponses({Reponse::Oui});
    ASSERT_TRUE(CmdControle(f));
    FrmControle::Avis() = nullptr;
    EXPECT_TRUE(fs.existe("/d/famille.sav"));
    EXPECT_EQ(avis, 1);
    form.Recharge();
    EXPECT_TRUE(form.Lignes().empty());
    // The report saved elsewhere.
    FrmControle::Publie({true, "Ligne 1\r\nLigne 2\r\n", "/t/f.txt"});
    form.Recharge();
    Chemins({"/d/rapport.txt"});
    ASSERT_TRUE(form.EnregistreSous(s.fichiers, s.boites, fs));
    EXPECT_EQ(lireTout(fs, "/d/rapport.txt"), "Ligne 1\r\nLigne 2\r\n");
    Chemins({std::nullopt});
    EXPECT_FALSE(form.EnregistreSous(s.fichiers, s.boites, fs));
}

TEST_F(Commandes, RepairsOfNamesAndFirstNames) {
    Base& b = Famille();
    app.parametres().conversionNom = "1";
    ASSERT_TRUE(CmdRePMinMaj(f));
    EXPECT_EQ(b.LitNom(fils), "MARTIN");
    EXPECT_EQ(s.panneau.titres.front(), sylvane::Message(546));
    EXPECT_FALSE(s.panneau.visible);
    // A stop at once changes no one.
    app.parametres().conversionNom = "0";
    app.parametres().conversionPrenom = "1";
    s.panneau.arretApres = 0;
    EXPECT_TRUE(CmdRePMinMaj(f));
    EXPECT_EQ(b.LitPrenom(fils), "Paul");
    s.panneau.arretApres = -1;
    // First names: 920 is asked when the rubric has its keyword list; No
    // is a cancel and leaves every note.
    b.EcritNote(fils, "");
    const std::string note = b.LitNote(fils);
    long questions = 0;
    for (Reponse rep : {Reponse::Non, Reponse::Oui}) {
        Reponses({rep});
        const bool fait = CmdRepPrenom(f);
        questions = static_cast<long>(s.boites.questions.size());
        if (questions == 0) { // no keyword list: no question, the notes rebuilt
            EXPECT_TRUE(fait);
            break;
        }
        EXPECT_EQ(s.boites.questions.back(), 920);
        EXPECT_EQ(fait, rep == Reponse::Oui);
        if (rep == Reponse::Non) {
            EXPECT_EQ(b.LitNote(fils), note);
        }
    }
    EXPECT_NE(b.LitNote(fils), note);
}

// --- The selective export form --------------------------------------------------

TEST_F(Commandes, ExportSelectionsAddUpFromThePersonShown) {
    Famille();
    FrmExporter e(f);
    EXPECT_EQ(e.Personne(), fils);
    EXPECT_FALSE(e.LancerPossible());
    // Paul's descendants: Paul and Luc.
    EXPECT_EQ(e.CmdSelection(), 2u);
    EXPECT_TRUE(e.LancerPossible());
    // Then Anne's ascendants, added: Anne, Jean and Marie.
    e.DefinitPersonne(fille);
    e.choix = FrmExporter::Choix::Ascendants;
    EXPECT_EQ(e.CmdSelection(), 5u);
    EXPECT_EQ(e.LblFiche(), sylvane::Message(565) + " 5");
    // The list in sort order; include and exclude.
    auto liste = e.CmdListe();
    ASSERT_EQ(liste.size(), 5u);
    auto tries = liste;
    std::sort(tries.begin(), tries.end());
    EXPECT_EQ(tries, (std::vector<std::uint32_t>{pere, mere, fils, fille, petit}));
    EXPECT_EQ(liste.front(), app.base().TriFiche(1));
    e.Exclut(petit);
    EXPECT_EQ(e.Compte(), 4u);
    e.Inclut(petit);
    e.Inclut(9999); // no such person: nothing
    EXPECT_EQ(e.Compte(), 5u);
    e.Efface();
    EXPECT_FALSE(e.LancerPossible());
    // The whole base; a picker answer; a cancelled picker keeps the person.
    e.choix = FrmExporter::Choix::Tout;
    EXPECT_EQ(e.CmdSelection(), 5u);
    s.selecteur.reponses = {mere, 0};
    EXPECT_TRUE(e.ChoisitPersonne());
    EXPECT_FALSE(e.ChoisitPersonne());
    EXPECT_EQ(e.Personne(), mere);
    EXPECT_EQ(e.EtiNom(), app.base().NomDates(mere));
}

TEST_F(Commandes, ExportRunsToItsFileThenClears) {
    Famille();
    FrmExporter e(f);
    e.CmdSelection(); // Paul and Luc
    // A GEDCOM needs its submitter.
    EXPECT_FALSE(e.CmdLancer());
    EXPECT_EQ(s.boites.informations, std::vector<int>{kExporterAuteur});
    EXPECT_TRUE(s.fichiers.titres.empty());
    app.parametres().adresse[3] = "Rue";
    // Never over the base.
    Chemins({"/d/famille.sv2"});
    EXPECT_FALSE(e.CmdLancer());
    EXPECT_EQ(s.boites.informations.back(), kExporterSurBase);
    Chemins({"/d/sortie.ged"});
    e.jeu = '1';
    ASSERT_TRUE(e.CmdLancer());
    const std::string ged = lireTout(fs, "/d/sortie.ged");
    EXPECT_NE(ged.find("1 NAME Paul /Martin/"), std::string::npos);
    EXPECT_EQ(ged.find("Jean /Martin/"), std::string::npos);
    EXPECT_EQ(e.Compte(), 0u);
    // The exchange file needs no submitter.
    app.parametres().adresse[3].clear();
    e.format = FrmExporter::Format::Svr;
    e.choix = FrmExporter::Choix::Tout;
    e.CmdSelection();
    Chemins({"/d/sortie.svr"});
    ASSERT_TRUE(e.CmdLancer());
    EXPECT_EQ(lireTout(fs, "/d/sortie.svr").rfind(kBanniereSvr, 0), 0u);
    EXPECT_EQ(s.fichiers.titres.back(), 541);
    // The base closed under the form: the marks go with it.
    e.CmdSelection();
    f.Execute(Commande::MnuFermer);
    EXPECT_FALSE(e.LancerPossible());
    EXPECT_EQ(e.CmdSelection(), 0u);
    EXPECT_TRUE(e.CmdListe().empty());
}
