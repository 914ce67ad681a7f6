// RSTEP on hand-made matrices: one selection against numpy/scipy, and what
// the random comparisons with the dense engine (DenseReferenceTest) do not
// reach: p-values exactly at PIN or POUT, the messages, the step bound and
// the argument checks.  Entries, removals, refused pivots and levels are
// reached, bit for bit, there.
#include "numerics/stepwise/Rstep.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "numerics/basic/ErrorPolicy.h"
#include "support/MatrixOf.h"

namespace tov {
namespace {

using testing_support::MatrixOf;

// Runs RSTEP with every optional output and keeps them.
struct StepRun {
  StepAovTable aov;
  Array<float, 2> coef;
  Array<float, 2> covs;
  Array<float, 1> scale;
  Array<float, 1> hist;
  int iend = -1;

  StepRun(const Array<float, 2>& cov, int nobs, const RstepOptions& options) {
    const int nvar = static_cast<int>(cov.Extent(1));
    coef.Allocate(nvar - 1, 5);
    covs.Allocate(nvar, nvar);
    RSTEP(nvar, cov, nobs, options, aov, coef, &scale, &hist, &iend, &covs);
  }
};

class RstepTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ERSET(0, 0, 0);
    ClearLastError();
  }
  void TearDown() override { ERSET(0, 0, 0); }
};

// ---------------------------------------------------------------- C1T

// Estimate, standard error, df; t and its two-sided p (scipy 1.10:
// 2 * t.sf(|t|, df)); a p of -1 stands for NaN.  A zero error gives NaN or
// an infinite t, and no degrees of freedom a NaN p.
TEST_F(RstepTest, TwoSidedPValueOfT) {
  const struct {
    float estimate, stdError;
    int df;
    float t, p;
  } cases[] = {{4.0f, 2.0f, 10, 2.0f, 0.0733880348f},  {-1.0f, 2.0f, 3, -0.5f, 0.6514479648f},
               {3.2f, 1.0f, 40, 3.2f, 0.0026906524f},  {0.0f, 0.0f, 10, std::nanf(""), -1.0f},
               {1.0f, 0.0f, 10, INFINITY, 0.0f},        {2.0f, 1.0f, 0, 2.0f, -1.0f}};
  for (const auto& c : cases) {
    float t = 0.0f, p = 0.0f;
    C1T(c.estimate, c.stdError, c.df, t, p);
    EXPECT_TRUE(t == c.t || (std::isnan(t) && std::isnan(c.t))) << c.estimate << " " << t;
    if (c.p < 0.0f)
      EXPECT_TRUE(std::isnan(p)) << c.estimate;
    else
      EXPECT_NEAR(p, c.p, 2e-6f) << c.estimate;
  }
}

// ---------------------------------------------------------------- RSTEP

// A = B + C + n and y = B + C + 0.03 n + e, with B, C, n, e independent,
// var(n) = 1, var(e) = 0.1; columns A, B, C, y.  A enters first, B and C
// tie for the second step and B takes it, C follows, and then A no longer
// adds anything worth keeping (p about 0.355) and leaves.
Array<float, 2> ProxyMatrix() {
  return MatrixOf({{3.0f, 1.0f, 1.0f, 2.03f}, {1.0f, 1.0f, 0.0f, 1.0f}, {1.0f, 0.0f, 1.0f, 1.0f}, {2.03f, 1.0f, 1.0f, 2.1009f}});
}
constexpr int kProxyObs = 100;

