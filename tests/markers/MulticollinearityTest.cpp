#include "markers/Multicollinearity.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <string>
#include <vector>

#include "markers/Binning.h"
#include "markers/PreprocessMarkers.h"
#include "core/Log.h"
#include "support/ScratchFile.h"

namespace tov {
namespace {

// Reference values in these tests come from a step-by-step numpy float32
// model of the correlation (sums in line order, population moments over M)
// and numpy's double-precision eigenvalues of that float32 matrix.

const std::string Header =
    "        Step          CN                          MarkerName    NumLines                          MarkerName"
    "    NumLines Coefficient             Deleted";

struct Genotypes {
  explicit Genotypes(const std::vector<std::string>& rows)
      : names(static_cast<int>(rows.size())),
        markerType(static_cast<int>(rows.size()), static_cast<int>(rows.front().size())) {
    for (std::size_t m = 0; m < rows.size(); ++m) {
      std::string& name = names(m + 1);
      name = std::to_string(m + 1);
      name.insert(name.begin(), 'M');
      name.resize(35, ' ');
      for (std::size_t l = 0; l < rows[m].size(); ++l) markerType(m + 1, l + 1) = rows[m][l];
    }
    columns = MarkerColumns(markerType);
  }
  Array<std::string, 1> names;
  Array<char, 2> markerType;
  Array<char, 2> columns;
};

class StepTwo : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(LogFile().Create(path)); }
  std::string Log() {
    LogFile().Close();
    return testing_support::ReadWholeFile(path);
  }
  std::vector<int> Run(const Genotypes& g, float limit) {
    Array<std::int32_t, 1> deleted(static_cast<int>(g.names.Size()));
    const Array<std::int32_t, 1> kept = HandleMulticollinearity(limit, g.names, g.columns, deleted);
    return std::vector<int>(kept.begin(), kept.end());
  }
  const std::string path = testing::TempDir() + "/tov-multicollinearity-" + std::to_string(::getpid()) + ".log";
};

const std::vector<std::string> Linked = {"AAAAABBBBB", "AAAABBBBBB", "AAABBBBBBB", "BABABABABA"};

TEST(GenotypeCorrelations, TakeTheCharacterCodesAsNumbersInSinglePrecision) {
  const Genotypes g({"AAAAABBBBB", "AAAABBBBBB"});
  const Array<float, 2> values = GenotypeValues(g.columns);
  EXPECT_EQ(values(1, 1), 65.0f);
  EXPECT_EQ(values(6, 1), 66.0f);
  Array<std::int32_t, 1> ids(2);
  ids(1) = 2;
  ids(2) = 1;
  const Array<float, 2> r = GenotypeCorrelations(values, ids, 2);
  // The one-pass float formula loses digits: the exact value is 0.8165.
  EXPECT_EQ(r(1, 2), 0.8168952f);
  EXPECT_EQ(r(2, 1), r(1, 2));

  const Genotypes withMissing({"XABB", "AABB"});
  Array<std::int32_t, 1> both(2);
  both(1) = 1;
  both(2) = 2;
  EXPECT_LT(GenotypeCorrelations(GenotypeValues(withMissing.columns), both, 2)(1, 2), 0.9f)
      << "a missing genotype counts as the number 88";
}

TEST_F(StepTwo, RemovesFromTheMostCorrelatedPairUntilTheIndexIsWithinTheLimit) {
  EXPECT_EQ(Run(Genotypes(Linked), 3.0f), (std::vector<int>{3, 4}));
  EXPECT_EQ(Log(), "Step 2: Handling multicollinearity\n" + Header +
                       "\n"
                       "           1         25.                                  M1           5                     "
                       "             M2           4      0.8169                                  M1\n"
                       "           2         11.                                  M2           4                     "
                       "             M3           3      0.8013                                  M2\n"
                       "           2          2.\n\n");
}

TEST_F(StepTwo, ANegativePairOneIsActedOnAndATieRemovesTheSecond) {
  EXPECT_EQ(Run(Genotypes({"AAABBB", "BBBAAA"}), 10.0f), (std::vector<int>{1}));
  const std::string log = Log();
  EXPECT_NE(log.find("M1           3                                  M2           3     -1.0000"
                     "                                  M2\n"),
            std::string::npos)
      << log;
}

TEST_F(StepTwo, TheMoreDonorLinesGoAndMissingGenotypesCountAsNumbers) {
  EXPECT_EQ(Run(Genotypes({"AAAXXBBBBB", "AAAABBBBBB", "AABBBBBBBA", "BABABABABA"}), 3.0f),
            (std::vector<int>{1, 3, 4}));
  const std::string log = Log();
  EXPECT_NE(log.find("           1          4.                                  M2           4"), std::string::npos)
      << log;
  EXPECT_NE(log.find("      0.3561                                  M2\n           1          2.\n"), std::string::npos)
      << log;
}

TEST_F(StepTwo, ANegativeLimitOrMoreThan200MarkersSkipTheStep) {
  const Genotypes g(Linked);
  const Array<std::int32_t, 1> kept = PreprocessMarkers(g.names, g.markerType, -1.0f);
  EXPECT_EQ(kept.Size(), 4u);
  std::vector<std::string> many;
  for (int m = 0; m < 201; ++m) {
    std::string row(8, 'A');
    for (int bit = 0; bit < 8; ++bit) row[bit] = (m >> bit) & 1 ? 'B' : 'A';
    many.push_back(row);
  }
  const Genotypes wide(many);  // 201 distinct markers of 8 lines
  EXPECT_EQ(PreprocessMarkers(wide.names, wide.markerType, 1.0f).Size(), 201u);
  const std::string log = Log();
  EXPECT_EQ(log.find("Step 2"), std::string::npos) << "no title and no table";
  EXPECT_NE(log.find("Step 1: Binning of markers"), std::string::npos);
}

TEST(ConditionIndex, IsThePlainEigenvalueRatioAndKeepsItsValueOnAnError) {
  Array<float, 2> identity(3, 3);
  identity.Fill(0.0f);
  for (int i = 1; i <= 3; ++i) identity(i, i) = 1.0f;
  float index = -1.0f;
  ComputeConditionIndex(10, identity, index);
  EXPECT_FLOAT_EQ(index, 1.0f);
  Array<float, 2> pair(2, 2);
  pair(1, 1) = pair(2, 2) = 1.0f;
  pair(1, 2) = pair(2, 1) = 0.5f;
  ComputeConditionIndex(10, pair, index);
  EXPECT_FLOAT_EQ(index, 3.0f) << "1.5 / 0.5, with no square root";
  Array<float, 2> bad(2, 2);
  bad(1, 1) = -1.0f;
  bad(2, 2) = 1.0f;
  bad(1, 2) = bad(2, 1) = 0.0f;
  testing::internal::CaptureStderr();
  ComputeConditionIndex(10, bad, index);
  testing::internal::GetCapturedStderr();
  EXPECT_FLOAT_EQ(index, 3.0f) << "a refused matrix leaves the previous index";
}

}  // namespace
}  // namespace tov
