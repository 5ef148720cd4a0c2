// The exchange text file: round trips through a new base, integration with
// shifted numbers, files of older versions, and damaged or truncated files.
#include "exchange/selection.h"
#include "exchange/svr.h"
#include "store/pack.h"
#include "support/base_memoire.h"
#include "support/bases.h"
#include "text/reglages.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

// A base with every kind of record: a gap in the person numbers, parents,
// two marriages (one with a note), a link, notes with rubric lines and
// trailing blank lines, documents with notes, events with roles, documents
// and notes, a title document and a changed rubric table.
void Riche(Base& b) {
    const std::uint32_t pere =
        b.CreePersonne("DUPONT", "Jean", "Louis", 'H', "1820", "12/03", "1880");
    const std::uint32_t mere = b.CreePersonne("MARTIN", "Marie Anne", "", 'F', "1822");
    const std::uint32_t parti = b.CreePersonne("EFFACE", "X", "", 'I', "");
    const std::uint32_t fils = b.CreePersonne("DUPONT", "Paul", "", 'H', "1850");
    const std::uint32_t fille = b.CreePersonne("DUPONT", "\xC9lise", "", 'F', "1848");
    const std::uint32_t bru = b.CreePersonne("LEROY", "Jeanne", "", 'F', "1852");
    b.SupprimePersonne(parti);
    for (std::uint32_t c : {fils, fille}) {
        b.EcritPere(c, pere);
        b.EcritMere(c, mere);
        b.MajEnfants(pere, c, 'A');
        b.MajEnfants(mere, c, 'A');
    }
    const std::uint32_t m1 = b.CreeMariage(pere, mere, "1845", "1880");
    b.EcritNoteMariage(m1, "14/02/1845 @Saint.L\xF4\r\nContrat chez le notaire");
    b.CreeMariage(fils, bru, "1875");
    b.MajLiens(fils, bru, "GODP", 'A');
    b.EcritNote(fils, b.LigneMotsCles(fils, "Paris") +
                          "\r\nOCCU  \\laboureur\r\n\r\nTexte libre\r\nsur deux lignes\r\n\r\n");
    const std::uint32_t acte =
        b.CreeDoc("Acte de naissance", "acte.jpg", "", "Relev\xE9\r\nligne 2");
    const std::uint32_t titre = b.CreeDoc("Famille Dupont", "", "", "");
    b.MajDocs(fils, acte, 'A');
    b.DefinitDocumentTitre(titre);
    const std::uint32_t e = b.CreeEvtPersonne(fils, 2396000, "BIRT", "Paris");
    b.MajDocsEvt(e, acte, 'A');
    b.EcritNoteEvt(e, "Bapt\xEAme le lendemain");
    b.CreeEvtMariage(m1, 2394000, "MARR", "Saint-L\xF4");
    b.TeteModifiable().rubriquesPersonne[3] = {'%', ' ', "RESI"};
    b.TeteModifiable().particules = '1';
    // The notes above were written without the index: bring it up to date.
    for (char symbole : {'$', '@', '\\'})
        b.RefaitRubrique(symbole);
    b.ValideBase();
}

std::string Fichier(SystemeMemoire& fs, const std::string& chemin) {
    return lireTout(fs, chemin);
}

std::string Exporte(Base& b, SystemeMemoire& fs, const std::string& chemin,
                    const Parametres& p = {}) {
    Selection sel(b);
    sel.SelectionneTout();
    sel.complet = true;
    EXPECT_TRUE(ExporteSvr(b, sel, p, fs, chemin));
    return Fichier(fs, chemin);
}

