// Nothing lost: imports and exports replace their target whole or not at
// all, a base has one writer, names the system accepts all work.
#include "exchange/gedcom_export.h"
#include "exchange/gedcom_import.h"
#include "exchange/selection.h"
#include "exchange/svr.h"
#include "store/base.h"
#include "store/fichier_memoire.h"
#include "support/dossier_temp.h"
#include "support/lance_cli.h"
#include "text/reglages.h"
#include "text/utf8.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>

using namespace sylvane;

namespace {

test::ResultatCli Lance(const std::vector<std::string>& args) { return test::LanceCli(args); }

long Personnes(const std::string& base) {
    auto r = Lance({"info", base});
    if (r.statut != 0) return -1;
    return nlohmann::json::parse(r.out)["persons"]["live"].get<long>();
}

void AjoutePersonnes(const std::string& base, int n) {
    for (int i = 0; i < n; ++i)
        ASSERT_EQ(Lance({"add-person", base, "--name", "Martin", "--first",
                         "P" + std::to_string(i), "--birth", std::to_string(1800 + i)})
                      .statut,
                  0);
}

const char* const kGedcom = "0 HEAD\r\n1 CHAR ANSI\r\n0 @I1@ INDI\r\n1 NAME Jean /Durand/\r\n"
                            "1 SEX M\r\n0 @I2@ INDI\r\n1 NAME Marie /Roux/\r\n1 SEX F\r\n0 TRLR\r\n";

} // namespace

// A missing or broken .svr once emptied the base it was to replace.
TEST(SureteImport, ImportSvrNeverDestroysTheTarget) {
    test::DossierTemp d;
    const std::string base = d / "famille.sv2";
    ASSERT_EQ(Lance({"new", base}).statut, 0);
    AjoutePersonnes(base, 3);

    auto r = Lance({"import-svr", d / "absent.svr", base});
    EXPECT_NE(r.statut, 0);
    EXPECT_EQ(Personnes(base), 3);
    r = Lance({"import-svr", d / "absent.svr", base, "--force"});
    EXPECT_NE(r.statut, 0);
    EXPECT_EQ(Personnes(base), 3);

    // An existing target is refused without --force, before any read.
    ASSERT_EQ(Lance({"export-svr", base, d / "copie.svr"}).statut, 0);
    r = Lance({"import-svr", d / "copie.svr", base});
    EXPECT_NE(r.statut, 0);
    EXPECT_NE(r.err.find("--force"), std::string::npos) << r.err;
    EXPECT_EQ(Personnes(base), 3);

    // A file that ends early: the old base stays whole, no temporary left.
    const std::string entier = test::LitFichier(d / "copie.svr");
    test::EcritFichier(d / "court.svr", entier.substr(0, entier.size() / 2));
    const std::string autre = d / "autre.sv2";
    ASSERT_EQ(Lance({"new", autre}).statut, 0);
    AjoutePersonnes(autre, 1);
    r = Lance({"import-svr", d / "court.svr", autre, "--force"});
    EXPECT_NE(r.statut, 0);
    EXPECT_EQ(Personnes(autre), 1);
    EXPECT_FALSE(std::filesystem::exists(d / "~autre.sv2"));

    // With --force and a whole file, the base is replaced.
    r = Lance({"import-svr", d / "copie.svr", autre, "--force"});
    EXPECT_EQ(r.statut, 0) << r.err;
    EXPECT_EQ(Personnes(autre), 3);
    EXPECT_FALSE(std::filesystem::exists(d / "~autre.sv2"));
}

TEST(SureteImport, NewAndImportGedcomRefuseAnExistingBase) {
    test::DossierTemp d;
    const std::string base = d / "famille.sv2";
    ASSERT_EQ(Lance({"new", base}).statut, 0);
    AjoutePersonnes(base, 2);
    EXPECT_NE(Lance({"new", base}).statut, 0);
    EXPECT_EQ(Personnes(base), 2);
    test::EcritFichier(d / "f.ged", kGedcom);
    EXPECT_NE(Lance({"import-gedcom", d / "f.ged", base}).statut, 0);
    EXPECT_EQ(Personnes(base), 2);
    auto r = Lance({"import-gedcom", d / "f.ged", base, "--force"});
    EXPECT_EQ(r.statut, 0) << r.err;
    EXPECT_EQ(Personnes(base), 2);
    EXPECT_FALSE(std::filesystem::exists(d / "~famille.sv2"));
}

TEST(SureteExport, TheOpenBaseIsNoOutput) {
    test::DossierTemp d;
    const std::string base = d / "famille.sv2";
    ASSERT_EQ(Lance({"new", base}).statut, 0);
    AjoutePersonnes(base, 2);
    EXPECT_NE(Lance({"export-gedcom", base, base}).statut, 0);
    EXPECT_EQ(Personnes(base), 2);
    EXPECT_NE(Lance({"export-svr", base, d / "./famille.sv2"}).statut, 0);
    EXPECT_EQ(Personnes(base), 2);
    EXPECT_NE(Lance({"export-gedcom", base, d / "famille.log"}).statut, 0);
}

