// Verbs over the base file and the person store.
#include "cli/session.h"
#include "cli/verbes.h"
#include "store/liens.h"
#include "store/pack.h"

#include <ostream>

namespace sylvane::cli {
namespace {

nlohmann::json Liste(const std::string& packed, std::size_t pas) {
    auto j = nlohmann::json::array();
    for (std::size_t o = 0; o + 4 <= packed.size(); o += pas) j.push_back(Unpack4(packed, o));
    return j;
}

std::string UneBase(const Options& o, const char* verbe) {
    if (o.positionnels().size() != 1)
        throw ErreurUsage{std::string(verbe) + " attend un seul fichier de base"};
    return o.positionnels()[0];
}

} // namespace

int VerbeNew(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {"force"});
    std::string chemin = UneBase(o, "new");
    Session s(err);
    s.Nouvelle(chemin, o.a("force"));
    const std::string cree = s.remplacement->Cible().base;
    s.Valide();
    out << CheminLisible(cree) << "\n";
    return 0;
}

int VerbeInfo(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {});
    Session s(err);
    Base& b = s.Lit(UneBase(o, "info"));
    const Entete& e = b.Tete();
    nlohmann::json j;
    j["banner"] = Texte(e.banniere);
    j["ZoneFin"] = e.zoneFin;
    j["persons"] = {{"live", e.nbPersonnes}, {"highest", e.maxPersonne}};
    j["marriages"] = {{"highest", e.maxMariage}};
    j["events"] = {{"live", e.nbEvenements}, {"highest", e.maxEvenement}};
    j["documents"] = {{"live", e.nbDocuments}, {"highest", e.maxDocument}};
    j["keywords"] = {{"entries", e.nbMots}};
    j["ModeTri"] = std::string(1, e.modeTri);
    j["flag102"] = std::string(1, e.premierPrenom);
    j["flag103"] = std::string(1, e.particules);
    j["rubrics"] = e.nbRubriques;
    j["titleDocument"] = e.documentTitre;
    Ligne(out, j);
    s.base->Abandonne(); // reading changes nothing
    return 0;
}

int VerbePersons(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {});
    Session s(err);
    Base& b = s.Lit(UneBase(o, "persons"));
    const std::size_t nb = b.TablePersonnes().taille();
    for (std::size_t i = 1; i <= nb; ++i) {
        std::uint32_t n = b.TriFiche(i);
        if (n == 0) break;
        nlohmann::json j;
        j["number"] = n;
        j["sex"] = Texte(b.LitSexe(n));
        j["father"] = b.LitPere(n);
        j["mother"] = b.LitMere(n);
        j["birthYear"] = Texte(b.LitAnNaiss(n));
        j["deathYear"] = Texte(b.LitAnDeces(n));
        j["name"] = Texte(b.LitNom(n));
        j["firstNames"] = Texte(b.LitPrenom(n));
        j["otherFirstNames"] = Texte(b.LitAutrePrenom(n));
        j["birthDate"] = Texte(b.LitDateNaiss(n));
        j["deathDate"] = Texte(b.LitDateDeces(n));
        j["marriages"] = Liste(b.ListeMariages(n), 4);
        j["children"] = Liste(b.ListeEnfants(n), 4);
        j["note"] = Texte(b.LitNote(n));
        j["birthPlace"] = Texte(b.LieuNaiss(n));
        j["deathPlace"] = Texte(b.LieuDeces(n));
        auto rubriques = nlohmann::json::array();
        auto valeurs = b.RubriquesNote(n);
        for (std::size_t k = 0; k < valeurs.size() && k < b.Tete().rubriquesPersonne.size(); ++k) {
            const auto& slot = b.Tete().rubriquesPersonne[k];
            if (slot.symbole == ' ' || slot.symbole == '\0') break;
            rubriques.push_back({{"tag", Texte(slot.tag)},
                                 {"dayMonth", Texte(valeurs[k].jourMois)},
                                 {"year", Texte(valeurs[k].annee)},
                                 {"value", Texte(valeurs[k].valeur)}});
        }
        j["rubrics"] = rubriques;
        j["events"] = Liste(b.ListeEvts(n), 8);
        Ligne(out, j);
    }
    s.base->Abandonne();
    return 0;
}

int VerbeAddPerson(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"name", "first", "sex", "birth", "father", "mother"}, {});
    std::string chemin = UneBase(o, "add-person");
    if (!o.a("name") || !o.a("first")) throw ErreurUsage{"--name et --first sont requis"};
    std::string sexe = o.valeur("sex", "I");
    if (sexe != "H" && sexe != "F" && sexe != "I")
        throw ErreurUsage{"--sex attend H, F ou I"};
    std::string nom = Ansi(o.valeur("name")), prenom = Ansi(o.valeur("first"));
    std::string an = Ansi(o.valeur("birth"));
    // ";" joins the fields of an identity; "#" is a character like another.
    for (const char* option : {"name", "first", "birth"})
        if (o.valeur(option).find_first_of(";\r\n") != std::string::npos)
            throw ErreurUsage{"le caract\xC3\xA8re ; et les fins de ligne sont interdits"};
    if (an.size() > 4) throw ErreurUsage{"--birth : une ann\xC3\xA9" "e de 4 caract\xC3\xA8res au plus"};
    Session s(err);
    Base& b = s.Ouvre(chemin);
    std::uint32_t pere = o.a("father") ? PersonneArgument(b, o.valeur("father"), "--father") : 0;
    std::uint32_t mere = o.a("mother") ? PersonneArgument(b, o.valeur("mother"), "--mother") : 0;
    // As on the sheet: a father is a man, a mother a woman.
    if ((pere && b.LitSexe(pere) != "H") || (mere && b.LitSexe(mere) != "F"))
        throw std::runtime_error(pere && b.LitSexe(pere) != "H"
                                     ? "--father : la personne n\xC2\xB0 " + o.valeur("father") +
                                           " n'est pas un homme"
                                     : "--mother : la personne n\xC2\xB0 " + o.valeur("mother") +
                                           " n'est pas une femme");
    std::uint32_t n = b.CreePersonne(nom, prenom, "", sexe[0], an);
    Liens liens(b, {}); // the sheet's questions answered No
    liens.AttacheParent(n, Cote::Pere, pere);
    liens.AttacheParent(n, Cote::Mere, mere);
    s.Ferme();
    out << n << "\n";
    return 0;
}

} // namespace sylvane::cli
