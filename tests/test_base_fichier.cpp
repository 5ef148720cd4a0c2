// The base file: layout of a new base, header round trip, derived paths,
// damaged and hostile files, and what a close writes.
#include "store/base.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/bases.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

std::string NouvelleBaseAttendue() {
    std::string f(1145, '\0');
    std::string banniere = "[Sylvane Version 2001.0]";
    banniere.resize(30, ' ');
    f.replace(0, 30, banniere);
    f.replace(30, 4, Pack4(1145));
    f[47] = '1';
    f.replace(48, 2, Pack2(11));
    f[101] = '0';
    f[102] = '0';
    f.replace(103, 4, Pack4(501));
    std::string personnes = "\\ \xB0" "1^1";
    personnes.resize(20, ' ');
    f.replace(108, 20, personnes);
    std::string mariages = "\xA4" "1";
    mariages.resize(20, ' ');
    f.replace(128, 20, mariages);
    f[148] = '0';
    // Rubric records: 1 at 702, the shared empty list at 742, 2 to 11 behind.
    const char* tags[11] = {"BIRN", "FNAM", "BIRT", "MARR", "DEAT", "OCCU",
                            "CHR",  "BURI", "RESI", "DIV",  "OTHR"};
    const char symboles[11] = {'|', '\xB6', '$', '@', '~', '\\', '\xB0', '^', '%', '\xA4', '\xB2'};
    for (int k = 0; k < 11; ++k) {
        std::uint32_t pos = k == 0 ? 702 : 746 + 40 * (k - 1);
        f.replace(500 + 4 * k, 4, Pack4(pos));
        std::string r = std::string(1, symboles[k]) + tags[k] + "\xFF" + Pack4(742) + "#";
        r.resize(40, ' ');
        f.replace(pos - 1, 40, r);
    }
    f.replace(741, 4, Pack4(0));
    return f;
}

struct Fixture : ::testing::Test {
    SystemeMemoire fs;
    Parametres p;
};

} // namespace

TEST_F(Fixture, NewBaseIsByteForByteTheDefinedLayout) {
    Base b(fs, p);
    b.Nouvelle("/d/famille.sv2");
    b.FermeBase();
    std::string f = fs.contenu("/d/famille.sv2");
    std::string attendu = NouvelleBaseAttendue();
    ASSERT_EQ(f.size(), attendu.size());
    for (std::size_t i = 0; i < f.size(); ++i)
        ASSERT_EQ(static_cast<unsigned char>(f[i]), static_cast<unsigned char>(attendu[i]))
            << "byte at position " << i + 1;
    EXPECT_FALSE(fs.existe("/d/famille.log"));

    b.Ouvre("/d/famille.sv2");
    EXPECT_EQ(b.Tete().zoneFin, 1145u);
    EXPECT_EQ(b.Tete().nbRubriques, 11u);
    EXPECT_EQ(b.LitRubrique(2), "\xB6" "FNAM");
    EXPECT_EQ(b.PosListeRubrique(7), 742u);
    EXPECT_EQ(b.Tete().rubriquesPersonne[1].tag, "CHR");
    EXPECT_EQ(b.Tete().rubriquesMariage[0].tag, "DIV");
    EXPECT_EQ(b.TriFiche(1), 0u);
}

TEST_F(Fixture, ListPositionHoldingHashAndFFIsFoundBehindTheMarker) {
    Base b(fs, p);
    b.Nouvelle("/b.sv2");
    b.EcritRubrique(12, '\xB5', "PROF", 0x23FF2300u); // "#", 0xFF, "#" in the position
    b.EcritRubrique(13, '\xA3', std::string(50, 'T'), 0);
    b.FermeBase();
    b.Ouvre("/b.sv2");
    EXPECT_EQ(b.PosListeRubrique(12), 0x23FF2300u);
    EXPECT_EQ(b.LitRubrique(12), "\xB5PROF");
    EXPECT_EQ(b.LitRubrique(13), "\xA3" + std::string(34, 'T')); // cut to 34
    EXPECT_EQ(b.PosListeRubrique(13), 0u);
}

