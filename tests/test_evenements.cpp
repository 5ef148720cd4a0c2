// Events and documents: creation with roles, lists, deletion, damaged
// records, and the round trip through a commit and a reopen.
#include "store/pack.h"
#include "support/base_memoire.h"

#include <gtest/gtest.h>

#include <random>

using namespace sylvane;

namespace {

using Fixture = test::BaseMemoire;

std::vector<std::pair<std::uint32_t, std::string>> Roles(Base& b, std::uint32_t e) {
    std::vector<std::pair<std::uint32_t, std::string>> v;
    for (int i = 1;; ++i) {
        std::uint32_t p = b.PersonneEvtNo(e, i);
        if (p == 0) break;
        std::string role;
        for (int k = 1; b.EvtNo(p, k); ++k)
            if (b.EvtNo(p, k) == e) role = b.RoleEvtNo(p, k);
        v.emplace_back(p, role);
    }
    return v;
}

using Paires = std::vector<std::pair<std::uint32_t, std::string>>;

} // namespace

TEST(Evenements, BirthGivesTheChildAndItsParentsTheirRoles) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t pere = b.CreePersonne("Martin", "Jean", "", 'H', "1820");
    std::uint32_t mere = b.CreePersonne("Durand", "Marie", "", 'F', "1822");
    std::uint32_t n = b.CreePersonne("Martin", "Paul", "", 'H', "1850");
    b.EcritPere(n, pere);
    b.EcritMere(n, mere);
    std::uint32_t e = b.CreeEvtPersonne(n, -18190, "BIRT", "  Saint L\xF4 ");
    EXPECT_EQ(b.LieuEvt(e), "Saint L\xF4");
    EXPECT_EQ(b.TitreEvt(e), "Paul Martin");
    EXPECT_EQ(b.TagEvt(e), "BIRT");
    EXPECT_EQ(b.DateEvt(e), -18190);
    // Each new person goes in front of the event's list.
    EXPECT_EQ(Roles(b, e), (Paires{{mere, "MOTH"}, {pere, "FATH"}, {n, "CHIL"}}));
    f.Reouvre();
    EXPECT_EQ(Roles(b, e), (Paires{{mere, "MOTH"}, {pere, "FATH"}, {n, "CHIL"}}));
    EXPECT_EQ(b.TriEvt(1), e);
    EXPECT_EQ(b.Tete().nbEvenements, 1u);
}

TEST(Evenements, OnlyTheSpousesThatSurviveBecomeWidows) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t n = b.CreePersonne("Martin", "Jean", "", 'H', "1800", "", "1860");
    std::uint32_t f1 = b.CreePersonne("A", "Anne", "", 'F', "1802");
    std::uint32_t f2 = b.CreePersonne("B", "Berthe", "", 'F', "1810");
    std::uint32_t f3 = b.CreePersonne("C", "Claire", "", 'F', "1812", "", "1850");
    std::uint32_t f4 = b.CreePersonne("D", "Denise", "", 'F', "1815", "", "1870");
    b.CreeMariage(n, f1, "1825", "1830"); // ended before the death
    b.CreeMariage(n, f3, "1835");         // she died first
    b.CreeMariage(n, f2, "1845", "1860"); // ended by the death itself
    b.CreeMariage(n, f4, "1850");         // she outlived him
    std::uint32_t e = b.CreeEvtPersonne(n, -14000, "DEAT", "Caen");
    EXPECT_EQ(Roles(b, e), (Paires{{f4, "WIDW"}, {f2, "WIDW"}, {n, "DEAD"}}));
    // A woman's death makes a widower; a person of unknown sex none.
    std::uint32_t h = b.CreePersonne("E", "Eloi", "", 'H', "1800");
    std::uint32_t x = b.CreePersonne("F", "Fanny", "", 'F', "1800", "", "1850");
    std::uint32_t i = b.CreePersonne("G", "Gaby", "", 'I', "1800", "", "1850");
    b.CreeMariage(h, x);
    b.CreeMariage(h, i);
    EXPECT_EQ(Roles(b, b.CreeEvtPersonne(x, 0, "DEAT", "")), (Paires{{h, "WIDR"}, {x, "DEAD"}}));
    EXPECT_EQ(Roles(b, b.CreeEvtPersonne(i, 0, "DEAT", "")), (Paires{{i, "DEAD"}}));
}

