// `FrmCommune` ("Recherche Commune"): the communes gazetteer named by the
// setting "Fichier Communes", open for the life of the form. A typed name
// is looked up in the name index (message 743 and the nearest name when
// it is not there); a head word shows the words around it and its
// communes; a commune chosen shows its fields, its main commune and its
// department; its comment is written back at once (`MnuMAJ`). Communes
// are added and removed, and the file written anew (`MnuReorganiser`) with
// the progress panel and its stop.
//
// The same gazetteer helps the entry of places: the communes whose name
// begins as the typed text are offered (`LieuxProposes`).
#pragma once

#include "exchange/communes.h"
#include "ui/mdiform1.h"

#include <memory>
#include <string>
#include <vector>

namespace sylvane {

inline constexpr int kCommuneIntrouvable = 742;
inline constexpr int kCommuneInconnue = 743;

// Captions of the communes window.
namespace msg_communes {
inline constexpr int Titre = 4580;
inline constexpr int Commune = 4581;
inline constexpr int MotDirecteur = 4582;
inline constexpr int Aller = 4583;
inline constexpr int Mots = 4584;
inline constexpr int CommunesDuMot = 4585;
inline constexpr int Numero = 4586;
inline constexpr int CodesPostaux = 4587;
inline constexpr int Agglomeration = 4588;
inline constexpr int Principale = 4589;
inline constexpr int Departement = 4590;
inline constexpr int Population = 4591;
inline constexpr int Superficie = 4592;
inline constexpr int Commentaire = 4593;
inline constexpr int Enregistrer = 4594;  // MnuMAJ
inline constexpr int Ajouter = 4595;
inline constexpr int Retirer = 4596;
inline constexpr int Reorganiser = 4597;
inline constexpr int Prendre = 4598;      // the commune goes to the place field
inline constexpr int Nouvelle = 4599;     // the dialog of a new commune
inline constexpr int Nom = 4600;
inline constexpr int Fermer = 4601;
inline constexpr int Aucun = 4602;        // the window with no gazetteer
inline constexpr int AideLieu = 4603;     // tool tip of a place field
inline constexpr int NomVide = 4604;
inline constexpr int Hectares = 4605;     // "&1 ha"
inline constexpr int Confirmation = 617;
} // namespace msg_communes

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

    // A new commune, then shown: its number, 0 when refused (no name:
    // message NomVide; busy: 503).
    std::uint32_t Ajoute(const Commune& c);
    // The commune shown goes, after the question 617.
    bool Retire();
    // `MnuReorganiser`: the file written anew, the panel showing the
    // commune reached; false when stopped (the old file stays) or failed.
    bool Reorganise();

  private:
    std::uint32_t ParNumero(const std::string& numero);

    MDIForm1& f_;
    std::unique_ptr<FichierCommunes> fichier_;
    std::uint32_t choisie_ = 0;
    Commune commune_;
};

// The names of the gazetteer of the settings that begin as `debut`, for
// the place fields; none, and no box, when there is no readable file or
// fewer than two letters are typed.
std::vector<std::string> LieuxProposes(Application& app, const std::string& debut, std::size_t nombre = 12);

} // namespace sylvane
