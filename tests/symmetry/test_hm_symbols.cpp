// Space groups read from their Hermann-Mauguin symbols: the operators of each crystal system in
// the order of the rules, the faults of the text, the symbol's own road through the setup, and a
// sweep of every tabulated symbol against the group of its Hall symbol.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "support/text.hpp"
#include "symmetry/hm_symbols.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

struct Hms_Result {
  int isystem = -1, icentre = -1, ibravl = -1, ng = -1;
  std::string latsy;
  std::vector<Mat3i> ss;
  std::vector<Vec3> ts;
};

Hms_Result hms(std::string_view symbol) {
  Hms_Result r;
  get_so_from_hms(r.isystem, &r.icentre, r.ibravl, r.ng, r.ss, r.ts, r.latsy, symbol);
  return r;
}

// Operator k (1-based) of the result equals the x,y,z text, translations within 0.0002.
void expect_op(const Hms_Result& r, int k, const std::string& want) {
  ASSERT_GE(r.ng, k) << want;
  ASSERT_GE(static_cast<int>(r.ss.size()), k) << want;
  Mat3i rot{};
  Vec3 t{};
  read_xsym(want, 1, rot, t);
  const auto i = static_cast<std::size_t>(k - 1);
  EXPECT_EQ(r.ss[i], rot) << "operator " << k << " should be " << want;
  for (int c = 0; c < 3; ++c)
    EXPECT_NEAR(r.ts[i][c], t[c], 0.0002f) << "operator " << k << " " << want;
}

void expect_ops(const Hms_Result& r, const std::vector<std::string>& want) {
  ASSERT_FALSE(err_symm) << err_symm_mess;
  ASSERT_EQ(r.ng, static_cast<int>(want.size()));
  ASSERT_EQ(r.ss.size(), want.size());
  for (std::size_t k = 0; k < want.size(); ++k) expect_op(r, static_cast<int>(k) + 1, want[k]);
}

TEST(HmSymbols, MonoclinicShortAndLongForms) {
  for (const char* symbol : {"P 21/C", "P 1 21/C 1", "p 21/c"}) {
    Hms_Result r = hms(symbol);
    expect_ops(r, {"x,y,z", "-x,y+1/2,-z+1/2"});
    EXPECT_EQ(r.icentre, 2) << symbol;
    EXPECT_EQ(r.isystem, 2) << symbol;
    EXPECT_EQ(r.latsy, "mP") << symbol;
    EXPECT_EQ(r.ibravl, 1) << symbol;
  }
  // Unique axis c, a mirror with an n glide: the glide is in the two other directions.
  expect_ops(hms("P 1 1 2/N"), {"x,y,z", "-x+1/2,-y+1/2,z"});
  expect_ops(hms("C 1 C 1"), {"x,y,z", "x,-y,z+1/2"});
  Hms_Result r = hms("C C");
  EXPECT_EQ(r.icentre, 1);
  EXPECT_EQ(r.ibravl, 4);
  EXPECT_EQ(r.latsy, "mC");
  expect_ops(r, {"x,y,z", "x,-y,z+1/2"});
}

TEST(HmSymbols, TriclinicGroups) {
  Hms_Result r = hms("P 1");
  expect_ops(r, {"x,y,z"});
  EXPECT_EQ(r.icentre, 1);
  EXPECT_EQ(r.isystem, 1);
  EXPECT_EQ(r.latsy, "aP");
  r = hms("F -1");
  expect_ops(r, {"x,y,z"});
  EXPECT_EQ(r.icentre, 2);
  EXPECT_EQ(r.ibravl, 7);
  EXPECT_EQ(r.latsy, "aF");
  // latsym has set the lattice of the letter.
  EXPECT_EQ(lat_ch, 'F');
  EXPECT_EQ(nlat, 4);
}