// Events, documents, rubrics and keyword lists, field by field.
std::string Magasins(Base& b) {
    std::string r;
    for (std::size_t i = 1; i <= b.TableEvenements().taille(); ++i) {
        const std::uint32_t e = b.TriEvt(i);
        r += "E" + std::to_string(e) + ":" + std::to_string(b.DateEvt(e)) + ":" + b.LieuEvt(e) +
             ":" + b.TitreEvt(e) + ":" + b.TagEvt(e) + ":" + b.NoteEvt(e) + ":";
        for (int k = 1; b.PersonneEvtNo(b.TriEvt(i), k); ++k)
            r += std::to_string(b.PersonneEvtNo(e, k)) + ",";
        for (int k = 1; b.DocEvtNo(e, k); ++k)
            r += "d" + std::to_string(b.DocEvtNo(e, k)) + ",";
        r += "\n";
    }
    for (std::size_t i = 1; i <= b.TableDocuments().taille(); ++i) {
        const std::uint32_t d = b.TriDoc(i);
        r += "D" + std::to_string(d) + ":" + b.TitreDoc(d) + ":" + b.FichierDoc(d) + ":" +
             b.NoteDoc(d) + "\n";
    }
    const Entete& t = b.Tete();
    r += "T" + std::to_string(t.documentTitre) + t.particules + t.premierPrenom + "\n";
    for (std::uint32_t k = 1; k <= t.nbRubriques; ++k) {
        r += "R" + b.LitRubrique(k) + ":";
        const std::string l = b.ListeRubrique(k);
        for (std::size_t o = 0; o + 4 <= l.size(); o += 4) {
            const std::uint32_t mot = Unpack4(l, o);
            r += b.LitMot(mot) + "=";
            const std::string ps = b.PersonnesMot(mot);
            for (std::size_t q = 0; q + 4 <= ps.size(); q += 4)
                r += std::to_string(Unpack4(ps, q)) + ",";
            r += ";";
        }
        r += "\n";
    }
    for (const auto* slots : {&t.rubriquesPersonne, &t.rubriquesMariage})
        for (const auto& s : *slots)
            r += std::string("S") + s.symbole + s.drapeau + s.tag;
    return r;
}

struct Paire {
    SystemeMemoire fs;
    Parametres p;
    Base a{fs, p}, b{fs, p};
    ReglagesMemoire reglages;
    Paire() {
        a.Nouvelle("/a.sv2");
        Riche(a);
    }
    BilanSvr Lit(const std::string& fichier) {
        b.Nouvelle("/b.sv2");
        return LitSvrNouvelleBase(b, fs, fichier, reglages);
    }
};

// Replaces every line of `texte` equal to `de` by `vers`.
std::string Remplace(std::string texte, const std::string& de, const std::string& vers) {
    for (std::size_t p = 0; (p = texte.find(de, p)) != std::string::npos; p += vers.size())
        texte.replace(p, de.size(), vers);
    return texte;
}

} // namespace

TEST(Svr, RoundTripThroughANewBaseKeepsEveryRecordAndGivesTheSameFile) {
    Paire t;
    const std::string premier = Exporte(t.a, t.fs, "/a.svr");
    const BilanSvr bilan = t.Lit("/a.svr");
    EXPECT_EQ(bilan.personnes, 5u);
    EXPECT_EQ(bilan.mariages, 2u);
    EXPECT_EQ(bilan.documents, 2u);
    EXPECT_EQ(bilan.evenements, 2u);
    t.b.FermeBase();
    t.b.Ouvre("/b.sv2"); // what was committed
    EXPECT_EQ(Exporte(t.b, t.fs, "/b.svr"), premier);

    test::Etat ea = test::Capture(t.a), eb = test::Capture(t.b);
    // The deleted person is a gap in both: its record is empty in each.
    ea.personnes[2] = eb.personnes[2] = {};
    EXPECT_EQ(ea, eb) << test::Difference(ea, eb);
    EXPECT_EQ(Magasins(t.a), Magasins(t.b));
    EXPECT_EQ(t.b.Tete().nbDocuments, 2u);
    EXPECT_EQ(t.b.Tete().maxPersonne, 6u);

    // The presentation settings travel to section "Defaut" of the reader.
    EXPECT_EQ(t.reglages.lit("Defaut", "Affichage Nom", ""), "FNAM/BIRN/");
    EXPECT_EQ(t.reglages.lit("Defaut", "D\xE9grad\xE9", ""), "1");
    EXPECT_EQ(t.reglages.lit("Defaut", "Personne en cours", ""), "1");
}

