// The modal forms the person sheet opens to get a person or a text: the
// creation form, the four candidate pickers and the notes editor. The sheet
// asks through this interface; the program shows the windows, the tests
// answer from a script.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace sylvane {

enum class Candidats {
    Conjoints, // FrmConjoints: opposite sex, 100 years either side
    Enfants,   // FrmEnfants: 10 to 100 years after, with the missing-parent codes
    Pere,      // FrmPere: 100 to 10 years before, sex as asked (father or mother)
    Liens,     // FrmLiens: 100 years either side
};

class ChoixFiche {
public:
    virtual ~ChoixFiche() = default;
    // FrmCreation, modal. `etiquette` is a name, "/" and "Homme" or "Femme"
    // (or a sex word alone): the name presets the family name, the word
    // presets and fixes the sex. Returns the person made, or 0.
    virtual std::uint32_t Cree(const std::string& etiquette) = 0;
    // One of the candidate pickers, modal, working for person `pour`.
    // `sexe` is 'H' or 'F' for FrmPere (the sex asked), otherwise unused;
    // `nom` presets the search text. Returns the chosen person, or 0.
    virtual std::uint32_t Choisit(Candidats genre, std::uint32_t pour, char sexe,
                                  const std::string& nom) = 0;
    // FrmTexte, modal, on a copy of a note (rich text "{\rtf1..." or plain,
    // Windows-1252). Returns the text to keep, or nothing when cancelled.
    virtual std::optional<std::string> EditeTexte(const std::string& texte,
                                                  const std::string& titre) = 0;
};

} // namespace sylvane
