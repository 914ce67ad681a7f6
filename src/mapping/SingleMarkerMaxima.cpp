#include "mapping/SingleMarkerMaxima.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "mapping/MarkerTest.h"
#include "mapping/TwoGroupTest.h"

namespace tov {

namespace {

// Phenotypes scanned side by side: lane j of a group holds scan j.
constexpr int Lanes = 32;
constexpr double Infinity = std::numeric_limits<double>::infinity();

// The lines of each marker that take part in its test, as offsets into a
// group's line-major copy of the phenotypes: all typed lines in order,
// then its 'A' lines, then its 'B' lines.
struct MarkerLines {
  std::vector<std::int32_t> Offset;
  std::vector<std::int64_t> Start;  // marker m (0-based): typed from Start[m]
  std::vector<std::int32_t> NumA, NumB;

  MarkerLines(int numMarkers, int numLines, const Array<char, 2>& scanGenotype)
      : Start(static_cast<std::size_t>(numMarkers) + 1), NumA(numMarkers), NumB(numMarkers) {
    Offset.reserve(2 * scanGenotype.Size());
    for (int m = 1; m <= numMarkers; ++m) {
      Start[m - 1] = static_cast<std::int64_t>(Offset.size());
      for (int l = 1; l <= numLines; ++l)
        if (scanGenotype(m, l) == 'A' || scanGenotype(m, l) == 'B') Offset.push_back((l - 1) * Lanes);
      for (const char group : {'A', 'B'})
        for (int l = 1; l <= numLines; ++l)
          if (scanGenotype(m, l) == group) {
            Offset.push_back((l - 1) * Lanes);
            ++(group == 'A' ? NumA : NumB)[m - 1];
          }
    }
    Start[numMarkers] = static_cast<std::int64_t>(Offset.size());
  }
};

// |c| = |0.5 * log10(6.283185 * v)|, the constant of a log density, is at
// most 0.5 * log10(2) * (|e| + 1) for the binary exponent e of 6.283185 * v;
// e is read off the float product, whose rounding may move it by one.
double ConstantBound(float v) {
  const int exponent = static_cast<int>((std::bit_cast<std::uint32_t>(6.283185f * v) >> 23) & 0xffu) - 126;
  return 0.5 * 0.30103 * (std::abs(exponent) + 2) + 0.5;
}

// An upper bound of the LOD that the test forms from the group sizes and
// the two variances of its first two passes, or infinity where the
// argument below does not hold.
//
// With N typed lines, the test sums in 32 bits, line by line, the log
// densities c - (y - m)^2 / (2v) / K (K = 2.3025851, c the constant of
// variance v) of the one-mean model (m0, v0) and of the two-mean model
// (mA or mB, v1), and takes L1 - L0.  In real arithmetic on the same
// means and variances the squared deviations of a model add up to (N - 1)
// v up to the rounding of its sum of squares, so L1 - L0 = N (c1 - c0) =
// (N / 2) log10(v0 / v1), and -ln r <= (1 - r) / r bounds that by
// N / (2 ln 10) * (v0 - v1) / v1.  The float sums differ from the real ones
// by at most about (N + 6) 2^-24 times the sum of the magnitudes of their
// terms, N |c| + N / (2K) for each model, plus the error of log10 in c and
// of the last subtraction; the bound allows four times that.
double LodBound(std::int32_t numA, std::int32_t numB, float v0, float v1) {
  const int typed = numA + numB;
  if (numA < 1 || numB < 1 || typed < 3) return Infinity;
  // Variances far from 1 would strain the exponent read above.
  if (!(v0 > 1.0e-30f && v0 < 1.0e30f && v1 > 1.0e-30f && v1 < 1.0e30f)) return Infinity;
  const double n = typed;
  const double estimate = n / (2.0 * 2.302585092994046) * ((static_cast<double>(v0) - v1) / v1);
  const double slack = (n + 10.0) * 4.0 * 0x1p-24;
  const double error = slack * (n * (ConstantBound(v0) + ConstantBound(v1)) + 2.0 * n / 2.3025851 + std::fabs(estimate));
  return estimate + error + 1.0e-6;
}

// A group's lanes as vectors of 16 floats, in the compiler's vector
// extension: each element is rounded as a scalar float is, and the build
// for each instruction set splits a vector into what its registers hold.
// Vectors pass only between inlined functions, so their calling convention
// never matters.
#pragma GCC diagnostic ignored "-Wpsabi"
using Vector = float __attribute__((vector_size(64)));
constexpr int VectorLanes = 16;
constexpr int Vectors = Lanes / VectorLanes;
struct LaneValues {
  Vector Part[Vectors];
};

__attribute__((always_inline)) inline Vector Load(const float* from) {
  Vector v;
  std::memcpy(&v, from, sizeof v);
  return v;
}

// Adds y over the listed lines in order, lane by lane, from 0.0.
__attribute__((always_inline)) inline LaneValues SumOver(const std::int32_t* offset, const std::int32_t* end,
                                                         const float* yt) {
  LaneValues sum{};
  for (; offset != end; ++offset)
    for (int i = 0; i < Vectors; ++i) sum.Part[i] = sum.Part[i] + Load(yt + *offset + i * VectorLanes);
  return sum;
}

// Adds (y - mean)^2 over the listed lines in order, lane by lane, from 0.0.
__attribute__((always_inline)) inline LaneValues SquaresOver(const std::int32_t* offset, const std::int32_t* end,
                                                             const float* yt, const LaneValues& mean) {
  LaneValues sum{};
  for (; offset != end; ++offset)
    for (int i = 0; i < Vectors; ++i) {
      const Vector d = Load(yt + *offset + i * VectorLanes) - mean.Part[i];
      sum.Part[i] = sum.Part[i] + d * d;
    }
  return sum;
}

// The first two passes of the test of every marker for the Lanes
// phenotypes of yt [numLines, Lanes] (lanes fastest): the means and the
// variances v0, v1 exactly as the full test forms them (a line the test
// skips would add +0.0, which changes no sum that starts at +0.0), and the
// bound of each LOD, bound [numMarkers, Lanes].
__attribute__((target_clones("avx512f", "avx2", "default"))) void BoundsOfGroup(const MarkerLines& lines,
                                                                               int numMarkers, const float* yt,
                                                                               double* bound) {
  for (int m = 0; m < numMarkers; ++m) {
    const std::int32_t* typed = lines.Offset.data() + lines.Start[m];
    const std::int32_t numA = lines.NumA[m];
    const std::int32_t numB = lines.NumB[m];
    const std::int32_t* groupA = typed + numA + numB;
    const std::int32_t* groupB = groupA + numA;
    const std::int32_t* end = groupB + numB;
    const LaneValues sumTyped = SumOver(typed, groupA, yt);
    const LaneValues sumA = SumOver(groupA, groupB, yt);
    const LaneValues sumB = SumOver(groupB, end, yt);
    LaneValues mean0, meanA, meanB;
    for (int i = 0; i < Vectors; ++i) {
      mean0.Part[i] = sumTyped.Part[i] / static_cast<float>(numA + numB);
      meanA.Part[i] = sumA.Part[i] / static_cast<float>(numA);
      meanB.Part[i] = sumB.Part[i] / static_cast<float>(numB);
    }
    const LaneValues ss0 = SquaresOver(typed, groupA, yt, mean0);
    const LaneValues ssA = SquaresOver(groupA, groupB, yt, meanA);
    const LaneValues ssB = SquaresOver(groupB, end, yt, meanB);
    const float divisor = static_cast<float>(numA + numB - 1);
    for (int i = 0; i < Vectors; ++i) {
      const Vector v0 = ss0.Part[i] / divisor;
      const Vector v1 = (ssA.Part[i] + ssB.Part[i]) / divisor;
      for (int j = 0; j < VectorLanes; ++j)
        bound[static_cast<std::size_t>(m) * Lanes + i * VectorLanes + j] = LodBound(numA, numB, v0[j], v1[j]);
    }
  }
}

}  // namespace

void SingleMarkerMaxima(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const Array<float, 2>& ys,
                        float* maxima) {
  const int count = static_cast<int>(ys.Extent(2));
  if (count < 1) return;
  const MarkerLines lines(numMarkers, numLines, scanGenotype);
  const char* codes = scanGenotype.Data();
  std::vector<float> yt(static_cast<std::size_t>(std::max(numLines, 0)) * Lanes);
  std::vector<double> bound(static_cast<std::size_t>(std::max(numMarkers, 0)) * Lanes);
  MarkerTest record;
  for (int first = 1; first <= count; first += Lanes) {
    // A short last group repeats its last phenotype in the spare lanes.
    for (int j = 0; j < Lanes; ++j) {
      const int k = std::min(first + j, count);
      for (int l = 1; l <= numLines; ++l) yt[static_cast<std::size_t>(l - 1) * Lanes + j] = ys(l, k);
    }
    BoundsOfGroup(lines, numMarkers, yt.data(), bound.data());
    // The maximum does not depend on the order in which the markers enter:
    // the most promising marker first sets a bar that most others cannot
    // reach, and only those that can are tested in full.
    for (int j = 0; j < Lanes && first + j <= count; ++j) {
      const float* y = ys.Data() + static_cast<std::size_t>(first + j - 1) * static_cast<std::size_t>(numLines);
      float highest = 0.0f;
      const auto test = [&](int m) {
        TwoGroupOne(numLines, codes + (m - 1), numMarkers, y, record);
        if (record.LOD(1) > highest) highest = record.LOD(1);
      };
      int best = 0;
      for (int m = 1; m < numMarkers; ++m)
        if (bound[static_cast<std::size_t>(m) * Lanes + j] > bound[static_cast<std::size_t>(best) * Lanes + j]) best = m;
      if (numMarkers > 0) test(best + 1);
      for (int m = 0; m < numMarkers; ++m)
        if (m != best && bound[static_cast<std::size_t>(m) * Lanes + j] > static_cast<double>(highest)) test(m + 1);
      maxima[first + j - 1] = highest;
    }
  }
}

}  // namespace tov
