// The PDF writer as the command line sees it. The command line and the
// core have no toolkit; the PDF pages are drawn by Qt's painter. A program
// built with Qt links a maker of this writer that sets itself here before
// main; without one, the PDF output is refused.
#pragma once

#include "charts/pages.h"
#include "charts/surface.h"
#include "store/fichier.h"

#include <functional>
#include <memory>
#include <string>

namespace sylvane {

class ImprimantePdf {
  public:
    virtual ~ImprimantePdf() = default;
    // The metric the chart must be laid out with: that of the PDF's font.
    virtual const Metrique& Mesure() const = 0;
    // Every sheet of the template as a page of the PDF `cible`, written
    // whole or not at all.
    virtual FinPages Ecrit(SystemeFichiers& fs, const std::string& gabarit,
                           const std::string& cible, const OptionsPages& o) = 0;
    // The pages `dessine` draws on the PDF's surface, each of `papier`, as
    // the PDF `cible`: kept only when `dessine` answers Termine.
    virtual FinPages EcritPages(SystemeFichiers& fs, const std::string& cible,
                                const Papier& papier,
                                const std::function<FinPages(Surface&)>& dessine) = 0;
};

using FabriqueImprimantePdf = std::unique_ptr<ImprimantePdf> (*)();
// The maker of the program's PDF writer; null when it has none.
FabriqueImprimantePdf& FabriquePdf();

} // namespace sylvane
