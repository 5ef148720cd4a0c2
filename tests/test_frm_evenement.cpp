// The event list and the event form over a small family: a new event from a
// sheet and the roles it gives, the refusals (a date that is none, a role of
// the other sex), persons added from the picker, dropped, created, moved
// and taken away, the pending question, the list's orders and its jump to a
// year, deletion, and the sheet's own event commands.
#include "store/fichier.h"
#include "store/fichier_memoire.h"
#include "support/francais.h"
#include "support/pages_textes.h"
#include "support/services_faux.h"
#include "text/calendrier.h"
#include "text/messages.h"
#include "text/tags.h"
#include "ui/frm_evenement.h"
#include "ui/frm_impression.h"
#include "ui/frm_misajour.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

using namespace sylvane;
using test::ServicesFaux;

namespace {

struct ChoixFaux : ChoixFiche {
    std::deque<std::uint32_t> crees;
    std::vector<std::string> etiquettes;
    std::optional<std::string> texte;
    std::uint32_t Cree(const std::string& e) override {
        etiquettes.push_back(e);
        if (crees.empty()) return 0;
        auto n = crees.front();
        crees.pop_front();
        return n;
    }
    std::uint32_t Choisit(Candidats, std::uint32_t, char, const std::string&) override { return 0; }
    std::optional<std::string> EditeTexte(const std::string&, const std::string&) override {
        return texte;
    }
};

using Paires = std::vector<std::pair<std::uint32_t, std::string>>;

struct Famille : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    ChoixFaux choix;
    std::unique_ptr<MDIForm1> f;
    std::uint32_t pere, mere, enfant, parrain, marraine, inconnu;

    void SetUp() override {
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        pere = b().CreePersonne("Martin", "Jean", "", 'H', "1820");
        mere = b().CreePersonne("Durand", "Marie", "", 'F', "1822");
        b().CreeMariage(pere, mere, "1845");
        enfant = b().CreePersonne("Martin", "Paul", "", 'H', "1850");
        b().EcritPere(enfant, pere);
        b().EcritMere(enfant, mere);
        b().MajEnfants(pere, enfant, 'A');
        b().MajEnfants(mere, enfant, 'A');
        parrain = b().CreePersonne("Leroy", "Marc", "", 'H', "1830");
        marraine = b().CreePersonne("Leroy", "Anne", "", 'F', "1832");
        inconnu = b().CreePersonne("X", "Camille", "", 'I', "1840");
        app.definitPersonneEnCours(enfant);
    }
    Base& b() { return app.base(); }
    Paires Roles(std::uint32_t e) {
        Paires v;
        for (std::uint32_t p : PersonnesEvenement(b(), e))
            v.emplace_back(p, RoleDansEvenement(b(), p, e));
        std::sort(v.begin(), v.end());
        return v;
    }
    std::unique_ptr<FrmDesEvt> Forme(std::uint32_t e, std::uint32_t proprietaire) {
        return std::make_unique<FrmDesEvt>(*f, choix, e, proprietaire);
    }
};

} // namespace

