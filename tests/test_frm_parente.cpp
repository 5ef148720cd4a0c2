// The relationship windows' logic over the scripted services: the
// selection and its refusals, the searches handing a graph on, the
// related persons' menu, the cousinage rows and the branch outputs.
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/pages_textes.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/frm_listes.h"
#include "ui/frm_parente.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

// A x B -> C, D;  C x E -> F;  G x D -> H;  X a stranger.
struct Selection : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;
    std::uint32_t A, B, C, D, E, F, G, H, X;

    void SetUp() override {
        DefinitMessages({{768, "Descendants de &1"},
                         {760, "Generation "},
                         {764, "fils de &1"},
                         {765, "fille de &1"},
                         {769, "conjoint : &1"},
                         {570, "Le"},
                         {592, "Parents"},
                         {579, "Conjoints"},
                         {666, "Enfants"},
                         {910, "Freres"},
                         {4500, "Ascendance de &1"},
                         {589, "Trop :"},
                         {590, "254 au plus."}});
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(
            app, ServicesUi{s.boites, s.fichiers, s.panneau, s.fenetres, s.selecteur});
        A = P("Aubert", "Adrien", 'H', "1850");
        B = P("Bernard", "Berthe", 'F', "1852");
        b().CreeMariage(A, B);
        C = Enfant(A, B, "Charles", 'H', "1900");
        D = Enfant(A, B, "Denise", 'F', "1902");
        E = P("Etienne", "Emma", 'F', "1901");
        b().CreeMariage(C, E);
        F = Enfant(C, E, "Fernand", 'H', "1925");
        G = P("Girard", "Gaston", 'H', "1898");
        b().CreeMariage(G, D);
        H = Enfant(G, D, "Helene", 'F', "1927");
        X = P("Xavier", "Xeno", 'H', "1930");
        app.definitPersonneEnCours(F);
    }
    void TearDown() override { DefinitMessages({}); }

    Base& b() { return app.base(); }
    std::uint32_t P(const char* nom, const char* prenom, char sexe, const char* an) {
        return b().CreePersonne(nom, prenom, "", sexe, an);
    }
    std::uint32_t Enfant(std::uint32_t pere, std::uint32_t mere, const char* prenom, char sexe,
                         const char* an) {
        const std::uint32_t c = P("Aubert", prenom, sexe, an);
        b().EcritPere(c, pere);
        b().MajEnfants(pere, c, 'A');
        b().EcritMere(c, mere);
        b().MajEnfants(mere, c, 'A');
        return c;
    }
};

TEST_F(Selection, GridRefusalsAndSearches) {
    FrmRechAscendant r(*f);
    ASSERT_EQ(r.Grille().size(), 1u) << "starts with the person in course";
    EXPECT_EQ(r.Grille()[0].personne, F);
    EXPECT_EQ(r.generations, 10);
    // The picker adds at the head; a person already there is refused.
    s.selecteur.reponses = {H, F};
    r.CmdRechercher();
    r.CmdRechercher();
    ASSERT_EQ(r.Grille().size(), 2u);
    EXPECT_EQ(r.Grille()[0].personne, H);
    EXPECT_EQ(s.boites.informations, std::vector<int>{588});
    // First cousins: the grandparents, handed on in number order.
    auto d = r.CmdAscCom();
    ASSERT_TRUE(d);
    EXPECT_EQ(d->mode, 'A');
    EXPECT_EQ(d->liste, (std::vector<std::uint32_t>{A, B, F, H}));
    EXPECT_FALSE(s.panneau.visible) << "the panel goes with the search";
    d = r.CmdFiliation();
    ASSERT_TRUE(d);
    EXPECT_EQ(d->liste, (std::vector<std::uint32_t>{H, F}));
    // Nothing in common: 695; no descendants: 696; empty: 555.
    s.boites.informations.clear();
    r.Ajoute(X);
    EXPECT_FALSE(r.CmdAscCom());
    EXPECT_FALSE(r.CmdDescCom());
    for (int i = 0; i < 3; ++i) r.CmdEcarter(0);
    EXPECT_FALSE(r.CmdAscCom());
    EXPECT_EQ(s.boites.informations, (std::vector<int>{695, 696, 555}));
    // While another operation runs, 503.
    r.Ajoute(F);
    s.panneau.visible = true;
    EXPECT_FALSE(r.CmdAscCom());
    EXPECT_EQ(s.boites.informations.back(), 503);
}

