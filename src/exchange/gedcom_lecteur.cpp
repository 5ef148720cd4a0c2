#include "exchange/gedcom_lecteur.h"

#include "text/conversion.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>

namespace sylvane {
namespace {

// The tags of GEDCOM 5.5. Any other tag is reported as unknown.
constexpr std::string_view kTags55[] = {
    "ABBR", "ADDR", "ADR1", "ADR2", "ADOP", "AFN",  "AGE",  "AGNC", "ALIA", "ANCE", "ANCI", "ANUL",
    "ASSO", "AUTH", "BAPL", "BAPM", "BARM", "BASM", "BIRT", "BLES", "BLOB", "BURI", "CALN", "CAST",
    "CAUS", "CENS", "CHAN", "CHAR", "CHIL", "CHR",  "CHRA", "CITY", "CONC", "CONF", "CONL", "CONT",
    "COPR", "CORP", "CREM", "CTRY", "DATA", "DATE", "DEAT", "DESC", "DESI", "DEST", "DIV",  "DIVF",
    "DSCR", "EDUC", "EMIG", "ENDL", "ENGA", "EVEN", "FAM",  "FAMC", "FAMF", "FAMS", "FCOM", "FILE",
    "FORM", "GEDC", "GIVN", "GRAD", "HEAD", "HUSB", "IDNO", "IMMI", "INDI", "LANG", "LEGA", "MARB",
    "MARC", "MARL", "MARR", "MARS", "MEDI", "NAME", "NATI", "NATU", "NCHI", "NICK", "NMR",  "NOTE",
    "NPFX", "NSFX", "OBJE", "OCCU", "ORDI", "ORDN", "PAGE", "PEDI", "PHON", "PLAC", "POST", "PROB",
    "PROP", "PUBL", "QUAY", "REFN", "RELA", "RELI", "REPO", "RESI", "RESN", "RETI", "RFN",  "RIN",
    "ROLE", "SEX",  "SLGC", "SLGS", "SOUR", "SPFX", "SSN",  "STAE", "STAT", "SUBM", "SUBN", "SURN",
    "TEMP", "TEXT", "TIME", "TITL", "TRLR", "TYPE", "VERS", "WIFE", "WILL"};

bool tagConnu(std::string_view t) {
    return std::find(std::begin(kTags55), std::end(kTags55), t) != std::end(kTags55);
}

bool estBlanc(char c) {
    return c == ' ' || c == '\t';
}
bool estChiffre(char c) {
    return c >= '0' && c <= '9';
}
unsigned char octet(char c) {
    return static_cast<unsigned char>(c);
}

std::string_view rogne(std::string_view s) {
    std::size_t d = 0, f = s.size();
    while (d < f && estBlanc(s[d]))
        ++d;
    while (f > d && estBlanc(s[f - 1]))
        --f;
    return s.substr(d, f - d);
}

bool toutAscii(std::string_view s) {
    for (char c : s)
        if (octet(c) >= 0x80) return false;
    return true;
}

// Whether a text holds at least one byte from 128 up and every such byte
// belongs to a well-formed UTF-8 sequence, given piece by piece: a
// sequence may straddle two pieces.
class VerifUtf8 {
  public:
    void ajoute(std::string_view piece) {
        if (!ok_) return;
        std::string joint;
        if (!reste_.empty()) {
            joint = reste_;
            joint += piece;
            piece = joint;
            reste_.clear();
        }
        std::size_t i = 0;
        const std::size_t n = piece.size();
        while (i < n) {
            // ASCII, nearly all of a file, eight bytes at a time.
            std::uint64_t huit = 0;
            if (n - i >= 8 && (std::memcpy(&huit, piece.data() + i, 8), (huit & 0x8080808080808080ull) == 0)) {
                i += 8;
                continue;
            }
            const unsigned char c = octet(piece[i]);
            if (c < 0x80) {
                ++i;
                continue;
            }
            std::size_t len;
            char32_t cp;
            if (c >= 0xC2 && c <= 0xDF) {
                len = 2;
                cp = c & 0x1F;
            } else if (c >= 0xE0 && c <= 0xEF) {
                len = 3;
                cp = c & 0x0F;
            } else if (c >= 0xF0 && c <= 0xF4) {
                len = 4;
                cp = c & 0x07;
            } else {
                ok_ = false;
                return;
            }
            if (n - i < len) {
                reste_ = piece.substr(i);
                return;
            }
            for (std::size_t k = 1; k < len; ++k) {
                const unsigned char b = octet(piece[i + k]);
                if ((b & 0xC0) != 0x80) {
                    ok_ = false;
                    return;
                }
                cp = (cp << 6) | (b & 0x3F);
            }
            if ((len == 3 && cp < 0x800) || (len == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
                (cp >= 0xD800 && cp <= 0xDFFF)) {
                ok_ = false;
                return;
            }
            multi_ = true;
            i += len;
        }
    }
    // At the end of the text: a sequence cut by the end is not UTF-8.
    bool resultat() const { return ok_ && multi_ && reste_.empty(); }

  private:
    bool ok_ = true, multi_ = false;
    std::string reste_;
};

// UTF-16 without a byte-order mark: nearly every character of a GEDCOM
// file is ASCII, so one byte of each pair is zero.
bool ressembleUtf16(std::string_view o, bool grosBout) {
    const std::size_t paires = std::min<std::size_t>(o.size(), 1000) / 2;
    if (paires == 0) return false;
    std::size_t zerosHauts = 0, zerosBas = 0;
    for (std::size_t k = 0; k < paires; ++k) {
        const char a = o[2 * k], b = o[2 * k + 1];
        if ((grosBout ? a : b) == 0) ++zerosHauts;
        if ((grosBout ? b : a) == 0) ++zerosBas;
    }
    return zerosHauts * 10 >= paires * 7 && zerosBas * 10 <= paires;
}

std::string utf16VersUtf8(std::string_view o, bool grosBout) {
    auto unite = [&](std::size_t i) -> char32_t {
        const char32_t a = octet(o[i]), b = octet(o[i + 1]);
        return grosBout ? (a << 8 | b) : (b << 8 | a);
    };
    std::string r;
    r.reserve(o.size() / 2 + 16);
    for (std::size_t i = 0; i + 1 < o.size(); i += 2) {
        char32_t u = unite(i);
        if (u >= 0xD800 && u <= 0xDBFF && i + 3 < o.size() && unite(i + 2) >= 0xDC00 &&
            unite(i + 2) <= 0xDFFF) {
            u = 0x10000 + ((u - 0xD800) << 10) + (unite(i + 2) - 0xDC00);
            i += 2;
        } else if (u >= 0xD800 && u <= 0xDFFF) {
            u = 0xFFFD;
        }
        AjouteUtf8(r, u);
    }
    return r;
}

// Bytes of a file or of memory, read a piece at a time: a file of a
// million persons is never held whole.
using Source = std::function<std::string(std::uint64_t position, std::size_t n)>;
constexpr std::size_t kMorceau = std::size_t{1} << 20;

// The lines of the bytes from `debut` to `fin` of a source; a line end is
// CR, LF, CR LF or LF CR. A line longer than LongueurMaxLigne is given
// with one byte more than that, which tells it, and the rest is skipped.
class Lignes {
  public:
    Lignes(const Source& source, std::uint64_t debut, std::uint64_t fin)
        : source_(source), pos_(debut), fin_(fin) {}

