// The French phonetic key and the two name shapes made with the
// particle list. All text is Windows-1252 bytes.
//
// The key reproduces the original routine to the letter, quirks included:
// every "replace" touches only the first occurrence, and the "ST", "SN",
// "LN", "SM" rule takes its tail from the first T (N, M) of the whole name.
#pragma once

#include "text/mots.h"

#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

// True for the six vowels A, E, I, O, U, Y (capitals only, as the key works
// on folded text); every other character is a non-vowel.
bool Conv_EstVoyelle(char lettre);

// Consonant class of a letter (B, C, D, L, M, R, G, S, F), or '\0' for a
// character that carries no code.
char CodePhonetique(char lettre);

// The four-character key: "0000" for an empty name (no key).
std::string Conv_ClePhonetique(std::string_view nom);

// Whether two keys sound alike: equal, either one "0000", three positions in
// common once the first characters are coded, or one inserted character.
bool Conv_ClesVoisines(std::string_view cle1, std::string_view cle2);

// The name in small letters with capitals at the start of each word, and the
// particles of the list written as the list writes them. `genre` is 'N' for
// a surname, 'P' for a first name. The length never changes.
std::string Conv_NomPropre(std::string_view nom, char genre,
                           const std::vector<Particule>& particules = ParticulesParDefaut());

// Windows-1252 case changes, one byte at a time, as the old LCase / UCase.
char Minuscule(char c);
char Majuscule(char c);

} // namespace sylvane
