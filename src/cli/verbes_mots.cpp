// Verbs over the keyword kinds: the replacement of a keyword in every note.
#include "cli/session.h"
#include "cli/verbes.h"
#include "search/recherche.h"
#include "store/remplacement.h"
#include "text/utf8.h"

#include <ostream>

namespace sylvane::cli {

int VerbeReplaceKeyword(const Arguments& args, std::ostream& out, std::ostream& err) {
    Options o(args, {}, {"all"});
    const auto& p = o.positionnels();
    if (p.size() != 4)
        throw ErreurUsage{"replace-keyword attend une base, un genre, l'ancien et le nouveau mot"};
    DemandeRemplacement d;
    d.ancien = Ansi(p[2]);
    d.nouveau = Ansi(p[3]);
    d.tous = o.a("all");
    if (CleMotSaisi(d.ancien).empty()) throw ErreurUsage{"l'ancien mot est vide"};
    Session s(err);
    Base& b = s.Ouvre(p[0]);
    d.marque = SymboleRubrique(b, Ansi(p[1]));
    if (d.marque == ' ' && !d.tous) {
        b.Abandonne();
        throw ErreurUsage{"pas de genre de mot-cl\xC3\xA9 \xC2\xAB " + p[1] + " \xC2\xBB dans la base"};
    }
    const BilanRemplacement r = RemplaceMot(b, d);
    if (r.refus == msg_mots::DoitEtreIndexe) {
        b.Abandonne();
        throw ErreurUsage{"Le type de mot-cl\xC3\xA9 doit \xC3\xAAtre index\xC3\xA9 (ou --all)"};
    }
    if (r.refus != 0) {
        b.Abandonne();
        throw ErreurUsage{"nouveau mot refus\xC3\xA9 : vide, ou avec \xC2\xAB # \xC2\xBB ou une fin de ligne"};
    }
    s.Ferme();
    Ligne(out, {{"persons", r.personnes}, {"marriages", r.mariages}, {"occurrences", r.occurrences}});
    return 0;
}

} // namespace sylvane::cli
