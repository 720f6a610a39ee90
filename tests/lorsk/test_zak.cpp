// Zak's induction on small groups built here by hand: the representations must multiply like
// the group up to the phase of the lattice translation, have orthonormal characters and
// dimensions whose squares add up to the order.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "lorsk/work.hpp"
#include "lorsk/zak.hpp"

namespace velmoria {
namespace {

using Cd = std::complex<double>;

// Operator from its rotation (row by row) and translation in 24ths.
Exact_Op op(const std::array<int, 9>& r, const std::array<int, 3>& t24) {
  Exact_Op m{Mat3i{}, t24};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) m.rot[i][j] = r[3 * i + j];
  }
  return m;
}

int slot_of(const Lorsk_Work& w, int n, const Exact_Op& x) {
  for (int s = 1; s <= n; ++s) {
    if (w.SUB[s].rot == x.rot) return s;
  }
  return 0;
}

// The little group in chain order from its generators: each generator g adds the cosets
// g^m H at slots j + m h, each element the plain product g times the one of the coset before.
Lorsk_Work chain(const std::vector<Exact_Op>& gens, const Vec3& k) {
  Lorsk_Work w;
  w.k = k;
  w.SUB[1] = Exact_Op{};
  w.IGB[1] = 1;
  int n = 1;
  for (const Exact_Op& g : gens) {
    const int h = n;
    int p = 1;
    Exact_Op power = g;
    while (slot_of(w, h, power) == 0) {
      power = g * power;
      ++p;
    }
    w.IGB[w.NG + 2] = h + 1;
    for (int m = 1; m < p; ++m) {
      for (int j = 1; j <= h; ++j) w.SUB[j + m * h] = g * w.SUB[j + (m - 1) * h];
    }
    n = p * h;
    ++w.NG;
  }
  w.N = n;
  w.ONGB = w.NG;
  if (w.NG == 0) {
    w.IGB[2] = 1;
    w.NG = 1;
  }
  w.create_work(n);
  w.rep1(1, 1, 1, 1, 1) = 1.0f;
  return w;
}

Lorsk_Work run_zak(const std::vector<Exact_Op>& gens, const Vec3& k) {
  Lorsk_Work w = chain(gens, k);
  init_err_lorsk();
  zak(w);
  return w;
}

Cd element(const Lorsk_Work& w, int a, int b, int nu, int g) {
  return std::polar(static_cast<double>(w.rep1(a, b, nu, g, w.Z1)),
                    std::numbers::pi * w.rep2(a, b, nu, g, w.Z1) / 12.0);
}

Cd character(const Lorsk_Work& w, int nu, int g) {
  return std::polar(static_cast<double>(w.ch1(nu, g, w.Z1)),
                    std::numbers::pi * w.ch2(nu, g, w.Z1) / 12.0);
}

std::vector<int> dimensions(const Lorsk_Work& w) {
  std::vector<int> d;
  for (int nu = 1; nu <= w.NREP[w.Z1]; ++nu) d.push_back(w.drep(nu, w.Z1));
  return d;
}

// D(a) D(b) = exp(2 pi i k.t) D(c) with a b = (1|t) c; the stored traces are the traces;
// the characters are orthonormal over the group; the squares of the dimensions add up to N.
::testing::AssertionResult irreducible_set(const Lorsk_Work& w, double tol = 1.0e-3) {
  const int N = w.order;
  const int n = w.NREP[w.Z1];
  if (err_lorsk) return ::testing::AssertionFailure() << "error: " << err_lorsk_mess;
  int squares = 0;
  for (int nu = 1; nu <= n; ++nu) squares += w.drep(nu, w.Z1) * w.drep(nu, w.Z1);
  if (squares != N) return ::testing::AssertionFailure() << "squares " << squares << " != " << N;
  for (int nu = 1; nu <= n; ++nu) {
    const int d = w.drep(nu, w.Z1);
    for (int a = 1; a <= N; ++a) {
      Cd trace = 0.0;
      for (int r = 1; r <= d; ++r) trace += element(w, r, r, nu, a);
      if (std::abs(trace - character(w, nu, a)) > tol) {
        return ::testing::AssertionFailure() << "trace of " << nu << " at " << a;
      }
      for (int b = 1; b <= N; ++b) {
        const Exact_Op ab = w.SUB[a] * w.SUB[b];
        const int c = slot_of(w, N, ab);
        if (c == 0) return ::testing::AssertionFailure() << "product outside the group";
        double turns = 0.0;
        for (int i = 0; i < 3; ++i) turns += (ab.tr[i] - w.SUB[c].tr[i]) * double{w.k[i]} / 24.0;
        const Cd phase = std::polar(1.0, 2.0 * std::numbers::pi * turns);
        for (int r = 1; r <= d; ++r) {
          for (int s = 1; s <= d; ++s) {
            Cd x = 0.0;
            for (int q = 1; q <= d; ++q) x += element(w, r, q, nu, a) * element(w, q, s, nu, b);
            if (std::abs(x - phase * element(w, r, s, nu, c)) > tol) {
              return ::testing::AssertionFailure()
                     << "rep " << nu << ": D(" << a << ") D(" << b << ") != D(" << c << ")";
            }
          }
        }
      }
    }
  }
  for (int mu = 1; mu <= n; ++mu) {
    for (int nu = 1; nu <= n; ++nu) {
      Cd s = 0.0;
      for (int g = 1; g <= N; ++g) s += std::conj(character(w, mu, g)) * character(w, nu, g);
      s /= static_cast<double>(N);
      if (std::abs(s - (mu == nu ? 1.0 : 0.0)) > tol) {
        return ::testing::AssertionFailure() << "characters " << mu << ", " << nu << ": " << s;
      }
    }
  }
  return ::testing::AssertionSuccess();
}

