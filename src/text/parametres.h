// The user's settings, read once at start-up and shared by the whole
// process. One instance lives in the application; the core reads it through
// a reference given to the objects that need it.
#pragma once

#include "text/mots.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace sylvane {

class Reglages;

// The recent bases of the File menu: four paths, the most recent first.
class Historique {
  public:
    static constexpr int kEntrees = 4;
    // A closed base goes first: already first, nothing moves; at place 2 to
    // 4, the entries above it slide one down; elsewhere all slide down and
    // the fourth is lost.
    void ajoute(const std::string& chemin);
    const std::array<std::string, kEntrees>& entrees() const { return entrees_; }
    // The caption of an entry: the file name without its folder and without
    // its last four characters.
    static std::string Libelle(const std::string& chemin);
    // Keys "Historique 1" to "Historique 4" of section "Defaut".
    static std::string Cle(int i);
    void lit(const Reglages& r);
    void sauve(Reglages& r) const;

  private:
    std::array<std::string, kEntrees> entrees_;
};

// A row of the event-role table: the event tag and its roles. A role is a
// flag "M" (must be filled) or blank, a sex "H", "F" or blank, then the tag.
struct Temoin {
    std::string evenement;
    std::vector<std::string> roles;
};

struct Parametres {
    // "Particule": the particle list with its two flags.
    std::vector<Particule> particules = ParticulesParDefaut();
    // "Affichage Nom": the tags of the display name, in order.
    std::vector<std::string> affichageNom = {"FNAM", "BIRN"};
    // "Fréquence Sauvegarde": minutes between automatic commits.
    int frequenceSauvegarde = 15;
    // "Travail": the work directory.
    std::string dossierTravail;
    // The work directory, ended by "/": the system's temporary folder when
    // none is set, never a folder of the user's files.
    std::string DossierTravail() const;

    std::string langue = "Fran\xE7" "ais"; // "Langue"
    std::string aide;                      // "Aide": help file
    std::string fichierCommunes;           // "Fichier Communes"
    std::string geneanet;                  // "Généanet": folder of the outside tool

    // Tree presentation; colours are 24-bit blue-green-red numbers.
    std::int32_t couleurFond = 16711808;
    bool degrade = true;
    std::int32_t couleurCadreHomme = 16776960;
    std::int32_t couleurCadreFemme = 65535;
    std::int32_t couleurCadreIndetermine = 12632256;
    std::int32_t couleurPoliceHomme = 4194304;
    std::int32_t couleurPoliceFemme = 255;
    std::int32_t couleurPoliceIndetermine = 0;
    int maximumRechercheParente = 10;
    int typePresentation = 2;
    std::array<std::string, 4> nomPolice = {"Arial", "Arial", "Arial", "Arial"};
    std::array<int, 4> taillePolice = {8, 8, 8, 8};
    std::array<int, 4> nombreCases = {8, 32, 48, 64};
    std::array<bool, 4> proportionnel = {true, true, true, true};

    bool assistant = false;      // "Assistant"
    bool barreMenus = false;     // "Barre de menus"
    bool barreFenetres = true;   // "Barre de fenêtres"
    bool motClePrenom = false;   // "Mot clé Prénom"
    bool motCleNom = false;      // "Mot clé Nom"
    // "Icones": tool bar buttons in order, 99 a separator.
    std::vector<int> icones = {0, 1, 2, 3, 4, 10, 99, 11, 12, 13, 14, 8, 99,
                               28, 29, 99, 15, 16, 99, 17, 18, 99, 22, 23, 24};

    // Per base as well (LitParametresBase).
    std::int32_t personneEnCours = 1;
    std::int32_t deCujus = 0;
    std::int32_t deCujus2 = 0;

    std::string conversionNom, conversionPrenom, conversionLieu; // capitals on entry
    std::string nomImage;                                        // "Nom Image"
    std::string auteur;                                          // "Auteur"
    std::array<std::string, 8> adresse;                          // "Adresse 1" to "Adresse 8"
    std::vector<std::string> typesDocument;                      // "Type Document n"

    // "Liste Rubriques" and "Rubrique <list>": each list name and its tags.
    std::vector<std::pair<std::string, std::vector<std::string>>> rubriques;
    // "Graphisme": image formats and their extensions.
    std::vector<std::pair<std::string, std::string>> graphisme;
    // "Liste Evénements" and "Evénements\<tag>": the event-role table.
    std::vector<Temoin> temoins;

    Historique historique;
};

// The program's folder: that of the running executable.
std::string DossierProgramme();

// Defaults of everything that has no fixed default: the folders under the
// program's folder, the tag lists, the role table, the image formats.
Parametres ParametresParDefaut(const std::string& dossierProgramme);
const std::vector<Temoin>& TemoinsParDefaut();

// Reads every general setting into p, writing each missing default back to
// the store; creates the work folder when it is missing.
void LitParametres(Reglages& r, Parametres& p,
                   const std::string& dossierProgramme = DossierProgramme());
// Writes the general settings, the particles (section emptied and rewritten),
// the tag lists, the role table and the recent bases.
void SauveParametres(Reglages& r, const Parametres& p);

// The presentation values kept for each base, in a section named after the
// base's path: colours, fonts, boxes, current person and the two De Cujus.
// Absent keys keep the values p already holds.
void LitParametresBase(const Reglages& r, const std::string& cheminBase, Parametres& p);
void SauveParametresBase(Reglages& r, const std::string& cheminBase, const Parametres& p);

// Switches the interface language and remembers it with its help file.
// Returns false, changing nothing, when the language file cannot be opened.
bool ChangeLangue(Reglages& r, Parametres& p, const std::string& langue,
                  const std::string& dossierProgramme = DossierProgramme());

// Start-up: opens the language of the settings. When its file is missing,
// falls back on "Français", then on the first language of the folder, and
// remembers the one taken. Returns false when the folder has none: every
// message is then the empty text.
bool OuvreLangueDemarrage(Reglages& r, Parametres& p,
                          const std::string& dossierProgramme = DossierProgramme());

} // namespace sylvane
