// The irreducible representations of the little group, checked by the theory of group
// representations rather than against lists: for every space group at a fixed list of
// propagation vectors, the matrices in the store multiply like the group (with the phase
// exp(2 pi i k.t) of the lattice translation between a product and the listed element), are
// unitary, have orthonormal characters (so they are irreducible and pairwise inequivalent),
// and the squares of their dimensions add up to the order of the little group (so none is
// missing).
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include "lorsk/group_preparation.hpp"
#include "lorsk/lorsk.hpp"
#include "lorsk/store.hpp"

namespace velmoria {
namespace {

using Cd = std::complex<double>;
constexpr double two_pi = 2.0 * std::numbers::pi;
constexpr double tolerance = 2.0e-3;

// The fixed list of vectors: the origin and every vector of components 0, 1/2 and 1; the
// points (1/3,1/3,0) and (1/3,1/3,1/2); seven lines with a generic parameter; one general
// vector.
std::vector<Vec3> sweep_vectors() {
  std::vector<Vec3> ks;
  const float values[3] = {0.0f, 0.5f, 1.0f};
  for (float a : values) {
    for (float b : values) {
      for (float c : values) ks.push_back({a, b, c});
    }
  }
  const float third = 1.0f / 3.0f;
  const float g = 0.137f;
  ks.push_back({third, third, 0.0f});
  ks.push_back({third, third, 0.5f});
  ks.push_back({g, 0, 0});
  ks.push_back({0, g, 0});
  ks.push_back({0, 0, g});
  ks.push_back({g, g, 0});
  ks.push_back({g, g, g});
  ks.push_back({g, 0.5f, 0});
  ks.push_back({0.5f, 0.5f, g});
  ks.push_back({0.113f, 0.271f, 0.389f});
  return ks;
}

// Matrix of representation nu for operator g, from the polar form of the store.
std::vector<Cd> matrix(const lorsk_proc& s, int nu, int g) {
  const int d = s.idim[nu - 1];
  std::vector<Cd> m(static_cast<std::size_t>(d) * d);
  for (int a = 1; a <= d; ++a) {
    for (int b = 1; b <= d; ++b) {
      m[(a - 1) * d + (b - 1)] = std::polar(static_cast<double>(s.repr(a, b, nu, g)),
                                            two_pi * static_cast<double>(s.repi(a, b, nu, g)));
    }
  }
  return m;
}

std::array<int, 3> translation24(const lorsk_proc& s, int g) {
  std::array<int, 3> t{};
  for (int i = 0; i < 3; ++i) t[i] = static_cast<int>(std::lround(24.0f * s.t[g - 1][i]));
  return t;
}

std::string where(const std::string& group, const Vec3& k) {
  std::ostringstream os;
  os << "group " << group << " k = (" << k[0] << ", " << k[1] << ", " << k[2] << ")";
  return os.str();
}

// All checks on the store after one run of lorsk; the first failure is described.
::testing::AssertionResult representations_hold(const lorsk_proc& s, const Vec3& k) {
  const int n = s.ngk;
  const int nr = s.nreps;
  if (n < 1 || nr < 1) return ::testing::AssertionFailure() << "empty store";
  long squares = 0;
  for (int nu = 1; nu <= nr; ++nu) squares += static_cast<long>(s.idim[nu - 1]) * s.idim[nu - 1];
  if (squares != n) {
    return ::testing::AssertionFailure() << "sum of squares " << squares << " != ngk " << n;
  }
  // Product table of the operators: a b = (1|t) c.
  std::vector<int> prod(static_cast<std::size_t>(n) * n, 0);
  std::vector<Cd> phase(static_cast<std::size_t>(n) * n);
  for (int a = 1; a <= n; ++a) {
    const auto ta = translation24(s, a);
    for (int b = 1; b <= n; ++b) {
      const auto tb = translation24(s, b);
      Mat3i r{};
      std::array<int, 3> t{};
      for (int i = 0; i < 3; ++i) {
        t[i] = ta[i];
        for (int j = 0; j < 3; ++j) {
          t[i] += s.ir[a - 1][i][j] * tb[j];
          for (int l = 0; l < 3; ++l) r[i][j] += s.ir[a - 1][i][l] * s.ir[b - 1][l][j];
        }
      }
      int c = 0;
      for (int q = 1; q <= n && c == 0; ++q) {
        if (s.ir[q - 1] == r) c = q;
      }
      if (c == 0)
        return ::testing::AssertionFailure() << "product " << a << "*" << b << " not listed";
      const auto tc = translation24(s, c);
      double kt = 0.0;
      for (int i = 0; i < 3; ++i) kt += static_cast<double>(k[i]) * (t[i] - tc[i]) / 24.0;
      prod[(a - 1) * n + (b - 1)] = c;
      phase[(a - 1) * n + (b - 1)] = std::polar(1.0, two_pi * kt);
    }
  }
  std::vector<std::vector<Cd>> chars(nr, std::vector<Cd>(n));
  for (int nu = 1; nu <= nr; ++nu) {
    const int d = s.idim[nu - 1];
    std::vector<std::vector<Cd>> m(n);
    for (int g = 1; g <= n; ++g) m[g - 1] = matrix(s, nu, g);
    for (int g = 1; g <= n; ++g) {
      const auto& x = m[g - 1];
      Cd trace = 0.0;
      for (int a = 0; a < d; ++a) {
        trace += x[a * d + a];
        for (int b = 0; b < d; ++b) {
          // Unitary: X X^dagger = 1; the identity is the unit matrix.
          Cd e = 0.0;
          for (int l = 0; l < d; ++l) e += x[a * d + l] * std::conj(x[b * d + l]);
          if (std::abs(e - Cd(a == b ? 1.0 : 0.0)) > tolerance) {
            return ::testing::AssertionFailure() << "rep " << nu << " op " << g << " not unitary";
          }
          if (g == 1 && std::abs(x[a * d + b] - Cd(a == b ? 1.0 : 0.0)) > tolerance) {
            return ::testing::AssertionFailure() << "rep " << nu << " identity not unit";
          }
        }
      }
      chars[nu - 1][g - 1] = trace;
      const Cd stored =
          std::polar(static_cast<double>(s.chr(nu, g)), two_pi * static_cast<double>(s.chi(nu, g)));
      if (std::abs(stored - trace) > tolerance) {
        return ::testing::AssertionFailure() << "rep " << nu << " op " << g << " stored character "
                                             << stored << " != trace " << trace;
      }
    }
    // D(a) D(b) = exp(2 pi i k.t) D(c).
    for (int a = 1; a <= n; ++a) {
      for (int b = 1; b <= n; ++b) {
        const int c = prod[(a - 1) * n + (b - 1)];
        const Cd ph = phase[(a - 1) * n + (b - 1)];
        for (int i = 0; i < d; ++i) {
          for (int j = 0; j < d; ++j) {
            Cd e = 0.0;
            for (int l = 0; l < d; ++l) e += m[a - 1][i * d + l] * m[b - 1][l * d + j];
            if (std::abs(e - ph * m[c - 1][i * d + j]) > tolerance) {
              return ::testing::AssertionFailure() << "rep " << nu << " (dim " << d << "): D(" << a
                                                   << ") D(" << b << ") != phase D(" << c << ")";
            }
          }
        }
      }
    }
  }
  // Orthonormal characters: irreducible (norm 1) and pairwise inequivalent (orthogonal).
  for (int mu = 1; mu <= nr; ++mu) {
    for (int nu = 1; nu <= nr; ++nu) {
      Cd sum = 0.0;
      for (int g = 0; g < n; ++g) sum += std::conj(chars[mu - 1][g]) * chars[nu - 1][g];
      sum /= static_cast<double>(n);
      if (std::abs(sum - Cd(mu == nu ? 1.0 : 0.0)) > tolerance) {
        return ::testing::AssertionFailure()
               << "characters of " << mu << " and " << nu << " give " << sum;
      }
    }
  }
  return ::testing::AssertionSuccess();
}

struct Lorsk_Run {
  lorsk_proc store;
  std::string unit;
  int status = -1;
};

// As a run with an SPGR line of a tabulated group: the generators of the tables.
Lorsk_Run run_lorsk(const std::string& group, const Vec3& k, int listing = 0, int newk = 1) {
  Lorsk_Run r;
  r.status = lorsk(r.unit, k, newk, "KK", group, listing, false, &group, r.store);
  return r;
}

std::vector<int> dims(const lorsk_proc& s) {
  return s.idim;
}

TEST(LorskSweep, AllSpaceGroupsAtTheListOfVectors) {
  const std::vector<Vec3> ks = sweep_vectors();
  int passed = 0;
  int failed = 0;
  for (int number = 1; number <= 230; ++number) {
    const std::string group = std::to_string(number);
    for (const Vec3& k : ks) {
      const Lorsk_Run r = run_lorsk(group, k);
      ASSERT_EQ(r.status, status_done) << where(group, k);
      const auto result = representations_hold(r.store, k);
      if (result) {
        ++passed;
      } else {
        ++failed;
        ADD_FAILURE() << where(group, k) << ": " << result.message();
      }
    }
  }
  std::cout << "[ sweep ] " << passed << " (group, k) passed, " << failed << " failed\n";
  EXPECT_EQ(passed, 230 * static_cast<int>(ks.size()));
}

TEST(LorskSweep, FourFoldScrewVectorsWithPhasesOutsideTwentyFourths) {
  // Along the four-fold axis of the diamond-glide groups the conjugation phases are not whole
  // 24ths unless 12 c is whole: several values of c, and the same on the other two axes of
  // the cubic groups.
  const std::vector<int> groups = {109, 110, 141, 142, 227, 228, 230};
  const std::vector<float> cs = {0.01f, 0.1f, 0.2f, 0.3f, 0.37f, 0.45f, 0.6f, 0.7f, 0.9f};
  for (int number : groups) {
    for (float c : cs) {
      for (const Vec3& k : {Vec3{0, 0, c}, Vec3{c, 0, 0}, Vec3{0, c, 0}}) {
        const std::string group = std::to_string(number);
        const Lorsk_Run r = run_lorsk(group, k);
        ASSERT_EQ(r.status, status_done);
        EXPECT_TRUE(representations_hold(r.store, k)) << where(group, k);
      }
    }
  }
}

TEST(LorskSweep, HallRoadGivesTheSameMathematics) {
  // The group read as a forced Hall symbol has its operators in another order, and so another
  // chain; the representations must hold just the same.
  const std::vector<Vec3> ks = {
      {0, 0, 0}, {0.5f, 0.5f, 0.5f}, {0, 0, 0.137f}, {1, 1, 1}, {0.5f, 0, 0}};
  for (int number = 1; number <= 230; ++number) {
    const std::string group = std::to_string(number);
    for (const Vec3& k : ks) {
      lorsk_proc store;
      std::string unit;
      ASSERT_EQ(lorsk(unit, k, 1, "KK", group, 0, false, nullptr, store), status_done);
      EXPECT_TRUE(representations_hold(store, k)) << where(group, k) << " (Hall)";
    }
  }
}

TEST(LorskSweep, WorkedExamples) {
  EXPECT_EQ(dims(run_lorsk("221", {0, 0, 0}).store),
            (std::vector<int>{1, 1, 1, 1, 2, 2, 3, 3, 3, 3}));
  EXPECT_EQ(dims(run_lorsk("222", {0.5f, 0.5f, 0.5f}).store), (std::vector<int>{2, 2, 2, 6}));
  const Lorsk_Run hex = run_lorsk("194", {0, 0, 0.5f});
  EXPECT_EQ(hex.store.ngk, 24);
  EXPECT_EQ(dims(hex.store), (std::vector<int>{2, 2, 4}));
  const Lorsk_Run p4132 = run_lorsk("213", {0.5f, 0.5f, 0.5f});
  EXPECT_EQ(p4132.store.ngk, 24);
  EXPECT_EQ(dims(p4132.store), (std::vector<int>{4, 2, 2}));
  const Lorsk_Run ia3d = run_lorsk("230", {1, 1, 1});
  EXPECT_EQ(ia3d.store.ngk, 48);
  EXPECT_EQ(dims(ia3d.store), (std::vector<int>{2, 2, 2, 6}));
  // P 21/c at (0,0,1/2): the two one-dimensional representations of the subgroup form an
  // orbit and give one of dimension 2, with trace 0 on the coset.
  const Lorsk_Run p21c = run_lorsk("14", {0, 0, 0.5f});
  EXPECT_EQ(p21c.store.ngk, 4);
  ASSERT_EQ(dims(p21c.store), (std::vector<int>{2}));
  EXPECT_FLOAT_EQ(p21c.store.chr(1, 3), 0.0f);
  EXPECT_FLOAT_EQ(p21c.store.chr(1, 4), 0.0f);
}

TEST(LorskSweep, SmallGroupsByHand) {
  // P 1 at k = 0: one representation, the unit.
  const Lorsk_Run p1 = run_lorsk("1", {0, 0, 0});
  EXPECT_EQ(p1.store.ngk, 1);
  EXPECT_EQ(p1.store.nreps, 1);
  EXPECT_EQ(p1.store.idim[0], 1);
  EXPECT_FLOAT_EQ(p1.store.repr(1, 1, 1, 1), 1.0f);
  EXPECT_FLOAT_EQ(p1.store.repi(1, 1, 1, 1), 0.0f);
  EXPECT_EQ(p1.store.names[0], "SYMM_K( 1)");

  // P -1 at k = 0: characters 1, 1 and 1, -1 in this order.
  const Lorsk_Run pb1 = run_lorsk("2", {0, 0, 0});
  ASSERT_EQ(pb1.store.nreps, 2);
  EXPECT_FLOAT_EQ(pb1.store.chr(1, 2), 1.0f);
  EXPECT_NEAR(pb1.store.chi(1, 2), 0.0f, 1e-6f);
  EXPECT_FLOAT_EQ(pb1.store.chr(2, 2), 1.0f);
  EXPECT_NEAR(pb1.store.chi(2, 2), 0.5f, 1e-6f);

  // P 21 at (0,1/2,0): the square of the screw is the translation (0,1,0) with phase 1/2; the
  // two roots give the screw the phases 1/4 and 3/4 of a turn.
  const Lorsk_Run p21 = run_lorsk("4", {0, 0.5f, 0});
  ASSERT_EQ(p21.store.nreps, 2);
  EXPECT_NEAR(p21.store.repi(1, 1, 1, 2), 0.25f, 1e-5f);
  EXPECT_NEAR(p21.store.repi(1, 1, 2, 2), 0.75f, 1e-5f);
  EXPECT_NEAR(p21.store.t[1][1], 0.5f, 1e-6f);
  EXPECT_NEAR(p21.store.ph[1], 0.25f, 1e-6f);  // k.t of the screw, in turns

  // The name of operator 12 has no blank.
  const Lorsk_Run m3m = run_lorsk("221", {0, 0, 0});
  EXPECT_EQ(m3m.store.names[11], "SYMM_K(12)");
}

TEST(LorskSweep, FailuresOfTheGroupText) {
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
