#include "core/Log.h"

namespace tov {

TextOutput& LogFile() {
  static TextOutput log;
  return log;
}

void Announce(std::string_view logLine, std::string_view consoleLine) {
  LogFile().WriteLine(logLine);
  WriteConsoleLine(consoleLine);
}

}  // namespace tov
