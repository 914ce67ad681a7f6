#include "permutation/Threshold.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "numerics/basic/Sort.h"

namespace tov {

float PermutationThreshold(int n, const float* maxima, float alpha) {
  if (n < 1) return 0.0f;
  std::vector<float> sorted(static_cast<std::size_t>(n));
  SVRGN(n, maxima, sorted.data());
  // A rate of 1 or more, or one so small that q reaches n, would index past
  // the list; the rate check leaves both possible.
  const auto B = [&](int k) { return sorted[static_cast<std::size_t>(std::clamp(k, 1, n) - 1)]; };
  float q = static_cast<float>(n) * (1.0f - alpha);
  // Only the index depends on q beyond the ends, so q may be held there.
  if (!(q > -1.0f)) q = -1.0f;
  if (q > static_cast<float>(n) + 1.0f) q = static_cast<float>(n) + 1.0f;
  const int whole = static_cast<int>(std::floor(q));
  if (std::fabs(static_cast<float>(whole) - q) < 1.0e-8f) {
    const int k = static_cast<int>(q);
    return (B(k) + B(k + 1)) * 0.5f;
  }
  return B(whole + 1);
}

}  // namespace tov
