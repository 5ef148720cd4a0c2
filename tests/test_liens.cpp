// Creation of persons and family links: both sides written at once, each
// question answered Yes and No, refusals and closed boxes writing nothing.
#include "kinship/numeros.h"
#include "store/liens.h"
#include "store/pack.h"
#include "support/base_memoire.h"
#include "support/bases.h"
#include "text/dates.h"
#include "text/messages.h"

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <random>

using namespace sylvane;
using sylvane::test::BaseMemoire;
using sylvane::test::Capture;
using sylvane::test::Difference;

namespace {

// A scripted user: answers by message number (No when not scripted), or
// from a queue of answers when one is given; records every box.
struct Utilisateur {
    std::map<int, Reponse> reponses;
    std::deque<Reponse> suite;
    std::deque<std::optional<std::string>> saisies;
    std::vector<Boite> boites;
    int nbSaisies = 0;

    DialogueLiens Dialogue() {
        DialogueLiens d;
        d.boite = [this](const Boite& b) {
            boites.push_back(b);
            if (b.genre == Boite::Genre::Avertissement) return Reponse::Oui;
            if (!suite.empty()) {
                Reponse r = suite.front();
                suite.pop_front();
                return r;
            }
            auto it = reponses.find(b.message);
            return it == reponses.end() ? Reponse::Non : it->second;
        };
        d.saisie = [this](int message) -> std::optional<std::string> {
            EXPECT_EQ(message, 633);
            ++nbSaisies;
            if (saisies.empty()) return std::nullopt;
            auto s = saisies.front();
            saisies.pop_front();
            return s;
        };
        return d;
    }
    std::vector<int> Messages() const {
        std::vector<int> v;
        for (const auto& b : boites) v.push_back(b.message);
        return v;
    }
};

std::vector<std::uint32_t> Liste(const std::string& packed, std::size_t pas = 4) {
    std::vector<std::uint32_t> v;
    for (std::size_t o = 0; o + 4 <= packed.size(); o += pas) v.push_back(Unpack4(packed, o));
    return v;
}

FicheCreation Fiche(const std::string& nom, const std::string& prenom, char sexe = 'I',
                    const std::string& an = "1900") {
    FicheCreation f;
    f.nom = nom;
    f.prenom = prenom;
    f.sexe = sexe;
    f.anNaiss = an;
    return f;
}

struct Liaison : ::testing::Test {
    BaseMemoire m;
    Base& b = m.b;
    Utilisateur u;
    EtatNumerotation num;
    Liens liens{b, u.Dialogue(), &num};

    std::uint32_t Homme(const std::string& prenom, const std::string& an = "1900") {
        return b.CreePersonne("MARTIN", prenom, "", 'H', an);
    }
    std::uint32_t Femme(const std::string& prenom, const std::string& an = "1900") {
        return b.CreePersonne("DURAND", prenom, "", 'F', an);
    }
    std::vector<std::uint32_t> Enfants(std::uint32_t n) { return Liste(b.ListeEnfants(n)); }
    std::vector<std::uint32_t> Mariages(std::uint32_t n) { return Liste(b.ListeMariages(n)); }
    // The command wrote nothing at all.
    void SansEcriture(const sylvane::test::Etat& avant) {
        auto apres = Capture(b);
        EXPECT_TRUE(avant == apres) << Difference(avant, apres);
    }
};

// Every link has both sides: father and mother fields against child lists,
// marriage lists against marriage records.
::testing::AssertionResult DeuxCotes(Base& b) {
    const std::uint32_t max = b.Tete().maxPersonne;
    for (std::uint32_t n = 1; n <= max; ++n) {
        for (std::uint32_t parent : {b.LitPere(n), b.LitMere(n)}) {
            if (!parent) continue;
            auto l = Liste(b.ListeEnfants(parent));
            if (std::count(l.begin(), l.end(), n) != 1)
                return ::testing::AssertionFailure()
                       << n << " not once in the child list of its parent " << parent;
        }
        if (b.LitPere(n) && b.LitSexe(b.LitPere(n)) != "H")
            return ::testing::AssertionFailure() << "father of " << n << " is no man";
        if (b.LitMere(n) && b.LitSexe(b.LitMere(n)) != "F")
            return ::testing::AssertionFailure() << "mother of " << n << " is no woman";
        auto enfants = Liste(b.ListeEnfants(n));
        for (std::size_t i = 0; i < enfants.size(); ++i) {
            std::uint32_t k = enfants[i];
            if (b.LitPere(k) != n && b.LitMere(k) != n)
                return ::testing::AssertionFailure() << k << " listed as child of " << n;
            if (i > 0 && b.CleAnNaiss(enfants[i - 1]) > b.CleAnNaiss(k))
                return ::testing::AssertionFailure() << "children of " << n << " out of order";
        }
        for (std::uint32_t mar : Liste(b.ListeMariages(n)))
            if (b.LitMari(mar) != n && b.LitFemme(mar) != n)
                return ::testing::AssertionFailure() << "marriage " << mar << " listed by " << n;
    }
    for (std::uint32_t mar = 1; mar <= b.Tete().maxMariage; ++mar)
        for (std::uint32_t p : {b.LitMari(mar), b.LitFemme(mar)}) {
            if (!p) continue;
            auto l = Liste(b.ListeMariages(p));
            if (std::count(l.begin(), l.end(), mar) != 1)
                return ::testing::AssertionFailure() << "marriage " << mar << " not once in " << p;
        }
    return ::testing::AssertionSuccess();
}

} // namespace

