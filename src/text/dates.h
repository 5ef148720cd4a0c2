// The date model: a date is text, held as a `JourMois` part and
// a four-character `Annee`; this module reads what the user types, writes
// the display and GEDCOM forms, and brings in the calendar where a date is
// complete. All text is Windows-1252 bytes; the words of the user's
// language come from the messages (730 to 741 the months, 828 about, 830
// after, 831 before, 832 estimated, 833 between, 834 and, 871 calculated,
// 848 the first of a month, 598 to 604 the week-days).
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace sylvane {

// The process-wide date order `FormatDate`: one of "dd/mm/yyyy",
// "mm/dd/yyyy", "yyyy/dd/mm", "yyyy/mm/dd", "mm/yyyy/dd". It starts as
// "dd/mm/yyyy"; `Conv_FormatDate` sets it from the system at start-up, and
// tests set it with `DefinitFormatDate`. Every routine that depends on it
// also takes it as an explicit argument, defaulting to this value.
const std::string& FormatDate();
void DefinitFormatDate(std::string_view format);

// How the system prints the date "01/02/03" in the pattern "ddmmyy"
// ("010203" for a day-first system), or "" when the platform gives no short
// date order. On POSIX this reads nl_langinfo(D_FMT) of LC_TIME from the
// environment; the "C" and "POSIX" locales count as giving none.
std::string EssaiDateSysteme();
// The Part's table from that print to a date order: "010203" gives
// "dd/mm/yyyy" ... ; anything else gives "".
std::string FormatDepuisEssai(std::string_view essai);
// The same for a strftime pattern such as "%d/%m/%Y" (exposed for tests).
std::string EssaiDepuisMotif(std::string_view motif);
// Sets FormatDate from the system; an unknown order leaves it unchanged.
void Conv_FormatDate();

// Every written "first of the month" (message 848, between blanks) becomes 1.
std::string Conv_PremierEnUn(std::string_view texte);
// "a/b" swapped to "b/a" on a month-first order; "" under "mm/yyyy/dd".
std::string Conv_EchangeJourMois(std::string_view texte,
                                 std::string_view format = FormatDate());
// What the user typed, turned into held form.
std::string Conv_DateSaisie(std::string_view texte, std::string_view format = FormatDate());
// A `JourMois` text in words of the user's language.
std::string Conv_DateLongue(std::string_view jourMois);
// A GEDCOM-shaped date in words of the user's language.
std::string Conv_DateAffichage(std::string_view texte);
// A date in French or English words turned into GEDCOM shape.
std::string Conv_DateGedcom(std::string_view texte);
// True if the text (day first) is a complete date that exists. Never true
// on a month-first order, as the Part requires.
bool Conv_DateValide(std::string_view texte, std::string_view format = FormatDate());
// Day number from 30 December 1899 of a text that Conv_DateValide passed
// (0 for any other text).
long Conv_DateSerie(std::string_view texte, std::string_view format = FormatDate());
// Name of the week-day and a blank, or "".
std::string Conv_JourSemaine(std::string_view texte, std::string_view format = FormatDate());

// Short life span for lists: "o1880", "+~1950", "<1880-1950" ...
std::string Conv_AnneesVie(std::string_view jourMoisNaissance, std::string_view anneeNaissance,
                           std::string_view jourMoisDeces, std::string_view anneeDeces);
// The reports' variant with whole dates: " (o12 janvier 1880)", " (+1950)",
// " (12 janvier 1880 - 1950)", or "".
std::string Conv_AnneesVieLongues(std::string_view jourMoisNaissance,
                                  std::string_view anneeNaissance, std::string_view jourMoisDeces,
                                  std::string_view anneeDeces);
// One date of the one-line summary, shown behind " °" or " †": the year
// alone, "12/1/1880" for a real day, else the long date and the year.
std::string Conv_DateResume(std::string_view jourMois, std::string_view annee,
                            std::string_view format = FormatDate());

// A foreign date (GEDCOM import) split into held form.
struct DateTenue {
    std::string jourMois;
    std::string annee;
    bool operator==(const DateTenue&) const = default;
};
DateTenue Conv_DateEtrangere(std::string_view texte, std::string_view format = FormatDate());
// The GEDCOM text of a held date: Conv_DateGedcom of the long form and year.
std::string Conv_DateVersGedcom(std::string_view jourMois, std::string_view annee);

// The French words of the date messages (Windows-1252), for the tests and
// for programs that run without a message file.
std::map<int, std::string> MessagesDatesFrancais();

} // namespace sylvane
