// `FrmStats`: the demographic figures of the base, or of the list handed by
// a search, an ascendant or a descendant form, on eight tabs: the general
// figures, the marriages and the children per person, the decades of
// birth, the ages, and the months of birth, death and marriage.
//
// `FrmAnniv`: the anniversary calendar, a month at a time, and the lists
// of the day picked.
#pragma once

#include "publish/anniversaires_rapport.h"
#include "search/anniversaires.h"
#include "search/statistiques.h"
#include "ui/frm_impression.h"

#include <array>
#include <optional>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace sylvane {

class MDIForm1;

namespace msg_stats {
inline constexpr int Titre = 861;
inline constexpr int PremierOnglet = 1174; // 1174 to 1181
inline constexpr int Personnes = 4550;     // "Personnes"
inline constexpr int DeuxParents = 4551;
inline constexpr int PereSeul = 4552;
inline constexpr int MereSeule = 4553;
inline constexpr int SansParents = 4554;
inline constexpr int AvecDeces = 4555;
inline constexpr int Hommes = 4556;
inline constexpr int Femmes = 4557;
inline constexpr int Indetermines = 4558;
inline constexpr int Nombre = 4559;         // column of the histograms
inline constexpr int Decennie = 4560;
inline constexpr int Total = 4561;
inline constexpr int DureeVie = 4562;
inline constexpr int DureeVieHommes = 4563;
inline constexpr int DureeVieFemmes = 4564;
inline constexpr int AgePere = 4565;
inline constexpr int AgeMere = 4566;
inline constexpr int Copier = 4567;
inline constexpr int Imprimer = 4568;
inline constexpr int Mois = 4569;           // column of the month tables
inline constexpr int ListeRecue = 4570;     // "liste de &1 personnes"
inline constexpr int Jour = 4571;           // anniversaries: caption of the day panel
inline constexpr int Liste = 4572;          // `CmdListe`
inline constexpr int Date = 4573;           // `CmdDate`
inline constexpr int MoisPrecedent = 4574;
inline constexpr int MoisSuivant = 4575;
inline constexpr int Annee = 4576;
inline constexpr int Lieu = 4577;
inline constexpr int Nom = 4578;
inline constexpr int RubriquesDatees = 4579; // caption over the rubric rows of the day
inline constexpr int OuvrirFichier = 4614;   // "open the file &1 in the browser?"
} // namespace msg_stats

// A tab as a grid of texts.
struct TableTexte {
    std::vector<std::string> entetes;
    std::vector<std::vector<std::string>> lignes;
};

inline constexpr int kOnglets = 8;
inline constexpr int kPremierGraphique = 5; // tabs 5, 6, 7 are bar charts

class FrmStats {
  public:
    // Takes the list handed by the form that opened it, if any.
    explicit FrmStats(MDIForm1& f);

    // Reads the persons under the progress panel; false when there is no
    // base or another operation runs.
    bool Calcule();
    const Statistiques& Figures() const { return s_; }
    std::size_t TailleListe() const { return liste_.size(); }
    // Message 861, and the list's name when a list was handed.
    std::string Titre() const;

    int onglet = 0;
    static std::string LibelleOnglet(int i);
    // Tabs 0 to 4 as tables; the three charts as a table of months too.
    TableTexte Table(int onglet) const;
    // The twelve bars of a chart tab (5, 6, 7), January first.
    std::array<std::uint64_t, 12> Barres(int onglet) const;
    // `CmdCopier`: the current tab as text, a tab between columns.
    std::string TexteCopie() const;
    // `CmdImprimer`: the current tab's table on paper, under the page head
    // of the printed reports, for the preview and the printer.
    DocumentApercu Impression() const;

  private:
    MDIForm1& f_;
    std::vector<std::uint32_t> liste_;
    Statistiques s_;
};

class FrmAnniv {
  public:
    explicit FrmAnniv(MDIForm1& f);

    // Builds the calendar under the progress panel (message 953); a stop
    // keeps what was read.
    bool Charge();
    const Calendrier& Cal() const { return c_; }

    // The month in view and the day picked.
    int mois = 1;
    int jour = 1;
    void MoisPrecedent();
    void MoisSuivant();
    // The weeks of the month in view, Monday first, 0 for no day; the
    // number of entries of each day beside it.
    std::vector<std::array<int, 7>> Semaines() const;
    std::size_t NombreDeJours() const; // of the month in view
    std::size_t NombreDuJour(int jourDuMois) const;
    // A click on a day: `LblJour` and the four lists.
    bool Choisit(int jourDuMois);
    std::string LibelleJour() const;
    const ListesJour& Listes() const { return listes_; }
    // A click on a row of the births, deaths or marriages: that person becomes current.
    void Active(const LigneAnniv& l);

    // Where the reports go: the menu entry that opened the form says it
    // ("FrmAnniv:Imp", "FrmAnniv:RTF", "FrmAnniv:HTML"); the printer for
    // the plain calendar.
    DestinationAnniv destination = DestinationAnniv::Imprimante;
    static DestinationAnniv DestinationDe(const std::string& nomFenetre);
    // The recapitulation of the whole year (`MnuImpAnniv`, `MnuRTFAnniv`,
    // `MnuHTMLAnniv`), and `CmdDate`, the calendar report of the month in
    // view. On paper they answer the document for the preview; to a file
    // they ask for its name (the calendar report in HTML goes to
    // "index.htm" in the base's folder of the work folder), write it and
    // answer nothing. The calendar report ends with message 500.
    std::optional<DocumentApercu> Recapitulation();
    std::optional<DocumentApercu> RapportCalendrier();
    // The file last written, for the offer to open it.
    std::string fichierEcrit;
    // After the year's recapitulation in HTML the user is asked whether to
    // open the file; a yes hands it here.
    std::function<void(const std::string& fichier)> ouvreNavigateur;

  private:
    std::optional<DocumentApercu> Rapport(const PeriodeAnniv& p);
    MDIForm1& f_;
    Calendrier c_;
    ListesJour listes_;
};

} // namespace sylvane
