// Exact symmetry operators in 24ths of a cell edge and the integer matrix helpers.
#include "symmetry/exact_operator.hpp"

#include <cstdint>

namespace velmoria {

Mat3i negated(const Mat3i& m) {
  Mat3i r{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) r[i][j] = -m[i][j];
  }
  return r;
}

namespace {

// Sums of products in unsigned arithmetic: wraps where signed arithmetic would overflow.
int wrapped_dot(const Vec3i& row, int c0, int c1, int c2) {
  std::uint32_t s = 0;
  s += static_cast<std::uint32_t>(row[0]) * static_cast<std::uint32_t>(c0);
  s += static_cast<std::uint32_t>(row[1]) * static_cast<std::uint32_t>(c1);
  s += static_cast<std::uint32_t>(row[2]) * static_cast<std::uint32_t>(c2);
  return static_cast<int>(s);
}

int wrapped_sum(int a, int b) {
  return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

}  // namespace

Mat3i mat_product(const Mat3i& a, const Mat3i& b) {
  Mat3i m{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) m[i][j] = wrapped_dot(a[i], b[0][j], b[1][j], b[2][j]);
  }
  return m;
}

Vec3i mat_vec(const Mat3i& a, const Vec3i& v) {
  return {wrapped_dot(a[0], v[0], v[1], v[2]), wrapped_dot(a[1], v[0], v[1], v[2]),
          wrapped_dot(a[2], v[0], v[1], v[2])};
}

bool is_zero(const Vec3i& v) {
  return v[0] == 0 && v[1] == 0 && v[2] == 0;
}

Exact_Op operator*(const Exact_Op& a, const Exact_Op& b) {
  Exact_Op c;
  c.rot = mat_product(a.rot, b.rot);
  c.tr = mat_vec(a.rot, b.tr);
  for (int i = 0; i < 3; ++i) c.tr[i] = wrapped_sum(c.tr[i], a.tr[i]);
  return c;
}

Exact_Op inverse(const Exact_Op& op) {
  const Mat3i& m = op.rot;
  const int det = determ_a_i(m);
  Exact_Op r;
  // The adjugate over the determinant; for a determinant of +1 or -1 that is the adjugate
  // times the determinant.
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      const int j1 = (j + 1) % 3;
      const int j2 = (j + 2) % 3;
      const int i1 = (i + 1) % 3;
      const int i2 = (i + 2) % 3;
      r.rot[i][j] = det * (m[j1][i1] * m[j2][i2] - m[j1][i2] * m[j2][i1]);
    }
  }
  const Vec3i rt = mat_vec(r.rot, op.tr);
  r.tr = {-rt[0], -rt[1], -rt[2]};
  return r;
}

int mod_cell(int x) {
  const int m = x % op_den;
  return m < 0 ? m + op_den : m;
}

Vec3i reduced(const Vec3i& t) {
  return {mod_cell(t[0]), mod_cell(t[1]), mod_cell(t[2])};
}

Exact_Op reduced(const Exact_Op& op) {
  return {op.rot, reduced(op.tr)};
}

Vec3i twelfths_of(const Vec3& t) {
  constexpr int per_twelfth = op_den / 12;
  return {per_twelfth * nint(12.0f * t[0]), per_twelfth * nint(12.0f * t[1]),
          per_twelfth * nint(12.0f * t[2])};
}

Vec3 to_real(const Vec3i& t) {
  constexpr auto den = static_cast<float>(op_den);
  return {static_cast<float>(t[0]) / den, static_cast<float>(t[1]) / den,
          static_cast<float>(t[2]) / den};
}

Sym_Oper_Type to_symop(const Exact_Op& op) {
  return {op.rot, to_real(op.tr)};
}

Vec3i in_24ths(const Vec3& t) {
  constexpr auto den = static_cast<float>(op_den);
  return {nint(den * t[0]), nint(den * t[1]), nint(den * t[2])};
}

Exact_Op to_exact(const Sym_Oper_Type& op) {
  return {op.rot, in_24ths(op.tr)};
}

}  // namespace velmoria
