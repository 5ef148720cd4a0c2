// The keyword and rubric forms: `FrmMotCle` (the kinds of keyword and the
// sheet's rubric rows), `FrmLMotCle` (the keywords of one kind with their
// counts), `FrmMot` (the picker and editor of one rubric value, opened by
// the sheet and the keyword search), `FrmUsuels` (the lists of usual words
// of the settings) and `FrmRemplacement` (one keyword replaced by another
// in every note). The windows show the state held here and forward.
#pragma once

#include "store/remplacement.h"
#include "ui/mdiform1.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

struct GenreRecapitule;

// Captions of these forms.
namespace msg_mots {
inline constexpr int Remplaces = 4256;       // "&1 remplacement(s)"
inline constexpr int TitreMotCle = 4257;
inline constexpr int OngletGenres = 4258;
inline constexpr int OngletRubriques = 4259;
inline constexpr int Libelle = 4260;
inline constexpr int Repere = 4261;
inline constexpr int Indexe = 4262;
inline constexpr int Ajouter = 4263;
inline constexpr int Modifier = 4264;
inline constexpr int Supprimer = 4265;
inline constexpr int Monter = 4266;
inline constexpr int Descendre = 4267;
inline constexpr int ListeMots = 4268;
inline constexpr int ColLibelle = 4269;
inline constexpr int ColRepere = 4270;
inline constexpr int ColIndex = 4271;
inline constexpr int OuiIndex = 4272;       // the index column of an indexed kind
inline constexpr int Possibles = 4273;
inline constexpr int RubriquesPersonne = 4274;
inline constexpr int RubriquesMariage = 4275;
inline constexpr int VersPersonne = 4276;
inline constexpr int VersMariage = 4277;
inline constexpr int Retirer = 4278;
inline constexpr int AvecDate = 4279;
inline constexpr int Fermer = 4280;
inline constexpr int TitreListe = 4281;     // "Mots-clés : &1"
inline constexpr int Chercher = 4282;
inline constexpr int ColMot = 4283;
inline constexpr int ColEmplois = 4284;
inline constexpr int TitreMot = 4285;
inline constexpr int Jour = 4286;
inline constexpr int Annee = 4287;
inline constexpr int Valeur = 4288;
inline constexpr int Usuels = 4289;
inline constexpr int Valider = 4290;
inline constexpr int Annuler = 4291;
inline constexpr int TitreUsuels = 4292;
inline constexpr int Rubrique = 4293;
inline constexpr int NouveauNom = 4294;     // the input box of a new word or list
inline constexpr int TitreRemplacement = 4295;
inline constexpr int RemplacerPar = 4296;
inline constexpr int TousIndex = 4297;
inline constexpr int Remplacer = 4298;
inline constexpr int MotARemplacer = 4299;
inline constexpr int Recapitulation = 4606;
inline constexpr int RecapImp = 4607;
inline constexpr int RecapRTF = 4608;
inline constexpr int RecapHTML = 4609;
inline constexpr int TitreRTF = 567;
inline constexpr int ChoixMot = 4025;     // "..." beside a keyword field
inline constexpr int Confirmation = 617;
inline constexpr int Occupe = 503;
} // namespace msg_mots

// One row of a keyword list: the word as the index holds it (folded, dots
// for blanks) and the number of its uses.
struct LigneMotCle {
    std::uint32_t entree = 0;
    std::string mot;
    std::uint32_t emplois = 0;
};

// The sorted keywords of one kind, read by pages: a million-person base
// has a hundred thousand places.
class ListeMotsCles {
  public:
    ListeMotsCles() = default;
    ListeMotsCles(Base& b, char marque);
    char Marque() const { return marque_; }
    bool Indexee() const { return indexee_; }
    std::size_t Taille() const { return liste_.size() / 4; }
    // The rows from rank `debut` (0-based), `n` at most.
    std::vector<LigneMotCle> Page(std::size_t debut, std::size_t n) const;
    // Rank of the first keyword at or after the typed text (Taille() when none).
    std::size_t Rang(const std::string& texte) const;
    // The entry whose word is the typed text (folded, blanks at its right
    // dropped), 0 when none.
    std::uint32_t Exact(const std::string& texte) const;

  private:
    Base* b_ = nullptr;
    char marque_ = ' ';
    bool indexee_ = false;
    std::string liste_;
};

// --- FrmMotCle ----------------------------------------------------------------------------

class FrmMotCle {
  public:
    explicit FrmMotCle(MDIForm1& f);

    // First tab: the kinds (Grille1), the selected one and the fields.
    const std::vector<GenreMot>& Genres() const { return genres_; }
    int selection = -1;
    std::string libelle; // Tx_LMClé
    std::string marque;  // Tx_MClé
    bool index = true;   // ChxIndex
    void Selectionne(int rang);
    // Each answers whether the base changed; a refusal shows its message.
    bool C_Ajout();
    bool C_Maj();
    bool C_Supp();
    bool CmdMotUp();
    bool CmdMotDown();
    // C_Liste: the mark of the kind whose keywords FrmLMotClé shows.
    char C_Liste() const;

    // Second tab: the kinds a rubric row may take (GrdMotClé), the rows.
    std::vector<GenreMot> Possibles() const;
    const std::vector<SlotRubrique>& Rangs(bool mariage) const { return mariage ? mar_ : ind_; }
    // Adds the possible kind of rank `rang` at the end of the rows.
    bool CmdAjtMot(bool mariage, int rang, bool date);
    bool CmdSupMot(bool mariage, int rang);
    // Swaps row `rang` with the one above (-1) or below (+1).
    bool CmdMotBouge(bool mariage, int rang, int sens);
    std::string LibelleRang(const SlotRubrique& s) const;
    bool Modifie() const { return modifie_; }
    // Closing: the rows changed are written and the sheet reloads.
    void Ferme();

