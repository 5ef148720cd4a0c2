#include "kinship/lignes.h"

#include "text/conversion.h"
#include "text/messages.h"

#include <algorithm>

namespace sylvane {
namespace {

// Base and message texts on their way out.
std::string Sortie(const std::string& texte, FormeLigne forme) {
    return forme == FormeLigne::Texte ? texte : Conv_AnsiVersHtml(texte);
}

// A sex template ("father of &1") with the name, or the link to its page,
// in the place of "&1".
std::string Modele(int message, Base& base, std::uint32_t personne, FormeLigne forme) {
    const std::string modele = Message(message);
    std::string nom = Sortie(base.NomComplet(personne), forme);
    if (forme == FormeLigne::HtmlSite)
        nom = "<A HREF=\"i" + std::to_string(personne) + ".htm\" TARGET=\"M\">" + nom + "</A>";
    else if (forme == FormeLigne::HtmlPage)
        nom = "<A HREF=\"#i" + std::to_string(personne) + "\">" + nom + "</A>";
    std::string r;
    std::size_t debut = 0;
    for (std::size_t p; (p = modele.find("&1", debut)) != std::string::npos; debut = p + 2)
        r += Sortie(modele.substr(debut, p - debut), forme) + nom;
    return r + Sortie(modele.substr(debut), forme);
}

std::string Generation(std::int16_t generation, FormeLigne forme) {
    return Sortie(Message(760), forme) + std::to_string(generation);
}

std::string Sosa(const Occurrence& o) {
    return std::to_string(o.numero) + (o.generation >= 31 ? "+" : "");
}

} // namespace

std::string LigneAscendant(const ListeParente& liste, Base& base, std::int32_t n,
                           FormeLigne forme) {
    std::vector<Occurrence> occ = liste.OccurrencesEntree(n);
    if (occ.empty()) return {};
    if (occ.front().lien == 0)
        return Generation(occ.front().generation, forme) + " - " + Sortie(Message(759), forme) +
               Sosa(occ.front()) + "#";
    std::stable_sort(occ.begin(), occ.end(), [](const Occurrence& a, const Occurrence& b) {
        return a.generation != b.generation ? a.generation < b.generation : a.numero < b.numero;
    });
    const int modele = base.LitSexe(liste.ListePersonne(n)) == "H" ? 761 : 762;
    struct Segment {
        const Occurrence* premiere;
        std::string numeros;
    };
    std::vector<Segment> segments;
    for (const Occurrence& o : occ) {
        auto meme = std::find_if(segments.begin(), segments.end(), [&](const Segment& s) {
            return s.premiere->generation == o.generation && s.premiere->lien == o.lien;
        });
        if (meme != segments.end())
            meme->numeros += " " + Sosa(o);
        else
            segments.push_back({&o, Sosa(o)});
    }
    std::string r;
    for (const Segment& s : segments) {
        if (!r.empty()) r += '\0';
        r += Generation(s.premiere->generation, forme) + " - " + Sortie(Message(759), forme) +
             s.numeros + " - " + Modele(modele, base, s.premiere->lien, forme);
    }
    return r;
}

std::string LigneDescendant(const ListeParente& liste, Base& base, std::int32_t n,
                            FormeLigne forme) {
    std::vector<Occurrence> occ = liste.OccurrencesEntree(n);
    if (occ.empty()) return {};
    const Occurrence premiere = occ.front();
    if (premiere.lien == 0) return Generation(premiere.generation, forme) + "#";
    // Further occurrences through the same parent at the same generation
    // stand for the first one and count its repeats.
    int repetitions = 1;
    for (auto o = occ.begin() + 1; o != occ.end(); ++o)
        if (o->lien == premiere.lien && o->generation == premiere.generation) ++repetitions;
    if (repetitions > 1) occ.erase(occ.begin());
    std::stable_sort(occ.begin(), occ.end(), [&](const Occurrence& a, const Occurrence& b) {
        if (a.generation != b.generation) return a.generation < b.generation;
        return liste.NumerosDescendance(a.numero) < liste.NumerosDescendance(b.numero);
    });
    const std::string sexe = base.LitSexe(liste.ListePersonne(n));
    const int modele = sexe == "H" ? 764 : sexe == "F" ? 765 : 766;
    std::string r;
    for (const Occurrence& o : occ) {
        r += Generation(o.generation, forme) + " - " +
             Sortie(liste.NumerosDescendance(o.numero), forme) + " - " +
             Modele(modele, base, o.lien, forme);
        if (repetitions > 1)
            r += " - " + std::to_string(repetitions) + " " + Sortie(Message(917), forme);
        r += "#";
    }
    return r;
}

} // namespace sylvane