TEST(Evenements, MarriageEventTakesBothSpousesAndAnUnknownTagBecomesAKind) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t h = b.CreePersonne("Martin", "Jean", "", 'H', "1800");
    std::uint32_t w = b.CreePersonne("Durand", "Marie", "", 'F', "1802");
    std::uint32_t m = b.CreeMariage(h, w, "1825");
    std::uint32_t e = b.CreeEvtMariage(m, 100, "MARR", "Paris");
    EXPECT_EQ(b.TitreEvt(e), "Martin/Durand");
    EXPECT_EQ(Roles(b, e), (Paires{{w, "WIFE"}, {h, "HUSB"}}));
    ASSERT_EQ(b.Temoins().Genre("XYZW"), nullptr);
    std::uint32_t x = b.CreeEvtPersonne(h, 5, "XYZW", "");
    ASSERT_NE(b.Temoins().Genre("XYZW"), nullptr);
    EXPECT_TRUE(Roles(b, x).empty());
    EXPECT_EQ(b.TagEvt(x), "XYZW");
}

TEST(Evenements, APersonsEventsStayInDateOrder) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t n = b.CreePersonne("Martin", "Jean", "", 'H', "1800");
    std::mt19937 rng(7);
    std::vector<long> dates;
    for (int i = 0; i < 60; ++i) {
        long d = static_cast<long>(rng() % 2000) - 1000;
        dates.push_back(d);
        b.CreeEvtPersonne(n, d, "CENS", "");
    }
    auto verifie = [&] {
        long avant = -2000000;
        int nb = 0;
        for (int i = 1; b.EvtNo(n, i); ++i, ++nb) {
            EXPECT_LE(avant, b.DateEvt(b.EvtNo(n, i)));
            avant = b.DateEvt(b.EvtNo(n, i));
        }
        return nb;
    };
    EXPECT_EQ(verifie(), 60);
    // The event sort table is in date order too.
    for (std::size_t i = 2; i <= b.Tete().nbEvenements; ++i)
        EXPECT_LE(b.DateEvt(b.TriEvt(i - 1)), b.DateEvt(b.TriEvt(i)));
    // A change of date, then the re-sort of the person's list.
    std::uint32_t premier = b.EvtNo(n, 1);
    std::size_t place = b.TrouvePlaceEvt(premier);
    b.EcritDateEvt(premier, 5000);
    b.BulleEvt(place, b.Tete().nbEvenements);
    b.TriEvts(n);
    f.Reouvre();
    EXPECT_EQ(verifie(), 60);
    EXPECT_EQ(b.TriEvt(b.Tete().nbEvenements), premier);
}

TEST(Evenements, DeletionLeavesNoTrace) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t n = b.CreePersonne("Martin", "Jean", "", 'H', "1800");
    std::uint32_t e1 = b.CreeEvtPersonne(n, 10, "CENS", "");
    std::uint32_t e2 = b.CreeEvtPersonne(n, 20, "EMIG", "");
    b.SupprimeEvt(e1);
    EXPECT_EQ(b.PosEvt(e1), 0u);
    EXPECT_EQ(b.EvtNo(n, 1), e2);
    EXPECT_EQ(b.EvtNo(n, 2), 0u);
    EXPECT_EQ(b.Tete().nbEvenements, 1u);
    EXPECT_EQ(b.TriEvt(1), e2);
    f.Reouvre();
    EXPECT_EQ(b.PosEvt(e1), 0u);
    EXPECT_EQ(b.PersonneEvtNo(e1, 1), 0u);
    EXPECT_EQ(b.Tete().maxEvenement, 2u);
    // The number is not given again.
    EXPECT_EQ(b.CreeEvtPersonne(n, 0, "OCCU", ""), 3u);
}

