// Exact operators: product, inverse, equality and reduction modulo the lattice, on hand-worked
// operators and on whole groups, which must be closed under products and inverses.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "symmetry/exact_operator.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

constexpr Mat3i four_z{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};    // -y,x,z
constexpr Mat3i three_z{{{0, -1, 0}, {1, -1, 0}, {0, 0, 1}}};  // -y,x-y,z
constexpr Mat3i two_z{{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};    // -x,-y,z
constexpr Mat3i two_y{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}};    // -x,y,-z
constexpr Mat3i two_x{{{1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};    // x,-y,-z

TEST(ExactOperator, ScrewAxisPowersAddTheirTranslations) {
  const Exact_Op screw{four_z, {0, 0, 6}};  // 4_1: -y,x,z+1/4
  const Exact_Op square = screw * screw;
  EXPECT_EQ(square, (Exact_Op{two_z, {0, 0, 12}}));  // -x,-y,z+1/2
  const Exact_Op fourth = square * square;
  EXPECT_EQ(fourth, (Exact_Op{identity_matrix, {0, 0, 24}}));  // one whole cell along c
  EXPECT_NE(fourth, Exact_Op{});
  EXPECT_EQ(reduced(fourth), Exact_Op{});
}

TEST(ExactOperator, ProductAppliesTheRightFactorFirst) {
  // (-x+1/2,-y,z+1/2)(-x,y+1/2,-z+1/2) = x+1/2,-y+1/2,-z, once brought into the cell.
  const Exact_Op a{two_z, {12, 0, 12}};
  const Exact_Op b{two_y, {0, 12, 12}};
  const Exact_Op ab = a * b;
  EXPECT_EQ(ab, (Exact_Op{two_x, {12, -12, 24}}));
  EXPECT_EQ(reduced(ab), (Exact_Op{two_x, {12, 12, 0}}));
  EXPECT_EQ(reduced(b * a), (Exact_Op{two_x, {12, 12, 0}}));
  // x+1/2 rather than x: the two translations differ by one 24th and the operators differ.
  EXPECT_NE((Exact_Op{two_x, {12, 12, 0}}), (Exact_Op{two_x, {11, 12, 0}}));
}

TEST(ExactOperator, InverseUndoesTheOperator) {
  const Exact_Op screw{three_z, {0, 0, 8}};  // 3_1: -y,x-y,z+1/3
  const Exact_Op inv = inverse(screw);
  const Mat3i three_z_inv{{{-1, 1, 0}, {-1, 0, 0}, {0, 0, 1}}};  // -x+y,-x,z
  EXPECT_EQ(inv, (Exact_Op{three_z_inv, {0, 0, -8}}));
  EXPECT_EQ(reduced(inv).tr, (Vec3i{0, 0, 16}));  // z+2/3
  EXPECT_EQ(screw * inv, Exact_Op{});
  EXPECT_EQ(inv * screw, Exact_Op{});
  // An improper operator: a glide plane x,-y,z+1/2 is its own inverse modulo the lattice.
  const Exact_Op glide{negated(two_y), {0, 0, 12}};
  EXPECT_EQ(reduced(inverse(glide)), glide);
  EXPECT_EQ(negated(inversion_matrix), identity_matrix);
}

// Whole primitive groups, set up from Hall and Hermann-Mauguin symbols, as exact operators in
// [0,1): the identity first, and every inverse and product among them.
TEST(ExactOperator, PrimitiveGroupsAreClosedUnderProductsAndInverses) {
  const std::pair<const char*, const char*> groups[] = {
      {"P 61 2 (0 0 -1)", "HAL"}, {"P 2ac 2ab", "HAL"}, {"P 4 2 3", "HAL"},
      {"P 31 2c (0 0 1)", "HAL"}, {"P 65 2 2", "HMS"},  {"P 21 21 21", "HMS"},
      {"P 42/N", "HMS"},          {"P N -3 N", "HMS"}};
  for (const auto& [symbol, road] : groups) {
    const Space_Group_Type g = testing::group_of(symbol, road);
    std::vector<Exact_Op> ops;
    for (const Sym_Oper_Type& op : g.symop)
      ops.push_back(reduced(Exact_Op{op.rot, twelfths_of(op.tr)}));
    ASSERT_FALSE(ops.empty()) << symbol;
    EXPECT_EQ(ops.front(), Exact_Op{}) << symbol;
    auto held = [&](const Exact_Op& x) {
      return std::find(ops.begin(), ops.end(), x) != ops.end();
    };
    for (const Exact_Op& a : ops) {
      EXPECT_TRUE(held(reduced(inverse(a)))) << symbol;
      for (const Exact_Op& b : ops) EXPECT_TRUE(held(reduced(a * b))) << symbol;
    }
  }
}

}  // namespace
}  // namespace velmoria
