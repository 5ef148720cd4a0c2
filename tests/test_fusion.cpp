// Doubles: the couples found at each level, the pairs file, and merges
// after which every family link still agrees on both sides — on small
// families built by hand, on many random bases, and when the disk fails
// in the middle of the commit.
#include "maintenance/controle.h"
#include "maintenance/fusion.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/familles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace sylvane {
namespace {

const std::string kChemin = "/c/base.sv2";

DialogueFusion Oui() {
    DialogueFusion d;
    d.question = [](int, const std::string&) { return Reponse::Oui; };
    return d;
}

// What the consistency control finds to repair: nothing in a sound base.
std::string Rapport(Base& b) {
    Interaction io;
    io.question = [](int) { return Reponse::Non; };
    return Controler(b, io).rapport;
}

std::vector<std::uint32_t> Vivants(Base& b) {
    std::vector<std::uint32_t> v;
    for (std::size_t i = 1; i <= b.TablePersonnes().taille(); ++i) v.push_back(b.TriFiche(i));
    std::sort(v.begin(), v.end());
    return v;
}

struct Fusions : ::testing::Test {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    TableDoublons table;
    void SetUp() override {
        p.dossierTravail = "/t";
        b.Nouvelle(kChemin);
    }
    std::uint32_t Personne(const char* nom, const char* prenom, char sexe, const char* an = "1850",
                           const char* autres = "") {
        return b.CreePersonne(nom, prenom, autres, sexe, an);
    }
    std::uint32_t Couple(const char* nomH, const char* prenomH, const char* nomF,
                         const char* prenomF) {
        const auto h = Personne(nomH, prenomH, 'H'), f = Personne(nomF, prenomF, 'F');
        return b.CreeMariage(h, f);
    }
    void Enfant(std::uint32_t pere, std::uint32_t mere, std::uint32_t e) {
        if (pere) {
            b.EcritPere(e, pere);
            b.MajEnfants(pere, e, 'A');
        }
        if (mere) {
            b.EcritMere(e, mere);
            b.MajEnfants(mere, e, 'A');
        }
    }
    ResultatRecherche Cherche(int niveau) {
        table.Vide();
        return RechercheDoublons(b, niveau, "1/" + std::to_string(b.Tete().maxMariage), table,
                                 {});
    }
    bool A(std::uint32_t x, std::uint32_t y) const { return table.Contient(x, y); }
};

// --- Search ---------------------------------------------------------------------------------

TEST_F(Fusions, LevelsWidenFromExactToNearKeys) {
    const auto m1 = Couple("Martin", "Jean", "Durand", "Marie");
    const auto m2 = Couple("Martin", "Jean", "Durand", "Marie");   // the same couple again
    const auto m3 = Couple("Martin", "Jean", "Durant", "Mariette"); // near wife, other first name
    const auto m4 = Couple("Lefevre", "Paul", "Bonnet", "Anne");    // nobody alike
    ASSERT_TRUE(m4);
    Cherche(0);
    const auto h1 = b.LitMari(m1), f1 = b.LitFemme(m1), h2 = b.LitMari(m2), f2 = b.LitFemme(m2);
    EXPECT_TRUE(A(h1, h2));
    EXPECT_TRUE(A(f1, f2));
    // Found from both sides and from both marriages, listed once.
    EXPECT_EQ(table.Actives(), 2u);
    EXPECT_FALSE(A(b.LitMari(m3), h1));

    Cherche(3);
    EXPECT_TRUE(A(h1, h2));
    EXPECT_TRUE(A(b.LitMari(m3), h1) || A(b.LitMari(m3), h2));
    EXPECT_FALSE(A(b.LitMari(m4), h1));
    for (const auto& l : table.Lignes()) EXPECT_NE(l.premier, l.second);
}

TEST_F(Fusions, TwoHusbandsOfOneWifeAreNotPaired) {
    const auto m1 = Couple("Martin", "Jean", "Durand", "Marie");
    const auto f = b.LitFemme(m1);
    const auto h2 = Personne("Martin", "Jean", 'H');
    b.CreeMariage(h2, f);
    Cherche(3);
    EXPECT_FALSE(A(b.LitMari(m1), h2));
    EXPECT_EQ(table.Actives(), 0u);
}

TEST_F(Fusions, StopKeepsWhatWasFoundAndARangeIsRead) {
    for (int i = 0; i < 6; ++i) Couple("Martin", "Jean", "Durand", "Marie");
    int appels = 0;
    Interaction io;
    io.arret = [&] { return ++appels > 3; };
    auto r = RechercheDoublons(b, 0, "1/6", table, io);
    EXPECT_TRUE(r.arrete);
    EXPECT_EQ(r.dernier, 3u);
    EXPECT_GT(table.Actives(), 0u);
    // A range of one marriage compares it with all others.
    table.Vide();
    r = RechercheDoublons(b, 0, "6/6", table, {});
    EXPECT_FALSE(r.arrete);
    EXPECT_EQ(table.Actives(), 10u); // 5 husbands and 5 wives against those of marriage 6

    EXPECT_EQ(LitPlage("1/99", 6), std::make_pair(1u, 6u));
    EXPECT_EQ(LitPlage("0/3", 6), std::make_pair(1u, 3u));
    for (const char* faux : {"", "3", "a/b", "1/99999999999", "/", "-1/2"})
        EXPECT_FALSE(LitPlage(faux, 6)) << faux;
    table.Vide();
    EXPECT_EQ(RechercheDoublons(b, 0, "n'importe quoi", table, {}).dernier, 0u);
}

// --- Pair table and its file ----------------------------------------------------------------

TEST(TableDoublons, NoPairTwiceInEitherOrderAndTheFileFollows) {
    TableDoublons t;
    EXPECT_TRUE(t.Creation_Doublon(3, 7));
    EXPECT_FALSE(t.Creation_Doublon(7, 3));
    EXPECT_FALSE(t.Creation_Doublon(3, 3));
    EXPECT_FALSE(t.Creation_Doublon(0, 4));
    EXPECT_TRUE(t.Creation_Doublon(4, 9));
    SystemeMemoire fs;
    const std::string f = CheminPaires("/c/ma.base.sv2");
    EXPECT_EQ(f, "/c/ma.base.fus");
    EXPECT_EQ(CheminPaires("/c.d/base"), "/c.d/base.fus");
    EcritPaires(fs, f, t);
    EXPECT_EQ(fs.contenu(f), "3\r\n7\r\n4\r\n9\r\n");
    t.Ecarte(7, 3);
    EXPECT_EQ(t.Lignes()[0].premier, 0u);
    EXPECT_EQ(t.Actives(), 1u);
    EXPECT_TRUE(t.Creation_Doublon(7, 3)); // dealt with: may come again
    t.Ecarte(3, 7);
    EcritPaires(fs, f, t);
    EXPECT_EQ(fs.contenu(f), "4\r\n9\r\n");
    TableDoublons lue = LitPaires(fs, f);
    ASSERT_EQ(lue.Lignes().size(), 1u);
    EXPECT_TRUE(lue.Contient(9, 4));
    t.Ecarte(4, 9);
    EcritPaires(fs, f, t);
    EXPECT_FALSE(fs.existe(f));
    EXPECT_EQ(LitPaires(fs, f).Lignes().size(), 0u);

    // Bare LF, garbage and a lone last line: the good pairs are read.
    ecrireTout(fs, f, "1\n2\nabc\n5\n6\r\n8\n99999999999\n4\n12");
    lue = LitPaires(fs, f);
    ASSERT_EQ(lue.Lignes().size(), 2u);
    EXPECT_TRUE(lue.Contient(1, 2));
    EXPECT_TRUE(lue.Contient(6, 8));
    // The widest numbers the file holds, written with its own line ends,
    // read back as they were written.
    TableDoublons larges;
    larges.Creation_Doublon(4294794721u, 12);
    EcritPaires(fs, f, larges);
    lue = LitPaires(fs, f);
    ASSERT_EQ(lue.Lignes().size(), 1u);
    EXPECT_TRUE(lue.Contient(4294794721u, 12));
    // A huge file is no pairs file.
    ecrireTout(fs, f, std::string((64u << 20) + 1, '1'));
    EXPECT_THROW(LitPaires(fs, f), ErreurES);
}

TEST(TableDoublons, WizardListsAndNotes) {
    EXPECT_EQ(ListeChoix("a", "b"), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(ListeChoix("a", "a"), (std::vector<std::string>{"a"}));
    EXPECT_EQ(ListeChoix("a", ""), (std::vector<std::string>{"a", "", ""}));
    EXPECT_EQ(ListeChoix("", ""), (std::vector<std::string>{""}));
    EXPECT_EQ(DateEtAn("12/3", "1850"), "12/3 1850");
    EXPECT_EQ(DecoupeDateAn("12/3 1850"), std::make_pair(std::string("12/3"), std::string("1850")));
    EXPECT_EQ(DecoupeDateAn(DateEtAn("ABT", "850")), std::make_pair(std::string("ABT"), std::string("850")));
    EXPECT_EQ(DecoupeDateAn("1850"), std::make_pair(std::string(), std::string("1850")));
    EXPECT_EQ(JoinsNotes("a", "b"), "a\r\nb");
    EXPECT_EQ(JoinsNotes("a\r\n", "b\r\n"), "a\r\nb\r\n") << "no blank line between the two";
    EXPECT_EQ(JoinsNotes("", "b"), "b");
    EXPECT_EQ(JoinsNotes("{\\rtf1 un \\{x}", "{\\rtf1 {\\b deux}} fin"),
              "{\\rtf1 un \\{x\\par  {\\b deux}}\r\nfin");
    EXPECT_EQ(JoinsNotes("{\\rtf1 un", "{\\rtf1 deux"), "{\\rtf1 un\\par  deux");
}

// --- Merge ----------------------------------------------------------------------------------

TEST_F(Fusions, EveryLinkOfTheDroppedPersonMovesToTheKeptOne) {
    const auto pere = Personne("Martin", "Pierre", 'H', "1820");
    const auto mere2 = Personne("Durand", "Anne", 'F', "1822");
    const auto k = Personne("Martin", "Jean", 'H', "1850");
    const auto d = Personne("Martin", "Jehan", 'H', "", "Louis");
    Enfant(pere, 0, k);
    Enfant(0, mere2, d);
    const auto femmeK = Personne("Bonnet", "Marie", 'F');
    const auto femmeD = Personne("Bonnet", "Maria", 'F');
    const auto autre = Personne("Roux", "Louise", 'F');
    const auto mk = b.CreeMariage(k, femmeK, "1875");
    const auto md = b.CreeMariage(d, femmeD);
    const auto md2 = b.CreeMariage(d, autre);
    const auto e1 = Personne("Martin", "Paul", 'H', "");
    const auto e2 = Personne("Martin", "Jeanne", 'F', "1880");
    Enfant(d, femmeD, e1);
    Enfant(d, autre, e2);
    const auto ami = Personne("Petit", "Luc", 'H');
    b.MajLiens(d, ami, "Ami", 'A');
    b.MajLiens(ami, d, "Ami", 'A');
    const auto evt = b.CreeEvtPersonne(0, 0, "OCCU", "Paris");
    b.MajEvts(d, evt, "PRIN", 'A');
    b.MajPersonnesEvt(evt, ami, 'A');
    b.MajPersonnesEvt(evt, d, 'A');
    const auto doc = b.CreeDoc("Acte", "acte.jpg");
    b.MajDocs(d, doc, 'A');
    b.EcritNote(d, b.LitNote(d) + "\r\n\r\nMeunier");
    b.ValideBase();
    const auto avant = b.Tete().nbPersonnes;

    ChoixFusion c = ChoixParDefaut(b, k, d);
    EXPECT_EQ(c.prenom, "Jean");
    EXPECT_EQ(c.autres, "Louis");
    EXPECT_TRUE(c.autrePrenom);
    ASSERT_EQ(c.mariages.size(), 2u);
    EXPECT_EQ(c.mariages[0].avec, mk); // Bonnet against Bonnet
    EXPECT_EQ(c.mariages[1].avec, 0u); // Roux: nobody alike, moved as it stands
    EXPECT_EQ(MariagesOfferts(b, k, d, md2), std::vector<std::uint32_t>{mk});

    // No to 957: nothing is written.
    EXPECT_FALSE(Maj_Fusion(b, c, table, {}).fait);
    EXPECT_EQ(b.LitPere(d), 0u);
    EXPECT_EQ(b.MariageNo(d, 1), md);

    table.Creation_Doublon(k, d);
    ASSERT_TRUE(Maj_Fusion(b, c, table, Oui()).fait);
    EXPECT_FALSE(table.Contient(k, d));
    EXPECT_FALSE(b.Modifiee()); // one commit
    EXPECT_EQ(b.Tete().nbPersonnes, avant - 1);
    EXPECT_EQ(b.TrouvePlaceFiche(d), 0u);
    EXPECT_EQ(b.LitIdentite(d), "");
    EXPECT_EQ(b.LitAutrePrenom(k), "Louis Jehan");
    EXPECT_EQ(b.LitPere(k), pere);
    EXPECT_EQ(b.LitMere(k), mere2); // only D had a mother
    EXPECT_EQ(b.EnfantNo(mere2, 1), k);
    EXPECT_EQ(b.EnfantNo(mere2, 2), 0u);
    // Marriages: one merged, one moved; the spouses left over are a pair.
    EXPECT_EQ(b.Mariages(k), (std::vector<std::uint32_t>{mk, md2}));
    EXPECT_EQ(b.LitMari(md), 0u);
    EXPECT_EQ(b.LitMari(md2), k);
    EXPECT_TRUE(b.Mariages(femmeD).empty());
    EXPECT_TRUE(table.Contient(femmeK, femmeD));
    // Children follow with their births, the one with no year takes the
    // marriage's on Yes to 981.
    EXPECT_EQ(b.LitPere(e1), k);
    EXPECT_EQ(b.LitPere(e2), k);
    EXPECT_EQ(b.LitMere(e1), femmeD);
    EXPECT_EQ(b.EnfantNo(d, 1), 0u);
    // Links, events and documents.
    EXPECT_EQ(b.LienNo(k, 1), ami);
    EXPECT_EQ(b.LienNo(ami, 1), k);
    EXPECT_EQ(b.LienNo(ami, 2), 0u);
    EXPECT_EQ(b.EvtNo(k, 1), evt);
    EXPECT_EQ(b.RoleEvtNo(k, 1), "PRIN");
    EXPECT_EQ(b.ListePersonnesEvt(evt), Pack4(k) + Pack4(ami)); // in D's place
    EXPECT_EQ(b.DocNo(k, 1), doc);
    EXPECT_EQ(b.ListeDocs(d), "");
    EXPECT_NE(b.LitNote(k).find("Meunier"), std::string::npos);
    EXPECT_EQ(Rapport(b), "");
}

TEST_F(Fusions, AManAndAWomanAreRefusedAPersonOfNoSexIsNot) {
    const auto h = Personne("Martin", "Claude", 'H'), f = Personne("Martin", "Claude", 'F');
    const auto i = Personne("Martin", "Claude", 'I');
    EXPECT_EQ(Maj_Fusion(b, ChoixParDefaut(b, h, f), table, Oui()).refus, 956);
    EXPECT_EQ(b.LitSexe(f), "F");
    ASSERT_TRUE(Maj_Fusion(b, ChoixParDefaut(b, i, h), table, Oui()).fait);
    EXPECT_EQ(b.LitSexe(i), "H"); // takes the dropped one's sex
    EXPECT_EQ(b.LitIdentite(h), "");
}

TEST_F(Fusions, AParentChildOrSpousePairLeavesNoLoop) {
    const auto pere = Personne("Martin", "Jean", 'H', "1820");
    const auto fils = Personne("Martin", "Jean", 'H', "1850");
    Enfant(pere, 0, fils);
    const auto f = Personne("Roux", "Anne", 'I');
    b.CreeMariage(fils, f);
    ASSERT_TRUE(Maj_Fusion(b, ChoixParDefaut(b, fils, pere), table, Oui()).fait);
    EXPECT_EQ(b.LitPere(fils), 0u);
    EXPECT_EQ(b.EnfantNo(fils, 1), 0u);
    ASSERT_TRUE(Maj_Fusion(b, ChoixParDefaut(b, f, fils), table, Oui()).fait);
    EXPECT_TRUE(b.Mariages(f).empty());
    EXPECT_EQ(Rapport(b), "");
}

// Random bases, random pairs, random choices: after every merge the
// control finds nothing to repair and the dropped number is out of use.
TEST(FusionsAleatoires, ManyMergesLeaveSoundBases) {
    int fusions = 0;
    for (std::uint32_t graine = 1; graine <= 12; ++graine) {
        SystemeMemoire fs;
        Parametres p;
        p.dossierTravail = "/t";
        Base b(fs, p);
        b.Nouvelle(kChemin);
        test::EditionsAleatoires(b, 300, graine);
        b.ValideBase();
        std::mt19937 alea(graine);
        TableDoublons table;
        RechercheDoublons(b, 3, "1/" + std::to_string(b.Tete().maxMariage), table, {});
        for (int essai = 0; essai < 8; ++essai) {
            auto v = Vivants(b);
            if (v.size() < 2) break;
            std::uint32_t k = v[alea() % v.size()], d = v[alea() % v.size()];
            // Half the time a pair the search proposed.
            for (const auto& l : table.Lignes())
                if (l.premier && alea() % 2 && b.TrouvePlaceFiche(l.premier) &&
                    b.TrouvePlaceFiche(l.second)) {
                    k = l.premier, d = l.second;
                    break;
                }
            if (k == d || RefusFusion(b, k, d)) continue;
            ChoixFusion c = ChoixParDefaut(b, k, d);
            const ChoixTexte choix[] = {ChoixTexte::Premier, ChoixTexte::Second,
                                        ChoixTexte::Fusion};
            c.pere = choix[alea() % 3];
            c.mere = choix[alea() % 3];
            c.note = choix[alea() % 3];
            for (auto& m : c.mariages)
                if (alea() % 3 == 0) {
                    auto o = MariagesOfferts(b, k, d, m.mariage);
                    m.avec = o.empty() ? 0 : o[alea() % o.size()];
                }
            const auto avant = b.Tete().nbPersonnes;
            ASSERT_TRUE(Maj_Fusion(b, c, table, Oui()).fait);
            ++fusions;
            EXPECT_EQ(b.Tete().nbPersonnes, avant - 1);
            EXPECT_EQ(b.TrouvePlaceFiche(d), 0u);
            EXPECT_EQ(b.ListeMariages(d) + b.ListeEnfants(d) + b.ListeLiens(d) + b.ListeEvts(d) +
                          b.ListeDocs(d),
                      "");
            for (std::uint32_t n : Vivants(b)) {
                ASSERT_NE(b.LitPere(n), d) << "seed " << graine;
                ASSERT_NE(b.LitMere(n), d) << "seed " << graine;
                for (std::uint32_t m : b.Mariages(n)) {
                    ASSERT_NE(b.LitMari(m), d);
                    ASSERT_NE(b.LitFemme(m), d);
                }
            }
            ASSERT_EQ(Rapport(b), "") << "seed " << graine << " merge " << k << " " << d;
        }
    }
    EXPECT_GT(fusions, 60);
}

// The disk fails at each write of the merge's commit in turn: the base
// opens again as it was before the merge, whole.
TEST(FusionsPannes, AFailedWriteLeavesTheBaseWhole) {
    SystemeMemoire fs;
    Parametres p;
    p.dossierTravail = "/t";
    Base b(fs, p);
    b.Nouvelle(kChemin);
    test::EditionsAleatoires(b, 200, 5);
    b.FermeBase();
    const SystemeMemoire propre = [&] {
        SystemeMemoire c;
        c.copieDe(fs);
        return c;
    }();
    bool reussi = false;
    for (long n = 1; n < 400 && !reussi; ++n) {
        fs.copieDe(propre);
        b.Ouvre(kChemin);
        auto v = Vivants(b);
        std::uint32_t k = 0, d = 0;
        for (std::uint32_t x : v)
            for (std::uint32_t y : v)
                if (!k && x != y && b.LitSexe(x) == "H" && b.LitSexe(y) == "H" &&
                    b.MariageNo(y, 1) && b.EnfantNo(y, 1))
                    k = x, d = y;
        ASSERT_TRUE(k);
        const auto avant = b.Tete().nbPersonnes;
        const std::string mariagesD = b.ListeMariages(d);
        TableDoublons t;
        fs.echouerApres(n, n % 2 == 0);
        try {
            reussi = Maj_Fusion(b, ChoixParDefaut(b, k, d), t, Oui()).fait;
        } catch (const ErreurES&) {
        }
        fs.retablir();
        if (b.EstOuverte()) b.Abandonne();
        b.Ouvre(kChemin);
        if (reussi) {
            EXPECT_EQ(b.TrouvePlaceFiche(d), 0u);
            EXPECT_EQ(b.Tete().nbPersonnes, avant - 1);
        } else if (b.Tete().nbPersonnes == avant) {
            EXPECT_NE(b.TrouvePlaceFiche(d), 0u) << n;
            EXPECT_EQ(b.ListeMariages(d), mariagesD) << n;
        } else {
            // The fault came once the commit was durable (the folder's
            // sync after the journal's removal): the merge is whole.
            EXPECT_EQ(b.Tete().nbPersonnes, avant - 1) << n;
            EXPECT_EQ(b.TrouvePlaceFiche(d), 0u) << n;
        }
        EXPECT_EQ(Rapport(b), "") << n;
        b.FermeBase();
    }
    EXPECT_TRUE(reussi);
}

} // namespace
} // namespace sylvane
