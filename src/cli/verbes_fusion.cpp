// Verbs of the doubles: the search of likely doubles among couples, and the
// merge of two persons with the choices of the merge window's wizard.
// Both keep the pairs file beside the base as the window keeps it.
#include "cli/session.h"
#include "cli/verbes.h"
#include "maintenance/fusion.h"
#include "text/messages.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

std::string TexteMessage(int n) {
    std::string t = Message(n);
    return t.empty() ? "message " + std::to_string(n) : AnsiVersUtf8(t);
}

nlohmann::json Paire(Base& b, const PaireDoublon& p) {
    auto nom = [&b](std::uint32_t n) {
        return PersonneVivante(b, n) ? Texte(b.NomDates(n)) : nlohmann::json("");
    };
    return {{"first", p.premier}, {"second", p.second}, {"first_name", nom(p.premier)},
            {"second_name", nom(p.second)}};
}

ChoixTexte LitChoix(const Options& o, const char* option) {
    const std::string v = o.valeur(option, "both");
    if (v == "first") return ChoixTexte::Premier;
    if (v == "second") return ChoixTexte::Second;
    if (v == "both") return ChoixTexte::Fusion;
    throw ErreurUsage{std::string("--") + option + " : first, second ou both"};
}

} // namespace

int VerbeDuplicates(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"level", "marriages"}, {});
    if (o.positionnels().size() != 1)
        throw ErreurUsage{"duplicates attend un seul fichier de base"};
    const long niveau = o.entier("level", 0);
    if (niveau < 0 || niveau > 3) throw ErreurUsage{"--level : 0, 1, 2 ou 3"};
    Session s(err);
    Base& b = s.Lit(o.positionnels()[0]);
    const std::string plage = o.valeur("marriages", "1/" + std::to_string(b.Tete().maxMariage));
    if (!LitPlage(plage, b.Tete().maxMariage))
        throw ErreurUsage{"--marriages : deux num\xC3\xA9ros de mariage, A/B"};
    const std::string chemin = CheminPaires(b.Chemins().base);
    TableDoublons table = LitPaires(b.Systeme(), chemin);
    RechercheDoublons(b, static_cast<int>(niveau), plage, table, {});
    EcritPaires(b.Systeme(), chemin, table);
    for (const auto& p : table.Lignes())
        if (p.premier) Ligne(out, Paire(b, p));
    return 0;
}

int VerbeMerge(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"parents", "notes"}, {"yes"});
    if (o.positionnels().size() != 3)
        throw ErreurUsage{"merge attend un fichier de base, la personne gard\xC3\xA9" "e et celle "
                          "qui disparait"};
    const ChoixTexte parents = LitChoix(o, "parents"), notes = LitChoix(o, "notes");
    Session s(err);
    Base& b = s.Ouvre(o.positionnels()[0]);
    const std::uint32_t k = PersonneArgument(b, o.positionnels()[1], "KEPT");
    const std::uint32_t d = PersonneArgument(b, o.positionnels()[2], "DROPPED");
    if (k == d) throw ErreurUsage{"une personne ne peut pas fusionner avec elle-m\xC3\xAAme"};
    if (const int refus = RefusFusion(b, k, d)) {
        err << "sylvane-cli merge : " << TexteMessage(refus) << "\n";
        return 1;
    }
    ChoixFusion c = ChoixParDefaut(b, k, d);
    c.pere = c.mere = parents;
    // As in the wizard, the notes are a choice only when both differ.
    const std::string nk = b.CorpsNote(k), nd = b.CorpsNote(d);
    if (!nk.empty() && !nd.empty() && nk != nd) c.note = notes;
    const std::string chemin = CheminPaires(b.Chemins().base);
    TableDoublons table = LitPaires(b.Systeme(), chemin);
    DialogueFusion dlg;
    const bool oui = o.a("yes");
    // 957 is the command itself with --yes; a child never takes the
    // marriage year unasked (981).
    dlg.question = [oui](int message, const std::string&) {
        return message == 957 && oui ? Reponse::Oui : Reponse::Non;
    };
    const ResultatFusion r = Maj_Fusion(b, c, table, dlg);
    if (!r.fait) {
        err << "sylvane-cli merge : " << TexteMessage(957) << " (--yes pour fusionner)\n";
        return 1;
    }
    EcritPaires(b.Systeme(), chemin, table);
    nlohmann::json paires = nlohmann::json::array();
    for (const auto& p : table.Lignes())
        if (p.premier) paires.push_back({p.premier, p.second});
    Ligne(out, {{"kept", k}, {"dropped", d}, {"name", Texte(b.NomDates(k))}, {"pairs", paires}});
    s.Ferme();
    return 0;
}

} // namespace sylvane::cli
