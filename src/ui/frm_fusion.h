// `FrmFusion`: the table of likely doubles with its search by level, the
// two records to merge, and the wizard that takes the user from the general
// data through notes, parents, marriages and children to the merge itself.
#pragma once

#include "maintenance/fusion.h"
#include "ui/mdiform1.h"

#include <array>
#include <string>
#include <vector>

namespace sylvane {

// A list of the wizard with the line chosen.
struct ListeFusion {
    std::vector<std::string> valeurs;
    int choix = 0;
    const std::string& Valeur() const;
    // The line of this value (the first one that isn't empty by default).
    void Choisit(const std::string& v);
};

// One rubric row: its label, its dates and its values.
struct RubriqueFusion {
    std::string libelle;
    bool avecDate = false;
    ListeFusion dates, valeurs;
};

class FrmFusion {
  public:
    enum class Etape { Liste, RG, TXT, PARENTS, MARIAGE, ENFT };

    // The range of marriages the next form opens with: the sheet's
    // `CmdDoublon` ("m/m") and `MnuDoublonMariage` ("1/max") set it; empty
    // for the whole base.
    static std::string& PlageDemandee();

    // Form_Load: the pairs file of the open base is read.
    explicit FrmFusion(MDIForm1& f);
    // Form_Unload: the pairs file is written, or deleted when empty.
    void Ferme();

    // --- Search panel and table -------------------------------------------------------
    const std::string& Plage() const { return plage_; }
    // OptSeuil_Click: the search at this level (0 to 3) over the range.
    bool OptSeuil_Click(int niveau);
    struct Ligne {
        std::uint32_t premier, second;
        std::string nom1, nom2; // empty for a person no longer in the base
    };
    // The rows not dealt with, in table order.
    std::vector<Ligne> Grille();
    std::string LblNombre() const;
    // GrdFusion click: the pair goes to the two labels.
    void Grille_Click(std::size_t rang);
    // Double click on a number column: the sheet of that person.
    bool Grille_DblClick(std::size_t rang, bool second);
    // CmdEcarter: the pair of the selected row leaves the table and the file.
    void CmdEcarter();
    bool EcarterActif() const { return selection_ >= 0; }

    // --- The two records ---------------------------------------------------------------
    std::uint32_t Fiche(int i) const { return fiches_[static_cast<std::size_t>(i)]; }
    std::string LblFiche(int i);
    void PoseFiche(int i, std::uint32_t n);
    // CmdNom: the picker fills label i.
    void CmdNom(int i);
    // A drag tag "I" and a number dropped on label i; false for any other tag.
    bool Depose(int i, const std::string& tag);
    bool CmdFusionActif() const { return fiches_[0] && fiches_[1] && etape_ == Etape::Liste; }

    // --- Wizard --------------------------------------------------------------------------
    Etape etape() const { return etape_; }
    // CmdFusion: 956 for a man and a woman, else the lists and step "RG".
    bool CmdFusion_Click();
    // CmdSuite: the next step (steps with nothing to choose are passed
    // over); from the last one, the merge. False when the merge was
    // refused or not confirmed (back to the table).
    bool CmdSuite();
    // CmdQuitter during the wizard: back to the table, nothing written.
    void Abandonne();

    // "RG"
    ListeFusion lstNom, lstPrenom, lstAutPre, lstDNaiss, lstLNaiss, lstDDeces, lstLDeces;
    bool chkAutPreOffert = false, chkAutPre = false;
    std::vector<RubriqueFusion> rubriques;
    // "TXT"
    std::string texte1, texte2;
    ChoixTexte optTexte = ChoixTexte::Fusion;
    // "PARENTS": whether each side is a choice, the names, the choice.
    bool perePropose = false, merePropose = false;
    std::array<std::string, 2> peres, meres;
    ChoixTexte optPere = ChoixTexte::Fusion, optMere = ChoixTexte::Fusion;
    // "MARIAGE": the dropped person's marriage in course and its choices.
    std::string LblConjoint();
    // The entries of LstConjoint: the kept person's marriages offered, then
    // 0 for no merge; and their texts.
    const std::vector<std::uint32_t>& LstConjoint() const { return offerts_; }
    std::vector<std::string> TextesConjoint();
    int choixConjoint = 0;
    ListeFusion lstDMar, lstLMar;
    // The marriage rubrics, one row a slot as on "RG" (a row with no value
    // on either side has no dates list and isn't shown).
    std::vector<RubriqueFusion> rubriquesMariage;
    // The two marriages' notes; OptTxtMar is a choice only when both are
    // there and differ.
    std::string texteMar1, texteMar2;
    bool texteMarPropose = false;
    ChoixTexte optTxtMar = ChoixTexte::Fusion;
    // Called when choixConjoint changes: the lists of what differs, each on
    // the kept marriage's value (the dropped one's where it has none).
    void ConjointChoisi(int i);
    // "ENFT": the child in course and the kept person's children offered
    // (then 0 for none).
    std::string LblEnfant();
    const std::vector<std::uint32_t>& LstEnfant() const { return enfantsOfferts_; }
    std::vector<std::string> TextesEnfant();
    int choixEnfant = 0;

  private:
    Base* B() { return f_.base(); }
    void Recharge();
    void Sauve();
    void RemplitRG();
    bool EntreTexte();
    bool EntreParents();
    bool ProchainMariage();
    bool ProchainEnfant();
    void NoteMariage();
    void NoteEnfant();
    bool Applique();

    MDIForm1& f_;
    std::string chemin_;
    std::string plage_;
    TableDoublons table_;
    int selection_ = -1;
    std::array<std::uint32_t, 2> fiches_{};
    Etape etape_ = Etape::Liste;
    ChoixFusion choix_;
    std::size_t mariage_ = 0, enfant_ = 0;
    std::vector<std::uint32_t> aComparer_;
    std::vector<std::uint32_t> offerts_, enfantsOfferts_;
};

// Captions of the form.
inline constexpr int kFusionTitre = 4400;
inline constexpr int kFusionSeuil = 4401;
inline constexpr int kFusionNiveau0 = 4402; // to 4405
inline constexpr int kFusionSuite = 4406;
inline constexpr int kFusionEcarter = 4407;
inline constexpr int kFusionQuitter = 4408;
inline constexpr int kFusionAutrePrenom = 4409;
inline constexpr int kFusionFusion = 4410;
inline constexpr int kFusionPremier = 4411;
inline constexpr int kFusionSecond = 4412;
inline constexpr int kFusionColonnes = 4413; // to 4416
inline constexpr int kFusionNombre = 4417;
inline constexpr int kFusionListes = 4418; // Nom to Lieu de décès, 4424
inline constexpr int kFusionNotes = 4425;
inline constexpr int kFusionPere = 4426;
inline constexpr int kFusionMere = 4427;
inline constexpr int kFusionConjoint = 4428;
inline constexpr int kFusionSansFusion = 4429;
inline constexpr int kFusionEnfant = 4430;
inline constexpr int kFusionDateMariage = 4431;
inline constexpr int kFusionLieuMariage = 4432;
inline constexpr int kFusionGardee = 4433;
inline constexpr int kFusionSupprimee = 4434;
inline constexpr int kFusionChoisir = 4435;
inline constexpr int kFusionEtapes = 4437; // general data to children, 4440
inline constexpr int kFusionMariagesTitre = 4441;
inline constexpr int kFusionDoublon = 4442; // the sheet's button
inline constexpr int kFusionBouton = 347;

} // namespace sylvane
