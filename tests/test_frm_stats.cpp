// The statistics and anniversary forms over a small family: the list
// handed by another form, the tabs as tables, the copy and the print of a
// tab, the calendar's month and day, a click that moves the current
// person, the year's recapitulation and the calendar report on paper, in
// RTF and in HTML, and a busy program.
#include "charts/surface.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/pages_textes.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/frm_listes.h"
#include "ui/frm_stats.h"

#include <gtest/gtest.h>

#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

// The texts drawn on each page.
struct SurfaceTextes : test::PagesTextes {
    bool Montre(const std::string& t) const {
        for (const auto& p : pages)
            for (const auto& x : p)
                if (x.find(t) != std::string::npos) return true;
        return false;
    }
};

// The place of `t` in `texte`, npos when absent.
std::size_t Ou(const std::string& texte, const std::string& t) { return texte.find(t); }

struct Famille : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;
    std::uint32_t pere, mere, fils, mariage;

    void SetUp() override {
        DefinitMessages({{861, "Statistiques"}, {1174, "G\xE9n\xE9ralit\xE9s"}, {1179, "Mois de naissance"},
                         {730, "janvier"}, {732, "mars"}, {4570, "liste de &1 personnes"},
                         {4556, "Hommes"}, {754, "Naissance"}, {642, "Mariage"}});
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        Base& b = app.base();
        pere = b.CreePersonne("MARTIN", "Jean", "", 'H', "1850", "12/3", "1910", "1/1");
        mere = b.CreePersonne("DURAND", "Marie", "", 'F', "1855", "12/3");
        fils = b.CreePersonne("MARTIN", "Paul", "", 'H', "1880", "5/1");
        for (auto p : {pere, mere}) b.MajEnfants(p, fils, 'A');
        b.EcritPere(fils, pere);
        b.EcritMere(fils, mere);
        mariage = b.CreeMariage(pere, mere, "1878");
        b.EcritNoteMariage(mariage, "12/3/1878 @Dijon");
    }
    void TearDown() override {
        ParenteTransmise() = {};
        DefinitMessages({});
    }
};

TEST_F(Famille, LesOngletsDeLaBaseEntiereEtDUneListeTransmise) {
    FrmStats st(*f);
    ASSERT_TRUE(st.Calcule());
    EXPECT_FALSE(s.panneau.visible); // the panel goes with the run
    EXPECT_EQ(st.Titre(), "Statistiques");
    EXPECT_EQ(st.Figures().Personnes(), 3u);
    const TableTexte g = st.Table(0);
    ASSERT_EQ(g.lignes.size(), 9u);
    EXPECT_EQ(g.lignes[1], (std::vector<std::string>{"Hommes", "2"}));
    const TableTexte d = st.Table(3);
    ASSERT_EQ(d.lignes.size(), 4u); // 1850 to 1880, the empty decades between kept
    EXPECT_EQ(d.lignes[0][0], "1850/1859 ");
    EXPECT_EQ(d.lignes[0][1], "2");
    EXPECT_EQ(d.lignes[1][1], "0");
    const TableTexte a = st.Table(4);
    EXPECT_EQ(a.lignes[0][1], "60.0");
    EXPECT_EQ(a.lignes[0][4], "30.0"); // father born in the 1850s, son at 30
    EXPECT_EQ(a.lignes[3][1], "  ");
    EXPECT_EQ(st.Barres(5)[2], 2u);
    EXPECT_EQ(st.Barres(5)[0], 1u);
    st.onglet = 5;
    const std::string copie = st.TexteCopie();
    EXPECT_EQ(copie.rfind("Mois de naissance\r\n", 0), 0u);
    EXPECT_NE(copie.find("mars\t2\r\n"), std::string::npos);

    // A list handed by a search: its persons only, and its name in the title.
    ParenteTransmise().liste = Pack4(fils) + Pack4(mere);
    FrmStats l(*f);
    EXPECT_TRUE(ParenteTransmise().liste.empty());
    ASSERT_TRUE(l.Calcule());
    EXPECT_EQ(l.Figures().Personnes(), 2u);
    EXPECT_EQ(l.Titre(), "Statistiques - liste de 2 personnes");
    // The son's father is outside the list: his age still counts.
    EXPECT_EQ(l.Figures().decennies[185].agePere.nombre, 1u);
}

TEST_F(Famille, SansBaseOuOccupeRienNeSeCalcule) {
    FrmStats st(*f);
    s.panneau.visible = true; // another operation runs
    EXPECT_FALSE(st.Calcule());
    s.panneau.visible = false;
    app.FermeBase();
    EXPECT_FALSE(st.Calcule());
    EXPECT_TRUE(st.Table(0).lignes.empty());
}

