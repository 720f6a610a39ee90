// Mechanical checks of the space-group tables: sizes and field widths, the agreement of
// the settings table with the generators, the group structure of the rotation tables, and
// the look-up of generators by number or symbol.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

std::string trimmed(std::string_view s) {
  while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
  while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
  return std::string(s);
}

std::string upper(std::string_view s) {
  std::string r(s);
  for (auto& c : r) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return r;
}

std::vector<std::string> split(std::string_view s, char sep) {
  std::vector<std::string> out;
  std::size_t start = 0;
  for (std::size_t i = 0; i <= s.size(); ++i) {
    if (i == s.size() || s[i] == sep) {
      out.emplace_back(trimmed(s.substr(start, i - start)));
      start = i + 1;
    }
  }
  return out;
}

// ---- operators in 24ths, read from the x,y,z form of the generator rows ----------------

struct Op {
  Mat3i r{};
  std::array<int, 3> t{};  // translation in 1/24, reduced to [0,24)
  bool operator<(const Op& o) const { return std::tie(r, t) < std::tie(o.r, o.t); }
};

int mod24(int v) {
  return ((v % 24) + 24) % 24;
}

// One component such as "-x+y+1/2": coefficients of x, y, z and a constant in 24ths.
bool parse_component(std::string_view s, std::array<int, 3>& row, int& t24) {
  row = {0, 0, 0};
  t24 = 0;
  std::size_t i = 0;
  if (s.empty()) return false;
  while (i < s.size()) {
    int sign = 1;
    if (s[i] == '+' || s[i] == '-') {
      sign = s[i] == '-' ? -1 : 1;
      ++i;
    }
    int num = 0;
    bool digits = false;
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) {
      num = num * 10 + (s[i] - '0');
      digits = true;
      ++i;
    }
    if (i < s.size() && (s[i] == 'x' || s[i] == 'y' || s[i] == 'z')) {
      row[s[i] - 'x'] += sign * (digits ? num : 1);
      ++i;
    } else if (i < s.size() && s[i] == '/' && digits) {
      ++i;
      int den = 0;
      while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) {
        den = den * 10 + (s[i] - '0');
        ++i;
      }
      if (den == 0 || (24 * num) % den != 0) return false;
      t24 += sign * 24 * num / den;
    } else if (digits) {
      t24 += sign * 24 * num;
    } else {
      return false;
    }
  }
  return true;
}

bool parse_op(std::string_view text, Op& op) {
  const auto comps = split(text, ',');
  if (comps.size() != 3) return false;
  for (int i = 0; i < 3; ++i) {
    int t = 0;
    if (!parse_component(comps[i], op.r[i], t)) return false;
    op.t[i] = mod24(t);
  }
  return true;
}

Op multiply(const Op& a, const Op& b) {
  Op c;
  for (int i = 0; i < 3; ++i) {
    int t = a.t[i];
    for (int j = 0; j < 3; ++j) {
      int s = 0;
      for (int k = 0; k < 3; ++k) s += a.r[i][k] * b.r[k][j];
      c.r[i][j] = s;
      t += a.r[i][j] * b.t[j];
    }
    c.t[i] = mod24(t);
  }
  return c;
}

// All operators of a group modulo the integer lattice, or an empty list past the limit.
std::vector<Op> close_group(const std::vector<Op>& gens) {
  std::set<Op> group;
  Op identity;
  identity.r = Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  std::vector<Op> todo{identity};
  group.insert(identity);
  while (!todo.empty()) {
    const Op a = todo.back();
    todo.pop_back();
    for (const auto& g : gens) {
      const Op c = multiply(a, g);
      if (group.insert(c).second) todo.push_back(c);
      if (group.size() > 400) return {};
    }
  }
  return {group.begin(), group.end()};
}

std::vector<Op> generators_of(int n) {
  const std::string_view row = spg_gen()[n - 1];
  std::vector<Op> gens;
  for (const auto& piece : split(row.substr(12), ';')) {
    Op op;
    EXPECT_TRUE(parse_op(piece, op)) << n << " '" << piece << "'";
    gens.push_back(op);
  }
  return gens;
}

