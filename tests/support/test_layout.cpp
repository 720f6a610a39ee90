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

std::string blanks(std::size_t n) {
  return std::string(n, ' ');
}

TEST(Layout, IntegerFields) {
  EXPECT_EQ(sput("i2", 100), "**");  // three digits in two columns
  EXPECT_EQ(sput("i1", -1), "*");    // the minus sign takes a column
  EXPECT_EQ(sput("i2", -1), "-1");
  EXPECT_EQ(sput("i3", 0), "  0");
  EXPECT_EQ(sput("i1", 0), "0");
  EXPECT_EQ(sput("i4", 7), "   7");
  EXPECT_EQ(sput("i3", -12), "-12");
  EXPECT_EQ(sput("i2", -12), "**");
  EXPECT_EQ(sput("3i3", 1, -2, 30), "  1 -2 30");
  // An overflowing field leaves the rest of the record as it is.
  EXPECT_EQ(sput("i1,a,i2", 10, "z", 5), "*z 5");
  // A real in an integer field goes to the nearest integer, halves away from zero.
  EXPECT_EQ(sput("i3", 2.5), "  3");
  EXPECT_EQ(sput("i3", -2.5f), " -3");
  EXPECT_EQ(sput("i3", 2.49), "  2");
  EXPECT_EQ(sput("i2", 1e30), "**");
}

TEST(Layout, FixedPointFields) {
  EXPECT_EQ(sput("f6.4", -0.5), "-.5000");  // no room for the zero
  EXPECT_EQ(sput("f7.4", -0.5), "-0.5000");
  EXPECT_EQ(sput("f7.4", 0.5), " 0.5000");
  EXPECT_EQ(sput("f5.4", 0.5), ".5000");
  EXPECT_EQ(sput("f4.4", 0.5), "****");
  EXPECT_EQ(sput("f8.4", 1.25f), "  1.2500");
  EXPECT_EQ(sput("f8.4", -12.0625), "-12.0625");
  EXPECT_EQ(sput("f8.3", 12345.0), "********");  // 12345.000 needs nine columns
  EXPECT_EQ(sput("f8.3", -1234.5), "********");  // -1234.500 needs nine columns
  EXPECT_EQ(sput("f9.3", -1234.5), "-1234.500");
  EXPECT_EQ(sput("f6.4", 0.0), "0.0000");
  EXPECT_EQ(sput("f5.4", 0.0), ".0000");
  // With no decimals the zero before the point is the only digit and stays.
  EXPECT_EQ(sput("f2.0", 0.4), "0.");
  EXPECT_EQ(sput("f1.0", 0.4), "*");
  EXPECT_EQ(sput("f4.0", 12.0), " 12.");
  // A negative value keeps its sign when it rounds to zero, and so does -0.
  EXPECT_EQ(sput("f8.4", -0.00001), " -0.0000");
  EXPECT_EQ(sput("f8.4", -0.0), " -0.0000");
  // An integer in a fixed-point field is written as a real.
  EXPECT_EQ(sput("f5.1", 3), "  3.0");
  // The line of a propagation vector and its label.
  std::array<float, 3> vk{0.5f, 0.0f, -0.25f};
  std::string out;
  put(out, "a,3f8.4,/,a,a2", " => Propagation vector: ", vk, " => BZ-point labelled as ", "X ");
  EXPECT_EQ(out,
            " => Propagation vector:   0.5000  0.0000 -0.2500\n"
            " => BZ-point labelled as X \n");
}

TEST(Layout, FixedPointRoundsExactValueHalvesAway) {
  // Exact binary ties go away from zero (printf alone would round them to even).
  EXPECT_EQ(sput("f5.2", 0.125f), " 0.13");
  EXPECT_EQ(sput("f5.2", -0.125f), "-0.13");
  EXPECT_EQ(sput("f3.0", 2.5), " 3.");
  EXPECT_EQ(sput("f4.0", -2.5), " -3.");
  EXPECT_EQ(sput("f4.1", 0.25), " 0.3");
  EXPECT_EQ(sput("f6.4", 0.96875), "0.9688");
  // Carries run through the point and may add a digit.
  EXPECT_EQ(sput("f3.0", 9.5), "10.");
  EXPECT_EQ(sput("f4.0", 99.5), "100.");
  EXPECT_EQ(sput("f3.0", 0.5), " 1.");
  EXPECT_EQ(sput("f4.3", 0.9375), ".938");
  EXPECT_EQ(sput("f4.1", 9.95f), " 9.9");  // 9.95f is 9.9499998...
  // Values that only look like ties round by their exact binary value.
  EXPECT_EQ(sput("f4.1", 0.15), " 0.1");    // 0.1499999999999999944...
  EXPECT_EQ(sput("f4.1", 0.15f), " 0.2");   // 0.1500000059604644775...
  EXPECT_EQ(sput("f4.1", 0.35), " 0.3");    // 0.3499999999999999777...
  EXPECT_EQ(sput("f5.2", 1.005), " 1.00");  // 1.0049999999999998934...
  EXPECT_EQ(sput("f8.5", 1.0 / 3.0), " 0.33333");
  EXPECT_EQ(sput("f8.5", 2.0 / 3.0), " 0.66667");
}

TEST(Layout, RecordEnds) {
  EXPECT_EQ(format_layout("/,a", make_items("x")), "\nx\n");
  EXPECT_EQ(format_layout("a,/", make_items("x")), "x\n\n");
  EXPECT_EQ(format_layout("/,/,a", make_items("x")), "\n\nx\n");
  EXPECT_EQ(format_layout("a,/,a", make_items("p", "q")), "p\nq\n");
  EXPECT_EQ(format_layout("a/a", make_items("p", "q")), "p\nq\n");
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

TEST(Layout, BlankSeparatedItems) {
  std::string out;
  put_items(out, " ");
  EXPECT_EQ(out, "  \n");
  out.clear();
  put_items(out, " The conventional k-vector is");
  EXPECT_EQ(out, "  The conventional k-vector is\n");
  // An integer stands right-justified in twelve columns of its own.
  out.clear();
  put_items(out, "  IER: ", 5);
  EXPECT_EQ(out, "   IER: " + blanks(11) + "5\n");
  out.clear();
  put_items(out, -123, "x");
  EXPECT_EQ(out, " " + blanks(8) + "-123x\n");
  // A real has nine significant digits in sixteen columns.
  EXPECT_EQ(format_items(make_items(1.5f)), " " + blanks(6) + "1.50000000\n");
  EXPECT_EQ(format_items(make_items(0.1f)), " " + blanks(5) + "0.100000001\n");
  EXPECT_EQ(format_items(make_items(-1e10)), " " + blanks(1) + "-1.00000000E+10\n");
  EXPECT_EQ(format_items(Items{}), " \n");
}

}  // namespace
}  // namespace velmoria
