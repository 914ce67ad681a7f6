#pragma once
// The message catalogues.  A reader sets StatusCode, calls the catalogue of
// the code's range with the value at fault, and returns; the catalogue
// writes the code's text to the log and then to the console and leaves the
// status alone.  A code without a text writes nothing.
//
// Each catalogue has a pure Compose form, which returns the lines, and a
// Report form, which writes them.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/Clock.h"

namespace tov {

struct Message {
  std::string Log;
  std::string Console;
};
using Messages = std::vector<Message>;

// "HH:MM:SS.SSS on YYYY/MM/DD (yyyy/mm/dd)"
std::string FormatClock(const ClockReading& clock);

// "--Error2016: "
std::string ErrorPrefix(int code);
// Values in messages: an integer written to 8 columns, a real to 8 columns
// with 2 decimals, each left-adjusted and trimmed.
std::string MessageInteger(std::int64_t value);
std::string MessageReal(float value);

Messages ComposeRun(int code, std::string_view name, float cpuStart, float cpuEnd, const ClockReading& clock);
Messages ComposeCheck(int code, std::string_view name);
Messages ComposeMapping(int code, int id, int id2);
Messages ComposeInput(int code, int value);
Messages ComposeMarker(int code, int markerId, int lineId, std::string_view text);
Messages ComposePhenotype(int code, int value, std::string_view text);
Messages ComposeParameter(int code, int value, float real);
Messages ComposeModel(int code, int value, float real);

void ReportRun(int code, std::string_view name, float cpuStart = 0.0f, float cpuEnd = 0.0f);
void ReportCheck(int code, std::string_view name);
void ReportMapping(int code, int id, int id2);
void ReportInput(int code, int value);
void ReportMarker(int code, int markerId, int lineId, std::string_view text);
void ReportPhenotype(int code, int value, std::string_view text);
void ReportParameter(int code, int value, float real);
void ReportModel(int code, int value, float real);

}  // namespace tov
