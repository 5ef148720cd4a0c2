// Verbs over the event and document stores and the keyword index.
#include "cli/session.h"
#include "cli/verbes.h"
#include "store/pack.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/tags.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {
namespace {

std::string UneBase(const Options& o, const char* verbe, std::size_t maxi = 1) {
    if (o.positionnels().empty() || o.positionnels().size() > maxi)
        throw ErreurUsage{std::string(verbe) + " attend un fichier de base"};
    return o.positionnels()[0];
}

nlohmann::json Nombres(const std::string& packed) {
    auto j = nlohmann::json::array();
    for (std::size_t o = 0; o + 4 <= packed.size(); o += 4)
        j.push_back(Unpack4(packed, o));
    return j;
}

// The role a person holds in an event, from the person's side.
std::string Role(Base& b, std::uint32_t p, std::uint32_t e) {
    for (int i = 1; i <= 200; ++i) {
        std::uint32_t x = b.EvtNo(p, i);
        if (x == 0) break;
        if (x == e) return b.RoleEvtNo(p, i);
    }
    return "";
}

} // namespace

int VerbeEvents(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {});
    Session s(err);
    Base& b = s.Lit(UneBase(o, "events"));
    const std::size_t nb = b.TableEvenements().taille();
    for (std::size_t i = 1; i <= nb; ++i) {
        std::uint32_t e = b.TriEvt(i);
        if (e == 0) break;
        nlohmann::json j;
        j["number"] = e;
        j["date"] = b.DateEvt(e);
        j["place"] = Texte(b.LieuEvt(e));
        j["title"] = Texte(b.TitreEvt(e));
        j["tag"] = Texte(b.TagEvt(e));
        j["note"] = Texte(b.NoteEvt(e));
        auto personnes = nlohmann::json::array();
        for (int k = 1; k <= 200; ++k) {
            std::uint32_t p = b.PersonneEvtNo(e, k);
            if (p == 0) break;
            personnes.push_back({{"person", p}, {"role", Texte(Role(b, p, e))}});
        }
        j["persons"] = personnes;
        j["documents"] = Nombres(b.ListeDocsEvt(e));
        Ligne(out, j);
    }
    s.base->Abandonne();
    return 0;
}

int VerbeDocuments(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {});
    Session s(err);
    Base& b = s.Lit(UneBase(o, "documents"));
    const std::size_t nb = b.TableDocuments().taille();
    for (std::size_t i = 1; i <= nb; ++i) {
        std::uint32_t d = b.TriDoc(i);
        if (d == 0) break;
        nlohmann::json j;
        j["number"] = d;
        j["title"] = Texte(b.TitreDoc(d));
        j["file"] = Texte(b.FichierDoc(d));
        j["type"] = Texte(b.TypeDoc(d));
        j["note"] = Texte(b.NoteDoc(d));
        j["titleDocument"] = b.Tete().documentTitre == d;
        Ligne(out, j);
    }
    s.base->Abandonne();
    return 0;
}

int VerbeKeywords(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {});
    Session s(err);
    Base& b = s.Lit(UneBase(o, "keywords", 2));
    std::string symbole = o.positionnels().size() > 1 ? Ansi(o.positionnels()[1]) : "";
    if (symbole.size() > 1) throw ErreurUsage{"SYMBOLE est un seul caract\xC3\xA8re"};
    for (std::uint32_t k = 1; k <= b.Tete().nbRubriques; ++k) {
        std::string r = b.LitRubrique(k);
        if (r.empty() || (!symbole.empty() && r[0] != symbole[0])) continue;
        nlohmann::json j;
        j["rubric"] = k;
        j["symbol"] = Texte(r.substr(0, 1));
        j["tag"] = Texte(r.substr(1));
        auto mots = nlohmann::json::array();
        std::string liste = b.ListeRubrique(k);
        for (std::size_t i = 0; i + 4 <= liste.size(); i += 4) {
            std::uint32_t e = Unpack4(liste, i);
            mots.push_back({{"entry", e},
                            {"word", Texte(b.LitMot(e))},
                            {"persons", Nombres(b.PersonnesMot(e))}});
        }
        j["words"] = mots;
        Ligne(out, j);
    }
    s.base->Abandonne();
    return 0;
}

int VerbeAddEvent(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {"person", "tag", "date", "place"}, {});
    std::string chemin = UneBase(o, "add-event");
    if (!o.a("person") || !o.a("tag") || !o.a("date"))
        throw ErreurUsage{"--person, --tag et --date sont requis"};
    std::string tag = Conv_TagLibelle(Ansi(o.valeur("tag")));
    std::string lieu = Ansi(o.valeur("place"));
    for (const std::string* t : {&tag, &lieu})
        if (t->find_first_of(std::string("\r\n\0", 3)) != std::string::npos)
            throw ErreurUsage{"le caract\xC3\xA8re NUL et les fins de ligne sont interdits"};
    if (tag.empty()) throw ErreurUsage{"--tag est vide"};
    // Without a message file, the month names are the French ones.
    if (Message(730).empty()) DefinitMessages(MessagesDatesFrancais());
    std::string date = Conv_DateSaisie(Ansi(o.valeur("date")));
    if (!Conv_DateValide(date))
        throw ErreurUsage{"--date : date compl\xC3\xA8te attendue, et non \xC2\xAB " +
                          o.valeur("date") + " \xC2\xBB"};
    Session s(err);
    Base& b = s.Ouvre(chemin);
    std::uint32_t n = PersonneArgument(b, o.valeur("person"), "--person");
    // An event of a kind that has no main role for the person would belong
    // to nobody.
    const GenreEvt* genre = b.Temoins().Genre(tag);
    const std::string sexe = b.LitSexe(n);
    if (!genre || genre->RolesPrincipaux(sexe.empty() ? ' ' : sexe[0]).empty()) {
        std::string genres;
        for (const auto& g : b.Temoins().genres)
            if (!g.RolesPrincipaux(sexe.empty() ? ' ' : sexe[0]).empty())
                genres += (genres.empty() ? "" : ", ") + g.tag;
        b.Abandonne();
        throw ErreurUsage{"--tag " + AnsiVersUtf8(tag) +
                          " : pas un \xC3\xA9v\xC3\xA9nement de personne de la base (" +
                          AnsiVersUtf8(genres) + ")"};
    }
    std::uint32_t e = b.CreeEvtPersonne(n, Conv_DateSerie(date), tag, lieu);
    s.Ferme();
    out << e << "\n";
    return 0;
}

} // namespace sylvane::cli
