// Reading and writing operators as x,y,z text.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/exact_operator.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/tables.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

const Mat3i identity{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

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
      {"X, y ,Z   ", 1, identity, {0, 0, 0}, ""},
      {"x*y*z", 1, identity, {0, 0, 0}, ""},
      {"1/2-x,y,z", 1, {{{-1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {0.5f, 0, 0}, ""},
      {"SYMM -y,x,z+1/4", 6, {{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}}, {0, 0, 0.25f}, ""},
      {"x,y,z+1/12", 1, identity, {0, 0, 0.5f}, ""},
      {"x,-1/4+y,z", 1, identity, {0, -0.25f, 0}, ""},
      {"x,y,z+1/0", 1, identity, {0, 0, 1}, ""},  // a zero denominator is passed over
      {"x,y,z", -5, identity, {0, 0, 0}, ""},
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

}  // namespace
}  // namespace velmoria
