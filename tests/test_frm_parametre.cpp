// The settings form: every value goes through the form unchanged, a wrong
// value is refused with nothing written, cancel leaves everything, and a
// confirmation reaches the settings, the store, the base's header and the
// numberings.
#include "store/fichier_memoire.h"
#include "support/dossier_temp.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/application.h"
#include "ui/frm_parametre.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace sylvane;
using namespace sylvane::test;

namespace {

struct Banc : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire r;
    Application app{fs, r, "/prog"};
    ServicesFaux s;
    void SetUp() override { app.Demarre(); }
    void TearDown() override { app.Termine(); }
    FrmParametre Form() { return FrmParametre(app, s.boites, s.selecteur, [](const std::string&) { return true; }); }
    // A value of every kind changed from its default.
    static void ChangeTout(Parametres& p) {
        p.particules = {{"de", true, false}, {"van", true, true}, {"y", false, true}};
        p.affichageNom = {"NUMB", "BIRN", "FNAM"};
        p.frequenceSauvegarde = 5;
        p.dossierTravail = "/travail";
        p.aide = "/aide.chm";
        p.fichierCommunes = "/c.svx";
        p.geneanet = "/g";
        p.couleurFond = 1;
        p.degrade = false;
        p.couleurCadreHomme = 2;
        p.couleurCadreFemme = 3;
        p.couleurCadreIndetermine = 4;
        p.couleurPoliceHomme = 5;
        p.couleurPoliceFemme = 6;
        p.couleurPoliceIndetermine = 7;
        p.maximumRechercheParente = 20;
        p.typePresentation = 3;
        p.nomPolice = {"A", "B", "C", "D"};
        p.taillePolice = {9, 10, 11, 12};
        p.nombreCases = {4, 16, 24, 99};
        p.proportionnel = {false, true, false, true};
        p.assistant = true;
        p.barreMenus = true;
        p.barreFenetres = false;
        p.motClePrenom = true;
        p.motCleNom = true;
        p.icones = {0, 99, 35};
        p.conversionNom = "1";
        p.conversionPrenom = "2";
        p.conversionLieu = "0";
        p.nomImage = "/img.png";
        p.auteur = "Moi";
        p.adresse = {"a1", "a2", "a3", "a4", "a5", "a6", "a7", "a8"};
        p.typesDocument = {"Acte", "Photo"};
        p.rubriques = {{"TITL", {"KING"}}, {"EVEN", {"BIRT", "DEAT"}}};
        p.graphisme = {{"PNG", "*.png"}, {"JPG", "*.jpg;*.jpeg"}};
        p.temoins = {{"BIRT", {"M CHIL", " HFATH"}}, {"GRAD", {"M MAIN"}}};
    }
};

TEST_F(Banc, EveryValueGoesThroughTheFormAndIsSaved) {
    auto f = Form();
    EXPECT_FALSE(f.Modifie());
    ChangeTout(f.etat.p);
    EXPECT_TRUE(f.Modifie());
    EtatParametre voulu = f.etat;
    ASSERT_TRUE(f.Applique()) << (s.boites.informations.empty() ? 0 : s.boites.informations[0]);
    EXPECT_TRUE(s.boites.informations.empty());
    // The settings in force, the form loaded again, and the store read
    // afresh all hold the same values.
    EXPECT_FALSE(f.Modifie());
    EXPECT_TRUE(MemesParametres(f.etat, voulu));
    EtatParametre relu;
    LitParametres(r, relu.p, "/prog");
    EXPECT_TRUE(MemesParametres(relu, voulu));
    EXPECT_EQ(r.lit("Defaut", "Icones", ""), "0,99,35");
    EXPECT_EQ(r.lit("Particule", "y", ""), "0 1");
    EXPECT_EQ(r.lit("Defaut", "Affichage Nom", ""), "NUMB/BIRN/FNAM/");
}

