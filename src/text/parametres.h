// The user's settings, read once at start-up and shared by the whole
// process. One instance lives in the application; the core reads it through
// a reference given to the objects that need it.
#pragma once

#include "text/mots.h"

#include <string>
#include <vector>

namespace sylvane {

struct Parametres {
    // "Particule": the particle list with its two flags.
    std::vector<Particule> particules = ParticulesParDefaut();
    // "Affichage Nom": the tags of the display name, in order.
    std::vector<std::string> affichageNom = {"FNAM", "BIRN"};
    // "Fréquence Sauvegarde": minutes between automatic commits.
    int frequenceSauvegarde = 15;
    // "Travail": the work directory.
    std::string dossierTravail;
};

} // namespace sylvane
