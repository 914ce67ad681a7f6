#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "numerics/basic/ErrorPolicy.h"
#include "numerics/random/Random.h"

namespace tov {
namespace {

// Expected permutations from an independent python3 model of the shuffle,
// with numpy.float32 for u * i and for the sum with 1.0.
TEST(RNPER, KnownPermutationsAndDrawCount) {
  int iper[10];
  StartStreamForTesting(1);
  RNPER(5, iper);
  EXPECT_EQ(std::vector<int>(iper, iper + 5), (std::vector<int>{2, 4, 3, 5, 1}));
  EXPECT_EQ(StreamStateForTesting(), 984943658);  // the fourth state after seed 1
  StartStreamForTesting(123457);
  RNPER(10, iper);
  EXPECT_EQ(std::vector<int>(iper, iper + 10), (std::vector<int>{5, 9, 2, 8, 1, 6, 4, 7, 3, 10}));
  EXPECT_EQ(StreamStateForTesting(), 1924951450);  // nine draws
}

TEST(RNPER, OneElementDrawsNothing) {
  StartStreamForTesting(4242);
  int iper[1] = {0};
  RNPER(1, iper);
  EXPECT_EQ(iper[0], 1);
  EXPECT_EQ(StreamStateForTesting(), 4242);
}

TEST(RNPER, PositionIsNotClampedToI) {
  // Seed 671875339 gives u = 0.756... at i = 3 (j = 2), then the largest
  // uniform 1 - 2^-24 at i = 2: 2u + 1 = 3 - 2^-23 rounds to 3.0 in float,
  // so j = 3 and positions 2 and 3 swap back.  A clamp would leave 1 3 2.
  StartStreamForTesting(671875339);
  int iper[3];
  RNPER(3, iper);
  EXPECT_EQ(std::vector<int>(iper, iper + 3), (std::vector<int>{1, 2, 3}));
}

TEST(RNPER, PositionPastTheEndIsNotWritten) {
  // Seed 739806647 draws the largest uniform first, at i = K = 4, where
  // j = 5 lies past the array.
  StartStreamForTesting(739806647);
  int iper[5] = {0, 0, 0, 0, -77};
  RNPER(4, iper);
  EXPECT_EQ(std::vector<int>(iper, iper + 5), (std::vector<int>{1, 2, 3, 4, -77}));
}

TEST(RNPER, KBelowOneIsATerminalError) {
  ERSET(0, 1, 0);
  ClearLastError();
  int iper[1] = {-5};
  ::testing::internal::CaptureStderr();
  RNPER(0, iper);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "RNPER: K = 0.  K must be greater than or equal to 1.\n");
  EXPECT_EQ(N1RTY(1), SeverityTerminal);
  EXPECT_EQ(iper[0], -5);
  ClearLastError();
  ERSET(0, 2, 2);
}

TEST(PERMU, BothPathsOnAHandWorkedPermutation) {
  const float x[] = {10.0f, 20.0f, 30.0f, 40.0f, 50.0f};
  const int p[] = {3, 1, 5, 2, 4};
  float y[5];
  PERMU(5, x, p, 1, y);  // y(i) = x(p(i))
  EXPECT_EQ(std::vector<float>(y, y + 5), (std::vector<float>{30.0f, 10.0f, 50.0f, 20.0f, 40.0f}));
  PERMU(5, x, p, 2, y);  // y(p(i)) = x(i)
  EXPECT_EQ(std::vector<float>(y, y + 5), (std::vector<float>{20.0f, 40.0f, 10.0f, 50.0f, 30.0f}));
  EXPECT_EQ(std::vector<int>(p, p + 5), (std::vector<int>{3, 1, 5, 2, 4}));
  EXPECT_EQ(x[0], 10.0f);
}

class PermuCheckTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ERSET(0, 1, 0);
    ClearLastError();
  }
  void TearDown() override {
    ClearLastError();
    ERSET(0, 2, 2);
  }
  // Runs PERMU and returns what it printed; y must stay untouched.
  std::string Run(int n, const int* p, int ipath) {
    const float x[] = {1.0f, 2.0f, 3.0f};
    float y[3] = {-1.0f, -1.0f, -1.0f};
    ::testing::internal::CaptureStderr();
    PERMU(n, x, p, ipath, y);
    const std::string printed = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(N1RTY(1), SeverityTerminal);
    for (float v : y) EXPECT_EQ(v, -1.0f);
    return printed;
  }
};

TEST_F(PermuCheckTest, ReportsEachBadArgument) {
  const int good[] = {2, 3, 1};
  EXPECT_EQ(Run(0, good, 1),
            "PERMU: The length of the arrays X and XPERMU must be positive while N = 0 is given.\n");
  EXPECT_EQ(Run(3, good, 3), "PERMU: IPATH must be equal to 1 or 2 while a value of 3 is given.\n");
  const int bad[] = {2, 4, 1};
  EXPECT_EQ(Run(3, bad, 1), "PERMU: IPERMU(2) = 4 is not allowed.  It must be between 1 and N = 3.\n");
  const int zero[] = {0, 1, 2};
  EXPECT_EQ(Run(3, zero, 2), "PERMU: IPERMU(1) = 0 is not allowed.  It must be between 1 and N = 3.\n");
}

}  // namespace
}  // namespace tov
