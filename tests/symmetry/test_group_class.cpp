// The rotation tables as groups and their operator symbols against the matrices, rotation
// types and crystal systems of sets of operators, and the lattice translations of centred
// lattices.  The Laue class and point group of every tabulated setting are checked by the sweep
// over the settings, and the settings are judged by spglib in tests/oracle.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/group_class.hpp"
#include "symmetry/lattice.hpp"
#include "symmetry/records.hpp"
#include "symmetry/tables.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::mul;

// Smallest n with m^n = 1 (0 when above 12).
int order(const Mat3i& m) {
  const Mat3i one{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  Mat3i p = m;
  for (int n = 1; n <= 12; ++n) {
    if (p == one) return n;
    p = mul(p, m);
  }
  return 0;
}

TEST(AxesRotation, OrderOfProperAndImproperRotations) {
  // A proper rotation has its order as type; an improper one minus the order of its negative.
  for (const Mat3i& m : mod6) {
    EXPECT_EQ(axes_rotation(m), order(m));
    EXPECT_EQ(axes_rotation(negated(m)), -order(m));
  }
  EXPECT_EQ(axes_rotation({{{2, 0, 0}, {0, 1, 0}, {0, 0, 1}}}), 0);
  EXPECT_EQ(axes_rotation(Mat3i{}), 0);
  EXPECT_EQ(axes_rotation({{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}), -2);
}

TEST(CrystalSystem, CountsOfRotationTypes) {
  int isystem = 0;
  std::string latsy = " P";
  get_crystal_system_r_op(0, {}, isystem, latsy);
  EXPECT_EQ(isystem, 1);
  EXPECT_EQ(latsy, "aP");

  // The system and its letter, then the rotations as rows of mod6 (negated for n < 0, a..b
  // for a range); the inversion counts for nothing.
  for (const char* c :
       {"1a 1", "2m 1 2", "2m 1 -2", "2m 1 -1 2", "3o 1..4", "3o 1 2 -3 -4", "4t 1 16 2 15",
        "4t 1 2 -15 -16", "4t 1..4 13..16", "5h 25..27", "5h 25..27 31..33", "5h 1 5 9",
        "6h 25..30", "6h 25..27 -28 -29 -30", "7c 1..12", "7c 1..24"}) {
    std::istringstream in(c);
    std::string word;
    in >> word;
    std::vector<Mat3i> ss;
    while (in >> word) {
      const std::size_t dots = word.find("..");
      const int first = std::stoi(word);
      const int last = dots == std::string::npos ? first : std::stoi(word.substr(dots + 2));
      for (int n = first; n <= last; ++n) ss.push_back(n > 0 ? mod6[n - 1] : negated(mod6[-n - 1]));
    }
    latsy = "xF";
    init_err_symm();
    get_crystal_system_r_op(static_cast<int>(ss.size()), ss, isystem, latsy);
    EXPECT_FALSE(err_symm);
    EXPECT_EQ(isystem, c[0] - '0') << c;
    EXPECT_EQ(latsy[0], c[1]) << c;
    EXPECT_EQ(latsy[1], 'F');
  }
}

TEST(LatticeTrans, CentringVectorsByLetterAndTolerance) {
  testing::Run_Tolerance restore;  // within the tolerance of a run, not within the default one
  EXPECT_TRUE(lattice_trans(Vec3{0.499f, 0.501f, 0}, 'C'));
  EXPECT_TRUE(lattice_trans(Vec3{1.0005f, 0, 0}, 'P'));
  set_epsg_default();
  EXPECT_FALSE(lattice_trans(Vec3{0.499f, 0.501f, 0}, 'C'));
  const struct {
    Vec3 v;
    std::string yes;  // letters for which v is a lattice translation
  } cases[] = {
      {{0.5f, 0.5f, 0}, "CF"},
      {{0, 0.5f, 0.5f}, "AF"},
      {{0.5f, 0, 0.5f}, "BF"},
      {{0.5f, 0.5f, 0.5f}, "I"},
      {{1.5f, -0.5f, 2}, "CF"},
      {{2.0f / 3, 1.0f / 3, 1.0f / 3}, "R"},
      {{1.0f / 3, 2.0f / 3, 2.0f / 3}, "R"},
      {{-1.0f / 3, 1.0f / 3, 1.0f / 3}, "R"},
      {{1.0f / 3, 2.0f / 3, 1.0f / 3}, ""},
      {{0.5f, 0, 0}, ""},
  };
  for (const auto& c : cases) {
    for (const char lat : std::string("PABCIRF")) {
      const bool expected = c.yes.find(lat) != std::string::npos;
      EXPECT_EQ(lattice_trans(c.v, lat), expected)
          << lat << " " << c.v[0] << " " << c.v[1] << " " << c.v[2];
      const char lower = static_cast<char>(lat - 'A' + 'a');
      EXPECT_EQ(lattice_trans(c.v, lower), expected) << lower;
    }
  }
  EXPECT_TRUE(lattice_trans(Vec3{0.5f, 0.5f, 0}, std::string_view("C")));
  EXPECT_FALSE(lattice_trans(Vec3{0.5f, 0.5f, 0}, std::string_view("")));
}

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
