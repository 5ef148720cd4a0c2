// The relationship windows: the selection of `FrmRechAscendant` and its
// searches, the graph of `FrmParenteVisu`, the cousinages of
// `FrmParenteAsc`, and the branch outlines of `FrmBrancheAsc` and
// `FrmBrancheDesc`. Plain logic over the services of the main window.
#pragma once

#include "kinship/branches.h"
#include "kinship/cousins.h"
#include "kinship/parente.h"
#include "ui/mdiform1.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

// What a search hands to a new graph window: `ListeParente`,
// `ModeParente` and `GenerationsParente`.
struct DemandeGraphe {
    std::vector<std::uint32_t> liste;
    char mode = 'A';
    int generations = 10;
};

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
    // F12: "ListeCousins.js" in `dossier`.
    void EcritListeJs(const std::string& dossier);
    // The persons not marked "*" (all when none is), joined by "/".
    std::string Comparaison() const;

  private:
    std::optional<DemandeGraphe> Recherche(bool descendance);
    bool Refuse();
    std::vector<std::uint32_t> Selection() const;

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

  private:
    MDIForm1& mdi_;
    DemandeGraphe demande_;
    std::unique_ptr<GrapheParente> graphe_;
};

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

  private:
    bool Ecrit(bool html);
    MDIForm1& mdi_;
    bool descendante_;
    std::unique_ptr<Branche> branche_;
};

} // namespace sylvane
