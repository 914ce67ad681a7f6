#include "mapping/MappingDriver.h"

#include "mapping/AdditiveScan.h"
#include "mapping/EpistaticScan.h"
#include "mapping/MarkerEffects.h"
#include "mapping/MarkerTables.h"
#include "mapping/PairEffects.h"
#include "mapping/PairTables.h"
#include "mapping/ScanGenotype.h"
#include "mapping/SelectedPairRSquare.h"
#include "mapping/SelectedRSquare.h"
#include "mapping/SingleMarkerScan.h"
#include "mapping/StepModelTable.h"
#include "numerics/stepwise/Stepwise.h"
#include "phenotype/LineMeans.h"
#include "phenotype/LineValues.h"
#include "phenotype/PhenotypeSlices.h"
#include "core/Messages.h"

namespace tov {

namespace {

void Report(RunData& run, int code, int id, int id2) {
  run.StatusCode = code;
  ReportMapping(run.StatusCode, id, id2);
}

// One value per kept line of trait t: the mean over the replications of
// environment e, or for e = NumEnvs + 1 over all cells, replications outer.
// Sets PopulationSizeKept and KeptLine.
Array<float, 1> LineMeanOf(RunData& run, int t, int e) {
  if (e <= run.NumEnvs) {
    const Array<float, 2> slice = TraitEnvSlice(run.Phenotype, t, e);
    Array<float, 2> keptValues;
    run.PopulationSizeKept = LineValues(run.PopulationSize, run.NumReps, ConstView(slice), run.KeptLine, keptValues);
    return LineMeans(run.PopulationSizeKept, run.NumReps, keptValues);
  }
  const Array<float, 3> slice = TraitSlice(run.Phenotype, t);
  Array<float, 3> keptValues;
  run.PopulationSizeKept =
      LineValuesAcrossEnvs(run.PopulationSize, run.NumEnvs, run.NumReps, ConstView(slice), run.KeptLine, keptValues);
  return LineMeansAcrossEnvs(run.PopulationSizeKept, run.NumEnvs, run.NumReps, keptValues,
                             AcrossEnvsOrder::ReplicationsOuter);
}

// Flags, sums and writes a finished marker table, then releases it.
void ReportMarkerTable(RunData& run, Unit allUnit, Unit selectedUnit, float threshold, int t, int e,
                       const Array<char, 2>& scanGenotype, const Array<float, 1>& lineMean, MarkerTestTable& table) {
  MarkSignificant(threshold, table);
  const float sumVG = SumGeneticVariance(table);
  const float rSquare = SelectedRSquare(run.PopulationSizeKept, scanGenotype, lineMean.Data(), table);
  WriteMarkerTables(run.Units[allUnit], run.Units[selectedUnit], run, t, run.TraitName(t, 1, 1), e,
                    run.PhenotypicVariance(t, e), sumVG, rSquare, table);
  FreeMarkerTests(table);
}

void MapOnePass(RunData& run, int t, int e) {
  const Array<float, 1> lineMean = LineMeanOf(run, t, e);
  // Built once per pass and shared by the scans and the R-square.
  const Array<char, 2> scanGenotype = ScanGenotypeOf(run.MarkerType, run.KeptMarker, run.KeptLine);
  const int numMarkers = run.NumMarkersKept;
  const int numLines = run.PopulationSizeKept;

  if (run.SMAIndicator == 1) {
    Report(run, 1203, t, e);
    MarkerTestTable table;
    table.NumTests = numMarkers;
    AllocMarkerTests(SingleMarkerMapping, table);
    SingleMarkerScan(numMarkers, numLines, scanGenotype, lineMean.Data(), table);
    ReportMarkerTable(run, UnitRsm, UnitQsm, run.SMALOD, t, e, scanGenotype, lineMean, table);
  }

  // One selection serves the additive and the epistatic method, always with
  // the additive PIN and POUT.
  const bool needsModel = run.AddIndicator == 1 || run.EpiIndicator == 1;
  StepModel model;
  if (needsModel) {
    Report(run, 1213, t, e);
    {
      const Array<std::int32_t, 2> codedGenotype = CodedGenotypeOf(scanGenotype);
      StepwiseSelection(run.AddPIN, run.AddPOUT, numMarkers, numLines, codedGenotype.Data(), lineMean.Data(), model);
    }
    WriteStepModel(run.Units[UnitStp], run, t, run.TraitName(t, 1, 1), e, model);
  }

  if (run.AddIndicator == 1) {
    Report(run, 1214, t, e);
    MarkerTestTable table;
    table.NumTests = numMarkers;
    AllocMarkerTests(AdditiveMapping, table);
    AdditiveScan(numMarkers, numLines, scanGenotype, lineMean.Data(), model, table);
    ReportMarkerTable(run, UnitRic, UnitQic, run.AddLOD, t, e, scanGenotype, lineMean, table);
  }

  if (run.EpiIndicator == 1) {
    Report(run, 1215, t, e);
    PairTestTable table;
    table.NumTests = NumPairs(numMarkers);
    AllocPairTests(EpistaticMapping, table);
    EpistaticScan(numMarkers, numLines, scanGenotype, lineMean.Data(), model, table);
    MarkSignificantPairs(run.EpiLOD, table);
    const float sumVG = SumPairVariance(table);
    const float rSquare = SelectedPairRSquare(numLines, scanGenotype, lineMean.Data(), table);
    WritePairTables(run.Units[UnitRice], run.Units[UnitQice], run, t, run.TraitName(t, 1, 1), e,
                    run.PhenotypicVariance(t, e), sumVG, rSquare, table);
    FreePairTests(table);
  }

  if (needsModel) FreeStepModel(model);
}

}  // namespace

void MappingDriver(RunData& run) {
  if (run.SMAIndicator == 0 && run.AddIndicator == 0 && run.EpiIndicator == 0) return;
  for (int t = 1; t <= run.NumTraits; ++t) {
    Report(run, 1201, t, 0);
    for (int e = 1; e <= run.NumEnvs + 1; ++e) {
      Report(run, 1202, t, e);
      MapOnePass(run, t, e);
    }
  }
}

}  // namespace tov
