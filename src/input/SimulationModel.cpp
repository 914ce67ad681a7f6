#include "input/SimulationModel.h"

#include <cstdint>
#include <vector>

#include "core/Messages.h"
#include "text/FreeFormatRead.h"

namespace tov {

namespace {

// The QTL of the model as read: a MarkerID and an effect for each.
struct ModelQTL {
  std::vector<std::int32_t> Position;
  std::vector<float> Effect;
};

bool ReadHead(RunData& run, TextInput& input, std::int32_t& numQTL) {
  SkipComments(input);
  FreeFormatRead read(input);
  if (!(read.Integer(numQTL) && read.Integer(run.NumSimulations) && read.Real(run.Heritability) && read.Finish())) {
    run.StatusCode = 3501;
    ReportModel(run.StatusCode, 0, 0.0f);
  } else if (numQTL < 0) {
    // Zero passes, though the message asks for a positive number.
    run.StatusCode = 3502;
    ReportModel(run.StatusCode, numQTL, 0.0f);
  } else if (run.NumSimulations < 0) {
    run.StatusCode = 3503;
    ReportModel(run.StatusCode, run.NumSimulations, 0.0f);
  } else if (run.Heritability < 0.0f || run.Heritability > 1.0f) {
    // Both ends pass, and so does a NaN.
    run.StatusCode = 3504;
    ReportModel(run.StatusCode, 0, run.Heritability);
  }
  return run.StatusCode == 0;
}

// The positions and then the effects, each one free-format read with no
// comment lines before it.  The lists grow as values are read, so that a
// count the file cannot back costs no memory before the read fails.
bool ReadQTL(RunData& run, TextInput& input, std::int32_t numQTL, ModelQTL& qtl) {
  FreeFormatRead positions(input);
  bool ok = true;
  for (std::int64_t q = 1; ok && q <= numQTL; ++q) ok = positions.Integer(qtl.Position.emplace_back(0));
  if (!(ok && positions.Finish())) {
    run.StatusCode = 3505;
    ReportModel(run.StatusCode, 0, 0.0f);
    return false;
  }
  for (const std::int32_t position : qtl.Position) {
    if (position < 1 || position > run.NumMarkers) {
      run.StatusCode = 3506;
      ReportModel(run.StatusCode, position, 0.0f);
      return false;
    }
  }
  FreeFormatRead effects(input);
  for (std::int64_t q = 1; ok && q <= numQTL; ++q) ok = effects.Real(qtl.Effect.emplace_back(0.0f));
  if (!(ok && effects.Finish())) {
    run.StatusCode = 3507;
    ReportModel(run.StatusCode, 0, 0.0f);
    return false;
  }
  return true;
}

// A later QTL at the same marker replaces the earlier one.
void PlaceQTL(RunData& run, const ModelQTL& qtl) {
  run.QTLEffect.Allocate(run.NumMarkers);
  for (std::size_t q = 0; q < qtl.Position.size(); ++q) run.QTLEffect(qtl.Position[q]) = qtl.Effect[q];
}

// Each line adds the effects of its donor markers and subtracts those of
// its background markers.
void ComputeGenotypicValues(RunData& run) {
  run.GenotypicValue.Allocate(run.PopulationSize);
  for (std::int32_t line = 1; line <= run.PopulationSize; ++line) {
    float value = 0.0f;
    for (std::int32_t m = 1; m <= run.NumMarkers; ++m) {
      if (run.MarkerType(m, line) == 'A') value = value + run.QTLEffect(m);
      if (run.MarkerType(m, line) == 'B') value = value - run.QTLEffect(m);
    }
    run.GenotypicValue(line) = value;
  }
}

// The population variance of the genotypic values, from running sums in
// LineID order, and the error variance that gives the heritability.
void ComputeVariances(RunData& run) {
  float sumSquares = 0.0f;
  float sum = 0.0f;
  for (std::int32_t line = 1; line <= run.PopulationSize; ++line) {
    const float value = run.GenotypicValue(line);
    sumSquares = sumSquares + value * value;
    sum = sum + value;
  }
  const auto lines = static_cast<float>(run.PopulationSize);
  const float mean = sum / lines;
  run.GeneticVariance = sumSquares / lines - mean * mean;
  run.ErrorVariance = ((1.0f - run.Heritability) / run.Heritability) * run.GeneticVariance;
}

// The share of variance of the QTL at each marker.  The frequency is that
// of the missing genotypes: so the model is defined, and a marker without
// missing genotypes explains nothing.
void ComputeShares(RunData& run) {
  run.QTLPVEGenetic.Allocate(run.NumMarkers);
  run.QTLPVEPhenotypic.Allocate(run.NumMarkers);
  const auto lines = static_cast<float>(run.PopulationSize);
  for (std::int32_t m = 1; m <= run.NumMarkers; ++m) {
    std::int32_t missing = 0;
    for (std::int32_t line = 1; line <= run.PopulationSize; ++line)
      if (run.MarkerType(m, line) == 'X') ++missing;
    const float p = static_cast<float>(missing) / lines;
    const float effect = run.QTLEffect(m);
    const float v = 4.0f * p * (1.0f - p) * (effect * effect);
    run.QTLPVEGenetic(m) = (v / run.GeneticVariance) * 100.0f;
    run.QTLPVEPhenotypic(m) = (v / (run.GeneticVariance + run.ErrorVariance)) * 100.0f;
  }
}

}  // namespace

void ReadSimulationModel(RunData& run, TextInput& input) {
  std::int32_t numQTL = 0;
  if (!ReadHead(run, input, numQTL)) return;
  ModelQTL qtl;
  if (!ReadQTL(run, input, numQTL, qtl)) return;
  PlaceQTL(run, qtl);
  ComputeGenotypicValues(run);
  ComputeVariances(run);
  ComputeShares(run);
}

}  // namespace tov
