#include "cli/cli.h"
#include "store/fichier.h"
#include "support/dossier_temp.h"
#include "text/messages.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

using namespace sylvane;
using sylvane::test::DossierTemp;

namespace {

std::map<int, std::string> Francais() {
    return LitSourceMessages(test::LitFichier(SYLVANE_SOURCE_DIR "/lang/Fran\xC3\xA7" "ais.msg"));
}

// Reads every number through a reader over `octets`, as Message() would.
std::map<int, std::string> ParLecteur(const std::string& octets, std::vector<int> ordre) {
    DossierTemp d;
    test::EcritFichier(d / "x.mes", octets);
    LecteurMessages l(systemeReel().ouvrir(d / "x.mes", Mode::Lecture));
    std::map<int, std::string> r;
    for (int n : ordre)
        if (!l.message(n).empty()) r[n] = l.message(n);
    return r;
}

std::uint32_t Lit32(const std::string& s, std::size_t at) {
    std::uint32_t v = 0;
    for (int i = 3; i >= 0; --i) v = v << 8 | static_cast<unsigned char>(s[at + i]);
    return v;
}

} // namespace

TEST(FichierMessages, EveryMessageReadsBackInAnyOrder) {
    auto messages = Francais();
    messages[31999] = std::string(200, 'x'); // fills its 200 bytes: no NUL
    messages[1] = "";
    messages.erase(1);
    const std::string octets = EcritFichierMessages(messages);

    std::vector<int> ordre;
    for (int n = -3; n <= kMessageMax + 3; ++n) ordre.push_back(n);
    EXPECT_EQ(ParLecteur(octets, ordre), messages);
    // Jumping between blocks reloads them.
    std::shuffle(ordre.begin(), ordre.end(), std::mt19937(7));
    EXPECT_EQ(ParLecteur(octets, ordre), messages);
    EXPECT_EQ(LitFichierMessages(octets), messages);
}

TEST(FichierMessages, LayoutFollowsTheFormat) {
    const std::string o = EcritFichierMessages({{2, "deux"}, {1500, "mille cinq cents"}});
    // Block 1 and block 2 are present, the others are not.
    EXPECT_EQ(Lit32(o, 0), 129u);
    EXPECT_EQ(Lit32(o, 4), 129u + 4000);
    for (int b = 2; b < 32; ++b) EXPECT_EQ(Lit32(o, 4 * b), 0u);
    const std::uint32_t pos2 = Lit32(o, 128 + 4);
    EXPECT_EQ(Lit32(o, 128), 0u); // message 1 is absent
    EXPECT_EQ(o.substr(pos2 - 1, 5), std::string("deux\0", 5));
    const std::uint32_t pos1500 = Lit32(o, 128 + 4000 + 4 * 499);
    EXPECT_EQ(o.substr(pos1500 - 1, 16), "mille cinq cents");
    EXPECT_EQ(o.size(), 128u + 2 * 4000 + 2 * 200);
}

TEST(FichierMessages, MissingBlockGivesEmptyAndTheOthersStillWork) {
    const std::string o = EcritFichierMessages({{500, "cinq cents"}, {2500, "b3"}});
    const auto r = ParLecteur(o, {500, 1500, 500, 0, -5, 32001, 2500, 1999, 2500});
    EXPECT_EQ(r, (std::map<int, std::string>{{500, "cinq cents"}, {2500, "b3"}}));
}

TEST(FichierMessages, WriterRefusesWhatTheFormatCannotHold) {
    EXPECT_THROW(EcritFichierMessages({{0, "a"}}), std::invalid_argument);
    EXPECT_THROW(EcritFichierMessages({{32001, "a"}}), std::invalid_argument);
    EXPECT_THROW(EcritFichierMessages({{5, std::string(201, 'a')}}), std::invalid_argument);
    EXPECT_THROW(EcritFichierMessages({{5, std::string("a\0b", 3)}}), std::invalid_argument);
    EXPECT_NO_THROW(EcritFichierMessages({{32000, std::string(200, 'a')}}));
}

TEST(FichierMessages, DamagedFilesNeverReadOutside) {
    const std::string bon = EcritFichierMessages(
        {{1, "un"}, {999, "fin du bloc"}, {1000, std::string(200, 'z')}, {20001, "loin"}});
    std::vector<int> ordre = {1, 999, 1000, 20001, 2, 1, 20001};
    // Every truncation: what is cut off is missing, what remains is right.
    for (std::size_t t = 0; t <= bon.size(); t += (t < 200 ? 1 : 97)) {
        const auto r = LitFichierMessages(bon.substr(0, t));
        for (const auto& [n, texte] : r) EXPECT_EQ(bon.find(texte) != std::string::npos, true);
    }
    EXPECT_TRUE(LitFichierMessages("").empty());
    EXPECT_TRUE(LitFichierMessages(std::string(100, '\xFF')).empty());

    // Positions pointing anywhere, including at the very last byte.
    std::string o = bon;
    auto pose = [&](std::size_t at, std::uint32_t v) {
        for (int i = 0; i < 4; ++i) o[at + i] = static_cast<char>(v >> (8 * i));
    };
    pose(0, static_cast<std::uint32_t>(o.size())); // block 1 at the last byte
    pose(4 * 20, 0xFFFFFFFFu);
    EXPECT_NO_THROW(LitFichierMessages(o));
    o = bon;
    pose(128, static_cast<std::uint32_t>(o.size()));     // message 1: last byte
    pose(128 + 4, static_cast<std::uint32_t>(o.size() + 1)); // message 2: past the end
    o.back() = 'Q';
    const auto r = LitFichierMessages(o);
    EXPECT_EQ(r.count(2), 0u);
    EXPECT_EQ(r.at(1), "Q");

    // Random damage.
    std::mt19937 alea(42);
    for (int essai = 0; essai < 300; ++essai) {
        std::string d = bon;
        for (int k = 0; k < 6; ++k) d[alea() % std::min<std::size_t>(d.size(), 4500)] = char(alea());
        d.resize(alea() % (d.size() + 1));
        for (const auto& [n, texte] : ParLecteur(d, ordre)) EXPECT_LE(texte.size(), 200u);
    }
}