int det(const Mat3i& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

Mat3i matmul(const Mat3i& a, const Mat3i& b) {
  Mat3i c{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) c[i][j] += a[i][k] * b[k][j];
  return c;
}

Mat3i negated(Mat3i m) {
  for (auto& row : m)
    for (auto& v : row) v = -v;
  return m;
}

int centring_points(char lattice) {
  switch (lattice) {
    case 'A':
    case 'B':
    case 'C':
    case 'I':
      return 2;
    case 'R':
      return 3;
    case 'F':
      return 4;
    default:
      return 1;
  }
}

int point_group_order(std::string_view name) {
  static const std::map<std::string, int> order{
      {"1", 1},    {"-1", 2},    {"2", 2},     {"m", 2},      {"2/m", 4},  {"222", 4},
      {"mm2", 4},  {"m2m", 4},   {"2mm", 4},   {"mmm", 8},    {"4", 4},    {"-4", 4},
      {"4/m", 8},  {"422", 8},   {"4mm", 8},   {"-42m", 8},   {"-4m2", 8}, {"4/mmm", 16},
      {"3", 3},    {"-3", 6},    {"32", 6},    {"3m", 6},     {"-3m", 12}, {"312", 6},
      {"31m", 6},  {"-31m", 12}, {"6", 6},     {"-6", 6},     {"6/m", 12}, {"622", 12},
      {"6mm", 12}, {"-62m", 12}, {"-6m2", 12}, {"6/mmm", 24}, {"23", 12},  {"m-3", 24},
      {"432", 24}, {"-43m", 24}, {"m-3m", 48}};
  const auto it = order.find(trimmed(name));
  return it == order.end() ? 0 : it->second;
}

std::string_view laue_name(const Spgr_Info_Type& row) {
  return laue_class[row.laue - 1];
}
std::string_view pg_name(const Spgr_Info_Type& row) {
  return point_group[row.pg - 1];
}

const Spgr_Info_Type* find_row(std::string_view hm, std::string_view tag = "") {
  for (const auto& row : spgr_info())
    if (trimmed(row.hm) == hm && trimmed(row.inf_extra) == tag) return &row;
  return nullptr;
}

// ---- sizes and widths ------------------------------------------------------------------

TEST(SpaceGroupTables, RowsHaveTheirFieldWidthsAndOrder) {
  set_spgr_info();
  set_wyckoff_info();
  set_it_gen();
  ASSERT_EQ(spgr_info().size(), 612u);
  ASSERT_EQ(wyckoff_info().size(), 273u);
  ASSERT_EQ(spg_gen().size(), 230u);

  std::set<int> numbers;
  int previous = 1;
  for (const auto& row : spgr_info()) {
    EXPECT_EQ(row.hm.size(), hm_len);
    EXPECT_EQ(row.hall.size(), hall_len);
    EXPECT_EQ(row.inf_extra.size(), inf_extra_len);
    EXPECT_GE(row.n, previous) << row.hm;
    EXPECT_LE(row.n, 230);
    EXPECT_TRUE(row.laue >= 1 && row.laue <= 14) << row.hm;
    EXPECT_TRUE(row.pg >= 1 && row.pg <= 39) << row.hm;
    EXPECT_EQ(row.hm, upper(row.hm));
    for (int i = 0; i < 3; ++i) EXPECT_LT(row.asu[i], row.asu[i + 3]) << row.hm;
    previous = row.n;
    numbers.insert(row.n);
  }
  EXPECT_EQ(numbers.size(), 230u);
  int p12c1 = 0;
  for (const auto& row : spgr_info())
    if (trimmed(row.hm) == "P 1 2/C 1" && trimmed(row.inf_extra) == "b1" && row.n == 13) ++p12c1;
  EXPECT_EQ(p12c1, 2);  // the table holds this symbol twice

  for (int k = 0; k < num_spg_gen; ++k) {
    const auto row = spg_gen()[k];
    ASSERT_EQ(row.size(), spg_gen_len);
    EXPECT_EQ(row[10], ':') << row;
    EXPECT_EQ(row[11], ' ') << row;
    EXPECT_NE(row[12], ' ') << row;
  }

  for (const auto& w : wyckoff_info()) {
    EXPECT_EQ(w.hm.size(), hm_len);
    ASSERT_TRUE(w.norbit >= 0 && w.norbit <= max_wyck_orbits) << w.hm;
    for (int i = 0; i < max_wyck_orbits; ++i) {
      EXPECT_EQ(w.orbit[i].size(), orbit_len);
      EXPECT_EQ(trimmed(w.orbit[i]).empty(), i >= w.norbit) << w.hm << " " << i;
    }
  }
}

// The Hall-symbol search accepts a hit only in the row blocks of the groups with the
// matching number of rotations; the blocks must start and end at the stated rows.
TEST(SpaceGroupTables, RowBlocksMatchTheNumbersOfRotations) {
  const auto& t = spgr_info();
  const std::array<std::array<int, 4>, 5> blocks{{{1, 14, 1, 2},
                                                  {15, 162, 3, 15},
                                                  {163, 426, 16, 88},
                                                  {427, 494, 89, 142},
                                                  {495, 502, 143, 148}}};
  for (const auto& b : blocks) {
    EXPECT_EQ(t[b[0] - 1].n, b[2]);
    EXPECT_EQ(t[b[1] - 1].n, b[3]);
    if (b[0] > 1) {
      EXPECT_LT(t[b[0] - 2].n, b[2]);
    }
    EXPECT_GT(t[b[1]].n, b[3]);
  }
}

// ---- settings against generators -------------------------------------------------------

TEST(SpaceGroupTables, GeneratorSymbolIsATabulatedSymbolOfItsNumber) {
  for (int n = 1; n <= 230; ++n) {
    const std::string symbol = upper(trimmed(spg_gen()[n - 1].substr(0, 10)));
    bool found = false;
    for (const auto& row : spgr_info())
      if (row.n == n && trimmed(row.hm) == symbol) found = true;
    EXPECT_TRUE(found) << n << " " << symbol;
  }
}

// The generators of each group close to a group whose rotations number the order of the
// point group of every setting of that number, times the centring points of the symbol.
TEST(SpaceGroupTables, GeneratorsCloseToTheOrderOfThePointGroup) {
  for (int n = 1; n <= 230; ++n) {
    const auto group = close_group(generators_of(n));
    ASSERT_FALSE(group.empty()) << n;
    std::set<Mat3i> rotations;
    for (const auto& op : group) {
      EXPECT_EQ(std::abs(det(op.r)), 1) << n;
      rotations.insert(op.r);
    }
    const char lattice = spg_gen()[n - 1][0];
    EXPECT_EQ(group.size(), rotations.size() * centring_points(lattice)) << n;
    for (const auto& row : spgr_info()) {
      if (row.n != n) continue;
      EXPECT_EQ(static_cast<int>(rotations.size()), point_group_order(pg_name(row)))
          << n << " " << row.hm << " " << pg_name(row);
    }
  }
}

TEST(SpaceGroupTables, LaueClassAndPointGroupRules) {
  const auto* pnma = find_row("P N M A");
  ASSERT_NE(pnma, nullptr);
  EXPECT_EQ(laue_name(*pnma), "mmm  ");
  EXPECT_EQ(pg_name(*pnma), "mmm  ");

  // Number 26 in its six settings: the 21 stands third, first, first, second, second...
  const std::array<std::pair<const char*, const char*>, 6> n26{{{"P M C 21", "mm2  "},
                                                                {"P C M 21", "mm2  "},
                                                                {"P 21 M A", "2mm  "},
                                                                {"P 21 A M", "2mm  "},
                                                                {"P B 21 M", "m2m  "},
                                                                {"P M 21 B", "m2m  "}}};
  for (const auto& [hm, pg] : n26) {
    const auto* row = find_row(hm, "");
    const Spgr_Info_Type* any = row;
    for (const auto& r : spgr_info()) {
      if (trimmed(r.hm) == hm) any = &r;
    }
    ASSERT_NE(any, nullptr) << hm;
    EXPECT_EQ(pg_name(*any), pg) << hm;
    EXPECT_EQ(laue_name(*any), "mmm  ");
  }

  // Rhombohedral axes have their own Laue classes; hexagonal axes do not.
  EXPECT_EQ(laue_name(*find_row("R 3", "H")), "-3   ");
  EXPECT_EQ(laue_name(*find_row("R 3:R", "R")), "-3 R ");
  EXPECT_EQ(laue_name(*find_row("R -3 M", "H")), "-3m1 ");
  EXPECT_EQ(laue_name(*find_row("R -3 M:R", "R")), "-3m R");
  EXPECT_EQ(laue_name(*find_row("P 3 1 2")), "-31m ");
  EXPECT_EQ(pg_name(*find_row("P 3 1 2")), "312  ");
  EXPECT_EQ(pg_name(*find_row("P -6 M 2")), "-6m2 ");
  EXPECT_EQ(pg_name(*find_row("I -4 2 D")), "-42m ");

  // The sample rows with all their columns.
  struct Sample {
    const char* hm;
    const char* tag;
    int laue, pg;
    std::array<int, 6> asu;
  };
  const std::array<Sample, 7> samples{{{"P 1", "", 1, 1, {0, 0, 0, 24, 24, 24}},
                                       {"P -1", "", 1, 2, {0, 0, 0, 12, 24, 24}},
                                       {"I 2/M", "b3", 2, 5, {0, 0, 0, 12, 6, 24}},
                                       {"P 2/N", "b2", 2, 5, {0, 0, 0, 24, 24, 6}},
                                       {"F D -3 C", "2", 14, 39, {-3, -3, -6, 9, 0, 0}},
                                       {"I M -3 M", "", 14, 39, {0, 0, 0, 12, 12, 6}},
                                       {"I A -3 D", "", 14, 39, {-3, -3, 0, 3, 3, 6}}}};
  for (const auto& s : samples) {
    const auto* row = find_row(s.hm, s.tag);
    ASSERT_NE(row, nullptr) << s.hm;
    EXPECT_EQ(row->laue, s.laue) << s.hm;
    EXPECT_EQ(row->pg, s.pg) << s.hm;
    EXPECT_EQ(row->asu, s.asu) << s.hm;
  }
  EXPECT_EQ(trimmed(find_row("F D -3 C", "2")->hall), "-F 4cvw 2vw 3");
}

// The Laue class is the point group with the inversion added.
TEST(SpaceGroupTables, LaueClassContainsThePointGroup) {
  const std::map<std::string, std::string> laue_of{
      {"1", "-1"},       {"-1", "-1"},       {"2", "2/m"},     {"m", "2/m"},
      {"2/m", "2/m"},    {"222", "mmm"},     {"mm2", "mmm"},   {"m2m", "mmm"},
      {"2mm", "mmm"},    {"mmm", "mmm"},     {"4", "4/m"},     {"-4", "4/m"},
      {"4/m", "4/m"},    {"422", "4/mmm"},   {"4mm", "4/mmm"}, {"-42m", "4/mmm"},
      {"-4m2", "4/mmm"}, {"4/mmm", "4/mmm"}, {"3", "-3"},      {"-3", "-3"},
      {"32", "-3m1"},    {"3m", "-3m1"},     {"-3m", "-3m1"},  {"312", "-31m"},
      {"31m", "-31m"},   {"-31m", "-31m"},   {"6", "6/m"},     {"-6", "6/m"},
      {"6/m", "6/m"},    {"622", "6/mmm"},   {"6mm", "6/mmm"}, {"-62m", "6/mmm"},
      {"-6m2", "6/mmm"}, {"6/mmm", "6/mmm"}, {"23", "m-3"},    {"m-3", "m-3"},
      {"432", "m-3m"},   {"-43m", "m-3m"},   {"m-3m", "m-3m"}};
  for (const auto& row : spgr_info()) {
    std::string expected = laue_of.at(trimmed(pg_name(row)));
    if (trimmed(row.inf_extra) == "R") expected = expected == "-3" ? "-3 R" : "-3m R";
    EXPECT_EQ(trimmed(laue_name(row)), expected) << row.hm;
  }
}

// ---- rotation tables -------------------------------------------------------------------

TEST(SpaceGroupTables, Mod6HoldsTheRotationGroupsOfCubeAndHexagon) {
  for (const auto& m : mod6) EXPECT_EQ(det(m), 1);
  const auto check_group = [](int first, int last) {
    std::set<Mat3i> set(mod6.begin() + first - 1, mod6.begin() + last);
    EXPECT_EQ(static_cast<int>(set.size()), last - first + 1);
    for (const auto& a : set)
      for (const auto& b : set) EXPECT_TRUE(set.count(matmul(a, b))) << first;
  };
  check_group(1, 24);
  check_group(25, 36);
  // The hexagonal rotations keep the metric of the hexagonal lattice.
  const Mat3i g{{{2, -1, 0}, {-1, 2, 0}, {0, 0, 1}}};
  for (int k = 24; k < 36; ++k) {
    Mat3i rt{};
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) rt[i][j] = mod6[k][j][i];
    EXPECT_EQ(matmul(matmul(rt, g), mod6[k]), g) << k + 1;
  }
  EXPECT_EQ(mod6[4], (Mat3i{{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}}));  // z,x,y
}

