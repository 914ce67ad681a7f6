// The guards and constants of the basic numerics and the error policy; the
// order of the column sums is pinned in tests/numerics/ExactNumericsTest.

#include <gtest/gtest.h>

#include <cmath>

#include "numerics/basic/Basic.h"
#include "numerics/basic/ErrorPolicy.h"
#include "support/RaisedMessages.h"

namespace tov {
namespace {

constexpr float Missing = -9999.0f;

TEST(Basic, MissingValuesAndColumnsWithoutEnoughOfThem) {
  for (const float v : {Missing, NAN}) EXPECT_TRUE(IsMissingValue(v)) << v;
  for (const float v : {-9999.001f, -9998.999f, 9999.0f, -INFINITY}) EXPECT_FALSE(IsMissingValue(v)) << v;
  const float x[] = {1.0f, 2.0f, NAN, Missing, 6.0f}, none[] = {Missing, NAN, Missing, Missing, Missing};
  int missing = -1;
  EXPECT_TRUE(MeanOfValid(5, x, &missing) == 3.0f && missing == 2);
  EXPECT_TRUE(std::isnan(ColumnVariance(4, none + 1, &missing)) && missing == 4);
  EXPECT_TRUE(std::isnan(ColumnVariance(1, x)));
  EXPECT_EQ(ColumnCovariance(1, x, x), 0.0f);
  EXPECT_TRUE(std::isnan(ColumnCovariance(5, x, none, &missing)) && missing == 5);
  const float constant[] = {5.0f, 5.0f, 5.0f, 5.0f, 5.0f};
  EXPECT_TRUE(std::isnan(CorrelationOfValid(2, x, constant))) << "0 / 0 without a trap";
}

TEST(Basic, GuardedDivide) {
  struct Case {
    float a, b, quotient;
  } cases[] = {{1.0f, 0.0f, INFINITY},        {-1.0f, 0.0f, -INFINITY},      {1.0f, -0.0f, -INFINITY},
               {-3.0f, -0.0f, INFINITY},      {2.0e-38f, 4.0f, 0.0f},        {1.0e-30f, 1.0e10f, 0.0f},
               {5.0e-38f, 4.0f, 1.25e-38f},   {1.0e30f, 1.0e-10f, INFINITY}, {1.0e30f, -1.0e-10f, -INFINITY},
               {0x1.fffffep126f, 0.5f, INFINITY}, {0x1.fffffcp126f, 0.5f, 0x1.fffffcp127f}};
  for (const Case& c : cases) EXPECT_EQ(GuardedDivide(c.a, c.b), c.quotient) << c.a << " / " << c.b;
  EXPECT_TRUE(std::isnan(GuardedDivide(0.0f, 0.0f)));
  EXPECT_TRUE(std::isnan(GuardedDivide(NAN, 1.0f)));
}

TEST(Basic, MachineConstants) {
  const float expected[] = {0x1p-126f, 0x1.fffffep127f, 0x1p-24f, 0x1p-23f, 0.30103000998497009f, NAN, INFINITY,
                            -INFINITY};
  for (int i = 1; i <= 8; ++i) EXPECT_TRUE(AMACH(i) == expected[i - 1] || (i == 6 && std::isnan(AMACH(i)))) << i;
  for (const int i : {0, 9}) {
    EXPECT_FALSE(RaisedMessages([i] { EXPECT_TRUE(std::isnan(AMACH(i))); }).empty());
    EXPECT_EQ(N1RTY(1), SeverityTerminal);
  }
}

std::string Printed(Severity severity) {
  testing::internal::CaptureStderr();
  RaiseError(severity, "ROUTN", "text");
  return testing::internal::GetCapturedStderr();
}

TEST(ErrorPolicy, PrintsAndStopsBySeverity) {
  ERSET(0, 2, 2);
  for (const Severity s : {SeverityNote, SeverityAlert}) EXPECT_EQ(Printed(s), "") << s;
  for (const Severity s : {SeverityWarning, SeverityWarningRepaired}) EXPECT_EQ(Printed(s), "ROUTN: text\n") << s;
  for (const Severity s : {SeverityFatal, SeverityTerminal, SeverityFatalRepaired})
    EXPECT_EXIT(RaiseError(s, "ROUTN", "stops"), testing::ExitedWithCode(0), "ROUTN: stops") << s;
  ERSET(0, 0, 0);
  EXPECT_EQ(Printed(SeverityTerminal), "");
  EXPECT_EQ(N1RTY(1), SeverityTerminal) << "a silenced error is still recorded";
  ERSET(0, 1, 0);
  EXPECT_EQ(Printed(SeverityNote), "ROUTN: text\n");
  EXPECT_EQ(Printed(SeverityFatal), "ROUTN: text\n");
  ERSET(0, 2, 2);
  ERSET(SeverityWarning, 0, -1);
  EXPECT_EQ(Printed(SeverityWarning), "");
  EXPECT_EQ(Printed(SeverityWarningRepaired), "ROUTN: text\n") << "one severity changes alone";
  ERSET(0, 2, 2);
  ClearLastError();
  EXPECT_EQ(N1RTY(1), SeverityNone);
}

TEST(ErrorPolicy, FillMessage) {
  EXPECT_EQ(FillMessage("X(%(I1)) = %(I3), N = %(I2).", {7, 5, 9}), "X(7) = 9, N = 5.");
  EXPECT_EQ(FillMessage("PIN = %(R1), EVAL = %(R2).", {}, {0.05f, -1.5e-7f}), "PIN = 0.05, EVAL = -1.5e-07.");
  EXPECT_EQ(FillMessage("%(L1) = %(I1).  %(L1) < %(I2).", {2, 3}, {}, {"NOBS"}), "NOBS = 2.  NOBS < 3.");
  EXPECT_EQ(FillMessage("A %(I2) B %( C 100%", {1}), "A %(I2) B %( C 100%");
}

}  // namespace
}  // namespace tov
