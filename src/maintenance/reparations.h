// Repair commands of the main window that mend a whole base after a change
// of conventions. They walk the person sort table and write through the
// ordinary stores, so the journal and the next commit protect them.
#pragma once

#include "maintenance/interaction.h"
#include "store/base.h"

#include <string>

namespace sylvane {

// Names rewritten in the case chosen by the settings "Conversion nom" and
// "Conversion prénom" ("1" capitals, "2" name capitals), the keyword marks
// of the notes following. Returns the number of persons changed.
std::size_t MnuRePMinMaj(Base& b, const Interaction& io);

// The first line of every note rebuilt from the name and the first names.
// Asks message 920 (OK/Cancel) when the name or first-name rubric has a
// keyword list; returns the number of notes changed, or -1 when cancelled.
long MnuRepPrenom(Base& b, const Interaction& io);

// The check that opens the search for double marriages: message 1338 when
// the rubric of names ("|") has no keyword list, else 0 with the list loaded
// and the count text for the merge form.
struct DoublonsMariage {
    int message = 0;
    std::string liste;  // packed keyword entry numbers of the rubric
    std::string compte; // "1/" and the highest marriage number
};
DoublonsMariage MnuDoublonMariage(Base& b);

// A menu entry kept from an earlier version; it does nothing.
inline void MnuSylvane97() {}

// A keyword token of a note replaced where it stands whole behind its
// symbol: followed by a blank, a CR or the end of the text.
std::string RemplaceJeton(const std::string& note, char symbole, const std::string& ancien,
                          const std::string& nouveau);

} // namespace sylvane
