// Listing of a space group record, line by line against the layouts of the listing.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "symmetry/listing.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"

namespace velmoria {
namespace {

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string blanks(std::size_t n) {
  return std::string(n, ' ');
}

// Text placed from 1-based column `col` of a line, blanks before it.
std::string at(const std::string& line, std::size_t col, const std::string& text) {
  std::string s = line;
  if (s.size() < col - 1) s += blanks(col - 1 - s.size());
  return s + text;
}

std::string padded(const std::string& s, std::size_t n) {
  return s + blanks(n - s.size());
}

Sym_Oper_Type op(Mat3i rot, Vec3 tr) {
  return {rot, tr};
}

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
  g.symop = {op(unit, {0, 0, 0}), op(minus_unit, {0, 0, 0})};
  g.symop_symb = {"x,y,z", "-x,-y,-z"};
  g.asym_unit = {Vec3{0, 0, 0}, Vec3{0.5f, 1, 1}};
  return g;
}

const std::vector<std::string> heading = {
    "", "", "        Information on Space Group: ", "        --------------------------- ", "",
};

TEST(Listing, ShortListingOfPMinus1) {
  std::string out;
  write_spacegroup(p_minus_1(), out);
  std::vector<std::string> expected = heading;
  std::vector<std::string> body = {
      " =>   Number of Space group:   2",
      " =>  Hermann-Mauguin Symbol: P -1",
      " =>             Hall Symbol: -P 1",
      " =>            Setting Type: Generated from Hall symbol",
      " =>          Crystal System: Triclinic",
      " =>              Laue Class: -1",
      " =>             Point Group: -1",
      " =>         Bravais Lattice: P",
      " =>          Lattice Symbol: aP",
      " =>  Reduced Number of S.O.:   1",
      " =>    General multiplicity:   2",
      " =>          Centrosymmetry: Centric (-1 at origin)",
      " =>  Generators (exc. -1&L):   0",
      " =>         Asymmetric unit:  0.000 <= x <=  0.500",
      blanks(29) + " 0.000 <= y <=  1.000",
      blanks(29) + " 0.000 <= z <=  1.000",
      "",
      " => List of S.O. without inversion and lattice centring translations",
      " => SYMM(  1): x,y,z",
  };
  expected.insert(expected.end(), body.begin(), body.end());
  EXPECT_EQ(lines_of(out), expected);
  EXPECT_EQ(out.back(), '\n');
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
  g.symop = {op(unit, {0, 0, 0}), op({{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}, {0, 0.5f, 0.5f}),
             op(minus_unit, {0, 0, 0}), op({{{1, 0, 0}, {0, -1, 0}, {0, 0, 1}}}, {0, 0.5f, 0.5f})};
  g.symop_symb = {"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"};
  g.wyckoff.num_orbit = 2;
  g.wyckoff.orbit.resize(2);
  g.wyckoff.orbit[0].multp = 2;
  g.wyckoff.orbit[0].norb = 2;
  g.wyckoff.orbit[0].str_orbit = {"0,0,0", "0,1/2,1/2"};
  g.wyckoff.orbit[1].multp = 2;
  g.wyckoff.orbit[1].norb = 2;
  g.wyckoff.orbit[1].str_orbit = {"1/2,0,0", "1/2,1/2,1/2"};
  return g;
}

TEST(Listing, FullListingOfP21c) {
  std::string out;
  write_spacegroup(p_21_c(), out, true);
  std::vector<std::string> lines = lines_of(out);
  std::vector<std::string> expected = heading;
  std::vector<std::string> body = {
      " =>   Number of Space group:  14",
      " =>  Hermann-Mauguin Symbol: P 21/c",
      " =>             Hall Symbol: -P 2ybc",
      " =>    Table Setting Choice: b1",
      " =>            Setting Type: Generated from Hall symbol",
      " =>          Crystal System: Monoclinic",
      " =>              Laue Class: 2/m",
      " =>             Point Group: 2/m",
      " =>         Bravais Lattice: P",
      " =>          Lattice Symbol: mP",
      " =>  Reduced Number of S.O.:   2",
      " =>    General multiplicity:   4",
      " =>          Centrosymmetry: Centric (-1 at origin)",
      " =>  Generators (exc. -1&L):   1",
      " =>         Asymmetric unit:  0.000 <= x <=  0.500",
      blanks(29) + " 0.000 <= y <=  1.000",
      blanks(29) + " 0.000 <= z <=  1.000",
      // A primitive lattice: no vector, one line of 100 blanks.
      " => Centring vectors:  0",
      blanks(100),
      "",
      " => List of all Symmetry Operators and Symmetry Symbols",
      "",
      at(" => SYMM(  1): x,y,z", 50, "Symbol: 1"),
      at(" => SYMM(  2): -x,y+1/2,-z+1/2", 50, "Symbol: 2 (0,1/2,0) 0,y,1/4"),
      at(" => SYMM(  3): -x,-y,-z", 50, "Symbol: -1 0,0,0"),
      at(" => SYMM(  4): x,-y+1/2,z+1/2", 50, "Symbol: c x,1/4,z"),
      "",
      " => Special Wyckoff Positions for P 21/c",
      " ",
      "    Multp     Site        Representative Coordinates (centring translations excluded)",
      // Highest letter first; positions at columns 30, 50 and 70, each in 40 columns (the
      // second overwrites the blank tail of the first).
      padded(at(at(at("      2", 15, "b"), 30, "1/2,0,0"), 50, "1/2,1/2,1/2"), 109),
      " ",
      padded(at(at(at("      2", 15, "a"), 30, "0,0,0"), 50, "0,1/2,1/2"), 109),
      " ",
  };
  expected.insert(expected.end(), body.begin(), body.end());
  ASSERT_EQ(lines.size(), expected.size());
  for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(lines[i], expected[i]) << "line " << i;
}

TEST(Listing, CentringVectorsTwoToALine) {
  Space_Group_Type g = p_minus_1();
  g.spg_lat = 'F';
  g.num_lat = 4;
  g.latt_trans = {Vec3{0, 0, 0}, Vec3{0, 0.5f, 0.5f}, Vec3{0.5f, 0, 0.5f}, Vec3{0.5f, 0.5f, 0}};
  std::string out;
  write_spacegroup(g, out, true);
  std::vector<std::string> lines = lines_of(out);
  auto it = std::find(lines.begin(), lines.end(), " => Centring vectors:  3");
  ASSERT_NE(it, lines.end());
  ASSERT_LT(it + 2, lines.end());
  std::string first = " => Latt( 1): (0,1/2,1/2)";
  first += blanks(50 - first.size());
  first += " => Latt( 2): (1/2,0,1/2)";
  EXPECT_EQ(it[1], first + blanks(100 - first.size()));
  std::string second = " => Latt( 3): (1/2,1/2,0)";
  EXPECT_EQ(it[2], second + blanks(100 - second.size()));
  EXPECT_EQ(it[3], "");  // the blank line before the operators
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
  EXPECT_EQ(it[2], entry + blanks(100 - entry.size()));
  EXPECT_EQ(it[3], "");
  EXPECT_EQ(it[4], " => List of S.O. without inversion and lattice centring translations");
}

TEST(Listing, ShortListTwoOperatorsToALine) {
  Space_Group_Type g = p_21_c();
  g.num_ops = 3;
  g.symop_symb[2] = "-x,-y,z";
  std::string out;
  write_spacegroup(g, out);
  std::vector<std::string> lines = lines_of(out);
  ASSERT_GE(lines.size(), 2u);
  std::string first = " => SYMM(  1): x,y,z";
  first += blanks(50 - first.size()) + " => SYMM(  2): -x,y+1/2,-z+1/2";
  EXPECT_EQ(lines[lines.size() - 2], first);
  EXPECT_EQ(lines.back(), " => SYMM(  3): -x,-y,z");
}

TEST(Listing, EveryGroupListsAllItsOperatorsAndOrbits) {
  Space_Group_Type g;
  for (int n = 1; n <= 230; ++n) {
    set_spacegroup(std::to_string(n), g);
    ASSERT_FALSE(err_symm) << n;
    std::string out;
    write_spacegroup(g, out, true);
    std::vector<std::string> lines = lines_of(out);
    int symm = 0;
    int orbit_lines = 0;
    for (const std::string& line : lines) {
      if (line.rfind(" => SYMM(", 0) == 0) {
        ++symm;
        // Every operator has a symbol.
        EXPECT_GE(line.size(), 58u) << n << ": " << line;
      }
      if (line.size() == 109) ++orbit_lines;
    }
    EXPECT_EQ(symm, g.multip) << n;
    int expected_orbit_lines = 0;
    for (const auto& orb : g.wyckoff.orbit) expected_orbit_lines += (orb.norb + 2) / 3;
    EXPECT_EQ(orbit_lines, expected_orbit_lines) << n;
  }
}

TEST(Listing, DegenerateRecordsDoNotOverrun) {
  Space_Group_Type g;  // initial values: nothing set up
  std::string out;
  write_spacegroup(g, out, true);
  write_spacegroup(g, out);
  EXPECT_NE(out.find(" => Centring vectors: -1"), std::string::npos);
  // Counts larger than the lists they describe.
  g = p_21_c();
  g.multip = 50;
  g.num_ops = 500;
  g.wyckoff.num_orbit = 26;
  g.wyckoff.orbit[0].norb = 40;
  out.clear();
  write_spacegroup(g, out, true);
  write_spacegroup(g, out);
  EXPECT_NE(out.find(" => SYMM(  4): "), std::string::npos);
  EXPECT_EQ(out.find(" => SYMM(  5): "), std::string::npos);
}

}  // namespace
}  // namespace velmoria