TEST_F(Famille, ANewBaptismFromTheSheetGivesTheRolesOfItsOwnerAndItsWitnesses) {
    auto d = Forme(0, enfant);
    EXPECT_EQ(d->Etiquette(), "0E");
    EXPECT_EQ(d->Valeur(ChampEvt::Titre), "Paul Martin");
    const auto types = d->Types();
    ASSERT_NE(std::find(types.begin(), types.end(), Message(782)), types.end());
    d->ChoisitType(Message(782)); // baptism
    EXPECT_EQ(d->Roles(), (std::vector<std::string>{Message(750), Message(681), Message(683),
                                                     Message(912), Message(913)}));
    d->Modifie(ChampEvt::Date, "14 mars 1850");
    d->Modifie(ChampEvt::Lieu, "Caen");
    EXPECT_EQ(d->JourEvt(), "jeudi 14 mars 1850");
    EXPECT_TRUE(d->Pendant());
    ASSERT_TRUE(d->CmdMaj());
    const std::uint32_t e = d->Numero();
    ASSERT_NE(e, 0u);
    EXPECT_EQ(d->Etiquette(), std::to_string(e) + "E");
    EXPECT_FALSE(d->Pendant());
    EXPECT_EQ(Roles(e), (Paires{{pere, "FATH"}, {mere, "MOTH"}, {enfant, "CHIL"}}));
    EXPECT_EQ(b().DateEvt(e), JourSerie({14, 3, 1850}));
    EXPECT_EQ(b().TagEvt(e), "CHR");

    // The godfather from the picker, the godmother dropped on the grid.
    d->ChoisitRole(Message(912));
    s.selecteur.reponses = {parrain};
    EXPECT_TRUE(d->CmdRechLien());
    d->ChoisitRole(Message(913));
    EXPECT_FALSE(d->RecoitPersonne(parrain)); // a man is no godmother
    EXPECT_TRUE(d->RecoitPersonne(marraine));
    EXPECT_EQ(Roles(e), (Paires{{pere, "FATH"}, {mere, "MOTH"}, {enfant, "CHIL"}, {parrain, "GODF"},
                                {marraine, "GODM"}}));
    EXPECT_EQ(d->LibelleOnglet(0), Message(msg_evt::OngletRoles) + Message(849));
    EXPECT_EQ(d->LibelleOnglet(1), Message(msg_evt::OngletDocuments));
    // The godmother's role is none of those a drop checks silently: the
    // man dropped there was refused with its box.
    EXPECT_EQ(s.boites.informations, std::vector<int>{936});
}

TEST_F(Famille, RefusalsLeaveTheBaseAsItWas) {
    auto d = Forme(0, enfant);
    d->ChoisitType(Message(754));
    d->Modifie(ChampEvt::Date, "31/2/1850");
    EXPECT_FALSE(d->CmdMaj());
    EXPECT_EQ(s.boites.informations, std::vector<int>{931});
    EXPECT_EQ(b().Tete().maxEvenement, 0u);
    EXPECT_TRUE(d->Pendant());
    // The tag form of a date is read too.
    d->Modifie(ChampEvt::Date, "12 MAR 1850");
    ASSERT_TRUE(d->CmdMaj());
    const std::uint32_t e = d->Numero();
    // A role of one sex refuses a person of the other, or of no sex.
    d->ChoisitRole(Message(683));
    s.selecteur.reponses = {parrain};
    EXPECT_FALSE(d->CmdRechLien());
    d->ChoisitRole(Message(911));
    EXPECT_TRUE(d->AjoutePersonne(inconnu)); // a witness may be anyone
    EXPECT_EQ(s.boites.informations, (std::vector<int>{931, 936}));
    // No role chosen: nobody is added.
    auto autre = Forme(e, 0);
    EXPECT_FALSE(autre->AjoutePersonne(parrain));
    EXPECT_EQ(s.boites.informations.back(), msg_evt::ChoisirRole);
    // Changing the witness to the mother's role is refused for its sex.
    autre->SelectionnePersonne(0);
    ASSERT_EQ(autre->Personnes()[0].numero, inconnu);
    autre->ChoisitRole(Message(683));
    EXPECT_TRUE(autre->CmdMaj());
    EXPECT_EQ(s.boites.informations.back(), 936);
    EXPECT_EQ(RoleDansEvenement(b(), inconnu, e), "WITN");
}

