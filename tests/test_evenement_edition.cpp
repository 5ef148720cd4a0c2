// The writes of the event editor: dates typed in either form, events made
// with their roles (children, widows, sons and daughters), changes that
// move an event in the date table, roles on both sides, and a sheet
// brought in line with its event.
#include "store/evenement_edition.h"
#include "store/pack.h"
#include "support/base_memoire.h"
#include "support/francais.h"
#include "text/calendrier.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

using Paires = std::vector<std::pair<std::uint32_t, std::string>>;

// The event's persons with the role each holds on its own side.
Paires Roles(Base& b, std::uint32_t e) {
    Paires v;
    for (std::uint32_t p : PersonnesEvenement(b, e)) v.emplace_back(p, RoleDansEvenement(b, p, e));
    return v;
}

long Jour(int j, int m, int a) { return JourSerie({j, m, a}); }

} // namespace

TEST(EditionEvenement, DatesAreReadInTheLocalFormThenTheTagForm) {
    EXPECT_EQ(LitDateEvenement(""), 0L);
    EXPECT_EQ(LitDateEvenement("12/3/1850"), Jour(12, 3, 1850));
    EXPECT_EQ(LitDateEvenement("12 mars 1850"), Jour(12, 3, 1850));
    EXPECT_EQ(LitDateEvenement("12 MAR 1850"), Jour(12, 3, 1850));
    for (const char* faux : {"31/2/1850", "vers 1850", "1850", "12/3", "garbage###"})
        EXPECT_FALSE(LitDateEvenement(faux)) << faux;
    EXPECT_EQ(TexteDateEvenement(Jour(1, 8, 1789)), "1er ao\xFBt 1789");
    EXPECT_EQ(DateCourteEvenement(Jour(1, 8, 1789)), "01/08/1789");
    EXPECT_EQ(JourSemaineEvenement(Jour(14, 7, 1789)), "mardi");
    EXPECT_EQ(TexteDateEvenement(0), "");
    // The long form reads back to the same day.
    EXPECT_EQ(LitDateEvenement(TexteDateEvenement(Jour(29, 2, 1600))), Jour(29, 2, 1600));
    EXPECT_EQ(LitDateEvenement(TexteDateEvenement(Jour(1, 8, 1789))), Jour(1, 8, 1789));
}

TEST(EditionEvenement, ABirthFromTheSheetGivesTheChildAndItsParents) {
    test::BaseMemoire f;
    Base& b = f.b;
    const std::uint32_t pere = b.CreePersonne("Martin", "Jean", "", 'H', "1820");
    const std::uint32_t mere = b.CreePersonne("Durand", "Marie", "", 'F', "1822");
    const std::uint32_t n = b.CreePersonne("Martin", "Paul", "", 'H', "1850");
    b.EcritPere(n, pere);
    b.EcritMere(n, mere);
    const std::uint32_t e = Creer_Evenement(b, n, "BIRT", Jour(12, 3, 1850), "Caen");
    EXPECT_EQ(Roles(b, e), (Paires{{mere, "MOTH"}, {pere, "FATH"}, {n, "CHIL"}}));
    EXPECT_EQ(b.TitreEvt(e), "Paul Martin");
    EXPECT_EQ(EvenementPrincipal(b, n, "BIRT"), e);
    EXPECT_EQ(EvenementPrincipal(b, pere, "BIRT"), 0u); // the father is no main role
    f.Reouvre();
    EXPECT_EQ(Roles(b, e), (Paires{{mere, "MOTH"}, {pere, "FATH"}, {n, "CHIL"}}));
    EXPECT_EQ(b.TriEvt(1), e);
}

