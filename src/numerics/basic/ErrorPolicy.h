#pragma once
// The numerical routines' own error reporting: a process-wide policy of
// which severities are printed and which stop the program, and the
// severity of the last error raised.  Messages go to standard error, never
// to the log or to a result file.

#include <initializer_list>
#include <string>
#include <string_view>

namespace tov {

// Severities in the numbering that N1RTY returns.
enum Severity : int {
  SeverityNone = 0,
  SeverityNote = 1,
  SeverityAlert = 2,
  SeverityWarning = 3,
  SeverityFatal = 4,
  SeverityTerminal = 5,
  SeverityWarningRepaired = 6,
  SeverityFatalRepaired = 7,
};

// Sets the policy.  severity 0 applies the actions to all severities,
// 1..7 to that one only.  printAction: 0 do not print, 1 print, -1 leave
// as it is, 2 restore the default.  stopAction likewise with 0 do not stop,
// 1 stop.  ERSET(0, 0, 0) silences everything and stops on nothing.
void ERSET(int severity, int printAction, int stopAction);

// Severity of the last error raised since ClearLastError, 0 if none.
// The argument is kept for the traditional call N1RTY(1).
int N1RTY(int level);

// Forgets the last error; a caller that reads N1RTY after a routine clears
// it before the call.
void ClearLastError();

// Raised by a numerical routine: records the severity, prints
// "routine: text" on standard error when the policy prints it, and ends
// the process when the policy stops on it.
void RaiseError(Severity severity, const char* routine, const std::string& text);

// Fills the placeholders of a message: %(I1), %(I2), ... with the integers,
// %(R1), ... with the reals (shortest form that reads back to the same
// float) and %(L1), ... with the names, each by its number.  A placeholder
// without a value stays as it is.
std::string FillMessage(std::string_view pattern, std::initializer_list<long long> integers = {},
                        std::initializer_list<float> reals = {},
                        std::initializer_list<std::string_view> names = {});

}  // namespace tov
