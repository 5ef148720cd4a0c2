#include "text/calendrier.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

class Dates : public ::testing::Test {
  protected:
    void SetUp() override {
        DefinitMessages(MessagesDatesFrancais());
        DefinitFormatDate("dd/mm/yyyy");
    }
    void TearDown() override { DefinitFormatDate("dd/mm/yyyy"); }
};

} // namespace

TEST_F(Dates, SaisieOfThePartsExamples) {
    EXPECT_EQ(Conv_DateSaisie("1er janvier 1880"), "1/1/1880");
    EXPECT_EQ(Conv_DateSaisie("1 janvier 1880"), "1/1/1880");
    EXPECT_EQ(Conv_DateSaisie("janvier"), "JAN");
    EXPECT_EQ(Conv_DateSaisie("12"), "12");
    EXPECT_EQ(Conv_DateSaisie("29 f\xE9vrier"), "29/2");
    EXPECT_EQ(Conv_DateSaisie("30 f\xE9vrier"), "30 FEB");
    EXPECT_EQ(Conv_DateSaisie("31 f\xE9vrier 1880"), "31 FEB 1880");
    EXPECT_EQ(Conv_DateSaisie("05 janvier"), "05/1");
    EXPECT_EQ(Conv_DateSaisie("P\xE2ques"), "P\xE2ques");
    EXPECT_EQ(Conv_DateSaisie("  P\xE2ques 1880 "), "P\xE2ques 1880");
    EXPECT_EQ(Conv_DateSaisie("vers P\xE2ques"), "ABT PAQUES");
    // A month name inside a word is hit as well.
    EXPECT_EQ(Conv_DateSaisie("Ste Marsolle"), "STE MAROLLE");
    EXPECT_EQ(Conv_DateSaisie("entre 1880 et 1885"), "BET 1880 AND 1885");
    EXPECT_EQ(Conv_DateSaisie("avant 12 janvier"), "BEF 12 JAN");
    EXPECT_EQ(Conv_DateSaisie("estim\xE9" "e 3 janvier"), "EST 3 JAN");
    EXPECT_EQ(Conv_DateSaisie("12 janvier 1880"), "12/1/1880");
    // Each word once: the second month stays.
    EXPECT_EQ(Conv_DateSaisie("janvier janvier"), "JAN JANVIER");
}

TEST_F(Dates, PremierEnUn) {
    EXPECT_EQ(Conv_PremierEnUn("1er mai"), "1 mai");
    EXPECT_EQ(Conv_PremierEnUn("1ER mai"), "1ER mai"); // exact comparison
    EXPECT_EQ(Conv_PremierEnUn("le 1er 1er mai"), "le 1 1 mai");
    EXPECT_EQ(Conv_PremierEnUn("1er"), "1er"); // no blank behind
}

TEST_F(Dates, Longue) {
    EXPECT_EQ(Conv_DateLongue("12/1"), "12 janvier");
    EXPECT_EQ(Conv_DateLongue("1/1"), "1er janvier");
    EXPECT_EQ(Conv_DateLongue("05/1"), "5 janvier");
    EXPECT_EQ(Conv_DateLongue("01/5"), "1er mai");
    EXPECT_EQ(Conv_DateLongue("12/0"), "12/0");
    EXPECT_EQ(Conv_DateLongue("12/x"), "12/x");
    EXPECT_EQ(Conv_DateLongue("JAN"), "janvier");
    EXPECT_EQ(Conv_DateLongue("ABT"), "vers");
    EXPECT_EQ(Conv_DateLongue("BET 1880 AND"), "entre 1880 et");
    EXPECT_EQ(Conv_DateLongue("EST 3 JAN"), "estim\xE9" "e 3 janvier");
    EXPECT_EQ(Conv_DateLongue("1 MAI"), "1er mai");
    EXPECT_EQ(Conv_DateLongue(""), "");
}

