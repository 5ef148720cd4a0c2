// Family trees built in an in-memory base, for the kinship tests.
#pragma once

#include "store/base.h"
#include "store/fichier_memoire.h"
#include "text/parametres.h"

#include <cstdint>
#include <memory>
#include <string>

namespace sylvane::test {

struct Arbre {
    SystemeMemoire fs;
    Parametres params;
    std::unique_ptr<Base> base;

    Arbre() {
        params.dossierTravail = "/travail";
        base = std::make_unique<Base>(fs, params);
        base->Nouvelle("/arbre.sv2");
    }
    Base& b() { return *base; }

    std::uint32_t Personne(const std::string& nom, const std::string& prenom, char sexe = 'H',
                           const std::string& an = "") {
        return base->CreePersonne(nom, prenom, "", sexe, an);
    }
    // A child with its links on both sides.
    std::uint32_t Enfant(std::uint32_t pere, std::uint32_t mere, const std::string& prenom,
                         char sexe = 'H', const std::string& an = "") {
        const std::uint32_t c = Personne("Enfant", prenom, sexe, an);
        Parents(c, pere, mere);
        return c;
    }
    void Parents(std::uint32_t c, std::uint32_t pere, std::uint32_t mere) {
        if (pere) {
            base->EcritPere(c, pere);
            base->MajEnfants(pere, c, 'A');
        }
        if (mere) {
            base->EcritMere(c, mere);
            base->MajEnfants(mere, c, 'A');
        }
    }
};

} // namespace sylvane::test
