// The little group of k on a rhombohedral lattice: the test of the reciprocal lattice goes by
// -h + k + l a multiple of 3 (obverse setting), not by integers alone.
#include <gtest/gtest.h>

#include <string>

#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"

namespace velmoria {
namespace {

// R -3 on hexagonal axes: -k = k - (0,0,1) is no vector of the reciprocal lattice at
// (0,0,1/2), so the inversion leaves the little group; at (0,0,3/2), -k = k - (0,0,3) and it
// stays; at k = 0 the whole point group of order 6.
TEST(GroupPreparation, RhombohedralLatticeTestByThree) {
  const struct {
    const char* group;
    Vec3 k;
    int order;
  } cases[] = {{"148", {0, 0, 0.5f}, 3}, {"148", {0, 0, 1.5f}, 6}, {"148", {0, 0, 0}, 6}};
  for (const auto& c : cases) {
    lorsk_proc store;
    std::string unit;
    const std::string group = c.group;
    ASSERT_EQ(lorsk(unit, c.k, 1, "KK", group, 0, false, &group, store), status_done);
    EXPECT_EQ(store.ngk, c.order) << c.group << " at l = " << c.k[2];
  }
}

}  // namespace
}  // namespace velmoria
