#include "permutation/PermutationTest.h"

#include <gtest/gtest.h>

#include "numerics/random/Random.h"
#include "support/SameOutputAcrossThreads.h"
#include "support/ScratchFile.h"

namespace tov {
namespace {

// All three permutation tests, two traits in two environments: the same
// bytes on one worker thread and on three.
TEST(PermutationTest, SameBytesOnOneThreadAndOnThree) {
  testing_support::ExpectSameOutputAcrossThreads(std::filesystem::path(TOV_TEST_PROJECTS) / "permutation_all_methods", 3);
}

// At 1001 kept markers the pair shuffles never run: nothing is drawn, and
// the threshold step still gives EpiLOD 0.0 and the closing row.
TEST(PermutationTest, NoPairShufflesFrom1001KeptMarkers) {
  constexpr int Markers = 1001, Lines = 6;
  RunData run;
  run.NumMarkers = run.NumMarkersKept = Markers;
  run.PopulationSize = Lines;
  run.MarkerType.Allocate(Markers, Lines);
  run.KeptMarker.Allocate(Markers);
  for (int m = 1; m <= Markers; ++m) {
    run.KeptMarker(m) = m;
    for (int l = 1; l <= Lines; ++l) run.MarkerType(m, l) = (m >> (l - 1)) & 1 ? 'A' : 'B';
  }
  run.Phenotype.Allocate(Lines, 1, 1, 1);
  for (int l = 1; l <= Lines; ++l) run.Phenotype(l, 1, 1, 1) = 1.5f * static_cast<float>(l % 4);
  run.TraitName.Allocate(1, 1, 1);
  run.TraitName(1, 1, 1) = "Yield";
  run.EpiPermIndicator = 1;
  run.EpiPermTimes = 3;
  run.EpiPermTypeI = 0.05f;
  run.EpiLOD = 5.0f;
  const std::string path = std::filesystem::temp_directory_path() / ("tov-tice-" + std::to_string(::getpid()));
  run.Units[UnitTice].Create(path);
  StartStreamForTesting(99);
  PermutationTest(run);
  run.Units[UnitTice].Close();
  EXPECT_EQ(StreamStateForTesting(), 99);
  EXPECT_EQ(run.EpiLOD, 0.0f);
  EXPECT_EQ(testing_support::ReadWholeFile(path),
            "   Threshold           Threshold   Threshold   Threshold      0.0000\n");
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace tov
