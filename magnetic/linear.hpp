// Small 3 x 3 linear algebra of the magnetic layer: real and integer matrices.
#pragma once

#include <cmath>

#include "magnetic/identify.hpp"

namespace velmoria::linear {

inline double norm(const Vec3d& v) {
  return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

// The product of two 3 x 3 matrices of reals (Mat3d) or integers (Mat3i).
template <typename Matrix>
Matrix mul(const Matrix& a, const Matrix& b) {
  Matrix c{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      for (int k = 0; k < 3; ++k) c[i][j] += a[i][k] * b[k][j];
  return c;
}

inline Vec3d times(const Mat3d& a, const Vec3d& x) {
  Vec3d y{};
  for (int i = 0; i < 3; ++i)
    for (int k = 0; k < 3; ++k) y[i] += a[i][k] * x[k];
  return y;
}

inline double det(const Mat3d& m) {
  return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) -
         m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
         m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
}

inline Mat3d to_double(const Mat3i& m) {
  Mat3d r{};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) r[i][j] = m[i][j];
  return r;
}

inline int idet(const Mat3i& m) {
  return static_cast<int>(std::lround(det(to_double(m))));
}

inline Mat3i negated(Mat3i r) {
  for (auto& row : r)
    for (int& x : row) x = -x;
  return r;
}

// The order n of a rotation (R^n = 1), 0 when above 6.
inline int order(const Mat3i& r) {
  const Mat3i one{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  Mat3i p = r;
  for (int n = 1; n <= 6; ++n) {
    if (p == one) return n;
    p = mul(p, r);
  }
  return 0;
}

}  // namespace velmoria::linear
