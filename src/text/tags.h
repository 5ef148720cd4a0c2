// The tag vocabulary: stored texts hold four-letter tags, the user sees
// their words in the current language.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

// Word of a tag; a tag not in the table passes unchanged.
std::string Conv_LibelleTag(std::string_view tag);
// Tag of a word; a known tag or an unknown text passes unchanged.
std::string Conv_TagLibelle(std::string_view texte);

// Every tag of the table, in table order (the twelve months among them).
std::vector<std::string> TagsConnus();
// The message number of a tag's word, 0 for a tag not in the table.
int MessageDuTag(std::string_view tag);

} // namespace sylvane
