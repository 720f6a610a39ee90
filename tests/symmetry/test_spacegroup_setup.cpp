// Setting up space group records by number, symbol, Hall symbol, generators and fixed lists:
// the closure of generators, the analysis of complete lists and the reading of Hall symbols
// (the order of the reduced set, the lattice named by the pure translations, the centre of
// symmetry), and the failures of the setup, which reach the caller of set_spacegroup and the
// run's output with the message of the routine that failed.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "run/run_driver.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
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
  // Its number, Hall symbol and setting are checked with every row of the generator table.
  EXPECT_EQ(g.spg_symb, "P 21 21 21");
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

TEST(SpacegroupSetup, FixedListsAndBadInputStayInBounds) {
  Space_Group_Type g;
  // Not a group: the list is kept as it is, in its order.
  std::vector<std::string> ops = {"x,y,z", "-x,-y,z", "-x,y,-z"};
  set_spacegroup("", g, &ops, 3, "FIX");
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.multip, 3);
  EXPECT_EQ(g.num_ops, 3);
  EXPECT_EQ(g.num_gen, 2);
  EXPECT_EQ(symbols_of(g), ops);
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
    if (mode != "FIX") expect_closed_group(g, c.ops);
  }
}

const std::string bad_character = " Invalid character... q in operator string";

// A failure inside any road of the space-group setup reaches the caller with the message of
// the routine that failed, and leaves no operators: (road, text or operators, message).
TEST(SetupErrors, EachFailureReportsItsMessage) {
  const struct {
    const char* road;               // nullptr: the setup chooses
    std::vector<std::string> text;  // the symbol, or the operators for GEN and FIX
    std::string message;
  } cases[] = {
      {"FIX", {"x,y,z", "-x,-y,z+q"}, bad_character},  // the reading of the operator finds the q
      {"GEN",
       {"-x,-y,z", "2x,y,z"},
       "The matrix corresponding to a generator has a determinant with absolute value "
       "different of 1.0"},
      {"GEN", {"x/2,y,z"}, "The matrix corresponding to a generator has non-integer values!"},
      {"GEN", {}, " Generators should be provided in GEN calling Set_SpaceGroup"},
      {"HAL", {"Q 1"}, " IBRAVL is Equal Zero"},
      {"HAL", {"P 4 3 -1"}, " Dimension of Table exceeded (II)"},  // no group
      {"ITC",
       {"Q 9 9"},
       " Problems in SpaceGroup: Q 9 9 => the HM symbol or the number is incorrect "},
      {"XYZ", {"14"}, " Problems in SpaceGroup"},
      {nullptr, {"P 9 X"}, "Error in the provided symbol/number of the space group"},
      {nullptr, {"231"}, " Number of Space Group out of limits"},
      // The faults of a Hermann-Mauguin symbol.
      {"HMS", {"P 5"}, " The fivefold axis is not allowed"},
      {"HMS", {"P M/N M M"}, " There is more than one plane within the same symmetry direction"},
  };
  for (const auto& c : cases) {
    const bool listed =
        c.road != nullptr && (std::string(c.road) == "GEN" || std::string(c.road) == "FIX");
    const std::string symbol = listed || c.text.empty() ? "" : c.text[0];
    SCOPED_TRACE(symbol);
    Space_Group_Type spg;
    init_err_symm();
    if (c.road == nullptr) {
      set_spacegroup(symbol, spg);
    } else if (listed && !c.text.empty()) {
      set_spacegroup(symbol, spg, &c.text, static_cast<int>(c.text.size()), c.road);
    } else {
      set_spacegroup(symbol, spg, nullptr, std::nullopt, c.road);
    }
    EXPECT_TRUE(err_symm);
    EXPECT_EQ(err_symm_mess, c.message);
    EXPECT_TRUE(spg.symop.empty());
    EXPECT_EQ(err_symm_depth, 0);
  }
  // Texts too long or empty fail without running past their fields; a good call afterwards
  // starts from a clean state.
  Space_Group_Type g;
  for (const std::string& text : {std::string(500, 'P'), std::string(":::")}) {
    set_spacegroup(text, g);
    EXPECT_TRUE(err_symm) << text;
  }
  // R 3 2 on rhombohedral axes with the centre off the origin: five generators for the Hall
  // symbol; the operators stay, unnamed.
  std::vector<std::string> gen = {"z,x,y", "-y,-x,-z", "-x+1/2,-y+1/2,-z+1/2"};
  set_spacegroup(" ", g, &gen, 3, "GEN");
  EXPECT_EQ(err_symm_mess, " Error in generators");
  EXPECT_EQ(g.setting, "Non-Conventional (user-given operators)");
  set_spacegroup("2", g);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(g.multip, 2);
}

std::string last_line(std::string t) {
  while (!t.empty() && t.back() == '\n') t.pop_back();
  const std::size_t nl = t.rfind('\n');
  return nl == std::string::npos ? t : t.substr(nl + 1);
}

TEST(RunErrors, GeneratorThatCannotBeReadStopsTheRunWithItsMessage) {
  const Run_Output out =
      run_velmoria({"t", "GEN  -x,-y,z+q\nKVEC  0 0 0  GM\nVMODE AXI\nATOM  Cu  CU  0 0 0\n", ""});
  const std::string stop = " =>" + bad_character + ": -x,-y,z+q";
  EXPECT_EQ(last_line(out.result), stop);
  EXPECT_EQ(last_line(out.console), stop);
  EXPECT_EQ(out.result.find("Information on Space Group"), std::string::npos);
}

}  // namespace
}  // namespace velmoria
