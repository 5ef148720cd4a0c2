// The printed reports over a surface that records what is drawn: the page
// head, the sheets and their sections, page breaks measured by the metric,
// the annexes, the stop, and the `print` verb's PDF.
#include "kinship/liste.h"
#include "publish/impression.h"
#include "support/arbres.h"
#include "support/dossier_temp.h"
#include "support/francais.h"
#include "text/calendrier.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <set>

using namespace sylvane;

namespace {

// Every page with its texts and lines, measured with the DejaVu metric.
class SurfaceEnregistree : public Surface {
  public:
    struct Texte {
        double x, y;
        std::string texte;
        Police police;
    };
    struct Page {
        std::vector<Texte> textes;
        int traits = 0;
        double largeur = 0, hauteur = 0;
    };
    std::vector<Page> pages;
    bool ouverte = false;

    const Metrique& Mesure() const override { return MetriqueDejaVu::Instance(); }
    void DebutPage(int ligne, int colonne, double l, double h) override {
        EXPECT_FALSE(ouverte);
        EXPECT_EQ(ligne, static_cast<int>(pages.size()) + 1);
        EXPECT_EQ(colonne, 1);
        pages.push_back(Page{{}, 0, l, h});
        ouverte = true;
    }
    void FinPage() override {
        EXPECT_TRUE(ouverte);
        ouverte = false;
    }
    void Trait(double, double, double, double, Plume) override { ++pages.back().traits; }
    void Boite(double, double, double, double, std::int32_t) override {}
    void Texte(double x, double y, std::string_view t, const Police& p, std::int32_t) override {
        EXPECT_TRUE(ouverte);
        pages.back().textes.push_back({x, y, std::string(t), p});
    }

    std::string Tout() const {
        std::string r;
        for (const Page& p : pages)
            for (const auto& t : p.textes) r += t.texte + "\n";
        return r;
    }
    bool Contient(const std::string& s) const { return Tout().find(s) != std::string::npos; }
};

struct Famille : testing::Test {
    test::Arbre a;
    std::uint32_t pere, mere, fils, fille, bru, petit, demi, autreFemme;
    std::uint32_t mariage;
    OptionsImpression o;

    void SetUp() override {
        pere = a.Personne("MARTIN", "Jean", 'H', "1850");
        mere = a.Personne("DURAND", "Marie", 'F', "1852");
        mariage = a.b().CreeMariage(pere, mere, "1875");
        fils = a.Enfant(pere, mere, "Paul", 'H', "1880");
        fille = a.Enfant(pere, mere, "Louise", 'F', "1882");
        autreFemme = a.Personne("PETIT", "Rose", 'F', "1860");
        a.b().CreeMariage(pere, autreFemme, "1890");
        demi = a.Enfant(pere, autreFemme, "Henri", 'H', "1891");
        bru = a.Personne("LEROY", "Anne", 'F', "1881");
        a.b().CreeMariage(fils, bru, "1905");
        petit = a.Enfant(fils, bru, "Pierre", 'H', "1906");
        o.date = "01/02/2026";
    }
    SurfaceEnregistree Rapport(Rapport r, std::uint32_t p, std::vector<std::uint32_t> l = {}) {
        SurfaceEnregistree s;
        EXPECT_EQ(ImprimeRapport(a.b(), a.fs, s, r, p, o, l), FinRapport::Termine);
        EXPECT_FALSE(s.ouverte);
        return s;
    }
};

} // namespace

TEST_F(Famille, PageHeadAndSheetSections) {
    const auto s = Rapport(Rapport::FicheIndividuelle, fils);
    ASSERT_EQ(s.pages.size(), 1u);
    const auto& p = s.pages[0];
    // The date of the print first, the banner, then the title in bold 10
    // inside its four lines.
    EXPECT_EQ(p.textes[0].texte, "Page cr\xE9\xE9" "e le 01/02/2026");
    EXPECT_EQ(p.textes[1].texte, "Sylvane");
    EXPECT_EQ(p.textes[2].texte, "Fiche de " + a.b().NomComplet(fils));
    EXPECT_TRUE(p.textes[2].police.gras);
    EXPECT_EQ(p.textes[2].police.points, 10);
    EXPECT_GE(p.traits, 4);
    // The title is centred on the page.
    const double l = MetriqueDejaVu::Instance().Largeur(p.textes[2].texte, {10, true});
    EXPECT_NEAR(p.textes[2].x + l / 2, p.largeur / 2, 1);
    for (const char* t : {"P\xE8re", "M\xE8re", "Enfant", "Fr\xE8res et s\x9Curs",
                          "Demi-fr\xE8res et demi-s\x9Curs", "Homme"})
        EXPECT_TRUE(s.Contient(t)) << t;
    EXPECT_TRUE(s.Contient("Louise"));
    EXPECT_TRUE(s.Contient("Henri"));
    EXPECT_TRUE(s.Contient("Pierre"));

    // A partial sheet keeps only the sections asked.
    std::array<bool, kSections> seuls{};
    seuls[SecEnfants] = true;
    o.Contenu(Contenu::Partielles, seuls);
    const auto partielle = Rapport(Rapport::FicheIndividuelle, fils);
    EXPECT_TRUE(partielle.Contient("Pierre"));
    EXPECT_FALSE(partielle.Contient("P\xE8re"));
    EXPECT_FALSE(partielle.Contient("Louise"));
}

