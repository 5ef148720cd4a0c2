// The GEDCOM import: fills a new, empty base from a file of any origin, read
// by the reading layer (gedcom_lecteur.h). Pass 1 makes the persons, events
// and documents; pass 2 the links, citations, marriages and children. Nothing
// of a person's lines is thrown away where it can be helped: a tag that has
// no place in the base becomes a line of the person's note.
#pragma once

#include "exchange/gedcom_lecteur.h"
#include "store/base.h"

#include <cstdint>
#include <functional>
#include <string>

namespace sylvane {

// The Yes/No questions at the end of the import, by message number.
class Questions {
  public:
    virtual ~Questions() = default;
    virtual bool OuiNon(int message) = 0;
};

// Messages of the two questions.
constexpr int QuestionTri = 720;      // sort the persons at once?
constexpr int QuestionMotsCles = 721; // build the keyword lists?

struct OptionsImport {
    Questions* questions = nullptr; // none: both answered Yes
    // Phase label and records done, every 100 records.
    std::function<void(const std::string& phase, std::size_t fait)> progres;
    // The stop flag, looked at every 100 records: the base keeps what was read.
    std::function<bool()> arret;
    // Where the submitter's name and address go ("Auteur", "Adresse 1" to 8).
    Parametres* parametres = nullptr;
};

struct RapportImport {
    RapportGedcom lecture;      // what the reader found
    std::string erreur;         // "Fichier GEDCOM inexploitable", or empty
    CompteAnomalie tagsEnNote;  // unknown tags kept in notes
    CompteAnomalie ascendance;  // parent links dropped: a person his own ancestor
    std::uint32_t personnes = 0, mariages = 0, evenements = 0, documents = 0, familles = 0;
    bool arrete = false;
    bool trie = false;     // the persons were sorted at the end
    bool motsCles = false; // the keyword lists were built

    // Nothing to say: readable, no replaced character, no unknown tag, no
    // pointer to nothing, no loop of ancestry.
    bool vide() const;
    // The report as text lines (Windows-1252).
    std::string Texte() const;
};

// Reads the file; an unusable one (no line end in its first 1000 bytes,
// nothing of GEDCOM in it) gives its reason in the report of the reader.
GedcomLu PrepareGedcom(SystemeFichiers& fs, const std::string& chemin);

// Fills the open base `b`, which must be new and empty, and commits it.
RapportImport ImporteGedcom(Base& b, const GedcomLu& g, const OptionsImport& options = {});

// The words of a GEDCOM age: "42y 3m" gives "42 ans 3 mois".
std::string DecodeAge(std::string_view age);

} // namespace sylvane
