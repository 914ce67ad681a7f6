#include "tools/lint/DataChecks.h"

#include <cmath>
#include <map>
#include <vector>

#include "markers/Binning.h"
#include "markers/Multicollinearity.h"
#include "markers/PreprocessMarkers.h"
#include "text/Format.h"

namespace tov {

namespace {

// Values that data sets use for a missing value and that the program takes
// for numbers (-100 only once a missing token has been met).
bool LooksLikeMissingCode(float value) {
  for (const float code : {-100.0f, -99.0f, -999.0f, -99999.0f})
    if (value == code) return true;
  return false;
}

std::string Trimmed(const std::string& name) { return std::string(TrimTrailing(name)); }
std::string Number(float value) { return std::string(TrimBoth(FormatFixed(value, 16, 1))); }

// True for a line with a value of any trait, environment or replication.
bool HasPhenotype(const RunData& run, std::int64_t line) {
  for (std::int64_t t = 1; t <= run.NumTraits; ++t)
    for (std::int64_t e = 1; e <= run.NumEnvs; ++e)
      for (std::int64_t r = 1; r <= run.NumReps; ++r) {
        const float value = run.Phenotype(line, t, e, r);
        if (value != MissingValue && !std::isnan(value)) return true;
      }
  return false;
}

}  // namespace

void CheckPhenotypeValues(const RunData& run, const std::string& file, Findings& findings) {
  if (run.Indicator != 1) return;
  for (std::int64_t t = 1; t <= run.NumTraits; ++t)
    for (std::int64_t e = 1; e <= run.NumEnvs; ++e)
      for (std::int64_t r = 1; r <= run.NumReps; ++r)
        for (std::int64_t k = 1; k <= run.PopulationSize; ++k) {
          const float value = run.Phenotype(k, t, e, r);
          if (!LooksLikeMissingCode(value)) continue;
          findings.Warn(file, 0, "missing code read as a number",
                        "the value " + Number(value) + " of trait " + Trimmed(run.TraitName(t, e, r)) +
                            " (environment " + std::to_string(e) + ", replication " + std::to_string(r) + ", line " +
                            std::to_string(k) + ") is read as a number; write a missing value as NA");
        }
}

void CheckMarkers(const RunData& run, const std::string& file, const std::string& parFile, Findings& findings) {
  const Array<char, 2> columns = MarkerColumns(run.MarkerType);
  const MarkerBins bins = BinMarkers(run.NumMarkers, run.PopulationSize, columns);
  std::map<std::int32_t, std::int32_t> keptOfBin;
  for (std::int64_t m = 1; m <= run.NumMarkers; ++m)
    if (bins.BinID(m) > 0 && bins.Deleted(m) == 0) keptOfBin[bins.BinID(m)] = static_cast<std::int32_t>(m);
  std::int32_t binned = 0;
  for (std::int64_t m = 1; m <= run.NumMarkers; ++m) {
    if (bins.Deleted(m) == 0) continue;
    ++binned;
    findings.Note(file, 0, "binned marker",
                  "marker " + std::to_string(m) + " (" + Trimmed(run.MarkerName(m)) + ") has the genotypes of marker " +
                      std::to_string(keptOfBin[bins.BinID(m)]) + " (" +
                      Trimmed(run.MarkerName(keptOfBin[bins.BinID(m)])) + ") and is not mapped");
  }

  if (run.Indicator == 1) {
    std::vector<std::int64_t> phenotyped;
    for (std::int64_t k = 1; k <= run.PopulationSize; ++k)
      if (HasPhenotype(run, k)) phenotyped.push_back(k);
    for (std::int64_t m = 1; m <= run.NumMarkers; ++m) {
      bool donor = false, background = false;
      for (const std::int64_t k : phenotyped) {
        donor = donor || run.MarkerType(m, k) == 'A';
        background = background || run.MarkerType(m, k) == 'B';
      }
      if (!(donor && background))
        findings.Note(file, 0, "monomorphic marker",
                      "marker " + std::to_string(m) + " (" + Trimmed(run.MarkerName(m)) +
                          ") shows one homozygote only among the lines with phenotypes, and is never tested");
    }
  }

  if (run.ConditionNumber < 0.0f) return;
  const std::int32_t afterBinning = run.NumMarkers - binned;
  if (afterBinning > MulticollinearityMarkerLimit) {
    findings.Note(parFile, 0, "condition number",
                  "the condition number is not applied: more than " + std::to_string(MulticollinearityMarkerLimit) +
                      " markers remain after binning");
    return;
  }
  const Array<std::int32_t, 1> kept = PreprocessMarkers(run.MarkerName, run.MarkerType, run.ConditionNumber);
  const std::int64_t removed = afterBinning - static_cast<std::int64_t>(kept.Size());
  findings.Note(parFile, 0, "condition number",
                "the condition number " + Number(run.ConditionNumber) + " removes " + std::to_string(removed) +
                    " of the " + std::to_string(afterBinning) +
                    " markers left after binning (a negative value switches this step off)");
}

}  // namespace tov
