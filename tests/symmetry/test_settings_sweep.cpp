// One sweep over the 612 tabulated settings and the 230 numbers.  Each setting, set up from
// its Hall symbol, must be a group modulo the cell with as many rotations as its point group
// (an independent table below), the lattice points of its letter and the Laue class of its
// point group; its Hermann-Mauguin symbol must give the same group (or, with a colon, go by
// the Hall symbol of the row); the listing shows every operator and every orbit; its
// generators, given to the generator road, are named by its row (the Hall symbol written for
// the operators, looked up in the table and checked against them).  Each number gives the
// group of its tabulated generators, through both roads.  Every asymmetric-unit box holds an
// asymmetric unit.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/text.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/hall_from_generators.hpp"
#include "symmetry/listing.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::expect_closed_group;
using testing::group_of;
using testing::Op_Key;
using testing::operator_set;

struct Point_Group_Fact {
  int order;
  std::string laue;
};

// The order of each point group and its Laue class (the point group with -1 added).
const std::map<std::string, Point_Group_Fact> point_group_facts = {
    {"1", {1, "-1"}},         {"-1", {2, "-1"}},       {"2", {2, "2/m"}},
    {"m", {2, "2/m"}},        {"2/m", {4, "2/m"}},     {"222", {4, "mmm"}},
    {"mm2", {4, "mmm"}},      {"m2m", {4, "mmm"}},     {"2mm", {4, "mmm"}},
    {"mmm", {8, "mmm"}},      {"4", {4, "4/m"}},       {"-4", {4, "4/m"}},
    {"4/m", {8, "4/m"}},      {"422", {8, "4/mmm"}},   {"4mm", {8, "4/mmm"}},
    {"-42m", {8, "4/mmm"}},   {"-4m2", {8, "4/mmm"}},  {"4/mmm", {16, "4/mmm"}},
    {"3", {3, "-3"}},         {"-3", {6, "-3"}},       {"32", {6, "-3m1"}},
    {"3m", {6, "-3m1"}},      {"-3m", {12, "-3m1"}},   {"312", {6, "-31m"}},
    {"31m", {6, "-31m"}},     {"-31m", {12, "-31m"}},  {"6", {6, "6/m"}},
    {"-6", {6, "6/m"}},       {"6/m", {12, "6/m"}},    {"622", {12, "6/mmm"}},
    {"6mm", {12, "6/mmm"}},   {"-62m", {12, "6/mmm"}}, {"-6m2", {12, "6/mmm"}},
    {"6/mmm", {24, "6/mmm"}}, {"23", {12, "m-3"}},     {"m-3", {24, "m-3"}},
    {"432", {24, "m-3m"}},    {"-43m", {24, "m-3m"}},  {"m-3m", {48, "m-3m"}}};

int lattice_points(char letter) {
  return letter == 'P' ? 1 : letter == 'R' ? 3 : letter == 'F' ? 4 : 2;
}

// The listing: a line " => SYMM(" for every operator, orbits three to a line of 109 columns.
void expect_full_listing(const Space_Group_Type& g, const std::string& label) {
  std::string out;
  write_spacegroup(g, out, true);
  int symm = 0;
  int orbit_lines = 0;
  for (const std::string& line : testing::lines_of(out)) {
    if (line.rfind(" => SYMM(", 0) == 0) {
      ++symm;
      EXPECT_GE(line.size(), 58u) << label << ": " << line;
    }
    if (line.size() == 109) ++orbit_lines;
  }
  EXPECT_EQ(symm, g.multip) << label;
  int expected = 0;
  for (const auto& orb : g.wyckoff.orbit) expected += (orb.norb + 2) / 3;
  EXPECT_EQ(orbit_lines, expected) << label;
}

// The group of the generators through the generator road, and the Hall symbol written for it.
struct Named {
  Space_Group_Type g;
  std::string written;
};

Named from_generators(const std::vector<std::string>& gens) {
  Named n;
  set_spacegroup(" ", n.g, &gens, static_cast<int>(gens.size()), "GEN");
  if (!err_symm) {
    Space_Group_Type copy = n.g;
    get_hallsymb_from_gener(copy, &n.written);
  }
  return n;
}

// Named by the generator road as row number of the table, whose Hall symbol gives the operators.
void expect_named(const Named& n, int number, const std::set<Op_Key>& ops,
                  const std::string& label) {
  ASSERT_FALSE(err_symm) << label << ": " << err_symm_mess;
  EXPECT_EQ(n.g.setting, "Tabulated Setting") << label << " " << n.written;
  EXPECT_EQ(n.g.num_spg, number) << label << " " << n.written;
  EXPECT_EQ(operator_set(group_of(n.g.hall, "HAL")), ops) << label << " " << n.g.hall;
}

