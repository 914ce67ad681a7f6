#include "numerics/stepwise/reference/DenseStepwise.h"

#include <cmath>
#include <limits>
#include <vector>

#include "numerics/basic/Basic.h"

namespace tov::reference {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

float SweptElement(const Array<float, 2>& covs, const Array<float, 1>& swept, int i, int j) {
  if (i <= j) return covs(i, j);
  return swept(i) * swept(j) * covs(j, i);
}

class Stepper {
 public:
  Stepper(int nvar, int nobs, int idep, const RstepOptions& options, const Array<int, 1>& level,
          const Array<float, 2>& cov, Array<float, 2>& covs, Array<float, 2>& coef)
      : hist_(nvar), nvar_(nvar), nobs_(nobs), idep_(idep), options_(options), level_(level), covs_(covs),
        coef_(coef), scale_(nvar), swept_(nvar) {
    covs_ = cov;
    for (int i = 1; i <= nvar_; ++i) scale_(i) = cov(i, i);
    swept_.Fill(-1.0f);
    Statistics();
  }

  int Run(StepAovTable& aov) {
    int numLevelled = 0;
    for (int i = 1; i <= nvar_; ++i) numLevelled += level_(i) > 0;
    for (int step = 1; options_.NSTEP < 0 || step <= options_.NSTEP; ++step) {
      if (!TakeStep(step)) return 1;
      Statistics();
      if (nvin_ > 0) FillAov(aov);
      if (step > 2 * numLevelled) return 0;
    }
    return 0;
  }

  int nvin_ = 0;
  Array<float, 1> hist_;

 private:
  bool InModel(int i) const { return hist_(i) > 0.0f; }
  int CoefRow(int i) const { return i < idep_ ? i : i - 1; }
  float P(int i) const { return coef_(CoefRow(i), 4); }

  // The first by index of the eligible variables whose |t| no other beats.
  int Choose(int level, bool inModel, bool smallest) const {
    int chosen = 0;
    for (int i = 1; i <= nvar_; ++i) {
      if (i == idep_ || std::isnan(P(i)) || level_(i) != level || InModel(i) != inModel) continue;
      const float t = std::fabs(coef_(CoefRow(i), 3));
      const float best = chosen == 0 ? 0.0f : std::fabs(coef_(CoefRow(chosen), 3));
      if (chosen == 0 || (smallest ? t < best : t > best)) chosen = i;
    }
    return chosen;
  }

  bool TakeStep(int step) {
    bool anyIn = false, anyOut = false;
    int lmax = 0, lmin = 0;
    for (int i = 1; i <= nvar_; ++i) {
      if (i == idep_ || level_(i) == 0) continue;
      if (InModel(i)) {
        if (!anyIn || level_(i) > lmax) lmax = level_(i);
        anyIn = true;
      } else {
        if (!anyOut || level_(i) < lmin) lmin = level_(i);
        anyOut = true;
      }
    }
    if (anyIn && (options_.NFORCE == 0 || options_.NFORCE < lmax)) {
      const int weakest = Choose(lmax, true, true);
      if (weakest != 0 && P(weakest) > options_.POUT) {
        DenseGSWEP(nvar_, weakest, options_.TOL, scale_, swept_, covs_);
        --nvin_;
        hist_(weakest) = -static_cast<float>(step);
        return true;
      }
    }
    if (anyOut) {
      const int strongest = Choose(lmin, false, false);
      if (strongest != 0 && P(strongest) < options_.PIN) {
        DenseGSWEP(nvar_, strongest, options_.TOL, scale_, swept_, covs_);
        ++nvin_;
        hist_(strongest) = static_cast<float>(step);
        return true;
      }
    }
    return false;
  }

  void Statistics() {
    const float rss = covs_(idep_, idep_);
    for (int i = 1; i <= nvar_; ++i) {
      if (i == idep_) continue;
      const float cii = covs_(i, i);
      const float ciy = SweptElement(covs_, swept_, i, idep_);
      float estimate, vif, spread;
      int df;
      if (InModel(i)) {
        estimate = ciy;
        vif = scale_(i) * cii;
        spread = cii * rss;
        df = nobs_ - nvin_ - 1;
      } else {
        estimate = cii == 0.0f ? 0.0f : ciy / cii;
        vif = cii == 0.0f ? kInfinity : scale_(i) / cii;
        spread = cii == 0.0f ? 0.0f : rss / cii - estimate * estimate;
        df = nobs_ - nvin_ - 2;
      }
      float stdError = kNaN;
      if (df > 0 && !(spread / static_cast<float>(df) < 0.0f)) stdError = std::sqrt(spread / static_cast<float>(df));
      const int row = CoefRow(i);
      coef_(row, 1) = estimate;
      coef_(row, 2) = stdError;
      C1T(estimate, stdError, df, coef_(row, 3), coef_(row, 4));
      coef_(row, 5) = vif;
    }
  }

  void FillAov(StepAovTable& aov) const {
    const float sse = covs_(idep_, idep_);
    AovTable full;
    G1AOV(static_cast<float>(nvin_), scale_(idep_) - sse, static_cast<float>(nobs_ - nvin_ - 1), sse, 0.0f, full);
    for (int e = 1; e <= StepAovTable::Size(); ++e) aov(e) = full(e);
  }

  const int nvar_, nobs_, idep_;
  const RstepOptions& options_;
  const Array<int, 1>& level_;
  Array<float, 2>& covs_;
  Array<float, 2>& coef_;
  Array<float, 1> scale_, swept_;
};

}  // namespace