TEST_F(Famille, ChildrenOfALaterMarriageAndQuickList) {
    const auto s = Rapport(Rapport::FicheIndividuelle, pere);
    EXPECT_TRUE(s.Contient("\xA5 " + a.b().NomComplet(demi)));
    EXPECT_TRUE(s.Contient("Conjoints"));
    o.Contenu(Contenu::ListeRapide);
    const auto famille = Rapport(Rapport::FicheFamille, fils);
    // One line a person: the head's three lines, then the person, father,
    // mother, spouse and child.
    ASSERT_EQ(famille.pages.size(), 1u);
    std::set<double> lignes;
    for (const auto& t : famille.pages[0].textes) lignes.insert(t.y);
    EXPECT_EQ(lignes.size(), 3u + 5u);
    EXPECT_TRUE(famille.Contient("Famille de " + a.b().NomComplet(fils)));
}

TEST_F(Famille, DescendantSheetsWithTheirNumbersAndCoupleSheets) {
    o.niveaux = 3;
    o.modeTri = TriParcours;
    const auto s = Rapport(Rapport::FichesDescendants, pere);
    EXPECT_TRUE(s.Contient("Descendants de " + a.b().NomComplet(pere)));
    for (std::uint32_t p : {fils, fille, demi, petit}) EXPECT_TRUE(s.Contient(a.b().NomComplet(p)));
    EXPECT_TRUE(s.Contient("fils de " + a.b().NomComplet(pere)));
    o.couple = true;
    const auto c = Rapport(Rapport::FicheIndividuelle, pere);
    // One sheet per marriage: both wives head a sheet of their own.
    int tetes = 0;
    for (const auto& t : c.pages[0].textes)
        tetes += t.police.points == 10 && t.texte.find(" \xD7 ") != std::string::npos;
    EXPECT_EQ(tetes, 2);
}

TEST_F(Famille, LongLinesWrapAndPagesBreakWithTheFullHead) {
    std::string note;
    for (int i = 0; i < 1500; ++i) note += "mot" + std::to_string(i) + " ";
    a.b().EcritNote(fils, a.b().LigneMotsCles(fils) + "\r\n" + note);
    const auto s = Rapport(Rapport::FicheIndividuelle, fils);
    ASSERT_GE(s.pages.size(), 2u);
    const auto& m = MetriqueDejaVu::Instance();
    for (const auto& p : s.pages) {
        // Every page starts with the head and its title again.
        EXPECT_EQ(p.textes[0].texte.rfind("Page cr", 0), 0u);
        EXPECT_EQ(p.textes[2].texte, "Fiche de " + a.b().NomComplet(fils));
        for (const auto& t : p.textes) {
            // Nothing past the bottom margin nor the right margin.
            EXPECT_LE(t.y + m.Hauteur(t.police), p.hauteur * (1 - 1.0 / 30) + 1);
            if (t.texte.rfind("mot", 0) == 0 || t.texte.rfind(" mot", 0) == 0) {
                EXPECT_LE(t.x + m.Largeur(t.texte, t.police), p.largeur * 0.95 + 1);
            }
        }
    }
    EXPECT_TRUE(s.Contient("mot1499"));
}

TEST_F(Famille, TitleWiderThanThePageAndWordWiderThanTheLine) {
    const std::uint32_t long_ = a.Personne(std::string(300, 'W'), "Paul");
    const auto s = Rapport(Rapport::FicheIndividuelle, long_);
    EXPECT_TRUE(s.Contient("WWWW"));
    for (const auto& p : s.pages)
        for (const auto& t : p.textes) EXPECT_GE(t.x, 0);
}