TEST(Svr, NoteLinesAndNumbersAreWrittenAsTheFormatHasThem) {
    Paire t;
    const std::string f = Exporte(t.a, t.fs, "/a.svr");
    EXPECT_EQ(f.rfind("[Sylvane Version 2001.0]\r\n[PARAMETRES]\r\n1\r\n0\r\n", 0), 0u);
    EXPECT_NE(f.find("\r\n 4 \r\nDUPONT;Paul;;;\r\nH\r\n1850\r\n\r\n 1 \r\n 2 \r\n"),
              std::string::npos);
    // Trailing blank lines of a note survive as empty lines before "#".
    EXPECT_NE(f.find("sur deux lignes\r\n\r\n\r\n#\r\n"), std::string::npos);
    EXPECT_NE(f.find("{Mariages}\r\n2\r\n"), std::string::npos);
    EXPECT_NE(f.find("[DESCRIPTION]\r\n2\r\n[FIN DESCRIPTION]"), std::string::npos);
    EXPECT_EQ(f.substr(f.size() - 7), "[FIN]\r\n");
    // The sections come in the writer's order.
    std::size_t p = 0;
    for (const char* s : {"[PARAMETRES]", "[INI]", "[DESCRIPTION]", "[MOTS CLES]",
                          "[DONNEES INDIVIDUS]", "[DONNEES MARIAGES]", "[INDIVIDUS]", "[MARIAGES]",
                          "[IMAGES]", "[EVENEMENTS]", "[INDEX]", "[FIN]"}) {
        const std::size_t q = f.find(std::string("\r\n") + s + "\r\n", p);
        ASSERT_NE(q, std::string::npos) << s;
        p = q + 1;
    }
}

TEST(Svr, BareAndPaddedNumbersAndLineEndsReadAlike) {
    Paire t;
    const std::string f = Exporte(t.a, t.fs, "/a.svr");
    std::string nu = f;
    for (int n = 0; n <= 10; ++n)
        nu = Remplace(nu, "\r\n " + std::to_string(n) + " \r\n",
                      "\r\n" + std::to_string(n) + "\r\n");
    ecrireTout(t.fs, "/nu.svr", Remplace(nu, "\r\n", "\n"));
    t.Lit("/nu.svr");
    test::Etat ea = test::Capture(t.a), eb = test::Capture(t.b);
    ea.personnes[2] = eb.personnes[2] = {};
    EXPECT_EQ(ea, eb) << test::Difference(ea, eb);
    EXPECT_EQ(Magasins(t.a), Magasins(t.b));
}

TEST(Svr, IntegrationShiftsEveryNumberAndKeepsEveryLink) {
    Paire t;
    Exporte(t.a, t.fs, "/a.svr");
    Base& c = t.b;
    c.Nouvelle("/c.sv2");
    for (int i = 0; i < 150; ++i)
        c.CreePersonne("ANCIEN", "P" + std::to_string(i), "", 'H', "1700");
    const std::uint32_t x = c.CreePersonne("ANCIEN", "Marc", "", 'H', "1700");
    const std::uint32_t y = c.CreePersonne("ANCIEN", "Rose", "", 'F', "1702");
    c.CreeMariage(x, y);
    c.CreeDoc("Ancien document", "a.png");
    c.CreeEvtPersonne(x, 2300000, "BIRT", "Caen");
    c.ValideBase();
    const test::Etat avant = test::Capture(c);
    const std::uint32_t H = 200, M = 1, D = 1, E = c.Tete().maxEvenement;

    const BilanSvr bilan = IntegreSvr(c, t.fs, "/a.svr");
    EXPECT_EQ(bilan.personnes, 5u);
    c.FermeBase();
    c.Ouvre("/c.sv2");
    EXPECT_EQ(c.Tete().nbPersonnes, avant.nbPersonnes + 5);
    EXPECT_EQ(c.Tete().maxPersonne, H + 6);
    EXPECT_EQ(c.Tete().documentTitre, 2 + D); // the base had none
    // The base's own records are untouched.
    for (std::uint32_t n = 1; n <= avant.maxPersonne; ++n)
        EXPECT_EQ(test::Capture(c).personnes[n - 1], avant.personnes[n - 1]) << n;

    Base& a = t.a;
    for (std::uint32_t n : {1u, 2u, 4u, 5u, 6u}) {
        const std::uint32_t k = n + H;
        EXPECT_EQ(c.LitIdentite(k), a.LitIdentite(n));
        EXPECT_EQ(c.LitNote(k), a.LitNote(n));
        EXPECT_EQ(c.LitPere(k), a.LitPere(n) ? a.LitPere(n) + H : 0);
        EXPECT_EQ(c.LitMere(k), a.LitMere(n) ? a.LitMere(n) + H : 0);
        for (int i = 1; i <= 3; ++i) {
            EXPECT_EQ(c.EnfantNo(k, i), a.EnfantNo(n, i) ? a.EnfantNo(n, i) + H : 0);
            EXPECT_EQ(c.MariageNo(k, i), a.MariageNo(n, i) ? a.MariageNo(n, i) + M : 0);
            EXPECT_EQ(c.LienNo(k, i), a.LienNo(n, i) ? a.LienNo(n, i) + H : 0);
            EXPECT_EQ(c.DocNo(k, i), a.DocNo(n, i) ? a.DocNo(n, i) + D : 0);
            EXPECT_EQ(c.EvtNo(k, i), a.EvtNo(n, i) ? a.EvtNo(n, i) + E : 0);
            EXPECT_EQ(c.RoleEvtNo(k, i), a.RoleEvtNo(n, i));
        }
    }
    for (std::uint32_t m = 1; m <= 2; ++m) {
        EXPECT_EQ(c.LitMari(m + M), a.LitMari(m) + H);
        EXPECT_EQ(c.LitFemme(m + M), a.LitFemme(m) + H);
        EXPECT_EQ(c.LitNoteMariage(m + M), a.LitNoteMariage(m));
    }
    for (std::uint32_t e = 1; e <= a.Tete().maxEvenement; ++e) {
        EXPECT_EQ(c.DateEvt(e + E), a.DateEvt(e));
        for (int i = 1; i <= 3; ++i)
            EXPECT_EQ(c.PersonneEvtNo(e + E, i),
                      a.PersonneEvtNo(e, i) ? a.PersonneEvtNo(e, i) + H : 0);
        EXPECT_EQ(c.DocEvtNo(e + E, 1), a.DocEvtNo(e, 1) ? a.DocEvtNo(e, 1) + D : 0);
    }
    EXPECT_EQ(c.TitreDoc(1 + D), a.TitreDoc(1));
    // The new persons' keywords are in the base's lists: DUPONT names three.
    const std::uint32_t k = c.RubriqueDeSymbole('|');
    const std::string l = c.ListeRubrique(k);
    std::string noms;
    for (std::size_t o = 0; o + 4 <= l.size(); o += 4) {
        const std::uint32_t mot = Unpack4(l, o);
        if (c.LitMot(mot) == "DUPONT") noms = c.PersonnesMot(mot);
    }
    EXPECT_EQ(noms.size(), 12u);
}

