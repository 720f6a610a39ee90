// Linear dependence of complex vectors, rank by singular values, and the singular value
// decomposition beneath them.
#include "support/linear_dependence.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace velmoria {

namespace {

using std::size_t;

// The smallest normal double: at or below it a Householder column or row counts as zero.
constexpr double smallest_normal = 2.2250738585072014e-308;
// Implicit QR sweeps allowed for each singular value.
constexpr int max_sweeps = 500;
// Singular values above this count towards the rank in the test of dependence.
constexpr double dependence_tolerance = 1.0e-6;

// A plane rotation with c x + s y = r and -s x + c y = 0.
struct Rotation {
  double c = 1.0;
  double s = 0.0;
  double r = 0.0;
};

// c and s come from the ratio of the smaller to the larger of |x|, |y|, not from r, so that
// c^2 + s^2 = 1 holds to rounding even when x and y are subnormal.
Rotation rotation_for(double x, double y) {
  // A value that is not finite spreads into the rotation, so that it can never converge.
  if (!std::isfinite(x) || !std::isfinite(y)) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    return {nan, nan, nan};
  }
  const double ax = std::abs(x);
  const double ay = std::abs(y);
  if (ax == 0.0 && ay == 0.0) return {1.0, 0.0, 0.0};
  if (ay <= ax) {
    const double t = y / x;
    const double q = std::sqrt(1.0 + t * t);
    const double c = std::copysign(1.0 / q, x);
    return {c, c * t, ax * q};
  }
  const double t = x / y;
  const double q = std::sqrt(1.0 + t * t);
  const double s = std::copysign(1.0 / q, y);
  return {s * t, s, ay * q};
}

// Columns p and q of a row-major matrix become c p + s q and -s p + c q.
void rotate_columns(std::vector<double>& x, size_t rows, size_t cols, size_t p, size_t q,
                    const Rotation& g) {
  for (size_t i = 0; i < rows; ++i) {
    double& xp = x[i * cols + p];
    double& xq = x[i * cols + q];
    const double old_p = xp;
    xp = g.c * old_p + g.s * xq;
    xq = -g.s * old_p + g.c * xq;
  }
}

// The work of one decomposition: the m x n matrix, its bidiagonal form (d on the diagonal,
// e[i] above the diagonal in column i, e[0] = 0) and the scalars of the Householder
// reflections, 0 where a column or row counted as zero.  Without vectors U and V are not
// formed: the rotations of the bidiagonal never read them, so the values are the same.
struct Bidiagonal {
  std::vector<double>& a;
  size_t m;
  size_t n;
  std::vector<double>& d;
  std::vector<double>& v;
  std::vector<double> e;
  std::vector<double> h_left;
  std::vector<double> h_right;
  std::vector<double> work;
  bool vectors = true;
  double norm = 0.0;

  double& at(size_t i, size_t j) { return a[i * n + j]; }
  double& v_at(size_t i, size_t j) { return v[i * n + j]; }
  // A bidiagonal element is zero when it does not change the norm.
  bool negligible(double x) const { return std::abs(x) + norm == norm; }
};

// Reflection of column i, rows i..m-1, onto its first element; applied to the columns to the
// right.  The Householder vector stays in the column, below and on the diagonal.
void reflect_column(Bidiagonal& b, size_t i) {
  double scale = 0.0;
  for (size_t k = i; k < b.m; ++k) scale += std::abs(b.at(k, i));
  if (scale <= smallest_normal) return;
  double s = 0.0;
  for (size_t k = i; k < b.m; ++k) {
    b.at(k, i) /= scale;
    s += b.at(k, i) * b.at(k, i);
  }
  const double f = b.at(i, i);
  const double g = -std::copysign(std::sqrt(s), f);
  const double h = f * g - s;  // minus half the squared length of the vector
  b.at(i, i) = f - g;
  // Each column j to the right gets (u.x / h) u added; rows run outermost for row-major storage.
  std::fill(b.work.begin() + static_cast<std::ptrdiff_t>(i) + 1, b.work.end(), 0.0);
  for (size_t k = i; k < b.m; ++k) {
    const double uk = b.at(k, i);
    for (size_t j = i + 1; j < b.n; ++j) b.work[j] += uk * b.at(k, j);
  }
  for (size_t j = i + 1; j < b.n; ++j) b.work[j] /= h;
  for (size_t k = i; k < b.m; ++k) {
    const double uk = b.at(k, i);
    for (size_t j = i + 1; j < b.n; ++j) b.at(k, j) += b.work[j] * uk;
  }
  b.d[i] = scale * g;
  b.h_left[i] = h;
}

