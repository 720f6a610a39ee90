// Listing of a space group record: whole listings against the files of tests/data, written
// from the layouts of the listing, and the parts that depend on the lattice and the counts.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "symmetry/listing.hpp"
#include "symmetry/records.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::lines_of;

constexpr Mat3i unit{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
constexpr Mat3i minus_unit{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};

// P -1 as the setup leaves it.
Space_Group_Type p_minus_1() {
  Space_Group_Type g;
  g.num_spg = 2;
  g.spg_symb = "P -1";
  g.hall = "-P 1";
  g.setting = "Generated from Hall symbol";
  g.crystal_sys = "Triclinic";
  g.laue = "-1";
  g.pg = "-1";
  g.spg_lat = 'P';
  g.spg_latsy = "aP";
  g.num_lat = 1;
  g.latt_trans = {Vec3{0, 0, 0}};
  g.centre = "Centric (-1 at origin)";
  g.centred = 2;
  g.num_ops = 1;
  g.multip = 2;
  g.symop = {{unit, {}}, {minus_unit, {}}};
  g.symop_symb = {"x,y,z", "-x,-y,-z"};
  g.asym_unit = {Vec3{0, 0, 0}, Vec3{0.5f, 1, 1}};
  return g;
}

// P 21/c filled in by hand, with two special orbits and the
// table setting choice: the full listing.
Space_Group_Type p_21_c() {
  Space_Group_Type g = p_minus_1();
  g.num_spg = 14;
  g.spg_symb = "P 21/c";
  g.hall = "-P 2ybc";
  g.info = "b1";
  g.crystal_sys = "Monoclinic";
  g.laue = "2/m";
  g.pg = "2/m";
  g.spg_latsy = "mP";
  g.num_ops = 2;
  g.multip = 4;
  g.num_gen = 1;
  g.symop = {{unit, {}},
             {{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}, {0, 0.5f, 0.5f}},
             {minus_unit, {}},
             {{{{1, 0, 0}, {0, -1, 0}, {0, 0, 1}}}, {0, 0.5f, 0.5f}}};
  g.symop_symb = {"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"};
  g.wyckoff = {
      2, {{2, "", 2, "", {"0,0,0", "0,1/2,1/2"}}, {2, "", 2, "", {"1/2,0,0", "1/2,1/2,1/2"}}}};
  return g;
}

TEST(Listing, WholeListingsOfPMinus1AndP21c) {
  std::string out;
  write_spacegroup(p_minus_1(), out);
  testing::expect_same_lines("P -1", out, testing::data_file("listing_p-1.txt"));
  out.clear();
  write_spacegroup(p_21_c(), out, true);
  testing::expect_same_lines("P 21/c", out, testing::data_file("listing_p21c_full.txt"));
}

TEST(Listing, ZLatticeAndCentreOffOrigin) {
  Space_Group_Type g = p_minus_1();
  g.spg_lat = 'Z';
  g.num_lat = 2;
  g.latt_trans = {Vec3{0, 0, 0}, Vec3{0.5f, 0, 0}};
  g.centred = 0;
  g.centre_coord = {0.25f, 0, 0.125f};
  std::string out;
  write_spacegroup(g, out);
  std::vector<std::string> lines = lines_of(out);
  auto it = std::find(lines.begin(), lines.end(), " =>               Centre at: (1/4,0,1/8)");
  ASSERT_NE(it, lines.end());
  // Without the full listing the centring vectors of a Z lattice are still written.
  EXPECT_EQ(it[1], " => Non-conventional Centring vectors:  2");
  std::string entry = " => Latt( 1): (1/2,0,0)";
  EXPECT_EQ(it[2], entry + std::string(100 - entry.size(), ' '));
  EXPECT_EQ(it[3], "");
  EXPECT_EQ(it[4], " => List of S.O. without inversion and lattice centring translations");
}

}  // namespace
}  // namespace velmoria
