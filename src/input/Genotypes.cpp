#include "input/Genotypes.h"

#include <algorithm>
#include <unordered_map>

#include "core/Messages.h"
#include "core/RunData.h"
#include "text/FreeFormatRead.h"

namespace tov {

namespace {

// The markers accepted so far, row after row with the lines fastest, until
// they go into the run data's layout, where the markers are fastest.  Rows
// are gathered rather than stored into arrays of the head's size, so that
// a count the file cannot back never becomes an allocation.
struct AcceptedMarkers {
  std::vector<std::string> Names;
  std::vector<char> Codes;
};

void StoreMarkers(const AcceptedMarkers& accepted, std::int32_t populationSize, Array<std::int32_t, 1>& markerCategory,
                  Array<std::string, 1>& markerName, Array<char, 2>& markerType) {
  const auto count = static_cast<std::int64_t>(accepted.Names.size());
  markerCategory.Allocate(count);
  markerCategory.Fill(1);
  markerName.Allocate(count);
  markerType.Allocate(count, populationSize);
  for (std::int64_t m = 1; m <= count; ++m) {
    markerName(m) = accepted.Names[static_cast<std::size_t>(m - 1)];
    const char* row = accepted.Codes.data() + static_cast<std::size_t>(m - 1) * static_cast<std::size_t>(populationSize);
    for (std::int64_t line = 1; line <= populationSize; ++line) markerType(m, line) = row[line - 1];
  }
}

// One free-format read of the marker name and its genotype tokens.
bool ReadRow(TextInput& input, std::int32_t populationSize, std::string& name, TokenRow& tokens) {
  FreeFormatRead read(input);
  const bool ok = read.Text(name, MarkerNameLength);
  return ok && tokens.Read(read, populationSize) && read.Finish();
}

// A marker is informative only when both homozygotes occur; missing
// genotypes count with either class, so an all-missing row fails too.
bool HasPolymorphism(const std::vector<char>& codes) {
  const auto countA = std::count(codes.begin(), codes.end(), 'A');
  const auto countB = std::count(codes.begin(), codes.end(), 'B');
  const auto countX = std::count(codes.begin(), codes.end(), 'X');
  const auto lines = static_cast<std::ptrdiff_t>(codes.size());
  return countX + countA != lines && countX + countB != lines;
}

}  // namespace

char RecodeToken(std::string_view token) {
  // A one-character token compares with a blank behind it.
  std::string key(token.substr(0, GenotypeTokenLength));
  key.resize(GenotypeTokenLength, ' ');
  static constexpr std::string_view First[] = {"2 ", "D ", "A ", "AA"};
  static constexpr std::string_view Second[] = {"0 ", "B ", "BB"};
  static constexpr std::string_view Missing[] = {"-1", "X ", "XX", "* ", "**"};
  char code = InvalidGenotype;
  if (std::find(std::begin(First), std::end(First), key) != std::end(First)) code = 'A';
  if (std::find(std::begin(Second), std::end(Second), key) != std::end(Second)) code = 'B';
  if (std::find(std::begin(Missing), std::end(Missing), key) != std::end(Missing)) code = 'X';
  return code;
}

std::int32_t RecodeRow(std::int32_t numLines, const TokenRow& tokens, std::vector<char>& codes) {
  codes.clear();
  for (std::int64_t line = 1; line <= numLines; ++line) {
    const char code = RecodeToken(tokens.Token(line));
    if (code == InvalidGenotype) return static_cast<std::int32_t>(line);
    codes.push_back(code);
  }
  return 0;
}

// Equal to comparing each name with every earlier one and stopping at the
// first equal pair, in linear time: the first name met again gives the
// later MarkerID, and its first occurrence the earlier.
NamePair CheckDuplicateNames(const Array<std::string, 1>& markerName) {
  std::unordered_map<std::string_view, std::int32_t> firstOccurrence;
  const std::int64_t count = markerName.Extent(1);
  for (std::int64_t i = 1; i <= count; ++i) {
    const auto [found, isNew] = firstOccurrence.emplace(markerName(i), static_cast<std::int32_t>(i));
    if (!isNew) return NamePair{static_cast<std::int32_t>(i), found->second};
  }
  return NamePair{};
}

void ReadGenotypes(TextInput& input, std::int32_t numMarkers, std::int32_t populationSize,
                   Array<std::int32_t, 1>& markerCategory, Array<std::string, 1>& markerName,
                   Array<char, 2>& markerType, std::int32_t& statusCode) {
  AcceptedMarkers accepted;
  TokenRow tokens(GenotypeTokenLength);
  std::vector<char> codes;
  SkipComments(input);
  for (std::int64_t m = 1; m <= numMarkers; ++m) {
    const auto markerId = static_cast<std::int32_t>(m);
    std::string name(MarkerNameLength, ' ');
    if (!ReadRow(input, populationSize, name, tokens)) {
      statusCode = 2201;
      ReportMarker(statusCode, markerId, 0, "XX");
      break;
    }
    const std::int32_t badLine = RecodeRow(populationSize, tokens, codes);
    if (badLine != 0) {
      statusCode = 2210;
      ReportMarker(statusCode, markerId, badLine, tokens.Token(badLine));
      break;
    }
    if (!HasPolymorphism(codes)) {
      statusCode = 2211;
      ReportMarker(statusCode, markerId, populationSize, " ");
      break;
    }
    accepted.Names.push_back(std::move(name));
    accepted.Codes.insert(accepted.Codes.end(), codes.begin(), codes.end());
  }
  StoreMarkers(accepted, populationSize, markerCategory, markerName, markerType);
  if (statusCode != 0) return;

  const NamePair duplicate = CheckDuplicateNames(markerName);
  if (duplicate.Later != 0) {
    statusCode = 2230;
    ReportMarker(statusCode, duplicate.Later, duplicate.Earlier, markerName(duplicate.Later));
  }
}

}  // namespace tov
