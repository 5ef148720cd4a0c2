// Runs sylvane-cli in process and keeps its status and both outputs.
#pragma once

#include "cli/cli.h"

#include <sstream>
#include <string>
#include <vector>

namespace sylvane::test {

struct ResultatCli {
    int statut;
    std::string out, err;
};

inline ResultatCli LanceCli(const std::vector<std::string>& args) {
    std::ostringstream out, err;
    const int s = cli::Executer(args, out, err);
    return {s, out.str(), err.str()};
}

} // namespace sylvane::test
