// The reading layer of the GEDCOM import: one linear pass over the bytes of
// a file that finds its encoding, splits its lines, merges CONT and CONC,
// numbers its pointers through a hash table and builds the tree of records
// and sub-lines that the import walks. It never refuses a file: whatever can
// be read is kept, and every fault is counted in the report with its first
// examples.
#pragma once

#include "store/fichier.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sylvane {

// The encoding the file was read in. The first four are the sets a CHAR
// line names ("ANSI", "ANSEL", "ASCII" for code page 437, "HTML"); the
// others are found by their byte-order mark or their bytes.
enum class Encodage : std::uint8_t { Ansi, Ansel, Ascii, Html, Utf8, Utf16LE, Utf16BE };

// "ANSI", "ANSEL", "ASCII", "HTML", "UTF-8", "UTF-16LE", "UTF-16BE".
const char* NomEncodage(Encodage e);

// Faults counted while reading.
enum class Anomalie : std::uint8_t {
    CaractereRemplace, // a character Windows-1252 cannot hold: closest Latin form or "?"
    TagInconnu,        // a tag outside GEDCOM 5.5 (custom "_" tags included)
    PointeurOrphelin,  // a pointer that no line defines (one count per pointer)
    PointeurDouble,    // a pointer defined a second time: the first definition holds
    SansNiveau,        // a line that does not start with a level: kept as a CONT of the line before
    SansTag,           // a level with no tag: the line is dropped
    NiveauIncorrect,   // a level more than one below its parent, or a CONT/CONC with no parent
    NiveauEnorme,      // a level above 99: read as one below the line before
    NiveauProfond,     // a level above 5: read as 5, under the line of level 4
    LigneTropLongue,   // a line over LongueurMaxLigne: cut there, the rest dropped
};
constexpr std::size_t NombreAnomalies = 10;

// Why a file can't be imported at all. What could be read is still there.
enum class Inexploitable : std::uint8_t {
    Non,
    Vide,               // no byte
    TropGrand,          // over TailleMaxFichier: nothing read
    SansFinDeLigne,     // no line end in the first 1000 bytes
    SansEnregistrement, // not one line with a level and a tag
};

// Bounds of the reader.
constexpr std::size_t LongueurMaxLigne = std::size_t{1} << 20;     // bytes of one line
constexpr std::uint64_t TailleMaxFichier = std::uint64_t{1} << 30; // bytes of a file
constexpr std::size_t NombreExemples = 10;                         // examples kept per fault

struct ExempleAnomalie {
    std::uint32_t ligne = 0; // line number in the file, from 1
    // Windows-1252: the start of the line, the tag, the pointer, or for a
    // replaced character what it became.
    std::string texte;
    char32_t point = 0; // for a replaced character: the Unicode character of the file
};

struct CompteAnomalie {
    std::uint64_t nombre = 0;
    std::vector<ExempleAnomalie> exemples; // the first ones, NombreExemples at most
};

struct RapportGedcom {
    Encodage encodage = Encodage::Ansi;
    std::string jeuDeclare;   // the value of the HEAD's CHAR line, empty without one
    bool marqueOrdre = false; // the file starts with a byte-order mark
    Inexploitable inexploitable = Inexploitable::Non;
    bool sansEntete = false;  // the first record is not HEAD
    std::uint32_t lignes = 0; // physical lines, blank ones included
    std::array<CompteAnomalie, NombreAnomalies> anomalies;

    const CompteAnomalie& operator[](Anomalie a) const {
        return anomalies[static_cast<std::size_t>(a)];
    }
    // Nothing to say: readable, with a HEAD, and no fault counted.
    bool vide() const;
    // The box text of the import for a file that can't be read:
    // "Fichier GEDCOM inexploitable", or the empty text.
    std::string erreur() const;
};