TEST_F(Liaison, FatherAsksOncePerFatherlessChildOfTheMotherAndOffersTheMarriage) {
    const auto mere = Femme("Anne"), c = Femme("Claire", "1925");
    const auto k1 = Homme("Karl", "1920"), k2 = Homme("Kurt", "1930"), pere = Homme("Paul", "1890");
    const auto autre = Homme("Autre", "1880");
    for (auto k : {c, k1, k2}) {
        b.EcritMere(k, mere);
        b.MajEnfants(mere, k, 'A');
    }
    b.EcritPere(k2, autre);
    b.MajEnfants(autre, k2, 'A');
    u.reponses = {{639, Reponse::Oui}};
    u.suite = {Reponse::Oui, Reponse::Oui}; // 639, then k1
    ResultatLien r = liens.AttacheParent(c, Cote::Pere, pere);
    ASSERT_FALSE(r.Refuse());
    // 639 first, then one question for k1; k2 has a father already.
    ASSERT_EQ(u.Messages(), (std::vector<int>{639, 609}));
    EXPECT_EQ(u.boites[0].nom, b.NomComplet(mere));
    EXPECT_EQ(u.boites[1].nom, b.NomComplet(k1));
    EXPECT_EQ(u.boites[1].titre, b.NomComplet(pere));
    EXPECT_EQ(b.LitPere(c), pere);
    EXPECT_EQ(b.LitPere(k1), pere);
    EXPECT_EQ(b.LitPere(k2), autre);
    EXPECT_EQ(Enfants(pere), (std::vector<std::uint32_t>{k1, c}));
    ASSERT_NE(r.mariage, 0u);
    EXPECT_EQ(b.LitMari(r.mariage), pere);
    EXPECT_EQ(b.LitFemme(r.mariage), mere);
    EXPECT_EQ(Mariages(mere), std::vector<std::uint32_t>{r.mariage});
    EXPECT_TRUE(DeuxCotes(b));

    // A mother for a child whose father has motherless children: 608, and
    // with the parents married no 639.
    const auto k3 = Homme("Kim", "1935"), c2 = Homme("Cyril", "1936");
    for (auto k : {k3, c2}) liens.AttacheParent(k, Cote::Pere, pere);
    b.EcritMere(c, 0);
    b.MajEnfants(mere, c, 'S');
    u.boites.clear();
    u.suite = {Reponse::Non, Reponse::Non, Reponse::Oui}; // 639, c, k3
    liens.AttacheParent(k1 /* has its mother */, Cote::Mere, mere);
    EXPECT_TRUE(u.boites.empty());
    liens.AttacheParent(k2, Cote::Mere, mere); // already hers: nothing asked
    EXPECT_TRUE(u.boites.empty());
    const auto femme2 = Femme("Berthe");
    liens.AttacheParent(c2, Cote::Mere, femme2);
    // Not married: 639 (answered No), then each of the father's children
    // without a mother: c and k3.
    EXPECT_EQ(u.Messages(), (std::vector<int>{639, 608, 608}));
    EXPECT_EQ(b.LitMere(c), 0u);
    EXPECT_EQ(b.LitMere(k3), femme2);
    EXPECT_EQ(Mariages(femme2).size(), 0u);
    EXPECT_TRUE(DeuxCotes(b));
}

