// The HTML writers: the framed site of a whole base, the reports of one
// person's ascendants, descendants or family as a folder of pages with an
// index frame or as one page, all from one page head, one page foot and
// one person page. Pages are written straight to their files, each whole
// or not at all; nothing is read back.
#pragma once

#include "maintenance/interaction.h"
#include "publish/contenu.h"
#include "publish/rapports.h"
#include "store/base.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace sylvane {

class SortiePage;

// What is being written (`ModeHTML`).
enum class ModeHTML : int {
    Fichier = 0,       // one page, links are "#" anchors
    Multifichiers = 1, // an index frame and one page per person, event, document
    Rubriques = 2,     // the keyword part of the site
    Site = 3,          // the person, event and document part of the site
};

class EcrivainHTML {
  public:
    EcrivainHTML(Base& b, SystemeFichiers& fs, Interaction io = {});
    ~EcrivainHTML();
    EcrivainHTML(const EcrivainHTML&) = delete;
    EcrivainHTML& operator=(const EcrivainHTML&) = delete;

    // The program's line at the foot of every page.
    std::string banniere = "Sylvane";
    // The META AUTHOR of the pages; none when empty.
    std::string auteur;
    // The base's home document (its title document, which holds its
    // e-mail address), 0 for none.
    std::uint32_t documentAccueil = 0;
    // The person whose page opens the site's right frame, before the home
    // document; 0: the home document, or the first person of the first word.
    std::uint32_t personneAccueil = 0;
    OptionsFiche options;

    // The whole site in `dossier` (created when missing): the keyword
    // pages, a page per person, event and document, "index.htm",
    // "Sylvane.css" and the frames of "homepage.htm". False when the user
    // stopped: the pages written so far stay, the home page isn't written.
    bool Site(const std::string& dossier);

    // A report as a folder of pages with its index frame ("homepage.htm").
    bool RapportMultifichiers(const std::string& dossier, const std::string& titre,
                              const std::vector<EntreeRapport>& entrees);
    // A report as one page at `chemin`, with "Sylvane.css" beside it.
    bool RapportFichier(const std::string& chemin, const std::string& titre,
                        const std::vector<EntreeRapport>& entrees);

    // Person sections in a page that another report lays out, as in a
    // one-page report (links are "#" anchors). `OuvrePage` takes the page
    // and the persons that get a section in it; `FermePage` adds the
    // events and documents those sections named.
    void OuvrePage(SortiePage& s, const std::vector<std::uint32_t>& personnes);
    void SectionPersonne(std::uint32_t p, const std::string& lignes);
    void FermePage();

  private:
    struct Etat;
    std::unique_ptr<Etat> e_;
};

// The path of the site of a base: the work folder and the base's title.
std::string DossierSite(const Parametres& p, const std::string& titreBase);

} // namespace sylvane
