#include "numerics/stepwise/Rstep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

#include "numerics/basic/ErrorPolicy.h"
#include "numerics/stepwise/reference/DenseStepwise.h"
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

// ------------------------------------------------- GSWEP of the reference

// A positive definite matrix; the last variable plays the response.
Array<float, 2> SweepMatrix() {
  return MatrixOf({{4.0f, 2.0f, 0.6f, 1.2f}, {2.0f, 3.0f, -0.5f, 0.7f}, {0.6f, -0.5f, 2.0f, 0.3f}, {1.2f, 0.7f, 0.3f, 1.5f}});
}

TEST_F(RstepTest, SweepingInGivesInverseCoefficientsAndResidual) {
  Array<float, 2> a = SweepMatrix();
  Array<float, 1> scale(4), swept(4);
  swept.Fill(-1.0f);
  for (int i = 1; i <= 4; ++i) scale(i) = a(i, i);
  for (int k = 1; k <= 3; ++k) reference::DenseGSWEP(4, k, 1.0e-5f, scale, swept, a);
  // numpy 1.24: inv(A[:3,:3]), inv(A[:3,:3]) @ A[:3,3], A[3,3] - A[3,:3] @ coef.
  const float inverse[3][3] = {{0.452044025f, -0.338050314f, -0.220125786f},
                               {-0.338050314f, 0.600628931f, 0.251572327f},
                               {-0.220125786f, 0.251572327f, 0.628930818f}};
  for (int i = 1; i <= 3; ++i)
    for (int j = i; j <= 3; ++j) EXPECT_NEAR(a(i, j), inverse[i - 1][j - 1], 2e-6f) << i << "," << j;
  EXPECT_NEAR(a(1, 4), 0.239779874f, 2e-6f);
  EXPECT_NEAR(a(2, 4), 0.090251572f, 2e-6f);
  EXPECT_NEAR(a(3, 4), 0.100628931f, 2e-6f);
  EXPECT_NEAR(a(4, 4), 1.118899371f, 2e-6f);
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(swept(i), 1.0f);
  EXPECT_EQ(swept(4), -1.0f);
}

TEST_F(RstepTest, SweepRefusesWhenASweptVariableWouldBecomeCollinear) {
  // x1 = x2 + 0.02 z, x3 = z + w with var(w) = 0.01 (x2, z, w independent,
  // unit variances otherwise).  Entering x3 leaves it 1 % of its variance,
  // well above the tolerance, but leaves x1 only 0.0004 * 0.0099 / 1.0004
  // of its own: the second test of the sweep must refuse.
  const float delta = 0.02f;
  auto fresh = [&] {
    return MatrixOf({{1.0f + delta * delta, 1.0f, delta}, {1.0f, 1.0f, 0.0f}, {delta, 0.0f, 1.01f}});
  };
  const float tolerance = 1.1920929e-5f;
  Array<float, 2> a = fresh();
  Array<float, 1> scale(3), swept(3);
  swept.Fill(-1.0f);
  for (int i = 1; i <= 3; ++i) scale(i) = a(i, i);
  reference::DenseGSWEP(3, 1, tolerance, scale, swept, a);
  reference::DenseGSWEP(3, 2, tolerance, scale, swept, a);
  ASSERT_EQ(swept(2), 1.0f);
  ASSERT_GT(a(3, 3), tolerance * scale(3));  // the first test alone would pass
  reference::DenseGSWEP(3, 3, tolerance, scale, swept, a);
  EXPECT_EQ(swept(3), -1.0f);
  EXPECT_EQ(a(3, 3), 0.0f);
  EXPECT_EQ(a(1, 3), 0.0f);
  EXPECT_EQ(a(2, 3), 0.0f);

  // With a tenfold smaller tolerance the same pivot is taken.
  Array<float, 2> b = fresh();
  swept.Fill(-1.0f);
  for (int k = 1; k <= 3; ++k) reference::DenseGSWEP(3, k, tolerance / 10.0f, scale, swept, b);
  EXPECT_EQ(swept(3), 1.0f);
  EXPECT_GT(b(3, 3), 0.0f);
}

// ---------------------------------------------------------------- C1T

TEST_F(RstepTest, TwoSidedPValueOfT) {
  float t = 0.0f, p = 0.0f;
  // scipy 1.10: 2 * t.sf(2, 10), 2 * t.sf(0.5, 3), 2 * t.sf(3.2, 40).
  C1T(4.0f, 2.0f, 10, t, p);
  EXPECT_EQ(t, 2.0f);
  EXPECT_NEAR(p, 0.0733880348f, 2e-6f);
  C1T(-1.0f, 2.0f, 3, t, p);
  EXPECT_EQ(t, -0.5f);
  EXPECT_NEAR(p, 0.6514479648f, 2e-6f);
  C1T(3.2f, 1.0f, 40, t, p);
  EXPECT_NEAR(p, 0.0026906524f, 2e-6f);
}

TEST_F(RstepTest, BadTValuesGiveNaNOrZero) {
  float t = 0.0f, p = 0.0f;
  C1T(0.0f, 0.0f, 10, t, p);
  EXPECT_TRUE(std::isnan(t));
  EXPECT_TRUE(std::isnan(p));
  C1T(1.0f, 0.0f, 10, t, p);
  EXPECT_TRUE(std::isinf(t));
  EXPECT_EQ(p, 0.0f);
  C1T(2.0f, 1.0f, 0, t, p);
  EXPECT_EQ(t, 2.0f);
  EXPECT_TRUE(std::isnan(p));
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

TEST_F(RstepTest, ARefusedCandidateCountsAsEnteredWithEstimateZero) {
  // Variable 2 is variable 1 plus a sliver (variance 1e-6 of 1) that tracks
  // -y closely: 1 enters first, then the partial t of 2 is large, but its
  // pivot is below the tolerance.
  const Array<float, 2> cov = MatrixOf({{1.0f, 1.0f, 0.5f}, {1.0f, 1.000001f, 0.4992f}, {0.5f, 0.4992f, 1.0f}});
  const StepRun run(cov, 20, RstepOptions());
  EXPECT_EQ(run.hist(1), 1.0f);
  EXPECT_EQ(run.hist(2), 2.0f);
  EXPECT_EQ(run.coef(2, 1), 0.0f);
  EXPECT_TRUE(std::isnan(run.coef(2, 4)));
  for (int j = 1; j <= 3; ++j) EXPECT_EQ(run.covs(std::min(2, j), std::max(2, j)), 0.0f);
  EXPECT_EQ(run.aov(1), 2.0f);
  // The fit is that of variable 1 alone: R-square 25 %.
  EXPECT_NEAR(run.aov(11), 25.0f, 1e-3f);
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

TEST_F(RstepTest, LevelZeroVariablesAreNeverCandidates) {
  Array<int, 1> level(4);
  level(1) = 0;
  level(2) = 1;
  level(3) = 1;
  level(4) = -1;
  RstepOptions options;
  options.LEVEL = &level;
  const StepRun run(ProxyMatrix(), kProxyObs, options);
  EXPECT_EQ(run.hist(1), 0.0f);
  EXPECT_EQ(run.hist(2), 1.0f);
  EXPECT_EQ(run.hist(3), 2.0f);
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
