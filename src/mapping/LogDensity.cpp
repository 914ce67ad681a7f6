#include "mapping/LogDensity.h"

#include <cmath>
#include <limits>

namespace tov {

float LogDensityConstant(float v) {
  if (!std::isnan(v) && !(v > 0.0f)) return std::numeric_limits<float>::quiet_NaN();
  const float a = std::log10(6.283185f * v);
  return -(0.5f * a);
}

float LogDensity10(float y, float m, float v) { return LogDensityConstant(v) - LogDensityDeviation(y, m, 2.0f * v); }

}  // namespace tov