TEST_F(Dates, EchangeJourMois) {
    EXPECT_EQ(Conv_EchangeJourMois("12/1", "dd/mm/yyyy"), "12/1");
    EXPECT_EQ(Conv_EchangeJourMois("12/1", "yyyy/dd/mm"), "12/1");
    EXPECT_EQ(Conv_EchangeJourMois("12/1", "mm/dd/yyyy"), "1/12");
    EXPECT_EQ(Conv_EchangeJourMois("12/1", "yyyy/mm/dd"), "1/12");
    EXPECT_EQ(Conv_EchangeJourMois("12/1", "mm/yyyy/dd"), "");
    EXPECT_EQ(Conv_EchangeJourMois("JAN", "mm/dd/yyyy"), "JAN");
}

TEST_F(Dates, Affichage) {
    EXPECT_EQ(Conv_DateAffichage("12 JAN 1880"), "12 janvier 1880");
    EXPECT_EQ(Conv_DateAffichage("3 MAR 123 BC"), "3 mars -123");
    EXPECT_EQ(Conv_DateAffichage("123 BC"), "-123");
    EXPECT_EQ(Conv_DateAffichage("12 JANUARY 1880"), "12 janvier 1880");
    EXPECT_EQ(Conv_DateAffichage("12 Janvier 1880"), "12 janvier 1880");
    EXPECT_EQ(Conv_DateAffichage("01 MAY 1880"), "1er mai 1880");
    EXPECT_EQ(Conv_DateAffichage("02 MAY 1880"), "2 mai 1880");
    EXPECT_EQ(Conv_DateAffichage("BET 1880 AND 1885"), "entre 1880 et 1885");
    EXPECT_EQ(Conv_DateAffichage("ABT 1880"), "vers 1880");
    // The French "est" stops the loop: nothing behind is replaced.
    EXPECT_EQ(Conv_DateAffichage("est BET 1880 AND 1885"), "est BET 1880 AND 1885");
    // Months come first in the priority, so they are already written.
    EXPECT_EQ(Conv_DateAffichage("ABT est JAN 1880"), "vers est janvier 1880");
    EXPECT_EQ(Conv_DateAffichage("FROM 1880 TO 1885"), "FROM 1880 TO 1885");
}

TEST_F(Dates, Gedcom) {
    EXPECT_EQ(Conv_DateGedcom("12 janvier 1880"), "12 JAN 1880");
    EXPECT_EQ(Conv_DateGedcom("1er janvier 1880"), "1 JAN 1880");
    EXPECT_EQ(Conv_DateGedcom("12 janvier -123"), "12 JAN 123 BC");
    EXPECT_EQ(Conv_DateGedcom("about 1880"), "ABT 1880");
    EXPECT_EQ(Conv_DateGedcom("entre 1880 et 1885"), "BET 1880 AND 1885");
    EXPECT_EQ(Conv_DateGedcom("1st august 1914"), "1 AUG 1914");
    // A word with nothing behind it is not found.
    EXPECT_EQ(Conv_DateGedcom("janvier"), "JANVIER");
    EXPECT_EQ(Conv_DateGedcom("12 Januar 1880"), "12 JANUAR 1880");
}

TEST_F(Dates, RoundTripTable) {
    struct Ligne {
        const char *jm, *annee, *longue, *gedcom;
    };
    const Ligne lignes[] = {
        {"12/1", "1880", "12 janvier 1880", "12 JAN 1880"},
        {"1/1", "1880", "1er janvier 1880", "1 JAN 1880"},
        {"JAN", "1880", "janvier 1880", "JAN 1880"},
        {"", "1880", "1880", "1880"},
        {"ABT", "1880", "vers 1880", "ABT 1880"},
        {"BET 1880 AND", "1885", "entre 1880 et 1885", "BET 1880 AND 1885"},
        {"EST 3 JAN", "1880", "estim\xE9" "e 3 janvier 1880", "EST 3 JAN 1880"},
        {"12/1", "-123", "12 janvier -123", "12 JAN 123 BC"},
    };
    for (const Ligne& l : lignes) {
        SCOPED_TRACE(l.gedcom);
        EXPECT_EQ(Trim(Conv_DateLongue(l.jm) + " " + l.annee), l.longue);
        EXPECT_EQ(Conv_DateVersGedcom(l.jm, l.annee), l.gedcom);
        EXPECT_EQ(Conv_DateEtrangere(l.gedcom), (DateTenue{l.jm, l.annee}));
    }
    // "B.C." as GEDCOM writes it; a year before Christ of four digits does
    // not fit a year field, and stays whole in the date text instead of
    // being cut.
    EXPECT_EQ(Conv_DateEtrangere("3 MAR 123 B.C."), (DateTenue{"3/3", "-123"}));
    EXPECT_EQ(Conv_DateEtrangere("1200 B.C."), (DateTenue{"-1200", ""}));
    EXPECT_EQ(Conv_DateEtrangere("12 MAR 1250 BC"), (DateTenue{"12 mars -1250", ""}));
    EXPECT_EQ(Conv_DateVersGedcom("12 mars -1250", ""), "12 MAR 1250 BC");
    EXPECT_EQ(Conv_DateVersGedcom("-1200", ""), "1200 BC");
}

