// A base that has gone through many random edits of every kind, with its
// family links kept sound on both sides as the forms keep them; and a walk
// over a base file that marks every byte reachable from its header.
#pragma once

#include "store/base.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace sylvane::test {

// `etapes` random edits from a fixed seed: persons of each sex, marriages
// of a man and a woman, children of both, links, notes with keywords,
// events with roles, documents, and deletions.
void EditionsAleatoires(Base& b, int etapes, std::uint32_t graine = 1);

// Byte ranges [debut, fin) (1-based) reached from the header of a base file;
// empty ranges are dropped, overlapping ones merged.
std::vector<std::pair<std::uint64_t, std::uint64_t>> OctetsAtteints(const std::string& fichier);

} // namespace sylvane::test
