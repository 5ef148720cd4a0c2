// The four search forms: `FrmRecherche` (a piece of the name),
// `FrmRechTexte` (keywords), `FrmRechCouple` (couples) and `FrmRechEvt`
// (events). They share one shape: criteria, a result grid filled while the
// scan runs on the progress panel (its stop button keeps what was found),
// and the same commands beneath: the sheet, the person in course, drop a
// row, print, the relationship search, the statistics, the export.
#pragma once

#include "search/recherche.h"
#include "text/mots.h"
#include "ui/mdiform1.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace sylvane {

// Captions that have no number elsewhere.
namespace msg_rech {
inline constexpr int TitreNom = 4000;     // "Recherche Nom"
inline constexpr int TitreTexte = 4001;   // "Recherche Mot-Clé"
inline constexpr int TitreCouple = 4002;  // "Recherche Couple"
inline constexpr int TitreEvt = 4003;     // "Recherche Evénements"
inline constexpr int Rechercher = 4010;
inline constexpr int Fiche = 4011;
inline constexpr int Graphe = 4012;
inline constexpr int Ajouter = 4013;
inline constexpr int Ecarter = 4014;
inline constexpr int Imprimer = 4015;
inline constexpr int Parente = 4016;
inline constexpr int Stats = 4017;
inline constexpr int Exporter = 4018;
inline constexpr int Fermer = 4019;
inline constexpr int Cumul = 4020;
inline constexpr int Orphelines = 4021;
inline constexpr int MiseAJour = 4022;
inline constexpr int Texte = 4023;        // label of the name field
inline constexpr int Genre = 4024;        // label of a keyword kind
inline constexpr int MotCle = 4025;       // "..." button of a keyword row
inline constexpr int AnDebut = 4026;      // years "from"
inline constexpr int AnFin = 4027;        // years "to"
inline constexpr int Nombre = 4028;       // "&1 ligne(s)"
inline constexpr int Epoux = 4029;
inline constexpr int Epouse = 4030;
inline constexpr int PrenomEpoux = 4031;
inline constexpr int PrenomEpouse = 4032;
inline constexpr int LieuMariage = 4033;
inline constexpr int Type = 4034;
inline constexpr int Lieu = 4035;
inline constexpr int Trouves = 4036;      // progress: "&1 trouvé(s)"
// Column headers from 4050 on.
inline constexpr int ColNumero = 4050;
inline constexpr int ColNom = 4051;
inline constexpr int ColFamille = 4052;
inline constexpr int ColDates = 4053;
inline constexpr int ColCle = 4054;
inline constexpr int ColDetail = 4055;
inline constexpr int ColParents = 4056;
inline constexpr int ColSansMariage = 4057;
inline constexpr int ColSansEnfant = 4058;
inline constexpr int ColMari = 4059;
inline constexpr int ColFemme = 4060;
inline constexpr int ColMarque = 4061;
inline constexpr int ColNomMari = 4062;
inline constexpr int ColNomFemme = 4063;
inline constexpr int ColDate = 4064;
inline constexpr int ColLieu = 4065;
inline constexpr int ColEnfants = 4066;
inline constexpr int ColMariage = 4067;
inline constexpr int ColType = 4068;
inline constexpr int ColDescription = 4069;
inline constexpr int ColEvenement = 4070;
inline constexpr int ColAnnee = 4071;
} // namespace msg_rech

// The event handed to the event editor by `C_Maj` of the event search.
std::uint32_t& EvenementTransmis();

// What a form tells its window.
class VueRecherche {
  public:
    virtual ~VueRecherche() = default;
    // Rows were added, dropped or sorted: show the grid again.
    virtual void LignesChangees() = 0;
};

class FrmRechercheCommun {
  public:
    explicit FrmRechercheCommun(MDIForm1& f);
    virtual ~FrmRechercheCommun() = default;
    FrmRechercheCommun(const FrmRechercheCommun&) = delete;
    FrmRechercheCommun& operator=(const FrmRechercheCommun&) = delete;

