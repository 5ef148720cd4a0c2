// The person sheet without a window: loading, the validation in the order
// of its writes with each refusal, the creation of a person, the pending
// flags seen from the main window, and the link commands that write at once
// and then reload or validate.
#include "store/fichier_memoire.h"
#include "support/services_faux.h"
#include "text/dates.h"
#include "text/messages.h"
#include "ui/frm_misajour.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

// The modal forms of the sheet, answering from a script.
struct ChoixFaux : ChoixFiche {
    std::deque<std::uint32_t> personnes; // answers of Cree and Choisit; empty: 0
    std::vector<std::string> etiquettes;
    std::vector<Candidats> genres;
    std::optional<std::string> texte;
    std::uint32_t suivante() {
        if (personnes.empty()) return 0;
        auto p = personnes.front();
        personnes.pop_front();
        return p;
    }
    std::uint32_t Cree(const std::string& e) override {
        etiquettes.push_back(e);
        return suivante();
    }
    std::uint32_t Choisit(Candidats g, std::uint32_t, char, const std::string&) override {
        genres.push_back(g);
        return suivante();
    }
    std::optional<std::string> EditeTexte(const std::string&, const std::string&) override {
        return texte;
    }
};

// Louis MARTIN x Rose PETIT -> Jean (1880); Rose also has Paul (1885) with
// no father; Anne ROUX, alone.
struct Fiche : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    ChoixFaux choix;
    std::unique_ptr<MDIForm1> f;
    std::unique_ptr<FrmMisajour> fiche;
    std::uint32_t louis, rose, jean, paul, anne, mariage;

    void SetUp() override {
        DefinitFormatDate("dd/mm/yyyy");
        DefinitMessages({{666, "Enfants"}, {2000, "Demi (p\xE8re)"}, {2001, "Demi (m\xE8re)"},
                         {473, "Diff\xE8rent. "}, {474, "Naissance ?"}});
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        louis = b().CreePersonne("MARTIN", "Louis", "", 'H', "1850");
        rose = b().CreePersonne("PETIT", "Rose", "", 'F', "1855");
        mariage = b().CreeMariage(louis, rose, "1879");
        jean = Enfant(louis, rose, "MARTIN", "Jean", 'H', "1880");
        paul = Enfant(0, rose, "PETIT", "Paul", 'H', "1885");
        anne = b().CreePersonne("ROUX", "Anne", "", 'F', "1882");
        app.definitPersonneEnCours(jean);
    }
    void TearDown() override { DefinitMessages({}); }

    Base& b() { return app.base(); }
    std::uint32_t Enfant(std::uint32_t pere, std::uint32_t mere, const char* nom,
                         const char* prenom, char sexe, const char* an) {
        const std::uint32_t c = b().CreePersonne(nom, prenom, "", sexe, an);
        if (pere) b().EcritPere(c, pere), b().MajEnfants(pere, c, 'A');
        if (mere) b().EcritMere(c, mere), b().MajEnfants(mere, c, 'A');
        return c;
    }
    FrmMisajour& Ouvre(std::uint32_t n) {
        fiche.reset(); // one sheet at a time, as in the program
        f->personneFiche = n;
        fiche = std::make_unique<FrmMisajour>(*f, choix);
        return *fiche;
    }
    std::vector<std::uint32_t> Numeros(const std::vector<LigneFiche>& l) {
        std::vector<std::uint32_t> r;
        for (const auto& x : l) r.push_back(x.numero);
        return r;
    }
};

