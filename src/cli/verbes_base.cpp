#include "cli/verbes.h"

#include <ostream>

namespace sylvane::cli {

int VerbeNew(const Arguments&, std::ostream&, std::ostream& err) { err << "à venir\n"; return 1; }
int VerbeInfo(const Arguments&, std::ostream&, std::ostream& err) { err << "à venir\n"; return 1; }
int VerbePersons(const Arguments&, std::ostream&, std::ostream& err) { err << "à venir\n"; return 1; }
int VerbeAddPerson(const Arguments&, std::ostream&, std::ostream& err) { err << "à venir\n"; return 1; }

} // namespace sylvane::cli
