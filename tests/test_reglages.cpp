#include "store/fichier_memoire.h"
#include "support/dossier_temp.h"
#include "text/messages.h"
#include "text/parametres.h"
#include "text/reglages.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

using namespace sylvane;
using sylvane::test::DossierTemp;

namespace {
const std::string D = "Defaut";
}

TEST(Parametres, FirstStartGivesTheDefaultsAndWritesThemBack) {
    DossierTemp prog;
    ReglagesMemoire r;
    Parametres p;
    LitParametres(r, p, prog.chemin());

    EXPECT_EQ(p.langue, "Fran\xE7" "ais");
    EXPECT_EQ(p.dossierTravail, prog / "Temp");
    EXPECT_EQ(p.aide, prog / "Fran\xE7" "ais.chm");
    EXPECT_EQ(p.couleurFond, 16711808);
    EXPECT_EQ(p.nombreCases, (std::array<int, 4>{8, 32, 48, 64}));
    EXPECT_EQ(p.affichageNom, (std::vector<std::string>{"FNAM", "BIRN"}));
    EXPECT_EQ(p.icones.size(), 25u);
    EXPECT_EQ(p.frequenceSauvegarde, 15);
    EXPECT_EQ(p.personneEnCours, 1);

    // A first start leaves a full section behind.
    const std::pair<const char*, const char*> attendus[] = {
        {"Langue", "Fran\xE7" "ais"},
        {"Fichier Communes", nullptr},
        {"Couleur Cadre Ind\xE9termin\xE9", "12632256"},
        {"D\xE9grad\xE9", "1"},
        {"Barre de fen\xEAtres", "1"},
        {"Taille Police 4", "8"},
        {"Nombre Cases 3", "48"},
        {"Affichage Nom", "FNAM/BIRN/"},
        {"Fr\xE9quence Sauvegarde", "15"},
        {"Icones", "0,1,2,3,4,10,99,11,12,13,14,8,99,28,29,99,15,16,99,17,18,99,22,23,24"},
        {"De Cujus 2", "0"},
        {"Adresse 8", ""},
        {"Type Document 1", "Acte"},
    };
    for (const auto& [cle, valeur] : attendus) {
        auto v = r.lit(D, cle);
        ASSERT_TRUE(v) << cle;
        if (valeur) {
            EXPECT_EQ(*v, valeur) << cle;
        }
    }
    EXPECT_EQ(r.lit(D, "Fichier Communes", ""), prog / "France.svx");
    EXPECT_EQ(r.lit(D, "G\xE9n\xE9" "anet", ""), prog / "geneanet");

    const auto particules = r.section("Particule");
    ASSERT_EQ(particules.size(), ParticulesParDefaut().size());
    for (const auto& [texte, drapeaux] : particules) EXPECT_EQ(drapeaux, "1 0") << texte;

    EXPECT_EQ(r.section("Liste Ev\xE9nements").size(), 26u);
    EXPECT_EQ(r.section("Ev\xE9nements\\MARR"),
              (std::vector<std::pair<std::string, std::string>>{
                  {"HUSB", "MHHUSB"}, {"WIFE", "MFWIFE"}, {"FATH", " HFATH"},
                  {"MOTH", " FMOTH"}, {"WITN", "  WITN"}}));
    EXPECT_EQ(r.section("Rubrique RELA").size(), 31u);
    EXPECT_EQ(r.section("Graphisme").size(), 19u);
    ASSERT_EQ(p.temoins.size(), 26u);
    EXPECT_EQ(p.temoins[25].evenement, "MARL");
    EXPECT_EQ(p.temoins[3].roles, TemoinsParDefaut()[3].roles);

    // Reading again changes nothing.
    const auto avant = r.sections();
    const auto defaut = r.section(D);
    Parametres p2;
    LitParametres(r, p2, prog.chemin());
    EXPECT_EQ(r.sections(), avant);
    EXPECT_EQ(r.section(D), defaut);
}

