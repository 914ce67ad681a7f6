#include "numerics/stepwise/StepChoice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace tov {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// Five variables, the dependent one third, so COEF rows 1, 2, 3, 4 belong
// to variables 1, 2, 4, 5.
struct Candidates {
  Array<float, 2> coef{4, 5};
  Array<float, 1> hist{5};
  Array<int, 1> level{5};

  Candidates(std::vector<float> t, std::vector<float> p, std::vector<float> inModel) {
    level.Fill(1);
    level(3) = -1;
    for (int row = 1; row <= 4; ++row) {
      coef(row, 3) = t[row - 1];
      coef(row, 4) = p[row - 1];
    }
    for (int i = 1; i <= 5; ++i) hist(i) = inModel[i - 1];
  }
  int Weakest(int lev = 1) const { return WeakestInModel(5, 3, coef, hist, level, lev); }
  int Strongest(int lev = 1) const { return StrongestOutside(5, 3, coef, hist, level, lev); }
};

TEST(StepChoice, RemovalTakesTheSmallestAbsoluteTAndTheFirstOfATie) {
  // Variables 2 and 4 tie at |t| = 1.5 (opposite signs); 2 comes first.
  Candidates c({3.0f, 1.5f, -1.5f, 2.0f}, {0.01f, 0.2f, 0.2f, 0.1f}, {1, 2, 0, 3, 4});
  EXPECT_EQ(c.Weakest(), 2);
  c.coef(3, 3) = -1.4f;  // now variable 4 alone is weakest
  EXPECT_EQ(c.Weakest(), 4);
}

TEST(StepChoice, EntryTakesTheLargestAbsoluteTAndTheFirstOfATie) {
  Candidates c({2.5f, -2.5f, 2.5f, 1.0f}, {0.02f, 0.02f, 0.02f, 0.3f}, {0, 0, 0, 0, 0});
  EXPECT_EQ(c.Strongest(), 1);
  c.hist(1) = 1.0f;  // variable 1 in: 2 and 4 tie, 2 first
  EXPECT_EQ(c.Strongest(), 2);
  c.coef(3, 3) = -2.6f;
  EXPECT_EQ(c.Strongest(), 4);
}

TEST(StepChoice, NaNPAndOtherLevelsAreSkippedAndTheDependentIsNeverChosen) {
  Candidates c({9.0f, 0.5f, 8.0f, 0.1f}, {kNaN, 0.6f, 0.001f, 0.9f}, {0, 0, 0, 0, 0});
  EXPECT_EQ(c.Strongest(), 4);  // variable 1 has a NaN p
  c.level(4) = 2;
  EXPECT_EQ(c.Strongest(), 2);
  EXPECT_EQ(c.Strongest(2), 4);
  // A variable removed earlier (negative HIST) is a candidate again.
  c.hist(4) = -3.0f;
  EXPECT_EQ(c.Strongest(2), 4);
  EXPECT_EQ(c.Weakest(2), 0);
}

TEST(StepChoice, NoneEligibleGivesZero) {
  Candidates c({1.0f, 2.0f, 3.0f, 4.0f}, {kNaN, kNaN, kNaN, kNaN}, {1, 2, 0, 0, 0});
  EXPECT_EQ(c.Weakest(), 0);
  EXPECT_EQ(c.Strongest(), 0);
}

}  // namespace
}  // namespace tov
