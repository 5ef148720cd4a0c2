// A new base in memory for the store tests, with its reports collected.
#pragma once

#include "store/base.h"
#include "store/fichier_memoire.h"

#include <string>
#include <vector>

namespace sylvane::test {

struct BaseMemoire {
    SystemeMemoire fs;
    Parametres p;
    Base b{fs, p};
    std::vector<std::string> signales;

    BaseMemoire() {
        b.Nouvelle("/b.sv2");
        b.SetSignaleur([this](const std::string& t) { signales.push_back(t); });
    }
    // Commit, close and open again: what follows reads the file.
    void Reouvre() {
        b.FermeBase();
        b.Ouvre("/b.sv2");
    }
};

} // namespace sylvane::test
