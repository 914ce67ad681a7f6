#include <cmath>
#include <limits>

#include "numerics/basic/Basic.h"

namespace tov {

// The quotient is formed only when it is known to stay in range, so that no
// floating-point exception can arise: a vanishing quotient is flushed to
// 0.0, an overflowing one becomes an infinity of the quotient's sign, and
// 0/0 is not a number.
float GuardedDivide(float a, float b) {
  if (std::isnan(a) || std::isnan(b)) return AMACH(6);
  const float absA = std::fabs(a);
  const float absB = std::fabs(b);
  if (absB > 1.0f) {
    if (absA < absB * AMACH(1)) return 0.0f;
    return a / b;
  }
  if (absA < absB * AMACH(2)) return a / b;
  if (a == 0.0f) return AMACH(6);
  const bool negative = std::signbit(a) != std::signbit(b);
  return negative ? AMACH(8) : AMACH(7);
}

}  // namespace tov
