// The settings form `FrmParametre`: a copy of the settings in force that the
// form edits, the rules that refuse a wrong value, and the confirmation that
// writes the copy back to the settings, to the settings store (general and
// per base) and to the open base's header. Cancel drops the copy: nothing
// outside it has changed until `Applique`.
#pragma once

#include "text/parametres.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace sylvane {

class Application;
class Boites;
class Selecteur;

// The tabs of the form, in their order.
enum class OngletParametre { General, Noms, Presentation, Outils, Rubriques, Evenements,
                             Documents, Auteur };

// What the form shows and edits.
struct EtatParametre {
    Parametres p;
    // The two options of the open base's header (fields 103 and 102); they
    // are shown only while a base is open.
    bool baseOuverte = false;
    bool particulesTri = false;
    bool premierPrenom = false;
};
// Two states are the same when they write the same settings.
bool MemesParametres(const EtatParametre& a, const EtatParametre& b);

// A refusal: the message, the tab where the wrong value stands, and the text
// that replaces "&1" in the message.
struct RefusParametre {
    int message = 0;
    OngletParametre onglet = OngletParametre::General;
    std::string nom;
    explicit operator bool() const { return message != 0; }
};

// Bounds of the numbers of the form.
struct BornesParametre {
    static constexpr int kFrequenceMin = 1, kFrequenceMax = 1440;
    static constexpr int kParenteMin = 1, kParenteMax = 99;
    static constexpr int kTypeMin = 0, kTypeMax = 9;
    static constexpr int kTailleMin = 4, kTailleMax = 72;
    static constexpr int kCasesMin = 1, kCasesMax = 1000;
    static constexpr std::size_t kAffichageMax = 10;
    static constexpr std::size_t kRolesMax = 19;
    static constexpr std::size_t kParticuleMax = 20;
};

// Messages of the form's refusals and notices.
namespace MsgParametre {
constexpr int kTravailVide = 3750;
constexpr int kTravailCreation = 3751;
constexpr int kLangue = 3752;
constexpr int kFrequence = 3753;
constexpr int kParente = 3754;
constexpr int kType = 3755;
constexpr int kTaille = 3756;
constexpr int kCases = 3757;
constexpr int kPolice = 3758;
constexpr int kAffichageVide = 3759;
constexpr int kAffichageTrop = 3760;
constexpr int kParticule = 3761;
constexpr int kDouble = 3762;
constexpr int kVide = 3763;
constexpr int kDiese = 3764;
constexpr int kRoles = 3765;
constexpr int kGraphisme = 3766;
constexpr int kLigne = 3767;
constexpr int kPremierPrenom = 3768;
constexpr int kTriRefait = 3769;
constexpr int kBarre = 3770;
} // namespace MsgParametre

// The word of a tag as the form shows it (the tag itself when its message
// is missing).
std::string LibelleTagParametre(const std::string& tag);
// A particle line of the list: "de (N)", "y (NP)".
std::string LigneParticule(const Particule& p);
// The three choices of capitals on entry: 0 as typed, 1 upper case, 2 name
// capitals. An index written back keeps the old value when it meant the
// same (an empty value stays empty).
int IndexConversion(const std::string& valeur);
std::string ValeurConversion(int index, const std::string& ancienne);
// The tool of a number of the "Icones" list: 0 for a separator (99), -1 for
// a number that shows nothing, else 2 to 35. And the number written for a
// tool.
int OutilDuNumero(int numero);
int NumeroDeOutil(int outil);
// The tools that can be put on the bar (the history button is always first
// and is not among them).
std::vector<int> OutilsDisponibles();
// A role of the event table split and made: flags "M", "H"/"F" and the tag.
struct Role {
    bool obligatoire = false;
    char sexe = ' ';
    std::string tag;
};
Role LitRole(const std::string& role);
std::string EcritRole(const Role& r);

class FrmParametre {
  public:
    // `changeLangue` switches the interface language (the main window's
    // command); by default the settings' own switch.
    FrmParametre(Application& app, Boites& boites, Selecteur& selecteur,
                 std::function<bool(const std::string&)> changeLangue = {});

    // Takes the settings in force (and the base's options) again.
    void Charge();
    // What the form edits.
    EtatParametre etat;
    bool Modifie() const { return !MemesParametres(etat, charge_); }

    // The first wrong value of the state, or none.
    RefusParametre Valide() const;
    // OK and Apply: a refusal is shown and changes nothing; otherwise the
    // settings, the store, the header and the numberings take the state.
    bool Applique();
    // What the last Applique changed that the window must show again.
    bool langueChangee = false;

    // The languages that can be chosen.
    std::vector<std::string> Langues() const;
    // Tags offered for the display name: the fixed variants, then the
    // person rubrics of the open base.
    std::vector<std::string> VariantesAffichage() const;
    // The name shown for a person of the base ("" when none).
    std::string NomPersonne(std::uint32_t n) const;

    // List editing. Each answers 0 or the message of its refusal (shown).
    int AjouteParticule(const std::string& texte);
    int AjouteAffichage(const std::string& tag);
    // A word or a tag into rubric list `liste`.
    int AjouteTagRubrique(std::size_t liste, const std::string& texte);
    int AjouteEvenement(const std::string& texte);
    int AjouteRole(std::size_t evenement, const Role& role);
    int AjouteTypeDocument(const std::string& texte);
    int AjouteGraphisme(const std::string& format, const std::string& extensions);
    // The picker on De Cujus 1 or 2; false when the user cancelled.
    bool ChoisitDeCujus(int i);

  private:
    int Refuse(int message, const std::string& nom = {});

    Application& app_;
    Boites& boites_;
    Selecteur& selecteur_;
    std::function<bool(const std::string&)> changeLangue_;
    EtatParametre charge_;
};

// Moves entry i of a list one place up (sens -1) or down (+1); answers the
// new place, or i when it cannot move.
template <class T> std::size_t Deplace(std::vector<T>& v, std::size_t i, int sens) {
    if (i >= v.size()) return i;
    if (sens < 0 && i == 0) return i;
    if (sens > 0 && i + 1 >= v.size()) return i;
    const std::size_t j = sens < 0 ? i - 1 : i + 1;
    std::swap(v[i], v[j]);
    return j;
}

} // namespace sylvane