// One line of the file with its CONT and CONC merged into its value. The
// sub-lines of line i are the lines i+1 to GedcomLu::fin(i)-1; its direct
// sub-lines start at i+1 and each next one at the end of the one before
// (see SousLignes). A file holds millions of them, so a line is 12 bytes:
// its number in the file follows from the line before but where a CONT, a
// CONC or a blank line breaks the run; the pointer a line defines or the
// one its value is stands where its value would (that value is the
// pointer's own text); and what does not fit (a line with a value and a
// pointer, a long value, a large tag number, a line with more than 65,534
// sub-lines) is kept aside.
struct LigneGedcom {
    std::uint32_t debut = 0;    // the value in the text store, or the pointer: see `genre`
    std::uint16_t longueur = 0; // LongueurAPart: kept aside
    std::uint16_t sous = 0;     // number of sub-lines + 1; SousAPart: kept aside
    std::uint16_t tag = 0;      // number in the tag table of the file; TagAPart: kept aside
    std::uint8_t niveau = 0;    // 0 to 5
    // What `debut` is: the value (Texte), with the pointers kept aside when
    // the line has any (APart); the pointer this line defines, with an
    // empty value ("0 @I1@ INDI"); the pointer its whole value is ("1 FAMS
    // @F2@").
    enum : std::uint8_t { Texte, APart, Definit, Lien } genre = Texte;
    static constexpr std::uint16_t TagAPart = 0xFFFF, LongueurAPart = 0xFFFF, SousAPart = 0xFFFF;
};
static_assert(sizeof(LigneGedcom) == 12);

class GedcomLu;

// The direct sub-lines of a line, as indexes into GedcomLu::lignes().
class SousLignes {
  public:
    class iterator {
      public:
        iterator(const GedcomLu* g, std::size_t i) : g_(g), i_(i) {}
        std::size_t operator*() const { return i_; }
        iterator& operator++();
        bool operator==(const iterator& o) const { return i_ == o.i_; }

      private:
        const GedcomLu* g_;
        std::size_t i_;
    };
    SousLignes(const GedcomLu* g, std::size_t debut, std::size_t fin)
        : g_(g), debut_(debut), fin_(fin) {}
    iterator begin() const { return {g_, debut_}; }
    iterator end() const { return {g_, fin_}; }

  private:
    const GedcomLu* g_;
    std::size_t debut_, fin_;
};

// A file as read. Every value is Windows-1252 text, trimmed of blanks, with
// "@@" read as "@": the import must not convert it again. "#" is kept as it
// is ("@#DFRENCH R@" needs it); the base's rule for "#" is the import's.
class GedcomLu {
  public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    GedcomLu() = default;
    // Moves only: a read file is large.
    GedcomLu(GedcomLu&&) = default;
    GedcomLu& operator=(GedcomLu&&) = default;
    GedcomLu(const GedcomLu&) = delete;
    GedcomLu& operator=(const GedcomLu&) = delete;

    const std::vector<LigneGedcom>& lignes() const { return lignes_; }
    const LigneGedcom& ligne(std::size_t i) const { return lignes_[i]; }
    // Indexes of the level-0 lines, in file order.
    const std::vector<std::uint32_t>& enregistrements() const { return enregistrements_; }
    // The number in the file of line i, from 1.
    std::uint32_t numero(std::size_t i) const;
    // The index past the last sub-line of line i.
    std::size_t fin(std::size_t i) const {
        const std::uint16_t s = lignes_[i].sous;
        return i + (s == LigneGedcom::SousAPart ? aPart(sousAPart_, i) : s);
    }
    SousLignes sousLignes(std::size_t i) const { return {this, i + 1, fin(i)}; }

    std::string_view tag(std::size_t i) const { return tags_[numeroTagLigne(i)]; }
    // Whether the tag of line i is one of GEDCOM 5.5 (see TagGedcom55).
    bool tag55(std::size_t i) const { return tags55_[numeroTagLigne(i)]; }
    std::string_view valeur(std::size_t i) const {
        const LigneGedcom& l = lignes_[i];
        switch (l.genre) {
        case LigneGedcom::Definit:
            return {};
        case LigneGedcom::Lien: // the pointer's text between its "@"
            return std::string_view(textePointeurs_)
                .substr(pointeurs_[l.debut].debut - 1, pointeurs_[l.debut].longueur + 2);
        default:
            return std::string_view(texte_).substr(
                l.debut, l.longueur == LigneGedcom::LongueurAPart ? aPart(longueursAPart_, i) : l.longueur);
        }
    }
    // The number of a tag in this file's table, 0 when the file never uses it.
    std::uint32_t numeroTag(std::string_view tag) const;
    // The first direct sub-line of line i with that tag, or npos.
    std::size_t sousLigne(std::size_t i, std::string_view tag) const;
    // Level-0 records with that tag.
    std::size_t compte(std::string_view tag) const;

