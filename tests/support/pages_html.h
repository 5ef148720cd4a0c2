// Checks over a folder of HTML pages: every link to a page of the folder
// lands on a file and an anchor that exist, and the structural tags of
// each page open and close in order.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace sylvane::test {

// The pages by file name (no folder).
using Pages = std::map<std::string, std::string>;

// The links that lead nowhere: "page -> target#anchor". Links outside the
// folder (mailto:, http:, pictures) are not followed.
std::vector<std::string> LiensCasses(const Pages& pages);

// The faults of the tag structure of one page: a closing tag that closes
// nothing open, or one left open at the end. Inline tags (A, B, I, U,
// alignment) and empty ones (BR, META, LINK, FRAME, IMG) are not counted.
std::vector<std::string> FautesBalises(const std::string& page);

} // namespace sylvane::test
