// Texts that hold "#" and characters outside Windows-1252 (kept as
// references "&#1047;"): they go whole through the base file, the
// reorganisation, the control and the exchange file, and come back as the
// user wrote them; the earlier program's texts read as before. (GEDCOM:
// test_aller_retour_gedcom.cpp.)
#include "exchange/selection.h"
#include "exchange/svr.h"
#include "exchange/svr_commun.h"
#include "maintenance/controle.h"
#include "maintenance/reorganisation.h"
#include "store/fichier_memoire.h"
#include "support/dossier_temp.h"
#include "support/lance_cli.h"
#include "text/mots.h"
#include "text/phonetique.h"
#include "text/reglages.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace sylvane;

namespace {

const std::string kZykov = "\xD0\x97\xD1\x8B\xD0\xBA\xD0\xBE\xD0\xB2"; // Зыков
const std::string kZykovRef = "&#1047;&#1099;&#1082;&#1086;&#1074;";
// A note with every form a "#" can take in a text, the escape byte of the
// file alone and before "*", and a line that is "#" alone.
const std::string kNote = "Acte n\xB0 12 # folio 3 ; &#1047; \x1F* \x1F \x1F\x1F#\r\n#\r\n\x1F#\r\nfin #";

Interaction Repond(Reponse r) {
    Interaction io;
    io.question = [r](int) { return r; };
    return io;
}

struct Fixture {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    std::uint32_t pere = 0, fils = 0, mariage = 0, evt = 0, doc = 0;

    Fixture() {
        b.Nouvelle("/u/base.sv2");
        pere = b.CreePersonne(kZykovRef, "Ivan #1", "", 'H', "1850");
        const std::uint32_t mere = b.CreePersonne("Martin", "Marie", "", 'F', "1852");
        fils = b.CreePersonne(kZykovRef, "Pierre", "", 'H', "1880");
        b.EcritNote(fils, b.LitNote(fils) + "\r\n\r\n" + kNote);
        mariage = b.CreeMariage(pere, mere, "1875");
        b.EcritNoteMariage(mariage, "Contrat # 7 chez &#1047;");
        b.EcritPere(fils, pere);
        b.MajEnfants(pere, fils, 'A');
        evt = b.CreeEvtPersonne(fils, 2396000, "BIRT", "Saint-#Jean");
        b.EcritNoteEvt(evt, "Registre #4");
        doc = b.CreeDoc("Acte #5 &#1047;", "acte#5.jpg", "", "Relev\xE9 # 6");
        b.MajDocs(fils, doc, 'A');
        b.ValideBase();
    }

    // Every text the records above hold, as the stores read them.
    std::string Textes(std::uint32_t p, std::uint32_t f, std::uint32_t m, std::uint32_t e,
                       std::uint32_t d) {
        return b.LitIdentite(p) + "|" + b.LitIdentite(f) + "|" + b.LitNote(f) + "|" +
               b.LitNoteMariage(m) + "|" + b.LieuEvt(e) + "|" + b.NoteEvt(e) + "|" +
               b.TitreDoc(d) + "|" + b.FichierDoc(d) + "|" + b.NoteDoc(d);
    }
    std::string Textes() { return Textes(pere, fils, mariage, evt, doc); }
};

} // namespace

TEST(UnicodeTextes, UnDieseResteDansLeTexteEtLeFichierGardeSaStructure) {
    // A text without "#" or escape byte is written as the earlier program
    // wrote it, and any bytes it wrote read back unchanged.
    EXPECT_EQ(TexteDansFichier("Dupont;Jean;;;"), "Dupont;Jean;;;#");
    for (const std::string ancien : {"Dupont", "a\x1F", "a\x1F" "b", "\x1F", ""})
        EXPECT_EQ(TexteDuFichier(ancien), ancien);
    for (const std::string& t : std::vector<std::string>{"#", "\x1F", "\x1F*", "##\x1F\x1F*#", kNote}) {
        const std::string stocke = TexteDansFichier(t);
        EXPECT_EQ(stocke.find('#'), stocke.size() - 1) << "one end only";
        EXPECT_EQ(TexteDuFichier(stocke.substr(0, stocke.size() - 1)), t);
    }

    Fixture f;
    const std::string avant = f.Textes();
    EXPECT_NE(avant.find(kNote), std::string::npos);
    EXPECT_NE(avant.find("Saint-#Jean"), std::string::npos);
    EXPECT_NE(avant.find("Acte #5 &#1047;|acte#5.jpg|Relev\xE9 # 6"), std::string::npos);
    f.b.FermeBase();
    f.b.Ouvre("/u/base.sv2");
    EXPECT_EQ(f.Textes(), avant);
    // In the file the "#" of a text is escaped: what the earlier program
    // reads up to "#" is the whole text.
    const std::string fichier = f.fs.contenu("/u/base.sv2");
    EXPECT_NE(fichier.find("Contrat \x1F* 7 chez &\x1F*1047;#"), std::string::npos);
}

