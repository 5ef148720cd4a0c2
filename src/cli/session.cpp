#include "cli/session.h"

#include "cli/cli.h"
#include "store/fichier.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {

Session::Session(std::ostream& e) : err(&e) {}

namespace {
// The base's files are named from the text before the first dot of the
// whole path: say so when a folder's dot cuts the path.
void PrevientCoupure(std::ostream& err, const std::string& chemin, const CheminsBase& c) {
    if (Ansi(chemin) != c.base && chemin.find('/') != std::string::npos &&
        chemin.substr(0, chemin.rfind('/')).find('.') != std::string::npos)
        err << "attention : le chemin est coup\xC3\xA9 au premier point, la base est "
            << AnsiVersUtf8(c.base) << "\n";
}
} // namespace

// "./famille.sv2" is "famille.sv2": the leading "./" would otherwise be
// the first dot of the path.
static std::string SansPointCourant(std::string chemin) {
    while (chemin.size() > 2 && chemin.compare(0, 2, "./") == 0) chemin.erase(0, 2);
    return chemin;
}

Base& Session::Ouvre(const std::string& cheminDonne) {
    const std::string chemin = SansPointCourant(cheminDonne);
    auto chemins = DeriveChemins(Ansi(chemin));
    PrevientCoupure(*err, chemin, chemins);
    if (!systemeReel().existe(chemins.base))
        throw std::runtime_error("base introuvable : " + AnsiVersUtf8(chemins.base));
    base = std::make_unique<Base>(systemeReel(), parametres);
    base->SetSignaleur([e = err](const std::string& t) { *e << AnsiVersUtf8(t) << "\n"; });
    base->Ouvre(chemins.base);
    return *base;
}

Base& Session::Nouvelle(const std::string& cheminDonne) {
    const std::string chemin = SansPointCourant(cheminDonne);
    PrevientCoupure(*err, chemin, DeriveChemins(Ansi(chemin)));
    base = std::make_unique<Base>(systemeReel(), parametres);
    base->SetSignaleur([e = err](const std::string& t) { *e << AnsiVersUtf8(t) << "\n"; });
    base->Nouvelle(Ansi(chemin));
    return *base;
}

nlohmann::json Texte(const std::string& ansi) { return AnsiVersUtf8(ansi); }
std::string Ansi(const std::string& utf8) { return Utf8VersAnsi(utf8); }

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
