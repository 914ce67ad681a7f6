#include "mapping/EpistaticMaxima.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "mapping/FourGroupTest.h"
#include "mapping/PairKernel.h"
#include "mapping/PairTest.h"
#include "mapping/ShuffleLanes.h"

namespace tov {

namespace {

constexpr int Lanes = ShuffleLanes;

// The lines of one pair, as offsets into a group's line-major copy of the
// phenotypes: the lines of each cell in order, and all lines of the four
// cells in order with the cell of each.
struct PairLines {
  std::vector<std::int32_t> Typed, TypedCell, Cell[4];

  explicit PairLines(int numLines) {
    Typed.reserve(numLines);
    TypedCell.reserve(numLines);
    for (auto& cell : Cell) cell.reserve(numLines);
  }

  void Of(const char* codes1, const char* codes2, int numLines) {
    Typed.clear();
    TypedCell.clear();
    for (auto& cell : Cell) cell.clear();
    for (int l = 0; l < numLines; ++l) {
      const int cell = PairCell(codes1[l], codes2[l]);
      if (cell == 0) continue;
      Typed.push_back(l * Lanes);
      TypedCell.push_back(cell - 1);
      Cell[cell - 1].push_back(l * Lanes);
    }
  }
};

// Mean, add1 and add2 of the four cell means, sums from 0.0 in cell order,
// each product a weight of 0.25 or -0.25 times a mean, NaN replaced by 0.0.
__attribute__((always_inline)) inline Vector Effect(const Vector* means, const float* weights) {
  Vector sum{};
  for (int k = 0; k < 4; ++k) sum = sum + weights[k] * means[k];
  return sum == sum ? sum : Vector{};
}

// The bound of LOD(1) of one pair for the lanes of yt: the sums of squares
// about the overall mean, the cell means and the additive cell values, as
// the test forms them, give v0, v1 and v2; LOD(1) is at most the smaller of
// the bounds of L1 - L2 and L1 - L0.
__attribute__((target_clones("avx512f", "avx2", "default"))) void PairBound(const PairLines& lines, const float* yt,
                                                                           float* bound) {
  const int n = static_cast<int>(lines.Typed.size());
  const std::int32_t* typed = lines.Typed.data();
  const LaneValues total = SumOver(typed, typed + n, yt);
  LaneValues cellSum[4];
  for (int k = 0; k < 4; ++k)
    cellSum[k] = SumOver(lines.Cell[k].data(), lines.Cell[k].data() + lines.Cell[k].size(), yt);
  static constexpr float Weights[3][4] = {
      {0.25f, 0.25f, 0.25f, 0.25f}, {0.25f, 0.25f, -0.25f, -0.25f}, {0.25f, -0.25f, 0.25f, -0.25f}};
  LaneValues v0, v1, v2;
  for (int i = 0; i < Vectors; ++i) {
    Vector means[4], expected[4];
    for (int k = 0; k < 4; ++k) means[k] = cellSum[k].Part[i] / static_cast<float>(lines.Cell[k].size());
    const Vector mean = Effect(means, Weights[0]);
    const Vector add1 = Effect(means, Weights[1]);
    const Vector add2 = Effect(means, Weights[2]);
    expected[0] = mean + add1 + add2;
    expected[1] = mean + add1 - add2;
    expected[2] = mean - add1 + add2;
    expected[3] = mean - add1 - add2;
    const Vector mean0 = total.Part[i] / static_cast<float>(n);
    Vector ss0{}, ss1{}, ss2{};
    for (int t = 0; t < n; ++t) {
      const Vector y = Load(yt + typed[t] + i * VectorLanes);
      const int k = lines.TypedCell[static_cast<std::size_t>(t)];
      const Vector d0 = y - mean0;
      const Vector d1 = y - means[k];
      const Vector d2 = y - expected[k];
      ss0 = ss0 + d0 * d0;
      ss1 = ss1 + d1 * d1;
      ss2 = ss2 + d2 * d2;
    }
    const float divisor = static_cast<float>(n - 1);
    v0.Part[i] = ss0 / divisor;
    v1.Part[i] = ss1 / divisor;
    v2.Part[i] = ss2 / divisor;
  }
  const LaneValues b = n >= 3 ? LodBound(n, v1, v2) : Unbounded();
  const LaneValues c = n >= 3 ? LodBound(n, v1, v0) : Unbounded();
  for (int i = 0; i < Vectors; ++i) {
    const Vector smaller = b.Part[i] < c.Part[i] ? b.Part[i] : c.Part[i];
    std::memcpy(bound + i * VectorLanes, &smaller, sizeof smaller);
  }
}

}  // namespace

void EpistaticMaxima(int numMarkers, int numLines, const Array<char, 2>& scanGenotype, const Array<float, 2>& ys,
                     float* maxima) {
  const int count = static_cast<int>(ys.Extent(2));
  if (numMarkers < 2) {
    for (int k = 0; k < count; ++k) maxima[k] = 0.0f;
    return;
  }
  const PairCodes codes = PairCodesOf(numMarkers, numLines, scanGenotype);
  // Each marker's codes over the lines, contiguous.
  std::vector<char> rows(static_cast<std::size_t>(numMarkers) * static_cast<std::size_t>(std::max(numLines, 0)));
  for (int m = 1; m <= numMarkers; ++m)
    for (int l = 1; l <= numLines; ++l)
      rows[static_cast<std::size_t>(m - 1) * numLines + (l - 1)] = scanGenotype(m, l);
  const auto y = [&](int k) { return ys.Data() + static_cast<std::size_t>(k - 1) * static_cast<std::size_t>(numLines); };
  std::vector<float> yt(static_cast<std::size_t>(std::max(numLines, 0)) * Lanes);
  PairLines lines(numLines);
  PairTest record;
  alignas(64) float bound[Lanes];
  for (int first = 1; first <= count; first += Lanes) {
    const int width = std::min(Lanes, count - first + 1);
    // A short last group repeats its last phenotype in the spare lanes.
    for (int j = 0; j < Lanes; ++j)
      for (int l = 1; l <= numLines; ++l)
        yt[static_cast<std::size_t>(l - 1) * Lanes + j] = ys(l, first + std::min(j, width - 1));
    // The maximum starts at pair (1, 2); a NaN there ends the search.  After
    // it, the order in which pairs enter does not matter, and a pair whose
    // bound stays at or below the maximum cannot raise it.
    float highest[Lanes];
    for (int j = 0; j < width; ++j) {
      FourGroupRow(codes, 1, 2, 2, y(first + j), nullptr, &record);
      highest[j] = record.LOD(1);
    }
    for (int i = 1; i < numMarkers; ++i)
      for (int second = i + 1; second <= numMarkers; ++second) {
        if (i == 1 && second == 2) continue;
        lines.Of(&rows[static_cast<std::size_t>(i - 1) * numLines], &rows[static_cast<std::size_t>(second - 1) * numLines],
                 numLines);
        PairBound(lines, yt.data(), bound);
        for (int j = 0; j < width; ++j) {
          if (!(bound[j] > highest[j])) continue;
          FourGroupRow(codes, i, second, second, y(first + j), nullptr, &record);
          if (record.LOD(1) > highest[j]) highest[j] = record.LOD(1);
        }
      }
    for (int j = 0; j < width; ++j) maxima[first + j - 1] = highest[j];
  }
}

}  // namespace tov
