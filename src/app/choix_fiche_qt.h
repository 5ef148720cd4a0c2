// The modal forms of the person sheet as Qt dialogs: creation, the four
// candidate pickers and the notes editor.
#pragma once

#include "ui/choix_fiche.h"

namespace sylvane {

struct ContexteQt;

// The dialogs working for the main window of `c`; one object per context,
// alive as long as the program.
ChoixFiche& ChoixFicheQt(ContexteQt& c);

} // namespace sylvane
