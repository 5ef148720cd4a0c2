#include "exchange/gedcom_import.h"

#include "exchange/gedcom_export.h"

#include "kinship/boucles.h"
#include "store/table_tri.h"

#include "text/dates.h"
#include "text/messages.h"
#include "text/mots.h"
#include "text/tags.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sylvane {
namespace {

constexpr std::string_view kCrLf = "\r\n";
// The symbols offered for new rubrics, in the order of the editor.
constexpr std::string_view kSymboles = "|\xB6$@~\\\xB0^%\xA4\xB2\xB5\xA3\xA7\xAC\xB1\xB9\xBB\xD7\xF7\x87\x88\x8B\x95\x9B";

constexpr std::string_view kRubriquesPersonne[] = {
    "NPFX", "NICK", "SPFX", "NSFX", "GIVN", "SURN", "RESI", "CAST", "DSCR", "EDUC", "IDNO",
    "NATI", "NCHI", "NMR",  "OCCU", "PROP", "RELI", "SSN",  "TITL", "BURI", "CREM", "CHR",
    "BASM", "BARM", "BLES", "CHRA", "CONF", "FCOM", "ORDN", "NATU", "EMIG", "IMMI", "CENS",
    "PROB", "WILL", "GRAD", "RETI", "ADOP", "BAPL", "CONL", "ENDL", "SLGC", "ADDR", "PEDI",
    "MARS", "FACT", "EVEN"};
constexpr std::string_view kRubriquesMariage[] = {"MARB", "CENS", "MARC", "MARS", "MARL", "ENGA",
                                                  "DIV",  "DIVF", "ANUL", "NCHI", "RESI", "SLGS"};
// Tags that carry nothing the base keeps.
constexpr std::string_view kIgnores[] = {
    "DATA", "COPR", "CALN", "SIGN", "RIN",  "RFN",  "RESN", "QUAY", "ROLE", "PAGE", "TIME",
    "VERS", "GEDC", "FORM", "FILE", "LANG", "DEST", "CHAN", "FAMS", "FAMC", "SUBM", "ANCI",
    "DESI", "AFN",  "REFN", "_UID", "UID"};

template <std::size_t N>
bool Parmi(const std::string_view (&t)[N], std::string_view tag) {
    return std::find(std::begin(t), std::end(t), tag) != std::end(t);
}

// A text of the file as the base holds it: the "#" of a calendar escape
// is held as "*" ("@*DJULIAN@"), which the export writes back.
std::string Propre(std::string_view v) {
    std::string s(v);
    for (auto p = s.find("@#D"); p != std::string::npos; p = s.find("@#D", p + 3)) s[p + 1] = '*';
    return s;
}

void Exemple(CompteAnomalie& c, std::uint32_t ligne, std::string texte) {
    ++c.nombre;
    if (c.exemples.size() < NombreExemples) c.exemples.push_back({ligne, std::move(texte), 0});
}

// A date's words in one form for comparison: capitals, single blanks.
std::string FormeDate(std::string_view v) {
    std::string r;
    for (char c : v) {
        if (c == ' ' || c == '\t') {
            if (!r.empty() && r.back() != ' ') r += ' ';
        } else {
            r += static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
        }
    }
    if (!r.empty() && r.back() == ' ') r.pop_back();
    return r;
}

// A date of the file in held form; `ok` false when it could not be split
// into a year of four characters at most. A date phrase gives the date
// it holds ("INT 1850 (environ)" and "(vers 1850)" give 1850) and a dual
// year its first year ("1731/32" gives 1731). `exacte` false when the
// held form does not write the file's text back: the caller keeps that
// text in a note. The "#" of a calendar escape is held as "*"
// ("@*DJULIAN@"), and written back as "#".
DateTenue DateTenueDe(std::string_view v, bool& ok, bool* exacte = nullptr) {
    std::string s = Trim(Propre(v));
    if (const auto p = s.find('('); p != std::string::npos) {
        const auto f = s.find(')', p);
        std::string avant = Trim(s.substr(0, p));
        if (avant.size() > 4 && FormeDate(avant.substr(0, 4)) == "INT" && avant[3] == ' ')
            avant = Trim(avant.substr(4));
        s = !avant.empty() ? avant : Trim(s.substr(p + 1, f == std::string::npos ? f : f - p - 1));
    }
    // A dual year: digits, "/", one or two digits, at the end.
    if (const auto b = s.rfind('/'); b != std::string::npos && b > 0 && s.size() - b <= 3 &&
                                     s.size() - b >= 2 && std::isdigit(static_cast<unsigned char>(s[b - 1])) &&
                                     std::all_of(s.begin() + static_cast<long>(b) + 1, s.end(),
                                                 [](char c) { return std::isdigit(static_cast<unsigned char>(c)); }))
        s.resize(b);
    DateTenue d = Conv_DateEtrangere(s);
    ok = d.annee.size() <= 4;
    if (exacte) *exacte = ok && FormeDate(DateGedcomTenue(d.jourMois, d.annee)) == FormeDate(v);
    return d;
}

// A title is one line in the base and in the exchange file: the lines of
// a title of several (TITL with CONT) are joined by a blank.
std::string UneLigne(std::string v) {
    for (auto p = v.find(kCrLf); p != std::string::npos; p = v.find(kCrLf, p)) v.replace(p, 2, " ");
    return v;
}

// The dates of a file already worked out, by their text: they come back
// from person to person (240,000 distinct among two million in a million
// persons). A date is some twenty bytes here, its text being the file's.
struct DateLue {
    std::uint32_t hachage = 0, ligne = 0; // the text is the value of that line
    std::uint32_t debut = 0, jourMois = 0, annee = 0; // the held form in the store
    bool ok = true, exacte = true;
};

class DatesLues {
  public:
    const DateLue& Cherche(const GedcomLu& g, std::size_t x) {
        const std::string_view v = g.valeur(x);
        const auto h = static_cast<std::uint32_t>(std::hash<std::string_view>{}(v));
        if (texte_.size() > kTexteMax) { // a hostile file: start again
            dates_.clear();
            index_.clear();
            texte_.clear();
        }
        if (dates_.size() * 2 >= index_.size()) Agrandit();
        const std::size_t masque = index_.size() - 1;
        std::size_t k = h & masque;
        for (; index_[k] != 0; k = (k + 1) & masque) {
            const DateLue& l = dates_[index_[k] - 1];
            if (l.hachage == h && g.valeur(l.ligne) == v) return l;
        }
        DateLue l;
        l.hachage = h;
        l.ligne = static_cast<std::uint32_t>(x);
        const DateTenue d = DateTenueDe(v, l.ok, &l.exacte);
        l.debut = static_cast<std::uint32_t>(texte_.size());
        l.jourMois = static_cast<std::uint32_t>(d.jourMois.size());
        l.annee = static_cast<std::uint32_t>(d.annee.size());
        texte_ += d.jourMois;
        texte_ += d.annee;
        index_[k] = static_cast<std::uint32_t>(dates_.size() + 1);
        dates_.push_back(l);
        return dates_.back();
    }
    std::string JourMois(const DateLue& l) const { return texte_.substr(l.debut, l.jourMois); }
    std::string Annee(const DateLue& l) const { return texte_.substr(l.debut + l.jourMois, l.annee); }

