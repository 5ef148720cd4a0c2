// The creation form: the tag's presets, the field rules shared with the
// person sheet, the rubric rows of the base, the warning and the refusal
// of the checks, and the person it writes.
#include "support/base_memoire.h"
#include "support/francais.h"
#include "support/services_faux.h"
#include "text/parametres.h"
#include "ui/frm_creation.h"

#include <gtest/gtest.h>

using namespace sylvane;
using sylvane::test::BaseMemoire;
using sylvane::test::BoitesFausses;
using C = ChampCreation;

TEST(FrmCreation, TagPresetsTheNameAndFixesTheSex) {
    EXPECT_EQ(LitEtiquette("MARTIN/Homme").nom, "MARTIN");
    EXPECT_EQ(LitEtiquette("MARTIN/Homme").sexe, 'H');
    EXPECT_EQ(LitEtiquette("Femme").sexe, 'F');
    EXPECT_EQ(LitEtiquette("Femme").nom, "");
    EXPECT_EQ(LitEtiquette("Homme/Dupont").nom, "Dupont");
    EXPECT_EQ(LitEtiquette("Homme/Dupont").sexe, 'H');
    EXPECT_EQ(LitEtiquette("de la Fontaine/").nom, "de la Fontaine");
    EXPECT_EQ(LitEtiquette("de la Fontaine/").sexe, ' ');
    EXPECT_EQ(LitEtiquette("").nom, "");
    EXPECT_EQ(LitEtiquette("///").sexe, ' ');

    BaseMemoire m;
    Parametres p;
    FrmCreation pere(m.b, p, "MARTIN/Homme");
    EXPECT_EQ(pere.Valeur(C::Nom), "MARTIN");
    EXPECT_EQ(pere.Sexe(), 'H');
    EXPECT_TRUE(pere.SexeFixe());
    pere.ChoisitSexe('F');
    EXPECT_EQ(pere.Sexe(), 'H');
    FrmCreation enfant(m.b, p, "MARTIN/");
    EXPECT_FALSE(enfant.SexeFixe());
    EXPECT_EQ(enfant.Sexe(), 'I');
    enfant.ChoisitSexe('F');
    EXPECT_EQ(enfant.Sexe(), 'F');
    enfant.ChoisitSexe('x');
    EXPECT_EQ(enfant.Sexe(), 'I');
}

TEST(FrmCreation, FieldRulesOfTheSheet) {
    BaseMemoire m;
    Parametres p;
    p.conversionNom = "1";
    p.conversionLieu = "2";
    FrmCreation f(m.b, p, "");
    EXPECT_EQ(f.Modifie(C::Nom, "dupont"), "DUPONT");
    EXPECT_EQ(f.Modifie(C::Prenom, "jean"), "jean");
    EXPECT_EQ(f.Modifie(C::LieuNaiss, "saint-malo"), "Saint-Malo");
    EXPECT_EQ(f.Modifie(C::RubL, "paris", 0), "Paris");
    p.conversionNom = "2";
    EXPECT_EQ(f.Modifie(C::Nom, "DUPONT"), "Dupont");
    p.conversionNom = "";
    EXPECT_EQ(f.Modifie(C::Nom, "duPont"), "duPont");

    // A day is converted when the field is left, and named when it makes
    // a real day.
    f.Modifie(C::JNaiss, " 12/5 ");
    EXPECT_EQ(f.Quitte(C::JNaiss), "12/5");
    EXPECT_EQ(f.Libelle(C::JNaiss), "12 mai");
    f.Modifie(C::JDeces, "31/2");
    f.Quitte(C::JDeces);
    EXPECT_EQ(f.Libelle(C::JDeces), "");
    f.Modifie(C::RubJ, "1/1", 1);
    f.Quitte(C::RubJ, 1);
    EXPECT_FALSE(f.Libelle(C::RubJ, 1).empty());
    EXPECT_EQ(f.Libelle(C::Nom), "");
    // A rubric row the base hasn't is no field.
    f.Modifie(C::RubL, "x", 7);
    EXPECT_EQ(f.Valeur(C::RubL, 7), "");
}