TEST(Evenements, StoredFormsAndDamagedRecords) {
    Fixture f;
    Base& b = f.b;
    // A date of 0 is stored as 1000000; an event with no persons is kept.
    std::uint32_t e = b.CreeEvtPersonne(0, 0, "CENS", "Vire");
    EXPECT_EQ(b.LitTeteEvt(e).date, 1000000u);
    EXPECT_EQ(b.LitTeteEvt(e).personnes, 0u);
    EXPECT_EQ(b.PersonneEvtNo(e, 1), 0u);
    b.EcritNoteEvt(e, "\r\n\r\nRecensement\r\n");
    EXPECT_EQ(b.NoteEvt(e), "Recensement");
    // More than 200 persons: a reader stops at 800 bytes.
    for (std::uint32_t p = 1; p <= 205; ++p)
        b.MajPersonnesEvt(e, p, 'A');
    EXPECT_EQ(b.PersonneEvtNo(e, 200), 6u);
    f.Reouvre();
    EXPECT_EQ(b.PersonneEvtNo(e, 200), 6u);
    EXPECT_EQ(b.PersonneEvtNo(e, 201), 0u);
    EXPECT_EQ(b.NoteEvt(e), "Recensement");
    // A text with no end: the fields are empty and the damage is reported.
    std::uint32_t pos = b.Ajouter(std::string(40000, 'x'));
    TeteEvt t = b.LitTeteEvt(e);
    t.texte = pos;
    b.EcritTeteEvt(e, &t);
    f.Reouvre();
    EXPECT_EQ(b.LieuEvt(e), "");
    EXPECT_EQ(b.TagEvt(e), "");
    ASSERT_EQ(f.signales.size(), 1u);
    EXPECT_EQ(f.signales[0], "Incident sur l'\xE9v\xE9nement 1 - R\xE9organisez votre base");
    // A head position beyond the file reads as nothing, without a crash.
    b.EcritPosEvt(e, 0x7FFFFFF0);
    EXPECT_EQ(b.LitTeteEvt(e), TeteEvt{});
}

// What each change appends: the part, then a new head of five numbers.
TEST(Evenements, EachChangeAppendsItsPartThenTheHead) {
    Fixture f;
    Base& b = f.b;
    auto tete = [](std::uint32_t date, std::uint32_t note, std::uint32_t pers, std::uint32_t docs,
                   std::uint32_t texte) {
        return Pack4(date) + Pack4(note) + Pack4(pers) + Pack4(docs) + Pack4(texte);
    };
    const std::uint32_t z0 = b.Tete().zoneFin;
    std::uint32_t e = b.CreeEvtPersonne(0, -5, "CENS", " Vire ");
    const std::string texte("Vire\0\0CENS#", 11);
    EXPECT_EQ(b.Lire(z0 + 1, 31), texte + tete(999995, 0, 0, 0, z0 + 1));
    EXPECT_EQ(b.Tete().zoneFin, z0 + 31);

    std::uint32_t z = b.Tete().zoneFin;
    b.MajDocsEvt(e, 7, 'A');
    EXPECT_EQ(b.Lire(z + 1, 28), Pack4(7) + Pack4(0) + tete(999995, 0, 0, z + 1, z0 + 1));
    // The last document removed: the end mark alone is still written.
    z = b.Tete().zoneFin;
    b.MajDocsEvt(e, 7, 'S');
    EXPECT_EQ(b.Lire(z + 1, 24), Pack4(0) + tete(999995, 0, 0, z + 1, z0 + 1));
    const std::uint32_t docs = z + 1;
    // The last person removed, or an empty note: no part, position 0.
    b.MajPersonnesEvt(e, 3, 'A');
    z = b.Tete().zoneFin;
    b.MajPersonnesEvt(e, 3, 'S');
    EXPECT_EQ(b.Lire(z + 1, 20), tete(999995, 0, 0, docs, z0 + 1));
    EXPECT_EQ(b.Tete().zoneFin, z + 20);
    b.EcritNoteEvt(e, "Vu");
    z = b.Tete().zoneFin;
    b.EcritNoteEvt(e, "");
    EXPECT_EQ(b.Lire(z + 1, 20), tete(999995, 0, 0, docs, z0 + 1));
    f.Reouvre();
    EXPECT_EQ(b.PosEvt(e), z + 1);
    EXPECT_EQ(b.DocEvtNo(e, 1), 0u);
}

