// Setting up space group records by number, symbol, Hall symbol, generators and fixed lists:
// the closure of generators, the analysis of complete lists and the reading of Hall symbols
// (the order of the reduced set, the lattice named by the pure translations, the centre of
// symmetry), and the failures of the setup, which reach the caller of set_spacegroup and the
// run's output with the message of the routine that failed.  The listing of a record: whole
// listings against the files of tests/data, and the parts that depend on the lattice.
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "run/run_driver.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/listing.hpp"
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

TEST(RunErrors, GeneratorThatCannotBeReadStopsTheRunWithItsMessage) {
  const Run_Output out =
      run_velmoria({"t", "GEN  -x,-y,z+q\nKVEC  0 0 0  GM\nVMODE AXI\nATOM  Cu  CU  0 0 0\n", ""});
  const std::string stop = " =>" + bad_character + ": -x,-y,z+q";
  EXPECT_EQ(testing::lines_of(out.result).back(), stop);
  EXPECT_EQ(testing::lines_of(out.console).back(), stop);
  EXPECT_EQ(out.result.find("Information on Space Group"), std::string::npos);
}

using testing::lines_of;

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
  g.symop = {{identity_matrix, {}}, {inversion_matrix, {}}};
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
  g.symop = {{identity_matrix, {}},
             {{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}, {0, 0.5f, 0.5f}},
             {inversion_matrix, {}},
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
