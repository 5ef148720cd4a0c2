// The event editor: `FrmLstEvt`, the list of every event of the base in date
// order (or another order the user asks), and `FrmDesEvt`, the form on one
// event with its type, date, place, title, comment, persons and roles, and
// documents. Several event forms may be open at once, one per event; each
// is known by its number followed by "E" ("0E" while it creates one).
//
// The windows show what these classes hold and forward every change and
// click; nothing here draws.
#pragma once

#include "store/evenement_edition.h"
#include "store/liens.h"
#include "ui/choix_fiche.h"
#include "ui/frm_document.h"
#include "ui/frm_mot.h"
#include "ui/mdiform1.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

// Captions of the two forms that have no number of their own elsewhere.
namespace msg_evt {
inline constexpr int TitreListe = 4150;
inline constexpr int TitreForme = 4151;   // "Événement &1"
inline constexpr int Nouveau = 4152;      // caption of a form that creates
inline constexpr int Position = 4153;     // label of TxPosition
inline constexpr int Ajout = 4154;
inline constexpr int Maj = 4155;
inline constexpr int Supp = 4156;
inline constexpr int Imprimer = 4157;
inline constexpr int ColDate = 4158;
inline constexpr int ColAnnee = 4159;
inline constexpr int ColLieu = 4160;
inline constexpr int ColType = 4161;
inline constexpr int ColNumero = 4162;
inline constexpr int Type = 4163;
inline constexpr int Date = 4164;
inline constexpr int Lieu = 4165;
inline constexpr int Intitule = 4166;
inline constexpr int Role = 4167;
inline constexpr int OngletRoles = 4168;
inline constexpr int OngletDocuments = 4169;
inline constexpr int OngletCommentaire = 4170;
inline constexpr int ColNom = 4171;
inline constexpr int ColRole = 4172;
inline constexpr int ColTitre = 4173;
inline constexpr int ColFichier = 4174;
inline constexpr int RechLien = 4175;     // add an existing person
inline constexpr int CreLien = 4176;      // create a person for the role
inline constexpr int SupLien = 4177;
inline constexpr int MajInd = 4178;       // open the person's sheet
inline constexpr int Monter = 4179;
inline constexpr int Descendre = 4180;
inline constexpr int Commentaire = 4181;  // edit the comment
inline constexpr int MiseAJour = 4182;    // CmdMaj
inline constexpr int Quitter = 4183;
inline constexpr int Nombre = 4184;       // "&1 événements"
inline constexpr int Rectification = 4185; // F12, "Rectification liens"
inline constexpr int Correction = 4186;   // "Correction Evt &1"
inline constexpr int VoirDoc = 4187;
inline constexpr int NouvelEvt = 4188;    // the sheet's button for a new event
inline constexpr int OuvrirEvt = 4189;    // the sheet's button on the selected event
inline constexpr int ChoisirRole = 4190;  // a person added with no role chosen
inline constexpr int Evenement = 4191;    // the sheet's buttons of its birth, death, marriage
inline constexpr int CreationDoc = 4192;  // a new document for the event
inline constexpr int NouveauDoc = 4193;   // an existing document
inline constexpr int DesImage = 4194;     // the document's form
inline constexpr int FicheDesImage = 4195; // the same on the sheet
inline constexpr int FicheVisuImage = 4196; // the sheet's view of a document
} // namespace msg_evt

// An event form asked for: the event (0 for a new one) and the person it is
// opened from (0 for none). The window that opens the form reads it.
struct DemandeEvt {
    std::uint32_t evenement = 0;
    std::uint32_t proprietaire = 0;
};
DemandeEvt& DemandeEvenement();
// Opens the form on an event, or brings forward the one already open on
// it. False when this program has no event form.
bool OuvreEvenement(MDIForm1& f, std::uint32_t evenement, std::uint32_t proprietaire = 0);

// The sheet's event commands (`CmdEvNaiss`, `CmdEvDécès`, `CmdIndEvt`,
// `CmdEvMar`): the person's event of that type in its main role, or one
// made with the sheet's date and place. The date is parsed first
// (message 931 when it is no date). Gives the event, 0 when refused.
std::uint32_t EvenementDeFiche(MDIForm1& f, std::uint32_t personne, const std::string& tag,
                               const std::string& jour, const std::string& annee,
                               const std::string& lieu, std::uint32_t mariage = 0);

