#pragma once
// Reproducible data of the benchmarks, independent of the run's own
// random stream: a linear congruential stream of 24-bit draws, and marker
// codes over lines with one in twenty missing.

#include <cstdint>

#include "core/Array.h"

namespace tov {

class BenchStream {
 public:
  explicit BenchStream(std::uint32_t seed) : state_(seed) {}
  // The next draw, the top 24 bits of the state.
  std::uint32_t operator()() {
    state_ = state_ * 1664525u + 1013904223u;
    return state_ >> 8;
  }

 private:
  std::uint32_t state_;
};

// Codes 'A', 'B' and, for one draw in twenty, 'X', line by line.
inline void FillRandomCodes(BenchStream& next, Array<char, 2>& genotype) {
  for (std::int64_t l = 1; l <= genotype.Extent(2); ++l)
    for (std::int64_t m = 1; m <= genotype.Extent(1); ++m) {
      const std::uint32_t r = next() % 20u;
      genotype(m, l) = r == 0u ? 'X' : (r % 2u == 0u ? 'A' : 'B');
    }
}

}  // namespace tov
