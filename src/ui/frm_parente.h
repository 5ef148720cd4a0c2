// The relationship windows: the selection of `FrmRechAscendant` and its
// searches, the graph of `FrmParenteVisu`, the cousinages of
// `FrmParenteAsc`, and the branch outlines of `FrmBrancheAsc` and
// `FrmBrancheDesc`. Plain logic over the services of the main window.
#pragma once

#include "kinship/branches.h"
#include "kinship/cousins.h"
#include "kinship/parente.h"
#include "ui/frm_impression.h"
#include "ui/mdiform1.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

// Captions and boxes of these windows that the relationship messages don't
// number.
namespace msg_parente {
enum : int {
    Speciaux = 4535,     // the button of `CmdSpecial`
    Tableaux = 4536,     // the button of `CmdCousinage`
    OuvrirPage = 4537,   // the offer to open a page just written
    PagesEcrites = 4538, // "&1": the folder of the cousinage pages
    Image = 4539,        // the graph saved as a picture
};
} // namespace msg_parente

// What a search hands to a new graph window: `ListeParente`,
// `ModeParente` and `GenerationsParente`.
struct DemandeGraphe {
    std::vector<std::uint32_t> liste;
    char mode = 'A';
    int generations = 10;
};

// A graph handed to a new graph window, through the slot the lists and
// searches share (`ListeParente`, `ModeParente`, `GenerationsParente`).
void TransmetGraphe(const DemandeGraphe& d);
// Takes what was handed over, once; nothing when the slot is empty. A
// hand-off without a depth takes the setting "Maximum Recherche Parente".
std::optional<DemandeGraphe> DemandeTransmise(MDIForm1& mdi);

class FrmRechAscendant {
  public:
    struct Ligne {
        std::uint32_t personne = 0;
        std::string nom, dates;
        bool marque = false; // "*": a subject of the cousinages
    };

    // Starts with the person in course; the depth from the settings.
    explicit FrmRechAscendant(MDIForm1& mdi);

    const std::vector<Ligne>& Grille() const { return grille_; } // newest first
    int generations;                                             // `TxtGenerations`

    // Adds a person at the head (message 588 when already there).
    bool Ajoute(std::uint32_t personne);
    // `CmdRechercher`: the person picker, then Ajoute.
    void CmdRechercher();
    // Persons handed over by a list or a search join the selection (those
    // already there are passed over quietly); the number added.
    std::size_t RecoitTransfert();
    // `CmdEcarter`: the row goes.
    void CmdEcarter(std::size_t ligne);
    void BasculeMarque(std::size_t ligne);

    // The searches: refused with 503 while busy, 555 on an empty
    // selection; 695 or 696 when nothing is found. A graph to open, or
    // nothing.
    std::optional<DemandeGraphe> CmdAscCom();
    std::optional<DemandeGraphe> CmdDescCom();
    std::optional<DemandeGraphe> CmdFiliation();
    // `CmdAscComMult`: the cousinage rows for a new `FrmParenteAsc`, and
    // the two text files in the work folder.
    std::optional<std::vector<LigneCousinage>> CmdAscComMult();
    // `CmdSpecial` ("Spécial cousinages"): each selected person alone
    // against the others, written as its page in the work folder under the
    // progress panel; message 4538 names the folder. The pages, or nothing
    // when refused (503, 555), stopped or failed.
    std::optional<std::vector<PageCousinage>> CmdSpecial();
    // The persons marked "*".
    std::vector<std::uint32_t> Sujets() const;
    // F12: "ListeCousins.js" in `dossier`.
    void EcritListeJs(const std::string& dossier);
    // The persons not marked "*" (all when none is), joined by "/".
    std::string Comparaison() const;

    // The persons of the grid, newest first.
    std::vector<std::uint32_t> Selection() const;

  private:
    std::optional<DemandeGraphe> Recherche(bool descendance);
    bool Refuse();

    MDIForm1& mdi_;
    std::vector<Ligne> grille_;
};

