#include "publish/sortie.h"

namespace sylvane {

SortiePage::SortiePage(SystemeFichiers& fs, std::string cible)
    : fs_(fs), cible_(std::move(cible)), temporaire_(CheminTemporaire(cible_)) {
    fichier_ = fs_.ouvrir(temporaire_, Mode::Ecrasement);
}

SortiePage::~SortiePage() {
    if (fini_) return;
    fichier_.reset();
    try {
        fs_.supprimer(temporaire_);
    } catch (...) {
        // The temporary of a failed run is taken up by the next one.
    }
}

void SortiePage::Vide() {
    if (tampon_.empty()) return;
    fichier_->ecrire(ecrit_, tampon_);
    ecrit_ += tampon_.size();
    tampon_.clear();
}

void SortiePage::Valide() {
    Vide();
    fichier_.reset();
    fs_.renommer(temporaire_, cible_);
    fini_ = true;
}

} // namespace sylvane
