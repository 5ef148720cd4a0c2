#include "app/formulaires.h"

namespace sylvane {

std::map<std::string, FabriqueFormulaire>& RegistreFormulaires() {
    static std::map<std::string, FabriqueFormulaire> registre;
    return registre;
}

FabriqueSelecteur& SelecteurPersonne() {
    static FabriqueSelecteur selecteur;
    return selecteur;
}

} // namespace sylvane