// Reflection of row i, columns i+1..n-1, onto its first element; applied to the rows below.
// The Householder vector stays in the row, right of the diagonal.
void reflect_row(Bidiagonal& b, size_t i) {
  double scale = 0.0;
  for (size_t j = i + 1; j < b.n; ++j) scale += std::abs(b.at(i, j));
  if (scale <= smallest_normal) return;
  double s = 0.0;
  for (size_t j = i + 1; j < b.n; ++j) {
    b.at(i, j) /= scale;
    s += b.at(i, j) * b.at(i, j);
  }
  const double f = b.at(i, i + 1);
  const double g = -std::copysign(std::sqrt(s), f);
  const double h = f * g - s;
  b.at(i, i + 1) = f - g;
  for (size_t k = i + 1; k < b.m; ++k) {
    double dot = 0.0;
    for (size_t j = i + 1; j < b.n; ++j) dot += b.at(k, j) * b.at(i, j);
    const double t = dot / h;
    for (size_t j = i + 1; j < b.n; ++j) b.at(k, j) += t * b.at(i, j);
  }
  b.e[i + 1] = scale * g;
  b.h_right[i] = h;
}

// V = R_0 R_1 ... from the row reflections, applied last to first onto the identity; each
// touches only the rows and columns after its own index.
void accumulate_right(Bidiagonal& b) {
  std::fill(b.v.begin(), b.v.end(), 0.0);
  for (size_t i = 0; i < b.n; ++i) b.v_at(i, i) = 1.0;
  for (size_t i = b.n; i-- > 0;) {
    const double h = b.h_right[i];
    if (h == 0.0) continue;
    std::fill(b.work.begin() + static_cast<std::ptrdiff_t>(i) + 1, b.work.end(), 0.0);
    for (size_t r = i + 1; r < b.n; ++r) {
      const double ur = b.at(i, r);
      for (size_t j = i + 1; j < b.n; ++j) b.work[j] += ur * b.v_at(r, j);
    }
    for (size_t j = i + 1; j < b.n; ++j) b.work[j] /= h;
    for (size_t r = i + 1; r < b.n; ++r) {
      const double ur = b.at(i, r);
      for (size_t j = i + 1; j < b.n; ++j) b.v_at(r, j) += b.work[j] * ur;
    }
  }
}

// U = H_0 H_1 ... from the column reflections, applied last to first onto the first n columns
// of the identity, in place of a.  Overwrites the row vectors: run after accumulate_right.
void accumulate_left(Bidiagonal& b) {
  const size_t p = std::min(b.m, b.n);
  // Columns beyond the row count belong to no reflection: they stay zero.
  for (size_t k = 0; k < b.m; ++k) {
    for (size_t j = p; j < b.n; ++j) b.at(k, j) = 0.0;
  }
  for (size_t i = p; i-- > 0;) {
    for (size_t j = i + 1; j < b.n; ++j) b.at(i, j) = 0.0;
    const double h = b.h_left[i];
    if (h == 0.0) {
      for (size_t k = i; k < b.m; ++k) b.at(k, i) = 0.0;
      b.at(i, i) = 1.0;
      continue;
    }
    std::fill(b.work.begin() + static_cast<std::ptrdiff_t>(i) + 1, b.work.end(), 0.0);
    for (size_t k = i + 1; k < b.m; ++k) {
      const double uk = b.at(k, i);
      for (size_t j = i + 1; j < p; ++j) b.work[j] += uk * b.at(k, j);
    }
    for (size_t j = i + 1; j < p; ++j) b.work[j] /= h;
    for (size_t k = i; k < b.m; ++k) {
      const double uk = b.at(k, i);
      for (size_t j = i + 1; j < p; ++j) b.at(k, j) += b.work[j] * uk;
    }
    // The reflection applied to the unit vector of its own column.
    const double ui = b.at(i, i);
    const double t = ui / h;
    for (size_t k = i + 1; k < b.m; ++k) b.at(k, i) *= t;
    b.at(i, i) = 1.0 + ui * t;
  }
}

