// The edge between the program's Windows-1252 texts and Qt's strings.
#pragma once

#include <QString>

#include <string>

namespace sylvane {

// A Windows-1252 text of the base or of a message as Qt shows it.
QString Q(const std::string& ansi);
// What the user typed, as the program keeps it.
std::string A(const QString& texte);
// Message n for a caption (the "&" of a menu key stays as it is).
QString M(int n);
// Message n for a plain label: "&&" keeps a real ampersand, and "&1" is
// replaced by `nom`.
QString MT(int n, const QString& nom = {});
// A path chosen in a dialog or given on the command line, as the program
// keeps paths, and back.
std::string CheminInterne(const QString& chemin);
QString CheminQt(const std::string& chemin);

} // namespace sylvane
