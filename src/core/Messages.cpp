#include "core/Messages.h"

#include <cstdio>

#include "core/Log.h"
#include "text/Format.h"

namespace tov {

namespace {

// A message that reads the same on the log and on the console.
Messages Same(std::string text) { return {Message{text, text}}; }

Messages Error(int code, std::string_view text) { return Same(ErrorPrefix(code) + std::string(text)); }

std::string Trimmed(std::string_view text) { return std::string(TrimTrailing(text)); }

void Write(const Messages& messages) {
  for (const Message& message : messages) Announce(message.Log, message.Console);
}

}  // namespace

std::string FormatClock(const ClockReading& clock) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d.%03d on %04d/%02d/%02d (yyyy/mm/dd)", clock.Hour,
                clock.Minute, clock.Second, clock.Millisecond, clock.Year, clock.Month, clock.Day);
  return buffer;
}

std::string ErrorPrefix(int code) { return "--Error" + FormatInteger(code, 4) + ": "; }

std::string MessageInteger(std::int64_t value) { return std::string(TrimBoth(FormatInteger(value, 8))); }

std::string MessageReal(float value) { return std::string(TrimBoth(FormatFixed(value, 8, 2))); }

Messages ComposeRun(int code, std::string_view name, float cpuStart, float cpuEnd, const ClockReading& clock) {
  const std::string Name = Trimmed(name);
  switch (code) {
    case 1001: {
      const std::string welcome = "Welcome to the use of " + Name + "!";
      const std::string start = "  " + Name + " starts at " + FormatClock(clock);
      return {Message{welcome, welcome}, Message{start, start}};
    }
    case 1002:
    case 1008:
    case 1009:
      return Error(code, Name + " does not exist, and the program stops!");
    case 1003:
      return {Message{ErrorPrefix(code) + "can not read the software name in mio file!",
                      ErrorPrefix(code) + "can not read the software name in  mio file!"}};
    case 1004:
      return Error(code, "software name in mio file out of range!");
    case 1005:
      return Error(code, "cannot read iuput file name in mio file!");
    case 1006:
      return Error(code, "cannot read PAR file name in mio file!");
    case 1007:
    case 1011:
    case 1013:
      return Same("  " + Name + " read successfully!");
    case 1010:
    case 1012: {
      const std::string text = "--Error found in " + Name + ". The program stops!";
      return {Message{text, text + " Check the log file for details!"}};
    }
    case 1014:
      return Same("  " + Name + " ends at " + FormatClock(clock));
    case 1015: {
      const float seconds = cpuEnd - cpuStart;
      const float minutes = seconds / 60.0f;
      return Same("CPU_TIME taken: " + std::string(TrimBoth(FormatFixed(minutes, 13, 3))) + " minutes or " +
                  std::string(TrimBoth(FormatFixed(seconds, 13, 3))) + " seconds");
    }
    case 1016:
      return Same("  Dealing with redundancy and multi-collinearality...");
    case 1017:
      return Same("  Permutation test is running...");
    case 1018:
      return Same("  QTL mapping is running...");
    case 1019:
      return Same("  Power simulation is running...");
    default:
      return {};
  }
}

Messages ComposeCheck(int code, std::string_view name) {
  const std::string Name = Trimmed(name);
  switch (code) {
    case 1101:
      return Error(code, "error found in DLL! DLL name=" + Name);
    case 1102:
      return Same(Name + " run successfully!");
    default:
      return {};
  }
}

Messages ComposeMapping(int code, int id, int id2) {
  switch (code) {
    case 1201:
      return Same("  QTL mapping for trait " + MessageInteger(id));
    case 1202:
      return Same("  QTL mapping for environment " + MessageInteger(id2));
    case 1203:
      return Same("    Single marker analysis ...");
    case 1213:
      return Same("    Stepwise regression for marker and marker-pair effects ...");
    case 1214:
      return Same("    RSTEP-LRT additive mapping...");
    case 1215:
      return Same("    RSTEP-LRT epistatic mapping...");
    case 1254:
      return Same("  Permutation test for single marker analysis ...");
    case 1260:
      return Same("  Permutation test for RSTEP-LRT additive mapping ...");
    case 1261:
      return Same("  Permutation test for RSTEP-LRT epistatic mapping ...");
    default:
      return {};
  }
}

