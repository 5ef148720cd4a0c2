// The selective export: who goes (the descendants or the ascendants of a
// person, or the whole base, selections adding up), in which format (GEDCOM
// or the exchange file), with which extras; then the writer runs on the
// progress panel. The widget shows these fields and forwards its clicks.
#pragma once

#include "exchange/selection.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace sylvane {

class Base;
class MDIForm1;

class FrmExporter {
  public:
    enum class Format { Gedcom, Svr };              // ChxFormat
    enum class Choix { Descendants, Ascendants, Tout }; // OptExport

    // Starts from the current person of the main window.
    explicit FrmExporter(MDIForm1& f);

    Format format = Format::Gedcom;
    Choix choix = Choix::Descendants;
    bool collateraux = false; // ChkCollateraux
    bool complet = false;     // ChkComplet
    bool sans1900 = false;    // Chk1900
    // GEDCOM only: the character set ('1' ANSI, '2' ANSEL, '0' ASCII, '3'
    // HTML, 'U' UTF-8) and the three extras.
    char jeu = '1';
    bool liens = false, evenements = false, documents = false;

    // The person the walks start from (EtiNom shows it with its dates).
    std::uint32_t Personne() const { return personne_; }
    std::string EtiNom();
    // A person dropped on the form or chosen in the list of names.
    void DefinitPersonne(std::uint32_t n);
    bool ChoisitPersonne();

    // CmdSelection: the walk chosen, from the person shown; the marks of
    // earlier selections stay. Returns the count of marked persons.
    std::size_t CmdSelection();
    std::size_t Compte() { return BaseCourante() ? compte_ : 0; }
    // LblFiche: message 565 and the count.
    std::string LblFiche();
    // CmdLancer is offered once someone is selected.
    bool LancerPossible() { return Compte() > 0; }
    // Whether the GEDCOM extras apply.
    bool OptionsGedcom() const { return format == Format::Gedcom; }

    // CmdListe: the selected persons in the order of the sort table, and
    // its two routines, "I" to include and "E" to exclude.
    std::vector<std::uint32_t> CmdListe();
    void Inclut(std::uint32_t n);
    void Exclut(std::uint32_t n);
    void Efface();

    // CmdLancer: asks the file, writes it on the progress panel. True when
    // the export ran to its end: the marks are erased and the form closes.
    bool CmdLancer();

    // For a form that hands over a selection of its own.
    Selection* Marques();

  private:
    Base* BaseCourante();
    void Recompte();

    MDIForm1& f_;
    Base* base_ = nullptr;
    std::unique_ptr<Selection> sel_;
    std::uint32_t personne_ = 0;
    std::size_t compte_ = 0;
};

// Messages of the form and of its refusals.
inline constexpr int kExporterTitre = 652;
inline constexpr int kExporterCompte = 565;
inline constexpr int kExporterAuteur = 3403;
inline constexpr int kExporterSurBase = 3406;

} // namespace sylvane
