#include "numerics/stepwise/Rstep.h"

#include <cmath>
#include <initializer_list>
#include <limits>

#include "numerics/basic/Basic.h"
#include "numerics/distributions/Distributions.h"
#include "numerics/basic/ErrorPolicy.h"
#include "numerics/stepwise/StepChoice.h"
#include "numerics/stepwise/SweptMatrix.h"

namespace tov {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

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

// A matrix held whole, read a row at a time off its upper triangle.
class WholeMatrix : public SymmetricRows {
 public:
  WholeMatrix(int n, const Array<float, 2>& matrix) : n_(n), matrix_(matrix) {}
  void Diagonal(Array<float, 1>& diagonal) const override {
    diagonal.Allocate(n_);
    for (int i = 1; i <= n_; ++i) diagonal(i) = matrix_(i, i);
  }
  void Row(int r, Array<float, 1>& row) const override {
    row.Allocate(n_);
    for (int j = 1; j <= n_; ++j) row(j) = j < r ? matrix_(j, r) : matrix_(r, j);
  }

 private:
  const int n_;
  const Array<float, 2>& matrix_;
};

// What one variable's row of COEF is formed from.
struct VariableFit {
  float estimate;
  float stdError;
  float vif;
  int df;
};

// The working set of one call.
class Stepper {
 public:
  Stepper(int nvar, int nobs, int idep, const RstepOptions& options, const Array<int, 1>& level,
          const SymmetricRows& cov)
      : nvar_(nvar), nobs_(nobs), idep_(idep), options_(options), level_(level), matrix_(cov, nvar, idep),
        t_(nvar), hist_(nvar) {
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

  // COEF of the final model, every variable but the dependent one.
  void FillCoef(Array<float, 2>& coef) const {
    for (int i = 1; i <= nvar_; ++i) {
      if (i == idep_) continue;
      const VariableFit fit = FitOf(i);
      const int row = i < idep_ ? i : i - 1;
      coef(row, 1) = fit.estimate;
      coef(row, 2) = fit.stdError;
      C1T(fit.estimate, fit.stdError, fit.df, coef(row, 3), coef(row, 4));
      coef(row, 5) = fit.vif;
    }
  }

  void FillScale(Array<float, 1>& scale) const {
    scale.Allocate(nvar_);
    for (int i = 1; i <= nvar_; ++i) scale(i) = matrix_.Scale(i);
  }

  void FillCovs(Array<float, 2>& covs) const {
    Array<float, 1> row;
    for (int r = 1; r <= nvar_; ++r) {
      matrix_.CurrentRow(r, row);
      for (int j = r; j <= nvar_; ++j) covs(r, j) = row(j);
    }
  }

  int NumIn() const { return nvin_; }
  const Array<float, 1>& Hist() const { return hist_; }

 private:
  bool InModel(int i) const { return hist_(i) > 0.0f; }

  float P(int i) const {
    const VariableFit fit = FitOf(i);
    float t;
    float p;
    C1T(fit.estimate, fit.stdError, fit.df, t, p);
    return p;
  }

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
    const StepCandidates candidates{nvar_, idep_, t_, hist_, level_, [this](int i) { return P(i); }};
    if (anyIn && (options_.NFORCE == 0 || options_.NFORCE < lmax)) {
      const int weakest = WeakestInModel(candidates, lmax);
      if (weakest != 0 && P(weakest) > options_.POUT) {
        matrix_.Sweep(weakest, options_.TOL);
        --nvin_;
        hist_(weakest) = -static_cast<float>(step);
        return true;
      }
    }
    if (anyOut) {
      const int strongest = StrongestOutside(candidates, lmin);
      if (strongest != 0 && P(strongest) < options_.PIN) {
        // A refused pivot still counts as an entry.
        matrix_.Sweep(strongest, options_.TOL);
        ++nvin_;
        hist_(strongest) = static_cast<float>(step);
        return true;
      }
    }
    return false;
  }

