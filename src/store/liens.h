// The creation of persons and the family links of the person sheet: every
// link is written on both sides at once (father or mother field and the
// parent's child list; marriage record and the marriage list of each
// spouse; free links), with the questions and warnings of the sheet.
//
// The routines ask through a `DialogueLiens`: the sheet shows boxes, the
// command line and the tests answer by themselves. A refusal is a message
// number and writes nothing; a warning never refuses.
#pragma once

#include "maintenance/interaction.h"
#include "store/base.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace sylvane {

struct EtatNumerotation;

// One box of the link commands.
struct Boite {
    enum class Genre {
        Avertissement, // OK only, with an exclamation mark; the answer is not used
        OuiNon,        // Yes and No
        NonParDefaut,  // Yes and No with No the default (OK and Cancel in effect)
    };
    Genre genre = Genre::OuiNon;
    int message = 0;
    // Replaces "&1" in the message; with `suite`, it stands between the two.
    std::string nom;
    // The other person the box is about (its title), or "".
    std::string titre;
    // A second message shown after the name (628, name, 629).
    int suite = 0;
};

// The text of a box as the user reads it (Windows-1252).
std::string TexteBoite(const Boite& b);

struct DialogueLiens {
    // Unset: every question is answered No, and warnings go nowhere.
    std::function<Reponse(const Boite&)> boite;
    // The input box of a link's text (message 633): an empty answer asks
    // again; nothing (the window closed) ends the command. Unset: nothing.
    std::function<std::optional<std::string>(int message)> saisie;

    Reponse Demande(const Boite& b) const { return boite ? boite(b) : Reponse::Non; }
    void Avertit(int message, const std::string& titre = {}) const;
};

// What a command did, for the sheet to reload and select.
struct ResultatLien {
    int refus = 0;              // message of a refusal; then nothing was written
    bool ecrit = false;         // something was written
    std::uint32_t personne = 0; // the person made (or, after a deletion, the one to show)
    std::uint32_t mariage = 0;  // the marriage made
    bool Refuse() const { return refus != 0; }
};

// The fields of the creation form, as typed. The rubric rows follow the
// person slots of the base header; a row of a rubric without a date has its
// day and year ignored.
struct FicheCreation {
    std::string nom, prenom, autresPrenoms;
    char sexe = 'I';
    std::string anNaiss, jourNaiss, lieuNaiss;
    std::string anDeces, jourDeces, lieuDeces;
    std::array<ValeurRubrique, 10> rubriques{};
    std::string note; // rich text or plain
};

// The ";" splitting of the sheet's name fields: what follows a ";" in the
// family name goes to the first names (behind a ";" if they hold
// something), and what follows a ";" in the first names goes to the other
// first names (behind a blank).
void DecoupeNoms(std::string& nom, std::string& prenom, std::string& autres);

// The date part of a rubric line: the converted day and month with "/" and
// the year when they make a real date, else the day text and the year
// padded to 4 characters; the padded year alone with no day.
std::string DateRubrique(const std::string& jour, const std::string& annee);

// The rubric lines of a note (each CR LF, the tag, the date, the symbol
// and the value), for the slots given.
std::string LignesRubriques(const std::array<SlotRubrique, 10>& slots,
                            const std::array<ValeurRubrique, 10>& valeurs);

enum class Cote { Pere, Mere };

// The lists of a person the sheet can reorder.
enum class ListeOrdonnee { Mariages, Liens, Documents };

class Liens {
  public:
    // `numeros`, when given, is the numbering of the open base: it grows
    // with a new person and is rebuilt at once when a parent of a person
    // it numbers changes.
    Liens(Base& b, DialogueLiens dialogue, EtatNumerotation* numeros = nullptr);

    // FrmCréation: 620 as a warning, 621 refuses; the new person is in
    // `personne`.
    ResultatLien CreePersonne(FicheCreation f);

