// `FrmTexte`: the notes editor, modal, on a copy of a note. The text comes
// in as the note holds it (a rich text group "{\rtf1..." or plain text,
// Windows-1252) and goes back as styled runs written by the core's writer:
// rich text when any run carries formatting, else plain text. The editing
// itself is the window's; here are the load, the save, the state of the
// tool bar over a selection, and the usual-words panel.
#pragma once

#include "text/rtf.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace sylvane {

class Reglages;

// What the tool bar shows for a selection: each style only when the whole
// selection has it; the font and size only when they are the same over
// the whole selection (a mixed selection shows nothing).
struct EtatSelection {
    bool gras = false, italique = false, souligne = false;
    std::optional<Alignement> alignement;
    std::optional<std::string> police;
    std::optional<int> taille; // half-points
};

class FrmTexte {
  public:
    FrmTexte(const std::string& texte, std::string titre, std::vector<std::string> motsUsuels = {});

    const std::string& Titre() const { return titre_; }
    // The note as styled runs, paragraphs ended by "\r\n".
    const std::vector<SegmentRtf>& Segments() const { return segments_; }

    // "Sauve": the result is "1" and the text the runs given; "Abandon":
    // the result is "0" and the text is dropped.
    void Sauve(const std::vector<SegmentRtf>& segments);
    void Abandonne();
    // The text to keep, or nothing when the editor was left without saving.
    const std::optional<std::string>& Resultat() const { return resultat_; }

    // "Mot Usuel": shows or hides the panel of usual words.
    bool PanneauMots() const { return panneau_; }
    void BasculePanneau() { panneau_ = !panneau_; }
    const std::vector<std::string>& MotsUsuels() const { return mots_; }
    // A click in the list: the word to insert at the caret, and the panel
    // hides. "" outside the list.
    std::string ChoisitMot(std::size_t i);

    static EtatSelection Etat(const std::vector<SegmentRtf>& selection);

  private:
    std::string titre_;
    std::vector<std::string> mots_;
    std::vector<SegmentRtf> segments_;
    std::optional<std::string> resultat_;
    bool panneau_ = false;
};

// A note as runs: a text beginning with "{\rtf" through the reader, any
// other text as one plain run (its line ends made "\r\n").
std::vector<SegmentRtf> SegmentsNote(const std::string& texte);
// Adjacent runs of one style joined, empty runs dropped.
std::vector<SegmentRtf> Fusionne(std::vector<SegmentRtf> segments);
// The usual words of the settings: those of section "Rubrique " and the
// rubric when it names one that has words, else those of the section of
// the base's usual words.
std::vector<std::string> MotsUsuels(const Reglages& reglages, const std::string& rubrique = {});

} // namespace sylvane
