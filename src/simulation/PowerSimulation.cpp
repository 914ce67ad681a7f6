#include "simulation/PowerSimulation.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "core/Parallel.h"
#include "mapping/AdditiveScan.h"
#include "mapping/MarkerEffects.h"
#include "mapping/ScanGenotype.h"
#include "mapping/SingleMarkerScan.h"
#include "mapping/StepModelTable.h"
#include "numerics/random/Random.h"
#include "numerics/stepwise/Stepwise.h"
#include "simulation/PowerTables.h"

namespace tov {

namespace {

// Simulations drawn ahead per worker thread: enough to keep every thread
// busy through a batch, few enough that the rows waiting for their turn
// stay small.
constexpr int SimulationsPerThread = 8;

// One method's outcome in one simulation.
struct MethodResult {
  std::string EffectsRow;
  std::vector<char> Significant;  // per kept marker
};

struct SimulationResult {
  std::vector<float> SimTrait;  // [PopulationSize]
  MethodResult SingleMarker;
  MethodResult Additive;
  StepModel Model;
};

// What every simulation scans against: the genotypes of the kept markers
// over all lines, built once.
struct PowerScans {
  const RunData& Run;
  Array<char, 2> ScanGenotype;           // [NumMarkersKept, PopulationSize]
  Array<std::int32_t, 2> CodedGenotype;  // the same as regressors, for the selection
};

MarkerTestTable NewTable(int methodCode, int numMarkers) {
  MarkerTestTable table;
  table.NumTests = numMarkers;
  AllocMarkerTests(methodCode, table);
  return table;
}

// The row of effects and the significant records of a finished table, which
// is then released.
MethodResult Conclude(int simulation, float threshold, MarkerTestTable& table) {
  MethodResult result;
  result.EffectsRow = EffectsRow(simulation, table);
  MarkSignificant(threshold, table);
  result.Significant.resize(static_cast<std::size_t>(table.NumTests));
  for (int j = 1; j <= table.NumTests; ++j)
    result.Significant[static_cast<std::size_t>(j - 1)] = table.Test(j).Significant == LogicalTrue;
  FreeMarkerTests(table);
  return result;
}

void ScanSimulation(const PowerScans& scans, int simulation, SimulationResult& result) {
  const RunData& run = scans.Run;
  const int numMarkers = run.NumMarkersKept;
  const int numLines = run.PopulationSize;
  const float* y = result.SimTrait.data();
  if (run.SMAIndicator == 1) {
    MarkerTestTable table = NewTable(SingleMarkerSimulation, numMarkers);
    SingleMarkerScan(numMarkers, numLines, scans.ScanGenotype, y, table);
    result.SingleMarker = Conclude(simulation, run.SMALOD, table);
  }
  if (run.AddIndicator == 1) {
    StepwiseSelection(run.AddPIN, run.AddPOUT, numMarkers, numLines, scans.CodedGenotype.Data(), y, result.Model);
    MarkerTestTable table = NewTable(AdditiveSimulation, numMarkers);
    AdditiveScan(numMarkers, numLines, scans.ScanGenotype, y, result.Model, table);
    result.Additive = Conclude(simulation, run.AddLOD, table);
  }
}

// SimTrait(i) = GenotypicValue(i) + SimError(i) * errorRoot, the errors from
// one call of the stream for the whole population.
void DrawSimulatedTrait(const RunData& run, float errorRoot, std::vector<float>& simTrait) {
  simTrait.resize(static_cast<std::size_t>(run.PopulationSize));
  RNNOA(run.PopulationSize, simTrait.data());
  for (int i = 1; i <= run.PopulationSize; ++i) {
    float& value = simTrait[static_cast<std::size_t>(i - 1)];
    const float simError = value * errorRoot;
    value = run.GenotypicValue(i) + simError;
  }
}

void Count(const MethodResult& result, Array<float, 1>& detected) {
  for (int j = 1; j <= static_cast<int>(detected.Size()); ++j)
    if (result.Significant[static_cast<std::size_t>(j - 1)]) detected(j) = detected(j) + 1.0f;
}

std::string SimulatedTraitName() {
  std::string name = "SimulatedTrait";
  name.resize(TraitNameLength, ' ');
  return name;
}

// The tables' share of one simulation, in the order of the loop.
void WriteSimulation(RunData& run, int simulation, SimulationResult& result, Array<float, 1>& detectedSMA,
                     Array<float, 1>& detectedAdd) {
  if (run.SMAIndicator == 1) {
    if (simulation == 1) WritePowerHeading(run.Units[UnitPsm], run.KeptMarker);
    run.Units[UnitPsm].WriteLine(result.SingleMarker.EffectsRow);
    Count(result.SingleMarker, detectedSMA);
  }
  if (run.AddIndicator == 1) {
    if (simulation == 1) WritePowerHeading(run.Units[UnitPic], run.KeptMarker);
    WriteStepModel(run.Units[UnitStp], run, 1, SimulatedTraitName(), 1, result.Model);
    run.Units[UnitPic].WriteLine(result.Additive.EffectsRow);
    Count(result.Additive, detectedAdd);
  }
  result = SimulationResult();
}

Array<std::int32_t, 1> AllLines(int populationSize) {
  Array<std::int32_t, 1> lines(populationSize);
  for (int i = 1; i <= populationSize; ++i) lines(i) = i;
  return lines;
}

}  // namespace

void PowerSimulation(RunData& run) {
  if (run.SMAIndicator == 0 && run.AddIndicator == 0 && run.EpiIndicator == 0) return;
  const bool scans = run.SMAIndicator == 1 || run.AddIndicator == 1;
  PowerScans power{run, ScanGenotypeOf(run.MarkerType, run.KeptMarker, AllLines(run.PopulationSize)), {}};
  if (run.AddIndicator == 1) power.CodedGenotype = CodedGenotypeOf(power.ScanGenotype);
  Array<float, 1> detectedSMA(run.NumMarkersKept);
  Array<float, 1> detectedAdd(run.NumMarkersKept);
  const float errorRoot = std::sqrt(run.ErrorVariance);

  const int workers = WorkerThreads();
  const int batchSize = SimulationsPerThread * workers;
  std::vector<SimulationResult> batch;
  for (int first = 1; first <= run.NumSimulations; first += batchSize) {
    const int count = std::min(batchSize, run.NumSimulations - first + 1);
    batch.resize(static_cast<std::size_t>(count));
    for (SimulationResult& result : batch) DrawSimulatedTrait(run, errorRoot, result.SimTrait);
    if (!scans) continue;
    // Each worker takes every workers-th simulation of the batch.
    ParallelFor(std::min(workers, count), [&](int worker) {
      for (int k = worker; k < count; k += workers)
        ScanSimulation(power, first + k, batch[static_cast<std::size_t>(k)]);
    });
    for (int k = 0; k < count; ++k)
      WriteSimulation(run, first + k, batch[static_cast<std::size_t>(k)], detectedSMA, detectedAdd);
  }

  if (run.SMAIndicator == 1) WritePowerSummary(run.Units[UnitPsm], run, detectedSMA);
  if (run.AddIndicator == 1) WritePowerSummary(run.Units[UnitPic], run, detectedAdd);
}

}  // namespace tov
