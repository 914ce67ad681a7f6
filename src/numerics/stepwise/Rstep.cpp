#include "numerics/stepwise/Rstep.h"

#include <cmath>
#include <initializer_list>
#include <limits>

#include "numerics/basic/Basic.h"
#include "numerics/distributions/Distributions.h"
#include "numerics/basic/ErrorPolicy.h"
#include "numerics/stepwise/StepChoice.h"

namespace tov {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

// Element (i, j) of the whole swept matrix, read off the upper triangle:
// the swept matrix is symmetric between two variables on the same side of
// the sweep and antisymmetric across it.
float SweptElement(const Array<float, 2>& covs, const Array<float, 1>& swept, int i, int j) {
  if (i <= j) return covs(i, j);
  return swept(i) * swept(j) * covs(j, i);
}

// Checks the arguments in the order of the messages and finds the dependent
// variable; false after the first failure (and when no variable is marked
// dependent, which leaves nothing to fit).
bool CheckArguments(int NVAR, const RstepOptions& options, const Array<int, 1>& level, int& idep) {
  auto fail = [](const char* pattern, std::initializer_list<long long> integers,
                 std::initializer_list<float> reals = {}) {
    RaiseError(SeverityTerminal, "RSTEP", FillMessage(pattern, integers, reals));
    return false;
  };
  if (NVAR < 2) return fail("NVAR = %(I1).  NVAR must be greater than or equal to 2.", {NVAR});
  if (options.INVOKE < 0 || options.INVOKE > 3)
    return fail("INVOKE = %(I1).  INVOKE must be greater than or equal to zero and less than or equal to 3.",
                {options.INVOKE});
  if (options.NSTEP < -1) return fail("NSTEP = %(I1).  NSTEP must be greater than or equal to -1.", {options.NSTEP});
  if (options.ISTEP < -1 || options.ISTEP > 1)
    return fail("ISTEP = %(I1).  ISTEP must be -1, 0, or 1.", {options.ISTEP});
  if (!(options.PIN > 0.0f && options.PIN < 1.0f))
    return fail("PIN = %(R1).  PIN must be in the exclusive range 0.0 to 1.0.", {}, {options.PIN});
  if (!(options.POUT > 0.0f && options.POUT < 1.0f))
    return fail("POUT = %(R1).  POUT must be in the exclusive range 0.0 to 1.0.", {}, {options.POUT});
  if (options.PIN > options.POUT)
    return fail("PIN = %(R1) and POUT = %(R2).  PIN must be less than or equal to POUT and each of them must be "
                "in the exclusive range 0.0 to 1.0.",
                {}, {options.PIN, options.POUT});
  if (options.NFORCE < 0)
    return fail("NFORCE = %(I1).  NFORCE must be greater than or equal to zero.", {options.NFORCE});
  idep = 0;
  for (int i = 1; i <= NVAR; ++i) {
    if (level(i) != -1) continue;
    if (idep != 0)
      return fail("LEVEL(%(I1)) and LEVEL(%(I2)) = -1.  There can be only one dependent variable in the model.",
                  {idep, i});
    idep = i;
  }
  return idep != 0;
}

// The working set of one call.
class Stepper {
 public:
  Stepper(int nvar, int nobs, int idep, const RstepOptions& options, const Array<int, 1>& level,
          Array<float, 2>& covs, Array<float, 2>& coef)
      : nvar_(nvar), nobs_(nobs), idep_(idep), options_(options), level_(level), covs_(covs), coef_(coef),
        scale_(nvar), swept_(nvar), hist_(nvar) {}

  void SetUp(const Array<float, 2>& cov) {
    for (int j = 1; j <= nvar_; ++j)
      for (int i = 1; i <= nvar_; ++i) covs_(i, j) = cov(i, j);
    for (int i = 1; i <= nvar_; ++i) scale_(i) = cov(i, i);
    swept_.Fill(-1.0f);
    hist_.Fill(0.0f);
    nvin_ = 0;
    Statistics();
  }

