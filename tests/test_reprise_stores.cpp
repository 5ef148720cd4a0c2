// A commit of the event, document and keyword stores that fails at any
// write, followed by a power loss, leaves the base of the last commit or
// the new one, never a mixture.
#include "store/base.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

// What a reader sees of the three stores.
std::string Etat(Base& b) {
    std::string s;
    for (std::size_t i = 1; i <= b.Tete().nbEvenements; ++i) {
        std::uint32_t e = b.TriEvt(i);
        s += std::to_string(e) + ":" + std::to_string(b.DateEvt(e)) + b.LieuEvt(e) + b.TagEvt(e);
        for (int k = 1; b.PersonneEvtNo(e, k); ++k)
            s += "," + std::to_string(b.PersonneEvtNo(e, k));
        s += ";";
    }
    for (std::size_t i = 1; i <= b.Tete().nbDocuments; ++i)
        s += b.TitreDoc(b.TriDoc(i)) + ";";
    for (std::uint32_t k = 1; k <= b.Tete().nbRubriques; ++k) {
        std::string l = b.ListeRubrique(k);
        for (std::size_t o = 0; o + 4 <= l.size(); o += 4) {
            std::uint32_t e = Unpack4(l, o);
            s += b.LitMot(e) + "=" + std::to_string(b.PersonnesMot(e).size() / 4) + ";";
        }
    }
    return s;
}

void Copie(SystemeMemoire& de, SystemeMemoire& vers) { vers.copieDe(de); }

// Enough changes to touch several blocks of each table.
void Modifie(Base& b) {
    for (std::uint32_t n = 1; n <= 30; ++n) {
        std::string ancienne = b.LitNote(n);
        std::string nouvelle = ancienne + " $Lieu" + std::to_string(n % 7);
        b.MajMots(n, ancienne, nouvelle);
        b.EcritNote(n, nouvelle);
        b.CreeEvtPersonne(n, static_cast<long>(n) * 3, "CENS", "Caen");
    }
    b.SupprimeEvt(5);
    b.CreeDoc("Nouveau", "n.jpg");
    b.SupprimeDoc(2);
}

} // namespace

TEST(RepriseStores, AFailedCommitFallsBackOnOneOfTheTwoStates) {
    SystemeMemoire origine;
    Parametres p;
    {
        Base b(origine, p);
        b.Nouvelle("/b.sv2");
        for (int i = 0; i < 40; ++i) {
            std::uint32_t n = b.CreePersonne("Nom" + std::to_string(i % 9), "P", "", 'H', "1800");
            b.CreeEvtPersonne(n, 1000 - i, "BIRT", "Vire");
        }
        for (int i = 0; i < 5; ++i)
            b.CreeDoc("Doc" + std::to_string(i), "f");
        b.FermeBase();
    }
    std::string avant, apres;
    long operations = 0;
    {
        SystemeMemoire fs;
        Copie(origine, fs);
        Base b(fs, p);
        b.Ouvre("/b.sv2");
        avant = Etat(b);
        Modifie(b);
        long debut = fs.operationsFaites();
        b.FermeBase();
        operations = fs.operationsFaites() - debut;
        b.Ouvre("/b.sv2");
        apres = Etat(b);
        b.Abandonne();
    }
    ASSERT_NE(avant, apres);
    ASSERT_GT(operations, 5);
    for (long n = 1; n <= operations; ++n) {
        for (bool dechiree : {false, true}) {
            SystemeMemoire fs;
            Copie(origine, fs);
            Base b(fs, p);
            b.Ouvre("/b.sv2");
            Modifie(b);
            fs.echouerApres(n, dechiree);
            try {
                b.FermeBase();
            } catch (const std::exception&) {
            }
            b.Abandonne();
            fs.simulerPanne();
            fs.retablir();
            b.Ouvre("/b.sv2");
            std::string etat = Etat(b);
            EXPECT_TRUE(etat == avant || etat == apres) << "failure at operation " << n;
            b.Abandonne();
        }
    }
}
