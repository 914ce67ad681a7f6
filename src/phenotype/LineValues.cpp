#include "phenotype/LineValues.h"

#include "numerics/basic/Basic.h"

namespace tov {

namespace {

// A copy of the values with the missing cells filled, and each line's
// count of valid cells.
struct FilledCells {
  Array<float, 2> Copy;             // [numLines, numCells]
  Array<std::int32_t, 1> MaskSum;   // [numLines]
  int Kept = 0;
};

// The rule on a matrix [numLines, numCells].  The valid cells of a line are
// summed in column order as value times a 0/1 mask: a missing code adds
// nothing, while a cell that is not a number turns the sum, and with it
// every filled cell of the line, into not a number.  This is intended.
FilledCells FillMissingCells(int numLines, int numCells, const ArrayView<const float, 2>& values) {
  FilledCells filled;
  filled.Copy.Allocate(numLines, numCells);
  filled.MaskSum.Allocate(numLines);
  Array<float, 1> mask(numCells);
  int empty = 0;
  for (int line = 1; line <= numLines; ++line) {
    int gaps = 0;
    for (int c = 1; c <= numCells; ++c) {
      filled.Copy(line, c) = values(line, c);
      mask(c) = 1.0f;
      if (IsMissingValue(values(line, c))) {
        mask(c) = 0.0f;
        ++gaps;
      }
    }
    filled.MaskSum(line) = numCells - gaps;
    if (gaps == numCells) {
      ++empty;
    } else if (gaps > 0) {
      float sum = 0.0f;
      for (int c = 1; c <= numCells; ++c) sum = sum + values(line, c) * mask(c);
      const float fill = sum / static_cast<float>(numCells - gaps);
      for (int c = 1; c <= numCells; ++c)
        if (mask(c) == 0.0f) filled.Copy(line, c) = fill;
    }
  }
  filled.Kept = numLines - empty;
  return filled;
}

// Lists the kept lines and copies their rows, in input order, into
// kept [filled.Kept, numCells].
void CollectKeptLines(const FilledCells& filled, int numLines, int numCells, Array<std::int32_t, 1>& keptLine,
                      const ArrayView<float, 2>& kept) {
  keptLine.Release();
  keptLine.Allocate(filled.Kept);
  int k = 0;
  for (int line = 1; line <= numLines; ++line) {
    if (filled.MaskSum(line) == 0) continue;
    ++k;
    keptLine(k) = line;
    for (int c = 1; c <= numCells; ++c) kept(k, c) = filled.Copy(line, c);
  }
}

}  // namespace

int LineValues(int numLines, int numReps, const ArrayView<const float, 2>& values,
               Array<std::int32_t, 1>& keptLine, Array<float, 2>& keptValues) {
  const FilledCells filled = FillMissingCells(numLines, numReps, values);
  keptValues.Allocate(filled.Kept, numReps);
  CollectKeptLines(filled, numLines, numReps, keptLine, ArrayView<float, 2>(keptValues.Data(), filled.Kept, numReps));
  return filled.Kept;
}

int LineValuesAcrossEnvs(int numLines, int numEnvs, int numReps, const ArrayView<const float, 3>& values,
                         Array<std::int32_t, 1>& keptLine, Array<float, 3>& keptValues) {
  // With the environment fastest within a line's cells, the cube read as
  // [lines, environments * replications] sums replications outer and
  // environments inner, the order the rule asks for.
  const int numCells = numEnvs * numReps;
  const FilledCells filled = FillMissingCells(numLines, numCells, ArrayView<const float, 2>(values.Data(), numLines, numCells));
  keptValues.Allocate(filled.Kept, numEnvs, numReps);
  CollectKeptLines(filled, numLines, numCells, keptLine, ArrayView<float, 2>(keptValues.Data(), filled.Kept, numCells));
  return filled.Kept;
}

}  // namespace tov