// The generators of the group of a Hall symbol: the generators of the symbol in the reduced set,
// the inversion and the centring translations.
std::vector<std::string> generators_of(const Space_Group_Type& h) {
  std::vector<std::string> gens;
  const int ng = std::min(h.num_gen, h.num_ops - 1);
  for (int i = 1; i <= ng; ++i) gens.push_back(h.symop_symb[static_cast<std::size_t>(i)]);
  if (h.centred != 1) gens.push_back(h.symop_symb[static_cast<std::size_t>(h.num_ops)]);
  const int m = h.centred == 1 ? h.num_ops : 2 * h.num_ops;
  for (int l = 1; l < h.num_lat; ++l) gens.push_back(h.symop_symb[static_cast<std::size_t>(l * m)]);
  return gens;
}

TEST(SettingsSweep, EveryTabulatedSetting) {
  // The seven symbols without a colon that go by their Hall symbol.
  const std::set<std::string> by_hall = {"P N M 21", "P 21 N M", "P M 21 N", "B A M B",
                                         "C 4 2 21", "C -4 B 2", "F -4 D 2"};
  ASSERT_EQ(spgr_info().size(), 612u);
  std::set<int> numbers;
  for (const Spgr_Info_Type& row : spgr_info()) {
    const std::string hm = trim(row.hm);
    const std::string hall = trim(row.hall);
    const std::string label = std::to_string(row.n) + " " + hm + " / " + hall;
    numbers.insert(row.n);
    const Space_Group_Type h = group_of(hall, "HAL");
    ASSERT_FALSE(err_symm) << label;
    const std::string pg = trim(point_group[row.pg - 1]);
    ASSERT_EQ(point_group_facts.count(pg), 1u) << label << " " << pg;
    const Point_Group_Fact& fact = point_group_facts.at(pg);
    std::string laue = fact.laue;
    if (trim(row.inf_extra) == "R") laue = laue == "-3" ? "-3 R" : "-3m R";
    EXPECT_EQ(trim(laue_class[row.laue - 1]), laue) << label;
    const char letter = hall[0] == '-' ? hall[1] : hall[0];
    EXPECT_EQ(h.num_spg, row.n) << label;
    EXPECT_EQ(trim(h.pg), pg) << label;
    EXPECT_EQ(trim(h.laue), laue) << label;
    EXPECT_EQ(h.spg_lat, letter) << label;
    EXPECT_EQ(h.num_lat, lattice_points(letter)) << label;
    EXPECT_EQ(h.multip, (h.centred == 1 ? 1 : 2) * h.num_ops * h.num_lat) << label;
    EXPECT_EQ(h.multip, fact.order * h.num_lat) << label;
    ASSERT_EQ(static_cast<int>(h.symop_symb.size()), h.multip) << label;
    EXPECT_EQ(h.symop_symb[0], "x,y,z") << label;
    expect_closed_group(h, label);
    expect_full_listing(h, label);
    // The generators of the group, given to the generator road, find the row again (rows that
    // share a group share their Hall symbol too: P 1 2 1 and P 2, P m -3 and P m 3).
    const Named n = from_generators(generators_of(h));
    expect_named(n, row.n, operator_set(h), label);
    EXPECT_EQ(n.g.hall, hall) << label;

    const Space_Group_Type s = group_of(hm);
    if (hm.find(':') == std::string::npos) {
      EXPECT_EQ(s.setting, by_hall.count(hm) != 0 ? "Generated from Hall symbol"
                                                  : "IT (Generated from Hermann-Mauguin symbol)")
          << label;
      EXPECT_EQ(s.num_spg, row.n) << label;
      EXPECT_EQ(operator_set(s), operator_set(h)) << label;
    } else {
      EXPECT_EQ(u_case(s.spg_symb), hm) << label;
      EXPECT_EQ(s.hall, hall) << label;
    }
  }
  EXPECT_EQ(numbers.size(), 230u);
}

// A number gives a setting without a colon (the second origin choice where there are two);
// the generator table gives the group of the symbol it names.
TEST(SettingsSweep, EveryNumberAndItsTabulatedGenerators) {
  ASSERT_EQ(spg_gen().size(), 230u);
  for (int n = 1; n <= 230; ++n) {
    const std::string label = std::to_string(n);
    const Space_Group_Type g = group_of(label);
    EXPECT_EQ(g.num_spg, n);
    EXPECT_EQ(g.spg_symb.find(':'), std::string::npos) << label << " " << g.spg_symb;
    const Space_Group_Type itc = group_of(label, "ITC");
    EXPECT_EQ(itc.num_spg, n);
    EXPECT_EQ(itc.setting, "Generated from explicit IT generators");
    expect_closed_group(itc, "ITC " + label);
    const std::string symbol = trim(std::string(spg_gen()[n - 1].substr(0, 10)));
    const Space_Group_Type s = group_of(symbol);
    EXPECT_EQ(operator_set(itc), operator_set(s)) << label << " " << symbol;
    // The same generators through the generator road name the group by this row.
    std::string gener;
    ASSERT_TRUE(get_generators(label, gener));
    const Named named = from_generators(split_generators(gener));
    expect_named(named, n, operator_set(s), symbol);
    EXPECT_EQ(named.g.hall, s.hall) << symbol;
  }
}