TEST_F(Famille, PersonsAreMovedTakenAwayAndTheirRolesChanged) {
    const std::uint32_t e = Creer_Evenement(b(), enfant, "BIRT", JourSerie({1, 2, 1850}), "Caen");
    auto d = Forme(e, 0);
    ASSERT_EQ(d->Personnes().size(), 3u);
    const std::uint32_t premier = d->Personnes()[0].numero, second = d->Personnes()[1].numero;
    d->SelectionnePersonne(0);
    EXPECT_FALSE(d->CmdLienUp());
    EXPECT_TRUE(d->CmdLienDown());
    EXPECT_EQ(d->Personnes()[0].numero, second);
    EXPECT_EQ(d->Personnes()[1].numero, premier);
    EXPECT_EQ(d->PersonneSelectionnee(), 1);
    // The child becomes a witness: "M" on its side only.
    d->SelectionnePersonne(2);
    ASSERT_EQ(d->Personnes()[2].numero, enfant);
    d->ChoisitRole(Message(911));
    EXPECT_TRUE(d->CmdMaj());
    EXPECT_EQ(RoleDansEvenement(b(), enfant, e), "WITN");
    EXPECT_TRUE(d->CmdSupLien());
    EXPECT_EQ(d->Personnes().size(), 2u);
    EXPECT_EQ(b().EvtNo(enfant, 1), 0u);
}

TEST_F(Famille, APersonCreatedForARoleTakesTheEventsDateAndItsFamilyLinks) {
    const std::uint32_t e = Creer_Evenement(b(), parrain, "MARR", JourSerie({3, 5, 1855}), "Lisieux");
    auto d = Forme(e, parrain);
    d->ChoisitRole(Message(851)); // the wife
    choix.crees = {marraine};
    EXPECT_TRUE(d->CmdCreLien());
    EXPECT_EQ(choix.etiquettes, std::vector<std::string>{"Femme"});
    // The new wife and the husband of the event are married, with its year
    // and place.
    const auto m = b().Mariages(parrain);
    ASSERT_EQ(m.size(), 1u);
    EXPECT_EQ(b().LitFemme(m[0]), marraine);
    EXPECT_EQ(b().LitAnMariage(m[0]), "1855");
    EXPECT_EQ(b().LieuMariage(m[0]), "Lisieux");

    // A child created for a baptism is born on its day and place.
    const std::uint32_t bapteme =
        CreeEvenement(b(), {JourSerie({2, 9, 1860}), "Bayeux", "", "CHR", ""});
    auto c = Forme(bapteme, 0);
    c->ChoisitRole(Message(750));
    const std::uint32_t nouveau = b().CreePersonne("Leroy", "Luc", "", 'H', "");
    choix.crees = {nouveau};
    EXPECT_TRUE(c->CmdCreLien());
    EXPECT_EQ(b().LitAnNaiss(nouveau), "1860");
    EXPECT_EQ(b().LieuNaiss(nouveau), "Bayeux");
    // Its father added next becomes its father, after the marriage question.
    c->ChoisitRole(Message(681));
    s.selecteur.reponses = {parrain};
    EXPECT_TRUE(c->CmdRechLien());
    EXPECT_EQ(b().LitPere(nouveau), parrain);
}

TEST_F(Famille, APendingFormAsksBeforeClosingAndAnEditedCommentIsKept) {
    const std::uint32_t e = Creer_Evenement(b(), enfant, "BIRT", 0, "");
    auto d = Forme(e, enfant);
    EXPECT_TRUE(d->CmdQuitter());
    EXPECT_TRUE(s.boites.questions.empty());
    choix.texte = "Acte 12";
    d->CmdTxtComment();
    EXPECT_EQ(d->LibelleOnglet(2), Message(msg_evt::OngletCommentaire) + Message(849));
    s.boites.reponses = {Reponse::Non};
    EXPECT_TRUE(d->CmdQuitter());
    EXPECT_EQ(b().NoteEvt(e), "");
    d->CmdTxtComment();
    s.boites.reponses = {Reponse::Oui};
    EXPECT_TRUE(d->CmdQuitter());
    EXPECT_EQ(s.boites.questions, (std::vector<int>{933, 933}));
    EXPECT_EQ(b().NoteEvt(e), "Acte 12");
}

