#include "cli/cli.h"

#include "cli/verbes.h"
#include "store/fichier.h"
#include "text/messages.h"
#include "text/parametres.h"
#include "text/utf8.h"

#include <cstdlib>
#include <exception>
#include <ostream>

namespace sylvane::cli {

Options::Options(const Arguments& args, const std::vector<std::string>& avecValeur,
                 const std::vector<std::string>& drapeaux) {
    auto dans = [](const std::vector<std::string>& v, const std::string& s) {
        for (const auto& x : v)
            if (x == s) return true;
        return false;
    };
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a.size() > 2 && a.compare(0, 2, "--") == 0) {
            std::string nom = a.substr(2), val;
            auto eq = nom.find('=');
            if (eq != std::string::npos) {
                val = nom.substr(eq + 1);
                nom = nom.substr(0, eq);
                if (!dans(avecValeur, nom)) throw ErreurUsage{"option inconnue : --" + nom};
            } else if (dans(avecValeur, nom)) {
                if (i + 1 >= args.size()) throw ErreurUsage{"--" + nom + " attend une valeur"};
                val = args[++i];
            } else if (!dans(drapeaux, nom)) {
                throw ErreurUsage{"option inconnue : --" + nom};
            }
            options_.emplace_back(nom, val);
        } else {
            positionnels_.push_back(a);
        }
    }
}

bool Options::a(const std::string& nom) const {
    for (const auto& [n, v] : options_)
        if (n == nom) return true;
    return false;
}

std::string Options::valeur(const std::string& nom, const std::string& defaut) const {
    std::string r = defaut;
    for (const auto& [n, v] : options_)
        if (n == nom) r = v;
    return r;
}

std::vector<std::string> Options::valeurs(const std::string& nom) const {
    std::vector<std::string> r;
    for (const auto& [n, v] : options_)
        if (n == nom) r.push_back(v);
    return r;
}

long EntierArgument(const std::string& texte, const char* quoi) {
    char* fin = nullptr;
    errno = 0;
    long v = std::strtol(texte.c_str(), &fin, 10);
    if (texte.empty() || *fin != '\0' || errno == ERANGE)
        throw ErreurUsage{std::string(quoi) + " : nombre attendu, et non « " + texte + " »"};
    return v;
}

long Options::entier(const std::string& nom, long defaut) const {
    if (!a(nom)) return defaut;
    return EntierArgument(valeur(nom), ("--" + nom).c_str());
}

namespace {

int aide(const Arguments&, std::ostream& out, std::ostream&) {
    out << "sylvane-cli : généalogie en ligne de commande\n\nUsage :\n";
    for (const Verbe& v : Verbes()) out << "  sylvane-cli " << v.usage << "\n";
    return 0;
}

} // namespace

int Executer(const Arguments& args, std::ostream& out, std::ostream& err) {
    // The words of dates and reports come from the French message file
    // beside the program, as in the windows.
    static const bool langue = LangueCourante().empty() &&
                               ChoisirLangue("Fran\xE7" "ais", DossierProgramme());
    if (const std::string e = PrendErreurLangue(); !langue && !e.empty())
        err << "sylvane-cli : " << AnsiVersUtf8(e) << "\n";
    if (args.empty() || args[0] == "help" || args[0] == "--help" || args[0] == "-h")
        return aide(args, out, err);
    for (const Verbe& v : Verbes()) {
        if (args[0] != v.nom) continue;
        try {
            return v.fonction(Arguments(args.begin() + 1, args.end()), out, err);
        } catch (const ErreurUsage& e) {
            err << "sylvane-cli " << v.nom << " : " << e.message << "\nUsage : sylvane-cli "
                << v.usage << "\n";
            return 2;
        } catch (const std::exception& e) {
            err << "sylvane-cli " << v.nom << " : " << e.what() << "\n";
            return 1;
        }
    }
    err << "sylvane-cli : verbe inconnu « " << args[0] << " » (voir sylvane-cli help)\n";
    return 2;
}

} // namespace sylvane::cli