// d[l-1] counts as zero: the element e[l] beside it is chased along row l-1 to the right by
// rotations of row l-1 with rows l, l+1, ..., until it is negligible.
void cancel_superdiagonal(Bidiagonal& b, size_t l, size_t k) {
  double f = b.e[l];
  b.e[l] = 0.0;
  for (size_t i = l; i <= k; ++i) {
    if (b.negligible(f)) break;
    const Rotation g = rotation_for(b.d[i], f);
    b.d[i] = g.r;
    if (i < k) {
      f = -g.s * b.e[i + 1];
      b.e[i + 1] *= g.c;
    }
    if (b.vectors) rotate_columns(b.a, b.m, b.n, i, l - 1, g);
  }
}

// The block of rows and columns l, l+1 diagonalised at once: the rotation that makes the columns
// of [[d_l, e_l+1], [0, d_l+1]] orthogonal (a Jacobi rotation of its Gram matrix), and the one
// that turns the first column onto the first axis.  Sweeps on such a block can stall when the
// two singular values agree to the last digits: each sweep then leaves rounding noise of the
// size of the last digit in e_l+1, which the norm test never counts as zero.
void solve_two_by_two(Bidiagonal& b, size_t l) {
  const double f = b.d[l], g = b.e[l + 1], h = b.d[l + 1];
  const double p = f * f, q = f * g, r = g * g + h * h;
  Rotation right;  // columns l, l+1 become c l - s' l+1 and s' l + c l+1, s' = -s
  if (q != 0.0) {
    const double tau = (r - p) / (2.0 * q);
    const double t = std::copysign(1.0, tau) / (std::abs(tau) + pythag_dp(tau, 1.0));
    const double cj = 1.0 / pythag_dp(t, 1.0);
    right = {cj, -t * cj, 0.0};
  }
  const double sj = -right.s;
  const double c1x = f * right.c - g * sj, c1y = -h * sj;  // B times the first new column
  const double c2x = f * sj + g * right.c, c2y = h * right.c;
  // The left rotation follows the longer column: the shorter one may be rounding noise.
  Rotation left = rotation_for(c1x, c1y);
  if (pythag_dp(c2x, c2y) > left.r) {
    const Rotation second = rotation_for(c2x, c2y);
    left = {second.s, -second.c, 0.0};
  }
  b.d[l] = left.c * c1x + left.s * c1y;
  b.d[l + 1] = -left.s * c2x + left.c * c2y;
  b.e[l + 1] = 0.0;
  if (b.vectors) {
    rotate_columns(b.v, b.n, b.n, l, l + 1, right);
    rotate_columns(b.a, b.m, b.n, l, l + 1, left);
  }
}

