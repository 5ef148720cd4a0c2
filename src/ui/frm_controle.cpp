#include "ui/frm_controle.h"

#include "store/fichier.h"
#include "text/messages.h"
#include "ui/commandes_communes.h"

namespace sylvane {
namespace {
ResultatControle& DernierResultat() {
    static ResultatControle r;
    return r;
}
} // namespace

void FrmControle::Publie(const ResultatControle& r) {
    DernierResultat() = r;
    if (Avis()) Avis()();
}

const ResultatControle& FrmControle::Dernier() { return DernierResultat(); }

std::function<void()>& FrmControle::Avis() {
    static std::function<void()> avis;
    return avis;
}

void FrmControle::Recharge() {
    const ResultatControle& r = Dernier();
    chemin_ = r.chemin;
    lignes_.clear();
    std::size_t debut = 0;
    while (debut < r.rapport.size()) {
        std::size_t fin = r.rapport.find('\n', debut);
        if (fin == std::string::npos) fin = r.rapport.size();
        std::string ligne = r.rapport.substr(debut, fin - debut);
        if (!ligne.empty() && ligne.back() == '\r') ligne.pop_back();
        if (!ligne.empty()) lignes_.push_back(std::move(ligne));
        debut = fin + 1;
    }
}

std::string FrmControle::Resume() const {
    if (lignes_.empty()) return Message(kControleSansAnomalie);
    return MessageAvec(kControleCorrections, std::to_string(lignes_.size()));
}

bool FrmControle::EnregistreSous(DialoguesFichier& fichiers, Boites& boites,
                                 SystemeFichiers& fs) const {
    auto chemin = fichiers.Enregistrer(kControleEnregistrer, kFiltreRapport, chemin_);
    if (!chemin) return false;
    std::string texte;
    for (const auto& l : lignes_) texte += l + "\r\n";
    return Protege(boites, [&] {
        EcritureAtomique e(fs, *chemin);
        e.Sortie().ecrire(0, texte);
        e.Valide();
    });
}

} // namespace sylvane
