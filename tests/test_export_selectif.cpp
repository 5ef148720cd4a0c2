// Who goes into an export, the hand-off to the outside tool, and backup
// and restore of a whole base.
#include "exchange/geneanet.h"
#include "exchange/sauvegarde.h"
#include "exchange/selection.h"
#include "exchange/svr.h"
#include "support/base_memoire.h"
#include "support/dossier_temp.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace sylvane;

namespace {

// Three generations: grand-père GP with two wives (GM, then GM2), their
// children F (married to B, whose father is BP) and S; F's child PE; GP's
// own father AA.
struct Famille : test::BaseMemoire {
    std::uint32_t AA, GP, GM, GM2, F, S, B, BP, PE, Tard;
    Famille() {
        AA = b.CreePersonne("A", "aa", "", 'H', "1750");
        GP = b.CreePersonne("A", "gp", "", 'H', "1780");
        GM = b.CreePersonne("C", "gm", "", 'F', "1782");
        GM2 = b.CreePersonne("D", "gm2", "", 'F', "1790");
        F = b.CreePersonne("A", "f", "", 'H', "1810");
        S = b.CreePersonne("A", "s", "", 'F', "1812");
        B = b.CreePersonne("E", "b", "", 'F', "1811");
        BP = b.CreePersonne("E", "bp", "", 'H', "1785");
        PE = b.CreePersonne("A", "pe", "", 'H', "1840");
        Tard = b.CreePersonne("A", "tard", "", 'H', "1950");
        Parents(GP, AA, 0);
        Parents(F, GP, GM);
        Parents(S, GP, GM);
        Parents(B, BP, 0);
        Parents(PE, F, B);
        Parents(Tard, PE, 0);
        b.CreeMariage(GP, GM);
        b.CreeMariage(GP, GM2);
        b.CreeMariage(F, B);
    }
    void Parents(std::uint32_t n, std::uint32_t p, std::uint32_t m) {
        b.EcritPere(n, p);
        b.MajEnfants(p, n, 'A');
        if (m) {
            b.EcritMere(n, m);
            b.MajEnfants(m, n, 'A');
        }
    }
    std::vector<std::uint32_t> Exportes(const Selection& sel) {
        std::vector<std::uint32_t> r;
        for (std::uint32_t n = 1; n <= b.Tete().maxPersonne; ++n)
            if (sel.Exporte(n)) r.push_back(n);
        return r;
    }
};

using V = std::vector<std::uint32_t>;

} // namespace

TEST(Selection, DescendantsTakeTheLineAndTheSpousesButNotTheInLawsParents) {
    Famille f;
    Selection sel(f.b);
    EXPECT_EQ(sel.SelectionneDescendants(f.GP), 8u);
    EXPECT_EQ(f.Exportes(sel), (V{f.GP, f.GM, f.GM2, f.F, f.S, f.B, f.PE, f.Tard}));
    EXPECT_EQ(sel.Marque(f.B), '3');
    sel.sans1900 = true;
    EXPECT_FALSE(sel.Exporte(f.Tard));
}

TEST(Selection, AscendantsTakeBothParentsLinesAndSelectionsAddUp) {
    Famille f;
    Selection sel(f.b);
    // The mother B is the father's spouse before she is walked: her own
    // father BP is still reached.
    sel.SelectionneAscendants(f.PE);
    EXPECT_EQ(f.Exportes(sel), (V{f.AA, f.GP, f.GM, f.GM2, f.F, f.B, f.BP, f.PE}));
    EXPECT_FALSE(sel.Exporte(f.S)); // an aunt is no ascendant
    sel.SelectionneDescendants(f.PE);
    EXPECT_TRUE(sel.Exporte(f.Tard));
    EXPECT_TRUE(sel.Exporte(f.BP));
    sel.Exclut(f.GM2);
    EXPECT_FALSE(sel.Exporte(f.GM2));
    // The marriage of GP and GM2 now has one spouse out; a marriage with
    // no husband never goes, whoever its wife is.
    EXPECT_TRUE(sel.MariageExporte(1));
    EXPECT_FALSE(sel.MariageExporte(2));
    f.b.EcritMari(3, 0);
    EXPECT_FALSE(sel.MariageExporte(3));
}

TEST(Selection, CollateralsGoOnlyWithTheirOption) {
    Famille f;
    Selection sel(f.b);
    sel.Inclut(f.PE);
    // A collateral left from a walk: mark '2' folds to '4'.
    sel.MarqueDescendants(f.S);
    EXPECT_EQ(sel.Marque(f.S), '1');
    EXPECT_EQ(sel.SelectionneDescendants(f.S), 2u);
    EXPECT_FALSE(sel.Exporte(f.GP));
    // A loop in a damaged base (a person its own grandfather) ends.
    f.Parents(f.AA, f.PE, 0);
    Selection boucle(f.b);
    EXPECT_GE(boucle.SelectionneAscendants(f.PE), 5u);
    EXPECT_GE(boucle.SelectionneDescendants(f.AA), 5u);
}

