// sylvane-cli text: probes of the text and date routines of subsystem 2.
// Arguments and output are UTF-8; the routines work in Windows-1252.
#include "cli/verbes.h"

#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/phonetique.h"
#include "text/republicain.h"
#include "text/utf8.h"

#include <functional>
#include <ostream>

namespace sylvane::cli {
namespace {

// One result per positional argument, each through `f` in Windows-1252.
int parLigne(const std::vector<std::string>& textes, std::ostream& out,
             const std::function<std::string(const std::string&)>& f) {
    if (textes.empty()) throw ErreurUsage{"texte attendu"};
    for (const auto& t : textes) out << AnsiVersUtf8(f(Utf8VersAnsi(t))) << "\n";
    return 0;
}

// The CLI has no message file yet: the French words of the dates stand in.
void messagesDesDates() {
    if (Message(730).empty()) DefinitMessages(MessagesDatesFrancais());
}

int anneeRepublicaine(const std::string& s) {
    for (int i = 1; i <= 14; ++i)
        if (s == AnneeRepublicaine(i)) return i;
    return static_cast<int>(EntierArgument(s, "année"));
}

int republican(const Options& o, std::ostream& out, std::ostream& err) {
    const auto& p = o.positionnels();
    const bool gr = o.a("from-gregorian"), rg = o.a("from-republican");
    if (gr == rg || p.size() != 4)
        throw ErreurUsage{"--from-gregorian J M A ou --from-republican J M A"};
    const int j = static_cast<int>(EntierArgument(p[1], "jour"));
    const int m = static_cast<int>(EntierArgument(p[2], "mois"));
    DateFormulaire r;
    if (gr) {
        const long a = EntierArgument(p[3], "année");
        const int index = a >= kPremiereAnneeGregorienne && a < kPremiereAnneeGregorienne + 14
                              ? static_cast<int>(a - kPremiereAnneeGregorienne + 1)
                              : 0;
        r = Calendrier_GregorienVersRepublicain(j, m, index);
    } else {
        r = Calendrier_RepublicainVersGregorien(j, m, anneeRepublicaine(p[3]));
    }
    if (r.message != 0) {
        err << "message " << r.message << "\n";
        return 1;
    }
    out << r.jour << " " << r.mois << " " << r.annee << "\n";
    return 0;
}

} // namespace

int VerbeText(const Arguments& args, std::ostream& out, std::ostream& err) {
    const Options o(args, {"format"}, {"from-gregorian", "from-republican"});
    const auto& p = o.positionnels();
    if (p.empty()) throw ErreurUsage{"sous-commande attendue"};
    const std::string& quoi = p[0];
    const std::vector<std::string> textes(p.begin() + 1, p.end());
    const std::string format = o.valeur("format", "dd/mm/yyyy");
    if (format != "dd/mm/yyyy" && format != "mm/dd/yyyy" && format != "yyyy/mm/dd" &&
        format != "yyyy/dd/mm" && format != "mm/yyyy/dd")
        throw ErreurUsage{"--format : dd/mm/yyyy, mm/dd/yyyy, yyyy/mm/dd, yyyy/dd/mm ou mm/yyyy/dd"};

    if (quoi == "fold") return parLigne(textes, out, [](const std::string& t) { return CleMot(t); });
    if (quoi == "phonetic")
        return parLigne(textes, out, [](const std::string& t) { return Conv_ClePhonetique(t); });
    if (quoi == "near") {
        if (textes.size() != 2) throw ErreurUsage{"deux clés attendues"};
        out << (Conv_ClesVoisines(Utf8VersAnsi(textes[0]), Utf8VersAnsi(textes[1])) ? 1 : 0)
            << "\n";
        return 0;
    }
    if (quoi == "propre") {
        if (textes.empty() || (textes[0] != "N" && textes[0] != "P"))
            throw ErreurUsage{"N ou P attendu"};
        const char genre = textes[0][0];
        return parLigne({textes.begin() + 1, textes.end()}, out,
                        [genre](const std::string& t) { return Conv_NomPropre(t, genre); });
    }
    if (quoi == "particule")
        return parLigne(textes, out, [](const std::string& t) {
            return SansParticule(t, ParticulesParDefaut(), true);
        });
    messagesDesDates();
    if (quoi == "date")
        return parLigne(textes, out,
                        [&format](const std::string& t) { return Conv_DateSaisie(t, format); });
    if (quoi == "gedcom-date")
        return parLigne(textes, out, [](const std::string& t) { return Conv_DateGedcom(t); });
    if (quoi == "display-date")
        return parLigne(textes, out, [](const std::string& t) { return Conv_DateAffichage(t); });
    if (quoi == "republican") return republican(o, out, err);
    throw ErreurUsage{"sous-commande inconnue : " + quoi};
}

} // namespace sylvane::cli