TEST(Documents, HeadsTitlesTypesAndSortOrder) {
    Fixture f;
    Base& b = f.b;
    std::uint32_t d1 = b.CreeDoc("\xC9glise de Vire", "eglise.jpg", "JPG", "\r\nNote\r\n");
    std::uint32_t d2 = b.CreeDoc("acte", "acte.txt");
    std::uint32_t d3 = b.CreeDoc("Carte", "carte.bmp", "BMP");
    EXPECT_EQ(b.NoteDoc(d1), "Note");
    // No type, no 0xFF byte.
    std::string h = b.Lire(b.PosDoc(d2), 104);
    EXPECT_EQ(h.substr(4, h.find('#', 4) - 4), std::string("acte\0acte.txt", 13));
    EXPECT_EQ(b.TypesDocuments(), (std::vector<std::string>{"JPG", "BMP"}));
    // By the key of the title: ACTE, CARTE, EGLISE.
    EXPECT_EQ(b.TriDoc(1), d2);
    EXPECT_EQ(b.TriDoc(2), d3);
    EXPECT_EQ(b.TriDoc(3), d1);
    b.DefinitDocumentTitre(d3);
    b.MajDocs(b.CreePersonne("Martin", "Jean", "", 'H', ""), d1, 'A');
    f.Reouvre();
    EXPECT_EQ(b.TitreDoc(d1), "\xC9glise de Vire");
    EXPECT_EQ(b.FichierDoc(d1), "eglise.jpg");
    EXPECT_EQ(b.TypeDoc(d1), "JPG");
    EXPECT_EQ(b.TypeDoc(d2), "");
    EXPECT_EQ(b.Tete().documentTitre, d3);
    EXPECT_EQ(b.DocNo(1, 1), d1);
    b.SupprimeDoc(d3);
    EXPECT_EQ(b.Tete().documentTitre, 0u);
    EXPECT_EQ(b.TitreDoc(d3), "");
    f.Reouvre();
    EXPECT_EQ(b.Tete().nbDocuments, 2u);
    EXPECT_EQ(b.TriDoc(2), d1);
}

TEST(Documents, HeadsOfEveryLengthAndDamage) {
    Fixture f;
    Base& b = f.b;
    // Heads around one chunk of 104 bytes, and a note position holding "#".
    for (std::size_t titre = 90; titre <= 110; ++titre) {
        std::uint32_t d = b.CreeDoc(std::string(titre, 'T'), "f.jpg");
        b.EcritDoc(d, Pack4(0x23232323) + std::string(titre, 'T') + '\0' + "f.jpg");
        EXPECT_EQ(b.TitreDoc(d), std::string(titre, 'T'));
        EXPECT_EQ(b.FichierDoc(d), "f.jpg");
        EXPECT_EQ(b.NotePosDoc(d), 0x23232323u);
    }
    std::uint32_t d = b.CreeDoc("x", "y");
    std::string sansFin(33000, 'z');
    std::uint32_t pos = b.Ajouter(Pack4(0) + sansFin);
    b.EcritPosDoc(d, pos);
    EXPECT_EQ(b.TitreDoc(d), "");
    ASSERT_EQ(f.signales.size(), 1u);
    EXPECT_EQ(f.signales[0],
              "Incident sur le document " + std::to_string(d) + " - R\xE9organisez votre base");
}
