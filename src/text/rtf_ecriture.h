// The writer of rich text for the notes editor: the runs of the reader of
// text/rtf.h written back as one "{\rtf1" group in the ANSI code page
// (Windows-1252), so that reading what was written gives the same runs.
#pragma once

#include "text/rtf.h"

#include <string>
#include <vector>

namespace sylvane {

// One "{\rtf1" group: a font table of the runs' fonts, alignment as
// paragraph settings, each styled run in a group of its own; bytes outside
// plain ASCII as "\'hh", paragraph ends ("\r\n") as "\par".
std::string EcritRtf(const std::vector<SegmentRtf>& segments);

// Whether any run is bold, italic, underlined, aligned other than left, or
// has a font or a size.
bool AvecMiseEnForme(const std::vector<SegmentRtf>& segments);

// What a note stores for these runs: the rich text when they carry any
// formatting, else their plain text.
std::string TexteNoteRtf(const std::vector<SegmentRtf>& segments);

} // namespace sylvane
