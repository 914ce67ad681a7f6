#pragma once
// The genotype block of the project input file: one row for each marker,
// in MarkerID order, with the marker's name and one genotype token for each
// line.  Tokens are recoded to 'A' (first homozygote), 'B' (second) or 'X'
// (missing); a marker that does not show both homozygotes is refused, and
// so are two markers of one name.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "input/TokenRow.h"
#include "core/Array.h"
#include "text/TextInput.h"

namespace tov {

// Genotype tokens are cut to this many characters before recoding.
constexpr std::size_t GenotypeTokenLength = 2;
// The code given to a token outside the code table.
constexpr char InvalidGenotype = 'Z';

// The code of one token (cut to two characters, blank-filled).
char RecodeToken(std::string_view token);

// Recodes the tokens of LineIDs 1 to numLines into codes, in LineID order,
// and stops at the first token outside the code table.  Returns 0 when all
// are valid, else that token's LineID; codes then holds the codes before it.
std::int32_t RecodeRow(std::int32_t numLines, const TokenRow& tokens, std::vector<char>& codes);

// The first pair of equal names, comparing all 35 characters: Later is the
// smallest MarkerID whose name stood before, Earlier the first MarkerID of
// that name.  Both are 0 when all names differ.
struct NamePair {
  std::int32_t Later = 0;
  std::int32_t Earlier = 0;
};
NamePair CheckDuplicateNames(const Array<std::string, 1>& markerName);

// Reads the block of numMarkers rows from the input stream, after passing
// over comment lines once, and fills markerCategory (all 1), markerName
// and markerType [numMarkers, populationSize].  On a fault statusCode holds
// its code, the message has been written, no later row has been read, and
// the arrays hold the markers accepted before the fault.
void ReadGenotypes(TextInput& input, std::int32_t numMarkers, std::int32_t populationSize,
                   Array<std::int32_t, 1>& markerCategory, Array<std::string, 1>& markerName,
                   Array<char, 2>& markerType, std::int32_t& statusCode);

}  // namespace tov