TEST_F(Famille, AnEventThatDisagreesWithTheSheetOffersToCorrectIt) {
    const std::uint32_t e = Creer_Evenement(b(), enfant, "BIRT", JourSerie({1, 2, 1850}), "");
    auto d = Forme(e, enfant);
    d->Modifie(ChampEvt::Date, "1/2/1851");
    d->Modifie(ChampEvt::Lieu, "Caen");
    s.boites.reponses = {Reponse::Oui};
    ASSERT_TRUE(d->CmdMaj());
    EXPECT_EQ(s.boites.questions, std::vector<int>{939});
    EXPECT_EQ(b().LitAnNaiss(enfant), "1851");
    EXPECT_EQ(b().LieuNaiss(enfant), "Caen");
    // Now they agree: no question.
    d->Modifie(ChampEvt::Titre, "Naissance de Paul");
    ASSERT_TRUE(d->CmdMaj());
    EXPECT_EQ(s.boites.questions.size(), 1u);
}

TEST_F(Famille, TheListShowsEveryEventInDateOrderAndJumpsToAYear) {
    const std::uint32_t e1850 = Creer_Evenement(b(), enfant, "BIRT", JourSerie({1, 2, 1850}), "Caen");
    const std::uint32_t e1820 = Creer_Evenement(b(), pere, "BIRT", JourSerie({5, 6, 1820}), "Bayeux");
    const std::uint32_t e1900 = Creer_Evenement(b(), pere, "DEAT", JourSerie({7, 8, 1900}), "Alen\xE7on");
    FrmLstEvt l(*f);
    ASSERT_EQ(l.Nombre(), 3u);
    EXPECT_EQ(l.Numero(0), e1820);
    EXPECT_EQ(l.Ligne(1), (std::array<std::string, 5>{"01/02/1850", "1850", "Caen", Message(754),
                                                       std::to_string(e1850)}));
    EXPECT_EQ(l.Position("1821"), 1u);
    EXPECT_EQ(l.Position("1800"), 0u);
    EXPECT_EQ(l.Position("2000"), 2u); // past the last: the last
    EXPECT_FALSE(l.Position("18a0"));
    l.Trie(OrdreEvt::Lieu, false);
    EXPECT_EQ(l.Numero(0), e1900); // Alençon, Bayeux, Caen
    EXPECT_EQ(l.RangDe(e1850), 2u);
    l.Trie(OrdreEvt::Date, true);
    EXPECT_EQ(l.Numero(0), e1900);
    EXPECT_EQ(l.RangDe(e1820), 2u);
    // A year typed goes back to the date order.
    EXPECT_EQ(l.Position("1850"), 1u);
    EXPECT_EQ(l.Ordre(), OrdreEvt::Date);
    EXPECT_FALSE(l.Descendant());

    // Opening and adding go through the event forms, one per event.
    l.CmdMaj(0);
    l.CmdAjout();
    EXPECT_EQ(s.fenetres.numeros, (std::vector<std::pair<std::string, std::uint32_t>>{
                                      {"FrmDesEvt", e1820}, {"FrmDesEvt", 0}}));
    EXPECT_EQ(DemandeEvenement().evenement, 0u);

    // Deleting asks first; No keeps the event.
    s.boites.reponses = {Reponse::Non};
    EXPECT_FALSE(l.CmdSupp(1));
    s.boites.reponses = {Reponse::Oui};
    EXPECT_TRUE(l.CmdSupp(1));
    EXPECT_EQ(l.Nombre(), 2u);
    EXPECT_EQ(b().PosEvt(e1850), 0u);
    EXPECT_EQ(RoleDansEvenement(b(), enfant, e1850), "");
    EXPECT_EQ(RoleDansEvenement(b(), enfant, e1900), "SON");
    EXPECT_EQ(s.boites.questions, (std::vector<int>{617, 617}));
}

