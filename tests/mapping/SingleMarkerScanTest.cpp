// The scan tests markers side by side in lanes; every record must be
// bit for bit the record of testing that marker alone.

#include "mapping/SingleMarkerScan.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "mapping/TwoGroupTest.h"

namespace tov {
namespace {

bool SameBits(float a, float b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// A random genotype matrix with some monomorphic and some nearly untyped
// markers, and line values with a NaN line.
struct ScanData {
  int NumMarkers;
  int NumLines;
  Array<char, 2> Genotype;
  std::vector<float> Y;
  ScanData(int markers, int lines, unsigned seed) : NumMarkers(markers), NumLines(lines), Genotype(markers, lines) {
    std::mt19937 random(seed);
    std::normal_distribution<float> normal(5.0f, 2.0f);
    for (int l = 1; l <= lines; ++l) {
      for (int m = 1; m <= markers; ++m) {
        const unsigned r = random() % 20u;
        Genotype(m, l) = r < 9u ? 'A' : r < 18u ? 'B' : r < 19u ? 'X' : '*';
        if (m % 7 == 3) Genotype(m, l) = 'A';             // monomorphic
        if (m % 11 == 5 && l > 1) Genotype(m, l) = 'X';   // one typed line
      }
      Y.push_back(normal(random));
    }
    if (lines > 4) Y[3] = std::numeric_limits<float>::quiet_NaN();
  }
};

void ExpectSameRecord(const MarkerTest& a, const MarkerTest& b, int m) {
  EXPECT_TRUE(SameBits(a.LOD(1), b.LOD(1))) << "marker " << m;
  EXPECT_TRUE(SameBits(a.GroupMean(1), b.GroupMean(1))) << "marker " << m;
  EXPECT_TRUE(SameBits(a.GroupMean(2), b.GroupMean(2))) << "marker " << m;
  EXPECT_TRUE(SameBits(a.GroupFreq(1), b.GroupFreq(1))) << "marker " << m;
  EXPECT_TRUE(SameBits(a.GroupFreq(2), b.GroupFreq(2))) << "marker " << m;
}

TEST(SingleMarkerScan, EveryRecordIsThatOfItsOwnTest) {
  // Two full blocks of lanes and a tail.
  for (const int lines : {0, 1, 2, 9, 120}) {
    ScanData data(2 * TwoGroupBlockWidth + 5, lines, 7u + static_cast<unsigned>(lines));
    MarkerTestTable table;
    table.NumTests = data.NumMarkers;
    AllocMarkerTests(SingleMarkerMapping, table);
    SingleMarkerScan(data.NumMarkers, data.NumLines, data.Genotype, data.Y.data(), table);
    for (int m = 1; m <= data.NumMarkers; ++m) {
      std::vector<char> row;
      for (int l = 1; l <= data.NumLines; ++l) row.push_back(data.Genotype(m, l));
      MarkerTest alone;
      TwoGroupTest(data.NumLines, row.data(), data.Y.data(), alone.LOD(1), alone.GroupMean, alone.GroupFreq);
      EXPECT_EQ(table.Test(m).MarkerIndex, m);
      ExpectSameRecord(table.Test(m), alone, m);
    }
    FreeMarkerTests(table);
  }
}

TEST(MarkerTests, AllocationKnowsItsMethodCodes) {
  for (const int code : {10911, 10912, 10913, 10921, 10922, 10923}) {
    MarkerTestTable table;
    table.NumTests = 3;
    AllocMarkerTests(code, table);
    ASSERT_TRUE(table.Test.IsAllocated()) << code;
    EXPECT_EQ(table.Test.Size(), 3u);
    for (int m = 1; m <= 3; ++m) {
      EXPECT_EQ(table.Test(m).Significant, LogicalFalse);
      EXPECT_EQ(table.Test(m).MarkerIndex, 0);
      EXPECT_EQ(table.Test(m).LOD(1), 0.0f);
      EXPECT_EQ(table.Test(m).GroupMean(2), 0.0f);
      EXPECT_EQ(table.Test(m).GroupFreq(2), 0.0f);
    }
    FreeMarkerTests(table);
    EXPECT_FALSE(table.Test.IsAllocated());
  }
  for (const int code : {10910, 10914, 10920, 10924, 10931}) {
    MarkerTestTable table;
    table.NumTests = 3;
    AllocMarkerTests(code, table);
    EXPECT_FALSE(table.Test.IsAllocated()) << code;
  }
}

}  // namespace
}  // namespace tov
