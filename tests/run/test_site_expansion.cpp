// Sites of a run: expansion of a position under the little group, the split of an orbit
// into sub-orbits of the group of the vector, and the check of listed atoms.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "kvector/group_k.hpp"
#include "run/run_state.hpp"
#include "run/site_expansion.hpp"
#include "run/steps.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::group_of;
using testing::Run_Tolerance;

// A little group put into the store by hand, with the operator texts that the tables of
// the representations would give them.
void set_little_group(Run_State& rs, const std::vector<Sym_Oper_Type>& ops, char lat) {
  rs.store.resize(static_cast<int>(ops.size()), 1, 1);
  rs.sv.symm_symb.clear();
  for (std::size_t g = 0; g < ops.size(); ++g) {
    rs.store.ir[g] = ops[g].rot;
    rs.store.t[g] = ops[g].tr;
    rs.sv.symm_symb.push_back(get_symsymbi(ops[g].rot, ops[g].tr));
  }
  rs.mv.lat_type = lat;
}

Sym_Oper_Type op(const std::string& text) {
  Sym_Oper_Type o;
  read_xsym(text, 1, o.rot, o.tr);
  return o;
}

// The run state of the computed mode after KVEC: the space group, the group of the vector
// and, as the little group, the operators of the group of the vector.
Run_State state_after_kvec(const std::string& symbol, const Vec3& k) {
  Run_State rs;
  rs.store.spg = group_of(symbol);
  rs.sv.vk = k;
  k_star(k, rs.store.spg, rs.mv.gk, true);
  std::vector<Sym_Oper_Type> ops;
  for (int i = 0; i < rs.mv.gk.ngk_ops; ++i) ops.push_back(rs.store.spg.symop[rs.mv.gk.ops[i] - 1]);
  set_little_group(rs, ops, rs.store.spg.spg_lat);
  return rs;
}

void expect_near(const Vec3& a, const Vec3& b) {
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(a[i], b[i], 1e-6F) << "component " << i;
}

TEST(Genatoms, ImagesOutsideTheCellWithAndWithoutCel) {
  Run_Tolerance tol;
  Run_State rs;
  set_little_group(rs, {op("x,y,z"), op("-x,y,-z")}, 'P');
  const Vec3 xt{0.25F, 0, -1.25F};
  // With CEL the image (-0.25,0,1.25) goes to (0.75,0,0.25), shifted by (1,0,-1).
  genatoms(rs, 0, "Co", xt, 1);
  const Site& cel = rs.sv.sites[0];
  ASSERT_EQ(cel.mult, 2);
  expect_near(cel.x[0], Vec3{0.25F, 0, 0.75F});
  EXPECT_EQ(trim(cel.symstr[0]), "(x,y,z) + (0,0,2)");
  EXPECT_EQ(trim(cel.symms[0]), "x,y,z+2");
  expect_near(cel.x[1], Vec3{0.75F, 0, 0.25F});
  EXPECT_EQ(trim(cel.symstr[1]), "(-x,y,-z) + (1,0,-1)");
  EXPECT_EQ(trim(cel.symms[1]), "-x+1,y,-z-1");
  // Without CEL the images stay as the operators give them.
  genatoms(rs, 1, "Co", xt, 2);
  const Site& raw = rs.sv.sites[1];
  ASSERT_EQ(raw.mult, 2);
  expect_near(raw.x[0], xt);
  expect_near(raw.x[1], Vec3{-0.25F, 0, 1.25F});
  EXPECT_EQ(trim(raw.symstr[1]), "(-x,y,-z)");
  EXPECT_EQ(trim(raw.symms[1]), "-x,y,-z");
  // A coordinate of exactly 1 is 0 of the next cell: (1,0,1/2) is (0,0,1/2), on the twofold
  // axis, one atom.
  genatoms(rs, 0, "Co", Vec3{1.0F, 0, 0.5F}, 3);
  ASSERT_EQ(rs.sv.sites[2].mult, 1);
  expect_near(rs.sv.sites[2].x[0], Vec3{0, 0, 0.5F});
}

TEST(Genatoms, CentringVectors) {
  Run_Tolerance tol;
  Run_State rs;
  // An image one centring vector away is the same atom in a C lattice, not in a P lattice.
  set_little_group(rs, {op("x,y,z"), op("x+1/2,y+1/2,z")}, 'C');
  genatoms(rs, 0, "A", Vec3{0.1F, 0.2F, 0.3F}, 1);
  EXPECT_EQ(rs.sv.sites[0].mult, 1);
  rs.mv.lat_type = 'P';
  genatoms(rs, 0, "A", Vec3{0.1F, 0.2F, 0.3F}, 1);
  EXPECT_EQ(rs.sv.sites[0].mult, 2);
}

// The sub-orbits as the reader finds them: the first position of each sub-orbit.
std::vector<int> first_members(const std::vector<int>& ind, int m) {
  std::vector<int> str{1};
  for (int i = 1; i <= m; ++i) {
    if (ind[i - 1] > static_cast<int>(str.size())) str.push_back(i);
  }
  return str;
}

