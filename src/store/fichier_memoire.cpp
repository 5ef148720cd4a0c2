#include "store/fichier_memoire.h"

#include <random>

namespace sylvane {
namespace {

class FichierMemoire final : public Fichier {
  public:
    FichierMemoire(SystemeMemoire& fs, std::shared_ptr<SystemeMemoire::Contenu> c,
                   std::string chemin, bool lectureSeule)
        : fs_(fs), c_(std::move(c)), chemin_(std::move(chemin)), lectureSeule_(lectureSeule) {}
    ~FichierMemoire() override {
        if (c_->verrou == this) c_->verrou = nullptr;
    }

    bool verrouiller() override {
        if (c_->verrou && c_->verrou != this) return false;
        c_->verrou = this;
        return true;
    }

    std::string lire(std::uint64_t offset, std::size_t n) override {
        if (offset >= c_->courant.size()) return {};
        return c_->courant.substr(static_cast<std::size_t>(offset), n);
    }

    void ecrire(std::uint64_t offset, std::string_view d) override {
        if (lectureSeule_) throw ErreurES(chemin_, "écriture impossible : fichier en lecture seule");
        if (fs_.compter(chemin_)) {
            ecrireBrut(offset, d.substr(0, d.size() / 2));
            throw ErreurES(chemin_, "écriture impossible : plus de place sur le disque");
        }
        ecrireBrut(offset, d);
    }

    std::uint64_t taille() override { return c_->courant.size(); }

    void synchroniser() override {
        if (lectureSeule_) return;
        if (fs_.compter(chemin_))
            throw ErreurES(chemin_, "synchronisation impossible : erreur d'entrée-sortie");
        c_->durable = c_->courant;
        c_->enAttente.clear();
    }

    void tronquer(std::uint64_t t) override {
        if (lectureSeule_) throw ErreurES(chemin_, "troncature impossible : fichier en lecture seule");
        if (fs_.compter(chemin_)) throw ErreurES(chemin_, "troncature impossible");
        c_->courant.resize(static_cast<std::size_t>(t), '\0');
        c_->enAttente.push_back({t, {}, true});
    }

  private:
    void ecrireBrut(std::uint64_t offset, std::string_view d) {
        auto fin = static_cast<std::size_t>(offset) + d.size();
        if (c_->courant.size() < fin) c_->courant.resize(fin, '\0');
        c_->courant.replace(static_cast<std::size_t>(offset), d.size(), d);
        c_->enAttente.push_back({offset, std::string(d), false});
    }

