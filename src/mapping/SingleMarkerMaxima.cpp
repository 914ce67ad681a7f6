#include "mapping/SingleMarkerMaxima.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "mapping/MarkerTest.h"
#include "mapping/ShuffleLanes.h"
#include "mapping/TwoGroupTest.h"

namespace tov {

namespace {

constexpr int Lanes = ShuffleLanes;

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
                                                                               float* bound) {
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
    LaneValues v0, v1;
    for (int i = 0; i < Vectors; ++i) {
      v0.Part[i] = ss0.Part[i] / divisor;
      v1.Part[i] = (ssA.Part[i] + ssB.Part[i]) / divisor;
    }
    // A marker without both groups, or with too few lines, is tested in
    // full.
    const LaneValues b = numA >= 1 && numB >= 1 && numA + numB >= 3 ? LodBound(numA + numB, v1, v0) : Unbounded();
    std::memcpy(bound + static_cast<std::size_t>(m) * Lanes, &b, sizeof b);
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
  std::vector<float> bound(static_cast<std::size_t>(std::max(numMarkers, 0)) * Lanes);
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
        if (m != best && bound[static_cast<std::size_t>(m) * Lanes + j] > highest) test(m + 1);
      maxima[first + j - 1] = highest;
    }
  }
}

}  // namespace tov