TEST(HmSymbols, OrthorhombicGroups) {
  Hms_Result r = hms("P M M M");
  expect_ops(r, {"x,y,z", "x,-y,-z", "-x,y,-z", "-x,-y,z"});
  EXPECT_EQ(r.icentre, 2);
  EXPECT_EQ(r.isystem, 3);
  EXPECT_EQ(r.latsy, "oP");
  expect_ops(hms("P N M A"), {"x,y,z", "x+1/2,-y+1/2,-z+1/2", "-x,y+1/2,-z", "-x+1/2,-y,z+1/2"});
  // Centred centric groups moved to the centre at the origin.
  expect_ops(hms("C M C A"), {"x,y,z", "x+1/2,-y+1/2,-z", "-x+1/2,y,-z+1/2", "-x,-y+1/2,z+1/2"});
  expect_ops(hms("I M M A"), {"x,y,z", "x+1/2,-y+1/2,-z+1/2", "-x+1/2,y,-z+1/2", "-x,-y+1/2,z"});
  // One "M" with lattice I: no shift.  The glides b and a give x+1/2,-y+1/2 and -x+1/2,y+1/2.
  expect_ops(hms("I B A M"), {"x,y,z", "x+1/2,-y+1/2,-z", "-x+1/2,y+1/2,-z", "-x,-y,z"});
  // The 222 family.
  r = hms("P 21 21 21");
  expect_ops(r, {"x,y,z", "x+1/2,-y+1/2,-z", "-x,y+1/2,-z+1/2", "-x+1/2,-y,z+1/2"});
  EXPECT_EQ(r.icentre, 1);
  expect_ops(hms("P 21 21 2"), {"x,y,z", "x+1/2,-y+1/2,-z", "-x+1/2,y+1/2,-z", "-x,-y,z"});
  expect_ops(hms("C 2 2 21"), {"x,y,z", "x,-y,-z", "-x,y,-z+1/2", "-x,-y,z+1/2"});
  // The mm2 family.
  expect_ops(hms("P N A 21"), {"x,y,z", "-x+1/2,y+1/2,z+1/2", "x+1/2,-y+1/2,z", "-x,-y,z+1/2"});
  // M then N: only the twofold axis takes up the missing half along a.
  expect_ops(hms("P M N 21"), {"x,y,z", "-x,y,z", "x+1/2,-y,z+1/2", "-x+1/2,-y,z+1/2"});
  expect_ops(hms("F D D 2"), {"x,y,z", "-x+1/4,y+1/4,z+1/4", "x+1/4,-y+1/4,z+1/4", "-x,-y,z"});
  r = hms("F D D D");
  EXPECT_EQ(r.icentre, 2);
  expect_ops(r, {"x,y,z", "x,-y+1/4,-z+1/4", "-x+1/4,y,-z+1/4", "-x+1/4,-y+1/4,z"});
}

TEST(HmSymbols, TetragonalGroups) {
  Hms_Result r = hms("P 4");
  expect_ops(r, {"x,y,z", "-y,x,z", "-x,-y,z", "y,-x,z"});
  EXPECT_EQ(r.isystem, 4);
  EXPECT_EQ(r.latsy, "tP");
  expect_ops(hms("P -4"), {"x,y,z", "y,-x,-z", "-x,-y,z", "-y,x,-z"});
  r = hms("P 41 2 2");
  ASSERT_EQ(r.ng, 8);
  expect_op(r, 2, "-y,x,z+1/4");
  expect_op(r, 5, "y,x,-z+3/4");
  r = hms("P 41 21 2");
  expect_op(r, 2, "-y+1/2,x+1/2,z+1/4");
  expect_op(r, 5, "y,x,-z");
  r = hms("I 41/A");
  EXPECT_EQ(r.icentre, 2);
  EXPECT_EQ(r.ng, 4);
  expect_op(r, 2, "-y+3/4,x+1/4,z+1/4");
  expect_op(hms("I 41/A M D"), 2, "-y+1/4,x+3/4,z+1/4");
  expect_op(hms("P 4/N"), 2, "-y+1/2,x,z");
  expect_op(hms("P 42/N"), 2, "-y,x+1/2,z+1/2");
  // The second half: mirrors with the glide of the second item.
  r = hms("P 4 B M");
  expect_op(r, 5, "-x+1/2,y+1/2,z");
  expect_op(r, 6, "y+1/2,x+1/2,z");
  r = hms("P -4 21 C");
  expect_op(r, 5, "x+1/2,-y+1/2,-z+1/2");
}

