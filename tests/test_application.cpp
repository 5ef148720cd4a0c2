// The program's lifecycle around a base: what is remembered per base and in
// the recent bases when bases are opened and closed.
#include "store/fichier_memoire.h"
#include "ui/application.h"

#include <gtest/gtest.h>

using namespace sylvane;

TEST(Application, ClosingRemembersTheBaseAndItsPersons) {
    SystemeMemoire fs;
    ReglagesMemoire r;
    Application app(fs, r, "/prog");
    app.Demarre();
    EXPECT_EQ(r.lit("Defaut", "Travail", ""), "/prog/Temp");
    for (const char* nom : {"/d/a.sv2", "/d/b.sv2", "/d/c.sv2"}) {
        app.NouvelleBase(nom);
        auto n = app.base().CreePersonne("Martin", "Jean", "", 'H', "1900");
        app.definitPersonneEnCours(n);
        app.numeros().deCujus1.deCujus = n;
        app.FermeBase();
    }
    EXPECT_EQ(r.lit("Defaut", "Historique 1", ""), "/d/c.sv2");
    EXPECT_EQ(r.lit("Defaut", "Historique 3", ""), "/d/a.sv2");
    app.OuvreBase("/d/a.sv2");
    EXPECT_EQ(app.personneEnCours(), 1u);
    EXPECT_EQ(app.numeros().deCujus1.deCujus, 1u);
    // The numbering shows in the display name as soon as the base is open.
    app.parametres().affichageNom = {"NUMB", "FNAM", "BIRN"};
    EXPECT_EQ(app.base().NomComplet(1), "[1] Jean Martin");
    app.FermeBase();
    EXPECT_EQ(r.lit("Defaut", "Historique 1", ""), "/d/a.sv2");
    EXPECT_EQ(r.lit("Defaut", "Historique 2", ""), "/d/c.sv2");
    app.Termine();
}

TEST(Application, AFailedOpenLeavesNoBase) {
    SystemeMemoire fs;
    ReglagesMemoire r;
    Application app(fs, r, "/prog");
    app.Demarre();
    EXPECT_THROW(app.OuvreBase("/absente.sv2"), ErreurES);
    EXPECT_FALSE(app.BaseOuverte());
    app.Termine();
}
