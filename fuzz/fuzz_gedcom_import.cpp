// Fuzz target of the GEDCOM import and export: any bytes imported into a
// new base, then the base exported in each character set, without a crash.
#include "exchange/gedcom_export.h"
#include "exchange/gedcom_import.h"
#include "store/base.h"
#include "store/fichier_memoire.h"

#include <cstdint>

using namespace sylvane;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* donnees, std::size_t taille) {
    SystemeMemoire fs;
    ecrireTout(fs, "/f.ged", std::string_view(reinterpret_cast<const char*>(donnees), taille));
    Parametres p;
    Base b(fs, p);
    try {
        const GedcomLu g = PrepareGedcom(fs, "/f.ged");
        b.Nouvelle("/b.sv2");
        OptionsImport o;
        o.parametres = &p;
        ImporteGedcom(b, g, o);
        for (char jeu : {'1', '2', '0', '3', JeuUtf8}) {
            OptionsExport e;
            e.jeu = jeu;
            e.date = "1 JAN 2000";
            e.liens = e.evenements = e.documents = true;
            ExporteGedcom(b, fs, "/sortie.ged", e);
        }
    } catch (const ErreurES&) {
    }
    b.Abandonne();
    return 0;
}