// The graph window's logic: the graph and its texts.
class FrmParenteVisu {
  public:
    FrmParenteVisu(MDIForm1& mdi, DemandeGraphe demande);
    // Builds the graph under the progress panel; false when stopped or
    // when there is nothing (fewer than one listed person).
    bool Charge();
    GrapheParente* Graphe() { return graphe_.get(); }
    // Message 589, the count, a line feed, message 590, when too many.
    std::optional<std::string> Refus() const;
    // The lines of the related persons' menu of a node: headings
    // (messages 592, 579, 666, 910) and "* " before persons in the graph.
    struct EntreeMenu {
        std::string texte;
        std::uint32_t personne = 0; // 0 for a heading
    };
    std::vector<EntreeMenu> MenuProches(std::size_t noeud);
    const DemandeGraphe& Demande() const { return demande_; }
    std::string Titre() const;
    // The box's pop-up: `MnuSuppression` and a related person picked.
    void Ecarte(std::size_t noeud) { if (graphe_) graphe_->Ecarte(noeud); }
    void Ajoute(std::uint32_t personne) { if (graphe_) graphe_->Ajoute(personne); }
    // The drawing as a page template in the work folder, for the printer
    // and PDF, with the options that draw it (the colours of the sexes).
    // Throws ErreurES.
    std::string EcritGabarit(Papier& papier) const;
    OptionsPages Options(const Papier& papier) const;
    // The graph listed by levels as an RTF document or an HTML page (with
    // "Sylvane.css" beside), through the file dialog.
    bool EcritRtf();
    bool EcritHtml();

  private:
    bool Ecrit(bool html);
    MDIForm1& mdi_;
    DemandeGraphe demande_;
    std::unique_ptr<GrapheParente> graphe_;
};

// `FrmParenteAsc`: the cousinage rows of one analysis.
class FrmParenteAsc {
  public:
    struct Analyse {
        std::vector<LigneCousinage> lignes;
        std::string comparaison;             // the persons compared, joined by "/"
        std::vector<std::uint32_t> sujets;   // marked "*" in the selection
        std::vector<std::uint32_t> selection; // every selected person
    };
    FrmParenteAsc(MDIForm1& mdi, Analyse analyse);
    const std::vector<LigneCousinage>& Lignes() const { return a_.lignes; }
    const std::string& Comparaison() const { return a_.comparaison; }
    // `CmdAfficher`: the row's key (the couple, then its persons) as the
    // list of a new graph, mode "A".
    std::optional<DemandeGraphe> CmdAfficher(std::size_t ligne) const;
    // `CmdEcarter`.
    void CmdEcarter(std::size_t ligne);
    // `CmdTriLieu`: sorted on the place, the order of the rows kept
    // within one place.
    void CmdTriLieu();
    // `CmdHTML`: one page of every row, through the file dialog.
    bool CmdHtml();
    // `CmdCousinage` ("Tableaux"): a page for each selected person, then
    // "Tableau.htm" and "Tableau.txt", in the work folder; the offer to
    // open "Tableau.htm". The pages, or nothing after the error's box.
    std::optional<std::vector<PageCousinage>> CmdCousinage();
    // The window's hook that opens a page in the user's browser.
    std::function<void(const std::string& page)> ouvreNavigateur;

  private:
    MDIForm1& mdi_;
    Analyse a_;
};

// What the selection hands to a new `FrmParenteAsc` window.
FrmParenteAsc::Analyse& CousinagesTransmis();

// `MnuMaj`, `CmdMaj`: the person on the sheet, the pending one settled.
bool FicheDe(MDIForm1& mdi, std::uint32_t personne);

// The branch windows' logic over one outline.
class FrmBranche {
  public:
    FrmBranche(MDIForm1& mdi, bool descendante);
    Branche* Outline() { return branche_.get(); }
    // The caption: a message with "&1" set to the root's name.
    std::string Titre() const;
    // `CmdEcarter`, `CmdDevelopper`.
    void Ecarte(std::size_t noeud) { if (branche_) branche_->Ecarte(noeud); }
    void Developpe(std::size_t noeud, int niveau) { if (branche_) branche_->Developpe(noeud, niveau); }
    // `CmdRTF`, `CmdHTML`: asks for the file, then writes it whole.
    bool EcritRtf();
    bool EcritHtml();
    // `CmdImprimer`: the open lines on pages, for the preview, the printer
    // or a PDF; nothing without an outline.
    std::optional<DocumentApercu> Impression() const;
    // The window's hook that opens a page in the user's browser.
    std::function<void(const std::string& page)> ouvreNavigateur;

  private:
    bool Ecrit(bool html);
    MDIForm1& mdi_;
    bool descendante_;
    std::unique_ptr<Branche> branche_;
};

} // namespace sylvane
