#include "numerics/stepwise/StepChoice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace tov {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// Five variables, the dependent one third.  p(i) is formed on demand and
// each demand is logged.
struct Candidates {
  Array<float, 1> t{5};
  Array<float, 1> p{5};
  Array<float, 1> hist{5};
  Array<int, 1> level{5};
  std::vector<int> asked;

  Candidates(std::vector<float> ts, std::vector<float> ps, std::vector<float> inModel) {
    level.Fill(1);
    level(3) = -1;
    for (int i = 1; i <= 5; ++i) {
      t(i) = ts[i - 1];
      p(i) = ps[i - 1];
      hist(i) = inModel[i - 1];
    }
  }
  StepCandidates View() {
    return StepCandidates{5, 3, t, hist, level, [this](int i) {
                            asked.push_back(i);
                            return p(i);
                          }};
  }
  int Weakest(int lev = 1) { return WeakestInModel(View(), lev); }
  int Strongest(int lev = 1) { return StrongestOutside(View(), lev); }
};

TEST(StepChoice, TheFirstOfATieStandsAndOnlyTheChosenPIsFormed) {
  // Removal: variables 2 and 4 tie at |t| = 1.5 (opposite signs).
  Candidates in({3.0f, 1.5f, 0.0f, -1.5f, 2.0f}, {0.01f, 0.2f, 0.0f, 0.2f, 0.1f}, {1, 2, 0, 3, 4});
  EXPECT_EQ(in.Weakest(), 2);
  EXPECT_EQ(in.asked, (std::vector<int>{2}));
  in.t(4) = -1.4f;
  EXPECT_EQ(in.Weakest(), 4);
  // Entry: 1, 2 and 4 tie at |t| = 2.5.
  Candidates out({2.5f, -2.5f, 0.0f, 2.5f, 1.0f}, {0.02f, 0.02f, 0.0f, 0.02f, 0.3f}, {0, 0, 0, 0, 0});
  EXPECT_EQ(out.Strongest(), 1);
  out.hist(1) = 1.0f;
  EXPECT_EQ(out.Strongest(), 2);
  EXPECT_EQ(out.asked, (std::vector<int>{1, 2}));
}

TEST(StepChoice, NaNStatisticsOtherLevelsAndTheDependentAreSkipped) {
  // Variable 1 has a NaN t, variable 4 a NaN p behind a finite t; the
  // dependent variable 3 carries the largest t of all.
  Candidates c({kNaN, 0.5f, 99.0f, 8.0f, 0.1f}, {kNaN, 0.6f, 0.0f, kNaN, 0.9f}, {0, 0, 0, 0, 0});
  EXPECT_EQ(c.Strongest(), 2);
  EXPECT_EQ(c.asked, (std::vector<int>{4, 2}));
  c.level(2) = 2;
  EXPECT_EQ(c.Strongest(), 5);
  EXPECT_EQ(c.Strongest(2), 2);
  // A variable removed earlier (negative HIST) is a candidate again.
  c.hist(2) = -3.0f;
  EXPECT_EQ(c.Strongest(2), 2);
  EXPECT_EQ(c.Weakest(2), 0);
  c.p(2) = kNaN;
  EXPECT_EQ(c.Strongest(2), 0);
}

}  // namespace
}  // namespace tov
