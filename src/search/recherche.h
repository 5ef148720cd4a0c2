// The four searches: by a piece of the name, by keywords, by couple and by
// event. Each search is a scan that runs by steps, so that the window can
// show its rows as they are found, let events run between steps and stop
// at any moment with what was found kept. The command line and the
// benchmarks run the same scans to their end.
//
// Texts are Windows-1252 bytes, compared through CleMot.
#pragma once

#include "maintenance/interaction.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace sylvane {

class Base;
class Selection;

// Refusals and questions of the search forms.
namespace msg_recherche {
inline constexpr int CriteresVides = 550;     // name and event searches
inline constexpr int RienTrouve = 551;
inline constexpr int MoinsDeDeux = 555;       // the kinship search needs persons
inline constexpr int StatsOuverte = 556;
inline constexpr int StatsOuverte2 = 557;
inline constexpr int BalayageLong = 559;      // no index to use: scan everything?
inline constexpr int CriteresMotsVides = 560;
inline constexpr int CriteresCoupleVides = 561;
inline constexpr int AnneeNonNumerique = 931;
} // namespace msg_recherche

// The working set of persons: packed four-byte numbers in ascending order,
// each number once.
class EnsemblePersonnes {
  public:
    const std::string& Octets() const { return octets_; }
    std::size_t Taille() const { return octets_.size() / 4; }
    bool Vide() const { return octets_.empty(); }
    // Number at rank i (0-based); 0 past the end.
    std::uint32_t At(std::size_t i) const;
    // Rank of n, or Taille() when it is not there.
    std::size_t Rang(std::uint32_t n) const;
    bool Contient(std::uint32_t n) const { return Rang(n) < Taille(); }
    // Puts n at its place; false when it was there already (or is 0).
    bool Ajoute(std::uint32_t n);
    // Merges many numbers at once (in any order, doubles allowed); returns
    // how many were new.
    std::size_t Fusionne(std::vector<std::uint32_t> numeros);
    // Drops the number at rank i.
    bool RetireRang(std::size_t i);
    void Vide_() { octets_.clear(); }
    std::vector<std::uint32_t> Numeros() const;

  private:
    std::string octets_;
};

// A year as the searches compare it (CleAnnee); an empty upper bound is
// four characters of code 255, above every year.
std::string BorneAnnee(const std::string& an, bool haute);
// A criterion folded as the index holds words: trimmed, blanks as dots,
// capitals without accents.
std::string CleCritere(const std::string& texte);
// The parent code of the name search: "*" no parent, "P" a father only,
// "M" a mother only, "" both.
std::string CodeFamille(Base& b, std::uint32_t n);
// The parent code of the other grids: "xx" both, "xo" a father only, "ox"
// a mother only, "" none.
std::string CodeParents(Base& b, std::uint32_t n);
// The short life span of a person ("o1880", "1850-1920" ...).
std::string DatesPersonne(Base& b, std::uint32_t n);

// A scan by steps. The rows it finds wait in the scan until taken.
class Balayage {
  public:
    virtual ~Balayage() = default;
    // Runs up to `pas` steps; false once the scan is over.
    virtual bool Avance(std::size_t pas) = 0;
    std::size_t Fait() const { return fait_; }
    std::size_t Total() const { return total_; }

  protected:
    std::size_t fait_ = 0, total_ = 0;
};

// Runs a scan to its end or to the stop mark of `i`, calling `apres`
// after each step (to take the rows and show the progress). Returns false
// when stopped.
bool Execute(Balayage& s, const Interaction& i, const std::function<void()>& apres = {},
             std::size_t pas = 2000);

// --- Name search ----------------------------------------------------------
struct CriteresNom {
    std::string texte;    // anywhere in the full name (the form's one field)
    std::string nom;      // anywhere in the family name
    std::string prenom;   // anywhere in the first names
    std::string anDebut, anFin; // birth years
    char sexe = ' ';      // 'H', 'F' or blank
    bool Vides() const;
};

class RechercheNom : public Balayage {
  public:
    RechercheNom(Base& b, const CriteresNom& c);
    bool Avance(std::size_t pas) override;
    // The persons found since the last call, in sort-table order.
    std::vector<std::uint32_t> Prend();

  private:
    Base& b_;
    std::string texte_, nom_, prenom_, debut_, fin_;
    char sexe_;
    std::vector<std::uint32_t> trouves_;
};

// --- Keyword search -----------------------------------------------------------
// The marks of the keyword line.
inline constexpr char kMarqueNom = '|';
inline constexpr char kMarquePrenom = '\xB6';
inline constexpr char kMarqueNaissance = '$';
inline constexpr char kMarqueDeces = '~';
inline constexpr char kMarqueMariage = '@';