// Reads "( Mx,-My, Mz)" back into a matrix.
Mat3i read_magmat(std::string_view text) {
  Mat3i m{};
  std::string s = trimmed(text);
  EXPECT_TRUE(s.size() > 2 && s.front() == '(' && s.back() == ')') << text;
  const auto comps = split(std::string_view(s).substr(1, s.size() - 2), ',');
  EXPECT_EQ(comps.size(), 3u);
  for (std::size_t i = 0; i < comps.size() && i < 3; ++i) {
    std::string c = comps[i];
    int sign = 1;
    for (std::size_t p = 0; p < c.size(); ++p) {
      if (c[p] == '-') sign = -1;
      if (c[p] == '+') sign = 1;
      if (c[p] == 'M' && p + 1 < c.size()) {
        m[i][c[p + 1] - 'x'] = sign;
        sign = 1;
      }
    }
  }
  return m;
}

TEST(SpaceGroupTables, MagmatTextsAreTheRotationsActingOnTheMoment) {
  EXPECT_EQ(magmat[1][0], "(-Mx,-My, Mz)      ");
  EXPECT_EQ(magmat[1][1], "(   -My, Mx-My, Mz)");
  EXPECT_EQ(magmat[24][0], "(-Mx,-My,-Mz)      ");
  for (int r = 0; r < 48; ++r) {
    EXPECT_EQ(magmat[r][0].size(), 19u);
    EXPECT_EQ(magmat[r][1].size(), 19u);
    const Mat3i& base = mod6[r % 24];
    EXPECT_EQ(read_magmat(magmat[r][0]), r < 24 ? base : negated(base)) << r + 1;
    if (r < 24) {
      const Mat3i& hex = mod6[24 + r % 12];
      EXPECT_EQ(read_magmat(magmat[r][1]), r < 12 ? hex : negated(hex)) << r + 1;
    } else {
      EXPECT_EQ(trimmed(magmat[r][1]), "");
    }
  }
}

