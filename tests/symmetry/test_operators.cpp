// Operators: exact products, inverses, equality and reduction modulo the lattice, on
// hand-worked operators and on whole groups, which must be closed under products and inverses;
// x,y,z texts read and written, the action on a moment written out, and the geometric and
// Seitz symbols of operators worked by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/seitz_symbols.hpp"
#include "symmetry/symmetry_symbols.hpp"
#include "symmetry/tables.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

// Operator texts read from a column: the rotation, the translation and the message (empty
// when the text is good); a short text repeats its last field, and a denominator has one
// digit (1/12 reads as 1/1/2).
TEST(ReadXsym, TextsAndTheirOperators) {
  const Mat3i my{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}};
  const std::string blank = " Blank operator field", wrong = " The above operator is wrong: ";
  const std::string invalid = " Invalid character... ";
  std::string many;
  while (many.size() < 300) many += "-x,y,-z,";
  const struct {
    std::string text;
    int start;
    Mat3i rot;
    Vec3 tr;
    std::string message;
  } cases[] = {
      {"-x+1/2,y,-z", 1, my, {0.5f, 0, 0}, ""},
      {"x-y,x,z+1/2", 1, {{{1, -1, 0}, {1, 0, 0}, {0, 0, 1}}}, {0, 0, 0.5f}, ""},
      {"2x-y,z,-x", 1, {{{2, -1, 0}, {0, 0, 1}, {-1, 0, 0}}}, {0, 0, 0}, ""},
      {"x+0.25,-y-3/4,z", 1, {{{1, 0, 0}, {0, -1, 0}, {0, 0, 1}}}, {0.25f, -0.75f, 0}, ""},
      {"X, y ,Z   ", 1, identity_matrix, {0, 0, 0}, ""},
      {"x*y*z", 1, identity_matrix, {0, 0, 0}, ""},
      {"1/2-x,y,z", 1, {{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {0.5f, 0, 0}, ""},
      {"SYMM -y,x,z+1/4", 6, {{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}}, {0, 0, 0.25f}, ""},
      {"x,y,z+1/12", 1, identity_matrix, {0, 0, 0.5f}, ""},
      {"x,-1/4+y,z", 1, identity_matrix, {0, -0.25f, 0}, ""},
      {"x,y,z+1/0", 1, identity_matrix, {0, 0, 1}, ""},  // a zero denominator is passed over
      {"x,y,z", -5, identity_matrix, {0, 0, 0}, ""},
      {many, 1, my, {0, 0, 0}, ""},
      {"x,y", 1, {{{1, 0, 0}, {0, 1, 0}, {0, 1, 0}}}, {}, wrong + "x,y"},
      {"x,x,z", 1, {{{1, 0, 0}, {1, 0, 0}, {0, 0, 1}}}, {}, wrong + "x,x,z"},
      {"x,y,w", 1, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 0}}}, {}, invalid + "w in operator string"},
      {std::string(300, '?'), 1, Mat3i{}, {}, invalid + "? in operator string"},
      {"", 1, Mat3i{}, {}, blank},
      {",,,", 1, Mat3i{}, {}, blank},
      {"x,,z", 1, Mat3i{}, {}, blank},
      {"x,y,", 1, Mat3i{}, {}, blank},
      {"x,y,z", 40, Mat3i{}, {}, blank},
  };
  for (const auto& c : cases) {
    Mat3i rot{};
    Vec3 tr{};
    read_xsym(c.text, c.start, rot, tr);
    EXPECT_EQ(err_symm_mess, c.message) << c.text;
    EXPECT_EQ(err_symm, !c.message.empty()) << c.text;
    // The rows read; with an invalid character, as far as the error.
    const int rows = c.message.empty() || c.message[1] == 'T' ? 3 : (c.text == "x,y,w" ? 1 : 0);
    for (int i = 0; i < rows; ++i) EXPECT_EQ(rot[i], c.rot[i]) << c.text;
    for (int i = 0; i < 3 && c.message.empty(); ++i) EXPECT_NEAR(tr[i], c.tr[i], 1e-6f) << c.text;
  }
  // Without the check a short text passes; a 300-digit constant stays within its message.
  Mat3i rot{};
  Vec3 tr{};
  read_xsym("x,y", 1, rot, tr, false);
  EXPECT_FALSE(err_symm);
  read_xsym(std::string(300, '7') + ",y,z", 1, rot, tr);
  EXPECT_TRUE(err_symm);
  EXPECT_LE(err_symm_mess.size(), 150u);
}

