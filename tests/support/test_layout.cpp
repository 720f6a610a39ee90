// The writer of field layouts and of blank-separated item records.  Every expected text
// below is worked out by hand from the field rules.
#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/layout.hpp"

namespace velmoria {
namespace {

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
  // Integers; an overflowing field leaves the rest of the record as it is.
  EXPECT_EQ(sput("i1,a,i2", 10, "z", 5), "*z 5");
  std::array<float, 3> vk{0.5f, 0.0f, -0.25f};
  std::string out;
  put(out, "a,3f8.4,/,a,a2", " => Propagation vector: ", vk, " => BZ-point labelled as ", "X ");
  EXPECT_EQ(out,
            " => Propagation vector:   0.5000  0.0000 -0.2500\n"
            " => BZ-point labelled as X \n");
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
