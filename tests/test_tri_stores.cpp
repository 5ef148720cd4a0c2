// Sort tables: the complete sort against the tree it stands for, the change
// of sort mode, and the document and event tables.
#include "support/base_memoire.h"
#include "text/messages.h"
#include "text/mots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace sylvane;

namespace {

using Fixture = test::BaseMemoire;

// The sort as a binary tree over places of the table, built in the
// scattered order and walked with links instead of a stack, step by step.
std::vector<std::uint32_t> ArbreLitteral(Base& b, const std::vector<std::uint32_t>& table) {
    const std::size_t n = table.size();
    std::vector<std::string> cle(n + 1);
    for (std::size_t i = 1; i <= n; ++i) {
        std::uint32_t p = table[i - 1];
        std::string c = b.SansParticule(b.LitNom(p)) + " " + b.LitPrenom(p);
        if (b.Tete().modeTri == '1') c = b.CleAnNaiss(p) + " " + c;
        cle[i] = CleMot(c);
    }
    std::vector<std::size_t> gauche(n + 1, 0), droite(n + 1, 0), lien(n + 1, 0);
    const std::size_t pas = n / 100 + 1;
    for (std::size_t j = 1; j <= pas; ++j)
        for (std::size_t k = 1; k <= 100; ++k) {
            std::size_t i = pas * (k - 1) + j + 1;
            if (i > n) continue;
            std::size_t noeud = 1;
            for (;;) {
                if (cle[i] >= cle[noeud]) {
                    if (droite[noeud] == 0) {
                        droite[noeud] = i;
                        break;
                    }
                    noeud = droite[noeud];
                } else {
                    if (gauche[noeud] == 0) {
                        gauche[noeud] = i;
                        lien[i] = noeud;
                        break;
                    }
                    noeud = gauche[noeud];
                }
            }
        }
    std::vector<std::uint32_t> sortie;
    std::size_t noeud = 1;
    for (;;) {
        while (gauche[noeud] != 0)
            noeud = gauche[noeud];
        sortie.push_back(table[noeud - 1]);
        if (lien[noeud] == 0) {
            if (droite[noeud] == 0) break;
            noeud = droite[noeud];
        } else {
            std::size_t p = lien[noeud];
            gauche[p] = droite[noeud];
            if (droite[noeud] != 0) lien[droite[noeud]] = p;
            noeud = p;
        }
    }
    return sortie;
}

} // namespace

TEST(TriTable, EqualsTheTreeWalkOnTablesWithManyTies) {
    const char* noms[] = {"Martin", "de la Tour", "Durand", "L\xE9ger", "Leger", "d'Arc"};
    const char* prenoms[] = {"Jean", "Marie", "Jean Louis"};
    std::mt19937 rng(99);
    for (std::size_t taille : {1u, 2u, 99u, 100u, 101u, 250u, 1234u, 3001u}) {
        Fixture f;
        Base& b = f.b;
        b.TeteModifiable().particules = '1';
        for (std::size_t i = 0; i < taille; ++i) {
            std::string an = rng() % 4 ? std::to_string(1800 + rng() % 3) : "";
            b.CreePersonne(noms[rng() % 6], prenoms[rng() % 3], "", 'H', an);
        }
        for (char mode : {'2', '1'}) {
            std::vector<std::uint32_t> t = b.TablePersonnes().versVecteur();
            std::shuffle(t.begin(), t.end(), rng);
            b.TablePersonnes().depuisVecteur(t);
            b.TeteModifiable().modeTri = mode;
            b.OublieCles();
            std::vector<std::uint32_t> attendu = ArbreLitteral(b, t);
            b.TriTable();
            ASSERT_EQ(b.TablePersonnes().versVecteur(), attendu) << taille << " mode " << mode;
            // A sorted table stays sorted; equal keys come out in the order
            // of the tree again, which need not be the order they came in.
            std::vector<std::uint32_t> encore = ArbreLitteral(b, attendu);
            b.TriTable();
            ASSERT_EQ(b.TablePersonnes().versVecteur(), encore) << taille << " mode " << mode;
            for (std::size_t i = 2; i <= taille; ++i)
                ASSERT_LE(b.CleTriFiche(b.TriFiche(i - 1)), b.CleTriFiche(b.TriFiche(i)));
        }
    }
}