TEST(Chemins, FirstDotOfTheFileNameCuts) {
    auto c = DeriveChemins("/home/jean/famille.sv2");
    EXPECT_EQ(c.base, "/home/jean/famille.sv2");
    EXPECT_EQ(c.journal, "/home/jean/famille.log");
    EXPECT_EQ(c.svr, "/home/jean/famille.svr");
    EXPECT_EQ(c.gedcom, "/home/jean/famille.ged");
    EXPECT_EQ(c.titre, "famille");
    // A folder's dot is no cut (~/.local/share holds bases).
    auto d = DeriveChemins("/home/j.dupont/.local/arbre.v2.sv2");
    EXPECT_EQ(d.base, "/home/j.dupont/.local/arbre.sv2");
    EXPECT_EQ(d.journal, "/home/j.dupont/.local/arbre.log");
    EXPECT_EQ(d.titre, "arbre");
    EXPECT_EQ(DeriveChemins("sans").base, "sans.sv2");
}

TEST_F(Fixture, HeaderFieldsSurviveACommit) {
    Base b(fs, p);
    b.Nouvelle("/b.sv2");
    auto& e = b.TeteModifiable();
    e.modeTri = '2';
    e.premierPrenom = '1';
    e.particules = '1';
    e.documentTitre = 7;
    e.rubriquesPersonne[3] = {'%', ' ', "RESI"};
    b.FermeBase();
    b.Ouvre("/b.sv2");
    EXPECT_EQ(b.Tete().modeTri, '2');
    EXPECT_EQ(b.Tete().premierPrenom, '1');
    EXPECT_EQ(b.Tete().particules, '1');
    EXPECT_EQ(b.Tete().documentTitre, 7u);
    EXPECT_EQ(b.Tete().rubriquesPersonne[3].symbole, '%');
    EXPECT_EQ(b.Tete().rubriquesPersonne[3].tag, "RESI");
}

TEST_F(Fixture, EmptyFileOpensAsABaseWithNothingAndStaysUntouched) {
    ecrireTout(fs, "/vide.sv2", "");
    Base b(fs, p);
    b.Ouvre("/vide.sv2");
    EXPECT_EQ(b.Tete().nbPersonnes, 0u);
    EXPECT_EQ(b.TriFiche(1), 0u);
    EXPECT_EQ(b.LitNom(1), "");
    b.FermeBase();
    EXPECT_EQ(fs.contenu("/vide.sv2"), "");
}

TEST_F(Fixture, ClosingWithoutChangeWritesNothing) {
    test::Construit(fs, p, "/b.sv2", 120);
    std::string avant = fs.contenu("/b.sv2");
    long ops = fs.operationsFaites();
    Base b(fs, p);
    b.Ouvre("/b.sv2");
    for (std::size_t i = 1; i <= b.TablePersonnes().taille(); ++i) b.NomDates(b.TriFiche(i));
    b.MnuEnregistrer();
    b.FermeBase();
    EXPECT_EQ(fs.contenu("/b.sv2"), avant);
    EXPECT_EQ(fs.operationsFaites(), ops);
}

TEST_F(Fixture, ReadOnlyBaseGivesAClearErrorAndStaysUntouched) {
    test::Construit(fs, p, "/b.sv2", 10);
    std::string avant = fs.contenu("/b.sv2");
    fs.proteger("/b.sv2");
    Base b(fs, p);
    try {
        b.Ouvre("/b.sv2");
        FAIL() << "opened a read-only base for writing";
    } catch (const ErreurES& e) {
        EXPECT_NE(std::string(e.what()).find("/b.sv2"), std::string::npos);
    }
    EXPECT_FALSE(b.EstOuverte());
    EXPECT_EQ(fs.contenu("/b.sv2"), avant);
}

