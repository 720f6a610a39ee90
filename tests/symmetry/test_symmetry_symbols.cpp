// Geometric symbols of operators, Kovalev names and the solvers that locate the elements.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/symmetry_symbols.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

// Keeps the global hexagonal flag of a test from leaking into the next one.
struct Hexa_Guard {
  bool saved = hexa;
  ~Hexa_Guard() { hexa = saved; }
};

// Symbols worked by hand: a centre lies halfway along the translation; a translation normal
// to an axis moves it by half of it; an axis is written with its first moving coordinate
// positive and the sense follows; -4 with its point moved solves S p + t = p; a diagonal
// mirror is written with its free coordinates.
TEST(SymmetrySymbols, WorkedByHand) {
  const std::pair<const char*, const char*> cases[] = {
      {"x,y,z", "1"},
      {"x+1/2,y+1/2,z", "t (1/2,1/2,0)"},
      {"-x,-y,-z", "-1 0,0,0"},
      {"-x+1/2,-y,-z", "-1 1/4,0,0"},
      {"-x,-y,z", "2 0,0,z"},
      {"-x,y+1/2,-z", "2 (0,1/2,0) 0,y,0"},
      {"-x,y+1/2,-z+1/2", "2 (0,1/2,0) 0,y,1/4"},
      {"-x+1/2,-y,z", "2 1/4,0,z"},
      {"z,x,y", "3+ x,x,x"},
      {"z,-x,-y", "3- x,-x,x"},
      {"-y,x,z", "4+ 0,0,z"},
      {"y,-x,z", "4- 0,0,z"},
      {"-y,x,z+1/4", "4+ (0,0,1/4) 0,0,z"},
      {"x-y,x,z", "6+ 0,0,z"},
      {"y,-x,-z", "-4+ 0,0,z; 0,0,0"},
      {"-y,x,-z", "-4- 0,0,z; 0,0,0"},
      {"-z,-x,-y", "-3+ x,x,x; 0,0,0"},
      {"y,-x+1/2,-z+1/2", "-4+ 1/4,1/4,z; 1/4,1/4,1/4"},
      {"x,y,-z", "m x,y,0"},
      {"x,y,-z+1/2", "m x,y,1/4"},
      {"x+1/2,y,-z", "a x,y,0"},
      {"x,-y+1/2,z+1/2", "c x,1/4,z"},
      {"x+1/2,y+1/2,-z", "n (1/2,1/2,0) x,y,0"},
      {"x+1/4,y+1/4,-z", "d (1/4,1/4,0) x,y,0"},
      {"y,x,z", "m x,x,z"},
  };
  for (const auto& [op, symbol] : cases) EXPECT_EQ(symmetry_symbol_xyz(op), symbol) << op;
  // Twice the intrinsic part is (-1,0,0): no component above the tolerance, a mirror.
  EXPECT_EQ(symmetry_symbol_str({{{1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}, {-0.5f, 0, 0}), "m x,y,0");
}

// The tabulated symbol of a rotation, e.g. " 3+ (-x, x,-x)", written as this code writes
// it: each free variable taken with its first occurrence positive, the sense of rotation
// reversed with the direction of the axis, e.g. "3- x,-x,x".
std::string tabulated_as_computed(std::string_view tab) {
  std::string t = trim(adjustl(tab));
  std::size_t open = t.find('(');
  if (t == "-1") return "-1 0,0,0";         // the centre at the origin
  if (open == std::string::npos) return t;  // the identity
  std::string kind = trim(t.substr(0, open));
  std::string axis = pack_string(t.substr(open + 1, t.find(')') - open - 1));
  axis = trim(axis);
  std::vector<std::string> comp;
  std::size_t start = 0;
  for (std::size_t p = axis.find(','); p != std::string::npos; p = axis.find(',', start)) {
    comp.push_back(axis.substr(start, p - start));
    start = p + 1;
  }
  comp.push_back(axis.substr(start));
  bool reversed = false;
  for (char letter : {'x', 'y', 'z'}) {
    bool flip = false;
    bool first = true;
    for (std::string& c : comp) {
      if (c.find(letter) == std::string::npos) continue;
      if (first) flip = (c[0] == '-');
      first = false;
      if (flip) c = (c[0] == '-') ? c.substr(1) : "-" + c;
    }
    if (letter == 'x') reversed = flip;
  }
  if (reversed && (kind.back() == '+' || kind.back() == '-')) {
    kind.back() = (kind.back() == '+') ? '-' : '+';
  }
  std::string text = kind + " " + comp[0] + "," + comp[1] + "," + comp[2];
  if (kind[0] == '-' && kind.size() > 2) text += "; 0,0,0";  // rotoinversion point
  return text;
}

TEST(SymmetrySymbols, AgreeWithTabulatedSymbolsOfHolohedries) {
  Hexa_Guard guard;
  for (int k = 0; k < 24; ++k) {
    for (int sign : {1, -1}) {
      Mat3i s = mod6[k];
      for (auto& row : s) {
        for (int& v : row) v *= sign;
      }
      int n = (sign > 0) ? k : k + 24;
      EXPECT_EQ(symmetry_symbol_str(s, {0, 0, 0}), tabulated_as_computed(intsymoh[n]))
          << "cubic entry " << n + 1;
    }
  }
  for (int k = 24; k < 36; ++k) {
    for (int sign : {1, -1}) {
      Mat3i s = mod6[k];
      for (auto& row : s) {
        for (int& v : row) v *= sign;
      }
      int n = (sign > 0) ? k - 24 : k - 12;
      std::string expected = tabulated_as_computed(intsymd6h[n]);
      // The plane (2x, x, z) is found as x, x/2, z; a half among the rates doubles all
      // three, the free z included.
      if (expected == "m 2x,x,z") expected = "m 2x,x,2z";
      EXPECT_EQ(symmetry_symbol_str(s, {0, 0, 0}), expected) << "hexagonal entry " << n + 1;
    }
  }
}

TEST(SymmetrySymbols, SolversInconsistentSystems) {
  Vec3 ts{}, x{};
  Vec3i ix{};
  resolv_sist_3x3({}, {1, 0, 0}, ts, x, ix);
  EXPECT_TRUE(err_math3d);
  EXPECT_EQ(err_math3d_mess, "Inconsistent system (3 x 3)");
  EXPECT_EQ(ts, (Vec3{0, 0, 0}));
  EXPECT_EQ(x, (Vec3{1, 1, 1}));
  EXPECT_EQ(ix, (Vec3i{0, 0, 0}));

  resolv_sist_1x3({1, 1, 1}, 0.5f, ts, x, ix);
  EXPECT_TRUE(err_math3d);
  EXPECT_EQ(err_math3d_mess, "Inconsistent case ax+by+cz=t (1x3)");

  resolv_sist_1x3({0, 0, 0}, 0.5f, ts, x, ix);
  EXPECT_EQ(err_math3d_mess, "Inconsistent solution (1 x 3)");

  resolv_sist_2x3({{{1, 1, 0}, {2, 2, 0}}}, {0.5f, 0.25f}, ts, x, ix);
  EXPECT_TRUE(err_math3d);
  EXPECT_EQ(err_math3d_mess, "Inconsistent solution (2x2)");

  Vec2 ts2{}, x2{};
  Vec2i ix2{};
  resolv_sist_1x2({0, 0}, 1, ts2, x2, ix2);
  EXPECT_EQ(err_math3d_mess, "Inconsistent solution (1x2)");

  // A consistent call clears the error state.
  resolv_sist_1x3({0, 0, 2}, 1, ts, x, ix);
  EXPECT_FALSE(err_math3d);
  EXPECT_EQ(ix, (Vec3i{1, 2, 0}));
  EXPECT_FLOAT_EQ(ts[2], 0.5f);
}

}  // namespace
}  // namespace velmoria
