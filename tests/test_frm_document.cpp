// The document forms without a display: the save rules of the description
// form, every branch of the choice of a viewer, the list and its deletion,
// who uses a document, and the plain viewer.
#include "store/fichier_memoire.h"
#include "support/services_faux.h"
#include "text/messages.h"
#include "ui/frm_document.h"

#include <gtest/gtest.h>

#include <memory>

using namespace sylvane;
using test::ServicesFaux;

namespace {

struct BureauFaux : Bureau {
    std::vector<std::string> adresses, fichiers;
    bool associe = true;
    bool OuvreAdresse(const std::string& a) override {
        adresses.push_back(a);
        return true;
    }
    bool OuvreFichier(const std::string& c) override {
        fichiers.push_back(c);
        return associe;
    }
};

struct Documents : ::testing::Test {
    SystemeMemoire fs;
    ReglagesMemoire reglages;
    Application app{fs, reglages, "/prog"};
    ServicesFaux s;
    std::unique_ptr<MDIForm1> f;
    BureauFaux bureau;
    std::uint32_t jean = 0, marie = 0;

    void SetUp() override {
        DefinitMessages({{725, "Page Web"}, {967, "E-Mail"}, {4200, "Document &1"}});
        app.Demarre();
        app.NouvelleBase("/d/famille.sv2");
        f = std::make_unique<MDIForm1>(app, s.ui());
        DefinitBureau(&bureau);
        jean = b().CreePersonne("Martin", "Jean", "", 'H', "1850");
        marie = b().CreePersonne("Roux", "Marie", "", 'F', "1820");
    }
    void TearDown() override {
        DefinitBureau(nullptr);
        DefinitMessages({});
    }
    Base& b() { return app.base(); }
    std::uint32_t Doc(const std::string& titre, const std::string& fichier,
                      const std::string& type = {}) {
        return b().CreeDoc(titre, fichier, type);
    }
    std::vector<std::uint32_t> Ordre() {
        std::vector<std::uint32_t> v;
        for (std::size_t i = 1; i <= b().TableDocuments().taille(); ++i) v.push_back(b().TriDoc(i));
        return v;
    }
};

TEST_F(Documents, SaveRefusesAnEmptyDocumentAndSortsByTitle) {
    const std::uint32_t zoe = Doc("Zoé", "z.jpg");
    FrmDesImage vide(*f, 0);
    EXPECT_FALSE(vide.Enregistre());
    EXPECT_EQ(s.boites.informations, std::vector<int>{712});
    EXPECT_EQ(vide.Document(), 0u);

    FrmDesImage nouveau(*f, 0);
    nouveau.intitule = "acte de naissance";
    nouveau.type = "Acte";
    ASSERT_TRUE(nouveau.Enregistre());
    const std::uint32_t acte = nouveau.Document();
    EXPECT_EQ(Ordre(), (std::vector<std::uint32_t>{acte, zoe}));
    EXPECT_EQ(b().TypeDoc(acte), "Acte");
    EXPECT_FALSE(nouveau.Modifie());

    // Nothing changed: nothing written. A new title moves the document.
    const std::uint32_t position = b().PosDoc(acte);
    ASSERT_TRUE(nouveau.Enregistre());
    EXPECT_EQ(b().PosDoc(acte), position);
    nouveau.intitule = "Zz dernier";
    nouveau.commentaire = "Trouvé aux archives";
    ASSERT_TRUE(nouveau.Enregistre());
    EXPECT_EQ(Ordre(), (std::vector<std::uint32_t>{zoe, acte}));
    EXPECT_EQ(b().NoteDoc(acte), "Trouvé aux archives");
    EXPECT_EQ(b().TypeDoc(acte), "Acte");
    // An empty type leaves no type behind.
    nouveau.type.clear();
    ASSERT_TRUE(nouveau.Enregistre());
    EXPECT_EQ(b().TypeDoc(acte), "");
    EXPECT_EQ(b().TitreDoc(acte), "Zz dernier");
}

TEST_F(Documents, SaveAttachesToItsPersonEventOrTheBaseOnce) {
    int rappels = 0;
    OrigineDocument personne{OrigineDocument::Genre::Personne, jean,
                             [&](std::uint32_t) { ++rappels; }};
    FrmDesImage d(*f, 0, personne);
    d.intitule = "Portrait";
    ASSERT_TRUE(d.Enregistre());
    d.fichier = "portrait.jpg";
    ASSERT_TRUE(d.Enregistre());
    EXPECT_EQ(b().DocNo(jean, 1), d.Document());
    EXPECT_EQ(b().DocNo(jean, 2), 0u);
    EXPECT_EQ(rappels, 2);

    const std::uint32_t e = b().CreeEvtPersonne(marie, 0, "BIRT", "Caen");
    FrmDesImage ev(*f, d.Document(), {OrigineDocument::Genre::Evenement, e, nullptr});
    ev.intitule = "Portrait de famille";
    ASSERT_TRUE(ev.Enregistre());
    EXPECT_EQ(b().DocEvtNo(e, 1), d.Document());

    // The title document: an e-mail entry, made by the first save.
    FrmDesImage titre(*f, 0, {}, true);
    EXPECT_TRUE(titre.EstTitre());
    EXPECT_EQ(titre.LibelleFichier(), "E-Mail");
    EXPECT_EQ(titre.type, "E-Mail");
    titre.intitule = "Famille Martin";
    titre.fichier = "martin@example.org";
    ASSERT_TRUE(titre.Enregistre());
    EXPECT_EQ(b().Tete().documentTitre, titre.Document());
    EXPECT_FALSE(titre.CmdFichier());
    EXPECT_EQ(titre.CmdVisu(), Visionneuse::Aucune);
}

TEST_F(Documents, ClosingWithChangesAsksAndYesSaves) {
    const std::uint32_t d = Doc("Lettre", "lettre.txt");
    FrmDesImage form(*f, d);
    EXPECT_EQ(form.Legende(), "Document Lettre");
    EXPECT_TRUE(form.Fermeture());
    EXPECT_TRUE(s.boites.questions.empty());
    form.intitule = "Lettre de 1870";
    s.boites.reponses = {Reponse::Non};
    EXPECT_TRUE(form.Fermeture());
    EXPECT_EQ(b().TitreDoc(d), "Lettre");
    s.boites.reponses = {Reponse::Oui};
    EXPECT_TRUE(form.Fermeture());
    EXPECT_EQ(b().TitreDoc(d), "Lettre de 1870");
    EXPECT_EQ(s.boites.questions, (std::vector<int>{msg_documents::QuestionFermeture,
                                                    msg_documents::QuestionFermeture}));
    // A refused save keeps the window open.
    form.intitule = form.fichier = "";
    s.boites.reponses = {Reponse::Oui};
    EXPECT_FALSE(form.Fermeture());
}

TEST_F(Documents, ChosenFilesAreKeptRelativeToThePictureFolder) {
    EXPECT_EQ(DossierImages(*f), "/d/");
    app.parametres().nomImage = "C:\\Images\\fond.bmp";
    EXPECT_EQ(DossierImages(*f), "C:/Images/");
    app.parametres().nomImage = "/photos/fond.jpg";
    EXPECT_EQ(CheminDocument(*f, "Martin\\jean.jpg"), "/photos/Martin/jean.jpg");
    EXPECT_EQ(CheminDocument(*f, "/ailleurs/x.jpg"), "/ailleurs/x.jpg");
    FrmDesImage d(*f, 0);
    s.fichiers.chemins = {std::string("/photos/Martin/jean.jpg"), std::string("/tmp/x.svo")};
    ASSERT_TRUE(d.CmdFichier());
    EXPECT_EQ(d.fichier, "Martin/jean.jpg");
    d.ole = true;
    ASSERT_TRUE(d.CmdFichier());
    EXPECT_EQ(d.fichier, "/tmp/x.svo");
    EXPECT_EQ(s.fichiers.titres, (std::vector<int>{msg_documents::NomFichier, 710}));
    EXPECT_FALSE(d.CmdFichier()); // cancelled
}

TEST_F(Documents, EachKindOfDocumentFindsItsViewer) {
    ecrireTout(fs, "/d/photo.JPG", "jpeg");
    ecrireTout(fs, "/d/page.htm", "<html>");
    ecrireTout(fs, "/d/note.txt", "texte");
    ecrireTout(fs, "/d/objet.svo", "ole");
    ecrireTout(fs, "/d/tableur.ods", "ods");
    ecrireTout(fs, "/d/page", "sans extension");
    auto& fen = s.fenetres;
    const auto photo = Doc("Photo", "photo.JPG");
    EXPECT_EQ(Visu_Document(*f, photo), Visionneuse::Image);
    EXPECT_TRUE(fen.EstOuverte("FrmImage:" + std::to_string(photo)));
    EXPECT_EQ(Visu_Document(*f, photo), Visionneuse::Image); // brought forward

    EXPECT_EQ(Visu_Document(*f, Doc("Site", "http://geneanet.org")), Visionneuse::Navigateur);
    EXPECT_EQ(Visu_Document(*f, Doc("Site", "hTTp://exemple.fr")), Visionneuse::Navigateur);
    EXPECT_EQ(Visu_Document(*f, Doc("Page", "page.htm")), Visionneuse::Navigateur);
    EXPECT_EQ(Visu_Document(*f, Doc("Page", "page", "Page Web")), Visionneuse::Navigateur);
    EXPECT_EQ(bureau.adresses, (std::vector<std::string>{"http://geneanet.org",
                                                         "hTTp://exemple.fr",
                                                         "file:///d/page.htm", "file:///d/page"}));
    const auto note = Doc("Note", "note.txt");
    EXPECT_EQ(Visu_Document(*f, note), Visionneuse::Texte);
    EXPECT_TRUE(fen.EstOuverte("FrmOLE:" + std::to_string(note)));
    EXPECT_EQ(Visu_Document(*f, Doc("Objet", "objet.svo")), Visionneuse::Systeme);
    bureau.associe = false;
    EXPECT_EQ(Visu_Document(*f, Doc("Tableur", "tableur.ods")), Visionneuse::Aucune);
    EXPECT_EQ(s.boites.informations, std::vector<int>{msg_documents::SansAssociation});
}

TEST_F(Documents, AMissingFileShowsMessage700AndTheForm) {
    const auto svo = Doc("Objet perdu", "perdu.svo");
    const auto vide = Doc("Sans fichier", "");
    EXPECT_EQ(Visu_Document(*f, svo), Visionneuse::Description);
    EXPECT_EQ(Visu_Document(*f, vide), Visionneuse::Description);
    EXPECT_EQ(s.boites.informations, (std::vector<int>{700, 700}));
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmDesImage:" + std::to_string(svo)));
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmDesImage:" + std::to_string(vide)));
    EXPECT_TRUE(bureau.fichiers.empty());
    // The title document opens its own form, with no message.
    b().DefinitDocumentTitre(vide);
    EXPECT_EQ(Visu_Document(*f, vide), Visionneuse::Description);
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmDesImage"));
    EXPECT_EQ(s.boites.informations.size(), 2u);
}

TEST_F(Documents, TheListDeletesAfterTheQuestionAndClearsTheTitleDocument) {
    const auto a = Doc("Acte", "a.jpg"), t = Doc("Titre", "x@y.fr");
    b().DefinitDocumentTitre(t);
    FrmLstImage l(*f);
    ASSERT_EQ(l.Nombre(), 2u);
    EXPECT_EQ(l.Ligne(0), (std::vector<std::string>{std::to_string(a), "Acte", "a.jpg", ""}));
    EXPECT_FALSE(l.CmdSupp(1)); // answered No
    EXPECT_EQ(l.Nombre(), 2u);
    s.boites.reponses = {Reponse::Oui};
    EXPECT_TRUE(l.CmdSupp(1));
    EXPECT_EQ(l.Nombre(), 1u);
    EXPECT_EQ(b().Tete().documentTitre, 0u);
    EXPECT_EQ(b().PosDoc(t), 0u);
    EXPECT_EQ(s.boites.questions, (std::vector<int>{617, 617}));
    EXPECT_TRUE(l.CmdUtilisation(0));
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmUtilImage:" + std::to_string(a)));
    EXPECT_TRUE(l.CmdMaj(0));
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmDesImage:" + std::to_string(a)));
    EXPECT_FALSE(l.CmdMaj(5));
    // Each new document gets a window of its own.
    l.CmdAjout();
    l.CmdAjout();
    EXPECT_EQ(s.fenetres.NombreOuvertes(), 4);
    s.panneau.visible = true; // a long operation runs
    EXPECT_FALSE(l.CmdAjout());
}

TEST_F(Documents, UseListsPersonsAndEventsByYearAndTakesDrops) {
    const auto d = Doc("Registre", "r.jpg");
    b().MajDocs(jean, d, 'A');
    b().MajDocs(marie, d, 'A');
    const auto naissance = b().CreeEvtPersonne(jean, 0, "BIRT", "Caen");
    FrmUtilImage u(*f, d);
    ASSERT_EQ(u.Lignes().size(), 2u);
    EXPECT_EQ(u.Lignes()[0].numero, marie); // 1820 before 1850
    EXPECT_EQ(u.Lignes()[1].numero, jean);
    EXPECT_TRUE(u.RecoitGlisser('E', naissance));
    EXPECT_FALSE(u.RecoitGlisser('E', naissance)); // already there
    EXPECT_FALSE(u.RecoitGlisser('E', 999));
    EXPECT_EQ(b().DocEvtNo(naissance, 1), d);
    ASSERT_EQ(u.Lignes().size(), 3u);
    EXPECT_EQ(u.Lignes()[2].genre, 'E'); // no date: last
    u.Charge();
    EXPECT_EQ(u.Lignes().size(), 3u);

    EXPECT_TRUE(u.CmdMaj(2));
    EXPECT_EQ(s.fenetres.numeros.back(), (std::pair<std::string, std::uint32_t>{"FrmDesEvt",
                                                                                naissance}));
    EXPECT_FALSE(u.CmdAffichage(2));
    EXPECT_TRUE(u.CmdAffichage(0));
    EXPECT_EQ(f->PersonneEnCours(), marie);
    f->fichePendante = true;
    s.boites.reponses = {Reponse::Non};
    EXPECT_TRUE(u.CmdMaj(1));
    EXPECT_EQ(f->personneFiche, jean);
    EXPECT_FALSE(f->fichePendante);
    EXPECT_TRUE(s.fenetres.EstOuverte("FrmMisajour"));
}

TEST_F(Documents, ThePlainViewerReadsTextsAndKeepsItsHistory) {
    ecrireTout(fs, "/d/lettre.txt", "\xEF\xBB\xBF" "Chère cousine");
    ecrireTout(fs, "/d/vieux.txt", "Ch\xE8re tante");
    FrmOle v(*f);
    ASSERT_TRUE(v.Navigue("lettre.txt"));
    EXPECT_EQ(v.Texte(), "Ch\xE8re cousine");
    ASSERT_TRUE(v.Navigue("file:///d/vieux.txt"));
    EXPECT_EQ(v.Texte(), "Ch\xE8re tante");
    EXPECT_EQ(v.Adresse(), "/d/vieux.txt");
    EXPECT_TRUE(v.Precedent());
    EXPECT_EQ(v.Adresse(), "/d/lettre.txt");
    EXPECT_TRUE(v.PeutAvancer());
    EXPECT_TRUE(v.Suivant());
    EXPECT_FALSE(v.Suivant());
    EXPECT_TRUE(v.Accueil());
    EXPECT_EQ(v.Adresse(), "/d/lettre.txt");
    EXPECT_FALSE(v.Navigue("absent.txt"));
    EXPECT_EQ(s.boites.informations, std::vector<int>{700});
    EXPECT_TRUE(v.Navigue("https://exemple.fr/arbre"));
    EXPECT_EQ(bureau.adresses.back(), "https://exemple.fr/arbre");
}

} // namespace
