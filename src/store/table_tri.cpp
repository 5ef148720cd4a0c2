#include "store/table_tri.h"

#include "store/pack.h"

#include <algorithm>

namespace sylvane {

std::size_t TableTri::trouver(std::size_t i, std::size_t& dedans) const {
    // i is 0-based and < taille_.
    std::size_t m = dernier_;
    if (m >= morceaux_.size() || i < debuts_[m] || i >= debuts_[m] + morceaux_[m].size()) {
        auto it = std::upper_bound(debuts_.begin(), debuts_.end(), i);
        m = static_cast<std::size_t>(it - debuts_.begin()) - 1;
        // Skip empty runs that share a start.
        while (m + 1 < morceaux_.size() && debuts_[m + 1] == debuts_[m] &&
               i >= debuts_[m] + morceaux_[m].size())
            ++m;
        dernier_ = m;
    }
    dedans = i - debuts_[m];
    return m;
}

std::uint32_t TableTri::at(std::size_t i) const {
    if (i == 0 || i > taille_) return 0;
    std::size_t d;
    std::size_t m = trouver(i - 1, d);
    return morceaux_[m][d];
}

void TableTri::recalculerDebuts(std::size_t depuis) {
    debuts_.resize(morceaux_.size());
    for (std::size_t m = depuis; m < morceaux_.size(); ++m)
        debuts_[m] = m == 0 ? 0 : debuts_[m - 1] + morceaux_[m - 1].size();
}

void TableTri::inserer(std::size_t i, std::uint32_t n) {
    if (i == 0) i = 1;
    if (i > taille_ + 1) i = taille_ + 1;
    if (morceaux_.empty()) {
        morceaux_.emplace_back();
        debuts_.push_back(0);
    }
    std::size_t m, d;
    if (i == taille_ + 1) {
        m = morceaux_.size() - 1;
        d = morceaux_[m].size();
    } else {
        m = trouver(i - 1, d);
    }
    auto& r = morceaux_[m];
    r.insert(r.begin() + static_cast<std::ptrdiff_t>(d), n);
    ++taille_;
    if (r.size() >= 2 * kMorceau) {
        std::vector<std::uint32_t> suite(r.begin() + kMorceau, r.end());
        r.resize(kMorceau);
        morceaux_.insert(morceaux_.begin() + static_cast<std::ptrdiff_t>(m) + 1, std::move(suite));
        debuts_.insert(debuts_.begin() + static_cast<std::ptrdiff_t>(m) + 1, 0);
    }
    recalculerDebuts(m + 1);
}

void TableTri::retirer(std::size_t i) {
    if (i == 0 || i > taille_) return;
    std::size_t d;
    std::size_t m = trouver(i - 1, d);
    auto& r = morceaux_[m];
    r.erase(r.begin() + static_cast<std::ptrdiff_t>(d));
    --taille_;
    if (r.empty() && morceaux_.size() > 1) {
        morceaux_.erase(morceaux_.begin() + static_cast<std::ptrdiff_t>(m));
        debuts_.erase(debuts_.begin() + static_cast<std::ptrdiff_t>(m));
        dernier_ = 0;
        recalculerDebuts(m == 0 ? 0 : m);
    } else {
        recalculerDebuts(m + 1);
    }
}

void TableTri::remplacer(std::size_t i, std::uint32_t n) {
    if (i == 0 || i > taille_) return;
    std::size_t d;
    std::size_t m = trouver(i - 1, d);
    morceaux_[m][d] = n;
}

void TableTri::vider() {
    morceaux_.clear();
    debuts_.clear();
    taille_ = 0;
    dernier_ = 0;
}

std::string TableTri::octets() const {
    std::string s;
    s.reserve(taille_ * 4);
    for (const auto& r : morceaux_)
        for (auto n : r) s += Pack4(n);
    return s;
}

std::vector<std::uint32_t> TableTri::versVecteur() const {
    std::vector<std::uint32_t> v;
    v.reserve(taille_);
    for (const auto& r : morceaux_) v.insert(v.end(), r.begin(), r.end());
    return v;
}

void TableTri::depuisVecteur(const std::vector<std::uint32_t>& v) {
    vider();
    for (std::size_t a = 0; a < v.size(); a += kMorceau) {
        std::size_t b = std::min(v.size(), a + kMorceau);
        morceaux_.emplace_back(v.begin() + static_cast<std::ptrdiff_t>(a),
                               v.begin() + static_cast<std::ptrdiff_t>(b));
    }
    taille_ = v.size();
    recalculerDebuts(0);
}

void TableTri::charger(std::string_view o) {
    std::vector<std::uint32_t> v(o.size() / 4);
    for (std::size_t k = 0; k < v.size(); ++k) v[k] = Unpack4(o, k * 4);
    depuisVecteur(v);
}

} // namespace sylvane
