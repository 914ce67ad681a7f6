#pragma once
// The stream handles of the result files and the files behind them.

#include <array>

#include "text/TextOutput.h"

namespace tov {

enum Unit : int {
  UnitCoe = 3001,
  UnitSta = 3002,
  UnitStp = 3003,
  UnitMtp = 3004,
  UnitRsm = 3101,
  UnitQsm = 3102,
  UnitTsm = 3103,
  UnitPsm = 3104,
  UnitRic = 3201,
  UnitQic = 3202,
  UnitTic = 3203,
  UnitPic = 3204,
  UnitRice = 3301,
  UnitQice = 3302,
  UnitTice = 3303,
  UnitPice = 3304,
};

class OutputUnits {
 public:
  // The file of a handle: the four hundreds-groups of handles hold four
  // units each.
  TextOutput& operator[](Unit unit) {
    const int group = unit / 100 - 30;
    const int member = unit % 100 - 1;
    return files_[static_cast<std::size_t>(group * 4 + member)];
  }

 private:
  std::array<TextOutput, 16> files_;
};

}  // namespace tov
