#include "text/republicain.h"

#include "text/calendrier.h"

namespace sylvane {
namespace {

bool dans(int y, std::initializer_list<int> l) {
    for (int x : l)
        if (x == y) return true;
    return false;
}

// Step 1 of CmdGR: the offset of a Gregorian month and year index.
int decalageGR(int m, int y) {
    const bool a = dans(y, {2, 3, 4, 6, 7, 8}), b = dans(y, {5, 9, 10, 11, 12, 14});
    const bool c = dans(y, {1, 2, 3, 5, 6, 7}), d = dans(y, {4, 8, 9, 10, 11, 13, 14});
    switch (m) {
    case 1: return a ? 11 : b ? 10 : y == 13 ? 9 : 0;
    case 2: return a ? 12 : b ? 11 : y == 13 ? 10 : 0;
    case 3: return y >= 2 && y <= 9 ? 10 : y >= 10 && y <= 14 ? 9 : 0;
    case 4: case 5: return y >= 2 && y <= 8 ? 11 : y >= 9 && y <= 14 ? 10 : 0;
    case 6: case 7: return y >= 2 && y <= 8 ? 12 : y >= 9 && y <= 14 ? 11 : 0;
    case 8: return y >= 2 && y <= 8 ? 13 : y >= 9 && y <= 14 ? 12 : 0;
    case 9: return y >= 1 && y <= 8 ? 14 : y >= 9 && y <= 14 ? 13 : 0;
    case 10: return c ? 9 : d ? 8 : y == 12 ? 7 : 0;
    case 11: case 12: return c ? 10 : d ? 9 : y == 12 ? 8 : 0;
    default: return 0;
    }
}

// Step 1 of CmdRG.
int decalageRG(int m, int y) {
    const bool huitOnze = y >= 8 && y <= 11;
    const bool huitTreize = y >= 8 && y <= 13;
    switch (m) {
    case 1: case 2: return y == 12 ? 23 : huitOnze || y == 13 || y == 14 ? 22 : 21;
    case 3: case 4: return y == 12 ? 22 : y == 4 || huitOnze || y == 13 || y == 14 ? 21 : 20;
    case 5: return y == 12 ? 21 : y == 4 || huitOnze || y == 13 ? 20 : 19;
    case 6: return y == 12 ? 20 : y == 4 || huitOnze || y == 13 ? 19 : 18;
    case 7: return huitTreize ? 21 : 20;
    case 8: case 9: return huitTreize ? 20 : 19;
    case 10: case 11: return huitTreize ? 19 : 18;
    case 12: return huitTreize ? 18 : 17;
    case 13: return huitTreize ? 17 : 16;
    default: return 0;
    }
}

long debutAnneeUne() {
    static const long s = JourSerie({22, 9, 1792});
    return s;
}

// Days from 1 Vendémiaire I to 1 Vendémiaire of year `a` (a >= 1).
long joursAvant(int a, RegleSextile regle) {
    const long n = a - 1;
    if (regle == RegleSextile::Romme) return 365 * n + n / 4 - n / 100 + n / 400 - n / 4000;
    long j = 0;
    for (int x = 1; x < a; ++x) j += EstSextile(x, regle) ? 366 : 365;
    return j;
}

} // namespace

const char* MoisRepublicain(int mois) {
    static const char* const noms[] = {
        "Vend\xE9miaire", "Brumaire",  "Frimaire", "Niv\xF4se",  "Pluvi\xF4se",
        "Vent\xF4se",     "Germinal",  "Flor\xE9\x61l", "Prairial", "Messidor",
        "Thermidor",      "Fructidor", "Sans-culottide"};
    return mois >= 1 && mois <= 13 ? noms[mois - 1] : "";
}

std::string AnneeRepublicaine(int index) {
    static const char* const romains[] = {"I",   "II",  "III", "IV",   "V",   "VI",   "VII",
                                          "VIII", "IX", "X",   "XI",   "XII", "XIII", "XIV"};
    return index >= 1 && index <= 14 ? romains[index - 1] : "";
}

DateFormulaire Calendrier_GregorienVersRepublicain(int jour, int mois, int annee) {
    if (jour < 1 || jour > 31) return {0, 0, 0, 726};
    if (mois < 1 || mois > 12) return {0, 0, 0, 728};
    if (annee < 1 || annee > 14) return {0, 0, 0, 729};
    int d = jour + decalageGR(mois, annee), m = mois, y = annee;
    if (m > 9) ++m; // the gap of the complementary days
    if (d >= 31) {
        if (m != 9) {
            ++m;
            d -= 30;
        } else {
            const int c = y == 4 || y == 8 || y == 12 ? 6 : 5;
            if (d > 30 + c) {
                m = 11;
                d -= 30 + c;
            } else {
                d -= 30;
                m = 10;
            }
        }
    }
    m += 3;
    if (m > 13) {
        m -= 13;
        ++y;
    }
    return {d, m, y - 1, 0};
}

DateFormulaire Calendrier_RepublicainVersGregorien(int jour, int mois, int annee) {
    if (jour < 1 || jour > 30) return {0, 0, 0, 726};
    if (mois < 1 || mois > 13) return {0, 0, 0, 728};
    if (annee < 1 || annee > 14) return {0, 0, 0, 729};
    int d = jour + decalageRG(mois, annee), m = mois + 8, y = annee;
    if (m > 12) {
        m -= 12;
        ++y;
    }
    int longueur = 31;
    if (m == 4 || m == 6 || m == 9 || m == 11) longueur = 30;
    // y 9 is 1800: the table takes it as a leap year.
    if (m == 2) longueur = y == 5 || y == 9 || y == 13 ? 29 : 28;
    if (d > longueur) {
        d -= longueur;
        if (++m > 12) {
            m = 1;
            ++y;
        }
    }
    return {d, m, y, 0};
}

bool EstSextile(int a, RegleSextile regle) {
    if (regle == RegleSextile::Historique && a < 20) return a == 3 || a == 7 || a == 11 || a == 15;
    return a % 4 == 0 && (a % 100 != 0 || a % 400 == 0) && a % 4000 != 0;
}

std::optional<long> RepublicainVersSerie(const DateRepublicaine& d, RegleSextile regle) {
    if (d.annee < 1 || d.mois < 1 || d.mois > 13 || d.jour < 1) return std::nullopt;
    const int max = d.mois < 13 ? 30 : EstSextile(d.annee, regle) ? 6 : 5;
    if (d.jour > max) return std::nullopt;
    return debutAnneeUne() + joursAvant(d.annee, regle) + 30L * (d.mois - 1) + d.jour - 1;
}

std::optional<DateRepublicaine> SerieVersRepublicain(long serie, RegleSextile regle) {
    const long n = serie - debutAnneeUne();
    if (n < 0) return std::nullopt;
    int a = static_cast<int>(n * 400 / 146097) + 1; // close, never above
    while (a > 1 && joursAvant(a, regle) > n) --a;
    while (joursAvant(a + 1, regle) <= n) ++a;
    const long j = n - joursAvant(a, regle);
    return DateRepublicaine{static_cast<int>(j % 30) + 1, static_cast<int>(j / 30) + 1, a};
}

} // namespace sylvane
