// Text: word cutting, number scanning, operator coefficients, and list-directed reading of one
// input line.  Tables of input and result.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>
#include <vector>

#include "support/list_read.hpp"
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

// Three integers read over (4, 5, 6): repeat counts, "/" ending the read, empty tokens that
// leave an item as it was, what follows the last item not read, and short lines or bad
// tokens failing with the items before them read.
TEST(ListRead, IntegerLines) {
  const struct {
    const char* line;
    bool ok;
    std::array<int, 3> values;
  } cases[] = {
      {"2*, 7", true, {4, 5, 7}},      {"5*4", true, {4, 4, 4}},    {"0*4", false, {4, 5, 6}},
      {"1 2 / 3", true, {1, 2, 6}},    {"1/", true, {1, 5, 6}},     {"1 , , 3", true, {1, 5, 3}},
      {"1 2 3 junk", true, {1, 2, 3}}, {"1 x 3", false, {1, 5, 6}}, {"+7 -12 0", true, {7, -12, 0}},
  };
  for (const auto& c : cases) {
    std::array<int, 3> a{4, 5, 6};
    EXPECT_EQ(read_list(c.line, a), c.ok) << c.line;
    EXPECT_EQ(a, c.values) << c.line;
  }
  int i = 5;
  for (const char* bad : {"1.", "1e2", "+", "1-2", "99999999999", "'3'", "   "})
    EXPECT_FALSE(read_list(bad, i)) << bad;
  EXPECT_EQ(i, 5);
}

TEST(ListRead, RealTokens) {
  std::array<float, 8> v{};
  EXPECT_TRUE(read_list("1 2. .5 -1.5e2 1.5D-1 +3E+1 2d1 -0", v));
  EXPECT_EQ(v, (std::array<float, 8>{1.0f, 2.0f, 0.5f, -150.0f, 0.15f, 30.0f, 20.0f, 0.0f}));
  float f = 9.0f;
  for (const char* bad : {"e5", ".", "1.2.3", "1e+", "'1.5'", "1e99"})
    EXPECT_FALSE(read_list(bad, f)) << bad;
  EXPECT_EQ(f, 9.0f);
  double d = 0.0;
  EXPECT_TRUE(read_list("1e99", d));
  EXPECT_EQ(d, 1e99);
  std::string s;  // values of each kind in one list
  int i = 0;
  EXPECT_TRUE(read_list("  7 2*2.5 abc", i, v[0], f, s));
  EXPECT_EQ(std::tuple(i, v[0], f, s), std::tuple(7, 2.5f, 2.5f, std::string("abc")));
}

// Texts: quoted with doubled quotes inside, "/" a character inside quotes and an end outside.
TEST(ListRead, Texts) {
  const struct {
    const char* line;
    bool ok;
    const char *a, *b;
  } cases[] = {{"'it''s',\"say \"\"hi\"\"\"", true, "it's", "say \"hi\""},
               {"'' ab'c", true, "", "ab'c"},
               {"'a/b' c", true, "a/b", "c"},
               {"ab/ c", true, "ab", "-"},
               {"'open", false, "-", "-"}};
  for (const auto& c : cases) {
    std::string a = "-", b = "-";
    EXPECT_EQ(read_list(c.line, a, b), c.ok) << c.line;
    if (!c.ok) continue;
    EXPECT_EQ(a, c.a) << c.line;
    EXPECT_EQ(b, c.b) << c.line;
  }
}

}  // namespace
}  // namespace velmoria
