#include "mapping/PairKernel.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "mapping/FourGroupTest.h"
#include "mapping/LogDensity.h"
#include "mapping/MarkerCode.h"
#include "text/Fatal.h"

// The lane helpers below are always inlined into the variant that uses
// them, so no vector ever crosses a call: the ABI note does not apply.
#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wpsabi"
#endif

namespace tov {

namespace {

#define TOV_LANES_INLINE __attribute__((always_inline)) inline

// The lines that take part in some pair of one first marker, those where
// its code is 'A' or 'B', in line order: where the codes of the line start,
// whether the first marker has 'B', and the line's value.  The same lines
// once more by the first marker's code, 'A' then 'B': the cells 1 and 2 sum
// over the first side alone, 3 and 4 over the second, each in line order.
struct RowSide {
  std::vector<std::ptrdiff_t> Offset;
  std::vector<float> Value;
};

struct RowLines {
  std::vector<std::ptrdiff_t> Offset;
  std::vector<std::int32_t> FirstIsB;
  std::vector<float> Value;
  RowSide Side[2];
};

RowLines RowLinesOf(const PairCodes& codes, int first, const float* y) {
  RowLines row;
  const auto stride = static_cast<std::ptrdiff_t>(codes.Code.Extent(1));
  for (int l = 1; l <= codes.NumLines; ++l) {
    const std::int32_t code = codes.Code(first, l);
    if (code == 0) continue;
    row.Offset.push_back((l - 1) * stride);
    row.FirstIsB.push_back(code < 0);
    row.Value.push_back(y[l - 1]);
    row.Side[code < 0].Offset.push_back((l - 1) * stride);
    row.Side[code < 0].Value.push_back(y[l - 1]);
  }
  return row;
}

// W lanes of floats and of int32 (codes, and masks of all ones or zeros).
// A vector of 16, 8 or 4 lanes is one AVX-512, AVX2 or SSE register.
template <int W>
struct Lanes {
  typedef float F __attribute__((vector_size(4 * W)));
  typedef std::int32_t I __attribute__((vector_size(4 * W)));
};

// x in every lane.  The scalar operand of a vector operation is spread over
// the lanes; or-ing into zeros leaves its bits as they are.
template <class V, class T>
TOV_LANES_INLINE V Splat(T x) {
  typedef std::int32_t I __attribute__((vector_size(sizeof(V))));
  return (V)(I{} | std::bit_cast<std::int32_t>(x));
}

// sum + value where mask is all ones, sum elsewhere: the sum of the plain
// loop that skips the element, as adding +0.0 would give; a select keeps a
// NaN of a skipped element out, and AVX-512 makes it one masked add.
template <class F, class I>
TOV_LANES_INLINE F AddIf(I mask, F sum, F value) {
  return mask ? sum + value : sum;
}

template <class F, class I>
TOV_LANES_INLINE F Pick(I mask, F a, F b) {
  return (F)(((I)a & mask) | ((I)b & ~mask));
}

template <class F>
TOV_LANES_INLINE F ZeroIfNaN(const F& x) {
  return x == x ? x : F{};
}

// The masks of 'A' and 'B' in W codes of one line.  They come from the bits
// of the codes (+1, -1, 0) rather than from comparisons, which some
// compilers would take apart lane by lane for the widest registers.
template <int W>
struct CodeMasks {
  typename Lanes<W>::I A, B;
};

template <int W>
TOV_LANES_INLINE CodeMasks<W> CodesAt(const std::int32_t* place) {
  using I = typename Lanes<W>::I;
  I code;
  std::memcpy(&code, place, sizeof code);
  const I b = code >> 31;       // all ones where the code is -1
  const I typed = -(code & 1);  // all ones where it is +1 or -1
  return {typed & ~b, b};
}

// The lane's value of a line: y, or where the lane's second marker is
// selected, y plus its slope times its code.
template <bool WithTerms, class F, class I>
TOV_LANES_INLINE F ValueOf(F y, I a, I b, F slope, I selected) {
  if constexpr (WithTerms) {
    const F code = Pick<F>(a, Splat<F>(1.0f), Pick<F>(b, Splat<F>(-1.0f), Splat<F>(0.0f)));
    return Pick<F>(selected, y + slope * code, y);
  } else {
    return y;
  }
}

// What the passes over the lines after the first need of a block: each
// lane's mean over all cells, its cell means and additive cell values by
// [first is 'B'][second is 'B'], and the term of its second marker.
template <int W>
struct BlockFit {
  static constexpr int V = PairBlockWidth / W;
  typename Lanes<W>::F MeanAll[V], CellMean[2][2][V], Additive[2][2][V], Slope[V] = {};
  typename Lanes<W>::I Selected[V] = {};
};

// The deviations of a line's value from the three models in the lanes of
// vector v, and the mask of the lanes where the line takes part.
template <int W, bool WithTerms>
TOV_LANES_INLINE typename Lanes<W>::I Deviations(const BlockFit<W>& fit, const std::int32_t* line,
                                                 typename Lanes<W>::F y, int firstB, int v,
                                                 typename Lanes<W>::F (&d)[3]) {
  using F = typename Lanes<W>::F;
  const CodeMasks<W> code = CodesAt<W>(line + v * W);
  const F value = ValueOf<WithTerms>(y, code.A, code.B, fit.Slope[v], fit.Selected[v]);
  d[0] = value - fit.MeanAll[v];
  d[1] = value - Pick<F>(code.B, fit.CellMean[firstB][1][v], fit.CellMean[firstB][0][v]);
  d[2] = value - Pick<F>(code.B, fit.Additive[firstB][1][v], fit.Additive[firstB][0][v]);
  return code.A | code.B;
}

// The squared deviations of one line from the three models in the lanes of
// one vector, and the mask of the lanes where the line takes part.
template <int W>
struct Kept {
  typename Lanes<W>::F Square[3];
  typename Lanes<W>::I Typed;
};

// The pairs (first, second + lane) for lanes 0 .. valid - 1; lanes past
// them read the padding and are dropped.  With terms, a lane whose second
// marker is selected has its slope times its code added to y, line by line.
template <int W, bool WithTerms>
TOV_LANES_INLINE void Block(const PairCodes& codes, const RowLines& row, int first, int second, int valid,
                            const SecondMarkerTerms* terms, Kept<W>* keep, PairTest* records) {
  using F = typename Lanes<W>::F;
  using I = typename Lanes<W>::I;
  constexpr int V = PairBlockWidth / W;
  const int numLines = static_cast<int>(row.Value.size());
  const std::int32_t* base = &codes.Code(second, 1);

  BlockFit<W> fit;
  if constexpr (WithTerms) {
    for (int v = 0; v < V; ++v)
      for (int k = 0; k < W; ++k) {
        const int lane = v * W + k;
        if (lane >= valid) continue;
        fit.Slope[v][k] = terms->Slope(second + lane);
        fit.Selected[v][k] = terms->Selected(second + lane) != 0 ? -1 : 0;
      }
  }
  // The sum over all four cells, then the counts and sums of the cells,
  // those of the first marker's 'A' lines and then of its 'B' lines.
  F sumAll[V] = {};
  for (int l = 0; l < numLines; ++l) {
    const std::int32_t* line = base + row.Offset[l];
    const F y = Splat<F>(row.Value[l]);
    for (int v = 0; v < V; ++v) {
      const CodeMasks<W> code = CodesAt<W>(line + v * W);
      const F value = ValueOf<WithTerms>(y, code.A, code.B, fit.Slope[v], fit.Selected[v]);
      sumAll[v] = AddIf(code.A | code.B, sumAll[v], value);
    }
  }
  I count[4][V] = {};
  F sum[4][V] = {};
  for (int side = 0; side < 2; ++side) {
    const RowSide& lines = row.Side[side];
    const int numSide = static_cast<int>(lines.Value.size());
    I* countA = count[2 * side];
    I* countB = count[2 * side + 1];
    F* sumA = sum[2 * side];
    F* sumB = sum[2 * side + 1];
    for (int l = 0; l < numSide; ++l) {
      const std::int32_t* line = base + lines.Offset[l];
      const F y = Splat<F>(lines.Value[l]);
      for (int v = 0; v < V; ++v) {
        const CodeMasks<W> code = CodesAt<W>(line + v * W);
        const F value = ValueOf<WithTerms>(y, code.A, code.B, fit.Slope[v], fit.Selected[v]);
        countA[v] = countA[v] - code.A;
        countB[v] = countB[v] - code.B;
        sumA[v] = AddIf(code.A, sumA[v], value);
        sumB[v] = AddIf(code.B, sumB[v], value);
      }
    }
  }

  // Means, shares and the additive cell values.
  F cellFreq[4][V];
  I total[V];
  for (int v = 0; v < V; ++v) {
    total[v] = count[0][v] + count[1][v] + count[2][v] + count[3][v];
    const F totalReal = __builtin_convertvector(total[v], F);
    fit.MeanAll[v] = sumAll[v] / totalReal;
    F m[4];
    for (int k = 0; k < 4; ++k) {
      const F countReal = __builtin_convertvector(count[k][v], F);
      m[k] = sum[k][v] / countReal;
      cellFreq[k][v] = countReal / totalReal;
      fit.CellMean[k / 2][k % 2][v] = m[k];
    }
    const F plus = Splat<F>(0.25f);
    const F minus = Splat<F>(-0.25f);
    const F zero = Splat<F>(0.0f);
    const F mean = ZeroIfNaN((((zero + plus * m[0]) + plus * m[1]) + plus * m[2]) + plus * m[3]);
    const F add1 = ZeroIfNaN((((zero + plus * m[0]) + plus * m[1]) + minus * m[2]) + minus * m[3]);
    const F add2 = ZeroIfNaN((((zero + plus * m[0]) + minus * m[1]) + plus * m[2]) + minus * m[3]);
    fit.Additive[0][0][v] = mean + add1 + add2;
    fit.Additive[0][1][v] = mean + add1 - add2;
    fit.Additive[1][0][v] = mean - add1 + add2;
    fit.Additive[1][1][v] = mean - add1 - add2;
  }

  // The three sums of squares side by side.  Each squared deviation and
  // the mask of the lanes are kept for the pass of the log densities, which
  // would form the same values again.
  F squares[3][V] = {};
  for (int l = 0; l < numLines; ++l) {
    const std::int32_t* line = base + row.Offset[l];
    const F y = Splat<F>(row.Value[l]);
    const int firstB = row.FirstIsB[l];
    for (int v = 0; v < V; ++v) {
      F d[3];
      const I typed = Deviations<W, WithTerms>(fit, line, y, firstB, v, d);
      Kept<W>* kept = keep + (l * V + v);
      kept->Typed = typed;
      for (int s = 0; s < 3; ++s) {
        kept->Square[s] = d[s] * d[s];
        squares[s][v] = AddIf(typed, squares[s][v], kept->Square[s]);
      }
    }
  }

  // All three variances divide by N - 1; the constant part of each log
  // density is formed once per pair.
  F constant[3][V], twoV[3][V];
  for (int v = 0; v < V; ++v) {
    const F divisor = __builtin_convertvector(total[v] - Splat<I>(1), F);
    for (int s = 0; s < 3; ++s) {
      const F variance = squares[s][v] / divisor;
      twoV[s][v] = Splat<F>(2.0f) * variance;
      for (int k = 0; k < W; ++k) constant[s][v][k] = LogDensityConstant(variance[k]);
    }
  }

  F logL[3][V] = {};
  const F ln10 = Splat<F>(2.3025851f);
  for (int l = 0; l < numLines; ++l)
    for (int v = 0; v < V; ++v) {
      const Kept<W>& kept = keep[l * V + v];
      for (int s = 0; s < 3; ++s)
        logL[s][v] = AddIf(kept.Typed, logL[s][v], constant[s][v] - kept.Square[s] / twoV[s][v] / ln10);
    }

  for (int lane = 0; lane < valid; ++lane) {
    const int v = lane / W;
    const int k = lane % W;
    PairTest& record = records[lane];
    record.Marker1 = first;
    record.Marker2 = second + lane;
    PairLods(logL[0][v][k], logL[1][v][k], logL[2][v][k], record.LOD);
    for (int c = 0; c < 4; ++c) {
      record.CellMean(c + 1) = fit.CellMean[c / 2][c % 2][v][k];
      record.CellFreq(c + 1) = cellFreq[c][v][k];
    }
  }
}

template <int W>
TOV_LANES_INLINE void RowInLanes(const PairCodes& codes, int first, int secondFrom, int secondTo, const float* y,
                                 const SecondMarkerTerms* terms, PairTest* records) {
  if (secondFrom > secondTo) return;
  const RowLines row = RowLinesOf(codes, first, y);
  // Scratch of the blocks, one entry per line and vector of lanes, aligned
  // for the vector registers (the standard allocator need not be).
  const std::size_t keepBytes = (row.Value.size() * (PairBlockWidth / W) * sizeof(Kept<W>) + 63) / 64 * 64;
  const std::unique_ptr<void, decltype(&std::free)> keepStorage(std::aligned_alloc(64, keepBytes + 64), &std::free);
  if (keepStorage == nullptr) FatalRuntimeFailure("insufficient memory for the pair tests of a row");
  auto* keep = static_cast<Kept<W>*>(keepStorage.get());
  for (int second = secondFrom; second <= secondTo; second += PairBlockWidth) {
    const int valid = std::min(PairBlockWidth, secondTo - second + 1);
    bool withTerms = false;
    for (int lane = 0; terms != nullptr && lane < valid; ++lane)
      withTerms = withTerms || terms->Selected(second + lane) != 0;
    PairTest* out = records + (second - secondFrom);
    if (withTerms)
      Block<W, true>(codes, row, first, second, valid, terms, keep, out);
    else
      Block<W, false>(codes, row, first, second, valid, terms, keep, out);
  }
}

__attribute__((target("avx512f,avx512vl,avx512bw,avx512dq"))) void RowAvx512(
    const PairCodes& codes, int first, int secondFrom, int secondTo, const float* y, const SecondMarkerTerms* terms,
    PairTest* records) {
  RowInLanes<16>(codes, first, secondFrom, secondTo, y, terms, records);
}

__attribute__((target("avx2"))) void RowAvx2(const PairCodes& codes, int first, int secondFrom, int secondTo,
                                             const float* y, const SecondMarkerTerms* terms, PairTest* records) {
  RowInLanes<8>(codes, first, secondFrom, secondTo, y, terms, records);
}

void RowBaseline(const PairCodes& codes, int first, int secondFrom, int secondTo, const float* y,
                 const SecondMarkerTerms* terms, PairTest* records) {
  RowInLanes<4>(codes, first, secondFrom, secondTo, y, terms, records);
}

bool Supports(PairKernelIsa isa) {
  switch (isa) {
    case PairKernelIsa::Avx512:
      return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
             __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq");
    case PairKernelIsa::Avx2:
      return __builtin_cpu_supports("avx2");
    case PairKernelIsa::Baseline:
      return true;
  }
  return false;
}

}  // namespace

PairCodes PairCodesOf(int numMarkers, int numLines, const Array<char, 2>& scanGenotype) {
  PairCodes codes;
  codes.NumMarkers = numMarkers;
  codes.NumLines = numLines;
  // Rounded up to whole blocks, so that each line starts a block boundary.
  const int stride = (numMarkers + 2 * PairBlockWidth - 1) / PairBlockWidth * PairBlockWidth;
  codes.Code.Allocate(stride, numLines);
  for (int l = 1; l <= numLines; ++l)
    for (int m = 1; m <= numMarkers; ++m) codes.Code(m, l) = MarkerCode(scanGenotype(m, l));
  return codes;
}

std::vector<PairKernelIsa> SupportedPairKernels() {
  std::vector<PairKernelIsa> supported;
  for (PairKernelIsa isa : {PairKernelIsa::Baseline, PairKernelIsa::Avx2, PairKernelIsa::Avx512})
    if (Supports(isa)) supported.push_back(isa);
  return supported;
}

PairKernelIsa BestPairKernel() {
  static const PairKernelIsa best = SupportedPairKernels().back();
  return best;
}

void FourGroupRowWith(PairKernelIsa isa, const PairCodes& codes, int first, int secondFrom, int secondTo,
                      const float* y, const SecondMarkerTerms* terms, PairTest* records) {
  switch (isa) {
    case PairKernelIsa::Avx512:
      RowAvx512(codes, first, secondFrom, secondTo, y, terms, records);
      return;
    case PairKernelIsa::Avx2:
      RowAvx2(codes, first, secondFrom, secondTo, y, terms, records);
      return;
    case PairKernelIsa::Baseline:
      RowBaseline(codes, first, secondFrom, secondTo, y, terms, records);
      return;
  }
}

void FourGroupRow(const PairCodes& codes, int first, int secondFrom, int secondTo, const float* y,
                  const SecondMarkerTerms* terms, PairTest* records) {
  FourGroupRowWith(BestPairKernel(), codes, first, secondFrom, secondTo, y, terms, records);
}

}  // namespace tov
