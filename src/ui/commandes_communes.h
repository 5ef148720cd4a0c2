// What the exchange and maintenance commands of the main window share: the
// core's failures shown in a box instead of ending the program, and the
// core's dialogues answered by the boxes and the progress panel.
#pragma once

#include "exchange/echange.h"
#include "maintenance/interaction.h"
#include "ui/services.h"

#include <functional>
#include <string>

namespace sylvane {

// Runs `action`; a file error (ErreurES), a damaged file (ErreurLecture) or
// any other failure of the core is shown in a box. True when it ran through.
bool Protege(Boites& boites, const std::function<void()>& action);

// The exchange dialogue over the boxes (Yes/No questions, texts), the
// panel of `op` (progress, stop) and the file layer (a text file shown).
DialogueEchange DialogueUi(Boites& boites, OperationLongue& op, SystemeFichiers& fs);

// The panel's Interaction, where the question `message` was already asked
// before the panel came up and is answered `reponse` without a second box.
Interaction InteractionRepondue(OperationLongue& op, int message, Reponse reponse);

// The progress of the GEDCOM reader and writers: a phase and a count.
std::function<void(const std::string& phase, std::size_t fait)> ProgresPhase(OperationLongue& op);

// Message of a box whose whole text is its "&1".
inline constexpr int kMessageLibre = 3400;

} // namespace sylvane