// The geometric symbol names the kind of each operator: the order of its rotation follows
// from the trace, improper operators carry a bar or are mirrors, and a rotation axis is
// left in place by the matrix.
TEST(SpaceGroupTables, OperatorSymbolsAgreeWithTheMatrices) {
  EXPECT_EQ(intsymd6h[12], " -1           ");
  EXPECT_EQ(kov_d6h[12], "h13");
  EXPECT_EQ(intsymoh[4], " 3+ ( x, x, x)");
  EXPECT_EQ(kov_oh[0], "h1 ");
  const auto check = [](std::string_view symbol, std::string_view kov, const Mat3i& proper,
                        bool improper) {
    EXPECT_EQ(symbol.size(), 14u);
    EXPECT_EQ(kov.size(), 3u);
    EXPECT_EQ(kov[0], 'h');
    const int trace = proper[0][0] + proper[1][1] + proper[2][2];
    const std::map<int, std::string> order{{3, "1"}, {-1, "2"}, {0, "3"}, {1, "4"}, {2, "6"}};
    std::string head = trimmed(symbol.substr(0, 3));
    std::string expected = order.at(trace);
    if (improper) expected = expected == "2" ? "m" : "-" + expected;
    if (head.back() == '+' || head.back() == '-') head.pop_back();
    EXPECT_EQ(head, expected) << symbol;
    if (!improper && trace != 3) {
      std::array<int, 3> d{};
      const auto comps = split(symbol.substr(5, 8), ',');
      for (int i = 0; i < 3; ++i) {
        const std::string& c = comps[i];
        d[i] = c == "0" ? 0 : (c[0] == '-' ? -1 : (c[0] == '2' ? 2 : 1));
      }
      for (int i = 0; i < 3; ++i)
        EXPECT_EQ(proper[i][0] * d[0] + proper[i][1] * d[1] + proper[i][2] * d[2], d[i]) << symbol;
    }
  };
  for (int k = 0; k < 48; ++k) check(intsymoh[k], kov_oh[k], mod6[k % 24], k >= 24);
  for (int k = 0; k < 24; ++k) check(intsymd6h[k], kov_d6h[k], mod6[24 + k % 12], k >= 12);
}

