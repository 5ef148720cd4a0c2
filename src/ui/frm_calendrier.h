// `FrmCalendrier`: a date converted between the Gregorian and the French
// Republican calendars, both ways, for 1792 to 1805. Two methods: the table
// of day offsets the form always used (with its oddities: no offset for
// January to August 1792, 1800 taken as a leap year on the way back), and
// an exact count of days under the historical rule of the sextile years
// (III, VII and XI). The form's fields are texts, as typed or chosen in the
// lists; a list entry is found by comparing the text with each item.
#pragma once

#include <string>
#include <vector>

namespace sylvane {

class Boites;

enum class MethodeCalendrier { Table, Calcul };

// Messages of the exact method, beside 726 (day), 728 (month), 729 (year).
constexpr int kMsgAvantRepublique = 3350; // the date precedes 1 Vendémiaire I
constexpr int kMsgApresRepublique = 3351; // the date falls after 1805

class FrmCalendrier {
  public:
    explicit FrmCalendrier(Boites& boites);

    // The items of the four lists (Windows-1252): Gregorian months (messages
    // 730 to 741), Republican months, years "1792" to "1805", "I" to "XIV".
    static std::vector<std::string> MoisGregoriens();
    static std::vector<std::string> MoisRepublicains();
    static std::vector<std::string> AnneesGregoriennes();
    static std::vector<std::string> AnneesRepublicaines();
    // The place (from 1) of a text in a list, 0 when it is none of them.
    static int Index(const std::vector<std::string>& liste, const std::string& texte);

    // `TxtJourG`, `LstMoisG`, `LstAnneeG`, and the same for the Republic.
    struct Cote {
        std::string jour, mois, annee;
        bool operator==(const Cote&) const = default;
    };
    Cote gregorien{"22", "", "1792"};
    Cote republicain;
    MethodeCalendrier methode = MethodeCalendrier::Table;

    // `CmdGR` and `CmdRG`: validate one side (a refusal shows its message
    // and changes nothing), convert, and set the other side. A year out of
    // the list leaves the other side's year as it was. True when converted.
    bool CmdGR();
    bool CmdRG();

  private:
    void Refuse(int message);
    Boites& boites_;
};

} // namespace sylvane
