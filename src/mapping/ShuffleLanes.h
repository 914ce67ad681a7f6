#pragma once
// What the maxima kernels of the permutation test share: the phenotypes of
// ShuffleLanes shuffles side by side, one lane each, over a line-major copy
// yt [lines, ShuffleLanes]; sums over lists of lines; and the bound that
// spares a test whose LOD cannot reach the running maximum.
//
// The lanes are vectors of the compiler's vector extension: each element
// is rounded as a scalar float is, and the build for each instruction set
// splits a vector into what its registers hold.  Vectors pass only between
// inlined functions, so their calling convention never matters.

#include <bit>
#include <cstdint>
#include <cstring>

#pragma GCC diagnostic ignored "-Wpsabi"

namespace tov {

constexpr int ShuffleLanes = 32;
using Vector = float __attribute__((vector_size(64)));
using IntVector = std::int32_t __attribute__((vector_size(64)));
constexpr int VectorLanes = 16;
constexpr int Vectors = ShuffleLanes / VectorLanes;

struct LaneValues {
  Vector Part[Vectors];
};

__attribute__((always_inline)) inline Vector Load(const float* from) {
  Vector v;
  std::memcpy(&v, from, sizeof v);
  return v;
}

// The same without a vector passing a call, for functions built for one
// instruction set, where a vector argument or result would change the
// calling convention.
__attribute__((always_inline)) inline void LoadInto(Vector& v, const float* from) { std::memcpy(&v, from, sizeof v); }
__attribute__((always_inline)) inline void AddLoaded(Vector& sum, const float* from) {
  Vector v;
  LoadInto(v, from);
  sum = sum + v;
}

// Adds y over the listed lines (offsets into yt) in order, lane by lane,
// from 0.0.
__attribute__((always_inline)) inline LaneValues SumOver(const std::int32_t* offset, const std::int32_t* end,
                                                         const float* yt) {
  LaneValues sum{};
  for (; offset != end; ++offset)
    for (int i = 0; i < Vectors; ++i) sum.Part[i] = sum.Part[i] + Load(yt + *offset + i * VectorLanes);
  return sum;
}

// Infinity in every lane: no bound, the test is made in full.
__attribute__((always_inline)) inline LaneValues Unbounded() {
  LaneValues all;
  for (int i = 0; i < Vectors; ++i) all.Part[i] = Vector{} + __builtin_inff();
  return all;
}

// An upper bound, lane by lane, of L_full - L_reduced, where the test sums
// in 32 bits over n lines, line by line, the log densities c - (y - m)^2 /
// (2v) / K (K = 2.3025851, c = -0.5 log10(6.283185 v)) of two models with
// variances vFull and vReduced, each the model's float sum of squares
// divided by n - 1.  In real arithmetic on the same means and variances
// the squared deviations of a model add up to (n - 1) v up to the rounding
// of its sum of squares, so L_full - L_reduced = n (c_full - c_reduced) =
// (n / 2) log10(vReduced / vFull), and -ln r <= (1 - r) / r bounds that by
// n / (2 ln 10) * (vReduced - vFull) / vFull.  The float sums differ from
// the real ones by at most about (n + 6) 2^-24 times the sum of the
// magnitudes of their terms, n |c| + n / (2K) for each model, plus the
// error of log10 in c and of the last subtraction; |c| is at most 0.5
// log10(2) (|e| + 1) for the binary exponent e of 6.283185 v, and e read
// off the float product may be one off.  The bound allows four times all
// that.  A variance outside 1e-30 .. 1e30, or NaN, gives infinity: the
// test must then be made in full.  n must be at least 3.
__attribute__((always_inline)) inline LaneValues LodBound(int n, const LaneValues& vFull, const LaneValues& vReduced) {
  const float lines = static_cast<float>(n);
  const float slack = (lines + 10.0f) * 4.0f * 0x1p-24f;
  const float fixed = slack * (2.0f * lines / 2.3025851f) + 1.0e-6f;
  const auto constantBound = [](const Vector& v) {
    const IntVector bits = std::bit_cast<IntVector>(6.283185f * v);
    const IntVector exponent = ((bits >> 23) & 0xff) - 126;
    const IntVector magnitude = exponent < 0 ? -exponent : exponent;
    return 0.150515f * __builtin_convertvector(magnitude + 2, Vector) + 0.5f;
  };
  const auto usable = [](const Vector& v) { return v > 1.0e-30f && v < 1.0e30f; };
  LaneValues bound;
  for (int i = 0; i < Vectors; ++i) {
    const Vector full = vFull.Part[i];
    const Vector reduced = vReduced.Part[i];
    const Vector estimate = (lines * 0.21714724f) * ((reduced - full) / full);
    const Vector size = estimate < 0.0f ? -estimate : estimate;
    const Vector error = slack * (lines * (constantBound(full) + constantBound(reduced)) + size) + fixed;
    const Vector value = estimate + size * 0x1p-16f + error * 1.001f;
    bound.Part[i] = usable(full) & usable(reduced) ? value : __builtin_inff();
  }
  return bound;
}

}  // namespace tov