TEST(TriTable, ChangeOfModeAsksThenSortsOrKeeps) {
    DefinitMessages({{629, "Tri"}, {716, "Changer le tri ?"}, {717, "Cela peut durer."}});
    Fixture f;
    Base& b = f.b;
    std::uint32_t z = b.CreePersonne("Zola", "Emile", "", 'H', "1800");
    std::uint32_t a = b.CreePersonne("Abel", "Jean", "", 'H', "1900");
    ASSERT_EQ(b.TriFiche(1), z);
    std::string titre, question;
    auto non = [&](const std::string& t, const std::string& q) {
        titre = t;
        question = q;
        return false;
    };
    EXPECT_FALSE(b.ChangeModeTri('2', non));
    EXPECT_EQ(titre, "Tri");
    EXPECT_EQ(question, "Changer le tri ?\r\nCela peut durer.");
    EXPECT_EQ(b.Tete().modeTri, '1');
    auto oui = [](const std::string&, const std::string&) { return true; };
    EXPECT_TRUE(b.ChangeModeTri('2', oui));
    EXPECT_EQ(b.TriFiche(1), a);
    EXPECT_TRUE(b.ChangeModeTri('0', oui));
    EXPECT_EQ(b.TriFiche(1), a);
    EXPECT_TRUE(b.triPersonnesModifie);
    // In mode "0" a new person goes last.
    std::uint32_t c = b.CreePersonne("Aaron", "Paul", "", 'H', "1700");
    EXPECT_EQ(b.TriFiche(3), c);
    b.FermeBase();
    b.Ouvre("/b.sv2");
    EXPECT_EQ(b.Tete().modeTri, '0');
    EXPECT_EQ(b.TriFiche(1), a);
    DefinitMessages({});
}

TEST(TablesTri, EventsByDateAndDocumentsByTitle) {
    Fixture f;
    Base& b = f.b;
    // Equal dates: a new event goes among them where the bisection stops.
    std::vector<std::uint32_t> e;
    for (long d : {30L, 10L, 20L, 20L, 20L, -5L})
        e.push_back(b.CreeEvtPersonne(0, d, "CENS", ""));
    std::vector<long> dates;
    for (std::size_t i = 1; i <= 6; ++i)
        dates.push_back(b.DateEvt(b.TriEvt(i)));
    EXPECT_EQ(dates, (std::vector<long>{-5, 10, 20, 20, 20, 30}));
    EXPECT_EQ(b.TriEvt(1), e[5]);
    EXPECT_EQ(b.TriEvt(0), 0u);
    EXPECT_EQ(b.TriEvt(7), 0u);
    for (std::uint32_t x : e)
        EXPECT_EQ(b.TriEvt(b.TrouvePlaceEvt(x)), x);
    // Bubbling moves one record and keeps the others in their order.
    b.BulleEvt(1, 6);
    EXPECT_EQ(b.TriEvt(6), e[5]);
    EXPECT_EQ(b.TriEvt(1), e[1]);
    b.BulleEvt(6, 1);
    EXPECT_EQ(b.TriEvt(1), e[5]);
    // The place setter replaces; beyond the table it puts the number first.
    b.PlaceTriEvt(2, 99);
    EXPECT_EQ(b.TriEvt(2), 99u);
    b.PlaceTriEvt(40, 77);
    EXPECT_EQ(b.TriEvt(1), 77u);
    EXPECT_EQ(b.TableEvenements().taille(), 7u);

    std::uint32_t d1 = b.CreeDoc("\xE9t\xE9", "a");
    std::uint32_t d2 = b.CreeDoc("Eta", "b");
    std::uint32_t d3 = b.CreeDoc("abc", "c");
    EXPECT_EQ(b.TriDoc(1), d3);
    EXPECT_EQ(b.TriDoc(2), d2);
    EXPECT_EQ(b.TriDoc(3), d1);
    b.BulleDoc(3, 1);
    EXPECT_EQ(b.TriDoc(1), d1);
    EXPECT_EQ(b.TriDoc(3), d2);
    b.PlaceTriDoc(9, d2);
    EXPECT_EQ(b.TriDoc(1), d2);
}
