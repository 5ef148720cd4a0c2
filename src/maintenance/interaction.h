// What the maintenance commands ask and tell while they run: the questions
// of their message boxes, the progress panel and its stop button. The main
// window answers through its dialogs; the command line and the tests
// answer by themselves.
#pragma once

#include "store/fichier.h"

#include <functional>
#include <string>

namespace sylvane {

// The buttons of a question box. An OK/Cancel box answers Oui or Annuler.
enum class Reponse { Oui, Non, Annuler };

struct Interaction {
    // The question of message `message` (Yes/No/Cancel or OK/Cancel).
    // Unset: every question is answered No.
    std::function<Reponse(int message)> question;
    // The progress panel: its title, then its text (a phase, a count, a name).
    std::function<void(const std::string& titre, const std::string& texte)> progres;
    // The stop mark set by the panel's stop button.
    std::function<bool()> arret;

    Reponse Demande(int message) const { return question ? question(message) : Reponse::Non; }
    void Montre(const std::string& titre, const std::string& texte) const {
        if (progres) progres(titre, texte);
    }
    bool Arrete() const { return arret && arret(); }
};


// The folder of a path, with its final separator ("" for a bare name).
std::string DossierDe(const std::string& chemin);

// The backup copy of a base: its path with the extension "sav".
std::string CheminSauvegarde(const std::string& cheminBase);

} // namespace sylvane
