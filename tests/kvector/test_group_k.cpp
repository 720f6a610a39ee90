// The star of k, the group of the vector and its listing.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "kvector/group_k.hpp"
#include "support/numeric.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::group_of;
using testing::Run_Tolerance;

Vec3 neg(const Vec3& v) {
  return Vec3{-v[0], -v[1], -v[2]};
}

// Differences of vectors that are, or are not, vectors of the reciprocal lattice of each
// centring (the letter is the first non-blank character), and the tolerance epss.
TEST(KEquiv, ReciprocalLatticeOfEachCentring) {
  Run_Tolerance tol;
  const struct {
    Vec3 h, k;
    const char* lat;
    bool equivalent;
  } cases[] = {
      {{1, 1, 0}, {0, 0, 0}, "C", true},          {{1, 0, 0}, {0, 0, 0}, "C", false},
      {{0, 0, 1}, {0, 0, 0}, "c", true},          {{0, 1, 1}, {0, 0, 0}, "A", true},
      {{1, 0, 0}, {0, 0, 0}, "A", true},          {{0, 0, 1}, {0, 0, 0}, "A", false},
      {{1, 0, 1}, {0, 0, 0}, "B", true},          {{1, 0, 0}, {0, 0, 0}, "B", false},
      {{1, 1, 0}, {0, 0, 0}, "I", true},          {{1, 0, 0}, {0, 0, 0}, "i", false},
      {{1, 1, 1}, {0, 0, 0}, "F", true},          {{2, 0, 0}, {0, 0, 0}, "F", true},
      {{1, 1, 0}, {0, 0, 0}, "F", false},         {{1, 1, 0}, {0, 0, 0}, "R", true},
      {{-1, 1, 1}, {0, 0, 0}, "R", true},         {{1, 0, 0}, {0, 0, 0}, "R", false},
      {{0, 0, 1}, {0, 0, 0}, "R", false},         {{0, 0, 3}, {0, 0, 0}, "R", true},
      {{1, 1, 0}, {0, 0, 0}, "  C", true},        {{0, 0, 0}, {0, 0, 0}, "Z", false},
      {{0, 0, 0}, {0, 0, 0}, "", false},          {{0.5F, 0, 0}, {0, 0, 0}, "P", false},
      {{0.5F, 0, 0}, {-0.499F, 0, 0}, "P", true}, {{0.5F, 0, 0}, {-0.49F, 0, 0}, "P", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(k_equiv(c.h, c.k, c.lat), c.equivalent)
        << c.lat << " " << c.h[0] << " " << c.h[1] << " " << c.h[2];
  }
}

// P 2 at a general k: neither k nor -k; P -1: the centre takes k to -k, and the extended
// group adds its coset; P 4 at (0.1,0.2,0): the two-fold axis does it in an acentric group.
TEST(KStar, MinusKAndTheExtendedGroup) {
  Run_Tolerance tol;
  const Vec3 k{0.1F, 0.2F, 0.3F};
  const struct {
    const char* group;
    Vec3 k;
    bool k_equiv_mk, minus_k_in_star;
    int nk, ngk, ops;
  } cases[] = {{"3", k, false, false, 2, 1, 1},
               {"2", k, false, true, 2, 1, 2},
               {"75", {0.1F, 0.2F, 0}, false, true, 4, 1, 2},
               {"2", {0.5F, 0, 0.5F}, true, true, 1, 2, 2},
               {"221", {0, 0, 0}, true, true, 1, 48, 48}};
  for (const auto& c : cases) {
    Group_k_Type gk;
    const Space_Group_Type spg = group_of(c.group);
    k_star(c.k, spg, gk, true);
    SCOPED_TRACE(c.group);
    EXPECT_EQ(gk.k_equiv_mk, c.k_equiv_mk);
    EXPECT_EQ(gk.minus_k_in_star, c.minus_k_in_star);
    EXPECT_EQ(gk.nk, c.nk);
    EXPECT_EQ(gk.ngk_ops, c.ngk);
    ASSERT_EQ(static_cast<int>(gk.ops.size()), c.ops);
    EXPECT_EQ(gk.ops[0], 1);
    for (int i = gk.ngk_ops; i < c.ops; ++i)  // the extension takes k to -k
      EXPECT_TRUE(k_equiv(hr_r(c.k, spg.symop[gk.ops[i] - 1].rot), neg(c.k), spg.spg_lat));
  }
  // Without the option the list stops at ngk_ops.
  Group_k_Type gk;
  k_star(k, group_of("2"), gk);
  EXPECT_EQ(gk.ops, std::vector<int>{1});
}

TEST(KStar, ArmsTimesLittleCoGroupIsThePointGroupInAll230Groups) {
  Run_Tolerance tol;
  const std::vector<Vec3> vectors{
      {0, 0, 0},          {0.5F, 0, 0},       {0, 0.5F, 0},     {0, 0, 0.5F},
      {0.5F, 0.5F, 0},    {0.5F, 0.5F, 0.5F}, {1, 0, 0},        {1.0F / 3, 1.0F / 3, 0},
      {0.1F, 0, 0},       {0, 0, 0.3F},       {0.1F, 0.1F, 0},  {0.2F, 0.2F, 0.2F},
      {0.1F, 0.2F, 0.3F}, {0.5F, 0, 0.25F},   {0.25F, 0.5F, 0}, {0.3F, 0.3F, 0.5F}};
  for (int number = 1; number <= 230; ++number) {
    const Space_Group_Type spg = group_of(std::to_string(number));
    // The point group: the distinct rotations of the whole operator list.
    std::set<Mat3i> rotations;
    for (const Sym_Oper_Type& op : spg.symop) rotations.insert(op.rot);
    const int order = static_cast<int>(rotations.size());
    for (const Vec3& k : vectors) {
      Group_k_Type gk;
      k_star(k, spg, gk, true);
      SCOPED_TRACE("group " + std::to_string(number) + " k=(" + std::to_string(k[0]) + "," +
                   std::to_string(k[1]) + "," + std::to_string(k[2]) + ")");
      ASSERT_EQ(gk.nk, static_cast<int>(gk.stark.size()));
      ASSERT_EQ(gk.nk, static_cast<int>(gk.cosets.size()));
      EXPECT_EQ(gk.nk * gk.ngk_ops, order);
      // Every operator of the point group lies in exactly one coset, all of the same size,
      // and carries k onto the arm of its coset; the arms are pairwise distinct.
      std::set<Mat3i> seen;
      for (int a = 0; a < gk.nk; ++a) {
        EXPECT_EQ(static_cast<int>(gk.cosets[a].size()), gk.ngk_ops);
        for (const int op : gk.cosets[a]) {
          const Mat3i& rot = spg.symop[op - 1].rot;
          EXPECT_TRUE(seen.insert(rot).second);
          EXPECT_TRUE(k_equiv(hr_r(k, rot), gk.stark[a], spg.spg_lat));
        }
        for (int b = 0; b < a; ++b) EXPECT_FALSE(k_equiv(gk.stark[a], gk.stark[b], spg.spg_lat));
      }
      EXPECT_EQ(static_cast<int>(seen.size()), order);
      // -k: in the star exactly when some arm is equivalent to it.
      bool arm_of_minus_k = false;
      for (const Vec3& arm : gk.stark) arm_of_minus_k |= k_equiv(arm, neg(k), spg.spg_lat);
      EXPECT_EQ(gk.minus_k_in_star || gk.k_equiv_mk, arm_of_minus_k);
      EXPECT_EQ(gk.k_equiv_mk, k_equiv(k, neg(k), spg.spg_lat));
      // The extension, when made, is one whole coset.
      const int extension = static_cast<int>(gk.ops.size()) - gk.ngk_ops;
      EXPECT_EQ(extension, !gk.k_equiv_mk && gk.minus_k_in_star ? gk.ngk_ops : 0);
    }
  }
}

}  // namespace
}  // namespace velmoria
