// The list of events on paper: the rows in the order the list shows them,
// cut into pages under their headings, the count at the end; a long place
// cut to its column; and the preview's first layout under the panel, whose
// stop keeps the whole pages laid out until then for every later drawing.
#include "publish/impression_evenements.h"
#include "store/evenement_edition.h"
#include "store/fichier_memoire.h"
#include "support/francais.h"
#include "support/pages_textes.h"
#include "support/services_faux.h"
#include "text/calendrier.h"
#include "text/messages.h"
#include "ui/frm_evenement.h"
#include "ui/frm_impression.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

using namespace sylvane;
using test::ServicesFaux;

namespace {

// The number column of the rows of a page, in order: the cells that come
// four after a date.
struct Pages : test::PagesTextes {
    std::vector<std::uint32_t> Numeros(std::size_t page) const {
        std::vector<std::uint32_t> v;
        const auto& t = pages[page];
        for (std::size_t i = 4; i < t.size(); ++i)
            if (t[i - 4].size() == 10 && t[i - 4][2] == '/' && t[i - 4][5] == '/')
                v.push_back(static_cast<std::uint32_t>(std::stoul(t[i])));
        return v;
    }
};

// The preview lays its pages out as it opens, as the window does.
struct FenetresApercu : test::FenetresFausses {
    Pages mise;
    void Ouvre(const std::string& f) override {
        FenetresFausses::Ouvre(f);
        if (f == "FrmPrevisualisation" && ApercuTransmis().dessine) ApercuTransmis().dessine(mise);
    }
};

struct ListeImprimee : ::testing::Test {
    static constexpr std::uint32_t kEvenements = 150;
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    FenetresApercu fenetres;
    std::unique_ptr<MDIForm1> f;
    std::vector<std::uint32_t> parDate; // the events, earliest first

    void SetUp() override {
        app.Demarre();
        app.NouvelleBase("/d/evenements.sv2");
        f = std::make_unique<MDIForm1>(
            app, ServicesUi{s.boites, s.fichiers, s.panneau, fenetres, s.selecteur});
        // Written latest first, so that the list's order is the dates'.
        const std::uint32_t p = app.base().CreePersonne("Martin", "Jean", "", 'H', "1800");
        parDate.resize(kEvenements);
        for (std::uint32_t i = kEvenements; i-- > 0;) {
            const long d = JourSerie({static_cast<int>(1 + i % 28), static_cast<int>(1 + i % 12),
                                      static_cast<int>(1700 + i)});
            parDate[i] = Creer_Evenement(app.base(), p, "BIRT", d, "Lieu " + std::to_string(i));
        }
    }
    ~ListeImprimee() override { ApercuTransmis() = DocumentApercu{}; }
};

} // namespace

TEST_F(ListeImprimee, TheListGoesToThePreviewInDateOrderPageAfterPage) {
    FrmLstEvt liste(*f);
    ASSERT_EQ(liste.Nombre(), kEvenements);
    ASSERT_TRUE(liste.CmdImprimer());
    EXPECT_TRUE(fenetres.EstOuverte("FrmPrevisualisation"));
    EXPECT_FALSE(s.panneau.Visible());
    // The panel told each page as it was laid out.
    ASSERT_FALSE(s.panneau.textes.empty());
    EXPECT_EQ(s.panneau.textes.back(), "Page 3");

    const auto& pages = fenetres.mise.pages;
    ASSERT_EQ(pages.size(), 3u);
    std::vector<std::uint32_t> tous;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        // Each page under the page head, with the headings above its rows.
        EXPECT_TRUE(fenetres.mise.Contient(i, Message(msg_evt::TitreListe)));
        EXPECT_TRUE(fenetres.mise.Contient(i, Message(msg_evt::ColLieu)));
        const auto n = fenetres.mise.Numeros(i);
        ASSERT_FALSE(n.empty());
        tous.insert(tous.end(), n.begin(), n.end());
    }
    EXPECT_EQ(tous, parDate);
    // Two full pages hold as many rows; the last has the rest and the count.
    const auto n0 = fenetres.mise.Numeros(0), n1 = fenetres.mise.Numeros(1);
    EXPECT_EQ(n0.size(), n1.size());
    EXPECT_EQ(n0.front(), parDate[0]);
    EXPECT_EQ(n1.front(), parDate[n0.size()]);
    EXPECT_EQ(fenetres.mise.Numeros(2).back(), parDate.back());
    EXPECT_TRUE(fenetres.mise.Contient(0, "01/01/1700"));
    EXPECT_TRUE(fenetres.mise.Contient(0, "Lieu 0"));
    EXPECT_TRUE(fenetres.mise.Contient(2, "150 \xE9v\xE9nements"));
    EXPECT_FALSE(fenetres.mise.Contient(1, "150 \xE9v\xE9nements"));

    // The preview draws again from the base, the same pages each time.
    Pages encore;
    EXPECT_EQ(ApercuTransmis().dessine(encore), FinPages::Termine);
    EXPECT_EQ(encore.pages, pages);
}