  private:
    void Agrandit() {
        std::vector<std::uint32_t> neuf(std::max<std::size_t>(1024, index_.size() * 2), 0);
        const std::size_t masque = neuf.size() - 1;
        for (std::size_t n = 0; n < dates_.size(); ++n) {
            std::size_t k = dates_[n].hachage & masque;
            while (neuf[k] != 0) k = (k + 1) & masque;
            neuf[k] = static_cast<std::uint32_t>(n + 1);
        }
        index_.swap(neuf);
    }
    static constexpr std::size_t kTexteMax = std::size_t{1} << 31;
    std::vector<DateLue> dates_;
    std::vector<std::uint32_t> index_; // number + 1 of a date, 0 for a free slot
    std::string texte_;                // the held forms, day and month then year
};

struct Rubrique {
    std::string jourMois, annee, valeur;
    bool rempli = false;
};

class Importeur {
  public:
    Importeur(Base& b, const GedcomLu& g, const OptionsImport& o, RapportImport& r)
        : b_(b), g_(g), o_(o), r_(r) {}

    void Lance() {
        numeros_.assign(g_.nombrePointeurs() + 1, 0);
        genres_.assign(g_.nombrePointeurs() + 1, 0);
        b_.DebutLot();
        // The persons are sorted at the end: each is not placed on its own.
        b_.DiffereRangement();
        Passe1();
        if (!r_.arrete) Passe2();
        Ascendance();
        Fin();
    }

  private:
    bool Point(const char* phase) {
        ++fait_;
        if (fait_ % 100 != 0) return true;
        if (o_.progres) o_.progres(phase, fait_);
        if (o_.arret && o_.arret()) {
            r_.arrete = true;
            return false;
        }
        return true;
    }
    std::string_view Tag(std::size_t i) const { return g_.tag(i); }
    std::string Valeur(std::size_t i) const { return Propre(g_.valeur(i)); }
    std::uint32_t Numero(std::size_t i, char genre) const {
        const std::uint32_t p = g_.lien(i);
        return p && genres_[p] == genre ? numeros_[p] : 0;
    }

    // --- Rubric slots, created on first sight
    int Slot(std::array<SlotRubrique, 10>& slots, std::string_view tag) {
        for (std::size_t i = 0; i < slots.size(); ++i) {
            if (slots[i].symbole == ' ' || slots[i].symbole == '\0') {
                char s = Symbole(tag);
                if (s == 0) return -1;
                slots[i] = {s, '1', std::string(tag)};
                b_.TeteModifiable();
                return static_cast<int>(i);
            }
            if (slots[i].tag == tag) return static_cast<int>(i);
        }
        return -1;
    }
    // The symbol of the rubric of this tag, the rubric made when missing; 0
    // when the table or the symbols are used up.
    char Symbole(std::string_view tag) {
        const std::uint32_t nb = b_.Tete().nbRubriques;
        std::string utilises;
        for (std::uint32_t k = 1; k <= nb; ++k) {
            const std::string r = b_.LitRubrique(k);
            if (r.empty()) continue;
            if (r.substr(1) == tag) return r[0];
            utilises += r[0];
        }
        if (nb >= 50) return 0;
        for (char s : kSymboles) {
            if (utilises.find(s) != std::string::npos) continue;
            b_.EcritRubrique(nb + 1, s, tag, 0);
            b_.TeteModifiable().nbRubriques = nb + 1;
            return s;
        }
        return 0;
    }

    static std::string LigneRubrique(const SlotRubrique& s, const Rubrique& r) {
        std::string date;
        if (!r.annee.empty() || !r.jourMois.empty()) {
            const bool jm = !r.jourMois.empty() && std::isdigit(static_cast<unsigned char>(r.jourMois[0])) &&
                            r.jourMois.find('/') != std::string::npos;
            date = r.jourMois.empty() ? r.annee : r.jourMois + (jm ? "/" : " ") + r.annee;
        }
        std::string l = s.tag + " " + date + " ";
        if (!r.valeur.empty()) l += s.symbole + VersPoints(r.valeur);
        return l;
    }

    // The held form of the date of line x; a date that it does not write
    // back as the file has it also goes into the note, after `libelle`.
    DateTenue Date(std::size_t x, bool& ok, std::string& note, std::string_view libelle) {
        const DateLue& l = dates_.Cherche(g_, x);
        ok = l.ok;
        if (ok && !l.exacte) Ajoute(note, Libelle(libelle) + " : " + Valeur(x));
        return {dates_.JourMois(l), dates_.Annee(l)};
    }
    // The label of a tag in the user's language, worked out once.
    const std::string& Libelle(std::string_view tag) {
        auto it = libelles_.find(tag);
        if (it == libelles_.end()) {
            if (libelles_.size() >= kMemoire) libelles_.clear();
            it = libelles_.emplace(std::string(tag), Conv_LibelleTag(tag)).first;
        }
        return it->second;
    }

