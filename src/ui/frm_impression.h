// The print forms: `FrmImpression` (which report of which person, with
// which contents, to the printer, the preview or a PDF file), the print
// options `FrmPrinter` and `FrmPrinter1` (paper, orientation, sheets of a
// chart, preview), and the preview `FrmPrévisualisation` (pages, zoom).
// The window layer gives the surfaces: a printer, a PDF file or the
// screen; everything else is decided here.
#pragma once

#include "charts/graphe.h"
#include "charts/pages.h"
#include "publish/impression.h"
#include "ui/mdiform1.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sylvane {

// Captions of the print forms that the messages of the Parts don't name.
namespace msg_impression {
enum : int {
    Page = 4350, Titre = 4351, Destination = 4352, Imprimante = 4353, FeuillesH = 4354,
    FeuillesV = 4355, Direction = 4356, Pdf = 4357, Visualiseur = 4358, Detaille = 4359,
    TypeRapport = 4360, Tableau = 4361, Fiches = 4362, Graphe = 4363, FicheIndividuelle = 4364,
    FicheFamille = 4365, FichesAscendants = 4366, FichesDescendants = 4367,
    GrapheAscendants = 4368, GrapheDescendants = 4369, GrapheMixte = 4370,
    GrapheMixteCouple = 4371, Niveaux = 4372, Sequence = 4373, Aucune = 4374,
    Generation = 4375, AnneeNaissance = 4376, Arborescence = 4377, Implexe = 4378,
    Contenu = 4379, ListeRapide = 4380, Completes = 4381, Partielles = 4382, Notes = 4383,
    Conjoints = 4384, Evenements = 4385, Documents = 4386, Couples = 4387, Personne = 4388,
    ChoixPersonne = 4389, Ok = 4390, Annuler = 4391, Options = 4392, Papier = 4393,
    Orientation = 4394, Portrait = 4395, Paysage = 4396, PoliceMax = 4397, Apercu = 4398,
    FiltreBmp = 4399,
    // Of the chart window.
    FiltrePdf = 4114,
};
} // namespace msg_impression

// The shared print settings, set by the options dialogs.
struct ReglagesImpression {
    std::size_t papier = 8; // row of the paper list (A4)
    bool paysage = false;
    std::int32_t feuillesH = 1, feuillesV = 1; // sheets of a chart
    int policeMax = 12;
    bool apercu = true; // preview before print
    bool dates = true;
    bool couleur = false;
    bool autre = false;      // the "other datum" line of a chart
    std::string autreDonnee; // its rubric's tag
    Papier Feuille() const { return PapierDeRang(papier, paysage); }
};
ReglagesImpression& ReglagesCourants();

// What the preview shows: pages drawn on demand on a surface (the preview
// draws them all and keeps the one it shows), their paper, and the chart
// template to delete when the preview closes.
struct DocumentApercu {
    std::string titre;
    Papier papier;
    std::function<FinPages(Surface&)> dessine;
    std::string gabarit;
};
// The document handed to the next preview that opens.
DocumentApercu& ApercuTransmis();

enum class Sortie { Imprimante, Apercu, Pdf };
enum class TypeImpression { Tableau = 0, Fiches = 1, Graphe = 2 };

// What a validated form asks to print.
struct TravailImpression {
    Rapport rapport = Rapport::FicheIndividuelle;
    std::uint32_t personne = 0;
    std::vector<std::uint32_t> liste;
    OptionsImpression options;
    // A chart instead of a report: its template and page options.
    bool graphe = false;
    std::string gabarit;
    OptionsPages pages;
    std::string titre;
};

class FrmImpression {
  public:
    explicit FrmImpression(MDIForm1& f);

    // The form's state, as its controls show it.
    std::uint32_t personne = 0;
    std::vector<std::uint32_t> liste; // handed by a list or search window
    TypeImpression type = TypeImpression::Fiches;
    int choix = -1; // the option of `OptImpression` in the type's group; -1 none
    bool visualiseur = true;
    int niveaux = 4;
    int sequence = 0;
    bool implexe = true;
    Contenu contenu = Contenu::Completes;
    std::array<bool, kSections> partielles{true, true, true, true, true, true, true, true};
    bool conjoints = false, evenements = false, documents = false, couple = false;
    // Graphs: generations up and down, and the chart options.
    int genAsc = 4, genDesc = 4;
    bool detaille = false;
    int direction = 0;

    // Opens on what a list or search window handed over, or else on the
    // person in course.
    void Charge();
    // A person dropped on the tab or picked.
    void DefinitPersonne(std::uint32_t n);
    bool ChoisitPersonne();
    std::string LibellePersonne() const;
    // The texts of the `OptImpression` choices of the current type.
    std::vector<std::string> Choix() const;

    // Checks the form and prepares the run; nothing, after its box, when
    // it refuses. `m` is the metric a chart is laid out with.
    std::optional<TravailImpression> Prepare(const Metrique& m);
    // Runs a prepared report on a surface under the progress panel.
    FinRapport Execute(const TravailImpression& t, Surface& s) { return Imprime(f_, t, s, true); }
    // The same for the preview, which draws its pages while it paints:
    // with no panel, and for as long as the base is open.
    DocumentApercu Apercu(const TravailImpression& t);
    static FinRapport Imprime(MDIForm1& f, const TravailImpression& t, Surface& s, bool panneau);

  private:
    std::uint32_t MariageDuCouple();
    MDIForm1& f_;
};

// `FrmPrévisualisation`: the pages of a document, one at a time, zoomed.
class Previsualisation {
  public:
    explicit Previsualisation(SystemeFichiers& fs) : fs_(fs) {}
    Previsualisation(const Previsualisation&) = delete;
    Previsualisation& operator=(const Previsualisation&) = delete;
    // Takes the document and counts its pages with the metric.
    void Charge(DocumentApercu d, const Metrique& m);
    // Deletes the chart template, if any.
    void Ferme();
    ~Previsualisation() { Ferme(); }

    const DocumentApercu& Document() const { return doc_; }
    int NombrePages() const { return static_cast<int>(pages_.size()); }
    int Page() const { return page_; } // from 1
    // The page shown as the surface numbers it (row and column).
    std::pair<int, int> Position() const;
    bool Suivante();
    bool Precedente();
    double Zoom() const;
    bool Agrandir();
    bool Reduire();

  private:
    SystemeFichiers& fs_;
    DocumentApercu doc_;
    std::vector<std::pair<int, int>> pages_;
    int page_ = 1;
    int zoom_ = 4;
};

// `FrmPrinter` (charts, with their sheets) and `FrmPrinter1` (reports).
class FrmPrinter {
  public:
    explicit FrmPrinter(bool graphe) : graphe_(graphe), r_(ReglagesCourants()) {}
    bool Graphe() const { return graphe_; }
    ReglagesImpression& Reglages() { return r_; }
    // `TxHorizon`, `TxVertical`: digits only, "1" when empty.
    static std::string Chiffres(const std::string& saisie);
    // `MnuValider`: false with message 586 for a count of 0, 580 for the
    // other datum without its rubric; else stores the values in the
    // shared settings.
    bool Valide(Boites& boites, const std::string& horizon, const std::string& vertical);

  private:
    bool graphe_;
    ReglagesImpression r_;
};

} // namespace sylvane