  private:
    Base* B() { return f_.base(); }
    bool Refus(int message);
    void Relit();
    template <class F>
    bool Change(F&& f);

    MDIForm1& f_;
    std::vector<GenreMot> genres_;
    std::vector<SlotRubrique> ind_, mar_;
    bool modifie_ = false;
};

// --- FrmLMotCle -----------------------------------------------------------------------------

class FrmLMotCle {
  public:
    FrmLMotCle(MDIForm1& f, char marque);
    const ListeMotsCles& Liste() const { return liste_; }
    std::string Titre() const;
    // VScroll1: the first row shown; EtiRecherche: the text typed.
    std::size_t premier = 0;
    std::string recherche;
    // The typed text moves the first row to the first keyword at or after it.
    void Cherche(const std::string& texte);
    std::vector<LigneMotCle> Lignes(std::size_t n) const { return liste_.Page(premier, n); }
    // The keyword of a row as a field takes it: dots back to blanks.
    static std::string Valeur(const LigneMotCle& l);
    // The recapitulation: each keyword and its persons, as text lines.
    // `ensemble` (`MnuEnsemble`): every indexed kind.
    std::string Recapitulation(bool ensemble);
    // Its content and title, for the printer (`MnuRecapImp`).
    std::vector<GenreRecapitule> Contenu(bool ensemble);
    std::string TitreRecapitulation(bool ensemble) const;
    // `MnuRecapRTF`, `MnuRecapHTML`: written to the file chosen in the
    // dialog, with the progress panel; the path, or nothing when
    // cancelled, stopped or failed.
    std::optional<std::string> EcritRecapitulation(bool html, bool ensemble);

  private:
    MDIForm1& f_;
    ListeMotsCles liste_;
};

// --- FrmMot ------------------------------------------------------------------------------------

// What the sheet or the search gives the picker.
struct DemandeMot {
    bool mariage = false; // the tag "Individu" of the caller: person rubrics
    char marque = ' ';
    std::string tag;      // the rubric's tag (the usual words' section)
    std::string libelle;
    bool date = false;    // the day and year fields are shown
    std::string jour, annee, valeur;
    // The owner of the rubric: the person (0: the sheet's) and, for a
    // marriage rubric, the marriage (0: the person's first).
    std::uint32_t personne = 0;
    std::uint32_t numeroMariage = 0;
};

class FrmMot {
  public:
    FrmMot(MDIForm1& f, DemandeMot d);
    const DemandeMot& Demande() const { return d_; }
    // TxtIndJ, TxtIndA, TxtIndL: what the user typed ("#" is kept out).
    std::string jour, annee, valeur;
    void Tape(std::string& champ, const std::string& texte);
    // The keyword list of the kind, paged as FrmLMotClé's.
    FrmLMotCle& Liste() { return liste_; }
    // A keyword row chosen: its text goes to the value field.
    void ChoisitLigne(const LigneMotCle& l);
    // CmdIndSel: the usual words of the rubric's tag, and one chosen.
    std::vector<std::string> Usuels() const;
    void ChoisitUsuel(const std::string& mot);
    // CmdValider: true when the form closes with the value. `Nouveau()`
    // tells whether the value is no keyword of the base yet.
    bool CmdValider();
    bool Nouveau() const { return nouveau_; }
    // CmdIndEvt, for a rubric whose tag is also a kind of event: the
    // owner's event of that kind, made first from the day, year and value
    // typed when there is none (message 931 for a day that is no date),
    // then opened. Gives the event, 0 when refused.
    bool EvenementPossible() const;
    bool EvenementExiste() const;
    std::uint32_t CmdIndEvt();

  private:
    std::uint32_t Proprietaire() const;
    std::uint32_t Mariage() const;
    MDIForm1& f_;
    DemandeMot d_;
    FrmLMotCle liste_;
    bool nouveau_ = false;
};

// --- FrmUsuels -----------------------------------------------------------------------------------

class FrmUsuels {
  public:
    explicit FrmUsuels(MDIForm1& f);
    // CboRubrique: the lists (a tag each, shown through the tag table).
    std::vector<std::string> Rubriques() const;
    int rubrique = -1;
    // LstMot: the words of the list chosen, as shown.
    std::vector<std::string> Mots() const;
    bool CmdMotNouveau(const std::string& mot);
    bool CmdMotSup(int rang);
    bool CmdNouvRubr(const std::string& nom);
    bool CmdSupRub();

  private:
    Parametres& P() { return f_.app().parametres(); }
    const Parametres& P() const { return f_.app().parametres(); }
    void EcritListe();
    void EcritMots(std::size_t i);
    MDIForm1& f_;
};

// The usual words of a rubric tag in the settings, as shown.
std::vector<std::string> MotsUsuelsTag(const Parametres& p, const std::string& tag);

// --- FrmRemplacement ----------------------------------------------------------------------------

class FrmRemplacement {
  public:
    explicit FrmRemplacement(MDIForm1& f);
    // Combo1: the kinds, a mark and a label each.
    std::vector<GenreMot> Genres();
    char marque = ' ';
    std::string ancien, nouveau; // the two T_Recherche
    bool tous = false;           // ChkTout
    // CmdRemplacer: false when nothing was done.
    bool CmdRemplacer();
    const BilanRemplacement& Bilan() const { return bilan_; }

  private:
    MDIForm1& f_;
    BilanRemplacement bilan_;
};

} // namespace sylvane
