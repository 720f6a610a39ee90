// The rotation tables as groups, the operator texts against their matrices, the row blocks of
// the Hall search, a few hand-checked rows, and the look-up of generators.  The settings
// themselves are swept in test_settings_sweep.cpp and judged by spglib in tests/oracle.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <string_view>

#include "support/text.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

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

// Reads "( Mx,-My, Mz)" or "(   -My, Mx-My, Mz)" back into a matrix.
Mat3i read_magmat(std::string_view text) {
  Mat3i m{};
  int i = -1;
  int sign = 1;
  for (std::size_t p = 0; p < text.size(); ++p) {
    if (text[p] == '(' || text[p] == ',') ++i, sign = 1;
    if (text[p] == '-') sign = -1;
    if (text[p] == 'M' && i >= 0 && i < 3) m[i][text[p + 1] - 'x'] = sign, sign = 1;
  }
  return m;
}

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

TEST(SpaceGroupTables, Mod6HoldsTheRotationGroupsOfCubeAndHexagon) {
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
}

TEST(SpaceGroupTables, MagmatTextsAreTheRotationsActingOnTheMoment) {
  for (int r = 0; r < 48; ++r) {
    const Mat3i& base = mod6[r % 24];
    EXPECT_EQ(read_magmat(magmat[r][0]), r < 24 ? base : negated(base)) << r + 1;
    if (r < 24) {
      const Mat3i& hex = mod6[24 + r % 12];
      EXPECT_EQ(read_magmat(magmat[r][1]), r < 12 ? hex : negated(hex)) << r + 1;
    } else {
      EXPECT_EQ(trim(magmat[r][1]), "");
    }
  }
}

// The geometric symbol names the kind of each operator: the order of its rotation follows
// from the trace, improper operators carry a bar or are mirrors, and a rotation axis is
// left in place by the matrix.
TEST(SpaceGroupTables, OperatorSymbolsAgreeWithTheMatrices) {
  const auto check = [](std::string_view symbol, std::string_view kov, const Mat3i& proper,
                        bool improper) {
    EXPECT_EQ(kov[0], 'h');
    const int trace = proper[0][0] + proper[1][1] + proper[2][2];
    const std::map<int, std::string> order{{3, "1"}, {-1, "2"}, {0, "3"}, {1, "4"}, {2, "6"}};
    std::string head = trim(adjustl(symbol.substr(0, 3)));
    std::string expected = order.at(trace);
    if (improper) expected = expected == "2" ? "m" : "-" + expected;
    if (head.back() == '+' || head.back() == '-') head.pop_back();
    EXPECT_EQ(head, expected) << symbol;
    if (improper || trace == 3) return;
    std::array<int, 3> d{};
    std::string axis(symbol.substr(5, 8));
    for (int i = 0; i < 3; ++i) {
      const std::string c = trim(adjustl(axis.substr(0, axis.find(','))));
      axis.erase(0, axis.find(',') + 1);
      d[i] = c == "0" ? 0 : (c[0] == '-' ? -1 : (c[0] == '2' ? 2 : 1));
    }
    for (int i = 0; i < 3; ++i)
      EXPECT_EQ(proper[i][0] * d[0] + proper[i][1] * d[1] + proper[i][2] * d[2], d[i]) << symbol;
  };
  for (int k = 0; k < 48; ++k) check(intsymoh[k], kov_oh[k], mod6[k % 24], k >= 24);
  for (int k = 0; k < 24; ++k) check(intsymd6h[k], kov_d6h[k], mod6[24 + k % 12], k >= 12);
}

}  // namespace
}  // namespace velmoria