    // CmdCréPère / CmdCréMère and C_Rechpère / C_Rechmère: the parent (made
    // from the fields, a man for a father and a woman for a mother) becomes
    // C's father or mother; the old one loses C; 639 offers the marriage of
    // the two parents, 636 warns, 609/608 ask for each child of the other
    // parent without a parent of this side. A parent of the wrong sex is
    // refused (936). Parent 0 or C itself: nothing.
    ResultatLien AttacheParent(std::uint32_t c, Cote cote, std::uint32_t parent);
    ResultatLien CreeParent(std::uint32_t c, Cote cote, FicheCreation f);
    // C_Spère / C_Smère: 617, then the parent's list loses C and C's field
    // is 0. The parents' marriage stays.
    ResultatLien CoupeParent(std::uint32_t c, Cote cote);

    // C_Rechconjoint (`recherche`) and CmdCréConjoint: 634 when P has no
    // sex, 627 when P has no name, 936 for a spouse of the same sex. 609/608
    // for each child of P whose other parent is unknown, and in the search
    // path for each such child of the spouse; the new marriage is in
    // `mariage`.
    ResultatLien AttacheConjoint(std::uint32_t p, std::uint32_t conjoint, bool recherche = true);
    ResultatLien CreeConjoint(std::uint32_t p, FicheCreation f);
    // C_Smar: 617, then the marriage leaves both lists and its record is
    // emptied (text through the keyword index); children keep their parents.
    ResultatLien SupprimeMariage(std::uint32_t m);

    // CmdRechEnft (640 when P has no sex) and CmdCréEnfant (635): 628/629
    // when K has another parent on P's side (Yes and No, No the default),
    // 636, then 608/609 (637 for a new child) for each marriage of P until
    // the first Yes, which sets the spouse as K's other parent (638).
    ResultatLien AttacheEnfant(std::uint32_t p, std::uint32_t k);
    ResultatLien CreeEnfant(std::uint32_t p, FicheCreation f);
    // CmdSupEnft: 617, then K's field is cleared when it names P, and P's
    // child list loses K.
    ResultatLien CoupeEnfant(std::uint32_t p, std::uint32_t k);

    // CmdRechLien / CmdCréLien: the text (633, asked until not empty), the
    // entry in P's list, then 632 for the other way with its own text.
    ResultatLien AjouteLien(std::uint32_t p, std::uint32_t autre);
    ResultatLien CreeLien(std::uint32_t p, FicheCreation f);
    // CmdSupLien: 617, then entry `rang` (from 1) leaves P's list alone.
    ResultatLien SupprimeLien(std::uint32_t p, int rang);

    // CmdMarUp/Down, CmdLienUp/Down, CmdImgUp/Down: swaps entry `rang`
    // (from 1) with the one above (`versLeHaut`) or below. False when
    // there is no such neighbour.
    bool Deplace(std::uint32_t p, ListeOrdonnee liste, int rang, bool versLeHaut);

    // The sheet's suppression: a refusal of 610 to 616 when the person
    // isn't bare (the sheet shows 618 beneath), else 617; `personne` is the
    // one now at the same place of the sort table (or the last), 0 when
    // the table is empty.
    ResultatLien SupprimePersonne(std::uint32_t n);

  private:
    // Sets K's parent of this side to P, with both sides, the old parent
    // losing K.
    void PoseParent(std::uint32_t k, Cote cote, std::uint32_t parent);
    void VerifieDeces(std::uint32_t parent, std::uint32_t enfant, int message, bool siNaissance);
    std::uint32_t Cree(FicheCreation& f, ResultatLien& r);
    void Renumerote();
    // The question "is this person K's parent too?" (609 for a man).
    bool DemandeParentAussi(std::uint32_t parent, std::uint32_t k, int message = 0);

    Base& b_;
    DialogueLiens d_;
    EtatNumerotation* numeros_;
    std::vector<std::uint32_t> changes_; // persons whose parents changed
    bool nouvelEnfant_ = false;          // CreeEnfant asks 637, not 608/609
};

} // namespace sylvane