// Every failure of an export, at every write, sync or rename, leaves the
// old file; once it returns, a power loss keeps the new one.
TEST(SureteExport, AFaultAnywhereLeavesTheOldFile) {
    SystemeMemoire modele;
    Parametres p;
    {
        Base b(modele, p);
        b.Nouvelle("/d/b.sv2");
        for (int i = 0; i < 300; ++i) b.CreePersonne("Martin", "P" + std::to_string(i), "", 'H', "1850");
        b.FermeBase();
    }
    for (int format = 0; format < 2; ++format) {
        // n = 0: the export without a fault, to know the whole new file.
        std::string nouveau;
        bool fini = false;
        for (long n = 0; !fini; ++n) {
            SystemeMemoire fs;
            fs.copieDe(modele);
            ecrireTout(fs, "/d/sortie", "ancien");
            fs.fichiers().at("/d/sortie")->durable = "ancien";
            fs.synchroniserDossier("/d/sortie");
            Base b(fs, p);
            b.Ouvre("/d/b.sv2", true);
            if (n > 0) fs.echouerApres(n, n % 2 == 0);
            bool valide = false;
            try {
                if (format == 0) {
                    OptionsExport o;
                    o.date = "1 JAN 2000";
                    ExporteGedcom(b, fs, "/d/sortie", o);
                } else {
                    Selection sel(b);
                    sel.SelectionneTout();
                    ExporteSvr(b, sel, p, fs, "/d/sortie");
                }
                valide = true;
            } catch (const ErreurES&) {
            }
            fs.retablir();
            const std::string vu = fs.contenu("/d/sortie");
            if (n == 0) {
                ASSERT_TRUE(valide);
                ASSERT_GT(vu.size(), 1000u);
                nouveau = vu;
                continue;
            }
            fini = valide;
            // A fault after the rename (the folder's sync) leaves the new
            // file in place and says so; never a piece of either.
            EXPECT_TRUE(vu == "ancien" || vu == nouveau) << "format " << format << ", faute " << n;
            if (valide) {
                EXPECT_EQ(vu, nouveau);
            }
            b.Abandonne();
            fs.simulerPanne();
            const std::string apres = fs.contenu("/d/sortie");
            EXPECT_TRUE(apres == "ancien" || apres == nouveau) << "format " << format << ", faute " << n;
            if (valide) {
                EXPECT_EQ(apres, nouveau) << "format " << format;
            }
            ASSERT_LT(n, 200);
        }
    }
}

// An import builds its base under another name and renames it over the
// old one: a fault at any point leaves the old base whole.
TEST(SureteImport, AFaultAnywhereLeavesTheOldBase) {
    Parametres p;
    SystemeMemoire modele;
    {
        Base b(modele, p);
        b.Nouvelle("/d/b.sv2");
        b.CreePersonne("Ancien", "Un", "", 'H', "1700");
        b.FermeBase();
    }
    modele.synchroniserDossier("/d/b.sv2");
    ecrireTout(modele, "/d/f.ged", kGedcom);
    bool fini = false;
    for (long n = 1; !fini; ++n) {
        SystemeMemoire fs;
        fs.copieDe(modele);
        Base b(fs, p);
        GedcomLu g = PrepareGedcom(fs, "/d/f.ged");
        fs.echouerApres(n, n % 2 == 1);
        try {
            RemplacementBase r(b, "/d/b.sv2");
            ImporteGedcom(b, g);
            r.Valide();
            fini = true;
        } catch (const ErreurES&) {
        }
        fs.retablir();
        for (bool panne : {true, false}) { // the loss first: an open syncs the folder
            if (panne) fs.simulerPanne();
            Base lue(fs, p);
            lue.Ouvre("/d/b.sv2");
            const auto vivants = lue.Tete().nbPersonnes;
            if (fini) { // Valide returned: the new base is durable
                EXPECT_EQ(vivants, 2u) << n << " " << panne;
            } else {
                EXPECT_TRUE(vivants == 1u || (fini && vivants == 2u)) << n << " " << panne;
            }
            if (vivants == 1u) {
                EXPECT_EQ(lue.LitNom(1), "Ancien");
            }
            lue.Abandonne();
        }
        ASSERT_LT(n, 400);
    }
}