// Every rotation of the tables, proper and improper, written as an operator (with a translation
// among the fractions of the tables) and as its action on a moment such as "(-Mx,-My, Mz)"
// (hexagonal rotations on hexagonal axes), reads back as itself.
TEST(OperatorText, EveryTabulatedRotationReadsBack) {
  const std::vector<float> shifts = {0.0f,     0.5f,     0.25f,    0.75f,
                                     1.0f / 3, 2.0f / 3, 1.0f / 6, 5.0f / 6};
  int k = 0;
  for (int n = 0; n < 36; ++n) {
    for (const Mat3i& r : {mod6[n], negated(mod6[n])}) {
      const Vec3 t{shifts[k % 8], shifts[(k + 3) % 8], shifts[(k + 5) % 8]};
      ++k;
      const std::string text = get_symsymbi(r, t);
      EXPECT_EQ(text.find(' '), std::string::npos) << text;
      Mat3i back{};
      Vec3 tback{};
      read_xsym(text, 1, back, tback);
      EXPECT_FALSE(err_symm) << text;
      EXPECT_EQ(back, r) << text;
      for (int i = 0; i < 3; ++i) EXPECT_NEAR(tback[i], t[i], 1e-5f) << text;
      hexa = n >= 24;
      const std::string moment = decodmatmag(r);
      hexa = false;
      EXPECT_FALSE(err_symm) << moment;
      EXPECT_EQ(moment.size(), 19u);
      std::string xyz;  // the moment's text without brackets, blanks and M
      for (const char c : moment)
        if (std::string_view("( M)").find(c) == std::string_view::npos) xyz += c;
      read_xsym(xyz, 1, back, tback);
      EXPECT_EQ(back, r) << moment;
    }
  }
}

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

// "Operator = symbol": every fraction of the table has its letter; a minus sign is kept.
TEST(SeitzSymb, RotationPartAndTranslationLetters) {
  for (const std::string c :
       {"x,y,z = { 1 | 0 0 0}", "-x,-y,-z = {-1 | 0 0 0}", "-x+1/2,y,-z+1/2 = { 2 | p 0 p}",
        "-x,y+1/2,-z = { 2 | 0 p 0}", "-y,x,z+1/4 = { 4+| 0 0 s}", "y,-x,-z+3/4 = {-4+| 0 0 t}",
        "x,y,-z = { m | 0 0 0}", "z,x,y = { 3+| 0 0 0}", "x+1/3,y+2/3,z+1/6 = { t | q r u}",
        "x+5/6,y+1/8,z+3/8 = { t | v w x}", "x+5/8,y+7/8,z-2/3 = { t | y z-r}"}) {
    const std::size_t eq = c.find(" = ");
    std::string seitz;
    seitz_symb(c.substr(0, eq), seitz);
    EXPECT_EQ(seitz, c.substr(eq + 3)) << c;
  }
}

TEST(SeitzSymb, TabulatedRotationAndInternationalSymbol) {
  std::string seitz;
  std::string itsym;
  seitz_symb("-x,y+1/2,-z", seitz, std::string_view("  2 ( 0, y, 0) -> h3 "), &itsym);
  EXPECT_EQ(seitz, "{2_0y0|0p0}");
  EXPECT_EQ(itsym.size(), 40u);
  EXPECT_EQ(trim(itsym), "2 (0,1/2,0) 0,y,0");

  seitz_symb("z+1/2,-x,-y", seitz, std::string_view(" 3+ (-x, x,-x) -> h6 "));
  EXPECT_EQ(seitz, "{3+_-xx-x|p00}");
  seitz_symb("-x,-y,-z", seitz, std::string_view(" -1            -> h25"));
  EXPECT_EQ(seitz, "{-1|000}");
  seitz_symb("x,y,z", seitz, std::string_view("  1            -> h1 "));
  EXPECT_EQ(seitz, "{1|000}");
}

constexpr Mat3i four_z{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}};    // -y,x,z
constexpr Mat3i three_z{{{0, -1, 0}, {1, -1, 0}, {0, 0, 1}}};  // -y,x-y,z
constexpr Mat3i two_z{{{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}}};    // -x,-y,z
constexpr Mat3i two_y{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}};    // -x,y,-z
constexpr Mat3i two_x{{{1, 0, 0}, {0, -1, 0}, {0, 0, -1}}};    // x,-y,-z