TEST_F(Famille, LeCalendrierUnMoisEtUnJour) {
    FrmAnniv a(*f);
    a.mois = 3;
    ASSERT_TRUE(a.Charge());
    const auto semaines = a.Semaines();
    ASSERT_EQ(semaines.size(), 5u); // 31 days, seven a row
    EXPECT_EQ(semaines[1][4], 12);
    EXPECT_EQ(semaines[4][2], 31);
    EXPECT_EQ(semaines[4][3], 0);
    EXPECT_EQ(a.NombreDuJour(12), 3u); // two births and the marriage
    ASSERT_TRUE(a.Choisit(12));
    EXPECT_EQ(a.LibelleJour(), "12 mars");
    ASSERT_EQ(a.Listes().naissances.size(), 2u);
    a.Active(a.Listes().naissances[1]);
    EXPECT_EQ(app.personneEnCours(), mere);
    EXPECT_FALSE(a.Choisit(32));
    a.mois = 2;
    EXPECT_TRUE(a.Choisit(29)); // the leap day has its slot
    a.mois = 12;
    a.MoisSuivant();
    EXPECT_EQ(a.mois, 1);
    EXPECT_EQ(a.NombreDuJour(1), 1u); // the father's death
    a.MoisPrecedent();
    EXPECT_EQ(a.mois, 12);

    // A stop keeps what was read.
    s.panneau.arretApres = 0;
    EXPECT_TRUE(a.Charge());
    EXPECT_FALSE(a.Cal().Complet());
}

TEST_F(Famille, LImpressionDUnOngletReprendSaTable) {
    FrmStats st(*f);
    ASSERT_TRUE(st.Calcule());
    st.onglet = 0;
    const DocumentApercu d = st.Impression();
    EXPECT_EQ(d.titre, "Statistiques - G\xE9n\xE9ralit\xE9s");
    SurfaceTextes surface;
    EXPECT_EQ(d.dessine(surface), FinPages::Termine);
    ASSERT_EQ(surface.pages.size(), 1u);
    EXPECT_TRUE(surface.Montre("Hommes"));
    EXPECT_TRUE(surface.Montre("G\xE9n\xE9ralit\xE9s")); // the page head's title
    // A long table goes on over pages, each under its headings.
    st.onglet = 3;
    Base& b = app.base();
    for (int i = 0; i < 120; ++i) b.CreePersonne("X", "Y", "", 'H', std::to_string(1000 + 10 * i));
    ASSERT_TRUE(st.Calcule());
    SurfaceTextes longue;
    EXPECT_EQ(st.Impression().dessine(longue), FinPages::Termine);
    ASSERT_GE(longue.pages.size(), 2u);
    for (const auto& p : longue.pages) EXPECT_NE(std::find(p.begin(), p.end(), "Hommes"), p.end());
    EXPECT_TRUE(longue.Montre("2090/2099 "));
    // The widest tab still fits the page's width.
    DefinitMessages({{861, "Statistiques"}, {4560, "D\xE9" "cennie de naissance"},
                     {4562, "Dur\xE9" "e de vie moyenne"}, {4563, "Dur\xE9" "e de vie des hommes"},
                     {4564, "Dur\xE9" "e de vie des femmes"}, {4565, "\xC2" "ge moyen du p\xE8" "re"},
                     {4566, "\xC2" "ge moyen de la m\xE8" "re"}});
    st.onglet = 4;
    struct Largeur : SurfaceTextes {
        double droite = 0;
        void Texte(double x, double y, std::string_view t, const Police& p, std::int32_t c) override {
            droite = std::max(droite, x + Mesure().Largeur(t, p));
            SurfaceTextes::Texte(x, y, t, p, c);
        }
    } large;
    const DocumentApercu ages = st.Impression();
    EXPECT_EQ(ages.dessine(large), FinPages::Termine);
    EXPECT_LE(large.droite, static_cast<double>(ages.papier.largeur) * 0.95 + 1);
}

