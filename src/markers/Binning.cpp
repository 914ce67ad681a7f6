#include "markers/Binning.h"

#include "core/Log.h"
#include "text/Format.h"

namespace tov {

Array<char, 2> MarkerColumns(const Array<char, 2>& markerType) {
  const auto numMarkers = markerType.Extent(1);
  const auto populationSize = markerType.Extent(2);
  Array<char, 2> columns(populationSize, numMarkers);
  for (std::int64_t line = 1; line <= populationSize; ++line)
    for (std::int64_t marker = 1; marker <= numMarkers; ++marker) columns(line, marker) = markerType(marker, line);
  return columns;
}

bool SameGenotypes(int populationSize, GenotypeColumn first, GenotypeColumn second) {
  for (int line = 0; line < populationSize; ++line) {
    const char a = first[line];
    const char b = second[line];
    if (a != b && a != 'X' && b != 'X') return false;
  }
  return true;
}

namespace {

void FormBins(int numMarkers, int populationSize, const Array<char, 2>& columns, Array<std::int32_t, 1>& binID) {
  auto column = [&](int marker) { return &columns(1, marker); };
  std::int32_t currentBin = 1;
  for (int i = 1; i <= numMarkers - 1; ++i) {
    if (binID(i) != 0) continue;
    bool partnerFound = false;
    for (int j = i + 1; j <= numMarkers; ++j) {
      if (binID(j) == 0 && SameGenotypes(populationSize, column(j), column(i))) {
        binID(j) = currentBin;
        partnerFound = true;
      }
    }
    if (!partnerFound) continue;
    // One pass of extension: members added above j are visited later in
    // this pass, members added at or below it are not.  The k loop starts
    // at 1, so a marker below i that found no partner can still join.
    binID(i) = currentBin;
    for (int j = i + 1; j <= numMarkers; ++j) {
      if (binID(j) != currentBin) continue;
      for (int k = 1; k <= numMarkers; ++k)
        if (binID(k) == 0 && SameGenotypes(populationSize, column(k), column(j))) binID(k) = currentBin;
    }
    ++currentBin;
  }
}

}  // namespace

MarkerBins BinMarkers(int numMarkers, int populationSize, const Array<char, 2>& columns) {
  MarkerBins bins;
  bins.MissingPercent.Allocate(numMarkers);
  bins.BinID.Allocate(numMarkers);
  bins.Deleted.Allocate(numMarkers);
  for (int marker = 1; marker <= numMarkers; ++marker) {
    int missing = 0;
    for (int line = 1; line <= populationSize; ++line) missing += columns(line, marker) == 'X';
    bins.MissingPercent(marker) = 100.0f * static_cast<float>(missing) / static_cast<float>(populationSize);
  }
  FormBins(numMarkers, populationSize, columns, bins.BinID);
  PickLeastMissing(numMarkers, bins.MissingPercent, bins.BinID, bins.Deleted);
  return bins;
}

void PickLeastMissing(int numMarkers, const Array<float, 1>& missingPercent, const Array<std::int32_t, 1>& binID,
                      Array<std::int32_t, 1>& deleted) {
  deleted.Fill(0);
  std::int32_t maxBin = 0;
  for (int marker = 1; marker <= numMarkers; ++marker) {
    if (binID(marker) < 0) deleted(marker) = 1;
    if (binID(marker) > maxBin) maxBin = binID(marker);
  }
  // Members are met in ascending MarkerID, so only a strictly smaller
  // missing rate replaces the representative: ties go to the lower ID.
  Array<std::int32_t, 1> representative(maxBin);
  for (int marker = 1; marker <= numMarkers; ++marker) {
    const std::int32_t bin = binID(marker);
    if (bin < 1) continue;
    if (representative(bin) == 0 || missingPercent(marker) < missingPercent(representative(bin)))
      representative(bin) = marker;
  }
  for (int marker = 1; marker <= numMarkers; ++marker)
    if (binID(marker) > 0 && representative(binID(marker)) != marker) deleted(marker) = 1;
}

Array<std::int32_t, 1> CopyKeptMarkers(int numMarkers, const Array<std::int32_t, 1>& deleted) {
  int numKept = 0;
  for (int marker = 1; marker <= numMarkers; ++marker) numKept += deleted(marker) != 1;
  Array<std::int32_t, 1> kept(numKept);
  int position = 0;
  for (int marker = 1; marker <= numMarkers; ++marker)
    if (deleted(marker) != 1) kept(++position) = marker;
  return kept;
}

void WriteBinsTable(const Array<std::string, 1>& markerName, const MarkerBins& bins) {
  TextOutput& log = LogFile();
  log.WriteLine("Step 1: Binning of markers");
  log.WriteLine(Row()
                    .Text("MarkerID", 12)
                    .Blank()
                    .Text("MarkerName", 35)
                    .Text("Missing(%)", 12)
                    .Text("BinID", 12)
                    .Text("Deleted", 12)
                    .Str());
  for (int marker = 1; marker <= static_cast<int>(bins.BinID.Size()); ++marker)
    log.WriteLine(Row()
                      .Integer(marker, 12)
                      .Blank()
                      .Text(markerName(marker), 35)
                      .Fixed(bins.MissingPercent(marker), 12, 4)
                      .Integer(bins.BinID(marker), 12)
                      .Integer(bins.Deleted(marker), 12)
                      .Str());
}

}  // namespace tov
