// Tolerance tests, nearest integers, reduction into the cell, determinants and traces.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/numeric.hpp"

namespace velmoria {
namespace {

// Restores the default tolerances whatever a test did to them.
struct ToleranceGuard {
  ~ToleranceGuard() {
    set_epsg_default();
    set_epsg_dp(1.0e-12);
  }
};

TEST(Numeric, NearestIntegerRoundsHalvesAwayFromZero) {
  EXPECT_EQ(nint(2.5F), 3);
  EXPECT_EQ(nint(-2.5F), -3);
  EXPECT_EQ(nint(2.4999F), 2);
  EXPECT_EQ(nint(-0.4F), 0);
  EXPECT_EQ(nint(0.5), 1);
  EXPECT_EQ(nint(-1.5), -2);
  // Beyond 32 bits the value is held at the limit, and not-a-number gives 0.
  EXPECT_EQ(nint(1.0e10F), std::numeric_limits<int>::max());
  EXPECT_EQ(nint(-1.0e10), std::numeric_limits<int>::min());
  EXPECT_EQ(nint(std::nanf("")), 0);
}

TEST(Numeric, IntegerTestDependsOnTolerance) {
  ToleranceGuard guard;
  EXPECT_FALSE(zbelongn(0.9999F));  // 1.0e-4 from 1 exceeds 1.0e-5
  EXPECT_TRUE(zbelongn(-3.000001F));
  set_epsg_sp(0.002F);
  EXPECT_TRUE(zbelongn(0.9999F));
  EXPECT_TRUE(zbelongn(-1.9985F));
  EXPECT_FALSE(zbelongn(0.997F));
  set_epsg_sp(0.4F);
  EXPECT_FALSE(zbelongn(0.5F));
  EXPECT_FALSE(zbelongn(-0.5F));
}

TEST(Numeric, IntegerTestOutsideThirtyTwoBits) {
  // Values whose nearest integer a 32-bit integer cannot hold are not taken as integers.
  EXPECT_FALSE(zbelongn(3.0e9F));
  EXPECT_FALSE(zbelongn(-1.0e20F));
  EXPECT_FALSE(zbelongn(std::numeric_limits<float>::infinity()));
  EXPECT_FALSE(zbelongn(std::nanf("")));
  EXPECT_TRUE(zbelongn(2147483520.0F));  // the largest float below 2^31
  EXPECT_FALSE(zbelongn_dp(1.0e12));
}

TEST(Numeric, VectorIntegerTest) {
  ToleranceGuard guard;
  EXPECT_TRUE(zbelongv(std::vector<float>{}));
  EXPECT_TRUE(zbelongv(std::vector<float>{1.0F, -2.0F, 0.0F}));
  EXPECT_FALSE(zbelongv(std::vector<float>{1.0F, 0.5F, 0.0F}));
  set_epsg_sp(0.002F);
  EXPECT_TRUE(zbelongv(std::vector<float>{0.999F, 0.001F, -1.0015F}));
  EXPECT_FALSE(zbelongv(std::vector<float>{0.999F, 0.003F, 0.0F}));
}

TEST(Numeric, DoublePrecisionIntegerTest) {
  ToleranceGuard guard;
  EXPECT_TRUE(zbelongn_dp(2.0 + 1.0e-13));
  EXPECT_FALSE(zbelongn_dp(2.0 + 1.0e-10));
  set_epsg_sp(0.5F);  // the single tolerance does not matter here
  EXPECT_FALSE(zbelongn_dp(0.9999));
  EXPECT_TRUE(zbelongv_dp(std::vector<double>{}));
  EXPECT_TRUE(zbelongv_dp(std::vector<double>{3.0, -4.0}));
  EXPECT_FALSE(zbelongv_dp(std::vector<double>{3.0, -4.000001}));
}

TEST(Numeric, NegligibleAtTheToleranceItself) {
  ToleranceGuard guard;
  EXPECT_TRUE(negligibler(epss_val()));
  EXPECT_TRUE(negligibler(-epss_val()));
  EXPECT_FALSE(negligibler(std::nextafter(epss_val(), 1.0F)));
  set_epsg_sp(0.002F);
  EXPECT_TRUE(negligibler(0.002F));
  EXPECT_FALSE(negligibler(0.0021F));
}

TEST(Numeric, ReductionIntoTheCell) {
  const Vec3 w = modulo_lat(Vec3{-0.25F, 1.25F, 0.0F});
  EXPECT_FLOAT_EQ(w[0], 0.75F);
  EXPECT_FLOAT_EQ(w[1], 0.25F);
  EXPECT_FLOAT_EQ(w[2], 0.0F);
  // Whole cells vanish; below -10 the remainder keeps the negative sign.
  const std::vector<float> u = {-3.0F, 5.5F, -10.5F, -9.75F};
  const std::vector<float> r = modulo_lat(u);
  ASSERT_EQ(r.size(), 4U);
  EXPECT_FLOAT_EQ(r[0], 0.0F);
  EXPECT_FLOAT_EQ(r[1], 0.5F);
  EXPECT_FLOAT_EQ(r[2], -0.5F);
  EXPECT_FLOAT_EQ(r[3], 0.25F);
  EXPECT_TRUE(modulo_lat(std::vector<float>{}).empty());
}

}  // namespace
}  // namespace velmoria
