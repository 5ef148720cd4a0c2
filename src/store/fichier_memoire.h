// An in-memory file system for tests, after leveldb's memenv and its fault
// injection test. Each file keeps what has been written and what has been
// made durable by a sync; the folders keep which names a folder sync made
// durable. A simulated power loss is as unkind as a disk may be: of the
// writes since a file's last sync, any may have reached the disk and any
// not, in no order, and of the creates, deletes and renames since the last
// sync of their folder, any may have reached the disk and any not. Writes and syncs can be made to fail from the
// n-th one on.
#pragma once

#include "store/fichier.h"

#include <map>
#include <set>
#include <memory>
#include <vector>

namespace sylvane {

class SystemeMemoire final : public SystemeFichiers {
  public:
    struct Contenu {
        std::string courant; // what a reader sees now
        std::string durable; // what survives a power loss
        // Writes since the last sync, in order; an empty `donnees` with
        // `troncature` cuts the file at `offset`.
        struct Ecriture {
            std::uint64_t offset;
            std::string donnees;
            bool troncature = false;
        };
        std::vector<Ecriture> enAttente;
        const void* verrou = nullptr; // the open file holding the lock
    };

    std::unique_ptr<Fichier> ouvrir(const std::string& chemin, Mode mode) override;
    bool existe(const std::string& chemin) override;
    void supprimer(const std::string& chemin) override;
    void renommer(const std::string& de, const std::string& vers) override;
    // Makes the names of the folder's new files durable.
    void synchroniserDossier(const std::string& chemin) override;
    void creerDossier(const std::string&) override {}
    std::vector<std::string> lister(const std::string& dossier) override;
    bool memeFichier(const std::string& a, const std::string& b) override;

    // Power loss: the names fall back to those of the last sync of each
    // folder; each file to its last synced content with any of the later
    // writes (chosen by the seed and the count of operations).
    void simulerPanne();
    // The seed of the writes a power loss keeps; 0 keeps none of them.
    void fixerGraine(unsigned graine) { graine_ = graine; }

    // The n-th mutating operation from now on (1 = the next one) fails, and
    // so does every later one until `retablir()`. A failing write may first
    // write half of its bytes when `ecritureDechiree` is set.
    void echouerApres(long n, bool ecritureDechiree = false);
    void retablir() { restant_ = -1; }
    long operationsFaites() const { return operations_; }
    bool enPanne() const { return restant_ == 0; }

    // Files opened read-only by name refuse writes; used for the
    // read-only-medium case.
    void proteger(const std::string& chemin) { proteges_[chemin] = true; }

    std::map<std::string, std::shared_ptr<Contenu>>& fichiers() { return fichiers_; }
    std::string contenu(const std::string& chemin);
    // A deep copy: files with their current and durable contents.
    void copieDe(const SystemeMemoire& autre);

    // Internal: counts an operation and throws when it has to fail.
    // Returns true when a torn write is to be made before failing. A folder
    // sync may fail too, but is not counted among the operations made.
    bool compter(const std::string& chemin, bool ecriture = true);

  private:
    std::map<std::string, std::shared_ptr<Contenu>> fichiers_;
    std::map<std::string, bool> proteges_;
    // The names as the disk holds them after the last sync of each folder.
    std::map<std::string, std::shared_ptr<Contenu>> durables_;
    // Creates, deletes and renames not yet made durable by a folder sync.
    struct OpDossier {
        enum Genre { Cree, Supprime, Renomme } genre;
        std::string nom, vers;
        std::shared_ptr<Contenu> contenu;
    };
    std::vector<OpDossier> opsDossier_;
    unsigned graine_ = 1;
    long restant_ = -1;
    long operations_ = 0;
    bool dechiree_ = false;
};

} // namespace sylvane
