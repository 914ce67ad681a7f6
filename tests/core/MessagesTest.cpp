// What the end-to-end logs do not pin: the code field, fields too wide for
// a message, the CPU line (masked there), clock readings with leading
// zeros, and codes without text.

#include "core/Messages.h"

#include <gtest/gtest.h>


namespace tov {
namespace {

std::string LogOf(const Messages& messages) {
  std::string text;
  for (const Message& m : messages) text += m.Log + "\n";
  return text;
}

TEST(Messages, FieldsLinesAndOrder) {
  EXPECT_EQ(ErrorPrefix(7), "--Error   7: ");
  EXPECT_EQ(MessageInteger(-12345678), "********");
  EXPECT_EQ(LogOf(ComposeParameter(3005, 0, 1000000.0f)),
            "--Error3005: Threshold LOD for single marker analysis too small (>0.5)! SMA Threshold LOD=********\n");
  EXPECT_EQ(LogOf(ComposeRun(1014, "TOV.exe", 0, 0, {2026, 1, 2, 3, 4, 5, 6})),
            "  TOV.exe ends at 03:04:05.006 on 2026/01/02 (yyyy/mm/dd)\n");
  EXPECT_EQ(LogOf(ComposeRun(1015, "", 1.0f, 91.0f, {})), "CPU_TIME taken: 1.500 minutes or 90.000 seconds\n");
  EXPECT_EQ(LogOf(ComposeRun(1015, "", 0.0f, 0.0004f, {})), "CPU_TIME taken: 0.000 minutes or 0.000 seconds\n");
  EXPECT_TRUE(ComposeRun(1020, "x", 0, 0, {}).empty() && ComposeMapping(1204, 1, 1).empty() &&
              ComposeInput(2003, 1).empty());
}

}  // namespace
}  // namespace tov