    bool suivante(std::string_view& l) {
        if (i_ == morceau_.size() && !remplit()) return false;
        ligne_.clear();
        for (;;) {
            const char* d = morceau_.data() + i_;
            const char* f = morceau_.data() + morceau_.size();
            const char* q = d;
            while (q < f && *q != '\r' && *q != '\n')
                ++q;
            const std::size_t place = LongueurMaxLigne + 1 - ligne_.size();
            ligne_.append(d, std::min(place, static_cast<std::size_t>(q - d)));
            i_ = static_cast<std::size_t>(q - morceau_.data());
            if (q == f) {
                if (remplit()) continue;
                break; // the last line, with no line end
            }
            const char autre = *q == '\r' ? '\n' : '\r';
            ++i_;
            if (i_ == morceau_.size()) remplit();
            if (i_ < morceau_.size() && morceau_[i_] == autre) ++i_;
            break;
        }
        l = ligne_;
        return true;
    }

  private:
    bool remplit() {
        if (pos_ >= fin_) return false;
        morceau_ = source_(pos_, static_cast<std::size_t>(std::min<std::uint64_t>(kMorceau, fin_ - pos_)));
        i_ = 0;
        if (morceau_.empty()) pos_ = fin_; // the file got shorter
        pos_ += morceau_.size();
        return !morceau_.empty();
    }