    void DefinitVue(VueRecherche* v) { vue_ = v; }
    virtual const char* NomFormulaire() const = 0;
    virtual int Titre() const = 0;

    // --- The grid ------------------------------------------------------------
    virtual std::size_t NombreLignes() const { return lignes_.size(); }
    virtual int NombreColonnes() const = 0;
    virtual int Entete(int c) const = 0;
    virtual bool Cachee(int c) const { (void)c; return false; }
    // Cell text of row i, column c.
    virtual std::string Cellule(std::size_t i, int c) const;
    // The person of row i (the wife's when `conjoint` on a couple row).
    virtual std::uint32_t PersonneLigne(std::size_t i, bool conjoint = false) const;
    // The drag tag of row i: "I" or "E" and the number; "" off the grid.
    virtual std::string TagGlisser(std::size_t i) const;
    // `TxtNombre`: the count of rows.
    std::string Nombre() const;
    // A click on a column header sorts the grid on it (both ways in turn).
    virtual void Trie(int c);

    // --- Commands ------------------------------------------------------------
    // `C_Recherche` (Enter in a criteria field does the same).
    virtual bool C_Recherche() = 0;
    bool MajActif() const { return NombreLignes() > 0; }
    bool EcarterActif() const { return NombreLignes() > 1; }
    // `C_Maj`: the sheet on the row's person.
    virtual bool C_Maj(std::size_t i, bool conjoint = false);
    // `C_Affichage`: the row's person becomes the person in course.
    bool C_Affichage(std::size_t i, bool conjoint = false);
    // `CmdEcarter`: drops row i from the result (the base is not changed).
    virtual bool CmdEcarter(std::size_t i);
    // `CmdImprimer`: the persons of the result handed to the printing form.
    bool CmdImprimer();
    // `CmdParenté` / `CmdArbre`: to the relationship search, mode "D".
    virtual bool CmdParente();
    // `CmdStats`: to the statistics, unless a statistics window is open.
    bool CmdStats();
    // `CmdExporter`: the persons, their spouses and relatives marked in the
    // selective export, which is opened.
    bool CmdExporter();
    // Finds the marks of the export form once it is open (the window layer
    // sets it; without it the export opens with its own selection).
    std::function<Selection*()> marquesExport;

    // The persons of the grid (and the spouses on couple rows).
    virtual std::vector<std::uint32_t> Personnes() const;
    // Empties the grid (a base closed or opened under the form).
    virtual void Vide();

  protected:
    // The open base; when it is not the one of the rows, the rows go.
    Base* B();
    // Runs a scan on the progress panel; `prend` takes its rows after each
    // step. False when stopped.
    bool Balaye(Balayage& s, const std::function<std::size_t()>& prend);
    void Change() {
        if (vue_) vue_->LignesChangees();
    }
    bool Transmet(const char* formulaire, std::size_t minimum);

    struct Ligne {
        std::uint32_t numero = 0;  // person, marriage or event
        std::uint32_t personne = 0, conjoint = 0;
        std::vector<std::string> cellules;
    };
    MDIForm1& f_;
    VueRecherche* vue_ = nullptr;
    Base* base_ = nullptr;
    std::vector<Ligne> lignes_;
    int triColonne_ = -1;
    bool triInverse_ = false;
};

// --- FrmRecherche ("Recherche Nom") -----------------------------------------------
class FrmRecherche : public FrmRechercheCommun {
  public:
    using FrmRechercheCommun::FrmRechercheCommun;
    const char* NomFormulaire() const override { return "FrmRecherche"; }
    int Titre() const override { return msg_rech::TitreNom; }

    // `T_Recherche` and `ChxCumul`.
    std::string texte;
    bool cumul = false;
    // The field shown folded as it is typed; the caret stays (same length).
    static std::string Plie(const std::string& t) { return CleMot(t); }

