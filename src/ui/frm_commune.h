// `FrmCommune` ("Recherche Commune"): the communes gazetteer named by the
// setting "Fichier Communes", open for the life of the form. A typed name
// is looked up in the name index (message 743 and the nearest name when
// it is not there); a head word shows the words around it and its
// communes; a commune chosen shows its fields, its main commune and its
// department; its comment is written back at once (`MnuMAJ`).
#pragma once

#include "exchange/communes.h"
#include "ui/mdiform1.h"

#include <memory>
#include <string>
#include <vector>

namespace sylvane {

inline constexpr int kCommuneIntrouvable = 742;
inline constexpr int kCommuneInconnue = 743;

class FrmCommune {
  public:
    explicit FrmCommune(MDIForm1& f);

    // Opens the file of the settings; false (message 742) when none.
    bool Ouvre();
    bool Ouverte() const { return fichier_ != nullptr; }
    FichierCommunes* Fichier() { return fichier_.get(); }

    // `TxtCommune` on leaving: the commune of that name, or the nearest
    // one after message 743. Returns the name shown.
    std::string ChercheCommune(const std::string& nom);
    // `TxtIndex`: one letter in capitals, a longer text capital then lower
    // case; the words around it (`Grille1`) and the place of the word.
    std::string FormeMot(const std::string& texte) const;
    std::vector<std::string> MotsAutour(const std::string& texte, std::size_t nombre = 12);
    // The communes of a word, as (number, name) for `LstCommune`.
    std::vector<std::pair<std::uint32_t, std::string>> CommunesDuMot(const std::string& mot);

    // `LstCommune` on click: the commune shown.
    void Choisit(std::uint32_t n);
    std::uint32_t Choisie() const { return choisie_; }
    const Commune& Affichee() const { return commune_; }
    // The postcodes as shown ("/" made blanks), the main commune's name and
    // number, the department found from the text in parentheses.
    std::string CodesPostaux() const;
    std::string Principale();
    std::string Departement();

    // `MnuMAJ`: the comment of the commune shown.
    bool EnregistreCommentaire(const std::string& texte);

  private:
    std::uint32_t ParNumero(const std::string& numero);

    MDIForm1& f_;
    std::unique_ptr<FichierCommunes> fichier_;
    std::uint32_t choisie_ = 0;
    Commune commune_;
};

} // namespace sylvane
