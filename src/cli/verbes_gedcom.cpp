// Verbs of the GEDCOM exchange: import into a new base, export of a base.
#include "cli/session.h"
#include "cli/verbes.h"
#include "exchange/selection.h"
#include "exchange/gedcom_export.h"
#include "exchange/gedcom_import.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

bool OuiNonOption(const Options& o, const std::string& nom) {
    const std::string v = o.valeur(nom, "yes");
    if (v == "yes") return true;
    if (v == "no") return false;
    throw ErreurUsage{"--" + nom + " attend yes ou no"};
}

class ReponsesFixes : public Questions {
  public:
    ReponsesFixes(bool tri, bool mots) : tri_(tri), mots_(mots) {}
    bool OuiNon(int message) override { return message == QuestionTri ? tri_ : mots_; }

  private:
    bool tri_, mots_;
};

} // namespace

int VerbeImportGedcom(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"sort", "keywords"}, {"force"});
    if (o.positionnels().size() != 2)
        throw ErreurUsage{"import-gedcom attend un fichier GEDCOM et un fichier de base"};
    const std::string ged = Chemin(o.positionnels()[0]), chemin = o.positionnels()[1];
    ReponsesFixes reponses(OuiNonOption(o, "sort"), OuiNonOption(o, "keywords"));
    SystemeFichiers& fs = systemeReel();
    if (!fs.existe(ged)) {
        err << "Fichier introuvable : " << CheminLisible(ged) << "\n";
        return 1;
    }
    const std::string base = DeriveChemins(Chemin(chemin)).base;
    if (fs.existe(base) && !o.a("force")) {
        err << "La base " << CheminLisible(base)
            << " existe d\xC3\xA9j\xC3\xA0 : --force pour la remplacer\n";
        return 1;
    }
    GedcomLu g = PrepareGedcom(fs, ged);
    if (!g.rapport().erreur().empty()) {
        err << AnsiVersUtf8(g.rapport().erreur()) << "\n";
        return 1;
    }
    Session s(err);
    Base& b = s.Nouvelle(chemin, true);
    OptionsImport opt;
    opt.questions = &reponses;
    opt.parametres = &s.parametres;
    RapportImport r = ImporteGedcom(b, g, opt);
    s.Valide(); // the keyword index is built: the base is whole
    out << AnsiVersUtf8(r.Texte());
    return 0;
}

int VerbeExportGedcom(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"charset", "ascendants", "descendants"},
              {"links", "events", "documents", "no-after-1900", "geneanet", "collaterals",
               "complete"});
    if (o.positionnels().size() != 2)
        throw ErreurUsage{"export-gedcom attend un fichier de base et un fichier GEDCOM"};
    const std::string jeu = o.valeur("charset", "ansi");
    OptionsExport opt;
    if (jeu == "ansi") opt.jeu = '1';
    else if (jeu == "ansel") opt.jeu = '2';
    else if (jeu == "ascii") opt.jeu = '0';
    else if (jeu == "html") opt.jeu = '3';
    else if (jeu == "utf8") opt.jeu = JeuUtf8;
    else throw ErreurUsage{"--charset attend ansi, ansel, ascii, html ou utf8"};
    opt.liens = o.a("links");
    opt.evenements = o.a("events");
    opt.documents = o.a("documents");
    opt.avant1900 = o.a("no-after-1900");
    Session s(err);
    Base& b = s.Lit(o.positionnels()[0]);
    Selection sel(b);
    if (ChoisitSelection(b, o, args, sel))
        opt.selection = [&sel](std::uint32_t n) { return sel.Exporte(n); };
    const std::string sortie = Chemin(o.positionnels()[1]);
    if (o.a("geneanet"))
        ExporteGeneanet(b, systemeReel(), sortie, opt);
    else
        ExporteGedcom(b, systemeReel(), sortie, opt);
    b.Abandonne();
    out << o.positionnels()[1] << "\n";
    return 0;
}

} // namespace sylvane::cli