    std::size_t NombreLignes() const override { return ensemble_.Taille(); }
    int NombreColonnes() const override { return 4; }
    int Entete(int c) const override;
    std::string Cellule(std::size_t i, int c) const override;
    std::uint32_t PersonneLigne(std::size_t i, bool = false) const override;
    std::string TagGlisser(std::size_t i) const override;
    void Trie(int) override {} // the set stays in number order

    bool C_Recherche() override;
    bool CmdEcarter(std::size_t i) override;
    // `CmdAjouter`: a person chosen in the list of names joins the set.
    bool CmdAjouter();
    // A drop on the grid: "I" a person, "E" the first person of an event.
    bool RecoitGlisser(char genre, std::uint32_t numero);
    const EnsemblePersonnes& Ensemble() const { return ensemble_; }
    std::vector<std::uint32_t> Personnes() const override { return ensemble_.Numeros(); }
    void Vide() override { ensemble_.Vide_(); }

  private:
    EnsemblePersonnes ensemble_;
};

// --- FrmRechTexte ("Recherche Mot-Clé") ------------------------------------------------
class FrmRechTexte : public FrmRechercheCommun {
  public:
    using FrmRechercheCommun::FrmRechercheCommun;
    const char* NomFormulaire() const override { return "FrmRechTexte"; }
    int Titre() const override { return msg_rech::TitreTexte; }

    CriteresMots criteres; // the four rows, the years, `ChkOrpheline`
    bool cumul = false;
    // `L_MClé`: the kinds of keyword of the base, a mark and a label each.
    std::vector<std::pair<char, std::string>> Genres();
    // Whether `C_Recherche` is enabled: some criterion filled.
    bool RechercheActive() const { return !criteres.Vides(); }

    int NombreColonnes() const override { return 9; }
    int Entete(int c) const override;
    bool Cachee(int c) const override { return c == 8; }
    bool C_Recherche() override;
    bool CmdParente() override { return Transmet("FrmRechAscendant", 2); }
};

// --- FrmRechCouple ("Recherche Couple") -------------------------------------------------
class FrmRechCouple : public FrmRechercheCommun {
  public:
    using FrmRechercheCommun::FrmRechercheCommun;
    const char* NomFormulaire() const override { return "FrmRechCouple"; }
    int Titre() const override { return msg_rech::TitreCouple; }

    CriteresCouple criteres;
    int NombreColonnes() const override { return 10; }
    int Entete(int c) const override;
    bool Cachee(int c) const override { return c == 9; }
    // Columns of the wife: a double click there acts on her.
    static bool ColonneEpouse(int c) { return c == 1 || c == 4; }
    bool C_Recherche() override;
};

// --- FrmRechEvt ("Recherche Evénements") -------------------------------------------------
class FrmRechEvt : public FrmRechercheCommun {
  public:
    using FrmRechercheCommun::FrmRechercheCommun;
    const char* NomFormulaire() const override { return "FrmRechEvt"; }
    int Titre() const override { return msg_rech::TitreEvt; }

    CriteresEvt criteres;
    // Values of `CboType` and `CboLieu`, read again when dropped.
    std::vector<std::string> Types() { return B() ? ValeursEvt(*B(), false) : std::vector<std::string>{}; }
    std::vector<std::string> Lieux() { return B() ? ValeursEvt(*B(), true) : std::vector<std::string>{}; }
    // After a refusal of a year (931): 1 the start field, 2 the end field.
    int champErrone = 0;

    int NombreColonnes() const override { return 5; }
    int Entete(int c) const override;
    bool Cachee(int c) const override { return c == 4; }
    std::uint32_t PersonneLigne(std::size_t i, bool = false) const override;
    std::string TagGlisser(std::size_t i) const override;
    bool C_Recherche() override;
    // "Mise à jour": the event editor on the row's event (one form a event).
    bool C_Maj(std::size_t i, bool = false) override;
    void Trie(int c) override;
};

} // namespace sylvane
