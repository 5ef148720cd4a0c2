// sylvane-cli import-register on the sample registers: every person, event
// and role that a register makes, and the refusals.
#include "support/dossier_temp.h"
#include "support/lance_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <map>
#include <sstream>

using namespace sylvane;
using nlohmann::json;
using test::LanceCli;

namespace {

const std::string kSamples = std::string(SYLVANE_SOURCE_DIR) + "/samples/";

std::vector<json> Lignes(const std::string& texte) {
    std::vector<json> v;
    std::istringstream in(texte);
    for (std::string l; std::getline(in, l);)
        if (!l.empty()) v.push_back(json::parse(l));
    return v;
}

struct Importe {
    test::DossierTemp d;
    std::string base = d / "r.sv2";
    test::ResultatCli r;
    std::map<int, json> personnes, evenements;
    Importe(const std::string& fichier, const std::string& genre) {
        r = LanceCli({"import-register", kSamples + fichier, base, "--kind", genre});
        for (const json& p : Lignes(LanceCli({"persons", base}).out)) personnes[p["number"]] = p;
        for (const json& e : Lignes(LanceCli({"events", base}).out)) evenements[e["number"]] = e;
    }
    // The number of the person of that name, 0 when none.
    int Qui(const std::string& prenom, const std::string& nom, const std::string& an = "*") const {
        for (const auto& [n, p] : personnes)
            if (p["firstNames"] == prenom && p["name"] == nom && (an == "*" || p["birthYear"] == an))
                return n;
        return 0;
    }
    std::map<int, std::string> Roles(int e) const {
        std::map<int, std::string> r;
        for (const json& x : evenements.at(e)["persons"]) r[x["person"]] = x["role"];
        return r;
    }
};

TEST(CliReleve, BaptemesDuTableur) {
    Importe x("bapteme-exemple.csv", "baptism");
    ASSERT_EQ(x.r.statut, 0) << x.r.err;
    EXPECT_NE(x.r.out.find("30 actes"), std::string::npos) << x.r.out;
    EXPECT_EQ(x.evenements.size(), 30u);
    // Every act: one CHR event whose child has the role CHIL and whose
    // parents, when named, FATH and MOTH and are the child's parents.
    for (const auto& [e, ev] : x.evenements) {
        EXPECT_EQ(ev["tag"], "CHR");
        EXPECT_EQ(ev["documents"], json::array({1}));
        int enfant = 0;
        for (const auto& [p, role] : x.Roles(e))
            if (role == "CHIL") enfant = p;
        ASSERT_NE(enfant, 0) << ev.dump();
        for (const auto& [p, role] : x.Roles(e)) {
            if (role == "FATH") {
                EXPECT_EQ(x.personnes[enfant]["father"], p);
            } else if (role == "MOTH") {
                EXPECT_EQ(x.personnes[enfant]["mother"], p);
            }
        }
    }
    const int jean = x.Qui("Jean", "DUBOIS");
    ASSERT_NE(jean, 0);
    const json& j = x.personnes[jean];
    EXPECT_EQ(j["birthDate"], "12/1");
    EXPECT_EQ(j["birthYear"], "1788");
    EXPECT_EQ(j["birthPlace"], "Saint-Jean-de-Luz");
    EXPECT_EQ(j["sex"], "H");
    const json& pere = x.personnes[j["father"].get<int>()];
    EXPECT_EQ(pere["firstNames"], "Pierre");
    EXPECT_EQ(pere["rubrics"][0]["value"], "laboureur");
    EXPECT_EQ(pere["marriages"].size(), 1u);
    // A father with no family name takes the child's; accents and a name
    // Windows-1252 cannot write come through.
    const int martin = x.Qui("Martin", "HARAMBURU");
    EXPECT_EQ(x.personnes[x.personnes[martin]["father"].get<int>()]["name"], "HARAMBURU");
    EXPECT_NE(x.Qui("L\xC3\xA9on", "\xC3\x87" "ABALETTE"), 0);
    EXPECT_NE(x.Qui("\xD0\x9F\xD1\x91\xD1\x82\xD1\x80", "VASSILIEV"), 0);
    // The unsexed child and the foundling with no date.
    EXPECT_EQ(x.personnes[x.Qui("Jean", "MARTIN", "1788")]["sex"], "I");
    EXPECT_EQ(LanceCli({"control", x.base}).out, "");
}

TEST(CliReleve, MariagesEnWindows1252EntreGuillemets) {
    Importe x("mariage-exemple.csv", "marriage");
    ASSERT_EQ(x.r.statut, 0) << x.r.err;
    EXPECT_EQ(x.evenements.size(), 10u);
    const int pierre = x.Qui("Pierre", "DUBOIS"), anne = x.Qui("Anne", "MARTIN", "1766");
    ASSERT_TRUE(pierre && anne);
    EXPECT_EQ(x.personnes[pierre]["birthYear"], "1762");
    EXPECT_EQ(x.personnes[pierre]["birthDate"], "CAL");
    // The bride's father was dead ("feu Jean").
    const json& pereAnne = x.personnes[x.personnes[anne]["father"].get<int>()];
    EXPECT_EQ(pereAnne["name"], "MARTIN");
    EXPECT_EQ(pereAnne["deathYear"], "1787");
    EXPECT_EQ(pereAnne["deathDate"], "BEF");
    // Roles of the first act.
    const auto roles = x.Roles(x.personnes[pierre]["events"][0]);
    EXPECT_EQ(roles.at(pierre), "HUSB");
    EXPECT_EQ(roles.at(anne), "WIFE");
    EXPECT_EQ(roles.at(x.personnes[pierre]["father"].get<int>()), "FATH");
    EXPECT_EQ(roles.at(x.personnes[anne]["mother"].get<int>()), "MOTH");
    // A widower and the late wife; a quoted field holding a comma.
    const int marie = x.Qui("Marie", "DARRIGOL");
    ASSERT_NE(marie, 0);
    const int dominique = x.Qui("Dominique", "ETCHEVERRY", "1755");
    EXPECT_EQ(x.Roles(x.personnes[dominique]["events"][0]).at(marie), "Veuf de");
    EXPECT_NE(x.personnes[x.Qui("Jean", "LAFITTE")]["note"].get<std::string>().find(
                  "RESI %Saint-Jean-de-Luz,.rue.de.la.Baleine"),
              std::string::npos);
    EXPECT_EQ(LanceCli({"control", x.base}).out, "");
}

TEST(CliReleve, SepulturesAgeEnMoisEtEnAns) {
    Importe x("sepulture-exemple.csv", "burial");
    ASSERT_EQ(x.r.statut, 0) << x.r.err;
    EXPECT_EQ(x.evenements.size(), 6u);
    const json& cath = x.personnes[x.Qui("Catherine", "DUBOIS")];
    EXPECT_EQ(cath["deathYear"], "1789");
    EXPECT_EQ(cath["birthYear"], "1789");
    const json& jean = x.personnes[x.Qui("Jean", "HARAMBURU")];
    EXPECT_EQ(jean["birthYear"], "1727");
    EXPECT_EQ(jean["birthPlace"], "Urrugne");
    EXPECT_EQ(jean["deathPlace"], "Ciboure");
    EXPECT_EQ(x.Roles(jean["events"][0]).at(jean["number"]), "DEAD");
}

TEST(CliReleve, RefusEtUsage) {
    test::DossierTemp d;
    const std::string base = d / "r.sv2";
    ASSERT_EQ(LanceCli({"import-register", kSamples + "bapteme-exemple.csv", base, "--kind", "baptism"}).statut, 0);
    // An existing base only with --force.
    auto r = LanceCli({"import-register", kSamples + "bapteme-exemple.csv", base, "--kind", "baptism"});
    EXPECT_EQ(r.statut, 1);
    EXPECT_NE(r.err.find("--force"), std::string::npos);
    // An empty file: a clear refusal, and the base that was there stays.
    test::EcritFichier(d / "vide.csv", "");
    r = LanceCli({"import-register", d / "vide.csv", base, "--kind", "baptism", "--force"});
    EXPECT_EQ(r.statut, 1);
    EXPECT_NE(r.err.find("vide"), std::string::npos) << r.err;
    EXPECT_EQ(Lignes(LanceCli({"events", base}).out).size(), 30u);
    // A file that stops at a line with no separator keeps what was read.
    test::EcritFichier(d / "coupe.csv", "1/1;1800;A;X;Paul\ntexte libre\n");
    r = LanceCli({"import-register", d / "coupe.csv", d / "coupe.sv2", "--kind", "baptism"});
    EXPECT_EQ(r.statut, 0);
    EXPECT_NE(r.out.find("Ligne 2"), std::string::npos) << r.out;
    EXPECT_EQ(Lignes(LanceCli({"persons", d / "coupe.sv2"}).out).size(), 1u);
    EXPECT_EQ(LanceCli({"import-register", d / "coupe.csv", d / "x.sv2", "--kind", "census"}).statut, 2);
    EXPECT_NE(LanceCli({"import-register", d / "absent.csv", d / "x.sv2", "--kind", "burial"}).statut, 0);
    EXPECT_FALSE(std::filesystem::exists(d / "x.sv2"));
}

TEST(CliCommunes, AjoutRechercheMotEtRetrait) {
    test::DossierTemp d;
    const std::string svx = d / "France.svx";
    ASSERT_EQ(LanceCli({"communes", svx, "add", "Saint-Jean-de-Luz", "--code", "64483", "--postcode", "64500",
                        "--population", "14000"}).out, "1\n");
    ASSERT_EQ(LanceCli({"communes", svx, "add", "L'\xC3\x8Ele-Bouchard", "--comment", "Touraine"}).out, "2\n");
    json r = json::parse(LanceCli({"communes", svx, "search", "l'ile-bouchard"}).out);
    EXPECT_TRUE(r["exact"]);
    ASSERT_EQ(r["communes"].size(), 1u);
    EXPECT_EQ(r["communes"][0]["comment"], "Touraine");
    r = json::parse(LanceCli({"communes", svx, "search", "saint"}).out);
    EXPECT_FALSE(r["exact"]);
    EXPECT_EQ(r["name"], "Saint-Jean-de-Luz");
    EXPECT_EQ(r["communes"][0]["postcodes"], "64500");
    r = json::parse(LanceCli({"communes", svx, "word", "luz"}).out);
    EXPECT_EQ(r["word"], "Luz");
    EXPECT_EQ(r["communes"][0]["number"], 1);
    EXPECT_EQ(LanceCli({"communes", svx, "remove", "1"}).statut, 0);
    EXPECT_EQ(json::parse(LanceCli({"communes", svx, "show", "1"}).out)["name"], "");
    EXPECT_EQ(json::parse(LanceCli({"communes", svx, "show", "2"}).out)["population"], 0);
    EXPECT_EQ(LanceCli({"communes", svx, "show", "3"}).statut, 2);
    test::EcritFichier(d / "faux.svx", "pas un fichier de communes");
    EXPECT_NE(LanceCli({"communes", d / "faux.svx", "search", "x"}).statut, 0);
}

} // namespace
