#include "permutation/PermutationTest.h"

#include <vector>

#include "core/Messages.h"
#include "mapping/MarkerTest.h"
#include "mapping/ScanGenotype.h"
#include "permutation/PermutationTables.h"
#include "permutation/ShuffleMaxima.h"
#include "permutation/Shuffles.h"
#include "permutation/Threshold.h"
#include "phenotype/LineMeans.h"
#include "phenotype/LineValues.h"
#include "phenotype/PhenotypeSlices.h"

namespace tov {

namespace {

enum class Method { SingleMarker, Additive, Epistatic };

// One method's share of the test: its parameters, its table and message,
// the run's threshold it replaces, and the maxima of all its shuffles.
struct MethodRun {
  Method Kind;
  std::int32_t Indicator;
  std::int32_t Times;
  float TypeI;
  Unit TableUnit;
  int MessageCode;
  float* Threshold;              // the run's LOD threshold of the method
  std::vector<float> PermMaxLOD;  // NumTraits * NumEnvs * Times, from 0.0
  std::int32_t PermCount = 0;     // shuffles done so far, over all passes
};

void Report(RunData& run, int code, int t, int e) {
  run.StatusCode = code;
  ReportMapping(run.StatusCode, t, e);
}

// The mean over replications of each kept line of trait t in environment
// e; sets PopulationSizeKept and KeptLine.
Array<float, 1> LineMeanOf(RunData& run, int t, int e) {
  const Array<float, 2> slice = TraitEnvSlice(run.Phenotype, t, e);
  Array<float, 2> keptValues;
  run.PopulationSizeKept = LineValues(run.PopulationSize, run.NumReps, ConstView(slice), run.KeptLine, keptValues);
  return LineMeans(run.PopulationSizeKept, run.NumReps, keptValues);
}

// The shuffle loop of one method for trait t and environment e: all its
// permutations drawn first, in order, then scanned, then one row each.
void ShuffleLoop(RunData& run, MethodRun& method, int t, int e, const Array<float, 1>& lineMean,
                 const Array<char, 2>& scanGenotype) {
  const int numLines = run.PopulationSizeKept;
  const Array<float, 2> shuffles = DrawShuffles(numLines, lineMean.Data(), method.Times);
  float* maxima = method.PermMaxLOD.data() + method.PermCount;
  if (method.Kind == Method::SingleMarker)
    MarkerShuffleMaxima(SingleMarkerPermutation, run.NumMarkersKept, numLines, scanGenotype, shuffles, maxima);
  else if (method.Kind == Method::Additive)
    MarkerShuffleMaxima(AdditiveMapping, run.NumMarkersKept, numLines, scanGenotype, shuffles, maxima);
  else
    PairShuffleMaxima(run.NumMarkersKept, numLines, scanGenotype, shuffles, maxima);
  for (int k = 1; k <= method.Times; ++k) {
    ++method.PermCount;
    WriteShuffleRow(run.Units[method.TableUnit], t, run.TraitName(t, 1, 1), e, k,
                    method.PermMaxLOD[static_cast<std::size_t>(method.PermCount - 1)]);
  }
}

}  // namespace

void PermutationTest(RunData& run) {
  std::vector<MethodRun> methods = {
      {Method::SingleMarker, run.SMAPermIndicator, run.SMAPermTimes, run.SMAPermTypeI, UnitTsm, 1254, &run.SMALOD, {}},
      {Method::Additive, run.AddPermIndicator, run.AddPermTimes, run.AddPermTypeI, UnitTic, 1260, &run.AddLOD, {}},
      {Method::Epistatic, run.EpiPermIndicator, run.EpiPermTimes, run.EpiPermTypeI, UnitTice, 1261, &run.EpiLOD, {}},
  };
  bool any = false;
  for (MethodRun& method : methods) {
    if (method.Indicator != 1) continue;
    any = true;
    method.PermMaxLOD.assign(static_cast<std::size_t>(run.NumTraits) * run.NumEnvs * method.Times, 0.0f);
  }
  if (!any) return;

  // The epistatic shuffles are confined to fewer than 1001 kept markers.
  const bool pairsAllowed = run.NumMarkersKept < 1001;
  for (int t = 1; t <= run.NumTraits; ++t) {
    Report(run, 1201, t, 0);
    for (int e = 1; e <= run.NumEnvs; ++e) {
      Report(run, 1202, t, e);
      const Array<float, 1> lineMean = LineMeanOf(run, t, e);
      const Array<char, 2> scanGenotype = ScanGenotypeOf(run.MarkerType, run.KeptMarker, run.KeptLine);
      for (MethodRun& method : methods) {
        if (method.Indicator != 1 || (method.Kind == Method::Epistatic && !pairsAllowed)) continue;
        Report(run, method.MessageCode, t, e);
        ShuffleLoop(run, method, t, e, lineMean, scanGenotype);
      }
    }
  }

  for (MethodRun& method : methods) {
    if (method.Indicator != 1) continue;
    const auto n = static_cast<int>(method.PermMaxLOD.size());
    *method.Threshold = PermutationThreshold(n, method.PermMaxLOD.data(), method.TypeI);
    WriteThresholdRow(run.Units[method.TableUnit], *method.Threshold);
  }
}

}  // namespace tov