    const Source& source_;
    std::uint64_t pos_, fin_;
    std::string morceau_;
    std::size_t i_ = 0;
    std::string ligne_;
};

// A line split into its fields, before any conversion.
struct Decoupe {
    enum Etat { Blanche, SansNiveau, SansTag, Complete } etat = Blanche;
    std::uint32_t niveau = 0; // capped at 1000
    std::string_view pointeur, tag, valeur;
    // The value as written: behind the one blank that follows the tag, with
    // its blanks. Those of a CONT or CONC line are text.
    std::string_view brute;
};

Decoupe decoupe(std::string_view l) {
    Decoupe d;
    std::size_t i = 0;
    while (i < l.size() && estBlanc(l[i]))
        ++i;
    if (i == l.size()) return d;
    if (!estChiffre(l[i])) {
        d.etat = Decoupe::SansNiveau;
        return d;
    }
    while (i < l.size() && estChiffre(l[i])) {
        d.niveau =
            std::min<std::uint32_t>(d.niveau * 10 + static_cast<std::uint32_t>(l[i] - '0'), 1000);
        ++i;
    }
    if (i < l.size() && !estBlanc(l[i])) {
        d.etat = Decoupe::SansNiveau; // "1990s ..." is text, not a level
        return d;
    }
    d.etat = Decoupe::SansTag;
    auto mot = [&]() {
        while (i < l.size() && estBlanc(l[i]))
            ++i;
        const std::size_t debut = i;
        while (i < l.size() && !estBlanc(l[i]))
            ++i;
        return l.substr(debut, i - debut);
    };
    std::string_view m = mot();
    if (m.size() >= 3 && m.front() == '@' && m.back() == '@') {
        d.pointeur = m.substr(1, m.size() - 2);
        m = mot();
    }
    if (m.empty()) return d;
    d.tag = m;
    d.brute = l.substr(i < l.size() && estBlanc(l[i]) ? i + 1 : i);
    d.valeur = rogne(l.substr(i));
    d.etat = Decoupe::Complete;
    return d;
}

// A value that is a whole pointer: "@I12@", not "@#DFRENCH R@", not text.
bool estPointeur(std::string_view v) {
    return v.size() >= 3 && v.size() <= 66 && v.front() == '@' && v.back() == '@' && v[1] != '#' &&
           v.substr(1, v.size() - 2).find('@') == std::string_view::npos;
}

// The value of the HEAD's CHAR line, looked for before the HEAD ends.
std::string jeuDeclare(Lignes t) {
    std::string_view l;
    for (int n = 0; n < 2000 && t.suivante(l); ++n) {
        const Decoupe d = decoupe(l);
        if (d.etat != Decoupe::Complete) continue;
        if (d.niveau == 0 && n > 0) break;
        if (d.niveau == 1 && d.tag == "CHAR") return std::string(d.valeur.substr(0, 40));
    }
    return {};
}

// FNV-1a, for the pointer index.
std::uint64_t hachage(std::string_view s) {
    std::uint64_t h = 14695981039346656037ull;
    for (char c : s) {
        h ^= octet(c);
        h *= 1099511628211ull;
    }
    return h;
}

std::string enMajuscules(std::string s) {
    for (char& c : s)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return s;
}

} // namespace

const char* NomEncodage(Encodage e) {
    switch (e) {
    case Encodage::Ansi:
        return "ANSI";
    case Encodage::Ansel:
        return "ANSEL";
    case Encodage::Ascii:
        return "ASCII";
    case Encodage::Html:
        return "HTML";
    case Encodage::Utf8:
        return "UTF-8";
    case Encodage::Utf16LE:
        return "UTF-16LE";
    case Encodage::Utf16BE:
        return "UTF-16BE";
    }
    return "";
}

bool RapportGedcom::vide() const {
    if (inexploitable != Inexploitable::Non || sansEntete) return false;
    return std::all_of(anomalies.begin(), anomalies.end(),
                       [](const CompteAnomalie& c) { return c.nombre == 0; });
}

std::string RapportGedcom::erreur() const {
    return inexploitable == Inexploitable::Non ? std::string() : "Fichier GEDCOM inexploitable";
}

std::uint32_t GedcomLu::numeroTag(std::string_view tag) const {
    const auto it = numerosTags_.find(std::string(tag));
    return it == numerosTags_.end() ? 0 : it->second;
}

std::size_t GedcomLu::sousLigne(std::size_t i, std::string_view tag) const {
    const std::uint32_t t = numeroTag(tag);
    if (t == 0) return npos;
    for (std::size_t j : sousLignes(i))
        if (numeroTagLigne(j) == t) return j;
    return npos;
}

std::uint32_t GedcomLu::aPart(const APart& a, std::size_t i) {
    const auto it = std::lower_bound(a.begin(), a.end(), std::pair<std::uint32_t, std::uint32_t>(
                                                             static_cast<std::uint32_t>(i), 0));
    return it != a.end() && it->first == i ? it->second : 0;
}

std::uint32_t GedcomLu::numero(std::size_t i) const {
    const auto it = std::upper_bound(sauts_.begin(), sauts_.end(), static_cast<std::uint32_t>(i),
                                     [](std::uint32_t j, const auto& s) { return j < s.first; });
    if (it == sauts_.begin()) return 0;
    return std::prev(it)->second + static_cast<std::uint32_t>(i - std::prev(it)->first);
}

std::size_t GedcomLu::compte(std::string_view tag) const {
    const std::uint32_t t = numeroTag(tag);
    if (t == 0) return 0;
    return static_cast<std::size_t>(
        std::count_if(enregistrements_.begin(), enregistrements_.end(),
                      [&](std::uint32_t i) { return numeroTagLigne(i) == t; }));
}

// A capital then a number of nine digits at most, with no zero in front.
bool pointeurDirect(std::string_view t, std::uint32_t& lettre, std::uint32_t& n) {
    if (t.size() < 2 || t.size() > 10 || t[0] < 'A' || t[0] > 'Z' || t[1] < '1' || t[1] > '9')
        return false;
    n = 0;
    for (std::size_t i = 1; i < t.size(); ++i) {
        if (!estChiffre(t[i])) return false;
        n = n * 10 + static_cast<std::uint32_t>(t[i] - '0');
    }
    lettre = static_cast<std::uint32_t>(t[0] - 'A');
    return true;
}

const std::uint32_t* GedcomLu::direct(std::string_view texte, std::uint32_t& n) const {
    std::uint32_t lettre = 0;
    if (!pointeurDirect(texte, lettre, n)) return nullptr;
    const auto& d = directs_[lettre];
    return n < d.size() ? &d[n] : nullptr;
}

std::uint32_t GedcomLu::numeroPointeur(std::string_view texte) const {
    std::uint32_t n = 0;
    if (const std::uint32_t* d = direct(texte, n); d && *d) return *d;
    return numeroIndex(texte);
}

std::uint32_t GedcomLu::numeroIndex(std::string_view texte) const {
    if (index_.empty()) return 0;
    const std::uint64_t h = hachage(texte);
    const auto haut = static_cast<std::uint32_t>(h >> 32);
    const std::size_t masque = index_.size() - 1;
    for (std::size_t k = static_cast<std::size_t>(h) & masque;; k = (k + 1) & masque) {
        const auto [p, hp] = index_[k];
        if (p == 0) return 0;
        if (hp == haut && textePointeur(p) == texte) return p;
    }
}

// The pass itself. The lines still open (the current line and its parents)
// sit on a stack indexed by level, 0 to 5, each with its value being built
// from its CONT and CONC; a line's value goes to the text store when it is
// closed, so each byte is copied a bounded number of times.
class LecteurGedcom {
  public:
    LecteurGedcom(GedcomLu& g, Encodage e) : g_(g), r_(g.rapport_), enc_(e) {}