TEST(Parametres, EmptyParticleSectionGetsTheDefaultList) {
    DossierTemp prog;
    ReglagesMemoire r;
    r.ecrit("Particule", "von", "0 1");
    Parametres p;
    LitParametres(r, p, prog.chemin());
    ASSERT_EQ(p.particules.size(), 1u);
    EXPECT_FALSE(p.particules[0].nom);
    EXPECT_TRUE(p.particules[0].prenom);

    r.supprimeSection("Particule");
    LitParametres(r, p, prog.chemin());
    ASSERT_EQ(p.particules.size(), ParticulesParDefaut().size());
    for (const auto& x : p.particules) EXPECT_TRUE(x.nom && !x.prenom) << x.texte;
}

TEST(Parametres, SavedValuesComeBack) {
    DossierTemp prog;
    ReglagesMemoire r;
    Parametres p;
    LitParametres(r, p, prog.chemin());
    p.langue = "English";
    p.couleurFond = 123;
    p.degrade = false;
    p.nomPolice[2] = "Times";
    p.affichageNom = {"SURN", "FNAM"};
    p.icones = {0, 99, 7};
    p.particules = {{"de", true, true}, {"van", false, false}};
    p.typesDocument = {"Acte"};
    p.rubriques[0].second.pop_back();
    p.temoins.resize(2);
    p.historique.ajoute("/b/Dupont.sv2");
    SauveParametres(r, p);

    Parametres q;
    LitParametres(r, q, prog.chemin());
    EXPECT_EQ(q.langue, "English");
    EXPECT_EQ(q.couleurFond, 123);
    EXPECT_FALSE(q.degrade);
    EXPECT_EQ(q.nomPolice[2], "Times");
    EXPECT_EQ(q.affichageNom, p.affichageNom);
    EXPECT_EQ(q.icones, p.icones);
    ASSERT_EQ(q.particules.size(), 2u);
    EXPECT_TRUE(q.particules[0].prenom);
    EXPECT_FALSE(q.particules[1].nom);
    EXPECT_EQ(q.typesDocument, p.typesDocument);
    EXPECT_EQ(q.rubriques, p.rubriques);
    ASSERT_EQ(q.temoins.size(), 2u);
    EXPECT_EQ(q.temoins[1].roles, p.temoins[1].roles);
    EXPECT_EQ(q.historique.entrees()[0], "/b/Dupont.sv2");
    // A number that is no number keeps the default.
    r.ecrit(D, "Taille Police 1", "grand");
    r.ecrit(D, "Fr\xE9quence Sauvegarde", " 30 min");
    LitParametres(r, q, prog.chemin());
    EXPECT_EQ(q.taillePolice[0], 8);
    EXPECT_EQ(q.frequenceSauvegarde, 30);
}

TEST(Parametres, PerBaseValuesLiveInTheirOwnSection) {
    ReglagesMemoire r;
    Parametres p;
    p.deCujus = 17;
    p.couleurPoliceFemme = 99;
    SauveParametresBase(r, "/g/Martin.sv2", p);
    EXPECT_EQ(r.lit("/g/Martin.sv2", "De Cujus", ""), "17");
    EXPECT_FALSE(r.lit(D, "De Cujus"));

    Parametres q;
    LitParametresBase(r, "/g/Martin.sv2", q);
    EXPECT_EQ(q.deCujus, 17);
    EXPECT_EQ(q.couleurPoliceFemme, 99);
    Parametres z;
    z.deCujus = 5;
    LitParametresBase(r, "/g/Autre.sv2", z); // unknown base: values kept
    EXPECT_EQ(z.deCujus, 5);
}

