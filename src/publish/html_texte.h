// The text side of the HTML writers: the entity encoder every text of the
// base passes through on its way to a page, the rich text of the notes
// turned into tags, and the stylesheet of the three sex classes.
#pragma once

#include "text/parametres.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace sylvane {

// "©", "&", "<", ">" and the Latin letters as named entities. A character
// reference "&#N;" (a character outside Windows-1252, as the base stores
// it) passes as it is. "Ï" and "õ" have no entry and pass raw, and "ö"
// gives "&otilde;": pages of the earlier program read the same.
std::string EntiteHTML(std::string_view texte);

// A note (rich text or plain) as HTML: bold, underline and italic as
// <B>, <U>, <I>; each paragraph opened by <BR><LEFT>, <BR><RIGHT> or
// <BR><CENTER>. The text ends the table row it stands in ("</TD></TR>"),
// and the style tags still open are closed behind it.
std::string TexteRicheHTML(std::string_view texte);

// The colour of a stylesheet class: c is blue-green-red in 24 bits, the
// result the "RRGGBB" digits.
std::string CouleurHTML(std::int32_t c);

// The lines of "Sylvane.css" for the colours of the settings.
std::string FeuilleStyle(const Parametres& p);

} // namespace sylvane
