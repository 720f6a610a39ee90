// Closure of space groups from generators, analysis of complete lists and reading of Hall
// symbols, through the set-up of a group: the order of the reduced set, the lattice named by
// the pure translations, and the centre of symmetry.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

// Worked by hand: generators (GEN), a complete list (FIX) or a Hall symbol (HAL), the
// lattice symbol and letter,
// the number of centring vectors (the null one included), the centre (2 at the origin, 0
// elsewhere, 1 none) with its x coordinate, and the reduced set in its order.
TEST(Closure, GeneratorsAndListsWorkedByHand) {
  const struct {
    const char* mode;
    std::vector<std::string> ops;  // the operators, or the symbol alone
    const char* latsy;
    char lat;
    int num_lat, centred;
    float centre_x;
    std::vector<std::string> reduced;
  } cases[] = {
      // The generators, then their products.
      {"GEN",
       {"-x+1/2,-y,z+1/2", "-x,y+1/2,-z+1/2"},
       "oP",
       'P',
       1,
       1,
       0,
       {"x,y,z", "-x+1/2,-y,z+1/2", "-x,y+1/2,-z+1/2", "x+1/2,-y+1/2,-z"}},
      {"GEN", {"x+1/2,y+1/2,z", "-x,-y,z"}, "mC", 'C', 2, 1, 0, {"x,y,z", "-x,-y,z"}},
      // Two of A, B and C make F.
      {"GEN",
       {"x+1/2,y+1/2,z", "x,y+1/2,z+1/2", "-x,-y,z"},
       "mF",
       'F',
       4,
       1,
       0,
       {"x,y,z", "-x,-y,z"}},
      {"FIX", {"x,y,z", "x+1/2,y+1/2,z", "x,y+1/2,z+1/2"}, "aZ", 'Z', 3, 1, 0, {}},
      // The centring and -1 leave the generators; the reduced set keeps two operators.
      {"GEN",
       {"x+1/2,y+1/2,z", "-x,y,-z+1/2", "-x,-y,-z"},
       "mC",
       'C',
       2,
       2,
       0,
       {"x,y,z", "-x,y,-z+1/2"}},
      // In I 41 the square of -y,x+1/2,z+1/4 has the translation (1/2,1/2,1/2), which the
      // lattice takes to zero: the products bring it in last.
      {"GEN",
       {"x+1/2,y+1/2,z+1/2", "-y,x+1/2,z+1/4"},
       "tI",
       'I',
       2,
       1,
       0,
       {"x,y,z", "-y,x+1/2,z+1/4", "y,-x+1/2,z+1/4", "-x,-y,z"}},
      {"GEN", {"-x,-y,z", "-x+1/2,-y,-z"}, "mP", 'P', 1, 0, 0.25f, {"x,y,z", "-x,-y,z"}},
      // 31 along z with the default twofold axis behind it; the shift (0,0,1/12) of the
      // origin leaves the screw part and moves the translation of -y,-x,-z from 1/2 to 2/3.
      {"HAL", {"P 31 2c (0 0 1)"}, "hP", 'P', 1, 1, 0, {"x,y,z", "-y,x-y,z+1/3", "-y,-x,-z+2/3"}},
      {"HAL", {"P 2 -1n"}, "mP", 'P', 1, 0, 0.25f, {"x,y,z", "-x,-y,z"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.ops[0] + " ...");
    std::vector<std::string> ops = c.ops;
    Space_Group_Type g;
    init_err_symm();
    if (std::string(c.mode) == "HAL") {
      set_spacegroup(ops[0], g, nullptr, std::nullopt, c.mode);
    } else {
      set_spacegroup("", g, &ops, static_cast<int>(ops.size()), c.mode);
    }
    ASSERT_FALSE(err_symm) << err_symm_mess;
    EXPECT_EQ(g.spg_latsy, c.latsy);
    EXPECT_EQ(g.spg_lat, c.lat);
    EXPECT_EQ(g.num_lat, c.num_lat);
    EXPECT_EQ(g.centred, c.centred);
    EXPECT_FLOAT_EQ(g.centre_coord[0], c.centre_x);
    for (std::size_t i = 0; i < c.reduced.size(); ++i) EXPECT_EQ(g.symop_symb[i], c.reduced[i]);
    if (std::string(c.mode) != "FIX") testing::expect_closed_group(g, c.ops[0]);
  }
}

}  // namespace
}  // namespace velmoria