TEST_F(RstepTest, SelectionRemovesTheProxyAndReportsTheFinalModel) {
  RstepOptions options;  // PIN 0.05, POUT 0.10
  const Array<float, 2> cov = ProxyMatrix();
  StepRun run(cov, kProxyObs, options);
  const Array<float, 2> untouched = ProxyMatrix();
  for (int j = 1; j <= 4; ++j)
    for (int i = 1; i <= 4; ++i) EXPECT_EQ(cov(i, j), untouched(i, j));
  EXPECT_EQ(run.hist(1), -4.0f);
  EXPECT_EQ(run.hist(2), 2.0f);
  EXPECT_EQ(run.hist(3), 3.0f);
  EXPECT_EQ(run.hist(4), 0.0f);
  EXPECT_EQ(run.iend, 1);
  for (int i = 1; i <= 4; ++i) EXPECT_EQ(run.scale(i), cov(i, i));

  // numpy/scipy, model {B, C}: estimate, SE, t, p, VIF.
  for (int i = 2; i <= 3; ++i) {
    EXPECT_NEAR(run.coef(i, 1), 1.0, 2e-6);
    EXPECT_NEAR(run.coef(i, 2), 0.0322522276, 2e-6);
    EXPECT_NEAR(run.coef(i, 3), 31.0056103, 3e-3);
    EXPECT_NEAR(run.coef(i, 4), 0.0, 1e-6);
    EXPECT_NEAR(run.coef(i, 5), 1.0, 1e-6);
  }
  // A outside: its partial statistics in {A, B, C}, df = 96, VIF = 3.
  EXPECT_NEAR(run.coef(1, 1), 0.03, 2e-5);
  EXPECT_NEAR(run.coef(1, 2), 0.0322748612, 2e-6);
  EXPECT_NEAR(run.coef(1, 3), 0.929516003, 1e-3);
  EXPECT_NEAR(run.coef(1, 4), 0.354953150, 5e-4);
  EXPECT_NEAR(run.coef(1, 5), 3.0, 1e-5);

  // AOV of {B, C}: sums of squares in the units of the matrix.
  const double aov[13] = {2, 97, 99, 2.0, 0.1009, 2.1009, 1.0, 0.00104020619, 961.347869, 0.0,
                          95.1972964, 95.0982716, 0.0322522276};
  const double tolerance[13] = {0, 0, 0, 2e-5, 2e-5, 2e-6, 1e-5, 2e-7, 0.2, 1e-6, 1e-3, 1e-3, 2e-6};
  for (int e = 1; e <= 13; ++e) EXPECT_NEAR(run.aov(e), aov[e - 1], tolerance[e - 1]) << "AOV(" << e << ")";
}

TEST_F(RstepTest, AVariableAtPOutExactlyStays) {
  // The p of A once B and C are in, as the engine itself computes it.
  RstepOptions options;
  options.NSTEP = 3;
  const StepRun three(ProxyMatrix(), kProxyObs, options);
  ASSERT_EQ(three.hist(1), 1.0f);
  ASSERT_EQ(three.hist(3), 3.0f);
  const float pA = three.coef(1, 4);
  ASSERT_GT(pA, 0.3f);
  // With A, B and C in, the VIFs are SCALE times the diagonal of the
  // inverse of their block, [[1, -1, -1], [-1, 2, 1], [-1, 1, 2]] (numpy).
  EXPECT_NEAR(three.coef(1, 5), 3.0f, 1e-5f);
  EXPECT_NEAR(three.coef(2, 5), 2.0f, 1e-5f);

  options.NSTEP = -1;
  options.POUT = pA;
  const StepRun stays(ProxyMatrix(), kProxyObs, options);
  EXPECT_EQ(stays.hist(1), 1.0f);
  EXPECT_EQ(stays.aov(1), 3.0f);

  options.POUT = std::nextafter(pA, 0.0f);
  const StepRun leaves(ProxyMatrix(), kProxyObs, options);
  EXPECT_EQ(leaves.hist(1), -4.0f);
  EXPECT_EQ(leaves.aov(1), 2.0f);
}

