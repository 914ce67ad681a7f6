#pragma once
// Selections on the bits of a float, for loops that run several
// independent sums side by side.  A lane that must skip an element adds
// +0.0 instead: a running sum that starts at +0.0 never becomes -0.0 and is
// unchanged by +0.0, and a select (not a product) keeps a NaN or infinity
// of a skipped element out.  The sums are thus those of the plain skipping
// loop, bit for bit, and the selects vectorise where a branch would not.

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tov {

// All ones when keep holds, all zeros otherwise.
inline std::uint32_t MaskOf(bool keep) { return 0u - static_cast<std::uint32_t>(keep); }

// value where mask is all ones, +0.0 where it is zero.
inline float KeepMasked(std::uint32_t mask, float value) {
  return std::bit_cast<float>(std::bit_cast<std::uint32_t>(value) & mask);
}

inline float KeepIf(bool keep, float value) { return KeepMasked(MaskOf(keep), value); }

// a where first holds, b elsewhere.
inline float Choose(bool first, float a, float b) {
  const std::uint32_t mask = MaskOf(first);
  return std::bit_cast<float>((std::bit_cast<std::uint32_t>(a) & mask) | (std::bit_cast<std::uint32_t>(b) & ~mask));
}

// A value of a record that cannot be formed is NaN, and only that it is NaN
// means anything: which NaN the arithmetic leaves (its sign, its payload)
// depends on which operand of a + or a - the compiler puts first when both
// are NaN, and compilers choose differently in lanes and in scalar code.
// Records hold the one quiet NaN, so that lanes, the plain routines and
// every compiler agree bit for bit.
inline float OneNaN(float value) { return std::isnan(value) ? std::numeric_limits<float>::quiet_NaN() : value; }

}  // namespace tov
