// The HTML writers: the entity encoder, the stylesheet, the rich text, and
// whole sites and reports checked for links that lead nowhere and for
// tags that don't close.
#include "exchange/gedcom_import.h"
#include "exchange/gedcom_lecteur.h"
#include "kinship/liste.h"
#include "publish/html.h"
#include "publish/html_texte.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/arbres.h"
#include "support/dossier_temp.h"
#include "support/francais.h"
#include "support/pages_html.h"

#include <gtest/gtest.h>

using namespace sylvane;
using sylvane::test::Pages;

namespace {

// The pages of a folder of an in-memory file system, by file name.
Pages PagesDe(SystemeMemoire& fs, const std::string& dossier) {
    Pages r;
    for (auto& [chemin, contenu] : fs.fichiers())
        if (chemin.rfind(dossier, 0) == 0 && chemin.find('/', dossier.size()) == std::string::npos &&
            contenu)
            r[chemin.substr(dossier.size())] = contenu->courant;
    return r;
}

void VerifiePages(const Pages& pages) {
    EXPECT_EQ(test::LiensCasses(pages), std::vector<std::string>{});
    for (const auto& [nom, page] : pages) {
        if (!nom.ends_with(".htm")) continue;
        EXPECT_EQ(test::FautesBalises(page), std::vector<std::string>{}) << nom;
        EXPECT_NE(nom[0], '~') << "temporary left: " << nom;
    }
}

// The sample family, imported with its keyword lists.
struct Exemple : testing::Test {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    void SetUp() override {
        p.dossierTravail = "/travail";
        b.Nouvelle("/famille.sv2");
        const std::string ged =
            test::LitFichier(std::string(SYLVANE_SOURCE_DIR) + "/samples/famille-exemple.ged");
        OptionsImport o;
        ASSERT_TRUE(ImporteGedcom(b, LitGedcomOctets(ged), o).erreur.empty());
    }
};

} // namespace

TEST(EntiteHTML, NamedEntitiesReferencesAndTheKeptOddities) {
    EXPECT_EQ(EntiteHTML("Dupont & Fils <x>"), "Dupont &amp; Fils &lt;x&gt;");
    EXPECT_EQ(EntiteHTML("\xA9 \xC9lise \xE7\xE0"), "&copy; &Eacute;lise &ccedil;&agrave;");
    EXPECT_EQ(EntiteHTML("\xCF\xF5"), "\xCF\xF5");       // no entry: raw
    EXPECT_EQ(EntiteHTML("\xF6"), "&otilde;");          // as the pages always had it
    EXPECT_EQ(EntiteHTML("\xFF\xDF"), "&yuml;&szlig;");
    EXPECT_EQ(EntiteHTML("\xD7\xF7\x80"), "\xD7\xF7\x80"); // not letters
    // A character outside Windows-1252, as the base holds it.
    EXPECT_EQ(EntiteHTML("&#1047;\xFB\x6B\x6F\x76"), "&#1047;&ucirc;kov");
    EXPECT_EQ(EntiteHTML("&#;&#12"), "&amp;#;&amp;#12");
}

TEST(FeuilleStyle, ColoursAreRedFirstAndLinksTheirComplement) {
    Parametres p;
    p.couleurCadreHomme = 0x0000FF;       // red in the low byte
    p.couleurCadreFemme = 0x123456;
    p.couleurCadreIndetermine = 0xFFFFFF;
    const std::string css = FeuilleStyle(p);
    EXPECT_EQ(css, "<style type=\"Text/css\">\r\n<!--\r\n"
                   ".Homme {  background-color: #FF0000; link-color: #00FFFF }\r\n"
                   ".Femme {  background-color: #563412; link-color: #A9CBED }\r\n"
                   ".Indetermine {  background-color: #FFFFFF; link-color: #000000 }\r\n"
                   ".defaut {  font-size: x-small; font-style: normal}\r\n-->\r\n</style>\r\n");
}

