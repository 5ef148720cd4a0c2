// The language files shipped with the program: both hold every number the
// program uses, the same numbers, and texts that the code can rely on.
#include "support/dossier_temp.h"
#include "text/messages.h"
#include "text/tags.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

using namespace sylvane;

namespace {

std::map<int, std::string> Langue(const std::string& nom) {
    return LitSourceMessages(test::LitFichier(SYLVANE_SOURCE_DIR "/lang/" + nom + ".msg"));
}

std::set<int> Requis() {
    std::istringstream in(test::LitFichier(SYLVANE_SOURCE_DIR "/lang/required.txt"));
    std::set<int> r;
    for (std::string l; std::getline(in, l);)
        if (!l.empty() && l[0] != '#') r.insert(std::stoi(l));
    return r;
}

std::set<int> Numeros(const std::map<int, std::string>& m) {
    std::set<int> r;
    for (const auto& [n, t] : m) r.insert(n);
    return r;
}

const char* const kLangues[] = {"Fran\xC3\xA7" "ais", "English"};

} // namespace

TEST(Langues, EveryRequiredNumberInBothAndTheSameNumbers) {
    const auto requis = Requis();
    ASSERT_GT(requis.size(), 300u);
    std::set<int> premiers;
    for (const char* nom : kLangues) {
        const auto m = Langue(nom);
        for (int n : requis) {
            auto it = m.find(n);
            EXPECT_TRUE(it != m.end() && !it->second.empty()) << nom << " : message " << n;
        }
        if (premiers.empty()) premiers = Numeros(m);
        else EXPECT_EQ(Numeros(m), premiers) << nom;
    }
}

TEST(Langues, PlaceholdersAgreeBetweenLanguages) {
    const auto fr = Langue(kLangues[0]), en = Langue(kLangues[1]);
    for (const auto& [n, t] : fr)
        EXPECT_EQ(t.find("&1") != std::string::npos, en.at(n).find("&1") != std::string::npos)
            << "message " << n;
}

TEST(Langues, TagWordsGoBackToTheirTags) {
    // A label typed back must find its own tag, so no two tags share a word.
    for (const char* nom : kLangues) {
        DefinitMessages(Langue(nom));
        for (const auto& tag : TagsConnus()) {
            EXPECT_EQ(Conv_TagLibelle(Conv_LibelleTag(tag)), tag) << nom << " : " << tag;
            EXPECT_NE(Conv_LibelleTag(tag), tag) << nom << " : " << tag;
        }
    }
    DefinitMessages({});
}
