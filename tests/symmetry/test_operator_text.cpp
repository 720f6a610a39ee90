// Reading and writing operators as x,y,z text.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/numeric.hpp"
#include "symmetry/operator_text.hpp"
#include "symmetry/records.hpp"
#include "symmetry/tables.hpp"

namespace velmoria {
namespace {

const Mat3i identity{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

Mat3i negated(const Mat3i& m) {
  Mat3i r{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) r[i][j] = -m[i][j];
  return r;
}

void expect_vec(const Vec3& v, float a, float b, float c) {
  EXPECT_NEAR(v[0], a, 1e-6f);
  EXPECT_NEAR(v[1], b, 1e-6f);
  EXPECT_NEAR(v[2], c, 1e-6f);
}

TEST(ReadXsym, ReadsRowsAndTranslations) {
  Mat3i rot{};
  Vec3 tr{};
  read_xsym("-x+1/2,y,-z", 1, rot, tr);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(rot, (Mat3i{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}));
  expect_vec(tr, 0.5f, 0.0f, 0.0f);

  read_xsym("x-y,x,z+1/2", 1, rot, tr);
  EXPECT_EQ(rot, (Mat3i{{{1, -1, 0}, {1, 0, 0}, {0, 0, 1}}}));
  expect_vec(tr, 0.0f, 0.0f, 0.5f);

  read_xsym("2x-y,z,-x", 1, rot, tr);
  EXPECT_EQ(rot, (Mat3i{{{2, -1, 0}, {0, 0, 1}, {-1, 0, 0}}}));

  read_xsym("x+0.25,-y-3/4,z", 1, rot, tr);
  expect_vec(tr, 0.25f, -0.75f, 0.0f);
}

TEST(ReadXsym, SpellingsOfTheSameOperator) {
  Mat3i a{}, b{};
  Vec3 ta{}, tb{};
  read_xsym("x,y,z", 1, a, ta);
  for (const char* text : {"X,Y,Z", " x , y , z ", "x*y*z", "x,y,z*", "X, y ,Z   "}) {
    read_xsym(text, 1, b, tb);
    EXPECT_FALSE(err_symm) << text;
    EXPECT_EQ(a, b) << text;
    expect_vec(tb, 0, 0, 0);
  }
  read_xsym("-x+1/2,y,z", 1, a, ta);
  read_xsym("1/2-x,y,z", 1, b, tb);
  EXPECT_EQ(a, b);
  expect_vec(tb, ta[0], ta[1], ta[2]);
  // Reading can start further on in a line.
  read_xsym("SYMM -y,x,z+1/4", 6, b, tb);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(b, (Mat3i{{{0, -1, 0}, {1, 0, 0}, {0, 0, 1}}}));
  expect_vec(tb, 0, 0, 0.25f);
}

TEST(ReadXsym, OneDigitDenominators) {
  Mat3i rot{};
  Vec3 tr{};
  // A denominator has one digit: 1/12 reads as 1/1/2.
  read_xsym("x,y,z+1/12", 1, rot, tr);
  EXPECT_FALSE(err_symm);
  expect_vec(tr, 0, 0, 0.5f);
  // The translation of a field comes with the sign in force at its last digit.
  read_xsym("x,-1/4+y,z", 1, rot, tr);
  expect_vec(tr, 0, -0.25f, 0);
}

TEST(ReadXsym, ShortTextRepeatsLastField) {
  Mat3i rot{};
  Vec3 tr{};
  read_xsym("x,y", 1, rot, tr);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " The above operator is wrong: x,y");
  EXPECT_EQ(rot, (Mat3i{{{1, 0, 0}, {0, 1, 0}, {0, 1, 0}}}));

  read_xsym("x,y", 1, rot, tr, false);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(rot[2], (std::array<int, 3>{0, 1, 0}));

  read_xsym("x,x,z", 1, rot);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " The above operator is wrong: x,x,z");
}

TEST(ReadXsym, BadTextSetsErrorsWithoutCrash) {
  Mat3i rot{};
  Vec3 tr{};
  read_xsym("x,y,w", 1, rot, tr);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " Invalid character... w in operator string");
  EXPECT_EQ(rot[0], (std::array<int, 3>{1, 0, 0}));  // read as far as the error