    // --- Lines kept in a note
    void EnNote(std::string& note, std::size_t i, int profondeur, bool compter) {
        const std::string_view tag = Tag(i);
        if (compter && !g_.tag55(i)) Exemple(r_.tagsEnNote, g_.numero(i), std::string(tag));
        (void)profondeur; // the reader trims values, so depth is not shown
        std::string l;
        std::string libelle = Libelle(tag);
        l += libelle;
        // A pointer is kept as its name, without the "@" that would make a
        // pointer of it again.
        const std::string v = g_.lien(i) ? std::string(g_.textePointeur(g_.lien(i))) : Valeur(i);
        if (!v.empty()) l += (libelle == tag ? " " : " : ") + v;
        Ajoute(note, l);
        for (std::size_t s : g_.sousLignes(i)) EnNote(note, s, profondeur + 1, compter);
    }
    // "PEDI birth" says what a parent link of the base says already.
    bool PediNaissance(std::size_t x) {
        if (Tag(x) != "PEDI") return false;
        std::string v = Trim(Valeur(x));
        for (char& c : v) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return v == "birth";
    }
    // A FAMC line that says more than "child of this family".
    bool LienFamilleParle(std::size_t s) {
        if (!g_.lien(s)) return false;
        for (std::size_t x : g_.sousLignes(s))
            if (!PediNaissance(x)) return true;
        return false;
    }
    // The sub-lines of a line whose own value went into the base (a DATE,
    // a PLAC: their NOTE, MAP, unknown tags), as lines of the note.
    void SousLignesEnNote(std::string& note, std::size_t i) {
        for (std::size_t s : g_.sousLignes(i)) EnNote(note, s, 1, true);
    }
    void Citation(std::string& note, std::size_t s) {
        std::string sous;
        for (std::size_t x : g_.sousLignes(s))
            if (Tag(x) != "EVEN") EnNote(sous, x, 1, true);
        if (sous.empty()) return;
        std::string titre;
        if (const std::size_t r = g_.cible(s); r != GedcomLu::npos) {
            const std::size_t t = g_.sousLigne(r, "TITL");
            titre = t != GedcomLu::npos ? Valeur(t) : Valeur(r);
        }
        Ajoute(note, Libelle("SOUR") + (titre.empty() ? "" : " : " + titre.substr(0, titre.find('\r'))));
        Ajoute(note, sous);
    }
    // An event with no rubric to hold it, as one line of the note:
    // "label - date value".
    static std::string LigneEvenement(const std::string& libelle, const std::string& date,
                                      const std::string& valeur) {
        const std::string v = Trim(date + " " + valeur);
        return v.empty() ? libelle : libelle + " - " + v;
    }
    static void Ajoute(std::string& note, std::string_view l) {
        if (!note.empty()) note += kCrLf;
        note += l;
    }

    // --- Pass 1
    void Passe1() {
        for (std::uint32_t i : g_.enregistrements()) {
            const std::string_view tag = Tag(i);
            const std::uint32_t p = g_.pointeur(i);
            if (tag == "INDI") {
                if (!Point("INDI")) return;
                const std::uint32_t n = Individu(i);
                if (p) numeros_[p] = n, genres_[p] = 'I';
            } else if (tag == "SOUR" && p) {
                if (!Point("SOUR")) return;
                Source(i, p);
            } else if (tag == "NOTE" && p) {
                if (!Point("NOTE")) return;
                numeros_[p] = DocumentNote(i);
                genres_[p] = 'D';
            } else if ((tag == "OBJE" || tag == "REPO") && p) {
                if (!Point(tag == "OBJE" ? "OBJE" : "REPO")) return;
                numeros_[p] = DocumentObjet(i);
                genres_[p] = 'D';
            } else if (tag == "HEAD") {
                Entete(i);
            } else if (tag == "FAM") {
                ++r_.familles;
            } else if (tag == "SUBM" && o_.parametres) {
                Soumetteur(i);
            }
        }
    }

    // The header's note is the base's title document.
    void Entete(std::size_t i) {
        const std::size_t note = g_.sousLigne(i, "NOTE");
        if (note == GedcomLu::npos || g_.lien(note)) return;
        const std::string v = Valeur(note);
        const auto crlf = v.find(kCrLf);
        const std::uint32_t d = b_.CreeDoc(v.substr(0, crlf), "", "",
                                           crlf == std::string::npos ? "" : v.substr(crlf + 2));
        b_.DefinitDocumentTitre(d);
        ++r_.documents;
    }

    void Soumetteur(std::size_t i) {
        if (soumetteurLu_) return;
        soumetteurLu_ = true;
        Parametres& p = *o_.parametres;
        for (std::size_t s : g_.sousLignes(i)) {
            if (Tag(s) == "NAME") p.auteur = Valeur(s);
            if (Tag(s) == "ADDR") {
                std::string a = Valeur(s);
                std::size_t k = 0, debut = 0;
                for (; k < p.adresse.size(); ++k) {
                    auto fin = a.find(kCrLf, debut);
                    p.adresse[k] = a.substr(debut, fin == std::string::npos ? fin : fin - debut);
                    if (fin == std::string::npos) break;
                    debut = fin + 2;
                }
                for (++k; k < p.adresse.size(); ++k) p.adresse[k].clear();
            }
        }
    }