TEST_F(RstepTest, ACandidateAtPInExactlyStaysOut) {
  // Correlations 0.3 and 0.2 with y over 30 observations: p near 0.1.
  const Array<float, 2> cov = MatrixOf({{1.0f, 0.1f, 0.3f}, {0.1f, 1.0f, 0.2f}, {0.3f, 0.2f, 1.0f}});
  RstepOptions options;
  options.NSTEP = 0;
  const StepRun setUp(cov, 30, options);
  const float p = setUp.coef(1, 4);
  ASSERT_GT(p, 0.05f);
  ASSERT_LT(p, 0.2f);

  options.NSTEP = -1;
  options.POUT = 0.5f;
  options.PIN = p;
  const StepRun atPIn(cov, 30, options);
  EXPECT_EQ(atPIn.hist(1), 0.0f);
  EXPECT_TRUE(std::isnan(atPIn.aov(11)));

  options.PIN = std::nextafter(p, 1.0f);
  const StepRun above(cov, 30, options);
  EXPECT_EQ(above.hist(1), 1.0f);
  EXPECT_EQ(above.hist(2), 0.0f);
  EXPECT_EQ(above.aov(1), 1.0f);
}

TEST_F(RstepTest, NothingEnteredLeavesAllOfAovNaN) {
  // Correlations 0.3 and 0.2 with y over 30 observations: p near 0.1.
  const Array<float, 2> cov = MatrixOf({{1.0f, 0.1f, 0.3f}, {0.1f, 1.0f, 0.2f}, {0.3f, 0.2f, 1.0f}});
  RstepOptions options;
  options.PIN = 0.01f;
  ERSET(0, 1, 0);
  testing::internal::CaptureStderr();
  const StepRun run(cov, 30, options);
  const std::string printed = testing::internal::GetCapturedStderr();
  EXPECT_NE(printed.find("No variables entered the model.  All elements of AOV are set to NaN (not a number)."),
            std::string::npos)
      << printed;
  for (int e = 1; e <= 13; ++e) EXPECT_TRUE(std::isnan(run.aov(e))) << e;
  EXPECT_EQ(run.iend, 1);
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(run.hist(i), 0.0f);
}

TEST_F(RstepTest, CyclingIsStoppedPastTwiceTheNumberOfCandidates) {
  // A matrix picked by a search over random ones: in 32 bits the p of
  // variable 2 as a candidate (before it enters and again after it leaves)
  // lies a few units in the last place below its p in the model.  With
  // PIN = POUT between the two it enters and leaves by turns until the step
  // bound, 2 * 2, is past.
  const Array<float, 2> cov = MatrixOf({{1.0f, -0.210430428f, 0.765762806f},
                                      {-0.210430428f, 1.0f, -0.0276003331f},
                                      {0.765762806f, -0.0276003331f, 1.0f}});
  const int nobs = 59;
  RstepOptions options;
  options.PIN = 0.5f;
  options.POUT = 0.9f;
  options.NSTEP = 1;
  const float pCandidate = StepRun(cov, nobs, options).coef(2, 4);
  options.NSTEP = 2;
  const StepRun two(cov, nobs, options);
  ASSERT_EQ(two.hist(2), 2.0f);
  const float pInModel = two.coef(2, 4);
  const float threshold = std::nextafter(pInModel, 0.0f);
  ASSERT_LT(pCandidate, threshold);

  options.NSTEP = -1;
  options.PIN = threshold;
  options.POUT = threshold;
  ERSET(0, 1, 0);
  testing::internal::CaptureStderr();
  const StepRun run(cov, nobs, options);
  const std::string printed = testing::internal::GetCapturedStderr();
  EXPECT_NE(printed.find("5 steps have been taken.  This is greater than twice the number of variables with LEVEL "
                         "greater than 0.  Cycling is occuring.  No more steps will be taken."),
            std::string::npos)
      << printed;
  EXPECT_EQ(N1RTY(1), SeverityWarning);
  EXPECT_EQ(run.iend, 0);
  EXPECT_EQ(run.hist(1), 1.0f);
  EXPECT_EQ(run.hist(2), -5.0f);
  EXPECT_EQ(run.aov(1), 1.0f);
}

