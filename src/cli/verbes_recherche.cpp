// The searches by name, keyword, couple and event: one JSON object a line
// for each person, marriage or event found. What the windows ask before a
// long scan (no index can answer) is answered yes here.
#include "cli/session.h"
#include "cli/verbes.h"
#include "search/recherche.h"
#include "text/mots.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

std::string BaseSeule(const Options& o, const char* verbe) {
    if (o.positionnels().size() != 1)
        throw ErreurUsage{std::string(verbe) + " attend un fichier de base"};
    return o.positionnels()[0];
}

// --from and --to: a year, possibly before the era.
std::string Annee(const Options& o, const char* option) {
    const std::string v = Trim(o.valeur(option));
    if (v.empty()) return v;
    std::size_t i = v[0] == '-' ? 1 : 0;
    if (v.size() == i || v.size() - i > 4 ||
        v.find_first_not_of("0123456789", i) != std::string::npos)
        throw ErreurUsage{std::string("--") + option + " : une ann\xC3\xA9" "e est attendue"};
    return v;
}

const Interaction kSansArret{};

} // namespace

int VerbeSearchName(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"name", "first", "from", "to", "sex"}, {});
    const std::string chemin = BaseSeule(o, "search-name");
    CriteresNom c;
    c.nom = Ansi(o.valeur("name"));
    c.prenom = Ansi(o.valeur("first"));
    c.anDebut = Annee(o, "from");
    c.anFin = Annee(o, "to");
    const std::string sexe = o.valeur("sex");
    if (!sexe.empty()) {
        if (sexe != "H" && sexe != "F") throw ErreurUsage{"--sex : H ou F"};
        c.sexe = sexe[0];
    }
    if (c.Vides()) throw ErreurUsage{"search-name attend au moins un crit\xC3\xA8re"};
    Session s(err);
    Base& b = s.Lit(chemin);
    RechercheNom r(b, c);
    EnsemblePersonnes ensemble;
    Execute(r, kSansArret, [&] { ensemble.Fusionne(r.Prend()); });
    for (std::uint32_t n : ensemble.Numeros()) {
        nlohmann::json j;
        j["person"] = n;
        j["name"] = Texte(b.NomComplet(n));
        j["family"] = CodeFamille(b, n);
        j["dates"] = Texte(DatesPersonne(b, n));
        Ligne(out, j);
    }
    b.Abandonne();
    return 0;
}

int VerbeSearchKeyword(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"word", "from", "to"}, {"orphans"});
    const std::string chemin = BaseSeule(o, "search-keyword");
    const auto mots = o.valeurs("word");
    if (mots.size() > 4) throw ErreurUsage{"--word : quatre au plus"};
    CriteresMots c;
    c.anDebut = Annee(o, "from");
    c.anFin = Annee(o, "to");
    c.orphelines = o.a("orphans");
    Session s(err);
    Base& b = s.Lit(chemin);
    for (std::size_t i = 0; i < mots.size(); ++i) {
        const std::string m = Ansi(mots[i]);
        const auto deux = m.find(':');
        if (deux == std::string::npos || deux == 0)
            throw ErreurUsage{"--word GENRE:TEXTE, et non \xC2\xAB " + mots[i] + " \xC2\xBB"};
        c.lignes[i].marque = SymboleRubrique(b, m.substr(0, deux));
        if (c.lignes[i].marque == ' ')
            throw ErreurUsage{"--word : pas de rubrique \xC2\xAB " + AnsiVersUtf8(m.substr(0, deux)) +
                              " \xC2\xBB dans la base"};
        c.lignes[i].texte = m.substr(deux + 1);
    }
    if (c.Vides()) throw ErreurUsage{"search-keyword attend au moins un crit\xC3\xA8re"};
    RechercheMots r(b, c);
    Execute(r, kSansArret, [&] {
        for (const LigneMot& l : r.Prend()) {
            nlohmann::json j;
            j["person"] = l.personne;
            j["name"] = Texte(l.nom);
            j["key"] = Texte(l.cle);
            j["detail"] = Texte(l.detail);
            j["parents"] = l.parents;
            j["no_marriage"] = !l.sansMariage.empty();
            j["no_children"] = !l.sansEnfant.empty();
            Ligne(out, j);
        }
    });
    b.Abandonne();
    return 0;
}

int VerbeSearchCouple(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"husband", "husband-first", "wife", "wife-first", "place", "from", "to"}, {});
    const std::string chemin = BaseSeule(o, "search-couple");
    CriteresCouple c;
    c.epoux = Ansi(o.valeur("husband"));
    c.prEpoux = Ansi(o.valeur("husband-first"));
    c.epouse = Ansi(o.valeur("wife"));
    c.prEpouse = Ansi(o.valeur("wife-first"));
    c.lieu = Ansi(o.valeur("place"));
    c.anDebut = Annee(o, "from");
    c.anFin = Annee(o, "to");
    if (c.Vides()) throw ErreurUsage{"search-couple attend au moins un crit\xC3\xA8re"};
    Session s(err);
    Base& b = s.Lit(chemin);
    RechercheCouple r(b, c);
    Execute(r, kSansArret, [&] {
        for (const LigneCouple& l : r.Prend()) {
            nlohmann::json j;
            j["marriage"] = l.mariage;
            j["husband"] = l.mari;
            j["wife"] = l.femme;
            j["husband_name"] = Texte(l.nomMari);
            j["wife_name"] = Texte(l.nomFemme);
            j["date"] = Texte(l.date);
            j["place"] = Texte(l.lieu);
            j["parents"] = l.parents;
            j["children"] = l.enfants;
            Ligne(out, j);
        }
    });
    b.Abandonne();
    return 0;
}

int VerbeSearchEvents(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"tag", "place", "from", "to"}, {});
    const std::string chemin = BaseSeule(o, "search-events");
    CriteresEvt c;
    c.type = Ansi(o.valeur("tag"));
    c.lieu = Ansi(o.valeur("place"));
    c.anDebut = Annee(o, "from");
    c.anFin = Annee(o, "to");
    if (c.Refus() != 0) throw ErreurUsage{"search-events attend au moins un crit\xC3\xA8re"};
    Session s(err);
    Base& b = s.Lit(chemin);
    RechercheEvt r(b, c, JourAujourdhui());
    Execute(r, kSansArret, [&] {
        for (const LigneEvt& l : r.Prend()) {
            nlohmann::json j;
            j["event"] = l.evt;
            j["day"] = l.jour;
            j["date"] = l.date;
            j["tag"] = Texte(l.tag);
            j["place"] = Texte(l.lieu);
            j["description"] = Texte(l.description);
            Ligne(out, j);
        }
    });
    b.Abandonne();
    return 0;
}

} // namespace sylvane::cli