  // Steps until nothing moves, the cycling bound is passed or NSTEP steps
  // are taken; returns IEND.
  int Run(StepAovTable& aov) {
    int numLevelled = 0;
    for (int i = 1; i <= nvar_; ++i)
      if (level_(i) > 0) ++numLevelled;
    int step = 0;
    while (options_.NSTEP < 0 || step < options_.NSTEP) {
      ++step;
      if (!TakeStep(step)) return 1;
      Statistics();
      if (nvin_ > 0) FillAov(aov);
      if (step > 2 * numLevelled) {
        RaiseError(SeverityWarning, "RSTEP",
                   FillMessage("%(I1) steps have been taken.  This is greater than twice the number of variables "
                               "with LEVEL greater than 0.  Cycling is occuring.  No more steps will be taken.",
                               {step}));
        return 0;
      }
    }
    return 0;
  }

  int NumIn() const { return nvin_; }
  const Array<float, 1>& Scale() const { return scale_; }
  const Array<float, 1>& Hist() const { return hist_; }

 private:
  bool InModel(int i) const { return hist_(i) > 0.0f; }
  int CoefRow(int i) const { return i < idep_ ? i : i - 1; }
  float P(int i) const { return coef_(CoefRow(i), 4); }

  // One step: a removal if one is due, else an entry; false when nothing
  // moved.
  bool TakeStep(int step) {
    bool anyIn = false;
    bool anyOut = false;
    int lmax = 0;
    int lmin = 0;
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
      const int weakest = WeakestInModel(nvar_, idep_, coef_, hist_, level_, lmax);
      if (weakest != 0 && P(weakest) > options_.POUT) {
        GSWEP(nvar_, weakest, options_.TOL, scale_, swept_, covs_);
        --nvin_;
        hist_(weakest) = -static_cast<float>(step);
        return true;
      }
    }
    if (anyOut) {
      const int strongest = StrongestOutside(nvar_, idep_, coef_, hist_, level_, lmin);
      if (strongest != 0 && P(strongest) < options_.PIN) {
        // A refused pivot still counts as an entry.
        GSWEP(nvar_, strongest, options_.TOL, scale_, swept_, covs_);
        ++nvin_;
        hist_(strongest) = static_cast<float>(step);
        return true;
      }
    }
    return false;
  }

  // Estimate, standard error, t, p and VIF of every variable.  A candidate
  // is judged with the degrees of freedom of the model it would join, so
  // that its step statistic is its partial t there.
  void Statistics() {
    const float rss = covs_(idep_, idep_);
    const int dfIn = nobs_ - nvin_ - 1;
    const int dfOut = nobs_ - nvin_ - 2;
    for (int i = 1; i <= nvar_; ++i) {
      if (i == idep_) continue;
      const float cii = covs_(i, i);
      const float ciy = SweptElement(covs_, swept_, i, idep_);
      float estimate;
      float vif;
      float spread;  // the quantity under the root, before the division
      int df;
      if (InModel(i)) {
        estimate = ciy;
        vif = scale_(i) * cii;
        spread = cii * rss;
        df = dfIn;
      } else {
        if (cii == 0.0f) {
          estimate = 0.0f;
          vif = kInfinity;
          spread = 0.0f;
        } else {
          estimate = ciy / cii;
          vif = scale_(i) / cii;
          spread = rss / cii - estimate * estimate;
        }
        df = dfOut;
      }
      float stdError = kNaN;
      if (df > 0) {
        const float variance = spread / static_cast<float>(df);
        if (!(variance < 0.0f)) stdError = std::sqrt(variance);
      }
      const int row = CoefRow(i);
      coef_(row, 1) = estimate;
      coef_(row, 2) = stdError;
      C1T(estimate, stdError, df, coef_(row, 3), coef_(row, 4));
      coef_(row, 5) = vif;
    }
  }

  void FillAov(StepAovTable& aov) const {
    const float sse = covs_(idep_, idep_);
    const float ssr = scale_(idep_) - sse;
    AovTable full;
    G1AOV(static_cast<float>(nvin_), ssr, static_cast<float>(nobs_ - nvin_ - 1), sse, 0.0f, full);
    for (int e = 1; e <= StepAovTable::Size(); ++e) aov(e) = full(e);
  }