TEST_F(Banc, CancelChangesNothing) {
    const std::string avant = r.lit("Defaut", "Couleur Fond", "");
    {
        auto f = Form();
        ChangeTout(f.etat.p);
        f.AjouteParticule("zz");
        // The form is dropped without Applique.
    }
    EXPECT_EQ(r.lit("Defaut", "Couleur Fond", ""), avant);
    EXPECT_EQ(app.parametres().couleurFond, 16711808);
    EXPECT_EQ(app.parametres().particules.size(), ParticulesParDefaut().size());
}

TEST_F(Banc, WrongValuesAreRefusedAndNothingIsWritten) {
    namespace X = MsgParametre;
    struct Cas {
        void (*change)(Parametres&);
        int message;
        OngletParametre onglet;
    };
    const Cas cas[] = {
        {[](Parametres& p) { p.dossierTravail.clear(); }, X::kTravailVide, OngletParametre::General},
        {[](Parametres& p) { p.frequenceSauvegarde = 0; }, X::kFrequence, OngletParametre::General},
        {[](Parametres& p) { p.frequenceSauvegarde = 1441; }, X::kFrequence, OngletParametre::General},
        {[](Parametres& p) { p.fichierCommunes = "a\nb"; }, X::kLigne, OngletParametre::General},
        {[](Parametres& p) { p.affichageNom.clear(); }, X::kAffichageVide, OngletParametre::Noms},
        {[](Parametres& p) { p.affichageNom.assign(11, "FNAM"); }, X::kAffichageTrop, OngletParametre::Noms},
        {[](Parametres& p) { p.affichageNom = {"A/B"}; }, X::kBarre, OngletParametre::Noms},
        {[](Parametres& p) { p.maximumRechercheParente = 0; }, X::kParente, OngletParametre::Presentation},
        {[](Parametres& p) { p.typePresentation = 10; }, X::kType, OngletParametre::Presentation},
        {[](Parametres& p) { p.taillePolice[2] = 3; }, X::kTaille, OngletParametre::Presentation},
        {[](Parametres& p) { p.nombreCases[3] = 0; }, X::kCases, OngletParametre::Presentation},
        {[](Parametres& p) { p.nomPolice[0].clear(); }, X::kPolice, OngletParametre::Presentation},
        {[](Parametres& p) { p.rubriques[0].second.push_back("A#"); }, X::kDiese, OngletParametre::Rubriques},
        {[](Parametres& p) { p.temoins[0].roles.assign(20, "M CHIL"); }, X::kRoles, OngletParametre::Evenements},
        {[](Parametres& p) { p.temoins[0].roles.push_back("M "); }, X::kVide, OngletParametre::Evenements},
        {[](Parametres& p) { p.typesDocument.push_back(""); }, X::kVide, OngletParametre::Documents},
        {[](Parametres& p) { p.graphisme.push_back({"PNG", ""}); }, X::kGraphisme, OngletParametre::Documents},
        {[](Parametres& p) { p.adresse[7] = "x\ry"; }, X::kLigne, OngletParametre::Auteur},
    };
    for (const auto& c : cas) {
        auto f = Form();
        c.change(f.etat.p);
        const auto refus = f.Valide();
        EXPECT_EQ(refus.message, c.message);
        EXPECT_EQ(refus.onglet, c.onglet) << c.message;
        s.boites.informations.clear();
        EXPECT_FALSE(f.Applique());
        EXPECT_EQ(s.boites.informations, std::vector<int>{c.message});
    }
    EXPECT_EQ(r.lit("Defaut", "Fr\xE9quence Sauvegarde", ""), "15");
    EXPECT_EQ(r.lit("Defaut", "Adresse 8", ""), "");
}

