#include <cmath>

#include "numerics/distributions/Distributions.h"

namespace tov {

// The library's double-precision erfc is accurate to a few units of its
// last place, so one rounding to float gives the single-precision value.
float ERFC(float x) { return static_cast<float>(std::erfc(static_cast<double>(x))); }

float ANORDF(float x) { return 0.5f * ERFC(-x * 0.70710677f); }

}  // namespace tov