TEST(Svr, FilesOfVersion97AndOfThisVersionTranslateTheirSymbols) {
    // The banner compares as text: "2001.0" sorts below "97.2" and takes the
    // old way, rubrics matched by tag; "98.1" is the only recent one here.
    EXPECT_FALSE(VersionRecente("[Sylvane Version 97.2]"));
    EXPECT_FALSE(VersionRecente("[Sylvane Version 2001.0]"));
    EXPECT_TRUE(VersionRecente("[Sylvane Version 98.1]"));
    EXPECT_TRUE(VersionRecente("[sylvane version 97.3]"));
    for (const char* banniere : {"[Sylvane Version 97.2]", "[Sylvane Version 2001.0]"}) {
        SCOPED_TRACE(banniere);
        test::BaseMemoire f;
        Base& b = f.b;
        const std::string fichier =
            std::string(banniere) +
            "\r\n[MOTS CLES]\r\n|\r\nBIRN\r\n&\r\nOCCU\r\n$\r\nPension\r\n"
            "=\r\nNOUV\r\n[FIN MOTS CLES]\r\n[DONNEES INDIVIDUS]\r\n&\r\n1\r\n=\r\n \r\n"
            "[FIN DONNEES INDIVIDUS]\r\n[INDIVIDUS]\r\n 1 \r\nDURAND;Luc;;;\r\nH\r\n1900\r\n\r\n"
            " 0 \r\n 0 \r\n|DURAND \xB6Luc\r\n&tisserand $militaire =x\r\n#\r\n#\r\n#\r\n[FIN "
            "INDIVIDUS]\r\n[IMAGES]\r\n 1 \r\nActe\r\n\r\n&forgeron\r\n#\r\n[FIN IMAGES]\r\n"
            "[EVENEMENTS]\r\n 1 \r\n2400000\r\nCaen\r\nOCCU\r\n\r\n1;\r\n1;\r\n&meunier\r\n#\r\n"
            "[FIN EVENEMENTS]\r\n[FIN]\r\n";
        ecrireTout(f.fs, "/v97.svr", fichier);
        const BilanSvr bilan = IntegreSvr(b, f.fs, "/v97.svr");
        // "&" is the base's "\" (same tag); "$" is taken: Pension gets the
        // first free symbol of the pool; "=" is new on both sides and stays.
        EXPECT_EQ(bilan.rubriquesNouvelles, 2u);
        EXPECT_EQ(b.LitRubrique(12), "\xB5Pension");
        EXPECT_EQ(b.LitRubrique(13), "=NOUV");
        EXPECT_EQ(b.LitNote(1), "|DURAND \xB6Luc\r\n\\tisserand \xB5militaire =x");
        // The notes of documents and events are translated as well.
        EXPECT_EQ(b.NoteDoc(1), "\\forgeron");
        EXPECT_EQ(b.NoteEvt(1), "\\meunier");
        // The row of "&" lands on the existing OCCU slot and sets its flag.
        EXPECT_EQ(b.Tete().rubriquesPersonne[0].symbole, '\\');
        EXPECT_EQ(b.Tete().rubriquesPersonne[0].drapeau, '1');
        EXPECT_EQ(b.Tete().rubriquesPersonne[3].symbole, '=');
    }
}

