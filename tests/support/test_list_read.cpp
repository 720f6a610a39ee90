// List-directed reading of one input line.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "support/list_read.hpp"

namespace velmoria {
namespace {

TEST(ListRead, ValuesOfEachKind) {
  int i = 0;
  float f = 0.0f;
  double d = 0.0;
  std::string s;
  EXPECT_TRUE(read_list("  7 2.5  0.1 abc", i, f, d, s));
  EXPECT_EQ(i, 7);
  EXPECT_EQ(f, 2.5f);
  EXPECT_EQ(d, 0.1);
  EXPECT_EQ(s, "abc");
  // A comma separates as well as blanks; a comma among blanks is one separator.
  EXPECT_TRUE(read_list("1,2.0 , xy", i, f, s));
  EXPECT_EQ(i, 1);
  EXPECT_EQ(f, 2.0f);
  EXPECT_EQ(s, "xy");
  // What follows the last item is not read.
  EXPECT_TRUE(read_list("3 junk", i));
  EXPECT_EQ(i, 3);
}

TEST(ListRead, RealTokens) {
  std::array<float, 8> v{};
  EXPECT_TRUE(read_list("1 2. .5 -1.5e2 1.5D-1 +3E+1 2d1 -0", v));
  EXPECT_EQ(v[0], 1.0f);
  EXPECT_EQ(v[1], 2.0f);
  EXPECT_EQ(v[2], 0.5f);
  EXPECT_EQ(v[3], -150.0f);
  EXPECT_EQ(v[4], 0.15f);
  EXPECT_EQ(v[5], 30.0f);
  EXPECT_EQ(v[6], 20.0f);
  EXPECT_EQ(v[7], 0.0f);
  float f = 9.0f;
  for (const char* bad : {"e5", ".", "1.2.3", "1.5e", "1.5x", "--1", "1e+", "x", "'1.5'", "1e99"}) {
    EXPECT_FALSE(read_list(bad, f)) << bad;
  }
  EXPECT_EQ(f, 9.0f);
  double d = 0.0;
  EXPECT_TRUE(read_list("1e99", d));
  EXPECT_EQ(d, 1e99);
}

TEST(ListRead, IntegerTokensHaveDigitsAndSignOnly) {
  int i = 5;
  EXPECT_TRUE(read_list("+7", i));
  EXPECT_EQ(i, 7);
  EXPECT_TRUE(read_list("-12", i));
  EXPECT_EQ(i, -12);
  for (const char* bad : {"1.0", "1.", "1e2", "-", "+", "1-2", "99999999999", "'3'"}) {
    EXPECT_FALSE(read_list(bad, i)) << bad;
  }
  EXPECT_EQ(i, -12);
}

TEST(ListRead, RepeatCounts) {
  std::array<int, 3> a{};
  EXPECT_TRUE(read_list("3*2", a));
  EXPECT_EQ(a, (std::array<int, 3>{2, 2, 2}));
  std::array<float, 3> f{};
  EXPECT_TRUE(read_list("2*1.5, 4", f));
  EXPECT_EQ(f, (std::array<float, 3>{1.5f, 1.5f, 4.0f}));
  // "r*" alone gives r empty tokens.
  a = {9, 9, 0};
  EXPECT_TRUE(read_list("2*, 7", a));
  EXPECT_EQ(a, (std::array<int, 3>{9, 9, 7}));
  a = {9, 9, 0};
  EXPECT_TRUE(read_list("2* 7", a));
  EXPECT_EQ(a, (std::array<int, 3>{9, 9, 7}));
  // More repeats than items left: the rest is not needed.
  std::array<int, 2> b{};
  EXPECT_TRUE(read_list("5*4", b));
  EXPECT_EQ(b, (std::array<int, 2>{4, 4}));
  EXPECT_FALSE(read_list("0*4", b));
  std::string s1, s2;
  EXPECT_TRUE(read_list("2*'a b'", s1, s2));
  EXPECT_EQ(s1, "a b");
  EXPECT_EQ(s2, "a b");
}

TEST(ListRead, SlashEndsTheRead) {
  std::array<int, 4> a{};
  EXPECT_TRUE(read_list("1 2 / 3", a));
  EXPECT_EQ(a, (std::array<int, 4>{1, 2, 0, 0}));
  a = {5, 6, 7, 8};
  EXPECT_TRUE(read_list("/", a));
  EXPECT_EQ(a, (std::array<int, 4>{5, 6, 7, 8}));
  EXPECT_TRUE(read_list("1/", a));
  EXPECT_EQ(a, (std::array<int, 4>{1, 6, 7, 8}));
  // Inside quotes "/" is a character.
  std::string s;
  int i = 0;
  EXPECT_TRUE(read_list("'a/b' 2", s, i));
  EXPECT_EQ(s, "a/b");
  EXPECT_EQ(i, 2);
  // Outside quotes it also ends an unquoted text.
  s.clear();
  i = 4;
  EXPECT_TRUE(read_list("ab/ 2", s, i));
  EXPECT_EQ(s, "ab");
  EXPECT_EQ(i, 4);
}

TEST(ListRead, EmptyTokensLeaveItemsUnchanged) {
  std::array<int, 3> a{4, 5, 6};
  EXPECT_TRUE(read_list("1,,3", a));
  EXPECT_EQ(a, (std::array<int, 3>{1, 5, 3}));
  a = {4, 5, 6};
  EXPECT_TRUE(read_list("1 , , 3", a));
  EXPECT_EQ(a, (std::array<int, 3>{1, 5, 3}));
  a = {4, 5, 6};
  EXPECT_TRUE(read_list(",8 9", a));
  EXPECT_EQ(a, (std::array<int, 3>{4, 8, 9}));
  a = {4, 5, 6};
  EXPECT_TRUE(read_list(" , , ,", a));
  EXPECT_EQ(a, (std::array<int, 3>{4, 5, 6}));
}

TEST(ListRead, ShortLineIsAFailure) {
  std::array<int, 3> a{0, 0, 9};
  EXPECT_FALSE(read_list("1 2", a));
  EXPECT_EQ(a, (std::array<int, 3>{1, 2, 9}));  // what was read keeps its value
  int i = 3;
  EXPECT_FALSE(read_list("", i));
  EXPECT_FALSE(read_list("   ", i));
  EXPECT_FALSE(read_list("1,", i, i));
  EXPECT_EQ(i, 1);
  EXPECT_TRUE(read_list("  "));  // nothing to read
  // A bad token stops the read; items before it keep their new values.
  std::array<float, 3> f{0, 0, 0};
  EXPECT_FALSE(read_list("1 x 3", f));
  EXPECT_EQ(f, (std::array<float, 3>{1.0f, 0.0f, 0.0f}));
}

TEST(ListRead, QuotedTexts) {
  std::string a, b;
  EXPECT_TRUE(read_list("'a b, c' x", a, b));
  EXPECT_EQ(a, "a b, c");
  EXPECT_EQ(b, "x");
  EXPECT_TRUE(read_list("'it''s',\"say \"\"hi\"\"\"", a, b));
  EXPECT_EQ(a, "it's");
  EXPECT_EQ(b, "say \"hi\"");
  EXPECT_TRUE(read_list("''", a));
  EXPECT_EQ(a, "");
  EXPECT_FALSE(read_list("'open", a));
  EXPECT_FALSE(read_list("'a'b", a));
  // A quote inside an unquoted word is a character.
  EXPECT_TRUE(read_list("ab'c", a));
  EXPECT_EQ(a, "ab'c");
}

}  // namespace
}  // namespace velmoria
