// The exchange text file (.svr): the program's own lossless text image of
// a base or of a selected part of it. One writer and two readers: into a
// new, empty base keeping the file's numbers, and into the open base with
// every number shifted behind those of the base.
//
// File: Windows-1252 lines ended by CR LF. A number on a line of its own
// is written with a blank on each side (" 12 ") and read by value. Notes
// are written line by line and ended by a line "#": a note line that holds
// only "#" ends the note early, and the lists that follow are then read
// from the rest of the note. The format has always been so.
#pragma once

#include "exchange/echange.h"

#include <cstdint>
#include <string>

namespace sylvane {

class Base;
class Reglages;
class Selection;
class SystemeFichiers;
struct Parametres;

inline constexpr const char* kBanniereSvr = "[Sylvane Version 2001.0]";
// Filter of the file dialogs of the exchange file.
inline constexpr const char* kFiltreSvr = "Export Sylvane (*.svr) |*.svr|";
// Yes/No question at the end of an integration that made new rubrics:
// rebuild their keyword lists from all notes?
inline constexpr int kQuestionRefaireMots = 969;
// The highest record number a file may name; beyond, the file is damaged.
inline constexpr std::uint32_t kNumeroMaxSvr = 10'000'000;

// Writes the persons that `sel` exports, their marriages, documents and
// events, the rubrics and the presentation settings of `p` into `chemin`.
// Returns false when stopped through the dialogue. The file is replaced
// only once whole: a stop or an error leaves the old one as it was.
// Throws ErreurES when the file cannot be written.
bool ExporteSvr(Base& b, const Selection& sel, const Parametres& p, SystemeFichiers& fs,
                const std::string& chemin, const DialogueEchange& d = {});

// What a reader did.
struct BilanSvr {
    std::uint32_t personnes = 0, mariages = 0, documents = 0, evenements = 0;
    std::uint32_t rubriquesNouvelles = 0;
    std::uint32_t rubriquesPerdues = 0; // beyond the 50 of a base
    std::uint32_t bouclesRompues = 0;   // parent links dropped: a person his own ancestor
};

// Reads `chemin` into the open base `b`, new and empty, keeping the
// file's numbers. The [INI] values go to section "Defaut" of `reglages`.
// The base is committed at the end. A file that ends early, a damaged one
// or a stop leave the base committed with every record read whole, and
// throw ErreurLecture.
BilanSvr LitSvrNouvelleBase(Base& b, SystemeFichiers& fs, const std::string& chemin,
                            Reglages& reglages, const DialogueEchange& d = {});

// Reads `chemin` into the open base `b`: numbers shifted, rubrics merged
// (translated for files of version 97.2 and before), new keywords indexed.
// Asks kQuestionRefaireMots when new rubrics were made. Same failures as
// LitSvrNouvelleBase.
BilanSvr IntegreSvr(Base& b, SystemeFichiers& fs, const std::string& chemin,
                    const DialogueEchange& d = {});

// Whether a banner counts as that of a version after 97.2: the banner in
// capitals, less its last character, compares above "[SYLVANE VERSION 97.2"
// as text (so "2001.0" does not).
bool VersionRecente(const std::string& banniere);

} // namespace sylvane
