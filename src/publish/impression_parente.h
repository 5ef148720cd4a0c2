// Plain lines on printed pages: the branch outlines print their open
// lines this way, each page under the page head and the caption.
#pragma once

#include "publish/impression.h"

#include <string>
#include <vector>

namespace sylvane {

// The lines at 10 points under `titre`, a new page when the next line
// would pass the bottom; a line too long for the width wraps. The stop of the options is polled at
// each line. Vide for no line: nothing is drawn.
FinRapport ImprimeLignes(Base& b, Surface& s, const std::string& titre,
                         const std::vector<std::string>& lignes, const OptionsImpression& o);

} // namespace sylvane