TEST_F(Famille, LaRecapitulationDeLAnneeEnHtmlEnRtfEtSurPapier) {
    FrmAnniv a(*f);
    ASSERT_TRUE(a.Charge());
    a.destination = FrmAnniv::DestinationDe("FrmAnniv:HTML");
    ASSERT_EQ(a.destination, DestinationAnniv::HTML);
    std::vector<std::string> ouverts;
    a.ouvreNavigateur = [&](const std::string& f) { ouverts.push_back(f); };
    s.fichiers.chemins = {"/t/recap.htm"};
    s.boites.reponses = {Reponse::Oui};
    EXPECT_FALSE(a.Recapitulation());
    EXPECT_EQ(a.fichierEcrit, "/t/recap.htm");
    // Written, the file is offered to the browser.
    EXPECT_EQ(s.boites.questions, std::vector<int>{msg_stats::OuvrirFichier});
    EXPECT_EQ(ouverts, std::vector<std::string>{"/t/recap.htm"});
    const std::string h = fs.contenu("/t/recap.htm");
    EXPECT_NE(Ou(h, "<TITLE>Index</TITLE>"), std::string::npos);
    EXPECT_NE(Ou(h, "<LINK REL=\"stylesheet\" TYPE=\"Text/css\" HREF=\"Sylvane.css\">"), std::string::npos);
    EXPECT_FALSE(fs.contenu("/t/Sylvane.css").empty());
    // 1 January (the death), then 12 March: births, then the marriage.
    const auto janvier = Ou(h, "<TH><STRONG>1 janvier</STRONG></TH><TR>");
    const auto mars = Ou(h, "<TH><STRONG>12 mars</STRONG></TH><TR>\r\n"
                            "<TH></TH><TD>Jean MARTIN 1850</TD><TR>\r\n"
                            "<TH></TH><TD>Marie DURAND 1855</TD><TR>\r\n"
                            "<TH></TH><TD>Jean MARTIN / Marie DURAND 1878 Dijon</TD><TR>\r\n"
                            "</TABLE><HR>\r\n<TABLE WIDTH=\"100%\" class=\"defaut\">");
    ASSERT_NE(janvier, std::string::npos);
    ASSERT_NE(mars, std::string::npos);
    EXPECT_LT(janvier, mars);
    EXPECT_NE(Ou(h, "<TH><STRONG>5 janvier</STRONG>"), std::string::npos); // the son's birth
    EXPECT_NE(Ou(h, "</TABLE>\r\n<NOTE>"), std::string::npos);
    EXPECT_EQ(h.substr(h.size() - 9), "</HTML>\r\n");

    a.destination = DestinationAnniv::RTF;
    s.fichiers.chemins = {"/t/recap.rtf"};
    EXPECT_FALSE(a.Recapitulation());
    EXPECT_EQ(s.fichiers.titres.back(), 567);
    const std::string r = fs.contenu("/t/recap.rtf");
    EXPECT_EQ(r.rfind("{\\rtf1\\ansi", 0), 0u);
    EXPECT_NE(Ou(r, "12 mars"), std::string::npos);
    EXPECT_NE(Ou(r, "Jean MARTIN / Marie DURAND 1878 Dijon"), std::string::npos);
    EXPECT_EQ(r.substr(r.size() - 3), "}\r\n");
    // An RTF file is not offered to the browser, and a no opens nothing.
    EXPECT_EQ(s.boites.informations.back(), 569);
    EXPECT_EQ(s.boites.questions.size(), 1u);
    a.destination = DestinationAnniv::HTML;
    s.fichiers.chemins = {"/t/recap.htm"};
    EXPECT_FALSE(a.Recapitulation());
    EXPECT_EQ(s.boites.questions.size(), 2u);
    EXPECT_EQ(ouverts.size(), 1u);

    // A cancel writes nothing.
    s.fichiers.chemins = {std::nullopt};
    const auto avant = s.boites.informations.size();
    EXPECT_FALSE(a.Recapitulation());
    EXPECT_TRUE(a.fichierEcrit.empty());
    EXPECT_EQ(s.boites.informations.size(), avant);

    a.destination = FrmAnniv::DestinationDe("FrmAnniv");
    const auto papier = a.Recapitulation();
    ASSERT_TRUE(papier);
    SurfaceTextes surface;
    EXPECT_EQ(papier->dessine(surface), FinPages::Termine);
    ASSERT_EQ(surface.pages.size(), 1u);
    EXPECT_TRUE(surface.Montre("12 mars"));
    EXPECT_TRUE(surface.Montre("Marie DURAND 1855"));
}