TEST(Historique, SlidingRulesAndKeysWithABlank) {
    Historique h;
    for (const char* b : {"/a.sv2", "/b.sv2", "/c.sv2", "/d.sv2"}) h.ajoute(b);
    using E = std::array<std::string, 4>;
    EXPECT_EQ(h.entrees(), (E{"/d.sv2", "/c.sv2", "/b.sv2", "/a.sv2"}));
    h.ajoute("/d.sv2"); // already first
    EXPECT_EQ(h.entrees(), (E{"/d.sv2", "/c.sv2", "/b.sv2", "/a.sv2"}));
    h.ajoute("/b.sv2"); // third: those above slide down
    EXPECT_EQ(h.entrees(), (E{"/b.sv2", "/d.sv2", "/c.sv2", "/a.sv2"}));
    h.ajoute("/a.sv2"); // fourth
    EXPECT_EQ(h.entrees(), (E{"/a.sv2", "/b.sv2", "/d.sv2", "/c.sv2"}));
    h.ajoute("/e.sv2"); // new: the fourth is lost
    EXPECT_EQ(h.entrees(), (E{"/e.sv2", "/a.sv2", "/b.sv2", "/d.sv2"}));

    ReglagesMemoire r;
    h.sauve(r);
    EXPECT_EQ(r.lit(D, "Historique 1", ""), "/e.sv2");
    EXPECT_EQ(r.lit(D, "Historique 4", ""), "/d.sv2");
    EXPECT_FALSE(r.lit(D, "Historique1"));
    Historique k;
    k.lit(r);
    EXPECT_EQ(k.entrees(), h.entrees());
    EXPECT_EQ(Historique::Libelle("/home/moi/G\xE9n\xE9" "alogie/Dupont.sv2"), "Dupont");
}

TEST(ReglagesIni, NamesAndValuesSurviveTheFile) {
    SystemeMemoire fs;
    {
        ReglagesIni r(fs, "/c/Sylvane.ini");
        LotReglages lot(r);
        r.ecrit("Ev\xE9nements\\BIRT", "CHIL", "M CHIL");
        r.ecrit("D", "[cl\xE9=x]", "a=b]\\n\nc\r");
        r.ecrit("D", "#", " ");
        r.ecrit("Historique ", "Historique 1", "");
        EXPECT_FALSE(fs.existe("/c/Sylvane.ini")); // held until the end of the lot
    }
    const std::string texte = fs.contenu("/c/Sylvane.ini");
    EXPECT_NE(texte.find("[Ev\xC3\xA9nements\\\\BIRT]\n"), std::string::npos) << texte;
    ReglagesIni r(fs, "/c/Sylvane.ini");
    EXPECT_EQ(r.lit("Ev\xE9nements\\BIRT", "CHIL", ""), "M CHIL");
    EXPECT_EQ(r.lit("D", "[cl\xE9=x]", ""), "a=b]\\n\nc\r");
    EXPECT_EQ(r.lit("D", "#", ""), " ");
    EXPECT_TRUE(r.lit("Historique ", "Historique 1"));
    EXPECT_EQ(r.sections().size(), 3u);
}

TEST(ReglagesIni, AFailedWriteKeepsTheOldFile) {
    SystemeMemoire fs;
    ReglagesIni r(fs, "/c/Sylvane.ini");
    r.ecrit("D", "a", "1");
    const std::string avant = fs.contenu("/c/Sylvane.ini");
    fs.echouerApres(2, true);
    EXPECT_THROW(r.ecrit("D", "a", "2"), ErreurES);
    fs.retablir();
    EXPECT_EQ(fs.contenu("/c/Sylvane.ini"), avant);
    fs.simulerPanne();
    EXPECT_EQ(ReglagesIni(fs, "/c/Sylvane.ini").lit("D", "a", ""), "1");

    r.ecrit("D", "a", "3");
    fs.simulerPanne();
    EXPECT_EQ(ReglagesIni(fs, "/c/Sylvane.ini").lit("D", "a", ""), "3");
}

TEST(ReglagesIni, DamagedFileKeepsWhatCanBeRead) {
    SystemeMemoire fs;
    ecrireTout(fs, "/c/s.ini",
               "sans section=1\n[D]\nbon=oui\r\nsans egal\n[ouvert\nx=perdu\n[E]\n=vide\n\xFF=\xE9\n");
    ReglagesIni r(fs, "/c/s.ini");
    EXPECT_EQ(r.lit("D", "bon", ""), "oui");
    EXPECT_FALSE(r.lit("ouvert", "x"));
    EXPECT_EQ(r.lit("E", "", "?"), "vide");
    EXPECT_EQ(r.lit("E", "\xFF", ""), "\xE9");
}