TEST_F(Fiche, LoadsFieldsListsAndFamilyCodes) {
    auto& s1 = Ouvre(rose);
    EXPECT_EQ(s1.Valeur(Champ::Nom), "PETIT");
    EXPECT_EQ(s1.Sexe(), 'F');
    EXPECT_EQ(s1.Valeur(Champ::Naiss), "1855");
    EXPECT_EQ(Numeros(s1.Conjoints()), std::vector<std::uint32_t>{louis});
    EXPECT_EQ(s1.Valeur(Champ::Dmar), "1879");
    // Jean is of the one marriage (no letter), Paul lacks a father.
    ASSERT_EQ(Numeros(s1.Enfants()), (std::vector<std::uint32_t>{jean, paul}));
    EXPECT_EQ(s1.Enfants()[0].texte, "");
    EXPECT_EQ(s1.Enfants()[1].texte, "?");
    EXPECT_EQ(s1.LibelleEnfants(), "Enfants (2)");
    EXPECT_FALSE(s1.Pendante());

    // A second marriage gives letters; a child with both parents outside
    // any marriage is "¥".
    const std::uint32_t henri = b().CreePersonne("DURAND", "Henri", "", 'H', "1840");
    b().CreeMariage(henri, rose);
    const std::uint32_t leon = b().CreePersonne("X", "Leon", "", 'H', "1830");
    const std::uint32_t eve = Enfant(leon, rose, "X", "Eve", 'F', "1890");
    auto& s2 = Ouvre(rose);
    ASSERT_EQ(s2.Conjoints().size(), 2u);
    EXPECT_EQ(s2.Enfants()[0].texte, "a"); // of the first marriage in the list
    EXPECT_EQ(s2.Enfants()[2].numero, eve);
    EXPECT_EQ(s2.Enfants()[2].texte, "\xA5");

    // Jean's siblings: Paul is a half brother through the mother.
    auto& s3 = Ouvre(jean);
    ASSERT_EQ(Numeros(s3.Fratrie()), (std::vector<std::uint32_t>{paul, eve}));
    EXPECT_EQ(s3.Fratrie()[0].texte, "Demi (m\xE8re)");
    EXPECT_EQ(s3.Pere().numero, louis);
    EXPECT_EQ(s3.Mere().numero, rose);
    EXPECT_NE(s3.Statut().find("MARTIN"), std::string::npos);
}

TEST_F(Fiche, ValidationWritesIdentityYearsTextAndMovesTheChild) {
    auto& s1 = Ouvre(paul);
    // A name kept as references ("Зыков") splits beside them.
    s1.Modifie(Champ::Nom, "&#1047;&#1099;&#1082;&#1086;&#1074;;Paul;Marie");
    s1.Modifie(Champ::Prenom, "");
    s1.Modifie(Champ::JNaiss, "12/5");
    s1.Quitte(Champ::JNaiss);
    s1.Modifie(Champ::Naiss, "1878"); // now before Jean
    s1.Modifie(Champ::LieuNaiss, "Saint Lo #2");
    s1.Modifie(Champ::IndL, "laboureur", 0);
    EXPECT_TRUE(f->fichePendante);
    ASSERT_TRUE(s1.C_Maj_Click());
    EXPECT_EQ(b().LitIdentite(paul), "&#1047;&#1099;&#1082;&#1086;&#1074;;Paul;Marie;12/5;");
    EXPECT_EQ(b().LitAnNaiss(paul), "1878");
    EXPECT_EQ(b().LieuNaiss(paul), "Saint Lo #2");
    EXPECT_NE(b().LitNote(paul).find("OCCU \\laboureur"), std::string::npos);
    // Rose's list is by birth year again.
    EXPECT_EQ(b().EnfantNo(rose, 1), paul);
    EXPECT_EQ(b().EnfantNo(rose, 2), jean);
    EXPECT_EQ(s1.Valeur(Champ::Prenom), "Paul");
    EXPECT_EQ(s1.Valeur(Champ::AutresPrenoms), "Marie");
    EXPECT_EQ(s1.Aide(), 623);
    EXPECT_FALSE(f->fichePendante);
    EXPECT_TRUE(s.boites.informations.empty());

    // Under sort mode "2" a new name moves the person in the sort table.
    b().TeteModifiable().modeTri = '2';
    b().OublieCles();
    b().TriTable();
    const auto nb = b().TablePersonnes().taille();
    s1.Modifie(Champ::Nom, "AAA");
    ASSERT_TRUE(s1.C_Maj_Click());
    EXPECT_EQ(b().TriFiche(1), paul);
    EXPECT_EQ(b().TablePersonnes().taille(), nb);
}

TEST_F(Fiche, RefusalsWriteNothingAndKeepTheSheetPending) {
    auto& s1 = Ouvre(jean);
    const std::string avant = b().LitIdentite(jean);
    // 620 is only a warning.
    s1.Modifie(Champ::Naiss, "");
    s1.Modifie(Champ::Nom, " ");
    s1.Modifie(Champ::Prenom, "");
    EXPECT_FALSE(s1.C_Maj_Click());
    EXPECT_EQ(s.boites.informations, (std::vector<int>{620, 621}));
    EXPECT_EQ(b().LitIdentite(jean), avant);
    EXPECT_EQ(b().LitAnNaiss(jean), "1880");
    EXPECT_TRUE(f->fichePendante);

    // A married or parent person keeps its sex; a bare one changes.
    auto& s2 = Ouvre(rose);
    s2.ChoisitSexe('H');
    s.boites.informations.clear();
    EXPECT_FALSE(s2.C_Maj_Click());
    EXPECT_EQ(s.boites.informations, std::vector<int>{622});
    EXPECT_EQ(s2.Sexe(), 'F');
    EXPECT_EQ(b().LitSexe(rose), "F");
    auto& s3 = Ouvre(anne);
    s3.ChoisitSexe('I');
    EXPECT_TRUE(s3.C_Maj_Click());
    EXPECT_EQ(b().LitSexe(anne), "I");

    // An emptied link text refuses after what was written before it.
    b().MajLiens(anne, jean, "Parrain", 'A');
    auto& s4 = Ouvre(anne);
    s4.SelectionneLien(0);
    s4.Modifie(Champ::Naiss, "1883");
    s4.Modifie(Champ::Lien, "");
    s.boites.informations.clear();
    EXPECT_FALSE(s4.C_Maj_Click());
    EXPECT_EQ(s.boites.informations, std::vector<int>{631});
    EXPECT_EQ(b().LitAnNaiss(anne), "1883");
    s4.Modifie(Champ::Lien, "Marraine");
    EXPECT_TRUE(s4.C_Maj_Click());
    EXPECT_EQ(s4.LiensFiche().at(0).texte, "Marraine");
}