TEST_F(Dates, ValideEtSerie) {
    EXPECT_TRUE(Conv_DateValide("12/1/1880"));
    EXPECT_FALSE(Conv_DateValide("12/1"));
    EXPECT_FALSE(Conv_DateValide("31/2/1880"));
    EXPECT_FALSE(Conv_DateValide("31 FEB 1880"));
    EXPECT_TRUE(Conv_DateValide("12 JAN 1880"));
    EXPECT_TRUE(Conv_DateValide("29/2/2000"));
    EXPECT_FALSE(Conv_DateValide("29/2/1900"));
    EXPECT_TRUE(Conv_DateValide("29/2/1600"));
    EXPECT_TRUE(Conv_DateValide("1/1/100"));
    EXPECT_FALSE(Conv_DateValide("31/12/99"));
    EXPECT_TRUE(Conv_DateValide("31/12/9999"));
    EXPECT_FALSE(Conv_DateValide("1880"));
    EXPECT_EQ(Conv_DateSerie("30/12/1899"), 0);
    EXPECT_EQ(Conv_DateSerie("31/12/1899"), 1);
    EXPECT_EQ(Conv_DateSerie("1/1/1900"), 2);
    EXPECT_EQ(Conv_DateSerie("29/12/1899"), -1);
    EXPECT_EQ(Conv_DateSerie("1/1/2000"), 36526);
    EXPECT_EQ(Conv_DateSerie("1/1/100"), -657434);
    EXPECT_EQ(Conv_DateSerie("31/12/9999"), 2958465);
    EXPECT_EQ(Conv_DateSerie("12/1/1880 ext"), Conv_DateSerie("12/1/1880"));
    // Other orders take the day-first text and reorder it.
    EXPECT_TRUE(Conv_DateValide("12/1/1880", "yyyy/mm/dd"));
    EXPECT_TRUE(Conv_DateValide("12/1/1880", "yyyy/dd/mm"));
    EXPECT_EQ(Conv_DateSerie("12/1/1880", "yyyy/mm/dd"), Conv_DateSerie("12/1/1880"));
    for (long n = -657434; n <= 2958465; n += 997)
        EXPECT_EQ(JourSerie(DepuisJourSerie(n)), n);
}

TEST_F(Dates, MonthFirstSystemValidatesNothing) {
    DefinitFormatDate("mm/dd/yyyy");
    for (const char* d : {"12/1/1880", "1/12/1880", "1/1/2000", "12 JAN 1880", "13/1/1880"})
        EXPECT_FALSE(Conv_DateValide(d)) << d;
    // Reading still works, and the held form stays day first.
    EXPECT_EQ(Conv_DateSaisie("12 janvier 1880"), "12/1/1880");
    EXPECT_EQ(Conv_DateSaisie("29 f\xE9vrier"), "29/2");
    EXPECT_EQ(Conv_DateSaisie("30 f\xE9vrier"), "30 FEB");
    EXPECT_EQ(Conv_JourSemaine("12 janvier 1880"), "lundi ");
    DefinitFormatDate("mm/yyyy/dd");
    EXPECT_FALSE(Conv_DateValide("12/1/1880"));
    EXPECT_EQ(Conv_DateSaisie("12 janvier 1880"), "12 JAN 1880");
}

