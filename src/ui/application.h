// The state of the running program around its one open base: settings,
// the numberings of the two De Cujus, the recent bases, and the commands
// of the main window that open, create, save and close a base. The window
// layer calls these and shows what they return; nothing here draws.
#pragma once

#include "kinship/numeros.h"
#include "store/base.h"
#include "store/fichier.h"
#include "text/parametres.h"
#include "text/reglages.h"

#include <memory>
#include <string>

namespace sylvane {

class Application {
  public:
    Application(SystemeFichiers& fs, Reglages& reglages, std::string dossierProgramme);

    // Start-up: settings, work folder probe, date order, language.
    void Demarre();
    // End of the program: closes the base, saves the general settings,
    // deletes the list work files.
    void Termine();

    // Opening and creating: the base in place is closed first. Throw
    // ErreurES with the system's reason; the program then has no base.
    void OuvreBase(const std::string& chemin);
    void NouvelleBase(const std::string& chemin);
    // Commit, per-base settings, recent bases; the base stays closed.
    void FermeBase();
    // Commit and go on.
    void Enregistre();
    // The 60-second timer: returns true when it saved.
    bool Minuterie();

    bool BaseOuverte() const { return base_ && base_->EstOuverte(); }
    Base& base() { return *base_; }
    Parametres& parametres() { return parametres_; }
    EtatNumerotation& numeros() { return numeros_; }
    std::uint32_t personneEnCours() const { return personneEnCours_; }
    SystemeFichiers& fs() { return fs_; }
    Reglages& reglages() { return reglages_; }
    const std::string& dossierProgramme() const { return dossierProgramme_; }
    void definitPersonneEnCours(std::uint32_t n) { personneEnCours_ = n; }

  private:
    void Branche();

    SystemeFichiers& fs_;
    Reglages& reglages_;
    std::string dossierProgramme_;
    Parametres parametres_;
    std::unique_ptr<Base> base_;
    EtatNumerotation numeros_;
    std::uint32_t personneEnCours_ = 0;
};

} // namespace sylvane
