#include "core/RunData.h"

namespace tov {

void ReleaseRunData(RunData& run) {
  run.MarkerName.Release();
  run.TraitName.Release();
  run.MarkerCategory.Release();
  run.MarkerType.Release();
  run.Phenotype.Release();
  run.PhenotypicVariance.Release();
  run.TraitEnvStat2.Release();
  run.KeptMarker.Release();
  run.KeptLine.Release();
  run.QTLEffect.Release();
  run.GenotypicValue.Release();
  run.QTLPVEGenetic.Release();
  run.QTLPVEPhenotypic.Release();
}

}  // namespace tov