TEST(HmSymbols, TrigonalAndHexagonalGroups) {
  Hms_Result r = hms("P 31 2 1");
  EXPECT_EQ(r.isystem, 5);
  EXPECT_EQ(r.latsy, "hP");
  expect_op(r, 2, "-y,x-y,z+1/3");
  expect_op(r, 3, "-x+y,-x,z+2/3");
  expect_op(r, 4, "y,x,-z");
  expect_op(hms("P 31 1 2"), 4, "-y,-x,-z+2/3");
  r = hms("P 65 2 2");
  EXPECT_EQ(r.isystem, 6);
  ASSERT_EQ(r.ng, 12);
  expect_op(r, 2, "x-y,x,z+5/6");
  expect_op(r, 3, "-y,x-y,z+2/3");
  expect_op(r, 7, "y,x,-z+2/3");
  r = hms("P -6 C 2");
  expect_op(r, 4, "x,y,-z+1/2");
  expect_op(r, 7, "-y,-x,z+1/2");
  expect_ops(hms("P 6"), {"x,y,z", "x-y,x,z", "-y,x-y,z", "-x,-y,z", "-x+y,-x,z", "y,-x+y,z"});
  r = hms("R -3 C");
  EXPECT_EQ(r.icentre, 2);
  EXPECT_EQ(r.ibravl, 6);
  EXPECT_EQ(r.latsy, "hR");
  ASSERT_EQ(r.ng, 6);
  expect_op(r, 4, "-y,-x,z+1/2");
  EXPECT_EQ(hms("P -6").icentre, 1);
  EXPECT_EQ(hms("P -3").icentre, 2);
}

TEST(HmSymbols, CubicGroups) {
  Hms_Result r = hms("P 2 3");
  EXPECT_EQ(r.isystem, 7);
  EXPECT_EQ(r.latsy, "cP");
  EXPECT_EQ(r.icentre, 1);
  expect_ops(r, {"x,y,z", "x,-y,-z", "-x,y,-z", "-x,-y,z", "y,z,x", "-y,-z,x", "y,-z,-x", "-y,z,-x",
                 "z,x,y", "-z,x,-y", "-z,-x,y", "z,-x,-y"});
  expect_op(hms("P 21 3"), 2, "x+1/2,-y+1/2,-z");
  r = hms("F D -3 C");
  EXPECT_EQ(r.icentre, 2);
  ASSERT_EQ(r.ng, 24);
  expect_op(r, 13, "y,x,z+1/2");
  expect_op(hms("I A -3 D"), 13, "y+1/4,x+1/4,z+1/4");
  expect_op(hms("F 41 3 2"), 13, "y+1/4,x+1/4,-z+1/4");
  r = hms("F M -3 M");
  EXPECT_EQ(r.ng, 24);
  EXPECT_EQ(r.latsy, "cF");
  EXPECT_EQ(r.icentre, 2);
  expect_op(r, 13, "y,x,z");
}

TEST(HmSymbols, FaultsOfTheSymbol) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Z 1", " Wrong space-group symbol: Z 1"},
      {"", " Wrong space-group symbol: "},
      {"P 2/E", " The symbol: E is not allowed"},
      {"P 5", " The fivefold axis is not allowed"},
      {"P 2/2", " The symbol: 2 has been repeated within the same symmetry direction"},
      {"P 2M M 2",
       " A rotation axis cannot be immediately followed by a plane\r within the same symmetry "
       "direction"},
      {"P M2 M 2",
       " A mirror plane cannot be immediately followed by a rotation axis\r within the same "
       "symmetry direction"},
      {"P M/N M M", " There is more than one plane within the same symmetry direction"},
      {"P 23", " Screw axis: 2 3 not allowed"},
  };
  for (const auto& [symbol, message] : cases) {
    Hms_Result r = hms(symbol);
    EXPECT_TRUE(err_symm) << symbol;
    EXPECT_EQ(err_symm_mess, message) << symbol;
    // The reset state: the identity and zeros.
    EXPECT_EQ(r.ng, 1) << symbol;
    ASSERT_EQ(r.ss.size(), static_cast<std::size_t>(max_hms_ops)) << symbol;
    EXPECT_EQ(r.ss[0], (Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}})) << symbol;
    EXPECT_EQ(r.ss[1], Mat3i{}) << symbol;
  }
  // Screw digits in the allowed order pass.
  for (const char* symbol : {"P 21 21 21", "P 42 2 2", "P 43", "P 65"}) {
    hms(symbol);
    EXPECT_FALSE(err_symm) << symbol << ": " << err_symm_mess;
  }
  // Text beyond the fields stays in bounds: a fourth item overwrites the third, long items
  // overwrite their last character.
  Hms_Result r = hms("P M M M M M M");
  EXPECT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(r.ng, 4);
  hms(std::string(500, 'P'));
  EXPECT_TRUE(err_symm);
  hms("P 2222222222222222222222");
  EXPECT_TRUE(err_symm);
  // A later good symbol starts afresh.
  expect_ops(hms("P 21/C"), {"x,y,z", "-x,y+1/2,-z+1/2"});
}

