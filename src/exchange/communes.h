// The communes gazetteer: a file of its own (".svx"), apart from any base,
// with the communes, an index of their names and an index of the words of
// those names. All numbers are packed on four bytes, most significant
// first; positions are 1-based. The header (1,144 bytes) holds the count
// of communes, the count of words, and four tables of 64 block positions:
// the commune records, the name index, the comments, the word index. A
// block is 2,500 entries of four bytes, each the position of a record (0
// for none); 64 blocks hold 160,000 entries.
//
// Changes append: a changed record or comment goes to the end of the file
// and its entry is pointed at it, the old bytes stay as waste until the
// reorganisation writes the file anew (through a work file renamed over it).
#pragma once

#include "store/fichier.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace sylvane {

inline constexpr std::uint32_t EntreesParBlocCommunes = 2500;
inline constexpr std::uint32_t BlocsCommunes = 64;
inline constexpr std::uint32_t MaxCommunes = EntreesParBlocCommunes * BlocsCommunes;
inline constexpr std::uint32_t TailleEnteteCommunes = 1144;

struct Commune {
    std::string nom;
    std::string numero;        // the commune's own number (INSEE code)
    std::string detail;        // the second text, shown with the postcodes
    std::string agglomeration; // its name; linked to the name index when it is one
    std::string principale;    // number of the main commune, "" for none
    std::string codesPostaux;  // several codes separated by "/"
    std::string commentaire;
    std::uint32_t population = 0;
    std::uint32_t superficie = 0; // hectares
    bool operator==(const Commune&) const = default;
};

// The comparison form of a name: apostrophes made ".", capitals without
// accents.
std::string CleCommune(std::string_view nom);

class FichierCommunes {
  public:
    // Opens an existing file for reading and writing; ErreurES when it
    // can't be, ErreurLecture-like std::runtime_error when its header is
    // not that of a communes file.
    FichierCommunes(SystemeFichiers& fs, std::string chemin, bool lectureSeule = false);

    // Writes a new file of these communes (numbered from 1 in this order),
    // whole or not at all.
    static void Cree(SystemeFichiers& fs, const std::string& chemin, const std::vector<Commune>& communes);

    std::uint32_t Nombre() const { return nombre_; }
    std::uint32_t NombreNoms() const { return noms_; }
    std::uint32_t NombreMots() const { return mots_; }

    // The commune of number n (1-based); empty for a removed one.
    Commune Lit(std::uint32_t n);
    // The name at place i of the name index, and the communes of that name.
    std::string NomIndex(std::uint32_t i);
    std::vector<std::uint32_t> CommunesNom(std::uint32_t i);
    // The word at place k of the word index, and its communes.
    std::string Mot(std::uint32_t k);
    std::vector<std::uint32_t> CommunesMot(std::uint32_t k);

    // Binary search of the name index: the place of the name, or of the
    // nearest one when `exact` comes back false; 0 for an empty index.
    std::uint32_t ChercheNom(std::string_view nom, bool& exact);
    // The place of the first word at or after `mot` (clamped to the last).
    std::uint32_t ChercheMot(std::string_view mot);
    // The names of the index that begin as `debut` does (folded both
    // sides), in index order, `nombre` at most.
    std::vector<std::string> NomsCommencant(std::string_view debut, std::size_t nombre);

    // The update of the form: a new comment, a changed record, appended.
    void EcritCommentaire(std::uint32_t n, std::string_view texte);
    void EcritCommune(std::uint32_t n, const Commune& c);
    // A new commune at the end, or one removed; the indexes follow at the
    // reorganisation, which these run.
    std::uint32_t Ajoute(const Commune& c);
    void Retire(std::uint32_t n);

    // Writes the file anew through the work file "Commune.reo" beside it.
    // `progres` gets a title and a name every 100 communes and answers
    // whether to go on; a stop deletes the work file and keeps the old one.
    using Progres = std::function<bool(const std::string& titre, const std::string& texte)>;
    bool Reorganise(const Progres& progres = {});

  private:
    std::uint32_t Entree(int table, std::uint32_t n);
    void EcritEntree(int table, std::uint32_t n, std::uint32_t position);
    std::string Lire(std::uint32_t position, std::size_t n);
    std::uint32_t Ajouter(std::string_view donnees);
    std::string Texte(std::uint32_t position);
    void LitEntete();
    std::vector<Commune> Toutes(const Progres& progres, bool& arrete);
    // Name index records: name, 0xFF, packed commune numbers, a zero. A
    // list is read up to `borne` numbers.
    std::string LitNomIndex(std::uint32_t i, std::vector<std::uint32_t>* communes,
                            std::size_t borne = MaxCommunes);
    std::string LitMotIndex(std::uint32_t k, std::vector<std::uint32_t>* communes);
    void CacheNoms();

    SystemeFichiers& fs_;
    std::string chemin_;
    std::unique_ptr<Fichier> f_;
    std::uint32_t nombre_ = 0, mots_ = 0, noms_ = 0;
    std::array<std::array<std::uint32_t, BlocsCommunes>, 4> tables_{};
    std::map<std::pair<int, std::uint32_t>, std::string> blocs_;
    std::vector<std::uint32_t> nomDe_; // place in the name index by commune number
    std::uint32_t derniere_ = 0;
    Commune cache_;
};

} // namespace sylvane