    void lis(Lignes t) {
        std::string_view l;
        while (t.suivante(l)) {
            ++r_.lignes;
            if (l.size() > LongueurMaxLigne) {
                signale(Anomalie::LigneTropLongue, l.substr(0, 60));
                std::size_t coupe = LongueurMaxLigne;
                if (enc_ == Encodage::Utf8 || enc_ == Encodage::Utf16LE ||
                    enc_ == Encodage::Utf16BE)
                    while (coupe > 0 && (octet(l[coupe]) & 0xC0) == 0x80)
                        --coupe;
                l = l.substr(0, coupe);
            }
            ligne(l);
        }
        relache();
        while (haut_ >= 0)
            ferme();
        termine();
    }

  private:
    struct Ouverte {
        std::uint32_t index = 0;    // in lignes_
        std::uint32_t niveauLu = 0; // as written in the file
        std::string valeur;
        std::size_t segment = 0; // bytes of the file in its last line of text, before any CONC
        bool conc = false;       // that line of text has a CONC
    };
    // A piece of the program's own cut that stands under the tag of the
    // piece before it: joined to that piece, it stays joined only if a CONC
    // follows, as it always does in the program's files.
    struct Attente {
        bool active = false;
        int k = 0;                 // the line on the stack it was joined to
        std::size_t position = 0;  // where its text starts in that value
        std::string ligne;         // the line, read again when no CONC follows
    };

    // Whether a CONT or a repeated tag with this value is the piece the
    // program's writer puts under the tag of the piece before, after a cut
    // at a blank that it keeps: 60 bytes with no blank (a few less in
    // UTF-8, never cut inside a character), behind a piece that ends with
    // the blank and has no CONC.
    bool pieceDeCoupe(const Ouverte& o, std::string_view brute) const {
        if (!dialecte_ || reprise_ || o.conc || o.valeur.empty() || o.valeur.back() != ' ')
            return false;
        const bool utf8 = enc_ == Encodage::Utf8 || enc_ == Encodage::Utf16LE || enc_ == Encodage::Utf16BE;
        if (brute.size() > 60 || brute.size() < (utf8 ? 57u : 60u)) return false;
        return std::none_of(brute.begin(), brute.end(), estBlanc);
    }
    void differe(int k, std::string_view brute, std::string_view ligne) {
        attente_ = {true, k, pile_[k].valeur.size(), std::string(ligne)};
        convertit(brute, pile_[k].valeur);
        pile_[k].segment = brute.size();
        pile_[k].conc = false;
    }
    // The piece held back had no CONC behind it: it is a line of its own.
    void relache() {
        if (!attente_.active) return;
        attente_.active = false;
        pile_[attente_.k].valeur.resize(attente_.position);
        const std::string l = std::move(attente_.ligne);
        reprise_ = true;
        ligne(l);
        reprise_ = false;
    }