TEST_F(Liaison, NewFatherReplacesTheOldOneAndTheOldMarriageStays) {
    const auto p1 = Homme("Un"), p2 = Homme("Deux"), mere = Femme("Mere"), c = Homme("C", "1930");
    const auto mar = b.CreeMariage(p1, mere);
    liens.AttacheParent(c, Cote::Mere, mere);
    liens.AttacheParent(c, Cote::Pere, p1);
    EXPECT_TRUE(u.boites.empty()); // married: no 639
    liens.AttacheParent(c, Cote::Pere, p2);
    EXPECT_EQ(b.LitPere(c), p2);
    EXPECT_TRUE(Enfants(p1).empty());
    EXPECT_EQ(Enfants(p2), std::vector<std::uint32_t>{c});
    EXPECT_EQ(b.LitMari(mar), p1);
    EXPECT_EQ(Mariages(p1), std::vector<std::uint32_t>{mar});
    EXPECT_EQ(u.Messages(), std::vector<int>{639});
    EXPECT_EQ(Mariages(p2).size(), 0u);
    EXPECT_TRUE(DeuxCotes(b));
}

TEST_F(Liaison, RefusalsAndCancelledCreationWriteNothing) {
    const auto homme = Homme("H"), femme = Femme("F"), c = Homme("C", "1930");
    const auto neutre = b.CreePersonne("X", "Y", "", 'I', "1900");
    const auto avant = Capture(b);
    // The creation form with no name: 621, no person, nothing written.
    ResultatLien r = liens.CreeParent(c, Cote::Pere, Fiche("", " "));
    EXPECT_EQ(r.refus, 621);
    EXPECT_EQ(r.personne, 0u);
    EXPECT_EQ(liens.CreeConjoint(homme, Fiche(";", "")).refus, 621);
    EXPECT_EQ(liens.CreeEnfant(femme, Fiche("", "")).refus, 621);
    EXPECT_EQ(liens.CreeLien(femme, Fiche("", "")).refus, 621);
    // Sexes: a woman as father, a man as mother, a spouse of the same sex.
    EXPECT_EQ(liens.AttacheParent(c, Cote::Pere, femme).refus, 936);
    EXPECT_EQ(liens.AttacheParent(c, Cote::Mere, homme).refus, 936);
    EXPECT_EQ(liens.AttacheParent(c, Cote::Pere, neutre).refus, 936);
    EXPECT_EQ(liens.AttacheConjoint(homme, c).refus, 936);
    EXPECT_EQ(liens.AttacheConjoint(neutre, femme).refus, 634);
    EXPECT_EQ(liens.CreeConjoint(neutre, Fiche("A", "B")).refus, 634);
    // A person of sex I has a child only once its sex is set.
    EXPECT_EQ(liens.CreeEnfant(neutre, Fiche("A", "B")).refus, 635);
    EXPECT_EQ(liens.AttacheEnfant(neutre, c).refus, 640);
    // Picks of nobody or of the person itself.
    EXPECT_FALSE(liens.AttacheParent(c, Cote::Pere, c).ecrit);
    EXPECT_FALSE(liens.AttacheParent(c, Cote::Pere, 0).ecrit);
    EXPECT_FALSE(liens.AttacheEnfant(homme, homme).ecrit);
    EXPECT_FALSE(liens.AttacheConjoint(homme, 0).ecrit);
    EXPECT_FALSE(liens.AjouteLien(homme, homme).ecrit);
    SansEcriture(avant);
    EXPECT_TRUE(u.boites.empty());
    // Message 620 is a warning: it doesn't stop the creation.
    EXPECT_TRUE(liens.CreePersonne(Fiche("SANS", "Annee", 'H', "")).ecrit);
    EXPECT_EQ(u.Messages(), std::vector<int>{620});

    b.EcritSexe(neutre, "F");
    r = liens.AttacheEnfant(neutre, c);
    EXPECT_TRUE(r.ecrit);
    EXPECT_EQ(b.LitMere(c), neutre);
    // 627: no name on the sheet.
    const auto anonyme = b.CreePersonne("", "", "", 'H', "1900");
    EXPECT_EQ(liens.AttacheConjoint(anonyme, femme).refus, 627);
}

