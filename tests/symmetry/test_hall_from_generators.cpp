// Names for groups given by generators: the Hall symbol written for their operators, its lookup
// in the table of settings checked against the operators, and sweeps of the generator table and
// of every tabulated setting given to the generator road.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "support/text.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/hall_from_generators.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/spacegroup_setup.hpp"
#include "symmetry/tables.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::group_of;
using testing::Op_Key;
using testing::operator_set;

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

// The generators of the group of a Hall symbol: the generators of the symbol in the reduced set,
// the inversion and the centring translations.
std::vector<std::string> generators_of(const Space_Group_Type& h) {
  std::vector<std::string> gens;
  const int ng = std::min(h.num_gen, h.num_ops - 1);
  for (int i = 1; i <= ng; ++i) gens.push_back(h.symop_symb[static_cast<std::size_t>(i)]);
  if (h.centred != 1) gens.push_back(h.symop_symb[static_cast<std::size_t>(h.num_ops)]);
  const int m = h.centred == 1 ? h.num_ops : 2 * h.num_ops;
  for (int l = 1; l < h.num_lat; ++l) {
    gens.push_back(h.symop_symb[static_cast<std::size_t>(l * m)]);
  }
  return gens;
}

// Every row of the generator table, and the generators of the group of every tabulated Hall
// symbol, given to the generator road: the group is named, with the number of its row, by a
// row whose group (set up from that row's Hall symbol) has the same operators.  Rows that share
// a group share their Hall symbol too (P 1 2 1 and P 2, P m -3 and P m 3), so each setting is
// named by its own Hall symbol.
TEST(HallFromGenerators, EveryGeneratorRowAndSetting) {
  const auto expect_named = [](const Named& n, int number, const std::set<Op_Key>& ops,
                               const std::string& label) {
    ASSERT_FALSE(err_symm) << label << ": " << err_symm_mess;
    EXPECT_EQ(n.g.setting, "Tabulated Setting") << label << " " << n.written;
    EXPECT_EQ(n.g.num_spg, number) << label << " " << n.written;
    EXPECT_EQ(operator_set(group_of(n.g.hall, "HAL")), ops) << label << " " << n.g.hall;
  };
  for (int number = 1; number <= num_spg_gen; ++number) {
    std::string gener;
    ASSERT_TRUE(get_generators(std::to_string(number), gener));
    const std::string symbol = trim(std::string(spg_gen()[number - 1].substr(0, 10)));
    const Space_Group_Type s = group_of(symbol);
    const Named n = from_generators(split_generators(gener));
    expect_named(n, number, operator_set(s), symbol);
    EXPECT_EQ(n.g.hall, s.hall) << symbol;
  }
  for (const Spgr_Info_Type& row : spgr_info()) {
    const std::string hm = trim(row.hm);
    const Space_Group_Type h = group_of(trim(row.hall), "HAL");
    const Named n = from_generators(generators_of(h));
    expect_named(n, row.n, operator_set(h), hm);
    EXPECT_EQ(n.g.hall, trim(row.hall)) << hm;
  }
}

}  // namespace
}  // namespace velmoria
