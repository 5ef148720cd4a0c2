// A crash at any moment of a session or of a commit leaves, after the next
// open, exactly the last committed base or the new one, never a mix.
#include "store/base.h"
#include "store/fichier_memoire.h"
#include "support/bases.h"
#include "support/dossier_temp.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <random>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace sylvane;

namespace {

bool Rapide() { return std::getenv("SYLVANE_QUICK") != nullptr; }

struct Reference {
    Parametres p;
    std::map<int, test::Etat> etats;
    // The picture of a base after steps 1..k, built once in memory.
    const test::Etat& Apres(int k) {
        auto it = etats.find(k);
        if (it != etats.end()) return it->second;
        SystemeMemoire fs;
        test::Construit(fs, p, "/ref.sv2", k);
        Base b(fs, p);
        b.Ouvre("/ref.sv2");
        return etats[k] = test::Capture(b);
    }
};

} // namespace

// Every mutating file operation of a session of edits and its commit fails
// in turn, with and without a torn write, with and without the loss of what
// was not synced.
TEST(Panne, EachFailingOperationLeavesOneOfTheTwoCommits) {
    const int avant = 2300, apres = avant + (Rapide() ? 6 : 15);
    Parametres p;
    Reference ref;
    SystemeMemoire modele;
    test::Construit(modele, p, "/b.sv2", avant);
    const test::Etat& etatA = ref.Apres(avant);
    const test::Etat& etatB = ref.Apres(apres);
    ASSERT_FALSE(etatA == etatB);

    int points = 0;
    for (int variante = 0; variante < 4; ++variante) {
        const bool dechiree = variante & 1, panne = variante & 2;
        for (long i = 1;; ++i) {
            SystemeMemoire fs;
            fs.copieDe(modele);
            bool echec = false;
            {
                Base b(fs, p);
                b.Ouvre("/b.sv2");
                fs.echouerApres(i, dechiree);
                try {
                    for (int k = avant + 1; k <= apres; ++k) test::Etape(b, k);
                    b.FermeBase();
                } catch (const ErreurES&) {
                    echec = true;
                }
            }
            fs.retablir();
            if (panne) fs.simulerPanne();
            Base b(fs, p);
            b.Ouvre("/b.sv2");
            test::Etat e = test::Capture(b);
            EXPECT_FALSE(fs.existe("/b.log"));
            if (echec) {
                ++points;
                EXPECT_TRUE(e == etatA || e == etatB)
                    << "operation " << i << " variant " << variante << ": "
                    << test::Difference(e, etatA);
            } else {
                EXPECT_TRUE(e == etatB) << test::Difference(e, etatB);
                break;
            }
            b.Abandonne();
        }
    }
    EXPECT_GT(points, 100);
    std::cout << points << " failure points checked\n";
}

// A process that commits in a loop is killed at random moments; every
// reopened base is exactly the base after some whole number of steps.
TEST(Panne, KilledWhileCommittingInALoop) {
    test::DossierTemp dossier;
    const std::string chemin = dossier / "boucle.sv2";
    Parametres p;
    Reference ref;
    const int depart = 150;
    {
        Base b(systemeReel(), p);
        b.Nouvelle(chemin);
        for (int k = 1; k <= depart; ++k) test::Etape(b, k);
        b.FermeBase();
    }
    std::mt19937 alea(42);
    const int essais = Rapide() ? 25 : 120;
    int dernier = depart;
    for (int essai = 0; essai < essais; ++essai) {
        pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            Base b(systemeReel(), p);
            b.Ouvre(chemin);
            for (int k = static_cast<int>(b.Tete().maxPersonne) + 1;; ++k) {
                test::Etape(b, k);
                if (k % 3 == 0) b.MnuEnregistrer();
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(alea() % 20000));
        kill(pid, SIGKILL);
        int statut = 0;
        waitpid(pid, &statut, 0);
        Base b(systemeReel(), p);
        b.Ouvre(chemin);
        const int k = static_cast<int>(b.Tete().maxPersonne);
        ASSERT_GE(k, dernier);
        ASSERT_EQ(k % 3, 0) << "a state between two commits";
        test::Etat e = test::Capture(b);
        ASSERT_TRUE(e == ref.Apres(k)) << "after kill " << essai << " at step " << k << ": "
                                       << test::Difference(e, ref.Apres(k));
        b.Abandonne();
        dernier = k;
        // Keep the base small enough for the reference to stay cheap.
        if (k > 700) break;
    }
}