TEST(SourceMessages, EscapesCommentsAndConversion) {
    const auto m = LitSourceMessages("\xEF\xBB\xBF# commentaire\r\n\n"
                                     "7\tdeux\\nlignes\\tet \\\\ fin \r\n"
                                     "12\t\xC3\xA9t\xC3\xA9 \xC5\x93uvre\n"
                                     "13\t\n");
    EXPECT_EQ(m, (std::map<int, std::string>{
                     {7, "deux\nlignes\tet \\ fin "}, {12, "\xE9t\xE9 \x9Cuvre"}, {13, ""}}));
    EXPECT_EQ(LitSourceMessages(EcritSourceMessages(m)), m);
}

TEST(SourceMessages, BadLinesNameTheirLine) {
    auto ligne = [](const std::string& s) {
        try {
            LitSourceMessages(s);
        } catch (const ErreurSourceMessages& e) {
            return e.ligne();
        }
        return 0;
    };
    EXPECT_EQ(ligne("1\ta\n2 sans tabulation\n"), 2);
    EXPECT_EQ(ligne("x1\ta\n"), 1);
    EXPECT_EQ(ligne("0\ta\n"), 1);
    EXPECT_EQ(ligne("32001\ta\n"), 1);
    EXPECT_EQ(ligne("# c\n5\ta\n5\tb\n"), 3);
    EXPECT_EQ(ligne("5\ta\\q\n"), 1);
    EXPECT_EQ(ligne("5\ta\\\n"), 1);
    // 200 characters once in Windows-1252, even if longer in UTF-8.
    std::string e200;
    for (int i = 0; i < 200; ++i) e200 += "\xC3\xA9";
    EXPECT_EQ(ligne("5\t" + e200 + "\n"), 0);
    EXPECT_EQ(ligne("5\t" + e200 + "e\n"), 1);
}

TEST(VerbeMes, BuildAndDumpThroughTheCommandLine) {
    DossierTemp d;
    test::EcritFichier(d / "a.msg", "# essai\n3\ttrois\n1001\tmille un\\n\n");
    std::ostringstream out, err;
    ASSERT_EQ(cli::Executer({"mes", "build", d / "a.msg", d / "a.mes"}, out, err), 0) << err.str();
    EXPECT_EQ(cli::Executer({"mes", "dump", d / "a.mes"}, out, err), 0);
    EXPECT_EQ(out.str(), "3\ttrois\n1001\tmille un\\n\n");

    test::EcritFichier(d / "b.msg", "3\ttrois\n3\tencore\n");
    std::ostringstream err2;
    EXPECT_EQ(cli::Executer({"mes", "build", d / "b.msg", d / "b.mes"}, out, err2), 1);
    EXPECT_NE(err2.str().find("ligne 2"), std::string::npos) << err2.str();
    EXPECT_FALSE(systemeReel().existe(d / "b.mes"));
    EXPECT_EQ(cli::Executer({"mes", "frobnicate"}, out, err2), 2);
}

TEST(Langue, ListAndSwitchAtRunTime) {
    DossierTemp d;
    test::EcritFichier(d / "fran\xC3\xA7" "ais.mes", EcritFichierMessages({{754, "Naissance"}}));
    test::EcritFichier(d / "ENGLISH.MES", EcritFichierMessages({{754, "Birth"}}));
    test::EcritFichier(d / "notes.txt", "");
    EXPECT_EQ(ListeLangues(d.chemin()), (std::vector<std::string>{"English", "Fran\xE7" "ais"}));

    ASSERT_TRUE(ChoisirLangue("Fran\xE7" "ais", d.chemin()));
    EXPECT_EQ(Message(754), "Naissance");
    EXPECT_EQ(LangueCourante(), "Fran\xE7" "ais");
    ASSERT_TRUE(ChoisirLangue("English", d.chemin()));
    EXPECT_EQ(Message(754), "Birth");
    EXPECT_FALSE(ChoisirLangue("Klingon", d.chemin()));
    EXPECT_EQ(Message(754), "Birth");
    EXPECT_EQ(Message(755), "");
    EXPECT_EQ(PrendErreurLangue(), "") << "a missing file is no damage";

    // A damaged file is refused and told about once; the language stays.
    const std::string bon = EcritFichierMessages({{754, "Geburt"}});
    for (const std::string& abime :
         {bon.substr(0, bon.size() - 300), bon.substr(0, 100), std::string(4096, '\0')}) {
        test::EcritFichier(d / "Deutsch.mes", abime);
        EXPECT_FALSE(ChoisirLangue("Deutsch", d.chemin()));
        const std::string e = PrendErreurLangue();
        EXPECT_NE(e.find("Deutsch.mes est endommag\xE9"), std::string::npos) << e;
        EXPECT_EQ(PrendErreurLangue(), "");
        EXPECT_EQ(Message(754), "Birth");
    }
    test::EcritFichier(d / "Deutsch.mes", bon);
    EXPECT_TRUE(ChoisirLangue("Deutsch", d.chemin()));
    EXPECT_EQ(Message(754), "Geburt");

    DefinitMessages({{1, "table"}});
    EXPECT_EQ(Message(1), "table");
    EXPECT_EQ(Message(754), "");
}
