// Rotation types, crystal systems, Laue classes and point groups of sets of operators.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "symmetry/group_class.hpp"
#include "symmetry/records.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

Mat3i negated(const Mat3i& m) {
  Mat3i r{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) r[i][j] = -m[i][j];
  return r;
}

Mat3i multiply(const Mat3i& a, const Mat3i& b) {
  Mat3i c{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) c[i][j] += a[i][k] * b[k][j];
  return c;
}

// Smallest n with m^n = 1 (0 when above 12).
int order(const Mat3i& m) {
  const Mat3i one{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  Mat3i p = m;
  for (int n = 1; n <= 12; ++n) {
    if (p == one) return n;
    p = multiply(p, m);
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

Space_Group_Type group(const std::vector<int>& ns, int centred, bool hexa_axes = false) {
  Space_Group_Type g;
  for (const int n : ns) {
    Sym_Oper_Type op;
    op.rot = row(n);
    g.symop.push_back(op);
  }
  g.num_ops = static_cast<int>(ns.size());
  g.multip = g.num_ops;
  g.centred = centred;
  g.hexa_axes = hexa_axes;
  return g;
}

struct Classes {
  std::string laue;
  std::string pg;
};

Classes classes(const std::vector<int>& ns, int centred, bool hexa_axes = false) {
  Classes c;
  get_laue_pg(group(ns, centred, hexa_axes), c.laue, c.pg);
  return c;
}

void expect_classes(const std::vector<int>& ns, int centred, bool hexa_axes,
                    const std::string& laue, const std::string& pg) {
  const Classes c = classes(ns, centred, hexa_axes);
  EXPECT_EQ(c.laue, laue);
  EXPECT_EQ(c.pg, pg);
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

  std::vector<Mat3i> bad = rows({1, 2});
  bad.push_back({{{2, 0, 0}, {0, 1, 0}, {0, 0, 1}}});
  init_err_symm();
  get_crystal_system_r_op(3, bad, isystem, latsy);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " Axes rotation wrong");

  // A count beyond the list is held to the list.
  init_err_symm();
  latsy.clear();
  get_crystal_system_r_op(40, rows({1, 2}), isystem, latsy);
  EXPECT_EQ(isystem, 2);
  EXPECT_EQ(latsy, "m ");
}

TEST(LauePointGroup, LowSymmetry) {
  expect_classes({1}, 1, false, "-1   ", "1    ");
  expect_classes({1}, 0, false, "-1   ", "-1   ");
  expect_classes({1}, 2, false, "-1   ", "-1   ");
  expect_classes({1, 2}, 1, false, "2/m  ", "2    ");
  expect_classes({1, -2}, 1, false, "2/m  ", "m    ");
  expect_classes({1, 2}, 2, false, "2/m  ", "2/m  ");
  expect_classes({1, 2, 3, 4}, 1, false, "mmm  ", "222  ");
  expect_classes({1, 2, 3, 4}, 2, false, "mmm  ", "mmm  ");
  // The direction of the twofold axis of mm2 settings.
  expect_classes({1, 2, -3, -4}, 1, false, "mmm  ", "mm2  ");
  expect_classes({1, 4, -2, -3}, 1, false, "mmm  ", "2mm  ");
  expect_classes({1, 3, -2, -4}, 1, false, "mmm  ", "m2m  ");
}

TEST(LauePointGroup, Tetragonal) {
  expect_classes({1, 16, 2, 15}, 1, false, "4/m  ", "4    ");
  expect_classes({1, -16, 2, -15}, 1, false, "4/m  ", "-4   ");
  expect_classes({1, 16, 2, 15}, 0, false, "4/m  ", "4/m  ");
  expect_classes({1, 2, 3, 4, 13, 14, 15, 16}, 1, false, "4/mmm", "422  ");
  expect_classes({1, 2, 15, 16, -3, -4, -13, -14}, 1, false, "4/mmm", "4mm  ");
  // -42m: twofold axes along a and b, mirrors on the diagonals.
  expect_classes({1, 2, -15, -16, 3, 4, -13, -14}, 1, false, "4/mmm", "-42m ");
  // -4m2: mirrors perpendicular to a and b, twofold axes on the diagonals.
  expect_classes({1, 2, -15, -16, -4, -3, 13, 14}, 1, false, "4/mmm", "-4m2 ");
  expect_classes({1, 2, 3, 4, 13, 14, 15, 16}, 2, false, "4/mmm", "4/mmm");
}

TEST(LauePointGroup, TrigonalAndHexagonal) {
  expect_classes({25, 26, 27}, 1, true, "-3   ", "3    ");
  expect_classes({25, 26, 27}, 2, true, "-3   ", "-3   ");
  // 321: twofold axes along a; 312: along a-b and its equivalents.
  expect_classes({25, 26, 27, 31, 32, 33}, 1, true, "-3m  ", "32   ");
  expect_classes({25, 26, 27, 34, 35, 36}, 1, true, "-31m ", "312  ");
  // 3m1: mirrors normal to a; 31m: mirrors containing a.
  expect_classes({25, 26, 27, -31, -32, -33}, 1, true, "-3m  ", "3m   ");
  expect_classes({25, 26, 27, -34, -35, -36}, 1, true, "-31m ", "31m  ");
  expect_classes({25, 26, 27, -34, -35, -36}, 2, true, "-31m ", "-31m ");
  expect_classes({25, 26, 27, -31, -32, -33}, 2, true, "-3m  ", "-3m  ");
  // Rhombohedral axes: threefold axis along the body diagonal.
  expect_classes({1, 5, 9, 14, 19, 24}, 1, false, "-3m  ", "32   ");
  expect_classes({1, 5, 9, -14, -19, -24}, 1, false, "-3m  ", "3m   ");
  expect_classes({1, 5, 9, -14, -19, -24}, 2, false, "-3m  ", "-3m  ");

  expect_classes({25, 26, 27, 28, 29, 30}, 1, true, "6/m  ", "6    ");
  expect_classes({25, 26, 27, -28, -29, -30}, 1, true, "6/m  ", "-6   ");
  expect_classes({25, 26, 27, 28, 29, 30}, 0, true, "6/m  ", "6/m  ");
  std::vector<int> all(12);
  for (int i = 0; i < 12; ++i) all[static_cast<std::size_t>(i)] = 25 + i;
  expect_classes(all, 1, true, "6/mmm", "622  ");
  expect_classes(all, 2, true, "6/mmm", "6/mmm");
  expect_classes({25, 26, 27, 28, 29, 30, -31, -32, -33, -34, -35, -36}, 1, true, "6/mmm", "6mm  ");
  // -62m has its twofold axes along a; -6m2 along a-b.
  expect_classes({25, 26, 27, -28, -29, -30, 31, 32, 33, -34, -35, -36}, 1, true, "6/mmm", "-62m ");
  expect_classes({25, 26, 27, -28, -29, -30, 34, 35, 36, -31, -32, -33}, 1, true, "6/mmm", "-6m2 ");
}

TEST(LauePointGroup, Cubic) {
  std::vector<int> t(12), o(24), td(24);
  for (int i = 0; i < 24; ++i) {
    o[static_cast<std::size_t>(i)] = i + 1;
    td[static_cast<std::size_t>(i)] = i < 12 ? i + 1 : -(i + 1);
    if (i < 12) t[static_cast<std::size_t>(i)] = i + 1;
  }
  expect_classes(t, 1, false, "m-3  ", "23   ");
  expect_classes(t, 2, false, "m-3  ", "m-3  ");
  expect_classes(o, 1, false, "m-3m ", "432  ");
  expect_classes(td, 1, false, "m-3m ", "-43m ");
  expect_classes(o, 0, false, "m-3m ", "m-3m ");
}

TEST(LauePointGroup, FailuresAndUnfitLists) {
  init_err_symm();
  Classes c = classes({}, 1);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " No symmetry operators are given");
  EXPECT_EQ(c.laue, "     ");

  Space_Group_Type g = group({1, 2}, 1);
  g.symop[1].rot = {{{2, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  init_err_symm();
  get_laue_pg(g, c.laue, c.pg);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " Rotation Not Determined");

  // Two twofold axes and the identity fit no rule.
  init_err_symm();
  c = classes({1, 2, 3}, 1);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(c.laue, "     ");
  EXPECT_EQ(c.pg, "     ");

  // num_ops larger than the list does not read past it.
  g = group({1, 2}, 1);
  g.num_ops = 10;
  get_laue_pg(g, c.laue, c.pg);
  EXPECT_EQ(c.pg, "2    ");

  // A trigonal list on rhombohedral axes flagged as hexagonal: the twofold axis -x,-z,-y is
  // no row of the hexagonal table.
  init_err_symm();
  c = classes({1, 5, 9, 19, 14, 24}, 1, true);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess,
            " Try to re-write your S.O. using a rotational part identical to a S.O. of the "
            "space group P 6/m m m");
  EXPECT_EQ(c.laue, "-3m  ");
  EXPECT_EQ(c.pg, "32   ");
}

TEST(Searchop, SignedRowsAndErrors) {
  for (int n = 1; n <= 36; ++n) {
    const int s = searchop(row(n), 1, 36);
    EXPECT_FALSE(err_symm);
    ASSERT_GT(s, 0);
    EXPECT_LE(s, n);
    EXPECT_EQ(row(s), row(n));
    const int m = searchop(row(-n), 1, 36);
    ASSERT_LT(m, 0);
    EXPECT_EQ(row(m), row(-n));
  }
  // Rows 25 to 36 repeat some cubic rows; in their own range they are found there.
  EXPECT_EQ(searchop(row(2), 25, 36), 28);
  EXPECT_EQ(searchop(row(-13), 25, 36), -31);
  // Positive matches win over the whole range before any negative one.
  EXPECT_EQ(searchop(row(1), 1, 24), 1);

  const Mat3i hex = row(26);
  EXPECT_EQ(searchop(hex, 1, 24), 0);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess,
            " Try to re-write your S.O. using a rotational part identical to a S.O. of the "
            "space group P m -3 m");
  EXPECT_EQ(searchop(row(17), 25, 36), 0);
  EXPECT_EQ(err_symm_mess,
            " Try to re-write your S.O. using a rotational part identical to a S.O. of the "
            "space group P 6/m m m");
  EXPECT_EQ(searchop(Mat3i{}, 1, 36), 0);
  EXPECT_EQ(err_symm_mess,
            " Try to re-write your S.O. using a rotational part identical to a S.O. of the "
            "space group P m -3 m or P 6/m m m");
  EXPECT_EQ(searchop(row(1), -5, 100), 1);  // a range past the table is held to it
  EXPECT_FALSE(err_symm);
}

}  // namespace
}  // namespace velmoria