TEST_F(Famille, LeRapportDuCalendrierAvecSonIndexEtSesJours) {
    FrmAnniv a(*f);
    a.mois = 3;
    ASSERT_TRUE(a.Charge());
    a.destination = DestinationAnniv::HTML;
    EXPECT_FALSE(a.RapportCalendrier());
    EXPECT_EQ(s.boites.informations.back(), 500);
    const std::string chemin = app.parametres().DossierTravail() + "famille/index.htm";
    EXPECT_EQ(a.fichierEcrit, chemin);
    const std::string h = fs.contenu(chemin);
    // The index links each day to its heading; the days of other months are not there.
    const auto index = Ou(h, "<TR><TH><A HREF=\"#j72\">12 mars</A></TH><TD>Jean MARTIN, Marie DURAND, "
                             "Jean MARTIN / Marie DURAND</TD><TR>");
    // The day's heading as the pages have always had it, its anchor left open.
    const auto jour = Ou(h, "<H2><A NAME=\"j72\">12 mars</H2>\r\n");
    ASSERT_NE(index, std::string::npos);
    ASSERT_NE(jour, std::string::npos);
    EXPECT_LT(index, Ou(h, "<HR>"));
    EXPECT_LT(Ou(h, "<HR>"), jour);
    EXPECT_EQ(Ou(h, "</A></H2>\r\n<H2 ALIGN"), std::string::npos);
    EXPECT_EQ(Ou(h, "NAME=\"j1\""), std::string::npos); // other months are not there
    // Then the sheet of each person of the day, as the one-page reports
    // write it, under the line that says why the person is there; a
    // marriage brings both spouses, whose names link to their sheets.
    const auto naissance = Ou(h, "<H2 ALIGN=CENTER><A NAME=\"i" + std::to_string(mere) +
                                     "\">Marie DURAND</A></H2>\r\n<H4 ALIGN=CENTER>Naissance : 1855</H4>\r\n"
                                     "<TABLE BORDER=1 WIDTH=\"100%\" class=\"defaut\"><TR><TD>");
    const auto mariee = Ou(h, "\">Marie DURAND</A></H2>\r\n<H4 ALIGN=CENTER>Mariage : 1878 Dijon</H4>");
    EXPECT_LT(jour, naissance);
    EXPECT_LT(naissance, mariee);
    EXPECT_NE(mariee, std::string::npos);
    EXPECT_NE(Ou(h, "\">Jean MARTIN</A></H2>\r\n<H4 ALIGN=CENTER>Mariage : 1878 Dijon</H4>"),
              std::string::npos);
    EXPECT_NE(Ou(h, "<LI><A HREF=\"#i" + std::to_string(pere) + "\">Jean MARTIN</A>"), std::string::npos);
    EXPECT_NE(Ou(h, "<LI>Paul MARTIN"), std::string::npos); // the son, born in January: no sheet, no link
    EXPECT_FALSE(fs.contenu(app.parametres().DossierTravail() + "famille/Sylvane.css").empty());

    // In RTF: the index, then the day with the sections of the RTF reports.
    a.destination = DestinationAnniv::RTF;
    s.fichiers.chemins = {"/t/mars.rtf"};
    EXPECT_FALSE(a.RapportCalendrier());
    const std::string r = fs.contenu("/t/mars.rtf");
    const auto indexRtf = Ou(r, "12 mars}{\\plain \\f0\\fs16 \\tab Jean MARTIN, Marie DURAND");
    const auto sectionRtf = Ou(r, "{\\plain \\b\\f0 Marie DURAND}");
    ASSERT_NE(indexRtf, std::string::npos);
    EXPECT_LT(indexRtf, Ou(r, "\\page "));
    EXPECT_LT(Ou(r, "\\page "), sectionRtf);
    EXPECT_NE(Ou(r, "Mariage : 1878 Dijon"), std::string::npos);
    EXPECT_EQ(r.substr(r.size() - 3), "}\r\n");

    // On paper: the same days, with the printed sheets and the couple's.
    a.destination = DestinationAnniv::Imprimante;
    const auto papier = a.RapportCalendrier();
    ASSERT_TRUE(papier);
    SurfaceTextes surface;
    EXPECT_EQ(papier->dessine(surface), FinPages::Termine);
    EXPECT_TRUE(surface.Montre("12 mars"));
    EXPECT_TRUE(surface.Montre("Naissance : 1855"));
    EXPECT_TRUE(surface.Montre("Mariage : 1878 Dijon"));
    EXPECT_TRUE(surface.Montre("Marie DURAND"));
    EXPECT_FALSE(surface.Montre("Jean MARTIN / Marie DURAND"));
    // A month with nothing: no page at all.
    a.mois = 7;
    SurfaceTextes rien;
    EXPECT_EQ(a.RapportCalendrier()->dessine(rien), FinPages::Termine);
    EXPECT_TRUE(rien.pages.empty());

    // Busy: nothing, message 503.
    s.panneau.Montre("x", "");
    EXPECT_FALSE(a.RapportCalendrier());
    EXPECT_EQ(s.boites.informations.back(), 503);
}

} // namespace