TEST(TexteRicheHTML, StylesAlignmentAndTheClosersBehindTheRow) {
    EXPECT_EQ(TexteRicheHTML("a<b"), "<BR><LEFT>a&lt;b</TD></TR>");
    const std::string rtf = "{\\rtf1\\ansi {\\b Gras} normal\\par \\qc {\\i centr\\'e9}}";
    const std::string h = TexteRicheHTML(rtf);
    EXPECT_EQ(h.rfind("<B><BR><LEFT>Gras</B> normal", 0), 0u) << h;
    EXPECT_NE(h.find("<I><BR><CENTER>centr&eacute;"), std::string::npos) << h;
    EXPECT_TRUE(h.ends_with("</TD></TR></I>")) << h;
}

TEST_F(Exemple, TheSiteLinksResolveAndItsPagesAreWellFormed) {
    EcrivainHTML w(b, fs);
    w.auteur = "Anne & Marc";
    ASSERT_TRUE(w.Site("/site"));
    const Pages pages = PagesDe(fs, "/site/");
    ASSERT_TRUE(pages.count("homepage.htm") && pages.count("index.htm") && pages.count("k1.htm") &&
                pages.count("Sylvane.css"));
    VerifiePages(pages);
    // One page per person, event and document.
    for (std::size_t i = 1; i <= b.TablePersonnes().taille(); ++i)
        EXPECT_TRUE(pages.count("i" + std::to_string(b.TriFiche(i)) + ".htm"));
    for (std::size_t i = 1; i <= b.TableEvenements().taille(); ++i)
        EXPECT_TRUE(pages.count("e" + std::to_string(b.TriEvt(i)) + ".htm"));
    const std::string& accueil = pages.at("homepage.htm");
    EXPECT_NE(accueil.find("<FRAME src=\"k1_1.htm\" name=\"I\">"), std::string::npos);
    EXPECT_EQ(accueil.find("Sylvane.css"), std::string::npos);
    const std::string& personne = pages.at("i1.htm");
    EXPECT_NE(personne.find("charset=iso-8859-1"), std::string::npos);
    EXPECT_NE(personne.find("<META NAME=\"AUTHOR\" CONTENT=\"Anne &amp; Marc\">"), std::string::npos);
    EXPECT_NE(personne.find("<BODY CLASS="), std::string::npos);
}

TEST_F(Exemple, AStoppedSiteLeavesWholePagesAndNoHomePage) {
    int pages = 0;
    Interaction io;
    io.arret = [&pages] { return ++pages > 12; };
    EcrivainHTML w(b, fs, io);
    EXPECT_FALSE(w.Site("/site"));
    const Pages ecrites = PagesDe(fs, "/site/");
    EXPECT_FALSE(ecrites.count("homepage.htm"));
    EXPECT_FALSE(ecrites.empty());
    for (const auto& [nom, page] : ecrites) {
        EXPECT_NE(nom[0], '~');
        EXPECT_TRUE(page.ends_with("</HTML>\r\n")) << nom;
    }
}

TEST_F(Exemple, AFailingDiskEndsTheSiteWithAnErrorAndNoHalfPage) {
    for (long n : {3L, 40L, 200L}) {
        const std::string dossier = "/site" + std::to_string(n);
        fs.echouerApres(n, true);
        EcrivainHTML w(b, fs);
        EXPECT_THROW(w.Site(dossier), ErreurES);
        fs.retablir();
        // A page is whole or absent; a dead disk may keep a temporary.
        for (const auto& [nom, page] : PagesDe(fs, dossier + "/"))
            if (nom[0] != '~') {
                EXPECT_TRUE(page.ends_with("</HTML>\r\n") || nom.ends_with(".css")) << nom;
            }
        // The next run takes the temporaries up.
        ASSERT_TRUE(w.Site(dossier));
        VerifiePages(PagesDe(fs, dossier + "/"));
    }
}

