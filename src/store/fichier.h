// The file layer: every byte the program reads or writes in a base, a
// journal or an exchange file goes through these two interfaces. The real
// implementation talks to POSIX; the in-memory one injects faults for tests.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

// An input/output failure: a system call that failed, a disk that is full,
// a file that cannot be opened. Carries the path (Windows-1252, as every path
// inside the program) and the system's reason; what() is UTF-8 for the edges.
class ErreurES : public std::runtime_error {
  public:
    ErreurES(const std::string& chemin, const std::string& raison)
        : std::runtime_error(CheminLisible(chemin) + " : " + raison), chemin_(chemin) {}
    static std::string CheminLisible(const std::string& chemin);
    const std::string& chemin() const { return chemin_; }

  private:
    std::string chemin_;
};

// An open file. Offsets are 0-based here; the base format speaks of 1-based
// positions and converts at its own level.
class Fichier {
  public:
    virtual ~Fichier() = default;
    // Reads up to n bytes at offset; fewer at the end of the file.
    virtual std::string lire(std::uint64_t offset, std::size_t n) = 0;
    virtual void ecrire(std::uint64_t offset, std::string_view donnees) = 0;
    virtual std::uint64_t taille() = 0;
    virtual void synchroniser() = 0;
    virtual void tronquer(std::uint64_t taille) = 0;
    // Takes the exclusive lock of the file for as long as it stays open
    // (flock: advisory, between the processes of the program). False when
    // another open file holds it.
    virtual bool verrouiller() = 0;
};

enum class Mode {
    Lecture,        // read only; the file must exist
    LectureEcriture, // read and write; the file must exist
    Creation,       // read and write; created when missing, kept otherwise
    Ecrasement,     // read and write; created or emptied
    Exclusive,      // read and write; created, and refused when it exists
};

class SystemeFichiers {
  public:
    virtual ~SystemeFichiers() = default;
    // Throws ErreurES when the file cannot be opened in that mode.
    virtual std::unique_ptr<Fichier> ouvrir(const std::string& chemin, Mode mode) = 0;
    virtual bool existe(const std::string& chemin) = 0;
    // Removing a missing file is not an error.
    virtual void supprimer(const std::string& chemin) = 0;
    // Atomic replacement of `vers` by `de` on one file system.
    virtual void renommer(const std::string& de, const std::string& vers) = 0;
    // Makes the directory entries of the folder durable (after a rename or a delete).
    virtual void synchroniserDossier(const std::string& chemin) = 0;
    // Creates a folder and its parents; an existing folder is not an error.
    virtual void creerDossier(const std::string& chemin) = 0;
    // Names of the files (not folders) of a folder; none when it can't be read.
    virtual std::vector<std::string> lister(const std::string& dossier) = 0;
    // Whether two paths name one existing file (links and "./" included).
    virtual bool memeFichier(const std::string& a, const std::string& b) = 0;
};

// The process's real file system. Paths are Windows-1252 like all text of
// the program, and become UTF-8 at the system calls; a name the system holds
// in bytes that are not UTF-8 can't be reached.
SystemeFichiers& systemeReel();

// Whole-file helpers over any file system.
std::string lireTout(SystemeFichiers& fs, const std::string& chemin);
void ecrireTout(SystemeFichiers& fs, const std::string& chemin, std::string_view donnees);
// Copies a file through a temporary beside the target, synced, then an
// atomic rename: the target is the old file or the whole copy, never a part.
void CopieFichier(SystemeFichiers& fs, const std::string& de, const std::string& vers);

// The temporary that stands beside `cible` while it is written: the same
// folder (a rename never crosses file systems), "~" before the name.
std::string CheminTemporaire(const std::string& cible);

// A file written whole or not at all. Everything goes to the temporary
// beside the target, which this object holds locked, so that two writers
// of one target can't mix their bytes. `Valide` syncs the temporary,
// renames it over the target and syncs the folder; destroyed before that
// (an error, a stop), it removes the temporary and the target is as it
// was. A kill leaves at most the temporary, which the next writer reuses.
class EcritureAtomique {
  public:
    EcritureAtomique(SystemeFichiers& fs, std::string cible);
    ~EcritureAtomique();
    EcritureAtomique(const EcritureAtomique&) = delete;
    EcritureAtomique& operator=(const EcritureAtomique&) = delete;

    const std::string& Cible() const { return cible_; }
    const std::string& Temporaire() const { return temporaire_; }
    // The temporary, open for writing (emptied at the start).
    Fichier& Sortie() { return *fichier_; }
    void Valide();
    // Gives the work up now: the temporary goes.
    void Abandonne();

  private:
    SystemeFichiers& fs_;
    std::string cible_, temporaire_;
    std::unique_ptr<Fichier> fichier_;
    bool fini_ = false;
};

} // namespace sylvane
