#include "numerics/stepwise/StepModel.h"

namespace tov {

void FreeStepModel(StepModel& model) {
  model.TermIndex.Release();
  model.Coef.clear();
  model.Coef.shrink_to_fit();
  model.NumTerms = 0;
  model.RSquare = 0.0f;
  model.AdjRSquare = 0.0f;
}

}  // namespace tov
