#include "store/fichier.h"

#include "text/utf8.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sylvane {
namespace {

std::string raisonSysteme(int err) { return std::strerror(err); }

std::string Systeme(const std::string& chemin) { return CheminSysteme(chemin); }

// Reads of a large file are served from a read-only map of it, which saves
// a system call per read: a base is read in many small pieces (a block, then
// a name elsewhere). Writes go through pwrite, which the map sees at once on
// Linux. The map is made again when the file has grown by a quarter; what
// lies beyond it is read with pread.
// Only a file this process holds locked is mapped: another process could
// shorten any other file under the map, and reading a mapped page beyond
// the end of a file kills the process (SIGBUS). Those are read with pread.
class FichierPosix final : public Fichier {
  public:
    FichierPosix(int fd, std::string chemin) : fd_(fd), chemin_(std::move(chemin)) {}
    ~FichierPosix() override {
        Demappe();
        ::close(fd_);
    }

    std::string lire(std::uint64_t offset, std::size_t n) override {
        if (offset + n > carte_.taille) Remappe(offset + n);
        if (offset + n <= carte_.taille)
            return std::string(carte_.debut + offset, n);
        return LirePread(offset, n);
    }

    std::string LirePread(std::uint64_t offset, std::size_t n) {
        std::string out(n, '\0');
        std::size_t lu = 0;
        while (lu < n) {
            ssize_t r = ::pread(fd_, out.data() + lu, n - lu, static_cast<off_t>(offset + lu));
            if (r < 0) {
                if (errno == EINTR) continue;
                throw ErreurES(chemin_, "lecture impossible : " + raisonSysteme(errno));
            }
            if (r == 0) break;
            lu += static_cast<std::size_t>(r);
        }
        out.resize(lu);
        return out;
    }

    void ecrire(std::uint64_t offset, std::string_view d) override {
        std::size_t ecrit = 0;
        while (ecrit < d.size()) {
            ssize_t r = ::pwrite(fd_, d.data() + ecrit, d.size() - ecrit,
                                 static_cast<off_t>(offset + ecrit));
            if (r < 0) {
                if (errno == EINTR) continue;
                throw ErreurES(chemin_, "écriture impossible : " + raisonSysteme(errno));
            }
            ecrit += static_cast<std::size_t>(r);
        }
    }

    std::uint64_t taille() override {
        struct stat st{};
        if (::fstat(fd_, &st) != 0) throw ErreurES(chemin_, raisonSysteme(errno));
        return static_cast<std::uint64_t>(st.st_size);
    }

    void synchroniser() override {
        if (::fdatasync(fd_) != 0)
            throw ErreurES(chemin_, "synchronisation impossible : " + raisonSysteme(errno));
    }

    void tronquer(std::uint64_t t) override {
        Demappe(); // a map beyond the end of a file faults when read
        if (::ftruncate(fd_, static_cast<off_t>(t)) != 0)
            throw ErreurES(chemin_, "troncature impossible : " + raisonSysteme(errno));
    }

    bool verrouiller() override {
        if (verrouille_) return true;
        while (::flock(fd_, LOCK_EX | LOCK_NB) != 0) {
            if (errno == EINTR) continue;
            if (errno == EWOULDBLOCK) return false;
            // A file system without locks: the lock can't protect, and the
            // file is not mapped.
            return true;
        }
        verrouille_ = true;
        return true;
    }

  private:
    static constexpr std::uint64_t kCarteMin = 1 << 20;

    void Demappe() {
        if (carte_.debut) ::munmap(carte_.debut, carte_.taille);
        carte_ = {};
        essai_ = 0;
    }

    void Remappe(std::uint64_t besoin) {
        // Only when the file is large, and not again before it has grown
        // by a quarter since the last look.
        if (!verrouille_ || besoin < kCarteMin || besoin <= essai_) return;
        struct stat st{};
        if (::fstat(fd_, &st) != 0) return;
        const auto t = static_cast<std::uint64_t>(st.st_size);
        essai_ = std::max(besoin, t + t / 4);
        if (t < kCarteMin || t < besoin || t <= carte_.taille) return;
        Demappe();
        void* p = ::mmap(nullptr, t, PROT_READ, MAP_SHARED, fd_, 0);
        if (p == MAP_FAILED) return; // pread does the work
        carte_ = {static_cast<char*>(p), t};
        essai_ = t + t / 4;
    }

    int fd_;
    std::string chemin_;
    struct Carte {
        char* debut = nullptr;
        std::uint64_t taille = 0;
    } carte_;
    std::uint64_t essai_ = 0; // below this end, no new map is tried
    bool verrouille_ = false;
};

class SystemePosix final : public SystemeFichiers {
  public:
    std::unique_ptr<Fichier> ouvrir(const std::string& chemin, Mode mode) override {
        int flags = O_CLOEXEC;
        switch (mode) {
        case Mode::Lecture: flags |= O_RDONLY; break;
        case Mode::LectureEcriture: flags |= O_RDWR; break;
        case Mode::Creation: flags |= O_RDWR | O_CREAT; break;
        case Mode::Ecrasement: flags |= O_RDWR | O_CREAT | O_TRUNC; break;
        case Mode::Exclusive: flags |= O_RDWR | O_CREAT | O_EXCL; break;
        }
        int fd = ::open(Systeme(chemin).c_str(), flags, 0644);
        if (fd < 0) throw ErreurES(chemin, "ouverture impossible : " + raisonSysteme(errno));
        struct stat st{};
        if (::fstat(fd, &st) == 0 && S_ISDIR(st.st_mode)) {
            ::close(fd);
            throw ErreurES(chemin, "ouverture impossible : c'est un dossier");
        }
        return std::make_unique<FichierPosix>(fd, chemin);
    }

