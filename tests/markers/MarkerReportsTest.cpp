#include "markers/MarkerReports.h"

#include <gtest/gtest.h>

#include <string>

#include "support/ScratchFile.h"

namespace tov {
namespace {

TEST(CorrelationReport, EachTableStopsAtOneThousandMarkers) {
  const int numMarkers = 1001;
  Array<std::string, 1> names(numMarkers);
  Array<char, 2> markerType(numMarkers, 2);
  Array<std::int32_t, 1> kept(numMarkers);
  for (int m = 1; m <= numMarkers; ++m) {
    names(m) = std::to_string(m);
    markerType(m, 1) = m % 2 ? 'A' : 'B';
    markerType(m, 2) = m % 2 ? 'B' : 'A';
    kept(m) = m;
  }
  testing_support::ScratchFile coe("capped.coe");
  WriteCorrelationReport(coe.Unit(), names, markerType, kept);
  const std::vector<std::string> lines = coe.Lines();
  ASSERT_EQ(lines.size(), 2u * (1 + 1000 + 1));
  EXPECT_EQ(lines[0].size(), 48u + 12u * 1000u) << "the first heading stops where the rows stop";
  EXPECT_EQ(lines[1002].size(), 48u + 12u * 1001u) << "the kept markers' heading lists them all";
  EXPECT_EQ(lines[1000].substr(0, 12), "        1000");
  EXPECT_EQ(lines[1000].size(), 48u + 12u * 1000u);
  EXPECT_EQ(lines[1001], "");
  EXPECT_EQ(lines[1000].substr(lines[1000].size() - 24), "     -1.0000      1.0000");
}

}  // namespace
}  // namespace tov