TEST(HallFromGenerators, NamedByTheirOperators) {
  // The IT generators of A b m 2 give A 2 -2b; the table holds the same group as A 2 -2c, and
  // the operators find it.
  Named n = from_generators({"x,y+1/2,z+1/2", "-x,-y,z", "x,-y+1/2,z"});
  ASSERT_FALSE(err_symm) << err_symm_mess;
  EXPECT_EQ(n.written, " A 2 -2b");
  EXPECT_EQ(n.g.num_spg, 39);
  EXPECT_EQ(n.g.spg_symb, "A b m 2");
  EXPECT_EQ(n.g.hall, "A 2 -2c");
  EXPECT_EQ(n.g.setting, "Tabulated Setting");
  // -4 and the mirror normal to a: the writer takes the last "-" away and finds the row of
  // P -4 2 m, whose mirrors are normal to a+b; the row stands not, and the operators name
  // P -4 m 2.
  n = from_generators({"y,-x,-z", "-x,y,z"});
  EXPECT_EQ(n.written, " P -4 2");
  EXPECT_EQ(n.g.num_spg, 115);
  EXPECT_EQ(n.g.spg_symb, "P -4 m 2");
  // A record whose reduced set holds the identity twice is no tabulated group, even though the
  // symbol written for it is in the table.
  Space_Group_Type g;
  g.spg_lat = 'P';
  g.centred = 1;
  g.num_ops = g.multip = 3;
  g.symop = {Sym_Oper_Type{identity_matrix, Vec3{}},
             Sym_Oper_Type{Mat3i{{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}}, Vec3{}},
             Sym_Oper_Type{identity_matrix, Vec3{}}};
  std::string written;
  get_hallsymb_from_gener(g, &written);
  EXPECT_EQ(written, " P 2");
  EXPECT_EQ(g.spg_symb, "Unknown");
  g.num_ops = g.multip = 2;
  g.symop.pop_back();
  get_hallsymb_from_gener(g, &written);
  EXPECT_EQ(g.spg_symb, "P 1 1 2");
  EXPECT_EQ(g.num_spg, 3);
}

// The asymmetric-unit box of every setting: every point of a grid of 1/48 of the cell has an
// image under the group inside the box, boundaries included (marked here from the images of the
// grid points of the box); outside the cubic groups and the rhombohedral axes, where no box
// comes close, its volume is at most four times 1/(general multiplicity).
TEST(SettingsSweep, AsymmetricUnitBoxes) {
  constexpr int n = 48;
  constexpr int per_24th = n / 24;
  const auto cell = [](int v) { return ((v % n) + n) % n; };
  for (const Spgr_Info_Type& row : spgr_info()) {
    const std::string label = std::to_string(row.n) + " " + trim(row.hm);
    const Space_Group_Type h = group_of(trim(row.hall), "HAL");
    const std::array<int, 6>& box = row.asu;
    std::vector<Op_Key> ops;  // the translations in 1/n rather than 24ths
    for (const Sym_Oper_Type& op : h.symop) {
      ops.push_back(testing::key_of(op.rot, op.tr));
      for (int i = 9; i < 12; ++i) ops.back()[i] *= per_24th;
    }
    std::vector<char> covered(n * n * n, 0);
    for (int x = per_24th * box[0]; x <= per_24th * box[3]; ++x) {
      for (int y = per_24th * box[1]; y <= per_24th * box[4]; ++y) {
        for (int z = per_24th * box[2]; z <= per_24th * box[5]; ++z) {
          for (const auto& o : ops) {
            const int qx = cell(o[0] * x + o[1] * y + o[2] * z + o[9]);
            const int qy = cell(o[3] * x + o[4] * y + o[5] * z + o[10]);
            const int qz = cell(o[6] * x + o[7] * y + o[8] * z + o[11]);
            covered[(qx * n + qy) * n + qz] = 1;
          }
        }
      }
    }
    EXPECT_EQ(std::count(covered.begin(), covered.end(), 0), 0) << label;
    const int volume = (box[3] - box[0]) * (box[4] - box[1]) * (box[5] - box[2]);
    if (row.n < 195 && trim(row.inf_extra) != "R") {
      EXPECT_LE(volume * h.multip, 4 * 24 * 24 * 24) << label;
    }
  }
}

using testing::Op_Key;

}  // namespace
}  // namespace velmoria
