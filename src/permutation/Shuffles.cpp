#include "permutation/Shuffles.h"

#include <cstdint>
#include <vector>

#include "numerics/random/Random.h"

namespace tov {

Array<float, 2> DrawShuffles(int numLines, const float* lineMean, int times) {
  Array<float, 2> shuffles(numLines, times);
  if (numLines < 1) return shuffles;
  std::vector<int> permOrder(static_cast<std::size_t>(numLines));
  for (int k = 1; k <= times; ++k) {
    RNPER(numLines, permOrder.data());
    PERMU(numLines, lineMean, permOrder.data(), 1, &shuffles(1, k));
  }
  return shuffles;
}

}  // namespace tov
