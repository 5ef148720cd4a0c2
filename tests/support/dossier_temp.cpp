#include "support/dossier_temp.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <unistd.h>

namespace sylvane::test {

DossierTemp::DossierTemp() {
    std::string modele = (std::filesystem::temp_directory_path() / "sylvane-XXXXXX").string();
    if (!mkdtemp(modele.data())) throw std::runtime_error("mkdtemp");
    chemin_ = modele;
}

DossierTemp::~DossierTemp() {
    std::error_code ec;
    std::filesystem::remove_all(chemin_, ec);
}

std::string LitFichier(const std::string& chemin) {
    std::ifstream f(chemin, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

void EcritFichier(const std::string& chemin, const std::string& contenu) {
    std::ofstream f(chemin, std::ios::binary);
    f << contenu;
}

} // namespace sylvane::test