TEST(UnicodeTextes, LaReorganisationEtLeControleVoientLeVraiDiese) {
    Fixture f;
    const std::string avant = f.Textes();
    const std::string nom = f.b.LitNom(f.fils);
    const auto r = Reorganiser(f.b, Repond(Reponse::Non));
    ASSERT_TRUE(r.fait);
    const auto& n = r.numeros;
    EXPECT_EQ(f.Textes(n.Personne(f.pere), n.Personne(f.fils), n.Mariage(f.mariage),
                       n.Evenement(f.evt), n.Document(f.doc)),
              avant);
    // The keyword index holds the words by their Latin form, "#" included.
    std::string mots;
    for (std::uint32_t k = 1; k <= f.b.Tete().nbMots; ++k) mots += f.b.LitMot(k) + "|";
    EXPECT_NE(mots.find("|ZYKOV|IVAN #1|"), std::string::npos) << mots;
    EXPECT_EQ(f.b.LitNom(n.Personne(f.fils)), nom);

    const auto c = Controler(f.b, Repond(Reponse::Non));
    ASSERT_TRUE(c.fait);
    EXPECT_EQ(c.rapport, "") << "nothing to repair";
}

TEST(UnicodeTextes, LeFichierDEchangeRendLesTextes) {
    // A note line "#" ends a note in the file; such lines are written so
    // that they don't, and come back as they were.
    for (const std::string l : {"#", "\x1F#", "\x1F\x1F#", "a#", "\x1F"}) {
        const std::string ecrite = svr::LigneNoteEcrite(l);
        EXPECT_NE(ecrite, "#");
        EXPECT_EQ(svr::LigneNoteLue(ecrite), l);
    }
    EXPECT_EQ(svr::LigneNoteLue("a # b"), "a # b");

    Fixture f;
    const std::string avant = f.Textes();
    Selection sel(f.b);
    sel.SelectionneTout();
    sel.complet = true;
    ASSERT_TRUE(ExporteSvr(f.b, sel, f.p, f.fs, "/u/e.svr"));
    Base b(f.fs, f.p);
    b.Nouvelle("/u/lue.sv2");
    ReglagesMemoire reglages;
    LitSvrNouvelleBase(b, f.fs, "/u/e.svr", reglages);
    b.FermeBase();
    b.Ouvre("/u/lue.sv2");
    EXPECT_EQ(b.LitIdentite(f.pere) + "|" + b.LitIdentite(f.fils) + "|" + b.LitNote(f.fils) + "|" +
                  b.LitNoteMariage(f.mariage) + "|" + b.LieuEvt(f.evt) + "|" + b.NoteEvt(f.evt) +
                  "|" + b.TitreDoc(f.doc) + "|" + b.FichierDoc(f.doc) + "|" + b.NoteDoc(f.doc),
              avant);
}

TEST(UnicodeTextes, CeQueLUtilisateurTapeGardeChaqueCaractere) {
    EXPECT_EQ(Utf8VersAnsiRef("n\xCC\x81 e\xCC\x81 &#1047; & #"), "&#324; \xE9 &#38;#1047; & #");
    EXPECT_EQ(AnsiRefVersUtf8(Utf8VersAnsiRef("&#1047; &#38;")), "&#1047; &#38;");
    // The case rules of the settings leave a reference whole.
    EXPECT_EQ(Conv_NomPropre(kZykovRef + " DE LA fontaine", 'N', ParticulesParDefaut()),
              kZykovRef + " de la Fontaine");
    // The earlier conversion for what has no room for references.
    EXPECT_EQ(Utf8VersAnsi(kZykov + " &#"), "????? &#");

    test::DossierTemp d;
    const std::string base = d / "u.sv2";
    ASSERT_EQ(test::LanceCli({"new", base}).statut, 0);
    const auto a = test::LanceCli({"add-person", base, "--name", kZykov, "--first", "Ivan #2",
                                   "--sex", "H", "--birth", "1850"});
    ASSERT_EQ(a.statut, 0) << a.err;
    const auto r = test::LanceCli({"persons", base});
    EXPECT_NE(r.out.find(kZykov), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Ivan #2"), std::string::npos) << r.out;
}
