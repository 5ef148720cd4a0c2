// `FrmHTML` (menu `MnuHTML`): the whole site of the open base as framed
// pages. The user chooses the folder (by default the base's title in the
// work folder), the author of the pages and the page the site opens on;
// the site is written with the progress panel and its stop button, then
// offered to the user's browser.
#pragma once

#include "ui/mdiform1.h"

#include <cstdint>
#include <functional>
#include <string>

namespace sylvane {

// Captions of the form that have no number elsewhere.
namespace msg_html {
inline constexpr int Titre = 4450;
inline constexpr int Dossier = 4451;
inline constexpr int Parcourir = 4452;
inline constexpr int Creer = 4453;
inline constexpr int Fermer = 4454;
inline constexpr int Navigateur = 4455;
inline constexpr int PersonneEnCours = 4456;
inline constexpr int Auteur = 4457;
inline constexpr int ChoixDossier = 4459;
inline constexpr int Progres = 4460;
inline constexpr int Cree = 569;
} // namespace msg_html

class FrmHTML {
  public:
    explicit FrmHTML(MDIForm1& f);

    // --- Choices -----------------------------------------------------------
    std::string dossier;
    std::string auteur;
    bool ouvrirNavigateur = true;
    // The right frame opens on the person in course rather than on the
    // first person of the first keyword.
    bool accueilPersonne = false;

    // The folder dialog; a cancel keeps the folder.
    void Parcourir();

    // --- The run -------------------------------------------------------------
    enum class Resultat { Refuse, Arrete, Erreur, Cree };
    // Refused with message 503 while another long operation runs, or with
    // no base. A stop ends with no message, the pages written so far kept.
    // On success message 569, the author kept in the settings,
    // and the home page handed to `ouvreNavigateur` when asked.
    Resultat Cree();
    // The home page of the last site written ("" before).
    const std::string& Accueil() const { return accueil_; }

    // The window's hook that opens a page in the user's browser.
    std::function<void(const std::string& page)> ouvreNavigateur;

  private:
    MDIForm1& f_;
    std::string accueil_;
};

} // namespace sylvane