TEST(SiteHTML, ABaseWithoutIndexedRubricsStillNamesK1) {
    test::Arbre a;
    const std::uint32_t x = a.Personne("Dupont & Cie", "Jean");
    EcrivainHTML w(a.b(), a.fs);
    w.auteur.clear();
    ASSERT_TRUE(w.Site("/s"));
    const Pages pages = PagesDe(a.fs, "/s/");
    EXPECT_NE(pages.at("homepage.htm").find("<FRAME src=\"k1.htm\" name=\"R\">"), std::string::npos);
    const std::string& page = pages.at("i" + std::to_string(x) + ".htm");
    EXPECT_EQ(page.find("AUTHOR"), std::string::npos);
    EXPECT_NE(page.find("<TITLE>Jean Dupont &amp; Cie</TITLE>"), std::string::npos);
    // The identity cell and the end of the page only.
    EXPECT_EQ(page.find("<UL>"), std::string::npos);
    EXPECT_EQ(test::FautesBalises(page), std::vector<std::string>{});
}

namespace {

// Five generations of four children each under one couple: 1,365 persons.
struct Descendance : testing::Test {
    test::Arbre a;
    std::uint32_t racine = 0;
    void SetUp() override {
        racine = a.Personne("Souche", "Adam");
        const std::uint32_t eve = a.Personne("Souche", "Eve", 'F');
        a.b().CreeMariage(racine, eve);
        std::vector<std::uint32_t> gen{racine};
        for (int g = 0; g < 5; ++g) {
            std::vector<std::uint32_t> suivants;
            for (std::uint32_t p : gen) {
                const std::uint32_t conjoint = a.Personne("Conjoint", "X", 'F');
                for (int k = 0; k < 4; ++k)
                    suivants.push_back(a.Enfant(p, conjoint, "E" + std::to_string(k)));
            }
            gen = std::move(suivants);
        }
    }
    std::vector<EntreeRapport> Entrees(bool unePage, std::string& titre) {
        ListeParente liste(a.b(), a.fs);
        titre = TitreRapport(a.b(), GenreRapport::Descendants, racine);
        return EntreesRapport(a.b(), liste, GenreRapport::Descendants, racine, 10,
                              unePage ? FormeLigne::HtmlPage : FormeLigne::HtmlSite);
    }
};

} // namespace

TEST_F(Descendance, TheMultiFileReportSplitsItsIndexAndEveryLinkResolves) {
    std::string titre;
    const auto entrees = Entrees(false, titre);
    ASSERT_EQ(entrees.size(), 1365u);
    EcrivainHTML w(a.b(), a.fs);
    ASSERT_TRUE(w.RapportMultifichiers("/r", titre, entrees));
    const Pages pages = PagesDe(a.fs, "/r/");
    ASSERT_TRUE(pages.count("index_1.htm") && pages.count("index_2.htm"));
    for (const auto& nom : {"index.htm", "index_1.htm"})
        EXPECT_LE(pages.at(nom).size(), 50000u + 2000u) << nom;
    EXPECT_NE(pages.at("index_2.htm").find("<A HREF=\"index_1.htm\" TARGET=\"I\">"), std::string::npos);
    EXPECT_NE(pages.at("homepage.htm").find("<FRAME src=\"i" + std::to_string(racine) + ".htm\" name=\"M\">"),
              std::string::npos);
    VerifiePages(pages);
}

TEST_F(Descendance, TheSinglePageReportAnchorsEveryPerson) {
    std::string titre;
    const auto entrees = Entrees(true, titre);
    EcrivainHTML w(a.b(), a.fs);
    ASSERT_TRUE(w.RapportFichier("/un/rapport.htm", titre, entrees));
    const Pages pages = PagesDe(a.fs, "/un/");
    ASSERT_TRUE(pages.count("rapport.htm") && pages.count("Sylvane.css"));
    VerifiePages(pages);
    EXPECT_NE(pages.at("rapport.htm").find("<A NAME=\"i" + std::to_string(racine) + "\">"),
              std::string::npos);
}

