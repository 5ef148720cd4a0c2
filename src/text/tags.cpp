#include "text/tags.h"

namespace sylvane {

std::string Conv_LibelleTag(std::string_view tag) { return std::string(tag); }
std::string Conv_TagLibelle(std::string_view texte) { return std::string(texte); }

} // namespace sylvane
