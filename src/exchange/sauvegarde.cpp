#include "exchange/sauvegarde.h"

#include "store/base.h"
#include "store/fichier.h"

namespace sylvane {

std::string ChangeFin(const std::string& chemin, const char* fin) {
    const std::size_t garde = chemin.size() >= 3 ? chemin.size() - 3 : 0;
    return chemin.substr(0, garde) + fin;
}

void Sauvegarde(Base& b, SystemeFichiers& fs, const std::string& copie) {
    // The copy holds the committed state: commit first.
    b.ValideBase();
    CopieFichier(fs, b.Chemins().base, copie);
}

bool Restauration(Base& b, SystemeFichiers& fs, const std::string& sav, const DialogueEchange& d) {
    if (!fs.existe(sav)) throw ErreurES(sav, "fichier introuvable");
    // The base opens by its derived paths: the copy goes where it opens.
    const CheminsBase chemins = DeriveChemins(ChangeFin(sav, "sv2"));
    const std::string& cible = chemins.base;
    if (fs.existe(cible) && !d.Demande(kVeutRemplacer)) return false;
    b.FermeBase();
    // The copy is made whole beside the base, then takes its name; the old
    // base stays whole until then, and its journal never falls on the copy.
    const std::string temporaire = CheminTemporaire(cible);
    CopieFichier(fs, sav, temporaire);
    RemplaceBase(fs, temporaire, chemins);
    b.Ouvre(cible);
    return true;
}

} // namespace sylvane