namespace {

// The page of a word of the rubric of `symbole`.
std::string PageMot(const Pages& pages, Base& b, char symbole, const std::string& mot) {
    for (std::uint32_t k = 1; k <= b.Tete().nbRubriques; ++k) {
        const std::string r = b.LitRubrique(k);
        if (r.empty() || r[0] != symbole) continue;
        const std::string mots = b.ListeRubrique(k);
        for (std::size_t i = 0; i + 4 <= mots.size(); i += 4) {
            const std::uint32_t w = Unpack4(mots, i);
            if (b.LitMot(w) == mot) return pages.at("k" + std::to_string(k) + "_" + std::to_string(w) + ".htm");
        }
    }
    ADD_FAILURE() << "no word " << mot << " under " << symbole;
    return "";
}

std::string Cellule(const std::string& page) {
    const std::size_t d = page.find("<TD>"), f = page.find("</TD>", d);
    return d == std::string::npos || f == std::string::npos ? "" : page.substr(d + 4, f - d - 4);
}

} // namespace

TEST(SiteHTML, AWordsPersonsSayWhatTheRubricIsAbout) {
    test::Arbre a;
    Base& b = a.b();
    b.TeteModifiable().rubriquesPersonne[3] = {'%', '1', "RESI"};
    const std::uint32_t x = a.Personne("Dupont", "Jean", 'H', "1790");
    const std::uint32_t y = a.Personne("Durand", "Marie", 'F', "1795");
    const std::uint32_t m = b.CreeMariage(x, y);
    b.EcritNoteMariage(m, "12/6 @Lyon");
    const std::string note = "|DUPONT \xB6Jean $Lyon ~Paris\r\nCHR 12/5/1790 \xB0Lyon\r\n"
                             "RESI 3/4/1820 %Dijon\r\nOCCU  \\laboureur";
    b.EcritNote(x, note);
    b.MajMots(x, "", b.NoteAvecMariages(x));
    EcrivainHTML w(b, a.fs);
    ASSERT_TRUE(w.Site("/s"));
    const Pages pages = PagesDe(a.fs, "/s/");
    // A birth or a baptism names the birth, a death the death.
    EXPECT_EQ(Cellule(PageMot(pages, b, '$', "LYON")).rfind("Naissance : ", 0), 0u);
    EXPECT_NE(Cellule(PageMot(pages, b, '$', "LYON")).find("Lyon"), std::string::npos);
    EXPECT_EQ(Cellule(PageMot(pages, b, '\xB0', "LYON")).rfind("Naissance : ", 0), 0u);
    EXPECT_EQ(Cellule(PageMot(pages, b, '~', "PARIS")).rfind("D&eacute;c&egrave;s : ", 0), 0u);
    // A wedding and a dated rubric: their label and date.
    EXPECT_EQ(Cellule(PageMot(pages, b, '@', "LYON")), "Mariage : 12 juin");
    EXPECT_EQ(Cellule(PageMot(pages, b, '%', "DIJON")), "R&eacute;sidence : 3 avril 1820");
    // Anything else: the years of life.
    EXPECT_EQ(Cellule(PageMot(pages, b, '\\', "LABOUREUR")), "(o1790)");
    VerifiePages(pages);
}

