// Verbs of the register files and of the communes gazetteer.
#include "cli/session.h"
#include "cli/verbes.h"
#include "exchange/communes.h"
#include "exchange/releve.h"
#include "text/messages.h"
#include "text/utf8.h"

#include <algorithm>
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
namespace {

nlohmann::json CommuneJson(std::uint32_t n, const Commune& c) {
    return {{"number", n},          {"name", Texte(c.nom)},
            {"code", Texte(c.numero)}, {"detail", Texte(c.detail)},
            {"town", Texte(c.agglomeration)}, {"main", Texte(c.principale)},
            {"postcodes", Texte(c.codesPostaux)}, {"comment", Texte(c.commentaire)},
            {"population", c.population}, {"area", c.superficie}};
}

std::uint32_t NumeroCommune(FichierCommunes& f, const std::string& texte) {
    const long n = EntierArgument(texte, "N");
    if (n < 1 || static_cast<std::uint32_t>(n) > f.Nombre())
        throw ErreurUsage{"pas de commune " + texte + " (le fichier en a " + std::to_string(f.Nombre()) + ")"};
    return static_cast<std::uint32_t>(n);
}

} // namespace

int VerbeCommunes(const Arguments& args, std::ostream& out, std::ostream&) {
    Options o(args, {"code", "postcode", "population", "area", "comment", "town", "main", "detail"}, {});
    const auto& p = o.positionnels();
    if (p.size() < 2) throw ErreurUsage{"communes attend un fichier .svx et une action"};
    const std::string chemin = Chemin(p[0]), action = p[1];
    SystemeFichiers& fs = systemeReel();
    if (action == "add" && !fs.existe(chemin)) FichierCommunes::Cree(fs, chemin, {});
    FichierCommunes f(fs, chemin);
    auto argument = [&](const char* quoi) {
        if (p.size() != 3) throw ErreurUsage{"communes " + action + " attend " + quoi};
        return p[2];
    };
    if (action == "search") {
        bool exact = false;
        const std::uint32_t i = f.ChercheNom(Ansi(argument("un nom")), exact);
        nlohmann::json l = nlohmann::json::array();
        if (i)
            for (std::uint32_t n : f.CommunesNom(i)) l.push_back(CommuneJson(n, f.Lit(n)));
        Ligne(out, {{"exact", exact}, {"name", Texte(i ? f.NomIndex(i) : "")}, {"communes", l}});
    } else if (action == "word") {
        const std::uint32_t k = f.ChercheMot(Ansi(argument("un mot")));
        nlohmann::json voisins = nlohmann::json::array(), l = nlohmann::json::array();
        for (std::uint32_t j = k > 5 ? k - 5 : 1; k && j <= std::min(f.NombreMots(), k + 5); ++j) voisins.push_back(Texte(f.Mot(j)));
        if (k)
            for (std::uint32_t n : f.CommunesMot(k)) l.push_back(CommuneJson(n, f.Lit(n)));
        Ligne(out, {{"word", Texte(k ? f.Mot(k) : "")}, {"near", voisins}, {"communes", l}});
    } else if (action == "show") {
        const std::uint32_t n = NumeroCommune(f, argument("un num\xC3\xA9ro"));
        Ligne(out, CommuneJson(n, f.Lit(n)));
    } else if (action == "add") {
        Commune c;
        c.nom = Ansi(argument("un nom"));
        if (c.nom.empty()) throw ErreurUsage{"le nom est vide"};
        c.numero = Ansi(o.valeur("code"));
        c.detail = Ansi(o.valeur("detail"));
        c.codesPostaux = Ansi(o.valeur("postcode"));
        c.commentaire = Ansi(o.valeur("comment"));
        c.agglomeration = Ansi(o.valeur("town"));
        c.principale = Ansi(o.valeur("main"));
        c.population = static_cast<std::uint32_t>(std::max(0L, o.entier("population", 0)));
        c.superficie = static_cast<std::uint32_t>(std::max(0L, o.entier("area", 0)));
        out << f.Ajoute(c) << "\n";
    } else if (action == "remove") {
        f.Retire(NumeroCommune(f, argument("un num\xC3\xA9ro")));
    } else if (action == "reorganise") {
        f.Reorganise();
        out << f.Nombre() << "\n";
    } else {
        throw ErreurUsage{"action inconnue : " + action};
    }
    return 0;
}

} // namespace sylvane::cli