TEST(FrmCreation, RubricRowsComeFromTheBase) {
    BaseMemoire m;
    Parametres p;
    FrmCreation f(m.b, p, "");
    // A new base has an occupation without a date, then christening and
    // burial with dates.
    ASSERT_EQ(f.Rubriques().size(), 3u);
    EXPECT_FALSE(f.Rubriques()[0].date);
    EXPECT_TRUE(f.Rubriques()[1].date);
    EXPECT_TRUE(f.Rubriques()[2].date);
    EXPECT_FALSE(f.Rubriques()[0].libelle.empty());
    // A blank symbol ends the table.
    m.b.TeteModifiable().rubriquesPersonne[1] = SlotRubrique{};
    EXPECT_EQ(FrmCreation(m.b, p, "").Rubriques().size(), 1u);
}

TEST(FrmCreation, ChecksWarnOrRefuse) {
    BaseMemoire m;
    Parametres p;
    BoitesFausses boites;
    FrmCreation vide(m.b, p, "Homme");
    EXPECT_EQ(vide.Valide(boites), 0u);
    EXPECT_EQ(boites.informations, (std::vector<int>{620, 621}));
    EXPECT_EQ(vide.Focus(), C::Nom);
    EXPECT_EQ(m.b.Tete().maxPersonne, 0u);

    // Only a first name, no year: a warning that points at the year, and
    // the person is made.
    boites.informations.clear();
    FrmCreation prenom(m.b, p, "");
    prenom.Modifie(C::Prenom, "Jean");
    const std::uint32_t n = prenom.Valide(boites);
    EXPECT_EQ(n, 1u);
    EXPECT_EQ(prenom.Personne(), n);
    EXPECT_EQ(boites.informations, std::vector<int>{620});
    EXPECT_EQ(prenom.Focus(), C::Naiss);
    EXPECT_EQ(m.b.LitPrenom(n), "Jean");

    // A name that is only a ";" is empty once split: refused by the store's
    // rule as well.
    boites.informations.clear();
    FrmCreation pointVirgule(m.b, p, "");
    pointVirgule.Modifie(C::Naiss, "1850");
    pointVirgule.Modifie(C::Nom, ";");
    EXPECT_EQ(pointVirgule.Valide(boites), 0u);
    EXPECT_EQ(boites.informations, std::vector<int>{621});
    EXPECT_EQ(m.b.Tete().maxPersonne, 1u);
}

TEST(FrmCreation, WritesThePersonWithItsRubrics) {
    BaseMemoire m;
    Parametres p;
    BoitesFausses boites;
    const std::size_t avant = m.b.TablePersonnes().taille();
    FrmCreation f(m.b, p, "Femme");
    f.Modifie(C::Nom, "DUPONT;Marie;Louise Anne");
    f.Modifie(C::Naiss, "1850");
    f.Modifie(C::JNaiss, "3/4");
    f.Quitte(C::JNaiss);
    f.Modifie(C::LieuNaiss, "Paris");
    f.Modifie(C::Deces, "1910");
    f.Modifie(C::RubL, "couturi\xE8re", 0);
    // The occupation has no date: its day and year are dropped.
    f.Modifie(C::RubA, "1870", 0);
    f.Modifie(C::RubJ, "5/5", 1);
    f.Quitte(C::RubJ, 1);
    f.Modifie(C::RubA, "1850", 1);
    f.Modifie(C::RubL, "Paris", 1);
    const std::uint32_t n = f.Valide(boites);
    ASSERT_NE(n, 0u);
    EXPECT_TRUE(boites.informations.empty());
    Base& b = m.b;
    EXPECT_EQ(b.LitNom(n), "DUPONT");
    EXPECT_EQ(b.LitPrenom(n), "Marie");
    EXPECT_EQ(b.LitAutrePrenom(n), "Louise Anne");
    EXPECT_EQ(b.LitSexe(n), "F");
    EXPECT_EQ(b.LitAnNaiss(n), "1850");
    EXPECT_EQ(b.LitAnDeces(n), "1910");
    EXPECT_EQ(b.LitDateNaiss(n), "3/4");
    EXPECT_EQ(b.LieuNaiss(n), "Paris");
    EXPECT_EQ(b.TablePersonnes().taille(), avant + 1);
    const std::string note = b.LitNote(n);
    EXPECT_NE(note.find("OCCU \\couturi\xE8re"), std::string::npos) << note;
    EXPECT_EQ(note.find("1870"), std::string::npos) << note;
    EXPECT_NE(note.find("CHR 5/5/1850 \xB0Paris"), std::string::npos) << note;
    // Survives the commit.
    m.Reouvre();
    EXPECT_EQ(m.b.LitNom(n), "DUPONT");
    EXPECT_EQ(m.b.RubriquesNote(n)[0].valeur, "couturi\xE8re");
}
