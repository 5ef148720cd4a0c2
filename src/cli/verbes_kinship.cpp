// Verbs over the kinship lists and the numbers against the De Cujus.
#include "cli/session.h"
#include "cli/verbes.h"
#include "kinship/lignes.h"
#include "kinship/liste.h"
#include "kinship/numeros.h"
#include "store/fichier.h"
#include "text/utf8.h"

#include <filesystem>
#include <ostream>

namespace sylvane::cli {
namespace {

int Liste(const Arguments& args, std::ostream& out, std::ostream& err, bool descendants) {
    const char* verbe = descendants ? "descendants" : "ascendants";
    Options o(args, {"levels", "order"}, {"implex"});
    if (o.positionnels().size() != 2)
        throw ErreurUsage{std::string(verbe) + " attend une base et un num\xC3\xA9ro de personne"};
    const long niveaux = o.entier("levels", 32767);
    if (niveaux < 1 || niveaux > 32767) throw ErreurUsage{"--levels : de 1 \xC3\xA0 32767"};
    const long ordre = o.entier("order", 0);
    if (ordre < 0 || ordre > 3) throw ErreurUsage{"--order : 0, 1, 2 ou 3"};

    Session s(err);
    if (s.parametres.dossierTravail.empty())
        s.parametres.dossierTravail = std::filesystem::temp_directory_path().string();
    Base& b = s.Lit(o.positionnels()[0]);
    const std::uint32_t personne = PersonneArgument(b, o.positionnels()[1], "personne");
    ListeParente liste(b, systemeReel());
    liste.ArretDoublon = o.a("implex") ? 1 : 0;
    liste.avertit = [&err](const std::string& t) { err << AnsiVersUtf8(t) << "\n"; };
    std::int32_t nombre = 0;
    const bool fait = descendants
                          ? liste.ConstruitDescendants(personne, nombre, static_cast<int>(niveaux),
                                                       static_cast<int>(ordre))
                          : liste.ConstruitAscendants(personne, nombre, static_cast<int>(niveaux),
                                                      static_cast<int>(ordre));
    if (!fait) {
        s.base->Abandonne();
        throw std::runtime_error("les fichiers de travail de la liste n'ont pu \xC3\xAAtre \xC3\xA9"
                                 "crits dans " +
                                 s.parametres.dossierTravail);
    }
    for (std::int32_t n = 1; n <= nombre; ++n) {
        nlohmann::json j;
        const std::uint32_t p = liste.ListePersonne(n);
        j["person"] = p;
        j["generation"] = liste.ListeGeneration(n);
        j["link"] = liste.ListeLien(n);
        auto numeros = nlohmann::json::array();
        for (const Occurrence& occ : liste.OccurrencesEntree(n)) {
            if (descendants)
                numeros.push_back(Texte(liste.NumerosDescendance(occ.numero)));
            else
                numeros.push_back(occ.numero);
        }
        j["numbers"] = std::move(numeros);
        j["occurrences"] = liste.ListeOccurrences(p);
        j["text"] = Texte(descendants ? LigneDescendant(liste, b, n) : LigneAscendant(liste, b, n));
        Ligne(out, j);
    }
    liste.SupprimeFichiers();
    s.base->Abandonne(); // reading changes nothing
    return 0;
}

} // namespace

int VerbeAscendants(const Arguments& args, std::ostream& out, std::ostream& err) {
    return Liste(args, out, err, false);
}

int VerbeDescendants(const Arguments& args, std::ostream& out, std::ostream& err) {
    return Liste(args, out, err, true);
}

int VerbeNumbers(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"decujus", "decujus2"}, {});
    if (o.positionnels().size() != 1) throw ErreurUsage{"numbers attend un seul fichier de base"};
    if (!o.a("decujus")) throw ErreurUsage{"--decujus est requis"};
    Session s(err);
    Base& b = s.Lit(o.positionnels()[0]);
    EtatNumerotation etat;
    etat.deCujus1.deCujus = PersonneArgument(b, o.valeur("decujus"), "--decujus");
    if (o.a("decujus2"))
        etat.deCujus2.deCujus = PersonneArgument(b, o.valeur("decujus2"), "--decujus2");
    Calcul_Numeros_1(b, etat);
    Calcul_Numeros_2(b, etat);
    for (std::uint32_t p = 1; p <= b.Tete().maxPersonne; ++p) {
        if (!etat.deCujus1.Numerote(p) && !etat.deCujus2.Numerote(p)) continue;
        nlohmann::json j;
        j["person"] = p;
        for (const auto& [cle, table] :
             {std::pair{"decujus1", &etat.deCujus1}, std::pair{"decujus2", &etat.deCujus2}})
            j[cle] = table->Numerote(p) ? Texte(table->Numero(p)) : nlohmann::json();
        j["text"] = Texte(ValeurNUMB(etat, p));
        Ligne(out, j);
    }
    s.base->Abandonne();
    return 0;
}

} // namespace sylvane::cli
