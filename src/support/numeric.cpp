// Tolerances, integer tests, lattice reduction, determinants and traces.
#include "support/numeric.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace velmoria {

constinit thread_local float epss = 1.0e-5F;
constinit thread_local double ep_ss = 1.0e-12;
VELMORIA_ERROR_PAIR_DEFINITIONS(mathgen, std::string::npos)

namespace {

// 2^31: the first magnitude that a 32-bit integer cannot hold (exact in float and double).
constexpr double int32_limit = 2147483648.0;

template <class R>
int nint_clamped(R x) {
  if (std::isnan(x)) return 0;
  const R r = std::round(x);  // halves away from zero, exact
  if (static_cast<double>(r) >= int32_limit) return std::numeric_limits<int>::max();
  if (static_cast<double>(r) < -int32_limit) return std::numeric_limits<int>::min();
  return static_cast<int>(r);
}

// Integer arithmetic that wraps instead of overflowing: the same result as plain int
// arithmetic whenever that does not overflow, and no undefined behaviour when it does.
int wrap_mul(int a, int b) {
  return static_cast<int>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}
int wrap_add(int a, int b) {
  return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
int wrap_sub(int a, int b) {
  return static_cast<int>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

}  // namespace

void set_epsg_sp(float x) {
  epss = x;
}
void set_epsg_dp(double x) {
  ep_ss = x;
}
void set_epsg_default() {
  epss = 1.0e-5F;
}
float epss_val() {
  return epss;
}
double ep_ss_val() {
  return ep_ss;
}

std::optional<std::string> take_err_mathgen() {
  if (!err_mathgen) return std::nullopt;
  std::optional<std::string> mess = err_mathgen_mess;
  clear_error_pair(err_mathgen, err_mathgen_mess);
  return mess;
}

int nint(float x) {
  return nint_clamped(x);
}
int nint(double x) {
  return nint_clamped(x);
}

bool negligibler(float x) {
  return std::abs(x) <= epss;
}

// A value whose nearest integer does not fit in 32 bits (or that is not finite) is not
// taken as an integer: its nearest integer cannot be held, so the test cannot pass.
bool zbelongn(float x) {
  if (!(std::abs(static_cast<double>(x)) < int32_limit)) return false;
  return std::abs(static_cast<float>(nint(x)) - x) <= epss;
}

bool zbelongv(std::span<const float> v) {
  return std::all_of(v.begin(), v.end(), [](float x) { return zbelongn(x); });
}

bool zbelongn_dp(double x) {
  if (!(std::abs(x) < int32_limit)) return false;
  return std::abs(static_cast<double>(nint(x)) - x) <= ep_ss;
}

bool zbelongv_dp(std::span<const double> v) {
  return std::all_of(v.begin(), v.end(), [](double x) { return zbelongn_dp(x); });
}

namespace {
float reduce_to_cell(float u) {
  const float w = u + 10.0F;
  return w - std::trunc(w);
}
}  // namespace

Vec3 modulo_lat(const Vec3& u) {
  return {reduce_to_cell(u[0]), reduce_to_cell(u[1]), reduce_to_cell(u[2])};
}

std::vector<float> modulo_lat(std::span<const float> u) {
  std::vector<float> w(u.size());
  std::transform(u.begin(), u.end(), w.begin(), reduce_to_cell);
  return w;
}

bool equal_matrix_i(const Mat3i& a, const Mat3i& b, int n) {
  const int m = std::min(n, 3);
  for (int i = 0; i < m; ++i) {
    for (int j = 0; j < m; ++j) {
      if (a[i][j] != b[i][j]) return false;
    }
  }
  return true;
}

// Elements that one of the vectors does not have cannot be equal: n beyond the length
// of either vector gives false.
bool equal_vector_i(std::span<const int> a, std::span<const int> b, int n) {
  if (n <= 0) return true;
  const auto m = static_cast<std::size_t>(n);
  if (m > a.size() || m > b.size()) return false;
  return std::equal(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(m), b.begin());
}

// Cofactor expansion along the first row.
int determ_a_i(const Mat3i& a) {
  const int m1 = wrap_sub(wrap_mul(a[1][1], a[2][2]), wrap_mul(a[1][2], a[2][1]));
  const int m2 = wrap_sub(wrap_mul(a[1][0], a[2][2]), wrap_mul(a[1][2], a[2][0]));
  const int m3 = wrap_sub(wrap_mul(a[1][0], a[2][1]), wrap_mul(a[1][1], a[2][0]));
  return wrap_add(wrap_sub(wrap_mul(a[0][0], m1), wrap_mul(a[0][1], m2)), wrap_mul(a[0][2], m3));
}

float determ_a_r(const Mat3r& a) {
  const float m1 = a[1][1] * a[2][2] - a[1][2] * a[2][1];
  const float m2 = a[1][0] * a[2][2] - a[1][2] * a[2][0];
  const float m3 = a[1][0] * a[2][1] - a[1][1] * a[2][0];
  return a[0][0] * m1 - a[0][1] * m2 + a[0][2] * m3;
}

int trace_i(const Mat3i& a) {
  return wrap_add(wrap_add(a[0][0], a[1][1]), a[2][2]);
}

float trace_r(const Mat3r& a) {
  return a[0][0] + a[1][1] + a[2][2];
}

namespace {
// Number of diagonal elements of a rows x cols matrix held row by row in `size` elements:
// min(rows, cols), fewer when the storage is shorter than the matrix claims.
std::size_t diagonal_length(std::size_t size, int rows, int cols) {
  if (rows <= 0 || cols <= 0) return 0;
  const auto c = static_cast<std::size_t>(cols);
  std::size_t d = static_cast<std::size_t>(std::min(rows, cols));
  while (d > 0 && (d - 1) * c + (d - 1) >= size) --d;
  return d;
}
}  // namespace

int trace_i(std::span<const int> a, int rows, int cols) {
  int s = 0;
  const std::size_t d = diagonal_length(a.size(), rows, cols);
  for (std::size_t i = 0; i < d; ++i) s = wrap_add(s, a[i * static_cast<std::size_t>(cols) + i]);
  return s;
}

float trace_r(std::span<const float> a, int rows, int cols) {
  float s = 0.0F;
  const std::size_t d = diagonal_length(a.size(), rows, cols);
  for (std::size_t i = 0; i < d; ++i) s += a[i * static_cast<std::size_t>(cols) + i];
  return s;
}

}  // namespace velmoria
