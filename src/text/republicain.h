// The Republican calendar: the two conversions of the form
// FrmCalendrier as pure functions over the Part's table of offsets, with
// its oddities (1800 counted as a leap year on the way back, no offset for
// January to August 1792 ...), and beside them an exact arithmetic
// conversion offered as a second method.
#pragma once

#include <optional>
#include <string>

namespace sylvane {

// The items of the form's lists: Republican months 1 to 13 (Windows-1252),
// Republican years "I" to "XIV" (index 1 to 14); the Gregorian years 1792
// to 1805 are the indexes 1 to 14.
const char* MoisRepublicain(int mois);
std::string AnneeRepublicaine(int index);
constexpr int kPremiereAnneeGregorienne = 1792;

// What the form sets: day, month index and year index of the other side,
// or a message number (726 day, 728 month, 729 year) and nothing set.
// A year index outside the list (0 before the Republic, 15 past 1805) means
// that the form leaves its year list as it was.
struct DateFormulaire {
    int jour = 0;
    int mois = 0;
    int annee = 0;
    int message = 0;
    bool operator==(const DateFormulaire&) const = default;
};

// CmdGR: Gregorian day, month 1-12, year index 1-14 (1792-1805) to the
// Republican day, month 1-13 and year index.
DateFormulaire Calendrier_GregorienVersRepublicain(int jour, int mois, int annee);
// CmdRG: Republican day 1-30, month 1-13, year index 1-14 to the Gregorian
// day, month and year index.
DateFormulaire Calendrier_RepublicainVersGregorien(int jour, int mois, int annee);

// Exact arithmetic: day 1 Vendémiaire I is 22 September 1792; every month
// has 30 days and the complementary days number 5, or 6 in a leap
// ("sextile") year. Romme's rule: a year is sextile when divisible by 4,
// but not by 100 unless by 400, and not by 4000. The historical rule took
// years III, VII, XI and XV as sextile and Romme's from XX on.
enum class RegleSextile { Romme, Historique };
bool EstSextile(int annee, RegleSextile regle = RegleSextile::Romme);

struct DateRepublicaine {
    int jour = 0;  // 1-30 (1-6 for the complementary days)
    int mois = 0;  // 1-13
    int annee = 0; // 1 for year I
    bool operator==(const DateRepublicaine&) const = default;
};

// Day number from 30 December 1899 (as Conv_DateSerie) of a Republican
// date, or nothing if it does not exist.
std::optional<long> RepublicainVersSerie(const DateRepublicaine& d,
                                         RegleSextile regle = RegleSextile::Romme);
// The Republican date of a day number, or nothing before 1 Vendémiaire I.
std::optional<DateRepublicaine> SerieVersRepublicain(long serie,
                                                     RegleSextile regle = RegleSextile::Romme);

} // namespace sylvane