TEST_F(Dates, JourSemaine) {
    EXPECT_EQ(Conv_JourSemaine("12 janvier 1880"), "lundi ");
    EXPECT_EQ(Conv_JourSemaine("1er janvier 2000"), "samedi ");
    EXPECT_EQ(Conv_JourSemaine("14 juillet 1789"), "mardi ");
    EXPECT_EQ(Conv_JourSemaine("janvier 1880"), "");
    EXPECT_EQ(Conv_JourSemaine("1880"), "");
    EXPECT_EQ(Conv_JourSemaine("31 f\xE9vrier 1880"), "");
    EXPECT_EQ(Conv_JourSemaine("12 janvier 1880", "yyyy/mm/dd"), "lundi ");
}

TEST_F(Dates, AnneesVie) {
    EXPECT_EQ(Conv_AnneesVie("", "1880", "", ""), "o1880");
    EXPECT_EQ(Conv_AnneesVie("", "", "ABT", "1950"), "+~1950");
    EXPECT_EQ(Conv_AnneesVie("BEF", "1880", "AFT 3 JAN", "1950"), "<1880->1950");
    EXPECT_EQ(Conv_AnneesVie("BET 1878 AND", "1880", "CAL", "1950"), "<1880-~1950");
    EXPECT_EQ(Conv_AnneesVie("12/1", "1880", "EST", "1950"), "1880-~1950");
    EXPECT_EQ(Conv_AnneesVie("ABT", "", "", ""), "");
    EXPECT_EQ(Conv_AnneesVieLongues("12/1", "1880", "", ""), " (o12 janvier 1880)");
    EXPECT_EQ(Conv_AnneesVieLongues("", "", "ABT", "1950"), " (+vers 1950)");
    EXPECT_EQ(Conv_AnneesVieLongues("1/1", "1880", "", "1950"), " (1er janvier 1880 - 1950)");
    EXPECT_EQ(Conv_AnneesVieLongues("", "", "", ""), "");
    EXPECT_EQ(Conv_DateResume("", "1880"), "1880");
    EXPECT_EQ(Conv_DateResume("12/1", "1880"), "12/1/1880");
    EXPECT_EQ(Conv_DateResume("ABT", "1880"), "vers 1880");
    EXPECT_EQ(Conv_DateResume("31/2", "1880"), "31 f\xE9vrier 1880");
}

TEST_F(Dates, FormatDuSysteme) {
    EXPECT_EQ(EssaiDepuisMotif("%d/%m/%Y"), "010203");
    EXPECT_EQ(EssaiDepuisMotif("%d.%m.%Y"), "010203");
    EXPECT_EQ(EssaiDepuisMotif("%m/%d/%y"), "020103");
    EXPECT_EQ(EssaiDepuisMotif("%D"), "020103");
    EXPECT_EQ(EssaiDepuisMotif("%Y-%m-%d"), "030201");
    EXPECT_EQ(EssaiDepuisMotif("%F"), "030201");
    // A year-day-month system prints 02 03 01. The Part's table names that
    // print "mm/yyyy/dd" (and "030102", a month-year-day print,
    // "yyyy/dd/mm"): the table is kept as it stands.
    EXPECT_EQ(EssaiDepuisMotif("%Y/%d/%m"), "020301");
    EXPECT_EQ(EssaiDepuisMotif("%m/%Y/%d"), "030102");
    EXPECT_EQ(EssaiDepuisMotif("%x"), "");
    EXPECT_EQ(FormatDepuisEssai("010203"), "dd/mm/yyyy");
    EXPECT_EQ(FormatDepuisEssai("030201"), "yyyy/mm/dd");
    EXPECT_EQ(FormatDepuisEssai("030102"), "yyyy/dd/mm");
    EXPECT_EQ(FormatDepuisEssai("020103"), "mm/dd/yyyy");
    EXPECT_EQ(FormatDepuisEssai("020301"), "mm/yyyy/dd");
    EXPECT_EQ(FormatDepuisEssai("x"), "");
    // Whatever the machine, the result is one of the five orders.
    Conv_FormatDate();
    const std::string f = FormatDate();
    EXPECT_TRUE(f == "dd/mm/yyyy" || f == "mm/dd/yyyy" || f == "yyyy/mm/dd" ||
                f == "yyyy/dd/mm" || f == "mm/yyyy/dd");
}
