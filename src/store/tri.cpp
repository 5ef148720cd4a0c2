// The person sort table: places by bisection, insertion and removal, and
// the complete sort.
#include "store/base.h"
#include "store/recherche_tri.h"

#include "text/mots.h"

#include <algorithm>
#include <numeric>

namespace sylvane {
namespace {

// The middle of a bisection as the old program computed it: the exact
// middle rounded to nearest, a half going to the even neighbour.
std::size_t Milieu(std::size_t bas, std::size_t haut) {
    std::size_t deux = bas + haut; // twice the exact middle
    std::size_t m = deux / 2;
    if (deux % 2 == 1 && m % 2 == 1) ++m;
    return m;
}

} // namespace

std::string Base::SansParticule(std::string_view nom) const {
    return sylvane::SansParticule(nom, parametres_.particules, entete_.particules == '1');
}

void Base::OublieCle(std::uint32_t n) {
    if (n < cleLongueur_.size() && cleLongueur_[n]) {
        clesVivantes_ -= cleLongueur_[n];
        cleLongueur_[n] = 0;
    }
}

void Base::OublieCles() {
    clesArene_.clear();
    cleDebut_.clear();
    cleLongueur_.clear();
    clesVivantes_ = 0;
}

std::string_view Base::CleVue(std::uint32_t n) {
    if (n < cleLongueur_.size() && cleLongueur_[n])
        return std::string_view(clesArene_).substr(cleDebut_[n], cleLongueur_[n]);
    std::string cle = CleMot(SansParticule(LitNom(n)) + " " + LitPrenom(n));
    if (entete_.modeTri == '1') cle = CleAnNaiss(n) + " " + cle;
    // Only numbers the base has given are kept, so that a damaged sort
    // table can't make the cache grow without bound.
    if (n == 0 || n > entete_.maxPersonne || cle.size() > 0xFFFF) {
        cleHorsCache_ = std::move(cle);
        return cleHorsCache_;
    }
    if (n >= cleLongueur_.size()) {
        std::size_t t = std::min<std::size_t>(std::max<std::size_t>(n + 1, cleLongueur_.size() * 2),
                                              std::size_t(entete_.maxPersonne) + 1);
        cleDebut_.resize(t, 0);
        cleLongueur_.resize(t, 0);
    }
    if (clesArene_.size() > (1u << 20) && clesArene_.size() > 2 * clesVivantes_) {
        // Most of the arena is stale: pack the live keys.
        std::string neuve;
        neuve.reserve(clesVivantes_ * 2);
        for (std::size_t k = 0; k < cleLongueur_.size(); ++k)
            if (cleLongueur_[k]) {
                std::size_t d = neuve.size();
                neuve.append(clesArene_, cleDebut_[k], cleLongueur_[k]);
                cleDebut_[k] = static_cast<std::uint32_t>(d);
            }
        clesArene_.swap(neuve);
    }
    if (clesArene_.size() + cle.size() > 0xFFFFFFFFu) OublieCles();
    if (n >= cleLongueur_.size()) {
        cleDebut_.resize(n + 1, 0);
        cleLongueur_.resize(n + 1, 0);
    }
    cleDebut_[n] = static_cast<std::uint32_t>(clesArene_.size());
    cleLongueur_[n] = static_cast<std::uint16_t>(cle.size());
    clesVivantes_ += cle.size();
    clesArene_ += cle;
    return std::string_view(clesArene_).substr(cleDebut_[n], cleLongueur_[n]);
}

std::uint32_t Base::PlaceFiche(std::uint32_t n) {
    if (entete_.modeTri == '0') return entete_.nbPersonnes + 1;
    const std::string cle(CleVue(n));
    std::size_t bas = 1, haut = entete_.nbPersonnes, milieu = 1;
    int cmp = 0;
    while (bas <= haut) {
        milieu = Milieu(bas, haut);
        cmp = cle.compare(CleVue(TriFiche(milieu)));
        if (cmp > 0) bas = milieu + 1;
        else if (cmp < 0) {
            if (milieu == 0) break;
            haut = milieu - 1;
        } else break;
    }
    if (entete_.nbPersonnes == 0) return 1;
    if (cle.compare(CleVue(TriFiche(milieu))) > 0) ++milieu;
    return static_cast<std::uint32_t>(milieu);
}

void Base::RangeDifferes(bool ranger) {
    const std::uint32_t depuis = differeDepuis_;
    differeDepuis_ = 0;
    if (!ranger || depuis == 0) return;
    std::vector<std::uint32_t> v = triPersonnes_.versVecteur();
    if (depuis > v.size()) return;
    const std::vector<std::uint32_t> nouveaux(v.begin() + depuis - 1, v.end());
    v.resize(depuis - 1);
    triPersonnes_.depuisVecteur(v);
    const std::uint32_t total = entete_.nbPersonnes;
    entete_.nbPersonnes = depuis - 1;
    for (std::uint32_t n : nouveaux) {
        triPersonnes_.inserer(PlaceFiche(n), n);
        ++entete_.nbPersonnes;
    }
    entete_.nbPersonnes = total;
    triPersonnesModifie = true;
}

std::uint32_t Base::TrouvePlaceFiche(std::uint32_t n) {
    const std::size_t nb = triPersonnes_.taille();
    if (n == 0 || nb == 0) return 0;
    if (dernierePlace_ >= 1 && dernierePlace_ <= nb && TriFiche(dernierePlace_) == n)
        return dernierePlace_;
    // The comparison strings are copied: the next key computed may move
    // the arena that a view points into.
    const std::uint32_t place =
        Trouve(n, std::string(CleVue(n)), triPersonnes_,
               [this](std::uint32_t x) { return std::string(CleVue(x)); });
    if (place) dernierePlace_ = place;
    return place;
}

void Base::MajTriFiche(std::size_t i, std::uint32_t n, char op) {
    if (op == 'A') {
        triPersonnes_.inserer(i, n);
    } else if (op == 'S') {
        if (TriFiche(i) != n) Signale("Erreur de mise \xE0 jour de la table de tri");
        triPersonnes_.retirer(i);
    }
}

void Base::PlaceTriFiche(std::size_t i, std::uint32_t n) {
    if (i >= 1 && i <= triPersonnes_.taille()) triPersonnes_.remplacer(i, n);
    else triPersonnes_.inserer(1, n);
    triPersonnesModifie = true;
}

void Base::TriTable(const std::function<bool(std::size_t, std::size_t)>& progres) {
    std::vector<std::uint32_t> t = triPersonnes_.versVecteur();
    const std::size_t nb = t.size();
    if (nb == 0) return;
    // Keys, read in number order so that the blocks come one after another.
    std::vector<std::size_t> parNumero(nb);
    std::iota(parNumero.begin(), parNumero.end(), 0);
    std::sort(parNumero.begin(), parNumero.end(),
              [&t](std::size_t a, std::size_t b) { return t[a] < t[b]; });
    std::vector<std::string> cles(nb);
    for (std::size_t k = 0; k < nb; ++k) {
        std::uint32_t n = t[parNumero[k]];
        std::string c = SansParticule(LitNom(n)) + " " + LitPrenom(n);
        if (entete_.modeTri == '1') c = CleAnNaiss(n) + " " + c;
        cles[parNumero[k]] = CleMot(c);
        if (progres && k % 100 == 0) progres(k, nb);
    }
    // Equal keys keep the order in which the old tree took them in: the
    // first entry, then the entries scattered by steps of nb / 100 + 1.
    std::vector<std::size_t> rang(nb, 0);
    const std::size_t pas = nb / 100 + 1;
    std::size_t r = 1;
    for (std::size_t j = 1; j <= pas; ++j)
        for (std::size_t k = 1; k <= 100; ++k) {
            std::size_t i = pas * (k - 1) + j + 1;
            if (i > nb) continue;
            rang[i - 1] = r++;
        }
    std::vector<std::size_t> ordre(nb);
    std::iota(ordre.begin(), ordre.end(), 0);
    std::sort(ordre.begin(), ordre.end(), [&](std::size_t a, std::size_t b) {
        int c = cles[a].compare(cles[b]);
        return c != 0 ? c < 0 : rang[a] < rang[b];
    });
    std::vector<std::uint32_t> sortie(nb);
    for (std::size_t k = 0; k < nb; ++k) sortie[k] = t[ordre[k]];
    triPersonnes_.depuisVecteur(sortie);
    triPersonnesModifie = true;
    dernierePlace_ = 1;
}

} // namespace sylvane
