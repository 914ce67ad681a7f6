#pragma once
// The fields of the fixed-column lines of a ".sta" the phenotype tests
// write through a scratch file and read back.

#include <string>

#include "support/ScratchFile.h"

namespace tov::testing_sta {

using testing_support::ScratchFile;

// The k-th field (0-based) of a line cut into fields of the given width.
inline std::string Field(const std::string& line, int k, int width) {
  const auto start = static_cast<std::size_t>(k * width);
  return start >= line.size() ? std::string() : line.substr(start, static_cast<std::size_t>(width));
}

inline double Number(const std::string& field) { return std::stod(field); }

}  // namespace tov::testing_sta