TEST(SpaceGroupTables, NameTables) {
  EXPECT_EQ(sys_cry[2], "Orthorhombic");
  EXPECT_EQ(laue_class[15], "m3m  ");
  EXPECT_EQ(point_group[41], "-3m1 ");
  EXPECT_EQ(latt[6], "  F: { 000;  0  1/2 1/2; 1/2  0  1/2; 1/2 1/2  0 }+");
  for (const auto& t : latt) EXPECT_EQ(t.size(), 51u);
  EXPECT_FLOAT_EQ(ltr_r[1][0], 2.0f / 3.0f);
  EXPECT_FLOAT_EQ(ltr_f[3][2], 0.0f);
  EXPECT_FLOAT_EQ(ltr_a[1][1], 0.5f);
}

// ---- generators by number or symbol -----------------------------------------------------

TEST(GetGenerators, ByNumberOrTabulatedSymbol) {
  std::string by_number, by_symbol;
  ASSERT_TRUE(get_generators("14", by_number));
  EXPECT_FALSE(err_symtab);
  ASSERT_TRUE(get_generators("p 21/c", by_symbol));
  EXPECT_EQ(by_number, by_symbol);
  EXPECT_EQ(by_number.size(), genstr_len);
  EXPECT_EQ(trimmed(by_number), "-x,y+1/2,-z+1/2; -x,-y,-z");
  EXPECT_EQ(by_number[0], ' ');

  std::string g;
  EXPECT_TRUE(get_generators("P 21 21 21", g));  // the symbol fills its ten columns
  EXPECT_EQ(trimmed(g), "-x+1/2,-y,z+1/2; -x,y+1/2,-z+1/2");
  EXPECT_TRUE(get_generators("F D -3 M", g));
  EXPECT_EQ(trimmed(g).substr(0, 28), "x+1/2,y+1/2,z; x+1/2,y,z+1/2");
  EXPECT_TRUE(get_generators("230", g));
  EXPECT_EQ(trimmed(g).substr(trimmed(g).size() - 8), "-x,-y,-z");

  std::string first;
  ASSERT_TRUE(get_generators("1", first));
  for (const char* bad : {"231", "0", "-5"}) {
    EXPECT_FALSE(get_generators(bad, g)) << bad;
    EXPECT_TRUE(err_symtab);
    EXPECT_EQ(err_symtab_mess, " Error in the symbol or number of the space group");
    EXPECT_EQ(g, first);  // a number out of range gives row 1
  }
  for (const char* bad : {"P 1 21/c 1", "P 21/c 1", "", "XYZ"}) {
    EXPECT_FALSE(get_generators(bad, g)) << bad;
    EXPECT_TRUE(err_symtab);
  }
  EXPECT_TRUE(get_generators("p 21/C", g));
  EXPECT_FALSE(err_symtab);  // cleared by the next call
}

