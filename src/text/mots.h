// Folding and name shapes used wherever names are compared or sorted.
// All text is Windows-1252 bytes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

// A particle of the settings ("de", "la", "van" ...), with the two flags
// saying whether it applies to surnames and to first names.
struct Particule {
    std::string texte;
    bool nom = true;
    bool prenom = false;
};

// The list used when the settings hold none: every entry flagged for
// surnames only.
const std::vector<Particule>& ParticulesParDefaut();

// Capitals without accents, with the same length as the input: the
// comparison key everywhere.
std::string CleMot(std::string_view s);
// Fold of one byte, as CleMot does it.
char CleCar(char c);

// Trims, then every blank becomes ".".
std::string VersPoints(std::string_view s);
// Every "." becomes a blank, then trims.
std::string DesPoints(std::string_view s);

// The surname as it is sorted. `actif` is header field 103 of the base: the
// particles are set aside only when it is on.
std::string SansParticule(std::string_view nom, const std::vector<Particule>& particules,
                          bool actif);

// Trims blanks at both ends (only the blank, as the old string functions did).
std::string Trim(std::string_view s);
std::string TrimDroite(std::string_view s);
std::string TrimGauche(std::string_view s);

} // namespace sylvane
