// Conversion between the program's internal Windows-1252 text and UTF-8, at
// the edges only: the command line, the interface, source literals.
#pragma once

#include <string>
#include <string_view>

namespace sylvane {

// Windows-1252 bytes to UTF-8. The five bytes that Windows-1252 leaves
// undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D) pass as the C1 controls of the
// same value, so that the conversion back is exact.
std::string AnsiVersUtf8(std::string_view ansi);

// UTF-8 to Windows-1252. A character that Windows-1252 cannot hold becomes
// its closest Latin form ("ł" gives "l", "ő" gives "o", "œ" stays "œ"), and
// "?" when it has none; `remplaces`, when given, counts those characters.
// Malformed UTF-8 bytes are taken as Windows-1252 bytes of the same value.
std::string Utf8VersAnsi(std::string_view utf8, std::size_t* remplaces = nullptr);

// Encodes one code point as UTF-8.
void AjouteUtf8(std::string& out, char32_t cp);

} // namespace sylvane
