// Register capture: the splitting of a line, the four kinds of file, and
// the files that are no register at all.
#include "exchange/releve.h"
#include "store/fichier_memoire.h"
#include "support/francais.h"
#include "text/messages.h"
#include "text/tags.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

using namespace sylvane;

namespace {

struct Releve {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    RapportReleve r;
    Releve(std::string_view octets, GenreReleve g, OptionsReleve o = {}) {
        b.Nouvelle("/r.sv2");
        o.parametres = &p;
        r = ImporteReleve(b, octets, g, o);
    }
    // The person of that first name and family name, 0 when none.
    std::uint32_t Qui(const std::string& prenom, const std::string& nom = {}) {
        for (std::size_t i = 1; i <= b.TablePersonnes().taille(); ++i) {
            const std::uint32_t n = b.TriFiche(i);
            if (b.LitPrenom(n) == prenom && (nom.empty() || b.LitNom(n) == nom)) return n;
        }
        return 0;
    }
    // The role of person n in event e, "" when none.
    std::string Role(std::uint32_t n, std::uint32_t e) {
        for (int i = 1; b.EvtNo(n, i); ++i)
            if (b.EvtNo(n, i) == e) return b.RoleEvtNo(n, i);
        return "";
    }
};

std::vector<std::string> Champs(std::string_view ligne) {
    std::vector<std::string> c;
    EXPECT_TRUE(DecoupeChamps(ligne, c)) << ligne;
    return c;
}

TEST(DecoupeChamps, LeSeparateurEstLePremierQueLaLigneContient) {
    EXPECT_EQ(Champs("a;b,c\td"), (std::vector<std::string>{"a", "b,c\td"}));
    EXPECT_EQ(Champs("a\tb,c"), (std::vector<std::string>{"a", "b,c"}));
    EXPECT_EQ(Champs(" a , b ,"), (std::vector<std::string>{"a", "b", ""}));
    EXPECT_EQ(Champs("\"Jean\" \"DUBOIS\" \"1850\""), (std::vector<std::string>{"Jean", "DUBOIS", "1850"}));
    std::vector<std::string> c;
    EXPECT_FALSE(DecoupeChamps("une ligne sans rien", c));
}

TEST(DecoupeChamps, ChampsEntreGuillemetsCommeLesEcritUnTableur) {
    EXPECT_EQ(Champs("\"Saint-Jean-de-Luz, rue\",\"x\""),
              (std::vector<std::string>{"Saint-Jean-de-Luz, rue", "x"}));
    EXPECT_EQ(Champs("\"dit \"\"le Grand\"\"\";b"), (std::vector<std::string>{"dit \"le Grand\"", "b"}));
    // A mark never closed: the field loses its first character only.
    EXPECT_EQ(Champs("\"abc;d"), (std::vector<std::string>{"abc", "d"}));
    // Seventeen fields at most.
    EXPECT_EQ(Champs(std::string(30, ';')).size(), ChampsReleve);
}

TEST(NaissanceParAge, AnsMoisSemainesJours) {
    EXPECT_EQ(NaissanceParAge("14/3", "1789", "45", "ans"), (DateTenue{"CAL", "1744"}));
    EXPECT_EQ(NaissanceParAge("14/3", "1789", "45 ans", ""), (DateTenue{"CAL", "1744"}));
    EXPECT_EQ(NaissanceParAge("14/3", "1789", "2", "mois"), Conv_DateEtrangere("CAL 14 JAN 1789", "dd/mm/yyyy"));
    EXPECT_EQ(NaissanceParAge("14/3", "1789", "2", "m"), Conv_DateEtrangere("CAL 14 JAN 1789", "dd/mm/yyyy"));
    EXPECT_EQ(NaissanceParAge("31/3", "1789", "1", "mois"), Conv_DateEtrangere("CAL 28 FEB 1789", "dd/mm/yyyy"));
    EXPECT_EQ(NaissanceParAge("5/1", "1789", "10", "jours"), Conv_DateEtrangere("CAL 26 DEC 1788", "dd/mm/yyyy"));
    EXPECT_EQ(NaissanceParAge("19/5", "1789", "3", "sem"), Conv_DateEtrangere("CAL 28 APR 1789", "dd/mm/yyyy"));
    EXPECT_EQ(NaissanceParAge("14/3", "1789", "environ 70", ""), DateTenue{});
    EXPECT_EQ(NaissanceParAge("14/3", "", "70", ""), DateTenue{});
}

TEST(Bapteme, EnfantParentsCoupleEtActe) {
    Releve x("Jour;Annee;Lieu;Nom;Prenom\r\n"
             "12/01;1788;Saint-Jean;DUBOIS;Jean;H;DUBOIS;Pierre;laboureur;MARTIN;Anne;;Jean MARTIN;Marie DUBOIS;ondoy\xE9\r\n"
             ";1790;Ciboure;LAFITTE;Marie;;;Bernard;;;;;;;\r\n",
             GenreReleve::Bapteme);
    EXPECT_TRUE(x.r.entete);
    EXPECT_EQ(x.r.message, 0);
    EXPECT_EQ(x.r.actes, 2u);
    EXPECT_EQ(x.r.personnes, 5u);
    Base& b = x.b;
    const std::uint32_t jean = x.Qui("Jean", "DUBOIS"), pierre = x.Qui("Pierre"), anne = x.Qui("Anne");
    ASSERT_TRUE(jean && pierre && anne);
    EXPECT_EQ(b.LitSexe(jean), "H");
    EXPECT_EQ(b.LitAnNaiss(jean), "1788");
    EXPECT_EQ(b.LitDateNaiss(jean), "12/1");
    EXPECT_EQ(b.LieuNaiss(jean), "Saint-Jean");
    EXPECT_EQ(b.LitPere(jean), pierre);
    EXPECT_EQ(b.LitMere(jean), anne);
    EXPECT_EQ(b.EnfantNo(pierre, 1), jean);
    const std::uint32_t m = b.MariageNo(pierre, 1);
    ASSERT_NE(m, 0u);
    EXPECT_EQ(b.LitFemme(m), anne);
    EXPECT_EQ(b.MariageNo(anne, 1), m);
    EXPECT_NE(b.LitNote(pierre).find("OCCU \\laboureur"), std::string::npos);
    // The act: one event, its roles, its comment and its source.
    const std::uint32_t e = b.EvtNo(jean, 1);
    ASSERT_NE(e, 0u);
    EXPECT_EQ(b.TagEvt(e), "CHR");
    EXPECT_EQ(b.LieuEvt(e), "Saint-Jean");
    EXPECT_EQ(b.DateEvt(e), Conv_DateSerie("12/01/1788", "dd/mm/yyyy"));
    EXPECT_EQ(x.Role(jean, e), "CHIL");
    EXPECT_EQ(x.Role(pierre, e), "FATH");
    EXPECT_EQ(x.Role(anne, e), "MOTH");
    const std::string note = b.NoteEvt(e);
    EXPECT_NE(note.find("Enfant Jean DUBOIS Sexe : H\r\n"), std::string::npos) << note;
    EXPECT_NE(note.find("P\xE8re Pierre DUBOIS, laboureur\r\n"), std::string::npos) << note;
    EXPECT_NE(note.find("Parrain Jean MARTIN\r\nMarraine Marie DUBOIS\r\n\r\nondoy\xE9"), std::string::npos) << note;
    EXPECT_EQ(b.DocEvtNo(e, 1), 1u);
    EXPECT_EQ(b.Tete().documentTitre, 1u);
    EXPECT_EQ(b.TitreDoc(1), Conv_LibelleTag("CHR") + Message(976));
    // A year alone: the event on the first of January, the child with no
    // day; a father with no family name takes the child's; no sex is "I".
    const std::uint32_t marie = x.Qui("Marie"), bernard = x.Qui("Bernard");
    EXPECT_EQ(b.LitSexe(marie), "I");
    EXPECT_EQ(b.LitDateNaiss(marie), "");
    EXPECT_EQ(b.DateEvt(b.EvtNo(marie, 1)), Conv_DateSerie("01/01/1790", "dd/mm/yyyy"));
    EXPECT_EQ(b.LitNom(bernard), "LAFITTE");
    EXPECT_EQ(b.MariageNo(bernard, 1), 0u);
    EXPECT_EQ(x.p.affichageNom, (std::vector<std::string>{"FNAM", "OFNM", "BIRN"}));
}

TEST(Sepulture, AgeDecesEtParents) {
    Releve x("14/03\t1789\tSaint-Jean\tDUBOIS\tCatherine\tF\t2\tmois\t\t\t\tDUBOIS\tJacques\tLARRALDE\tMarie\t\n"
             "02/04\t1789\tCiboure\tHARAMBURU\tJean\tH\t62\tans\t\tUrrugne\tDUHALDE Catherine\t\t\t\t\t\n"
             "\t1789\tUrrugne\tSALLABERRY\tMartin\tH\tenviron 70\n",
             GenreReleve::Sepulture);
    EXPECT_FALSE(x.r.entete);
    EXPECT_EQ(x.r.actes, 3u);
    Base& b = x.b;
    const std::uint32_t cath = x.Qui("Catherine"), jean = x.Qui("Jean"), martin = x.Qui("Martin");
    const DateTenue deuxMois = Conv_DateEtrangere("CAL 14 JAN 1789", "dd/mm/yyyy");
    EXPECT_EQ(b.LitDateNaiss(cath), deuxMois.jourMois);
    EXPECT_EQ(b.LitAnNaiss(cath), "1789");
    EXPECT_EQ(b.LitAnDeces(cath), "1789");
    EXPECT_EQ(b.LitDateDeces(cath), "14/3");
    EXPECT_EQ(b.LitPere(cath), x.Qui("Jacques"));
    EXPECT_EQ(b.LitAnNaiss(jean), "1727");
    EXPECT_EQ(b.LitDateNaiss(jean), "CAL");
    EXPECT_EQ(b.LieuNaiss(jean), "Urrugne");
    EXPECT_EQ(b.LieuDeces(jean), "Ciboure");
    EXPECT_EQ(b.LitAnNaiss(martin), "");
    const std::uint32_t e = b.EvtNo(jean, 1);
    EXPECT_EQ(b.TagEvt(e), "BURI");
    EXPECT_EQ(x.Role(jean, e), "DEAD");
    EXPECT_NE(b.NoteEvt(e).find("D\xE9" "funt Jean HARAMBURU Sexe : H Age : 62 ans de Urrugne\r\nConjoint DUHALDE Catherine"),
              std::string::npos)
        << b.NoteEvt(e);
    EXPECT_NE(b.NoteEvt(b.EvtNo(cath, 1)).find("\tP\xE8re Jacques DUBOIS\r\n\tM\xE8re Marie LARRALDE"),
              std::string::npos)
        << b.NoteEvt(b.EvtNo(cath, 1));
}

TEST(Mariage, EpouxParentsDefuntsEtVeuvage) {
    Releve x("15/01,1787,Saint-Jean,DUBOIS,Pierre,25,Ciboure,,Jean,MARTIN Jeanne,"
             "MARTIN,Anne,21,,LEROY Jean,feu Jean,\"DUHALDE Marie +\"\n",
             GenreReleve::Mariage);
    ASSERT_EQ(x.r.actes, 1u);
    Base& b = x.b;
    const std::uint32_t pierre = x.Qui("Pierre"), anne = x.Qui("Anne", "MARTIN");
    ASSERT_TRUE(pierre && anne);
    EXPECT_EQ(b.LitAnNaiss(pierre), "1762");
    EXPECT_EQ(b.LitDateNaiss(pierre), "CAL");
    EXPECT_NE(b.LitNote(pierre).find("RESI %Ciboure"), std::string::npos);
    const std::uint32_t m = b.MariageNo(pierre, 1);
    EXPECT_EQ(b.LitFemme(m), anne);
    EXPECT_EQ(b.LitAnMariage(m), "1787");
    EXPECT_EQ(b.LieuMariage(m), "Saint-Jean");
    // The husband's parents: his father takes his family name.
    const std::uint32_t pereH = b.LitPere(pierre), mereH = b.LitMere(pierre);
    EXPECT_EQ(b.LitNom(pereH), "DUBOIS");
    EXPECT_EQ(b.LitPrenom(pereH), "Jean");
    EXPECT_EQ(b.LitNom(mereH), "MARTIN");
    EXPECT_EQ(b.LitPrenom(mereH), "Jeanne");
    EXPECT_EQ(b.LitAnDeces(pereH), "");
    // The wife's: both dead before the act.
    const std::uint32_t pereF = b.LitPere(anne), mereF = b.LitMere(anne);
    EXPECT_EQ(b.LitNom(pereF), "MARTIN");
    EXPECT_EQ(b.LitAnDeces(pereF), "1787");
    EXPECT_EQ(b.LitDateDeces(pereF), "BEF");
    EXPECT_EQ(b.LitNom(mereF), "DUHALDE");
    EXPECT_EQ(b.LitAnDeces(mereF), "1787");
    // The widow's late husband: a marriage and a role.
    const std::uint32_t leroy = x.Qui("Jean", "LEROY");
    ASSERT_NE(leroy, 0u);
    EXPECT_EQ(b.LitSexe(leroy), "H");
    const std::uint32_t e = b.EvtNo(pierre, 1);
    EXPECT_EQ(b.TagEvt(e), "MARR");
    EXPECT_EQ(x.Role(pierre, e), "HUSB");
    EXPECT_EQ(x.Role(anne, e), "WIFE");
    EXPECT_EQ(x.Role(pereH, e), "FATH");
    EXPECT_EQ(x.Role(mereF, e), "MOTH");
    EXPECT_EQ(x.Role(leroy, e), "Veuve de");
    EXPECT_EQ(b.LitMari(b.MariageNo(leroy, 1)), leroy);
    EXPECT_EQ(b.LitFemme(b.MariageNo(leroy, 1)), anne);
    const std::string c = b.NoteEvt(e);
    EXPECT_NE(c.find("Epoux Pierre DUBOIS - 25 ans - Ciboure\r\n"), std::string::npos) << c;
    EXPECT_NE(c.find("Veuve de LEROY Jean"), std::string::npos) << c;
}

TEST(Ascendance, NumerosSosaLiensEtTrous) {
    Releve x("Num;Prenom;Nom;Sexe\n"
             "1;Paul;MARTIN;F;notaire;3;4;1850;Caen;;;1920;Paris\n"
             "2;Jean;MARTIN;F;;;;1820;;;;;;12;5;1848;Bayeux\n"
             "3;Marie;DURAND;H\n"
             "6;Louis;DURAND\n"
             "abc;x;y\n"
             "2;Jean;DOUBLON\n",
             GenreReleve::Ascendance);
    EXPECT_TRUE(x.r.entete);
    EXPECT_EQ(x.r.actes, 4u);
    EXPECT_EQ(x.r.lignesIgnorees, (std::vector<std::uint32_t>{6, 7}));
    Base& b = x.b;
    // The sex column counts for number 1 alone.
    EXPECT_EQ(b.LitSexe(1), "F");
    EXPECT_EQ(b.LitSexe(2), "H");
    EXPECT_EQ(b.LitSexe(3), "F");
    EXPECT_EQ(b.LitDateNaiss(1), "3/4");
    EXPECT_EQ(b.LitAnDeces(1), "1920");
    EXPECT_EQ(b.LieuNaiss(1), "Caen");
    EXPECT_EQ(b.LieuDeces(1), "Paris");
    EXPECT_NE(b.LitNote(1).find("OCCU \\notaire"), std::string::npos);
    EXPECT_EQ(b.LitPere(1), 2u);
    EXPECT_EQ(b.LitMere(1), 3u);
    EXPECT_EQ(b.LitPere(3), 6u);
    EXPECT_EQ(b.LitMari(1), 2u);
    EXPECT_EQ(b.LitFemme(1), 3u);
    EXPECT_EQ(b.LitAnMariage(1), "1848");
    EXPECT_EQ(b.LieuMariage(1), "Bayeux");
    EXPECT_EQ(b.MariageNo(2, 1), 1u);
    EXPECT_EQ(b.MariageNo(3, 1), 1u);
    // 6 has no wife in the file: marriage 3 points to a person 7 with no data.
    EXPECT_EQ(b.LitMari(3), 6u);
    EXPECT_EQ(b.LitFemme(3), 7u);
    EXPECT_EQ(b.Tete().maxPersonne, 6u);
    EXPECT_EQ(b.Tete().nbPersonnes, 4u);
    EXPECT_EQ(b.TablePersonnes().taille(), 4u);
    EXPECT_EQ(b.Tete().modeTri, '2');
    EXPECT_EQ(b.LitNom(2), "MARTIN"); // not the later duplicate
    EXPECT_EQ(x.p.affichageNom, (std::vector<std::string>{"FNAM", "BIRN"}));
}

TEST(FichiersDeReleve, EncodagesReconnus) {
    // UTF-8: a character Windows-1252 lacks is kept as a reference, and the
    // ";" of that reference does not split the identity.
    Releve u("1;\xD0\x9F\xD1\x91\xD1\x82r;\xC3\x87" "ABALETTE\n", GenreReleve::Ascendance);
    EXPECT_EQ(AnsiRefVersUtf8(u.b.LitPrenom(1)), "\xD0\x9F\xD1\x91\xD1\x82r");
    EXPECT_EQ(u.b.LitNom(1), "\xC7" "ABALETTE");
    // Windows-1252 as it is.
    Releve w("1;L\xE9on;\xC7" "ABALETTE\n", GenreReleve::Ascendance);
    EXPECT_EQ(w.b.LitPrenom(1), "L\xE9on");
    // UTF-16 with its mark, as a spreadsheet's "Unicode text".
    std::string seize = "\xFF\xFE";
    const std::u16string t = u"1\tL\u00e9on\tX\r\n";
    for (char16_t c : t) {
        seize += static_cast<char>(c & 0xFF);
        seize += static_cast<char>(c >> 8);
    }
    Releve s(seize, GenreReleve::Ascendance);
    EXPECT_EQ(s.b.LitPrenom(1), "L\xE9on");
}

TEST(FichiersDeReleve, UneLigneFautiveArreteEtGardeCeQuiEstFait) {
    Releve x("1/1;1800;A;X;Paul\n2/1;1800;A;Y;Luc\nune ligne sans separateur\n3/1;1800;A;Z;Max\n",
             GenreReleve::Bapteme);
    EXPECT_EQ(x.r.message, MessageSansSeparateur);
    EXPECT_EQ(x.r.ligneErreur, 3u);
    EXPECT_EQ(x.r.actes, 2u);
    EXPECT_FALSE(x.r.refuse());
    // Committed: the base opened again holds the two acts.
    x.b.FermeBase();
    Base relue(x.fs, x.p);
    relue.Ouvre("/r.sv2");
    EXPECT_EQ(relue.Tete().nbPersonnes, 2u);
    EXPECT_EQ(relue.Tete().nbEvenements, 2u);
    relue.FermeBase();

    const std::string longue = "1/1;1800;A;X;Paul\n" + std::string(LongueurMaxLigneReleve + 1, 'a') + ";b\n";
    Releve l(longue, GenreReleve::Bapteme);
    EXPECT_EQ(l.r.message, MessageLigneTropLongue);
    EXPECT_EQ(l.r.actes, 1u);
}

TEST(FichiersDeReleve, CeQuiNestPasUnReleveEstRefuse) {
    for (const auto& [octets, message] : std::vector<std::pair<std::string, int>>{
             {"", MessageFichierVide},
             {" \r\n\r\n", MessageFichierVide},
             {std::string("PK\x03\x04\0\0\x14\0;", 9), MessageFichierBinaire},
             {std::string(200, '\x01') + ";", MessageFichierBinaire}}) {
        Releve x(octets, GenreReleve::Mariage);
        EXPECT_TRUE(x.r.refuse());
        EXPECT_EQ(x.r.message, message);
        EXPECT_EQ(x.b.Tete().nbPersonnes, 0u);
    }
    // Junk that is text but no register: the first line stops it, cleanly.
    Releve j("\xFF\xD8\xFF\xE0 JFIF junk\n", GenreReleve::Sepulture);
    EXPECT_EQ(j.r.message, MessageSansSeparateur);
    EXPECT_EQ(j.r.actes, 0u);
}

TEST(FichiersDeReleve, UnArretGardeLesLignesFaites) {
    int appels = 0;
    OptionsReleve o;
    o.arret = [&appels] { return ++appels == 2; };
    std::string texte;
    for (int i = 1; i <= 5; ++i) texte += std::to_string(i) + "/1;1800;A;X;P" + std::to_string(i) + "\n";
    Releve x(texte, GenreReleve::Bapteme, o);
    EXPECT_TRUE(x.r.arrete);
    EXPECT_EQ(x.r.actes, 2u);
    EXPECT_EQ(x.b.Tete().nbPersonnes, 2u);
    EXPECT_FALSE(x.b.Modifiee());
}

} // namespace
