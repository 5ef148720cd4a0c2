// Merge of records: the search of likely doubles among couples by the
// phonetic keys of their names, the table of candidate pairs and its file
// beside the base, and the merge of two persons with every link of the
// dropped one moved to the kept one, on both sides.
#pragma once

#include "maintenance/interaction.h"
#include "store/base.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace sylvane {

// One row of the candidate table. A row dealt with has `premier` 0.
struct PaireDoublon {
    std::uint32_t premier = 0;
    std::uint32_t second = 0;
};

// The candidate pairs, in the order they were found. No pair stands twice,
// in either order, among the rows not yet dealt with.
class TableDoublons {
  public:
    // Adds the pair unless it is there already in either order (or names
    // nobody, or one person twice). True when added.
    bool Creation_Doublon(std::uint32_t premier, std::uint32_t second);
    const std::vector<PaireDoublon>& Lignes() const { return lignes_; }
    // The rows not yet dealt with.
    std::size_t Actives() const { return presentes_.size(); }
    bool Contient(std::uint32_t a, std::uint32_t b) const;
    // The pair is dealt with: its row, in either order, gets a first number 0.
    void Ecarte(std::uint32_t a, std::uint32_t b);
    void Vide();

  private:
    static std::uint64_t Cle(std::uint32_t a, std::uint32_t b);
    std::vector<PaireDoublon> lignes_;
    std::unordered_set<std::uint64_t> presentes_;
};

// The pairs file of a base: its path with the extension "fus".
std::string CheminPaires(const std::string& cheminBase);
// Reads the pairs file: two lines a pair, the first number then the second.
// A missing file gives an empty table; lines that are no number are passed
// over with their pair. A file too large to be a pairs file is refused
// (ErreurES).
TableDoublons LitPaires(SystemeFichiers& fs, const std::string& chemin);
// Rewrites the file whole (rows dealt with are left out), or deletes it
// when no row is left.
void EcritPaires(SystemeFichiers& fs, const std::string& chemin, const TableDoublons& t);

// The range of marriages of the search: "a/b". Nothing when the text is no
// such range; b is brought down to the highest marriage number.
std::optional<std::pair<std::uint32_t, std::uint32_t>> LitPlage(const std::string& texte,
                                                                std::uint32_t maxMariage);

struct ResultatRecherche {
    bool arrete = false;      // stopped by the user: what was found stays
    std::size_t ajoutes = 0;  // pairs added to the table
    std::uint32_t dernier = 0; // the last marriage compared
};

// OptSeuil_Click: compares the couples of the marriages of the range with
// the couples of the same family-name keys, at level 0 (exact keys) to 3
// (near keys on names and first names). The progress goes to `io` (980
// and the count), its stop mark is polled at each marriage.
ResultatRecherche RechercheDoublons(Base& b, int niveau, const std::string& plage,
                                    TableDoublons& table, const Interaction& io);

// --- The merge ----------------------------------------------------------------

enum class ChoixTexte { Premier, Second, Fusion };

// A list of the wizard: the first value, the second when it differs, and an
// empty line when either is empty.
std::vector<std::string> ListeChoix(const std::string& premier, const std::string& second);
// A date and its year as the lists show them, and back: the last four
// characters are the year.
std::string DateEtAn(const std::string& date, const std::string& an);
std::pair<std::string, std::string> DecoupeDateAn(const std::string& texte);
// Two notes one after the other; a rich text block of the second is joined
// into the block of the first.
std::string JoinsNotes(const std::string& premier, const std::string& second);

// The note kept before the user chooses: the one that is there, both when
// they differ.
ChoixTexte ChoixNotes(const std::string& premier, const std::string& second);
// The rubric values kept before the user chooses, slot by slot: the first
// side's date and value, each unless it has none there.
std::array<ValeurRubrique, 10> RubriquesChoisies(const TableValeursRubriques& premier,
                                                 const TableValeursRubriques& second);

// What a merged marriage keeps.
struct ChoixMariage {
    std::uint32_t mariage = 0; // the dropped person's marriage
    std::uint32_t avec = 0;    // the kept person's marriage it merges with, 0 for none
    std::string an, date, lieu;
    std::array<ValeurRubrique, 10> rubriques{};
    ChoixTexte note = ChoixTexte::Fusion;
};

// Everything the wizard chose; K is `garde`, D is `ecarte`.
struct ChoixFusion {
    std::uint32_t garde = 0, ecarte = 0;
    std::string nom, prenom, autres;
    // ChkAutPré: the first name not chosen goes to the other first names.
    bool autrePrenom = false;
    std::string naiss, deces; // as in the lists: date, blank, year
    std::string lieuNaiss, lieuDeces;
    std::array<ValeurRubrique, 10> rubriques{}; // the person slots
    ChoixTexte note = ChoixTexte::Fusion;
    ChoixTexte pere = ChoixTexte::Fusion, mere = ChoixTexte::Fusion;
    std::vector<ChoixMariage> mariages; // one for each marriage of D with a spouse
    // Children of D merged with a child of K: the pairs go to the table.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> enfants;
};

// 956 when one is a man and the other a woman, else 0.
int RefusFusion(Base& b, std::uint32_t garde, std::uint32_t ecarte);

// The kept person's marriages offered for a marriage of the dropped one:
// those whose spouse has the same family-name key, or all when none has.
std::vector<std::uint32_t> MariagesOfferts(Base& b, std::uint32_t garde, std::uint32_t ecarte,
                                           std::uint32_t mariage);
// The kept person's children offered for a child of the dropped one: those
// of the same sex or of no sex ("H" against "F" excluded).
std::vector<std::uint32_t> EnfantsOfferts(Base& b, std::uint32_t garde, std::uint32_t enfant);
// The children of the dropped person that are not children of the kept one.
std::vector<std::uint32_t> EnfantsAComparer(Base& b, std::uint32_t garde, std::uint32_t ecarte);

// The wizard's choices before the user changes any: each list on the kept
// person's value (the dropped one's where the kept one has none), the notes
// and differing parents merged, each marriage merged with the first offered
// one whose spouse has the same family-name key, each child with the first
// offered one of the same first-name key.
ChoixFusion ChoixParDefaut(Base& b, std::uint32_t garde, std::uint32_t ecarte);

// The questions of the merge: 957 before anything is written, 981 for a
// child (`nom`) that could take its parents' marriage year. Unset: No.
struct DialogueFusion {
    std::function<Reponse(int message, const std::string& nom)> question;
    Reponse Demande(int message, const std::string& nom = {}) const {
        return question ? question(message, nom) : Reponse::Non;
    }
};

struct ResultatFusion {
    bool fait = false;
    int refus = 0; // 956
};

// Maj_Fusion: asks 957, then writes the merge in the order of the wizard's
// steps and commits it as one. Pairs left to compare (parents, spouses,
// children) go to the table, and the merged pair leaves it. On an error
// nothing of the merge stays: the base is brought back to its last commit
// and the error goes on.
ResultatFusion Maj_Fusion(Base& b, const ChoixFusion& c, TableDoublons& table,
                          const DialogueFusion& d);

} // namespace sylvane
