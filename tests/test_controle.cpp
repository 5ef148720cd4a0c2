// The consistency control repairs each family link broken on purpose, in
// the words of its report, and finds nothing in a sound base; the repair
// commands rewrite names and keyword lines and change nothing the second
// time.
#include "maintenance/controle.h"
#include "maintenance/reparations.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/familles.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <set>

namespace sylvane {
namespace {

const std::string kChemin = "/c/base.sv2";

Interaction Repond(Reponse r) {
    Interaction io;
    io.question = [r](int) { return r; };
    return io;
}

std::set<std::string> Lignes(const std::string& rapport) {
    std::set<std::string> s;
    for (std::size_t d = 0, f; d < rapport.size(); d = f + 2) {
        f = rapport.find("\r\n", d);
        EXPECT_NE(f, std::string::npos) << "each line ends with CR LF";
        if (f == std::string::npos) break;
        s.insert(rapport.substr(d, f - d));
    }
    return s;
}

// Every link agrees with the record it names, on both sides.
void LiensSains(Base& b) {
    for (std::size_t i = 1; i <= b.TablePersonnes().taille(); ++i) {
        const std::uint32_t n = b.TriFiche(i);
        if (n == 0) continue;
        const std::string sexe = b.LitSexe(n);
        for (std::uint32_t p : {b.LitPere(n), b.LitMere(n)}) {
            if (!p) continue;
            bool trouve = false;
            for (int k = 1; b.EnfantNo(p, k); ++k) trouve |= b.EnfantNo(p, k) == n;
            EXPECT_TRUE(trouve) << n << " missing from the children of " << p;
        }
        for (int k = 1; b.EnfantNo(n, k); ++k) {
            const std::uint32_t c = b.EnfantNo(n, k);
            if (sexe == "H" || sexe == "F") {
                EXPECT_EQ(sexe == "H" ? b.LitPere(c) : b.LitMere(c), n);
            }
        }
        for (std::uint32_t m : b.Mariages(n))
            EXPECT_EQ(sexe == "H" ? b.LitMari(m) : b.LitFemme(m), n) << "marriage " << m;
    }
    for (std::uint32_t m = 1; m <= b.Tete().maxMariage; ++m)
        for (std::uint32_t p : {b.LitMari(m), b.LitFemme(m)}) {
            if (!p) continue;
            const auto l = b.Mariages(p);
            EXPECT_NE(std::find(l.begin(), l.end(), m), l.end()) << "marriage " << m;
        }
}

struct Controle : ::testing::Test {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    void SetUp() override {
        p.dossierTravail = "/t";
        b.Nouvelle(kChemin);
        test::EditionsAleatoires(b, 1500, 3);
        b.FermeBase();
        b.Ouvre(kChemin);
    }
    // A man with a marriage and a child, and a woman with a child.
    std::uint32_t Cherche(const char* sexe, bool mariage, bool enfant) {
        for (std::size_t i = 1; i <= b.TablePersonnes().taille(); ++i) {
            const std::uint32_t n = b.TriFiche(i);
            if (b.LitSexe(n) == sexe && (!mariage || b.MariageNo(n, 1)) &&
                (!enfant || b.EnfantNo(n, 1)))
                return n;
        }
        return 0;
    }
};

TEST_F(Controle, SoundBaseGivesAnEmptyReportAndUnchangedFile) {
    const std::string avant = fs.contenu(kChemin);
    const auto r = Controler(b, Repond(Reponse::Non));
    ASSERT_TRUE(r.fait);
    EXPECT_EQ(r.rapport, "");
    EXPECT_EQ(r.chemin, "/t/base.txt");
    EXPECT_TRUE(fs.existe("/t/base.txt"));
    EXPECT_FALSE(fs.existe("/c/base.txt"));
    b.FermeBase();
    EXPECT_EQ(fs.contenu(kChemin), avant);
    EXPECT_FALSE(fs.existe("/c/base.sav"));
}

TEST_F(Controle, EveryBrokenLinkIsRepairedAndReported) {
    const std::uint32_t max = b.Tete().maxPersonne;
    const std::uint32_t h = Cherche("H", true, true), f = Cherche("F", false, true);
    ASSERT_TRUE(h && f);
    const std::uint32_t m = b.MariageNo(h, 1), femme = b.LitFemme(m);
    const std::uint32_t enfant = b.EnfantNo(h, 1), enfantF = b.EnfantNo(f, 1);
    const std::uint32_t etranger = Cherche("I", false, false);
    // A marriage missing from both partners' lists.
    b.MajMariages(h, m, 'S');
    b.MajMariages(femme, m, 'S');
    // A child missing from its father's list, one too many in a mother's.
    b.MajEnfants(h, enfant, 'S');
    b.MajEnfants(f, etranger, 'A');
    // Numbers beyond the highest person: a mother, a child, a sort entry.
    b.EcritMere(enfantF, max + 5);
    b.MajEnfants(etranger, max + 9, 'A');
    b.MajTriFiche(1, max + 3, 'A');
    b.triPersonnesModifie = true;
    // A marriage in a woman's list that names another wife.
    std::uint32_t autre = 0;
    for (std::uint32_t x = 1; x <= b.Tete().maxMariage && !autre; ++x)
        if (b.LitFemme(x) != f && b.LitMari(x)) autre = x;
    b.MajMariages(f, autre, 'A');
    b.FermeBase();
    b.Ouvre(kChemin);

    const auto r = Controler(b, Repond(Reponse::Oui));
    EXPECT_TRUE(fs.existe("/c/base.sav"));
    const auto l = Lignes(r.rapport);
    auto contient = [&l](const std::string& s) {
        EXPECT_TRUE(l.count(s)) << "missing: " << s;
    };
    contient("Lien mariage de " + b.NomComplet(h) + " avec " + b.NomComplet(femme) +
             " cr\xE9\xE9");
    contient("Lien mariage de " + b.NomComplet(femme) + " avec " + b.NomComplet(h) +
             " cr\xE9\xE9");
    contient("Ajout lien enfant de " + b.NomDates(h) + " avec " + b.NomDates(enfant));
    contient("Suppression m\xE8re de " + b.NomDates(enfantF));
    contient("Suppression lien enfant de " + b.NomDates(etranger));
    contient("Suppression individu " + std::to_string(max + 3));
    contient("Suppression lien mariage de " + b.NomDates(f));
    // The mother's list still names the child, whose mother is now 0.
    contient("Suppression lien enfant de " + b.NomDates(f) + " avec " + b.NomDates(enfantF));
    EXPECT_EQ(l.size(), 9u) << r.rapport;
    LiensSains(b);

    // Committed, the repairs hold: a second control finds nothing.
    b.FermeBase();
    b.Ouvre(kChemin);
    LiensSains(b);
    EXPECT_EQ(Controler(b, Repond(Reponse::Non)).rapport, "");
}

TEST_F(Controle, MarriageBeyondTheLastPersonAndCancel) {
    const std::uint32_t h = Cherche("H", true, false);
    const std::uint32_t m = b.MariageNo(h, 1), femme = b.LitFemme(m);
    b.EcritMari(m, b.Tete().maxPersonne + 1);
    EXPECT_FALSE(Controler(b, Repond(Reponse::Annuler)).fait);
    EXPECT_EQ(b.LitMari(m), b.Tete().maxPersonne + 1) << "cancel changes nothing";

    const auto l = Lignes(Controler(b, Repond(Reponse::Non)).rapport);
    EXPECT_TRUE(l.count("Mariage " + std::to_string(m) + " incoh\xE9rent supprim\xE9"));
    EXPECT_TRUE(l.count("Suppression lien mariage de " + b.NomDates(h)));
    EXPECT_TRUE(l.count("Suppression lien mariage de " + b.NomDates(femme)));
    EXPECT_EQ(b.LitMari(m), 0u);
    EXPECT_EQ(b.LitFemme(m), femme) << "the wife field is left as it is";
    // The wife loses the marriage, and the next control gives it back.
    const auto l2 = Lignes(Controler(b, Repond(Reponse::Non)).rapport);
    EXPECT_TRUE(l2.count("Lien mariage de " + b.NomComplet(femme) + " avec  cr\xE9\xE9"));
}

// Two men or two women married to each other (other programs write them so)
// keep their marriage on both sides, however often the control runs; a
// marriage whose other side is empty still leaves the list.
TEST_F(Controle, CoupleOfOneSexKeepsItsMarriage) {
    const std::uint32_t a = b.CreePersonne("Smith", "John", "", 'H', "1991");
    const std::uint32_t c = b.CreePersonne("Stevens", "Steven", "", 'H', "1988");
    const std::uint32_t f1 = b.CreePersonne("Durand", "Anne", "", 'F', "1970");
    const std::uint32_t f2 = b.CreePersonne("Martin", "Rose", "", 'F', "1972");
    auto marie = [&](std::uint32_t mari, std::uint32_t femme) {
        const std::uint32_t m = ++b.TeteModifiable().maxMariage;
        b.EcritMari(m, mari);
        b.EcritFemme(m, femme);
        if (mari) b.MajMariages(mari, m, 'A');
        if (femme) b.MajMariages(femme, m, 'A');
        return m;
    };
    const std::uint32_t hommes = marie(a, c), femmes = marie(f1, f2);
    marie(0, f2);
    b.FermeBase();
    b.Ouvre(kChemin);
    const auto l = Lignes(Controler(b, Repond(Reponse::Non)).rapport);
    EXPECT_EQ(l, std::set<std::string>{"Suppression lien mariage de " + b.NomDates(f2)});
    EXPECT_EQ(b.Mariages(c), std::vector<std::uint32_t>{hommes});
    EXPECT_EQ(b.Mariages(f1), std::vector<std::uint32_t>{femmes});
    EXPECT_EQ(b.Mariages(f2), std::vector<std::uint32_t>{femmes});
    // Nothing left for a second run but the husbandless marriage, which the
    // marriage pass gives back and the person pass takes away again.
    const auto l2 = Lignes(Controler(b, Repond(Reponse::Non)).rapport);
    EXPECT_EQ(l2.size(), 2u) << "only the marriage without a husband comes back";
    EXPECT_EQ(b.Mariages(a), std::vector<std::uint32_t>{hommes});
}

// --- Repair commands ----------------------------------------------------------

struct Reparations : ::testing::Test {
    SystemeMemoire fs;
    Parametres p;
    std::unique_ptr<Base> b;
    void Ouvre() {
        b = std::make_unique<Base>(fs, p);
        b->Nouvelle(kChemin);
    }
};

TEST_F(Reparations, NamesInCapitalsFollowedByTheNoteTokens) {
    Ouvre();
    const std::uint32_t n = b->CreePersonne("dupont", "jean pierre", "louis", 'H', "1850",
                                            "12/03/1850", "1900", "1/1/1900");
    const std::uint32_t vide = b->CreePersonne("", "Sans", "", 'F', "1860");
    b->EcritNote(n, b->LitNote(n) + " $Paris\r\n|dupontel reste |dupont");
    const std::string noteVide = b->LitNote(vide);
    EXPECT_EQ(MnuRePMinMaj(*b, {}), 0u) << "no conversion set";

    p.conversionNom = "1";
    p.conversionPrenom = "2";
    EXPECT_EQ(MnuRePMinMaj(*b, {}), 1u) << "a person with an empty name is passed over";
    EXPECT_EQ(b->LitIdentite(n), "DUPONT;Jean Pierre;Louis;12/03/1850;1/1/1900");
    EXPECT_EQ(b->LitNote(n), "|DUPONT \xB6Jean.Pierre $Paris\r\n|dupontel reste |DUPONT");
    EXPECT_EQ(b->LitNote(vide), noteVide);
    EXPECT_EQ(MnuRePMinMaj(*b, {}), 0u) << "a second run changes nothing";

    p.conversionNom = "2";
    EXPECT_EQ(MnuRePMinMaj(*b, {}), 1u);
    EXPECT_EQ(b->LitNom(n), "Dupont");
    // The keyword index still finds the person under the name.
    const std::string liste = b->ListeRubrique(b->RubriqueDeSymbole('|'));
    bool trouve = false;
    for (std::size_t o = 0; o + 4 <= liste.size(); o += 4) {
        const std::uint32_t k = Unpack4(liste, o);
        if (b->LitMot(k) == "DUPONT") trouve = b->PersonnesMot(k) == Pack4(n);
    }
    EXPECT_TRUE(trouve);
}

TEST_F(Reparations, FirstLineRebuiltWithTheRestKept) {
    Ouvre();
    const std::uint32_t a = b->CreePersonne("de la Tour", "Anne Marie", "", 'F', "1800");
    const std::uint32_t c = b->CreePersonne("Roux", "Paul", "", 'H', "1801");
    b->EcritNote(a, "|Vieux \xB6Vieux $Lyon ~Paris\r\nTexte");
    b->EcritNote(c, "\r\nSans ligne de mots");
    EXPECT_EQ(MnuRepPrenom(*b, Repond(Reponse::Annuler)), -1);
    EXPECT_EQ(b->LitNote(c), "\r\nSans ligne de mots");

    EXPECT_EQ(MnuRepPrenom(*b, Repond(Reponse::Oui)), 2);
    EXPECT_EQ(b->LitNote(a), "|" + b->SansParticule("de la Tour") +
                                 " \xB6" "Anne.Marie $Lyon ~Paris\r\nTexte");
    EXPECT_EQ(b->LitNote(c), "|Roux \xB6Paul\r\nSans ligne de mots");
    EXPECT_EQ(b->LitRubrique(b->RubriqueDeSymbole('\xB6')), "\xB6" "FNAM");
    EXPECT_EQ(MnuRepPrenom(*b, Repond(Reponse::Oui)), 0);

    // Only the first word a keyword: the other first names go with it.
    b->TeteModifiable().premierPrenom = '1';
    EXPECT_EQ(MnuRepPrenom(*b, Repond(Reponse::Oui)), 1);
    EXPECT_EQ(b->LitNote(a).substr(0, b->LitNote(a).find(" $")),
              "|" + b->SansParticule("de la Tour") + " \xB6" "Anne Marie");
    EXPECT_EQ(MnuRepPrenom(*b, Repond(Reponse::Oui)), 0);
}

TEST_F(Reparations, TokenReplacedOnlyWhenWholeAndDoubleMarriageCheck) {
    EXPECT_EQ(RemplaceJeton("|Dupont |Dupontel |Dupont\r\n|Dupont", '|', "Dupont", "DUPONT"),
              "|DUPONT |Dupontel |DUPONT\r\n|DUPONT");
    EXPECT_EQ(RemplaceJeton("\xB6Jean", '|', "Jean", "JEAN"), "\xB6Jean");

    Ouvre();
    b->CreeMariage(b->CreePersonne("A", "B", "", 'H', "1800"),
                   b->CreePersonne("C", "D", "", 'F', "1800"));
    const auto d = MnuDoublonMariage(*b);
    EXPECT_EQ(d.message, 0);
    EXPECT_EQ(d.compte, "1/1");
    EXPECT_EQ(d.liste, b->ListeRubrique(b->RubriqueDeSymbole('|')));
    const std::uint32_t k = b->RubriqueDeSymbole('|');
    b->EcritRubrique(k, '|', "BIRN", 0);
    EXPECT_EQ(MnuDoublonMariage(*b).message, 1338);
}

// --- Command line ---------------------------------------------------------------

std::string Lance(const std::string& arguments, int* code = nullptr) {
    std::string commande = std::string(SYLVANE_CLI) + " " + arguments + " 2>/dev/null";
    FILE* f = popen(commande.c_str(), "r");
    std::string s;
    std::array<char, 4096> tampon{};
    while (std::size_t n = fread(tampon.data(), 1, tampon.size(), f)) s.append(tampon.data(), n);
    const int c = pclose(f);
    if (code) *code = WIFEXITED(c) ? WEXITSTATUS(c) : -1;
    return s;
}

TEST(CliMaintenance, ControlReorganiseAndRepair) {
    const std::string dossier = std::string(SYLVANE_BINARY_DIR) + "/cli_maintenance";
    std::string base = dossier + "/famille.sv2";
    std::system(("rm -rf " + dossier + " && mkdir -p " + dossier).c_str());
    Lance("new " + base);
    Lance("add-person " + base + " --name dupont --first Jean --sex H --birth 1850");
    Lance("add-person " + base + " --name Durand --first Marie --sex F --birth 1852");
    Lance("add-person " + base + " --name Martin --first Paul --sex H --father 1 --mother 2");
    int code = -1;
    EXPECT_EQ(Lance("control " + base, &code), "");
    EXPECT_EQ(code, 0);
    const std::string r = Lance("reorganise " + base + " --backup", &code);
    EXPECT_EQ(code, 0);
    EXPECT_NE(r.find("\"done\":true"), std::string::npos) << r;
    EXPECT_EQ(std::system(("test -f " + dossier + "/famille.sav").c_str()), 0);
    EXPECT_EQ(Lance("repair names " + base + " --surname-case 1"), "3\n");
    EXPECT_NE(Lance("persons " + base).find("\"name\":\"DUPONT\""), std::string::npos);
    EXPECT_EQ(Lance("repair firstnames " + base), "0\n");
    Lance("bogus", &code);
    EXPECT_NE(code, 0);
    Lance("repair sideways " + base, &code);
    EXPECT_NE(code, 0);
}

} // namespace
} // namespace sylvane
