#pragma once
// The result record of a pair scan and the table of one record per
// unordered pair of kept markers, in the order (1, 2), (1, 3) ... (1, n),
// (2, 3) ... (n - 1, n).  The four cells of a pair are, by the codes of its
// first and second marker: 1 = ('A', 'A'), 2 = ('A', 'B'), 3 = ('B', 'A'),
// 4 = ('B', 'B').  A statistic that could not be formed stays NaN, and such
// a record is passed over by flagging and by the tables.

#include <cstdint>

#include "core/Array.h"
#include "mapping/MarkerTest.h"

namespace tov {

// The method codes of the pair tables: mapping (also used by the
// permutation test), and the two codes kept for the other callers.
constexpr int EpistaticMapping = 10931;
constexpr int EpistaticLastCode = 10933;

// 52 bytes: a table of 1,000 markers holds about half a million of them.
struct PairTest {
  std::int32_t Significant = LogicalFalse;  // set once by MarkSignificantPairs
  std::int32_t Marker1 = 0;                 // 1-based among the kept markers
  std::int32_t Marker2 = 0;                 // above Marker1
  FixedArray<float, 2> LOD;                 // (1) LODaa, (2) LODtotal; LODaa <= LODtotal
  FixedArray<float, 4> CellMean;            // means of the four cells
  FixedArray<float, 4> CellFreq;            // shares of the cells among the lines in one of them
};
static_assert(sizeof(PairTest) == 52, "a pair record stays compact");

struct PairTestTable {
  std::int32_t NumTests = 0;  // preset by the caller: n (n - 1) / 2
  Array<PairTest, 1> Test;    // [NumTests]
};

// n (n - 1) / 2 for n kept markers, the product formed in 32 bits.
std::int32_t NumPairs(std::int32_t n);

// Creates NumTests cleared records for a known method code; any other code
// leaves the table as it is.
void AllocPairTests(int methodCode, PairTestTable& table);
void FreePairTests(PairTestTable& table);

// True when the record holds a NaN in its LODs, means or shares.
bool HasNaN(const PairTest& test);

}  // namespace tov