  // A variable in the model is judged by its partial t there; a candidate
  // with the degrees of freedom of the model it would join, so that its
  // step statistic is its partial t in that model.
  VariableFit FitOf(int i) const {
    const float rss = matrix_.Diagonal(idep_);
    const float cii = matrix_.Diagonal(i);
    const float ciy = matrix_.WithDependent(i);
    VariableFit fit;
    float spread;  // the quantity under the root, before the division
    if (InModel(i)) {
      fit.estimate = ciy;
      fit.vif = matrix_.Scale(i) * cii;
      spread = cii * rss;
      fit.df = nobs_ - nvin_ - 1;
    } else {
      if (cii == 0.0f) {
        fit.estimate = 0.0f;
        fit.vif = kInfinity;
        spread = 0.0f;
      } else {
        fit.estimate = ciy / cii;
        fit.vif = matrix_.Scale(i) / cii;
        spread = rss / cii - fit.estimate * fit.estimate;
      }
      fit.df = nobs_ - nvin_ - 2;
    }
    fit.stdError = kNaN;
    if (fit.df > 0) {
      const float variance = spread / static_cast<float>(fit.df);
      if (!(variance < 0.0f)) fit.stdError = std::sqrt(variance);
    }
    return fit;
  }

  // The t of every variable; its p waits until a choice asks for it.
  void Statistics() {
    for (int i = 1; i <= nvar_; ++i) {
      if (i == idep_) continue;
      const VariableFit fit = FitOf(i);
      t_(i) = GuardedDivide(fit.estimate, fit.stdError);
    }
  }

  void FillAov(StepAovTable& aov) const {
    const float sse = matrix_.Diagonal(idep_);
    const float ssr = matrix_.Scale(idep_) - sse;
    AovTable full;
    G1AOV(static_cast<float>(nvin_), ssr, static_cast<float>(nobs_ - nvin_ - 1), sse, 0.0f, full);
    for (int e = 1; e <= StepAovTable::Size(); ++e) aov(e) = full(e);
  }

  const int nvar_;
  const int nobs_;
  const int idep_;
  const RstepOptions& options_;
  const Array<int, 1>& level_;
  SweptMatrix matrix_;
  Array<float, 1> t_;
  Array<float, 1> hist_;
  int nvin_ = 0;
};

}  // namespace

void RSTEP(int NVAR, const SymmetricRows& COV, int NOBS, const RstepOptions& options, StepAovTable& AOV,
           Array<float, 2>& COEF, Array<float, 1>* SCALE, Array<float, 1>* HIST, int* IEND, Array<float, 2>* COVS) {
  Array<int, 1> defaultLevel;
  if (options.LEVEL == nullptr && NVAR >= 1) {
    defaultLevel.Allocate(NVAR);
    defaultLevel.Fill(1);
    defaultLevel(NVAR) = -1;
  }
  const Array<int, 1>& level = options.LEVEL != nullptr ? *options.LEVEL : defaultLevel;
  int idep = 0;
  if (!CheckArguments(NVAR, options, level, idep)) return;

  Stepper stepper(NVAR, NOBS, idep, options, level, COV);
  const int end = stepper.Run(AOV);
  if (stepper.NumIn() < 1) {
    AOV.Fill(kNaN);
    RaiseError(SeverityWarning, "RSTEP",
               "No variables entered the model.  All elements of AOV are set to NaN (not a number).");
  }
  stepper.FillCoef(COEF);
  if (SCALE != nullptr) stepper.FillScale(*SCALE);
  if (HIST != nullptr) *HIST = stepper.Hist();
  if (IEND != nullptr) *IEND = end;
  if (COVS != nullptr) stepper.FillCovs(*COVS);
}

void RSTEP(int NVAR, const Array<float, 2>& COV, int NOBS, const RstepOptions& options, StepAovTable& AOV,
           Array<float, 2>& COEF, Array<float, 1>* SCALE, Array<float, 1>* HIST, int* IEND, Array<float, 2>* COVS) {
  RSTEP(NVAR, WholeMatrix(NVAR, COV), NOBS, options, AOV, COEF, SCALE, HIST, IEND, COVS);
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
