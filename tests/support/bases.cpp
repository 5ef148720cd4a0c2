#include "support/bases.h"

#include <sstream>

namespace sylvane::test {

Etat Capture(Base& b) {
    Etat e;
    e.nbPersonnes = b.Tete().nbPersonnes;
    e.maxPersonne = b.Tete().maxPersonne;
    e.maxMariage = b.Tete().maxMariage;
    for (std::size_t i = 1; i <= b.TablePersonnes().taille(); ++i) e.tri.push_back(b.TriFiche(i));
    for (std::uint32_t n = 1; n <= e.maxPersonne; ++n) {
        Etat::Personne p;
        p.sexe = b.LitSexe(n);
        p.pere = b.LitPere(n);
        p.mere = b.LitMere(n);
        p.anNaiss = b.LitAnNaiss(n);
        p.anDeces = b.LitAnDeces(n);
        p.identite = b.LitIdentite(n);
        p.note = b.LitNote(n);
        p.mariages = b.ListeMariages(n);
        p.enfants = b.ListeEnfants(n);
        // Pairs hold file positions of their texts: compare the texts.
        for (int i = 1; b.LienNo(n, i); ++i)
            p.liens += std::to_string(b.LienNo(n, i)) + ":" + b.TexteLienBrutNo(n, i) + "|";
        for (int i = 1; b.EvtNo(n, i); ++i)
            p.evts += std::to_string(b.EvtNo(n, i)) + ":" + b.RoleEvtNo(n, i) + "|";
        p.docs = b.ListeDocs(n);
        e.personnes.push_back(p);
    }
    for (std::uint32_t m = 1; m <= e.maxMariage; ++m) {
        Etat::Mariage x;
        x.mari = b.LitMari(m);
        x.femme = b.LitFemme(m);
        x.an = b.LitAnMariage(m);
        x.anFin = b.LitAnFin(m);
        x.note = b.LitNoteMariage(m);
        e.mariages.push_back(x);
    }
    return e;
}

std::string Difference(const Etat& a, const Etat& b) {
    std::ostringstream o;
    if (a.nbPersonnes != b.nbPersonnes || a.maxPersonne != b.maxPersonne ||
        a.maxMariage != b.maxMariage)
        o << "counts " << a.nbPersonnes << "/" << a.maxPersonne << "/" << a.maxMariage << " vs "
          << b.nbPersonnes << "/" << b.maxPersonne << "/" << b.maxMariage << "; ";
    if (a.tri != b.tri) o << "sort table differs; ";
    for (std::size_t i = 0; i < std::min(a.personnes.size(), b.personnes.size()); ++i)
        if (!(a.personnes[i] == b.personnes[i])) {
            o << "person " << i + 1 << " differs (" << a.personnes[i].identite << " / "
              << b.personnes[i].identite << "); ";
            break;
        }
    for (std::size_t i = 0; i < std::min(a.mariages.size(), b.mariages.size()); ++i)
        if (!(a.mariages[i] == b.mariages[i])) {
            o << "marriage " << i + 1 << " differs; ";
            break;
        }
    return o.str();
}

void Etape(Base& b, int k) {
    // A small linear congruential generator seeded by k alone.
    std::uint32_t x = static_cast<std::uint32_t>(k) * 2654435761u + 12345u;
    auto tire = [&x](std::uint32_t n) {
        x = x * 1664525u + 1013904223u;
        return n ? (x >> 8) % n : 0;
    };
    std::string an = std::to_string(1600 + tire(300));
    std::string nom = "Nom" + std::to_string(tire(40));
    auto n = b.CreePersonne(nom, "Prenom" + std::to_string(k), "", "HFI"[tire(3)], an,
                            "12/03/" + an);
    if (n > 1 && tire(3)) {
        std::uint32_t pere = 1 + tire(n - 1);
        b.EcritPere(n, pere);
        b.MajEnfants(pere, n, 'A');
    }
    if (n > 2 && tire(4) == 0) {
        std::uint32_t autre = 1 + tire(n - 1);
        auto m = b.CreeMariage(n, autre, an);
        b.EcritNoteMariage(m, "Mariage " + std::to_string(k));
    }
    if (n > 3) {
        // Rewrite an older person: its block is overwritten in place.
        std::uint32_t vieux = 1 + tire(n - 1);
        b.EcritAnDeces(vieux, std::to_string(1700 + tire(200)));
        b.EcritNote(vieux, "Note " + std::to_string(k) + " \r\n" + std::string(tire(50), 'x'));
        b.MajLiens(vieux, n, "WITN", 'A');
    }
    if (n > 50 && tire(10) == 0) {
        // Delete a childless, unlinked recent person when there is one.
        b.SupprimePersonne(n);
    }
}

void Construit(SystemeFichiers& fs, const Parametres& p, const std::string& chemin, int k) {
    Base b(fs, p);
    b.Nouvelle(chemin);
    for (int i = 1; i <= k; ++i) Etape(b, i);
    b.FermeBase();
}

} // namespace sylvane::test