    std::uint32_t Individu(std::size_t i) {
        std::string nom, prenom, autres, tousPrenoms, lieuN, lieuD;
        DateTenue naiss, deces;
        char sexe = 'I';
        bool aNom = false, aNaiss = false, aDeces = false, aSexe = false;
        std::string note;
        std::array<Rubrique, 10> rubriques{};
        auto& slots = b_.TeteModifiable().rubriquesPersonne;
        auto rubrique = [&](std::string_view tag, const DateTenue& d, const std::string& v) {
            const int k = Slot(slots, tag);
            if (k < 0 || rubriques[k].rempli) return false;
            rubriques[k] = {d.jourMois, d.annee, v, true};
            return true;
        };
        for (std::size_t s : g_.sousLignes(i)) {
            const std::string_view tag = Tag(s);
            if (tag == "NAME" && !aNom) {
                aNom = true;
                const std::string v = Valeur(s);
                const auto a = v.find('/');
                std::string prenoms = Trim(v.substr(0, a));
                if (a != std::string::npos) {
                    const auto b2 = v.find('/', a + 1);
                    nom = Trim(v.substr(a + 1, b2 == std::string::npos ? b2 : b2 - a - 1));
                    if (b2 != std::string::npos && !Trim(v.substr(b2 + 1)).empty())
                        prenoms += (prenoms.empty() ? "" : " ") + Trim(v.substr(b2 + 1));
                }
                const auto blanc = prenoms.find(' ');
                prenom = prenoms.substr(0, blanc);
                if (blanc != std::string::npos) autres = Trim(prenoms.substr(blanc + 1));
                tousPrenoms = prenoms;
                for (std::size_t x : g_.sousLignes(s)) {
                    const std::string_view t = Tag(x);
                    const std::string vx = Valeur(x);
                    if ((t == "GIVN" && vx == prenoms) || (t == "SURN" && vx == nom)) continue;
                    if (Parmi(kRubriquesPersonne, t) && rubrique(t, {}, vx)) continue;
                    EnNote(note, x, 0, true);
                }
            } else if (tag == "SEX" && !aSexe) {
                aSexe = true;
                // "U", "X" or nothing: the sex is not known.
                const std::string v = Trim(Valeur(s));
                sexe = v == "M" ? 'H' : v == "F" ? 'F' : 'I';
            } else if ((tag == "BIRT" && !aNaiss) || (tag == "DEAT" && !aDeces)) {
                const bool b = tag == "BIRT";
                (b ? aNaiss : aDeces) = true;
                for (std::size_t x : g_.sousLignes(s)) {
                    const std::string_view t = Tag(x);
                    if (t == "DATE") {
                        bool ok = true;
                        DateTenue d = Date(x, ok, note, tag);
                        if (ok) (b ? naiss : deces) = d;
                        else EnNote(note, x, 0, false);
                        if (ok) SousLignesEnNote(note, x);
                    } else if (t == "PLAC") {
                        (b ? lieuN : lieuD) = Valeur(x);
                        SousLignesEnNote(note, x);
                    } else {
                        std::string sous;
                        EnNote(sous, x, 1, true);
                        Ajoute(note, Libelle(tag) + kCrLf.data() + sous);
                    }
                }
            } else if (tag == "SOUR" && g_.lien(s)) {
                // The citation is made in pass 2; what it says of the source
                // (PAGE, DATA, NOTE, QUAY) stays in the note under its title.
                Citation(note, s);
            } else if (tag == "FAMC" && LienFamilleParle(s)) {
                // The link to the parents is made in pass 2; what the file
                // says of the link itself (an adoption, a note) has no place
                // but the note.
                Ajoute(note, Libelle(tag) + " : " + std::string(g_.textePointeur(g_.lien(s))));
                for (std::size_t x : g_.sousLignes(s))
                    if (!PediNaissance(x)) EnNote(note, x, 1, true);
            } else if (tag == "FAMS" || tag == "FAMC" || tag == "ASSO" ||
                       (tag == "OBJE" && g_.lien(s)) || (tag == "NOTE" && g_.lien(s)) ||
                       Parmi(kIgnores, tag)) {
                // pass 2, or nothing to keep
            } else if (tag == "NOTE" || tag == "TEXT") {
                Ajoute(note, Valeur(s));
                for (std::size_t x : g_.sousLignes(s)) EnNote(note, x, 1, true);
            } else if (Parmi(kRubriquesPersonne, tag) || tag == "BAPM") {
                // A baptism and a christening share one rubric.
                std::string t(tag == "BAPM" ? "CHR" : tag);
                std::string libelle = Libelle(t);
                DateTenue d;
                std::string valeur = Valeur(s), dateTexte, reste;
                bool dateOk = true;
                if (t == "EVEN") {
                    const std::size_t ty = g_.sousLigne(s, "TYPE");
                    const std::string type = ty == GedcomLu::npos ? std::string() : Trim(Valeur(ty));
                    if (!type.empty()) libelle = type;
                    t = type.empty() ? std::string() : Conv_TagLibelle(type);
                    if (t.size() > 4 || !Parmi(kRubriquesPersonne, t) || t == "EVEN") t.clear();
                }
                for (std::size_t x : g_.sousLignes(s)) {
                    const std::string_view tx = Tag(x);
                    if (tx == "DATE" && dateTexte.empty()) {
                        d = Date(x, dateOk, note, t.empty() ? std::string_view(libelle) : std::string_view(t));
                        dateTexte = Trim(Valeur(x));
                        SousLignesEnNote(reste, x);
                    } else if (tx == "PLAC" && valeur.empty()) {
                        valeur = Valeur(x);
                        SousLignesEnNote(reste, x);
                    } else if (tx == "TYPE" && tag == "EVEN") {
                        SousLignesEnNote(reste, x);
                    } else if (tx == "NOTE" && valeur.empty() && tag == "EVEN") {
                        valeur = Valeur(x);
                        SousLignesEnNote(reste, x);
                    } else {
                        EnNote(reste, x, 1, true);
                    }
                }
                if (t.empty() || !dateOk || !rubrique(t, d, valeur)) {
                    Ajoute(note, LigneEvenement(libelle, dateTexte, valeur));
                    if (!reste.empty()) Ajoute(note, reste);
                } else if (!reste.empty()) {
                    Ajoute(note, Libelle(t) + kCrLf.data() + reste);
                }
            } else if (tag == "AGE") {
                Ajoute(note, DecodeAge(g_.valeur(s)));
            } else {
                EnNote(note, s, 0, true);
            }
        }
        const std::uint32_t n = b_.CreePersonne(nom, prenom, autres, sexe, naiss.annee,
                                                naiss.jourMois, deces.annee, deces.jourMois);
        // The person was made with the keyword line of its first first name
        // alone; the line of all its first names replaces it, in the note
        // and in the batch of keywords.
        const std::string ligne1 = b_.LigneMotsCles(n);
        std::string complete = b_.LigneMotsCles(nom, tousPrenoms, lieuN, lieuD);
        for (std::size_t k = 0; k < rubriques.size(); ++k)
            if (rubriques[k].rempli) complete += std::string(kCrLf) + LigneRubrique(slots[k], rubriques[k]);
        if (!note.empty()) complete += std::string(kCrLf) + std::string(kCrLf) + note;
        if (complete != ligne1) {
            b_.EcritNote(n, complete);
            b_.RetireLot(n, ligne1);
            b_.AjoutLot(n, complete);
        }
        const std::string cle = b_.CleAnNaiss(n);
        if (cle < derniereCle_) nonTrie_ = true;
        derniereCle_ = cle;
        // The sort key of the final sort, made while the base still holds
        // the person's names at hand rather than read again then. The base
        // reads back no identity of 1000 bytes or more (two bytes at most
        // for one): the key of a longer one is left to be made as it reads.
        const std::size_t identite = nom.size() + prenom.size() + autres.size() +
                                     naiss.jourMois.size() + deces.jourMois.size() + 4;
        if (b_.Tete().modeTri != '0' && identite < 500) b_.CleVue(n);
        ++r_.personnes;
        return n;
    }

