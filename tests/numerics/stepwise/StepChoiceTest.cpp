#include "numerics/stepwise/StepChoice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tov {
namespace {

// Five variables, the dependent one third (the largest t of all, which
// must never count).
struct Case {
  bool weakest;  // WeakestInModel, else StrongestOutside
  int level;
  std::vector<float> t, p, hist;
  std::vector<int> levels;
  int chosen;
  std::vector<int> asked;  // the p formed, in order: only the chosen one's, or after a NaN p the next's
};

TEST(StepChoice, FirstOfATieNaNsLevelsAndTheDependent) {
  const std::vector<float> tie = {3.0f, 1.5f, 99.0f, -1.5f, 2.0f}, tieP = {0.01f, 0.2f, 0.0f, 0.2f, 0.1f};
  const std::vector<float> nanT = {NAN, 0.5f, 99.0f, 8.0f, 0.1f}, nanP = {NAN, 0.6f, 0.0f, NAN, 0.9f};
  const std::vector<float> out(5, 0.0f);
  const Case cases[] = {
      {true, 1, tie, tieP, {1, 2, 0, 3, 4}, {1, 1, -1, 1, 1}, 2, {2}},
      {true, 1, {3.0f, 1.5f, 99.0f, -1.4f, 2.0f}, tieP, {1, 2, 0, 3, 4}, {1, 1, -1, 1, 1}, 4, {4}},
      {false, 1, {2.5f, -2.5f, 99.0f, 2.5f, 1.0f}, tieP, out, {1, 1, -1, 1, 1}, 1, {1}},
      {false, 1, {2.5f, -2.5f, 99.0f, 2.5f, 1.0f}, tieP, {1, 0, 0, 0, 0}, {1, 1, -1, 1, 1}, 2, {2}},
      {false, 1, nanT, nanP, out, {1, 1, -1, 1, 1}, 2, {4, 2}},
      {false, 1, nanT, nanP, out, {1, 2, -1, 1, 1}, 5, {4, 5}},
      {false, 2, nanT, nanP, out, {1, 2, -1, 1, 1}, 2, {2}},
      // A variable removed earlier (negative HIST) is a candidate again.
      {false, 2, nanT, nanP, {0, -3, 0, 0, 0}, {1, 2, -1, 1, 1}, 2, {2}},
      {true, 2, nanT, nanP, {0, -3, 0, 0, 0}, {1, 2, -1, 1, 1}, 0, {}},
      {false, 2, nanT, {NAN, NAN, 0.0f, NAN, 0.9f}, out, {1, 2, -1, 1, 1}, 0, {2}},
  };
  for (const Case& c : cases) {
    Array<float, 1> t(5), hist(5);
    Array<int, 1> level(5);
    for (int i = 1; i <= 5; ++i) {
      t(i) = c.t[i - 1];
      hist(i) = c.hist[i - 1];
      level(i) = c.levels[i - 1];
    }
    std::vector<int> asked;
    const StepCandidates view{5, 3, t, hist, level, [&](int i) {
                                asked.push_back(i);
                                return c.p[i - 1];
                              }};
    const int chosen = c.weakest ? WeakestInModel(view, c.level) : StrongestOutside(view, c.level);
    EXPECT_EQ(chosen, c.chosen) << &c - cases;
    EXPECT_EQ(asked, c.asked) << &c - cases;
  }
}

}  // namespace
}  // namespace tov
