#include "exchange/geneanet.h"

#include "store/fichier.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sylvane {

int ExecuteSansShell(const std::vector<std::string>& argv, const std::string& dossier) {
    if (argv.empty()) return -1;
    std::vector<char*> args;
    for (const auto& a : argv)
        args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    // The child reports a failed chdir or exec through this pipe, closed
    // on a successful exec.
    int tube[2];
    if (pipe2(tube, O_CLOEXEC) != 0) return -1;
    const pid_t pid = fork();
    if (pid < 0) {
        close(tube[0]);
        close(tube[1]);
        return -1;
    }
    if (pid == 0) {
        close(tube[0]);
        int erreur = 0;
        if (!dossier.empty() && chdir(dossier.c_str()) != 0)
            erreur = errno;
        else {
            execvp(args[0], args.data());
            erreur = errno;
        }
        ssize_t ecrit = write(tube[1], &erreur, sizeof erreur);
        (void)ecrit;
        _exit(127);
    }
    close(tube[1]);
    int erreur = 0;
    ssize_t lu;
    do
        lu = read(tube[0], &erreur, sizeof erreur);
    while (lu < 0 && errno == EINTR);
    close(tube[0]);
    int statut = 0;
    while (waitpid(pid, &statut, 0) < 0)
        if (errno != EINTR) return -1;
    if (lu > 0) return -1;
    return WIFEXITED(statut) ? WEXITSTATUS(statut) : -1;
}

int LanceGeneanet(SystemeFichiers& fs, const AppelGeneanet& appel, const EcritGedcom& ecrit,
                  const DialogueEchange& d) {
    const std::string dossier = appel.dossier.empty() ? "." : appel.dossier;
    const std::string ged = dossier + "/" + appel.titre + ".ged";
    ecrit(ged);
    std::vector<std::string> argv = appel.commande;
    // The name relative to the tool's folder, where the tool runs.
    argv.push_back(appel.titre + ".ged");
    const int statut = ExecuteSansShell(argv, dossier);
    fs.supprimer(ged);
    const std::string err = dossier + "/" + appel.titre + ".err";
    if (statut < 0) {
        if (d.message) d.message(kErreurAppelGeneanet);
    } else if (fs.existe(err) && d.montreFichier) {
        d.montreFichier(err);
    }
    return statut;
}

} // namespace sylvane
