// How persons are related: the common ascendance or descendance of a
// selection, found by repeated deepening so that the search stops at the
// nearest common persons, and the graph that joins them, laid out by
// generations and drawn through the page template.
#pragma once

#include "charts/pages.h"
#include "maintenance/interaction.h"
#include "store/base.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sylvane {

// A graph of this many nodes or more is not drawn.
inline constexpr std::size_t kNoeudsDessinMax = 255;
// Children read for a person in the walks down.
inline constexpr int kEnfantsParente = 200;

enum class FinParente { Trouve, Rien, Arrete };

struct ResultatParente {
    FinParente fin = FinParente::Rien;
    // The depth at which the common persons were found.
    int generation = 0;
    // `ListeParente`: the common persons and the selected ones, in
    // ascending person number.
    std::vector<std::uint32_t> liste;
    // The common persons alone.
    std::vector<std::uint32_t> communs;
};

// The nearest common ascendants (descendants) of every person of
// `selection`, searched one generation deeper at a time up to
// `generations` − 1. The panel shows messages 693 and 694 with the depth;
// the stop is polled at each person and along the walks.
ResultatParente AscendanceCommune(Base& b, const std::vector<std::uint32_t>& selection,
                                  int generations, const Interaction& io = {});
ResultatParente DescendanceCommune(Base& b, const std::vector<std::uint32_t>& selection,
                                   int generations, const Interaction& io = {});

// A related person offered by the pop-up of a graph's box.
struct Proche {
    enum Genre { Parent, Conjoint, Enfant, Frere } genre;
    std::uint32_t personne;
    bool dansGraphe;
};

// A box of the drawing: its centre, in printer units.
struct PlaceNoeud {
    std::int64_t x = 0, y = 0;
};

// The graph of a relationship: its nodes (person numbers), their father
// and mother nodes, their levels, and the marriages between nodes.
class GrapheParente {
  public:
    struct Noeud {
        std::uint32_t personne = 0;
        std::size_t pere = 0, mere = 0; // node numbers from 1; 0: not in the graph
        int niveauBas = 0, niveauHaut = 0;
        std::string annee; // the birth year used for the order, "0000" unknown
    };

    // `liste` is `ListeParente`; its first person is the root of the walk.
    // A path stops beyond `generations` persons.
    GrapheParente(Base& b, std::vector<std::uint32_t> liste, int generations);

    // Finds the paths between the listed persons (message 591 and each
    // name on the panel), then orders and levels the nodes. False when the
    // user stopped.
    bool Construit(const Interaction& io = {});

    const std::vector<Noeud>& Noeuds() const { return noeuds_; } // node i at [i - 1]
    std::size_t NbNoeuds() const { return noeuds_.size(); }
    int NbNiveaux() const { return nbNiveaux_; }
    // Node numbers in order of birth year.
    const std::vector<std::size_t>& Rang() const { return rang_; }
    // Pairs of node numbers of the spouses both in the graph.
    const std::vector<std::pair<std::size_t, std::size_t>>& LiensMariage() const {
        return mariages_;
    }
    // The node of a person, 0 when it isn't one.
    std::size_t NoeudDe(std::uint32_t personne) const;
    // The level a node is drawn at, 1 at the top.
    int Niveau(std::size_t noeud) const;

    // Takes a node out with everything that hung on it alone, and lays the
    // graph out again.
    void Ecarte(std::size_t noeud);
    // Adds a person (a related person from the pop-up) and lays out again.
    void Ajoute(std::uint32_t personne);
    // The parents, spouses, children and siblings of a node's person.
    std::vector<Proche> Proches(std::size_t noeud);

    // Whether the graph is small enough to draw (messages 589 and 590).
    bool Dessinable() const { return noeuds_.size() < kNoeudsDessinMax; }
    // The centre of every box, and the size of the whole drawing.
    std::vector<PlaceNoeud> Places(std::int64_t* largeur, std::int64_t* hauteur) const;
    // The drawing as a page template: the heading `titre`, a box per node
    // (its person in the record), the lines to the parents and between
    // spouses. Returns the sheets' geometry. Throws ErreurES.
    Geometrie EcritGabarit(SystemeFichiers& fs, const std::string& chemin, const Papier& papier,
                           const std::string& titre) const;

    static constexpr std::int64_t kLargeurBoite = 2600, kHauteurBoite = 760;
    static constexpr std::int64_t kEcartBoites = 360, kEcartNiveaux = 700;

  private:
    bool ChercheChemin(std::uint32_t personne, int profondeur, const Interaction& io);
    void AjouteChemin(int profondeur);
    std::size_t AjouteNoeud(std::uint32_t personne);
    void Relie();
    void Dispose();
    void Annees();

    Base& b_;
    std::vector<std::uint32_t> liste_;
    int generations_;
    std::vector<Noeud> noeuds_;
    std::vector<std::size_t> rang_;
    std::vector<std::pair<std::size_t, std::size_t>> mariages_;
    int nbNiveaux_ = 0;
    // The walk's state.
    std::vector<char> marques_;            // by person: ' ', '1' on a path, '2' listed
    std::vector<std::uint32_t> chemin_;    // by depth, from 1
    std::vector<std::uint32_t> touches_;   // persons whose mark was set
    std::vector<std::uint8_t> echecs_;     // by person: shallowest depth explored in vain + 1
    std::vector<std::uint32_t> echecsTouches_;
    int anLimite_ = 0;
    std::int64_t visites_ = 0;
    bool arret_ = false;
    std::vector<std::size_t> index_; // by person: node number
};

// The text of a node's box: the name, then its dates.
std::string TexteNoeudParente(Base& b, std::uint32_t personne);

// A person of the graph as its reports list it: its level, its name and
// dates, then a line per parent in the graph (message 764, 765 or 766 by
// the person's sex, "&1" the parent's name) and per spouse in the graph
// (message 769).
struct EntreeGraphe {
    int niveau = 0;
    std::uint32_t personne = 0;
    std::string nom;
    struct Lien {
        int message = 0;
        std::uint32_t personne = 0;
    };
    std::vector<Lien> liens;
};
// The persons by level from the top, each level in order of birth year.
std::vector<EntreeGraphe> EntreesGraphe(Base& b, const GrapheParente& g);
// The RTF document and the HTML page of that list, each level under
// message 760 and its number; in the page a parent or spouse named is a
// link to its entry.
std::string RtfGraphe(Base& b, const GrapheParente& g, const std::string& titre);
std::string HtmlGraphe(Base& b, const GrapheParente& g, const std::string& titre);

// The head of a page of these reports, `titre` (Windows-1252) as its
// title, "Sylvane.css" as its stylesheet, and the body opened.
std::string EnteteHTMLSimple(const std::string& titre);

// "Sylvane.css" of the settings' colours in `dossier` (with its final
// separator), for the pages written there. Throws ErreurES.
void EcritFeuilleStyle(Base& b, SystemeFichiers& fs, const std::string& dossier);

} // namespace sylvane
