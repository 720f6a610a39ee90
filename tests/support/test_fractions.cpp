// Numbers: tolerance tests, nearest integers and reduction into the cell; translations written
// as fractions, single values with signs, fraction text read back, and k snapped to the
// tabulated fractions.  Tables of input and expected output.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "run/run_driver.hpp"
#include "support/fractions.hpp"
#include "support/numeric.hpp"
#include "support/text.hpp"
#include "symmetry/operator_text.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

TEST(Fractions, TranslationVectors) {
  const struct {
    float tolerance;
    Vec3 t;
    const char* text;
  } cases[] = {
      {1.0e-5F, {0.5F, -1.0F, -0.25F}, "(1/2,-1,-1/4)"},
      // The numerator runs outside: 2/3 stays 2/3, 5/6 and 7/8 are found as such.
      {1.0e-5F, {2.0F / 3.0F, 5.0F / 6.0F, -7.0F / 8.0F}, "(2/3,5/6,-7/8)"},
      // No fraction of one-digit terms: three decimals when positive, four when negative.
      {1.0e-5F, {0.1F, -0.1F, 1.0F / 24.0F}, "(0.100,-0.1000,0.042)"},
      {1.0e-5F, {0.333F, 0.0F, 0.0F}, "(0.333,0,0)"},
      {0.002F, {0.333F, 0.0F, 0.0F}, "(1/3,0,0)"},
  };
  testing::Run_Tolerance restore;
  for (const auto& c : cases) {
    set_epsg_sp(c.tolerance);
    EXPECT_EQ(frac_trans_1dig(c.t), c.text);
  }
}

TEST(Fractions, SignedValues) {
  const std::pair<float, const char*> cases[] = {
      {0.0F, "0"}, {-2.0F, "-2"}, {13.0F / 12.0F, "+13/12"}, {-0.123456F, "-0.1235"}};
  for (const auto& [v, text] : cases) EXPECT_EQ(get_fraction_2dig(v), text) << v;
}

// A text that cannot be read gives 0 and the message; a zero denominator is not tested for.
TEST(Fractions, ReadFractionText) {
  const struct {
    const char* text;
    float value;
    const char* message;  // nullptr: no error
  } cases[] = {{"-3/4", -0.75F, nullptr},
               {"    ", 1.0F, nullptr},
               {" - ", -1.0F, nullptr},
               {"0.25", 0.25F, nullptr},
               {"1/q", 0.0F, " The provided symbol is illegal: q"}};
  for (const auto& c : cases) {
    init_err_string();
    EXPECT_FLOAT_EQ(read_fract(c.text), c.value) << c.text;
    EXPECT_EQ(err_string, c.message != nullptr) << c.text;
    if (c.message != nullptr) {
      EXPECT_EQ(err_string_mess, c.message);
    }
  }
  init_err_string();
  EXPECT_TRUE(std::isinf(read_fract("1/0")));
  EXPECT_FALSE(err_string);
}

// A component within 0.001 of a tabulated fraction becomes it, with its sign.
TEST(Fractions, KSnapsToFractionsWithinTheTolerance) {
  const std::pair<float, float> cases[] = {{-0.7508f, -3.0f / 4},
                                           {0.5012f, 0.5012f},
                                           {0.125f + 0.0009f, 0.125f},
                                           {0.125f + 0.0012f, 0.125f + 0.0012f}};
  for (const auto& [in, out] : cases) EXPECT_EQ(snap_to_fractions({in, 0, in})[2], out) << in;
}

// A generator list is cut at every semicolon; a stray one on a GEN line is refused as an
// empty generator.
TEST(Fractions, GeneratorListsAreCutAtEverySemicolon) {
  const std::pair<const char*, std::vector<std::string>> cases[] = {
      {"  -x,-y,z ;  x+1/2,y,-z", {"-x,-y,z", "x+1/2,y,-z"}},
      {";-x,-y,z", {"", "-x,-y,z"}},
      {"   ", {""}}};
  for (const auto& [text, parts] : cases) EXPECT_EQ(split_generators(text), parts) << text;
  for (const auto& [gen, normal] :
       {std::pair{"-x,-y,z; -x,y,-z;", false}, std::pair{"-x,-y,z; -x,y,-z", true}}) {
    const Run_Output out = run_velmoria(
        {"t", std::string("GEN   ") + gen + "\nKVEC  0 0 0 GM\nATOM  Fe FE 0.1 0.2 0.3\n", ""});
    EXPECT_EQ(out.console.find(" => Normal End") != std::string::npos, normal) << gen;
  }
}

// Halves away from zero; beyond 32 bits the limit; not-a-number gives 0.
TEST(Numeric, NearestInteger) {
  const std::pair<double, int> cases[] = {
      {-2.5, -3}, {2.4999, 2}, {0.5, 1}, {-1.0e10, std::numeric_limits<int>::min()}};
  for (const auto& [x, n] : cases) {
    EXPECT_EQ(nint(x), n) << x;
    EXPECT_EQ(nint(static_cast<float>(x)), n) << x;
  }
  EXPECT_EQ(nint(std::nanf("")), 0);
}

// Integers within the tolerance epss (1.0e-5 by default, 0.002 in a run, 0.4 here), and not
// outside what 32 bits hold; the double test has its own tolerance.
TEST(Numeric, IntegerTestsAndTheirTolerance) {
  const struct {
    float tolerance, x;
    bool integer;
  } cases[] = {{1.0e-5F, 0.9999F, false},     {0.002F, -1.9985F, true},
               {0.002F, 0.997F, false},       {0.4F, -0.5F, false},
               {1.0e-5F, 3.0e9F, false},      {1.0e-5F, std::nanf(""), false},
               {1.0e-5F, 2147483520.0F, true}};
  testing::Run_Tolerance restore;
  for (const auto& c : cases) {
    set_epsg_sp(c.tolerance);
    EXPECT_EQ(zbelongn(c.x), c.integer) << c.x << " within " << c.tolerance;
  }
  set_epsg_sp(0.002F);
  EXPECT_TRUE(zbelongv(std::vector<float>{0.999F, 0.001F, -1.0015F}));
  EXPECT_FALSE(zbelongv(std::vector<float>{0.999F, 0.003F, 0.0F}));
  EXPECT_TRUE(negligibler(0.002F));
  EXPECT_FALSE(negligibler(0.0021F));
  set_epsg_sp(0.5F);  // the single tolerance does not matter to the double tests
  EXPECT_TRUE(zbelongn_dp(2.0 + 1.0e-13));
  EXPECT_FALSE(zbelongn_dp(2.0 + 1.0e-10));
  EXPECT_FALSE(zbelongv_dp(std::vector<double>{3.0, -4.000001}));
}

// Whole cells vanish; below -10 the remainder keeps the negative sign.
TEST(Numeric, ReductionIntoTheCell) {
  const std::vector<float> u = {-0.25F, 1.25F, 0.0F, -3.0F, 5.5F, -10.5F, -9.75F};
  const std::vector<float> r = {0.75F, 0.25F, 0.0F, 0.0F, 0.5F, -0.5F, 0.25F};
  EXPECT_EQ(modulo_lat(u), r);
  EXPECT_EQ(modulo_lat(Vec3{-0.25F, 1.25F, 0.0F}), (Vec3{0.75F, 0.25F, 0.0F}));
}

}  // namespace
}  // namespace velmoria