TEST_F(Liaison, CutParentAndChildAskFirstAndKeepTheOtherSide) {
    const auto pere = Homme("P"), mere = Femme("M"), c = Homme("C", "1930");
    liens.AttacheParent(c, Cote::Pere, pere);
    liens.AttacheParent(c, Cote::Mere, mere);
    ASSERT_EQ(u.Messages(), std::vector<int>{639}); // answered No
    const auto avant = Capture(b);
    EXPECT_FALSE(liens.CoupeParent(c, Cote::Pere).ecrit);
    EXPECT_FALSE(liens.CoupeEnfant(mere, c).ecrit);
    SansEcriture(avant);
    u.reponses[617] = Reponse::Oui;
    // Cutting the child from its mother's sheet leaves the father's side.
    EXPECT_TRUE(liens.CoupeEnfant(mere, c).ecrit);
    EXPECT_EQ(b.LitMere(c), 0u);
    EXPECT_EQ(b.LitPere(c), pere);
    EXPECT_EQ(Enfants(pere), std::vector<std::uint32_t>{c});
    EXPECT_TRUE(Enfants(mere).empty());
    // From a sheet that isn't the child's parent: the list alone loses it.
    b.MajEnfants(mere, c, 'A');
    liens.CoupeEnfant(mere, c);
    EXPECT_EQ(b.LitPere(c), pere);
    EXPECT_TRUE(liens.CoupeParent(c, Cote::Pere).ecrit);
    EXPECT_EQ(b.LitPere(c), 0u);
    EXPECT_TRUE(Enfants(pere).empty());
    EXPECT_FALSE(liens.CoupeParent(c, Cote::Pere).ecrit); // no father left
    EXPECT_TRUE(DeuxCotes(b));
}

TEST_F(Liaison, SpouseAsksForChildrenWhoseOtherParentIsUnknown) {
    const auto p = Homme("P"), k1 = Homme("K1", "1930"), k2 = Homme("K2", "1931");
    const auto ex = Femme("Ex"), s = Femme("S"), ks = Femme("KS", "1932");
    liens.AttacheEnfant(p, k1);
    liens.AttacheEnfant(p, k2);
    liens.AttacheEnfant(ex, k2); // k2's mother is known
    liens.AttacheEnfant(s, ks);
    u.boites.clear();
    u.suite = {Reponse::Oui, Reponse::Oui};
    ResultatLien r = liens.AttacheConjoint(p, s, true);
    // k1 (609? no: the spouse is a woman, 608), then the spouse's ks with P.
    ASSERT_EQ(u.Messages(), (std::vector<int>{608, 609}));
    EXPECT_EQ(u.boites[0].nom, b.NomComplet(k1));
    EXPECT_EQ(u.boites[1].nom, b.NomComplet(ks));
    EXPECT_EQ(b.LitMere(k1), s);
    EXPECT_EQ(b.LitPere(ks), p);
    EXPECT_EQ(b.LitMari(r.mariage), p);
    EXPECT_EQ(b.LitFemme(r.mariage), s);
    EXPECT_TRUE(b.LitAnMariage(r.mariage).find_first_not_of(' ') == std::string::npos);
    EXPECT_TRUE(DeuxCotes(b));

    // The creation path asks only about P's children, and makes a spouse
    // of the other sex whatever the form said; all answered No.
    const auto f = Femme("F"), kf = Homme("KF", "1950"), kf2 = Homme("KF2", "1951");
    liens.AttacheEnfant(f, kf);
    liens.AttacheEnfant(f, kf2);
    u.boites.clear();
    r = liens.CreeConjoint(f, Fiche("NOUVEAU", "Mari", 'F'));
    EXPECT_EQ(u.Messages(), (std::vector<int>{609, 609}));
    EXPECT_EQ(b.LitSexe(r.personne), "H");
    EXPECT_EQ(b.LitMari(r.mariage), r.personne);
    EXPECT_EQ(b.LitPere(kf), 0u);
    EXPECT_EQ(Mariages(f), std::vector<std::uint32_t>{r.mariage});
    EXPECT_TRUE(DeuxCotes(b));
}