    void ligne(std::string_view brute) {
        const Decoupe d = decoupe(brute);
        if (d.etat == Decoupe::SansNiveau || d.etat == Decoupe::SansTag) relache();
        switch (d.etat) {
        case Decoupe::Blanche:
            return;
        case Decoupe::SansNiveau:
            // Text cut by a raw line end: keep its words as a new line of the
            // value before.
            signale(Anomalie::SansNiveau, brute.substr(0, 60));
            if (haut_ >= 0) {
                pile_[haut_].valeur += "\r\n";
                convertit(rogne(brute), pile_[haut_].valeur);
            }
            return;
        case Decoupe::SansTag:
            signale(Anomalie::SansTag, brute.substr(0, 60));
            return;
        case Decoupe::Complete:
            break;
        }
        const bool enorme = d.niveau > 99;
        if (enorme) signale(Anomalie::NiveauEnorme, brute.substr(0, 60));

        if (d.tag == "CONT" || d.tag == "CONC") {
            int k = haut_;
            while (k >= 0 && pile_[k].niveauLu >= d.niveau)
                --k;
            if (attente_.active && (d.tag != "CONC" || k != attente_.k)) relache();
            attente_.active = false;
            if (k < 0 || (!enorme && pile_[k].niveauLu + 1 < d.niveau)) {
                signale(Anomalie::NiveauIncorrect, brute.substr(0, 60));
                if (k < 0) k = haut_;
                if (k < 0) return;
            }
            Ouverte& o = pile_[k];
            if (d.tag == "CONT") {
                if (pieceDeCoupe(o, d.brute)) return differe(k, d.brute, brute);
                o.valeur += "\r\n";
                o.segment = d.brute.size();
                o.conc = false;
            } else {
                // GEDCOM joins CONC with nothing between. The program's
                // files written before the blank of a cut was kept dropped
                // it after a piece of less than 60 bytes: it comes back.
                const bool utf8 = enc_ == Encodage::Utf8 || enc_ == Encodage::Utf16LE ||
                                  enc_ == Encodage::Utf16BE;
                if (dialecte_ && !utf8 && !o.conc && o.segment < 60 && !o.valeur.empty() &&
                    !estBlanc(o.valeur.back()) && d.brute.size() > 0 && !estBlanc(d.brute.front()))
                    o.valeur += ' ';
                o.conc = true;
            }
            convertit(d.brute, o.valeur);
            return;
        }
        if (attente_.active) relache();

        std::uint32_t niveau = d.niveau;
        const std::uint32_t limite = haut_ < 0 ? 0 : pile_[haut_].niveauLu + 1;
        if (niveau > limite) {
            if (!enorme) signale(Anomalie::NiveauIncorrect, brute.substr(0, 60));
            niveau = limite;
        }
        if (haut_ >= 0 && d.pointeur.empty() && pile_[haut_].niveauLu == niveau &&
            pile_[haut_].index + 1 == g_.lignes_.size() &&
            g_.tag(pile_[haut_].index) == d.tag && pieceDeCoupe(pile_[haut_], d.brute))
            return differe(haut_, d.brute, brute);
        while (haut_ >= 0 && pile_[haut_].niveauLu >= niveau)
            ferme();
        if (haut_ == 5) ferme();
        if (niveau > 5) signale(Anomalie::NiveauProfond, brute.substr(0, 60));

        const auto index = static_cast<std::uint32_t>(g_.lignes_.size());
        LigneGedcom l;
        const auto& sauts = g_.sauts_;
        if (sauts.empty() || sauts.back().second + (index - sauts.back().first) != r_.lignes)
            g_.sauts_.emplace_back(index, r_.lignes);
        l.niveau = static_cast<std::uint8_t>(++haut_);
        const std::uint32_t tag = numeroTag(d.tag);
        if (tag < LigneGedcom::TagAPart) {
            l.tag = static_cast<std::uint16_t>(tag);
        } else {
            l.tag = LigneGedcom::TagAPart;
            g_.tagsAPart_.emplace_back(index, tag);
        }
        Ouverte& o = pile_[haut_];
        o.index = index;
        o.niveauLu = niveau;
        o.valeur.clear();
        if (!d.pointeur.empty()) {
            l.debut = pointeur(d.pointeur, false);
            l.genre = LigneGedcom::Definit;
            auto& p = g_.pointeurs_[l.debut];
            if (p.definition == 0)
                p.definition = index + 1;
            else
                signale(Anomalie::PointeurDouble, d.pointeur);
        }
        o.conc = false;
        if (estPointeur(d.valeur)) {
            const std::uint32_t lien = pointeur(d.valeur.substr(1, d.valeur.size() - 2), true);
            if (l.genre == LigneGedcom::Definit) {
                l.genre = LigneGedcom::APart;
                g_.definitionsAPart_.emplace_back(index, l.debut);
                g_.liensAPart_.emplace_back(index, lien);
            } else {
                l.debut = lien;
                l.genre = LigneGedcom::Lien;
            }
            o.valeur = d.valeur;
        } else {
            // Blanks at the end stay until the line closes: a CONC may
            // follow them.
            std::string_view v = d.brute;
            while (!v.empty() && estBlanc(v.front()))
                v.remove_prefix(1);
            o.segment = v.size();
            convertit(v, o.valeur);
        }
        if (niveau == 1 && d.tag == "SOUR" && haut_ == 1 && d.valeur == "SYLVANE" &&
            g_.tag(pile_[0].index) == "HEAD")
            dialecte_ = true;
        if (l.niveau == 0) g_.enregistrements_.push_back(index);
        g_.lignes_.push_back(l);
    }

