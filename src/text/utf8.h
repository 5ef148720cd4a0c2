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

// UTF-8 to Windows-1252. No character is lost without a trace:
// - a character that Windows-1252 cannot hold becomes its closest Latin
//   form ("ł" gives "l", "ő" gives "o", "ﬁ" gives "fi", a thin space a
//   blank; "œ" stays "œ"), and "?" when it has none (Greek, Cyrillic, CJK,
//   emoji ...);
// - a combining mark (U+0300 to U+036F) is composed with the letter before
//   it where Windows-1252 has the composed letter (decomposed "é" gives
//   "é"); otherwise it is dropped, leaving the bare letter as the closest
//   form;
// - a byte-order mark at the very start is dropped, as it is no character.
// `remplaces`, when given, counts every character replaced or dropped (the
// opening byte-order mark and exact compositions excepted).
// Malformed UTF-8 bytes are taken as Windows-1252 bytes of the same value.
std::string Utf8VersAnsi(std::string_view utf8, std::size_t* remplaces = nullptr);

// Characters Windows-1252 can't hold are kept in the program's text as
// numeric character references ("&#1047;" for "З"), which any Windows-1252
// text, a base, a .svr file can carry. This is the conversion of text read
// from outside (an import, a field typed in): as Utf8VersAnsi, but what it
// would replace becomes its reference; a letter and a combining mark that
// Unicode composes become the reference of the composed letter ("n" and
// U+0301 give "&#324;"). An "&" followed by "#" is written "&#38;", so that
// a text that looks like a reference comes back as it was typed.
std::string Utf8VersAnsiRef(std::string_view utf8);
// The text as the user sees it: Windows-1252 to UTF-8 with every reference
// "&#N;" given back as its character. For the windows, the command line,
// the UTF-8 GEDCOM export.
std::string AnsiRefVersUtf8(std::string_view ansi);
// Whether the text holds a character reference.
bool ContientReference(std::string_view ansi);
// The first ";" from `debut` that does not end a character reference, npos
// when none: the separator of fields joined by ";" (a person's identity),
// which a reference "&#1047;" must not split. (A field of the earlier
// program ending in "&#" and digits would join the next one; no name or
// date does.)
std::size_t PointVirgule(std::string_view texte, std::size_t debut = 0);

// Encodes one code point as UTF-8.
void AjouteUtf8(std::string& out, char32_t cp);

// File names. A path inside the program is Windows-1252 text like any other;
// the system's names are bytes, UTF-8 as a rule. So that every name the
// system accepts can be reached and two names never meet in one:
// - a character Windows-1252 can't hold is kept as its numeric character
//   reference ("&#1047;" for "З");
// - a byte that is not UTF-8 is kept as the reference of U+DC00 + byte,
//   which no valid name holds;
// - an "&" followed by "#" is written "&#38;".
// CheminSysteme(CheminInterne(x)) == x for any bytes x.
std::string CheminInterne(std::string_view systeme);
std::string CheminSysteme(std::string_view interne);

} // namespace sylvane
