#include "numerics/matrix/CovarianceMatrix.h"

#include <algorithm>
#include <cstring>

#include "numerics/basic/Basic.h"

namespace tov {
namespace {

// Coded columns are packed in blocks of 32, one byte a value, interleaved
// by observation: column p * 8 + c of a block is byte p of 32-bit lane c, so
// that a lane is widened to a real by shifts alone.
constexpr int kLanes = 8;
constexpr int kBytesPerLane = 4;
constexpr int kBlock = kLanes * kBytesPerLane;

// Eight floats side by side; each lane is an independent float, converted,
// added and multiplied on its own, so a lane's sum keeps its order.
typedef float Lanes __attribute__((vector_size(kLanes * sizeof(float))));
typedef std::int32_t IntLanes __attribute__((vector_size(kLanes * sizeof(std::int32_t))));
typedef std::uint32_t PackedLanes __attribute__((vector_size(kLanes * sizeof(std::uint32_t))));

// The codes of byte p of each lane, sign-extended, as reals less their
// offsets.  (References, so that no vector crosses a call by value.)
[[gnu::always_inline]] inline void CodedValues(const PackedLanes& packed, int p, const Lanes& offset,
                                               Lanes& values) {
  const IntLanes code = reinterpret_cast<IntLanes>(packed << (24 - 8 * p)) >> 24;
  values = __builtin_convertvector(code, Lanes) - offset;
}

// sums[j] = sum over observations, in order and from 0.0, of x(l) * v(l, j),
// or of v(l, j) * v(l, j) when x is null, with v(l, j) = real(code(l, j))
// - offset(j), for every column j of every block.  Built for AVX2 as well
// where it exists: the lanes round exactly as scalar floats do.
__attribute__((target_clones("avx2", "default"))) void SumsOfBlocks(int numObs, const float* x, int numBlocks,
                                                                     const std::int8_t* blocks, const float* offsets,
                                                                     float* sums) {
  for (int b = 0; b < numBlocks; ++b) {
    const std::int8_t* block = blocks + static_cast<std::size_t>(b) * static_cast<std::size_t>(numObs) * kBlock;
    Lanes s[kBytesPerLane] = {};
    Lanes offset[kBytesPerLane];
    std::memcpy(offset, offsets + b * kBlock, sizeof offset);
    for (int l = 0; l < numObs; ++l) {
      Lanes xl;
      for (int c = 0; c < kLanes; ++c) xl[c] = x != nullptr ? x[l] : 0.0f;
      PackedLanes packed;
      std::memcpy(&packed, block + static_cast<std::size_t>(l) * kBlock, sizeof packed);
      for (int p = 0; p < kBytesPerLane; ++p) {
        Lanes v;
        CodedValues(packed, p, offset[p], v);
        s[p] = s[p] + (x != nullptr ? xl : v) * v;
      }
    }
    std::memcpy(sums + b * kBlock, s, sizeof s);
  }
}

// Where the code of column j (1-based) and observation l (0-based) lies.
std::size_t CodeAt(int numObs, int j, int l) {
  const int inBlock = (j - 1) % kBlock;
  const int inRow = inBlock % kLanes * kBytesPerLane + inBlock / kLanes;
  return (static_cast<std::size_t>((j - 1) / kBlock) * static_cast<std::size_t>(numObs) + static_cast<std::size_t>(l)) *
             kBlock +
         static_cast<std::size_t>(inRow);
}

float ProductSum(int n, const float* x, const float* y) {
  float sum = 0.0f;
  for (int l = 0; l < n; ++l) sum = sum + x[l] * y[l];
  return sum;
}

bool FitsInByte(std::int32_t code) { return code >= -128 && code <= 127; }

}  // namespace

CovarianceRows::CovarianceRows(int numObs, int numCols)
    : numObs_(numObs < 0 ? 0 : numObs),
      numCols_(numCols),
      numBlocks_((numCols + kBlock - 1) / kBlock),
      codes_(static_cast<std::size_t>(numBlocks_) * static_cast<std::size_t>(numObs_) * kBlock, 0),
      offset_(static_cast<std::size_t>(numBlocks_) * kBlock, 0.0f),
      realsAt_(static_cast<std::size_t>(numCols) + 1, -1),
      mean_(static_cast<std::size_t>(numCols) + 1, 0.0f),
      hasMissing_(static_cast<std::size_t>(numCols) + 1, numObs < 1) {}

void CovarianceRows::SetCodedColumns(int numCoded, const std::int32_t* codes, const float* offsets) {
  auto code = [&](int j, int l) {
    return codes[static_cast<std::size_t>(j - 1) + static_cast<std::size_t>(l) * static_cast<std::size_t>(numCoded)];
  };
  // Block by block, so that the codes of one observation are read together;
  // the means run over the values in observation order.
  for (int first = 1; first <= numCoded; first += kBlock) {
    const int last = std::min(first + kBlock - 1, numCoded);
    float sum[kBlock] = {};
    bool missing[kBlock] = {};
    bool fits[kBlock];
    std::fill(fits, fits + kBlock, true);
    for (int l = 0; l < numObs_; ++l)
      for (int j = first; j <= last; ++j) {
        const int c = j - first;
        const float value = static_cast<float>(code(j, l)) - offsets[j - 1];
        sum[c] = sum[c] + value;
        missing[c] = missing[c] || IsMissingValue(value);
        fits[c] = fits[c] && FitsInByte(code(j, l));
        codes_[CodeAt(numObs_, j, l)] = static_cast<std::int8_t>(code(j, l));
      }
    for (int j = first; j <= last; ++j) {
      const int c = j - first;
      if (!fits[c]) {
        // Codes beyond a byte are held as reals.
        std::vector<float> values(static_cast<std::size_t>(numObs_));
        for (int l = 0; l < numObs_; ++l)
          values[static_cast<std::size_t>(l)] = static_cast<float>(code(j, l)) - offsets[j - 1];
        SetColumn(j, values.data());
        continue;
      }
      offset_[static_cast<std::size_t>(j) - 1] = offsets[j - 1];
      mean_[static_cast<std::size_t>(j)] = sum[c] / static_cast<float>(numObs_);
      if (missing[c]) hasMissing_[static_cast<std::size_t>(j)] = true;
    }
  }
}

void CovarianceRows::SetColumn(int j, const float* values) {
  realsAt_[static_cast<std::size_t>(j)] = static_cast<std::int64_t>(reals_.size());
  reals_.insert(reals_.end(), values, values + numObs_);
  // The mean is formed once, exactly as ColumnCovariance forms it for a
  // complete pair.
  float sum = 0.0f;
  for (int l = 0; l < numObs_; ++l) {
    if (IsMissingValue(values[l])) hasMissing_[static_cast<std::size_t>(j)] = true;
    sum = sum + values[l];
  }
  mean_[static_cast<std::size_t>(j)] = sum / static_cast<float>(numObs_);
}

void CovarianceRows::ColumnOf(int j, std::vector<float>& values) const {
  const std::int64_t at = realsAt_[static_cast<std::size_t>(j)];
  if (at >= 0) {
    values.assign(reals_.begin() + at, reals_.begin() + at + numObs_);
    return;
  }
  values.resize(static_cast<std::size_t>(numObs_));
  for (int l = 0; l < numObs_; ++l)
    values[static_cast<std::size_t>(l)] =
        static_cast<float>(codes_[CodeAt(numObs_, j, l)]) - offset_[static_cast<std::size_t>(j) - 1];
}

void CovarianceRows::ProductSums(const float* x, std::vector<float>& sums) const {
  sums.resize(static_cast<std::size_t>(numBlocks_) * kBlock);
  SumsOfBlocks(numObs_, x, numBlocks_, codes_.data(), offset_.data(), sums.data());
  for (int j = 1; j <= numCols_; ++j) {
    const std::int64_t at = realsAt_[static_cast<std::size_t>(j)];
    if (at >= 0) sums[static_cast<std::size_t>(j) - 1] = ProductSum(numObs_, x, reals_.data() + at);
  }
}

float CovarianceRows::Covariance(int i, int j, float productSum) const {
  const auto ui = static_cast<std::size_t>(i);
  const auto uj = static_cast<std::size_t>(j);
  if (hasMissing_[ui] || hasMissing_[uj]) {
    std::vector<float> x;
    std::vector<float> y;
    ColumnOf(i, x);
    ColumnOf(j, y);
    return ColumnCovariance(numObs_, x.data(), y.data());
  }
  return productSum / static_cast<float>(numObs_) - mean_[ui] * mean_[uj];
}

void CovarianceRows::Row(int i, Array<float, 1>& row) const {
  std::vector<float> x;
  ColumnOf(i, x);
  std::vector<float> sums;
  ProductSums(x.data(), sums);
  row.Allocate(numCols_);
  for (int j = 1; j <= numCols_; ++j) row(j) = Covariance(i, j, sums[static_cast<std::size_t>(j) - 1]);
}

void CovarianceRows::Diagonal(Array<float, 1>& diagonal) const {
  std::vector<float> sums(static_cast<std::size_t>(numBlocks_) * kBlock);
  SumsOfBlocks(numObs_, nullptr, numBlocks_, codes_.data(), offset_.data(), sums.data());
  diagonal.Allocate(numCols_);
  std::vector<float> x;
  for (int j = 1; j <= numCols_; ++j) {
    float sum = sums[static_cast<std::size_t>(j) - 1];
    if (realsAt_[static_cast<std::size_t>(j)] >= 0) {
      ColumnOf(j, x);
      sum = ProductSum(numObs_, x.data(), x.data());
    }
    diagonal(j) = Covariance(j, j, sum);
  }
}

}  // namespace tov
