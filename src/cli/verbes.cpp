#include "cli/verbes.h"

#include <array>

namespace sylvane::cli {

std::span<const Verbe> Verbes() {
    static const std::array table = {
        Verbe{"new", "new BASE.sv2", VerbeNew},
        Verbe{"info", "info BASE.sv2", VerbeInfo},
        Verbe{"persons", "persons BASE.sv2", VerbePersons},
        Verbe{"add-person",
              "add-person BASE.sv2 --name N --first F [--sex H|F|I] [--birth YEAR] "
              "[--father N] [--mother N]",
              VerbeAddPerson},
        Verbe{"mes", "mes build SOURCE OUT.mes | mes dump FILE.mes", VerbeMes},
        Verbe{"text",
              "text fold|phonetic|near|propre|particule|date|gedcom-date|display-date|"
              "republican ...",
              VerbeText},
    };
    return table;
}

} // namespace sylvane::cli
