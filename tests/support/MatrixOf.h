#pragma once
// A matrix written row by row in a test, stored first index fastest.

#include <initializer_list>

#include "core/Array.h"

namespace tov::testing_support {

inline Array<float, 2> MatrixOf(std::initializer_list<std::initializer_list<float>> rows) {
  const int columns = rows.size() == 0 ? 0 : static_cast<int>(rows.begin()->size());
  Array<float, 2> a(static_cast<int>(rows.size()), columns);
  int i = 0;
  for (const auto& row : rows) {
    ++i;
    int j = 0;
    for (float v : row) a(i, ++j) = v;
  }
  return a;
}

}  // namespace tov::testing_support
