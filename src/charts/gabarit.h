// The page template (".svp"): the drawing records of a chart, written once
// by the layout and read again by the page writer for every sheet. One
// record a line, in the quoted form of the program's sequential files:
// texts in double quotes, numbers bare, fields separated by commas. The
// first line holds the sheets across and down and the size of the whole
// chart; it goes out with the first record, so an empty chart makes no
// file.
#pragma once

#include "store/fichier.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace sylvane {

// The size of a chart and how many sheets it takes.
struct EnteteGabarit {
    std::int32_t feuillesH = 1, feuillesV = 1;
    std::int64_t largeurTotale = 0, hauteurTotale = 0;
};

// One drawing record.
struct EnregGabarit {
    char type = 0; // 'C' box, 'L' line, 'T' text
    std::int64_t x1 = 0, y1 = 0;
    std::int64_t x2 = 0, y2 = 0; // 'L': the other end; 'C': half-width, half-height
    std::int32_t style = 0;
    std::uint32_t personne = 0; // 'C'
    std::string texte;          // 'T', lines separated by "#"
};

// Limits the reader holds a file to.
inline constexpr std::int32_t kFeuillesMax = 10000;
inline constexpr std::int64_t kFeuillesTotalMax = 1000000;
inline constexpr std::int64_t kCoordonneeMax = 2000000000;
inline constexpr std::size_t kLigneGabaritMax = 65536;

// A template that can't be read: what is wrong and on which line.
class ErreurGabarit : public std::runtime_error {
  public:
    ErreurGabarit(const std::string& chemin, std::uint64_t ligne, const std::string& raison);
};

// Writes a template whole or not at all: the records go to a temporary
// beside the target, which takes the target's name at Termine. Destroyed
// before (an error, a stop), it leaves nothing.
class EcrivainGabarit {
  public:
    EcrivainGabarit(SystemeFichiers& fs, std::string chemin, const EnteteGabarit& entete);
    ~EcrivainGabarit();
    EcrivainGabarit(const EcrivainGabarit&) = delete;
    EcrivainGabarit& operator=(const EcrivainGabarit&) = delete;

    void BoiteGraphe(std::int64_t x, std::int64_t y, std::int64_t demiLargeur,
                     std::int64_t demiHauteur, std::int32_t style, std::uint32_t personne);
    void TraitGraphe(std::int64_t x1, std::int64_t y1, std::int64_t x2, std::int64_t y2,
                     std::int32_t style);
    void TexteGraphe(const std::string& texte, std::int64_t x, std::int64_t y,
                     std::int32_t style);
    void Ecrit(const EnregGabarit& e);

    std::uint64_t Nombre() const { return nombre_; }
    // The centre of the last box.
    std::int64_t DernierX() const { return dernierX_; }
    std::int64_t DernierY() const { return dernierY_; }
    // Puts the file in place; false, with no file, when nothing was drawn.
    bool Termine();

  private:
    void Ligne(const std::string& l);
    void Vide();

    SystemeFichiers& fs_;
    std::string chemin_;
    EnteteGabarit entete_;
    std::unique_ptr<EcritureAtomique> sortie_;
    std::string tampon_;
    std::uint64_t offset_ = 0, nombre_ = 0;
    std::int64_t dernierX_ = 0, dernierY_ = 0;
};

// The text of a record as written: a double quote becomes the closing
// quotation mark, line breaks become blanks.
std::string TexteGabarit(const std::string& texte);

// Reads a template record by record, checking every field.
class LecteurGabarit {
  public:
    // Throws ErreurES when the file can't be opened, ErreurGabarit when
    // its first line is not a template's.
    LecteurGabarit(SystemeFichiers& fs, const std::string& chemin);
    const EnteteGabarit& Entete() const { return entete_; }
    // False at the end of the file; throws ErreurGabarit on a bad record.
    bool Suivant(EnregGabarit& e);

  private:
    bool LigneSuivante(std::string& l);
    [[noreturn]] void Erreur(const std::string& raison) const;

    std::string chemin_;
    std::unique_ptr<Fichier> f_;
    std::string tampon_;
    std::size_t i_ = 0;
    std::uint64_t offset_ = 0, ligne_ = 0;
    bool fin_ = false;
    EnteteGabarit entete_;
};

} // namespace sylvane
