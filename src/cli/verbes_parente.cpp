// Verbs of relationships: the common ascendance, common descendance or
// filiation of persons with the graph that joins them, the cousinages of
// a selection, and the branch outlines.
#include "charts/svg.h"
#include "cli/session.h"
#include "cli/verbes.h"
#include "kinship/branches.h"
#include "kinship/cousins.h"
#include "kinship/parente.h"
#include "pdf/imprimante_pdf.h"
#include "text/messages.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

std::string TexteMsg(int n) {
    const std::string t = Message(n);
    return t.empty() ? "message " + std::to_string(n) : AnsiVersUtf8(t);
}

std::vector<std::uint32_t> Personnes(Base& b, const std::vector<std::string>& args) {
    std::vector<std::uint32_t> r;
    for (std::size_t i = 1; i < args.size(); ++i) {
        const std::uint32_t p = PersonneArgument(b, args[i], "personne");
        if (std::find(r.begin(), r.end(), p) != r.end())
            throw std::runtime_error(TexteMsg(588) + " (" + args[i] + ")");
        r.push_back(p);
    }
    return r;
}

int Generations(const Options& o, const Session& s) {
    const long g = o.entier("generations", s.parametres.maximumRechercheParente);
    if (g < 1 || g > 254) throw ErreurUsage{"--generations : de 1 \xC3\xA0 254"};
    return static_cast<int>(g);
}

Interaction Panneau(std::ostream& err, bool bavard) {
    Interaction io;
    if (bavard)
        io.progres = [&err](const std::string&, const std::string& t) {
            err << AnsiVersUtf8(t) << "\n";
        };
    return io;
}

// The graph drawn to a template, an SVG-free PDF, or both.
void Dessine(Session& s, Base& b, const GrapheParente& g, const Options& o, std::uint32_t racine) {
    if (!o.a("svp") && !o.a("pdf")) return;
    if (!g.Dessinable())
        throw std::runtime_error(TexteMsg(589) + " " + std::to_string(g.NbNoeuds()) + "\n" +
                                 TexteMsg(590));
    if (o.a("pdf") && !FabriquePdf())
        throw std::runtime_error("la sortie PDF n'est pas disponible dans cette version "
                                 "(utilisez --svp)");
    SystemeFichiers& fs = systemeReel();
    const std::string titre = MessageAvec(768, b.NomComplet(racine));
    for (const char* sortie : {"svp", "pdf"}) {
        if (!o.a(sortie)) continue;
        const std::string cible = Chemin(o.valeur(sortie));
        for (const std::string& p : {b.Chemins().base, b.Chemins().journal})
            if (fs.memeFichier(cible, p))
                throw std::runtime_error("la sortie " + CheminLisible(cible) +
                                         " est la base elle-m\xC3\xAAme");
    }
    Papier papier;
    const std::string gabarit = o.a("svp") ? Chemin(o.valeur("svp"))
                                           : s.parametres.DossierTravail() + b.Chemins().titre +
                                                 "-parente.svp";
    g.EcritGabarit(fs, gabarit, papier, titre);
    if (!o.a("pdf")) return;
    OptionsPages op;
    op.papier = papier;
    op.couleur = true;
    op.policeMax = 10;
    op.texte = [&b](std::uint32_t p, const StyleBoite&) { return TexteNoeudParente(b, p); };
    op.sexe = [&b](std::uint32_t p) {
        const std::string sx = b.LitSexe(p);
        return sx.empty() ? ' ' : sx[0];
    };
    op.couleurHomme = s.parametres.couleurCadreHomme;
    op.couleurFemme = s.parametres.couleurCadreFemme;
    op.couleurIndetermine = s.parametres.couleurCadreIndetermine;
    const auto pdf = FabriquePdf()();
    try {
        pdf->Ecrit(fs, gabarit, Chemin(o.valeur("pdf")), op);
    } catch (...) {
        if (!o.a("svp")) fs.supprimer(gabarit);
        throw;
    }
    if (!o.a("svp")) fs.supprimer(gabarit);
}

} // namespace

int VerbeRelationship(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"mode", "generations", "svp", "pdf"}, {"progress"});
    if (o.positionnels().size() < 2)
        throw ErreurUsage{"relationship attend une base et au moins un num\xC3\xA9ro de personne"};
    const std::string mode = o.valeur("mode", "common-asc");
    if (mode != "common-asc" && mode != "common-desc" && mode != "filiation")
        throw ErreurUsage{"--mode : common-asc, common-desc ou filiation"};
    Session s(err);
    const int generations = Generations(o, s);
    Base& b = s.Lit(o.positionnels()[0]);
    const std::vector<std::uint32_t> selection = Personnes(b, o.positionnels());
    const Interaction io = Panneau(err, o.a("progress"));
    ResultatParente r;
    if (mode == "filiation") {
        r.fin = FinParente::Trouve;
        r.liste = selection;
    } else {
        r = mode == "common-asc" ? AscendanceCommune(b, selection, generations, io)
                                 : DescendanceCommune(b, selection, generations, io);
    }
    nlohmann::json j;
    j["mode"] = mode == "common-asc" ? "A" : "D";
    if (r.fin != FinParente::Trouve) {
        const int message = mode == "common-asc" ? 695 : 696;
        err << TexteMsg(message) << "\n";
        j["found"] = false;
        Ligne(out, j);
        s.base->Abandonne();
        return 1;
    }
    GrapheParente g(b, r.liste, generations);
    g.Construit(io);
    j["found"] = true;
    if (mode != "filiation") j["generation"] = r.generation;
    j["common"] = r.communs;
    j["list"] = r.liste;
    j["levels"] = g.NbNiveaux();
    auto noeuds = nlohmann::json::array();
    for (std::size_t i = 1; i <= g.NbNoeuds(); ++i) {
        const auto& n = g.Noeuds()[i - 1];
        noeuds.push_back({{"node", i},
                          {"person", n.personne},
                          {"father", n.pere},
                          {"mother", n.mere},
                          {"level", g.Niveau(i)},
                          {"high", n.niveauHaut},
                          {"low", n.niveauBas},
                          {"year", n.annee},
                          {"name", Texte(b.NomDates(n.personne))}});
    }
    j["nodes"] = std::move(noeuds);
    auto mariages = nlohmann::json::array();
    for (const auto& [x, y] : g.LiensMariage()) mariages.push_back({x, y});
    j["marriages"] = std::move(mariages);
    Dessine(s, b, g, o, r.liste.front());
    Ligne(out, j);
    s.base->Abandonne(); // reading changes nothing
    return 0;
}