TEST(Suborbits, AnOrbitSplitByTheGroupOfTheVectorGivesTwoSites) {
  Run_Tolerance tol;
  // P4 at k = (1/2,0,0): the group of the vector is {1, 2z}, the star has two arms.
  Run_State rs = state_after_kvec("75", Vec3{0.5F, 0, 0});
  ASSERT_EQ(rs.store.ngk, 2);
  ASSERT_EQ(rs.mv.gk.nk, 2);
  std::vector<Vec3> xeqv;
  std::vector<int> ind;
  // The general position: four images, two sub-orbits of two atoms each.
  const Vec3 xt{0.1F, 0.2F, 0.3F};
  int m = split_into_suborbits(rs, xt, true, xeqv, ind);
  ASSERT_EQ(m, 4);
  std::vector<int> str = first_members(ind, m);
  ASSERT_EQ(str.size(), 2u);
  expand_site(rs, 1, "Fe1", xt, 1);
  expand_site(rs, 1, "Fe2", xeqv[str[1] - 1], 2);
  EXPECT_EQ(rs.sv.sites[0].mult, 2);
  EXPECT_EQ(rs.sv.sites[1].mult, 2);
  EXPECT_EQ(rs.sv.sites[1].atom[0], "Fe2_1   ");
  // (0,1/2,z) and (1/2,0,z): two sub-orbits of one atom each.
  m = split_into_suborbits(rs, Vec3{0, 0.5F, 0.3F}, true, xeqv, ind);
  ASSERT_EQ(m, 2);
  EXPECT_EQ(first_members(ind, m).size(), 2u);
  // (0,0,z) stays one sub-orbit.
  m = split_into_suborbits(rs, Vec3{0, 0, 0.3F}, true, xeqv, ind);
  ASSERT_EQ(m, 1);
  EXPECT_EQ(first_members(ind, m).size(), 1u);
  // P-1 at a general k: the group of the vector is the identity, and x and -x are two sites
  // although the extension by -k joins them in the listing.
  Run_State centric = state_after_kvec("2", xt);
  ASSERT_EQ(centric.mv.gk.ops.size(), 2u);
  m = split_into_suborbits(centric, xt, true, xeqv, ind);
  ASSERT_EQ(m, 2);
  EXPECT_EQ(first_members(ind, m).size(), 2u);
}

// In every group: at k = 0 the little group is the whole point group, and a general position
// expands to one atom in the cell for each of its operators; at k = (1/2,1/2,1/2) and at a
// general k the number of sub-orbits of a general position times the order of the little group
// is the size of the orbit.
TEST(Suborbits, GeneralPositionsInAll230Groups) {
  Run_Tolerance tol;
  const Vec3 x{0.1234F, 0.2345F, 0.3456F};
  for (int number = 1; number <= 230; ++number) {
    Run_State rs = state_after_kvec(std::to_string(number), Vec3{0, 0, 0});
    genatoms(rs, 0, "Fe", x, 1);
    const Site& site = rs.sv.sites[0];
    ASSERT_EQ(site.mult, rs.store.ngk) << "group " << number;
    for (int j = 0; j < site.mult; ++j)
      for (int i = 0; i < 3; ++i) EXPECT_TRUE(site.x[j][i] >= 0.0F && site.x[j][i] < 1.0F);
    for (const Vec3& k : {Vec3{0.5F, 0.5F, 0.5F}, Vec3{0.1F, 0.2F, 0.3F}}) {
      Run_State at_k = state_after_kvec(std::to_string(number), k);
      std::vector<Vec3> xeqv;
      std::vector<int> ind;
      const int m = split_into_suborbits(at_k, x, false, xeqv, ind);
      const int norb = static_cast<int>(first_members(ind, m).size());
      EXPECT_EQ(norb * at_k.store.ngk, m) << "group " << number;
    }
  }
}

TEST(SiteCheck, AnAtomOfAnotherSublatticeStopsTheRun) {
  Run_Tolerance tol;
  Run_State rs;
  set_little_group(rs, {op("x,y,z"), op("-x,-y,z")}, 'P');
  rs.sv.sites.resize(1);
  Site& site = rs.sv.sites[0];
  site.resize(3);
  site.mult = 3;
  // The third atom is the first given again: one operator reaches one atom only.
  site.x = {Vec3{0.1F, 0.2F, 0.3F}, Vec3{0.3F, 0.2F, 0.1F}, Vec3{0.1F, 0.2F, 0.3F}};
  EXPECT_FALSE(determ_symmops(rs, 1));
  EXPECT_EQ(rs.out.result,
            "\n\n Fatal error: analysis for site  1\n"
            " => The atom at (  0.3000  0.2000  0.1000) does not belong to the same sublattice "
            "as that of (  0.1000  0.2000  0.3000)\n"
            " => The atom at (  0.1000  0.2000  0.3000) does not belong to the same sublattice "
            "as that of (  0.1000  0.2000  0.3000)\n");
  EXPECT_EQ(rs.out.console, " => The program has finished with errors!\n");
  rs.out = Units{};
  EXPECT_THROW(check_listed_site(rs, 1), Quiet_Stop);
}

}  // namespace
}  // namespace velmoria
