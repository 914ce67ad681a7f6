#include "phenotype/EnvironmentAnova.h"

#include <string>
#include <vector>

#include "numerics/statistics/Anova.h"
#include "phenotype/AnovaTables.h"

namespace tov {

namespace {

void WriteLines(TextOutput& unit, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) unit.WriteLine(line);
}

// A refused two-way analysis leaves its results unformed: the table keeps
// its shape with the degrees of freedom of the layout and NaN elsewhere.
void RefusedTwoWay(int kept, int numEnvs, int numReps, AovTable& aov, TwoWayEffects& effects) {
  const float nan = AMACH(6);
  aov.Fill(nan);
  aov(1) = static_cast<float>(kept * numEnvs - 1);
  aov(2) = static_cast<float>(kept * numEnvs * (numReps - 1));
  aov(3) = static_cast<float>(kept * numEnvs * numReps - 1);
  effects.A = {static_cast<float>(kept - 1), nan, nan, nan};
  effects.B = {static_cast<float>(numEnvs - 1), nan, nan, nan};
  effects.AxB = {static_cast<float>((kept - 1) * (numEnvs - 1)), nan, nan, nan};
}

std::string EffectRow(std::string_view label, const AnovaEffect& effect) {
  // The effect's mean square is not among the results: SS over DF here.
  return SourceRow(label, effect.DF, {effect.SS, effect.SS / effect.DF, effect.F, effect.P}, 4);
}

}  // namespace

void EnvironmentAnova(TextOutput& unit, int kept, int numReps, const Array<float, 2>& values) {
  // Lines are the groups: the replications of a line lie together.
  std::vector<float> responses;
  responses.reserve(static_cast<std::size_t>(kept) * static_cast<std::size_t>(numReps));
  for (int line = 1; line <= kept; ++line)
    for (int r = 1; r <= numReps; ++r) responses.push_back(values(line, r));
  const std::vector<int> groupSize(static_cast<std::size_t>(kept), numReps);
  AovTable aov;
  AONEW(kept, groupSize.data(), responses.data(), aov);
  WriteLines(unit, AovTableLines(SummarySpelling::OneWay, {"Among Groups", "Within Groups", "Total"}, aov));
  unit.WriteLine("");
}

void AcrossEnvironmentAnova(TextOutput& unit, int kept, int numEnvs, int numReps, const Array<float, 3>& values) {
  // Replications fastest, then environments, then lines.
  std::vector<float> responses;
  responses.reserve(static_cast<std::size_t>(kept) * static_cast<std::size_t>(numEnvs) *
                    static_cast<std::size_t>(numReps));
  for (int line = 1; line <= kept; ++line)
    for (int e = 1; e <= numEnvs; ++e)
      for (int r = 1; r <= numReps; ++r) responses.push_back(values(line, e, r));
  const int levels[] = {kept, numEnvs, numReps};
  AovTable aov;
  TwoWayEffects effects;
  if (!ANWAY(levels, responses.data(), aov, effects)) RefusedTwoWay(kept, numEnvs, numReps, aov, effects);

  WriteLines(unit, AovTableLines(SummarySpelling::TwoWay, {"Model", "Error", "Total"}, aov));
  unit.WriteLine("");
  unit.WriteLine("Variation due to the model");
  unit.WriteLine(SourceHeading());
  unit.WriteLine(EffectRow("A (Lines)", effects.A));
  unit.WriteLine(EffectRow("B (Envs)", effects.B));
  unit.WriteLine(EffectRow("AxB", effects.AxB));
  unit.WriteLine("");
}

}  // namespace tov
