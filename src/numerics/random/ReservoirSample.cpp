// Reservoir sampling: after t records each has had the same chance nsamp/t
// to be in the sample, so one pass over the population suffices.

#include "numerics/random/ReservoirSample.h"

#include "numerics/random/Random.h"

namespace tov {

void RNSRS(int nrow, const float* population, int nsamp, float* sample, int* index) {
  for (int t = 1; t <= nsamp; ++t) {
    sample[t - 1] = population[t - 1];
    index[t - 1] = t;
  }
  for (int t = nsamp + 1; t <= nrow; ++t) {
    // Record t replaces element r when r, uniform on 1..t, falls in the
    // sample; the product and sum are rounded in single precision.
    const float u = UniformDraw();
    const int r = static_cast<int>(u * static_cast<float>(t) + 1.0f);
    if (r <= nsamp) {
      sample[r - 1] = population[t - 1];
      index[r - 1] = t;
    }
  }
}

}  // namespace tov
