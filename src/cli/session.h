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
    // The new base of an import, under its temporary name until Valide.
    std::unique_ptr<RemplacementBase> remplacement;
    std::ostream* err = nullptr;

    explicit Session(std::ostream& e);
    ~Session();
    // Opens an existing base; throws a clear error when the file is missing
    // or another process is writing it. `lecture`: for the verbs that only
    // read, which don't stop a writer nor wait for it.
    Base& Ouvre(const std::string& chemin, bool lecture = false);
    Base& Lit(const std::string& chemin) { return Ouvre(chemin, true); }
    // A new base that replaces the one of this path only once whole (at
    // Valide). An existing base is refused without `force`.
    Base& Nouvelle(const std::string& chemin, bool force);
    void Valide();
    void Ferme() { if (base) base->FermeBase(); }
};

// A path given on the command line, in the program's form: converted once,
// here, so that every name the system accepts can be reached.
std::string Chemin(const std::string& argument);
// A path of the program as the user gave it (UTF-8).
std::string CheminLisible(const std::string& chemin);

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
