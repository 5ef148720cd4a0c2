// The tree charts of the command line: the page template itself, the
// sheets drawn as one SVG picture, or a PDF of one page a sheet.
#include "charts/gabarit.h"
#include "charts/graphe.h"
#include "charts/svg.h"
#include "cli/session.h"
#include "cli/verbes.h"
#include "pdf/imprimante_pdf.h"
#include "store/fichier.h"

#include <ostream>

namespace sylvane {

FabriqueImprimantePdf& FabriquePdf() {
    static FabriqueImprimantePdf f = nullptr;
    return f;
}

} // namespace sylvane

namespace sylvane::cli {
namespace {

// Every sheet reads the whole template again: a picture or a document of
// more sheets would take hours, and is no use on a screen.
constexpr std::int64_t kFeuillesSvgMax = 2000;

// The chart's template goes to the work folder when it is only a step.
std::string CheminTemplate(const Parametres& p, Base& b) {
    return p.DossierTravail() + b.Chemins().titre + ".svp";
}

} // namespace

int VerbeChart(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args,
              {"type", "generations", "sheets-across", "sheets-down", "paper", "svg", "svp", "pdf",
               "direction", "marriage", "font-max", "other"},
              {"detailed", "no-dates", "colour", "no-implex"});
    if (o.positionnels().size() != 2)
        throw ErreurUsage{"chart attend une base et un num\xC3\xA9ro de personne"};
    const std::string type = o.valeur("type", "asc");
    if (type != "asc" && type != "desc" && type != "mixed" && type != "couple")
        throw ErreurUsage{"--type : asc, desc, mixed ou couple"};
    const int sorties = o.a("svg") + o.a("svp") + o.a("pdf");
    if (sorties != 1) throw ErreurUsage{"une sortie et une seule : --svg, --svp ou --pdf"};
    if (o.a("pdf") && !FabriquePdf()) {
        err << "sylvane-cli chart : la sortie PDF n'est pas disponible dans cette version "
               "(utilisez --svg ou --svp)\n";
        return 2;
    }
    const long generations = o.entier("generations", 4);
    if (generations < 0 || generations > 99) throw ErreurUsage{"--generations : de 0 \xC3\xA0 99"};
    OptionsGraphe og;
    auto feuilles = [&o](const char* nom) {
        const long v = o.entier(nom, 99);
        if (v < 1 || v > kFeuillesMax)
            throw ErreurUsage{std::string("--") + nom + " : de 1 \xC3\xA0 " +
                              std::to_string(kFeuillesMax) + " (99 : automatique)"};
        return static_cast<std::int32_t>(v);
    };
    og.feuillesH = feuilles("sheets-across");
    og.feuillesV = feuilles("sheets-down");
    const auto papier = PapierNomme(o.valeur("paper", "A4"));
    if (!papier) throw ErreurUsage{"--paper : A4, A3 ou letter"};
    og.papier = *papier;
    og.direction = static_cast<int>(o.entier("direction", 0));
    if (og.direction < 0 || og.direction > 3) throw ErreurUsage{"--direction : 0, 1, 2 ou 3"};
    og.policeMax = static_cast<double>(o.entier("font-max", 12));
    if (og.policeMax < 4 || og.policeMax > 72) throw ErreurUsage{"--font-max : de 4 \xC3\xA0 72"};
    og.detaille = o.a("detailed");
    og.dates = !o.a("no-dates");
    og.sansImplexe = o.a("no-implex");
    og.autreDonnee = Ansi(o.valeur("other"));

    Session s(err);
    Base& b = s.Lit(o.positionnels()[0]);
    const std::uint32_t personne = PersonneArgument(b, o.positionnels()[1], "personne");
    SystemeFichiers& fs = systemeReel();
    const std::string cible =
        Chemin(o.valeur(o.a("svg") ? "svg" : o.a("pdf") ? "pdf" : "svp"));
    for (const std::string& p : {b.Chemins().base, b.Chemins().journal})
        if (fs.memeFichier(cible, p))
            throw std::runtime_error("la sortie " + CheminLisible(cible) +
                                     " est la base elle-m\xC3\xAAme");
    const std::string gabarit = o.a("svp") ? cible : CheminTemplate(s.parametres, b);
    // A PDF is laid out with the metric of its own font.
    const std::unique_ptr<ImprimantePdf> pdf = o.a("pdf") ? FabriquePdf()() : nullptr;
    const Metrique& m = pdf ? pdf->Mesure() : MetriqueDejaVu::Instance();
    const int g = static_cast<int>(generations);
    PlanGraphe plan;
    if (type == "couple") {
        std::uint32_t mariage = 0;
        const auto mariages = b.Mariages(personne);
        if (mariages.empty())
            throw std::runtime_error("cette personne n'a pas de mariage : pas de graphe du couple");
        const long rang = o.entier("marriage", 1);
        if (rang < 1 || rang > static_cast<long>(mariages.size()))
            throw ErreurUsage{"--marriage : de 1 \xC3\xA0 " + std::to_string(mariages.size())};
        mariage = mariages[static_cast<std::size_t>(rang - 1)];
        GrapheCouple(b, fs, gabarit, mariage, g, g, og, m, &plan);
    } else {
        const int asc = type == "desc" ? 0 : g, desc = type == "asc" ? 0 : g;
        GrapheIndividu(b, fs, gabarit, personne, asc, desc, og, m, &plan);
    }
    if (!o.a("svp")) {
        const std::int64_t feuilles = std::int64_t{plan.geo.feuillesH} * plan.geo.feuillesV;
        if (feuilles > kFeuillesSvgMax) {
            fs.supprimer(gabarit);
            throw std::runtime_error(std::to_string(feuilles) +
                                     " feuilles : une image SVG ou un PDF en prend au plus " +
                                     std::to_string(kFeuillesSvgMax) + " (--svp pour le graphe)");
        }
        OptionsPages op;
        op.papier = og.papier;
        op.couleur = o.a("colour");
        op.policeMax = og.policeMax;
        op.texte = [&b, &og](std::uint32_t p, const StyleBoite& st) {
            return TexteBoite(b, p, st, og);
        };
        op.sexe = [&b](std::uint32_t p) {
            const std::string sx = b.LitSexe(p);
            return sx.empty() ? ' ' : sx[0];
        };
        op.couleurHomme = s.parametres.couleurCadreHomme;
        op.couleurFemme = s.parametres.couleurCadreFemme;
        op.couleurIndetermine = s.parametres.couleurCadreIndetermine;
        try {
            if (pdf) {
                pdf->Ecrit(fs, gabarit, cible, op);
            } else {
                SurfaceSvg svg(fs, cible, m, og.papier, plan.geo.feuillesH, plan.geo.feuillesV);
                ImprimePages(fs, gabarit, svg, op);
                svg.Termine();
            }
        } catch (...) {
            fs.supprimer(gabarit);
            throw;
        }
        fs.supprimer(gabarit);
    }
    nlohmann::json j;
    j["sheets_across"] = plan.geo.feuillesH;
    j["sheets_down"] = plan.geo.feuillesV;
    j["width"] = plan.geo.largeurTotale;
    j["height"] = plan.geo.hauteurTotale;
    j["ascendant_generations"] = plan.niveauxAsc;
    j["descendant_generations"] = plan.niveauxDesc;
    j["ascendant_leaves"] = plan.feuillesAsc;
    j["descendant_leaves"] = plan.feuillesDesc;
    Ligne(out, j);
    s.base->Abandonne(); // reading changes nothing
    return 0;
}

} // namespace sylvane::cli
