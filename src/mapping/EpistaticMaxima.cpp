#include "mapping/EpistaticMaxima.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "mapping/PairKernel.h"
#include "mapping/PairTest.h"
#include "mapping/ShuffleLanes.h"

namespace tov {

namespace {

constexpr int Lanes = ShuffleLanes;

// The lines of one pair, as offsets into a group's line-major copy of the
// phenotypes: all lines of the four cells in order with the cell of each,
// and the lines of each cell in order.
struct PairLines {
  std::vector<std::int32_t> Typed, TypedCell, Cell[4];
  int NumTyped = 0;
  int CellSize[4] = {};

  explicit PairLines(int numLines) : Typed(numLines + 1), TypedCell(numLines + 1) {
    for (auto& cell : Cell) cell.resize(static_cast<std::size_t>(numLines) + 1);
  }

  // codes1, codes2: each marker's lines as 0 'A', 1 'B', 4 missing, so that
  // 2 code1 + code2 is the cell less one, or 4 or more when either code is
  // missing.  Every line is written to every list and counted in its own,
  // so that no count waits on memory.
  void Of(const std::uint8_t* codes1, const std::uint8_t* codes2, int numLines) {
    int numTyped = 0, size0 = 0, size1 = 0, size2 = 0, size3 = 0;
    for (int l = 0; l < numLines; ++l) {
      const int cell = 2 * codes1[l] + codes2[l];
      const std::int32_t offset = l * Lanes;
      Typed[numTyped] = offset;
      TypedCell[numTyped] = cell;
      Cell[0][size0] = offset;
      Cell[1][size1] = offset;
      Cell[2][size2] = offset;
      Cell[3][size3] = offset;
      numTyped += cell < 4;
      size0 += cell == 0;
      size1 += cell == 1;
      size2 += cell == 2;
      size3 += cell == 3;
    }
    NumTyped = numTyped;
    CellSize[0] = size0;
    CellSize[1] = size1;
    CellSize[2] = size2;
    CellSize[3] = size3;
  }
};

// Mean, add1 and add2 of the four cell means, sums from 0.0 in cell order,
// each product a weight of 0.25 or -0.25 times a mean, NaN replaced by 0.0.
__attribute__((always_inline)) inline void Effect(const Vector* means, const float* weights, Vector& effect) {
  Vector sum{};
  for (int k = 0; k < 4; ++k) sum = sum + weights[k] * means[k];
  effect = sum == sum ? sum : Vector{};
}

// The bound of LOD(1) of one pair for the lanes of yt: the sums of squares
// about the overall mean, the cell means and the additive cell values, as
// the test forms them, give v0, v1 and v2; LOD(1) is at most the smaller of
// the bounds of L1 - L2 and L1 - L0.
__attribute__((target_clones("avx512f", "avx2", "default"))) void PairBound(const PairLines& lines, const float* yt,
                                                                           float* bound) {
  const int n = lines.NumTyped;
  const std::int32_t* typed = lines.Typed.data();
  const LaneValues total = SumOver(typed, typed + n, yt);
  // The four cells' sums side by side while all four have lines, then each
  // on its own.
  LaneValues cellSum[4] = {};
  const int common = std::min(std::min(lines.CellSize[0], lines.CellSize[1]), std::min(lines.CellSize[2], lines.CellSize[3]));
  for (int t = 0; t < common; ++t)
    for (int k = 0; k < 4; ++k)
      for (int i = 0; i < Vectors; ++i)
        AddLoaded(cellSum[k].Part[i], yt + lines.Cell[k][t] + i * VectorLanes);
  for (int k = 0; k < 4; ++k)
    for (int t = common; t < lines.CellSize[k]; ++t)
      for (int i = 0; i < Vectors; ++i)
        AddLoaded(cellSum[k].Part[i], yt + lines.Cell[k][t] + i * VectorLanes);

  static constexpr float Weights[3][4] = {
      {0.25f, 0.25f, 0.25f, 0.25f}, {0.25f, 0.25f, -0.25f, -0.25f}, {0.25f, -0.25f, 0.25f, -0.25f}};
  Vector mean0[Vectors], means[4][Vectors], expected[4][Vectors];
  for (int i = 0; i < Vectors; ++i) {
    Vector cellMeans[4];
    for (int k = 0; k < 4; ++k) means[k][i] = cellMeans[k] = cellSum[k].Part[i] / static_cast<float>(lines.CellSize[k]);
    Vector mean, add1, add2;
    Effect(cellMeans, Weights[0], mean);
    Effect(cellMeans, Weights[1], add1);
    Effect(cellMeans, Weights[2], add2);
    expected[0][i] = mean + add1 + add2;
    expected[1][i] = mean + add1 - add2;
    expected[2][i] = mean - add1 + add2;
    expected[3][i] = mean - add1 - add2;
    mean0[i] = total.Part[i] / static_cast<float>(n);
  }
  Vector ss0[Vectors] = {}, ss1[Vectors] = {}, ss2[Vectors] = {};
  for (int t = 0; t < n; ++t) {
    const int k = lines.TypedCell[static_cast<std::size_t>(t)];
    for (int i = 0; i < Vectors; ++i) {
      Vector y;
      LoadInto(y, yt + typed[t] + i * VectorLanes);
      const Vector d0 = y - mean0[i];
      const Vector d1 = y - means[k][i];
      const Vector d2 = y - expected[k][i];
      ss0[i] = ss0[i] + d0 * d0;
      ss1[i] = ss1[i] + d1 * d1;
      ss2[i] = ss2[i] + d2 * d2;
    }
  }
  LaneValues v0, v1, v2;
  const float divisor = static_cast<float>(n - 1);
  for (int i = 0; i < Vectors; ++i) {
    v0.Part[i] = ss0[i] / divisor;
    v1.Part[i] = ss1[i] / divisor;
    v2.Part[i] = ss2[i] / divisor;
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
  // Each marker's codes over the lines, contiguous, in the form PairLines
  // reads.
  std::vector<std::uint8_t> rows(static_cast<std::size_t>(numMarkers) * static_cast<std::size_t>(std::max(numLines, 0)));
  for (int m = 1; m <= numMarkers; ++m)
    for (int l = 1; l <= numLines; ++l) {
      const char code = scanGenotype(m, l);
      rows[static_cast<std::size_t>(m - 1) * numLines + (l - 1)] = code == 'A' ? 0 : code == 'B' ? 1 : 4;
    }
  const auto y = [&](int k) { return ys.Data() + static_cast<std::size_t>(k - 1) * static_cast<std::size_t>(numLines); };
  // All groups of lanes at once, so that the lines of a pair are listed
  // once for all of them; a short last group repeats its last phenotype in
  // the spare lanes.
  const int groups = (count + Lanes - 1) / Lanes;
  const std::size_t groupSize = static_cast<std::size_t>(std::max(numLines, 0)) * Lanes;
  std::vector<float> yt(groupSize * static_cast<std::size_t>(groups));
  for (int k = 1; k <= groups * Lanes; ++k)
    for (int l = 1; l <= numLines; ++l)
      yt[static_cast<std::size_t>((k - 1) / Lanes) * groupSize + static_cast<std::size_t>(l - 1) * Lanes + (k - 1) % Lanes] =
          ys(l, std::min(k, count));
  // The maximum starts at pair (1, 2); a NaN there ends the search.  After
  // it, the order in which pairs enter does not matter, and a pair whose
  // bound stays at or below the maximum cannot raise it.
  PairTest record;
  for (int k = 1; k <= count; ++k) {
    FourGroupRow(codes, 1, 2, 2, y(k), nullptr, &record);
    maxima[k - 1] = record.LOD(1);
  }
  PairLines lines(numLines);
  alignas(64) float bound[Lanes];
  for (int i = 1; i < numMarkers; ++i)
    for (int second = i + 1; second <= numMarkers; ++second) {
      if (i == 1 && second == 2) continue;
      lines.Of(rows.data() + static_cast<std::size_t>(i - 1) * numLines,
               rows.data() + static_cast<std::size_t>(second - 1) * numLines, numLines);
      for (int g = 0; g < groups; ++g) {
        PairBound(lines, yt.data() + static_cast<std::size_t>(g) * groupSize, bound);
        for (int j = 0; j < Lanes && g * Lanes + j < count; ++j) {
          float& highest = maxima[g * Lanes + j];
          if (!(bound[j] > highest)) continue;
          FourGroupRow(codes, i, second, second, y(g * Lanes + j + 1), nullptr, &record);
          if (record.LOD(1) > highest) highest = record.LOD(1);
        }
      }
    }
}

}  // namespace tov