TEST(Selection, ExportOfASelectionCutsTheLinksThatLeaveIt) {
    Famille f;
    const std::uint32_t e = f.b.CreeEvtPersonne(f.F, 2380000, "BIRT", "Caen");
    Selection sel(f.b);
    sel.SelectionneDescendants(f.F);
    ASSERT_TRUE(ExporteSvr(f.b, sel, f.p, f.fs, "/s.svr"));
    const std::string t = lireTout(f.fs, "/s.svr");
    // F's father is outside: " 0 "; the birth keeps F, not his parents.
    EXPECT_NE(t.find("A;f;;;\r\nH\r\n1810\r\n\r\n 0 \r\n 0 \r\n"), std::string::npos);
    EXPECT_NE(t.find(" " + std::to_string(e) + " \r\n2380000\r\nCaen\r\nBIRT\r\n"),
              std::string::npos);
    EXPECT_NE(t.find("\r\nBIRT\r\nf A\r\n" + std::to_string(f.F) + ";\r\n"), std::string::npos);
    // GP is not in: only the marriage of F and B is, renumbered 1.
    EXPECT_NE(
        t.find("[MARIAGES]\r\n " + std::to_string(f.F) + " \r\n " + std::to_string(f.B) + " \r\n"),
        std::string::npos);
    EXPECT_EQ(t.find("gp"), std::string::npos);
    // Stopped at the first checkpoint, the earlier file stays as it was.
    for (int i = 0; i < 200; ++i)
        f.b.CreePersonne("Z", "z", "", 'H', "1900");
    Selection tout(f.b);
    tout.SelectionneTout();
    DialogueEchange d;
    d.arret = [] { return true; };
    EXPECT_FALSE(ExporteSvr(f.b, tout, f.p, f.fs, "/s.svr", d));
    EXPECT_EQ(lireTout(f.fs, "/s.svr"), t);
    EXPECT_FALSE(f.fs.existe("/~s.svr"));
}

TEST(Geneanet, AFileNameWithShellMetacharactersRunsNoCommand) {
    test::DossierTemp dossier;
    const std::string piege = dossier / "piege";
    test::EcritFichier(dossier / "outil.sh", "printf '%s' \"$1\" > recu.txt\n"
                                             "printf 'erreur' > \"$(basename \"$1\" .ged).err\"\n");
    AppelGeneanet appel;
    appel.dossier = dossier.chemin();
    // A title holds no "/": the commands would run in the tool's folder.
    appel.titre = "a; touch piege1; $(touch piege2) `touch piege3` | x";
    appel.commande = {"/bin/sh", "outil.sh"};
    std::string gedcomEcrit, montre;
    DialogueEchange d;
    d.montreFichier = [&](const std::string& c) { montre = c; };
    const int statut = LanceGeneanet(
        systemeReel(), appel,
        [&](const std::string& chemin) {
            gedcomEcrit = chemin;
            test::EcritFichier(chemin, "0 HEAD\r\n");
        },
        d);
    EXPECT_EQ(statut, 0);
    EXPECT_EQ(test::LitFichier(dossier / "recu.txt"), appel.titre + ".ged");
    for (const char* k : {"1", "2", "3"})
        EXPECT_FALSE(std::filesystem::exists(piege + k));
    EXPECT_FALSE(std::filesystem::exists(gedcomEcrit)); // the GEDCOM is deleted
    EXPECT_EQ(montre, dossier / (appel.titre + ".err"));

    // A tool that cannot start gives the box, and nothing else.
    appel.commande = {dossier / "absent"};
    std::string boite;
    d.message = [&](const std::string& t) { boite = t; };
    montre.clear();
    EXPECT_EQ(LanceGeneanet(
                  systemeReel(), appel, [](const std::string&) {}, d),
              -1);
    EXPECT_EQ(boite, "Erreur appel G\xE9n\xE9"
                     "anet");
    EXPECT_TRUE(montre.empty());
}

