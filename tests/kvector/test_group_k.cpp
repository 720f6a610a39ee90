// The star of k, the group of the vector and its listing.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "kvector/group_k.hpp"
#include "support/numeric.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "text_lines.hpp"

namespace velmoria {
namespace {

// The tolerance of a run, restored to its default at the end of a test.
struct Run_Tolerance {
  Run_Tolerance() { set_epsg_sp(0.002F); }
  ~Run_Tolerance() { set_epsg_default(); }
};

Space_Group_Type group(const std::string& symbol) {
  Space_Group_Type spg;
  init_err_symm();
  set_spacegroup(symbol, spg);
  EXPECT_FALSE(err_symm) << symbol << ": " << err_symm_mess;
  return spg;
}

Vec3 neg(const Vec3& v) {
  return Vec3{-v[0], -v[1], -v[2]};
}

TEST(KEquiv, ReciprocalLatticeOfEachCentring) {
  Run_Tolerance tol;
  const Vec3 zero{0, 0, 0};
  // C centring: h + k even.
  EXPECT_TRUE(k_equiv(Vec3{1, 1, 0}, zero, "C"));
  EXPECT_FALSE(k_equiv(Vec3{1, 0, 0}, zero, "C"));
  EXPECT_TRUE(k_equiv(Vec3{0, 0, 1}, zero, "c"));
  // A: k + l even; B: h + l even.
  EXPECT_TRUE(k_equiv(Vec3{0, 1, 1}, zero, "A"));
  EXPECT_TRUE(k_equiv(Vec3{1, 0, 0}, zero, "A"));
  EXPECT_FALSE(k_equiv(Vec3{0, 0, 1}, zero, "A"));
  EXPECT_TRUE(k_equiv(Vec3{1, 0, 1}, zero, "B"));
  EXPECT_FALSE(k_equiv(Vec3{1, 0, 0}, zero, "B"));
  // I: h + k + l even.
  EXPECT_TRUE(k_equiv(Vec3{1, 1, 0}, zero, "I"));
  EXPECT_FALSE(k_equiv(Vec3{1, 0, 0}, zero, "i"));
  // F: all mixed sums even.
  EXPECT_TRUE(k_equiv(Vec3{1, 1, 1}, zero, "F"));
  EXPECT_TRUE(k_equiv(Vec3{2, 0, 0}, zero, "F"));
  EXPECT_FALSE(k_equiv(Vec3{1, 1, 0}, zero, "F"));
  // R, obverse: -h + k + l a multiple of 3.
  EXPECT_TRUE(k_equiv(Vec3{1, 1, 0}, zero, "R"));
  EXPECT_TRUE(k_equiv(Vec3{-1, 1, 1}, zero, "R"));
  EXPECT_FALSE(k_equiv(Vec3{1, 0, 0}, zero, "R"));
  // The letter is the first non-blank character; Z and unknown letters say no.
  EXPECT_TRUE(k_equiv(Vec3{1, 1, 0}, zero, "  C"));
  EXPECT_FALSE(k_equiv(zero, zero, "Z"));
  EXPECT_FALSE(k_equiv(zero, zero, ""));
  // Non-integer differences are never equivalent; the tolerance is epss.
  EXPECT_FALSE(k_equiv(Vec3{0.5F, 0, 0}, zero, "P"));
  EXPECT_TRUE(k_equiv(Vec3{0.5F, 0, 0}, Vec3{-0.499F, 0, 0}, "P"));
  EXPECT_FALSE(k_equiv(Vec3{0.5F, 0, 0}, Vec3{-0.49F, 0, 0}, "P"));
}

TEST(KStar, ZeroVectorKeepsTheWholePointGroup) {
  Run_Tolerance tol;
  Group_k_Type gk;
  const Space_Group_Type spg = group("221");  // P m -3 m: 48 rotations
  k_star(Vec3{0, 0, 0}, spg, gk, true);
  EXPECT_EQ(gk.nk, 1);
  EXPECT_EQ(gk.ngk_ops, 48);
  EXPECT_TRUE(gk.k_equiv_mk);
  EXPECT_TRUE(gk.minus_k_in_star);
  EXPECT_EQ(gk.ops.size(), 48u);  // no extension
  EXPECT_EQ(gk.cosets[0], gk.ops);
}

TEST(KStar, MinusKAndTheExtendedGroup) {
  Run_Tolerance tol;
  const Vec3 k{0.1F, 0.2F, 0.3F};
  Group_k_Type gk;
  // P2 (unique axis b): the 2-fold takes k to (-0.1,0.2,-0.3), neither k nor -k.
  k_star(k, group("3"), gk, true);
  EXPECT_FALSE(gk.k_equiv_mk);
  EXPECT_FALSE(gk.minus_k_in_star);
  EXPECT_EQ(gk.nk, 2);
  EXPECT_EQ(gk.ops, std::vector<int>{1});

  // P-1: the centre takes k to -k; the extension is the coset of -k, operator 2.
  k_star(k, group("2"), gk, true);
  EXPECT_FALSE(gk.k_equiv_mk);
  EXPECT_TRUE(gk.minus_k_in_star);
  EXPECT_EQ(gk.ngk_ops, 1);
  EXPECT_EQ(gk.ops, (std::vector<int>{1, 2}));
  // Without the option the list stops at ngk_ops.
  k_star(k, group("2"), gk);
  EXPECT_EQ(gk.ops, std::vector<int>{1});

  // P4, k = (0.1,0.2,0): the 2-fold along z takes k to -k in an acentric group.
  k_star(Vec3{0.1F, 0.2F, 0}, group("75"), gk, true);
  EXPECT_FALSE(gk.k_equiv_mk);
  EXPECT_TRUE(gk.minus_k_in_star);
  EXPECT_EQ(gk.nk, 4);
  ASSERT_EQ(gk.ops.size(), 2u);
  EXPECT_TRUE(k_equiv(hr_r(gk.stark[0], gk.group.symop[gk.ops[1] - 1].rot), neg(gk.stark[0]), 'P'));

  // P-1 at a zone-boundary point: k equivalent to -k.
  k_star(Vec3{0.5F, 0, 0.5F}, group("2"), gk, true);
  EXPECT_TRUE(gk.k_equiv_mk);
  EXPECT_EQ(gk.ngk_ops, 2);
  EXPECT_EQ(gk.nk, 1);
}

TEST(KStar, ArmsTimesLittleCoGroupIsThePointGroupInAll230Groups) {
  Run_Tolerance tol;
  const std::vector<Vec3> vectors{
      {0, 0, 0},          {0.5F, 0, 0},       {0, 0.5F, 0},     {0, 0, 0.5F},
      {0.5F, 0.5F, 0},    {0.5F, 0.5F, 0.5F}, {1, 0, 0},        {1.0F / 3, 1.0F / 3, 0},
      {0.1F, 0, 0},       {0, 0, 0.3F},       {0.1F, 0.1F, 0},  {0.2F, 0.2F, 0.2F},
      {0.1F, 0.2F, 0.3F}, {0.5F, 0, 0.25F},   {0.25F, 0.5F, 0}, {0.3F, 0.3F, 0.5F}};
  for (int number = 1; number <= 230; ++number) {
    const Space_Group_Type spg = group(std::to_string(number));
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

// ----- The listing -----

using testing::lines_of;

TEST(WriteGroupK, TenthArmTakesTwoDigits) {
  Run_Tolerance tol;
  Group_k_Type gk;
  k_star(Vec3{0.1F, 0.2F, 0.3F}, group("221"), gk, true);
  ASSERT_EQ(gk.nk, 48);
  std::string out;
  write_group_k(gk, out);
  EXPECT_NE(out.find("\n           k_9  = ("), std::string::npos);
  EXPECT_NE(out.find("\n           k_10 = ("), std::string::npos);
  EXPECT_NE(out.find("\n  Eqv. -K: k_"), std::string::npos);  // the arm of -k
  EXPECT_NE(out.find("\n           k_48 = ("), std::string::npos);
}

}  // namespace
}  // namespace velmoria