TEST(Svr, The51stRubricIsDroppedAndItsSymbolStaysAsText) {
    test::BaseMemoire f;
    std::string fichier = "[Sylvane Version 2001.0]\r\n[MOTS CLES]\r\n";
    for (int i = 0; i < 40; ++i)
        fichier +=
            std::string(1, static_cast<char>(0xC0 + i)) + "\r\nTAG" + std::to_string(i) + "\r\n";
    fichier += "[FIN MOTS CLES]\r\n[INDIVIDUS]\r\n 1 \r\nX;Y;;;\r\nI\r\n\r\n\r\n 0 \r\n 0 \r\n"
               "\xC0un \xE7"
               "deux\r\n#\r\n#\r\n#\r\n[FIN INDIVIDUS]\r\n[FIN]\r\n";
    ecrireTout(f.fs, "/r.svr", fichier);
    const BilanSvr bilan = IntegreSvr(f.b, f.fs, "/r.svr");
    EXPECT_EQ(bilan.rubriquesNouvelles, 39u);
    EXPECT_EQ(bilan.rubriquesPerdues, 1u);
    EXPECT_EQ(f.b.Tete().nbRubriques, 50u);
    EXPECT_EQ(f.b.RubriqueDeSymbole('\xE7'), 0u);
    EXPECT_EQ(f.b.LitNote(1), "\xC0un \xE7"
                              "deux");
}

TEST(Svr, NewRubricsAreIndexedOnlyWhenTheAnswerIsYes) {
    for (bool oui : {false, true}) {
        test::BaseMemoire f;
        ecrireTout(
            f.fs, "/q.svr",
            "[Sylvane Version 2001.0]\r\n[MOTS CLES]\r\n=\r\nNOUV\r\n[FIN MOTS CLES]\r\n"
            "[INDIVIDUS]\r\n 1 \r\nX;Y;;;\r\nI\r\n\r\n\r\n 0 \r\n 0 \r\n=mot\r\n#\r\n#\r\n#\r\n"
            "[FIN INDIVIDUS]\r\n[FIN]\r\n");
        int posee = 0;
        DialogueEchange d;
        d.question = [&](int m) {
            EXPECT_EQ(m, kQuestionRefaireMots);
            ++posee;
            return oui;
        };
        IntegreSvr(f.b, f.fs, "/q.svr", d);
        EXPECT_EQ(posee, 1);
        const std::uint32_t k = f.b.RubriqueDeSymbole('=');
        EXPECT_EQ(f.b.ListeRubrique(k).size(), oui ? 4u : 0u);
    }
}

TEST(Svr, ANoteLineHoldingOnlyTheEndMarkCutsTheNote) {
    // The note "avant / # /  2 " as the writer puts it: the "#" ends the
    // note, and " 2 " is then read as the person's first document.
    test::BaseMemoire f;
    ecrireTout(f.fs, "/n.svr",
               "[Sylvane Version 2001.0]\r\n[INDIVIDUS]\r\n 1 \r\nX;Y;;;\r\nI\r\n\r\n\r\n 0 \r\n"
               " 0 \r\navant\r\n#\r\n 2 \r\n#\r\n#\r\n#\r\n[FIN INDIVIDUS]\r\n[FIN]\r\n");
    try {
        IntegreSvr(f.b, f.fs, "/n.svr");
    } catch (const ErreurLecture&) {
        // The shifted lists may derail the rest; the error is a clear one.
    }
    EXPECT_EQ(f.b.LitNote(1), "avant");
    EXPECT_EQ(f.b.DocNo(1, 1), 2u);
}

