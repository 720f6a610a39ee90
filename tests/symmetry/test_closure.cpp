// Closure of space groups from generators, analysis of complete lists and reading of Hall
// symbols, through the set-up of a group: the order of the reduced set, the lattice named by
// the pure translations, and the centre of symmetry.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

// Worked by hand: generators (GEN), a complete list (FIX) or a Hall symbol (HAL), separated by
// ";"; the lattice symbol (its letter last), the number of centring vectors (the null one
// included), the centre (2 at the origin, 0 elsewhere, 1 none) with its x coordinate, and the
// reduced set in its order.
TEST(Closure, GeneratorsAndListsWorkedByHand) {
  const struct {
    const char *mode, *ops, *latsy;
    int num_lat, centred;
    float centre_x;
    const char* reduced;
  } cases[] = {
      // The generators, then their products.
      {"GEN", "-x+1/2,-y,z+1/2;-x,y+1/2,-z+1/2", "oP", 1, 1, 0,
       "x,y,z;-x+1/2,-y,z+1/2;-x,y+1/2,-z+1/2;x+1/2,-y+1/2,-z"},
      {"GEN", "x+1/2,y+1/2,z;-x,-y,z", "mC", 2, 1, 0, "x,y,z;-x,-y,z"},
      // Two of A, B and C make F.
      {"GEN", "x+1/2,y+1/2,z;x,y+1/2,z+1/2;-x,-y,z", "mF", 4, 1, 0, "x,y,z;-x,-y,z"},
      {"FIX", "x,y,z;x+1/2,y+1/2,z;x,y+1/2,z+1/2", "aZ", 3, 1, 0, ""},
      // The centring and -1 leave the generators; the reduced set keeps two operators.
      {"GEN", "x+1/2,y+1/2,z;-x,y,-z+1/2;-x,-y,-z", "mC", 2, 2, 0, "x,y,z;-x,y,-z+1/2"},
      // In I 41 the square of -y,x+1/2,z+1/4 has the translation (1/2,1/2,1/2), which the
      // lattice takes to zero: the products bring it in last.
      {"GEN", "x+1/2,y+1/2,z+1/2;-y,x+1/2,z+1/4", "tI", 2, 1, 0,
       "x,y,z;-y,x+1/2,z+1/4;y,-x+1/2,z+1/4;-x,-y,z"},
      {"GEN", "-x,-y,z;-x+1/2,-y,-z", "mP", 1, 0, 0.25f, "x,y,z;-x,-y,z"},
      // 31 along z with the default twofold axis behind it; the shift (0,0,1/12) of the
      // origin leaves the screw part and moves the translation of -y,-x,-z from 1/2 to 2/3.
      {"HAL", "P 31 2c (0 0 1)", "hP", 1, 1, 0, "x,y,z;-y,x-y,z+1/3;-y,-x,-z+2/3"},
      {"HAL", "P 2 -1n", "mP", 1, 0, 0.25f, "x,y,z;-x,-y,z"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.ops);
    const std::string mode = c.mode;
    std::vector<std::string> ops = split_generators(c.ops);
    Space_Group_Type g;
    init_err_symm();
    if (mode == "HAL") {
      set_spacegroup(c.ops, g, nullptr, std::nullopt, c.mode);
    } else {
      set_spacegroup("", g, &ops, static_cast<int>(ops.size()), c.mode);
    }
    ASSERT_FALSE(err_symm) << err_symm_mess;
    EXPECT_EQ(g.spg_latsy, c.latsy);
    EXPECT_EQ(g.spg_lat, c.latsy[1]);
    EXPECT_EQ(g.num_lat, c.num_lat);
    EXPECT_EQ(g.centred, c.centred);
    EXPECT_FLOAT_EQ(g.centre_coord[0], c.centre_x);
    const std::vector<std::string> reduced = split_generators(c.reduced);
    for (std::size_t i = 0; i < reduced.size() && *c.reduced != 0; ++i)
      EXPECT_EQ(g.symop_symb[i], reduced[i]);
    if (mode != "FIX") testing::expect_closed_group(g, c.ops);
  }
}

}  // namespace
}  // namespace velmoria
