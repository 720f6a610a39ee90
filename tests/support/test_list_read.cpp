// List-directed reading of one input line: tables of lines and the values read.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>

#include "support/list_read.hpp"

namespace velmoria {
namespace {

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
