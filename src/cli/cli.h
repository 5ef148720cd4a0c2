// sylvane-cli: the batch front end over the core. Verbs and flags are a
// stable interface for scripts; arguments and output are UTF-8.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace sylvane::cli {

using Arguments = std::vector<std::string>;

// Runs one command line (without the program name). Returns the exit status.
int Executer(const Arguments& args, std::ostream& out, std::ostream& err);

// A verb: its name, a one-line usage, and its function over the remaining
// arguments.
struct Verbe {
    const char* nom;
    const char* usage;
    int (*fonction)(const Arguments& args, std::ostream& out, std::ostream& err);
};

// Thrown by a verb for bad usage; Executer prints it with the usage line.
struct ErreurUsage {
    std::string message;
};

// Small helpers for the verbs' options: "--name value" pairs and flags.
class Options {
  public:
    // `avecValeur` lists the options that take a value.
    Options(const Arguments& args, const std::vector<std::string>& avecValeur,
            const std::vector<std::string>& drapeaux);
    const std::vector<std::string>& positionnels() const { return positionnels_; }
    bool a(const std::string& nom) const;
    std::string valeur(const std::string& nom, const std::string& defaut = {}) const;
    // Every value of an option that may be repeated, in order.
    std::vector<std::string> valeurs(const std::string& nom) const;
    long entier(const std::string& nom, long defaut) const;

  private:
    std::vector<std::string> positionnels_;
    std::vector<std::pair<std::string, std::string>> options_;
};

long EntierArgument(const std::string& texte, const char* quoi);

} // namespace sylvane::cli