TEST_F(Liaison, ChildWithAnotherParentAsksAndStopsOnNoOrCancel) {
    const auto p = Homme("P"), autre = Homme("Autre"), k = Homme("K", "1930");
    liens.AttacheEnfant(autre, k);
    auto avant = Capture(b);
    for (Reponse rep : {Reponse::Non, Reponse::Annuler}) {
        u.boites.clear();
        u.suite = {rep};
        EXPECT_FALSE(liens.AttacheEnfant(p, k).ecrit);
        ASSERT_EQ(u.boites.size(), 1u);
        EXPECT_EQ(u.boites[0].genre, Boite::Genre::NonParDefaut);
        EXPECT_EQ(u.boites[0].suite, 629);
        EXPECT_EQ(u.boites[0].nom, b.NomComplet(autre));
        SansEcriture(avant);
    }
    u.suite = {Reponse::Oui};
    EXPECT_TRUE(liens.AttacheEnfant(p, k).ecrit);
    EXPECT_EQ(b.LitPere(k), p);
    EXPECT_TRUE(Enfants(autre).empty());
    EXPECT_TRUE(DeuxCotes(b));
    // Already the child's father: nothing asked, nothing written twice.
    u.boites.clear();
    avant = Capture(b);
    EXPECT_FALSE(liens.AttacheEnfant(p, k).ecrit);
    SansEcriture(avant);
}

TEST_F(Liaison, ChildOfAManWithTwoMarriagesAsksInListOrderUntilTheFirstYes) {
    const auto p = Homme("P", "1900"), f1 = Femme("Une"), f2 = Femme("Deux");
    const auto m1 = liens.AttacheConjoint(p, f1).mariage;
    const auto m2 = liens.AttacheConjoint(p, f2).mariage;
    ASSERT_EQ(Mariages(p), (std::vector<std::uint32_t>{m1, m2}));
    u.suite = {Reponse::Oui};
    auto r = liens.CreeEnfant(p, Fiche("MARTIN", "Nouveau", 'H', "1930"));
    ASSERT_EQ(u.Messages(), std::vector<int>{637});
    EXPECT_EQ(u.boites[0].titre, b.NomComplet(f1));
    EXPECT_EQ(b.LitPere(r.personne), p);
    EXPECT_EQ(b.LitMere(r.personne), f1);

    // No to the first: the second is asked; an existing child gets 608.
    u.boites.clear();
    u.suite = {Reponse::Non, Reponse::Oui};
    const auto k = Homme("Existant", "1931");
    liens.AttacheEnfant(p, k);
    EXPECT_EQ(u.Messages(), (std::vector<int>{608, 608}));
    EXPECT_EQ(b.LitMere(k), f2);

    // Moving the marriages changes which is asked first.
    ASSERT_TRUE(liens.Deplace(p, ListeOrdonnee::Mariages, 2, true));
    EXPECT_EQ(Mariages(p), (std::vector<std::uint32_t>{m2, m1}));
    // An existing child with another mother: the Yes replaces her.
    const auto k2 = Homme("Autre", "1932");
    liens.AttacheEnfant(f1, k2); // 609 for P answered No
    u.boites.clear();
    u.suite = {Reponse::Oui};
    liens.AttacheEnfant(p, k2);
    EXPECT_EQ(u.boites[0].titre, b.NomComplet(f2));
    EXPECT_EQ(b.LitMere(k2), f2);
    EXPECT_EQ(Enfants(f1), std::vector<std::uint32_t>{r.personne});
    EXPECT_TRUE(DeuxCotes(b));
}

TEST_F(Liaison, DeathBeforeBirthWarnsWithoutUndoing) {
    const auto p = Homme("P", "1800"), f = Femme("F", "1800");
    b.EcritAnDeces(p, "1820");
    b.EcritAnDeces(f, "1815");
    liens.AttacheConjoint(p, f);
    u.boites.clear();
    u.reponses[637] = Reponse::Oui;
    auto r = liens.CreeEnfant(p, Fiche("M", "K", 'H', "1830"));
    EXPECT_EQ(u.Messages(), (std::vector<int>{636, 637, 638}));
    EXPECT_EQ(u.boites[0].genre, Boite::Genre::Avertissement);
    EXPECT_EQ(b.LitMere(r.personne), f);
    // An empty birth year: no warning from the child's side.
    u.boites.clear();
    r = liens.CreeEnfant(p, Fiche("M", "L", 'H', ""));
    EXPECT_EQ(u.Messages(), (std::vector<int>{620, 637}));
    // The father's side warns whenever the parent died before.
    u.boites.clear();
    const auto c = Homme("C", "1850");
    liens.AttacheParent(c, Cote::Pere, p);
    EXPECT_EQ(u.Messages(), std::vector<int>{636});
}