TEST_F(ListeImprimee, TheListPrintsInTheOrderShownAndRefusesWhenEmpty) {
    FrmLstEvt liste(*f);
    liste.Trie(OrdreEvt::Numero, true);
    ASSERT_TRUE(liste.CmdImprimer());
    const auto n = fenetres.mise.Numeros(0);
    ASSERT_FALSE(n.empty());
    EXPECT_EQ(n.front(), *std::max_element(parDate.begin(), parDate.end()));
    EXPECT_GT(n[0], n[1]);

    // A list with no row, or a busy panel: nothing opens.
    ApercuTransmis() = DocumentApercu{};
    s.panneau.visible = true;
    EXPECT_FALSE(liste.CmdImprimer());
    EXPECT_EQ(s.boites.informations.back(), 503);
    s.panneau.visible = false;
    for (std::uint32_t e : parDate) SupprimeEvenement(app.base(), e);
    FrmLstEvt vide(*f);
    EXPECT_FALSE(vide.CmdImprimer());
    EXPECT_FALSE(ApercuTransmis().dessine);
}

TEST_F(ListeImprimee, AStopKeepsTheWholePagesLaidOutForEveryLaterDrawing) {
    FrmLstEvt liste(*f);
    s.panneau.arretApres = 0; // the first look at the stop button stops
    ASSERT_TRUE(liste.CmdImprimer());
    ASSERT_EQ(fenetres.mise.pages.size(), 1u);
    const auto premiere = fenetres.mise.Numeros(0);
    EXPECT_EQ(premiere.front(), parDate.front());
    EXPECT_LT(premiere.size(), kEvenements);
    // Printed or written later: the same page, complete, without the count.
    Pages plus;
    EXPECT_EQ(ApercuTransmis().dessine(plus), FinPages::Termine);
    ASSERT_EQ(plus.pages.size(), 1u);
    EXPECT_EQ(plus.Numeros(0), premiere);
    EXPECT_FALSE(plus.Contient(0, "150 \xE9v\xE9nements"));
}

// A surface that keeps its second page alone, as the preview's painting does.
struct DeuxiemePage : Pages {
    bool Garde(int ligne, int) const override { return ligne == 2; }
};

TEST_F(ListeImprimee, APageLeftOutByTheSurfaceIsLaidOutWithoutReadingItsRows) {
    FrmLstEvt liste(*f);
    ASSERT_TRUE(liste.CmdImprimer());
    const auto& tout = fenetres.mise;
    OptionsImpression o;
    LigneEvt entetes;
    for (std::size_t i = 0; i < entetes.size(); ++i)
        entetes[i] = Message(msg_evt::ColDate + static_cast<int>(i));
    DeuxiemePage seule;
    std::vector<std::size_t> lus;
    ASSERT_EQ(ImprimeListeEvenements(app.base(), seule, Message(msg_evt::TitreListe), entetes,
                                     kEvenements,
                                     [&](std::size_t i) {
                                         lus.push_back(i);
                                         return liste.Ligne(i);
                                     },
                                     o),
              FinRapport::Termine);
    ASSERT_EQ(seule.pages.size(), 3u);
    EXPECT_EQ(seule.pages[1], tout.pages[1]);
    const std::size_t parPage = tout.Numeros(0).size();
    ASSERT_EQ(lus.size(), parPage);
    EXPECT_EQ(lus.front(), parPage);
}

TEST_F(ListeImprimee, APlaceTooLongForItsColumnIsCutWithDots) {
    OptionsImpression o;
    const LigneEvt entetes{"Date", "Ann\xE9" "e", "Lieu", "Type", "Num\xE9ro"};
    const LigneEvt l{"01/02/1850", "1850", std::string(400, 'W'), "Naissance", "12"};
    Pages p;
    std::size_t faits = 0;
    ASSERT_EQ(ImprimeListeEvenements(app.base(), p, "T", entetes, 1,
                                     [&](std::size_t) { return l; }, o, &faits),
              FinRapport::Termine);
    EXPECT_EQ(faits, 1u);
    std::string lieu;
    for (const auto& t : p.pages[0])
        if (t.starts_with("WWW")) lieu = t;
    ASSERT_FALSE(lieu.empty());
    EXPECT_TRUE(lieu.ends_with("..."));
    EXPECT_LT(MetriqueDejaVu::Instance().Largeur(lieu, Police{8, false}),
              static_cast<double>(o.papier.largeur) * 0.9 * 0.6);
    // No row: nothing drawn.
    Pages rien;
    EXPECT_EQ(ImprimeListeEvenements(app.base(), rien, "T", entetes, 0,
                                     [&](std::size_t) { return l; }, o),
              FinRapport::Vide);
    EXPECT_TRUE(rien.pages.empty());
}
