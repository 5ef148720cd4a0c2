// What the verbs share: the settings of the process and a base opened for
// the time of one command, committed at the end unless asked otherwise.
#pragma once

#include "cli/cli.h"
#include "store/base.h"
#include "text/parametres.h"

#include <nlohmann/json.hpp>

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace sylvane {
class Selection;
}

namespace sylvane::cli {

struct Session {
    Parametres parametres;
    std::unique_ptr<Base> base;
    std::ostream* err = nullptr;

    explicit Session(std::ostream& e);
    // Opens an existing base; throws a clear error when the file is missing.
    Base& Ouvre(const std::string& chemin);
    Base& Nouvelle(const std::string& chemin);
    void Ferme() { if (base) base->FermeBase(); }
};

// Windows-1252 text of the base as a JSON string (UTF-8).
nlohmann::json Texte(const std::string& ansi);
// A command-line argument (UTF-8) as Windows-1252.
std::string Ansi(const std::string& utf8);
// Prints one JSON value on a line.
void Ligne(std::ostream& out, const nlohmann::json& j);
// A person number given on the command line, checked against the base.
std::uint32_t PersonneArgument(Base& b, const std::string& texte, const char* quoi);
// Whether a number is a live person of the base.
bool PersonneVivante(Base& b, std::uint32_t n);

// The selection options shared by the exports: repeated --ascendants N and
// --descendants N add up in the order given; --collaterals, --complete and
// --no-after-1900. Returns whether any person was chosen.
bool ChoisitSelection(Base& b, const Options& o, const Arguments& args, Selection& sel);

} // namespace sylvane::cli
