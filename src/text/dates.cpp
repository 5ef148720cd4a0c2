#include "text/dates.h"

#include "text/calendrier.h"
#include "text/messages.h"
#include "text/mots.h"

#include <array>
#include <clocale>
#include <cstring>
#include <cstdlib>
#include <vector>

#if defined(__unix__) || defined(__APPLE__)
#include <langinfo.h>
#include <locale.h>
#define SYLVANE_LANGINFO 1
#endif

namespace sylvane {
namespace {

std::string& formatGlobal() {
    static std::string f = "dd/mm/yyyy";
    return f;
}

constexpr std::array<const char*, 12> kMoisGedcom = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                     "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};

bool estNumerique(std::string_view s) {
    if (s.empty()) return false;
    for (char c : s)
        if (c < '0' || c > '9') return false;
    return true;
}

bool jourDAbord(std::string_view f) { return f == "dd/mm/yyyy" || f == "yyyy/dd/mm"; }
bool moisDAbord(std::string_view f) { return f == "mm/dd/yyyy" || f == "yyyy/mm/dd"; }
bool anneeDevant(std::string_view f) { return f == "yyyy/mm/dd" || f == "yyyy/dd/mm"; }

std::string motPlie(int message) { return CleMot(Message(message)); }

// Replaces the first occurrence of `quoi` (not empty) by `par`.
void remplaceUneFois(std::string& s, std::string_view quoi, std::string_view par) {
    if (quoi.empty()) return;
    auto p = s.find(quoi);
    if (p != std::string::npos) s.replace(p, quoi.size(), par);
}

std::string entreBlancs(std::string_view mot) {
    std::string r = " ";
    r += mot;
    r += ' ';
    return r;
}

std::vector<std::string> coupe(std::string_view s, char sep) {
    std::vector<std::string> r;
    std::size_t debut = 0;
    for (;;) {
        auto p = s.find(sep, debut);
        r.emplace_back(s.substr(debut, p == std::string_view::npos ? p : p - debut));
        if (p == std::string_view::npos) return r;
        debut = p + 1;
    }
}

// The shared split of Conv_DateValide and Conv_DateSerie: the parts in
// calendar order joined by their separator, or "" where the Part builds no
// order (month-first systems, "mm/yyyy/dd").
std::string ordreCalendrier(std::string_view texte, std::string_view format, bool strict) {
    std::vector<std::string> p;
    char sep;
    if (texte.find('/') != std::string_view::npos) {
        sep = '/';
        p = coupe(texte, '/');
        for (auto& x : p) x = Trim(x);
    } else if (texte.find(' ') != std::string_view::npos || !strict) {
        sep = ' ';
        p = coupe(texte, ' ');
    } else {
        return {};
    }
    if (p.size() < 3) {
        if (strict) return {};
        p.resize(3);
    }
    if (!strict && p[2].size() > 4) p[2].resize(4);
    const std::string s(1, sep);
    if (format == "dd/mm/yyyy") return p[0] + s + p[1] + s + p[2];
    if (format == "yyyy/dd/mm") return p[2] + s + p[0] + s + p[1];
    if (format == "yyyy/mm/dd") return p[2] + s + p[1] + s + p[0];
    // The original compares a month-first order with "mm/yy/yyyy", which no
    // order equals: no date is ever valid on a month-first system.
    if (format == "mm/yy/yyyy") return p[1] + s + p[0] + s + p[2];
    return {};
}

char qualifiant(std::string_view jourMois) {
    const std::string_view q = jourMois.substr(0, 3);
    if (q == "BEF" || q == "BET") return '<';
    if (q == "AFT") return '>';
    if (q == "ABT" || q == "EST" || q == "CAL") return '~';
    return '\0';
}

std::string avecQualifiant(std::string_view jourMois, std::string_view annee) {
    std::string r;
    if (char q = qualifiant(jourMois)) r += q;
    r += annee;
    return r;
}

std::string dateLongueEntiere(std::string_view jourMois, std::string_view annee) {
    return Trim(Conv_DateLongue(jourMois) + " " + std::string(annee));
}

} // namespace

const std::string& FormatDate() { return formatGlobal(); }
void DefinitFormatDate(std::string_view format) { formatGlobal() = std::string(format); }

std::string EssaiDepuisMotif(std::string_view motif) {
    // The system reads "01/02/03" in its own order: the first field of its
    // pattern gets 01, the second 02, the third 03. Printing that date as
    // "ddmmyy" gives the test string of Conv_FormatDate.
    std::string ordre; // 'd', 'm', 'y' in the order of the pattern
    for (std::size_t i = 0; i + 1 < motif.size(); ++i) {
        if (motif[i] != '%') continue;
        char c = motif[++i];
        if (c == 'E' || c == 'O' || c == '-' || c == '_' || c == '0' || c == '^' || c == '#') {
            if (i + 1 >= motif.size()) break;
            c = motif[++i];
        }
        switch (c) {
        case 'd': case 'e': ordre += 'd'; break;
        case 'm': case 'b': case 'B': case 'h': ordre += 'm'; break;
        case 'y': case 'Y': case 'C': case 'G': ordre += 'y'; break;
        case 'D': ordre += "mdy"; break;
        case 'F': ordre += "ymd"; break;
        default: break;
        }
    }
    if (ordre.size() != 3) return {};
    std::string jour, mois, annee;
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string valeur = "0" + std::to_string(i + 1);
        (ordre[i] == 'd' ? jour : ordre[i] == 'm' ? mois : annee) = valeur;
    }
    if (jour.empty() || mois.empty() || annee.empty()) return {};
    return jour + mois + annee;
}

