// A sort table: record numbers in order, addressed by 1-based place, with
// insertion and removal anywhere. Kept as a list of short runs so that an
// insertion into a million entries costs a few microseconds, not a move of
// the whole table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

class TableTri {
  public:
    std::size_t taille() const { return taille_; }
    // Number at place i (1-based); 0 when i is 0 or beyond the end.
    std::uint32_t at(std::size_t i) const;
    void inserer(std::size_t i, std::uint32_t n); // i from 1 to taille()+1
    void retirer(std::size_t i);                  // i from 1 to taille()
    void remplacer(std::size_t i, std::uint32_t n);
    void vider();
    // The table as packed 4-byte numbers, and back.
    std::string octets() const;
    void charger(std::string_view octets);
    std::vector<std::uint32_t> versVecteur() const;
    void depuisVecteur(const std::vector<std::uint32_t>& v);

  private:
    static constexpr std::size_t kMorceau = 1024;
    std::size_t trouver(std::size_t i, std::size_t& dedans) const;
    void recalculerDebuts(std::size_t depuis);

    std::vector<std::vector<std::uint32_t>> morceaux_;
    std::vector<std::size_t> debuts_; // 0-based index of each run's first entry
    std::size_t taille_ = 0;
    mutable std::size_t dernier_ = 0; // run of the last lookup, for walks in order
};

} // namespace sylvane
