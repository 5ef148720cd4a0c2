// The forms of the notes of persons and marriages: the keyword line, the
// rubric lines of the sheet slots, and the free text behind them.
#include "store/base.h"

#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"

#include <cctype>

namespace sylvane {
namespace {

constexpr std::string_view kCrLf = "\r\n";

struct NoteLue {
    TableValeursRubriques table;
    std::string reste; // free text, once the rubric lines are taken out
};

// Splits "12/05/1790" or "12 5 1790" into its three parts.
std::vector<std::string> Parties(const std::string& date) {
    std::vector<std::string> p;
    const char sep = date.find('/') != std::string::npos ? '/' : ' ';
    std::size_t debut = 0;
    for (;;) {
        auto fin = date.find(sep, debut);
        p.push_back(Trim(date.substr(debut, fin == std::string::npos ? fin : fin - debut)));
        if (fin == std::string::npos) break;
        debut = fin + 1;
    }
    return p;
}

std::string SansZeros(const std::string& s) {
    std::size_t i = 0;
    while (i + 1 < s.size() && s[i] == '0')
        ++i;
    return s.substr(i);
}

// The rubric values of a note for the slots of the sheet. `avecDrapeau`:
// the date goes to the value row of a slot without a date (persons only).
NoteLue LitRubriques(const std::string& note, const std::array<SlotRubrique, 10>& slots,
                     bool avecDrapeau) {
    NoteLue r;
    auto crlf = note.find(kCrLf);
    if (crlf == std::string::npos || crlf + 2 >= note.size()) {
        r.table.resize(10);
        return r;
    }
    std::string texte = note.substr(crlf + 2);
    while (texte.compare(0, 2, kCrLf) == 0)
        texte.erase(0, 2);
    while (texte.size() >= 2 && texte.compare(texte.size() - 2, 2, kCrLf) == 0)
        texte.resize(texte.size() - 2);
    texte += kCrLf;
    std::size_t nb = 0;
    while (nb < slots.size() && slots[nb].symbole != ' ' && slots[nb].symbole != '\0')
        ++nb;
    r.table.resize(nb);
    for (std::size_t i = 0; i < nb; ++i) {
        const SlotRubrique& s = slots[i];
        if (s.tag.empty()) continue;
        auto p = texte.find(s.tag + " ");
        if (p == std::string::npos) continue;
        auto lf = texte.find('\n', p);
        std::size_t finLigne = lf == std::string::npos ? texte.size() : lf;
        std::string ligne = texte.substr(p, finLigne - p);
        if (!ligne.empty() && ligne.back() == '\r') ligne.pop_back();
        texte.erase(p, lf == std::string::npos ? std::string::npos : lf + 1 - p);
        std::string suite = ligne.substr(s.tag.size() + 1);
        ValeurRubrique& v = r.table[i];
        std::string date = suite;
        auto sym = suite.find(s.symbole);
        if (sym != std::string::npos) {
            v.valeur = DesPoints(Trim(suite.substr(sym + 1)));
            date = sym >= 1 ? suite.substr(0, sym - 1) : std::string();
        }
        date = Trim(date);
        if (!date.empty() && (s.drapeau == '1' || !avecDrapeau)) {
            if (std::isdigit(static_cast<unsigned char>(date[0])) && Conv_DateValide(date)) {
                auto parts = Parties(date);
                v.annee = parts.size() > 2 ? parts[2] : "";
                v.jourMois =
                    SansZeros(parts[0]) + "/" + SansZeros(parts.size() > 1 ? parts[1] : "");
            } else {
                std::size_t n = date.size() >= 4 ? date.size() - 4 : 0;
                v.annee = Trim(date.substr(n));
                v.jourMois = Trim(date.substr(0, n));
            }
        } else if (!date.empty() && v.valeur.empty()) {
            v.valeur = date;
        }
        if (!v.jourMois.empty() && v.jourMois.back() == '/') v.jourMois.pop_back();
        if (!v.annee.empty() && v.annee.front() == '/') v.annee.erase(0, 1);
    }
    r.reste = texte;
    return r;
}

std::string Corps(const NoteLue& n) {
    std::string t = n.reste;
    while (t.compare(0, 2, kCrLf) == 0)
        t.erase(0, 2);
    return Trim(t);
}

// The word behind a mark, up to a blank or CR, with its dots made blanks.
std::string MotApres(const std::string& texte, char marque) {
    auto p = texte.find(marque);
    if (p == std::string::npos) return "";
    auto fin = texte.find_first_of(" \r", p + 1);
    return DesPoints(texte.substr(p + 1, fin == std::string::npos ? fin : fin - p - 1));
}

std::string PremiereLigne(const std::string& note) {
    return note.substr(0, note.find(kCrLf));
}

} // namespace

TableValeursRubriques Base::RubriquesNote(std::uint32_t n) {
    return LitRubriques(LitNote(n), entete_.rubriquesPersonne, true).table;
}

TableValeursRubriques Base::RubriquesMariage(std::uint32_t m) {
    return LitRubriques(LitNoteMariage(m), entete_.rubriquesMariage, false).table;
}

std::string Base::CorpsNote(std::uint32_t n) {
    return Corps(LitRubriques(LitNote(n), entete_.rubriquesPersonne, true));
}

std::string Base::CorpsNoteMariage(std::uint32_t m) {
    return Corps(LitRubriques(LitNoteMariage(m), entete_.rubriquesMariage, false));
}

std::string Base::LieuNaiss(std::uint32_t n) {
    return MotApres(LitNote(n), '$');
}
std::string Base::LieuDeces(std::uint32_t n) {
    return MotApres(LitNote(n), '~');
}

std::string Base::DateMariage(std::uint32_t m) {
    std::string l = PremiereLigne(LitNoteMariage(m));
    auto a = l.find('@');
    return Trim(a == std::string::npos ? l : l.substr(0, a));
}

std::string Base::LieuMariage(std::uint32_t m) {
    return MotApres(PremiereLigne(LitNoteMariage(m)), '@');
}

std::string Base::TexteDateMariage(std::uint32_t m) { return Conv_DateLongue(DateMariage(m)); }

std::string Base::LigneMariage(std::uint32_t m) {
    std::string date = DateMariage(m), an = LitAnMariage(m);
    std::string r = "\xD7";
    r += date.empty() ? Trim(an) : Conv_DateLongue(date) + " " + an;
    return r + " " + LieuMariage(m);
}

std::string Base::TexteDateNaiss(std::uint32_t n) { return Conv_DateLongue(LitDateNaiss(n)); }
std::string Base::TexteDateDeces(std::uint32_t n) { return Conv_DateLongue(LitDateDeces(n)); }

std::string Base::NomLong(std::uint32_t n) {
    std::string r = NomComplet(n);
    auto partie = [&r](const char* signe, const std::string& date, const std::string& an,
                       const std::string& lieu) {
        if (an.empty() && date.empty() && lieu.empty()) return;
        r += signe;
        r += date.empty() ? an : Conv_DateLongue(date) + " " + an;
        if (!lieu.empty()) r += " " + lieu;
    };
    partie(" \xB0", LitDateNaiss(n), Trim(LitAnNaiss(n)), LieuNaiss(n));
    partie(" \x86", LitDateDeces(n), Trim(LitAnDeces(n)), LieuDeces(n));
    return r;
}

std::string Base::NotesMariages(std::uint32_t n) {
    std::string r;
    const bool seul = MariageNo(n, 2) == 0;
    for (int i = 1; i <= 200; ++i) {
        std::uint32_t m = MariageNo(n, i);
        if (m == 0) break;
        r += Message(918);
        if (!seul) {
            r += ' ';
            r += Trim(LitAnMariage(m));
        }
        r += " : ";
        r += LitNoteMariage(m);
        r += kCrLf;
    }
    return r;
}

std::vector<std::uint32_t> Base::Mariages(std::uint32_t n) {
    std::vector<std::uint32_t> v;
    for (int i = 1; i <= 200; ++i) {
        std::uint32_t m = MariageNo(n, i);
        if (m == 0) break;
        v.push_back(m);
    }
    return v;
}

std::string Base::NoteAvecMariages(std::uint32_t n) {
    std::string r = LitNote(n);
    for (std::uint32_t m : Mariages(n)) {
        r += kCrLf;
        r += LitNoteMariage(m);
    }
    return r;
}

bool Base::EstTagRubrique(const std::string& tag) const {
    for (const auto& s : entete_.rubriquesPersonne) {
        if (s.symbole == ' ' || s.symbole == '\0') break;
        if (s.tag == tag) return true;
    }
    return false;
}

std::string Base::ValeurRubriquePersonne(std::uint32_t n, const std::string& tag) {
    for (std::size_t i = 0; i < entete_.rubriquesPersonne.size(); ++i) {
        const auto& s = entete_.rubriquesPersonne[i];
        if (s.symbole == ' ' || s.symbole == '\0') break;
        if (s.tag != tag) continue;
        auto t = RubriquesNote(n);
        return i < t.size() ? t[i].valeur : "";
    }
    return "";
}

} // namespace sylvane