TEST_F(Liaison, FreeLinkTextIsAskedUntilGivenAndOtherWayOnYes) {
    const auto a = Homme("A"), c = Homme("C");
    u.saisies = {"", "  ", "parrain"};
    auto r = liens.AjouteLien(a, c);
    EXPECT_TRUE(r.ecrit);
    EXPECT_EQ(u.nbSaisies, 3);
    EXPECT_EQ(b.LienNo(a, 1), c);
    EXPECT_EQ(b.TexteLienBrutNo(a, 1), "parrain");
    EXPECT_EQ(b.LienNo(c, 1), 0u); // 632 answered No
    u.reponses[632] = Reponse::Oui;
    u.saisies = {"filleul", "ami#de"};
    liens.AjouteLien(a, c);
    EXPECT_EQ(b.LienNo(c, 1), a);
    EXPECT_EQ(b.TexteLienBrutNo(c, 1), "ami#de"); // a text may hold "#"
    // The window closed: nothing written.
    const auto avant = Capture(b);
    EXPECT_FALSE(liens.AjouteLien(a, c).ecrit);
    SansEcriture(avant);

    // Moving keeps each text with its person; removal is one side only.
    const auto d = Homme("D");
    u.reponses[632] = Reponse::Non;
    u.saisies = {"voisin"};
    liens.AjouteLien(a, d);
    ASSERT_TRUE(liens.Deplace(a, ListeOrdonnee::Liens, 3, true));
    EXPECT_EQ(b.LienNo(a, 2), d);
    EXPECT_EQ(b.TexteLienBrutNo(a, 2), "voisin");
    EXPECT_EQ(b.TexteLienBrutNo(a, 3), "filleul");
    EXPECT_FALSE(liens.Deplace(a, ListeOrdonnee::Liens, 3, false));
    EXPECT_FALSE(liens.Deplace(a, ListeOrdonnee::Liens, 1, true));
    EXPECT_FALSE(liens.SupprimeLien(a, 1).ecrit); // 617 answered No
    u.reponses[617] = Reponse::Oui;
    EXPECT_TRUE(liens.SupprimeLien(a, 3).ecrit);
    EXPECT_EQ(Liste(b.ListeLiens(a), 8), (std::vector<std::uint32_t>{c, d}));
    EXPECT_EQ(b.TexteLienBrutNo(a, 1), "parrain");
    EXPECT_EQ(b.LienNo(c, 1), a);
    EXPECT_FALSE(liens.SupprimeLien(a, 9).ecrit);

    // CmdCréLien: a new person, then the link.
    u.saisies = {"cousin"};
    r = liens.CreeLien(a, Fiche("NEUF", "N"));
    EXPECT_EQ(b.LienNo(a, 3), r.personne);
}

TEST_F(Liaison, DocumentsMoveAndPersonDeletionNeedsABarePerson) {
    const auto a = Homme("A"), c = Homme("C", "1930");
    b.MajDocs(a, 7, 'A');
    b.MajDocs(a, 8, 'A');
    ASSERT_TRUE(liens.Deplace(a, ListeOrdonnee::Documents, 1, false));
    EXPECT_EQ(Liste(b.ListeDocs(a)), (std::vector<std::uint32_t>{8, 7}));
    EXPECT_EQ(liens.SupprimePersonne(a).refus, 613);
    liens.AttacheEnfant(a, c);
    EXPECT_EQ(liens.SupprimePersonne(a).refus, 610);
    EXPECT_EQ(liens.SupprimePersonne(c).refus, 615);
    const auto f = Femme("F"), seul = Homme("Seul");
    const auto k = Homme("K");
    liens.AttacheEnfant(f, k);
    b.MajEnfants(f, k, 'S'); // only the mother's field is left
    EXPECT_EQ(liens.SupprimePersonne(k).refus, 616);
    const auto avant = Capture(b);
    EXPECT_FALSE(liens.SupprimePersonne(seul).ecrit); // 617 answered No
    SansEcriture(avant);
    u.reponses[617] = Reponse::Oui;
    const std::size_t taille = b.TablePersonnes().taille();
    const std::uint32_t place = b.TrouvePlaceFiche(seul);
    auto r = liens.SupprimePersonne(seul);
    EXPECT_TRUE(r.ecrit);
    EXPECT_EQ(b.TablePersonnes().taille(), taille - 1);
    EXPECT_EQ(r.personne, b.TriFiche(std::min<std::size_t>(place, taille - 1)));
    EXPECT_EQ(b.TrouvePlaceFiche(seul), 0u);
}

