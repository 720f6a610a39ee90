// Preparation of the groups: the space group as integer operators, the little group of k and
// its chain of normal subgroups, checked against the group axioms rather than against lists.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "lorsk/group_preparation.hpp"
#include "lorsk/work.hpp"
#include "support/text.hpp"
#include "symmetry/records.hpp"

namespace velmoria {
namespace {

struct Prepared {
  Lorsk_Work w;
  Space_Group_Type spg;
  std::string unit;
  int status = -1;
  bool chain_ok = false;
};

// Group text as a run gives it: a number or symbol through the tables (mode ITC) or, with
// hall, read as a forced Hall symbol.
Prepared prepare(const std::string& text, const Vec3& k, bool through_tables = true) {
  Prepared p;
  p.w.k = k;
  p.w.SUB[1] = Exact_Op{};
  p.status = space_group(p.unit, p.w, p.spg, text, 0, false, through_tables ? &text : nullptr);
  if (p.status != status_done) return p;
  p.w.BL = u_case(fixed(p.spg.spg_latsy, 2));
  p.chain_ok = little_group(p.unit, p.w, "GM");
  return p;
}

// Whether v (24ths) is a lattice translation of the group: a centring vector plus integers.
bool lattice_translation(const Space_Group_Type& spg, const std::array<int, 3>& v) {
  for (const Vec3& c : spg.latt_trans) {
    bool all = true;
    for (int i = 0; i < 3; ++i) {
      const int d = v[i] - static_cast<int>(std::lround(24.0f * c[i]));
      if (d % 24 != 0) all = false;
    }
    if (all) return true;
  }
  return false;
}

// Slot among 1..n with the rotation of op, 0 when none.
int slot_with_rotation(const Op_Table& t, int n, const Exact_Op& op) {
  for (int s = 1; s <= n; ++s) {
    if (t[s].rot == op.rot) return s;
  }
  return 0;
}

// Slots 1..n form a group modulo lattice translations: one operator per rotation, and each
// product equals a listed operator up to a lattice translation.
::testing::AssertionResult closed_group(const Space_Group_Type& spg, const Op_Table& t, int n) {
  for (int a = 1; a <= n; ++a) {
    if (slot_with_rotation(t, a - 1, t[a]) != 0) {
      return ::testing::AssertionFailure() << "rotation repeated at slot " << a;
    }
    for (int b = 1; b <= n; ++b) {
      const Exact_Op ab = t[a] * t[b];
      const int c = slot_with_rotation(t, n, ab);
      if (c == 0) return ::testing::AssertionFailure() << "product " << a << "*" << b << " missing";
      std::array<int, 3> diff{};
      for (int i = 0; i < 3; ++i) diff[i] = ab.tr[i] - t[c].tr[i];
      if (!lattice_translation(spg, diff)) {
        return ::testing::AssertionFailure() << "product " << a << "*" << b << " off the lattice";
      }
    }
  }
  return ::testing::AssertionSuccess();
}

// k R - k is a vector of the reciprocal lattice: integer, and integer on every centring vector.
bool keeps_k(const Space_Group_Type& spg, const Exact_Op& op, const Vec3& k) {
  std::array<double, 3> d{};
  for (int c = 0; c < 3; ++c) {
    for (int r = 0; r < 3; ++r) d[c] += static_cast<double>(k[r]) * op.rot[r][c];
    d[c] -= k[c];
    if (std::fabs(d[c] - std::round(d[c])) > 1e-4) return false;
  }
  for (const Vec3& c : spg.latt_trans) {
    const double s = d[0] * c[0] + d[1] * c[1] + d[2] * c[2];
    if (std::fabs(s - std::round(s)) > 1e-3) return false;
  }
  return true;
}

std::vector<int> chain_of(const Lorsk_Work& w) {
  std::vector<int> c;
  for (int i = 1; i <= w.NG; ++i) c.push_back(w.IGB[i]);
  c.push_back(w.IGB[w.NG + 1]);
  return c;
}

TEST(GroupPreparation, LittleGroupAndChainAtManyVectors) {
  const float h = 0.5f;
  const float g = 0.137f;
  const std::vector<Vec3> ks = {{0, 0, 0},
                                {h, 0, 0},
                                {0, h, 0},
                                {0, 0, h},
                                {h, h, 0},
                                {h, h, h},
                                {1, 0, 0},
                                {1, 1, 1},
                                {0, 0, 1},
                                {h, 0, 1},
                                {1.0f / 3, 1.0f / 3, 0},
                                {1.0f / 3, 1.0f / 3, h},
                                {g, 0, 0},
                                {0, 0, g},
                                {g, g, 0},
                                {g, g, g},
                                {g, h, 0},
                                {h, h, g},
                                {0.113f, 0.271f, 0.389f}};
  int failures = 0;
  for (int n = 1; n <= 230 && failures < 5; ++n) {
    for (const Vec3& k : ks) {
      const Prepared p = prepare(std::to_string(n), k);
      const std::string where = "group " + std::to_string(n) + " k " + std::to_string(k[0]) + " " +
                                std::to_string(k[1]) + " " + std::to_string(k[2]);
      SCOPED_TRACE(where);
      ASSERT_EQ(p.status, status_done);
      const Lorsk_Work& w = p.w;
      // The little group holds exactly the operators of the space group that keep k.
      int keep = 0;
      for (int m = 1; m <= w.order; ++m) keep += keeps_k(p.spg, w.SUP[m], k) ? 1 : 0;
      EXPECT_EQ(w.N, keep);
      EXPECT_TRUE(p.chain_ok);
      for (int s = 1; s <= w.N; ++s) {
        EXPECT_NE(slot_with_rotation(w.SUP, w.order, w.SUB[s]), 0);
        EXPECT_TRUE(keeps_k(p.spg, w.SUB[s], k));
      }
      EXPECT_TRUE(closed_group(p.spg, w.SUB, w.N));
      // The chain: each subgroup closed, normal and of index 2 or 3 in the next, with the
      // cosets g^m H at slots j + m h.
      if (w.ONGB == 0) {
        EXPECT_EQ(w.N, 1);
        continue;
      }
      for (int s = 1; s <= w.NG; ++s) {
        const int hsize = w.IGB[s + 1] - 1;
        const int next = s == w.NG ? w.N : w.IGB[s + 2] - 1;
        ASSERT_GT(hsize, 0);
        const int p_index = next / hsize;
        EXPECT_EQ(next % hsize, 0);
        EXPECT_TRUE(p_index == 2 || p_index == 3) << "index " << p_index;
        EXPECT_TRUE(closed_group(p.spg, w.SUB, hsize));
        const Exact_Op& gen = w.SUB[hsize + 1];
        Exact_Op power = gen;
        for (int m = 1; m < p_index; ++m) {
          for (int j = 1; j <= hsize; ++j) {
            EXPECT_EQ(w.SUB[j + m * hsize].rot, (power * w.SUB[j]).rot);
          }
          power = gen * power;
        }
        EXPECT_NE(slot_with_rotation(w.SUB, hsize, power), 0) << "g^p outside H";
        // Normal: g^-1 h g has its rotation in H; the rotation of g inverse is g^(p-1).
        for (int j = 1; j <= hsize; ++j) {
          Exact_Op conj = w.SUB[j] * gen;
          for (int m = 1; m < p_index; ++m) conj = gen * conj;
          EXPECT_NE(slot_with_rotation(w.SUB, hsize, conj), 0);
        }
      }
      if (::testing::Test::HasFailure()) ++failures;
    }
  }
}

TEST(GroupPreparation, ChainsOfTheHighestGroups) {
  // P m -3 m at k = 0: indices 2, 2, 3, 2, 2.
  const Prepared cubic = prepare("221", {0, 0, 0});
  ASSERT_EQ(cubic.status, status_done);
  EXPECT_EQ(cubic.w.N, 48);
  EXPECT_EQ(chain_of(cubic.w), (std::vector<int>{1, 2, 3, 5, 13, 25}));
  // P 6/m m m at k = 0: indices 2, 3, 2, 2.
  const Prepared hexagonal = prepare("191", {0, 0, 0});
  ASSERT_EQ(hexagonal.status, status_done);
  EXPECT_EQ(hexagonal.w.N, 24);
  EXPECT_EQ(chain_of(hexagonal.w), (std::vector<int>{1, 2, 3, 7, 13}));
}

TEST(GroupPreparation, RhombohedralLatticeTestByThree) {
  // R -3 on hexagonal axes: -k = k - (0,0,1) is no reciprocal lattice vector at (0,0,1/2),
  // so the inversion leaves; at (0,0,3/2), -k = k - (0,0,3) and it stays.
  const Prepared half = prepare("148", {0, 0, 0.5f});
  ASSERT_EQ(half.status, status_done);
  EXPECT_EQ(half.w.BL, "HR");
  EXPECT_EQ(half.w.N, 3);
  const Prepared three_halves = prepare("148", {0, 0, 1.5f});
  EXPECT_EQ(three_halves.w.N, 6);
}

}  // namespace
}  // namespace velmoria
