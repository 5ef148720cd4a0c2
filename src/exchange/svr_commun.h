// Pieces shared by the writer and the readers of the exchange file.
#pragma once

#include "store/fichier.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane::svr {

// The lines of a note, cut at each CR LF.
std::vector<std::string_view> LignesNote(std::string_view note);
// A line "#" ends a note in the file. A note line that is "#" behind any
// number of bytes 0x1F (which no text of the earlier program holds) is
// written with one more 0x1F in front, and read with one less.
std::string LigneNoteEcrite(std::string_view ligne);
std::string LigneNoteLue(std::string_view ligne);

// The numeric value of a line: blanks, a sign, digits; anything else
// stops it, and a line with no digit is 0. Values beyond `plafond` give
// plafond + 1, so that the caller can refuse them.
std::uint32_t Valeur(std::string_view ligne, std::uint32_t plafond);

// Buffered writing of CR LF lines.
class Sortie {
  public:
    explicit Sortie(std::unique_ptr<Fichier> f) : f_(std::move(f)) {}
    void Ligne(std::string_view l) {
        tampon_ += l;
        tampon_ += "\r\n";
        if (tampon_.size() >= (1u << 20)) Vide();
    }
    void Nombre(std::uint32_t n) {
        tampon_ += ' ';
        tampon_ += std::to_string(n);
        tampon_ += " \r\n";
    }
    void Vide();

  private:
    std::unique_ptr<Fichier> f_;
    std::string tampon_;
    std::uint64_t offset_ = 0;
};

// Buffered reading of lines ended by LF, CR LF or the end of the file.
class Entree {
  public:
    explicit Entree(std::unique_ptr<Fichier> f) : f_(std::move(f)) {}
    // False at the end of the file.
    bool Ligne(std::string& l);
    std::uint64_t NumeroLigne() const { return numero_; }

  private:
    std::unique_ptr<Fichier> f_;
    std::string tampon_;
    std::size_t i_ = 0;
    std::uint64_t offset_ = 0;
    bool fin_ = false;
    std::uint64_t numero_ = 0;
};

} // namespace sylvane::svr
