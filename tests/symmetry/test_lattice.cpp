// Lattice translations of centred lattices.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/lattice.hpp"
#include "symmetry/records.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

TEST(LatticeTrans, CentringVectorsByLetter) {
  testing::Run_Tolerance restore;
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
  testing::Run_Tolerance restore;
  EXPECT_TRUE(lattice_trans(Vec3{0.499f, 0.501f, 0}, 'C'));
  EXPECT_TRUE(lattice_trans(Vec3{1.0005f, 0, 0}, 'P'));
  set_epsg_default();
  EXPECT_FALSE(lattice_trans(Vec3{0.499f, 0.501f, 0}, 'C'));
}

}  // namespace
}  // namespace velmoria