TEST(Svr, ATruncatedFileKeepsWhatWasReadCommittedAndSaysSo) {
    Paire t;
    const std::string f = Exporte(t.a, t.fs, "/a.svr");
    const test::Etat ea = test::Capture(t.a);
    std::size_t coupes = 0;
    for (std::size_t taille = 0; taille + 7 < f.size(); taille += 13, ++coupes) {
        ecrireTout(t.fs, "/t.svr", f.substr(0, taille));
        t.b.Nouvelle("/b.sv2");
        try {
            LitSvrNouvelleBase(t.b, t.fs, "/t.svr", t.reglages);
            ADD_FAILURE() << "no error at " << taille;
        } catch (const ErreurLecture& e) {
            if (taille > 0) {
                EXPECT_NE(std::string(e.what()).find("avant sa fin"), std::string::npos);
            }
        }
        // Closed without a further commit: the file holds what the reader
        // committed, and every person in it is whole.
        t.b.Abandonne();
        t.b.Ouvre("/b.sv2");
        const test::Etat eb = test::Capture(t.b);
        ASSERT_EQ(eb.tri.size(), eb.nbPersonnes);
        for (std::uint32_t n : eb.tri) {
            EXPECT_EQ(eb.personnes[n - 1].identite, ea.personnes[n - 1].identite);
            EXPECT_EQ(eb.personnes[n - 1].sexe, ea.personnes[n - 1].sexe);
            EXPECT_EQ(eb.personnes[n - 1].pere, ea.personnes[n - 1].pere);
        }
        t.b.Abandonne();
    }
    EXPECT_GT(coupes, 50u);
}

TEST(Svr, DamagedFilesGiveAClearErrorAndNeverACrash) {
    test::BaseMemoire f;
    ecrireTout(f.fs, "/grand.svr",
               "[Sylvane Version 2001.0]\r\n[INDIVIDUS]\r\n 4000000000 \r\nX;Y;;;\r\nI\r\n\r\n\r\n"
               " 0 \r\n 0 \r\n#\r\n#\r\n#\r\n[FIN INDIVIDUS]\r\n[FIN]\r\n");
    EXPECT_THROW(IntegreSvr(f.b, f.fs, "/grand.svr"), ErreurLecture);
    ecrireTout(f.fs, "/vide.svr", "");
    EXPECT_THROW(IntegreSvr(f.b, f.fs, "/vide.svr"), ErreurLecture);
    // Bytes of every kind, and lines that look like sections.
    std::uint32_t graine = 7;
    for (int essai = 0; essai < 30; ++essai) {
        std::string bruit = "[Sylvane Version 2001.0]\r\n";
        const char* morceaux[] = {
            "[INDIVIDUS]\r\n", "[MARIAGES]\r\n",      "[EVENEMENTS]\r\n",    "#\r\n",
            " 3 \r\n",         "{Mariages}\r\n",      "{Ev\xE9nements}\r\n", "[IMAGES]\r\n",
            "-5;\r\n",         "[FIN INDIVIDUS]\r\n", "[MOTS CLES]\r\n",     "\xFF\r\n"};
        for (int i = 0; i < 200; ++i) {
            graine = graine * 1103515245 + 12345;
            bruit += morceaux[(graine >> 16) % 12];
        }
        test::BaseMemoire g;
        ecrireTout(g.fs, "/bruit.svr", bruit);
        try {
            IntegreSvr(g.b, g.fs, "/bruit.svr");
        } catch (const ErreurLecture&) {
        }
        g.Reouvre();
    }
}