class FrmMisajour;
// The sheet's event buttons: `CmdEvNaiss` ("BIRT"), `CmdEvDécès` ("DEAT")
// and `CmdEvMar` ("MARR", on the selected marriage) open the form on the
// sheet person's event, made first from the sheet's fields when there is
// none. False when refused.
bool CmdEvFiche(MDIForm1& f, FrmMisajour& fiche, const std::string& tag);
// The mark on such a button: the event exists.
bool MarqueEvFiche(MDIForm1& f, const FrmMisajour& fiche, const std::string& tag);
// A rubric row of the sheet whose tag is a type of the table of events
// has its own event button: `CmdIndEvt` for a person rubric, `CmdMarEvt`
// for a marriage rubric (on the selected marriage). The event is that of
// the rubric's tag, made first from the row's day, year and place.
bool RubriqueEvenement(MDIForm1& f, const FrmMisajour& fiche, bool mariage, int rang);
bool CmdRubEvt(MDIForm1& f, FrmMisajour& fiche, bool mariage, int rang);
bool MarqueRubEvt(MDIForm1& f, const FrmMisajour& fiche, bool mariage, int rang);
// The keyword picker of a rubric row (`CmdIndSel`, `CmdMarSel`): the row's
// values and its owner, the sheet person and, for a marriage rubric, the
// marriage selected on the sheet, so that the picker's event button works
// on the marriage shown. Nothing for a row that is not there.
std::optional<DemandeMot> DemandeMotRubrique(MDIForm1& f, const FrmMisajour& fiche, bool mariage,
                                             int rang);
// The sheet's hook for an event that disagrees with it: the form on that
// event takes the sheet's date and place and is validated, then shown.
std::function<void(std::uint32_t, const std::string&, const std::string&, const std::string&)>
EditeurFiche(MDIForm1& f, ChoixFiche& choix);

// --- FrmLstEvt --------------------------------------------------------------------------------

class VueListeEvt {
  public:
    virtual ~VueListeEvt() = default;
    // Rows were added, dropped or reordered.
    virtual void ListeChangee() = 0;
};

// The orders of the list: by date (the table as stored), by place, by type,
// by number.
enum class OrdreEvt { Date, Lieu, Type, Numero };

class FrmLstEvt {
  public:
    explicit FrmLstEvt(MDIForm1& f);
    void DefinitVue(VueListeEvt* v) { vue_ = v; }

    // Rows, read on demand: only the rows shown are ever read.
    std::size_t Nombre();
    std::uint32_t Numero(std::size_t rang);
    // Date "dd/mm/yyyy", year, place, type label, number.
    std::array<std::string, 5> Ligne(std::size_t rang);
    // The list in another order; the date order needs nothing read, the
    // others read every event once.
    void Trie(OrdreEvt ordre, bool descendant);
    OrdreEvt Ordre() const { return ordre_; }
    bool Descendant() const { return descendant_; }
    // TxPosition and Enter: the row of the first event of that year or
    // later (the list goes back to the date order); nothing for no year.
    std::optional<std::size_t> Position(const std::string& annee);
    // The row of an event, when listed.
    std::optional<std::size_t> RangDe(std::uint32_t e);

    void CmdAjout();
    void CmdMaj(std::size_t rang);
    // 617 and 618, then the deletion. Returns whether deleted.
    bool CmdSupp(std::size_t rang);
    // The base changed under the list.
    void Actualise();
    // F12: the roles left empty by the register capture of older versions.
    // Returns the number of persons given a role.
    int Rectification();
    // `CmdImprimer`: the list, in the order shown, in the preview, from
    // which it goes to the printer or a PDF. The preview lays the pages out
    // as it opens, under the progress panel; a stop keeps the whole pages
    // laid out until then. False with no row, no base or no preview.
    bool CmdImprimer();

  private:
    Base* B() { return f_.base(); }
    void Change();

    MDIForm1& f_;
    VueListeEvt* vue_ = nullptr;
    OrdreEvt ordre_ = OrdreEvt::Date;
    bool descendant_ = false;
    std::vector<std::uint32_t> ordonnes_; // the numbers in another order than by date
};

// The repair behind F12, over the whole base. `progres` gets the event
// being corrected and answers false to stop.
int RectifieLiens(Base& b, const std::function<bool(std::uint32_t e)>& progres = {});

// --- FrmDesEvt --------------------------------------------------------------------------------

enum class ChampEvt { Date, Lieu, Titre };

struct LignePersonneEvt {
    std::uint32_t numero = 0;
    std::string nom;  // name with dates
    std::string role; // the role's label
    std::string tag;  // the role's tag
};

struct LigneDocEvt {
    std::uint32_t numero = 0;
    std::string titre, fichier;
};

class VueEvenement {
  public:
    virtual ~VueEvenement() = default;
    // Every field and grid may have changed.
    virtual void EvenementChange() = 0;
};

