// Lattice translations of centred lattices.
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

}  // namespace
}  // namespace velmoria
