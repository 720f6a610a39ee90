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
      {"i2", -1, "-1"},
      {"i3", 0, "  0"},
      {"i1", 0, "0"},
      {"i4", 7, "   7"},
      {"i3", -12, "-12"},
      {"i2", -12, "**"},
      {"i3", 2.5, "  3"},
      {"i3", static_cast<double>(-2.5f), " -3"},
      {"i3", 2.49, "  2"},
      {"i2", 1e30, "**"},
      {"f6.4", -0.5, "-.5000"},  // no room for the zero
      {"f7.4", -0.5, "-0.5000"},
      {"f7.4", 0.5, " 0.5000"},
      {"f5.4", 0.5, ".5000"},
      {"f4.4", 0.5, "****"},
      {"f8.4", static_cast<double>(1.25f), "  1.2500"},
      {"f8.4", -12.0625, "-12.0625"},
      {"f8.3", 12345.0, "********"},  // 12345.000 needs nine columns
      {"f8.3", -1234.5, "********"},  // -1234.500 needs nine columns
      {"f9.3", -1234.5, "-1234.500"},
      {"f6.4", 0.0, "0.0000"},
      {"f5.4", 0.0, ".0000"},
      {"f2.0", 0.4, "0."},
      {"f1.0", 0.4, "*"},
      {"f4.0", 12.0, " 12."},
      {"f8.4", -0.00001, " -0.0000"},
      {"f8.4", -0.0, " -0.0000"},
      {"f5.1", 3, "  3.0"},
      {"f5.2", static_cast<double>(0.125f), " 0.13"},
      {"f5.2", static_cast<double>(-0.125f), "-0.13"},
      {"f3.0", 2.5, " 3."},
      {"f4.0", -2.5, " -3."},
      {"f4.1", 0.25, " 0.3"},
      {"f6.4", 0.96875, "0.9688"},
      {"f3.0", 9.5, "10."},
      {"f4.0", 99.5, "100."},
      {"f3.0", 0.5, " 1."},
      {"f4.3", 0.9375, ".938"},
      {"f4.1", static_cast<double>(9.95f), " 9.9"},  // 9.95f is 9.9499998...
      {"f4.1", 0.15, " 0.1"},                        // 0.1499999999999999944...
      {"f4.1", static_cast<double>(0.15f), " 0.2"},  // 0.1500000059604644775...
      {"f4.1", 0.35, " 0.3"},                        // 0.3499999999999999777...
      {"f5.2", 1.005, " 1.00"},                      // 1.0049999999999998934...
      {"f8.5", 1.0 / 3.0, " 0.33333"},
      {"f8.5", 2.0 / 3.0, " 0.66667"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(sput(c.layout, c.value), c.text) << c.layout << " " << c.value;
  // Integers; an overflowing field leaves the rest of the record as it is.
  EXPECT_EQ(sput("i2", -1), "-1");
  EXPECT_EQ(sput("3i3", 1, -2, 30), "  1 -2 30");
  EXPECT_EQ(sput("i1,a,i2", 10, "z", 5), "*z 5");
  EXPECT_EQ(sput("f5.1", 3), "  3.0");
  std::array<float, 3> vk{0.5f, 0.0f, -0.25f};
  std::string out;
  put(out, "a,3f8.4,/,a,a2", " => Propagation vector: ", vk, " => BZ-point labelled as ", "X ");
  EXPECT_EQ(out,
            " => Propagation vector:   0.5000  0.0000 -0.2500\n"
            " => BZ-point labelled as X \n");
}

TEST(Layout, RecordEnds) {
  EXPECT_EQ(format_layout("/,a", make_items("x")), "\nx\n");
  EXPECT_EQ(format_layout("a,/", make_items("x")), "x\n\n");
  EXPECT_EQ(format_layout("a,/,a", make_items("p", "q")), "p\nq\n");
  // With no items the walk stops at the first data field.
  EXPECT_EQ(format_layout("a,/", Items{}), "\n");
  EXPECT_EQ(format_layout("/,a", Items{}), "\n\n");
  EXPECT_EQ(format_layout("", Items{}), "\n");
  EXPECT_EQ(sput("a,/,a", "p", "q"), "p\nq");
}