// One implicit QR step on the block l..k (e[l] negligible, k > l), with the shift that the
// trailing 2 x 2 block of B^T B gives: the eigenvalue nearer its last diagonal element.
void qr_sweep(Bidiagonal& b, size_t l, size_t k) {
  // The first rotation is that of (d_l^2 - shift, d_l e_l+1), divided by d_l.  It is formed
  // from differences of the diagonal elements, not as d_l^2 - shift, so that nearly equal
  // singular values keep the digits that tell them apart; and on values scaled to at most 1,
  // since only its direction matters.
  const double e_prev = k - 1 > l ? b.e[k - 1] : 0.0;
  const double scale = std::max({std::abs(b.d[l]), std::abs(b.e[l + 1]), std::abs(b.d[k - 1]),
                                 std::abs(e_prev), std::abs(b.d[k]), std::abs(b.e[k])});
  const double x = b.d[l] / scale;
  const double y = b.d[k - 1] / scale;
  const double z = b.d[k] / scale;
  const double g = e_prev / scale;
  const double h = b.e[k] / scale;
  double f = ((y - z) * (y + z) + (g - h) * (g + h)) / (2.0 * h * y);
  const double root = pythag_dp(f, 1.0);
  f = ((x - z) * (x + z) + h * (y / (f + std::copysign(root, f)) - h)) / x;
  const double first = b.e[l + 1] / scale;

  double bulge = 0.0;  // element at (i-1, i+1) left by the previous row rotation
  for (size_t i = l; i < k; ++i) {
    // Rotation of columns i, i+1: the first one starts the step, the others push the bulge
    // of row i-1 back onto the bidiagonal.
    Rotation rot;
    if (i == l) {
      rot = rotation_for(f, first);
    } else {
      rot = rotation_for(b.e[i], bulge);
      b.e[i] = rot.r;
    }
    const double dii = rot.c * b.d[i] + rot.s * b.e[i + 1];
    const double eii = -rot.s * b.d[i] + rot.c * b.e[i + 1];
    const double below = rot.s * b.d[i + 1];  // new element at (i+1, i)
    const double dnext = rot.c * b.d[i + 1];
    if (b.vectors) rotate_columns(b.v, b.n, b.n, i, i + 1, rot);

    // Rotation of rows i, i+1 that removes the element below the diagonal.
    rot = rotation_for(dii, below);
    b.d[i] = rot.r;
    b.e[i + 1] = rot.c * eii + rot.s * dnext;
    b.d[i + 1] = -rot.s * eii + rot.c * dnext;
    if (i + 1 < k) {
      bulge = rot.s * b.e[i + 2];
      b.e[i + 2] *= rot.c;
    }
    if (b.vectors) rotate_columns(b.a, b.m, b.n, i, i + 1, rot);
  }
  b.e[l] = 0.0;
}

// The Golub-Reinsch decomposition; without vectors only the singular values are worked out.
// False, with err_mathgen raised, when it fails.
bool decompose(std::vector<double>& a, int m, int n, std::vector<double>& w, std::vector<double>& v,
               bool vectors) {
  if (m < 0 || n < 0 || a.size() != static_cast<size_t>(m) * static_cast<size_t>(n) ||
      w.size() != static_cast<size_t>(n) ||
      v.size() != static_cast<size_t>(n) * static_cast<size_t>(n)) {
    set_err_mathgen(" => Physical dimensions of arguments in SVDcmp_dp are not compatible ");
    return false;
  }
  const auto rows = static_cast<size_t>(m);
  const auto cols = static_cast<size_t>(n);
  std::fill(w.begin(), w.end(), 0.0);
  Bidiagonal b{a,
               rows,
               cols,
               w,
               v,
               std::vector<double>(cols, 0.0),
               std::vector<double>(cols, 0.0),
               std::vector<double>(cols, 0.0),
               std::vector<double>(cols, 0.0),
               vectors};

  // Householder reduction to upper bidiagonal form.
  for (size_t i = 0; i < cols && i < rows; ++i) {
    reflect_column(b, i);
    if (i + 1 < cols) reflect_row(b, i);
  }
  for (size_t i = 0; i < cols; ++i) b.norm = std::max(b.norm, std::abs(b.d[i]) + std::abs(b.e[i]));
  if (vectors) {
    accumulate_right(b);
    accumulate_left(b);
  }

  // Diagonalisation, from the last singular value down.
  for (size_t k = cols; k-- > 0;) {
    for (int sweep = 0;; ++sweep) {
      // The block l..k: e[l] negligible, or d[l-1] negligible and e[l] to be cancelled.
      size_t l = k;
      bool cancel = false;
      while (l > 0) {
        if (b.negligible(b.e[l])) break;
        if (b.negligible(b.d[l - 1])) {
          cancel = true;
          break;
        }
        --l;
      }
      if (cancel) cancel_superdiagonal(b, l, k);
      if (l == k) {
        // Converged: a negative value turns positive with its column of V.
        if (b.d[k] < 0.0) {
          b.d[k] = -b.d[k];
          if (vectors) {
            for (size_t j = 0; j < cols; ++j) b.v_at(j, k) = -b.v_at(j, k);
          }
        }
        break;
      }
      if (sweep == max_sweeps) {
        set_err_mathgen(" => SVDcmp_dp: convergence not reached ! ");
        return false;
      }
      if (l + 1 == k) {
        solve_two_by_two(b, l);
      } else {
        qr_sweep(b, l, k);
      }
    }
  }
  return true;
}

}  // namespace

