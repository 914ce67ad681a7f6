// Summaries, analyses of variance and distributions bit for bit against
// reference/exact_numerics.py; probabilities whose inner arithmetic is free
// agree with scipy to 1e-5 relative.

#include <gtest/gtest.h>

#include <cmath>

#include "numerics/basic/Basic.h"
#include "numerics/distributions/Distributions.h"
#include "numerics/distributions/NormalScores.h"
#include "numerics/statistics/Anova.h"
#include "numerics/statistics/UnivariateStatistics.h"
#include "support/BitCases.h"

namespace tov {
namespace {

using testing_support::ExpectSameBits;

const auto Cases = testing_support::ReadBitCases("numerics/data/exact_numerics.txt");

template <int N>
std::vector<float> Elements(const FixedArray<float, N>& a) {
  return std::vector<float>(a.Element.begin(), a.Element.end());
}

void ExpectProbabilities(const std::vector<float>& actual, const std::vector<float>& expected) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) EXPECT_NEAR(actual[i], expected[i], 1e-5 * expected[i] + 2e-7) << i;
}

TEST(ExactBits, ColumnStatistics) {
  for (const char* name : {"column_small", "column_large", "column_few", "column_chain"}) {
    const auto& c = Cases.at(name);
    const std::vector<float> x = c.Floats("x"), y = c.Floats("y");
    const int n = static_cast<int>(x.size());
    ExpectSameBits({MeanOfValid(n, x.data()), ColumnVariance(n, x.data()), ColumnCovariance(n, x.data(), y.data()),
                    CorrelationOfValid(n, x.data(), y.data())},
                   c.Floats("stats"), name);
  }
}

TEST(ExactBits, UVSTA) {
  for (const char* name : {"uvsta_small", "uvsta_large"}) {
    const std::vector<float> x = Cases.at(name).Floats("x");
    UnivariateStatistics stat;
    UVSTA(static_cast<int>(x.size()), x.data(), 95.0f, 95.0f, stat);
    ExpectSameBits(std::vector<float>(stat.Element.begin(), stat.Element.begin() + 10), Cases.at(name).Floats("stats"), name);
  }
}

TEST(ExactBits, AnalysesOfVariance) {
  const auto& one = Cases.at("aonew");
  const std::vector<int> ni = one.Ints("ni");
  AovTable aov;
  AONEW(static_cast<int>(ni.size()), ni.data(), one.Floats("y").data(), aov);
  std::vector<float> p = {aov(10)};
  aov(10) = NAN;
  ExpectSameBits(Elements(aov), one.Floats("aov"), "AONEW");
  ExpectProbabilities(p, one.Floats("p"));

  for (const char* name : {"anway", "anway_small"}) {
    const auto& two = Cases.at(name);
    TwoWayEffects effects;
    ASSERT_TRUE(ANWAY(two.Ints("nl").data(), two.Floats("y").data(), aov, effects));
    p = {aov(10), effects.A.P, effects.B.P, effects.AxB.P};
    aov(10) = NAN;
    ExpectSameBits(Elements(aov), two.Floats("aov"), name);
    std::vector<float> table;
    for (const AnovaEffect& e : {effects.A, effects.B, effects.AxB}) table.insert(table.end(), {e.DF, e.SS, e.F});
    ExpectSameBits(table, two.Floats("effects"), name);
    ExpectProbabilities(p, two.Floats("p"));
  }
}

TEST(ExactBits, TDFAtItsSwitchOvers) {
  const auto& c = Cases.at("tdf");
  for (const char* kind : {"exact", "near"}) {
    const std::vector<float> rows = c.Floats(kind);
    std::vector<float> actual, expected;
    for (std::size_t i = 0; i < rows.size(); i += 3) {
      actual.push_back(TDF(rows[i], rows[i + 1]));
      expected.push_back(rows[i + 2]);
    }
    if (kind == std::string("exact"))
      ExpectSameBits(actual, expected, "TDF");
    else
      ExpectProbabilities(actual, expected);
  }
}

TEST(ExactBits, NormalScoresAcrossTheirRanges) {
  const auto& c = Cases.at("normal_scores");
  std::vector<float> actual, expected;
  const std::vector<float> scores = c.Floats("scores");
  for (std::size_t i = 0; i < scores.size(); i += 3) {
    actual.push_back(NormalScore(static_cast<int>(scores[i]), static_cast<int>(scores[i + 1])));
    expected.push_back(scores[i + 2]);
  }
  const std::vector<float> inverse = c.Floats("inverse");
  for (std::size_t i = 0; i < inverse.size(); i += 2) {
    actual.push_back(InverseNormal(inverse[i]));
    expected.push_back(inverse[i + 1]);
  }
  ExpectSameBits(actual, expected, "scores, then inverse normal");
}

}  // namespace
}  // namespace tov
