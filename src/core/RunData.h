#pragma once
// The one record of state that lives for the whole run: sizes, the marker
// and phenotype arrays, the parameters, the simulation model, the output
// units and the status code.  Readers fill it, preprocessing sets the kept
// markers, every later phase reads it.

#include <cstdint>
#include <string>

#include "core/Array.h"
#include "core/OutputUnits.h"

namespace tov {

// Fixed text lengths of the data model.
constexpr std::size_t MarkerNameLength = 35;
constexpr std::size_t TraitNameLength = 19;
constexpr std::size_t FileNameLength = 256;

// The missing phenotype code.
constexpr float MissingValue = -9999.0f;

struct RunData {
  std::string OutputBase;  // input file name less its last four characters
  std::int32_t Indicator = 1;  // 1 mapping, 2 simulation
  std::int32_t PopulationType = 21;  // the one kind of population served
  std::int32_t NumMarkers = 1;
  std::int32_t PopulationSize = 1;
  std::int32_t NumTraits = 1;
  std::int32_t NumEnvs = 1;
  std::int32_t NumReps = 1;
  std::int32_t NumMarkersKept = 1;
  std::int32_t PopulationSizeKept = 1;
  std::int32_t StatusCode = 0;

  // Parameters.
  float ConditionNumber = 0.0f;
  std::int32_t SMAIndicator = 0;
  float SMALOD = 0.0f;
  std::int32_t AddIndicator = 0;
  float AddLOD = 0.0f;
  float AddPIN = 0.0f;
  float AddPOUT = 0.0f;
  std::int32_t EpiIndicator = 0;
  float EpiLOD = 0.0f;
  float EpiPIN = 0.0f;
  float EpiPOUT = 0.0f;
  std::int32_t SMAPermIndicator = 0;
  std::int32_t SMAPermTimes = 0;
  float SMAPermTypeI = 0.0f;
  std::int32_t AddPermIndicator = 0;
  std::int32_t AddPermTimes = 0;
  float AddPermTypeI = 0.0f;
  std::int32_t EpiPermIndicator = 0;
  std::int32_t EpiPermTimes = 0;
  float EpiPermTypeI = 0.0f;

  // Simulation model.
  std::int32_t NumSimulations = 0;
  float Heritability = 0.0f;
  float GeneticVariance = 0.0f;
  float ErrorVariance = 0.0f;

  Array<std::string, 1> MarkerName;        // [NumMarkers], 35 characters each
  Array<std::string, 3> TraitName;         // [NumTraits, NumEnvs, NumReps], 19 characters
  Array<std::int32_t, 1> MarkerCategory;   // [NumMarkers], all 1
  Array<char, 2> MarkerType;               // [NumMarkers, PopulationSize]: 'A', 'B', 'X'
  Array<float, 4> Phenotype;               // [PopulationSize, NumTraits, NumEnvs, NumReps]
  Array<float, 2> PhenotypicVariance;      // [NumTraits, NumEnvs + 1]
  Array<float, 2> TraitEnvStat2;           // [NumTraits, NumEnvs + 1], handed along unread
  Array<std::int32_t, 1> KeptMarker;       // [NumMarkersKept], ascending MarkerIDs
  Array<std::int32_t, 1> KeptLine;         // [PopulationSizeKept], ascending LineIDs
  Array<float, 1> QTLEffect;               // [NumMarkers]
  Array<float, 1> GenotypicValue;          // [PopulationSize]
  Array<float, 1> QTLPVEGenetic;           // [NumMarkers]
  Array<float, 1> QTLPVEPhenotypic;        // [NumMarkers]

  OutputUnits Units;
};

// Releases whichever of the arrays are allocated.
void ReleaseRunData(RunData& run);

}  // namespace tov
