// The parts of the power tables that no end-to-end project reaches: a
// record without one of the two genotypes, and a heading of more marker IDs
// than one line of it holds.

#include "simulation/PowerTables.h"

#include <gtest/gtest.h>

#include <cmath>

#include "support/ScratchFile.h"

namespace tov {
namespace {

TEST(PowerTables, EffectOfARecordWithANaNMeanPrintsZero) {
  MarkerTestTable table;
  table.NumTests = 2;
  AllocMarkerTests(SingleMarkerSimulation, table);
  table.Test(1).GroupMean(1) = 2.5f;
  table.Test(1).GroupMean(2) = 1.25f;
  table.Test(2).GroupMean(1) = std::nanf("");  // no 'A' line
  table.Test(2).GroupMean(2) = 1.25f;
  EXPECT_EQ(EffectsRow(7, table), "           7      0.6250      0.0000");
}

TEST(PowerTables, HeadingBeyondItsWidthContinuesOnTheNextLine) {
  Array<std::int32_t, 1> kept(PowerHeadingWidth + 2);
  for (int j = 1; j <= PowerHeadingWidth + 2; ++j) kept(j) = 2 * j;
  testing_support::ScratchFile file("power-heading");
  WritePowerHeading(file.Unit(), kept);
  const std::vector<std::string> lines = file.Lines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].size(), 12u * (PowerHeadingWidth + 1));
  EXPECT_EQ(lines[0].substr(0, 24), "  Simulation           2");
  EXPECT_EQ(lines[1], "       20002       20004");
}

}  // namespace
}  // namespace tov
