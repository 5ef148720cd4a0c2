#include "maintenance/interaction.h"

#include <memory>

namespace sylvane {

void CopieFichier(SystemeFichiers& fs, const std::string& de, const std::string& vers) {
    constexpr std::size_t kMorceau = 1 << 20;
    auto source = fs.ouvrir(de, Mode::Lecture);
    auto cible = fs.ouvrir(vers, Mode::Ecrasement);
    const std::uint64_t taille = source->taille();
    for (std::uint64_t o = 0; o < taille; o += kMorceau)
        cible->ecrire(o, source->lire(o, kMorceau));
    cible->synchroniser();
    fs.synchroniserDossier(vers);
}

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
