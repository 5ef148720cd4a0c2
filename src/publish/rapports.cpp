#include "publish/rapports.h"

#include "publish/contenu.h"
#include "publish/html_texte.h"
#include "text/messages.h"

namespace sylvane {
namespace {

std::string AvecNom(int message, const std::string& nom) {
    std::string m = Message(message);
    const std::size_t p = m.find("&1");
    return p == std::string::npos ? m + " " + nom : m.replace(p, 2, nom);
}

} // namespace

std::vector<std::string> SegmentsLignes(const std::string& lignes) {
    std::vector<std::string> r;
    std::string s;
    for (std::size_t i = 0; i < lignes.size(); ++i) {
        const char c = lignes[i];
        if (c == '\0' || (c == '#' && (i == 0 || (lignes[i - 1] != '&' && lignes[i - 1] != '"')))) {
            if (!s.empty()) r.push_back(s);
            s.clear();
        } else {
            s += c;
        }
    }
    if (!s.empty()) r.push_back(s);
    return r;
}

std::string TitreRapport(Base& b, GenreRapport genre, std::uint32_t personne) {
    const std::string nom = b.NomComplet(personne);
    switch (genre) {
    case GenreRapport::Ascendants: return AvecNom(575, nom);
    case GenreRapport::Descendants: return AvecNom(768, nom);
    case GenreRapport::Famille: return AvecNom(746, nom);
    default: return "Fiche de " + nom;
    }
}

std::vector<EntreeRapport> EntreesRapport(Base& b, ListeParente& liste, GenreRapport genre,
                                          std::uint32_t personne, int niveaux, FormeLigne forme) {
    std::vector<EntreeRapport> r;
    if (genre == GenreRapport::Ascendants || genre == GenreRapport::Descendants) {
        const bool desc = genre == GenreRapport::Descendants;
        std::int32_t nombre = 0;
        const bool fait = desc ? liste.ConstruitDescendants(personne, nombre, niveaux, TriParcours)
                               : liste.ConstruitAscendants(personne, nombre, niveaux, TriParcours);
        if (!fait) return r;
        r.reserve(static_cast<std::size_t>(nombre));
        for (std::int32_t n = 1; n <= nombre; ++n)
            r.push_back({liste.ListePersonne(n),
                         desc ? LigneDescendant(liste, b, n, forme)
                              : LigneAscendant(liste, b, n, forme),
                         liste.ListeLien(n)});
        return r;
    }
    r.push_back({personne, "#", 0});
    if (genre == GenreRapport::Fiche) return r;
    const FichePersonne f = LitFichePersonne(b, personne);
    auto ligne = [forme](int message) {
        return "#" + (forme == FormeLigne::Texte ? Message(message) : EntiteHTML(Message(message)));
    };
    if (f.pere.personne) r.push_back({f.pere.personne, ligne(681), personne});
    if (f.mere.personne) r.push_back({f.mere.personne, ligne(683), personne});
    for (const MariageFiche& m : f.mariages)
        if (m.conjoint.personne)
            r.push_back({m.conjoint.personne,
                         ligne(b.LitSexe(m.conjoint.personne) == "H" ? 747 : 748), personne});
    for (const Mention& e : f.enfants) r.push_back({e.personne, ligne(750), personne});
    return r;
}

} // namespace sylvane
