// The logic of the main window: the commands of its menus and tool bar,
// the current person and the navigation around it, the view level of the
// family view, the two timers, the guards of every command (message 503
// while a long operation runs, message 847 for a sheet with pending
// changes). The window layer forwards clicks and keys here and redraws on
// the calls of `VueMDI`; nothing here draws.
#pragma once

#include "ui/application.h"
#include "ui/commandes.h"
#include "ui/services.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

// The modal person picker (the general list of names, `FrmNom`): answers
// the chosen person, or 0 when the user cancelled.
class Selecteur {
  public:
    virtual ~Selecteur() = default;
    virtual std::uint32_t ChoisitPersonne(std::uint32_t depart, int titre = 0) = 0;
};

// What the logic tells the window.
class VueMDI {
  public:
    virtual ~VueMDI() = default;
    // The current person changed, or the base under it: redraw the family
    // view and the status bar.
    virtual void PersonneChangee() = 0;
    // Menus, title, recent bases, tool bar, De Cujus panels: read them again.
    virtual void EtatChange() = 0;
    // The language changed: every open window takes its texts again.
    virtual void LangueChangee() = 0;
    // The family view's reach or scale changed: lay it out again.
    virtual void VueChangee() = 0;
    // `MnuQuitter`: close the main window (which asks through
    // `DemandeFermeture`).
    virtual void Quitte() = 0;
    // `MnuArranger`: arrange the child windows.
    virtual void Arrange() = 0;
};

struct ServicesUi {
    Boites& boites;
    DialoguesFichier& fichiers;
    Panneau& panneau;
    Fenetres& fenetres;
    Selecteur& selecteur;
};

class MDIForm1 {
  public:
    MDIForm1(Application& app, ServicesUi services);
    MDIForm1(const MDIForm1&) = delete;
    MDIForm1& operator=(const MDIForm1&) = delete;

    void DefinitVue(VueMDI* vue) { vue_ = vue; }
    Application& app() { return app_; }
    ServicesUi& services() { return services_; }
    Base* base() { return app_.BaseOuverte() ? &app_.base() : nullptr; }

    // --- Life of the program ------------------------------------------------
    // Start-up: settings, work folder, language; then the first argument
    // of the command line that names a base to open or a file to import.
    void Demarre(const std::vector<std::string>& arguments = {});
    // The close box or `MnuQuitter`: refuses while busy (503), settles the
    // sheet, asks message 21. True when the program may end.
    bool DemandeFermeture();
    // The unload: commits, saves settings, deletes the list work files.
    void Termine();
    // A file given on the command line or dropped on the window: a ".sv2"
    // is opened, a ".ged" or ".svr" imported; anything else, or a missing
    // file, is passed over. Returns whether it was taken.
    bool OuvreFichier(const std::string& chemin);

    // --- Commands -------------------------------------------------------------
    // Runs a command of the menus or the tool bar. Refused (false) while the
    // progress panel is up (message 503) or when it needs a base and none is
    // open.
    bool Execute(Commande c);
    // Whether the entry is enabled: a base for those that need one, the form
    // present in this program for those that open one.
    bool Active(Commande c) const;
    // The recent base at place i (0 to 3).
    bool OuvreHistorique(int i);
    // The language menu.
    std::vector<std::string> Langues() const;
    std::string Langue() const { return app_.parametres().langue; }
    bool ChoisitLangue(const std::string& langue);
    // Whether a long operation runs; shows message 503 when it does.
    bool Occupe();
    // Tells, once, of a damaged language file that could not be used.
    void DitErreurLangue();

    // --- Current person and navigation ----------------------------------------
    std::uint32_t PersonneEnCours() const { return app_.personneEnCours(); }
    // The common tail of every move: sets the current person, tells the view.
    void Aller(std::uint32_t personne);
    // The sheet person (0 while the sheet creates a new person).
    std::uint32_t personneFiche = 0;

    // The sheet's pending changes and how to validate them (`C_Maj_Click`
    // of the sheet, set by the sheet while it is open).
    bool fichePendante = false;
    bool mariagePendant = false;
    std::function<void()> valideFiche;
    void Confirme_Fiche_En_Cours();

    // View level 1 to 4, the reaches actually drawn and the scale.
    int niveau = 2;
    int porteeGauche = 4;
    int porteeDroite = 2;
    double echelle = 1.0;
    static int PorteeGaucheNiveau(int niveau) { return 2 * niveau; }
    static int PorteeDroiteNiveau(int niveau) { return niveau; }
    void Relayout_Famille();
    void DefinitNiveau(int n);
    // The family view found that the shifted layout does not fit: the shift
    // just made is undone.
    void AnnuleDecalage();

    // --- Display ----------------------------------------------------------------
    // The window title: the base path, or the title document's title.
    std::string Titre();
    // The status panels of the two De Cujus: "[first name name]" or "".
    std::string PanneauDeCujus(int i) const;
    // "{n2} [n1] " in front of the current person's name.
    std::string Statut();
    // The recent bases, most recent first ("" for an empty place).
    std::vector<std::string> Historique() const;

    // --- Timers -------------------------------------------------------------------
    // `Minuterie1`, every 60 s: forcing to disk, automatic save, stale
    // numberings.
    void Minuterie1();

  private:
    bool OuvreBaseChemin(const std::string& chemin);
    void NouvelleBase();
    void OuvrirDialogue();
    void Fermer();
    void Enregistrer();
    void PrecedentSuivant(int sens);
    void DeCujus(int i);
    void AllerDeCujus(int i);
    void Decale(int sens);
    void Echelle(double facteur);
    void ApresOuverture();

    Application& app_;
    ServicesUi services_;
    VueMDI* vue_ = nullptr;
    int dernierDecalage_ = 0;
};

// Commands that live in their own files, each over the main window's logic.
// Exchange: imports, selective export, hand-off, backup, restore, integration.
bool CmdImporter(MDIForm1& f, const std::string& chemin = {});
bool CmdSauvegarde(MDIForm1& f);
bool CmdRestauration(MDIForm1& f);
bool CmdIntegrerSylvane(MDIForm1& f);
bool CmdGeneanet(MDIForm1& f);
// Maintenance: reorganisation, control (then its form), repairs.
bool CmdReorganiser(MDIForm1& f);
bool CmdControle(MDIForm1& f);
bool CmdRePMinMaj(MDIForm1& f);
bool CmdRepPrenom(MDIForm1& f);

} // namespace sylvane
