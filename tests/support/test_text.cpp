// Fixed-width text, word cutting, number scanning, line counting and operator coefficients.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "support/text.hpp"

namespace velmoria {
namespace {

TEST(Text, CutFirstWord) {
  int n1 = -1;
  int n2 = -1;
  std::string word = "old";
  std::string line = "      ";
  cutst(line, &n1, &word, &n2);
  EXPECT_EQ(word, "");
  EXPECT_EQ(n1, 0);
  EXPECT_EQ(n2, 0);

  line = "  ATOM Fe1  0.1 0.2";
  cutst(line, &n1, &word, &n2);
  EXPECT_EQ(word, "ATOM");
  EXPECT_EQ(n2, 4);
  EXPECT_EQ(trim(line), "Fe1  0.1 0.2");
  EXPECT_EQ(line.size(), 19U);  // the variable keeps its length
  EXPECT_EQ(n1, 12);

  // A single word takes the whole line and leaves it blank.
  line = "  Fe1  ";
  cutst(line, &n1, &word, &n2);
  EXPECT_EQ(word, "Fe1");
  EXPECT_EQ(n2, 3);
  EXPECT_TRUE(is_blank(line));
  EXPECT_EQ(n1, 0);

  // A variable of length one.
  line = "5";
  cutst(line, &n1, &word, &n2);
  EXPECT_EQ(word, "5");
  EXPECT_EQ(n2, 1);
  EXPECT_TRUE(is_blank(line));

  // A word longer than the receiving field is cut.
  line = "Manganese1 x";
  cutst(line, &n1, &word, &n2, 5);
  EXPECT_EQ(word, "Manga");
  EXPECT_EQ(n2, 5);
  EXPECT_EQ(trim(line), "x");

  // Without the optional arguments the word is just dropped.
  line = "SUBL Mn 2";
  cutst(line);
  EXPECT_EQ(trim(line), "Mn 2");
}

TEST(Text, GetnumScansSignedNumbers) {
  std::array<float, 10> vet{};
  std::array<int, 10> ivet{};
  int iv = -1;
  err_string = true;
  getnum("1.5 -2 3E2", vet, ivet, iv);
  EXPECT_FALSE(err_string);
  ASSERT_EQ(iv, 3);
  EXPECT_FLOAT_EQ(vet[0], 1.5F);
  EXPECT_FLOAT_EQ(vet[1], -2.0F);
  EXPECT_FLOAT_EQ(vet[2], 300.0F);
  EXPECT_EQ(ivet[0], 1);
  EXPECT_EQ(ivet[1], -2);
  EXPECT_EQ(ivet[2], 3);
  EXPECT_FLOAT_EQ(vet[3], 0.0F);

  // Lower-case exponent, negative exponent, a leading point, a second point passed over.
  getnum("  2.5e-1  -.75 1.2.5 4E  ", vet, ivet, iv);
  EXPECT_FALSE(err_string);
  ASSERT_EQ(iv, 4);
  EXPECT_FLOAT_EQ(vet[0], 0.25F);
  EXPECT_EQ(ivet[0], 2);
  EXPECT_FLOAT_EQ(vet[1], -0.75F);
  EXPECT_EQ(ivet[1], 0);
  EXPECT_FLOAT_EQ(vet[2], 1.25F);
  EXPECT_EQ(ivet[2], 1);
  EXPECT_FLOAT_EQ(vet[3], 4.0F);

  getnum("", vet, ivet, iv);
  EXPECT_EQ(iv, 0);
  EXPECT_FALSE(err_string);
}

TEST(Text, GetnumFailures) {
  std::array<float, 10> vet{};
  std::array<int, 10> ivet{};
  int iv = -1;
  getnum("1/2", vet, ivet, iv);
  EXPECT_TRUE(err_string);
  EXPECT_EQ(err_string_mess, "The variable cannot be computed as a number in GETNUM ");
  EXPECT_EQ(iv, 0);

  // Numbers before the bad word stay; the rest are zero (the earlier call is forgotten).
  vet.fill(9.0F);
  getnum("0.25 0.5 Fe 0.75", vet, ivet, iv);
  EXPECT_TRUE(err_string);
  EXPECT_EQ(iv, 2);
  EXPECT_FLOAT_EQ(vet[1], 0.5F);
  EXPECT_FLOAT_EQ(vet[2], 0.0F);
  EXPECT_FLOAT_EQ(vet[9], 0.0F);

  getnum("1 2-3", vet, ivet, iv);
  EXPECT_TRUE(err_string);
  EXPECT_EQ(err_string_mess, "Limits of digit variable exceeded in GETNUM");
  EXPECT_EQ(iv, 1);

  getnum("1E2.5", vet, ivet, iv);
  EXPECT_TRUE(err_string);
  EXPECT_EQ(err_string_mess, "Limits of digit variable exceeded in GETNUM");

  getnum("1E+2", vet, ivet, iv);  // "+" is no character of a number here
  EXPECT_EQ(err_string_mess, "The variable cannot be computed as a number in GETNUM ");

  // Absurd exponents and digit strings neither overflow nor crash.
  getnum("0E99999999999 99999999999999 1E-99999", vet, ivet, iv);
  EXPECT_FALSE(err_string);
  EXPECT_EQ(iv, 3);
  EXPECT_FLOAT_EQ(vet[0], 0.0F);
  EXPECT_FLOAT_EQ(vet[2], 0.0F);
}

TEST(Text, GetnumNeverStoresPastItsArrays) {
  std::array<float, 4> vet = {7.0F, 7.0F, 7.0F, 7.0F};
  std::array<int, 4> ivet = {7, 7, 7, 7};
  int iv = 0;
  // Only two places are offered: the third and fourth numbers are counted, not stored.
  getnum("1 2 3 4", vet.data(), ivet.data(), 2, iv);
  EXPECT_FALSE(err_string);
  EXPECT_EQ(iv, 4);
  EXPECT_FLOAT_EQ(vet[0], 1.0F);
  EXPECT_FLOAT_EQ(vet[1], 2.0F);
  EXPECT_FLOAT_EQ(vet[2], 7.0F);
  EXPECT_EQ(ivet[3], 7);

  getnum("1 2", nullptr, nullptr, 5, iv);
  EXPECT_EQ(iv, 2);
}

TEST(Text, CoefficientsOfAnOperatorComponent) {
  std::array<float, 3> v{};
  init_err_string();
  get_num_string("x-y+1/2", "xyz", v);
  EXPECT_EQ(v, (std::array<float, 3>{1.0F, -1.0F, 0.0F}));
  get_num_string("x/2", "xyz", v);
  EXPECT_EQ(v, (std::array<float, 3>{0.5F, 0.0F, 0.0F}));
  get_num_string("-x/2", "xyz", v);
  EXPECT_EQ(v, (std::array<float, 3>{-0.5F, 0.0F, 0.0F}));
  get_num_string("2x", "xyz", v);
  EXPECT_EQ(v, (std::array<float, 3>{2.0F, 0.0F, 0.0F}));
  get_num_string("1/2-z", "xyz", v);
  EXPECT_EQ(v, (std::array<float, 3>{0.0F, 0.0F, -1.0F}));
  get_num_string("-x+y+1/2", "xyz", v);  // three signs, the first in column 1
  EXPECT_EQ(v, (std::array<float, 3>{-1.0F, 1.0F, 0.0F}));
  get_num_string(" y - 2z ", "xyz", v);
  EXPECT_EQ(v, (std::array<float, 3>{0.0F, 1.0F, -2.0F}));
  get_num_string("-b+a", "abc", v);
  EXPECT_EQ(v, (std::array<float, 3>{1.0F, -1.0F, 0.0F}));
  EXPECT_FALSE(err_string);

  // More than three signs: zeros and no error.
  get_num_string("x-y+z-1/2+1", "xyz", v);
  EXPECT_EQ(v, (std::array<float, 3>{0.0F, 0.0F, 0.0F}));
  EXPECT_FALSE(err_string);

  // A letter met twice.
  get_num_string("x+x", "xyz", v);
  EXPECT_TRUE(err_string);
  EXPECT_EQ(err_string_mess, " The provided symbol is illegal: x+x");
}

}  // namespace
}  // namespace velmoria