TEST_F(Famille, EventsAndDocumentsGoToTheAnnexes) {
    const long serie = JourSerie({12, 3, 1880});
    const std::uint32_t e = a.b().CreeEvtPersonne(fils, serie, "BAPM", "Caen");
    if (a.b().EvtNo(fils, 1) == 0) a.b().MajEvts(fils, e, "", 'A');
    const std::uint32_t d = a.b().CreeDoc("Acte de bapt\xEAme", "/actes/paul.jpg", "Acte");
    a.b().MajDocs(fils, d, 'A');
    o.annexeEvenements = o.annexeDocuments = true;
    const auto s = Rapport(Rapport::FicheIndividuelle, fils);
    // The sheet names the event with its week-day, and the annex prints it
    // again with the file of the document.
    EXPECT_TRUE(s.Contient("vendredi 12 mars 1880 : "));
    EXPECT_TRUE(s.Contient("vendredi 12 mars 1880, Caen"));
    EXPECT_TRUE(s.Contient("/actes/paul.jpg"));
    EXPECT_TRUE(s.Contient("Acte de bapt\xEAme (Acte)"));
}

TEST_F(Famille, StopAndEmptyLists) {
    int appels = 0;
    o.arret = [&] { return ++appels > 1; };
    o.niveaux = 3;
    SurfaceEnregistree s;
    EXPECT_EQ(ImprimeRapport(a.b(), a.fs, s, Rapport::FichesDescendants, pere, o),
              FinRapport::Arrete);
    EXPECT_FALSE(s.ouverte); // the page in course is closed
    SurfaceEnregistree vide;
    EXPECT_EQ(ImprimeRapport(a.b(), a.fs, vide, Rapport::Liste, 0, o, {}), FinRapport::Vide);
    EXPECT_TRUE(vide.pages.empty());
    o.arret = nullptr;
    const auto l = Rapport(Rapport::Liste, 0, {fils, fille});
    EXPECT_TRUE(l.Contient("R\xE9sultat de la recherche"));
    EXPECT_TRUE(l.Contient("Naissance : 1880"));
}

TEST(Papiers, TheListFollowsThePlatformCodes) {
    const auto t = TablePapiers();
    ASSERT_EQ(t.size(), 42u);
    EXPECT_EQ(RangPapier(9), 8u);
    EXPECT_EQ(t[RangPapier(9)].libelle, std::string("A4 (21 x 29,7 cm)"));
    EXPECT_EQ(RangPapier(12345), 8u);
    const Papier a4 = PapierDeRang(8, false), paysage = PapierDeRang(8, true);
    EXPECT_EQ(a4.largeur, 11906);
    EXPECT_EQ(a4.hauteur, 16838);
    EXPECT_EQ(paysage.largeur, 16838);
    EXPECT_EQ(ModeTriDeSequence(1), TriGeneration);
    EXPECT_EQ(ModeTriDeSequence(3), TriParcours);
}

// --- The print verb, through the program's own PDF writer ---------------------------

namespace {

int Lance(const std::string& ligne, std::string* sortie) {
    FILE* f = popen((ligne + " 2>&1").c_str(), "r");
    if (!f) return -1;
    char t[4096];
    for (std::size_t n; (n = std::fread(t, 1, sizeof t, f)) > 0;) sortie->append(t, n);
    const int s = pclose(f);
    return WIFEXITED(s) ? WEXITSTATUS(s) : -1;
}

} // namespace

TEST(VerbePrint, PdfOfTheSampleFamily) {
    test::DossierTemp d;
    const std::string cli = SYLVANE_CLI, base = d / "f.sv2", pdf = d / "fiche.pdf";
    std::string out;
    ASSERT_EQ(Lance(cli + " import-gedcom " SYLVANE_SOURCE_DIR "/samples/famille-exemple.ged '" +
                        base + "'",
                    &out),
              0)
        << out;
    out.clear();
    const int s = Lance(cli + " print '" + base + "' 9 --report desc --levels 3 --pdf '" + pdf + "'",
                        &out);
    if (s == 2 && out.find("PDF") != std::string::npos) GTEST_SKIP() << "no PDF writer";
    ASSERT_EQ(s, 0) << out;
    const std::string octets = test::LitFichier(pdf);
    EXPECT_EQ(octets.rfind("%PDF", 0), 0u);
    std::string texte;
    if (Lance("pdftotext '" + pdf + "' -", &texte) == 0) {
        EXPECT_NE(texte.find("Descendants de"), std::string::npos) << texte;
        EXPECT_NE(texte.find("DURAND"), std::string::npos);
    }
    // Refusals leave no file behind.
    out.clear();
    EXPECT_EQ(Lance(cli + " print '" + base + "' 9 --report tout --pdf '" + d / "x.pdf" + "'", &out),
              2);
    out.clear();
    EXPECT_NE(Lance(cli + " print '" + base + "' 99999 --pdf '" + d / "x.pdf" + "'", &out), 0);
    EXPECT_FALSE(std::filesystem::exists(d / "x.pdf"));
}
