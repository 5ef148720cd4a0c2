// The hand-off to GénéaNet's ged2gen tool: a GEDCOM of the whole base is
// written in the tool's folder, the tool runs on it and is waited for, the
// GEDCOM is deleted and the tool's error file, when it left one, shown.
//
// The tool is started with an argument vector, never through a shell, so
// that nothing in a file name can be taken for a command.
#pragma once

#include "exchange/echange.h"

#include <functional>
#include <string>
#include <vector>

namespace sylvane {

class SystemeFichiers;

inline constexpr const char* kErreurAppelGeneanet = "Erreur appel G\xE9n\xE9"
                                                    "anet";

struct AppelGeneanet {
    // The tool's folder: the setting "Généanet", by default the program's
    // folder and "/geneanet".
    std::string dossier;
    // The base's title: the GEDCOM is this name and ".ged".
    std::string titre;
    // The command, the file name added behind it.
    std::vector<std::string> commande = {"perl", "ged2gen.pl"};
};

// Writes the GEDCOM of the whole base at the path given (the GEDCOM writer
// with JeuCaracteres "1").
using EcritGedcom = std::function<void(const std::string& chemin)>;

// Runs the hand-off. Returns the tool's exit status, or -1 when it could
// not be started (the box kErreurAppelGeneanet is then shown through
// `d.message`).
int LanceGeneanet(SystemeFichiers& fs, const AppelGeneanet& appel, const EcritGedcom& ecrit,
                  const DialogueEchange& d = {});

// Runs a program with its arguments in a folder and waits for it; no
// shell. Returns its exit status, -1 when it could not be started.
int ExecuteSansShell(const std::vector<std::string>& argv, const std::string& dossier);

} // namespace sylvane
