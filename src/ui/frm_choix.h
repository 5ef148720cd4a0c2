// The candidate pickers of the person sheet: `FrmConjoints`, `FrmEnfants`,
// `FrmPere` and `FrmLiens`. One machinery for the four: the person sort
// table shown 20 rows at a time, restricted to the persons that may take
// the role for the person the sheet works on.
//
// Nothing is read ahead. In a base sorted by year with a reference year,
// the list is the unknown years then the span of years, both found by
// bisection over the sort keys; in a base sorted by name a search text
// starts the list at its key. A page examines at most `kExamenParPage`
// rows, so that a rare search text never walks a million persons at once:
// the next page goes on from where the last one stopped.
#pragma once

#include "ui/choix_fiche.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace sylvane {

class Base;

// One row of the grid (Windows-1252 texts).
struct LigneChoix {
    std::uint32_t numero = 0; // the hidden column
    std::string nom;          // NomComplet
    std::string dates;        // "(1850-1910)" as NomDates writes them
    // FrmEnfants: the parents the candidate lacks: "*" none, "P" the father
    // alone, "M" the mother alone, "" both.
    std::string code;
};

class FrmChoix {
  public:
    static constexpr std::size_t kLignes = 20;
    static constexpr std::size_t kExamenParPage = 4000;

    // `base` may be null or closed: the list is empty. `pour` is the sheet
    // person (never offered); `sexe` is the sex asked of FrmPere.
    FrmChoix(Base* base, Candidats genre, std::uint32_t pour, char sexe = ' ');

    // The caption of the form (a message number).
    int Titre() const;
    Candidats Genre() const { return genre_; }

    // Commande1, or Enter in TxtNom: the list starts again with this
    // search text (accent-folded; empty: no search).
    void Cherche(const std::string& texte);
    const std::string& Recherche() const { return texte_; }

    // C_Suiv and C_Prec. False, and nothing moves, at either end.
    bool Suivante();
    bool Precedente();
    bool PeutSuivre() const { return !finListe_; }
    bool PeutPreceder() const { return !pages_.empty(); }

    const std::vector<LigneChoix>& Lignes() const { return lignes_; }

    // A row click or Enter on a row: the chosen person, or 0 when the row
    // is empty or holds the sheet person (then the form stays open).
    std::uint32_t Choisit(std::size_t ligne);
    std::uint32_t Choix() const { return choix_; }

    // The span of normalised birth years the list is held to, as decades
    // ("175" to "195"); empty when there is none.
    const std::string& DecennieMin() const { return min_; }
    const std::string& DecennieMax() const { return max_; }

  private:
    // A stretch of sort-table places, [debut, fin), walked in order.
    struct Etendue {
        std::size_t debut, fin;
    };
    // Where a page starts: a stretch and a place in it.
    struct Position {
        std::size_t etendue = 0, place = 0;
    };

    void Plage();
    void Etendues();
    void Remplit(Position depuis);
    bool Accepte(std::size_t place, std::uint32_t n, LigneChoix& l);
    bool ContientTexte(std::uint32_t n);
    std::size_t BorneInferieure(const std::string& cle) const;

    Base* base_;
    Candidats genre_;
    std::uint32_t pour_;
    char sexe_;          // the sex a candidate must have, ' ' for any
    char mode_ = '0';    // sort mode of the base
    std::string min_, max_;
    std::string brut_;   // the search text as typed
    std::string texte_;  // the search text, folded
    std::vector<Etendue> etendues_;
    std::vector<Position> pages_; // starts of the pages before this one
    Position debut_, suite_;      // this page's start, the next page's
    bool finListe_ = true;
    std::vector<LigneChoix> lignes_;
    std::uint32_t choix_ = 0;
};

// The decade of a normalised birth year ("1850" gives 185), or -1 when the
// year is unknown or before the era.
int Decennie(const std::string& cleAnnee);

} // namespace sylvane
