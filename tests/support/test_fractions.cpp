// Translations written as fractions, single values with signs, and fraction text read back.
#include <gtest/gtest.h>

#include <cmath>

#include "support/fractions.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"

namespace velmoria {
namespace {

struct ToleranceGuard {
  ~ToleranceGuard() { set_epsg_default(); }
};

TEST(Fractions, TranslationVectors) {
  EXPECT_EQ(frac_trans_1dig({0.0F, 0.0F, 0.0F}), "(0,0,0)");
  EXPECT_EQ(frac_trans_1dig({0.5F, 0.0F, -0.25F}), "(1/2,0,-1/4)");
  EXPECT_EQ(frac_trans_1dig({1.0F, 1.0F / 3.0F, 0.0F}), "(1,1/3,0)");
  EXPECT_EQ(frac_trans_1dig({0.5F, 0.5F, 0.5F}), "(1/2,1/2,1/2)");
  EXPECT_EQ(frac_trans_1dig({-1.0F, 2.0F, 0.0F}), "(-1,2,0)");
  // The numerator runs outside: 2/3 stays 2/3, 5/6 and 7/8 are found as such.
  EXPECT_EQ(frac_trans_1dig({2.0F / 3.0F, 5.0F / 6.0F, -7.0F / 8.0F}), "(2/3,5/6,-7/8)");
  // No fraction of one-digit terms: three decimals when positive, four when negative.
  EXPECT_EQ(frac_trans_1dig({0.1F, -0.1F, 1.0F / 24.0F}), "(0.100,-0.1000,0.042)");
  EXPECT_EQ(frac_trans_1dig({1.2346F, -1.2346F, 10.0F}), "(1.235,-1.2346,10)");
  // Values above 1 are fractions too when they are one: 5/4 and -3/2.
  EXPECT_EQ(frac_trans_1dig({1.25F, -1.5F, 0.0F}), "(5/4,-3/2,0)");
}

TEST(Fractions, TranslationTolerance) {
  ToleranceGuard guard;
  EXPECT_EQ(frac_trans_1dig({0.333F, 0.0F, 0.0F}), "(0.333,0,0)");
  set_epsg_sp(0.002F);
  EXPECT_EQ(frac_trans_1dig({0.333F, 0.0F, 0.0F}), "(1/3,0,0)");
  EXPECT_EQ(frac_trans_1dig({0.4999F, -0.9995F, 0.1667F}), "(1/2,-1,1/6)");
}

TEST(Fractions, SignedValues) {
  EXPECT_EQ(get_fraction_2dig(1.0F / 24.0F), "+1/24");
  EXPECT_EQ(get_fraction_2dig(-0.5F), "-1/2");
  EXPECT_EQ(get_fraction_2dig(0.0F), "0");
  EXPECT_EQ(get_fraction_2dig(1.0F), "+1");
  EXPECT_EQ(get_fraction_2dig(-2.0F), "-2");
  EXPECT_EQ(get_fraction_2dig(-7.0F / 24.0F), "-7/24");
  EXPECT_EQ(get_fraction_2dig(13.0F / 12.0F), "+13/12");
  EXPECT_EQ(get_fraction_2dig(0.1F), "+1/10");
  // No fraction with terms up to 24: four decimals with the sign.
  EXPECT_EQ(get_fraction_2dig(0.123456F), "+0.1235");
  EXPECT_EQ(get_fraction_2dig(-0.123456F), "-0.1235");
}

TEST(Fractions, ReadFractionText) {
  init_err_string();
  EXPECT_FLOAT_EQ(read_fract("1/2"), 0.5F);
  EXPECT_FLOAT_EQ(read_fract("-3/4"), -0.75F);
  EXPECT_FLOAT_EQ(read_fract(""), 1.0F);
  EXPECT_FLOAT_EQ(read_fract("    "), 1.0F);
  EXPECT_FLOAT_EQ(read_fract("+"), 1.0F);
  EXPECT_FLOAT_EQ(read_fract(" - "), -1.0F);
  EXPECT_FLOAT_EQ(read_fract("-2"), -2.0F);
  EXPECT_FLOAT_EQ(read_fract("0.25"), 0.25F);
  EXPECT_FALSE(err_string);
  // A zero denominator is not tested for.
  EXPECT_TRUE(std::isinf(read_fract("1/0")));
  EXPECT_FALSE(err_string);
}

TEST(Fractions, ReadFractionFailures) {
  init_err_string();
  EXPECT_FLOAT_EQ(read_fract("abc"), 0.0F);
  EXPECT_TRUE(err_string);
  EXPECT_EQ(err_string_mess, " The provided symbol is illegal: abc");

  init_err_string();
  EXPECT_FLOAT_EQ(read_fract("1/q"), 0.0F);
  EXPECT_TRUE(err_string);
  EXPECT_EQ(err_string_mess, " The provided symbol is illegal: q");

  init_err_string();
  EXPECT_FLOAT_EQ(read_fract("/2"), 0.0F);
  EXPECT_TRUE(err_string);
  EXPECT_EQ(err_string_mess, " The provided symbol is illegal: ");

  // A successful read does not clear an earlier error.
  EXPECT_FLOAT_EQ(read_fract("3"), 3.0F);
  EXPECT_TRUE(err_string);
}

}  // namespace
}  // namespace velmoria

namespace velmoria {
namespace {

// The written fraction is the first pair num/den, numerators outside, within the tolerance:
// checked against that plain search over a fine sweep of values and both tolerances.
TEST(Fractions, FirstFractionOfTheSearchOrder) {
  const auto first_pair = [](float v) -> std::string {
    const float a = std::abs(v);
    for (int num = 1; num <= 24; ++num) {
      for (int den = 2; den <= 24; ++den) {
        if (std::abs(static_cast<float>(num) / static_cast<float>(den) - a) <= epss) {
          return std::string(v > 0 ? "+" : "-") + std::to_string(num) + "/" + std::to_string(den);
        }
      }
    }
    return "";
  };
  for (float tolerance : {1.0e-5f, 0.002f}) {
    set_epsg_sp(tolerance);
    for (int i = -30000; i <= 30000; ++i) {
      const float v = static_cast<float>(i) / 2399.0f;
      if (zbelongn(v)) continue;
      const std::string expected = first_pair(v);
      if (!expected.empty()) {
        ASSERT_EQ(get_fraction_2dig(v), expected) << v << " with tolerance " << tolerance;
      } else {
        ASSERT_EQ(get_fraction_2dig(v).find('/'), std::string::npos) << v;
      }
    }
  }
  set_epsg_default();
}

}  // namespace
}  // namespace velmoria
