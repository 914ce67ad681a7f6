#include "input/ProjectInput.h"

#include <cstdlib>
#include <limits>
#include <string>

#include "input/Genotypes.h"
#include "input/Phenotypes.h"
#include "input/SimulationModel.h"
#include "core/Messages.h"
#include "text/Fatal.h"
#include "text/Format.h"
#include "text/FreeFormatRead.h"
#include "text/TextInput.h"

namespace tov {

namespace {

// One head item: a line of its own after any comment lines, one integer,
// checked against its range.
bool ReadHeadItem(TextInput& input, std::int32_t& item, std::int32_t lowest, std::int32_t highest, int readCode,
                  int rangeCode, std::int32_t& statusCode) {
  SkipComments(input);
  FreeFormatRead read(input);
  if (!(read.Integer(item) && read.Finish())) {
    statusCode = readCode;
  } else if (item < lowest || item > highest) {
    statusCode = rangeCode;
  } else {
    return true;
  }
  ReportInput(statusCode, item);
  return false;
}

// The marker count is limited by the memory for one triangular matrix of
// marker pairs: an attempt to have it, released at once.
bool PassesTriangleTest(RunData& run) {
  const auto pairs = static_cast<std::size_t>(TriangleSize(run.NumMarkers));
  if (pairs == 0) return true;
  // Held in a volatile object: an allocation released unused may otherwise
  // be dropped by the compiler, and the test would pass whatever the count.
  void* volatile triangle = std::malloc(pairs * sizeof(std::int32_t));
  if (triangle == nullptr) {
    run.StatusCode = 2028;
    ReportInput(run.StatusCode, run.NumMarkers);
    return false;
  }
  std::free(triangle);
  return true;
}

bool ReadHead(TextInput& input, RunData& run) {
  constexpr std::int32_t Unbounded = std::numeric_limits<std::int32_t>::max();
  if (!ReadHeadItem(input, run.Indicator, 1, 2, 2001, 2002, run.StatusCode)) return false;
  if (!ReadHeadItem(input, run.NumMarkers, 1, Unbounded, 2016, 2017, run.StatusCode)) return false;
  if (!PassesTriangleTest(run)) return false;
  run.NumMarkersKept = run.NumMarkers;
  if (!ReadHeadItem(input, run.PopulationSize, 1, Unbounded, 2018, 2019, run.StatusCode)) return false;
  run.PopulationSizeKept = run.PopulationSize;
  if (run.Indicator != 1) {
    run.NumTraits = 1;
    return true;
  }
  return ReadHeadItem(input, run.NumTraits, 0, Unbounded, 2020, 2021, run.StatusCode) &&
         ReadHeadItem(input, run.NumEnvs, 1, Unbounded, 2022, 2023, run.StatusCode) &&
         ReadHeadItem(input, run.NumReps, 1, Unbounded, 2024, 2025, run.StatusCode);
}

void AllocateTraitNames(RunData& run) {
  run.TraitName.Allocate(run.NumTraits, run.NumEnvs, run.NumReps);
  run.TraitName.Fill(std::string(TraitNameLength, ' '));
}

// The phenotype block allocates its arrays itself, once it has been read in
// full; the two tables of variances follow it.
void ReadMappingBlock(TextInput& input, RunData& run) {
  SkipComments(input);
  ReadPhenotypes(input, run.NumTraits, run.NumEnvs, run.NumReps, run.PopulationSize, run.Phenotype, run.TraitName,
                 run.StatusCode);
  if (run.StatusCode != 0) return;
  const std::int64_t columns = std::int64_t{run.NumEnvs} + 1;
  run.PhenotypicVariance.Allocate(run.NumTraits, columns);
  run.TraitEnvStat2.Allocate(run.NumTraits, columns);
}

}  // namespace

std::int32_t TriangleSize(std::int32_t numMarkers) {
  const std::uint32_t product = static_cast<std::uint32_t>(numMarkers) * (static_cast<std::uint32_t>(numMarkers) - 1u);
  const std::int32_t half = static_cast<std::int32_t>(product) / 2;
  return half < 0 ? 0 : half;
}

void ReadProjectInput(RunData& run, std::string_view name) {
  const std::string fileName(TrimTrailing(name));
  TextInput input;
  if (!input.Open(fileName)) FatalRuntimeFailure("cannot open " + fileName);
  ReadProjectInput(run, input);
}

void ReadProjectInput(RunData& run, TextInput& input) {
  run.StatusCode = 0;
  if (!ReadHead(input, run)) return;
  SkipComments(input);
  ReadGenotypes(input, run.NumMarkers, run.PopulationSize, run.MarkerCategory, run.MarkerName, run.MarkerType,
                run.StatusCode);
  if (run.StatusCode != 0) return;

  if (run.Indicator == 1) {
    ReadMappingBlock(input, run);
  } else {
    // A simulation has one trait, in one environment and one replication.
    AllocateTraitNames(run);
    SkipComments(input);
    ReadSimulationModel(run, input);
  }
}

}  // namespace tov