TEST(FrmParametreDisque, AWorkFolderThatCannotBeMadeIsRefused) {
    DossierTemp d;
    EcritFichier(d / "bloc", "x");
    ReglagesMemoire r;
    Application app(systemeReel(), r, d.chemin());
    app.Demarre();
    ServicesFaux s;
    FrmParametre f(app, s.boites, s.selecteur);
    f.etat.p.dossierTravail = d / "bloc/sous";
    f.etat.p.couleurFond = 5;
    EXPECT_FALSE(f.Applique());
    EXPECT_EQ(s.boites.informations, std::vector<int>{MsgParametre::kTravailCreation});
    EXPECT_EQ(app.parametres().couleurFond, 16711808);
    f.etat.p.dossierTravail = d / "neuf/sous";
    EXPECT_TRUE(f.Applique());
    EXPECT_TRUE(std::filesystem::is_directory(d / "neuf/sous"));
    EXPECT_EQ(app.parametres().couleurFond, 5);
}

TEST_F(Banc, ListEditingRefusesDoublesAndBadWords) {
    namespace X = MsgParametre;
    auto f = Form();
    EXPECT_EQ(f.AjouteParticule(" ter "), 0);
    EXPECT_EQ(f.etat.p.particules.back().texte, "ter");
    EXPECT_EQ(LigneParticule(f.etat.p.particules.back()), "ter (N)");
    EXPECT_EQ(f.AjouteParticule("ter"), X::kDouble);
    EXPECT_EQ(f.AjouteParticule("de la"), X::kParticule);
    EXPECT_EQ(f.AjouteParticule(""), X::kParticule);
    EXPECT_EQ(f.AjouteAffichage("FNAM"), X::kDouble);
    EXPECT_EQ(f.AjouteAffichage("OFNM"), 0);
    EXPECT_EQ(f.AjouteTagRubrique(0, "KING"), X::kDouble);
    EXPECT_EQ(f.AjouteTagRubrique(0, "BARO"), 0);
    EXPECT_EQ(f.AjouteEvenement("BIRT"), X::kDouble);
    EXPECT_EQ(f.AjouteEvenement("XXXX"), 0);
    const std::size_t e = f.etat.p.temoins.size() - 1;
    EXPECT_EQ(f.AjouteRole(e, {true, 'F', "MAIN"}), 0);
    EXPECT_EQ(f.etat.p.temoins[e].roles, std::vector<std::string>{"MFMAIN"});
    EXPECT_EQ(f.AjouteRole(e, {false, ' ', "MAIN"}), X::kDouble);
    for (int i = 1; i < 19; ++i) EXPECT_EQ(f.AjouteRole(e, {false, ' ', "R" + std::to_string(i)}), 0);
    EXPECT_EQ(f.AjouteRole(e, {false, ' ', "R99"}), X::kRoles);
    EXPECT_EQ(f.AjouteTypeDocument("Acte"), X::kDouble);
    EXPECT_EQ(f.AjouteTypeDocument("Carnet"), 0);
    EXPECT_EQ(f.AjouteGraphisme("PNG", "*.png"), 0);
    EXPECT_EQ(f.AjouteGraphisme("BMP", "*.x"), X::kDouble);
    EXPECT_EQ(f.AjouteGraphisme("SVG", ""), X::kGraphisme);
    EXPECT_FALSE(f.Valide());
    // Moves stop at the ends.
    std::vector<int> v = {1, 2, 3};
    EXPECT_EQ(Deplace(v, 0, -1), 0u);
    EXPECT_EQ(Deplace(v, 0, 1), 1u);
    EXPECT_EQ(Deplace(v, 2, 1), 2u);
    EXPECT_EQ(v, (std::vector<int>{2, 1, 3}));
}

