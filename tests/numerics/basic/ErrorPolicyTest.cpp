#include "numerics/basic/ErrorPolicy.h"

#include <gtest/gtest.h>

#include <string>

namespace tov {
namespace {

// Every test starts and ends with the default policy, which is process-wide.
class ErrorPolicyTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ERSET(0, 2, 2);
    ClearLastError();
  }
  void TearDown() override {
    ERSET(0, 2, 2);
    ClearLastError();
  }
};

std::string StderrOf(Severity severity) {
  ::testing::internal::CaptureStderr();
  RaiseError(severity, "ROUTN", "some text");
  return ::testing::internal::GetCapturedStderr();
}

TEST_F(ErrorPolicyTest, DefaultPrintsSeveritiesThreeToSevenOnly) {
  EXPECT_EQ(StderrOf(SeverityNote), "");
  EXPECT_EQ(StderrOf(SeverityAlert), "");
  EXPECT_EQ(StderrOf(SeverityWarning), "ROUTN: some text\n");
  EXPECT_EQ(StderrOf(SeverityWarningRepaired), "ROUTN: some text\n");
  EXPECT_EQ(N1RTY(1), SeverityWarningRepaired);
}

TEST_F(ErrorPolicyTest, DefaultStopsOnFatalTerminalAndFatalRepaired) {
  EXPECT_EXIT(RaiseError(SeverityFatal, "ROUTN", "fatal one"), ::testing::ExitedWithCode(0), "ROUTN: fatal one");
  EXPECT_EXIT(RaiseError(SeverityTerminal, "ROUTN", "terminal one"), ::testing::ExitedWithCode(0),
              "ROUTN: terminal one");
  EXPECT_EXIT(RaiseError(SeverityFatalRepaired, "ROUTN", "repaired"), ::testing::ExitedWithCode(0), "ROUTN: repaired");
  // A warning with a repair is printed but the run goes on.
  StderrOf(SeverityWarningRepaired);
  EXPECT_EQ(N1RTY(1), SeverityWarningRepaired);
}

TEST_F(ErrorPolicyTest, SilencedPolicyStillRecordsTheSeverity) {
  ERSET(0, 0, 0);
  EXPECT_EQ(StderrOf(SeverityTerminal), "");
  EXPECT_EQ(N1RTY(1), SeverityTerminal);
  EXPECT_EQ(StderrOf(SeverityWarning), "");
  EXPECT_EQ(N1RTY(1), SeverityWarning);
  ClearLastError();
  EXPECT_EQ(N1RTY(1), SeverityNone);
}

TEST_F(ErrorPolicyTest, PrintAllStopNoneAsMulticollinearityStepSetsIt) {
  ERSET(0, 1, 0);
  EXPECT_EQ(StderrOf(SeverityNote), "ROUTN: some text\n");
  EXPECT_EQ(StderrOf(SeverityFatal), "ROUTN: some text\n");
  EXPECT_EQ(N1RTY(1), SeverityFatal);
}

TEST_F(ErrorPolicyTest, OneSeverityChangesAloneAndMinusOneLeavesTheSetting) {
  ERSET(SeverityTerminal, -1, 0);
  EXPECT_EQ(StderrOf(SeverityTerminal), "ROUTN: some text\n");
  EXPECT_EXIT(RaiseError(SeverityFatal, "ROUTN", "still stops"), ::testing::ExitedWithCode(0), "still stops");
  ERSET(SeverityWarning, 0, -1);
  EXPECT_EQ(StderrOf(SeverityWarning), "");
  EXPECT_EQ(StderrOf(SeverityWarningRepaired), "ROUTN: some text\n");
  // 2 restores the default of that severity only.
  ERSET(SeverityWarning, 2, 2);
  EXPECT_EQ(StderrOf(SeverityWarning), "ROUTN: some text\n");
}

TEST(FillMessage, PutsEachValueByItsNumber) {
  EXPECT_EQ(FillMessage("IPERMU(%(I1)) = %(I3) is not allowed.  It must be between 1 and N = %(I2).", {7, 5, 9}),
            "IPERMU(7) = 9 is not allowed.  It must be between 1 and N = 5.");
  EXPECT_EQ(FillMessage("PIN = %(R1) and POUT = %(R2).", {}, {0.05f, 0.1f}), "PIN = 0.05 and POUT = 0.1.");
  EXPECT_EQ(FillMessage("%(L1) = %(I1).  %(L1) must be at least %(I2).", {2, 3}, {}, {"NOBS"}),
            "NOBS = 2.  NOBS must be at least 3.");
  EXPECT_EQ(FillMessage("EVAL(%(I1)) = %(R1).", {4}, {-1.5e-7f}), "EVAL(4) = -1.5e-07.");
  // Placeholders without a value, and a stray percent sign, stay as written.
  EXPECT_EQ(FillMessage("A %(I2) B %( C 100%", {1}), "A %(I2) B %( C 100%");
}

}  // namespace
}  // namespace tov