TEST_F(Famille, TheSheetsEventCommandsOpenTheEventOrMakeIt) {
    // No event yet: one is made with the sheet's date and place.
    const std::uint32_t e = EvenementDeFiche(*f, enfant, "BIRT", "12/3", "1850", "Caen");
    ASSERT_NE(e, 0u);
    EXPECT_EQ(b().DateEvt(e), JourSerie({12, 3, 1850}));
    EXPECT_EQ(Roles(e), (Paires{{pere, "FATH"}, {mere, "MOTH"}, {enfant, "CHIL"}}));
    // The same command finds it again.
    EXPECT_EQ(EvenementDeFiche(*f, enfant, "BIRT", "12/3", "1850", "Caen"), e);
    // A day that is no date is refused.
    EXPECT_EQ(EvenementDeFiche(*f, enfant, "DEAT", "45/3", "1900", ""), 0u);
    EXPECT_EQ(s.boites.informations, std::vector<int>{931});
    // A marriage's event names both spouses.
    const std::uint32_t m = b().Mariages(pere).front();
    const std::uint32_t em = EvenementDeFiche(*f, pere, "MARR", "", "1845", "Caen", m);
    EXPECT_EQ(Roles(em), (Paires{{pere, "HUSB"}, {mere, "WIFE"}}));
    EXPECT_EQ(EvenementDeFiche(*f, mere, "MARR", "", "", "", m), em);
}

TEST_F(Famille, TheRepairGivesRolesToThePersonsOfOldCaptures) {
    const std::uint32_t e = CreeEvenement(
        b(), {JourSerie({4, 5, 1870}), "Caen", "", "MARR",
              "Epoux Jean Martin P\xE8re feu Louis M\xE8re Anne Epouse Marie Durand P\xE8re Paul"});
    // The register capture left every role empty; the list is in capture order.
    for (std::uint32_t p : {parrain, marraine, enfant, mere, pere}) AjouteRole(b(), e, p, "");
    FrmLstEvt l(*f);
    EXPECT_EQ(l.Rectification(), 5);
    EXPECT_EQ(RoleDansEvenement(b(), pere, e), "HUSB");
    EXPECT_EQ(RoleDansEvenement(b(), mere, e), "P\xE8re d\xE9" "c\xE9" "d\xE9");
    EXPECT_EQ(RoleDansEvenement(b(), enfant, e), "MOTH");
    EXPECT_EQ(RoleDansEvenement(b(), marraine, e), "WIFE");
    EXPECT_EQ(RoleDansEvenement(b(), parrain, e), "FATH");
    EXPECT_FALSE(s.panneau.visible);
    // Nothing is left to correct.
    EXPECT_EQ(l.Rectification(), 0);
}

namespace {

// Windows that make the document form as the program does: it takes the
// demand waiting when it opens.
struct FenetresDocuments : test::FenetresFausses {
    std::vector<std::unique_ptr<FrmDesImage>> formes;
    MDIForm1* f = nullptr;
    void Ouvre(const std::string& nom) override {
        test::FenetresFausses::Ouvre(nom);
        const DemandeDocument& d = DocumentDemande();
        if (nom.rfind("FrmDesImage", 0) == 0 && d.active)
            formes.push_back(std::make_unique<FrmDesImage>(*f, d.document, d.origine));
    }
};

struct Documents : Famille {
    FenetresDocuments fen;
    std::unique_ptr<MDIForm1> g;
    void SetUp() override {
        Famille::SetUp();
        g = std::make_unique<MDIForm1>(
            app, ServicesUi{s.boites, s.fichiers, s.panneau, fen, s.selecteur});
        fen.f = g.get();
    }
    void TearDown() override { DefinitChoixDocument({}); }
};

} // namespace

