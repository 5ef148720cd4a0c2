// What a person's sheet says, gathered once from the base for the three
// writers of the same design (HTML page, RTF section, printed sheet): the
// identity, the family, the events, the documents and the free text, each
// with the label of its message. Texts are those of the base, not encoded:
// each writer passes them through its own encoder.
#pragma once

#include "store/base.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace sylvane {

// Which sections a sheet shows (the `Imp...` flags).
struct OptionsFiche {
    bool parents = true;
    bool enfants = true;
    bool conjoints = true;
    bool notes = true;
    bool fratrie = true;
    bool documents = true;
    bool evenements = true;
    bool personnes = true;
    // One line per person (`ListeRapide`).
    bool listeRapide = false;
};

// A label and its text.
struct Rubrique {
    std::string libelle;
    std::string texte;
};

// Another person named on the sheet.
struct Mention {
    std::uint32_t personne = 0;
    std::string nom;   // full name
    std::string dates; // " (o1850 - 1920)" or ""
    std::string signe; // children: "\xA5" of a later marriage, "?" of an unknown parent
    std::string role;  // linked persons: the link's word; "P" or "M" in `genre`
    char genre = 'P';
};

struct MariageFiche {
    std::uint32_t mariage = 0;
    Mention conjoint;
    // Date and place, divorce, the marriage's rubrics: one text.
    std::string details;
    std::vector<Mention> enfants; // children of this marriage
};

struct EvenementFiche {
    std::uint32_t evenement = 0;
    std::string date;    // in words with the week-day
    std::string libelle; // title or kind
    std::string role;    // the person's role, "" when none
};

struct DocumentFiche {
    std::uint32_t document = 0;
    std::string titre;
    std::string type;
};

struct FichePersonne {
    std::uint32_t personne = 0;
    std::string sexe;    // "H", "F" or other
    std::string nom;     // full name
    std::string dates;
    std::string libelleSexe;
    std::vector<Rubrique> identite; // name, first names, birth, death, rubrics
    Mention pere, mere;
    std::vector<MariageFiche> mariages;
    std::vector<Mention> enfants;   // all, with their sign
    // Persons linked by a role: the free links and the godparents ("P"),
    // the witnesses of a wedding ("M").
    std::vector<Mention> liees;
    std::vector<Mention> freres;    // same two parents
    std::vector<Mention> demiFreres;
    std::vector<EvenementFiche> evenements; // in date order
    std::vector<DocumentFiche> documents;
    std::string note; // free text, rich or plain
};

// The lists of a person are read up to this many entries.
inline constexpr int kMaxListeFiche = 200;

// Words joined by one blank, the empty ones left out.
std::string Joint(std::initializer_list<std::string> parties);

FichePersonne LitFichePersonne(Base& b, std::uint32_t p);
Mention MentionDe(Base& b, std::uint32_t p);

// A day count in words: "mardi 12 mars 1850" (messages 598 to 604, 730 to
// 741); "" for no date.
std::string DateEnMots(long serie);
// The same as "12/3/1850".
std::string DateCourte(long serie);
// "dd/mm/yyyy" of today.
std::string DateDuJour();

// The class of a sex for the pages: "Homme", "Femme", "Indetermine".
const char* ClasseSexe(const std::string& sexe);
// The message of the sex word: 661, 663 or 664.
int MessageSexe(const std::string& sexe);

} // namespace sylvane