TEST(HmSymbols, OwnRoadOfTheSetup) {
  Space_Group_Type g;
  set_spacegroup("P 21/c", g);
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.setting, "IT (Generated from Hermann-Mauguin symbol)");
  EXPECT_EQ(g.num_spg, 14);
  EXPECT_EQ(g.spg_symb, "P 21/c");
  EXPECT_EQ(g.hall, "-P 2ybc");
  EXPECT_EQ(g.num_gen, 1);
  EXPECT_EQ(g.centred, 2);
  EXPECT_EQ(g.centre_coord, (Vec3{0, 0, 0}));
  EXPECT_EQ(std::vector<std::string>(g.symop_symb.begin(), g.symop_symb.end()),
            (std::vector<std::string>{"x,y,z", "-x,y+1/2,-z+1/2", "-x,-y,-z", "x,-y+1/2,z+1/2"}));

  set_spacegroup("F m -3 m", g);
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.setting, "IT (Generated from Hermann-Mauguin symbol)");
  EXPECT_EQ(g.num_spg, 225);
  EXPECT_EQ(g.num_gen, 3);
  EXPECT_EQ(g.multip, 192);
  EXPECT_EQ(g.num_lat, 4);
  EXPECT_EQ(g.symop_symb[12], "y,x,z");

  set_spacegroup("R -3 c", g);
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.setting, "IT (Generated from Hermann-Mauguin symbol)");
  EXPECT_EQ(g.num_spg, 167);
  EXPECT_EQ(g.num_gen, 2);
  EXPECT_EQ(g.multip, 36);
  EXPECT_TRUE(g.hexa_axes);
  EXPECT_EQ(g.symop_symb[3], "-y,-x,z+1/2");

  // A symbol with a colon goes by the Hall symbol of its row; without it by its own rules.
  set_spacegroup("F D -3 M:1", g);
  EXPECT_EQ(g.setting, "Generated from Hall symbol");
  set_spacegroup("F D -3 M", g);
  EXPECT_EQ(g.setting, "IT (Generated from Hermann-Mauguin symbol)");
  EXPECT_EQ(g.centred, 2);
  EXPECT_EQ(g.spg_symb, "F d -3 m");

  // A symbol outside the table, with the road forced: its own name, classes from the operators.
  set_spacegroup("P 2/M 2/M 2/M", g, nullptr, std::nullopt, "HMS");
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(g.num_spg, 0);
  EXPECT_EQ(g.spg_symb, "P 2/m 2/m 2/m");
  EXPECT_EQ(g.setting, "IT (Generated from Hermann-Mauguin symbol)");
  EXPECT_EQ(g.num_gen, 0);
  EXPECT_EQ(g.laue, "mmm");
  EXPECT_EQ(g.pg, "mmm");
  EXPECT_EQ(g.multip, 8);
  EXPECT_EQ(g.wyckoff.num_orbit, 0);
}

TEST(HmSymbols, BadSymbolsThroughTheSetup) {
  Space_Group_Type g;
  // Neither a tabulated symbol nor a readable Hall symbol.
  set_spacegroup("Q 9 X", g);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " IBRAVL is Equal Zero");
  EXPECT_TRUE(g.symop.empty());
  set_spacegroup("P 9 X", g);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, "Error in the provided symbol/number of the space group");
  EXPECT_TRUE(g.symop.empty());
  // The symbol's own road keeps the reader's message.
  set_spacegroup("Z 9", g, nullptr, std::nullopt, "HMS");
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " Wrong space-group symbol: Z 9");
  EXPECT_TRUE(g.symop.empty());
}

}  // namespace
}  // namespace velmoria
