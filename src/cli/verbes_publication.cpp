// Verbs of the publishing side: the framed site of a base, the HTML
// reports of one person, and the RTF reports.
#include "cli/session.h"
#include "cli/verbes.h"
#include "kinship/liste.h"
#include "kinship/numeros.h"
#include "publish/html.h"
#include "publish/rtf_rapports.h"
#include "store/fichier.h"
#include "text/utf8.h"

#include <filesystem>
#include <ostream>

namespace sylvane::cli {
namespace {

GenreRapport Genre(const std::string& v, bool fiche) {
    if (v == "asc") return GenreRapport::Ascendants;
    if (v == "desc") return GenreRapport::Descendants;
    if (v == "family") return GenreRapport::Famille;
    if (fiche && v == "sheet") return GenreRapport::Fiche;
    throw ErreurUsage{fiche ? "--report : sheet, family, asc ou desc" : "--report : asc, desc ou family"};
}

int Niveaux(const Options& o) {
    const long n = o.entier("levels", 32767);
    if (n < 1 || n > 32767) throw ErreurUsage{"--levels : de 1 \xC3\xA0 32767"};
    return static_cast<int>(n);
}

// The work folder of the lists: the system's when the settings name none.
void DossierTravail(Session& s) {
    if (s.parametres.dossierTravail.empty())
        s.parametres.dossierTravail = std::filesystem::temp_directory_path().string();
}

} // namespace

int VerbeHtmlSite(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"decujus"}, {});
    if (o.positionnels().size() != 2)
        throw ErreurUsage{"html-site attend une base et un dossier de sortie"};
    Session s(err);
    Base& b = s.Lit(o.positionnels()[0]);
    EtatNumerotation etat;
    EcrivainHTML w(b, systemeReel(), Interaction{});
    if (o.a("decujus")) {
        etat.deCujus1.deCujus = PersonneArgument(b, o.valeur("decujus"), "--decujus");
        Calcul_Numeros_1(b, etat);
        b.valeurNom_ = ValeurNomAvecNumeros(etat, b.valeurNom_);
        w.personneAccueil = etat.deCujus1.deCujus;
    }
    const std::string dossier = Chemin(o.positionnels()[1]);
    w.Site(dossier);
    s.base->Abandonne();
    nlohmann::json j;
    j["home"] = CheminLisible((std::filesystem::path(dossier) / "homepage.htm").string());
    j["persons"] = b.Tete().nbPersonnes;
    j["events"] = b.Tete().nbEvenements;
    j["documents"] = b.Tete().nbDocuments;
    Ligne(out, j);
    return 0;
}

int VerbeHtmlReport(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"report", "levels"}, {"single"});
    if (o.positionnels().size() != 3)
        throw ErreurUsage{"html-report attend une base, un num\xC3\xA9ro de personne et une sortie"};
    const GenreRapport genre = Genre(o.valeur("report"), false);
    const int niveaux = Niveaux(o);
    Session s(err);
    DossierTravail(s);
    Base& b = s.Lit(o.positionnels()[0]);
    const std::uint32_t personne = PersonneArgument(b, o.positionnels()[1], "personne");
    const bool unePage = o.a("single");
    ListeParente liste(b, systemeReel());
    liste.avertit = [&err](const std::string& t) { err << AnsiVersUtf8(t) << "\n"; };
    const std::vector<EntreeRapport> entrees = EntreesRapport(
        b, liste, genre, personne, niveaux, unePage ? FormeLigne::HtmlPage : FormeLigne::HtmlSite);
    liste.SupprimeFichiers();
    if (entrees.empty()) {
        s.base->Abandonne();
        throw std::runtime_error("la liste n'a pu \xC3\xAAtre construite dans " +
                                 CheminLisible(s.parametres.dossierTravail));
    }
    EcrivainHTML w(b, systemeReel(), Interaction{});
    const std::string sortie = Chemin(o.positionnels()[2]);
    const std::string titre = TitreRapport(b, genre, personne);
    if (unePage)
        w.RapportFichier(sortie, titre, entrees);
    else
        w.RapportMultifichiers(sortie, titre, entrees);
    s.base->Abandonne();
    nlohmann::json j;
    j["title"] = Texte(titre);
    j["persons"] = entrees.size();
    j["home"] = CheminLisible(unePage ? sortie
                                      : (std::filesystem::path(sortie) / "homepage.htm").string());
    Ligne(out, j);
    return 0;
}

int VerbeRtf(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"report", "levels", "font"}, {"quick"});
    if (o.positionnels().size() != 3)
        throw ErreurUsage{"rtf attend une base, un num\xC3\xA9ro de personne et un fichier de sortie"};
    const GenreRapport genre = Genre(o.valeur("report"), true);
    const int niveaux = Niveaux(o);
    Session s(err);
    DossierTravail(s);
    Base& b = s.Lit(o.positionnels()[0]);
    const std::uint32_t personne = PersonneArgument(b, o.positionnels()[1], "personne");
    OptionsRTF options;
    options.fiche.listeRapide = o.a("quick");
    if (o.a("font")) options.police = Ansi(o.valeur("font"));
    ListeParente liste(b, systemeReel());
    liste.avertit = [&err](const std::string& t) { err << AnsiVersUtf8(t) << "\n"; };
    const std::string sortie = Chemin(o.positionnels()[2]);
    const std::string titre = TitreRapport(b, genre, personne);
    const FinRTF fin =
        RapportRTF(b, systemeReel(), Interaction{}, liste, genre, personne, niveaux, sortie, options);
    liste.SupprimeFichiers();
    s.base->Abandonne();
    if (fin != FinRTF::Termine)
        throw std::runtime_error("la liste n'a pu \xC3\xAAtre construite dans " +
                                 CheminLisible(s.parametres.dossierTravail));
    nlohmann::json j;
    j["title"] = Texte(titre);
    j["file"] = CheminLisible(sortie);
    Ligne(out, j);
    return 0;
}

} // namespace sylvane::cli