TEST(SiteHTML, GodparentsAndWitnessesStandWithTheirRolesAndWhereTheyCameFrom) {
    test::Arbre a;
    Base& b = a.b();
    const std::uint32_t x = a.Personne("Dupont", "Jean");
    const std::uint32_t y = a.Personne("Durand", "Marie", 'F');
    const std::uint32_t parrain = a.Personne("Martin", "Paul");
    const std::uint32_t temoin = a.Personne("Bernard", "Luc");
    const std::uint32_t ami = a.Personne("Petit", "Louis");
    const std::uint32_t m = b.CreeMariage(x, y);
    const std::uint32_t bapteme = b.CreeEvtPersonne(x, 0, "CHR", "Lyon");
    const std::uint32_t noces = b.CreeEvtMariage(m, 0, "MARR", "Lyon");
    auto role = [&b](std::uint32_t e, std::uint32_t p, const char* r) {
        b.MajEvts(p, e, r, 'A');
        b.MajPersonnesEvt(e, p, 'A');
    };
    role(bapteme, parrain, "Parrain");
    role(noces, temoin, "T\xE9moin");
    b.MajLiens(x, ami, "Ami", 'A');
    EcrivainHTML w(b, a.fs);
    ASSERT_TRUE(w.Site("/s"));
    const Pages pages = PagesDe(a.fs, "/s/");
    auto i = [](std::uint32_t n) { return "<A HREF=\"i" + std::to_string(n) + ".htm\">"; };
    const std::string& page = pages.at("i" + std::to_string(x) + ".htm");
    EXPECT_NE(page.find("<LI>Ami (P) : " + i(ami)), std::string::npos) << page;
    EXPECT_NE(page.find("<LI>Parrain (P) : " + i(parrain)), std::string::npos) << page;
    EXPECT_NE(page.find("<LI>T&eacute;moin (M) : " + i(temoin)), std::string::npos) << page;
    // The wife's page has the witness too; the parents' roles stay in their own sections.
    EXPECT_NE(pages.at("i" + std::to_string(y) + ".htm").find("(M) : " + i(temoin)), std::string::npos);
    EXPECT_EQ(page.find("Mari (") , std::string::npos);
    // The godfather is not the one baptised: his page names nobody by role.
    EXPECT_EQ(pages.at("i" + std::to_string(parrain) + ".htm").find("(P) :"), std::string::npos);
}

TEST(SiteHTML, TheTitleDocumentOpensTheSiteWithTheBasesAddress) {
    test::Arbre a;
    Base& b = a.b();
    a.Personne("Dupont", "Jean");
    const std::uint32_t d = b.CreeDoc("Famille Dupont", "famille.dupont", "E-Mail");
    const std::uint32_t image = b.CreeDoc("Acte", "actes\\1790.JPG", "Image");
    b.DefinitDocumentTitre(d);
    EcrivainHTML w(b, a.fs);
    w.auteur = "Anne Dupont";
    ASSERT_TRUE(w.Site("/s"));
    const Pages pages = PagesDe(a.fs, "/s/");
    const std::string n = std::to_string(d);
    EXPECT_NE(pages.at("d" + n + ".htm").find("<P ALIGN=CENTER><a href=\"mailto:famille.dupont\">Anne Dupont</a></P>"),
              std::string::npos);
    EXPECT_NE(pages.at("d" + std::to_string(image) + ".htm").find("<IMG SRC=\"../actes/1790.JPG\" WIDTH=100%>"),
              std::string::npos);
    EXPECT_NE(pages.at("homepage.htm").find("<FRAME src=\"d" + n + ".htm\" name=\"M\">"), std::string::npos);
    EXPECT_NE(pages.at("index.htm").find("<LI><A HREF=\"d" + n + ".htm\" TARGET=\"M\">Famille Dupont</A></LI>"),
              std::string::npos);
}

TEST_F(Descendance, AReportPageShowsItsLinesUnderTheName) {
    EcrivainHTML w(a.b(), a.fs);
    ASSERT_TRUE(w.RapportMultifichiers("/r", "Rapport", {{racine, std::string("[1]\0Souche", 10), 0}}));
    const std::string page = PagesDe(a.fs, "/r/").at("i" + std::to_string(racine) + ".htm");
    EXPECT_NE(page.find("</EM></H2>\r\n<H4 ALIGN=CENTER>[1]</H4>\r\n<H4 ALIGN=CENTER>Souche</H4>\r\n"),
              std::string::npos)
        << page;
    // The site's pages have no lines of a list.
    ASSERT_TRUE(w.Site("/s"));
    EXPECT_EQ(PagesDe(a.fs, "/s/").at("i" + std::to_string(racine) + ".htm").find("<H4 ALIGN=CENTER>"),
              std::string::npos);
}
