// Reading and writing operators as x,y,z text.
#include <gtest/gtest.h>

#include <string>
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
  const std::string blank = " Blank operator field";
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
      {"x,y",
       1,
       {{{1, 0, 0}, {0, 1, 0}, {0, 1, 0}}},
       {0, 0, 0},
       " The above operator is wrong: x,y"},
      {"x,x,z",
       1,
       {{{1, 0, 0}, {1, 0, 0}, {0, 0, 1}}},
       {0, 0, 0},
       " The above operator is wrong: x,x,z"},
      {"x,y,w",
       1,
       {{{1, 0, 0}, {0, 1, 0}, {0, 0, 0}}},
       {0, 0, 0},
       " Invalid character... w in operator string"},
      {std::string(300, '?'), 1, Mat3i{}, {0, 0, 0}, " Invalid character... ? in operator string"},
      {"", 1, Mat3i{}, {0, 0, 0}, blank},
      {",,,", 1, Mat3i{}, {0, 0, 0}, blank},
      {"x,,z", 1, Mat3i{}, {0, 0, 0}, blank},
      {"x,y,", 1, Mat3i{}, {0, 0, 0}, blank},
      {"x,y,z", 40, Mat3i{}, {0, 0, 0}, blank},
  };
  for (const auto& c : cases) {
    Mat3i rot{};
    Vec3 tr{};
    read_xsym(c.text, c.start, rot, tr);
    EXPECT_EQ(err_symm_mess, c.message) << c.text;
    EXPECT_EQ(err_symm, !c.message.empty()) << c.text;
    if (c.text == "x,y,w") {
      EXPECT_EQ(rot[0], c.rot[0]);  // read as far as the error
    }
    if (c.message.empty() || c.message[1] == 'T') {
      EXPECT_EQ(rot, c.rot) << c.text;
    }
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

TEST(GetSymsymbi, RoundTripThroughReadXsym) {
  const std::vector<float> shifts = {0.0f,     0.5f,     0.25f,    0.75f,
                                     1.0f / 3, 2.0f / 3, 1.0f / 6, 5.0f / 6};
  int k = 0;
  for (const Mat3i& m : mod6) {
    for (const Mat3i& r : {m, negated(m)}) {
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
    }
  }
}

// The components of a text such as "(-Mx,-My, Mz)" or "(   -My, Mx-My, Mz)" as rows of a matrix.
Mat3i parse_moment_text(const std::string& text) {
  Mat3i m{};
  int row = 0;
  int sign = 1;
  for (std::size_t i = 1; i < text.size() && row < 3; ++i) {
    const char c = text[i];
    if (c == '-') sign = -1;
    if (c == '+') sign = 1;
    if (c == 'M' && i + 1 < text.size()) {
      const char a = text[i + 1];
      m[row][a == 'x' ? 0 : (a == 'y' ? 1 : 2)] = sign;
      sign = 1;
    }
    if (c == ',' || c == ')') {
      ++row;
      sign = 1;
    }
  }
  return m;
}

TEST(Decodmatmag, TextIsTheMatrixActingOnTheMoment) {
  hexa = false;
  for (int n = 0; n < 24; ++n) {
    for (const Mat3i& r : {mod6[n], negated(mod6[n])}) {
      const std::string text = decodmatmag(r);
      EXPECT_FALSE(err_symm);
      EXPECT_EQ(text.size(), 19u);
      EXPECT_EQ(parse_moment_text(text), r) << text;
    }
  }
  hexa = true;
  for (int n = 24; n < 36; ++n) {
    for (const Mat3i& r : {mod6[n], negated(mod6[n])}) {
      const std::string text = decodmatmag(r);
      EXPECT_FALSE(err_symm);
      EXPECT_EQ(parse_moment_text(text), r) << text;
    }
  }
  hexa = false;
}

}  // namespace
}  // namespace velmoria