    SystemeMemoire& fs_;
    std::shared_ptr<SystemeMemoire::Contenu> c_;
    std::string chemin_;
    bool lectureSeule_;
};

} // namespace

bool SystemeMemoire::compter(const std::string& chemin, bool ecriture) {
    if (ecriture) ++operations_;
    if (restant_ < 0) return false;
    if (restant_ > 1) {
        --restant_;
        return false;
    }
    bool dechirer = restant_ == 1 && dechiree_;
    restant_ = 0;
    if (!dechirer) throw ErreurES(chemin, "erreur d'entrée-sortie simulée");
    return true;
}

std::unique_ptr<Fichier> SystemeMemoire::ouvrir(const std::string& chemin, Mode mode) {
    auto it = fichiers_.find(chemin);
    bool protege = proteges_.count(chemin) > 0;
    if (it == fichiers_.end()) {
        if (mode == Mode::Lecture || mode == Mode::LectureEcriture)
            throw ErreurES(chemin, "ouverture impossible : fichier introuvable");
    } else if (mode == Mode::Exclusive) {
        throw ErreurES(chemin, "ouverture impossible : le fichier existe");
    }
    if (it == fichiers_.end()) {
        if (restant_ == 0) throw ErreurES(chemin, "ouverture impossible : erreur d'entrée-sortie");
        it = fichiers_.emplace(chemin, std::make_shared<Contenu>()).first;
        opsDossier_.push_back({OpDossier::Cree, chemin, {}, it->second});
    } else if (protege && mode != Mode::Lecture) {
        throw ErreurES(chemin, "ouverture impossible : permission refusée");
    } else if (mode == Mode::Ecrasement) {
        it->second->courant.clear();
        it->second->enAttente.push_back({0, {}, true});
    }
    return std::make_unique<FichierMemoire>(*this, it->second, chemin, mode == Mode::Lecture);
}

bool SystemeMemoire::existe(const std::string& chemin) { return fichiers_.count(chemin) > 0; }

bool SystemeMemoire::memeFichier(const std::string& a, const std::string& b) {
    auto ia = fichiers_.find(a), ib = fichiers_.find(b);
    return ia != fichiers_.end() && ib != fichiers_.end() && ia->second == ib->second;
}

void SystemeMemoire::supprimer(const std::string& chemin) {
    if (restant_ == 0 && fichiers_.count(chemin))
        throw ErreurES(chemin, "suppression impossible : erreur d'entrée-sortie");
    if (fichiers_.erase(chemin)) opsDossier_.push_back({OpDossier::Supprime, chemin, {}, {}});
}

void SystemeMemoire::renommer(const std::string& de, const std::string& vers) {
    auto it = fichiers_.find(de);
    if (it == fichiers_.end()) throw ErreurES(de, "renommage impossible : fichier introuvable");
    if (restant_ == 0) throw ErreurES(de, "renommage impossible : erreur d'entrée-sortie");
    fichiers_[vers] = it->second;
    opsDossier_.push_back({OpDossier::Renomme, de, vers, it->second});
    fichiers_.erase(it);
}

void SystemeMemoire::copieDe(const SystemeMemoire& autre) {
    // Deep, keeping which names share one content.
    std::map<const Contenu*, std::shared_ptr<Contenu>> copies;
    auto copie = [&copies](const std::shared_ptr<Contenu>& c) {
        auto& n = copies[c.get()];
        if (!n) {
            n = std::make_shared<Contenu>(*c);
            n->verrou = nullptr;
        }
        return n;
    };
    fichiers_.clear();
    durables_.clear();
    for (const auto& [nom, c] : autre.fichiers_) fichiers_[nom] = copie(c);
    for (const auto& [nom, c] : autre.durables_) durables_[nom] = copie(c);
    opsDossier_.clear();
    for (const auto& op : autre.opsDossier_)
        opsDossier_.push_back({op.genre, op.nom, op.vers, op.contenu ? copie(op.contenu) : nullptr});
    proteges_ = autre.proteges_;
    graine_ = autre.graine_;
    restant_ = -1;
}

std::vector<std::string> SystemeMemoire::lister(const std::string& dossier) {
    std::vector<std::string> r;
    const std::string prefixe = dossier.empty() || dossier.back() == '/' ? dossier : dossier + "/";
    for (const auto& [nom, c] : fichiers_)
        if (nom.compare(0, prefixe.size(), prefixe) == 0 &&
            nom.find('/', prefixe.size()) == std::string::npos)
            r.push_back(nom.substr(prefixe.size()));
    return r;
}

namespace {
std::string Dossier(const std::string& chemin) {
    auto b = chemin.find_last_of('/');
    return b == std::string::npos ? std::string() : chemin.substr(0, b);
}
} // namespace

void SystemeMemoire::synchroniserDossier(const std::string& chemin) {
    if (compter(chemin, false))
        throw ErreurES(chemin, "synchronisation impossible : erreur d'entrée-sortie");
    const std::string d = Dossier(chemin);
    for (auto it = durables_.begin(); it != durables_.end();)
        it = Dossier(it->first) == d ? durables_.erase(it) : std::next(it);
    for (const auto& [nom, c] : fichiers_)
        if (Dossier(nom) == d) durables_[nom] = c;
    std::erase_if(opsDossier_, [&d](const OpDossier& op) {
        return Dossier(op.genre == OpDossier::Renomme ? op.vers : op.nom) == d;
    });
}

void SystemeMemoire::simulerPanne() {
    std::mt19937 hasard(graine_ * 7919u + static_cast<unsigned>(operations_));
    fichiers_ = durables_;
    // Of the names not yet synced, each change may or may not be on disk.
    for (const OpDossier& op : opsDossier_) {
        if (graine_ == 0 || hasard() % 2) continue;
        switch (op.genre) {
        case OpDossier::Cree: fichiers_.emplace(op.nom, op.contenu); break;
        case OpDossier::Supprime: fichiers_.erase(op.nom); break;
        case OpDossier::Renomme:
            fichiers_.erase(op.nom);
            fichiers_[op.vers] = op.contenu;
            break;
        }
    }
    opsDossier_.clear();
    durables_ = fichiers_;
    std::set<Contenu*> faits;
    for (auto& [nom, c] : fichiers_) {
        if (!faits.insert(c.get()).second) continue;
        std::string disque = c->durable;
        for (const auto& e : c->enAttente) {
            if (graine_ == 0 || hasard() % 2) continue; // this one never got there
            const auto o = static_cast<std::size_t>(e.offset);
            if (e.troncature) {
                disque.resize(o, '\0');
                continue;
            }
            if (disque.size() < o + e.donnees.size()) disque.resize(o + e.donnees.size(), '\0');
            disque.replace(o, e.donnees.size(), e.donnees);
        }
        c->durable = c->courant = disque;
        c->enAttente.clear();
        c->verrou = nullptr; // no process outlives the loss
    }
}

void SystemeMemoire::echouerApres(long n, bool ecritureDechiree) {
    restant_ = n;
    dechiree_ = ecritureDechiree;
}

std::string SystemeMemoire::contenu(const std::string& chemin) {
    auto it = fichiers_.find(chemin);
    return it == fichiers_.end() ? std::string() : it->second->courant;
}

} // namespace sylvane