TEST_F(Documents, TheEventsDocumentsAreMadeChosenMovedViewedAndCut) {
    // A new event is written before it takes a document; the new
    // document's form is opened for it, and its save joins it to the event.
    FrmDesEvt forme(*g, choix, 0, enfant);
    forme.ChoisitType(Conv_LibelleTag("CHR"));
    ASSERT_TRUE(forme.CmdCreationDoc());
    const std::uint32_t e = forme.Numero();
    ASSERT_NE(e, 0u);
    ASSERT_EQ(fen.formes.size(), 1u);
    FrmDesImage& nouveau = *fen.formes.back();
    nouveau.intitule = "Acte de bapteme";
    nouveau.fichier = "/d/acte.tga";
    ASSERT_TRUE(nouveau.Enregistre());
    const std::uint32_t acte = nouveau.Document();
    EXPECT_EQ(b().DocEvtNo(e, 1), acte);

    // An existing document from the picker, once only.
    const std::uint32_t portrait = b().CreeDoc("Portrait", "/d/portrait.jpg", "");
    DefinitChoixDocument([portrait](MDIForm1&) { return portrait; });
    ASSERT_TRUE(forme.CmdNouveauDoc());
    EXPECT_FALSE(forme.CmdNouveauDoc());
    ASSERT_EQ(forme.Documents().size(), 2u);
    EXPECT_EQ(forme.Documents()[0].numero, portrait);

    // Moved within the list; the ends refuse.
    EXPECT_FALSE(forme.CmdDocUp(0));
    EXPECT_FALSE(forme.CmdDocDown(1));
    ASSERT_TRUE(forme.CmdDocDown(0));
    EXPECT_EQ(b().DocEvtNo(e, 1), acte);
    EXPECT_EQ(b().DocEvtNo(e, 2), portrait);
    EXPECT_EQ(forme.Documents()[1].numero, portrait);

    // Viewing goes through the choice of a viewer: the scan is missing
    // (700 and its form), the portrait is a picture.
    ecrireTout(fs, "/d/portrait.jpg", "\xFF\xD8\xFF");
    EXPECT_EQ(forme.CmdVisuImage(0), Visionneuse::Description);
    EXPECT_EQ(s.boites.informations, std::vector<int>{700});
    EXPECT_TRUE(fen.EstOuverte(FormulaireDocument("FrmDesImage", acte)));
    EXPECT_EQ(forme.CmdVisuImage(1), Visionneuse::Image);
    EXPECT_TRUE(fen.EstOuverte(FormulaireDocument("FrmImage", portrait)));
    EXPECT_EQ(forme.CmdVisuImage(2), Visionneuse::Aucune);
    ASSERT_TRUE(forme.CmdDesImage(1));
    EXPECT_TRUE(fen.EstOuverte(FormulaireDocument("FrmDesImage", portrait)));

    // Cut after 617: No keeps it, Yes cuts it from the event; the record stays.
    EXPECT_FALSE(forme.CmdSuppDoc(1));
    s.boites.reponses = {Reponse::Oui};
    ASSERT_TRUE(forme.CmdSuppDoc(1));
    EXPECT_EQ(b().DocEvtNo(e, 1), acte);
    EXPECT_EQ(b().DocEvtNo(e, 2), 0u);
    EXPECT_NE(b().PosDoc(portrait), 0u);
    EXPECT_EQ(s.boites.questions, (std::vector<int>{617, 617}));
    EXPECT_EQ(forme.Documents().size(), 1u);
}

TEST_F(Documents, ThePersonsDocumentsTakeTheSameCommands) {
    const std::uint32_t acte = b().CreeDoc("Acte", "", "");
    DocumentsDe docs(*g, OrigineDocument::Genre::Personne, [this] { return enfant; });
    // No picker in this program: nothing happens.
    EXPECT_FALSE(docs.CmdLstImage());
    DefinitChoixDocument([acte](MDIForm1&) { return acte; });
    ASSERT_TRUE(docs.CmdLstImage());
    EXPECT_EQ(docs.Liste(), std::vector<std::uint32_t>{acte});
    // A person's list moves on the sheet, not here.
    EXPECT_FALSE(docs.CmdDocDown(0));
    // A document with no file: 700, then its form.
    EXPECT_EQ(docs.CmdVisuImage(0), Visionneuse::Description);
    EXPECT_EQ(s.boites.informations, std::vector<int>{700});
    ASSERT_TRUE(docs.CmdCreImage());
    FrmDesImage& nouveau = *fen.formes.back();
    nouveau.intitule = "Photo";
    ASSERT_TRUE(nouveau.Enregistre());
    EXPECT_EQ(docs.Liste(), (std::vector<std::uint32_t>{acte, nouveau.Document()}));
    s.boites.reponses = {Reponse::Oui};
    ASSERT_TRUE(docs.CmdSuppImage(0));
    EXPECT_EQ(docs.Liste(), std::vector<std::uint32_t>{nouveau.Document()});
}

