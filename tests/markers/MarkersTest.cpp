// Marker preprocessing where the end-to-end projects do not go.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/Log.h"
#include "markers/Binning.h"
#include "markers/MarkerReports.h"
#include "markers/Multicollinearity.h"
#include "markers/PreprocessMarkers.h"
#include "support/CaseTable.h"
#include "support/ScratchFile.h"

namespace tov {
namespace {

using testing_support::Words;

std::vector<int> Vector(const Array<std::int32_t, 1>& a) { return std::vector<int>(a.begin(), a.end()); }

// MarkerType [NumMarkers, PopulationSize] from one string of codes per
// marker, with names M1, M2, ...
struct Genotypes {
  explicit Genotypes(const std::vector<std::string>& rows)
      : names(static_cast<int>(rows.size())),
        markerType(static_cast<int>(rows.size()), static_cast<int>(rows[0].size())) {
    for (std::size_t m = 0; m < rows.size(); ++m) {
      names(m + 1) = std::string("M").append(std::to_string(m + 1));
      for (std::size_t l = 0; l < rows[m].size(); ++l) markerType(m + 1, l + 1) = rows[m][l];
    }
    columns = MarkerColumns(markerType);
  }
  Array<std::string, 1> names;
  Array<char, 2> markerType, columns;
};

TEST(Markers, Bins) {
  for (const auto& c : testing_support::ReadCaseTable("markers/data/bins.txt")) {
    const std::vector<std::string> rows = Words<std::string>(c.at(0));
    const Genotypes g(rows);
    const int n = static_cast<int>(rows.size());
    const MarkerBins bins = BinMarkers(n, static_cast<int>(rows[0].size()), g.columns);
    EXPECT_EQ(Vector(bins.BinID), Words<int>(c.at(1))) << c[0];
    EXPECT_EQ(Vector(CopyKeptMarkers(n, bins.Deleted)), Words<int>(c.at(2))) << c[0];
  }
}

// The bins as the plain double loops over MarkerIDs form them, comparing
// the genotype rows in place.
std::vector<int> PlainBins(const std::vector<std::string>& rows) {
  const int n = static_cast<int>(rows.size());
  const int lines = static_cast<int>(rows[0].size());
  auto same = [&](int p, int q) { return SameGenotypes(lines, rows[p - 1].c_str(), rows[q - 1].c_str()); };
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
TEST(Markers, BinsAreThoseOfThePlainLoops) {
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
    const Genotypes g(rows);
    EXPECT_EQ(Vector(BinMarkers(c.markers, c.lines, g.columns).BinID), PlainBins(rows)) << c.markers << " x " << c.lines;
  }
}

TEST(Markers, MulticollinearityCountsMissingAsANumberAndCanBeSkipped) {
  const std::string log = testing_support::ScratchPath("markers-log").string();
  ASSERT_TRUE(LogFile().Create(log));
  // 'X' is the number 88 in the correlations: marker 1 is far from 2 here.
  const Genotypes g({"AAAXXBBBBB", "AAAABBBBBB", "AABBBBBBBA", "BABABABABA"});
  Array<std::int32_t, 1> deleted(4);
  EXPECT_EQ(Vector(HandleMulticollinearity(3.0f, g.names, g.columns, deleted)), (std::vector<int>{1, 3, 4}));
  std::vector<std::string> many;  // 201 distinct markers of 8 lines
  for (int m = 0; m < 201; ++m) {
    many.emplace_back(8, 'A');
    for (int bit = 0; bit < 8; ++bit) many.back()[bit] = (m >> bit) & 1 ? 'B' : 'A';
  }
  const Genotypes wide(many);
  EXPECT_EQ(PreprocessMarkers(wide.names, wide.markerType, 1.0f).Size(), 201u);
  LogFile().Close();
  const std::string text = testing_support::ReadWholeFile(log);
  std::filesystem::remove(log);
  EXPECT_NE(text.find("           1          4.                                  M2           4"), std::string::npos)
      << text;
  EXPECT_EQ(text.find("Step 2", text.find("Step 2") + 1), std::string::npos) << "more than 200 skip the step";

  // A matrix the eigen solver refuses leaves the previous index.
  Array<float, 2> pair(2, 2);
  pair(1, 1) = -1.0f;
  pair(2, 2) = 1.0f;
  pair(1, 2) = pair(2, 1) = 0.5f;
  float index = 3.0f;
  testing::internal::CaptureStderr();
  ComputeConditionIndex(10, pair, index);
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(index, 3.0f);
}

TEST(Markers, EachCorrelationTableStopsAtOneThousandMarkers) {
  std::vector<std::string> rows(1001);
  for (std::size_t m = 0; m < rows.size(); ++m) rows[m] = m % 2 ? "BA" : "AB";
  const Genotypes g(rows);
  testing_support::ScratchFile coe("capped.coe");
  WriteCorrelationReport(coe.Unit(), g.names, g.markerType, CopyKeptMarkers(1001, Array<std::int32_t, 1>(1001)));
  const std::vector<std::string> lines = coe.Lines();
  ASSERT_EQ(lines.size(), 2u * (1 + 1000 + 1));
  EXPECT_EQ(lines[0].size(), 48u + 12u * 1000u);
  EXPECT_EQ(lines[1002].size(), 48u + 12u * 1001u) << "the kept markers' heading lists them all";
  EXPECT_EQ(lines[1000].substr(lines[1000].size() - 24), "     -1.0000      1.0000");
}

}  // namespace
}  // namespace tov
