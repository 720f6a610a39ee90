// Singular value decomposition, rank, and the test of linear dependence of complex vectors.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <vector>

#include "support/linear_dependence.hpp"

namespace velmoria {
namespace {

std::vector<double> random_matrix(int m, int n, unsigned seed, double scale = 1.0) {
  std::mt19937 gen(seed);
  std::uniform_real_distribution<double> dist(-scale, scale);
  std::vector<double> a(static_cast<std::size_t>(m * n));
  for (double& x : a) x = dist(gen);
  return a;
}

// Checks a = U diag(w) V^T with w >= 0, V orthogonal and U with orthonormal columns (m >= n)
// or rows (m < n).  Returns the singular values, largest first.
std::vector<double> check_svd(const std::vector<double>& a, int m, int n) {
  SCOPED_TRACE(testing::Message() << m << " x " << n);
  std::vector<double> u = a, w(n), v(n * n);
  svdcmp_dp(u, m, n, w, v);
  EXPECT_FALSE(err_mathgen) << err_mathgen_mess;
  const double tol = 1.0e-12 * std::max({1, m, n});
  for (int i = 0; i < m; ++i)
    for (int j = 0; j < n; ++j) {
      double s = 0.0;
      for (int k = 0; k < n; ++k) s += u[i * n + k] * w[k] * v[j * n + k];
      EXPECT_NEAR(s, a[i * n + j], tol);
    }
  // Inner products of columns (stride n) or rows (stride 1) of a matrix with n columns.
  auto expect_orthonormal = [&](const std::vector<double>& x, int count, int length, bool cols) {
    for (int p = 0; p < count; ++p)
      for (int q = 0; q < count; ++q) {
        double s = 0.0;
        for (int k = 0; k < length; ++k)
          s += cols ? x[k * n + p] * x[k * n + q] : x[p * n + k] * x[q * n + k];
        EXPECT_NEAR(s, p == q ? 1.0 : 0.0, tol);
      }
  };
  expect_orthonormal(v, n, n, true);
  expect_orthonormal(u, std::min(m, n), std::max(m, n), m >= n);
  for (double x : w) EXPECT_GE(x, 0.0);
  std::sort(w.begin(), w.end(), std::greater<>());
  return w;
}

TEST(Svd, OrthonormalFactorsAndValuesKnownByHand) {
  check_svd(random_matrix(3, 5, 10, 1.0e-301), 3, 5);  // rotations of near-subnormal values
  const std::vector<double> wide = check_svd(random_matrix(3, 6, 3), 3, 6);
  EXPECT_GT(wide[2], 1.0e-3);
  EXPECT_LT(wide[3], 1.0e-12);  // six values, three of them zero
  // Bidiagonal with a zero inside the diagonal; its first two columns are equal.
  const std::vector<double> z = check_svd({1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 2, 1, 0, 0, 0, 3}, 4, 4);
  EXPECT_GT(z[2], 0.1);
  EXPECT_LT(z[3], 1.0e-14);
  // [[1,1],[0,1]]: A^T A has eigenvalues (3 +- sqrt 5)/2, so w = (sqrt 5 +- 1)/2.
  std::vector<double> w = check_svd({1, 1, 0, 1}, 2, 2);
  EXPECT_NEAR(w[0], (std::sqrt(5.0) + 1.0) / 2.0, 1e-14);
  EXPECT_NEAR(w[1], (std::sqrt(5.0) - 1.0) / 2.0, 1e-14);
  // Two equal singular values coupled by an element just above the norm's last digit: the
  // shift must not lose the difference, or the sweeps stall (a realified complex matrix has
  // every singular value twice).
  const double d = 89.596004681166576, e = 7.1054273576010019e-15;
  w = check_svd({d, e, 0, 0, d, 0, 0, 0, 124.342}, 3, 3);
  EXPECT_NEAR(w[0], 124.342, 1e-12);
  EXPECT_NEAR(w[1], d, 1e-12);
  EXPECT_NEAR(w[2], d, 1e-12);
}

using CVec = std::vector<Complex>;

bool dependent(const CVec& a, const CVec& b, int b_rows, int nb, int mb) {
  bool info = false;
  const int b_cols = static_cast<int>(b.size()) / b_rows;
  linear_dependentc(a, static_cast<int>(a.size()), b, b_rows, b_cols, nb, mb, info);
  EXPECT_FALSE(err_mathgen) << err_mathgen_mess;
  return info;
}

TEST(LinearDependence, ComplexCombinationsOfColumns) {
  // Two columns of four used rows, held with a fifth row that is not used.
  const CVec b = {{1, 2},  {0, -1}, {3, 0}, {0.5, 0.5}, {99, 99},
                  {-1, 0}, {2, 2},  {0, 1}, {1, -3},    {-99, 7}};
  CVec mix(4), conjugate(4);
  for (int i = 0; i < 4; ++i) {
    mix[i] = Complex(2, -1) * b[i] + Complex(0, 0.5) * b[5 + i];
    conjugate[i] = std::conj(b[i]);
  }
  EXPECT_TRUE(dependent(mix, b, 5, 4, 2));
  EXPECT_FALSE(dependent(conjugate, b, 5, 4, 2));  // a real, not a complex, combination
  // Dependent columns never reach full rank, whatever a is.
  const CVec twice = {{1, 1}, {0, 2}, {3, 0}, {2, 2}, {0, 4}, {6, 0}};
  EXPECT_TRUE(dependent({{0, 1}, {5, 0}, {0, 0}}, twice, 3, 3, 2));
}

// The growing span decides as the whole work matrix does: candidates that are independent,
// exact complex combinations of those kept, and combinations disturbed by amounts on both
// sides of the tolerance, in single precision as the basis functions are.
TEST(LinearDependence, GrowingSpanDecidesAsTheWholeMatrix) {
  std::mt19937 gen(7);
  std::uniform_real_distribution<float> dist(-1.0f, 1.0f);
  std::uniform_int_distribution<int> kind(0, 3);
  for (int n : {3, 6, 24}) {
    Growing_Span span(n);
    std::vector<Complex> kept;  // column by column
    for (int step = 0; step < 4 * n && span.size() < n; ++step) {
      std::vector<Complex> a(static_cast<std::size_t>(n));
      const int k = span.size() == 0 ? 0 : kind(gen);
      if (k == 0) {
        for (Complex& z : a) z = {dist(gen), dist(gen)};
      } else {
        const float eps = k == 1 ? 0.0f : (k == 2 ? 1.0e-7f : 1.0e-4f);
        for (int j = 0; j < span.size(); ++j) {
          const Complex c(dist(gen), dist(gen));
          for (int i = 0; i < n; ++i) a[i] += c * kept[static_cast<std::size_t>(j * n + i)];
        }
        for (Complex& z : a) z += Complex(eps * dist(gen), eps * dist(gen));
      }
      bool whole = true;
      linear_dependentc(a, n, kept, n, span.size(), n, span.size(), whole);
      const bool grown = span.dependent(a);
      ASSERT_EQ(grown, whole) << "n " << n << " step " << step;
      if (span.size() == 0 || !grown) {
        span.keep(a);
        kept.insert(kept.end(), a.begin(), a.end());
      }
    }
    EXPECT_EQ(span.size(), n);
    EXPECT_TRUE(span.dependent(std::vector<Complex>(static_cast<std::size_t>(n), {1.0f, 0.0f})));
  }
}

}  // namespace
}  // namespace velmoria
