#include "input/Parameters.h"

#include <string>

#include "core/Messages.h"
#include "text/Fatal.h"
#include "text/Format.h"
#include "text/FreeFormatRead.h"

namespace tov {

namespace {

// Thresholds below this LOD are refused; a NaN passes, as no comparison
// holds for it.
constexpr float SmallestLOD = 0.5f;
constexpr float LargestPIN = 0.25f;
constexpr std::int32_t MostPermutations = 1000;

bool IsIndicator(std::int32_t value) { return value == 0 || value == 1; }

}  // namespace

void ReadConditionNumber(TextInput& input, float& conditionNumber, std::int32_t& statusCode) {
  SkipComments(input);
  FreeFormatRead read(input);
  if (!(read.Real(conditionNumber) && read.Finish())) {
    statusCode = 3051;
    ReportParameter(statusCode, 0, 0.0f);
  }
}

void ReadSMABlock(TextInput& input, std::int32_t& indicator, float& lod, std::int32_t& statusCode) {
  SkipComments(input);
  FreeFormatRead read(input);
  if (!(read.Integer(indicator) && read.Real(lod) && read.Finish())) {
    statusCode = 3003;
    ReportParameter(statusCode, 0, 0.0f);
  } else if (!IsIndicator(indicator)) {
    statusCode = 3004;
    ReportParameter(statusCode, indicator, 0.0f);
  } else if (lod < SmallestLOD) {
    statusCode = 3005;
    ReportParameter(statusCode, 0, lod);
  }
}

void ReadMappingBlock(TextInput& input, std::int32_t& indicator, float& lod, float& pin, std::int32_t& statusCode) {
  SkipComments(input);
  FreeFormatRead read(input);
  if (!(read.Integer(indicator) && read.Real(lod) && read.Real(pin) && read.Finish())) {
    statusCode = 3052;
    ReportParameter(statusCode, 0, 0.0f);
  } else if (!IsIndicator(indicator)) {
    statusCode = 3053;
    ReportParameter(statusCode, indicator, 0.0f);
  } else if (lod < SmallestLOD) {
    statusCode = 3054;
    ReportParameter(statusCode, 0, lod);
  } else if (pin > LargestPIN) {
    statusCode = 3055;
    ReportParameter(statusCode, 0, pin);
  }
}

void ReadPermutationBlock(TextInput& input, std::int32_t& indicator, std::int32_t& times, float& typeI,
                          std::int32_t& statusCode) {
  SkipComments(input);
  FreeFormatRead read(input);
  // The messages of this block show no value; the one at fault is passed
  // all the same.
  if (!(read.Integer(indicator) && read.Integer(times) && read.Real(typeI) && read.Finish())) {
    statusCode = 2029;
    ReportInput(statusCode, 0);
  } else if (!IsIndicator(indicator)) {
    statusCode = 2030;
    ReportInput(statusCode, indicator);
  } else if (times < 1 || times > MostPermutations) {
    statusCode = 2031;
    ReportInput(statusCode, times);
  } else if (indicator == 1 && typeI <= 0.0f) {
    // The rate is tested only for a test that runs, and only from below.
    statusCode = 2032;
    ReportInput(statusCode, 0);
  }
}

void ReadParameters(RunData& run, std::string_view name) {
  run.StatusCode = 0;
  const std::string fileName(TrimTrailing(name));
  TextInput input;
  if (!input.Open(fileName)) FatalRuntimeFailure("cannot open " + fileName);

  ReadConditionNumber(input, run.ConditionNumber, run.StatusCode);
  if (run.StatusCode != 0) return;
  ReadSMABlock(input, run.SMAIndicator, run.SMALOD, run.StatusCode);
  if (run.StatusCode != 0) return;
  ReadMappingBlock(input, run.AddIndicator, run.AddLOD, run.AddPIN, run.StatusCode);
  if (run.StatusCode != 0) return;
  run.AddPOUT = run.AddPIN + run.AddPIN;
  ReadMappingBlock(input, run.EpiIndicator, run.EpiLOD, run.EpiPIN, run.StatusCode);
  if (run.StatusCode != 0) return;
  run.EpiPOUT = run.EpiPIN + run.EpiPIN;

  if (run.Indicator != 1) {
    run.SMAPermIndicator = 0;
    run.AddPermIndicator = 0;
    run.EpiPermIndicator = 0;
    return;
  }
  ReadPermutationBlock(input, run.SMAPermIndicator, run.SMAPermTimes, run.SMAPermTypeI, run.StatusCode);
  if (run.StatusCode != 0) return;
  ReadPermutationBlock(input, run.AddPermIndicator, run.AddPermTimes, run.AddPermTypeI, run.StatusCode);
  if (run.StatusCode != 0) return;
  ReadPermutationBlock(input, run.EpiPermIndicator, run.EpiPermTimes, run.EpiPermTypeI, run.StatusCode);
}

}  // namespace tov
