// The report of the consistency control, shown in its own window: one line
// a repair, a summary above them, and the file it was written to, which the
// user may save elsewhere.
#pragma once

#include "maintenance/controle.h"
#include "ui/services.h"

#include <functional>
#include <string>
#include <vector>

namespace sylvane {

class FrmControle {
  public:
    // The last control's result, kept for the form. The open form, if any,
    // is told through `Avis` and shows the new report.
    static void Publie(const ResultatControle& r);
    static const ResultatControle& Dernier();
    static std::function<void()>& Avis();

    FrmControle() { Recharge(); }
    // Takes the last published report again.
    void Recharge();

    // The repairs, one a line (Windows-1252), in the order they were made.
    const std::vector<std::string>& Lignes() const { return lignes_; }
    // "No fault found" or the count of repairs.
    std::string Resume() const;
    const std::string& Chemin() const { return chemin_; }

    // A copy of the report under a name the user chooses. False when
    // cancelled or failed (the failure shown).
    bool EnregistreSous(DialoguesFichier& fichiers, Boites& boites, SystemeFichiers& fs) const;

  private:
    std::vector<std::string> lignes_;
    std::string chemin_;
};

// Messages of the form.
inline constexpr int kTitreRapportControle = 843;
inline constexpr int kControleSansAnomalie = 3441;
inline constexpr int kControleCorrections = 3442;
inline constexpr int kControleEnregistrer = 3443;
inline constexpr int kControleFermer = 3444;
inline constexpr int kControleFichier = 3445;
inline constexpr int kControleEnregistrerSous = 3446;
inline constexpr const char* kFiltreRapport = "Rapport (*.txt) |*.txt|";

} // namespace sylvane
