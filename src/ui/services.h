// What the forms ask of the window system: boxes by message number, file
// dialogs, the progress panel with its stop button, the child windows. The
// Qt layer implements these; the tests implement them with scripted answers,
// so that every form's logic runs without a display.
//
// All texts that cross these interfaces are Windows-1252, as in the core;
// the implementations convert at the edge.
#pragma once

#include "maintenance/interaction.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

// Message and question boxes. "&1" in a message is replaced by `nom`.
class Boites {
  public:
    virtual ~Boites() = default;
    // An information box of message n (OK only).
    virtual void Information(int n, const std::string& nom = {}) = 0;
    // A box of a text made by the program (a system error, a report line).
    virtual void Texte(const std::string& texte) = 0;
    // A Yes/No box, or Yes/No/Cancel when `annuler`.
    virtual Reponse Question(int n, bool annuler = false, const std::string& nom = {}) = 0;
};

// File dialogs. A filter is written as the program always wrote them:
// "Généalogie (*.sv2) |*.sv2|", pairs of a label and patterns between bars.
// The title is a message number. Each answers the chosen path, or nothing
// when the user cancelled.
class DialoguesFichier {
  public:
    virtual ~DialoguesFichier() = default;
    virtual std::optional<std::string> Ouvrir(int titre, const std::string& filtre,
                                              const std::string& depart = {}) = 0;
    // With the overwrite prompt of the system.
    virtual std::optional<std::string> Enregistrer(int titre, const std::string& filtre,
                                                   const std::string& depart = {}) = 0;
    virtual std::optional<std::string> Dossier(int titre, const std::string& depart = {}) = 0;
};

// The progress panel of the main window and its stop button. While it is
// up, every command refuses with message 503.
class Panneau {
  public:
    virtual ~Panneau() = default;
    // Shows the panel (or changes its texts when it is up).
    virtual void Montre(const std::string& titre, const std::string& texte) = 0;
    virtual void Cache() = 0;
    virtual bool Visible() const = 0;
    // Lets pending events run (the stop button among them) and answers
    // whether stop was asked since the panel was shown.
    virtual bool Arret() = 0;
};

// The child windows of the main window, known by their form name
// ("FrmParametre", "FrmAscendants", ...).
class Fenetres {
  public:
    virtual ~Fenetres() = default;
    // Whether this program has the form at all: a menu entry whose form is
    // missing is shown disabled.
    virtual bool Disponible(const std::string& formulaire) const = 0;
    // Creates the form on first use, shows it and brings it to the front.
    virtual void Ouvre(const std::string& formulaire) = 0;
    // A form of which several may be open, one per record (the event
    // forms): brings forward the one open on record n, or opens a new one
    // (always for n = 0, a record not written yet). By default the window
    // of the name, a colon and the number ("FrmDesEvt:12").
    virtual void OuvreNumero(const std::string& formulaire, std::uint32_t n) {
        Ouvre(formulaire + ":" + std::to_string(n));
    }
    virtual bool EstOuverte(const std::string& formulaire) const = 0;
    // Closes every child window (a base is opened or closed).
    virtual void FermeTout() = 0;
    virtual int NombreOuvertes() const = 0;
};

// A long operation: shows the panel for its life and gives the core the
// Interaction it polls (questions, progress texts, the stop mark).
class OperationLongue {
  public:
    OperationLongue(Panneau& panneau, Boites& boites, const std::string& titre,
                    const std::string& texte = {});
    ~OperationLongue();
    OperationLongue(const OperationLongue&) = delete;
    OperationLongue& operator=(const OperationLongue&) = delete;

    const Interaction& interaction() const { return interaction_; }
    bool Arrete() { return panneau_.Arret(); }
    void Texte(const std::string& texte) { panneau_.Montre(titre_, texte); }

  private:
    Panneau& panneau_;
    std::string titre_;
    Interaction interaction_;
};

} // namespace sylvane
