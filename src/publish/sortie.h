// One output file of a site or a report, written whole or not at all: the
// bytes go to a temporary beside the target, which takes the target's name
// only at Valide. Destroyed before that (an error, a stop), the temporary
// goes and the target is as it was. The pages of a site are many and are
// made again on the next run, so the rename is not synced to disk.
#pragma once

#include "store/fichier.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace sylvane {

class SortiePage {
  public:
    SortiePage(SystemeFichiers& fs, std::string cible);
    ~SortiePage();
    SortiePage(const SortiePage&) = delete;
    SortiePage& operator=(const SortiePage&) = delete;

    // A line and its CR LF.
    void Ligne(std::string_view l) {
        tampon_ += l;
        tampon_ += "\r\n";
        if (tampon_.size() >= kTampon) Vide();
    }
    // Text with no line end.
    void Texte(std::string_view t) {
        tampon_ += t;
        if (tampon_.size() >= kTampon) Vide();
    }
    // Bytes written so far.
    std::uint64_t Taille() const { return ecrit_ + tampon_.size(); }
    const std::string& Cible() const { return cible_; }
    // Puts the whole file in place of the target.
    void Valide();

  private:
    static constexpr std::size_t kTampon = 1u << 16;
    void Vide();

    SystemeFichiers& fs_;
    std::string cible_, temporaire_;
    std::unique_ptr<Fichier> fichier_;
    std::string tampon_;
    std::uint64_t ecrit_ = 0;
    bool fini_ = false;
};

} // namespace sylvane
