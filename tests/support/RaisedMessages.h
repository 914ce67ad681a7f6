#pragma once
// Runs a numerical routine under a policy that prints every message and
// stops on none, and returns what it printed on its channel.  The default
// policy is restored afterwards; N1RTY still tells the last severity.

#include <gtest/gtest.h>

#include <string>

#include "numerics/basic/ErrorPolicy.h"

namespace tov {

template <class Call>
std::string RaisedMessages(Call call) {
  ERSET(0, 1, 0);
  ClearLastError();
  testing::internal::CaptureStderr();
  call();
  std::string text = testing::internal::GetCapturedStderr();
  ERSET(0, 2, 2);
  return text;
}

inline bool Says(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

}  // namespace tov