TEST_F(Famille, ARubricThatIsAnEventTypeOpensItsEventOrMakesItFromTheRow) {
    // A new base's rubrics: occupation (no type of event), christening and
    // burial for persons, divorce for marriages.
    f->personneFiche = enfant;
    FrmMisajour fiche(*f, choix);
    ASSERT_EQ(fiche.RubriquesPersonne().size(), 3u);
    EXPECT_FALSE(RubriqueEvenement(*f, fiche, false, 0));
    EXPECT_FALSE(CmdRubEvt(*f, fiche, false, 0));
    ASSERT_TRUE(RubriqueEvenement(*f, fiche, false, 1));
    EXPECT_FALSE(RubriqueEvenement(*f, fiche, false, 7));
    EXPECT_FALSE(MarqueRubEvt(*f, fiche, false, 1));

    // The christening is made from the row as typed, not yet validated.
    fiche.Modifie(Champ::IndJ, "5/4", 1);
    fiche.Quitte(Champ::IndJ, 1);
    fiche.Modifie(Champ::IndA, "1850", 1);
    fiche.Modifie(Champ::IndL, "Caen", 1);
    ASSERT_TRUE(CmdRubEvt(*f, fiche, false, 1));
    const std::uint32_t e = EvenementPrincipal(b(), enfant, "CHR");
    ASSERT_NE(e, 0u);
    EXPECT_EQ(b().DateEvt(e), JourSerie({5, 4, 1850}));
    EXPECT_EQ(b().LieuEvt(e), "Caen");
    EXPECT_EQ(Roles(e), (Paires{{pere, "FATH"}, {mere, "MOTH"}, {enfant, "CHIL"}}));
    EXPECT_EQ(s.fenetres.numeros.back(), (std::pair<std::string, std::uint32_t>{"FrmDesEvt", e}));
    EXPECT_TRUE(MarqueRubEvt(*f, fiche, false, 1));
    // Pressed again, it opens the same event.
    ASSERT_TRUE(CmdRubEvt(*f, fiche, false, 1));
    EXPECT_EQ(s.fenetres.numeros.back().second, e);

    // A day that is no date refuses with 931 and makes nothing.
    fiche.Modifie(Champ::IndJ, "45/3", 2);
    fiche.Modifie(Champ::IndA, "1900", 2);
    EXPECT_FALSE(CmdRubEvt(*f, fiche, false, 2));
    EXPECT_EQ(s.boites.informations, std::vector<int>{931});
    EXPECT_EQ(EvenementPrincipal(b(), enfant, "BURI"), 0u);

    // A marriage rubric works on the marriage selected: none, nothing.
    f->personneFiche = pere;
    FrmMisajour conjoint(*f, choix);
    ASSERT_EQ(conjoint.RubriquesMariage().size(), 1u);
    conjoint.SelectionneMariage(-1);
    EXPECT_FALSE(CmdRubEvt(*f, conjoint, true, 0));
    conjoint.SelectionneMariage(0);
    EXPECT_FALSE(MarqueRubEvt(*f, conjoint, true, 0));
    ASSERT_TRUE(CmdRubEvt(*f, conjoint, true, 0));
    const std::uint32_t m = b().Mariages(pere).front();
    const std::uint32_t div = EvenementMariage(b(), pere, m, "DIV");
    ASSERT_NE(div, 0u);
    EXPECT_EQ(Roles(div), (Paires{{pere, "HUSB"}, {mere, "WIFE"}}));
    EXPECT_TRUE(MarqueRubEvt(*f, conjoint, true, 0));
}

