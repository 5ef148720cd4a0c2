// Character conversion: the base's Windows-1252 text to and from
// the encodings a GEDCOM file may name, and HTML entities. The departures
// from the standards that the Part requires are kept; they are listed at
// each function.
#pragma once

#include <string>
#include <string_view>

namespace sylvane {

// `JeuCaracteres`: the encoding of the GEDCOM file at hand. '1' ANSI
// (Windows-1252, no change), '2' ANSEL, '0' "ASCII" (IBM code page 437,
// high bytes kept), '3' HTML entities. Starts as '1'.
char JeuCaracteres();
void DefinitJeuCaracteres(char jeu);

// Base text to the file's encoding.
std::string Conv_DepuisAnsi(std::string_view texte, char jeu = JeuCaracteres());
// File text to base text. Every "#" first becomes "*", since "#" ends a
// text in the base. An unknown `jeu` converts nothing else.
std::string Conv_VersAnsi(std::string_view texte, char jeu = JeuCaracteres());

// Code page 437. Bytes below 128 pass. Departures: "í" goes out unchanged
// (its code 161 is tested against "ù"); "ª" too (code 166 is tested against
// "é"); "¦", "´" and "’" are written as 179, the box line. A character with
// no place in the table passes unchanged, in both directions. On reading,
// 161 gives "ù", 166 gives "é" and 179 gives "¦".
std::string Conv_AnsiVers437(std::string_view texte);
std::string Conv_437VersAnsi(std::string_view texte);

// ANSEL. An accented letter is written as its combining mark and the bare
// letter; the one-byte codes and the spacing marks (mark and blank) follow
// the Part's table, × and ÷ on the codes of Ł and ł included. A character
// outside the table passes unchanged, so ¢ ¤ ¥ ¦ ® ± ² ³ µ ¹ come back as
// the table's letters of those codes.
std::string Conv_AnsiVersAnsel(std::string_view texte);
// A mark byte (224 to 254) waits for the next byte: a letter with a composed
// form for that mark gives the composed letter; any other byte is written
// alone and the mark is lost, as is a mark at the end of the text. A mark
// followed by a mark: the first is lost, the second waits.
std::string Conv_AnselVersAnsi(std::string_view texte);
// The same, keeping every character: a mark before a letter that has no
// composed form for it in Windows-1252 makes with it the reference of the
// letter Unicode composes ("&#7843;" for a hook above "a"), or stays beside
// the letter as its own reference. A mark that Unicode has not, one before
// another mark or a sign, and one ending the text are lost, as above.
std::string Conv_AnselVersAnsiRef(std::string_view texte);
// Whether Conv_AnselVersAnsiRef keeps the mark byte `marque` before the
// byte `suivant`.
bool MarqueAnselGardee(unsigned char marque, unsigned char suivant);
// The Unicode combining mark of an ANSEL mark byte (224 to 254), "?" for
// the marks Unicode has not; 0 for any other byte.
char32_t MarqueAnsel(unsigned char octet);

// The named entities of HTML 2.0: "&copy;", "&amp;", "&lt;", "&gt;" and the
// Latin-1 letters "&Agrave;" to "&yuml;". Departures: "Ï" and "õ" stay as
// they are, "ö" is written "&otilde;".
std::string Conv_AnsiVersHtml(std::string_view texte);
// 85 entities tried in order, each replacing all its occurrences; "&amp;"
// stands second, so "&amp;lt;" gives "<". No "&Iuml;", no "&ouml;".
std::string Conv_HtmlVersAnsi(std::string_view texte);

} // namespace sylvane
