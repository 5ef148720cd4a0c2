// The person sheet `FrmMisajour`: one person shown and edited at a time
// (identity, birth and death, parents, marriages, children, brothers and
// sisters, free links, events, documents, rubrics and notes), or an empty
// sheet that creates a person. What is typed reaches the stores only on
// `C_Maj_Click`; the family-link commands write at once through `Liens`
// and then reload the sheet, or validate it when it holds changes.
//
// The window shows the fields held here and forwards every change and
// click; nothing here draws.
#pragma once

#include "store/liens.h"
#include "ui/choix_fiche.h"
#include "ui/mdiform1.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

// Captions of the sheet that have no number of their own elsewhere.
namespace msg_fiche {
inline constexpr int Titre = 3800;
inline constexpr int OngletIdentite = 3801;
inline constexpr int OngletFamille = 3802;
inline constexpr int OngletLiens = 3803;
inline constexpr int OngletNotes = 3804;
inline constexpr int Nom = 3805;
inline constexpr int Prenom = 3806;
inline constexpr int AutresPrenoms = 3807;
inline constexpr int Sexe = 3808;
inline constexpr int Homme = 3809;
inline constexpr int Femme = 3810;
inline constexpr int Indetermine = 3811;
inline constexpr int Naissance = 3812;
inline constexpr int Deces = 3813;
inline constexpr int Annee = 3814;
inline constexpr int Jour = 3815;
inline constexpr int Lieu = 3816;
inline constexpr int Pere = 3817;
inline constexpr int Mere = 3818;
inline constexpr int Mariages = 3819;
inline constexpr int AnMariage = 3820;
inline constexpr int AnFin = 3821;
inline constexpr int Evenements = 3822;
inline constexpr int Documents = 3823;
inline constexpr int Liens = 3824;
inline constexpr int TexteLien = 3825;
inline constexpr int Rubriques = 3826;
inline constexpr int Numero = 3827;
inline constexpr int MiseAJour = 3828;    // C_MAJ on a sheet that creates ("&Mise à Jour")
inline constexpr int Valider = 3829;      // C_MAJ on a person's sheet
inline constexpr int Creer = 3830;        // the create buttons
inline constexpr int Chercher = 3831;     // the search buttons
inline constexpr int Couper = 3832;       // the cut buttons
inline constexpr int Monter = 3833;
inline constexpr int Descendre = 3834;
inline constexpr int Historique = 3835;
inline constexpr int Supprimer = 3836;
inline constexpr int Notes = 3837;
inline constexpr int Fermer = 3838;
inline constexpr int IndiceFaux = 3839;   // E_Indice
inline constexpr int ColNom = 3840;
inline constexpr int ColDates = 3841;
inline constexpr int ColCode = 3842;
inline constexpr int ColType = 3843;
inline constexpr int ColTexte = 3844;
inline constexpr int ColDate = 3845;
inline constexpr int ColLieu = 3846;
inline constexpr int ColRole = 3847;
inline constexpr int ColEvenement = 3848;
inline constexpr int NotesMariage = 3849;
inline constexpr int Choisir = 3850;      // C_Nom
inline constexpr int TexteSeul = 3899;    // "&1": a box of a text already made
} // namespace msg_fiche

// The fields the user types in.
enum class Champ {
    Nom, Prenom, AutresPrenoms,
    Naiss, JNaiss, LieuNaiss,
    Deces, JDeces, LieuDeces,
    Dmar, JMar, LieuMar, Fmar,
    Lien, Indice,
    IndJ, IndA, IndL, // person rubric rows
    MarJ, MarA, MarL, // marriage rubric rows
};
bool ChampMariage(Champ c);
// The caption of a rubric row: the base's label of its symbol without the
// symbol in front, or the tag's usual name.
std::string LibelleRubrique(Base& b, const SlotRubrique& s);

// A row of one of the sheet's grids: the person (or record) and its texts.
struct LigneFiche {
    std::uint32_t numero = 0;
    std::string nom;   // name with dates, or the record's title
    std::string texte; // family code, type of sibling, link text, role...
    std::string date;
    std::string lieu;
    int rang = 0; // place in the person's stored list, from 1
};

