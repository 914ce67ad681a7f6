#pragma once
// The one process-wide pseudo-random stream: a multiplicative congruential
// generator (16807, 2^31 - 1) that starts from the local time of day at its
// first draw.  The program never takes a seed from outside.

#include <cstdint>

namespace tov {

// One uniform in (0, 1); advances the stream by one state.
float UniformDraw();

// nr successive uniforms, the same as nr calls of UniformDraw.
void RNUN(int nr, float* r);

// nr standard normal deviates (Kinderman-Ramage).
void RNNOA(int nr, float* r);

// iper(1..k) becomes a random permutation of 1..k; k - 1 draws.
void RNPER(int k, int* iper);

// ipath 1: xpermu(i) = x(ipermu(i)); ipath 2: xpermu(ipermu(i)) = x(i).
void PERMU(int n, const float* x, const int* ipermu, int ipath, float* xpermu);

// The first state from a local time of day: hhmmss read as a number, plus
// 1; the fallback 123457 when that is 1 or less (only at 00:00:00).
std::int32_t SeedFromClock(int hour, int minute, int second);

// For tests only: start the stream from a given state, and read it back.
void StartStreamForTesting(std::int32_t seed);
std::int32_t StreamStateForTesting();

}  // namespace tov