TEST(ReglagesIni, AFileOfManyKeysAndSectionsKeepsItsOrderAndItsLastValues) {
    // Look-ups go through an index (its speed on 300,000 keys is measured by
    // bench_text): the file's order and a key repeated later still count.
    std::string texte = "[Defaut]\n";
    for (int i = 0; i < 2000; ++i) texte += "K" + std::to_string(i) + "=v\n";
    for (int i = 0; i < 1000; ++i) texte += "[S" + std::to_string(i) + "]\nk=" + std::to_string(i) + "\n";
    texte += "[Defaut]\nK7=repris\n";
    SystemeMemoire fs;
    ecrireTout(fs, "/c/s.ini", texte);
    ReglagesIni r(fs, "/c/s.ini");
    Parametres p;
    LitParametres(r, p, "/programme");
    EXPECT_EQ(r.lit("Defaut", "K7", ""), "repris");
    EXPECT_EQ(r.lit("S999", "k", ""), "999");
    EXPECT_EQ(r.section("Defaut")[7].first, "K7"); // in the order of the file
    r.supprimeSection("S5");
    EXPECT_FALSE(r.lit("S5", "k"));
    EXPECT_EQ(r.lit("S6", "k", ""), "6");
    r.ecrit("S5", "k", "nouveau");
    EXPECT_EQ(r.sections().back(), "S5");
}

TEST(ReglagesIni, ConfigurationFolderFollowsXdg) {
    DossierTemp d;
    const char* ancien = std::getenv("XDG_CONFIG_HOME");
    const std::string garde = ancien ? ancien : "";
    setenv("XDG_CONFIG_HOME", d.chemin().c_str(), 1);
    EXPECT_EQ(FichierReglages(), d / "Sylvane/Sylvane.ini");
    {
        ReglagesIni r(systemeReel(), FichierReglages());
        r.ecrit("Defaut", "Langue", "English");
    }
    EXPECT_EQ(ReglagesIni(systemeReel(), FichierReglages()).lit("Defaut", "Langue", ""), "English");
    setenv("XDG_CONFIG_HOME", "", 1);
    setenv("HOME", "/home/x", 1);
    EXPECT_EQ(DossierConfiguration(), "/home/x/.config/Sylvane");
    if (ancien) setenv("XDG_CONFIG_HOME", garde.c_str(), 1);
    else unsetenv("XDG_CONFIG_HOME");
}

TEST(Parametres, ChangingLanguageRemembersItAndItsHelp) {
    DossierTemp prog;
    test::EcritFichier(prog / "English.mes", EcritFichierMessages({{754, "Birth"}}));
    ReglagesMemoire r;
    Parametres p;
    EXPECT_FALSE(ChangeLangue(r, p, "Klingon", prog.chemin()));
    EXPECT_FALSE(r.lit(D, "Langue"));
    ASSERT_TRUE(ChangeLangue(r, p, "English", prog.chemin()));
    EXPECT_EQ(Message(754), "Birth");
    EXPECT_EQ(r.lit(D, "Langue", ""), "English");
    EXPECT_EQ(r.lit(D, "Aide", ""), prog / "English.chm");
    DefinitMessages({});
}

TEST(Parametres, MissingLanguageFileFallsBackOnAnother) {
    DossierTemp prog;
    ReglagesMemoire r;
    Parametres p;
    p.langue = "Klingon";
    EXPECT_FALSE(OuvreLangueDemarrage(r, p, prog.chemin()));
    test::EcritFichier(prog / "deutsch.mes", EcritFichierMessages({{754, "Geburt"}}));
    ASSERT_TRUE(OuvreLangueDemarrage(r, p, prog.chemin()));
    EXPECT_EQ(p.langue, "Deutsch");
    EXPECT_EQ(r.lit(D, "Langue", ""), "Deutsch");
    EXPECT_EQ(Message(754), "Geburt");
    DefinitMessages({});
}