TEST_F(Fixture, DamagedHeaderNeverReadsOutsideTheFile) {
    test::Construit(fs, p, "/b.sv2", 30);
    std::string f = fs.contenu("/b.sv2");
    // Huge counts and positions beyond the end.
    for (std::uint32_t champ : {31u, 35u, 39u, 43u, 53u, 57u, 61u, 65u, 69u, 73u, 77u, 81u, 104u}) {
        std::string g = f;
        g.replace(champ - 1, 4, Pack4(0xFFFFFFF0u));
        ecrireTout(fs, "/d.sv2", g);
        Base b(fs, p);
        b.Ouvre("/d.sv2");
        for (std::uint32_t n = 1; n <= 200; ++n) {
            b.LitNom(n);
            b.ListeEnfants(n);
            b.LitNote(n);
        }
        for (std::size_t i = 1; i <= std::min<std::size_t>(b.TablePersonnes().taille(), 500); ++i)
            b.NomComplet(b.TriFiche(i));
        b.Abandonne();
        EXPECT_EQ(fs.contenu("/d.sv2"), g) << "field " << champ;
    }
}

TEST_F(Fixture, ZoneFinIsClampedToTheFileSoAppendsNeverLeaveAHole) {
    test::Construit(fs, p, "/b.sv2", 5);
    std::string f = fs.contenu("/b.sv2");
    f.replace(30, 4, Pack4(0x7FFFFFFF));
    ecrireTout(fs, "/b.sv2", f);
    Base b(fs, p);
    b.Ouvre("/b.sv2");
    EXPECT_EQ(b.Tete().zoneFin, f.size());
    b.CreePersonne("Neuf", "Jean", "", 'H', "1900");
    b.FermeBase();
    EXPECT_LT(fs.contenu("/b.sv2").size(), f.size() + 20000);
}

TEST_F(Fixture, AutomaticSaveRunsOnTheTickAfterTheFrequencyIsPassed) {
    p.frequenceSauvegarde = 2;
    Base b(fs, p);
    b.Nouvelle("/b.sv2");
    b.CreePersonne("A", "B", "", 'H', "1900");
    // Counter 0, 1, 2 are not past 2: three ticks without a save, then one.
    EXPECT_FALSE(b.TicMinuterie());
    EXPECT_FALSE(b.TicMinuterie());
    EXPECT_FALSE(b.TicMinuterie());
    EXPECT_TRUE(b.TicMinuterie());
    EXPECT_FALSE(b.Modifiee());
    p.frequenceSauvegarde = 0;
    EXPECT_FALSE(b.TicMinuterie());
    EXPECT_TRUE(b.TicMinuterie()); // every second tick
    b.FermeBase();
}

TEST_F(Fixture, AJournalRecordPastTheEndOfTheBaseIsPassedOver) {
    test::Construit(fs, p, "/b.sv2", 5);
    const std::string avant = fs.contenu("/b.sv2");
    // One record at the last position a journal may name, one at the first
    // byte past the base, one with no position: only the first is a copy.
    std::string sain = avant.substr(0, 1000);
    std::string journal = Pack4(1) + sain;
    journal += Pack4(static_cast<std::uint32_t>(avant.size() + 1)) + std::string(1000, 'x');
    journal += Pack4(0xFFFFFFFFu) + std::string(1000, 'y');
    ecrireTout(fs, "/b.log", journal);
    Base b(fs, p);
    b.Ouvre("/b.sv2");
    EXPECT_EQ(b.Tete().nbPersonnes, 5u);
    b.FermeBase();
    EXPECT_EQ(fs.contenu("/b.sv2").size(), avant.size());
    EXPECT_FALSE(fs.existe("/b.log"));
}

TEST_F(Fixture, NewBaseOverAnOldFileDropsItsJournal) {
    test::Construit(fs, p, "/b.sv2", 5);
    ecrireTout(fs, "/b.log", std::string(1004, 'x'));
    Base b(fs, p);
    b.Nouvelle("/b.sv2");
    b.FermeBase();
    EXPECT_FALSE(fs.existe("/b.log"));
    EXPECT_EQ(fs.contenu("/b.sv2"), NouvelleBaseAttendue());
}
