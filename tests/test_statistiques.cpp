// The demographic figures and the anniversary calendar over small bases
// built for each case.
#include "search/anniversaires.h"
#include "search/statistiques.h"
#include "support/base_memoire.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace sylvane;

namespace {

struct Figures : ::testing::Test, test::BaseMemoire {
    std::uint32_t P(char sexe, const std::string& an, const std::string& date = {},
                    const std::string& anDeces = {}, const std::string& dateDeces = {}) {
        return b.CreePersonne("NOM", "Prenom", "", sexe, an, date, anDeces, dateDeces);
    }
    void Enfant(std::uint32_t pere, std::uint32_t mere, std::uint32_t e) {
        if (pere) { b.EcritPere(e, pere); b.MajEnfants(pere, e, 'A'); }
        if (mere) { b.EcritMere(e, mere); b.MajEnfants(mere, e, 'A'); }
    }
    std::uint32_t Mariage(std::uint32_t h, std::uint32_t f, const std::string& an,
                          const std::string& date) {
        const std::uint32_t m = b.CreeMariage(h, f, an);
        b.EcritNoteMariage(m, date + " @Dijon");
        return m;
    }
    Statistiques Tout(const std::vector<std::uint32_t>& liste = {}) {
        return CalculeStatistiques(b, liste, Interaction{}, 5);
    }
};

TEST(DatesDuCalendrier, JourEtMoisDesFormesTenues) {
    EXPECT_EQ(JourEtMois("12/3"), (std::pair{12, 3}));
    EXPECT_EQ(JourEtMois("12/3/1880"), (std::pair{12, 3}));
    EXPECT_EQ(JourEtMois("29/2"), (std::pair{29, 2})); // a leap day has its slot
    EXPECT_EQ(JourEtMois("5 JAN"), (std::pair{5, 1}));
    EXPECT_FALSE(JourEtMois("30/2"));
    EXPECT_FALSE(JourEtMois(""));        // a year alone
    EXPECT_FALSE(JourEtMois("JAN"));     // a month without a day
    EXPECT_FALSE(JourEtMois("ABT"));
    EXPECT_FALSE(JourEtMois("BET 1880 AND"));
    EXPECT_FALSE(JourEtMois("12/13"));
    EXPECT_FALSE(JourEtMois("x/3"));
    EXPECT_EQ(DecennieNaissance("1880"), 188);
    EXPECT_EQ(DecennieNaissance("0000"), 0);
    EXPECT_EQ(DecennieNaissance("Z   "), 0);
    EXPECT_EQ(Calendrier::JourDeLAn(1, 1), 0);
    EXPECT_EQ(Calendrier::JourDeLAn(29, 2), 59);
    EXPECT_EQ(Calendrier::JourDeLAn(31, 12), 365);
    EXPECT_EQ(Calendrier::JourDeLAn(31, 4), -1);
    for (int j = 0; j < 366; ++j) {
        const auto [d, m] = Calendrier::JourMois(j);
        EXPECT_EQ(Calendrier::JourDeLAn(d, m), j);
    }
}

TEST_F(Figures, CompteursHistogrammesEtDecennies) {
    const auto pere = P('H', "1850", "3/4", "1910", "1/1");    // 60 years
    const auto mere = P('F', "1855", "", "1900", "9/9");       // 45 years
    const auto autre = P('I', "  ");                           // no decade
    const auto fils = P('H', "1880", "12/3/1880");
    const auto fille = P('F', "1885", "29 FEB");
    Enfant(pere, mere, fils);
    Enfant(pere, mere, fille);
    const auto orphelin = P('H', "1950");
    Enfant(pere, 0, orphelin);
    Mariage(pere, mere, "1878", "5/6/1878");
    Mariage(fils, 0, "1905", "5/7");

    const Statistiques s = Tout();
    EXPECT_EQ(s.total, 6u);
    EXPECT_EQ(s.lues, 6u);
    EXPECT_FALSE(s.arretee);
    EXPECT_EQ(s.deuxParents, 2u);
    EXPECT_EQ(s.pereSeul, 1u);
    EXPECT_EQ(s.mereSeule, 0u);
    EXPECT_EQ(s.sansParents, 3u);
    EXPECT_EQ(s.avecDeces, 2u);
    EXPECT_EQ(s.hommes, 3u);
    EXPECT_EQ(s.femmes, 2u);
    EXPECT_EQ(s.indetermines, 1u);
    (void)autre;
    // Histograms leave the undetermined person out.
    EXPECT_EQ(s.mariagesHommes[1], 2u);
    EXPECT_EQ(s.mariagesHommes[0], 1u);
    EXPECT_EQ(s.mariagesFemmes[1], 1u);
    EXPECT_EQ(s.mariagesFemmes[0], 1u);
    EXPECT_EQ(s.enfantsHommes[3], 1u);
    EXPECT_EQ(s.enfantsFemmes[2], 1u);
    EXPECT_EQ(std::accumulate(s.enfantsHommes.begin(), s.enfantsHommes.end(), 0ull), 3u);

    const auto& d185 = s.decennies[185];
    EXPECT_EQ(d185.total, 2u);
    EXPECT_EQ(d185.hommes, 1u);
    EXPECT_EQ(d185.femmes, 1u);
    EXPECT_EQ(d185.vie.nombre, 2u);
    EXPECT_EQ(d185.vie.somme, 105);
    EXPECT_EQ(TexteMoyenne(d185.vie), "52.5");
    EXPECT_EQ(d185.vieHommes.somme, 60);
    EXPECT_EQ(d185.vieFemmes.somme, 45);
    // The father born in the 1850s had his children at 30, 35 and 100.
    EXPECT_EQ(d185.agePere.nombre, 3u);
    EXPECT_EQ(d185.agePere.somme, 30 + 35 + 100);
    EXPECT_EQ(d185.ageMere.nombre, 2u);
    EXPECT_EQ(d185.ageMere.somme, 25 + 30);
    EXPECT_EQ(s.decennies[188].total, 2u);
    EXPECT_EQ(s.DecenniesMontrees(), (std::pair{185, 195}));
    EXPECT_EQ(TexteMoyenne({}), "  ");

    EXPECT_EQ(s.moisNaissance[3], 1u); // April
    EXPECT_EQ(s.moisNaissance[2], 1u);
    EXPECT_EQ(s.moisNaissance[1], 1u);
    EXPECT_EQ(std::accumulate(s.moisNaissance.begin(), s.moisNaissance.end(), 0ull), 3u);
    EXPECT_EQ(s.moisDeces[0], 1u);
    EXPECT_EQ(s.moisDeces[8], 1u);
    EXPECT_EQ(s.moisMariage[5], 1u);
    EXPECT_EQ(s.moisMariage[6], 1u);

    // A list handed by a search: only its persons.
    const Statistiques l = Tout({fils, fille});
    EXPECT_EQ(l.Personnes(), 2u);
    EXPECT_EQ(l.deuxParents, 2u);
    // A person the list names twice counts twice, with its lists and marriages.
    const Statistiques d = Tout({pere, fille, pere});
    EXPECT_EQ(d.hommes, 2u);
    EXPECT_EQ(d.enfantsHommes[3], 2u);
    EXPECT_EQ(d.mariagesHommes[1], 2u);
    EXPECT_EQ(d.moisMariage[5], 2u);
    EXPECT_EQ(d.decennies[185].vie.somme, 120);
    EXPECT_EQ(d.decennies[185].agePere.somme, 35); // the daughter's father, read once
}

TEST_F(Figures, DeuxCentCinquanteEnfantsDansLeDernierSeau) {
    const auto pere = P('H', "1800");
    for (int i = 0; i < 250; ++i) Enfant(pere, 0, P('F', "1830"));
    const Statistiques s = Tout();
    EXPECT_EQ(s.enfantsHommes[kDernierSeau], 1u);
    EXPECT_EQ(s.enfantsFemmes[0], 250u);
    EXPECT_EQ(s.decennies[180].agePere.nombre, 250u);
}

TEST_F(Figures, UnArretDonneUnEchantillonDeMemeForme) {
    for (int i = 0; i < 1000; ++i) P("HF"[i % 2], std::to_string(1700 + i % 200), "1/" + std::to_string(1 + i % 12));
    int appels = 0;
    Interaction arret;
    // The gathering asks once per 4096 persons, then each person is asked for.
    arret.arret = [&] { return ++appels > 101; };
    const Statistiques s = CalculeStatistiques(b, {}, arret, 9);
    EXPECT_TRUE(s.arretee);
    EXPECT_EQ(s.lues, 100u);
    EXPECT_EQ(s.Personnes(), 100u);
    // Interleaved slices: a stop after one slice has read across the whole base.
    EXPECT_GT(s.DecenniesMontrees().second - s.DecenniesMontrees().first, 15);
    // Another seed, another order, the same whole figures.
    EXPECT_EQ(Tout(), CalculeStatistiques(b, {}, Interaction{}, 77));
}

TEST_F(Figures, CalendrierDesNaissancesDecesMariagesEtRubriques) {
    const auto a = P('H', "1880", "29/2", "1950", "12/3");
    const auto c = P('F', "1882", "12/3");
    const auto sansJour = P('F', "1890");
    const auto m = Mariage(a, c, "1905", "12/3/1905");
    // A dated rubric of the sheet (the baptism slot).
    const std::string note = b.LigneMotsCles(sansJour) + "\r\nCHR 14/7/1890 ";
    b.EcritNote(sansJour, note);
    Calendrier cal;
    cal.Construit(b, Interaction{});
    EXPECT_TRUE(cal.Complet());
    EXPECT_EQ(cal.Jour(59), (std::vector<RefAnniv>{{"I$", a}}));
    const auto douzeMars = cal.Jour(Calendrier::JourDeLAn(12, 3));
    ASSERT_EQ(douzeMars.size(), 3u);
    const ListesJour l = ListesDuJour(b, cal, Calendrier::JourDeLAn(12, 3));
    ASSERT_EQ(l.naissances.size(), 1u);
    EXPECT_EQ(l.naissances[0].personne, c);
    EXPECT_EQ(l.naissances[0].annee, "1882");
    ASSERT_EQ(l.deces.size(), 1u);
    EXPECT_EQ(l.deces[0].annee, "1950");
    ASSERT_EQ(l.mariages.size(), 1u);
    EXPECT_EQ(l.mariages[0].ref.numero, m);
    EXPECT_EQ(l.mariages[0].lieu, "Dijon");
    EXPECT_NE(l.mariages[0].nom.find(" / "), std::string::npos);
    const ListesJour r = ListesDuJour(b, cal, Calendrier::JourDeLAn(14, 7));
    ASSERT_EQ(r.mots.size(), 1u);
    EXPECT_EQ(r.mots[0].personne, sansJour);
    EXPECT_EQ(r.mots[0].annee, "1890");
    EXPECT_FALSE(r.mots[0].rubrique.empty());
    std::size_t total = 0;
    for (int j = 0; j < 366; ++j) total += cal.Jour(j).size();
    EXPECT_EQ(total, 5u); // a year alone is in no day

    Interaction arret;
    arret.arret = [] { return true; };
    cal.Construit(b, arret);
    EXPECT_FALSE(cal.Complet());
}

} // namespace