// Worked by hand: powers of a screw axis add their translations.
TEST(ExactOperator, ProductsAndInversesWorkedByHand) {
  const Exact_Op screw{four_z, {0, 0, 6}};  // 4_1: -y,x,z+1/4
  const Exact_Op square = screw * screw;
  EXPECT_EQ(square, (Exact_Op{two_z, {0, 0, 12}}));  // -x,-y,z+1/2
  const Exact_Op fourth = square * square;
  EXPECT_EQ(fourth, (Exact_Op{identity_matrix, {0, 0, 24}}));  // one whole cell along c
  EXPECT_NE(fourth, Exact_Op{});
  EXPECT_EQ(reduced(fourth), Exact_Op{});
  // The product applies the right factor first.
  // (-x+1/2,-y,z+1/2)(-x,y+1/2,-z+1/2) = x+1/2,-y+1/2,-z, once brought into the cell.
  const Exact_Op a{two_z, {12, 0, 12}};
  const Exact_Op b{two_y, {0, 12, 12}};
  const Exact_Op ab = a * b;
  EXPECT_EQ(ab, (Exact_Op{two_x, {12, -12, 24}}));
  EXPECT_EQ(reduced(ab), (Exact_Op{two_x, {12, 12, 0}}));
  EXPECT_EQ(reduced(b * a), (Exact_Op{two_x, {12, 12, 0}}));
  // x+1/2 rather than x: the two translations differ by one 24th and the operators differ.
  EXPECT_NE((Exact_Op{two_x, {12, 12, 0}}), (Exact_Op{two_x, {11, 12, 0}}));
  // The inverse undoes the operator.
  const Exact_Op screw3{three_z, {0, 0, 8}};  // 3_1: -y,x-y,z+1/3
  const Exact_Op inv = inverse(screw3);
  const Mat3i three_z_inv{{{-1, 1, 0}, {-1, 0, 0}, {0, 0, 1}}};  // -x+y,-x,z
  EXPECT_EQ(inv, (Exact_Op{three_z_inv, {0, 0, -8}}));
  EXPECT_EQ(reduced(inv).tr, (Vec3i{0, 0, 16}));  // z+2/3
  EXPECT_EQ(screw3 * inv, Exact_Op{});
  EXPECT_EQ(inv * screw3, Exact_Op{});
  // An improper operator: a glide plane x,-y,z+1/2 is its own inverse modulo the lattice.
  const Exact_Op glide{negated(two_y), {0, 0, 12}};
  EXPECT_EQ(reduced(inverse(glide)), glide);
  EXPECT_EQ(negated(inversion_matrix), identity_matrix);
}

// Whole primitive groups, set up from Hall and Hermann-Mauguin symbols, as exact operators in
// [0,1): the identity first, and every inverse and product among them.
TEST(ExactOperator, PrimitiveGroupsAreClosedUnderProductsAndInverses) {
  const std::pair<const char*, const char*> groups[] = {
      {"P 61 2 (0 0 -1)", "HAL"}, {"P 2ac 2ab", "HAL"}, {"P 4 2 3", "HAL"},
      {"P 31 2c (0 0 1)", "HAL"}, {"P 65 2 2", "HMS"},  {"P 21 21 21", "HMS"},
      {"P 42/N", "HMS"},          {"P N -3 N", "HMS"}};
  for (const auto& [symbol, road] : groups) {
    const Space_Group_Type g = testing::group_of(symbol, road);
    std::vector<Exact_Op> ops;
    for (const Sym_Oper_Type& op : g.symop)
      ops.push_back(reduced(Exact_Op{op.rot, twelfths_of(op.tr)}));
    ASSERT_FALSE(ops.empty()) << symbol;
    EXPECT_EQ(ops.front(), Exact_Op{}) << symbol;
    auto held = [&](const Exact_Op& x) {
      return std::find(ops.begin(), ops.end(), x) != ops.end();
    };
    for (const Exact_Op& a : ops) {
      EXPECT_TRUE(held(reduced(inverse(a)))) << symbol;
      for (const Exact_Op& b : ops) EXPECT_TRUE(held(reduced(a * b))) << symbol;
    }
  }
}

}  // namespace
}  // namespace velmoria
