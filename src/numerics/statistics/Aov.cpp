#include <cmath>

#include "numerics/basic/Basic.h"
#include "numerics/distributions/Distributions.h"

namespace tov {

float FProbability(float f, float dfr, float dfe) {
  if (std::isnan(f) || !(dfr > 0.0f) || !(dfe > 0.0f)) return AMACH(6);
  if (f == AMACH(7)) return 0.0f;
  return BETAI(dfe / (f * dfr + dfe), dfe / 2.0f, dfr / 2.0f);
}

void G1AOV(float dfr, float ssr, float dfe, float sse, float mean, AovTable& aov) {
  aov(1) = dfr;
  aov(2) = dfe;
  aov(3) = dfr + dfe;
  aov(4) = ssr;
  aov(5) = sse;
  aov(6) = ssr + sse;
  aov(7) = GuardedDivide(ssr, dfr);
  aov(8) = GuardedDivide(sse, dfe);
  aov(9) = GuardedDivide(aov(7), aov(8));
  aov(10) = FProbability(aov(9), dfr, dfe);
  aov(11) = GuardedDivide(100.0f * ssr, aov(6));

  // Adjusted R-square: a fit worse than the mean alone counts as 0.
  const float q = GuardedDivide(aov(8), GuardedDivide(aov(6), aov(3)));
  aov(12) = q > 1.0f ? 0.0f : 100.0f * (1.0f - q);

  if (std::isnan(aov(8))) {
    aov(13) = AMACH(6);
    aov(15) = AMACH(6);
  } else {
    aov(13) = std::sqrt(aov(8));
    aov(15) = GuardedDivide(100.0f * aov(13), mean);
  }
  aov(14) = mean;
}

}  // namespace tov