  for (const char* text : {"", "   ", ",,", ",,,", "x,,z", "x,y,"}) {
    read_xsym(text, 1, rot, tr);
    EXPECT_TRUE(err_symm) << '"' << text << '"';
    EXPECT_EQ(err_symm_mess, " Blank operator field") << '"' << text << '"';
  }
  read_xsym("x,y,z", 40, rot, tr);
  EXPECT_EQ(err_symm_mess, " Blank operator field");
  read_xsym("x,y,z", -5, rot, tr);  // a start before the text begins at its first character
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(rot, identity);

  // Long garbage: a 300-digit constant, a 300-character list of operators, a long bad text.
  read_xsym(std::string(300, '7') + ",y,z", 1, rot, tr);
  EXPECT_TRUE(err_symm);  // zero first row
  EXPECT_LE(err_symm_mess.size(), 150u);
  std::string many;
  while (many.size() < 300) many += "-x,y,-z,";
  read_xsym(many, 1, rot, tr);
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(rot, (Mat3i{{{-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}}));
  read_xsym(std::string(300, '?'), 1, rot, tr);
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess, " Invalid character... ? in operator string");
  read_xsym("x,y,z+1/0", 1, rot, tr);  // a zero denominator is passed over
  EXPECT_FALSE(err_symm);
  expect_vec(tr, 0, 0, 1.0f);
}

TEST(CheckGenerator, AcceptsOperatorsAndNamesElements) {
  std::string kind;
  EXPECT_TRUE(check_generator("x+1/2,-y+1/4,z", &kind));
  EXPECT_FALSE(err_symm);
  EXPECT_EQ(kind, "m or g  [undet. loc.]");
  EXPECT_TRUE(check_generator("1/2-x, y ,-Z+1/4", &kind));
  EXPECT_EQ(kind, "2 or 21  [undet. loc.]");
  EXPECT_TRUE(check_generator("-y,x,z+1/4", &kind));
  EXPECT_EQ(kind, "4 or 41,42...  [undet. loc.]");
  EXPECT_TRUE(check_generator("-y,x-y,z+1/3", &kind));
  EXPECT_EQ(kind, "3 or 31/32  [undet. loc.]");
  EXPECT_TRUE(check_generator("x-y,x,z+1/6", &kind));
  EXPECT_EQ(kind, "6 or 61,62,...  [undet. loc.]");
  EXPECT_TRUE(check_generator("-x,-y,-z", &kind));
  EXPECT_EQ(kind, "-1  [undet. loc.]");
  EXPECT_TRUE(check_generator("y,-x,-z", &kind));
  EXPECT_EQ(kind, "-4  [undet. loc.]");
  EXPECT_TRUE(check_generator("-z,-x,-y", &kind));
  EXPECT_EQ(kind, "-3  [undet. loc.]");
  EXPECT_TRUE(check_generator("x,y,z", &kind));
  EXPECT_EQ(kind, "1  [undet. loc.]");
  EXPECT_TRUE(check_generator("1/4+x,1/4+y,1/4-z"));
}

TEST(CheckGenerator, RefusesBadMatrices) {
  EXPECT_FALSE(check_generator("2x,y,z"));
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess,
            "The matrix corresponding to a generator has a determinant with absolute value "
            "different of 1.0");
  EXPECT_FALSE(check_generator("x/2,y,z"));
  EXPECT_EQ(err_symm_mess, "The matrix corresponding to a generator has non-integer values!");
  for (const char* text : {"", ",", ",,", "x,y", "abc", "x,y,z,x"}) {
    EXPECT_FALSE(check_generator(text)) << text;
    EXPECT_TRUE(err_symm) << text;
  }
  EXPECT_FALSE(check_generator(std::string(300, ',')));
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

TEST(Decodmatmag, UnknownMatrixSetsError) {
  hexa = false;
  const std::string text = decodmatmag({{{2, 0, 0}, {0, 1, 0}, {0, 0, 1}}});
  EXPECT_TRUE(err_symm);
  EXPECT_EQ(err_symm_mess,
            " Try to re-write your S.O. using a rotational part identical to a S.O. of the "
            "space group P m -3 m or P 6/m m m");
  EXPECT_EQ(text.size(), 19u);
  decodmatmag(identity);
  EXPECT_FALSE(err_symm);  // cleared at entry
}

}  // namespace
}  // namespace velmoria
