#include "text/calendrier.h"

#include "text/messages.h"
#include "text/mots.h"

#include <string>
#include <vector>

namespace sylvane {
namespace {

// Days from 1 January 1970 of a proleptic Gregorian date (H. Hinnant).
long joursCivils(long y, long m, long d) {
    y -= m <= 2;
    const long era = (y >= 0 ? y : y - 399) / 400;
    const long yoe = y - era * 400;
    const long doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468;
}

const long kOrigine = joursCivils(1899, 12, 30);

// A number of one to `max` digits, nothing else.
int nombre(std::string_view s, std::size_t max) {
    if (s.empty() || s.size() > max) return -1;
    int v = 0;
    for (char c : s) {
        if (c < '0' || c > '9') return -1;
        v = v * 10 + (c - '0');
    }
    return v;
}

int mois(std::string_view s) {
    if (int n = nombre(s, 2); n >= 0) return n;
    static const char* const anglais[] = {"JANUARY", "FEBRUARY", "MARCH",     "APRIL",
                                          "MAY",     "JUNE",     "JULY",      "AUGUST",
                                          "SEPTEMBER", "OCTOBER", "NOVEMBER", "DECEMBER"};
    const std::string u = CleMot(s);
    for (int i = 0; i < 12; ++i) {
        const std::string_view a = anglais[i];
        if (u == a || u == a.substr(0, 3)) return i + 1;
        const std::string m = CleMot(Message(730 + i));
        if (!m.empty() && u == m) return i + 1;
    }
    return -1;
}

std::vector<std::string_view> coupe(std::string_view s, char sep) {
    std::vector<std::string_view> r;
    std::size_t debut = 0;
    for (;;) {
        auto p = s.find(sep, debut);
        r.push_back(s.substr(debut, p == std::string_view::npos ? p : p - debut));
        if (p == std::string_view::npos) return r;
        debut = p + 1;
    }
}

std::string_view trimVue(std::string_view s) {
    while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
    return s;
}

} // namespace

bool EstBissextile(int a) { return (a % 4 == 0 && a % 100 != 0) || a % 400 == 0; }

int JoursDuMois(int m, int a) {
    static const int jours[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (m < 1 || m > 12) return 0;
    return m == 2 && EstBissextile(a) ? 29 : jours[m - 1];
}

long JourSerie(const DateCivile& d) { return joursCivils(d.annee, d.mois, d.jour) - kOrigine; }

DateCivile DepuisJourSerie(long n) {
    long z = n + kOrigine + 719468;
    const long era = (z >= 0 ? z : z - 146096) / 146097;
    const long doe = z - era * 146097;
    const long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long mp = (5 * doy + 2) / 153;
    const long d = doy - (153 * mp + 2) / 5 + 1;
    const long m = mp < 10 ? mp + 3 : mp - 9;
    const long y = yoe + era * 400 + (m <= 2);
    return {static_cast<int>(d), static_cast<int>(m), static_cast<int>(y)};
}

int JourDeSemaine(const DateCivile& d) {
    // Day 0, 30 December 1899, was a Saturday.
    long n = (JourSerie(d) + 6) % 7;
    return static_cast<int>(n < 0 ? n + 7 : n);
}

std::optional<DateCivile> LitDateCalendrier(std::string_view texte, std::string_view format) {
    const char sep = texte.find('/') != std::string_view::npos ? '/' : ' ';
    auto parts = coupe(texte, sep);
    if (parts.size() != 3) return std::nullopt;
    for (auto& p : parts) p = trimVue(p);
    int ij, im, ia;
    if (format == "dd/mm/yyyy") ij = 0, im = 1, ia = 2;
    else if (format == "mm/dd/yyyy") im = 0, ij = 1, ia = 2;
    else if (format == "yyyy/mm/dd") ia = 0, im = 1, ij = 2;
    else if (format == "yyyy/dd/mm") ia = 0, ij = 1, im = 2;
    else if (format == "mm/yyyy/dd") im = 0, ia = 1, ij = 2;
    else return std::nullopt;
    DateCivile d;
    d.jour = nombre(parts[ij], 2);
    d.mois = mois(parts[im]);
    d.annee = parts[ia].size() >= 3 ? nombre(parts[ia], 4) : -1;
    if (d.annee < 100 || d.annee > 9999 || d.mois < 1 || d.mois > 12 || d.jour < 1 ||
        d.jour > JoursDuMois(d.mois, d.annee))
        return std::nullopt;
    return d;
}

} // namespace sylvane
