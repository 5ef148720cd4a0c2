// The Latin form of the characters a text holds as references: for the sort
// keys, the phonetic keys and the searches ("Зыков" sorts as "ZYKOV"), and
// for the exports in a character set that has no room for them.
#pragma once

#include <string>
#include <string_view>

namespace sylvane {

// Every character reference "&#N;" of a Windows-1252 text replaced by the
// Latin transliteration of its character (Windows-1252 letters; "?" for a
// character with none). A text without references comes back as it is.
std::string Translitere(std::string_view ansi);

} // namespace sylvane
