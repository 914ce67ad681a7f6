#include "numerics/stepwise/StepChoice.h"

#include <cmath>
#include <vector>

namespace tov {
namespace {

// The first variable by index, among those in (or out of) the model at the
// level and with a p that is not NaN, whose absolute t no other beats by
// `better`.
template <class Better>
int Choose(const StepCandidates& c, int level, bool inModel, Better better) {
  std::vector<char> nanP(static_cast<std::size_t>(c.NVAR) + 1, 0);
  for (;;) {
    int chosen = 0;
    for (int i = 1; i <= c.NVAR; ++i) {
      if (i == c.IDEP || c.LEVEL(i) != level || (c.HIST(i) > 0.0f) != inModel) continue;
      if (std::isnan(c.T(i)) || nanP[static_cast<std::size_t>(i)]) continue;
      if (chosen == 0 || better(std::fabs(c.T(i)), std::fabs(c.T(chosen)))) chosen = i;
    }
    if (chosen == 0 || !std::isnan(c.P(chosen))) return chosen;
    nanP[static_cast<std::size_t>(chosen)] = 1;
  }
}

}  // namespace

int WeakestInModel(const StepCandidates& candidates, int level) {
  return Choose(candidates, level, true, [](float t, float best) { return t < best; });
}

int StrongestOutside(const StepCandidates& candidates, int level) {
  return Choose(candidates, level, false, [](float t, float best) { return t > best; });
}

}  // namespace tov