TEST_F(Selection, GraphMenuAndCousinages) {
    FrmParenteVisu v(*f, DemandeGraphe{{A, B, F, H}, 'A', 10});
    ASSERT_TRUE(v.Charge());
    EXPECT_FALSE(v.Refus());
    EXPECT_EQ(v.Titre(), "Descendants de " + b().NomComplet(A));
    GrapheParente& g = *v.Graphe();
    EXPECT_EQ(g.NbNoeuds(), 6u);
    const auto menu = v.MenuProches(g.NoeudDe(F));
    ASSERT_FALSE(menu.empty());
    EXPECT_EQ(menu[0].texte, "Parents");
    EXPECT_EQ(menu[0].personne, 0u);
    EXPECT_EQ(menu[1].texte, "* " + b().NomComplet(C)) << "C is drawn";
    EXPECT_EQ(menu[2].texte, b().NomComplet(E)) << "E is not";

    FrmRechAscendant r(*f);
    r.Ajoute(H);
    r.BasculeMarque(1); // F is the subject
    EXPECT_EQ(r.Comparaison(), std::to_string(H));
    const auto lignes = r.CmdAscComMult();
    ASSERT_TRUE(lignes);
    ASSERT_EQ(lignes->size(), 1u);
    EXPECT_EQ((*lignes)[0].mari, A);
    EXPECT_TRUE(fs.existe(app.parametres().DossierTravail() + "Cousinage.txt"));
}

TEST_F(Selection, HandOffsBetweenWindows) {
    // A search hands its persons to the selection: those already there
    // are passed over without a box, and the slot is emptied.
    FrmRechAscendant r(*f);
    ParenteTransmise().liste = Pack4(F) + Pack4(H) + Pack4(X);
    EXPECT_EQ(r.RecoitTransfert(), 2u);
    EXPECT_TRUE(s.boites.informations.empty());
    EXPECT_EQ(r.Grille().size(), 3u);
    EXPECT_TRUE(ParenteTransmise().liste.empty());
    EXPECT_EQ(r.RecoitTransfert(), 0u);

    // A graph goes through the same slot, once; a list without depth
    // takes the setting.
    TransmetGraphe(DemandeGraphe{{A, F}, 'D', 4});
    auto d = DemandeTransmise(*f);
    ASSERT_TRUE(d);
    EXPECT_EQ(d->liste, (std::vector<std::uint32_t>{A, F}));
    EXPECT_EQ(d->mode, 'D');
    EXPECT_EQ(d->generations, 4);
    EXPECT_FALSE(DemandeTransmise(*f));
    ParenteTransmise().liste = Pack4(C) + "xy"; // a broken tail is dropped
    d = DemandeTransmise(*f);
    ASSERT_TRUE(d);
    EXPECT_EQ(d->liste, std::vector<std::uint32_t>{C});
    EXPECT_EQ(d->generations, 10);
}

TEST_F(Selection, CousinageRowsShownSortedRemovedWritten) {
    FrmRechAscendant r(*f);
    r.Ajoute(H);
    r.BasculeMarque(1);
    const auto lignes = r.CmdAscComMult();
    ASSERT_TRUE(lignes);
    auto deux = *lignes;
    deux.push_back(deux[0]);
    deux[0].lieu = "rouen";
    deux[1].lieu = "caen";
    deux[1].cle = "0#" + std::to_string(G) + "#garbage#" + std::to_string(G) + "#";
    FrmParenteAsc a(*f, {deux, r.Comparaison(), r.Sujets(), r.Selection()});
    a.CmdTriLieu();
    EXPECT_EQ(a.Lignes()[0].lieu, "caen");
    // The key of a row makes the graph's list: the couple then its
    // persons, each once, what is not a number passed over.
    auto d = a.CmdAfficher(1);
    ASSERT_TRUE(d);
    ASSERT_EQ(d->liste.size(), 4u);
    EXPECT_EQ(d->liste[0], A);
    EXPECT_EQ(d->liste[1], B);
    EXPECT_EQ(d->mode, 'A');
    EXPECT_EQ(a.CmdAfficher(0)->liste, std::vector<std::uint32_t>{G});
    EXPECT_FALSE(a.CmdAfficher(2));
    s.fichiers.chemins = {std::string("/d/cousins.htm")};
    EXPECT_TRUE(a.CmdHtml());
    const std::string page = lireTout(fs, "/d/cousins.htm");
    EXPECT_NE(page.find(b().NomComplet(H)), std::string::npos);
    EXPECT_NE(page.find("* " + b().NomComplet(F)), std::string::npos) << "the subject marked";
    a.CmdEcarter(0);
    a.CmdEcarter(5);
    EXPECT_EQ(a.Lignes().size(), 1u);
}