double pythag_dp(double a, double b) {
  const double x = std::abs(a);
  const double y = std::abs(b);
  if (y < x) {
    const double q = y / x;
    return x * std::sqrt(1.0 + q * q);
  }
  if (y >= smallest_normal) {
    const double q = x / y;
    return y * std::sqrt(1.0 + q * q);
  }
  return 0.0;
}

void svdcmp_dp(std::vector<double>& a, int m, int n, std::vector<double>& w,
               std::vector<double>& v) {
  const Mathgen_Scope mathgen_scope;
  decompose(a, m, n, w, v, true);
}

// Only the singular values are needed: U and V are not formed.
int rank_dp(std::span<const double> a, int m, int n, double tol) {
  std::vector<double> work(a.begin(), a.end());
  const size_t cols = n > 0 ? static_cast<size_t>(n) : 0;
  std::vector<double> w(cols);
  std::vector<double> v(cols * cols);
  const Mathgen_Scope mathgen_scope;
  if (!decompose(work, m, n, w, v, false)) return 0;
  return static_cast<int>(std::count_if(w.begin(), w.end(), [tol](double x) { return x > tol; }));
}

void linear_dependentc(std::span<const Complex> a, int na, std::span<const Complex> b, int b_rows,
                       int b_cols, int nb, int mb, bool& info) {
  const Mathgen_Scope mathgen_scope;
  info = true;
  if (na < 0 || nb < 0 || mb < 0 || b_rows < nb || b_cols < mb ||
      b.size() < static_cast<size_t>(b_rows) * static_cast<size_t>(b_cols) ||
      a.size() < static_cast<size_t>(na)) {
    set_err_mathgen(" Linear_DependentC: Error in dimension of input matrix or vector");
    return;
  }
  const auto rows_b = static_cast<size_t>(nb);
  const auto cols_b = static_cast<size_t>(mb);
  auto b_at = [&](size_t i, size_t j) { return b[j * static_cast<size_t>(b_rows) + i]; };

  if (na == mb) {
    // a as one more row of b.  nb + 1 rows of mb components are dependent when mb <= nb,
    // that is when 2 mb <= 2 nb + 1.
    if (2 * cols_b <= 2 * rows_b + 1) return;
    const size_t rows = 2 * rows_b + 2;
    const size_t cols = 2 * cols_b;
    std::vector<double> work(rows * cols, 0.0);
    // Each complex row x becomes the real rows of x and of i x: (Re x, Im x) and
    // (-Im x, Re x), real parts in columns 1..mb, imaginary parts in columns mb+1..2mb.
    auto put_row = [&](size_t r_re, size_t r_im, Complex x, size_t j) {
      work[r_re * cols + j] = x.real();
      work[r_re * cols + cols_b + j] = x.imag();
      work[r_im * cols + j] = -x.imag();
      work[r_im * cols + cols_b + j] = x.real();
    };
    for (size_t j = 0; j < cols_b; ++j) {
      for (size_t i = 0; i < rows_b; ++i) put_row(i, rows_b + i, b_at(i, j), j);
      put_row(2 * rows_b, 2 * rows_b + 1, a[j], j);
    }
    const int r =
        rank_dp(work, static_cast<int>(rows), static_cast<int>(cols), dependence_tolerance);
    if (static_cast<size_t>(r) == std::min(rows, cols)) info = false;
    return;
  }
  if (na != nb) {
    set_err_mathgen(" Linear_DependentC: input dimension of vector incompatible with matrix");
    return;
  }

  // a as one more column of b.  mb + 1 columns of nb components are dependent when nb <= mb,
  // that is when 2 nb <= 2 mb + 1.
  if (2 * rows_b <= 2 * cols_b + 1) return;
  // Each complex column x becomes the real columns of x and of i x:
  // rows 1..nb hold (Re x, -Im x), rows nb+1..2nb hold (Im x, Re x).
  const size_t rows = 2 * rows_b;
  const size_t cols = 2 * cols_b + 2;
  std::vector<double> work(rows * cols, 0.0);
  auto put_column = [&](size_t i, Complex x, size_t j_re, size_t j_im) {
    work[i * cols + j_re] = x.real();
    work[i * cols + j_im] = -x.imag();
    work[(i + rows_b) * cols + j_re] = x.imag();
    work[(i + rows_b) * cols + j_im] = x.real();
  };
  for (size_t i = 0; i < rows_b; ++i) {
    for (size_t j = 0; j < cols_b; ++j) put_column(i, b_at(i, j), j, cols_b + j);
    put_column(i, a[i], 2 * cols_b, 2 * cols_b + 1);
  }
  const int r = rank_dp(work, static_cast<int>(rows), static_cast<int>(cols), dependence_tolerance);
  if (static_cast<size_t>(r) == std::min(rows, cols)) info = false;
}