struct LigneCritereMot {
    char marque = ' '; // the kind: the symbol of a rubric, blank for none
    std::string texte;
};

struct CriteresMots {
    LigneCritereMot lignes[4];
    std::string anDebut, anFin;
    bool orphelines = false;
    bool Vides() const;
};

// One row of the keyword search.
struct LigneMot {
    std::uint32_t personne = 0;
    std::string cle;     // family-name key
    std::string detail;  // the date and place found for the keyword
    std::string nom;
    std::string parents; // CodeParents
    std::string sansMariage, sansEnfant; // "X" when none
    std::string annee;   // birth year key, for the sort
};

class RechercheMots : public Balayage {
  public:
    RechercheMots(Base& b, const CriteresMots& c);
    // Whether the index gives the candidates; else the scan walks every
    // person (message 559 is asked first).
    bool ParIndex() const { return parIndex_; }
    bool Avance(std::size_t pas) override;
    std::vector<LigneMot> Prend();

  private:
    bool Passe(std::uint32_t n);
    std::string Detail(std::uint32_t n);

    Base& b_;
    CriteresMots c_;
    int indexLigne_ = -1;   // the row the index answers
    bool parIndex_ = false;
    std::vector<std::uint32_t> candidats_;
    std::string debut_, fin_;
    std::uint32_t precedent_ = 0;
    std::vector<LigneMot> trouves_;
};

// The persons of every keyword of rubric `symbole` that begins with `mot`
// (folded), word after word, each list in its stored order.
std::vector<std::uint32_t> PersonnesMotsCommencant(Base& b, char symbole, const std::string& mot);
// The symbol of a rubric given by its symbol or by its tag or label; blank
// when the base has none.
char SymboleRubrique(Base& b, const std::string& genre);

// --- Couple search ----------------------------------------------------------------
struct CriteresCouple {
    std::string epoux, prEpoux, epouse, prEpouse, lieu, anDebut, anFin;
    bool Vides() const;
};

struct LigneCouple {
    std::uint32_t mariage = 0, mari = 0, femme = 0;
    std::string nomMari, nomFemme, date, lieu, parents;
    int enfants = 0;
};

class RechercheCouple : public Balayage {
  public:
    RechercheCouple(Base& b, const CriteresCouple& c);
    bool ParIndex() const { return parIndex_; }
    bool Avance(std::size_t pas) override;
    std::vector<LigneCouple> Prend();

  private:
    bool Passe(std::uint32_t m);

    Base& b_;
    CriteresCouple c_; // folded
    bool parIndex_ = false;
    std::vector<std::uint32_t> candidats_;
    std::vector<LigneCouple> trouves_;
};

// --- Event search ------------------------------------------------------------------
struct CriteresEvt {
    std::string type, lieu, anDebut, anFin;
    bool Vides() const;
    // 550 when empty, 931 when a year is not a number, else 0.
    int Refus() const;
};

struct LigneEvt {
    std::uint32_t evt = 0;
    long jour = 0;
    std::string date, tag, lieu, description;
};

class RechercheEvt : public Balayage {
  public:
    // `aujourdhui`: the day number that stands for an empty end year.
    RechercheEvt(Base& b, const CriteresEvt& c, long aujourdhui);
    bool Avance(std::size_t pas) override;
    std::vector<LigneEvt> Prend();

  private:
    Base& b_;
    std::string type_, lieu_;
    bool avecDebut_, avecFin_;
    long debut_ = 0, fin_ = 0;
    std::size_t place_ = 1;
    std::vector<LigneEvt> trouves_;
};

// The display of an event date; the event row of a search.
LigneEvt LigneEvenement(Base& b, std::uint32_t e);
// The person an event is about: the first whose role in it is a main one
// (the child of a birth, not its father), else its first person.
std::uint32_t PersonneEvt(Base& b, std::uint32_t e);
// Today as a day number.
long JourAujourdhui();
// The values of the type and place combos: every event's tag (or place),
// folded, in order, once each.
std::vector<std::string> ValeursEvt(Base& b, bool lieux);

// --- Hand-offs ---------------------------------------------------------------------------
// The selective export of a search: the persons found and their spouses go
// ('3'), their children and the targets of their links come as relatives
// ('4', exported with the collaterals), each from its first 200 entries.
void MarqueExport(Base& b, const std::vector<std::uint32_t>& personnes, Selection& sel);
// Numbers in ascending order without doubles, packed for the kinship
// search and the statistics.
std::string ListePaquet(std::vector<std::uint32_t> personnes);

} // namespace sylvane