    void ferme() {
        Ouverte& o = pile_[haut_--];
        while (!o.valeur.empty() && estBlanc(o.valeur.back()))
            o.valeur.pop_back();
        LigneGedcom& l = g_.lignes_[o.index];
        const std::size_t sous = g_.lignes_.size() - o.index;
        if (sous < LigneGedcom::SousAPart) {
            l.sous = static_cast<std::uint16_t>(sous);
        } else {
            l.sous = LigneGedcom::SousAPart;
            g_.sousAPart_.emplace_back(o.index, static_cast<std::uint32_t>(sous));
        }
        // A pointer stands for the value while it is the whole value: the
        // pointer's own text.
        if (l.genre == LigneGedcom::Definit) {
            if (o.valeur.empty()) return;
            g_.definitionsAPart_.emplace_back(o.index, l.debut);
            l.genre = LigneGedcom::APart;
        } else if (l.genre == LigneGedcom::Lien) {
            if (o.valeur.size() == g_.pointeurs_[l.debut].longueur + 2) return;
            g_.liensAPart_.emplace_back(o.index, l.debut);
            l.genre = LigneGedcom::APart;
        }
        const std::size_t place = std::numeric_limits<std::uint32_t>::max() - g_.texte_.size();
        if (o.valeur.size() > place) o.valeur.resize(place);
        l.debut = static_cast<std::uint32_t>(g_.texte_.size());
        if (o.valeur.size() < LigneGedcom::LongueurAPart) {
            l.longueur = static_cast<std::uint16_t>(o.valeur.size());
        } else {
            l.longueur = LigneGedcom::LongueurAPart;
            g_.longueursAPart_.emplace_back(o.index, static_cast<std::uint32_t>(o.valeur.size()));
        }
        g_.texte_ += o.valeur;
    }

    std::uint32_t numeroTag(std::string_view tag) {
        auto [it, nouveau] = g_.numerosTags_.try_emplace(
            std::string(tag), static_cast<std::uint32_t>(g_.tags_.size()));
        if (nouveau) {
            g_.tags_.emplace_back(tag);
            g_.tags55_.push_back(tagConnu(tag));
            if (!g_.tags55_.back()) exemple(Anomalie::TagInconnu, tag);
        }
        if (!g_.tags55_[it->second]) ++compte(Anomalie::TagInconnu).nombre;
        return it->second;
    }

    std::uint32_t pointeur(std::string_view texte, bool usage) {
        std::uint32_t n = 0;
        if (const std::uint32_t* d = g_.direct(texte, n); d && *d) {
            auto& p = g_.pointeurs_[*d];
            if (usage && p.premierUsage == 0) p.premierUsage = r_.lignes;
            return *d;
        }
        // A pointer seen before the table of its capital reached it is in
        // the index.
        std::uint32_t lettre = 0;
        if (pointeurDirect(texte, lettre, n)) {
            auto& d = g_.directs_[lettre];
            const std::size_t ajout = n < d.size() ? 0 : n + 1 - d.size();
            if (g_.tailleDirects_ + ajout <= 2 * g_.pointeurs_.size() + 4096 &&
                g_.numeroIndex(texte) == 0) {
                d.resize(d.size() + ajout);
                g_.tailleDirects_ += ajout;
                d[n] = nouveau(texte, usage);
                return d[n];
            }
        }
        return indexe(texte, usage);
    }
    std::uint32_t nouveau(std::string_view texte, bool usage) {
        const auto numero = static_cast<std::uint32_t>(g_.pointeurs_.size());
        // The texts come from lines of a file of at most 1 GB: they fit.
        g_.pointeurs_.push_back({static_cast<std::uint32_t>(g_.textePointeurs_.size() + 1),
                                 static_cast<std::uint32_t>(texte.size()), 0,
                                 usage ? r_.lignes : 0});
        g_.textePointeurs_ += '@';
        g_.textePointeurs_ += texte;
        g_.textePointeurs_ += '@';
        return numero;
    }
    std::uint32_t indexe(std::string_view texte, bool usage) {
        auto& index = g_.index_;
        if (indexes_ * 2 >= index.size()) agrandit();
        const std::uint64_t h = hachage(texte);
        const auto haut = static_cast<std::uint32_t>(h >> 32);
        const std::size_t masque = index.size() - 1;
        std::size_t k = static_cast<std::size_t>(h) & masque;
        for (; index[k].first != 0; k = (k + 1) & masque) {
            if (index[k].second != haut || g_.textePointeur(index[k].first) != texte) continue;
            auto& p = g_.pointeurs_[index[k].first];
            if (usage && p.premierUsage == 0) p.premierUsage = r_.lignes;
            return index[k].first;
        }
        const std::uint32_t numero = nouveau(texte, usage);
        index[k] = {numero, haut};
        ++indexes_;
        return numero;
    }
    void agrandit() {
        std::vector<std::pair<std::uint32_t, std::uint32_t>> neuf(
            std::max<std::size_t>(1024, g_.index_.size() * 2));
        const std::size_t masque = neuf.size() - 1;
        for (std::uint32_t p = 1; p < g_.pointeurs_.size(); ++p) {
            std::uint32_t n = 0;
            if (const std::uint32_t* d = g_.direct(g_.textePointeur(p), n); d && *d == p) continue;
            const std::uint64_t h = hachage(g_.textePointeur(p));
            std::size_t k = static_cast<std::size_t>(h) & masque;
            while (neuf[k].first != 0)
                k = (k + 1) & masque;
            neuf[k] = {p, static_cast<std::uint32_t>(h >> 32)};
        }
        g_.index_.swap(neuf);
    }