std::string FormatDepuisEssai(std::string_view essai) {
    if (essai == "010203") return "dd/mm/yyyy";
    if (essai == "030201") return "yyyy/mm/dd";
    if (essai == "030102") return "yyyy/dd/mm";
    if (essai == "020103") return "mm/dd/yyyy";
    if (essai == "020301") return "mm/yyyy/dd";
    return {};
}

std::string EssaiDateSysteme() {
#ifdef SYLVANE_LANGINFO
    const char* nom = nullptr;
    for (const char* var : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* v = std::getenv(var);
        if (v && *v) {
            nom = v;
            break;
        }
    }
    if (!nom) return {};
    const std::string n = nom;
    if (n == "C" || n == "POSIX" || n.rfind("C.", 0) == 0) return {};
    locale_t loc = newlocale(LC_TIME_MASK, nom, static_cast<locale_t>(0));
    if (loc == static_cast<locale_t>(0)) return {};
    std::string motif = nl_langinfo_l(D_FMT, loc);
    freelocale(loc);
    return EssaiDepuisMotif(motif);
#else
    return {};
#endif
}

void Conv_FormatDate() {
    const std::string f = FormatDepuisEssai(EssaiDateSysteme());
    if (!f.empty()) DefinitFormatDate(f);
}

std::string Conv_PremierEnUn(std::string_view texte) {
    const std::string premier = Message(848);
    std::string t = " " + std::string(texte);
    if (!premier.empty()) {
        const std::string cherche = entreBlancs(premier);
        for (auto p = t.find(cherche); p != std::string::npos; p = t.find(cherche, p))
            t.replace(p, cherche.size(), " 1 ");
    }
    return t.substr(1);
}

std::string Conv_EchangeJourMois(std::string_view texte, std::string_view format) {
    const auto barre = texte.find('/');
    if (barre == std::string_view::npos || jourDAbord(format)) return std::string(texte);
    if (moisDAbord(format))
        return std::string(texte.substr(barre + 1)) + "/" + std::string(texte.substr(0, barre));
    if (format == "mm/yyyy/dd") return {};
    return std::string(texte);
}

std::string Conv_DateSaisie(std::string_view texte, std::string_view format) {
    const std::string saisi = Trim(texte);
    std::string u = CleMot(Conv_PremierEnUn(saisi));

    // 2: a day-first date with a month name.
    if (auto blanc = u.find(' '); blanc != std::string::npos && estNumerique(u.substr(0, blanc))) {
        const std::string jour = u.substr(0, blanc);
        const std::string reste = u.substr(blanc + 1);
        const auto b2 = reste.find(' ');
        const std::string mois = reste.substr(0, b2);
        const std::string annee = b2 == std::string::npos ? std::string() : reste.substr(b2 + 1);
        int m = 0;
        for (int i = 0; i < 12 && m == 0; ++i) {
            const std::string nom = motPlie(730 + i);
            if (!nom.empty() && nom == mois) m = i + 1;
        }
        if (m != 0) {
            const std::string dm = jour + "/" + std::to_string(m);
            const std::string a = annee.empty() ? "2000" : annee;
            std::string essai;
            if (format == "dd/mm/yyyy" || format == "mm/dd/yyyy")
                essai = Conv_EchangeJourMois(dm, format) + "/" + a;
            else if (anneeDevant(format))
                essai = a + "/" + Conv_EchangeJourMois(dm, format);
            if (!essai.empty() && LitDateCalendrier(essai, format))
                return annee.empty() ? dm : dm + "/" + annee;
        }
    }

    // 3: the words, each once, at its first occurrence, also inside a word.
    for (int i = 0; i < 12; ++i) remplaceUneFois(u, motPlie(730 + i), kMoisGedcom[i]);
    remplaceUneFois(u, motPlie(830), "AFT");
    remplaceUneFois(u, motPlie(831), "BEF");
    remplaceUneFois(u, motPlie(828), "ABT");
    remplaceUneFois(u, motPlie(832), "EST");
    remplaceUneFois(u, motPlie(833), "BET");
    // The "and" word alone is delimited: a blank in front and a blank or
    // the end behind, so that the "ET" of a "BET" just written is not hit
    // and "ENTRE 1880 ET" (the year cut off) still reads "BET 1880 AND".
    if (const std::string et = motPlie(834); !et.empty()) {
        const std::string cherche = " " + et;
        for (auto p = u.find(cherche); p != std::string::npos; p = u.find(cherche, p + 1)) {
            const auto fin = p + cherche.size();
            if (fin == u.size() || u[fin] == ' ') {
                u.replace(p, cherche.size(), " AND");
                break;
            }
        }
    }
    remplaceUneFois(u, motPlie(871), "CAL");

    // 4: an unknown text keeps its own case and accents.
    if (u == CleMot(saisi)) return saisi;
    return u;
}

