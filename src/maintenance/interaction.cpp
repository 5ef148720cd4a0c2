#include "maintenance/interaction.h"

#include <memory>

namespace sylvane {

std::string DossierDe(const std::string& chemin) {
    auto slash = chemin.find_last_of("/\\");
    return slash == std::string::npos ? std::string() : chemin.substr(0, slash + 1);
}

std::string CheminSauvegarde(const std::string& cheminBase) {
    auto point = cheminBase.find_last_of('.');
    auto slash = cheminBase.find_last_of("/\\");
    if (point == std::string::npos || (slash != std::string::npos && point < slash))
        return cheminBase + ".sav";
    return cheminBase.substr(0, point) + ".sav";
}

} // namespace sylvane
