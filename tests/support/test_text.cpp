// Word cutting, number scanning and operator coefficients: tables of input and result.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "support/text.hpp"

namespace velmoria {
namespace {

// The first word goes, the line keeps its length; (line, field width, word, rest, n1).
TEST(Text, CutFirstWord) {
  const struct {
    const char* line;
    int width;
    const char *word, *rest;
    int n1;
  } cases[] = {{"      ", 0, "", "", 0},
               {"  ATOM Fe1  0.1 0.2", 0, "ATOM", "Fe1  0.1 0.2", 12},
               {"Manganese1 x", 5, "Manga", "x", 1}};
  for (const auto& c : cases) {
    std::string line = c.line, word = "old";
    int n1 = -1, n2 = -1;
    if (c.width > 0) {
      cutst(line, &n1, &word, &n2, c.width);
    } else {
      cutst(line, &n1, &word, &n2);
      EXPECT_EQ(n1, c.n1) << c.line;
    }
    EXPECT_EQ(word, c.word) << c.line;
    EXPECT_EQ(n2, static_cast<int>(word.size())) << c.line;
    EXPECT_EQ(trim(line), c.rest) << c.line;
    EXPECT_EQ(line.size(), std::string(c.line).size()) << c.line;
  }
}

// Numbers of a line: how many, their real and integer values, and the message.  A bad word
// stops the scan with the numbers before it kept and the rest zero.
TEST(Text, GetnumScansSignedNumbers) {
  const std::string no_number = "The variable cannot be computed as a number in GETNUM ";
  const std::string limits = "Limits of digit variable exceeded in GETNUM";
  const struct {
    const char* line;
    int iv;
    std::vector<float> values;
    std::vector<int> integers;
    std::string message;
  } cases[] = {
      {"1.5 -2 3E2", 3, {1.5F, -2, 300, 0}, {1, -2, 3}, ""},
      // Lower-case exponent, a negative one, a leading point, a second point passed over.
      {"  2.5e-1  -.75 1.2.5 4E  ", 4, {0.25F, -0.75F, 1.25F, 4}, {2, 0, 1}, ""},
      {"1 2-3", 1, {}, {}, limits},
      {"0E99999999999 99999999999999 1E-99999", 3, {0}, {}, ""},
      {"0.25 0.5 Fe 0.75", 2, {0.25F, 0.5F, 0, 0}, {}, no_number},
  };
  for (const auto& c : cases) {
    std::array<float, 10> vet;
    std::array<int, 10> ivet{};
    vet.fill(9.0F);
    int iv = -1;
    getnum(c.line, vet, ivet, iv);
    EXPECT_EQ(err_string, !c.message.empty()) << c.line;
    if (!c.message.empty()) {
      EXPECT_EQ(err_string_mess, c.message) << c.line;
    }
    EXPECT_EQ(iv, c.iv) << c.line;
    for (std::size_t i = 0; i < c.values.size(); ++i)
      EXPECT_FLOAT_EQ(vet[i], c.values[i]) << c.line;
    for (std::size_t i = 0; i < c.integers.size(); ++i) EXPECT_EQ(ivet[i], c.integers[i]) << c.line;
  }
}

// Coefficients of x, y, z (or a, b, c) in one component; more than three signs give zeros,
// a letter met twice an error.
TEST(Text, CoefficientsOfAnOperatorComponent) {
  const struct {
    const char *text, *letters;
    std::array<float, 3> v;
  } cases[] = {{"-x/2", "xyz", {-0.5F, 0, 0}},
               {"1/2-z", "xyz", {0, 0, -1}},
               {" y - 2z ", "xyz", {0, 1, -2}},
               {"-b+a", "abc", {1, -1, 0}},
               {"x-y+z-1/2+1", "xyz", {0, 0, 0}}};
  for (const auto& c : cases) {
    std::array<float, 3> v{9, 9, 9};
    init_err_string();
    get_num_string(c.text, c.letters, v);
    EXPECT_EQ(v, c.v) << c.text;
    EXPECT_FALSE(err_string) << c.text;
  }
  std::array<float, 3> v{};
  get_num_string("x+x", "xyz", v);
  EXPECT_TRUE(err_string);
  EXPECT_EQ(err_string_mess, " The provided symbol is illegal: x+x");
}

}  // namespace
}  // namespace velmoria