    void Source(std::size_t i, std::uint32_t p) {
        std::size_t evt = GedcomLu::npos;
        const std::size_t data = g_.sousLigne(i, "DATA");
        if (data != GedcomLu::npos) evt = g_.sousLigne(data, "EVEN");
        if (evt == GedcomLu::npos) evt = g_.sousLigne(i, "EVEN");
        std::string titre, note;
        std::vector<std::uint32_t> docs;
        for (std::size_t s : g_.sousLignes(i)) {
            const std::string_view t = Tag(s);
            if (t == "TITL") titre = UneLigne(Valeur(s));
            else if (t == "DATA") {
            } else if (t == "NOTE" && g_.lien(s)) {
                docsPasse2_.push_back(s);
            } else if (!Parmi(kIgnores, t) || t == "REFN") {
                EnNote(note, s, 0, false);
            }
        }
        if (evt == GedcomLu::npos) {
            // No event data: the source is a document.
            const std::uint32_t d = b_.CreeDoc(titre.empty() ? UneLigne(Valeur(i)) : titre, "", "", note);
            numeros_[p] = d;
            genres_[p] = 'D';
            ++r_.documents;
            return;
        }
        std::string v = Valeur(evt), notesEvt;
        const auto crlf = v.find(kCrLf);
        std::string tag = Trim(v.substr(0, crlf));
        if (crlf != std::string::npos) notesEvt = v.substr(crlf + 2);
        if (tag.size() > 2 && tag.front() == '(' && tag.back() == ')') tag = Conv_TagLibelle(tag.substr(1, tag.size() - 2));
        std::string lieu;
        long date = Conv_DateSerie("1/1/100", "dd/mm/yyyy");
        for (std::size_t s : g_.sousLignes(evt)) {
            const std::string_view t = Tag(s);
            if (t == "PLAC" || t == "DATE") SousLignesEnNote(note, s);
            if (t == "PLAC") {
                lieu = Valeur(s);
            } else if (t == "DATE") {
                const std::string brut = Valeur(s);
                std::string dt = Conv_PremierEnUn(brut);
                if (!Conv_DateValide(dt, "dd/mm/yyyy")) dt = Conv_DateGedcom(dt);
                DateTenue tenue = Conv_DateEtrangere(brut, "dd/mm/yyyy");
                const std::string jm = tenue.jourMois + "/" + tenue.annee;
                if (Conv_DateValide(jm, "dd/mm/yyyy"))
                    date = Conv_DateSerie(jm, "dd/mm/yyyy");
                else if (Conv_DateValide(dt, "dd/mm/yyyy"))
                    date = Conv_DateSerie(dt, "dd/mm/yyyy");
                else
                    Ajoute(note, brut);
            } else if (t != "NOTE") {
                EnNote(note, s, 0, false);
            }
        }
        if (data != GedcomLu::npos)
            for (std::size_t s : g_.sousLignes(data))
                if (Tag(s) == "NOTE" && g_.lien(s)) docsPasse2_.push_back(s);
        if (!notesEvt.empty()) note = note.empty() ? notesEvt : notesEvt + std::string(kCrLf) + note;
        if (tag.empty()) tag = "EVEN";
        const std::uint32_t e = b_.CreeEvtPersonne(0, date, tag, lieu);
        std::string texte = Trim(lieu);
        texte += '\0';
        texte += titre;
        texte += '\0';
        texte += tag;
        b_.EcritEvt(e, texte);
        if (!note.empty()) b_.EcritNoteEvt(e, note);
        numeros_[p] = e;
        genres_[p] = 'E';
        ++r_.evenements;
    }

    // A multimedia object or a repository as a document: its title (TITL,
    // or NAME), its file (FILE) and its type (FORM); every other line in
    // its note.
    std::uint32_t DocumentObjet(std::size_t i) {
        std::string titre, fichier, type, note;
        for (std::size_t s : g_.sousLignes(i)) {
            const std::string_view t = Tag(s);
            if ((t == "TITL" || t == "NAME") && titre.empty()) {
                titre = UneLigne(Valeur(s));
            } else if (t == "FILE" && fichier.empty()) {
                fichier = Valeur(s);
                const std::size_t f = g_.sousLigne(s, "FORM");
                if (f != GedcomLu::npos) type = Valeur(f);
                for (std::size_t x : g_.sousLignes(s))
                    if (Tag(x) != "FORM") EnNote(note, x, 1, true);
            } else if (t == "FORM" && type.empty()) {
                type = Valeur(s);
            } else if (!Parmi(kIgnores, t)) {
                EnNote(note, s, 0, true);
            }
        }
        if (titre.empty()) titre = fichier.empty() ? std::string(Tag(i)) : fichier;
        ++r_.documents;
        return b_.CreeDoc(titre, fichier, type, note);
    }

