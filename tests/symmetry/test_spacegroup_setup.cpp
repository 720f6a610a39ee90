// Setting up space group records by number, symbol, Hall symbol, generators and fixed lists.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "support/text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::expect_closed_group;

std::vector<std::string> symbols_of(const Space_Group_Type& g) {
  return {g.symop_symb.begin(), g.symop_symb.end()};
}

TEST(SpacegroupSetup, OriginChoices) {
  Space_Group_Type g;
  set_spacegroup("227", g);
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.info, "2");  // the second origin choice, the centre at the origin
  EXPECT_EQ(g.centred, 2);

  set_spacegroup("227:1", g);
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.multip, 192);
  // Origin choice 1: the centre at (1/8,1/8,1/8); the inverted identity carries twice that.
  EXPECT_EQ(g.centred, 0);
  EXPECT_FLOAT_EQ(g.centre_coord[0], 0.125f);
  EXPECT_FLOAT_EQ(g.centre_coord[2], 0.125f);
  EXPECT_EQ(g.symop_symb[24], "-x+1/4,-y+1/4,-z+1/4");
  EXPECT_EQ(g.centre, "Centric (-1 not at origin)  Gen(-1):-x+1/4,-y+1/4,-z+1/4");
  // The block of the first centring vector starts with the shifted identity.
  EXPECT_EQ(g.latt_trans[1], (Vec3{0.5f, 0.5f, 0}));
  EXPECT_EQ(g.symop_symb[48], "x+1/2,y+1/2,z");
  EXPECT_EQ(g.symop_symb[48 + 24], "-x+3/4,-y+3/4,-z+1/4");
  expect_closed_group(g, "227:1");

  // The symbol with a colon goes by the Hall symbol of its row.
  set_spacegroup("F D -3 M:1", g);
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.hall, "F 4d 2 3 -1d");
  EXPECT_EQ(g.setting, "Generated from Hall symbol");

  // A number with a colon and a choice other than 0 or 2 keeps the first row.
  set_spacegroup("14:1", g);
  EXPECT_EQ(g.spg_symb, "P 1 21/c 1");
  set_spacegroup("14:2", g);
  EXPECT_EQ(g.spg_symb, "P 21/c");
}

// Generators name the group by the row of the table they make, or none.
TEST(SpacegroupSetup, GeneratorsAndTheRowTheyMake) {
  Space_Group_Type g;
  std::vector<std::string> gen = {"-x+1/2,-y,z+1/2", "-x,y+1/2,-z+1/2"};
  set_spacegroup("", g, &gen, 2, "GEN");
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.num_spg, 19);
  EXPECT_EQ(g.spg_symb, "P 21 21 21");
  EXPECT_EQ(g.hall, "P 2ac 2ab");
  EXPECT_EQ(g.setting, "Tabulated Setting");
  EXPECT_EQ(g.pg, "222");
  EXPECT_EQ(g.num_gen, 2);

  // Centring and inversion among the generators: reduced set, inverted block, C block.
  gen = {"x+1/2,y+1/2,z", "-x,-y,-z", "-x,y,-z"};
  set_spacegroup("", g, &gen, 3, "gen");
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.num_gen, 1);
  EXPECT_EQ(symbols_of(g),
            (std::vector<std::string>{"x,y,z", "-x,y,-z", "-x,-y,-z", "x,-y,z", "x+1/2,y+1/2,z",
                                      "-x+1/2,y+1/2,-z", "-x+1/2,-y+1/2,-z", "x+1/2,-y+1/2,z"}));
  expect_closed_group(g, "C 2/m from generators");
  EXPECT_EQ(g.num_spg, 12);
  EXPECT_EQ(g.hall, "-C 2y");

  // Only the first ngen generators count.
  set_spacegroup("", g, &gen, 1, "GEN");
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.num_ops, 1);
  EXPECT_EQ(g.num_lat, 2);

  // Without a mode, generators are used when the text names no group.
  gen = {"-x,-y,z"};
  set_spacegroup("my own group", g, &gen, 1);
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.spg_symb, "P 1 1 2");
  EXPECT_EQ(g.num_ops, 2);

  // A twofold axis through (1/8,0,z) is in no tabulated setting.
  gen = {"-x+1/4,-y,z"};
  set_spacegroup("", g, &gen, 1, "GEN");
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.num_spg, 0);
  EXPECT_EQ(g.spg_symb, "Unknown");
  EXPECT_EQ(g.info, "Gen.");
  EXPECT_EQ(g.setting, "Non-standard Setting");
  EXPECT_EQ(g.laue, "2/m");
  EXPECT_EQ(g.crystal_sys, "Monoclinic");
}

TEST(SpacegroupSetup, FixedListStaysAsGiven) {
  Space_Group_Type g;
  // Not a group: the list is kept as it is, in its order.
  std::vector<std::string> ops = {"x,y,z", "-x,-y,z", "-x,y,-z"};
  set_spacegroup("", g, &ops, 3, "FIX");
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.multip, 3);
  EXPECT_EQ(g.num_ops, 3);
  EXPECT_EQ(g.num_gen, 2);
  EXPECT_EQ(symbols_of(g), ops);
}

TEST(SpacegroupSetup, BadInputStaysInBounds) {
  Space_Group_Type g;
  std::vector<std::string> ops = {"x,y,z", "-x,-y,z", "x,y,-z"};
  // More generators announced than given: the list is the limit.
  set_spacegroup("", g, &ops, 10, "FIX");
  EXPECT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.multip, 3);
  set_spacegroup("", g, &ops, -4, "FIX");
  EXPECT_EQ(g.multip, 0);
  // More operators than the work lists hold.
  std::vector<std::string> many(max_setup_ops + 1, "x,y,z");
  set_spacegroup("", g, &many, max_setup_ops + 1, "FIX");
  EXPECT_TRUE(err_symm);
  set_spacegroup("230:7", g);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(g.num_spg, 230);
}

}  // namespace
}  // namespace velmoria