// The journal of a base that is gone stays beside its name. An import that
// makes a new base of that name must never have it replayed over the new
// base, whatever the disk kept of the removal and the rename.
TEST(SureteImport, AJournalWithoutItsBaseNeverReachesTheNewOne) {
    Parametres p;
    SystemeMemoire depart;
    depart.fixerGraine(0);
    {
        Base b(depart, p);
        b.Nouvelle("/d/b.sv2");
        for (int i = 0; i < 300; ++i) b.CreePersonne("Ancien", "P" + std::to_string(i), "", 'H', "1700");
        b.FermeBase();
    }
    // The journal of a commit that a fault cut short...
    SystemeMemoire modele;
    for (long k = 1; k < 100 && !modele.existe("/d/b.log"); ++k) {
        modele.copieDe(depart);
        modele.fixerGraine(0);
        Base b(modele, p);
        b.Ouvre("/d/b.sv2");
        for (std::uint32_t n = 1; n <= 300; n += 3) b.EcritNote(n, "note " + std::to_string(n));
        modele.echouerApres(k);
        try {
            b.ValideBase();
        } catch (const ErreurES&) {
        }
        modele.retablir();
        modele.simulerPanne();
    }
    ASSERT_TRUE(modele.existe("/d/b.log"));
    // ...and the base itself removed by the user.
    modele.supprimer("/d/b.sv2");
    modele.synchroniserDossier("/d/b.sv2");
    ecrireTout(modele, "/d/f.ged", kGedcom);
    // n = 0: the import without a fault, for the bytes of the new base.
    std::string attendu;
    bool fini = false;
    for (long n = 0; !fini; ++n) {
        for (unsigned graine = 1; graine <= (n ? 8u : 1u); ++graine) {
            SystemeMemoire fs;
            fs.copieDe(modele);
            fs.fixerGraine(graine);
            Base b(fs, p);
            GedcomLu g = PrepareGedcom(fs, "/d/f.ged");
            if (n > 0) fs.echouerApres(n);
            bool valide = false;
            try {
                RemplacementBase r(b, "/d/b.sv2");
                ImporteGedcom(b, g);
                r.Valide();
                valide = true;
            } catch (const ErreurES&) {
            }
            fs.retablir();
            if (n == 0) {
                ASSERT_TRUE(valide);
                attendu = fs.contenu("/d/b.sv2");
                continue;
            }
            fs.simulerPanne();
            if (valide) fini = true;
            if (!fs.existe("/d/b.sv2")) {
                EXPECT_FALSE(valide) << n;
                continue;
            }
            {
                Base lue(fs, p);
                lue.Ouvre("/d/b.sv2");
                lue.Abandonne();
            }
            // Opened once, so that a journal left beside it has been replayed.
            EXPECT_EQ(fs.contenu("/d/b.sv2"), attendu) << "faute " << n << " graine " << graine;
        }
        ASSERT_LT(n, 400);
    }
}

// The replay of a journal is itself interrupted by a power loss: the next
// open still finds one of the two commits.
TEST(SureteReprise, APowerLossAfterAReplay) {
    Parametres p;
    SystemeMemoire modele;
    auto etat = [](Base& b) {
        std::string e;
        for (std::uint32_t n = 1; n <= b.Tete().maxPersonne; ++n) e += b.LitNote(n) + "|";
        return e;
    };
    std::string avant, apres;
    std::vector<std::pair<long, std::string>> vus;
    {
        Base b(modele, p);
        b.Nouvelle("/d/b.sv2");
        for (int i = 0; i < 250; ++i) b.CreePersonne("Martin", "P" + std::to_string(i), "", 'H', "1850");
        b.FermeBase();
        b.Ouvre("/d/b.sv2");
        avant = etat(b);
        b.Abandonne();
    }
    for (long n = 1;; ++n) {
        SystemeMemoire fs;
        fs.copieDe(modele);
        fs.fixerGraine(static_cast<unsigned>(n));
        bool fini = false;
        {
            Base b(fs, p);
            b.Ouvre("/d/b.sv2");
            for (std::uint32_t k = 1; k <= 250; k += 7) b.EcritNote(k, "note " + std::to_string(k));
            fs.echouerApres(n);
            try {
                b.FermeBase();
                fini = true;
            } catch (const ErreurES&) {
            }
            fs.retablir();
            if (fini) {
                b.Ouvre("/d/b.sv2");
                apres = etat(b);
                b.Abandonne();
                break;
            }
        }
        { // the journal replayed, then the power goes
            Base b(fs, p);
            b.Ouvre("/d/b.sv2");
            b.Abandonne();
        }
        fs.simulerPanne();
        Base b(fs, p);
        b.Ouvre("/d/b.sv2");
        vus.emplace_back(n, etat(b));
        b.Abandonne();
        ASSERT_LT(n, 500);
    }
    EXPECT_NE(apres, avant);
    // A fault once the new header is durable (the removal of the journal
    // and its folder sync) may leave either commit, never a mix.
    for (const auto& [n, e] : vus) EXPECT_TRUE(e == avant || e == apres) << "faute " << n;
}

