#pragma once
// Tables of cases kept as data files under tests/: one case a line, its
// fields separated by " | ", \n, \r and \t as in C (a backslash before
// any other character: that character); lines empty or starting with '#'
// are left out.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

namespace tov::testing_support {

inline std::vector<std::vector<std::string>> ReadCaseTable(const std::string& relativePath) {
  std::ifstream file(std::string(TOV_SOURCE_DIR) + "/tests/" + relativePath);
  EXPECT_TRUE(file.is_open()) << relativePath;
  std::vector<std::vector<std::string>> cases;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string>& fields = cases.emplace_back(1);
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (line.compare(i, 3, " | ") == 0) {
        fields.emplace_back();
        i += 2;
      } else if (line[i] == '\\' && i + 1 < line.size()) {
        const char c = line[++i];
        fields.back() += c == 'n' ? '\n' : c == 'r' ? '\r' : c == 't' ? '\t' : c;
      } else {
        fields.back() += line[i];
      }
    }
  }
  return cases;
}

// The words of a field, each read as a T (a float by strtof, hex floats too).
template <class T>
std::vector<T> Words(const std::string& field) {
  std::istringstream words(field);
  std::vector<T> values;
  for (std::string word; words >> word;) {
    if constexpr (std::is_same_v<T, std::string>)
      values.push_back(word);
    else if constexpr (std::is_same_v<T, float>)
      values.push_back(std::strtof(word.c_str(), nullptr));
    else
      values.push_back(static_cast<T>(std::stoll(word)));
  }
  return values;
}

}  // namespace tov::testing_support
