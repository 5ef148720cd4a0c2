#include "store/temoins.h"

#include "text/parametres.h"

namespace sylvane {

const GenreEvt* TableTemoins::Genre(std::string_view tag) const {
    for (const auto& g : genres)
        if (g.tag == tag) return &g;
    return nullptr;
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
