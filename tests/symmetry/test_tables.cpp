// The rotation tables as groups, and the operator symbols against their matrices.  The settings
// themselves are swept in test_settings_sweep.cpp and judged by spglib in tests/oracle.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <string_view>

#include "support/text.hpp"
#include "symmetry/tables.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::mul;

TEST(SpaceGroupTables, Mod6HoldsTheRotationGroupsOfCubeAndHexagon) {
  const auto check_group = [](int first, int last) {
    std::set<Mat3i> set(mod6.begin() + first - 1, mod6.begin() + last);
    EXPECT_EQ(static_cast<int>(set.size()), last - first + 1);
    for (const auto& a : set)
      for (const auto& b : set) EXPECT_TRUE(set.count(mul(a, b))) << first;
  };
  check_group(1, 24);
  check_group(25, 36);
  // The hexagonal rotations keep the metric of the hexagonal lattice.
  const Mat3i g{{{2, -1, 0}, {-1, 2, 0}, {0, 0, 1}}};
  for (int k = 24; k < 36; ++k) {
    Mat3i rt{};
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 3; ++j) rt[i][j] = mod6[k][j][i];
    EXPECT_EQ(mul(mul(rt, g), mod6[k]), g) << k + 1;
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
