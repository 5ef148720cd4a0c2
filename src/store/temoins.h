// The table of event kinds: for each event tag its roles. A role is a text
// of three characters or more: "M" for the main role or a blank, the sex it
// is for ("H", "F" or a blank for any), then the role's tag.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sylvane {

struct GenreEvt {
    std::string tag;
    std::vector<std::string> roles; // at most 19
    // The main roles a person of this sex ('H', 'F', other) takes in an
    // event of this kind, in table order; none: the kind has no place for
    // the person.
    std::vector<std::string> RolesPrincipaux(char sexe) const;
};

struct TableTemoins {
    std::vector<GenreEvt> genres; // at most 26 rows as shipped; grows with new tags
    // The row of a tag, nullptr when none.
    const GenreEvt* Genre(std::string_view tag) const;
    // Adds a row with no roles for an unknown tag.
    void Ajoute(std::string_view tag);
};

struct Temoin;
// The table of the settings (the defaults of a new installation when the
// settings hold none).
TableTemoins TableTemoinsDe(const std::vector<Temoin>& lignes);

} // namespace sylvane
