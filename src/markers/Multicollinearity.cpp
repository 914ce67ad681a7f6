#include "markers/Multicollinearity.h"

#include <limits>

#include "markers/Binning.h"
#include "numerics/basic/Basic.h"
#include "numerics/matrix/CorrelationMatrix.h"
#include "numerics/basic/ErrorPolicy.h"
#include "numerics/matrix/PrincipalComponents.h"
#include "core/Log.h"
#include "text/Format.h"

namespace tov {

Array<float, 2> GenotypeValues(const Array<char, 2>& columns) {
  Array<float, 2> values(columns.Extent(1), columns.Extent(2));
  for (std::size_t i = 0; i < columns.Size(); ++i)
    values.Data()[i] = static_cast<float>(static_cast<unsigned char>(columns.Data()[i]));
  return values;
}

Array<float, 2> GenotypeCorrelations(const Array<float, 2>& values, const Array<std::int32_t, 1>& ids, int count) {
  const auto populationSize = values.Extent(1);
  Array<float, 2> listed(populationSize, count);
  for (int k = 1; k <= count; ++k)
    for (std::int64_t line = 1; line <= populationSize; ++line) listed(line, k) = values(line, ids(k));
  return CorrelationMatrixOfValid(listed);
}

Array<float, 2> BuildCorrelationMatrix(const Array<float, 2>& values, const Array<std::int32_t, 1>& keptMarker) {
  const int numKept = static_cast<int>(keptMarker.Size());
  Array<float, 2> correlation = GenotypeCorrelations(values, keptMarker, numKept);
  for (int i = 1; i <= numKept; ++i) correlation(i, i) = 1.0f;
  return correlation;
}

void ComputeConditionIndex(int populationSize, const Array<float, 2>& correlation, float& conditionIndex) {
  ERSET(0, 1, 0);
  ClearLastError();
  const int numVars = static_cast<int>(correlation.Extent(1));
  Array<float, 1> eigenvalues(numVars);
  PRINC(populationSize, numVars, correlation.Data(), true, eigenvalues.Data());
  if (N1RTY(1) >= 1) return;
  const float largest = eigenvalues(1);
  const float smallest = eigenvalues(numVars);
  conditionIndex = smallest < 100.0f * AMACH(1) ? std::numeric_limits<float>::infinity() : largest / smallest;
}

namespace {

int DonorLines(const Array<char, 2>& columns, int marker) {
  int count = 0;
  for (std::int64_t line = 1; line <= columns.Extent(1); ++line) count += columns(line, marker) == 'A';
  return count;
}

// The matrix less row and column k: the correlations of the other pairs
// are those a rebuild would compute.
Array<float, 2> WithoutMarker(const Array<float, 2>& correlation, int k) {
  const int n = static_cast<int>(correlation.Extent(1));
  Array<float, 2> smaller(n - 1, n - 1);
  for (int j = 1, jj = 1; j <= n; ++j) {
    if (j == k) continue;
    for (int i = 1, ii = 1; i <= n; ++i) {
      if (i == k) continue;
      smaller(ii++, jj) = correlation(i, j);
    }
    ++jj;
  }
  return smaller;
}

Row StepColumns(int step, float conditionIndex) {
  Row row;
  row.Integer(step, 12).Fixed(conditionIndex, 12, 0);
  return row;
}

}  // namespace

Array<std::int32_t, 1> HandleMulticollinearity(float conditionNumber, const Array<std::string, 1>& markerName,
                                               const Array<char, 2>& columns, Array<std::int32_t, 1>& deleted) {
  const int numMarkers = static_cast<int>(deleted.Size());
  const int populationSize = static_cast<int>(columns.Extent(1));
  TextOutput& log = LogFile();
  log.WriteLine("Step 2: Handling multicollinearity");
  log.WriteLine(Row()
                    .Text("Step", 12)
                    .Text("CN", 12)
                    .Blank()
                    .Text("MarkerName", 35)
                    .Text("NumLines", 12)
                    .Blank()
                    .Text("MarkerName", 35)
                    .Text("NumLines", 12)
                    .Text("Coefficient", 12)
                    .Text("Deleted", 20)
                    .Str());

  const Array<float, 2> values = GenotypeValues(columns);
  Array<std::int32_t, 1> kept = CopyKeptMarkers(numMarkers, deleted);
  Array<float, 2> correlation = BuildCorrelationMatrix(values, kept);
  // Until a first index exists the loop must try a removal.
  float conditionIndex = std::numeric_limits<float>::infinity();
  ComputeConditionIndex(populationSize, correlation, conditionIndex);

  while (conditionIndex > conditionNumber && kept.Size() >= 2) {
    const int numKept = static_cast<int>(kept.Size());
    // The search starts from pair (1, 2) whatever its sign; only a
    // strictly larger signed value (never a NaN) takes over.
    float best = correlation(1, 2);
    int bestI = 1, bestJ = 2;
    for (int i = 1; i <= numKept - 1; ++i)
      for (int j = i + 1; j <= numKept; ++j)
        if (correlation(i, j) > best) {
          best = correlation(i, j);
          bestI = i;
          bestJ = j;
        }
    const int first = kept(bestI);
    const int second = kept(bestJ);
    const int donorsFirst = DonorLines(columns, first);
    const int donorsSecond = DonorLines(columns, second);
    const bool removeFirst = donorsFirst > donorsSecond;
    const int victim = removeFirst ? first : second;
    deleted(victim) = 1;
    log.WriteLine(StepColumns(numMarkers - numKept + 1, conditionIndex)
                      .Blank()
                      .Text(markerName(first), 35)
                      .Integer(donorsFirst, 12)
                      .Blank()
                      .Text(markerName(second), 35)
                      .Integer(donorsSecond, 12)
                      .Fixed(best, 12, 4)
                      .Blank()
                      .Text(markerName(victim), 35)
                      .Str());
    kept = CopyKeptMarkers(numMarkers, deleted);
    correlation = WithoutMarker(correlation, removeFirst ? bestI : bestJ);
    ComputeConditionIndex(populationSize, correlation, conditionIndex);
  }
  log.WriteLine(StepColumns(numMarkers - static_cast<int>(kept.Size()), conditionIndex).Str());
  log.WriteLine("");
  return kept;
}

}  // namespace tov
