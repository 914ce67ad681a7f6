#include "core/Messages.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "core/Log.h"
#include "support/ScratchFile.h"

namespace tov {
namespace {

std::string LogOf(const Messages& messages) {
  std::string text;
  for (const Message& m : messages) text += m.Log + "\n";
  return text;
}

TEST(Messages, ErrorPrefixHoldsTheCodeInFourColumns) {
  EXPECT_EQ(ErrorPrefix(2016), "--Error2016: ");
  EXPECT_EQ(ErrorPrefix(7), "--Error   7: ");
}

TEST(Messages, ValuesAreLeftAdjustedAndTrimmed) {
  EXPECT_EQ(MessageInteger(3), "3");
  EXPECT_EQ(MessageInteger(-12345678), "********");
  EXPECT_EQ(MessageReal(0.49f), "0.49");
  EXPECT_EQ(MessageReal(1000000.0f), "********");
  EXPECT_EQ(LogOf(ComposeParameter(3005, 0, 1000000.0f)),
            "--Error3005: Threshold LOD for single marker analysis too small (>0.5)! SMA Threshold LOD=********\n");
}

TEST(Messages, WelcomeAndClockLinesKeepLeadingZeros) {
  const ClockReading clock{2026, 1, 2, 3, 4, 5, 6};
  EXPECT_EQ(LogOf(ComposeRun(1001, "TOV.exe", 0, 0, clock)),
            "Welcome to the use of TOV.exe!\n  TOV.exe starts at 03:04:05.006 on 2026/01/02 (yyyy/mm/dd)\n");
  EXPECT_EQ(LogOf(ComposeRun(1014, "TOV.exe", 0, 0, clock)),
            "  TOV.exe ends at 03:04:05.006 on 2026/01/02 (yyyy/mm/dd)\n");
}

TEST(Messages, CpuLineInMinutesAndSeconds) {
  EXPECT_EQ(LogOf(ComposeRun(1015, "", 1.0f, 91.0f, {})), "CPU_TIME taken: 1.500 minutes or 90.000 seconds\n");
  EXPECT_EQ(LogOf(ComposeRun(1015, "", 0.0f, 0.0004f, {})), "CPU_TIME taken: 0.000 minutes or 0.000 seconds\n");
}

TEST(Messages, ConsoleVariantsDifferFromTheLog) {
  const Messages stop = ComposeRun(1012, "study.par  ", 0, 0, {});
  ASSERT_EQ(stop.size(), 1u);
  EXPECT_EQ(stop[0].Log, "--Error found in study.par. The program stops!");
  EXPECT_EQ(stop[0].Console, "--Error found in study.par. The program stops! Check the log file for details!");
  const Messages software = ComposeRun(1003, "", 0, 0, {});
  EXPECT_EQ(software[0].Log, "--Error1003: can not read the software name in mio file!");
  EXPECT_EQ(software[0].Console, "--Error1003: can not read the software name in  mio file!");
  const Messages same = ComposeRun(1008, "absent.txt", 0, 0, {});
  EXPECT_EQ(same[0].Log, same[0].Console);
}

TEST(Messages, CodesWithoutTextWriteNothing) {
  EXPECT_TRUE(ComposeRun(1020, "x", 0, 0, {}).empty());
  EXPECT_TRUE(ComposeMapping(1204, 1, 1).empty());
  EXPECT_TRUE(ComposeInput(2003, 1).empty());
}

TEST(Messages, AReportGoesToTheLogFirstThenToTheConsole) {
  const std::string path = testing::TempDir() + "/tov-messages-" + std::to_string(::getpid()) + ".log";
  ASSERT_TRUE(LogFile().Create(path));
  testing::internal::CaptureStdout();
  ReportInput(2002, 3);
  const std::string console = testing::internal::GetCapturedStdout();
  LogFile().Close();
  const std::string log = testing_support::ReadWholeFile(path);
  EXPECT_EQ(log, "--Error2002: Indicator=3 out of range [1:2]!\n");
  EXPECT_EQ(console, log);
}

}  // namespace
}  // namespace tov
