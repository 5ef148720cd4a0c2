// Printed reports of a person: the page head, the person sheet, the couple
// sheet, the event and document pages, and the drivers that chain them
// (one sheet, a family, ascendants, descendants, a search list). Everything
// is drawn on a `Surface`, one page of it for each printed page, and every
// line is measured with the surface's metric before it is placed: the
// preview, the printer and a PDF that share a metric break their pages at
// the same lines.
#pragma once

#include "charts/pages.h"
#include "charts/surface.h"
#include "publish/contenu.h"
#include "store/base.h"
#include "store/fichier.h"

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace sylvane {

// --- Paper -------------------------------------------------------------------

// One row of the paper list: its label, the platform's paper code, and its
// size in millimetres (portrait).
struct FormatPapier {
    const char* libelle;
    int code;
    double largeurMm, hauteurMm;
};
// The fixed list of the paper choice, in the order of its rows.
std::span<const FormatPapier> TablePapiers();
// The row of a platform paper code; the row of A4 for an unknown code.
std::size_t RangPapier(int code);
// A row's sheet in printer units, turned for landscape.
Papier PapierDeRang(std::size_t rang, bool paysage);

// --- What is printed -----------------------------------------------------------

enum class Rapport {
    FicheIndividuelle,
    FicheFamille,
    FichesAscendants,
    FichesDescendants,
    Liste, // a list handed by a search or list window
};

// The three contents of the sheets.
enum class Contenu { ListeRapide, Completes, Partielles };

// The eight sections a partial sheet may keep, in the order of their boxes.
enum Section : int {
    SecParents, SecEnfants, SecConjoints, SecFratrie, SecNotes, SecPersonnes, SecDocuments,
    SecEvenements, kSections
};

struct OptionsImpression {
    // Sections of a sheet (`ImpParents` ... `ImpÉvénements`).
    std::array<bool, kSections> sections{true, true, true, true, true, true, true, true};
    // One line a person (`ListeRapide`).
    bool listeRapide = false;
    // Spouses get a sheet of their own.
    bool fichesConjoints = false;
    // Events and documents met get a page at the end.
    bool annexeEvenements = false;
    bool annexeDocuments = false;
    // One sheet per marriage in place of the person sheet.
    bool couple = false;
    // A person seen before is not walked again (`ArrêtDoublon`).
    bool implexe = true;
    int niveaux = 4;   // generations of the ascendant and descendant sheets
    int modeTri = 0;   // order of those lists, `ModeTriListe` 0 to 3
    Papier papier;
    // The program's banner under the date of the page head.
    std::string banniere = "Sylvane";
    // "dd/mm/yyyy" of the page head; today when empty.
    std::string date;
    // The user's stop, polled after each person.
    std::function<bool()> arret;
    // The progress panel: a title and a text (the page, the person).
    std::function<void(const std::string& titre, const std::string& texte)> progres;
    // Sets the sections from the three choices of contents; `partielles`
    // gives the eight boxes of a partial sheet.
    void Contenu(sylvane::Contenu c, const std::array<bool, kSections>& partielles = {});
};

// How a run ended.
enum class FinRapport { Termine, Arrete, Vide };

// The ordering choice of the sheets form ("none", generation, year of
// birth, tree) as a list order `ModeTriListe`.
int ModeTriDeSequence(int sequence);

// --- The printer state ---------------------------------------------------------------

// One run of text of a line with its style.
struct Morceau {
    std::string texte;
    bool gras = false;
    bool souligne = false;
    double points = 8;
};

class Imprimante {
  public:
    Imprimante(Base& b, Surface& s, const OptionsImpression& o);
    Imprimante(const Imprimante&) = delete;
    Imprimante& operator=(const Imprimante&) = delete;

    // Starts a page: the page head and the title in its frame.
    void NouvellePage(const std::string& titre);
    // The person sheet. `entete` holds lines separated by "#": those
    // before the first "#" stand with the name, the others under it.
    void ImprimeFiche(std::uint32_t personne, const std::string& entete);
    // The couple sheet of a marriage.
    void ImprimeCouple(std::uint32_t mariage, const std::string& entete);
    void ImprimeEvenement(std::uint32_t e);
    void ImprimeDocument(std::uint32_t d);
    // Every event, then every document, marked by the sheets, in record
    // order; the marks are then freed.
    void ImprimeAnnexes();
    // Closes the page in course.
    void FinImpression();

    // Sheet of a person or couple sheets by the options.
    void ImprimePersonne(std::uint32_t personne, const std::string& entete);

    int Pages() const { return pages_; }
    double YCourant() const { return y_; }
    const std::string& Titre() const { return titre_; }
    bool EvenementMarque(std::uint32_t e) const { return e < evts_.size() && evts_[e]; }
    bool DocumentMarque(std::uint32_t d) const { return d < docs_.size() && docs_[d]; }

    // A paragraph: runs wrapped at blanks from `retrait` to the right margin.
    struct Paragraphe {
        std::vector<Morceau> morceaux;
        double retrait = 0;
        // A heading that must stand on the page of what follows it.
        bool attache = false;
        // A rule across the page above the paragraph.
        bool filet = false;
    };
    // Prints paragraphs; the first ones marked `attache` stand on one page
    // with the paragraph after them when they fit on a page at all.
    void Imprime(const std::vector<Paragraphe>& ps);

  private:
    struct LigneMesuree {
        std::vector<Morceau> morceaux;
        double largeur = 0, hauteur = 0, retrait = 0;
    };
    std::vector<LigneMesuree> Coupe(const Paragraphe& p) const;
    double HauteurLigne(double points, bool gras = false) const;
    double Bas() const;
    void PlaceLigne(const LigneMesuree& l);
    void Ligne(std::vector<Paragraphe>& ps, std::vector<Morceau> m, double retrait = 0);
    void Etiquette(std::vector<Paragraphe>& ps, const std::string& libelle,
                   const std::string& valeur, double retrait = 0);
    void Titre(std::vector<Paragraphe>& ps, const std::string& texte);
    void Entete(std::vector<Paragraphe>& ps, const std::string& nom, const std::string& entete);
    void Identite(std::vector<Paragraphe>& ps, const FichePersonne& f, double retrait);
    // The sections of a sheet; of a couple sheet, the children of `seul`.
    void Sections(std::vector<Paragraphe>& ps, const FichePersonne& f, const MariageFiche* seul);
    void Evenements(std::vector<Paragraphe>& ps, const std::vector<EvenementFiche>& evts);
    void Documents(std::vector<Paragraphe>& ps, const std::vector<DocumentFiche>& docs);
    void Note(std::vector<Paragraphe>& ps, const std::string& note);
    static std::string Nomme(const Mention& m);
    void Marque(std::vector<char>& t, std::uint32_t n);

    Base& b_;
    Surface& s_;
    const OptionsImpression& o_;
    const Metrique& m_;
    std::string titre_;
    std::string date_;
    double y_ = 0;
    int pages_ = 0;
    bool pageOuverte_ = false;
    std::vector<char> evts_, docs_;
};

// --- The drivers -----------------------------------------------------------------------

// The caption of a report of this person (message 575, 746, 768, "Fiche
// de " + name, 770).
std::string TitreRapport(Base& b, Rapport r, std::uint32_t personne);

// Prints a report of `personne`, or of `liste` for Rapport::Liste, on the
// surface. The ascendant and descendant lists are built in the work files
// of `fs`. A stop ends the page in course and answers Arrete; a list with
// nobody in it answers Vide and draws nothing.
FinRapport ImprimeRapport(Base& b, SystemeFichiers& fs, Surface& s, Rapport r,
                          std::uint32_t personne, const OptionsImpression& o,
                          const std::vector<std::uint32_t>& liste = {});

} // namespace sylvane
