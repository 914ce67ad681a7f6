#include "phenotype/EnvironmentAnova.h"

#include <gtest/gtest.h>

#include "StaFileReader.h"
#include "numerics/basic/ErrorPolicy.h"
#include "phenotype/AnovaTables.h"
#include "text/Format.h"

namespace tov {
namespace {

using testing_sta::Field;
using testing_sta::Number;
using testing_sta::ScratchFile;

constexpr int Width = 15;

// Checks a source row: its label, DF exactly, and the numbers that follow
// against float64 references within single-precision accuracy.
void ExpectSourceRow(const std::string& line, const char* label, int df, std::vector<double> values) {
  EXPECT_EQ(Field(line, 0, Width), FormatText(label, Width)) << line;
  EXPECT_EQ(Number(Field(line, 1, Width)), df) << line;
  EXPECT_EQ(line.size(), static_cast<std::size_t>(Width * (2 + values.size()))) << "a row stops after its last value";
  for (std::size_t k = 0; k < values.size(); ++k)
    EXPECT_NEAR(Number(Field(line, static_cast<int>(k) + 2, Width)), values[k], 2e-4 * (1.0 + std::abs(values[k])))
        << line << " field " << k + 3;
}

void ExpectSummary(const std::string& line, std::vector<double> values) {
  for (std::size_t k = 0; k < values.size(); ++k)
    EXPECT_NEAR(Number(Field(line, static_cast<int>(k), Width)), values[k], 2e-4 * (1.0 + std::abs(values[k]))) << line;
}

// Lines (groups) 1, 2, 3 with responses {1, 2}, {3, 5}, {4, 4}.  The
// references were computed in float64 with numpy and scipy.stats.f.sf:
// SS 8.333333 and 2.5, F 5.0, P 0.110858, R-square 76.923077 %, adjusted
// 61.538462 %, est. std. dev. 0.912871, mean 3.166667.
TEST(EnvironmentAnova, LinesAreTheGroupsAndReplicationsTheResponses) {
  Array<float, 2> values(3, 2);
  values(1, 1) = 1, values(1, 2) = 2, values(2, 1) = 3, values(2, 2) = 5, values(3, 1) = 4, values(3, 2) = 4;
  ScratchFile sta("env-anova");
  EnvironmentAnova(sta.Unit(), 3, 2, values);
  const std::vector<std::string> lines = sta.Lines();
  ASSERT_EQ(lines.size(), 8u);
  EXPECT_EQ(lines[0], SummaryHeading(SummarySpelling::OneWay));
  ExpectSummary(lines[1], {76.923077, 61.538462, 0.912871, 3.166667});
  EXPECT_EQ(lines[2], "");
  EXPECT_EQ(lines[3], SourceHeading());
  ExpectSourceRow(lines[4], "Among Groups", 2, {8.333333, 4.166667, 5.0, 0.110858});
  EXPECT_EQ(Field(lines[4], 5, Width).substr(Width - 5), "E+000") << "P with three exponent digits";
  ExpectSourceRow(lines[5], "Within Groups", 3, {2.5, 0.833333});
  ExpectSourceRow(lines[6], "Total", 5, {10.833333});
  EXPECT_EQ(lines[7], "");
}

TEST(EnvironmentAnova, EqualResponsesLeaveFAndPUndefined) {
  Array<float, 2> values(2, 2);
  values.Fill(3.5f);
  ScratchFile sta("env-anova-equal");
  EnvironmentAnova(sta.Unit(), 2, 2, values);
  const std::vector<std::string> lines = sta.Lines();
  ASSERT_GE(lines.size(), 7u);
  EXPECT_EQ(lines[4], "   Among Groups              1         0.0000         0.0000            NaN            NaN");
  EXPECT_EQ(lines[5], "  Within Groups              2         0.0000         0.0000");
}

// Three lines, two environments, two replications: lines {1, 2 | 4, 3},
// {2.5, 3.5 | 6, 7}, {0.5, 1.5 | 2, 4}.  References in float64 (numpy,
// scipy.stats.f.sf) from the balanced formulas on cell, row and column
// means: A SS 17.166667 F 11.444444 P 0.008959; B SS 18.75 F 25 P
// 0.002452; AxB SS 1.5 F 1 P 0.421875; error SS 4.5 on 6 DF; model SS
// 37.416667 on 5 DF, F 9.977778, P 0.007161; R-square 89.264414 %,
// adjusted 80.318091 %, est. std. dev. 0.866025, mean 3.083333.
TEST(AcrossEnvironmentAnova, LinesEnvironmentsAndTheirInteraction) {
  Array<float, 3> values(3, 2, 2);
  const float cells[3][2][2] = {{{1, 2}, {4, 3}}, {{2.5f, 3.5f}, {6, 7}}, {{0.5f, 1.5f}, {2, 4}}};
  for (int l = 1; l <= 3; ++l)
    for (int e = 1; e <= 2; ++e)
      for (int r = 1; r <= 2; ++r) values(l, e, r) = cells[l - 1][e - 1][r - 1];
  ScratchFile sta("across-anova");
  AcrossEnvironmentAnova(sta.Unit(), 3, 2, 2, values);
  const std::vector<std::string> lines = sta.Lines();
  ASSERT_EQ(lines.size(), 14u);
  EXPECT_EQ(lines[0], SummaryHeading(SummarySpelling::TwoWay));
  ExpectSummary(lines[1], {89.264414, 80.318091, 0.866025, 3.083333});
  EXPECT_EQ(lines[2], "");
  EXPECT_EQ(lines[3], SourceHeading());
  ExpectSourceRow(lines[4], "Model", 5, {37.416667, 7.483333, 9.977778, 0.007161});
  ExpectSourceRow(lines[5], "Error", 6, {4.5, 0.75});
  ExpectSourceRow(lines[6], "Total", 11, {41.916667});
  EXPECT_EQ(lines[7], "");
  EXPECT_EQ(lines[8], "Variation due to the model");
  EXPECT_EQ(lines[9], SourceHeading());
  ExpectSourceRow(lines[10], "A (Lines)", 2, {17.166667, 8.583333, 11.444444, 0.008959});
  ExpectSourceRow(lines[11], "B (Envs)", 1, {18.75, 18.75, 25.0, 0.002452});
  ExpectSourceRow(lines[12], "AxB", 2, {1.5, 0.75, 1.0, 0.421875});
  EXPECT_EQ(lines[13], "");
}

TEST(AcrossEnvironmentAnova, OneKeptLineIsRefusedByTheAnalysis) {
  Array<float, 3> values(1, 2, 2);
  for (float& v : values) v = 1.0f;
  // Under the default policy the refusal stops the run.
  EXPECT_EXIT(
      {
        ERSET(0, 2, 2);
        ScratchFile sta("across-refused-stop");
        AcrossEnvironmentAnova(sta.Unit(), 1, 2, 2, values);
      },
      testing::ExitedWithCode(0), "There must be at least two levels per factor");

  // When the run goes on, the table keeps its shape: the layout's degrees
  // of freedom, and no numbers.
  ERSET(0, 0, 0);
  ScratchFile sta("across-refused");
  AcrossEnvironmentAnova(sta.Unit(), 1, 2, 2, values);
  ERSET(0, 2, 2);
  const std::vector<std::string> lines = sta.Lines();
  ASSERT_EQ(lines.size(), 14u);
  EXPECT_EQ(lines[1], "            NaN            NaN            NaN            NaN");
  EXPECT_EQ(lines[4], "          Model              1            NaN            NaN            NaN            NaN");
  EXPECT_EQ(lines[5], "          Error              2            NaN            NaN");
  EXPECT_EQ(lines[6], "          Total              3            NaN");
  EXPECT_EQ(lines[10], "      A (Lines)              0            NaN            NaN            NaN            NaN");
  EXPECT_EQ(lines[11], "       B (Envs)              1            NaN            NaN            NaN            NaN");
  EXPECT_EQ(lines[12], "            AxB              0            NaN            NaN            NaN            NaN");
}

}  // namespace
}  // namespace tov
