#pragma once
// Helpers of the phenotype tests: a scratch ".sta" written through a
// TextOutput and read back, and the fields of its fixed-column lines.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

#include "text/TextOutput.h"

namespace tov::testing_sta {

// A file in the temporary directory, removed at the end of the test.
class ScratchFile {
 public:
  explicit ScratchFile(const std::string& tag)
      : path_(std::filesystem::temp_directory_path() / ("tov-" + tag + "-" + std::to_string(::getpid()) + ".sta")) {
    unit_.Create(path_.string());
  }
  ~ScratchFile() { std::filesystem::remove(path_); }
  TextOutput& Unit() { return unit_; }

  // Closes the file and returns its lines.
  std::vector<std::string> Lines() {
    unit_.Close();
    std::ifstream file(path_);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
  }

 private:
  std::filesystem::path path_;
  TextOutput unit_;
};

// The k-th field (0-based) of a line cut into fields of the given width.
inline std::string Field(const std::string& line, int k, int width) {
  const auto start = static_cast<std::size_t>(k * width);
  return start >= line.size() ? std::string() : line.substr(start, static_cast<std::size_t>(width));
}

inline double Number(const std::string& field) { return std::stod(field); }

}  // namespace tov::testing_sta