void DenseRSTEP(int NVAR, const Array<float, 2>& COV, int NOBS, const RstepOptions& options, StepAovTable& AOV,
                Array<float, 2>& COEF, Array<float, 2>& COVS, Array<float, 1>& HIST, int& IEND) {
  Array<int, 1> defaultLevel(NVAR);
  defaultLevel.Fill(1);
  defaultLevel(NVAR) = -1;
  const Array<int, 1>& level = options.LEVEL != nullptr ? *options.LEVEL : defaultLevel;
  int idep = 1;
  while (level(idep) != -1) ++idep;
  Stepper stepper(NVAR, NOBS, idep, options, level, COV, COVS, COEF);
  IEND = stepper.Run(AOV);
  if (stepper.nvin_ < 1) AOV.Fill(kNaN);
  HIST = stepper.hist_;
}

void DenseGSWEP(int NVAR, int k, float TOL, const Array<float, 1>& SCALE, Array<float, 1>& SWEPT,
                Array<float, 2>& COVS) {
  const float p = COVS(k, k);
  if (SWEPT(k) <= 0.0f) {
    bool refused = p <= TOL * SCALE(k);
    for (int i = 1; i <= NVAR && !refused; ++i) {
      if (SWEPT(i) <= 0.0f) continue;
      const float aik = i < k ? COVS(i, k) : COVS(k, i);
      refused = 1.0f / (aik * aik / p + COVS(i, i)) < TOL * SCALE(i);
    }
    if (refused) {
      for (int j = 1; j <= NVAR; ++j) COVS(k, j) = COVS(j, k) = 0.0f;
      return;
    }
  }
  const float d = 1.0f / p;
  Array<float, 1> w(NVAR);
  for (int i = 1; i < k; ++i) w(i) = -d * COVS(i, k);
  for (int i = k + 1; i <= NVAR; ++i) w(i) = SWEPT(i) * (-(d * SWEPT(k))) * COVS(k, i);
  for (int j = 1; j < k; ++j)
    for (int i = 1; i <= j; ++i) COVS(i, j) = COVS(i, j) + SWEPT(j) * w(i) * SWEPT(k) * COVS(j, k);
  for (int j = k + 1; j <= NVAR; ++j)
    for (int i = 1; i <= j; ++i)
      if (i != k) COVS(i, j) = COVS(i, j) + w(i) * COVS(k, j);
  for (int j = k + 1; j <= NVAR; ++j) COVS(k, j) = COVS(k, j) * d;
  for (int i = 1; i < k; ++i) COVS(i, k) = COVS(i, k) * -d;
  COVS(k, k) = d;
  SWEPT(k) = -SWEPT(k);
}

int DenseStepwiseSelection(float PIN, float POUT, int NumVars, int NumObs, const std::int32_t* CodedGenotype,
                            const float* y, StepModel& model) {
  const int numCols = NumVars + 1;
  const ArrayView<const std::int32_t, 2> code(CodedGenotype, NumVars, NumObs);
  const float count = static_cast<float>(NumObs);
  Array<float, 1> xbar(NumVars);
  Array<float, 2> centred(NumObs, numCols);
  for (int m = 1; m <= NumVars; ++m) {
    std::int32_t sum = 0;
    for (int l = 1; l <= NumObs; ++l) sum += code(m, l);
    xbar(m) = static_cast<float>(sum) / count;
    for (int l = 1; l <= NumObs; ++l) centred(l, m) = static_cast<float>(code(m, l)) - xbar(m);
  }
  float ySum = 0.0f;
  for (int l = 0; l < NumObs; ++l) ySum = ySum + y[l];
  const float ybar = ySum / count;
  for (int l = 1; l <= NumObs; ++l) centred(l, numCols) = y[l - 1] - ybar;
  Array<float, 2> cov(numCols, numCols);
  for (int j = 1; j <= numCols; ++j)
    for (int i = 1; i <= numCols; ++i) cov(i, j) = ColumnCovariance(NumObs, &centred(1, i), &centred(1, j));

  RstepOptions options;
  options.ISTEP = 0;
  options.PIN = PIN;
  options.POUT = POUT;
  options.TOL = 100.0f * AMACH(4);
  StepAovTable aov;
  Array<float, 2> coef(numCols - 1, 5), covs(numCols, numCols);
  Array<float, 1> hist(numCols);
  int iend = 0;
  DenseRSTEP(numCols, cov, NumObs, options, aov, coef, covs, hist, iend);
  int runs = 1;
  for (; runs < 6 && aov(12) > 99.0f && aov(12) <= 100.0f; ++runs) {
    options.PIN = options.PIN / 2.0f;
    options.POUT = options.POUT / 2.0f;
    DenseRSTEP(numCols, cov, NumObs, options, aov, coef, covs, hist, iend);
  }

  model.NumTerms = 0;
  model.Coef.assign(1, 0.0f);
  std::vector<int> terms;
  for (int i = 1; i <= NumVars; ++i)
    if (hist(i) > 0.5f) {
      terms.push_back(i);
      model.Coef.push_back(coef(i, 1));
    }
  model.NumTerms = static_cast<int>(terms.size());
  model.TermIndex.Allocate(model.NumTerms);
  for (int k = 1; k <= model.NumTerms; ++k) model.TermIndex(k) = terms[static_cast<std::size_t>(k - 1)];
  float shift = 0.0f;
  for (int i = 1; i <= NumVars; ++i) shift = shift + (hist(i) < 0.5f ? 0.0f : coef(i, 1)) * xbar(i);
  model.Coef[0] = ybar - shift;
  model.RSquare = std::isnan(aov(11)) ? 0.0f : aov(11);
  model.AdjRSquare = std::isnan(aov(12)) ? 0.0f : aov(12);
  return runs;
}

}  // namespace tov::reference