Growing_Span::Growing_Span(int n) : rows_(2 * static_cast<size_t>(std::max(n, 0))) {}

void Growing_Span::reduce(std::span<const Complex> a) {
  const size_t n = rows_ / 2;
  // The real columns of a and of i a, as in the work matrix of linear_dependentc.
  std::vector<double> c1(rows_), c2(rows_);
  for (size_t i = 0; i < n && i < a.size(); ++i) {
    c1[i] = a[i].real();
    c1[n + i] = a[i].imag();
    c2[i] = -a[i].imag();
    c2[n + i] = a[i].real();
  }
  // x minus (h.x) h: the reflection whose vector h, scaled to length sqrt 2, is zero above
  // row `start` (the reflection of real column j starts at row j).
  auto reflect = [&](const std::vector<double>& h, size_t start, std::vector<double>& x) {
    double hx = 0.0;
    for (size_t i = start; i < rows_; ++i) hx += h[i] * x[i];
    for (size_t i = start; i < rows_; ++i) x[i] -= hx * h[i];
  };
  for (size_t j = 0; j < house_.size(); ++j) {
    reflect(house_[j], j, c1);
    reflect(house_[j], j, c2);
  }
  // The reflection that zeroes x below its pivot p (none when it is zero there already).
  auto own_reflection = [&](std::vector<double>& x, size_t p) {
    std::vector<double> h(rows_, 0.0);
    double norm = 0.0;
    for (size_t i = p; i < rows_; ++i) norm = pythag_dp(norm, x[i]);
    if (norm > 0.0) {
      const double alpha = -std::copysign(norm, x[p]);
      double hh = 0.0;
      for (size_t i = p; i < rows_; ++i) {
        h[i] = i == p ? x[i] - alpha : x[i];
        hh += h[i] * h[i];
      }
      const double scale = std::sqrt(2.0 / hh);
      for (size_t i = p; i < rows_; ++i) h[i] *= scale;
      x[p] = alpha;
      for (size_t i = p + 1; i < rows_; ++i) x[i] = 0.0;
    }
    return h;
  };
  const size_t p = house_.size();
  house_new_.clear();
  r_new_.clear();
  if (p + 2 > rows_) return;
  house_new_.push_back(own_reflection(c1, p));
  reflect(house_new_[0], p, c2);
  house_new_.push_back(own_reflection(c2, p + 1));
  c1.resize(p + 2);
  c2.resize(p + 2);
  r_new_ = {std::move(c1), std::move(c2)};
}

bool Growing_Span::dependent(std::span<const Complex> a) {
  const Mathgen_Scope mathgen_scope;
  // kept_ + 1 vectors of n components depend on each other when n <= kept_.
  if (rows_ <= 2 * static_cast<size_t>(kept_) + 1) return true;
  reduce(a);
  const size_t k = house_.size() + 2;
  std::vector<double> r(k * k, 0.0);
  for (size_t j = 0; j < k; ++j) {
    const std::vector<double>& col = j + 2 < k ? r_[j] : r_new_[j + 2 - k];
    for (size_t i = 0; i < col.size(); ++i) r[i * k + j] = col[i];
  }
  const int rank = rank_dp(r, static_cast<int>(k), static_cast<int>(k), dependence_tolerance);
  return static_cast<size_t>(rank) != k;
}

void Growing_Span::keep(std::span<const Complex> a) {
  reduce(a);
  if (r_new_.empty()) return;
  for (size_t j = 0; j < 2; ++j) {
    house_.push_back(std::move(house_new_[j]));
    r_.push_back(std::move(r_new_[j]));
  }
  ++kept_;
}

}  // namespace velmoria
