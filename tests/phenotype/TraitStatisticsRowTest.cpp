#include "phenotype/TraitStatisticsRow.h"

#include <gtest/gtest.h>

namespace tov {
namespace {

// Expected rows were composed in python with '%12d', ' ', '%19s', '%12.4f'
// and a hand-written 0.dddd E form, independent of the writer under test.

TEST(TraitStatisticsRowFormat, FieldsInTheOrderOfTheHeading) {
  TraitSummary summary;
  summary.Valid = 3;
  const float stats[] = {2.0f, 1.0f, 1.0f, 0.0f, -1.5f, 1.0f, 3.0f, 2.0f};
  for (int i = 1; i <= 8; ++i) summary.Stat(i) = stats[i - 1];
  summary.W = 1.0f;
  summary.P = 1.0f;
  EXPECT_EQ(FormatTraitStatisticsRow(1, "Yield              ", summary),
            "           1               Yield           3      2.0000      1.0000      1.0000      0.0000     -1.5000"
            "      1.0000      3.0000      2.0000      1.0000  0.1000E+01");
}

}  // namespace
}  // namespace tov