TEST_F(Fiche, MarriageFieldsAreWrittenWithTheSelectedMarriage) {
    auto& s1 = Ouvre(louis);
    ASSERT_EQ(s1.MariageSelectionne(), 0);
    s1.Modifie(Champ::JMar, "3/2");
    s1.Modifie(Champ::LieuMar, "Vire");
    s1.Modifie(Champ::Fmar, "1900");
    EXPECT_TRUE(f->mariagePendant);
    ASSERT_TRUE(s1.C_Maj_Click());
    EXPECT_EQ(b().LitNoteMariage(mariage), "3/2 @Vire");
    EXPECT_EQ(b().LitAnFin(mariage), "1900");
    EXPECT_EQ(b().LieuMariage(mariage), "Vire");
    EXPECT_FALSE(f->mariagePendant);
    // Rose's sheet shows the same marriage.
    EXPECT_EQ(Ouvre(rose).Valeur(Champ::LieuMar), "Vire");
}

TEST_F(Fiche, EventsThatDisagreeAreOfferedToTheEditor) {
    const std::uint32_t e = b().CreeEvtPersonne(jean, 0, "BIRT", "Caen");
    auto& s1 = Ouvre(jean);
    std::vector<std::uint32_t> edites;
    s1.DefinitEditeurEvenement([&](std::uint32_t ev, const std::string& jour, const std::string& an,
                                   const std::string& lieu) {
        edites.push_back(ev);
        EXPECT_EQ(jour, "1/2");
        EXPECT_EQ(an, "1880");
        EXPECT_EQ(lieu, "Bayeux");
    });
    s1.Modifie(Champ::JNaiss, "1/2");
    s1.Modifie(Champ::LieuNaiss, "Bayeux");
    s.boites.reponses = {Reponse::Non};
    ASSERT_TRUE(s1.C_Maj_Click());
    EXPECT_EQ(s.boites.questions, std::vector<int>{msg_fiche::TexteSeul});
    EXPECT_TRUE(edites.empty());
    s.boites.reponses = {Reponse::Oui};
    ASSERT_TRUE(s1.C_Maj_Click());
    EXPECT_EQ(edites, std::vector<std::uint32_t>{e});
    // Agreeing data ask nothing.
    b().EcritDateEvt(e, Conv_DateSerie("1/2/1880"));
    b().EcritEvt(e, std::string("Bayeux") + '\0' + b().TitreEvt(e) + '\0' + "BIRT");
    s.boites.questions.clear();
    ASSERT_TRUE(s1.C_Maj_Click());
    EXPECT_TRUE(s.boites.questions.empty());
}

TEST_F(Fiche, EmptySheetCreatesAPerson) {
    auto& s1 = Ouvre(0);
    EXPECT_TRUE(s1.Nouvelle());
    EXPECT_EQ(s1.Aide(), 93);
    s1.Modifie(Champ::Prenom, "Seul");
    const auto max = b().Tete().maxPersonne;
    ASSERT_TRUE(s1.C_Maj_Click());
    EXPECT_EQ(s.boites.informations, std::vector<int>{620});
    EXPECT_EQ(s1.Personne(), max + 1);
    EXPECT_EQ(f->personneFiche, max + 1);
    EXPECT_EQ(b().LitPrenom(max + 1), "Seul");
    EXPECT_EQ(s1.Aide(), 626);

    auto& s2 = Ouvre(0);
    s2.Modifie(Champ::Naiss, "1900");
    EXPECT_FALSE(s2.C_Maj_Click());
    EXPECT_EQ(b().Tete().maxPersonne, max + 1);
}