// A small base written out for a partial selection, compared byte for byte
// with the file as the format lays it out: number lines with their blanks,
// numbers as text, empty values, the settings block, the lists of a person.
TEST(Svr, APartialExportIsWrittenByteForByte) {
    test::BaseMemoire f;
    Base& b = f.b;
    Entete& t = b.TeteModifiable();
    t.nbRubriques = 0;
    b.TableRubriques().fill(0);
    t.nbRubriques = 3;
    b.EcritRubrique(1, '|', "BIRN", b.Ajouter(Pack4(0)));
    b.EcritRubrique(2, '$', "BIRP", 0);
    b.EcritRubrique(3, '\\', "OCCU", 0);
    for (auto* slots : {&t.rubriquesPersonne, &t.rubriquesMariage})
        for (auto& s : *slots)
            s = SlotRubrique{' ', ' ', ""};
    t.rubriquesPersonne[0] = {'\\', ' ', "OCCU"};
    t.rubriquesPersonne[1] = {'$', '1', "BIRP"};
    t.rubriquesMariage[0] = {'$', '1', "BIRP"};
    t.particules = '0';
    t.premierPrenom = '1';

    const std::uint32_t jean =
        b.CreePersonne("MARTIN", "Jean", "Louis", 'H', "1850", "12/03", "1910");
    const std::uint32_t marie = b.CreePersonne("DURAND", "Marie", "", 'F', "1855");
    const std::uint32_t paul = b.CreePersonne("MARTIN", "Paul", "", 'H', "1880");
    const std::uint32_t autre = b.CreePersonne("LEROY", "Luc", "", 'H', "1851");
    b.EcritPere(paul, jean);
    b.EcritMere(paul, autre); // outside the selection: written as 0
    b.EcritNote(jean, "|MARTIN\r\n\\laboureur\r\n\r\n");
    b.EcritNote(marie, "");
    b.EcritNote(paul, "");
    const std::uint32_t m1 = b.CreeMariage(jean, marie, "1878", "1910");
    b.EcritNoteMariage(m1, "Contrat");
    b.CreeMariage(0, paul, "1905"); // no husband: never written
    b.CreeMariage(autre, marie);    // a spouse outside: not written
    b.MajLiens(jean, paul, "GODF", 'A');
    b.MajLiens(jean, autre, "WITN", 'A');
    const std::uint32_t acte = b.CreeDoc("Acte", "acte.jpg", "", "ligne 1\r\nligne 2");
    const std::uint32_t titre = b.CreeDoc("Titre", "", "", "");
    b.MajDocs(paul, acte, 'A');
    b.DefinitDocumentTitre(titre);
    const std::uint32_t e = b.CreeEvtPersonne(0, 2407000, "OCCU", "Caen");
    b.MajPersonnesEvt(e, autre, 'A');
    b.MajEvts(autre, e, "WITN", 'A');
    b.MajPersonnesEvt(e, paul, 'A');
    b.MajEvts(paul, e, "MAIN", 'A');
    b.MajDocsEvt(e, acte, 'A');
    b.EcritNoteEvt(e, "Note");
    b.ValideBase();

    Parametres p;
    p.personneEnCours = static_cast<std::int32_t>(autre); // not exported: no line
    p.deCujus = static_cast<std::int32_t>(paul);
    p.degrade = false;
    p.adresse[1] = "Rue";
    p.typesDocument = {"Acte", "Photo"};
    Selection sel(b);
    for (std::uint32_t n : {jean, marie, paul})
        sel.Inclut(n);
    ASSERT_TRUE(ExporteSvr(b, sel, p, f.fs, "/p.svr"));

    const std::string attendu =
        "[Sylvane Version 2001.0]\r\n"
        "[PARAMETRES]\r\n0\r\n1\r\n[FIN PARAMETRES]\r\n"
        "[INI]\r\n"
        "Couleur Fond=16711808\r\nD\xE9grad\xE9=0\r\n"
        "Couleur Cadre Homme=16776960\r\nCouleur Cadre Femme=65535\r\n"
        "Couleur Cadre Ind\xE9termin\xE9=12632256\r\n"
        "Couleur Police Homme=4194304\r\nCouleur Police Femme=255\r\n"
        "Couleur Police Ind\xE9termin\xE9=0\r\n"
        "Maximum Recherche Parent\xE9=10\r\nType Pr\xE9sentation=2\r\n"
        "Nom Police 1=Arial\r\nNom Police 2=Arial\r\nNom Police 3=Arial\r\nNom Police 4=Arial\r\n"
        "Taille Police 1=8\r\nTaille Police 2=8\r\nTaille Police 3=8\r\nTaille Police 4=8\r\n"
        "Nombre Cases 1=8\r\nNombre Cases 2=32\r\nNombre Cases 3=48\r\nNombre Cases 4=64\r\n"
        "Proportionnel 1=1\r\nProportionnel 2=1\r\nProportionnel 3=1\r\nProportionnel 4=1\r\n"
        "De Cujus=3\r\n"
        "Affichage Nom=FNAM/BIRN/\r\nConversion nom=\r\nConversion pr\xE9nom=\r\n"
        "Adresse 2=Rue\r\n"
        "Type Document 1=Acte\r\nType Document 2=Photo\r\n"
        "[FIN INI]\r\n"
        "[DESCRIPTION]\r\n2\r\n[FIN DESCRIPTION]\r\n"
        "[MOTS CLES]\r\n|\r\nBIRN\r\n$\r\nBIRP\r\n\\\r\nOCCU\r\n[FIN MOTS CLES]\r\n"
        "[DONNEES INDIVIDUS]\r\n\\\r\n \r\n$\r\n1\r\n[FIN DONNEES INDIVIDUS]\r\n"
        "[DONNEES MARIAGES]\r\n$\r\n1\r\n[FIN DONNEES MARIAGES]\r\n"
        "[INDIVIDUS]\r\n"
        // In the order of the sort table.
        " 1 \r\nMARTIN;Jean;Louis;12/03;\r\nH\r\n1850\r\n1910\r\n 0 \r\n 0 \r\n"
        "|MARTIN\r\n\\laboureur\r\n\r\n\r\n#\r\n#\r\n 3 \r\nGODF\r\n{Mariages}\r\n1\r\n#\r\n"
        " 2 \r\nDURAND;Marie;;;\r\nF\r\n1855\r\n\r\n 0 \r\n 0 \r\n#\r\n#\r\n"
        "{Mariages}\r\n1\r\n#\r\n"
        " 3 \r\nMARTIN;Paul;;;\r\nH\r\n1880\r\n\r\n 1 \r\n 0 \r\n#\r\n 1 \r\n#\r\n"
        "{Mariages}\r\n{Ev\xE9nements}\r\n1;MAIN\r\n#\r\n"
        "[FIN INDIVIDUS]\r\n"
        "[MARIAGES]\r\n 1 \r\n 2 \r\n1878\r\n1910\r\nContrat\r\n#\r\n[FIN MARIAGES]\r\n"
        "[IMAGES]\r\n 1 \r\nActe\r\nacte.jpg\r\nligne 1\r\nligne 2\r\n#\r\n[FIN IMAGES]\r\n"
        "[EVENEMENTS]\r\n 1 \r\n2407000\r\nCaen\r\nOCCU\r\n\r\n3;\r\n1;\r\nNote\r\n#\r\n"
        "[FIN EVENEMENTS]\r\n"
        "[INDEX]\r\n|\r\n[FIN INDEX]\r\n"
        "[FIN]\r\n";
    EXPECT_EQ(lireTout(f.fs, "/p.svr"), attendu);
}

