// Rows of the marker tables where the shares of variance cannot be formed,
// from values worked out by hand here.

#include "mapping/MarkerTables.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "mapping/MarkerEffects.h"
#include "support/ScratchFile.h"

namespace tov {
namespace {

const float NaN = std::numeric_limits<float>::quiet_NaN();

// Two environments; kept markers 2, 5, 9, 11, 12 of 12.
void FillRun(RunData& run) {
  run.NumEnvs = 2;
  run.NumMarkers = 12;
  run.MarkerName.Allocate(12);
  for (int id = 1; id <= 12; ++id) run.MarkerName(id) = std::string("m").append(std::to_string(id));
  run.MarkerName(5) = "LongMarkerName5";
  for (std::string& name : run.MarkerName) name.resize(35, ' ');
  run.NumMarkersKept = 5;
  run.KeptMarker.Allocate(5);
  const int kept[] = {2, 5, 9, 11, 12};
  for (int m = 1; m <= 5; ++m) run.KeptMarker(m) = kept[m - 1];
}

MarkerTestTable Table() {
  MarkerTestTable table;
  table.NumTests = 5;
  AllocMarkerTests(SingleMarkerMapping, table);
  const float values[5][5] = {
      {3.5f, 12.0f, 8.0f, 0.5f, 0.5f},    // VG = 0.5*144 + 0.5*64 - 100 = 4
      {1.0f, 9.0f, 11.0f, 0.25f, 0.75f},  // VG = 111 - 10.5^2 = 0.75
      {6.0f, NaN, 11.0f, 0.0f, 1.0f},     // monomorphic: no row anywhere
      {4.0f, 7.0f, 13.0f, 0.5f, 0.5f},    // VG = 0.5*49 + 0.5*169 - 100 = 9
      {0.0f, 10.0f, 10.0f, 0.5f, 0.5f},   // LOD 0.0 with both groups: a row
  };
  for (int m = 1; m <= 5; ++m) {
    MarkerTest& test = table.Test(m);
    test.MarkerIndex = m;
    test.LOD(1) = values[m - 1][0];
    test.GroupMean(1) = values[m - 1][1];
    test.GroupMean(2) = values[m - 1][2];
    test.GroupFreq(1) = values[m - 1][3];
    test.GroupFreq(2) = values[m - 1][4];
  }
  return table;
}

TEST(WriteMarkerTables, MeanPassAndSharesThatCannotBeFormed) {
  RunData run;
  FillRun(run);
  MarkerTestTable table = Table();
  MarkSignificant(3.6f, table);  // flags marker 11 only
  // VarP NaN (one kept line), SumVG 0 and RSq NaN give NaN shares, which
  // print as 0.0.
  testing_support::ScratchFile all("mean-all"), selected("mean-selected");
  WriteMarkerTables(all.Unit(), selected.Unit(), run, 2, "Yield", 3, NaN, 0.0f, NaN, table);
  const std::vector<std::string> lines = all.Lines();
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0],
            "           2               Yield        Mean           2                                  m2      3.5000      0.0000      2.0000     12.0000      8.0000");
  const std::vector<std::string> chosen = selected.Lines();
  ASSERT_EQ(chosen.size(), 1u);
  EXPECT_EQ(chosen[0].substr(0, 44), "           2               Yield        Mean");
  EXPECT_EQ(chosen[0].substr(92, 24), "      4.0000      0.0000");
}

}  // namespace
}  // namespace tov
