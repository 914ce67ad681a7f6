#include "numerics/basic/Sort.h"

#include <algorithm>
#include <cmath>

namespace tov {

void SVRGN(int n, const float* ra, float* rb) {
  if (n < 1) return;
  std::copy(ra, ra + n, rb);
  std::sort(rb, rb + n, [](float a, float b) { return std::isnan(b) ? !std::isnan(a) : a < b; });
}

}  // namespace tov