TEST(Svr, ALoopOfAncestryInTheFileIsBrokenOnReading) {
    // Person 1's father is 2 and 2's father is 1: each would be the
    // other's ancestor, and every walk down the tree would go round.
    auto bloc = [](const char* n, const char* nom, const char* pere) {
        return std::string(" ") + n + " \r\n" + nom + ";Jean;;;\r\nH\r\n\r\n\r\n " + pere +
               " \r\n 0 \r\n#\r\n#\r\n#\r\n";
    };
    const std::string svr = "[Sylvane Version 2001.0]\r\n[INDIVIDUS]\r\n" + bloc("1", "Martin", "2") +
                            bloc("2", "Durand", "1") + bloc("3", "Petit", "2") +
                            "[FIN INDIVIDUS]\r\n[FIN]\r\n";
    for (bool integre : {false, true}) {
        SCOPED_TRACE(integre);
        Paire t;
        ecrireTout(t.fs, "/boucle.svr", svr);
        BilanSvr bilan;
        if (integre) bilan = IntegreSvr(t.a, t.fs, "/boucle.svr");
        else bilan = t.Lit("/boucle.svr");
        Base& b = integre ? t.a : t.b;
        EXPECT_EQ(bilan.bouclesRompues, 1u);
        // Every walk up ends, and the links left agree both ways.
        for (std::uint32_t n = 1; n <= b.Tete().maxPersonne; ++n) {
            std::uint32_t p = n;
            for (int pas = 0; p != 0; ++pas) {
                ASSERT_LT(pas, 10) << n;
                p = b.LitPere(p);
            }
            if (const std::uint32_t pere = b.LitPere(n)) {
                bool enfant = false;
                for (int i = 1; std::uint32_t c = b.EnfantNo(pere, i); ++i) enfant |= c == n;
                EXPECT_TRUE(enfant) << n;
            }
        }
    }
}
