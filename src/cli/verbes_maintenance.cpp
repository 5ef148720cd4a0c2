// Verbs of the maintenance commands: reorganisation, control, repairs.
#include "cli/session.h"
#include "cli/verbes.h"
#include "maintenance/controle.h"
#include "maintenance/reorganisation.h"
#include "maintenance/reparations.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

std::string UneBase(const Options& o, const char* verbe) {
    if (o.positionnels().size() != 1)
        throw ErreurUsage{std::string(verbe) + " attend un seul fichier de base"};
    return o.positionnels()[0];
}

// The question of a backup copy: Yes with --backup, No otherwise; every
// other question is answered Yes.
Interaction Reponses(bool copie) {
    Interaction io;
    io.question = [copie](int message) {
        if (message == 842) return copie ? Reponse::Oui : Reponse::Non;
        return Reponse::Oui;
    };
    return io;
}

// A report of Windows-1252 lines ended by CR LF, printed as UTF-8 lines.
void Imprime(std::ostream& out, const std::string& rapport) {
    std::size_t debut = 0;
    while (debut < rapport.size()) {
        std::size_t fin = rapport.find("\r\n", debut);
        if (fin == std::string::npos) fin = rapport.size();
        out << AnsiVersUtf8(rapport.substr(debut, fin - debut)) << "\n";
        debut = fin + 2;
    }
}

} // namespace

int VerbeReorganise(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {"backup"});
    const std::string chemin = UneBase(o, "reorganise");
    Session s(err);
    Base& b = s.Ouvre(chemin);
    const std::uint32_t avant = b.Tete().zoneFin;
    ResultatReorganisation r = Reorganiser(b, Reponses(o.a("backup")));
    nlohmann::json j;
    j["done"] = r.fait;
    j["ZoneFinBefore"] = avant;
    j["ZoneFin"] = b.Tete().zoneFin;
    j["persons"] = b.Tete().nbPersonnes;
    j["marriages"] = b.Tete().maxMariage;
    j["events"] = b.Tete().nbEvenements;
    j["documents"] = b.Tete().nbDocuments;
    j["keywords"] = b.Tete().nbMots;
    s.Ferme();
    Ligne(out, j);
    return r.fait ? 0 : 1;
}

int VerbeControl(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {"backup"});
    const std::string chemin = UneBase(o, "control");
    Session s(err);
    Base& b = s.Ouvre(chemin);
    ResultatControle r = Controler(b, Reponses(o.a("backup")));
    s.Ferme();
    Imprime(out, r.rapport);
    return 0;
}

int VerbeRepair(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"surname-case", "first-name-case"}, {});
    if (o.positionnels().size() != 2 ||
        (o.positionnels()[0] != "names" && o.positionnels()[0] != "firstnames"))
        throw ErreurUsage{"repair attend names ou firstnames, puis un fichier de base"};
    const bool noms = o.positionnels()[0] == "names";
    Session s(err);
    s.parametres.conversionNom = o.valeur("surname-case", s.parametres.conversionNom);
    s.parametres.conversionPrenom = o.valeur("first-name-case", s.parametres.conversionPrenom);
    Base& b = s.Ouvre(o.positionnels()[1]);
    long changes = noms ? static_cast<long>(MnuRePMinMaj(b, Reponses(false)))
                        : MnuRepPrenom(b, Reponses(false));
    s.Ferme();
    out << changes << "\n";
    return 0;
}

} // namespace sylvane::cli
