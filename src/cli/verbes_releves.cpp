// Verbs of the register files and of the communes gazetteer.
#include "cli/session.h"
#include "cli/verbes.h"
#include "exchange/releve.h"
#include "text/messages.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

GenreReleve GenreOption(const std::string& v) {
    if (v == "marriage") return GenreReleve::Mariage;
    if (v == "baptism") return GenreReleve::Bapteme;
    if (v == "burial") return GenreReleve::Sepulture;
    if (v == "ascendance") return GenreReleve::Ascendance;
    throw ErreurUsage{"--kind attend marriage, baptism, burial ou ascendance"};
}

} // namespace

int VerbeImportRegister(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"kind"}, {"force"});
    if (o.positionnels().size() != 2)
        throw ErreurUsage{"import-register attend un fichier de relev\xC3\xA9 et un fichier de base"};
    if (!o.a("kind")) throw ErreurUsage{"--kind est requis"};
    const GenreReleve genre = GenreOption(o.valeur("kind"));
    const std::string source = Chemin(o.positionnels()[0]), chemin = o.positionnels()[1];
    SystemeFichiers& fs = systemeReel();
    if (!fs.existe(source)) {
        err << "Fichier introuvable : " << CheminLisible(source) << "\n";
        return 1;
    }
    Session s(err);
    Base& b = s.Nouvelle(chemin, o.a("force"));
    OptionsReleve opt;
    opt.parametres = &s.parametres;
    const RapportReleve r = ImporteReleveFichier(b, fs, source, genre, opt);
    if (r.refuse()) {
        // Nothing was made: the temporary base goes, the target stays.
        err << AnsiVersUtf8(r.Texte());
        return 1;
    }
    s.Valide();
    out << AnsiVersUtf8(r.Texte());
    return 0;
}

} // namespace sylvane::cli

namespace sylvane::cli {
int VerbeCommunes(const Arguments&, std::ostream&, std::ostream& err) {
    err << "communes : indisponible\n";
    return 1;
}
} // namespace sylvane::cli
