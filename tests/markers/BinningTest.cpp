#include "markers/Binning.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace tov {
namespace {

// MarkerType [NumMarkers, PopulationSize] from one string of codes per
// marker, and the bins it gives.
struct Project {
  explicit Project(const std::vector<std::string>& rows)
      : markerType(static_cast<int>(rows.size()), static_cast<int>(rows.front().size())) {
    for (std::size_t m = 0; m < rows.size(); ++m)
      for (std::size_t l = 0; l < rows[m].size(); ++l) markerType(m + 1, l + 1) = rows[m][l];
    columns = MarkerColumns(markerType);
    bins = BinMarkers(static_cast<int>(rows.size()), static_cast<int>(rows.front().size()), columns);
  }
  std::vector<int> BinIDs() const { return std::vector<int>(bins.BinID.begin(), bins.BinID.end()); }
  std::vector<int> Deleted() const { return std::vector<int>(bins.Deleted.begin(), bins.Deleted.end()); }
  std::vector<int> Kept() const {
    const Array<std::int32_t, 1> kept = CopyKeptMarkers(static_cast<int>(bins.Deleted.Size()), bins.Deleted);
    return std::vector<int>(kept.begin(), kept.end());
  }
  Array<char, 2> markerType;
  Array<char, 2> columns;
  MarkerBins bins;
};

TEST(SameGenotypes, MissingMatchesAnythingAndOneDifferenceSeparates) {
  EXPECT_TRUE(SameGenotypes(4, "ABAB", "ABAB"));
  EXPECT_TRUE(SameGenotypes(4, "AXAB", "ABXB"));
  EXPECT_TRUE(SameGenotypes(4, "XXXX", "ABBA"));
  EXPECT_FALSE(SameGenotypes(4, "ABAB", "ABAA"));
  EXPECT_FALSE(SameGenotypes(4, "BXXX", "AXXX"));
}

TEST(Binning, TheExtensionMakesOnePassOnly) {
  // Marker 3 is the seed's direct partner; marker 2 joins through 3 while
  // the pass stands at 3, so it is not visited, and marker 4, which matches
  // only marker 2, stays out.
  Project p({"AABB", "BAXA", "XABX", "BXAA"});
  EXPECT_EQ(p.BinIDs(), (std::vector<int>{1, 1, 1, 0}));
  EXPECT_EQ(p.Deleted(), (std::vector<int>{0, 1, 1, 0}));
  EXPECT_EQ(p.Kept(), (std::vector<int>{1, 4}));
}

TEST(Binning, AnAllMissingMarkerCollapsesEverythingNotYetBinned) {
  Project p({"ABAB", "BABA", "XXXX", "AABB", "BBAA"});
  EXPECT_EQ(p.BinIDs(), (std::vector<int>{1, 1, 1, 1, 1}));
  EXPECT_EQ(p.Kept(), (std::vector<int>{1})) << "the all-missing marker never represents a bin of real markers";
}

TEST(Binning, AnAllMissingMemberPullsInTheRestAndSeedsNumberTheBins) {
  Project p({"AABB", "ABAB", "AABB", "XXXX", "ABAB"});
  // Marker 1 takes 3 and the all-missing 4, whose pass pulls in 2 and 5.
  EXPECT_EQ(p.BinIDs(), (std::vector<int>{1, 1, 1, 1, 1}));
  Project q({"ABAB", "AABB", "ABAB", "AABB", "BBBA"});
  EXPECT_EQ(q.BinIDs(), (std::vector<int>{1, 2, 1, 2, 0})) << "bins are numbered in the order of their seeds";
  EXPECT_EQ(q.Kept(), (std::vector<int>{1, 2, 5}));
}

// The bins as the plain double loops over MarkerIDs form them, comparing
// the genotype columns in place.
std::vector<int> PlainBins(const std::vector<std::string>& rows) {
  const int n = static_cast<int>(rows.size());
  auto same = [&](int p, int q) { return SameGenotypes(static_cast<int>(rows[0].size()), rows[p - 1].c_str(), rows[q - 1].c_str()); };
  std::vector<int> bin(n + 1, 0);
  for (int i = 1, current = 1; i < n; ++i) {
    if (bin[i] != 0) continue;
    bool found = false;
    for (int j = i + 1; j <= n; ++j)
      if (bin[j] == 0 && same(j, i)) bin[j] = current, found = true;
    if (!found) continue;
    bin[i] = current;
    for (int j = i + 1; j <= n; ++j)
      if (bin[j] == current)
        for (int k = 1; k <= n; ++k)
          if (bin[k] == 0 && same(k, j)) bin[k] = current;
    ++current;
  }
  return std::vector<int>(bin.begin() + 1, bin.end());
}

// Few lines make many chance matches, and missing genotypes chains of
// them, so the order of the loops shows in the bins.
TEST(Binning, BinsAreThoseOfThePlainLoops) {
  const struct {
    int markers, lines;
    double missing;
  } cases[] = {{300, 3, 0.3}, {400, 6, 0.2}, {500, 8, 0.05}, {200, 70, 0.6}, {1000, 12, 0.0}, {50, 130, 0.9}};
  std::mt19937 random(2024);
  for (const auto& c : cases) {
    std::bernoulli_distribution lost(c.missing), donor(0.5);
    std::vector<std::string> rows(c.markers, std::string(c.lines, ' '));
    for (auto& row : rows)
      for (char& code : row) code = lost(random) ? 'X' : donor(random) ? 'A' : 'B';
    EXPECT_EQ(Project(rows).BinIDs(), PlainBins(rows)) << c.markers << " x " << c.lines;
  }
}

TEST(Binning, ASingleMarkerIsKeptOutsideAnyBin) {
  Project p({"ABAB"});
  EXPECT_EQ(p.BinIDs(), (std::vector<int>{0}));
  EXPECT_EQ(p.Kept(), (std::vector<int>{1}));
}

TEST(Binning, TheLastMarkerCanBeAMemberButNeverASeed) {
  Project p({"ABAB", "BBAA", "ABAB"});
  EXPECT_EQ(p.BinIDs(), (std::vector<int>{1, 0, 1}));
}

TEST(Binning, RejectedMarkersAreDeleted) {
  Array<float, 1> missing(3);
  Array<std::int32_t, 1> bin(3);
  Array<std::int32_t, 1> deleted(3);
  bin(1) = -1;
  bin(2) = 1;
  bin(3) = 1;
  missing(2) = 50.0f;
  missing(3) = 25.0f;
  PickLeastMissing(3, missing, bin, deleted);
  EXPECT_EQ(std::vector<int>(deleted.begin(), deleted.end()), (std::vector<int>{1, 1, 0}));
}

}  // namespace
}  // namespace tov