    // Windows-1252 text of the file's bytes, with "@@" read as "@".
    void convertit(std::string_view brut, std::string& sortie) {
        std::string sansArobases;
        if (brut.find("@@") != std::string_view::npos) {
            sansArobases.reserve(brut.size());
            for (std::size_t i = 0; i < brut.size(); ++i) {
                sansArobases += brut[i];
                if (brut[i] == '@' && i + 1 < brut.size() && brut[i + 1] == '@') ++i;
            }
            brut = sansArobases;
        }
        if (enc_ == Encodage::Html) {
            sortie += brut.find('&') == std::string_view::npos ? std::string(brut)
                                                               : Conv_HtmlVersAnsi(brut);
            return;
        }
        if (enc_ == Encodage::Ansi || toutAscii(brut)) {
            sortie += brut;
            return;
        }
        switch (enc_) {
        case Encodage::Ascii:
            sortie += Conv_437VersAnsi(brut);
            break;
        case Encodage::Ansel:
            compteMarquesPerdues(brut);
            sortie += Conv_AnselVersAnsiRef(brut);
            break;
        default:
            // Characters Windows-1252 can't hold are kept as references.
            sortie += Utf8VersAnsiRef(brut);
        }
    }

    // ANSEL: a mark that Unicode has not, one before another mark and one
    // ending the text are lost; the bare letter stands for the character.
    void compteMarquesPerdues(std::string_view s) {
        for (std::size_t i = 0; i < s.size(); ++i) {
            const unsigned char m = octet(s[i]);
            if (m < 0xE0 || m == 0xFF) continue;
            const bool seule = i + 1 == s.size() || octet(s[i + 1]) >= 0xE0;
            std::string r;
            if (!seule) {
                if (MarqueAnselGardee(m, octet(s[i + 1]))) continue; // kept with its letter
                const char paire[2] = {s[i], s[i + 1]};
                r = Conv_AnselVersAnsi(std::string_view(paire, 2));
            }
            ++compte(Anomalie::CaractereRemplace).nombre;
            exemple(Anomalie::CaractereRemplace, r, MarqueAnsel(m));
        }
    }

    CompteAnomalie& compte(Anomalie a) { return r_.anomalies[static_cast<std::size_t>(a)]; }

    void exemple(Anomalie a, std::string_view texte, char32_t point = 0) {
        auto& c = compte(a);
        if (c.exemples.size() < NombreExemples)
            c.exemples.push_back({r_.lignes, std::string(texte), point});
    }

    // Counts a fault of the current line; the example is its start, converted.
    void signale(Anomalie a, std::string_view brut) {
        ++compte(a).nombre;
        if (compte(a).exemples.size() >= NombreExemples) return;
        // The example is no new fault: what its conversion counts is undone.
        auto& remplaces = compte(Anomalie::CaractereRemplace);
        const std::size_t nombre = remplaces.nombre, exemples = remplaces.exemples.size();
        std::string texte;
        convertit(brut, texte);
        remplaces.nombre = nombre;
        remplaces.exemples.resize(exemples);
        exemple(a, texte);
    }

    void termine() {
        // Lines are closed after their sub-lines: what they keep aside is
        // put back in the order of the lines.
        for (GedcomLu::APart* a : {&g_.definitionsAPart_, &g_.liensAPart_, &g_.longueursAPart_,
                                   &g_.sousAPart_})
            std::sort(a->begin(), a->end());
        for (std::size_t p = 1; p < g_.pointeurs_.size(); ++p) {
            const auto& ptr = g_.pointeurs_[p];
            if (ptr.definition != 0) continue;
            auto& c = compte(Anomalie::PointeurOrphelin);
            ++c.nombre;
            if (c.exemples.size() < NombreExemples)
                c.exemples.push_back({ptr.premierUsage, std::string(g_.textePointeur(p)), 0});
        }
        if (g_.enregistrements_.empty()) {
            if (r_.inexploitable == Inexploitable::Non)
                r_.inexploitable = Inexploitable::SansEnregistrement;
        } else if (g_.tag(g_.enregistrements_.front()) != "HEAD") {
            r_.sansEntete = true;
        }
    }

