// Numbered messages of the interface language. Every word the program shows
// comes from here; a missing message is the empty text.
#pragma once

#include <map>
#include <string>

namespace sylvane {

// Text of message n in the current language (Windows-1252), "" if missing.
std::string Message(int n);

// Replaces the messages of the process by a fixed table (tests, and a
// fallback when no message file can be read).
void DefinitMessages(std::map<int, std::string> table);

} // namespace sylvane
