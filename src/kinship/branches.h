// The branch outlines of a person: its ascendance (father and mother under
// each person) or its descendance (marriages, then the children of each
// marriage), opened node by node. The user prunes what is open; only the
// open nodes reach the printed lines, the RTF and the HTML.
#pragma once

#include "store/base.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace sylvane {

// The images of the nodes: the state of a person's branch.
enum ImageBranche : int {
    ImageFin = 2,          // no branch further
    ImageDeuxParents = 3,  // (ascendance) both parents known; (descendance) a family
    ImagePere = 4,         // the father alone
    ImageMere = 5,         // the mother alone
    ImageEnfantSeul = 6,   // (descendance) a child with no family of its own
    ImageMariage = 7,
};

struct NoeudBranche {
    std::string cle;            // "I" and the running count; the root "I1"
    std::uint32_t personne = 0; // 0 for a marriage node
    std::uint32_t mariage = 0;  // a marriage node's marriage
    int rang = 0;               // a marriage node's rank
    std::string texte;
    int image = ImageFin;
    std::size_t parent = 0;     // node index + 1; 0 for the root
    std::vector<std::size_t> enfants; // node indexes
    bool charge = false;        // children loaded
    bool ouvert = false;        // shown open
    bool ecarte = false;
};

class Branche {
  public:
    // The outline of `racine`: `descendante` for the children's side.
    Branche(Base& b, bool descendante, std::uint32_t racine);

    bool Descendante() const { return descendante_; }
    const NoeudBranche& Noeud(std::size_t i) const { return noeuds_[i]; }
    std::size_t NbNoeuds() const { return noeuds_.size(); }
    // Whether a node not loaded yet has something to open (the placeholder
    // "(....)" stands under it until then).
    bool AEnfants(std::size_t i);

    // Opens a node: its children are loaded once, the first time.
    void Ouvre(std::size_t i);
    void Ferme(std::size_t i) { noeuds_[i].ouvert = false; }
    // Opens a node and, while `niveau` is above 1, its sub-nodes.
    void Developpe(std::size_t i, int niveau);
    // Removes a node and its sub-nodes (not the root).
    void Ecarte(std::size_t i);

    // The visible nodes depth first, with their depth (the root 1).
    std::vector<std::pair<std::size_t, int>> Visibles() const;
    // The printed lines: the indentation, then for the ascendance the
    // key's number and " - ", then the text.
    std::vector<std::string> Lignes() const;
    // The RTF document and the HTML page of the visible nodes.
    std::string Rtf(const std::string& titre) const;
    std::string Html(const std::string& titre) const;

  private:
    std::size_t Ajoute(std::size_t parent, std::uint32_t personne, std::uint32_t mariage,
                       std::string texte, int image);
    void ChargeAscendance(std::size_t i);
    void ChargeDescendance(std::size_t i);
    int ImageAsc(std::uint32_t p);
    int ImageDesc(std::uint32_t p);
    void Html(std::size_t i, std::string& r) const;

    Base& b_;
    bool descendante_;
    std::vector<NoeudBranche> noeuds_;
    std::size_t compte_ = 0;
};

// The letter of a marriage's rank: "abcdefghijklmonpqstuvvwxyz" as the
// earlier program had it; "" past 26.
std::string LettreRang(int rang);

} // namespace sylvane
