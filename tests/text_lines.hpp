// Comparing written text line by line, for tests of whole sections and files.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace velmoria::testing {

// The lines of a text, without their line feeds.
inline std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

// Each differing line is reported (at most ten), then a difference in the number of lines.
inline void expect_same_lines(const std::string& what, const std::string& actual,
                              const std::string& expected) {
  const auto a = lines_of(actual);
  const auto e = lines_of(expected);
  int shown = 0;
  for (std::size_t i = 0; i < std::min(a.size(), e.size()) && shown < 10; ++i) {
    if (a[i] != e[i]) {
      ADD_FAILURE() << what << " line " << i + 1 << "\n  actual:   [" << a[i] << "]\n  expected: ["
                    << e[i] << "]";
      ++shown;
    }
  }
  EXPECT_EQ(a.size(), e.size()) << what << ": number of lines";
}

}  // namespace velmoria::testing
