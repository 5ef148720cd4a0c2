#include "store/temoins.h"

#include "text/parametres.h"

namespace sylvane {

const GenreEvt* TableTemoins::Genre(std::string_view tag) const {
    for (const auto& g : genres)
        if (g.tag == tag) return &g;
    return nullptr;
}

std::vector<std::string> GenreEvt::RolesPrincipaux(char sexe) const {
    std::vector<std::string> r;
    for (const std::string& cellule : roles) {
        if (cellule.empty()) break;
        if (cellule.size() < 3 || cellule[0] != 'M' || (cellule[1] != sexe && cellule[1] != ' '))
            continue;
        r.push_back(cellule.substr(2));
    }
    return r;
}

void TableTemoins::Ajoute(std::string_view tag) {
    if (tag.empty() || Genre(tag)) return;
    genres.push_back(GenreEvt{std::string(tag), {}});
}

TableTemoins TableTemoinsDe(const std::vector<Temoin>& lignes) {
    TableTemoins t;
    for (const auto& l : lignes) t.genres.push_back(GenreEvt{l.evenement, l.roles});
    return t;
}

} // namespace sylvane
