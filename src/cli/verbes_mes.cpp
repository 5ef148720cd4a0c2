// mes build SOURCE OUT.mes: a message file from its UTF-8 text list.
// mes dump FILE.mes: the text list of a message file.
#include "cli/session.h"
#include "cli/verbes.h"
#include "text/utf8.h"

#include "store/fichier.h"
#include "text/messages.h"

#include <ostream>

namespace sylvane::cli {

int VerbeMes(const Arguments& args, std::ostream& out, std::ostream& err) {
    if (args.empty()) throw ErreurUsage{"sous-commande attendue : build ou dump"};
    const std::string& sous = args[0];
    if (sous == "build") {
        if (args.size() != 3) throw ErreurUsage{"build attend SOURCE et OUT.mes"};
        std::map<int, std::string> messages;
        try {
            messages = LitSourceMessages(lireTout(systemeReel(), Chemin(args[1])));
        } catch (const ErreurSourceMessages& e) {
            err << args[1] << ", " << e.what() << "\n";
            return 1;
        }
        // A failed build never leaves a half message file behind.
        EcritureAtomique sortie(systemeReel(), Chemin(args[2]));
        sortie.Sortie().ecrire(0, EcritFichierMessages(messages));
        sortie.Valide();
        return 0;
    }
    if (sous == "dump") {
        if (args.size() != 2) throw ErreurUsage{"dump attend FILE.mes"};
        out << EcritSourceMessages(LitFichierMessages(lireTout(systemeReel(), Chemin(args[1]))));
        return 0;
    }
    throw ErreurUsage{"sous-commande inconnue : " + sous};
}

} // namespace sylvane::cli
