// Lattice translations of centred lattices and sub-orbits of a position.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/lattice.hpp"
#include "symmetry/records.hpp"

namespace velmoria {
namespace {

// Restores the default tolerance and the lattice globals at the end of a test.
struct Globals_Guard {
  ~Globals_Guard() {
    set_epsg_default();
    nlat = 0;
    ltr = {};
  }
};

const std::string all_letters = "PABCIRFZ";

bool trans(float a, float b, float c, char lat) {
  return lattice_trans(Vec3{a, b, c}, lat);
}

TEST(LatticeTrans, WholeCellsWithAnyLetter) {
  Globals_Guard guard;
  set_epsg_default();
  for (const char lat : all_letters + "abcirfz x?") {
    EXPECT_TRUE(trans(1, 0, -2, lat)) << lat;
    EXPECT_TRUE(trans(0, 0, 0, lat)) << lat;
    EXPECT_FALSE(trans(0.25f, 0, 0, lat)) << lat;
  }
}

TEST(LatticeTrans, CentringVectorsByLetter) {
  Globals_Guard guard;
  set_epsg_default();
  const struct {
    Vec3 v;
    std::string yes;  // letters for which v is a lattice translation
  } cases[] = {
      {{0.5f, 0.5f, 0}, "CF"},
      {{0, 0.5f, 0.5f}, "AF"},
      {{0.5f, 0, 0.5f}, "BF"},
      {{0.5f, 0.5f, 0.5f}, "I"},
      {{1.5f, -0.5f, 2}, "CF"},
      {{2.0f / 3, 1.0f / 3, 1.0f / 3}, "R"},
      {{1.0f / 3, 2.0f / 3, 2.0f / 3}, "R"},
      {{-1.0f / 3, 1.0f / 3, 1.0f / 3}, "R"},
      {{1.0f / 3, 2.0f / 3, 1.0f / 3}, ""},
      {{0.5f, 0, 0}, ""},
  };
  for (const auto& c : cases) {
    for (const char lat : std::string("PABCIRF")) {
      const bool expected = c.yes.find(lat) != std::string::npos;
      EXPECT_EQ(lattice_trans(c.v, lat), expected)
          << lat << " " << c.v[0] << " " << c.v[1] << " " << c.v[2];
      const char lower = static_cast<char>(lat - 'A' + 'a');
      EXPECT_EQ(lattice_trans(c.v, lower), expected) << lower;
    }
  }
  EXPECT_TRUE(lattice_trans(Vec3{0.5f, 0.5f, 0}, std::string_view("C")));
  EXPECT_FALSE(lattice_trans(Vec3{0.5f, 0.5f, 0}, std::string_view("")));
}

TEST(LatticeTrans, ToleranceOfTheRun) {
  Globals_Guard guard;
  set_epsg_sp(0.002f);
  EXPECT_TRUE(trans(0.499f, 0.501f, 0, 'C'));
  EXPECT_TRUE(trans(1.0005f, 0, 0, 'P'));
  set_epsg_default();
  EXPECT_FALSE(trans(0.499f, 0.501f, 0, 'C'));
}

TEST(LatticeTrans, LetterZUsesTheLastLattice) {
  Globals_Guard guard;
  set_epsg_default();
  nlat = 3;
  ltr[1] = {0.5f, 0.5f, 0.5f};
  ltr[2] = {0.25f, 0.25f, 0};
  EXPECT_TRUE(trans(0.5f, 0.5f, 0.5f, 'Z'));
  EXPECT_TRUE(trans(1.25f, 0.25f, -1, 'Z'));
  EXPECT_FALSE(trans(0.5f, 0.5f, 0, 'Z'));
  EXPECT_FALSE(trans(0.5f, 0.5f, 0.5f, 'z'));  // only the capital counts
  nlat = 2;
  EXPECT_FALSE(trans(0.25f, 0.25f, 0, 'Z'));  // columns beyond nlat are not used
  nlat = 100000;                              // a count past the table is held to it
  EXPECT_TRUE(trans(0.25f, 0.25f, 0, 'Z'));
}

Sym_Oper_Type op(const Mat3i& rot, const Vec3& tr) {
  Sym_Oper_Type o;
  o.rot = rot;
  o.tr = tr;
  return o;
}

const Mat3i e{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
const Mat3i two_y{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}};
const Mat3i inv{{{-1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};
const Mat3i m_y{{{1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};

// P 1 2/m 1 in the order of the records: 1, 2y, then the inverted copies -1, m_y.
Space_Group_Type p2m() {
  Space_Group_Type g;
  g.spg_lat = 'P';
  g.symop = {op(e, {}), op(two_y, {}), op(inv, {}), op(m_y, {})};
  g.num_ops = 2;
  g.centred = 2;
  g.multip = 4;
  g.num_lat = 1;
  return g;
}

// C 1 2 1: 1, 2y, then both with (1/2,1/2,0) added.
Space_Group_Type c2() {
  Space_Group_Type g;
  g.spg_lat = 'C';
  g.symop = {op(e, {}), op(two_y, {}), op(e, {0.5f, 0.5f, 0}), op(two_y, {0.5f, 0.5f, 0})};
  g.num_ops = 2;
  g.centred = 1;
  g.multip = 4;
  g.num_lat = 2;
  return g;
}

void expect_pos(const Vec3& v, float a, float b, float c) {
  EXPECT_NEAR(v[0], a, 1e-6f);
  EXPECT_NEAR(v[1], b, 1e-6f);
  EXPECT_NEAR(v[2], c, 1e-6f);
}

TEST(Suborbits, GeneralPositionOfP2m) {
  Globals_Guard guard;
  set_epsg_sp(0.002f);
  const Space_Group_Type g = p2m();
  const Vec3 x{0.1f, 0.2f, 0.3f};
  int mult = 0;
  std::vector<Vec3> orb(192);
  std::vector<int> ind(192, 7);

  // Subgroup P2 (operators 1 and 2): two sub-orbits of two positions.
  const std::vector<int> p2 = {1, 2, 0, 0};
  get_suborbits(x, g, p2, mult, orb, ind);
  ASSERT_EQ(mult, 4);
  expect_pos(orb[0], 0.1f, 0.2f, 0.3f);
  expect_pos(orb[1], 0.9f, 0.2f, 0.7f);
  expect_pos(orb[2], 0.9f, 0.8f, 0.7f);
  expect_pos(orb[3], 0.1f, 0.8f, 0.3f);
  EXPECT_EQ((std::vector<int>(ind.begin(), ind.begin() + 5)), (std::vector<int>{1, 1, 2, 2, 0}));

  // Subgroup P-1 (operators 1 and 3): position 1 goes with 3, position 2 with 4.
  get_suborbits(x, g, std::vector<int>{1, 3}, mult, orb, ind);
  EXPECT_EQ((std::vector<int>(ind.begin(), ind.begin() + 4)), (std::vector<int>{1, 2, 1, 2}));

  // The whole group: one sub-orbit.
  get_suborbits(x, g, std::vector<int>{1, 2, 3, 4}, mult, orb, ind);
  EXPECT_EQ((std::vector<int>(ind.begin(), ind.begin() + 4)), (std::vector<int>{1, 1, 1, 1}));

  // No operators at all: nothing is placed.
  get_suborbits(x, g, std::vector<int>{0, 1, 2}, mult, orb, ind);
  EXPECT_EQ(mult, 4);
  for (const int i : ind) EXPECT_EQ(i, 0);
  get_suborbits(x, g, std::vector<int>{}, mult, orb, ind);
  for (const int i : ind) EXPECT_EQ(i, 0);
}

TEST(Suborbits, SpecialPositionsAndPrimitiveImages) {
  Globals_Guard guard;
  set_epsg_sp(0.002f);
  const Space_Group_Type g = p2m();
  int mult = 0;
  std::vector<Vec3> orb;
  std::vector<int> ind;
  get_suborbits({0, 0, 0}, g, std::vector<int>{1, 2}, mult, orb, ind);
  EXPECT_EQ(mult, 1);
  EXPECT_EQ(ind[0], 1);
  EXPECT_GE(orb.size(), 4u);  // enlarged to the multiplicity of the group

  // On the mirror y = 1/2 the orbit has two positions, and P2 joins them.
  get_suborbits({0.1f, 0.5f, 0.3f}, g, std::vector<int>{1, 2}, mult, orb, ind);
  ASSERT_EQ(mult, 2);
  expect_pos(orb[1], 0.9f, 0.5f, 0.7f);
  EXPECT_EQ(ind[0], 1);
  EXPECT_EQ(ind[1], 1);

  // Images kept outside the cell when the primitive option is given.
  get_suborbits({0.1f, 0.2f, 0.3f}, g, std::vector<int>{1, 2}, mult, orb, ind, false, true);
  ASSERT_EQ(mult, 4);
  expect_pos(orb[1], -0.1f, 0.2f, -0.3f);
  EXPECT_EQ(ind[0], 1);
  EXPECT_EQ(ind[1], 1);
  EXPECT_EQ(ind[2], 2);
  EXPECT_EQ(ind[3], 2);
}

TEST(Suborbits, CentredLattice) {
  Globals_Guard guard;
  set_epsg_sp(0.002f);
  const Space_Group_Type g = c2();
  int mult = 0;
  std::vector<Vec3> orb(192);
  std::vector<int> ind(192);
  const Vec3 x{0.1f, 0.2f, 0.3f};
  // The centred images are the same atoms: two positions, one for each operator of the
  // identity subgroup.
  get_suborbits(x, g, std::vector<int>{1, 0}, mult, orb, ind);
  ASSERT_EQ(mult, 2);
  EXPECT_EQ(ind[0], 1);
  EXPECT_EQ(ind[1], 2);
  // The centring operator alone keeps each position in its own sub-orbit.
  get_suborbits(x, g, std::vector<int>{3}, mult, orb, ind);
  EXPECT_EQ(ind[0], 1);
  EXPECT_EQ(ind[1], 2);
  // Counted on the conventional cell the four images are distinct.
  get_suborbits(x, g, std::vector<int>{1, 2}, mult, orb, ind, true);
  ASSERT_EQ(mult, 4);
  expect_pos(orb[2], 0.6f, 0.7f, 0.3f);
  EXPECT_EQ((std::vector<int>(ind.begin(), ind.begin() + 4)), (std::vector<int>{1, 1, 2, 2}));
}

TEST(Suborbits, BadOperatorNumbersAreSkipped) {
  Globals_Guard guard;
  set_epsg_sp(0.002f);
  Space_Group_Type g = p2m();
  int mult = 0;
  std::vector<Vec3> orb;
  std::vector<int> ind;
  get_suborbits({0.1f, 0.2f, 0.3f}, g, std::vector<int>{-4, 99, 2, 1}, mult, orb, ind);
  EXPECT_EQ((std::vector<int>(ind.begin(), ind.begin() + 4)), (std::vector<int>{1, 1, 2, 2}));
  // A multiplicity larger than the list of operators is held to the list.
  g.multip = 50;
  get_suborbits({0.1f, 0.2f, 0.3f}, g, std::vector<int>{1, 2}, mult, orb, ind);
  EXPECT_EQ(mult, 4);
  g.symop.clear();
  get_suborbits({0.1f, 0.2f, 0.3f}, g, std::vector<int>{1, 2}, mult, orb, ind);
  EXPECT_EQ(mult, 1);
  EXPECT_EQ(ind[0], 0);
}

}  // namespace
}  // namespace velmoria