TEST_F(Selection, BranchWindows) {
    FrmBranche asc(*f, false);
    ASSERT_TRUE(asc.Outline());
    EXPECT_EQ(asc.Titre(), "Ascendance de " + b().NomComplet(F));
    asc.Developpe(0, 2);
    EXPECT_EQ(asc.Outline()->Lignes().size(), 5u);
    s.fichiers.chemins = {std::string("/d/branche.htm"), std::nullopt};
    EXPECT_TRUE(asc.EcritHtml());
    EXPECT_NE(lireTout(fs, "/d/branche.htm").find(b().NomComplet(C)), std::string::npos);
    EXPECT_FALSE(asc.EcritRtf()) << "cancelled";
    app.definitPersonneEnCours(0);
    FrmBranche vide(*f, true);
    EXPECT_FALSE(vide.Outline());
}

// The pages of "Spécial cousinages": one per selected person, named after
// it, each holding the couples where that person's line meets another's.
TEST_F(Selection, SpecialCousinagesWriteAPagePerPerson) {
    FrmRechAscendant r(*f);
    r.Ajoute(H);
    r.Ajoute(X);
    // A name that can't stand as it is in a file name, and a namesake.
    const std::uint32_t Y = P("Aubert/..", "Yves", 'H', "1930");
    const std::uint32_t Z = P("Aubert/..", "Yves", 'H', "1931");
    r.Ajoute(Y);
    r.Ajoute(Z);
    const std::string d = app.parametres().DossierTravail();
    s.panneau.textes.clear();
    const auto pages = r.CmdSpecial();
    ASSERT_TRUE(pages);
    ASSERT_EQ(pages->size(), 5u);
    EXPECT_FALSE(s.panneau.visible);
    EXPECT_EQ(s.boites.informations.back(), msg_parente::PagesEcrites);
    EXPECT_NE(std::find(s.panneau.textes.begin(), s.panneau.textes.end(),
                        "Analyse Ascendance " + b().NomComplet(H)),
              s.panneau.textes.end());
    std::vector<std::string> noms;
    for (const PageCousinage& p : *pages) {
        EXPECT_EQ(p.fichier.find_first_of(" /\\"), std::string::npos) << p.fichier;
        EXPECT_TRUE(fs.existe(d + p.fichier)) << p.fichier;
        noms.push_back(p.fichier);
        const std::size_t attendu = p.personne == F || p.personne == H ? 1 : 0;
        EXPECT_EQ(p.cousinages, attendu) << p.fichier;
    }
    std::sort(noms.begin(), noms.end());
    EXPECT_EQ(std::unique(noms.begin(), noms.end()), noms.end())
        << "namesakes get pages of their own";
    // The blanks of the name become dots.
    std::string attendu = b().NomComplet(F);
    std::replace(attendu.begin(), attendu.end(), ' ', '.');
    const std::string pageF = lireTout(fs, d + attendu + ".htm");
    EXPECT_NE(pageF.find("<TITLE>Cousinages "), std::string::npos);
    EXPECT_NE(pageF.find("* " + b().NomComplet(F)), std::string::npos) << "F alone is the subject";
    EXPECT_EQ(pageF.find("* " + b().NomComplet(H)), std::string::npos);
    EXPECT_NE(pageF.find(b().NomComplet(H)), std::string::npos);
    EXPECT_TRUE(fs.existe(d + "Sylvane.css"));

    // A write that fails, at any point: the error's box, no result, and
    // every page there is whole (a temporary may stay while the disk
    // refuses even its removal; the next writer reuses it).
    for (long n = 1; n < 20; ++n) {
        s.boites.textes.clear();
        fs.echouerApres(n, true);
        const auto r2 = r.CmdSpecial();
        const bool panne = fs.enPanne();
        fs.retablir();
        if (!panne) break;
        EXPECT_FALSE(r2) << n;
        EXPECT_EQ(s.boites.textes.size(), 1u) << n;
        for (const auto& [chemin, contenu] : fs.fichiers()) {
            if (chemin.find("/~") == std::string::npos && chemin.size() > 4 &&
                chemin.compare(chemin.size() - 4, 4, ".htm") == 0) {
                EXPECT_TRUE(fs.contenu(chemin).ends_with("</HTML>\r\n")) << chemin;
            }
        }
    }

    // Stopped at once: no result, no box.
    s.boites.informations.clear();
    s.panneau.arretApres = 0;
    EXPECT_FALSE(r.CmdSpecial());
    EXPECT_TRUE(s.boites.informations.empty());
}

