// The reduction of homogeneous systems and the intertwining matrix of a self-conjugate
// representation, on systems and representations whose answers are known by hand.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

#include "lorsk/unitary.hpp"
#include "lorsk/work.hpp"
#include "lorsk/zak.hpp"

namespace velmoria {
namespace {

using Cd = std::complex<double>;
using Mat = std::vector<std::vector<Cd>>;

Unitary_System system_of(const Mat& a) {
  Unitary_System s;
  s.mm = static_cast<int>(a.size());
  s.nn = static_cast<int>(a[0].size());
  for (int i = 0; i < s.mm; ++i) {
    for (int j = 0; j < s.nn; ++j) s.A[i][j] = Cplx(a[i][j]);
  }
  return s;
}

// |A v| for null vector s of the reduction.
double residual(const Mat& a, const Null_Vectors& nv, int s) {
  double worst = 0.0;
  for (const auto& row : a) {
    Cd sum = 0.0;
    for (std::size_t j = 0; j < row.size(); ++j) sum += row[j] * Cd(nv.B[j][s - 1]);
    worst = std::max(worst, std::abs(sum));
  }
  return worst;
}

TEST(Unitary, GaussOnKnownSystems) {
  // Rank 2: the null space is spanned by (1,-2,1); the free column 3 holds -1.
  const Mat real = {{1, 2, 3}, {2, 4, 6}, {1, 1, 1}};
  Unitary_System s = system_of(real);
  gausz(s);
  EXPECT_EQ(s.K, 2);
  EXPECT_EQ(s.Q[0], 1);
  EXPECT_EQ(s.Q[1], 2);
  EXPECT_EQ(s.Z[2], 0);
  Null_Vectors nv = getout(s);
  ASSERT_EQ(nv.nfree, 1);
  EXPECT_EQ(nv.P[0], 3);
  EXPECT_NEAR(nv.B[0][0].real(), -1.0f, 1e-6);
  EXPECT_NEAR(nv.B[1][0].real(), 2.0f, 1e-6);
  EXPECT_NEAR(nv.B[2][0].real(), -1.0f, 1e-6);
  EXPECT_LT(residual(real, nv, 1), 1e-5);

  // Complex, rank 1: x + i y = 0, so with y = -1, x = i.
  const Cd i(0, 1);
  const Mat cplx = {{1.0, i}, {i, -1.0}};
  s = system_of(cplx);
  gausz(s);
  EXPECT_EQ(s.K, 1);
  nv = getout(s);
  ASSERT_EQ(nv.nfree, 1);
  EXPECT_NEAR(nv.B[0][0].real(), 0.0f, 1e-6);
  EXPECT_NEAR(nv.B[0][0].imag(), 1.0f, 1e-6);
  EXPECT_EQ(nv.B[1][0], Cplx(-1.0f, 0.0f));

  // Two free columns among four unknowns, more rows than columns; each null vector solves.
  const Mat wide = {{1, 1, 0, 0}, {0, 0, 1, -1}, {2, 2, 1, -1}, {0, 0, 2, -2}, {3, 3, 0, 0}};
  s = system_of(wide);
  gausz(s);
  EXPECT_EQ(s.K, 2);
  nv = getout(s);
  ASSERT_EQ(nv.nfree, 2);
  EXPECT_EQ(nv.P[0], 2);
  EXPECT_EQ(nv.P[1], 4);
  EXPECT_LT(residual(wide, nv, 1), 1e-5);
  EXPECT_LT(residual(wide, nv, 2), 1e-5);

  // Full rank and the zero matrix.
  s = system_of({{2, 1}, {1, 3}});
  gausz(s);
  EXPECT_EQ(getout(s).nfree, 0);
  s = system_of({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}});
  gausz(s);
  nv = getout(s);
  EXPECT_EQ(nv.nfree, 3);
  EXPECT_EQ(nv.P[2], 3);