TEST(FrmParametreOutils, NumbersToolsRolesAndConversions) {
    EXPECT_EQ(OutilDuNumero(0), 2);
    EXPECT_EQ(OutilDuNumero(6), 8);
    EXPECT_EQ(OutilDuNumero(7), -1);
    EXPECT_EQ(OutilDuNumero(8), 8);
    EXPECT_EQ(OutilDuNumero(99), 0);
    EXPECT_EQ(OutilDuNumero(36), -1);
    for (int t : OutilsDisponibles()) EXPECT_EQ(OutilDuNumero(NumeroDeOutil(t)), t);
    EXPECT_EQ(NumeroDeOutil(0), 99);
    const Role r = LitRole(" FMOTH");
    EXPECT_FALSE(r.obligatoire);
    EXPECT_EQ(r.sexe, 'F');
    EXPECT_EQ(r.tag, "MOTH");
    for (const char* s : {"M CHIL", " HFATH", "  WITN", "MFWIFE"}) EXPECT_EQ(EcritRole(LitRole(s)), s);
    EXPECT_EQ(ValeurConversion(0, ""), "");
    EXPECT_EQ(ValeurConversion(0, "0"), "0");
    EXPECT_EQ(ValeurConversion(0, "1"), "0");
    EXPECT_EQ(ValeurConversion(2, ""), "2");
    EXPECT_EQ(IndexConversion("x"), 0);
}

TEST_F(Banc, WithABaseTheHeaderOptionsAndDeCujusFollow) {
    app.NouvelleBase("/d/a.sv2");
    Base& b = app.base();
    const auto deZeeuw = b.CreePersonne("de Zeeuw", "Piet", "", 'H', "1900");
    const auto martin = b.CreePersonne("Martin", "Luc", "", 'H', "1900");
    const auto zola = b.CreePersonne("Zola", "Emile", "", 'H', "1900");
    b.TeteModifiable().modeTri = '0';
    b.OublieCles();
    b.TriTable();
    ASSERT_EQ(b.TriFiche(1), deZeeuw); // "de Zeeuw" sorts under D, before Martin
    auto f = Form();
    EXPECT_TRUE(f.etat.baseOuverte);
    EXPECT_FALSE(f.etat.particulesTri);
    f.etat.particulesTri = true;
    f.etat.premierPrenom = true;
    s.selecteur.reponses = {zola};
    EXPECT_TRUE(f.ChoisitDeCujus(1));
    EXPECT_EQ(s.selecteur.departs, std::vector<std::uint32_t>{0});
    f.etat.p.couleurCadreFemme = 42;
    ASSERT_TRUE(f.Applique());
    EXPECT_EQ(b.Tete().particules, '1');
    EXPECT_EQ(b.Tete().premierPrenom, '1');
    EXPECT_EQ(s.boites.informations,
              (std::vector<int>{MsgParametre::kPremierPrenom, MsgParametre::kTriRefait}));
    // With "de" set aside, "Zeeuw" sorts after "Martin" and before "Zola".
    EXPECT_EQ(b.TriFiche(1), martin);
    EXPECT_EQ(b.TriFiche(2), deZeeuw);
    EXPECT_EQ(app.numeros().deCujus1.deCujus, zola);
    EXPECT_EQ(r.lit("/d/a.sv2", "Couleur Cadre Femme", ""), "42");
    EXPECT_EQ(r.lit("/d/a.sv2", "De Cujus", ""), std::to_string(zola));
    // Cancelled picker: the De Cujus stays.
    EXPECT_FALSE(f.ChoisitDeCujus(2));
    EXPECT_EQ(f.etat.p.deCujus2, 0);
    app.FermeBase();
}

TEST_F(Banc, ALanguageThatCannotOpenIsRefused) {
    FrmParametre f(app, s.boites, s.selecteur, [](const std::string&) { return false; });
    f.etat.p.langue = "Klingon";
    f.etat.p.couleurFond = 9;
    EXPECT_FALSE(f.Applique());
    EXPECT_EQ(s.boites.informations, std::vector<int>{MsgParametre::kLangue});
    EXPECT_EQ(app.parametres().couleurFond, 16711808);
    std::string vue;
    FrmParametre g(app, s.boites, s.selecteur, [&](const std::string& l) { vue = l; return true; });
    g.etat.p.langue = "English";
    EXPECT_TRUE(g.Applique());
    EXPECT_TRUE(g.langueChangee);
    EXPECT_EQ(vue, "English");
}

} // namespace
