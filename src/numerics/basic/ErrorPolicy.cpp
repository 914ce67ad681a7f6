#include "numerics/basic/ErrorPolicy.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace tov {
namespace {

constexpr int kNumSeverities = 7;

bool DefaultPrint(int severity) { return severity >= SeverityWarning; }

bool DefaultStop(int severity) {
  return severity == SeverityFatal || severity == SeverityTerminal || severity == SeverityFatalRepaired;
}

// The one policy of the process, indexed by severity 1..7 (element 0 unused).
// Atomic, because the scans of simulations run on several threads and each
// stepwise selection sets the policy and may raise a (silenced) error.
struct ErrorPolicyState {
  std::array<std::atomic<bool>, kNumSeverities + 1> Print{};
  std::array<std::atomic<bool>, kNumSeverities + 1> Stop{};
  std::atomic<int> LastSeverity{SeverityNone};

  ErrorPolicyState() {
    for (int s = 1; s <= kNumSeverities; ++s) {
      Print[s] = DefaultPrint(s);
      Stop[s] = DefaultStop(s);
    }
  }
};

ErrorPolicyState& Policy() {
  static ErrorPolicyState state;
  return state;
}

// action: 0 off, 1 on, -1 unchanged, 2 the default for that severity.
void ApplyAction(std::atomic<bool>& setting, int action, bool defaultValue) {
  if (action == 0) setting = false;
  if (action == 1) setting = true;
  if (action == 2) setting = defaultValue;
}

bool IsValidAction(int action) { return action >= -1 && action <= 2; }

}  // namespace

void ERSET(int severity, int printAction, int stopAction) {
  if (severity < 0 || severity > kNumSeverities) {
    RaiseError(SeverityTerminal, "ERSET",
               FillMessage("The severity is %(I1); it must be between 0 and 7.", {severity}));
    return;
  }
  if (!IsValidAction(printAction) || !IsValidAction(stopAction)) {
    RaiseError(SeverityTerminal, "ERSET",
               FillMessage("The print action is %(I1) and the stop action %(I2); each must be -1, 0, 1 or 2.",
                           {printAction, stopAction}));
    return;
  }
  ErrorPolicyState& policy = Policy();
  const int first = severity == 0 ? 1 : severity;
  const int last = severity == 0 ? kNumSeverities : severity;
  for (int s = first; s <= last; ++s) {
    ApplyAction(policy.Print[s], printAction, DefaultPrint(s));
    ApplyAction(policy.Stop[s], stopAction, DefaultStop(s));
  }
}

int N1RTY(int /*level*/) { return Policy().LastSeverity; }

void ClearLastError() { Policy().LastSeverity = SeverityNone; }

void RaiseError(Severity severity, const char* routine, const std::string& text) {
  ErrorPolicyState& policy = Policy();
  policy.LastSeverity = severity;
  if (severity < 1 || severity > kNumSeverities) return;
  if (policy.Print[severity]) {
    std::fprintf(stderr, "%s: %s\n", routine, text.c_str());
    std::fflush(stderr);
  }
  if (policy.Stop[severity]) {
    // A stop ends the run like any other ended run: exit status 0, the
    // message above tells what happened.
    std::fflush(stdout);
    std::exit(0);
  }
}

}  // namespace tov
