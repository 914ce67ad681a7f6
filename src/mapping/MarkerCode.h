#pragma once
// A genotype code as a regressor.  The sign is fixed: the donor parent 'A'
// carries +1, the background 'B' -1, and anything else (the missing 'X'
// among them) contributes nothing.

#include <cstdint>

namespace tov {

constexpr std::int32_t MarkerCode(char code) { return code == 'A' ? 1 : code == 'B' ? -1 : 0; }

}  // namespace tov
