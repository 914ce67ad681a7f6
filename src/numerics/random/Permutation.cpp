#include <utility>
#include <vector>

#include "numerics/basic/ErrorPolicy.h"
#include "numerics/random/Random.h"

namespace tov {

// Shuffle from the top: position i swaps with a uniform position j in
// 1..i.  j is formed in float arithmetic, product and sum each rounded, and
// is not clamped: for the largest uniform, 1 - 2^-24, and i a power of two
// the sum rounds up to i + 1, and that swap with the next position stands.
// Only at i = K, where i + 1 lies past the array, no swap can be made and
// the position keeps its value.  One draw per position from K down to 2.
void RNPER(int k, int* iper) {
  if (k < 1) {
    RaiseError(SeverityTerminal, "RNPER", FillMessage("K = %(I1).  K must be greater than or equal to 1.", {k}));
    return;
  }
  for (int i = 1; i <= k; ++i) iper[i - 1] = i;
  for (int i = k; i >= 2; --i) {
    const float u = UniformDraw();
    const float scaled = u * static_cast<float>(i);
    const int j = static_cast<int>(scaled + 1.0f);
    if (j <= k) std::swap(iper[i - 1], iper[j - 1]);
  }
}

// Applies the permutation in place on the copy by following its cycles; a
// negative entry of the work array marks a position not yet visited.
// Path 1 swaps each position with the next one on its cycle, path 2 swaps
// the cycle's first position with each of the others in turn.
void PERMU(int n, const float* x, const int* ipermu, int ipath, float* xpermu) {
  if (n < 1) {
    RaiseError(SeverityTerminal, "PERMU",
               FillMessage("The length of the arrays X and XPERMU must be positive while N = %(I1) is given.", {n}));
    return;
  }
  if (ipath != 1 && ipath != 2) {
    RaiseError(SeverityTerminal, "PERMU",
               FillMessage("IPATH must be equal to 1 or 2 while a value of %(I1) is given.", {ipath}));
    return;
  }
  for (int i = 1; i <= n; ++i) {
    if (ipermu[i - 1] < 1 || ipermu[i - 1] > n) {
      RaiseError(SeverityTerminal, "PERMU",
                 FillMessage("IPERMU(%(I1)) = %(I3) is not allowed.  It must be between 1 and N = %(I2).",
                             {i, n, ipermu[i - 1]}));
      return;
    }
  }
  std::vector<int> work(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) {
    xpermu[i] = x[i];
    work[i] = -ipermu[i];
  }
  // Indices below are 1-based.
  const auto target = [&work](int i) -> int& { return work[static_cast<std::size_t>(i - 1)]; };
  for (int start = 1; start <= n; ++start) {
    if (target(start) > 0) continue;
    target(start) = -target(start);
    int current = start;
    int next = target(start);
    while (target(next) < 0) {
      const int swapWith = ipath == 1 ? current : start;
      std::swap(xpermu[swapWith - 1], xpermu[next - 1]);
      target(next) = -target(next);
      current = next;
      next = target(next);
    }
  }
}

}  // namespace tov