std::string Conv_DateLongue(std::string_view jourMois) {
    std::string t = entreBlancs(jourMois);
    if (const auto barre = t.find('/'); barre != std::string::npos) {
        std::string jour = t.substr(0, barre);
        if (auto p = jour.find_first_not_of(' '); p != std::string::npos && jour[p] == '0')
            jour.erase(p, 1);
        std::size_t i = barre + 1;
        while (i < t.size() && t[i] == ' ') ++i;
        int mois = 0;
        while (i < t.size() && t[i] >= '0' && t[i] <= '9' && mois < 100) mois = mois * 10 + (t[i++] - '0');
        // A month number outside 1 to 12 would name another message: the
        // text is then kept, as for zero.
        if (mois < 1 || mois > 12) return std::string(jourMois);
        t = jour + " " + Message(729 + mois);
    } else {
        struct Mot {
            const char* gedcom;
            int message;
        };
        static const Mot mots[] = {
            {" JAN ", 730}, {" FEB ", 731}, {" MAR ", 732}, {" APR ", 733}, {" MAY ", 734},
            {" MAI ", 734}, {" JUN ", 735}, {" JUL ", 736}, {" AUG ", 737}, {" SEP ", 738},
            {" OCT ", 739}, {" NOV ", 740}, {" DEC ", 741}, {" BEF ", 831}, {" AFT ", 830},
            {" ABT ", 828}, {" BET ", 833}, {" AND ", 834}, {" EST ", 832}, {" CAL ", 871}};
        for (const Mot& m : mots) {
            const std::string mot = Message(m.message);
            if (!mot.empty()) remplaceUneFois(t, m.gedcom, entreBlancs(mot));
        }
    }
    if (t.compare(0, 3, " 1 ") == 0) {
        if (const std::string premier = Message(848); !premier.empty())
            t.replace(0, 3, premier + " ");
    }
    return Trim(t);
}