// One rubric row: its label, whether it takes a date, and the values typed.
struct RangRubrique {
    std::string libelle;
    std::string tag;
    char symbole = ' ';
    bool date = false;
    std::string jour, annee, lieu;
    std::string libelleJour; // the day in words beside the day field
};

// What the sheet tells its window.
class VueFiche {
  public:
    virtual ~VueFiche() = default;
    // Every field and grid may have changed: show them again.
    virtual void FicheChangee() = 0;
    // The focus goes to this field (a refusal or a warning points at it).
    virtual void Focus(Champ c) { (void)c; }
};

// The event editor, opened on an event that disagrees with the sheet with
// its date and place preset, and validated at once. Unset: nothing opens.
using EditeurEvenement =
    std::function<void(std::uint32_t evenement, const std::string& jour, const std::string& annee,
                       const std::string& lieu)>;

class FrmMisajour {
  public:
    // The sheet opens on the main window's sheet person.
    FrmMisajour(MDIForm1& f, ChoixFiche& choix);
    ~FrmMisajour();
    FrmMisajour(const FrmMisajour&) = delete;
    FrmMisajour& operator=(const FrmMisajour&) = delete;

    void DefinitVue(VueFiche* vue) { vue_ = vue; }
    void DefinitEditeurEvenement(EditeurEvenement e) { editeurEvt_ = std::move(e); }
    // The input box of a link's text (message 633); nothing when closed.
    void DefinitSaisie(std::function<std::optional<std::string>(int message)> s) {
        saisie_ = std::move(s);
    }

    // --- The person shown ------------------------------------------------------
    std::uint32_t Personne() const { return personne_; }
    bool Nouvelle() const { return personne_ == 0; }
    // Redraws every field from the stores for the present sheet person.
    void Charge();
    // The main window moved the sheet person or the base changed: reload
    // unless the sheet holds changes for the same person.
    void Actualise();
    // Shows another person (the pending question first); 0 empties the sheet.
    void Montre(std::uint32_t n);
    bool Pendante() const { return f_.fichePendante; }
    bool MariagePendant() const { return f_.mariagePendant; }

    // --- Fields ------------------------------------------------------------------
    // A change typed in a field: name and place fields take the case of the
    // settings; the pending flag (or the marriage's) is set. `rang` is the
    // rubric row for the rubric fields. Returns the text the field now holds.
    std::string Modifie(Champ c, const std::string& texte, int rang = 0);
    // Leaving a field: day fields are converted and their label set.
    std::string Quitte(Champ c, int rang = 0);
    const std::string& Valeur(Champ c, int rang = 0) const;
    char Sexe() const { return sexe_; }
    void ChoisitSexe(char s);
    const std::string& LibelleJourNaiss() const { return libJNaiss_; }
    const std::string& LibelleJourDeces() const { return libJDeces_; }
    const std::string& LibelleJourMariage() const { return libJMar_; }
    const std::vector<RangRubrique>& RubriquesPersonne() const { return rubInd_; }
    const std::vector<RangRubrique>& RubriquesMariage() const { return rubMar_; }
    // The usual words of a rubric row: the keywords the base holds for it.
    std::vector<std::string> MotsUsuels(bool mariage, int rang);
    const std::string& Note() const { return note_; }
    const std::string& NoteMariage() const { return noteMar_; }
    // C_Texte / CmdTxtMar: the notes editor on a copy; a kept text is
    // pending until validation.
    void C_Texte();
    void CmdTxtMar();

    // --- Lists ---------------------------------------------------------------------
    const LigneFiche& Pere() const { return pere_; }
    const LigneFiche& Mere() const { return mere_; }
    const std::vector<LigneFiche>& Conjoints() const { return conjoints_; }
    const std::vector<LigneFiche>& Enfants() const { return enfants_; }
    const std::vector<LigneFiche>& Fratrie() const { return fratrie_; }
    const std::vector<LigneFiche>& LiensFiche() const { return liens_; }
    const std::vector<LigneFiche>& Evenements() const { return evts_; }
    const std::vector<LigneFiche>& Documents() const { return docs_; }
    // `LblEnfants`: "Enfants (3)".
    std::string LibelleEnfants() const;