    std::uint32_t DocumentNote(std::size_t i) {
        std::string v = Valeur(i);
        const auto crlf = v.find(kCrLf);
        std::string titre = v.substr(0, crlf), note;
        if (crlf != std::string::npos) note = v.substr(crlf + 2);
        std::string fichier, type;
        for (std::size_t s : g_.sousLignes(i)) {
            if (Tag(s) == "REFN") {
                fichier = Valeur(s);
                const std::size_t ty = g_.sousLigne(s, "TYPE");
                if (ty != GedcomLu::npos) type = Valeur(ty);
            } else {
                EnNote(note, s, 0, false);
            }
        }
        ++r_.documents;
        return b_.CreeDoc(titre, fichier, type, note);
    }

    // --- Pass 2
    void Passe2() {
        for (std::uint32_t i : g_.enregistrements()) {
            const std::string_view tag = Tag(i);
            if (tag == "INDI") {
                if (!Point("INDI")) return;
                const std::uint32_t p = g_.pointeur(i);
                if (p && genres_[p] == 'I') Liens(i, numeros_[p]);
            } else if (tag == "FAM") {
                if (!Point("FAM")) return;
                Famille(i);
            }
        }
        for (std::size_t s : docsPasse2_) {
            // the documents of the events
            std::size_t rec = s;
            while (g_.ligne(rec).niveau > 0) --rec;
            const std::uint32_t p = g_.pointeur(rec);
            const std::uint32_t d = Numero(s, 'D');
            if (p && genres_[p] == 'E' && d) b_.MajDocsEvt(numeros_[p], d, 'A');
        }
    }

    void Liens(std::size_t i, std::uint32_t n) {
        for (std::size_t s : g_.sousLignes(i)) {
            const std::string_view tag = Tag(s);
            if (tag == "ASSO") {
                const std::uint32_t q = Numero(s, 'I');
                if (q == 0) continue;
                const std::size_t rela = g_.sousLigne(s, "RELA");
                b_.MajLiens(n, q, rela == GedcomLu::npos ? std::string() : Valeur(rela), 'A');
            } else if (tag == "SOUR" && g_.lien(s)) {
                if (std::uint32_t e = Numero(s, 'E')) {
                    std::string role = "WITN";
                    const std::size_t ev = g_.sousLigne(s, "EVEN");
                    const std::size_t ro = ev == GedcomLu::npos ? GedcomLu::npos : g_.sousLigne(ev, "ROLE");
                    if (ro != GedcomLu::npos) {
                        std::string v = Valeur(ro);
                        if (v.size() > 2 && v.front() == '(' && v.back() == ')')
                            role = Conv_TagLibelle(v.substr(1, v.size() - 2));
                        else if (!v.empty())
                            role = Conv_TagLibelle(v);
                    }
                    b_.MajEvts(n, e, role, 'A');
                    b_.MajPersonnesEvt(e, n, 'A');
                } else if (std::uint32_t d = Numero(s, 'D')) {
                    b_.MajDocs(n, d, 'A');
                }
            } else if ((tag == "NOTE" || tag == "OBJE") && g_.lien(s)) {
                if (std::uint32_t d = Numero(s, 'D')) b_.MajDocs(n, d, 'A');
            }
        }
    }

