#pragma once
// Cases of exact 32-bit results written by the float32 reference scripts
// (tests/mapping/reference/bit_cases.py): "case NAME", then one line per
// item "KEY f|i|s VALUES..." with floats as the hex of their bits, "end".

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/ScratchFile.h"

namespace tov::testing_support {

inline std::uint32_t Bits(float value) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

struct BitCase {
  std::map<std::string, std::vector<std::string>> Items;

  const std::vector<std::string>& Tokens(const std::string& key) const {
    static const std::vector<std::string> none;
    const auto item = Items.find(key);
    EXPECT_NE(item, Items.end()) << "no item " << key;
    return item == Items.end() ? none : item->second;
  }
  std::vector<float> Floats(const std::string& key) const {
    std::vector<float> values;
    for (const std::string& token : Tokens(key)) {
      const auto bits = static_cast<std::uint32_t>(std::stoul(token, nullptr, 16));
      std::memcpy(&values.emplace_back(), &bits, sizeof bits);
    }
    return values;
  }
  std::vector<int> Ints(const std::string& key) const {
    std::vector<int> values;
    for (const std::string& token : Tokens(key)) values.push_back(std::stoi(token));
    return values;
  }
};

// The cases of a data file under tests/, by name.
inline std::map<std::string, BitCase> ReadBitCases(const std::string& relativePath) {
  std::istringstream file(ReadWholeFile(std::string(TOV_SOURCE_DIR) + "/tests/" + relativePath));
  EXPECT_FALSE(file.str().empty()) << relativePath;
  std::map<std::string, BitCase> cases;
  BitCase* current = nullptr;
  for (std::string line; std::getline(file, line);) {
    std::istringstream words(line);
    std::string key, type;
    words >> key >> type;
    if (key == "case") {
      current = &cases[type];
    } else if (key != "end" && current != nullptr) {
      for (std::string token; words >> token;) current->Items[key].push_back(token);
    }
  }
  return cases;
}

// Every value bit for bit, NaN payloads aside.
inline void ExpectSameBits(const std::vector<float>& actual, const std::vector<float>& expected,
                           const std::string& what) {
  ASSERT_EQ(actual.size(), expected.size()) << what;
  for (std::size_t i = 0; i < actual.size(); ++i) {
    if (actual[i] != actual[i] && expected[i] != expected[i]) continue;
    EXPECT_EQ(Bits(actual[i]), Bits(expected[i])) << what << " [" << i << "]: " << actual[i] << " vs " << expected[i];
  }
}

}  // namespace tov::testing_support