    // The pointer line i defines ("0 @I1@ INDI"), 0 for none.
    std::uint32_t pointeur(std::size_t i) const {
        const LigneGedcom& l = lignes_[i];
        if (l.genre == LigneGedcom::Definit) return l.debut;
        return l.genre == LigneGedcom::APart ? aPart(definitionsAPart_, i) : 0;
    }
    // The pointer the whole value of line i is ("1 FAMS @F2@"), 0 for none.
    std::uint32_t lien(std::size_t i) const {
        const LigneGedcom& l = lignes_[i];
        if (l.genre == LigneGedcom::Lien) return l.debut;
        return l.genre == LigneGedcom::APart ? aPart(liensAPart_, i) : 0;
    }

    // Pointers are numbered from 1 in order of first sight.
    std::size_t nombrePointeurs() const { return pointeurs_.size() - 1; }
    // The text between the "@", e.g. "I12".
    std::string_view textePointeur(std::uint32_t p) const {
        return std::string_view(textePointeurs_).substr(pointeurs_[p].debut, pointeurs_[p].longueur);
    }
    // The index of the line that defines pointer p, or npos.
    std::size_t definition(std::uint32_t p) const {
        return pointeurs_[p].definition == 0 ? npos : pointeurs_[p].definition - 1;
    }
    // The record a value such as "@F2@" points to, or npos.
    std::size_t cible(std::size_t i) const {
        const std::uint32_t p = lien(i);
        return p == 0 ? npos : definition(p);
    }
    // Pointer number of a text such as "I12", 0 when the file has none such.
    std::uint32_t numeroPointeur(std::string_view texte) const;

    const RapportGedcom& rapport() const { return rapport_; }

  private:
    friend class LecteurGedcom;
    friend struct ChargeurGedcom;
    struct Pointeur {
        std::uint32_t debut = 0, longueur = 0; // the text in textePointeurs_, between "@"
        std::uint32_t definition = 0;          // line index + 1, 0 for none
        std::uint32_t premierUsage = 0;        // line number of the first use
    };
    // Values of the few lines that don't fit a LigneGedcom, by line index.
    using APart = std::vector<std::pair<std::uint32_t, std::uint32_t>>;
    static std::uint32_t aPart(const APart& a, std::size_t i);
    std::uint32_t numeroTagLigne(std::size_t i) const {
        const std::uint16_t t = lignes_[i].tag;
        return t == LigneGedcom::TagAPart ? aPart(tagsAPart_, i) : t;
    }
    std::vector<LigneGedcom> lignes_;
    std::vector<std::uint32_t> enregistrements_;
    std::string texte_;
    std::vector<std::string> tags_{std::string()};
    std::vector<bool> tags55_{false}; // by tag number
    std::unordered_map<std::string, std::uint32_t> numerosTags_;
    std::vector<Pointeur> pointeurs_{Pointeur{}};
    std::string textePointeurs_; // each text with its "@"
    // Open addressing over the pointer numbers: a slot holds the number
    // and the high bits of its text's hash, 0 when free.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> index_;
    // Most pointers are a capital and a number ("I12"): those are found by
    // their number in the table of their capital (0 for none), while the
    // tables stay within twice the number of pointers; the others by the
    // index.
    std::array<std::vector<std::uint32_t>, 26> directs_;
    std::size_t tailleDirects_ = 0;
    // The place of a text in directs_, or nullptr (and the number to give
    // it a place in `n`).
    const std::uint32_t* direct(std::string_view texte, std::uint32_t& n) const;
    std::uint32_t numeroIndex(std::string_view texte) const;
    // In order of line index once the file is read.
    APart tagsAPart_, definitionsAPart_, liensAPart_, longueursAPart_, sousAPart_;
    // The first line of each run of lines that follow each other in the
    // file, with its number.
    APart sauts_;
    RapportGedcom rapport_;
};

inline SousLignes::iterator& SousLignes::iterator::operator++() {
    i_ = g_->fin(i_);
    return *this;
}

// Whether a tag is one of GEDCOM 5.5 (custom "_" tags are not).
bool TagGedcom55(std::string_view tag);

// Reads a whole file through the file layer. An unreadable file is an
// ErreurES; a file over TailleMaxFichier is read as nothing, with the reason.
GedcomLu LitGedcom(SystemeFichiers& fs, const std::string& chemin);
// The same on bytes in memory.
GedcomLu LitGedcomOctets(std::string_view octets);

} // namespace sylvane
