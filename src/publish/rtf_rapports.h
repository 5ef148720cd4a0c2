// The RTF reports: every report of a person that can go to the printer can
// also be written as a document for a word processor, in the ANSI code
// page, from one skeleton, one person section, one event section and one
// document section. The file is written whole or not at all.
#pragma once

#include "maintenance/interaction.h"
#include "publish/contenu.h"
#include "publish/rapports.h"
#include "store/base.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

// A text of the base for an RTF document: bytes 128 and above and 22 to
// 29 as "\'hh", a TAB as a tab, "{", "}", "\" and 30, 31 behind a
// backslash. A character reference "&#N;" becomes the Unicode character.
std::string EchappeRTF(std::string_view texte);

struct OptionsRTF {
    std::string police = "Times New Roman";
    std::string banniere = "Sylvane";
    OptionsFiche fiche;
    // The events and documents the persons mention, after them.
    bool annexesEvenements = true;
    bool annexesDocuments = true;
};

enum class FinRTF { Termine, Arrete, Vide };

// The skeleton and the sections of these reports for a document that
// another report lays out: its own lines go between the sections.
class DocumentRTF {
  public:
    DocumentRTF(Base& b, SystemeFichiers& fs, const Interaction& io, const std::string& chemin,
                const OptionsRTF& options = {});
    ~DocumentRTF();
    DocumentRTF(const DocumentRTF&) = delete;
    DocumentRTF& operator=(const DocumentRTF&) = delete;

    // The skeleton and the page head titled `titre`; the panel shows the
    // message `progres`.
    void Debut(const std::string& titre, int progres);
    void Ligne(std::string_view l);
    void SectionPersonne(std::uint32_t p, const std::string& entete);
    // The events and documents the sections named, then the whole file in
    // place; false when the user stopped, and the file is as it was.
    bool Valide();

  private:
    struct Etat;
    std::unique_ptr<Etat> e_;
};

// The report `genre` of `personne` (the ascendants or descendants over
// `niveaux` generations) in the file `chemin`. The ascendant and
// descendant lists are left in `liste` for the other readers. Arrete: the
// user stopped, and the file is as it was; Vide: no such person or no list.
FinRTF RapportRTF(Base& b, SystemeFichiers& fs, const Interaction& io, ListeParente& liste,
                  GenreRapport genre, std::uint32_t personne, int niveaux,
                  const std::string& chemin, const OptionsRTF& options = {});

// A list of events, documents or persons (search results) titled `titre`:
// a section for each, then the persons they name.
FinRTF ListeRTF(Base& b, SystemeFichiers& fs, const Interaction& io, const std::string& titre,
                const std::vector<std::uint32_t>& evenements,
                const std::vector<std::uint32_t>& documents,
                const std::vector<std::uint32_t>& personnes, const std::string& chemin,
                const OptionsRTF& options = {});

} // namespace sylvane
