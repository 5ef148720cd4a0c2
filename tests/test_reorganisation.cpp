// Reorganisation: a base worn by many edits comes out with the same content
// under its new numbers, without a byte of garbage, stable when run again,
// and untouched whenever the run fails before the new file replaces it.
#include "maintenance/reorganisation.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/bases.h"
#include "support/familles.h"

#include <gtest/gtest.h>

#include <functional>

namespace sylvane {
namespace {

const std::string kChemin = "/g/base.sv2";

Interaction Repond(Reponse r) {
    Interaction io;
    io.question = [r](int) { return r; };
    return io;
}

std::string Mappe(const std::string& l, std::size_t pas,
                  const std::function<std::uint32_t(std::uint32_t)>& f) {
    std::string o;
    for (std::size_t p = 0; p + 4 <= l.size(); p += pas) o += std::to_string(f(Unpack4(l, p))) + ",";
    return o;
}

// Every record of the old base, read through its old numbers, against the
// record of the new base under the renumbering.
void CompareContenu(Base& a, Base& n, const Renumerotation& r) {
    auto P = [&r](std::uint32_t x) { return r.Personne(x); };
    auto M = [&r](std::uint32_t x) { return r.Mariage(x); };
    auto D = [&r](std::uint32_t x) { return r.Document(x); };
    auto E = [&r](std::uint32_t x) { return r.Evenement(x); };
    auto Id = [](std::uint32_t x) { return x; };

    ASSERT_EQ(a.TablePersonnes().taille(), n.Tete().nbPersonnes);
    ASSERT_EQ(n.Tete().maxPersonne, n.Tete().nbPersonnes);
    for (std::size_t i = 1; i <= a.TablePersonnes().taille(); ++i) {
        const std::uint32_t v = a.TriFiche(i), w = P(v);
        ASSERT_EQ(w, i) << "the new numbers follow the sort table";
        ASSERT_EQ(n.TriFiche(i), i);
        SCOPED_TRACE("person " + std::to_string(v) + " -> " + std::to_string(w));
        EXPECT_EQ(a.LitSexe(v), n.LitSexe(w));
        EXPECT_EQ(P(a.LitPere(v)), n.LitPere(w));
        EXPECT_EQ(P(a.LitMere(v)), n.LitMere(w));
        EXPECT_EQ(a.LitAnNaiss(v), n.LitAnNaiss(w));
        EXPECT_EQ(a.LitAnDeces(v), n.LitAnDeces(w));
        EXPECT_EQ(a.LitIdentite(v), n.LitIdentite(w));
        EXPECT_EQ(a.LitNote(v), n.LitNote(w));
        EXPECT_EQ(Mappe(a.ListeMariages(v), 4, M), Mappe(n.ListeMariages(w), 4, Id));
        EXPECT_EQ(Mappe(a.ListeEnfants(v), 4, P), Mappe(n.ListeEnfants(w), 4, Id));
        EXPECT_EQ(Mappe(a.ListeDocs(v), 4, D), Mappe(n.ListeDocs(w), 4, Id));
        for (int k = 1; a.LienNo(v, k) || n.LienNo(w, k); ++k) {
            EXPECT_EQ(P(a.LienNo(v, k)), n.LienNo(w, k));
            EXPECT_EQ(a.TexteLienBrutNo(v, k), n.TexteLienBrutNo(w, k));
        }
        for (int k = 1; a.EvtNo(v, k) || n.EvtNo(w, k); ++k) {
            EXPECT_EQ(E(a.EvtNo(v, k)), n.EvtNo(w, k));
            EXPECT_EQ(a.RoleEvtNo(v, k), n.RoleEvtNo(w, k));
        }
    }
    for (std::uint32_t m = 1; m <= a.Tete().maxMariage; ++m) {
        const std::uint32_t w = M(m);
        if (w == 0) {
            // Only a marriage without a husband of sex "H" is left behind.
            EXPECT_NE(a.LitSexe(a.LitMari(m)), "H") << "marriage " << m;
            continue;
        }
        EXPECT_EQ(P(a.LitMari(m)), n.LitMari(w));
        EXPECT_EQ(P(a.LitFemme(m)), n.LitFemme(w));
        EXPECT_EQ(a.LitAnMariage(m), n.LitAnMariage(w));
        EXPECT_EQ(a.LitAnFin(m), n.LitAnFin(w));
        EXPECT_EQ(a.LitNoteMariage(m), n.LitNoteMariage(w));
    }
    ASSERT_EQ(a.TableEvenements().taille(), n.Tete().maxEvenement);
    for (std::size_t i = 1; i <= a.TableEvenements().taille(); ++i) {
        const std::uint32_t e = a.TriEvt(i), w = E(e);
        ASSERT_EQ(w, i);
        ASSERT_EQ(n.TriEvt(i), i);
        EXPECT_EQ(a.DateEvt(e), n.DateEvt(w));
        EXPECT_EQ(a.LieuEvt(e), n.LieuEvt(w));
        EXPECT_EQ(a.TitreEvt(e), n.TitreEvt(w));
        EXPECT_EQ(a.TagEvt(e), n.TagEvt(w));
        EXPECT_EQ(a.NoteEvt(e), n.NoteEvt(w));
        EXPECT_EQ(Mappe(a.ListePersonnesEvt(e), 4, P), Mappe(n.ListePersonnesEvt(w), 4, Id));
        EXPECT_EQ(Mappe(a.ListeDocsEvt(e), 4, D), Mappe(n.ListeDocsEvt(w), 4, Id));
    }
    ASSERT_EQ(a.TableDocuments().taille(), n.Tete().maxDocument);
    for (std::size_t i = 1; i <= a.TableDocuments().taille(); ++i) {
        const std::uint32_t d = a.TriDoc(i), w = D(d);
        ASSERT_EQ(w, i);
        ASSERT_EQ(n.TriDoc(i), i);
        EXPECT_EQ(a.TitreDoc(d), n.TitreDoc(w));
        EXPECT_EQ(a.FichierDoc(d), n.FichierDoc(w));
        EXPECT_EQ(a.TypeDoc(d), n.TypeDoc(w));
        EXPECT_EQ(a.NoteDoc(d), n.NoteDoc(w));
    }
    // The keyword index: each rubric's words in order, each with its persons.
    for (std::uint32_t k = 1; k <= 50; ++k) {
        EXPECT_EQ(a.LitRubrique(k), n.LitRubrique(k));
        EXPECT_EQ(a.PosListeRubrique(k) != 0, n.PosListeRubrique(k) != 0);
        const std::string la = a.ListeRubrique(k), ln = n.ListeRubrique(k);
        ASSERT_EQ(la.size(), ln.size()) << "rubric " << k;
        for (std::size_t p = 0; p < la.size(); p += 4) {
            const std::uint32_t x = Unpack4(la, p), y = Unpack4(ln, p);
            EXPECT_EQ(r.Mot(x), y);
            EXPECT_EQ(a.LitMot(x), n.LitMot(y));
            EXPECT_EQ(Mappe(a.PersonnesMot(x), 4, P), Mappe(n.PersonnesMot(y), 4, Id));
        }
    }
}

void ToutAtteint(SystemeMemoire& fs) {
    const std::string f = fs.contenu(kChemin);
    const auto zones = test::OctetsAtteints(f);
    ASSERT_EQ(zones.size(), 1u) << "a hole at " << zones[0].second;
    EXPECT_EQ(zones[0].first, 1u);
    EXPECT_EQ(zones[0].second, f.size() + 1);
    EXPECT_EQ(Unpack4(f, 30), f.size()) << "ZoneFin is the last byte";
}

struct BaseUsee : ::testing::Test {
    SystemeMemoire fs;
    Parametres p;
    void Construit(int etapes) {
        Base b(fs, p);
        b.Nouvelle(kChemin);
        test::EditionsAleatoires(b, etapes);
        b.FermeBase();
    }
};

TEST_F(BaseUsee, SameContentUnderNewNumbersWithNoGarbage) {
    Construit(4000);
    SystemeMemoire avant;
    avant.copieDe(fs);
    const std::size_t tailleAvant = fs.contenu(kChemin).size();

    Base b(fs, p);
    b.Ouvre(kChemin);
    const auto r = Reorganiser(b, Repond(Reponse::Non));
    ASSERT_TRUE(r.fait);
    ASSERT_TRUE(b.EstOuverte());
    EXPECT_FALSE(fs.existe("/g/base.sav"));
    EXPECT_FALSE(fs.existe("/g/Reorg.fic"));
    EXPECT_LT(fs.contenu(kChemin).size(), tailleAvant / 2);

    Base ancienne(avant, p);
    ancienne.Ouvre(kChemin);
    ASSERT_GT(ancienne.Tete().nbEvenements, 100u);
    ASSERT_GT(ancienne.Tete().nbDocuments, 50u);
    ASSERT_GT(ancienne.Tete().nbMots, 50u);
    ASSERT_LT(ancienne.Tete().nbPersonnes, ancienne.Tete().maxPersonne) << "some were deleted";
    CompareContenu(ancienne, b, r.numeros);
    b.FermeBase();
    ToutAtteint(fs);
}

TEST_F(BaseUsee, SecondRunGivesTheSameBytesAndBackupOnYes) {
    Construit(1500);
    Base b(fs, p);
    b.Ouvre(kChemin);
    const std::string original = fs.contenu(kChemin);
    ASSERT_TRUE(Reorganiser(b, Repond(Reponse::Oui)).fait);
    EXPECT_EQ(fs.contenu("/g/base.sav"), original);
    const std::string une = fs.contenu(kChemin);
    const auto r = Reorganiser(b, Repond(Reponse::Non));
    ASSERT_TRUE(r.fait);
    EXPECT_EQ(fs.contenu(kChemin), une);
    for (std::uint32_t n = 1; n <= b.Tete().nbPersonnes; ++n) EXPECT_EQ(r.numeros.Personne(n), n);
    b.FermeBase();
    EXPECT_EQ(fs.contenu(kChemin), une) << "nothing left to commit";
}

TEST_F(BaseUsee, CancelAndStopLeaveTheBaseAsItWas) {
    Construit(300);
    const std::string original = fs.contenu(kChemin);
    Base b(fs, p);
    b.Ouvre(kChemin);
    EXPECT_FALSE(Reorganiser(b, Repond(Reponse::Annuler)).fait);
    for (int phase = 1; phase <= 14; ++phase) {
        Interaction io = Repond(Reponse::Non);
        int vues = 0;
        std::string derniere;
        io.progres = [&](const std::string&, const std::string& t) {
            if (t.find(' ') == std::string::npos || t.rfind("Bloc", 0) == 0) return;
            if (t != derniere && !std::isdigit(static_cast<unsigned char>(t.back()))) ++vues;
            derniere = t;
        };
        io.arret = [&] { return vues >= phase; };
        EXPECT_FALSE(Reorganiser(b, io).fait) << "phase " << phase;
        EXPECT_TRUE(b.EstOuverte());
        EXPECT_EQ(fs.contenu(kChemin), original);
        EXPECT_FALSE(fs.existe("/g/Reorg.fic"));
    }
}

TEST(Reorganisation, EmptyBaseAndCurrentNumbersAndMergeList) {
    SystemeMemoire fs;
    Parametres p;
    Base b(fs, p);
    b.Nouvelle(kChemin);
    b.FermeBase();
    b.Ouvre(kChemin);
    ASSERT_TRUE(Reorganiser(b, Repond(Reponse::Non)).fait);
    EXPECT_EQ(b.Tete().nbPersonnes, 0u);
    EXPECT_EQ(b.LitRubrique(1), "|BIRN");
    ToutAtteint(fs);

    // Persons created out of order: the first in sort order becomes 1.
    const std::uint32_t z = b.CreePersonne("Zola", "Emile", "", 'H', "1840");
    const std::uint32_t a = b.CreePersonne("Arnaud", "Anne", "", 'F', "1700");
    const std::uint32_t x = b.CreePersonne("Erreur", "X", "", 'I', "1900");
    b.SupprimePersonne(x);
    b.FermeBase();
    ecrireTout(fs, "/g/base.fus", std::to_string(z) + "\r\n" + std::to_string(a) + "\r\n" +
                                      std::to_string(x) + "\r\n");
    b.Ouvre(kChemin);
    const auto r = Reorganiser(b, Repond(Reponse::Non));
    EXPECT_EQ(r.numeros.Personne(a), 1u);
    EXPECT_EQ(r.numeros.Personne(z), 2u);
    EXPECT_EQ(r.numeros.Personne(x), 0u);
    EXPECT_EQ(b.LitNom(1), "Arnaud");
    EXPECT_EQ(fs.contenu("/g/base.fus"), "2\r\n1\r\n0\r\n");
    EXPECT_FALSE(fs.existe("/g/base.tmp"));
}

// The reorganised file, walked from its header: each phase's writes follow
// the previous ones with no gap, in the order of the phases.
TEST(Reorganisation, LaysOutEachPhaseBehindThePrevious) {
    SystemeMemoire fs;
    Parametres p;
    Base b(fs, p);
    b.Nouvelle(kChemin);
    // Over 400 keywords, so that the index has two blocks.
    std::vector<std::uint32_t> ps;
    for (int i = 0; i < 210; ++i) {
        const std::string k = std::to_string(1000 - i);
        ps.push_back(b.CreePersonne("Nom" + k, "Pre" + k, "", i % 2 ? 'H' : 'F', "1800"));
    }
    b.CreeMariage(ps[1], ps[0], "1820");
    b.CreeEvtPersonne(ps[0], -18190, "BIRT", "Caen");
    b.CreeEvtPersonne(ps[1], -14000, "DEAT", "Rouen");
    b.CreeDoc("Btitre", "b.jpg", "", "note b");
    b.CreeDoc("Atitre", "a.jpg", "JPG", "note a");
    b.FermeBase();
    b.Ouvre(kChemin);
    ASSERT_TRUE(Reorganiser(b, Repond(Reponse::Non)).fait);
    b.FermeBase();

    const std::string f = fs.contenu(kChemin);
    auto U = [&f](std::uint32_t pos) { return Unpack4(f, pos - 1); };
    auto Brut = [&f](std::uint32_t pos) {
        std::uint32_t v = 0;
        for (int i = 3; i >= 0; --i) v = v * 256 + static_cast<unsigned char>(f[pos - 1 + i]);
        return v;
    };
    // The position behind the text that starts at pos (skip bytes first).
    auto Apres = [&f](std::uint32_t pos, std::uint32_t saut = 0) {
        return static_cast<std::uint32_t>(f.find('#', pos - 1 + saut) + 2);
    };

    // Rubrics: the table at 501, then each record followed by its list.
    ASSERT_EQ(U(104), 501u);
    std::uint32_t suite = 701;
    for (std::uint32_t k = 1; k <= 11; ++k) {
        ASSERT_EQ(U(501 + 4 * (k - 1)), suite) << "rubric " << k;
        const std::string enreg = f.substr(suite - 1, 40);
        suite += 40;
        const std::size_t ff = enreg.find('\xFF');
        if (ff == std::string::npos || ff > enreg.find('#')) continue;
        const std::uint32_t liste = Unpack4(enreg, ff + 1);
        ASSERT_EQ(liste, suite);
        suite += 4 + 4 * U(liste);
    }

    // Index: the block table, both blocks, then word and persons by entry.
    const std::uint32_t nbMots = U(53);
    ASSERT_GT(nbMots, 400u);
    ASSERT_EQ(U(154), suite);
    ASSERT_EQ(U(suite), suite + 8);
    ASSERT_EQ(U(suite + 4), suite + 8 + 4800);
    const std::uint32_t blocsMots = suite + 8;
    suite += 8 + 2 * 4800;
    for (std::uint32_t i = 0; i < nbMots; ++i) {
        const std::uint32_t entree = blocsMots + (i / 400) * 4800 + (i % 400) * 12;
        ASSERT_EQ(U(entree), suite) << "word " << i + 1;
        suite = Apres(suite);
        if (U(entree + 4) == 0) continue;
        ASSERT_EQ(U(entree + 8), suite);
        suite += 4 * U(entree + 4);
    }

    // Persons: the block table, then block 1, whose first record's identity
    // text comes right behind it.
    ASSERT_EQ(U(35), 210u);
    ASSERT_EQ(U(73), suite);
    ASSERT_EQ(U(suite), suite + 12);
    ASSERT_EQ(Brut(suite + 12 + 21), suite + 12 + 6000);

    // Documents: both tables, the block, the sort chunk, then note and head
    // of each document in its new order.
    const std::uint32_t docs = U(85);
    ASSERT_EQ(U(89), docs + 4);
    ASSERT_EQ(U(docs), docs + 8);
    ASSERT_EQ(U(docs + 4), docs + 8 + 4000);
    EXPECT_EQ(f.substr(docs + 8 + 4000 - 1, 12), Pack4(1) + Pack4(2) + "    ");
    suite = docs + 8 + 8000;
    for (std::uint32_t d = 1; d <= 2; ++d) {
        const std::uint32_t tete = U(docs + 8 + 4 * (d - 1));
        ASSERT_EQ(U(tete), suite) << "document " << d;
        ASSERT_EQ(Apres(suite), tete);
        suite = Apres(tete, 4);
    }
    EXPECT_EQ(f.substr(U(U(docs + 8)) - 1, 7), "note a#");

    // Events likewise: text, persons, then the head.
    const std::uint32_t evts = U(93);
    ASSERT_EQ(evts, suite);
    ASSERT_EQ(U(97), evts + 4);
    ASSERT_EQ(U(evts), evts + 8);
    ASSERT_EQ(U(evts + 4), evts + 8 + 4000);
    suite = evts + 8 + 8000;
    for (std::uint32_t e = 1; e <= 2; ++e) {
        const std::uint32_t tete = U(evts + 8 + 4 * (e - 1));
        ASSERT_EQ(U(tete + 16), suite) << "event " << e;
        suite = Apres(suite);
        ASSERT_EQ(U(tete + 4), 0u);
        ASSERT_EQ(U(tete + 8), suite);
        while (U(suite) != 0) suite += 4;
        suite += 4;
        ASSERT_EQ(U(tete + 12), 0u);
        ASSERT_EQ(tete, suite);
        suite += 20;
    }

    // Last, the person sort table: its chunk, then its chunk table.
    ASSERT_EQ(U(suite), 1u);
    ASSERT_EQ(U(81), suite + 4000);
    ASSERT_EQ(U(suite + 4000), suite);
    EXPECT_EQ(U(31), suite + 4003);
    EXPECT_EQ(f.size(), suite + 4003);
}

// Every file operation of a run fails in turn, whole or torn, and then the
// power is lost: the base on disk is the old one or, once the rename is
// done, the new one, and it opens.
TEST_F(BaseUsee, FailureAtEachFileOperationLeavesTheBaseIntact) {
    Construit(16000);
    const std::string original = fs.contenu(kChemin);
    SystemeMemoire reference;
    reference.copieDe(fs);
    {
        Base b(reference, p);
        b.Ouvre(kChemin);
        ASSERT_TRUE(Reorganiser(b, Repond(Reponse::Oui)).fait);
    }
    const std::string reorganisee = reference.contenu(kChemin);
    ASSERT_GT(reorganisee.size(), 1u << 20) << "more than one buffer of appends";
    auto verifie = [&](SystemeMemoire& essai, const std::string& quoi) {
        const std::string apres = essai.contenu(kChemin);
        ASSERT_TRUE(apres == original || apres == reorganisee) << quoi;
        Base c(essai, p);
        ASSERT_NO_THROW(c.Ouvre(kChemin)) << quoi;
        EXPECT_EQ(c.Tete().nbPersonnes, apres == original ? Unpack4(original, 34)
                                                          : Unpack4(reorganisee, 34));
        c.Abandonne();
        EXPECT_EQ(essai.contenu(kChemin), apres) << "opening changes nothing";
    };
    int echecs = 0;
    for (bool dechiree : {false, true})
        for (long n = 1;; ++n) {
            SystemeMemoire essai;
            essai.copieDe(fs);
            Base b(essai, p);
            b.Ouvre(kChemin);
            essai.echouerApres(n, dechiree);
            bool echoue = false;
            try {
                Reorganiser(b, Repond(Reponse::Oui));
            } catch (const ErreurES&) {
                echoue = true;
            }
            essai.retablir();
            if (!echoue) break;
            ++echecs;
            b.Abandonne();
            const std::string quoi = "operation " + std::to_string(n) + (dechiree ? " torn" : "");
            verifie(essai, quoi);
            essai.simulerPanne();
            verifie(essai, quoi + " then power loss");
        }
    EXPECT_GT(echecs, 12);
}

} // namespace
} // namespace sylvane