TEST(EditionEvenement, ADeathGivesSurvivingSpousesAndChildrenTheirRoles) {
    test::BaseMemoire f;
    Base& b = f.b;
    // He died in 1860; his first wife died before him, the second outlived him.
    const std::uint32_t n = b.CreePersonne("Martin", "Jean", "", 'H', "1800", "", "1860");
    const std::uint32_t f1 = b.CreePersonne("A", "Anne", "", 'F', "1802", "", "1840");
    const std::uint32_t f2 = b.CreePersonne("B", "Berthe", "", 'F', "1810");
    b.CreeMariage(n, f1, "1825");
    b.CreeMariage(n, f2, "1845");
    const std::uint32_t fils = b.CreePersonne("Martin", "Louis", "", 'H', "1830");
    const std::uint32_t fille = b.CreePersonne("Martin", "Rose", "", 'F', "1848");
    b.MajEnfants(n, fils, 'A');
    b.MajEnfants(n, fille, 'A');
    const std::uint32_t e = Creer_Evenement(b, n, "DEAT", Jour(3, 4, 1860), "");
    Paires r = Roles(b, e);
    std::sort(r.begin(), r.end());
    EXPECT_EQ(r, (Paires{{n, "DEAD"}, {f2, "WIDW"}, {fils, "SON"}, {fille, "DAUG"}}));
    // A cremation has no sons nor daughters in its row: only the widow.
    const std::uint32_t c = Creer_Evenement(b, n, "CREM", 0, "");
    r = Roles(b, c);
    std::sort(r.begin(), r.end());
    EXPECT_EQ(r, (Paires{{n, "DEAD"}, {f2, "WIDW"}}));
}

TEST(EditionEvenement, RolesFollowTheSexTheyAskFor) {
    test::BaseMemoire f;
    Base& b = f.b;
    const std::uint32_t inconnu = b.CreePersonne("X", "Camille", "", 'I', "1850");
    EXPECT_TRUE(SexeConvient(SexeDuRole(b.Temoins(), "MARR", "WITN"), b.LitSexe(inconnu)));
    EXPECT_FALSE(SexeConvient(SexeDuRole(b.Temoins(), "MARR", "HUSB"), b.LitSexe(inconnu)));
    EXPECT_TRUE(SexeConvient('F', "F"));
    EXPECT_FALSE(SexeConvient('F', "H"));
    // A marriage made for a person of no sex gives it no main role.
    const std::uint32_t e = Creer_Evenement(b, inconnu, "MARR", 0, "");
    EXPECT_TRUE(Roles(b, e).empty());
    // A woman takes the wife's role, the second main role of the row.
    const std::uint32_t femme = b.CreePersonne("Y", "Rose", "", 'F', "1850");
    const std::uint32_t m = Creer_Evenement(b, femme, "MARR", 0, "");
    EXPECT_EQ(Roles(b, m), (Paires{{femme, "WIFE"}}));
}

TEST(EditionEvenement, AChangedDateMovesTheEventAndSortsItsPersonsLists) {
    test::BaseMemoire f;
    Base& b = f.b;
    const std::uint32_t n = b.CreePersonne("Martin", "Jean", "", 'H', "1800");
    const std::uint32_t e1 = Creer_Evenement(b, n, "BIRT", Jour(1, 1, 1800), "Caen");
    const std::uint32_t e2 = Creer_Evenement(b, n, "DEAT", Jour(1, 1, 1860), "Caen");
    ASSERT_EQ(b.EvtNo(n, 1), e1);
    ChampsEvenement c{Jour(1, 1, 1700), "Caen", b.TitreEvt(e2), "DEAT", ""};
    // Nothing differs: nothing is written.
    ChampsEvenement memes{Jour(1, 1, 1860), "Caen", b.TitreEvt(e2), "DEAT", ""};
    const std::uint32_t fin = b.ZoneFin();
    EXPECT_FALSE(MajEvenement(b, e2, memes));
    EXPECT_EQ(b.ZoneFin(), fin);
    EXPECT_TRUE(MajEvenement(b, e2, c));
    EXPECT_EQ(b.TriEvt(1), e2);
    EXPECT_EQ(b.EvtNo(n, 1), e2);
    c.lieu = "Bayeux";
    c.note = "Acte 12";
    EXPECT_TRUE(MajEvenement(b, e2, c));
    f.Reouvre();
    EXPECT_EQ(b.LieuEvt(e2), "Bayeux");
    EXPECT_EQ(b.NoteEvt(e2), "Acte 12");
    EXPECT_EQ(b.TriEvt(1), e2);
    EXPECT_EQ(b.Tete().nbEvenements, 2u);
}

