#include "numerics/matrix/CorrelationMatrix.h"

#include <cstdint>
#include <vector>

#include "numerics/basic/Basic.h"
#include "numerics/basic/LaneSelect.h"
#include "numerics/basic/PairSums.h"

namespace tov {

namespace {

// One column is correlated with Lanes others side by side; the others are
// laid out line by line so that a line's values of all lanes are adjacent.
constexpr int Lanes = 16;

struct LaneBlock {
  int First = 1;  // column of lane 0
  int Width = 0;  // lanes in use
  std::vector<float> Value;
  std::vector<std::uint32_t> Present;  // all ones where the value is not missing
};

// All ones where a value is not missing, zero where it is.
Array<std::uint32_t, 2> PresenceOf(const Array<float, 2>& columns) {
  Array<std::uint32_t, 2> present(columns.Extent(1), columns.Extent(2));
  for (std::size_t i = 0; i < columns.Size(); ++i) present.Data()[i] = MaskOf(!IsMissingValue(columns.Data()[i]));
  return present;
}

void FillBlock(const Array<float, 2>& columns, const Array<std::uint32_t, 2>& present, int first, LaneBlock& block) {
  const int n = static_cast<int>(columns.Extent(1));
  const int k = static_cast<int>(columns.Extent(2));
  block.First = first;
  block.Width = k - first + 1 < Lanes ? k - first + 1 : Lanes;
  block.Value.assign(static_cast<std::size_t>(n) * Lanes, 0.0f);
  block.Present.assign(static_cast<std::size_t>(n) * Lanes, 0u);
  for (int j = 0; j < block.Width; ++j) {
    for (int l = 1; l <= n; ++l) {
      const std::size_t at = static_cast<std::size_t>(l - 1) * Lanes + static_cast<std::size_t>(j);
      block.Value[at] = columns(l, first + j);
      block.Present[at] = present(l, first + j);
    }
  }
}

// The sums of column x with every lane of the block, line by line in the
// order of the single-pair loop.
__attribute__((target_clones("avx2", "default"))) void SumWithBlock(int n, const float* x,
                                                                    const std::uint32_t* xPresent,
                                                                    const LaneBlock& block, PairSums* sums) {
  std::int32_t valid[Lanes] = {};
  float sumX[Lanes] = {}, sumY[Lanes] = {}, sumXX[Lanes] = {}, sumYY[Lanes] = {}, sumXY[Lanes] = {};
  const float* value = block.Value.data();
  const std::uint32_t* present = block.Present.data();
  for (int l = 0; l < n; ++l) {
    const float xl = x[l];
    const std::uint32_t xMask = xPresent[l];
    const float* yl = value + static_cast<std::ptrdiff_t>(l) * Lanes;
    const std::uint32_t* yMask = present + static_cast<std::ptrdiff_t>(l) * Lanes;
    for (int j = 0; j < Lanes; ++j) {
      const std::uint32_t both = xMask & yMask[j];
      const float y = yl[j];
      valid[j] += static_cast<std::int32_t>(both & 1u);
      sumX[j] = sumX[j] + KeepMasked(both, xl);
      sumY[j] = sumY[j] + KeepMasked(both, y);
      sumXX[j] = sumXX[j] + KeepMasked(both, xl * xl);
      sumYY[j] = sumYY[j] + KeepMasked(both, y * y);
      sumXY[j] = sumXY[j] + KeepMasked(both, xl * y);
    }
  }
  for (int j = 0; j < Lanes; ++j) sums[j] = {valid[j], sumX[j], sumY[j], sumXX[j], sumYY[j], sumXY[j]};
}

}  // namespace

Array<float, 2> CorrelationMatrixOfValid(const Array<float, 2>& columns) {
  const int n = static_cast<int>(columns.Extent(1));
  const int k = static_cast<int>(columns.Extent(2));
  Array<float, 2> correlation(k, k);
  const Array<std::uint32_t, 2> present = PresenceOf(columns);
  LaneBlock block;
  PairSums sums[Lanes];
  for (int first = 1; first <= k; first += Lanes) {
    FillBlock(columns, present, first, block);
    // Column i against the lanes of the block up to itself: each pair (i, j)
    // with j <= i is met once.
    for (int i = first; i <= k; ++i) {
      SumWithBlock(n, &columns(1, i), &present(1, i), block, sums);
      for (int j = 0; j < block.Width && first + j <= i; ++j)
        correlation(i, first + j) = correlation(first + j, i) = CorrelationOfSums(sums[j]);
    }
  }
  return correlation;
}

}  // namespace tov
