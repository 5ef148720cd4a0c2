#include "publish/impression_parente.h"

namespace sylvane {

FinRapport ImprimeLignes(Base& b, Surface& s, const std::string& titre,
                         const std::vector<std::string>& lignes, const OptionsImpression& o) {
    if (lignes.empty()) return FinRapport::Vide;
    Imprimante imp(b, s, o);
    imp.NouvellePage(titre);
    for (const std::string& l : lignes) {
        if (o.arret && o.arret()) {
            imp.FinImpression();
            return FinRapport::Arrete;
        }
        Imprimante::Paragraphe p;
        p.morceaux.push_back(Morceau{l, false, false, 10});
        imp.Imprime({p});
    }
    imp.FinImpression();
    return FinRapport::Termine;
}

} // namespace sylvane