// Rotations.
constexpr std::array<int, 9> E = {1, 0, 0, 0, 1, 0, 0, 0, 1};
constexpr std::array<int, 9> I = {-1, 0, 0, 0, -1, 0, 0, 0, -1};
constexpr std::array<int, 9> C2z = {-1, 0, 0, 0, -1, 0, 0, 0, 1};
constexpr std::array<int, 9> C2x = {1, 0, 0, 0, -1, 0, 0, 0, -1};
constexpr std::array<int, 9> C2y = {-1, 0, 0, 0, 1, 0, 0, 0, -1};
constexpr std::array<int, 9> C4z = {0, -1, 0, 1, 0, 0, 0, 0, 1};
constexpr std::array<int, 9> C3z = {0, -1, 0, 1, -1, 0, 0, 0, 1};  // hexagonal axes
constexpr std::array<int, 9> C3d = {0, 0, 1, 1, 0, 0, 0, 1, 0};    // three-fold along [111]
constexpr std::array<int, 9> C2xy = {0, 1, 0, 1, 0, 0, 0, 0, -1};  // two-fold along [110]
constexpr std::array<int, 9> Mx = {-1, 0, 0, 0, 1, 0, 0, 0, 1};
constexpr std::array<int, 9> My = {1, 0, 0, 0, -1, 0, 0, 0, 1};
constexpr std::array<int, 3> O = {0, 0, 0};

