#include "exchange/selection.h"

#include "store/base.h"

namespace sylvane {
namespace {
constexpr int kListeMax = 200; // entries of a person's list that are walked
}

Selection::Selection(Base& b) : b_(b) {
    marques_.assign(b.Tete().maxPersonne + 1, ' ');
}

void Selection::Agrandit(std::uint32_t n) {
    if (n >= marques_.size()) marques_.resize(std::size_t(n) + 1, ' ');
}

char& Selection::M(std::uint32_t n) {
    Agrandit(n);
    return marques_[n];
}

// The spouses of n's marriages: `marque` for those not marked '1', or only
// for those with no mark at all.
void Selection::Conjoints(std::uint32_t n, char marque, bool seulementSansMarque) {
    for (int i = 1; i <= kListeMax; ++i) {
        const std::uint32_t m = b_.MariageNo(n, i);
        if (m == 0) break;
        std::uint32_t c = b_.LitMari(m);
        if (c == n) c = b_.LitFemme(m);
        if (c == 0 || c == n) continue;
        char& x = M(c);
        if (seulementSansMarque ? x == ' ' : x != '1') x = marque;
    }
}

void Selection::MarqueDescendants(std::uint32_t depart) {
    // Each frame is a person of the line and the place of its next child.
    struct Cadre {
        std::uint32_t n;
        int enfant;
    };
    std::vector<Cadre> pile;
    auto entre = [&](std::uint32_t n) {
        if (n == 0 || M(n) == '1') return;
        M(n) = '1';
        Conjoints(n, '3', false);
        pile.push_back({n, 1});
    };
    entre(depart);
    while (!pile.empty()) {
        Cadre& c = pile.back();
        if (c.enfant > kListeMax) {
            pile.pop_back();
            continue;
        }
        const std::uint32_t e = b_.EnfantNo(c.n, c.enfant++);
        if (e == 0) {
            pile.pop_back();
            continue;
        }
        if (M(e) == ' ') M(e) = '2';
        Conjoints(e, '2', true);
        entre(e);
    }
}

void Selection::MarqueAscendants(std::uint32_t depart) {
    // A parent is walked unless it is already of the line: a parent marked
    // '3' as the spouse of the other parent still has its own ascendants.
    std::vector<std::uint32_t> pile;
    auto entre = [&](std::uint32_t n) {
        if (n == 0 || M(n) == '1') return;
        M(n) = '1';
        Conjoints(n, '3', false);
        pile.push_back(n);
    };
    entre(depart);
    while (!pile.empty()) {
        const std::uint32_t n = pile.back();
        pile.pop_back();
        // Mother pushed first so that the father's line is walked first.
        const std::uint32_t parents[2] = {b_.LitMere(n), b_.LitPere(n)};
        for (std::uint32_t p : parents) {
            if (p == 0) continue;
            if (M(p) != '1' && M(p) != '3') M(p) = '2';
            entre(p);
        }
    }
}

std::size_t Selection::Replie() {
    std::size_t compte = 0;
    for (char& c : marques_) {
        if (c == '1' || c == '3')
            c = '3';
        else if (c == '2' || c == '4')
            c = '4';
        else
            continue;
        ++compte;
    }
    return compte;
}

std::size_t Selection::SelectionneDescendants(std::uint32_t n) {
    MarqueDescendants(n);
    return Replie();
}

std::size_t Selection::SelectionneAscendants(std::uint32_t n) {
    MarqueAscendants(n);
    return Replie();
}

std::size_t Selection::SelectionneTout() {
    const std::size_t nb = b_.TablePersonnes().taille();
    for (std::size_t i = 1; i <= nb; ++i)
        M(b_.TriFiche(i)) = '3';
    return Replie();
}

void Selection::Inclut(std::uint32_t n) {
    if (n) M(n) = '3';
}
void Selection::Apparente(std::uint32_t n) {
    if (n && M(n) == ' ') M(n) = '4';
}
void Selection::Exclut(std::uint32_t n) {
    if (n < marques_.size()) marques_[n] = ' ';
}
void Selection::Efface() {
    marques_.assign(marques_.size(), ' ');
}

bool Selection::Exporte(std::uint32_t n) const {
    const char c = Marque(n);
    if (n == 0 || !(c == '3' || (collateraux && c >= '1' && c != ' '))) return false;
    if (sans1900 && !b_.LitAnNaiss(n).empty() && b_.CleAnNaiss(n) > "1900") return false;
    return true;
}

bool Selection::MariageExporte(std::uint32_t m) const {
    const std::uint32_t mari = b_.LitMari(m);
    return mari != 0 && Exporte(mari) && Exporte(b_.LitFemme(m));
}

std::size_t Selection::Compte() const {
    std::size_t c = 0;
    for (char x : marques_)
        if (x != ' ') ++c;
    return c;
}

} // namespace sylvane