    bool existe(const std::string& chemin) override {
        struct stat st{};
        return ::stat(Systeme(chemin).c_str(), &st) == 0 && !S_ISDIR(st.st_mode);
    }

    void supprimer(const std::string& chemin) override {
        if (::unlink(Systeme(chemin).c_str()) != 0 && errno != ENOENT)
            throw ErreurES(chemin, "suppression impossible : " + raisonSysteme(errno));
    }

    void renommer(const std::string& de, const std::string& vers) override {
        if (::rename(Systeme(de).c_str(), Systeme(vers).c_str()) != 0)
            throw ErreurES(de, "renommage impossible : " + raisonSysteme(errno));
    }

    void creerDossier(const std::string& chemin) override {
        std::error_code ec;
        std::filesystem::create_directories(Systeme(chemin), ec);
        if (ec) throw ErreurES(chemin, "création du dossier impossible : " + ec.message());
    }

    std::vector<std::string> lister(const std::string& dossier) override {
        std::vector<std::string> r;
        std::error_code ec;
        for (std::filesystem::directory_iterator it(Systeme(dossier), ec), fin; !ec && it != fin;
             it.increment(ec))
            if (it->is_regular_file(ec)) r.push_back(CheminInterne(it->path().filename().string()));
        return r;
    }

    bool memeFichier(const std::string& a, const std::string& b) override {
        struct stat sa{}, sb{};
        if (::stat(Systeme(a).c_str(), &sa) != 0 || ::stat(Systeme(b).c_str(), &sb) != 0)
            return false;
        return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
    }

    void synchroniserDossier(const std::string& chemin) override {
        std::string dossier = Systeme(chemin);
        auto p = dossier.find_last_of('/');
        dossier = (p == std::string::npos) ? "." : (p == 0 ? "/" : dossier.substr(0, p));
        int fd = ::open(dossier.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (fd < 0) return; // best effort: some file systems refuse it
        ::fsync(fd);
        ::close(fd);
    }
};

} // namespace

std::string ErreurES::CheminLisible(const std::string& chemin) { return CheminSysteme(chemin); }

SystemeFichiers& systemeReel() {
    static SystemePosix fs;
    return fs;
}

std::string lireTout(SystemeFichiers& fs, const std::string& chemin) {
    auto f = fs.ouvrir(chemin, Mode::Lecture);
    return f->lire(0, static_cast<std::size_t>(f->taille()));
}

void ecrireTout(SystemeFichiers& fs, const std::string& chemin, std::string_view donnees) {
    auto f = fs.ouvrir(chemin, Mode::Ecrasement);
    f->ecrire(0, donnees);
}

void CopieFichier(SystemeFichiers& fs, const std::string& de, const std::string& vers) {
    auto source = fs.ouvrir(de, Mode::Lecture);
    EcritureAtomique copie(fs, vers);
    constexpr std::size_t kMorceau = 1u << 20;
    std::uint64_t offset = 0;
    for (;;) {
        const std::string bloc = source->lire(offset, kMorceau);
        if (bloc.empty()) break;
        copie.Sortie().ecrire(offset, bloc);
        offset += bloc.size();
        if (bloc.size() < kMorceau) break;
    }
    copie.Valide();
}

std::string CheminTemporaire(const std::string& cible) {
    const auto slash = cible.find_last_of('/');
    const std::size_t nom = slash == std::string::npos ? 0 : slash + 1;
    return cible.substr(0, nom) + "~" + cible.substr(nom);
}

EcritureAtomique::EcritureAtomique(SystemeFichiers& fs, std::string cible)
    : fs_(fs), cible_(std::move(cible)), temporaire_(CheminTemporaire(cible_)) {
    // Not emptied by the open: the temporary may be another writer's.
    fichier_ = fs_.ouvrir(temporaire_, Mode::Creation);
    if (!fichier_->verrouiller()) {
        fichier_.reset();
        fini_ = true;
        throw ErreurES(cible_, "un autre programme est en train de l'\xE9" "crire");
    }
    fichier_->tronquer(0);
}

EcritureAtomique::~EcritureAtomique() {
    try {
        Abandonne();
    } catch (const ErreurES&) { // a temporary that stays is reused next time
    }
}

void EcritureAtomique::Abandonne() {
    if (fini_) return;
    fini_ = true;
    fichier_.reset();
    fs_.supprimer(temporaire_);
}

void EcritureAtomique::Valide() {
    if (fini_) throw ErreurES(cible_, "\xE9" "criture d\xE9" "j\xE0 termin\xE9" "e");
    fichier_->synchroniser();
    fs_.renommer(temporaire_, cible_);
    fini_ = true;
    fs_.synchroniserDossier(cible_);
    fichier_.reset(); // the lock goes with the last handle
}

} // namespace sylvane