TEST_F(Liaison, MarriageDeletionEmptiesTheRecordAndKeepsTheChildren) {
    const auto p = Homme("P"), f = Femme("F"), k = Homme("K", "1930");
    u.reponses = {{608, Reponse::Oui}};
    const auto mar = liens.AttacheConjoint(p, f).mariage;
    liens.AttacheEnfant(p, k);
    ASSERT_EQ(b.LitMere(k), f);
    b.EcritAnMariage(mar, "1925");
    // A keyword of the marriage's note is indexed for both spouses.
    const std::string note = "noces |BOULANGER";
    b.MajMots(p, b.NoteAvecMariages(p), b.NoteAvecMariages(p) + "\r\n" + note);
    b.MajMots(f, b.NoteAvecMariages(f), b.NoteAvecMariages(f) + "\r\n" + note);
    b.EcritNoteMariage(mar, note);
    auto personnesDuMot = [&](const std::string& mot) {
        for (std::uint32_t r = 1; r <= b.Tete().nbRubriques; ++r) {
            std::string l = b.ListeRubrique(r);
            for (std::size_t i = 0; i + 4 <= l.size(); i += 4)
                if (b.LitMot(Unpack4(l, i)) == mot) return Liste(b.PersonnesMot(Unpack4(l, i)));
        }
        return std::vector<std::uint32_t>{};
    };
    ASSERT_EQ(personnesDuMot("BOULANGER").size(), 2u);
    const auto avant = Capture(b);
    EXPECT_FALSE(liens.SupprimeMariage(mar).ecrit);
    SansEcriture(avant);
    u.reponses[617] = Reponse::Oui;
    EXPECT_TRUE(liens.SupprimeMariage(mar).ecrit);
    EXPECT_EQ(b.LitMari(mar), 0u);
    EXPECT_EQ(b.LitFemme(mar), 0u);
    EXPECT_EQ(b.LitNoteMariage(mar), "");
    EXPECT_TRUE(b.LitAnMariage(mar).find_first_not_of(' ') == std::string::npos);
    EXPECT_TRUE(Mariages(p).empty());
    EXPECT_TRUE(Mariages(f).empty());
    EXPECT_TRUE(personnesDuMot("BOULANGER").empty());
    EXPECT_EQ(b.LitPere(k), p);
    EXPECT_EQ(b.LitMere(k), f);
    EXPECT_EQ(b.Tete().maxMariage, mar); // the number isn't reused
    EXPECT_TRUE(DeuxCotes(b));
}

TEST_F(Liaison, CreationSplitsNamesAndBuildsTheNote) {
    DefinitFormatDate("dd/mm/yyyy");
    auto& slots = b.TeteModifiable().rubriquesPersonne;
    slots[1] = {'+', '1', "CHR"};
    FicheCreation f = Fiche("DUPONT;Jean;Marie", "", 'H', "1750");
    f.lieuNaiss = "Saint Lo";
    f.lieuDeces = "Caen";
    f.rubriques[0] = {"1/1", "1700", "laboureur"}; // no date on this rubric
    f.rubriques[1] = {"12/5", "1750", "Saint Lo"};
    f.note = "{\\rtf1 du texte}";
    auto r = liens.CreePersonne(f);
    ASSERT_TRUE(r.ecrit);
    const auto n = r.personne;
    EXPECT_EQ(b.LitNom(n), "DUPONT");
    EXPECT_EQ(b.LitPrenom(n), "Jean");
    EXPECT_EQ(b.LitAutrePrenom(n), "Marie");
    EXPECT_EQ(b.LitNote(n), "|DUPONT \xB6Jean $Saint.Lo ~Caen\r\nOCCU \\laboureur"
                            "\r\nCHR 12/5/1750 +Saint.Lo\r\n\r\n{\\rtf1 du texte}");
    EXPECT_EQ(b.LieuNaiss(n), "Saint Lo");
    EXPECT_EQ(u.Messages(), std::vector<int>{}); // a birth year: no 620

    std::string nom = "DUPONT;Jean", prenom = "Marie", autres;
    DecoupeNoms(nom, prenom, autres);
    EXPECT_EQ(nom, "DUPONT");
    EXPECT_EQ(prenom, "Marie");
    EXPECT_EQ(autres, "Jean");
    nom = "DUPONT;Jean";
    prenom = autres = "";
    DecoupeNoms(nom, prenom, autres);
    EXPECT_EQ(prenom, "Jean");
    EXPECT_EQ(DateRubrique("12/5", "1750"), "12/5/1750");
    EXPECT_EQ(DateRubrique("12/5", ""), "12/5     ");
    EXPECT_EQ(DateRubrique("", "850"), " 850");
    EXPECT_EQ(DateRubrique("31/2", "1750"), "31/2 1750");
    // Only a first name is enough.
    EXPECT_TRUE(liens.CreePersonne(Fiche("", "Seul")).ecrit);
}