// Each bad argument: its message, and no output touched.
struct BadArgument {
  const char* name;
  int nvar;
  RstepOptions options;
  bool twoDependents;
  const char* message;
};

RstepOptions With(void (*change)(RstepOptions&)) {
  RstepOptions options;
  change(options);
  return options;
}

TEST_F(RstepTest, ArgumentChecksRaiseTheirMessagesAndSkipTheWork) {
  const BadArgument cases[] = {
      {"NVAR", 1, RstepOptions(), false, "NVAR = 1.  NVAR must be greater than or equal to 2."},
      {"INVOKE", 3, With([](RstepOptions& o) { o.INVOKE = 4; }), false,
       "INVOKE = 4.  INVOKE must be greater than or equal to zero and less than or equal to 3."},
      {"NSTEP", 3, With([](RstepOptions& o) { o.NSTEP = -2; }), false,
       "NSTEP = -2.  NSTEP must be greater than or equal to -1."},
      {"ISTEP", 3, With([](RstepOptions& o) { o.ISTEP = 2; }), false, "ISTEP = 2.  ISTEP must be -1, 0, or 1."},
      {"PIN", 3, With([](RstepOptions& o) { o.PIN = 1.5f; }), false,
       "PIN = 1.5.  PIN must be in the exclusive range 0.0 to 1.0."},
      {"POUT", 3, With([](RstepOptions& o) { o.POUT = -0.5f; }), false,
       "POUT = -0.5.  POUT must be in the exclusive range 0.0 to 1.0."},
      {"PIN above POUT", 3, With([](RstepOptions& o) { o.PIN = 0.25f; o.POUT = 0.125f; }), false,
       "PIN = 0.25 and POUT = 0.125.  PIN must be less than or equal to POUT and each of them must be in the "
       "exclusive range 0.0 to 1.0."},
      {"NFORCE", 3, With([](RstepOptions& o) { o.NFORCE = -1; }), false,
       "NFORCE = -1.  NFORCE must be greater than or equal to zero."},
      {"LEVEL", 3, RstepOptions(), true,
       "LEVEL(1) and LEVEL(3) = -1.  There can be only one dependent variable in the model."},
  };
  const Array<float, 2> cov = MatrixOf({{1.0f, 0.1f, 0.5f}, {0.1f, 1.0f, 0.2f}, {0.5f, 0.2f, 1.0f}});
  Array<int, 1> twoDependents(3);
  twoDependents(1) = -1;
  twoDependents(2) = 1;
  twoDependents(3) = -1;
  ERSET(0, 1, 0);
  for (const BadArgument& bad : cases) {
    RstepOptions options = bad.options;
    if (bad.twoDependents) options.LEVEL = &twoDependents;
    StepAovTable aov;
    aov.Fill(7.0f);
    Array<float, 2> coef(2, 5), covs(3, 3);
    coef.Fill(7.0f);
    covs.Fill(7.0f);
    Array<float, 1> hist(3);
    hist.Fill(7.0f);
    int iend = 7;
    ClearLastError();
    testing::internal::CaptureStderr();
    RSTEP(bad.nvar, cov, 20, options, aov, coef, nullptr, &hist, &iend, &covs);
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_NE(printed.find(bad.message), std::string::npos) << bad.name << ": " << printed;
    EXPECT_EQ(N1RTY(1), SeverityTerminal) << bad.name;
    for (int e = 1; e <= 13; ++e) EXPECT_EQ(aov(e), 7.0f) << bad.name;
    for (float v : coef) EXPECT_EQ(v, 7.0f) << bad.name;
    for (float v : covs) EXPECT_EQ(v, 7.0f) << bad.name;
    for (float v : hist) EXPECT_EQ(v, 7.0f) << bad.name;
    EXPECT_EQ(iend, 7) << bad.name;
  }
}

}  // namespace
}  // namespace tov
