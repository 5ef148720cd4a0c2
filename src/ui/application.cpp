#include "ui/application.h"

#include "text/dates.h"

namespace sylvane {

Application::Application(SystemeFichiers& fs, Reglages& reglages, std::string dossierProgramme)
    : fs_(fs), reglages_(reglages), dossierProgramme_(std::move(dossierProgramme)),
      parametres_(ParametresParDefaut(dossierProgramme_)) {}

void Application::Demarre() {
    LitParametres(reglages_, parametres_, dossierProgramme_);
    // A work folder that refuses a file falls back on the program's own.
    const std::string sonde = parametres_.dossierTravail + "/x.tmp";
    try {
        fs_.creerDossier(parametres_.dossierTravail);
        fs_.ouvrir(sonde, Mode::Ecrasement);
        fs_.supprimer(sonde);
    } catch (const ErreurES&) {
        parametres_.dossierTravail = dossierProgramme_ + "/Temp";
        try {
            fs_.creerDossier(parametres_.dossierTravail);
        } catch (const ErreurES&) {
        }
        reglages_.ecrit("Defaut", "Travail", parametres_.dossierTravail);
    }
    Conv_FormatDate();
    OuvreLangueDemarrage(reglages_, parametres_, dossierProgramme_);
}

void Application::Branche() {
    BrancheNumerotation(*base_, numeros_);
    base_->valeurNom_ = ValeurNomAvecNumeros(numeros_, {});
}

void Application::OuvreBase(const std::string& chemin) {
    FermeBase();
    base_ = std::make_unique<Base>(fs_, parametres_);
    try {
        base_->Ouvre(chemin);
    } catch (...) {
        base_.reset();
        throw;
    }
    LitParametresBase(reglages_, base_->Chemins().base, parametres_);
    numeros_ = EtatNumerotation{};
    numeros_.deCujus1.deCujus = static_cast<std::uint32_t>(std::max(0, parametres_.deCujus));
    numeros_.deCujus2.deCujus = static_cast<std::uint32_t>(std::max(0, parametres_.deCujus2));
    Branche();
    Calcul_Numeros_1(*base_, numeros_);
    Calcul_Numeros_2(*base_, numeros_);
    personneEnCours_ = static_cast<std::uint32_t>(std::max(0, parametres_.personneEnCours));
}

void Application::NouvelleBase(const std::string& chemin) {
    FermeBase();
    base_ = std::make_unique<Base>(fs_, parametres_);
    try {
        base_->Nouvelle(chemin);
        base_->ValideBase();
    } catch (...) {
        base_.reset();
        throw;
    }
    numeros_ = EtatNumerotation{};
    Branche();
    personneEnCours_ = 0;
}

void Application::FermeBase() {
    if (!BaseOuverte()) {
        base_.reset();
        return;
    }
    const std::string chemin = base_->Chemins().base;
    parametres_.personneEnCours = static_cast<std::int32_t>(personneEnCours_);
    parametres_.deCujus = static_cast<std::int32_t>(numeros_.deCujus1.deCujus);
    parametres_.deCujus2 = static_cast<std::int32_t>(numeros_.deCujus2.deCujus);
    SauveParametresBase(reglages_, chemin, parametres_);
    base_->FermeBase();
    base_.reset();
    parametres_.historique.ajoute(chemin);
    parametres_.historique.sauve(reglages_);
}

void Application::Enregistre() {
    if (BaseOuverte()) base_->MnuEnregistrer();
}

bool Application::Minuterie() {
    if (!BaseOuverte()) return false;
    bool sauve = base_->TicMinuterie();
    MajNumerosPerimes(*base_, numeros_);
    return sauve;
}

void Application::Termine() {
    FermeBase();
    SauveParametres(reglages_, parametres_);
}

} // namespace sylvane