  // An entry below the tolerance after scaling by its row counts as zero: no pivot.
  s = system_of({{1.0e-7, 1}, {0, 1}});
  gausz(s);
  EXPECT_EQ(s.K, 1);
  EXPECT_EQ(s.Q[0], 2);
}

// A representation put into the work arrays at level 1: D(slot) = matrix.
struct Rep_Data {
  Lorsk_Work w;
  Conj_Slots ICSB{};
  Conj_Phases EX{};
};

void put_matrix(Lorsk_Work& w, int slot, const Mat& m) {
  for (std::size_t a = 0; a < m.size(); ++a) {
    for (std::size_t b = 0; b < m.size(); ++b) {
      float r = 0.0f, phi = 0.0f;
      decmpl(Cplx(m[a][b]), r, phi);
      w.rep1(static_cast<int>(a) + 1, static_cast<int>(b) + 1, 1, slot, 1) = r;
      w.rep2(static_cast<int>(a) + 1, static_cast<int>(b) + 1, 1, slot, 1) = phi;
    }
  }
}

// Generators at slots 2.., their conjugates by g at the slots that follow them.
Rep_Data rep_data(const std::vector<Mat>& gens, const std::vector<Mat>& conjugates) {
  Rep_Data r;
  const int ng = static_cast<int>(gens.size());
  r.w.create_work(1 + 2 * ng);
  for (int n = 1; n <= ng; ++n) {
    r.w.IGB[n + 1] = 1 + n;
    r.ICSB[1][n] = 1 + ng + n;
    put_matrix(r.w, 1 + n, gens[n - 1]);
    put_matrix(r.w, 1 + ng + n, conjugates[n - 1]);
  }
  return r;
}

Mat matrix_u(const Unitary_Result& u, int d) {
  Mat m(d, std::vector<Cd>(d));
  for (int a = 0; a < d; ++a) {
    for (int b = 0; b < d; ++b) {
      m[a][b] = std::polar(double{u.U1[a][b]}, std::numbers::pi * u.U2[a][b] / 12.0);
    }
  }
  return m;
}

Mat mul(const Mat& x, const Mat& y) {
  const std::size_t d = x.size();
  Mat r(d, std::vector<Cd>(d));
  for (std::size_t a = 0; a < d; ++a) {
    for (std::size_t b = 0; b < d; ++b) {
      for (std::size_t q = 0; q < d; ++q) r[a][b] += x[a][q] * y[q][b];
    }
  }
  return r;
}

Mat adjoint(const Mat& x) {
  Mat r = x;
  for (std::size_t a = 0; a < x.size(); ++a) {
    for (std::size_t b = 0; b < x.size(); ++b) r[a][b] = std::conj(x[b][a]);
  }
  return r;
}

double distance(const Mat& x, const Mat& y) {
  double worst = 0.0;
  for (std::size_t a = 0; a < x.size(); ++a) {
    for (std::size_t b = 0; b < x.size(); ++b) worst = std::max(worst, std::abs(x[a][b] - y[a][b]));
  }
  return worst;
}

Mat unit(std::size_t d) {
  Mat r(d, std::vector<Cd>(d));
  for (std::size_t a = 0; a < d; ++a) r[a][a] = 1.0;
  return r;
}

// U is unitary and U^-1 D(h) U = D(g^-1 h g) on every generator.
void expect_intertwines(const Unitary_Result& u, const std::vector<Mat>& gens,
                        const std::vector<Mat>& conjugates) {
  const int d = static_cast<int>(gens[0].size());
  const Mat U = matrix_u(u, d);
  EXPECT_LT(distance(mul(adjoint(U), U), unit(d)), 1e-5);
  for (std::size_t n = 0; n < gens.size(); ++n) {
    EXPECT_LT(distance(mul(mul(adjoint(U), gens[n]), U), conjugates[n]), 1e-5) << "gen " << n;
  }
}

TEST(Unitary, TwoDimensionalRepresentationOfSixElements) {
  // E of 3m in the basis where the three-fold axis is diagonal, g exchanging r and r^2 and
  // keeping the mirror: U is a multiple of the exchange matrix; nn = 4, rank 3.
  const Cd w = std::polar(1.0, 2.0 * std::numbers::pi / 3.0);
  const Mat r = {{w, 0}, {0, w * w}};
  const Mat r2 = {{w * w, 0}, {0, w}};
  const Mat m = {{0, 1}, {1, 0}};
  Rep_Data data = rep_data({r, m}, {r2, m});
  init_err_lorsk();
  const Unitary_Result u = unitrn(data.w, 2, 2, 1, data.ICSB, 1, 2, data.EX);
  EXPECT_FALSE(err_lorsk);
  EXPECT_TRUE(u.ok);
  expect_intertwines(u, {r, m}, {r2, m});
  EXPECT_NEAR(u.U1[0][0], 0.0f, 1e-6);
  EXPECT_NEAR(u.U1[0][1], 1.0f, 1e-6);
  // U^2 is a multiple of the unit matrix: the reference element is (1,1), its phase that of
  // U(1,2) U(2,1).
  EXPECT_EQ(u.lm, 1);
  EXPECT_EQ(u.mm, 1);
  const float turn = std::fmod(std::fabs(u.phi - u.U2[0][1] - u.U2[1][0]), 24.0f);
  EXPECT_LT(std::min(turn, 24.0f - turn), 1e-4);
  // U^3 is a multiple of U itself: its first row starts with a zero, so the scan goes on to
  // column 2.
  const Unitary_Result u3 = unitrn(data.w, 2, 2, 1, data.ICSB, 1, 3, data.EX);
  EXPECT_EQ(u3.lm, 1);
  EXPECT_EQ(u3.mm, 2);
}

TEST(Unitary, ThreeDimensionalVectorRepresentation) {
  // The rotations of 23 acting on vectors, conjugated by the two-fold axis along [110]:
  // U is that rotation up to a factor.
  const Mat c2z = {{-1, 0, 0}, {0, -1, 0}, {0, 0, 1}};
  const Mat c2x = {{1, 0, 0}, {0, -1, 0}, {0, 0, -1}};
  const Mat c3 = {{0, 0, 1}, {1, 0, 0}, {0, 1, 0}};
  const Mat g = {{0, 1, 0}, {1, 0, 0}, {0, 0, -1}};
  std::vector<Mat> gens = {c2z, c2x, c3};
  std::vector<Mat> conj;
  for (const Mat& h : gens) conj.push_back(mul(mul(g, h), g));  // g^-1 = g
  Rep_Data data = rep_data(gens, conj);
  init_err_lorsk();
  const Unitary_Result u = unitrn(data.w, 3, 3, 1, data.ICSB, 1, 2, data.EX);
  EXPECT_FALSE(err_lorsk);
  EXPECT_TRUE(u.ok);
  expect_intertwines(u, gens, conj);
  for (int a = 0; a < 3; ++a) {
    for (int b = 0; b < 3; ++b) EXPECT_NEAR(u.U1[a][b], std::abs(g[a][b]), 1e-5);
  }
  EXPECT_EQ(u.lm, 1);
  EXPECT_EQ(u.mm, 1);

  // A conjugation phase enters the conjugate: with a half turn on the three-fold axis no U
  // relates the conjugate to D any more.
  data.EX[1][3] = 12.0f;
  init_err_lorsk();
  const Unitary_Result none = unitrn(data.w, 3, 3, 1, data.ICSB, 1, 2, data.EX);
  EXPECT_TRUE(err_lorsk);
  EXPECT_FALSE(none.ok);
  EXPECT_EQ(none.U1[2][2], 1.0f);  // the unit matrix stands in
}

}  // namespace
}  // namespace velmoria
