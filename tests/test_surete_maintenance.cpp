// Nothing lost in the maintenance commands and the small verbs: a damaged
// count, a report, a scratch file, an event of no kind.
#include "maintenance/controle.h"
#include "maintenance/reorganisation.h"
#include "store/base.h"
#include "store/fichier_memoire.h"
#include "store/pack.h"
#include "support/dossier_temp.h"
#include "support/lance_cli.h"
#include "text/messages.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>

using namespace sylvane;

namespace {

test::ResultatCli Lance(const std::vector<std::string>& args) { return test::LanceCli(args); }

std::size_t Personnes(const std::string& base) {
    std::istringstream in(Lance({"persons", base}).out);
    std::size_t n = 0;
    for (std::string l; std::getline(in, l);) ++n;
    return n;
}

std::string TroisPersonnes(const test::DossierTemp& d) {
    const std::string base = d / "famille.sv2";
    EXPECT_EQ(Lance({"new", base}).statut, 0);
    for (const char* p : {"Jean", "Marie", "Paul"})
        EXPECT_EQ(Lance({"add-person", base, "--name", "Martin", "--first", p, "--birth", "1850"})
                      .statut,
                  0);
    return base;
}

// Header field at this 0-based offset set to v.
void PoseEntete(const std::string& base, std::size_t offset, std::uint32_t v) {
    std::string o = test::LitFichier(base);
    o.replace(offset, 4, Pack4(v));
    test::EcritFichier(base, o);
}

Interaction SansCopie() {
    Interaction io;
    io.question = [](int m) { return m == 842 ? Reponse::Non : Reponse::Oui; };
    return io;
}

} // namespace

// One changed count once made control, then reorganise, drop every person.
TEST(SureteComptes, AnImpossibleCountDropsNobody) {
    for (std::size_t champ : {34u, 38u}) { // live persons, highest number
        test::DossierTemp d;
        const std::string base = TroisPersonnes(d);
        PoseEntete(base, champ, 1);
        auto r = Lance({"info", base});
        EXPECT_NE(r.err.find("R\xC3\xA9organisez votre base"), std::string::npos) << r.err;
        EXPECT_EQ(Personnes(base), 3u) << champ;
        r = Lance({"control", base});
        EXPECT_EQ(r.statut, 0) << r.err;
        EXPECT_EQ(r.out.find("Suppression individu"), std::string::npos) << r.out;
        EXPECT_EQ(Personnes(base), 3u) << champ;
        r = Lance({"reorganise", base});
        EXPECT_EQ(r.statut, 0) << r.err;
        EXPECT_EQ(nlohmann::json::parse(r.out)["persons"], 3) << champ;
        EXPECT_EQ(Personnes(base), 3u) << champ;
        // Sound again: nothing more to say.
        EXPECT_EQ(Lance({"info", base}).err, "");
    }
}

// The report goes to the work folder, never over famille.txt beside the base.
TEST(SureteControle, TheReportLeavesTheUsersFilesAlone) {
    test::DossierTemp d;
    const std::string base = TroisPersonnes(d);
    test::EcritFichier(d / "famille.txt", "mes notes");
    ASSERT_EQ(Lance({"control", base}).statut, 0);
    EXPECT_EQ(test::LitFichier(d / "famille.txt"), "mes notes");

    SystemeMemoire fs;
    Parametres p;
    p.dossierTravail = "/travail";
    Base b(fs, p);
    b.Nouvelle("/d/famille.sv2");
    b.CreePersonne("Martin", "Jean", "", 'H', "1850");
    ecrireTout(fs, "/d/famille.txt", "mes notes");
    const auto res = Controler(b, SansCopie());
    EXPECT_TRUE(res.fait);
    EXPECT_EQ(res.chemin, "/travail/famille.txt");
    EXPECT_EQ(fs.contenu("/d/famille.txt"), "mes notes");
    b.FermeBase();
}

// Two reorganisations in one folder once shared "Reorg.fic" and swapped
// their bases.
TEST(SureteReorganisation, TheScratchFileIsOneRunsAlone) {
    SystemeMemoire fs;
    Parametres p;
    Base b(fs, p);
    b.Nouvelle("/d/a.sv2");
    b.CreePersonne("Martin", "Jean", "", 'H', "1850");
    b.MnuEnregistrer();

    // A run at work holds the scratch file: refused, the base as it was.
    {
        auto autre = fs.ouvrir("/d/Reorg.fic", Mode::Creation);
        ASSERT_TRUE(autre->verrouiller());
        autre->ecrire(0, "la base d'un autre");
        EXPECT_THROW(Reorganiser(b, SansCopie()), ErreurES);
        EXPECT_EQ(fs.contenu("/d/Reorg.fic"), "la base d'un autre");
        ASSERT_TRUE(b.EstOuverte());
        EXPECT_EQ(b.LitNom(1), "Martin");
    }
    // The leftover of a run that died is no obstacle, and goes.
    const auto r = Reorganiser(b, SansCopie());
    EXPECT_TRUE(r.fait);
    EXPECT_FALSE(fs.existe("/d/Reorg.fic"));
    EXPECT_EQ(b.LitNom(1), "Martin");
    b.FermeBase();
}

// An event of a kind with no place for the person was attached to nobody.
TEST(SureteEvenements, AnEventOfNoKindIsRefused) {
    test::DossierTemp d;
    const std::string base = TroisPersonnes(d);
    for (const char* tag : {"BAPM", "OCCU", "XYZW"}) {
        auto r = Lance({"add-event", base, "--person", "1", "--tag", tag, "--date", "1 mars 1850"});
        EXPECT_EQ(r.statut, 2) << tag;
        EXPECT_NE(r.err.find("BIRT"), std::string::npos) << r.err;
    }
    auto r = Lance({"events", base});
    EXPECT_EQ(r.out, "");
    r = Lance({"add-event", base, "--person", "1", "--tag", "BIRT", "--date", "1 mars 1850"});
    EXPECT_EQ(r.statut, 0) << r.err;
}

// "Génération4 - Sosa10": the words need their blank.
TEST(SureteMessages, GenerationAndSosaEndWithABlank) {
    for (const char* langue : {"Fran\xC3\xA7" "ais", "English"}) {
        const auto m = LitSourceMessages(
            test::LitFichier(std::string(SYLVANE_SOURCE_DIR) + "/lang/" + langue + ".msg"));
        ASSERT_TRUE(m.count(759) && m.count(760)) << langue;
        EXPECT_EQ(m.at(759).back(), ' ') << langue;
        EXPECT_EQ(m.at(760).back(), ' ') << langue;
    }
}
