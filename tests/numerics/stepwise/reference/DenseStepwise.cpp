#include "numerics/stepwise/reference/DenseStepwise.h"

#include <cmath>
#include <limits>
#include <vector>

#include "numerics/basic/Basic.h"

namespace tov::reference {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// The sweep of variable k on the whole upper triangle of COVS.  On the way
// in, a pivot at or below TOL * SCALE(k), or one that would leave a swept
// variable i with a diagonal of its inverse below TOL * SCALE(i), is
// refused: row k becomes 0.0.
void Sweep(int nvar, int k, float tol, const Array<float, 1>& scale, Array<float, 1>& swept, Array<float, 2>& covs) {
  const float p = covs(k, k);
  if (swept(k) <= 0.0f) {
    bool refused = p <= tol * scale(k);
    for (int i = 1; i <= nvar && !refused; ++i) {
      if (swept(i) <= 0.0f) continue;
      const float aik = i < k ? covs(i, k) : covs(k, i);
      refused = 1.0f / (aik * aik / p + covs(i, i)) < tol * scale(i);
    }
    if (refused) {
      for (int j = 1; j <= nvar; ++j) covs(k, j) = covs(j, k) = 0.0f;
      return;
    }
  }
  const float d = 1.0f / p;
  Array<float, 1> w(nvar);
  for (int i = 1; i < k; ++i) w(i) = -d * covs(i, k);
  for (int i = k + 1; i <= nvar; ++i) w(i) = swept(i) * (-(d * swept(k))) * covs(k, i);
  for (int j = 1; j < k; ++j)
    for (int i = 1; i <= j; ++i) covs(i, j) = covs(i, j) + swept(j) * w(i) * swept(k) * covs(j, k);
  for (int j = k + 1; j <= nvar; ++j)
    for (int i = 1; i <= j; ++i)
      if (i != k) covs(i, j) = covs(i, j) + w(i) * covs(k, j);
  for (int j = k + 1; j <= nvar; ++j) covs(k, j) = covs(k, j) * d;
  for (int i = 1; i < k; ++i) covs(i, k) = covs(i, k) * -d;
  covs(k, k) = d;
  swept(k) = -swept(k);
}

struct Stepper {
  const int nvar, nobs, idep;
  const RstepOptions& options;
  const Array<int, 1>& level;
  Array<float, 2>& covs;
  Array<float, 2>& coef;
  Array<float, 1> scale, swept, hist;
  int nvin = 0;

  bool InModel(int i) const { return hist(i) > 0.0f; }
  int Row(int i) const { return i < idep ? i : i - 1; }
  float P(int i) const { return coef(Row(i), 4); }

  // The first by index of the eligible variables whose |t| no other beats.
  int Choose(int lev, bool inModel, bool smallest) const {
    int chosen = 0;
    for (int i = 1; i <= nvar; ++i) {
      if (i == idep || std::isnan(P(i)) || level(i) != lev || InModel(i) != inModel) continue;
      const float t = std::fabs(coef(Row(i), 3));
      const float best = chosen == 0 ? 0.0f : std::fabs(coef(Row(chosen), 3));
      if (chosen == 0 || (smallest ? t < best : t > best)) chosen = i;
    }
    return chosen;
  }

  bool Move(int i, int signedStep) {
    Sweep(nvar, i, options.TOL, scale, swept, covs);
    nvin += signedStep > 0 ? 1 : -1;
    hist(i) = static_cast<float>(signedStep);
    return true;
  }

  // A removal first, if the weakest variable in is weak enough, else an entry.
  bool TakeStep(int step) {
    bool anyIn = false, anyOut = false;
    int lmax = 0, lmin = 0;
    for (int i = 1; i <= nvar; ++i) {
      if (i == idep || level(i) == 0) continue;
      if (InModel(i)) {
        if (!anyIn || level(i) > lmax) lmax = level(i);
        anyIn = true;
      } else {
        if (!anyOut || level(i) < lmin) lmin = level(i);
        anyOut = true;
      }
    }
    if (anyIn && (options.NFORCE == 0 || options.NFORCE < lmax)) {
      const int weakest = Choose(lmax, true, true);
      if (weakest != 0 && P(weakest) > options.POUT) return Move(weakest, -step);
    }
    if (anyOut) {
      const int strongest = Choose(lmin, false, false);
      if (strongest != 0 && P(strongest) < options.PIN) return Move(strongest, step);
    }
    return false;
  }