int VerbeCousins(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"generations", "subject", "files", "pages", "tables"}, {"progress"});
    if (o.positionnels().size() < 3)
        throw ErreurUsage{"cousins attend une base et au moins deux num\xC3\xA9ros de personne"};
    Session s(err);
    const int generations = Generations(o, s);
    Base& b = s.Lit(o.positionnels()[0]);
    std::vector<Selectionne> selection;
    for (std::uint32_t p : Personnes(b, o.positionnels())) selection.push_back({p, false});
    for (const std::string& v : o.valeurs("subject")) {
        const std::uint32_t p = PersonneArgument(b, v, "--subject");
        auto it = std::find_if(selection.begin(), selection.end(),
                               [p](const Selectionne& x) { return x.personne == p; });
        if (it == selection.end()) throw ErreurUsage{"--subject : une personne de la s\xC3\xA9lection"};
        it->sujet = true;
    }
    Cousinages c(b);
    c.Analyse(selection, generations, Panneau(err, o.a("progress")));
    const std::vector<LigneCousinage> lignes = c.Lignes();
    auto dossier = [&o](const char* option) {
        std::string d = Chemin(o.valeur(option));
        if (!d.empty() && d.back() != '/') d += '/';
        return d;
    };
    if (o.a("files")) EcritFichiersCousinage(systemeReel(), dossier("files"), lignes);
    std::vector<std::uint32_t> personnes, sujets;
    for (const Selectionne& x : selection) {
        personnes.push_back(x.personne);
        if (x.sujet) sujets.push_back(x.personne);
    }
    // The pages of each person alone against the others, and the tables
    // of this analysis with their ranking.
    if (o.a("pages"))
        CousinagesEnPages(b, systemeReel(), dossier("pages"), personnes, generations,
                          Panneau(err, o.a("progress")));
    if (o.a("tables"))
        TableauxCousinages(b, systemeReel(), dossier("tables"), lignes, personnes, sujets);
    if (lignes.empty()) err << "aucun cousinage\n";
    for (const LigneCousinage& l : lignes) {
        nlohmann::json j;
        j["husband"] = l.mari;
        j["wife"] = l.femme;
        j["marriage"] = l.mariage;
        j["persons"] = l.personnes;
        auto couple = nlohmann::json::array(), enfants = nlohmann::json::array();
        for (const std::string& t : l.couple) couple.push_back(Texte(t));
        for (const std::string& t : l.enfants) enfants.push_back(Texte(t));
        j["couple"] = std::move(couple);
        j["children"] = std::move(enfants);
        j["place"] = Texte(l.lieu);
        j["key"] = l.cle;
        Ligne(out, j);
    }
    s.base->Abandonne();
    return lignes.empty() ? 1 : 0;
}

int VerbeBranch(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"depth", "rtf", "html"}, {"asc", "desc"});
    if (o.positionnels().size() != 2)
        throw ErreurUsage{"branch attend une base et un num\xC3\xA9ro de personne"};
    if (o.a("asc") == o.a("desc")) throw ErreurUsage{"--asc ou --desc"};
    const long profondeur = o.entier("depth", 3);
    if (profondeur < 1 || profondeur > 1000) throw ErreurUsage{"--depth : de 1 \xC3\xA0 1000"};
    Session s(err);
    Base& b = s.Lit(o.positionnels()[0]);
    const std::uint32_t personne = PersonneArgument(b, o.positionnels()[1], "personne");
    Branche br(b, o.a("desc"), personne);
    br.Developpe(0, static_cast<int>(profondeur));
    for (const auto& [i, niveau] : br.Visibles()) {
        const NoeudBranche& n = br.Noeud(i);
        nlohmann::json j;
        j["depth"] = niveau;
        j["key"] = n.cle;
        if (n.personne) j["person"] = n.personne;
        else j["marriage"] = n.mariage;
        j["image"] = n.image;
        j["text"] = Texte(n.texte);
        Ligne(out, j);
    }
    const std::string titre = b.NomComplet(personne);
    for (const char* sortie : {"rtf", "html"}) {
        if (!o.a(sortie)) continue;
        const auto fichier = SortieExport(b, Chemin(o.valeur(sortie)));
        fichier->Sortie().ecrire(0, sortie[0] == 'r' ? br.Rtf(titre) : br.Html(titre));
        fichier->Valide();
    }
    s.base->Abandonne();
    return 0;
}

} // namespace sylvane::cli
