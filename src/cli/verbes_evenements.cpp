// The verb that shows one event whole, as the event form does: its fields,
// its persons with their roles as each person's list holds them, its
// documents.
#include "cli/session.h"
#include "cli/verbes.h"
#include "store/evenement_edition.h"
#include "text/dates.h"
#include "text/messages.h"
#include "text/tags.h"

#include <charconv>
#include <ostream>

namespace sylvane::cli {

int VerbeEvent(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {});
    if (o.positionnels().size() != 2) throw ErreurUsage{"event attend un fichier de base et un num\xC3\xA9ro"};
    const std::string& texte = o.positionnels()[1];
    std::uint32_t e = 0;
    const auto [fin, ec] = std::from_chars(texte.data(), texte.data() + texte.size(), e);
    if (ec != std::errc{} || fin != texte.data() + texte.size() || e == 0)
        throw ErreurUsage{"num\xC3\xA9ro d'\xC3\xA9v\xC3\xA9nement attendu, et non \xC2\xAB " + texte +
                          " \xC2\xBB"};
    Session s(err);
    Base& b = s.Lit(o.positionnels()[0]);
    if (e > b.Tete().maxEvenement || b.PosEvt(e) == 0) {
        s.base->Abandonne();
        throw ErreurUsage{"pas d'\xC3\xA9v\xC3\xA9nement " + texte + " dans la base"};
    }
    // Without a message file, the words of tags and months are the French ones.
    if (Message(730).empty()) DefinitMessages(MessagesDatesFrancais());
    const long date = b.DateEvt(e);
    nlohmann::json j;
    j["number"] = e;
    j["tag"] = Texte(b.TagEvt(e));
    j["date"] = date;
    j["dateText"] = Texte(TexteDateEvenement(date));
    j["place"] = Texte(b.LieuEvt(e));
    j["title"] = Texte(b.TitreEvt(e));
    j["note"] = Texte(b.NoteEvt(e));
    auto personnes = nlohmann::json::array();
    for (std::uint32_t p : PersonnesEvenement(b, e)) {
        const std::string role = RoleDansEvenement(b, p, e);
        personnes.push_back({{"person", p},
                             {"name", Texte(b.NomDates(p))},
                             {"role", Texte(role)},
                             {"mainRole", [&] {
                                  for (const CelluleRole& c : CellulesRoles(b.Temoins(), b.TagEvt(e)))
                                      if (c.principal && c.tag == role) return true;
                                  return false;
                              }()}});
    }
    j["persons"] = personnes;
    auto docs = nlohmann::json::array();
    for (int i = 1; i <= 200; ++i) {
        const std::uint32_t d = b.DocEvtNo(e, i);
        if (d == 0) break;
        docs.push_back({{"document", d}, {"title", Texte(b.TitreDoc(d))}});
    }
    j["documents"] = docs;
    Ligne(out, j);
    s.base->Abandonne();
    return 0;
}

} // namespace sylvane::cli
