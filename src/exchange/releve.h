// Register capture: a text file of parish or civil register transcriptions,
// one act a line, turned into a new base. Four kinds of file: marriages,
// baptisms, burials, and an ascendance numbered after Sosa-Stradonitz.
// Each person an act names is a new record; no duplicates are looked for
// (that is the merge's work).
//
// The files are those a spreadsheet or a text editor writes: fields split
// by ";", a tab, "," or the sequence `" "`, quoted or not, in
// Windows-1252, UTF-8 or UTF-16 (with its byte-order mark), with a first
// line of headings or without.
#pragma once

#include "store/base.h"
#include "text/dates.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

enum class GenreReleve { Mariage, Bapteme, Sepulture, Ascendance };

// Fields kept of a line; the rest is passed over.
inline constexpr std::size_t ChampsReleve = 17;
// A longer line is no act: the import stops there.
inline constexpr std::size_t LongueurMaxLigneReleve = 64 * 1024;
// A larger file is refused whole.
inline constexpr std::uint64_t TailleMaxReleve = std::uint64_t{1} << 30;
// The highest ascendant number taken (generation 24).
inline constexpr std::uint32_t NumeroMaxAscendance = 1u << 24;

// Messages of the import.
inline constexpr int MessageSansSeparateur = 979;
inline constexpr int MessageLigneTropLongue = 4300;
inline constexpr int MessageFichierVide = 4301;
inline constexpr int MessageFichierBinaire = 4302;
inline constexpr int MessageFichierTropGrand = 4303;
inline constexpr int MessageNumeroInvalide = 4304;

// The fields of one line, trimmed, at most ChampsReleve. The separator is
// the first of ";", tab, "," and `" "` that the line holds; false when it
// holds none. A field that opens with a quotation mark runs to its closing
// one (a doubled mark inside stands for one) and loses both.
bool DecoupeChamps(std::string_view ligne, std::vector<std::string>& champs);

// The columns of each kind of file, 1-based, as the README lists them.
namespace col {
// Baptism.
enum Bapteme { B_JourMois = 1, B_Annee, B_Lieu, B_Nom, B_Prenom, B_Sexe, B_NomPere, B_PrenomPere,
               B_ProfPere, B_NomMere, B_PrenomMere, B_ProfMere, B_Parrain, B_Marraine, B_Note };
// Burial.
enum Sepulture { S_JourMois = 1, S_Annee, S_Lieu, S_Nom, S_Prenom, S_Sexe, S_Age, S_Unite,
                 S_Naissance, S_LieuNaissance, S_Conjoint, S_NomPere, S_PrenomPere, S_NomMere,
                 S_PrenomMere, S_Note };
// Marriage: the husband's seven columns, then the wife's.
enum Mariage { M_JourMois = 1, M_Annee, M_Lieu, M_Nom, M_Prenom, M_Age, M_Domicile, M_Veuf,
               M_Pere, M_Mere, M_NomEpouse, M_PrenomEpouse, M_AgeEpouse, M_DomicileEpouse,
               M_Veuve, M_PereEpouse, M_MereEpouse };
// Ascendance.
enum Ascendance { A_Numero = 1, A_Prenom, A_Nom, A_Sexe, A_Profession, A_JourNaiss, A_MoisNaiss,
                  A_AnNaiss, A_LieuNaiss, A_JourDeces, A_MoisDeces, A_AnDeces, A_LieuDeces,
                  A_JourMariage, A_MoisMariage, A_AnMariage, A_LieuMariage };
} // namespace col

struct OptionsReleve {
    // The progress text (a count of acts), every 100 acts.
    std::function<void(const std::string& texte)> progres;
    // The stop flag, looked at after each line: what was made stays.
    std::function<bool()> arret;
    // Where the name display order of the new base goes.
    Parametres* parametres = nullptr;
};

struct RapportReleve {
    std::uint32_t lignes = 0;     // lines read, headings and blank lines included
    std::uint32_t actes = 0;      // lines that made an act (or an ascendant)
    std::uint32_t personnes = 0, mariages = 0, evenements = 0;
    bool entete = false;          // the first line was a line of headings
    bool arrete = false;          // stopped by the user
    // A refused file (empty, binary, too large): the message, and nothing
    // was written. Or the line the import stopped at (979, 4300).
    int message = 0;
    std::uint32_t ligneErreur = 0;
    // Ascendance lines passed over (a number that is no Sosa number).
    std::vector<std::uint32_t> lignesIgnorees;
    // Whether the file was refused whole: the base stays empty, unwritten.
    bool refuse() const { return message != 0 && ligneErreur == 0; }
    // The report in words (Windows-1252), for a box or the console.
    std::string Texte() const;
};

// The file's bytes as lines of text in the program's form: the encoding
// is found (a byte-order mark, else UTF-8 when every byte from 128 up is
// well-formed UTF-8, else Windows-1252); characters Windows-1252 lacks
// become references ("&#1047;") field by field. `utf8` tells which.
// The text stays in its encoding here; Champs converts.
struct TexteReleve {
    std::string octets; // UTF-8 or Windows-1252
    bool utf8 = false;
};
// Message of a refused file, or 0; fills `t`.
int PrepareReleve(std::string_view octets, TexteReleve& t);

// Imports into `b`, which must be new and empty, and commits it (unless
// the file is refused). Errors of the file layer pass as ErreurES.
RapportReleve ImporteReleve(Base& b, std::string_view octets, GenreReleve genre,
                            const OptionsReleve& options = {});
RapportReleve ImporteReleveFichier(Base& b, SystemeFichiers& fs, const std::string& chemin,
                                   GenreReleve genre, const OptionsReleve& options = {});

// The birth date worked out from an age at a date: the held day and month
// ("CAL" alone for an age in years, "CAL 3 MAR" and the like for months,
// weeks or days) and the year; empty when the age holds no number.
// `unite` may be empty when the age text carries it ("2 mois").
DateTenue NaissanceParAge(std::string_view jourMoisActe, std::string_view anneeActe,
                          std::string_view age, std::string_view unite);

} // namespace sylvane
