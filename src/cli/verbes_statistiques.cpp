// The demographic figures and the anniversary calendar: JSON for the
// scripts of users who chart them elsewhere.
#include "cli/session.h"
#include "cli/verbes.h"
#include "publish/anniversaires_rapport.h"
#include "search/anniversaires.h"
#include "search/statistiques.h"
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

template <std::size_t N>
nlohmann::json Histogramme(const std::array<std::uint64_t, N>& h) {
    // Buckets in use only: {"count": persons}, the last one for 200 and more.
    nlohmann::json j = nlohmann::json::object();
    for (std::size_t i = 0; i < N; ++i)
        if (h[i]) j[std::to_string(i)] = h[i];
    return j;
}

nlohmann::json Moy(const Moyenne& m) {
    nlohmann::json j;
    j["count"] = m.nombre;
    j["sum"] = m.somme;
    j["mean"] = Trim(TexteMoyenne(m));
    return j;
}

} // namespace

int VerbeStats(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"persons"}, {});
    const std::string chemin = BaseSeule(o, "stats");
    Session s(err);
    Base& b = s.Lit(chemin);
    std::vector<std::uint32_t> liste;
    const std::string valeurs = o.valeur("persons");
    for (std::size_t d = 0; d <= valeurs.size();) {
        std::size_t f = valeurs.find(',', d);
        if (f == std::string::npos) f = valeurs.size();
        const std::string v = Trim(valeurs.substr(d, f - d));
        if (!v.empty()) liste.push_back(PersonneArgument(b, v, "--persons"));
        d = f + 1;
    }
    if (o.a("persons") && liste.empty()) throw ErreurUsage{"--persons : une liste de num\xC3\xA9ros est attendue"};
    const Statistiques st = CalculeStatistiques(b, liste, Interaction{}, 1);
    nlohmann::json j;
    j["persons"] = st.Personnes();
    j["general"] = {{"both_parents", st.deuxParents}, {"father_only", st.pereSeul},
                    {"mother_only", st.mereSeule},   {"no_parents", st.sansParents},
                    {"with_death", st.avecDeces},     {"men", st.hommes},
                    {"women", st.femmes},             {"undetermined", st.indetermines}};
    j["marriages"] = {{"men", Histogramme(st.mariagesHommes)},
                      {"women", Histogramme(st.mariagesFemmes)}};
    j["children"] = {{"men", Histogramme(st.enfantsHommes)},
                     {"women", Histogramme(st.enfantsFemmes)}};
    nlohmann::json decennies = nlohmann::json::array(), ages = nlohmann::json::array();
    const auto [premiere, derniere] = st.DecenniesMontrees();
    for (int d = premiere; d <= derniere && premiere != 0; ++d) {
        const LigneDecennie& l = st.decennies[static_cast<std::size_t>(d)];
        decennies.push_back({{"from", d * 10}, {"to", d * 10 + 9}, {"total", l.total},
                             {"men", l.hommes}, {"women", l.femmes}});
        ages.push_back({{"from", d * 10},
                        {"to", d * 10 + 9},
                        {"lifetime", Moy(l.vie)},
                        {"lifetime_men", Moy(l.vieHommes)},
                        {"lifetime_women", Moy(l.vieFemmes)},
                        {"father_age", Moy(l.agePere)},
                        {"mother_age", Moy(l.ageMere)}});
    }
    j["decades"] = decennies;
    j["ages"] = ages;
    j["birth_months"] = st.moisNaissance;
    j["death_months"] = st.moisDeces;
    j["marriage_months"] = st.moisMariage;
    out << j.dump(1) << '\n';
    b.Abandonne();
    return 0;
}

int VerbeAnniversaries(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"month", "day", "html", "rtf"}, {});
    const std::string chemin = BaseSeule(o, "anniversaries");
    const long mois = o.entier("month", 0), jour = o.entier("day", 0);
    if (mois < 0 || mois > 12) throw ErreurUsage{"--month : de 1 \xC3\xA0 12"};
    if (jour < 0 || jour > 31) throw ErreurUsage{"--day : de 1 \xC3\xA0 31"};
    if (jour && !mois) throw ErreurUsage{"--day demande --month"};
    if (jour && Calendrier::JourDeLAn(static_cast<int>(jour), static_cast<int>(mois)) < 0)
        throw ErreurUsage{"--day : ce jour n'existe pas dans ce mois"};
    Session s(err);
    Base& b = s.Lit(chemin);
    Calendrier c;
    c.Construit(b, Interaction{});
    // As a report: the year's recapitulation, or with a month its calendar report.
    if (o.a("html") || o.a("rtf")) {
        if (o.a("html") && o.a("rtf")) throw ErreurUsage{"--html ou --rtf, pas les deux"};
        if (jour) throw ErreurUsage{"--day ne vaut pas pour un rapport"};
        PeriodeAnniv p;
        if (mois) {
            p.recapitulation = false;
            p.premier = Calendrier::JourDeLAn(1, static_cast<int>(mois));
            p.dernier = p.premier;
            while (Calendrier::JourMois(p.dernier + 1).second == mois && p.dernier < 365) ++p.dernier;
        }
        const bool html = o.a("html");
        const std::string sortie = CheminInterne(o.valeur(html ? "html" : "rtf"));
        EcritAnniversaires(b, b.Systeme(), c, p, html ? DestinationAnniv::HTML : DestinationAnniv::RTF,
                           sortie, Interaction{});
        b.Abandonne();
        return 0;
    }
    for (int d = 0; d < 366; ++d) {
        const auto [j, m] = Calendrier::JourMois(d);
        if ((mois && m != mois) || (jour && j != jour)) continue;
        const ListesJour l = ListesDuJour(b, c, d);
        auto ecrit = [&](const std::vector<LigneAnniv>& lignes, const char* genre) {
            for (const LigneAnniv& x : lignes) {
                nlohmann::json r;
                r["month"] = m;
                r["day"] = j;
                r["kind"] = genre;
                r["tag"] = Texte(x.ref.tag);
                r[x.ref.tag[0] == 'M' ? "marriage" : "person"] = x.ref.numero;
                r["name"] = Texte(x.nom);
                r["year"] = Texte(x.annee);
                if (!x.lieu.empty()) r["place"] = Texte(x.lieu);
                if (!x.rubrique.empty()) r["rubric"] = Texte(x.rubrique);
                Ligne(out, r);
            }
        };
        ecrit(l.naissances, "birth");
        ecrit(l.deces, "death");
        ecrit(l.mariages, "marriage");
        ecrit(l.mots, "rubric");
    }
    b.Abandonne();
    return 0;
}

} // namespace sylvane::cli
