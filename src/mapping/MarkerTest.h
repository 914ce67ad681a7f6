#pragma once
// The result record of a marker scan and the table of one record per kept
// marker.  A statistic that could not be formed stays NaN in its record,
// and such a record is passed over by flagging and by the tables.

#include <cstdint>

#include "core/Array.h"

namespace tov {

// Method codes of the marker tables: single marker in mapping, permutation
// and simulation; additive in mapping and permutation, and in simulation.
constexpr int SingleMarkerMapping = 10911;
constexpr int SingleMarkerPermutation = 10912;
constexpr int SingleMarkerSimulation = 10913;
constexpr int AdditiveMapping = 10921;
constexpr int AdditiveSimulation = 10923;

// The logical values of the flag.
constexpr std::int32_t LogicalTrue = -1;
constexpr std::int32_t LogicalFalse = 0;

struct MarkerTest {
  std::int32_t Significant = LogicalFalse;  // set once by MarkSignificant
  std::int32_t MarkerIndex = 0;             // 1-based among the kept markers
  FixedArray<float, 1> LOD;                 // never negative unless NaN
  FixedArray<float, 2> GroupMean;           // 'A' lines: M(QQ); 'B' lines: M(qq)
  FixedArray<float, 2> GroupFreq;           // shares of 'A' and 'B' among the typed lines
};

struct MarkerTestTable {
  std::int32_t NumTests = 0;   // preset by the caller, one per kept marker
  Array<MarkerTest, 1> Test;   // [NumTests]
};

// Creates NumTests cleared records for a known method code; any other code
// leaves the table as it is.
void AllocMarkerTests(int methodCode, MarkerTestTable& table);
void FreeMarkerTests(MarkerTestTable& table);

// True when the record holds a NaN in its LOD, means or shares: such a
// marker is never flagged and never written.
bool HasNaN(const MarkerTest& test);

}  // namespace tov