TEST(Sauvegarde, ACopyHoldsTheCommittedBaseAndARestoreAsksBeforeReplacing) {
    test::BaseMemoire f;
    f.b.CreePersonne("AVANT", "a", "", 'H', "1900");
    f.b.ValideBase();
    const std::uint32_t n = f.b.CreePersonne("NOUVEAU", "n", "", 'H', "1901"); // not committed
    EXPECT_EQ(ChangeFin("/b.sv2", "sav"), "/b.sav");
    Sauvegarde(f.b, f.fs, "/b.sav");
    EXPECT_EQ(lireTout(f.fs, "/b.sav"), lireTout(f.fs, "/b.sv2")); // commit came first

    f.b.CreePersonne("APRES", "x", "", 'H', "1902");
    f.b.FermeBase();
    const std::string apres = lireTout(f.fs, "/b.sv2");
    int questions = 0;
    DialogueEchange non;
    non.question = [&](int m) {
        EXPECT_EQ(m, kVeutRemplacer);
        ++questions;
        return false;
    };
    EXPECT_FALSE(Restauration(f.b, f.fs, "/b.sav", non));
    EXPECT_EQ(lireTout(f.fs, "/b.sv2"), apres);
    EXPECT_EQ(questions, 1);
    EXPECT_FALSE(Restauration(f.b, f.fs, "/b.sav")); // no answer is No

    DialogueEchange oui;
    oui.question = [](int) { return true; };
    ecrireTout(f.fs, "/b.log", "journal d'une autre base");
    ASSERT_TRUE(Restauration(f.b, f.fs, "/b.sav", oui));
    EXPECT_FALSE(f.fs.existe("/b.log"));
    EXPECT_EQ(f.b.Tete().maxPersonne, n);
    EXPECT_EQ(f.b.LitNom(n), "NOUVEAU");
    // A copy that cannot be read leaves the target as it was.
    f.b.FermeBase();
    const std::string restauree = lireTout(f.fs, "/b.sv2");
    EXPECT_THROW(Restauration(f.b, f.fs, "/absent.sav", oui), ErreurES);
    EXPECT_EQ(lireTout(f.fs, "/b.sv2"), restauree);
}

TEST(CliSvr, ExportImportIntegrateBackupAndRestore) {
    test::DossierTemp d;
    auto cli = [&](const std::string& a) {
        return std::system((std::string(SYLVANE_CLI) + " " + a + " >/dev/null 2>&1").c_str());
    };
    const std::string base = d / "a.sv2";
    ASSERT_EQ(cli("new " + base), 0);
    cli("add-person " + base + " --name A --first p --sex H --birth 1800");
    cli("add-person " + base + " --name A --first c --sex H --birth 1830 --father 1");
    cli("add-person " + base + " --name B --first x --sex F --birth 1900");
    ASSERT_EQ(cli("export-svr " + base + " " + d / "a.svr --descendants 1 --ascendants 3"), 0);
    const std::string t = test::LitFichier(d / "a.svr");
    EXPECT_NE(t.find("\r\n 3 \r\nB;x;;;"), std::string::npos);
    EXPECT_NE(t.find("\r\n 2 \r\nA;c;;;"), std::string::npos);
    ASSERT_EQ(cli("import-svr " + d / "a.svr " + d / "b.sv2"), 0);
    ASSERT_EQ(cli("integrate " + d / "b.sv2 " + d / "a.svr --yes"), 0);
    test::EcritFichier(d / "court.svr", t.substr(0, t.size() / 2));
    EXPECT_NE(cli("import-svr " + d / "court.svr " + d / "c.sv2"), 0);
    ASSERT_EQ(cli("backup " + base + " " + d / "a.sav"), 0);
    EXPECT_NE(cli("restore " + d / "a.sav"), 0); // exists: No
    EXPECT_EQ(cli("restore " + d / "a.sav --yes"), 0);
    EXPECT_EQ(test::LitFichier(d / "a.sav"), test::LitFichier(base));
}

TEST(CliGedcom, SelectionsOfTheExportAddUp) {
    test::DossierTemp d;
    auto cli = [&](const std::string& a) {
        return std::system((std::string(SYLVANE_CLI) + " " + a + " >/dev/null 2>&1").c_str());
    };
    const std::string base = d / "a.sv2";
    ASSERT_EQ(cli("new " + base), 0);
    cli("add-person " + base + " --name Aieul --first p --sex H --birth 1800");
    cli("add-person " + base + " --name Fils --first c --sex H --birth 1830 --father 1");
    cli("add-person " + base + " --name Autre --first x --sex F --birth 1900");
    cli("add-person " + base + " --name Seul --first y --sex F --birth 1910");
    auto individus = [&](const std::string& fichier) {
        const std::string t = test::LitFichier(fichier);
        std::vector<std::string> noms;
        for (std::size_t p = t.find(" INDI\r\n"); p != std::string::npos;
             p = t.find(" INDI\r\n", p + 1)) {
            const std::size_t nom = t.find("1 NAME ", p);
            noms.push_back(t.substr(nom + 7, t.find('\r', nom) - nom - 7));
        }
        return noms;
    };
    ASSERT_EQ(cli("export-gedcom " + base + " " + d / "tous.ged"), 0);
    EXPECT_EQ(individus(d / "tous.ged").size(), 4u);
    ASSERT_EQ(cli("export-gedcom " + base + " " + d / "sel.ged --descendants 1 --ascendants 3"), 0);
    const auto noms = individus(d / "sel.ged");
    ASSERT_EQ(noms.size(), 3u);
    for (const auto& n : noms) EXPECT_EQ(n.find("Seul"), std::string::npos) << n;
    EXPECT_NE(cli("export-gedcom " + base + " " + d / "x.ged --descendants 99"), 0);
}
