// The tag vocabulary: stored texts hold four-letter tags, the user sees
// their words in the current language.
#pragma once

#include <string>
#include <string_view>

namespace sylvane {

// Word of a tag; a tag not in the table passes unchanged.
std::string Conv_LibelleTag(std::string_view tag);
// Tag of a word; a known tag or an unknown text passes unchanged.
std::string Conv_TagLibelle(std::string_view texte);

} // namespace sylvane