TEST(EditionEvenement, RolesAreWrittenOnBothSidesAndPersonsSwapped) {
    test::BaseMemoire f;
    Base& b = f.b;
    const std::uint32_t enfant = b.CreePersonne("Martin", "Paul", "", 'H', "1850");
    const std::uint32_t parrain = b.CreePersonne("Leroy", "Marc", "", 'H', "1830");
    const std::uint32_t marraine = b.CreePersonne("Leroy", "Anne", "", 'F', "1832");
    const std::uint32_t e = CreeEvenement(b, {Jour(14, 3, 1850), "Caen", "Paul", "CHR", ""});
    AjouteRole(b, e, enfant, "CHIL");
    AjouteRole(b, e, parrain, "GODF");
    AjouteRole(b, e, marraine, "GODM");
    EXPECT_EQ(Roles(b, e), (Paires{{marraine, "GODM"}, {parrain, "GODF"}, {enfant, "CHIL"}}));
    EXPECT_TRUE(EchangePersonnes(b, e, 1));
    EXPECT_FALSE(EchangePersonnes(b, e, 3));
    EXPECT_EQ(Roles(b, e), (Paires{{parrain, "GODF"}, {marraine, "GODM"}, {enfant, "CHIL"}}));
    ChangeRole(b, e, parrain, "WITN");
    RetireRole(b, e, marraine);
    f.Reouvre();
    EXPECT_EQ(Roles(b, e), (Paires{{parrain, "WITN"}, {enfant, "CHIL"}}));
    EXPECT_EQ(b.EvtNo(marraine, 1), 0u);
    // Deleting the event leaves its number empty, and the table one row less.
    SupprimeEvenement(b, e);
    EXPECT_EQ(b.PosEvt(e), 0u);
    EXPECT_EQ(b.TableEvenements().taille(), 0u);
    EXPECT_EQ(b.EvtNo(parrain, 1), 0u);
    EXPECT_EQ(b.Tete().maxEvenement, e);
}

TEST(EditionEvenement, TheSheetTakesTheDateAndPlaceOfItsEvent) {
    test::BaseMemoire f;
    Base& b = f.b;
    const std::uint32_t pere = b.CreePersonne("Martin", "Jean", "", 'H', "1820");
    const std::uint32_t n = b.CreePersonne("Martin", "Paul", "", 'H', "1851");
    const std::uint32_t aine = b.CreePersonne("Martin", "Louis", "", 'H', "1850");
    b.EcritPere(n, pere);
    b.EcritPere(aine, pere);
    b.MajEnfants(pere, n, 'A');
    b.MajEnfants(pere, aine, 'A');
    b.EcritNote(n, b.LigneMotsCles(n) + "\r\nUne note.");
    const std::uint32_t e = Creer_Evenement(b, n, "BIRT", Jour(12, 3, 1849), "Caen");
    EXPECT_TRUE(DiffereDeFiche(b, e, n));
    EXPECT_FALSE(DiffereDeFiche(b, e, pere)); // not in the main role
    MetFicheAJour(b, e, n);
    EXPECT_FALSE(DiffereDeFiche(b, e, n));
    EXPECT_EQ(b.LitAnNaiss(n), "1849");
    EXPECT_EQ(b.LitDateNaiss(n), "12/3");
    EXPECT_EQ(b.LieuNaiss(n), "Caen");
    EXPECT_NE(b.LitNote(n).find("\r\nUne note."), std::string::npos);
    // Born now before his brother, he comes first among his father's children.
    EXPECT_EQ(b.EnfantNo(pere, 1), n);

    // A marriage's year and place.
    const std::uint32_t femme = b.CreePersonne("Durand", "Marie", "", 'F', "1852");
    const std::uint32_t m = b.CreeMariage(n, femme, "1870");
    const std::uint32_t em = b.CreeEvtMariage(m, Jour(5, 6, 1875), "MARR", "Bayeux");
    EXPECT_TRUE(DiffereDeFiche(b, em, n));
    MetFicheAJour(b, em, n);
    EXPECT_EQ(b.LitAnMariage(m), "1875");
    EXPECT_EQ(b.LieuMariage(m), "Bayeux");
    EXPECT_EQ(b.DateMariage(m), "5/6");
    EXPECT_FALSE(DiffereDeFiche(b, em, femme));
    EXPECT_EQ(EvenementMariage(b, femme, m, "MARR"), em);
}
