#include "markers/Binning.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <queue>
#include <vector>

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

// The genotypes of every marker as two bit planes over the lines, one for
// 'A' and one for 'B' ('X' sets neither): two markers disagree exactly when
// one has 'A' and the other 'B' on a line, which a few word operations
// tell for 64 lines at once.  The genotype reader leaves no other code.
class PackedMarkers {
 public:
  PackedMarkers(int numMarkers, int populationSize, const Array<char, 2>& columns)
      : words_((static_cast<std::size_t>(populationSize) + 63) / 64),
        a_(words_ * (static_cast<std::size_t>(numMarkers) + 1)),
        b_(a_.size()) {
    for (int marker = 1; marker <= numMarkers; ++marker)
      for (int line = 1; line <= populationSize; ++line) {
        const std::size_t word = Offset(marker) + static_cast<std::size_t>(line - 1) / 64;
        const std::uint64_t bit = std::uint64_t{1} << ((line - 1) % 64);
        if (columns(line, marker) == 'A') a_[word] |= bit;
        if (columns(line, marker) == 'B') b_[word] |= bit;
      }
  }

  // SameGenotypes of the two markers.
  bool Same(int first, int second) const {
    const std::uint64_t* a1 = &a_[Offset(first)];
    const std::uint64_t* b1 = &b_[Offset(first)];
    const std::uint64_t* a2 = &a_[Offset(second)];
    const std::uint64_t* b2 = &b_[Offset(second)];
    for (std::size_t w = 0; w < words_; ++w)
      if (((a1[w] & b2[w]) | (b1[w] & a2[w])) != 0) return false;
    return true;
  }

 private:
  std::size_t Offset(int marker) const { return static_cast<std::size_t>(marker) * words_; }

  std::size_t words_;
  std::vector<std::uint64_t> a_, b_;
};

// The markers still in no bin, filed by their genotypes on a few key lines
// (those with the fewest 'X'), so that a search for the markers that match
// a given one looks only into the compartments that can hold a match: on a
// key line where the marker has 'A', those with 'A' or 'X' there; with 'B',
// 'B' or 'X'; with 'X', all three.  Which markers match does not depend on
// the order in which they are found, so the bins are those of comparing
// every pair.
class UnbinnedIndex {
 public:
  UnbinnedIndex(int numMarkers, int populationSize, const Array<char, 2>& columns) : columns_(columns) {
    // About as many compartments met per search as markers in each.
    int keys = 0;
    while (keys < populationSize && keys < 16 && (std::int64_t{1} << (2 * keys)) < numMarkers) ++keys;
    // The key lines come from the first lines only, which bounds the work
    // of choosing them.
    const int candidates = std::min(populationSize, 1024);
    std::vector<int> missing(static_cast<std::size_t>(candidates) + 1, 0);
    for (int marker = 1; marker <= numMarkers; ++marker)
      for (int line = 1; line <= candidates; ++line) missing[line] += columns(line, marker) == 'X';
    std::vector<int> lines(static_cast<std::size_t>(candidates));
    for (int line = 1; line <= candidates; ++line) lines[line - 1] = line;
    std::stable_sort(lines.begin(), lines.end(), [&](int p, int q) { return missing[p] < missing[q]; });
    keyLines_.assign(lines.begin(), lines.begin() + keys);
    std::size_t compartments = 1;
    for (int k = 0; k < keys; ++k) compartments *= 3;
    compartments_.resize(compartments);
    for (int marker = 1; marker <= numMarkers; ++marker) compartments_[KeyOf(marker)].push_back(marker);
  }

  // Calls found(m) for every marker m above `above` whose BinID is 0 and
  // for which same(m) holds.  Binned markers leave the index as they are
  // met.
  template <class Same, class Found>
  void Search(int marker, int above, const Array<std::int32_t, 1>& binID, Same same, Found found) {
    auto search = [&](std::vector<int>& members) {
      std::size_t kept = 0;
      for (const int m : members) {
        if (binID(m) != 0) continue;
        members[kept++] = m;
      }
      members.resize(kept);
      for (auto it = std::upper_bound(members.begin(), members.end(), above); it != members.end(); ++it) {
        // found may bin *it; it stays in the list until the next visit.
        if (binID(*it) == 0 && same(*it)) found(*it);
      }
    };
    Visit(marker, 0, 0, search);
  }

 private:
  static int Digit(char code) { return code == 'A' ? 0 : code == 'B' ? 1 : 2; }

  std::size_t KeyOf(int marker) const {
    std::size_t key = 0;
    for (const int line : keyLines_) key = key * 3 + static_cast<std::size_t>(Digit(columns_(line, marker)));
    return key;
  }

  template <class Action>
  void Visit(int marker, std::size_t k, std::size_t key, Action& action) {
    if (k == keyLines_.size()) {
      action(compartments_[key]);
      return;
    }
    const int digit = Digit(columns_(keyLines_[k], marker));
    for (int d = 0; d < 3; ++d)
      if (d == digit || d == 2 || digit == 2) Visit(marker, k + 1, key * 3 + static_cast<std::size_t>(d), action);
  }

  const Array<char, 2>& columns_;
  std::vector<int> keyLines_;
  std::vector<std::vector<int>> compartments_;  // MarkerIDs, ascending
};

void FormBins(int numMarkers, int populationSize, const Array<char, 2>& columns, Array<std::int32_t, 1>& binID) {
  const PackedMarkers packed(numMarkers, populationSize, columns);
  UnbinnedIndex unbinned(numMarkers, populationSize, columns);
  std::int32_t currentBin = 1;
  // The members of the current bin still to be visited by its extension,
  // smallest MarkerID first.
  std::priority_queue<int, std::vector<int>, std::greater<int>> toVisit;
  for (int i = 1; i <= numMarkers - 1; ++i) {
    if (binID(i) != 0) continue;
    unbinned.Search(i, i, binID, [&](int j) { return packed.Same(j, i); },
                    [&](int j) {
                      binID(j) = currentBin;
                      toVisit.push(j);
                    });
    if (toVisit.empty()) continue;
    // One pass of extension over the members above i, ascending: members
    // added above the one visited are visited later in this pass, members
    // added at or below it are not.  The search takes markers below i as
    // well, so one that found no partner can still join.
    binID(i) = currentBin;
    while (!toVisit.empty()) {
      const int j = toVisit.top();
      toVisit.pop();
      unbinned.Search(j, 0, binID, [&](int k) { return packed.Same(k, j); },
                      [&](int k) {
                        binID(k) = currentBin;
                        if (k > j) toVisit.push(k);
                      });
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