// ---- special positions -----------------------------------------------------------------

const Wyck_Info_Type* find_wyckoff(std::string_view key) {
  for (const auto& w : wyckoff_info())
    if (trimmed(w.hm) == key) return &w;
  return nullptr;
}

TEST(SpecialPositions, SampleRows) {
  ASSERT_NE(find_wyckoff("P 1"), nullptr);
  EXPECT_EQ(find_wyckoff("P 1")->norbit, 0);
  const auto* pmmm = find_wyckoff("P M M M");
  ASSERT_NE(pmmm, nullptr);
  int largest = 0;
  for (const auto& w : wyckoff_info()) largest = std::max(largest, w.norbit);
  EXPECT_EQ(largest, 26);
  EXPECT_EQ(pmmm->norbit, 26);
  const auto* im3m = find_wyckoff("I M -3 M");
  ASSERT_NE(im3m, nullptr);
  EXPECT_EQ(im3m->norbit, 11);
  EXPECT_EQ(trimmed(im3m->orbit[8]), "1/4,y,-y+1/2");
  const auto* ia3d = find_wyckoff("I A -3 D");
  ASSERT_NE(ia3d, nullptr);
  EXPECT_EQ(ia3d->norbit, 7);
  EXPECT_EQ(trimmed(ia3d->orbit[6]), "1/8,y,-y+1/4");
  EXPECT_EQ(trimmed(find_wyckoff("P 2")->orbit[3]), "1/2,y,1/2");
  EXPECT_EQ(trimmed(find_wyckoff("P -1")->orbit[7]), "1/2,1/2,1/2");
  EXPECT_EQ(wyckoff_info().front().hm, "P 1         ");
  EXPECT_EQ(wyckoff_info().back().hm, "I A -3 D    ");
}