Messages ComposeInput(int code, int value) {
  const std::string V = MessageInteger(value);
  switch (code) {
    case 2001:
      return Error(code, "cannot read Indicator for mapping (1) or simulation (2)!");
    case 2002:
      return Error(code, "Indicator=" + V + " out of range [1:2]!");
    case 2016:
      return Error(code, "cannot read Number of Markers (NumMarkers)!");
    case 2017:
      return Error(code, "Number of Markers=" + V + " out of range [1:]!");
    case 2018:
      return Error(code, "cannot read PopulationSize!");
    case 2019:
      return Error(code, "PopulationSize=" + V + " out of range [1:]!");
    case 2020:
      return Error(code, "cannot read Number of Traits (NumTraits)!");
    case 2021:
      return Error(code, "Number of Traits=" + V + " out of range [0:]!");
    case 2022:
      return Error(code, "cannot read Number of Environments (NumEnvs)!");
    case 2023:
      return Error(code, "Number of Environments=" + V + " out of range [1:]!");
    case 2024:
      return Error(code, "cannot read Number of Replications (NumReps)!");
    case 2025:
      return Error(code, "Number of Replications=" + V + " out of range [1:]!");
    case 2028:
      return Error(code, "too many markers! NumMarkers=" + V);
    case 2029:
      return Error(code, "cannot read Indicator, Times, and TypeI error for PermuTest!");
    case 2030:
      return Error(code, "Indicator of permutation test out of range [0,1]!");
    case 2031:
      return Error(code, "Times of permutation test out of range [1,1000]!");
    case 2032:
      return Error(code, "Type I error rate of permutation test out of range (0,0.5)!");
    default:
      return {};
  }
}

Messages ComposeMarker(int code, int markerId, int lineId, std::string_view text) {
  const std::string M = MessageInteger(markerId);
  const std::string L = MessageInteger(lineId);
  const std::string T = Trimmed(text);
  switch (code) {
    case 2201:
    case 2210:
      return Error(code, "cannot read MarkerType! MarkerID=" + M);
    case 2211:
      return Error(code, "Invalid MarkerType! MarkerID=" + M + " LineID=" + L + " Input MarkerType=" + T);
    case 2230:
      return Error(code, "two markers have same name! MarkerID1=" + M + " MarkerID2=" + L + " MarkerName=" + T);
    default:
      return {};
  }
}

Messages ComposePhenotype(int code, int value, std::string_view text) {
  const std::string V = MessageInteger(value);
  switch (code) {
    case 2405:
      return Error(code, "cannot read TraitName and Phenotype! TraitID=" + V);
    case 2406:
      return Error(code, "Invalid phenotype found! TraitID=" + V + " TraitName=" + Trimmed(text));
    case 2407:
      // The token stands at its full width, trailing blanks included.
      return Error(code, "Individual or line = " + V + "; invalid phenotype = " + std::string(text));
    default:
      return {};
  }
}

Messages ComposeParameter(int code, int value, float real) {
  const std::string V = MessageInteger(value);
  const std::string R = MessageReal(real);
  switch (code) {
    case 3003:
      return Error(code, "cannot read single marker analysis Indicator, Threshold LOD!");
    case 3004:
      return Error(code, "Indicator for single marker analysis out of range [0,1]! SMA Indicator=" + V);
    case 3005:
      return Error(code, "Threshold LOD for single marker analysis too small (>0.5)! SMA Threshold LOD=" + R);
    case 3051:
      return Error(code, "cannot read conditional number to handle multicollinearity!");
    case 3052:
      return Error(code, "cannot read Indicator, LOD Threshold, PIN for additive mapping!");
    case 3053:
      return Error(code, "Indicator for additive mapping out of range [0,1]! ICIM Indicator=" + V);
    case 3054:
      return Error(code, "LOD Threshold for additive mapping too small (>0.5)! LOD Threshold=" + R);
    case 3055:
      return Error(code, "PIN for additive mapping should be less than 0.25! PIN=" + R);
    default:
      return {};
  }
}

Messages ComposeModel(int code, int value, float real) {
  const std::string V = MessageInteger(value);
  const std::string R = MessageReal(real);
  switch (code) {
    case 3501:
      return Error(code, "cannot read NumQTL, NumSimulations, Heritability!");
    case 3502:
      return Error(code, "Number of QTL must be a positive integer number! NumQTL=" + V);
    case 3503:
      return Error(code, "Number of Simulations must be a positive integer number! NumSimulations=" + V);
    case 3504:
      return Error(code, "Heritability out of range (0.0, 1.0)! Heritability=" + R);
    case 3505:
      return Error(code, "cannot read QTL positions (i.e. markers having QTL)!");
    case 3506:
      return Error(code, "QTL position out of range [1, NumMarkers]! QTL position=" + V);
    case 3507:
      return Error(code, "cannot read QTL effects!");
    default:
      return {};
  }
}

void ReportRun(int code, std::string_view name, float cpuStart, float cpuEnd) {
  const bool readsClock = code == 1001 || code == 1014;
  Write(ComposeRun(code, name, cpuStart, cpuEnd, readsClock ? ReadLocalClock() : ClockReading{}));
}
void ReportCheck(int code, std::string_view name) { Write(ComposeCheck(code, name)); }
void ReportMapping(int code, int id, int id2) { Write(ComposeMapping(code, id, id2)); }
void ReportInput(int code, int value) { Write(ComposeInput(code, value)); }
void ReportMarker(int code, int markerId, int lineId, std::string_view text) {
  Write(ComposeMarker(code, markerId, lineId, text));
}
void ReportPhenotype(int code, int value, std::string_view text) { Write(ComposePhenotype(code, value, text)); }
void ReportParameter(int code, int value, float real) { Write(ComposeParameter(code, value, real)); }
void ReportModel(int code, int value, float real) { Write(ComposeModel(code, value, real)); }

}  // namespace tov
