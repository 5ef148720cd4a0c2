// The two trees of a chart as flat tables: for each node its parent's
// index, its person, its generation and the leaves under it, packed as
// four-byte big-endian numbers, indexes from 1.
#pragma once

#include "store/base.h"

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <unordered_set>

namespace sylvane {

// A chart stops at this many nodes (a damaged base walked in a loop).
inline constexpr std::uint32_t kNoeudsMax = 1000000;

class ErreurArbre : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class ArbreGraphe {
  public:
    std::uint32_t Nombre() const { return static_cast<std::uint32_t>(personnes_.size() / 4); }
    std::uint32_t Parent(std::uint32_t i) const { return Lit(parents_, i); }
    std::uint32_t Personne(std::uint32_t i) const { return Lit(personnes_, i); }
    std::uint32_t Niveau(std::uint32_t i) const { return Lit(niveaux_, i); }
    // 0 for a leaf.
    std::uint32_t Feuilles(std::uint32_t i) const { return Lit(feuilles_, i); }
    std::uint32_t NbFeuilles() const { return nbFeuilles_; }
    std::uint32_t NiveauMax() const { return niveauMax_; }

    // Appends a node; returns its index.
    std::uint32_t Ajoute(std::uint32_t parent, std::uint32_t personne, std::uint32_t niveau);
    // Node i is a leaf: one more leaf for every node above it.
    void Feuille(std::uint32_t i);

  private:
    static std::uint32_t Lit(const std::string& t, std::uint32_t i);
    static void Ecrit(std::string& t, std::uint32_t i, std::uint32_t v);

    std::string parents_, personnes_, niveaux_, feuilles_;
    std::uint32_t nbFeuilles_ = 0, niveauMax_ = 0;
};

struct OptionsArbre {
    int niveaux = 0;          // generations asked
    bool sansImplexe = false; // a person who comes back isn't walked again
    std::function<bool()> arret;
};

// A person's ascendants: both parent nodes whenever one parent is known.
// Returns false when the user stopped.
bool ArbreAscendants(Base& b, std::uint32_t personne, const OptionsArbre& o, ArbreGraphe& a);
// The ascendants of both spouses under one node of no person: the husband's
// side first, the spouses at generation 0.
bool ArbreAscendantsCouple(Base& b, std::uint32_t mari, std::uint32_t femme,
                           const OptionsArbre& o, ArbreGraphe& a);
// A person's descendants, each family's children by birth year. `couple`:
// the children that the person's wives had of another father stand beside
// the couple's.
bool ArbreDescendants(Base& b, std::uint32_t personne, const OptionsArbre& o, bool couple,
                      ArbreGraphe& a);

// Whether a number is a person of the base (not deleted).
bool PersonneExiste(Base& b, std::uint32_t n);

} // namespace sylvane
