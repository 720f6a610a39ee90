// Tolerance tests, nearest integers and reduction into the cell: tables of input and result.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/numeric.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

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
