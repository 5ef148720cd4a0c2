// Loops of ancestry: a base whose parent links make a person his own
// ancestor would send every walk up or down the tree round for ever. The
// readers of outside files break them as they come in.
#pragma once

#include <cstdint>
#include <vector>

namespace sylvane {

class Base;

// Drops each parent link that closes a loop of ancestry (the person loses
// that father or mother, and the parent that child), so that every walk up
// ends. Gives the persons whose link was dropped, in the order found.
std::vector<std::uint32_t> RompsBouclesAscendance(Base& b);

} // namespace sylvane