    GedcomLu& g_;
    RapportGedcom& r_;
    const Encodage enc_;
    Ouverte pile_[6];
    int haut_ = -1;
    Attente attente_;
    bool dialecte_ = false; // a file of this program: "1 SOUR SYLVANE" in its HEAD
    bool reprise_ = false;  // a held-back piece read again as a line of its own
    std::size_t indexes_ = 0;    // pointers in g_.index_
};

// The whole read: encoding, counts, then the lines.
struct ChargeurGedcom {
    static GedcomLu lis(std::uint64_t taille, const Source& source);
};

GedcomLu ChargeurGedcom::lis(std::uint64_t taille, const Source& source) {
    GedcomLu g;
    RapportGedcom& r = g.rapport_;
    if (taille == 0) {
        r.inexploitable = Inexploitable::Vide;
        return g;
    }
    if (taille > TailleMaxFichier) {
        r.inexploitable = Inexploitable::TropGrand;
        return g;
    }

    // The byte-order mark or the bytes themselves rule over the CHAR line.
    const std::string tete = source(0, static_cast<std::size_t>(std::min<std::uint64_t>(taille, 1000)));
    std::string utf8;
    Source memoire = [&utf8](std::uint64_t position, std::size_t n) {
        return position >= utf8.size() ? std::string() : utf8.substr(position, n);
    };
    const Source* t = &source;
    std::uint64_t debut = 0;
    const bool le = tete.starts_with("\xFF\xFE"), be = tete.starts_with("\xFE\xFF");
    if (le || be || ressembleUtf16(tete, false) || ressembleUtf16(tete, true)) {
        // UTF-16 is read whole and made UTF-8 at once.
        const bool grosBout = be || (!le && ressembleUtf16(tete, true));
        r.encodage = grosBout ? Encodage::Utf16BE : Encodage::Utf16LE;
        r.marqueOrdre = le || be;
        const std::string octets = source(0, static_cast<std::size_t>(taille));
        utf8 = utf16VersUtf8(std::string_view(octets).substr(r.marqueOrdre ? 2 : 0), grosBout);
        t = &memoire;
        taille = utf8.size();
    } else if (tete.starts_with("\xEF\xBB\xBF")) {
        r.encodage = Encodage::Utf8;
        r.marqueOrdre = true;
        debut = 3;
    }
    r.jeuDeclare = jeuDeclare(Lignes(*t, debut, taille));

    // One pass over the bytes for the UTF-8 check and the count of line
    // ends: one line per line end at most (CONT and CONC lines are
    // merged), which spares the table its growth by doubling.
    const std::string jeu = enMajuscules(r.jeuDeclare);
    const bool verifier = !r.marqueOrdre && r.encodage == Encodage::Ansi && jeu != "UTF-8" &&
                          jeu != "UTF8" && jeu != "UNICODE";
    VerifUtf8 verif;
    std::size_t lf = 0, cr = 0;
    for (std::uint64_t p = debut; p < taille;) {
        const std::string m = (*t)(p, static_cast<std::size_t>(std::min<std::uint64_t>(kMorceau, taille - p)));
        if (m.empty()) break;
        p += m.size();
        if (verifier) verif.ajoute(m);
        lf += static_cast<std::size_t>(std::count(m.begin(), m.end(), '\n'));
        cr += static_cast<std::size_t>(std::count(m.begin(), m.end(), '\r'));
    }
    if (!r.marqueOrdre && r.encodage == Encodage::Ansi) {
        if (!verifier || verif.resultat())
            r.encodage = Encodage::Utf8;
        else if (jeu == "ANSEL")
            r.encodage = Encodage::Ansel;
        else if (jeu == "ASCII" || jeu == "IBMPC" || jeu == "IBM PC")
            r.encodage = Encodage::Ascii;
        else if (jeu == "HTML")
            r.encodage = Encodage::Html;
    }

    if ((*t)(debut, 1000).find_first_of("\r\n") == std::string::npos)
        r.inexploitable = Inexploitable::SansFinDeLigne;

    g.lignes_.reserve((lf ? lf : cr) + 1);
    // Values are never longer than the lines they come from, but for
    // characters written as references; the pages not filled cost nothing.
    g.texte_.reserve(static_cast<std::size_t>(taille - debut) + 16);
    LecteurGedcom(g, r.encodage).lis(Lignes(*t, debut, taille));
    return g;
}

GedcomLu LitGedcomOctets(std::string_view octets) {
    return ChargeurGedcom::lis(octets.size(), [octets](std::uint64_t position, std::size_t n) {
        return position >= octets.size() ? std::string() : std::string(octets.substr(position, n));
    });
}

GedcomLu LitGedcom(SystemeFichiers& fs, const std::string& chemin) {
    auto f = fs.ouvrir(chemin, Mode::Lecture);
    return ChargeurGedcom::lis(f->taille(), [&f](std::uint64_t position, std::size_t n) { return f->lire(position, n); });
}

bool TagGedcom55(std::string_view tag) {
    return tagConnu(tag);
}

} // namespace sylvane