    void Famille(std::size_t i) {
        std::uint32_t mari = 0, femme = 0;
        std::vector<std::uint32_t> enfants;
        std::string note;
        for (std::size_t s : g_.sousLignes(i)) {
            const std::string_view tag = Tag(s);
            if (tag == "HUSB" && !mari) mari = Numero(s, 'I');
            else if (tag == "WIFE" && !femme) femme = Numero(s, 'I');
            else if (tag == "CHIL") {
                if (std::uint32_t c = Numero(s, 'I')) enfants.push_back(c);
            }
        }
        if (mari == femme) femme = 0;
        std::uint32_t m = 0;
        if (mari && femme) {
            m = b_.CreeMariage(mari, femme);
            ++r_.mariages;
        }
        for (std::uint32_t c : enfants) {
            if (c == mari || c == femme) {
                Exemple(r_.ascendance, g_.numero(i), b_.NomComplet(c));
                continue;
            }
            // A child of two families (born and adopted) keeps the parents
            // of the first: a father of one and a mother of the other
            // would make a couple that no file holds.
            if (b_.LitPere(c) != 0 || b_.LitMere(c) != 0) {
                // The other family is kept in words in the child's note.
                std::string l = "Enfant aussi de";
                if (mari) l += " " + b_.NomComplet(mari);
                if (mari && femme) l += " et";
                if (femme) l += " " + b_.NomComplet(femme);
                if (const std::uint32_t p = g_.pointeur(i))
                    l += " (" + std::string(g_.textePointeur(p)) + ")";
                AjouteANote(c, l);
                continue;
            }
            if (mari) {
                b_.EcritPere(c, mari);
                b_.MajEnfants(mari, c, 'A');
            }
            if (femme) {
                b_.EcritMere(c, femme);
                b_.MajEnfants(femme, c, 'A');
            }
        }
        if (m == 0) {
            // One parent: no marriage to hold the family's events, which
            // stay as lines of that parent's note.
            if (const std::uint32_t parent = mari ? mari : femme) {
                for (std::size_t s : g_.sousLignes(i)) {
                    const std::string_view tag = Tag(s);
                    if (tag == "HUSB" || tag == "WIFE" || tag == "CHIL" || Parmi(kIgnores, tag)) continue;
                    EnNote(note, s, 0, true);
                }
                AjouteANote(parent, note);
            }
            return;
        }
        std::string date, lieu;
        DateTenue d;
        std::array<Rubrique, 10> rubriques{};
        auto& slots = b_.TeteModifiable().rubriquesMariage;
        for (std::size_t s : g_.sousLignes(i)) {
            const std::string_view tag = Tag(s);
            if (tag == "HUSB" || tag == "WIFE") {
                const std::size_t age = g_.sousLigne(s, "AGE");
                if (age != GedcomLu::npos)
                    Ajoute(note, Libelle(tag) + " : " + DecodeAge(g_.valeur(age)));
            } else if (tag == "CHIL" || Parmi(kIgnores, tag)) {
            } else if (tag == "MARR" && d.annee.empty() && d.jourMois.empty() && lieu.empty()) {
                for (std::size_t x : g_.sousLignes(s)) {
                    if (Tag(x) == "DATE") {
                        bool ok = true;
                        DateTenue t = Date(x, ok, note, "MARR");
                        if (ok) d = t;
                        else Ajoute(note, Valeur(x));
                        SousLignesEnNote(note, x);
                    } else if (Tag(x) == "PLAC") {
                        lieu = Valeur(x);
                        SousLignesEnNote(note, x);
                    } else {
                        EnNote(note, x, 0, true);
                    }
                }
            } else if (Parmi(kRubriquesMariage, tag)) {
                DateTenue dt;
                bool ok = true;
                std::string v = Valeur(s), reste, dateNote;
                bool aDate = false;
                for (std::size_t x : g_.sousLignes(s)) {
                    if (Tag(x) == "DATE" && !aDate) {
                        aDate = true;
                        dt = Date(x, ok, dateNote, tag);
                        SousLignesEnNote(reste, x);
                    } else if (Tag(x) == "PLAC" && v.empty()) {
                        v = Valeur(x);
                        SousLignesEnNote(reste, x);
                    } else {
                        EnNote(reste, x, 1, true);
                    }
                }
                const int k = Slot(slots, tag);
                if (ok && k >= 0 && !rubriques[k].rempli) {
                    rubriques[k] = {dt.jourMois, dt.annee, v, true};
                    if (!dateNote.empty()) Ajoute(note, dateNote);
                    if (!reste.empty()) Ajoute(note, Libelle(tag) + std::string(kCrLf) + reste);
                } else {
                    EnNote(note, s, 0, false);
                }
            } else if (tag == "EVEN") {
                const std::size_t ty = g_.sousLigne(s, "TYPE");
                const std::string type = ty == GedcomLu::npos ? std::string() : Trim(Valeur(ty));
                std::string date, valeur = Valeur(s), reste;
                for (std::size_t x : g_.sousLignes(s)) {
                    const std::string_view tx = Tag(x);
                    if (tx == "DATE" && date.empty()) date = Trim(Valeur(x));
                    else if ((tx == "PLAC" || tx == "NOTE") && valeur.empty()) valeur = Valeur(x);
                    else if (tx != "TYPE") {
                        EnNote(reste, x, 1, true);
                        continue;
                    }
                    SousLignesEnNote(reste, x);
                }
                Ajoute(note, LigneEvenement(type.empty() ? Libelle(tag) : type, date, valeur));
                if (!reste.empty()) Ajoute(note, reste);
            } else if (tag == "NOTE" && g_.lien(s)) {
                if (std::uint32_t doc = Numero(s, 'D')) Ajoute(note, b_.TitreDoc(doc));
            } else if (tag == "NOTE") {
                Ajoute(note, Valeur(s));
            } else {
                EnNote(note, s, 0, true);
            }
        }
        b_.EcritAnMariage(m, d.annee);
        std::string texte = d.jourMois;
        if (!Trim(lieu).empty()) texte += " @" + VersPoints(lieu);
        for (std::size_t k = 0; k < rubriques.size(); ++k)
            if (rubriques[k].rempli) texte += std::string(kCrLf) + LigneRubrique(slots[k], rubriques[k]);
        if (!note.empty()) texte += std::string(kCrLf) + std::string(kCrLf) + note;
        if (!texte.empty()) {
            b_.EcritNoteMariage(m, texte);
            b_.AjoutLot(mari, texte);
            b_.AjoutLot(femme, texte);
        }
    }

    // Lines added to the free text of a person made in pass 1.
    void AjouteANote(std::uint32_t n, const std::string& lignes) {
        if (lignes.empty()) return;
        const std::string avant = b_.LitNote(n);
        std::string apres = avant;
        apres += avant.find(kCrLf) == std::string::npos ? std::string(kCrLf) + std::string(kCrLf)
                                                        : std::string(kCrLf);
        apres += lignes;
        b_.EcritNote(n, apres);
        b_.RetireLot(n, avant);
        b_.AjoutLot(n, apres);
    }

    // A family that makes a person his own ancestor: the parent link that
    // closes the loop is dropped, so that every walk up ends.
    void Ascendance() {
        for (std::uint32_t n : RompsBouclesAscendance(b_)) Exemple(r_.ascendance, 0, b_.NomComplet(n));
    }

    // A sort table in the order of its keys, equal keys in the order of the
    // file (the order of the numbers), so that a file sorted by this program
    // comes back in its own order.
    template <class Cle>
    static void TriStable(TableTri& t, Cle cle) {
        std::vector<std::uint32_t> v = t.versVecteur();
        std::vector<std::pair<decltype(cle(0u)), std::uint32_t>> cles;
        cles.reserve(v.size());
        for (std::uint32_t n : v) cles.emplace_back(cle(n), n);
        std::sort(cles.begin(), cles.end());
        for (std::size_t k = 0; k < v.size(); ++k) v[k] = cles[k].second;
        t.depuisVecteur(v);
    }
    void TriStable() {
        if (b_.Tete().modeTri == '0') return;
        TableTri& t = b_.TablePersonnes();
        std::vector<std::uint32_t> v = t.versVecteur();
        // The keys are computed first, then sorted as views into the base's
        // store of keys, which does not move once every key is in it: a
        // million copies of keys would be a hundred megabytes. Keys the
        // store does not keep (an absurdly long name), or computes again
        // (an empty one), are copied.
        bool vues = true;
        for (std::uint32_t n : v) {
            const std::size_t taille = b_.CleVue(n).size();
            vues = vues && n != 0 && n <= b_.Tete().maxPersonne && taille > 0 && taille < 0xFFFF;
        }
        if (vues) {
            std::vector<std::pair<std::string_view, std::uint32_t>> cles;
            cles.reserve(v.size());
            for (std::uint32_t n : v) cles.emplace_back(b_.CleVue(n), n);
            std::sort(cles.begin(), cles.end());
            for (std::size_t k = 0; k < v.size(); ++k) v[k] = cles[k].second;
            t.depuisVecteur(v);
        } else {
            TriStable(t, [this](std::uint32_t n) { return b_.CleTriFiche(n); });
        }
        b_.triPersonnesModifie = true;
    }
    void TriStableDocsEtEvts() {
        TriStable(b_.TableDocuments(), [this](std::uint32_t d) { return CleMot(b_.TitreDoc(d)); });
        TriStable(b_.TableEvenements(), [this](std::uint32_t e) { return b_.DateEvt(e); });
        b_.triDocumentsModifie = b_.triEvenementsModifie = true;
    }