class FrmDesEvt {
  public:
    FrmDesEvt(MDIForm1& f, ChoixFiche& choix, std::uint32_t evenement, std::uint32_t proprietaire);
    FrmDesEvt(const FrmDesEvt&) = delete;
    FrmDesEvt& operator=(const FrmDesEvt&) = delete;
    void DefinitVue(VueEvenement* v) { vue_ = v; }

    std::uint32_t Numero() const { return e_; }
    // "12E", "0E" for a new one.
    std::string Etiquette() const { return std::to_string(e_) + "E"; }
    std::uint32_t Proprietaire() const { return proprietaire_; }
    // The caption of the window: the type, the date and the number.
    std::string Titre() const;

    // Redraws every field from the store (the pending changes are dropped).
    void Charge();
    // The base changed: reload unless the form holds changes.
    void Actualise();

    // --- Fields -----------------------------------------------------------------------------
    // `CboTypeEvt`: the labels of the types of the table.
    std::vector<std::string> Types() const;
    const std::string& Type() const { return type_; }
    void ChoisitType(const std::string& libelle);
    // `CboRole`: the labels of the roles of the chosen type.
    std::vector<std::string> Roles() const;
    const std::string& Role() const { return role_; }
    // A role chosen: for the selected person, a change of its role; with no
    // one selected, the role that the next person added takes.
    void ChoisitRole(const std::string& libelle);
    void Modifie(ChampEvt c, const std::string& texte);
    const std::string& Valeur(ChampEvt c) const;
    // `LblJourEvt`: the day of the week and the date in words, from the
    // date typed, "" when it is no date.
    std::string JourEvt() const;
    const std::string& Note() const { return note_; }
    bool Pendant() const { return pendant_; }

    const std::vector<LignePersonneEvt>& Personnes() const { return personnes_; }
    const std::vector<LigneDocEvt>& Documents() const { return docs_; }
    void SelectionnePersonne(int rang);
    int PersonneSelectionnee() const { return selection_; }
    // Tab captions with their mark when the tab is not empty (message 849).
    std::string LibelleOnglet(int onglet) const;

    // --- Commands ---------------------------------------------------------------------------
    // `CmdMaj`: writes the form (see the steps in the source). False on a
    // refusal (message 931) or with no base.
    bool CmdMaj();
    // `CmdQuitter`: message 933 when pending (Yes validates). Returns
    // whether the form may close.
    bool CmdQuitter();
    // `CmdRechLien`: the picker gives a person for the chosen role.
    bool CmdRechLien();
    // A person dropped on the grid of roles, or chosen in the picker.
    bool AjoutePersonne(std::uint32_t p);
    // A person dropped on the grid: its sex must fit the chosen role.
    bool RecoitPersonne(std::uint32_t p);
    bool CmdCreLien();
    bool CmdSupLien();
    void CmdMajInd();
    bool CmdLienUp();
    bool CmdLienDown();
    void CmdTxtComment();

    // --- Documents of the event (`GrdDocument`) ------------------------------------------
    // `CmdCréationDoc`: a new document for the event (a new event is
    // written first); `CmdNouveauDoc`: an existing one from the picker.
    bool CmdCreationDoc();
    bool CmdNouveauDoc();
    bool CmdSuppDoc(int rang);
    bool CmdDesImage(int rang);
    // `CmdVisuImage`: the viewer that fits the document.
    Visionneuse CmdVisuImage(int rang);
    bool CmdDocUp(int rang);
    bool CmdDocDown(int rang);
    // `CmdImprimer`: the event's sheet in the preview, from which it goes
    // to the printer or a PDF. Pending changes are written first.
    bool CmdImprimer();

  private:
    Base* B() { return f_.base(); }
    std::string TagType() const;
    std::string TagRole() const;
    void Change();
    void ChargeListes();
    void MarquePendant();
    bool RoleRefuse(std::uint32_t p, const std::string& tag);
    void LiensFamille(std::uint32_t n, const std::string& role);
    DialogueLiens Dialogue();
    void RechargeFiche(std::uint32_t p);
    bool Documents(bool fait);

    MDIForm1& f_;
    ChoixFiche& choix_;
    VueEvenement* vue_ = nullptr;
    std::uint32_t e_ = 0;
    std::uint32_t proprietaire_ = 0;
    std::string type_, role_, date_, lieu_, titre_, note_;
    bool pendant_ = false;
    bool roleChange_ = false;
    int selection_ = -1;
    std::vector<LignePersonneEvt> personnes_;
    std::vector<LigneDocEvt> docs_;
    DocumentsDe documents_;
    std::string vide_;
};

} // namespace sylvane
