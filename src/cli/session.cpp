#include "cli/session.h"

#include "cli/cli.h"
#include "store/fichier.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {

Session::Session(std::ostream& e) : err(&e) {}

// Drops an unfinished import before its base.
Session::~Session() { remplacement.reset(); }

std::string Chemin(const std::string& argument) {
    // "./famille.sv2" is "famille.sv2".
    std::string chemin = argument;
    while (chemin.size() > 2 && chemin.compare(0, 2, "./") == 0) chemin.erase(0, 2);
    return CheminInterne(chemin);
}

std::string CheminLisible(const std::string& chemin) { return CheminSysteme(chemin); }

namespace {
std::unique_ptr<Base> NouvelleInstance(const Parametres& p, std::ostream* err) {
    auto b = std::make_unique<Base>(systemeReel(), p);
    b->SetSignaleur([err](const std::string& t) { *err << AnsiVersUtf8(t) << "\n"; });
    return b;
}
} // namespace

Base& Session::Ouvre(const std::string& argument, bool lecture) {
    auto chemins = DeriveChemins(Chemin(argument));
    if (!systemeReel().existe(chemins.base))
        throw std::runtime_error("base introuvable : " + CheminLisible(chemins.base));
    base = NouvelleInstance(parametres, err);
    base->Ouvre(chemins.base, lecture);
    return *base;
}

Base& Session::Nouvelle(const std::string& argument, bool force) {
    const auto chemins = DeriveChemins(Chemin(argument));
    if (!force && systemeReel().existe(chemins.base))
        throw std::runtime_error("la base " + CheminLisible(chemins.base) +
                                 " existe d\xC3\xA9j\xC3\xA0 : --force pour la remplacer");
    base = NouvelleInstance(parametres, err);
    remplacement = std::make_unique<RemplacementBase>(*base, chemins.base);
    return *base;
}

void Session::Valide() {
    if (remplacement) remplacement->Valide();
    else Ferme();
}

nlohmann::json Texte(const std::string& ansi) { return AnsiRefVersUtf8(ansi); }
// A name or a text given on the command line keeps every character, those
// Windows-1252 lacks as references; paths have a conversion of their own.
std::string Ansi(const std::string& utf8) { return Utf8VersAnsiRef(utf8); }

void Ligne(std::ostream& out, const nlohmann::json& j) { out << j.dump() << "\n"; }

bool PersonneVivante(Base& b, std::uint32_t n) {
    if (n == 0 || n > b.Tete().maxPersonne) return false;
    std::string s = b.LitSexe(n);
    return !s.empty() && s != " ";
}

std::uint32_t PersonneArgument(Base& b, const std::string& texte, const char* quoi) {
    long v = EntierArgument(texte, quoi);
    if (v <= 0 || !PersonneVivante(b, static_cast<std::uint32_t>(v)))
        throw ErreurUsage{std::string(quoi) + " : aucune personne n\xC2\xB0 " + texte +
                          " dans la base"};
    return static_cast<std::uint32_t>(v);
}

} // namespace sylvane::cli