  void Statistics() {
    const float rss = covs(idep, idep);
    for (int i = 1; i <= nvar; ++i) {
      if (i == idep) continue;
      const float cii = covs(i, i);
      const float ciy = i <= idep ? covs(i, idep) : swept(i) * swept(idep) * covs(idep, i);
      float estimate, vif, spread;
      int df;
      if (InModel(i)) {
        estimate = ciy;
        vif = scale(i) * cii;
        spread = cii * rss;
        df = nobs - nvin - 1;
      } else {
        estimate = cii == 0.0f ? 0.0f : ciy / cii;
        vif = cii == 0.0f ? std::numeric_limits<float>::infinity() : scale(i) / cii;
        spread = cii == 0.0f ? 0.0f : rss / cii - estimate * estimate;
        df = nobs - nvin - 2;
      }
      float stdError = kNaN;
      if (df > 0 && !(spread / static_cast<float>(df) < 0.0f)) stdError = std::sqrt(spread / static_cast<float>(df));
      coef(Row(i), 1) = estimate;
      coef(Row(i), 2) = stdError;
      C1T(estimate, stdError, df, coef(Row(i), 3), coef(Row(i), 4));
      coef(Row(i), 5) = vif;
    }
  }

  int Run(StepAovTable& aov) {
    int numLevelled = 0;
    for (int i = 1; i <= nvar; ++i) numLevelled += level(i) > 0;
    Statistics();
    for (int step = 1; options.NSTEP < 0 || step <= options.NSTEP; ++step) {
      if (!TakeStep(step)) return 1;
      Statistics();
      if (nvin > 0) {
        const float sse = covs(idep, idep);
        AovTable full;
        G1AOV(static_cast<float>(nvin), scale(idep) - sse, static_cast<float>(nobs - nvin - 1), sse, 0.0f, full);
        for (int e = 1; e <= StepAovTable::Size(); ++e) aov(e) = full(e);
      }
      if (step > 2 * numLevelled) return 0;
    }
    return 0;
  }
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
  Array<float, 1> scale(NVAR), swept(NVAR);
  for (int i = 1; i <= NVAR; ++i) scale(i) = COV(i, i);
  swept.Fill(-1.0f);
  COVS = COV;
  Stepper stepper{NVAR, NOBS, idep, options, level, COVS, COEF, scale, swept, Array<float, 1>(NVAR)};
  IEND = stepper.Run(AOV);
  if (stepper.nvin < 1) AOV.Fill(kNaN);
  HIST = stepper.hist;
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

  // Fits too good (adjusted R-square in (99, 100]) are selected again with
  // halved thresholds, up to six runs in all.
  RstepOptions options;
  options.ISTEP = 0;
  options.PIN = PIN;
  options.POUT = POUT;
  options.TOL = 100.0f * AMACH(4);
  StepAovTable aov;
  Array<float, 2> coef(numCols - 1, 5), covs(numCols, numCols);
  Array<float, 1> hist;
  int iend = 0, runs = 0;
  do {
    if (runs > 0) {
      options.PIN = options.PIN / 2.0f;
      options.POUT = options.POUT / 2.0f;
    }
    DenseRSTEP(numCols, cov, NumObs, options, aov, coef, covs, hist, iend);
  } while (++runs < 6 && aov(12) > 99.0f && aov(12) <= 100.0f);

  model.Coef.assign(1, 0.0f);
  std::vector<int> terms;
  float shift = 0.0f;
  for (int i = 1; i <= NumVars; ++i) {
    const bool in = hist(i) > 0.5f;
    if (in) terms.push_back(i);
    if (in) model.Coef.push_back(coef(i, 1));
    shift = shift + (in ? coef(i, 1) : 0.0f) * xbar(i);
  }
  model.NumTerms = static_cast<int>(terms.size());
  model.TermIndex.Allocate(model.NumTerms);
  for (int k = 1; k <= model.NumTerms; ++k) model.TermIndex(k) = terms[static_cast<std::size_t>(k - 1)];
  model.Coef[0] = ybar - shift;
  model.RSquare = std::isnan(aov(11)) ? 0.0f : aov(11);
  model.AdjRSquare = std::isnan(aov(12)) ? 0.0f : aov(12);
  return runs;
}

}  // namespace tov::reference