TEST(SureteChemins, EveryNameTheSystemAcceptsWorks) {
    test::DossierTemp d;
    test::EcritFichier(d / "Généalogie.ged", kGedcom);
    auto r = Lance({"import-gedcom", d / "Généalogie.ged", d / "Généalogie.sv2"});
    ASSERT_EQ(r.statut, 0) << r.err;
    EXPECT_TRUE(std::filesystem::exists(d / "Généalogie.sv2"));
    EXPECT_EQ(Personnes(d / "Généalogie.sv2"), 2);
    // The --force check sees the accented base.
    r = Lance({"import-gedcom", d / "Généalogie.ged", d / "Généalogie.sv2"});
    EXPECT_NE(r.statut, 0);

    // Two Cyrillic names are two bases.
    ASSERT_EQ(Lance({"new", d / "Зыков.sv2"}).statut, 0);
    AjoutePersonnes(d / "Зыков.sv2", 1);
    r = Lance({"new", d / "Иванов.sv2"});
    ASSERT_EQ(r.statut, 0) << r.err;
    EXPECT_EQ(r.out, d / "Иванов.sv2\n");
    EXPECT_TRUE(std::filesystem::exists(d / "Зыков.sv2"));
    EXPECT_TRUE(std::filesystem::exists(d / "Иванов.sv2"));
    EXPECT_EQ(Personnes(d / "Зыков.sv2"), 1);
    EXPECT_EQ(Personnes(d / "Иванов.sv2"), 0);

    // A folder's dot cuts nothing, and nothing is said about it.
    std::filesystem::create_directories(d / ".local/share");
    r = Lance({"new", d / ".local/share/arbre.sv2"});
    EXPECT_EQ(r.statut, 0);
    EXPECT_EQ(r.err, "");
    EXPECT_TRUE(std::filesystem::exists(d / ".local/share/arbre.sv2"));
}

TEST(SureteChemins, NamesMakeTheRoundTrip) {
    for (std::string nom : {std::string("Généalogie"), std::string("Зыков"), std::string("a&#65;b"),
                            std::string("bad\xFF\xFEname"), std::string("x&#38;#1;"),
                            std::string("&#"), std::string("emoji \xF0\x9F\x8C\xB3")}) {
        EXPECT_EQ(CheminSysteme(CheminInterne(nom)), nom);
    }
    EXPECT_EQ(CheminInterne("Généalogie"), "G\xE9n\xE9" "alogie");
    EXPECT_NE(CheminInterne("Зыков"), CheminInterne("Иванов"));
}

// One writer at a time; a reader reads beside it.
TEST(SureteVerrou, ASecondWriterIsRefusedAReaderReads) {
    test::DossierTemp d;
    const std::string base = d / "famille.sv2";
    ASSERT_EQ(Lance({"new", base}).statut, 0);
    AjoutePersonnes(base, 2);
    Parametres p;
    Base ecrivain(systemeReel(), p);
    ecrivain.Ouvre(base);
    ecrivain.CreePersonne("Durand", "Luc", "", 'H', "1900");
    ecrivain.MnuEnregistrer();

    auto r = Lance({"add-person", base, "--name", "Roux", "--first", "Eve"});
    EXPECT_NE(r.statut, 0);
    EXPECT_NE(r.err.find("autre programme"), std::string::npos) << r.err;
    Base second(systemeReel(), p);
    EXPECT_THROW(second.Ouvre(base), ErreurBaseOccupee);
    EXPECT_EQ(Personnes(base), 3); // the reader sees the last commit

    // An import can't take the place of a base being written.
    test::EcritFichier(d / "f.ged", kGedcom);
    EXPECT_NE(Lance({"import-gedcom", d / "f.ged", base, "--force"}).statut, 0);
    ecrivain.FermeBase();
    EXPECT_EQ(Personnes(base), 3);
    EXPECT_EQ(Lance({"add-person", base, "--name", "Roux", "--first", "Eve"}).statut, 0);
    EXPECT_EQ(Personnes(base), 4);
}

// A file shortened under a reader gives short reads, not SIGBUS.
TEST(SureteLecture, AFileShortenedUnderAReader) {
    test::DossierTemp d;
    const std::string chemin = d / "gros.sv2";
    test::EcritFichier(chemin, std::string(4 << 20, 'x'));
    auto f = systemeReel().ouvrir(chemin, Mode::Lecture);
    EXPECT_EQ(f->lire(3 << 20, 10), std::string(10, 'x'));
    std::filesystem::resize_file(chemin, 1000);
    EXPECT_EQ(f->lire(3 << 20, 10), "");
    EXPECT_EQ(f->lire(990, 100), std::string(10, 'x'));
}