TEST(Layout, RepetitionStopsAtLastItem) {
  EXPECT_EQ(sput("3(f8.5,a)", 0.5, ")"), " 0.50000)");
  EXPECT_EQ(sput("2(a,i1)", "p", 1, "q"), "p1q");
  EXPECT_EQ(sput("3i3", 1, 2), "  1  2");
  EXPECT_EQ(sput("a,48(a,i2,a)", "Irep", "(", 1, ")", "(", 2, ")"), "Irep( 1)( 2)");
  EXPECT_EQ(sput("a,3(a,i1),a", "k:", " ", 4, " ", 5), "k: 4 5");
  // An array expands into its elements.
  std::vector<int> v{4, 5, 6, 7};
  EXPECT_EQ(sput("a,3(i2)", "v", v), "v 4 5 6\n 7");
}

TEST(Layout, Reversion) {
  // Back to the last outermost group, with its repetition.
  EXPECT_EQ(format_layout("a,3(i3)", make_items("x", 1, 2, 3, 4, 5, 6, 7)),
            "x  1  2  3\n  4  5  6\n  7\n");
  // Without a group, back to the start.
  EXPECT_EQ(format_layout("a,i2", make_items("p", 1, "q", 2, "r")), "p 1\nq 2\nr\n");
  EXPECT_EQ(format_layout("3i2", make_items(1, 2, 3, 4)), " 1 2 3\n 4\n");
  // The layout goes on behind the group to its end.
  EXPECT_EQ(format_layout("a,2(i2),a", make_items("s", 1, 2, "t", 3, 4, "u")), "s 1 2t\n 3 4u\n");
  // Nested groups: the outermost one is taken.
  EXPECT_EQ(format_layout("i1,2(a,2(i1))", make_items(1, "a", 2, 3, "b", 4, 5, "c", 6)),
            "1a23b45\nc6\n");
  // Of several groups, the last.
  EXPECT_EQ(format_layout("2(a),i1,(i2)", make_items("a", "b", 1, 2, 3, 4)), "ab1 2\n 3\n 4\n");
  // Items that end exactly with the layout make no further record.
  EXPECT_EQ(format_layout("a,3(i3)", make_items("x", 1, 2, 3)), "x  1  2  3\n");
}

TEST(Layout, MalformedLayoutsAreProgrammingErrors) {
  const Items one = make_items(1);
  for (const char* bad : {"i", "f5", "f5.", "q", "3(a", "a)", "a,,a", "a,", "0a", "t0", "2t3", "()",
                          "a0", "i3 i3", "f5.100", "1000000a", "1000(1001x)"}) {
    EXPECT_THROW(format_layout(bad, one), std::logic_error) << bad;
  }
  // Items given to a layout that has no field for them.
  EXPECT_THROW(format_layout("/", one), std::logic_error);
  EXPECT_THROW(format_layout("", one), std::logic_error);
  EXPECT_THROW(format_layout("a,(3x)", make_items("p", "q")), std::logic_error);
  // A deep but legal nesting works.
  EXPECT_EQ(sput("((((((i2))))))", 3), " 3");
  EXPECT_EQ(sput("1000(1000(i1))", 3, 4), "34");
}

// Items separated by blanks: a text as it is, an integer right-justified in twelve columns,
// a real with nine significant digits in sixteen columns, behind one blank.
TEST(Layout, BlankSeparatedItems) {
  const std::pair<Items, std::string> cases[] = {
      {make_items(" "), "  \n"},
      {make_items(" The conventional k-vector is"), "  The conventional k-vector is\n"},
      {make_items("  IER: ", 5), "   IER:            5\n"},
      {make_items(-123, "x"), "         -123x\n"},
      {make_items(1.5f), "       1.50000000\n"},
      {make_items(0.1f), "      0.100000001\n"},
      {make_items(-1e10), "  -1.00000000E+10\n"},
      {Items{}, " \n"}};
  for (const auto& [items, text] : cases) EXPECT_EQ(format_items(items), text);
}

}  // namespace
}  // namespace velmoria
