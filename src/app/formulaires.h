// The child windows of the main window. Each form registers itself by name
// with a factory, in its own source file:
//
//   static EnregistrementFormulaire enr("FrmCalendrier",
//       [](ContexteQt& c) { return new FrmCalendrierQt(c); });
//
// A menu entry whose form is not registered is shown disabled. The main
// window creates the form on first use, keeps it until it is closed, and
// calls its hooks when the language, the base or the current person change.
#pragma once

#include <QWidget>

#include <cstdint>
#include <functional>
#include <map>
#include <string>

namespace sylvane {

class MDIForm1;
class MDIForm1Qt;

// What a form is given: the main window's logic (the base, the settings,
// the services of boxes, dialogs, progress and picker) and its window.
struct ContexteQt {
    MDIForm1& logique;
    MDIForm1Qt& fenetre;
};

class FormulaireQt : public QWidget {
    Q_OBJECT
  public:
    using QWidget::QWidget;
    // Takes every caption again from the messages (language switch).
    virtual void Retraduit() {}
    // The current person moved.
    virtual void PersonneChangee() {}
    // A person ('I') or an event ('E') was dropped on the form's tab.
    virtual void RecoitGlisser(char genre, std::uint32_t numero) { (void)genre, (void)numero; }
    // Modal pickers answer here; 0 when the user cancelled.
    virtual std::uint32_t Choix() const { return 0; }
    // Whether the form is a modal dialog (shown with exec) rather than a
    // child window of the main window.
    virtual bool Modal() const { return false; }
};

using FabriqueFormulaire = std::function<FormulaireQt*(ContexteQt&)>;

std::map<std::string, FabriqueFormulaire>& RegistreFormulaires();

struct EnregistrementFormulaire {
    EnregistrementFormulaire(const char* nom, FabriqueFormulaire f) {
        RegistreFormulaires()[nom] = std::move(f);
    }
};

// The modal person picker, registered by the list of names ("FrmNom"): it
// opens on `depart` and answers the chosen person or 0.
using FabriqueSelecteur = std::function<std::uint32_t(ContexteQt&, std::uint32_t depart, int titre)>;
FabriqueSelecteur& SelecteurPersonne();

} // namespace sylvane
