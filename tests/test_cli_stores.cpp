// The command-line verbs of the event store and the keyword index, run as
// a user runs them.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>

namespace {

struct Resultat {
    int code;
    std::string sortie;
};

Resultat Lance(const std::string& arguments) {
    std::string commande = std::string(SYLVANE_CLI) + " " + arguments + " 2>/dev/null";
    FILE* f = popen(commande.c_str(), "r");
    std::string s;
    std::array<char, 4096> tampon{};
    while (std::size_t n = fread(tampon.data(), 1, tampon.size(), f))
        s.append(tampon.data(), n);
    int code = pclose(f);
    return {WIFEXITED(code) ? WEXITSTATUS(code) : -1, s};
}

std::vector<nlohmann::json> Lignes(const std::string& s) {
    std::vector<nlohmann::json> v;
    std::istringstream in(s);
    for (std::string l; std::getline(in, l);)
        v.push_back(nlohmann::json::parse(l));
    return v;
}

} // namespace

TEST(CliStores, AddEventThenListEventsAndKeywords) {
    char modele[] = "/tmp/sylvane_cli_XXXXXX";
    ASSERT_NE(mkdtemp(modele), nullptr);
    const std::string base = std::string(modele) + "/famille.sv2";
    ASSERT_EQ(Lance("new " + base).code, 0);
    ASSERT_EQ(
        Lance("add-person " + base + " --name Martin --first Jean --sex H --birth 1820").sortie,
        "1\n");
    ASSERT_EQ(Lance("add-person " + base +
                    " --name Martin --first Paul --sex H --birth 1850 "
                    "--father 1")
                  .sortie,
              "2\n");
    EXPECT_EQ(Lance("add-event " + base +
                    " --person 2 --tag BIRT --date '12 mars 1850' "
                    "--place 'Saint Lô'")
                  .sortie,
              "1\n");
    EXPECT_EQ(Lance("add-event " + base + " --person 1 --tag DEAT --date 3/4/1849").sortie, "2\n");
    EXPECT_EQ(Lance("add-event " + base + " --person 1 --tag DEAT --date 'mars 1849'").code, 2);
    EXPECT_EQ(Lance("add-event " + base + " --person 9 --tag DEAT --date 3/4/1849").code, 2);

    auto evts = Lignes(Lance("events " + base).sortie);
    ASSERT_EQ(evts.size(), 2u);
    EXPECT_EQ(evts[0]["number"], 2);
    EXPECT_EQ(evts[1]["place"], "Saint Lô");
    EXPECT_EQ(evts[1]["date"], -18190);
    EXPECT_EQ(evts[1]["persons"][0]["person"], 1);
    EXPECT_EQ(evts[1]["persons"][0]["role"], "FATH");
    EXPECT_EQ(evts[1]["persons"][1]["role"], "CHIL");

    auto mots = Lignes(Lance("keywords " + base + " '|'").sortie);
    ASSERT_EQ(mots.size(), 1u);
    EXPECT_EQ(mots[0]["words"][0]["word"], "MARTIN");
    EXPECT_EQ(mots[0]["words"][0]["persons"], nlohmann::json::array({1, 2}));

    auto personnes = Lignes(Lance("persons " + base).sortie);
    ASSERT_EQ(personnes.size(), 2u);
    EXPECT_EQ(personnes[0]["note"], "|Martin ¶Jean");
    EXPECT_EQ(personnes[0]["rubrics"][0]["tag"], "OCCU");
    EXPECT_EQ(Lance("documents " + base).sortie, "");
    std::system(("rm -rf " + std::string(modele)).c_str());
}
