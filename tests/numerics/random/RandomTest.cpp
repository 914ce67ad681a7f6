// The process stream and what draws from it, against an independent
// python3 model in exact integers and numpy.float32.  The end state after
// each call counts the uniforms it drew.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "numerics/random/Random.h"
#include "numerics/random/ReservoirSample.h"
#include "support/CaseTable.h"
#include "support/RaisedMessages.h"

namespace tov {
namespace {

using testing_support::ReadCaseTable;
using testing_support::Words;

TEST(Random, UniformStreamFromItsSeed) {
  const struct {
    std::int32_t Seed, State;
    float Uniform;
  } steps[] = {{1, 16807, 0x1.069bfep-17f},           {16807, 282475249, 0x1.0d63aep-3f},
               {123457, 2074941799, 0x1.eeb464p-1f},  {739806647, 2147483646, 1.0f - 0x1p-24f},
               {1407677000, 1, 0x1.fffffep-32f}};
  for (const auto& s : steps) {
    StartStreamForTesting(s.Seed);
    EXPECT_EQ(UniformDraw(), s.Uniform) << s.Seed;
    EXPECT_EQ(StreamStateForTesting(), s.State) << s.Seed;
  }
  StartStreamForTesting(987654321);
  float r[7], expected[7];
  for (float& u : expected) u = UniformDraw();
  StartStreamForTesting(987654321);
  RNUN(7, r);
  EXPECT_EQ(std::vector<float>(r, r + 7), std::vector<float>(expected, expected + 7));
  EXPECT_EQ(SeedFromClock(23, 59, 59), 235960);
  EXPECT_EQ(SeedFromClock(7, 5, 9), 70510);
  EXPECT_EQ(SeedFromClock(0, 0, 0), 123457) << "midnight would give 1";
}

TEST(Random, NormalDeviates) {
  for (const auto& c : ReadCaseTable("numerics/random/data/normals.txt")) {
    const std::vector<float> deviates = Words<float>(c.at(2));
    std::vector<float> r(deviates.size());
    StartStreamForTesting(std::stoi(c.at(0)));
    RNNOA(static_cast<int>(r.size()), r.data());
    EXPECT_EQ(r, deviates) << c[0];
    EXPECT_EQ(StreamStateForTesting(), std::stoi(c.at(1)));
  }
  std::vector<float> many(1000000);
  StartStreamForTesting(123457);
  RNNOA(1000000, many.data());
  EXPECT_EQ(StreamStateForTesting(), 1829062073) << "every acceptance of a million deviates: 2161010 uniforms";
}

TEST(Random, PermutationsAndSamples) {
  for (const auto& c : ReadCaseTable("numerics/random/data/permutations.txt")) {
    const std::vector<int> permutation = Words<int>(c.at(2));
    const int endState = std::stoi(c.at(1));
    std::vector<int> iper(permutation.size() + 1, -77);
    StartStreamForTesting(std::stoi(c.at(0)));
    RNPER(static_cast<int>(permutation.size()), iper.data());
    EXPECT_EQ(iper.back(), -77);
    iper.pop_back();
    EXPECT_EQ(iper, permutation) << c[0];
    EXPECT_TRUE(endState < 0 || StreamStateForTesting() == endState) << c[0];
  }
  const float x[] = {10.0f, 20.0f, 30.0f, 40.0f, 50.0f};
  const int p[] = {3, 1, 5, 2, 4};
  float y[5];
  PERMU(5, x, p, 1, y);
  EXPECT_EQ(std::vector<float>(y, y + 5), (std::vector<float>{30, 10, 50, 20, 40}));
  PERMU(5, x, p, 2, y);
  EXPECT_EQ(std::vector<float>(y, y + 5), (std::vector<float>{20, 40, 10, 50, 30}));

  for (const auto& s : ReadCaseTable("numerics/random/data/samples.txt")) {
    const int numRows = std::stoi(s.at(1));
    const std::vector<int> expected = Words<int>(s.at(3));
    std::vector<float> population, sample(expected.size());
    for (int i = 1; i <= numRows; ++i) population.push_back(100.0f + static_cast<float>(i) / 4.0f);
    std::vector<int> index(expected.size());
    StartStreamForTesting(std::stoi(s.at(0)));
    RNSRS(numRows, population.data(), static_cast<int>(index.size()), sample.data(), index.data());
    EXPECT_EQ(index, expected) << s[0];
    for (std::size_t k = 0; k < index.size(); ++k) EXPECT_EQ(sample[k], population[index[k] - 1]);
    EXPECT_EQ(StreamStateForTesting(), std::stoi(s.at(2)));
  }
}

TEST(Random, RefusedArguments) {
  float r[3] = {-1.0f, -1.0f, -1.0f};
  int iper[1] = {-5};
  const int good[] = {2, 3, 1}, bad[] = {2, 4, 1}, zero[] = {0, 1, 2};
  const float x[] = {1.0f, 2.0f, 3.0f};
  StartStreamForTesting(99);
  EXPECT_EQ(RaisedMessages([&] { RNNOA(0, r); }), "RNNOA: NR = 0.  NR must be greater than or equal to 1.\n");
  EXPECT_EQ(RaisedMessages([&] { RNPER(0, iper); }), "RNPER: K = 0.  K must be greater than or equal to 1.\n");
  EXPECT_EQ(RaisedMessages([&] { PERMU(0, x, good, 1, r); }),
            "PERMU: The length of the arrays X and XPERMU must be positive while N = 0 is given.\n");
  EXPECT_EQ(RaisedMessages([&] { PERMU(3, x, good, 3, r); }),
            "PERMU: IPATH must be equal to 1 or 2 while a value of 3 is given.\n");
  EXPECT_EQ(RaisedMessages([&] { PERMU(3, x, bad, 1, r); }),
            "PERMU: IPERMU(2) = 4 is not allowed.  It must be between 1 and N = 3.\n");
  EXPECT_EQ(RaisedMessages([&] { PERMU(3, x, zero, 2, r); }),
            "PERMU: IPERMU(1) = 0 is not allowed.  It must be between 1 and N = 3.\n");
  EXPECT_EQ(N1RTY(1), SeverityTerminal);
  EXPECT_EQ(std::vector<float>(r, r + 3), std::vector<float>(3, -1.0f));
  EXPECT_EQ(iper[0], -5);
  EXPECT_EQ(StreamStateForTesting(), 99);
}

}  // namespace
}  // namespace tov