std::string Conv_DateAffichage(std::string_view texte) {
    std::string t = " " + std::string(texte);
    // 1: before Christ.
    if (t.size() >= 2 && t.compare(t.size() - 2, 2, "BC") == 0) {
        t.resize(t.size() - 2);
        while (!t.empty() && t.back() == ' ') t.pop_back();
        const auto p = t.rfind(' ');
        t.insert(p == std::string::npos ? 0 : p + 1, "-");
        if (t.empty() || t[0] != ' ') t.insert(0, " ");
    }
    std::string u = CleMot(t);

    // 3: the tokens in their priority, each with the word that replaces it.
    struct Jeton {
        std::string cle, mot;
    };
    std::vector<Jeton> jetons;
    auto ajoute = [&jetons](std::string cle, const std::string& mot) {
        // A missing message has no word to write: its token stays as it is.
        if (Trim(cle).empty() || mot.empty()) return;
        std::string rempl = entreBlancs(mot);
        if (rempl == cle) return; // would be found again for ever
        jetons.push_back({std::move(cle), std::move(rempl)});
    };
    static const char* const anglais[] = {" JANUARY ", " FEBRUARY ", " MARCH ",     " APRIL ",
                                          " MAY ",     " JUNE ",     " JULY ",      " AUGUST ",
                                          " SEPTEMBER ", " OCTOBER ", " NOVEMBER ", " DECEMBER "};
    for (int i = 0; i < 12; ++i) ajoute(anglais[i], Message(730 + i));
    for (int i = 0; i < 12; ++i) {
        ajoute(entreBlancs(motPlie(730 + i)), Message(730 + i));
        if (i != 4) ajoute(entreBlancs(kMoisGedcom[i]), Message(730 + i));
    }
    for (auto [gedcom, n] : {std::pair{"ABT", 828}, {"AFT", 830}, {"BEF", 831}, {"EST", 832},
                             {"CAL", 871}, {"BET", 833}}) {
        ajoute(entreBlancs(gedcom), Message(n));
        ajoute(entreBlancs(motPlie(n)), Message(n));
    }
    ajoute(" AND ", Message(834));
    ajoute(entreBlancs(motPlie(848)), Message(848));
    ajoute(entreBlancs(motPlie(834)), Message(834));
    ajoute(" 01 ", Message(848));
    for (char c = '2'; c <= '9'; ++c) ajoute(std::string(" 0") + c + " ", std::string(1, c));

    // Each round replaces one token; the cap only guards against message
    // words that fold back into a token of another message.
    for (std::size_t tour = 0; tour < 10000; ++tour) {
        bool trouve = false;
        for (const Jeton& j : jetons) {
            const auto p = u.find(j.cle);
            if (p == std::string::npos) continue;
            if (j.cle == " EST " && t.compare(p, 5, " est ") == 0) return t.substr(1);
            t.replace(p, j.cle.size(), j.mot);
            u.replace(p, j.cle.size(), j.mot);
            trouve = true;
            break;
        }
        if (!trouve) break;
    }
    return t.substr(1);
}

std::string Conv_DateGedcom(std::string_view texte) {
    std::string t(texte);
    const auto blanc = t.rfind(' ');
    const std::size_t debut = blanc == std::string::npos ? 0 : blanc + 1;
    if (debut < t.size() && t[debut] == '-') {
        t.erase(debut, 1);
        t += " BC";
    }
    std::string u = " " + CleMot(t);
    struct Mot {
        const char* cle;
        const char* gedcom;
    };
    static const Mot mots[] = {
        {" JANVIER ", " JAN "},   {" JANUARY ", " JAN "},   {" FEVRIER ", " FEB "},
        {" FEBRUARY ", " FEB "},  {" MARS ", " MAR "},      {" MARCH ", " MAR "},
        {" AVRIL ", " APR "},     {" APRIL ", " APR "},     {" MAI ", " MAY "},
        {" JUIN ", " JUN "},      {" JUNE ", " JUN "},      {" JUILLET ", " JUL "},
        {" JULY ", " JUL "},      {" AOUT ", " AUG "},      {" AUGUST ", " AUG "},
        {" SEPTEMBRE ", " SEP "}, {" SEPTEMBER ", " SEP "}, {" OCTOBRE ", " OCT "},
        {" OCTOBER ", " OCT "},   {" NOVEMBRE ", " NOV "},  {" NOVEMBER ", " NOV "},
        {" DECEMBRE ", " DEC "},  {" DECEMBER ", " DEC "},  {" VERS ", " ABT "},
        {" ABOUT ", " ABT "},     {" APRES ", " AFT "},     {" AFTER ", " AFT "},
        {" AVANT ", " BEF "},     {" BEFORE ", " BEF "},    {" ESTIMEE ", " EST "},
        {" ESTIMATED ", " EST "}, {" CALCULEE ", " CAL "},  {" CALCULATED ", " CAL "},
        {" ENTRE ", " BET "},     {" BETWEEN ", " BET "},   {" ET ", " AND "},
        {" 1ER ", " 1 "},         {" 1ST ", " 1 "}};
    for (;;) {
        bool trouve = false;
        for (const Mot& m : mots) {
            const std::string_view cle = m.cle;
            if (auto p = u.find(cle); p != std::string::npos) {
                u.replace(p, cle.size(), m.gedcom);
                trouve = true;
                break;
            }
        }
        if (!trouve) break;
    }
    return u.substr(1);
}

bool Conv_DateValide(std::string_view texte, std::string_view format) {
    const std::string ordre = ordreCalendrier(texte, format, true);
    return !ordre.empty() && LitDateCalendrier(ordre, format).has_value();
}

long Conv_DateSerie(std::string_view texte, std::string_view format) {
    const std::string ordre = ordreCalendrier(texte, format, false);
    if (ordre.empty()) return 0;
    const auto d = LitDateCalendrier(ordre, format);
    return d ? JourSerie(*d) : 0;
}

