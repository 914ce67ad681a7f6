// The process stream and what draws from it, against an independent
// python3 model: states s = 16807 s mod (2^31 - 1) in exact integers,
// u = float32(s * scale) with the scale 2^-31 - 2^-55, the normal method
// in numpy.float32, and the shuffle, reservoir and positions in float32.
// The end state after each call counts the uniforms it drew.

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "numerics/random/Random.h"
#include "numerics/random/ReservoirSample.h"
#include "support/RaisedMessages.h"

namespace tov {
namespace {

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
  // Seed 13 reaches every region within 24 deviates (57 uniforms); seed 19
  // has a negative candidate in the last region that starts a round again.
  const struct {
    std::int32_t Seed, EndState;
    std::vector<float> Deviates;
  } cases[] = {
      {13, 697343730, {-0x1.48ea98p-1f, 0x1.fabb2cp+0f, -0x1.27e35cp+0f, 0x1.b198cep+0f, 0x1.62c30ap-2f,
                       0x1.72ce62p+0f, 0x1.cd802ep-2f, -0x1.ae36ep-2f, 0x1.2e0ef8p+2f, 0x1.647858p-2f,
                       -0x1.cc98eap-5f, -0x1.3f95f8p-4f, 0x1.e02482p-3f, -0x1.952392p-3f, 0x1.8b130cp-3f,
                       0x1.a8c3d8p+0f, 0x1.c2012ep-6f, 0x1.1040fep-1f, 0x1.0e2eb2p+0f, -0x1.26d55ap-1f,
                       0x1.491f28p-1f, -0x1.144c96p+1f, 0x1.6a7ae8p-1f, -0x1.1577ap+0f}},
      {19, 33868106, {-0x1.1c0034p+0f, 0x1.0add82p-2f, -0x1.8dc05ap+0f, -0x1.3c8262p-2f, 0x1.b580a4p+0f,
                      -0x1.11b186p-1f}},
  };
  for (const auto& c : cases) {
    std::vector<float> r(c.Deviates.size());
    StartStreamForTesting(c.Seed);
    RNNOA(static_cast<int>(r.size()), r.data());
    EXPECT_EQ(r, c.Deviates) << c.Seed;
    EXPECT_EQ(StreamStateForTesting(), c.EndState);
  }
  std::vector<float> many(1000000);
  StartStreamForTesting(123457);
  RNNOA(1000000, many.data());
  EXPECT_EQ(StreamStateForTesting(), 1829062073) << "every acceptance of a million deviates: 2161010 uniforms";
}

TEST(Random, PermutationsAndSamples) {
  // Seed 671875339 gives 2u + 1 = 3 - 2^-23, which rounds to 3.0: j is not
  // clamped to i; seed 739806647 draws j = K + 1, past the array, which is
  // not written.
  const struct {
    std::int32_t Seed, EndState;
    std::vector<int> Permutation;
  } cases[] = {{1, 984943658, {2, 4, 3, 5, 1}},
               {123457, 1924951450, {5, 9, 2, 8, 1, 6, 4, 7, 3, 10}},
               {671875339, -1, {1, 2, 3}},
               {739806647, -1, {1, 2, 3, 4}},
               {4242, 4242, {1}}};
  for (const auto& c : cases) {
    std::vector<int> iper(c.Permutation.size() + 1, -77);
    StartStreamForTesting(c.Seed);
    RNPER(static_cast<int>(c.Permutation.size()), iper.data());
    EXPECT_EQ(iper.back(), -77);
    iper.pop_back();
    EXPECT_EQ(iper, c.Permutation) << c.Seed;
    EXPECT_TRUE(c.EndState < 0 || StreamStateForTesting() == c.EndState) << c.Seed;
  }
  const float x[] = {10.0f, 20.0f, 30.0f, 40.0f, 50.0f};
  const int p[] = {3, 1, 5, 2, 4};
  float y[5];
  PERMU(5, x, p, 1, y);
  EXPECT_EQ(std::vector<float>(y, y + 5), (std::vector<float>{30, 10, 50, 20, 40}));
  PERMU(5, x, p, 2, y);
  EXPECT_EQ(std::vector<float>(y, y + 5), (std::vector<float>{20, 40, 10, 50, 30}));

  const struct {
    std::int32_t Seed, NumRows, EndState;
    std::vector<int> Index;
  } samples[] = {{12345, 20, 2112876142, {11, 2, 3, 17, 18}},
                 {987654321, 100, 720809316, {1, 36, 72, 94, 49, 27, 29, 16, 24, 47}},
                 {12345, 5, 12345, {1, 2, 3, 4, 5}}};
  for (const auto& s : samples) {
    std::vector<float> population, sample(s.Index.size());
    for (int i = 1; i <= s.NumRows; ++i) population.push_back(100.0f + static_cast<float>(i) / 4.0f);
    std::vector<int> index(s.Index.size());
    StartStreamForTesting(s.Seed);
    RNSRS(s.NumRows, population.data(), static_cast<int>(index.size()), sample.data(), index.data());
    EXPECT_EQ(index, s.Index);
    for (std::size_t k = 0; k < index.size(); ++k) EXPECT_EQ(sample[k], population[index[k] - 1]);
    EXPECT_EQ(StreamStateForTesting(), s.EndState);
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