TEST_F(Liaison, NumberingFollowsAtOnce) {
    const auto dc = Homme("DeCujus", "1950");
    num.deCujus1.deCujus = dc;
    Calcul_Numeros_1(b, num);
    auto r = liens.CreeParent(dc, Cote::Pere, Fiche("MARTIN", "Pere", 'F', "1920"));
    EXPECT_EQ(b.LitSexe(r.personne), "H"); // a father is a man whatever the form said
    const auto pere = r.personne;
    EXPECT_EQ(num.deCujus1.Numero(pere), "2");
    u.reponses[637] = Reponse::Oui;
    r = liens.CreeEnfant(dc, Fiche("MARTIN", "Fils", 'H', "1980"));
    EXPECT_TRUE(num.deCujus1.Numerote(r.personne));
    // Persons the table doesn't hold: no rebuild; the table still grows.
    const auto x = Homme("X");
    const auto y = liens.CreePersonne(Fiche("Y", "y", 'H', "1990")).personne;
    liens.AttacheEnfant(x, y);
    EXPECT_FALSE(num.deCujus1.Numerote(y));
    EXPECT_GT(num.deCujus1.index.size(), y);
    u.reponses[617] = Reponse::Oui;
    liens.CoupeParent(dc, Cote::Pere);
    EXPECT_FALSE(num.deCujus1.Numerote(pere));
}

TEST_F(Liaison, RandomSequencesKeepBothSides) {
    std::mt19937 alea(1234);
    auto tirage = [&](std::uint32_t n) { return std::uniform_int_distribution<std::uint32_t>(0, n)(alea); };
    DialogueLiens d;
    d.boite = [&](const Boite&) {
        switch (tirage(2)) {
        case 0: return Reponse::Oui;
        case 1: return Reponse::Non;
        default: return Reponse::Annuler;
        }
    };
    d.saisie = [&](int) -> std::optional<std::string> {
        if (tirage(4) == 0) return std::nullopt;
        return std::string(tirage(1) ? "lien" : "");
    };
    Liens l(b, d);
    for (int i = 0; i < 12; ++i) liens.CreePersonne(Fiche("N" + std::to_string(i), "P", i % 3 == 2 ? 'I' : (i % 2 ? 'F' : 'H'), std::to_string(1800 + i * 7)));
    for (int pas = 0; pas < 1500; ++pas) {
        const std::uint32_t max = b.Tete().maxPersonne;
        auto qui = [&] { return tirage(max); }; // 0 is "nobody"
        const std::uint32_t a = qui(), c = qui();
        switch (tirage(13)) {
        case 0: l.AttacheParent(a, Cote::Pere, c); break;
        case 1: l.AttacheParent(a, Cote::Mere, c); break;
        case 2: l.CoupeParent(a, tirage(1) ? Cote::Pere : Cote::Mere); break;
        case 3: l.AttacheConjoint(a, c, tirage(1)); break;
        case 4: l.AttacheEnfant(a, c); break;
        case 5: l.CoupeEnfant(a, b.EnfantNo(a, static_cast<int>(tirage(3)) + 1)); break;
        case 6: l.SupprimeMariage(b.MariageNo(a, static_cast<int>(tirage(2)) + 1)); break;
        case 7: l.AjouteLien(a, c); break;
        case 8: l.Deplace(a, ListeOrdonnee::Mariages, static_cast<int>(tirage(3)), tirage(1)); break;
        case 9: l.SupprimePersonne(a); break;
        case 10: if (max < 60) l.CreeEnfant(a, Fiche("E", "e", tirage(1) ? 'H' : 'F', std::to_string(1800 + tirage(150)))); break;
        case 11: if (max < 60) l.CreeConjoint(a, Fiche("C", "c")); break;
        default: if (max < 60) l.CreeParent(a, tirage(1) ? Cote::Pere : Cote::Mere, Fiche("P", "p")); break;
        }
        ASSERT_TRUE(DeuxCotes(b)) << "after step " << pas;
    }
    m.Reouvre();
    EXPECT_TRUE(DeuxCotes(b));
}
