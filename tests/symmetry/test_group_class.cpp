// Rotation types and crystal systems of sets of operators (the Laue class and point group of
// every tabulated setting are checked by the sweep over the settings).
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "symmetry/exact_operator.hpp"
#include "symmetry/group_class.hpp"
#include "symmetry/records.hpp"
#include "symmetry/tables.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::mul;

// Smallest n with m^n = 1 (0 when above 12).
int order(const Mat3i& m) {
  const Mat3i one{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  Mat3i p = m;
  for (int n = 1; n <= 12; ++n) {
    if (p == one) return n;
    p = mul(p, m);
  }
  return 0;
}

TEST(AxesRotation, OrderOfProperAndImproperRotations) {
  // A proper rotation has its order as type; an improper one minus the order of its negative.
  for (const Mat3i& m : mod6) {
    EXPECT_EQ(axes_rotation(m), order(m));
    EXPECT_EQ(axes_rotation(negated(m)), -order(m));
  }
  EXPECT_EQ(axes_rotation({{{2, 0, 0}, {0, 1, 0}, {0, 0, 1}}}), 0);
  EXPECT_EQ(axes_rotation(Mat3i{}), 0);
  EXPECT_EQ(axes_rotation({{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}), -2);
}

TEST(CrystalSystem, CountsOfRotationTypes) {
  int isystem = 0;
  std::string latsy = " P";
  get_crystal_system_r_op(0, {}, isystem, latsy);
  EXPECT_EQ(isystem, 1);
  EXPECT_EQ(latsy, "aP");

  // The rotations as rows of mod6, negated for n < 0; the inversion counts for nothing.
  const struct {
    int system;
    char letter;
    const char* ops;
  } cases[] = {
      {1, 'a', "1"},
      {2, 'm', "1 2"},
      {2, 'm', "1 -2"},
      {2, 'm', "1 -1 2"},
      {3, 'o', "1 2 3 4"},
      {3, 'o', "1 2 -3 -4"},
      {4, 't', "1 16 2 15"},
      {4, 't', "1 2 -15 -16"},
      {4, 't', "1 2 3 4 13 14 15 16"},
      {5, 'h', "25 26 27"},
      {5, 'h', "25 26 27 31 32 33"},
      {5, 'h', "1 5 9"},
      {6, 'h', "25 26 27 28 29 30"},
      {6, 'h', "25 26 27 -28 -29 -30"},
      {7, 'c', "1 2 3 4 5 6 7 8 9 10 11 12"},
      {7, 'c', "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24"},
  };
  for (const auto& c : cases) {
    std::vector<Mat3i> ss;
    std::istringstream in(c.ops);
    for (int n = 0; in >> n;) ss.push_back(n > 0 ? mod6[n - 1] : negated(mod6[-n - 1]));
    latsy = "xF";
    init_err_symm();
    get_crystal_system_r_op(static_cast<int>(ss.size()), ss, isystem, latsy);
    EXPECT_FALSE(err_symm);
    EXPECT_EQ(isystem, c.system) << c.ops;
    EXPECT_EQ(latsy[0], c.letter);
    EXPECT_EQ(latsy[1], 'F');
  }
}

}  // namespace
}  // namespace velmoria