std::string Conv_JourSemaine(std::string_view texte, std::string_view format) {
    if (texte.size() < 6 || texte[0] < '0' || texte[0] > '9') return {};
    const std::string t = Conv_PremierEnUn(texte);
    if (t.size() < 4) return {};
    const std::string annee = Trim(std::string_view(t).substr(t.size() - 4));
    if (!estNumerique(annee)) return {};
    const std::string reste = Conv_EchangeJourMois(
        Conv_DateSaisie(std::string_view(t).substr(0, t.size() - 4), format), format);
    const std::string essai = anneeDevant(format) ? annee + "/" + reste : reste + "/" + annee;
    const auto d = LitDateCalendrier(essai, format);
    if (!d) return {};
    static const int messages[] = {604, 598, 599, 600, 601, 602, 603};
    return Message(messages[JourDeSemaine(*d)]) + " ";
}

std::string Conv_AnneesVie(std::string_view jmN, std::string_view aN, std::string_view jmD,
                           std::string_view aD) {
    if (!aN.empty() && aD.empty()) return "o" + avecQualifiant(jmN, aN);
    if (aN.empty() && !aD.empty()) return "+" + avecQualifiant(jmD, aD);
    if (!aN.empty() && !aD.empty()) return avecQualifiant(jmN, aN) + "-" + avecQualifiant(jmD, aD);
    return {};
}

std::string Conv_AnneesVieLongues(std::string_view jmN, std::string_view aN,
                                  std::string_view jmD, std::string_view aD) {
    const bool naissance = !aN.empty() || !jmN.empty();
    const bool deces = !aD.empty() || !jmD.empty();
    if (naissance && !deces) return " (o" + dateLongueEntiere(jmN, aN) + ")";
    if (!naissance && deces) return " (+" + dateLongueEntiere(jmD, aD) + ")";
    if (naissance && deces)
        return " (" + dateLongueEntiere(jmN, aN) + " - " + dateLongueEntiere(jmD, aD) + ")";
    return {};
}

std::string Conv_DateResume(std::string_view jourMois, std::string_view annee,
                            std::string_view format) {
    if (jourMois.empty()) return std::string(annee);
    const std::string longue = dateLongueEntiere(jourMois, annee);
    if (!Conv_JourSemaine(longue, format).empty())
        return std::string(jourMois) + "/" + std::string(annee);
    return longue;
}

DateTenue Conv_DateEtrangere(std::string_view texte, std::string_view format) {
    // GEDCOM writes the era "B.C."; the display form knows it as "BC".
    std::string t = Trim(texte);
    for (const char* era : {"B.C.", "B.C", "BCE"}) {
        const std::size_t n = std::strlen(era);
        if (t.size() >= n && t.compare(t.size() - n, n, era) == 0) {
            t.replace(t.size() - n, n, "BC");
            break;
        }
    }
    const std::string a = Conv_DateAffichage(t);
    if (a.size() < 4) return {"", Trim(a)};
    // A year before Christ of four digits does not fit the four characters
    // of a year: the whole date stays in the date text, whose export gives
    // it back, and the year is left unknown rather than cut.
    if (a.size() >= 5 && a[a.size() - 5] == '-' &&
        (a.size() == 5 || a[a.size() - 6] == ' '))
        return {Trim(a), ""};
    DateTenue d;
    d.annee = Trim(std::string_view(a).substr(a.size() - 4));
    if (a.size() > 4) d.jourMois = Conv_DateSaisie(std::string_view(a).substr(0, a.size() - 4), format);
    return d;
}

std::string Conv_DateVersGedcom(std::string_view jourMois, std::string_view annee) {
    return Conv_DateGedcom(dateLongueEntiere(jourMois, annee));
}

std::map<int, std::string> MessagesDatesFrancais() {
    return {{730, "janvier"},   {731, "f\xE9vrier"},  {732, "mars"},       {733, "avril"},
            {734, "mai"},       {735, "juin"},        {736, "juillet"},    {737, "ao\xFBt"},
            {738, "septembre"}, {739, "octobre"},     {740, "novembre"},   {741, "d\xE9" "cembre"},
            {828, "vers"},      {830, "apr\xE8s"},    {831, "avant"},      {832, "estim\xE9" "e"},
            {833, "entre"},     {834, "et"},          {871, "calcul\xE9" "e"}, {848, "1er"},
            {598, "lundi"},     {599, "mardi"},       {600, "mercredi"},   {601, "jeudi"},
            {602, "vendredi"},  {603, "samedi"},      {604, "dimanche"}};
}

} // namespace sylvane
