// Ascendant and descendant lists of one reference person, with their
// numbers, generations and repeated occurrences (implex), in one of four
// orders. A run leaves the list in two work files, "Crit" (one 18-byte
// record per distinct person) and "Suit" (one 12-byte record per further
// occurrence); the sort keys pass through a third one, "Impr", deleted at
// the end of the run. Reports, statistics and trees read the list through
// the accessors below until the next run.
#pragma once

#include "store/base.h"
#include "store/fichier.h"

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

namespace sylvane {

// A list stops at this many distinct persons.
inline constexpr std::int32_t kLimiteListe = 32000;
// A run walks at most this many occurrences; it guards against the
// exponential walks of a heavily inbred base walked without `ArretDoublon`,
// and against loops in damaged parent links.
inline constexpr std::int64_t kVisitesMax = 2'000'000;

// One occurrence of a person: the first one (a Crit record) or a further
// one (a Suit record).
struct Occurrence {
    std::int16_t generation = 0;
    // The child (ascendants) or the parent (descendants) through whom the
    // person was reached; 0 for the reference person.
    std::uint32_t lien = 0;
    // The Sosa number (ascendants) or the index of the number string
    // (descendants).
    std::int32_t numero = 0;
};

// The four orders of a list, the values of `ModeTriListe`.
enum ModeTri : int { TriParcours = 0, TriGeneration = 1, TriNaissance = 2, TriNom = 3 };

class ListeParente {
  public:
    ListeParente(Base& base, SystemeFichiers& fs);
    ListeParente(const ListeParente&) = delete;
    ListeParente& operator=(const ListeParente&) = delete;

    // --- Options of a run -------------------------------------------------
    // 1: a person already in the list is not walked a second time.
    std::int16_t ArretDoublon = 0;
    // The user's stop. Cleared at the start of a run, polled at each visit;
    // `progres` (which lets the interface run) may set it.
    bool Abandon = false;
    // Text for the progress panel: the count of entries, "Tri en cours".
    std::function<void(const std::string& texte)> progres;
    // The message of the 32,000 limit.
    std::function<void(const std::string& texte)> avertit;

    // Builds the list of `personne`'s ascendants (descendants) down to
    // `niveaux` generations, the person being generation 1, in the order
    // `modeTriListe` (0 to 3). Returns false, with `nombre` unchanged, when
    // the user stopped the run, when there is no such person or when a
    // work file could not be written; true with the count of entries
    // otherwise.
    bool ConstruitAscendants(std::uint32_t personne, std::int32_t& nombre, int niveaux,
                             int modeTriListe);
    bool ConstruitDescendants(std::uint32_t personne, std::int32_t& nombre, int niveaux,
                              int modeTriListe);

    // --- Accessors of entry n, 1 to NombreEntrees(); 0 elsewhere -----------
    std::int32_t ListePosition(std::int32_t n) const;
    std::uint32_t ListePersonne(std::int32_t n) const;
    std::uint32_t ListeLien(std::int32_t n) const;
    std::int32_t ListeNumero(std::int32_t n) const;
    std::int16_t ListeGeneration(std::int32_t n) const;
    // How many times a person occurs in the list; 0 when it is not in it.
    std::uint32_t ListeOccurrences(std::uint32_t personne) const;

    // The entry's first occurrence, then its further ones in chain order.
    std::vector<Occurrence> OccurrencesEntree(std::int32_t n) const;
    // A descendant number string by its index (1 up); "" elsewhere. The
    // reference person's is the empty string.
    const std::string& NumerosDescendance(std::int32_t i) const;

    std::int32_t NombreEntrees() const { return static_cast<std::int32_t>(crit_.size()); }
    bool Descendante() const { return descendante_; }
    bool LimiteAtteinte() const { return limiteAtteinte_; }
    std::int16_t NiveauMax() const { return niveauMax_; }
    std::int16_t ModeTriListe() const { return modeTriListe_; }

    // The work files of this base.
    std::string CheminCrit() const { return CheminTravail("Crit"); }
    std::string CheminSuit() const { return CheminTravail("Suit"); }
    std::string CheminImpr() const { return CheminTravail("Impr"); }
    // Deletes "Crit" and "Suit" (at the end of the program).
    void SupprimeFichiers();

  private:
    struct EnregCrit {
        std::int32_t position = 0;
        std::uint32_t personne = 0;
        std::uint32_t lien = 0;
        std::int32_t numero = 0;
        std::int16_t generation = 0;
    };
    struct EnregSuit {
        Occurrence occ;
        std::uint32_t suivant = 0;
    };
    // A visit waiting on the walk's stack.
    struct Visite {
        std::uint32_t personne;
        std::int16_t generation;
        std::uint32_t lien;
        std::int32_t sosa;  // ascendants
        std::string numero; // descendants
    };

    std::string CheminTravail(const char* souche) const;
    bool Construit(bool descendante, std::uint32_t personne, std::int32_t& nombre, int niveaux,
                   int modeTriListe);
    void Parcours(Visite depart);
    bool ArretVisite();
    bool Limite();
    void AjouteAscendant(const Visite& v);
    void AjouteDescendant(const Visite& v);
    void AjouteEntree(const Visite& v, std::int32_t numero, const std::string& cle);
    std::uint32_t AjouteSuite(std::uint32_t personne, const Occurrence& occ);
    std::string CleTri(const Visite& v);
    void TriListe();
    void EcritFichiers();
    // Entry n, or a record of zeros outside the list.
    EnregCrit Entree(std::int32_t n) const;
    bool Valide(std::uint32_t p) const { return p != 0 && p < occurrences_.size(); }

    Base& base_;
    SystemeFichiers& fs_;

    bool descendante_ = false;
    std::int16_t niveauMax_ = 0;
    std::int16_t modeTriListe_ = 0;
    bool limiteAtteinte_ = false;
    bool doublon_ = false;
    std::int64_t visites_ = 0;

    std::vector<EnregCrit> crit_;
    std::vector<EnregSuit> suit_;              // record k at [k - 1]
    std::vector<std::uint32_t> occurrences_;   // by person number
    std::vector<std::uint32_t> premiereSuite_; // by person number
    std::vector<std::uint32_t> derniereSuite_; // by person number: the chain's end
    // The further occurrences of a descendant list, by (person, parent,
    // generation): one is kept for each.
    struct CleSuite {
        std::uint32_t personne;
        std::uint32_t lien;
        std::int16_t generation;
        bool operator==(const CleSuite&) const = default;
    };
    struct HachageSuite {
        std::size_t operator()(const CleSuite& c) const {
            return std::hash<std::uint64_t>{}((std::uint64_t{c.personne} << 32 | c.lien) ^
                                              (std::uint64_t(std::uint16_t(c.generation)) << 48));
        }
    };
    std::unordered_set<CleSuite, HachageSuite> vusParLien_;
    std::string impr_;                            // the sort keys, one after the other
    std::vector<std::uint16_t> longueurCle_;      // by entry
    std::vector<std::string> numerosDescendance_; // index i at [i - 1]
};

} // namespace sylvane
