#include "numerics/stepwise/Stepwise.h"

#include <cmath>

#include "numerics/basic/Basic.h"
#include "numerics/matrix/CovarianceMatrix.h"
#include "numerics/basic/ErrorPolicy.h"
#include "numerics/stepwise/Rstep.h"

namespace tov {
namespace {

// A model whose adjusted R-square lies in (99, 100] percent is selected
// again with halved thresholds, up to this many runs in all.
constexpr int kMaxRuns = 6;

bool FitsTooWell(float adjRSquare) { return adjRSquare > 99.0f && adjRSquare <= 100.0f; }

float ZeroIfNaN(float value) { return std::isnan(value) ? 0.0f : value; }

// The covariance matrix of the centred columns as RSTEP reads it.  The
// rows it has computed are kept for the retries, which start from the same
// matrix and pivot mostly on the same variables.
class CovarianceInput : public SymmetricRows {
 public:
  CovarianceInput(const CovarianceRows& rows, int numCols) : rows_(rows), computed_(numCols) {}
  void Diagonal(Array<float, 1>& diagonal) const override { rows_.Diagonal(diagonal); }
  void Row(int r, Array<float, 1>& row) const override {
    Array<float, 1>& kept = computed_(r);
    if (!kept.IsAllocated()) rows_.Row(r, kept);
    row = kept;
  }

 private:
  const CovarianceRows& rows_;
  mutable Array<Array<float, 1>, 1> computed_;
};

}  // namespace

void StepwiseSelection(float PIN, float POUT, int NumVars, int NumObs, const std::int32_t* CodedGenotype,
                       const float* y, StepModel& model) {
  const int numCols = NumVars + 1;
  const ArrayView<const std::int32_t, 2> code(CodedGenotype, NumVars, NumObs);
  const float count = static_cast<float>(NumObs);

  // Centred columns: the regressors, then the response.  The code sums are
  // exact integers; only the mean is rounded.
  Array<std::int32_t, 1> sum(NumVars);
  for (int l = 1; l <= NumObs; ++l)
    for (int m = 1; m <= NumVars; ++m) sum(m) += code(m, l);
  Array<float, 1> xbar(NumVars);
  for (int m = 1; m <= NumVars; ++m) xbar(m) = static_cast<float>(sum(m)) / count;
  CovarianceRows cov(NumObs, numCols);
  cov.SetCodedColumns(NumVars, CodedGenotype, xbar.Data());
  float ySum = 0.0f;
  for (int l = 0; l < NumObs; ++l) ySum = ySum + y[l];
  const float ybar = ySum / count;
  Array<float, 1> centred(NumObs);
  for (int l = 1; l <= NumObs; ++l) centred(l) = y[l - 1] - ybar;
  cov.SetColumn(numCols, centred.Data());
  const CovarianceInput input(cov, numCols);

  Array<int, 1> level(numCols);
  level.Fill(1);
  level(numCols) = -1;
  RstepOptions options;
  options.LEVEL = &level;
  options.NFORCE = 0;
  options.NSTEP = -1;
  options.ISTEP = 0;
  options.PIN = PIN;
  options.POUT = POUT;
  options.TOL = 100.0f * AMACH(4);
  ERSET(0, 0, 0);

  StepAovTable aov;
  Array<float, 2> coef(numCols - 1, 5);
  Array<float, 1> hist(numCols);
  RSTEP(numCols, input, NumObs, options, aov, coef, nullptr, &hist);
  for (int runs = 1; runs < kMaxRuns && FitsTooWell(aov(12)); ++runs) {
    options.PIN = options.PIN / 2.0f;
    options.POUT = options.POUT / 2.0f;
    RSTEP(numCols, input, NumObs, options, aov, coef, nullptr, &hist);
  }

  int numTerms = 0;
  for (int i = 1; i <= numCols; ++i)
    if (hist(i) > 0.5f) ++numTerms;
  model.NumTerms = numTerms;
  model.TermIndex.Allocate(numTerms);
  model.Coef.assign(static_cast<std::size_t>(numTerms) + 1, 0.0f);
  int k = 0;
  for (int i = 1; i <= NumVars; ++i) {
    if (hist(i) > 0.5f) {
      ++k;
      model.TermIndex(k) = i;
      model.Coef[static_cast<std::size_t>(k)] = coef(i, 1);
    }
  }

  // The intercept puts the centring back; variables out of the model add
  // nothing to it.
  float shift = 0.0f;
  for (int i = 1; i <= NumVars; ++i) {
    if (hist(i) < 0.5f) coef(i, 1) = 0.0f;
    shift = shift + coef(i, 1) * xbar(i);
  }
  model.Coef[0] = ybar - shift;
  model.RSquare = ZeroIfNaN(aov(11));
  model.AdjRSquare = ZeroIfNaN(aov(12));
}

}  // namespace tov
