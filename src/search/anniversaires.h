// The anniversary calendar: for each day of the year, who was born, died
// or married that day, and which dated rubrics of the sheets fall on it.
// The leap year 2000 gives 29 February its day.
#pragma once

#include "maintenance/interaction.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace sylvane {

class Base;

// One entry of a day. `tag`: "I$" birth, "I~" death, "M@" marriage, "I" or
// "M" followed by the rubric's symbol for a person or marriage rubric.
struct RefAnniv {
    std::string tag;
    std::uint32_t numero = 0; // person or marriage
    bool operator==(const RefAnniv&) const = default;
};

class Calendrier {
  public:
    // 0 for 1 January ... 365 for 31 December; -1 for a day that does not exist.
    static int JourDeLAn(int jour, int mois);
    static std::pair<int, int> JourMois(int jourDeLAn);

    // Goes through every person in sort order, the progress showing message
    // 898 with the count. A stop keeps what was read.
    void Construit(Base& b, const Interaction& i);
    bool Construit() const { return construit_; }
    bool Complet() const { return complet_; }
    const std::vector<RefAnniv>& Jour(int jourDeLAn) const {
        return jours_.at(static_cast<std::size_t>(jourDeLAn));
    }
    void Vide();

  private:
    std::array<std::vector<RefAnniv>, 366> jours_;
    bool construit_ = false, complet_ = false;
};

// A row of the day's lists, as the form and the reports show it.
struct LigneAnniv {
    RefAnniv ref;
    std::uint32_t personne = 0;  // the person a click makes current
    std::string nom;             // short name; "husband / wife" for a marriage
    std::string annee;
    std::string lieu;
    std::string rubrique;        // label of a rubric row
};

struct ListesJour {
    std::vector<LigneAnniv> naissances, deces, mariages, mots;
};

ListesJour ListesDuJour(Base& b, const Calendrier& c, int jourDeLAn);

} // namespace sylvane
