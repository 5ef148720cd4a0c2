// The calendar test of the date model: the proleptic Gregorian
// calendar for the years 100 to 9999, read in the system's date order.
#pragma once

#include <optional>
#include <string_view>

namespace sylvane {

struct DateCivile {
    int jour = 0;
    int mois = 0;
    int annee = 0;
};

bool EstBissextile(int annee);
int JoursDuMois(int mois, int annee);

// Day number counted from 30 December 1899 as day 0 (negative before it).
long JourSerie(const DateCivile& d);
// The inverse of JourSerie.
DateCivile DepuisJourSerie(long n);
// 0 for Sunday, 1 for Monday ... 6 for Saturday.
int JourDeSemaine(const DateCivile& d);

// The calendar test: `texte` holds three parts separated by "/" or by
// blanks, in the order `format` names ("dd/mm/yyyy", "mm/dd/yyyy",
// "yyyy/mm/dd", "yyyy/dd/mm", "mm/yyyy/dd"). Day and year are numbers; the
// month is a number, an English month name or its three-letter GEDCOM word,
// or a month name of the messages 730 to 741 (folded). Only years 100 to
// 9999 with three or four digits pass: the two-digit years that some systems
// expand are refused. Gives the date, or nothing if it does not exist.
std::optional<DateCivile> LitDateCalendrier(std::string_view texte, std::string_view format);

} // namespace sylvane
