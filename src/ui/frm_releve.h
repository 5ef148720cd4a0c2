// The four register forms (`MnuRelevéMariage`, `MnuBaptème`,
// `MnuSépulture`, `MnuRelevéAscendance`): a register file, the new base it
// becomes, and the capture itself on the progress panel with its stop
// button; then the new base is opened.
#pragma once

#include "exchange/releve.h"
#include "ui/mdiform1.h"

#include <string>

namespace sylvane {

// Captions of the register forms.
inline constexpr int kTitreReleve[] = {4305, 4306, 4307, 4308}; // by GenreReleve
inline constexpr int kReleveFichier = 4309;
inline constexpr int kReleveParcourir = 4310;
inline constexpr int kReleveBase = 4311;
inline constexpr int kReleveParcourirBase = 4312;
inline constexpr int kReleveImporter = 4313;
inline constexpr int kReleveFermer = 4314;
inline constexpr int kReleveColonnes = 4315;
inline constexpr int kReleveTitreBase = 4316;
inline constexpr int kReleveArrete = 4317;
inline constexpr int kReleveAide = 4318;

// The form names of the menu table, by kind.
const char* FormulaireReleve(GenreReleve g);

class FrmReleve {
  public:
    FrmReleve(MDIForm1& f, GenreReleve g) : f_(f), genre_(g) {}

    GenreReleve Genre() const { return genre_; }
    int Titre() const { return kTitreReleve[static_cast<int>(genre_)]; }
    // The columns a file of this kind has, in order, one a line.
    std::vector<std::string> Colonnes() const;

    const std::string& Fichier() const { return fichier_; }
    const std::string& Cible() const { return cible_; }
    // The register file; the base takes its name with "sv2" unless one
    // was chosen already.
    void DefinitFichier(const std::string& chemin);
    void DefinitCible(const std::string& chemin);
    // The dialogs (message 539 for the file).
    bool ChoisitFichier();
    bool ChoisitCible();
    bool PeutImporter() const { return !fichier_.empty() && !cible_.empty(); }

    // The capture. Refused while busy (503); a base that exists is replaced
    // only after Yes to 537 and 538. A line that stops the import is told
    // by its message; what was read stays, and the new base is opened.
    // True when a base was made.
    bool Importe();
    // The last capture's report in words, "" before.
    const std::string& Rapport() const { return rapport_; }

  private:
    MDIForm1& f_;
    GenreReleve genre_;
    std::string fichier_, cible_, rapport_;
};

} // namespace sylvane