namespace {

// The texts drawn on the pages, all in one.
struct Textes : test::PagesTextes {
    std::string Tout() const {
        std::string r;
        for (const auto& p : pages)
            for (const auto& t : p) r.append(t).append("|");
        return r;
    }
};

} // namespace

TEST_F(Famille, PrintingAnEventWritesItFirstAndPreviewsItsSheet) {
    FrmDesEvt forme(*f, choix, 0, enfant);
    forme.ChoisitType(Conv_LibelleTag("CHR"));
    forme.Modifie(ChampEvt::Date, "45/13/1850");
    // A date that is no date: nothing is written nor shown.
    EXPECT_FALSE(forme.CmdImprimer());
    EXPECT_EQ(forme.Numero(), 0u);
    EXPECT_FALSE(s.fenetres.EstOuverte("FrmPrevisualisation"));
    forme.Modifie(ChampEvt::Date, "");
    forme.Modifie(ChampEvt::Lieu, "Bayeux");
    ASSERT_TRUE(forme.CmdImprimer());
    ASSERT_NE(forme.Numero(), 0u);
    EXPECT_FALSE(forme.Pendant());
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmPrevisualisation"));
    DocumentApercu d = std::exchange(ApercuTransmis(), DocumentApercu{});
    ASSERT_TRUE(d.dessine);
    Textes t;
    EXPECT_EQ(d.dessine(t), FinPages::Termine);
    EXPECT_EQ(t.pages.size(), 1u);
    EXPECT_NE(t.Tout().find("Bayeux"), std::string::npos);
    EXPECT_NE(t.Tout().find("Martin"), std::string::npos);
    // Deleted meanwhile: the preview draws nothing.
    SupprimeEvenement(b(), forme.Numero());
    Textes vide;
    EXPECT_EQ(d.dessine(vide), FinPages::Arrete);
    EXPECT_TRUE(vide.pages.empty());
}

TEST_F(Famille, TheKeywordPickerOfAMarriageRubricWorksOnTheMarriageShown) {
    const std::uint32_t seconde = b().CreePersonne("Leroy", "Julie", "", 'F', "1825");
    b().CreeMariage(pere, seconde, "1860");
    const std::uint32_t premier = b().MariageNo(pere, 1), second = b().MariageNo(pere, 2);
    ASSERT_NE(second, 0u);
    f->personneFiche = pere;
    FrmMisajour fiche(*f, choix);
    fiche.SelectionneMariage(1);
    ASSERT_EQ(fiche.RubriquesMariage().size(), 1u);

    const auto d = DemandeMotRubrique(*f, fiche, true, 0);
    ASSERT_TRUE(d);
    EXPECT_EQ(d->tag, "DIV");
    EXPECT_EQ(d->personne, pere);
    EXPECT_EQ(d->numeroMariage, second);
    EXPECT_FALSE(DemandeMotRubrique(*f, fiche, true, 1));
    const auto p = DemandeMotRubrique(*f, fiche, false, 1);
    ASSERT_TRUE(p);
    EXPECT_EQ(p->personne, pere);
    EXPECT_EQ(p->numeroMariage, 0u);

    // The picker's event button makes the divorce of the second marriage.
    f->personneFiche = enfant; // the sheet in course may be another one
    FrmMot mot(*f, *d);
    mot.annee = "1870";
    mot.valeur = "Rouen";
    const std::uint32_t e = mot.CmdIndEvt();
    ASSERT_NE(e, 0u);
    EXPECT_EQ(EvenementMariage(b(), pere, second, "DIV"), e);
    EXPECT_EQ(EvenementMariage(b(), pere, premier, "DIV"), 0u);
    EXPECT_EQ(Roles(e), (Paires{{pere, "HUSB"}, {seconde, "WIFE"}}));
    EXPECT_TRUE(mot.EvenementExiste());
}