    void Fin() {
        Questions* q = o_.questions;
        // The sort orders the whole table; without it, the persons take
        // their places now.
        if (nonTrie_ && !r_.arrete) {
            r_.trie = !q || q->OuiNon(QuestionTri);
            b_.RangeDifferes(!r_.trie);
            if (r_.trie) TriStable();
        } else if (!r_.arrete) {
            // Already in the order of the keys: only equal keys move.
            b_.RangeDifferes(false);
            TriStable();
        } else {
            b_.RangeDifferes(true);
        }
        TriStableDocsEtEvts();
        // A stopped import is dropped by its caller: nothing more is asked.
        if (!r_.arrete && (!q || q->OuiNon(QuestionMotsCles))) {
            b_.FinLot();
            r_.motsCles = true;
        } else {
            b_.AbandonneLot();
        }
        b_.MarqueModif();
        b_.ValideBase();
    }

    Base& b_;
    const GedcomLu& g_;
    const OptionsImport& o_;
    RapportImport& r_;
    std::vector<std::uint32_t> numeros_;
    std::vector<char> genres_;
    std::vector<std::size_t> docsPasse2_;
    struct Hachage {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
    };
    static constexpr std::size_t kMemoire = 100000;
    DatesLues dates_;
    std::unordered_map<std::string, std::string, Hachage, std::equal_to<>> libelles_;
    std::size_t fait_ = 0;
    bool nonTrie_ = false;
    bool soumetteurLu_ = false;
    std::string derniereCle_;
};

std::string Exemples(const std::string& titre, const CompteAnomalie& c) {
    if (c.nombre == 0) return "";
    std::string t = titre + " : " + std::to_string(c.nombre) + "\r\n";
    for (const auto& e : c.exemples) {
        t += "  ";
        if (e.ligne) t += "ligne " + std::to_string(e.ligne) + " : ";
        t += e.texte + "\r\n";
    }
    return t;
}

} // namespace

bool RapportImport::vide() const {
    return erreur.empty() && lecture[Anomalie::CaractereRemplace].nombre == 0 &&
           tagsEnNote.nombre == 0 && lecture[Anomalie::PointeurOrphelin].nombre == 0 &&
           lecture[Anomalie::LigneTropLongue].nombre == 0 &&
           lecture[Anomalie::SansTag].nombre == 0 &&
           lecture[Anomalie::NiveauIncorrect].nombre == 0 && ascendance.nombre == 0 && !arrete;
}

std::string RapportImport::Texte() const {
    std::string t;
    if (!erreur.empty()) t += erreur + "\r\n";
    t += std::to_string(personnes) + " personnes, " + std::to_string(familles) + " familles, " +
         std::to_string(mariages) + " mariages, " + std::to_string(evenements) +
         " \xE9v\xE9nements, " + std::to_string(documents) + " documents\r\n";
    t += Exemples("Caract\xE8res remplac\xE9s", lecture[Anomalie::CaractereRemplace]);
    t += Exemples("Tags inconnus gard\xE9s dans les notes", tagsEnNote);
    t += Exemples("Pointeurs sans enregistrement", lecture[Anomalie::PointeurOrphelin]);
    // What the reader had to cut, drop or move: nothing goes without a word.
    t += Exemples("Lignes coup\xE9" "es \xE0 " + std::to_string(LongueurMaxLigne) + " octets",
                  lecture[Anomalie::LigneTropLongue]);
    t += Exemples("Lignes sans tag ignor\xE9" "es", lecture[Anomalie::SansTag]);
    t += Exemples("Lignes hors de leur niveau", lecture[Anomalie::NiveauIncorrect]);
    t += Exemples("Personnes qui seraient leur propre anc\xEAtre", ascendance);
    if (arrete) t += "Importation arr\xEAt\xE9" "e\r\n";
    return t;
}

GedcomLu PrepareGedcom(SystemeFichiers& fs, const std::string& chemin) {
    return LitGedcom(fs, chemin);
}

RapportImport ImporteGedcom(Base& b, const GedcomLu& g, const OptionsImport& options) {
    RapportImport r;
    r.lecture = g.rapport();
    r.erreur = g.rapport().erreur();
    Importeur imp(b, g, options, r);
    imp.Lance();
    return r;
}

std::string DecodeAge(std::string_view age) {
    // Each word such as "42y" gives "42 ans"; "<" and ">" stay in front, and
    // a word of any other form (CHILD, INFANT, STILLBORN) stays as it is.
    std::string r;
    const std::string texte = Trim(age);
    std::size_t debut = 0;
    while (debut < texte.size()) {
        auto fin = texte.find(' ', debut);
        if (fin == std::string::npos) fin = texte.size();
        std::string mot = texte.substr(debut, fin - debut);
        debut = fin + 1;
        if (mot.empty()) continue;
        std::size_t k = 0;
        while (k < mot.size() && (mot[k] == '<' || mot[k] == '>')) ++k;
        std::size_t c = k;
        while (c < mot.size() && std::isdigit(static_cast<unsigned char>(mot[c]))) ++c;
        int m = 0;
        if (c > k && c + 1 == mot.size()) {
            switch (mot[c]) {
            case 'y': case 'Y': m = 722; break;
            case 'm': case 'M': m = 723; break;
            case 'd': case 'D': m = 724; break;
            default: break;
            }
        }
        if (!r.empty()) r += ' ';
        r += m ? mot.substr(0, c) + " " + Message(m) : mot;
    }
    return r;
}

} // namespace sylvane
