// Text: word cutting, number scanning, operator coefficients and list-directed reading of one
// input line; the writer of field layouts and of blank-separated item records.  Tables of input
// and result, the expected texts worked out by hand from the field rules.
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "support/layout.hpp"
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

// Single values in integer and fixed-point fields: (layout, value, text).  Reals written
// from single precision are the float values themselves; exact binary ties go away from zero,
// values that only look like ties round by their exact binary value, and the zero before
// the point is dropped only when the field has no room for it and there are decimals.
TEST(Layout, SingleFields) {
  const struct {
    const char* layout;
    double value;
    const char* text;
  } cases[] = {
      {"i2", 100, "**"},  // three digits in two columns
      {"i1", -1, "*"},    // the minus sign takes a column
      {"i3", -12, "-12"},
      {"i3", static_cast<double>(-2.5f), " -3"},
      {"f6.4", -0.5, "-.5000"},  // no room for the zero
      {"f7.4", -0.5, "-0.5000"},
      {"f5.4", 0.5, ".5000"},
      {"f4.4", 0.5, "****"},
      {"f8.3", -1234.5, "********"},  // -1234.500 needs nine columns
      {"f6.4", 0.0, "0.0000"},
      {"f2.0", 0.4, "0."},
      {"f8.4", -0.0, " -0.0000"},
      {"f5.2", static_cast<double>(-0.125f), "-0.13"},
      {"f3.0", 9.5, "10."},
      {"f4.1", static_cast<double>(9.95f), " 9.9"},  // 9.95f is 9.9499998...
      {"f4.1", 0.15, " 0.1"},                        // 0.1499999999999999944...
      {"f4.1", static_cast<double>(0.15f), " 0.2"},  // 0.1500000059604644775...
  };
  for (const auto& c : cases)
    EXPECT_EQ(sput(c.layout, c.value), c.text) << c.layout << " " << c.value;
  // An overflowing field leaves the rest of the record as it is; the propagation-vector lines
  // the run writes through put are checked by the run-driver tests.
  EXPECT_EQ(sput("i1,a,i2", 10, "z", 5), "*z 5");
}

// Record ends, repetition that stops at the last item, and reversion: back to the last
// outermost group with its repetition, or to the start when there is no group.
TEST(Layout, RecordsRepetitionAndReversion) {
  const std::pair<std::string, std::string> cases[] = {
      {format_layout("/,a", make_items("x")), "\nx\n"},
      {format_layout("a,/", Items{}), "\n"},  // with no items the walk stops at a data field
      {sput("a,/,a", "p", "q"), "p\nq"},
      {sput("3(f8.5,a)", 0.5, ")"), " 0.50000)"},
      {sput("a,48(a,i2,a)", "Irep", "(", 1, ")", "(", 2, ")"), "Irep( 1)( 2)"},
      {sput("a,3(i2)", "v", std::vector<int>{4, 5, 6, 7}), "v 4 5 6\n 7"},
      {format_layout("a,i2", make_items("p", 1, "q", 2, "r")), "p 1\nq 2\nr\n"},
      {format_layout("a,2(i2),a", make_items("s", 1, 2, "t", 3, 4, "u")), "s 1 2t\n 3 4u\n"},
      {format_layout("i1,2(a,2(i1))", make_items(1, "a", 2, 3, "b", 4, 5, "c", 6)),
       "1a23b45\nc6\n"},
      {format_layout("2(a),i1,(i2)", make_items("a", "b", 1, 2, 3, 4)), "ab1 2\n 3\n 4\n"},
      {format_layout("a,3(i3)", make_items("x", 1, 2, 3)), "x  1  2  3\n"},
  };
  for (const auto& [got, text] : cases) EXPECT_EQ(got, text);
}

TEST(Layout, MalformedLayoutsAreProgrammingErrors) {
  const Items one = make_items(1);
  // The last two have no field for the item.
  for (const char* bad : {"i", "f5.", "q", "3(a", "a)", "a,,a", "0a", "2t3", "()", "i3 i3",
                          "f5.100", "1000(1001x)", "/", ""})
    EXPECT_THROW(format_layout(bad, one), std::logic_error) << bad;
  EXPECT_EQ(sput("1000(1000(i1))", 3, 4), "34");  // deep but legal
}

// Items separated by blanks: a text as it is, an integer right-justified in twelve columns,
// a real with nine significant digits in sixteen columns, behind one blank.
TEST(Layout, BlankSeparatedItems) {
  const std::pair<Items, std::string> cases[] = {
      {make_items("  IER: ", 5), "   IER:            5\n"},
      {make_items(-123, "x"), "         -123x\n"},
      {make_items(0.1f), "      0.100000001\n"},
      {make_items(-1e10), "  -1.00000000E+10\n"},
      {Items{}, " \n"}};
  for (const auto& [items, text] : cases) EXPECT_EQ(format_items(items), text);
}

}  // namespace
}  // namespace velmoria
