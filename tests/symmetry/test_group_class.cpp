// Rotation types and crystal systems of sets of operators (the Laue class and point group of
// every tabulated setting are checked by the sweep over the settings).
#include <gtest/gtest.h>

#include <cstdlib>
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

// Rotation of mod6 row |n|, negated for n < 0.
Mat3i row(int n) {
  const Mat3i& m = mod6[static_cast<std::size_t>(std::abs(n) - 1)];
  return n > 0 ? m : negated(m);
}

std::vector<Mat3i> rows(const std::vector<int>& ns) {
  std::vector<Mat3i> out;
  for (const int n : ns) out.push_back(row(n));
  return out;
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

  const struct {
    std::vector<int> ops;
    int system;
    char letter;
  } cases[] = {
      {{1}, 1, 'a'},
      {{1, 2}, 2, 'm'},
      {{1, -2}, 2, 'm'},
      {{1, 2, 3, 4}, 3, 'o'},
      {{1, 2, -3, -4}, 3, 'o'},
      {{1, 16, 2, 15}, 4, 't'},
      {{1, 2, -15, -16}, 4, 't'},
      {{1, 2, 3, 4, 13, 14, 15, 16}, 4, 't'},
      {{25, 26, 27}, 5, 'h'},
      {{25, 26, 27, 31, 32, 33}, 5, 'h'},
      {{1, 5, 9}, 5, 'h'},
      {{25, 26, 27, 28, 29, 30}, 6, 'h'},
      {{25, 26, 27, -28, -29, -30}, 6, 'h'},
      {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, 7, 'c'},
      {{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24},
       7,
       'c'},
      // The inversion counts for nothing.
      {{1, -1, 2}, 2, 'm'},
  };
  for (const auto& c : cases) {
    const std::vector<Mat3i> ss = rows(c.ops);
    latsy = "xF";
    init_err_symm();
    get_crystal_system_r_op(static_cast<int>(ss.size()), ss, isystem, latsy);
    EXPECT_FALSE(err_symm);
    EXPECT_EQ(isystem, c.system) << c.ops.size();
    EXPECT_EQ(latsy[0], c.letter);
    EXPECT_EQ(latsy[1], 'F');
  }
}

}  // namespace
}  // namespace velmoria