    // L_Conjoint row click (0-based, -1 none): the marriage's pending
    // question first, then its fields.
    void SelectionneMariage(int rang);
    int MariageSelectionne() const { return mariage_; }
    bool MarHautPossible() const { return mariage_ > 0; }
    bool MarBasPossible() const {
        return mariage_ >= 0 && mariage_ + 1 < static_cast<int>(conjoints_.size());
    }
    // CmdDoublon: the merge window, its search limited to the marriage
    // selected ("m/m"); nothing without a marriage.
    void CmdDoublon();
    bool DoublonPossible() const { return !Nouvelle() && mariage_ >= 0; }
    // GrdLiens row click: its text goes to TxtLien.
    void SelectionneLien(int rang);
    int LienSelectionne() const { return lien_; }

    // --- Validation and deletion -----------------------------------------------
    // C_MAJ. Returns whether the sheet was written (false on a refusal).
    bool C_Maj_Click();
    // The sheet command that deletes a bare person.
    void Supprime();

    // --- Family links (written at once) ------------------------------------------
    void CmdCrePere();
    void CmdCreMere();
    void C_Rechpere();
    void C_Rechmere();
    void C_Spere();
    void C_Smere();
    void CmdCreConjoint();
    void C_Rechconjoint();
    void C_Smar();
    void CmdMarUp();
    void CmdMarDown();
    void CmdCreEnfant();
    void CmdRechEnft();
    void CmdSupEnft(int rang);
    void CmdCreLien();
    void CmdRechLien();
    void CmdSupLien();
    void CmdLienUp();
    void CmdLienDown();
    void CmdImgUp(int rang);
    void CmdImgDown(int rang);

    // --- Navigation ------------------------------------------------------------------
    // C_Nom: the general picker.
    void C_Nom();
    // TxtIndice and Enter: a whole number within the base shows that person;
    // anything else shows `E_Indice` and clears the field.
    bool AllerIndice(const std::string& texte);
    bool IndiceFaux() const { return indiceFaux_; }
    // CmdHisto: the last ten persons shown, newest first.
    const std::vector<std::uint32_t>& Historique() const { return histo_; }
    std::vector<std::string> TextesHistorique();
    void ChoisitHistorique(int rang);

    // --- Status ----------------------------------------------------------------------
    // "{n2} [n1] " and the name with dates.
    std::string Statut();
    // The message of the status line `Aide` (0: empty).
    int Aide() const { return aide_; }

  private:
    Base& B() { return *f_.base(); }
    bool BaseLa() { return f_.base() != nullptr; }
    DialogueLiens Dialogue();
    Liens Routines();
    // The tail of every link command: reload, or validate when pending.
    void ApresLien(const ResultatLien& r);
    void MarquePendante(bool mariage);
    void VideChamps();
    void ChargeMariage();
    void ChargeListes();
    std::string TextePersonne();
    std::string TexteMariage();
    void Reclasse(std::uint32_t place);
    void VerifieEvenements();
    void NoteHistorique(std::uint32_t n);
    void Changement();
    void FocusSur(Champ c);
    std::string& Ref(Champ c, int rang);
    std::string LibelleJour(const std::string& jour) const;
    void AttacheParent(Cote cote, bool creer);
    void SelectionneNouveau(std::uint32_t mariage);
    FicheCreation FicheDepuisChamps() const;

    MDIForm1& f_;
    ChoixFiche& choix_;
    VueFiche* vue_ = nullptr;
    EditeurEvenement editeurEvt_;
    std::function<std::optional<std::string>(int)> saisie_;

    std::uint32_t personne_ = 0;
    std::string nom_, prenom_, autres_;
    char sexe_ = 'I';
    std::string naiss_, jNaiss_, lieuNaiss_, deces_, jDeces_, lieuDeces_;
    std::string libJNaiss_, libJDeces_, libJMar_;
    std::string note_;
    std::vector<RangRubrique> rubInd_, rubMar_;
    std::string dmar_, jMar_, lieuMar_, fmar_, noteMar_;
    std::string texteLien_, indice_;
    int mariage_ = -1;
    int lien_ = -1;
    bool indiceFaux_ = false;
    int aide_ = 0;
    std::string vide_;

    LigneFiche pere_, mere_;
    std::vector<LigneFiche> conjoints_, enfants_, fratrie_, liens_, evts_, docs_;
    std::vector<std::uint32_t> histo_;
};

} // namespace sylvane