  const int nvar_;
  const int nobs_;
  const int idep_;
  const RstepOptions& options_;
  const Array<int, 1>& level_;
  Array<float, 2>& covs_;
  Array<float, 2>& coef_;
  Array<float, 1> scale_;
  Array<float, 1> swept_;
  Array<float, 1> hist_;
  int nvin_ = 0;
};

}  // namespace

void RSTEP(int NVAR, const Array<float, 2>& COV, int NOBS, const RstepOptions& options, StepAovTable& AOV,
           Array<float, 2>& COEF, Array<float, 2>& COVS, Array<float, 1>* SCALE, Array<float, 1>* HIST, int* IEND) {
  Array<int, 1> defaultLevel;
  if (options.LEVEL == nullptr && NVAR >= 1) {
    defaultLevel.Allocate(NVAR);
    defaultLevel.Fill(1);
    defaultLevel(NVAR) = -1;
  }
  const Array<int, 1>& level = options.LEVEL != nullptr ? *options.LEVEL : defaultLevel;
  int idep = 0;
  if (!CheckArguments(NVAR, options, level, idep)) return;

  Stepper stepper(NVAR, NOBS, idep, options, level, COVS, COEF);
  stepper.SetUp(COV);
  const int end = stepper.Run(AOV);
  if (stepper.NumIn() < 1) {
    AOV.Fill(kNaN);
    RaiseError(SeverityWarning, "RSTEP",
               "No variables entered the model.  All elements of AOV are set to NaN (not a number).");
  }
  if (SCALE != nullptr) *SCALE = stepper.Scale();
  if (HIST != nullptr) *HIST = stepper.Hist();
  if (IEND != nullptr) *IEND = end;
}

void GSWEP(int NVAR, int k, float TOL, const Array<float, 1>& SCALE, Array<float, 1>& SWEPT, Array<float, 2>& COVS) {
  const float p = COVS(k, k);
  if (SWEPT(k) <= 0.0f) {
    // A pivot this small, or one that would leave a swept variable with
    // almost no variance of its own, would make the model collinear.
    bool refused = p <= TOL * SCALE(k);
    for (int i = 1; i <= NVAR && !refused; ++i) {
      if (SWEPT(i) <= 0.0f) continue;
      const float aik = i < k ? COVS(i, k) : COVS(k, i);
      refused = 1.0f / (aik * aik / p + COVS(i, i)) < TOL * SCALE(i);
    }
    if (refused) {
      for (int j = 1; j <= NVAR; ++j) {
        COVS(k, j) = 0.0f;
        COVS(j, k) = 0.0f;
      }
      return;
    }
  }

  const float d = 1.0f / p;
  // The multiplier of each row comes from row and column k, which the
  // update below leaves alone; every other element takes one update of its
  // own, so the triangle can be walked column by column.
  Array<float, 1> w(NVAR);
  for (int i = 1; i < k; ++i) w(i) = -d * COVS(i, k);
  for (int i = k + 1; i <= NVAR; ++i) w(i) = SWEPT(i) * (-(d * SWEPT(k))) * COVS(k, i);
  for (int j = 1; j < k; ++j) {
    const float sj = SWEPT(j);
    const float ajk = COVS(j, k);
    for (int i = 1; i <= j; ++i) COVS(i, j) = COVS(i, j) + sj * w(i) * SWEPT(k) * ajk;
  }
  for (int j = k + 1; j <= NVAR; ++j) {
    const float akj = COVS(k, j);
    for (int i = 1; i < k; ++i) COVS(i, j) = COVS(i, j) + w(i) * akj;
    for (int i = k + 1; i <= j; ++i) COVS(i, j) = COVS(i, j) + w(i) * akj;
  }

  for (int j = k + 1; j <= NVAR; ++j) COVS(k, j) = COVS(k, j) * d;
  for (int i = 1; i < k; ++i) COVS(i, k) = COVS(i, k) * -d;
  COVS(k, k) = d;
  SWEPT(k) = -SWEPT(k);
}

void C1T(float estimate, float stdError, int df, float& t, float& p) {
  t = GuardedDivide(estimate, stdError);
  if (std::isnan(t) || df == 0)
    p = kNaN;
  else if (std::isinf(t))
    p = 0.0f;
  else
    p = 2.0f * (1.0f - TDF(std::fabs(t), static_cast<float>(df)));
}

}  // namespace tov
