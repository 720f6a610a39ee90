// Linear dependence of complex vectors, rank by singular values, and the singular value
// decomposition beneath them.
#pragma once

#include <complex>
#include <span>
#include <vector>

#include "support/numeric.hpp"

namespace velmoria {

// Complex vectors are single precision; the work is double precision.
using Complex = std::complex<float>;

// Whether vector a (its first na components) depends linearly on the first mb columns (each of
// nb used rows) of matrix b.  b is held column by column: column j (0-based) starts at
// b[j * b_rows]; b_cols columns are held.  info: true when dependent (also on any failure).
// Sets err_mathgen / err_mathgen_mess on failure.
void linear_dependentc(std::span<const Complex> a, int na, std::span<const Complex> b, int b_rows,
                       int b_cols, int nb, int mb, bool& info);

// The test of linear_dependentc for complex vectors of n components against a set of columns
// that only grows, as the basis functions of a representation grow one by one.  The real
// columns of the vectors kept are held reduced to triangular form by Householder reflections,
// so that a candidate costs the reduction of its own two real columns and the singular values
// of a small triangular matrix.  Orthogonal reductions keep the singular values: the rank, and
// with it every decision, is that of the whole work matrix of linear_dependentc.
class Growing_Span {
 public:
  explicit Growing_Span(int n);
  // Whether a (n components) depends on the vectors kept; sets err_mathgen as
  // linear_dependentc does, and a failure reads as dependent.
  bool dependent(std::span<const Complex> a);
  // Keeps a as one more vector of the span.
  void keep(std::span<const Complex> a);
  int size() const { return kept_; }

 private:
  // Reduces the two real columns of a by the reflections held, and makes the two reflections
  // of its own; the columns of R that a adds go to r_new_.
  void reduce(std::span<const Complex> a);

  std::size_t rows_;                                    // 2 n
  int kept_ = 0;                                        // vectors kept
  std::vector<std::vector<double>> house_;              // reflection vectors, one per real column
  std::vector<std::vector<double>> r_;                  // columns of the triangular factor
  std::vector<std::vector<double>> house_new_, r_new_;  // those of the last vector reduced
};

// Number of singular values of the m x n real matrix a (row-major) strictly above tol;
// 0 when the decomposition fails.
int rank_dp(std::span<const double> a, int m, int n, double tol);

// Golub-Reinsch SVD: a (m x n, row-major) is replaced by U; w gets n singular values (not
// sorted); v (n x n, row-major) so that a = U diag(w) V^T.  The caller sizes w to n and v to
// n * n, and a holds exactly m * n values.  Dimension mismatch or no convergence: err_mathgen
// set with its message.
void svdcmp_dp(std::vector<double>& a, int m, int n, std::vector<double>& w,
               std::vector<double>& v);

// sqrt(a^2 + b^2) without needless overflow or underflow.
double pythag_dp(double a, double b);

}  // namespace velmoria
