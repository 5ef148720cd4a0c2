#include "text/calendrier.h"
#include "text/republicain.h"

#include <gtest/gtest.h>

#include <iostream>

using namespace sylvane;

TEST(Republicain, ExamplesOfThePart) {
    // 22 September 1792: 1 Vendémiaire I.
    EXPECT_EQ(Calendrier_GregorienVersRepublicain(22, 9, 1), (DateFormulaire{1, 1, 1, 0}));
    // 1 January 1793: 12 Nivôse I.
    EXPECT_EQ(Calendrier_GregorienVersRepublicain(1, 1, 2), (DateFormulaire{12, 4, 1, 0}));
    // 21 September 1792: 5th Sans-culottide, year before the list.
    EXPECT_EQ(Calendrier_GregorienVersRepublicain(21, 9, 1), (DateFormulaire{5, 13, 0, 0}));
    EXPECT_EQ(Calendrier_RepublicainVersGregorien(31, 1, 1).message, 726);
    EXPECT_EQ(Calendrier_GregorienVersRepublicain(32, 1, 1).message, 726);
    EXPECT_EQ(Calendrier_GregorienVersRepublicain(1, 13, 1).message, 728);
    EXPECT_EQ(Calendrier_GregorienVersRepublicain(1, 1, 15).message, 729);
    EXPECT_EQ(Calendrier_RepublicainVersGregorien(1, 14, 1).message, 728);
    // 30 February 1795 is not refused.
    EXPECT_EQ(Calendrier_GregorienVersRepublicain(30, 2, 4).message, 0);
    EXPECT_EQ(Calendrier_RepublicainVersGregorien(1, 1, 1), (DateFormulaire{22, 9, 1, 0}));
    // Year III has six complementary days in the table.
    EXPECT_EQ(Calendrier_GregorienVersRepublicain(22, 9, 4), (DateFormulaire{6, 13, 3, 0}));
    EXPECT_EQ(Calendrier_GregorienVersRepublicain(23, 9, 4), (DateFormulaire{1, 1, 4, 0}));
    EXPECT_EQ(MoisRepublicain(4), std::string("Niv\xF4se"));
    EXPECT_EQ(AnneeRepublicaine(14), "XIV");
}

TEST(Republicain, ArithmeticMethod) {
    const long debut = JourSerie({22, 9, 1792});
    EXPECT_EQ(RepublicainVersSerie({1, 1, 1}), debut);
    EXPECT_EQ(SerieVersRepublicain(debut), (DateRepublicaine{1, 1, 1}));
    EXPECT_FALSE(SerieVersRepublicain(debut - 1));
    EXPECT_FALSE(RepublicainVersSerie({6, 13, 3}));
    EXPECT_TRUE(RepublicainVersSerie({6, 13, 4}));
    EXPECT_TRUE(RepublicainVersSerie({6, 13, 3}, RegleSextile::Historique));
    // 18 Brumaire VIII is 9 November 1799 under the historical rule.
    EXPECT_EQ(RepublicainVersSerie({18, 2, 8}, RegleSextile::Historique),
              JourSerie({9, 11, 1799}));
    // Romme's rule puts that day one day earlier (year IV had its sixth day).
    EXPECT_EQ(RepublicainVersSerie({18, 2, 8}), JourSerie({8, 11, 1799}));
    for (auto regle : {RegleSextile::Romme, RegleSextile::Historique})
        for (long n = debut; n < debut + 400 * 366; n += 13)
            EXPECT_EQ(RepublicainVersSerie(*SerieVersRepublicain(n, regle), regle), n);
    EXPECT_TRUE(EstSextile(4) && EstSextile(400) && !EstSextile(100) && !EstSextile(4000));
}

namespace {

struct Ecarts {
    int gr = 0, rg = 0;
};

// Every day on which the table method and the arithmetic one disagree, in
// both directions, printed one a line.
Ecarts listeEcarts(RegleSextile regle, const char* nom) {
    Ecarts e;
    std::cout << "== Gregorian days 1792-1805 where the table differs from " << nom << "\n";
    for (long n = JourSerie({1, 1, 1792}); n <= JourSerie({31, 12, 1805}); ++n) {
        const DateCivile g = DepuisJourSerie(n);
        const DateFormulaire t = Calendrier_GregorienVersRepublicain(g.jour, g.mois, g.annee - 1791);
        const auto a = SerieVersRepublicain(n, regle);
        const bool tableDit = t.annee >= 1 && t.annee <= 14;
        if (!tableDit && !a) continue;
        if (tableDit && a && a->jour == t.jour && a->mois == t.mois && a->annee == t.annee) continue;
        ++e.gr;
        std::cout << g.jour << "/" << g.mois << "/" << g.annee << ": table " << t.jour << " "
                  << t.mois << " " << t.annee << ", " << nom << " ";
        if (a) std::cout << a->jour << " " << a->mois << " " << a->annee;
        std::cout << "\n";
    }
    std::cout << "== Republican days I-XIV where the table differs from " << nom << "\n";
    for (int y = 1; y <= 14; ++y)
        for (int m = 1; m <= 13; ++m)
            for (int d = 1; d <= (m == 13 ? 6 : 30); ++d) {
                const auto s = RepublicainVersSerie({d, m, y}, regle);
                if (!s) continue; // no such day under this rule
                const DateCivile g = DepuisJourSerie(*s);
                const DateFormulaire t = Calendrier_RepublicainVersGregorien(d, m, y);
                if (t.jour == g.jour && t.mois == g.mois && t.annee + 1791 == g.annee) continue;
                ++e.rg;
                std::cout << d << " " << m << " " << y << ": table " << t.jour << "/" << t.mois
                          << "/" << t.annee + 1791 << ", " << nom << " " << g.jour << "/"
                          << g.mois << "/" << g.annee << "\n";
            }
    std::cout << "== " << e.gr << " Gregorian days and " << e.rg << " Republican days\n";
    return e;
}

} // namespace

TEST(Republicain, DaysWhereTheTwoMethodsDiffer) {
    const Ecarts romme = listeEcarts(RegleSextile::Romme, "Romme");
    const Ecarts historique = listeEcarts(RegleSextile::Historique, "historical");
    // Romme's rule makes years IV, VIII and XII sextile where the table
    // follows the years III, VII and XI of history: a whole year shifts by
    // one day each time.
    EXPECT_EQ(romme.gr, 1067);
    EXPECT_EQ(romme.rg, 1263);
    // Against the historical years, what is left are the table's own
    // oddities: March 1800 (the March offset still counts 1800 as leap,
    // 31 days); on the way back, Vendémiaire and Brumaire IV (60 days, the
    // sixth day of year III forgotten), February 1800 taken as 29 days (21
    // days of year VIII), and Pluviôse to the end of year XIV, in 1806
    // (245 days, the exceptions stop at year XIII).
    EXPECT_EQ(historique.gr, 31);
    EXPECT_EQ(historique.rg, 326);
}