// Site symmetry of a position: the operators of the group (modulo the lattice) that leave
// the point, taken at general values of its free parameters, where it is.
int site_symmetry_order(const std::vector<Op>& group, std::string_view orbit) {
  const auto comps = split(orbit, ',');
  EXPECT_EQ(comps.size(), 3u) << orbit;
  const std::array<double, 3> free{0.1234567, 0.3217654, 0.7456123};
  std::array<double, 3> p{};
  for (int i = 0; i < 3; ++i) {
    std::array<int, 3> row{};
    int t = 0;
    EXPECT_TRUE(parse_component(comps[i], row, t)) << orbit;
    p[i] = t / 24.0 + row[0] * free[0] + row[1] * free[1] + row[2] * free[2];
  }
  int count = 0;
  for (const auto& op : group) {
    bool fixed = true;
    for (int i = 0; i < 3; ++i) {
      double q = op.t[i] / 24.0 - p[i];
      for (int j = 0; j < 3; ++j) q += op.r[i][j] * p[j];
      if (std::abs(q - std::round(q)) > 1e-6) fixed = false;
    }
    if (fixed) ++count;
  }
  return count;
}

// Every entered position of a standard setting is special in the group of the generator
// table, and the multiplicities never decrease along the Wyckoff letters.
TEST(SpecialPositions, EnteredPositionsAreSpecial) {
  int checked = 0;
  for (int n = 1; n <= 230; ++n) {
    const std::string symbol = upper(trimmed(spg_gen()[n - 1].substr(0, 10)));
    const auto* w = find_wyckoff(symbol);
    if (w == nullptr || w->norbit == 0) continue;
    const auto group = close_group(generators_of(n));
    int previous = 0;
    for (int i = 0; i < w->norbit; ++i) {
      const int s = site_symmetry_order(group, w->orbit[i]);
      EXPECT_GE(s, 2) << symbol << " " << w->orbit[i];
      if (s == 0) continue;
      const int multiplicity = static_cast<int>(group.size()) / s;
      EXPECT_GE(multiplicity, previous) << symbol << " " << w->orbit[i];
      previous = multiplicity;
    }
    ++checked;
  }
  EXPECT_GE(checked, 4);
}

}  // namespace
}  // namespace velmoria
