#include "ui/frm_choix.h"

#include "store/base.h"
#include "text/mots.h"
#include "ui/liste_noms.h"

#include <algorithm>

namespace sylvane {
namespace {

// Blanks, dots, hyphens and apostrophes are one separator for the search:
// the sort keys write the blanks of a name as dots.
std::string Separateurs(std::string s) {
    for (char& c : s)
        if (c == '.' || c == '-' || c == '\'') c = ' ';
    return s;
}

std::string TroisChiffres(int d) {
    std::string s = std::to_string(d);
    while (s.size() < 3) s.insert(0, "0");
    return s;
}

} // namespace

int Decennie(const std::string& cle) {
    if (cle.size() < 3 || cle == "0000") return -1;
    int d = 0;
    for (int i = 0; i < 3; ++i) {
        if (cle[i] < '0' || cle[i] > '9') return -1;
        d = d * 10 + (cle[i] - '0');
    }
    return d;
}

FrmChoix::FrmChoix(Base* base, Candidats genre, std::uint32_t pour, char sexe)
    : base_(base && base->EstOuverte() ? base : nullptr), genre_(genre), pour_(pour), sexe_(' ') {
    if (base_) {
        mode_ = base_->Tete().modeTri;
        if (pour_ > base_->Tete().maxPersonne) pour_ = 0;
    }
    if (genre_ == Candidats::Pere && (sexe == 'H' || sexe == 'F')) sexe_ = sexe;
    if (genre_ == Candidats::Conjoints && base_ && pour_) {
        const std::string s = base_->LitSexe(pour_);
        if (!s.empty() && s[0] == 'H') sexe_ = 'F';
        if (!s.empty() && s[0] == 'F') sexe_ = 'H';
    }
    Plage();
    Cherche("");
}

int FrmChoix::Titre() const {
    switch (genre_) {
    case Candidats::Conjoints: return 3900;
    case Candidats::Enfants: return 3901;
    case Candidats::Pere: return sexe_ == 'F' ? 3903 : 3902;
    case Candidats::Liens: break;
    }
    return 3904;
}

void FrmChoix::Plage() {
    // Only a base sorted by year holds its persons by year; the span is in
    // decades around the reference's own.
    if (!base_ || mode_ != '1' || !pour_) return;
    const int d = Decennie(base_->CleAnNaiss(pour_));
    if (d < 0) return;
    int bas = -10, haut = 10;
    if (genre_ == Candidats::Enfants) bas = 1;
    if (genre_ == Candidats::Pere) haut = -1;
    const int min = std::max(0, d + bas), max = std::min(999, d + haut);
    if (max < min) {
        // No year can be in it: only the unknown years stay.
        min_ = "999";
        max_ = "000";
        return;
    }
    min_ = TroisChiffres(min);
    max_ = TroisChiffres(max);
}

std::size_t FrmChoix::BorneInferieure(const std::string& cle) const {
    // Places from 1; the first whose key is not below `cle`.
    std::size_t bas = 1, haut = base_->TablePersonnes().taille() + 1;
    while (bas < haut) {
        const std::size_t milieu = bas + (haut - bas) / 2;
        if (base_->CleVue(base_->TriFiche(milieu)) < cle) bas = milieu + 1;
        else haut = milieu;
    }
    return bas;
}

void FrmChoix::Etendues() {
    etendues_.clear();
    if (!base_) return;
    const std::size_t fin = base_->TablePersonnes().taille() + 1;
    if (!min_.empty()) {
        // The unknown years ("0000"), then the span; one stretch when they
        // meet.
        Etendue inconnus{BorneInferieure("0000"), BorneInferieure("0001")};
        if (min_ > max_) {
            etendues_.push_back(inconnus);
            return;
        }
        const int apres = Decennie(max_ + "0") + 1;
        Etendue plage{BorneInferieure(min_), apres > 999 ? fin : BorneInferieure(TroisChiffres(apres))};
        if (plage.debut <= inconnus.fin && inconnus.debut <= plage.fin) {
            etendues_.push_back({std::min(inconnus.debut, plage.debut), std::max(inconnus.fin, plage.fin)});
        } else {
            etendues_.push_back(inconnus);
            etendues_.push_back(plage);
        }
        return;
    }
    std::size_t debut = 1;
    if (mode_ == '2' && !texte_.empty()) {
        ListeNoms l(base_);
        l.Cherche(brut_);
        debut = l.Courante() + 1;
    }
    etendues_.push_back({debut, fin});
}

void FrmChoix::Cherche(const std::string& texte) {
    brut_ = Trim(texte);
    texte_ = Separateurs(CleMot(brut_));
    Etendues();
    pages_.clear();
    Position p;
    if (!etendues_.empty()) p.place = etendues_.front().debut;
    Remplit(p);
}

bool FrmChoix::Suivante() {
    if (finListe_) return false;
    pages_.push_back(debut_);
    Remplit(suite_);
    return true;
}

bool FrmChoix::Precedente() {
    if (pages_.empty()) return false;
    const Position p = pages_.back();
    pages_.pop_back();
    Remplit(p);
    return true;
}

void FrmChoix::Remplit(Position p) {
    lignes_.clear();
    debut_ = p;
    std::size_t examinees = 0;
    auto avance = [&] {
        while (p.etendue < etendues_.size() && p.place >= etendues_[p.etendue].fin) {
            if (++p.etendue < etendues_.size()) p.place = etendues_[p.etendue].debut;
        }
    };
    avance();
    while (lignes_.size() < kLignes && p.etendue < etendues_.size() &&
           examinees < kExamenParPage) {
        const std::size_t place = p.place++;
        ++examinees;
        LigneChoix l;
        if (Accepte(place, base_->TriFiche(place), l)) lignes_.push_back(std::move(l));
        avance();
    }
    suite_ = p;
    finListe_ = p.etendue >= etendues_.size();
}

bool FrmChoix::ContientTexte(std::uint32_t n) {
    if (texte_.empty()) return true;
    std::string_view cle = base_->CleVue(n);
    if (mode_ == '1') cle = cle.size() >= 5 ? cle.substr(5) : std::string_view();
    if (Separateurs(std::string(cle)).find(texte_) != std::string::npos) return true;
    // The key sets particles aside: the name as written, both ways round.
    const std::string nom = base_->LitNom(n), prenom = base_->LitPrenom(n);
    return Separateurs(CleMot(nom + " " + prenom)).find(texte_) != std::string::npos ||
           Separateurs(CleMot(prenom + " " + nom)).find(texte_) != std::string::npos;
}

bool FrmChoix::Accepte(std::size_t place, std::uint32_t n, LigneChoix& l) {
    if (n == 0 || n == pour_ || n > base_->Tete().maxPersonne) return false;
    if (!min_.empty()) {
        const std::string an(base_->CleVue(n).substr(0, 4));
        const int d = Decennie(an);
        if (an != "0000" && (d < 0 || TroisChiffres(d) < min_ || TroisChiffres(d) > max_))
            return false;
    }
    if (sexe_ != ' ') {
        const std::string s = base_->LitSexe(n);
        if (s.empty() || s[0] != sexe_) return false;
    }
    if (!ContientTexte(n)) return false;
    const LigneNom ln = ListeNoms(base_).Ligne(place - 1);
    l.numero = n;
    l.nom = ln.nom;
    l.dates = ln.dates;
    if (genre_ == Candidats::Enfants) {
        if (ln.famille.empty()) l.code = "*";
        else if (ln.famille == "xo") l.code = "P";
        else if (ln.famille == "ox") l.code = "M";
    }
    return true;
}

std::uint32_t FrmChoix::Choisit(std::size_t ligne) {
    if (ligne >= lignes_.size()) return 0;
    const std::uint32_t n = lignes_[ligne].numero;
    if (n == 0 || n == pour_) return 0;
    choix_ = n;
    return n;
}

} // namespace sylvane
