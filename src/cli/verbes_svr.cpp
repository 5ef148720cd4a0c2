// Verbs of the exchange file, the selective export, backup and restore.
#include "cli/session.h"
#include "cli/verbes.h"
#include "exchange/sauvegarde.h"
#include "exchange/selection.h"
#include "exchange/svr.h"
#include "store/fichier.h"
#include "text/reglages.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

void DeuxFichiers(const Options& o, const char* verbe) {
    if (o.positionnels().size() != 2)
        throw ErreurUsage{std::string(verbe) + " attend deux fichiers"};
}

nlohmann::json Bilan(const BilanSvr& b) {
    return {{"persons", b.personnes},
            {"marriages", b.mariages},
            {"documents", b.documents},
            {"events", b.evenements},
            {"newRubrics", b.rubriquesNouvelles},
            {"droppedRubrics", b.rubriquesPerdues}};
}

// Answers of the command line: Yes with --yes, No otherwise.
DialogueEchange Dialogue(bool oui, std::ostream& err) {
    DialogueEchange d;
    d.question = [oui](int) { return oui; };
    d.message = [&err](const std::string& t) { err << AnsiVersUtf8(t) << "\n"; };
    return d;
}

} // namespace

bool ChoisitSelection(Base& b, const Options& o, const Arguments& args, Selection& sel) {
    sel.collateraux = o.a("collaterals");
    sel.complet = o.a("complete");
    sel.sans1900 = o.a("no-after-1900");
    for (const auto& a : args)
        if (a.rfind("--ascendants=", 0) == 0 || a.rfind("--descendants=", 0) == 0)
            throw ErreurUsage{"--ascendants N et --descendants N, sans \xC2\xAB = \xC2\xBB"};
    // Selections add up, in the order given.
    bool choisie = false;
    for (std::size_t i = 0; i + 1 < args.size(); ++i) {
        const bool asc = args[i] == "--ascendants", desc = args[i] == "--descendants";
        if (!asc && !desc) continue;
        const std::uint32_t n =
            PersonneArgument(b, args[i + 1], asc ? "--ascendants" : "--descendants");
        asc ? sel.SelectionneAscendants(n) : sel.SelectionneDescendants(n);
        choisie = true;
    }
    return choisie;
}

int VerbeExportSvr(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"ascendants", "descendants"}, {"collaterals", "complete", "no-after-1900"});
    DeuxFichiers(o, "export-svr");
    Session s(err);
    Base& b = s.Lit(o.positionnels()[0]);
    Selection sel(b);
    if (!ChoisitSelection(b, o, args, sel)) sel.SelectionneTout();
    const bool fini = ExporteSvr(b, sel, s.parametres, systemeReel(), Chemin(o.positionnels()[1]));
    std::size_t exportes = 0;
    for (std::uint32_t n = 1; n <= b.Tete().maxPersonne; ++n)
        if (sel.Exporte(n)) ++exportes;
    s.base->Abandonne(); // an export changes nothing
    Ligne(out, {{"persons", exportes}, {"complete", fini}});
    return 0;
}

int VerbeImportSvr(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {"force"});
    DeuxFichiers(o, "import-svr");
    const std::string svr = Chemin(o.positionnels()[0]);
    if (!systemeReel().existe(svr))
        throw std::runtime_error("fichier introuvable : " + CheminLisible(svr));
    Session s(err);
    Base& b = s.Nouvelle(o.positionnels()[1], o.a("force"));
    ReglagesMemoire reglages;
    try {
        const BilanSvr bilan = LitSvrNouvelleBase(b, systemeReel(), svr, reglages,
                                                  Dialogue(false, err));
        s.Valide();
        Ligne(out, Bilan(bilan));
    } catch (const ErreurLecture& e) {
        // A file read in part is no base: the old one stays.
        err << "sylvane-cli import-svr : " << AnsiVersUtf8(e.what()) << "\n";
        return 1;
    }
    return 0;
}

int VerbeIntegrate(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {"yes"});
    DeuxFichiers(o, "integrate");
    Session s(err);
    Base& b = s.Ouvre(o.positionnels()[0]);
    try {
        Ligne(out, Bilan(IntegreSvr(b, systemeReel(), Chemin(o.positionnels()[1]),
                                    Dialogue(o.a("yes"), err))));
    } catch (const ErreurLecture& e) {
        s.Ferme();
        err << "sylvane-cli integrate : " << AnsiVersUtf8(e.what()) << "\n";
        return 1;
    }
    s.Ferme();
    return 0;
}

int VerbeBackup(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {});
    DeuxFichiers(o, "backup");
    Session s(err);
    Base& b = s.Ouvre(o.positionnels()[0]);
    const std::string copie = Chemin(o.positionnels()[1]);
    Sauvegarde(b, systemeReel(), copie);
    s.Ferme();
    out << CheminLisible(copie) << "\n";
    return 0;
}

int VerbeRestore(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {"yes"});
    if (o.positionnels().size() != 1) throw ErreurUsage{"restore attend une copie .sav"};
    Session s(err);
    s.base = std::make_unique<Base>(systemeReel(), s.parametres);
    const bool fait =
        Restauration(*s.base, systemeReel(), Chemin(o.positionnels()[0]), Dialogue(o.a("yes"), err));
    if (!fait) {
        err << "sylvane-cli restore : la base existe d\xC3\xA9j\xC3\xA0 ; --yes pour la "
               "remplacer\n";
        return 1;
    }
    const std::string base = s.base->Chemins().base;
    s.Ferme();
    out << CheminLisible(base) << "\n";
    return 0;
}

} // namespace sylvane::cli