// Hand-worked cases: the generators of the chain, the vector, and the dimensions of the
// irreducible representations (sorted), which must form an irreducible set.
TEST(Zak, HandWorkedGroups) {
  struct Case {
    const char* name;
    std::vector<Exact_Op> gens;
    Vec3 k;
    std::vector<int> dims;
  };
  const Exact_Op s21z = op(C2z, {0, 0, 12});
  const std::vector<Exact_Op> i41md = {op(C2z, {12, 12, 12}), op(C4z, {0, 12, 6}), op(My, O)};
  const std::vector<Case> cases = {
      {"1", {}, {0, 0, 0}, {1}},
      {"-1", {op(I, O)}, {0, 0, 0}, {1, 1}},
      {"21 at the boundary", {s21z}, {0, 0, 0.5f}, {1, 1}},
      {"21 inside", {s21z}, {0, 0, 0.2f}, {1, 1}},
      {"61 at c = 0.137", {s21z, op(C3z, {0, 0, 8})}, {0, 0, 0.137f}, std::vector<int>(6, 1)},
      {"61 at c = 0.02", {s21z, op(C3z, {0, 0, 8})}, {0, 0, 0.02f}, std::vector<int>(6, 1)},
      {"61 at c = 0.49", {s21z, op(C3z, {0, 0, 8})}, {0, 0, 0.49f}, std::vector<int>(6, 1)},
      // The inversion carries the two representations of the screw axis into each other.
      {"P 21/c (0,0,1/2)", {op(C2y, {0, 12, 12}), op(I, O)}, {0, 0, 0.5f}, {2}},
      {"P 21/c k = 0", {op(C2y, {0, 12, 12}), op(I, O)}, {0, 0, 0}, {1, 1, 1, 1}},
      {"4", {op(C2z, O), op(C4z, O)}, {0, 0, 0}, {1, 1, 1, 1}},
      {"4mm", {op(C2z, O), op(C4z, O), op(Mx, O)}, {0, 0, 0}, {1, 1, 1, 1, 2}},
      {"P 42 b c (0,0,1/2)",
       {op(C2z, O), op(C4z, {0, 0, 12}), op(Mx, {12, 12, 0})},
       {0, 0, 0.5f},
       {}},
      {"mmm", {op(C2z, O), op(C2x, O), op(I, O)}, {0, 0, 0}, std::vector<int>(8, 1)},
      {"P 21 21 21 (1/2,0,0)", {op(C2z, {12, 0, 12}), op(C2x, {12, 12, 0})}, {0.5f, 0, 0}, {2}},
      {"P 21 21 21 k = 0", {op(C2z, {12, 0, 12}), op(C2x, {12, 12, 0})}, {0, 0, 0}, {1, 1, 1, 1}},
      // The three-dimensional representation of 23 extends through a non-diagonal U.
      {"432", {op(C2z, O), op(C2x, O), op(C3d, O), op(C2xy, O)}, {0, 0, 0}, {1, 1, 2, 3, 3}},
      {"m-3m",
       {op(C2z, O), op(C2x, O), op(C3d, O), op(C2xy, O), op(I, O)},
       {0, 0, 0},
       {1, 1, 1, 1, 2, 2, 3, 3, 3, 3}},
      // The mirror takes the 41 axis to an element that differs from the listed one by the
      // centring vector, of phase 12c: not whole for c = 0.12.
      {"I 41 m d c = 0.12", i41md, {0, 0, 0.12f}, {}},
      {"I 41 m d c = 0.25", i41md, {0, 0, 0.25f}, {}},
      {"I 41 m d c = 0.0417", i41md, {0, 0, 0.0417f}, {}},
      {"I 41 m d c = 0.5", i41md, {0, 0, 0.5f}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Lorsk_Work w = run_zak(c.gens, c.k);
    EXPECT_TRUE(irreducible_set(w));
    std::vector<int> dims = dimensions(w);
    std::sort(dims.begin(), dims.end());
    if (!c.dims.empty()) {
      EXPECT_EQ(dims, c.dims);
    }
  }
}

// Phases worked by hand: -1 has characters (1, 1) and (1, -1) in this order; 21 at the
// boundary has g^2 the cell translation along c (phase 12), roots 6 and 18; inside the zone
// k.t / 2 and that plus a half turn; the induced representation has trace 0 on the coset.
TEST(Zak, HandWorkedPhases) {
  const Lorsk_Work w = run_zak({op(I, O)}, {0, 0, 0});
  EXPECT_NEAR(w.ch2(1, 2, w.Z1), 0.0f, 1e-4);
  EXPECT_NEAR(w.ch2(2, 2, w.Z1), 12.0f, 1e-4);
  const Lorsk_Work b = run_zak({op(C2z, {0, 0, 12})}, {0, 0, 0.5f});
  EXPECT_NEAR(b.rep2(1, 1, 1, 2, b.Z1), 6.0f, 1e-4);
  EXPECT_NEAR(b.rep2(1, 1, 2, 2, b.Z1), 18.0f, 1e-4);
  const Lorsk_Work g = run_zak({op(C2z, {0, 0, 12})}, {0, 0, 0.2f});
  EXPECT_NEAR(g.rep2(1, 1, 1, 2, g.Z1), 2.4f, 1e-4);
  EXPECT_NEAR(g.rep2(1, 1, 2, 2, g.Z1), 14.4f, 1e-4);
  const Lorsk_Work p = run_zak({op(C2y, {0, 12, 12}), op(I, O)}, {0, 0, 0.5f});
  EXPECT_FLOAT_EQ(p.ch1(1, 3, p.Z1), 0.0f);
  EXPECT_FLOAT_EQ(p.ch2(1, 3, p.Z1), 0.0f);  // an exact zero has phase 0
}

TEST(Zak, DecmplPolarForm) {
  float r = -1.0f, phi = -1.0f;
  decmpl({0.0f, 0.0f}, r, phi);
  EXPECT_EQ(r, 0.0f);
  EXPECT_EQ(phi, 0.0f);
  decmpl({-2.0f, 0.0f}, r, phi);
  EXPECT_EQ(r, 2.0f);
  EXPECT_NEAR(phi, 12.0f, 1e-5);
  decmpl({0.0f, -1.0f}, r, phi);
  EXPECT_NEAR(phi, 18.0f, 1e-4);
  decmpl({0.0f, 1.0f}, r, phi);
  EXPECT_NEAR(phi, 6.0f, 1e-4);
  // A small negative phase with a modulus of 1 keeps its sign.
  const float a = -0.1f * 0.2617994f;
  decmpl({std::cos(a), std::sin(a)}, r, phi);
  EXPECT_NEAR(phi, 23.9f, 2e-3);
  // A small modulus and any phase.
  decmpl({0.01f * std::cos(3.0f), 0.01f * std::sin(3.0f)}, r, phi);
  EXPECT_NEAR(r, 0.01f, 1e-6);
  EXPECT_NEAR(phi, 3.0f / 0.2617994f, 2e-3);
  decmpl({0.01f * std::cos(-3.0f), 0.01f * std::sin(-3.0f)}, r, phi);
  EXPECT_NEAR(phi, 24.0f - 3.0f / 0.2617994f, 2e-3);
  // Noise below the real axis keeps a real positive number at phase 0, not 24.
  decmpl({1.0f, -1.0e-8f}, r, phi);
  EXPECT_EQ(phi, 0.0f);
  // A real number so small that its square is subnormal: the modulus comes out below it, and
  // the cosine is held to 1 (the inverse cosine would give no number).
  bool found = false;
  for (float x = 1.0e-22f; x < 1.0e-18f && !found; x *= 1.0137f) {
    if (x / std::sqrt(x * x) > 1.0f) {
      found = true;
      decmpl({x, 0.0f}, r, phi);
      EXPECT_EQ(phi, 0.0f);
      decmpl({-x, 0.0f}, r, phi);
      EXPECT_NEAR(phi, 12.0f, 1e-5);
    }
  }
  EXPECT_TRUE(found);
}

}  // namespace
}  // namespace velmoria
