// The on-screen ascendant and descendant lists (`FrmAscendants` and
// `FrmDescendants`): one starting person, a number of generations, one of
// the four orders, and a grid of one row per person of the list. The two
// forms share everything but their walk and their columns.
#pragma once

#include "kinship/liste.h"
#include "ui/mdiform1.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace sylvane {

enum class GenreListe { Ascendants, Descendants };

// Messages of the two forms that have no number of their own elsewhere.
namespace msg_listes {
inline constexpr int Generations = 3500;  // label of `TxNiveaux`
inline constexpr int Presentation = 3501; // frame of the four orders
inline constexpr int Ordre0 = 3502;       // `CmdPresentation(0)` to (3)
inline constexpr int CmdArbre = 3506;
inline constexpr int CmdStats = 3507;
inline constexpr int CmdAscendants = 3508;
inline constexpr int CmdDescendants = 3509;
inline constexpr int CmdImpression = 3510;
inline constexpr int CmdMaj = 3511;
inline constexpr int Nombre = 3512;       // "&1 persons" under the grid
inline constexpr int NombreUn = 3513;     // the same for one person
inline constexpr int ColPersonne = 3520;  // headers of the grid's columns
inline constexpr int ColGeneration = 3521;
inline constexpr int ColSosa = 3522;
inline constexpr int ColOccurrences = 3523;
inline constexpr int ColMariages = 3524;
inline constexpr int ColNom = 3525;
inline constexpr int ColDates = 3526;
inline constexpr int ColNumero = 3527;
} // namespace msg_listes

// What a list hands to the relationship graph, the statistics and the
// printing form: its persons as four-byte numbers in ascending order, "A"
// or "D", the generations asked, and the person it starts from.
struct TransfertParente {
    std::string liste;
    char mode = 'A';
    int generations = 0;
    std::uint32_t personne = 0;
};
TransfertParente& ParenteTransmise();

// What the form tells its window.
class VueListe {
  public:
    virtual ~VueListe() = default;
    // The rows, the caption or the options changed: show them again.
    virtual void ListeChangee() = 0;
};

class FrmListe {
  public:
    // The form opens on the person handed to it by the other list form,
    // else on the person in course.
    FrmListe(MDIForm1& f, GenreListe genre);
    ~FrmListe();
    FrmListe(const FrmListe&) = delete;
    FrmListe& operator=(const FrmListe&) = delete;

    void DefinitVue(VueListe* vue) { vue_ = vue; }
    GenreListe Genre() const { return genre_; }
    static const char* NomFormulaire(GenreListe g);

    // --- Options ------------------------------------------------------------
    // The starting person: the form's person slot.
    std::uint32_t Depart() const { return depart_; }
    int Niveaux() const { return niveaux_; }
    int Presentation() const { return presentation_; }
    static constexpr int kNiveauxMin = 1;
    // Generations sort on two digits: a deeper list would sort out of place.
    static constexpr int kNiveauxMax = 99;
    static constexpr int kNiveauxDefaut = 10;
    // A change of generations or of order builds the list again.
    bool ChangeNiveaux(int niveaux);
    bool ChangePresentation(int mode);

    // --- The list -------------------------------------------------------------
    // Builds the list again from the starting person, on the progress panel
    // with its stop button. Refused while another long operation runs
    // (message 503) and without a base or a person; after a stop or a work
    // file that cannot be written the grid is empty.
    bool Rafraichissement();
    // The refresh mark: the list must be built again before it is shown.
    bool rafraichir = true;
    // The base no longer holds as many persons as when the list was built.
    bool Perimee();
    // Builds the list when it is marked or outdated; true when it ran.
    bool MetAJour();

    // A row of the grid: the person, then the cells after the hidden first
    // column.
    struct Ligne {
        std::uint32_t personne = 0;
        std::vector<std::string> cellules;
    };
    const std::vector<Ligne>& Lignes() const { return lignes_; }
    int NombreColonnes() const { return 7; }
    // Header of column c (0 is the hidden person number).
    std::string Entete(int c) const;
    // A sample text that the column must be wide enough for ("" for none).
    std::string Gabarit(int c) const;
    // Message 575 or 768 with the starting person's name.
    std::string Titre();

    // --- Actions on row i (0-based) -------------------------------------------
    std::uint32_t PersonneLigne(int i) const;
    // The drag tag of the row's person: "I" and its number; "" off the list.
    std::string TagGlisser(int i) const;
    // Double click or Enter: the row's person becomes the person in course.
    bool Choisit(int i);
    // A person dropped on the form's tab becomes the starting person.
    bool RecoitGlisser(char genre, std::uint32_t numero);
    // `CmdAscendants` and `CmdDescendants`: the row's person becomes the
    // starting person of the ascendant (descendant) list, in this form or
    // in the other one, opened if need be.
    bool VersListe(GenreListe cible, int i);
    // `CmdMaj`: the row's person on the person sheet.
    bool CmdMaj(int i);
    // `CmdArbre`, `CmdStats`, `CmdImpression`: the list handed on to the
    // graph, the statistics and the printing form. The graph and the
    // statistics need two persons at least (message 555).
    bool CmdArbre();
    bool CmdStats();
    bool CmdImpression();
    // Whether a command's form is part of this program.
    bool Disponible(const std::string& formulaire) const;

  private:
    bool Transmet(const char* formulaire, bool deuxAuMoins);
    void Remplit(OperationLongue& op);
    Ligne LigneEntree(Base& b, std::int32_t n) const;

    MDIForm1& f_;
    GenreListe genre_;
    VueListe* vue_ = nullptr;
    std::uint32_t depart_ = 0;
    int niveaux_ = kNiveauxDefaut;
    int presentation_ = TriParcours;
    Base* baseListe_ = nullptr;
    std::uint32_t personnesListe_ = 0; // persons of the base at the last run
    std::unique_ptr<ListeParente> liste_;
    std::vector<Ligne> lignes_;
};

} // namespace sylvane