// "Tableaux": a page per selected person with what it shares with each
// other one, and the ranking of all in "Tableau.htm" and "Tableau.txt".
TEST_F(Selection, CousinageTablesRankThePersons) {
    FrmRechAscendant r(*f);
    r.Ajoute(H);
    r.Ajoute(X);
    // Named as the ranking is: its page goes beside it.
    const std::uint32_t T = P("Tableau", "", 'H', "1930");
    r.Ajoute(T);
    const auto lignes = r.CmdAscComMult();
    ASSERT_TRUE(lignes);
    FrmParenteAsc a(*f, {*lignes, r.Comparaison(), r.Sujets(), r.Selection()});
    std::string ouverte;
    a.ouvreNavigateur = [&](const std::string& p) { ouverte = p; };
    s.boites.reponses = {Reponse::Oui};
    const auto pages = a.CmdCousinage();
    ASSERT_TRUE(pages);
    ASSERT_EQ(pages->size(), 4u);
    EXPECT_NE((*pages)[0].fichier, "Tableau.htm");
    const std::string d = app.parametres().DossierTravail();
    EXPECT_EQ(ouverte, d + "Tableau.htm");
    const std::string page = lireTout(fs, d + (*pages)[3].fichier);
    ASSERT_EQ((*pages)[3].personne, F);
    EXPECT_NE(page.find("<H3>1 Cousinages <BR>"), std::string::npos);
    EXPECT_NE(page.find("<TR><TD>" + b().NomComplet(H) + "</TD><TH>1</TH></TR>"),
              std::string::npos);
    const std::string tableau = lireTout(fs, d + "Tableau.htm");
    EXPECT_NE(tableau.find("Classement des Cousinages"), std::string::npos);
    // H and F share the first rank, X comes third.
    const std::string txt = lireTout(fs, d + "Tableau.txt");
    EXPECT_LT(txt.find(b().LitNom(H) + " (" + b().LitPrenom(H) + ")"), txt.find("Xavier (Xeno)"));
    EXPECT_NE(txt.find(";1;1\r\n"), std::string::npos);
    EXPECT_NE(
        txt.find("Xavier (Xeno);" + (*pages)[1].fichier + ";" + b().NomComplet(X) + ";0;3\r\n"),
        std::string::npos);
    EXPECT_NE(tableau.find("<A HREF=\"" + (*pages)[1].fichier + "\">"), std::string::npos);
}

// The graph's reports list it level by level with its links; the branch
// prints its open lines on as many pages as they take.
TEST_F(Selection, GraphReportsAndBranchPrinting) {
    FrmParenteVisu v(*f, DemandeGraphe{{A, B, F, H}, 'A', 10});
    ASSERT_TRUE(v.Charge());
    s.fichiers.chemins = {std::string("/d/g/graphe.htm"), std::string("/d/g/graphe.rtf")};
    ASSERT_TRUE(v.EcritHtml());
    ASSERT_TRUE(v.EcritRtf());
    const std::string htm = lireTout(fs, "/d/g/graphe.htm");
    EXPECT_TRUE(fs.existe("/d/g/Sylvane.css"));
    EXPECT_LT(htm.find("Generation 1"), htm.find("Generation 3"));
    EXPECT_LT(htm.find(b().NomDates(A)), htm.find(b().NomDates(F)));
    EXPECT_NE(htm.find("fils de <A HREF=\"#i" + std::to_string(C) + "\">"), std::string::npos);
    EXPECT_NE(htm.find("conjoint : <A HREF=\"#i" + std::to_string(B) + "\">"), std::string::npos);
    const std::string rtf = lireTout(fs, "/d/g/graphe.rtf");
    EXPECT_EQ(rtf.rfind("{\\rtf1", 0), 0u);
    EXPECT_NE(rtf.find("fille de " + b().NomComplet(D)), std::string::npos);

    // A line of forebears long enough for two pages.
    std::uint32_t bas = F;
    for (int i = 0; i < 90; ++i) {
        const std::uint32_t pere = P("Ancetre", "Jean", 'H', "1700");
        b().EcritPere(bas, pere);
        b().MajEnfants(pere, bas, 'A');
        bas = pere;
    }
    FrmBranche br(*f, false);
    br.Developpe(0, 100);
    const auto doc = br.Impression();
    ASSERT_TRUE(doc);
    EXPECT_EQ(doc->titre, br.Titre());
    test::PagesTextes surface;
    EXPECT_EQ(doc->dessine(surface), FinPages::Termine);
    ASSERT_GE(surface.pages.size(), 2u);
    EXPECT_TRUE(surface.Contient(0, br.Titre())) << "the caption heads the page";
    EXPECT_TRUE(surface.Contient(0, br.Outline()->Lignes()[1]));
    EXPECT_TRUE(surface.Contient(surface.pages.size() - 1, br.Outline()->Lignes().back()));
    EXPECT_TRUE(surface.Contient(1, br.Titre())) << "each page under the caption";
}

} // namespace
