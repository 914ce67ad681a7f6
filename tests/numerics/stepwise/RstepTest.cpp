// RSTEP on hand-made matrices, for what the random comparisons with the
// dense engine (DenseReferenceTest) do not reach.
#include "numerics/stepwise/Rstep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>

#include "support/MatrixOf.h"
#include "support/RaisedMessages.h"

namespace tov {
namespace {

using testing_support::MatrixOf;

// Runs RSTEP and keeps HIST, IEND and COVS beside AOV and COEF.
struct StepRun {
  StepAovTable aov;
  Array<float, 2> coef;
  Array<float, 2> covs;
  Array<float, 1> hist;
  int iend = -1;

  StepRun(const Array<float, 2>& cov, int nobs, const RstepOptions& options) {
    const int nvar = static_cast<int>(cov.Extent(1));
    coef.Allocate(nvar - 1, 5);
    covs.Allocate(nvar, nvar);
    RSTEP(nvar, cov, nobs, options, aov, coef, nullptr, &hist, &iend, &covs);
  }
};

// Estimate, standard error, df; t and its two-sided p (scipy 1.10:
// 2 * t.sf(|t|, df)); a p of -1 stands for NaN.  A zero error gives NaN or
// an infinite t, and no degrees of freedom a NaN p, without asking TDF.
TEST(RstepTest, TwoSidedPValueOfT) {
  const struct {
    float estimate, stdError;
    int df;
    float t, p;
  } cases[] = {{4.0f, 2.0f, 10, 2.0f, 0.0733880348f},  {-1.0f, 2.0f, 3, -0.5f, 0.6514479648f},
               {3.2f, 1.0f, 40, 3.2f, 0.0026906524f},  {0.0f, 0.0f, 10, std::nanf(""), -1.0f},
               {1.0f, 0.0f, 10, INFINITY, 0.0f},        {2.0f, 1.0f, 0, 2.0f, -1.0f}};
  for (const auto& c : cases) {
    float t = 0.0f, p = 0.0f;
    EXPECT_EQ(RaisedMessages([&] { C1T(c.estimate, c.stdError, c.df, t, p); }), "");
    EXPECT_TRUE(t == c.t || (std::isnan(t) && std::isnan(c.t))) << c.estimate << " " << t;
    if (c.p < 0.0f)
      EXPECT_TRUE(std::isnan(p)) << c.estimate;
    else
      EXPECT_NEAR(p, c.p, 2e-6f) << c.estimate;
  }
}

// A candidate whose p equals PIN stays out, a variable whose p equals POUT
// stays in; one ulp on the other side moves them.
TEST(RstepTest, PInAndPOutAreStrictBounds) {
  // Correlations 0.3 and 0.2 with y over 30 observations: p near 0.1.
  const Array<float, 2> weak = MatrixOf({{1.0f, 0.1f, 0.3f}, {0.1f, 1.0f, 0.2f}, {0.3f, 0.2f, 1.0f}});
  const float pIn = StepRun(weak, 30, {.NSTEP = 0}).coef(1, 4);
  ASSERT_TRUE(pIn > 0.05f && pIn < 0.2f);
  std::optional<StepRun> none;
  const std::string text = RaisedMessages([&] { none.emplace(weak, 30, RstepOptions{.PIN = pIn, .POUT = 0.5f}); });
  EXPECT_TRUE(Says(text, "No variables entered the model.  All elements of AOV are set to NaN (not a number)."))
      << text;
  for (int e = 1; e <= 13; ++e) EXPECT_TRUE(std::isnan(none->aov(e))) << e;
  EXPECT_TRUE(none->hist(1) == 0.0f && none->hist(2) == 0.0f && none->iend == 1);
  const StepRun one(weak, 30, {.PIN = std::nextafter(pIn, 1.0f), .POUT = 0.5f});
  EXPECT_TRUE(one.hist(1) == 1.0f && one.hist(2) == 0.0f && one.aov(1) == 1.0f);

  // A = B + C + n, y = B + C + 0.03 n + e (columns A, B, C, y): A enters
  // first, B and C follow, and then A adds little (p about 0.355).
  const Array<float, 2> proxy = MatrixOf({{3.0f, 1.0f, 1.0f, 2.03f},
                                          {1.0f, 1.0f, 0.0f, 1.0f},
                                          {1.0f, 0.0f, 1.0f, 1.0f},
                                          {2.03f, 1.0f, 1.0f, 2.1009f}});
  const StepRun three(proxy, 100, {.NSTEP = 3});
  ASSERT_TRUE(three.hist(1) == 1.0f && three.hist(3) == 3.0f);
  const float pOut = three.coef(1, 4);
  const StepRun stays(proxy, 100, {.POUT = pOut});
  EXPECT_TRUE(stays.hist(1) == 1.0f && stays.aov(1) == 3.0f);
  const StepRun leaves(proxy, 100, {.POUT = std::nextafter(pOut, 0.0f)});
  EXPECT_TRUE(leaves.hist(1) == -4.0f && leaves.aov(1) == 2.0f);
}

// Levels make x1, x2, x3 enter in turn (u, v, w independent, unit
// variance).  x3 = u + v + 0.1 w after x1 = u, x2 = v fails only the test
// of the pivot itself (0.01 / 2.01); x3 = v + 0.1 w after x1 = u + v,
// x2 = u passes it (0.01 / 1.01) but leaves x1 0.01 / 2 of its variance,
// which the test of the swept variables refuses.  A refused pivot leaves
// its diagonal 0.0.
TEST(RstepTest, PivotsRefusedByEitherTolerance) {
  const Array<float, 2> pivotSmall = MatrixOf({{1.0f, 0.0f, 1.0f, 1.0f},
                                               {0.0f, 1.0f, 1.0f, 1.0f},
                                               {1.0f, 1.0f, 2.01f, 2.1f},
                                               {1.0f, 1.0f, 2.1f, 4.0f}});
  const Array<float, 2> sweptSmall = MatrixOf({{2.0f, 1.0f, 1.0f, 3.0f},
                                               {1.0f, 1.0f, 0.0f, 2.0f},
                                               {1.0f, 0.0f, 1.01f, 1.1f},
                                               {3.0f, 2.0f, 1.1f, 7.0f}});
  const struct {
    const Array<float, 2>* cov;
    float tol;
    bool refused;
  } cases[] = {{&pivotSmall, 0.007f, true},  {&pivotSmall, 0.004f, false},
               {&sweptSmall, 0.007f, true},  {&sweptSmall, 0.004f, false}};
  Array<int, 1> level(4);
  for (int i = 1; i <= 3; ++i) level(i) = i;
  level(4) = -1;
  for (const auto& c : cases) {
    const StepRun run(*c.cov, 100, {.PIN = 0.99f, .POUT = 0.99f, .TOL = c.tol, .LEVEL = &level});
    ASSERT_TRUE(run.hist(1) == 1.0f && run.hist(2) == 2.0f && run.hist(3) == 3.0f) << c.tol;
    EXPECT_EQ(run.covs(3, 3) == 0.0f, c.refused) << c.tol << " " << run.covs(3, 3);
  }
}

TEST(RstepTest, CyclingIsStoppedPastTwiceTheNumberOfCandidates) {
  // Found by a search: in 32 bits the p of variable 2 as a candidate lies a
  // few ulps below its p in the model, so with PIN = POUT between the two it
  // enters and leaves by turns until the step bound, 2 * 2, is past.
  const Array<float, 2> cov = MatrixOf({{1.0f, -0.210430428f, 0.765762806f},
                                        {-0.210430428f, 1.0f, -0.0276003331f},
                                        {0.765762806f, -0.0276003331f, 1.0f}});
  const int nobs = 59;
  const float pCandidate = StepRun(cov, nobs, {.NSTEP = 1, .PIN = 0.5f, .POUT = 0.9f}).coef(2, 4);
  const StepRun two(cov, nobs, {.NSTEP = 2, .PIN = 0.5f, .POUT = 0.9f});
  ASSERT_EQ(two.hist(2), 2.0f);
  const float threshold = std::nextafter(two.coef(2, 4), 0.0f);
  ASSERT_LT(pCandidate, threshold);
  std::optional<StepRun> run;
  const std::string text =
      RaisedMessages([&] { run.emplace(cov, nobs, RstepOptions{.PIN = threshold, .POUT = threshold}); });
  EXPECT_TRUE(Says(text, "5 steps have been taken.  This is greater than twice the number of variables with LEVEL "
                         "greater than 0.  Cycling is occuring.  No more steps will be taken."))
      << text;
  EXPECT_EQ(N1RTY(1), SeverityWarning);
  EXPECT_TRUE(run->iend == 0 && run->hist(1) == 1.0f && run->hist(2) == -5.0f && run->aov(1) == 1.0f);
}

// Each bad argument: its message, and no output touched.
TEST(RstepTest, ArgumentChecksRaiseTheirMessagesAndSkipTheWork) {
  Array<int, 1> twoDependents(3);
  twoDependents.Fill(-1);
  twoDependents(2) = 1;
  const struct {
    int nvar;
    RstepOptions options;
    const char* message;
  } cases[] = {
      {1, {}, "NVAR = 1.  NVAR must be greater than or equal to 2."},
      {3, {.INVOKE = 4}, "INVOKE = 4.  INVOKE must be greater than or equal to zero and less than or equal to 3."},
      {3, {.NSTEP = -2}, "NSTEP = -2.  NSTEP must be greater than or equal to -1."},
      {3, {.ISTEP = 2}, "ISTEP = 2.  ISTEP must be -1, 0, or 1."},
      {3, {.PIN = 1.5f}, "PIN = 1.5.  PIN must be in the exclusive range 0.0 to 1.0."},
      {3, {.POUT = -0.5f}, "POUT = -0.5.  POUT must be in the exclusive range 0.0 to 1.0."},
      {3, {.PIN = 0.25f, .POUT = 0.125f},
       "PIN = 0.25 and POUT = 0.125.  PIN must be less than or equal to POUT and each of them must be in the "
       "exclusive range 0.0 to 1.0."},
      {3, {.NFORCE = -1}, "NFORCE = -1.  NFORCE must be greater than or equal to zero."},
      {3, {.LEVEL = &twoDependents},
       "LEVEL(1) and LEVEL(3) = -1.  There can be only one dependent variable in the model."},
  };
  const Array<float, 2> cov = MatrixOf({{1.0f, 0.1f, 0.5f}, {0.1f, 1.0f, 0.2f}, {0.5f, 0.2f, 1.0f}});
  const auto untouched = [](const auto& a) {
    return std::all_of(a.begin(), a.end(), [](float v) { return v == 7.0f; });
  };
  for (const auto& bad : cases) {
    StepAovTable aov;
    Array<float, 2> coef(2, 5), covs(3, 3);
    Array<float, 1> hist(3);
    aov.Fill(7.0f);
    coef.Fill(7.0f);
    covs.Fill(7.0f);
    hist.Fill(7.0f);
    int iend = 7;
    const std::string text =
        RaisedMessages([&] { RSTEP(bad.nvar, cov, 20, bad.options, aov, coef, nullptr, &hist, &iend, &covs); });
    EXPECT_TRUE(Says(text, bad.message)) << text;
    EXPECT_EQ(N1RTY(1), SeverityTerminal) << bad.message;
    EXPECT_TRUE(untouched(aov.Element) && untouched(coef) && untouched(covs) && untouched(hist) && iend == 7)
        << bad.message;
  }
}

}  // namespace
}  // namespace tov