TEST_F(Fiche, PendingChangesAreSettledWhereverTheSheetIsLeft) {
    auto& s1 = Ouvre(jean);
    s1.Modifie(Champ::LieuDeces, "Paris");
    EXPECT_TRUE(f->fichePendante);
    // No: the edits are dropped when the sheet moves.
    s1.Montre(anne);
    EXPECT_EQ(s.boites.questions, std::vector<int>{847});
    EXPECT_EQ(b().LieuDeces(jean), "");
    EXPECT_EQ(s1.Personne(), anne);
    // Yes: validated by the main window's guard.
    s1.Modifie(Champ::LieuDeces, "Lyon");
    s.boites.reponses = {Reponse::Oui};
    f->Confirme_Fiche_En_Cours();
    EXPECT_EQ(b().LieuDeces(anne), "Lyon");
    EXPECT_FALSE(f->fichePendante);
    // A marriage click asks first when the marriage holds edits.
    auto& s2 = Ouvre(rose);
    s2.Modifie(Champ::Dmar, "1878");
    s.boites.questions.clear();
    s.boites.reponses = {Reponse::Oui};
    s2.SelectionneMariage(-1);
    EXPECT_EQ(s.boites.questions, std::vector<int>{847});
    EXPECT_EQ(b().LitAnMariage(mariage), "1878");
    // The number field: bad entries show E_Indice; history is newest first.
    EXPECT_FALSE(s2.AllerIndice("abc"));
    EXPECT_TRUE(s2.IndiceFaux());
    EXPECT_FALSE(s2.AllerIndice("999"));
    EXPECT_TRUE(s2.AllerIndice(std::to_string(louis)));
    EXPECT_EQ(s2.Historique().front(), louis);
    s2.ChoisitHistorique(1);
    EXPECT_EQ(s2.Personne(), rose);
    // Closing the sheet leaves no callback behind.
    fiche.reset();
    EXPECT_FALSE(f->valideFiche);
}

TEST_F(Fiche, LinkCommandsWriteAtOnceThenReloadOrValidate) {
    // Paul takes Louis as father: 609 is not asked (Jean has one), the
    // parents are married already.
    auto& s1 = Ouvre(paul);
    choix.personnes = {louis};
    s1.C_Rechpere();
    EXPECT_EQ(b().LitPere(paul), louis);
    EXPECT_EQ(s1.Pere().numero, louis);
    EXPECT_EQ(choix.genres, std::vector<Candidats>{Candidats::Pere});

    // Pending edits are validated after the link.
    s1.Modifie(Champ::LieuDeces, "Rouen");
    s.boites.reponses = {Reponse::Oui};
    s1.C_Spere();
    EXPECT_EQ(b().LitPere(paul), 0u);
    EXPECT_EQ(b().LieuDeces(paul), "Rouen");

    // A spouse for Anne (search path), then cut it: No keeps it.
    auto& s2 = Ouvre(anne);
    choix.personnes = {paul};
    s2.C_Rechconjoint();
    ASSERT_EQ(Numeros(s2.Conjoints()), std::vector<std::uint32_t>{paul});
    s.boites.reponses = {Reponse::Non};
    s2.C_Smar();
    EXPECT_EQ(s2.Conjoints().size(), 1u);
    s.boites.reponses = {Reponse::Oui};
    s2.C_Smar();
    EXPECT_TRUE(s2.Conjoints().empty());

    // A free link, its text asked until given, not the other way.
    std::deque<std::optional<std::string>> textes = {"", "Voisine"};
    s2.DefinitSaisie([&](int m) {
        EXPECT_EQ(m, 633);
        auto t = textes.front();
        textes.pop_front();
        return t;
    });
    choix.personnes = {jean};
    s.boites.reponses = {Reponse::Non};
    s2.CmdRechLien();
    ASSERT_EQ(s2.LiensFiche().size(), 1u);
    EXPECT_EQ(s2.LiensFiche()[0].texte, "Voisine");
    EXPECT_EQ(b().LienNo(jean, 1), 0u);

    // Refusals: a person with a father can't go, a child needs a sex.
    s.boites.informations.clear();
    Ouvre(jean).Supprime();
    EXPECT_EQ(s.boites.informations, std::vector<int>{615});
    const std::uint32_t x = b().CreePersonne("X", "Y", "", 'I', "");
    auto& s3 = Ouvre(x);
    s3.CmdRechEnft();
    EXPECT_EQ(s.boites.informations.back(), 640);
    s.boites.reponses = {Reponse::Oui};
    s3.Supprime();
    EXPECT_EQ(s3.Aide(), 619);
    EXPECT_TRUE(b().LitIdentite(x).empty());
}

} // namespace
