#pragma once
// The phenotype block of a mapping project: one row for each trait,
// environment and replication (trait outermost, replication innermost),
// with the trait's name and one value token for each line.  Missing values
// are written as one of the missing tokens or, while no such token has been
// seen, as -100; in memory they become the missing code -9999.0.

#include <cstdint>
#include <string>
#include <string_view>

#include "input/TokenRow.h"
#include "core/Array.h"
#include "text/TextInput.h"

namespace tov {

// Phenotype tokens are cut to this many characters before conversion.
constexpr std::size_t PhenotypeTokenLength = 20;

// True for a token (trailing blanks aside) that means a missing value.
bool IsMissingToken(std::string_view token);

// Whether a missing token has been met in this process.  It starts false,
// and once set it stays set for every later row: from then on -100 is a
// value like any other.
bool PhenotypeHasMissingTokens();
// Clears the flag, as at the start of a process; for tests, which read
// many files in one process.
void ClearPhenotypeMissingTokens();

// Converts the tokens of LineIDs 1 to numTokens into values(1..numTokens).
// On a token that is no real, reports 2407 with its LineID and the token at
// full width and leaves statusCode at 2407.
void ConvertPhenotypeRow(std::int32_t numTokens, TokenRow& tokens, ArrayView<float, 1> values,
                         std::int32_t& statusCode);

// Reads the block from the input stream, after passing over comment lines
// once, and allocates and fills phenotype [populationSize, numTraits,
// numEnvs, numReps] and traitName [numTraits, numEnvs, numReps] once every
// row has been read.  On a fault statusCode holds 2405 or 2406, the
// messages have been written and the two arrays are left as they were.
void ReadPhenotypes(TextInput& input, std::int32_t numTraits, std::int32_t numEnvs, std::int32_t numReps,
                    std::int32_t populationSize, Array<float, 4>& phenotype, Array<std::string, 3>& traitName,
                    std::int32_t& statusCode);

}  // namespace tov
