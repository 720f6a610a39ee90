// The irreducible representations of the little group, checked by the theory of group
// representations rather than against lists: for every space group at a fixed list of
// propagation vectors, the little group holds exactly the operators that keep k, and the
// representations in the store form a complete set of irreducible ones.  Then a table of
// small groups worked by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "test_support.hpp"

namespace velmoria {
namespace {

using testing::representations_hold;

std::string where(const std::string& group, const Vec3& k) {
  return "group " + group + " k = (" + std::to_string(k[0]) + ", " + std::to_string(k[1]) + ", " +
         std::to_string(k[2]) + ")";
}

// The rotations of the space group for which k R - k is a vector of the reciprocal lattice:
// integer, and integer on every centring vector.
int rotations_keeping_k(const Space_Group_Type& spg, const Vec3& k) {
  std::set<Mat3i> keep;
  for (const Sym_Oper_Type& op : spg.symop) {
    std::array<double, 3> d{};
    bool integral = true;
    for (int c = 0; c < 3; ++c) {
      for (int r = 0; r < 3; ++r) d[c] += static_cast<double>(k[r]) * op.rot[r][c];
      d[c] -= k[c];
      integral = integral && std::fabs(d[c] - std::round(d[c])) < 1e-4;
    }
    for (const Vec3& c : spg.latt_trans) {
      const double s = d[0] * c[0] + d[1] * c[1] + d[2] * c[2];
      integral = integral && std::fabs(s - std::round(s)) < 1e-3;
    }
    if (integral) keep.insert(op.rot);
  }
  return static_cast<int>(keep.size());
}

struct Lorsk_Run {
  lorsk_proc store;
  std::string unit;
  int status = -1;
};

// As a run with an SPGR line of a tabulated group (the generators of the tables), or with
// hall, the text read as a forced Hall symbol.
Lorsk_Run run_lorsk(const std::string& group, const Vec3& k, bool hall = false) {
  Lorsk_Run r;
  r.status = lorsk(r.unit, k, 1, "KK", group, 0, false, hall ? nullptr : &group, r.store);
  return r;
}

void expect_sound(const std::string& group, const Vec3& k, bool hall = false) {
  const Lorsk_Run r = run_lorsk(group, k, hall);
  ASSERT_EQ(r.status, status_done) << where(group, k);
  EXPECT_EQ(r.store.ngk, rotations_keeping_k(r.store.spg, k)) << where(group, k);
  EXPECT_TRUE(representations_hold(r.store, k)) << where(group, k) << (hall ? " (Hall)" : "");
}

// Every group at the origin, every vector of components 0, 1/2 and 1, the points (1/3,1/3,0)
// and (1/3,1/3,1/2), seven lines with a generic parameter and one general vector; the same
// groups read as Hall symbols (other operator order, another chain) at five of them.
TEST(LorskSweep, AllSpaceGroupsAtTheListOfVectors) {
  std::vector<Vec3> ks;
  for (float a : {0.0f, 0.5f, 1.0f})
    for (float b : {0.0f, 0.5f, 1.0f})
      for (float c : {0.0f, 0.5f, 1.0f}) ks.push_back({a, b, c});
  const float t = 1.0f / 3.0f, g = 0.137f;
  for (const Vec3& k :
       {Vec3{t, t, 0}, Vec3{t, t, 0.5f}, Vec3{g, 0, 0}, Vec3{0, g, 0}, Vec3{0, 0, g}, Vec3{g, g, 0},
        Vec3{g, g, g}, Vec3{g, 0.5f, 0}, Vec3{0.5f, 0.5f, g}, Vec3{0.113f, 0.271f, 0.389f}})
    ks.push_back(k);
  for (int number = 1; number <= 230; ++number) {
    const std::string group = std::to_string(number);
    for (const Vec3& k : ks) expect_sound(group, k);
    for (const Vec3& k :
         {Vec3{0, 0, 0}, Vec3{0.5f, 0.5f, 0.5f}, Vec3{0, 0, g}, Vec3{1, 1, 1}, Vec3{0.5f, 0, 0}})
      expect_sound(group, k, true);
    if (::testing::Test::HasFailure()) return;
  }
}

// Along the four-fold axis of the diamond-glide groups the conjugation phases are not whole
// 24ths unless 12 c is whole: several values of c, on each axis of the cubic groups.
TEST(LorskSweep, FourFoldScrewVectorsWithPhasesOutsideTwentyFourths) {
  for (int number : {109, 110, 141, 142, 227, 228, 230}) {
    for (float c : {0.01f, 0.0417f, 0.1f, 0.12f, 0.2f, 0.25f, 0.3f, 0.37f, 0.45f, 0.6f, 0.9f}) {
      for (const Vec3& k : {Vec3{0, 0, c}, Vec3{c, 0, 0}, Vec3{0, c, 0}})
        expect_sound(std::to_string(number), k);
    }
  }
}

// Worked by hand: the order of the little group and the dimensions of its irreducible
// representations (sorted).
TEST(LorskSweep, DimensionsWorkedByHand) {
  const struct {
    const char* group;
    Vec3 k;
    int order;
    std::vector<int> dims;
  } cases[] = {
      {"1", {0, 0, 0}, 1, {1}},
      {"2", {0, 0, 0}, 2, {1, 1}},
      {"169", {0, 0, 0.137f}, 6, {1, 1, 1, 1, 1, 1}},  // P 61 inside the zone
      {"169", {0, 0, 0.49f}, 6, {1, 1, 1, 1, 1, 1}},
      // P 21/c at (0,0,1/2): the inversion carries the two representations of the screw axis
      // into each other.
      {"14", {0, 0, 0.5f}, 4, {2}},
      {"14", {0, 0, 0}, 4, {1, 1, 1, 1}},
      {"99", {0, 0, 0}, 8, {1, 1, 1, 1, 2}},  // 4mm
      {"47", {0, 0, 0}, 8, {1, 1, 1, 1, 1, 1, 1, 1}},
      {"19", {0.5f, 0, 0}, 4, {2}},  // P 21 21 21 at X
      {"19", {0, 0, 0}, 4, {1, 1, 1, 1}},
      {"207", {0, 0, 0}, 24, {1, 1, 2, 3, 3}},  // 432
      {"221", {0, 0, 0}, 48, {1, 1, 1, 1, 2, 2, 3, 3, 3, 3}},
      {"222", {0.5f, 0.5f, 0.5f}, 48, {2, 2, 2, 6}},
      {"194", {0, 0, 0.5f}, 24, {2, 2, 4}},
      {"213", {0.5f, 0.5f, 0.5f}, 24, {2, 2, 4}},
      {"230", {1, 1, 1}, 48, {2, 2, 2, 6}},
      // R -3 on hexagonal axes: k is equivalent to -k when -h + k + l is a multiple of 3, so
      // the inversion leaves the little group at (0,0,1/2) and stays at (0,0,3/2).
      {"148", {0, 0, 0.5f}, 3, {1, 1, 1}},
      {"148", {0, 0, 1.5f}, 6, {1, 1, 1, 1, 1, 1}},
      {"148", {0, 0, 0}, 6, {1, 1, 1, 1, 1, 1}},
  };
  for (const auto& c : cases) {
    const Lorsk_Run r = run_lorsk(c.group, c.k);
    SCOPED_TRACE(where(c.group, c.k));
    EXPECT_EQ(r.store.ngk, c.order);
    std::vector<int> dims = r.store.idim;
    std::sort(dims.begin(), dims.end());
    EXPECT_EQ(dims, c.dims);
  }
}

// Phases worked by hand, in turns.  P -1 at k = 0: characters 1, 1 and 1, -1 in this order.
// P 21 (screw along b): its square is the translation (0,1,0), of phase k_y; the two roots
// give the screw k_y / 2 and that plus a half turn.  P 21/c at (0,0,1/2): the representation
// of dimension 2 has trace 0 on the coset of the inversion.
TEST(LorskSweep, PhasesWorkedByHand) {
  const Lorsk_Run pb1 = run_lorsk("2", {0, 0, 0});
  ASSERT_EQ(pb1.store.nreps, 2);
  EXPECT_NEAR(pb1.store.chi(1, 2), 0.0f, 1e-6f);
  EXPECT_NEAR(pb1.store.chi(2, 2), 0.5f, 1e-6f);
  for (const auto& [ky, phase] : {std::pair{0.5f, 0.25f}, std::pair{0.2f, 0.1f}}) {
    const Lorsk_Run p21 = run_lorsk("4", {0, ky, 0});
    ASSERT_EQ(p21.store.nreps, 2);
    EXPECT_NEAR(p21.store.t[1][1], 0.5f, 1e-6f);
    EXPECT_NEAR(p21.store.repi(1, 1, 1, 2), phase, 1e-5f) << ky;
    EXPECT_NEAR(p21.store.repi(1, 1, 2, 2), phase + 0.5f, 1e-5f) << ky;
    EXPECT_NEAR(p21.store.ph[1], ky / 2, 1e-6f);  // k.t of the screw
  }
  const Lorsk_Run p21c = run_lorsk("14", {0, 0, 0.5f});
  EXPECT_FLOAT_EQ(p21c.store.chr(1, 3), 0.0f);
  EXPECT_FLOAT_EQ(p21c.store.chr(1, 4), 0.0f);
}

TEST(LorskSweep, GroupTextsAndTheirFailures) {
  lorsk_proc store;
  std::string unit;
  EXPECT_EQ(lorsk(unit, {0, 0, 0}, 0, "GM", "Q 9 9 9", 0, false, nullptr, store),
            status_setup_failed);
  EXPECT_EQ(lorsk(unit, {0, 0, 0}, 0, "GM", "x,y", 0, true, nullptr, store), status_setup_failed);
  // Generators given by the user: the group they make.
  EXPECT_EQ(lorsk(unit, {0, 0, 0.5f}, 0, "Z ", "-x,-y,z+1/2; -x,-y,-z", 0, true, nullptr, store),
            status_done);
  EXPECT_EQ(store.ngk, 4);
  EXPECT_TRUE(representations_hold(store, {0, 0, 0.5f}));
}

}  // namespace
}  // namespace velmoria
