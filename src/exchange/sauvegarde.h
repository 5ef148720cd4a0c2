// Backup, restore and integration: the three commands that move a whole
// base. A backup is a plain copy of the base file, nothing more.
#pragma once

#include "exchange/echange.h"

#include <string>

namespace sylvane {

class Base;
class SystemeFichiers;

inline constexpr const char* kFiltreSauvegarde = "Sauve Sylvane (*.sav) |*.sav|";
// The restore dialog's filter: the word GEDCOM in it is an old slip that
// users know; it stays.
inline constexpr const char* kFiltreRestauration = "Sauve GEDCOM (*.sav) |*.sav|";
inline constexpr int kTitreSauvegarde = 41;
inline constexpr int kTitreRestauration = 836;
inline constexpr int kTitreIntegration = 541;
// The overwrite question of a restore: messages 537, 538 and "?".
inline constexpr int kExisteDeja = 537;
inline constexpr int kVeutRemplacer = 538;

// A path with its last three characters replaced ("sav", "sv2").
std::string ChangeFin(const std::string& chemin, const char* fin);

// Commits the open base, then copies its file to `copie` (an existing
// copy is replaced whole, never left half-written). Throws ErreurES.
void Sauvegarde(Base& b, SystemeFichiers& fs, const std::string& copie);

// Puts the copy `sav` back as the base of the same name with "sv2". When
// that base exists, asks kVeutRemplacer (537, 538, "?"); No keeps it and
// returns false. Otherwise closes `b` when open, copies the file (the old
// base stays whole until the copy is complete), deletes a journal left
// beside the target and opens the restored base in `b`.
bool Restauration(Base& b, SystemeFichiers& fs, const std::string& sav,
                  const DialogueEchange& d = {});


} // namespace sylvane
