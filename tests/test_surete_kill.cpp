// An import killed at any moment: its target is the old base or the new
// whole one, never a part. The program runs as its own process and gets
// SIGKILL at random moments of its run.
#include "support/dossier_temp.h"
#include "support/lance_cli.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace sylvane;

namespace {

long Vivants(const std::string& base) {
    auto r = test::LanceCli({"info", base});
    if (r.statut != 0) return -1;
    return nlohmann::json::parse(r.out)["persons"]["live"].get<long>();
}

// Runs the command line program and kills it after `delai`; returns the
// time it ran when it ended by itself first.
std::chrono::microseconds LanceEtTue(const std::vector<std::string>& args,
                                     std::chrono::microseconds delai) {
    const auto debut = std::chrono::steady_clock::now();
    const pid_t pid = ::fork();
    if (pid == 0) {
        std::vector<char*> argv;
        argv.push_back(const_cast<char*>(SYLVANE_CLI));
        for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        const int nul = ::open("/dev/null", O_WRONLY);
        ::dup2(nul, 1);
        ::dup2(nul, 2);
        ::execv(SYLVANE_CLI, argv.data());
        ::_exit(127);
    }
    int statut = 0;
    while (std::chrono::steady_clock::now() - debut < delai) {
        if (::waitpid(pid, &statut, WNOHANG) == pid)
            return std::chrono::duration_cast<std::chrono::microseconds>(
                std::chrono::steady_clock::now() - debut);
        ::usleep(200);
    }
    ::kill(pid, SIGKILL);
    ::waitpid(pid, &statut, 0);
    return delai;
}

} // namespace

TEST(SureteKill, AKilledImportLeavesTheOldBaseOrTheWholeNewOne) {
    const char* env = std::getenv("SYLVANE_KILL_PERSONNES");
    const std::string personnes = env && *env ? env : "4000";
    test::DossierTemp d;
    const std::string ged = d / "gros.ged";
    ASSERT_EQ(std::system(("python3 " SYLVANE_SOURCE_DIR "/bench/gen_gedcom.py " + ged +
                           " --personnes " + personnes + " > /dev/null")
                              .c_str()),
              0);
    test::EcritFichier(d / "petit.ged", "0 HEAD\r\n1 CHAR ANSI\r\n0 @I1@ INDI\r\n1 NAME Jean "
                                        "/Ancien/\r\n1 SEX M\r\n0 TRLR\r\n");

    // The whole run, once, for its time and its result.
    const std::string reference = d / "reference.sv2";
    const auto duree = LanceEtTue({"import-gedcom", ged, reference}, std::chrono::minutes(10));
    const long nouveau = Vivants(reference);
    ASSERT_GT(nouveau, 1000);

    std::mt19937 hasard(12);
    std::uniform_int_distribution<long> moment(0, duree.count());
    const std::string base = d / "famille.sv2";
    // 10 kills of an import over an existing base, 20 of one into a new one.
    for (int essai = 0; essai < 30; ++essai) {
        const bool force = essai < 10;
        std::filesystem::remove(base);
        if (force) {
            ASSERT_EQ(test::LanceCli({"import-gedcom", d / "petit.ged", base}).statut, 0);
        }
        std::vector<std::string> args = {"import-gedcom", ged, base};
        if (force) args.push_back("--force");
        LanceEtTue(args, std::chrono::microseconds(moment(hasard)));
        if (!force && !std::filesystem::exists(base)) continue;
        const long vus = Vivants(base);
        EXPECT_TRUE((force && vus == 1) || vus == nouveau)
            << "essai " << essai << " : " << vus << " personnes";
    }
}
