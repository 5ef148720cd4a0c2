// The keyword kinds of a base (the rubric table: a mark, a label, and a
// sorted keyword list when the kind is indexed), the rubric rows of the
// person and marriage sheets, and the replacement of one keyword by another
// in every note of the base with the keyword index kept true.
//
// Every change that rewrites notes commits what was pending first, then
// works in memory and commits once at its end: a failure on the way drops
// the base's changes (the base is given up, and the file stays at the
// commit before), so a base is never left half replaced.
#pragma once

#include "store/base.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace sylvane {

// Refusals of the kind and replacement commands, as message numbers.
namespace msg_mots {
inline constexpr int RepereRefuse = 718;      // a mark outside the allowed characters
inline constexpr int LibelleVide = 719;
inline constexpr int RepereUtilise = 952;
inline constexpr int DoitEtreIndexe = 4250;   // "Le type de mot-clé doit être indexé"
inline constexpr int GenreEmploye = 4251;     // a sheet rubric uses the kind
inline constexpr int RepereFixe = 4252;       // the five fixed marks stay
inline constexpr int TropDeGenres = 4253;     // 50 kinds at most
inline constexpr int MotNouveauRefuse = 4254; // empty, or a "#" or a line end
inline constexpr int TropDeRubriques = 4255;  // 10 sheet rows at most
} // namespace msg_mots

// One keyword kind: the rubric k of the table, k = place in the list + 1.
struct GenreMot {
    char marque = ' ';
    std::string tag;     // as stored
    std::string libelle; // the tag through the tag table
    bool indexe = false; // has a keyword list
};

// The marks "|", "¶", "$", "~" and "@": name, first names, birth, death
// and marriage places, which the notes are built on.
bool MarqueFixe(char marque);
// The allowed mark of a typed text: one character, folded; 0 when refused.
char MarqueSaisie(const std::string& texte);

std::vector<GenreMot> GenresMots(Base& b);

// Each returns 0 when done, else the message number of the refusal, with
// nothing changed. An indexed kind gets its keyword list built from every
// note (RefaitRubrique), then the base is committed.
int AjouteGenre(Base& b, const std::string& marque, const std::string& libelle, bool indexe);
// A new mark is written into every note that held the old one; the list
// goes with the kind, since its words do not change.
int ModifieGenre(Base& b, std::uint32_t k, const std::string& marque,
                 const std::string& libelle, bool indexe);
// The last kind takes the place of the one removed.
int SupprimeGenre(Base& b, std::uint32_t k);
void EchangeGenres(Base& b, std::uint32_t i, std::uint32_t j);

// The rubric rows of the sheets, in order: a kind's mark and the date flag.
// The tags are those of the kinds. Returns 0, or a message number.
int EcritRangsRubriques(Base& b, const std::vector<SlotRubrique>& personnes,
                        const std::vector<SlotRubrique>& mariages);
std::vector<SlotRubrique> RangsRubriques(const Base& b, bool mariage);

// --- Replacement of a keyword ------------------------------------------------------

struct DemandeRemplacement {
    char marque = ' ';
    std::string ancien;  // compared folded, blanks at its right dropped
    std::string nouveau; // written as typed, blanks made dots
    bool tous = false;   // behind the mark of every kind, by a scan of all notes
};

struct BilanRemplacement {
    int refus = 0; // message number, nothing done
    bool arrete = false; // stopped during the scan, nothing done
    std::size_t personnes = 0, mariages = 0, occurrences = 0;
};

// `progres(fait, total)` is called during the search of the notes and
// answers true to stop; once writing has begun it is no longer asked.
// Throws ErreurES when the file fails, after giving the base up.
BilanRemplacement RemplaceMot(Base& b, const DemandeRemplacement& d,
                              const std::function<bool(std::size_t, std::size_t)>& progres = {});

// Replaces in `texte`, outside rich text groups, every keyword of key `cle`
// behind one of `marques`, ending at a blank, a line end or the end.
// Returns the number of replacements.
std::size_t RemplaceDansTexte(std::string& texte, const std::string& marques,
                              const std::string& cle, const std::string& nouveau);

// The index key of a typed keyword: dots for blanks, folded, no blank at
// its right.
std::string CleMotSaisi(const std::string& texte);
// The entry of a keyword in the list of rubric k, 0 when absent.
std::uint32_t EntreeDuMot(Base& b, std::uint32_t k, const std::string& cle);

} // namespace sylvane
