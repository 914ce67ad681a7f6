#pragma once
// The record of a selected stepwise model in ".stp": a block of a heading
// and a value line per trait and environment, with a column per term.

#include <string_view>

#include "numerics/stepwise/StepModel.h"
#include "core/RunData.h"
#include "text/TextOutput.h"

namespace tov {

// The heading names each term by its MarkerID (run.KeptMarker); the value
// line gives the coefficients, the intercept and, under "R-square", the
// adjusted R-square in percent.
void WriteStepModel(TextOutput& unit, const RunData& run, int trait, std::string_view traitName, int environment,
                    const StepModel& model);

}  // namespace tov
