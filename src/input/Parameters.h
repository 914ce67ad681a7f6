#pragma once
// The PAR file: which analyses run and with which thresholds.  It has no
// keywords; its blocks stand in a fixed order, each one free-format read,
// with comment lines allowed before each block but not inside one.

#include <cstdint>
#include <string_view>

#include "core/RunData.h"
#include "text/TextInput.h"

namespace tov {

// Each block reader passes over comment lines, reads its block, and checks
// the items in their order; the first failing check sets statusCode and
// writes its message.

// The condition number for multicollinearity; any value passes.
void ReadConditionNumber(TextInput& input, float& conditionNumber, std::int32_t& statusCode);
// Single marker analysis: indicator 0 or 1, LOD not below 0.5.
void ReadSMABlock(TextInput& input, std::int32_t& indicator, float& lod, std::int32_t& statusCode);
// Additive or epistatic mapping, which share their checks and messages:
// indicator 0 or 1, LOD not below 0.5, PIN not above 0.25.
void ReadMappingBlock(TextInput& input, std::int32_t& indicator, float& lod, float& pin, std::int32_t& statusCode);
// A permutation test: indicator 0 or 1, times from 1 to 1000, and with the
// indicator 1 a type I error rate above 0.
void ReadPermutationBlock(TextInput& input, std::int32_t& indicator, std::int32_t& times, float& typeI,
                          std::int32_t& statusCode);

// Reads the whole file into the parameters of the run; a simulation run
// reads no permutation blocks and runs no permutation test.
void ReadParameters(RunData& run, std::string_view name);

}  // namespace tov
